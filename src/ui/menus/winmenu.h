// Menus of the desktop API: menu handles and their items, the functions
// that build and read them, and the popup menus that TrackPopupMenuEx opens
// (tracked in a modal loop, see TrackPopupMenuEx).
//
// A menu is a key into the drawing objects' table; its items are strings,
// separators, sub-menus (MF_POPUP, the sub-menu's handle as the id),
// bitmaps (MF_BITMAP) or owner-drawn (MF_OWNERDRAW, with item data the
// owner window measures and draws through WM_MEASUREITEM and WM_DRAWITEM).
//
//   HMENU menu = CreatePopupMenu();
//   AppendMenuA(menu, MF_STRING, 101, "&Open\tCtrl+O");
//   AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
//   AppendMenuA(menu, MF_STRING | MF_GRAYED, 102, "&Save");
//   UINT id = TrackPopupMenuEx(menu, TPM_RETURNCMD, x, y, owner, nullptr);
#pragma once

#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "platform/windows/winuser.h"
#include "vxbase_ui_export.h"

#include <vector>

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
constexpr UINT MF_END = 0x0080; // the last item of a template's level

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
constexpr DWORD MNS_NOCHECK = 0x80000000;
constexpr DWORD MNS_MODELESS = 0x40000000;
constexpr DWORD MNS_DRAGDROP = 0x20000000;
constexpr DWORD MNS_AUTODISMISS = 0x10000000;
constexpr DWORD MNS_NOTIFYBYPOS = 0x08000000;
constexpr DWORD MNS_CHECKORBMP = 0x04000000;

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
constexpr UINT TPM_RECURSE = 0x0001;
constexpr UINT TPM_HORPOSANIMATION = 0x0400;
constexpr UINT TPM_HORNEGANIMATION = 0x0800;
constexpr UINT TPM_VERPOSANIMATION = 0x1000;
constexpr UINT TPM_VERNEGANIMATION = 0x2000;
constexpr UINT TPM_NOANIMATION = 0x4000;

struct TPMPARAMS {
    UINT cbSize;
    RECT rcExclude;
};
using LPTPMPARAMS = TPMPARAMS*;

// The messages of the popup menu windows ("#32768") themselves.
constexpr UINT MN_GETHMENU = 0x01E1;
// Sent to a menu window after it is made: it takes the size of its menu.
constexpr UINT MN_SIZEWINDOW = 0x01E2;

// WM_MENUCHAR answers (high word; the low word is an item's position).
constexpr UINT MNC_IGNORE = 0;
constexpr UINT MNC_CLOSE = 1;
constexpr UINT MNC_EXECUTE = 2;
constexpr UINT MNC_SELECT = 3;

// --- menu handles and items --------------------------------------------------
VXBASE_UI_EXPORT HMENU CreateMenu();
VXBASE_UI_EXPORT HMENU CreatePopupMenu();
// Destroys the menu and every sub-menu in it; FALSE (ERROR_INVALID_MENU_HANDLE)
// for a bad handle.
VXBASE_UI_EXPORT BOOL DestroyMenu(HMENU menu);
VXBASE_UI_EXPORT BOOL IsMenu(HMENU menu);
// MF_POPUP items take the sub-menu's handle as `idNewItem`; MF_BITMAP items a
// bitmap handle as `newItem`, MF_OWNERDRAW items their item data.
VXBASE_UI_EXPORT BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR idNewItem, LPCSTR newItem);
// Inserts before the item `position` names (MF_BYPOSITION, -1: at the end; by
// command the item may be in a sub-menu).
VXBASE_UI_EXPORT BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem);
// Replaces an item's kind, id, text and state; check bitmaps and, unless it
// becomes owner-drawn, item data stay.
VXBASE_UI_EXPORT BOOL ModifyMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem);
// Takes an item out; RemoveMenu keeps its sub-menu, DeleteMenu destroys it.
VXBASE_UI_EXPORT BOOL RemoveMenu(HMENU menu, UINT position, UINT flags);
VXBASE_UI_EXPORT BOOL DeleteMenu(HMENU menu, UINT position, UINT flags);
// -1 for a bad handle.
VXBASE_UI_EXPORT int GetMenuItemCount(HMENU menu);
// The item's command id; -1 (as UINT) for a sub-menu or a bad position, 0 for
// a separator.
VXBASE_UI_EXPORT UINT GetMenuItemID(HMENU menu, int position);
// MF_ state and type bits (a sub-menu's item count in the high byte), or -1.
VXBASE_UI_EXPORT UINT GetMenuState(HMENU menu, UINT id, UINT flags);
// Copies the item's text (with its "&" and tab part); the length, 0 for
// none. A null buffer asks for the length.
VXBASE_UI_EXPORT int GetMenuStringA(HMENU menu, UINT id, LPSTR text, int maxCount, UINT flags);
VXBASE_UI_EXPORT HMENU GetSubMenu(HMENU menu, int position);
// Return the previous state, or -1 for an unknown item.
VXBASE_UI_EXPORT DWORD CheckMenuItem(HMENU menu, UINT id, UINT check);
VXBASE_UI_EXPORT BOOL EnableMenuItem(HMENU menu, UINT id, UINT enable);
// Checks one item of a range as a radio item and unchecks the others.
VXBASE_UI_EXPORT BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT check, UINT flags);
VXBASE_UI_EXPORT BOOL HiliteMenuItem(HWND window, HMENU menu, UINT item, UINT hilite);
VXBASE_UI_EXPORT BOOL SetMenuDefaultItem(HMENU menu, UINT item, UINT byPosition);
// The default item's id (or position), -1 (as UINT) without one.
VXBASE_UI_EXPORT UINT GetMenuDefaultItem(HMENU menu, UINT byPosition, UINT flags);
VXBASE_UI_EXPORT BOOL GetMenuItemInfoA(HMENU menu, UINT item, BOOL byPosition, LPMENUITEMINFO info);
VXBASE_UI_EXPORT BOOL SetMenuItemInfoA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info);
VXBASE_UI_EXPORT BOOL InsertMenuItemA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info);
VXBASE_UI_EXPORT BOOL SetMenuItemBitmaps(HMENU menu, UINT position, UINT flags, HBITMAP unchecked, HBITMAP checked);
// The size of the check-mark bitmaps: SM_CYMENUCHECK high, SM_CXMENUCHECK low.
VXBASE_UI_EXPORT LONG GetMenuCheckMarkDimensions();
// Menu-wide values: the background brush, style, maximum height, help id and data.
VXBASE_UI_EXPORT BOOL GetMenuInfo(HMENU menu, LPMENUINFO info);
VXBASE_UI_EXPORT BOOL SetMenuInfo(HMENU menu, LPCMENUINFO info);

// --- menus of windows ------------------------------------------------------------------------------------
// The menu bar menu of a window (the frame shows it; see the frame classes).
VXBASE_UI_EXPORT BOOL SetMenu(HWND window, HMENU menu);
VXBASE_UI_EXPORT HMENU GetMenu(HWND window);
// Repaints a window's menu bar (its frame).
VXBASE_UI_EXPORT BOOL DrawMenuBar(HWND window);
// The window's copy of the system menu (Restore, Move, Size, Minimize,
// Maximize, Close), made on first request; `revert` destroys the copy and
// answers null.
VXBASE_UI_EXPORT HMENU GetSystemMenu(HWND window, BOOL revert);
// Where an item of an open popup menu is, in screen coordinates; FALSE when
// the menu is not showing.
VXBASE_UI_EXPORT BOOL GetMenuItemRect(HWND window, HMENU menu, UINT item, RECT* rect);
// The position of the item of an open popup menu at a screen point, or -1.
VXBASE_UI_EXPORT int MenuItemFromPoint(HWND window, HMENU menu, POINT screen);

// --- templates ---------------------------------------------------------------------------------------------
// Builds a new menu from the template of resource `name` (a number through
// MAKEINTRESOURCE or a text); null (ERROR_RESOURCE_NAME_NOT_FOUND) when there
// is none. `instance` is ignored: the library's and the host's templates are
// one table (see vx::SetMenuTemplate).
VXBASE_UI_EXPORT HMENU LoadMenuA(HINSTANCE instance, LPCSTR name);

// --- popup menus --------------------------------------------------------------------------------------------
// Shows the popup menu at a screen point and tracks it until the user
// chooses or cancels. Each level is a top-level window of the class
// "#32768", and the owner hears what the original told it, in its order:
// WM_ENTERMENULOOP, WM_INITMENU, then for each level WM_INITMENUPOPUP,
// WM_MEASUREITEM per owner-drawn item, the window's WM_NCCREATE,
// WM_NCCALCSIZE and WM_CREATE, MN_SIZEWINDOW (WM_WINDOWPOSCHANGING,
// WM_NCCALCSIZE, WM_WINDOWPOSCHANGED), WM_SHOWWINDOW, and painting
// (WM_NCPAINT, WM_ERASEBKGND, WM_DRAWITEM per owner-drawn item; with menu
// animation on, WM_PRINT and WM_PRINTCLIENT first); while tracking
// WM_MENUSELECT, WM_MENUCHAR for a letter no item's "&" names, WM_ENTERIDLE
// when nothing waits; at the end WM_UNINITMENUPOPUP per level,
// WM_MENUSELECT (0xFFFF, null), WM_EXITMENULOOP. TPM_NONOTIFY leaves out
// all of these but WM_MEASUREITEM, WM_DRAWITEM and WM_MENUCHAR.
//
// The loop is modal: posted messages, timers and the pump's sources keep
// being served, while every keyboard and mouse message of the thread goes to
// the menu (after the WH_MSGFILTER hooks, code MSGF_MENU, with msg.pt in
// screen coordinates). Keys: Up, Down, Home, End move; Right opens a
// sub-menu, Left and Esc close one (Esc at the top ends the menu); Enter
// chooses; a letter chooses the item of its "&" (moves among several);
// Alt or F10 ends. Mouse: hovering selects, a sub-menu opens after the
// delay of SPI_GETMENUSHOWDELAY (at once on a click), releasing the left
// button (or the right with TPM_RIGHTBUTTON) chooses, a click outside ends
// the menu. WM_CANCELMODE to the owner and EndMenu end it too. A menu that
// does not fit the work area opens on the other side of its point;
// sub-menus open to the right of their item, or to the left.
//
// With TPM_RETURNCMD the chosen id (0 for none) is returned; otherwise it
// is posted to the owner as WM_COMMAND and the answer is TRUE. FALSE for a
// bad menu or owner, or while another menu is tracked without TPM_RECURSE.
VXBASE_UI_EXPORT BOOL TrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND owner, LPTPMPARAMS params);
VXBASE_UI_EXPORT BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner,
                                     const RECT* rect);
// Ends the menu being tracked, as if the user had cancelled it.
VXBASE_UI_EXPORT BOOL EndMenu();

namespace vx {

// One item of a menu template: a string, separator (MF_SEPARATOR) or
// sub-menu (MF_POPUP with its items), with its MF_ flags and id.
struct MenuTemplateItem {
    UINT flags = MF_STRING;
    UINT id = 0;
    const char* text = "";
    std::vector<MenuTemplateItem> items;
};
// Adds or replaces the template of resource `name` (MAKEINTRESOURCE(id) or
// a text) that LoadMenuA builds menus from; no items removes it.
VXBASE_UI_EXPORT void SetMenuTemplate(LPCSTR name, std::vector<MenuTemplateItem> items);
// The top menu of the innermost menu being tracked and, in `owner`, the
// window it reports to; null when no menu is open.
VXBASE_UI_EXPORT HMENU TrackedMenu(HWND* owner);

} // namespace vx
