// The icon lists of the owner-drawn menus. A CNewMenuIcons holds one image
// list and the command ids in it; menus share the lists (the library keeps
// them all in CNewMenu::m_pSharedMenuIcons) and count their references.
// Each id has three images: at 3k the normal one, at 3k + 1 its shadow
// (darker, for the raised look) and at 3k + 2 its gloom (pale grey, for a
// disabled item). CNewMenuBitmaps takes single images one at a time.
//
//   vx::SetToolBarResource(IDR_MAINFRAME, {1, 16, 15, 3, ID_FILE_NEW, ID_FILE_OPEN, ID_FILE_SAVE});
//   auto* icons = new CNewMenuIcons;
//   icons->LoadToolBar(MAKEINTRESOURCE(IDR_MAINFRAME), nullptr);   // the bitmap of the same id
//   int offset = icons->FindIndex(ID_FILE_OPEN);                    // 3
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/cobject.h"
#include "ui/images/cimagelist.h"
#include "ui/images/toolbarresource.h"
#include "vxbase_ui_export.h"

#include <vector>

class VXBASE_UI_EXPORT CNewMenuIcons : public CObject {
public:
    CNewMenuIcons();
    ~CNewMenuIcons() override;
    CNewMenuIcons(const CNewMenuIcons&) = delete;
    CNewMenuIcons& operator=(const CNewMenuIcons&) = delete;

    // 3 times the position of the id's latest entry, -1 for none.
    virtual int FindIndex(UINT id) const;
    // Reloads the images from the resource and derives them again.
    virtual void OnSysColorChange();
    // One bitmap resource per id, 16 by 15 each; both arrays end with 0.
    virtual BOOL LoadToolBar(const UINT* bitmapIds, const UINT* ids, COLORREF transparent = CLR_NONE);
    // Words: the bitmap's resource id, width, height, then the ids, ending with 0.
    virtual BOOL LoadToolBar(const WORD* iconInfo, COLORREF transparent = CLR_NONE);
    // A tool bar resource (vx::SetToolBarResource) and its bitmap of the same name.
    virtual BOOL LoadToolBar(LPCSTR resourceName, HINSTANCE instance);
    virtual BOOL DoMatch(const WORD* iconInfo, COLORREF transparent);
    virtual BOOL DoMatch(LPCSTR resourceName, HINSTANCE instance);
    // Images of width by height from bitmap resources (0-ended), or from one
    // strip; the list takes them masked by the transparent colour.
    virtual BOOL LoadBitmap(int width, int height, const UINT* bitmapIds);
    virtual BOOL LoadBitmap(int width, int height, LPCSTR resourceName, HINSTANCE instance);
    // The derived images of image `source`, added at the end (`index` -1) or
    // in the place of `index`.
    virtual int MakeShadow(int source, int index);
    virtual int MakeGloom(int source, int index);
    virtual void MakeShadowGloom(int source);
    // Turns a plain list (one image per id) into triples.
    virtual void Rebuild();

    LPCSTR m_lpszResourceName = nullptr; // an integer id, or a copy the list owns
    HINSTANCE m_hInst = nullptr;
    int m_nColors = 0;
    COLORREF m_crTransparent = CLR_NONE;
    CImageList m_IconsList;
    CDWordArray m_IDs;
    int m_dwRefCount = 0;

protected:
    void SetResourceName(LPCSTR name);
};

class VXBASE_UI_EXPORT CNewMenuBitmaps : public CNewMenuIcons {
public:
    // The triple of a bitmap resource, found by id or loaded; -1 when its size
    // differs from the list's.
    int AddResource(UINT id, COLORREF transparent = CLR_NONE);
    // An icon under an id: a present id has its triple replaced.
    int AddIcon(HICON icon, UINT id = 0);
    // A bitmap under id 0.
    int AddBitmap(CBitmap* bitmap, COLORREF transparent = CLR_NONE);
    // Derives the images again from the normal ones.
    void OnSysColorChange() override;

    CDWordArray m_TranspColors;
};

