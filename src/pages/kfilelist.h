// KFileList: the names of the files that match a wildcard path, sorted
// either as plain text or in DIN order (numbers by value).
//
//   KFileList list("C:\\Projekte\\*.dbf");
//   list.CollectFiles(1);           // "K2.dbf", "K10.dbf" in DIN order
//   list.GetIndexedFileName(0);     // "K2.dbf"
#pragma once

#include "base/kquickarray.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

class VXBASE_EXPORT KFileList : public KQuickArray<CString> {
public:
    // Stores `filter` unless it is null.
    KFileList(const char* filter = nullptr);
    ~KFileList() override;

    void SetFilter(const char* filter);
    // Lists the files (not directories) that match the filter, names
    // without directory, sorted by CompareDINText if `dinOrder` is not 0,
    // else by Compare. Returns the count; 0 for an empty filter.
    int CollectFiles(int dinOrder);
    unsigned GetCount() const { return static_cast<unsigned>(GetSize()); }
    // The i-th name; "" if `i` is not below the count.
    CString GetIndexedFileName(unsigned i) const;
    // As KVxFileList::CopyListToBuffer with file names: `size` is tested per
    // name, and the caller's buffer must hold the whole list.
    int CopyListToBuffer(char* buffer, unsigned size) const;
    // Byte order (_mbscoll).
    static int Compare(CString* a, CString* b);

    CString m_filter;
};
