// Handles of kernel objects: process snapshots and file mappings. Their
// calls leave their reasons in the thread's last error (lasterror.h).
//
//   HANDLE block = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 264, "VXW_PREVIEW");
//   if (!block && GetLastError() == ERROR_ACCESS_DENIED) ...
//   CloseHandle(block);
#pragma once

#include "platform/framework/wintypes.h"
#include "platform/windows/lasterror.h"
#include "vxbase_export.h"

#ifndef INVALID_HANDLE_VALUE
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))
#endif

// Frees a snapshot or a file mapping handle (a mapping's views stay valid).
// FALSE, with ERROR_INVALID_HANDLE, for any other value.
VXBASE_EXPORT BOOL CloseHandle(HANDLE handle);
