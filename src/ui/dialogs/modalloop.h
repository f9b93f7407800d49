// The modal loop: the event loop a modal window runs while it is open.
//
// It serves what the application's own loop serves: Qt's events (input,
// painting), the process's posted messages and timers, and the messages of
// other processes that arrive through the window bus (the partner link), so
// that the rest of the program stays alive behind a modal dialog. Input
// reaches the modal window's PreTranslateMessage chain as always.
//
//   bool ended = false;
//   ... a handler sets ended = true and calls vx::WakeModalLoop();
//   vx::RunModalLoop([&] { return ended; });
#pragma once

#include "vxbase_ui_export.h"

#include <functional>

namespace vx {

// Runs until `done` answers true (it is asked after every batch of events).
// Returns false when the application was told to quit (WM_QUIT) first; the
// quit then goes on to the outer loops. Loops nest.
VXBASE_UI_EXPORT bool RunModalLoop(const std::function<bool()>& done);
// Makes the running modal loops ask their conditions again.
VXBASE_UI_EXPORT void WakeModalLoop();
// How many modal loops run at this moment.
VXBASE_UI_EXPORT int ModalLoopDepth();

} // namespace vx
