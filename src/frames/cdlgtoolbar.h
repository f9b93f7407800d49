// CDlgToolBar: a tool bar inside a dialog. While visible it takes its
// buttons' state from the dialog (WM_UPDATECOMMANDUI, see CCmdUI) whenever
// the program falls idle, and shows a tooltip per button with the text of
// the button's command string up to its first line break.
//
//   m_bar.CreateEx(this, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP);
//   m_bar.LoadToolBar(IDR_DIALOGBAR);
//   m_bar.SendMessage(WM_IDLEUPDATECMDUI, TRUE);
#pragma once

#include "ui/bars/ctoolbar.h"
#include "ui/controls/ctooltipctrl.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CDlgToolBar : public CToolBar {
public:
    CDlgToolBar();
    ~CDlgToolBar() override;

    CToolTipCtrl m_ToolTip;
    BYTE m_bToolTipsReady = 0;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnIdleUpdateCmdUI(WPARAM wParam, LPARAM lParam);
    LRESULT OnNcHitTest(CPoint screen) override;
    void OnMouseMove(UINT flags, CPoint point) override;
};
