// The process walk of the desktop API: a snapshot of the running processes,
// read entry by entry. On Linux the snapshot comes from /proc; szExeFile is
// the name the kernel keeps for the process (the file name it was started
// from, or the name it gave itself), so a program started as ".../IT" is
// listed as "IT".
//
//   HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
//   PROCESSENTRY32 entry{};
//   entry.dwSize = sizeof entry;
//   for (BOOL ok = Process32First(snap, &entry); ok; ok = Process32Next(snap, &entry))
//       use(entry.th32ProcessID, entry.szExeFile);
//   CloseHandle(snap);
#pragma once

#include "platform/framework/wintypes.h"
#include "platform/ipc/handleapi.h"
#include "vxbase_export.h"

constexpr DWORD TH32CS_SNAPHEAPLIST = 0x00000001;
constexpr DWORD TH32CS_SNAPPROCESS = 0x00000002;
constexpr DWORD TH32CS_SNAPTHREAD = 0x00000004;
constexpr DWORD TH32CS_SNAPMODULE = 0x00000008;

struct PROCESSENTRY32 {
    DWORD dwSize;
    DWORD cntUsage;
    DWORD th32ProcessID;
    ULONG_PTR th32DefaultHeapID;
    DWORD th32ModuleID;
    DWORD cntThreads;
    DWORD th32ParentProcessID;
    LONG pcPriClassBase;
    DWORD dwFlags;
    char szExeFile[MAX_PATH];
};

// A snapshot of all running processes (not those that have ended but are
// not yet collected by their parent); only TH32CS_SNAPPROCESS is supported, other
// kinds give an empty snapshot. INVALID_HANDLE_VALUE if /proc is unreadable.
VXBASE_EXPORT HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD processId);
// The first and the following entries; FALSE at the end, for a handle that
// is no snapshot, or when entry->dwSize is smaller than the structure.
VXBASE_EXPORT BOOL Process32First(HANDLE snapshot, PROCESSENTRY32* entry);
VXBASE_EXPORT BOOL Process32Next(HANDLE snapshot, PROCESSENTRY32* entry);
// A snapshot is freed by CloseHandle (handleapi.h).
