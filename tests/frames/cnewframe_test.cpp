// The library's frames: the system menu in a CNewMenu, the library's dock
// bars and mini frames, the menu bar's colour after a colour change, and a
// menu bar hidden and shown again.
#include "uisupport/uitest.h"

#include "frames/cnewframe.h"
#include "frames/cnewtoolbar.h"
#include "platform/windows/sysmetrics.h"
#include "ui/menus/winmenu.h"

namespace {

HBRUSH BackOf(HMENU menu)
{
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    return GetMenuInfo(menu, &info) ? info.hbrBack : nullptr;
}

} // namespace

TEST(NewFrame, HoldsItsSystemMenuAndDocksOnTheLibrarysBars)
{
    CNewFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 400, 300)));
    ASSERT_NE(frame.m_SystemNewMenu.m_hMenu, nullptr);
    EXPECT_EQ(frame.m_SystemNewMenu.m_hMenu, GetSystemMenu(frame.m_hWnd, FALSE));

    frame.EnableDocking(CBRS_ALIGN_TOP | CBRS_ALIGN_LEFT);
    ASSERT_EQ(frame.m_newDockBars.size(), 2u) << "only the sides asked for";
    EXPECT_EQ(frame.m_newDockBars[0]->GetDlgCtrlID(), static_cast<int>(AFX_IDW_DOCKBAR_TOP));
    EXPECT_EQ(frame.m_newDockBars[1]->GetDlgCtrlID(), static_cast<int>(AFX_IDW_DOCKBAR_LEFT));
    EXPECT_EQ(frame.m_dwDockStyle, CBRS_ALIGN_TOP | CBRS_ALIGN_LEFT);
    frame.EnableDocking(CBRS_ALIGN_ANY);
    EXPECT_EQ(frame.m_newDockBars.size(), 4u) << "the sides already there stay";
    EXPECT_NE(dynamic_cast<CNewDockBar*>(frame.GetDlgItem(AFX_IDW_DOCKBAR_RIGHT)), nullptr);

    CNewToolBar bar;
    ASSERT_TRUE(bar.CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER));
    const UINT commands[] = {501, 502};
    bar.SetButtons(commands, 2);
    bar.EnableDocking(CBRS_ALIGN_ANY);
    frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    EXPECT_EQ(bar.GetParent(), frame.GetDlgItem(AFX_IDW_DOCKBAR_LEFT));
    frame.FloatControlBar(&bar, CPoint(50, 50));
    ASSERT_TRUE(bar.IsFloating());
    CWnd* mini = bar.GetParent() ? bar.GetParent()->GetParent() : nullptr;
    EXPECT_NE(dynamic_cast<CNewMiniDockFrameWnd*>(mini), nullptr) << "floats in the library's mini frame";
    frame.DestroyWindow();
}

TEST(NewFrame, AColourChangeRecoloursTheMenuBar)
{
    const UINT saved = CNewMenu::GetMenuDrawMode();
    CNewFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300)));
    HMENU menu = CreateMenu();
    AppendMenuA(menu, MF_STRING, 1, "&Plik");
    ASSERT_TRUE(::SetMenu(frame.m_hWnd, menu));
    CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_ORIGINAL);
    frame.SendMessage(WM_SYSCOLORCHANGE);
    EXPECT_EQ(BackOf(menu), nullptr);
    CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP);
    frame.SendMessage(WM_SYSCOLORCHANGE);
    EXPECT_NE(BackOf(menu), nullptr);
    EXPECT_EQ(CNewMenu::GetMenuColor(menu), GetSysColor(COLOR_BTNFACE));
    // Off the menu bar no entry is hot and no timer runs.
    frame.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(10, 10));
    EXPECT_EQ(frame.m_TimerID, 0u);
    EXPECT_EQ(frame.m_menubarItemIndex, -1);
    CNewMenu::SetMenuDrawMode(saved);
    ::SetMenu(frame.m_hWnd, nullptr);
    DestroyMenu(menu);
}

TEST(NewFrame, MdiFrameHidesItsMenuAndShowsItAgain)
{
    CNewMDIFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300)));
    EXPECT_FALSE(frame.ShowMenu(FALSE)) << "no menu to hide";
    EXPECT_TRUE(frame.ShowMenu(TRUE)) << "nothing kept to show";
    HMENU menu = CreateMenu();
    AppendMenuA(menu, MF_STRING, 1, "&Plik");
    ::SetMenu(frame.m_hWnd, menu);
    EXPECT_TRUE(frame.ShowMenu(FALSE));
    EXPECT_EQ(::GetMenu(frame.m_hWnd), nullptr);
    EXPECT_FALSE(frame.ShowMenu(TRUE));
    EXPECT_EQ(::GetMenu(frame.m_hWnd), menu);
    EXPECT_TRUE(frame.ShowMenu(TRUE)) << "shown already";
    ::SetMenu(frame.m_hWnd, nullptr);
    DestroyMenu(menu);
}

TEST(NewFrame, MdiChildHoldsItsOwnSystemMenu)
{
    CNewMDIFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 400, 300)));
    ASSERT_TRUE(frame.CreateClient());
    CNewMDIChildWnd child;
    child.m_bAutoDelete = false;
    ASSERT_TRUE(child.Create(nullptr, "Rysunek 1", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &frame));
    EXPECT_EQ(frame.MDIGetActive(), &child);
    ASSERT_NE(child.m_SystemNewMenu.m_hMenu, nullptr);
    EXPECT_EQ(child.m_SystemNewMenu.m_hMenu, GetSystemMenu(child.m_hWnd, FALSE));
    EXPECT_NE(child.m_SystemNewMenu.m_hMenu, frame.m_SystemNewMenu.m_hMenu);
    child.DestroyWindow();
    EXPECT_EQ(child.m_SystemNewMenu.m_hMenu, nullptr) << "let go with the window";
    frame.DestroyWindow();
}

TEST(NewFrame, TheLineUnderTheMenuBarTakesTheBarsBrush)
{
    HBRUSH green = CreateSolidBrush(RGB(0, 160, 0));
    auto withBrush = [&] {
        HMENU menu = CreateMenu();
        AppendMenuA(menu, MF_STRING, 1, "&Plik");
        MENUINFO info{};
        info.cbSize = sizeof info;
        info.fMask = MIM_BACKGROUND;
        info.hbrBack = green;
        SetMenuInfo(menu, &info);
        return menu;
    };
    auto lineOf = [](CFrameWnd& frame) {
        CRect window, client;
        frame.GetWindowRect(&window);
        frame.GetClientRect(&client);
        frame.ClientToScreen(&client);
        return CRect(client.left - window.left, client.top - window.top - 1, client.right - window.left,
                     client.top - window.top);
    };
    CNewFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 400, 300)));
    HMENU menu = withBrush();
    ASSERT_TRUE(::SetMenu(frame.m_hWnd, menu));
    const CRect line = lineOf(frame);
    ASSERT_GT(line.top, 0);
    const QImage shot = vxtest::Render(frame);
    EXPECT_RECT_COLOR(shot, line, RGB(0, 160, 0));
    EXPECT_PIXEL(shot, line.right - 1, line.top - 2, RGB(0, 160, 0)) << "the bar above it";

    // The framework's frame leaves the platform's line.
    CFrameWnd plain;
    ASSERT_TRUE(plain.CreateEx("Plain", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 400, 300)));
    HMENU other = withBrush();
    ::SetMenu(plain.m_hWnd, other);
    EXPECT_RECT_COLOR(vxtest::Render(plain), lineOf(plain), GetSysColor(COLOR_3DFACE));

    ::SetMenu(frame.m_hWnd, nullptr);
    ::SetMenu(plain.m_hWnd, nullptr);
    plain.DestroyWindow();
    frame.DestroyWindow();
    DestroyMenu(menu);
    DestroyMenu(other);
    DeleteObject(green);
}
