#include "platform/windows/windowlong.h"

#include "platform/windows/lasterror.h"
#include "platform/windows/windowtable_p.h"

namespace {

bool Known(int index)
{
    switch (index) {
    case GWLP_WNDPROC:
    case GWLP_HINSTANCE:
    case GWLP_HWNDPARENT:
    case GWLP_ID:
    case GWL_STYLE:
    case GWL_EXSTYLE:
    case GWLP_USERDATA:
        return true;
    default:
        return false;
    }
}

// A window of another process: only its existence is known here.
bool Foreign(HWND hwnd)
{
    return hwnd && !vx::IsLocalHandle(hwnd) && IsWindow(hwnd);
}

} // namespace

LONG_PTR GetWindowLongPtrA(HWND hwnd, int index)
{
    if (!Known(index)) {
        SetLastError(ERROR_INVALID_INDEX);
        return 0;
    }
    if (Foreign(hwnd))
        return 0;
    LONG_PTR value = 0;
    const bool found = vx::detail::WithWindow(hwnd, [&](vx::MessageTarget* target, vx::detail::WindowExtras& x) {
        switch (index) {
        case GWLP_WNDPROC: value = reinterpret_cast<LONG_PTR>(x.proc); break;
        case GWLP_HINSTANCE: value = 0; break;
        case GWLP_USERDATA: value = x.userData; break;
        case GWLP_HWNDPARENT: break; // answered below, outside the lock
        default:
            if (!target->ReadWindowLong(index, value))
                value = index == GWL_STYLE ? x.style : index == GWL_EXSTYLE ? x.exStyle : x.id;
            break;
        }
    });
    if (!found) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    if (index == GWLP_HWNDPARENT)
        value = reinterpret_cast<LONG_PTR>(GetParent(hwnd));
    return value;
}

LONG_PTR SetWindowLongPtrA(HWND hwnd, int index, LONG_PTR value)
{
    if (!Known(index) || index == GWLP_HINSTANCE || index == GWLP_HWNDPARENT) {
        SetLastError(ERROR_INVALID_INDEX);
        return 0;
    }
    if (Foreign(hwnd)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return 0;
    }
    if (index == GWLP_WNDPROC && !value) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (index == GWL_STYLE || index == GWL_EXSTYLE) {
        // The window hears of the change before and after, and may alter the
        // new style while it is changing.
        const LONG_PTR old = GetWindowLongPtrA(hwnd, index);
        if (!IsWindow(hwnd)) {
            SetLastError(ERROR_INVALID_WINDOW_HANDLE);
            return 0;
        }
        STYLESTRUCT change{static_cast<DWORD>(old), static_cast<DWORD>(value)};
        SendMessageA(hwnd, WM_STYLECHANGING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&change));
        vx::detail::WithWindow(hwnd, [&](vx::MessageTarget* target, vx::detail::WindowExtras& x) {
            if (!target->WriteWindowLong(index, static_cast<LONG_PTR>(change.styleNew)))
                (index == GWL_STYLE ? x.style : x.exStyle) = change.styleNew;
        });
        SendMessageA(hwnd, WM_STYLECHANGED, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&change));
        return old;
    }
    LONG_PTR old = 0;
    const bool found = vx::detail::WithWindow(hwnd, [&](vx::MessageTarget* target, vx::detail::WindowExtras& x) {
        switch (index) {
        case GWLP_WNDPROC:
            old = reinterpret_cast<LONG_PTR>(x.proc);
            x.proc = reinterpret_cast<WNDPROC>(value);
            break;
        case GWLP_USERDATA:
            old = std::exchange(x.userData, value);
            break;
        case GWLP_ID:
            if (!target->ReadWindowLong(index, old))
                old = x.id;
            if (!target->WriteWindowLong(index, value))
                x.id = static_cast<UINT>(value);
            break;
        default:
            break;
        }
    });
    if (!found) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    return old;
}

LONG GetWindowLongA(HWND hwnd, int index)
{
    if (index == GWL_WNDPROC) {
        SetLastError(ERROR_INVALID_INDEX);
        return 0;
    }
    return static_cast<LONG>(GetWindowLongPtrA(hwnd, index));
}

LONG SetWindowLongA(HWND hwnd, int index, LONG value)
{
    if (index == GWL_WNDPROC) {
        SetLastError(ERROR_INVALID_INDEX);
        return 0;
    }
    // A style word holds 32 bits: keep the sign bit (WS_POPUP) a bit, not a sign.
    const LONG_PTR wide = (index == GWL_STYLE || index == GWL_EXSTYLE)
                              ? static_cast<LONG_PTR>(static_cast<DWORD>(value))
                              : static_cast<LONG_PTR>(value);
    return static_cast<LONG>(SetWindowLongPtrA(hwnd, index, wide));
}

LRESULT CallWindowProcA(WNDPROC proc, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return proc ? proc(hwnd, message, wParam, lParam) : 0;
}

LRESULT DefWindowProcA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    vx::MessageTarget* target = vx::FindTarget(hwnd);
    return target ? target->DefaultMessage(message, wParam, lParam) : 0;
}
