#include "platform/windows/cwnd.h"
#include "platform/windows/sysmetrics.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A window with a frame of its own width, answering WM_NCCALCSIZE itself.
class Framed : public CWnd {
public:
    int frame = 5;
    bool growOnMove = false;
    std::vector<std::string> log;

protected:
    void OnNcCalcSize(BOOL calc, NCCALCSIZE_PARAMS* params) override
    {
        log.push_back(calc ? "nccalc1" : "nccalc0");
        RECT& r = params->rgrc[0];
        r.left += frame;
        r.top += frame * 2;
        r.right -= frame;
        r.bottom -= frame;
    }
    void OnWindowPosChanging(WINDOWPOS* pos) override
    {
        log.push_back("changing");
        if (growOnMove)
            pos->cx += 10;
    }
    void OnWindowPosChanged(WINDOWPOS* pos) override
    {
        log.push_back("changed");
        CWnd::OnWindowPosChanged(pos);
    }
    void OnSize(UINT, int cx, int cy) override { log.push_back("size" + std::to_string(cx) + "x" + std::to_string(cy)); }
    void OnMove(int x, int y) override { log.push_back("move" + std::to_string(x) + "," + std::to_string(y)); }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_NCCREATE)
            log.push_back("nccreate");
        if (message == WM_CREATE)
            log.push_back(std::string("create:") + reinterpret_cast<const CREATESTRUCTA*>(lParam)->lpszClass);
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

} // namespace

TEST(NonClient, ClientAreaComesFromNcCalcSizeBeforeCreate)
{
    Framed w;
    ASSERT_TRUE(w.CreateEx("f", "VxFramed", WS_POPUP, CRect(100, 50, 200, 130)));
    EXPECT_EQ(w.log, (std::vector<std::string>{"nccreate", "nccalc0", "create:VxFramed", "size90x65", "move105,60"}));
    CRect client;
    w.GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 90, 65));
    CRect outer;
    w.GetWindowRect(&outer);
    EXPECT_EQ(outer, CRect(100, 50, 200, 130));
    CPoint p(0, 0);
    w.ClientToScreen(&p);
    EXPECT_EQ(p, CPoint(105, 60));
    w.ScreenToClient(&p);
    EXPECT_EQ(p, CPoint(0, 0));
    EXPECT_EQ(vx::ClientAreaOf(w), CRect(5, 10, 95, 75));
}

TEST(NonClient, WindowPosChangingMayChangeTheSizeAndOnlyWhatChangedIsReported)
{
    Framed w;
    w.CreateEx("f", "VxFramed", WS_POPUP, CRect(0, 0, 100, 100));
    w.log.clear();
    w.SetWindowPos(nullptr, 10, 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_EQ(w.log, (std::vector<std::string>{"changing", "changed", "move15,30"}));
    w.log.clear();
    w.growOnMove = true;
    w.SetWindowPos(nullptr, 0, 0, 50, 40, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(w.log, (std::vector<std::string>{"changing", "nccalc1", "changed", "size50x25"}));
    CRect outer;
    w.GetWindowRect(&outer);
    EXPECT_EQ(outer, CRect(10, 20, 70, 60)) << "the window grew by what WM_WINDOWPOSCHANGING added";
    // A new frame width takes effect with SWP_FRAMECHANGED only.
    w.growOnMove = false;
    w.frame = 1;
    w.log.clear();
    w.SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
    EXPECT_EQ(w.log, (std::vector<std::string>{"changing", "nccalc1", "changed", "move11,22", "size58x37"}));
    // MoveWindow goes the same way.
    w.log.clear();
    w.MoveWindow(0, 0, 60, 40);
    EXPECT_EQ(w.log, (std::vector<std::string>{"changing", "changed", "move1,2"}));
}

TEST(NonClient, StandardFramesFollowTheStyle)
{
    EXPECT_EQ(vx::StandardFrameInsets(WS_OVERLAPPEDWINDOW, 0, true), CRect()) << "the desktop frames it";
    EXPECT_EQ(vx::StandardFrameInsets(WS_POPUP | WS_BORDER, 0, true), CRect(1, 1, 1, 1));
    EXPECT_EQ(vx::StandardFrameInsets(WS_POPUP | WS_BORDER, WS_EX_DLGMODALFRAME, true), CRect(3, 3, 3, 3));
    EXPECT_EQ(vx::StandardFrameInsets(WS_CHILD | WS_THICKFRAME, 0, false), CRect(4, 4, 4, 4));
    EXPECT_EQ(vx::StandardFrameInsets(WS_CHILD, WS_EX_CLIENTEDGE, false), CRect(2, 2, 2, 2));
    EXPECT_EQ(vx::StandardFrameInsets(WS_CHILD | WS_BORDER, WS_EX_CLIENTEDGE | WS_EX_STATICEDGE, false),
              CRect(4, 4, 4, 4));

    // A child with a client edge: its own children sit inside the edge.
    CWnd parent;
    parent.CreateEx("p", "VxParent", WS_POPUP, CRect(100, 100, 300, 300));
    CWnd child;
    child.CreateEx("c", "VxChild", WS_CHILD, CRect(10, 10, 110, 60), &parent, 0, WS_EX_CLIENTEDGE);
    CRect client;
    child.GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 96, 46));
    CWnd grandchild;
    grandchild.CreateEx("g", "VxChild", WS_CHILD, CRect(0, 0, 5, 5), &child);
    CRect r;
    grandchild.GetWindowRect(&r);
    EXPECT_EQ(r.TopLeft(), CPoint(112, 112));
}

TEST(NonClient, HitTestsAnswerByArea)
{
    CWnd w;
    w.CreateEx("w", "VxSizing", WS_POPUP | WS_THICKFRAME, CRect(0, 0, 200, 100));
    auto hit = [&](int x, int y) { return w.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(x, y)); };
    EXPECT_EQ(hit(50, 50), HTCLIENT);
    EXPECT_EQ(hit(1, 50), HTLEFT);
    EXPECT_EQ(hit(198, 50), HTRIGHT);
    EXPECT_EQ(hit(100, 1), HTTOP);
    EXPECT_EQ(hit(100, 98), HTBOTTOM);
    EXPECT_EQ(hit(1, 1), HTTOPLEFT);
    EXPECT_EQ(hit(10, 2), HTTOPLEFT) << "corners reach along the edge";
    EXPECT_EQ(hit(198, 98), HTBOTTOMRIGHT);
    EXPECT_EQ(hit(300, 50), HTNOWHERE);
    CWnd b;
    b.CreateEx("b", "VxBorder", WS_POPUP | WS_BORDER, CRect(0, 0, 50, 50));
    EXPECT_EQ(b.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(0, 20)), HTBORDER);
}
