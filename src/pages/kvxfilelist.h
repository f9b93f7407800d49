// KVxFileList: the pages of one drawing, found by scanning its directory for
// the page files of its title, and kept in page order for navigation.
//
//   KVxFileList pages("C:\\Projekte\\plan.0001");
//   pages.CollectPages(1);                       // 3: plan.0001, .0002a, .0010
//   pages.GetNextPage(VXPAGENUM("2a"));          // 10
//   pages.GetIndexedFilePath(2);                 // "C:\\Projekte\\plan.0010"
//   WORD date, time;
//   pages.GetLastDateAndTime(&date, &time);      // DOS form of the newest page
//
// A scan over a network drive is slow and the same drawing is asked for
// again and again, so with g_KVxFileList_optimize set the last scan's pages
// are kept in static storage and served to the next CollectPages of the same
// drawing without reading the directory. That cache is never checked
// against the disk: whoever writes or deletes a page file calls
// ResetOptimization before the next scan, or the old list comes back.
// Everything here belongs to the user-interface thread; nothing is locked.
#pragma once

#include "pages/kvxfile.h"
#include "pages/vxpagenum.h"
#include "platform/framework/carray.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// Not 0 turns the cache of KVxFileList on. Set by the host; 0 at start.
extern VXBASE_EXPORT int g_KVxFileList_optimize;

// An array of page numbers that sorts itself in page order.
class VXBASE_EXPORT KSortablePagenumArray : public CArray<VXPAGENUM, VXPAGENUM> {
public:
    // Page order (VXPAGENUM::Compare): main page, then sub-page.
    void Sort();
};

// What KVxFileList::CopyListToBuffer writes per page.
enum ListMode {
    ListPageTexts = 0, // "0012a"
    ListFileNames = 1, // "plan.0012a" (any value but 0)
};

class VXBASE_EXPORT KVxFileList : public KSortablePagenumArray {
public:
    // Empty, date and time 0; SetFilePath(path) if `path` is not null.
    KVxFileList(const char* path = nullptr);
    ~KVxFileList() override;

    // Empties the list and sets the drawing to `path` (any page of it, or
    // just the title) unless `path` is null.
    void SetFilePath(const char* path);
    // The same with the parts joined by _makepath.
    void SetFilePath(const char* drive, const char* dir, const char* title, const char* ext);
    // KVxPath::SetMerge on the drawing.
    void SetMerge(const char* drive, const char* dir, const char* title, const char* ext);
    // Sets the drawing's current page.
    void SetMergeWithPage(VXPAGENUM page);
    // Forgets the cached scan.
    static void ResetOptimization();

    // Scans for all pages (from the cache when it may serve); with
    // `wantTimes`, also the newest write time. Returns the count. A missing
    // directory or an unset drawing gives 0.
    short CollectPages(int wantTimes);
    // 1 if at least one page file exists; stops at the first.
    int IsOnePageExisting();
    // 1 if `path` is a page file of this drawing: drive and directory equal
    // where both are set, the title equal (all without regard to ASCII
    // case), and a page extension (old style too with `allowOld`).
    int IsMemberOfFileGroup(const char* path, int allowOld) const;
    // The DOS date and time of the newest page of the last scan with
    // `wantTimes`, and 1; with an empty list both 0, and 0.
    int GetLastDateAndTime(WORD* date, WORD* time) const;

    unsigned GetCount() const { return static_cast<unsigned>(GetSize()); }
    // The i-th page; (0xFFFF, 0) if `i` is not below the count.
    VXPAGENUM GetIndexedPage(unsigned i) const;
    // (0xFFFF, 0) for an empty list.
    VXPAGENUM GetFirstPage() const;
    VXPAGENUM GetLastPage() const;
    // The page of the drawing's path.
    VXPAGENUM GetCurrentPage() const;
    // The page after `page` in the list, or `page` itself when it is the
    // last; (0xFFFF, 0) if `page` is invalid or not listed.
    VXPAGENUM GetNextPage(VXPAGENUM page) const;
    // The mirror of GetNextPage: the first page stays.
    VXPAGENUM GetPreviousPage(VXPAGENUM page) const;
    // The index of the first entry equal to `page`, or -1.
    int GetIndexOfPage(VXPAGENUM page) const { return BinarySearch(page); }

    KVxFile GetFilePath() const { return m_file; }
    CString GetFileTitle() const { return m_file.GetFileTitle(); }
    int IsSet() const { return m_file.IsSet(); }
    // 1 if the drawing's extension (with its point) has at least 5
    // characters: a new-style page.
    int IsV5Extension() const;
    CString MergeFilePath(VXPAGENUM page) const { return m_file.MergeFilePath(page); }
    CString MergeFileName(VXPAGENUM page) const { return m_file.MergeFileName(page); }
    // The path, name, title or extension (".0012a") of the i-th page; "" if
    // `i` is out of range.
    CString GetIndexedFilePath(unsigned i) const;
    CString GetIndexedFileName(unsigned i) const;
    CString GetFileName(unsigned i) const { return GetIndexedFileName(i); }
    CString GetIndexedFileTitle(unsigned i) const;
    CString GetIndexedFileExtension(unsigned i) const;
    CString GetFilePathFromPage(VXPAGENUM page) const { return m_file.MergeFilePath(page); }
    CString GetPageNumberString(VXPAGENUM page) const;
    // Writes one zero-terminated text per page one after another (see
    // ListMode) and returns how many; -1 as soon as one text with its zero
    // does not fit `size`, the texts before it staying written. `size` is
    // tested per text, not for the total: `buffer` must hold the whole list.
    int CopyListToBuffer(char* buffer, unsigned size, ListMode mode) const;

    // The cache: the pages, pattern and kind of the last scan, and the last
    // page file it saw.
    static KSortablePagenumArray s_arrPages;
    static CString s_SearchFor;
    static int s_bOnlyOne;
    static KVxFile s_myFile;

protected:
    short LookForPages(int onlyOne, int wantTimes);
    // Binary search of the sorted list; the first of equal entries, or -1.
    int BinarySearch(VXPAGENUM page) const;

    WORD m_date = 0;
    WORD m_time = 0;
    KVxFile m_file;

private:
    void KeepNewest(WORD date, WORD time);
    int IsMember(const KVxPath& other, int allowOld) const;
};
