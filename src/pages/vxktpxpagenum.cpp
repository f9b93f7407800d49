#include "pages/vxktpxpagenum.h"

int VXKTPxPAGENUM::operator==(const VXKTPxPAGENUM& other) const
{
    return m_x == other.m_x && VXKTPPAGENUM::operator==(other);
}

int VXKTPxPAGENUM::operator!=(const VXKTPxPAGENUM& other) const
{
    return !(*this == other);
}

// The base is asked with > and < in turn rather than through Compare, so
// that X only counts where the base operators see equal values.
int VXKTPxPAGENUM::operator>=(const VXKTPxPAGENUM& other) const
{
    if (VXKTPPAGENUM::operator>(other))
        return 1;
    if (VXKTPPAGENUM::operator<(other))
        return 0;
    return m_x >= other.m_x;
}

int VXKTPxPAGENUM::operator>(const VXKTPxPAGENUM& other) const
{
    if (VXKTPPAGENUM::operator>(other))
        return 1;
    if (VXKTPPAGENUM::operator<(other))
        return 0;
    return m_x > other.m_x;
}

int VXKTPxPAGENUM::operator<=(const VXKTPxPAGENUM& other) const
{
    if (VXKTPPAGENUM::operator<(other))
        return 1;
    if (VXKTPPAGENUM::operator>(other))
        return 0;
    return m_x <= other.m_x;
}

int VXKTPxPAGENUM::operator<(const VXKTPxPAGENUM& other) const
{
    if (VXKTPPAGENUM::operator<(other))
        return 1;
    if (VXKTPPAGENUM::operator>(other))
        return 0;
    return m_x < other.m_x;
}

int VXKTPxPAGENUM::Compare(VXKTPxPAGENUM& a, VXKTPxPAGENUM& b)
{
    const int base = VXKTPPAGENUM::Compare(a, b);
    if (base != 0)
        return base;
    return static_cast<int>(static_cast<std::uint32_t>(a.m_x) - static_cast<std::uint32_t>(b.m_x));
}

void VXKTPxPAGENUM::SetPageAndKtpAndX(VXPAGENUM page, int ktp, int x)
{
    SetPageAndKtp(page, ktp);
    m_x = x;
}
