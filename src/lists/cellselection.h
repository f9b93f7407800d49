// CellSelection: the selection of a cell grid: single cells, rectangles and
// whole rows.
//
// The selection is a list of elements, a cell or a rectangle (whose first
// corner is the anchor and whose second moves with the mouse or the keys;
// either can be the larger). A change is built beside the current selection,
// compared with it cell by cell, and only cells whose state changed are
// marked or unmarked through the callbacks the list sets (which repaint
// them); then the two swap.
//
//   CellSelection sel;
//   sel.SetCallbacks(&MarkCell, list, &MarkRow, list);
//   sel.Select(2, 1, CellSelection::Plain);
//   sel.Select(5, 3, CellSelection::Shift);   // the rectangle 2,1 .. 5,3
#pragma once

#include "platform/framework/carray.h"
#include "vxbase_ui_export.h"

#include <vector>

class VXBASE_UI_EXPORT CellSelection {
public:
    enum Mode { None = 0, Cells = 1, Rows = 2 };
    enum How { Plain = 0, Shift = 1, Ctrl = 2, Click = 3 };
    enum Op { Unmark = 0, Mark = 1 };

    struct Element {
        int kind = 0; // 0 one cell (or row), 1 a rectangle (or a run of rows)
        int row1 = -1;
        int col1 = -1;
        int row2 = -1;
        int col2 = -1;
    };
    using ElementArray = CArray<Element, const Element&>;
    using CellMark = void (*)(void* context, int row, int col, int op);
    using RowMark = void (*)(void* context, int row, int op);

    CellSelection();
    CellSelection(const CellSelection&) = delete;
    CellSelection& operator=(const CellSelection&) = delete;

    void SetCallbacks(CellMark cell, void* cellContext, RowMark row, void* rowContext);
    // The grid is at least this wide when comparing.
    void SetColumnCount(int columns) { m_nColumns = columns; }

    // Selects a cell: Plain (or Click) alone, Shift a rectangle from the last
    // element's anchor, Ctrl one more (with the multiple flag). (-1, -1)
    // clears. A row selection goes first.
    void Select(int row, int col, int how);
    // The same for whole rows; a cell selection goes first.
    void SelectRows(int row, int how);
    // Unmarks everything and empties the selection; the mode stays.
    void Clear();

    int GetMode() const { return m_nMode; }
    void SetMode(int mode) { m_nMode = mode; }
    BOOL GetMultiple() const { return m_bMultiple; }
    void SetMultiple(BOOL multiple) { m_bMultiple = multiple; }
    int GetCount() const { return m_pCurrent->GetSize(); }
    const Element& GetAt(int index) const { return m_pCurrent->ElementAt(index); }
    // The first element as first row, last row, first column, last column;
    // false when there is none.
    bool GetFirst(int& firstRow, int& lastRow, int& firstCol, int& lastCol) const;
    // Where the selection moves from: the last element's cell, or its
    // second corner; false when there is none.
    bool GetMoving(int& row, int& col) const;
    bool Contains(int row, int col) const;

private:
    void Change(int row, int col, int how, bool rows);
    void Compare(bool rows);
    void MarkAll(const ElementArray& elements, bool rows, int op);

    int m_nMode = None;
    BOOL m_bMultiple = TRUE;
    ElementArray m_a;
    ElementArray m_b;
    ElementArray* m_pCurrent = &m_a;
    ElementArray* m_pPrevious = &m_b;
    CellMark m_cellMark = nullptr;
    void* m_cellContext = nullptr;
    RowMark m_rowMark = nullptr;
    void* m_rowContext = nullptr;
    std::vector<DWORD> m_grid;
    int m_nColumns = 0;
};
