// The shell's file operation, SHFileOperationA: so far deleting, with or
// without the recycle bin. The recycle bin is the user's Trash of the
// freedesktop.org Trash layout (files/ and info/*.trashinfo, through GIO),
// where a desktop's file manager shows the file and can put it back.
//
//   char from[MAX_PATH + 2] = "C:\\P\\plan.0012\0";  // double-terminated list
//   SHFILEOPSTRUCTA op{};
//   op.wFunc = FO_DELETE;
//   op.pFrom = from;
//   op.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_ALLOWUNDO;
//   bool ok = SHFileOperationA(&op) == 0;
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

constexpr UINT FO_MOVE = 0x0001;
constexpr UINT FO_COPY = 0x0002;
constexpr UINT FO_DELETE = 0x0003;
constexpr UINT FO_RENAME = 0x0004;

using FILEOP_FLAGS = WORD;
constexpr FILEOP_FLAGS FOF_MULTIDESTFILES = 0x0001;
constexpr FILEOP_FLAGS FOF_SILENT = 0x0004;
constexpr FILEOP_FLAGS FOF_RENAMEONCOLLISION = 0x0008;
constexpr FILEOP_FLAGS FOF_NOCONFIRMATION = 0x0010;
constexpr FILEOP_FLAGS FOF_ALLOWUNDO = 0x0040;
constexpr FILEOP_FLAGS FOF_FILESONLY = 0x0080;
constexpr FILEOP_FLAGS FOF_NOCONFIRMMKDIR = 0x0200;
constexpr FILEOP_FLAGS FOF_NOERRORUI = 0x0400;

struct SHFILEOPSTRUCTA {
    HWND hwnd;
    UINT wFunc;
    const char* pFrom; // list of path texts, each zero-terminated, ended by an empty one
    const char* pTo;
    FILEOP_FLAGS fFlags;
    BOOL fAnyOperationsAborted;
    void* hNameMappings;
    const char* lpszProgressTitle;
};

// FO_DELETE: removes every path of pFrom. A name may hold wildcards (every
// match goes, directories too unless FOF_FILESONLY); a directory goes with
// its content. With FOF_ALLOWUNDO each goes to the Trash instead; a file the
// Trash cannot take (no Trash on its file system, say) is kept, and the
// call fails. A file system root, a mount point or the root of a drive is
// never removed. No dialog is ever shown, whatever the flags.
// Returns 0 when everything went, else an error code (2 when a path names
// nothing, 5 when one could not be removed). Other operations are not
// supported and return 1.
VXBASE_EXPORT int SHFileOperationA(SHFILEOPSTRUCTA* op);
