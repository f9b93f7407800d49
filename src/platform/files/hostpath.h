// Path texts and host paths.
//
// The library stores and compares paths as texts with drive letters and
// "\" (in the code page). Only when a file is touched does a path text
// become a host path: "\" turns into "/", a drive "X:" is replaced by the
// host directory that drive maps to, and the bytes are converted to UTF-8.
// A plain POSIX path passes through (only converted to UTF-8).
//
//   vx::SetDriveRoot('C', "/srv/projects");
//   vx::HostPath("C:\\Plan\\plan.0012");   // "/srv/projects/Plan/plan.0012"
//   vx::HostPath("/tmp/x.ini");            // "/tmp/x.ini"
//
// A drive maps to the environment variable VXBASE_DRIVE_<letter> when it is
// set, else to "/", unless SetDriveRoot chose otherwise.
//
// The library compares names without regard to case, as the original's file
// system did. DiskPath gives the host path of a file that exists under
// another case (or whose name has characters the code page lacks, which
// read back as "?"): the platform's file functions use it, so
// "C:\P\PLAN.0012" reaches "plan.0012" on a case-sensitive disk.
#pragma once

#include "vxbase_export.h"

#include <string>
#include <string_view>

namespace vx {

// The host path (UTF-8) of a path text.
VXBASE_EXPORT std::string HostPath(std::string_view pathText);
// The path text (code page bytes) of a host path: the bytes converted from
// UTF-8, separators kept as "/".
VXBASE_EXPORT std::string PathTextFromHost(std::string_view hostPath);
// Maps drive `letter` (either case) to `hostDirectory`; an empty directory
// restores the default.
VXBASE_EXPORT void SetDriveRoot(char letter, std::string_view hostDirectory);
VXBASE_EXPORT std::string DriveRoot(char letter);

// HostPath, and when that names nothing on disk, each directory and name
// that exists under another spelling is replaced by its spelling on disk: a
// name matches if it reads as the same code page text without regard to
// ASCII case (the exact spelling wins, then the first in byte order). Parts
// that do not exist are kept as HostPath gives them, so the result also
// serves to create a file.
VXBASE_EXPORT std::string DiskPath(std::string_view pathText);

// How many directories the platform layer has opened for reading (file
// searches and DiskPath) since the process started. Lets a caller prove
// that a cached answer touched no directory.
VXBASE_EXPORT unsigned long DirectoryOpenCount();

} // namespace vx
