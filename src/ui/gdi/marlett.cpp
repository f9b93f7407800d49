#include "ui/gdi/marlett_p.h"

#include <QPolygon>

#include <initializer_list>

namespace vx::gdi {
namespace {

struct Box {
    int x0, y0, x1, y1; // grid units, right and bottom excluded
};

int Scale(int v, int em)
{
    return (v * em + 8) / 16;
}

void FillBoxes(QPainter& p, const QRect& em, const QColor& color, std::initializer_list<Box> boxes)
{
    for (const Box& b : boxes) {
        const int x0 = em.left() + Scale(b.x0, em.width());
        const int y0 = em.top() + Scale(b.y0, em.height());
        const int x1 = em.left() + Scale(b.x1, em.width());
        const int y1 = em.top() + Scale(b.y1, em.height());
        // Thin strokes stay at least one pixel wide at small sizes.
        p.fillRect(QRect(x0, y0, std::max(1, x1 - x0), std::max(1, y1 - y0)), color);
    }
}

void FillPolygon(QPainter& p, const QRect& em, const QColor& color, std::initializer_list<QPoint> points)
{
    QPolygon poly;
    for (const QPoint& q : points)
        poly << QPoint(em.left() + Scale(q.x(), em.width()), em.top() + Scale(q.y(), em.height()));
    p.setPen(Qt::NoPen);
    p.setBrush(color);
    p.drawPolygon(poly);
}

} // namespace

bool HasMarlettGlyph(unsigned char code)
{
    switch (code) {
    case 0x30: case 0x31: case 0x32: case 0x33: case 0x34: case 0x35: case 0x36: case 0x38:
    case 0x61: case 0x62: case 0x69: case 0x72:
        return true;
    default:
        return false;
    }
}

void DrawMarlettGlyph(QPainter& p, unsigned char code, const QRect& em, const QColor& color)
{
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    switch (code) {
    case 0x30: // minimise
        FillBoxes(p, em, color, {{4, 11, 11, 13}});
        break;
    case 0x31: // maximise
        FillBoxes(p, em, color, {{3, 3, 13, 5}, {3, 3, 4, 13}, {12, 3, 13, 13}, {3, 12, 13, 13}});
        break;
    case 0x32: // restore: a window in front of another
        FillBoxes(p, em, color,
                  {{6, 2, 14, 4}, {13, 2, 14, 10}, {11, 9, 14, 10}, {6, 2, 7, 6},
                   {3, 6, 11, 8}, {3, 6, 4, 14}, {10, 6, 11, 14}, {3, 13, 11, 14}});
        break;
    case 0x33: FillPolygon(p, em, color, {{10, 4}, {10, 12}, {6, 8}}); break;
    case 0x34: FillPolygon(p, em, color, {{6, 4}, {6, 12}, {10, 8}}); break;
    case 0x35: FillPolygon(p, em, color, {{4, 10}, {12, 10}, {8, 6}}); break;
    case 0x36: FillPolygon(p, em, color, {{4, 6}, {12, 6}, {8, 10}}); break;
    case 0x38: FillPolygon(p, em, color, {{6, 5}, {6, 11}, {9, 8}}); break;
    case 0x61: // check marks
    case 0x62:
        FillPolygon(p, em, color, {{3, 7}, {6, 10}, {12, 4}, {12, 7}, {6, 13}, {3, 10}});
        break;
    case 0x69: { // bullet
        const QRect dot(em.left() + Scale(5, em.width()), em.top() + Scale(5, em.height()),
                        std::max(2, Scale(6, em.width())), std::max(2, Scale(6, em.height())));
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawEllipse(dot.adjusted(0, 0, -1, -1));
        break;
    }
    case 0x72: // close
        FillPolygon(p, em, color, {{4, 3}, {8, 7}, {12, 3}, {13, 4}, {9, 8}, {13, 12}, {12, 13}, {8, 9}, {4, 13},
                                   {3, 12}, {7, 8}, {3, 4}});
        break;
    default:
        break;
    }
    p.restore();
}

} // namespace vx::gdi
