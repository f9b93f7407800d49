// CButtonST: the library's owner-drawn button. Text, icon or bitmap (with
// derived grayscale and darker forms and masks), flat or raised, check box
// and radio behaviour, hover colours, sounds, a URL, a popup menu and a
// tooltip.
//
// Whether a button draws itself is fixed when it is constructed, by the
// design static m_InitType: at 0 the button behaves as a plain CButton in
// every handler. Setters that return a DWORD answer BTNST_OK (0) on success.
//
//   CButtonST ok;
//   ok.Create("OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP, CRect(10, 10, 90, 34), this, IDOK);
//   ok.SetBitmaps(0x3EA, RGB(255, 255, 255));
//   ok.SetFlat(FALSE);
//   ok.SetTooltipText("Accept the changes");
#pragma once

#include "ui/images/cbitmap.h"
#include "ui/controls/cbutton.h"
#include "ui/gdi/cdc.h"
#include "ui/controls/ctooltipctrl.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CButtonST : public CButton {
public:
    // The design's switches, set by KDeskDesignDlg::InitParameter before the
    // first button is made: own drawing on (1) or off (0), and the button
    // colour (0 to 3 an index, above 3 a COLORREF).
    static int m_InitType;
    static DWORD m_InitShade;

    enum {
        ST_ALIGN_HORIZ = 0,       // image left of the text
        ST_ALIGN_VERT = 1,        // image above the text
        ST_ALIGN_HORIZ_RIGHT = 2, // image right of the text
        ST_ALIGN_OVERLAP = 3      // image and text centred on each other
    };
    enum {
        BTNST_COLOR_BK_IN = 0,
        BTNST_COLOR_FG_IN = 1,
        BTNST_COLOR_BK_OUT = 2,
        BTNST_COLOR_FG_OUT = 3,
        BTNST_COLOR_BK_FOCUS = 4,
        BTNST_COLOR_FG_FOCUS = 5,
        BTNST_COLOR_BK_PRESSED = 6,
        BTNST_COLOR_FG_PRESSED = 7,
        BTNST_MAX_COLORS = 8
    };
    enum { BTNST_PRESSED_LEFTRIGHT = 0, BTNST_PRESSED_TOPBOTTOM = 1 };
    enum {
        BTNST_OK = 0,
        BTNST_INVALIDRESOURCE = 1,
        BTNST_FAILEDMASK = 2,
        BTNST_INVALIDINDEX = 3,
        BTNST_INVALIDALIGN = 4,
        BTNST_BADPARAM = 5,
        BTNST_INVALIDPRESSEDSTYLE = 6
    };
    // In the place of the second icon or bitmap: derive it from the first.
    enum { BTNST_AUTO_GRAY = -2, BTNST_AUTO_DARKER = -3 };

    CButtonST();
    ~CButtonST() override;

    static short GetVersionI() { return 39; }
    static LPCSTR GetVersionC() { return "3.9"; }

    // Icons by number at the given sizes; the second may be 0, BTNST_AUTO_GRAY
    // or BTNST_AUTO_DARKER. The button owns the icons.
    DWORD SetIcon(int iconIn, int cxIn, int cyIn, int iconOut = 0, int cxOut = 0, int cyOut = 0);
    DWORD SetIcon(HICON iconIn, HICON iconOut = nullptr);
    // Bitmaps with their transparent colours, in the order pressed or hover,
    // disabled, disabled and pressed, normal. The normal one may be 0,
    // BTNST_AUTO_GRAY or BTNST_AUTO_DARKER. Answers BTNST_INVALIDRESOURCE or
    // BTNST_FAILEDMASK (and keeps no image) on failure. The button owns them.
    DWORD SetBitmaps(int bitmapIn, COLORREF transparentIn, int bitmapDisabled = 0, COLORREF transparentDisabled = 0,
                     int bitmapDisabledIn = 0, COLORREF transparentDisabledIn = 0, int bitmapOut = 0,
                     COLORREF transparentOut = 0);
    DWORD SetBitmaps(HBITMAP bitmapIn, COLORREF transparentIn, HBITMAP bitmapDisabled = nullptr,
                     COLORREF transparentDisabled = 0, HBITMAP bitmapDisabledIn = nullptr,
                     COLORREF transparentDisabledIn = 0, HBITMAP bitmapOut = nullptr, COLORREF transparentOut = 0);
    DWORD SetFlat(BOOL flat = TRUE, BOOL repaint = TRUE);
    // ST_ALIGN_...; others answer BTNST_INVALIDALIGN.
    DWORD SetAlign(BYTE align, BOOL repaint = TRUE);
    // BTNST_PRESSED_LEFTRIGHT moves a pressed image and text by (1, 1),
    // BTNST_PRESSED_TOPBOTTOM by (0, 2); others answer BTNST_INVALIDPRESSEDSTYLE.
    DWORD SetPressedStyle(BYTE style, BOOL repaint = TRUE);
    DWORD SetCheck(int check, BOOL repaint = TRUE);
    int GetCheck() const;
    DWORD SetDefaultColors(BOOL repaint = TRUE);
    // Colour slots BTNST_COLOR_...; a slot of 8 or more answers BTNST_INVALIDINDEX.
    DWORD SetColor(BYTE index, COLORREF color, BOOL repaint = TRUE);
    DWORD GetColor(BYTE index, COLORREF* color) const;
    // Moves the three channels of a slot by one amount, cut to what the
    // channel nearest its limit allows; -255 to 255, else BTNST_BADPARAM.
    DWORD OffsetColor(BYTE index, short offset, BOOL repaint = TRUE);
    DWORD SetAlwaysTrack(BOOL alwaysTrack = TRUE);
    // A cursor by number (the library's, a host's, or a system IDC_ number);
    // 0 for none.
    DWORD SetBtnCursor(int cursorId = 0, BOOL repaint = TRUE);
    DWORD DrawBorder(BOOL drawBorder = TRUE, BOOL repaint = TRUE);
    DWORD DrawFlatFocus(BOOL drawFlatFocus, BOOL repaint = TRUE);
    void SetTooltipText(int textId, BOOL activate = TRUE);
    void SetTooltipText(LPCSTR text, BOOL activate = TRUE);
    void ActivateTooltip(BOOL enable = TRUE);
    DWORD EnableBalloonTooltip();
    BOOL GetDefault() const;
    // Paints the parent's pixels under the button as its background.
    DWORD DrawTransparent(BOOL repaint = FALSE);
    // Takes the background copy from `dc`; BTNST_BADPARAM unless transparent.
    DWORD SetBk(CDC* dc);
    BOOL SetURL(LPCSTR url = nullptr);
    // A menu whose first popup opens on a click; the button owns the menu
    // and sends the choice as WM_COMMAND to `owner`. Null removes it.
    DWORD SetMenu(HMENU menu, HWND owner, BOOL repaint = TRUE);
    // `window` gets `message` (wParam the popup, lParam `lParam`) before the menu opens.
    DWORD SetMenuCallback(HWND window, UINT message, LPARAM lParam = 0);
    // Resizes to the first image and zeroes the margins.
    DWORD SizeToContent();
    // The hover sound (`onClick` FALSE) or the click sound: a file (no
    // module) or a resource of `module`; null clears it.
    DWORD SetSound(LPCSTR sound, HMODULE module = nullptr, BOOL onClick = FALSE, BOOL async = TRUE);

    // Each channel c becomes c - c * factor, truncated; a factor outside
    // (0, 1] leaves the colour.
    static COLORREF DarkenColor(COLORREF color, double factor);

    void DrawItem(LPDRAWITEMSTRUCT item) override;
    BOOL PreTranslateMessage(MSG* msg) override;

protected:
    // The drawing steps, in this slot order.
    virtual DWORD OnDrawBackground(CDC* dc, CRect* rect);
    virtual DWORD OnDrawBorder(CDC* dc, CRect* rect);
    virtual void DrawTheIcon(CDC* dc, BOOL hasTitle, RECT* item, CRect* caption, BOOL pressed, BOOL disabled);
    virtual void DrawTheBitmap(CDC* dc, BOOL hasTitle, RECT* item, CRect* caption, BOOL pressed, BOOL disabled);
    virtual void DrawTheText(CDC* dc, LPCSTR text, RECT* item, CRect* caption, BOOL pressed, BOOL disabled);

    void PreSubclassWindow() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnMouseLeave() override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnKeyUp(UINT key, UINT repeat, UINT flags) override;
    void OnKillFocus(CWnd* newWnd) override;
    void OnCancelMode() override;
    void OnActivate(UINT state, CWnd* other, BOOL minimized) override;
    void OnEnable(BOOL enable) override;
    BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message) override;
    void OnSysColorChange() override;
    UINT OnGetDlgCode() override;

    void CancelHover();
    void PaintBk(CDC* dc);
    // Checks a radio button and clears the others of its group.
    void CheckRadio();
    void PrepareImageRect(BOOL hasTitle, RECT* item, CRect* caption, BOOL pressed, DWORD width, DWORD height,
                          CRect* image);
    HBITMAP CreateBitmapMask(HBITMAP source, DWORD width, DWORD height, COLORREF transparent);
    HBITMAP CreateGrayscaleBitmap(HBITMAP source, DWORD width, DWORD height, COLORREF transparent);
    HBITMAP CreateDarkerBitmap(HBITMAP source, DWORD width, DWORD height, COLORREF transparent);
    HICON CreateGrayscaleIcon(HICON icon);
    HICON CreateDarkerIcon(HICON icon);
    void FreeResources(BOOL checkForNull = TRUE);
    void FreeBk();
    void InitToolTip();

    struct STRUCT_ICONS {
        HICON hIcon;
        DWORD dwWidth;
        DWORD dwHeight;
    };
    struct STRUCT_BITMAPS {
        HBITMAP hBitmap;
        DWORD dwWidth;
        DWORD dwHeight;
        HBITMAP hMask;
        COLORREF crTransparent;
    };
    struct STRUCT_CALLBACK {
        HWND hWnd;
        UINT nMessage;
        LPARAM lParam;
    };
    struct STRUCT_SOUND {
        char szSound[MAX_PATH];
        LPCSTR lpszSound;
        HMODULE hMod;
        DWORD dwFlags;
    };

    // Fields, in the original's order.
    int m_bShowDisabledBitmap = TRUE;
    int m_nMarginX = 3;
    int m_nMarginY = 3;
    CPoint m_ptPressedOffset;
    int m_bEnabled;
    int m_bIsFlat = TRUE;
    int m_bTrackHover = TRUE;
    int m_bMouseOnButton = FALSE;
    int m_bDrawTransparent = FALSE;
    int m_bIsPressed = FALSE;
    int m_bIsFocused = FALSE;
    int m_bIsDisabled = FALSE;
    int m_bIsDefault = FALSE;
    int m_bIsCheckBox = FALSE;
    int m_bIsRadio = FALSE;
    int m_bIsPushLike = FALSE;
    BYTE m_byAlign = ST_ALIGN_HORIZ;
    int m_bDrawBorder = TRUE;
    int m_bDrawFlatFocus = FALSE;
    COLORREF m_crColors[BTNST_MAX_COLORS] = {};
    HWND m_hParentWndMenu = nullptr;
    int m_bMenuDisplayed = FALSE;
    HMENU m_hMenu = nullptr;
    HCURSOR m_hCursor = nullptr;
    CToolTipCtrl m_ToolTip;
    CDC m_dcBk;
    CBitmap m_bmpBk;
    CBitmap* m_pbmpOldBk = nullptr;
    int m_bAlwaysTrack = TRUE;
    int m_nCheck = 0;
    DWORD m_dwStyle = 0;
    DWORD m_dwToolTipStyle = 0;
    char m_szURL[MAX_PATH] = {};
    STRUCT_ICONS m_csIcons[2] = {};
    STRUCT_BITMAPS m_csBitmaps[4] = {};
    STRUCT_CALLBACK m_csCallbacks = {};
    STRUCT_SOUND m_csSounds[2] = {};
};
