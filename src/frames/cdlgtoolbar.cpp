#include "frames/cdlgtoolbar.h"

#include "platform/shell/resources.h"
#include "ui/bars/ccmdui.h"

CDlgToolBar::CDlgToolBar() = default;

CDlgToolBar::~CDlgToolBar() = default;

LRESULT CDlgToolBar::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_IDLEUPDATECMDUI)
        return OnIdleUpdateCmdUI(wParam, lParam);
    return CToolBar::WindowProc(message, wParam, lParam);
}

LRESULT CDlgToolBar::OnIdleUpdateCmdUI(WPARAM wParam, LPARAM)
{
    if (!IsWindowVisible())
        return 0;
    // The dialog is the target: it is the bar's parent, not a frame.
    UpdateButtons(GetParent(), static_cast<BOOL>(wParam));
    return 0;
}

LRESULT CDlgToolBar::OnNcHitTest(CPoint screen)
{
    if (!m_bToolTipsReady && m_ToolTip.Create(this)) {
        const int count = static_cast<int>(SendMessage(TB_BUTTONCOUNT));
        for (int i = 0; i < count; ++i) {
            TBBUTTON b{};
            SendMessage(TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&b));
            if (b.fsStyle & TBSTYLE_SEP)
                continue;
            const char* found = vx::FindString(static_cast<UINT>(b.idCommand));
            CString text = found ? found : "";
            const int newline = text.Find('\n');
            if (newline >= 0)
                text = text.Left(newline);
            CRect r;
            SendMessage(TB_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&r));
            m_ToolTip.AddTool(this, text, &r, static_cast<UINT_PTR>(b.idCommand));
        }
        m_ToolTip.SendMessage(TTM_SETDELAYTIME, 0, 500);
        m_ToolTip.SendMessage(TTM_ACTIVATE, TRUE);
        m_bToolTipsReady = 1;
    }
    return CToolBar::OnNcHitTest(screen);
}

void CDlgToolBar::OnMouseMove(UINT flags, CPoint point)
{
    if (m_ToolTip.m_hWnd) {
        MSG msg{m_hWnd, WM_MOUSEMOVE, flags, MAKELPARAM(point.x, point.y), 0, {point.x, point.y}};
        m_ToolTip.SendMessage(TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&msg));
    }
    CToolBar::OnMouseMove(flags, point);
}
