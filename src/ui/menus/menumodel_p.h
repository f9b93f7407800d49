// Internal; do not include directly.
//
// The objects behind menu handles: a menu is an entry of the drawing
// objects' table holding its items; the popup menu windows read and lay
// out the same items.
#pragma once

#include "ui/gdi/gdiobjects_p.h"
#include "ui/menus/winmenu.h"

#include <string>
#include <vector>

namespace vx::menus {

struct MenuItem {
    UINT type = MFT_STRING; // MFT_ bits
    UINT state = 0;         // MFS_ bits
    UINT id = 0;
    HMENU sub = nullptr;
    std::string text;
    HBITMAP bitmap = nullptr; // MFT_BITMAP
    HBITMAP checked = nullptr;
    HBITMAP unchecked = nullptr;
    ULONG_PTR data = 0;
    RECT rect{}; // where an open popup shows it, client coordinates
    int accelX = 0; // where its shortcut text starts (the column's tab stop)

    bool IsSeparator() const { return (type & MFT_SEPARATOR) != 0; }
    bool IsGrayed() const { return (state & MFS_GRAYED) != 0; }
    bool IsOwnerDrawn() const { return (type & MFT_OWNERDRAW) != 0; }
};

struct Menu final : gdi::Object {
    static constexpr gdi::Kind kKind = gdi::Kind::Menu;
    Menu() : Object(kKind) {}
    bool popup = false;
    std::vector<MenuItem> items;
    MENUINFO info{};
    HWND window = nullptr; // the popup window showing it, while one does
};

Menu* MenuOf(HMENU h);

// The item an id or position names; by command the sub-menus are searched too.
struct Found {
    Menu* menu = nullptr;
    std::size_t index = 0;
    MenuItem* item() const { return &menu->items[index]; }
};
Found FindItem(HMENU h, UINT which, bool byPosition);

// The MF_ state of an item as GetMenuState answers it.
UINT StateOf(const MenuItem& item);
// The window's copy of the system menu if it has one (none is made).
HMENU ExistingSystemMenu(HWND window);

} // namespace vx::menus
