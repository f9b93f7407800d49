#include "pages/vxktppagenum.h"

#include "platform/framework/mbstring.h"

#include <cstdio>
#include <cstring>

namespace {

// The packed and text forms are 32-bit arithmetic that may wrap; shifts and
// sums go through unsigned words to keep that defined.
std::uint32_t Word(std::int32_t v)
{
    return static_cast<std::uint32_t>(v);
}

int Wrap(std::uint32_t v)
{
    return static_cast<int>(v);
}

} // namespace

VXKTPPAGENUM::VXKTPPAGENUM(LONG packed)
    : VXPAGENUM(VXPAGE(packed & 0xFFFF), 0), m_ktp(packed >> 16)
{
}

int VXKTPPAGENUM::operator==(const VXKTPPAGENUM& other) const
{
    return m_ktp == other.m_ktp && VXPAGENUM::operator==(other);
}

int VXKTPPAGENUM::operator!=(const VXKTPPAGENUM& other) const
{
    return !(*this == other);
}

int VXKTPPAGENUM::operator<(const VXKTPPAGENUM& other) const
{
    if (m_ktp != other.m_ktp)
        return m_ktp < other.m_ktp;
    return VXPAGENUM::operator<(other);
}

int VXKTPPAGENUM::operator<=(const VXKTPPAGENUM& other) const
{
    if (m_ktp != other.m_ktp)
        return m_ktp < other.m_ktp;
    return VXPAGENUM::operator<=(other);
}

int VXKTPPAGENUM::operator>(const VXKTPPAGENUM& other) const
{
    if (m_ktp != other.m_ktp)
        return m_ktp > other.m_ktp;
    return VXPAGENUM::operator>(other);
}

int VXKTPPAGENUM::operator>=(const VXKTPPAGENUM& other) const
{
    if (m_ktp != other.m_ktp)
        return m_ktp > other.m_ktp;
    return VXPAGENUM::operator>=(other);
}

int VXKTPPAGENUM::operator|(const VXKTPPAGENUM& other) const
{
    return Wrap(Word(GetPageAndKtp()) + Word(other.GetPageAndKtp()));
}

int VXKTPPAGENUM::operator&(const VXKTPPAGENUM& other) const
{
    return Wrap(Word(GetPageAndKtp()) - Word(other.GetPageAndKtp()));
}

int VXKTPPAGENUM::Compare(VXKTPPAGENUM& a, VXKTPPAGENUM& b)
{
    if (a.m_ktp != b.m_ktp)
        return Wrap(Word(a.m_ktp) - Word(b.m_ktp));
    return VXPAGENUM::Compare(a, b);
}

void VXKTPPAGENUM::SetPageAndKtp(VXPAGENUM page, int ktp)
{
    VXPAGENUM::operator=(page);
    m_ktp = ktp;
}

LONG VXKTPPAGENUM::GetPageAndKtp() const
{
    if (m_page == PAGE_INVALID)
        return -1;
    return Wrap((Word(m_ktp) << 16) | (Word(m_page) & 0xFFFF));
}

void VXKTPPAGENUM::SetKtpPageSub(LONG packed)
{
    m_ktp = static_cast<std::int32_t>(Word(packed) >> 16);
    m_page = VXPAGE(packed & 0xFFFF);
}

void VXKTPPAGENUM::SetKtpPageSub(LONG packed, int subpage)
{
    SetKtpPageSub(packed);
    m_subpage = subpage;
}

void VXKTPPAGENUM::SetKtpPageSub(int ktp, int page, int subpage)
{
    SetKtpPageSub(static_cast<LONG>(Wrap((Word(ktp) << 16) | Word(page))), subpage);
}

void VXKTPPAGENUM::GetPageAndKtpText(char* buffer) const
{
    std::snprintf(buffer, 12, "%d", Wrap((Word(m_ktp) << 16) | Word(m_page)));
}

CString VXKTPPAGENUM::GetPageAndKtpText() const
{
    char buffer[16];
    GetPageAndKtpText(buffer);
    return CString(buffer);
}

void VXKTPPAGENUM::GetFormatText(char* buffer) const
{
    std::snprintf(buffer, 36, "%d %d %d", m_ktp, static_cast<int>(m_page), m_subpage);
}

CString VXKTPPAGENUM::GetFormatText() const
{
    char buffer[40];
    GetFormatText(buffer);
    return CString(buffer);
}

int VXKTPPAGENUM::SetFormatText(const char* text)
{
    const char* first = text ? std::strchr(text, ' ') : nullptr;
    const char* second = first ? std::strchr(first + 1, ' ') : nullptr;
    if (!second) {
        SetKtpPageSub(0, 0, 0);
        return 0;
    }
    SetKtpPageSub(vx::Atoi(text), vx::Atoi(first + 1), vx::Atoi(second + 1));
    return 1;
}
