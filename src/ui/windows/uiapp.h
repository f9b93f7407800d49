// Starting the window classes in a host program.
//
// The window classes need a Qt application. A host either makes its own
// QApplication before the first window, or calls vx::InitUi, which makes
// one and picks Qt's "offscreen" platform when no display can be reached, so
// that the same program runs on a desktop and headless. Windows made while
// there is no QApplication are headless (see platform/windows/cwnd.h).
//
//   int main(int argc, char** argv)
//   {
//       vx::InitUi(argc, argv);
//       CButtonST button;
//       ...
//       return vx::RunUi();
//   }
#pragma once

#include "vxbase_ui_export.h"

namespace vx {

// Makes the QApplication unless one exists, then installs the message pump
// into Qt's event loop. `argc` must outlive the application. Without
// QT_QPA_PLATFORM, DISPLAY and WAYLAND_DISPLAY the "offscreen" platform is used;
// without a usable XDG_RUNTIME_DIR the user's runtime directory is set (see
// platform/files/runtimedir.h).
VXBASE_UI_EXPORT void InitUi(int& argc, char** argv);
// The same with no program arguments.
VXBASE_UI_EXPORT void InitUi();
// Deletes the application that InitUi made (windows must be gone by then).
VXBASE_UI_EXPORT void ShutdownUi();
// Whether windows appear on a real display (false for "offscreen").
VXBASE_UI_EXPORT bool HasDisplay();
// Lets Qt's event loop serve the process's posted messages and timers
// (vx::MessagePumpFd). Idempotent; InitUi and the first window call it.
VXBASE_UI_EXPORT void InstallQtMessagePump();
// Runs Qt's event loop until WM_QUIT is posted (PostQuitMessage) or the
// application quits; returns the exit code.
VXBASE_UI_EXPORT int RunUi();
// Handles what is waiting now (Qt events, posted messages, due timers),
// then keeps doing so for `milliseconds`.
VXBASE_UI_EXPORT void ProcessUiEvents(int milliseconds = 0);
// Lets the windows paint what waits to be painted, and nothing else: no
// input, no posted messages or timers (a long operation that keeps its
// window fresh).
VXBASE_UI_EXPORT void ProcessPaintEvents();
// System colours from Qt's palette (true), or from the fixed classic table
// that makes pixels reproducible (false, the default).
VXBASE_UI_EXPORT void UseQtPalette(bool use);
// The list of screens (platform/screens/monitors.h) from Qt's screens, kept
// up to date as screens come, go and change (true), or the one screen of the
// classic desktop (false). InitUi turns it on when a display exists. Each
// change sets the display state afresh (StartDualMonitor).
VXBASE_UI_EXPORT void UseQtScreens(bool use);

} // namespace vx
