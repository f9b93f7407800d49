#include "platform/framework/cstring.h"
#include "platform/shell/resources.h"

#include "support/printers.h"

#include <gtest/gtest.h>

TEST(CString, MidLeftRightClampOutOfRangeArguments)
{
    const CString s("K12.3");
    EXPECT_EQ(s.Mid(1, 2), "12");
    EXPECT_EQ(s.Mid(3), ".3");
    EXPECT_EQ(s.Mid(-2, 3), "K12");
    EXPECT_EQ(s.Mid(2, -1), "");
    EXPECT_EQ(s.Mid(4, 100), "3");
    EXPECT_EQ(s.Mid(5), "");
    EXPECT_EQ(s.Mid(50, 2), "");
    EXPECT_EQ(s.Left(-1), "");
    EXPECT_EQ(s.Left(2), "K1");
    EXPECT_EQ(s.Left(99), "K12.3");
    EXPECT_EQ(s.Right(2), ".3");
    EXPECT_EQ(s.Right(0), "");
    EXPECT_EQ(s.Right(99), "K12.3");
}

TEST(CString, FindHonoursStartAndReturnsMinusOne)
{
    const CString s("a.b.c");
    EXPECT_EQ(s.Find('.'), 1);
    EXPECT_EQ(s.Find('.', 2), 3);
    EXPECT_EQ(s.Find('.', 4), -1);
    EXPECT_EQ(s.Find('.', 5), -1);
    EXPECT_EQ(s.Find('.', -3), 1);
    EXPECT_EQ(s.Find("b.c"), 2);
    EXPECT_EQ(s.Find("b.c", 3), -1);
    EXPECT_EQ(s.Find(""), 0);
    EXPECT_EQ(s.ReverseFind('.'), 3);
    EXPECT_EQ(s.ReverseFind('x'), -1);
    EXPECT_EQ(s.FindOneOf("cb"), 2);
    EXPECT_EQ(s.FindOneOf(""), -1);
    EXPECT_EQ(CString().Find('a'), -1);
}

TEST(CString, ReplaceCountsNonOverlappingOccurrences)
{
    CString s("aaaa");
    EXPECT_EQ(s.Replace("aa", "b"), 2);
    EXPECT_EQ(s, "bb");
    CString t("x-y-z");
    EXPECT_EQ(t.Replace("-", "--"), 2);
    EXPECT_EQ(t, "x--y--z");
    EXPECT_EQ(t.Replace("", "q"), 0);
    EXPECT_EQ(t.Replace('-', '+'), 4);
    EXPECT_EQ(t, "x++y++z");
    EXPECT_EQ(t.Remove('+'), 4);
    EXPECT_EQ(t, "xyz");
}

TEST(CString, InsertAndDeleteClampPositions)
{
    CString s("abc");
    EXPECT_EQ(s.Insert(-5, 'x'), 4);
    EXPECT_EQ(s, "xabc");
    EXPECT_EQ(s.Insert(99, "yz"), 6);
    EXPECT_EQ(s, "xabcyz");
    EXPECT_EQ(s.Delete(4, 99), 4);
    EXPECT_EQ(s, "xabc");
    EXPECT_EQ(s.Delete(-1, 1), 3);
    EXPECT_EQ(s, "abc");
    EXPECT_EQ(s.Delete(7, 1), 3);
    EXPECT_EQ(s.Delete(1, 0), 3);
}

TEST(CString, TrimRemovesWhiteSpaceOrGivenCharacters)
{
    CString s(" \t\r\nabc \n");
    s.TrimLeft();
    EXPECT_EQ(s, "abc \n");
    s.TrimRight();
    EXPECT_EQ(s, "abc");
    CString t("xxaxbxx");
    t.TrimLeft('x');
    t.TrimRight("bx");
    EXPECT_EQ(t, "a");
    CString high("\xA0text\xA0");
    high.Trim();
    EXPECT_EQ(high, "\xA0text\xA0") << "no-break space of the code page is not white space";
}

TEST(CString, CaseOperationsFoldAsciiOnly)
{
    CString s("abz\xE4\xC4");
    s.MakeUpper();
    EXPECT_EQ(s, "ABZ\xE4\xC4");
    s.MakeLower();
    EXPECT_EQ(s, "abz\xE4\xC4");
    EXPECT_EQ(CString("ABC").CompareNoCase("abc"), 0);
    EXPECT_NE(CString("\xC4").CompareNoCase("\xE4"), 0);
}

TEST(CString, ComparesBytesUnsigned)
{
    EXPECT_LT(CString("a"), CString("\xE4"));
    EXPECT_GT(CString("b"), "a");
    EXPECT_TRUE("abc" == CString("abc"));
    EXPECT_LT(CString(""), "a");
    EXPECT_EQ(CString(static_cast<const char*>(nullptr)), "");
}

TEST(CString, FormatMayUseItsOwnText)
{
    CString s("abc");
    s.Format("%s-%s-%d", s.GetString(), s.GetString(), 7);
    EXPECT_EQ(s, "abc-abc-7");
    s.AppendFormat("/%05.1f", 2.25);
    EXPECT_EQ(s, "abc-abc-7/002.2");
    CString big;
    big.Format("%0500d", 1);
    EXPECT_EQ(big.GetLength(), 500);
}

TEST(CString, BufferAccessTakesLengthFromTerminator)
{
    CString s("ab");
    char* p = s.GetBuffer(10);
    EXPECT_EQ(p[0], 'a');
    std::snprintf(p, 11, "%s", "hello");
    s.ReleaseBuffer();
    EXPECT_EQ(s, "hello");
    EXPECT_EQ(s.GetLength(), 5);
    p = s.GetBuffer(0);
    p[2] = 0;
    s.ReleaseBuffer();
    EXPECT_EQ(s, "he");
    char* q = s.GetBufferSetLength(4);
    q[2] = 'y';
    q[3] = 'z';
    s.ReleaseBuffer(4);
    EXPECT_EQ(s, "heyz");
}

TEST(CString, ConstructionFromPartsAndWideText)
{
    EXPECT_EQ(CString("abcdef", 3), "abc");
    EXPECT_EQ(CString("ab", 10), "ab") << "a short text is not read past its end";
    EXPECT_EQ(CString("ab", -1), "");
    EXPECT_EQ(CString('x', 3), "xxx");
    EXPECT_EQ(CString('x', -2), "");
    EXPECT_EQ(CString(L"\u0141\u00F3d\u017A"), "\xA3\xF3" "d\x9F") << "Polish letters in Windows-1250";
    EXPECT_EQ(CString("a").SpanIncluding("ab"), "a");
    EXPECT_EQ(CString("12#3").SpanIncluding("0123456789"), "12");
    EXPECT_EQ(CString("12#3").SpanExcluding("#"), "12");
}

TEST(CString, LoadStringReadsTheResourceTable)
{
    CString s;
    EXPECT_TRUE(s.LoadString(6706));
    EXPECT_EQ(s, "VEXAL 5.5");
    EXPECT_FALSE(s.LoadString(6719));
    EXPECT_EQ(s, "");
    vx::SetString(90001, "host text");
    EXPECT_TRUE(s.LoadString(90001));
    EXPECT_EQ(s, "host text");
    vx::ResetStrings();
    EXPECT_FALSE(s.LoadString(90001));
}

TEST(CString, IndexingOutOfRangeReadsZero)
{
    CString s("ab");
    EXPECT_EQ(s[1], 'b');
    EXPECT_EQ(s[std::size_t{2}], 0);
    EXPECT_EQ(s.GetAt(-1), 0);
    s.SetAt(5, 'x');
    s.SetAt(0, 'x');
    EXPECT_EQ(s, "xb");
}

TEST(CString, AssignAndAppendFromItsOwnText)
{
    CString s("a text long enough to live on the heap, not in the small buffer");
    s += s.GetString() + 2;
    EXPECT_EQ(s.Left(6), "a text");
    EXPECT_EQ(s.GetLength(), 63 + 61);
    s = s.GetString() + 2;
    EXPECT_EQ(s.Left(4), "text");
    for (int i = 0; i < 6; ++i)
        s += s.GetString(); // each append doubles, forcing reallocations
    EXPECT_EQ(s.GetLength(), 122 * 64);
    EXPECT_EQ(s.Right(5), "uffer");
}
