// CEdit: the platform's edit control, single-line or multi-line.
//
// The control keeps its text (bytes in the code page) and a selection, and
// answers the EM_ messages. It edits as the system's edit did: arrows, Home,
// End (with Shift to select, Ctrl by words or to the ends), Backspace and
// Delete, Ctrl+C/X/V/Z/A and Ctrl/Shift+Insert, Shift+Delete, the mouse
// (double click selects a word). Each change tells the parent EN_UPDATE, then
// EN_CHANGE; focus brings EN_SETFOCUS and EN_KILLFOCUS; a text cut at the
// limit brings EN_MAXTEXT. A read-only or disabled edit asks its parent for
// colours with WM_CTLCOLORSTATIC, others with WM_CTLCOLOREDIT.
//
// A multi-line edit breaks its lines at "\r\n" (as its text holds them) and,
// without ES_AUTOHSCROLL, wraps words at its width. As on the original, setting
// the text of a multi-line edit with WM_SETTEXT sends no EN_CHANGE.
//
//   CEdit name;
//   name.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, CRect(8, 8, 200, 30), this, 1201);
//   name.ModifyStyleEx(0, WS_EX_CLIENTEDGE);
//   name.LimitText(40);
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <memory>

constexpr DWORD ES_LEFT = 0x0000;
constexpr DWORD ES_CENTER = 0x0001;
constexpr DWORD ES_RIGHT = 0x0002;
constexpr DWORD ES_MULTILINE = 0x0004;
constexpr DWORD ES_UPPERCASE = 0x0008;
constexpr DWORD ES_LOWERCASE = 0x0010;
constexpr DWORD ES_PASSWORD = 0x0020;
constexpr DWORD ES_AUTOVSCROLL = 0x0040;
constexpr DWORD ES_AUTOHSCROLL = 0x0080;
constexpr DWORD ES_NOHIDESEL = 0x0100;
constexpr DWORD ES_OEMCONVERT = 0x0400;
constexpr DWORD ES_READONLY = 0x0800;
constexpr DWORD ES_WANTRETURN = 0x1000;
constexpr DWORD ES_NUMBER = 0x2000;

constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_GETRECT = 0x00B2;
constexpr UINT EM_LINESCROLL = 0x00B6;
constexpr UINT EM_SCROLLCARET = 0x00B7;
constexpr UINT EM_GETMODIFY = 0x00B8;
constexpr UINT EM_SETMODIFY = 0x00B9;
constexpr UINT EM_GETLINECOUNT = 0x00BA;
constexpr UINT EM_LINEINDEX = 0x00BB;
constexpr UINT EM_LINELENGTH = 0x00C1;
constexpr UINT EM_REPLACESEL = 0x00C2;
constexpr UINT EM_GETLINE = 0x00C4;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr UINT EM_SETLIMITTEXT = EM_LIMITTEXT;
constexpr UINT EM_CANUNDO = 0x00C6;
constexpr UINT EM_UNDO = 0x00C7;
constexpr UINT EM_LINEFROMCHAR = 0x00C9;
constexpr UINT EM_SETPASSWORDCHAR = 0x00CC;
constexpr UINT EM_EMPTYUNDOBUFFER = 0x00CD;
constexpr UINT EM_GETFIRSTVISIBLELINE = 0x00CE;
constexpr UINT EM_SETREADONLY = 0x00CF;
constexpr UINT EM_GETPASSWORDCHAR = 0x00D2;
constexpr UINT EM_GETLIMITTEXT = 0x00D5;

constexpr UINT WM_CUT = 0x0300;
constexpr UINT WM_COPY = 0x0301;
constexpr UINT WM_PASTE = 0x0302;
constexpr UINT WM_CLEAR = 0x0303;
constexpr UINT WM_UNDO = 0x0304;

constexpr UINT EN_SETFOCUS = 0x0100;
constexpr UINT EN_KILLFOCUS = 0x0200;
constexpr UINT EN_CHANGE = 0x0300;
constexpr UINT EN_UPDATE = 0x0400;
constexpr UINT EN_ERRSPACE = 0x0500;
constexpr UINT EN_MAXTEXT = 0x0501;
constexpr UINT EN_HSCROLL = 0x0601;
constexpr UINT EN_VSCROLL = 0x0602;

class VXBASE_UI_EXPORT CEdit : public CWnd {
public:
    CEdit();
    ~CEdit() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    // The selection as MAKELONG(start, end).
    DWORD GetSel() const;
    void GetSel(int& start, int& end) const;
    // Start -1 removes the selection; end -1 is the end of the text.
    void SetSel(int start, int end, BOOL noScroll = FALSE);
    void SetSel(DWORD selection, BOOL noScroll = FALSE);
    void ReplaceSel(LPCSTR text, BOOL canUndo = FALSE);
    // 0 lifts the limit.
    void LimitText(int max = 0);
    void SetLimitText(UINT max);
    UINT GetLimitText() const;
    BOOL GetModify() const;
    void SetModify(BOOL modified = TRUE);
    BOOL SetReadOnly(BOOL readOnly = TRUE);
    int GetLineCount() const;
    // The offset of the first character of `line` (-1: the caret's line);
    // -1 past the last line.
    int LineIndex(int line = -1) const;
    int LineLength(int charIndex = -1) const;
    int LineFromChar(int charIndex = -1) const;
    // Copies the line without a terminating zero; returns its length.
    int GetLine(int line, LPSTR buffer, int maxLength) const;
    int GetFirstVisibleLine() const;
    void LineScroll(int lines, int chars = 0);
    void SetPasswordChar(char ch);
    char GetPasswordChar() const;
    BOOL CanUndo() const;
    BOOL Undo();
    void EmptyUndoBuffer();
    void Clear();
    void Copy();
    void Cut();
    void Paste();

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
