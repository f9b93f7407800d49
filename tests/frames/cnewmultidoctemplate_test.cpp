// CNewMultiDocTemplate: the shared menu becomes the template's CNewMenu, the
// host's shared images reach its commands once, with the first child frame,
// and the frame then shows that menu.
#include "uisupport/uitest.h"

#include "frames/cnewframe.h"
#include "frames/cnewmultidoctemplate.h"
#include "menus/menubarcolor.h"
#include "platform/shell/resources.h"
#include "ui/images/cbitmap.h"
#include "ui/mdi/cmdiclientwnd.h"
#include "ui/menus/winmenu.h"

namespace {

constexpr UINT kIdDrawing = 7301;
constexpr UINT kCmdLine = 7310;
constexpr UINT kCmdText = 7311;

struct DrawingResources {
    DrawingResources()
    {
        vx::SetString(kIdDrawing, "\nRysunek\nRysunki");
        vx::SetMenuTemplate(MAKEINTRESOURCE(kIdDrawing),
                            {{MF_POPUP, 0, "&Rysuj", {{MF_STRING, kCmdLine, "&Linia", {}}, {MF_STRING, kCmdText, "&Tekst", {}}}},
                             {MF_POPUP, 0, "&Okno", {{MF_STRING, ID_WINDOW_CASCADE, "&Kaskada", {}}}}});
    }
    ~DrawingResources()
    {
        vx::ResetStrings();
        vx::SetMenuTemplate(MAKEINTRESOURCE(kIdDrawing), {});
        g_arBm.RemoveAll();
        g_arIDs.RemoveAll();
    }
};

} // namespace

TEST(NewMultiDocTemplate, OwnsItsSharedMenuAndGivesTheSharedImagesWithTheFirstFrame)
{
    DrawingResources res;
    CBitmap line;
    ASSERT_TRUE(line.CreateBitmap(16, 15, 1, 32, nullptr));
    g_arBm.Add(&line);
    g_arIDs.Add(kCmdLine);

    CNewMDIFrameWnd frame;
    ASSERT_TRUE(frame.CreateEx("Plan", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(50, 50, 650, 450)));
    ASSERT_TRUE(frame.CreateClient());
    AfxSetMainWnd(&frame);
    {
        CNewMultiDocTemplate drawings(kIdDrawing, [] { return new CNewMDIChildWnd; });
        ASSERT_NE(drawings.m_hMenuShared, nullptr);
        EXPECT_EQ(drawings.m_hMenu, drawings.m_hMenuShared) << "the shared menu is the template's CNewMenu";
        ASSERT_NE(drawings.FindMenuItem(kCmdLine), nullptr);
        EXPECT_EQ(drawings.FindMenuItem(kCmdLine)->m_pMenuIcon, nullptr) << "no image before the first frame";

        CFrameWnd* child = drawings.CreateNewFrame(nullptr, nullptr);
        ASSERT_NE(child, nullptr);
        EXPECT_NE(drawings.FindMenuItem(kCmdLine)->m_pMenuIcon, nullptr);
        EXPECT_GE(drawings.FindMenuItem(kCmdLine)->m_nMenuIconOffset, 0);
        EXPECT_EQ(drawings.FindMenuItem(kCmdText)->m_pMenuIcon, nullptr) << "only the listed command";
        drawings.InitialUpdateFrame(child, nullptr);
        EXPECT_EQ(::GetMenu(frame.m_hWnd), drawings.m_hMenuShared);

        // Later frames leave the images as they are: a changed list is not read.
        g_arBm.RemoveAll();
        g_arIDs.RemoveAll();
        CFrameWnd* second = drawings.CreateNewFrame(nullptr, nullptr);
        ASSERT_NE(second, nullptr);
        EXPECT_NE(drawings.FindMenuItem(kCmdLine)->m_pMenuIcon, nullptr);
        frame.DestroyWindow();
    }
    AfxSetMainWnd(nullptr);
}

TEST(NewMultiDocTemplate, WithOwnMenusOffTheSharedMenuStaysPlain)
{
    DrawingResources res;
    const int saved = CNewMenu::m_Enable;
    CNewMenu::m_Enable = 0;
    {
        CNewMultiDocTemplate drawings(kIdDrawing, [] { return new CNewMDIChildWnd; });
        EXPECT_NE(drawings.m_hMenuShared, nullptr);
        EXPECT_EQ(drawings.m_hMenu, nullptr);
    }
    CNewMenu::m_Enable = saved;
}

TEST(NewMultiDocTemplate, TheMenuBarColourReachesTheSharedMenus)
{
    DrawingResources res;
    const UINT saved = CNewMenu::GetMenuDrawMode();
    {
        CNewMultiDocTemplate drawings(kIdDrawing, [] { return new CNewMDIChildWnd; });
        MENUINFO info{};
        info.cbSize = sizeof info;
        info.fMask = MIM_BACKGROUND;
        CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_ORIGINAL);
        UpdateMenuBarColor(nullptr);
        ASSERT_TRUE(GetMenuInfo(drawings.m_hMenuShared, &info));
        EXPECT_EQ(info.hbrBack, nullptr) << "the classic mode keeps the menu as it is";
        CNewMenu::SetMenuDrawMode(CNewMenu::STYLE_XP_2003);
        UpdateMenuBarColor(nullptr);
        ASSERT_TRUE(GetMenuInfo(drawings.m_hMenuShared, &info));
        EXPECT_NE(info.hbrBack, nullptr);
    }
    CNewMenu::SetMenuDrawMode(saved);
}

TEST(NewMultiDocTemplate, ANewFrameLoadsItsMenuIntoItsCNewMenuOrIsNotMade)
{
    DrawingResources res;
    CNewFrameWnd frame;
    ASSERT_TRUE(frame.LoadFrame(kIdDrawing));
    EXPECT_NE(frame.m_DefaultNewMenu.m_hMenu, nullptr);
    EXPECT_EQ(::GetMenu(frame.m_hWnd), frame.m_DefaultNewMenu.m_hMenu);
    EXPECT_EQ(frame.m_hMenuDefault, frame.m_DefaultNewMenu.m_hMenu);
    ASSERT_NE(frame.m_DefaultNewMenu.FindMenuItem(kCmdLine), nullptr) << "the items are the CNewMenu's";
    frame.DestroyWindow();

    CNewFrameWnd missing;
    EXPECT_FALSE(missing.LoadFrame(kIdDrawing + 40));
    EXPECT_EQ(missing.m_hWnd, nullptr);
}
