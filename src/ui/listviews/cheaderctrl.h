// CHeaderCtrl: the platform's column header control ("SysHeader32").
//
// A row of items, each a column title with a width, an alignment, an image
// from the header's image list and, with HDS_CHECKBOXES, a check box
// (HDF_CHECKBOX, checked with HDF_CHECKED). The control answers the HDM_
// messages and tells its parent by WM_NOTIFY what the user does:
//
// * a click on an item: HDN_ITEMCLICK (on the check box, HDN_ITEMSTATEICONCLICK
//   instead); a double click on a divider: HDN_DIVIDERDBLCLICK;
// * dragging a divider: HDN_BEGINTRACK (an answer of TRUE refuses), HDN_TRACK
//   while it moves, HDN_ENDTRACK, with HDN_ITEMCHANGING/HDN_ITEMCHANGED around
//   the new width; with HDS_FULLDRAG the width changes as the mouse moves;
// * with HDS_DRAGDROP, dragging an item: HDN_BEGINDRAG (TRUE refuses), then
//   HDN_ENDDRAG with the new place in pitem->iOrder; unless the parent
//   answers TRUE, the header takes the new order itself.
//
// Items are addressed by index (the order they were inserted in); iOrder is
// where an item shows, left to right.
//
//   CHeaderCtrl header;
//   header.Create(WS_CHILD | WS_VISIBLE | HDS_BUTTONS | HDS_DRAGDROP, CRect(0, 0, 300, 20), this, 1);
//   HDITEM item{};
//   item.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT;
//   item.pszText = const_cast<char*>("Name");
//   item.cxy = 120;
//   item.fmt = HDF_LEFT | HDF_STRING;
//   header.InsertItem(0, &item);
#pragma once

#include "platform/windows/cwnd.h"
#include "ui/controls/customdraw.h"
#include "vxbase_ui_export.h"

#include <memory>

class CImageList;
struct _IMAGELIST;

constexpr DWORD HDS_HORZ = 0x0000;
constexpr DWORD HDS_BUTTONS = 0x0002;
constexpr DWORD HDS_HOTTRACK = 0x0004;
constexpr DWORD HDS_HIDDEN = 0x0008;
constexpr DWORD HDS_DRAGDROP = 0x0040;
constexpr DWORD HDS_FULLDRAG = 0x0080;
constexpr DWORD HDS_FLAT = 0x0200;
constexpr DWORD HDS_CHECKBOXES = 0x0400;

constexpr UINT HDI_WIDTH = 0x0001;
constexpr UINT HDI_HEIGHT = HDI_WIDTH;
constexpr UINT HDI_TEXT = 0x0002;
constexpr UINT HDI_FORMAT = 0x0004;
constexpr UINT HDI_LPARAM = 0x0008;
constexpr UINT HDI_BITMAP = 0x0010;
constexpr UINT HDI_IMAGE = 0x0020;
constexpr UINT HDI_DI_SETITEM = 0x0040;
constexpr UINT HDI_ORDER = 0x0080;

constexpr int HDF_LEFT = 0x0000;
constexpr int HDF_RIGHT = 0x0001;
constexpr int HDF_CENTER = 0x0002;
constexpr int HDF_JUSTIFYMASK = 0x0003;
constexpr int HDF_CHECKBOX = 0x0040;
constexpr int HDF_CHECKED = 0x0080;
constexpr int HDF_SORTDOWN = 0x0200;
constexpr int HDF_SORTUP = 0x0400;
constexpr int HDF_IMAGE = 0x0800;
constexpr int HDF_BITMAP_ON_RIGHT = 0x1000;
constexpr int HDF_BITMAP = 0x2000;
constexpr int HDF_STRING = 0x4000;
constexpr int HDF_OWNERDRAW = 0x8000;

constexpr UINT HDM_FIRST = 0x1200;
constexpr UINT HDM_GETITEMCOUNT = HDM_FIRST + 0;
constexpr UINT HDM_INSERTITEMA = HDM_FIRST + 1;
constexpr UINT HDM_DELETEITEM = HDM_FIRST + 2;
constexpr UINT HDM_GETITEMA = HDM_FIRST + 3;
constexpr UINT HDM_SETITEMA = HDM_FIRST + 4;
constexpr UINT HDM_LAYOUT = HDM_FIRST + 5;
constexpr UINT HDM_HITTEST = HDM_FIRST + 6;
constexpr UINT HDM_GETITEMRECT = HDM_FIRST + 7;
constexpr UINT HDM_SETIMAGELIST = HDM_FIRST + 8;
constexpr UINT HDM_GETIMAGELIST = HDM_FIRST + 9;
constexpr UINT HDM_ORDERTOINDEX = HDM_FIRST + 15;
constexpr UINT HDM_GETORDERARRAY = HDM_FIRST + 17;
constexpr UINT HDM_SETORDERARRAY = HDM_FIRST + 18;
constexpr UINT HDM_SETHOTDIVIDER = HDM_FIRST + 19;
constexpr UINT HDM_INSERTITEM = HDM_INSERTITEMA;
constexpr UINT HDM_GETITEM = HDM_GETITEMA;
constexpr UINT HDM_SETITEM = HDM_SETITEMA;

constexpr UINT HDN_FIRST = 0U - 300U;
constexpr UINT HDN_ITEMCHANGINGA = HDN_FIRST - 0;
constexpr UINT HDN_ITEMCHANGEDA = HDN_FIRST - 1;
constexpr UINT HDN_ITEMCLICKA = HDN_FIRST - 2;
constexpr UINT HDN_ITEMDBLCLICKA = HDN_FIRST - 3;
constexpr UINT HDN_DIVIDERDBLCLICKA = HDN_FIRST - 5;
constexpr UINT HDN_BEGINTRACKA = HDN_FIRST - 6;
constexpr UINT HDN_ENDTRACKA = HDN_FIRST - 7;
constexpr UINT HDN_TRACKA = HDN_FIRST - 8;
constexpr UINT HDN_BEGINDRAG = HDN_FIRST - 10;
constexpr UINT HDN_ENDDRAG = HDN_FIRST - 11;
constexpr UINT HDN_ITEMSTATEICONCLICK = HDN_FIRST - 16;
constexpr UINT HDN_ITEMCHANGING = HDN_ITEMCHANGINGA;
constexpr UINT HDN_ITEMCHANGED = HDN_ITEMCHANGEDA;
constexpr UINT HDN_ITEMCLICK = HDN_ITEMCLICKA;
constexpr UINT HDN_ITEMDBLCLICK = HDN_ITEMDBLCLICKA;
constexpr UINT HDN_DIVIDERDBLCLICK = HDN_DIVIDERDBLCLICKA;
constexpr UINT HDN_BEGINTRACK = HDN_BEGINTRACKA;
constexpr UINT HDN_ENDTRACK = HDN_ENDTRACKA;
constexpr UINT HDN_TRACK = HDN_TRACKA;

// Hit test results.
constexpr UINT HHT_NOWHERE = 0x0001;
constexpr UINT HHT_ONHEADER = 0x0002;
constexpr UINT HHT_ONDIVIDER = 0x0004;
constexpr UINT HHT_ONDIVOPEN = 0x0008;
constexpr UINT HHT_ONITEMSTATEICON = 0x1000;
constexpr UINT HHT_ABOVE = 0x0100;
constexpr UINT HHT_BELOW = 0x0200;
constexpr UINT HHT_TORIGHT = 0x0400;
constexpr UINT HHT_TOLEFT = 0x0800;

struct HDITEMA {
    UINT mask;
    int cxy;
    LPSTR pszText;
    HBITMAP hbm;
    int cchTextMax;
    int fmt;
    LPARAM lParam;
    int iImage;
    int iOrder;
};
using HDITEM = HDITEMA;
using LPHDITEM = HDITEMA*;

struct HDHITTESTINFO {
    POINT pt;
    UINT flags;
    int iItem;
};

struct HDLAYOUT {
    RECT* prc;
    WINDOWPOS* pwpos;
};

// The record of the HDN_ notifications.
struct NMHEADERA {
    NMHDR hdr;
    int iItem;
    int iButton; // 0 left, 1 right, 2 middle
    HDITEMA* pitem;
};
using NMHEADER = NMHEADERA;
using LPNMHEADER = NMHEADERA*;

class VXBASE_UI_EXPORT CHeaderCtrl : public CWnd {
public:
    CHeaderCtrl();
    ~CHeaderCtrl() override;

    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetItemCount() const;
    // Returns the index of the new item, -1 on failure.
    int InsertItem(int index, HDITEM* item);
    BOOL DeleteItem(int index);
    BOOL GetItem(int index, HDITEM* item) const;
    BOOL SetItem(int index, HDITEM* item);
    // The item's rectangle in the header's client coordinates.
    BOOL GetItemRect(int index, RECT* rect) const;
    CImageList* SetImageList(CImageList* list);
    CImageList* GetImageList() const;
    int OrderToIndex(int order) const;
    BOOL GetOrderArray(int* array, int count) const;
    BOOL SetOrderArray(int count, int* array);
    // The item at a client point and where on it (HHT_ flags); -1 for none.
    int HitTest(HDHITTESTINFO* info) const;
    // Where the header lies and what it leaves of `rect` (HDM_LAYOUT): fills
    // pwpos with the header's place and moves prc's top below it.
    BOOL Layout(HDLAYOUT* layout);
    // The height the header wants: its font's height and the edges.
    int GetIdealHeight() const;

protected:
    // The system header's behaviour.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Private;
    void Paint();
    void PaintItem(HDC dc, int index, const RECT& rect, bool pressed);
    void OnButtonDown(CPoint point);
    void OnMove(CPoint point);
    void OnButtonUp(CPoint point);
    // Where the dragged item would go for the mouse at `x`: an order position.
    int DropPosition(int x) const;
    std::unique_ptr<Private> d;
};
