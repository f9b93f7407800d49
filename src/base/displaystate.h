// The display state that every placement of a dialog consults: whether a
// second display is handled, the size of the first display, the whole
// virtual desktop, the rectangle in which dialogs are wanted, and whether
// dialogs follow that rectangle rather than the main window.
//
// It lives in the core library because the load path fills it; the dialog
// classes of vxbase-ui (CVxDialog) read and write it through their static
// Set2Display... and Get2Display... functions.
#pragma once

#include "platform/framework/rect.h"
#include "vxbase_export.h"

namespace vx {

struct DisplayState {
    int enable = 0;
    RECT rect{0, 0, 0, 0};
    int rechteMaus = 0; // kept as 0 or 1
    SIZE first{0, 0};
    RECT virtualRect{0, 0, 0, 0};
};

// The one display state of the process.
VXBASE_EXPORT DisplayState& TheDisplayState();

} // namespace vx
