// CListCtrl: geometry, scrolling and invalidation.
#include "ui/listviews/clistctrl_p.h"

#include "ui/images/cimagelist.h"
#include "ui/listviews/commonctrl_p.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>

using vx::listviews::Bar;

CRect CListCtrl::Private::Client() const
{
    CRect r;
    q.GetClientRect(&r);
    return r;
}

CRect CListCtrl::Private::DataRect() const
{
    CRect r = Client();
    r.top = std::min(r.bottom, r.top + headerHeight);
    if (vbar.shown)
        r.right = std::max(r.left, r.right - GetSystemMetrics(SM_CXVSCROLL));
    if (hbar.shown)
        r.bottom = std::max(r.top, r.bottom - GetSystemMetrics(SM_CYHSCROLL));
    return r;
}

int CListCtrl::Private::RowTop(int item) const
{
    return headerHeight + (item - top) * rowHeight;
}

CRect CListCtrl::Private::RowBounds(int item) const
{
    const int y = RowTop(item);
    return CRect(-scrollX, y, totalWidth - scrollX, y + rowHeight);
}

CRect CListCtrl::Private::CellRect(int item, int column) const
{
    const int y = RowTop(item);
    const int x = left[static_cast<std::size_t>(column)] - scrollX;
    return CRect(x, y, x + columns[static_cast<std::size_t>(column)].width, y + rowHeight);
}

int CListCtrl::Private::ImageWidth(int kind) const
{
    if (!images[kind])
        return 0;
    int cx = 0;
    int cy = 0;
    ImageList_GetIconSize(images[kind], &cx, &cy);
    return cx;
}

int CListCtrl::Private::PageRows() const
{
    const CRect data = DataRect();
    return rowHeight > 0 ? data.Height() / rowHeight : 0;
}

int CListCtrl::Private::LastTop() const
{
    return std::max(0, static_cast<int>(items.size()) - std::max(1, PageRows()));
}

void CListCtrl::Private::RecomputeColumns()
{
    left.assign(columns.size(), 0);
    int x = 0;
    for (int c : order) {
        left[static_cast<std::size_t>(c)] = x;
        x += columns[static_cast<std::size_t>(c)].width;
    }
    totalWidth = x;
}

void CListCtrl::Private::RecomputeRowHeight()
{
    const int text = vx::listviews::LineHeight(vx::listviews::FontOf(q)) + 2;
    int image = 0;
    for (int kind : {LVSIL_SMALL, LVSIL_STATE}) {
        if (images[kind]) {
            int cx = 0;
            int cy = 0;
            ImageList_GetIconSize(images[kind], &cx, &cy);
            image = std::max(image, cy + 1);
        }
    }
    if (exStyle & LVS_EX_CHECKBOXES)
        image = std::max(image, 17);
    rowHeight = std::max({text, image, 1});
    if (exStyle & LVS_EX_GRIDLINES)
        ++rowHeight;
}

void CListCtrl::Private::SyncFromHeader()
{
    if (!header->m_hWnd)
        return;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        HDITEM item{};
        item.mask = HDI_WIDTH;
        if (header->GetItem(static_cast<int>(c), &item))
            columns[c].width = item.cxy;
    }
    std::vector<int> fresh(columns.size());
    if (!fresh.empty() && header->GetOrderArray(fresh.data(), static_cast<int>(fresh.size())))
        order = fresh;
    RecomputeColumns();
}

void CListCtrl::Private::PlaceHeader()
{
    if (!header->m_hWnd)
        return;
    const CRect client = Client();
    if (headerHeight == 0) {
        if (header->IsWindowVisible())
            header->ShowWindow(SW_HIDE);
        return;
    }
    const CRect data = DataRect();
    // The header scrolls with the columns: it starts left of the client
    // area by the horizontal scroll and reaches to the right of the rows.
    CRect want(-scrollX, client.top, data.right, client.top + headerHeight);
    CRect now;
    header->GetWindowRect(&now);
    q.ScreenToClient(&now);
    if (now != want)
        header->MoveWindow(&want, TRUE);
    if (!(header->GetStyle() & WS_VISIBLE))
        header->ShowWindow(SW_SHOWNA);
}

void CListCtrl::Private::UpdateBars()
{
    const Bar oldV = vbar;
    const Bar oldH = hbar;
    const bool scrolls = !(q.GetStyle() & LVS_NOSCROLL);
    const CRect client = Client();
    // Each bar takes room from the other's direction: settle in two rounds.
    vbar.shown = hbar.shown = false;
    for (int round = 0; round < 2 && scrolls; ++round) {
        const CRect data = DataRect();
        const int rows = rowHeight > 0 ? data.Height() / rowHeight : 0;
        vbar.shown = static_cast<int>(items.size()) > std::max(0, rows);
        hbar.shown = totalWidth > DataRect().Width();
    }
    const CRect data = DataRect();
    vbar.page = std::max(0, PageRows());
    vbar.max = std::max(0, static_cast<int>(items.size()) - 1);
    hbar.page = std::max(0, data.Width());
    hbar.max = std::max(0, totalWidth - 1);
    const int sbw = GetSystemMetrics(SM_CXVSCROLL);
    const int sbh = GetSystemMetrics(SM_CYHSCROLL);
    vbar.rect = vbar.shown ? CRect(client.right - sbw, client.top, client.right, client.bottom - (hbar.shown ? sbh : 0))
                           : CRect();
    hbar.rect = hbar.shown ? CRect(client.left, client.bottom - sbh, client.right - (vbar.shown ? sbw : 0), client.bottom)
                           : CRect();
    // Keep the view inside what there is to see.
    const int lastTop = LastTop();
    if (top > lastTop)
        top = lastTop;
    const int lastX = std::max(0, totalWidth - data.Width());
    if (scrollX > lastX)
        scrollX = lastX;
    vbar.pos = top;
    hbar.pos = scrollX;
    const bool layoutChanged = oldV.shown != vbar.shown || oldH.shown != hbar.shown;
    if (layoutChanged || oldV.pos != vbar.pos || oldH.pos != hbar.pos) {
        // The rows move or lose room: everything shows anew.
        InvalidateAll();
        PlaceHeader();
        return;
    }
    if (oldV.max != vbar.max || oldV.page != vbar.page || oldV.rect != vbar.rect)
        Invalidate(vbar.rect | oldV.rect);
    if (oldH.max != hbar.max || oldH.page != hbar.page || oldH.rect != hbar.rect)
        Invalidate(hbar.rect | oldH.rect);
    // The corner between the two bars.
    if (vbar.shown && hbar.shown)
        Invalidate(CRect(vbar.rect.left, hbar.rect.top, vbar.rect.right, hbar.rect.bottom));
}

void CListCtrl::Private::Relayout()
{
    if (layingOut || !q.m_hWnd)
        return;
    layingOut = true;
    headerHeight = (q.GetStyle() & LVS_NOCOLUMNHEADER) || !header->m_hWnd ? 0 : header->GetIdealHeight();
    UpdateBars();
    PlaceHeader();
    layingOut = false;
}

void CListCtrl::Private::SetTop(int row)
{
    row = std::clamp(row, 0, LastTop());
    if (row == top)
        return;
    const int moved = row - top;
    top = row;
    vbar.pos = top;
    const CRect data = DataRect();
    // The rows that stay in view would show again as they are; still, they
    // move, so the whole data area repaints.
    (void)moved;
    Invalidate(data);
    Invalidate(vbar.rect);
}

void CListCtrl::Private::SetScrollX(int x)
{
    const CRect data = DataRect();
    x = std::clamp(x, 0, std::max(0, totalWidth - data.Width()));
    if (x == scrollX)
        return;
    scrollX = x;
    hbar.pos = x;
    Invalidate(data);
    Invalidate(hbar.rect);
    PlaceHeader();
}

// --- invalidation ---------------------------------------------------------------------

void CListCtrl::Private::Invalidate(const CRect& rect)
{
    CRect r;
    if (!r.IntersectRect(&rect, Client()))
        return;
    if (!redraw) {
        // Many small areas fold into one, so that a long run of changes with
        // drawing off stays cheap.
        if (held.size() >= 64) {
            CRect all = held.front();
            for (const CRect& h : held)
                all |= h;
            held.assign(1, all);
        }
        held.push_back(r);
        return;
    }
    q.InvalidateRect(&r, FALSE);
}

void CListCtrl::Private::InvalidateAll()
{
    Invalidate(Client());
}

void CListCtrl::Private::InvalidateRow(int item)
{
    if (!Valid(item) || item < top)
        return;
    const CRect data = DataRect();
    const int y = RowTop(item);
    if (y >= data.bottom)
        return;
    Invalidate(CRect(data.left, y, data.right, y + rowHeight) & data);
}

void CListCtrl::Private::InvalidateFrom(int item)
{
    const CRect data = DataRect();
    const int y = std::max(data.top, RowTop(std::max(item, top)));
    if (y < data.bottom)
        Invalidate(CRect(data.left, y, data.right, data.bottom));
}

void CListCtrl::Private::InvalidateCell(int item, int column)
{
    if (!Valid(item) || item < top || column < 0 || column >= static_cast<int>(columns.size()))
        return;
    const CRect data = DataRect();
    if (RowTop(item) >= data.bottom)
        return;
    Invalidate(CellRect(item, column) & data);
}
