// Internal; do not include directly.
//
// The FILE_ATTRIBUTE_... bits of a file as the platform layer reports them
// everywhere (GetFileAttributesA, the file search, CFile::GetStatus).
#pragma once

#include "platform/framework/wintypes.h"

#include <string_view>

namespace vx {

// Directory, read-only when this process may not write it, hidden for a
// name that starts with "." (but not "." and ".."); NORMAL when none holds.
inline DWORD FileAttributesOf(bool directory, bool writable, std::string_view name)
{
    DWORD attributes = 0;
    if (directory)
        attributes |= FILE_ATTRIBUTE_DIRECTORY;
    if (!writable)
        attributes |= FILE_ATTRIBUTE_READONLY;
    if (!name.empty() && name[0] == '.' && name != "." && name != "..")
        attributes |= FILE_ATTRIBUTE_HIDDEN;
    return attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
}

} // namespace vx
