#include "ui/images/cbitmap.h"

#include "ui/gdi/cdc.h"
#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/handlemap_p.h"

using vx::gdi::Bitmap;
using vx::gdi::Get;

CBitmap::CBitmap() = default;

BOOL CBitmap::LoadBitmap(UINT id)
{
    return Attach(::LoadImageA(nullptr, MAKEINTRESOURCE(id), IMAGE_BITMAP, 0, 0, 0));
}

BOOL CBitmap::LoadBitmap(LPCSTR name)
{
    return Attach(::LoadImageA(nullptr, name, IMAGE_BITMAP, 0, 0, 0));
}

BOOL CBitmap::LoadOEMBitmap(UINT id)
{
    return Attach(::LoadBitmapA(nullptr, MAKEINTRESOURCE(id)));
}

BOOL CBitmap::CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits)
{
    return Attach(::CreateBitmap(width, height, planes, bitsPerPixel, bits));
}

BOOL CBitmap::CreateBitmapIndirect(const BITMAP* bitmap)
{
    return Attach(::CreateBitmapIndirect(bitmap));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height)
{
    return dc && Attach(::CreateCompatibleBitmap(dc->m_hDC, width, height));
}

int CBitmap::GetBitmap(BITMAP* bitmap) const
{
    return GetObject(sizeof(BITMAP), bitmap);
}

DWORD CBitmap::GetBitmapBits(DWORD count, void* bits) const
{
    return static_cast<DWORD>(::GetBitmapBits(static_cast<HBITMAP>(m_hObject), static_cast<LONG>(count), bits));
}

DWORD CBitmap::SetBitmapBits(DWORD count, const void* bits)
{
    return static_cast<DWORD>(::SetBitmapBits(static_cast<HBITMAP>(m_hObject), count, bits));
}

CBitmap* CBitmap::FromHandle(HBITMAP bitmap)
{
    return vx::WrapperOf<CBitmap, HBITMAP>(bitmap, [](HBITMAP h) { return vx::gdi::Find(h) != nullptr; });
}

CSize CBitmap::GetSize() const
{
    Bitmap* b = Get<Bitmap>(m_hObject);
    return b ? CSize(b->image.width(), b->image.height()) : CSize();
}

COLORREF CBitmap::GetPixel(int x, int y) const
{
    Bitmap* b = Get<Bitmap>(m_hObject);
    if (!b)
        return CLR_INVALID;
    const QImage& image = b->Pixels();
    if (!image.rect().contains(x, y))
        return CLR_INVALID;
    QRgb p = image.pixel(x, y);
    if (b->mono)
        p = vx::gdi::SnapMono(p);
    return vx::gdi::ToColorRef(p);
}

BOOL CBitmap::SetPixel(int x, int y, COLORREF color)
{
    Bitmap* b = Get<Bitmap>(m_hObject);
    if (!b || b->dib)
        return FALSE;
    QImage& image = b->Pixels();
    if (!image.rect().contains(x, y))
        return FALSE;
    QRgb p = vx::gdi::ToRgb(color);
    if (b->mono)
        p = vx::gdi::SnapMono(p);
    image.setPixel(x, y, p);
    return TRUE;
}
