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
    return DataRectIn(Client());
}

CRect CListCtrl::Private::DataRectIn(CRect client) const
{
    client.top = std::min(client.bottom, client.top + headerHeight);
    return client;
}

CPoint CListCtrl::Private::ClientToWindow(CPoint client) const
{
    return client + vx::ClientAreaOf(q).TopLeft();
}

CPoint CListCtrl::Private::ScreenToWindow(CPoint screen) const
{
    CRect outer;
    q.GetWindowRect(&outer);
    return CPoint(screen.x - outer.left, screen.y - outer.top);
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
    const int sbw = GetSystemMetrics(SM_CXVSCROLL);
    const int sbh = GetSystemMetrics(SM_CYHSCROLL);
    // The room there would be without bars; each bar takes room from the
    // other's direction, so they settle in two rounds.
    CRect room = Client();
    if (vbar.shown)
        room.right += sbw;
    if (hbar.shown)
        room.bottom += sbh;
    bool wantV = false;
    bool wantH = false;
    for (int round = 0; round < 2 && scrolls; ++round) {
        const int width = room.Width() - (wantV ? sbw : 0);
        const int height = room.Height() - (wantH ? sbh : 0) - headerHeight;
        const int rows = rowHeight > 0 ? std::max(0, height) / rowHeight : 0;
        wantV = static_cast<int>(items.size()) > rows;
        wantH = totalWidth > width;
    }
    if (wantV != vbar.shown || wantH != hbar.shown) {
        vbar.shown = wantV;
        hbar.shown = wantH;
        // The client area changes: WM_NCCALCSIZE takes the bars off it.
        const bool was = layingOut;
        layingOut = true;
        q.SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
        layingOut = was;
        PlaceHeader();
    }
    const CRect data = DataRect();
    const CRect client = vx::ClientAreaOf(q);
    vbar.page = std::max(0, PageRows());
    vbar.max = std::max(0, static_cast<int>(items.size()) - 1);
    hbar.page = std::max(0, data.Width());
    hbar.max = std::max(0, totalWidth - 1);
    vbar.rect = vbar.shown ? CRect(client.right, client.top, client.right + sbw, client.bottom) : CRect();
    hbar.rect = hbar.shown ? CRect(client.left, client.bottom, client.right, client.bottom + sbh) : CRect();
    // Keep the view inside what there is to see.
    const int lastTop = LastTop();
    if (top > lastTop)
        top = lastTop;
    const int lastX = std::max(0, totalWidth - data.Width());
    if (scrollX > lastX)
        scrollX = lastX;
    vbar.pos = top;
    hbar.pos = scrollX;
    if (oldV.pos != vbar.pos || oldH.pos != hbar.pos) {
        // The rows moved: everything shows anew.
        InvalidateAll();
        PlaceHeader();
    }
    if (oldV.shown != vbar.shown || oldH.shown != hbar.shown || oldV.max != vbar.max || oldV.page != vbar.page ||
        oldV.pos != vbar.pos || oldH.max != hbar.max || oldH.page != hbar.page || oldH.pos != hbar.pos ||
        oldV.rect != vbar.rect || oldH.rect != hbar.rect)
        InvalidateBars();
}

void CListCtrl::Private::InvalidateBars()
{
    if (!redraw) {
        barsDirty = true;
        return;
    }
    if (q.Backend() && (vbar.shown || hbar.shown))
        q.Backend()->InvalidateFrame();
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
    // The rows move: the whole data area repaints.
    (void)moved;
    Invalidate(DataRect());
    InvalidateBars();
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
    InvalidateBars();
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
    // Most cells of a long run of changes lie below what shows: they cost
    // one look at the client area.
    const CRect client = Client();
    if (RowTop(item) >= client.bottom)
        return;
    Invalidate(CellRect(item, column) & DataRectIn(client));
}
