#include "platform/windows/cwnd.h"

#include "platform/windows/cwnd_p.h"
#include "platform/windows/messagepump.h"

// Backends, input delivery and the process-wide focus, capture and
// activation of windows.

namespace vx {

WindowBackend::~WindowBackend() = default;

void WindowBackend::SetZOrder(bool) {}

void WindowBackend::ClientAreaChanged() {}

void WindowBackend::InvalidateFrame() {}

void HeadlessWindowBackend::SetFocus()
{
    // Focus is tracked by CWnd itself in a headless process.
}

void SetWindowBackendFactory(WindowBackendFactory factory)
{
    g_factory = factory;
}

void SetFontBridge(const FontBridge& bridge)
{
    g_fontBridge = bridge;
}

bool TakeMouseLeaveRequest(CWnd& window)
{
    if (!(window.m_trackFlags & TME_LEAVE))
        return false;
    window.m_trackFlags &= ~TME_LEAVE;
    return true;
}

void ClearActiveWindow()
{
    CWnd* old = g_active;
    g_active = nullptr;
    if (old && old->m_hWnd)
        old->SendMessage(WM_ACTIVATE, WA_INACTIVE, 0);
}

bool DispatchInputMessage(CWnd& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!window.m_hWnd)
        return false;
    const bool mouse = message >= WM_MOUSEMOVE && message <= WM_MBUTTONDBLCLK;
    const bool ncMouse = message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK;
    if (ncMouse) {
        SetCursorPosition(PointOf(lParam)); // already in screen coordinates
    } else if (mouse) {
        CPoint p = PointOf(lParam);
        window.ClientToScreen(&p);
        SetCursorPosition(p);
        SetKeyDown(VK_LBUTTON, wParam & MK_LBUTTON);
        SetKeyDown(VK_RBUTTON, wParam & MK_RBUTTON);
        SetKeyDown(VK_MBUTTON, wParam & MK_MBUTTON);
        SetKeyDown(VK_SHIFT, wParam & MK_SHIFT);
        SetKeyDown(VK_CONTROL, wParam & MK_CONTROL);
    } else if (message == WM_KEYDOWN || message == WM_SYSKEYDOWN) {
        SetKeyDown(static_cast<UINT>(wParam), true);
    } else if (message == WM_KEYUP || message == WM_SYSKEYUP) {
        SetKeyDown(static_cast<UINT>(wParam), false);
    }
    MSG msg{};
    msg.hwnd = window.m_hWnd;
    msg.message = message;
    msg.wParam = wParam;
    msg.lParam = lParam;
    msg.time = GetTickCount();
    GetCursorPos(&msg.pt);
    if (FilterInput(msg))
        return false;
    for (CWnd* w = &window; w; w = w->GetParent()) {
        if (w->PreTranslateMessage(&msg))
            return false;
        if (!IsWindow(msg.hwnd))
            return false;
    }
    SendMessageA(msg.hwnd, msg.message, msg.wParam, msg.lParam);
    return true;
}

} // namespace vx

BOOL TrackMouseEvent(LPTRACKMOUSEEVENT track)
{
    if (!track)
        return FALSE;
    CWnd* window = CWnd::FromHandle(track->hwndTrack);
    if (!window)
        return FALSE;
    if (track->dwFlags & TME_CANCEL)
        window->m_trackFlags &= ~(track->dwFlags & ~TME_CANCEL);
    else
        window->m_trackFlags |= track->dwFlags;
    return TRUE;
}

BOOL _TrackMouseEvent(LPTRACKMOUSEEVENT track)
{
    return TrackMouseEvent(track);
}

CWnd* CWnd::SetFocus()
{
    CWnd* old = vx::g_focus;
    if (old == this)
        return old;
    vx::g_focus = this;
    if (old && old->m_hWnd)
        old->SendMessage(WM_KILLFOCUS, reinterpret_cast<WPARAM>(m_hWnd));
    if (vx::g_focus != this)
        return old; // the old window moved the focus elsewhere
    if (m_backend)
        m_backend->SetFocus();
    SendMessage(WM_SETFOCUS, reinterpret_cast<WPARAM>(old ? old->m_hWnd : nullptr));
    return old;
}

CWnd* CWnd::GetFocus()
{
    return vx::g_focus;
}

CWnd* CWnd::SetCapture()
{
    CWnd* old = vx::g_capture;
    if (old && old != this) {
        if (old->m_backend)
            old->m_backend->SetCapture(false);
        old->SendMessage(WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(m_hWnd));
    }
    vx::g_capture = this;
    if (m_backend)
        m_backend->SetCapture(true);
    return old;
}

CWnd* CWnd::GetCapture()
{
    return vx::g_capture;
}

BOOL CWnd::ReleaseCapture()
{
    CWnd* old = vx::g_capture;
    if (!old)
        return TRUE;
    vx::g_capture = nullptr;
    if (old->m_backend)
        old->m_backend->SetCapture(false);
    old->SendMessage(WM_CAPTURECHANGED, 0, 0);
    return TRUE;
}
