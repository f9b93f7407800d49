// The menus that belong to windows: a frame's menu bar menu (SetMenu) and
// each window's copy of the system menu.

#include "ui/menus/menubar_p.h"
#include "ui/menus/menumodel_p.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/lasterror.h"

#include <unordered_map>

namespace {

struct WindowMenus {
    HMENU bar = nullptr;
    HMENU system = nullptr; // ours: destroyed with the window's entry
};

std::unordered_map<HWND, WindowMenus>& Table()
{
    static auto* table = new std::unordered_map<HWND, WindowMenus>;
    return *table;
}

// Handles are never reused, so entries of windows that are gone only wait
// to be dropped; their system menus go with them.
void Sweep()
{
    auto& t = Table();
    if (t.size() < 64)
        return;
    for (auto it = t.begin(); it != t.end();) {
        if (!IsWindow(it->first)) {
            if (it->second.system)
                DestroyMenu(it->second.system);
            it = t.erase(it);
        } else {
            ++it;
        }
    }
}

bool LocalWindow(HWND window)
{
    if (CWnd::FromHandle(window))
        return true;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return false;
}

} // namespace

namespace vx::menus {

HMENU ExistingSystemMenu(HWND window)
{
    auto it = Table().find(window);
    return it == Table().end() || !IsMenu(it->second.system) ? nullptr : it->second.system;
}

} // namespace vx::menus

BOOL SetMenu(HWND window, HMENU menu)
{
    if (!LocalWindow(window))
        return FALSE;
    if (menu && !IsMenu(menu)) {
        SetLastError(ERROR_INVALID_MENU_HANDLE);
        return FALSE;
    }
    Sweep();
    Table()[window].bar = menu;
    DrawMenuBar(window);
    return TRUE;
}

HMENU GetMenu(HWND window)
{
    auto it = Table().find(window);
    if (it == Table().end() || !IsWindow(window) || !IsMenu(it->second.bar))
        return nullptr;
    return it->second.bar;
}

BOOL DrawMenuBar(HWND window)
{
    CWnd* w = CWnd::FromHandle(window);
    if (!w) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    // The items may have changed: the bar is measured again, and the client
    // area follows its height.
    vx::menus::ForgetMenuBar(window);
    if (w->GetStyle() & WS_CHILD)
        w->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
    else
        w->SetWindowPos(nullptr, 0, 0, 0, 0,
                        SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    return TRUE;
}

HMENU GetSystemMenu(HWND window, BOOL revert)
{
    if (!LocalWindow(window))
        return nullptr;
    WindowMenus& m = Table()[window];
    if (revert) {
        if (m.system)
            DestroyMenu(m.system);
        m.system = nullptr;
        return nullptr;
    }
    if (m.system && IsMenu(m.system))
        return m.system;
    Sweep();
    HMENU menu = CreatePopupMenu();
    AppendMenuA(menu, MF_STRING, SC_RESTORE, "&Restore");
    AppendMenuA(menu, MF_STRING, SC_MOVE, "&Move");
    AppendMenuA(menu, MF_STRING, SC_SIZE, "&Size");
    AppendMenuA(menu, MF_STRING, SC_MINIMIZE, "Mi&nimize");
    AppendMenuA(menu, MF_STRING, SC_MAXIMIZE, "Ma&ximize");
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuA(menu, MF_STRING, SC_CLOSE, "&Close\tAlt+F4");
    SetMenuDefaultItem(menu, SC_CLOSE, FALSE);
    Table()[window].system = menu;
    return menu;
}
