// Internal; do not include directly.
//
// The window bus's wire frames and its registry files.
//
// Each process has one datagram socket, "<pid>.sock" in the bus directory,
// and everything for it arrives there: requests and posts of others, and the
// answers to its own requests. A process waiting for an answer therefore
// needs one blocking receive, and serves whatever else arrives meanwhile. A
// datagram is a fixed header and up to 60 KiB of data; a larger block (a
// WM_COPYDATA, a placement) travels in pieces, each with the header and its
// offset in the block. All numbers are little-endian, the memory image of
// FrameHeader on the hosts the port runs on. The kernel adds each
// datagram's sender credentials (SO_PASSCRED).
//
// The low byte of `kind` is the FrameKind. A sent message (Send, Notify)
// without data may carry handles: bits 8-15 name the carrier of wParam,
// bits 16-23 that of lParam (0: a plain number), and the datagram holds one
// descriptor per carried handle (SCM_RIGHTS), wParam's first. The receiver
// hands the message on with handles of its own for the same objects.
//
// The registry file "<pid>.win" lists a process's published windows:
//   vxbus 1
//   start <process start time in clock ticks since boot>
//   <handle in hex> TAB <class> TAB <title>
// with "\", TAB, CR and LF in class and title written as "\\", "\t", "\r"
// and "\n".
#pragma once

#include "platform/windows/windowplacement.h"
#include "platform/framework/wintypes.h"

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vx::detail {

constexpr std::uint32_t kBusMagic = 0x31425856; // "VXB1"

enum class FrameKind : std::uint32_t {
    Send = 1,  // a sent message; answered by a Reply
    Post = 2,  // a posted message; no answer
    Reply = 3, // the result of the request with the same sequence, in lParam
    Show = 4,  // ShowWindow with the command in wParam; answered by a Reply
    Place = 5, // SetWindowPlacement with the record as data; answered by a Reply
    Notify = 6, // a message handled as a sent one, with no answer
};

constexpr std::uint32_t kKindMask = 0xFF;
constexpr int kWParamCarrierShift = 8;
constexpr int kLParamCarrierShift = 16;
// Bits of `kind` that must be 0.
constexpr std::uint32_t kKindReserved = 0xFF000000u;

struct FrameHeader {
    std::uint32_t magic;
    std::uint32_t kind;
    std::uint64_t hwnd;
    std::uint32_t message;
    std::uint32_t sequence;
    std::uint64_t wParam;
    std::uint64_t lParam; // dwData for WM_COPYDATA; the result in a Reply
    std::uint32_t dataLength; // of the whole block
    std::uint32_t offset;     // of this datagram's piece in the block
};
static_assert(sizeof(FrameHeader) == 48, "the frame header is 48 bytes on the wire");

// Data bytes per datagram: larger blocks travel in pieces, well within the
// default socket buffers.
constexpr std::size_t kFramePiece = 60 * 1024;

// Checks each received datagram and puts blocks that arrive in pieces back
// together. The bus's receiving side has one; what arrives is outside input
// (any process of the user may send anything), so nothing here trusts a
// field of the header.
class FrameAssembler {
public:
    enum class Result {
        Message, // a whole message: `header` and `data` are filled
        Piece,   // a piece of a larger block, kept
        Dropped, // refused: `fault` says why
    };

    // Takes the datagram `bytes` (`length` bytes, header included) of process
    // `sender`, which arrived with `descriptors` descriptors. A sender's
    // datagrams must arrive in the order sent; a block that breaks off is
    // dropped. At most 16 blocks are pieced together at once; a 17th
    // displaces the oldest. Handles are carried only by a whole sent message
    // of numbers, with one descriptor each.
    Result Take(pid_t sender, const char* bytes, std::size_t length, FrameHeader& header, std::vector<char>& data,
                std::string& fault, std::size_t descriptors = 0);
    // Forgets every block begun.
    void Clear() { m_partials.clear(); }

private:
    struct Partial {
        pid_t sender = 0;
        std::uint32_t kind = 0;
        std::uint32_t sequence = 0;
        FrameHeader header{};
        std::vector<char> data;
    };
    std::vector<Partial> m_partials;
};

struct RegisteredWindow {
    HWND hwnd = nullptr;
    std::string className;
    std::string title;
};

struct Registry {
    long long startTime = -1;
    std::vector<RegisteredWindow> windows;
};

std::string FormatRegistry(const Registry& registry);
// False for a text that is no registry.
bool ParseRegistry(const std::string& text, Registry& out);

// SetWindowPlacement on a window of another process.
BOOL RemoteSetPlacement(HWND hwnd, const WINDOWPLACEMENT& placement);

} // namespace vx::detail
