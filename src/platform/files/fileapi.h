// The file operations of the desktop API on path texts (see hostpath.h).
// Paths go to the disk through vx::DiskPath, so a file is found whatever the
// case of its name, as on the original's file system.
//
//   CopyFileA("C:\\P\\VEXAL.INI", "C:\\P\\VEXAL55.INI", TRUE);
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// Copies a file. With `failIfExists` an existing target is left alone and
// the call fails. The copy goes to a temporary file first, so a failed copy
// leaves no half-written target.
VXBASE_EXPORT BOOL CopyFileA(const char* existingFile, const char* newFile, BOOL failIfExists);
VXBASE_EXPORT BOOL DeleteFileA(const char* file);
// Renames a file; fails if the target exists, unless it is the same file
// under another case (a change of case is a rename).
VXBASE_EXPORT BOOL MoveFileA(const char* existingFile, const char* newFile);
VXBASE_EXPORT BOOL CreateDirectoryA(const char* path, void* securityAttributes);
VXBASE_EXPORT BOOL RemoveDirectoryA(const char* path);
// FILE_ATTRIBUTE_... bits, or INVALID_FILE_ATTRIBUTES if the path is missing.
VXBASE_EXPORT DWORD GetFileAttributesA(const char* path);
// The current directory as a path text. Returns its length when it fits in
// `size` bytes with its zero, else the size it needs (the buffer is then
// left alone); 0 when there is none.
VXBASE_EXPORT DWORD GetCurrentDirectoryA(DWORD size, char* buffer);
VXBASE_EXPORT BOOL SetCurrentDirectoryA(const char* path);
