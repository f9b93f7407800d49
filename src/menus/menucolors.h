// The colour helpers and drawing aids of the owner-drawn menus: channel
// arithmetic on COLORREF values (0x00BBGGRR, each channel by itself, MulDiv
// rounding), the selection colour, the screen's colour depth, gradients and
// the flicker-free memory device of a menu item.
//
//   COLORREF column = MixColor(GetSysColor(COLOR_MENU), GetSysColor(COLOR_WINDOW));
//   DrawGradient(dc, rect, LightenColor(30, back), DarkenColor(30, back), FALSE, TRUE);
#pragma once

#include "platform/framework/rect.h"
#include "ui/gdi/cdc.h"
#include "ui/images/cbitmap.h"
#include "vxbase_ui_export.h"

// c times (255 - level) / 255.
VXBASE_UI_EXPORT COLORREF DarkenColor(long level, COLORREF c);
// c + (255 - c) times level / 255.
VXBASE_UI_EXPORT COLORREF LightenColor(long level, COLORREF c);
// 86 % of a and 14 % of b, each term rounded.
VXBASE_UI_EXPORT COLORREF MixColor(COLORREF a, COLORREF b);
// 70 % of a and 30 % of b, each term rounded.
VXBASE_UI_EXPORT COLORREF BlendColor(COLORREF a, COLORREF b);
// The channels' mean (truncated) in all three channels.
VXBASE_UI_EXPORT COLORREF GrayColor(COLORREF c);
// 70 % of red, green and of blue plus 55: a bluish tint for shapes.
VXBASE_UI_EXPORT COLORREF TintColor(COLORREF c);
// The selection of the XP styles: the highlight with high contrast, a blend
// of window and highlight on screens of more than 256 colours, else the window.
VXBASE_UI_EXPORT COLORREF GetSelectionColor();
// The screen's NUMCOLORS, read once; a true-colour screen counts 64,000.
VXBASE_UI_EXPORT int NumScreenColors();
// Whether the system draws shadows under menus itself (SPI_GETDROPSHADOW).
VXBASE_UI_EXPORT BOOL DropShadowEnabled();
// Whether high contrast was on when the library started.
VXBASE_UI_EXPORT BOOL IsHighContrast();
// Whether the shell is of the new kind (Windows 95 and later).
VXBASE_UI_EXPORT BOOL IsNewShell();

// Fills `rect` running from `start` to `end`, across (`horizontal`) or down.
// With `nearest` (ignored on true-colour screens) every colour is mapped to
// the nearest the device shows and the fill is drawn in strips of 2 pixels.
VXBASE_UI_EXPORT void DrawGradient(CDC* dc, const CRect& rect, COLORREF start, COLORREF end, BOOL horizontal,
                                   BOOL nearest);

// A memory device over a rectangle of `target`: drawing keeps the target's
// coordinates, and the rectangle is copied back when the object goes, unless
// m_bCancel is set.
class VXBASE_UI_EXPORT CNewMemDC : public CDC {
public:
    CNewMemDC(const RECT* rect, HDC target);
    ~CNewMemDC() override;
    CNewMemDC(const CNewMemDC&) = delete;
    CNewMemDC& operator=(const CNewMemDC&) = delete;

    CRect m_rect;
    HGDIOBJ m_oldBitmap = nullptr;
    CBitmap m_bitmap;
    BOOL m_bCancel = FALSE;
    HDC m_hTarget = nullptr;
};
