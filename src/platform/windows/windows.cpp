#include "platform/windows/windows.h"

#include "platform/windows/hooks.h"
#include "platform/windows/lasterror.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/messagequeue_p.h"
#include "platform/windows/windowlong.h"
#include "platform/windows/windowtable_p.h"
#include "platform/framework/util_p.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <map>
#include <mutex>
#include <unordered_map>

namespace vx {
namespace {

struct Entry {
    MessageTarget* target = nullptr;
    WindowInfo info;
    detail::WindowExtras extras;
};

struct Table {
    std::mutex lock;
    std::map<std::uint32_t, Entry> windows; // by serial: creation order
    std::uint32_t nextSerial = 1;
    RemoteWindows* remote = nullptr;
    std::unordered_map<std::string, UINT> messages;
    // The last two windows found: a message and its answer mostly go back
    // and forth between two windows (a control and its parent).
    std::uint32_t recentSerial[2] = {0, 0};
    Entry* recentEntry[2] = {nullptr, nullptr};
    unsigned recentNext = 0;
    // The procedures of those two windows again, for sending without the
    // lock: written under the lock like a sequence lock (the version is odd
    // while a write is under way), read by any thread that then checks the
    // version did not move. Emptied when a window goes or its procedure
    // changes.
    std::atomic<std::uint64_t> fastVersion{0};
    std::atomic<HWND> fastHandle[2] = {nullptr, nullptr};
    std::atomic<MessageTarget*> fastTarget[2] = {nullptr, nullptr};
    std::atomic<WNDPROC> fastProc[2] = {nullptr, nullptr};
    unsigned fastNext = 0; // under the lock
};

std::atomic<pid_t> g_pid{0};

void RememberProcessId()
{
    g_pid.store(getpid(), std::memory_order_relaxed);
}

Table& TheTable()
{
    static Table* table = new Table; // outlives static destructors of hosts
    return *table;
}

std::uint64_t Bits(HWND h)
{
    return reinterpret_cast<std::uintptr_t>(h);
}

HWND MakeHandle(pid_t pid, std::uint32_t serial)
{
    return reinterpret_cast<HWND>((static_cast<std::uint64_t>(static_cast<std::uint32_t>(pid)) << 32) | serial);
}

std::uint32_t Serial(HWND h)
{
    return static_cast<std::uint32_t>(Bits(h) & 0xFFFFFFFFu);
}

// The entry of a local handle; call with the lock held.
Entry* FindLocked(Table& t, HWND h)
{
    if (!IsLocalHandle(h))
        return nullptr;
    const std::uint32_t serial = Serial(h);
    for (int i = 0; i < 2; ++i) {
        if (t.recentSerial[i] == serial && t.recentEntry[i])
            return t.recentEntry[i];
    }
    auto it = t.windows.find(serial);
    if (it == t.windows.end())
        return nullptr;
    // Map nodes stay where they are until erased, so the pointer keeps.
    const unsigned slot = t.recentNext++ & 1u;
    t.recentSerial[slot] = serial;
    t.recentEntry[slot] = &it->second;
    return &it->second;
}

// Call with the lock held: a write to the lock-free copy of the procedures.
template <typename Write>
void WriteFast(Table& t, Write write)
{
    t.fastVersion.fetch_add(1, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
    write();
    t.fastVersion.fetch_add(1, std::memory_order_release);
}

void RememberFast(Table& t, HWND h, MessageTarget* target, WNDPROC proc)
{
    for (int i = 0; i < 2; ++i) {
        if (t.fastHandle[i].load(std::memory_order_relaxed) == h)
            return;
    }
    WriteFast(t, [&] {
        const unsigned slot = t.fastNext++ & 1u;
        t.fastHandle[slot].store(h, std::memory_order_relaxed);
        t.fastTarget[slot].store(target, std::memory_order_relaxed);
        t.fastProc[slot].store(proc, std::memory_order_relaxed);
    });
}

void ForgetFast(Table& t)
{
    WriteFast(t, [&] {
        for (int i = 0; i < 2; ++i)
            t.fastHandle[i].store(nullptr, std::memory_order_relaxed);
    });
}

// The window's object and procedure without the lock, if it is one of the
// two remembered; false sends the caller to the table.
bool FindFast(const Table& t, HWND h, MessageTarget*& target, WNDPROC& proc)
{
    const std::uint64_t before = t.fastVersion.load(std::memory_order_acquire);
    if (before & 1u)
        return false;
    bool found = false;
    for (int i = 0; i < 2 && !found; ++i) {
        if (t.fastHandle[i].load(std::memory_order_relaxed) == h) {
            target = t.fastTarget[i].load(std::memory_order_relaxed);
            proc = t.fastProc[i].load(std::memory_order_relaxed);
            found = true;
        }
    }
    std::atomic_thread_fence(std::memory_order_acquire);
    return found && t.fastVersion.load(std::memory_order_relaxed) == before;
}

int CopyText(const std::string& text, char* out, int maxCount)
{
    if (!out || maxCount <= 0)
        return 0;
    const int n = std::min(static_cast<int>(text.size()), maxCount - 1);
    std::memcpy(out, text.data(), static_cast<std::size_t>(n));
    out[n] = 0;
    return n;
}

bool DescribeAny(HWND h, WindowRecord& out)
{
    Table& t = TheTable();
    RemoteWindows* remote;
    {
        std::lock_guard lock(t.lock);
        if (Entry* e = FindLocked(t, h)) {
            out.hwnd = h;
            out.title = e->info.title;
            out.className = e->info.className;
            out.processId = detail::CurrentProcessId();
            return true;
        }
        remote = t.remote;
    }
    return !IsLocalHandle(h) && remote && remote->Describe(h, out);
}

} // namespace

namespace {

// This process's top-level windows in creation order, and the bus, read
// under one lock.
std::vector<HWND> LocalTopLevelWindows(RemoteWindows*& remote)
{
    std::vector<HWND> handles;
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    for (const auto& [serial, e] : t.windows) {
        if (!e.info.parent)
            handles.push_back(MakeHandle(detail::CurrentProcessId(), serial));
    }
    remote = t.remote;
    return handles;
}

} // namespace

pid_t detail::CurrentProcessId()
{
    pid_t pid = g_pid.load(std::memory_order_relaxed);
    if (pid == 0) {
        static const int once = pthread_atfork(nullptr, nullptr, RememberProcessId);
        (void)once;
        RememberProcessId();
        pid = g_pid.load(std::memory_order_relaxed);
    }
    return pid;
}

MessageTarget::~MessageTarget() = default;

void MessageTarget::ApplyShowState(int) {}

bool MessageTarget::ReadWindowLong(int, LONG_PTR&) const
{
    return false;
}

bool MessageTarget::WriteWindowLong(int, LONG_PTR)
{
    return false;
}

LRESULT MessageTarget::DefaultMessage(UINT, WPARAM, LPARAM)
{
    return 0;
}
RemoteWindows::~RemoteWindows() = default;

bool RemoteWindows::Notify(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!IsAlive(hwnd))
        return false;
    Send(hwnd, message, wParam, lParam);
    return true;
}

std::vector<HWND> RemoteWindows::Handles()
{
    std::vector<HWND> handles;
    for (const WindowRecord& r : Enumerate())
        handles.push_back(r.hwnd);
    return handles;
}

BOOL RemoteWindows::Show(HWND, int)
{
    return FALSE;
}

void RemoteWindows::LocalWindowChanged(HWND) {}

HWND RegisterWindow(MessageTarget* target, const WindowInfo& info)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    const std::uint32_t serial = t.nextSerial++;
    Entry& e = t.windows[serial];
    e.target = target;
    e.info = info;
    return MakeHandle(detail::CurrentProcessId(), serial);
}

void UnregisterWindow(HWND hwnd)
{
    Table& t = TheTable();
    {
        std::lock_guard lock(t.lock);
        if (!FindLocked(t, hwnd))
            return;
        const std::uint32_t serial = Serial(hwnd);
        for (int i = 0; i < 2; ++i) {
            if (t.recentSerial[i] == serial) {
                t.recentSerial[i] = 0;
                t.recentEntry[i] = nullptr;
            }
        }
        ForgetFast(t);
        t.windows.erase(serial);
    }
    detail::DropWindowMessages(hwnd);
    if (RemoteWindows* remote = GetRemoteWindows())
        remote->LocalWindowChanged(hwnd);
}

MessageTarget* FindTarget(HWND hwnd)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Entry* e = FindLocked(t, hwnd);
    return e ? e->target : nullptr;
}

bool detail::SetParentEntry(HWND hwnd, HWND parent)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Entry* e = FindLocked(t, hwnd);
    if (!e)
        return false;
    e->info.parent = parent;
    return true;
}

bool detail::WithWindow(HWND hwnd, const std::function<void(MessageTarget*, WindowExtras&)>& fn)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Entry* e = FindLocked(t, hwnd);
    if (!e)
        return false;
    const WNDPROC before = e->extras.proc;
    fn(e->target, e->extras);
    if (e->extras.proc != before)
        ForgetFast(t);
    return true;
}

bool detail::ProcedureOf(HWND hwnd, MessageTarget*& target, WNDPROC& proc)
{
    Table& t = TheTable();
    // A handle of another process (or of this one before a fork) is never
    // taken from the copy, as the table would not find it either.
    if (IsLocalHandle(hwnd) && FindFast(t, hwnd, target, proc))
        return true;
    std::lock_guard lock(t.lock);
    Entry* e = FindLocked(t, hwnd);
    if (!e)
        return false;
    target = e->target;
    proc = e->extras.proc;
    RememberFast(t, hwnd, target, proc);
    return true;
}

LRESULT detail::Deliver(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, bool hooks)
{
    MessageTarget* target = nullptr;
    WNDPROC proc = nullptr;
    if (!ProcedureOf(hwnd, target, proc))
        return 0;
    if (hooks && HasHooks(WH_CALLWNDPROC)) {
        CWPSTRUCT cwp{lParam, wParam, message, hwnd};
        CallHooks(WH_CALLWNDPROC, HC_ACTION, 1, reinterpret_cast<LPARAM>(&cwp));
        // A hook may have subclassed or destroyed the window.
        if (!ProcedureOf(hwnd, target, proc))
            return 0;
    }
    const LRESULT result =
        proc == &ObjectWindowProc ? target->HandleMessage(message, wParam, lParam) : proc(hwnd, message, wParam, lParam);
    if (hooks && HasHooks(WH_CALLWNDPROCRET)) {
        CWPRETSTRUCT ret{result, lParam, wParam, message, hwnd};
        CallHooks(WH_CALLWNDPROCRET, HC_ACTION, 1, reinterpret_cast<LPARAM>(&ret));
    }
    return result;
}

LRESULT ObjectWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    MessageTarget* target = FindTarget(hwnd);
    return target ? target->HandleMessage(message, wParam, lParam) : 0;
}

void SetWindowVisible(HWND hwnd, bool visible)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    if (Entry* e = FindLocked(t, hwnd))
        e->info.visible = visible;
}

void SetWindowTitle(HWND hwnd, const char* title)
{
    Table& t = TheTable();
    RemoteWindows* remote;
    {
        std::lock_guard lock(t.lock);
        Entry* e = FindLocked(t, hwnd);
        if (!e)
            return;
        e->info.title = title ? title : "";
        remote = t.remote;
    }
    if (remote)
        remote->LocalWindowChanged(hwnd);
}

pid_t HandleProcess(HWND hwnd)
{
    return static_cast<pid_t>(Bits(hwnd) >> 32);
}

bool IsLocalHandle(HWND hwnd)
{
    return hwnd && hwnd != HWND_BROADCAST && HandleProcess(hwnd) == detail::CurrentProcessId();
}

void SetRemoteWindows(RemoteWindows* remote)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    t.remote = remote;
}

RemoteWindows* GetRemoteWindows()
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    return t.remote;
}

} // namespace vx

using namespace vx;

LRESULT SendMessageA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (hwnd == HWND_BROADCAST) {
        RemoteWindows* remote = nullptr;
        const std::vector<HWND> local = LocalTopLevelWindows(remote);
        LRESULT first = 0;
        const auto keep = [&first](LRESULT answer) {
            if (!first)
                first = answer;
        };
        for (HWND h : local)
            keep(SendMessageA(h, message, wParam, lParam));
        if (remote) {
            for (HWND h : remote->Handles())
                keep(remote->Send(h, message, wParam, lParam));
        }
        return first;
    }
    if (IsLocalHandle(hwnd))
        return detail::Deliver(hwnd, message, wParam, lParam, true);
    RemoteWindows* remote = GetRemoteWindows();
    return (hwnd && remote) ? remote->Send(hwnd, message, wParam, lParam) : 0;
}

BOOL SendNotifyMessageA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!hwnd || hwnd == HWND_BROADCAST)
        return FALSE;
    if (IsLocalHandle(hwnd)) {
        if (!FindTarget(hwnd))
            return FALSE;
        detail::Deliver(hwnd, message, wParam, lParam, true);
        return TRUE;
    }
    RemoteWindows* remote = GetRemoteWindows();
    return remote && remote->Notify(hwnd, message, wParam, lParam);
}

BOOL IsWindow(HWND hwnd)
{
    if (!hwnd || hwnd == HWND_BROADCAST)
        return FALSE;
    if (IsLocalHandle(hwnd))
        return FindTarget(hwnd) != nullptr;
    RemoteWindows* remote = GetRemoteWindows();
    return remote && remote->IsAlive(hwnd);
}

BOOL IsWindowVisible(HWND hwnd)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Entry* e = FindLocked(t, hwnd);
    return e && e->info.visible;
}

int GetWindowTextA(HWND hwnd, char* text, int maxCount)
{
    WindowRecord r;
    if (!DescribeAny(hwnd, r))
        return CopyText(std::string(), text, maxCount);
    return CopyText(r.title, text, maxCount);
}

int GetWindowTextLengthA(HWND hwnd)
{
    WindowRecord r;
    return DescribeAny(hwnd, r) ? static_cast<int>(r.title.size()) : 0;
}

BOOL SetWindowTextA(HWND hwnd, const char* text)
{
    if (!IsLocalHandle(hwnd) || !FindTarget(hwnd))
        return FALSE;
    SetWindowTitle(hwnd, text);
    SendMessageA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text ? text : ""));
    return TRUE;
}

int GetClassNameA(HWND hwnd, char* className, int maxCount)
{
    WindowRecord r;
    if (!DescribeAny(hwnd, r))
        return CopyText(std::string(), className, maxCount);
    return CopyText(r.className, className, maxCount);
}

BOOL EnumWindows(WNDENUMPROC proc, LPARAM lParam)
{
    if (!proc)
        return FALSE;
    RemoteWindows* remote = nullptr;
    std::vector<HWND> handles = LocalTopLevelWindows(remote);
    if (remote) {
        for (const WindowRecord& r : remote->Enumerate())
            handles.push_back(r.hwnd);
    }
    for (HWND h : handles) {
        if (!proc(h, lParam))
            return TRUE;
    }
    return TRUE;
}

DWORD GetWindowThreadProcessId(HWND hwnd, DWORD* processId)
{
    WindowRecord r;
    if (!DescribeAny(hwnd, r)) {
        if (processId)
            *processId = 0;
        return 0;
    }
    if (processId)
        *processId = static_cast<DWORD>(r.processId);
    return static_cast<DWORD>(r.processId);
}

HWND GetParent(HWND hwnd)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Entry* e = FindLocked(t, hwnd);
    return e ? e->info.parent : nullptr;
}

BOOL ShowWindow(HWND hwnd, int command)
{
    if (!IsLocalHandle(hwnd)) {
        RemoteWindows* remote = GetRemoteWindows();
        return hwnd && hwnd != HWND_BROADCAST && remote ? remote->Show(hwnd, command) : FALSE;
    }
    const bool before = IsWindowVisible(hwnd);
    const bool show = command != SW_HIDE;
    SetWindowVisible(hwnd, show);
    if (MessageTarget* target = FindTarget(hwnd))
        target->ApplyShowState(command);
    SendMessageA(hwnd, WM_SHOWWINDOW, show ? 1 : 0, command);
    return before;
}

BOOL SetForegroundWindow(HWND hwnd)
{
    return IsWindow(hwnd);
}

BOOL DestroyWindow(HWND hwnd)
{
    if (!IsLocalHandle(hwnd) || !FindTarget(hwnd))
        return FALSE;
    SendMessageA(hwnd, WM_DESTROY, 0, 0);
    SendMessageA(hwnd, WM_NCDESTROY, 0, 0);
    UnregisterWindow(hwnd);
    return TRUE;
}

UINT RegisterWindowMessageA(const char* name)
{
    if (!name || !*name)
        return 0;
    const std::string key = AsciiLowerCopy(name);
    // The number comes from a hash of the name, so that two processes
    // agree on it without asking each other.
    std::uint32_t h = 2166136261u;
    for (char c : key)
        h = (h ^ static_cast<unsigned char>(c)) * 16777619u;
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    if (auto it = t.messages.find(key); it != t.messages.end())
        return it->second;
    UINT id = 0xC000 + h % 0x3FFF;
    // A clash within this process moves on to the next free number.
    for (;;) {
        const bool used = std::any_of(t.messages.begin(), t.messages.end(),
                                      [id](const auto& m) { return m.second == id; });
        if (!used)
            break;
        id = id == 0xFFFE ? 0xC000 : id + 1;
    }
    t.messages[key] = id;
    return id;
}
