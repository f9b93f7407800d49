#include "ui/windows/windowsizing.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>

namespace vx {

MINMAXINFO QueryMinMaxInfo(CWnd& window)
{
    MINMAXINFO info{};
    const int cx = GetSystemMetrics(SM_CXVIRTUALSCREEN);
    const int cy = GetSystemMetrics(SM_CYVIRTUALSCREEN);
    info.ptMaxSize = POINT{cx, cy};
    info.ptMaxPosition = POINT{0, 0};
    info.ptMinTrackSize = POINT{GetSystemMetrics(SM_CXMIN), GetSystemMetrics(SM_CYMIN)};
    info.ptMaxTrackSize = POINT{cx, cy};
    if (window.m_hWnd)
        window.SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    return info;
}

CSize ClampTrackSize(const MINMAXINFO& limits, CSize size)
{
    size.cx = std::max<LONG>(size.cx, limits.ptMinTrackSize.x);
    size.cy = std::max<LONG>(size.cy, limits.ptMinTrackSize.y);
    size.cx = std::min<LONG>(size.cx, std::max(limits.ptMaxTrackSize.x, limits.ptMinTrackSize.x));
    size.cy = std::min<LONG>(size.cy, std::max(limits.ptMaxTrackSize.y, limits.ptMinTrackSize.y));
    return size;
}

void SizeGripTracker::Begin(CWnd& window, POINT screen)
{
    // The window the grip lies in, not its owner.
    CWnd* top = &window;
    while ((top->GetStyle() & WS_CHILD) && top->GetParent())
        top = top->GetParent();
    m_window = top;
    m_start = CPoint(screen);
    CRect r;
    m_window->GetWindowRect(&r);
    m_startSize = r.Size();
}

bool SizeGripTracker::Track(POINT screen)
{
    if (!m_window || !m_window->m_hWnd) {
        m_window = nullptr;
        return false;
    }
    CSize size(m_startSize.cx + screen.x - m_start.x, m_startSize.cy + screen.y - m_start.y);
    size = ClampTrackSize(QueryMinMaxInfo(*m_window), size);
    CRect r;
    m_window->GetWindowRect(&r);
    if (r.Size() != size)
        m_window->SetWindowPos(nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return true;
}

void SizeGripTracker::End()
{
    m_window = nullptr;
}

} // namespace vx
