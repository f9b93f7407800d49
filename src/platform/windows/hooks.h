// Window hooks: procedures that see messages before the windows do.
//
// WH_CALLWNDPROC hooks see each message sent to a window of their thread
// before its window procedure (a CWPSTRUCT in lParam), WH_CALLWNDPROCRET
// hooks see it with the answer afterwards (CWPRETSTRUCT). WH_MSGFILTER hooks
// see the input messages of a modal loop (a menu, a dialog box) through
// CallMsgFilterA, with the loop's MSGF_ code; a non-zero answer tells the
// loop to leave the message alone. Hooks of one kind form a chain, the
// newest first; a hook passes on with CallNextHookEx.
//
//   LRESULT CALLBACK Filter(int code, WPARAM w, LPARAM l)
//   {
//       if (code == MSGF_MENU && reinterpret_cast<MSG*>(l)->message == WM_KEYDOWN) ...
//       return CallNextHookEx(g_hook, code, w, l);
//   }
//   g_hook = SetWindowsHookExA(WH_MSGFILTER, Filter, nullptr, GetCurrentThreadId());
#pragma once

#include "platform/windows/messagepump.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

struct HHOOK__;
using HHOOK = HHOOK__*;
using HOOKPROC = LRESULT (*)(int code, WPARAM wParam, LPARAM lParam);

constexpr int WH_MSGFILTER = -1;
constexpr int WH_GETMESSAGE = 3;
constexpr int WH_CALLWNDPROC = 4;
constexpr int WH_CBT = 5;
constexpr int WH_SYSMSGFILTER = 6;
constexpr int WH_CALLWNDPROCRET = 12;

constexpr int HC_ACTION = 0;

// The codes of modal loops for WH_MSGFILTER.
constexpr int MSGF_DIALOGBOX = 0;
constexpr int MSGF_MESSAGEBOX = 1;
constexpr int MSGF_MENU = 2;
constexpr int MSGF_SCROLLBAR = 5;
constexpr int MSGF_NEXTWINDOW = 6;
constexpr int MSGF_USER = 4096;

struct CWPSTRUCT {
    LPARAM lParam;
    WPARAM wParam;
    UINT message;
    HWND hwnd;
};
using PCWPSTRUCT = CWPSTRUCT*;

struct CWPRETSTRUCT {
    LRESULT lResult;
    LPARAM lParam;
    WPARAM wParam;
    UINT message;
    HWND hwnd;
};
using PCWPRETSTRUCT = CWPRETSTRUCT*;

// The id of the calling thread, as the hooks and GetWindowThreadProcessId know it.
VXBASE_EXPORT DWORD GetCurrentThreadId();

// Installs a hook of kind WH_CALLWNDPROC, WH_CALLWNDPROCRET, WH_MSGFILTER or
// WH_SYSMSGFILTER for thread `threadId`; 0 means every thread of the process
// and needs a module handle (ERROR_HOOK_NEEDS_HMOD otherwise). Other kinds
// fail with ERROR_INVALID_HOOK_FILTER, a null procedure with
// ERROR_INVALID_FILTER_PROC.
VXBASE_EXPORT HHOOK SetWindowsHookExA(int kind, HOOKPROC proc, HINSTANCE module, DWORD threadId);
// Removes a hook; FALSE (ERROR_INVALID_HOOK_HANDLE) for one that is not installed.
VXBASE_EXPORT BOOL UnhookWindowsHookEx(HHOOK hook);
// Calls the next hook of the chain after `hook` (which may have been
// removed meanwhile); 0 at the end of the chain.
VXBASE_EXPORT LRESULT CallNextHookEx(HHOOK hook, int code, WPARAM wParam, LPARAM lParam);
// Offers a message of a modal loop to the WH_SYSMSGFILTER, then the
// WH_MSGFILTER hooks of the thread; TRUE when one of them took it.
VXBASE_EXPORT BOOL CallMsgFilterA(MSG* msg, int code);

namespace vx {

// Whether a hook of the kind is installed for the calling thread, so that
// message delivery skips building the hook records when none is.
VXBASE_EXPORT bool HasHooks(int kind);
// Calls the chain of the kind for the calling thread; 0 without hooks.
VXBASE_EXPORT LRESULT CallHooks(int kind, int code, WPARAM wParam, LPARAM lParam);

} // namespace vx
