#include "pages/kvxfilelist.h"

#include "pages/copylist_p.h"
#include "platform/files/cfile.h"
#include "platform/files/filefind.h"
#include "platform/files/filetime.h"
#include "platform/framework/mbstring.h"

#include <algorithm>
#include <cstdint>

int g_KVxFileList_optimize = 0;

KSortablePagenumArray KVxFileList::s_arrPages;
CString KVxFileList::s_SearchFor;
int KVxFileList::s_bOnlyOne = 0;
KVxFile KVxFileList::s_myFile;

namespace {

bool IsInvalid(VXPAGENUM page)
{
    return page.GetPage() == PAGE_INVALID;
}

} // namespace

void KSortablePagenumArray::Sort()
{
    // The order of VXPAGENUM::Compare, whose differences are taken here
    // inline: a scan sorts thousands of pages. Compare is 0 only for equal
    // values, so any sort gives the order qsort gave.
    std::sort(begin(), end(), [](VXPAGENUM a, VXPAGENUM b) {
        const auto difference = [](std::int32_t x, std::int32_t y) {
            return static_cast<std::int32_t>(static_cast<std::uint32_t>(x) - static_cast<std::uint32_t>(y));
        };
        if (a.m_page == b.m_page && a.m_subpage != b.m_subpage)
            return difference(a.m_subpage, b.m_subpage) < 0;
        return difference(a.m_page, b.m_page) < 0;
    });
}

KVxFileList::KVxFileList(const char* path)
{
    if (path)
        SetFilePath(path);
}

KVxFileList::~KVxFileList()
{
    RemoveAll();
}

void KVxFileList::SetFilePath(const char* path)
{
    RemoveAll();
    if (path)
        m_file.SetFilePath(path);
}

void KVxFileList::SetFilePath(const char* drive, const char* dir, const char* title, const char* ext)
{
    char path[_MAX_PATH];
    _makepath(path, drive, dir, title, ext);
    SetFilePath(path);
}

void KVxFileList::SetMerge(const char* drive, const char* dir, const char* title, const char* ext)
{
    m_file.KVxPath::SetMerge(drive, dir, title, ext);
}

void KVxFileList::SetMergeWithPage(VXPAGENUM page)
{
    m_file.SetMergeWithPage(page);
}

void KVxFileList::ResetOptimization()
{
    s_SearchFor.Empty();
    s_arrPages.RemoveAll();
}

short KVxFileList::CollectPages(int wantTimes)
{
    return LookForPages(0, wantTimes);
}

int KVxFileList::IsOnePageExisting()
{
    return LookForPages(1, 0) != 0 ? 1 : 0;
}

void KVxFileList::KeepNewest(WORD date, WORD time)
{
    if (date > m_date || (date == m_date && time > m_time)) {
        m_date = date;
        m_time = time;
    }
}

short KVxFileList::LookForPages(int onlyOne, int wantTimes)
{
    m_date = 0;
    m_time = 0;
    CString pattern;
    if (m_file.IsSet())
        pattern = m_file.Merge(nullptr, nullptr, nullptr, ".*");

    if (g_KVxFileList_optimize && s_arrPages.GetSize() > 0 && !onlyOne && !s_bOnlyOne && !s_SearchFor.IsEmpty() &&
        _mbscmp(pattern, s_SearchFor) == 0) {
        Copy(s_arrPages);
        if (wantTimes) {
            for (const VXPAGENUM& page : *this) {
                s_myFile.SetMergeWithPage(page);
                // As spelled: looking up another spelling would read the
                // directory, which is what the cache is there to avoid.
                CFileStatus status;
                if (!vx::GetStatusAsSpelled(s_myFile.GetFilePath(), status))
                    continue;
                WORD date, time;
                if (vx::DosDateTimeFromUnix(status.m_mtime.GetTime(), &date, &time))
                    KeepNewest(date, time);
            }
        }
        return static_cast<short>(GetSize());
    }

    RemoveAll();
    SetSize(0, 500);
    KVxFile lastSeen;
    if (m_file.IsSet()) {
        CFileFind finder;
        BOOL more = finder.FindFile(pattern);
        while (more) {
            more = finder.FindNextFile();
            if (finder.IsDirectory())
                continue;
            // A member's extension is a page, which KVxFile never folds, so
            // one split serves the test and the page.
            const KVxFile file(finder.GetFilePath());
            if (!IsMember(file, 0))
                continue;
            const VXPAGENUM page = file.GetPageNumber();
            if (IsInvalid(page))
                continue;
            // No edition of this port limits the pages a drawing may have.
            if (wantTimes) {
                FILETIME utc, local;
                WORD date, time;
                if (finder.GetLastWriteTime(&utc) && FileTimeToLocalFileTime(&utc, &local) &&
                    FileTimeToDosDateTime(&local, &date, &time))
                    KeepNewest(date, time);
            }
            Add(page);
            lastSeen = file;
            if (onlyOne)
                break;
        }
    }
    if (GetSize() > 0)
        Sort();

    s_SearchFor = pattern;
    s_myFile = lastSeen;
    s_bOnlyOne = onlyOne;
    s_arrPages.RemoveAll();
    if (g_KVxFileList_optimize)
        s_arrPages.Copy(*this);
    return static_cast<short>(GetSize());
}

int KVxFileList::IsMemberOfFileGroup(const char* path, int allowOld) const
{
    return IsMember(KVxPath(path), allowOld);
}

int KVxFileList::IsMember(const KVxPath& other, int allowOld) const
{
    const CString ownDrive = m_file.GetDrive();
    const CString otherDrive = other.GetDrive();
    if (!ownDrive.IsEmpty() && !otherDrive.IsEmpty() && _mbsicoll(ownDrive, otherDrive) != 0)
        return 0;
    const char* ownDir = m_file.GetPointerToDir();
    const char* otherDir = other.GetPointerToDir();
    if (ownDir[0] && otherDir[0] && _mbsicoll(ownDir, otherDir) != 0)
        return 0;
    if (_mbsicoll(m_file.GetPointerToFname(), other.GetPointerToFname()) != 0)
        return 0;
    // The extension alone as a path: set exactly when it is not empty.
    const CString extension = other.GetExtension();
    if (extension.IsEmpty())
        return 0;
    return KVxFile::ExtensionType(extension, allowOld) != VxFileNone ? 1 : 0;
}

int KVxFileList::GetLastDateAndTime(WORD* date, WORD* time) const
{
    const bool empty = GetSize() == 0;
    if (date)
        *date = empty ? 0 : m_date;
    if (time)
        *time = empty ? 0 : m_time;
    return empty ? 0 : 1;
}

VXPAGENUM KVxFileList::GetIndexedPage(unsigned i) const
{
    return i < GetCount() ? GetAt(static_cast<int>(i)) : VXPAGENUM();
}

VXPAGENUM KVxFileList::GetFirstPage() const
{
    return GetSize() > 0 ? GetAt(0) : VXPAGENUM();
}

VXPAGENUM KVxFileList::GetLastPage() const
{
    return GetSize() > 0 ? GetAt(GetSize() - 1) : VXPAGENUM();
}

VXPAGENUM KVxFileList::GetCurrentPage() const
{
    return m_file.GetPageNumber();
}

VXPAGENUM KVxFileList::GetNextPage(VXPAGENUM page) const
{
    if (IsInvalid(page))
        return VXPAGENUM();
    const int index = BinarySearch(page);
    if (index < 0)
        return VXPAGENUM();
    return GetAt(index + 1 < GetSize() ? index + 1 : index);
}

VXPAGENUM KVxFileList::GetPreviousPage(VXPAGENUM page) const
{
    if (IsInvalid(page))
        return VXPAGENUM();
    const int index = BinarySearch(page);
    if (index < 0)
        return VXPAGENUM();
    return GetAt(index > 0 ? index - 1 : index);
}

int KVxFileList::BinarySearch(VXPAGENUM page) const
{
    const int size = GetSize();
    if (size == 0)
        return -1;
    const VXPAGENUM* pages = GetData();
    int low = 0;
    int high = size - 1;
    int probe = 0;
    while (low <= high) {
        probe = (low + high) / 2;
        if (pages[probe] == page)
            break;
        if (pages[probe] >= page)
            high = probe - 1;
        else
            low = probe + 1;
    }
    if (pages[probe] != page)
        return -1;
    while (probe > 0 && pages[probe - 1] == page)
        --probe;
    return probe;
}

int KVxFileList::IsV5Extension() const
{
    return m_file.GetExtension().GetLength() >= 5 ? 1 : 0;
}

CString KVxFileList::GetIndexedFilePath(unsigned i) const
{
    return i < GetCount() ? m_file.MergeFilePath(GetIndexedPage(i)) : CString();
}

CString KVxFileList::GetIndexedFileName(unsigned i) const
{
    return i < GetCount() ? m_file.MergeFileName(GetIndexedPage(i)) : CString();
}

CString KVxFileList::GetIndexedFileTitle(unsigned i) const
{
    return i < GetCount() ? m_file.GetFileTitle() : CString();
}

CString KVxFileList::GetIndexedFileExtension(unsigned i) const
{
    return i < GetCount() ? KVxFile::FormatPageString(GetIndexedPage(i), 1, 1, 1) : CString();
}

CString KVxFileList::GetPageNumberString(VXPAGENUM page) const
{
    return KVxFile::FormatPageString(page, 1, 0, 1);
}

int KVxFileList::CopyListToBuffer(char* buffer, unsigned size, ListMode mode) const
{
    return vx::CopyTextsToBuffer(
        *this,
        [&](VXPAGENUM page) {
            return mode == ListPageTexts ? KVxFile::FormatPageString(page, 1, 0, 1) : MergeFileName(page);
        },
        buffer, size);
}
