#include "base/xstring.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Each test starts with the default separator and leaves it so.
class XStringTest : public ::testing::Test {
protected:
    void SetUp() override { XString::SEP = XString::OLDSEP = '|'; }
    void TearDown() override { XString::SEP = XString::OLDSEP = '|'; }
};

} // namespace

TEST_F(XStringTest, ElementsAlwaysHaveTheRequestedCount)
{
    const XString ab("a|b");
    EXPECT_EQ(XString("").Element(0), "");
    EXPECT_EQ(ab.Element(5), "");
    EXPECT_EQ(ab.Element(0), "a");
    EXPECT_EQ(ab.Element(1), "b");
    EXPECT_EQ(ab.Elements(0, 3), "a|b||");
    EXPECT_EQ(ab.Elements(1, 3), "b||");
    EXPECT_EQ(ab.Elements(3, 4), "|");
    EXPECT_EQ(XString("a|b|c").Elements(1, -1), "b|c");
    EXPECT_EQ(XString("a|b|c").Elements(0, 1), "a|b");
    EXPECT_EQ(XString("a|b|c")(2), "c");
    EXPECT_EQ(XString("|x").Element(0), "");
    EXPECT_EQ(XString("|x").Element(1), "x");
    EXPECT_EQ(XString("x|").Element(1), "");
    EXPECT_EQ(XString("|").Elements(0, 1), "|");
    EXPECT_EQ(ab.Elements(1, 0), "") << "n = 0";
    EXPECT_EQ(ab.Elements(2, 0), "") << "n < 0";
    EXPECT_EQ(ab.Elements(-1, 1), "");
}

TEST_F(XStringTest, ElementsMatchASplitOnEveryInput)
{
    // Elements(i, i) of any text equals the i-th piece of a plain split.
    for (const char* text : {"", "|", "||", "a", "a|", "|a", "ab|c||d", "|||x|"}) {
        std::vector<std::string> pieces{""};
        for (const char* p = text; *p; ++p) {
            if (*p == '|')
                pieces.emplace_back();
            else
                pieces.back() += *p;
        }
        for (int i = 0; i < 8; ++i) {
            SCOPED_TRACE(std::string(text) + " #" + std::to_string(i));
            const std::string want = i < static_cast<int>(pieces.size()) ? pieces[i] : "";
            EXPECT_EQ(std::string(XString(text).Element(i).GetString()), want);
        }
    }
}

TEST_F(XStringTest, OwnSeparatorIsRestoredAfterTheCall)
{
    const XString s("a;b|c");
    EXPECT_EQ(s.Element(1, ';'), "b|c");
    EXPECT_EQ(XString::SEP, '|');
    EXPECT_EQ(s.GetInt(0, ';'), 0);
    EXPECT_EQ(XString::SetSeparator(';'), ';');
    EXPECT_EQ(XString::SetSeparator(','), ',');
    EXPECT_EQ(XString::OLDSEP, ';');
    EXPECT_EQ(XString::RestoreSeparator(), ';');
    EXPECT_EQ(XString::RestoreSeparator(), ';') << "only one step back is kept";
    EXPECT_EQ(s.Element(1), "b|c");
}

TEST_F(XStringTest, SetElementGrowsAndReplaces)
{
    EXPECT_EQ(XString("a").SetElement(3, "x"), "a|||x");
    EXPECT_EQ(XString("").SetElement(0, "x"), "x");
    EXPECT_EQ(XString("a|b|c").SetElement(1, "BB"), "a|BB|c");
    EXPECT_EQ(XString("a|b|c").SetElement(2, ""), "a|b|");
    EXPECT_EQ(XString("a|b").SetElement(-1, "x"), "a|b");
    EXPECT_EQ(XString("a|b").SetElement(2, 2.5), "a|b|2.5");
    EXPECT_EQ(XString("a|b").SetElement(0, true), "1|b");
    EXPECT_EQ(XString("a|b").SetElement(0, 'z'), "z|b");
    EXPECT_EQ(XString("a|b").SetElement(1, -7), "a|-7");
}

TEST_F(XStringTest, TypedReadsAndIndexes)
{
    const XString row("K1|3|2.5|x|0");
    EXPECT_EQ(row.GetInt(1), 3);
    EXPECT_DOUBLE_EQ(row.GetDouble(2), 2.5);
    EXPECT_EQ(row.GetChar(3), 'x');
    EXPECT_FALSE(row.GetBool(4));
    EXPECT_EQ(row.GetChar(9), 0);
    int i = 0;
    row.Get(i, 1);
    EXPECT_EQ(i, 3);
    XString out;
    row.Get(out, 0);
    EXPECT_EQ(out, "K1");
    EXPECT_EQ(row.ElementIndex("x"), 3);
    EXPECT_EQ(row.ElementIndex("X"), -1);
    EXPECT_EQ(row.ElementIndex(2.5), 2);
    EXPECT_EQ(row.ElementIndex(0), 0) << "\"K1\" reads as 0";
    EXPECT_EQ(row.ElementIndex(3), 1);
    EXPECT_EQ(row.ElementIndex('x'), 3);
    EXPECT_EQ(row.ElementIndex(true), 1);
}

TEST_F(XStringTest, RemoveAndInsertRanges)
{
    const XString abc("abc");
    EXPECT_EQ(abc.Remove(1, -1), "abc");
    EXPECT_EQ(abc.Remove(1, 2), "ac");
    EXPECT_EQ(abc.Remove(-1, 2), "abc");
    EXPECT_EQ(abc.Remove(2, 1), "abc");
    EXPECT_EQ(abc.Remove(1, 99), "a");
    EXPECT_EQ(abc.Insert("X", 3), "abcX");
    EXPECT_EQ(abc.Insert("X", 4), "abc");
    EXPECT_EQ(abc.Insert("X", -1), "abc");
    EXPECT_EQ(abc.Replace("XY", 1, 2), "aXYc");
    EXPECT_EQ(abc.FromTo(1, 2), "bc");
    EXPECT_EQ(abc, "abc") << "none of these change the object";
}

TEST_F(XStringTest, ReplaceFormsPutTheReplacementFirst)
{
    const XString s("Relay relay RELAY");
    EXPECT_EQ(s.Replace("K", "relay"), "Relay K RELAY");
    EXPECT_EQ(s.NCReplace("K", "relay"), "K relay RELAY");
    EXPECT_EQ(s.Replace("K", "none"), s);
    EXPECT_EQ(s.Replace("K", ""), s);
    EXPECT_EQ(s.Remove("lay"), "Re relay RELAY");
    EXPECT_EQ(s.NCRemove('r'), "elay relay RELAY");
    EXPECT_EQ(s.RemoveAll('e'), "Rlay rlay RELAY");
    EXPECT_EQ(s.NCRemoveAll("LAY"), "Re re RE");
    XString t("aXbxc");
    EXPECT_EQ(t.NCReplaceAll("--", "x"), 2);
    EXPECT_EQ(t, "a--b--c");
    XString u("aaa");
    EXPECT_EQ(u.ReplaceAll("a", "aa"), 1);
    EXPECT_EQ(u, "aa");
    EXPECT_EQ(u.ReplaceAll("x", ""), 0);
    EXPECT_EQ(u, "aa");
    XString v("ab");
    EXPECT_EQ(v.ReplaceAll("abab", "ab"), 1) << "the replacement is not searched again";
    EXPECT_EQ(v, "abab");
}

TEST_F(XStringTest, ReplaceTextFillsPlaceholders)
{
    EXPECT_EQ(XString("*=*").ReplaceTextA("1"), "1=*");
    EXPECT_EQ(XString("*=*").ReplaceTextA("1|2|3"), "1=2");
    EXPECT_EQ(XString("* \xA7 *").ReplaceTextA("a||b"), "a * *") << "an empty element ends the filling";
    EXPECT_EQ(XString("no stars").ReplaceTextA("a|b"), "no stars");
    EXPECT_EQ(XString("*").ReplaceTextA("x*|y"), "xy") << "a placeholder brought in by an element is filled next";
}

TEST_F(XStringTest, MatchStringWithoutBacktracking)
{
    EXPECT_EQ(XString("abc").MatchString("a*c"), 1);
    EXPECT_EQ(XString("ac").MatchString("a*c"), 1);
    EXPECT_EQ(XString("abd").MatchString("a*c"), 0);
    EXPECT_EQ(XString("abc").MatchString("a^bc"), 1);
    EXPECT_EQ(XString("ac").MatchString("a^bc"), 1);
    EXPECT_EQ(XString("xyz").MatchString("*"), 1);
    EXPECT_EQ(XString("").MatchString("*"), 1);
    EXPECT_EQ(XString("").MatchString(""), 1);
    EXPECT_EQ(XString("a").MatchString(""), 0);
    EXPECT_EQ(XString("abc").MatchString("a?c"), 1);
    EXPECT_EQ(XString("ABC").MatchString("abc"), 0) << "exact in case";
    EXPECT_EQ(XString("ab").MatchString("ab^c"), 1);
    EXPECT_EQ(XString("ab").MatchString("abc"), 0);
    // Without backtracking, the star is spent at the first 'b'.
    EXPECT_EQ(XString("abxbc").MatchString("a*bc"), 0);
}

TEST_F(XStringTest, CountsFindIndexAndCaseFreeSearch)
{
    const XString s("a|b||c");
    EXPECT_EQ(s.Count('|'), 3);
    EXPECT_EQ(XString("").Count('|'), 0);
    EXPECT_EQ(XString("aaaa").Count("aa"), 2);
    EXPECT_EQ(XString("aaaa").Count(""), 0);
    EXPECT_EQ(s.FindIndex('|', 0), 0);
    EXPECT_EQ(s.FindIndex('|', 2), 3);
    EXPECT_EQ(s.FindIndex('|', 4), -1);
    EXPECT_EQ(XString("Relay").NCFind("LAY"), 2);
    EXPECT_EQ(XString("Relay").NCFind('E'), 1);
}

TEST_F(XStringTest, EditingAndConversions)
{
    EXPECT_EQ(XString("abcd").Fill(3), "abcd");
    EXPECT_EQ(XString("ab").Fill(4), "ab  ");
    EXPECT_EQ(XString("a\tb\t").ReplaceTabs(4), "a   b   ");
    EXPECT_EQ(XString("\t").ReplaceTabs(3), "   ");
    EXPECT_EQ(XString("a\tb").ReplaceTabs(0), "a\tb");
    EXPECT_EQ(XString(" x ").Trim(), "x");
    EXPECT_EQ(XString("Ab").Upper(), "AB");
    EXPECT_EQ(XString("Ab").Reverse(), "bA");
    EXPECT_EQ(XString(42), "42");
    EXPECT_EQ(XString(4000000000u), "4000000000");
    EXPECT_EQ(XString(0.5), "0.5");
    EXPECT_EQ(XString('z', 3), "zzz");
    const unsigned short wide[] = {0x0141, 'a', 0};
    EXPECT_EQ(XString(wide), "\xA3" "a");
    EXPECT_EQ(XString("12abc").Int(), 12);
    EXPECT_TRUE(XString("3").Bool());
    EXPECT_EQ(!XString(""), 1);
    XString s("abc");
    EXPECT_EQ(s--, "abc");
    EXPECT_EQ(s, "ab");
    EXPECT_EQ(--s, "a");
    XString empty;
    --empty;
    EXPECT_EQ(empty, "");
}

TEST_F(XStringTest, ElementSortsByTheirKind)
{
    EXPECT_EQ(XString("10|9").ElementSortInt(), "9|10");
    EXPECT_EQ(XString("10|9").ElementSortString(), "10|9");
    EXPECT_EQ(XString("10|9").ElementSort(), "10|9");
    EXPECT_EQ(XString("2.5|-1|1e3").ElementSortDouble(), "-1|2.5|1000");
    EXPECT_EQ(XString("b|\xE4|a").ElementSortChar(), "\xE4|a|b") << "signed character order";
    EXPECT_EQ(XString("b||a").ElementSortChar(), "|a|b");
    EXPECT_EQ(XString("").ElementSortInt(), "0");
}

TEST_F(XStringTest, DoubleFormatStringFitsTheSample)
{
    EXPECT_EQ(XString("12.345").GetDoubleFormatString(), "%6.3lf");
    EXPECT_EQ(XString("1234").GetDoubleFormatString(), "%4.0lf");
    EXPECT_EQ(XString("1.2.3").GetDoubleFormatString(), "%5.3lf");
    EXPECT_EQ(XString("").GetDoubleFormatString(), "%0.0lf");
}

TEST_F(XStringTest, LongListsReadTheSameAcrossBlockBoundaries)
{
    // Elements of varying length, some empty, so that separators fall at
    // every offset of the scanner's blocks; one separator of 0x80 and above.
    for (char sep : {'|', '\xA7'}) {
        std::vector<std::string> pieces;
        std::string text;
        for (int i = 0; i < 700; ++i) {
            pieces.push_back(std::string(static_cast<std::size_t>(i * 7 % 13), static_cast<char>('a' + i % 26)));
            if (i)
                text += sep;
            text += pieces.back();
        }
        const XString list(text.c_str());
        for (int i = 0; i < 702; ++i) {
            SCOPED_TRACE(i);
            const std::string want = i < 700 ? pieces[static_cast<std::size_t>(i)] : "";
            ASSERT_EQ(std::string(list.Element(i, sep).GetString()), want);
        }
        EXPECT_EQ(std::string(list.Elements(698, 701, sep).GetString()),
                  pieces[698] + sep + pieces[699] + sep + sep);
    }
}
