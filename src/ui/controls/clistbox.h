// CListBox: the platform's list box control.
//
// The list keeps its items (text and data), the selection (single,
// LBS_MULTIPLESEL or LBS_EXTENDEDSEL), the caret item and the first item
// shown, and answers the LB_ messages. The user selects with the mouse and
// the keys (arrows, Home, End, Page Up/Down, a letter finds the next item
// starting with it, Space toggles in a multiple-selection list). With
// LBS_NOTIFY the parent hears LBN_SELCHANGE when the user changes the
// selection (not when a program does) and LBN_DBLCLK after it on a double
// click; LBN_SETFOCUS and LBN_KILLFOCUS always. Owner-drawn lists
// (LBS_OWNERDRAWFIXED, LBS_OWNERDRAWVARIABLE) send WM_MEASUREITEM and
// WM_DRAWITEM to their parent.
//
//   CListBox list;
//   list.Create(WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | LBS_NOTIFY, CRect(8, 8, 160, 120), this, 1300);
//   list.AddString("Relay");
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <memory>

constexpr DWORD LBS_NOTIFY = 0x0001;
constexpr DWORD LBS_SORT = 0x0002;
constexpr DWORD LBS_NOREDRAW = 0x0004;
constexpr DWORD LBS_MULTIPLESEL = 0x0008;
constexpr DWORD LBS_OWNERDRAWFIXED = 0x0010;
constexpr DWORD LBS_OWNERDRAWVARIABLE = 0x0020;
constexpr DWORD LBS_HASSTRINGS = 0x0040;
constexpr DWORD LBS_USETABSTOPS = 0x0080;
constexpr DWORD LBS_NOINTEGRALHEIGHT = 0x0100;
constexpr DWORD LBS_MULTICOLUMN = 0x0200;
constexpr DWORD LBS_WANTKEYBOARDINPUT = 0x0400;
constexpr DWORD LBS_EXTENDEDSEL = 0x0800;
constexpr DWORD LBS_DISABLENOSCROLL = 0x1000;
constexpr DWORD LBS_NOSEL = 0x4000;
constexpr DWORD LBS_STANDARD = LBS_NOTIFY | LBS_SORT | WS_VSCROLL | WS_BORDER;

constexpr UINT LB_ADDSTRING = 0x0180;
constexpr UINT LB_INSERTSTRING = 0x0181;
constexpr UINT LB_DELETESTRING = 0x0182;
constexpr UINT LB_SELITEMRANGEEX = 0x0183;
constexpr UINT LB_RESETCONTENT = 0x0184;
constexpr UINT LB_SETSEL = 0x0185;
constexpr UINT LB_SETCURSEL = 0x0186;
constexpr UINT LB_GETSEL = 0x0187;
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LB_GETTEXT = 0x0189;
constexpr UINT LB_GETTEXTLEN = 0x018A;
constexpr UINT LB_GETCOUNT = 0x018B;
constexpr UINT LB_SELECTSTRING = 0x018C;
constexpr UINT LB_GETTOPINDEX = 0x018E;
constexpr UINT LB_FINDSTRING = 0x018F;
constexpr UINT LB_GETSELCOUNT = 0x0190;
constexpr UINT LB_GETSELITEMS = 0x0191;
constexpr UINT LB_SETTOPINDEX = 0x0197;
constexpr UINT LB_GETITEMRECT = 0x0198;
constexpr UINT LB_GETITEMDATA = 0x0199;
constexpr UINT LB_SETITEMDATA = 0x019A;
constexpr UINT LB_SELITEMRANGE = 0x019B;
constexpr UINT LB_SETANCHORINDEX = 0x019C;
constexpr UINT LB_GETANCHORINDEX = 0x019D;
constexpr UINT LB_SETCARETINDEX = 0x019E;
constexpr UINT LB_GETCARETINDEX = 0x019F;
constexpr UINT LB_SETITEMHEIGHT = 0x01A0;
constexpr UINT LB_GETITEMHEIGHT = 0x01A1;
constexpr UINT LB_FINDSTRINGEXACT = 0x01A2;
constexpr UINT LB_ITEMFROMPOINT = 0x01A9;

constexpr int LB_OKAY = 0;
constexpr int LB_ERR = -1;

constexpr UINT LBN_ERRSPACE = static_cast<UINT>(-2);
constexpr UINT LBN_SELCHANGE = 1;
constexpr UINT LBN_DBLCLK = 2;
constexpr UINT LBN_SELCANCEL = 3;
constexpr UINT LBN_SETFOCUS = 4;
constexpr UINT LBN_KILLFOCUS = 5;

class VXBASE_UI_EXPORT CListBox : public CWnd {
public:
    CListBox();
    ~CListBox() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    int GetCount() const;
    // LB_ERR when nothing (or, in a multiple-selection list, always).
    int GetCurSel() const;
    int SetCurSel(int index);
    int GetSel(int index) const;
    int SetSel(int index, BOOL select = TRUE);
    int GetSelCount() const;
    int GetSelItems(int maxItems, int* items) const;
    int GetTopIndex() const;
    int SetTopIndex(int index);
    int GetCaretIndex() const;
    int SetCaretIndex(int index, BOOL scroll = TRUE);
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
    int GetItemRect(int index, LPRECT rect) const;
    int GetItemHeight(int index) const;
    int SetItemHeight(int index, UINT height);
    // The item at a client point; HIWORD 1 when the point lies outside the items.
    UINT ItemFromPoint(CPoint point, BOOL& outside) const;
    int GetText(int index, LPSTR buffer) const;
    void GetText(int index, CString& text) const;
    int GetTextLen(int index) const;
    // Sorted place with LBS_SORT, else the end.
    int AddString(LPCSTR text);
    int InsertString(int index, LPCSTR text);
    int DeleteString(UINT index);
    void ResetContent();
    // The first item from after `startAfter` (wrapping) that starts with, or
    // equals, the text, without regard to case; LB_ERR.
    int FindString(int startAfter, LPCSTR text) const;
    int FindStringExact(int startAfter, LPCSTR text) const;
    int SelectString(int startAfter, LPCSTR text);

    virtual void DrawItem(LPDRAWITEMSTRUCT item);
    virtual void MeasureItem(LPMEASUREITEMSTRUCT item);
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
