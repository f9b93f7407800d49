// Opening a URL, a "mailto:" link or a document with the desktop's handler,
// as ShellExecuteEx with the "open" verb did. Requests go to a handler that a
// host or a test may install; without one they go to the platform's
// ShellExecuteA (platform/shell/shellexecute.h), which asks the desktop (GIO).
//
//   vx::ShellOpenRequest r;
//   r.file = "http://www.example.com";
//   vx::ShellOpen(r);
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

#include <functional>
#include <string>

namespace vx {

struct ShellOpenRequest {
    std::string verb = "open";
    std::string file; // a URL or a path text (code page bytes)
    std::string parameters;
    ULONG mask = 0; // the SEE_MASK_ bits of the original call
    int show = 1;   // SW_ command
};

using ShellOpenHandler = std::function<bool(const ShellOpenRequest&)>;

// Installs a handler (null: the desktop's) and returns the one it replaces.
VXBASE_UI_EXPORT ShellOpenHandler SetShellOpenHandler(ShellOpenHandler handler);
// Opens the request's file or URL; false when nothing could open it.
VXBASE_UI_EXPORT bool ShellOpen(const ShellOpenRequest& request);

} // namespace vx
