#include "ui/controls/cscrollbar.h"

#include "ui/controls/controlsupport_p.h"
#include "ui/controls/scrollbarpart_p.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/windows/windowsizing.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>

namespace {

using namespace vx::controls;

// The repeat of a held arrow: a first pause, then a steady rate.
constexpr UINT_PTR kRepeatTimer = 0x7F30;
constexpr UINT kFirstDelay = 400;
constexpr UINT kRepeatDelay = 50;

} // namespace

struct CScrollBar::Private {
    ScrollBarPart bar;
    vx::SizeGripTracker grip;
};

CScrollBar::CScrollBar() : d(std::make_unique<Private>())
{
    d->bar.max = 100;
}

CScrollBar::~CScrollBar() = default;

BOOL CScrollBar::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "ScrollBar", style, rect, parent, id);
}

int CScrollBar::GetScrollPos() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, SBM_GETPOS, 0, 0));
}

int CScrollBar::SetScrollPos(int pos, BOOL redraw)
{
    return static_cast<int>(SendMessage(SBM_SETPOS, static_cast<WPARAM>(pos), redraw));
}

void CScrollBar::GetScrollRange(int* min, int* max) const
{
    ::SendMessageA(m_hWnd, SBM_GETRANGE, reinterpret_cast<WPARAM>(min), reinterpret_cast<LPARAM>(max));
}

void CScrollBar::SetScrollRange(int min, int max, BOOL redraw)
{
    SendMessage(redraw ? SBM_SETRANGEREDRAW : SBM_SETRANGE, static_cast<WPARAM>(min), max);
}

BOOL CScrollBar::SetScrollInfo(LPSCROLLINFO info, BOOL redraw)
{
    SendMessage(SBM_SETSCROLLINFO, redraw, reinterpret_cast<LPARAM>(info));
    return TRUE;
}

BOOL CScrollBar::GetScrollInfo(LPSCROLLINFO info, UINT mask) const
{
    if (!info)
        return FALSE;
    info->fMask = mask;
    return static_cast<BOOL>(::SendMessageA(m_hWnd, SBM_GETSCROLLINFO, 0, reinterpret_cast<LPARAM>(info)));
}

int CScrollBar::GetScrollLimit() const
{
    return d->bar.MaxPos();
}

bool CScrollBar::IsSizeBox() const
{
    return (GetStyle() & (SBS_SIZEBOX | SBS_SIZEGRIP)) != 0;
}

void CScrollBar::Tell(UINT code, int pos)
{
    CWnd* parent = GetParent();
    if (!parent)
        return;
    const UINT message = (GetStyle() & SBS_VERT) ? WM_VSCROLL : WM_HSCROLL;
    parent->SendMessage(message, MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(pos)),
                        reinterpret_cast<LPARAM>(m_hWnd));
}

LRESULT CScrollBar::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    ScrollBarPart& bar = d->bar;
    auto redraw = [&](bool now) {
        if (now)
            Invalidate(FALSE);
    };
    switch (message) {
    case WM_PAINT:
        Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE;
    case WM_GETDLGCODE:
        return IsSizeBox() ? 0 : DLGC_WANTARROWS;
    case SBM_GETPOS:
        return bar.pos;
    case SBM_SETPOS: {
        const int old = bar.pos;
        bar.pos = bar.Clamp(static_cast<int>(wParam));
        redraw(lParam && old != bar.pos);
        return old;
    }
    case SBM_GETRANGE:
        if (wParam)
            *reinterpret_cast<int*>(wParam) = bar.min;
        if (lParam)
            *reinterpret_cast<int*>(lParam) = bar.max;
        return 0;
    case SBM_SETRANGE:
    case SBM_SETRANGEREDRAW: {
        const int old = bar.pos;
        bar.min = static_cast<int>(wParam);
        bar.max = static_cast<int>(lParam);
        bar.pos = bar.Clamp(bar.pos);
        redraw(message == SBM_SETRANGEREDRAW);
        return old;
    }
    case SBM_SETSCROLLINFO: {
        const auto* info = reinterpret_cast<const SCROLLINFO*>(lParam);
        if (!info)
            return bar.pos;
        if (info->fMask & SIF_RANGE) {
            bar.min = info->nMin;
            bar.max = info->nMax;
        }
        if (info->fMask & SIF_PAGE)
            bar.page = static_cast<int>(std::min<UINT>(info->nPage, 0x7FFFFFFF));
        if (info->fMask & SIF_POS)
            bar.pos = info->nPos;
        bar.pos = bar.Clamp(bar.pos);
        redraw(wParam != 0);
        return bar.pos;
    }
    case SBM_GETSCROLLINFO: {
        auto* info = reinterpret_cast<SCROLLINFO*>(lParam);
        if (!info)
            return FALSE;
        if (info->fMask & SIF_RANGE) {
            info->nMin = bar.min;
            info->nMax = bar.max;
        }
        if (info->fMask & SIF_PAGE)
            info->nPage = static_cast<UINT>(bar.page);
        if (info->fMask & SIF_POS)
            info->nPos = bar.pos;
        if (info->fMask & SIF_TRACKPOS)
            info->nTrackPos = bar.pressed == ScrollBarPart::Thumb ? bar.trackPos : bar.pos;
        return TRUE;
    }
    case WM_SIZE:
        return 0;
    case WM_ENABLE:
        bar.enabled = wParam != 0;
        Invalidate(FALSE);
        return 0;
    case WM_SETCURSOR:
        if (IsSizeBox()) {
            ::SetCursor(LoadCursorA(nullptr, IDC_SIZENWSE));
            return TRUE;
        }
        return CWnd::DefWindowProc(message, wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        CPoint p = PointOf(lParam);
        if (IsSizeBox()) {
            ClientToScreen(&p);
            d->grip.Begin(*this, p);
            SetCapture();
            return 0;
        }
        GetClientRect(&bar.rect);
        bar.vertical = (GetStyle() & SBS_VERT) != 0;
        const ScrollBarPart::Part part = bar.Press(p);
        if (part == ScrollBarPart::None)
            return 0;
        SetCapture();
        Invalidate(FALSE);
        if (part == ScrollBarPart::LineUp)
            Tell(SB_LINEUP);
        else if (part == ScrollBarPart::LineDown)
            Tell(SB_LINEDOWN);
        else if (part == ScrollBarPart::PageUp)
            Tell(SB_PAGEUP);
        else if (part == ScrollBarPart::PageDown)
            Tell(SB_PAGEDOWN);
        if (part != ScrollBarPart::Thumb)
            SetTimer(kRepeatTimer, kFirstDelay);
        return 0;
    }
    case WM_MOUSEMOVE: {
        CPoint p = PointOf(lParam);
        if (d->grip.IsActive()) {
            ClientToScreen(&p);
            d->grip.Track(p);
            return 0;
        }
        if (bar.pressed == ScrollBarPart::Thumb) {
            const int before = bar.trackPos;
            const int now = bar.DragTo(p);
            if (now != before) {
                Invalidate(FALSE);
                Tell(SB_THUMBTRACK, now);
            }
        } else if (bar.pressed != ScrollBarPart::None) {
            const bool inside = bar.HitTest(p) == bar.pressed;
            if (inside != bar.pressedInside) {
                bar.pressedInside = inside;
                Invalidate(FALSE);
            }
        }
        return 0;
    }
    case WM_TIMER:
        if (wParam != kRepeatTimer)
            return 0;
        if (bar.pressed == ScrollBarPart::None || bar.pressed == ScrollBarPart::Thumb) {
            KillTimer(kRepeatTimer);
            return 0;
        }
        SetTimer(kRepeatTimer, kRepeatDelay);
        if (bar.pressedInside) {
            static const UINT codes[] = {0, SB_LINEUP, SB_PAGEUP, 0, SB_PAGEDOWN, SB_LINEDOWN};
            Tell(codes[bar.pressed]);
        }
        return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
    case WM_CANCELMODE: {
        if (d->grip.IsActive()) {
            d->grip.End();
            if (message == WM_LBUTTONUP)
                ReleaseCapture();
            return 0;
        }
        if (bar.pressed == ScrollBarPart::None)
            return 0;
        const ScrollBarPart::Part part = bar.pressed;
        const int at = bar.trackPos;
        bar.pressed = ScrollBarPart::None;
        KillTimer(kRepeatTimer);
        if (message == WM_LBUTTONUP)
            ReleaseCapture();
        Invalidate(FALSE);
        if (part == ScrollBarPart::Thumb)
            Tell(SB_THUMBPOSITION, at);
        Tell(SB_ENDSCROLL);
        return 0;
    }
    case WM_KEYDOWN: {
        UINT code = 0xFFFF;
        const bool vertical = GetStyle() & SBS_VERT;
        switch (wParam) {
        case VK_UP: code = vertical ? SB_LINEUP : 0xFFFF; break;
        case VK_LEFT: code = vertical ? 0xFFFF : SB_LINELEFT; break;
        case VK_DOWN: code = vertical ? SB_LINEDOWN : 0xFFFF; break;
        case VK_RIGHT: code = vertical ? 0xFFFF : SB_LINERIGHT; break;
        case VK_PRIOR: code = SB_PAGEUP; break;
        case VK_NEXT: code = SB_PAGEDOWN; break;
        case VK_HOME: code = SB_TOP; break;
        case VK_END: code = SB_BOTTOM; break;
        default: break;
        }
        if (code != 0xFFFF && !IsSizeBox()) {
            Tell(code);
            Tell(SB_ENDSCROLL);
        }
        return 0;
    }
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}

void CScrollBar::Paint()
{
    CPaintDC dc(this);
    CRect r;
    GetClientRect(&r);
    if (IsSizeBox()) {
        dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
        // The grip: three pairs of diagonal lines in the corner.
        CPen light(PS_SOLID, 1, GetSysColor(COLOR_BTNHIGHLIGHT));
        CPen dark(PS_SOLID, 1, GetSysColor(COLOR_BTNSHADOW));
        CPen* old = dc.SelectObject(&light);
        for (int i = 0; i < 3; ++i) {
            const int off = 4 * i + 1;
            dc.SelectObject(&light);
            dc.MoveTo(r.right - off - 3, r.bottom);
            dc.LineTo(r.right, r.bottom - off - 3);
            dc.SelectObject(&dark);
            for (int k = 1; k <= 2; ++k) {
                dc.MoveTo(r.right - off - 3 + k, r.bottom);
                dc.LineTo(r.right, r.bottom - off - 3 + k);
            }
        }
        dc.SelectObject(old);
        return;
    }
    d->bar.vertical = (GetStyle() & SBS_VERT) != 0;
    d->bar.enabled = IsWindowEnabled() != FALSE;
    d->bar.rect = r;
    d->bar.Paint(dc);
}
