// Named shared memory: the desktop API's file mappings backed by the paging
// file, on POSIX shared memory.
//
//   HANDLE block = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 264, "VXW_PREVIEW");
//   char* bytes = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0));
//   // in another process of the same user:
//   HANDLE same = OpenFileMappingA(FILE_MAP_READ, FALSE, "VXW_PREVIEW");
//
// * The same name opens the same block in every process of the user's
//   session (the processes that share a window bus, windowbus.h); another
//   user's processes can neither open it nor plant a block under its name
//   (the objects are the user's own, mode 0600, and one that is not is
//   refused with ERROR_ACCESS_DENIED). Names are case-sensitive; a "Local\"
//   or "Global\" prefix is dropped; any other "\" gives ERROR_BAD_PATHNAME,
//   and a name longer than MAX_PATH - 1 or than the system's limit gives
//   ERROR_FILENAME_EXCED_RANGE. Every other byte, "/" and "." too, is part
//   of the name and never reaches outside the user's namespace.
// * A block lives while a handle or a view of it is open in any process, and
//   is gone when the last one closes (at the latest when the last process
//   that held it ends, or, after a crash, when the next block is created).
// * A null or empty name makes a block that only its handles reach; a handle
//   sent in a message through the window bus means the same block in the
//   receiving process, named or not.
// * Only the paging file backs a mapping here: `file` must be
//   INVALID_HANDLE_VALUE.
#pragma once

#include "platform/framework/wintypes.h"
#include "platform/ipc/handleapi.h"
#include "vxbase_export.h"

#include <cstddef>
#include <string>

using SIZE_T = std::size_t;

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

constexpr DWORD PAGE_READONLY = 0x02;
constexpr DWORD PAGE_READWRITE = 0x04;
constexpr DWORD FILE_MAP_COPY = 0x0001;
constexpr DWORD FILE_MAP_WRITE = 0x0002;
constexpr DWORD FILE_MAP_READ = 0x0004;
constexpr DWORD FILE_MAP_ALL_ACCESS = 0x000F001F;

// A block of sizeHigh:sizeLow bytes (not 0), zero-filled when new. If the
// name is taken, the existing block is opened with its own size and
// GetLastError() is ERROR_ALREADY_EXISTS. Null on failure, with the reason
// in GetLastError(). The security attributes are ignored: blocks are the
// user's own.
VXBASE_EXPORT HANDLE CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES security, DWORD protect, DWORD sizeHigh,
                                        DWORD sizeLow, const char* name);
// An existing block by name; null with ERROR_FILE_NOT_FOUND if there is none.
// FILE_MAP_READ alone gives a handle whose views are read-only.
VXBASE_EXPORT HANDLE OpenFileMappingA(DWORD access, BOOL inheritHandle, const char* name);
// Maps `bytes` (0: to the end) of the block from the offset, which must be
// a multiple of 65536. FILE_MAP_WRITE needs a writable handle. Null on
// failure, with the reason in GetLastError().
VXBASE_EXPORT LPVOID MapViewOfFile(HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow, SIZE_T bytes);
// Unmaps the view that starts at `address`; FALSE for any other address.
VXBASE_EXPORT BOOL UnmapViewOfFile(LPCVOID address);

namespace vx {

// The size of a block, 0 for a handle that is no mapping.
VXBASE_EXPORT std::size_t FileMappingSize(HANDLE mapping);
// The POSIX shared memory object that holds a named block (in /dev/shm):
// "vxbase.<uid>.<session>." and the name with every byte outside
// [A-Za-z0-9_-] written as %XX; the session is eight hex digits of a hash of
// the window bus directory. "" for a name that cannot be one.
VXBASE_EXPORT std::string FileMappingObjectName(const char* name);
// How many blocks this process holds through handles or views.
VXBASE_EXPORT std::size_t OpenFileMappingCount();
// The descriptor of a live mapping handle (still the handle's), or -1: what
// a vx::HandleCarrier (windowbus.h) sends for a block.
VXBASE_EXPORT int FileMappingDescriptor(HANDLE mapping);
// A new handle for a descriptor received from another process of the user,
// which it takes over (and closes on failure). Null if it is no block of
// this user's: a file mapping or a block without a name.
VXBASE_EXPORT HANDLE AdoptFileMappingDescriptor(int fd);

} // namespace vx
