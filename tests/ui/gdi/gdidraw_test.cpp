#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cgdiobject.h"

namespace {

using vxtest::Canvas;

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

COLORREF Sys(int index)
{
    return GetSysColor(index);
}

TEST(CDC, Draw3dRectLeavesTopRightAndBottomLeftToTheSecondColour)
{
    Canvas c(10, 8);
    c.dc().Draw3dRect(1, 1, 6, 5, kRed, kBlue);
    const QImage img = c.Image();
    EXPECT_RECT_COLOR(img, (RECT{1, 1, 6, 2}), kRed); // top row without its last pixel
    EXPECT_RECT_COLOR(img, (RECT{1, 1, 2, 5}), kRed); // left column without its last pixel
    EXPECT_RECT_COLOR(img, (RECT{6, 1, 7, 6}), kBlue); // right column in full
    EXPECT_RECT_COLOR(img, (RECT{1, 5, 7, 6}), kBlue); // bottom row in full
    EXPECT_RECT_COLOR(img, (RECT{2, 2, 6, 5}), kWhite);
    EXPECT_PIXEL(img, 7, 1, kWhite);
    EXPECT_PIXEL(img, 1, 6, kWhite);
    // The framework's fill goes through the background colour and leaves it set.
    EXPECT_EQ(c.dc().GetBkColor(), kBlue);
}

struct EdgeCase {
    const char* name;
    UINT edge;
    COLORREF outerTL, outerBR, innerTL, innerBR; // CLR_NONE: no such ring
};

class DrawEdgeRings : public ::testing::TestWithParam<EdgeCase> {};

TEST_P(DrawEdgeRings, DrawsEachRingInItsSystemColours)
{
    const EdgeCase& e = GetParam();
    Canvas c(8, 8, kRed);
    RECT r{0, 0, 8, 8};
    ASSERT_TRUE(DrawEdge(c.hdc(), &r, e.edge, BF_RECT));
    const QImage img = c.Image();
    EXPECT_PIXEL(img, 0, 0, e.outerTL);
    EXPECT_PIXEL(img, 6, 0, e.outerTL);
    EXPECT_PIXEL(img, 0, 6, e.outerTL);
    EXPECT_PIXEL(img, 7, 0, e.outerBR); // the right column wins the corner
    EXPECT_PIXEL(img, 0, 7, e.outerBR); // the bottom row wins the corner
    EXPECT_PIXEL(img, 7, 7, e.outerBR);
    if (e.innerTL != CLR_NONE) {
        EXPECT_PIXEL(img, 1, 1, e.innerTL);
        EXPECT_PIXEL(img, 5, 1, e.innerTL);
        EXPECT_PIXEL(img, 6, 1, e.innerBR);
        EXPECT_PIXEL(img, 1, 6, e.innerBR);
        EXPECT_PIXEL(img, 2, 2, kRed);
    } else {
        EXPECT_PIXEL(img, 1, 1, kRed);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Edges, DrawEdgeRings,
    ::testing::Values(
        EdgeCase{"Raised", EDGE_RAISED, Sys(COLOR_3DLIGHT), Sys(COLOR_3DDKSHADOW), Sys(COLOR_3DHILIGHT),
                 Sys(COLOR_3DSHADOW)},
        EdgeCase{"Sunken", EDGE_SUNKEN, Sys(COLOR_3DSHADOW), Sys(COLOR_3DHILIGHT), Sys(COLOR_3DDKSHADOW),
                 Sys(COLOR_3DLIGHT)},
        EdgeCase{"Etched", EDGE_ETCHED, Sys(COLOR_3DSHADOW), Sys(COLOR_3DHILIGHT), Sys(COLOR_3DHILIGHT),
                 Sys(COLOR_3DSHADOW)},
        EdgeCase{"Bump", EDGE_BUMP, Sys(COLOR_3DLIGHT), Sys(COLOR_3DDKSHADOW), Sys(COLOR_3DDKSHADOW),
                 Sys(COLOR_3DLIGHT)},
        EdgeCase{"SunkenOuter", BDR_SUNKENOUTER, Sys(COLOR_3DSHADOW), Sys(COLOR_3DHILIGHT), CLR_NONE, CLR_NONE},
        // An inner edge alone lies on the rectangle's border.
        EdgeCase{"RaisedInner", BDR_RAISEDINNER, Sys(COLOR_3DHILIGHT), Sys(COLOR_3DSHADOW), CLR_NONE, CLR_NONE}),
    [](const ::testing::TestParamInfo<EdgeCase>& info) { return std::string(info.param.name); });

TEST(DrawEdge, EtchedTopIsTheSeparatorLine)
{
    Canvas c(10, 4, kRed);
    RECT r{0, 0, 10, 4};
    DrawEdge(c.hdc(), &r, EDGE_ETCHED, BF_TOP);
    const QImage img = c.Image();
    EXPECT_RECT_COLOR(img, (RECT{0, 0, 10, 1}), Sys(COLOR_3DSHADOW));
    EXPECT_RECT_COLOR(img, (RECT{0, 1, 10, 2}), Sys(COLOR_3DHILIGHT));
    EXPECT_RECT_COLOR(img, (RECT{0, 2, 10, 4}), kRed);
}

TEST(DrawEdge, AdjustAndMiddleWorkOnTheInside)
{
    Canvas c(10, 10, kRed);
    RECT r{1, 1, 9, 9};
    DrawEdge(c.hdc(), &r, EDGE_SUNKEN, BF_RECT | BF_ADJUST | BF_MIDDLE);
    EXPECT_EQ(CRect(r), CRect(3, 3, 7, 7));
    const QImage img = c.Image();
    EXPECT_RECT_COLOR(img, r, Sys(COLOR_3DFACE));
    EXPECT_PIXEL(img, 0, 0, kRed);
}

TEST(LineTo, LeavesOutTheEndPointAndKeepsTheDashPattern)
{
    Canvas c(14, 6);
    CDC& dc = c.dc();
    dc.MoveTo(1, 1);
    dc.LineTo(5, 1);
    dc.MoveTo(0, 2);
    dc.LineTo(3, 5);
    CPen dots(PS_DOT, 0, kRed);
    CPen* old = dc.SelectObject(&dots);
    dc.MoveTo(0, 0);
    dc.LineTo(12, 0);
    dc.SelectObject(old);
    const QImage img = c.Image();
    EXPECT_RECT_COLOR(img, (RECT{1, 1, 5, 2}), RGB(0, 0, 0));
    EXPECT_PIXEL(img, 5, 1, kWhite);
    EXPECT_PIXEL(img, 2, 4, RGB(0, 0, 0));
    EXPECT_PIXEL(img, 3, 5, kWhite);
    EXPECT_RECT_COLOR(img, (RECT{0, 0, 3, 1}), kRed);
    EXPECT_RECT_COLOR(img, (RECT{3, 0, 6, 1}), kWhite);
    EXPECT_RECT_COLOR(img, (RECT{6, 0, 9, 1}), kRed);
}

TEST(LineTo, XorPenTwiceRestoresThePixels)
{
    Canvas c(8, 8, RGB(10, 200, 30));
    const QImage before = c.Image();
    CPen pen(PS_SOLID, 1, RGB(255, 255, 255));
    c.dc().SelectObject(&pen);
    c.dc().SetROP2(R2_XORPEN);
    for (int i = 0; i < 2; ++i) {
        c.dc().MoveTo(0, 0);
        c.dc().LineTo(7, 5);
        if (i == 0) {
            EXPECT_PIXEL(c.Image(), 0, 0, RGB(245, 55, 225));
        }
    }
    c.dc().SelectStockObject(BLACK_PEN);
    EXPECT_EQ(c.Image(), before);
}

TEST(Rectangle, FramesWithThePenAndFillsWithTheBrush)
{
    Canvas c(8, 8);
    CPen pen(PS_SOLID, 1, kRed);
    CBrush brush(kBlue);
    c.dc().SelectObject(&pen);
    c.dc().SelectObject(&brush);
    c.dc().Rectangle(1, 1, 6, 6);
    c.dc().SelectStockObject(NULL_PEN);
    c.dc().SelectStockObject(BLACK_BRUSH);
    c.dc().Rectangle(0, 6, 4, 8); // without a pen one pixel less each way
    const QImage img = c.Image();
    EXPECT_PIXEL(img, 1, 1, kRed);
    EXPECT_PIXEL(img, 5, 5, kRed);
    EXPECT_PIXEL(img, 6, 5, kWhite);
    EXPECT_RECT_COLOR(img, (RECT{2, 2, 5, 5}), kBlue);
    EXPECT_RECT_COLOR(img, (RECT{0, 6, 3, 7}), RGB(0, 0, 0));
    EXPECT_PIXEL(img, 3, 6, kWhite);
    EXPECT_PIXEL(img, 0, 7, kWhite);
    c.dc().SelectStockObject(BLACK_PEN);
    c.dc().SelectStockObject(WHITE_BRUSH);
}

TEST(FrameRect, DrawsOnePixelInsideTheRectangle)
{
    Canvas c(6, 6);
    CBrush brush(kRed);
    const RECT r{1, 1, 5, 5};
    c.dc().FrameRect(&r, &brush);
    const QImage img = c.Image();
    EXPECT_PIXEL(img, 1, 1, kRed);
    EXPECT_PIXEL(img, 4, 4, kRed);
    EXPECT_PIXEL(img, 2, 2, kWhite);
    EXPECT_PIXEL(img, 5, 5, kWhite);
}

TEST(DrawFocusRect, SecondCallTakesItAway)
{
    Canvas c(10, 10, Sys(COLOR_BTNFACE));
    const QImage before = c.Image();
    const RECT r{1, 1, 9, 9};
    c.dc().DrawFocusRect(&r);
    const QImage drawn = c.Image();
    EXPECT_NE(drawn, before);
    // Alternate pixels of the border are inverted.
    EXPECT_NE(vxtest::ColorAt(drawn, 1, 1) == Sys(COLOR_BTNFACE), vxtest::ColorAt(drawn, 2, 1) == Sys(COLOR_BTNFACE));
    EXPECT_PIXEL(drawn, 4, 4, Sys(COLOR_BTNFACE));
    c.dc().DrawFocusRect(&r);
    EXPECT_EQ(c.Image(), before);
}

TEST(GradientFill, RunsChannelByChannelFromStartToEnd)
{
    Canvas c(4, 2);
    TRIVERTEX v[2] = {{0, 0, 0, 0x8000, 0xFF00, 0}, {4, 1, 0xFF00, 0x8000, 0, 0}};
    GRADIENT_RECT g{0, 1};
    ASSERT_TRUE(c.dc().GradientFill(v, 2, &g, 1, GRADIENT_FILL_RECT_H));
    const QImage img = c.Image();
    // Offset i of n: start + (end - start) * i / n, then the high byte.
    EXPECT_PIXEL(img, 0, 0, RGB(0, 128, 255));
    EXPECT_PIXEL(img, 1, 0, RGB(63, 128, 191));
    EXPECT_PIXEL(img, 2, 0, RGB(127, 128, 127));
    EXPECT_PIXEL(img, 3, 0, RGB(191, 128, 63));
    EXPECT_PIXEL(img, 0, 1, kWhite);
    TRIVERTEX w[2] = {{0, 0, 0, 0, 0, 0}, {1, 2, 0xFF00, 0xFF00, 0xFF00, 0}};
    ASSERT_TRUE(c.dc().GradientFill(w, 2, &g, 1, GRADIENT_FILL_RECT_V));
    EXPECT_PIXEL(c.Image(), 0, 0, RGB(0, 0, 0));
    EXPECT_PIXEL(c.Image(), 0, 1, RGB(127, 127, 127));
}

TEST(Clipping, IntersectOriginAndSavedStatesShapeWhereFillsLand)
{
    Canvas c(10, 10);
    CDC& dc = c.dc();
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(2, 2, 6, 6);
    dc.SetWindowOrg(-1, 0); // logical x 0 is device x 1
    dc.FillSolidRect(0, 0, 10, 10, kRed);
    EXPECT_EQ(dc.GetPixel(0, 0), CLR_INVALID); // outside the clip
    dc.SetTextColor(kBlue);
    ASSERT_TRUE(dc.RestoreDC(saved));
    EXPECT_EQ(dc.GetTextColor(), RGB(0, 0, 0));
    EXPECT_EQ(dc.GetWindowOrg(), CPoint(0, 0));
    const QImage img = c.Image();
    EXPECT_RECT_COLOR(img, (RECT{2, 2, 6, 6}), kRed);
    EXPECT_PIXEL(img, 1, 2, kWhite);
    EXPECT_PIXEL(img, 6, 6, kWhite);
    // After the restore the clip is gone.
    dc.FillSolidRect(8, 8, 1, 1, kBlue);
    EXPECT_PIXEL(c.Image(), 8, 8, kBlue);
}

TEST(Brushes, HatchAndPatternRepeatFromTheBrushOrigin)
{
    Canvas c(16, 8);
    CBrush hatch(HS_VERTICAL, kRed);
    const RECT all{0, 0, 16, 8};
    c.dc().SetBkMode(TRANSPARENT);
    c.dc().FillRect(&all, &hatch);
    QImage img = c.Image();
    EXPECT_PIXEL(img, 7, 3, kRed);
    EXPECT_PIXEL(img, 15, 0, kRed);
    EXPECT_PIXEL(img, 6, 3, kWhite);
    EXPECT_EQ(vxtest::CountColor(img, all, kRed), 16);
    // A sys colour index + 1 stands for its brush.
    FillRect(c.hdc(), &all, reinterpret_cast<HBRUSH>(static_cast<std::uintptr_t>(COLOR_BTNSHADOW + 1)));
    EXPECT_PIXEL(c.Image(), 0, 0, Sys(COLOR_BTNSHADOW));
}

} // namespace

TEST(FillRect, APatternBrushTilesFromTheBrushOriginInsideTheClip)
{
    // Two by two: red green / blue white.
    vxtest::Canvas source(2, 2);
    SetPixel(source.hdc(), 0, 0, RGB(255, 0, 0));
    SetPixel(source.hdc(), 1, 0, RGB(0, 255, 0));
    SetPixel(source.hdc(), 0, 1, RGB(0, 0, 255));
    SetPixel(source.hdc(), 1, 1, RGB(255, 255, 255));
    HBRUSH pattern = CreatePatternBrush(source.bitmap());
    vxtest::Canvas canvas(8, 4, RGB(0, 0, 0));
    SetBrushOrgEx(canvas.hdc(), 1, 0, nullptr);
    IntersectClipRect(canvas.hdc(), 2, 0, 6, 4);
    RECT all{0, 0, 8, 4};
    FillRect(canvas.hdc(), &all, pattern);
    const QImage image = canvas.Image();
    // Column 2 lies one to the right of the origin: the pattern's column 1.
    EXPECT_PIXEL(image, 2, 0, RGB(0, 255, 0));
    EXPECT_PIXEL(image, 3, 0, RGB(255, 0, 0));
    EXPECT_PIXEL(image, 2, 1, RGB(255, 255, 255));
    EXPECT_PIXEL(image, 5, 3, RGB(0, 0, 255));
    EXPECT_PIXEL(image, 1, 0, RGB(0, 0, 0)) << "outside the clip";
    EXPECT_PIXEL(image, 6, 2, RGB(0, 0, 0)) << "outside the clip";
    DeleteObject(pattern);
}
