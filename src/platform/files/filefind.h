// Searching a directory by wildcard: the desktop API's FindFirstFileA family
// and the framework's CFileFind, on path texts (see hostpath.h).
//
// The last part of the name may hold "*" and "?" with the rules of
// wildcard.h; names match without regard to ASCII case, as on the original's
// file system. A name without wildcards finds that one file or directory.
//
//   CFileFind finder;
//   BOOL more = finder.FindFile("C:\\Projekte\\plan.*");
//   while (more) {
//       more = finder.FindNextFile();
//       if (!finder.IsDirectory())
//           use(finder.GetFilePath());      // "C:\\Projekte\\plan.0012"
//   }
//
// Names come back in the order the directory lists them, which is not
// sorted; in the code page, so a name with characters the code page lacks
// reads with "?" in their place (DiskPath still reaches it). "." and ".."
// are found like other names. Attributes and times are read only when asked.
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/framework/ctime.h"
#include "platform/files/filetime.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstdint>
#include <memory>

#ifndef INVALID_HANDLE_VALUE
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))
#endif

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime; // the status change time: Linux keeps no birth time everywhere
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    char cFileName[MAX_PATH];   // cut to MAX_PATH - 1 bytes
    char cAlternateFileName[14]; // always empty: no short names
};

// The first match of `fileName`, or INVALID_HANDLE_VALUE if nothing matches
// (also for a null name, a name ending in a separator and a directory that
// cannot be read). Close the handle with FindClose.
VXBASE_EXPORT HANDLE FindFirstFileA(const char* fileName, WIN32_FIND_DATAA* findData);
// The next match; FALSE when there is none.
VXBASE_EXPORT BOOL FindNextFileA(HANDLE findFile, WIN32_FIND_DATAA* findData);
VXBASE_EXPORT BOOL FindClose(HANDLE findFile);

struct stat;

namespace vx {
struct FileFinder;
}

class VXBASE_EXPORT CFileFind : public CObject {
public:
    CFileFind();
    ~CFileFind() override;
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;

    // Starts a search (a null name is "*.*"); TRUE if anything matches. Call
    // FindNextFile before reading the first match.
    BOOL FindFile(const char* name = nullptr, DWORD unused = 0);
    // Moves to the next match; TRUE if another one follows it, so the last
    // match is read after a FALSE.
    BOOL FindNextFile();
    void Close();

    // The directory of the pattern as it was given, with its separator:
    // "C:\\Projekte\\" for "C:\\Projekte\\plan.*", "" for "plan.*".
    CString GetRoot() const;
    CString GetFileName() const;  // "plan.0012"
    CString GetFilePath() const;  // root + name
    CString GetFileTitle() const; // the name without its last "." and extension
    std::uint64_t GetLength() const;

    // FALSE if the file's status cannot be read.
    BOOL GetLastWriteTime(FILETIME* time) const;
    BOOL GetLastWriteTime(CTime& time) const;
    BOOL GetLastAccessTime(FILETIME* time) const;
    BOOL GetCreationTime(FILETIME* time) const;

    BOOL MatchesMask(DWORD mask) const; // any of the FILE_ATTRIBUTE_... bits
    BOOL IsDots() const;                // "." or ".."
    BOOL IsDirectory() const;
    BOOL IsReadOnly() const;
    BOOL IsHidden() const;              // a name that starts with "."
    BOOL IsSystem() const { return MatchesMask(FILE_ATTRIBUTE_SYSTEM); }
    BOOL IsArchived() const { return MatchesMask(FILE_ATTRIBUTE_ARCHIVE); }
    BOOL IsNormal() const { return MatchesMask(FILE_ATTRIBUTE_NORMAL); }

private:
    const struct stat* Status() const;
    std::unique_ptr<vx::FileFinder> d;
};
