// Internal; do not include directly.
//
// CloseHandle's way to the process snapshots.
#pragma once

#include "platform/framework/wintypes.h"

namespace vx::detail {

// Frees a live snapshot; false for any other handle.
bool CloseSnapshot(HANDLE handle);

} // namespace vx::detail
