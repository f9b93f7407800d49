// The menu bar without painting: its buttons, its layout in every dock
// position with wrap and bisection, the keyboard and mouse state machine,
// and the popups it opens, moved across by arrows and the mouse.
#include "uisupport/uitest.h"

#include "menus/cmenubar.h"
#include "platform/windows/manualclock.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/sysmetrics.h"
#include "ui/bars/cdockbar.h"

#include <algorithm>
#include <vector>

namespace {

constexpr UINT kRun = 500;

// A frame that records which popups open and which commands come.
class Frame : public CFrameWnd {
public:
    std::vector<HMENU> popups;
    std::vector<UINT> commands;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_INITMENUPOPUP)
            popups.push_back(reinterpret_cast<HMENU>(wParam));
        if (message == WM_COMMAND)
            commands.push_back(LOWORD(wParam));
        return CFrameWnd::WindowProc(message, wParam, lParam);
    }
};

HMENU Popup(std::initializer_list<const char*> items)
{
    HMENU popup = CreatePopupMenu();
    UINT id = 100;
    for (const char* text : items)
        AppendMenuA(popup, MF_STRING, id++, text);
    return popup;
}

// A timer that ends a menu left open, so that a failing test cannot hang.
void EndStuckMenu(HWND, UINT, UINT_PTR, DWORD)
{
    EndMenu();
}

class MenuBarTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(frame.CreateEx("Frame", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(100, 100, 900, 600)));
        pane.CreateEx("", "VxPane", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), &frame, AFX_IDW_PANE_FIRST);
        menu = CreateMenu();
        file = Popup({"&New", "&Open", "E&xit"});
        edit = Popup({"&Undo", "&Copy"});
        view = Popup({"&Tool bar"});
        AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(file), "&File");
        AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(edit), "&Edit");
        AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(view), "&View");
        AppendMenuA(menu, MF_STRING, kRun, "&Run");
        AppendMenuA(menu, MF_STRING, 501, "Plain");
        ASSERT_TRUE(bar.Create(&frame));
        bar.LoadMenu(menu, nullptr);
        bar.EnableDocking(CBRS_ALIGN_ANY);
        frame.EnableDocking(CBRS_ALIGN_ANY);
        frame.DockControlBar(&bar);
        frame.SetActiveWindow();
        watchdog = SetTimer(nullptr, 0, 3000, &EndStuckMenu);
    }
    void TearDown() override
    {
        KillTimer(nullptr, watchdog);
        vx::ResetMessageQueue();
    }
    BOOL Key(UINT message, UINT key)
    {
        MSG msg{frame.m_hWnd, message, key, 0, 0, {0, 0}};
        return bar.TranslateFrameMessage(&msg);
    }
    void AltTap()
    {
        vx::SetKeyDown(VK_MENU, true);
        EXPECT_TRUE(Key(WM_SYSKEYDOWN, VK_MENU)) << "the key down is eaten";
        vx::SetKeyDown(VK_MENU, false);
        EXPECT_TRUE(Key(WM_SYSKEYUP, VK_MENU));
    }
    CPoint ButtonCentre(int index) const { return CRect(bar.GetButton(index).m_rcItem).CenterPoint(); }
    void PostKey(UINT key) { frame.PostMessage(WM_KEYDOWN, key); }

    Frame frame;
    CWnd pane;
    CMenuBar bar;
    HMENU menu = nullptr;
    HMENU file = nullptr;
    HMENU edit = nullptr;
    HMENU view = nullptr;
    UINT_PTR watchdog = 0;
};

} // namespace

TEST_F(MenuBarTest, ButtonsAreMeasuredFromTheMenu)
{
    ASSERT_EQ(bar.GetButtonCount(), 5);
    const CMenuBarItem& f = bar.GetButton(0);
    EXPECT_EQ(f.m_sText, "&File");
    EXPECT_EQ(f.m_cAccessKey, 'F');
    EXPECT_GT(f.m_cx, 12);
    EXPECT_EQ(f.m_nState, 2) << "flat";
    // The underline runs from the width of what stands before the "&" to
    // that plus its letter, 6 from the top of a vertical button.
    EXPECT_EQ(f.m_nUnderlineY1, 6);
    EXPECT_GT(f.m_nUnderlineY2, 6);
    EXPECT_EQ(bar.GetButton(4).m_cAccessKey, 0);
    EXPECT_EQ(bar.GetButton(4).m_nUnderlineY2, 0) << "no \"&\", no underline";
    const int height = bar.GetButton(0).m_cy;
    for (int i = 1; i < 5; ++i)
        EXPECT_EQ(bar.GetButton(i).m_cy, height);
    EXPECT_EQ(bar.GetWindowTextString(), "MenuBar");
    EXPECT_TRUE(bar.GetBarStyle() & CBRS_SIZE_DYNAMIC);
}

TEST_F(MenuBarTest, LaysOutInEveryDockPosition)
{
    int total = 0;
    for (int i = 0; i < 5; ++i)
        total += bar.GetButton(i).m_cx;
    const int h = bar.GetButton(0).m_cy;

    // Docked at the top: one row after 12 pixels for the gripper.
    CSize size = bar.CalcFixedLayout(FALSE, TRUE);
    EXPECT_EQ(size, CSize(12 + total + 5, h + 10));
    EXPECT_EQ(CRect(bar.GetButton(0).m_rcItem), CRect(12, 5, 12 + bar.GetButton(0).m_cx, 5 + h));
    EXPECT_EQ(bar.GetButton(1).m_rcItem.left, bar.GetButton(0).m_rcItem.right);
    // Along the top it stretches to the side's right end.
    size = bar.CalcDynamicLayout(-1, LM_HORZ | LM_HORZDOCK);
    EXPECT_EQ(size.cx, 800);

    // At the left: one column, each button turned.
    frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    size = bar.CalcFixedLayout(FALSE, FALSE);
    EXPECT_EQ(size, CSize(h + 10, 12 + total + 5));
    EXPECT_EQ(CRect(bar.GetButton(0).m_rcItem), CRect(5, 12, 5 + h, 12 + bar.GetButton(0).m_cx));
    EXPECT_FALSE(bar.GetButton(0).m_bHorz);
    CRect dock;
    frame.GetDlgItem(AFX_IDW_DOCKBAR_LEFT)->GetWindowRect(&dock);
    CRect self;
    bar.GetWindowRect(&self);
    size = bar.CalcDynamicLayout(-1, LM_VERTDOCK);
    EXPECT_EQ(size.cy, dock.bottom - self.top) << "down to the side's end";

    // At the bottom and right as at the top and left.
    frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_BOTTOM);
    EXPECT_EQ(bar.CalcFixedLayout(FALSE, TRUE), CSize(12 + total + 5, h + 10));
    frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_RIGHT);
    EXPECT_EQ(bar.CalcFixedLayout(FALSE, FALSE), CSize(h + 10, 12 + total + 5));

    // Floating: 5 from the edge, rows as wrapped.
    frame.FloatControlBar(&bar, CPoint(300, 300));
    ASSERT_TRUE(bar.IsFloating());
    size = bar.CalcDynamicLayout(-1, LM_HORZ | LM_MRUWIDTH);
    EXPECT_EQ(bar.GetButton(0).m_rcItem.left, 5);
}

TEST_F(MenuBarTest, WrapsAndBisectsForAGivenLength)
{
    const int w0 = bar.GetButton(0).m_cx;
    const int w1 = bar.GetButton(1).m_cx;
    const int h = bar.GetButton(0).m_cy;
    int total = 0;
    for (int i = 0; i < 5; ++i)
        total += bar.GetButton(i).m_cx;

    EXPECT_EQ(bar.WrapMenuBar(5, 0x7FFF), 1);
    EXPECT_EQ(bar.CalcSize(5), CSize(5 + total + 5, 5 + h + 5));
    EXPECT_EQ(bar.WrapMenuBar(5, 0), 5) << "every button alone";
    EXPECT_EQ(bar.CalcSize(5).cy, 5 + 5 * h + 5);
    // Room for the first two: the third starts a row.
    EXPECT_GE(bar.WrapMenuBar(5, w0 + w1 + 5), 2);
    EXPECT_FALSE(bar.GetButton(0).m_bWrap);
    EXPECT_TRUE(bar.GetButton(1).m_bWrap);
    int widest = 0;
    for (int i = 0; i < 5; ++i)
        widest = std::max(widest, bar.GetButton(i).m_cx);

    // A length along the width: the widest form that fits it.
    for (int length : {total + 10, total - 1, w0 + w1 + 20, widest + 10, 3}) {
        SCOPED_TRACE(length);
        bar.SizeMenuBar(5, length, FALSE);
        const CSize size = bar.CalcSize(5);
        if (length >= total + 10) {
            EXPECT_EQ(size.cy, 5 + h + 5) << "one row";
        } else if (length >= widest + 10) {
            EXPECT_LE(size.cx, length);
            EXPECT_GT(size.cy, 5 + h + 5);
        } else {
            EXPECT_EQ(size.cy, 5 + 5 * h + 5) << "nothing fits: the narrowest";
        }
    }
    // A length along the height: the narrowest form whose height fits.
    for (int rows = 1; rows <= 5; ++rows) {
        SCOPED_TRACE(rows);
        const int length = 5 + rows * h + 5;
        bar.SizeMenuBar(5, length, TRUE);
        const CSize size = bar.CalcSize(5);
        EXPECT_LE(size.cy, length);
        // Any narrower wrap needs more rows than fit.
        if (rows < 5) {
            bar.WrapMenuBar(5, size.cx - 11);
            EXPECT_GT(bar.CalcSize(5).cy, length);
        }
    }
    // The dynamic layout of a floating bar does the same.
    frame.FloatControlBar(&bar, CPoint(200, 200));
    const CSize tall = bar.CalcDynamicLayout(5 + 3 * h + 5, LM_HORZ | LM_LENGTHY);
    EXPECT_LE(tall.cy, 5 + 3 * h + 5);
    EXPECT_EQ(bar.CalcDynamicLayout(0, LM_HORZ | LM_COMMIT), CSize(0, 0));
}

TEST_F(MenuBarTest, AnEmptyBarMeasuresItsMarginsOnly)
{
    CMenuBar empty;
    ASSERT_TRUE(empty.Create(&frame));
    EXPECT_EQ(empty.CalcDynamicLayout(100, LM_HORZ), CSize(0, 0)) << "no menu";
    empty.LoadMenu(CreateMenu(), nullptr);
    EXPECT_EQ(empty.GetButtonCount(), 0);
    EXPECT_EQ(empty.CalcFixedLayout(FALSE, TRUE), CSize(5 + 5, 10));
    EXPECT_EQ(empty.CalcFixedLayout(FALSE, FALSE), CSize(10, 5 + 5));
}

TEST_F(MenuBarTest, AltAndF10SelectTheBarAndArrowsMoveAcross)
{
    AltTap();
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_BUTTON);
    EXPECT_EQ(bar.GetCurrentButton(), 0);
    EXPECT_EQ(bar.GetButton(0).m_nState, 0) << "raised";
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_RIGHT));
    EXPECT_EQ(bar.GetCurrentButton(), 1);
    EXPECT_EQ(bar.GetButton(0).m_nState, 2);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_LEFT));
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_LEFT));
    EXPECT_EQ(bar.GetCurrentButton(), 4) << "left of the first is the last";
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_RIGHT));
    EXPECT_EQ(bar.GetCurrentButton(), 0) << "right of the last is the first";
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_ESCAPE));
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);

    // A second Alt clears the first.
    AltTap();
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_BUTTON);
    AltTap();
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);

    // F10 too, but not with Shift.
    EXPECT_TRUE(Key(WM_SYSKEYDOWN, VK_F10));
    EXPECT_TRUE(Key(WM_SYSKEYUP, VK_F10));
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_BUTTON);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_ESCAPE));
    vx::SetKeyDown(VK_SHIFT, true);
    EXPECT_FALSE(Key(WM_SYSKEYDOWN, VK_F10));
    vx::SetKeyDown(VK_SHIFT, false);
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);

    // On a bar at the side the arrows go up and down.
    frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    AltTap();
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_DOWN));
    EXPECT_EQ(bar.GetCurrentButton(), 1);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_UP));
    EXPECT_EQ(bar.GetCurrentButton(), 0);

    // Another key in the selected state that is no letter ends it; a click
    // elsewhere too.
    EXPECT_FALSE(Key(WM_KEYDOWN, VK_TAB));
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);
    AltTap();
    MSG click{pane.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, 0, 0, {0, 0}};
    EXPECT_FALSE(bar.TranslateFrameMessage(&click));
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);
}

TEST_F(MenuBarTest, AfterASystemKeyInAPopupTheNextAltReleaseIsBypassed)
{
    MSG sys{frame.m_hWnd, WM_SYSKEYDOWN, VK_MENU, 0, 0, {0, 0}};
    bar.UpdateBar(CMenuBar::TRACK_POPUP, 0);
    EXPECT_FALSE(bar.OnMenuInput(sys));
    EXPECT_TRUE(bar.IsBypassed());
    bar.UpdateBar(CMenuBar::TRACK_NONE);
    EXPECT_TRUE(bar.IsBypassed()) << "only leaving the hot state clears it";
    AltTap();
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE) << "bypassed";
    EXPECT_FALSE(bar.IsBypassed());
    AltTap();
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_BUTTON);
}

TEST_F(MenuBarTest, KeysOpenPopupsAndArrowsMoveBetweenThem)
{
    // Down on a selected button opens its popup; Right in the popup moves
    // to the next button's popup; Esc closes it.
    AltTap();
    PostKey(VK_RIGHT);
    PostKey(VK_ESCAPE);
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_DOWN));
    EXPECT_EQ(frame.popups, (std::vector<HMENU>{file, edit}));
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);
    EXPECT_EQ(bar.GetButton(0).m_nState, 2);
    EXPECT_EQ(bar.GetButton(1).m_nState, 2);

    // An accelerator letter with Alt opens its button.
    frame.popups.clear();
    PostKey(VK_ESCAPE);
    vx::SetKeyDown(VK_MENU, true);
    EXPECT_TRUE(Key(WM_SYSKEYDOWN, 'V'));
    vx::SetKeyDown(VK_MENU, false);
    EXPECT_EQ(frame.popups, (std::vector<HMENU>{view}));

    // Left from the first popup wraps to the last button with a popup.
    frame.popups.clear();
    PostKey(VK_LEFT);
    PostKey(VK_ESCAPE);
    bar.TrackPopup(0);
    ASSERT_EQ(frame.popups.size(), 1u) << "the last button has no popup: the loop ends there";
    EXPECT_EQ(frame.popups[0], file);
}

TEST_F(MenuBarTest, AcceleratorsMatchTheKeyExactly)
{
    CMenuBar lower;
    ASSERT_TRUE(lower.Create(&frame));
    HMENU m = CreateMenu();
    AppendMenuA(m, MF_POPUP, reinterpret_cast<UINT_PTR>(Popup({"&One"})), "&file");
    lower.LoadMenu(m, nullptr);
    EXPECT_EQ(lower.GetButton(0).m_cAccessKey, 'f');
    MSG key{frame.m_hWnd, WM_KEYDOWN, 'F', 0, 0, {0, 0}};
    lower.UpdateBar(CMenuBar::TRACK_BUTTON, 0);
    EXPECT_TRUE(lower.TranslateFrameMessage(&key)) << "eaten in the selected state";
    EXPECT_TRUE(frame.popups.empty()) << "a lower-case letter never matches";
    EXPECT_EQ(lower.GetTrackingState(), CMenuBar::TRACK_BUTTON);
}

TEST_F(MenuBarTest, TheMouseMovesThePopupBetweenButtons)
{
    // While File is open the cursor goes to View: View's popup follows.
    CPoint at = ButtonCentre(2);
    bar.ClientToScreen(&at);
    CPoint client = ButtonCentre(2);
    bar.PostMessage(WM_MOUSEMOVE, 0, MAKELPARAM(client.x, client.y));
    PostKey(VK_ESCAPE);
    vxtest::Click(bar, ButtonCentre(0).x, ButtonCentre(0).y);
    EXPECT_EQ(frame.popups, (std::vector<HMENU>{file, view}));
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);

    // A leaf button sends its command on release.
    frame.popups.clear();
    vxtest::Click(bar, ButtonCentre(3).x, ButtonCentre(3).y);
    EXPECT_TRUE(frame.popups.empty());
    EXPECT_EQ(frame.commands, (std::vector<UINT>{kRun}));
}

TEST_F(MenuBarTest, HoverMakesAButtonHotUntilTheCursorLeaves)
{
    vx::UseManualClock(true);
    vxtest::Mouse(bar, WM_MOUSEMOVE, ButtonCentre(1).x, ButtonCentre(1).y);
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_HOT);
    EXPECT_EQ(bar.GetCurrentButton(), 1);
    EXPECT_EQ(bar.GetButton(1).m_nState, 0);
    vxtest::Mouse(bar, WM_MOUSEMOVE, ButtonCentre(2).x, ButtonCentre(2).y);
    EXPECT_EQ(bar.GetCurrentButton(), 2);
    // The cursor leaves the bar without a message: the timer sees it.
    vxtest::Mouse(pane, WM_MOUSEMOVE, 100, 100);
    vx::AdvanceManualClock(260);
    vx::PumpMessages();
    EXPECT_EQ(bar.GetTrackingState(), CMenuBar::TRACK_NONE);
    vx::UseManualClock(false);
}

TEST_F(MenuBarTest, PopupsOpenBelowOrBesideTheirButton)
{
    TPMPARAMS params{};
    CRect button(bar.GetButton(1).m_rcItem);
    bar.ClientToScreen(&button);
    EXPECT_EQ(bar.ComputeMenuTrackPoint(1, params), CPoint(button.left, button.bottom));
    EXPECT_EQ(CRect(params.rcExclude), CRect(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)));

    // Near the screen's bottom a popup opens over its button.
    frame.MoveWindow(100, GetSystemMetrics(SM_CYSCREEN) - 60, 800, 60);
    button = CRect(bar.GetButton(0).m_rcItem);
    bar.ClientToScreen(&button);
    EXPECT_EQ(bar.ComputeMenuTrackPoint(0, params), button.TopLeft());
    EXPECT_EQ(params.rcExclude.top, button.top);

    // On a side bar, to the right of the button.
    frame.MoveWindow(100, 100, 800, 500);
    frame.DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    button = CRect(bar.GetButton(0).m_rcItem);
    bar.ClientToScreen(&button);
    EXPECT_EQ(bar.ComputeMenuTrackPoint(0, params), CPoint(button.right, button.top));
    EXPECT_EQ(params.rcExclude.right, button.right);
}

TEST_F(MenuBarTest, SubMenusStopTheRightArrowAndOnlyTheFirstLevelGoesLeft)
{
    HMENU nested = Popup({"&Deeper"});
    AppendMenuA(edit, MF_POPUP, reinterpret_cast<UINT_PTR>(nested), "&More");
    bar.UpdateBar(CMenuBar::TRACK_POPUP, 1);
    frame.SendMessage(WM_MENUSELECT, MAKEWPARAM(2, MF_POPUP), reinterpret_cast<LPARAM>(edit));
    MSG right{frame.m_hWnd, WM_KEYDOWN, VK_RIGHT, 0, 0, {0, 0}};
    EXPECT_FALSE(bar.OnMenuInput(right)) << "an item with a sub-menu opens it instead";
    frame.SendMessage(WM_MENUSELECT, MAKEWPARAM(0, 0), reinterpret_cast<LPARAM>(nested));
    MSG left{frame.m_hWnd, WM_KEYDOWN, VK_LEFT, 0, 0, {0, 0}};
    EXPECT_FALSE(bar.OnMenuInput(left)) << "from a sub-menu Left goes back a level";
    frame.SendMessage(WM_MENUSELECT, MAKEWPARAM(0, 0), reinterpret_cast<LPARAM>(edit));
    EXPECT_TRUE(bar.OnMenuInput(right));
    vx::ResetMessageQueue();

    // An MDI child's menu arriving by WM_MDISETMENU replaces the bar's.
    HMENU child = CreateMenu();
    AppendMenuA(child, MF_POPUP, reinterpret_cast<UINT_PTR>(Popup({"&Window"})), "&Window");
    EXPECT_EQ(frame.SendMessage(0x0230, reinterpret_cast<WPARAM>(child), 0), 0);
    EXPECT_EQ(bar.GetMenu(), child);
    EXPECT_EQ(bar.GetButtonCount(), 1);
    DestroyMenu(menu);
}
