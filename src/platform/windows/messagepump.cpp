#include "platform/windows/messagepump.h"

#include "platform/windows/manualclock.h"
#include "platform/windows/messagequeue_p.h"
#include "platform/windows/winuser.h"
#include "platform/windows/windowtable_p.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace vx {
namespace {

using Clock = std::chrono::steady_clock;

// A clock that moves only when told (tests of timed behaviour); unset, the
// steady clock.
struct ManualClock {
    std::atomic<bool> on{false};
    std::atomic<long long> nowNs{0};
};
ManualClock& TheManualClock()
{
    static ManualClock clock;
    return clock;
}

Clock::time_point Now()
{
    ManualClock& m = TheManualClock();
    if (m.on.load())
        return Clock::time_point(std::chrono::nanoseconds(m.nowNs.load()));
    return Clock::now();
}

struct Timer {
    HWND hwnd;
    UINT_PTR id;
    UINT elapse;
    TIMERPROC proc;
    Clock::time_point due;
};

struct Queue {
    std::recursive_mutex lock;
    std::deque<MSG> posted;
    std::vector<Timer> timers;
    UINT_PTR nextThreadTimer = 0x8000;
    std::map<int, std::shared_ptr<std::function<void()>>> sources;
    int epfd = -1;
    int evfd = -1;
    int tfd = -1;
    // The sources the pump's last wait found readable, so that serving them
    // needs no second look.
    std::vector<int> ready;
    bool readyKnown = false;
};

Queue& TheQueue()
{
    static Queue* queue = new Queue; // outlives static destructors of hosts
    return *queue;
}

void EnsureFdsLocked(Queue& q)
{
    if (q.epfd >= 0)
        return;
    q.epfd = epoll_create1(EPOLL_CLOEXEC);
    q.evfd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    q.tfd = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    for (int fd : {q.evfd, q.tfd}) {
        epoll_event ev{};
        ev.events = EPOLLIN;
        ev.data.fd = fd;
        epoll_ctl(q.epfd, EPOLL_CTL_ADD, fd, &ev);
    }
}

// Makes the descriptors tell the truth: the event counter is set while
// messages wait, and the timer fires at the earliest due time.
void SyncSignalsLocked(Queue& q)
{
    if (q.epfd < 0)
        return;
    std::uint64_t count;
    while (read(q.evfd, &count, sizeof count) > 0) {
    }
    if (!q.posted.empty()) {
        const std::uint64_t one = 1;
        [[maybe_unused]] auto w = write(q.evfd, &one, sizeof one);
    }
    while (read(q.tfd, &count, sizeof count) > 0) {
    }
    itimerspec due{};
    // Under the manual clock timers fall due only when it is moved on, and
    // the mover pumps them itself.
    if (!q.timers.empty() && !TheManualClock().on.load()) {
        const auto earliest =
            std::min_element(q.timers.begin(), q.timers.end(), [](const Timer& a, const Timer& b) { return a.due < b.due; })
                ->due;
        const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(earliest.time_since_epoch()).count();
        // A due time in the past fires at once; zero would disarm the timer.
        const long long at = std::max<long long>(ns, 1);
        due.it_value.tv_sec = static_cast<time_t>(at / 1000000000LL);
        due.it_value.tv_nsec = static_cast<long>(at % 1000000000LL);
    }
    timerfd_settime(q.tfd, TFD_TIMER_ABSTIME, &due, nullptr);
}

bool Matches(const MSG& m, HWND hwnd, UINT filterMin, UINT filterMax)
{
    if (hwnd && m.hwnd != hwnd)
        return false;
    if (filterMin == 0 && filterMax == 0)
        return true;
    return m.message >= filterMin && m.message <= filterMax;
}

MSG MakeMsg(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    MSG m{};
    m.hwnd = hwnd;
    m.message = message;
    m.wParam = wParam;
    m.lParam = lParam;
    m.time = GetTickCount();
    return m;
}

// Runs the callbacks of sources that are readable now, without the lock.
void ServeSources()
{
    Queue& q = TheQueue();
    std::vector<std::pair<int, std::shared_ptr<std::function<void()>>>> sources;
    bool known = false;
    {
        std::lock_guard lock(q.lock);
        if (q.sources.empty())
            return;
        known = q.readyKnown;
        if (q.readyKnown) {
            // What the wait just reported; the rest is seen by the next one.
            q.readyKnown = false;
            for (int fd : q.ready) {
                if (auto it = q.sources.find(fd); it != q.sources.end())
                    sources.emplace_back(fd, it->second);
            }
            q.ready.clear();
        } else {
            sources.assign(q.sources.begin(), q.sources.end());
        }
    }
    if (sources.empty())
        return;
    if (known) {
        for (const auto& source : sources)
            (*source.second)();
        return;
    }
    std::vector<pollfd> fds;
    for (const auto& s : sources)
        fds.push_back(pollfd{s.first, POLLIN, 0});
    if (poll(fds.data(), fds.size(), 0) <= 0)
        return;
    for (std::size_t i = 0; i < fds.size(); ++i) {
        if (fds[i].revents & (POLLIN | POLLHUP | POLLERR))
            (*sources[i].second)();
    }
}

int WaitMs(int timeoutMs)
{
    // Every change of the queue and the timers already keeps the signals
    // true, so the pump's own waits skip the resync of MessagePumpFd (three
    // system calls on each message of the window bus). The wait notes which
    // sources are ready, for ServeSources.
    Queue& q = TheQueue();
    int fd;
    {
        std::lock_guard lock(q.lock);
        EnsureFdsLocked(q);
        fd = q.epfd;
    }
    epoll_event events[16];
    const int n = epoll_wait(fd, events, 16, timeoutMs);
    std::lock_guard lock(q.lock);
    q.ready.clear();
    q.readyKnown = n >= 0 && n < 16;
    for (int i = 0; q.readyKnown && i < n; ++i) {
        if (events[i].data.fd != q.evfd && events[i].data.fd != q.tfd)
            q.ready.push_back(events[i].data.fd);
    }
    return n;
}

} // namespace

namespace detail {

void DropWindowMessages(HWND hwnd)
{
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    q.posted.erase(std::remove_if(q.posted.begin(), q.posted.end(), [hwnd](const MSG& m) { return m.hwnd == hwnd; }),
                   q.posted.end());
    q.timers.erase(std::remove_if(q.timers.begin(), q.timers.end(), [hwnd](const Timer& t) { return t.hwnd == hwnd; }),
                   q.timers.end());
    SyncSignalsLocked(q);
}

} // namespace detail

int MessagePumpFd()
{
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    EnsureFdsLocked(q);
    SyncSignalsLocked(q);
    return q.epfd;
}

int PumpMessages()
{
    ServeSources();
    int dispatched = 0;
    // Each timer fires at most once per call, so that a zero elapse cannot
    // keep the pump from returning.
    const int limit = 100000;
    MSG msg;
    while (dispatched < limit && PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            // Leave it for RunMessageLoop or the host to see.
            PostQuitMessage(static_cast<int>(msg.wParam));
            break;
        }
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
        ++dispatched;
        if (msg.message == WM_TIMER) {
            // Stop after one round of timers, so a zero elapse cannot spin.
            Queue& q = TheQueue();
            std::lock_guard lock(q.lock);
            if (q.posted.empty())
                break;
        }
    }
    {
        Queue& q = TheQueue();
        std::lock_guard lock(q.lock);
        SyncSignalsLocked(q);
    }
    return dispatched;
}

int RunMessageLoop()
{
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return static_cast<int>(msg.wParam);
}

bool PumpFor(int milliseconds, const std::function<bool()>& done)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(std::max(milliseconds, 0));
    for (;;) {
        PumpMessages();
        if (done && done())
            return true;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        WaitMs(static_cast<int>(std::min<long long>(left, 50)));
    }
}

bool AddPumpSource(int fd, std::function<void()> onReadable)
{
    if (fd < 0 || !onReadable)
        return false;
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    EnsureFdsLocked(q);
    epoll_event ev{};
    ev.events = EPOLLIN;
    ev.data.fd = fd;
    if (epoll_ctl(q.epfd, EPOLL_CTL_ADD, fd, &ev) != 0)
        return false;
    q.sources[fd] = std::make_shared<std::function<void()>>(std::move(onReadable));
    return true;
}

void RemovePumpSource(int fd)
{
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    if (q.sources.erase(fd) && q.epfd >= 0)
        epoll_ctl(q.epfd, EPOLL_CTL_DEL, fd, nullptr);
}

bool IsInputMessage(UINT message)
{
    return (message >= WM_KEYDOWN && message <= WM_KEYLAST) || (message >= WM_MOUSEMOVE && message <= 0x020E) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK);
}

namespace {

InputFilter& TheFilter()
{
    static auto* filter = new InputFilter;
    return *filter;
}

} // namespace

InputFilter SetInputFilter(InputFilter filter)
{
    return std::exchange(TheFilter(), std::move(filter));
}

bool FilterInput(const MSG& msg)
{
    if (!TheFilter() || !IsInputMessage(msg.message))
        return false;
    // A copy, so that the filter may replace itself while it runs.
    const InputFilter filter = TheFilter();
    return filter(msg);
}

void ResetMessageQueue()
{
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    q.posted.clear();
    q.timers.clear();
    SyncSignalsLocked(q);
}

} // namespace vx

using namespace vx;

BOOL PostMessageA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (hwnd && !IsLocalHandle(hwnd)) {
        RemoteWindows* remote = GetRemoteWindows();
        return remote && remote->Post(hwnd, message, wParam, lParam);
    }
    if (hwnd && !FindTarget(hwnd))
        return FALSE;
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    q.posted.push_back(MakeMsg(hwnd, message, wParam, lParam));
    SyncSignalsLocked(q);
    return TRUE;
}

void PostQuitMessage(int exitCode)
{
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    q.posted.push_back(MakeMsg(nullptr, WM_QUIT, static_cast<WPARAM>(exitCode), 0));
    SyncSignalsLocked(q);
}

UINT_PTR SetTimer(HWND hwnd, UINT_PTR id, UINT elapse, TIMERPROC proc)
{
    if (hwnd && (!IsLocalHandle(hwnd) || !FindTarget(hwnd)))
        return 0;
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    if (!hwnd)
        id = q.nextThreadTimer++;
    const auto due = Now() + std::chrono::milliseconds(elapse);
    auto it = std::find_if(q.timers.begin(), q.timers.end(),
                           [&](const Timer& t) { return t.hwnd == hwnd && t.id == id; });
    if (it != q.timers.end())
        *it = Timer{hwnd, id, elapse, proc, due};
    else
        q.timers.push_back(Timer{hwnd, id, elapse, proc, due});
    SyncSignalsLocked(q);
    return hwnd ? (id ? id : 1) : id;
}

BOOL KillTimer(HWND hwnd, UINT_PTR id)
{
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    auto it = std::find_if(q.timers.begin(), q.timers.end(),
                           [&](const Timer& t) { return t.hwnd == hwnd && t.id == id; });
    if (it == q.timers.end())
        return FALSE;
    q.timers.erase(it);
    // A WM_TIMER already taken from the queue is not recalled, as on the
    // original platform; none is queued here, since they are made on demand.
    SyncSignalsLocked(q);
    return TRUE;
}

BOOL PeekMessageA(LPMSG msg, HWND hwnd, UINT filterMin, UINT filterMax, UINT removeFlags)
{
    if (!msg)
        return FALSE;
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    for (auto it = q.posted.begin(); it != q.posted.end(); ++it) {
        if (it->message == WM_QUIT || Matches(*it, hwnd, filterMin, filterMax)) {
            if (it->message == WM_QUIT && hwnd)
                continue;
            *msg = *it;
            if (removeFlags & PM_REMOVE) {
                q.posted.erase(it);
                SyncSignalsLocked(q);
            }
            return TRUE;
        }
    }
    const auto now = Now();
    Timer* due = nullptr;
    for (Timer& t : q.timers) {
        if (t.due <= now && (!hwnd || t.hwnd == hwnd) && (!due || t.due < due->due))
            due = &t;
    }
    if (due) {
        const MSG timer = MakeMsg(due->hwnd, WM_TIMER, due->id, reinterpret_cast<LPARAM>(due->proc));
        if (!Matches(timer, hwnd, filterMin, filterMax))
            return FALSE;
        *msg = timer;
        if (removeFlags & PM_REMOVE) {
            due->due = now + std::chrono::milliseconds(due->elapse);
            SyncSignalsLocked(q);
        }
        return TRUE;
    }
    return FALSE;
}

BOOL GetMessageA(LPMSG msg, HWND hwnd, UINT filterMin, UINT filterMax)
{
    for (;;) {
        ServeSources();
        if (PeekMessageA(msg, hwnd, filterMin, filterMax, PM_REMOVE))
            return msg->message != WM_QUIT;
        WaitMs(-1);
    }
}

BOOL TranslateMessage(const MSG*)
{
    return FALSE;
}

LRESULT DispatchMessageA(const MSG* msg)
{
    if (!msg)
        return 0;
    if (msg->message == WM_TIMER && msg->lParam) {
        reinterpret_cast<TIMERPROC>(msg->lParam)(msg->hwnd, WM_TIMER, msg->wParam, GetTickCount());
        return 0;
    }
    if (FilterInput(*msg))
        return 0;
    if (!msg->hwnd)
        return 0;
    // Posted messages reach the window procedure without the hooks of sent
    // messages, as on the original.
    if (!IsLocalHandle(msg->hwnd))
        return SendMessageA(msg->hwnd, msg->message, msg->wParam, msg->lParam);
    return detail::Deliver(msg->hwnd, msg->message, msg->wParam, msg->lParam, false);
}

DWORD GetTickCount()
{
    return static_cast<DWORD>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Now().time_since_epoch()).count());
}

namespace vx {

void UseManualClock(bool manual)
{
    ManualClock& m = TheManualClock();
    if (manual && !m.on.load())
        m.nowNs = std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
    m.on = manual;
    Queue& q = TheQueue();
    std::lock_guard lock(q.lock);
    SyncSignalsLocked(q);
}

void AdvanceManualClock(UINT milliseconds)
{
    ManualClock& m = TheManualClock();
    if (!m.on.load())
        return;
    m.nowNs += static_cast<long long>(milliseconds) * 1000000LL;
}

} // namespace vx
