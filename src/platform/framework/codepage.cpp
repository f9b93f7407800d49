#include "platform/framework/codepage.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <mutex>

namespace vx {
namespace {

std::mutex g_lock;
std::string g_codePage = "WINDOWS-1250";
unsigned g_generation = 1;

bool IsAscii(std::string_view s)
{
    return std::all_of(s.begin(), s.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// One converter per direction and thread, reopened when the code page
// changes; iconv_open is too slow to call per string.
class Converter {
public:
    Converter(bool toUtf8) : m_toUtf8(toUtf8) {}
    ~Converter() { Close(); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    iconv_t Get()
    {
        std::string page;
        unsigned generation;
        {
            std::lock_guard lock(g_lock);
            page = g_codePage;
            generation = g_generation;
        }
        if (generation != m_generation) {
            Close();
            m_cd = m_toUtf8 ? iconv_open("UTF-8", page.c_str()) : iconv_open(page.c_str(), "UTF-8");
            m_generation = generation;
        }
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        return m_cd;
    }

private:
    void Close()
    {
        if (m_cd != reinterpret_cast<iconv_t>(-1))
            iconv_close(m_cd);
        m_cd = reinterpret_cast<iconv_t>(-1);
    }

    bool m_toUtf8;
    iconv_t m_cd = reinterpret_cast<iconv_t>(-1);
    unsigned m_generation = 0;
};

// Runs `cd` over `in`; on a byte that does not convert, appends
// `replacement` and skips `skip(in)` bytes.
template <typename Skip>
std::string Convert(iconv_t cd, std::string_view in, std::string_view replacement, Skip skip)
{
    std::string out;
    if (cd == reinterpret_cast<iconv_t>(-1))
        return std::string(in);
    out.reserve(in.size() * 2);
    char buffer[512];
    std::size_t pos = 0;
    while (pos < in.size()) {
        char* src = const_cast<char*>(in.data() + pos);
        std::size_t srcLeft = in.size() - pos;
        char* dst = buffer;
        std::size_t dstLeft = sizeof buffer;
        const std::size_t rc = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
        out.append(buffer, static_cast<std::size_t>(dst - buffer));
        pos = in.size() - srcLeft;
        if (rc == static_cast<std::size_t>(-1)) {
            if (errno == E2BIG)
                continue;
            out += replacement;
            pos += skip(in.substr(pos));
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
        }
    }
    return out;
}

std::size_t Utf8SequenceLength(std::string_view s)
{
    const auto c = static_cast<unsigned char>(s[0]);
    std::size_t n = c < 0xC0 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    n = std::min(n, s.size());
    for (std::size_t i = 1; i < n; ++i) {
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80)
            return i;
    }
    return n;
}

void AppendUtf8(std::string& out, char32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace

bool SetCodePage(const char* iconvName)
{
    if (!iconvName || !*iconvName)
        return false;
    iconv_t probe = iconv_open("UTF-8", iconvName);
    if (probe == reinterpret_cast<iconv_t>(-1))
        return false;
    iconv_close(probe);
    std::lock_guard lock(g_lock);
    g_codePage = iconvName;
    ++g_generation;
    return true;
}

std::string CodePage()
{
    std::lock_guard lock(g_lock);
    return g_codePage;
}

std::string ToUtf8(std::string_view bytes)
{
    if (IsAscii(bytes))
        return std::string(bytes);
    thread_local Converter converter(true);
    return Convert(converter.Get(), bytes, "\xEF\xBF\xBD", [](std::string_view) { return std::size_t{1}; });
}

std::string FromUtf8(std::string_view utf8)
{
    if (IsAscii(utf8))
        return std::string(utf8);
    thread_local Converter converter(false);
    return Convert(converter.Get(), utf8, "?", Utf8SequenceLength);
}

std::string FromUtf16(std::u16string_view text)
{
    std::u32string wide;
    wide.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        }
        wide.push_back(c);
    }
    return FromUtf32(wide);
}

std::string FromUtf32(std::u32string_view text)
{
    std::string utf8;
    utf8.reserve(text.size());
    for (char32_t c : text)
        AppendUtf8(utf8, c);
    return FromUtf8(utf8);
}

} // namespace vx
