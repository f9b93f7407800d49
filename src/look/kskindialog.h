// KSkinDialog: a dialog of the skinned look. It opens as CVxDialog does
// (icon, partner, two displays) and owns the library's dialog brush, a
// solid brush made by the first skinned dialog and deleted when the library
// unloads.
#pragma once

#include "ui/dialogs/cdialog.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KSkinDialog : public CDialog {
public:
    KSkinDialog();
    explicit KSkinDialog(UINT templateId, CWnd* parent = nullptr);
    ~KSkinDialog() override;

    BOOL OnInitDialog() override;

    // The shared brush (0x0000FF); null until the first KSkinDialog.
    static HBRUSH m_HgbBrush;

    // The fields of CVxDialog.
    int m_bInit = 1;
    int m_bEnter = 0;
    int m_bEnterOnOk = 0;
    HWND m_hLastFocus = nullptr;
};
