#include "ui/menus/menumodel_p.h"

#include "platform/windows/lasterror.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace vx::menus {

Menu* MenuOf(HMENU h)
{
    return gdi::Get<Menu>(h);
}

namespace {

Found Find(HMENU h, UINT which, bool byPosition, int depth)
{
    Menu* m = MenuOf(h);
    if (!m || depth > 32)
        return {};
    if (byPosition)
        return which < m->items.size() ? Found{m, which} : Found{};
    for (std::size_t i = 0; i < m->items.size(); ++i) {
        const MenuItem& it = m->items[i];
        if (!it.sub && !(it.type & MFT_SEPARATOR) && it.id == which)
            return Found{m, i};
    }
    for (const MenuItem& it : m->items) {
        if (it.sub) {
            if (Found f = Find(it.sub, which, false, depth + 1); f.menu)
                return f;
        }
    }
    return {};
}

// An item as the MF_ flags of Append/Insert/ModifyMenu describe it.
MenuItem ItemFromFlags(UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    MenuItem it;
    // MF_USECHECKBITMAPS has the value of MFT_RADIOCHECK, as on the original.
    it.type = flags & (MF_BITMAP | MF_OWNERDRAW | MF_SEPARATOR | MF_MENUBARBREAK | MF_MENUBREAK | MF_RIGHTJUSTIFY |
                       MFT_RADIOCHECK);
    it.state = flags & (MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_HILITE | MF_DEFAULT);
    if (it.state & (MF_GRAYED | MF_DISABLED))
        it.state |= MFS_GRAYED;
    if (flags & MF_POPUP)
        it.sub = reinterpret_cast<HMENU>(idNewItem);
    else
        it.id = static_cast<UINT>(idNewItem);
    if (flags & MF_OWNERDRAW)
        it.data = reinterpret_cast<ULONG_PTR>(newItem);
    else if (flags & MF_BITMAP)
        it.bitmap = reinterpret_cast<HBITMAP>(const_cast<char*>(newItem));
    else if (newItem && !(flags & MF_SEPARATOR))
        it.text = newItem;
    return it;
}

} // namespace

Found FindItem(HMENU h, UINT which, bool byPosition)
{
    return Find(h, which, byPosition, 0);
}

UINT StateOf(const MenuItem& it)
{
    UINT s = it.type | (it.state & (MF_CHECKED | MF_HILITE | MF_DEFAULT | MF_GRAYED | MF_DISABLED));
    if (it.sub) {
        const Menu* sub = MenuOf(it.sub);
        s |= MF_POPUP | (static_cast<UINT>(sub ? sub->items.size() : 0) << 8);
    }
    return s;
}

namespace {

void DestroyTree(HMENU h, int depth = 0)
{
    Menu* m = MenuOf(h);
    if (!m || depth > 32)
        return;
    std::vector<HMENU> subs;
    for (const MenuItem& it : m->items) {
        if (it.sub)
            subs.push_back(it.sub);
    }
    gdi::Remove(h);
    for (HMENU s : subs)
        DestroyTree(s, depth + 1);
}

HMENU NewMenu(bool popup)
{
    auto m = std::make_unique<Menu>();
    m->popup = popup;
    m->info.cbSize = sizeof(MENUINFO);
    return static_cast<HMENU>(gdi::Add(std::move(m)));
}

// An item for the functions of the API: a bad menu or item sets the last error.
Found Located(HMENU menu, UINT which, bool byPosition)
{
    if (!MenuOf(menu)) {
        SetLastError(ERROR_INVALID_MENU_HANDLE);
        return {};
    }
    const Found f = FindItem(menu, which, byPosition);
    if (!f.menu)
        SetLastError(ERROR_MENU_ITEM_NOT_FOUND);
    return f;
}

// A menu for the functions of the API: a bad handle sets the last error.
Menu* Checked(HMENU menu)
{
    Menu* m = MenuOf(menu);
    if (!m)
        SetLastError(ERROR_INVALID_MENU_HANDLE);
    return m;
}

} // namespace
} // namespace vx::menus

using namespace vx::menus;

HMENU CreateMenu()
{
    return NewMenu(false);
}

HMENU CreatePopupMenu()
{
    return NewMenu(true);
}

BOOL DestroyMenu(HMENU menu)
{
    if (!Checked(menu))
        return FALSE;
    DestroyTree(menu);
    return TRUE;
}

BOOL IsMenu(HMENU menu)
{
    return MenuOf(menu) != nullptr;
}

BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    Menu* m = Checked(menu);
    if (!m)
        return FALSE;
    m->items.push_back(ItemFromFlags(flags, idNewItem, newItem));
    return TRUE;
}

BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    Menu* m = Checked(menu);
    if (!m)
        return FALSE;
    std::size_t at = m->items.size();
    if (flags & MF_BYPOSITION) {
        if (position != static_cast<UINT>(-1) && position < m->items.size())
            at = position;
    } else {
        const Found f = Located(menu, position, false);
        if (!f.menu)
            return FALSE;
        m = f.menu;
        at = f.index;
    }
    m->items.insert(m->items.begin() + static_cast<std::ptrdiff_t>(at), ItemFromFlags(flags, idNewItem, newItem));
    return TRUE;
}

BOOL ModifyMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    const Found f = Located(menu, position, flags & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    MenuItem fresh = ItemFromFlags(flags, idNewItem, newItem);
    MenuItem* it = f.item();
    fresh.checked = it->checked;
    fresh.unchecked = it->unchecked;
    if (!(flags & MF_OWNERDRAW))
        fresh.data = it->data;
    *it = fresh;
    return TRUE;
}

BOOL RemoveMenu(HMENU menu, UINT position, UINT flags)
{
    const Found f = Located(menu, position, flags & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    f.menu->items.erase(f.menu->items.begin() + static_cast<std::ptrdiff_t>(f.index));
    return TRUE;
}

BOOL DeleteMenu(HMENU menu, UINT position, UINT flags)
{
    const Found f = Located(menu, position, flags & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    HMENU sub = f.item()->sub;
    f.menu->items.erase(f.menu->items.begin() + static_cast<std::ptrdiff_t>(f.index));
    if (sub)
        DestroyMenu(sub);
    return TRUE;
}

int GetMenuItemCount(HMENU menu)
{
    Menu* m = Checked(menu);
    return m ? static_cast<int>(m->items.size()) : -1;
}

UINT GetMenuItemID(HMENU menu, int position)
{
    Menu* m = Checked(menu);
    if (!m || position < 0 || position >= static_cast<int>(m->items.size()))
        return static_cast<UINT>(-1);
    const MenuItem& it = m->items[static_cast<std::size_t>(position)];
    if (it.sub)
        return static_cast<UINT>(-1);
    return (it.type & MFT_SEPARATOR) ? 0 : it.id;
}

UINT GetMenuState(HMENU menu, UINT id, UINT flags)
{
    const Found f = Located(menu, id, flags & MF_BYPOSITION);
    return f.menu ? StateOf(*f.item()) : static_cast<UINT>(-1);
}

int GetMenuStringA(HMENU menu, UINT id, LPSTR text, int maxCount, UINT flags)
{
    const Found f = Located(menu, id, flags & MF_BYPOSITION);
    if (!f.menu)
        return 0;
    const std::string& s = f.item()->text;
    if (!text || maxCount <= 0)
        return static_cast<int>(s.size());
    const int n = std::min(static_cast<int>(s.size()), maxCount - 1);
    std::memcpy(text, s.data(), static_cast<std::size_t>(n));
    text[n] = 0;
    return n;
}

HMENU GetSubMenu(HMENU menu, int position)
{
    Menu* m = Checked(menu);
    if (!m || position < 0 || position >= static_cast<int>(m->items.size()))
        return nullptr;
    return m->items[static_cast<std::size_t>(position)].sub;
}

DWORD CheckMenuItem(HMENU menu, UINT id, UINT check)
{
    const Found f = Located(menu, id, check & MF_BYPOSITION);
    if (!f.menu)
        return static_cast<DWORD>(-1);
    MenuItem* it = f.item();
    const DWORD old = it->state & MF_CHECKED;
    it->state = (it->state & ~MF_CHECKED) | (check & MF_CHECKED);
    return old;
}

BOOL EnableMenuItem(HMENU menu, UINT id, UINT enable)
{
    const Found f = Located(menu, id, enable & MF_BYPOSITION);
    if (!f.menu)
        return -1;
    MenuItem* it = f.item();
    const BOOL old = static_cast<BOOL>(it->state & (MF_GRAYED | MF_DISABLED));
    it->state = (it->state & ~MFS_GRAYED) | (enable & (MF_GRAYED | MF_DISABLED));
    return old;
}

BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT check, UINT flags)
{
    Menu* m = Checked(menu);
    if (!m)
        return FALSE;
    bool found = false;
    for (std::size_t i = 0; i < m->items.size(); ++i) {
        MenuItem& it = m->items[i];
        const UINT key = (flags & MF_BYPOSITION) ? static_cast<UINT>(i) : it.id;
        if (it.sub || key < first || key > last)
            continue;
        if (key == check) {
            it.state |= MF_CHECKED;
            it.type |= MFT_RADIOCHECK;
            found = true;
        } else {
            it.state &= ~MF_CHECKED;
        }
    }
    return found;
}

BOOL SetMenuDefaultItem(HMENU menu, UINT item, UINT byPosition)
{
    Menu* m = Checked(menu);
    if (!m)
        return FALSE;
    bool found = item == static_cast<UINT>(-1);
    for (std::size_t i = 0; i < m->items.size(); ++i) {
        MenuItem& it = m->items[i];
        const bool hit = byPosition ? i == item : (!it.sub && it.id == item);
        it.state = hit ? (it.state | MFS_DEFAULT) : (it.state & ~MFS_DEFAULT);
        found = found || hit;
    }
    return found;
}

UINT GetMenuDefaultItem(HMENU menu, UINT byPosition, UINT)
{
    Menu* m = Checked(menu);
    if (!m)
        return static_cast<UINT>(-1);
    for (std::size_t i = 0; i < m->items.size(); ++i) {
        if (m->items[i].state & MFS_DEFAULT)
            return byPosition ? static_cast<UINT>(i) : m->items[i].id;
    }
    return static_cast<UINT>(-1);
}

BOOL GetMenuItemInfoA(HMENU menu, UINT item, BOOL byPosition, LPMENUITEMINFO info)
{
    const Found f = Located(menu, item, byPosition);
    if (!f.menu || !info)
        return FALSE;
    const MenuItem& it = *f.item();
    if (info->fMask & (MIIM_TYPE | MIIM_FTYPE))
        info->fType = it.type;
    if (info->fMask & MIIM_STATE)
        info->fState = it.state;
    if (info->fMask & MIIM_ID)
        info->wID = it.id;
    if (info->fMask & MIIM_SUBMENU)
        info->hSubMenu = it.sub;
    if (info->fMask & MIIM_CHECKMARKS) {
        info->hbmpChecked = it.checked;
        info->hbmpUnchecked = it.unchecked;
    }
    if (info->fMask & MIIM_DATA)
        info->dwItemData = it.data;
    if (info->fMask & MIIM_BITMAP)
        info->hbmpItem = it.bitmap;
    if (info->fMask & (MIIM_TYPE | MIIM_STRING)) {
        if ((info->fMask & MIIM_TYPE) && (it.type & (MFT_BITMAP | MFT_OWNERDRAW | MFT_SEPARATOR))) {
            info->dwTypeData = (it.type & MFT_BITMAP) ? reinterpret_cast<LPSTR>(it.bitmap)
                                                      : reinterpret_cast<LPSTR>(it.data);
        } else if (info->dwTypeData && info->cch > 0) {
            const UINT n = std::min<UINT>(static_cast<UINT>(it.text.size()), info->cch - 1);
            std::memcpy(info->dwTypeData, it.text.data(), n);
            info->dwTypeData[n] = 0;
            info->cch = n;
        } else {
            info->cch = static_cast<UINT>(it.text.size());
        }
    }
    return TRUE;
}

namespace {

void ApplyInfo(MenuItem& it, const MENUITEMINFOA& info)
{
    if (info.fMask & (MIIM_TYPE | MIIM_FTYPE))
        it.type = info.fType;
    if (info.fMask & MIIM_STATE)
        it.state = info.fState;
    if (info.fMask & MIIM_ID)
        it.id = info.wID;
    if (info.fMask & MIIM_SUBMENU)
        it.sub = info.hSubMenu;
    if (info.fMask & MIIM_CHECKMARKS) {
        it.checked = info.hbmpChecked;
        it.unchecked = info.hbmpUnchecked;
    }
    if (info.fMask & MIIM_DATA)
        it.data = info.dwItemData;
    if (info.fMask & MIIM_BITMAP)
        it.bitmap = info.hbmpItem;
    const bool textual = (info.fMask & MIIM_STRING) ||
                         ((info.fMask & MIIM_TYPE) && !(info.fType & (MFT_BITMAP | MFT_OWNERDRAW | MFT_SEPARATOR)));
    if (textual)
        it.text = info.dwTypeData ? info.dwTypeData : "";
    else if ((info.fMask & MIIM_TYPE) && (info.fType & MFT_BITMAP))
        it.bitmap = reinterpret_cast<HBITMAP>(info.dwTypeData);
    else if ((info.fMask & MIIM_TYPE) && (info.fType & MFT_OWNERDRAW) && !(info.fMask & MIIM_DATA))
        it.data = reinterpret_cast<ULONG_PTR>(info.dwTypeData);
}

} // namespace

BOOL SetMenuItemInfoA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info)
{
    const Found f = Located(menu, item, byPosition);
    if (!f.menu || !info)
        return FALSE;
    ApplyInfo(*f.item(), *info);
    return TRUE;
}

BOOL InsertMenuItemA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info)
{
    Menu* m = Checked(menu);
    if (!m || !info)
        return FALSE;
    MenuItem it;
    ApplyInfo(it, *info);
    std::size_t at = m->items.size();
    if (byPosition) {
        if (item < m->items.size())
            at = item;
    } else if (const Found f = Located(menu, item, false); f.menu) {
        m = f.menu;
        at = f.index;
    }
    m->items.insert(m->items.begin() + static_cast<std::ptrdiff_t>(at), it);
    return TRUE;
}

BOOL SetMenuItemBitmaps(HMENU menu, UINT position, UINT flags, HBITMAP unchecked, HBITMAP checked)
{
    const Found f = Located(menu, position, flags & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    f.item()->unchecked = unchecked;
    f.item()->checked = checked;
    return TRUE;
}

BOOL GetMenuInfo(HMENU menu, LPMENUINFO info)
{
    Menu* m = Checked(menu);
    if (!m || !info)
        return FALSE;
    const DWORD mask = info->fMask;
    if (mask & MIM_STYLE)
        info->dwStyle = m->info.dwStyle;
    if (mask & MIM_MAXHEIGHT)
        info->cyMax = m->info.cyMax;
    if (mask & MIM_BACKGROUND)
        info->hbrBack = m->info.hbrBack;
    if (mask & MIM_HELPID)
        info->dwContextHelpID = m->info.dwContextHelpID;
    if (mask & MIM_MENUDATA)
        info->dwMenuData = m->info.dwMenuData;
    return TRUE;
}

BOOL SetMenuInfo(HMENU menu, LPCMENUINFO info)
{
    Menu* m = Checked(menu);
    if (!m || !info)
        return FALSE;
    const DWORD mask = info->fMask;
    if (mask & MIM_STYLE)
        m->info.dwStyle = info->dwStyle;
    if (mask & MIM_MAXHEIGHT)
        m->info.cyMax = info->cyMax;
    if (mask & MIM_BACKGROUND)
        m->info.hbrBack = info->hbrBack;
    if (mask & MIM_HELPID)
        m->info.dwContextHelpID = info->dwContextHelpID;
    if (mask & MIM_MENUDATA)
        m->info.dwMenuData = info->dwMenuData;
    if (mask & MIM_APPLYTOSUBMENUS) {
        for (const MenuItem& it : m->items) {
            if (it.sub)
                SetMenuInfo(it.sub, info);
        }
    }
    return TRUE;
}

LONG GetMenuCheckMarkDimensions()
{
    return static_cast<LONG>(MAKELONG(static_cast<WORD>(GetSystemMetrics(SM_CXMENUCHECK)),
                                      static_cast<WORD>(GetSystemMetrics(SM_CYMENUCHECK))));
}

BOOL HiliteMenuItem(HWND, HMENU menu, UINT item, UINT hilite)
{
    const Found f = Located(menu, item, hilite & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    MenuItem* it = f.item();
    it->state = (hilite & MF_HILITE) ? (it->state | MFS_HILITE) : (it->state & ~MFS_HILITE);
    return TRUE;
}
