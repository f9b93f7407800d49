#include "uisupport/uitest.h"

#include "ui/gdi/cgdiobject.h"
#include "ui/windows/qtinterop.h"

#include <QFont>
#include <QFontInfo>
#include <QString>

#include <cstring>

namespace {

using vxtest::Canvas;

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kText = RGB(128, 128, 128);

LOGFONTA Request(int height, const char* face = "MS Sans Serif", LONG weight = FW_NORMAL)
{
    LOGFONTA lf{};
    lf.lfHeight = height;
    lf.lfWeight = weight;
    std::strncpy(lf.lfFaceName, face, LF_FACESIZE - 1);
    return lf;
}

using vxtest::Ink;

TEST(Fonts, EveryFaceRendersWithThePinnedFamily)
{
    // Reproducible pixels need DejaVu Sans (Debian's fonts-dejavu-core).
    EXPECT_EQ(QFontInfo(QFont(QStringLiteral("DejaVu Sans"))).family(), QStringLiteral("DejaVu Sans"));
    Canvas c(1, 1);
    CFont font;
    const LOGFONTA lf = Request(-11, "Tahoma");
    ASSERT_TRUE(font.CreateFontIndirect(&lf));
    c.dc().SelectObject(&font);
    TEXTMETRICA tm{};
    ASSERT_TRUE(c.dc().GetTextMetrics(&tm));
    EXPECT_EQ(tm.tmHeight - tm.tmInternalLeading, 11); // a negative height is the character height
    EXPECT_EQ(tm.tmHeight, tm.tmAscent + tm.tmDescent);
    CString face;
    c.dc().GetTextFace(face);
    EXPECT_STREQ(face, "Tahoma");
    LOGFONTA back{};
    font.GetLogFont(&back);
    EXPECT_EQ(back.lfHeight, -11);

    CFont cell;
    const LOGFONTA byCell = Request(16);
    cell.CreateFontIndirect(&byCell);
    c.dc().SelectObject(&cell);
    c.dc().GetTextMetrics(&tm);
    EXPECT_LE(tm.tmHeight, 16); // a positive height is the cell height
    EXPECT_GE(tm.tmHeight, 14);
    c.dc().SelectStockObject(SYSTEM_FONT);
}

class DrawTextTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const LOGFONTA lf = Request(-11);
        font.CreateFontIndirect(&lf);
        canvas.dc().SelectObject(&font);
        canvas.dc().SetTextColor(kText);
        canvas.dc().SetBkMode(TRANSPARENT);
    }
    void TearDown() override { canvas.dc().SelectStockObject(SYSTEM_FONT); }

    Canvas canvas{120, 60};
    CFont font;
};

TEST_F(DrawTextTest, CalcRectMeasuresWithoutDrawing)
{
    CDC& dc = canvas.dc();
    const CSize extent = dc.GetTextExtent("Hello");
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    CRect r(10, 10, 200, 200);
    const int h = dc.DrawText("Hello", -1, &r, DT_SINGLELINE | DT_CALCRECT);
    EXPECT_EQ(h, tm.tmHeight);
    EXPECT_EQ(r, CRect(10, 10, 10 + extent.cx, 10 + tm.tmHeight));
    EXPECT_TRUE(Ink(canvas.Image(), kText).IsRectEmpty());

    CRect wrap(0, 0, extent.cx + 2, 0);
    const int lines = dc.DrawText("Hello Hello Hello", -1, &wrap, DT_WORDBREAK | DT_CALCRECT);
    EXPECT_EQ(lines, 3 * tm.tmHeight);
    EXPECT_EQ(wrap.Width(), extent.cx);
    // "&&" is one "&"; "&x" is x, underlined.
    EXPECT_EQ(dc.DrawText("&File", -1, &(r = CRect(0, 0, 500, 0)), DT_CALCRECT | DT_SINGLELINE), tm.tmHeight);
    EXPECT_EQ(r.Width(), dc.GetTextExtent("File").cx);
    dc.DrawText("&File", -1, &(r = CRect(0, 0, 500, 0)), DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    EXPECT_EQ(r.Width(), dc.GetTextExtent("&File").cx);
    dc.DrawText("a&&b", -1, &(r = CRect(0, 0, 500, 0)), DT_CALCRECT | DT_SINGLELINE);
    EXPECT_EQ(r.Width(), dc.GetTextExtent("a&b").cx);
    dc.DrawText("A rather long caption", -1, &(r = CRect(0, 0, 50, 0)), DT_CALCRECT | DT_SINGLELINE | DT_END_ELLIPSIS);
    EXPECT_LE(r.Width(), 50);
    EXPECT_GT(r.Width(), 20);
}

TEST_F(DrawTextTest, CentresInTheRectangleInTheTextColourOnly)
{
    CRect r(0, 0, 120, 60);
    canvas.dc().DrawText("OK", -1, &r, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    const QImage img = canvas.Image();
    const CRect ink = Ink(img, kText);
    ASSERT_FALSE(ink.IsRectEmpty());
    EXPECT_LE(std::abs((ink.left + ink.right) - 120), 3);
    EXPECT_LE(std::abs((ink.top + ink.bottom) - 60), 5);
    // Without smoothing every pixel is either the text colour or untouched.
    const RECT all{0, 0, 120, 60};
    EXPECT_EQ(vxtest::CountColor(img, all, kText) + vxtest::CountColor(img, all, kWhite), 120 * 60);
}

TEST_F(DrawTextTest, PrefixUnderlinesAndOpaqueModeFillsTheBackground)
{
    CDC& dc = canvas.dc();
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    CRect r(0, 0, 120, 20);
    dc.DrawText("&W", -1, &r, DT_SINGLELINE);
    const int wWidth = dc.GetTextExtent("W").cx;
    const RECT underline{0, tm.tmAscent + 1, wWidth, tm.tmAscent + 2};
    EXPECT_RECT_COLOR(canvas.Image(), underline, kText);

    dc.SetBkMode(OPAQUE);
    dc.SetBkColor(RGB(0, 0, 255));
    CRect below(0, 30, 120, 60);
    dc.DrawText("x", -1, &below, DT_SINGLELINE);
    const CSize x = dc.GetTextExtent("x");
    EXPECT_EQ(vxtest::CountColor(canvas.Image(), RECT{0, 30, x.cx, 30 + tm.tmHeight}, RGB(0, 0, 255)) +
                  vxtest::CountColor(canvas.Image(), RECT{0, 30, x.cx, 30 + tm.tmHeight}, kText),
              x.cx * tm.tmHeight);
}

TEST_F(DrawTextTest, ClipsToTheRectangleUnlessAskedNot)
{
    CRect r(0, 0, 8, 20);
    canvas.dc().DrawText("WWWWWW", -1, &r, DT_SINGLELINE);
    EXPECT_EQ(Ink(canvas.Image(), kText).right, 8);
    CRect free(0, 30, 8, 50);
    canvas.dc().DrawText("WWWWWW", -1, &free, DT_SINGLELINE | DT_NOCLIP);
    EXPECT_GT(Ink(canvas.Image(), kText).right, 20);
}

TEST(Text, CodePageBytesBecomeTheirCharacters)
{
    EXPECT_EQ(vx::ToQString("\xB9\xE6"), QString::fromUtf8("ąć"));
    EXPECT_STREQ(vx::FromQString(QString::fromUtf8("Łódź")), "\xA3\xF3\x64\x9F");
}

TEST(Marlett, EachGlyphIsADistinctShapeInsideItsSquare)
{
    CFont marlett;
    marlett.CreateFont(-16, 0, 0, 0, FW_NORMAL, 0, 0, 0, SYMBOL_CHARSET, 0, 0, 0, 0, "Marlett");
    std::vector<QImage> shapes;
    for (char code : {'0', '1', '2', '3', '4', '5', '6', '8', 'b', 'i', 'r'}) {
        Canvas c(24, 24);
        c.dc().SelectObject(&marlett);
        c.dc().SetBkMode(TRANSPARENT);
        c.dc().SetTextColor(RGB(0, 0, 0));
        c.dc().TextOut(4, 4, &code, 1);
        const QImage img = c.Image();
        const CRect ink = Ink(img, RGB(0, 0, 0));
        SCOPED_TRACE(code);
        EXPECT_FALSE(ink.IsRectEmpty());
        EXPECT_TRUE(CRect(4, 4, 20, 20) == (ink | CRect(4, 4, 20, 20)));
        for (const QImage& other : shapes)
            EXPECT_NE(img, other);
        shapes.push_back(img);
        c.dc().SelectStockObject(SYSTEM_FONT);
    }
    // The em square is the cell: as wide as high, no descent.
    Canvas c(1, 1);
    c.dc().SelectObject(&marlett);
    EXPECT_EQ(c.dc().GetTextExtent("bb", 2), CSize(32, 16));
    c.dc().SelectStockObject(SYSTEM_FONT);
}

} // namespace
