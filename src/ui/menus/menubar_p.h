// Internal; do not include directly.
//
// The menu bar of a window with a menu (SetMenu): a strip at the top of its
// non-client area. Its items go left to right in rows of the menu's height
// (a break or a full row starts the next; MFT_RIGHTJUSTIFY moves the rest
// of a row to its right end), the window measures and draws owner-drawn
// items (WM_MEASUREITEM, WM_DRAWITEM with the window's device and window
// coordinates), and a line of COLOR_3DFACE under the last row parts it
// from the client area. The core's default window procedure reaches this
// through vx::MenuBarBridge; menubarloop.cpp runs the bar's modal loop.
#pragma once

#include "platform/windows/cwnd.h"

#include <vector>

namespace vx::menus {

// The bitmaps the platform draws itself in a menu bar (MFT_BITMAP items):
// a maximised MDI child's system menu and its three buttons.
inline const HBITMAP kBarSystem = reinterpret_cast<HBITMAP>(1);
inline const HBITMAP kBarRestore = reinterpret_cast<HBITMAP>(2);
inline const HBITMAP kBarMinimize = reinterpret_cast<HBITMAP>(3);
inline const HBITMAP kBarClose = reinterpret_cast<HBITMAP>(5);

struct MenuBarLayout {
    HMENU menu = nullptr;
    int width = -1;              // the width laid out for
    CRect strip;                 // rows and line, window coordinates
    std::vector<CRect> items;    // window coordinates, one per item
};

// The window's bar laid out for its present size; null without a menu.
const MenuBarLayout* LayoutOfMenuBar(CWnd& window);
// Forgets the layout, so that the next WM_NCCALCSIZE measures again.
void ForgetMenuBar(HWND window);
// The item under a screen point, -1 for none.
int MenuBarItemAt(CWnd& window, CPoint screen);
// The item's rectangle in screen coordinates.
bool MenuBarItemRect(CWnd& window, HMENU menu, UINT position, RECT* rect);

// What the loop shows: the item it has selected and whether that item's
// popup is open (ODS_SELECTED) or the keyboard rests on it (ODS_HOTLIGHT).
void SetMenuBarSelection(CWnd& window, int position, bool open);
// Mnemonic underlines show in the bar while the keyboard is in use.
void SetMenuBarCues(CWnd& window, bool show);
// The mouse left the strip: a hot item goes back to normal.
void MenuBarMouseLeft(CWnd& window);

// The bar's modal loop (menubarloop.cpp): SC_KEYMENU and SC_MOUSEMENU.
void TrackMenuBar(CWnd& window, WPARAM command, LPARAM lParam);

} // namespace vx::menus
