// The thread's last error code and the system's texts for error codes.
//
// Calls of the platform layer that fail for a reason a caller may ask about
// (a window, hook, menu or atom that does not exist...) set the calling
// thread's last error; successful calls leave it alone, as on the original,
// so a caller clears it with SetLastError(0) before a call whose zero answer
// may be a success.
//
//   SetLastError(0);
//   if (!SetWindowLongPtrA(hwnd, GWLP_WNDPROC, old) && GetLastError())
//       report(GetLastError());
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstdarg>

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_OUTOFMEMORY = 14;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_INVALID_NAME = 123;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
constexpr DWORD ERROR_BAD_PATHNAME = 161;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_INVALID_ADDRESS = 487;
constexpr DWORD ERROR_INVALID_FLAGS = 1004;
constexpr DWORD ERROR_MAPPED_ALIGNMENT = 1132;
constexpr DWORD ERROR_NOT_FOUND = 1168;
constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
constexpr DWORD ERROR_INVALID_MENU_HANDLE = 1401;
constexpr DWORD ERROR_INVALID_ACCEL_HANDLE = 1403;
constexpr DWORD ERROR_INVALID_HOOK_HANDLE = 1404;
constexpr DWORD ERROR_CANNOT_FIND_WND_CLASS = 1407;
constexpr DWORD ERROR_INVALID_INDEX = 1413;
constexpr DWORD ERROR_INVALID_HOOK_FILTER = 1426;
constexpr DWORD ERROR_INVALID_FILTER_PROC = 1427;
constexpr DWORD ERROR_HOOK_NEEDS_HMOD = 1428;
constexpr DWORD ERROR_HOOK_NOT_INSTALLED = 1431;
constexpr DWORD ERROR_INVALID_THREAD_ID = 1444;
constexpr DWORD ERROR_MENU_ITEM_NOT_FOUND = 1456;
constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;

// The calling thread's last error (0 until a call sets one).
VXBASE_EXPORT DWORD GetLastError();
VXBASE_EXPORT void SetLastError(DWORD error);

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x00000100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x00000200;
constexpr DWORD FORMAT_MESSAGE_FROM_STRING = 0x00000400;
constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x00000800;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x00001000;
constexpr DWORD FORMAT_MESSAGE_ARGUMENT_ARRAY = 0x00002000;
constexpr DWORD FORMAT_MESSAGE_MAX_WIDTH_MASK = 0x000000FF;

constexpr WORD LANG_NEUTRAL = 0x00;
constexpr WORD SUBLANG_DEFAULT = 0x01;
constexpr DWORD MAKELANGID(WORD primary, WORD sub)
{
    return static_cast<DWORD>((sub << 10) | primary);
}

// Formats a message: with FORMAT_MESSAGE_FROM_SYSTEM the system's English
// text of error `messageId` (ending in "\r\n", as the original's did), with
// FORMAT_MESSAGE_FROM_STRING the text `source`. Inserts %1 to %99 are taken
// as strings from `arguments` (a va_list*, or with
// FORMAT_MESSAGE_ARGUMENT_ARRAY an array of DWORD_PTR), unless
// FORMAT_MESSAGE_IGNORE_INSERTS leaves them as they stand; "%%" is "%".
// With FORMAT_MESSAGE_ALLOCATE_BUFFER `buffer` is a char** that receives a
// new buffer for LocalFree. Returns the length written (without the zero),
// 0 with the last error set when there is no text (ERROR_MR_MID_NOT_FOUND
// is reported as ERROR_NOT_FOUND) or the buffer is too small. The language
// is ignored.
VXBASE_EXPORT DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId, LPSTR buffer,
                                   DWORD size, va_list* arguments);
// Frees a buffer that FormatMessageA allocated; returns null.
VXBASE_EXPORT HANDLE LocalFree(HANDLE memory);
