// An INI file in memory: an ordered list of sections, read at once, changed
// in memory, and written back whole by Flush and by the destructor.
//
//   KIniMan ini;
//   ini.ReadFile("/home/anna/.config/VEXAL/VXWIN55AT.INI", 0);
//   int width = ini.ReadInt("DialogState", "Width", 640);
//   ini.WriteInt("DialogState", "Width", 800);
//   ini.Flush();                        // or let the destructor write it
//
// The file: "[name]" opens a section (the name runs to the first "]"; a line
// starting with "[" but lacking "]" is dropped); any other line with a "=" is
// an entry, the key up to the first "=" and the value behind it, nothing
// trimmed; every other line is dropped. A key twice in a section keeps the
// last value. Sections may occur twice; lookups find the first. Section names
// compare without regard to ASCII case, keys exactly.
//
// Flush writes the normal form: the sections in list order, one empty line
// between two, "[name]" and then "key=value" for each entry with a non-empty
// key, lines ending in CR LF. Comments and blank lines do not survive. Entry
// lines ahead of the first header belong to no section and are unreadable,
// but Flush writes them back as they were, ahead of the first section.
//
// Lines are read in pieces of at most 999 bytes; each piece is parsed as a
// line of its own. A section name, key or value of 500 bytes or more in a
// piece is cut to its first 499 bytes.
//
// Flush replaces the file atomically (a temporary file in the same directory,
// flushed, then renamed over the old one) under the same lock that the
// private profile functions take, so a crash, a full disk or a concurrent
// writer never leaves a part of a file. A Flush that fails returns 0 and
// keeps everything in memory.
#pragma once

#include "config/kinisection.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

class VXBASE_EXPORT KIniMan {
public:
    // An empty document bound to no file.
    KIniMan();
    // Flush, then RemoveAll.
    ~KIniMan();
    KIniMan(const KIniMan&) = delete;
    KIniMan& operator=(const KIniMan&) = delete;

    // Binds the document to `file` and reads it. A document that was bound
    // already is emptied first, and written before that if `flushFirst` is
    // non-zero. Returns non-zero if the file could be read; if not, the
    // document stays empty and bound to `file`, and the next Flush creates it.
    int ReadFile(const char* file, int flushFirst);
    // Writes the document to its file. Non-zero on success; 0 (with the
    // document unchanged) when there is no file name or the file cannot be
    // written.
    int Flush();

    int GetAnzSections();
    // The section at `index`, 0 .. GetAnzSections() - 1.
    KIniSection* GetSectionAt(int index);
    // The first section of that name, or null.
    KIniSection* GetSection(const char* section);
    // Appends a new section, also when one of that name exists.
    KIniSection* CreateSection(const char* section);

    // The value, or `defaultValue` when section or key is missing.
    CString ReadString(const char* section, const char* key, const char* defaultValue);
    // atoi of the value; the default when it is missing or empty. Text that
    // is no number gives 0.
    int ReadInt(const char* section, const char* key, int defaultValue);
    // atof of the value; the default when it is missing or empty.
    double ReadDouble(const char* section, const char* key, double defaultValue);
    // ReadDouble narrowed to float.
    float ReadFloat(const char* section, const char* key, float defaultValue);
    // Always `defaultValue`: the stored text is read and not used, so what
    // WriteChar stored does not come back here.
    char ReadChar(const char* section, const char* key, char defaultValue);

    // A null `value` deletes the key; a null `key` deletes the section (see
    // CheckAndRemove). Otherwise the section is found or created, and the
    // value set.
    void WriteString(const char* section, const char* key, const char* value);
    // "%d".
    void WriteInt(const char* section, const char* key, int value);
    // "%f" of the value widened to double: six decimals.
    void WriteFloat(const char* section, const char* key, float value);
    // "%fl": six decimals and a letter l, as in "2.500000l"; atof stops at it.
    void WriteDouble(const char* section, const char* key, double value);
    // The character itself as a one-character text.
    void WriteChar(const char* section, const char* key, char value);
    // Each numeric write with a null key deletes the section and writes
    // nothing.

    // The entries of `section` as "key=value" texts, each with a zero byte
    // behind it and one more behind the last. Entries are copied while fewer
    // than `size` bytes are used, checked after each copy: `buffer` needs
    // room for `size` bytes plus the longest entry and two zeros. Returns the
    // offset of the zero that ends the last entry; 0 with `buffer` untouched
    // if the section is missing. An empty section gives the one entry "=".
    int ReadSection(const char* section, char* buffer, int size);

    // Whether a write is a deletion, and if so, does it. A null `key` deletes
    // each section named `section` met in a walk from the start, skipping the
    // element that moves into a freed place (of two adjacent sections of one
    // name only the first goes). Else a null `value` removes `key` from the
    // first section of that name, if there is one. Returns 1 if it was a
    // deletion (also one that found nothing to remove under a null `value`).
    int CheckAndRemove(const char* section, const char* key, const char* value);

protected:
    // Deletes all sections; the file name stays.
    void RemoveAll();

private:
    CString m_FileName;
    CArray<KIniSection*, KIniSection*> m_Sections;
    // Entry lines ahead of the first header, written back as they came.
    CStringArray m_Unsectioned;
};
