// Datagrams as the window bus receives them, from a few senders, through
// the bus's own checks and reassembly; and a registry file of another
// process, read, written and read again.
//
// The first byte chooses the part. Datagrams come raw or built from a
// header the input fills, with a data piece of a chosen length (up to a
// whole 60 KiB piece, which raw input of the usual lengths never reaches).
#include "fuzzsupport.h"

#include "platform/ipc/windowbus_p.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <vector>

namespace {

using vx::detail::FrameAssembler;
using vx::detail::FrameHeader;

std::vector<char> BuiltDatagram(FuzzedDataProvider& in)
{
    FrameHeader h{};
    h.magic = in.ConsumeBool() ? vx::detail::kBusMagic : in.ConsumeIntegral<std::uint32_t>();
    h.kind = in.ConsumeIntegralInRange<std::uint32_t>(0, 7);
    h.hwnd = in.ConsumeIntegral<std::uint64_t>();
    h.message = in.ConsumeBool() ? WM_COPYDATA : in.ConsumeIntegral<std::uint32_t>();
    h.sequence = in.ConsumeIntegralInRange<std::uint32_t>(0, 3);
    h.wParam = in.ConsumeIntegral<std::uint64_t>();
    h.lParam = in.ConsumeIntegral<std::uint64_t>();
    const std::uint32_t pieces = in.ConsumeIntegralInRange<std::uint32_t>(0, 3);
    h.dataLength = in.ConsumeBool() ? pieces * vx::detail::kFramePiece + in.ConsumeIntegralInRange<std::uint32_t>(0, 64)
                                    : in.ConsumeIntegral<std::uint32_t>();
    h.offset = in.ConsumeIntegralInRange<std::uint32_t>(0, 3) * vx::detail::kFramePiece;
    const std::size_t piece = in.ConsumeBool() ? vx::detail::kFramePiece : in.ConsumeIntegralInRange<std::size_t>(0, 80);
    std::vector<char> datagram(sizeof h + piece, static_cast<char>(in.ConsumeIntegral<std::uint8_t>()));
    std::memcpy(datagram.data(), &h, sizeof h);
    return datagram;
}

void Datagrams(FuzzedDataProvider& in)
{
    FrameAssembler assembler;
    FrameHeader header{};
    std::vector<char> data;
    std::string fault;
    for (int i = 0; i < 64 && in.remaining_bytes() > 0; ++i) {
        const pid_t sender = in.ConsumeIntegralInRange<pid_t>(100, 102);
        std::vector<char> datagram;
        if (in.ConsumeBool()) {
            datagram = BuiltDatagram(in);
        } else {
            const std::string raw = in.ConsumeRandomLengthString(256);
            datagram.assign(raw.begin(), raw.end());
        }
        // The exact length, so that the sanitizer sees any read past it.
        std::unique_ptr<char[]> bytes(new char[std::max<std::size_t>(datagram.size(), 1)]);
        if (!datagram.empty())
            std::memcpy(bytes.get(), datagram.data(), datagram.size());
        const auto result = assembler.Take(sender, bytes.get(), datagram.size(), header, data, fault);
        if (result == FrameAssembler::Result::Message) {
            VXFUZZ_CHECK(header.magic == vx::detail::kBusMagic && header.kind >= 1 && header.kind <= 6,
                         "a message of kind %u", header.kind);
            VXFUZZ_CHECK(data.size() == header.dataLength, "%zu bytes for a block of %u", data.size(),
                         header.dataLength);
            VXFUZZ_CHECK(header.dataLength <= vx::kMaxCopyDataBytes, "a block of %u bytes", header.dataLength);
            if (header.kind == static_cast<std::uint32_t>(vx::detail::FrameKind::Place))
                VXFUZZ_CHECK(data.size() == sizeof(WINDOWPLACEMENT), "a placement of %zu bytes", data.size());
        } else if (result == FrameAssembler::Result::Dropped) {
            VXFUZZ_CHECK(!fault.empty(), "a datagram dropped without a reason");
        }
    }
}

void Registry(FuzzedDataProvider& in)
{
    const std::string text = in.ConsumeRemainingBytesAsString();
    vx::detail::Registry first;
    if (!vx::detail::ParseRegistry(text, first))
        return;
    vx::detail::Registry second;
    VXFUZZ_CHECK(vx::detail::ParseRegistry(vx::detail::FormatRegistry(first), second), "a written registry is refused");
    VXFUZZ_CHECK(second.startTime == first.startTime, "start %lld read back as %lld", first.startTime,
                 second.startTime);
    VXFUZZ_CHECK(second.windows.size() == first.windows.size(), "%zu windows read back as %zu", first.windows.size(),
                 second.windows.size());
    for (std::size_t i = 0; i < first.windows.size(); ++i) {
        VXFUZZ_CHECK(second.windows[i].hwnd == first.windows[i].hwnd, "window %zu changed its handle", i);
        VXFUZZ_CHECK(second.windows[i].className == first.windows[i].className, "window %zu changed its class", i);
        VXFUZZ_CHECK(second.windows[i].title == first.windows[i].title, "window %zu changed its title", i);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider in(data, size);
    if (in.ConsumeBool())
        Datagrams(in);
    else
        Registry(in);
    return 0;
}
