// A clock for the message queue's timers and GetTickCount that moves only
// when told, so that timed behaviour (tooltips, hover timers) is tested
// without waiting:
//
//   vx::UseManualClock(true);
//   vx::AdvanceManualClock(500);
//   vx::PumpMessages();          // dispatches what fell due, each timer once
//   vx::UseManualClock(false);   // the steady clock again
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

namespace vx {

// On, time stands still at the moment it was switched on; off, the steady
// clock runs again and timers keep their due times.
VXBASE_EXPORT void UseManualClock(bool manual);
// Moves the manual clock on; nothing when it is off.
VXBASE_EXPORT void AdvanceManualClock(UINT milliseconds);

} // namespace vx
