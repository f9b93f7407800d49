// The library frame: what runs when a host attaches and detaches the
// library, and its small free functions.
//
// The original ran its attach path from the module's entry point. Here a
// host calls vx::AttachLibrary() once at start, after it has set up its
// environment (the settings directories are read from it), and
// vx::DetachLibrary() before it ends:
//
//   int main() {
//       vx::AttachLibrary();          // suite file paths, migration, displays
//       g_MainframeType = MainframeAT;
//       ...
//       vx::DetachLibrary();
//   }
//
// Static state (g_Shell, bRemoteSession, the registered messages) is set
// when the shared library is loaded, before main.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// Loads string `id`. A missing string shows "Global error: Missing string
// %d" through VxAfxMessageBox and gives "".
VXBASE_EXPORT CString GetString(int id);
// The library's assertion: a retry-or-cancel box naming the line and the
// file title of `sourcePath`; retry goes on, anything else ends the
// program with AfxAbort.
VXBASE_EXPORT void VexalAssert(void* sourcePath, unsigned line);
// The first of the timer ids 31 to 99 that SetTimer accepts for `window`
// (ids 1 to 30 are the application's); 0 if `window` is not a window.
VXBASE_EXPORT unsigned GetSafeTimerID(HWND window, unsigned elapse);
// 0 gives 8, 1 gives 6, 2 gives 5, 3 gives 2, 4 gives -1, others 0.
VXBASE_EXPORT int GetDllVersionVxBase(int part);

// Reads the display layout from "2Monitor" into the display state.
VXBASE_EXPORT void StartDualMonitor();
// GetSystemMetrics with the multi-monitor indexes answered for a single
// display when the system has no multi-monitor support.
VXBASE_EXPORT int SafeSystemMetrics(int index);

// The reasons of the library entry.
constexpr DWORD DLL_PROCESS_DETACH = 0;
constexpr DWORD DLL_PROCESS_ATTACH = 1;
constexpr DWORD DLL_THREAD_ATTACH = 2;
constexpr DWORD DLL_THREAD_DETACH = 3;

// The library entry: attach and detach run the steps below; the thread
// reasons do nothing. Returns 1.
VXBASE_EXPORT int DllMain(HINSTANCE instance, DWORD reason, void* reserved);

namespace vx {

// The attach path, DllMain with DLL_PROCESS_ATTACH: fills
// g_vexalprofiledir and g_vexalglobalprofiledir, promotes "VEXAL.INI" to
// "VEXAL55.INI", and runs StartDualMonitor. Returns 1. A second call
// without a detach in between does the file steps again (after a test
// changed the environment, say).
VXBASE_EXPORT int AttachLibrary();
// The detach path, DllMain with DLL_PROCESS_DETACH: runs the handlers
// added with AtLibraryDetach (last added first), ends the module.
VXBASE_EXPORT void DetachLibrary();
// Adds work for the detach path (the window classes delete their shared
// brushes there).
VXBASE_EXPORT void AtLibraryDetach(void (*handler)());
// The settings that the attach path reads. They stand above this frame
// (config/ is built on base/), so the settings code installs how they are
// read when the library loads; until then the suite's folder is empty and
// every key reads as its default.
struct FrameSettings {
    // The folder of the suite's files (KProfile::GetWindowsDirectoryA),
    // worked out afresh on each call; returns its length.
    unsigned (*suiteDirectory)(char* buffer, unsigned size) = nullptr;
    // A number of the suite's file (KProfile::GetProfileIntA, scope -1).
    int (*suiteInt)(const char* section, const char* key, int defaultValue) = nullptr;
};
VXBASE_EXPORT void SetFrameSettings(const FrameSettings& settings);

// Copies `oldFile` to `newFile` unless `newFile` exists, and deletes
// `oldFile` only if the copy succeeded. Returns whether it moved.
VXBASE_EXPORT bool MigrateSuiteFile(const char* oldFile, const char* newFile);

} // namespace vx
