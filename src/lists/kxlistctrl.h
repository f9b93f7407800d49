// KXListCtrl: the cell list, a report list that works as a small spreadsheet.
//
// Every cell has its record (XLISTCTRLDATA) that says how it looks and
// behaves: text with colours and an image, a check box, a combo, a progress
// bar, a row of small images (a bridge), a button or an icon. In cell mode the
// user selects cells, rectangles and rows, and copies, cuts and pastes blocks
// through the clipboard, among lists of this kind (the "VXXLIST" form) and
// as tab separated text with other programs. The list never writes a value
// the user changed: it asks its parent (WM_XLISTCTRL_SETTEXT) and the parent
// writes it with SetItemText. Cells are edited in place by a text editor, a
// combo ("SuperComboBox") or an input box that walks from cell to cell.
//
// Every cell function takes the row first and the column second and does
// nothing (answering 0) for a cell outside the list.
//
//   m_list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, rect, this, IDC_PARTS);
//   m_list.SetCellMode(TRUE);
//   m_list.InsertColumn(0, "Device", LVCFMT_LEFT, 80);
//   int row = m_list.InsertItem(0, "K1");
//   m_list.SetCheckbox(row, 1, 1);
//
//   // in the parent:
//   case WM_XLISTCTRL_SETTEXT: {
//       auto* change = reinterpret_cast<XLISTCTRL_CHANGE*>(wParam);
//       change->pList->SetItemText(change->nRow, change->nCol, reinterpret_cast<const char*>(lParam));
//   }
#pragma once

#include "lists/cellselection.h"
#include "lists/klistctrl.h"
#include "lists/tuniarray.h"
#include "lists/xlistctrldata.h"
#include "platform/framework/carray.h"
#include "platform/framework/rect.h"
#include "ui/controls/ctooltipctrl.h"
#include "vxbase_ui_export.h"

#include <memory>

class CDC;
class CImageList;
class KHeaderCtrlEx;

class VXBASE_UI_EXPORT KXListCtrl : public KListCtrl {
public:
    KXListCtrl();
    ~KXListCtrl() override;

    // --- the list ---------------------------------------------------------------------------
    // 0 a plain row list, 1 a cell grid (which shows the selection of every
    // column: LVS_EX_FULLROWSELECT).
    void SetCellMode(BOOL cells);
    BOOL GetCellMode() const;
    // Set by every change the user makes; stays until the owner clears it.
    BOOL GetListModified() const;
    void SetListModified(BOOL modified);
    CellSelection& GetSelection();
    KHeaderCtrlEx& GetHeader();
    // The image lists: cells' images, and the 16 pixel images of bridges and icons.
    CImageList& GetCellImages();
    CImageList& GetSmallImages();
    // The values kept for the list's column management ("colmod" 1 by
    // default, "colheight" 160, at least 5 when "colmod" is 0).
    int GetColMod() const;
    int GetColHeight() const;

    // --- operations beyond KListCtrl ----------------------------------------------------------
    virtual int GetColumnMinWidth(int col);
    // Cut (with `copyFirst`) or clear: empties the first selected block, or
    // in row mode asks the parent to delete the rows.
    virtual void ZellenLoeschen(int copyFirst);
    // Pastes the clipboard into the block given, or with all four -1 into the
    // selection.
    virtual void ZellenEinfuegen(int firstRow, int lastRow, int firstCol, int lastCol);
    // Copies the first selected block (or in row mode the rows) to the clipboard.
    virtual void ZellenKopieren();
    virtual BOOL DeleteAllItems();
    virtual BOOL SetColumnWidth(int col, int width);
    // The tooltip of the cell a tool stands for (TTN_NEEDTEXT).
    virtual BOOL OnToolTipText(UINT id, NMHDR* header, LRESULT* result);

    // --- rows -------------------------------------------------------------------------------------
    // Each insertion makes the whole row of records at once; -1 when there is
    // no memory for it (the string 6725 says how many rows show).
    int InsertItem(const LVITEMA* item);
    int InsertItem(int row, const char* text);
    int InsertItem(int row, const char* text, COLORREF textColor, COLORREF background);
    int InsertBridge(int row, int col, int slot, int image);
    int InsertButton(int row, int col, const char* text);
    int InsertComboBox(int row, int col, const char* text, XLC_COMBOFILL fill, DWORD_PTR data, int lines, int sort);
    BOOL DeleteItem(int row);

    // --- cells ------------------------------------------------------------------------------------
    BOOL SetItem(const LVITEMA* item);
    BOOL SetItemText(int row, int col, const char* text);
    BOOL SetItemText(int row, int col, const char* text, COLORREF textColor, COLORREF background,
                     const CWordArray* attributes = nullptr);
    // Asks the parent to write `text` into the cell (the list does not):
    // 0 when the cell refuses, 1 otherwise. An unchanged text sends nothing.
    int ModifyItemText(int row, int col, CString* text);
    CString GetItemText(int row, int col) const;
    CString GetComboText(int row, int col);
    BOOL SetItemImage(int row, int col, int image, const CWordArray* attributes = nullptr);
    BOOL SetIcon(int row, int col, int image);
    // A slot of -1 takes the first free one, or a new one at the end.
    BOOL SetBridge(int row, int col, int slot, int image);
    BOOL SetComboBox(int row, int col, BOOL enable, XLC_COMBOFILL fill, DWORD_PTR data, int lines, int sort);
    // -1 no check box, 0 clear, 1 set; the column's header check follows.
    BOOL SetCheckbox(int row, int col, int state);
    int GetCheckbox(int row, int col);
    // The same without touching the header.
    BOOL SetItemCheckedState(int row, int col, int state);
    BOOL SetEdit(int row, int col, BOOL edit = TRUE);
    // `format` has one "%d" for the percent; null or "" means "%d%%".
    BOOL SetProgress(int row, int col, BOOL showText = TRUE, const char* format = nullptr);
    BOOL UpdateProgress(int row, int col, int percent);
    BOOL DeleteProgress(int row, int col);
    BOOL SetBold(int row, int col, BOOL bold);
    BOOL GetBold(int row, int col);
    BOOL SetModified(int row, int col, BOOL modified);
    BOOL GetModified(int row, int col);
    // The cell's modified flag without repainting.
    BOOL SetModifiedFlag(int row, int col, BOOL modified);
    BOOL SetItemColors(int row, int col, COLORREF text, COLORREF background);
    BOOL GetItemColors(int row, int col, COLORREF* text, COLORREF* background);
    // Rows: a disabled row is grey and ignores the mouse.
    BOOL SetEnabled(int row, BOOL enabled);
    BOOL GetEnabled(int row);
    BOOL SetCellEditable(int row, int col, BOOL editable);
    BOOL SetRowEditable(int row, BOOL editable);
    BOOL SetKeepColors(int row, int col, BOOL keep);
    BOOL SetItemToolTipText(int row, int col, const char* text);
    CString GetItemToolTipText(int row, int col);
    BOOL SetItemData(int row, DWORD_PTR data);
    DWORD_PTR GetItemData(int row);
    BOOL SetItemData2(int row, DWORD_PTR data);
    DWORD_PTR GetItemData2(int row);
    // Grows the row's data array as needed.
    BOOL SetItemDataArray(int row, int index, DWORD value);
    DWORD GetItemDataArray(int row, int index);
    XLISTCTRLDATA* GetItemXLCDData(int row, int col);
    BOOL UpdateItem(int row);
    // Repaints one cell and nothing else.
    BOOL UpdateSubItem(int row, int col);
    BOOL IsCellEditable(int row, int col);

    // --- columns ------------------------------------------------------------------------------------
    int GetColumns();
    CString GetColumnName(int col);
    // Compares without regard to case; -1 when absent.
    int FindColumn(const char* name);
    // A column drawn as buttons, which selection passes over; `on` 0 removes it.
    void SetButtonColumn(int col, int on);
    int GetButtonColumn() const;
    void EnableHeaderDrag(BOOL enable);
    // 0 no check box in the header, 1 some rows unchecked, 2 all checked.
    int GetHeaderCheckedState(int col);
    BOOL SetHeaderCheckedState(int col, int state);
    int CountCheckedItems(int col);
    void InitSpaltenverwaltung(int id, CStringArray* names) override;
    // Called after a column was dragged: it must refill the list.
    void SetCallBackRefreshFunction(void* context, int (*refresh)(void*));
    void DragColumn(int from, int to);

    // --- selection ------------------------------------------------------------------------------------
    int GetCurSel() override;
    // Every selected row; returns their number.
    int GetCurSel(CUIntArray* rows);
    // Every selected cell as (column, row); returns their number.
    int GetCurSelCells(TUniArray<CPoint, CPoint&>* cells);
    BOOL SetCurSel(int row) override;
    // With `notify`, the parent hears WM_XLISTCTRL_SELCHANGED.
    BOOL SetCurSel(int row, int notify);
    void SelectAll();
    void DeselectAll();
    // `state` 2 draws the row as selected, 0 not.
    void SelectRow(int row, int state, int update);
    // The first row whose item data is `data`, or -1.
    int FindDataItem(DWORD_PTR data);

    // --- hit testing and the editors ---------------------------------------------------------------
    // The row and column under a point; FALSE (and -1) off the rows.
    BOOL HitXTest(CPoint& point, int* row, int* col);
    // The same over the visible rows, counting a column's right edge in.
    BOOL HitTestEx(CPoint& point, int* row, int* col);
    // A cell's rectangle; column 0 is its own column, not the whole row.
    BOOL GetSubItemRect(int row, int col, int code, CRect& rect);
    // Opens the input box at the cell if it is editable (closing one open elsewhere).
    void EditCurrentRecord(int row, int col, int limit);
    // Opens (`show` 1) or closes the input box; a call to open while one is
    // open closes it. `limit` -1 sets no length limit.
    void ShowEdiBox(int row, int col, int show, int limit);
    // Opens the text editor or the combo over a cell.
    void DrawEdit(int row, int col);
    void DrawComboBox(int row, int col);
    // Whether an editor is open: the text editor, the combo, the input box.
    BOOL IsEditOpen() const;
    BOOL IsComboOpen() const;
    BOOL IsEdiBoxOpen() const;
    // The input box's window while it is open (null otherwise).
    CWnd* GetEdiBox() const;
    CWnd* GetEditWindow() const;
    CWnd* GetComboWindow() const;

    // --- drawing -------------------------------------------------------------------------------------
    void GetDrawColors(int row, int col, COLORREF& text, COLORREF& background, XLISTCTRLDATA* data);
    // Draws the cell's image and answers the pixels it took.
    int DrawImage(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect rect, XLISTCTRLDATA* data);
    void DrawText(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect& rect, XLISTCTRLDATA* data);
    void DrawIcon(int row, int col, CDC* dc, COLORREF background, CRect& rect, XLISTCTRLDATA* data);
    void DrawBridge(int row, int col, CDC* dc, COLORREF background, CRect& rect, XLISTCTRLDATA* data);
    void DrawCheckbox(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect& rect,
                      XLISTCTRLDATA* data);
    void DrawProgress(int row, int col, CDC* dc, COLORREF text, COLORREF background, CRect& rect,
                      XLISTCTRLDATA* data);
    // A button cell, and a bare button face (the button column's tiles).
    void DrawButton(int row, int col, CDC* dc, CRect& rect, XLISTCTRLDATA* data);
    void DrawButton(CDC* dc, CRect& rect, const char* text, BOOL enabled);

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void RedrawItemState(int item) override;
    int ColumnMinimum(int column) override;

    // --- handlers ----------------------------------------------------------------------------------------
    virtual BOOL OnCustomDraw(NMHDR* header, LRESULT* result);
    virtual BOOL OnClick(NMHDR* header, LRESULT* result);
    virtual BOOL OnDblClick(NMHDR* header, LRESULT* result);
    virtual BOOL OnColumnClick(NMHDR* header, LRESULT* result);
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnRButtonDown(UINT flags, CPoint point) override;
    void OnKeyDown(UINT key, UINT repeat, UINT flags) override;
    void OnTimer(UINT_PTR id) override;
    void OnDestroy() override;
    void OnSysColorChange() override;
    void OnPaint() override;
    BOOL OnEraseBkgnd() override;
    void OnNcLButtonDown(UINT hitTest, CPoint point) override;
    virtual void OnHScroll(UINT code, UINT pos);
    // A key from the input box: 0 when the list handled it.
    virtual LRESULT OnEditProc(WPARAM key, LPARAM);
    virtual LRESULT OnComboEscape(WPARAM, LPARAM);
    virtual LRESULT OnComboComplete(WPARAM, LPARAM);
    virtual LRESULT OnXEditEscape(WPARAM, LPARAM);
    virtual LRESULT OnXEditKillFocus(WPARAM, LPARAM);
    // The tool under a point: the cell, with its tooltip text asked for later.
    virtual INT_PTR OnToolHitTest(CPoint point, TOOLINFO* info);

private:
    struct Private;
    friend struct Private;
    std::unique_ptr<Private> d;
};
