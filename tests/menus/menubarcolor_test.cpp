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

TEST_F(MenuBarColorTest, AnEntryOfAWindowsBarIsDrawnByTheWindowInPlace)
{
    // A window that records each WM_DRAWITEM of its bar.
    class Window : public CWnd {
    public:
        std::vector<DRAWITEMSTRUCT> drawn;

    protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
        {
            if (message == WM_DRAWITEM) {
                drawn.push_back(*reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
                return TRUE;
            }
            if (message == WM_MEASUREITEM) {
                auto* mis = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
                mis->itemWidth = 50;
                mis->itemHeight = 18;
                return TRUE;
            }
            return CWnd::WindowProc(message, wParam, lParam);
        }
    } window;
    ASSERT_TRUE(window.CreateEx("W", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 300, 100)));
    HMENU bar = CreateMenu();
    AppendMenuA(bar, MF_STRING, 1, "&Plik");
    AppendMenuA(bar, MF_OWNERDRAW, 2, reinterpret_cast<LPCSTR>(0x4242));
    ::SetMenu(window.m_hWnd, bar);
    window.drawn.clear();
    CNewMenu::m_dwLastActiveItem = 0;
    EXPECT_TRUE(DrawMenubarItem(&window, CMenu::FromHandle(bar), 1, ODS_HOTLIGHT));
    ASSERT_EQ(window.drawn.size(), 1u);
    const DRAWITEMSTRUCT& d = window.drawn.front();
    EXPECT_EQ(d.CtlType, static_cast<UINT>(ODT_MENU));
    EXPECT_EQ(d.itemID, 2u);
    EXPECT_EQ(d.itemState, static_cast<UINT>(ODS_HOTLIGHT));
    EXPECT_EQ(d.hwndItem, reinterpret_cast<HWND>(bar));
    // In window coordinates, just after the text entry, in the bar's row.
    RECT r{};
    ASSERT_TRUE(GetMenuItemRect(window.m_hWnd, bar, 1, &r));
    CRect outer;
    window.GetWindowRect(&outer);
    EXPECT_EQ(CRect(d.rcItem), CRect(r) - outer.TopLeft());
    EXPECT_EQ(d.rcItem.top, 0);
    EXPECT_EQ(d.rcItem.right - d.rcItem.left, 50 + 12) << "with the bar's spacing";
    EXPECT_EQ(CNewMenu::m_dwLastActiveItem, 0x4242u);
    EXPECT_FALSE(DrawMenubarItem(&window, CMenu::FromHandle(bar), 0, 0)) << "a text entry is not the window's to draw";
    ::SetMenu(window.m_hWnd, nullptr);
    DestroyMenu(bar);
    window.DestroyWindow();
}
