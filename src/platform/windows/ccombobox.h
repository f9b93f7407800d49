// CComboBox: the framework's combo box, as the list helpers and the window
// classes address it: by CB_... messages to its window handle.
//
// The core class keeps its items in memory and answers the messages
// itself, so a combo works without a display (in a console host, in tests).
// How it looks and takes input (the field, the drop-down list, the edit of
// CBS_DROPDOWN) is a vx::ComboBoxView that vxbase-ui installs; the view
// hears every change of the model and answers what the model does not.
//
//   CComboBox combo;
//   combo.CreateEx("", "ComboBox", WS_CHILD);
//   int i = combo.AddString("Relay");
//   combo.SetItemData(i, 42);
#pragma once

#include "platform/windows/cwnd.h"
#include "vxbase_export.h"

#include <memory>
#include <string>
#include <vector>

constexpr DWORD CBS_SIMPLE = 0x0001;
constexpr DWORD CBS_DROPDOWN = 0x0002;
constexpr DWORD CBS_DROPDOWNLIST = 0x0003;
constexpr DWORD CBS_OWNERDRAWFIXED = 0x0010;
constexpr DWORD CBS_OWNERDRAWVARIABLE = 0x0020;
constexpr DWORD CBS_AUTOHSCROLL = 0x0040;
constexpr DWORD CBS_SORT = 0x0100;
constexpr DWORD CBS_HASSTRINGS = 0x0200;
constexpr DWORD CBS_NOINTEGRALHEIGHT = 0x0400;
constexpr DWORD CBS_DISABLENOSCROLL = 0x0800;
constexpr DWORD CBS_UPPERCASE = 0x2000;
constexpr DWORD CBS_LOWERCASE = 0x4000;

constexpr UINT CB_GETEDITSEL = 0x0140;
constexpr UINT CB_LIMITTEXT = 0x0141;
constexpr UINT CB_SETEDITSEL = 0x0142;
constexpr UINT CB_SHOWDROPDOWN = 0x014F;
constexpr UINT CB_GETDROPPEDCONTROLRECT = 0x0152;
constexpr UINT CB_SETITEMHEIGHT = 0x0153;
constexpr UINT CB_GETITEMHEIGHT = 0x0154;
constexpr UINT CB_GETDROPPEDSTATE = 0x0157;
constexpr UINT CB_GETDROPPEDWIDTH = 0x015F;
constexpr UINT CB_SETDROPPEDWIDTH = 0x0160;

constexpr UINT CBN_ERRSPACE = static_cast<UINT>(-1);
constexpr UINT CBN_SELCHANGE = 1;
constexpr UINT CBN_DBLCLK = 2;
constexpr UINT CBN_SETFOCUS = 3;
constexpr UINT CBN_KILLFOCUS = 4;
constexpr UINT CBN_EDITCHANGE = 5;
constexpr UINT CBN_EDITUPDATE = 6;
constexpr UINT CBN_DROPDOWN = 7;
constexpr UINT CBN_CLOSEUP = 8;
constexpr UINT CBN_SELENDOK = 9;
constexpr UINT CBN_SELENDCANCEL = 10;

class CComboBox;

namespace vx {

// How a combo box shows itself and takes input.
class VXBASE_EXPORT ComboBoxView {
public:
    virtual ~ComboBoxView();
    // The model answered `message` (a CB_ message that it keeps).
    virtual void ModelChanged(CComboBox& combo, UINT message) = 0;
    // Every message the model does not keep, in the place of DefWindowProc.
    virtual LRESULT DefProc(CComboBox& combo, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // Input for the combo box or a window inside it, before the window and
    // the dialog see it; true takes it.
    virtual bool PreTranslate(CComboBox& combo, MSG* msg) = 0;
};

using ComboBoxViewFactory = std::unique_ptr<ComboBoxView> (*)(CComboBox& combo);
// The view of combo boxes made from now on; null for none.
VXBASE_EXPORT void SetComboBoxViewFactory(ComboBoxViewFactory factory);

} // namespace vx

class VXBASE_EXPORT CComboBox : public CWnd {
public:
    CComboBox();
    ~CComboBox() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);

    int GetCount() const;
    int GetCurSel() const;
    // CB_ERR if `index` is out of range.
    int SetCurSel(int index);
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
    // Returns the index of the new item (at the end: no sorted style here).
    int AddString(const char* text);
    int InsertString(int index, const char* text);
    // Returns the count left, or CB_ERR.
    int DeleteString(UINT index);
    void ResetContent();
    // The text of item `index`; "" if out of range.
    void GetLBText(int index, CString& text) const;
    int GetLBTextLen(int index) const;
    // The first item from after `startAfter` (wrapping) that starts with, or
    // equals, the text without regard to case; CB_ERR.
    int FindString(int startAfter, LPCSTR text) const;
    int FindStringExact(int startAfter, LPCSTR text) const;
    // Selects what FindString finds; CB_ERR.
    int SelectString(int startAfter, LPCSTR text);
    void ShowDropDown(BOOL show = TRUE);
    BOOL GetDroppedState() const;
    BOOL LimitText(int max);
    DWORD GetEditSel() const;
    BOOL SetEditSel(int start, int end);
    int GetItemHeight(int index) const;
    int SetItemHeight(int index, UINT height);

    BOOL PreTranslateMessage(MSG* msg) override;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Item {
        std::string text;
        DWORD_PTR data = 0;
    };
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const;

    LRESULT Model(UINT message, WPARAM wParam, LPARAM lParam, bool& handled);
    int Find(int startAfter, const char* text, bool exact) const;

    std::vector<Item> m_items;
    int m_selection = -1;
    std::unique_ptr<vx::ComboBoxView> m_view;
};
