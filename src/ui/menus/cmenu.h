// Menus as a plain model: items with ids, texts, states, submenus, check
// bitmaps and item data, the free menu functions of the desktop API and the
// framework's CMenu over them. TrackPopupMenuEx shows a popup menu through a
// presenter: by default a QMenu built from the model; owner-drawn menus and
// tests install their own.
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
#include "vxbase_ui_export.h"

#include <functional>

class CWnd;
class CBitmap;

constexpr UINT MF_INSERT = 0x0000;
constexpr UINT MF_CHANGE = 0x0080;
constexpr UINT MF_APPEND = 0x0100;
constexpr UINT MF_DELETE = 0x0200;
constexpr UINT MF_REMOVE = 0x1000;
constexpr UINT MF_BYCOMMAND = 0x0000;
constexpr UINT MF_BYPOSITION = 0x0400;
constexpr UINT MF_SEPARATOR = 0x0800;
constexpr UINT MF_ENABLED = 0x0000;
constexpr UINT MF_GRAYED = 0x0001;
constexpr UINT MF_DISABLED = 0x0002;
constexpr UINT MF_UNCHECKED = 0x0000;
constexpr UINT MF_CHECKED = 0x0008;
constexpr UINT MF_USECHECKBITMAPS = 0x0200;
constexpr UINT MF_STRING = 0x0000;
constexpr UINT MF_BITMAP = 0x0004;
constexpr UINT MF_OWNERDRAW = 0x0100;
constexpr UINT MF_POPUP = 0x0010;
constexpr UINT MF_MENUBARBREAK = 0x0020;
constexpr UINT MF_MENUBREAK = 0x0040;
constexpr UINT MF_UNHILITE = 0x0000;
constexpr UINT MF_HILITE = 0x0080;
constexpr UINT MF_DEFAULT = 0x1000;
constexpr UINT MF_SYSMENU = 0x2000;
constexpr UINT MF_HELP = 0x4000;
constexpr UINT MF_RIGHTJUSTIFY = 0x4000;
constexpr UINT MF_MOUSESELECT = 0x8000;

constexpr UINT MFT_STRING = MF_STRING;
constexpr UINT MFT_BITMAP = MF_BITMAP;
constexpr UINT MFT_MENUBARBREAK = MF_MENUBARBREAK;
constexpr UINT MFT_MENUBREAK = MF_MENUBREAK;
constexpr UINT MFT_OWNERDRAW = MF_OWNERDRAW;
constexpr UINT MFT_RADIOCHECK = 0x0200;
constexpr UINT MFT_SEPARATOR = MF_SEPARATOR;
constexpr UINT MFT_RIGHTORDER = 0x2000;
constexpr UINT MFT_RIGHTJUSTIFY = MF_RIGHTJUSTIFY;
constexpr UINT MFS_GRAYED = 0x0003;
constexpr UINT MFS_DISABLED = MFS_GRAYED;
constexpr UINT MFS_CHECKED = MF_CHECKED;
constexpr UINT MFS_HILITE = MF_HILITE;
constexpr UINT MFS_ENABLED = MF_ENABLED;
constexpr UINT MFS_UNCHECKED = MF_UNCHECKED;
constexpr UINT MFS_UNHILITE = MF_UNHILITE;
constexpr UINT MFS_DEFAULT = MF_DEFAULT;

constexpr UINT MIIM_STATE = 0x0001;
constexpr UINT MIIM_ID = 0x0002;
constexpr UINT MIIM_SUBMENU = 0x0004;
constexpr UINT MIIM_CHECKMARKS = 0x0008;
constexpr UINT MIIM_TYPE = 0x0010;
constexpr UINT MIIM_DATA = 0x0020;
constexpr UINT MIIM_STRING = 0x0040;
constexpr UINT MIIM_BITMAP = 0x0080;
constexpr UINT MIIM_FTYPE = 0x0100;

struct MENUITEMINFOA {
    UINT cbSize;
    UINT fMask;
    UINT fType;
    UINT fState;
    UINT wID;
    HMENU hSubMenu;
    HBITMAP hbmpChecked;
    HBITMAP hbmpUnchecked;
    ULONG_PTR dwItemData;
    LPSTR dwTypeData;
    UINT cch;
    HBITMAP hbmpItem;
};
using MENUITEMINFO = MENUITEMINFOA;
using LPMENUITEMINFO = MENUITEMINFOA*;

constexpr DWORD MIM_MAXHEIGHT = 0x00000001;
constexpr DWORD MIM_BACKGROUND = 0x00000002;
constexpr DWORD MIM_HELPID = 0x00000004;
constexpr DWORD MIM_MENUDATA = 0x00000008;
constexpr DWORD MIM_STYLE = 0x00000010;
constexpr DWORD MIM_APPLYTOSUBMENUS = 0x80000000;

struct MENUINFO {
    DWORD cbSize;
    DWORD fMask;
    DWORD dwStyle;
    UINT cyMax;
    HBRUSH hbrBack;
    DWORD dwContextHelpID;
    ULONG_PTR dwMenuData;
};
using LPMENUINFO = MENUINFO*;
using LPCMENUINFO = const MENUINFO*;

constexpr UINT TPM_LEFTBUTTON = 0x0000;
constexpr UINT TPM_RIGHTBUTTON = 0x0002;
constexpr UINT TPM_LEFTALIGN = 0x0000;
constexpr UINT TPM_CENTERALIGN = 0x0004;
constexpr UINT TPM_RIGHTALIGN = 0x0008;
constexpr UINT TPM_TOPALIGN = 0x0000;
constexpr UINT TPM_VCENTERALIGN = 0x0010;
constexpr UINT TPM_BOTTOMALIGN = 0x0020;
constexpr UINT TPM_HORIZONTAL = 0x0000;
constexpr UINT TPM_VERTICAL = 0x0040;
constexpr UINT TPM_NONOTIFY = 0x0080;
constexpr UINT TPM_RETURNCMD = 0x0100;

struct TPMPARAMS {
    UINT cbSize;
    RECT rcExclude;
};
using LPTPMPARAMS = TPMPARAMS*;

VXBASE_UI_EXPORT HMENU CreateMenu();
VXBASE_UI_EXPORT HMENU CreatePopupMenu();
// Destroys the menu and every submenu in it.
VXBASE_UI_EXPORT BOOL DestroyMenu(HMENU menu);
VXBASE_UI_EXPORT BOOL IsMenu(HMENU menu);
// MF_POPUP items take the submenu's handle as `idNewItem`; MF_BITMAP items a
// bitmap handle as `newItem`, MF_OWNERDRAW items their item data.
VXBASE_UI_EXPORT BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR idNewItem, LPCSTR newItem);
VXBASE_UI_EXPORT BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem);
VXBASE_UI_EXPORT BOOL ModifyMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem);
// Takes an item out; RemoveMenu keeps its submenu, DeleteMenu destroys it.
VXBASE_UI_EXPORT BOOL RemoveMenu(HMENU menu, UINT position, UINT flags);
VXBASE_UI_EXPORT BOOL DeleteMenu(HMENU menu, UINT position, UINT flags);
// -1 for a bad handle.
VXBASE_UI_EXPORT int GetMenuItemCount(HMENU menu);
// The item's command id; -1 (as UINT) for a submenu, 0 for a separator.
VXBASE_UI_EXPORT UINT GetMenuItemID(HMENU menu, int position);
// MF_ state and type bits (a submenu's item count in the high byte), or -1.
VXBASE_UI_EXPORT UINT GetMenuState(HMENU menu, UINT id, UINT flags);
VXBASE_UI_EXPORT int GetMenuStringA(HMENU menu, UINT id, LPSTR text, int maxCount, UINT flags);
VXBASE_UI_EXPORT HMENU GetSubMenu(HMENU menu, int position);
// Return the previous state, or -1 for an unknown item.
VXBASE_UI_EXPORT DWORD CheckMenuItem(HMENU menu, UINT id, UINT check);
VXBASE_UI_EXPORT BOOL EnableMenuItem(HMENU menu, UINT id, UINT enable);
VXBASE_UI_EXPORT BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT check, UINT flags);
VXBASE_UI_EXPORT BOOL SetMenuDefaultItem(HMENU menu, UINT item, UINT byPosition);
// The default item's id (or position), -1 (as UINT) without one.
VXBASE_UI_EXPORT UINT GetMenuDefaultItem(HMENU menu, UINT byPosition, UINT flags);
VXBASE_UI_EXPORT BOOL GetMenuItemInfoA(HMENU menu, UINT item, BOOL byPosition, LPMENUITEMINFO info);
VXBASE_UI_EXPORT BOOL SetMenuItemInfoA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info);
VXBASE_UI_EXPORT BOOL InsertMenuItemA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info);
VXBASE_UI_EXPORT BOOL SetMenuItemBitmaps(HMENU menu, UINT position, UINT flags, HBITMAP unchecked, HBITMAP checked);
VXBASE_UI_EXPORT BOOL GetMenuInfo(HMENU menu, LPMENUINFO info);
VXBASE_UI_EXPORT BOOL SetMenuInfo(HMENU menu, LPCMENUINFO info);
// Shows the popup menu at a screen point and waits for the choice. Unless
// TPM_NONOTIFY, the owner gets WM_INITMENUPOPUP first. With TPM_RETURNCMD
// the chosen id (0 for none) is returned; otherwise it goes to the owner as
// WM_COMMAND (posted) and the answer is TRUE.
VXBASE_UI_EXPORT BOOL TrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND owner, LPTPMPARAMS params);
VXBASE_UI_EXPORT BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner,
                                     const RECT* rect);

namespace vx {

struct PopupMenuRequest {
    HMENU menu = nullptr;
    UINT flags = 0;
    POINT at{}; // screen coordinates
    HWND owner = nullptr;
    RECT exclude{}; // empty when none was given
};
// Shows a popup menu and answers the chosen command id, or 0.
using PopupMenuPresenter = std::function<UINT(const PopupMenuRequest&)>;
// Installs the presenter of TrackPopupMenuEx (null: the QMenu one) and
// returns the one it replaces.
VXBASE_UI_EXPORT PopupMenuPresenter SetPopupMenuPresenter(PopupMenuPresenter presenter);
// The default presenter: a QMenu with the model's texts, states and submenus.
VXBASE_UI_EXPORT UINT PresentWithQMenu(const PopupMenuRequest& request);

} // namespace vx

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
    BOOL Attach(HMENU menu);
    HMENU Detach();
    static CMenu* FromHandle(HMENU menu);

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

    // Owner-drawn items call these (WM_DRAWITEM and WM_MEASUREITEM of ODT_MENU).
    virtual void DrawItem(LPDRAWITEMSTRUCT item);
    virtual void MeasureItem(LPMEASUREITEMSTRUCT item);
};
