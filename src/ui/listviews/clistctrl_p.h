// Internal to CListCtrl: its items, columns, geometry and the state of the
// mouse and the keyboard. Do not include directly.
#pragma once

#include "ui/listviews/clistctrl.h"

#include "ui/images/cimagelist.h"

#include "platform/framework/cstring.h"

#include <memory>
#include <vector>

namespace vx::listviews {

struct Column {
    int fmt = LVCFMT_LEFT;
    int width = 0;
    CString text;
    int image = -1;
    int subItem = 0;
};

struct Item {
    std::vector<CString> texts; // by column; missing ones are empty
    int image = -1;
    UINT state = 0;
    LPARAM lParam = 0;
    int indent = 0;
};

// A scroll bar of the list, in the non-client area right of and below the
// client area.
struct Bar {
    bool shown = false;
    CRect rect; // window coordinates
    int max = 0;  // the last position (items or pixels)
    int page = 0; // how much shows at once
    int pos = 0;
};

} // namespace vx::listviews

struct CListCtrl::Private {
    explicit Private(CListCtrl& owner) : q(owner) {}

    CListCtrl& q;
    std::vector<vx::listviews::Column> columns;
    std::vector<std::unique_ptr<vx::listviews::Item>> items;
    std::vector<int> order; // shown position -> column
    std::vector<int> left;  // column -> left edge in list coordinates
    int totalWidth = 0;

    CHeaderCtrl ownHeader;
    CHeaderCtrl* header = &ownHeader;
    HIMAGELIST images[3] = {nullptr, nullptr, nullptr};
    DWORD exStyle = 0;
    COLORREF bkColor;
    COLORREF textColor;
    COLORREF textBkColor;

    int rowHeight = 17;
    int headerHeight = 0;
    int top = 0;     // first row shown
    int scrollX = 0; // pixels scrolled to the right
    vx::listviews::Bar vbar;
    vx::listviews::Bar hbar;
    bool layingOut = false;
    bool barsDirty = false; // bar values changed while drawing was off

    int focus = -1;
    int mark = -1;

    // WM_SETREDRAW FALSE holds invalidations back until drawing resumes.
    bool redraw = true;
    std::vector<CRect> held;

    // The left button: where it went down, on what, and whether a drag began.
    bool pressed = false;
    bool dragging = false;
    bool capturedByUs = false;
    int pressItem = -1;
    CPoint pressPoint;
    bool ignoreUp = false;
    // A scroll bar being pressed: 0 none, 1 vertical, 2 horizontal.
    int barPressed = 0;
    int barPart = 0;
    int barGrab = 0;

    // --- geometry --------------------------------------------------------------
    CRect Client() const;
    // Where rows show: the client area below the header.
    CRect DataRect() const;
    CRect DataRectIn(CRect client) const;
    // Window coordinates of a point in client coordinates, and of one on the screen.
    CPoint ClientToWindow(CPoint client) const;
    CPoint ScreenToWindow(CPoint screen) const;
    int RowTop(int item) const;
    CRect RowBounds(int item) const;
    // A column's cell in a row, whole (images included).
    CRect CellRect(int item, int column) const;
    int ImageWidth(int kind) const;
    void Relayout();
    void RecomputeColumns();
    void RecomputeRowHeight();
    void SyncFromHeader();
    void UpdateBars();
    void PlaceHeader();
    int PageRows() const;
    int LastTop() const;
    void SetTop(int row);
    void SetScrollX(int x);

    // --- repainting -------------------------------------------------------------
    // Invalidates a rectangle of the client area, or holds it back while
    // drawing is off. Only what shows is taken.
    void Invalidate(const CRect& rect);
    void InvalidateAll();
    void InvalidateRow(int item);
    void InvalidateFrom(int item);
    void InvalidateCell(int item, int column);

    // --- items and notifications ------------------------------------------------
    bool Valid(int item) const { return item >= 0 && item < static_cast<int>(items.size()); }
    LRESULT Notify(UINT code, NMHDR* header) const;
    LRESULT NotifyList(UINT code, int item, int subItem = 0, UINT newState = 0, UINT oldState = 0,
                       UINT changed = 0, CPoint action = CPoint(), LPARAM lParam = 0) const;
    // Changes state bits of one item (-1: all), with LVN_ITEMCHANGING and
    // LVN_ITEMCHANGED; false if the parent refused or nothing changed.
    bool ChangeState(int item, UINT state, UINT mask);
    bool ChangeStateOne(int item, UINT state, UINT mask);
    void SelectOnly(int item);
    void SelectRange(int from, int to, bool keepOthers);
    void MoveFocus(int item, UINT keyFlags);
    CString TextOf(int item, int column) const;
    // A cell's text, repainted if it changed; false for a cell outside the list.
    bool SetText(int item, int column, const char* text);

    // --- painting -------------------------------------------------------------------
    void Paint();
    void PaintItem(HDC dc, int item, LRESULT listAnswer, bool hasFocus);
    void PaintCell(HDC dc, int item, int column, const CRect& cell, COLORREF text, COLORREF back, bool selected);
    // The scroll bars, on a device of the whole window.
    void PaintBars(HDC dc);
    void InvalidateBars();

    // --- input ----------------------------------------------------------------------
    void ButtonDown(UINT flags, CPoint point, bool doubleClick);
    void MouseMove(UINT flags, CPoint point);
    void ButtonUp(UINT flags, CPoint point);
    void KeyDown(UINT key);
    void VScroll(UINT code, int pos);
    void HScroll(UINT code, int pos);
    // A press in the non-client area (window coordinates); false if no bar is there.
    bool BarDown(CPoint window);
    void BarMove(CPoint window);
    LRESULT BarHitTest(CPoint screen) const;
    LRESULT HeaderNotify(NMHDR* header);
};
