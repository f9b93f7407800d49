// Internal to KXListCtrl: the rows of records, the colours, and the state of
// the selection and of the editors. Do not include directly.
#pragma once

#include "lists/kheaderctrlex.h"
#include "lists/kxlistctrl.h"
#include "lists/kxlisteditors_p.h"
#include "lists/xrowset_p.h"
#include "ui/controls/ctooltipctrl.h"
#include "ui/images/cimagelist.h"

#include <memory>
#include <vector>

namespace vx::lists {

// Timers of the combo, all of 50 ms: the list leaves the combo's own message
// handling before it ends what the combo started.
constexpr UINT_PTR kTimerUnlock = 1;
constexpr UINT_PTR kTimerComboEscape = 2;
constexpr UINT_PTR kTimerComboComplete = 3;
constexpr UINT_PTR kTimerComboWrite = 4;
constexpr UINT kTimerDelay = 50;

// Control ids of the editors.
constexpr UINT kEditId = 99;
constexpr UINT kEdiBoxId = 111;

} // namespace vx::lists

struct KXListCtrl::Private {
    explicit Private(KXListCtrl& owner);

    KXListCtrl& q;
    BOOL cellMode = FALSE;
    int buttonColumn = -1;
    CellSelection selection;
    KHeaderCtrlEx header;
    CImageList cellImages;
    CImageList smallImages; // bitmap 452: 16 wide, masked by magenta
    void* refreshContext = nullptr;
    int (*refresh)(void*) = nullptr;

    // Colours, read from the system at the start and on WM_SYSCOLORCHANGE.
    COLORREF crFace = 0;
    COLORREF crHighlightEdge = 0;
    COLORREF crShadow = 0;
    COLORREF crFace2 = 0;
    COLORREF crShadow2 = 0;
    COLORREF crButtonText = 0;
    COLORREF crGrayText = 0;
    COLORREF crHighlight = 0;
    COLORREF crHighlightText = 0;
    COLORREF crNotEditable = XLC_NOT_EDITABLE_BACKGROUND;
    COLORREF crDefaultBack = XLC_DEFAULT_BACKGROUND;
    COLORREF crDefaultText = 0;
    COLORREF crModified = XLC_MODIFIED_BACKGROUND;
    COLORREF crEdiBox = 0xB4FFFF; // the input box's background

    BOOL listModified = FALSE;
    BOOL drawingSuspended = FALSE;
    bool dragging = false; // the mouse extends the selection

    // The combo over a cell.
    int comboRow = -1;
    int comboCol = -1;
    CRect comboRect;
    std::unique_ptr<vx::lists::SuperComboBox> combo;
    CString comboOld;
    bool locked = false; // LockWindowUpdate until timer 1
    // The text editor.
    CString editOld;
    std::unique_ptr<vx::lists::TextEditor> edit;
    int editRow = -1;
    int editCol = -1;
    // The input box.
    BOOL boxOpen = FALSE;
    int boxRow = -1;
    int boxCol = -1;
    std::unique_ptr<vx::lists::InputBox> box;
    CString boxText;
    // Editors closed from inside their own message handling live on until
    // the list can let them go.
    std::vector<std::unique_ptr<CWnd>> retired;
    void Retire(std::unique_ptr<CWnd> window);
    // Posted to the list to let retired editors go.
    static UINT ReleaseMessage();
    void FreeRetired();
    // Cell tooltips: the cell whose text shows.
    CToolTipCtrl tip;
    int tipRow = -1;
    int tipCol = -1;

    int colMod = 1;
    int colHeight = 160;
    std::vector<int> headerChecked; // by column: 0 none, 1, 2
    bool warnedRows = false;

    // The row arrays the list owns, by the address its items carry.
    vx::lists::RowSet rows;
    // The row last found there: a row's cells are mostly visited in a run.
    // Cleared whenever a row goes.
    mutable vx::lists::XRow* lastRow = nullptr;
    // False once the window is destroyed or the object goes. A block
    // operation holds a copy and stops when its parent destroys the list,
    // without looking the window up for every cell.
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);

    void ReadColors();
    int Count() const { return q.CListCtrl::GetItemCount(); }
    vx::lists::XRow* RowOf(int row) const;
    // The record of a cell, or null for a cell outside the list or the row.
    XLISTCTRLDATA* Cell(int row, int col) const;
    XLISTCTRLDATA* First(int row) const { return Cell(row, 0); }
    bool ValidCell(int row, int col) const;
    // ModifyItemText on a C string: a block paste passes its cells in place.
    int ModifyText(int row, int col, const char* text);
    // Asks for the memory of the rows ahead of `row` in a long run over the
    // rows, in stages (record, then texts and cells), so that their cache
    // misses overlap with the work on the rows before. Changes nothing.
    void PrefetchAhead(int row) const;
    // A new row of records at `row`, with `text` in column 0; -1 on failure.
    int NewRow(int row, const char* text, int image, LPARAM itemData, bool hasItemData);
    void SetHeaderCheckFromCount(int col);
    void FirstSelectable(int& col) const;
    void SendSelChanged(int row);
    HWND Target() const;
    void ShowHeaderCheck(int col);

    void CloseCombo();
    void CloseEdit();
    CString BoxText() const;
    void MarkBox();
    void UpdateTip(CPoint point);

    static void MarkCell(void* context, int row, int col, int op);
    static void MarkRow(void* context, int row, int op);
};
