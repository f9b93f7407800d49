// Window placement: where a top-level window stands and how it is shown,
// as one record that can be handed to another window, also one of another
// process (through the window bus).
//
//   WINDOWPLACEMENT wp{};
//   wp.length = sizeof wp;
//   if (GetWindowPlacement(mine, &wp)) {
//       SetWindowPlacement(partner, &wp);
//       ShowWindow(partner, wp.showCmd);
//   }
#pragma once

#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

struct WINDOWPLACEMENT {
    UINT length;
    UINT flags;
    UINT showCmd;
    POINT ptMinPosition;
    POINT ptMaxPosition;
    RECT rcNormalPosition;
};

// The placement of a window of this process: its rectangle in screen
// coordinates (a child's in its parent's client coordinates) and
// SW_SHOWMINIMIZED or SW_SHOWMAXIMIZED for a minimised or maximised window,
// else SW_SHOWNORMAL (a hidden window reports the state it would be shown in, so
// that another window can take it over). FALSE for an unknown window.
VXBASE_EXPORT BOOL GetWindowPlacement(HWND hwnd, WINDOWPLACEMENT* placement);
// Moves the window to rcNormalPosition and shows it by showCmd. A window of
// another process is placed by its own process. FALSE if it cannot be
// reached.
VXBASE_EXPORT BOOL SetWindowPlacement(HWND hwnd, const WINDOWPLACEMENT* placement);
