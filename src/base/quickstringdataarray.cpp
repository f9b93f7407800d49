#include "base/quickstringdataarray.h"

#include "platform/framework/mbstring.h"

int CompareStringDataCallback(unsigned long /*user*/, StrData* a, StrData* b)
{
    return _mbsicoll(a->m_string.GetString(), b->m_string.GetString());
}

int CompareStringDataStringCallback(StrData* a, CString* key)
{
    return _mbsicoll(a->m_string.GetString(), key->GetString());
}

void SerializeElements(CArchive& ar, StrData* elements, int count)
{
    for (int i = 0; i < count; ++i) {
        if (ar.IsStoring())
            ar << elements[i].m_string << elements[i].m_data;
        else
            ar >> elements[i].m_string >> elements[i].m_data;
    }
}

QuickStringDataArray::QuickStringDataArray()
{
    m_bKeepSorted = 1;
    m_pfnCompareData = CompareStringDataCallback;
    m_pfnCompareKey = CompareStringDataStringCallback;
}

QuickStringDataArray::~QuickStringDataArray() = default;
