#include "ui/menus/cmenu.h"

#include "ui/images/cbitmap.h"
#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/handlemap_p.h"
#include "ui/windows/qtinterop.h"

#include "platform/windows/cwnd.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

#include <cstring>
#include <string>
#include <vector>
#include <utility>

namespace vx::gdi {
namespace {

struct MenuItem {
    UINT type = MFT_STRING; // MFT_ bits
    UINT state = 0;         // MFS_ bits
    UINT id = 0;
    HMENU sub = nullptr;
    std::string text;
    HBITMAP bitmap = nullptr; // MFT_BITMAP
    HBITMAP checked = nullptr;
    HBITMAP unchecked = nullptr;
    ULONG_PTR data = 0;
};

struct Menu final : Object {
    static constexpr Kind kKind = Kind::Menu;
    Menu() : Object(kKind) {}
    bool popup = false;
    std::vector<MenuItem> items;
    MENUINFO info{};
};

Menu* MenuOf(HMENU h)
{
    return Get<Menu>(h);
}

// The item an id or position names; by command the submenus are searched too.
struct Found {
    Menu* menu = nullptr;
    std::size_t index = 0;
    MenuItem* item() const { return &menu->items[index]; }
};

Found FindItem(HMENU h, UINT which, bool byPosition, int depth = 0)
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
            if (Found f = FindItem(it.sub, which, false, depth + 1); f.menu)
                return f;
        }
    }
    return {};
}

// An item as the MF_ flags of Append/Insert/ModifyMenu describe it.
MenuItem ItemFromFlags(UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    MenuItem it;
    it.type = flags & (MF_BITMAP | MF_OWNERDRAW | MF_SEPARATOR | MF_MENUBARBREAK | MF_MENUBREAK | MF_RIGHTJUSTIFY);
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

UINT StateOf(const MenuItem& it)
{
    UINT s = it.type | (it.state & (MF_CHECKED | MF_HILITE | MF_DEFAULT | MF_GRAYED | MF_DISABLED));
    if (it.sub) {
        const Menu* sub = MenuOf(it.sub);
        s |= MF_POPUP | (static_cast<UINT>(sub ? sub->items.size() : 0) << 8);
    }
    return s;
}

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
    Remove(h);
    for (HMENU s : subs)
        DestroyTree(s, depth + 1);
}

HMENU NewMenu(bool popup)
{
    auto m = std::make_unique<Menu>();
    m->popup = popup;
    m->info.cbSize = sizeof(MENUINFO);
    return static_cast<HMENU>(Add(std::move(m)));
}

vx::PopupMenuPresenter& Presenter()
{
    static auto* presenter = new vx::PopupMenuPresenter;
    return *presenter;
}

void FillQMenu(QMenu& qmenu, HMENU h, int depth)
{
    Menu* m = MenuOf(h);
    if (!m || depth > 32)
        return;
    for (const MenuItem& it : m->items) {
        if (it.type & MFT_SEPARATOR) {
            qmenu.addSeparator();
            continue;
        }
        const QString text = vx::ToQString(it.text.c_str());
        const bool enabled = !(it.state & MFS_GRAYED);
        if (it.sub) {
            QMenu* sub = qmenu.addMenu(text);
            sub->setEnabled(enabled);
            FillQMenu(*sub, it.sub, depth + 1);
            continue;
        }
        QAction* action = qmenu.addAction(text);
        action->setData(it.id);
        action->setEnabled(enabled);
        if (it.state & MFS_CHECKED) {
            action->setCheckable(true);
            action->setChecked(true);
        }
        if (it.state & MFS_DEFAULT) {
            QFont bold = action->font();
            bold.setBold(true);
            action->setFont(bold);
        }
    }
}

} // namespace
} // namespace vx::gdi

using namespace vx::gdi;

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
    if (!MenuOf(menu))
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
    Menu* m = MenuOf(menu);
    if (!m)
        return FALSE;
    m->items.push_back(ItemFromFlags(flags, idNewItem, newItem));
    return TRUE;
}

BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    Menu* m = MenuOf(menu);
    if (!m)
        return FALSE;
    std::size_t at = m->items.size();
    if (flags & MF_BYPOSITION) {
        if (position != static_cast<UINT>(-1) && position < m->items.size())
            at = position;
    } else {
        const Found f = FindItem(menu, position, false);
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
    const Found f = FindItem(menu, position, flags & MF_BYPOSITION);
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
    const Found f = FindItem(menu, position, flags & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    f.menu->items.erase(f.menu->items.begin() + static_cast<std::ptrdiff_t>(f.index));
    return TRUE;
}

BOOL DeleteMenu(HMENU menu, UINT position, UINT flags)
{
    const Found f = FindItem(menu, position, flags & MF_BYPOSITION);
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
    Menu* m = MenuOf(menu);
    return m ? static_cast<int>(m->items.size()) : -1;
}

UINT GetMenuItemID(HMENU menu, int position)
{
    Menu* m = MenuOf(menu);
    if (!m || position < 0 || position >= static_cast<int>(m->items.size()))
        return static_cast<UINT>(-1);
    const MenuItem& it = m->items[static_cast<std::size_t>(position)];
    if (it.sub)
        return static_cast<UINT>(-1);
    return (it.type & MFT_SEPARATOR) ? 0 : it.id;
}

UINT GetMenuState(HMENU menu, UINT id, UINT flags)
{
    const Found f = FindItem(menu, id, flags & MF_BYPOSITION);
    return f.menu ? StateOf(*f.item()) : static_cast<UINT>(-1);
}

int GetMenuStringA(HMENU menu, UINT id, LPSTR text, int maxCount, UINT flags)
{
    const Found f = FindItem(menu, id, flags & MF_BYPOSITION);
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
    Menu* m = MenuOf(menu);
    if (!m || position < 0 || position >= static_cast<int>(m->items.size()))
        return nullptr;
    return m->items[static_cast<std::size_t>(position)].sub;
}

DWORD CheckMenuItem(HMENU menu, UINT id, UINT check)
{
    const Found f = FindItem(menu, id, check & MF_BYPOSITION);
    if (!f.menu)
        return static_cast<DWORD>(-1);
    MenuItem* it = f.item();
    const DWORD old = it->state & MF_CHECKED;
    it->state = (it->state & ~MF_CHECKED) | (check & MF_CHECKED);
    return old;
}

BOOL EnableMenuItem(HMENU menu, UINT id, UINT enable)
{
    const Found f = FindItem(menu, id, enable & MF_BYPOSITION);
    if (!f.menu)
        return -1;
    MenuItem* it = f.item();
    const BOOL old = static_cast<BOOL>(it->state & (MF_GRAYED | MF_DISABLED));
    it->state = (it->state & ~MFS_GRAYED) | (enable & (MF_GRAYED | MF_DISABLED));
    return old;
}

BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT check, UINT flags)
{
    Menu* m = MenuOf(menu);
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
    Menu* m = MenuOf(menu);
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
    Menu* m = MenuOf(menu);
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
    const Found f = FindItem(menu, item, byPosition);
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
    const Found f = FindItem(menu, item, byPosition);
    if (!f.menu || !info)
        return FALSE;
    ApplyInfo(*f.item(), *info);
    return TRUE;
}

BOOL InsertMenuItemA(HMENU menu, UINT item, BOOL byPosition, const MENUITEMINFOA* info)
{
    Menu* m = MenuOf(menu);
    if (!m || !info)
        return FALSE;
    MenuItem it;
    ApplyInfo(it, *info);
    std::size_t at = m->items.size();
    if (byPosition) {
        if (item < m->items.size())
            at = item;
    } else if (const Found f = FindItem(menu, item, false); f.menu) {
        m = f.menu;
        at = f.index;
    }
    m->items.insert(m->items.begin() + static_cast<std::ptrdiff_t>(at), it);
    return TRUE;
}

BOOL SetMenuItemBitmaps(HMENU menu, UINT position, UINT flags, HBITMAP unchecked, HBITMAP checked)
{
    const Found f = FindItem(menu, position, flags & MF_BYPOSITION);
    if (!f.menu)
        return FALSE;
    f.item()->unchecked = unchecked;
    f.item()->checked = checked;
    return TRUE;
}

BOOL GetMenuInfo(HMENU menu, LPMENUINFO info)
{
    Menu* m = MenuOf(menu);
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
    Menu* m = MenuOf(menu);
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

BOOL TrackPopupMenuEx(HMENU menu, UINT flags, int x, int y, HWND owner, LPTPMPARAMS params)
{
    if (!MenuOf(menu))
        return FALSE;
    if (!(flags & TPM_NONOTIFY) && owner)
        SendMessageA(owner, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), MAKELPARAM(0, FALSE));
    vx::PopupMenuRequest request;
    request.menu = menu;
    request.flags = flags;
    request.at = POINT{x, y};
    request.owner = owner;
    if (params)
        request.exclude = params->rcExclude;
    const UINT id = Presenter() ? Presenter()(request) : vx::PresentWithQMenu(request);
    if (flags & TPM_RETURNCMD)
        return static_cast<BOOL>(id);
    if (id && owner)
        PostMessageA(owner, WM_COMMAND, id, 0);
    return TRUE;
}

BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*)
{
    return TrackPopupMenuEx(menu, flags, x, y, owner, nullptr);
}

namespace vx {

PopupMenuPresenter SetPopupMenuPresenter(PopupMenuPresenter presenter)
{
    return std::exchange(Presenter(), std::move(presenter));
}

UINT PresentWithQMenu(const PopupMenuRequest& request)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return 0;
    QMenu qmenu;
    FillQMenu(qmenu, request.menu, 0);
    QPoint at(request.at.x, request.at.y);
    const QSize size = qmenu.sizeHint();
    if ((request.flags & TPM_CENTERALIGN) == TPM_CENTERALIGN && !(request.flags & TPM_RIGHTALIGN))
        at.rx() -= size.width() / 2;
    else if (request.flags & TPM_RIGHTALIGN)
        at.rx() -= size.width();
    if (request.flags & TPM_BOTTOMALIGN)
        at.ry() -= size.height();
    else if (request.flags & TPM_VCENTERALIGN)
        at.ry() -= size.height() / 2;
    QAction* chosen = qmenu.exec(at);
    return chosen ? chosen->data().toUInt() : 0;
}

} // namespace vx

CMenu::CMenu() = default;

CMenu::~CMenu()
{
    DestroyMenu();
}

BOOL CMenu::CreateMenu()
{
    return Attach(::CreateMenu());
}

BOOL CMenu::CreatePopupMenu()
{
    return Attach(::CreatePopupMenu());
}

BOOL CMenu::DestroyMenu()
{
    if (!m_hMenu)
        return FALSE;
    return ::DestroyMenu(Detach());
}

BOOL CMenu::Attach(HMENU menu)
{
    if (m_hMenu || !menu)
        return FALSE;
    m_hMenu = menu;
    return TRUE;
}

HMENU CMenu::Detach()
{
    return std::exchange(m_hMenu, nullptr);
}

CMenu* CMenu::FromHandle(HMENU menu)
{
    return vx::WrapperOf<CMenu, HMENU>(menu, [](HMENU h) { return IsMenu(h) != FALSE; });
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    return ::AppendMenuA(m_hMenu, flags, idNewItem, newItem);
}

BOOL CMenu::InsertMenu(UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    return ::InsertMenuA(m_hMenu, position, flags, idNewItem, newItem);
}

BOOL CMenu::ModifyMenu(UINT position, UINT flags, UINT_PTR idNewItem, LPCSTR newItem)
{
    return ::ModifyMenuA(m_hMenu, position, flags, idNewItem, newItem);
}

BOOL CMenu::RemoveMenu(UINT position, UINT flags)
{
    return ::RemoveMenu(m_hMenu, position, flags);
}

BOOL CMenu::DeleteMenu(UINT position, UINT flags)
{
    return ::DeleteMenu(m_hMenu, position, flags);
}

UINT CMenu::GetMenuItemCount() const
{
    return static_cast<UINT>(::GetMenuItemCount(m_hMenu));
}

UINT CMenu::GetMenuItemID(int position) const
{
    return ::GetMenuItemID(m_hMenu, position);
}

UINT CMenu::GetMenuState(UINT id, UINT flags) const
{
    return ::GetMenuState(m_hMenu, id, flags);
}

int CMenu::GetMenuString(UINT id, LPSTR text, int maxCount, UINT flags) const
{
    return ::GetMenuStringA(m_hMenu, id, text, maxCount, flags);
}

int CMenu::GetMenuString(UINT id, CString& text, UINT flags) const
{
    const int n = ::GetMenuStringA(m_hMenu, id, nullptr, 0, flags);
    std::string buffer(static_cast<std::size_t>(n) + 1, '\0');
    ::GetMenuStringA(m_hMenu, id, buffer.data(), n + 1, flags);
    text = buffer.c_str();
    return n;
}

CMenu* CMenu::GetSubMenu(int position) const
{
    return FromHandle(::GetSubMenu(m_hMenu, position));
}

UINT CMenu::CheckMenuItem(UINT id, UINT check)
{
    return ::CheckMenuItem(m_hMenu, id, check);
}

UINT CMenu::EnableMenuItem(UINT id, UINT enable)
{
    return static_cast<UINT>(::EnableMenuItem(m_hMenu, id, enable));
}

BOOL CMenu::CheckMenuRadioItem(UINT first, UINT last, UINT check, UINT flags)
{
    return ::CheckMenuRadioItem(m_hMenu, first, last, check, flags);
}

BOOL CMenu::SetDefaultItem(UINT item, BOOL byPosition)
{
    return ::SetMenuDefaultItem(m_hMenu, item, byPosition);
}

UINT CMenu::GetDefaultItem(UINT flags, BOOL byPosition)
{
    return ::GetMenuDefaultItem(m_hMenu, byPosition, flags);
}

BOOL CMenu::GetMenuItemInfo(UINT item, LPMENUITEMINFO info, BOOL byPosition)
{
    return ::GetMenuItemInfoA(m_hMenu, item, byPosition, info);
}

BOOL CMenu::SetMenuItemInfo(UINT item, const MENUITEMINFOA* info, BOOL byPosition)
{
    return ::SetMenuItemInfoA(m_hMenu, item, byPosition, info);
}

BOOL CMenu::InsertMenuItem(UINT item, const MENUITEMINFOA* info, BOOL byPosition)
{
    return ::InsertMenuItemA(m_hMenu, item, byPosition, info);
}

BOOL CMenu::SetMenuItemBitmaps(UINT position, UINT flags, const CBitmap* unchecked, const CBitmap* checked)
{
    return ::SetMenuItemBitmaps(m_hMenu, position, flags, unchecked ? static_cast<HBITMAP>(*unchecked) : nullptr,
                                checked ? static_cast<HBITMAP>(*checked) : nullptr);
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* owner, const RECT* rect)
{
    return ::TrackPopupMenu(m_hMenu, flags, x, y, 0, owner ? owner->m_hWnd : nullptr, rect);
}

BOOL CMenu::TrackPopupMenuEx(UINT flags, int x, int y, CWnd* owner, LPTPMPARAMS params)
{
    return ::TrackPopupMenuEx(m_hMenu, flags, x, y, owner ? owner->m_hWnd : nullptr, params);
}

void CMenu::DrawItem(LPDRAWITEMSTRUCT) {}

void CMenu::MeasureItem(LPMEASUREITEMSTRUCT) {}
