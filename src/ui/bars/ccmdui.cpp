#include "ui/bars/ccmdui.h"

#include <vector>

void CCmdUI::Enable(BOOL)
{
    m_bEnableChanged = TRUE;
}

void CCmdUI::SetCheck(int) {}

void CCmdUI::SetRadio(BOOL on)
{
    SetCheck(on ? 1 : 0);
}

void CCmdUI::SetText(LPCSTR) {}

BOOL CCmdUI::DoUpdate(CWnd* target, BOOL disableIfNoHandler)
{
    m_bEnableChanged = FALSE;
    // The frame first, then its pane (the view), then the main window.
    std::vector<CWnd*> route;
    if (target)
        route.push_back(target);
    if (target) {
        if (CWnd* pane = target->GetDlgItem(AFX_IDW_PANE_FIRST))
            route.push_back(pane);
    }
    if (CWnd* main = AfxGetMainWnd(); main && main != target)
        route.push_back(main);
    BOOL handled = FALSE;
    for (CWnd* w : route) {
        m_bContinueRouting = FALSE;
        if (w->SendMessage(WM_UPDATECOMMANDUI, m_nID, reinterpret_cast<LPARAM>(this))) {
            handled = TRUE;
            if (!m_bContinueRouting)
                break;
        }
    }
    if (!handled && disableIfNoHandler && !m_bEnableChanged)
        Enable(FALSE);
    return handled;
}

namespace vx {

void UpdateCommandUI(CFrameWnd& frame, BOOL disableIfNoHandler)
{
    const std::vector<CWnd*> bars = frame.m_listControlBars;
    for (CWnd* bar : bars) {
        if (bar->m_hWnd && bar->IsWindowVisible())
            bar->SendMessage(WM_IDLEUPDATECMDUI, static_cast<WPARAM>(disableIfNoHandler));
    }
}

} // namespace vx
