// Window words and window procedures: GetWindowLongPtrA and
// SetWindowLongPtrA on any window of this process, and subclassing.
//
// Every window has a window procedure, which SendMessageA calls (after the
// WH_CALLWNDPROC hooks). A new window's procedure hands the message to the
// window object (its WindowProc). Replacing it with GWLP_WNDPROC subclasses
// the window: the new procedure sees every message first and passes what
// it does not handle to the old one with CallWindowProcA, so subclasses
// chain in the order they were made.
//
//   static WNDPROC g_old;
//   LRESULT Sub(HWND h, UINT m, WPARAM w, LPARAM l)
//   {
//       if (m == WM_NCPAINT) ...
//       return CallWindowProcA(g_old, h, m, w, l);
//   }
//   g_old = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(hwnd, GWLP_WNDPROC,
//                                                       reinterpret_cast<LONG_PTR>(&Sub)));
//
// The style words (GWL_STYLE, GWL_EXSTYLE) are the window's own: a CWnd's
// GetStyle() reads what SetWindowLongPtrA wrote. Setting them sends
// WM_STYLECHANGING and WM_STYLECHANGED, and changes nothing on screen until
// SetWindowPos(SWP_FRAMECHANGED), as on the original.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);

constexpr int GWL_WNDPROC = -4;
constexpr int GWLP_WNDPROC = -4;
constexpr int GWL_HINSTANCE = -6;
constexpr int GWLP_HINSTANCE = -6;
constexpr int GWL_HWNDPARENT = -8;
constexpr int GWLP_HWNDPARENT = -8;
constexpr int GWL_ID = -12;
constexpr int GWLP_ID = -12;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWL_USERDATA = -21;
constexpr int GWLP_USERDATA = -21;

constexpr UINT WM_STYLECHANGING = 0x007C;
constexpr UINT WM_STYLECHANGED = 0x007D;

// lParam of WM_STYLECHANGING (the new style may be changed) and
// WM_STYLECHANGED; wParam is GWL_STYLE or GWL_EXSTYLE.
struct STYLESTRUCT {
    DWORD styleOld;
    DWORD styleNew;
};
using LPSTYLESTRUCT = STYLESTRUCT*;

// The window word `index`; 0 with ERROR_INVALID_WINDOW_HANDLE for an unknown
// window, ERROR_INVALID_INDEX for an unknown index. Windows of other
// processes answer only their style (0), as they are not ours to read.
VXBASE_EXPORT LONG_PTR GetWindowLongPtrA(HWND hwnd, int index);
// Sets a window word and returns its old value; 0 with the last error set
// on failure (a window of another process: ERROR_ACCESS_DENIED).
VXBASE_EXPORT LONG_PTR SetWindowLongPtrA(HWND hwnd, int index, LONG_PTR value);
// The 32-bit forms. A window procedure does not fit in 32 bits here, so
// GWL_WNDPROC fails with ERROR_INVALID_INDEX, as on 64-bit systems of the
// original; use the Ptr forms for it.
VXBASE_EXPORT LONG GetWindowLongA(HWND hwnd, int index);
VXBASE_EXPORT LONG SetWindowLongA(HWND hwnd, int index, LONG value);
// Calls a window procedure that GetWindowLongPtrA or SetWindowLongPtrA gave.
VXBASE_EXPORT LRESULT CallWindowProcA(WNDPROC proc, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
// The default handling of a message: a CWnd's DefWindowProc; 0 for others.
VXBASE_EXPORT LRESULT DefWindowProcA(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

namespace vx {

// The procedure every window starts with: it hands the message to the
// window object's HandleMessage.
VXBASE_EXPORT LRESULT ObjectWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace vx
