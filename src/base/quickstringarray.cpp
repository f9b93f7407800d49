#include "base/quickstringarray.h"

#include "platform/framework/mbstring.h"

int CompareStringCallback(unsigned long /*user*/, CString* a, CString* b)
{
    return _mbsicoll(a->GetString(), b->GetString());
}

int CompareStringCallbackCS(unsigned long /*user*/, CString* a, CString* b)
{
    return _mbscoll(a->GetString(), b->GetString());
}

QuickStringArray::QuickStringArray()
{
    m_bKeepSorted = 1;
    m_pfnCompareData = CompareStringCallback;
}

QuickStringArray::~QuickStringArray() = default;
