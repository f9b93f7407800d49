#include "ui/gdi/gdiobjects_p.h"

#include "platform/windows/sysmetrics.h"

#include <cstdlib>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vx::gdi {
namespace {

bool UsesSource(DWORD rop)
{
    const unsigned code = (rop >> 16) & 0xFF;
    return ((code >> 2) ^ code) & 0x33;
}

bool UsesPattern(DWORD rop)
{
    const unsigned code = (rop >> 16) & 0xFF;
    return ((code >> 4) ^ code) & 0x0F;
}

// The source's pixels as the destination sees them: a 1-bit source turns into
// the destination's text (0) and background (1) colours; a colour source
// going into a 1-bit destination is white where it has the source's
// background colour.
QImage SourceAsDestination(Dc& source, Dc& dest, const QRect& area)
{
    source.EndPainter();
    QImage* image = source.Target();
    QImage part = image ? image->copy(area) : QImage(area.size(), QImage::Format_RGB32);
    if (!image)
        part.fill(0xFF000000u);
    const bool fromMono = source.Mono();
    const bool toMono = dest.Mono();
    if (fromMono == toMono)
        return part;
    const QRgb text = ToRgb(dest.st.text);
    const QRgb bk = ToRgb(dest.st.bk);
    const QRgb sourceBk = ToRgb(source.st.bk) & 0xFFFFFF;
    for (int y = 0; y < part.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(part.scanLine(y));
        for (int x = 0; x < part.width(); ++x) {
            if (fromMono)
                line[x] = MonoBit(line[x]) ? bk : text;
            else
                line[x] = (line[x] & 0xFFFFFF) == sourceBk ? 0xFFFFFFFFu : 0xFF000000u;
        }
    }
    return part;
}

// Writes `image` (already in the destination's terms, scaled to `area`) into
// the device by a raster operation; `skip` leaves pixels of one colour alone.
void Blend(Dc& dest, const QRect& area, const QImage& image, DWORD rop, bool useSkip = false, QRgb skip = 0)
{
    const Brush* brush = UsesPattern(rop) ? Get<Brush>(dest.st.brush) : nullptr;
    dest.EndPainter();
    QImage* target = dest.Target();
    if (!target || area.isEmpty())
        return;
    const bool mono = dest.Mono();
    const unsigned code = (rop >> 16) & 0xFF;
    ForEachClipped(dest, area, [&](const QRect& r) {
        for (int y = r.top(); y <= r.bottom(); ++y) {
            const auto* src = reinterpret_cast<const QRgb*>(image.constScanLine(y - area.top()));
            auto* dst = reinterpret_cast<QRgb*>(target->scanLine(y));
            if (code == 0xCC && !useSkip && !mono) {
                // A plain copy, row by row.
                for (int x = r.left(); x <= r.right(); ++x)
                    dst[x] = src[x - area.left()] | 0xFF000000u;
                continue;
            }
            for (int x = r.left(); x <= r.right(); ++x) {
                const QRgb s = src[x - area.left()];
                if (useSkip && (s & 0xFFFFFF) == (skip & 0xFFFFFF))
                    continue;
                QRgb out;
                if (code == 0xCC) {
                    out = s | 0xFF000000u;
                } else {
                    const QRgb p = brush ? brush->PixelAt(x, y, dest.st.brushOrg, dest.st.text, dest.st.bk) : 0;
                    out = Rop3(rop, p, s, dst[x]);
                }
                if (mono)
                    out = SnapMono(out);
                dst[x] = out;
            }
        }
    });
}

// Copies `count` pixels with their alpha set, four at a time where the
// processor allows.
void CopyOpaque(const QRgb* in, QRgb* out, int count)
{
    int x = 0;
#ifdef __SSE2__
    const __m128i alpha = _mm_set1_epi32(static_cast<int>(0xFF000000u));
    for (; x + 4 <= count; x += 4) {
        const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + x));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), _mm_or_si128(p, alpha));
    }
#endif
    for (; x < count; ++x)
        out[x] = in[x] | 0xFF000000u;
}

// A plain copy between two colour images of different memory, with the
// source rectangle inside its image: row by row, without the copy of the
// source that the general way makes (the preview copies whole windows so).
bool CopyDirectly(Dc& source, Dc& dest, QPoint from, const QRect& area)
{
    if (source.Mono() || dest.Mono() || area.isEmpty())
        return false;
    source.EndPainter();
    dest.EndPainter();
    const QImage* src = source.Target();
    QImage* dst = dest.Target();
    if (!src || !dst || src->isNull() || dst->isNull() || src->depth() != 32 || dst->depth() != 32 ||
        !src->rect().contains(QRect(from, area.size())))
        return false;
    const uchar* srcBegin = src->constBits();
    const uchar* srcEnd = srcBegin + src->sizeInBytes();
    const uchar* dstBegin = dst->constBits();
    const uchar* dstEnd = dstBegin + dst->sizeInBytes();
    if (srcBegin < dstEnd && dstBegin < srcEnd)
        return false; // the same pixels, or a view of them: the general way copies first
    const QPoint shift = from - area.topLeft();
    // Pixels of RGB32 images are opaque by the format's rule: a straight copy.
    const bool opaque = src->format() == QImage::Format_RGB32 && dst->format() == QImage::Format_RGB32;
    const uchar* in0 = src->constBits();
    uchar* out0 = dst->bits();
    const qsizetype inStride = src->bytesPerLine();
    const qsizetype outStride = dst->bytesPerLine();
    ForEachClipped(dest, area, [&](const QRect& r) {
        const int count = r.width();
        for (int y = r.top(); y <= r.bottom(); ++y) {
            const auto* in = reinterpret_cast<const QRgb*>(in0 + (y + shift.y()) * inStride) + r.left() + shift.x();
            auto* out = reinterpret_cast<QRgb*>(out0 + y * outStride) + r.left();
            if (opaque)
                std::memcpy(out, in, static_cast<std::size_t>(count) * sizeof(QRgb));
            else
                CopyOpaque(in, out, count);
        }
    });
    return true;
}

QImage Scaled(const QImage& image, QSize size, bool mirrorX, bool mirrorY)
{
    QImage out(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        const int sy = std::min(image.height() - 1, y * image.height() / std::max(1, size.height()));
        const auto* src = reinterpret_cast<const QRgb*>(image.constScanLine(mirrorY ? image.height() - 1 - sy : sy));
        auto* dst = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int sx = std::min(image.width() - 1, x * image.width() / std::max(1, size.width()));
            dst[x] = src[mirrorX ? image.width() - 1 - sx : sx];
        }
    }
    return out;
}

// Paints the black pixels of `shape` at `area` in a brush.
void FillShape(Dc& dc, const QRect& area, const QImage& shape, const Brush* brush, COLORREF color, bool useColor)
{
    dc.EndPainter();
    QImage* target = dc.Target();
    if (!target)
        return;
    const bool mono = dc.Mono();
    ForEachClipped(dc, area, [&](const QRect& r) {
        for (int y = r.top(); y <= r.bottom(); ++y) {
            const auto* s = reinterpret_cast<const QRgb*>(shape.constScanLine(y - area.top()));
            auto* d = reinterpret_cast<QRgb*>(target->scanLine(y));
            for (int x = r.left(); x <= r.right(); ++x) {
                if (MonoBit(s[x - area.left()]))
                    continue;
                QRgb c = useColor ? ToRgb(color)
                                  : (brush ? brush->PixelAt(x, y, dc.st.brushOrg, dc.st.text, dc.st.bk) : 0xFF000000u);
                if (mono)
                    c = SnapMono(c);
                d[x] = c | 0xFF000000u;
            }
        }
    });
}

// An icon drawn as the original did: destination AND mask, then XOR colour.
void DrawIconImage(Dc& dc, const QRect& area, const Icon& icon, UINT flags)
{
    const QImage mask = Scaled(icon.mask, area.size(), false, false);
    const QImage color = Scaled(icon.color, area.size(), false, false);
    dc.EndPainter();
    QImage* target = dc.Target();
    if (!target)
        return;
    const bool mono = dc.Mono();
    ForEachClipped(dc, area, [&](const QRect& r) {
        for (int y = r.top(); y <= r.bottom(); ++y) {
            const auto* m = reinterpret_cast<const QRgb*>(mask.constScanLine(y - area.top()));
            const auto* c = reinterpret_cast<const QRgb*>(color.constScanLine(y - area.top()));
            auto* d = reinterpret_cast<QRgb*>(target->scanLine(y));
            for (int x = r.left(); x <= r.right(); ++x) {
                QRgb v = d[x];
                if (flags & DI_MASK)
                    v &= m[x - area.left()];
                if (flags & DI_IMAGE)
                    v ^= c[x - area.left()] & 0xFFFFFF;
                if (mono)
                    v = SnapMono(v);
                d[x] = v | 0xFF000000u;
            }
        }
    });
}

// The shape of a bitmap: every pixel that is not white.
QImage BitmapShape(const QImage& image)
{
    QImage shape(image.size(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        auto* d = reinterpret_cast<QRgb*>(shape.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            d[x] = (s[x] & 0xFFFFFF) == 0xFFFFFF ? 0xFFFFFFFFu : 0xFF000000u;
    }
    return shape;
}

} // namespace
} // namespace vx::gdi

using namespace vx::gdi;

BOOL BitBlt(HDC dest, int x, int y, int width, int height, HDC source, int sx, int sy, DWORD rop)
{
    Dc* d = Get<Dc>(dest);
    if (!d)
        return FALSE;
    const QRect area = d->ToDevice(RECT{x, y, x + width, y + height});
    if (!UsesSource(rop)) {
        FillDevice(*d, area, Get<Brush>(d->st.brush), rop);
        return TRUE;
    }
    Dc* s = Get<Dc>(source);
    if (!s)
        return FALSE;
    const QPoint from = s->ToDevice(sx, sy);
    if (rop == SRCCOPY && CopyDirectly(*s, *d, from, area))
        return TRUE;
    const QImage pixels = SourceAsDestination(*s, *d, QRect(from, area.size()));
    Blend(*d, area, pixels, rop);
    return TRUE;
}

BOOL StretchBlt(HDC dest, int x, int y, int width, int height, HDC source, int sx, int sy, int sourceWidth,
                int sourceHeight, DWORD rop)
{
    Dc* d = Get<Dc>(dest);
    if (!d)
        return FALSE;
    if (!UsesSource(rop)) {
        FillDevice(*d, d->ToDevice(RECT{x, y, x + width, y + height}), Get<Brush>(d->st.brush), rop);
        return TRUE;
    }
    Dc* s = Get<Dc>(source);
    if (!s || !width || !height || !sourceWidth || !sourceHeight)
        return FALSE;
    const QRect area = d->ToDevice(RECT{x, y, x + width, y + height});
    const QRect from = s->ToDevice(RECT{sx, sy, sx + sourceWidth, sy + sourceHeight});
    // A negative extent on one side only mirrors the image.
    const bool mirrorX = (width < 0) != (sourceWidth < 0);
    const bool mirrorY = (height < 0) != (sourceHeight < 0);
    const QImage pixels = Scaled(SourceAsDestination(*s, *d, from), area.size(), mirrorX, mirrorY);
    Blend(*d, area, pixels, rop);
    return TRUE;
}

BOOL TransparentBlt(HDC dest, int x, int y, int width, int height, HDC source, int sx, int sy, int sourceWidth,
                    int sourceHeight, UINT transparent)
{
    Dc* d = Get<Dc>(dest);
    Dc* s = Get<Dc>(source);
    if (!d || !s || width <= 0 || height <= 0 || sourceWidth <= 0 || sourceHeight <= 0)
        return FALSE;
    const QRect area = d->ToDevice(RECT{x, y, x + width, y + height});
    const QRect from = s->ToDevice(RECT{sx, sy, sx + sourceWidth, sy + sourceHeight});
    s->EndPainter();
    QImage* image = s->Target();
    if (!image)
        return FALSE;
    const QImage pixels = Scaled(image->copy(from), area.size(), false, false);
    Blend(*d, area, pixels, SRCCOPY, true, ToRgb(transparent));
    return TRUE;
}

BOOL DrawIconEx(HDC dc, int x, int y, HICON icon, int cx, int cy, UINT, HBRUSH, UINT flags)
{
    Dc* d = Get<Dc>(dc);
    Icon* i = Get<Icon>(icon);
    if (!d || !i || i->color.isNull())
        return FALSE;
    if (cx == 0)
        cx = (flags & DI_DEFAULTSIZE) ? GetSystemMetrics(SM_CXICON) : i->color.width();
    if (cy == 0)
        cy = (flags & DI_DEFAULTSIZE) ? GetSystemMetrics(SM_CYICON) : i->color.height();
    if (!(flags & DI_NORMAL))
        flags |= DI_NORMAL;
    DrawIconImage(*d, d->ToDevice(RECT{x, y, x + cx, y + cy}), *i, flags);
    return TRUE;
}

BOOL DrawIcon(HDC dc, int x, int y, HICON icon)
{
    return DrawIconEx(dc, x, y, icon, 0, 0, 0, nullptr, DI_NORMAL);
}

BOOL DrawStateA(HDC dc, HBRUSH brush, DRAWSTATEPROC proc, LPARAM data, WPARAM wData, int x, int y, int cx, int cy,
                UINT flags)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    const UINT type = flags & 0x000F;
    QImage color; // what a normal draw shows
    QImage shape; // black where the image is
    const Icon* icon = nullptr;
    switch (type) {
    case DST_ICON: {
        icon = Get<Icon>(reinterpret_cast<HICON>(data));
        if (!icon)
            return FALSE;
        const QSize size(cx ? cx : icon->color.width(), cy ? cy : icon->color.height());
        shape = Scaled(icon->mask, size, false, false);
        break;
    }
    case DST_BITMAP: {
        Bitmap* b = Get<Bitmap>(reinterpret_cast<HBITMAP>(data));
        if (!b)
            return FALSE;
        const QImage& pixels = b->Pixels();
        const QSize size(cx ? cx : pixels.width(), cy ? cy : pixels.height());
        color = Scaled(pixels, size, false, false);
        shape = BitmapShape(color);
        break;
    }
    case DST_TEXT:
    case DST_PREFIXTEXT: {
        const char* text = reinterpret_cast<const char*>(data);
        if (!text)
            return FALSE;
        shape = TextShape(*d, text, wData ? static_cast<int>(wData) : -1, type == DST_PREFIXTEXT);
        break;
    }
    default: { // DST_COMPLEX: the callback draws into a bitmap of the size given
        if (!proc || cx <= 0 || cy <= 0)
            return FALSE;
        HDC mem = CreateCompatibleDC(dc);
        HBITMAP bmp = CreateBitmap(cx, cy, 1, 32, nullptr);
        HGDIOBJ old = SelectObject(mem, bmp);
        RECT all{0, 0, cx, cy};
        FillRect(mem, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        SelectObject(mem, d->st.font);
        SetTextColor(mem, d->st.text);
        SetBkMode(mem, TRANSPARENT);
        proc(mem, data, wData, cx, cy);
        SelectObject(mem, old);
        DeleteDC(mem);
        color = Get<Bitmap>(bmp)->Pixels().copy();
        DeleteObject(bmp);
        shape = BitmapShape(color);
        break;
    }
    }
    const QRect area = d->ToDevice(RECT{x, y, x + shape.width(), y + shape.height()});
    if (flags & DSS_DISABLED) {
        // Embossed: the shape in the highlight colour one pixel down and right,
        // then in the shadow colour in place.
        FillShape(*d, area.translated(1, 1), shape, nullptr, GetSysColor(COLOR_3DHILIGHT), true);
        FillShape(*d, area, shape, nullptr, GetSysColor(COLOR_3DSHADOW), true);
        return TRUE;
    }
    if (flags & DSS_MONO) {
        const Brush* b = Get<Brush>(brush ? brush : d->st.brush);
        FillShape(*d, area, shape, b, 0, false);
        return TRUE;
    }
    if (icon)
        DrawIconImage(*d, area, *icon, DI_NORMAL);
    else if (type == DST_TEXT || type == DST_PREFIXTEXT)
        FillShape(*d, area, shape, nullptr, d->st.text, true);
    else
        Blend(*d, area, color, SRCCOPY);
    if (flags & DSS_UNION) {
        // A checker of the highlight colour over the image.
        QImage half = shape;
        for (int py = 0; py < half.height(); ++py) {
            for (int px = 0; px < half.width(); ++px) {
                if ((px + py) & 1)
                    half.setPixel(px, py, 0xFFFFFFFFu);
            }
        }
        FillShape(*d, area, half, nullptr, GetSysColor(COLOR_HIGHLIGHT), true);
    }
    return TRUE;
}
