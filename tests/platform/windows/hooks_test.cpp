#include "platform/windows/cwnd.h"
#include "platform/windows/hooks.h"
#include "platform/windows/lasterror.h"
#include "platform/windows/windowlong.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

std::vector<std::string> g_seen;
HHOOK g_first = nullptr;
HHOOK g_second = nullptr;

class Logger : public CWnd {
public:
    std::vector<UINT> messages;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        messages.push_back(message);
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

LRESULT HookFirst(int code, WPARAM w, LPARAM l)
{
    const auto* cwp = reinterpret_cast<const CWPSTRUCT*>(l);
    if (cwp->message == WM_USER + 1)
        g_seen.push_back("first");
    return CallNextHookEx(g_first, code, w, l);
}

LRESULT HookSecond(int code, WPARAM w, LPARAM l)
{
    const auto* cwp = reinterpret_cast<const CWPSTRUCT*>(l);
    if (cwp->message == WM_USER + 1)
        g_seen.push_back("second");
    return CallNextHookEx(g_second, code, w, l);
}

// Removes itself while it runs and still passes the message on.
LRESULT HookSelfRemoving(int code, WPARAM w, LPARAM l)
{
    g_seen.push_back("self");
    UnhookWindowsHookEx(g_second);
    return CallNextHookEx(g_second, code, w, l);
}

LRESULT HookRet(int, WPARAM, LPARAM l)
{
    const auto* ret = reinterpret_cast<const CWPRETSTRUCT*>(l);
    if (ret->message == WM_GETTEXTLENGTH)
        g_seen.push_back("ret" + std::to_string(ret->lResult));
    return 0;
}

LRESULT HookEatsEscape(int code, WPARAM, LPARAM l)
{
    const auto* msg = reinterpret_cast<const MSG*>(l);
    g_seen.push_back("filter" + std::to_string(code));
    return msg->message == WM_KEYDOWN && msg->wParam == VK_ESCAPE;
}

} // namespace

TEST(Hooks, CallWndProcChainSeesSentMessagesNewestFirst)
{
    g_seen.clear();
    Logger w;
    w.CreateEx("w", "VxLogger");
    g_first = SetWindowsHookExA(WH_CALLWNDPROC, &HookFirst, nullptr, GetCurrentThreadId());
    g_second = SetWindowsHookExA(WH_CALLWNDPROC, &HookSecond, nullptr, GetCurrentThreadId());
    ASSERT_NE(g_first, nullptr);
    ASSERT_NE(g_second, nullptr);
    w.SendMessage(WM_USER + 1);
    EXPECT_EQ(g_seen, (std::vector<std::string>{"second", "first"}));
    EXPECT_EQ(w.messages.back(), WM_USER + 1u) << "the window still gets the message";

    // Posted messages go past the hooks of sent messages.
    g_seen.clear();
    w.PostMessage(WM_USER + 1);
    vx::PumpMessages();
    EXPECT_TRUE(g_seen.empty());
    EXPECT_EQ(w.messages.back(), WM_USER + 1u);

    EXPECT_TRUE(UnhookWindowsHookEx(g_second));
    EXPECT_FALSE(UnhookWindowsHookEx(g_second));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HOOK_HANDLE);
    g_seen.clear();
    w.SendMessage(WM_USER + 1);
    EXPECT_EQ(g_seen, (std::vector<std::string>{"first"}));

    // A hook that removes itself can still pass the message on.
    g_second = SetWindowsHookExA(WH_CALLWNDPROC, &HookSelfRemoving, nullptr, GetCurrentThreadId());
    g_seen.clear();
    w.SendMessage(WM_USER + 1);
    EXPECT_EQ(g_seen, (std::vector<std::string>{"self", "first"}));
    g_seen.clear();
    w.SendMessage(WM_USER + 1);
    EXPECT_EQ(g_seen, (std::vector<std::string>{"first"}));
    UnhookWindowsHookEx(g_first);
}

TEST(Hooks, ReturnHooksSeeTheAnswerAndOtherThreadsHooksStayOut)
{
    g_seen.clear();
    Logger w;
    w.CreateEx("abcd", "VxLogger");
    HHOOK ret = SetWindowsHookExA(WH_CALLWNDPROCRET, &HookRet, nullptr, GetCurrentThreadId());
    w.SendMessage(WM_GETTEXTLENGTH);
    EXPECT_EQ(g_seen, (std::vector<std::string>{"ret4"}));
    UnhookWindowsHookEx(ret);

    // A hook installed for another thread does not see this thread's messages.
    DWORD other = 0;
    std::thread t([&] { other = GetCurrentThreadId(); });
    t.join();
    ASSERT_NE(other, GetCurrentThreadId());
    g_seen.clear();
    g_first = SetWindowsHookExA(WH_CALLWNDPROC, &HookFirst, nullptr, other);
    w.SendMessage(WM_USER + 1);
    EXPECT_TRUE(g_seen.empty());
    UnhookWindowsHookEx(g_first);
}

TEST(Hooks, BadRequestsSetTheLastError)
{
    EXPECT_EQ(SetWindowsHookExA(2, &HookFirst, nullptr, GetCurrentThreadId()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HOOK_FILTER);
    EXPECT_EQ(SetWindowsHookExA(WH_CALLWNDPROC, nullptr, nullptr, GetCurrentThreadId()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FILTER_PROC);
    EXPECT_EQ(SetWindowsHookExA(WH_CALLWNDPROC, &HookFirst, nullptr, 0), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_HOOK_NEEDS_HMOD);
}

TEST(Hooks, MessageFiltersCanTakeAModalLoopsInput)
{
    g_seen.clear();
    HHOOK filter = SetWindowsHookExA(WH_MSGFILTER, &HookEatsEscape, nullptr, GetCurrentThreadId());
    MSG escape{};
    escape.message = WM_KEYDOWN;
    escape.wParam = VK_ESCAPE;
    MSG down = escape;
    down.wParam = VK_DOWN;
    EXPECT_TRUE(CallMsgFilterA(&escape, MSGF_MENU));
    EXPECT_FALSE(CallMsgFilterA(&down, MSGF_MENU));
    EXPECT_EQ(g_seen, (std::vector<std::string>{"filter2", "filter2"}));
    UnhookWindowsHookEx(filter);
    EXPECT_FALSE(CallMsgFilterA(&escape, MSGF_MENU));
}
