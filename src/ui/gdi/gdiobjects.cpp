#include "ui/gdi/gdiobjects_p.h"

#include "platform/windows/sysmetrics.h"

#include <cstring>
#include <unordered_map>

namespace vx::gdi {
namespace {

struct Table {
    std::unordered_map<std::uintptr_t, std::unique_ptr<Object>> objects;
    // Handles count up from here and are never reused, so that a stale
    // handle fails instead of reaching a newer object.
    std::uintptr_t next = 0x10000;
};

Table& TheTable()
{
    static auto* table = new Table; // outlives the static objects of hosts
    return *table;
}

constexpr int kSysColorCount = 31;

std::unique_ptr<Brush> SolidBrush(COLORREF color)
{
    auto b = std::make_unique<Brush>();
    b->color = color;
    return b;
}

std::unique_ptr<Pen> MakePen(int style, int width, COLORREF color)
{
    auto p = std::make_unique<Pen>();
    p->style = style & PS_STYLE_MASK;
    p->width = width < 0 ? 0 : width;
    p->color = color;
    return p;
}

LOGFONTA StockFontRequest(int index)
{
    LOGFONTA lf{};
    lf.lfCharSet = DEFAULT_CHARSET;
    switch (index) {
    case SYSTEM_FONT:
    case DEVICE_DEFAULT_FONT:
        lf.lfHeight = 16;
        lf.lfWeight = FW_BOLD;
        std::strcpy(lf.lfFaceName, "System");
        break;
    case OEM_FIXED_FONT:
    case ANSI_FIXED_FONT:
    case SYSTEM_FIXED_FONT:
        lf.lfHeight = -12;
        lf.lfWeight = FW_NORMAL;
        lf.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
        std::strcpy(lf.lfFaceName, "Courier");
        break;
    default: // DEFAULT_GUI_FONT, ANSI_VAR_FONT
        lf.lfHeight = -11;
        lf.lfWeight = FW_NORMAL;
        std::strcpy(lf.lfFaceName, "MS Shell Dlg");
        break;
    }
    return lf;
}

std::unique_ptr<Object> MakeStock(int index)
{
    switch (index) {
    case WHITE_BRUSH: return SolidBrush(RGB(255, 255, 255));
    case LTGRAY_BRUSH: return SolidBrush(RGB(192, 192, 192));
    case GRAY_BRUSH: return SolidBrush(RGB(128, 128, 128));
    case DKGRAY_BRUSH: return SolidBrush(RGB(64, 64, 64));
    case BLACK_BRUSH: return SolidBrush(RGB(0, 0, 0));
    case NULL_BRUSH: {
        auto b = std::make_unique<Brush>();
        b->style = BS_NULL;
        return b;
    }
    case WHITE_PEN: return MakePen(PS_SOLID, 0, RGB(255, 255, 255));
    case BLACK_PEN: return MakePen(PS_SOLID, 0, RGB(0, 0, 0));
    case NULL_PEN: return MakePen(PS_NULL, 0, 0);
    case OEM_FIXED_FONT:
    case ANSI_FIXED_FONT:
    case ANSI_VAR_FONT:
    case SYSTEM_FONT:
    case DEVICE_DEFAULT_FONT:
    case SYSTEM_FIXED_FONT:
    case DEFAULT_GUI_FONT: return MakeFont(StockFontRequest(index));
    default: return nullptr;
    }
}

int BitsPixelOf(const Bitmap& b)
{
    if (b.dib)
        return b.dib->bpp;
    return b.mono ? 1 : 32;
}

int WidthBytesOf(const Bitmap& b)
{
    if (b.dib)
        return b.dib->stride;
    return b.mono ? ((b.image.width() + 15) / 16) * 2 : b.image.width() * 4;
}

// Reads DDB bits (top-down; 1 bit rows 16-bit aligned, colour BGRX) into an image.
void ReadBits(QImage& image, bool mono, int bpp, const unsigned char* bits)
{
    const int w = image.width();
    const int h = image.height();
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        if (mono) {
            const unsigned char* row = bits + y * (((w + 15) / 16) * 2);
            for (int x = 0; x < w; ++x)
                line[x] = (row[x / 8] & (0x80 >> (x % 8))) ? 0xFFFFFFFFu : 0xFF000000u;
        } else if (bpp == 24) {
            const unsigned char* row = bits + y * (((w * 3 + 1) / 2) * 2);
            for (int x = 0; x < w; ++x)
                line[x] = qRgb(row[3 * x + 2], row[3 * x + 1], row[3 * x]);
        } else {
            const unsigned char* row = bits + y * w * 4;
            for (int x = 0; x < w; ++x)
                line[x] = qRgb(row[4 * x + 2], row[4 * x + 1], row[4 * x]);
        }
    }
}

} // namespace

Object::~Object() = default;

Dc::~Dc() = default;

void* Add(std::unique_ptr<Object> object)
{
    if (!object)
        return nullptr;
    Table& t = TheTable();
    const std::uintptr_t key = t.next++;
    object->handle = reinterpret_cast<void*>(key);
    void* handle = object->handle;
    t.objects[key] = std::move(object);
    return handle;
}

Object* Find(const void* handle)
{
    Table& t = TheTable();
    auto it = t.objects.find(reinterpret_cast<std::uintptr_t>(handle));
    return it == t.objects.end() ? nullptr : it->second.get();
}

bool Remove(const void* handle)
{
    Table& t = TheTable();
    auto it = t.objects.find(reinterpret_cast<std::uintptr_t>(handle));
    if (it == t.objects.end())
        return false;
    // Destroy outside the table: a device's destructor may look up handles.
    std::unique_ptr<Object> gone = std::move(it->second);
    t.objects.erase(it);
    return true;
}

Object* Stock(int index)
{
    static std::unordered_map<int, void*> made;
    auto it = made.find(index);
    if (it != made.end())
        return Find(it->second);
    std::unique_ptr<Object> o = MakeStock(index);
    if (!o)
        return nullptr;
    o->stock = true;
    void* h = Add(std::move(o));
    made[index] = h;
    return Find(h);
}

Bitmap* DefaultBitmap()
{
    static void* handle = nullptr;
    if (Bitmap* b = Get<Bitmap>(handle))
        return b;
    Bitmap* b = NewBitmap(1, 1, true);
    b->stock = true;
    handle = b->handle;
    return b;
}

COLORREF Brush::Color() const
{
    return sysColor >= 0 ? GetSysColor(sysColor) : color;
}

bool Brush::HatchCovers(int x, int y, QPoint origin) const
{
    const int u = ((x - origin.x()) % 8 + 8) % 8;
    const int v = ((y - origin.y()) % 8 + 8) % 8;
    switch (hatch) {
    case HS_HORIZONTAL: return v == 7;
    case HS_VERTICAL: return u == 7;
    case HS_FDIAGONAL: return u == v;
    case HS_BDIAGONAL: return u + v == 7;
    case HS_CROSS: return u == 7 || v == 7;
    case HS_DIAGCROSS: return u == v || u + v == 7;
    default: return false;
    }
}

QRgb Brush::PixelAt(int x, int y, QPoint origin, COLORREF text, COLORREF bk) const
{
    switch (style) {
    case BS_HATCHED:
        return ToRgb(HatchCovers(x, y, origin) ? Color() : bk);
    case BS_PATTERN: {
        if (pattern.isNull())
            return ToRgb(Color());
        const int u = ((x - origin.x()) % pattern.width() + pattern.width()) % pattern.width();
        const int v = ((y - origin.y()) % pattern.height() + pattern.height()) % pattern.height();
        const QRgb p = pattern.pixel(u, v);
        if (patternMono)
            return ToRgb(MonoBit(p) ? bk : text);
        return p;
    }
    default:
        return ToRgb(Color());
    }
}

QImage& Bitmap::Pixels()
{
    if (selectedInto)
        selectedInto->EndPainter();
    if (!dib)
        return image;
    const int w = image.width();
    const int h = image.height();
    const Dib& d = *dib;
    // A full palette, so that any index of the depth reads a colour.
    QRgb palette[256];
    for (int i = 0; i < 256; ++i)
        palette[i] = static_cast<std::size_t>(i) < d.palette.size() ? d.palette[static_cast<std::size_t>(i)] : 0xFF000000u;
    for (int y = 0; y < h; ++y) {
        const unsigned char* row = d.bits.data() + (d.bottomUp ? h - 1 - y : y) * d.stride;
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        switch (d.bpp) {
        case 8:
            for (int x = 0; x < w; ++x)
                line[x] = palette[row[x]];
            break;
        case 4:
            for (int x = 0; x < w; ++x)
                line[x] = palette[(row[x / 2] >> ((x & 1) ? 0 : 4)) & 0x0F];
            break;
        case 1:
            for (int x = 0; x < w; ++x)
                line[x] = palette[(row[x / 8] >> (7 - x % 8)) & 1];
            break;
        case 24:
            for (int x = 0; x < w; ++x)
                line[x] = qRgb(row[3 * x + 2], row[3 * x + 1], row[3 * x]);
            break;
        default:
            for (int x = 0; x < w; ++x)
                line[x] = qRgb(row[4 * x + 2], row[4 * x + 1], row[4 * x]);
            break;
        }
    }
    return image;
}

Bitmap* NewBitmap(int width, int height, bool mono)
{
    auto b = std::make_unique<Bitmap>();
    b->image = QImage(std::max(width, 1), std::max(height, 1), QImage::Format_RGB32);
    b->image.fill(0xFF000000u);
    b->mono = mono;
    void* h = Add(std::move(b));
    return Get<Bitmap>(h);
}

HBITMAP BitmapFromImage(const QImage& image, bool mono)
{
    if (image.isNull())
        return nullptr;
    Bitmap* b = NewBitmap(image.width(), image.height(), mono);
    b->image = image.convertToFormat(QImage::Format_RGB32);
    if (mono) {
        for (int y = 0; y < b->image.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(b->image.scanLine(y));
            for (int x = 0; x < b->image.width(); ++x)
                line[x] = SnapMono(line[x]);
        }
    }
    return static_cast<HBITMAP>(b->handle);
}

QRgb Rop2(int mode, QRgb pen, QRgb dest)
{
    const QRgb p = pen & 0xFFFFFF;
    const QRgb d = dest & 0xFFFFFF;
    QRgb r;
    switch (mode) {
    case R2_BLACK: r = 0; break;
    case R2_NOTMERGEPEN: r = ~(p | d); break;
    case R2_MASKNOTPEN: r = ~p & d; break;
    case R2_NOTCOPYPEN: r = ~p; break;
    case R2_MASKPENNOT: r = p & ~d; break;
    case R2_NOT: r = ~d; break;
    case R2_XORPEN: r = p ^ d; break;
    case R2_NOTMASKPEN: r = ~(p & d); break;
    case R2_MASKPEN: r = p & d; break;
    case R2_NOTXORPEN: r = ~(p ^ d); break;
    case R2_NOP: r = d; break;
    case R2_MERGENOTPEN: r = ~p | d; break;
    case R2_MERGEPENNOT: r = p | ~d; break;
    case R2_MERGEPEN: r = p | d; break;
    case R2_WHITE: r = 0xFFFFFF; break;
    default: r = p; break; // R2_COPYPEN
    }
    return 0xFF000000u | (r & 0xFFFFFF);
}

QRgb Rop3(DWORD rop, QRgb pattern, QRgb source, QRgb dest)
{
    const unsigned code = (rop >> 16) & 0xFF;
    const QRgb p = pattern & 0xFFFFFF;
    const QRgb s = source & 0xFFFFFF;
    const QRgb d = dest & 0xFFFFFF;
    QRgb r;
    switch (code) {
    case 0x00: r = 0; break;
    case 0xFF: r = 0xFFFFFF; break;
    case 0xCC: r = s; break;
    case 0xF0: r = p; break;
    case 0xAA: r = d; break;
    case 0x88: r = s & d; break;
    case 0xEE: r = s | d; break;
    case 0x66: r = s ^ d; break;
    case 0x55: r = ~d; break;
    case 0x5A: r = p ^ d; break;
    case 0x33: r = ~s; break;
    default:
        // Bit k of the code is the answer for pattern bit k & 4, source bit
        // k & 2 and destination bit k & 1; apply it to every bit at once.
        r = 0;
        for (unsigned k = 0; k < 8; ++k) {
            if (code & (1u << k))
                r |= ((k & 4) ? p : ~p) & ((k & 2) ? s : ~s) & ((k & 1) ? d : ~d);
        }
        break;
    }
    return 0xFF000000u | (r & 0xFFFFFF);
}

} // namespace vx::gdi

using namespace vx::gdi;

HGDIOBJ GetStockObject(int index)
{
    Object* o = Stock(index);
    return o ? o->handle : nullptr;
}

BOOL DeleteObject(HGDIOBJ object)
{
    Object* o = Find(object);
    if (!o || o->kind == Kind::Dc || o->kind == Kind::Icon)
        return FALSE;
    if (o->stock)
        return TRUE;
    if (o->selections > 0)
        return FALSE;
    return Remove(object);
}

int GetObjectA(HGDIOBJ object, int size, void* out)
{
    Object* o = Find(object);
    if (!o)
        return 0;
    auto copy = [&](const auto& value) -> int {
        const int need = static_cast<int>(sizeof value);
        if (!out)
            return need;
        const int n = std::min(size, need);
        if (n <= 0)
            return 0;
        std::memcpy(out, &value, static_cast<std::size_t>(n));
        return n;
    };
    switch (o->kind) {
    case Kind::Pen: {
        auto* p = static_cast<Pen*>(o);
        LOGPEN lp{static_cast<UINT>(p->style), POINT{p->width, 0}, p->color};
        return copy(lp);
    }
    case Kind::Brush: {
        auto* b = static_cast<Brush*>(o);
        LOGBRUSH lb{b->style, b->Color(), static_cast<ULONG_PTR>(b->hatch)};
        return copy(lb);
    }
    case Kind::Font:
        return copy(static_cast<Font*>(o)->lf);
    case Kind::Bitmap: {
        auto* b = static_cast<Bitmap*>(o);
        BITMAP bm{};
        bm.bmWidth = b->image.width();
        bm.bmHeight = b->image.height();
        bm.bmWidthBytes = WidthBytesOf(*b);
        bm.bmPlanes = 1;
        bm.bmBitsPixel = static_cast<WORD>(BitsPixelOf(*b));
        bm.bmBits = b->dib ? b->dib->bits.data() : nullptr;
        return copy(bm);
    }
    default:
        return 0;
    }
}

DWORD GetObjectType(HGDIOBJ object)
{
    Object* o = Find(object);
    if (!o)
        return 0;
    switch (o->kind) {
    case Kind::Pen: return OBJ_PEN;
    case Kind::Brush: return OBJ_BRUSH;
    case Kind::Font: return OBJ_FONT;
    case Kind::Bitmap: return OBJ_BITMAP;
    case Kind::Region: return OBJ_REGION;
    case Kind::Dc: return static_cast<Dc*>(o)->type == Dc::Type::Memory ? OBJ_MEMDC : OBJ_DC;
    default: return 0;
    }
}

HPEN CreatePen(int style, int width, COLORREF color)
{
    return static_cast<HPEN>(Add(MakePen(style, width, color)));
}

HPEN CreatePenIndirect(const LOGPEN* pen)
{
    return pen ? CreatePen(static_cast<int>(pen->lopnStyle), pen->lopnWidth.x, pen->lopnColor) : nullptr;
}

HBRUSH CreateSolidBrush(COLORREF color)
{
    return static_cast<HBRUSH>(Add(SolidBrush(color)));
}

HBRUSH CreateHatchBrush(int hatch, COLORREF color)
{
    auto b = SolidBrush(color);
    b->style = BS_HATCHED;
    b->hatch = hatch;
    return static_cast<HBRUSH>(Add(std::move(b)));
}

HBRUSH CreatePatternBrush(HBITMAP bitmap)
{
    Bitmap* source = Get<Bitmap>(bitmap);
    if (!source)
        return nullptr;
    auto b = std::make_unique<Brush>();
    b->style = BS_PATTERN;
    b->pattern = source->Pixels().copy();
    b->patternMono = source->mono;
    return static_cast<HBRUSH>(Add(std::move(b)));
}

HBRUSH CreateBrushIndirect(const LOGBRUSH* brush)
{
    if (!brush)
        return nullptr;
    switch (brush->lbStyle) {
    case BS_NULL: return static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
    case BS_HATCHED: return CreateHatchBrush(static_cast<int>(brush->lbHatch), brush->lbColor);
    case BS_PATTERN: return CreatePatternBrush(reinterpret_cast<HBITMAP>(brush->lbHatch));
    default: return CreateSolidBrush(brush->lbColor);
    }
}

HBRUSH GetSysColorBrush(int index)
{
    if (index < 0 || index >= kSysColorCount)
        return nullptr;
    static void* brushes[kSysColorCount] = {};
    if (!Get<Brush>(brushes[index])) {
        auto b = std::make_unique<Brush>();
        b->sysColor = index;
        b->stock = true;
        brushes[index] = Add(std::move(b));
    }
    return static_cast<HBRUSH>(brushes[index]);
}

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits)
{
    if (width <= 0 || height <= 0)
        return nullptr;
    const bool mono = planes == 1 && bitsPerPixel == 1;
    Bitmap* b = NewBitmap(width, height, mono);
    if (bits)
        ReadBits(b->image, mono, static_cast<int>(bitsPerPixel), static_cast<const unsigned char*>(bits));
    return static_cast<HBITMAP>(b->handle);
}

HBITMAP CreateBitmapIndirect(const BITMAP* bitmap)
{
    if (!bitmap)
        return nullptr;
    return CreateBitmap(bitmap->bmWidth, bitmap->bmHeight, bitmap->bmPlanes, bitmap->bmBitsPixel, bitmap->bmBits);
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height)
{
    Dc* d = Get<Dc>(dc);
    if (!d || width <= 0 || height <= 0)
        return nullptr;
    return static_cast<HBITMAP>(NewBitmap(width, height, d->Mono())->handle);
}

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT, void** bits, HANDLE, DWORD)
{
    if (bits)
        *bits = nullptr;
    if (!info)
        return nullptr;
    const BITMAPINFOHEADER& h = info->bmiHeader;
    const int width = h.biWidth;
    const int height = h.biHeight < 0 ? -h.biHeight : h.biHeight;
    const int bpp = h.biBitCount;
    if (width <= 0 || height <= 0 || (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 24 && bpp != 32) ||
        h.biCompression != BI_RGB)
        return nullptr;
    auto dib = std::make_unique<Dib>();
    dib->bpp = bpp;
    dib->stride = ((bpp * width + 31) / 32) * 4;
    dib->bottomUp = h.biHeight > 0;
    dib->bits.assign(static_cast<std::size_t>(dib->stride) * static_cast<std::size_t>(height), 0);
    if (bpp <= 8) {
        const std::size_t count = h.biClrUsed ? h.biClrUsed : (1u << bpp);
        for (std::size_t i = 0; i < count; ++i) {
            const RGBQUAD& q = info->bmiColors[i];
            dib->palette.push_back(qRgb(q.rgbRed, q.rgbGreen, q.rgbBlue));
        }
    }
    Bitmap* b = NewBitmap(width, height, false);
    b->dib = std::move(dib);
    if (bits)
        *bits = b->dib->bits.data();
    return static_cast<HBITMAP>(b->handle);
}

LONG GetBitmapBits(HBITMAP bitmap, LONG bytes, void* out)
{
    Bitmap* b = Get<Bitmap>(bitmap);
    if (!b || !out || bytes <= 0)
        return 0;
    const QImage& image = b->Pixels();
    const int w = image.width();
    const int h = image.height();
    const int stride = WidthBytesOf(*b);
    std::vector<unsigned char> data(static_cast<std::size_t>(stride) * static_cast<std::size_t>(h), 0);
    if (b->dib) {
        data = b->dib->bits;
    } else {
        for (int y = 0; y < h; ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            unsigned char* row = data.data() + y * stride;
            for (int x = 0; x < w; ++x) {
                if (b->mono) {
                    if (MonoBit(line[x]))
                        row[x / 8] |= static_cast<unsigned char>(0x80 >> (x % 8));
                } else {
                    row[4 * x] = static_cast<unsigned char>(qBlue(line[x]));
                    row[4 * x + 1] = static_cast<unsigned char>(qGreen(line[x]));
                    row[4 * x + 2] = static_cast<unsigned char>(qRed(line[x]));
                }
            }
        }
    }
    const LONG n = std::min<LONG>(bytes, static_cast<LONG>(data.size()));
    std::memcpy(out, data.data(), static_cast<std::size_t>(n));
    return n;
}

LONG SetBitmapBits(HBITMAP bitmap, DWORD bytes, const void* bits)
{
    Bitmap* b = Get<Bitmap>(bitmap);
    if (!b || !bits || b->dib)
        return 0;
    b->Pixels();
    const int h = b->image.height();
    const std::size_t need = static_cast<std::size_t>(WidthBytesOf(*b)) * static_cast<std::size_t>(h);
    std::vector<unsigned char> data(need, 0);
    std::memcpy(data.data(), bits, std::min<std::size_t>(bytes, need));
    ReadBits(b->image, b->mono, 32, data.data());
    return static_cast<LONG>(std::min<std::size_t>(bytes, need));
}

HRGN CreateRectRgn(int left, int top, int right, int bottom)
{
    auto r = std::make_unique<Region>();
    const CRect rect(std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom));
    if (!rect.IsRectEmpty())
        r->region = QRegion(rect.left, rect.top, rect.Width(), rect.Height());
    return static_cast<HRGN>(Add(std::move(r)));
}

HRGN CreateRectRgnIndirect(const RECT* rect)
{
    return rect ? CreateRectRgn(rect->left, rect->top, rect->right, rect->bottom) : nullptr;
}

namespace {

int RegionKind(const QRegion& r)
{
    if (r.isEmpty())
        return NULLREGION;
    return r.rectCount() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

} // namespace

int CombineRgn(HRGN dest, HRGN a, HRGN b, int mode)
{
    Region* d = Get<Region>(dest);
    Region* ra = Get<Region>(a);
    Region* rb = Get<Region>(b);
    if (!d || !ra || (mode != RGN_COPY && !rb))
        return RGN_ERROR;
    switch (mode) {
    case RGN_AND: d->region = ra->region & rb->region; break;
    case RGN_OR: d->region = ra->region | rb->region; break;
    case RGN_XOR: d->region = ra->region ^ rb->region; break;
    case RGN_DIFF: d->region = ra->region - rb->region; break;
    case RGN_COPY: d->region = ra->region; break;
    default: return RGN_ERROR;
    }
    return RegionKind(d->region);
}

BOOL PtInRegion(HRGN region, int x, int y)
{
    Region* r = Get<Region>(region);
    return r && r->region.contains(QPoint(x, y));
}

int GetRgnBox(HRGN region, RECT* box)
{
    Region* r = Get<Region>(region);
    if (!r || !box)
        return RGN_ERROR;
    const QRect b = r->region.boundingRect();
    *box = r->region.isEmpty() ? RECT{0, 0, 0, 0} : RECT{b.left(), b.top(), b.right() + 1, b.bottom() + 1};
    return RegionKind(r->region);
}

int OffsetRgn(HRGN region, int dx, int dy)
{
    Region* r = Get<Region>(region);
    if (!r)
        return RGN_ERROR;
    r->region.translate(dx, dy);
    return RegionKind(r->region);
}

BOOL UnrealizeObject(HGDIOBJ object)
{
    // Brush origins are applied at each fill, so nothing is cached to reset.
    return Find(object) != nullptr;
}
