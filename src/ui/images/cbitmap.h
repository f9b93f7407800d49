// CBitmap: the framework's bitmap, with direct pixel access.
//
// A bitmap is either 1 bit (black and white) or true colour. Loading by
// number reads the library's resource images (see LoadImageA).
//
//   CBitmap bmp;
//   bmp.LoadBitmap(0x3EC);
//   COLORREF corner = bmp.GetPixel(0, 0);
//   bmp.SetPixel(0, 0, RGB(255, 0, 0));
#pragma once

#include "platform/framework/rect.h"
#include "ui/gdi/cgdiobject.h"
#include "vxbase_ui_export.h"

class CDC;

class VXBASE_UI_EXPORT CBitmap : public CGdiObject {
public:
    CBitmap();
    BOOL LoadBitmap(UINT id);
    BOOL LoadBitmap(LPCSTR name);
    // A system bitmap (OBM_SIZE, OBM_CHECK).
    BOOL LoadOEMBitmap(UINT id);
    BOOL CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits);
    BOOL CreateBitmapIndirect(const BITMAP* bitmap);
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
    int GetBitmap(BITMAP* bitmap) const;
    DWORD GetBitmapBits(DWORD count, void* bits) const;
    DWORD SetBitmapBits(DWORD count, const void* bits);
    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
    static CBitmap* FromHandle(HBITMAP bitmap);

    // --- pixel access --------------------------------------------------------
    // Width and height; (0, 0) without a bitmap.
    CSize GetSize() const;
    // The colour at (x, y), CLR_INVALID outside. A 1-bit bitmap answers black
    // or white. Drawing in progress in a device is finished first.
    COLORREF GetPixel(int x, int y) const;
    // Sets a pixel (a 1-bit bitmap takes the nearer of black and white);
    // FALSE outside the bitmap.
    BOOL SetPixel(int x, int y, COLORREF color);
};
