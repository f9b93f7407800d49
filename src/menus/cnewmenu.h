// CNewMenu: the library's owner-drawn menu.
//
// So far only the desk design's switches live here, which
// KDeskDesignDlg::InitParameter sets at start; the menu work completes the
// class (items, icons, draw modes, the menu hook).
//
//   KDeskDesignDlg::InitParameter();
//   if (CNewMenu::m_Enable) ...
#pragma once

#include "platform/framework/wintypes.h"
#include "ui/menus/cmenu.h"
#include "vxbase_ui_export.h"

class VXBASE_UI_EXPORT CNewMenu : public CMenu {
public:
    // Master switch of own drawing (1); at 0 menus are the platform's.
    static int m_Enable;
    // The design's menu bar colour; 0 lets the menu derive it.
    static COLORREF m_InitColor;
};
