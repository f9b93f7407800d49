// KDateiVorschauDlg: the open dialog for page files, with the drawing of
// the selected file in a preview window at its right, a read-only check and
// the page-limit test. The last folder chosen is remembered for the process.
//
//   KDateiVorschauDlg dlg(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, "Pages (*.*)|*.*||");
//   if (dlg.DoModal() == IDOK)
//       OpenPage(dlg.GetPathName());
#pragma once

#include "filedialogs/cvxfiledialog.h"
#include "filedialogs/kvorschauwnd.h"
#include "look/kskinbutton.h"
#include "look/kskincheck.h"
#include "ui/dialogs/cfiledialog.h"
#include "vxbase_ui_export.h"

namespace vx {

constexpr UINT kVorschauDlgTemplate = 6813;
constexpr int kVorschauCheckId = 6816; // the preview's check
constexpr int kReadOnlyCheckId = 6817; // the read-only check
// The message by which the dialog asks itself for a new preview.
constexpr UINT kVorschauBildUpdate = 0x416;

} // namespace vx

class VXBASE_UI_EXPORT KDateiVorschauDlg : public CFileDialog {
public:
    explicit KDateiVorschauDlg(BOOL openFileDialog, LPCSTR defExt = nullptr, LPCSTR fileName = nullptr,
                               DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCSTR filter = nullptr,
                               CWnd* parent = nullptr);
    ~KDateiVorschauDlg() override;

    // Starts in the last folder when the caller named none, and remembers
    // the chosen file's folder; runs with the cursor clip lifted.
    INT_PTR DoModal() override;

    KSkinCheck m_chkReadOnly;
    KSkinButton m_btnCancel; // 6808
    KSkinButton m_btnOk;     // 6807
    KVorschauWnd::KOnOffButton m_btnVorschau;
    KVorschauWnd m_Vorschau;
    int m_bVorschau = 1;   // the preview is allowed
    int m_bReadOnly = 0;   // the read-only check is offered
    int m_bBlattLimit = 1; // only pages may be chosen

    // The folder the last preview dialog ended in ("" at first).
    static CString s_LastDir;
    // The preview dialog running now, or null.
    static KDateiVorschauDlg* s_pRunning;

protected:
    BOOL OnInitDialog() override;
    void OnInitDone() override;
    void OnTimer(UINT_PTR id) override;
    void OnPaint() override;
    void OnFileNameChange() override;
    BOOL OnFileNameOK() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The handler of kVorschauBildUpdate: the preview of the selected file.
    void BildUpdate();
    void OnDatVorVorschauOk();
    void OnDatvorReadonly();
    virtual void OnOK2();
    virtual void OnCancel2();

private:
    CRect m_rcLastFrame;
    CRect m_rcOk;
    CRect m_rcCancel;
};
