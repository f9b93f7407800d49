// The frame of the MDI tests: an MDI frame with a menu whose "&Okno" popup
// is the Window menu, its client, and readers of the Window menu's list.
#pragma once

#include "uisupport/uitest.h"

#include "ui/mdi/cmdiclientwnd.h"
#include "ui/menus/winmenu.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace mditest {

struct Mdi {
    CMDIFrameWnd frame;
    HMENU menu = nullptr;
    HMENU windowMenu = nullptr;

    // The frame, shown and active, with "&Okno" holding `commands` after
    // the popups of `before` (each an empty popup of that title).
    void Make(std::initializer_list<std::pair<UINT, const char*>> commands,
              std::initializer_list<const char*> before = {})
    {
        ASSERT_TRUE(frame.CreateEx("Plan", "VxFrame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(100, 100, 740, 580)));
        menu = CreateMenu();
        windowMenu = CreatePopupMenu();
        for (const auto& [id, text] : commands)
            AppendMenuA(windowMenu, MF_STRING, id, text);
        for (const char* title : before)
            AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(CreatePopupMenu()), title);
        AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(windowMenu), "&Okno");
        ::SetMenu(frame.m_hWnd, menu);
        ASSERT_TRUE(frame.CreateClient(windowMenu));
        frame.SetActiveWindow();
    }
    CMDIClientWnd& Client() { return *CMDIClientWnd::Of(&frame); }
    CRect ClientRect()
    {
        CRect r;
        Client().GetClientRect(&r);
        return r;
    }
    // The texts of the Window menu's entries after its commands; with
    // `markChecked` the checked one starts with "*".
    std::vector<std::string> Entries(bool markChecked = false)
    {
        std::vector<std::string> out;
        for (int i = 0; i < GetMenuItemCount(windowMenu); ++i) {
            if (GetMenuItemID(windowMenu, i) < AFX_IDM_FIRST_MDICHILD)
                continue;
            char text[80] = {};
            GetMenuStringA(windowMenu, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
            const bool checked = GetMenuState(windowMenu, static_cast<UINT>(i), MF_BYPOSITION) & MF_CHECKED;
            out.push_back(std::string(markChecked && checked ? "*" : "") + text);
        }
        return out;
    }
};

// A child's window rectangle in its parent's client coordinates.
inline CRect InClient(const CWnd& child)
{
    CRect r;
    child.GetWindowRect(&r);
    child.GetParent()->ScreenToClient(&r);
    return r;
}

} // namespace mditest
