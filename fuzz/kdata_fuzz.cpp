// A received message block (the data of a WM_COPYDATA from the partner):
// taken by AcceptPartnerBlock and, when accepted, read value by value as a
// receiver does, in an order the input chooses.
//
// The input is a count n, n bytes naming the reads, and the block.
#include "fuzzsupport.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <cstring>
#include <vector>

using KData = KProcessIO::KData;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool quiet = (vxfuzz::QuietBoxes(), true);
    (void)quiet;
    FuzzedDataProvider in(data, size);
    const std::vector<std::uint8_t> reads = in.ConsumeBytes<std::uint8_t>(in.ConsumeIntegralInRange<int>(0, 32));
    const std::uint32_t dwData = in.ConsumeIntegral<std::uint32_t>();
    const std::vector<std::uint8_t> block = in.ConsumeRemainingBytes<std::uint8_t>();

    // The block in memory of exactly its length, as the bus hands it over.
    void* memory = std::malloc(std::max<std::size_t>(block.size(), 1));
    if (!block.empty())
        std::memcpy(memory, block.data(), block.size());
    COPYDATASTRUCT cds{dwData, static_cast<DWORD>(block.size()), memory};
    KData* accepted = vx::AcceptPartnerBlock(&cds);
    if (accepted) {
        VXFUZZ_CHECK(accepted == memory, "the block was not taken in place");
        VXFUZZ_CHECK(static_cast<std::size_t>(accepted->m_Capacity) + 38 == block.size(),
                     "a capacity of %d in a block of %zu bytes", static_cast<int>(accepted->m_Capacity), block.size());
        for (const std::uint8_t r : reads) {
            switch (r % 10) {
            case 0: { int v; accepted->Read(v); break; }
            case 1: { long v; accepted->Read(v); break; }
            case 2: { unsigned long v; accepted->Read(v); break; }
            case 3: { POINT v; accepted->Read(v); break; }
            case 4: { RECT v; accepted->Read(v); break; }
            case 5: { double v; accepted->Read(v); break; }
            case 6: { float v; accepted->Read(v); break; }
            case 7: { CString v; accepted->Read(v); break; }
            case 8: { CStringArray v; accepted->Read(v); break; }
            case 9: { char v[40]; accepted->Read(v, r / 10 % 40); break; }
            }
        }
        // A reply is kept for the requester: copied, then freed with the next one.
        if (accepted->m_ID == vx::kPartnerReply)
            KProcessIO::ClosePartner(accepted);
    }
    std::free(memory);
    return 0;
}
