#include "platform/windows/hooks.h"

#include "platform/windows/lasterror.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <mutex>
#include <vector>

namespace {

struct Hook {
    std::uintptr_t serial = 0;
    int kind = 0;
    DWORD thread = 0; // 0: every thread
    HOOKPROC proc = nullptr;
    bool alive = true;
};

// Removed hooks stay listed (dead) while hook procedures run, so that a hook
// that removes itself can still pass the message on.
struct Chains {
    std::mutex lock;
    std::vector<Hook> hooks; // in installation order
    std::uintptr_t nextSerial = 1;
};

Chains& TheChains()
{
    static auto* chains = new Chains;
    return *chains;
}

constexpr int kKinds[] = {WH_MSGFILTER, WH_CALLWNDPROC, WH_SYSMSGFILTER, WH_CALLWNDPROCRET};

int Slot(int kind)
{
    for (int i = 0; i < 4; ++i) {
        if (kKinds[i] == kind)
            return i;
    }
    return -1;
}

// Hook procedures running now: dead hooks are dropped only when none is,
// since a running one may still pass its message on.
std::atomic<int> g_running{0};

LRESULT Run(HOOKPROC proc, int code, WPARAM wParam, LPARAM lParam)
{
    ++g_running;
    const LRESULT result = proc(code, wParam, lParam);
    --g_running;
    return result;
}

// Live hooks per kind, so that sending a message costs one atomic read
// while no hook is installed.
std::array<std::atomic<int>, 4>& LiveCounts()
{
    static std::array<std::atomic<int>, 4> counts{};
    return counts;
}

// The newest live hook of the kind for this thread that is older than
// `before` (0: any).
Hook Next(int kind, std::uintptr_t before)
{
    const DWORD self = GetCurrentThreadId();
    Chains& c = TheChains();
    std::lock_guard lock(c.lock);
    for (auto it = c.hooks.rbegin(); it != c.hooks.rend(); ++it) {
        if (before && it->serial >= before)
            continue;
        if (it->alive && it->kind == kind && (it->thread == 0 || it->thread == self))
            return *it;
    }
    return Hook{};
}

} // namespace

DWORD GetCurrentThreadId()
{
    thread_local const DWORD id = static_cast<DWORD>(syscall(SYS_gettid));
    return id;
}

HHOOK SetWindowsHookExA(int kind, HOOKPROC proc, HINSTANCE module, DWORD threadId)
{
    const int slot = Slot(kind);
    if (slot < 0) {
        SetLastError(ERROR_INVALID_HOOK_FILTER);
        return nullptr;
    }
    if (!proc) {
        SetLastError(ERROR_INVALID_FILTER_PROC);
        return nullptr;
    }
    if (threadId == 0 && !module) {
        SetLastError(ERROR_HOOK_NEEDS_HMOD);
        return nullptr;
    }
    Chains& c = TheChains();
    std::lock_guard lock(c.lock);
    Hook h;
    h.serial = c.nextSerial++;
    h.kind = kind;
    h.thread = threadId;
    h.proc = proc;
    c.hooks.push_back(h);
    ++LiveCounts()[static_cast<std::size_t>(slot)];
    return reinterpret_cast<HHOOK>(h.serial);
}

BOOL UnhookWindowsHookEx(HHOOK hook)
{
    const auto serial = reinterpret_cast<std::uintptr_t>(hook);
    Chains& c = TheChains();
    std::lock_guard lock(c.lock);
    for (Hook& h : c.hooks) {
        if (h.serial == serial && h.alive) {
            h.alive = false;
            --LiveCounts()[static_cast<std::size_t>(Slot(h.kind))];
            if (g_running == 0)
                std::erase_if(c.hooks, [](const Hook& dead) { return !dead.alive; });
            return TRUE;
        }
    }
    SetLastError(ERROR_INVALID_HOOK_HANDLE);
    return FALSE;
}

LRESULT CallNextHookEx(HHOOK hook, int code, WPARAM wParam, LPARAM lParam)
{
    const auto serial = reinterpret_cast<std::uintptr_t>(hook);
    int kind = 0;
    {
        Chains& c = TheChains();
        std::lock_guard lock(c.lock);
        bool found = false;
        for (const Hook& h : c.hooks) {
            if (h.serial == serial) {
                kind = h.kind;
                found = true;
                break;
            }
        }
        if (!found)
            return 0;
    }
    const Hook next = Next(kind, serial);
    return next.proc ? Run(next.proc, code, wParam, lParam) : 0;
}

BOOL CallMsgFilterA(MSG* msg, int code)
{
    if (!msg)
        return FALSE;
    const auto l = reinterpret_cast<LPARAM>(msg);
    if (vx::HasHooks(WH_SYSMSGFILTER) && vx::CallHooks(WH_SYSMSGFILTER, code, 0, l))
        return TRUE;
    return vx::HasHooks(WH_MSGFILTER) && vx::CallHooks(WH_MSGFILTER, code, 0, l) ? TRUE : FALSE;
}

namespace vx {

bool HasHooks(int kind)
{
    const int slot = Slot(kind);
    if (slot < 0 || LiveCounts()[static_cast<std::size_t>(slot)].load(std::memory_order_relaxed) == 0)
        return false;
    return Next(kind, 0).proc != nullptr;
}

LRESULT CallHooks(int kind, int code, WPARAM wParam, LPARAM lParam)
{
    const Hook first = Next(kind, 0);
    return first.proc ? Run(first.proc, code, wParam, lParam) : 0;
}

} // namespace vx
