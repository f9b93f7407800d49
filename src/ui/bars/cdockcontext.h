// CDockContext: a bar's drag between the frame's sides and a floating mini
// frame. A press on the bar's gripper (or a mini frame's caption) starts it;
// the bar takes the mouse, and the release docks the bar at the side under
// the cursor, or floats it there. Ctrl held while releasing always floats.
// A double click docks a floating bar back where it was, or floats a docked
// one where it last floated.
#pragma once

#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

class CControlBar;
class CDockBar;

class VXBASE_UI_EXPORT CDockContext {
public:
    explicit CDockContext(CControlBar* bar);

    // Starts a drag at a screen point: the bar captures the mouse.
    void StartDrag(CPoint screen);
    bool IsTracking() const { return m_tracking; }
    // The bar's mouse messages while tracking; true when taken.
    bool Track(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    void ToggleDocking();
    // The dock bar that takes a bar dropped at a screen point, or null to
    // float it: the first side (top, bottom, left, right) the bar may dock
    // at whose band holds the point.
    CDockBar* DockBarAt(CPoint screen) const;

    CControlBar* m_pBar;
    // Where the bar was docked last (side and screen rectangle), and where
    // it floated last, for ToggleDocking.
    UINT m_uMRUDockID = 0;
    CRect m_rectMRUDockPos;
    CPoint m_ptMRUFloatPos{-1, -1};

private:
    void EndDrag(CPoint screen, bool floatOnly);
    void CancelDrag();

    bool m_tracking = false;
    CPoint m_ptStart;
    CRect m_rectStart; // the bar's window rectangle at the start
};
