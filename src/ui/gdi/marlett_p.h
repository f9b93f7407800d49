// Internal; do not include directly.
//
// The glyphs the original took from the font "Marlett", drawn as shapes on
// a 16 x 16 grid scaled to the em square: 0x30 minimise, 0x31 maximise,
// 0x32 restore, 0x33 to 0x36 arrows left, right, up, down, 0x38 the small
// arrow of a submenu, 0x61 and 0x62 check marks, 0x69 bullet, 0x72 close.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRect>

namespace vx::gdi {

bool HasMarlettGlyph(unsigned char code);
// Fills the glyph into the em square `em`; unknown codes draw nothing.
void DrawMarlettGlyph(QPainter& painter, unsigned char code, const QRect& em, const QColor& color);

} // namespace vx::gdi
