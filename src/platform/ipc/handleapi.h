// Handles of kernel objects (process snapshots, file mappings) and the
// thread's last error, as the desktop API has them.
//
//   HANDLE block = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 264, "VXW_PREVIEW");
//   if (!block && GetLastError() == ERROR_ACCESS_DENIED) ...
//   CloseHandle(block);
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#ifndef INVALID_HANDLE_VALUE
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))
#endif

// The error codes the library's kernel-object calls leave behind.
constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_INVALID_NAME = 123;
constexpr DWORD ERROR_BAD_PATHNAME = 161;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_INVALID_ADDRESS = 487;
constexpr DWORD ERROR_MAPPED_ALIGNMENT = 1132;

// The calling thread's last error, set by the calls that say so.
VXBASE_EXPORT DWORD GetLastError();
VXBASE_EXPORT void SetLastError(DWORD error);

// Frees a snapshot or a file mapping handle (a mapping's views stay valid).
// FALSE, with ERROR_INVALID_HANDLE, for any other value.
VXBASE_EXPORT BOOL CloseHandle(HANDLE handle);
