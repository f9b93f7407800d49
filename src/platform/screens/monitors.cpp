#include "platform/screens/monitors.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <mutex>

namespace vx {
namespace {

// Handles count from 1 and change whenever the screens do, so that a handle
// of a screen that has gone answers nothing.
struct ScreenSet {
    std::vector<Screen> screens;
    std::uintptr_t generation = 1;
};

std::mutex& Lock()
{
    static std::mutex lock;
    return lock;
}

ScreenSet& Set()
{
    static ScreenSet* set = [] {
        auto* s = new ScreenSet;
        s->screens = DefaultScreens();
        return s;
    }();
    return *set;
}

// 16 bits of screen number, the rest the generation.
HMONITOR HandleOf(std::size_t index, std::uintptr_t generation)
{
    return reinterpret_cast<HMONITOR>((generation << 16) | (index + 1));
}

bool IndexOf(HMONITOR monitor, const ScreenSet& set, std::size_t& index)
{
    const auto value = reinterpret_cast<std::uintptr_t>(monitor);
    if ((value >> 16) != set.generation || (value & 0xFFFF) == 0)
        return false;
    index = (value & 0xFFFF) - 1;
    return index < set.screens.size();
}

std::size_t PrimaryIndex(const ScreenSet& set)
{
    for (std::size_t i = 0; i < set.screens.size(); ++i) {
        if (set.screens[i].primary)
            return i;
    }
    return 0;
}

long long Area(const RECT& a, const RECT& b)
{
    const long long w = static_cast<long long>(std::min(a.right, b.right)) - std::max(a.left, b.left);
    const long long h = static_cast<long long>(std::min(a.bottom, b.bottom)) - std::max(a.top, b.top);
    return (w > 0 && h > 0) ? w * h : 0;
}

long long Distance(const RECT& screen, const RECT& r)
{
    const long long dx = std::max<long long>({0, static_cast<long long>(screen.left) - r.right, static_cast<long long>(r.left) - screen.right});
    const long long dy = std::max<long long>({0, static_cast<long long>(screen.top) - r.bottom, static_cast<long long>(r.top) - screen.bottom});
    return dx * dx + dy * dy;
}

HMONITOR Fallback(const ScreenSet& set, const RECT& r, DWORD flags)
{
    if (set.screens.empty() || flags == MONITOR_DEFAULTTONULL)
        return nullptr;
    if (flags == MONITOR_DEFAULTTOPRIMARY)
        return HandleOf(PrimaryIndex(set), set.generation);
    std::size_t best = 0;
    long long bestDistance = LLONG_MAX;
    for (std::size_t i = 0; i < set.screens.size(); ++i) {
        const long long d = Distance(set.screens[i].rect, r);
        if (d < bestDistance) {
            bestDistance = d;
            best = i;
        }
    }
    return HandleOf(best, set.generation);
}

RECT Bounds(const std::vector<Screen>& screens)
{
    if (screens.empty())
        return RECT{0, 0, 0, 0};
    RECT all = screens.front().rect;
    for (const Screen& s : screens) {
        all.left = std::min(all.left, s.rect.left);
        all.top = std::min(all.top, s.rect.top);
        all.right = std::max(all.right, s.rect.right);
        all.bottom = std::max(all.bottom, s.rect.bottom);
    }
    return all;
}

} // namespace

std::vector<Screen> DefaultScreens()
{
    Screen screen;
    screen.rect = RECT{0, 0, 1280, 1024};
    // The classic task bar along the bottom.
    screen.work = RECT{0, 0, 1280, 1024 - 30};
    screen.primary = true;
    screen.name = "\\\\.\\DISPLAY1";
    return {screen};
}

void SetScreens(std::vector<Screen> screens)
{
    if (screens.empty())
        screens = DefaultScreens();
    const bool anyPrimary = std::any_of(screens.begin(), screens.end(), [](const Screen& s) { return s.primary; });
    bool seen = false;
    for (std::size_t i = 0; i < screens.size(); ++i) {
        Screen& s = screens[i];
        // One primary screen, as on the platform.
        s.primary = anyPrimary ? (s.primary && !seen) : i == 0;
        seen = seen || s.primary;
        if (IsRectEmpty(&s.work))
            s.work = s.rect;
        if (s.name.empty())
            s.name = "\\\\.\\DISPLAY" + std::to_string(i + 1);
    }
    std::lock_guard<std::mutex> guard(Lock());
    Set().screens = std::move(screens);
    ++Set().generation;
}

std::vector<Screen> Screens()
{
    std::lock_guard<std::mutex> guard(Lock());
    return Set().screens;
}

bool ScreenMetric(int index, int& value)
{
    std::lock_guard<std::mutex> guard(Lock());
    const ScreenSet& set = Set();
    const Screen& primary = set.screens[PrimaryIndex(set)];
    const RECT all = Bounds(set.screens);
    switch (index) {
    case SM_CXSCREEN: value = primary.rect.right - primary.rect.left; return true;
    case SM_CYSCREEN: value = primary.rect.bottom - primary.rect.top; return true;
    case SM_CXFULLSCREEN: value = primary.work.right - primary.work.left; return true;
    case SM_CYFULLSCREEN:
        value = primary.work.bottom - primary.work.top - FixedSystemMetric(SM_CYCAPTION);
        return true;
    case SM_XVIRTUALSCREEN: value = all.left; return true;
    case SM_YVIRTUALSCREEN: value = all.top; return true;
    case SM_CXVIRTUALSCREEN: value = all.right - all.left; return true;
    case SM_CYVIRTUALSCREEN: value = all.bottom - all.top; return true;
    case SM_CMONITORS: value = static_cast<int>(set.screens.size()); return true;
    case SM_SAMEDISPLAYFORMAT: value = 1; return true;
    default: return false;
    }
}

} // namespace vx

HMONITOR MonitorFromPoint(POINT point, DWORD flags)
{
    std::lock_guard<std::mutex> guard(vx::Lock());
    const vx::ScreenSet& set = vx::Set();
    for (std::size_t i = 0; i < set.screens.size(); ++i) {
        if (PtInRect(&set.screens[i].rect, point))
            return vx::HandleOf(i, set.generation);
    }
    return vx::Fallback(set, RECT{point.x, point.y, point.x, point.y}, flags);
}

HMONITOR MonitorFromRect(LPCRECT rect, DWORD flags)
{
    if (!rect)
        return nullptr;
    std::lock_guard<std::mutex> guard(vx::Lock());
    const vx::ScreenSet& set = vx::Set();
    std::size_t best = 0;
    long long bestArea = 0;
    for (std::size_t i = 0; i < set.screens.size(); ++i) {
        const long long area = vx::Area(set.screens[i].rect, *rect);
        if (area > bestArea) {
            bestArea = area;
            best = i;
        }
    }
    if (bestArea > 0)
        return vx::HandleOf(best, set.generation);
    // An empty rectangle still lies on the screen that holds its corner.
    for (std::size_t i = 0; i < set.screens.size(); ++i) {
        if (IsRectEmpty(rect) && PtInRect(&set.screens[i].rect, POINT{rect->left, rect->top}))
            return vx::HandleOf(i, set.generation);
    }
    return vx::Fallback(set, *rect, flags);
}

HMONITOR MonitorFromWindow(HWND window, DWORD flags)
{
    CWnd* w = CWnd::FromHandle(window);
    if (!w) {
        if (flags == MONITOR_DEFAULTTONULL)
            return nullptr;
        return MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY);
    }
    CRect r;
    w->GetWindowRect(&r);
    return MonitorFromRect(&r, flags);
}

BOOL GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info)
{
    if (!info || (info->cbSize != sizeof(MONITORINFO) && info->cbSize != sizeof(MONITORINFOEXA)))
        return FALSE;
    std::lock_guard<std::mutex> guard(vx::Lock());
    const vx::ScreenSet& set = vx::Set();
    std::size_t index = 0;
    if (!vx::IndexOf(monitor, set, index))
        return FALSE;
    const vx::Screen& s = set.screens[index];
    info->rcMonitor = s.rect;
    info->rcWork = s.work;
    info->dwFlags = s.primary ? MONITORINFOF_PRIMARY : 0;
    if (info->cbSize == sizeof(MONITORINFOEXA)) {
        auto* ex = static_cast<MONITORINFOEXA*>(info);
        std::memset(ex->szDevice, 0, sizeof ex->szDevice);
        std::strncpy(ex->szDevice, s.name.c_str(), sizeof ex->szDevice - 1);
    }
    return TRUE;
}

BOOL EnumDisplayMonitors(HDC dc, LPCRECT clip, MONITORENUMPROC proc, LPARAM data)
{
    if (!proc)
        return FALSE;
    // The list is copied first: the procedure may ask the monitor functions.
    std::vector<std::pair<HMONITOR, RECT>> shown;
    {
        std::lock_guard<std::mutex> guard(vx::Lock());
        const vx::ScreenSet& set = vx::Set();
        for (std::size_t i = 0; i < set.screens.size(); ++i) {
            RECT part = set.screens[i].rect;
            if (clip && !IntersectRect(&part, &part, clip))
                continue;
            shown.emplace_back(vx::HandleOf(i, set.generation), part);
        }
    }
    for (auto& [monitor, part] : shown) {
        if (!proc(monitor, dc, &part, data))
            break;
    }
    return TRUE;
}
