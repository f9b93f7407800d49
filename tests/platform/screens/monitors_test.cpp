// The screens of the display: the metrics they decide and the monitor
// functions, on one screen and on two side by side of different sizes.
#include "platform/windows/cwnd.h"
#include "platform/screens/monitors.h"
#include "platform/windows/sysmetrics.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// A primary screen of 1280 x 1024 with its task bar, and a 1600 x 1200
// screen to its right.
struct TwoScreens : ::testing::Test {
    TwoScreens()
    {
        vx::SetScreens({{{0, 0, 1280, 1024}, {0, 0, 1280, 994}, true, ""},
                        {{1280, 0, 2880, 1200}, {1280, 0, 2880, 1200}, false, ""}});
    }
    ~TwoScreens() override { vx::SetScreens({}); }

    static CRect ScreenOf(HMONITOR m)
    {
        MONITORINFO info{sizeof info, {}, {}, 0};
        return GetMonitorInfoA(m, &info) ? CRect(info.rcMonitor) : CRect(-1, -1, -1, -1);
    }
};

TEST(Screens, DefaultIsTheClassicDesktop)
{
    vx::SetScreens({});
    EXPECT_EQ(GetSystemMetrics(SM_CMONITORS), 1);
    EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), vx::FixedSystemMetric(SM_CXSCREEN));
    EXPECT_EQ(GetSystemMetrics(SM_CYSCREEN), vx::FixedSystemMetric(SM_CYSCREEN));
    EXPECT_EQ(GetSystemMetrics(SM_CYFULLSCREEN), vx::FixedSystemMetric(SM_CYFULLSCREEN));
    EXPECT_EQ(GetSystemMetrics(SM_CXVIRTUALSCREEN), 1280);
    EXPECT_EQ(GetSystemMetrics(SM_XVIRTUALSCREEN), 0);
    MONITORINFOEXA info{};
    info.cbSize = sizeof info;
    ASSERT_TRUE(GetMonitorInfoA(MonitorFromPoint(POINT{5, 5}, MONITOR_DEFAULTTONULL), &info));
    EXPECT_EQ(info.dwFlags, MONITORINFOF_PRIMARY);
    EXPECT_STREQ(info.szDevice, "\\\\.\\DISPLAY1");
}

TEST_F(TwoScreens, MetricsDescribeThePrimaryAndTheWholeDesktop)
{
    EXPECT_EQ(GetSystemMetrics(SM_CMONITORS), 2);
    EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), 1280);
    EXPECT_EQ(GetSystemMetrics(SM_CYSCREEN), 1024);
    EXPECT_EQ(GetSystemMetrics(SM_XVIRTUALSCREEN), 0);
    EXPECT_EQ(GetSystemMetrics(SM_YVIRTUALSCREEN), 0);
    EXPECT_EQ(GetSystemMetrics(SM_CXVIRTUALSCREEN), 2880);
    EXPECT_EQ(GetSystemMetrics(SM_CYVIRTUALSCREEN), 1200);
    EXPECT_EQ(GetSystemMetrics(SM_SAMEDISPLAYFORMAT), 1);
    EXPECT_EQ(GetSystemMetrics(SM_CXVSCROLL), vx::FixedSystemMetric(SM_CXVSCROLL)); // not the screens'
}

TEST_F(TwoScreens, MonitorFromPointRectAndWindowWithTheirFallbacks)
{
    const CRect first(0, 0, 1280, 1024);
    const CRect second(1280, 0, 2880, 1200);
    EXPECT_EQ(ScreenOf(MonitorFromPoint(POINT{1279, 10}, MONITOR_DEFAULTTONULL)), first);
    EXPECT_EQ(ScreenOf(MonitorFromPoint(POINT{1280, 10}, MONITOR_DEFAULTTONULL)), second);
    // Below the smaller screen, beside the larger one.
    EXPECT_EQ(MonitorFromPoint(POINT{100, 1100}, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_EQ(ScreenOf(MonitorFromPoint(POINT{100, 1100}, MONITOR_DEFAULTTOPRIMARY)), first);
    EXPECT_EQ(ScreenOf(MonitorFromPoint(POINT{1200, 1150}, MONITOR_DEFAULTTONEAREST)), second);
    EXPECT_EQ(ScreenOf(MonitorFromPoint(POINT{-500, 10}, MONITOR_DEFAULTTONEAREST)), first);

    const CRect mostlyRight(1200, 100, 1500, 200);
    EXPECT_EQ(ScreenOf(MonitorFromRect(&mostlyRight, MONITOR_DEFAULTTONULL)), second);
    const CRect mostlyLeft(1000, 100, 1300, 200);
    EXPECT_EQ(ScreenOf(MonitorFromRect(&mostlyLeft, MONITOR_DEFAULTTONULL)), first);
    const CRect off(5000, 5000, 5100, 5100);
    EXPECT_EQ(MonitorFromRect(&off, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_EQ(ScreenOf(MonitorFromRect(&off, MONITOR_DEFAULTTONEAREST)), second);
    EXPECT_EQ(MonitorFromRect(nullptr, MONITOR_DEFAULTTONEAREST), nullptr);

    CWnd window;
    window.CreateEx("w", "W", WS_POPUP, CRect(2000, 300, 2200, 400));
    EXPECT_EQ(ScreenOf(MonitorFromWindow(window.m_hWnd, MONITOR_DEFAULTTONULL)), second);
    EXPECT_EQ(MonitorFromWindow(nullptr, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_EQ(ScreenOf(MonitorFromWindow(nullptr, MONITOR_DEFAULTTOPRIMARY)), first);
}

TEST_F(TwoScreens, InfoTellsThePrimaryAndTheWorkAreaAndStaleHandlesAreRefused)
{
    HMONITOR primary = MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTONULL);
    HMONITOR other = MonitorFromPoint(POINT{2000, 0}, MONITOR_DEFAULTTONULL);
    MONITORINFO info{sizeof info, {}, {}, 0};
    ASSERT_TRUE(GetMonitorInfoA(primary, &info));
    EXPECT_EQ(info.dwFlags, MONITORINFOF_PRIMARY);
    EXPECT_EQ(CRect(info.rcWork), CRect(0, 0, 1280, 994));
    ASSERT_TRUE(GetMonitorInfoA(other, &info));
    EXPECT_EQ(info.dwFlags, 0u);
    info.cbSize = 3;
    EXPECT_FALSE(GetMonitorInfoA(other, &info));
    info.cbSize = sizeof info;
    EXPECT_FALSE(GetMonitorInfoA(nullptr, &info));
    // The screens changed: old handles name nothing.
    vx::SetScreens({{{0, 0, 800, 600}, {}, false, ""}});
    EXPECT_FALSE(GetMonitorInfoA(other, &info));
    ASSERT_TRUE(GetMonitorInfoA(MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTONULL), &info));
    EXPECT_EQ(info.dwFlags, MONITORINFOF_PRIMARY); // the first is primary when none is
    EXPECT_EQ(CRect(info.rcWork), CRect(0, 0, 800, 600)); // no work area given: the whole screen
}

TEST_F(TwoScreens, EnumerationVisitsTheScreensThatMeetTheClip)
{
    struct Seen {
        std::vector<CRect> parts;
        int stopAfter = 99;
    } seen;
    auto proc = [](HMONITOR, HDC, LPRECT r, LPARAM data) -> BOOL {
        auto* s = reinterpret_cast<Seen*>(data);
        s->parts.emplace_back(*r);
        return static_cast<int>(s->parts.size()) < s->stopAfter;
    };
    EXPECT_TRUE(EnumDisplayMonitors(nullptr, nullptr, proc, reinterpret_cast<LPARAM>(&seen)));
    EXPECT_EQ(seen.parts, (std::vector<CRect>{CRect(0, 0, 1280, 1024), CRect(1280, 0, 2880, 1200)}));
    seen.parts.clear();
    const CRect clip(1200, 1000, 1400, 1100);
    EnumDisplayMonitors(nullptr, &clip, proc, reinterpret_cast<LPARAM>(&seen));
    EXPECT_EQ(seen.parts, (std::vector<CRect>{CRect(1200, 1000, 1280, 1024), CRect(1280, 1000, 1400, 1100)}));
    seen.parts.clear();
    seen.stopAfter = 1;
    EnumDisplayMonitors(nullptr, nullptr, proc, reinterpret_cast<LPARAM>(&seen));
    EXPECT_EQ(seen.parts.size(), 1u);
    EXPECT_FALSE(EnumDisplayMonitors(nullptr, nullptr, nullptr, 0));
}

} // namespace

namespace {

TEST_F(TwoScreens, CursorClipDefaultsToTheDesktopAndHoldsTheCursor)
{
    RECT clip{};
    ASSERT_TRUE(GetClipCursor(&clip));
    EXPECT_EQ(CRect(clip), CRect(0, 0, 2880, 1200));
    const RECT box{100, 100, 200, 150};
    ClipCursor(&box);
    SetCursorPos(500, 20);
    POINT at{};
    GetCursorPos(&at);
    EXPECT_EQ(CPoint(at), CPoint(199, 100));
    ASSERT_TRUE(GetClipCursor(&clip));
    EXPECT_EQ(CRect(clip), CRect(box));
    ClipCursor(nullptr);
    SetCursorPos(2500, 1000);
    GetCursorPos(&at);
    EXPECT_EQ(CPoint(at), CPoint(2500, 1000));
    EXPECT_FALSE(GetClipCursor(nullptr));
}

} // namespace
