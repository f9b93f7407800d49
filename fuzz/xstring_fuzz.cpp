// The element functions of XString (and the list functions beside them) on
// arbitrary lists: setting an element and reading it back gives it, and
// leaves the other elements as they were.
#include "fuzzsupport.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider in(data, size);
    const char sep = in.ConsumeBool() ? '|' : static_cast<char>(in.ConsumeIntegralInRange<int>(1, 255));
    const int i = in.ConsumeIntegralInRange<int>(-2, 300);
    const int j = in.ConsumeIntegralInRange<int>(-2, 300);
    const std::string valueText = in.ConsumeRandomLengthString(64);
    const std::string patternText = in.ConsumeRandomLengthString(32);
    const std::string listText = in.ConsumeRemainingBytesAsString();

    XString::SetSeparator(sep);
    const XString list(listText.c_str());
    const XString value(valueText.c_str());

    list.Elements(i, j);
    list.Element(i);
    list.GetInt(i);
    list.GetDouble(i);
    list.GetChar(i);
    list.GetBool(i);
    list.ElementIndex(value);
    list.ElementIndex(i);
    list.ElementSortString();
    list.ElementSortDouble();
    list.ElementSortChar();
    list.ElementSortInt();
    list.FindIndex(sep, i);
    list.Count(sep);
    list.MatchString(CString(patternText.c_str()));
    list.GetDoubleFormatString();

    const XString set = list.SetElement(i, value);
    if (i >= 0 && value.Find(sep) < 0) {
        VXFUZZ_CHECK(set.Element(i) == value, "SetElement(%d, \"%s\") reads back as \"%s\"", i, value.GetString(),
                     set.Element(i).GetString());
        const int before = list.Count(sep);
        for (int k = 0; k <= before && k < 64; ++k) {
            if (k != i)
                VXFUZZ_CHECK(set.Element(k) == list.Element(k), "SetElement(%d) changed element %d", i, k);
        }
    }

    // The list functions, with the separator passed.
    const CString plain(listText.c_str());
    const int count = GetAnzahlSubStrings(plain, sep);
    GetSubString(i, plain, sep);
    GetSubString1(i, plain, sep);
    GetIndexedIntFromStringList(plain, i, sep);
    GetIndexedFloatFromStringList(plain, i, sep);
    GetSubStringIndex(CString(valueText.c_str()), plain, sep);
    CString merged(valueText.c_str());
    MergeSubStrings(merged, plain, sep);
    CString removed = plain;
    RemoveSubStringFromList(i, removed, sep);
    CString part;
    GetAnzAndPartNumber(plain, part, sep);
    int walked = 0;
    for (const char* p = plain.GetString(); p && walked <= count + 1; ++walked) {
        CString element;
        p = GetNextSubstring(p, element, sep);
    }
    CString rest = plain, out;
    for (int n = 0; n <= count + 1 && ExtractNextString(out, rest, sep); ++n) {
    }
    XString::RestoreSeparator();
    return 0;
}
