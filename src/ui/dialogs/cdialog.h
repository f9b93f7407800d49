// CDialog: the framework's dialog, made from a template held as data.
//
// A dialog finds its template by resource id (dialogtemplate.h), makes its
// window and one control per template item (classes from the control
// registry, or an object the dialog bound to the id), gives them the
// template's font, sends WM_INITDIALOG and puts the focus on the first tab
// stop. DoModal runs the modal loop with the owner disabled and returns the
// EndDialog code; Create makes a modeless dialog.
//
// Keyboard navigation is the platform's (IsDialogMessage, which the
// dialog's PreTranslateMessage calls): Tab and Shift+Tab over WS_TABSTOP
// controls, the arrow keys within a group (moving onto a radio button
// clicks it), Enter to the focused push button, else the default one
// (DM_GETDEFID) or IDOK, Esc to IDCANCEL, Alt+letter (or the letter where the
// focused control takes no characters) to the control whose text has that
// mnemonic. Notifications arrive as WM_COMMAND with the code in the high word
// and reach the handlers the dialog mapped:
//
//   class CNameDlg : public CDialog {
//   public:
//       CNameDlg() : CDialog(IDD_NAME)
//       {
//           MapCommand(BN_CLICKED, IDC_CLEAR, &CNameDlg::OnClear);
//           MapCommand(EN_CHANGE, IDC_NAME, &CNameDlg::OnNameChange);
//       }
//   protected:
//       BOOL OnInitDialog() override { CDialog::OnInitDialog(); SetDlgItemText(IDC_NAME, "X1"); return TRUE; }
//       void OnClear() { SetDlgItemText(IDC_NAME, ""); }
//       void OnNameChange() { GetDlgItem(IDOK)->EnableWindow(GetDlgItemText(IDC_NAME).GetLength() > 0); }
//   };
//   if (CNameDlg().DoModal() == IDOK) ...
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "ui/dialogs/dialogtemplate.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

#include <functional>
#include <memory>

class CDC;

constexpr UINT DM_GETDEFID = WM_USER + 0;
constexpr UINT DM_SETDEFID = WM_USER + 1;
constexpr UINT DM_REPOSITION = WM_USER + 2;
constexpr WORD DC_HASDEFID = 0x534B;
constexpr UINT WM_NEXTDLGCTL = 0x0028;

// What WM_CTLCOLOR... a control sent, for OnCtlColor.
constexpr UINT CTLCOLOR_MSGBOX = 0;
constexpr UINT CTLCOLOR_EDIT = 1;
constexpr UINT CTLCOLOR_LISTBOX = 2;
constexpr UINT CTLCOLOR_BTN = 3;
constexpr UINT CTLCOLOR_DLG = 4;
constexpr UINT CTLCOLOR_SCROLLBAR = 5;
constexpr UINT CTLCOLOR_STATIC = 6;

// The dialog base units of the system font: MAKELONG(horizontal, vertical).
VXBASE_UI_EXPORT LONG GetDialogBaseUnits();

class VXBASE_UI_EXPORT CDialog : public CWnd {
public:
    CDialog();
    explicit CDialog(UINT templateId, CWnd* parent = nullptr);
    ~CDialog() override;

    // Runs the dialog modally; the EndDialog code, or -1 when the dialog
    // could not be made (no template, a template refused) or the application
    // quit meanwhile.
    virtual INT_PTR DoModal();
    // A modeless dialog from the registered template; shown if the template
    // has WS_VISIBLE.
    virtual BOOL Create(UINT templateId, CWnd* parent = nullptr);
    BOOL CreateIndirect(const vx::DialogTemplate& dialogTemplate, CWnd* parent = nullptr);
    // Lets DoModal use this template instead of a registered one.
    BOOL InitModalIndirect(const vx::DialogTemplate& dialogTemplate, CWnd* parent = nullptr);
    // Ends a modal dialog with `result` (a modeless one is hidden).
    void EndDialog(int result);

    virtual BOOL OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();

    // --- focus and the default button ------------------------------------------
    void NextDlgCtrl() const;
    void PrevDlgCtrl() const;
    // Focus to `control`; an edit's text is selected as it is by Tab.
    void GotoDlgCtrl(CWnd* control);
    void SetDefID(UINT id);
    DWORD GetDefID() const;
    // Dialog units to pixels, in the dialog's font.
    void MapDialogRect(LPRECT rect) const;
    // Handles `msg` if it is navigation or a mnemonic for this dialog.
    BOOL IsDialogMessage(LPMSG msg);

    // --- controls by id -------------------------------------------------------
    void SetDlgItemText(int id, LPCSTR text);
    int GetDlgItemText(int id, LPSTR text, int maxCount) const;
    int GetDlgItemText(int id, CString& text) const;
    CString GetDlgItemText(int id) const;
    void SetDlgItemInt(int id, UINT value, BOOL isSigned = TRUE);
    // The number in the control's text; *translated FALSE when there is none.
    UINT GetDlgItemInt(int id, BOOL* translated = nullptr, BOOL isSigned = TRUE) const;
    void CheckDlgButton(int id, UINT check);
    UINT IsDlgButtonChecked(int id) const;
    // Checks `check` and clears the other buttons from `first` to `last`.
    void CheckRadioButton(int first, int last, int check);
    // The checked button from `first` to `last`, or 0.
    int GetCheckedRadioButton(int first, int last) const;
    LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // Makes `control` the window of the template's control `id` when the
    // dialog is made (a control of the dialog's own class). Call before
    // DoModal or Create; the object must outlive the dialog's window.
    void BindDlgItem(int id, CWnd& control);

    BOOL PreTranslateMessage(MSG* msg) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // The template id, the parent, and the result of the last modal run.
    UINT m_nIDHelp = 0;

protected:
    // Message-map entries, made in the constructor of a dialog: the handler
    // runs for WM_COMMAND with `code` (BN_CLICKED, EN_CHANGE, CBN_SELCHANGE...)
    // from control `id`. Menu and accelerator commands have code 0.
    void MapCommand(UINT code, UINT id, std::function<void()> handler);
    template <class Dialog>
    void MapCommand(UINT code, UINT id, void (Dialog::*handler)())
    {
        MapCommand(code, id, [this, handler] { (static_cast<Dialog*>(this)->*handler)(); });
    }
    // One handler for the ids `first` to `last`, told which one sent.
    void MapCommandRange(UINT code, UINT first, UINT last, std::function<void(UINT)> handler);

    // The colours of a control (WM_CTLCOLOR...): null leaves the system's.
    virtual HBRUSH OnCtlColor(CDC* dc, CWnd* control, UINT ctlColor);
    // The limits of the user's sizing (WM_GETMINMAXINFO).
    virtual void OnGetMinMaxInfo(MINMAXINFO* info);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The dialog's own procedure: the default button, WM_CLOSE as Cancel,
    // the background, sizing at the lower right corner of a sizable dialog.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void PostNcDestroy() override;

    UINT m_nIDTemplate = 0;
    CWnd* m_pParentWnd = nullptr;
    int m_nModalResult = -1;

private:
    struct Private;
    BOOL Build(const vx::DialogTemplate& dialogTemplate, CWnd* parent);
    CWnd* ControlOf(CWnd* window) const;
    void ShowDefault(CWnd* focus);
    bool Mnemonic(unsigned char key, CWnd* from);
    std::unique_ptr<Private> d;
};
