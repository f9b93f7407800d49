// CListCtrl: mouse, keys, scroll bars and what the header reports.
#include "ui/listviews/clistctrl_p.h"

#include "ui/gdi/cdc.h"
#include "ui/listviews/commonctrl_p.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstdlib>

using vx::listviews::Bar;

namespace {

// The scroll codes of WM_VSCROLL and WM_HSCROLL.
constexpr UINT kLineUp = 0;
constexpr UINT kLineDown = 1;
constexpr UINT kPageUp = 2;
constexpr UINT kPageDown = 3;
constexpr UINT kThumbPosition = 4;
constexpr UINT kThumbTrack = 5;
constexpr UINT kTop = 6;
constexpr UINT kBottom = 7;
constexpr UINT kEndScroll = 8;

// Pixels a line of horizontal scrolling moves.
constexpr int kHorizontalLine = 16;

enum Part { None = 0, LineUp, PageUp, Thumb, PageDown, LineDown };

struct BarGeometry {
    CRect up, down, track, thumb;
    int travel = 0; // how far the thumb can move
};

BarGeometry Measure(const Bar& bar, bool vertical)
{
    BarGeometry g;
    const CRect& r = bar.rect;
    const int thickness = vertical ? r.Width() : r.Height();
    const int length = vertical ? r.Height() : r.Width();
    const int arrow = std::min(thickness, length / 2);
    auto span = [&](int from, int to) {
        return vertical ? CRect(r.left, r.top + from, r.right, r.top + to)
                        : CRect(r.left + from, r.top, r.left + to, r.bottom);
    };
    g.up = span(0, arrow);
    g.down = span(length - arrow, length);
    g.track = span(arrow, length - arrow);
    const int trackLength = length - 2 * arrow;
    const int range = bar.max + 1;
    if (range <= bar.page || trackLength < 8 || bar.page <= 0)
        return g;
    const int thumb = std::max(8, static_cast<int>(static_cast<long long>(trackLength) * bar.page / range));
    g.travel = trackLength - thumb;
    const int last = range - bar.page;
    const int offset = last > 0 ? static_cast<int>(static_cast<long long>(g.travel) * bar.pos / last) : 0;
    g.thumb = span(arrow + offset, arrow + offset + thumb);
    return g;
}

Part HitBar(const BarGeometry& g, CPoint pt, bool vertical)
{
    if (g.up.PtInRect(pt))
        return LineUp;
    if (g.down.PtInRect(pt))
        return LineDown;
    if (g.thumb.PtInRect(pt))
        return Thumb;
    if (!g.track.PtInRect(pt) || g.thumb.IsRectEmpty())
        return None;
    const bool before = vertical ? pt.y < g.thumb.top : pt.x < g.thumb.left;
    return before ? PageUp : PageDown;
}

void PaintArrow(HDC dc, const CRect& box, int direction /* 0 up, 1 down, 2 left, 3 right */, bool enabled)
{
    CRect r = box;
    FillRect(dc, &r, GetSysColorBrush(COLOR_BTNFACE));
    DrawEdge(dc, &r, EDGE_RAISED, BF_RECT);
    const COLORREF ink = GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
    const int cx = box.left + box.Width() / 2;
    const int cy = box.top + box.Height() / 2;
    for (int i = 0; i < 4; ++i) {
        for (int j = -i; j <= i; ++j) {
            switch (direction) {
            case 0: SetPixelV(dc, cx + j, cy - 2 + i, ink); break;
            case 1: SetPixelV(dc, cx + j, cy + 1 - i, ink); break;
            case 2: SetPixelV(dc, cx - 2 + i, cy + j, ink); break;
            default: SetPixelV(dc, cx + 1 - i, cy + j, ink); break;
            }
        }
    }
}

void PaintBar(HDC dc, const Bar& bar, bool vertical)
{
    if (!bar.shown || bar.rect.IsRectEmpty() || !RectVisible(dc, &bar.rect))
        return;
    const BarGeometry g = Measure(bar, vertical);
    const bool enabled = !g.thumb.IsRectEmpty();
    PaintArrow(dc, g.up, vertical ? 0 : 2, enabled);
    PaintArrow(dc, g.down, vertical ? 1 : 3, enabled);
    // The track in the classic checker of face and highlight.
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    const COLORREF light = GetSysColor(COLOR_BTNHIGHLIGHT);
    for (int y = g.track.top; y < g.track.bottom; ++y) {
        for (int x = g.track.left; x < g.track.right; ++x)
            SetPixelV(dc, x, y, ((x + y) & 1) ? face : light);
    }
    if (enabled) {
        CRect thumb = g.thumb;
        FillRect(dc, &thumb, GetSysColorBrush(COLOR_BTNFACE));
        DrawEdge(dc, &thumb, EDGE_RAISED, BF_RECT);
    }
}

} // namespace

// --- scroll bars -------------------------------------------------------------------------

void CListCtrl::Private::PaintBars(HDC dc)
{
    PaintBar(dc, vbar, true);
    PaintBar(dc, hbar, false);
    if (vbar.shown && hbar.shown) {
        CRect corner(vbar.rect.left, hbar.rect.top, vbar.rect.right, hbar.rect.bottom);
        FillRect(dc, &corner, GetSysColorBrush(COLOR_BTNFACE));
    }
}

LRESULT CListCtrl::Private::BarHitTest(CPoint screen) const
{
    const CPoint at = ScreenToWindow(screen);
    if (vbar.shown && vbar.rect.PtInRect(at))
        return HTVSCROLL;
    if (hbar.shown && hbar.rect.PtInRect(at))
        return HTHSCROLL;
    return HTNOWHERE;
}

bool CListCtrl::Private::BarDown(CPoint point)
{
    const bool onV = vbar.shown && vbar.rect.PtInRect(point);
    const bool onH = hbar.shown && hbar.rect.PtInRect(point);
    if (!onV && !onH)
        return false;
    const bool vertical = onV;
    const BarGeometry g = Measure(vertical ? vbar : hbar, vertical);
    const Part part = HitBar(g, point, vertical);
    if (part == None)
        return true;
    barPressed = vertical ? 1 : 2;
    barPart = part;
    barGrab = vertical ? point.y - g.thumb.top : point.x - g.thumb.left;
    const UINT message = vertical ? WM_VSCROLL : WM_HSCROLL;
    static const UINT codes[] = {0, kLineUp, kPageUp, 0, kPageDown, kLineDown};
    if (part != Thumb)
        q.SendMessage(message, MAKEWPARAM(static_cast<WORD>(codes[part]), 0), 0);
    if (q.m_hWnd) {
        q.SetCapture();
        capturedByUs = true;
    }
    return true;
}

void CListCtrl::Private::BarMove(CPoint point)
{
    if (barPart != Thumb)
        return;
    const bool vertical = barPressed == 1;
    const Bar& bar = vertical ? vbar : hbar;
    const BarGeometry g = Measure(bar, vertical);
    if (g.travel <= 0)
        return;
    const int along = (vertical ? point.y - g.track.top : point.x - g.track.left) - barGrab;
    const int last = bar.max + 1 - bar.page;
    const int pos = std::clamp(static_cast<int>(static_cast<long long>(along) * last / g.travel), 0, last);
    q.SendMessage(vertical ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(static_cast<WORD>(kThumbTrack), static_cast<WORD>(pos)),
                  0);
}

void CListCtrl::Private::VScroll(UINT code, int pos)
{
    const int page = std::max(1, PageRows());
    switch (code) {
    case kLineUp: SetTop(top - 1); break;
    case kLineDown: SetTop(top + 1); break;
    case kPageUp: SetTop(top - page); break;
    case kPageDown: SetTop(top + page); break;
    case kThumbPosition:
    case kThumbTrack: SetTop(pos); break;
    case kTop: SetTop(0); break;
    case kBottom: SetTop(LastTop()); break;
    default: break;
    }
}

void CListCtrl::Private::HScroll(UINT code, int pos)
{
    const int page = std::max(1, DataRect().Width());
    switch (code) {
    case kLineUp: SetScrollX(scrollX - kHorizontalLine); break;
    case kLineDown: SetScrollX(scrollX + kHorizontalLine); break;
    case kPageUp: SetScrollX(scrollX - page); break;
    case kPageDown: SetScrollX(scrollX + page); break;
    case kThumbPosition:
    case kThumbTrack: SetScrollX(pos); break;
    case kTop: SetScrollX(0); break;
    case kBottom: SetScrollX(totalWidth); break;
    default: break;
    }
}

// --- mouse --------------------------------------------------------------------------------

void CListCtrl::Private::MoveFocus(int item, UINT)
{
    if (Valid(item))
        ChangeStateOne(item, LVIS_FOCUSED, LVIS_FOCUSED);
}

void CListCtrl::Private::ButtonDown(UINT flags, CPoint point, bool doubleClick)
{
    const HWND self = q.m_hWnd;
    if (CWnd::GetFocus() != &q)
        q.SetFocus();
    if (!IsWindow(self) || !DataRect().PtInRect(point))
        return;
    LVHITTESTINFO hit{};
    hit.pt = point;
    const int item = static_cast<int>(q.SendMessage(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    const bool ctrl = (flags & MK_CONTROL) != 0;
    const bool shift = (flags & MK_SHIFT) != 0;
    const bool single = (q.GetStyle() & LVS_SINGLESEL) != 0;
    if (Valid(item)) {
        if ((hit.flags & LVHT_ONITEMSTATEICON) && (exStyle & LVS_EX_CHECKBOXES) && !doubleClick) {
            const UINT now = (items[static_cast<std::size_t>(item)]->state & LVIS_STATEIMAGEMASK) >> 12;
            ChangeStateOne(item, INDEXTOSTATEIMAGEMASK(now == 2 ? 1 : 2), LVIS_STATEIMAGEMASK);
        }
        if (!IsWindow(self) || !Valid(item))
            return;
        if (shift && !single) {
            SelectRange(Valid(mark) ? mark : item, item, ctrl);
        } else if (ctrl && !single) {
            const bool on = (items[static_cast<std::size_t>(item)]->state & LVIS_SELECTED) != 0;
            ChangeStateOne(item, on ? 0 : LVIS_SELECTED, LVIS_SELECTED);
            mark = item;
        } else {
            SelectOnly(item);
            mark = item;
        }
        if (!IsWindow(self))
            return;
        MoveFocus(item, flags);
        if (!IsWindow(self))
            return;
        q.SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(item), FALSE);
    } else if (!ctrl && !shift) {
        ChangeState(-1, 0, LVIS_SELECTED);
    }
    if (!IsWindow(self))
        return;
    pressed = !doubleClick;
    dragging = false;
    pressItem = item;
    pressPoint = point;
    if (doubleClick) {
        ignoreUp = true;
        LVHITTESTINFO sub{};
        sub.pt = point;
        q.SendMessage(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&sub));
        NMITEMACTIVATE nm{};
        nm.iItem = sub.iItem;
        nm.iSubItem = sub.iSubItem;
        nm.ptAction = point;
        nm.uKeyFlags = (ctrl ? LVKF_CONTROL : 0) | (shift ? LVKF_SHIFT : 0);
        Notify(NM_DBLCLK, &nm.hdr);
    }
}

void CListCtrl::Private::MouseMove(UINT flags, CPoint point)
{
    if (barPressed) {
        BarMove(ClientToWindow(point)); // the capture brings client coordinates
        return;
    }
    if (!pressed || dragging || !(flags & MK_LBUTTON))
        return;
    if (std::abs(point.x - pressPoint.x) <= vx::listviews::kDragThreshold &&
        std::abs(point.y - pressPoint.y) <= vx::listviews::kDragThreshold)
        return;
    dragging = true;
    if (Valid(pressItem))
        NotifyList(LVN_BEGINDRAG, pressItem, 0, 0, 0, 0, pressPoint, items[static_cast<std::size_t>(pressItem)]->lParam);
}

void CListCtrl::Private::ButtonUp(UINT flags, CPoint point)
{
    if (barPressed) {
        const bool vertical = barPressed == 1;
        const int part = barPart;
        barPressed = 0;
        barPart = None;
        if (capturedByUs) {
            capturedByUs = false;
            CWnd::ReleaseCapture();
        }
        const UINT message = vertical ? WM_VSCROLL : WM_HSCROLL;
        if (part == Thumb)
            q.SendMessage(message, MAKEWPARAM(static_cast<WORD>(kThumbPosition),
                                              static_cast<WORD>(vertical ? vbar.pos : hbar.pos)), 0);
        if (q.m_hWnd)
            q.SendMessage(message, MAKEWPARAM(static_cast<WORD>(kEndScroll), 0), 0);
        return;
    }
    if (ignoreUp) {
        ignoreUp = false;
        pressed = false;
        return;
    }
    if (!pressed)
        return;
    pressed = false;
    if (dragging) {
        dragging = false;
        return;
    }
    // A click: the button went up close to where it went down.
    LVHITTESTINFO hit{};
    hit.pt = point;
    q.SendMessage(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    NMITEMACTIVATE nm{};
    nm.iItem = hit.iItem;
    nm.iSubItem = hit.iSubItem;
    nm.ptAction = point;
    nm.uKeyFlags = ((flags & MK_CONTROL) ? LVKF_CONTROL : 0) | ((flags & MK_SHIFT) ? LVKF_SHIFT : 0);
    Notify(NM_CLICK, &nm.hdr);
}

// --- keys -----------------------------------------------------------------------------------

void CListCtrl::Private::KeyDown(UINT key)
{
    const HWND self = q.m_hWnd;
    NMLVKEYDOWN nm{};
    nm.wVKey = static_cast<WORD>(key);
    Notify(LVN_KEYDOWN, &nm.hdr);
    if (!IsWindow(self))
        return;
    const int count = static_cast<int>(items.size());
    const bool ctrl = GetKeyState(VK_CONTROL) < 0;
    const bool shift = GetKeyState(VK_SHIFT) < 0;
    const bool single = (q.GetStyle() & LVS_SINGLESEL) != 0;
    switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
        // Report view scrolls sideways, as the scroll bar's arrows do.
        SetScrollX(scrollX + (key == VK_LEFT ? -kHorizontalLine : kHorizontalLine));
        return;
    case VK_RETURN: {
        NMHDR ret{};
        Notify(NM_RETURN, &ret);
        return;
    }
    case VK_SPACE:
        if (!Valid(focus))
            return;
        if (ctrl && !single) {
            const bool on = (items[static_cast<std::size_t>(focus)]->state & LVIS_SELECTED) != 0;
            ChangeStateOne(focus, on ? 0 : LVIS_SELECTED, LVIS_SELECTED);
        } else if (exStyle & LVS_EX_CHECKBOXES) {
            const UINT now = (items[static_cast<std::size_t>(focus)]->state & LVIS_STATEIMAGEMASK) >> 12;
            ChangeStateOne(focus, INDEXTOSTATEIMAGEMASK(now == 2 ? 1 : 2), LVIS_STATEIMAGEMASK);
        } else {
            SelectOnly(focus);
        }
        return;
    default:
        break;
    }
    if (count == 0)
        return;
    const int from = Valid(focus) ? focus : -1;
    const int page = std::max(1, PageRows() - 1);
    int to = -1;
    switch (key) {
    case VK_UP: to = from < 0 ? 0 : std::max(0, from - 1); break;
    case VK_DOWN: to = from < 0 ? 0 : std::min(count - 1, from + 1); break;
    case VK_PRIOR: to = std::max(0, (from < 0 ? 0 : from) - page); break;
    case VK_NEXT: to = std::min(count - 1, (from < 0 ? 0 : from) + page); break;
    case VK_HOME: to = 0; break;
    case VK_END: to = count - 1; break;
    default: return;
    }
    if (shift && !single) {
        SelectRange(Valid(mark) ? mark : (from < 0 ? to : from), to, ctrl);
    } else if (!ctrl) {
        SelectOnly(to);
        mark = to;
    }
    if (!IsWindow(self) || !Valid(to))
        return;
    MoveFocus(to, 0);
    if (IsWindow(self))
        q.SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(to), FALSE);
}

// --- the header -------------------------------------------------------------------------------

LRESULT CListCtrl::Private::HeaderNotify(NMHDR* hdr)
{
    const auto* nm = reinterpret_cast<const NMHEADER*>(hdr);
    switch (hdr->code) {
    case HDN_ITEMCHANGED: {
        const int oldTotal = totalWidth;
        const std::vector<int> oldLeft = left;
        SyncFromHeader();
        // Everything right of the first column that moved or changed repaints.
        int from = totalWidth;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const int was = c < oldLeft.size() ? oldLeft[c] : -1;
            if (was != left[c] || static_cast<int>(c) == nm->iItem)
                from = std::min(from, left[c]);
        }
        if (oldTotal != totalWidth)
            from = std::min(from, std::min(oldTotal, totalWidth));
        const CRect data = DataRect();
        Invalidate(CRect(from - scrollX, data.top, data.right, data.bottom));
        if (!layingOut)
            Relayout();
        return 0;
    }
    case HDN_ITEMCLICK:
        if (!(q.GetStyle() & LVS_NOSORTHEADER))
            NotifyList(LVN_COLUMNCLICK, -1, nm->iItem);
        return 0;
    case HDN_DIVIDERDBLCLICK:
        q.SendMessage(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(nm->iItem), LVSCW_AUTOSIZE_USEHEADER);
        return 0;
    case HDN_BEGINDRAG:
        // Columns move only with LVS_EX_HEADERDRAGDROP.
        return (exStyle & LVS_EX_HEADERDRAGDROP) ? 0 : 1;
    default:
        return 0;
    }
}
