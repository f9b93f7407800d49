#include "ui/bars/cdockcontext.h"

#include "platform/windows/winuser.h"
#include "ui/bars/ccontrolbar.h"
#include "ui/bars/cdockbar.h"

#include <cstdlib>

namespace {

// A drag shorter than this is a click.
constexpr int kDragThreshold = 4;
// How far outside a side's dock bar a drop still docks there.
constexpr int kDockBand = 16;

} // namespace

CDockContext::CDockContext(CControlBar* bar) : m_pBar(bar) {}

void CDockContext::StartDrag(CPoint screen)
{
    m_tracking = true;
    m_ptStart = screen;
    m_pBar->GetWindowRect(&m_rectStart);
    m_pBar->SetCapture();
}

CDockBar* CDockContext::DockBarAt(CPoint screen) const
{
    CFrameWnd* frame = m_pBar->GetDockingFrame();
    if (!frame)
        return nullptr;
    CRect client;
    frame->GetClientRect(&client);
    frame->ClientToScreen(&client);
    if (!client.PtInRect(screen))
        return nullptr;
    static const UINT order[] = {AFX_IDW_DOCKBAR_TOP, AFX_IDW_DOCKBAR_BOTTOM, AFX_IDW_DOCKBAR_LEFT,
                                 AFX_IDW_DOCKBAR_RIGHT};
    for (UINT id : order) {
        auto* dock = dynamic_cast<CDockBar*>(frame->GetDlgItem(static_cast<int>(id)));
        if (!dock || !(dock->GetBarStyle() & m_pBar->m_dwDockStyle & CBRS_ALIGN_ANY))
            continue;
        CRect band;
        dock->GetWindowRect(&band);
        // An empty side still takes bars along the frame's edge.
        switch (id) {
        case AFX_IDW_DOCKBAR_TOP:
            band = CRect(client.left, band.top - kDockBand, client.right, band.bottom + kDockBand);
            break;
        case AFX_IDW_DOCKBAR_BOTTOM:
            band = CRect(client.left, band.top - kDockBand, client.right, band.bottom + kDockBand);
            break;
        case AFX_IDW_DOCKBAR_LEFT:
            band = CRect(band.left - kDockBand, band.top, band.right + kDockBand, band.bottom);
            break;
        default:
            band = CRect(band.left - kDockBand, band.top, band.right + kDockBand, band.bottom);
            break;
        }
        if (band.PtInRect(screen))
            return dock;
    }
    return nullptr;
}

bool CDockContext::Track(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    result = 0;
    switch (message) {
    case WM_MOUSEMOVE:
        return true;
    case WM_LBUTTONUP: {
        CPoint p(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        m_pBar->ClientToScreen(&p);
        EndDrag(p, (wParam & MK_CONTROL) != 0);
        return true;
    }
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE)
            CancelDrag();
        return true;
    case WM_CANCELMODE:
    case WM_CAPTURECHANGED:
        if (m_tracking && message == WM_CAPTURECHANGED && CWnd::GetCapture() == m_pBar)
            return false;
        CancelDrag();
        return false;
    default:
        return false;
    }
}

void CDockContext::CancelDrag()
{
    if (!m_tracking)
        return;
    m_tracking = false;
    if (CWnd::GetCapture() == m_pBar)
        CWnd::ReleaseCapture();
}

void CDockContext::EndDrag(CPoint screen, bool floatOnly)
{
    CancelDrag();
    const CPoint delta = screen - m_ptStart;
    if (std::abs(delta.x) < kDragThreshold && std::abs(delta.y) < kDragThreshold)
        return;
    CFrameWnd* frame = m_pBar->GetDockingFrame();
    if (!frame)
        return;
    CRect moved = m_rectStart;
    moved.OffsetRect(delta);
    CDockBar* dock = floatOnly ? nullptr : DockBarAt(screen);
    if (dock) {
        frame->DockControlBar(m_pBar, dock->GetDlgCtrlID(), &moved);
    } else {
        frame->FloatControlBar(m_pBar, moved.TopLeft(),
                               (m_pBar->GetBarStyle() & CBRS_ORIENT_VERT) && !m_pBar->IsFloating() ? CBRS_ALIGN_LEFT
                                                                                                   : CBRS_ALIGN_TOP);
    }
}

void CDockContext::ToggleDocking()
{
    CFrameWnd* frame = m_pBar->GetDockingFrame();
    if (!frame)
        return;
    if (m_pBar->IsFloating()) {
        if (m_uMRUDockID)
            frame->DockControlBar(m_pBar, m_uMRUDockID, m_rectMRUDockPos.IsRectEmpty() ? nullptr : &m_rectMRUDockPos);
        else
            frame->DockControlBar(m_pBar);
    } else {
        CPoint at = m_ptMRUFloatPos;
        if (at.x < 0) {
            CRect r;
            m_pBar->GetWindowRect(&r);
            at = r.TopLeft() + CPoint(20, 20);
        }
        frame->FloatControlBar(m_pBar, at);
    }
}
