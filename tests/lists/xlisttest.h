// Helpers of the cell list tests: a parent that writes what the list asks it
// to write and records every message, a list that counts the cells it paints,
// and a catcher of message boxes.
#pragma once

#include "uisupport/uitest.h"

#include "lists/kxlistctrl.h"
#include "platform/windows/messagebox.h"
#include "platform/windows/windows.h"
#include "ui/listviews/listviewtest.h"
#include "ui/windows/uiapp.h"

#include <string>
#include <utility>
#include <vector>

namespace vxtest {

struct ParentMessage {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

class ListParent : public CWnd {
public:
    BOOL Create(const CRect& r = CRect(0, 0, 460, 300))
    {
        return CreateEx("parent", "XListParent", WS_POPUP | WS_VISIBLE, r);
    }
    std::vector<ParentMessage> messages;
    // Every write the list asked for: row, column, text.
    struct Write {
        int row;
        int col;
        std::string text;
        KXListCtrl* list;
    };
    std::vector<Write> writes;
    bool writeBack = true;   // the parent writes as asked
    LRESULT canCopy = 1;     // the answer to WM_XLISTCTRL_CANCOPY
    XLISTCTRL_COMBOSELECTION lastCombo{};

    int Count(UINT message) const
    {
        int n = 0;
        for (const auto& m : messages)
            n += m.message == message;
        return n;
    }
    const ParentMessage* Last(UINT message) const
    {
        for (auto it = messages.rbegin(); it != messages.rend(); ++it) {
            if (it->message == message)
                return &*it;
        }
        return nullptr;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        const bool ours = (message >= WM_XLISTCTRL_SETTEXT && message <= WM_XLISTCTRL_SELCHANGED) ||
                          message == WM_XLISTCTRL_CHECKBOX_CLICKED || message == WM_XLISTCTRL_EDIT_END ||
                          message == WM_XLISTCTRL_COMBO_SELECTION;
        if (!ours)
            return CWnd::WindowProc(message, wParam, lParam);
        messages.push_back({message, wParam, lParam});
        if (message == WM_XLISTCTRL_SETTEXT) {
            const auto* change = reinterpret_cast<const XLISTCTRL_CHANGE*>(wParam);
            const char* text = reinterpret_cast<const char*>(lParam);
            writes.push_back({change->nRow, change->nCol, text ? text : "", change->pList});
            if (writeBack)
                change->pList->SetItemText(change->nRow, change->nCol, text);
            return 0;
        }
        if (message == WM_XLISTCTRL_CANCOPY)
            return canCopy;
        if (message == WM_XLISTCTRL_COMBO_SELECTION)
            lastCombo = *reinterpret_cast<const XLISTCTRL_COMBOSELECTION*>(lParam);
        return 0;
    }
};

// Counts the cells the list is asked to paint.
class CountingList : public KXListCtrl {
public:
    std::vector<std::pair<int, int>> cells;
    std::vector<std::pair<int, int>> Painted()
    {
        auto out = cells;
        std::sort(out.begin(), out.end());
        cells.clear();
        return out;
    }

protected:
    BOOL OnCustomDraw(NMHDR* header, LRESULT* result) override
    {
        const auto* cd = reinterpret_cast<const NMLVCUSTOMDRAW*>(header);
        if (cd->nmcd.dwDrawStage == (CDDS_ITEMPREPAINT | CDDS_SUBITEM))
            cells.emplace_back(static_cast<int>(cd->nmcd.dwItemSpec), cd->iSubItem);
        return KXListCtrl::OnCustomDraw(header, result);
    }
};

// Records message boxes and answers them with their default button.
class BoxCatcher {
public:
    BoxCatcher()
    {
        m_old = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            texts.push_back(r.text);
            types.push_back(r.type);
            return vx::DefaultButtonOf(r.type);
        });
    }
    ~BoxCatcher() { vx::SetMessageBoxHandler(m_old); }
    std::vector<std::string> texts;
    std::vector<UINT> types;

private:
    vx::MessageBoxHandler m_old;
};

// The text of a string resource.
inline std::string StringOf(UINT id)
{
    CString s;
    s.LoadString(id);
    return std::string(static_cast<const char*>(s));
}

// A list of `rows` rows and `cols` columns with texts "r,c", in cell mode.
inline void FillGrid(KXListCtrl& list, int rows, int cols)
{
    for (int c = 0; c < cols; ++c) {
        const std::string name = "C" + std::to_string(c);
        list.InsertColumn(c, name.c_str(), LVCFMT_LEFT, 60);
    }
    for (int r = 0; r < rows; ++r) {
        list.InsertItem(r, (std::to_string(r) + ",0").c_str());
        for (int c = 1; c < cols; ++c)
            list.SetItemText(r, c, (std::to_string(r) + "," + std::to_string(c)).c_str());
    }
}

inline std::string Text(KXListCtrl& list, int row, int col)
{
    return std::string(static_cast<const char*>(list.GetItemText(row, col)));
}

} // namespace vxtest
