// CVxFileDialog: the open and save dialog with the skinned look. The
// system's OK and Cancel are hidden and two skin buttons stand in their
// place, following the frame when the user resizes it.
//
//   CVxFileDialog dlg(TRUE, "eld", nullptr, OFN_HIDEREADONLY, "Drawings (*.eld)|*.eld||");
//   if (dlg.DoModal() == IDOK)
//       Open(dlg.GetPathName());
//
// With m_nMode 1 a drive typed alone ("C:\") ends the dialog as Cancel
// with the drive ("C:") in the file buffer and m_nMode 2, so that a caller
// can let the user change drives.
#pragma once

#include "look/kskinbutton.h"
#include "platform/framework/rect.h"
#include "ui/dialogs/cfiledialog.h"
#include "vxbase_ui_export.h"

namespace vx {

// The child template of the skinned dialog and its buttons (OK, Cancel).
constexpr UINT kVxFileDialogTemplate = 6806;
constexpr int kSkinOkId = 6807;
constexpr int kSkinCancelId = 6808;
// How often the skin buttons look for a moved frame (timer 1), in ms.
constexpr UINT kSkinFollowMs = 20;

// Hides the frame's OK and Cancel and keeps their window rectangles, each
// with its left edge 7 further left (OK only the first time).
VXBASE_UI_EXPORT void HideSystemButtons(CWnd* frame, CRect& okRect, CRect& cancelRect);

} // namespace vx

class VXBASE_UI_EXPORT CVxFileDialog : public CFileDialog {
public:
    explicit CVxFileDialog(BOOL openFileDialog, LPCSTR defExt = nullptr, LPCSTR fileName = nullptr,
                           DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCSTR filter = nullptr,
                           CWnd* parent = nullptr);
    ~CVxFileDialog() override;

    // Moves the skin buttons by (x, y) from where they stand by default.
    void SetButtonOffset(int x, int y);
    // Runs with the cursor clip lifted.
    INT_PTR DoModal() override;

    // The program that opens files of extension `ext` (without the dot); ""
    // when no program takes them.
    static CString GetFileExtShell(const char* ext);
    // The enumerator of the frame's children that hides OK and Cancel;
    // `self` is the dialog.
    static BOOL XEnumChildProc(HWND hwnd, LPARAM self);

    KSkinButton m_btnCancel; // 6808
    KSkinButton m_btnOk;     // 6807
    int m_nOffsetX = 0;
    int m_nOffsetY = -42;
    int m_nState = 0;
    CRect m_rcLastFrame;
    CRect m_rcOk;
    CRect m_rcCancel;
    int m_nMode = 0;

protected:
    BOOL OnInitDialog() override;
    void OnInitDone() override;
    void OnTimer(UINT_PTR id) override;
    // The skin buttons' commands.
    virtual void OnOK2();
    virtual void OnCancel2();
    // Moves the skin buttons when the frame's rectangle changed; true then.
    bool FollowFrame(int okTop, int cancelTop);
};
