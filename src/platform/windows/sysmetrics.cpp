#include "platform/windows/sysmetrics.h"

#include "platform/screens/monitors.h"

#include <atomic>

namespace vx {
namespace {

std::atomic<SystemMetricsProvider*> g_provider{nullptr};

} // namespace

SystemMetricsProvider::~SystemMetricsProvider() = default;

void SetSystemMetricsProvider(SystemMetricsProvider* provider)
{
    g_provider = provider;
}

int FixedSystemMetric(int index)
{
    switch (index) {
    case SM_CXSCREEN: return 1280;
    case SM_CYSCREEN: return 1024;
    case SM_CXVSCROLL: return 16;
    case SM_CYHSCROLL: return 16;
    case SM_CYCAPTION: return 19;
    case SM_CXBORDER: return 1;
    case SM_CYBORDER: return 1;
    case SM_CXDLGFRAME: return 3;
    case SM_CYDLGFRAME: return 3;
    case SM_CXICON: return 32;
    case SM_CYICON: return 32;
    case SM_CYMENU: return 19;
    case SM_CXFULLSCREEN: return 1280;
    case SM_CYFULLSCREEN: return 1024 - 19 - 30;
    case SM_CXMIN: return 112;
    case SM_CYMIN: return 27;
    case SM_CXSIZE: return 18;
    case SM_CYSIZE: return 18;
    case SM_CXFRAME: return 4;
    case SM_CYFRAME: return 4;
    case SM_CXDOUBLECLK: return 4;
    case SM_CYDOUBLECLK: return 4;
    case SM_CXEDGE: return 2;
    case SM_CYEDGE: return 2;
    case SM_CXSMICON: return 16;
    case SM_CYSMICON: return 16;
    case SM_CXMENUSIZE: return 18;
    case SM_CYMENUSIZE: return 18;
    case SM_CXMENUCHECK: return 13;
    case SM_CYMENUCHECK: return 13;
    case SM_XVIRTUALSCREEN: return 0;
    case SM_YVIRTUALSCREEN: return 0;
    case SM_CXVIRTUALSCREEN: return 1280;
    case SM_CYVIRTUALSCREEN: return 1024;
    case SM_CMONITORS: return 1;
    case SM_SAMEDISPLAYFORMAT: return 1;
    case SM_REMOTESESSION: return 0;
    default: return 0;
    }
}

COLORREF FixedSysColor(int index)
{
    // The classic desktop scheme.
    static const COLORREF kColors[] = {
        RGB(212, 208, 200), // COLOR_SCROLLBAR
        RGB(58, 110, 165),  // COLOR_BACKGROUND
        RGB(10, 36, 106),   // COLOR_ACTIVECAPTION
        RGB(128, 128, 128), // COLOR_INACTIVECAPTION
        RGB(212, 208, 200), // COLOR_MENU
        RGB(255, 255, 255), // COLOR_WINDOW
        RGB(0, 0, 0),       // COLOR_WINDOWFRAME
        RGB(0, 0, 0),       // COLOR_MENUTEXT
        RGB(0, 0, 0),       // COLOR_WINDOWTEXT
        RGB(255, 255, 255), // COLOR_CAPTIONTEXT
        RGB(212, 208, 200), // COLOR_ACTIVEBORDER
        RGB(212, 208, 200), // COLOR_INACTIVEBORDER
        RGB(128, 128, 128), // COLOR_APPWORKSPACE
        RGB(10, 36, 106),   // COLOR_HIGHLIGHT
        RGB(255, 255, 255), // COLOR_HIGHLIGHTTEXT
        RGB(212, 208, 200), // COLOR_BTNFACE
        RGB(128, 128, 128), // COLOR_BTNSHADOW
        RGB(128, 128, 128), // COLOR_GRAYTEXT
        RGB(0, 0, 0),       // COLOR_BTNTEXT
        RGB(212, 208, 200), // COLOR_INACTIVECAPTIONTEXT
        RGB(255, 255, 255), // COLOR_BTNHIGHLIGHT
        RGB(64, 64, 64),    // COLOR_3DDKSHADOW
        RGB(212, 208, 200), // COLOR_3DLIGHT
        RGB(0, 0, 0),       // COLOR_INFOTEXT
        RGB(255, 255, 225), // COLOR_INFOBK
        RGB(181, 181, 181), // 25, unused
        RGB(0, 0, 128),     // COLOR_HOTLIGHT
        RGB(166, 202, 240), // COLOR_GRADIENTACTIVECAPTION
        RGB(192, 192, 192), // COLOR_GRADIENTINACTIVECAPTION
        RGB(10, 36, 106),   // COLOR_MENUHILIGHT
        RGB(212, 208, 200), // COLOR_MENUBAR
    };
    if (index < 0 || index >= static_cast<int>(sizeof kColors / sizeof kColors[0]))
        return 0;
    return kColors[index];
}

} // namespace vx

int GetSystemMetrics(int index)
{
    // The screens answer for themselves (platform/screens/monitors.h).
    if (int value = 0; vx::ScreenMetric(index, value))
        return value;
    if (vx::SystemMetricsProvider* p = vx::g_provider.load())
        return p->Metric(index);
    return vx::FixedSystemMetric(index);
}

COLORREF GetSysColor(int index)
{
    if (vx::SystemMetricsProvider* p = vx::g_provider.load())
        return p->Color(index);
    return vx::FixedSysColor(index);
}
