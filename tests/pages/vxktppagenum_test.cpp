#include "pages/vxktppagenum.h"
#include "pages/vxktpxpagenum.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

VXPAGENUM Page(int page, int subpage = 0)
{
    return VXPAGENUM(VXPAGE(page), subpage);
}

VXKTPPAGENUM Ktp(int ktp, int page, int subpage = 0)
{
    return VXKTPPAGENUM(Page(page, subpage), ktp);
}

VXKTPxPAGENUM KtpX(int ktp, int page, int subpage, int x)
{
    VXKTPxPAGENUM v;
    v.SetPageAndKtpAndX(Page(page, subpage), ktp, x);
    return v;
}

void ExpectKtp(const VXKTPPAGENUM& v, int ktp, int page, int subpage)
{
    EXPECT_EQ(v.GetKtp(), ktp);
    EXPECT_EQ(v.GetPage(), page);
    EXPECT_EQ(v.GetSubPage(), subpage);
}

} // namespace

TEST(VXKTPPAGENUM, PacksPageLowAndKtpHigh)
{
    ExpectKtp(VXKTPPAGENUM(), 0, 0xFFFF, 0);
    EXPECT_EQ(Ktp(3, 12).GetPageAndKtp(), 0x0003000C);
    EXPECT_EQ(Ktp(3, 12, 0x01000000).GetPageAndKtp(), 0x0003000C); // no room for the sub-page
    ExpectKtp(VXKTPPAGENUM(0x0003000C), 3, 12, 0);
    EXPECT_TRUE(VXKTPPAGENUM(Ktp(7, 300).GetPageAndKtp()) == Ktp(7, 300));
    // The invalid page packs to -1, while the text form shows 0xFFFF.
    EXPECT_EQ(VXKTPPAGENUM().GetPageAndKtp(), -1);
    EXPECT_EQ(VXKTPPAGENUM().GetPageAndKtpText(), "65535");
    EXPECT_EQ(Ktp(3, 12).GetPageAndKtpText(), "196620");
    char buffer[16];
    Ktp(1, 2).GetPageAndKtpText(buffer);
    EXPECT_STREQ(buffer, "65538");
}

TEST(VXKTPPAGENUM, ConstructorKeepsTheSignWhileSetKtpPageSubDoesNot)
{
    const LONG packed = static_cast<LONG>(0x8003000Cu);
    ExpectKtp(VXKTPPAGENUM(packed), -32765, 12, 0);
    VXKTPPAGENUM v = Ktp(0, 1, 0x02000000);
    v.SetKtpPageSub(packed);
    ExpectKtp(v, 0x8003, 12, 0x02000000); // the sub-page stays
    v.SetKtpPageSub(0x00050007, 0x01000000);
    ExpectKtp(v, 5, 7, 0x01000000);
    v.SetKtpPageSub(4, 9, 0);
    ExpectKtp(v, 4, 9, 0);
    // An unmasked page above 0xFFFF spills into the KTP.
    v.SetKtpPageSub(4, 0x10009, 0);
    ExpectKtp(v, 5, 9, 0);
}

TEST(VXKTPPAGENUM, OrdersByKtpBeforePage)
{
    EXPECT_EQ(Ktp(1, 99) < Ktp(2, 1), 1);
    EXPECT_EQ(Ktp(2, 1) > Ktp(1, 99), 1);
    EXPECT_EQ(Ktp(2, 1) <= Ktp(1, 99), 0);
    EXPECT_EQ(Ktp(2, 5) < Ktp(2, 5, 0x01000000), 1);
    EXPECT_EQ(Ktp(2, 5) <= Ktp(2, 5), 1);
    EXPECT_EQ(Ktp(2, 5) >= Ktp(2, 5), 1);
    EXPECT_EQ(Ktp(2, 5) > Ktp(2, 5), 0);
    EXPECT_EQ(Ktp(2, 5) == Ktp(2, 5), 1);
    EXPECT_EQ(Ktp(2, 5) != Ktp(3, 5), 1);
    EXPECT_EQ(Ktp(2, 5) == Ktp(2, 5, 0x01000000), 0);

    VXKTPPAGENUM a = Ktp(1, 99), b = Ktp(2, 1), c = Ktp(2, 1, 0x01000000);
    EXPECT_EQ(VXKTPPAGENUM::Compare(a, b), -1);
    EXPECT_LT(VXKTPPAGENUM::Compare(b, c), 0);
    EXPECT_EQ(VXKTPPAGENUM::Compare(b, b), 0);
}

TEST(VXKTPPAGENUM, SumAndDifferenceWorkOnThePackedForms)
{
    EXPECT_EQ(Ktp(1, 2) | Ktp(3, 4), 0x00040006);
    EXPECT_EQ(Ktp(3, 4) & Ktp(1, 2), 0x00020002);
    // An invalid page takes part as -1.
    EXPECT_EQ(VXKTPPAGENUM() | Ktp(0, 5), 4);
}

TEST(VXKTPPAGENUM, FormatTextRoundTrips)
{
    VXKTPPAGENUM v = Ktp(3, 12, 0x01020000);
    EXPECT_EQ(v.GetFormatText(), "3 12 16908288");
    char buffer[40];
    v.GetFormatText(buffer);
    EXPECT_STREQ(buffer, "3 12 16908288");

    VXKTPPAGENUM back;
    EXPECT_EQ(back.SetFormatText(buffer), 1);
    EXPECT_TRUE(back == v);

    const VXKTPPAGENUM bigSub = Ktp(2, 7, static_cast<int>(0x80000000u));
    EXPECT_EQ(back.SetFormatText(bigSub.GetFormatText()), 1);
    EXPECT_TRUE(back == bigSub);
    // The KTP goes through 16 unsigned bits on the way in, so a negative
    // one does not come back.
    EXPECT_EQ(back.SetFormatText(Ktp(-2, 7).GetFormatText()), 1);
    ExpectKtp(back, 0xFFFE, 7, 0);
}

TEST(VXKTPPAGENUM, BadFormatTextGivesPageZero)
{
    VXKTPPAGENUM v = Ktp(9, 9, 0x01000000);
    EXPECT_EQ(v.SetFormatText("3 12"), 0);
    ExpectKtp(v, 0, 0, 0);
    v = Ktp(9, 9);
    EXPECT_EQ(v.SetFormatText(""), 0);
    ExpectKtp(v, 0, 0, 0);
    EXPECT_EQ(v.SetFormatText(nullptr), 0);
    // Two blanks are enough; the numbers are read as atoi reads them.
    EXPECT_EQ(v.SetFormatText("x  y"), 1);
    ExpectKtp(v, 0, 0, 0);
    EXPECT_EQ(v.SetFormatText("2 5a 1"), 1);
    ExpectKtp(v, 2, 5, 1);
}

TEST(VXKTPPAGENUM, KeepsThePagePart)
{
    VXKTPPAGENUM v;
    v.SetPageAndKtp(Page(4, 0x02000000), 6);
    EXPECT_TRUE(v.GetVxPage() == Page(4, 0x02000000));
    EXPECT_EQ(v.GetKtp(), 6);
    EXPECT_EQ(sizeof(VXKTPPAGENUM), 12u);
    EXPECT_EQ(sizeof(VXKTPxPAGENUM), 16u);
}

TEST(VXKTPxPAGENUM, XRanksBelowKtpAndPage)
{
    const VXKTPxPAGENUM low = KtpX(3, 12, 0, 1), high = KtpX(3, 12, 0, 2);
    EXPECT_EQ(low < high, 1);
    EXPECT_EQ(low <= high, 1);
    EXPECT_EQ(high > low, 1);
    EXPECT_EQ(high >= low, 1);
    EXPECT_EQ(low >= high, 0);
    EXPECT_EQ(low == high, 0);
    EXPECT_EQ(low != high, 1);
    EXPECT_EQ(low == KtpX(3, 12, 0, 1), 1);
    EXPECT_EQ(low <= KtpX(3, 12, 0, 1), 1);
    EXPECT_EQ(low < KtpX(3, 12, 0, 1), 0);
    // A higher page wins whatever X says, and so does a higher KTP.
    EXPECT_EQ(KtpX(3, 13, 0, 0) > KtpX(3, 12, 0, 9), 1);
    EXPECT_EQ(KtpX(3, 13, 0, 0) < KtpX(3, 12, 0, 9), 0);
    EXPECT_EQ(KtpX(4, 1, 0, 0) >= KtpX(3, 12, 0, 9), 1);
    EXPECT_EQ(KtpX(2, 99, 0, 9) <= KtpX(3, 1, 0, 0), 1);
    EXPECT_EQ(KtpX(3, 12, 0x01000000, 0) > KtpX(3, 12, 0, 5), 1);

    VXKTPxPAGENUM a = low, b = high, c = KtpX(3, 13, 0, 0);
    EXPECT_EQ(VXKTPxPAGENUM::Compare(a, b), -1);
    EXPECT_EQ(VXKTPxPAGENUM::Compare(b, a), 1);
    EXPECT_EQ(VXKTPxPAGENUM::Compare(c, b), 1);
    EXPECT_EQ(VXKTPxPAGENUM::Compare(a, a), 0);

    VXKTPxPAGENUM fresh;
    EXPECT_EQ(fresh.GetX(), 0);
    EXPECT_EQ(fresh.GetKtp(), 0);
    EXPECT_EQ(fresh.GetPage(), PAGE_INVALID);
    fresh = high;
    EXPECT_TRUE(fresh == high);
    EXPECT_TRUE(fresh.GetVxPage() == Page(12));
}
