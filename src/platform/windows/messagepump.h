// The process's message queue, timers and pump.
//
// Posted messages and timers wait here until the pump dispatches them. A
// host's own event loop watches one file descriptor, MessagePumpFd(), and
// calls PumpMessages() when it becomes readable; a console host can call
// RunMessageLoop() instead:
//
//   QSocketNotifier n(vx::MessagePumpFd(), QSocketNotifier::Read);
//   QObject::connect(&n, &QSocketNotifier::activated, [] { vx::PumpMessages(); });
//
// Other sources (the window bus's socket) join the same descriptor with
// AddPumpSource. Posting is safe from any thread; dispatching happens on the
// thread that pumps.
#pragma once

#include "platform/framework/rect.h"
#include "platform/windows/windows.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <functional>

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

constexpr UINT PM_NOREMOVE = 0x0000;
constexpr UINT PM_REMOVE = 0x0001;

// Starts a timer that posts WM_TIMER (wParam = id, lParam = proc) every
// `elapse` ms. An id already running for the window is restarted. Returns
// the id, or 0 if `hwnd` is not a window of this process. With a null
// window a new id is chosen and returned.
VXBASE_EXPORT UINT_PTR SetTimer(HWND hwnd, UINT_PTR id, UINT elapse, TIMERPROC proc);
VXBASE_EXPORT BOOL KillTimer(HWND hwnd, UINT_PTR id);

// Takes the next message for `hwnd` (null: any) in the range (0, 0: any).
// Posted messages come first; WM_TIMER is made only when a timer is due and
// nothing else waits, as on the original platform.
VXBASE_EXPORT BOOL PeekMessageA(LPMSG msg, HWND hwnd, UINT filterMin, UINT filterMax, UINT removeFlags);
// Waits for the next message; FALSE when it is WM_QUIT.
VXBASE_EXPORT BOOL GetMessageA(LPMSG msg, HWND hwnd, UINT filterMin, UINT filterMax);
VXBASE_EXPORT BOOL TranslateMessage(const MSG* msg);
// Calls the timer procedure of a WM_TIMER with one, else sends to the window.
VXBASE_EXPORT LRESULT DispatchMessageA(const MSG* msg);
VXBASE_EXPORT void PostQuitMessage(int exitCode);
VXBASE_EXPORT DWORD GetTickCount();

namespace vx {

// A descriptor that is readable while messages, due timers or ready pump
// sources wait. Created on first use.
VXBASE_EXPORT int MessagePumpFd();
// Serves ready sources, then dispatches every waiting message and due
// timer. Returns the number of messages dispatched.
VXBASE_EXPORT int PumpMessages();
// Pumps until WM_QUIT; returns its exit code.
VXBASE_EXPORT int RunMessageLoop();
// Pumps for `milliseconds` (or until `done` returns true), waiting on the
// descriptor in between. Returns whether `done` became true.
VXBASE_EXPORT bool PumpFor(int milliseconds, const std::function<bool()>& done = {});
// Adds a descriptor to the pump: `onReadable` runs on the pumping thread
// whenever it is readable. Returns false if the descriptor cannot be added.
VXBASE_EXPORT bool AddPumpSource(int fd, std::function<void()> onReadable);
VXBASE_EXPORT void RemovePumpSource(int fd);
// Drops every queued message and timer (for a host's shutdown and tests).
VXBASE_EXPORT void ResetMessageQueue();

// Keyboard and mouse messages, client and non-client.
VXBASE_EXPORT bool IsInputMessage(UINT message);
// A modal loop that takes the thread's input (a menu being tracked): while
// a filter is installed, every input message, posted or coming from the
// display, is offered to it before its window sees it, and goes no further
// when the filter answers true. Returns the filter it replaces, which the
// loop puts back when it ends.
using InputFilter = std::function<bool(const MSG& msg)>;
VXBASE_EXPORT InputFilter SetInputFilter(InputFilter filter);
// Offers a message to the installed filter; true when it took it.
VXBASE_EXPORT bool FilterInput(const MSG& msg);

} // namespace vx
