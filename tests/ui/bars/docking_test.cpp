// Docking: tool bars at each side of a frame with the pane in what is left,
// two bars in a row, drags with the mouse that dock at a side, float in a
// mini frame and dock back, double clicks that toggle, and the bars' places
// saved through the profile and restored in a new frame.
#include "uisupport/uitest.h"

#include "config/kprofile.h"
#include "base/vxglobals.h"
#include "support/tempdir.h"
#include "ui/bars/cdockbar.h"
#include "ui/bars/cminidockframewnd.h"
#include "ui/bars/ctoolbar.h"

#include <cstring>
#include <memory>

namespace {

const UINT kCommands[] = {201, 202, ID_SEPARATOR, 203};

struct Bars {
    CFrameWnd frame;
    CWnd pane;
    CToolBar one;
    CToolBar two;
    CToolBar three;

    void Make()
    {
        ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(100, 100, 700, 500)));
        ASSERT_TRUE(pane.CreateEx("", "VxPane", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), &frame,
                                  AFX_IDW_PANE_FIRST));
        UINT id = AFX_IDW_TOOLBAR;
        for (CToolBar* bar : {&one, &two, &three}) {
            ASSERT_TRUE(bar->CreateEx(&frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_TOP | CBRS_GRIPPER,
                                      CRect(2, 2, 2, 2), id++));
            bar->SetButtons(kCommands, 4);
            bar->EnableDocking(CBRS_ALIGN_ANY);
        }
        frame.EnableDocking(CBRS_ALIGN_ANY);
    }
};

UINT SideOf(const CControlBar& bar)
{
    CWnd* parent = bar.GetParent();
    return parent ? parent->GetDlgCtrlID() : 0;
}

CRect ScreenRect(const CWnd& w)
{
    CRect r;
    w.GetWindowRect(&r);
    return r;
}

// Presses the bar's gripper and lets go at a screen point, as a person drags.
void DragGripper(CToolBar& bar, CPoint screen, UINT keys = 0)
{
    vxtest::Mouse(bar, WM_LBUTTONDOWN, -4, 6, MK_LBUTTON);
    ASSERT_EQ(CWnd::GetCapture(), &bar) << "the drag takes the mouse";
    CPoint p = screen;
    bar.ScreenToClient(&p);
    vxtest::Mouse(bar, WM_MOUSEMOVE, p.x, p.y, MK_LBUTTON | keys);
    vxtest::Mouse(bar, WM_LBUTTONUP, p.x, p.y, keys);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

CMiniDockFrameWnd* MiniFrameOf(const CControlBar& bar)
{
    return bar.m_pDockBar ? dynamic_cast<CMiniDockFrameWnd*>(bar.m_pDockBar->GetParent()) : nullptr;
}

} // namespace

TEST(Docking, BarsDockAtEachSideAndThePaneTakesTheRest)
{
    Bars b;
    b.Make();
    for (UINT id : {AFX_IDW_DOCKBAR_TOP, AFX_IDW_DOCKBAR_BOTTOM, AFX_IDW_DOCKBAR_LEFT, AFX_IDW_DOCKBAR_RIGHT})
        EXPECT_NE(dynamic_cast<CDockBar*>(b.frame.GetDlgItem(static_cast<int>(id))), nullptr) << id;

    b.frame.DockControlBar(&b.one);
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_TOP) << "the side its style names";
    const CRect bar = ScreenRect(b.one);
    CRect pane = ScreenRect(b.pane);
    EXPECT_EQ(bar.TopLeft(), CPoint(100, 100));
    EXPECT_GT(bar.Width(), bar.Height()) << "one row";
    EXPECT_EQ(pane, CRect(100, bar.bottom, 700, 500));
    // Its buttons in one row after the gripper.
    CRect button;
    b.one.GetItemRect(3, &button);
    EXPECT_EQ(button.top, 0);

    b.frame.DockControlBar(&b.one, AFX_IDW_DOCKBAR_LEFT);
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_LEFT);
    const CRect left = ScreenRect(b.one);
    EXPECT_GT(left.Height(), left.Width()) << "one column";
    pane = ScreenRect(b.pane);
    EXPECT_EQ(pane, CRect(left.right, 100, 700, 500));
    b.one.GetItemRect(3, &button);
    EXPECT_EQ(button.left, 0);
    EXPECT_GT(button.top, 40) << "below the others";

    b.frame.DockControlBar(&b.one, AFX_IDW_DOCKBAR_BOTTOM);
    EXPECT_EQ(ScreenRect(b.one).bottom, 500);
    EXPECT_EQ(ScreenRect(b.pane).bottom, ScreenRect(b.one).top);
    b.frame.DockControlBar(&b.one, AFX_IDW_DOCKBAR_RIGHT);
    EXPECT_EQ(ScreenRect(b.one).right, 700);
    EXPECT_EQ(ScreenRect(b.pane).right, ScreenRect(b.one).left);

    // Hidden, it takes no room.
    b.frame.ShowControlBar(&b.one, FALSE, FALSE);
    EXPECT_EQ(ScreenRect(b.pane), CRect(100, 100, 700, 500));
}

TEST(Docking, TwoBarsShareARowOrTakeOneEach)
{
    Bars b;
    b.Make();
    b.frame.DockControlBar(&b.one);
    CRect place = ScreenRect(b.one);
    place.OffsetRect(place.Width() + 30, 0);
    b.frame.DockControlBar(&b.two, AFX_IDW_DOCKBAR_TOP, &place);
    auto* top = dynamic_cast<CDockBar*>(b.frame.GetDlgItem(AFX_IDW_DOCKBAR_TOP));
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(top->GetRowCount(), 1);
    EXPECT_EQ(top->GetRow(0), (std::vector<CControlBar*>{&b.one, &b.two}));
    EXPECT_EQ(ScreenRect(b.two).left, place.left) << "where it was dropped";
    EXPECT_EQ(ScreenRect(b.two).top, ScreenRect(b.one).top);

    // Dropped onto the first one's place, it goes after it.
    place = ScreenRect(b.one);
    b.frame.DockControlBar(&b.two, AFX_IDW_DOCKBAR_TOP, &place);
    EXPECT_EQ(ScreenRect(b.two).left, ScreenRect(b.one).right);

    // Without a place, a row of its own.
    b.frame.DockControlBar(&b.three, AFX_IDW_DOCKBAR_TOP);
    EXPECT_EQ(top->GetRowCount(), 2);
    EXPECT_EQ(ScreenRect(b.three).top, ScreenRect(b.one).bottom);
    EXPECT_EQ(ScreenRect(b.pane).top, ScreenRect(b.three).bottom);
}

TEST(Docking, DragsDockAtASideFloatAndDockBack)
{
    Bars b;
    b.Make();
    b.frame.DockControlBar(&b.one);

    DragGripper(b.one, CPoint(104, 300));
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_LEFT);
    DragGripper(b.one, CPoint(400, 497));
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_BOTTOM);

    // Into the middle of the frame: it floats in a mini frame there.
    DragGripper(b.one, CPoint(400, 300));
    ASSERT_TRUE(b.one.IsFloating());
    CMiniDockFrameWnd* mini = MiniFrameOf(b.one);
    ASSERT_NE(mini, nullptr);
    EXPECT_TRUE(mini->IsWindowVisible());
    EXPECT_EQ(ScreenRect(b.pane), CRect(100, 100, 700, 500)) << "no bar docked any more";
    const CRect floating = ScreenRect(*mini);
    EXPECT_GT(floating.Width(), floating.Height());
    EXPECT_NEAR(floating.left, 400 - 0, 60);
    // The bar fills the mini frame under its caption.
    EXPECT_EQ(ScreenRect(b.one).top, floating.top + CMiniDockFrameWnd::kBorder + CMiniDockFrameWnd::kCaption);

    // A short drag of the caption is a click: nothing moves.
    const CPoint caption(floating.left + 10, floating.top + 8);
    vxtest::Mouse(*mini, WM_NCLBUTTONDOWN, caption.x, caption.y, HTCAPTION);
    CPoint up = caption + CPoint(2, 1);
    b.one.ScreenToClient(&up);
    vxtest::Mouse(b.one, WM_LBUTTONUP, up.x, up.y);
    EXPECT_EQ(ScreenRect(*mini), floating);

    // The caption dragged to the top docks it back.
    vxtest::Mouse(*mini, WM_NCLBUTTONDOWN, caption.x, caption.y, HTCAPTION);
    up = CPoint(300, 105);
    b.one.ScreenToClient(&up);
    vxtest::Mouse(b.one, WM_LBUTTONUP, up.x, up.y);
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_TOP);
    EXPECT_FALSE(b.one.IsFloating());
    EXPECT_GT(ScreenRect(b.pane).top, 100);

    // Ctrl held floats even over a side.
    DragGripper(b.one, CPoint(110, 300), MK_CONTROL);
    EXPECT_TRUE(b.one.IsFloating());
}

TEST(Docking, DoubleClicksToggleBetweenTheSideAndTheLastFloatingPlace)
{
    Bars b;
    b.Make();
    b.frame.DockControlBar(&b.one, AFX_IDW_DOCKBAR_LEFT);
    b.frame.FloatControlBar(&b.one, CPoint(300, 250));
    ASSERT_TRUE(b.one.IsFloating());
    EXPECT_EQ(ScreenRect(*MiniFrameOf(b.one)).TopLeft(), CPoint(300, 250));

    CMiniDockFrameWnd* mini = MiniFrameOf(b.one);
    vxtest::Mouse(*mini, WM_NCLBUTTONDBLCLK, 310, 255, HTCAPTION);
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_LEFT) << "back where it was docked";

    vxtest::Mouse(b.one, WM_LBUTTONDBLCLK, 6, -4);
    ASSERT_TRUE(b.one.IsFloating());
    EXPECT_EQ(ScreenRect(*MiniFrameOf(b.one)).TopLeft(), CPoint(300, 250));

    // The close box hides the bar; showing it brings the mini frame back.
    mini = MiniFrameOf(b.one);
    const CRect r = ScreenRect(*mini);
    vxtest::Mouse(*mini, WM_NCLBUTTONDOWN, r.right - 6, r.top + 8, HTCLOSE);
    EXPECT_FALSE(b.one.IsWindowVisible());
    EXPECT_FALSE(mini->IsWindowVisible());
    b.frame.ShowControlBar(&b.one, TRUE, FALSE);
    EXPECT_TRUE(mini->IsWindowVisible());
}

TEST(Docking, BarStateIsSavedAndRestoredInANewFrame)
{
    vxtest::TempDir dir;
    const MainframeType type = g_MainframeType;
    g_MainframeType = MainframeAT;
    std::strcpy(g_profiledirAT, dir.Path("VXWIN55AT.INI").c_str());
    {
        Bars b;
        b.Make();
        b.frame.DockControlBar(&b.one, AFX_IDW_DOCKBAR_LEFT);
        b.frame.DockControlBar(&b.three, AFX_IDW_DOCKBAR_BOTTOM);
        CRect place = ScreenRect(b.three);
        place.OffsetRect(place.Width() + 40, 0);
        b.frame.DockControlBar(&b.one, AFX_IDW_DOCKBAR_BOTTOM, &place);
        b.frame.DockControlBar(&b.two);
        b.frame.FloatControlBar(&b.two, CPoint(320, 260));
        b.frame.ShowControlBar(&b.three, FALSE, FALSE);
        b.frame.SaveBarState("Bars");
    }
    EXPECT_EQ(KProfile::GetProfileIntA("Bars-Summary", "Bars", 0, 0), 3u);

    Bars b;
    b.Make();
    for (CToolBar* bar : {&b.one, &b.two, &b.three})
        b.frame.DockControlBar(bar, AFX_IDW_DOCKBAR_TOP);
    b.frame.LoadBarState("Bars");
    EXPECT_EQ(SideOf(b.one), AFX_IDW_DOCKBAR_BOTTOM);
    EXPECT_EQ(SideOf(b.three), AFX_IDW_DOCKBAR_BOTTOM);
    auto* bottom = dynamic_cast<CDockBar*>(b.frame.GetDlgItem(AFX_IDW_DOCKBAR_BOTTOM));
    ASSERT_NE(bottom, nullptr);
    EXPECT_EQ(bottom->GetRow(0), (std::vector<CControlBar*>{&b.three, &b.one})) << "one row, in order";
    EXPECT_FALSE(b.three.IsWindowVisible());
    ASSERT_TRUE(b.two.IsFloating());
    EXPECT_EQ(ScreenRect(*MiniFrameOf(b.two)).TopLeft(), CPoint(320, 260));
    EXPECT_EQ(ScreenRect(b.pane).top, 100) << "nothing docked at the top any more";

    g_profiledirAT[0] = 0;
    g_MainframeType = type;
}
