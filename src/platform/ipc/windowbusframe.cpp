// The window bus's receiving checks: a datagram's header against what the
// bus sends, and blocks put back together from their pieces (see
// windowbus_p.h).
#include "platform/ipc/windowbus.h"
#include "platform/ipc/windowbus_p.h"

#include <algorithm>
#include <cstring>

namespace vx::detail {
namespace {

constexpr std::size_t kHeaderSize = sizeof(FrameHeader);
constexpr std::size_t kPlacementSize = sizeof(WINDOWPLACEMENT);
static_assert(kPlacementSize == 44, "a placement travels as eleven 32-bit values");
// Blocks arriving in pieces at the same time, at most.
constexpr std::size_t kMaxPartials = 16;

} // namespace

FrameAssembler::Result FrameAssembler::Take(pid_t sender, const char* bytes, std::size_t length, FrameHeader& header,
                                            std::vector<char>& data, std::string& fault, std::size_t descriptors)
{
    if (length < kHeaderSize || length > kHeaderSize + kFramePiece) {
        fault = "a malformed message";
        return Result::Dropped;
    }
    FrameHeader h;
    std::memcpy(&h, bytes, kHeaderSize);
    const std::size_t piece = length - kHeaderSize;
    const std::uint32_t kindCode = h.kind & kKindMask;
    const auto kind = static_cast<FrameKind>(kindCode);
    const bool sent = kind == FrameKind::Send || kind == FrameKind::Notify;
    const bool mayCarry = (sent && h.message == WM_COPYDATA) || kind == FrameKind::Place;
    const std::size_t carried = (((h.kind >> kWParamCarrierShift) & 0xFF) ? 1 : 0) +
                                (((h.kind >> kLParamCarrierShift) & 0xFF) ? 1 : 0);
    fault.clear();
    if (h.magic != kBusMagic || kindCode < 1 || kindCode > 6 || (h.kind & kKindReserved))
        fault = "a malformed message";
    else if (carried != descriptors || (carried && (!sent || h.dataLength || h.message == WM_COPYDATA)))
        fault = "handles that do not match their message";
    else if (h.dataLength > kMaxCopyDataBytes)
        fault = "a block of " + std::to_string(h.dataLength) + " bytes (more than 16 MiB)";
    else if (h.dataLength && !mayCarry)
        fault = "data with a message that carries none";
    else if (kind == FrameKind::Place && h.dataLength != kPlacementSize)
        fault = "a placement of " + std::to_string(h.dataLength) + " bytes";
    else if (static_cast<std::size_t>(h.offset) + piece > h.dataLength ||
             (piece < kFramePiece && h.offset + piece != h.dataLength))
        fault = "a piece that does not fit its block";
    if (!fault.empty())
        return Result::Dropped;
    if (h.offset == 0 && piece == h.dataLength) {
        header = h;
        data.assign(bytes + kHeaderSize, bytes + length);
        return Result::Message;
    }

    // A piece: a sender's datagrams arrive in the order sent, so each block
    // grows from its start; one that breaks off is dropped.
    auto it = std::find_if(m_partials.begin(), m_partials.end(), [&](const Partial& p) {
        return p.sender == sender && p.kind == h.kind && p.sequence == h.sequence;
    });
    if (h.offset == 0) {
        if (it != m_partials.end())
            m_partials.erase(it);
        if (m_partials.size() >= kMaxPartials)
            m_partials.erase(m_partials.begin());
        Partial p{sender, h.kind, h.sequence, h, {}};
        p.data.reserve(h.dataLength);
        m_partials.push_back(std::move(p));
        it = m_partials.end() - 1;
    } else if (it == m_partials.end() || it->data.size() != h.offset) {
        if (it != m_partials.end())
            m_partials.erase(it);
        fault = "a piece out of its order";
        return Result::Dropped;
    } else if (h.dataLength != it->header.dataLength || h.hwnd != it->header.hwnd ||
               h.message != it->header.message) {
        // Every piece must say what the first said, or the block would end
        // at another length than its header gives.
        m_partials.erase(it);
        fault = "a piece that does not fit its block";
        return Result::Dropped;
    }
    it->data.insert(it->data.end(), bytes + kHeaderSize, bytes + length);
    if (it->data.size() < h.dataLength)
        return Result::Piece;
    header = it->header;
    data = std::move(it->data);
    m_partials.erase(it);
    return Result::Message;
}

} // namespace vx::detail
