// CListCtrl: painting, with the stages of custom draw.
#include "ui/listviews/clistctrl_p.h"

#include "ui/gdi/cdc.h"
#include "ui/images/cimagelist.h"
#include "ui/listviews/commonctrl_p.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>

using vx::listviews::Item;

namespace {

// Room between a cell's edge and its text: less in the first column, whose
// text follows an icon, as on the original.
constexpr int kFirstPad = 2;
constexpr int kPad = 6;

COLORREF Solid(COLORREF c, COLORREF fallback)
{
    return c == CLR_NONE || c == CLR_DEFAULT ? fallback : c;
}

void Fill(HDC dc, const CRect& r, COLORREF color)
{
    const COLORREF old = SetBkColor(dc, color);
    ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &r, nullptr, 0, nullptr);
    SetBkColor(dc, old);
}

} // namespace

void CListCtrl::Private::PaintCell(HDC dc, int item, int column, const CRect& cell, COLORREF text, COLORREF back,
                                   bool selected)
{
    const Item& it = *items[static_cast<std::size_t>(item)];
    const bool hasFocus = CWnd::GetFocus() == &q;
    Fill(dc, cell, Solid(back, bkColor));
    CRect label = cell;
    if (column == 0 || (exStyle & LVS_EX_SUBITEMIMAGES)) {
        RECT icon{LVIR_ICON, column, 0, 0};
        q.SendMessage(LVM_GETSUBITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&icon));
        if (column == 0 && ((exStyle & LVS_EX_CHECKBOXES) || images[LVSIL_STATE])) {
            const UINT stateImage = (it.state & LVIS_STATEIMAGEMASK) >> 12;
            if (images[LVSIL_STATE] && stateImage > 0) {
                int cx = 0;
                int cy = 0;
                ImageList_GetIconSize(images[LVSIL_STATE], &cx, &cy);
                ImageList_Draw(images[LVSIL_STATE], static_cast<int>(stateImage) - 1, dc, cell.left,
                               cell.top + (cell.Height() - cy) / 2, ILD_TRANSPARENT);
            } else if (exStyle & LVS_EX_CHECKBOXES) {
                const RECT box{cell.left + 2, cell.top + (cell.Height() - 13) / 2, 0, 0};
                vx::listviews::DrawCheckBox(dc, box, stateImage == 2, q.IsWindowEnabled() != FALSE);
            }
        }
        if (images[LVSIL_SMALL] && it.image >= 0 && icon.right > icon.left) {
            int cx = 0;
            int cy = 0;
            ImageList_GetIconSize(images[LVSIL_SMALL], &cx, &cy);
            const UINT style = selected && hasFocus ? ILD_TRANSPARENT | ILD_BLEND50 : ILD_TRANSPARENT;
            ImageList_Draw(images[LVSIL_SMALL], it.image, dc, icon.left, cell.top + (cell.Height() - cy) / 2, style);
        }
        label.left = std::min(label.right, static_cast<int>(icon.right));
    }
    if (selected) {
        // The label shows the selection; with full row select, the whole cell.
        text = GetSysColor(hasFocus ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT);
        const COLORREF mark = GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_BTNFACE);
        Fill(dc, (exStyle & LVS_EX_FULLROWSELECT) ? cell : label, mark);
    }
    const CString& value = static_cast<std::size_t>(column) < it.texts.size()
                               ? it.texts[static_cast<std::size_t>(column)]
                               : CString();
    if (!value.IsEmpty()) {
        CRect area = label;
        area.DeflateRect(column == 0 ? kFirstPad : kPad, 0, kPad, 0);
        UINT format = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
        switch (columns[static_cast<std::size_t>(column)].fmt & LVCFMT_JUSTIFYMASK) {
        case LVCFMT_RIGHT: format |= DT_RIGHT; break;
        case LVCFMT_CENTER: format |= DT_CENTER; break;
        default: break;
        }
        SetBkMode(dc, TRANSPARENT);
        ::SetTextColor(dc, q.IsWindowEnabled() ? Solid(text, textColor) : GetSysColor(COLOR_GRAYTEXT));
        DrawTextA(dc, value, value.GetLength(), &area, format);
    }
    if (exStyle & LVS_EX_GRIDLINES) {
        const COLORREF line = GetSysColor(COLOR_BTNFACE);
        Fill(dc, CRect(cell.left, cell.bottom - 1, cell.right, cell.bottom), line);
        Fill(dc, CRect(cell.right - 1, cell.top, cell.right, cell.bottom), line);
    }
}

void CListCtrl::Private::PaintItem(HDC dc, int item, LRESULT listAnswer, bool hasFocus)
{
    const Item& it = *items[static_cast<std::size_t>(item)];
    const CRect data = DataRect();
    const CRect bounds = RowBounds(item);
    const HWND self = q.m_hWnd;
    const bool showSelection = hasFocus || (q.GetStyle() & LVS_SHOWSELALWAYS);
    NMLVCUSTOMDRAW cd{};
    cd.nmcd.hdc = dc;
    cd.nmcd.dwItemSpec = static_cast<DWORD_PTR>(item);
    cd.nmcd.uItemState = ((it.state & LVIS_SELECTED) ? CDIS_SELECTED : 0) |
                         (((it.state & LVIS_FOCUSED) && hasFocus) ? CDIS_FOCUS : 0) |
                         (q.IsWindowEnabled() ? 0 : CDIS_DISABLED);
    cd.nmcd.lItemlParam = it.lParam;
    cd.clrText = textColor;
    cd.clrTextBk = textBkColor;
    LRESULT itemAnswer = 0;
    if (listAnswer & CDRF_NOTIFYITEMDRAW) {
        cd.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
        cd.nmcd.rc = bounds;
        itemAnswer = Notify(NM_CUSTOMDRAW, &cd.nmcd.hdr);
        if (!IsWindow(self) || !Valid(item))
            return;
    }
    const COLORREF itemText = cd.clrText;
    const COLORREF itemBack = cd.clrTextBk;
    bool ownerPainted = false;
    if (!(itemAnswer & CDRF_SKIPDEFAULT)) {
        for (int column : order) {
            const CRect cell = CellRect(item, column);
            if (cell.right <= data.left || cell.left >= data.right || cell.IsRectEmpty() || !RectVisible(dc, &cell))
                continue;
            LRESULT answer = 0;
            COLORREF text = itemText;
            COLORREF back = itemBack;
            if (itemAnswer & CDRF_NOTIFYSUBITEMDRAW) {
                cd.nmcd.dwDrawStage = CDDS_ITEMPREPAINT | CDDS_SUBITEM;
                cd.nmcd.rc = cell;
                cd.iSubItem = column;
                cd.clrText = itemText;
                cd.clrTextBk = itemBack;
                const int saved = SaveDC(dc);
                answer = Notify(NM_CUSTOMDRAW, &cd.nmcd.hdr);
                if (!IsWindow(self) || !Valid(item))
                    return;
                text = cd.clrText;
                back = cd.clrTextBk;
                // Whatever the parent did to the device stays with its cell;
                // its colours come through the record.
                RestoreDC(dc, saved);
            }
            if (answer & CDRF_SKIPDEFAULT) {
                ownerPainted = true;
            } else {
                const bool selected = (items[static_cast<std::size_t>(item)]->state & LVIS_SELECTED) && showSelection &&
                                      (column == 0 || (exStyle & LVS_EX_FULLROWSELECT));
                PaintCell(dc, item, column, cell, text, back, selected);
            }
            if (answer & CDRF_NOTIFYPOSTPAINT) {
                cd.nmcd.dwDrawStage = CDDS_ITEMPOSTPAINT | CDDS_SUBITEM;
                cd.nmcd.rc = cell;
                cd.iSubItem = column;
                Notify(NM_CUSTOMDRAW, &cd.nmcd.hdr);
                if (!IsWindow(self) || !Valid(item))
                    return;
            }
        }
        // The focus frame goes round what the control painted itself.
        if ((items[static_cast<std::size_t>(item)]->state & LVIS_FOCUSED) && hasFocus && !ownerPainted &&
            !columns.empty()) {
            RECT frame{LVIR_SELECTBOUNDS, 0, 0, 0};
            q.SendMessage(LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&frame));
            ::SetTextColor(dc, RGB(0, 0, 0));
            ::SetBkColor(dc, RGB(255, 255, 255));
            DrawFocusRect(dc, &frame);
        }
    }
    if (itemAnswer & CDRF_NOTIFYPOSTPAINT) {
        cd.nmcd.dwDrawStage = CDDS_ITEMPOSTPAINT;
        cd.nmcd.rc = bounds;
        cd.iSubItem = 0;
        Notify(NM_CUSTOMDRAW, &cd.nmcd.hdr);
    }
}

void CListCtrl::Private::Paint()
{
    CPaintDC paint(&q);
    HDC dc = paint.m_hDC;
    if (!redraw) {
        // Drawing is off: what was to be painted waits for it to come back on.
        const CRect area(paint.m_ps.rcPaint);
        if (!area.IsRectEmpty())
            held.push_back(area);
        return;
    }
    const HWND self = q.m_hWnd;
    HGDIOBJ oldFont = SelectObject(dc, vx::listviews::FontOf(q));
    const CRect client = Client();
    const CRect data = DataRect();
    const bool hasFocus = CWnd::GetFocus() == &q;
    // What no cell covers is erased first, right of the last column and
    // below the last row, so that the parent may paint there in its
    // pre-paint stage.
    const int count = static_cast<int>(items.size());
    const int last = std::min(count - 1, top + (data.Height() + rowHeight - 1) / std::max(1, rowHeight));
    const int rowsBottom = std::min(data.bottom, RowTop(std::min(count, last + 1)));
    const CRect right(std::max(data.left, totalWidth - scrollX), data.top, data.right, rowsBottom);
    if (!right.IsRectEmpty() && RectVisible(dc, &right))
        Fill(dc, right, bkColor);
    const CRect below(data.left, std::max(data.top, rowsBottom), data.right, data.bottom);
    if (!below.IsRectEmpty() && RectVisible(dc, &below))
        Fill(dc, below, bkColor);
    NMLVCUSTOMDRAW cd{};
    cd.nmcd.dwDrawStage = CDDS_PREPAINT;
    cd.nmcd.hdc = dc;
    cd.nmcd.rc = client;
    cd.clrText = textColor;
    cd.clrTextBk = textBkColor;
    const LRESULT answer = Notify(NM_CUSTOMDRAW, &cd.nmcd.hdr);
    if (!IsWindow(self))
        return;
    if (!(answer & CDRF_SKIPDEFAULT)) {
        const int saved = SaveDC(dc);
        IntersectClipRect(dc, data.left, data.top, data.right, data.bottom);
        for (int i = top; i <= last; ++i) {
            const CRect row(data.left, RowTop(i), data.right, RowTop(i) + rowHeight);
            if (!RectVisible(dc, &row))
                continue;
            const int itemSaved = SaveDC(dc);
            PaintItem(dc, i, answer, hasFocus);
            if (!IsWindow(self))
                return;
            RestoreDC(dc, itemSaved);
            if (i >= static_cast<int>(items.size()))
                break;
        }
        RestoreDC(dc, saved);
    }
    if (answer & CDRF_NOTIFYPOSTPAINT) {
        cd.nmcd.dwDrawStage = CDDS_POSTPAINT;
        Notify(NM_CUSTOMDRAW, &cd.nmcd.hdr);
        if (!IsWindow(self))
            return;
    }
    SelectObject(dc, oldFont);
}
