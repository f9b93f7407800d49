#include "menus/cnewmenu.h"

#include "menus/cmenuwindowhook.h"
#include "menus/menucolors.h"
#include "menus/menutheme.h"

#include "base/vxglobals.h"
#include "platform/framework/util_p.h"
#include "platform/windows/cwnd.h"
#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <unordered_set>

int CNewMenu::m_Enable = 1;
int CNewMenu::m_bEnableXpBlending = 1;
int CNewMenu::m_bSelectDisable = 1;
int CNewMenu::m_bNewMenuBorderAllMenu = 1;
CMenuTheme* CNewMenu::m_pActMenuDrawing = nullptr;
LOGFONT CNewMenu::m_MenuTitleFont = [] {
    LOGFONT lf{};
    lf.lfHeight = 16;
    lf.lfWeight = 700;
    lf.lfCharSet = 1;
    std::strcpy(lf.lfFaceName, "Arial");
    return lf;
}();
DWORD CNewMenu::m_dwLastActiveItem = 0;
COLORREF CNewMenu::m_InitColor = 0;
std::vector<CNewMenuIcons*>* CNewMenu::m_pSharedMenuIcons = nullptr;

namespace {

UINT HandleId(HMENU menu)
{
    return static_cast<UINT>(reinterpret_cast<UINT_PTR>(menu));
}

HMENU IdHandle(UINT id)
{
    return reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id));
}

CNewMenu* NewMenuOf(HMENU menu)
{
    return menu ? dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(menu)) : nullptr;
}

CString ReadCaption(HMENU menu, UINT position)
{
    const int length = GetMenuStringA(menu, position, nullptr, 0, MF_BYPOSITION);
    if (length <= 0)
        return CString();
    // Twice the length plus 2, as for double-byte captions.
    std::vector<char> buffer(static_cast<std::size_t>(2 * length + 2), '\0');
    GetMenuStringA(menu, position, buffer.data(), static_cast<int>(buffer.size()), MF_BYPOSITION);
    return CString(buffer.data());
}

} // namespace

// --- item data -------------------------------------------------------------------------

namespace {

// The item data alive, so that an owner-draw value is known to be ours.
std::unordered_set<const CNewMenuItemData*>& LiveItems()
{
    static auto* items = new std::unordered_set<const CNewMenuItemData*>;
    return *items;
}

} // namespace

CNewMenuItemData::CNewMenuItemData()
{
    LiveItems().insert(this);
}

CNewMenuItemData::~CNewMenuItemData()
{
    LiveItems().erase(this);
    SetIcons(nullptr);
}

void CNewMenuItemData::SetIcons(CNewMenuIcons* icons)
{
    if (icons == m_pMenuIcon)
        return;
    if (icons)
        ++icons->m_dwRefCount;
    if (m_pMenuIcon)
        --m_pMenuIcon->m_dwRefCount;
    m_pMenuIcon = icons;
}

// --- life ------------------------------------------------------------------------------------

CNewMenu::CNewMenu(HMENU parent) : m_hParentMenu(parent)
{
    CMenuWindowHook::Instance();
}

CNewMenu::~CNewMenu()
{
    DestroyMenu();
}

BOOL CNewMenu::DestroyMenu()
{
    for (int i = m_SubMenus.GetSize() - 1; i >= 0; --i) {
        auto handle = static_cast<HMENU>(m_SubMenus.GetAt(i));
        if (CNewMenu* sub = NewMenuOf(handle))
            delete sub;
    }
    m_SubMenus.RemoveAll();
    for (int i = m_MenuItemList.GetSize() - 1; i >= 0; --i)
        delete static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
    m_MenuItemList.RemoveAll();
    if (m_checkmaps && !m_checkmapsShare)
        delete m_checkmaps;
    m_checkmaps = nullptr;
    return CMenu::DestroyMenu();
}

// --- switches -------------------------------------------------------------------------------

UINT CNewMenu::SetMenuDrawMode(UINT style)
{
    CMenuWindowHook::Instance();
    CMenuTheme* theme = CMenuTheme::FindTheme(style);
    if (!theme)
        return 0xFFFFFFFF;
    const UINT old = GetMenuDrawMode();
    m_pActMenuDrawing = theme;
    return old;
}

UINT CNewMenu::GetMenuDrawMode()
{
    CMenuWindowHook::Instance();
    return m_pActMenuDrawing ? m_pActMenuDrawing->m_dwThemeId : 0;
}

BOOL CNewMenu::SetXpBlendig(BOOL on)
{
    return std::exchange(m_bEnableXpBlending, on);
}

BOOL CNewMenu::GetXpBlendig()
{
    return m_bEnableXpBlending;
}

BOOL CNewMenu::SetSelectDisableMode(BOOL on)
{
    return std::exchange(m_bSelectDisable, on);
}

BOOL CNewMenu::GetSelectDisableMode()
{
    return m_bSelectDisable;
}

BOOL CNewMenu::SetNewMenuBorderAllMenu(BOOL on)
{
    return std::exchange(m_bNewMenuBorderAllMenu, on);
}

BOOL CNewMenu::GetNewMenuBorderAllMenu()
{
    return m_bNewMenuBorderAllMenu;
}

void CNewMenu::SetMenuTitleFont(CFont* font)
{
    LOGFONT lf{};
    if (font && GetObjectA(font->m_hObject, sizeof lf, &lf))
        m_MenuTitleFont = lf;
}

void CNewMenu::SetMenuTitleFont(const LOGFONT* font)
{
    if (font)
        m_MenuTitleFont = *font;
}

LOGFONT CNewMenu::GetMenuTitleFont()
{
    return m_MenuTitleFont;
}

// --- the virtual operations -------------------------------------------------------------

void CNewMenu::DrawItem(LPDRAWITEMSTRUCT item)
{
    if (!item || !m_pActMenuDrawing)
        return;
    const BOOL bar = !m_hParentMenu && !m_bIsPopupMenu;
    if (bar && m_dwLastActiveItem == static_cast<DWORD>(item->itemData) && !(item->itemState & ODS_HOTLIGHT))
        m_dwLastActiveItem = 0;
    // Through a local: GCC's vptr check misreads a member pointer taken
    // straight from another object's member.
    const CMenuTheme::DrawFunc draw = m_pActMenuDrawing->m_pItemDrawFunc;
    (this->*draw)(item, bar);
}

void CNewMenu::MeasureItem(LPMEASUREITEMSTRUCT item)
{
    if (!item || !m_pActMenuDrawing)
        return;
    const CMenuTheme::MeasureFunc measure = m_pActMenuDrawing->m_pMeasureItemFunc;
    // An item lies on a bar when its own menu is the bar (a menu with no
    // parent that is not a popup, as DrawItem decides) or when it is a bar's
    // entry opening a sub-menu (itemID is that sub-menu); the items of a
    // drop-down measure as a popup's.
    const bool ownMenuIsBar = !m_hParentMenu && !m_bIsPopupMenu;
    const HMENU sub = reinterpret_cast<HMENU>(static_cast<std::uintptr_t>(item->itemID));
    (this->*measure)(item, ownMenuIsBar || (::IsMenu(sub) && IsMenuBar(sub)));
}

void CNewMenu::DrawTitle(LPDRAWITEMSTRUCT item, BOOL isMenuBar)
{
    if (!m_pActMenuDrawing)
        return;
    const CMenuTheme::DrawFunc title = m_pActMenuDrawing->m_pDrawTitle;
    (this->*title)(item, isMenuBar);
}

BOOL CNewMenu::EraseBkgnd(HWND hwnd, HDC dc)
{
    RECT r{};
    ::GetClientRect(hwnd, &r);
    HBRUSH brush = CreateSolidBrush(GetMenuColor(nullptr));
    FillRect(dc, &r, brush);
    DeleteObject(brush);
    return TRUE;
}

BOOL CNewMenu::LoadMenu(int resource)
{
    return LoadMenu(MAKEINTRESOURCE(static_cast<UINT>(resource)));
}

BOOL CNewMenu::LoadMenu(LPCSTR resource)
{
    HMENU loaded = ::LoadMenuA(nullptr, resource);
    if (!loaded)
        return FALSE;
    if (!m_Enable)
        return Attach(loaded);
    return LoadMenu(loaded);
}

BOOL CNewMenu::LoadMenu(HMENU menu)
{
    if (!menu || (m_hMenu != menu && !Attach(menu)))
        return FALSE;
    m_bIsPopupMenu = FALSE;
    const int n = ::GetMenuItemCount(menu);
    for (int i = 0; i < n; ++i) {
        HMENU sub = ::GetSubMenu(menu, i);
        if (!sub || NewMenuOf(sub))
            continue;
        auto* child = new CNewMenu(m_hMenu);
        m_SubMenus.Add(sub);
        child->LoadMenu(sub);
        child->m_bIsPopupMenu = TRUE;
    }
    SynchronizeMenu();
    return TRUE;
}

void CNewMenu::OnInitMenuPopup()
{
    m_bIsPopupMenu = TRUE;
    SynchronizeMenu();
    if (g_Shell == WinXP) {
        // XP would draw these commands itself; other ids keep them ours.
        ReplaceSysCommand(SC_RESTORE, 0xF121);
        ReplaceSysCommand(SC_CLOSE, 0xF061);
        ReplaceSysCommand(SC_MINIMIZE, 0xF021);
    }
}

BOOL CNewMenu::OnUnInitPopupMenu()
{
    if (g_Shell == WinXP) {
        const BOOL closed = ReplaceSysCommand(0xF061, SC_CLOSE);
        ReplaceSysCommand(0xF121, SC_RESTORE);
        ReplaceSysCommand(0xF021, SC_MINIMIZE);
        if (closed && m_hOwnerWnd)
            ::SetWindowPos(m_hOwnerWnd, nullptr, 0, 0, 0, 0, 0x27);
    }
    CNewMenu* parent = NewMenuOf(m_hParentMenu);
    if (!parent)
        return FALSE;
    --parent->m_dwOpenMenu;
    if (!parent->m_bIsPopupMenu) {
        parent->m_dwOpenMenu = 0;
        parent->m_hOwnerWnd = m_hOwnerWnd;
        parent->RepaintBarEntry();
        return TRUE;
    }
    return FALSE;
}

BOOL CNewMenu::ReplaceSysCommand(UINT from, UINT to)
{
    BOOL found = FALSE;
    const int n = m_MenuItemList.GetSize();
    for (int i = 0; i < n; ++i) {
        auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (data->m_nID != from)
            continue;
        data->m_nID = to;
        const UINT state = ::GetMenuState(m_hMenu, static_cast<UINT>(i), MF_BYPOSITION);
        const UINT keep = state == 0xFFFFFFFF ? 0 : state & (MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_DEFAULT);
        ::ModifyMenuA(m_hMenu, static_cast<UINT>(i), MF_BYPOSITION | MF_OWNERDRAW | keep, to,
                      reinterpret_cast<LPCSTR>(data));
        found = TRUE;
    }
    return found;
}

void CNewMenu::RepaintBarEntry()
{
    CRect r(m_LastActiveMenuRect);
    if (r.IsRectEmpty() || !m_hOwnerWnd)
        return;
    r.right += 10;
    r.bottom += 10;
    POINT corners[2] = {{r.left, r.top}, {r.right, r.bottom}};
    ::ScreenToClient(m_hOwnerWnd, &corners[0]);
    ::ScreenToClient(m_hOwnerWnd, &corners[1]);
    RECT local{corners[0].x, corners[0].y, corners[1].x, corners[1].y};
    if (CWnd* owner = CWnd::FromHandle(m_hOwnerWnd))
        owner->RedrawWindow(&local, nullptr, RDW_FRAME | RDW_INVALIDATE);
}

// --- building -----------------------------------------------------------------------------------

BOOL CNewMenu::AddItem(LPCSTR text, UINT flags, UINT_PTR id, CNewMenuIcons* icons, int offset, int position)
{
    if (!m_hMenu)
        return FALSE;
    if (id == 0 && !(flags & MF_POPUP))
        flags = MF_SEPARATOR | MF_OWNERDRAW | (flags & MF_BYPOSITION);
    else
        flags |= MF_OWNERDRAW;
    if (flags & MF_POPUP) {
        if (CNewMenu* sub = NewMenuOf(reinterpret_cast<HMENU>(id)))
            sub->m_hParentMenu = m_hMenu;
    }
    auto* data = new CNewMenuItemData;
    data->SetString(text);
    data->m_nFlags = flags;
    data->m_nID = static_cast<UINT>(id);
    if (icons && offset >= 0) {
        data->SetIcons(icons);
        data->m_nMenuIconOffset = offset;
        const CSize size = icons->m_IconsList.GetImageSize();
        m_iconX = std::max<int>(m_iconX, size.cx);
        m_iconY = std::max<int>(m_iconY, size.cy);
    }
    const int count = ::GetMenuItemCount(m_hMenu);
    const int at = (position < 0 || position > count) ? count : position;
    // First as a plain item, so that the menu records the caption; then
    // owner-drawn with the item data.
    BOOL ok = at == count ? ::AppendMenuA(m_hMenu, flags & ~(MF_OWNERDRAW | MF_BYPOSITION), id, text)
                          : ::InsertMenuA(m_hMenu, static_cast<UINT>(at), (flags & ~MF_OWNERDRAW) | MF_BYPOSITION, id,
                                          text);
    if (ok)
        ok = ::ModifyMenuA(m_hMenu, static_cast<UINT>(at), flags | MF_BYPOSITION, id, reinterpret_cast<LPCSTR>(data));
    if (!ok) {
        delete data;
        return FALSE;
    }
    if (at >= m_MenuItemList.GetSize())
        m_MenuItemList.Add(data);
    else
        m_MenuItemList.InsertAt(at, data);
    return TRUE;
}

BOOL CNewMenu::AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, int iconIndex)
{
    int offset = -1;
    CNewMenuIcons* icons = iconIndex >= 0 ? GetMenuIcon(offset, iconIndex) : nullptr;
    return AddItem(text, flags, id, icons, offset, -1);
}

BOOL CNewMenu::AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, CBitmap* bitmap)
{
    int offset = -1;
    CNewMenuIcons* icons = GetMenuIcon(offset, bitmap);
    return AddItem(text, flags, id, icons, offset, -1);
}

BOOL CNewMenu::AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, CImageList* list, int index)
{
    int offset = -1;
    CNewMenuIcons* icons = GetMenuIcon(offset, list, index);
    return AddItem(text, flags, id, icons, offset, -1);
}

BOOL CNewMenu::AppendODMenu(LPCSTR text, UINT flags, UINT_PTR id, CNewMenuIcons* icons, int offset)
{
    return AddItem(text, flags, id, icons, offset, -1);
}

BOOL CNewMenu::InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, int iconIndex)
{
    int offset = -1;
    CNewMenuIcons* icons = iconIndex >= 0 ? GetMenuIcon(offset, iconIndex) : nullptr;
    return InsertODMenu(position, text, flags, id, icons, offset);
}

BOOL CNewMenu::InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, CBitmap* bitmap)
{
    int offset = -1;
    CNewMenuIcons* icons = GetMenuIcon(offset, bitmap);
    return InsertODMenu(position, text, flags, id, icons, offset);
}

BOOL CNewMenu::InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, CImageList* list, int index)
{
    int offset = -1;
    CNewMenuIcons* icons = GetMenuIcon(offset, list, index);
    return InsertODMenu(position, text, flags, id, icons, offset);
}

BOOL CNewMenu::InsertODMenu(UINT position, LPCSTR text, UINT flags, UINT_PTR id, CNewMenuIcons* icons, int offset)
{
    if (!m_Enable)
        return CMenu::InsertMenu(position, flags, id, text);
    if (!(flags & MF_BYPOSITION)) {
        // By command: insert in the menu that holds it, before it.
        int pos = -1;
        CNewMenu* owner = FindMenuOption(static_cast<int>(position), pos);
        if (!owner)
            return FALSE;
        return owner->InsertODMenu(static_cast<UINT>(pos), text, flags | MF_BYPOSITION, id, icons, offset);
    }
    const int at = position == 0xFFFFFFFF ? -1 : static_cast<int>(position);
    return AddItem(text, flags, id, icons, offset, at);
}

BOOL CNewMenu::AppendMenu(UINT flags, UINT_PTR id, LPCSTR text, int iconIndex)
{
    return AppendODMenu(text, flags, id, iconIndex);
}

BOOL CNewMenu::AppendMenu(UINT flags, UINT_PTR id, LPCSTR text, CBitmap* bitmap)
{
    return AppendODMenu(text, flags, id, bitmap);
}

BOOL CNewMenu::AppendMenu(UINT flags, UINT_PTR id, LPCSTR text, CImageList* list, int index)
{
    return AppendODMenu(text, flags, id, list, index);
}

BOOL CNewMenu::InsertMenu(UINT position, UINT flags, UINT_PTR id, LPCSTR text, int iconIndex)
{
    return InsertODMenu(position, text, flags, id, iconIndex);
}

BOOL CNewMenu::InsertMenu(UINT position, UINT flags, UINT_PTR id, LPCSTR text, CBitmap* bitmap)
{
    return InsertODMenu(position, text, flags, id, bitmap);
}

BOOL CNewMenu::InsertMenu(UINT position, UINT flags, UINT_PTR id, LPCSTR text, CImageList* list, int index)
{
    return InsertODMenu(position, text, flags, id, list, index);
}

CNewMenu* CNewMenu::AppendODPopupMenu(LPCSTR text)
{
    auto* child = new CNewMenu(m_hMenu);
    if (!child->CreatePopupMenu() || !AppendODMenu(text, MF_POPUP, reinterpret_cast<UINT_PTR>(child->m_hMenu))) {
        delete child;
        return nullptr;
    }
    m_SubMenus.Add(child->m_hMenu);
    return child;
}

BOOL CNewMenu::ModifyODMenu(LPCSTR text, UINT id, int iconIndex)
{
    int offset = -1;
    CNewMenuIcons* icons = nullptr;
    if (iconIndex >= 0)
        icons = GetMenuIcon(offset, iconIndex);
    return ModifyODMenu(text, id, icons, offset);
}

BOOL CNewMenu::ModifyODMenu(LPCSTR text, UINT id, CBitmap* bitmap)
{
    int offset = -1;
    CNewMenuIcons* icons = GetMenuIcon(offset, bitmap);
    return ModifyODMenu(text, id, icons, offset);
}

BOOL CNewMenu::ModifyODMenu(LPCSTR text, UINT id, CImageList* list, int index)
{
    int offset = -1;
    CNewMenuIcons* icons = GetMenuIcon(offset, list, index);
    return ModifyODMenu(text, id, icons, offset);
}

BOOL CNewMenu::ModifyODMenu(LPCSTR text, UINT id, CNewMenuIcons* icons, int offset)
{
    CArray<CNewMenu*, CNewMenu*> menus;
    CArray<int, int> positions;
    int position = -1;
    bool found = false;
    while (CNewMenu* owner = FindAnotherMenuOption(static_cast<int>(id), position, menus, positions)) {
        found = true;
        auto* data = static_cast<CNewMenuItemData*>(owner->m_MenuItemList.GetAt(position));
        const bool changed = text && data->m_szMenuText != text;
        if (changed)
            data->SetString(text);
        if (icons && offset >= 0) {
            data->SetIcons(icons);
            data->m_nMenuIconOffset = offset;
            const CSize size = icons->m_IconsList.GetImageSize();
            owner->m_iconX = std::max<int>(owner->m_iconX, size.cx);
            owner->m_iconY = std::max<int>(owner->m_iconY, size.cy);
        }
        data->m_nFlags = (data->m_nFlags & ~MF_BYPOSITION) | MF_OWNERDRAW;
        if (changed) {
            // As text first, so that the menu sees the new caption.
            const UINT state = ::GetMenuState(owner->m_hMenu, static_cast<UINT>(position), MF_BYPOSITION);
            const UINT keep = state == 0xFFFFFFFF ? 0 : state & (MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_DEFAULT);
            ::ModifyMenuA(owner->m_hMenu, static_cast<UINT>(position), MF_BYPOSITION | MF_STRING | keep, id,
                          data->m_szMenuText);
            ::ModifyMenuA(owner->m_hMenu, static_cast<UINT>(position), MF_BYPOSITION | MF_OWNERDRAW | keep, id,
                          reinterpret_cast<LPCSTR>(data));
        }
    }
    if (!found) {
        // Not in the menu yet: a later synchronisation takes text and icon.
        auto* data = new CNewMenuItemData;
        data->SetString(text);
        data->m_nID = id;
        data->m_nFlags = MF_OWNERDRAW;
        if (icons && offset >= 0) {
            data->SetIcons(icons);
            data->m_nMenuIconOffset = offset;
        }
        m_MenuItemList.Add(data);
        return TRUE;
    }
    const int n = ::GetMenuItemCount(m_hMenu);
    for (int i = 0; i < n; ++i) {
        if (::GetMenuItemID(m_hMenu, i) != id)
            continue;
        if (auto* data = FindMenuItem(id)) {
            const UINT state = ::GetMenuState(m_hMenu, static_cast<UINT>(i), MF_BYPOSITION);
            const UINT keep = state & (MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_DEFAULT);
            ::ModifyMenuA(m_hMenu, static_cast<UINT>(i), MF_BYPOSITION | MF_OWNERDRAW | keep, id,
                          reinterpret_cast<LPCSTR>(data));
        }
        break;
    }
    return TRUE;
}

BOOL CNewMenu::RemoveMenu(UINT position, UINT flags)
{
    if (flags & MF_BYPOSITION) {
        HMENU sub = ::GetSubMenu(m_hMenu, static_cast<int>(position));
        if (sub) {
            for (int i = 0; i < m_SubMenus.GetSize(); ++i) {
                if (m_SubMenus.GetAt(i) == sub) {
                    m_SubMenus.RemoveAt(i);
                    break;
                }
            }
        }
        if (static_cast<int>(position) < m_MenuItemList.GetSize()) {
            delete static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(static_cast<int>(position)));
            m_MenuItemList.RemoveAt(static_cast<int>(position));
        }
        return ::RemoveMenu(m_hMenu, position, flags);
    }
    int pos = -1;
    CNewMenu* owner = FindMenuOption(static_cast<int>(position), pos);
    if (!owner)
        return FALSE;
    return owner->RemoveMenu(static_cast<UINT>(pos), MF_BYPOSITION);
}

BOOL CNewMenu::DeleteMenu(UINT position, UINT flags)
{
    if (flags & MF_BYPOSITION) {
        HMENU sub = ::GetSubMenu(m_hMenu, static_cast<int>(position));
        if (CNewMenu* child = NewMenuOf(sub)) {
            for (int i = 0; i < m_SubMenus.GetSize(); ++i) {
                if (m_SubMenus.GetAt(i) == sub) {
                    m_SubMenus.RemoveAt(i);
                    ::RemoveMenu(m_hMenu, position, MF_BYPOSITION);
                    delete child;
                    if (static_cast<int>(position) < m_MenuItemList.GetSize()) {
                        delete static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(static_cast<int>(position)));
                        m_MenuItemList.RemoveAt(static_cast<int>(position));
                    }
                    return TRUE;
                }
            }
        }
        if (static_cast<int>(position) < m_MenuItemList.GetSize()) {
            delete static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(static_cast<int>(position)));
            m_MenuItemList.RemoveAt(static_cast<int>(position));
        }
        return ::DeleteMenu(m_hMenu, position, flags);
    }
    int pos = -1;
    CNewMenu* owner = FindMenuOption(static_cast<int>(position), pos);
    if (!owner)
        return FALSE;
    return owner->DeleteMenu(static_cast<UINT>(pos), MF_BYPOSITION);
}

int CNewMenu::RemoveMenu(LPCSTR text, ESeperator which)
{
    const int position = GetMenuPosition(text);
    if (position < 0)
        return -1;
    switch (which) {
    case NONE:
        RemoveMenu(static_cast<UINT>(position), MF_BYPOSITION);
        break;
    case HEAD:
        if (position > 0)
            RemoveMenu(static_cast<UINT>(position - 1), MF_BYPOSITION);
        break;
    case TAIL:
        RemoveMenu(static_cast<UINT>(position + 1), MF_BYPOSITION);
        break;
    case BOTH:
        RemoveMenu(static_cast<UINT>(position + 1), MF_BYPOSITION);
        if (position > 0)
            RemoveMenu(static_cast<UINT>(position - 1), MF_BYPOSITION);
        break;
    }
    return position;
}

// --- lookup --------------------------------------------------------------------------------------

CNewMenuItemData* CNewMenu::GetItem(int index) const
{
    if (index < 0 || index >= m_MenuItemList.GetSize())
        return nullptr;
    return static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(index));
}

CNewMenuItemData* CNewMenu::FindMenuItem(UINT id)
{
    if (m_Enable) {
        for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
            auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
            if (data->m_nID == id)
                return data;
        }
    }
    int position = -1;
    CNewMenu* owner = FindMenuOption(static_cast<int>(id), position);
    if (owner && owner != this)
        return owner->FindMenuItem(id);
    return owner ? owner->GetItem(position) : nullptr;
}

CNewMenu* CNewMenu::FindMenuOption(int id, int& position)
{
    const int n = ::GetMenuItemCount(m_hMenu);
    for (int i = 0; i < n; ++i) {
        HMENU sub = ::GetSubMenu(m_hMenu, i);
        if (sub) {
            if (CNewMenu* child = NewMenuOf(sub)) {
                if (CNewMenu* found = child->FindMenuOption(id, position))
                    return found;
            }
        } else if (static_cast<int>(::GetMenuItemID(m_hMenu, i)) == id) {
            position = i;
            return this;
        }
    }
    position = -1;
    return nullptr;
}

CNewMenu* CNewMenu::FindMenuOption(LPCSTR text, int& position)
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
        auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (text && data->m_szMenuText == text) {
            position = i;
            return this;
        }
        HMENU sub = ::GetSubMenu(m_hMenu, i);
        if (CNewMenu* child = NewMenuOf(sub)) {
            if (CNewMenu* found = child->FindMenuOption(text, position))
                return found;
        }
    }
    position = -1;
    return nullptr;
}

CNewMenu* CNewMenu::FindAnotherMenuOption(int id, int& position, CArray<CNewMenu*, CNewMenu*>& menus,
                                          CArray<int, int>& positions)
{
    const int n = ::GetMenuItemCount(m_hMenu);
    for (int i = 0; i < n; ++i) {
        HMENU sub = ::GetSubMenu(m_hMenu, i);
        if (sub) {
            if (CNewMenu* child = NewMenuOf(sub)) {
                if (CNewMenu* found = child->FindAnotherMenuOption(id, position, menus, positions))
                    return found;
            }
            continue;
        }
        if (static_cast<int>(::GetMenuItemID(m_hMenu, i)) != id || i >= m_MenuItemList.GetSize())
            continue;
        bool visited = false;
        for (int k = 0; k < menus.GetSize() && !visited; ++k)
            visited = menus.GetAt(k) == this && positions.GetAt(k) == i;
        if (visited)
            continue;
        menus.Add(this);
        positions.Add(i);
        position = i;
        return this;
    }
    position = -1;
    return nullptr;
}

CNewMenuItemData* CNewMenu::FindMenuList(UINT id)
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
        auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (data->m_nID == id && !data->m_nSyncFlag) {
            data->m_nSyncFlag = 1;
            return data;
        }
    }
    return nullptr;
}

CNewMenuItemData* CNewMenu::CheckMenuItemData(UINT_PTR data) const
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
        auto* item = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (reinterpret_cast<UINT_PTR>(item) == data)
            return item;
    }
    return nullptr;
}

CNewMenuItemData* CNewMenu::DataOf(ULONG_PTR itemData) const
{
    // A sub-menu's item is measured by the sub-menu (its id is the
    // sub-menu's handle), so the data may be its parent's.
    auto* data = reinterpret_cast<CNewMenuItemData*>(itemData);
    return LiveItems().count(data) ? data : nullptr;
}

int CNewMenu::GetMenuPosition(LPCSTR text)
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
        auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (text && data->m_szMenuText == text)
            return i;
    }
    return -1;
}

CMenu* CNewMenu::GetSubMenu(int position) const
{
    return CMenu::GetSubMenu(position);
}

CMenu* CNewMenu::GetSubMenu(LPCSTR text) const
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
        auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (text && data->m_szMenuText == text)
            return CMenu::GetSubMenu(i);
    }
    return nullptr;
}

CNewMenu* CNewMenu::FindPopupMenuFromID(HMENU menu, UINT id)
{
    CNewMenu* self = NewMenuOf(menu);
    if (!self)
        return nullptr;
    if (HandleId(menu) == id)
        return self;
    const int n = ::GetMenuItemCount(menu);
    for (int i = 0; i < n; ++i) {
        HMENU sub = ::GetSubMenu(menu, i);
        if (sub) {
            if (HandleId(sub) == id)
                return self;
            if (CNewMenu* found = FindPopupMenuFromID(sub, id))
                return found;
        } else if (::GetMenuItemID(menu, i) == id) {
            return self;
        }
    }
    return nullptr;
}

CNewMenu* CNewMenu::FindPopupMenuFromIDData(HMENU menu, UINT id, ULONG_PTR data)
{
    CNewMenu* self = NewMenuOf(menu);
    if (!self)
        return nullptr;
    // The item data of an owner-drawn item is ours: the list answers
    // without asking the menu for every item.
    for (int i = 0; i < self->m_MenuItemList.GetSize(); ++i) {
        auto* item = static_cast<CNewMenuItemData*>(self->m_MenuItemList.GetAt(i));
        if (reinterpret_cast<ULONG_PTR>(item) == data && item->m_nID == id)
            return self;
    }
    const int n = ::GetMenuItemCount(menu);
    for (int i = 0; i < n; ++i) {
        HMENU sub = ::GetSubMenu(menu, i);
        if (!sub) {
            MENUITEMINFOA info{};
            info.cbSize = sizeof info;
            info.fMask = MIIM_ID | MIIM_DATA;
            if (self->m_MenuItemList.GetSize() != n && ::GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &info) &&
                info.wID == id && info.dwItemData == data)
                return self;
            continue;
        }
        MENUITEMINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_DATA;
        ::GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &info);
        if (HandleId(sub) == id && info.dwItemData == data)
            return self;
        if (CNewMenu* found = FindPopupMenuFromIDData(sub, id, data))
            return found;
    }
    return nullptr;
}

BOOL CNewMenu::IsMenuBar(HMENU menu)
{
    if (!::IsMenu(menu))
        return FALSE;
    CNewMenu* self = NewMenuOf(menu);
    if (!self)
        return FALSE;
    if (!self->m_hParentMenu)
        return !self->m_bIsPopupMenu;
    if (CNewMenu* parent = NewMenuOf(self->m_hParentMenu))
        return !parent->m_bIsPopupMenu;
    return TRUE;
}

// --- synchronisation ------------------------------------------------------------------------

CNewMenuItemData* CNewMenu::NewODMenu(UINT position, UINT flags, UINT_PTR id, CString text)
{
    auto* data = new CNewMenuItemData;
    data->m_nFlags = flags;
    data->m_nID = static_cast<UINT>(id);
    data->SetString(text);
    data->m_nSyncFlag = 1;
    LPCSTR item = text;
    if (flags & MF_OWNERDRAW)
        item = reinterpret_cast<LPCSTR>(data);
    else if (flags & MF_BITMAP)
        item = reinterpret_cast<LPCSTR>(static_cast<UINT_PTR>(id));
    else if (flags & MF_SEPARATOR)
        item = nullptr;
    if (!::ModifyMenuA(m_hMenu, position, flags | MF_BYPOSITION, id, item))
        ShowLastError();
    return data;
}

void CNewMenu::DeleteMenuList()
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i) {
        auto* data = static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i));
        if (!data->m_nSyncFlag)
            delete data;
    }
}

void CNewMenu::SynchronizeMenu()
{
    if (!m_hMenu)
        return;
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i)
        static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i))->m_nSyncFlag = 0;
    CPtrArray fresh;
    for (UINT i = 0;; ++i) {
        const UINT state = ::GetMenuState(m_hMenu, i, MF_BYPOSITION);
        if (state == 0xFFFFFFFF)
            break;
        const UINT keep = state & (MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_DEFAULT | MF_MENUBARBREAK |
                                   MF_MENUBREAK | MFT_RADIOCHECK);
        CNewMenuItemData* data = nullptr;
        if (state & MF_BITMAP) {
            const UINT id = ::GetMenuItemID(m_hMenu, static_cast<int>(i));
            data = FindMenuList(id);
            if (!data) {
                data = new CNewMenuItemData;
                data->m_nID = id;
                data->m_nFlags = state & 0xFF;
                data->m_nSyncFlag = 1;
            }
        } else if (state & MF_POPUP) {
            HMENU sub = ::GetSubMenu(m_hMenu, static_cast<int>(i));
            const CString caption = ReadCaption(m_hMenu, i);
            data = FindMenuList(HandleId(sub));
            if (!data) {
                data = NewODMenu(i, ((state & 0xFF) & ~(0x200u | 0x800u)) | 0x510 | (keep & ~0x200u),
                                 reinterpret_cast<UINT_PTR>(sub), caption);
            } else {
                if (!caption.IsEmpty())
                    data->SetString(caption);
                ::ModifyMenuA(m_hMenu, i, MF_BYPOSITION | MF_POPUP | MF_OWNERDRAW | (keep & ~0x200u),
                              reinterpret_cast<UINT_PTR>(sub), reinterpret_cast<LPCSTR>(data));
            }
            if (CNewMenu* child = NewMenuOf(sub); child && child->m_hParentMenu != m_hMenu)
                child->m_hParentMenu = m_hMenu;
        } else if (state & MF_SEPARATOR) {
            data = FindMenuList(0);
            if (data) {
                data->m_nFlags |= 0x500;
                ::ModifyMenuA(m_hMenu, i, data->m_nFlags | MF_SEPARATOR | MF_BYPOSITION | keep, 0,
                              reinterpret_cast<LPCSTR>(data));
            } else {
                data = NewODMenu(i, MF_SEPARATOR | MF_OWNERDRAW | keep, 0, CString());
            }
        } else {
            const UINT id = ::GetMenuItemID(m_hMenu, static_cast<int>(i));
            const CString caption = ReadCaption(m_hMenu, i);
            data = FindMenuList(id);
            if (data) {
                data->m_nFlags |= 0x500;
                if (!caption.IsEmpty())
                    data->SetString(caption);
                ::ModifyMenuA(m_hMenu, i, MF_BYPOSITION | MF_OWNERDRAW | keep, id, reinterpret_cast<LPCSTR>(data));
            } else {
                data = NewODMenu(i, MF_OWNERDRAW | keep, id, caption);
            }
        }
        fresh.Add(data);
    }
    DeleteMenuList();
    m_MenuItemList.RemoveAll();
    for (int i = 0; i < fresh.GetSize(); ++i)
        m_MenuItemList.Add(fresh.GetAt(i));
}

void CNewMenu::InitExchange()
{
    for (int i = 0; i < m_MenuItemList.GetSize(); ++i)
        static_cast<CNewMenuItemData*>(m_MenuItemList.GetAt(i))->m_nSyncFlag = 0;
    DeleteMenuList();
    m_MenuItemList.RemoveAll();
    SynchronizeMenu();
}

// --- texts and titles ---------------------------------------------------------------------------

BOOL CNewMenu::GetMenuText(UINT id, CString& text, UINT flags)
{
    if (flags & MF_BYPOSITION) {
        CNewMenuItemData* data = GetItem(static_cast<int>(id));
        if (!data)
            return FALSE;
        text = data->m_szMenuText;
        return TRUE;
    }
    int position = -1;
    CNewMenu* owner = FindMenuOption(static_cast<int>(id), position);
    if (!owner || !owner->GetItem(position))
        return FALSE;
    text = owner->GetItem(position)->m_szMenuText;
    return TRUE;
}

BOOL CNewMenu::SetMenuText(UINT id, CString text, UINT flags)
{
    CNewMenu* owner = this;
    int position = static_cast<int>(id);
    if (!(flags & MF_BYPOSITION))
        owner = FindMenuOption(static_cast<int>(id), position);
    CNewMenuItemData* data = owner ? owner->GetItem(position) : nullptr;
    if (!data)
        return FALSE;
    data->SetString(text);
    return TRUE;
}

BOOL CNewMenu::SetMenuTitle(LPCSTR title, DWORD flags, int)
{
    if (::GetMenuItemCount(m_hMenu) != m_MenuItemList.GetSize())
        SynchronizeMenu();
    CNewMenuItemData* first = GetItem(0);
    if (!first || !(first->m_nFlags & MF_SEPARATOR) || !first->m_nTitleFlags) {
        if (!first || !(first->m_nFlags & MF_SEPARATOR)) {
            if (!InsertODMenu(0, title, MF_SEPARATOR | MF_BYPOSITION, 0, static_cast<CNewMenuIcons*>(nullptr), -1))
                return FALSE;
        }
        first = GetItem(0);
    }
    first->SetString(title);
    first->m_nTitleFlags = flags | MFT_TITLE;
    if (::GetMenuItemCount(m_hMenu) > 1) {
        // A side title is a column of its own: the rest starts a new one.
        const UINT state = ::GetMenuState(m_hMenu, 1, MF_BYPOSITION);
        CNewMenuItemData* second = GetItem(1);
        if (second && state != 0xFFFFFFFF && !(state & MF_POPUP)) {
            UINT type = (state & 0xFF) & ~(MF_MENUBARBREAK | MF_MENUBREAK);
            if (flags & MFT_SIDE_TITLE)
                type |= MF_MENUBREAK;
            second->m_nFlags = (second->m_nFlags & ~(MF_MENUBARBREAK | MF_MENUBREAK)) |
                               ((flags & MFT_SIDE_TITLE) ? MF_MENUBREAK : 0);
            ::ModifyMenuA(m_hMenu, 1, MF_BYPOSITION | MF_OWNERDRAW | type, second->m_nID,
                          reinterpret_cast<LPCSTR>(second));
        } else if (second && (state & MF_POPUP)) {
            UINT type = ((state & 0xFF) & ~(MF_MENUBARBREAK | MF_MENUBREAK)) | MF_POPUP | MF_OWNERDRAW;
            if (flags & MFT_SIDE_TITLE)
                type |= MF_MENUBREAK;
            ::ModifyMenuA(m_hMenu, 1, MF_BYPOSITION | type, reinterpret_cast<UINT_PTR>(::GetSubMenu(m_hMenu, 1)),
                          reinterpret_cast<LPCSTR>(second));
        }
    }
    return TRUE;
}

BOOL CNewMenu::RemoveMenuTitle()
{
    CNewMenuItemData* first = GetItem(0);
    if (!first || !(first->m_nTitleFlags & MFT_TITLE))
        return FALSE;
    if (CNewMenuItemData* second = GetItem(1)) {
        const UINT state = ::GetMenuState(m_hMenu, 1, MF_BYPOSITION);
        second->m_nFlags &= ~(MF_MENUBARBREAK | MF_MENUBREAK);
        if (state != 0xFFFFFFFF) {
            const UINT type = (state & 0xFF) & ~(MF_MENUBARBREAK | MF_MENUBREAK);
            if (state & MF_POPUP)
                ::ModifyMenuA(m_hMenu, 1, MF_BYPOSITION | MF_POPUP | MF_OWNERDRAW | type,
                              reinterpret_cast<UINT_PTR>(::GetSubMenu(m_hMenu, 1)), reinterpret_cast<LPCSTR>(second));
            else
                ::ModifyMenuA(m_hMenu, 1, MF_BYPOSITION | MF_OWNERDRAW | type, second->m_nID,
                              reinterpret_cast<LPCSTR>(second));
        }
    }
    return RemoveMenu(0, MF_BYPOSITION);
}

// --- state ---------------------------------------------------------------------------------------

BOOL CNewMenu::SetPopup(BOOL popup)
{
    return std::exchange(m_bIsPopupMenu, popup);
}

void CNewMenu::SetLastMenuRect(HDC dc, LPRECT rect)
{
    if (!rect)
        return;
    RECT r = *rect;
    HWND window = WindowFromDC(dc);
    POINT corners[2] = {{r.left, r.top}, {r.right, r.bottom}};
    if (window) {
        ::ClientToScreen(window, &corners[0]);
        ::ClientToScreen(window, &corners[1]);
    }
    m_LastActiveMenuRect = RECT{corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

void CNewMenu::SetIconSize(int width, int height)
{
    m_iconX = width;
    m_iconY = height;
}

COLORREF CNewMenu::SetBitmapBackground(COLORREF color)
{
    return std::exchange(m_bitmapBackground, color);
}

COLORREF CNewMenu::GetBitmapBackground() const
{
    return m_bitmapBackground == 0xFF000000 ? GetSysColor(COLOR_BTNFACE) : m_bitmapBackground;
}

BOOL CNewMenu::SetItemData(UINT id, DWORD_PTR value, BOOL byPosition)
{
    CNewMenuItemData* data = byPosition ? GetItem(static_cast<int>(id)) : FindMenuItem(id);
    if (!data)
        return FALSE;
    data->m_pData = value;
    return TRUE;
}

BOOL CNewMenu::SetItemDataPtr(UINT id, void* value, BOOL byPosition)
{
    return SetItemData(id, reinterpret_cast<DWORD_PTR>(value), byPosition);
}

DWORD_PTR CNewMenu::GetItemData(UINT id, BOOL byPosition) const
{
    auto* self = const_cast<CNewMenu*>(this);
    CNewMenuItemData* data = byPosition ? GetItem(static_cast<int>(id)) : self->FindMenuItem(id);
    return data ? data->m_pData : 0xFFFFFFFF;
}

void* CNewMenu::GetItemDataPtr(UINT id, BOOL byPosition) const
{
    const DWORD_PTR v = GetItemData(id, byPosition);
    return v == 0xFFFFFFFF ? nullptr : reinterpret_cast<void*>(v);
}

// --- message routers -----------------------------------------------------------------------------

BOOL CNewMenu::OnMeasureItem(const MSG* msg)
{
    if (!msg || msg->message != WM_MEASUREITEM)
        return FALSE;
    auto* mis = reinterpret_cast<LPMEASUREITEMSTRUCT>(msg->lParam);
    if (!mis || mis->CtlType != ODT_MENU)
        return FALSE;
    CNewMenu* menu = nullptr;
    if (HMENU h = IdHandle(mis->itemID); ::IsMenu(h))
        menu = NewMenuOf(h);
    if (!menu) {
        HWND tracked = nullptr;
        HMENU top = vx::TrackedMenu(&tracked);
        if (top && tracked == msg->hwnd)
            menu = FindPopupMenuFromIDData(top, mis->itemID, mis->itemData);
        if (!menu && CMenuWindowHook::Instance().m_hLastMenu)
            menu = FindPopupMenuFromIDData(CMenuWindowHook::Instance().m_hLastMenu, mis->itemID, mis->itemData);
        if (!menu)
            menu = FindPopupMenuFromIDData(::GetMenu(msg->hwnd), mis->itemID, mis->itemData);
        if (!menu)
            menu = FindPopupMenuFromIDData(::GetSystemMenu(msg->hwnd, FALSE), mis->itemID, mis->itemData);
    }
    if (!menu)
        return FALSE;
    menu->MeasureItem(mis);
    return TRUE;
}

LRESULT CNewMenu::OnInitMenuPopup(HWND hwnd, CMenu* popup, UINT, BOOL)
{
    CMenuWindowHook& hook = CMenuWindowHook::Instance();
    hook.m_hLastMenu = popup ? popup->m_hMenu : nullptr;
    if (!popup)
        return 0;
    auto* menu = dynamic_cast<CNewMenu*>(popup);
    if (!menu)
        return 0;
    menu->m_hOwnerWnd = hwnd;
    menu->OnInitMenuPopup();
    if (CNewMenu* parent = NewMenuOf(menu->m_hParentMenu)) {
        ++parent->m_dwOpenMenu;
        if (parent->m_dwOpenMenu == 1 && !parent->m_bIsPopupMenu) {
            parent->m_hOwnerWnd = hwnd;
            parent->RepaintBarEntry();
        }
    }
    return 0;
}

LRESULT CNewMenu::FindKeyboardShortcut(UINT ch, UINT, CMenu* menu)
{
    auto* self = dynamic_cast<CNewMenu*>(menu);
    if (!self)
        return 0;
    CString key("&");
    key += static_cast<char>(ch);
    key.MakeLower();
    if (::GetMenuItemCount(self->m_hMenu) != self->m_MenuItemList.GetSize())
        self->SynchronizeMenu();
    for (int i = 0; i < self->m_MenuItemList.GetSize(); ++i) {
        CString caption = static_cast<CNewMenuItemData*>(self->m_MenuItemList.GetAt(i))->m_szMenuText;
        caption.MakeLower();
        if (caption.Find(key) >= 0)
            return MAKELRESULT(i, MNC_EXECUTE);
    }
    return 0;
}

void CNewMenu::OnSysColorChange()
{
    // The system sends the message in bursts: once in 2 seconds is enough.
    static DWORD last = 0;
    static bool ever = false;
    const DWORD now = GetTickCount();
    if (ever && now - last < 2000)
        return;
    ever = true;
    last = now;
    if (!m_pSharedMenuIcons)
        return;
    for (CNewMenuIcons* icons : *m_pSharedMenuIcons)
        icons->OnSysColorChange();
}

// --- colours --------------------------------------------------------------------------------------

namespace {

bool BrushColor(HMENU menu, COLORREF* color)
{
    if (!menu)
        return false;
    MENUINFO info{};
    info.cbSize = 28;
    info.fMask = MIM_BACKGROUND;
    if (!::GetMenuInfo(menu, &info) || !info.hbrBack)
        return false;
    LOGBRUSH lb{};
    if (!GetObjectA(info.hbrBack, sizeof lb, &lb))
        return false;
    *color = lb.lbColor;
    return true;
}

} // namespace

COLORREF CNewMenu::GetMenuColor(HMENU menu)
{
    COLORREF c = 0;
    if (BrushColor(menu, &c))
        return c;
    if (g_Shell == WinXP) {
        BOOL flat = FALSE;
        if (SystemParametersInfoA(SPI_GETFLATMENU, 0, &flat, 0) && flat)
            return GetSysColor(COLOR_MENUBAR);
    }
    return GetSysColor(COLOR_MENU);
}

COLORREF CNewMenu::GetMenuBarColor(HMENU menu)
{
    COLORREF c = 0;
    if (BrushColor(menu, &c))
        return c;
    if (g_Shell == WinXP) {
        BOOL flat = FALSE;
        if (!SystemParametersInfoA(SPI_GETFLATMENU, 0, &flat, 0) || !flat)
            (void)CMenuWindowHook::Instance().IsThemeActive(); // asked, as ever; the answer is not used
    }
    return GetSysColor(COLOR_MENU);
}

COLORREF CNewMenu::GetMenuBarColorXP()
{
    if (g_Shell == Win95 || g_Shell == WinNT4)
        return GetSysColor(COLOR_MENU);
    return GetSysColor(COLOR_BTNFACE);
}

COLORREF CNewMenu::GetMenuBarColor2003()
{
    if (g_Shell == Win95 || g_Shell == WinNT4)
        return GetSysColor(COLOR_MENU);
    if (m_InitColor)
        return m_InitColor;
    COLORREF c = BlendColor(DarkenColor(10, GetSysColor(COLOR_WINDOW)), GetSysColor(COLOR_ACTIVECAPTION));
    HDC screen = GetDC(nullptr);
    c = GetNearestColor(screen, c);
    ReleaseDC(nullptr, screen);
    switch (c) {
    case 0xF0C5AC: return 0xF5C2A3;
    case 0xE6E6E6: return 0xE5D7D7;
    case 0xCCDCD6: return 0xAADADA;
    default: return c;
    }
}
