// CNewToolBar: the library's tool bar, drawn in the style of the current
// menu draw mode (CNewMenu::GetMenuDrawMode): flat classic bars in the
// original and special modes, the XP bar with its tinted shadows, the icy
// bar and the Office 2003 bar with their gradients, dotted grippers, rounded
// corners and orange hot buttons. The bar paints its buttons itself and lets
// its parent see every stage of NM_CUSTOMDRAW, as the control would.
//
// With m_NewToolbar 0 (the desk design's "Toolbar" switch) it is a plain
// CToolBar in every respect.
//
//   CNewToolBar bar;
//   bar.CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER | CBRS_TOOLTIPS);
//   bar.LoadToolBar(IDR_MAINFRAME);
#pragma once

#include "ui/bars/ctoolbar.h"
#include "ui/images/cimagelist.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CNewToolBar : public CToolBar {
public:
    CNewToolBar();
    ~CNewToolBar() override;

    // Own drawing of tool bars on (1) or off (0).
    static int m_NewToolbar;
    // Kept for hosts; the library does not read it.
    static int m_Win98TooltipBug;

    BOOL LoadToolBar(UINT id) override;
    BOOL LoadToolBar(LPCSTR name) override;
    // The bar's images from a bitmap resource of full colour: `transparent`
    // (0xFF000000: the top left pixel) shows the bar. The disabled images
    // are gray blends of the same strip. 0 with the switch off or no bitmap.
    BOOL LoadHiColor(LPCSTR name, COLORREF transparent = 0xFF000000);
    // The same from strips already loaded: `hot` gives the normal images,
    // `disabled` (turned gray in place) the disabled ones.
    BOOL LoadHiColor(CBitmap* const* hot, CBitmap* const* disabled, int count, COLORREF transparent = 0xFF000000);
    // Turns a bitmap gray in place, each channel (gray * level + c * (255 -
    // level)) / 256 with c the colour's; answers the new top left pixel.
    static COLORREF MakeGrayAlphablend(CBitmap* bitmap, int level, COLORREF colour);

    void DrawGripper(CDC* dc, const CRect& rect) override;
    void DrawBorders(CDC* dc, CRect& rect) override;
    void EraseNonClient() override;
    void OnBarStyleChange(DWORD oldStyle, DWORD newStyle) override;

    // The painting steps, public for hosts that paint a bar's likeness.
    void PaintHotButton(NMTBCUSTOMDRAW* info);
    void PaintTBButton(NMTBCUSTOMDRAW* info);
    static void PaintOrangeState(CDC* dc, const CRect& rect, BOOL light);
    // Rounds a rectangle: three pixels in an L at each corner.
    static void PaintCorner(CDC* dc, const CRect& rect, COLORREF colour);
    // The docked bar's window area in the frame menu's background (brush or
    // the mode's colour), aligned with the menu bar's pattern; the client's
    // top left lies at `clientOrigin` of `dc`.
    void PaintToolBarBackGnd(CDC* dc, CPoint clientOrigin);
    // The answer to the reflected NM_CUSTOMDRAW.
    LRESULT OnNMCustomdraw(NMHDR* header);

protected:
    int OnCreate() override;
    void OnPaint() override;
    BOOL OnEraseBkgnd() override;
    void OnNcPaint() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    // Hot and normal images, and the disabled ones.
    CImageList m_ImageList;
    CImageList m_ImageListDisabled;

private:
    // The bar's background on `dc`, where the client's top left lies at
    // `clientOrigin`.
    void EraseBackground(CDC* dc, CPoint clientOrigin);
    HIMAGELIST NormalImages() const;
};
