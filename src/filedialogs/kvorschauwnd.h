// KVorschauWnd: the floating window that shows the preview of a drawing
// beside its parent (a file dialog or a list), and KOnOffButton, the small
// check button that shows and hides it.
//
//   KVorschauWnd preview;
//   preview.Erstellen(&dialog, nullptr, 1, 0x80, 6813, 1); // right of the dialog, as tall
//   preview.Anzeigen("C:\\Projekte\\Demo\\SCHALT.0001", nullptr, nullptr);
//   ...                                     // the dialog moved:
//   preview.Verschieben(0);
//
// The window is made from template 6812. Without a button of the caller's
// it makes its own on the parent: a check button ">" (id 17) at the
// parent's top right corner. With a key its rectangle is kept in
// "DialogState" under "Vorschau<key>" and taken back the next time.
#pragma once

#include "filedialogs/kdateivorschau.h"
#include "look/cvxdialog.h"
#include "ui/controls/cbutton.h"
#include "ui/images/cbitmap.h"
#include "vxbase_ui_export.h"

namespace vx {

// The window's template, and the id of the button it makes itself.
constexpr UINT kVorschauTemplate = 6812;
constexpr UINT kVorschauButtonId = 17;
// The sides a preview window stands on.
constexpr int kVorschauAbove = 0x10;
constexpr int kVorschauLeft = 0x20;
constexpr int kVorschauCorner = 0x40; // at the parent's lower right corner
constexpr int kVorschauRight = 0x80;

} // namespace vx

class VXBASE_UI_EXPORT KVorschauWnd : public CVxDialog {
public:
    // The switch of a preview window: a click flips the preview.
    class VXBASE_UI_EXPORT KOnOffButton : public CButton {
    public:
        KOnOffButton() = default;
        BOOL PreTranslateMessage(MSG* msg) override;
        KVorschauWnd* m_pVorschau = nullptr;
    };

    KVorschauWnd();
    ~KVorschauWnd() override;

    // Makes the window from template 6812 beside `parent`, on `side` (one of
    // the kVorschau... sides; `wide` stretches it along the parent), or on
    // the rectangle kept under `key` when there is one. With `hide` it is
    // hidden while it moves. `button` switches it; null makes one.
    BOOL Erstellen(CWnd* parent, KOnOffButton* button, int wide, int side, int key, int hide);
    // Places the window again after its parent moved (as with `wide` set),
    // unless it is minimised; with `repaint` it is hidden during the move.
    void Verschieben(int repaint);
    // Shows the drawing of `path` (null: turns the preview off), or the part
    // `part` that the main frame draws; `data` is kept for the main frame.
    void Anzeigen(const char* path, const char* part, void* data);
    BOOL Create(UINT templateId, CWnd* parent = nullptr) override;

    KDateiVorschau m_Vorschau;
    CBitmap m_Bitmap;
    CString m_Path;
    CString m_Part;
    KOnOffButton* m_pButton = nullptr;
    void* m_pData = nullptr;
    CString m_Suffix;
    int m_Side = 2;

protected:
    // Asks the main frame to draw the part into this window (request 0x50).
    void BauteilUpdate();
    BOOL OnInitDialog() override;
    void OnPaint() override;
    void OnClose() override;
    void OnDestroy() override;

private:
    void Place(int wide);
    KOnOffButton* m_pOwnButton = nullptr; // the button this window made
    int m_nWide = 0;
};
