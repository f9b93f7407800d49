// CDC::DrawDragRect: the exclusive-or frame that follows a drag. Inverting
// is its own inverse, so drawing the new frame and the old one in one stroke
// (their regions combined by exclusive or) moves the frame without a trace
// and without flicker where the two overlap.
#include "ui/gdi/cdc.h"

#include "ui/gdi/cgdiobject.h"

#include <algorithm>

namespace {

// The frame of `rect` that is `size` thick; the whole rectangle when the
// frame would meet itself.
void FrameRegion(CRgn& out, const RECT* rect, SIZE size)
{
    CRgn outside;
    outside.CreateRectRgnIndirect(rect);
    CRect inner(*rect);
    inner.DeflateRect(size.cx, size.cy);
    CRect inside;
    inside.IntersectRect(rect, &inner);
    CRgn hole;
    hole.CreateRectRgnIndirect(&inside);
    out.CreateRectRgn(0, 0, 0, 0);
    out.CombineRgn(&outside, &hole, RGN_XOR);
}

void InvertWith(CDC& dc, CRgn& region, CBrush* brush)
{
    dc.SelectClipRgn(&region);
    CRect box;
    dc.GetClipBox(&box);
    CBrush* old = dc.SelectObject(brush);
    dc.PatBlt(box.left, box.top, box.Width(), box.Height(), PATINVERT);
    dc.SelectObject(old);
}

} // namespace

CBrush* CDC::GetHalftoneBrush()
{
    // One object for the process, as the framework kept it.
    static CBrush* const brush = [] {
        WORD pattern[8];
        for (int i = 0; i < 8; ++i)
            pattern[i] = static_cast<WORD>(0x5555u << (i & 1));
        auto* b = new CBrush;
        HBITMAP bits = ::CreateBitmap(8, 8, 1, 1, pattern);
        b->Attach(::CreatePatternBrush(bits));
        ::DeleteObject(bits);
        return b;
    }();
    return brush;
}

void CDC::DrawDragRect(const RECT* rect, SIZE size, const RECT* lastRect, SIZE lastSize, CBrush* brush,
                       CBrush* lastBrush)
{
    if (!rect)
        return;
    if (!brush)
        brush = GetHalftoneBrush();
    if (!lastBrush)
        lastBrush = brush;
    const int saved = SaveDC();
    CRgn now;
    FrameRegion(now, rect, size);
    if (lastRect) {
        CRgn last;
        FrameRegion(last, lastRect, lastSize);
        if (brush != lastBrush) {
            // Different brushes do not cancel: take the old frame away first.
            InvertWith(*this, last, lastBrush);
            InvertWith(*this, now, brush);
        } else {
            CRgn both;
            both.CreateRectRgn(0, 0, 0, 0);
            both.CombineRgn(&last, &now, RGN_XOR);
            InvertWith(*this, both, brush);
        }
    } else {
        InvertWith(*this, now, brush);
    }
    RestoreDC(saved);
}
