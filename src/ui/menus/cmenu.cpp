#include "ui/menus/cmenu.h"

#include "ui/gdi/handlemap_p.h"
#include "ui/images/cbitmap.h"
#include "ui/menus/menumodel_p.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/menubarbridge.h"

#include <cstdint>

#include <string>
#include <unordered_map>
#include <utility>

namespace {

// The objects menus are attached to, by handle.
std::unordered_map<HMENU, CMenu*>& Permanent()
{
    static auto* objects = new std::unordered_map<HMENU, CMenu*>;
    return *objects;
}

// What FromHandle gives for a menu no object owns: it never destroys the
// menu and never becomes the menu's permanent object.
class TemporaryMenu : public CMenu {
public:
    ~TemporaryMenu() override { m_hMenu = nullptr; }
    BOOL Attach(HMENU menu)
    {
        m_hMenu = menu;
        return TRUE;
    }
    HMENU Detach() { return std::exchange(m_hMenu, nullptr); }
};

// The menu holding the owner-drawn item a WM_MEASUREITEM names: the item's
// id and data, or a sub-menu's handle as its id; searched under `root`.
HMENU HolderOf(HMENU root, const MEASUREITEMSTRUCT& item, int depth = 0)
{
    const vx::menus::Menu* menu = vx::menus::MenuOf(root);
    if (!menu || depth > 16)
        return nullptr;
    for (const auto& it : menu->items) {
        const bool bySub = it.sub && static_cast<UINT>(reinterpret_cast<std::uintptr_t>(it.sub)) == item.itemID;
        if (bySub || (!it.sub && it.id == item.itemID && it.data == item.itemData))
            return root;
    }
    for (const auto& it : menu->items) {
        if (HMENU found = it.sub ? HolderOf(it.sub, item, depth + 1) : nullptr)
            return found;
    }
    return nullptr;
}

// The framework's default for owner-drawn menu items: the menu's object.
bool DrawMenuItem(DRAWITEMSTRUCT& item)
{
    CMenu* menu = CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(item.hwndItem));
    if (!menu)
        return false;
    menu->DrawItem(&item);
    return true;
}

bool MeasureMenuItem(CWnd& window, MEASUREITEMSTRUCT& item)
{
    HWND tracker = nullptr;
    const HMENU tracked = vx::TrackedMenu(&tracker);
    for (HMENU root : {tracker == window.m_hWnd ? tracked : nullptr, ::GetMenu(window.m_hWnd),
                       vx::menus::ExistingSystemMenu(window.m_hWnd)}) {
        const HMENU holder = root ? HolderOf(root, item) : nullptr;
        if (CMenu* menu = holder ? CMenu::FromHandlePermanent(holder) : nullptr) {
            menu->MeasureItem(&item);
            return true;
        }
    }
    return false;
}

const bool g_installed = [] {
    vx::MenuBarBridge bridge = vx::GetMenuBarBridge();
    bridge.drawItem = &DrawMenuItem;
    bridge.measureItem = &MeasureMenuItem;
    vx::SetMenuBarBridge(bridge);
    return true;
}();

} // namespace

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
    if (m_hMenu || !menu || Permanent().count(menu))
        return FALSE;
    m_hMenu = menu;
    Permanent()[menu] = this;
    return TRUE;
}

HMENU CMenu::Detach()
{
    HMENU menu = std::exchange(m_hMenu, nullptr);
    if (auto it = Permanent().find(menu); it != Permanent().end() && it->second == this)
        Permanent().erase(it);
    return menu;
}

CMenu* CMenu::FromHandle(HMENU menu)
{
    if (CMenu* permanent = FromHandlePermanent(menu))
        return permanent;
    return vx::WrapperOf<TemporaryMenu, HMENU>(menu, [](HMENU h) { return IsMenu(h) != FALSE; });
}

CMenu* CMenu::FromHandlePermanent(HMENU menu)
{
    auto it = Permanent().find(menu);
    return it == Permanent().end() || !IsMenu(menu) ? nullptr : it->second;
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

BOOL CMenu::LoadMenu(LPCSTR name)
{
    return Attach(::LoadMenuA(nullptr, name));
}

BOOL CMenu::LoadMenu(UINT id)
{
    return LoadMenu(MAKEINTRESOURCE(id));
}

void CMenu::DrawItem(LPDRAWITEMSTRUCT) {}

void CMenu::MeasureItem(LPMEASUREITEMSTRUCT) {}
