// CStatic: the platform's static control: a label, a frame or rectangle, an
// icon or a bitmap, or an owner-drawn area.
//
// A label asks its parent for colours (WM_CTLCOLORSTATIC) and draws its text
// by DrawText with the SS_ alignment; "&" underlines the mnemonic unless
// SS_NOPREFIX. An SS_BITMAP or SS_ICON static takes its image by STM_SETIMAGE
// and fits itself to it. Without SS_NOTIFY the mouse passes through to the
// parent, as through the system's static; with it the parent hears
// STN_CLICKED and STN_DBLCLK.
//
//   CStatic label;
//   label.Create("&Name:", WS_CHILD | WS_VISIBLE | SS_LEFT, CRect(8, 8, 80, 22), this, 1200);
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

constexpr DWORD SS_LEFT = 0x0000;
constexpr DWORD SS_CENTER = 0x0001;
constexpr DWORD SS_RIGHT = 0x0002;
constexpr DWORD SS_ICON = 0x0003;
constexpr DWORD SS_BLACKRECT = 0x0004;
constexpr DWORD SS_GRAYRECT = 0x0005;
constexpr DWORD SS_WHITERECT = 0x0006;
constexpr DWORD SS_BLACKFRAME = 0x0007;
constexpr DWORD SS_GRAYFRAME = 0x0008;
constexpr DWORD SS_WHITEFRAME = 0x0009;
constexpr DWORD SS_SIMPLE = 0x000B;
constexpr DWORD SS_LEFTNOWORDWRAP = 0x000C;
constexpr DWORD SS_OWNERDRAW = 0x000D;
constexpr DWORD SS_BITMAP = 0x000E;
constexpr DWORD SS_ETCHEDHORZ = 0x0010;
constexpr DWORD SS_ETCHEDVERT = 0x0011;
constexpr DWORD SS_ETCHEDFRAME = 0x0012;
constexpr DWORD SS_TYPEMASK = 0x001F;
constexpr DWORD SS_NOPREFIX = 0x0080;
constexpr DWORD SS_NOTIFY = 0x0100;
constexpr DWORD SS_CENTERIMAGE = 0x0200;
constexpr DWORD SS_RIGHTJUST = 0x0400;
constexpr DWORD SS_REALSIZEIMAGE = 0x0800;
constexpr DWORD SS_SUNKEN = 0x1000;
constexpr DWORD SS_ENDELLIPSIS = 0x4000;
constexpr DWORD SS_PATHELLIPSIS = 0x8000;
constexpr DWORD SS_WORDELLIPSIS = 0xC000;

constexpr UINT STM_SETICON = 0x0170;
constexpr UINT STM_GETICON = 0x0171;
constexpr UINT STM_SETIMAGE = 0x0172;
constexpr UINT STM_GETIMAGE = 0x0173;

constexpr UINT STN_CLICKED = 0;
constexpr UINT STN_DBLCLK = 1;
constexpr UINT STN_ENABLE = 2;
constexpr UINT STN_DISABLE = 3;

// The control id of statics that nobody addresses.
constexpr int IDC_STATIC = -1;

class VXBASE_UI_EXPORT CStatic : public CWnd {
public:
    CStatic();
    ~CStatic() override;

    BOOL Create(LPCSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id = 0xFFFF);
    HBITMAP SetBitmap(HBITMAP bitmap);
    HBITMAP GetBitmap() const;
    HICON SetIcon(HICON icon);
    HICON GetIcon() const;
    // Called for SS_OWNERDRAW statics with the device to draw on.
    virtual void DrawItem(LPDRAWITEMSTRUCT item);

    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Paint();
    void FitToImage();
    LRESULT PassToParent(UINT message, WPARAM wParam, LPARAM lParam);

    HANDLE m_image = nullptr;
    UINT m_imageType = IMAGE_BITMAP;
};
