// Internal to the standard controls: one scroll bar's geometry, painting and
// mouse tracking, shared by the scroll bar control and by the list box and
// the edit for their own bars. Do not include directly.
#pragma once

#include "platform/framework/rect.h"
#include "ui/gdi/cdc.h"

namespace vx::controls {

class ScrollBarPart {
public:
    enum Part { None, LineUp, PageUp, Thumb, PageDown, LineDown };

    bool vertical = true;
    CRect rect;
    int min = 0;
    int max = 100;
    int page = 0;
    int pos = 0;
    bool enabled = true;

    // The highest position the thumb can take: max less the page, plus one.
    int MaxPos() const;
    bool CanScroll() const { return enabled && MaxPos() > min; }
    // Position clamped to the range.
    int Clamp(int value) const;
    CRect ThumbRect() const;
    Part HitTest(CPoint point) const;
    void Paint(CDC& dc) const;

    // Mouse tracking: the part pressed (None when nothing is pressed), and
    // while the thumb is dragged, where it would put the position.
    Part pressed = None;
    bool pressedInside = false;
    int trackPos = 0;
    // Starts a press; returns the part hit.
    Part Press(CPoint point);
    // The position the thumb dragged to `point` stands for.
    int DragTo(CPoint point);

private:
    int Along() const;
    int ArrowSize() const;
    int ThumbLength() const;
    int grabOffset_ = 0;
};

// The standard width of a vertical scroll bar.
int ScrollBarWidth();

} // namespace vx::controls
