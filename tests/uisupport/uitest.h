// Helpers of the window-class tests: drawing canvases, rendering windows,
// and pixel assertions that save the image when they fail, so that a failure
// in CI can be looked at.
#pragma once

#include "platform/windows/cwnd.h"
#include "platform/framework/rect.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/wingdi.h"

#include <gtest/gtest.h>

#include <QImage>

#include <string>

namespace vxtest {

// A memory device with a true-colour bitmap, filled with `fill`.
class Canvas {
public:
    Canvas(int width, int height, COLORREF fill = RGB(255, 255, 255));
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC hdc() const { return m_dc.m_hDC; }
    CDC& dc() { return m_dc; }
    HBITMAP bitmap() const { return m_bitmap; }
    QImage Image() const;

private:
    CDC m_dc;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_old = nullptr;
};

// Writes `image` as a PNG named after the running test into the test output
// directory (VX_TEST_OUTPUT_DIR) and returns the path.
std::string SaveFailureImage(const QImage& image, const std::string& what);

::testing::AssertionResult PixelIs(const QImage& image, int x, int y, COLORREF expected);
// Every pixel of `rect` has the colour.
::testing::AssertionResult RectIs(const QImage& image, const RECT& rect, COLORREF expected);
// How many pixels of `rect` have the colour.
int CountColor(const QImage& image, const RECT& rect, COLORREF color);
COLORREF ColorAt(const QImage& image, int x, int y);
// The smallest rectangle holding every pixel of a colour; empty when none has it.
CRect Ink(const QImage& image, COLORREF color);

// A window rendered as it shows.
QImage Render(CWnd& window);
// Where the child `id` of `parent` lies, in the parent's client coordinates.
CRect ChildPlace(CWnd& parent, int id);
// Gives `window` a client area of cx x cy as the desktop would (WM_SIZE follows).
void SetClientSize(CWnd& window, int cx, int cy);

// Simulated input, delivered as the Qt backend delivers it: through the
// PreTranslateMessage of the window and its parents, then the window.
// Keys go to the focused window (or `to`); the modifiers are pressed around
// the key and let go after it.
enum Modifier { kNone = 0, kShift = 1, kCtrl = 2, kAlt = 4 };
void Key(UINT virtualKey, int modifiers = kNone, CWnd* to = nullptr);
// WM_CHAR for each byte of `text`, to the focused window.
void Type(const char* text);
void Click(CWnd& window, int x, int y);
void DoubleClick(CWnd& window, int x, int y);
void Mouse(CWnd& window, UINT message, int x, int y, UINT flags = 0);

} // namespace vxtest

#define EXPECT_PIXEL(image, x, y, color) EXPECT_TRUE(vxtest::PixelIs((image), (x), (y), (color)))
#define EXPECT_RECT_COLOR(image, rect, color) EXPECT_TRUE(vxtest::RectIs((image), (rect), (color)))
