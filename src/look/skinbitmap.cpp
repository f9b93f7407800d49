#include "look/skinbitmap_p.h"

#include "ui/gdi/cdc.h"

namespace vx::look {

SIZE BitmapSize(HBITMAP bitmap)
{
    BITMAP bm{};
    if (!bitmap || !GetObjectA(bitmap, sizeof bm, &bm))
        return SIZE{0, 0};
    return SIZE{bm.bmWidth, bm.bmHeight};
}

HBITMAP LoadSkinBitmap(int id)
{
    return static_cast<HBITMAP>(LoadImageA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(id)), IMAGE_BITMAP, 0, 0, 0));
}

void Recolour(HBITMAP bitmap, COLORREF transparent, const CShadeDib& table)
{
    const SIZE size = BitmapSize(bitmap);
    const int colors = table.IsValid() ? table.GetNumColors() : 0;
    if (size.cx <= 0 || size.cy <= 0 || colors == 0)
        return;
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    HGDIOBJ old = ::SelectObject(dc, bitmap);
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            const COLORREF pixel = dc.GetPixel(x, y);
            if (pixel == transparent)
                continue;
            const int index = GetRValue(pixel);
            if (index == 0 || index >= colors)
                continue;
            dc.SetPixel(x, y, table.GetPaletteIndex(static_cast<BYTE>(index)));
        }
    }
    ::SelectObject(dc, old);
}

} // namespace vx::look
