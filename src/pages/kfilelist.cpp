#include "pages/kfilelist.h"

#include "base/dincompare.h"
#include "pages/copylist_p.h"
#include "platform/files/filefind.h"
#include "platform/framework/mbstring.h"

KFileList::KFileList(const char* filter)
{
    if (filter)
        m_filter = filter;
}

KFileList::~KFileList()
{
    RemoveAll();
}

void KFileList::SetFilter(const char* filter)
{
    m_filter = filter;
}

int KFileList::CollectFiles(int dinOrder)
{
    RemoveAll();
    SetSize(0, 200);
    if (m_filter.IsEmpty())
        return 0;
    CFileFind finder;
    BOOL more = finder.FindFile(m_filter);
    while (more) {
        more = finder.FindNextFile();
        if (!finder.IsDirectory())
            Add(finder.GetFileName());
    }
    if (GetSize() > 0) {
        m_pfnCompare = dinOrder ? static_cast<CompareFunction>(CompareDINText) : &KFileList::Compare;
        QuickSort();
    }
    return GetSize();
}

CString KFileList::GetIndexedFileName(unsigned i) const
{
    return i < GetCount() ? GetAt(static_cast<int>(i)) : CString();
}

int KFileList::CopyListToBuffer(char* buffer, unsigned size) const
{
    return vx::CopyTextsToBuffer(*this, [](const CString& name) { return name; }, buffer, size);
}

int KFileList::Compare(CString* a, CString* b)
{
    return _mbscoll(*a, *b);
}
