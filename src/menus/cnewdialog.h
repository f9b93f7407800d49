// CNewDialog: the dialog of the suite's frames, with the menus of the
// library (the frame work completes it: its menu and system menu drawn by
// CNewMenu). For now it is the dialog base CVxDialog under its own name,
// which the resizable dialogs build on.
#pragma once

#include "look/cvxdialog.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CNewDialog : public CVxDialog {
public:
    CNewDialog();
    explicit CNewDialog(UINT templateId, CWnd* parent = nullptr);
    ~CNewDialog() override;
};
