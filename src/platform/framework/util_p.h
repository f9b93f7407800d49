// Internal; do not include directly.
//
// Small jobs that every part of the library does the same way: ASCII case,
// the parts of a host path, reading a whole file.
//
//   if (vx::AsciiEqualNoCase(name, "MSysVxObjects")) ...
//   std::string text;
//   if (vx::ReadWholeFile(vx::DirectoryOf(host) + "/VEXAL55.INI", text)) ...
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vx {

// --- ASCII case ---------------------------------------------------------
//
// The library folds ASCII letters only, as the C runtime did in its "C"
// locale, whatever locale the host sets: a byte of 0x80 and above is a
// character of the code page, and which of them are letters of which case
// is for the code page to say, not for the process's locale. SQLite's
// NOCASE folds the same way, so names compare alike in the engine and here.

constexpr bool AsciiIsLetter(char c) noexcept
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr char AsciiLower(char c) noexcept
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char AsciiUpper(char c) noexcept
{
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - ('a' - 'A')) : c;
}

// strncmp with ASCII case folded: the difference of the first differing
// folded bytes (as unsigned char), 0 when the texts agree up to a zero byte
// or for `count` bytes. Null counts as "".
inline int AsciiCompareNoCase(const char* a, const char* b, std::size_t count = static_cast<std::size_t>(-1)) noexcept
{
    const auto* x = reinterpret_cast<const unsigned char*>(a ? a : "");
    const auto* y = reinterpret_cast<const unsigned char*>(b ? b : "");
    for (std::size_t i = 0; i < count; ++i) {
        const int d = static_cast<unsigned char>(AsciiLower(static_cast<char>(x[i]))) -
                      static_cast<unsigned char>(AsciiLower(static_cast<char>(y[i])));
        if (d != 0 || x[i] == 0)
            return d;
    }
    return 0;
}

inline bool AsciiEqualNoCase(std::string_view a, std::string_view b) noexcept
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (AsciiLower(a[i]) != AsciiLower(b[i]))
            return false;
    }
    return true;
}

inline bool AsciiStartsWithNoCase(std::string_view text, std::string_view prefix) noexcept
{
    return text.size() >= prefix.size() && AsciiEqualNoCase(text.substr(0, prefix.size()), prefix);
}

inline bool AsciiEndsWithNoCase(std::string_view text, std::string_view suffix) noexcept
{
    return text.size() >= suffix.size() && AsciiEqualNoCase(text.substr(text.size() - suffix.size()), suffix);
}

inline std::string AsciiLowerCopy(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        c = AsciiLower(c);
    return out;
}

inline std::string AsciiUpperCopy(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        c = AsciiUpper(c);
    return out;
}

// --- host paths ---------------------------------------------------------

// The directory of a host path: "." for a bare name, "/" for "/name".
std::string DirectoryOf(std::string_view hostPath);

// The last part of a host path (all of it when it has no "/").
std::string_view NameOf(std::string_view hostPath) noexcept;

// --- whole files --------------------------------------------------------

// Reads the file open at `fd` from its start to its end (a file that grows
// meanwhile is read on). False, with `out` empty, on a read error.
bool ReadAll(int fd, std::string& out);

// Reads the whole file at `hostPath`. False if it cannot be opened or read.
bool ReadWholeFile(const std::string& hostPath, std::string& out);

} // namespace vx
