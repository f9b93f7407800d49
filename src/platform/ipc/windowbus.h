// The window bus: windows of other processes of the same user, reached
// through the ordinary window calls.
//
// A process that starts the bus receives on a Unix domain (datagram) socket
// in the user's runtime directory ("vxbase" in $XDG_RUNTIME_DIR, else in
// /tmp/runtime-<uid>; the directory is the user's own, mode 0700) and lists
// its published top-level windows in a small file next to it. Other processes of the user
// then see those windows through EnumWindows, GetWindowTextA, GetClassNameA,
// GetWindowThreadProcessId and IsWindow, and reach them by SendMessageA,
// PostMessageA and ShowWindow:
//
//   vx::PublishWindow(frame.GetSafeHwnd());      // starts the bus if needed
//   // in another process:
//   COPYDATASTRUCT cds{7, size, bytes};
//   SendMessageA(found, WM_COPYDATA, reinterpret_cast<WPARAM>(mine), reinterpret_cast<LPARAM>(&cds));
//
// * The bus's descriptors join the message pump (vx::MessagePumpFd), so a
//   host whose event loop pumps serves what other processes send.
// * SendMessageA to another process blocks until the receiver's handler
//   has returned, and meanwhile serves the messages that other processes
//   send to this one, so that a reply can arrive re-entrantly. There is no
//   timeout; it returns 0 when the receiver's process ends.
// * SendNotifyMessageA hands a message over as a sent one without waiting for
//   its answer; one to the process whose request is being served goes out
//   together with that request's answer. A process handles the messages of
//   another in the order they were sent.
// * Only WM_COPYDATA carries data: its bytes travel (up to
//   vx::kMaxCopyDataBytes), and the receiver's handler gets a COPYDATASTRUCT
//   that points to its own copy, valid during the call. Messages from
//   WM_USER on, registered messages and a few plain ones (WM_NULL, WM_CLOSE,
//   WM_SHOWWINDOW, WM_ACTIVATE, WM_ENABLE) carry their two numbers as they
//   are; other system messages hold pointers and are refused (result 0).
// * A sent message (SendMessageA, SendNotifyMessageA, and so a broadcast)
//   that carries numbers may carry a handle in wParam or lParam: a file
//   mapping handle, or a handle of a kind a layer adds (vx::HandleCarrier).
//   The object itself crosses, and the receiver's handler gets a handle of
//   its own process for it, valid during the call.
// * Only messages from the same user id are served (the sender's
//   credentials, which the kernel attaches to each datagram); refused
//   messages and malformed data are reported to the bus log.
// * SendMessageA and PostMessageA to other processes belong to the thread
//   that pumps; the queries (EnumWindows, IsWindow...) work from any thread.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstddef>
#include <functional>
#include <string>

namespace vx {

// The largest WM_COPYDATA block the bus carries, either way.
constexpr std::size_t kMaxCopyDataBytes = std::size_t(16) << 20;

// Starts the bus of this process and installs it as the cross-process side
// of the window table. Returns true if it runs (also when it ran already);
// false, with the reason in the bus log, if the directory is not private to
// the user or the socket cannot be made.
VXBASE_EXPORT bool StartWindowBus();
// Unpublishes every window, closes the sockets and removes this
// process's files. The bus can be started again.
VXBASE_EXPORT void StopWindowBus();
VXBASE_EXPORT bool WindowBusRunning();
// The bus directory (a host path), whether or not it exists yet: "vxbase"
// in the user's runtime directory (see runtimedir.h).
VXBASE_EXPORT std::string WindowBusDirectory();

// Makes a top-level window of this process visible to the user's other
// processes, starting the bus if needed. False for a child window, a window
// of another process, or when the bus cannot start.
VXBASE_EXPORT bool PublishWindow(HWND hwnd);
// Withdraws it; a destroyed window is withdrawn by itself.
VXBASE_EXPORT void UnpublishWindow(HWND hwnd);
VXBASE_EXPORT bool IsWindowPublished(HWND hwnd);

// Waits up to `timeoutMs`, serving the messages that other processes send
// to this one (as a blocked SendMessageA does); posted messages stay in the
// queue. Returns the number of messages served.
VXBASE_EXPORT int ServeSentMessages(int timeoutMs);

// A kind of handle that a sent message can carry to another process. The
// bus asks each carrier whether a message's wParam or lParam is one of its
// handles; the descriptor it names crosses (the object, not the number), and
// the receiving process's carrier makes a handle of its own for it, which
// the handler gets, and frees it when the handler has returned.
class VXBASE_EXPORT HandleCarrier {
public:
    virtual ~HandleCarrier();
    // The descriptor behind `value` if it is a live handle of this kind,
    // else -1. It stays the carrier's: the bus only sends it.
    virtual int Descriptor(std::uintptr_t value) = 0;
    // A handle of this process for a received descriptor, which it takes
    // over (and closes if it refuses it); 0 to refuse the message.
    virtual std::uintptr_t Adopt(int fd) = 0;
    // Frees a handle that Adopt made, once the handler has returned.
    virtual void Release(std::uintptr_t value) = 0;
};
// The carrier of file mapping handles (filemapping.h), built in.
constexpr unsigned kFileMappingCarrier = 1;
// Installs (or with null removes) the carrier of a kind, 2 to 255; both
// processes must give a kind the same number. Not owned.
VXBASE_EXPORT void SetHandleCarrier(unsigned kind, HandleCarrier* carrier);

// Where the bus reports refused messages and malformed data. The
// default writes the line to standard error. Returns the previous one.
using WindowBusLog = std::function<void(const std::string& line)>;
VXBASE_EXPORT WindowBusLog SetWindowBusLog(WindowBusLog log);

} // namespace vx
