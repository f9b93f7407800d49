#include "platform/windows/cwnd.h"

#include "platform/windows/cwnd_p.h"

#include <algorithm>
#include <vector>

// Relations among windows (children, tab order, hit tests, activation) and
// their geometry.

CWnd* CWnd::GetWindow(UINT command) const
{
    if (command == GW_CHILD) {
        const auto children = vx::ChildrenOf(this);
        return children.empty() ? nullptr : children.front();
    }
    if (command == GW_OWNER)
        return nullptr;
    const auto siblings = vx::ChildrenOf(m_parent);
    const auto it = std::find(siblings.begin(), siblings.end(), this);
    if (it == siblings.end())
        return nullptr;
    switch (command) {
    case GW_HWNDFIRST:
        return siblings.front();
    case GW_HWNDLAST:
        return siblings.back();
    case GW_HWNDNEXT:
        return it + 1 == siblings.end() ? nullptr : *(it + 1);
    case GW_HWNDPREV:
        return it == siblings.begin() ? nullptr : *(it - 1);
    default:
        return nullptr;
    }
}

CWnd* CWnd::GetDlgItem(int id) const
{
    for (CWnd* child : vx::ChildrenOf(this)) {
        if (static_cast<int>(child->m_id) == id)
            return child;
    }
    return nullptr;
}

CWnd* CWnd::GetNextDlgTabItem(CWnd* control, BOOL previous) const
{
    auto children = vx::ChildrenOf(this);
    if (children.empty())
        return nullptr;
    if (previous)
        std::reverse(children.begin(), children.end());
    auto start = std::find(children.begin(), children.end(), control);
    const std::size_t n = children.size();
    const std::size_t first = start == children.end() ? 0 : static_cast<std::size_t>(start - children.begin()) + 1;
    for (std::size_t k = 0; k < n; ++k) {
        CWnd* w = children[(first + k) % n];
        if (w != control && (w->m_style & WS_TABSTOP) && vx::Usable(w))
            return w;
    }
    return nullptr;
}

CWnd* CWnd::GetNextDlgGroupItem(CWnd* control, BOOL previous) const
{
    const auto children = vx::ChildrenOf(this);
    const auto it = std::find(children.begin(), children.end(), control);
    if (it == children.end())
        return nullptr;
    const std::size_t at = static_cast<std::size_t>(it - children.begin());
    std::size_t begin = at;
    while (begin > 0 && !(children[begin]->m_style & WS_GROUP))
        --begin;
    std::size_t end = at + 1;
    while (end < children.size() && !(children[end]->m_style & WS_GROUP))
        ++end;
    const std::size_t n = end - begin;
    for (std::size_t k = 1; k < n; ++k) {
        const std::size_t offset = previous ? (at - begin + n - k) % n : (at - begin + k) % n;
        CWnd* w = children[begin + offset];
        if (vx::Usable(w))
            return w;
    }
    return control;
}

CWnd* CWnd::WindowFromPoint(POINT screen)
{
    // Top-level windows: the active one lies above the others, and of the
    // rest the one made last.
    std::vector<CWnd*> tops;
    for (CWnd* w : vx::ZOrder()) {
        if (!w->m_parent)
            tops.push_back(w);
    }
    std::reverse(tops.begin(), tops.end());
    if (vx::g_active) {
        auto a = std::find(tops.begin(), tops.end(), vx::g_active);
        if (a != tops.end())
            std::rotate(tops.begin(), a, a + 1);
    }
    for (CWnd* top : tops) {
        CRect r;
        top->GetWindowRect(&r);
        if (top->IsWindowVisible() && r.PtInRect(screen))
            return top->IsWindowEnabled() ? vx::Deepest(top, screen) : nullptr;
    }
    return nullptr;
}

CWnd* CWnd::ChildWindowFromPoint(POINT client, UINT) const
{
    CRect area;
    GetClientRect(&area);
    if (!area.PtInRect(client))
        return nullptr;
    for (CWnd* child : vx::ChildrenOf(this)) {
        CRect r;
        child->GetWindowRect(&r);
        ScreenToClient(&r);
        if (r.PtInRect(client))
            return child;
    }
    return const_cast<CWnd*>(this);
}

CWnd* CWnd::GetActiveWindow()
{
    return vx::g_active;
}

CWnd* CWnd::SetActiveWindow()
{
    CWnd* top = vx::TopLevelOf(this);
    CWnd* old = vx::g_active;
    if (old == top || !top->m_hWnd)
        return old;
    vx::g_active = top;
    if (old && old->m_hWnd)
        old->SendMessage(WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(top->m_hWnd));
    if (vx::g_active == top && top->m_hWnd)
        top->SendMessage(WM_ACTIVATE, WA_ACTIVE, reinterpret_cast<LPARAM>(old ? old->m_hWnd : nullptr));
    return old;
}

BOOL CWnd::SetForegroundWindow()
{
    if (!m_hWnd)
        return FALSE;
    SetActiveWindow();
    return TRUE;
}

void CWnd::MoveWindow(int x, int y, int width, int height, BOOL repaint)
{
    SetWindowPos(nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0 : SWP_NOREDRAW));
}

void CWnd::MoveWindow(const RECT* rect, BOOL repaint)
{
    if (rect)
        MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, repaint);
}

BOOL CWnd::SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags)
{
    if (!m_backend || !m_hWnd)
        return FALSE;
    const CRect old = m_backend->Geometry();
    WINDOWPOS pos{};
    pos.hwnd = m_hWnd;
    pos.hwndInsertAfter = insertAfter == &wndBottom ? HWND_BOTTOM : insertAfter ? insertAfter->m_hWnd : HWND_TOP;
    pos.x = (flags & SWP_NOMOVE) ? old.left : x;
    pos.y = (flags & SWP_NOMOVE) ? old.top : y;
    pos.cx = (flags & SWP_NOSIZE) ? old.Width() : cx;
    pos.cy = (flags & SWP_NOSIZE) ? old.Height() : cy;
    pos.flags = flags & ~(SWP_NOCLIENTSIZE | SWP_NOCLIENTMOVE);
    if (!(flags & SWP_NOSENDCHANGING)) {
        // The window may change where it goes and how big it becomes.
        SendMessage(WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&pos));
        if (!m_hWnd || !m_backend)
            return FALSE;
    }
    flags = pos.flags;
    if (!(flags & SWP_NOZORDER)) {
        auto& order = vx::ZOrder();
        auto self = std::find(order.begin(), order.end(), this);
        if (self != order.end()) {
            order.erase(self);
            if (insertAfter == &wndBottom) {
                order.push_back(this);
                m_backend->SetZOrder(false);
            } else if (insertAfter == &wndTop || !insertAfter) {
                order.insert(order.begin(), this);
                m_backend->SetZOrder(true);
            } else {
                auto after = std::find(order.begin(), order.end(), insertAfter);
                order.insert(after == order.end() ? order.end() : after + 1, this);
            }
        }
    }
    CRect now = old;
    if (!(flags & SWP_NOMOVE))
        now.OffsetRect(pos.x - old.left, pos.y - old.top);
    if (!(flags & SWP_NOSIZE)) {
        now.right = now.left + std::max(0, pos.cx);
        now.bottom = now.top + std::max(0, pos.cy);
    }
    const CRect oldArea = m_client;
    if (now != old)
        m_backend->SetGeometry(now);
    if (now.Size() != old.Size() || (flags & SWP_FRAMECHANGED))
        RecalcClientArea(now, old, &pos);
    if (!m_hWnd)
        return FALSE;
    CRect newClient = m_client;
    newClient.OffsetRect(now.TopLeft());
    if (newClient.TopLeft() == oldArea.TopLeft() + old.TopLeft())
        pos.flags |= SWP_NOCLIENTMOVE;
    if (newClient.Size() == oldArea.Size())
        pos.flags |= SWP_NOCLIENTSIZE;
    pos.x = now.left;
    pos.y = now.top;
    pos.cx = now.Width();
    pos.cy = now.Height();
    if (!(flags & SWP_NOREDRAW) && (now.Size() != old.Size() || (flags & SWP_FRAMECHANGED)))
        RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
    if (flags & SWP_SHOWWINDOW)
        ShowWindow(SW_SHOW);
    if (m_hWnd && (flags & SWP_HIDEWINDOW))
        ShowWindow(SW_HIDE);
    if (m_hWnd)
        SendMessage(WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&pos));
    return m_hWnd != nullptr;
}

void CWnd::GetWindowRect(RECT* rect) const
{
    if (!rect)
        return;
    if (!m_backend) {
        *rect = CRect();
        return;
    }
    const CRect r = m_backend->Geometry();
    const CPoint origin = WindowOrigin();
    *rect = CRect(origin, r.Size());
}

void CWnd::GetClientRect(RECT* rect) const
{
    if (rect)
        *rect = m_backend ? CRect(0, 0, m_client.Width(), m_client.Height()) : CRect();
}

void CWnd::ClientToScreen(POINT* point) const
{
    if (!point || !m_backend)
        return;
    const CPoint origin = WindowOrigin() + m_client.TopLeft();
    point->x += origin.x;
    point->y += origin.y;
}

void CWnd::ClientToScreen(RECT* rect) const
{
    if (!rect || !m_backend)
        return;
    const CPoint origin = WindowOrigin() + m_client.TopLeft();
    OffsetRect(rect, origin.x, origin.y);
}

void CWnd::ScreenToClient(POINT* point) const
{
    if (!point || !m_backend)
        return;
    const CPoint origin = WindowOrigin() + m_client.TopLeft();
    point->x -= origin.x;
    point->y -= origin.y;
}

void CWnd::ScreenToClient(RECT* rect) const
{
    if (!rect || !m_backend)
        return;
    const CPoint origin = WindowOrigin() + m_client.TopLeft();
    OffsetRect(rect, -origin.x, -origin.y);
}

void CWnd::Invalidate(BOOL erase)
{
    InvalidateRect(nullptr, erase);
}

void CWnd::InvalidateRect(const RECT* rect, BOOL erase)
{
    if (m_backend)
        m_backend->Invalidate(rect, erase);
}

void CWnd::UpdateWindow()
{
    if (m_backend)
        m_backend->Update();
}

BOOL CWnd::RedrawWindow(const RECT* rect, CRgn* region, UINT flags)
{
    if (!m_backend)
        return FALSE;
    if (flags & RDW_INVALIDATE) {
        InvalidateRect(region ? nullptr : rect, (flags & RDW_ERASE) != 0);
        if (flags & RDW_FRAME)
            m_backend->InvalidateFrame();
    }
    if (flags & RDW_ALLCHILDREN) {
        for (CWnd* child : vx::ChildrenOf(this))
            child->RedrawWindow(nullptr, nullptr, flags & ~RDW_UPDATENOW);
    }
    if (flags & RDW_UPDATENOW)
        UpdateWindow();
    return TRUE;
}

BOOL GetWindowRect(HWND hwnd, RECT* rect)
{
    CWnd* w = CWnd::FromHandle(hwnd);
    if (!w || !rect)
        return FALSE;
    w->GetWindowRect(rect);
    return TRUE;
}

BOOL GetClientRect(HWND hwnd, RECT* rect)
{
    CWnd* w = CWnd::FromHandle(hwnd);
    if (!w || !rect)
        return FALSE;
    w->GetClientRect(rect);
    return TRUE;
}

BOOL ClientToScreen(HWND hwnd, POINT* point)
{
    CWnd* w = CWnd::FromHandle(hwnd);
    if (!w || !point)
        return FALSE;
    w->ClientToScreen(point);
    return TRUE;
}

BOOL ScreenToClient(HWND hwnd, POINT* point)
{
    CWnd* w = CWnd::FromHandle(hwnd);
    if (!w || !point)
        return FALSE;
    w->ScreenToClient(point);
    return TRUE;
}

BOOL SetWindowPos(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags)
{
    CWnd* w = CWnd::FromHandle(hwnd);
    if (!w)
        return FALSE;
    const CWnd* after = insertAfter == HWND_BOTTOM ? &CWnd::wndBottom
                        : insertAfter == HWND_TOP  ? &CWnd::wndTop
                                                   : CWnd::FromHandle(insertAfter);
    return w->SetWindowPos(after, x, y, cx, cy, flags);
}

BOOL MoveWindow(HWND hwnd, int x, int y, int width, int height, BOOL repaint)
{
    CWnd* w = CWnd::FromHandle(hwnd);
    if (!w)
        return FALSE;
    w->MoveWindow(x, y, width, height, repaint);
    return TRUE;
}

HWND WindowFromPoint(POINT screen)
{
    CWnd* w = CWnd::WindowFromPoint(screen);
    return w ? w->m_hWnd : nullptr;
}

namespace {

void CollectDescendants(const CWnd* parent, std::vector<HWND>& into)
{
    for (CWnd* child : vx::ChildrenOf(parent)) {
        into.push_back(child->m_hWnd);
        CollectDescendants(child, into);
    }
}

} // namespace

BOOL EnumChildWindows(HWND parent, WNDENUMPROC proc, LPARAM lParam)
{
    CWnd* window = CWnd::FromHandle(parent);
    if (!window || !proc)
        return FALSE;
    // Listed first: a procedure that hides, moves or destroys windows must
    // not change the walk.
    std::vector<HWND> handles;
    CollectDescendants(window, handles);
    for (HWND h : handles) {
        if (IsWindow(h) && !proc(h, lParam))
            break;
    }
    return TRUE;
}
