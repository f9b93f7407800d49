// Shared pieces of the owner-drawn menu tests: an owner window that routes
// the menu messages to CNewMenu as the frame classes do, paints itself in
// one colour (so that a menu's shadow has something to darken) and drives a
// tracked menu one step per idle moment; and drawing one item on a canvas.
#pragma once

#include "uisupport/uitest.h"

#include "menus/cmenuwindowhook.h"
#include "menus/cnewmenu.h"
#include "menus/menucolors.h"
#include "menus/menutheme.h"

#include <deque>
#include <functional>
#include <vector>

namespace newmenutest {

constexpr COLORREF kOwnerColor = RGB(100, 150, 200);

class Owner : public CWnd {
public:
    Owner() { CreateEx("owner", "NewMenuOwner", WS_POPUP | WS_VISIBLE, CRect(100, 100, 600, 500)); }
    ~Owner() override { DestroyWindow(); }

    std::deque<std::function<bool()>> steps;
    std::vector<UINT> messages;
    std::vector<UINT> drawStates;

    void Key(UINT key) { PostMessage(WM_KEYDOWN, key, 1); }
    void Char(char c) { PostMessage(WM_CHAR, static_cast<unsigned char>(c), 1); }
    void MouseAt(UINT message, CPoint screen)
    {
        ScreenToClient(&screen);
        PostMessage(message, message == WM_LBUTTONDOWN ? MK_LBUTTON : 0,
                    MAKELPARAM(static_cast<WORD>(screen.x), static_cast<WORD>(screen.y)));
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        messages.push_back(message);
        switch (message) {
        case WM_INITMENUPOPUP:
            CNewMenu::OnInitMenuPopup(m_hWnd, CMenu::FromHandle(reinterpret_cast<HMENU>(wParam)), LOWORD(lParam),
                                      HIWORD(lParam));
            return 0;
        case WM_MEASUREITEM: {
            MSG msg{m_hWnd, message, wParam, lParam, 0, {}};
            return CNewMenu::OnMeasureItem(&msg);
        }
        case WM_DRAWITEM: {
            auto* dis = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam);
            drawStates.push_back(dis->itemState);
            if (CMenu* menu = CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(dis->hwndItem)))
                menu->DrawItem(dis);
            return TRUE;
        }
        case WM_MENUCHAR:
            return CNewMenu::FindKeyboardShortcut(LOWORD(wParam), HIWORD(wParam),
                                                  CMenu::FromHandle(reinterpret_cast<HMENU>(lParam)));
        case WM_ENTERIDLE:
            if (steps.empty()) {
                EndMenu();
            } else {
                if (steps.front()())
                    steps.pop_front();
                PostMessage(WM_NULL);
            }
            return 0;
        case WM_PAINT: {
            CPaintDC dc(this);
            CRect r;
            GetClientRect(&r);
            dc.FillSolidRect(&r, kOwnerColor);
            return 0;
        }
        default:
            return CWnd::WindowProc(message, wParam, lParam);
        }
    }
};

inline std::function<bool()> Once(std::function<void()> fn)
{
    return [fn] {
        fn();
        return true;
    };
}

// Draws item `position` of the menu as the menu window would, on a canvas
// of the item's size; `state` holds the ODS_ bits.
inline QImage DrawOne(CNewMenu& menu, int position, UINT state, CSize size)
{
    vxtest::Canvas canvas(size.cx, size.cy, RGB(255, 0, 255));
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_DATA | MIIM_SUBMENU;
    GetMenuItemInfoA(menu.m_hMenu, static_cast<UINT>(position), TRUE, &info);
    DRAWITEMSTRUCT dis{};
    dis.CtlType = ODT_MENU;
    dis.itemID = info.hSubMenu ? static_cast<UINT>(reinterpret_cast<UINT_PTR>(info.hSubMenu)) : info.wID;
    dis.itemAction = ODA_DRAWENTIRE;
    dis.itemState = state;
    dis.hwndItem = reinterpret_cast<HWND>(menu.m_hMenu);
    dis.hDC = canvas.hdc();
    dis.rcItem = RECT{0, 0, size.cx, size.cy};
    dis.itemData = info.dwItemData;
    menu.DrawItem(&dis);
    return canvas.Image();
}

// What the menu measures for item `position`.
inline CSize MeasureOne(CNewMenu& menu, int position)
{
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_DATA | MIIM_SUBMENU;
    GetMenuItemInfoA(menu.m_hMenu, static_cast<UINT>(position), TRUE, &info);
    MEASUREITEMSTRUCT mis{};
    mis.CtlType = ODT_MENU;
    mis.itemID = info.wID;
    mis.itemData = info.dwItemData;
    menu.MeasureItem(&mis);
    return CSize(static_cast<int>(mis.itemWidth), static_cast<int>(mis.itemHeight));
}

// Keeps the draw mode of a test from leaking into the next.
class DrawMode {
public:
    explicit DrawMode(UINT mode) : m_old(CNewMenu::SetMenuDrawMode(mode)) {}
    ~DrawMode() { CNewMenu::SetMenuDrawMode(m_old); }

private:
    UINT m_old;
};

} // namespace newmenutest
