#include "platform/windows/cwnd.h"
#include "platform/windows/messagepump.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Probe : public CWnd {
public:
    std::vector<std::string> calls;
    CPoint lastPoint;
    UINT lastFlags = 0;

protected:
    int OnCreate() override
    {
        calls.push_back("create");
        return 0;
    }
    void OnDestroy() override { calls.push_back("destroy"); }
    void OnTimer(UINT_PTR id) override { calls.push_back("timer" + std::to_string(id)); }
    void OnMouseMove(UINT flags, CPoint point) override
    {
        calls.push_back("move");
        lastFlags = flags;
        lastPoint = point;
    }
    void OnLButtonDown(UINT, CPoint point) override
    {
        calls.push_back("down");
        lastPoint = point;
    }
    void OnSize(UINT, int cx, int cy) override { calls.push_back("size" + std::to_string(cx) + "x" + std::to_string(cy)); }
    void OnSetFocus(CWnd*) override { calls.push_back("setfocus"); }
    void OnKillFocus(CWnd*) override { calls.push_back("killfocus"); }
    void OnEnable(BOOL enable) override { calls.push_back(enable ? "enable" : "disable"); }
};

} // namespace

TEST(CWnd, WindowProcCracksMessagesIntoHandlers)
{
    Probe w;
    ASSERT_TRUE(w.CreateEx("Probe", "VxProbe", WS_OVERLAPPED, CRect(10, 20, 110, 70)));
    EXPECT_EQ(CWnd::FromHandle(w.m_hWnd), &w);
    w.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(static_cast<WORD>(-5), 7));
    EXPECT_EQ(w.lastFlags, MK_LBUTTON);
    EXPECT_EQ(w.lastPoint, CPoint(-5, 7)) << "coordinates are signed";
    w.SendMessage(WM_LBUTTONDOWN, 0, MAKELPARAM(3, 4));
    w.MoveWindow(0, 0, 40, 30);
    w.SetTimer(7, 1);
    vx::PumpFor(1000, [&] { return w.calls.back() == "timer7"; });
    w.KillTimer(7);
    // A new window hears its size right after WM_CREATE, as on the original.
    EXPECT_EQ(w.calls, (std::vector<std::string>{"create", "size100x50", "move", "down", "size40x30", "timer7"}));
    CRect client;
    w.GetClientRect(&client);
    EXPECT_EQ(client, CRect(0, 0, 40, 30));
    w.DestroyWindow();
    EXPECT_EQ(w.calls.back(), "destroy");
    EXPECT_EQ(w.m_hWnd, nullptr);
}

TEST(CWnd, TextVisibilityAndEnableState)
{
    Probe w;
    w.CreateEx("before", "VxProbe");
    w.SetWindowText("VEXAL 5.5 Plan");
    EXPECT_EQ(w.GetWindowTextString(), "VEXAL 5.5 Plan");
    char cut[6];
    EXPECT_EQ(w.GetWindowText(cut, sizeof cut), 5);
    EXPECT_STREQ(cut, "VEXAL");
    EXPECT_FALSE(w.IsWindowVisible());
    w.ShowWindow(SW_SHOW);
    EXPECT_TRUE(w.IsWindowVisible());
    EXPECT_TRUE(w.Backend()->IsVisible());
    EXPECT_FALSE(w.EnableWindow(FALSE));
    EXPECT_TRUE(w.GetStyle() & WS_DISABLED);
    EXPECT_TRUE(w.EnableWindow(TRUE));
    EXPECT_FALSE(w.IsWindowVisible() == FALSE);
    EXPECT_EQ(w.calls, (std::vector<std::string>{"create", "size0x0", "disable", "enable"}));
}

TEST(CWnd, ChildCoordinatesFollowTheParent)
{
    CWnd parent;
    parent.CreateEx("frame", "F", WS_OVERLAPPED, CRect(100, 50, 500, 450));
    CWnd child;
    child.CreateEx("", "C", WS_CHILD, CRect(10, 20, 30, 40), &parent, 1001);
    CRect r;
    child.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(110, 70, 130, 90));
    CPoint p(0, 0);
    child.ClientToScreen(&p);
    EXPECT_EQ(p, CPoint(110, 70));
    parent.ScreenToClient(&p);
    EXPECT_EQ(p, CPoint(10, 20));
    EXPECT_EQ(child.GetDlgCtrlID(), 1001u);
    EXPECT_EQ(child.GetTopLevelParent(), &parent);
    EXPECT_EQ(GetParent(child.m_hWnd), parent.m_hWnd);
}

TEST(CWnd, FocusMovesWithKillAndSetNotifications)
{
    Probe a, b;
    a.CreateEx("a", "P");
    b.CreateEx("b", "P");
    a.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &a);
    b.SetFocus();
    EXPECT_EQ(a.calls.back(), "killfocus");
    EXPECT_EQ(b.calls.back(), "setfocus");
    b.DestroyWindow();
}

TEST(CWnd, DestructionTakesTheHandleOutOfTheTable)
{
    HWND h;
    {
        Probe w;
        w.CreateEx("gone", "P");
        h = w.m_hWnd;
        w.SetFocus();
        EXPECT_TRUE(IsWindow(h));
    }
    EXPECT_FALSE(IsWindow(h));
    EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

TEST(CWnd, ShowWindowByHandleReachesTheObject)
{
    CWnd w;
    w.CreateEx("shown by handle", "VxProbe");
    EXPECT_FALSE(::ShowWindow(w.m_hWnd, SW_SHOW));
    EXPECT_TRUE(w.IsWindowVisible());
    EXPECT_TRUE(w.GetStyle() & WS_VISIBLE);
    EXPECT_TRUE(w.Backend()->IsVisible());
    EXPECT_TRUE(w.ShowWindow(SW_HIDE));
    EXPECT_FALSE(::IsWindowVisible(w.m_hWnd));
    EXPECT_FALSE(w.Backend()->IsVisible());
}
