// The resizing engine: its arithmetic, checked on the rectangles the
// controls take (nothing is painted for that), the limits of the user's
// sizing, enlargement, the grip, and placements stored and refused.
#include "uisupport/uitest.h"

#include "layout/cresizedialog.h"
#include "look/cvxdialog.h"
#include "ui/controls/cstatic.h"

#include "base/displaystate.h"
#include "base/vxglobals.h"
#include "config/kprofile.h"
#include "platform/shell/resources.h"
#include "platform/screens/monitors.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <cstring>
#include <functional>

namespace {

enum : int { kList = 100, kName = 101, kLeft = 102, kRight = 103, kMiddle = 104, kLabel = 105, kTwin = 106 };

vx::DialogTemplate Form(DWORD extra = WS_THICKFRAME)
{
    vx::DialogTemplate t("Resize", 0, 0, 200, 120, vx::DialogTemplate::kDefaultStyle | extra);
    t.ListBox(kList, 7, 7, 186, 60)
        .EditText(kName, 7, 72, 120, 14)
        .PushButton("Left", kLeft, 7, 92, 50, 14)
        .PushButton("Right", kRight, 63, 92, 50, 14)
        .PushButton("Middle", kMiddle, 119, 92, 50, 14)
        .LText("Label", kLabel, 140, 74, 50, 8)
        .LText("Twin", kTwin, 140, 74, 50, 8)
        .DefPushButton("OK", IDOK, 143, 104, 50, 14);
    return t;
}

class Sizer : public CResizeDialog {
public:
    explicit Sizer(Freedom freedom = fdAll, bool grip = true, UINT stretch = 0)
        : CResizeDialog(0, nullptr, freedom, grip), m_stretch(stretch)
    {
    }
    using CResizeDialog::AddSzControl;
    using CResizeDialog::AddSzControlEx;
    using CResizeDialog::AddSzXControl;
    using CResizeDialog::AddSzXControlEx;
    using CResizeDialog::AddSzYControlEx;
    using CResizeDialog::OnInitDialog;

    std::function<void(Sizer&)> rules;
    CToolTipCtrl& Tips() { return m_ToolTip; }
    CStringArray& Texts() { return m_ToolTexts; }
    ControlInfo* early = reinterpret_cast<ControlInfo*>(1);

    CRect Place(int id) { return vxtest::ChildPlace(*this, id); }
    void Client(int cx, int cy) { vxtest::SetClientSize(*this, cx, cy); }

protected:
    BOOL OnInitDialog() override
    {
        // Rules given before the base's OnInitDialog register nothing.
        early = AddSzControl(*GetDlgItem(kList), mdResize, mdResize);
        const BOOL r = CResizeDialog::OnInitDialog(m_stretch);
        if (rules)
            rules(*this);
        return r;
    }

private:
    UINT m_stretch;
};

struct Engine : ::testing::Test {
    Sizer dlg;
    CSize initial;

    void Open(std::function<void(Sizer&)> rules, DWORD extra = WS_THICKFRAME)
    {
        dlg.rules = std::move(rules);
        ASSERT_TRUE(dlg.CreateIndirect(Form(extra)));
        CRect c;
        dlg.GetClientRect(&c);
        initial = c.Size();
    }
};

TEST_F(Engine, PercentagesTruncateTowardsZeroBothWays)
{
    Open([](Sizer& d) { ASSERT_NE(d.AddSzXControlEx(*d.GetDlgItem(kName), 33, 66), nullptr); });
    EXPECT_EQ(dlg.early, nullptr);
    const CRect base = dlg.Place(kName);
    dlg.Client(initial.cx + 100, initial.cy);
    EXPECT_EQ(dlg.Place(kName), CRect(base.left + 33, base.top, base.right + 66, base.bottom));
    dlg.Client(initial.cx - 100, initial.cy);
    EXPECT_EQ(dlg.Place(kName), CRect(base.left - 33, base.top, base.right - 66, base.bottom));
    dlg.Client(initial.cx + 7, initial.cy); // 33 * 7 / 100 = 2, 66 * 7 / 100 = 4
    EXPECT_EQ(dlg.Place(kName), CRect(base.left + 2, base.top, base.right + 4, base.bottom));
    dlg.Client(initial.cx - 7, initial.cy);
    EXPECT_EQ(dlg.Place(kName), CRect(base.left - 2, base.top, base.right - 4, base.bottom));
}

TEST_F(Engine, TenStepsEndWhereOneStepEndsAndTheReverseComesHome)
{
    Open([](Sizer& d) {
        d.AddSzControl(*d.GetDlgItem(kList), CResizeDialog::mdResize, CResizeDialog::mdResize);
        d.AddSzControl(*d.GetDlgItem(kName), CResizeDialog::mdFirstHalf, CResizeDialog::mdRepos);
        d.AddSzControl(*d.GetDlgItem(kLeft), CResizeDialog::mdRelative, CResizeDialog::mdRepos);
        d.AddSzControl(*d.GetDlgItem(kRight), CResizeDialog::mdSecondHalf, CResizeDialog::mdRepos);
        d.AddSzControlEx(*d.GetDlgItem(kMiddle), 33, 67, 17, 83);
        d.AddSzControl(*d.GetDlgItem(IDOK), CResizeDialog::mdRepos, CResizeDialog::mdRepos);
    });
    const int ids[] = {kList, kName, kLeft, kRight, kMiddle, IDOK};
    std::vector<CRect> base;
    for (int id : ids)
        base.push_back(dlg.Place(id));
    for (int step = 1; step <= 10; ++step)
        dlg.Client(initial.cx + 7 * step, initial.cy + 3 * step);
    std::vector<CRect> stepped;
    for (int id : ids)
        stepped.push_back(dlg.Place(id));
    dlg.Client(initial.cx, initial.cy);
    for (std::size_t i = 0; i < std::size(ids); ++i)
        EXPECT_EQ(dlg.Place(ids[i]), base[i]) << ids[i]; // back to the pixel
    dlg.Client(initial.cx + 70, initial.cy + 30);
    for (std::size_t i = 0; i < std::size(ids); ++i)
        EXPECT_EQ(dlg.Place(ids[i]), stepped[i]) << ids[i];
    // The shorthand rules.
    EXPECT_EQ(stepped[0], CRect(base[0].left, base[0].top, base[0].right + 70, base[0].bottom + 30));
    EXPECT_EQ(stepped[2], CRect(base[2].left + 35, base[2].top + 30, base[2].right + 35, base[2].bottom + 30));
    EXPECT_EQ(stepped[5], CRect(base[5].left + 70, base[5].top + 30, base[5].right + 70, base[5].bottom + 30));
    EXPECT_EQ(stepped[4], CRect(base[4].left + 23, base[4].top + 5, base[4].right + 46, base[4].bottom + 24));
}

TEST_F(Engine, MinimisingMovesNothingAndChainedControlsTakeThePrimarysPlace)
{
    Open([](Sizer& d) {
        CResizeDialog::ControlInfo* label =
            d.AddSzControl(*d.GetDlgItem(kLabel), CResizeDialog::mdRepos, CResizeDialog::mdNone);
        ASSERT_NE(label, nullptr);
        label->AddEqualCtrl(*d.GetDlgItem(kTwin));
        EXPECT_EQ(d.AddSzControl(*d.GetDlgItem(kName), CResizeDialog::mdNone, CResizeDialog::mdNone), nullptr);
        EXPECT_EQ(d.AddSzControlEx(*d.GetDlgItem(kName), 0, 0, 0, 0), nullptr);
    });
    const CRect label = dlg.Place(kLabel);
    const CRect name = dlg.Place(kName);
    dlg.SendMessage(WM_SIZE, SIZE_MINIMIZED, MAKELPARAM(10, 10));
    EXPECT_EQ(dlg.Place(kLabel), label);
    dlg.Client(initial.cx + 40, initial.cy);
    EXPECT_EQ(dlg.Place(kLabel), CRect(label.left + 40, label.top, label.right + 40, label.bottom));
    EXPECT_EQ(dlg.Place(kTwin), dlg.Place(kLabel));
    EXPECT_EQ(dlg.Place(kName), name); // mode 0 on both axes: left out
    // A chained control that died is passed over.
    dlg.GetDlgItem(kTwin)->DestroyWindow();
    dlg.Client(initial.cx + 60, initial.cy);
    EXPECT_EQ(dlg.Place(kLabel).left, label.left + 60);
}

TEST_F(Engine, AControlAddedAfterGrowthIsMovedByAllOfIt)
{
    Open([](Sizer& d) { d.AddSzControl(*d.GetDlgItem(kList), CResizeDialog::mdResize, CResizeDialog::mdResize); });
    dlg.Client(initial.cx + 50, initial.cy + 20);
    const CRect ok = dlg.Place(IDOK);
    ASSERT_NE(dlg.AddSzControl(*dlg.GetDlgItem(IDOK), CResizeDialog::mdRepos, CResizeDialog::mdRepos), nullptr);
    EXPECT_EQ(dlg.Place(IDOK), CRect(ok.left + 50, ok.top + 20, ok.right + 50, ok.bottom + 20));
    // The present layout as the new baseline: the same size changes nothing.
    dlg.ReloadControlsPosition();
    const CRect list = dlg.Place(kList);
    dlg.ReorganizeControls();
    EXPECT_EQ(dlg.Place(kList), list);
    EXPECT_EQ(dlg.GetHeader().InitialSize(), CSize(initial.cx + 50, initial.cy + 20));
}

TEST_F(Engine, MinimumTrackSizeIsTheTemplateAndAnAxisWithoutFreedomIsFrozen)
{
    Sizer wide(CResizeDialog::fdHoriz);
    ASSERT_TRUE(wide.CreateIndirect(Form()));
    CRect w;
    wide.GetWindowRect(&w);
    MINMAXINFO info{};
    info.ptMaxTrackSize = POINT{5000, 5000};
    wide.SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_EQ(CPoint(info.ptMinTrackSize), CPoint(w.Width(), w.Height()));
    EXPECT_EQ(info.ptMaxTrackSize.y, w.Height());
    EXPECT_EQ(info.ptMaxTrackSize.x, 5000);

    // The grip: a drag sizes the dialog, never below its template size.
    Open([](Sizer&) {});
    CStatic& grip = dlg.GetHeader().Grip();
    ASSERT_NE(grip.m_hWnd, nullptr);
    EXPECT_EQ(grip.GetDlgCtrlID(), 0xFFFFu);
    CRect g;
    grip.GetWindowRect(&g);
    dlg.ScreenToClient(&g);
    EXPECT_EQ(g.BottomRight(), CPoint(initial.cx, initial.cy));
    EXPECT_TRUE(grip.GetStyle() & WS_VISIBLE);
    CRect before;
    dlg.GetWindowRect(&before);
    vxtest::Mouse(grip, WM_LBUTTONDOWN, g.Width() - 3, g.Height() - 3, MK_LBUTTON);
    vxtest::Mouse(grip, WM_MOUSEMOVE, g.Width() + 37, g.Height() + 17, MK_LBUTTON);
    CRect after;
    dlg.GetWindowRect(&after);
    EXPECT_EQ(after.Size(), CSize(before.Width() + 40, before.Height() + 20));
    dlg.GetHeader().Grip().GetWindowRect(&g);
    dlg.ScreenToClient(&g);
    EXPECT_EQ(g.BottomRight(), CPoint(initial.cx + 40, initial.cy + 20)); // the grip follows
    vxtest::Mouse(grip, WM_MOUSEMOVE, -300, -300, MK_LBUTTON);
    dlg.GetWindowRect(&after);
    EXPECT_EQ(after.Size(), before.Size());
    vxtest::Mouse(grip, WM_LBUTTONUP, -300, -300);

    Sizer bare(CResizeDialog::fdAll, false);
    ASSERT_TRUE(bare.CreateIndirect(Form()));
    EXPECT_EQ(bare.GetHeader().Grip().m_hWnd, nullptr);
}

TEST(Stretch, GrowsAboutTheCentreInFiftiethsAndStopsAtTheLeftEdge)
{
    Sizer dlg;
    ASSERT_TRUE(dlg.CreateIndirect(Form()));
    dlg.SetWindowPos(nullptr, 10, 40, 100, 80, SWP_NOZORDER);
    dlg.StretchWindow(0);
    CRect r;
    dlg.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(10, 40, 110, 120));
    dlg.StretchWindow(25); // 100 * 25 / 50 = 50 each side; the left stops at 0
    dlg.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 160, 160));

    Sizer tall(CResizeDialog::fdVert);
    ASSERT_TRUE(tall.CreateIndirect(Form()));
    tall.SetWindowPos(nullptr, 300, 300, 100, 100, SWP_NOZORDER);
    tall.StretchWindow(10);
    tall.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(300, 280, 400, 420));

    Sizer opened(CResizeDialog::fdAll, true, 10);
    ASSERT_TRUE(opened.CreateIndirect(Form()));
    CRect client;
    opened.GetClientRect(&client);
    EXPECT_GT(client.Width(), opened.GetHeader().InitialSize().cx);
}

class Placement : public ::testing::Test {
protected:
    Placement()
    {
        m_display = vx::TheDisplayState();
        std::strcpy(m_global, g_profiledirAT);
        std::strcpy(g_profiledirAT, m_dir.Path("VXWIN55AT.INI").c_str());
        g_MainframeType = MainframeAT;
        vx::SetScreens({{{0, 0, 1280, 1024}, {0, 0, 1280, 994}, true, ""},
                        {{1280, 0, 2880, 1200}, {1280, 0, 2880, 1200}, false, ""}});
        CVxDialog::Set2DisplayEnable(1);
        CVxDialog::Set2DisplayVirtual(RECT{0, 0, 2880, 1200});
        CVxDialog::Set2DisplayFirst(SIZE{1280, 1024});
        dlg.CreateIndirect(Form());
    }
    ~Placement() override
    {
        dlg.DestroyWindow();
        vx::TheDisplayState() = m_display;
        vx::SetScreens({});
        std::strcpy(g_profiledirAT, m_global);
    }
    std::string File() const { return vxtest::ReadBytes(m_dir.Path("VXWIN55AT.INI")); }
    void Write(const std::string& record) { vxtest::WriteBytes(m_dir.Path("VXWIN55AT.INI"), "[Find]\r\n" + record); }
    CRect Now()
    {
        CRect r;
        dlg.GetWindowRect(&r);
        return r;
    }

    vxtest::TempDir m_dir;
    Sizer dlg;

private:
    vx::DisplayState m_display;
    char m_global[260] = {};
};

TEST_F(Placement, StoredInItsOrderAndRestored)
{
    dlg.SetWindowPos(nullptr, 1500, 100, 400, 300, SWP_NOZORDER);
    ASSERT_TRUE(dlg.StoreWindowPosition("Find", 0));
    EXPECT_EQ(File(), "[Find]\r\n(check)=32639\r\nLeft=1500\r\nRight=1900\r\nTop=100\r\nBottom=400\r\nState=1\r\n"
                      "Flags=0\r\n");
    dlg.SetWindowPos(nullptr, 10, 10, 300, 250, SWP_NOZORDER);
    ASSERT_TRUE(dlg.RestoreWindowPosition("Find", true, 0));
    EXPECT_EQ(Now(), CRect(1500, 100, 1900, 400));
    EXPECT_FALSE(dlg.IsWindowVisible()); // state 1 has no bit 1: hidden until the dialog is ready
    EXPECT_TRUE(dlg.StoreWindowPosition(CString("Other"), 0));
    vx::SetString(61001, "Find");
    EXPECT_TRUE(dlg.RestoreWindowPosition(61001u, false, 0));
    vx::RemoveString(61001);
}

TEST_F(Placement, TheShowCommandFollowsTheStoredStateOnlyWhenAskedFor)
{
    Write("(check)=32639\r\nLeft=100\r\nRight=500\r\nTop=100\r\nBottom=400\r\nState=2\r\nFlags=0\r\n");
    ASSERT_TRUE(dlg.RestoreWindowPosition("Find", true, 0));
    EXPECT_TRUE(dlg.IsWindowVisible());
    EXPECT_FALSE(dlg.IsIconic()); // minimised comes back normal
    dlg.ShowWindow(SW_HIDE);
    ASSERT_TRUE(dlg.RestoreWindowPosition("Find", false, 0));
    EXPECT_FALSE(dlg.IsWindowVisible());
    Write("(check)=32639\r\nLeft=100\r\nRight=500\r\nTop=100\r\nBottom=400\r\nState=3\r\n");
    ASSERT_TRUE(dlg.RestoreWindowPosition("Find", true, 0));
    EXPECT_TRUE(dlg.IsZoomed());
    // A missing key keeps the present value.
    Write("(check)=32639\r\nLeft=200\r\nTop=150\r\n");
    ASSERT_TRUE(dlg.RestoreWindowPosition("Find", false, 0));
    EXPECT_EQ(Now(), CRect(200, 150, 500, 400));
    // An iconic window is only brought back to normal where it is.
    dlg.ShowWindow(SW_MINIMIZE);
    Write("(check)=32639\r\nLeft=700\r\nRight=900\r\nTop=150\r\nBottom=400\r\nState=1\r\n");
    ASSERT_TRUE(dlg.RestoreWindowPosition("Find", true, 0));
    EXPECT_FALSE(dlg.IsIconic());
    EXPECT_EQ(Now().left, 200);
}

TEST_F(Placement, RefusesUnfinishedOffScreenAndAbsurdRecords)
{
    dlg.SetWindowPos(nullptr, 50, 60, 300, 200, SWP_NOZORDER);
    const CRect where = Now();
    const char* refused[] = {
        "(check)=-32640\r\nLeft=100\r\nRight=400\r\nTop=100\r\nBottom=300\r\n",  // cut off while written
        "Left=100\r\nRight=400\r\nTop=100\r\nBottom=300\r\n",                    // no marker
        "(check)=abc\r\nLeft=100\r\nRight=400\r\nTop=100\r\nBottom=300\r\n",     // no number
        "(check)=32639\r\nLeft=2880\r\nRight=3000\r\nTop=100\r\nBottom=300\r\n", // on the right edge exactly
        "(check)=32639\r\nLeft=-500\r\nRight=-100\r\nTop=100\r\nBottom=300\r\n", // off every screen
        "(check)=32639\r\nLeft=100\r\nRight=50\r\nTop=100\r\nBottom=300\r\n",    // negative width
        "(check)=32639\r\nLeft=100\r\nRight=1000000000\r\nTop=100\r\nBottom=300\r\n",
        "(check)=32639\r\nLeft=1000000000\r\nRight=1000000300\r\nTop=100\r\nBottom=300\r\n",
    };
    for (const char* record : refused) {
        SCOPED_TRACE(record);
        Write(record);
        EXPECT_FALSE(dlg.RestoreWindowPosition("Find", true, 0));
        EXPECT_EQ(Now(), where);
    }
    EXPECT_FALSE(dlg.RestoreWindowPosition("Missing", true, 0));
    // The corner on the area, the body off it: taken.
    Write("(check)=32639\r\nLeft=2800\r\nRight=3200\r\nTop=1100\r\nBottom=1400\r\n");
    EXPECT_TRUE(dlg.RestoreWindowPosition("Find", false, 0));
    EXPECT_EQ(Now(), CRect(2800, 1100, 3200, 1400));
    // With one display the first display is the area.
    CVxDialog::Set2DisplayEnable(0);
    Write("(check)=32639\r\nLeft=1500\r\nRight=1800\r\nTop=100\r\nBottom=300\r\n");
    EXPECT_FALSE(dlg.RestoreWindowPosition("Find", false, 0));
}

TEST(ResizeDialog, ToolTipsComeFromTheStringsOfTheControlIds)
{
    vx::SetString(kName, "Name\nThe name of the part");
    vx::SetString(kLeft, "Shifts the part left");
    Sizer dlg;
    ASSERT_TRUE(dlg.CreateIndirect(Form()));
    // One tool per control with an id (the grip is added after them).
    EXPECT_EQ(dlg.Tips().GetToolCount(), 8);
    CString text;
    dlg.Tips().GetText(text, dlg.GetDlgItem(kName));
    EXPECT_STREQ(text, "The name of the part");
    dlg.Tips().GetText(text, dlg.GetDlgItem(kLeft));
    EXPECT_STREQ(text, "Shifts the part left");
    EXPECT_EQ(dlg.Texts().GetSize(), 1);
    EXPECT_STREQ(dlg.Texts()[0], "The name of the part");
    vx::RemoveString(kName);
    vx::RemoveString(kLeft);
}

TEST(ResizeDialog, RunsModallyAgainAfterItsEnd)
{
    Sizer dlg;
    dlg.InitModalIndirect(Form());
    int runs = 0;
    dlg.rules = [&runs](Sizer& d) {
        ++runs;
        EXPECT_NE(d.AddSzControl(*d.GetDlgItem(kList), CResizeDialog::mdResize, CResizeDialog::mdResize), nullptr);
        d.PostMessage(WM_COMMAND, IDCANCEL);
    };
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_FALSE(dlg.GetHeader().IsInitialised());
    EXPECT_EQ(dlg.GetHeader().GetFirst(), nullptr);
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(runs, 2);
}

} // namespace
