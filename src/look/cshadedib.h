// CShadeDib: the small device-independent bitmap behind shaded buttons.
//
// One block holds the header, the palette and the pixel rows (bottom-up, as
// a DIB stores them); pixels are palette indices. Drawing makes a DIB section
// and a memory device on first use, keeps them, copies the pixels in and
// copies the lot to the target device.
//
//   CShadeDib dib;
//   dib.Create(200, 40, 8);
//   dib.SetPaletteIndex(255, 255, 255, 255);
//   dib.SetPixelIndex(0, 0, 255);          // top left
//   dib.BlendPalette(RGB(255, 0, 0), 20);  // 20 per cent red
//   dib.Draw(dc.m_hDC, 0, 0);
#pragma once

#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CShadeDib {
public:
    CShadeDib();
    ~CShadeDib();
    CShadeDib(const CShadeDib&) = delete;
    CShadeDib& operator=(const CShadeDib&) = delete;

    // A bitmap of `bits` per pixel (1, 4, 8, 24 or 32) with zeroed pixels and
    // palette. Drops what was there. FALSE for a bad size or depth.
    BOOL Create(long width, long height, WORD bits);
    // Deletes everything: block, DIB section and device.
    void Clear();
    // Becomes a copy of `source` (size, palette and pixels); FALSE when the
    // source is empty.
    BOOL Clone(const CShadeDib* source);
    // Sets every pixel byte.
    void SetBits(BYTE value);
    void SetPaletteIndex(BYTE index, BYTE r, BYTE g, BYTE b);
    COLORREF GetPaletteIndex(BYTE index) const;
    // Palette index of the pixel at (x, y), y counted from the top. Outside
    // the bitmap nothing happens (and 0 is read).
    void SetPixelIndex(long x, long y, BYTE index);
    BYTE GetPixelIndex(long x, long y) const;
    // Moves every palette entry towards `color` by `percent` (at most 100).
    void BlendPalette(COLORREF color, long percent);
    // Copies the bitmap to the device at (x, y); nothing on an empty bitmap
    // or when the DIB section or device cannot be made.
    void Draw(HDC dc, long x, long y);

    BOOL IsValid() const { return m_pDib != nullptr; }
    long GetWidth() const { return m_Header.biWidth; }
    long GetHeight() const { return m_Header.biHeight; }
    long GetLineWidth() const { return m_LineWidth; }
    WORD GetNumColors() const { return m_nColors; }
    // The pixel rows, bottom row first; null when empty.
    BYTE* GetBits() const;

private:
    RGBQUAD* Palette() const;

    BYTE* m_pDib = nullptr; // header, palette and pixels in one block
    BITMAPINFOHEADER m_Header{};
    long m_LineWidth = 0;
    WORD m_nColors = 0;
    HBITMAP m_hDibSection = nullptr;
    HDC m_hMemDC = nullptr;
    void* m_lpSectionBits = nullptr;
};
