// Internal; do not include directly.
//
// The one place where the platform layer opens a directory for reading, so
// that DirectoryOpenCount sees every such access.
#pragma once

#include <dirent.h>

#include <string>

namespace vx {

// opendir, counted.
DIR* OpenDirectory(const std::string& hostPath);

} // namespace vx
