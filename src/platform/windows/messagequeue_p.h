// Internal to the platform layer; do not include from outside src/platform.
//
// The link between the window table and the message queue: removing a
// window must drop its queued messages and timers.
#pragma once

#include "platform/framework/wintypes.h"

#include <sys/types.h>

namespace vx::detail {

void DropWindowMessages(HWND hwnd);

// This process's id, without a system call each time: every message asks
// whether its window is local. Kept true across fork.
pid_t CurrentProcessId();

} // namespace vx::detail
