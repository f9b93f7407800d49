// The notifications that all common controls share: the NM_ codes that come
// with WM_NOTIFY, and custom draw, by which a control lets its parent paint
// (or colour) the control's parts.
//
// Custom draw runs in stages. At the start of a paint the control sends
// NM_CUSTOMDRAW with CDDS_PREPAINT; the answer says what further stages the
// parent wants: CDRF_NOTIFYITEMDRAW asks for CDDS_ITEMPREPAINT per item,
// CDRF_NOTIFYPOSTPAINT for the matching post-paint stage. An item answer of
// CDRF_NOTIFYSUBITEMDRAW asks a list view for each cell (CDDS_ITEMPREPAINT |
// CDDS_SUBITEM); CDRF_SKIPDEFAULT says the parent painted the part itself.
//
//   case NM_CUSTOMDRAW: {
//       auto* cd = reinterpret_cast<NMCUSTOMDRAW*>(lParam);
//       if (cd->dwDrawStage == CDDS_PREPAINT)
//           return CDRF_NOTIFYITEMDRAW;
//       ...
//   }
#pragma once

#include "platform/windows/winuser.h"

constexpr UINT NM_FIRST = 0U - 0U;
constexpr UINT NM_OUTOFMEMORY = NM_FIRST - 1;
constexpr UINT NM_CLICK = NM_FIRST - 2;
constexpr UINT NM_DBLCLK = NM_FIRST - 3;
constexpr UINT NM_RETURN = NM_FIRST - 4;
constexpr UINT NM_RCLICK = NM_FIRST - 5;
constexpr UINT NM_RDBLCLK = NM_FIRST - 6;
constexpr UINT NM_SETFOCUS = NM_FIRST - 7;
constexpr UINT NM_KILLFOCUS = NM_FIRST - 8;
constexpr UINT NM_CUSTOMDRAW = NM_FIRST - 12;
constexpr UINT NM_HOVER = NM_FIRST - 13;
constexpr UINT NM_RELEASEDCAPTURE = NM_FIRST - 16;

// Draw stages.
constexpr DWORD CDDS_PREPAINT = 0x00000001;
constexpr DWORD CDDS_POSTPAINT = 0x00000002;
constexpr DWORD CDDS_PREERASE = 0x00000003;
constexpr DWORD CDDS_POSTERASE = 0x00000004;
constexpr DWORD CDDS_ITEM = 0x00010000;
constexpr DWORD CDDS_ITEMPREPAINT = CDDS_ITEM | CDDS_PREPAINT;
constexpr DWORD CDDS_ITEMPOSTPAINT = CDDS_ITEM | CDDS_POSTPAINT;
constexpr DWORD CDDS_ITEMPREERASE = CDDS_ITEM | CDDS_PREERASE;
constexpr DWORD CDDS_ITEMPOSTERASE = CDDS_ITEM | CDDS_POSTERASE;
constexpr DWORD CDDS_SUBITEM = 0x00020000;

// Answers.
constexpr LRESULT CDRF_DODEFAULT = 0x00000000;
constexpr LRESULT CDRF_NEWFONT = 0x00000002;
constexpr LRESULT CDRF_SKIPDEFAULT = 0x00000004;
constexpr LRESULT CDRF_NOTIFYPOSTPAINT = 0x00000010;
constexpr LRESULT CDRF_NOTIFYITEMDRAW = 0x00000020;
constexpr LRESULT CDRF_NOTIFYSUBITEMDRAW = 0x00000020;
constexpr LRESULT CDRF_NOTIFYPOSTERASE = 0x00000040;

// Item states in uItemState.
constexpr UINT CDIS_SELECTED = 0x0001;
constexpr UINT CDIS_GRAYED = 0x0002;
constexpr UINT CDIS_DISABLED = 0x0004;
constexpr UINT CDIS_CHECKED = 0x0008;
constexpr UINT CDIS_FOCUS = 0x0010;
constexpr UINT CDIS_DEFAULT = 0x0020;
constexpr UINT CDIS_HOT = 0x0040;
constexpr UINT CDIS_MARKED = 0x0080;
constexpr UINT CDIS_INDETERMINATE = 0x0100;

struct NMCUSTOMDRAW {
    NMHDR hdr;
    DWORD dwDrawStage;
    HDC hdc;
    RECT rc;
    DWORD_PTR dwItemSpec;
    UINT uItemState;
    LPARAM lItemlParam;
};
using LPNMCUSTOMDRAW = NMCUSTOMDRAW*;
