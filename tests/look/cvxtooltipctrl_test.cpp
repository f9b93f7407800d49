// The library's own tooltip: its timing on the manual clock (initial delay,
// poll period, auto-pop), the tool table, texts asked for by notification,
// tips of two pages, placement at the screen's edges, and painting.
#include "uisupport/uitest.h"

#include "look/cvxtooltipctrl.h"
#include "platform/shell/resources.h"
#include "platform/windows/manualclock.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/sysmetrics.h"
#include "ui/controls/ctooltipctrl.h"

#include <memory>

namespace {

// An owner that relays its input to the tip, as the Part's owners do, and
// answers TTN_NEEDTEXT.
class Owner : public CWnd {
public:
    CVXToolTipCtrl* tip = nullptr;
    const char* callbackText = "asked";
    bool answerResource = false;
    int asked = 0;

    BOOL PreTranslateMessage(MSG* msg) override
    {
        if (tip)
            tip->RelayEvent(msg);
        return FALSE;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_NOTIFY) {
            auto* info = reinterpret_cast<NMTTDISPINFOA*>(lParam);
            if (info->hdr.code == TTN_NEEDTEXT) {
                ++asked;
                if (answerResource) {
                    info->hinst = reinterpret_cast<HINSTANCE>(1);
                    info->lpszText = reinterpret_cast<LPSTR>(static_cast<UINT_PTR>(6707));
                } else {
                    info->lpszText = const_cast<LPSTR>(callbackText);
                }
                return 0;
            }
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class VxTip : public ::testing::Test {
protected:
    void SetUp() override
    {
        vx::UseManualClock(true);
        owner.CreateEx("owner", "VxOwner", WS_POPUP | WS_VISIBLE, CRect(100, 100, 400, 300));
        open.CreateEx("", "VxTool", WS_CHILD | WS_VISIBLE, CRect(10, 10, 60, 30), &owner, 1);
        save.CreateEx("", "VxTool", WS_CHILD | WS_VISIBLE, CRect(70, 10, 120, 30), &owner, 2);
        tip = std::make_unique<CVXToolTipCtrl>();
        ASSERT_TRUE(tip->Create(&owner));
        owner.tip = tip.get();
    }
    void TearDown() override
    {
        owner.tip = nullptr;
        tip.reset();
        vx::UseManualClock(false);
        vx::ResetMessageQueue();
    }
    // Moves time on in small steps, dispatching the timers that fall due.
    static void Advance(UINT ms)
    {
        for (UINT t = 0; t < ms; t += 10) {
            vx::AdvanceManualClock(10);
            vx::PumpMessages();
        }
    }
    void MoveTo(CWnd& window, int x, int y) { vxtest::Mouse(window, WM_MOUSEMOVE, x, y); }
    CRect TipRect() const
    {
        CRect r;
        tip->GetWindowRect(&r);
        return r;
    }

    Owner owner;
    CWnd open;
    CWnd save;
    std::unique_ptr<CVXToolTipCtrl> tip;
};

} // namespace

TEST_F(VxTip, ShowsAfterTheInitialDelayAndPopsAfterTheAutoPopTime)
{
    ASSERT_TRUE(tip->AddTool(&open, "Opens the project"));
    EXPECT_EQ(tip->GetDelayTime(3), 500);
    EXPECT_EQ(tip->GetDelayTime(2), 5000);
    EXPECT_EQ(tip->GetDelayTime(1), 0) << "other ids read 0";

    MoveTo(open, 5, 5);
    EXPECT_EQ(tip->CurrentTool() ? tip->CurrentTool()->hWnd : nullptr, open.m_hWnd);
    Advance(490);
    EXPECT_FALSE(tip->IsVisible()) << "waiting out the initial delay";
    Advance(20);
    ASSERT_TRUE(tip->IsVisible());
    // At the cursor plus the offset (0, 20), in screen coordinates.
    const CRect shown = TipRect();
    EXPECT_EQ(shown.TopLeft(), CPoint(100 + 10 + 5, 100 + 10 + 5 + 20));

    // Moving within the tool keeps it; the poll runs every 500 ms and the
    // tip goes after 5,000 ms in all.
    MoveTo(open, 20, 8);
    Advance(4400);
    EXPECT_TRUE(tip->IsVisible());
    Advance(700);
    EXPECT_FALSE(tip->IsVisible()) << "auto-pop";

    // A longer initial delay is kept.
    tip->SetDelayTime(3, 1200);
    MoveTo(save, 5, 5); // no tool there: nothing starts
    EXPECT_FALSE(tip->IsVisible());
}

TEST_F(VxTip, LeavingTheToolPopsAtTheNextPollAndANewToolWaitsAgain)
{
    tip->AddTool(&open, "Open");
    tip->AddTool(&save, "Save");
    MoveTo(open, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());

    // Onto the other tool: it starts waiting at once, the tip goes down.
    MoveTo(save, 5, 5);
    EXPECT_FALSE(tip->IsVisible());
    EXPECT_EQ(tip->CurrentTool()->hWnd, save.m_hWnd);
    Advance(510);
    EXPECT_TRUE(tip->IsVisible());
    CString text;
    tip->GetText(text, &save);
    EXPECT_EQ(text, "Save");

    // Off every tool: the poll takes it down.
    MoveTo(owner, 250, 150);
    EXPECT_TRUE(tip->IsVisible()) << "nothing happens before the poll";
    Advance(510);
    EXPECT_FALSE(tip->IsVisible());

    // A click or a key pops a waiting tool before it shows.
    MoveTo(open, 5, 5);
    Advance(200);
    vxtest::Mouse(open, WM_LBUTTONDOWN, 5, 5, MK_LBUTTON);
    vxtest::Mouse(open, WM_LBUTTONUP, 5, 5);
    Advance(600);
    EXPECT_FALSE(tip->IsVisible());
}

TEST_F(VxTip, InactiveTipShowsNothingWhileItsTimersRun)
{
    tip->AddTool(&open, "Open");
    tip->Activate(FALSE);
    MoveTo(open, 5, 5);
    Advance(600);
    EXPECT_FALSE(tip->IsVisible());
    EXPECT_NE(tip->CurrentTool(), nullptr) << "the tool is still current";
    // Active again, the next tool shows as usual.
    tip->Activate(TRUE);
    tip->AddTool(&save, "Save");
    MoveTo(save, 5, 5);
    Advance(510);
    EXPECT_TRUE(tip->IsVisible());
}

TEST_F(VxTip, ToolTableAndHitTest)
{
    EXPECT_FALSE(tip->AddTool(nullptr, "x"));
    // The first tool that takes a window decides: a tool of the owner takes
    // every child too, so it comes after the child's own.
    const RECT part{0, 0, 20, 10};
    ASSERT_TRUE(tip->AddTool(&open, "Open", nullptr, 1));
    ASSERT_TRUE(tip->AddTool(&owner, "Corner", &part, 7));
    EXPECT_EQ(tip->GetToolCount(), 2);

    VXTOOLINFO info{};
    ASSERT_TRUE(tip->GetToolInfo(&info, &open, 1));
    // The whole window, in the owner's client coordinates.
    EXPECT_EQ(CRect(info.rect), CRect(10, 10, 60, 30));
    EXPECT_STREQ(info.lpszText, "Open");
    EXPECT_FALSE(tip->GetToolInfo(&info, &open, 99));

    EXPECT_FALSE(tip->HitTest(nullptr, CPoint(5, 5), &info));
    EXPECT_TRUE(tip->HitTest(&owner, CPoint(5, 5), &info));
    EXPECT_EQ(info.uId, 7u);
    EXPECT_FALSE(tip->HitTest(&owner, CPoint(150, 150), nullptr));
    EXPECT_TRUE(tip->HitTest(&open, CPoint(20, 20), &info));
    EXPECT_EQ(info.hwnd, open.m_hWnd);
    // The open tool's window is asked, but another window lies there.
    EXPECT_FALSE(tip->HitTest(&open, CPoint(80, 20), nullptr));

    // Per-tool colours and width through SetToolInfo.
    tip->GetToolInfo(&info, &open, 1);
    info.crBk = RGB(0, 0, 255);
    info.nMaxTipWidth = 40;
    tip->SetToolInfo(&info);
    VXTOOLINFO back{};
    tip->GetToolInfo(&back, &open, 1);
    EXPECT_EQ(back.crBk, RGB(0, 0, 255));
    EXPECT_EQ(back.nMaxTipWidth, 40);

    // The control's defaults reach tools that still had the old default.
    tip->SetTipBkColor(RGB(255, 0, 0));
    tip->SetMaxTipWidth(100);
    tip->GetToolInfo(&back, &open, 1);
    EXPECT_EQ(back.crBk, RGB(0, 0, 255)) << "a tool's own colour stays";
    EXPECT_EQ(back.nMaxTipWidth, 40);
    tip->GetToolInfo(&back, &owner, 7);
    EXPECT_EQ(back.crBk, RGB(255, 0, 0));
    EXPECT_EQ(back.nMaxTipWidth, 100);

    // Deleting the tool being shown takes the tip down.
    MoveTo(open, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    tip->DelTool(&open, 1);
    EXPECT_FALSE(tip->IsVisible());
    EXPECT_EQ(tip->CurrentTool(), nullptr);
    EXPECT_EQ(tip->GetToolCount(), 1);
}

TEST_F(VxTip, TextsAskedForByNotification)
{
    tip->AddTool(&open, LPSTR_TEXTCALLBACK);
    CString text;
    tip->GetText(text, &open);
    EXPECT_EQ(text, "asked");
    owner.answerResource = true;
    tip->GetText(text, &open);
    EXPECT_EQ(text, vx::FindString(6707));
    EXPECT_EQ(owner.asked, 2);

    // An empty answer shows nothing.
    owner.answerResource = false;
    owner.callbackText = "";
    MoveTo(open, 5, 5);
    Advance(510);
    EXPECT_FALSE(tip->IsVisible());
}

TEST_F(VxTip, TwoPagesTurnOverOnAClick)
{
    tip->AddTool(&open, "First page\rSecond page");
    tip->AddTool(&save, "One page");
    MoveTo(open, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    EXPECT_TRUE(tip->IsTwoPage());
    EXPECT_EQ(tip->PageSide(), 0);
    const CRect first = TipRect();

    // The arrow: black pixels in the right end of the first page.
    QImage image = vxtest::Render(*tip);
    const QImage firstPage = image;
    const int w = image.width();
    const int h = image.height();
    EXPECT_GT(vxtest::CountColor(image, CRect(w - 14, 2, w - 3, h - 3), RGB(0, 0, 0)), 8);

    vxtest::Click(*tip, 3, 3);
    EXPECT_TRUE(tip->IsVisible()) << "a click in the tip keeps it";
    EXPECT_EQ(tip->PageSide(), 1);
    EXPECT_EQ(TipRect().TopLeft(), first.TopLeft()) << "the other page at the tip's top left";
    image = vxtest::Render(*tip);
    EXPECT_GT(vxtest::CountColor(image, CRect(3, 2, 14, image.height() - 3), RGB(0, 0, 0)), 8)
        << "the arrow points back on the second page";
    EXPECT_NE(image, firstPage);

    // One page: no arrow, and a click changes nothing.
    MoveTo(save, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    EXPECT_FALSE(tip->IsTwoPage());
    const CRect one = TipRect();
    vxtest::Click(*tip, 3, 3);
    EXPECT_EQ(tip->PageSide(), 0);
    EXPECT_EQ(TipRect(), one);
}

TEST_F(VxTip, WidthZeroTakesTheWidestLineAndAPositiveWidthWraps)
{
    tip->AddTool(&open, "short\na much longer second line");
    MoveTo(open, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    const CRect two = TipRect();

    tip->DelTool(&open);
    tip->SetMaxTipWidth(60);
    tip->AddTool(&open, "a much longer second line");
    MoveTo(save, 5, 5);
    MoveTo(open, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    const CRect wrapped = TipRect();
    EXPECT_LE(wrapped.Width(), 60 + 5) << "the width plus the margins";
    EXPECT_GT(wrapped.Height(), two.Height()) << "wrapped over more than two lines";
    EXPECT_GT(two.Width(), wrapped.Width());
}

TEST_F(VxTip, StaysOnTheScreenAndGoesAboveItsToolAtTheBottom)
{
    const int sw = GetSystemMetrics(SM_CXSCREEN);
    const int sh = GetSystemMetrics(SM_CYSCREEN);
    owner.MoveWindow(sw - 120, sh - 60, 120, 60);
    tip->AddTool(&open, "A tip near the corner of the screen");
    MoveTo(open, 40, 15);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    const CRect r = TipRect();
    EXPECT_EQ(r.right, sw) << "moved left to fit";
    CRect tool;
    open.GetWindowRect(&tool);
    EXPECT_EQ(r.bottom, tool.top) << "above the tool, not above the cursor";

    // Past the left edge it moves right.
    owner.MoveWindow(-100, 100, 300, 100);
    tip->AddTool(&save, "Save");
    MoveTo(save, 1, 1);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    EXPECT_EQ(TipRect().left, 0);
}

TEST_F(VxTip, PaintsItsColoursAndFrame)
{
    tip->SetTipBkColor(RGB(0, 128, 0));
    tip->SetTipTextColor(RGB(255, 255, 255));
    tip->AddTool(&open, "Green");
    MoveTo(open, 5, 5);
    Advance(510);
    ASSERT_TRUE(tip->IsVisible());
    const QImage image = vxtest::Render(*tip);
    EXPECT_PIXEL(image, 0, 0, RGB(0, 0, 0));
    EXPECT_PIXEL(image, image.width() - 1, image.height() - 1, RGB(0, 0, 0));
    EXPECT_PIXEL(image, 1, 1, RGB(0, 128, 0));
    EXPECT_GT(vxtest::CountColor(image, CRect(2, 2, image.width() - 2, image.height() - 2), RGB(255, 255, 255)), 5);
}
