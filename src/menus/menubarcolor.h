// The background of a frame's menu bar in the menu draw modes, and the
// repaint of one owner-drawn entry of a frame's menu bar.
//
//   UpdateMenuBarColor(frame.GetMenu()->m_hMenu);   // after the mode is set
//
// The XP modes give the bar the button face, the Office 2003 modes their bar
// colour, as a horizontal gradient pattern on screens of more than 256
// colours. The other modes leave the menu as it is. Brushes are made once
// per kind and colour and live as long as the program.
#pragma once

#include "ui/menus/cmenu.h"
#include "vxbase_ui_export.h"

class CWnd;

// A made background brush: solid (kind 0) or the gradient pattern (kind 1).
struct VXBASE_UI_EXPORT CMenuBackBrush {
    HBRUSH m_hBrush = nullptr;
    int m_nKind = 0;
    COLORREF m_Color = 0;
};

// Sets the background brush of the current draw mode on `menu` and on the
// shared menu of every document template that is a CNewMenu (a no-op for
// the modes without one; a null or dead menu is skipped).
VXBASE_UI_EXPORT void UpdateMenuBarColor(HMENU menu);
// Repaints the owner-drawn entry at `position` of `menu`, the menu bar of
// `window`, in `state` (ODS_...) through the window's WM_DRAWITEM; 1 when
// sent, 0 for position -1, an entry not showing or not owner-drawn.
VXBASE_UI_EXPORT BOOL DrawMenubarItem(CWnd* window, CMenu* menu, UINT position, UINT state);
