// The user's runtime directory: where sockets and other files live that
// last as long as the user's session (the window bus keeps its sockets
// there, Qt its own files).
//
// The XDG rules put it in $XDG_RUNTIME_DIR, which a login session sets. A
// program started otherwise (by root on a fresh machine, from cron, over a
// plain ssh) has none; Qt then warns on standard error and picks a directory
// of its own. Here every process of the user picks the same one, whether or
// not the variable is set, so that programs that talk to each other meet:
//
//   vx::EnsureRuntimeDirectory();      // before Qt starts
//   vx::RuntimeDirectory();            // "/run/user/1000", or "/tmp/runtime-1000"
#pragma once

#include "vxbase_export.h"

#include <string>

namespace vx {

// $XDG_RUNTIME_DIR when it is an absolute path to an existing directory of
// the user's own; else "/tmp/runtime-<effective uid>", whether or not that
// exists yet.
VXBASE_EXPORT std::string RuntimeDirectory();

// Makes the directory RuntimeDirectory answers when it is the one under
// /tmp: mode 0700, and refused (false) if something else of that name is
// there or another user owns it. True when the directory is usable.
VXBASE_EXPORT bool MakeRuntimeDirectory();

// MakeRuntimeDirectory, then, when XDG_RUNTIME_DIR is unset or unusable,
// points it at that directory, so that Qt and the programs this one starts
// find it too. It changes the environment: call it before other threads run
// (vx::InitUi calls it before it makes the application). False if no
// directory could be had; the environment is then left alone.
VXBASE_EXPORT bool EnsureRuntimeDirectory();

} // namespace vx
