// CButton: the platform's button control, as the framework wraps it.
//
// The control's own window procedure (DefWindowProc here) does what the
// system's button did: it presses under the mouse and the space bar, sends
// BN_CLICKED to its parent, toggles automatic check boxes and radio buttons,
// keeps its check, push and focus state for the BM_ messages, and paints
// itself in the classic look. With BS_NOTIFY the parent also hears
// BN_SETFOCUS, BN_KILLFOCUS and BN_DOUBLECLICKED (radio and owner-drawn
// buttons send the last always). A BS_OWNERDRAW button sends WM_DRAWITEM to its
// parent instead, which hands it back to the button's DrawItem.
//
//   class CMyButton : public CButton {
//       void DrawItem(LPDRAWITEMSTRUCT dis) override { ... }
//   };
//   m_button.Create("OK", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, CRect(10, 10, 90, 33), this, IDOK);
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

constexpr DWORD BS_PUSHBUTTON = 0x0000;
constexpr DWORD BS_DEFPUSHBUTTON = 0x0001;
constexpr DWORD BS_CHECKBOX = 0x0002;
constexpr DWORD BS_AUTOCHECKBOX = 0x0003;
constexpr DWORD BS_RADIOBUTTON = 0x0004;
constexpr DWORD BS_3STATE = 0x0005;
constexpr DWORD BS_AUTO3STATE = 0x0006;
constexpr DWORD BS_GROUPBOX = 0x0007;
constexpr DWORD BS_USERBUTTON = 0x0008;
constexpr DWORD BS_AUTORADIOBUTTON = 0x0009;
constexpr DWORD BS_OWNERDRAW = 0x000B;
constexpr DWORD BS_TYPEMASK = 0x000F;
constexpr DWORD BS_LEFTTEXT = 0x0020;
constexpr DWORD BS_RIGHTBUTTON = BS_LEFTTEXT;
constexpr DWORD BS_TEXT = 0x0000;
constexpr DWORD BS_ICON = 0x0040;
constexpr DWORD BS_BITMAP = 0x0080;
constexpr DWORD BS_LEFT = 0x0100;
constexpr DWORD BS_RIGHT = 0x0200;
constexpr DWORD BS_CENTER = 0x0300;
constexpr DWORD BS_TOP = 0x0400;
constexpr DWORD BS_BOTTOM = 0x0800;
constexpr DWORD BS_VCENTER = 0x0C00;
constexpr DWORD BS_PUSHLIKE = 0x1000;
constexpr DWORD BS_MULTILINE = 0x2000;
constexpr DWORD BS_NOTIFY = 0x4000;
constexpr DWORD BS_FLAT = 0x8000;

constexpr UINT BM_GETCHECK = 0x00F0;
constexpr UINT BM_SETCHECK = 0x00F1;
constexpr UINT BM_GETSTATE = 0x00F2;
constexpr UINT BM_SETSTATE = 0x00F3;
constexpr UINT BM_SETSTYLE = 0x00F4;
constexpr UINT BM_CLICK = 0x00F5;
constexpr UINT BM_GETIMAGE = 0x00F6;
constexpr UINT BM_SETIMAGE = 0x00F7;

constexpr UINT BST_UNCHECKED = 0x0000;
constexpr UINT BST_CHECKED = 0x0001;
constexpr UINT BST_INDETERMINATE = 0x0002;
constexpr UINT BST_PUSHED = 0x0004;
constexpr UINT BST_FOCUS = 0x0008;

constexpr UINT BN_CLICKED = 0;
constexpr UINT BN_PAINT = 1;
constexpr UINT BN_HILITE = 2;
constexpr UINT BN_UNHILITE = 3;
constexpr UINT BN_DISABLE = 4;
constexpr UINT BN_DOUBLECLICKED = 5;
constexpr UINT BN_SETFOCUS = 6;
constexpr UINT BN_KILLFOCUS = 7;

class VXBASE_UI_EXPORT CButton : public CWnd {
public:
    CButton();
    ~CButton() override;

    BOOL Create(LPCSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id);
    UINT GetState() const;
    void SetState(BOOL highlight);
    int GetCheck() const;
    void SetCheck(int check);
    UINT GetButtonStyle() const;
    void SetButtonStyle(UINT style, BOOL redraw = TRUE);
    HICON SetIcon(HICON icon);
    HICON GetIcon() const;
    HBITMAP SetBitmap(HBITMAP bitmap);
    HBITMAP GetBitmap() const;
    // Called for BS_OWNERDRAW buttons with the device and state to draw.
    virtual void DrawItem(LPDRAWITEMSTRUCT item);

    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

protected:
    // The system button's behaviour.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Click();
    void Notify(UINT code);
    void ShapeGroup();
    void Paint();
    void PaintPlain(HDC dc, const RECT& client, UINT state);
    void Redraw();

    int m_check = BST_UNCHECKED;
    bool m_pushed = false;
    bool m_focused = false;
    bool m_tracking = false;
    bool m_spaceDown = false;
    HANDLE m_image = nullptr;
};
