#include "menus/cnewmenuicons.h"

#include "menus/cnewmenu.h"
#include "menus/menucolors.h"

#include "ui/gdi/wingdi.h"
#include "ui/images/cbitmap.h"

#include <cstring>

namespace {

// The pixels of image `index` as a bitmap the caller deletes, with its mask.
bool ImageOf(CImageList& list, int index, HBITMAP* image, HBITMAP* mask, CSize* size)
{
    IMAGEINFO info{};
    if (!list.GetImageInfo(index, &info))
        return false;
    // The copies hold exactly the one image.
    *image = info.hbmImage;
    *mask = info.hbmMask;
    *size = CSize(info.rcImage.right - info.rcImage.left, info.rcImage.bottom - info.rcImage.top);
    if (info.rcImage.left || info.rcImage.top) {
        HDC screen = GetDC(nullptr);
        auto crop = [&](HBITMAP& bitmap, bool mono) {
            if (!bitmap)
                return;
            HBITMAP part = mono ? CreateBitmap(size->cx, size->cy, 1, 1, nullptr)
                                : CreateCompatibleBitmap(screen, size->cx, size->cy);
            HDC from = CreateCompatibleDC(screen);
            HDC to = CreateCompatibleDC(screen);
            HGDIOBJ a = SelectObject(from, bitmap);
            HGDIOBJ b = SelectObject(to, part);
            BitBlt(to, 0, 0, size->cx, size->cy, from, info.rcImage.left, info.rcImage.top, SRCCOPY);
            SelectObject(from, a);
            SelectObject(to, b);
            DeleteDC(from);
            DeleteDC(to);
            DeleteObject(bitmap);
            bitmap = part;
        };
        crop(*image, false);
        crop(*mask, true);
        ReleaseDC(nullptr, screen);
    }
    return *image != nullptr;
}

// Derives an image pixel by pixel, with a one-entry cache of the last colour.
template <class Fn>
void Transform(HBITMAP bitmap, CSize size, Fn fn)
{
    CBitmap* pixels = CBitmap::FromHandle(bitmap);
    COLORREF lastIn = CLR_INVALID;
    COLORREF lastOut = 0;
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            const COLORREF c = pixels->GetPixel(x, y);
            if (c != lastIn) {
                lastIn = c;
                lastOut = fn(c);
            }
            pixels->SetPixel(x, y, lastOut);
        }
    }
}

int Store(CImageList& list, int index, HBITMAP image, HBITMAP mask)
{
    if (index == -1)
        return ImageList_Add(list.m_hImageList, image, mask);
    return ImageList_Replace(list.m_hImageList, index, image, mask) ? index : -1;
}

} // namespace


CNewMenuIcons::CNewMenuIcons() = default;

CNewMenuIcons::~CNewMenuIcons()
{
    SetResourceName(nullptr);
}

void CNewMenuIcons::SetResourceName(LPCSTR name)
{
    if (m_lpszResourceName && !IS_INTRESOURCE(m_lpszResourceName))
        delete[] m_lpszResourceName;
    m_lpszResourceName = nullptr;
    if (!name)
        return;
    if (IS_INTRESOURCE(name)) {
        m_lpszResourceName = name;
        return;
    }
    char* copy = new char[std::strlen(name) + 1];
    std::strcpy(copy, name);
    m_lpszResourceName = copy;
}

int CNewMenuIcons::FindIndex(UINT id) const
{
    for (int i = m_IDs.GetSize() - 1; i >= 0; --i) {
        if (m_IDs.GetAt(i) == id)
            return 3 * i;
    }
    return -1;
}

int CNewMenuIcons::MakeShadow(int source, int index)
{
    HBITMAP image = nullptr;
    HBITMAP mask = nullptr;
    CSize size;
    if (!ImageOf(m_IconsList, source, &image, &mask, &size))
        return -1;
    Transform(image, size, [](COLORREF c) { return DarkenColor(50, c); });
    const int at = Store(m_IconsList, index, image, mask);
    DeleteObject(image);
    if (mask)
        DeleteObject(mask);
    return at;
}

int CNewMenuIcons::MakeGloom(int source, int index)
{
    HBITMAP image = nullptr;
    HBITMAP mask = nullptr;
    CSize size;
    if (!ImageOf(m_IconsList, source, &image, &mask, &size))
        return -1;
    const COLORREF bar = CNewMenu::GetMenuBarColor(nullptr);
    Transform(image, size, [bar](COLORREF c) { return MixColor(LightenColor(100, GrayColor(c)), bar); });
    const int at = Store(m_IconsList, index, image, mask);
    DeleteObject(image);
    if (mask)
        DeleteObject(mask);
    return at;
}

void CNewMenuIcons::MakeShadowGloom(int source)
{
    MakeShadow(source, -1);
    MakeGloom(source, -1);
}

void CNewMenuIcons::Rebuild()
{
    const int n = m_IconsList.GetImageCount();
    if (n <= 0)
        return;
    const CSize size = m_IconsList.GetImageSize();
    CImageList plain;
    plain.Create(size.cx, size.cy, ILC_COLORDDB | ILC_MASK, n, 10);
    for (int i = 0; i < n; ++i) {
        HBITMAP image = nullptr;
        HBITMAP mask = nullptr;
        CSize s;
        if (ImageOf(m_IconsList, i, &image, &mask, &s)) {
            ImageList_Add(plain.m_hImageList, image, mask);
            DeleteObject(image);
            if (mask)
                DeleteObject(mask);
        }
    }
    m_IconsList.DeleteImageList();
    m_IconsList.Create(size.cx, size.cy, ILC_COLORDDB | ILC_MASK, 0, 10);
    // The pixels pass from one derived image to the next through a buffer
    // of width times height times 4 bytes.
    std::vector<BYTE> buffer(static_cast<std::size_t>(size.cx) * size.cy * 4);
    for (int i = 0; i < plain.GetImageCount(); ++i) {
        HBITMAP image = nullptr;
        HBITMAP mask = nullptr;
        CSize s;
        if (!ImageOf(plain, i, &image, &mask, &s))
            continue;
        GetBitmapBits(image, static_cast<LONG>(buffer.size()), buffer.data());
        const int at = ImageList_Add(m_IconsList.m_hImageList, image, mask);
        DeleteObject(image);
        if (mask)
            DeleteObject(mask);
        if (at >= 0)
            MakeShadowGloom(at);
    }
}

BOOL CNewMenuIcons::LoadBitmap(int width, int height, LPCSTR resourceName, HINSTANCE instance)
{
    HBITMAP bitmap = LoadBitmapA(instance, resourceName);
    if (!bitmap)
        return FALSE;
    BITMAP info{};
    GetObjectA(bitmap, sizeof info, &info);
    switch (info.bmBitsPixel) {
    case 1: m_nColors = 2; break;
    case 4: m_nColors = 16; break;
    case 8: m_nColors = 256; break;
    default: m_nColors = 0; break;
    }
    m_IconsList.DeleteImageList();
    m_IconsList.Create(width, height, 0xFF, 0, 10);
    const COLORREF mask = m_crTransparent == CLR_NONE ? RGB(192, 192, 192) : m_crTransparent;
    const BOOL ok = ImageList_AddMasked(m_IconsList.m_hImageList, bitmap, mask) >= 0;
    DeleteObject(bitmap);
    return ok;
}

BOOL CNewMenuIcons::LoadBitmap(int width, int height, const UINT* bitmapIds)
{
    if (!bitmapIds)
        return FALSE;
    m_IconsList.DeleteImageList();
    m_IconsList.Create(width, height, 0xFF, 0, 10);
    const COLORREF mask = m_crTransparent == CLR_NONE ? RGB(192, 192, 192) : m_crTransparent;
    for (const UINT* id = bitmapIds; *id; ++id) {
        HBITMAP bitmap = LoadBitmapA(nullptr, MAKEINTRESOURCE(*id));
        if (!bitmap)
            return FALSE;
        ImageList_AddMasked(m_IconsList.m_hImageList, bitmap, mask);
        DeleteObject(bitmap);
    }
    return TRUE;
}

BOOL CNewMenuIcons::LoadToolBar(const UINT* bitmapIds, const UINT* ids, COLORREF transparent)
{
    if (!bitmapIds || !ids)
        return FALSE;
    m_crTransparent = transparent;
    if (!LoadBitmap(16, 15, bitmapIds))
        return FALSE;
    m_IDs.RemoveAll();
    for (const UINT* id = ids; *id; ++id)
        m_IDs.Add(*id);
    Rebuild();
    return m_IDs.GetSize() > 0;
}

BOOL CNewMenuIcons::LoadToolBar(const WORD* iconInfo, COLORREF transparent)
{
    if (!iconInfo || !iconInfo[0])
        return FALSE;
    m_crTransparent = transparent;
    SetResourceName(MAKEINTRESOURCE(iconInfo[0]));
    if (!LoadBitmap(iconInfo[1], iconInfo[2], m_lpszResourceName, nullptr))
        return FALSE;
    m_IDs.RemoveAll();
    for (const WORD* id = iconInfo + 3; *id; ++id)
        m_IDs.Add(*id);
    Rebuild();
    return m_IDs.GetSize() > 0;
}

BOOL CNewMenuIcons::LoadToolBar(LPCSTR resourceName, HINSTANCE instance)
{
    const std::vector<WORD> words = vx::ToolBarResource(resourceName);
    if (words.size() < 4)
        return FALSE;
    SetResourceName(resourceName);
    m_hInst = instance;
    if (!LoadBitmap(words[1], words[2], resourceName, instance))
        return FALSE;
    m_IDs.RemoveAll();
    for (std::size_t i = 4; i < words.size() && i < 4u + words[3]; ++i) {
        if (words[i])
            m_IDs.Add(words[i]);
    }
    Rebuild();
    return m_IDs.GetSize() > 0;
}

BOOL CNewMenuIcons::DoMatch(LPCSTR resourceName, HINSTANCE instance)
{
    if (instance != m_hInst || !resourceName || !m_lpszResourceName)
        return FALSE;
    if (IS_INTRESOURCE(resourceName) || IS_INTRESOURCE(m_lpszResourceName))
        return resourceName == m_lpszResourceName;
    return std::strcmp(resourceName, m_lpszResourceName) == 0;
}

BOOL CNewMenuIcons::DoMatch(const WORD* iconInfo, COLORREF transparent)
{
    if (!iconInfo || transparent != m_crTransparent || !IS_INTRESOURCE(m_lpszResourceName) ||
        reinterpret_cast<ULONG_PTR>(m_lpszResourceName) != iconInfo[0])
        return FALSE;
    const WORD* id = iconInfo + 3;
    for (int i = 0; i < m_IDs.GetSize(); ++i, ++id) {
        if (*id == 0 || *id != m_IDs.GetAt(i))
            return FALSE;
    }
    return *id == 0;
}

void CNewMenuIcons::OnSysColorChange()
{
    const CSize size = m_IconsList.GetImageSize();
    if (!m_lpszResourceName || !size.cx || !size.cy)
        return;
    if (LoadBitmap(size.cx, size.cy, m_lpszResourceName, m_hInst))
        Rebuild();
}

// --- single images ----------------------------------------------------------------------------------

int CNewMenuBitmaps::AddResource(UINT id, COLORREF transparent)
{
    const int found = FindIndex(id);
    if (found >= 0)
        return found;
    HBITMAP bitmap = LoadBitmapA(nullptr, MAKEINTRESOURCE(id));
    if (!bitmap)
        return -1;
    BITMAP info{};
    GetObjectA(bitmap, sizeof info, &info);
    if (!m_IconsList.m_hImageList) {
        m_IconsList.Create(info.bmWidth, info.bmHeight, ILC_COLORDDB | ILC_MASK, 0, 10);
    } else {
        const CSize size = m_IconsList.GetImageSize();
        if (size.cx != info.bmWidth || size.cy != info.bmHeight) {
            DeleteObject(bitmap);
            return -1;
        }
    }
    m_TranspColors.Add(transparent);
    m_IDs.Add(id);
    const int at = ImageList_AddMasked(m_IconsList.m_hImageList, bitmap,
                                       transparent == CLR_NONE ? RGB(192, 192, 192) : transparent);
    DeleteObject(bitmap);
    if (at < 0)
        return -1;
    MakeShadowGloom(at);
    return at;
}

int CNewMenuBitmaps::AddIcon(HICON icon, UINT id)
{
    if (!icon)
        return -1;
    if (!m_IconsList.m_hImageList) {
        ICONINFO info{};
        GetIconInfo(icon, &info);
        BITMAP b{};
        GetObjectA(info.hbmColor ? info.hbmColor : info.hbmMask, sizeof b, &b);
        if (info.hbmColor)
            DeleteObject(info.hbmColor);
        if (info.hbmMask)
            DeleteObject(info.hbmMask);
        m_IconsList.Create(b.bmWidth, b.bmHeight, ILC_COLORDDB | ILC_MASK, 0, 10);
    }
    const int found = id ? FindIndex(id) : -1;
    if (found >= 0) {
        m_IconsList.Replace(found, icon);
        MakeShadow(found, found + 1);
        MakeGloom(found, found + 2);
        return found;
    }
    m_IDs.Add(id);
    m_TranspColors.Add(CLR_NONE);
    const int at = m_IconsList.Add(icon);
    if (at < 0)
        return -1;
    MakeShadowGloom(at);
    return at;
}

int CNewMenuBitmaps::AddBitmap(CBitmap* bitmap, COLORREF transparent)
{
    if (!bitmap || !bitmap->m_hObject)
        return -1;
    const CSize size = bitmap->GetSize();
    if (!m_IconsList.m_hImageList)
        m_IconsList.Create(size.cx, size.cy, ILC_COLORDDB | ILC_MASK, 0, 10);
    m_IDs.Add(0);
    m_TranspColors.Add(transparent);
    const int at = m_IconsList.Add(bitmap, transparent == CLR_NONE ? RGB(192, 192, 192) : transparent);
    if (at < 0)
        return -1;
    MakeShadowGloom(at);
    return at;
}

void CNewMenuBitmaps::OnSysColorChange()
{
    // The index runs in steps of 3 while it is below the number of ids: so
    // only about a third of the triples are refreshed, as ever.
    for (int i = 0; i < m_IDs.GetSize(); i += 3) {
        MakeShadow(i, i + 1);
        MakeGloom(i, i + 2);
    }
}
