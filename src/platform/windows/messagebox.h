// Message boxes and the other services a library asks of its host's user
// interface: the wait cursor and the end of the program.
//
// Without a user interface, a box goes to a handler that the host installs.
// The default handler writes the text to standard error (in UTF-8) and
// answers with the box's default button, so a console host never blocks.
// Tests install their own handler to see the text and choose the answer:
//
//   auto old = vx::SetMessageBoxHandler([](const vx::MessageBoxRequest& r) {
//       return IDYES;
//   });
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <functional>
#include <string>

namespace vx {

struct MessageBoxRequest {
    HWND owner = nullptr;
    std::string text;    // code page bytes
    std::string caption; // code page bytes; empty for the framework's box
    UINT type = MB_OK;
    UINT help = 0;
};

using MessageBoxHandler = std::function<int(const MessageBoxRequest&)>;

// Installs `handler` (null: the default) and returns the one it replaces.
VXBASE_EXPORT MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);
// The answer of the default button of a box of this type: the first,
// second or third button by MB_DEFBUTTONn.
VXBASE_EXPORT int DefaultButtonOf(UINT type);

// The wait cursor: a host installs what shows and hides it. Calls nest.
using WaitCursorHook = std::function<void(bool busy)>;
VXBASE_EXPORT void SetWaitCursorHook(WaitCursorHook hook);
VXBASE_EXPORT void BeginWaitCursor();
VXBASE_EXPORT void EndWaitCursor();

// Shows the wait cursor for the life of the object.
class WaitCursor {
public:
    WaitCursor() { BeginWaitCursor(); }
    ~WaitCursor() { EndWaitCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

// What AfxAbort does: by default it ends the process with abort(); tests
// and hosts may replace it (the hook must not return to the caller's
// expectations: after it returns, the caller goes on).
using AbortHook = std::function<void()>;
VXBASE_EXPORT AbortHook SetAbortHook(AbortHook hook);

} // namespace vx

// The framework's box, owned by the main window. An `id` form loads the
// string first.
VXBASE_EXPORT int AfxMessageBox(const char* text, UINT type = MB_OK, UINT help = 0);
VXBASE_EXPORT int AfxMessageBox(UINT id, UINT type = MB_OK, UINT help = static_cast<UINT>(-1));
VXBASE_EXPORT int MessageBoxA(HWND owner, const char* text, const char* caption, UINT type);
// Ends the program at once (see vx::SetAbortHook).
VXBASE_EXPORT void AfxAbort();

namespace vx {
// What MessageBeep does: a host installs its sound; without one, the
// terminal bell rings on standard error when that is a terminal.
using BeepHook = std::function<void(UINT type)>;
VXBASE_EXPORT BeepHook SetBeepHook(BeepHook hook);
} // namespace vx

// The system's beep for a kind of message (0xFFFFFFFF: the plain beep).
VXBASE_EXPORT BOOL MessageBeep(UINT type);
