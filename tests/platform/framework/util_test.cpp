// The small helpers every part of the library shares (util_p.h), and the
// public case functions that stand on them, under a locale that folds more
// than ASCII.
#include "platform/framework/util_p.h"

#include "platform/framework/cstring.h"
#include "platform/framework/mbstring.h"

#include "support/printers.h"
#include "support/tempdir.h"
#include "support/testlocale.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cctype>
#include <string>

TEST(AsciiCase, ChangesOnlyTheTwentySixLettersEachWay)
{
    for (int c = 0; c < 256; ++c) {
        SCOPED_TRACE(c);
        const char ch = static_cast<char>(c);
        const bool upper = c >= 'A' && c <= 'Z';
        const bool lower = c >= 'a' && c <= 'z';
        EXPECT_EQ(vx::AsciiLower(ch), upper ? static_cast<char>(c + 32) : ch);
        EXPECT_EQ(vx::AsciiUpper(ch), lower ? static_cast<char>(c - 32) : ch);
        EXPECT_EQ(vx::AsciiIsLetter(ch), upper || lower);
    }
}

TEST(AsciiCase, ComparesLikeStrncmpOnFoldedBytes)
{
    EXPECT_EQ(vx::AsciiCompareNoCase("Plan", "pLAN"), 0);
    EXPECT_LT(vx::AsciiCompareNoCase("plan", "plaN2"), 0);
    EXPECT_GT(vx::AsciiCompareNoCase("plan2", "PLAN"), 0);
    // Bytes compare unsigned, after folding: "_" (0x5F) lies between the
    // cases, and 0xA3 above every ASCII byte.
    EXPECT_LT(vx::AsciiCompareNoCase("_", "A"), 0) << "A folds to a (0x61), above _ (0x5F)";
    EXPECT_GT(vx::AsciiCompareNoCase("\xA3", "z"), 0);
    EXPECT_NE(vx::AsciiCompareNoCase("\xA3", "\xB3"), 0);
    // The count ends the comparison, as does the end of both texts.
    EXPECT_EQ(vx::AsciiCompareNoCase("EXCEL 5.0", "excel", 5), 0);
    EXPECT_NE(vx::AsciiCompareNoCase("EXCEL 5.0", "excel", 6), 0);
    EXPECT_EQ(vx::AsciiCompareNoCase("a\0b", "A\0c", 3), 0);
    EXPECT_EQ(vx::AsciiCompareNoCase(nullptr, ""), 0);
    EXPECT_LT(vx::AsciiCompareNoCase(nullptr, "a"), 0);

    EXPECT_TRUE(vx::AsciiEqualNoCase("MSysVxObjects", "msysvxobjects"));
    EXPECT_FALSE(vx::AsciiEqualNoCase("abc", "abcd"));
    EXPECT_FALSE(vx::AsciiEqualNoCase(std::string("a\0b", 3), std::string("a\0c", 3)));
    EXPECT_TRUE(vx::AsciiStartsWithNoCase("dBASE IV", "DBase"));
    EXPECT_FALSE(vx::AsciiStartsWithNoCase("dB", "dBASE"));
    EXPECT_TRUE(vx::AsciiEndsWithNoCase("PARTS.DBF", ".dbf"));
    EXPECT_FALSE(vx::AsciiEndsWithNoCase("dbf", ".dbf"));
    EXPECT_EQ(vx::AsciiUpperCopy("select \xB3\xF3" "dka"), "SELECT \xB3\xF3" "DKA");
    EXPECT_EQ(vx::AsciiLowerCopy("\xA3\xD3" "DKA"), "\xA3\xD3" "dka");
}

// A Qt host runs under the session's locale; the library's case functions
// must still fold ASCII only, as the C runtime's did in its "C" locale.
TEST(AsciiCase, PublicCaseFunctionsIgnoreASingleByteLocale)
{
    vxtest::SingleByteLocale polish;
    if (!polish.Active())
        GTEST_SKIP() << polish.Why();
    ASSERT_EQ(std::toupper(0xB3), 0xA3) << "the C library folds \"ł\" in this locale";
    CString text("\xB3\xF3" "dka \xA3\xD3" "DKA");
    text.MakeUpper();
    EXPECT_EQ(text, "\xB3\xF3" "DKA \xA3\xD3" "DKA");
    text.MakeLower();
    EXPECT_EQ(text, "\xB3\xF3" "dka \xA3\xD3" "dka");
    EXPECT_NE(CString("\xA3\xF3" "dka").CompareNoCase("\xB3\xD3" "DKA"), 0);
    EXPECT_NE(_stricmp("\xA3", "\xB3"), 0);
    EXPECT_NE(_mbsicmp("\xA3x", "\xB3X"), 0);
    EXPECT_EQ(_mbsicmp("\xA3x", "\xA3X"), 0);
    char buffer[] = "\xB3x";
    EXPECT_STREQ(_strupr(buffer), "\xB3X");
}

TEST(HostPathParts, DirectoryAndNameOfAPath)
{
    const struct {
        const char* path;
        const char* directory;
        const char* name;
    } cases[] = {
        {"/srv/p/plan.0012", "/srv/p", "plan.0012"},
        {"/plan", "/", "plan"},
        {"plan", ".", "plan"},
        {"sub/plan", "sub", "plan"},
        {"/srv/p/", "/srv/p", ""},
        {"", ".", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(vx::DirectoryOf(c.path), c.directory);
        EXPECT_EQ(vx::NameOf(c.path), c.name);
    }
}

TEST(WholeFile, ReadsEveryByteAndFilesThatReportNoSize)
{
    vxtest::TempDir dir;
    std::string big(300000, '\0');
    for (std::size_t i = 0; i < big.size(); ++i)
        big[i] = static_cast<char>(i * 7 + i / 251);
    dir.Write("big.bin", big);
    dir.Write("empty.bin", "");
    std::string text = "stale";
    ASSERT_TRUE(vx::ReadWholeFile(dir.Path("big.bin"), text));
    EXPECT_EQ(text, big);
    ASSERT_TRUE(vx::ReadWholeFile(dir.Path("empty.bin"), text));
    EXPECT_EQ(text, "");

    // /proc reports a size of 0 for files with content.
    ASSERT_TRUE(vx::ReadWholeFile("/proc/self/stat", text));
    EXPECT_EQ(text.rfind(std::to_string(getpid()) + " (", 0), 0u) << text;

    text = "stale";
    EXPECT_FALSE(vx::ReadWholeFile(dir.Path("missing"), text));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(vx::ReadWholeFile(dir.Path(), text)) << "a directory is no file";
}
