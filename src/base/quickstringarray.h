// QuickStringArray: a list of strings kept in case-insensitive order, for
// fast look-up in long lists (a find is a binary search).
//
//   QuickStringArray names;
//   names.Add("b");
//   names.Add("A");                       // "A", "b"
//   names.Find("B");                      // 1
//
// The comparison callbacks are exported for arrays whose fields a caller
// fills itself.
#pragma once

#include "base/kquickarray.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// _mbsicoll of the two strings: case-insensitive. The user word is unused.
VXBASE_EXPORT int CompareStringCallback(unsigned long user, CString* a, CString* b);
// _mbscoll of the two strings: case-sensitive. The user word is unused.
VXBASE_EXPORT int CompareStringCallbackCS(unsigned long user, CString* a, CString* b);

class VXBASE_EXPORT QuickStringArray : public KQuickArray<CString> {
public:
    // Kept sorted, compared by CompareStringCallback.
    QuickStringArray();
    ~QuickStringArray() override;
};
