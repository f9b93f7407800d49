#include "lists/cellselection.h"

#include <algorithm>

namespace {

// Marks in the compare grid: in the old selection, in the new one.
constexpr DWORD kOld = 1;
constexpr DWORD kNew = 2;

void Normalise(const CellSelection::Element& e, int& r1, int& r2, int& c1, int& c2)
{
    const int rowTo = e.kind == 1 ? e.row2 : e.row1;
    const int colTo = e.kind == 1 ? e.col2 : e.col1;
    r1 = std::min(e.row1, rowTo);
    r2 = std::max(e.row1, rowTo);
    c1 = std::min(e.col1, colTo);
    c2 = std::max(e.col1, colTo);
}

} // namespace

CellSelection::CellSelection() = default;

void CellSelection::SetCallbacks(CellMark cell, void* cellContext, RowMark row, void* rowContext)
{
    m_cellMark = cell;
    m_cellContext = cellContext;
    m_rowMark = row;
    m_rowContext = rowContext;
}

void CellSelection::Select(int row, int col, int how)
{
    if (m_nMode == Rows)
        Clear();
    m_nMode = Cells;
    if (row == -1 && col == -1) {
        Clear();
        return;
    }
    Change(row, col, how, false);
}

void CellSelection::SelectRows(int row, int how)
{
    if (m_nMode == Cells)
        Clear();
    m_nMode = Rows;
    if (row == -1) {
        Clear();
        return;
    }
    Change(row, -1, how, true);
}

void CellSelection::Change(int row, int col, int how, bool rows)
{
    Element element;
    element.kind = 0;
    element.row1 = element.row2 = row;
    element.col1 = element.col2 = rows ? -1 : col;
    // The new selection is built in the other array, compared, then taken.
    ElementArray& next = *m_pPrevious;
    if (how == Shift && GetCount() > 0) {
        next = *m_pCurrent;
        Element& last = next.ElementAt(next.GetSize() - 1);
        element.kind = 1;
        element.row1 = last.row1;
        element.col1 = last.col1;
        last = element;
    } else if (how == Ctrl && m_bMultiple) {
        next = *m_pCurrent;
        next.Add(element);
    } else {
        next.RemoveAll();
        next.Add(element);
    }
    Compare(rows);
    std::swap(m_pCurrent, m_pPrevious);
}

void CellSelection::Compare(bool rows)
{
    // One grid over both selections; cells in one but not both change.
    int maxRow = -1;
    int maxCol = rows ? 0 : m_nColumns - 1;
    for (const ElementArray* array : {m_pCurrent, m_pPrevious}) {
        for (int i = 0; i < array->GetSize(); ++i) {
            int r1, r2, c1, c2;
            Normalise(array->ElementAt(i), r1, r2, c1, c2);
            maxRow = std::max(maxRow, r2);
            if (!rows)
                maxCol = std::max(maxCol, c2);
        }
    }
    if (maxRow < 0)
        return;
    const int width = std::max(1, maxCol + 1);
    m_grid.assign(static_cast<std::size_t>(maxRow + 1) * static_cast<std::size_t>(width), 0);
    auto fill = [&](const ElementArray& array, DWORD bit) {
        for (int i = 0; i < array.GetSize(); ++i) {
            int r1, r2, c1, c2;
            Normalise(array.ElementAt(i), r1, r2, c1, c2);
            if (rows)
                c1 = c2 = 0;
            for (int r = std::max(0, r1); r <= r2; ++r) {
                for (int c = std::max(0, c1); c <= c2; ++c)
                    m_grid[static_cast<std::size_t>(r) * static_cast<std::size_t>(width) + static_cast<std::size_t>(c)] |= bit;
            }
        }
    };
    fill(*m_pCurrent, kOld);
    fill(*m_pPrevious, kNew);
    for (int r = 0; r <= maxRow; ++r) {
        for (int c = 0; c < width; ++c) {
            const DWORD mark = m_grid[static_cast<std::size_t>(r) * static_cast<std::size_t>(width) + static_cast<std::size_t>(c)];
            if (mark == kOld || mark == kNew) {
                const int op = mark == kNew ? Mark : Unmark;
                if (rows) {
                    if (m_rowMark)
                        m_rowMark(m_rowContext, r, op);
                } else if (m_cellMark) {
                    m_cellMark(m_cellContext, r, c, op);
                }
            }
        }
    }
}

void CellSelection::MarkAll(const ElementArray& elements, bool rows, int op)
{
    for (int i = 0; i < elements.GetSize(); ++i) {
        int r1, r2, c1, c2;
        Normalise(elements.ElementAt(i), r1, r2, c1, c2);
        for (int r = std::max(0, r1); r <= r2; ++r) {
            if (rows || c1 < 0) {
                if (m_rowMark)
                    m_rowMark(m_rowContext, r, op);
                continue;
            }
            for (int c = std::max(0, c1); c <= c2; ++c) {
                if (m_cellMark)
                    m_cellMark(m_cellContext, r, c, op);
            }
        }
    }
}

void CellSelection::Clear()
{
    MarkAll(*m_pCurrent, m_nMode == Rows, Unmark);
    m_a.RemoveAll();
    m_b.RemoveAll();
}

bool CellSelection::GetFirst(int& firstRow, int& lastRow, int& firstCol, int& lastCol) const
{
    if (GetCount() == 0)
        return false;
    Normalise(m_pCurrent->ElementAt(0), firstRow, lastRow, firstCol, lastCol);
    return true;
}

bool CellSelection::GetMoving(int& row, int& col) const
{
    if (GetCount() == 0)
        return false;
    const Element& e = m_pCurrent->ElementAt(GetCount() - 1);
    row = e.kind == 1 ? e.row2 : e.row1;
    col = e.kind == 1 ? e.col2 : e.col1;
    return true;
}

bool CellSelection::Contains(int row, int col) const
{
    for (int i = 0; i < GetCount(); ++i) {
        int r1, r2, c1, c2;
        Normalise(m_pCurrent->ElementAt(i), r1, r2, c1, c2);
        if (row >= r1 && row <= r2 && (m_nMode == Rows || (col >= c1 && col <= c2)))
            return true;
    }
    return false;
}
