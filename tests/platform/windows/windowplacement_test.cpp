#include "platform/windows/windowplacement.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/windows.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Recorder : public CWnd {
public:
    std::vector<std::string> calls;

protected:
    void OnSize(UINT, int cx, int cy) override { calls.push_back("size" + std::to_string(cx) + "x" + std::to_string(cy)); }
};

WINDOWPLACEMENT PlacementOf(CWnd& window)
{
    WINDOWPLACEMENT wp{};
    EXPECT_TRUE(GetWindowPlacement(window.GetSafeHwnd(), &wp));
    return wp;
}

} // namespace

TEST(WindowPlacement, DescribesAWindowAsItWouldBeShown)
{
    CWnd frame;
    frame.CreateEx("Plan", "VxFrame", WS_OVERLAPPED, CRect(100, 50, 500, 450));
    WINDOWPLACEMENT wp = PlacementOf(frame);
    EXPECT_EQ(wp.length, sizeof wp);
    EXPECT_EQ(wp.showCmd, static_cast<UINT>(SW_SHOWNORMAL)) << "hidden, but shown normally when shown";
    EXPECT_EQ(CRect(wp.rcNormalPosition), CRect(100, 50, 500, 450));

    CWnd big;
    big.CreateEx("Plan", "VxFrame", WS_OVERLAPPED | WS_MAXIMIZE, CRect(0, 0, 800, 600));
    EXPECT_EQ(PlacementOf(big).showCmd, static_cast<UINT>(SW_SHOWMAXIMIZED));

    EXPECT_FALSE(GetWindowPlacement(nullptr, &wp));
    EXPECT_FALSE(GetWindowPlacement(frame.GetSafeHwnd(), nullptr));
    const HWND gone = big.GetSafeHwnd();
    big.DestroyWindow();
    EXPECT_FALSE(GetWindowPlacement(gone, &wp));
    EXPECT_FALSE(SetWindowPlacement(gone, &wp));
    EXPECT_FALSE(SetWindowPlacement(frame.GetSafeHwnd(), nullptr));
}

// What one window reports, another takes over: the partner's frame opens
// where this one stood, and a window put back where it was does not move.
TEST(WindowPlacement, HandsAPlaceToAnotherWindowAndBack)
{
    CWnd mine;
    mine.CreateEx("AT", "VxFrame", WS_OVERLAPPED, CRect(100, 50, 500, 450));
    mine.ShowWindow(SW_SHOW);
    Recorder other;
    other.CreateEx("IT", "VxFrame", WS_OVERLAPPED, CRect(0, 0, 200, 100));
    other.calls.clear();

    WINDOWPLACEMENT wp = PlacementOf(mine);
    ASSERT_TRUE(SetWindowPlacement(other.GetSafeHwnd(), &wp));
    CRect r;
    other.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(100, 50, 500, 450));
    EXPECT_TRUE(other.IsWindowVisible());
    EXPECT_EQ(other.calls, (std::vector<std::string>{"size400x400"}));

    wp.showCmd = SW_HIDE;
    ASSERT_TRUE(SetWindowPlacement(other.GetSafeHwnd(), &wp));
    EXPECT_FALSE(other.IsWindowVisible());

    // A child's place is in its parent's client coordinates, both ways.
    CWnd child;
    child.CreateEx("", "VxChild", WS_CHILD | WS_VISIBLE, CRect(10, 20, 110, 70), &mine, 100);
    wp = PlacementOf(child);
    EXPECT_EQ(CRect(wp.rcNormalPosition), CRect(10, 20, 110, 70));
    ASSERT_TRUE(SetWindowPlacement(child.GetSafeHwnd(), &wp));
    child.GetWindowRect(&r);
    mine.ScreenToClient(&r);
    EXPECT_EQ(r, CRect(10, 20, 110, 70));
}

TEST(WindowPlacement, MinimisedAndMaximisedStatesAreKeptAndReported)
{
    CWnd w;
    w.CreateEx("AT", "VxFrame", WS_OVERLAPPED, CRect(0, 0, 200, 100));
    w.ShowWindow(SW_MINIMIZE);
    EXPECT_TRUE(w.IsIconic());
    EXPECT_EQ(PlacementOf(w).showCmd, static_cast<UINT>(SW_SHOWMINIMIZED));
    w.ShowWindow(SW_SHOW); // showing keeps the state
    EXPECT_TRUE(w.IsIconic());
    w.ShowWindow(SW_SHOWMAXIMIZED);
    EXPECT_FALSE(w.IsIconic());
    EXPECT_TRUE(w.IsZoomed());
    EXPECT_EQ(PlacementOf(w).showCmd, static_cast<UINT>(SW_SHOWMAXIMIZED));
    w.ShowWindow(SW_RESTORE);
    EXPECT_FALSE(w.IsZoomed());
    EXPECT_EQ(PlacementOf(w).showCmd, static_cast<UINT>(SW_SHOWNORMAL));
}
