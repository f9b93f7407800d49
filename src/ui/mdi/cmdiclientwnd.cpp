#include "ui/mdi/cmdiclientwnd.h"

#include "platform/windows/sysmetrics.h"
#include "ui/controls/controlclass.h"
#include "ui/gdi/cdc.h"
#include "ui/mdi/cmdichildwnd.h"
#include "ui/mdi/cmdiselectwindowdlg.h"
#include "ui/menus/winmenu.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// The Window menu lists this many children; the platform's limit. With
// more, the next id is "&More Windows...".
constexpr int kListed = 9;
// The width of a minimised child.
constexpr int kIconWidth = 160;

// Shown among its siblings: a frame still hidden while it is built places
// and lists its children all the same.
bool Shown(const CWnd* w)
{
    return (w->GetStyle() & WS_VISIBLE) != 0;
}

} // namespace

HWND MakeMdiClient(CMDIFrameWnd& frame, HMENU windowMenu)
{
    auto* client = new CMDIClientWnd;
    client->m_autoDelete = true;
    client->m_windowMenu = windowMenu;
    if (!client->CreateEx("", "MDICLIENT", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                          CRect(0, 0, 0, 0), &frame, AFX_IDW_PANE_FIRST, WS_EX_CLIENTEDGE)) {
        delete client;
        return nullptr;
    }
    return client->m_hWnd;
}

namespace {
const bool g_registered = [] {
    vx::SetMdiClientFactory(&MakeMdiClient);
    return vx::RegisterControlClass("MDICLIENT", [] { return std::unique_ptr<CWnd>(new CMDIClientWnd); });
}();
} // namespace

CMDIClientWnd::CMDIClientWnd() = default;

CMDIClientWnd::~CMDIClientWnd()
{
    if (m_hWnd) {
        m_autoDelete = false;
        DestroyWindow();
    }
}

CMDIClientWnd* CMDIClientWnd::Of(const CMDIFrameWnd* frame)
{
    return frame ? dynamic_cast<CMDIClientWnd*>(CWnd::FromHandle(frame->m_hWndMDIClient)) : nullptr;
}

void CMDIClientWnd::PostNcDestroy()
{
    m_children.clear();
    m_active = nullptr;
    if (CMDIFrameWnd* frame = Frame(); frame && frame->m_hWndMDIClient == m_hWnd)
        frame->m_hWndMDIClient = nullptr;
    if (m_autoDelete)
        delete this;
}

CMDIFrameWnd* CMDIClientWnd::Frame() const
{
    return dynamic_cast<CMDIFrameWnd*>(GetParent());
}

int CMDIClientWnd::CascadeStep()
{
    return GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CXFRAME);
}

CRect CMDIClientWnd::NextCascadeRect()
{
    CRect client;
    GetClientRect(&client);
    const int step = CascadeStep();
    // The platform's default size: three quarters of the client.
    const int width = std::max(client.Width() * 3 / 4, 4 * step);
    const int height = std::max(client.Height() * 3 / 4, 3 * step);
    int offset = m_cascadeNext * step;
    if (offset + height > client.Height() || offset + width > client.Width()) {
        m_cascadeNext = 0;
        offset = 0;
    }
    ++m_cascadeNext;
    return CRect(offset, offset, offset + width, offset + height);
}

CMDIChildWnd* CMDIClientWnd::ChildOf(HWND hwnd) const
{
    for (CMDIChildWnd* c : m_children) {
        if (c->m_hWnd == hwnd)
            return c;
    }
    return nullptr;
}

void CMDIClientWnd::AddChild(CMDIChildWnd* child)
{
    if (std::find(m_children.begin(), m_children.end(), child) == m_children.end())
        m_children.push_back(child);
    // A new child joins a maximised active one maximised, as on the platform.
    const bool zoomed = m_active && m_active->IsZoomed();
    Activate(child);
    if (zoomed)
        Maximize(child);
    UpdateWindowMenu();
}

void CMDIClientWnd::RemoveChild(CMDIChildWnd* child)
{
    auto it = std::find(m_children.begin(), m_children.end(), child);
    if (it == m_children.end())
        return;
    m_children.erase(it);
    if (m_active == child) {
        const bool zoomed = child->IsZoomed();
        m_active = nullptr;
        // The next in z-order takes over.
        CMDIChildWnd* next = nullptr;
        for (CWnd* w = GetWindow(GW_CHILD); w && !next; w = w->GetWindow(GW_HWNDNEXT)) {
            if (w != child && Shown(w))
                next = ChildOf(w->m_hWnd);
        }
        if (next) {
            Activate(next);
            if (zoomed)
                Maximize(next);
        }
    }
    if (m_children.empty()) {
        m_cascadeNext = 0;
        CMDIFrameWnd* frame = Frame();
        if (frame && frame->m_hMenuDefault && m_frameMenu && m_frameMenu != frame->m_hMenuDefault)
            SetMenus(frame->m_hMenuDefault, FindWindowMenu(frame->m_hMenuDefault));
    }
    UpdateBarButtons();
    UpdateWindowMenu();
    UpdateFrameTitle();
}

void CMDIClientWnd::Activate(CMDIChildWnd* child)
{
    if (!child || !child->m_hWnd)
        return;
    CMDIChildWnd* old = m_active;
    child->SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    if (old == child) {
        UpdateWindowMenu();
        return;
    }
    m_active = child;
    // A maximised child hands its state on: the platform keeps one
    // maximised child, the active one.
    if (old && old->IsZoomed()) {
        Maximize(child);
        Restore(old);
    }
    const WPARAM from = old ? reinterpret_cast<WPARAM>(old->m_hWnd) : 0;
    const LPARAM to = reinterpret_cast<LPARAM>(child->m_hWnd);
    if (old && old->m_hWnd)
        old->SendMessage(WM_MDIACTIVATE, from, to);
    child->SendMessage(WM_MDIACTIVATE, from, to);
    // The frame shows the menu of the child's kind, or its own.
    if (CMDIFrameWnd* frame = Frame()) {
        HMENU wanted = child->m_hMenuShared ? child->m_hMenuShared : frame->m_hMenuDefault;
        if (wanted && wanted != m_frameMenu)
            SetMenus(wanted, FindWindowMenu(wanted));
    }
    if (m_hWnd && child->m_hWnd && GetTopLevelParent() == CWnd::GetActiveWindow()) {
        CWnd* focus = CWnd::GetFocus();
        if (!focus || !child->IsChild(focus))
            child->SetFocus();
    }
    UpdateWindowMenu();
    UpdateFrameTitle();
}

std::vector<CMDIChildWnd*> CMDIClientWnd::Arrangeable() const
{
    std::vector<CMDIChildWnd*> out;
    // Bottom of the z-order first, so the active child ends on top.
    std::vector<CWnd*> order;
    for (CWnd* w = GetWindow(GW_CHILD); w; w = w->GetWindow(GW_HWNDNEXT))
        order.push_back(w);
    for (auto it = order.rbegin(); it != order.rend(); ++it) {
        CMDIChildWnd* c = ChildOf((*it)->m_hWnd);
        if (c && Shown(c) && !c->IsIconic())
            out.push_back(c);
    }
    return out;
}

CRect CMDIClientWnd::AreaAboveIcons()
{
    CRect area;
    GetClientRect(&area);
    const std::vector<CMDIChildWnd*> listed = Listed();
    const auto icons = std::count_if(listed.begin(), listed.end(), [](CMDIChildWnd* c) { return c->IsIconic(); });
    if (icons > 0) {
        ArrangeIcons();
        area.bottom = std::max(area.top, IconPlace(static_cast<int>(icons) - 1).top);
    }
    return area;
}

void CMDIClientWnd::Cascade()
{
    if (m_active && m_active->IsZoomed())
        Restore(m_active);
    const std::vector<CMDIChildWnd*> list = Arrangeable();
    const CRect client = AreaAboveIcons();
    const int step = CascadeStep();
    const int n = static_cast<int>(list.size());
    // Each child as large as leaves room for the steps of all of them.
    const int width = std::max(client.Width() - step * (n - 1), 4 * step);
    const int height = std::max(client.Height() - step * (n - 1), 3 * step);
    for (int i = 0; i < n; ++i) {
        list[static_cast<size_t>(i)]->SetWindowPos(&CWnd::wndTop, i * step, i * step, width, height,
                                                   SWP_NOACTIVATE);
    }
    m_cascadeNext = n;
}

void CMDIClientWnd::Tile(UINT how)
{
    if (m_active && m_active->IsZoomed())
        Restore(m_active);
    std::vector<CMDIChildWnd*> list = Arrangeable();
    // The active child takes the first place.
    std::reverse(list.begin(), list.end());
    const int n = static_cast<int>(list.size());
    if (!n)
        return;
    const CRect client = AreaAboveIcons();
    // A grid as square as the count allows: MDITILE_HORIZONTAL stacks the
    // children in rows, MDITILE_VERTICAL sets them side by side.
    const int lines = std::max(1, static_cast<int>(std::sqrt(static_cast<double>(n))));
    const bool horizontal = (how & MDITILE_HORIZONTAL) != 0;
    int index = 0;
    for (int line = 0; line < lines; ++line) {
        // The last lines take the remainder, one more each.
        const int inLine = n / lines + (line >= lines - n % lines ? 1 : 0);
        for (int k = 0; k < inLine; ++k, ++index) {
            CRect r;
            if (horizontal) {
                // Columns of `lines`, each with `inLine` rows.
                r.left = client.Width() * line / lines;
                r.right = client.Width() * (line + 1) / lines;
                r.top = client.Height() * k / inLine;
                r.bottom = client.Height() * (k + 1) / inLine;
            } else {
                r.top = client.Height() * line / lines;
                r.bottom = client.Height() * (line + 1) / lines;
                r.left = client.Width() * k / inLine;
                r.right = client.Width() * (k + 1) / inLine;
            }
            list[static_cast<size_t>(index)]->SetWindowPos(nullptr, r.left, r.top, r.Width(), r.Height(),
                                                           SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
}

void CMDIClientWnd::Maximize(CMDIChildWnd* child)
{
    if (!child || child->IsZoomed())
        return;
    if (!child->IsIconic())
        child->m_restoreRect = child->RectInClient();
    child->ModifyStyle(WS_MINIMIZE, WS_MAXIMIZE);
    CRect client;
    GetClientRect(&client);
    child->SetWindowPos(nullptr, 0, 0, client.Width(), client.Height(), SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    if (child != m_active)
        Activate(child);
    UpdateBarButtons();
    UpdateFrameTitle();
}

void CMDIClientWnd::Restore(CMDIChildWnd* child)
{
    if (!child || !(child->GetStyle() & (WS_MAXIMIZE | WS_MINIMIZE)))
        return;
    child->ModifyStyle(WS_MAXIMIZE | WS_MINIMIZE, 0);
    UpdateBarButtons();
    const CRect& r = child->m_restoreRect;
    child->SetWindowPos(nullptr, r.left, r.top, r.Width(), r.Height(), SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    UpdateFrameTitle();
}

CRect CMDIClientWnd::IconPlace(int index) const
{
    const CSize size(kIconWidth, GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CXFRAME));
    CRect client;
    GetClientRect(&client);
    const int perRow = std::max(1, client.Width() / size.cx);
    const int x = (index % perRow) * size.cx;
    const int y = client.bottom - (index / perRow + 1) * size.cy;
    return CRect(x, y, x + size.cx, y + size.cy);
}

void CMDIClientWnd::Minimize(CMDIChildWnd* child)
{
    if (!child || child->IsIconic())
        return;
    if (!child->IsZoomed())
        child->m_restoreRect = child->RectInClient();
    child->ModifyStyle(WS_MAXIMIZE, WS_MINIMIZE);
    UpdateBarButtons();
    // The first place no other minimised child lies in.
    CRect place;
    for (int index = 0;; ++index) {
        place = IconPlace(index);
        const bool taken = std::any_of(m_children.begin(), m_children.end(), [&](CMDIChildWnd* c) {
            return c != child && c->m_hWnd && Shown(c) && c->IsIconic() && c->RectInClient().TopLeft() == place.TopLeft();
        });
        if (!taken)
            break;
    }
    child->SetWindowPos(nullptr, place.left, place.top, place.Width(), place.Height(),
                        SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    UpdateFrameTitle();
}

void CMDIClientWnd::ArrangeIcons()
{
    int index = 0;
    for (CMDIChildWnd* c : Listed()) {
        if (!c->IsIconic())
            continue;
        const CRect place = IconPlace(index++);
        c->SetWindowPos(nullptr, place.left, place.top, place.Width(), place.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void CMDIClientWnd::Next(bool previous)
{
    if (m_children.size() < 2 || !m_active)
        return;
    // The z-order: "next" is the child under the active one, wrapping; the
    // one left goes to the bottom, so that repeating walks through all.
    std::vector<CMDIChildWnd*> order;
    for (CWnd* w = GetWindow(GW_CHILD); w; w = w->GetWindow(GW_HWNDNEXT)) {
        if (CMDIChildWnd* c = ChildOf(w->m_hWnd); c && Shown(c))
            order.push_back(c);
    }
    if (order.size() < 2)
        return;
    CMDIChildWnd* old = m_active;
    CMDIChildWnd* target = previous ? order.back() : order[1];
    Activate(target);
    if (!previous)
        old->SetWindowPos(&CWnd::wndBottom, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

HMENU CMDIClientWnd::FindWindowMenu(HMENU menu)
{
    // The popup with the Window commands; else the frame's current one.
    for (int i = 0; menu && i < GetMenuItemCount(menu); ++i) {
        HMENU popup = GetSubMenu(menu, i);
        for (int k = 0; popup && k < GetMenuItemCount(popup); ++k) {
            const UINT id = GetMenuItemID(popup, k);
            if (id >= ID_WINDOW_NEW && id <= ID_WINDOW_TILE_VERT)
                return popup;
        }
    }
    return nullptr;
}

HMENU CMDIClientWnd::SetMenus(HMENU frameMenu, HMENU windowMenu)
{
    CMDIFrameWnd* frame = Frame();
    HMENU old = m_frameMenu ? m_frameMenu : (frame ? ::GetMenu(frame->m_hWnd) : nullptr);
    if (windowMenu && windowMenu != m_windowMenu) {
        // The old Window menu loses its list.
        HMENU keep = m_windowMenu;
        m_windowMenu = nullptr;
        if (keep && IsMenu(keep)) {
            for (int i = GetMenuItemCount(keep) - 1; i >= 0; --i) {
                const UINT id = GetMenuItemID(keep, i);
                if (id >= AFX_IDM_FIRST_MDICHILD && id != 0xFFFFFFFF)
                    DeleteMenu(keep, static_cast<UINT>(i), MF_BYPOSITION);
            }
            const int count = GetMenuItemCount(keep);
            if (count > 0 && (GetMenuState(keep, static_cast<UINT>(count - 1), MF_BYPOSITION) & MF_SEPARATOR))
                DeleteMenu(keep, static_cast<UINT>(count - 1), MF_BYPOSITION);
        }
        m_windowMenu = windowMenu;
    }
    if (frameMenu && frame) {
        m_frameMenu = frameMenu;
        ::SetMenu(frame->m_hWnd, frameMenu);
        // A menu bar hooked on the frame takes the menu from here.
        frame->SendMessage(WM_MDISETMENU, reinterpret_cast<WPARAM>(frameMenu), reinterpret_cast<LPARAM>(windowMenu));
        ::DrawMenuBar(frame->m_hWnd);
    }
    UpdateBarButtons();
    UpdateWindowMenu();
    return old;
}

void CMDIClientWnd::UpdateWindowMenu()
{
    HMENU menu = m_windowMenu;
    if (!menu || !IsMenu(menu))
        return;
    bool listed = false;
    for (int i = GetMenuItemCount(menu) - 1; i >= 0; --i) {
        const UINT id = GetMenuItemID(menu, i);
        if (id >= AFX_IDM_FIRST_MDICHILD && id < AFX_IDM_FIRST_MDICHILD + 0x100) {
            DeleteMenu(menu, static_cast<UINT>(i), MF_BYPOSITION);
            listed = true;
        }
    }
    // The separator before the list came with it.
    const int count = GetMenuItemCount(menu);
    if (listed && count > 0 && (GetMenuState(menu, static_cast<UINT>(count - 1), MF_BYPOSITION) & MF_SEPARATOR))
        DeleteMenu(menu, static_cast<UINT>(count - 1), MF_BYPOSITION);
    const std::vector<CMDIChildWnd*> shown = Listed();
    if (shown.empty())
        return;
    if (GetMenuItemCount(menu) > 0)
        AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    for (size_t i = 0; i < shown.size() && i < static_cast<size_t>(kListed); ++i) {
        CString text;
        text.Format("&%d %s", static_cast<int>(i + 1), shown[i]->GetWindowTextString().GetString());
        AppendMenuA(menu, MF_STRING | (shown[i] == m_active ? MF_CHECKED : 0),
                    AFX_IDM_FIRST_MDICHILD + static_cast<UINT>(i), text);
    }
    if (shown.size() > static_cast<size_t>(kListed))
        AppendMenuA(menu, MF_STRING, AFX_IDM_FIRST_MDICHILD + kListed, "&More Windows...");
}

std::vector<CMDIChildWnd*> CMDIClientWnd::Listed() const
{
    std::vector<CMDIChildWnd*> out;
    for (CMDIChildWnd* c : m_children) {
        if (c->m_hWnd && Shown(c))
            out.push_back(c);
    }
    return out;
}

void CMDIClientWnd::Pick(CMDIChildWnd* child)
{
    if (child->IsIconic())
        Restore(child);
    Activate(child);
}

void CMDIClientWnd::MoreWindows()
{
    const std::vector<CMDIChildWnd*> shown = Listed();
    std::vector<HWND> handles;
    std::vector<CString> titles;
    int selected = -1;
    for (CMDIChildWnd* c : shown) {
        if (c == m_active)
            selected = static_cast<int>(handles.size());
        handles.push_back(c->m_hWnd);
        titles.push_back(c->GetWindowTextString());
    }
    CMDISelectWindowDlg dlg(std::move(titles), selected, Frame());
    const HWND self = m_hWnd;
    if (dlg.DoModal() != IDOK || dlg.Chosen() < 0)
        return;
    // The dialog ran a message loop: the client or the child may be gone.
    if (!::IsWindow(self))
        return;
    if (CMDIChildWnd* c = ChildOf(handles[static_cast<size_t>(dlg.Chosen())]))
        Pick(c);
}

void CMDIClientWnd::ChildTitleChanged(CMDIChildWnd*)
{
    UpdateWindowMenu();
    UpdateFrameTitle();
}

void CMDIClientWnd::UpdateFrameTitle()
{
    CMDIFrameWnd* frame = Frame();
    if (!frame || !frame->m_hWnd)
        return;
    if (m_active && m_active->m_hWnd && m_active->IsZoomed()) {
        // A maximised child has no caption of its own: its title joins the
        // frame's, "Frame - [Child]".
        if (!m_titleSaved) {
            frame->GetWindowText(m_frameTitle);
            m_titleSaved = true;
        }
        CString title;
        title.Format("%s - [%s]", m_frameTitle.GetString(), m_active->GetWindowTextString().GetString());
        frame->SetWindowText(title);
    } else if (m_titleSaved) {
        m_titleSaved = false;
        frame->SetWindowText(m_frameTitle);
    }
}

LRESULT CMDIClientWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MDIACTIVATE:
        Activate(ChildOf(reinterpret_cast<HWND>(wParam)));
        return 0;
    case WM_MDIGETACTIVE:
        if (lParam)
            *reinterpret_cast<BOOL*>(lParam) = m_active && m_active->IsZoomed();
        return m_active ? reinterpret_cast<LRESULT>(m_active->m_hWnd) : 0;
    case vx::WM_VX_MDIGETACTIVEFRAME:
        if (lParam)
            *reinterpret_cast<BOOL*>(lParam) = m_active && m_active->IsZoomed();
        return reinterpret_cast<LRESULT>(m_active);
    case WM_MDIDESTROY:
        if (CMDIChildWnd* c = ChildOf(reinterpret_cast<HWND>(wParam)))
            c->DestroyWindow();
        return 0;
    case WM_MDICASCADE:
        Cascade();
        return TRUE;
    case WM_MDITILE:
        Tile(static_cast<UINT>(wParam));
        return TRUE;
    case WM_MDIICONARRANGE:
        ArrangeIcons();
        return 0;
    case WM_MDIMAXIMIZE:
        Maximize(ChildOf(reinterpret_cast<HWND>(wParam)));
        return 0;
    case WM_MDIRESTORE:
        Restore(ChildOf(reinterpret_cast<HWND>(wParam)));
        return 0;
    case WM_MDINEXT:
        Next(lParam != 0);
        return 0;
    case WM_MDISETMENU:
        return reinterpret_cast<LRESULT>(SetMenus(reinterpret_cast<HMENU>(wParam), reinterpret_cast<HMENU>(lParam)));
    case WM_MDIREFRESHMENU:
        UpdateWindowMenu();
        return reinterpret_cast<LRESULT>(m_frameMenu);
    case WM_COMMAND: {
        const UINT id = LOWORD(wParam);
        if (id == AFX_IDM_FIRST_MDICHILD + kListed && Listed().size() > static_cast<size_t>(kListed)) {
            MoreWindows();
            return TRUE;
        }
        if (id >= AFX_IDM_FIRST_MDICHILD && id < AFX_IDM_FIRST_MDICHILD + kListed) {
            const std::vector<CMDIChildWnd*> shown = Listed();
            const size_t n = id - AFX_IDM_FIRST_MDICHILD;
            if (n < shown.size()) {
                Pick(shown[n]);
                return TRUE;
            }
        }
        return FALSE;
    }
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}

BOOL CMDIClientWnd::OnEraseBkgnd()
{
    return TRUE;
}

void CMDIClientWnd::OnPaint()
{
    CPaintDC dc(this);
    CRect r;
    GetClientRect(&r);
    dc.FillSolidRect(&r, GetSysColor(COLOR_APPWORKSPACE));
}

void CMDIClientWnd::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    // The maximised child fills the client.
    for (CMDIChildWnd* c : m_children) {
        if (c->m_hWnd && c->IsZoomed())
            c->SetWindowPos(nullptr, 0, 0, cx, cy, SWP_NOZORDER | SWP_NOACTIVATE);
    }
}
