// The screens of the display and the multi-monitor functions.
//
// The process keeps one list of screens, each with its rectangle on the
// virtual desktop, its work area and whether it is the primary one. The
// metrics of the screens (GetSystemMetrics SM_CXSCREEN, SM_CMONITORS,
// SM_XVIRTUALSCREEN and kin) and the monitor functions answer from it. By
// default it holds one screen of 1280 x 1024, the classic desktop of the
// fixed metrics, so layouts are the same on every machine; vxbase-ui fills it
// from Qt's screens when a display exists, and a test sets the screens it
// needs:
//
//   vx::SetScreens({{{0, 0, 1280, 1024}, {0, 0, 1280, 994}, true},
//                   {{1280, 0, 2880, 1200}, {1280, 0, 2880, 1200}, false}});
//   GetSystemMetrics(SM_CMONITORS);                             // 2
//   MonitorFromPoint(POINT{1500, 10}, MONITOR_DEFAULTTONULL);   // the second
#pragma once

#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "platform/windows/winuser.h"
#include "vxbase_export.h"

#include <string>
#include <vector>

struct HMONITOR__;
using HMONITOR = HMONITOR__*;

constexpr DWORD MONITOR_DEFAULTTONULL = 0x00000000;
constexpr DWORD MONITOR_DEFAULTTOPRIMARY = 0x00000001;
constexpr DWORD MONITOR_DEFAULTTONEAREST = 0x00000002;
constexpr DWORD MONITORINFOF_PRIMARY = 0x00000001;

struct MONITORINFO {
    DWORD cbSize;
    RECT rcMonitor;
    RECT rcWork;
    DWORD dwFlags;
};
using LPMONITORINFO = MONITORINFO*;

// With the device name, when cbSize says there is room for it.
struct MONITORINFOEXA : MONITORINFO {
    char szDevice[32];
};

using MONITORENUMPROC = BOOL (*)(HMONITOR monitor, HDC dc, LPRECT rect, LPARAM data);

// The screen that holds the point; else null, the primary or the nearest.
VXBASE_EXPORT HMONITOR MonitorFromPoint(POINT point, DWORD flags);
// The screen that shares the most area with the rectangle; else as above.
VXBASE_EXPORT HMONITOR MonitorFromRect(LPCRECT rect, DWORD flags);
VXBASE_EXPORT HMONITOR MonitorFromWindow(HWND window, DWORD flags);
// FALSE for a handle of no screen (a screen that has gone, too).
VXBASE_EXPORT BOOL GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info);
// Calls `proc` for each screen that meets `clip` (all for null) with the
// part that meets it, until it answers FALSE. `dc` is handed on as given.
VXBASE_EXPORT BOOL EnumDisplayMonitors(HDC dc, LPCRECT clip, MONITORENUMPROC proc, LPARAM data);

namespace vx {

struct Screen {
    RECT rect{0, 0, 0, 0};
    RECT work{0, 0, 0, 0};
    bool primary = false;
    std::string name;
};

// Replaces the screens; an empty list brings back the default. When no
// screen is marked primary the first one is.
VXBASE_EXPORT void SetScreens(std::vector<Screen> screens);
VXBASE_EXPORT std::vector<Screen> Screens();
// The one screen of the classic desktop.
VXBASE_EXPORT std::vector<Screen> DefaultScreens();
// The metric of an index the screens decide (SM_CXSCREEN, SM_CYSCREEN,
// SM_CXFULLSCREEN, SM_CYFULLSCREEN, SM_XVIRTUALSCREEN to SM_CMONITORS,
// SM_SAMEDISPLAYFORMAT); false for other indexes.
VXBASE_EXPORT bool ScreenMetric(int index, int& value);

} // namespace vx
