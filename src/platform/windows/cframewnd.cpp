#include "platform/windows/cframewnd.h"

namespace vx {
namespace {

FrameDocking& Docking()
{
    static FrameDocking docking;
    return docking;
}

} // namespace

void SetFrameDocking(const FrameDocking& docking)
{
    Docking() = docking;
}

namespace {
MdiClientFactory g_mdiClientFactory = nullptr;
} // namespace

void SetMdiClientFactory(MdiClientFactory factory)
{
    g_mdiClientFactory = factory;
}

void SendMessageToDescendants(CWnd& window, UINT message, WPARAM wParam, LPARAM lParam, BOOL deep)
{
    // A child may go while it is told (a view closing itself): the next one
    // is taken first and the walk stops at a handle that no longer lives.
    for (CWnd* child = window.GetWindow(GW_CHILD); child;) {
        CWnd* next = child->GetWindow(GW_HWNDNEXT);
        HWND handle = child->m_hWnd;
        child->SendMessage(message, wParam, lParam);
        if (deep && CWnd::FromHandle(handle) == child)
            SendMessageToDescendants(*child, message, wParam, lParam, deep);
        child = next;
    }
}

} // namespace vx

CFrameWnd::CFrameWnd() = default;

CFrameWnd::~CFrameWnd()
{
    if (vx::Docking().frameGone)
        vx::Docking().frameGone(*this);
}
CMDIFrameWnd::CMDIFrameWnd() = default;
CMDIFrameWnd::~CMDIFrameWnd() = default;

BOOL CMDIFrameWnd::CreateClient(HMENU windowMenu)
{
    if (!m_hWnd || m_hWndMDIClient || !vx::g_mdiClientFactory)
        return FALSE;
    m_hWndMDIClient = vx::g_mdiClientFactory(*this, windowMenu);
    if (!m_hWndMDIClient)
        return FALSE;
    RecalcLayout();
    return TRUE;
}

void CMDIFrameWnd::MDIActivate(CWnd* child)
{
    if (m_hWndMDIClient && child)
        SendMessageA(m_hWndMDIClient, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(child->m_hWnd), 0);
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive(BOOL* maximized) const
{
    BOOL zoomed = FALSE;
    CMDIChildWnd* child = nullptr;
    if (m_hWndMDIClient)
        child = reinterpret_cast<CMDIChildWnd*>(
            SendMessageA(m_hWndMDIClient, vx::WM_VX_MDIGETACTIVEFRAME, 0, reinterpret_cast<LPARAM>(&zoomed)));
    if (maximized)
        *maximized = child ? zoomed : FALSE;
    return child;
}

void CMDIFrameWnd::MDICascade()
{
    if (m_hWndMDIClient)
        SendMessageA(m_hWndMDIClient, WM_MDICASCADE, 0, 0);
}

void CMDIFrameWnd::MDITile(int type)
{
    if (m_hWndMDIClient)
        SendMessageA(m_hWndMDIClient, WM_MDITILE, static_cast<WPARAM>(type), 0);
}

void CMDIFrameWnd::MDIMaximize(CWnd* child)
{
    if (m_hWndMDIClient && child)
        SendMessageA(m_hWndMDIClient, WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(child->m_hWnd), 0);
}

void CMDIFrameWnd::MDIRestore(CWnd* child)
{
    if (m_hWndMDIClient && child)
        SendMessageA(m_hWndMDIClient, WM_MDIRESTORE, reinterpret_cast<WPARAM>(child->m_hWnd), 0);
}

void CMDIFrameWnd::MDINext(BOOL previous)
{
    if (m_hWndMDIClient)
        SendMessageA(m_hWndMDIClient, WM_MDINEXT, 0, previous);
}

HMENU CMDIFrameWnd::MDISetMenu(HMENU frameMenu, HMENU windowMenu)
{
    if (!m_hWndMDIClient)
        return nullptr;
    return reinterpret_cast<HMENU>(SendMessageA(m_hWndMDIClient, WM_MDISETMENU, reinterpret_cast<WPARAM>(frameMenu),
                                                reinterpret_cast<LPARAM>(windowMenu)));
}

BOOL CMDIFrameWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    // The active child (and its view) sees a menu command first.
    if (!lParam) {
        if (CWnd* active = CWnd::FromHandle(reinterpret_cast<HWND>(
                m_hWndMDIClient ? SendMessageA(m_hWndMDIClient, WM_MDIGETACTIVE, 0, 0) : 0))) {
            if (active->OnCommand(wParam, lParam))
                return TRUE;
        }
    }
    if (m_hWndMDIClient) {
        switch (id) {
        case ID_WINDOW_CASCADE:
            MDICascade();
            return TRUE;
        case ID_WINDOW_TILE_HORZ:
            MDITile(MDITILE_HORIZONTAL);
            return TRUE;
        case ID_WINDOW_TILE_VERT:
            MDITile(MDITILE_VERTICAL);
            return TRUE;
        case ID_WINDOW_ARRANGE:
            SendMessageA(m_hWndMDIClient, WM_MDIICONARRANGE, 0, 0);
            return TRUE;
        default:
            // The client knows which child a Window menu entry stands for.
            if (id >= AFX_IDM_FIRST_MDICHILD && !lParam)
                return SendMessageA(m_hWndMDIClient, WM_COMMAND, wParam, 0) != 0;
            break;
        }
    }
    return CFrameWnd::OnCommand(wParam, lParam);
}

void CFrameWnd::EnableDocking(DWORD dockStyle)
{
    if (vx::Docking().enableDocking)
        vx::Docking().enableDocking(*this, dockStyle);
}

void CFrameWnd::DockControlBar(CControlBar* bar, UINT dockBarId, const RECT* rect)
{
    if (bar && vx::Docking().dockControlBar)
        vx::Docking().dockControlBar(*this, bar, dockBarId, rect);
}

void CFrameWnd::FloatControlBar(CControlBar* bar, CPoint screen, DWORD style)
{
    if (bar && vx::Docking().floatControlBar)
        vx::Docking().floatControlBar(*this, bar, screen, style);
}

void CFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL)
{
    if (bar && vx::Docking().showControlBar)
        vx::Docking().showControlBar(*this, bar, show);
}

void CFrameWnd::RecalcLayout(BOOL)
{
    if (!m_hWnd)
        return;
    CRect client;
    GetClientRect(&client);
    if (vx::Docking().layoutBars)
        client = vx::Docking().layoutBars(*this, client);
    if (CWnd* pane = GetDlgItem(AFX_IDW_PANE_FIRST))
        pane->MoveWindow(&client);
}

void CFrameWnd::SaveBarState(const char* profileName) const
{
    if (vx::Docking().saveBarState)
        vx::Docking().saveBarState(*this, profileName);
}

void CFrameWnd::LoadBarState(const char* profileName)
{
    if (vx::Docking().loadBarState)
        vx::Docking().loadBarState(*this, profileName);
}

void CFrameWnd::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    RecalcLayout();
}
