#include "ui/gdi/gdiobjects_p.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/sysmetrics.h"

#include <utility>
#include <vector>

namespace vx::gdi {
namespace {

void Ref(void* handle)
{
    if (Object* o = Find(handle))
        ++o->selections;
}

void Unref(void* handle)
{
    if (Object* o = Find(handle); o && o->selections > 0)
        --o->selections;
}

void RefState(const DcState& s)
{
    Ref(s.pen);
    Ref(s.brush);
    Ref(s.font);
    Ref(s.bitmap);
}

void UnrefState(const DcState& s)
{
    Unref(s.pen);
    Unref(s.brush);
    Unref(s.font);
    Unref(s.bitmap);
}

Dc* NewDc(Dc::Type type)
{
    auto dc = std::make_unique<Dc>(type);
    dc->st.pen = static_cast<HPEN>(Stock(BLACK_PEN)->handle);
    dc->st.brush = static_cast<HBRUSH>(Stock(WHITE_BRUSH)->handle);
    dc->st.font = static_cast<HFONT>(Stock(SYSTEM_FONT)->handle);
    if (type == Dc::Type::Memory) {
        Bitmap* b = DefaultBitmap();
        dc->st.bitmap = static_cast<HBITMAP>(b->handle);
    }
    RefState(dc->st);
    void* h = Add(std::move(dc));
    return Get<Dc>(h);
}

// A picture of part of the surface that shares its pixels, so that a
// client device draws straight into the window. The surface is never copied
// shallowly, so its pixels stay where the view looks.
std::shared_ptr<QImage> View(const std::shared_ptr<QImage>& surface, const QRect& part)
{
    uchar* bits = surface->bits() + part.top() * surface->bytesPerLine() + part.left() * 4;
    return std::shared_ptr<QImage>(
        new QImage(bits, part.width(), part.height(), surface->bytesPerLine(), surface->format()),
        [keep = surface](QImage* view) { delete view; });
}

// A device on a window: its client area, or with `whole` all of it, frame
// included.
Dc* NewWindowDc(HWND window, bool whole)
{
    Dc* dc = NewDc(Dc::Type::Window);
    dc->window = window;
    CWnd* w = CWnd::FromHandle(window);
    CRect outer;
    if (w)
        w->GetWindowRect(&outer);
    const CRect client = w ? ClientAreaOf(*w) : CRect();
    const std::shared_ptr<QImage> surface = WindowSurface(window);
    if (!surface) {
        // A window without pixels (no display backend) still takes drawing.
        const int width = whole ? outer.Width() : client.Width();
        const int height = whole ? outer.Height() : client.Height();
        dc->surface = std::make_shared<QImage>(std::max(1, width), std::max(1, height), QImage::Format_RGB32);
        dc->surface->fill(Qt::white);
        return dc;
    }
    const QRect part = QRect(client.left, client.top, client.Width(), client.Height()) & surface->rect();
    dc->area = whole ? surface->rect() : part;
    if (whole || part == surface->rect())
        dc->surface = surface;
    else if (part.isEmpty())
        dc->surface = std::make_shared<QImage>(1, 1, QImage::Format_RGB32);
    else
        dc->surface = View(surface, part);
    return dc;
}

// The devices that BeginPaint hands out for WM_PRINTCLIENT: the printer's
// own, which EndPaint gives back rather than deletes.
std::vector<std::pair<HWND, HDC>>& Redirects()
{
    static auto* redirects = new std::vector<std::pair<HWND, HDC>>;
    return *redirects;
}

void Release(Dc* dc)
{
    dc->EndPainter();
    if (dc->present && dc->window && !dc->area.isEmpty())
        PresentWindow(dc->window, dc->area);
    if (Bitmap* b = Get<Bitmap>(dc->st.bitmap); b && b->selectedInto == dc)
        b->selectedInto = nullptr;
    UnrefState(dc->st);
    for (const DcState& s : dc->saved)
        UnrefState(s);
    Remove(dc->handle);
}

} // namespace

Dc* NewImageDc(std::shared_ptr<QImage> surface)
{
    Dc* dc = NewDc(Dc::Type::Image);
    dc->surface = std::move(surface);
    return dc;
}

QImage* Dc::Target()
{
    if (type == Type::Screen && !surface)
        surface = ScreenImage(); // made when first drawn on or read
    if (type != Type::Memory)
        return surface.get();
    Bitmap* b = Get<Bitmap>(st.bitmap);
    if (!b)
        return nullptr;
    if (b->dib)
        return &b->Pixels();
    return &b->image;
}

bool Dc::Mono()
{
    if (type != Type::Memory)
        return false;
    Bitmap* b = Get<Bitmap>(st.bitmap);
    return b && b->mono;
}

QPainter* Dc::Painter()
{
    if (!m_painter) {
        QImage* target = Target();
        if (!target || target->isNull())
            return nullptr;
        if (type == Type::Memory) {
            Bitmap* b = Get<Bitmap>(st.bitmap);
            if (!b || b->dib)
                return nullptr; // a DIB section is written through its bits
        }
        m_painter = std::make_unique<QPainter>(target);
        m_painter->setRenderHint(QPainter::Antialiasing, false);
        m_painter->setRenderHint(QPainter::TextAntialiasing, false);
        m_clipDirty = true;
    }
    if (m_clipDirty) {
        m_painter->setClipRegion(Clip());
        m_clipDirty = false;
    }
    return m_painter.get();
}

void Dc::EndPainter()
{
    if (m_painter) {
        m_painter->end();
        m_painter.reset();
    }
}

QRegion Dc::Clip()
{
    QImage* target = Target();
    QRegion clip = target ? QRegion(target->rect()) : QRegion();
    if (hasSystemClip)
        clip &= systemClip;
    if (st.clipped)
        clip &= st.clip;
    return clip;
}

QRect Dc::ToDevice(const RECT& r) const
{
    const QPoint a = ToDevice(std::min(r.left, r.right), std::min(r.top, r.bottom));
    const QPoint b = ToDevice(std::max(r.left, r.right), std::max(r.top, r.bottom));
    return QRect(a, QSize(b.x() - a.x(), b.y() - a.y()));
}

void PaintInto(HWND window, HDC dc)
{
    CWnd* w = CWnd::FromHandle(window);
    if (!w || !Get<Dc>(dc))
        return;
    Redirects().emplace_back(window, dc);
    w->SendMessage(WM_PAINT);
    auto& r = Redirects();
    for (auto it = r.rbegin(); it != r.rend(); ++it) {
        if (it->first == window && it->second == dc) {
            r.erase(std::next(it).base());
            break;
        }
    }
}

} // namespace vx::gdi

using namespace vx::gdi;

HDC CreateCompatibleDC(HDC)
{
    return static_cast<HDC>(NewDc(Dc::Type::Memory)->handle);
}

BOOL DeleteDC(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    Release(d);
    return TRUE;
}

HDC GetDC(HWND window)
{
    if (!window)
        return static_cast<HDC>(NewDc(Dc::Type::Screen)->handle);
    if (!CWnd::FromHandle(window))
        return nullptr;
    Dc* dc = NewWindowDc(window, false);
    dc->present = true;
    return static_cast<HDC>(dc->handle);
}

HDC GetWindowDC(HWND window)
{
    if (!window)
        return GetDC(nullptr);
    if (!CWnd::FromHandle(window))
        return nullptr;
    Dc* dc = NewWindowDc(window, true);
    dc->present = true;
    return static_cast<HDC>(dc->handle);
}

int ReleaseDC(HWND, HDC dc)
{
    Dc* d = Get<Dc>(dc);
    if (!d || d->type == Dc::Type::Memory)
        return 0;
    Release(d);
    return 1;
}

HDC BeginPaint(HWND window, LPPAINTSTRUCT paint)
{
    CWnd* w = CWnd::FromHandle(window);
    if (!w || !paint)
        return nullptr;
    for (const auto& [hwnd, printer] : Redirects()) {
        if (hwnd == window && Get<Dc>(printer)) {
            // WM_PRINTCLIENT: the whole client area, into the printer's device.
            *paint = PAINTSTRUCT{};
            SaveDC(printer);
            paint->hdc = printer;
            w->GetClientRect(&paint->rcPaint);
            return printer;
        }
    }
    Dc* dc = NewWindowDc(window, false);
    const PendingPaint pending = TakePendingPaint(window);
    dc->hasSystemClip = true;
    dc->systemClip = pending.region;
    dc->ClipChanged();
    *paint = PAINTSTRUCT{};
    paint->hdc = static_cast<HDC>(dc->handle);
    const QRect box = pending.region.boundingRect();
    if (!pending.region.isEmpty())
        paint->rcPaint = RECT{box.left(), box.top(), box.right() + 1, box.bottom() + 1};
    if (pending.erase && !pending.region.isEmpty()) {
        const LRESULT erased = w->SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0);
        if (!erased && Get<Dc>(paint->hdc))
            EraseWithClassBackground(window, paint->hdc, pending.region);
    }
    return paint->hdc;
}

BOOL EndPaint(HWND window, const PAINTSTRUCT* paint)
{
    if (!paint)
        return FALSE;
    for (const auto& [hwnd, printer] : Redirects()) {
        if (hwnd == window && printer == paint->hdc) {
            RestoreDC(printer, -1);
            return TRUE;
        }
    }
    Dc* d = Get<Dc>(paint->hdc);
    if (d)
        Release(d);
    return TRUE;
}

HWND WindowFromDC(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d ? d->window : nullptr;
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object)
{
    Dc* d = Get<Dc>(dc);
    Object* o = Find(object);
    if (!d || !o)
        return nullptr;
    auto swap = [&](auto& slot) -> HGDIOBJ {
        using Handle = std::remove_reference_t<decltype(slot)>;
        HGDIOBJ old = slot;
        Ref(object);
        Unref(old);
        slot = static_cast<Handle>(object);
        return old;
    };
    switch (o->kind) {
    case Kind::Pen:
        return swap(d->st.pen);
    case Kind::Brush:
        return swap(d->st.brush);
    case Kind::Font:
        return swap(d->st.font);
    case Kind::Bitmap: {
        auto* b = static_cast<Bitmap*>(o);
        if (d->type != Dc::Type::Memory)
            return nullptr;
        if (b->selectedInto && b->selectedInto != d && !b->stock)
            return nullptr; // a bitmap is in one device at a time
        d->EndPainter();
        if (Bitmap* old = Get<Bitmap>(d->st.bitmap); old && old->selectedInto == d)
            old->selectedInto = nullptr;
        HGDIOBJ old = swap(d->st.bitmap);
        if (!b->stock)
            b->selectedInto = d;
        d->ClipChanged();
        return old;
    }
    case Kind::Region:
        return reinterpret_cast<HGDIOBJ>(static_cast<std::intptr_t>(SelectClipRgn(dc, static_cast<HRGN>(object))));
    default:
        return nullptr;
    }
}

HGDIOBJ GetCurrentObject(HDC dc, UINT type)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return nullptr;
    switch (type) {
    case OBJ_PEN: return d->st.pen;
    case OBJ_BRUSH: return d->st.brush;
    case OBJ_FONT: return d->st.font;
    case OBJ_BITMAP: return d->st.bitmap;
    default: return nullptr;
    }
}

int SaveDC(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return 0;
    RefState(d->st);
    d->saved.push_back(d->st);
    return static_cast<int>(d->saved.size());
}

BOOL RestoreDC(HDC dc, int saved)
{
    Dc* d = Get<Dc>(dc);
    if (!d || d->saved.empty())
        return FALSE;
    const int count = static_cast<int>(d->saved.size());
    const int index = saved < 0 ? count + saved : saved - 1;
    if (index < 0 || index >= count)
        return FALSE;
    d->EndPainter();
    if (Bitmap* b = Get<Bitmap>(d->st.bitmap); b && b->selectedInto == d)
        b->selectedInto = nullptr;
    UnrefState(d->st);
    d->st = d->saved[static_cast<std::size_t>(index)];
    for (int i = index + 1; i < count; ++i)
        UnrefState(d->saved[static_cast<std::size_t>(i)]);
    d->saved.resize(static_cast<std::size_t>(index));
    if (Bitmap* b = Get<Bitmap>(d->st.bitmap); b && !b->stock)
        b->selectedInto = d;
    d->ClipChanged();
    return TRUE;
}

int GetDeviceCaps(HDC dc, int index)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return 0;
    const bool mono = d->Mono();
    switch (index) {
    case HORZRES: return GetSystemMetrics(SM_CXSCREEN);
    case VERTRES: return GetSystemMetrics(SM_CYSCREEN);
    case BITSPIXEL: return mono ? 1 : 32;
    case PLANES: return 1;
    case NUMCOLORS: return mono ? 2 : -1;
    case RASTERCAPS: return 0x0001 | 0x0008 | 0x0080 | 0x0800; // bitblt, bitmap64, DI bitmaps, stretchblt
    case LOGPIXELSX:
    case LOGPIXELSY: return 96;
    case SIZEPALETTE: return 0;
    default: return 0;
    }
}

COLORREF GetNearestColor(HDC dc, COLORREF color)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return CLR_INVALID;
    if (d->Mono())
        return MonoBit(ToRgb(color)) ? RGB(255, 255, 255) : RGB(0, 0, 0);
    return color & 0x00FFFFFF;
}

COLORREF SetTextColor(HDC dc, COLORREF color)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return CLR_INVALID;
    return std::exchange(d->st.text, color);
}

COLORREF GetTextColor(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d ? d->st.text : CLR_INVALID;
}

COLORREF SetBkColor(HDC dc, COLORREF color)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return CLR_INVALID;
    return std::exchange(d->st.bk, color);
}

COLORREF GetBkColor(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d ? d->st.bk : CLR_INVALID;
}

int SetBkMode(HDC dc, int mode)
{
    Dc* d = Get<Dc>(dc);
    if (!d || (mode != TRANSPARENT && mode != OPAQUE))
        return 0;
    return std::exchange(d->st.bkMode, mode);
}

int GetBkMode(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d ? d->st.bkMode : 0;
}

int SetROP2(HDC dc, int mode)
{
    Dc* d = Get<Dc>(dc);
    if (!d || mode < R2_BLACK || mode > R2_WHITE)
        return 0;
    return std::exchange(d->st.rop2, mode);
}

int GetROP2(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d ? d->st.rop2 : 0;
}

UINT SetTextAlign(HDC dc, UINT align)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return static_cast<UINT>(-1);
    return std::exchange(d->st.textAlign, align);
}

UINT GetTextAlign(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    return d ? d->st.textAlign : static_cast<UINT>(-1);
}

int SetPolyFillMode(HDC dc, int mode)
{
    Dc* d = Get<Dc>(dc);
    if (!d || (mode != ALTERNATE && mode != WINDING))
        return 0;
    return std::exchange(d->st.polyFill, mode);
}

int SetStretchBltMode(HDC dc, int mode)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return 0;
    return std::exchange(d->st.stretchMode, mode);
}

namespace {

BOOL SetOrigin(HDC dc, QPoint DcState::*field, int x, int y, POINT* old, bool relative)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    QPoint& p = d->st.*field;
    if (old)
        *old = POINT{p.x(), p.y()};
    p = relative ? p + QPoint(x, y) : QPoint(x, y);
    return TRUE;
}

BOOL GetOrigin(HDC dc, QPoint DcState::*field, POINT* out)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !out)
        return FALSE;
    const QPoint& p = d->st.*field;
    *out = POINT{p.x(), p.y()};
    return TRUE;
}

} // namespace

BOOL SetWindowOrgEx(HDC dc, int x, int y, POINT* old)
{
    return SetOrigin(dc, &DcState::windowOrg, x, y, old, false);
}

BOOL GetWindowOrgEx(HDC dc, POINT* origin)
{
    return GetOrigin(dc, &DcState::windowOrg, origin);
}

BOOL OffsetWindowOrgEx(HDC dc, int dx, int dy, POINT* old)
{
    return SetOrigin(dc, &DcState::windowOrg, dx, dy, old, true);
}

BOOL SetViewportOrgEx(HDC dc, int x, int y, POINT* old)
{
    return SetOrigin(dc, &DcState::viewportOrg, x, y, old, false);
}

BOOL GetViewportOrgEx(HDC dc, POINT* origin)
{
    return GetOrigin(dc, &DcState::viewportOrg, origin);
}

BOOL OffsetViewportOrgEx(HDC dc, int dx, int dy, POINT* old)
{
    return SetOrigin(dc, &DcState::viewportOrg, dx, dy, old, true);
}

BOOL SetBrushOrgEx(HDC dc, int x, int y, POINT* old)
{
    return SetOrigin(dc, &DcState::brushOrg, x, y, old, false);
}

BOOL GetBrushOrgEx(HDC dc, POINT* origin)
{
    return GetOrigin(dc, &DcState::brushOrg, origin);
}

BOOL LPtoDP(HDC dc, POINT* points, int count)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !points)
        return FALSE;
    for (int i = 0; i < count; ++i) {
        const QPoint p = d->ToDevice(points[i].x, points[i].y);
        points[i] = POINT{p.x(), p.y()};
    }
    return TRUE;
}

BOOL DPtoLP(HDC dc, POINT* points, int count)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !points)
        return FALSE;
    for (int i = 0; i < count; ++i) {
        const QPoint p = d->ToLogical(QPoint(points[i].x, points[i].y));
        points[i] = POINT{p.x(), p.y()};
    }
    return TRUE;
}

namespace {

int ClipKind(Dc* d)
{
    const QRegion c = d->Clip();
    if (c.isEmpty())
        return NULLREGION;
    return c.rectCount() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

QRegion CurrentUserClip(Dc* d)
{
    if (d->st.clipped)
        return d->st.clip;
    QImage* t = d->Target();
    return t ? QRegion(t->rect()) : QRegion();
}

} // namespace

int IntersectClipRect(HDC dc, int left, int top, int right, int bottom)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return RGN_ERROR;
    d->st.clip = CurrentUserClip(d) & d->ToDevice(RECT{left, top, right, bottom});
    d->st.clipped = true;
    d->ClipChanged();
    return ClipKind(d);
}

int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return RGN_ERROR;
    d->st.clip = CurrentUserClip(d) - d->ToDevice(RECT{left, top, right, bottom});
    d->st.clipped = true;
    d->ClipChanged();
    return ClipKind(d);
}

int SelectClipRgn(HDC dc, HRGN region)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return RGN_ERROR;
    if (!region) {
        d->st.clipped = false;
        d->st.clip = QRegion();
    } else {
        Region* r = Get<Region>(region);
        if (!r)
            return RGN_ERROR;
        d->st.clipped = true;
        d->st.clip = r->region;
    }
    d->ClipChanged();
    return ClipKind(d);
}

int ExtSelectClipRgn(HDC dc, HRGN region, int mode)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return RGN_ERROR;
    if (mode == RGN_COPY)
        return SelectClipRgn(dc, region);
    Region* r = Get<Region>(region);
    if (!r)
        return RGN_ERROR;
    const QRegion current = CurrentUserClip(d);
    switch (mode) {
    case RGN_AND: d->st.clip = current & r->region; break;
    case RGN_OR: d->st.clip = current | r->region; break;
    case RGN_XOR: d->st.clip = current ^ r->region; break;
    case RGN_DIFF: d->st.clip = current - r->region; break;
    default: return RGN_ERROR;
    }
    d->st.clipped = true;
    d->ClipChanged();
    return ClipKind(d);
}

int GetClipBox(HDC dc, RECT* box)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !box)
        return RGN_ERROR;
    const QRegion c = d->Clip();
    if (c.isEmpty()) {
        *box = RECT{0, 0, 0, 0};
        return NULLREGION;
    }
    const QRect b = c.boundingRect();
    const QPoint tl = d->ToLogical(b.topLeft());
    *box = RECT{tl.x(), tl.y(), tl.x() + b.width(), tl.y() + b.height()};
    return ClipKind(d);
}

BOOL PtVisible(HDC dc, int x, int y)
{
    Dc* d = Get<Dc>(dc);
    return d && d->Clip().contains(d->ToDevice(x, y));
}

BOOL RectVisible(HDC dc, const RECT* rect)
{
    Dc* d = Get<Dc>(dc);
    return d && rect && d->Clip().intersects(d->ToDevice(*rect));
}
