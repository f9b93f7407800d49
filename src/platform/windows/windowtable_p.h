// Internal to the window layer; do not include directly.
//
// What the window table keeps for each local window beyond its title and
// class: the window procedure, properties and window words, and the access
// the subclassing, property and message functions need.
#pragma once

#include "platform/windows/windowlong.h"
#include "platform/windows/windows.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vx::detail {

struct WindowExtras {
    WNDPROC proc = &ObjectWindowProc;
    std::vector<std::pair<std::string, HANDLE>> props; // names folded to lower case
    LONG_PTR userData = 0;
    // The style words of a window object that does not keep its own.
    DWORD style = 0;
    DWORD exStyle = 0;
    UINT id = 0;
    HANDLE menu = nullptr; // SetMenu's menu
};

// Runs `fn` with the window's object and extras under the table's lock;
// false for a window that is not in this process's table.
bool WithWindow(HWND hwnd, const std::function<void(MessageTarget*, WindowExtras&)>& fn);
bool ProcedureOf(HWND hwnd, MessageTarget*& target, WNDPROC& proc);
// Records a window's new parent (or owner) in the table.
bool SetParentEntry(HWND hwnd, HWND parent);
// Hands a message to the window's procedure; `hooks` lets the
// WH_CALLWNDPROC and WH_CALLWNDPROCRET hooks see it (sent messages).
LRESULT Deliver(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, bool hooks);

} // namespace vx::detail
