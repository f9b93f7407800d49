// The private profile functions: settings read from and written to an INI
// file on the disk, key by key, with the meaning the desktop API documents.
//
//   WritePrivateProfileStringA("MISC", "Partner", "X", "/home/anna/.config/VEXAL/VEXAL55.INI");
//   char value[100];
//   GetPrivateProfileStringA("misc", "PARTNER", "", value, sizeof value, path);  // "X"
//
// The file:
// * "[name]" opens a section (blanks around the name and text behind the "]"
//   are ignored); "key=value" is an entry, with blanks around key and value
//   ignored; a line whose first non-blank byte is ";" is a comment. Other
//   lines are kept and only GetPrivateProfileSectionA reads them; entries
//   ahead of the first section are kept but never read.
// * Section names and keys compare without regard to ASCII case. Where a
//   section or a key occurs twice, reads and writes take the first.
// * Lines end in CR LF on the disk; LF alone is read too.
// * A file name with no "\" and no "/" lies in the Windows directory
//   (appdirs.h); any other is a path text (hostpath.h).
//
// Every call reads the file afresh. A write rewrites the file as a whole and
// keeps every other line as it was, comments and order included. It replaces
// the file atomically and under a lock, so concurrent writers of one file
// (threads or processes) lose nothing and a reader never sees half a file
// (see atomicfile_p.h).
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// The value of `key` in `section` into `buffer` of `size` bytes. A value in
// matching single or double quotes loses them. Not found (or no file): the
// default (null is "") without its trailing blanks. Returns the bytes copied
// without the terminator; a value cut to fit gives `size` - 1.
// With a null `key`: the keys of the section; with a null `section`: the
// section names; each with a zero byte behind it and one more at the end.
// A list cut to fit gives `size` - 2. An empty list gives the default.
VXBASE_EXPORT DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue,
                                             char* buffer, DWORD size, const char* file);

// The value of `key` as a number: optional blanks and sign, then decimal
// digits, or hexadecimal after "0x"; conversion stops at the first other
// byte ("55zz" is 55, "zz" is 0). A missing key or an empty value gives
// `defaultValue`. Values wrap to 32 bits.
VXBASE_EXPORT UINT GetPrivateProfileIntA(const char* section, const char* key, int defaultValue, const char* file);

// The lines of `section` as texts, each with a zero byte behind it and one
// more at the end: an entry as "key=value" (blanks around both trimmed), a
// line without "=" as it stands (without the blanks around it); blank lines
// and comments are left out. Returns the bytes copied without that last
// zero; a list cut to fit gives `size` - 2. A missing or empty section (or
// no file) copies nothing, leaves `buffer` as it was and returns 0.
VXBASE_EXPORT DWORD GetPrivateProfileSectionA(const char* section, char* buffer, DWORD size, const char* file);

// Sets `key` in `section` to `value`, creating the section (at the end of
// the file) and the file as needed; an existing key keeps its place.
// A null `value` deletes the key; a null `key` deletes the section, every
// section of that name, with all its lines. Deleting what is not there
// succeeds and leaves the file untouched.
// Refused (FALSE, file untouched): a null `section`; a section name with "]";
// a key with "=" or starting with "[" or ";"; a line break in any of the
// three. Also FALSE when the file cannot be read and written in full.
VXBASE_EXPORT BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                              const char* file);
