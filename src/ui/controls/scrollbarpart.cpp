#include "ui/controls/scrollbarpart_p.h"

#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>

namespace vx::controls {
namespace {

void DrawArrowButton(CDC& dc, const CRect& r, char glyph, bool pressed, bool enabled)
{
    CRect face(r);
    dc.FillSolidRect(&face, GetSysColor(COLOR_BTNFACE));
    if (pressed) {
        CBrush shadow(GetSysColor(COLOR_BTNSHADOW));
        dc.FrameRect(&face, &shadow);
    } else {
        dc.DrawEdge(&face, EDGE_RAISED, BF_RECT);
    }
    if (r.Width() < 6 || r.Height() < 6)
        return;
    CFont marlett;
    const int size = std::min(r.Width(), r.Height()) - 4;
    marlett.CreateFont(-size, 0, 0, 0, FW_NORMAL, 0, 0, 0, SYMBOL_CHARSET, 0, 0, 0, 0, "Marlett");
    CFont* old = dc.SelectObject(&marlett);
    dc.SetBkMode(TRANSPARENT);
    CRect glyphRect(r);
    if (pressed)
        glyphRect.OffsetRect(1, 1);
    if (!enabled) {
        CRect light(glyphRect);
        light.OffsetRect(1, 1);
        dc.SetTextColor(GetSysColor(COLOR_BTNHIGHLIGHT));
        dc.DrawText(&glyph, 1, &light, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    }
    dc.SetTextColor(GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    dc.DrawText(&glyph, 1, &glyphRect, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    dc.SelectObject(old);
}

// The classic track: every other pixel in the highlight colour.
void FillTrack(CDC& dc, const CRect& r, bool dark)
{
    if (r.IsRectEmpty())
        return;
    if (dark) {
        dc.FillSolidRect(&r, GetSysColor(COLOR_3DDKSHADOW));
        return;
    }
    DWORD bits[64];
    const DWORD face = 0xFF000000u | (GetRValue(GetSysColor(COLOR_BTNFACE)) << 16) |
                       (GetGValue(GetSysColor(COLOR_BTNFACE)) << 8) | GetBValue(GetSysColor(COLOR_BTNFACE));
    const DWORD light = 0xFF000000u | (GetRValue(GetSysColor(COLOR_BTNHIGHLIGHT)) << 16) |
                        (GetGValue(GetSysColor(COLOR_BTNHIGHLIGHT)) << 8) | GetBValue(GetSysColor(COLOR_BTNHIGHLIGHT));
    for (int i = 0; i < 64; ++i)
        bits[i] = ((i / 8 + i % 8) % 2) ? face : light;
    HBITMAP pattern = CreateBitmap(8, 8, 1, 32, bits);
    HBRUSH brush = CreatePatternBrush(pattern);
    ::FillRect(dc, &r, brush);
    DeleteObject(brush);
    DeleteObject(pattern);
}

} // namespace

int ScrollBarWidth()
{
    return GetSystemMetrics(SM_CXVSCROLL);
}

int ScrollBarPart::Along() const
{
    return vertical ? rect.Height() : rect.Width();
}

int ScrollBarPart::ArrowSize() const
{
    const int across = vertical ? rect.Width() : rect.Height();
    return std::min(across, Along() / 2);
}

int ScrollBarPart::MaxPos() const
{
    return page > 0 ? std::max(min, max - page + 1) : max;
}

int ScrollBarPart::Clamp(int value) const
{
    return std::clamp(value, min, std::max(min, MaxPos()));
}

int ScrollBarPart::ThumbLength() const
{
    const int track = Along() - 2 * ArrowSize();
    const int across = vertical ? rect.Width() : rect.Height();
    if (page <= 0)
        return std::min(across, track);
    const long long range = static_cast<long long>(max) - min + 1;
    const int length = range > 0 ? static_cast<int>(track * static_cast<long long>(page) / range) : track;
    return std::clamp(length, std::min(8, track), track);
}

CRect ScrollBarPart::ThumbRect() const
{
    const int arrow = ArrowSize();
    const int track = Along() - 2 * arrow;
    const int length = ThumbLength();
    if (!CanScroll() || track < 8 || length >= track)
        return CRect();
    const int value = pressed == Thumb ? trackPos : pos;
    const int span = MaxPos() - min;
    const int offset = span > 0 ? static_cast<int>(static_cast<long long>(Clamp(value) - min) * (track - length) / span) : 0;
    const int start = arrow + offset;
    return vertical ? CRect(rect.left, rect.top + start, rect.right, rect.top + start + length)
                    : CRect(rect.left + start, rect.top, rect.left + start + length, rect.bottom);
}

ScrollBarPart::Part ScrollBarPart::HitTest(CPoint p) const
{
    if (!rect.PtInRect(p))
        return None;
    const int at = vertical ? p.y - rect.top : p.x - rect.left;
    const int arrow = ArrowSize();
    if (at < arrow)
        return LineUp;
    if (at >= Along() - arrow)
        return LineDown;
    const CRect thumb = ThumbRect();
    if (thumb.IsRectEmpty())
        return None;
    const int thumbStart = vertical ? thumb.top - rect.top : thumb.left - rect.left;
    const int thumbEnd = vertical ? thumb.bottom - rect.top : thumb.right - rect.left;
    if (at < thumbStart)
        return PageUp;
    if (at >= thumbEnd)
        return PageDown;
    return Thumb;
}

ScrollBarPart::Part ScrollBarPart::Press(CPoint point)
{
    const Part part = CanScroll() ? HitTest(point) : None;
    pressed = part;
    pressedInside = part != None;
    trackPos = pos;
    if (part == Thumb) {
        const CRect thumb = ThumbRect();
        grabOffset_ = vertical ? point.y - thumb.top : point.x - thumb.left;
    }
    return part;
}

int ScrollBarPart::DragTo(CPoint point)
{
    const int arrow = ArrowSize();
    const int track = Along() - 2 * arrow;
    const int length = ThumbLength();
    const int start = (vertical ? point.y - rect.top : point.x - rect.left) - grabOffset_ - arrow;
    const int room = track - length;
    const int span = MaxPos() - min;
    if (room <= 0 || span <= 0)
        return pos;
    const int value = min + static_cast<int>((static_cast<long long>(std::clamp(start, 0, room)) * span + room / 2) / room);
    trackPos = Clamp(value);
    return trackPos;
}

void ScrollBarPart::Paint(CDC& dc) const
{
    if (rect.IsRectEmpty())
        return;
    const int arrow = ArrowSize();
    const bool active = CanScroll();
    CRect first = vertical ? CRect(rect.left, rect.top, rect.right, rect.top + arrow)
                           : CRect(rect.left, rect.top, rect.left + arrow, rect.bottom);
    CRect last = vertical ? CRect(rect.left, rect.bottom - arrow, rect.right, rect.bottom)
                          : CRect(rect.right - arrow, rect.top, rect.right, rect.bottom);
    DrawArrowButton(dc, first, vertical ? '5' : '3', pressed == LineUp && pressedInside, active);
    DrawArrowButton(dc, last, vertical ? '6' : '4', pressed == LineDown && pressedInside, active);
    CRect track = vertical ? CRect(rect.left, first.bottom, rect.right, last.top)
                           : CRect(first.right, rect.top, last.left, rect.bottom);
    const CRect thumb = ThumbRect();
    if (thumb.IsRectEmpty()) {
        FillTrack(dc, track, false);
        return;
    }
    CRect before = vertical ? CRect(track.left, track.top, track.right, thumb.top)
                            : CRect(track.left, track.top, thumb.left, track.bottom);
    CRect after = vertical ? CRect(track.left, thumb.bottom, track.right, track.bottom)
                           : CRect(thumb.right, track.top, track.right, track.bottom);
    FillTrack(dc, before, pressed == PageUp && pressedInside);
    FillTrack(dc, after, pressed == PageDown && pressedInside);
    CRect face(thumb);
    dc.FillSolidRect(&face, GetSysColor(COLOR_BTNFACE));
    dc.DrawEdge(&face, EDGE_RAISED, BF_RECT);
}

} // namespace vx::controls
