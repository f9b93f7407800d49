#include "pages/blattnummer.h"

#include "base/libraryframe.h"
#include "pages/kvxfile.h"
#include "platform/windows/cframewnd.h"

#include <cstdlib>

namespace {

bool AllDigits(const CString& text)
{
    for (int i = 0; i < text.GetLength(); ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
    }
    return true;
}

VXPAGENUM ItPageNumber(const CString& name, CString* title)
{
    const int dot = name.ReverseFind('.');
    if (dot <= 0)
        return VXPAGENUM();
    const int underscore = name.ReverseFind('_');
    auto noNumber = [&]() {
        if (title)
            *title = name.Left(dot);
        return VXPAGENUM(VXPAGE(0), 0);
    };
    if (underscore < 0 || underscore > dot)
        return noNumber();

    const CString between = name.Mid(underscore + 1, dot - underscore - 1);
    const int page = between.GetLength() == 1 ? between[0] - 0x30 : std::atoi(between);
    if (page < 0)
        return noNumber();

    int end = underscore;
    if (page == 0 && !between.IsEmpty() && !AllDigits(between)) {
        // Not a number after all: the title runs on to a wildcard or the dot.
        end = underscore + 1;
        while (end < dot && name[end] != '?' && name[end] != '*')
            ++end;
    }
    if (title)
        *title = name.Left(end > 0 ? end : dot);
    return VXPAGENUM(VXPAGE(page), 0);
}

} // namespace

VXPAGENUM GetBlattnummer(MainframeType type, CString& name, CString* title)
{
    if (type == MainframeIT)
        return ItPageNumber(name, title);
    const KVxFile file(name);
    if (file.IsValidPage(0) == VxFileNone) {
        if (title)
            *title = name;
        return VXPAGENUM();
    }
    if (title)
        *title = file.GetPathTitle();
    return file.GetPageNumber();
}

VXPAGENUM GetBlattnummer(MainframeType type, const char* name)
{
    if (type == MainframeIT)
        return VXPAGENUM();
    CString text = name;
    return GetBlattnummer(type, text, nullptr);
}

CString GetBlattExtension(MainframeType type, CString& name)
{
    if (type == MainframeIT) {
        const int dot = name.ReverseFind('.');
        return dot >= 0 ? name.Mid(dot + 1) : CString();
    }
    const KVxFile file(name);
    if (file.IsValidPage(0) == VxFileNone)
        return CString();
    return file.GetExtension().Mid(1);
}

void SetBlattnummer(MainframeType type, CString& name, VXPAGENUM page, CString* title)
{
    if (type == MainframeIT) {
        if (!title) {
            name.Format("%d", static_cast<int>(page.GetPage()));
            return;
        }
        if (name.ReverseFind('.') <= 0)
            VexalAssert(const_cast<char*>("VxBase"), 1148);
        CString result;
        result.Format("%s_%d(null)", title->GetString(), static_cast<int>(page.GetPage()));
        name = result;
        return;
    }
    if (!title) {
        name = KVxFile::FormatPageString(page, 1, 0, 1);
        return;
    }
    const KVxFile file(*title + ".0000");
    name = file.MergeFilePath(page);
}

VXPAGENUM PageLimit()
{
    const HWND host = g_pDLLMainframe ? g_pDLLMainframe->GetSafeHwnd() : nullptr;
    const LRESULT limit = SendMessageA(host, WM_VXBASE, HostQueryFlags, 2);
    return VXPAGENUM(VXPAGE(static_cast<int>(limit)), 0);
}
