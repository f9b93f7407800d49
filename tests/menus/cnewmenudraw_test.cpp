// Measuring and drawing in the draw modes: sizes from the measure rules,
// and the colours of the fills, frames, icon column, check marks,
// separators, titles and disabled images, worked out by hand for the
// classic colours (menu 212, 208, 200; window white; highlight 10, 36, 106).
#include "newmenutest.h"

#include <cstdint>

#include "platform/windows/sysmetrics.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

namespace {

using newmenutest::DrawMode;
using newmenutest::DrawOne;
using newmenutest::MeasureOne;

constexpr COLORREF kMenu = RGB(212, 208, 200);
constexpr COLORREF kHighlight = RGB(10, 36, 106);
constexpr COLORREF kXpBack = RGB(249, 248, 247);      // MixColor(window, menu)
constexpr COLORREF kXpColumn = RGB(218, 215, 208);    // MixColor(menu, window)
constexpr COLORREF kXpSelection = RGB(182, 190, 211); // BlendColor(window, highlight)

struct Fixture {
    CNewMenu menu;
    Fixture()
    {
        menu.CreatePopupMenu();
        menu.AppendODMenu("Open", MF_STRING, 1);             // 0
        menu.AppendODMenu(nullptr, MF_SEPARATOR);            // 1
        menu.AppendODMenu("Check", MF_STRING | MF_CHECKED, 2); // 2
        menu.AppendODMenu("Close", MF_STRING, SC_CLOSE);     // 3
    }
};

TEST(CNewMenuMeasure, SizesFollowTheRulesOfEachMode)
{
    Fixture f;
    const int cyMenu = GetSystemMetrics(SM_CYMENU); // 19
    CSize old, icy, xp;
    {
        DrawMode mode(CNewMenu::STYLE_ORIGINAL);
        old = MeasureOne(f.menu, 0);
        EXPECT_EQ(MeasureOne(f.menu, 1), CSize(3, 3));
    }
    {
        DrawMode mode(CNewMenu::STYLE_ICY);
        icy = MeasureOne(f.menu, 0);
    }
    {
        DrawMode mode(CNewMenu::STYLE_XP_2003);
        xp = MeasureOne(f.menu, 0);
        EXPECT_EQ(MeasureOne(f.menu, 1), CSize(3, 3));
        // A system command is as high as a menu bar.
        EXPECT_EQ(MeasureOne(f.menu, 3).cy, cyMenu);
    }
    // Heights: icon 15 + 4 against 19; 15 + 6; 15 + 8 is not below 19, so 15 + 7.
    EXPECT_EQ(old.cy, std::max(15 + 4, cyMenu));
    EXPECT_EQ(icy.cy, std::max(15 + 6, cyMenu));
    EXPECT_EQ(xp.cy, 15 + 7);
    // Widths: cx + 2 + 2 * 16 in both classic modes, cx + 19 / 2 + 16 + 6 in XP.
    EXPECT_EQ(old.cx, icy.cx);
    EXPECT_EQ(old.cx - xp.cx, (2 + 32) - (cyMenu / 2 + 16 + 6));
    // A tab counts as "nnn" in Icy and XP, not in the original style.
    CNewMenu tabbed;
    tabbed.CreatePopupMenu();
    tabbed.AppendODMenu("Open\tX", MF_STRING, 1);
    tabbed.AppendODMenu("OpennnnX", MF_STRING, 2);
    {
        DrawMode mode(CNewMenu::STYLE_ICY);
        EXPECT_EQ(MeasureOne(tabbed, 0), MeasureOne(tabbed, 1));
    }
    {
        DrawMode mode(CNewMenu::STYLE_XP);
        EXPECT_EQ(MeasureOne(tabbed, 0), MeasureOne(tabbed, 1));
    }
    DrawMode mode(CNewMenu::STYLE_ORIGINAL);
    EXPECT_NE(MeasureOne(tabbed, 0).cx, MeasureOne(tabbed, 1).cx);
}

TEST(CNewMenuMeasure, BarItemsAndTitles)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    CNewMenu bar;
    bar.CreateMenu();
    bar.AppendODMenu("&File", MF_STRING, 1);
    bar.AppendODMenu("File", MF_STRING, 2);
    bar.SetPopup(FALSE);
    ASSERT_TRUE(CNewMenu::IsMenuBar(bar.m_hMenu));
    CNewMenu popup;
    popup.CreatePopupMenu();
    popup.AppendODMenu("File", MF_STRING, 2);
    // On a bar the text alone; with "&" 6 less (XP). In a popup the columns.
    const CSize plain = MeasureOne(bar, 1);
    EXPECT_EQ(MeasureOne(popup, 0).cx - plain.cx, GetSystemMetrics(SM_CYMENU) / 2 + 16 + 6);
    popup.AppendODMenu("&File", MF_STRING, 1);
    EXPECT_EQ(MeasureOne(popup, 1).cx - MeasureOne(bar, 0).cx, GetSystemMetrics(SM_CYMENU) / 2 + 16 + 6 + 6);
    popup.DeleteMenu(1, MF_BYPOSITION);
    // Titles: across as high as the text (plus 8 with lines); along the side of no height.
    popup.SetMenuTitle("Title", MFT_GRADIENT);
    const CSize across = MeasureOne(popup, 0);
    popup.SetMenuTitle("Title", MFT_LINE);
    EXPECT_EQ(MeasureOne(popup, 0).cy, across.cy + 8);
    popup.SetMenuTitle("Title", MFT_SIDE_TITLE);
    const CSize side = MeasureOne(popup, 0);
    EXPECT_EQ(side.cy, 0);
    EXPECT_EQ(side.cx, std::max(0, across.cy - GetSystemMetrics(SM_CXMENUCHECK)));
}

TEST(CNewMenuMeasure, AFramesBarMeasuresItsEntriesAsABarsAndItsDropDownsAsPopups)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    HMENU plainBar = CreateMenu();
    HMENU edit = CreatePopupMenu();
    AppendMenuA(edit, MF_STRING, 7, "&Edit");
    AppendMenuA(plainBar, MF_POPUP, reinterpret_cast<UINT_PTR>(edit), "&Edit");
    AppendMenuA(plainBar, MF_STRING, 8, "&Edit");
    CNewMenu bar;
    ASSERT_TRUE(bar.LoadMenu(plainBar));
    CWnd frame;
    ASSERT_TRUE(frame.CreateEx("frame", "Frame", WS_POPUP, CRect(0, 0, 300, 200)));
    ::SetMenu(frame.m_hWnd, bar.m_hMenu);
    // As the window's menu measures them: by the sub-menu's handle, or by id and data.
    auto measure = [&](HMENU holder, int position) {
        MENUITEMINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_DATA | MIIM_SUBMENU;
        GetMenuItemInfoA(holder, static_cast<UINT>(position), TRUE, &info);
        MEASUREITEMSTRUCT mis{};
        mis.CtlType = ODT_MENU;
        mis.itemID = info.hSubMenu ? static_cast<UINT>(reinterpret_cast<std::uintptr_t>(info.hSubMenu)) : info.wID;
        mis.itemData = info.dwItemData;
        MSG msg{frame.m_hWnd, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&mis), 0, {}};
        EXPECT_TRUE(CNewMenu::OnMeasureItem(&msg));
        return static_cast<int>(mis.itemWidth);
    };
    const int entry = measure(bar.m_hMenu, 0); // "&Edit" on the bar
    const int command = measure(bar.m_hMenu, 1); // "&Edit", a command on the bar
    const int dropDown = measure(GetSubMenu(bar.m_hMenu, 0), 0); // "&Edit" in the drop-down
    EXPECT_EQ(entry, command) << "both as a bar's";
    EXPECT_EQ(dropDown - entry, GetSystemMetrics(SM_CYMENU) / 2 + 16 + 6 + 6) << "the popup's columns";
    ::SetMenu(frame.m_hWnd, nullptr);
    frame.DestroyWindow();
}

TEST(CNewMenuDraw, XpFillsColumnTextAreaAndSelection)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    Fixture f;
    const CSize size(120, 22);
    QImage plain = DrawOne(f.menu, 0, 0, size);
    // The icon column is icon width + 8 wide, the rest the text area.
    EXPECT_RECT_COLOR(plain, (RECT{0, 0, 24, 22}), kXpColumn);
    EXPECT_PIXEL(plain, 24, 0, kXpBack);
    EXPECT_PIXEL(plain, 119, 21, kXpBack);
    // Selected: filled with the selection and framed in the highlight.
    QImage selected = DrawOne(f.menu, 0, ODS_SELECTED, size);
    EXPECT_PIXEL(selected, 0, 0, kHighlight);
    EXPECT_PIXEL(selected, 119, 21, kHighlight);
    EXPECT_PIXEL(selected, 2, 2, kXpSelection);
    EXPECT_PIXEL(selected, 110, 10, kXpSelection);
    // A separator: a grey line at the middle row from the text's start.
    QImage separator = DrawOne(f.menu, 1, 0, CSize(120, 3));
    EXPECT_PIXEL(separator, 28, 1, GetSysColor(COLOR_GRAYTEXT));
    EXPECT_PIXEL(separator, 119, 1, GetSysColor(COLOR_GRAYTEXT));
    EXPECT_PIXEL(separator, 27, 1, kXpBack);
    EXPECT_PIXEL(separator, 10, 1, kXpColumn);
    // A check mark without an image: a framed box in the column.
    QImage checked = DrawOne(f.menu, 2, ODS_CHECKED, size);
    EXPECT_PIXEL(checked, 1, 1, kHighlight);         // the box's frame
    EXPECT_PIXEL(checked, 2, 2, RGB(188, 190, 194)); // MixColor(column, highlight)
    EXPECT_PIXEL(checked, 0, 0, kXpColumn);
    EXPECT_GT(vxtest::CountColor(checked, RECT{2, 2, 21, 20}, GetSysColor(COLOR_MENUTEXT)), 5); // the mark
}

TEST(CNewMenuDraw, Office2003TakesItsFixedColours)
{
    DrawMode mode(CNewMenu::STYLE_XP_2003);
    Fixture f;
    const CSize size(120, 22);
    QImage selected = DrawOne(f.menu, 0, ODS_SELECTED, size);
    EXPECT_PIXEL(selected, 5, 5, RGB(0xFF, 0xEE, 0xC2));
    EXPECT_PIXEL(selected, 0, 0, kHighlight);
    // The column runs from the text area's colour to the bar colour of 2003.
    QImage plain = DrawOne(f.menu, 0, 0, size);
    EXPECT_PIXEL(plain, 0, 5, RGB(241, 240, 239)); // MixColor(245 grey, menu)
    EXPECT_PIXEL(plain, 60, 5, RGB(241, 240, 239));
    const COLORREF end = vxtest::ColorAt(plain, 23, 5);
    EXPECT_NEAR(GetBValue(end), 204, 3);
    EXPECT_NEAR(GetRValue(end), 175, 8);
    QImage checked = DrawOne(f.menu, 2, ODS_CHECKED, size);
    EXPECT_PIXEL(checked, 2, 2, RGB(0xFF, 0xC0, 0x6F));
    QImage both = DrawOne(f.menu, 2, ODS_CHECKED | ODS_SELECTED, size);
    EXPECT_PIXEL(both, 2, 2, RGB(0xFE, 0x80, 0x3E));
}

TEST(CNewMenuDraw, ClassicAndIcySelection)
{
    Fixture f;
    const CSize size(120, 22);
    {
        DrawMode mode(CNewMenu::STYLE_ORIGINAL);
        QImage plain = DrawOne(f.menu, 0, 0, size);
        EXPECT_PIXEL(plain, 0, 0, kMenu);
        EXPECT_PIXEL(plain, 119, 21, kMenu);
        // Without an image the whole item is selected.
        QImage selected = DrawOne(f.menu, 0, ODS_SELECTED, size);
        EXPECT_PIXEL(selected, 0, 0, kHighlight);
        // Checked: the selection leaves the image's place (icon width + 6).
        QImage checked = DrawOne(f.menu, 2, ODS_CHECKED | ODS_SELECTED, size);
        EXPECT_PIXEL(checked, 21, 0, kMenu);
        EXPECT_PIXEL(checked, 22, 11, kHighlight);
        // Grayed text has relief: white one pixel right and down of the grey.
        QImage grayed = DrawOne(f.menu, 0, ODS_GRAYED, size);
        EXPECT_GT(vxtest::CountColor(grayed, RECT{28, 0, 120, 22}, GetSysColor(COLOR_GRAYTEXT)), 5);
        EXPECT_GT(vxtest::CountColor(grayed, RECT{28, 0, 120, 22}, RGB(255, 255, 255)), 5);
    }
    {
        DrawMode mode(CNewMenu::STYLE_ICY);
        // A vertical gradient on the menu colour, lightened and darkened by 30.
        QImage plain = DrawOne(f.menu, 0, 0, size);
        EXPECT_PIXEL(plain, 5, 0, RGB(217, 214, 206));
        EXPECT_LT(GetRValue(vxtest::ColorAt(plain, 5, 21)), 212);
        // Selection: a highlight gradient framed dark (top, left) and light.
        QImage selected = DrawOne(f.menu, 0, ODS_SELECTED, size);
        EXPECT_PIXEL(selected, 0, 0, DarkenColor(60, kMenu));
        EXPECT_PIXEL(selected, 119, 21, LightenColor(60, kMenu));
        EXPECT_NEAR(GetBValue(vxtest::ColorAt(selected, 5, 1)), GetBValue(LightenColor(30, kHighlight)), 3);
        EXPECT_NEAR(GetBValue(vxtest::ColorAt(selected, 5, 20)), GetBValue(DarkenColor(30, kHighlight)), 3);
        // Grayed text: one colour, no relief.
        QImage grayed = DrawOne(f.menu, 0, ODS_GRAYED, size);
        EXPECT_EQ(vxtest::CountColor(grayed, RECT{28, 0, 120, 22}, RGB(255, 255, 255)), 0);
    }
}

QImage Solid(int w, int h, COLORREF c)
{
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(QColor(GetRValue(c), GetGValue(c), GetBValue(c)));
    return image;
}

TEST(CNewMenuDraw, IconsRaisedShadowedAndGloomed)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    vx::SetResourceImage(IMAGE_BITMAP, 0x7E30, Solid(16, 15, RGB(200, 100, 10)));
    CNewMenu menu;
    menu.CreatePopupMenu();
    menu.AppendODMenu("Print", MF_STRING, 0x7E30, 0x7E30); // the icon by its resource id
    ASSERT_NE(menu.GetItem(0)->m_pMenuIcon, nullptr);
    const CSize size(120, 22);
    // The icon sits at left + 3, centred in the row: (3, 3) to (19, 18).
    QImage normal = DrawOne(menu, 0, 0, size);
    EXPECT_PIXEL(normal, 3, 3, RGB(161, 80, 8)); // the shadow image, with blending
    EXPECT_PIXEL(normal, 18, 17, RGB(161, 80, 8));
    EXPECT_PIXEL(normal, 2, 3, kXpColumn);
    QImage grayed = DrawOne(menu, 0, ODS_GRAYED, size);
    EXPECT_PIXEL(grayed, 10, 10, RGB(170, 169, 168)); // the gloom image
    // Selected: the shape one right and down in the tinted selection, the
    // icon itself one left and up.
    QImage selected = DrawOne(menu, 0, ODS_SELECTED, size);
    EXPECT_PIXEL(selected, 2, 2, RGB(200, 100, 10));
    EXPECT_PIXEL(selected, 18, 17, TintColor(kXpSelection));
    CNewMenu::SetXpBlendig(FALSE);
    QImage plainIcon = DrawOne(menu, 0, 0, size);
    QImage plainGray = DrawOne(menu, 0, ODS_GRAYED, size);
    CNewMenu::SetXpBlendig(TRUE);
    EXPECT_PIXEL(plainIcon, 3, 3, RGB(200, 100, 10));
    EXPECT_PIXEL(plainGray, 10, 10, DarkenColor(70, kXpColumn));
}

TEST(CNewMenuDraw, TitleGradientAndSystemGlyphs)
{
    DrawMode mode(CNewMenu::STYLE_XP);
    Fixture f;
    f.menu.SetMenuTitle("Title", MFT_GRADIENT);
    // From the active caption to the mix of window and menu colour.
    QImage title = DrawOne(f.menu, 0, 0, CSize(100, 20));
    EXPECT_PIXEL(title, 0, 19, RGB(10, 36, 106));
    const COLORREF end = vxtest::ColorAt(title, 99, 19);
    EXPECT_NEAR(GetRValue(end), 249, 4);
    EXPECT_NEAR(GetBValue(end), 247, 4);
    // The caption's text in COLOR_CAPTIONTEXT.
    EXPECT_GT(vxtest::CountColor(title, RECT{0, 0, 50, 20}, GetSysColor(COLOR_CAPTIONTEXT)), 5);
    // Close's glyph in the column, in the menu text colour.
    QImage close = DrawOne(f.menu, 4, 0, CSize(100, 19));
    EXPECT_GT(vxtest::CountColor(close, RECT{0, 0, 24, 19}, GetSysColor(COLOR_MENUTEXT)), 5);
    QImage closeGray = DrawOne(f.menu, 4, ODS_GRAYED, CSize(100, 19));
    EXPECT_EQ(vxtest::CountColor(closeGray, RECT{0, 0, 24, 19}, GetSysColor(COLOR_MENUTEXT)), 0);
    EXPECT_GT(vxtest::CountColor(closeGray, RECT{0, 0, 24, 19}, GetSysColor(COLOR_GRAYTEXT)), 5);
}

} // namespace
