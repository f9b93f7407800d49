// System metrics and colours.
//
// By default both answer from one fixed table (a classic desktop of
// 1280 x 1024 with the classic colour scheme), so that layouts and rendered
// pixels are the same on every machine. A host (vxbase-ui) may install a
// provider that answers from the real display instead. The metrics of the
// screens (their sizes, the virtual desktop, SM_CMONITORS) always come from
// the process's list of screens (platform/screens/monitors.h).
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

constexpr int SM_CXSCREEN = 0;
constexpr int SM_CYSCREEN = 1;
constexpr int SM_CXVSCROLL = 2;
constexpr int SM_CYHSCROLL = 3;
constexpr int SM_CYCAPTION = 4;
constexpr int SM_CXBORDER = 5;
constexpr int SM_CYBORDER = 6;
constexpr int SM_CXDLGFRAME = 7;
constexpr int SM_CYDLGFRAME = 8;
constexpr int SM_CXICON = 11;
constexpr int SM_CYICON = 12;
constexpr int SM_CYMENU = 15;
constexpr int SM_CXFULLSCREEN = 16;
constexpr int SM_CYFULLSCREEN = 17;
constexpr int SM_CXMIN = 28;
constexpr int SM_CYMIN = 29;
constexpr int SM_CXSIZE = 30;
constexpr int SM_CYSIZE = 31;
constexpr int SM_CXFRAME = 32;
constexpr int SM_CYFRAME = 33;
constexpr int SM_CXDOUBLECLK = 36;
constexpr int SM_CYDOUBLECLK = 37;
constexpr int SM_CXEDGE = 45;
constexpr int SM_CYEDGE = 46;
constexpr int SM_CXSMICON = 49;
constexpr int SM_CYSMICON = 50;
constexpr int SM_CXMENUSIZE = 54;
constexpr int SM_CYMENUSIZE = 55;
constexpr int SM_CXMENUCHECK = 71;
constexpr int SM_CYMENUCHECK = 72;
constexpr int SM_XVIRTUALSCREEN = 76;
constexpr int SM_YVIRTUALSCREEN = 77;
constexpr int SM_CXVIRTUALSCREEN = 78;
constexpr int SM_CYVIRTUALSCREEN = 79;
constexpr int SM_CMONITORS = 80;
constexpr int SM_SAMEDISPLAYFORMAT = 81;
constexpr int SM_REMOTESESSION = 0x1000;

constexpr int COLOR_SCROLLBAR = 0;
constexpr int COLOR_BACKGROUND = 1;
constexpr int COLOR_ACTIVECAPTION = 2;
constexpr int COLOR_INACTIVECAPTION = 3;
constexpr int COLOR_MENU = 4;
constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_WINDOWFRAME = 6;
constexpr int COLOR_MENUTEXT = 7;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_CAPTIONTEXT = 9;
constexpr int COLOR_ACTIVEBORDER = 10;
constexpr int COLOR_INACTIVEBORDER = 11;
constexpr int COLOR_APPWORKSPACE = 12;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_HIGHLIGHTTEXT = 14;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_3DFACE = 15;
constexpr int COLOR_BTNSHADOW = 16;
constexpr int COLOR_3DSHADOW = 16;
constexpr int COLOR_GRAYTEXT = 17;
constexpr int COLOR_BTNTEXT = 18;
constexpr int COLOR_INACTIVECAPTIONTEXT = 19;
constexpr int COLOR_BTNHIGHLIGHT = 20;
constexpr int COLOR_3DHILIGHT = 20;
constexpr int COLOR_3DHIGHLIGHT = 20;
constexpr int COLOR_3DDKSHADOW = 21;
constexpr int COLOR_3DLIGHT = 22;
constexpr int COLOR_INFOTEXT = 23;
constexpr int COLOR_INFOBK = 24;
constexpr int COLOR_HOTLIGHT = 26;
constexpr int COLOR_GRADIENTACTIVECAPTION = 27;
constexpr int COLOR_GRADIENTINACTIVECAPTION = 28;
constexpr int COLOR_MENUHILIGHT = 29;
constexpr int COLOR_MENUBAR = 30;

// The metric `index` (0 for unknown indexes).
VXBASE_EXPORT int GetSystemMetrics(int index);
// The colour `index` (0 for unknown indexes).
VXBASE_EXPORT COLORREF GetSysColor(int index);

namespace vx {

class VXBASE_EXPORT SystemMetricsProvider {
public:
    virtual ~SystemMetricsProvider();
    virtual int Metric(int index) = 0;
    virtual COLORREF Color(int index) = 0;
};

// Installs a provider (null: the fixed table). Not owned.
VXBASE_EXPORT void SetSystemMetricsProvider(SystemMetricsProvider* provider);
// The answers of the fixed table, whatever provider is installed.
VXBASE_EXPORT int FixedSystemMetric(int index);
VXBASE_EXPORT COLORREF FixedSysColor(int index);

} // namespace vx
