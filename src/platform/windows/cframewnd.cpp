#include "platform/windows/cframewnd.h"

#include "platform/shell/resources.h"

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
FrameResources g_frameResources;
} // namespace

void SetFrameResources(const FrameResources& resources)
{
    g_frameResources = resources;
}

const FrameResources& GetFrameResources()
{
    return g_frameResources;
}

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

// The framework's CW_USEDEFAULT place, as a rectangle the shim can use.
const CRect CFrameWnd::rectDefault(80, 80, 720, 560);

CFrameWnd::CFrameWnd() = default;

BOOL CFrameWnd::Create(const char* className, const char* title, DWORD style, const RECT& rect, CWnd* parent,
                       const char* menuName, DWORD exStyle, CCreateContext* context)
{
    const vx::FrameResources& res = vx::g_frameResources;
    HMENU menu = nullptr;
    if (menuName) {
        // Only numbered resources exist in the shim's tables.
        const auto id = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(menuName));
        menu = id <= 0xFFFF && res.loadMenu ? res.loadMenu(id) : nullptr;
        if (!menu) {
            PostNcDestroy();
            return FALSE;
        }
    }
    const DWORD windowStyle = style & ~FWS_ADDTOTITLE;
    if (!CreateEx(title ? title : "", className ? className : "AfxFrameOrView", windowStyle, rect, parent, 0,
                  exStyle))
        return FALSE;
    if (menu && res.setMenu)
        res.setMenu(m_hWnd, menu);
    if (context && !CreateView(context))
        return FALSE;
    RecalcLayout();
    return TRUE;
}

BOOL CFrameWnd::CreateView(CCreateContext* context)
{
    if (!context->m_newView)
        return TRUE;
    CWnd* view = context->m_newView();
    if (!view)
        return FALSE;
    if (!view->m_hWnd &&
        !view->CreateEx("", "AfxView", WS_CHILD | WS_VISIBLE, CRect(0, 0, 0, 0), this, AFX_IDW_PANE_FIRST,
                        WS_EX_CLIENTEDGE))
        return FALSE;
    return TRUE;
}

BOOL CFrameWnd::LoadFrame(UINT id, DWORD style, CWnd* parent, CCreateContext* context)
{
    m_nIDHelp = id;
    // The string holds "title\ndocument\n..."; the frame takes the first part.
    CString title;
    if (const char* text = vx::FindString(id)) {
        title = text;
        const int newline = title.Find('\n');
        if (newline >= 0)
            title = title.Left(newline);
    }
    const vx::FrameResources& res = vx::g_frameResources;
    // As the framework's: the resource must have a menu, else no frame.
    if (!Create(nullptr, title, style, rectDefault, parent, reinterpret_cast<const char*>(static_cast<ULONG_PTR>(id)),
                0, context))
        return FALSE;
    if (res.loadIcon) {
        if (HICON icon = res.loadIcon(id)) {
            SendMessage(WM_SETICON, 1, reinterpret_cast<LPARAM>(icon));
            SendMessage(WM_SETICON, 0, reinterpret_cast<LPARAM>(icon));
        }
    }
    if (res.getMenu)
        m_hMenuDefault = res.getMenu(m_hWnd);
    if (res.loadAccelerators)
        m_hAccelTable = res.loadAccelerators(id);
    if (!context)
        vx::SendMessageToDescendants(*this, WM_INITIALUPDATE, 0, 0, TRUE);
    return TRUE;
}

BOOL CFrameWnd::PreTranslateMessage(MSG* msg)
{
    const vx::FrameResources& res = vx::g_frameResources;
    if (m_hAccelTable && res.translateAccelerator && msg->message >= WM_KEYDOWN && msg->message <= WM_KEYLAST &&
        res.translateAccelerator(m_hWnd, m_hAccelTable, msg))
        return TRUE;
    return CWnd::PreTranslateMessage(msg);
}

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
