// Page number texts: VXPAGENUM and the KTP forms read from text, printed
// and read again; and the printing of arbitrary values into the buffers
// the headers promise are large enough.
#include "fuzzsupport.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <string>

namespace {

void PageText(const std::string& text)
{
    const char* t = text.c_str();
    const VXPAGENUM page(t);
    const VXPAGENUM parsed = VXPAGENUM::GetPageNumber(t);
    const bool valid = VXPAGENUM::CheckPageNumber(t) != 0;
    if (!text.empty())
        VXFUZZ_CHECK(page == parsed, "the constructor and GetPageNumber differ on \"%s\"", t);
    VXFUZZ_CHECK(valid == (parsed.GetPage() != PAGE_INVALID), "\"%s\": valid %d, page %d", t, valid,
                 static_cast<int>(parsed.GetPage()));
    if (valid) {
        for (int mode : {0, 1}) {
            const CString again = parsed.GetPageText(mode);
            VXFUZZ_CHECK(VXPAGENUM(again.GetString()) == parsed, "\"%s\" printed in mode %d as \"%s\" reads otherwise",
                         t, mode, again.GetString());
        }
        const CString digits = parsed.GetPageText(3);
        VXFUZZ_CHECK(VXPAGENUM(digits.GetString()) == VXPAGENUM(parsed.GetPage(), 0),
                     "\"%s\" printed in mode 3 as \"%s\" reads otherwise", t, digits.GetString());
        // As a page file's extension.
        VXFUZZ_CHECK(KVxFile::GetPageNumFromString(("plan." + text).c_str()) == parsed, "plan.%s", t);
    }
    VXPAGENUM::BUF buffer(t);
    VXPAGENUM fromBuffer;
    fromBuffer = buffer;
    KVxFile::GetPageNumFromString(t);

    VXKTPPAGENUM ktp;
    if (ktp.SetFormatText(t)) {
        char out[36];
        ktp.GetFormatText(out);
        VXKTPPAGENUM again;
        VXFUZZ_CHECK(again.SetFormatText(out) == 1, "\"%s\" printed as \"%s\" is refused", t, out);
        VXFUZZ_CHECK(again == ktp, "\"%s\" printed as \"%s\" reads otherwise", t, out);
    }
}

// Arbitrary values into the smallest buffers the headers allow; the
// sanitizer watches the bounds.
void Printing(FuzzedDataProvider& in)
{
    const VXPAGENUM page(VXPAGE(in.ConsumeIntegral<std::int32_t>()), in.ConsumeIntegral<std::int32_t>());
    for (int mode : {0, 1, 3}) {
        char* buffer = new char[16];
        page.GetPageText(buffer, mode);
        VXFUZZ_CHECK(std::strlen(buffer) < 16, "page text of %zu bytes", std::strlen(buffer));
        delete[] buffer;
    }
    page.GetSubPageText();
    KVxFile::FormatPageString(page, in.ConsumeBool(), in.ConsumeBool(), in.ConsumeBool());
    KVxFile::CreateNextPageNr(page);
    KVxFile::CreatePreviousPageNr(page);

    VXKTPPAGENUM ktp;
    ktp.SetKtpPageSub(in.ConsumeIntegral<int>(), in.ConsumeIntegral<int>(), in.ConsumeIntegral<int>());
    ktp.m_ktp = in.ConsumeIntegral<std::int32_t>();
    char* format = new char[36];
    ktp.GetFormatText(format);
    delete[] format;
    char* packed = new char[12];
    ktp.GetPageAndKtpText(packed);
    delete[] packed;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool quiet = (vxfuzz::QuietBoxes(), true);
    (void)quiet;
    FuzzedDataProvider in(data, size);
    if (in.ConsumeBool())
        Printing(in);
    else
        PageText(in.ConsumeRandomLengthString(256));
    return 0;
}
