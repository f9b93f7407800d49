#include "pages/vxpagenum.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

VXPAGENUM Page(int page, int subpage = 0)
{
    return VXPAGENUM(VXPAGE(page), subpage);
}

void ExpectPage(const VXPAGENUM& p, int page, int subpage)
{
    EXPECT_EQ(p.GetPage(), page);
    EXPECT_EQ(p.GetSubPage(), subpage);
}

// Exposes the protected plain-number forms.
struct PageProbe : VXPAGENUM {
    using VXPAGENUM::VXPAGENUM;
    using VXPAGENUM::operator=;
    using VXPAGENUM::operator==;
    using VXPAGENUM::operator!=;
    using VXPAGENUM::operator<;
    using VXPAGENUM::operator<=;
    using VXPAGENUM::operator>;
    using VXPAGENUM::operator>=;
};

} // namespace

TEST(VXPAGENUM, DefaultIsTheInvalidPage)
{
    VXPAGENUM p;
    ExpectPage(p, 0xFFFF, 0);
    EXPECT_EQ(p.GetPage(), PAGE_INVALID);
}

TEST(VXPAGENUM, ChecksTheGrammarOfPageTexts)
{
    struct Row {
        const char* text;
        int valid;
    } rows[] = {
        {"", 0},      {"0", 1},        {"12", 1},      {"1234ab", 1}, {"1234abc", 0}, {"12345", 0},
        {"0012", 1},  {"00012", 0},    {"12a3", 0},    {"12abc", 0},  {"a12", 0},     {" 12", 0},
        {"12 ", 0},   {"-12", 0},      {"+1", 0},      {"12A", 1},    {"9Zz", 1},     {"12\xe4", 0},
        {"1.2", 0},   {"abc", 0},      {"12ab ", 0},   {"1ab", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(VXPAGENUM::CheckPageNumber(row.text), row.valid);
        const VXPAGENUM p = VXPAGENUM::GetPageNumber(row.text);
        if (!row.valid)
            ExpectPage(p, 0xFFFF, 0);
        else
            EXPECT_NE(p.GetPage(), PAGE_INVALID);
    }
    EXPECT_EQ(VXPAGENUM::CheckPageNumber(nullptr), 0);
}

TEST(VXPAGENUM, PacksLettersIntoTheTopBytes)
{
    ExpectPage(VXPAGENUM::GetPageNumber("12"), 12, 0);
    ExpectPage(VXPAGENUM::GetPageNumber("12a"), 12, 0x01000000);
    ExpectPage(VXPAGENUM::GetPageNumber("12ab"), 12, 0x01020000);
    ExpectPage(VXPAGENUM::GetPageNumber("12z"), 12, 0x1A000000);
    ExpectPage(VXPAGENUM::GetPageNumber("12AB"), 12, 0x01020000);
    ExpectPage(VXPAGENUM::GetPageNumber("12aB"), 12, 0x01020000);
    ExpectPage(VXPAGENUM::GetPageNumber("0"), 0, 0);
    ExpectPage(VXPAGENUM::GetPageNumber("0012"), 12, 0);
    ExpectPage(VXPAGENUM::GetPageNumber("9999zz"), 9999, 0x1A1A0000);
}

TEST(VXPAGENUM, TextConstructorTreatsEmptyAndNullAsNoPage)
{
    ExpectPage(VXPAGENUM(""), 0xFFFF, 0);
    ExpectPage(VXPAGENUM(static_cast<const char*>(nullptr)), 0xFFFF, 0);
    ExpectPage(VXPAGENUM("7b"), 7, 0x02000000);
    ExpectPage(VXPAGENUM("x"), 0xFFFF, 0);
}

TEST(VXPAGENUM, WritesTextInEachMode)
{
    const VXPAGENUM p = Page(7, 0x01000000);
    EXPECT_EQ(p.GetPageText(0), "7a");
    EXPECT_EQ(p.GetPageText(1), "0007a");
    EXPECT_EQ(p.GetPageText(2), "0007a");
    EXPECT_EQ(p.GetPageText(-5), "0007a");
    EXPECT_EQ(p.GetPageText(3), "007");
    // Mode 3 gives the same text with and without a letter.
    EXPECT_EQ(Page(12).GetPageText(3), Page(12, 0x01000000).GetPageText(3));
    EXPECT_EQ(VXPAGENUM().GetPageText(0), "65535");
    EXPECT_EQ(Page(10000).GetPageText(0), "10000");
    EXPECT_EQ(Page(12, 0x01020000).GetPageText(0), "12ab");
    EXPECT_EQ(Page(1234, 0x1A1A0000).GetPageText(1), "1234zz");
    EXPECT_EQ(Page(-5).GetPageText(1), "-0005");

    char buffer[16];
    std::memset(buffer, 'x', sizeof buffer);
    Page(12, 0x02000000).GetPageText(buffer, 4);
    EXPECT_STREQ(buffer, "0012b");
}

TEST(VXPAGENUM, LettersStopAtTwoOrAtTheFirstZeroByte)
{
    // Low bytes set by hand are not printed by the page text...
    EXPECT_EQ(Page(1, 0x01020304).GetPageText(0), "1ab");
    // ...and a zero first letter hides the second.
    EXPECT_EQ(Page(1, 0x00020000).GetPageText(0), "1");
    // The letters alone run until the rest of the value is zero.
    EXPECT_EQ(Page(1, 0x01020304).GetSubPageText(), "abcd");
    EXPECT_EQ(Page(1, 0x00020000).GetSubPageText(), "`b");
    EXPECT_EQ(Page(1, 0x01000000).GetSubPageText(), "a");
    EXPECT_EQ(Page(1, 0x01020000).GetSubPageText(), "ab");
    EXPECT_EQ(Page(1, 0).GetSubPageText(), "");
}

TEST(VXPAGENUM, TextRoundTripsForEveryValidShape)
{
    for (int page : {0, 1, 9, 10, 99, 100, 999, 1000, 9999}) {
        for (int sub : {0, 0x01000000, 0x1A000000, 0x01010000, 0x1A1A0000, 0x0C050000}) {
            const VXPAGENUM p = Page(page, sub);
            SCOPED_TRACE(p.GetPageText(0).GetString());
            EXPECT_TRUE(VXPAGENUM::GetPageNumber(p.GetPageText(0)) == p);
            EXPECT_TRUE(VXPAGENUM::GetPageNumber(p.GetPageText(1)) == p);
        }
    }
}

TEST(VXPAGENUM, ArithmeticKeepsOrDropsTheSubPage)
{
    VXPAGENUM p = Page(12, 0x02000000);
    ExpectPage(p.GetInc(1), 13, 0);
    ExpectPage(p.GetDec(2), 10, 0);
    ExpectPage(p, 12, 0x02000000);

    const VXPAGENUM r = (p += VXPAGE(1));
    ExpectPage(p, 13, 0x02000000);
    ExpectPage(r, 13, 0x02000000);
    p -= VXPAGE(3);
    ExpectPage(p, 10, 0x02000000);
    p += Page(5, 0x01000000);
    ExpectPage(p, 15, 0x02000000);
    p -= Page(20, 0x03000000);
    ExpectPage(p, -5, 0x02000000);
    // Nothing checks a limit.
    ExpectPage(Page(9999).GetInc(1), 10000, 0);
    ExpectPage(Page(0).GetDec(1), -1, 0);
}

TEST(VXPAGENUM, OrdersByPageThenSignedSubPage)
{
    const VXPAGENUM p12 = Page(12), p12a = Page(12, 0x01000000), p12b = Page(12, 0x02000000), p13 = Page(13);
    EXPECT_EQ(p12a > p12, 1);
    EXPECT_EQ(p12a < p12b, 1);
    EXPECT_EQ(p12a < p13, 1);
    EXPECT_EQ(p12 <= p12, 1);
    EXPECT_EQ(p12 >= p12, 1);
    EXPECT_EQ(p12 < p12, 0);
    EXPECT_EQ(p12b >= p13, 0);
    EXPECT_EQ(p12 == Page(12), 1);
    EXPECT_EQ(p12 != p12a, 1);
    EXPECT_EQ(p12 != Page(12), 0);
    // The sub-page compares signed: bit 31 set sorts below no letter.
    const VXPAGENUM high = Page(12, static_cast<int>(0x80000000u));
    EXPECT_EQ(high < p12, 1);
    EXPECT_EQ(p12 > high, 1);

    EXPECT_GT(VXPAGENUM::Compare(p12a, p12), 0);
    EXPECT_LT(VXPAGENUM::Compare(p12a, p12b), 0);
    EXPECT_EQ(VXPAGENUM::Compare(p12a, p13), -1);
    EXPECT_EQ(VXPAGENUM::Compare(p12, p12), 0);
    // Pages decide when both words differ.
    EXPECT_EQ(VXPAGENUM::Compare(Page(14, 0x01000000), Page(12, 0x05000000)), 2);
    // The sub-page difference wraps, which is why only its sign was ever used.
    EXPECT_EQ(VXPAGENUM::Compare(high, Page(12, 0x01000000)), 0x7F000000);
}

TEST(VXPAGENUM, PlainNumberFormsLookAtThePageAlone)
{
    PageProbe p(VXPAGE(12), 0x01000000);
    EXPECT_EQ(p == VXPAGE(12), 1);
    EXPECT_EQ(p != VXPAGE(12), 0);
    EXPECT_EQ(p < VXPAGE(13), 1);
    EXPECT_EQ(p <= VXPAGE(12), 1);
    EXPECT_EQ(p > VXPAGE(12), 0);
    EXPECT_EQ(p >= VXPAGE(12), 1);
    p = VXPAGE(20);
    ExpectPage(p, 20, 0x01000000);
}

TEST(VXPAGENUM, MasksAndPackedSubPages)
{
    EXPECT_EQ(VXPAGENUM().GetPage16Bit(), 0xFFFF);
    EXPECT_EQ(VXPAGENUM().GetPage10Bit(), 0x3FF);
    EXPECT_EQ(Page(1023).GetPage10Bit(), 1023);
    EXPECT_EQ(Page(1024).GetPage10Bit(), 0);
    EXPECT_EQ(Page(0x12345).GetPage16Bit(), 0x2345);
    EXPECT_EQ(Page(-1).GetPage16Bit(), 0xFFFF);

    EXPECT_EQ(VXPAGENUM::GetSub(0x0102, 0), 0x01020000);
    EXPECT_EQ(VXPAGENUM::GetSub(0x0102, 5), 0x01020005);
    EXPECT_EQ(VXPAGENUM::GetSub(0x0102, -1), -1);
    EXPECT_EQ(VXPAGENUM::GetSub(-1, 0), static_cast<int>(0xFFFF0000u));

    VXPAGENUM p;
    p.SetPagenum(5, 0x01000000);
    ExpectPage(p, 5, 0x01000000);
    p.SetPage(6);
    p.SetSubPage(0x02000000);
    ExpectPage(p, 6, 0x02000000);
}

TEST(VXPAGENUM, IsSubTakesOnlyAsciiLetters)
{
    int count = 0;
    for (int c = -128; c < 128; ++c)
        count += VXPAGENUM::IsSub(static_cast<char>(c));
    EXPECT_EQ(count, 52);
    EXPECT_EQ(VXPAGENUM::IsSub('\xe4'), 0);
    EXPECT_EQ(VXPAGENUM::IsSub('@'), 0);
    EXPECT_EQ(VXPAGENUM::IsSub('['), 0);
    EXPECT_EQ(VXPAGENUM::IsSub('`'), 0);
    EXPECT_EQ(VXPAGENUM::IsSub('{'), 0);
}

TEST(VXPAGENUMBuf, ConstructorAndAssignmentDifferInTheLastByte)
{
    VXPAGENUM::BUF empty;
    for (int i = 0; i < VXPAGENUM::BUF::SIZE; ++i)
        ASSERT_EQ(empty.GetRawBuffer()[i], 0);

    EXPECT_STREQ(VXPAGENUM::BUF(nullptr), "0");
    EXPECT_STREQ(VXPAGENUM::BUF("12a"), "12a");

    const std::string longText(150, 'x');
    VXPAGENUM::BUF built(longText.c_str());
    EXPECT_EQ(std::strlen(built), 99u);

    VXPAGENUM::BUF assigned;
    assigned.GetRawBuffer()[99] = '!';
    assigned = longText.c_str();
    EXPECT_EQ(assigned.GetRawBuffer()[98], 'x');
    EXPECT_EQ(assigned.GetRawBuffer()[99], '!');

    char* raw = assigned.GetClearBuffer();
    for (int i = 0; i < VXPAGENUM::BUF::SIZE; ++i)
        ASSERT_EQ(raw[i], 0);
    std::strcpy(raw, "5");
    EXPECT_EQ(assigned.GetRawBuffer(), raw);
    EXPECT_STREQ(assigned, "5");
    assigned.Clear();
    EXPECT_STREQ(assigned, "");
}

TEST(VXPAGENUMBuf, AssignsToAPageByParsing)
{
    VXPAGENUM p;
    p = VXPAGENUM::BUF("0012b");
    ExpectPage(p, 12, 0x02000000);
    p = VXPAGENUM::BUF("bad");
    ExpectPage(p, 0xFFFF, 0);

    // A buffer without terminator is not read past its end.
    VXPAGENUM::BUF full;
    std::memset(full.GetRawBuffer(), '1', VXPAGENUM::BUF::SIZE);
    p = full;
    ExpectPage(p, 0xFFFF, 0);
}
