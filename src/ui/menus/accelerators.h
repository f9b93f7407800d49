// Accelerator tables: keys that stand for commands.
//
// A table is a list of ACCEL entries. A virtual-key entry (FVIRTKEY)
// matches WM_KEYDOWN or WM_SYSKEYDOWN of its key with exactly its Shift,
// Ctrl and Alt state; a character entry matches WM_CHAR or WM_SYSCHAR of
// its character (Alt with FALT). TranslateAcceleratorA sends the entry's
// command to the window as WM_COMMAND (high word 1) or, for a command of
// the window's system menu, WM_SYSCOMMAND; a command whose item in the
// window's menu is disabled is swallowed without being sent.
//
//   vx::SetAcceleratorTable(MAKEINTRESOURCE(128), {{FVIRTKEY | FCONTROL, 'O', 101}});
//   HACCEL keys = LoadAcceleratorsA(nullptr, MAKEINTRESOURCE(128));
//   if (!TranslateAcceleratorA(frame, keys, &msg)) DispatchMessageA(&msg);
#pragma once

#include "platform/framework/wintypes.h"
#include "platform/windows/messagepump.h"
#include "vxbase_ui_export.h"

#include <vector>

struct HACCEL__;
using HACCEL = HACCEL__*;

constexpr BYTE FVIRTKEY = 0x01;
constexpr BYTE FNOINVERT = 0x02;
constexpr BYTE FSHIFT = 0x04;
constexpr BYTE FCONTROL = 0x08;
constexpr BYTE FALT = 0x10;

struct ACCEL {
    BYTE fVirt;
    WORD key;
    WORD cmd;
};
using LPACCEL = ACCEL*;

// A new table with a copy of the entries; null for none.
VXBASE_UI_EXPORT HACCEL CreateAcceleratorTableA(const ACCEL* entries, int count);
VXBASE_UI_EXPORT BOOL DestroyAcceleratorTable(HACCEL table);
// Copies up to `count` entries; with a null `entries` answers the number.
VXBASE_UI_EXPORT int CopyAcceleratorTableA(HACCEL table, ACCEL* entries, int count);
// The table of resource `name` (MAKEINTRESOURCE(id) or a text), made once
// and kept; null (ERROR_RESOURCE_NAME_NOT_FOUND) without one. `instance` is
// ignored, as for menus.
VXBASE_UI_EXPORT HACCEL LoadAcceleratorsA(HINSTANCE instance, LPCSTR name);
// TRUE when the message was an accelerator of the table (and is handled).
VXBASE_UI_EXPORT int TranslateAcceleratorA(HWND window, HACCEL table, MSG* msg);

namespace vx {

// Adds or replaces the accelerator resource `name`; no entries removes it.
VXBASE_UI_EXPORT void SetAcceleratorTable(LPCSTR name, std::vector<ACCEL> entries);

} // namespace vx
