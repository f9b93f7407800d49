// The drawing calls of the desktop API (GDI), over Qt: device contexts,
// pens, brushes, fonts, bitmaps, regions, icons and cursors, with the
// documented meaning of each call, so that drawing code reads as it did on
// the original platform.
//
// A device context draws into an image: a window's surface (the pixels the
// window shows), a bitmap selected into a memory device, or a 1 x 1 screen
// stand-in. Coordinates are logical: device = logical - window origin +
// viewport origin. Rectangles exclude their right and bottom edge. Lines
// exclude their end point. Colours are COLORREF (0x00BBGGRR).
//
//   HDC dc = CreateCompatibleDC(nullptr);
//   HBITMAP bmp = CreateBitmap(16, 16, 1, 32, nullptr);
//   HGDIOBJ old = SelectObject(dc, bmp);
//   RECT r{0, 0, 16, 16};
//   DrawEdge(dc, &r, EDGE_RAISED, BF_RECT);
//   SelectObject(dc, old);
//   DeleteDC(dc);
//
// Handles are keys into one table of the user-interface thread: a deleted
// or foreign handle makes a call fail (FALSE, 0 or CLR_INVALID), never crash.
#pragma once

#include "platform/framework/rect.h"
#include "platform/windows/winuser.h"
#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

// --- colours and modes -------------------------------------------------------
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;
constexpr COLORREF CLR_NONE = 0xFFFFFFFF;
constexpr COLORREF CLR_DEFAULT = 0xFF000000;

constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;

// Binary raster operations of pens (SetROP2).
constexpr int R2_BLACK = 1;
constexpr int R2_NOTMERGEPEN = 2;
constexpr int R2_MASKNOTPEN = 3;
constexpr int R2_NOTCOPYPEN = 4;
constexpr int R2_MASKPENNOT = 5;
constexpr int R2_NOT = 6;
constexpr int R2_XORPEN = 7;
constexpr int R2_NOTMASKPEN = 8;
constexpr int R2_MASKPEN = 9;
constexpr int R2_NOTXORPEN = 10;
constexpr int R2_NOP = 11;
constexpr int R2_MERGENOTPEN = 12;
constexpr int R2_COPYPEN = 13;
constexpr int R2_MERGEPENNOT = 14;
constexpr int R2_MERGEPEN = 15;
constexpr int R2_WHITE = 16;

// Ternary raster operations (BitBlt, PatBlt). Every one of the 256 codes in
// bits 16 to 23 works; these are the named ones.
constexpr DWORD SRCCOPY = 0x00CC0020;
constexpr DWORD SRCPAINT = 0x00EE0086;
constexpr DWORD SRCAND = 0x008800C6;
constexpr DWORD SRCINVERT = 0x00660046;
constexpr DWORD SRCERASE = 0x00440328;
constexpr DWORD NOTSRCCOPY = 0x00330008;
constexpr DWORD NOTSRCERASE = 0x001100A6;
constexpr DWORD MERGECOPY = 0x00C000CA;
constexpr DWORD MERGEPAINT = 0x00BB0226;
constexpr DWORD PATCOPY = 0x00F00021;
constexpr DWORD PATPAINT = 0x00FB0A09;
constexpr DWORD PATINVERT = 0x005A0049;
constexpr DWORD DSTINVERT = 0x00550009;
constexpr DWORD BLACKNESS = 0x00000042;
constexpr DWORD WHITENESS = 0x00FF0062;

// Pens.
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;
constexpr int PS_INSIDEFRAME = 6;
constexpr int PS_STYLE_MASK = 0x0F;

// Brushes.
constexpr UINT BS_SOLID = 0;
constexpr UINT BS_NULL = 1;
constexpr UINT BS_HOLLOW = 1;
constexpr UINT BS_HATCHED = 2;
constexpr UINT BS_PATTERN = 3;
constexpr int HS_HORIZONTAL = 0;
constexpr int HS_VERTICAL = 1;
constexpr int HS_FDIAGONAL = 2;
constexpr int HS_BDIAGONAL = 3;
constexpr int HS_CROSS = 4;
constexpr int HS_DIAGCROSS = 5;

// Stock objects.
constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int HOLLOW_BRUSH = 5;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int OEM_FIXED_FONT = 10;
constexpr int ANSI_FIXED_FONT = 11;
constexpr int ANSI_VAR_FONT = 12;
constexpr int SYSTEM_FONT = 13;
constexpr int DEVICE_DEFAULT_FONT = 14;
constexpr int SYSTEM_FIXED_FONT = 16;
constexpr int DEFAULT_GUI_FONT = 17;

// --- structures ------------------------------------------------------------------
constexpr int LF_FACESIZE = 32;
constexpr LONG FW_DONTCARE = 0;
constexpr LONG FW_THIN = 100;
constexpr LONG FW_LIGHT = 300;
constexpr LONG FW_NORMAL = 400;
constexpr LONG FW_MEDIUM = 500;
constexpr LONG FW_SEMIBOLD = 600;
constexpr LONG FW_BOLD = 700;
constexpr LONG FW_HEAVY = 900;
constexpr BYTE ANSI_CHARSET = 0;
constexpr BYTE DEFAULT_CHARSET = 1;
constexpr BYTE SYMBOL_CHARSET = 2;
constexpr BYTE EASTEUROPE_CHARSET = 238;
constexpr BYTE OUT_DEFAULT_PRECIS = 0;
constexpr BYTE CLIP_DEFAULT_PRECIS = 0;
constexpr BYTE DEFAULT_QUALITY = 0;
constexpr BYTE DRAFT_QUALITY = 1;
constexpr BYTE PROOF_QUALITY = 2;
constexpr BYTE NONANTIALIASED_QUALITY = 3;
constexpr BYTE ANTIALIASED_QUALITY = 4;
constexpr BYTE CLEARTYPE_QUALITY = 5;
constexpr BYTE DEFAULT_PITCH = 0;
constexpr BYTE FIXED_PITCH = 1;
constexpr BYTE VARIABLE_PITCH = 2;
constexpr BYTE FF_DONTCARE = 0x00;
constexpr BYTE FF_ROMAN = 0x10;
constexpr BYTE FF_SWISS = 0x20;
constexpr BYTE FF_MODERN = 0x30;
constexpr BYTE FF_SCRIPT = 0x40;
constexpr BYTE FF_DECORATIVE = 0x50;

// A font request. lfHeight < 0 is the character height in pixels, > 0 the
// cell height (character plus internal leading), 0 the default size.
struct LOGFONTA {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement; // tenths of a degree, counter-clockwise
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    char lfFaceName[LF_FACESIZE];
};
using LOGFONT = LOGFONTA;
using PLOGFONT = LOGFONTA*;
using LPLOGFONT = LOGFONTA*;

struct TEXTMETRICA {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};
using TEXTMETRIC = TEXTMETRICA;
using LPTEXTMETRIC = TEXTMETRICA*;

struct LOGPEN {
    UINT lopnStyle;
    POINT lopnWidth;
    COLORREF lopnColor;
};

struct LOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;
    ULONG_PTR lbHatch;
};

struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};
using PBITMAP = BITMAP*;
using LPBITMAP = BITMAP*;

constexpr DWORD BI_RGB = 0;
constexpr UINT DIB_RGB_COLORS = 0;
constexpr UINT DIB_PAL_COLORS = 1;

struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight; // positive: bottom-up rows; negative: top-down
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
using LPBITMAPINFOHEADER = BITMAPINFOHEADER*;

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};
using LPBITMAPINFO = BITMAPINFO*;

struct ICONINFO {
    BOOL fIcon;
    DWORD xHotspot;
    DWORD yHotspot;
    HBITMAP hbmMask;
    HBITMAP hbmColor;
};
using PICONINFO = ICONINFO*;

using COLOR16 = unsigned short;
struct TRIVERTEX {
    LONG x;
    LONG y;
    COLOR16 Red;
    COLOR16 Green;
    COLOR16 Blue;
    COLOR16 Alpha;
};
using PTRIVERTEX = TRIVERTEX*;
struct GRADIENT_RECT {
    ULONG UpperLeft;
    ULONG LowerRight;
};
struct GRADIENT_TRIANGLE {
    ULONG Vertex1;
    ULONG Vertex2;
    ULONG Vertex3;
};
constexpr ULONG GRADIENT_FILL_RECT_H = 0;
constexpr ULONG GRADIENT_FILL_RECT_V = 1;
constexpr ULONG GRADIENT_FILL_TRIANGLE = 2;

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};
using LPPAINTSTRUCT = PAINTSTRUCT*;

// --- DrawText ----------------------------------------------------------------------
constexpr UINT DT_TOP = 0x00000000;
constexpr UINT DT_LEFT = 0x00000000;
constexpr UINT DT_CENTER = 0x00000001;
constexpr UINT DT_RIGHT = 0x00000002;
constexpr UINT DT_VCENTER = 0x00000004;
constexpr UINT DT_BOTTOM = 0x00000008;
constexpr UINT DT_WORDBREAK = 0x00000010;
constexpr UINT DT_SINGLELINE = 0x00000020;
constexpr UINT DT_EXPANDTABS = 0x00000040;
constexpr UINT DT_TABSTOP = 0x00000080;
constexpr UINT DT_NOCLIP = 0x00000100;
constexpr UINT DT_EXTERNALLEADING = 0x00000200;
constexpr UINT DT_CALCRECT = 0x00000400;
constexpr UINT DT_NOPREFIX = 0x00000800;
constexpr UINT DT_INTERNAL = 0x00001000;
constexpr UINT DT_EDITCONTROL = 0x00002000;
constexpr UINT DT_PATH_ELLIPSIS = 0x00004000;
constexpr UINT DT_END_ELLIPSIS = 0x00008000;
constexpr UINT DT_MODIFYSTRING = 0x00010000;
constexpr UINT DT_RTLREADING = 0x00020000;
constexpr UINT DT_WORD_ELLIPSIS = 0x00040000;
constexpr UINT DT_NOFULLWIDTHCHARBREAK = 0x00080000;
constexpr UINT DT_HIDEPREFIX = 0x00100000;
constexpr UINT DT_PREFIXONLY = 0x00200000;

// Text alignment of TextOut.
constexpr UINT TA_NOUPDATECP = 0;
constexpr UINT TA_UPDATECP = 1;
constexpr UINT TA_LEFT = 0;
constexpr UINT TA_RIGHT = 2;
constexpr UINT TA_CENTER = 6;
constexpr UINT TA_TOP = 0;
constexpr UINT TA_BOTTOM = 8;
constexpr UINT TA_BASELINE = 24;
constexpr UINT ETO_OPAQUE = 0x0002;
constexpr UINT ETO_CLIPPED = 0x0004;

// --- edges --------------------------------------------------------------------------
constexpr UINT BDR_RAISEDOUTER = 0x0001;
constexpr UINT BDR_SUNKENOUTER = 0x0002;
constexpr UINT BDR_RAISEDINNER = 0x0004;
constexpr UINT BDR_SUNKENINNER = 0x0008;
constexpr UINT BDR_OUTER = 0x0003;
constexpr UINT BDR_INNER = 0x000C;
constexpr UINT BDR_RAISED = 0x0005;
constexpr UINT BDR_SUNKEN = 0x000A;
constexpr UINT EDGE_RAISED = BDR_RAISEDOUTER | BDR_RAISEDINNER;
constexpr UINT EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER;
constexpr UINT EDGE_ETCHED = BDR_SUNKENOUTER | BDR_RAISEDINNER;
constexpr UINT EDGE_BUMP = BDR_RAISEDOUTER | BDR_SUNKENINNER;
constexpr UINT BF_LEFT = 0x0001;
constexpr UINT BF_TOP = 0x0002;
constexpr UINT BF_RIGHT = 0x0004;
constexpr UINT BF_BOTTOM = 0x0008;
constexpr UINT BF_TOPLEFT = BF_TOP | BF_LEFT;
constexpr UINT BF_TOPRIGHT = BF_TOP | BF_RIGHT;
constexpr UINT BF_BOTTOMLEFT = BF_BOTTOM | BF_LEFT;
constexpr UINT BF_BOTTOMRIGHT = BF_BOTTOM | BF_RIGHT;
constexpr UINT BF_RECT = BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM;
constexpr UINT BF_MIDDLE = 0x0800;
constexpr UINT BF_SOFT = 0x1000;
constexpr UINT BF_ADJUST = 0x2000;
constexpr UINT BF_FLAT = 0x4000;
constexpr UINT BF_MONO = 0x8000;

// --- DrawState -------------------------------------------------------------------------
constexpr UINT DST_COMPLEX = 0x0000;
constexpr UINT DST_TEXT = 0x0001;
constexpr UINT DST_PREFIXTEXT = 0x0002;
constexpr UINT DST_ICON = 0x0003;
constexpr UINT DST_BITMAP = 0x0004;
constexpr UINT DSS_NORMAL = 0x0000;
constexpr UINT DSS_UNION = 0x0010;
constexpr UINT DSS_DISABLED = 0x0020;
constexpr UINT DSS_MONO = 0x0080;
constexpr UINT DSS_HIDEPREFIX = 0x0200;
constexpr UINT DSS_PREFIXONLY = 0x0400;
constexpr UINT DSS_RIGHT = 0x8000;
using DRAWSTATEPROC = BOOL (*)(HDC, LPARAM, WPARAM, int, int);

constexpr UINT DI_MASK = 0x0001;
constexpr UINT DI_IMAGE = 0x0002;
constexpr UINT DI_NORMAL = 0x0003;
constexpr UINT DI_COMPAT = 0x0004;
constexpr UINT DI_DEFAULTSIZE = 0x0008;

// --- device capabilities, clipping, regions -----------------------------------------------
constexpr int HORZRES = 8;
constexpr int VERTRES = 10;
constexpr int BITSPIXEL = 12;
constexpr int PLANES = 14;
constexpr int NUMCOLORS = 24;
constexpr int RASTERCAPS = 38;
constexpr int LOGPIXELSX = 88;
constexpr int LOGPIXELSY = 90;
constexpr int SIZEPALETTE = 104;

constexpr int RGN_ERROR = 0;
constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;
constexpr int COMPLEXREGION = 3;
constexpr int RGN_AND = 1;
constexpr int RGN_OR = 2;
constexpr int RGN_XOR = 3;
constexpr int RGN_DIFF = 4;
constexpr int RGN_COPY = 5;
constexpr int ALTERNATE = 1;
constexpr int WINDING = 2;

// --- images and resources ----------------------------------------------------------------
constexpr UINT IMAGE_BITMAP = 0;
constexpr UINT IMAGE_ICON = 1;
constexpr UINT IMAGE_CURSOR = 2;
constexpr UINT LR_DEFAULTCOLOR = 0x0000;
constexpr UINT LR_MONOCHROME = 0x0001;
constexpr UINT LR_LOADFROMFILE = 0x0010;
constexpr UINT LR_LOADTRANSPARENT = 0x0020;
constexpr UINT LR_DEFAULTSIZE = 0x0040;
constexpr UINT LR_CREATEDIBSECTION = 0x2000;
constexpr UINT LR_SHARED = 0x8000;

// A resource number in the place of a name, as MAKEINTRESOURCE made it.
inline LPCSTR MAKEINTRESOURCE(UINT id)
{
    return reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id)));
}
inline bool IS_INTRESOURCE(LPCSTR name)
{
    return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0;
}

// System cursors and bitmaps, by number.
inline const LPCSTR IDC_ARROW = MAKEINTRESOURCE(32512);
inline const LPCSTR IDC_IBEAM = MAKEINTRESOURCE(32513);
inline const LPCSTR IDC_WAIT = MAKEINTRESOURCE(32514);
inline const LPCSTR IDC_CROSS = MAKEINTRESOURCE(32515);
inline const LPCSTR IDC_UPARROW = MAKEINTRESOURCE(32516);
inline const LPCSTR IDC_SIZENWSE = MAKEINTRESOURCE(32642);
inline const LPCSTR IDC_SIZENESW = MAKEINTRESOURCE(32643);
inline const LPCSTR IDC_SIZEWE = MAKEINTRESOURCE(32644);
inline const LPCSTR IDC_SIZENS = MAKEINTRESOURCE(32645);
inline const LPCSTR IDC_SIZEALL = MAKEINTRESOURCE(32646);
inline const LPCSTR IDC_NO = MAKEINTRESOURCE(32648);
inline const LPCSTR IDC_HAND = MAKEINTRESOURCE(32649);
inline const LPCSTR IDC_APPSTARTING = MAKEINTRESOURCE(32650);
inline const LPCSTR IDC_HELP = MAKEINTRESOURCE(32651);
constexpr UINT OBM_CHECK = 32760;
constexpr UINT OBM_SIZE = 32766;

// --- system parameters ---------------------------------------------------------------------
constexpr UINT SPI_GETNONCLIENTMETRICS = 0x0029;
constexpr UINT SPI_GETWORKAREA = 0x0030;
constexpr UINT SPI_GETHIGHCONTRAST = 0x0042;
constexpr UINT SPI_SETHIGHCONTRAST = 0x0043;
constexpr UINT SPI_GETMENUSHOWDELAY = 0x006A;
constexpr UINT SPI_SETMENUSHOWDELAY = 0x006B;
constexpr UINT SPI_GETMENUANIMATION = 0x1002;
constexpr UINT SPI_SETMENUANIMATION = 0x1003;
constexpr UINT SPI_GETKEYBOARDCUES = 0x100A;
constexpr UINT SPI_SETKEYBOARDCUES = 0x100B;
constexpr UINT SPI_GETMENUFADE = 0x1012;
constexpr UINT SPI_SETMENUFADE = 0x1013;
constexpr UINT SPI_GETFLATMENU = 0x1022;
constexpr UINT SPI_SETFLATMENU = 0x1023;
constexpr UINT SPI_GETDROPSHADOW = 0x1024;
constexpr UINT SPI_SETDROPSHADOW = 0x1025;
constexpr DWORD HCF_HIGHCONTRASTON = 0x00000001;
constexpr UINT SPIF_UPDATEINIFILE = 0x0001;
constexpr UINT SPIF_SENDCHANGE = 0x0002;

struct NONCLIENTMETRICSA {
    UINT cbSize;
    int iBorderWidth;
    int iScrollWidth;
    int iScrollHeight;
    int iCaptionWidth;
    int iCaptionHeight;
    LOGFONTA lfCaptionFont;
    int iSmCaptionWidth;
    int iSmCaptionHeight;
    LOGFONTA lfSmCaptionFont;
    int iMenuWidth;
    int iMenuHeight;
    LOGFONTA lfMenuFont;
    LOGFONTA lfStatusFont;
    LOGFONTA lfMessageFont;
};
using NONCLIENTMETRICS = NONCLIENTMETRICSA;

struct HIGHCONTRASTA {
    UINT cbSize;
    DWORD dwFlags;
    LPSTR lpszDefaultScheme;
};
using HIGHCONTRAST = HIGHCONTRASTA;

// Answers SPI_GETNONCLIENTMETRICS (the pinned fonts and classic sizes) and
// SPI_GETWORKAREA, and gets and sets the switches of the classic desktop:
// high contrast (off), flat menus (off), drop shadows (off), menu animation
// and fade (off), keyboard cues (off: menus opened by the mouse hide their
// underlines) and the delay before a sub-menu opens (400 ms). A SET takes
// its value as the original did: BOOLs in `data` itself (cast to a pointer),
// the delay in `param`, high contrast as a HIGHCONTRAST*. SPIF_SENDCHANGE
// sends WM_SETTINGCHANGE (wParam: the action) to this process's top-level
// windows. Settings last for the process. FALSE for anything else.
VXBASE_UI_EXPORT BOOL SystemParametersInfoA(UINT action, UINT param, void* data, UINT winIni);

// --- objects -----------------------------------------------------------------------------------
VXBASE_UI_EXPORT HGDIOBJ GetStockObject(int index);
// Deletes a pen, brush, font, bitmap or region. FALSE for stock objects
// (which stay), unknown handles and objects selected into a device.
VXBASE_UI_EXPORT BOOL DeleteObject(HGDIOBJ object);
// Copies the object's description (LOGPEN, LOGBRUSH, LOGFONTA, BITMAP) into
// `out`; returns the bytes written, 0 on failure. A null `out` asks the size.
VXBASE_UI_EXPORT int GetObjectA(HGDIOBJ object, int size, void* out);
VXBASE_UI_EXPORT HPEN CreatePen(int style, int width, COLORREF color);
VXBASE_UI_EXPORT HPEN CreatePenIndirect(const LOGPEN* pen);
VXBASE_UI_EXPORT HBRUSH CreateSolidBrush(COLORREF color);
VXBASE_UI_EXPORT HBRUSH CreateHatchBrush(int hatch, COLORREF color);
// A brush that repeats a bitmap (of at least 1 x 1; copied at creation).
VXBASE_UI_EXPORT HBRUSH CreatePatternBrush(HBITMAP bitmap);
VXBASE_UI_EXPORT HBRUSH CreateBrushIndirect(const LOGBRUSH* brush);
// The brush of a system colour; it follows GetSysColor and is never deleted.
VXBASE_UI_EXPORT HBRUSH GetSysColorBrush(int index);
// Fonts render with DejaVu Sans whatever the face (DejaVu Sans Mono for a
// fixed pitch or a "Courier"/"Lucida Console" face); "Marlett" draws the
// glyphs of system commands and check marks as vector shapes.
VXBASE_UI_EXPORT HFONT CreateFontIndirectA(const LOGFONTA* font);
VXBASE_UI_EXPORT HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                                   DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision,
                                   DWORD clipPrecision, DWORD quality, DWORD pitchAndFamily, LPCSTR face);
// A bitmap of 1 bit (black and white) or more (24 and 32 store true colour).
// `bits` (rows of 16-bit aligned bytes for 1 bit, 32-bit aligned otherwise,
// top-down) may be null for a black bitmap.
VXBASE_UI_EXPORT HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits);
VXBASE_UI_EXPORT HBITMAP CreateBitmapIndirect(const BITMAP* bitmap);
// A bitmap in the format of the device: true colour for a window or the
// screen, the format of the selected bitmap for a memory device (which is
// 1 bit on a fresh memory device, as on the original platform).
VXBASE_UI_EXPORT HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height);
// A bitmap whose pixels the caller writes through *bits (1, 4, 8, 24 or 32
// bits per pixel, palette from `info`). Drawing reads the pixels at each use;
// GDI drawing into a DIB section is not supported (it is a source only).
VXBASE_UI_EXPORT HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                          DWORD offset);
VXBASE_UI_EXPORT LONG GetBitmapBits(HBITMAP bitmap, LONG bytes, void* out);
VXBASE_UI_EXPORT LONG SetBitmapBits(HBITMAP bitmap, DWORD bytes, const void* bits);
VXBASE_UI_EXPORT HRGN CreateRectRgn(int left, int top, int right, int bottom);
VXBASE_UI_EXPORT HRGN CreateRectRgnIndirect(const RECT* rect);
VXBASE_UI_EXPORT int CombineRgn(HRGN dest, HRGN a, HRGN b, int mode);
// Gives a window the shape of `region` (window coordinates; the system owns
// the region from then on), or its rectangle back for null. Outside its
// shape a window neither paints nor takes the mouse, so what lies beneath
// shows. Answers 0 for an unknown window.
VXBASE_UI_EXPORT int SetWindowRgn(HWND window, HRGN region, BOOL redraw);
// Copies the window's shape into `region`: its type, or ERROR (0) when the
// window has none.
VXBASE_UI_EXPORT int GetWindowRgn(HWND window, HRGN region);
VXBASE_UI_EXPORT BOOL PtInRegion(HRGN region, int x, int y);
VXBASE_UI_EXPORT int GetRgnBox(HRGN region, RECT* box);
VXBASE_UI_EXPORT int OffsetRgn(HRGN region, int dx, int dy);
VXBASE_UI_EXPORT BOOL UnrealizeObject(HGDIOBJ object);

// --- device contexts ------------------------------------------------------------------------------
// A memory device with a 1 x 1 black-and-white bitmap selected.
VXBASE_UI_EXPORT HDC CreateCompatibleDC(HDC dc);
VXBASE_UI_EXPORT BOOL DeleteDC(HDC dc);
// A device on the client area of a window (null: the screen stand-in).
VXBASE_UI_EXPORT HDC GetDC(HWND window);
VXBASE_UI_EXPORT HDC GetWindowDC(HWND window);
VXBASE_UI_EXPORT int ReleaseDC(HWND window, HDC dc);
// Starts painting the window's invalid area: the device is clipped to it,
// WM_ERASEBKGND is sent when an erase is pending, and the area is validated.
VXBASE_UI_EXPORT HDC BeginPaint(HWND window, LPPAINTSTRUCT paint);
VXBASE_UI_EXPORT BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
VXBASE_UI_EXPORT HWND WindowFromDC(HDC dc);
// Selects a pen, brush, font, bitmap (memory devices only) or region (as
// clip, like SelectClipRgn); returns the object it replaces, or null.
VXBASE_UI_EXPORT HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
VXBASE_UI_EXPORT HGDIOBJ GetCurrentObject(HDC dc, UINT type);
constexpr UINT OBJ_PEN = 1;
constexpr UINT OBJ_BRUSH = 2;
constexpr UINT OBJ_DC = 3;
constexpr UINT OBJ_FONT = 6;
constexpr UINT OBJ_BITMAP = 7;
constexpr UINT OBJ_REGION = 8;
constexpr UINT OBJ_MEMDC = 10;
VXBASE_UI_EXPORT DWORD GetObjectType(HGDIOBJ object);
VXBASE_UI_EXPORT int SaveDC(HDC dc);
// Restores a saved state: a positive number that one, -1 the last.
VXBASE_UI_EXPORT BOOL RestoreDC(HDC dc, int saved);
VXBASE_UI_EXPORT int GetDeviceCaps(HDC dc, int index);
// The device shows true colour, so every colour is its own nearest colour.
VXBASE_UI_EXPORT COLORREF GetNearestColor(HDC dc, COLORREF color);
VXBASE_UI_EXPORT COLORREF SetTextColor(HDC dc, COLORREF color);
VXBASE_UI_EXPORT COLORREF GetTextColor(HDC dc);
VXBASE_UI_EXPORT COLORREF SetBkColor(HDC dc, COLORREF color);
VXBASE_UI_EXPORT COLORREF GetBkColor(HDC dc);
VXBASE_UI_EXPORT int SetBkMode(HDC dc, int mode);
VXBASE_UI_EXPORT int GetBkMode(HDC dc);
VXBASE_UI_EXPORT int SetROP2(HDC dc, int mode);
VXBASE_UI_EXPORT int GetROP2(HDC dc);
VXBASE_UI_EXPORT UINT SetTextAlign(HDC dc, UINT align);
VXBASE_UI_EXPORT UINT GetTextAlign(HDC dc);
VXBASE_UI_EXPORT int SetPolyFillMode(HDC dc, int mode);
VXBASE_UI_EXPORT BOOL SetWindowOrgEx(HDC dc, int x, int y, POINT* old);
VXBASE_UI_EXPORT BOOL GetWindowOrgEx(HDC dc, POINT* origin);
VXBASE_UI_EXPORT BOOL SetViewportOrgEx(HDC dc, int x, int y, POINT* old);
VXBASE_UI_EXPORT BOOL GetViewportOrgEx(HDC dc, POINT* origin);
VXBASE_UI_EXPORT BOOL OffsetViewportOrgEx(HDC dc, int dx, int dy, POINT* old);
VXBASE_UI_EXPORT BOOL OffsetWindowOrgEx(HDC dc, int dx, int dy, POINT* old);
// Where pattern and hatch brushes start, in device coordinates.
VXBASE_UI_EXPORT BOOL SetBrushOrgEx(HDC dc, int x, int y, POINT* old);
VXBASE_UI_EXPORT BOOL GetBrushOrgEx(HDC dc, POINT* origin);
VXBASE_UI_EXPORT BOOL LPtoDP(HDC dc, POINT* points, int count);
VXBASE_UI_EXPORT BOOL DPtoLP(HDC dc, POINT* points, int count);
// Clipping, in logical coordinates; each answers the region kind left.
VXBASE_UI_EXPORT int IntersectClipRect(HDC dc, int left, int top, int right, int bottom);
VXBASE_UI_EXPORT int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom);
// A null region removes the clip; the region is in device coordinates.
VXBASE_UI_EXPORT int SelectClipRgn(HDC dc, HRGN region);
// Combines the clip with a region (device coordinates) by an RGN_ mode.
VXBASE_UI_EXPORT int ExtSelectClipRgn(HDC dc, HRGN region, int mode);
VXBASE_UI_EXPORT int GetClipBox(HDC dc, RECT* box);
VXBASE_UI_EXPORT BOOL PtVisible(HDC dc, int x, int y);
VXBASE_UI_EXPORT BOOL RectVisible(HDC dc, const RECT* rect);

// --- drawing ---------------------------------------------------------------------------------------------
VXBASE_UI_EXPORT COLORREF GetPixel(HDC dc, int x, int y);
// Returns the colour set, CLR_INVALID outside the device or the clip.
VXBASE_UI_EXPORT COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
VXBASE_UI_EXPORT BOOL SetPixelV(HDC dc, int x, int y, COLORREF color);
// Fills with a brush; a value of 1 to 31 stands for GetSysColorBrush(value - 1).
VXBASE_UI_EXPORT int FillRect(HDC dc, const RECT* rect, HBRUSH brush);
// A one pixel frame inside the rectangle.
VXBASE_UI_EXPORT int FrameRect(HDC dc, const RECT* rect, HBRUSH brush);
VXBASE_UI_EXPORT BOOL InvertRect(HDC dc, const RECT* rect);
// The dotted frame of the focus, drawn by exclusive-or, so that a second call
// takes it away again.
VXBASE_UI_EXPORT BOOL DrawFocusRect(HDC dc, const RECT* rect);
// A three-dimensional edge in the system colours (the sides in `flags`); with
// BF_ADJUST the rectangle shrinks to what lies inside the edge.
VXBASE_UI_EXPORT BOOL DrawEdge(HDC dc, RECT* rect, UINT edge, UINT flags);
VXBASE_UI_EXPORT BOOL MoveToEx(HDC dc, int x, int y, POINT* old);
// A line from the current position up to, but not including, (x, y).
VXBASE_UI_EXPORT BOOL LineTo(HDC dc, int x, int y);
VXBASE_UI_EXPORT BOOL Polyline(HDC dc, const POINT* points, int count);
VXBASE_UI_EXPORT BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
VXBASE_UI_EXPORT BOOL RoundRect(HDC dc, int left, int top, int right, int bottom, int width, int height);
VXBASE_UI_EXPORT BOOL Ellipse(HDC dc, int left, int top, int right, int bottom);
VXBASE_UI_EXPORT BOOL Polygon(HDC dc, const POINT* points, int count);
// Rectangles: a horizontal or vertical two-colour run per rectangle, the
// colour at offset i of n being start + (end - start) * i / n. Triangles:
// interpolated colours.
VXBASE_UI_EXPORT BOOL GradientFill(HDC dc, TRIVERTEX* vertices, ULONG vertexCount, void* mesh, ULONG meshCount,
                                   ULONG mode);
VXBASE_UI_EXPORT BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop);
// Copies with a raster operation. Between a 1-bit and a colour device the
// colours convert as on the original: a 1-bit source gives the destination's
// text colour for 0 and background colour for 1; a colour source gives 1 (white)
// in a 1-bit destination where it equals the source's background colour.
VXBASE_UI_EXPORT BOOL BitBlt(HDC dest, int x, int y, int width, int height, HDC source, int sx, int sy, DWORD rop);
VXBASE_UI_EXPORT BOOL StretchBlt(HDC dest, int x, int y, int width, int height, HDC source, int sx, int sy,
                                 int sourceWidth, int sourceHeight, DWORD rop);
// Draws through a mask: where the mask is 1 the transparent colour's pixels
// are left alone.
VXBASE_UI_EXPORT BOOL TransparentBlt(HDC dest, int x, int y, int width, int height, HDC source, int sx, int sy,
                                     int sourceWidth, int sourceHeight, UINT transparent);
VXBASE_UI_EXPORT int SetStretchBltMode(HDC dc, int mode);

// --- text ------------------------------------------------------------------------------------------------
// Lays out and draws text (bytes in the code page) in a rectangle by the DT_
// format bits; with DT_CALCRECT only measures, setting the rectangle's right
// and bottom. Returns the height of the text (from the top of the rectangle
// to the bottom of the text with DT_VCENTER or DT_BOTTOM). A count of -1
// means up to the terminating zero.
VXBASE_UI_EXPORT int DrawTextA(HDC dc, LPCSTR text, int count, RECT* rect, UINT format);
VXBASE_UI_EXPORT BOOL TextOutA(HDC dc, int x, int y, LPCSTR text, int count);
VXBASE_UI_EXPORT BOOL ExtTextOutA(HDC dc, int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT count,
                                  const int* dx);
VXBASE_UI_EXPORT BOOL GetTextExtentPoint32A(HDC dc, LPCSTR text, int count, SIZE* size);
VXBASE_UI_EXPORT BOOL GetTextMetricsA(HDC dc, TEXTMETRICA* metrics);
VXBASE_UI_EXPORT int GetTextFaceA(HDC dc, int count, LPSTR face);
// Draws an icon, a bitmap or text in a state: DSS_DISABLED embosses it in the
// highlight and shadow colours; DSS_MONO paints its shape in `brush`; DSS_UNION
// dithers it. The size 0 takes the image's own.
VXBASE_UI_EXPORT BOOL DrawStateA(HDC dc, HBRUSH brush, DRAWSTATEPROC proc, LPARAM data, WPARAM wData, int x, int y,
                                 int cx, int cy, UINT flags);

// --- icons, cursors, resources ----------------------------------------------------------------------
// Loads a bitmap, icon or cursor of the library (by number) or, with
// LR_LOADFROMFILE, an image file. `instance` is ignored: the library's and the
// host's images are one table (see vx::SetResourceImage). Null when absent.
VXBASE_UI_EXPORT HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int cx, int cy, UINT flags);
VXBASE_UI_EXPORT HBITMAP LoadBitmapA(HINSTANCE instance, LPCSTR name);
VXBASE_UI_EXPORT HICON LoadIconA(HINSTANCE instance, LPCSTR name);
// The system cursors (IDC_...) with a null instance; otherwise by number.
VXBASE_UI_EXPORT HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name);
VXBASE_UI_EXPORT HICON CreateIconIndirect(const ICONINFO* info);
// The icon's colour and mask bitmaps (new copies the caller deletes) and its
// hot spot, which is the centre for an icon.
VXBASE_UI_EXPORT BOOL GetIconInfo(HICON icon, PICONINFO info);
VXBASE_UI_EXPORT HICON CopyIcon(HICON icon);
VXBASE_UI_EXPORT BOOL DestroyIcon(HICON icon);
VXBASE_UI_EXPORT BOOL DestroyCursor(HCURSOR cursor);
VXBASE_UI_EXPORT BOOL DrawIcon(HDC dc, int x, int y, HICON icon);
VXBASE_UI_EXPORT BOOL DrawIconEx(HDC dc, int x, int y, HICON icon, int cx, int cy, UINT step, HBRUSH flicker,
                                 UINT flags);
// Sets the cursor shown while the mouse is over the window that answered
// WM_SETCURSOR; returns the previous one.
VXBASE_UI_EXPORT HCURSOR SetCursor(HCURSOR cursor);
VXBASE_UI_EXPORT HCURSOR GetCursor();
