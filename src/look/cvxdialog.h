// CVxDialog: the dialog base of the suite, which places its dialogs on one
// or two displays and remembers how the dialog was left (Enter, the focus).
//
// The display state is static and shared by every dialog: whether the
// second display is handled, the first display's size, the virtual desktop,
// the rectangle in which dialogs are wanted and whether dialogs follow that
// rectangle ("right mouse") rather than the main window. The library sets
// it when it loads (StartDualMonitor); a host may set it too. Each Set
// returns the old value.
//
//   CVxDialog::Set2DisplayEnable(1);
//   RECT where = CVxDialog::Get2DisplayWndRect(&dlg, TRUE);
//   CVxDialog::StoreDialogPosition(IDD_SEARCH, &dlg);
#pragma once

#include "platform/framework/rect.h"
#include "ui/dialogs/cdialog.h"
#include "vxbase_ui_export.h"

#include <functional>

class VXBASE_UI_EXPORT CVxDialog : public CDialog {
public:
    CVxDialog();
    explicit CVxDialog(UINT templateId, CWnd* parent = nullptr);
    ~CVxDialog() override;

    // A message box owned by this dialog, through the library's route.
    int VxMessageBox(LPCSTR text, LPCSTR caption = nullptr, UINT type = MB_OK);
    // Runs with the cursor clip lifted, and puts the clip back after.
    INT_PTR DoModal() override;
    BOOL OnInitDialog() override;
    BOOL PreTranslateMessage(MSG* msg) override;

    // --- the display state -----------------------------------------------------
    static int Set2DisplayEnable(int enable);
    static int Get2DisplayEnable();
    static RECT Set2DisplayRect(const RECT& rect);
    static RECT Get2DisplayRect();
    // Kept as 0 or 1.
    static int Set2DisplayRechteMaus(int follow);
    static int Get2DisplayRechteMaus();
    static SIZE Set2DisplayFirst(const SIZE& size);
    static SIZE Get2DisplayFirst();
    static RECT Set2DisplayVirtual(const RECT& rect);
    static RECT Get2DisplayVirtual();
    // (0, 0) to the first display's size.
    static RECT Get2DisplayFirstRect();
    // The rectangle a dialog should stand in; with `centre`, the window's
    // rectangle centred in it.
    static RECT Get2DisplayWndRect(CWnd* wnd, BOOL centre);
    // TRUE with the second display off; else whether the window meets the
    // display rectangle.
    static BOOL Get2DisplayInMainWnd(CWnd* wnd);

    // --- placement in "DialogState" --------------------------------------------
    // Writes left, top, right and bottom of `wnd` under the key "%d" of `id`.
    static BOOL StoreDialogPosition(UINT id, CWnd* wnd);
    // 0 without a stored place (or one that holds no two numbers); else 1,
    // and the window moves to the stored corner if the centre of its
    // rectangle there lies where dialogs should stand.
    static BOOL RestoreDialogPosition(UINT id, CWnd* wnd);

    // Fields, in the original's order.
    int m_bInit = 1;
    // Enter was the last key, and it was pressed on OK.
    int m_bEnter = 0;
    int m_bEnterOnOk = 0;
    // The last focused window other than OK.
    HWND m_hLastFocus = nullptr;
};

namespace vx {

// What CVxDialog::OnInitDialog and KSkinDialog::OnInitDialog share: the
// dialog's icon, bringing a hidden main window forward for the partner, and
// the place on two displays (after the base's OnInitDialog, which
// `initBase` runs). Returns the base's answer.
VXBASE_UI_EXPORT BOOL InitVxDialog(CDialog& dialog, const std::function<BOOL()>& initBase);
// What their PreTranslateMessage records before the base runs.
VXBASE_UI_EXPORT void TrackVxDialogKeys(CDialog& dialog, const MSG* msg, int& enter, int& enterOnOk, HWND& lastFocus);

} // namespace vx
