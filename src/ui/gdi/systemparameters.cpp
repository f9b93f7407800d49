#include "ui/gdi/wingdi.h"

#include "platform/windows/cwnd.h"
#include "platform/screens/monitors.h"
#include "platform/windows/sysmetrics.h"

#include <cstring>
#include <vector>

namespace {

// The switches of the classic desktop, as a fresh installation had them
// (menu animation is off so that a menu shows in one step).
struct Switches {
    bool highContrast = false;
    bool flatMenu = false;
    bool dropShadow = false;
    bool menuAnimation = false;
    bool menuFade = false;
    bool keyboardCues = false;
    UINT menuShowDelay = 400;
};

Switches& TheSwitches()
{
    static Switches switches;
    return switches;
}

LOGFONTA GuiFont(LONG weight)
{
    LOGFONTA lf{};
    lf.lfHeight = -11;
    lf.lfWeight = weight;
    lf.lfCharSet = DEFAULT_CHARSET;
    std::strcpy(lf.lfFaceName, "DejaVu Sans");
    return lf;
}

BOOL CollectTopLevel(HWND h, LPARAM l)
{
    reinterpret_cast<std::vector<HWND>*>(l)->push_back(h);
    return TRUE;
}

void Announce(UINT action)
{
    std::vector<HWND> tops;
    EnumWindows(&CollectTopLevel, reinterpret_cast<LPARAM>(&tops));
    for (HWND h : tops) {
        if (CWnd::FromHandle(h)) // this process's windows only
            SendMessageA(h, WM_SETTINGCHANGE, action, 0);
    }
}

bool Flag(void* data)
{
    return data != nullptr;
}

} // namespace

BOOL SystemParametersInfoA(UINT action, UINT param, void* data, UINT winIni)
{
    Switches& sw = TheSwitches();
    auto getBool = [&](bool value) {
        if (!data)
            return FALSE;
        *static_cast<BOOL*>(data) = value ? TRUE : FALSE;
        return TRUE;
    };
    BOOL set = FALSE;
    switch (action) {
    case SPI_GETNONCLIENTMETRICS: {
        if (!data)
            return FALSE;
        auto* m = static_cast<NONCLIENTMETRICSA*>(data);
        const UINT size = m->cbSize;
        *m = NONCLIENTMETRICSA{};
        m->cbSize = size ? size : sizeof(NONCLIENTMETRICSA);
        m->iBorderWidth = 1;
        m->iScrollWidth = GetSystemMetrics(SM_CXVSCROLL);
        m->iScrollHeight = GetSystemMetrics(SM_CYHSCROLL);
        m->iCaptionWidth = GetSystemMetrics(SM_CXSIZE);
        m->iCaptionHeight = GetSystemMetrics(SM_CYSIZE);
        m->lfCaptionFont = GuiFont(FW_BOLD);
        m->iSmCaptionWidth = 12;
        m->iSmCaptionHeight = 15;
        m->lfSmCaptionFont = GuiFont(FW_BOLD);
        m->iMenuWidth = GetSystemMetrics(SM_CXMENUSIZE);
        m->iMenuHeight = GetSystemMetrics(SM_CYMENUSIZE);
        m->lfMenuFont = GuiFont(FW_NORMAL);
        m->lfStatusFont = GuiFont(FW_NORMAL);
        m->lfMessageFont = GuiFont(FW_NORMAL);
        return TRUE;
    }
    case SPI_GETWORKAREA:
        if (!data)
            return FALSE;
    {
        // The work area of the primary screen.
        MONITORINFO info{sizeof info, {}, {}, 0};
        if (!GetMonitorInfoA(MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY), &info))
            return FALSE;
        *static_cast<RECT*>(data) = info.rcWork;
        return TRUE;
    }
    case SPI_GETHIGHCONTRAST:
        if (!data)
            return FALSE;
        static_cast<HIGHCONTRASTA*>(data)->dwFlags = sw.highContrast ? HCF_HIGHCONTRASTON : 0;
        return TRUE;
    case SPI_SETHIGHCONTRAST:
        if (!data)
            return FALSE;
        sw.highContrast = static_cast<HIGHCONTRASTA*>(data)->dwFlags & HCF_HIGHCONTRASTON;
        set = TRUE;
        break;
    case SPI_GETFLATMENU: return getBool(sw.flatMenu);
    case SPI_SETFLATMENU: sw.flatMenu = Flag(data); set = TRUE; break;
    case SPI_GETDROPSHADOW: return getBool(sw.dropShadow);
    case SPI_SETDROPSHADOW: sw.dropShadow = Flag(data); set = TRUE; break;
    case SPI_GETMENUANIMATION: return getBool(sw.menuAnimation);
    case SPI_SETMENUANIMATION: sw.menuAnimation = Flag(data); set = TRUE; break;
    case SPI_GETMENUFADE: return getBool(sw.menuFade);
    case SPI_SETMENUFADE: sw.menuFade = Flag(data); set = TRUE; break;
    case SPI_GETKEYBOARDCUES: return getBool(sw.keyboardCues);
    case SPI_SETKEYBOARDCUES: sw.keyboardCues = Flag(data); set = TRUE; break;
    case SPI_GETMENUSHOWDELAY:
        if (!data)
            return FALSE;
        *static_cast<UINT*>(data) = sw.menuShowDelay;
        return TRUE;
    case SPI_SETMENUSHOWDELAY: sw.menuShowDelay = param; set = TRUE; break;
    default:
        return FALSE;
    }
    if (set && (winIni & SPIF_SENDCHANGE))
        Announce(action);
    return set;
}
