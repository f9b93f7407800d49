// QuickStringDataArray: strings with a 32-bit data word each, kept in
// case-insensitive order of the strings, and found by string alone.
//
//   QuickStringDataArray parts;
//   parts.Add(StrData("K12", 7));
//   parts.Add(StrData("a1", 3));          // "a1", "K12"
//   int i = parts.FindKey("k12");         // 1
//   parts[i].m_data;                      // 7
#pragma once

#include "base/kquickarray.h"
#include "platform/framework/carchive.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// A string and its data word; a new element is "" and 0.
struct VXBASE_EXPORT StrData {
    StrData() = default;
    StrData(const CString& text, DWORD data) : m_string(text), m_data(data) {}

    CString m_string;
    DWORD m_data = 0;
};

// _mbsicoll of the strings; the user word is unused.
VXBASE_EXPORT int CompareStringDataCallback(unsigned long user, StrData* a, StrData* b);
// _mbsicoll of the element's string and `key`.
VXBASE_EXPORT int CompareStringDataStringCallback(StrData* a, CString* key);

// Archived as the string, then the data word (a DWORD).
VXBASE_EXPORT void SerializeElements(CArchive& ar, StrData* elements, int count);

class VXBASE_EXPORT QuickStringDataArray : public KQuickArray<StrData, CString> {
public:
    // Kept sorted by CompareStringDataCallback; FindKey compares with
    // CompareStringDataStringCallback.
    QuickStringDataArray();
    ~QuickStringDataArray() override;
};
