// KVxFile: the path of one page file of a drawing. All pages of a drawing
// share drive, directory and title; the extension is the page:
//
//   new style   plan.0012a   "." + 4 digits + 0 to 2 letters, pages 0-9999
//   old style   plan.012     "." + 3 characters, pages 0-999, no sub-page
//
// (The IT program's own scheme, plan_12.ext, is handled by GetBlattnummer
// and SetBlattnummer in blattnummer.h.)
//
//   KVxFile f("C:\\P\\plan.0012a");
//   f.GetPageNumber();                       // (12, a)
//   f.MergeFilePath(VXPAGENUM("13"));        // "C:\\P\\plan.0013"
//   KVxFile g("C:\\P\\plan.dxf");            // title "plan.dxf", no extension:
//   g.MergeFilePath(VXPAGENUM("1"));         // "C:\\P\\plan.dxf.0001"
#pragma once

#include "pages/kvxpath.h"
#include "pages/vxpagenum.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

// The result of the page-file checks.
enum VxFileType {
    VxFileNone = 0, // not a page file
    VxFileNew = 1,  // new-style extension
    VxFileOld = 2,  // old-style extension
};

class VXBASE_EXPORT KVxFile : public KVxPath {
public:
    // As KVxPath, then an extension that is no page extension (and holds no
    // wildcard) is folded into the title: plan.dxf becomes the title
    // "plan.dxf" with no extension, ready to take a page; plan.0012,
    // plan.012 and plan.* keep theirs.
    KVxFile(const char* path = nullptr);
    KVxFile(const KVxFile&) = default;
    KVxFile& operator=(const KVxFile&) = default;

    // 0 for null; otherwise splits and folds as the constructor does, and
    // returns 0 if it folded, else 1.
    int SetFilePath(const char* path);
    // The parts of KVxFile(path) that are not empty replace those here.
    // Always 0.
    int SetMerge(const char* path);
    using KVxPath::SetMerge;
    // Sets the extension to the new-style text of `page`.
    void SetMergeWithPage(VXPAGENUM page);

    // 1 if the text after the last "." is exactly 3 digits.
    static int IsOldStyleName(const char* name);
    // Old style to new: a "0" goes in right after the point (1); any other
    // name is left alone (0). The char form works in place and needs room
    // for one more character. The CString form also turns a bare 3-digit
    // name into "0" + digits, and gives 0 for a "." at position 0.
    static int OldNameToNew(char* name);
    static int OldNameToNew(CString* name);
    // New style to old when the page has no sub-page and is at most 999:
    // plan.0999 becomes plan.999 (1). Anything else stays (0). A name with no
    // "." is taken as a page text and becomes the bare old-style digits.
    static int NewNameToOld(CString* name);
    // Digits of a page extension: 4 for 0 (new style), 3 for any other value.
    static unsigned GetAnzStellen(int oldStyle);

    // The page of the extension; (0xFFFF, 0) for an empty or invalid one.
    VXPAGENUM GetPageNumber() const;
    // FormatPageString(GetPageNumber(), 1, 0, 1).
    CString GetPageNumberString() const;
    // The text of `page`: with `zeros`, at least 4 digits (3 unless
    // `newStyle`), else "%d" of the 16-bit page; the letters only if
    // `newStyle`; a leading "." if `point`.
    static CString FormatPageString(VXPAGENUM page, int zeros, int point, int newStyle);
    // Leading blanks skipped, the text after the last "." if there is one,
    // read as a page text.
    static VXPAGENUM GetPageNumFromString(const char* text);
    // (page + 1, 0), at most 9999, and (page - 1, 0), at least 0. The
    // second argument is not used.
    static VXPAGENUM CreateNextPageNr(VXPAGENUM page, int unused = 0);
    static VXPAGENUM CreatePreviousPageNr(VXPAGENUM page, int unused = 0);
    // The next existing sub-page of this file's main page on disk:
    // plan.0012a finds plan.0012b, never plan.0013. (0xFFFF, 0) if there is
    // none. Directories named like pages do not count.
    VXPAGENUM FindNextPage() const;
    // Drive, directory, title and the new-style text of `page`. An empty
    // title raises VexalAssert (StdVxDatei, line 560) and gives "". A path
    // longer than 259 characters gives "" too: cut to fit, as _makepath
    // cuts, it would name another page's file.
    CString MergeFilePath(VXPAGENUM page) const;
    // Title and the new-style text of `page`; "" for an empty title or one
    // too long to take the page.
    CString MergeFileName(VXPAGENUM page) const;
    // The path of the page `delta` pages away, with this sub-page; "" if this
    // page is invalid or the result would leave 0 to 9999.
    CString CreateNewFilePath(short delta) const;

    // VxFileNew, VxFileOld (only with `allowOld`; the third character of an
    // old extension is not examined: .12x passes) or VxFileNone.
    VxFileType IsValidPage(int allowOld) const;
    // VxFileNone if KVxPath::IsValid fails, otherwise IsValidPage.
    VxFileType IsValid(int allowOld) const;
    using KVxPath::IsValid;

    // The file-dialog filter of page files: "VEXAL " + the text of string
    // 6700 up to its last ":" (trimmed), a zero, "*.0*;*.1*;...;*.9*;", a zero.
    static CString GetVexalDateiFilter();

    // The type of an extension text (with its point) by the rules of
    // IsValidPage, for a file whose path is set.
    static VxFileType ExtensionType(const char* ext, int allowOld);

private:
    bool FoldForeignExtension();
};
