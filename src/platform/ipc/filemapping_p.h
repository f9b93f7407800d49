// Internal; do not include directly.
//
// CloseHandle's way to the file mappings, and how block names are formed.
#pragma once

#include "platform/framework/wintypes.h"

#include <string>

namespace vx::detail {

// Closes a mapping handle; false for any other value.
bool CloseMapping(HANDLE handle);
// FileMappingObjectName, with the reason in `error` when it gives "".
std::string SharedMemoryName(const char* name, DWORD& error);

} // namespace vx::detail
