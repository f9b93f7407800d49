// Internal to the dialogs: dialog units and the sizing corner. Do not
// include directly.
#pragma once

#include "platform/framework/rect.h"
#include "platform/windows/cwnd.h"
#include "ui/gdi/wingdi.h"

namespace vx::dialogs {

// a * b / c, rounded half away from zero, as the platform's MulDiv.
int Scale(int a, int b, int c);
// The dialog base units of a font: the average width of the letters A to Z
// and a to z, and the character height.
SIZE BaseUnitsOf(HFONT font);
// Dialog units to pixels: x by units.cx / 4, y by units.cy / 8.
void MapRect(SIZE units, RECT& rect);
// Whether a client point lies in the square at the lower right corner where
// a sizable dialog is sized.
bool InSizeCorner(const CWnd& dialog, POINT client);

} // namespace vx::dialogs
