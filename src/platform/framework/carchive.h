// CArchive: the framework's binary archive, here tied to a file of its own.
//
// An archive either stores (writes) or loads (reads). Numbers are written
// little-endian in their own size (char and BYTE 1 byte, short and WORD 2,
// int, DWORD and float 4, long long and double 8), strings and counts in the
// framework's length-prefixed layout, so that files written by the suite
// read unchanged:
//
//   CString    length < 255:    BYTE length, then the bytes
//              length < 65534:  BYTE 0xFF, WORD length, then the bytes
//              otherwise:       BYTE 0xFF, WORD 0xFFFF, DWORD length, bytes
//   count      count < 65535:   WORD count
//              otherwise:       WORD 0xFFFF, DWORD count
//
//   {
//       CArchive ar("C:\\P\\names.dat", CArchive::store);
//       ar << CString("K1") << 42;
//       if (!ar.Close()) ...                  // nothing was replaced
//   }
//   CArchive in("C:\\P\\names.dat", CArchive::load);
//   CString name; int n;
//   in >> name >> n;
//
// The framework reported failures by exception; this library throws
// nothing, so an archive notes its first failure instead (IsFailed): a file
// that cannot be opened, a write that fails, a read past the end or a
// length that the rest of the file cannot hold. A read after a failure
// gives zeros and empty strings. A storing archive writes to a temporary
// file beside the target and puts it in place only at a successful Close,
// so a failure never leaves a half-written file.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <bit>
#include <cstdio>
#include <cstring>
#include <string>
#include <type_traits>

class VXBASE_EXPORT CArchive {
public:
    enum Mode : UINT { store = 0, load = 1 };

    // Opens the path text `path` (see hostpath.h) for storing or loading.
    // Check IsFailed: a missing file or directory fails the archive.
    CArchive(const char* path, UINT mode);
    // Closes as Close does; a storing archive that failed leaves the target
    // as it was.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return m_loading; }
    BOOL IsStoring() const { return !m_loading; }
    // True once anything went wrong; the archive then stays failed.
    bool IsFailed() const { return m_failed; }
    // Notes a failure that a reader found itself (a damaged length, say).
    void SetFailed() { m_failed = true; }
    // Bytes not yet read from a loading archive (0 when storing).
    unsigned long long BytesLeft() const;

    // Storing: puts the written file in place; TRUE if everything was
    // written and the file replaced. Loading: closes; TRUE unless a read
    // failed. A second call does nothing and repeats the answer.
    BOOL Close();
    // Closes without putting a stored file in place.
    void Abort();

    // Raw bytes. Read returns the number of bytes read; a short read fails
    // the archive and zeroes the rest of `data`.
    void Write(const void* data, UINT count);
    UINT Read(void* data, UINT count);

    void WriteCount(DWORD count);
    // 0 after a failure.
    DWORD ReadCount();

    template <class T>
        requires std::is_arithmetic_v<T>
    CArchive& operator<<(T value)
    {
        unsigned char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        if constexpr (std::endian::native == std::endian::big)
            Reverse(bytes, sizeof(T));
        Write(bytes, sizeof(T));
        return *this;
    }
    template <class T>
        requires std::is_arithmetic_v<T>
    CArchive& operator>>(T& value)
    {
        unsigned char bytes[sizeof(T)];
        Read(bytes, sizeof(T));
        if constexpr (std::endian::native == std::endian::big)
            Reverse(bytes, sizeof(T));
        std::memcpy(&value, bytes, sizeof(T));
        return *this;
    }
    CArchive& operator<<(const CString& text);
    CArchive& operator<<(const char* text);
    CArchive& operator>>(CString& text);

private:
    static void Reverse(unsigned char* bytes, std::size_t count);

    std::FILE* m_file = nullptr;
    bool m_loading = false;
    bool m_failed = false;
    bool m_closed = false;
    BOOL m_closeResult = FALSE;
    unsigned long long m_left = 0;
    std::string m_target; // host path of the stored file
    std::string m_temp;   // host path written while storing
};
