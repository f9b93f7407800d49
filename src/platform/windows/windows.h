// Window handles and messages: the spine of the port.
//
// A window is any object that answers messages (a vx::MessageTarget): a
// vxbase-ui window, a host's frame, or a test double. Registering one gives
// it an HWND in the process's window table, through which the desktop API
// below reaches it. Sent messages are delivered at once on the calling
// thread; posted messages and timers wait in the process's queue until the
// message pump (messagepump.h) dispatches them.
//
//   struct Frame : vx::MessageTarget {
//       LRESULT HandleMessage(UINT msg, WPARAM w, LPARAM l) override { ... }
//   } frame;
//   HWND h = vx::RegisterWindow(&frame, {"VEXAL 5.5 Plan", "VxFrame"});
//   SendMessageA(h, WM_VXBASE, 10, 0);
//
// Handles of other processes (through the window bus, once a host starts
// it) are used with the same calls; only WM_COPYDATA carries data across.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace vx {

// Anything that answers window messages.
class VXBASE_EXPORT MessageTarget {
public:
    virtual ~MessageTarget();
    virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // ShowWindow calls this before it sends WM_SHOWWINDOW, so that an
    // object keeping its own visible state follows any caller's ShowWindow.
    virtual void ApplyShowState(int command);
    // Window words the object keeps itself (a CWnd its style, extended
    // style and id), for GetWindowLongPtrA and SetWindowLongPtrA; false
    // leaves the word to the window table.
    virtual bool ReadWindowLong(int index, LONG_PTR& value) const;
    virtual bool WriteWindowLong(int index, LONG_PTR value);
    // The default handling of a message (DefWindowProcA); 0 by default.
    virtual LRESULT DefaultMessage(UINT message, WPARAM wParam, LPARAM lParam);
};

// What the window table knows of a window.
struct WindowInfo {
    std::string title;
    std::string className;
    HWND parent = nullptr;
    bool visible = false;
};

// A window as listed by EnumWindows, local or of another process.
struct WindowRecord {
    HWND hwnd = nullptr;
    std::string title;
    std::string className;
    pid_t processId = 0;
    std::string processFile; // the executable's file name, for the process walk
};

// Adds `target` to the window table and returns its new handle. Handles are
// never reused within a process.
VXBASE_EXPORT HWND RegisterWindow(MessageTarget* target, const WindowInfo& info);
// Removes a window from the table; its timers and queued messages go too.
// Unknown handles are ignored.
VXBASE_EXPORT void UnregisterWindow(HWND hwnd);
// The target of a local handle, or null.
VXBASE_EXPORT MessageTarget* FindTarget(HWND hwnd);
VXBASE_EXPORT void SetWindowVisible(HWND hwnd, bool visible);
VXBASE_EXPORT void SetWindowTitle(HWND hwnd, const char* title);
// The process id that a handle encodes.
VXBASE_EXPORT pid_t HandleProcess(HWND hwnd);
VXBASE_EXPORT bool IsLocalHandle(HWND hwnd);

// The cross-process side of the table, provided by the window bus.
class VXBASE_EXPORT RemoteWindows {
public:
    virtual ~RemoteWindows();
    // Published top-level windows of other processes of this user.
    virtual std::vector<WindowRecord> Enumerate() = 0;
    // Their handles alone, in the same order; the default asks Enumerate.
    virtual std::vector<HWND> Handles();
    virtual bool Describe(HWND hwnd, WindowRecord& out) = 0;
    virtual bool IsAlive(HWND hwnd) = 0;
    virtual LRESULT Send(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    virtual bool Post(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // Delivers a message that is handled as a sent one, without waiting for
    // its answer; the default sends it and waits.
    virtual bool Notify(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    // ShowWindow on a window of another process; FALSE if it cannot reach it.
    virtual BOOL Show(HWND hwnd, int command);
    // Called when a window of this process changed its title or left the
    // table, so that what other processes see stays true.
    virtual void LocalWindowChanged(HWND hwnd);
};
// Installs (or with null removes) the cross-process side. Not owned.
VXBASE_EXPORT void SetRemoteWindows(RemoteWindows* remote);
VXBASE_EXPORT RemoteWindows* GetRemoteWindows();

} // namespace vx

// The target of a broadcast: every top-level window.
inline const HWND HWND_BROADCAST = reinterpret_cast<HWND>(0xFFFF);

// Delivers the message at once and returns the target's answer; 0 for an
// unknown handle. HWND_BROADCAST sends to every top-level window of this
// process and every published window of the user's other processes, and
// returns the first answer that is not 0 (0 when all answered 0).
VXBASE_EXPORT LRESULT SendMessageA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
// Queues the message for the pump; FALSE for an unknown handle. A null
// handle posts to the thread's queue, as PostThreadMessage would.
VXBASE_EXPORT BOOL PostMessageA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
// Hands the message to the window as a sent one, but does not wait for its
// answer when the window belongs to another process (a window of this
// process handles it at once, as SendMessageA). It carries what
// SendMessageA carries, WM_COPYDATA's data too. Messages from one process
// to another are handled in the order they were sent. FALSE if the window
// cannot be reached.
VXBASE_EXPORT BOOL SendNotifyMessageA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
VXBASE_EXPORT BOOL IsWindow(HWND hwnd);
VXBASE_EXPORT BOOL IsWindowVisible(HWND hwnd);
// Copies the title, cut to `maxCount` - 1 bytes; returns the bytes copied.
VXBASE_EXPORT int GetWindowTextA(HWND hwnd, char* text, int maxCount);
VXBASE_EXPORT int GetWindowTextLengthA(HWND hwnd);
VXBASE_EXPORT BOOL SetWindowTextA(HWND hwnd, const char* text);
VXBASE_EXPORT int GetClassNameA(HWND hwnd, char* className, int maxCount);
// Calls `proc` for every top-level window, this process's first, until it
// returns FALSE.
VXBASE_EXPORT BOOL EnumWindows(WNDENUMPROC proc, LPARAM lParam);
// Returns a thread id (the process id here) and stores the process id.
VXBASE_EXPORT DWORD GetWindowThreadProcessId(HWND hwnd, DWORD* processId);
VXBASE_EXPORT HWND GetParent(HWND hwnd);
// Shows or hides through the window itself (WM_SHOWWINDOW reaches it);
// returns whether it was visible before. A window of another process is
// shown by that process, through the window bus.
VXBASE_EXPORT BOOL ShowWindow(HWND hwnd, int command);
VXBASE_EXPORT BOOL SetForegroundWindow(HWND hwnd);
// Sends WM_DESTROY and removes the window from the table.
VXBASE_EXPORT BOOL DestroyWindow(HWND hwnd);
// Numbers from 0xC000 on, one per distinct name (compared without regard
// to case) for the life of the process.
VXBASE_EXPORT UINT RegisterWindowMessageA(const char* name);
