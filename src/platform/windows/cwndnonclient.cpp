#include "platform/windows/cwnd.h"

#include "platform/windows/cwnd_p.h"
#include "platform/windows/winuser.h"
#include "platform/windows/menubarbridge.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>

// The non-client area of a window: the frame between the window rectangle
// and the client area, its size (WM_NCCALCSIZE), painting (WM_NCPAINT,
// WM_PRINT), hit tests (WM_NCHITTEST) and the messages of moving and sizing.

namespace vx {

FrameBridge g_frameBridge;

namespace {
MenuBarBridge g_menuBar;
// Alt went down with no other key or click since: its release enters the
// menu bar.
bool g_altAlone = false;
} // namespace

void SetMenuBarBridge(const MenuBarBridge& bridge)
{
    g_menuBar = bridge;
}

const MenuBarBridge& GetMenuBarBridge()
{
    return g_menuBar;
}

void SetFrameBridge(const FrameBridge& bridge)
{
    g_frameBridge = bridge;
}

FrameBridge GetFrameBridge()
{
    return g_frameBridge;
}

CRect ClientAreaOf(const CWnd& window)
{
    return window.m_client;
}

CRect StandardFrameInsets(DWORD style, DWORD exStyle, bool topLevel)
{
    // The desktop frames a top-level window, and a popup with a caption (a
    // dialog: the shim shows it as the desktop's dialog window).
    if (topLevel && (!(style & WS_POPUP) || (style & WS_CAPTION) == WS_CAPTION))
        return CRect();
    int width = 0;
    if (style & WS_THICKFRAME)
        width = GetSystemMetrics(SM_CXFRAME);
    else if ((style & WS_DLGFRAME) || (exStyle & WS_EX_DLGMODALFRAME))
        width = GetSystemMetrics(SM_CXDLGFRAME);
    else if (style & WS_BORDER)
        width = GetSystemMetrics(SM_CXBORDER);
    if (exStyle & WS_EX_CLIENTEDGE)
        width += GetSystemMetrics(SM_CXEDGE);
    if (exStyle & WS_EX_STATICEDGE)
        width += GetSystemMetrics(SM_CXBORDER);
    return CRect(width, width, width, width);
}

namespace {

bool TopLevel(const CWnd& w)
{
    return !w.GetParent() || !(w.GetStyle() & WS_CHILD);
}

// Child windows have no menu bar, whatever SetMenu was told.
bool MayHaveMenuBar(const CWnd& w)
{
    return !(w.GetStyle() & WS_CHILD);
}

LRESULT DefaultHitTest(CWnd& window, CPoint screen)
{
    CRect outer;
    window.GetWindowRect(&outer);
    if (!outer.PtInRect(screen))
        return HTNOWHERE;
    CRect client = ClientAreaOf(window);
    client.OffsetRect(outer.TopLeft());
    if (client.PtInRect(screen))
        return HTCLIENT;
    if (g_menuBar.contains && MayHaveMenuBar(window) && g_menuBar.contains(window, screen))
        return HTMENU;
    if (!(window.GetStyle() & WS_THICKFRAME))
        return HTBORDER;
    // On a sizing frame the corners reach in as far as a caption is high.
    const int corner = GetSystemMetrics(SM_CYCAPTION);
    const bool left = screen.x < client.left;
    const bool right = screen.x >= client.right;
    const bool top = screen.y < client.top;
    const bool bottom = screen.y >= client.bottom;
    const bool nearLeft = screen.x < outer.left + corner;
    const bool nearRight = screen.x >= outer.right - corner;
    const bool nearTop = screen.y < outer.top + corner;
    const bool nearBottom = screen.y >= outer.bottom - corner;
    if ((top && nearLeft) || (left && nearTop))
        return HTTOPLEFT;
    if ((top && nearRight) || (right && nearTop))
        return HTTOPRIGHT;
    if ((bottom && nearLeft) || (left && nearBottom))
        return HTBOTTOMLEFT;
    if ((bottom && nearRight) || (right && nearBottom))
        return HTBOTTOMRIGHT;
    if (left)
        return HTLEFT;
    if (right)
        return HTRIGHT;
    return top ? HTTOP : HTBOTTOM;
}

// The system menu's commands on any window; the menu bar's two entries go
// to its loop.
LRESULT DefaultSysCommand(CWnd& window, WPARAM wParam, LPARAM lParam)
{
    switch (wParam & 0xFFF0) {
    case SC_KEYMENU:
    case SC_MOUSEMENU:
        if (g_menuBar.track && MayHaveMenuBar(window))
            g_menuBar.track(window, wParam & 0xFFF0, lParam);
        return 0;
    case SC_CLOSE:
        window.SendMessage(WM_CLOSE);
        return 0;
    case SC_MINIMIZE:
        window.ShowWindow(SW_MINIMIZE);
        return 0;
    case SC_MAXIMIZE:
        window.ShowWindow(SW_MAXIMIZE);
        return 0;
    case SC_RESTORE:
        window.ShowWindow(SW_RESTORE);
        return 0;
    default:
        return 0;
    }
}

} // namespace

LRESULT DefaultNonClient(CWnd& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_NCCALCSIZE: {
        auto* r = reinterpret_cast<RECT*>(lParam); // rgrc[0] in either form
        if (!r)
            return 0;
        const CRect insets = StandardFrameInsets(window.GetStyle(), window.GetExStyle(), TopLevel(window));
        r->left += insets.left;
        r->top += insets.top;
        r->right = std::max(r->left, r->right - insets.right);
        r->bottom = std::max(r->top, r->bottom - insets.bottom);
        // The menu bar lies inside the frame, above the client area.
        if (g_menuBar.height && MayHaveMenuBar(window) && window.m_hWnd)
            r->top = std::min(r->bottom, r->top + g_menuBar.height(window, r->right - r->left));
        return 0;
    }
    case WM_NCHITTEST:
        return DefaultHitTest(window, PointOf(lParam));
    case WM_NCPAINT:
        if (g_frameBridge.drawFrame) {
            // wParam 1 stands for the whole frame, as on the original.
            HRGN clip = wParam == 1 ? nullptr : reinterpret_cast<HRGN>(wParam);
            g_frameBridge.drawFrame(window, nullptr, clip);
        }
        if (g_menuBar.paint && MayHaveMenuBar(window) && window.m_hWnd)
            g_menuBar.paint(window, nullptr);
        return 0;
    case WM_NCMOUSEMOVE:
        if (wParam == HTMENU && g_menuBar.hover)
            g_menuBar.hover(window, PointOf(lParam));
        return 0;
    case WM_NCLBUTTONDOWN:
        g_altAlone = false;
        if (wParam == HTMENU)
            window.SendMessage(WM_SYSCOMMAND, SC_MOUSEMENU, lParam);
        return 0;
    case WM_SYSCOMMAND:
        return DefaultSysCommand(window, wParam, lParam);
    case WM_KEYDOWN:
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        g_altAlone = false;
        return 0;
    case WM_SYSKEYDOWN:
        // A held Alt repeats; any other key makes it a chord.
        if (wParam != VK_MENU || !(lParam & (1 << 30)))
            g_altAlone = wParam == VK_MENU;
        return 0;
    case WM_SYSKEYUP: {
        const bool alt = wParam == VK_MENU && g_altAlone;
        const bool f10 = wParam == VK_F10 && GetKeyState(VK_SHIFT) >= 0 && GetKeyState(VK_CONTROL) >= 0;
        g_altAlone = false;
        if (alt || f10) {
            CWnd* top = TopLevelOf(&window);
            if (top && top->m_hWnd)
                top->SendMessage(WM_SYSCOMMAND, SC_KEYMENU, 0);
        }
        return 0;
    }
    case WM_SYSCHAR:
        // Alt with a letter: the menu bar's item of that mnemonic.
        if (wParam > ' ') {
            CWnd* top = TopLevelOf(&window);
            if (top && top->m_hWnd)
                top->SendMessage(WM_SYSCOMMAND, SC_KEYMENU, static_cast<LPARAM>(wParam));
        }
        return 0;
    case WM_WINDOWPOSCHANGED: {
        const auto* pos = reinterpret_cast<const WINDOWPOS*>(lParam);
        if (!pos)
            return 0;
        const CRect client = ClientAreaOf(window);
        CPoint at(0, 0);
        window.ClientToScreen(&at);
        if (CWnd* parent = window.GetParent(); parent && (window.GetStyle() & WS_CHILD))
            parent->ScreenToClient(&at);
        if (!(pos->flags & SWP_NOCLIENTMOVE))
            window.SendMessage(WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y)));
        if (window.m_hWnd && !(pos->flags & SWP_NOCLIENTSIZE))
            window.SendMessage(WM_SIZE, 0,
                               MAKELPARAM(static_cast<WORD>(client.Width()), static_cast<WORD>(client.Height())));
        return 0;
    }
    case WM_PRINT: {
        const UINT flags = static_cast<UINT>(lParam);
        auto dc = reinterpret_cast<HDC>(wParam);
        if (!dc || ((flags & PRF_CHECKVISIBLE) && !window.IsWindowVisible()))
            return 0;
        if ((flags & PRF_NONCLIENT) && g_frameBridge.drawFrame)
            g_frameBridge.drawFrame(window, dc, nullptr);
        if ((flags & PRF_NONCLIENT) && g_menuBar.paint && MayHaveMenuBar(window))
            g_menuBar.paint(window, dc);
        if ((flags & (PRF_CLIENT | PRF_ERASEBKGND | PRF_CHILDREN)) && g_frameBridge.printClient)
            g_frameBridge.printClient(window, dc, flags);
        return 0;
    }
    case WM_PRINTCLIENT:
        if (wParam && g_frameBridge.paintInto)
            g_frameBridge.paintInto(window, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_CANCELMODE:
        if (CWnd::GetCapture() == &window)
            CWnd::ReleaseCapture();
        if (g_frameBridge.cancelMode)
            g_frameBridge.cancelMode();
        return 0;
    default:
        return 0;
    }
}

} // namespace vx

void CWnd::RecalcClientArea(const CRect& now, const CRect& old, WINDOWPOS* pos)
{
    const CRect before = m_client;
    NCCALCSIZE_PARAMS params{};
    params.rgrc[0] = now;
    params.rgrc[1] = old;
    CRect oldClient = before;
    oldClient.OffsetRect(old.TopLeft());
    params.rgrc[2] = oldClient;
    params.lppos = pos;
    // A new window is asked with one rectangle, a moving one with the record.
    SendMessage(WM_NCCALCSIZE, pos ? TRUE : FALSE, reinterpret_cast<LPARAM>(&params));
    if (!m_hWnd)
        return;
    CRect client(params.rgrc[0]);
    client.OffsetRect(-now.left, -now.top);
    // The client area stays inside the window, even for a careless answer.
    client.left = std::clamp<LONG>(client.left, 0, now.Width());
    client.top = std::clamp<LONG>(client.top, 0, now.Height());
    client.right = std::clamp<LONG>(client.right, client.left, now.Width());
    client.bottom = std::clamp<LONG>(client.bottom, client.top, now.Height());
    m_client = client;
    if (m_backend && client.TopLeft() != before.TopLeft())
        m_backend->ClientAreaChanged();
}

CPoint CWnd::WindowOrigin() const
{
    if (!m_backend)
        return CPoint();
    CPoint origin = m_backend->Geometry().TopLeft();
    if (m_parent && (m_style & WS_CHILD))
        m_parent->ClientToScreen(&origin);
    return origin;
}

void CWnd::OnWindowPosChanging(WINDOWPOS*)
{
    Default();
}

void CWnd::OnWindowPosChanged(WINDOWPOS*)
{
    Default();
}

void CWnd::OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS*)
{
    Default();
}

void CWnd::OnNcPaint()
{
    Default();
}

LRESULT CWnd::OnNcHitTest(CPoint)
{
    return Default();
}

void CWnd::OnNcMouseMove(UINT, CPoint)
{
    Default();
}

void CWnd::OnNcLButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnNcLButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnNcLButtonDblClk(UINT, CPoint)
{
    Default();
}

void CWnd::OnNcRButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnNcRButtonUp(UINT, CPoint)
{
    Default();
}
