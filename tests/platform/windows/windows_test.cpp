#include "platform/windows/messagepump.h"
#include "platform/windows/windows.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

#include <thread>
#include <vector>

namespace {

struct Recorder : vx::MessageTarget {
    std::vector<MSG> seen;
    LRESULT answer = 0;
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        MSG m{};
        m.message = message;
        m.wParam = wParam;
        m.lParam = lParam;
        seen.push_back(m);
        return answer;
    }
    int Count(UINT message) const
    {
        int n = 0;
        for (const MSG& m : seen)
            n += m.message == message;
        return n;
    }
};

bool Readable(int fd)
{
    pollfd p{fd, POLLIN, 0};
    return poll(&p, 1, 0) == 1;
}

class WindowTable : public ::testing::Test {
protected:
    void TearDown() override { vx::ResetMessageQueue(); }
};

} // namespace

TEST_F(WindowTable, SendReachesTheTargetAtOnce)
{
    Recorder r;
    r.answer = 77;
    HWND h = vx::RegisterWindow(&r, {"VEXAL 5.5 Test", "VxTest"});
    EXPECT_TRUE(IsWindow(h));
    EXPECT_EQ(vx::HandleProcess(h), getpid());
    EXPECT_EQ(SendMessageA(h, 0x405, 10, 3), 77);
    ASSERT_EQ(r.seen.size(), 1u);
    EXPECT_EQ(r.seen[0].wParam, 10u);
    vx::UnregisterWindow(h);
    EXPECT_FALSE(IsWindow(h));
    EXPECT_EQ(SendMessageA(h, 0x405, 10, 3), 0);
    EXPECT_EQ(r.seen.size(), 1u);
    EXPECT_FALSE(IsWindow(nullptr));
}

// Sends go back and forth between windows that the table remembers; each
// still reaches its own target, and a window that went reaches nobody.
TEST_F(WindowTable, SendsBetweenSeveralWindowsReachEachTargetUntilItGoes)
{
    Recorder r[3];
    HWND h[3];
    for (int i = 0; i < 3; ++i) {
        r[i].answer = 10 + i;
        h[i] = vx::RegisterWindow(&r[i], {"w", "c"});
    }
    for (int round = 0; round < 4; ++round) {
        for (int i : {0, 1, 0, 2, 1}) {
            EXPECT_EQ(SendMessageA(h[i], WM_USER, static_cast<WPARAM>(i), 0), 10 + i);
            ASSERT_FALSE(r[i].seen.empty());
            EXPECT_EQ(r[i].seen.back().wParam, static_cast<WPARAM>(i));
        }
    }
    EXPECT_EQ(r[0].Count(WM_USER), 8);
    EXPECT_EQ(r[1].Count(WM_USER), 8);
    EXPECT_EQ(r[2].Count(WM_USER), 4);
    SendMessageA(h[0], WM_USER, 0, 0);
    SendMessageA(h[1], WM_USER, 1, 0);
    vx::UnregisterWindow(h[1]);
    EXPECT_EQ(SendMessageA(h[1], WM_USER, 1, 0), 0);
    EXPECT_EQ(r[1].Count(WM_USER), 9);
    EXPECT_EQ(SendMessageA(h[0], WM_USER, 0, 0), 10);
    vx::UnregisterWindow(h[0]);
    vx::UnregisterWindow(h[2]);
}

TEST_F(WindowTable, PostedMessagesWaitForThePump)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    const int fd = vx::MessagePumpFd();
    EXPECT_FALSE(Readable(fd));
    EXPECT_TRUE(PostMessageA(h, WM_USER + 1, 1, 2));
    EXPECT_TRUE(PostMessageA(h, WM_USER + 2, 3, 4));
    EXPECT_TRUE(r.seen.empty());
    EXPECT_TRUE(Readable(fd));
    EXPECT_EQ(vx::PumpMessages(), 2);
    ASSERT_EQ(r.seen.size(), 2u);
    EXPECT_EQ(r.seen[0].message, WM_USER + 1);
    EXPECT_EQ(r.seen[1].message, WM_USER + 2);
    EXPECT_FALSE(Readable(fd));
    vx::UnregisterWindow(h);
    EXPECT_FALSE(PostMessageA(h, WM_USER, 0, 0));
}

TEST_F(WindowTable, PostFromAnotherThreadWakesThePump)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    std::thread t([h] { PostMessageA(h, WM_CLOSE, 0, 0); });
    t.join();
    EXPECT_TRUE(vx::PumpFor(1000, [&] { return r.Count(WM_CLOSE) == 1; }));
    vx::UnregisterWindow(h);
}

TEST_F(WindowTable, TimersFireThroughThePumpUntilKilled)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    EXPECT_EQ(SetTimer(h, 31, 10, nullptr), 31u);
    EXPECT_EQ(SetTimer(h, 31, 10, nullptr), 31u) << "a running id restarts";
    EXPECT_TRUE(vx::PumpFor(2000, [&] { return r.Count(WM_TIMER) >= 3; }));
    EXPECT_TRUE(KillTimer(h, 31));
    EXPECT_FALSE(KillTimer(h, 31));
    const int fired = r.Count(WM_TIMER);
    vx::PumpFor(60);
    EXPECT_EQ(r.Count(WM_TIMER), fired);
    EXPECT_EQ(SetTimer(reinterpret_cast<HWND>(0x7), 31, 10, nullptr), 0u);
    vx::UnregisterWindow(h);
}

TEST_F(WindowTable, RemovingAWindowDropsItsTimersAndMessages)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    SetTimer(h, 40, 0, nullptr);
    PostMessageA(h, WM_USER, 0, 0);
    vx::UnregisterWindow(h);
    vx::PumpFor(30);
    EXPECT_TRUE(r.seen.empty());
}

namespace {
int g_procCalls = 0;
void CALLBACK_Proc(HWND, UINT, UINT_PTR, DWORD)
{
    ++g_procCalls;
}
} // namespace

TEST_F(WindowTable, TimerProcedureIsCalledInsteadOfTheWindow)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    g_procCalls = 0;
    SetTimer(h, 5, 1, CALLBACK_Proc);
    EXPECT_TRUE(vx::PumpFor(1000, [] { return g_procCalls > 0; }));
    EXPECT_EQ(r.Count(WM_TIMER), 0);
    vx::UnregisterWindow(h);
}

TEST_F(WindowTable, QuitEndsTheLoopWithItsCode)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    PostMessageA(h, WM_USER, 0, 0);
    PostQuitMessage(3);
    EXPECT_EQ(vx::RunMessageLoop(), 3);
    EXPECT_EQ(r.Count(WM_USER), 1);
    vx::UnregisterWindow(h);
}

TEST_F(WindowTable, EnumAndTextQueries)
{
    Recorder a, b, child;
    HWND ha = vx::RegisterWindow(&a, {"VEXAL 5.5 Plan", "VxFrame"});
    HWND hb = vx::RegisterWindow(&b, {"VEXAL 5.5 Instalacja Plan", "VxFrame"});
    vx::WindowInfo childInfo{"child", "Button", ha, false};
    HWND hc = vx::RegisterWindow(&child, childInfo);
    std::vector<HWND> seen;
    EnumWindows(
        [](HWND h, LPARAM l) {
            reinterpret_cast<std::vector<HWND>*>(l)->push_back(h);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&seen));
    EXPECT_NE(std::find(seen.begin(), seen.end(), ha), seen.end());
    EXPECT_NE(std::find(seen.begin(), seen.end(), hb), seen.end());
    EXPECT_EQ(std::find(seen.begin(), seen.end(), hc), seen.end()) << "only top-level windows";
    char text[10];
    EXPECT_EQ(GetWindowTextA(ha, text, sizeof text), 9);
    EXPECT_STREQ(text, "VEXAL 5.5");
    EXPECT_EQ(GetClassNameA(hb, text, sizeof text), 7);
    EXPECT_STREQ(text, "VxFrame");
    EXPECT_EQ(GetWindowTextA(nullptr, text, sizeof text), 0);
    EXPECT_STREQ(text, "");
    DWORD pid = 0;
    GetWindowThreadProcessId(hb, &pid);
    EXPECT_EQ(pid, static_cast<DWORD>(getpid()));
    EXPECT_EQ(GetParent(hc), ha);
    for (HWND h : {ha, hb, hc})
        vx::UnregisterWindow(h);
}

TEST_F(WindowTable, ShowWindowTellsTheWindowAndReportsTheOldState)
{
    Recorder r;
    HWND h = vx::RegisterWindow(&r, {"w", "c"});
    EXPECT_FALSE(IsWindowVisible(h));
    EXPECT_FALSE(ShowWindow(h, SW_SHOW));
    EXPECT_TRUE(IsWindowVisible(h));
    EXPECT_TRUE(ShowWindow(h, SW_HIDE));
    EXPECT_EQ(r.Count(WM_SHOWWINDOW), 2);
    EXPECT_TRUE(DestroyWindow(h));
    EXPECT_EQ(r.Count(WM_DESTROY), 1);
    EXPECT_FALSE(IsWindow(h));
    EXPECT_FALSE(DestroyWindow(h));
}

TEST(RegisterWindowMessage, OneNumberPerNameWithoutRegardToCase)
{
    const UINT a = RegisterWindowMessageA("VXW_PREVIEW");
    EXPECT_GE(a, 0xC000u);
    EXPECT_LE(a, 0xFFFFu);
    EXPECT_EQ(RegisterWindowMessageA("vxw_preview"), a);
    EXPECT_NE(RegisterWindowMessageA("VEXALIT_PREVIEW"), a);
    EXPECT_EQ(RegisterWindowMessageA(""), 0u);
    EXPECT_EQ(RegisterWindowMessageA(nullptr), 0u);
}
