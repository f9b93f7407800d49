// Statics and scroll bars: labels, images, frames, and the scroll bar's
// messages to its parent and its size box.
#include "ui/controls/controltest.h"

#include "ui/controls/cscrollbar.h"
#include "ui/controls/cstatic.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

namespace {

using vxtest::Recorder;

constexpr UINT kId = 600;

class Clicked : public Recorder {
public:
    int downs = 0;

protected:
    void OnLButtonDown(UINT, CPoint) override { ++downs; }
};

TEST(CStatic, MousePassesThroughUnlessItNotifies)
{
    Clicked parent;
    ASSERT_TRUE(parent.Make());
    CStatic plain;
    CStatic notify;
    plain.Create("Plain", WS_CHILD | WS_VISIBLE, CRect(0, 0, 80, 20), &parent, kId);
    notify.Create("Notify", WS_CHILD | WS_VISIBLE | SS_NOTIFY, CRect(0, 30, 80, 50), &parent, kId + 1);
    vxtest::Click(plain, 5, 5);
    EXPECT_EQ(parent.downs, 1);
    vxtest::DoubleClick(notify, 5, 5);
    EXPECT_EQ(parent.downs, 1);
    EXPECT_EQ(parent.Codes(kId + 1), (std::vector<UINT>{STN_CLICKED, STN_DBLCLK}));
    EXPECT_EQ(plain.SendMessage(WM_GETDLGCODE), DLGC_STATIC);
}

TEST(CStatic, BitmapStaticFitsItsImage)
{
    Recorder parent;
    ASSERT_TRUE(parent.Make());
    CStatic picture;
    picture.Create("", WS_CHILD | WS_VISIBLE | SS_BITMAP, CRect(5, 5, 100, 100), &parent, kId);
    HBITMAP grip = LoadBitmapA(nullptr, MAKEINTRESOURCE(OBM_SIZE));
    ASSERT_NE(grip, nullptr);
    EXPECT_EQ(picture.SetBitmap(grip), nullptr);
    EXPECT_EQ(picture.GetBitmap(), grip);
    BITMAP bm{};
    GetObjectA(grip, sizeof bm, &bm);
    CRect r;
    picture.GetWindowRect(&r);
    EXPECT_EQ(r.Width(), bm.bmWidth);
    EXPECT_EQ(r.Height(), bm.bmHeight);
    picture.DestroyWindow();
    DeleteObject(grip);
}

TEST(CStatic, LabelTakesTheParentsColoursAndFramesLeaveTheirInside)
{
    Recorder parent;
    ASSERT_TRUE(parent.Make());
    CStatic label;
    label.Create("MMMM", WS_CHILD | WS_VISIBLE | SS_LEFT, CRect(0, 0, 80, 20), &parent, kId);
    CBrush blue(RGB(0, 0, 255));
    parent.ctlBrush = blue;
    parent.ctlText = RGB(255, 255, 0);
    const QImage img = vxtest::Render(label);
    EXPECT_PIXEL(img, 79, 19, RGB(0, 0, 255));
    EXPECT_GT(vxtest::CountColor(img, CRect(0, 0, 40, 20), RGB(255, 255, 0)), 10);
    parent.ctlBrush = nullptr;

    CStatic frame;
    frame.Create("", WS_CHILD | WS_VISIBLE | SS_BLACKFRAME, CRect(0, 30, 40, 60), &parent, kId + 1);
    vxtest::Render(frame);
    {
        // What the dialog paints inside a frame stays there.
        CClientDC dc(&frame);
        dc.FillSolidRect(1, 1, 38, 28, RGB(0, 200, 0));
    }
    const QImage framed = vxtest::Render(frame);
    EXPECT_PIXEL(framed, 0, 0, GetSysColor(COLOR_WINDOWFRAME));
    EXPECT_PIXEL(framed, 20, 15, RGB(0, 200, 0));
}

TEST(CScrollBar, KeepsItsRangeAndPageAndClampsThePosition)
{
    Recorder parent;
    ASSERT_TRUE(parent.Make());
    CScrollBar bar;
    bar.Create(WS_CHILD | WS_VISIBLE | SBS_VERT, CRect(200, 0, 216, 200), &parent, kId);
    bar.SetScrollRange(0, 99);
    EXPECT_EQ(bar.SetScrollPos(150), 0);
    EXPECT_EQ(bar.GetScrollPos(), 99);
    SCROLLINFO info{sizeof info, SIF_PAGE, 0, 0, 10, 0, 0};
    bar.SetScrollInfo(&info);
    EXPECT_EQ(bar.GetScrollPos(), 90); // the last page starts at max - page + 1
    EXPECT_EQ(bar.GetScrollLimit(), 90);
    SCROLLINFO back{sizeof back, 0, 0, 0, 0, 0, 0};
    ASSERT_TRUE(bar.GetScrollInfo(&back, SIF_ALL));
    EXPECT_EQ(back.nMax, 99);
    EXPECT_EQ(back.nPage, 10u);
    int low = -1;
    int high = -1;
    bar.GetScrollRange(&low, &high);
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 99);
}

TEST(CScrollBar, TellsItsParentLinesPagesAndTheThumb)
{
    Recorder parent;
    ASSERT_TRUE(parent.Make());
    CScrollBar bar;
    bar.Create(WS_CHILD | WS_VISIBLE | SBS_VERT, CRect(200, 0, 216, 200), &parent, kId);
    bar.SetScrollRange(0, 100);
    bar.SetScrollPos(0);
    vxtest::Click(bar, 8, 195); // the lower arrow
    vxtest::Click(bar, 8, 150); // the track below the thumb
    const std::vector<std::pair<UINT, UINT>> clicks{
        {WM_VSCROLL, SB_LINEDOWN}, {WM_VSCROLL, SB_ENDSCROLL}, {WM_VSCROLL, SB_PAGEDOWN}, {WM_VSCROLL, SB_ENDSCROLL}};
    EXPECT_EQ(parent.scrolls, clicks);
    EXPECT_EQ(bar.GetScrollPos(), 0); // the parent moves the bar, not the bar itself
    parent.scrolls.clear();
    parent.thumbs.clear();
    vxtest::Mouse(bar, WM_LBUTTONDOWN, 8, 20, MK_LBUTTON); // on the thumb
    vxtest::Mouse(bar, WM_MOUSEMOVE, 8, 120, MK_LBUTTON);
    vxtest::Mouse(bar, WM_LBUTTONUP, 8, 120);
    ASSERT_EQ(parent.scrolls.size(), 3u);
    EXPECT_EQ(parent.scrolls[0].second, SB_THUMBTRACK);
    EXPECT_EQ(parent.scrolls[1].second, SB_THUMBPOSITION);
    EXPECT_EQ(parent.scrolls[2].second, SB_ENDSCROLL);
    EXPECT_GT(parent.thumbs[0], 40);
    EXPECT_EQ(parent.thumbs[0], parent.thumbs[1]);
    parent.scrolls.clear();
    vxtest::Key(VK_NEXT, vxtest::kNone, &bar);
    EXPECT_EQ(parent.scrolls.front().second, SB_PAGEDOWN);
}

class Limited : public Recorder {
protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_GETMINMAXINFO) {
            auto* info = reinterpret_cast<MINMAXINFO*>(lParam);
            info->ptMinTrackSize = POINT{300, 200};
            info->ptMaxTrackSize = POINT{400, 260};
            return 0;
        }
        return Recorder::WindowProc(message, wParam, lParam);
    }
};

TEST(CScrollBar, SizeBoxSizesItsWindowWithinItsLimits)
{
    Limited top;
    ASSERT_TRUE(top.CreateEx("top", "Top", WS_POPUP | WS_VISIBLE | WS_THICKFRAME, CRect(100, 100, 420, 340)));
    CScrollBar grip;
    grip.Create(WS_CHILD | WS_VISIBLE | SBS_SIZEBOX, CRect(304, 224, 320, 240), &top, kId);
    vxtest::Mouse(grip, WM_LBUTTONDOWN, 8, 8, MK_LBUTTON);
    vxtest::Mouse(grip, WM_MOUSEMOVE, 48, 18, MK_LBUTTON);
    CRect r;
    top.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(100, 100, 460, 350));
    vxtest::Mouse(grip, WM_MOUSEMOVE, 200, 200, MK_LBUTTON);
    top.GetWindowRect(&r);
    EXPECT_EQ(r.Size(), CSize(400, 260));
    vxtest::Mouse(grip, WM_MOUSEMOVE, -300, -300, MK_LBUTTON);
    top.GetWindowRect(&r);
    EXPECT_EQ(r.Size(), CSize(300, 200));
    vxtest::Mouse(grip, WM_LBUTTONUP, -300, -300);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

} // namespace
