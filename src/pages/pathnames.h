// Free functions on path texts: cutting a path into directory and name,
// relating it to a base directory, making a name safe, and deleting to the
// recycle bin. They work on the texts alone ("\" separates; "/" does not)
// except RemoveToRecycle, which touches the disk.
//
//   GetPfad("C:\\P\\plan.0012");                        // "C:\\P\\"
//   GetDateiname("C:\\P\\plan.0012");                   // "plan.0012"
//   GetPfadRelativToPfad("C:\\P\\x", "c:\\p\\");        // "x"
//   GetPfadFullToPfad("x", "C:\\P\\");                  // "C:\\P\\x"
//   CString name = "a/b"; MacheDateinamenSicher(name);  // "a_b"
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// The text up to and including the last "\"; "" if there is none.
VXBASE_EXPORT CString GetPfad(const char* path);
// The text after the last "\"; all of it if there is none, "" if the "\" is
// the last character.
VXBASE_EXPORT CString GetDateiname(const char* path);
// 1 for a drive path: at least 3 characters, a letter A-Z or a-z, ":", "\".
VXBASE_EXPORT int IsPathname(const char* s);
// 1 if `s` starts with two "\" (a network name).
VXBASE_EXPORT int IsNetname(const char* s);
// 1 if `path` starts with `base`, without regard to case.
VXBASE_EXPORT int IsPfadRelativToPfad(const char* path, const char* base);
// A pointer into `path` behind `base` when `path` is a drive path (not a
// network name), `base` is not empty and begins `path` without regard to
// case; otherwise `path` itself.
VXBASE_EXPORT const char* GetPfadRelativToPfad(const char* path, const char* base);
// `base` for an empty `rel`; `rel` itself for a drive path or network name;
// otherwise `base` followed by `rel`, with no separator added (`base` is
// expected to end in "\").
VXBASE_EXPORT CString GetPfadFullToPfad(const char* rel, const char* base);
// `path` behind `base` when the directory of `path` starts with `base`
// without regard to case; otherwise all of `path`.
VXBASE_EXPORT CString GetZusatzDateipfad(CString& base, CString& path);
// Replaces each of < > : / \ | with "_". The quotation mark, "?" and "*"
// stay (KVxPath::IsValid refuses them).
VXBASE_EXPORT void MacheDateinamenSicher(CString& name);
VXBASE_EXPORT void MacheDateinamenSicher(char* name);
// Deletes a file (or, with wildcards, every match; a directory with its
// content). With `hardDelete` 0 it goes to the user's Trash, unless the host
// answers 0 to the recycle-bin query (WM_VXBASE 8, 1), which asks for
// deleting for good. The path text is cut to 262 characters. 1 on success,
// 0 if anything could not be removed or nothing matched.
VXBASE_EXPORT int RemoveToRecycle(const char* path, int hardDelete);
