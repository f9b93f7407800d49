#include "platform/framework/mbstring.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

struct Parts {
    std::string drive, dir, fname, ext;
};

Parts Split(const char* path)
{
    char drive[_MAX_DRIVE], dir[_MAX_DIR], fname[_MAX_FNAME], ext[_MAX_EXT];
    _splitpath(path, drive, dir, fname, ext);
    return Parts{drive, dir, fname, ext};
}

} // namespace

TEST(SplitPath, FollowsTheWindowsRules)
{
    const struct {
        const char* path;
        Parts want;
    } cases[] = {
        {"C:\\Projekte\\plan.0012", {"C:", "\\Projekte\\", "plan", ".0012"}},
        {"C:plan", {"C:", "", "plan", ""}},
        {"a/b\\c.tar.gz", {"", "a/b\\", "c.tar", ".gz"}},
        {"\\dir.x\\name", {"", "\\dir.x\\", "name", ""}},
        {".profile", {"", "", "", ".profile"}},
        {"C:", {"C:", "", "", ""}},
        {":", {"", "", ":", ""}},
        {"", {"", "", "", ""}},
        {"\\\\", {"", "\\\\", "", ""}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const Parts got = Split(c.path);
        EXPECT_EQ(got.drive, c.want.drive);
        EXPECT_EQ(got.dir, c.want.dir);
        EXPECT_EQ(got.fname, c.want.fname);
        EXPECT_EQ(got.ext, c.want.ext);
    }
}

TEST(SplitPath, CutsOverlongPartsToTheirBuffers)
{
    const std::string longDir = "C:\\" + std::string(800, 'd') + "\\" + std::string(400, 'n') + "." +
                                std::string(300, 'e');
    const Parts got = Split(longDir.c_str());
    EXPECT_EQ(got.dir.size(), std::size_t{_MAX_DIR - 1});
    EXPECT_EQ(got.fname.size(), std::size_t{_MAX_FNAME - 1});
    EXPECT_EQ(got.ext.size(), std::size_t{_MAX_EXT - 1});
    _splitpath("x.y", nullptr, nullptr, nullptr, nullptr); // all outputs may be null
}

TEST(MakePath, JoinsWithSeparatorAndDot)
{
    char path[_MAX_PATH];
    _makepath(path, "Cx", "\\P", "plan", "0012");
    EXPECT_STREQ(path, "C:\\P\\plan.0012");
    _makepath(path, nullptr, "dir/", "n", ".e");
    EXPECT_STREQ(path, "dir/n.e");
    _makepath(path, "", "", "", "");
    EXPECT_STREQ(path, "");
    const std::string longName(600, 'n');
    _makepath(path, "C", "\\d", longName.c_str(), "ext");
    EXPECT_EQ(std::string(path).size(), std::size_t{_MAX_PATH - 1});
}

TEST(FullPath, ResolvesDotsInPathTexts)
{
    char out[_MAX_PATH];
    ASSERT_NE(_fullpath(out, "C:\\a\\b\\..\\.\\c", sizeof out), nullptr);
    EXPECT_STREQ(out, "C:\\a\\c");
    ASSERT_NE(_fullpath(out, "C:/x/../../y/", sizeof out), nullptr);
    EXPECT_STREQ(out, "C:\\y\\");
    ASSERT_NE(_fullpath(out, "/tmp/../etc//x", sizeof out), nullptr);
    EXPECT_STREQ(out, "/etc/x");
    EXPECT_EQ(_fullpath(out, "C:\\long\\name", 5), nullptr);
    char* allocated = _fullpath(nullptr, "rel/file", 0);
    ASSERT_NE(allocated, nullptr);
    EXPECT_EQ(allocated[0], '/');
    EXPECT_NE(std::string(allocated).find("/rel/file"), std::string::npos);
    std::free(allocated);
}

TEST(ByteStrings, CaseInsensitiveCompareFoldsAsciiOnly)
{
    EXPECT_EQ(_mbsicmp("Plan.0012", "PLAN.0012"), 0);
    EXPECT_LT(_mbsicmp("a", "B"), 0);
    EXPECT_NE(_mbsicmp("\xE4", "\xC4"), 0);
    EXPECT_GT(_mbscmp("\xE4", "z"), 0) << "bytes compare unsigned";
    EXPECT_EQ(_mbscmp(nullptr, ""), 0);
    EXPECT_EQ(_strnicmp("abcX", "ABCy", 3), 0);
    EXPECT_NE(_strnicmp("abcX", "ABCy", 4), 0);
    EXPECT_STREQ(_mbspbrk("K1-X2", "-:"), "-X2");
}

TEST(ByteStrings, ItoaPrintsSignOnlyInDecimal)
{
    char buffer[40];
    EXPECT_STREQ(_itoa(-42, buffer, 10), "-42");
    EXPECT_STREQ(_itoa(-1, buffer, 16), "ffffffff");
    EXPECT_STREQ(_itoa(255, buffer, 2), "11111111");
    EXPECT_STREQ(_itoa(-2147483647 - 1, buffer, 10), "-2147483648");
    EXPECT_STREQ(_itoa(5, buffer, 1), "");
}
