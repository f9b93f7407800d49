// Shared pieces of the menu tests: an owner window that records what the
// menu tells it and drives a tracked menu from WM_ENTERIDLE, one step per
// idle moment, as a user at the keyboard or mouse would.
#pragma once

#include "uisupport/uitest.h"

#include "platform/windows/hooks.h"
#include "ui/menus/cmenu.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace menutest {

class Owner : public CWnd {
public:
    Owner()
    {
        CreateEx("owner", "MenuOwner", WS_POPUP | WS_VISIBLE, CRect(100, 100, 500, 400));
    }
    ~Owner() override { DestroyWindow(); }

    // Steps run one per WM_ENTERIDLE; a step answering false runs again at
    // the next idle moment. With no step left the menu is ended, so that a
    // test cannot hang.
    std::deque<std::function<bool()>> steps;
    std::vector<UINT> messages;
    std::vector<MSG> selects; // WM_MENUSELECT
    std::vector<WPARAM> commands;
    std::vector<UINT> drawStates; // itemState of each WM_DRAWITEM
    std::vector<UINT> measured;   // itemID of each WM_MEASUREITEM
    LRESULT menuCharAnswer = 0;
    int idles = 0;

    // Input as the user's: posted to the owner (client coordinates for the mouse).
    void Key(UINT key) { PostMessage(WM_KEYDOWN, key, 1); }
    void Char(char c) { PostMessage(WM_CHAR, static_cast<unsigned char>(c), 1); }
    void MouseAt(UINT message, CPoint screen)
    {
        ScreenToClient(&screen);
        PostMessage(message, message == WM_LBUTTONDOWN ? MK_LBUTTON : 0,
                    MAKELPARAM(static_cast<WORD>(screen.x), static_cast<WORD>(screen.y)));
    }
    // The screen rectangle of an item of an open menu.
    CRect ItemRect(HMENU menu, int position) const
    {
        RECT r{};
        GetMenuItemRect(m_hWnd, menu, static_cast<UINT>(position), &r);
        return CRect(r);
    }
    int Count(UINT message) const
    {
        int n = 0;
        for (UINT m : messages)
            n += m == message;
        return n;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        messages.push_back(message);
        switch (message) {
        case WM_ENTERIDLE:
            ++idles;
            if (steps.empty()) {
                EndMenu();
            } else {
                if (steps.front()())
                    steps.pop_front();
                // The menu tells of idleness once until something happens:
                // a message of no meaning makes the next step's moment.
                PostMessage(WM_NULL);
            }
            return 0;
        case WM_MENUSELECT:
            selects.push_back(MSG{m_hWnd, message, wParam, lParam, 0, {}});
            return 0;
        case WM_MENUCHAR:
            return menuCharAnswer;
        case WM_COMMAND:
            commands.push_back(wParam);
            return 0;
        case WM_MEASUREITEM: {
            auto* mis = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
            measured.push_back(mis->itemID);
            mis->itemWidth = 60;
            mis->itemHeight = 20;
            return TRUE;
        }
        case WM_DRAWITEM: {
            auto* dis = reinterpret_cast<DRAWITEMSTRUCT*>(lParam);
            drawStates.push_back(dis->itemState);
            HBRUSH b = CreateSolidBrush((dis->itemState & ODS_SELECTED) ? RGB(255, 0, 0) : RGB(0, 0, 255));
            FillRect(dis->hDC, &dis->rcItem, b);
            DeleteObject(b);
            return TRUE;
        }
        default:
            return CWnd::WindowProc(message, wParam, lParam);
        }
    }
};

// Runs `fn` once when the menu is idle.
inline std::function<bool()> Once(std::function<void()> fn)
{
    return [fn] {
        fn();
        return true;
    };
}

} // namespace menutest
