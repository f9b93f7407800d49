#include "menus/cnewdialog.h"

#include "menus/menubarcolor.h"
#include "ui/bars/ccmdui.h"
#include "ui/menus/winmenu.h"

namespace {

// The state of one menu item, by position.
class MenuItemCmdUI : public CCmdUI {
public:
    HMENU m_menu = nullptr;
    void Enable(BOOL on) override
    {
        m_bEnableChanged = TRUE;
        EnableMenuItem(m_menu, m_nIndex, MF_BYPOSITION | (on ? MF_ENABLED : MF_GRAYED));
    }
    void SetCheck(int check) override
    {
        CheckMenuItem(m_menu, m_nIndex, MF_BYPOSITION | (check ? MF_CHECKED : MF_UNCHECKED));
    }
};

} // namespace

CNewDialog::CNewDialog() = default;

CNewDialog::CNewDialog(UINT templateId, CWnd* parent) : CVxDialog(templateId, parent) {}

CNewDialog::~CNewDialog()
{
    // The window's menus go with the window, not with these objects.
    m_SystemNewMenu.Detach();
}

BOOL CNewDialog::OnInitDialog()
{
    const BOOL result = CVxDialog::OnInitDialog();
    if (!CNewMenu::m_Enable)
        return result;
    HMENU system = ::GetSystemMenu(m_hWnd, FALSE);
    HMENU old = m_SystemNewMenu.Detach();
    if (old && old != system && IsMenu(old))
        DestroyMenu(old);
    if (system)
        m_SystemNewMenu.Attach(system);
    // A menu held before is let go, not destroyed: the original handed it to
    // DeleteObject, which does nothing with a menu.
    if (m_DefaultNewMenu.m_hMenu)
        m_DefaultNewMenu.Detach();
    if (HMENU menu = ::GetMenu(m_hWnd)) {
        m_DefaultNewMenu.LoadMenu(menu);
        if (IsMenu(m_DefaultNewMenu.m_hMenu))
            UpdateMenuBarColor(m_DefaultNewMenu.m_hMenu);
    }
    return result;
}

void CNewDialog::OnInitMenuPopup(CMenu* popup, UINT, BOOL sysMenu)
{
    if (sysMenu || !popup || !popup->m_hMenu)
        return;
    MenuItemCmdUI state;
    state.m_menu = popup->m_hMenu;
    // The count is read again each turn: a handler may remove items.
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(popup->m_hMenu)); ++i) {
        UINT id = GetMenuItemID(popup->m_hMenu, static_cast<int>(i));
        if (id == 0)
            continue;
        if (id == static_cast<UINT>(-1)) {
            // A sub-menu stands for its first item.
            HMENU sub = GetSubMenu(popup->m_hMenu, static_cast<int>(i));
            if (!sub || GetMenuItemCount(sub) == 0)
                continue;
            id = GetMenuItemID(sub, 0);
            if (id == 0 || id == static_cast<UINT>(-1))
                continue;
        }
        const int before = GetMenuItemCount(popup->m_hMenu);
        state.m_nID = id;
        state.m_nIndex = i;
        state.m_bEnableChanged = FALSE;
        state.m_bContinueRouting = FALSE;
        state.DoUpdate(this, TRUE);
        // Items removed before this one: step back by as many.
        const int after = GetMenuItemCount(popup->m_hMenu);
        if (after < before)
            i -= std::min<UINT>(i + 1, static_cast<UINT>(before - after));
    }
}

LRESULT CNewDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITMENUPOPUP) {
        CMenu* popup = CMenu::FromHandle(reinterpret_cast<HMENU>(wParam));
        OnInitMenuPopup(popup, LOWORD(lParam), HIWORD(lParam));
        const LRESULT result = CVxDialog::WindowProc(message, wParam, lParam);
        CNewMenu::OnInitMenuPopup(m_hWnd, popup, LOWORD(lParam), HIWORD(lParam));
        return result;
    }
    return CVxDialog::WindowProc(message, wParam, lParam);
}
