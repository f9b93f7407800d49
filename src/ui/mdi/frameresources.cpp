// What a frame loads by resource id (CFrameWnd::LoadFrame): menus,
// accelerators and icons are this library's, so it hands them to the core.

#include "platform/windows/cframewnd.h"
#include "ui/gdi/wingdi.h"
#include "ui/menus/accelerators.h"
#include "ui/menus/winmenu.h"

namespace {

LPCSTR Name(UINT id)
{
    return reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(id));
}

const bool g_installed = [] {
    vx::FrameResources res;
    res.loadMenu = [](UINT id) { return LoadMenuA(nullptr, Name(id)); };
    res.loadAccelerators = [](UINT id) { return LoadAcceleratorsA(nullptr, Name(id)); };
    res.loadIcon = [](UINT id) { return LoadIconA(nullptr, Name(id)); };
    res.setMenu = [](HWND window, HMENU menu) { return ::SetMenu(window, menu); };
    res.getMenu = [](HWND window) { return ::GetMenu(window); };
    res.translateAccelerator = [](HWND window, HACCEL table, MSG* msg) {
        return TranslateAcceleratorA(window, table, msg);
    };
    vx::SetFrameResources(res);
    return true;
}();

} // namespace
