// Internal; do not include directly.
//
// Fast walking over separators, shared by the element readers of XString
// and the delimited lists. Long lists are read element by element in loops,
// so passing k separators must not cost one library call per separator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vx::detail {

// The position just behind the k-th `sep` in [text, text + length), or
// `length` when there are fewer. `passed` receives how many were passed.
inline std::size_t SkipSeparators(const char* text, std::size_t length, char sep, std::size_t k, std::size_t& passed)
{
    constexpr std::size_t kBlock = 64;
    std::size_t i = 0;
    passed = 0;
    if (k == 0)
        return 0;
    // Whole blocks that cannot hold the k-th separator are counted eight
    // bytes at a time: a byte equal to `sep` becomes zero after the xor,
    // and the high bit of y is set exactly for the zero bytes.
    constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7FULL;
    const std::uint64_t pattern = 0x0101010101010101ULL * static_cast<unsigned char>(sep);
    while (i + kBlock <= length) {
        std::size_t inBlock = 0;
        for (std::size_t b = 0; b < kBlock; b += 8) {
            std::uint64_t word;
            std::memcpy(&word, text + i + b, 8);
            const std::uint64_t x = word ^ pattern;
            const std::uint64_t y = ~(((x & kLow7) + kLow7) | x | kLow7);
            inBlock += static_cast<std::size_t>(((y >> 7) * 0x0101010101010101ULL) >> 56);
        }
        if (passed + inBlock >= k)
            break;
        passed += inBlock;
        i += kBlock;
    }
    for (; i < length; ++i) {
        if (text[i] == sep && ++passed == k)
            return i + 1;
    }
    return length;
}

} // namespace vx::detail
