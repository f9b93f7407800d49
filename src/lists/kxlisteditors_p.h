// Internal to KXListCtrl: the windows of its in-place editors. Do not include
// directly.
//
// The text editor and the combo tell the list how they end (Escape, or a
// commit by Enter, a choice or the loss of the focus) by registered
// messages; the input box hands every key to the list first (0x402) and
// takes it only if the list answers other than 0.
#pragma once

#include "lists/xlistctrldata.h"
#include "platform/windows/ccombobox.h"
#include "ui/controls/cedit.h"

#include <vector>

namespace vx::lists {

class TextEditor final : public CEdit {
public:
    explicit TextEditor(CWnd& list) : m_list(list) {}

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    CWnd& m_list;
    bool m_swallowChar = false;
};

// The combo of class "SuperComboBox": a drop-down list over a cell.
class SuperComboBox final : public CComboBox {
public:
    explicit SuperComboBox(CWnd& list) : m_list(list) {}
    // The items' second and third values, by index.
    std::vector<ComboItem> values;
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Tell(UINT message);
    CWnd& m_list;
    bool m_told = false;
};

class InputBox final : public CEdit {
public:
    explicit InputBox(CWnd& list) : m_list(list) {}
    bool deleted = false; // Delete was pressed
    bool open = true;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    CWnd& m_list;
    bool m_swallowChar = false;
};

} // namespace vx::lists
