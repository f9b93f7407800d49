#include "pages/kvxfile.h"

#include "base/libraryframe.h"
#include "platform/files/filefind.h"
#include "platform/framework/mbstring.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool AllDigits(const char* text, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        if (!IsDigit(text[i]))
            return false;
    }
    return true;
}

CString Joined(const char* drive, const char* dir, const char* title, const char* ext)
{
    char path[_MAX_PATH];
    _makepath(path, drive, dir, title, ext);
    return CString(path);
}

// A page's path that _makepath would cut names another file: plan.0012a cut
// to plan.001 is page 1 in the old style. Such a path is not made.
CString JoinedPage(const char* drive, const char* dir, const char* title, VXPAGENUM page)
{
    const CString ext = KVxFile::FormatPageString(page, 1, 0, 1);
    std::size_t length = (drive && drive[0] ? 2 : 0) + std::strlen(title) + 1 + static_cast<std::size_t>(ext.GetLength());
    if (dir && dir[0]) {
        const std::size_t d = std::strlen(dir);
        length += d + (dir[d - 1] == '\\' || dir[d - 1] == '/' ? 0 : 1);
    }
    if (length > _MAX_PATH - 1)
        return CString();
    return Joined(drive, dir, title, ext);
}

} // namespace

KVxFile::KVxFile(const char* path) : KVxPath(path)
{
    if (path)
        FoldForeignExtension();
}

bool KVxFile::FoldForeignExtension()
{
    if (!m_ext[0] || std::strpbrk(m_ext, "*?") || IsValidPage(1) != VxFileNone)
        return false;
    const std::size_t title = std::strlen(m_fname);
    const std::size_t room = sizeof m_fname - 1 - title;
    const std::size_t n = std::min(std::strlen(m_ext), room);
    std::memcpy(m_fname + title, m_ext, n);
    m_fname[title + n] = 0;
    std::memset(m_ext, 0, sizeof m_ext);
    return true;
}

int KVxFile::SetFilePath(const char* path)
{
    if (!KVxPath::SetFilePath(path))
        return 0;
    return FoldForeignExtension() ? 0 : 1;
}

int KVxFile::SetMerge(const char* path)
{
    const KVxFile other(path);
    auto take = [](char* to, const char* from, std::size_t size) {
        if (from[0]) {
            std::memset(to, 0, size);
            std::memcpy(to, from, std::min(std::strlen(from), size - 1));
        }
    };
    take(m_drive, other.m_drive, sizeof m_drive);
    take(m_dir, other.m_dir, sizeof m_dir);
    take(m_fname, other.m_fname, sizeof m_fname);
    take(m_ext, other.m_ext, sizeof m_ext);
    return 0;
}

void KVxFile::SetMergeWithPage(VXPAGENUM page)
{
    KVxPath::SetMerge(nullptr, nullptr, nullptr, FormatPageString(page, 1, 0, 1));
}

int KVxFile::IsOldStyleName(const char* name)
{
    const char* dot = name ? std::strrchr(name, '.') : nullptr;
    return (dot && std::strlen(dot + 1) == 3 && AllDigits(dot + 1, 3)) ? 1 : 0;
}

int KVxFile::OldNameToNew(char* name)
{
    if (!IsOldStyleName(name))
        return 0;
    char* digits = std::strrchr(name, '.') + 1;
    std::memmove(digits + 1, digits, std::strlen(digits) + 1);
    *digits = '0';
    return 1;
}

int KVxFile::OldNameToNew(CString* name)
{
    if (!name)
        return 0;
    const int dot = name->ReverseFind('.');
    if (dot == 0)
        return 0;
    if (dot < 0) {
        if (name->GetLength() != 3 || !AllDigits(*name, 3))
            return 0;
        name->Insert(0, '0');
        return 1;
    }
    if (!IsOldStyleName(*name))
        return 0;
    name->Insert(dot + 1, '0');
    return 1;
}

int KVxFile::NewNameToOld(CString* name)
{
    if (!name)
        return 0;
    const VXPAGENUM page = GetPageNumFromString(*name);
    if (page.GetSubPage() != 0 || page.GetPage() == PAGE_INVALID || page.GetPage() > 999)
        return 0;
    const int dot = name->ReverseFind('.');
    if (dot >= 0)
        *name = name->Left(dot) + FormatPageString(page, 1, 1, 0);
    else
        *name = FormatPageString(page, 1, 0, 0);
    return 1;
}

unsigned KVxFile::GetAnzStellen(int oldStyle)
{
    return oldStyle == 0 ? 4 : 3;
}

VXPAGENUM KVxFile::GetPageNumber() const
{
    if (!m_ext[0])
        return VXPAGENUM();
    return VXPAGENUM::GetPageNumber(m_ext + 1);
}

CString KVxFile::GetPageNumberString() const
{
    return FormatPageString(GetPageNumber(), 1, 0, 1);
}

CString KVxFile::FormatPageString(VXPAGENUM page, int zeros, int point, int newStyle)
{
    CString text;
    if (zeros)
        text.Format(newStyle ? "%.4d" : "%.3d", static_cast<int>(page.GetPage()));
    else
        text.Format("%d", page.GetPage16Bit());
    if (page.GetSubPage() != 0 && newStyle) {
        auto sub = static_cast<std::uint32_t>(page.GetSubPage());
        for (int i = 0; i < 2; ++i, sub <<= 8) {
            const auto top = static_cast<unsigned char>(sub >> 24);
            if (!top)
                break;
            text += static_cast<char>(top + 0x60);
        }
    }
    if (point)
        text.Insert(0, '.');
    return text;
}

VXPAGENUM KVxFile::GetPageNumFromString(const char* text)
{
    if (!text)
        return VXPAGENUM();
    while (*text == ' ')
        ++text;
    if (const char* dot = std::strrchr(text, '.'))
        text = dot + 1;
    return VXPAGENUM::GetPageNumber(text);
}

// A page number read from a file or a message may hold any 32-bit value, so
// the step is taken in 64 bits.
VXPAGENUM KVxFile::CreateNextPageNr(VXPAGENUM page, int)
{
    return VXPAGENUM(VXPAGE(std::min<long long>(page.GetPage() + 1LL, PAGE_TEXT_MAX)), 0);
}

VXPAGENUM KVxFile::CreatePreviousPageNr(VXPAGENUM page, int)
{
    return VXPAGENUM(VXPAGE(std::max<long long>(page.GetPage() - 1LL, 0)), 0);
}

VXPAGENUM KVxFile::FindNextPage() const
{
    CString name = GetFileName();
    for (int i = 0; i < 2 && !name.IsEmpty() && VXPAGENUM::IsSub(name[name.GetLength() - 1]); ++i)
        name = name.Left(name.GetLength() - 1);
    const int digits = std::max(name.GetLength() - 4, 0);

    CFileFind finder;
    BOOL more = finder.FindFile(GetPath() + name + "*");
    if (!more)
        return VXPAGENUM();
    // The page texts of the hits, in ascending byte order.
    std::vector<CString> texts;
    while (more) {
        more = finder.FindNextFile();
        if (finder.IsDirectory())
            continue;
        const CString tail = finder.GetFileName().Mid(digits);
        int end = 0;
        while (end < tail.GetLength() && (IsDigit(tail[end]) || VXPAGENUM::IsSub(tail[end])))
            ++end;
        const CString text = tail.Left(end);
        const auto at = std::upper_bound(texts.begin(), texts.end(), text,
                                         [](const CString& a, const CString& b) { return _mbscmp(a, b) < 0; });
        texts.insert(at, text);
    }
    const char* own = m_ext[0] ? m_ext + 1 : m_ext;
    for (const CString& text : texts) {
        if (_mbscmp(text, own) > 0)
            return VXPAGENUM::GetPageNumber(text);
    }
    return VXPAGENUM();
}

CString KVxFile::MergeFilePath(VXPAGENUM page) const
{
    if (!m_fname[0]) {
        VexalAssert(const_cast<char*>("StdVxDatei"), 560);
        return CString();
    }
    return JoinedPage(m_drive, m_dir, m_fname, page);
}

CString KVxFile::MergeFileName(VXPAGENUM page) const
{
    if (!m_fname[0])
        return CString();
    return JoinedPage(nullptr, nullptr, m_fname, page);
}

CString KVxFile::CreateNewFilePath(short delta) const
{
    const VXPAGENUM page = GetPageNumber();
    if (page.GetPage() == PAGE_INVALID)
        return CString();
    const int target = page.GetPage() + delta;
    if (target < 0 || target > PAGE_TEXT_MAX)
        return CString();
    return MergeFilePath(VXPAGENUM(VXPAGE(target), page.GetSubPage()));
}

VxFileType KVxFile::IsValidPage(int allowOld) const
{
    return IsSet() ? ExtensionType(m_ext, allowOld) : VxFileNone;
}

VxFileType KVxFile::ExtensionType(const char* ext, int allowOld)
{
    VxFileType result = VxFileNone;
    const std::size_t length = std::strlen(ext);
    if (allowOld && length == 4) {
        result = VxFileOld;
        if (!IsDigit(ext[1]) || !IsDigit(ext[2]))
            result = VxFileNone;
    }
    if (length < 5 || length > 7)
        return result;
    if (!AllDigits(ext + 1, 4))
        return VxFileNone;
    for (std::size_t i = 5; i < length; ++i) {
        if (!VXPAGENUM::IsSub(ext[i]))
            return VxFileNone;
    }
    return VxFileNew;
}

VxFileType KVxFile::IsValid(int allowOld) const
{
    return KVxPath::IsValid() ? IsValidPage(allowOld) : VxFileNone;
}

CString KVxFile::GetVexalDateiFilter()
{
    CString label;
    if (label.LoadString(6700)) {
        const int colon = label.ReverseFind(':');
        if (colon >= 0)
            label = label.Left(colon);
        label.TrimRight();
    }
    CString filter = "VEXAL " + label;
    filter += '\0';
    for (char digit = '0'; digit <= '9'; ++digit) {
        filter += "*.";
        filter += digit;
        filter += "*;";
    }
    filter += '\0';
    return filter;
}
