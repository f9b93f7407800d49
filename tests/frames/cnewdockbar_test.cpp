// The library's dock bar continues the frame menu's background brush, and
// is a plain side without one.
#include "uisupport/uitest.h"

#include "frames/cnewdockbar.h"
#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/menus/winmenu.h"

TEST(NewDockBar, ErasesWithTheFrameMenusBrush)
{
    CFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 300, 200)));
    CNewDockBar dock;
    ASSERT_TRUE(dock.Create(&frame, CBRS_TOP, AFX_IDW_DOCKBAR_TOP));
    dock.m_pDockSite = &frame;
    dock.MoveWindow(0, 0, 300, 24);
    QImage plain = vxtest::Render(dock);
    EXPECT_PIXEL(plain, 10, 10, GetSysColor(COLOR_BTNFACE)) << "no menu: the plain side";

    HMENU menu = CreateMenu();
    AppendMenuA(menu, MF_STRING, 1, "&Plik");
    CBrush brush(RGB(200, 40, 40));
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    info.hbrBack = brush;
    ASSERT_TRUE(SetMenuInfo(menu, &info));
    ASSERT_TRUE(::SetMenu(frame.m_hWnd, menu));
    // The menu bar changed the frame, whose layout placed the (empty) side again.
    dock.MoveWindow(0, 0, 300, 24);
    const QImage shot = vxtest::Render(dock);
    EXPECT_PIXEL(shot, 10, 10, RGB(200, 40, 40));
    EXPECT_PIXEL(shot, 299, 23, RGB(200, 40, 40)) << "no border of its own";
    ::SetMenu(frame.m_hWnd, nullptr);
    DestroyMenu(menu);
}
