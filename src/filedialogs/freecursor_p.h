// Internal; do not include directly.
//
// While a file dialog runs the cursor may go anywhere: a clip the program
// set (a drawing being dragged) is lifted and put back when the dialog ends.
#pragma once

#include "platform/windows/winuser.h"

namespace vx {

class FreeCursor {
public:
    FreeCursor() : m_clipped(GetClipCursor(&m_clip)) { ClipCursor(nullptr); }
    ~FreeCursor()
    {
        if (m_clipped)
            ClipCursor(&m_clip);
    }
    FreeCursor(const FreeCursor&) = delete;
    FreeCursor& operator=(const FreeCursor&) = delete;

private:
    RECT m_clip{};
    BOOL m_clipped;
};

} // namespace vx
