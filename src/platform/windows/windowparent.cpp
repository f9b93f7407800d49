#include "platform/windows/windowparent.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/windowtable_p.h"

namespace vx {

namespace detail {
ReparentHook g_reparentHook = nullptr;
}

void SetReparentHook(ReparentHook hook)
{
    detail::g_reparentHook = hook;
}

} // namespace vx

HWND SetParent(HWND child, HWND newParent)
{
    CWnd* window = CWnd::FromHandle(child);
    if (!window || (newParent && !CWnd::FromHandle(newParent)) || child == newParent)
        return nullptr;
    const HWND old = GetParent(child);
    // The window word is the window's own; it is written past
    // SetWindowLongPtrA, which refuses GWLP_HWNDPARENT to callers.
    static_cast<vx::MessageTarget*>(window)->WriteWindowLong(GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(newParent));
    return old;
}
