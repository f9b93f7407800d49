// The C runtime's byte-string helpers that the library was written with.
//
// The suite's code page is a single-byte one, so every "multi-byte" function
// here works byte by byte. Case folding touches only ASCII letters, as in the
// runtime's default "C" locale, and bytes compare as unsigned values.
//
//   _mbsicmp("Plan", "PLAN");          // 0
//   char drive[_MAX_DRIVE], dir[_MAX_DIR], name[_MAX_FNAME], ext[_MAX_EXT];
//   _splitpath("C:\\P\\plan.0012", drive, dir, name, ext);
//   // "C:", "\P\", "plan", ".0012"
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstddef>

VXBASE_EXPORT int _mbscmp(const unsigned char* a, const unsigned char* b);
VXBASE_EXPORT int _mbsicmp(const unsigned char* a, const unsigned char* b);
VXBASE_EXPORT int _mbscoll(const unsigned char* a, const unsigned char* b);
VXBASE_EXPORT int _mbsicoll(const unsigned char* a, const unsigned char* b);
VXBASE_EXPORT int _mbsnbicmp(const unsigned char* a, const unsigned char* b, std::size_t count);
VXBASE_EXPORT const unsigned char* _mbspbrk(const unsigned char* text, const unsigned char* set);
VXBASE_EXPORT const unsigned char* _mbschr(const unsigned char* text, unsigned int ch);
VXBASE_EXPORT const unsigned char* _mbsrchr(const unsigned char* text, unsigned int ch);
VXBASE_EXPORT const unsigned char* _mbsstr(const unsigned char* text, const unsigned char* sub);

// The same functions on plain char texts, which is how the library's
// strings arrive. A null pointer compares like an empty text.
VXBASE_EXPORT int _mbscmp(const char* a, const char* b);
VXBASE_EXPORT int _mbsicmp(const char* a, const char* b);
VXBASE_EXPORT int _mbscoll(const char* a, const char* b);
VXBASE_EXPORT int _mbsicoll(const char* a, const char* b);
VXBASE_EXPORT const char* _mbspbrk(const char* text, const char* set);

VXBASE_EXPORT int _stricmp(const char* a, const char* b);
VXBASE_EXPORT int _strnicmp(const char* a, const char* b, std::size_t count);
VXBASE_EXPORT char* _strupr(char* text);
VXBASE_EXPORT char* _strlwr(char* text);

// `value` in `radix` (2 to 36) into `buffer`; negative values get a "-"
// only in radix 10, other radices show the two's complement. Returns buffer.
VXBASE_EXPORT char* _itoa(int value, char* buffer, int radix);
VXBASE_EXPORT char* _ltoa(long value, char* buffer, int radix);

namespace vx {
// atoi with the original runtime's rule for overflow: a value beyond the
// range of int gives INT_MAX or INT_MIN (glibc's atoi is undefined there).
// Leading white space, a sign and digits are read; anything else ends it.
VXBASE_EXPORT int Atoi(const char* text);
} // namespace vx

// Splits a path text at the Windows rules: a drive is "X:" at the start, the
// directory runs to the last "\" or "/", the extension from the last "." of
// the rest. Any output may be null. Parts longer than their buffer
// (_MAX_DRIVE, _MAX_DIR, _MAX_FNAME, _MAX_EXT) are cut to fit.
VXBASE_EXPORT void _splitpath(const char* path, char* drive, char* dir, char* fname, char* ext);
// Joins the parts: the first letter of `drive` and ":", `dir` with a "\"
// added unless it ends in "\" or "/", `fname`, `ext` with a "." added in
// front unless it has one. The result is cut to _MAX_PATH - 1 bytes.
VXBASE_EXPORT void _makepath(char* path, const char* drive, const char* dir, const char* fname, const char* ext);
// The absolute form of `relPath`, with "." and ".." resolved. A path text
// with a drive letter or a "\" keeps "\" as separator; a POSIX path is
// resolved against the working directory with "/". With a null `absPath` the
// result is allocated with malloc. Returns null if it needs more than
// `maxLength` bytes (terminator included).
VXBASE_EXPORT char* _fullpath(char* absPath, const char* relPath, std::size_t maxLength);
