// CMSFlexGrid: a grid of text cells, with the members of the flex grid
// that the library's dialogs call.
//
// The grid has rows and columns; the first FixedRows rows and FixedCols
// columns are headings that stay in place while the rest scrolls. Sizes are
// in twips (1440 to the inch) as the flex grid took them; GetCellRect gives
// pixels, for placing an editor over a cell. One cell is current (Row, Col):
// the arrow keys, Page Up/Down, Home/End and the mouse move it, and the grid
// scrolls to keep it in view. The grid edits nothing itself: it tells its
// parent by WM_NOTIFY (an NMFLEXGRID) what the user does, and the parent
// starts an editor on a double click, a typed character or F2:
//
//   m_grid.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP, CRect(8, 8, 400, 300), this, IDC_GRID);
//   m_grid.SetCols(2);
//   m_grid.SetRows(10);
//   m_grid.SetColWidth(0, 3000);                 // twips
//   m_grid.SetTextMatrix(0, 0, "Name");
//   ...
//   case FGN_DBLCLICK: { CRect cell; m_grid.GetCellRect(n->row, n->col, &cell); ... }
//
// A parent that answers FGN_KEYDOWN or FGN_KEYPRESS with non-zero takes the
// key: the grid does nothing more with it.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <memory>

// The WM_NOTIFY codes of the grid.
constexpr UINT FGN_FIRST = 0U - 1900U;
constexpr UINT FGN_CLICK = FGN_FIRST - 0;        // a press on a cell (row, col; -1 outside the cells)
constexpr UINT FGN_DBLCLICK = FGN_FIRST - 1;     // a double click on a cell
constexpr UINT FGN_KEYDOWN = FGN_FIRST - 2;      // a key went down (key: the virtual key)
constexpr UINT FGN_KEYPRESS = FGN_FIRST - 3;     // a character was typed (key: the character byte)
constexpr UINT FGN_ROWCOLCHANGE = FGN_FIRST - 4; // another cell became current
constexpr UINT FGN_SCROLL = FGN_FIRST - 5;       // the top row or the left column changed

// What the grid tells; row and col are the current cell, or for the mouse
// the cell under it.
struct NMFLEXGRID {
    NMHDR hdr;
    long row;
    long col;
    UINT key;
};

// Alignments of ColAlignment: left, centre or right, each top, centre or
// bottom; general puts numbers right and other text left, centred vertically.
constexpr short flexAlignLeftTop = 0;
constexpr short flexAlignLeftCenter = 1;
constexpr short flexAlignLeftBottom = 2;
constexpr short flexAlignCenterTop = 3;
constexpr short flexAlignCenterCenter = 4;
constexpr short flexAlignCenterBottom = 5;
constexpr short flexAlignRightTop = 6;
constexpr short flexAlignRightCenter = 7;
constexpr short flexAlignRightBottom = 8;
constexpr short flexAlignGeneral = 9;

// HighLight: when the current cell shows highlighted.
constexpr long flexHighlightNever = 0;
constexpr long flexHighlightAlways = 1;
constexpr long flexHighlightWithFocus = 2;

// ScrollBars: which bars may show (each only when the cells need it).
constexpr long flexScrollBarNone = 0;
constexpr long flexScrollBarHorizontal = 1;
constexpr long flexScrollBarVertical = 2;
constexpr long flexScrollBarBoth = 3;

class VXBASE_UI_EXPORT CMSFlexGrid : public CWnd {
public:
    CMSFlexGrid();
    ~CMSFlexGrid() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // --- shape ----------------------------------------------------------------------
    // Rows and columns, headings included; at least the fixed ones. New
    // cells are empty; cells cut off lose their text.
    long GetRows() const;
    void SetRows(long rows);
    long GetCols() const;
    void SetCols(long cols);
    long GetFixedRows() const;
    // Fewer than the rows; the current cell stays out of the headings.
    void SetFixedRows(long rows);
    long GetFixedCols() const;
    void SetFixedCols(long cols);

    // --- text -------------------------------------------------------------------------
    // "" (and nothing set) outside the grid.
    CString GetTextMatrix(long row, long col) const;
    void SetTextMatrix(long row, long col, LPCSTR text);
    // The current cell's text.
    CString GetText() const;
    void SetText(LPCSTR text);
    short GetColAlignment(long col) const;
    void SetColAlignment(long col, short alignment);

    // --- sizes, in twips ----------------------------------------------------------------
    long GetColWidth(long col) const;
    // -1 restores the default width.
    void SetColWidth(long col, long twips);
    long GetRowHeight(long row) const;
    void SetRowHeight(long row, long twips);
    // Where a column or row starts in the client area (it may be scrolled off).
    long GetColPos(long col) const;
    long GetRowPos(long row) const;
    // The current cell, relative to the client area.
    long GetCellLeft() const;
    long GetCellTop() const;
    long GetCellWidth() const;
    long GetCellHeight() const;
    // The cell in client pixels, grid lines excluded. FALSE (and an empty
    // rectangle) when it is outside the grid or scrolled out of view.
    BOOL GetCellRect(long row, long col, RECT* rect) const;
    // The cell at a client point; FALSE outside the cells.
    BOOL HitTest(CPoint point, long* row, long* col) const;
    // The area the cells may take: the client area less the scroll bars
    // that show.
    long GetClientWidth() const;
    long GetClientHeight() const;

    // --- the current cell and scrolling -----------------------------------------------------
    long GetRow() const;
    void SetRow(long row);
    long GetCol() const;
    void SetCol(long col);
    // The first scrolled row and column that show.
    long GetTopRow() const;
    void SetTopRow(long row);
    long GetLeftCol() const;
    void SetLeftCol(long col);
    BOOL GetRowIsVisible(long row) const;
    BOOL GetColIsVisible(long col) const;
    long GetScrollBars() const;
    void SetScrollBars(long bars);

    // --- look ---------------------------------------------------------------------------------
    long GetHighLight() const;
    void SetHighLight(long highLight);
    // FALSE holds painting back (for filling many cells); TRUE repaints.
    BOOL GetRedraw() const;
    void SetRedraw(BOOL redraw);
    // The cell under the mouse at its last message.
    long GetMouseRow() const;
    long GetMouseCol() const;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
