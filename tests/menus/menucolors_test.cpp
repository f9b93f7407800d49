// The colour helpers exact to the channel, against values worked out by
// hand from their formulas (MulDiv rounds half away from zero), and the
// drawing aids.
#include "newmenutest.h"

#include "platform/windows/sysmetrics.h"

namespace {

TEST(MenuColors, ChannelArithmeticRoundsLikeMulDiv)
{
    // 200 * 205 / 255 = 160.78, 100 * 205 / 255 = 80.39, 10 * 205 / 255 = 8.04
    EXPECT_EQ(DarkenColor(50, RGB(200, 100, 10)), RGB(161, 80, 8));
    // 200 + 55 * 100 / 255 = 221.57, 100 + 60.78, 10 + 96.08
    EXPECT_EQ(LightenColor(100, RGB(200, 100, 10)), RGB(222, 161, 106));
    // 255 * .86 = 219.3 -> 219, 212 * .14 = 29.68 -> 30, 208 * .14 = 29.12 -> 29, 200 * .14 = 28
    EXPECT_EQ(MixColor(RGB(255, 255, 255), RGB(212, 208, 200)), RGB(249, 248, 247));
    // 212 * .86 = 182.32 -> 182 + 36; 208 * .86 = 178.88 -> 179 + 36; 200 * .86 = 172 + 36
    EXPECT_EQ(MixColor(RGB(212, 208, 200), RGB(255, 255, 255)), RGB(218, 215, 208));
    // 255 * .7 = 178.5 -> 179 (half away from zero); 10 * .3 = 3, 36 * .3 = 10.8, 106 * .3 = 31.8
    EXPECT_EQ(BlendColor(RGB(255, 255, 255), RGB(10, 36, 106)), RGB(182, 190, 211));
    // (10 + 20 + 31) / 3 = 20.33, truncated
    EXPECT_EQ(GrayColor(RGB(10, 20, 31)), RGB(20, 20, 20));
    // Blue plus 55 before scaling: 305 * .7 = 213.5 -> 214; not clamped first: 310 * .7 = 217
    EXPECT_EQ(TintColor(RGB(100, 200, 250)), RGB(70, 140, 214));
    EXPECT_EQ(TintColor(RGB(0, 0, 255)), RGB(0, 0, 217));
    // The ends of the scales.
    EXPECT_EQ(DarkenColor(0, RGB(1, 2, 3)), RGB(1, 2, 3));
    EXPECT_EQ(DarkenColor(255, RGB(255, 255, 255)), RGB(0, 0, 0));
    EXPECT_EQ(LightenColor(255, RGB(0, 0, 0)), RGB(255, 255, 255));
}

TEST(MenuColors, SelectionAndScreen)
{
    // More than 256 colours, no high contrast: window blended with highlight.
    EXPECT_GT(NumScreenColors(), 256);
    EXPECT_FALSE(IsHighContrast());
    EXPECT_EQ(GetSelectionColor(), RGB(182, 190, 211));
    EXPECT_FALSE(DropShadowEnabled());
    EXPECT_TRUE(IsNewShell());
}

TEST(MenuColors, MenuColoursFollowTheMenusBrush)
{
    CNewMenu menu;
    menu.CreatePopupMenu();
    EXPECT_EQ(CNewMenu::GetMenuColor(menu.m_hMenu), GetSysColor(COLOR_MENU));
    EXPECT_EQ(CNewMenu::GetMenuBarColor(nullptr), GetSysColor(COLOR_MENU));
    HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    info.hbrBack = brush;
    SetMenuInfo(menu.m_hMenu, &info);
    EXPECT_EQ(CNewMenu::GetMenuColor(menu.m_hMenu), RGB(1, 2, 3));
    EXPECT_EQ(CNewMenu::GetMenuBarColor(menu.m_hMenu), RGB(1, 2, 3));
    EXPECT_EQ(CNewMenu::GetMenuBarColorXP(), GetSysColor(COLOR_BTNFACE));
    // Blend of the darkened window (245) and the active caption (10, 36, 106):
    // 245 * .7 = 171.5 -> 172, plus 3, 11 and 32.
    EXPECT_EQ(CNewMenu::GetMenuBarColor2003(), RGB(175, 183, 204));
    const COLORREF old = CNewMenu::m_InitColor;
    CNewMenu::m_InitColor = RGB(9, 8, 7);
    EXPECT_EQ(CNewMenu::GetMenuBarColor2003(), RGB(9, 8, 7));
    CNewMenu::m_InitColor = old;
    menu.DestroyMenu();
    DeleteObject(brush);
}

TEST(MenuColors, GradientRunsFromStartToEnd)
{
    vxtest::Canvas canvas(40, 10);
    DrawGradient(&canvas.dc(), CRect(0, 0, 40, 10), RGB(0, 0, 0), RGB(200, 100, 40), TRUE, FALSE);
    DrawGradient(&canvas.dc(), CRect(0, 5, 40, 10), RGB(0, 0, 0), RGB(200, 100, 40), FALSE, TRUE);
    const QImage image = canvas.Image();
    EXPECT_PIXEL(image, 0, 0, RGB(0, 0, 0));
    // Across: each column darker than the next, the same down the column.
    for (int x = 1; x < 40; ++x) {
        EXPECT_GE(GetRValue(vxtest::ColorAt(image, x, 0)), GetRValue(vxtest::ColorAt(image, x - 1, 0)));
        EXPECT_EQ(vxtest::ColorAt(image, x, 0), vxtest::ColorAt(image, x, 4));
    }
    EXPECT_GE(GetRValue(vxtest::ColorAt(image, 39, 0)), 190);
    // Down (on a true-colour screen "nearest" is ignored): rows, not columns.
    EXPECT_PIXEL(image, 0, 5, RGB(0, 0, 0));
    EXPECT_EQ(vxtest::ColorAt(image, 0, 9), vxtest::ColorAt(image, 39, 9));
    EXPECT_GT(GetRValue(vxtest::ColorAt(image, 0, 9)), 100);
}

TEST(MenuColors, MemoryDeviceKeepsTheItemsCoordinatesAndCopiesBack)
{
    vxtest::Canvas canvas(30, 30, RGB(255, 255, 255));
    const RECT item{10, 10, 20, 20};
    {
        CNewMemDC memory(&item, canvas.hdc());
        memory.FillSolidRect(&item, RGB(255, 0, 0));
        EXPECT_EQ(vxtest::ColorAt(canvas.Image(), 15, 15), RGB(255, 255, 255)); // not yet
    }
    EXPECT_PIXEL(canvas.Image(), 10, 10, RGB(255, 0, 0));
    EXPECT_PIXEL(canvas.Image(), 19, 19, RGB(255, 0, 0));
    EXPECT_PIXEL(canvas.Image(), 20, 20, RGB(255, 255, 255));
    {
        CNewMemDC memory(&item, canvas.hdc());
        memory.FillSolidRect(&item, RGB(0, 255, 0));
        memory.m_bCancel = TRUE;
    }
    EXPECT_PIXEL(canvas.Image(), 15, 15, RGB(255, 0, 0));
}

} // namespace
