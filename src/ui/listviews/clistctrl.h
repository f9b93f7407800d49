// CListCtrl: the platform's list view control ("SysListView32") in report
// view, as the framework wraps it.
//
// Rows of items with one text per column, an image, a state (selected,
// focused, a check box with LVS_EX_CHECKBOXES) and a 32-bit value each; a
// CHeaderCtrl at the top names the columns. The control answers the LVM_
// messages of ui/listviews/listview.h, scrolls with its scroll bars, the
// wheel and the keyboard, and tells its parent by WM_NOTIFY what happens:
// LVN_ITEMCHANGING/LVN_ITEMCHANGED around each state change, LVN_INSERTITEM,
// LVN_DELETEITEM, LVN_DELETEALLITEMS, LVN_COLUMNCLICK, LVN_BEGINDRAG,
// LVN_KEYDOWN, NM_CLICK, NM_DBLCLK, NM_RCLICK, NM_RETURN, NM_SETFOCUS and
// NM_KILLFOCUS. A parent (or, reflected, the control's own class) may paint
// any part through NM_CUSTOMDRAW: the whole list, each item, and with
// CDRF_NOTIFYSUBITEMDRAW each cell, before and after painting.
//
// The control paints only what was invalidated: a changed item, text or
// state repaints that item (a text, only its cell), and a paint asks custom
// draw only for the cells inside the area to paint. WM_SETREDRAW FALSE holds
// painting back; WM_SETREDRAW TRUE then repaints what changed meanwhile (not
// the whole list, as the original did).
//
// The header is the control's child; the control itself handles what the
// header reports (widths, order, clicks), and those notifications do not go
// on to the control's parent. A class may put a header object of its own in
// place of the built-in one with SetHeaderCtrl.
//
//   CListCtrl list;
//   list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, CRect(0, 0, 300, 200), this, 100);
//   list.InsertColumn(0, "Device", LVCFMT_LEFT, 120);
//   list.InsertColumn(1, "Page", LVCFMT_RIGHT, 60);
//   int row = list.InsertItem(0, "K1");
//   list.SetItemText(row, 1, "12");
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "ui/listviews/cheaderctrl.h"
#include "ui/listviews/listview.h"
#include "vxbase_ui_export.h"

#include <memory>

class CImageList;

// Key flags of NMITEMACTIVATE::uKeyFlags.
constexpr UINT LVKF_ALT = 0x0001;
constexpr UINT LVKF_CONTROL = 0x0002;
constexpr UINT LVKF_SHIFT = 0x0004;

class VXBASE_UI_EXPORT CListCtrl : public CWnd {
public:
    CListCtrl();
    ~CListCtrl() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // --- columns ----------------------------------------------------------------------
    int InsertColumn(int column, const LVCOLUMN* info);
    // A width of -1 sizes the column to its title.
    int InsertColumn(int column, LPCSTR heading, int format = LVCFMT_LEFT, int width = -1, int subItem = -1);
    BOOL DeleteColumn(int column);
    BOOL GetColumn(int column, LVCOLUMN* info) const;
    BOOL SetColumn(int column, const LVCOLUMN* info);
    int GetColumnWidth(int column) const;
    // LVSCW_AUTOSIZE fits the widest text, LVSCW_AUTOSIZE_USEHEADER the title too.
    BOOL SetColumnWidth(int column, int width);
    BOOL GetColumnOrderArray(int* order, int count = -1) const;
    BOOL SetColumnOrderArray(int count, int* order);
    CHeaderCtrl* GetHeaderCtrl() const;
    // Puts `header` in place of the control's header: the new one takes the
    // old one's items, image list and place, and answers from now on. The
    // object must outlive the control (or be given back with null, which
    // returns to the built-in header).
    void SetHeaderCtrl(CHeaderCtrl* header);

    // --- items ---------------------------------------------------------------------------
    int GetItemCount() const;
    int InsertItem(const LVITEM* item);
    int InsertItem(int item, LPCSTR text);
    int InsertItem(int item, LPCSTR text, int image);
    int InsertItem(UINT mask, int item, LPCSTR text, UINT state, UINT stateMask, int image, LPARAM lParam);
    BOOL DeleteItem(int item);
    BOOL DeleteAllItems();
    BOOL GetItem(LVITEM* item) const;
    BOOL SetItem(const LVITEM* item);
    BOOL SetItem(int item, int subItem, UINT mask, LPCSTR text, int image, UINT state, UINT stateMask,
                 LPARAM lParam);
    CString GetItemText(int item, int subItem) const;
    int GetItemText(int item, int subItem, LPSTR text, int length) const;
    BOOL SetItemText(int item, int subItem, LPCSTR text);
    DWORD_PTR GetItemData(int item) const;
    BOOL SetItemData(int item, DWORD_PTR data);
    UINT GetItemState(int item, UINT mask) const;
    BOOL SetItemState(int item, UINT state, UINT mask);
    BOOL SetItemState(int item, LVITEM* info);
    // The check box of LVS_EX_CHECKBOXES.
    BOOL GetCheck(int item) const;
    BOOL SetCheck(int item, BOOL check = TRUE);
    // Room for `count` items; the list itself grows as items come.
    void SetItemCount(int count);
    BOOL SortItems(PFNLVCOMPARE compare, DWORD_PTR data);
    int FindItem(LVFINDINFO* info, int start = -1) const;

    // --- selection ------------------------------------------------------------------------
    int GetNextItem(int item, int flags) const;
    UINT GetSelectedCount() const;
    POSITION GetFirstSelectedItemPosition() const;
    int GetNextSelectedItem(POSITION& position) const;
    int GetSelectionMark() const;
    int SetSelectionMark(int item);

    // --- geometry and scrolling ------------------------------------------------------------
    // `code` is LVIR_BOUNDS, LVIR_ICON, LVIR_LABEL or LVIR_SELECTBOUNDS.
    BOOL GetItemRect(int item, LPRECT rect, UINT code) const;
    // As on the original, column 0 with LVIR_BOUNDS is the whole row.
    BOOL GetSubItemRect(int item, int subItem, int code, CRect& rect) const;
    int HitTest(CPoint point, UINT* flags = nullptr) const;
    int HitTest(LVHITTESTINFO* info) const;
    int SubItemHitTest(LVHITTESTINFO* info);
    BOOL EnsureVisible(int item, BOOL partialOK);
    // Scrolls by pixels: horizontally by `size.cx`, vertically by whole rows
    // of `size.cy`.
    BOOL Scroll(CSize size);
    BOOL RedrawItems(int first, int last);
    BOOL Update(int item);
    int GetTopIndex() const;
    // Rows that fit wholly in the list.
    int GetCountPerPage() const;
    BOOL GetViewRect(LPRECT rect) const;
    BOOL GetOrigin(LPPOINT point) const;
    int GetStringWidth(LPCSTR text) const;

    // --- look ------------------------------------------------------------------------------
    DWORD GetExtendedStyle() const;
    DWORD SetExtendedStyle(DWORD style);
    CImageList* GetImageList(int kind) const;
    CImageList* SetImageList(CImageList* list, int kind);
    COLORREF GetBkColor() const;
    BOOL SetBkColor(COLORREF color);
    COLORREF GetTextColor() const;
    BOOL SetTextColor(COLORREF color);
    COLORREF GetTextBkColor() const;
    BOOL SetTextBkColor(COLORREF color);
    // WM_SETREDRAW.
    void SetRedraw(BOOL redraw = TRUE);

protected:
    // The system list view's behaviour.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // Repaints an item whose state (selection, focus, check) changed; the
    // default invalidates its row. A class that shows selection its own way
    // repaints what it needs instead.
    virtual void RedrawItemState(int item);
    // Repaints one cell as the control repaints its own changes (held back
    // while drawing is off, nothing outside the rows).
    void InvalidateSubItem(int item, int subItem);
    // A cell's text where the control keeps it ("" for none), for a class
    // that compares many cells; valid until the cell or the list changes.
    const char* ItemTextInPlace(int item, int subItem) const;
    // Asks the processor to fetch an item's record ahead of a long run over
    // the rows, or with `texts` the texts of a record fetched so before.
    // Only a hint: it never fails and changes nothing.
    void PrefetchItem(int item, bool texts) const;

private:
    struct Private;
    friend struct Private;
    std::unique_ptr<Private> d;
};
