// The data of the cell list: one XLISTCTRLDATA record per cell, the items
// of its combos, and the records and messages it sends its parent.
//
// A row of a KXListCtrl owns an array of as many records as the list had
// columns when the row was inserted. The row's first record also speaks for
// the row: its enabled, editable and modified flags, its item data and its
// default colours.
//
//   XLISTCTRLDATA* cell = list.GetItemXLCDData(row, 2);
//   if (cell && cell->nCheckedState == 1) ...
#pragma once

#include "base/vxglobals.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

class KXListCtrl;

// The kinds of cell.
constexpr int XLC_KIND_TEXT = 1;
constexpr int XLC_KIND_BRIDGE = 5; // a row of small images, 16 pixels apart
constexpr int XLC_KIND_BUTTON = 6;
constexpr int XLC_KIND_ICON = 7;

// The default colours of a cell.
constexpr COLORREF XLC_DEFAULT_BACKGROUND = 0xCDFCFA;
constexpr COLORREF XLC_NOT_EDITABLE_BACKGROUND = 0xB9E8E6;
constexpr COLORREF XLC_MODIFIED_BACKGROUND = 0x64F5EE;

// An item a combo offers: its text and three values handed on to the
// combo's item (the first is the item's data).
struct ComboItem {
    CString strText;
    DWORD_PTR dwData = 0;
    DWORD_PTR dwValue2 = 0;
    DWORD_PTR dwValue3 = 0;
};

// Fills a combo as it opens: the cell's combo data, the list, the cell and
// the array to fill.
using XLC_COMBOFILL = void (*)(DWORD_PTR data, void* list, int row, int col, CArray<ComboItem, ComboItem&>* items);

// The payload of a bridge cell: slots in use and the image in each.
struct XLC_BRIDGE {
    CDWordArray aUsed;
    CDWordArray aImages;
};

struct VXBASE_UI_EXPORT XLISTCTRLDATA {
    XLISTCTRLDATA();
    ~XLISTCTRLDATA();
    XLISTCTRLDATA(const XLISTCTRLDATA&) = delete;
    XLISTCTRLDATA& operator=(const XLISTCTRLDATA&) = delete;

    // Frees the payload (by kind) and makes the cell a text cell.
    void FreePayload();
    XLC_BRIDGE* Bridge() const { return nKind == XLC_KIND_BRIDGE ? static_cast<XLC_BRIDGE*>(pPayload) : nullptr; }
    int* Icon() const { return nKind == XLC_KIND_ICON ? static_cast<int*>(pPayload) : nullptr; }

    BOOL bEnabled = TRUE;      // read from the row's first record
    BOOL bSelected = FALSE;    // drawn as selected in a cell grid
    BOOL bBold = FALSE;
    BOOL bModified = FALSE;
    int nImage = -1;
    CWordArray aTextAttributes; // the owner's; the list only keeps them
    int nKind = XLC_KIND_TEXT;
    void* pPayload = nullptr;   // owned, by kind
    BOOL bCellEditable = TRUE;
    BOOL bRowEditable = TRUE;   // read from the row's first record
    BOOL bKeepColors = FALSE;   // a modified cell keeps its own colours
    int nRowSelectState = 0;    // 2 draws the row as selected
    CString strToolTip;
    BOOL bCombo = FALSE;
    int nComboSort = 0;
    XLC_COMBOFILL pComboFill = nullptr;
    DWORD_PTR dwComboData = 0;
    int nComboLines = 10;
    BOOL bEdit = FALSE;         // a left click starts the text editor
    COLORREF crText;
    COLORREF crBackground = XLC_DEFAULT_BACKGROUND;
    BOOL bProgress = FALSE;
    int nProgressPercent = 0;
    CString strProgressText;    // one "%d"; empty means "%d%%"
    BOOL bShowProgressText = TRUE;
    int nCheckedState = -1;     // -1 no check box, 0 clear, 1 set
    DWORD_PTR dwItemData = static_cast<DWORD_PTR>(-1);  // on the row's first record
    DWORD_PTR dwItemData2 = static_cast<DWORD_PTR>(-1);
    CDWordArray aDataArray;
};

// The record of WM_XLISTCTRL_SETTEXT (WM_USER + 3): which cell the parent is
// asked to write.
struct XLISTCTRL_CHANGE {
    int nRow;
    int nCol;
    KXListCtrl* pList;
    DWORD dwValue; // 0
};

// The record of WM_XLISTCTRL_COMBO_SELECTION.
struct XLISTCTRL_COMBOSELECTION {
    int nRow;
    int nCol;
    KXListCtrl* pList;
    DWORD_PTR dwItemData; // the chosen item's data
};

// Messages the list sends its parent (SendMessageA), and the input box's
// keys to the list.
constexpr UINT WM_XLISTCTRL_EDITKEY = 0x402;   // wParam key; from the input box to the list
constexpr UINT WM_XLISTCTRL_SETTEXT = 0x403;   // wParam XLISTCTRL_CHANGE*, lParam const char* text
constexpr UINT WM_XLISTCTRL_COPYROWS = 0x404;  // wParam first row, lParam last row
constexpr UINT WM_XLISTCTRL_CANCOPY = 0x405;   // wParam first row, lParam last row; 0 refuses
constexpr UINT WM_XLISTCTRL_PASTEROWS = 0x406; // wParam target row
constexpr UINT WM_XLISTCTRL_DELETEROWS = 0x407; // wParam first row, lParam last row
constexpr UINT WM_XLISTCTRL_SELCHANGED = 0x408; // wParam row

// The registered messages (WM_XLISTCTRL_CHECKBOX_CLICKED: wParam row, lParam
// column; WM_XLISTCTRL_EDIT_END: row, column; WM_XLISTCTRL_COMBO_SELECTION:
// lParam XLISTCTRL_COMBOSELECTION*) go to the parent, or to the main window
// without one; the editors tell the list WM_XCOMBOLIST_VK_ESCAPE,
// WM_XCOMBOLIST_COMPLETE, WM_XEDIT_VK_ESCAPE and WM_XEDIT_KILL_FOCUS. The
// library registers them at load (base/vxglobals.h).
