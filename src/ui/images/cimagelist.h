// Image lists: rows of equally sized images with masks, as toolbars, menus
// and lists draw them. The free ImageList_ functions and the framework's
// CImageList over them.
//
//   CImageList list;
//   list.Create(16, 16, ILC_COLOR24 | ILC_MASK, 0, 10);
//   CBitmap strip;
//   strip.LoadBitmap(0x3EA);
//   list.Add(&strip, RGB(255, 0, 255));   // magenta is transparent
//   list.Draw(&dc, 0, CPoint(2, 2), ILD_TRANSPARENT);
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/rect.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

class CBitmap;
class CDC;

struct _IMAGELIST;
using HIMAGELIST = _IMAGELIST*;

constexpr UINT ILC_MASK = 0x0001;
constexpr UINT ILC_COLOR = 0x0000;
constexpr UINT ILC_COLORDDB = 0x00FE;
constexpr UINT ILC_COLOR4 = 0x0004;
constexpr UINT ILC_COLOR8 = 0x0008;
constexpr UINT ILC_COLOR16 = 0x0010;
constexpr UINT ILC_COLOR24 = 0x0018;
constexpr UINT ILC_COLOR32 = 0x0020;

constexpr UINT ILD_NORMAL = 0x0000;
constexpr UINT ILD_TRANSPARENT = 0x0001;
constexpr UINT ILD_BLEND25 = 0x0002;
constexpr UINT ILD_FOCUS = 0x0002;
constexpr UINT ILD_BLEND50 = 0x0004;
constexpr UINT ILD_SELECTED = 0x0004;
constexpr UINT ILD_BLEND = 0x0004;
constexpr UINT ILD_MASK = 0x0010;
constexpr UINT ILD_IMAGE = 0x0020;

struct IMAGEINFO {
    HBITMAP hbmImage;
    HBITMAP hbmMask;
    int Unused1;
    int Unused2;
    RECT rcImage;
};

// A list of images of cx by cy; with ILC_MASK each image has a mask.
VXBASE_UI_EXPORT HIMAGELIST ImageList_Create(int cx, int cy, UINT flags, int initial, int grow);
VXBASE_UI_EXPORT BOOL ImageList_Destroy(HIMAGELIST list);
// Adds every image of a bitmap (its width holds one or more images side by
// side); the mask's 1 bits are transparent. Returns the first new index, -1
// on failure.
VXBASE_UI_EXPORT int ImageList_Add(HIMAGELIST list, HBITMAP image, HBITMAP mask);
// The same with a transparent colour, whose pixels turn black in the image.
VXBASE_UI_EXPORT int ImageList_AddMasked(HIMAGELIST list, HBITMAP image, COLORREF mask);
// Replaces image `index` by an icon, or adds it with index -1.
VXBASE_UI_EXPORT int ImageList_ReplaceIcon(HIMAGELIST list, int index, HICON icon);
VXBASE_UI_EXPORT int ImageList_AddIcon(HIMAGELIST list, HICON icon);
VXBASE_UI_EXPORT BOOL ImageList_Replace(HIMAGELIST list, int index, HBITMAP image, HBITMAP mask);
// Removes one image, or all with -1.
VXBASE_UI_EXPORT BOOL ImageList_Remove(HIMAGELIST list, int index);
VXBASE_UI_EXPORT int ImageList_GetImageCount(HIMAGELIST list);
VXBASE_UI_EXPORT BOOL ImageList_GetIconSize(HIMAGELIST list, int* cx, int* cy);
// Copies of the image and mask bitmaps (the caller deletes them) and the
// image's rectangle within them.
VXBASE_UI_EXPORT BOOL ImageList_GetImageInfo(HIMAGELIST list, int index, IMAGEINFO* info);
VXBASE_UI_EXPORT COLORREF ImageList_SetBkColor(HIMAGELIST list, COLORREF color);
VXBASE_UI_EXPORT COLORREF ImageList_GetBkColor(HIMAGELIST list);
// ILD_NORMAL draws on the list's background colour (CLR_NONE: transparent);
// ILD_TRANSPARENT through the mask; ILD_MASK the mask itself; ILD_BLEND25 and
// ILD_BLEND50 mix the image with the highlight colour.
VXBASE_UI_EXPORT BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style);
VXBASE_UI_EXPORT HICON ImageList_GetIcon(HIMAGELIST list, int index, UINT flags);

class VXBASE_UI_EXPORT CImageList : public CObject {
public:
    CImageList();
    ~CImageList() override;
    CImageList(const CImageList&) = delete;
    CImageList& operator=(const CImageList&) = delete;

    HIMAGELIST m_hImageList = nullptr;

    operator HIMAGELIST() const { return m_hImageList; }
    HIMAGELIST GetSafeHandle() const { return m_hImageList; }
    BOOL Create(int cx, int cy, UINT flags, int initial, int grow);
    // The images of a bitmap resource, `cx` wide each, masked by a colour.
    BOOL Create(UINT bitmapId, int cx, int grow, COLORREF mask);
    BOOL Attach(HIMAGELIST list);
    HIMAGELIST Detach();
    BOOL DeleteImageList();
    static CImageList* FromHandle(HIMAGELIST list);
    int Add(CBitmap* image, CBitmap* mask);
    int Add(CBitmap* image, COLORREF mask);
    int Add(HICON icon);
    BOOL Replace(int index, CBitmap* image, CBitmap* mask);
    int Replace(int index, HICON icon);
    BOOL Remove(int index);
    int GetImageCount() const;
    BOOL GetImageInfo(int index, IMAGEINFO* info) const;
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const;
    BOOL Draw(CDC* dc, int index, POINT point, UINT style);
    HICON ExtractIcon(int index);
    CSize GetImageSize() const;
};
