// CMenu: the framework's menu object over a menu handle (ui/menus/winmenu.h).
//
//   CMenu menu;
//   menu.CreatePopupMenu();
//   menu.AppendMenu(MF_STRING, 101, "&Open");
//   menu.AppendMenu(MF_SEPARATOR);
//   menu.AppendMenu(MF_STRING | MF_GRAYED, 102, "&Save");
//   UINT id = menu.TrackPopupMenuEx(TPM_RETURNCMD, x, y, this, nullptr);
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"
#include "platform/windows/winuser.h"
#include "ui/menus/winmenu.h"
#include "vxbase_ui_export.h"

class CWnd;
class CBitmap;

class VXBASE_UI_EXPORT CMenu : public CObject {
public:
    CMenu();
    // Destroys the menu it holds, as the framework's did.
    ~CMenu() override;
    CMenu(const CMenu&) = delete;
    CMenu& operator=(const CMenu&) = delete;

    HMENU m_hMenu = nullptr;

    operator HMENU() const { return m_hMenu; }
    HMENU GetSafeHmenu() const { return m_hMenu; }
    BOOL CreateMenu();
    BOOL CreatePopupMenu();
    BOOL DestroyMenu();
    // An attached object is the menu's permanent object until it detaches
    // (FromHandlePermanent finds it); Attach fails for a menu that has one.
    BOOL Attach(HMENU menu);
    HMENU Detach();
    // The permanent object of the menu, else a temporary wrapper.
    static CMenu* FromHandle(HMENU menu);
    // The object the menu is attached to, or null.
    static CMenu* FromHandlePermanent(HMENU menu);

    BOOL AppendMenu(UINT flags, UINT_PTR idNewItem = 0, LPCSTR newItem = nullptr);
    BOOL InsertMenu(UINT position, UINT flags, UINT_PTR idNewItem = 0, LPCSTR newItem = nullptr);
    BOOL ModifyMenu(UINT position, UINT flags, UINT_PTR idNewItem = 0, LPCSTR newItem = nullptr);
    BOOL RemoveMenu(UINT position, UINT flags);
    BOOL DeleteMenu(UINT position, UINT flags);
    UINT GetMenuItemCount() const;
    UINT GetMenuItemID(int position) const;
    UINT GetMenuState(UINT id, UINT flags) const;
    int GetMenuString(UINT id, LPSTR text, int maxCount, UINT flags) const;
    int GetMenuString(UINT id, CString& text, UINT flags) const;
    CMenu* GetSubMenu(int position) const;
    UINT CheckMenuItem(UINT id, UINT check);
    UINT EnableMenuItem(UINT id, UINT enable);
    BOOL CheckMenuRadioItem(UINT first, UINT last, UINT check, UINT flags);
    BOOL SetDefaultItem(UINT item, BOOL byPosition = FALSE);
    UINT GetDefaultItem(UINT flags, BOOL byPosition = FALSE);
    BOOL GetMenuItemInfo(UINT item, LPMENUITEMINFO info, BOOL byPosition = FALSE);
    BOOL SetMenuItemInfo(UINT item, const MENUITEMINFOA* info, BOOL byPosition = FALSE);
    BOOL InsertMenuItem(UINT item, const MENUITEMINFOA* info, BOOL byPosition = FALSE);
    BOOL SetMenuItemBitmaps(UINT position, UINT flags, const CBitmap* unchecked, const CBitmap* checked);
    BOOL TrackPopupMenu(UINT flags, int x, int y, CWnd* owner, const RECT* rect = nullptr);
    BOOL TrackPopupMenuEx(UINT flags, int x, int y, CWnd* owner, LPTPMPARAMS params);
    BOOL LoadMenu(LPCSTR name);
    BOOL LoadMenu(UINT id);

    // Owner-drawn items call these (WM_DRAWITEM and WM_MEASUREITEM of ODT_MENU).
    virtual void DrawItem(LPDRAWITEMSTRUCT item);
    virtual void MeasureItem(LPMEASUREITEMSTRUCT item);
};
