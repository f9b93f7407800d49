// Page file names: paths taken apart by KVxPath and KVxFile, the page
// forms of AT and IT (GetBlattnummer and SetBlattnummer), the old and new
// extension styles, and the path text functions.
#include "fuzzsupport.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

void PageFile(const std::string& text, const std::string& other, short delta)
{
    const char* t = text.c_str();
    KVxFile file(t);
    const VXPAGENUM page = file.GetPageNumber();
    file.GetPageNumberString();
    file.IsValid(0);
    file.IsValid(1);
    file.IsValidPage(1);
    file.MergeFileName(page);
    file.CreateNewFilePath(delta);
    if (!file.GetFileTitle().IsEmpty()) {
        const CString merged = file.MergeFilePath(VXPAGENUM(VXPAGE(12), 0x01000000));
        // "" for a path that would not fit; never the path of another page.
        VXFUZZ_CHECK(merged.IsEmpty() || KVxFile(merged).GetPageNumber() == VXPAGENUM(VXPAGE(12), 0x01000000),
                     "\"%s\" merged with page 12a gives \"%s\"", t, merged.GetString());
    }
    KVxFile merge(file);
    merge.SetMerge(other.c_str());
    merge.SetMergeWithPage(page);
    if (const char* ext = KVxPath::GetExtension(t))
        KVxFile::ExtensionType(ext, 1);

    // The old and new extension styles.
    KVxFile::IsOldStyleName(t);
    std::vector<char> room(text.size() + 2);
    std::memcpy(room.data(), t, text.size() + 1);
    KVxFile::OldNameToNew(room.data());
    VXFUZZ_CHECK(std::strlen(room.data()) <= text.size() + 1, "OldNameToNew grew \"%s\" by more than a byte", t);
    CString name(t);
    KVxFile::OldNameToNew(&name);
    name = t;
    KVxFile::NewNameToOld(&name);

    // AT keeps the page in the extension, IT in the title.
    for (MainframeType type : {MainframeAT, MainframeIT}) {
        CString n(t), title;
        const VXPAGENUM p = GetBlattnummer(type, n, &title);
        GetBlattnummer(type, t);
        GetBlattExtension(type, n);
        // A title without a file name gives no path (the alarm and "").
        if (type == MainframeAT && p.GetPage() != PAGE_INVALID && !KVxFile(title).GetFileTitle().IsEmpty()) {
            CString made;
            SetBlattnummer(type, made, p, &title);
            CString back;
            // "" only for a path too long to hold the page (259 characters).
            VXFUZZ_CHECK(made.IsEmpty() ? text.size() > 259 : GetBlattnummer(type, made, &back) == p,
                         "\"%s\" (page %d) set back as \"%s\"", t, static_cast<int>(p.GetPage()), made.GetString());
        }
        CString bare;
        SetBlattnummer(type, bare, p, nullptr);
    }
}

void PathTexts(const std::string& a, const std::string& b)
{
    GetPfad(a.c_str());
    GetDateiname(a.c_str());
    IsPathname(a.c_str());
    IsNetname(a.c_str());
    IsPfadRelativToPfad(a.c_str(), b.c_str());
    GetPfadRelativToPfad(a.c_str(), b.c_str());
    GetPfadFullToPfad(a.c_str(), b.c_str());
    CString base(a.c_str()), path(b.c_str());
    GetZusatzDateipfad(base, path);
    CString safe(a.c_str());
    MacheDateinamenSicher(safe);
    std::vector<char> buffer(a.begin(), a.end());
    buffer.push_back(0);
    MacheDateinamenSicher(buffer.data());
    VXFUZZ_CHECK(std::strlen(buffer.data()) <= a.size(), "MacheDateinamenSicher grew \"%s\"", a.c_str());

    KVxPath p(a.c_str());
    p.GetDrive();
    p.GetDirectory();
    p.AddDir(b.c_str());
    p.SetMergeWithExt(b.c_str());
    p.SetFileTitle(b.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool quiet = (vxfuzz::QuietBoxes(), true);
    (void)quiet;
    FuzzedDataProvider in(data, size);
    const short delta = in.ConsumeIntegral<short>();
    const bool paths = in.ConsumeBool();
    const std::string a = in.ConsumeRandomLengthString(300);
    const std::string b = in.ConsumeRandomLengthString(300);
    if (paths)
        PathTexts(a, b);
    else
        PageFile(a, b, delta);
    return 0;
}
