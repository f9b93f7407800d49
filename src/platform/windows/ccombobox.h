// CComboBox: the framework's combo box, as the list helpers and the window
// classes address it: by CB_... messages to its window handle.
//
// The core class keeps its items in memory and answers the messages
// itself, so a combo works without a display (in a console host, in tests);
// a window class that shows it on screen follows the same model.
//
//   CComboBox combo;
//   combo.CreateEx("", "ComboBox", WS_CHILD);
//   int i = combo.AddString("Relay");
//   combo.SetItemData(i, 42);
#pragma once

#include "platform/windows/cwnd.h"
#include "vxbase_export.h"

#include <string>
#include <vector>

class VXBASE_EXPORT CComboBox : public CWnd {
public:
    CComboBox();
    ~CComboBox() override;

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

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Item {
        std::string text;
        DWORD_PTR data = 0;
    };
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const;

    std::vector<Item> m_items;
    int m_selection = -1;
};
