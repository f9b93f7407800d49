// The images of CNewMenu's items: icon lists shared between menus, tool
// bars, check-mark bitmaps.
#include "menus/cnewmenu.h"

#include "ui/gdi/wingdi.h"
#include "ui/images/cbitmap.h"

#include <algorithm>

namespace {

std::vector<CNewMenuIcons*>& Shared()
{
    if (!CNewMenu::m_pSharedMenuIcons)
        CNewMenu::m_pSharedMenuIcons = new std::vector<CNewMenuIcons*>;
    return *CNewMenu::m_pSharedMenuIcons;
}

// The shared list of single images of this size, made on first need.
CNewMenuBitmaps* SingleImages(CSize size)
{
    for (CNewMenuIcons* icons : Shared()) {
        auto* bitmaps = dynamic_cast<CNewMenuBitmaps*>(icons);
        if (bitmaps && (!bitmaps->m_IconsList.m_hImageList || bitmaps->m_IconsList.GetImageSize() == size))
            return bitmaps;
    }
    auto* bitmaps = new CNewMenuBitmaps;
    Shared().push_back(bitmaps);
    return bitmaps;
}

// The shared icons that `match`, or new ones that `load` fills and that join
// the shared list; null when loading fails.
template <class Match, class Load>
CNewMenuIcons* SharedOrLoaded(Match match, Load load)
{
    for (CNewMenuIcons* shared : Shared()) {
        if (match(*shared))
            return shared;
    }
    auto* icons = new CNewMenuIcons;
    if (!load(*icons)) {
        delete icons;
        return nullptr;
    }
    Shared().push_back(icons);
    return icons;
}

// Every command of `icons` takes its image in `menu`; FALSE for no icons.
BOOL GiveIcons(CNewMenu& menu, CNewMenuIcons* icons)
{
    if (!icons)
        return FALSE;
    for (int i = 0; i < icons->m_IDs.GetSize(); ++i)
        menu.ModifyODMenu(nullptr, icons->m_IDs.GetAt(i), icons, 3 * i);
    return TRUE;
}

} // namespace

CNewMenuIcons* CNewMenu::GetMenuIcon(int& offset, int id)
{
    offset = -1;
    for (CNewMenuIcons* icons : Shared()) {
        const int found = icons->FindIndex(static_cast<UINT>(id));
        if (found >= 0) {
            offset = found;
            return icons;
        }
    }
    HBITMAP probe = LoadBitmapA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(id)));
    if (!probe)
        return nullptr;
    BITMAP info{};
    GetObjectA(probe, sizeof info, &info);
    DeleteObject(probe);
    CNewMenuBitmaps* bitmaps = SingleImages(CSize(info.bmWidth, info.bmHeight));
    offset = bitmaps->AddResource(static_cast<UINT>(id));
    return offset >= 0 ? bitmaps : nullptr;
}

CNewMenuIcons* CNewMenu::GetMenuIcon(int& offset, CBitmap* bitmap)
{
    offset = -1;
    if (!bitmap || !bitmap->m_hObject)
        return nullptr;
    CNewMenuBitmaps* bitmaps = SingleImages(bitmap->GetSize());
    offset = bitmaps->AddBitmap(bitmap);
    return offset >= 0 ? bitmaps : nullptr;
}

CNewMenuIcons* CNewMenu::GetMenuIcon(int& offset, CImageList* list, int index)
{
    offset = -1;
    if (!list || !list->m_hImageList || index < 0)
        return nullptr;
    HICON icon = list->ExtractIcon(index);
    if (!icon)
        return nullptr;
    CNewMenuBitmaps* bitmaps = SingleImages(list->GetImageSize());
    offset = bitmaps->AddIcon(icon, 0);
    DestroyIcon(icon);
    return offset >= 0 ? bitmaps : nullptr;
}

void CNewMenu::UpdateImageOffset(UINT id, CNewMenuIcons* icons, int offset)
{
    if (CNewMenuItemData* data = FindMenuItem(id)) {
        data->SetIcons(icons);
        data->m_nMenuIconOffset = icons ? offset : -1;
    }
}

BOOL CNewMenu::LoadToolBar(UINT toolbarId, HINSTANCE instance)
{
    if (!m_Enable)
        return TRUE;
    return LoadToolBar(MAKEINTRESOURCE(toolbarId), instance);
}

BOOL CNewMenu::LoadToolBar(LPCSTR toolbarName, HINSTANCE instance)
{
    CNewMenuIcons* icons =
        SharedOrLoaded([&](CNewMenuIcons& shared) { return shared.DoMatch(toolbarName, instance); },
                       [&](CNewMenuIcons& fresh) { return fresh.LoadToolBar(toolbarName, instance); });
    return GiveIcons(*this, icons);
}

BOOL CNewMenu::LoadToolBar(const WORD* iconInfo, COLORREF transparent)
{
    CNewMenuIcons* icons =
        SharedOrLoaded([&](CNewMenuIcons& shared) { return shared.DoMatch(iconInfo, transparent); },
                       [&](CNewMenuIcons& fresh) { return fresh.LoadToolBar(iconInfo, transparent); });
    return GiveIcons(*this, icons);
}

BOOL CNewMenu::LoadToolBars(const UINT* toolbarIds, int count, HINSTANCE instance)
{
    BOOL ok = TRUE;
    for (int i = 0; toolbarIds && i < count; ++i)
        ok = LoadToolBar(toolbarIds[i], instance) && ok;
    return ok;
}

BOOL CNewMenu::LoadFromToolBar(UINT id, UINT toolbarId, int& offset)
{
    const std::vector<WORD> words = vx::ToolBarResource(MAKEINTRESOURCE(toolbarId));
    if (words.size() < 4)
        return FALSE;
    int image = 0;
    for (std::size_t i = 4; i < words.size() && i < 4u + words[3]; ++i) {
        if (!words[i])
            continue;
        if (words[i] == id) {
            if (image > 0)
                offset = image;
            return TRUE;
        }
        ++image;
    }
    return FALSE;
}

void CNewMenu::LoadCheckmarkBitmap(int unselected, int selected)
{
    if (unselected <= 0 || selected <= 0)
        return;
    m_selectcheck = selected;
    m_unselectcheck = unselected;
    if (m_checkmaps && !m_checkmapsShare)
        delete m_checkmaps;
    m_checkmaps = new CImageList;
    m_checkmapsShare = FALSE;
    m_checkmaps->Create(m_iconX, m_iconY, ILC_MASK, 2, 1);
    if (!AddBitmapToImageList(m_checkmaps, static_cast<UINT>(unselected)) ||
        !AddBitmapToImageList(m_checkmaps, static_cast<UINT>(selected))) {
        delete m_checkmaps;
        m_checkmaps = nullptr;
    }
}

BOOL CNewMenu::AddBitmapToImageList(CImageList* list, UINT resourceId)
{
    if (!list)
        return FALSE;
    HBITMAP bitmap = LoadSysColorBitmap(static_cast<int>(resourceId));
    if (!bitmap)
        bitmap = LoadBitmapA(nullptr, MAKEINTRESOURCE(resourceId));
    if (!bitmap)
        return FALSE;
    const BOOL ok = ImageList_AddMasked(list->m_hImageList, bitmap, GetBitmapBackground()) >= 0;
    DeleteObject(bitmap);
    return ok;
}

HBITMAP CNewMenu::LoadSysColorBitmap(int resourceId)
{
    // Only 16-colour images follow the system colours.
    HBITMAP bitmap = LoadBitmapA(nullptr, MAKEINTRESOURCE(static_cast<UINT>(resourceId)));
    if (!bitmap)
        return nullptr;
    BITMAP info{};
    GetObjectA(bitmap, sizeof info, &info);
    if (info.bmBitsPixel != 4) {
        DeleteObject(bitmap);
        return nullptr;
    }
    return bitmap;
}
