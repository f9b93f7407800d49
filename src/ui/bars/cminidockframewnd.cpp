#include "ui/bars/cminidockframewnd.h"

#include "platform/windows/sysmetrics.h"
#include "ui/bars/cdockcontext.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"

CMiniDockFrameWnd::CMiniDockFrameWnd() = default;

CMiniDockFrameWnd::~CMiniDockFrameWnd()
{
    if (m_hWnd)
        DestroyWindow();
}

BOOL CMiniDockFrameWnd::Create(CWnd* parent, DWORD barStyle)
{
    if (!CreateEx("", "AfxMiniFrame", WS_POPUP | WS_CLIPCHILDREN, CRect(0, 0, 40, 40), parent, 0,
                  WS_EX_TOOLWINDOW))
        return FALSE;
    m_wndDockBar.m_pDockSite = dynamic_cast<CFrameWnd*>(parent);
    return m_wndDockBar.Create(this, (barStyle & CBRS_ALIGN_ANY) ? (barStyle & CBRS_ALIGN_ANY) : CBRS_ALIGN_TOP,
                               AFX_IDW_DOCKBAR_FLOAT);
}

void CMiniDockFrameWnd::RecalcLayout(BOOL)
{
    if (!m_hWnd)
        return;
    const CSize inner = m_wndDockBar.Layout(0, true);
    CRect r;
    GetWindowRect(&r);
    const int width = inner.cx + 2 * kBorder;
    const int height = inner.cy + 2 * kBorder + kCaption;
    if (CControlBar* bar = m_wndDockBar.FloatingBar()) {
        CString title;
        bar->GetWindowText(title);
        SetWindowText(title);
    }
    if (r.Width() != width || r.Height() != height)
        SetWindowPos(nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    CRect client;
    GetClientRect(&client);
    m_wndDockBar.MoveWindow(&client);
    SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

void CMiniDockFrameWnd::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    if (m_wndDockBar.m_hWnd) {
        CRect client;
        GetClientRect(&client);
        m_wndDockBar.MoveWindow(&client);
    }
}

void CMiniDockFrameWnd::OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS* params)
{
    CRect r(params->rgrc[0]);
    r.DeflateRect(kBorder, kBorder);
    r.top += kCaption;
    if (r.bottom < r.top)
        r.bottom = r.top;
    params->rgrc[0] = r;
}

CRect CMiniDockFrameWnd::CloseBox() const
{
    CRect r;
    GetWindowRect(&r);
    const int right = r.Width() - kBorder - 1;
    return CRect(right - kCaption + 3, kBorder + 2, right - 1, kBorder + kCaption - 2);
}

void CMiniDockFrameWnd::OnNcPaint()
{
    CWindowDC dc(this);
    CRect r;
    GetWindowRect(&r);
    r.OffsetRect(-r.left, -r.top);
    dc.Draw3dRect(&r, GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_3DDKSHADOW));
    CRect inner = r;
    inner.DeflateRect(1, 1);
    dc.Draw3dRect(&inner, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
    CRect caption(kBorder, kBorder, r.right - kBorder, kBorder + kCaption);
    dc.FillSolidRect(&caption, GetSysColor(COLOR_ACTIVECAPTION));
    CString title;
    GetWindowText(title);
    CFont font;
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    font.CreateFontIndirect(&metrics.lfSmCaptionFont);
    CFont* old = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(COLOR_CAPTIONTEXT));
    CRect text = caption;
    text.left += 3;
    text.right = CloseBox().left - 2;
    dc.DrawText(title, &text, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    dc.SelectObject(old);
    // The close box: a button with a cross.
    CRect box = CloseBox();
    dc.FillSolidRect(&box, GetSysColor(COLOR_BTNFACE));
    dc.Draw3dRect(&box, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_3DDKSHADOW));
    CPen pen(PS_SOLID, 1, GetSysColor(COLOR_BTNTEXT));
    CPen* oldPen = dc.SelectObject(&pen);
    for (int d = 0; d < 2; ++d) {
        dc.MoveTo(box.left + 3 + d, box.top + 3);
        dc.LineTo(box.right - 3 + d, box.bottom - 3);
        dc.MoveTo(box.right - 4 + d, box.top + 3);
        dc.LineTo(box.left + 2 + d, box.bottom - 3);
    }
    dc.SelectObject(oldPen);
}

LRESULT CMiniDockFrameWnd::OnNcHitTest(CPoint screen)
{
    CRect r;
    GetWindowRect(&r);
    if (!r.PtInRect(screen))
        return HTNOWHERE;
    const CPoint at = screen - r.TopLeft();
    if (CloseBox().PtInRect(at))
        return HTCLOSE;
    if (at.y >= kBorder && at.y < kBorder + kCaption && at.x >= kBorder && at.x < r.Width() - kBorder)
        return HTCAPTION;
    const CRect client = vx::ClientAreaOf(*this);
    return client.PtInRect(at) ? HTCLIENT : HTBORDER;
}

void CMiniDockFrameWnd::OnNcLButtonDown(UINT hitTest, CPoint screen)
{
    CControlBar* bar = m_wndDockBar.FloatingBar();
    if (hitTest == HTCLOSE && bar) {
        if (CFrameWnd* frame = bar->GetDockingFrame())
            frame->ShowControlBar(bar, FALSE, FALSE);
        return;
    }
    if (hitTest == HTCAPTION && bar && bar->m_pDockContext) {
        bar->m_pDockContext->StartDrag(screen);
        return;
    }
    CFrameWnd::OnNcLButtonDown(hitTest, screen);
}

void CMiniDockFrameWnd::OnNcLButtonDblClk(UINT hitTest, CPoint screen)
{
    CControlBar* bar = m_wndDockBar.FloatingBar();
    if (hitTest == HTCAPTION && bar && bar->m_pDockContext) {
        bar->m_pDockContext->ToggleDocking();
        return;
    }
    CFrameWnd::OnNcLButtonDblClk(hitTest, screen);
}

void CMiniDockFrameWnd::OnClose()
{
    // Closing a floating bar hides it; it comes back where it was.
    if (CControlBar* bar = m_wndDockBar.FloatingBar()) {
        if (CFrameWnd* frame = bar->GetDockingFrame()) {
            frame->ShowControlBar(bar, FALSE, FALSE);
            return;
        }
    }
    ShowWindow(SW_HIDE);
}
