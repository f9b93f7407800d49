// One section of an INI document (see kiniman.h): a name and its entries.
//
//   KIniSection section("PROCESS");
//   section.SetValue("Partner", "X");
//   CString value;
//   section.GetValue("Partner", value);          // non-zero, value "X"
//
//   CString key, val;
//   section.InitQuery();
//   int more;
//   do {
//       more = section.GetNextEntry(key, val);
//       if (!key.IsEmpty())
//           Use(key, val);
//   } while (more);
//
// Keys compare exactly, case included. Entries iterate in the map's order,
// which here is the order of first insertion.
#pragma once

#include "platform/framework/cmap.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

class VXBASE_EXPORT KIniSection {
public:
    // A section named `section` (null is "") with no entries.
    explicit KIniSection(const char* section);
    ~KIniSection();
    KIniSection(const KIniSection&) = delete;
    KIniSection& operator=(const KIniSection&) = delete;

    // A copy of the name.
    CString GetSection();
    // Non-zero and the value if `key` is there; otherwise 0 and `value`
    // untouched. A null key is the empty key.
    int GetValue(const char* key, CString& value);
    // Inserts or replaces. Null key or value count as "".
    void SetValue(const char* key, const char* value);
    // Puts the one cursor of the section on the first entry.
    void InitQuery();
    // The entry at the cursor, and the cursor moves on. Returns non-zero if
    // another entry follows, so 0 comes with the last entry. With no entry
    // left (or none at all) both strings become "" and the result is 0.
    int GetNextEntry(CString& key, CString& value);
    // Removes `key` if it is there.
    void RemoveEntry(const char* key);

private:
    friend class KIniMan; // writes the entries without moving the cursor

    CString m_Section;
    CMapStringToString m_Entries{10};
    POSITION m_Query = nullptr;
};
