// The messages, notifications, styles and records of the platform's list view
// control ("SysListView32"), as CListCtrl and its users exchange them.
//
//   LVITEM item{};
//   item.mask = LVIF_TEXT | LVIF_PARAM;
//   item.iItem = 0;
//   item.pszText = const_cast<char*>("K1");
//   item.lParam = 42;
//   ::SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
#pragma once

#include "ui/controls/customdraw.h"

struct _IMAGELIST;

// Styles.
constexpr DWORD LVS_ICON = 0x0000;
constexpr DWORD LVS_REPORT = 0x0001;
constexpr DWORD LVS_SMALLICON = 0x0002;
constexpr DWORD LVS_LIST = 0x0003;
constexpr DWORD LVS_TYPEMASK = 0x0003;
constexpr DWORD LVS_SINGLESEL = 0x0004;
constexpr DWORD LVS_SHOWSELALWAYS = 0x0008;
constexpr DWORD LVS_SORTASCENDING = 0x0010;
constexpr DWORD LVS_SORTDESCENDING = 0x0020;
constexpr DWORD LVS_SHAREIMAGELISTS = 0x0040;
constexpr DWORD LVS_NOLABELWRAP = 0x0080;
constexpr DWORD LVS_AUTOARRANGE = 0x0100;
constexpr DWORD LVS_EDITLABELS = 0x0200;
constexpr DWORD LVS_OWNERDRAWFIXED = 0x0400;
constexpr DWORD LVS_OWNERDATA = 0x1000;
constexpr DWORD LVS_NOSCROLL = 0x2000;
constexpr DWORD LVS_NOCOLUMNHEADER = 0x4000;
constexpr DWORD LVS_NOSORTHEADER = 0x8000;

// Extended styles (LVM_SETEXTENDEDLISTVIEWSTYLE).
constexpr DWORD LVS_EX_GRIDLINES = 0x0001;
constexpr DWORD LVS_EX_SUBITEMIMAGES = 0x0002;
constexpr DWORD LVS_EX_CHECKBOXES = 0x0004;
constexpr DWORD LVS_EX_TRACKSELECT = 0x0008;
constexpr DWORD LVS_EX_HEADERDRAGDROP = 0x0010;
constexpr DWORD LVS_EX_FULLROWSELECT = 0x0020;
constexpr DWORD LVS_EX_ONECLICKACTIVATE = 0x0040;
constexpr DWORD LVS_EX_TWOCLICKACTIVATE = 0x0080;
constexpr DWORD LVS_EX_INFOTIP = 0x0400;
constexpr DWORD LVS_EX_LABELTIP = 0x4000;

// Messages.
constexpr UINT LVM_FIRST = 0x1000;
constexpr UINT LVM_GETBKCOLOR = LVM_FIRST + 0;
constexpr UINT LVM_SETBKCOLOR = LVM_FIRST + 1;
constexpr UINT LVM_GETIMAGELIST = LVM_FIRST + 2;
constexpr UINT LVM_SETIMAGELIST = LVM_FIRST + 3;
constexpr UINT LVM_GETITEMCOUNT = LVM_FIRST + 4;
constexpr UINT LVM_GETITEMA = LVM_FIRST + 5;
constexpr UINT LVM_SETITEMA = LVM_FIRST + 6;
constexpr UINT LVM_INSERTITEMA = LVM_FIRST + 7;
constexpr UINT LVM_DELETEITEM = LVM_FIRST + 8;
constexpr UINT LVM_DELETEALLITEMS = LVM_FIRST + 9;
constexpr UINT LVM_GETNEXTITEM = LVM_FIRST + 12;
constexpr UINT LVM_FINDITEMA = LVM_FIRST + 13;
constexpr UINT LVM_GETITEMRECT = LVM_FIRST + 14;
constexpr UINT LVM_GETSTRINGWIDTHA = LVM_FIRST + 17;
constexpr UINT LVM_HITTEST = LVM_FIRST + 18;
constexpr UINT LVM_ENSUREVISIBLE = LVM_FIRST + 19;
constexpr UINT LVM_SCROLL = LVM_FIRST + 20;
constexpr UINT LVM_REDRAWITEMS = LVM_FIRST + 21;
constexpr UINT LVM_GETEDITCONTROL = LVM_FIRST + 24;
constexpr UINT LVM_GETCOLUMNA = LVM_FIRST + 25;
constexpr UINT LVM_SETCOLUMNA = LVM_FIRST + 26;
constexpr UINT LVM_INSERTCOLUMNA = LVM_FIRST + 27;
constexpr UINT LVM_DELETECOLUMN = LVM_FIRST + 28;
constexpr UINT LVM_GETCOLUMNWIDTH = LVM_FIRST + 29;
constexpr UINT LVM_SETCOLUMNWIDTH = LVM_FIRST + 30;
constexpr UINT LVM_GETHEADER = LVM_FIRST + 31;
constexpr UINT LVM_GETVIEWRECT = LVM_FIRST + 34;
constexpr UINT LVM_GETTEXTCOLOR = LVM_FIRST + 35;
constexpr UINT LVM_SETTEXTCOLOR = LVM_FIRST + 36;
constexpr UINT LVM_GETTEXTBKCOLOR = LVM_FIRST + 37;
constexpr UINT LVM_SETTEXTBKCOLOR = LVM_FIRST + 38;
constexpr UINT LVM_GETTOPINDEX = LVM_FIRST + 39;
constexpr UINT LVM_GETCOUNTPERPAGE = LVM_FIRST + 40;
constexpr UINT LVM_GETORIGIN = LVM_FIRST + 41;
constexpr UINT LVM_UPDATE = LVM_FIRST + 42;
constexpr UINT LVM_SETITEMSTATE = LVM_FIRST + 43;
constexpr UINT LVM_GETITEMSTATE = LVM_FIRST + 44;
constexpr UINT LVM_GETITEMTEXTA = LVM_FIRST + 45;
constexpr UINT LVM_SETITEMTEXTA = LVM_FIRST + 46;
constexpr UINT LVM_SETITEMCOUNT = LVM_FIRST + 47;
constexpr UINT LVM_SORTITEMS = LVM_FIRST + 48;
constexpr UINT LVM_GETSELECTEDCOUNT = LVM_FIRST + 50;
constexpr UINT LVM_SETEXTENDEDLISTVIEWSTYLE = LVM_FIRST + 54;
constexpr UINT LVM_GETEXTENDEDLISTVIEWSTYLE = LVM_FIRST + 55;
constexpr UINT LVM_GETSUBITEMRECT = LVM_FIRST + 56;
constexpr UINT LVM_SUBITEMHITTEST = LVM_FIRST + 57;
constexpr UINT LVM_SETCOLUMNORDERARRAY = LVM_FIRST + 58;
constexpr UINT LVM_GETCOLUMNORDERARRAY = LVM_FIRST + 59;
constexpr UINT LVM_GETSELECTIONMARK = LVM_FIRST + 66;
constexpr UINT LVM_SETSELECTIONMARK = LVM_FIRST + 67;
constexpr UINT LVM_GETITEM = LVM_GETITEMA;
constexpr UINT LVM_SETITEM = LVM_SETITEMA;
constexpr UINT LVM_INSERTITEM = LVM_INSERTITEMA;
constexpr UINT LVM_FINDITEM = LVM_FINDITEMA;
constexpr UINT LVM_GETCOLUMN = LVM_GETCOLUMNA;
constexpr UINT LVM_SETCOLUMN = LVM_SETCOLUMNA;
constexpr UINT LVM_INSERTCOLUMN = LVM_INSERTCOLUMNA;
constexpr UINT LVM_GETITEMTEXT = LVM_GETITEMTEXTA;
constexpr UINT LVM_SETITEMTEXT = LVM_SETITEMTEXTA;
constexpr UINT LVM_GETSTRINGWIDTH = LVM_GETSTRINGWIDTHA;

// Turns drawing off (wParam FALSE) and on again.
constexpr UINT WM_SETREDRAW = 0x000B;

// Notifications.
constexpr UINT LVN_FIRST = 0U - 100U;
constexpr UINT LVN_ITEMCHANGING = LVN_FIRST - 0;
constexpr UINT LVN_ITEMCHANGED = LVN_FIRST - 1;
constexpr UINT LVN_INSERTITEM = LVN_FIRST - 2;
constexpr UINT LVN_DELETEITEM = LVN_FIRST - 3;
constexpr UINT LVN_DELETEALLITEMS = LVN_FIRST - 4;
constexpr UINT LVN_COLUMNCLICK = LVN_FIRST - 8;
constexpr UINT LVN_BEGINDRAG = LVN_FIRST - 9;
constexpr UINT LVN_BEGINRDRAG = LVN_FIRST - 11;
constexpr UINT LVN_ITEMACTIVATE = LVN_FIRST - 14;
constexpr UINT LVN_KEYDOWN = LVN_FIRST - 55;

// Image lists.
constexpr int LVSIL_NORMAL = 0;
constexpr int LVSIL_SMALL = 1;
constexpr int LVSIL_STATE = 2;

// LVITEM masks and states.
constexpr UINT LVIF_TEXT = 0x0001;
constexpr UINT LVIF_IMAGE = 0x0002;
constexpr UINT LVIF_PARAM = 0x0004;
constexpr UINT LVIF_STATE = 0x0008;
constexpr UINT LVIF_INDENT = 0x0010;
constexpr UINT LVIF_NORECOMPUTE = 0x0800;
constexpr UINT LVIS_FOCUSED = 0x0001;
constexpr UINT LVIS_SELECTED = 0x0002;
constexpr UINT LVIS_CUT = 0x0004;
constexpr UINT LVIS_DROPHILITED = 0x0008;
constexpr UINT LVIS_OVERLAYMASK = 0x0F00;
constexpr UINT LVIS_STATEIMAGEMASK = 0xF000;
constexpr UINT INDEXTOSTATEIMAGEMASK(UINT i) { return i << 12; }

// LVCOLUMN masks and formats.
constexpr UINT LVCF_FMT = 0x0001;
constexpr UINT LVCF_WIDTH = 0x0002;
constexpr UINT LVCF_TEXT = 0x0004;
constexpr UINT LVCF_SUBITEM = 0x0008;
constexpr UINT LVCF_IMAGE = 0x0010;
constexpr UINT LVCF_ORDER = 0x0020;
constexpr int LVCFMT_LEFT = 0x0000;
constexpr int LVCFMT_RIGHT = 0x0001;
constexpr int LVCFMT_CENTER = 0x0002;
constexpr int LVCFMT_JUSTIFYMASK = 0x0003;
constexpr int LVCFMT_IMAGE = 0x0800;
constexpr int LVCFMT_BITMAP_ON_RIGHT = 0x1000;
constexpr int LVCFMT_COL_HAS_IMAGES = 0x8000;

// LVM_SETCOLUMNWIDTH special widths.
constexpr int LVSCW_AUTOSIZE = -1;
constexpr int LVSCW_AUTOSIZE_USEHEADER = -2;

// LVM_GETNEXTITEM flags.
constexpr UINT LVNI_ALL = 0x0000;
constexpr UINT LVNI_FOCUSED = 0x0001;
constexpr UINT LVNI_SELECTED = 0x0002;
constexpr UINT LVNI_ABOVE = 0x0100;
constexpr UINT LVNI_BELOW = 0x0200;
constexpr UINT LVNI_TOLEFT = 0x0400;
constexpr UINT LVNI_TORIGHT = 0x0800;

// LVM_GETITEMRECT and LVM_GETSUBITEMRECT parts.
constexpr int LVIR_BOUNDS = 0;
constexpr int LVIR_ICON = 1;
constexpr int LVIR_LABEL = 2;
constexpr int LVIR_SELECTBOUNDS = 3;

// Hit test results.
constexpr UINT LVHT_NOWHERE = 0x0001;
constexpr UINT LVHT_ONITEMICON = 0x0002;
constexpr UINT LVHT_ONITEMLABEL = 0x0004;
constexpr UINT LVHT_ONITEMSTATEICON = 0x0008;
constexpr UINT LVHT_ONITEM = LVHT_ONITEMICON | LVHT_ONITEMLABEL | LVHT_ONITEMSTATEICON;
constexpr UINT LVHT_ABOVE = 0x0008;
constexpr UINT LVHT_BELOW = 0x0010;
constexpr UINT LVHT_TORIGHT = 0x0020;
constexpr UINT LVHT_TOLEFT = 0x0040;

// LVM_FINDITEM flags.
constexpr UINT LVFI_PARAM = 0x0001;
constexpr UINT LVFI_STRING = 0x0002;
constexpr UINT LVFI_PARTIAL = 0x0008;
constexpr UINT LVFI_WRAP = 0x0020;

struct LVITEMA {
    UINT mask;
    int iItem;
    int iSubItem;
    UINT state;
    UINT stateMask;
    LPSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
    int iIndent;
};
using LVITEM = LVITEMA;
using LPLVITEM = LVITEMA*;

struct LVCOLUMNA {
    UINT mask;
    int fmt;
    int cx;
    LPSTR pszText;
    int cchTextMax;
    int iSubItem;
    int iImage;
    int iOrder;
};
using LVCOLUMN = LVCOLUMNA;
using LPLVCOLUMN = LVCOLUMNA*;

struct LVHITTESTINFO {
    POINT pt;
    UINT flags;
    int iItem;
    int iSubItem;
};
using LPLVHITTESTINFO = LVHITTESTINFO*;

struct LVFINDINFOA {
    UINT flags;
    LPCSTR psz;
    LPARAM lParam;
    POINT pt;
    UINT vkDirection;
};
using LVFINDINFO = LVFINDINFOA;

// The record of LVN_ITEMCHANGING, LVN_ITEMCHANGED, LVN_INSERTITEM,
// LVN_DELETEITEM, LVN_COLUMNCLICK and LVN_BEGINDRAG.
struct NMLISTVIEW {
    NMHDR hdr;
    int iItem;
    int iSubItem;
    UINT uNewState;
    UINT uOldState;
    UINT uChanged; // LVIF_ flags of what changed
    POINT ptAction;
    LPARAM lParam;
};
using LPNMLISTVIEW = NMLISTVIEW*;

// The record of NM_CLICK, NM_DBLCLK, NM_RCLICK and LVN_ITEMACTIVATE.
struct NMITEMACTIVATE {
    NMHDR hdr;
    int iItem;
    int iSubItem;
    UINT uNewState;
    UINT uOldState;
    UINT uChanged;
    POINT ptAction;
    LPARAM lParam;
    UINT uKeyFlags;
};
using LPNMITEMACTIVATE = NMITEMACTIVATE*;

struct NMLVKEYDOWN {
    NMHDR hdr;
    WORD wVKey;
    UINT flags;
};
using LPNMLVKEYDOWN = NMLVKEYDOWN*;

// The record of NM_CUSTOMDRAW from a list view. dwItemSpec is the item,
// iSubItem the column in the CDDS_SUBITEM stages; clrText and clrTextBk are
// the colours the default painting takes, which the parent may change.
struct NMLVCUSTOMDRAW {
    NMCUSTOMDRAW nmcd;
    COLORREF clrText;
    COLORREF clrTextBk;
    int iSubItem;
};
using LPNMLVCUSTOMDRAW = NMLVCUSTOMDRAW*;

using PFNLVCOMPARE = int (*)(LPARAM, LPARAM, LPARAM);
