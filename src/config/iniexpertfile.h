// The control file of the expert settings editor, "VXINI55.DAT", and the
// arithmetic of its entries.
//
// The file lies next to the AT program's global settings file and lists the
// rarely used settings an expert may change: for each its file (by a kind
// tag), section, key, value type, caption, default and fixed choices. The
// editor (KIniExpertDlg, vxbase-ui) shows them in a grid; this part reads the
// file, fetches the current values through KProfile and turns values into
// the texts the grid shows and back, so that all of it works without a
// display.
//
//   VXINI1.0                      version line, exactly
//   any text                      skipped
//   WINAT                         kind: the scope of the file (see IniExpertScope)
//   Zeichnen                      section
//   Raster                        key
//   0                             value type: "0" whole number, "2" floating point, else text
//   Grid step                     caption
//   1000                          default (may be empty)
//   x/1000                        choices, two lines each: key, then caption; a key
//   in millimetres                beginning with "x" is a scaled number (x/F: the file
//                                 holds F times the number shown)
//                                 an empty line (or the end) ends the choices
//   Any other line                a kind without a scope: a text line of the list
//
//   CArray<KIniExpertEntry*, KIniExpertEntry*> entries;
//   UINT message = vx::ReadIniControlFile(vx::IniControlFilePath(), entries);
//   if (message) VxAfxMessageBox(GetString(message));   // 6729, 6730 or 6731
//   ...
//   vx::FreeIniExpertEntries(entries);
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// One line of the editor's list, in the order the editor keeps its members.
struct VXBASE_EXPORT KIniExpertEntry {
    CString m_kind;    // the kind line as it stands in the file
    CString m_section; // empty for a text line
    CString m_key;
    CString m_type;    // "0" whole number, "2" floating point, anything else text
    CString m_value;   // the current value, as the settings file holds it
    CString m_caption;
    CStringArray m_choiceKeys;     // the values of the fixed choices
    CStringArray m_choiceCaptions; // their captions, as many
    // 0 at rest; while a scaled choice is being typed, its index + 1; -1
    // while the plain edit of the number is being opened.
    int m_scaleState = 0;
};

using KIniExpertEntryArray = CArray<KIniExpertEntry*, KIniExpertEntry*>;

namespace vx {

// The name of the control file, and its first line.
inline constexpr const char* kIniControlFileName = "VXINI55.DAT";
inline constexpr const char* kIniControlVersion = "VXINI1.0";
// The string resources of the reader's three complaints.
inline constexpr UINT kIniControlWrongVersion = 6729;
inline constexpr UINT kIniControlError = 6730;
inline constexpr UINT kIniControlNotFound = 6731;

// The settings scope of a kind tag: "PRJAT" 11, "PRJIT" 21, "WINAT" 10,
// "WINIT" 20, "VEXAL54" -1, "VEXAL" -2, anything else 0 (a text line).
VXBASE_EXPORT int IniExpertScope(const CString& kind);

// The directory of g_profiledirAT with "VXINI55.DAT" (a path text). Without
// an AT file the name alone, which no file answers to.
VXBASE_EXPORT CString IniControlFilePath();

// Reads the control file at `path` (a path text) and appends its entries to
// `entries`, each with its current value from KProfile (the default when
// the setting is unset). The caller owns the entries (FreeIniExpertEntries).
// Returns the string resource of the message the editor shows, or 0:
// kIniControlNotFound when the file cannot be opened; kIniControlWrongVersion
// when its first line exists and is not the version line (then nothing is
// read); kIniControlError when not one entry was read. A setting that stops
// short, or has an empty section, key, type or caption line, ends the reading
// there and is left out; what was read before it stays.
VXBASE_EXPORT UINT ReadIniControlFile(const char* path, KIniExpertEntryArray& entries);
// Deletes the entries and empties the array.
VXBASE_EXPORT void FreeIniExpertEntries(KIniExpertEntryArray& entries);

// The factor of a scaled choice key: for a key beginning with "x", the
// number from its third character on (1 when the key is shorter than three
// characters; the second character is not looked at); `scaled` tells whether
// the key was a scaled one at all. 0 for a key that is not.
VXBASE_EXPORT int ScaledChoiceFactor(const CString& choiceKey, bool* scaled = nullptr);

// What the value column shows for an entry: nothing for a text line; else
// the caption of the first choice whose key is the value, or, at a scaled
// choice met first (factor not 0, type "0" or "2"), the value divided by the
// factor ("%d" of whole numbers, "%f"); else the value as it stands.
VXBASE_EXPORT CString IniExpertDisplayText(const KIniExpertEntry& entry);

// The current value as the number of the scaled choice `choice` (an
// index): the value divided by its factor ("%d" of whole numbers for type
// "0", "%f" for type "2"); the value as it stands when that choice is not a
// scaled one, its factor is 0 or the type is not a number.
VXBASE_EXPORT CString IniExpertScaledText(const KIniExpertEntry& entry, int choice);

// The value to store for `typed` text when the scaled choice `choice` (an
// index; -1 or an unscaled one for none) is being typed: the number times
// the factor ("%d" for type "0", "%f" for type "2"), or the text as it
// stands (factor 0, another type, no scaled choice). Whole numbers wrap at
// 32 bits as the original's did.
VXBASE_EXPORT CString IniExpertStoredValue(const KIniExpertEntry& entry, int choice, const char* typed);

} // namespace vx
