// The drag rectangle: an inverted frame that a second stroke takes away,
// moved by drawing the new frame and erasing the last one together.
#include "uisupport/uitest.h"

#include "ui/gdi/cgdiobject.h"

#include <QImage>

namespace {

using vxtest::Canvas;

constexpr COLORREF kFace = RGB(192, 192, 192);
constexpr int kW = 120;
constexpr int kH = 80;

// The pixels that differ between two images of one size.
int Changed(const QImage& a, const QImage& b, const RECT& within)
{
    int n = 0;
    for (int y = within.top; y < within.bottom; ++y) {
        for (int x = within.left; x < within.right; ++x)
            n += a.pixel(x, y) != b.pixel(x, y);
    }
    return n;
}

const CRect kAll(0, 0, kW, kH);

} // namespace

TEST(DrawDragRect, InvertsAHalftoneFrameAndASecondStrokeTakesItAway)
{
    Canvas c(kW, kH, kFace);
    const QImage before = c.Image();
    const CRect bar(20, 10, 24, 70);
    c.dc().DrawDragRect(&bar, CSize(4, 4), nullptr, CSize(4, 4));
    const QImage drawn = c.Image();
    // Every other pixel of the 4 pixel wide bar is inverted, nothing beside it.
    EXPECT_EQ(Changed(before, drawn, bar), bar.Width() * bar.Height() / 2);
    EXPECT_EQ(Changed(before, drawn, kAll), bar.Width() * bar.Height() / 2);
    // In a checkerboard; an inverted pixel of the face colour is its complement.
    const auto inverted = [&](int x, int y) { return vxtest::ColorAt(drawn, x, y) == RGB(63, 63, 63); };
    EXPECT_EQ(inverted(20, 10), inverted(21, 11));
    EXPECT_NE(inverted(20, 10), inverted(21, 10));
    EXPECT_NE(inverted(20, 10), inverted(20, 11));
    // The same frame again with no last one erases it.
    c.dc().DrawDragRect(&bar, CSize(4, 4), nullptr, CSize(4, 4));
    EXPECT_EQ(Changed(before, c.Image(), kAll), 0);
}

TEST(DrawDragRect, AFrameThickerThanHalfTheRectangleFillsIt)
{
    Canvas c(kW, kH, kFace);
    const QImage before = c.Image();
    const CRect box(10, 10, 60, 50);
    CBrush white;
    white.CreateSolidBrush(RGB(255, 255, 255));
    c.dc().DrawDragRect(&box, CSize(3, 3), nullptr, CSize(3, 3), &white);
    const QImage frame = c.Image();
    // A solid brush inverts the whole frame, and the inside stays.
    EXPECT_RECT_COLOR(frame, CRect(10, 10, 60, 13), RGB(63, 63, 63));
    EXPECT_RECT_COLOR(frame, CRect(57, 10, 60, 50), RGB(63, 63, 63));
    EXPECT_RECT_COLOR(frame, CRect(13, 13, 57, 47), kFace);
    c.dc().DrawDragRect(&box, CSize(3, 3), nullptr, CSize(3, 3), &white);
    EXPECT_EQ(Changed(before, c.Image(), kAll), 0);
    c.dc().DrawDragRect(&box, CSize(30, 30), nullptr, CSize(30, 30), &white);
    EXPECT_RECT_COLOR(c.Image(), box, RGB(63, 63, 63));
}

TEST(DrawDragRect, MovingErasesTheLastPlaceAndDrawsTheNextInOneStroke)
{
    Canvas c(kW, kH, kFace);
    const QImage before = c.Image();
    CRect last(20, 10, 24, 70);
    c.dc().DrawDragRect(&last, CSize(4, 4), nullptr, CSize(4, 4));
    // Steps of a drag, some overlapping the last place, some not.
    for (int x : {22, 23, 40, 90, 88, 20}) {
        SCOPED_TRACE(x);
        const CRect next(x, 10, x + 4, 70);
        c.dc().DrawDragRect(&next, CSize(4, 4), &last, CSize(4, 4));
        // What shows is exactly one frame, at the new place: drawing that
        // frame alone on a fresh canvas gives the same image.
        Canvas fresh(kW, kH, kFace);
        fresh.dc().DrawDragRect(&next, CSize(4, 4), nullptr, CSize(4, 4));
        EXPECT_EQ(Changed(fresh.Image(), c.Image(), kAll), 0);
        last = next;
    }
    // The end of the drag takes the last frame away: the canvas is clean.
    c.dc().DrawDragRect(&last, CSize(4, 4), nullptr, CSize(4, 4));
    EXPECT_EQ(Changed(before, c.Image(), kAll), 0);
}

TEST(DrawDragRect, DifferentBrushesEraseWithTheLastOne)
{
    Canvas c(kW, kH, kFace);
    const QImage before = c.Image();
    CBrush white;
    white.CreateSolidBrush(RGB(255, 255, 255));
    const CRect a(10, 10, 14, 70);
    const CRect b(12, 10, 16, 70);
    c.dc().DrawDragRect(&a, CSize(4, 4), nullptr, CSize(4, 4), &white);
    c.dc().DrawDragRect(&b, CSize(4, 4), &a, CSize(4, 4), nullptr, &white);
    Canvas fresh(kW, kH, kFace);
    fresh.dc().DrawDragRect(&b, CSize(4, 4), nullptr, CSize(4, 4));
    EXPECT_EQ(Changed(fresh.Image(), c.Image(), kAll), 0);
    c.dc().DrawDragRect(&b, CSize(4, 4), nullptr, CSize(4, 4));
    EXPECT_EQ(Changed(before, c.Image(), kAll), 0);
}
