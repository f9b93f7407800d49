// Atom tables: numbers that stand for texts.
//
// The global table and the local one work alike: adding a text gives its
// atom (0xC000 and above) and counts a reference; the same text in any ASCII
// case gives the same atom; deleting drops one reference and the atom goes
// with the last. A text "#1234" and MAKEINTATOM(1234) name the integer atom
// 1234 (1 to 0xBFFF), which needs no table entry. Texts hold up to 255
// bytes. The "global" table serves the whole process (there is no desktop
// session to share it with).
//
//   ATOM a = GlobalAddAtomA("OldMenuProc");
//   ...
//   GlobalDeleteAtom(GlobalFindAtomA("OldMenuProc"));
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

using ATOM = WORD;

// An integer atom in the place of a text, as MAKEINTATOM made it.
inline LPCSTR MAKEINTATOM(WORD atom)
{
    return reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(atom));
}
inline bool IS_INTATOM(LPCSTR text)
{
    return (reinterpret_cast<ULONG_PTR>(text) >> 16) == 0;
}

// 0 with the last error set for a bad text (empty, too long, "#0", "#49152"...).
VXBASE_EXPORT ATOM GlobalAddAtomA(LPCSTR text);
// 0 (ERROR_FILE_NOT_FOUND) when the text has no atom.
VXBASE_EXPORT ATOM GlobalFindAtomA(LPCSTR text);
// Drops one reference; 0 on success, else the atom (ERROR_INVALID_HANDLE).
VXBASE_EXPORT ATOM GlobalDeleteAtom(ATOM atom);
// Copies the atom's text ("#n" for an integer atom); the length, or 0.
VXBASE_EXPORT UINT GlobalGetAtomNameA(ATOM atom, LPSTR buffer, int size);
VXBASE_EXPORT ATOM AddAtomA(LPCSTR text);
VXBASE_EXPORT ATOM FindAtomA(LPCSTR text);
VXBASE_EXPORT ATOM DeleteAtom(ATOM atom);
VXBASE_EXPORT UINT GetAtomNameA(ATOM atom, LPSTR buffer, int size);
