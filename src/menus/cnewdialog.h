// CNewDialog: the dialog base of the suite with the library's menus: the
// dialog's menu and its system menu are CNewMenus (owner-drawn in the desk
// design, the menu bar in the mode's colour), and a popup of the dialog's
// menu asks the dialog for each item's state before it opens, as a frame
// does (WM_UPDATECOMMANDUI; an item nobody answers for is disabled).
#pragma once

#include "look/cvxdialog.h"
#include "menus/cnewmenu.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CNewDialog : public CVxDialog {
public:
    CNewDialog();
    explicit CNewDialog(UINT templateId, CWnd* parent = nullptr);
    ~CNewDialog() override;

    BOOL OnInitDialog() override;

    CNewMenu m_DefaultNewMenu;
    CNewMenu m_SystemNewMenu;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // Fills the state of each item of a popup of the dialog's menu.
    void OnInitMenuPopup(CMenu* popup, UINT index, BOOL sysMenu);
};
