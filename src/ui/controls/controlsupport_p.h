// Internal to the standard controls: what they share when they paint and
// talk to their parent. Do not include directly.
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/gdi/cdc.h"

namespace vx::controls {

// Turns a list box into the drop-down list of a combo box (wParam 1) or
// back (0): it follows the mouse without a button, takes a choice on button
// up, tells LBN_SELCANCEL on a click outside itself, and hands the keys to
// the combo box, which keeps the focus.
constexpr UINT kListComboMode = WM_USER + 0x3E01;

// Makes combo boxes show themselves (the view of the core's combo model).
void InstallComboBoxView();

// The font the control draws with: its WM_SETFONT font, else the GUI font.
HFONT FontOf(CWnd& control);
// Sets the system colours `text` and `back` on `dc`, lets the parent change
// them through `ctlColorMessage` (WM_CTLCOLOREDIT, ...), and returns the
// brush to fill with: the parent's, or the system's `back`.
HBRUSH ParentColors(CWnd& control, HDC dc, UINT ctlColorMessage, int text, int back);
// WM_COMMAND with `code` in the high word to the parent.
void Notify(CWnd& control, UINT code);
// The height of one line of text in the control's font.
int LineHeight(CWnd& control);
// A point of a mouse message's lParam.
CPoint PointOf(LPARAM l);
// Whether the key `vk` is down now.
bool KeyDown(int vk);

} // namespace vx::controls
