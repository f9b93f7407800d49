#include "ui/gdi/gdiobjects_p.h"

#include "platform/windows/sysmetrics.h"

#include <QPainterPath>

#include <cmath>
#include <cstdlib>

namespace vx::gdi {
namespace {

// Direct pixel access inside the clip; the painter is finished first.
class PixelWriter {
public:
    explicit PixelWriter(Dc& dc) : m_dc(dc)
    {
        dc.EndPainter();
        m_image = dc.Target();
        m_clip = dc.Clip();
        m_simple = m_clip.rectCount() <= 1;
        m_box = m_clip.boundingRect();
        m_mono = dc.Mono();
    }
    bool Valid() const { return m_image != nullptr; }
    bool Contains(int x, int y) const
    {
        if (!m_box.contains(x, y))
            return false;
        return m_simple || m_clip.contains(QPoint(x, y));
    }
    QRgb Get(int x, int y) const { return reinterpret_cast<const QRgb*>(m_image->constScanLine(y))[x]; }
    void Put(int x, int y, QRgb c)
    {
        if (m_mono)
            c = SnapMono(c);
        reinterpret_cast<QRgb*>(m_image->scanLine(y))[x] = c | 0xFF000000u;
    }

private:
    Dc& m_dc;
    QImage* m_image = nullptr;
    QRegion m_clip;
    QRect m_box;
    bool m_simple = true;
    bool m_mono = false;
};

QRgb Snap(Dc& dc, QRgb c)
{
    if (dc.Mono())
        return SnapMono(c);
    return c;
}

Brush* BrushOf(HBRUSH brush)
{
    // FillRect takes a system colour index + 1 in the place of a brush.
    const auto value = reinterpret_cast<std::uintptr_t>(brush);
    if (value >= 1 && value <= 31)
        return Get<Brush>(GetSysColorBrush(static_cast<int>(value - 1)));
    return Get<Brush>(brush);
}

// The on-off runs of the cosmetic pen styles, as the original drew them.
const std::vector<int>& DashPattern(int style)
{
    static const std::vector<int> solid;
    static const std::vector<int> dash{18, 6};
    static const std::vector<int> dot{3, 3};
    static const std::vector<int> dashDot{9, 6, 3, 6};
    static const std::vector<int> dashDotDot{9, 3, 3, 3, 3, 3};
    switch (style) {
    case PS_DASH: return dash;
    case PS_DOT: return dot;
    case PS_DASHDOT: return dashDot;
    case PS_DASHDOTDOT: return dashDotDot;
    default: return solid;
    }
}

QPen QtPen(Dc& dc, const Pen* pen)
{
    if (!pen || pen->style == PS_NULL)
        return QPen(Qt::NoPen);
    QPen p(QColor::fromRgb(Snap(dc, ToRgb(pen->color))));
    p.setWidth(pen->width <= 1 ? 0 : pen->width);
    p.setCapStyle(Qt::RoundCap);
    p.setJoinStyle(Qt::RoundJoin);
    switch (pen->style) {
    case PS_DASH: p.setStyle(Qt::DashLine); break;
    case PS_DOT: p.setStyle(Qt::DotLine); break;
    case PS_DASHDOT: p.setStyle(Qt::DashDotLine); break;
    case PS_DASHDOTDOT: p.setStyle(Qt::DashDotDotLine); break;
    default: break;
    }
    return p;
}

QBrush QtBrush(Dc& dc, const Brush* brush)
{
    if (!brush || brush->IsNull())
        return QBrush(Qt::NoBrush);
    switch (brush->style) {
    case BS_HATCHED: {
        static const Qt::BrushStyle styles[] = {Qt::HorPattern,   Qt::VerPattern,   Qt::FDiagPattern,
                                                Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};
        const int h = brush->hatch >= 0 && brush->hatch <= 5 ? brush->hatch : 0;
        return QBrush(QColor::fromRgb(Snap(dc, ToRgb(brush->Color()))), styles[h]);
    }
    case BS_PATTERN: {
        QImage tile = brush->pattern;
        if (brush->patternMono) {
            for (int y = 0; y < tile.height(); ++y) {
                for (int x = 0; x < tile.width(); ++x)
                    tile.setPixel(x, y, ToRgb(MonoBit(tile.pixel(x, y)) ? dc.st.bk : dc.st.text));
            }
        }
        return QBrush(tile);
    }
    default:
        return QBrush(QColor::fromRgb(Snap(dc, ToRgb(brush->Color()))));
    }
}

// Sets up the painter for a filled shape with the device's pen and brush.
QPainter* ShapePainter(Dc& dc)
{
    QPainter* p = dc.Painter();
    if (!p)
        return nullptr;
    p->setPen(QtPen(dc, Get<Pen>(dc.st.pen)));
    p->setBrush(QtBrush(dc, Get<Brush>(dc.st.brush)));
    p->setBrushOrigin(dc.st.brushOrg);
    p->setBackgroundMode(dc.st.bkMode == OPAQUE ? Qt::OpaqueMode : Qt::TransparentMode);
    p->setBackground(QColor::fromRgb(ToRgb(dc.st.bk)));
    return p;
}

// A cosmetic line in device coordinates without its end point, with the
// pen's style and raster operation. `phase` carries the dash position on.
void DeviceLine(Dc& dc, QPoint a, QPoint b, const Pen& pen, int& phase)
{
    const QRgb color = ToRgb(pen.color);
    const std::vector<int>& dashes = DashPattern(pen.style);
    int period = 0;
    for (int d : dashes)
        period += d;
    auto on = [&](int step) {
        if (dashes.empty())
            return true;
        int at = step % period;
        for (std::size_t i = 0; i < dashes.size(); ++i) {
            if (at < dashes[i])
                return i % 2 == 0;
            at -= dashes[i];
        }
        return true;
    };
    if (dashes.empty() && dc.st.rop2 == R2_COPYPEN && (a.x() == b.x() || a.y() == b.y())) {
        // Straight solid lines are the common case: fill them as rectangles.
        QRect r;
        if (a.y() == b.y())
            r = a.x() < b.x() ? QRect(a.x(), a.y(), b.x() - a.x(), 1) : QRect(b.x() + 1, a.y(), a.x() - b.x(), 1);
        else
            r = a.y() < b.y() ? QRect(a.x(), a.y(), 1, b.y() - a.y()) : QRect(a.x(), b.y() + 1, 1, a.y() - b.y());
        if (QPainter* p = dc.Painter()) {
            p->fillRect(r, QColor::fromRgb(Snap(dc, color)));
        }
        return;
    }
    PixelWriter w(dc);
    if (!w.Valid())
        return;
    int x = a.x();
    int y = a.y();
    const int dx = std::abs(b.x() - a.x());
    const int dy = -std::abs(b.y() - a.y());
    const int sx = a.x() < b.x() ? 1 : -1;
    const int sy = a.y() < b.y() ? 1 : -1;
    int err = dx + dy;
    while (x != b.x() || y != b.y()) {
        if (on(phase) && w.Contains(x, y))
            w.Put(x, y, Rop2(dc.st.rop2, color, w.Get(x, y)));
        ++phase;
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y += sy;
        }
    }
}

// A line between logical points with the selected pen; wide pens go through
// the painter.
void PenLine(Dc& dc, QPoint from, QPoint to, int& phase)
{
    const Pen* pen = Get<Pen>(dc.st.pen);
    if (!pen || pen->style == PS_NULL || from == to)
        return;
    const QPoint a = dc.ToDevice(from.x(), from.y());
    const QPoint b = dc.ToDevice(to.x(), to.y());
    if (pen->width > 1) {
        if (QPainter* p = dc.Painter()) {
            p->setPen(QtPen(dc, pen));
            p->drawLine(a, b);
        }
        return;
    }
    DeviceLine(dc, a, b, *pen, phase);
}

void FillSolidDevice(Dc& dc, const QRect& area, COLORREF color)
{
    if (area.isEmpty())
        return;
    if (QPainter* p = dc.Painter())
        p->fillRect(area, QColor::fromRgb(Snap(dc, ToRgb(color))));
}

struct EdgeColors {
    int topLeft;
    int bottomRight;
};

void EdgeRing(Dc& dc, QRect& r, UINT flags, COLORREF tl, COLORREF br)
{
    if (r.isEmpty())
        return;
    if (flags & BF_TOP)
        FillSolidDevice(dc, QRect(r.left(), r.top(), r.width(), 1), tl);
    if (flags & BF_LEFT)
        FillSolidDevice(dc, QRect(r.left(), r.top(), 1, r.height()), tl);
    if (flags & BF_BOTTOM)
        FillSolidDevice(dc, QRect(r.left(), r.bottom(), r.width(), 1), br);
    if (flags & BF_RIGHT)
        FillSolidDevice(dc, QRect(r.right(), r.top(), 1, r.height()), br);
    r.adjust((flags & BF_LEFT) ? 1 : 0, (flags & BF_TOP) ? 1 : 0, (flags & BF_RIGHT) ? -1 : 0,
             (flags & BF_BOTTOM) ? -1 : 0);
}

} // namespace

void FillDevice(Dc& dc, const QRect& area, const Brush* brush, DWORD rop)
{
    if (area.isEmpty())
        return;
    const unsigned code = (rop >> 16) & 0xFF;
    const bool usesPattern = ((code >> 4) ^ code) & 0x0F;
    if (usesPattern && (!brush || brush->IsNull()))
        return;
    if (code == 0xF0 && brush->IsSolid()) {
        FillSolidDevice(dc, area, brush->Color());
        return;
    }
    if (code == 0x00 || code == 0xFF) {
        FillSolidDevice(dc, area, code ? RGB(255, 255, 255) : RGB(0, 0, 0));
        return;
    }
    if (code == 0xF0 && brush->style == BS_PATTERN && !brush->patternMono && !brush->pattern.isNull() && !dc.Mono()) {
        // A colour pattern copied as it is: the painter tiles it from the
        // brush origin, a row at a time instead of a pixel at a time.
        if (QPainter* p = dc.Painter()) {
            const QPointF old = p->brushOrigin();
            p->setBrushOrigin(dc.st.brushOrg);
            p->fillRect(area, QBrush(brush->pattern));
            p->setBrushOrigin(old);
        }
        return;
    }
    PixelWriter w(dc);
    if (!w.Valid())
        return;
    const bool transparentGaps = brush && brush->style == BS_HATCHED && dc.st.bkMode == TRANSPARENT;
    ForEachClipped(dc, area, [&](const QRect& r) {
        for (int y = r.top(); y <= r.bottom(); ++y) {
            for (int x = r.left(); x <= r.right(); ++x) {
                if (transparentGaps && !brush->HatchCovers(x, y, dc.st.brushOrg))
                    continue;
                const QRgb p = brush ? brush->PixelAt(x, y, dc.st.brushOrg, dc.st.text, dc.st.bk) : 0;
                w.Put(x, y, Rop3(rop, p, 0, w.Get(x, y)));
            }
        }
    });
}

} // namespace vx::gdi

using namespace vx::gdi;

COLORREF GetPixel(HDC dc, int x, int y)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return CLR_INVALID;
    PixelWriter w(*d);
    const QPoint p = d->ToDevice(x, y);
    if (!w.Valid() || !w.Contains(p.x(), p.y()))
        return CLR_INVALID;
    QRgb c = w.Get(p.x(), p.y());
    if (d->Mono())
        c = SnapMono(c);
    return ToColorRef(c);
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF color)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return CLR_INVALID;
    PixelWriter w(*d);
    const QPoint p = d->ToDevice(x, y);
    if (!w.Valid() || !w.Contains(p.x(), p.y()))
        return CLR_INVALID;
    w.Put(p.x(), p.y(), ToRgb(color));
    return ToColorRef(w.Get(p.x(), p.y()));
}

BOOL SetPixelV(HDC dc, int x, int y, COLORREF color)
{
    return SetPixel(dc, x, y, color) != CLR_INVALID;
}

int FillRect(HDC dc, const RECT* rect, HBRUSH brush)
{
    Dc* d = Get<Dc>(dc);
    Brush* b = BrushOf(brush);
    if (!d || !rect || !b)
        return 0;
    FillDevice(*d, d->ToDevice(*rect), b, PATCOPY);
    return 1;
}

int FrameRect(HDC dc, const RECT* rect, HBRUSH brush)
{
    Dc* d = Get<Dc>(dc);
    Brush* b = BrushOf(brush);
    if (!d || !rect || !b)
        return 0;
    const QRect r = d->ToDevice(*rect);
    if (r.isEmpty())
        return 1;
    FillDevice(*d, QRect(r.left(), r.top(), r.width(), 1), b);
    FillDevice(*d, QRect(r.left(), r.bottom(), r.width(), 1), b);
    FillDevice(*d, QRect(r.left(), r.top() + 1, 1, r.height() - 2), b);
    FillDevice(*d, QRect(r.right(), r.top() + 1, 1, r.height() - 2), b);
    return 1;
}

BOOL InvertRect(HDC dc, const RECT* rect)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !rect)
        return FALSE;
    FillDevice(*d, d->ToDevice(*rect), nullptr, DSTINVERT);
    return TRUE;
}

BOOL DrawFocusRect(HDC dc, const RECT* rect)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !rect)
        return FALSE;
    const QRect r = d->ToDevice(*rect);
    if (r.isEmpty())
        return TRUE;
    PixelWriter w(*d);
    if (!w.Valid())
        return FALSE;
    // Every other pixel of a checker is inverted; the same call undoes it.
    auto flip = [&](int x, int y) {
        if (((x + y) & 1) == 0 && w.Contains(x, y))
            w.Put(x, y, w.Get(x, y) ^ 0x00FFFFFFu);
    };
    for (int x = r.left(); x <= r.right(); ++x) {
        flip(x, r.top());
        if (r.bottom() != r.top())
            flip(x, r.bottom());
    }
    for (int y = r.top() + 1; y < r.bottom(); ++y) {
        flip(r.left(), y);
        if (r.right() != r.left())
            flip(r.right(), y);
    }
    return TRUE;
}

BOOL DrawEdge(HDC dc, RECT* rect, UINT edge, UINT flags)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !rect)
        return FALSE;
    QRect r = d->ToDevice(*rect);
    // The colours of each ring, top-left then bottom-right.
    int outerTL = -1, outerBR = -1, innerTL = -1, innerBR = -1;
    if (edge & BDR_RAISEDOUTER) {
        outerTL = COLOR_3DLIGHT;
        outerBR = COLOR_3DDKSHADOW;
    } else if (edge & BDR_SUNKENOUTER) {
        outerTL = COLOR_3DSHADOW;
        outerBR = COLOR_3DHILIGHT;
    }
    if (edge & BDR_RAISEDINNER) {
        innerTL = COLOR_3DHILIGHT;
        innerBR = COLOR_3DSHADOW;
    } else if (edge & BDR_SUNKENINNER) {
        innerTL = COLOR_3DDKSHADOW;
        innerBR = COLOR_3DLIGHT;
    }
    if ((flags & BF_SOFT) && outerTL >= 0 && innerTL >= 0 &&
        ((edge & BDR_RAISEDOUTER) != 0) == ((edge & BDR_RAISEDINNER) != 0))
        std::swap(outerTL, innerTL);
    int middle = COLOR_3DFACE;
    if (flags & BF_MONO) {
        outerTL = outerBR = outerTL >= 0 ? COLOR_WINDOWFRAME : -1;
        innerTL = innerBR = innerTL >= 0 ? COLOR_WINDOW : -1;
        middle = COLOR_WINDOW;
    } else if (flags & BF_FLAT) {
        outerTL = outerBR = outerTL >= 0 ? COLOR_3DSHADOW : -1;
        innerTL = innerBR = innerTL >= 0 ? COLOR_3DFACE : -1;
    }
    if (outerTL >= 0)
        EdgeRing(*d, r, flags, GetSysColor(outerTL), GetSysColor(outerBR));
    if (innerTL >= 0)
        EdgeRing(*d, r, flags, GetSysColor(innerTL), GetSysColor(innerBR));
    if (flags & BF_MIDDLE)
        FillSolidDevice(*d, r, GetSysColor(middle));
    if (flags & BF_ADJUST) {
        const QPoint tl = d->ToLogical(r.topLeft());
        *rect = RECT{tl.x(), tl.y(), tl.x() + std::max(0, r.width()), tl.y() + std::max(0, r.height())};
    }
    return TRUE;
}

BOOL MoveToEx(HDC dc, int x, int y, POINT* old)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    if (old)
        *old = POINT{d->st.pos.x(), d->st.pos.y()};
    d->st.pos = QPoint(x, y);
    return TRUE;
}

BOOL LineTo(HDC dc, int x, int y)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    int phase = 0;
    PenLine(*d, d->st.pos, QPoint(x, y), phase);
    d->st.pos = QPoint(x, y);
    return TRUE;
}

BOOL Polyline(HDC dc, const POINT* points, int count)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !points || count < 2)
        return FALSE;
    int phase = 0;
    for (int i = 1; i < count; ++i)
        PenLine(*d, QPoint(points[i - 1].x, points[i - 1].y), QPoint(points[i].x, points[i].y), phase);
    return TRUE;
}

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    const CRect r(std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom));
    const Pen* pen = Get<Pen>(d->st.pen);
    const int w = (!pen || pen->style == PS_NULL) ? 0 : std::max(1, pen->width);
    // Without a pen the filled area loses a pixel on the right and bottom.
    const QRect outer = w ? d->ToDevice(r) : d->ToDevice(RECT{r.left, r.top, r.right - 1, r.bottom - 1});
    if (Brush* b = Get<Brush>(d->st.brush); b && !b->IsNull())
        FillDevice(*d, outer.adjusted(w, w, -w, -w), b);
    if (!w)
        return TRUE;
    if (w == 1) {
        int phase = 0;
        const QPoint corners[] = {QPoint(r.left, r.top), QPoint(r.right - 1, r.top), QPoint(r.right - 1, r.bottom - 1),
                                  QPoint(r.left, r.bottom - 1), QPoint(r.left, r.top)};
        for (int i = 1; i < 5; ++i)
            PenLine(*d, corners[i - 1], corners[i], phase);
        return TRUE;
    }
    // A wide pen draws its frame inside the rectangle.
    const COLORREF color = pen->color;
    FillSolidDevice(*d, QRect(outer.left(), outer.top(), outer.width(), w), color);
    FillSolidDevice(*d, QRect(outer.left(), outer.bottom() - w + 1, outer.width(), w), color);
    FillSolidDevice(*d, QRect(outer.left(), outer.top(), w, outer.height()), color);
    FillSolidDevice(*d, QRect(outer.right() - w + 1, outer.top(), w, outer.height()), color);
    return TRUE;
}

BOOL RoundRect(HDC dc, int left, int top, int right, int bottom, int width, int height)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    QPainter* p = ShapePainter(*d);
    if (!p)
        return FALSE;
    const QRect r = d->ToDevice(RECT{left, top, right, bottom});
    p->drawRoundedRect(QRectF(r.adjusted(0, 0, -1, -1)), width / 2.0, height / 2.0);
    return TRUE;
}

BOOL Ellipse(HDC dc, int left, int top, int right, int bottom)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    QPainter* p = ShapePainter(*d);
    if (!p)
        return FALSE;
    p->drawEllipse(d->ToDevice(RECT{left, top, right, bottom}).adjusted(0, 0, -1, -1));
    return TRUE;
}

BOOL Polygon(HDC dc, const POINT* points, int count)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !points || count < 2)
        return FALSE;
    QPainter* p = ShapePainter(*d);
    if (!p)
        return FALSE;
    QPolygon poly;
    for (int i = 0; i < count; ++i)
        poly << d->ToDevice(points[i].x, points[i].y);
    p->drawPolygon(poly, d->st.polyFill == WINDING ? Qt::WindingFill : Qt::OddEvenFill);
    return TRUE;
}

namespace {

int Channel(COLOR16 a, COLOR16 b, long long i, long long n)
{
    const long long v = n > 0 ? a + (static_cast<long long>(b) - a) * i / n : a;
    return static_cast<int>(v >> 8) & 0xFF;
}

void GradientRect(Dc& d, const TRIVERTEX& ul, const TRIVERTEX& lr, bool horizontal)
{
    const QRect area = d.ToDevice(RECT{ul.x, ul.y, lr.x, lr.y});
    if (area.isEmpty())
        return;
    // Colours run from the upper left vertex to the lower right one, whichever
    // way round the caller gave the corners.
    const bool reversed = horizontal ? ul.x > lr.x : ul.y > lr.y;
    const TRIVERTEX& a = reversed ? lr : ul;
    const TRIVERTEX& b = reversed ? ul : lr;
    const int n = horizontal ? area.width() : area.height();
    PixelWriter w(d);
    if (!w.Valid())
        return;
    ForEachClipped(d, area, [&](const QRect& r) {
        for (int y = r.top(); y <= r.bottom(); ++y) {
            for (int x = r.left(); x <= r.right(); ++x) {
                const int i = horizontal ? x - area.left() : y - area.top();
                w.Put(x, y, qRgb(Channel(a.Red, b.Red, i, n), Channel(a.Green, b.Green, i, n),
                                 Channel(a.Blue, b.Blue, i, n)));
            }
        }
    });
}

void GradientTriangle(Dc& d, const TRIVERTEX& v1, const TRIVERTEX& v2, const TRIVERTEX& v3)
{
    const QPoint p1 = d.ToDevice(v1.x, v1.y);
    const QPoint p2 = d.ToDevice(v2.x, v2.y);
    const QPoint p3 = d.ToDevice(v3.x, v3.y);
    const double area = double(p2.x() - p1.x()) * (p3.y() - p1.y()) - double(p3.x() - p1.x()) * (p2.y() - p1.y());
    if (area == 0)
        return;
    const QRect box = QRect(p1, p1).united(QRect(p2, p2)).united(QRect(p3, p3));
    PixelWriter w(d);
    if (!w.Valid())
        return;
    ForEachClipped(d, box, [&](const QRect& r) {
        for (int y = r.top(); y <= r.bottom(); ++y) {
            for (int x = r.left(); x <= r.right(); ++x) {
                const double l1 = (double(p2.x() - x) * (p3.y() - y) - double(p3.x() - x) * (p2.y() - y)) / area;
                const double l2 = (double(p3.x() - x) * (p1.y() - y) - double(p1.x() - x) * (p3.y() - y)) / area;
                const double l3 = 1.0 - l1 - l2;
                if (l1 < 0 || l2 < 0 || l3 < 0)
                    continue;
                auto mix = [&](COLOR16 a, COLOR16 b, COLOR16 c) {
                    return static_cast<int>(l1 * a + l2 * b + l3 * c) >> 8;
                };
                w.Put(x, y, qRgb(mix(v1.Red, v2.Red, v3.Red), mix(v1.Green, v2.Green, v3.Green),
                                 mix(v1.Blue, v2.Blue, v3.Blue)));
            }
        }
    });
}

} // namespace

BOOL GradientFill(HDC dc, TRIVERTEX* vertices, ULONG vertexCount, void* mesh, ULONG meshCount, ULONG mode)
{
    Dc* d = Get<Dc>(dc);
    if (!d || !vertices || !mesh)
        return FALSE;
    if (mode == GRADIENT_FILL_TRIANGLE) {
        const auto* t = static_cast<const GRADIENT_TRIANGLE*>(mesh);
        for (ULONG i = 0; i < meshCount; ++i) {
            if (t[i].Vertex1 >= vertexCount || t[i].Vertex2 >= vertexCount || t[i].Vertex3 >= vertexCount)
                return FALSE;
            GradientTriangle(*d, vertices[t[i].Vertex1], vertices[t[i].Vertex2], vertices[t[i].Vertex3]);
        }
        return TRUE;
    }
    if (mode != GRADIENT_FILL_RECT_H && mode != GRADIENT_FILL_RECT_V)
        return FALSE;
    const auto* g = static_cast<const GRADIENT_RECT*>(mesh);
    for (ULONG i = 0; i < meshCount; ++i) {
        if (g[i].UpperLeft >= vertexCount || g[i].LowerRight >= vertexCount)
            return FALSE;
        GradientRect(*d, vertices[g[i].UpperLeft], vertices[g[i].LowerRight], mode == GRADIENT_FILL_RECT_H);
    }
    return TRUE;
}

BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD rop)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return FALSE;
    FillDevice(*d, d->ToDevice(RECT{x, y, x + width, y + height}), Get<Brush>(d->st.brush), rop);
    return TRUE;
}
