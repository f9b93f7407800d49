// Window properties: named values a window carries for whoever asks.
//
// A name is compared without regard to ASCII case; an atom (MAKEINTATOM)
// names the property of the atom's text. Properties go with the window.
//
//   SetPropA(hwnd, "OldMenuProc", reinterpret_cast<HANDLE>(old));
//   auto old = reinterpret_cast<WNDPROC>(GetPropA(hwnd, "OldMenuProc"));
//   RemovePropA(hwnd, "OldMenuProc");
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// FALSE for an unknown window (ERROR_INVALID_WINDOW_HANDLE), a window of
// another process (ERROR_ACCESS_DENIED) or a bad name (ERROR_INVALID_PARAMETER).
VXBASE_EXPORT BOOL SetPropA(HWND hwnd, LPCSTR name, HANDLE data);
// The value, or null when the window has no such property.
VXBASE_EXPORT HANDLE GetPropA(HWND hwnd, LPCSTR name);
// Takes the property away and returns its value (null when there was none).
VXBASE_EXPORT HANDLE RemovePropA(HWND hwnd, LPCSTR name);

using PROPENUMPROCEXA = BOOL (*)(HWND hwnd, LPSTR name, HANDLE data, ULONG_PTR param);
// Calls `proc` for each property (in the order they were set) until it
// answers FALSE; returns the last answer, -1 when there is no property.
VXBASE_EXPORT int EnumPropsExA(HWND hwnd, PROPENUMPROCEXA proc, LPARAM param);
