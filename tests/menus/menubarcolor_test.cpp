// A frame menu's bar background per draw mode, made once per colour, and the
// repaint of an entry that does not show.
#include "uisupport/uitest.h"

#include "menus/cnewmenu.h"
#include "menus/menubarcolor.h"
#include "menus/menucolors.h"
#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/menus/winmenu.h"

namespace {

HBRUSH BackOf(HMENU menu)
{
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    return GetMenuInfo(menu, &info) ? info.hbrBack : nullptr;
}

class MenuBarColorTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedMode = CNewMenu::GetMenuDrawMode();
        savedColor = CNewMenu::m_InitColor;
        menu = CreateMenu();
        AppendMenuA(menu, MF_STRING, 1, "&Plik");
    }
    void TearDown() override
    {
        DestroyMenu(menu);
        CNewMenu::SetMenuDrawMode(savedMode);
        CNewMenu::m_InitColor = savedColor;
    }
    HMENU menu = nullptr;
    UINT savedMode = 0;
    COLORREF savedColor = 0;
};

} // namespace

TEST_F(MenuBarColorTest, OnlyTheXpAndOfficeModesGiveTheBarABackground)
{
    for (UINT mode : {0u, 1u, 4u, 5u, 6u, 7u}) {
        CNewMenu::SetMenuDrawMode(mode);
        UpdateMenuBarColor(menu);
        EXPECT_EQ(BackOf(menu), nullptr) << mode;
    }
    CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP);
    UpdateMenuBarColor(menu);
    ASSERT_NE(BackOf(menu), nullptr);
    EXPECT_EQ(CNewMenu::GetMenuColor(menu), GetSysColor(COLOR_BTNFACE));
    UpdateMenuBarColor(nullptr); // nothing to colour, nothing happens
}

TEST_F(MenuBarColorTest, OfficeBarIsAGradientMadeOncePerColour)
{
    CNewMenu::m_InitColor = 0xF5C2A3;
    CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP_2003);
    UpdateMenuBarColor(menu);
    const HBRUSH brush = BackOf(menu);
    ASSERT_NE(brush, nullptr);
    vxtest::Canvas canvas(GetSystemMetrics(SM_CXSCREEN), 4);
    CRect all(0, 0, GetSystemMetrics(SM_CXSCREEN), 4);
    FillRect(canvas.hdc(), &all, brush);
    const QImage shot = canvas.Image();
    EXPECT_PIXEL(shot, 0, 1, 0xF5C2A3) << "the bar colour at the left";
    const COLORREF right = vxtest::ColorAt(shot, all.right - 1, 1);
    EXPECT_GT(GetRValue(right) + GetGValue(right), GetRValue(0xF5C2A3) + GetGValue(0xF5C2A3)) << "lighter to the right";

    HMENU other = CreateMenu();
    UpdateMenuBarColor(other);
    EXPECT_EQ(BackOf(other), brush) << "one brush per colour";
    CNewMenu::m_InitColor = 0xC0C0C0;
    UpdateMenuBarColor(other);
    EXPECT_NE(BackOf(other), brush);
    DestroyMenu(other);
}

TEST_F(MenuBarColorTest, AnEntryThatDoesNotShowIsNotDrawn)
{
    CWnd window;
    ASSERT_TRUE(window.CreateEx("W", "VxFrame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 200, 100)));
    CMenu* bar = CMenu::FromHandle(menu);
    EXPECT_FALSE(DrawMenubarItem(&window, bar, static_cast<UINT>(-1), 0));
    EXPECT_FALSE(DrawMenubarItem(&window, bar, 0, ODS_SELECTED)) << "the menu is no window's bar";
    EXPECT_FALSE(DrawMenubarItem(nullptr, bar, 0, 0));
    window.DestroyWindow();
}
