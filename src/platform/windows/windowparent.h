// Moving a window into another parent, as control bars move between a
// frame's sides and a floating mini frame:
//
//   SetParent(bar.m_hWnd, miniFrame.m_hWnd);
//
// The window keeps its rectangle, now in the new parent's client
// coordinates; a display backend moves what shows it (vx::SetReparentHook).
#pragma once

#include "platform/windows/windows.h"
#include "vxbase_export.h"

class CWnd;

// Returns the old parent, or null when `child` is not a local window (or a
// new parent is given that is not one).
VXBASE_EXPORT HWND SetParent(HWND child, HWND newParent);

namespace vx {

using ReparentHook = void (*)(CWnd& window, CWnd* newParent);
// Runs after a window has its new parent; vxbase-ui installs one.
VXBASE_EXPORT void SetReparentHook(ReparentHook hook);

namespace detail {
extern ReparentHook g_reparentHook;
}

} // namespace vx
