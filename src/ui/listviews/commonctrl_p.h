// Internal to the list view and the header: what both controls share (the
// font they draw with, notifications to the parent, the classic check box).
// Do not include directly.
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/gdi/wingdi.h"

namespace vx::listviews {

// How far the mouse moves with a button down before it counts as a drag.
constexpr int kDragThreshold = 4;

// The window's font (WM_GETFONT), or DEFAULT_GUI_FONT.
HFONT FontOf(const CWnd& window);
// The height of a line of text in the font.
int LineHeight(HFONT font);
// Sends WM_NOTIFY with `header` (hwndFrom, idFrom and code are filled in) to
// the parent; a window without a parent hears it reflected, as a parent
// would hand it back. Returns the answer.
LRESULT Notify(CWnd& from, UINT code, NMHDR* header);
// A classic 13 x 13 check box at `box`'s top left, sunken, with its mark.
void DrawCheckBox(HDC dc, const RECT& box, bool checked, bool enabled);

} // namespace vx::listviews
