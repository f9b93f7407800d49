// Menus as the core's window procedures see them: a window's menu bar, the
// strip at the top of the non-client area of a window with a menu (SetMenu),
// and the framework's default for owner-drawn menu items.
// Menus live in the drawing layer (vxbase-ui), which installs these entries;
// without them no window has a menu bar.
#pragma once

#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "platform/windows/winuser.h"
#include "vxbase_export.h"

class CWnd;

namespace vx {

struct MenuBarBridge {
    // The strip's height for a window whose frame leaves `width` pixels
    // across it (rows and the line under them); 0 for a window with no menu.
    // Owner-drawn items are measured here (WM_MEASUREITEM).
    int (*height)(CWnd& window, int width) = nullptr;
    // Paints the strip on `dc`, a device of the whole window (null: the
    // window's own window device).
    void (*paint)(CWnd& window, HDC dc) = nullptr;
    // Whether a screen point lies on the strip (WM_NCHITTEST's HTMENU).
    bool (*contains)(CWnd& window, CPoint screen) = nullptr;
    // The mouse moved over the strip without a button (hot tracking).
    void (*hover)(CWnd& window, CPoint screen) = nullptr;
    // SC_KEYMENU (`lParam` the character, 0 for the bar itself) and
    // SC_MOUSEMENU (`lParam` the screen point): the bar's modal loop.
    void (*track)(CWnd& window, WPARAM command, LPARAM lParam) = nullptr;
    // The framework's default for an owner-drawn menu item (WM_DRAWITEM,
    // WM_MEASUREITEM of ODT_MENU): the menu's own object draws or measures
    // it. False when no object takes it.
    bool (*drawItem)(DRAWITEMSTRUCT& item) = nullptr;
    bool (*measureItem)(CWnd& window, MEASUREITEMSTRUCT& item) = nullptr;
};
VXBASE_EXPORT void SetMenuBarBridge(const MenuBarBridge& bridge);
VXBASE_EXPORT const MenuBarBridge& GetMenuBarBridge();

} // namespace vx
