// Sizing a top-level window as the user does: the limits a window sets
// through WM_GETMINMAXINFO, and a drag at a size grip.
//
//   vx::SizeGripTracker grip;
//   grip.Begin(dialog, screenPoint);      // button down on the grip
//   grip.Track(newScreenPoint);           // mouse moves: the window follows
//   grip.End();
#pragma once

#include "platform/framework/rect.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

namespace vx {

// The window's answer to WM_GETMINMAXINFO, asked with the platform's
// defaults: no minimum below SM_CXMIN/SM_CYMIN, the virtual screen at most.
VXBASE_UI_EXPORT MINMAXINFO QueryMinMaxInfo(CWnd& window);
// `size` held within the track sizes of `limits`.
VXBASE_UI_EXPORT CSize ClampTrackSize(const MINMAXINFO& limits, CSize size);

class VXBASE_UI_EXPORT SizeGripTracker {
public:
    // Starts sizing the top-level window of `window` from a screen point.
    void Begin(CWnd& window, POINT screen);
    // The window takes the size the drag asks for, within its limits;
    // false when no drag runs.
    bool Track(POINT screen);
    void End();
    bool IsActive() const { return m_window != nullptr; }

private:
    CWnd* m_window = nullptr;
    CPoint m_start;
    CSize m_startSize;
};

} // namespace vx
