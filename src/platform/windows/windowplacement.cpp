#include "platform/windows/windowplacement.h"

#include "platform/windows/cwnd.h"
#include "platform/ipc/windowbus_p.h"
#include "platform/windows/windows.h"

BOOL GetWindowPlacement(HWND hwnd, WINDOWPLACEMENT* placement)
{
    CWnd* window = CWnd::FromHandle(hwnd);
    if (!window || !placement)
        return FALSE;
    WINDOWPLACEMENT wp{};
    wp.length = sizeof wp;
    wp.showCmd = (window->GetStyle() & WS_MINIMIZE)   ? SW_SHOWMINIMIZED
                 : (window->GetStyle() & WS_MAXIMIZE) ? SW_SHOWMAXIMIZED
                                                      : SW_SHOWNORMAL;
    wp.ptMinPosition = POINT{-1, -1};
    wp.ptMaxPosition = POINT{-1, -1};
    window->GetWindowRect(&wp.rcNormalPosition);
    // A child stands in its parent's client coordinates, which is where
    // SetWindowPlacement (through MoveWindow) puts it back.
    if (CWnd* parent = window->GetParent(); parent && (window->GetStyle() & WS_CHILD))
        parent->ScreenToClient(&wp.rcNormalPosition);
    *placement = wp;
    return TRUE;
}

BOOL SetWindowPlacement(HWND hwnd, const WINDOWPLACEMENT* placement)
{
    if (!placement || !hwnd)
        return FALSE;
    if (!vx::IsLocalHandle(hwnd))
        return vx::detail::RemoteSetPlacement(hwnd, *placement);
    CWnd* window = CWnd::FromHandle(hwnd);
    if (!window)
        return FALSE;
    window->MoveWindow(&placement->rcNormalPosition);
    window->ShowWindow(static_cast<int>(placement->showCmd));
    return TRUE;
}
