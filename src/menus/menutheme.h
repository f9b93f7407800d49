// The drawing styles of the owner-drawn menus. A CMenuTheme names the
// measure, draw and title functions of CNewMenu that its items use, and
// gives the popup menu windows (subclassed by the menu window hook) their
// border widths, background, border and shadow. The ten styles are made
// once and found by number (CNewMenu::SetMenuDrawMode).
#pragma once

#include "platform/framework/rect.h"
#include "platform/windows/cwnd.h"
#include "ui/menus/cmenu.h"
#include "vxbase_ui_export.h"

class CNewMenu;
class CMenuWindowData;

class VXBASE_UI_EXPORT CMenuTheme {
public:
    using MeasureFunc = void (CNewMenu::*)(LPMEASUREITEMSTRUCT, BOOL);
    using DrawFunc = void (CNewMenu::*)(LPDRAWITEMSTRUCT, BOOL);

    CMenuTheme(DWORD themeId, MeasureFunc measure, DrawFunc draw, DrawFunc title, DWORD flags);
    virtual ~CMenuTheme();

    // Takes the window's frame off where the theme draws its own.
    virtual BOOL OnInitWnd(HWND hwnd);
    virtual BOOL OnUnInitWnd(HWND hwnd);
    virtual BOOL DoDrawBorder();
    virtual BOOL OnDrawBorder(HWND hwnd, HDC dc, BOOL onlyBorder = FALSE);
    virtual BOOL OnEraseBkgnd(HWND hwnd, HDC dc);
    virtual BOOL OnNcCalcSize(HWND hwnd, NCCALCSIZE_PARAMS* calc);
    virtual BOOL OnWindowPosChanging(HWND hwnd, LPWINDOWPOS pos);
    virtual BOOL OnCalcFrameRect(HWND hwnd, LPRECT rect);

    // The theme of a style number, null for an unknown one.
    static CMenuTheme* FindTheme(DWORD themeId);

    DWORD m_dwThemeId;
    DWORD m_dwFlags;
    MeasureFunc m_pMeasureItemFunc;
    DrawFunc m_pItemDrawFunc;
    DrawFunc m_pDrawTitle;
    int m_BorderLeft = 2;
    int m_BorderTop = 2;
    int m_BorderRight;
    int m_BorderBottom;

    // The record of a subclassed window, null for none.
    static CMenuWindowData* DataOf(HWND hwnd);
    // Keeps what the screen shows under the window, for the shadow.
    static void CaptureScreen(HWND hwnd, CMenuWindowData* data);
    // The four-pixel shadow along the right and bottom edges.
    static void DrawShadow(HDC dc, CMenuWindowData* data, int w, int h);
    // Joins an open menu bar tab and its popup into one shape.
    static void DrawJoint(HWND hwnd, HDC dc, CMenuWindowData* data);
};

class VXBASE_UI_EXPORT CMenuThemeXP : public CMenuTheme {
public:
    using CMenuTheme::CMenuTheme;
    BOOL OnDrawBorder(HWND hwnd, HDC dc, BOOL onlyBorder = FALSE) override;
    BOOL OnEraseBkgnd(HWND hwnd, HDC dc) override;
};
