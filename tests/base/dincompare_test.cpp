#include "base/dincompare.h"
#include "platform/framework/mbstring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// The comparison exactly as the algorithm reads: recursion on remainders,
// temporary strings at each step. The library's version must give the same
// value for every input; these checks keep the two together.
namespace reference {

bool Digit(char c)
{
    return c >= '0' && c <= '9';
}

int Byte(char c, bool cs)
{
    if (!cs && c >= 'A' && c <= 'Z')
        c = static_cast<char>(c + 32);
    return static_cast<signed char>(c);
}

// _mbsicmp / _mbscmp over signed bytes.
int EqualCase(const CString& a, const CString& b, bool cs)
{
    const char* x = a.GetString();
    const char* y = b.GetString();
    for (;; ++x, ++y) {
        const int d = Byte(*x, cs) - Byte(*y, cs);
        if (d != 0 || !*x)
            return d;
    }
}

std::int32_t Atoi(const CString& s)
{
    return vx::Atoi(s.GetString());
}

// |v|, and a difference of magnitudes kept to 32 bits with its sign: the
// magnitude of INT32_MIN, 2^31, must not wrap into a negative result.
std::int64_t Abs(std::int32_t v)
{
    return v < 0 ? -std::int64_t{v} : v;
}

std::int32_t Clamp(std::int64_t d)
{
    return static_cast<std::int32_t>(std::max<std::int64_t>(INT32_MIN, std::min<std::int64_t>(INT32_MAX, d)));
}

bool HoldsDigit(const CString& s)
{
    for (int i = 0; i < s.GetLength(); ++i) {
        if (Digit(s[i]))
            return true;
    }
    return false;
}

int Din(const CString& a, int ia, const CString& b, int ib, bool cs)
{
    if (ia == 0 && ib == 0 && EqualCase(a, b, cs) == 0)
        return 0;
    if (ia >= a.GetLength())
        return ib >= b.GetLength() ? 0 : -1;
    if (ib >= b.GetLength())
        return 1;
    const CString sa = a.Mid(ia);
    const CString sb = b.Mid(ib);

    int i = 0;
    bool differ = false;
    if (!cs) {
        int c = -1;
        for (; i < sa.GetLength() && i < sb.GetLength(); ++i) {
            if (!Digit(sa[i]) && !Digit(sb[i]))
                c = i;
            if (sa[i] != sb[i]) {
                differ = true;
                break;
            }
        }
        if (differ && i > 0 && c >= 0) {
            if (i > c)
                i = c + 1;
            return Din(a, ia + i, b, ib + i, cs);
        }
    } else {
        for (; i < sa.GetLength() && i < sb.GetLength(); ++i) {
            if (Digit(sa[i]) || Digit(sb[i]))
                break;
            if (sa[i] != sb[i]) {
                differ = true;
                break;
            }
        }
        if (differ && i > 0)
            return Din(a, ia + i, b, ib + i, cs);
    }

    const int r = EqualCase(sa, sb, cs);
    if (r == 0)
        return 0;
    if (!HoldsDigit(sa) && !HoldsDigit(sb))
        return r;
    const std::int64_t na = Abs(Atoi(sa));
    const std::int64_t nb = Abs(Atoi(sb));
    if (na != nb) {
        if (na == 0) {
            if (Digit(sa[0]))
                return Clamp(-nb);
            return static_cast<signed char>(sa[0]) < 'A' ? -1 : 1;
        }
        if (nb == 0) {
            if (Digit(sb[0]))
                return Clamp(na);
            return static_cast<signed char>(sb[0]) < 'A' ? 1 : -1;
        }
        return Clamp(na - nb);
    }
    // The 32-bit value printed: 2^31 as "-2147483648".
    char printed[16];
    std::snprintf(printed, sizeof printed, "%d", static_cast<std::int32_t>(static_cast<std::uint32_t>(na)));
    const int n = static_cast<int>(std::strlen(printed));
    const int rn = EqualCase(sa.Left(n), sb.Left(n), cs);
    if (rn != 0)
        return rn;
    return Din(a, ia + n, b, ib + n, cs);
}

int Compare(const CString& a, int ia, const CString& b, int ib, bool cs)
{
    // The text ends at its first zero byte; negative positions count as 0.
    return Din(CString(a.GetString()), ia < 0 ? 0 : ia, CString(b.GetString()), ib < 0 ? 0 : ib, cs);
}

} // namespace reference

int Din(const char* a, const char* b)
{
    CString x(a), y(b);
    return CompareDINText(&x, &y);
}

int DinCS(const char* a, const char* b)
{
    CString x(a), y(b);
    return CompareDINTextCS(&x, &y);
}

std::string RandomText(std::mt19937& rng, int maxLength)
{
    static const char alphabet[] = "0000111223456789aAbBkKxXzZ@--..:: +_[`\xc4\xe4\xdf\x80";
    std::uniform_int_distribution<int> length(0, maxLength);
    std::uniform_int_distribution<int> pick(0, sizeof alphabet - 2);
    std::string s(static_cast<std::size_t>(length(rng)), ' ');
    for (char& c : s)
        c = alphabet[pick(rng)];
    return s;
}

// A partner text that shares a prefix with `s`, so that the deep paths of
// the comparison are taken often.
std::string Mutate(std::mt19937& rng, const std::string& s)
{
    std::string t = s;
    std::uniform_int_distribution<int> what(0, 5);
    const int edits = 1 + what(rng) % 3;
    for (int e = 0; e < edits; ++e) {
        const std::string piece = RandomText(rng, 3);
        const std::size_t at = t.empty() ? 0 : std::uniform_int_distribution<std::size_t>(0, t.size())(rng);
        switch (what(rng)) {
        case 0:
            t.insert(at, piece);
            break;
        case 1:
            t.erase(at, 1);
            break;
        case 2:
            if (at < t.size())
                t[at] = static_cast<char>(t[at] >= 'a' && t[at] <= 'z' ? t[at] - 32 : t[at]);
            break;
        case 3:
            t.insert(at, "0");
            break;
        default:
            t.replace(at, 1, piece);
            break;
        }
    }
    return t;
}

void ExpectSameAsReference(const std::string& a, const std::string& b)
{
    CString x(a), y(b);
    SCOPED_TRACE("a=\"" + a + "\" b=\"" + b + "\"");
    ASSERT_EQ(CompareDINText(&x, &y), reference::Compare(x, 0, y, 0, false));
    ASSERT_EQ(CompareDINTextCS(&x, &y), reference::Compare(x, 0, y, 0, true));
    ASSERT_EQ(CompareDINTextBezug(&x, &y), CompareDINText(&x, &y));
    ASSERT_EQ(CompareDINTextBezugCS(&x, &y), CompareDINTextCS(&x, &y));
}

} // namespace

TEST(CompareDINText, DigitsCompareByValue)
{
    EXPECT_LT(Din("K2", "K10"), 0);
    EXPECT_LT(Din("K10", "K10a"), 0);
    EXPECT_GT(Din("10", "9"), 0);
    EXPECT_EQ(Din("10", "9"), 1);
    EXPECT_LT(Din("X3:9", "X3:14"), 0);
    EXPECT_LT(Din("M2.1", "M2.10"), 0);
    // A point is not understood: 1.5 is 1, ".", 5, so 5 meets 10 here.
    EXPECT_LT(Din("1.5", "1.10"), 0);
}

TEST(CompareDINText, FoldsCaseOnlyWhenAsked)
{
    EXPECT_EQ(Din("a", "A"), 0);
    EXPECT_EQ(Din("Motor", "MOTOR"), 0);
    EXPECT_GT(DinCS("a", "A"), 0);
    EXPECT_LT(Din("a1", "A2"), 0);
    EXPECT_LT(DinCS("A1", "a1"), 0);
}

TEST(CompareDINText, NumbersSortBetweenPunctuationAndLetters)
{
    EXPECT_LT(Din("10", "A"), 0);
    EXPECT_GT(Din("10", "-x"), 0);
    EXPECT_LT(Din("-x", "10"), 0);
    EXPECT_GT(Din("K", "5"), 0);
    // A byte above 0x7F is below every ASCII character.
    EXPECT_LT(Din("\xc4pfel", "5"), 0);
    EXPECT_LT(Din("\xc4", "A"), 0);
    EXPECT_LT(DinCS("\xe4", " "), 0);
    // The sign is lost to abs: "-5" and "5" are told apart by "-" < "5".
    EXPECT_LT(Din("-5", "5"), 0);
}

TEST(CompareDINText, EmptyTextsAndEnds)
{
    EXPECT_EQ(Din("", ""), 0);
    EXPECT_EQ(Din("", "x"), -1);
    EXPECT_EQ(Din("x", ""), 1);
    EXPECT_EQ(DinCS("", "x"), -1);
    EXPECT_EQ(DinCS("x", ""), 1);
    EXPECT_EQ(CompareDINText(nullptr, nullptr), 0);
    CString x("x");
    EXPECT_EQ(CompareDINText(nullptr, &x), -1);
}

TEST(CompareDINText, LeadingZerosSortFirst)
{
    EXPECT_LT(Din("007", "7"), 0);
    EXPECT_GT(Din("07", "007"), 0);
    EXPECT_LT(Din("K007", "K7"), 0);
    EXPECT_LT(Din("0", "00"), 0);
    EXPECT_GT(Din("7", "007"), 0);
}

TEST(CompareDINText, StartsFromTheGivenPositions)
{
    CString a("=K12"), b("K3");
    EXPECT_GT(CompareDINText(&a, 1, &b, 0), 0);
    EXPECT_LT(CompareDINText(&a, 0, &b, 0), 0);
    // Positions past the end are the end; negative positions count as 0.
    EXPECT_EQ(CompareDINText(&a, 10, &b, 5), 0);
    EXPECT_EQ(CompareDINText(&a, 10, &b, 0), -1);
    EXPECT_EQ(CompareDINText(&a, 0, &b, 99), 1);
    EXPECT_EQ(CompareDINText(&a, -3, &b, 0), CompareDINText(&a, 0, &b, 0));
    EXPECT_EQ(CompareDINTextCS(&a, 1, &b, 0), CompareDINText(&a, 1, &b, 0));
}

TEST(CompareDINText, MatchesTheReferenceOnRandomTexts)
{
    std::mt19937 rng(20240611);
    for (int round = 0; round < 60000; ++round) {
        const std::string a = RandomText(rng, 12);
        const std::string b = (round % 3 == 0) ? RandomText(rng, 12) : Mutate(rng, a);
        ExpectSameAsReference(a, b);
        ExpectSameAsReference(b, a);
        if (HasFatalFailure())
            return;
    }
}

TEST(CompareDINText, MatchesTheReferenceFromRandomPositions)
{
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> position(-2, 14);
    for (int round = 0; round < 20000; ++round) {
        const std::string a = RandomText(rng, 12);
        const std::string b = Mutate(rng, a);
        CString x(a), y(b);
        const int ia = position(rng);
        const int ib = round % 2 ? ia : position(rng);
        SCOPED_TRACE("a=\"" + a + "\" b=\"" + b + "\" ia=" + std::to_string(ia) + " ib=" + std::to_string(ib));
        ASSERT_EQ(CompareDINText(&x, ia, &y, ib), reference::Compare(x, ia, y, ib, false));
        ASSERT_EQ(CompareDINTextCS(&x, ia, &y, ib), reference::Compare(x, ia, y, ib, true));
    }
}

TEST(CompareDINText, MatchesTheReferenceOnEdgeCases)
{
    const std::vector<std::string> texts = {
        "", "0", "00", "000", "7", "07", "007", "-5", "5", "+5", " 5", " 12x", "-", "--1", "a", "A", "K2", "K10",
        "K10a", "k10A", "-K12", "-k12", "X3:14", "X3:9", "M2.1", "M2.10", "1.5", "1.10", "2147483647",
        "2147483648", "4294967296", "4294967297", "99999999999", "-2147483648", "00000000002147483648",
        "\xc4", "\xc4" "1", "a\xe4" "1", "K1\xdf", "12K1", "3Q1", "3K1", "A10", "A9", "1a1a", "1A1A", "1a1b",
        "x 1", "x\t1", "x1 ", "x01", "x001y", "x1y", "a0b", "a00b", "[1", "`1", "_1", "Z1", "z1",
    };
    for (const std::string& a : texts) {
        for (const std::string& b : texts)
            ExpectSameAsReference(a, b);
    }
}

TEST(CompareDINText, TheLargestMagnitudeKeepsItsSign)
{
    // A number below INT32_MIN reads as INT32_MIN, whose magnitude 2^31 once
    // wrapped to a negative difference: both orders of a pair sorted first.
    const std::pair<const char*, const char*> larger[] = {
        {"-99999999999", "0"}, {"-2147483648", "00"}, {"K-2147483648", "K0"}, {"-2147483648", "5"},
        {"-1122222222207", "00\tX22K"},
    };
    for (const auto& [big, small] : larger) {
        SCOPED_TRACE(std::string(big) + " against " + small);
        EXPECT_GT(Din(big, small), 0);
        EXPECT_LT(Din(small, big), 0);
        EXPECT_GT(DinCS(big, small), 0);
        EXPECT_LT(DinCS(small, big), 0);
    }
}

TEST(CompareDINText, CopesWithLongTextsWithoutDeepRecursion)
{
    // 100,000 characters of alternating digits and letters: the recursive
    // definition would restart once per character.
    std::string a;
    for (int i = 0; i < 50000; ++i) {
        a += static_cast<char>('0' + i % 10);
        a += static_cast<char>('a' + i % 26);
    }
    std::string upper = a;
    for (char& c : upper)
        c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
    std::string later = a;
    later.back() = 'z';
    std::string digitLater = a;
    digitLater[digitLater.size() - 2] = '0'; // was '9'

    CString x(a), u(upper), l(later), dl(digitLater);
    EXPECT_EQ(CompareDINText(&x, &x), 0);
    EXPECT_EQ(CompareDINText(&x, &u), 0);
    EXPECT_GT(CompareDINTextCS(&x, &u), 0);
    EXPECT_EQ(CompareDINText(&x, 1, &u, 1), 0);
    EXPECT_LT(CompareDINText(&x, &l), 0);
    EXPECT_LT(CompareDINTextCS(&x, &l), 0);
    EXPECT_GT(CompareDINText(&x, &dl), 0);
    EXPECT_LT(CompareDINTextCS(&dl, &x), 0);
    // Case differences all along and a difference at the very end.
    CString ul(upper.substr(0, upper.size() - 1) + "z");
    EXPECT_LT(CompareDINText(&x, &ul), 0);
}

TEST(CompareDINText, MatchesTheReferenceOnLongMixedTexts)
{
    std::mt19937 rng(99);
    for (int round = 0; round < 200; ++round) {
        std::string a;
        while (a.size() < 2000)
            a += RandomText(rng, 4) + std::to_string(rng() % 1000);
        std::string b = a;
        for (int e = 0; e < 3; ++e) {
            const std::size_t at = rng() % b.size();
            b[at] = (rng() % 2) ? static_cast<char>('0' + rng() % 10) : static_cast<char>(b[at] ^ 0x20);
        }
        ExpectSameAsReference(a, b);
        ExpectSameAsReference(b, a);
        if (HasFatalFailure())
            return;
    }
}

TEST(BezugComp, ComparesLeadingNumbersWhereTheTextsGoOnAlike)
{
    EXPECT_GT(BezugComp("12K1", "3K1", 0, 0), 0);
    EXPECT_LT(BezugComp("12K1", "3Q1", 0, 0), 0);
    EXPECT_GT(BezugComp("-12K", "-3K", '-', 0), 0);
    EXPECT_LT(BezugComp("-3K", "-12K", '-', 0), 0);
    // Without the prefix on both, "-" is an ordinary character.
    EXPECT_LT(BezugComp("-12K", "3K", '-', 0), 0);
    EXPECT_GT(BezugComp("A10", "A9", 0, 0), 0);
    EXPECT_LT(BezugComp("A9", "A10", 0, 0), 0);
    EXPECT_EQ(BezugComp("K12", "K12", 0, 0), 0);
    EXPECT_EQ(BezugComp("12", "12", 0, 0), 0);
    EXPECT_EQ(BezugComp("", "", 0, 0), 0);
    EXPECT_LT(BezugComp("", "K", 0, 0), 0);
    EXPECT_GT(BezugComp("K1", "K", 0, 0), 0);
    EXPECT_LT(BezugComp("K12", "K13", 0, 0), 0);
    EXPECT_LT(BezugComp("K12", "k12", 0, 0), 0);
    // Equal numbers with the same length compare by their digits.
    EXPECT_LT(BezugComp("5K1", "5K2", 0, 0), 0);
    EXPECT_LT(BezugComp("0012", "0013", 0, 0), 0);
}

TEST(BezugComp, ShortModeReadsOnlyTheLeadingRun)
{
    EXPECT_EQ(BezugComp("12", "12", 0, 1), 0);
    EXPECT_LT(BezugComp("9", "12", 0, 1), 0);
    EXPECT_GT(BezugComp("13", "12", 0, 1), 0);
    // Later digits are plain text: "K9" > "K10" by strcmp.
    EXPECT_GT(BezugComp("12K9", "12K10", 0, 1), 0);
    EXPECT_LT(BezugComp("12K9", "12K10", 0, 0), 0);
    // No leading number on one side: the whole texts by strcmp.
    EXPECT_LT(BezugComp("12", "K", 0, 1), 0);
    EXPECT_EQ(BezugComp("12a", "12a", 0, 1), 0);
}

TEST(BezugComp, BytesAboveAsciiSortBelowTheTerminator)
{
    EXPECT_GT(BezugComp("K", "K\xe4", 0, 0), 0);
    EXPECT_LT(BezugComp("K\xe4", "Ka", 0, 0), 0);
    EXPECT_GT(BezugComp("12a", "12\xe4", 0, 1), 0);
    EXPECT_EQ(BezugComp("12a", "12\xe4", 0, 1), 'a' - static_cast<signed char>('\xe4'));
}

TEST(BezugComp, ReadsOnlyTheFirst32767Bytes)
{
    std::string a(40000, 'x'), b(40000, 'x');
    b[35000] = 'y';
    EXPECT_EQ(BezugComp(a.c_str(), b.c_str(), 0, 0), 0);
    b[30000] = 'y';
    EXPECT_LT(BezugComp(a.c_str(), b.c_str(), 0, 0), 0);
    // A digit run that wraps the 16-bit position ends there; no byte
    // outside the text is read.
    const std::string digits(40000, '7');
    EXPECT_LT(BezugComp(digits.c_str(), "5", 0, 0), 0);
    EXPECT_LT(BezugComp(digits.c_str(), "5", 0, 1), 0);
    EXPECT_EQ(BezugComp(digits.c_str(), digits.c_str(), 0, 1), 0);
}

TEST(IsAllNumber, ChecksTheRangeFromStart)
{
    CString s("K123"), empty, real("1.2.3"), point(".5"), mixed("12a");
    EXPECT_EQ(IsAllNumber(&s, 0), 0);
    EXPECT_EQ(IsAllNumber(&s, 1), 1);
    EXPECT_EQ(IsAllNumber(&s, 4), 1);
    EXPECT_EQ(IsAllNumber(&s, 10), 1);
    EXPECT_EQ(IsAllNumber(&empty, 0), 1);
    EXPECT_EQ(IsAllNumber(&real, 0), 0);
    EXPECT_EQ(IsAllRealNumber(&real, 0), 1);
    EXPECT_EQ(IsAllRealNumber(&point, 0), 0);
    EXPECT_EQ(IsAllRealNumber(&point, 1), 1);
    EXPECT_EQ(IsAllRealNumber(&empty, 0), 1);
    EXPECT_EQ(IsAllRealNumber(&mixed, 0), 0);
    EXPECT_EQ(IsAllNotNumber(&s, 0), 0);
    EXPECT_EQ(IsAllNotNumber(&mixed, 2), 1);
    EXPECT_EQ(IsAllNotNumber(&empty, 0), 1);
}

TEST(IsLetter, TakesAsciiAndGermanLetters)
{
    EXPECT_EQ(IsLetter('a'), 1);
    EXPECT_EQ(IsLetter('Z'), 1);
    EXPECT_EQ(IsLetter('1'), 0);
    EXPECT_EQ(IsLetter('-'), 0);
    EXPECT_EQ(IsLetter(0), 0);
    for (char c : {'\xc4', '\xe4', '\xd6', '\xf6', '\xdc', '\xfc', '\xdf'})
        EXPECT_EQ(IsLetter(c), 1) << static_cast<int>(static_cast<unsigned char>(c));
    // Other letters of the code page are not in the list.
    EXPECT_EQ(IsLetter('\xb9'), 0);
    EXPECT_EQ(IsLetter('\xe9'), 0);
}
