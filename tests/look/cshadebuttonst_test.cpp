#include "look/cshadebuttonst.h"

#include "buttontest.h"

#include <cstdlib>
#include <map>

namespace {

using looktest::Parent;

struct PaletteCase {
    const char* name;
    DWORD initShade;
    COLORREF e0, e64, e128, e200, e255;
};

class ShadePalette : public ::testing::TestWithParam<PaletteCase> {};

// Entries 0 to 128 run from shadow to face, 128 to 255 from face to highlight.
TEST_P(ShadePalette, RunsFromShadowOverFaceToHighlight)
{
    const PaletteCase& c = GetParam();
    Parent parent;
    CShadeButtonST b;
    b.Create("", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 40), &parent, 100);
    const DWORD saved = CButtonST::m_InitShade;
    CButtonST::m_InitShade = c.initShade;
    b.SetShade(CShadeButtonST::SHS_NOISE, 8, 20, 0, 0);
    CButtonST::m_InitShade = saved;
    const CShadeDib& face = b.NormalFace();
    EXPECT_EQ(face.GetPaletteIndex(0), c.e0);
    EXPECT_EQ(face.GetPaletteIndex(64), c.e64);
    EXPECT_EQ(face.GetPaletteIndex(128), c.e128);
    EXPECT_EQ(face.GetPaletteIndex(200), c.e200);
    EXPECT_EQ(face.GetPaletteIndex(255), c.e255);
    // The dotted lines share the palette; the hover face leans 20% to the highlight.
    EXPECT_EQ(b.HorizontalDots().GetPaletteIndex(200), c.e200);
    const COLORREF hi = c.e255;
    const COLORREF lo = c.e0;
    EXPECT_EQ(b.HoverFace().GetPaletteIndex(0),
              RGB((GetRValue(lo) * 80 + GetRValue(hi) * 20) / 100, (GetGValue(lo) * 80 + GetGValue(hi) * 20) / 100,
                  (GetBValue(lo) * 80 + GetBValue(hi) * 20) / 100));
    EXPECT_EQ(b.PressedFace().GetPaletteIndex(0), b.HoverFace().GetPaletteIndex(0));
    EXPECT_EQ(b.DisabledFace().GetPaletteIndex(200), c.e200);
}

INSTANTIATE_TEST_SUITE_P(
    InitShades, ShadePalette,
    ::testing::Values(
        PaletteCase{"System", 0, RGB(128, 128, 128), RGB(170, 168, 164), RGB(212, 208, 200), RGB(236, 234, 231),
                    RGB(255, 255, 255)},
        PaletteCase{"LightGray", 1, RGB(142, 142, 142), RGB(167, 167, 167), RGB(192, 192, 192), RGB(220, 220, 220),
                    RGB(242, 242, 242)},
        PaletteCase{"Gray", 2, RGB(128, 128, 128), RGB(153, 153, 153), RGB(178, 178, 178), RGB(206, 206, 206),
                    RGB(228, 228, 228)},
        PaletteCase{"SilverBlue", 3, RGB(125, 133, 154), RGB(150, 158, 179), RGB(175, 183, 204), RGB(203, 211, 232),
                    RGB(225, 233, 254)},
        // A user colour: highlight and shadow lie d away, d the nearest distance to 0 or 255.
        PaletteCase{"UserColour", RGB(128, 80, 64), RGB(64, 16, 0), RGB(96, 48, 32), RGB(128, 80, 64),
                    RGB(164, 116, 100), RGB(192, 144, 128)},
        // A channel at 0 makes d 0: one colour throughout.
        PaletteCase{"UserColourAtTheEdge", RGB(16, 255, 0), RGB(16, 255, 0), RGB(16, 255, 0), RGB(16, 255, 0),
                    RGB(16, 255, 0), RGB(16, 255, 0)}),
    [](const ::testing::TestParamInfo<PaletteCase>& info) { return std::string(info.param.name); });

class ShadeTest : public ::testing::Test {
protected:
    void SetUp() override { button.Create("", WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 40), &parent, 100); }

    // The normal face's pixel indices with a fixed seed.
    std::vector<int> Shade(UINT shade, unsigned seed = 1234, BYTE granularity = 8)
    {
        std::srand(seed);
        button.SetShade(shade, granularity, 10, 0, 0);
        std::vector<int> out;
        const CShadeDib& f = button.NormalFace();
        for (long y = 0; y < f.GetHeight(); ++y)
            for (long x = 0; x < f.GetWidth(); ++x)
                out.push_back(f.GetPixelIndex(x, y));
        return out;
    }
    int At(const std::vector<int>& v, int x, int y) const { return v[static_cast<std::size_t>(y * 200 + x)]; }
    double RowMean(const std::vector<int>& v, int y) const
    {
        double sum = 0;
        for (int x = 0; x < 200; ++x)
            sum += At(v, x, y);
        return sum / 200;
    }
    double ColumnMean(const std::vector<int>& v, int x) const
    {
        double sum = 0;
        for (int y = 0; y < 40; ++y)
            sum += At(v, x, y);
        return sum / 40;
    }

    Parent parent;
    CShadeButtonST button;
};

TEST_F(ShadeTest, NoiseIsSeededAndSpansTheGranularityAroundTheMiddle)
{
    const auto a = Shade(CShadeButtonST::SHS_NOISE, 42);
    const auto b = Shade(CShadeButtonST::SHS_NOISE, 42);
    const auto c = Shade(CShadeButtonST::SHS_NOISE, 43);
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
    double sum = 0;
    std::map<int, int> seen;
    for (int v : a) {
        ASSERT_GE(v, 120);
        ASSERT_LE(v, 136);
        sum += v;
        ++seen[v];
    }
    EXPECT_NEAR(sum / a.size(), 128.0, 0.5);
    EXPECT_GE(seen.size(), 16u); // the whole span is used
    // Granularity 0 divides by 1: only the very top of rand()'s range adds 1.
    for (int v : Shade(CShadeButtonST::SHS_NOISE, 7, 0))
        ASSERT_TRUE(v == 128 || v == 129);
}

TEST_F(ShadeTest, ShadesRunTheirWay)
{
    // g = 8, top = 247, a = 239.
    const auto h = Shade(CShadeButtonST::SHS_HSHADE);
    EXPECT_NEAR(RowMean(h, 0), 8, 1.5);
    EXPECT_NEAR(RowMean(h, 39), 239 * 39 / 40 + 8, 1.5);
    const auto v = Shade(CShadeButtonST::SHS_VSHADE);
    for (int y = 0; y < 40; ++y)
        ASSERT_EQ(At(v, 0, y), 0) << "column 0 stays as it was";
    EXPECT_NEAR(ColumnMean(v, 1), 239 * 199 / 200 + 8, 3);
    EXPECT_NEAR(ColumnMean(v, 199), 239 * 1 / 200 + 8, 3);
    const auto d = Shade(CShadeButtonST::SHS_DIAGSHADE);
    EXPECT_LT(At(d, 199, 0), At(d, 0, 39));
    const auto bump = Shade(CShadeButtonST::SHS_HBUMP);
    EXPECT_LT(RowMean(bump, 0), 70);
    EXPECT_NEAR(RowMean(bump, 20), 128, 2);
    EXPECT_GT(RowMean(bump, 39), 180);
    const auto vbump = Shade(CShadeButtonST::SHS_VBUMP);
    EXPECT_GT(ColumnMean(vbump, 0), ColumnMean(vbump, 199));
    // The soft bump is clamped to g and top before the noise.
    const auto soft = Shade(CShadeButtonST::SHS_SOFTBUMP);
    EXPECT_LE(At(soft, 199, 0), 16);
    EXPECT_GE(At(soft, 0, 39), 239);
    const auto hard = Shade(CShadeButtonST::SHS_HARDBUMP);
    EXPECT_GT(ColumnMean(hard, 0), 200); // the rounded left end is bright
    EXPECT_LT(ColumnMean(hard, 199), 40); // the right end dark
    const auto metal = Shade(CShadeButtonST::SHS_METAL);
    EXPECT_LT(At(metal, 199, 0), 30);
    EXPECT_GT(At(metal, 0, 39), 180);
    EXPECT_LT(RowMean(metal, 0), RowMean(metal, 39));
}

TEST_F(ShadeTest, ZeroSizeLeavesTheFacesAsTheyWere)
{
    Shade(CShadeButtonST::SHS_HSHADE);
    button.MoveWindow(0, 0, 0, 40);
    button.SetShade(CShadeButtonST::SHS_NOISE);
    EXPECT_EQ(button.NormalFace().GetWidth(), 200);
    button.MoveWindow(0, 0, 120, 30);
    button.SetShade(CShadeButtonST::SHS_NOISE);
    EXPECT_EQ(button.NormalFace().GetWidth(), 120);
    EXPECT_EQ(button.VerticalDots().GetHeight(), 30);
    // The dotted lines alternate 0 and 255.
    EXPECT_EQ(button.HorizontalDots().GetPixelIndex(0, 0), 0);
    EXPECT_EQ(button.HorizontalDots().GetPixelIndex(1, 0), 255);
}

TEST_F(ShadeTest, TinyButtonsShadeEveryWay)
{
    for (const CSize size : {CSize(1, 1), CSize(2, 1), CSize(1, 3), CSize(5, 2), CSize(7, 1)}) {
        button.MoveWindow(0, 0, size.cx, size.cy);
        for (UINT shade = 0; shade <= 9; ++shade) {
            SCOPED_TRACE(testing::Message() << size.cx << "x" << size.cy << " shade " << shade);
            button.SetShade(shade, 8, 10, 0, 0);
            ASSERT_EQ(button.NormalFace().GetWidth(), size.cx);
            ASSERT_EQ(button.NormalFace().GetHeight(), size.cy);
        }
    }
}

TEST_F(ShadeTest, PaintsTheNormalFaceAndTheHoverFaceWhenHovered)
{
    button.SetWindowText("");
    Shade(CShadeButtonST::SHS_HSHADE);
    const CShadeDib& normal = button.NormalFace();
    QImage img = vxtest::Render(button);
    EXPECT_PIXEL(img, 10, 10, normal.GetPaletteIndex(normal.GetPixelIndex(10, 10)));
    looktest::Mouse(button, WM_MOUSEMOVE, 10, 10);
    img = vxtest::Render(button);
    const CShadeDib& hover = button.HoverFace();
    EXPECT_PIXEL(img, 10, 10, hover.GetPaletteIndex(hover.GetPixelIndex(10, 10)));
    // Pressed while hovered, the hover face moves one pixel right and down.
    looktest::Mouse(button, WM_LBUTTONDOWN, 10, 10, MK_LBUTTON);
    img = vxtest::Render(button);
    EXPECT_PIXEL(img, 11, 11, hover.GetPaletteIndex(hover.GetPixelIndex(10, 10)));
    looktest::Mouse(button, WM_LBUTTONUP, 10, 10);
    // Disabled, the normal face shows (the disabled face is never drawn).
    button.EnableWindow(FALSE);
    img = vxtest::Render(button);
    EXPECT_PIXEL(img, 10, 10, normal.GetPaletteIndex(normal.GetPixelIndex(10, 10)));
}

} // namespace
