// Internal to the platform layer; do not include from outside src/platform.
//
// The link between the window table and the message queue: removing a
// window must drop its queued messages and timers.
#pragma once

#include "platform/wintypes.h"

namespace vx::detail {

void DropWindowMessages(HWND hwnd);

} // namespace vx::detail
