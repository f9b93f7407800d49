// Internal; do not include directly.
//
// The window bus's wire frames and its registry files.
//
// Between two processes, each direction has its own connection: a process
// writes its requests (and posts) on the connection it opened to the other,
// and gets the replies back on it; it reads the other's requests from the
// connections it accepted. A frame is a fixed header and, for WM_COPYDATA and
// a placement, the data; all numbers are little-endian, the memory image of
// FrameHeader on the hosts the port runs on.
//
// The registry file "<pid>.win" lists a process's published windows:
//   vxbus 1
//   start <process start time in clock ticks since boot>
//   <handle in hex> TAB <class> TAB <title>
// with "\", TAB, CR and LF in class and title written as "\\", "\t", "\r"
// and "\n".
#pragma once

#include "platform/windowplacement.h"
#include "platform/wintypes.h"

#include <sys/types.h>

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
};

struct FrameHeader {
    std::uint32_t magic;
    std::uint32_t kind;
    std::uint64_t hwnd;
    std::uint32_t message;
    std::uint32_t sequence;
    std::uint64_t wParam;
    std::uint64_t lParam; // dwData for WM_COPYDATA; the result in a Reply
    std::uint32_t dataLength;
    std::uint32_t reserved;
};
static_assert(sizeof(FrameHeader) == 48, "the frame header is 48 bytes on the wire");

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
