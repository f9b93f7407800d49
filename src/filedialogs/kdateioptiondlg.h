// KDateiOptionDlg: the skinned file dialog with two option checks whose
// captions and values the caller sets before DoModal and reads after.
//
//   KDateiOptionDlg dlg(FALSE, "xml", nullptr, OFN_OVERWRITEPROMPT, "XML (*.xml)|*.xml||");
//   dlg.m_strOption1 = "With parts list";
//   dlg.m_nOption1 = 1;
//   if (dlg.DoModal() == IDOK && dlg.m_nOption1) ...
#pragma once

#include "filedialogs/cvxfiledialog.h"
#include "look/kskincheck.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT KDateiOptionDlg : public CVxFileDialog {
public:
    explicit KDateiOptionDlg(BOOL openFileDialog, LPCSTR defExt = nullptr, LPCSTR fileName = nullptr,
                             DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCSTR filter = nullptr,
                             CWnd* parent = nullptr);
    ~KDateiOptionDlg() override;

    KSkinCheck m_chkOption1; // 6817
    KSkinCheck m_chkOption2; // 6816
    // An option without a caption is not offered.
    CString m_strOption1;
    CString m_strOption2;
    int m_nOption1 = 0;
    int m_nOption2 = 0;

protected:
    BOOL OnInitDialog() override;
};
