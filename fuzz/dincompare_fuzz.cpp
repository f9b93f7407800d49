// The DIN comparisons on arbitrary bytes: cmp(a, a) is 0, and the sign of
// cmp(a, b) is minus the sign of cmp(b, a), for every variant, positions,
// prefix and mode.
#include "fuzzsupport.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

namespace {

int Sign(int v)
{
    return (v > 0) - (v < 0);
}

using Compare = int (*)(CString*, int, CString*, int);

void Check(const char* name, Compare cmp, CString& a, int ia, CString& b, int ib)
{
    const int ab = cmp(&a, ia, &b, ib);
    const int ba = cmp(&b, ib, &a, ia);
    VXFUZZ_CHECK(Sign(ab) == -Sign(ba), "%s(\"%s\", %d, \"%s\", %d) = %d but the other way %d", name, a.GetString(), ia,
                 b.GetString(), ib, ab, ba);
    VXFUZZ_CHECK(cmp(&a, ia, &a, ia) == 0, "%s(\"%s\", %d) with itself is %d", name, a.GetString(), ia,
                 cmp(&a, ia, &a, ia));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider in(data, size);
    const int ia = in.ConsumeIntegralInRange<int>(-2, 40);
    const int ib = in.ConsumeIntegralInRange<int>(-2, 40);
    const char prefix = in.ConsumeBool() ? '-' : static_cast<char>(in.ConsumeIntegral<std::uint8_t>());
    const int mode = in.ConsumeIntegralInRange<int>(0, 3);
    const std::string ta = in.ConsumeRandomLengthString(200);
    const std::string tb = in.ConsumeRemainingBytesAsString();
    CString a(ta.c_str()), b(tb.c_str());

    Check("CompareDINText", static_cast<Compare>(CompareDINText), a, ia, b, ib);
    Check("CompareDINTextBezug", static_cast<Compare>(CompareDINTextBezug), a, ia, b, ib);
    Check("CompareDINTextCS", static_cast<Compare>(CompareDINTextCS), a, ia, b, ib);
    Check("CompareDINTextBezugCS", static_cast<Compare>(CompareDINTextBezugCS), a, ia, b, ib);
    VXFUZZ_CHECK(Sign(CompareDINText(&a, &b)) == Sign(CompareDINText(&a, 0, &b, 0)),
                 "CompareDINText with and without positions differ");

    const int ab = BezugComp(a.GetString(), b.GetString(), prefix, mode);
    const int ba = BezugComp(b.GetString(), a.GetString(), prefix, mode);
    VXFUZZ_CHECK(Sign(ab) == -Sign(ba), "BezugComp(\"%s\", \"%s\", %d, %d) = %d but the other way %d", a.GetString(),
                 b.GetString(), prefix, mode, ab, ba);
    VXFUZZ_CHECK(BezugComp(a.GetString(), a.GetString(), prefix, mode) == 0, "BezugComp(\"%s\") with itself is not 0",
                 a.GetString());

    IsAllNumber(&a, ia);
    IsAllRealNumber(&a, ia);
    IsAllNotNumber(&a, ia);
    return 0;
}
