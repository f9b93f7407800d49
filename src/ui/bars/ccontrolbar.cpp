#include "ui/bars/ccontrolbar.h"

#include "platform/windows/sysmetrics.h"
#include "ui/bars/ccmdui.h"
#include "ui/bars/cdockbar.h"
#include "ui/bars/cdockcontext.h"

#include <algorithm>

CControlBar::CControlBar() = default;

CControlBar::~CControlBar()
{
    if (m_pDockBar)
        m_pDockBar->RemoveControlBar(this);
    if (m_pDockSite) {
        auto& bars = m_pDockSite->m_listControlBars;
        bars.erase(std::remove(bars.begin(), bars.end(), this), bars.end());
    }
    if (m_hWnd)
        DestroyWindow();
}

void CControlBar::SetBarStyle(DWORD style)
{
    const DWORD old = m_dwStyle;
    m_dwStyle = style;
    if (old != style) {
        OnBarStyleChange(old, style);
        if (m_hWnd)
            SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
    }
}

void CControlBar::OnBarStyleChange(DWORD, DWORD) {}

void CControlBar::EnableDocking(DWORD dockStyle)
{
    m_dwDockStyle = dockStyle & CBRS_ALIGN_ANY;
    if (m_dwDockStyle && !m_pDockContext)
        m_pDockContext = std::make_unique<CDockContext>(this);
}

BOOL CControlBar::IsFloating() const
{
    return (m_dwStyle & CBRS_FLOATING) != 0;
}

BOOL CControlBar::IsHorzDocked() const
{
    return (m_dwStyle & CBRS_ORIENT_HORZ) != 0 && !IsFloating();
}

BOOL CControlBar::IsVertDocked() const
{
    return (m_dwStyle & CBRS_ORIENT_VERT) != 0 && !IsFloating();
}

CFrameWnd* CControlBar::GetDockingFrame() const
{
    if (m_pDockSite)
        return m_pDockSite;
    for (CWnd* w = GetParent(); w; w = w->GetParent()) {
        if (auto* frame = dynamic_cast<CFrameWnd*>(w))
            return frame;
    }
    return nullptr;
}

CWnd* CControlBar::Owner() const
{
    if (CFrameWnd* frame = GetDockingFrame())
        return frame;
    return GetParent();
}

void CControlBar::SetBorders(int left, int top, int right, int bottom)
{
    m_cxLeftBorder = left;
    m_cyTopBorder = top;
    m_cxRightBorder = right;
    m_cyBottomBorder = bottom;
}

CRect CControlBar::GetBorders() const
{
    return CRect(m_cxLeftBorder, m_cyTopBorder, m_cxRightBorder, m_cyBottomBorder);
}

void CControlBar::CalcInsideRect(CRect& rect, BOOL horz) const
{
    const DWORD style = m_dwStyle;
    if (style & CBRS_BORDER_LEFT)
        rect.left += 2;
    if (style & CBRS_BORDER_TOP)
        rect.top += 2;
    if (style & CBRS_BORDER_RIGHT)
        rect.right -= 2;
    if (style & CBRS_BORDER_BOTTOM)
        rect.bottom -= 2;
    // The gripper sits across the start of the bar: at its left on a
    // horizontal bar, along its top on a vertical one.
    const bool gripper = (style & CBRS_GRIPPER) && !(style & CBRS_FLOATING);
    if (horz) {
        rect.left += m_cxLeftBorder + (gripper ? 6 : 0);
        rect.top += m_cyTopBorder;
        rect.right -= m_cxRightBorder;
        rect.bottom -= m_cyBottomBorder;
    } else {
        rect.left += m_cyTopBorder;
        rect.top += m_cxLeftBorder + (gripper ? 6 : 0);
        rect.right -= m_cyBottomBorder;
        rect.bottom -= m_cxRightBorder;
    }
}

CSize CControlBar::CalcFixedLayout(BOOL stretch, BOOL horz)
{
    CSize size(0, 0);
    if (stretch) {
        if (horz)
            size.cx = 32767;
        else
            size.cy = 32767;
    }
    CRect r(0, 0, 0, 0);
    CalcInsideRect(r, horz);
    size.cx += std::max<LONG>(0, -r.Width());
    size.cy += std::max<LONG>(0, -r.Height());
    return size;
}

CSize CControlBar::CalcDynamicLayout(int, DWORD mode)
{
    return CalcFixedLayout((mode & LM_STRETCH) != 0, (mode & LM_HORZ) != 0);
}

void CControlBar::OnUpdateCmdUI(CFrameWnd*, BOOL) {}

void CControlBar::DoPaint(CDC*) {}

void CControlBar::DrawBorders(CDC* dc, CRect& rect)
{
    const DWORD style = m_dwStyle;
    if (!(style & CBRS_BORDER_ANY))
        return;
    const COLORREF hilite = GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF shadow = GetSysColor(COLOR_BTNSHADOW);
    if (style & CBRS_BORDER_TOP) {
        dc->FillSolidRect(rect.left, rect.top, rect.Width(), 1, shadow);
        dc->FillSolidRect(rect.left, rect.top + 1, rect.Width(), 1, hilite);
        rect.top += 2;
    }
    if (style & CBRS_BORDER_BOTTOM) {
        dc->FillSolidRect(rect.left, rect.bottom - 2, rect.Width(), 1, shadow);
        dc->FillSolidRect(rect.left, rect.bottom - 1, rect.Width(), 1, hilite);
        rect.bottom -= 2;
    }
    if (style & CBRS_BORDER_LEFT) {
        dc->FillSolidRect(rect.left, rect.top, 1, rect.Height(), shadow);
        dc->FillSolidRect(rect.left + 1, rect.top, 1, rect.Height(), hilite);
        rect.left += 2;
    }
    if (style & CBRS_BORDER_RIGHT) {
        dc->FillSolidRect(rect.right - 2, rect.top, 1, rect.Height(), shadow);
        dc->FillSolidRect(rect.right - 1, rect.top, 1, rect.Height(), hilite);
        rect.right -= 2;
    }
}

void CControlBar::DrawGripper(CDC* dc, const CRect& rect)
{
    if (!(m_dwStyle & CBRS_GRIPPER) || (m_dwStyle & CBRS_FLOATING))
        return;
    const COLORREF hilite = GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF shadow = GetSysColor(COLOR_BTNSHADOW);
    if (m_dwStyle & CBRS_ORIENT_HORZ) {
        dc->Draw3dRect(rect.left + m_cxLeftBorder - 2, rect.top + m_cyTopBorder, 3,
                       rect.Height() - m_cyTopBorder - m_cyBottomBorder, hilite, shadow);
        dc->Draw3dRect(rect.left + m_cxLeftBorder + 1, rect.top + m_cyTopBorder, 3,
                       rect.Height() - m_cyTopBorder - m_cyBottomBorder, hilite, shadow);
    } else {
        dc->Draw3dRect(rect.left + m_cyTopBorder, rect.top + m_cxLeftBorder - 2,
                       rect.Width() - m_cyTopBorder - m_cyBottomBorder, 3, hilite, shadow);
        dc->Draw3dRect(rect.left + m_cyTopBorder, rect.top + m_cxLeftBorder + 1,
                       rect.Width() - m_cyTopBorder - m_cyBottomBorder, 3, hilite, shadow);
    }
}

void CControlBar::EraseNonClient()
{
    CWindowDC dc(this);
    CRect window;
    GetWindowRect(&window);
    window.OffsetRect(-window.left, -window.top);
    const CRect client = vx::ClientAreaOf(*this);
    // Paint only what lies outside the client area.
    CRect r = window;
    dc.FillSolidRect(r.left, r.top, r.Width(), client.top, GetSysColor(COLOR_BTNFACE));
    dc.FillSolidRect(r.left, client.bottom, r.Width(), r.bottom - client.bottom, GetSysColor(COLOR_BTNFACE));
    dc.FillSolidRect(r.left, client.top, client.left, client.Height(), GetSysColor(COLOR_BTNFACE));
    dc.FillSolidRect(client.right, client.top, r.right - client.right, client.Height(), GetSysColor(COLOR_BTNFACE));
    DrawBorders(&dc, r);
    DrawGripper(&dc, window);
}

void CControlBar::OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS* params)
{
    CRect r(params->rgrc[0]);
    const CRect outer = r;
    const BOOL horz = (m_dwStyle & CBRS_ORIENT_HORZ) || (m_dwStyle & CBRS_FLOATING);
    CalcInsideRect(r, horz);
    // The inside never leaves the window, whatever the borders.
    r.right = std::max(r.left, r.right);
    r.bottom = std::max(r.top, r.bottom);
    r.IntersectRect(&r, &outer);
    params->rgrc[0] = r;
}

void CControlBar::OnNcPaint()
{
    EraseNonClient();
}

LRESULT CControlBar::OnNcHitTest(CPoint)
{
    // The whole bar is the client's: a press on the gripper reaches the
    // mouse handlers, which start a drag.
    return HTCLIENT;
}

void CControlBar::OnPaint()
{
    CPaintDC dc(this);
    DoPaint(&dc);
}

BOOL CControlBar::OnEraseBkgnd()
{
    return static_cast<BOOL>(Default());
}

BOOL CControlBar::IsDragPoint(CPoint)
{
    return TRUE;
}

void CControlBar::OnLButtonDown(UINT flags, CPoint point)
{
    if (m_pDockContext && m_pDockSite && IsDragPoint(point)) {
        ClientToScreen(&point);
        m_pDockContext->StartDrag(point);
        return;
    }
    CWnd::OnLButtonDown(flags, point);
}

void CControlBar::OnLButtonDblClk(UINT flags, CPoint point)
{
    if (m_pDockContext && m_pDockSite && IsDragPoint(point)) {
        m_pDockContext->ToggleDocking();
        return;
    }
    CWnd::OnLButtonDblClk(flags, point);
}

LRESULT CControlBar::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (m_pDockContext && m_pDockContext->IsTracking()) {
        LRESULT result = 0;
        if (m_pDockContext->Track(message, wParam, lParam, result))
            return result;
    }
    switch (message) {
    case WM_IDLEUPDATECMDUI:
        if (IsWindowVisible()) {
            if (CFrameWnd* frame = GetDockingFrame())
                OnUpdateCmdUI(frame, static_cast<BOOL>(wParam));
        }
        return 0;
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_DRAWITEM:
    case WM_MEASUREITEM: {
        // What the bar's children (and the control behind a tool bar) tell
        // their parent goes on to the bar's owner, the frame.
        if (message == WM_NOTIFY || message == WM_COMMAND) {
            const HWND from = message == WM_NOTIFY ? reinterpret_cast<const NMHDR*>(lParam)->hwndFrom
                                                   : reinterpret_cast<HWND>(lParam);
            LRESULT result = 0;
            if (from && from != m_hWnd && ReflectToChild(FromHandle(from), message, wParam, lParam, &result))
                return result;
        }
        CWnd* owner = Owner();
        if (owner && owner != this)
            return owner->SendMessage(message, wParam, lParam);
        break;
    }
    default:
        break;
    }
    return CWnd::WindowProc(message, wParam, lParam);
}
