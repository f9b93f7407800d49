// KXListCtrl: selection, keys and the mouse.
#include "lists/kxlistctrl_p.h"

#include "platform/windows/windows.h"

#include <algorithm>

using vx::lists::XRow;

// --- marks ------------------------------------------------------------------------------------

void KXListCtrl::Private::MarkCell(void* context, int row, int col, int op)
{
    auto* self = static_cast<Private*>(context);
    if (XLISTCTRLDATA* cell = self->Cell(row, col)) {
        cell->bSelected = op == CellSelection::Mark;
        self->q.UpdateSubItem(row, col);
    }
}

void KXListCtrl::Private::MarkRow(void* context, int row, int op)
{
    auto* self = static_cast<Private*>(context);
    self->q.SelectRow(row, op == CellSelection::Mark ? 2 : 0, TRUE);
}

void KXListCtrl::RedrawItemState(int item)
{
    // A cell grid shows its own selection: the rows' states change nothing seen.
    if (!d->cellMode)
        KListCtrl::RedrawItemState(item);
}

// --- selection ---------------------------------------------------------------------------------

int KXListCtrl::GetCurSel()
{
    if (!d->cellMode)
        return KListCtrl::GetCurSel();
    int r1, r2, c1, c2;
    return d->selection.GetFirst(r1, r2, c1, c2) ? r1 : -1;
}

int KXListCtrl::GetCurSel(CUIntArray* rows)
{
    if (rows)
        rows->RemoveAll();
    int n = 0;
    for (int row = 0; row < d->Count(); ++row) {
        bool selected = false;
        if (d->cellMode) {
            const XRow* r = d->RowOf(row);
            for (int c = 0; r && c < r->count && !selected; ++c) {
                const XLISTCTRLDATA& cell = r->cells[static_cast<std::size_t>(c)];
                selected = cell.bSelected || cell.nRowSelectState == 2;
            }
        } else {
            selected = GetItemState(row, LVIS_SELECTED) != 0;
        }
        if (selected) {
            ++n;
            if (rows)
                rows->Add(static_cast<UINT>(row));
        }
    }
    return n;
}

int KXListCtrl::GetCurSelCells(TUniArray<CPoint, CPoint&>* cells)
{
    if (cells)
        cells->RemoveAll();
    int n = 0;
    for (int row = 0; row < d->Count(); ++row) {
        const XRow* r = d->RowOf(row);
        for (int c = 0; r && c < r->count; ++c) {
            if (r->cells[static_cast<std::size_t>(c)].bSelected) {
                ++n;
                if (cells) {
                    CPoint cell(c, row);
                    cells->Add(cell);
                }
            }
        }
    }
    return n;
}

BOOL KXListCtrl::SetCurSel(int row)
{
    return SetCurSel(row, 0);
}

BOOL KXListCtrl::SetCurSel(int row, int notify)
{
    if (row >= d->Count())
        return FALSE;
    if (!d->cellMode) {
        KListCtrl::SetCurSel(row);
    } else {
        int col = 0;
        d->FirstSelectable(col);
        SetRedraw(FALSE);
        d->selection.Select(row < 0 ? -1 : row, row < 0 ? -1 : col, CellSelection::Plain);
        SetRedraw(TRUE);
        if (row >= 0)
            EnsureVisible(row, FALSE);
    }
    if (notify)
        d->SendSelChanged(row);
    return TRUE;
}

void KXListCtrl::SelectAll()
{
    const int rows = d->Count();
    if (rows == 0)
        return;
    if (!d->cellMode) {
        if (!(GetStyle() & LVS_SINGLESEL))
            SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
        return;
    }
    int first = 0;
    d->FirstSelectable(first);
    SetRedraw(FALSE);
    d->selection.SetColumnCount(GetColumns());
    d->selection.Select(0, first, CellSelection::Plain);
    d->selection.Select(rows - 1, GetColumns() - 1, CellSelection::Shift);
    SetRedraw(TRUE);
}

void KXListCtrl::DeselectAll()
{
    SetRedraw(FALSE);
    d->selection.Clear();
    d->selection.SetMode(CellSelection::None);
    if (!d->cellMode)
        SetItemState(-1, 0, LVIS_SELECTED);
    SetRedraw(TRUE);
}

void KXListCtrl::SelectRow(int row, int state, int update)
{
    XRow* r = d->RowOf(row);
    if (!r)
        return;
    for (int c = 0; c < r->count; ++c)
        r->cells[static_cast<std::size_t>(c)].nRowSelectState = state;
    if (update)
        UpdateItem(row);
}

int KXListCtrl::FindDataItem(DWORD_PTR data)
{
    for (int row = 0; row < d->Count(); ++row) {
        const XLISTCTRLDATA* first = d->First(row);
        if (first && first->dwItemData == data)
            return row;
    }
    return -1;
}

// --- keys --------------------------------------------------------------------------------------

void KXListCtrl::OnKeyDown(UINT key, UINT repeat, UINT flags)
{
    const bool ctrl = GetKeyState(VK_CONTROL) < 0;
    const bool shift = GetKeyState(VK_SHIFT) < 0;
    const int rows = d->Count();
    if (d->cellMode) {
        if (ctrl && key == 'C') {
            ZellenKopieren();
            return KListCtrl::OnKeyDown(key, repeat, flags);
        }
        if (ctrl && key == 'V') {
            ZellenEinfuegen(-1, -1, -1, -1);
            return KListCtrl::OnKeyDown(key, repeat, flags);
        }
        if (ctrl && key == 'X') {
            ZellenLoeschen(1);
            return KListCtrl::OnKeyDown(key, repeat, flags);
        }
        int row = 0;
        int col = 0;
        const bool has = d->selection.GetMoving(row, col);
        int first = 0;
        d->FirstSelectable(first);
        const int last = GetColumns() - 1;
        int toRow = row;
        int toCol = col;
        bool move = true;
        switch (key) {
        case VK_UP: toRow = std::max(0, row - 1); break;
        case VK_DOWN: toRow = std::min(rows - 1, row + 1); break;
        case VK_LEFT: toCol = std::max(first, col - 1); break;
        case VK_RIGHT: toCol = std::min(last, col + 1); break;
        case VK_PRIOR: toRow = 0; break;
        case VK_NEXT: toRow = rows - 1; break;
        case VK_HOME: toCol = first; break;
        case VK_END: toCol = last; break;
        default: move = false; break;
        }
        if (move && has && rows > 0 && toRow >= 0 && toCol >= 0) {
            SetRedraw(FALSE);
            d->selection.SetColumnCount(GetColumns());
            d->selection.Select(toRow, toCol, shift ? CellSelection::Shift : CellSelection::Plain);
            SetRedraw(TRUE);
            EnsureVisible(toRow, FALSE);
            d->SendSelChanged(toRow);
            if (!m_hWnd)
                return;
        }
        return KListCtrl::OnKeyDown(key, repeat, flags);
    }
    const HWND self = m_hWnd;
    KListCtrl::OnKeyDown(key, repeat, flags);
    if (!IsWindow(self) || rows == 0)
        return;
    // A plain row list passes over disabled rows, turning at the ends.
    const bool down = key == VK_DOWN || key == VK_NEXT || key == VK_END;
    if (!down && key != VK_UP && key != VK_PRIOR && key != VK_HOME)
        return;
    int row = -1;
    if (down) {
        for (int i = GetNextItem(-1, LVNI_SELECTED); i >= 0; i = GetNextItem(i, LVNI_SELECTED))
            row = i;
    } else {
        row = GetNextItem(-1, LVNI_SELECTED);
    }
    if (row < 0 || GetEnabled(row))
        return;
    int step = down ? 1 : -1;
    int at = row;
    for (int tries = 0; tries < 2 * rows; ++tries) {
        at += step;
        if (at < 0 || at >= rows) {
            step = -step; // turn back at the end
            at = std::clamp(at, 0, rows - 1);
        }
        if (GetEnabled(at)) {
            SetCurSel(at, 1);
            return;
        }
    }
}

// --- the mouse ----------------------------------------------------------------------------------

BOOL KXListCtrl::HitXTest(CPoint& point, int* row, int* col)
{
    int r = -1;
    int c = -1;
    const int count = d->Count();
    const int top = GetTopIndex();
    const int last = std::min(count - 1, top + GetCountPerPage() + 1);
    for (int i = std::max(0, top); i <= last; ++i) {
        CRect bounds;
        if (CListCtrl::GetItemRect(i, &bounds, LVIR_BOUNDS) && bounds.PtInRect(point)) {
            r = i;
            break;
        }
    }
    if (r >= 0) {
        for (int i = 0; i < GetColumns(); ++i) {
            CRect cell;
            if (GetSubItemRect(r, i, LVIR_BOUNDS, cell) && cell.PtInRect(point)) {
                c = i;
                break;
            }
        }
    }
    if (row)
        *row = r;
    if (col)
        *col = c;
    return r >= 0;
}

BOOL KXListCtrl::HitTestEx(CPoint& point, int* row, int* col)
{
    if (col)
        *col = 0;
    if ((GetStyle() & LVS_TYPEMASK) != LVS_REPORT)
        return FALSE;
    const int count = d->Count();
    const int top = GetTopIndex();
    const int bottom = std::min(count, top + GetCountPerPage() + 1);
    for (int i = top; i < bottom; ++i) {
        CRect bounds;
        CListCtrl::GetItemRect(i, &bounds, LVIR_BOUNDS);
        if (point.y < bounds.top || point.y >= bounds.bottom)
            continue;
        // Columns in their shown order from the row's left; a point on a
        // column's right edge counts for that column.
        const int columns = GetColumns();
        std::vector<int> order(static_cast<std::size_t>(columns));
        if (columns)
            GetColumnOrderArray(order.data(), columns);
        int left = bounds.left;
        for (int c : order) {
            const int width = CListCtrl::GetColumnWidth(c);
            if (point.x >= left && point.x <= left + width) {
                if (row)
                    *row = i;
                if (col)
                    *col = c;
                return TRUE;
            }
            left += width;
        }
    }
    return FALSE;
}

BOOL KXListCtrl::GetSubItemRect(int row, int col, int code, CRect& rect)
{
    if (!CListCtrl::GetSubItemRect(row, col, code, rect))
        return FALSE;
    if (col == 0 && code == LVIR_BOUNDS) {
        // The base gives the whole row for column 0; the cell is its column.
        CRect label;
        CListCtrl::GetSubItemRect(row, 0, LVIR_LABEL, label);
        rect.left = label.right - CListCtrl::GetColumnWidth(0);
        rect.right = label.right;
    }
    return TRUE;
}

void KXListCtrl::OnLButtonDown(UINT flags, CPoint point)
{
    int row = -1;
    int col = -1;
    if (!HitXTest(point, &row, &col)) {
        if (d->combo && d->combo->m_hWnd)
            OnComboEscape(0, 0);
        KListCtrl::OnLButtonDown(flags, point);
        return;
    }
    if (!GetEnabled(row))
        return; // a disabled row ignores the mouse, the list too
    XLISTCTRLDATA* cell = d->Cell(row, col);
    const HWND self = m_hWnd;
    if (cell && cell->nCheckedState != -1) {
        cell->nCheckedState = cell->nCheckedState == 0 ? 1 : 0;
        cell->bModified = TRUE;
        d->listModified = TRUE;
        UpdateSubItem(row, col);
        if (HWND target = d->Target())
            ::SendMessageA(target, WM_XLISTCTRL_CHECKBOX_CLICKED, static_cast<WPARAM>(row), col);
        if (!IsWindow(self))
            return;
        d->SetHeaderCheckFromCount(col);
    } else if (cell && cell->bEdit) {
        KListCtrl::OnLButtonDown(flags, point);
        if (IsWindow(self))
            DrawEdit(row, col);
        return;
    } else if (d->cellMode && col != d->buttonColumn) {
        SetRedraw(FALSE);
        const int how = (flags & MK_SHIFT) ? CellSelection::Shift
                        : (flags & MK_CONTROL) ? CellSelection::Ctrl
                                               : CellSelection::Plain;
        d->selection.SetColumnCount(GetColumns());
        d->selection.Select(row, col, how);
        d->dragging = true;
        d->SendSelChanged(row);
        if (!IsWindow(self))
            return;
        SetRedraw(TRUE);
        SetCapture();
    }
    KListCtrl::OnLButtonDown(flags, point);
}

void KXListCtrl::OnMouseMove(UINT flags, CPoint point)
{
    d->UpdateTip(point);
    if (d->dragging && (flags & MK_LBUTTON) && d->cellMode) {
        int row = -1;
        int col = -1;
        if (HitXTest(point, &row, &col) && col >= 0 && col != d->buttonColumn) {
            int mr = -1;
            int mc = -1;
            if (!d->selection.GetMoving(mr, mc) || mr != row || mc != col) {
                SetRedraw(FALSE);
                d->selection.Select(row, col, CellSelection::Shift);
                SetRedraw(TRUE);
            }
        }
    }
    KListCtrl::OnMouseMove(flags, point);
}

void KXListCtrl::OnLButtonUp(UINT flags, CPoint point)
{
    if (d->dragging) {
        d->dragging = false;
        if (GetCapture() == this)
            ReleaseCapture();
    }
    KListCtrl::OnLButtonUp(flags, point);
}

void KXListCtrl::OnRButtonDown(UINT flags, CPoint point)
{
    int row = -1;
    int col = -1;
    if (HitXTest(point, &row, &col) && !GetEnabled(row))
        return;
    KListCtrl::OnRButtonDown(flags, point);
}

BOOL KXListCtrl::OnClick(NMHDR* header, LRESULT* result)
{
    *result = 0;
    if (!d->cellMode)
        return FALSE;
    d->dragging = false;
    if (GetCapture() == this)
        ReleaseCapture();
    const auto* nm = reinterpret_cast<const NMITEMACTIVATE*>(header);
    CPoint point(nm->ptAction);
    int row = -1;
    int col = -1;
    HitXTest(point, &row, &col);
    if (row == 0 && nm->iItem == 0)
        col = nm->iSubItem; // the first row takes its column from the notice
    if (row < 0 || col < 0) {
        SetRedraw(FALSE);
        d->selection.Select(-1, -1, CellSelection::Plain);
        SetRedraw(TRUE);
        return FALSE;
    }
    if (!GetEnabled(row) || col == d->buttonColumn)
        return FALSE;
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (cell && (cell->nCheckedState != -1 || cell->bEdit))
        return FALSE; // the button-down did what these cells do
    const UINT keys = nm->uKeyFlags;
    const int how = (keys & LVKF_SHIFT) ? CellSelection::Shift : (keys & LVKF_CONTROL) ? CellSelection::Ctrl
                                                                                          : CellSelection::Click;
    // Shift and Ctrl took effect when the button went down.
    if (how == CellSelection::Click) {
        SetRedraw(FALSE);
        d->selection.Select(row, col, how);
        SetRedraw(TRUE);
    }
    d->SendSelChanged(row);
    return FALSE;
}

BOOL KXListCtrl::OnDblClick(NMHDR* header, LRESULT* result)
{
    *result = 0;
    const auto* nm = reinterpret_cast<const NMITEMACTIVATE*>(header);
    CPoint point(nm->ptAction);
    int row = -1;
    int col = -1;
    if (!HitXTest(point, &row, &col) || col < 0) {
        if (d->combo && d->combo->m_hWnd)
            OnComboEscape(0, 0);
        return FALSE;
    }
    if (!GetEnabled(row)) {
        *result = 1;
        return TRUE;
    }
    XLISTCTRLDATA* cell = d->Cell(row, col);
    if (cell && cell->bCombo)
        DrawComboBox(row, col);
    return FALSE;
}

BOOL KXListCtrl::OnColumnClick(NMHDR* header, LRESULT* result)
{
    *result = 0;
    const auto* nm = reinterpret_cast<const NMLISTVIEW*>(header);
    const int col = nm->iSubItem;
    const int old = GetHeaderCheckedState(col);
    if (old == 0)
        return FALSE;
    SetHeaderCheckedState(col, old == 1 ? 2 : 1);
    for (int row = 0; row < d->Count(); ++row) {
        XLISTCTRLDATA* cell = d->Cell(row, col);
        if (!cell || cell->nCheckedState == -1)
            continue;
        cell->nCheckedState = old == 1 ? 1 : 0;
        cell->bModified = TRUE;
        d->listModified = TRUE;
        UpdateSubItem(row, col);
    }
    return FALSE;
}
