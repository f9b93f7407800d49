// Bridges between the window shim and Qt, for hosts and tests that work
// with Qt types directly: images of bitmaps, icons and devices, the widget
// of a window, rendering a window, the resource images, and text.
//
// Qt classes are only declared here; include their headers where you use
// these functions.
//
//   #include <QImage>
//   QImage shot = vx::RenderWindow(button);
//   shot.save("button.png");
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

class QImage;
class QString;
class QWidget;

namespace vx {

// A copy of a bitmap's pixels (RGB32); a null image for a bad handle.
VXBASE_UI_EXPORT QImage ImageOfBitmap(HBITMAP bitmap);
// A new true-colour bitmap with the image's pixels (alpha is dropped); the
// caller deletes it with DeleteObject.
VXBASE_UI_EXPORT HBITMAP BitmapFromQImage(const QImage& image);
// An icon's colour image (black where transparent) or, with `mask`, its mask
// (white where transparent).
VXBASE_UI_EXPORT QImage ImageOfIcon(HICON icon, bool mask = false);
// A new icon from an image: pixels with alpha below 128 are transparent.
VXBASE_UI_EXPORT HICON IconFromQImage(const QImage& image);
// A copy of what a device draws into: its window's pixels or its bitmap.
VXBASE_UI_EXPORT QImage ImageOfDC(HDC dc);
// Adds or replaces an image of the resource table that LoadImageA,
// LoadBitmapA and LoadIconA read: `kind` is IMAGE_BITMAP, IMAGE_ICON or
// IMAGE_CURSOR. A null image removes the entry, so that the library's own
// image (":/vxbase/bitmaps/<id>.png" and so on) shows again.
VXBASE_UI_EXPORT void SetResourceImage(UINT kind, UINT id, const QImage& image);
// The widget that shows a window, or null for a window without one.
VXBASE_UI_EXPORT QWidget* WidgetOfWindow(const CWnd* window);
// The icon the desktop shows for a top-level window (null: none).
VXBASE_UI_EXPORT void SetWindowIcon(CWnd& window, HICON icon);
// The window and its visible children as they show, painted through their
// handlers, in an image of the window's size (null for a window without one).
VXBASE_UI_EXPORT QImage RenderWindow(CWnd& window);
// Code page text to Qt text and back.
VXBASE_UI_EXPORT QString ToQString(const char* text, int count = -1);
VXBASE_UI_EXPORT CString FromQString(const QString& text);

} // namespace vx
