#include "pages/vxpagenum.h"

#include "platform/framework/util_p.h"

#include <cstdio>
#include <cstring>

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Differences of page words may overflow; the library only ever looks at
// their sign, and two's complement wrap is what the callers were built on.
int WrappingDifference(std::int32_t a, std::int32_t b)
{
    return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

VXPAGE WrappingSum(std::int32_t a, std::int32_t b)
{
    return VXPAGE(static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b)));
}

} // namespace

// --- BUF --------------------------------------------------------------------

VXPAGENUM::BUF::BUF()
{
    Clear();
}

VXPAGENUM::BUF::BUF(const char* text)
{
    Clear();
    std::strncpy(m_buffer, text ? text : "0", SIZE - 1);
    m_buffer[SIZE - 1] = 0;
}

VXPAGENUM::BUF& VXPAGENUM::BUF::operator=(const char* text)
{
    // The last byte is left alone on purpose: a buffer written through
    // GetRawBuffer keeps whatever its writer put there.
    std::strncpy(m_buffer, text ? text : "0", SIZE - 1);
    return *this;
}

void VXPAGENUM::BUF::Clear()
{
    std::memset(m_buffer, 0, SIZE);
}

char* VXPAGENUM::BUF::GetClearBuffer()
{
    Clear();
    return m_buffer;
}

// --- VXPAGENUM --------------------------------------------------------------

VXPAGENUM::VXPAGENUM(const char* text)
{
    if (text && *text)
        *this = GetPageNumber(text);
}

VXPAGENUM VXPAGENUM::operator=(const BUF& text)
{
    // A buffer may lack its terminator (see BUF::operator=); the reader
    // looks at no more than seven bytes, so it stays inside the buffer.
    *this = GetPageNumber(text.GetRawBuffer());
    return *this;
}

VXPAGENUM VXPAGENUM::operator+=(const VXPAGENUM& other)
{
    m_page = WrappingSum(m_page, other.m_page);
    return *this;
}

VXPAGENUM VXPAGENUM::operator-=(const VXPAGENUM& other)
{
    m_page = VXPAGE(WrappingDifference(m_page, other.m_page));
    return *this;
}

VXPAGENUM VXPAGENUM::operator+=(VXPAGE page)
{
    m_page = WrappingSum(m_page, page);
    return *this;
}

VXPAGENUM VXPAGENUM::operator-=(VXPAGE page)
{
    m_page = VXPAGE(WrappingDifference(m_page, page));
    return *this;
}

VXPAGENUM VXPAGENUM::GetInc(int n) const
{
    return VXPAGENUM(WrappingSum(m_page, n), 0);
}

VXPAGENUM VXPAGENUM::GetDec(int n) const
{
    return VXPAGENUM(VXPAGE(WrappingDifference(m_page, n)), 0);
}

int VXPAGENUM::operator==(const VXPAGENUM& other) const
{
    return m_page == other.m_page && m_subpage == other.m_subpage;
}

int VXPAGENUM::operator!=(const VXPAGENUM& other) const
{
    return !(*this == other);
}

int VXPAGENUM::operator<(const VXPAGENUM& other) const
{
    if (m_page != other.m_page)
        return m_page < other.m_page;
    return m_subpage < other.m_subpage;
}

int VXPAGENUM::operator<=(const VXPAGENUM& other) const
{
    if (m_page != other.m_page)
        return m_page < other.m_page;
    return m_subpage <= other.m_subpage;
}

int VXPAGENUM::operator>(const VXPAGENUM& other) const
{
    return other < *this;
}

int VXPAGENUM::operator>=(const VXPAGENUM& other) const
{
    return other <= *this;
}

VXPAGENUM VXPAGENUM::operator=(VXPAGE page)
{
    m_page = page;
    return *this;
}

int VXPAGENUM::operator==(VXPAGE page) const
{
    return m_page == page;
}

int VXPAGENUM::operator!=(VXPAGE page) const
{
    return m_page != page;
}

int VXPAGENUM::operator<(VXPAGE page) const
{
    return m_page < page;
}

int VXPAGENUM::operator<=(VXPAGE page) const
{
    return m_page <= page;
}

int VXPAGENUM::operator>(VXPAGE page) const
{
    return m_page > page;
}

int VXPAGENUM::operator>=(VXPAGE page) const
{
    return m_page >= page;
}

void VXPAGENUM::SetPagenum(int page, int subpage)
{
    m_page = VXPAGE(page);
    m_subpage = subpage;
}

void VXPAGENUM::SetPage(int page)
{
    m_page = VXPAGE(page);
}

void VXPAGENUM::SetSubPage(int subpage)
{
    m_subpage = subpage;
}

int VXPAGENUM::GetPage16Bit() const
{
    return m_page & 0xFFFF;
}

int VXPAGENUM::GetPage10Bit() const
{
    return m_page & 0x3FF;
}

int VXPAGENUM::GetSub(short high, short low)
{
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<int>(high)) << 16) | static_cast<int>(low);
}

int VXPAGENUM::IsSub(char c)
{
    return vx::AsciiIsLetter(c);
}

int VXPAGENUM::CheckPageNumber(const char* text)
{
    if (!text)
        return 0;
    // Seven bytes are enough to tell a too long text from a valid one.
    const std::size_t length = strnlen(text, 7);
    if (length < 1 || length > 6)
        return 0;
    std::size_t i = 0;
    while (i < length && IsDigit(text[i]))
        ++i;
    if (i < 1 || i > 4)
        return 0;
    const std::size_t digitsEnd = i;
    while (i < length && IsSub(text[i]))
        ++i;
    if (i - digitsEnd > 2)
        return 0;
    return i == length;
}

VXPAGENUM VXPAGENUM::GetPageNumber(const char* text)
{
    VXPAGENUM result;
    if (!CheckPageNumber(text))
        return result;

    int page = 0;
    int i = 0;
    for (; IsDigit(text[i]); ++i)
        page = page * 10 + (text[i] - '0');
    if (page > PAGE_TEXT_MAX)
        page = PAGE_TEXT_MAX;
    result.m_page = VXPAGE(page);

    const int length = static_cast<int>(std::strlen(text));
    if (IsSub(text[length - 1])) {
        int first = length - 1;
        while (first > 0 && IsSub(text[first - 1]))
            --first;
        std::uint32_t packed = 0;
        int shift = 24;
        for (int k = first; k < length && shift >= 16; ++k, shift -= 8) {
            const int code = static_cast<unsigned char>(text[k]);
            const int letter = code >= 0x61 ? code - 0x60 : code - 0x40;
            packed |= static_cast<std::uint32_t>(letter) << shift;
        }
        result.m_subpage = static_cast<std::int32_t>(packed);
    }
    return result;
}

int VXPAGENUM::Compare(VXPAGENUM a, VXPAGENUM b)
{
    if (a.m_subpage != b.m_subpage && a.m_page == b.m_page)
        return WrappingDifference(a.m_subpage, b.m_subpage);
    return WrappingDifference(a.m_page, b.m_page);
}

void VXPAGENUM::GetPageText(char* buffer, int mode) const
{
    char format[] = "%.?d";
    bool letters = true;
    const char* used = format;
    if (mode == 0) {
        used = "%d";
    } else if (mode == 3) {
        format[2] = '3';
        letters = false;
    } else {
        format[2] = '4';
    }
    int length = std::snprintf(buffer, 16, used, static_cast<int>(m_page));
    if (!letters)
        return;
    std::uint32_t sub = static_cast<std::uint32_t>(m_subpage);
    for (int n = 0; n < 2; ++n) {
        const std::uint32_t top = sub >> 24;
        if (top == 0)
            break;
        buffer[length++] = static_cast<char>(top + 0x60);
        sub <<= 8;
    }
    buffer[length] = 0;
}

CString VXPAGENUM::GetPageText(int mode) const
{
    char buffer[256];
    GetPageText(buffer, mode);
    return CString(buffer);
}

CString VXPAGENUM::GetSubPageText() const
{
    char buffer[8];
    int length = 0;
    for (std::uint32_t sub = static_cast<std::uint32_t>(m_subpage); sub != 0; sub <<= 8)
        buffer[length++] = static_cast<char>((sub >> 24) + 0x60);
    buffer[length] = 0;
    return CString(buffer);
}
