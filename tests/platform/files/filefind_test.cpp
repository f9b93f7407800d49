#include "platform/files/cfile.h"
#include "platform/files/fileapi.h"
#include "platform/files/filefind.h"
#include "platform/files/hostpath.h"

#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

// Every match of `pattern` by CFileFind, as "name" or "name/" for a
// directory.
std::set<std::string> Find(const std::string& pattern)
{
    std::set<std::string> names;
    CFileFind finder;
    BOOL more = finder.FindFile(pattern.c_str());
    while (more) {
        more = finder.FindNextFile();
        if (finder.IsDots())
            continue;
        names.insert(std::string(finder.GetFileName()) + (finder.IsDirectory() ? "/" : ""));
    }
    return names;
}

class FileFindTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.Valid());
        vx::SetDriveRoot('P', dir.Path());
    }
    void TearDown() override { vx::SetDriveRoot('P', ""); }
    vxtest::TempDir dir;
};

} // namespace

TEST_F(FileFindTest, FindsByWildcardThroughADrive)
{
    dir.MakeDir("Projekt");
    dir.Write("Projekt/plan.0012", "12");
    dir.Write("Projekt/plan.0012a");
    dir.Write("Projekt/PLAN.0013");
    dir.Write("Projekt/plan.dxf");
    dir.Write("Projekt/plan");
    dir.Write("Projekt/haus.0001");
    dir.MakeDir("Projekt/plan.0014");
    EXPECT_EQ(Find("P:\\Projekt\\plan.*"),
              (std::set<std::string>{"plan.0012", "plan.0012a", "PLAN.0013", "plan.dxf", "plan", "plan.0014/"}));
    EXPECT_EQ(Find("P:\\Projekt\\*.0*"),
              (std::set<std::string>{"plan.0012", "plan.0012a", "PLAN.0013", "haus.0001", "plan.0014/"}));
    EXPECT_EQ(Find(dir.Path("Projekt") + "/plan.0012*"), (std::set<std::string>{"plan.0012", "plan.0012a"}));
    EXPECT_EQ(Find("P:\\projekt\\HAUS.*"), (std::set<std::string>{"haus.0001"})) << "directories resolve by case too";
    EXPECT_TRUE(Find("P:\\Projekt\\nothing.*").empty());
    EXPECT_TRUE(Find("P:\\Missing\\plan.*").empty());
    EXPECT_TRUE(Find("P:\\Projekt\\").empty());
}

TEST_F(FileFindTest, ReportsPathsTitlesSizesAndTimes)
{
    dir.Write("plan.0012", "twelve");
    dir.SetWriteTime("plan.0012", 1721039445);
    CFileFind finder;
    ASSERT_TRUE(finder.FindFile("P:\\plan.0*"));
    EXPECT_FALSE(finder.FindNextFile()) << "one match: nothing follows it";
    EXPECT_EQ(finder.GetRoot(), CString("P:\\"));
    EXPECT_EQ(finder.GetFilePath(), CString("P:\\plan.0012"));
    EXPECT_EQ(finder.GetFileTitle(), CString("plan"));
    EXPECT_EQ(finder.GetLength(), 6u);
    FILETIME ft;
    ASSERT_TRUE(finder.GetLastWriteTime(&ft));
    EXPECT_EQ(vx::UnixFromFileTime(ft), 1721039445);
    CTime t;
    ASSERT_TRUE(finder.GetLastWriteTime(t));
    EXPECT_EQ(t.GetTime(), 1721039445);
    EXPECT_FALSE(finder.IsDirectory());
    EXPECT_FALSE(finder.IsHidden());
    EXPECT_TRUE(finder.MatchesMask(FILE_ATTRIBUTE_NORMAL));
    finder.Close();
    EXPECT_EQ(finder.GetFileName(), CString());
}

TEST_F(FileFindTest, NameWithoutWildcardsFindsThatEntryInAnyCase)
{
    dir.Write("Plan.0012");
    dir.MakeDir("sub");
    WIN32_FIND_DATAA data;
    HANDLE h = FindFirstFileA("P:\\PLAN.0012", &data);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    EXPECT_STREQ(data.cFileName, "Plan.0012") << "the name as it is on disk";
    EXPECT_FALSE(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_FALSE(FindNextFileA(h, &data));
    EXPECT_TRUE(FindClose(h));
    h = FindFirstFileA("P:\\SUB", &data);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    FindClose(h);
    EXPECT_EQ(FindFirstFileA("P:\\absent", &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(FindFirstFileA(nullptr, &data), INVALID_HANDLE_VALUE);
    EXPECT_FALSE(FindClose(INVALID_HANDLE_VALUE));
}

TEST_F(FileFindTest, FindFirstFileWalksAllMatchesAndCutsLongNames)
{
    const std::string longName(250, 'n');
    dir.Write(longName + ".0001");
    dir.Write("a.0002");
    WIN32_FIND_DATAA data;
    HANDLE h = FindFirstFileA((dir.Path() + "/*.0*").c_str(), &data);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    std::set<std::string> names{data.cFileName};
    while (FindNextFileA(h, &data))
        names.insert(data.cFileName);
    FindClose(h);
    EXPECT_EQ(names, (std::set<std::string>{longName + ".0001", "a.0002"}));
}

TEST_F(FileFindTest, DiskPathResolvesCaseAndUnrepresentableNames)
{
    dir.MakeDir("Projekte/Anlage");
    dir.Write("Projekte/Anlage/Plan.0012");
    // A name in a script the code page lacks reads back with "?".
    dir.Write("Projekte/\xE8\xAE\xA1.0001");
    EXPECT_EQ(vx::DiskPath("P:\\PROJEKTE\\anlage\\plan.0012"), dir.Path("Projekte/Anlage/Plan.0012"));
    EXPECT_EQ(vx::DiskPath("P:\\projekte\\anlage\\neu.0001"), dir.Path("Projekte/Anlage/neu.0001"))
        << "a new name keeps its spelling in a resolved directory";
    EXPECT_EQ(vx::DiskPath("P:\\projekte\\?.0001"), dir.Path("Projekte/\xE8\xAE\xA1.0001"));
    EXPECT_EQ(Find("P:\\Projekte\\*.0001"), (std::set<std::string>{"?.0001"}));
    EXPECT_EQ(vx::DiskPath("P:\\Projekte"), dir.Path("Projekte")) << "an exact path costs no lookup";
    EXPECT_EQ(vx::DiskPath(""), "");

    // The file functions reach files through it.
    EXPECT_NE(GetFileAttributesA("P:\\projekte\\ANLAGE\\PLAN.0012"), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(CopyFileA("P:\\projekte\\anlage\\plan.0012", "P:\\PROJEKTE\\copy.0012", TRUE));
    EXPECT_TRUE(dir.Exists("Projekte/copy.0012"));
    EXPECT_FALSE(CopyFileA("P:\\projekte\\copy.0012", "P:\\projekte\\anlage\\PLAN.0012", TRUE))
        << "the target exists under another case";
    EXPECT_TRUE(MoveFileA("P:\\projekte\\copy.0012", "P:\\projekte\\COPY.0012")) << "a change of case";
    EXPECT_TRUE(dir.Exists("Projekte/COPY.0012"));
    EXPECT_TRUE(DeleteFileA("P:\\projekte\\copy.0012"));
    EXPECT_FALSE(dir.Exists("Projekte/COPY.0012"));
}

TEST_F(FileFindTest, OddPathTextsNeitherCrashNorMatchByAccident)
{
    dir.Write("x");
    const std::string texts[] = {std::string(800, 'a'), std::string(800, '\\'), "\\\\", "\\", ":", "::",
                                 std::string(300, '\x80') + "*", "P:", "P:*", std::string("\xFF\xFE*")};
    for (const std::string& t : texts) {
        SCOPED_TRACE(t.substr(0, 20));
        WIN32_FIND_DATAA data;
        HANDLE h = FindFirstFileA(t.c_str(), &data);
        if (h != INVALID_HANDLE_VALUE) {
            EXPECT_LT(std::char_traits<char>::length(data.cFileName), static_cast<std::size_t>(MAX_PATH));
            FindClose(h);
        }
        CFileStatus status;
        CFile::GetStatus(t.c_str(), status);
        EXPECT_LT(std::char_traits<char>::length(status.m_szFullName), static_cast<std::size_t>(MAX_PATH));
        vx::DiskPath(t);
    }
    EXPECT_EQ(Find("P:*"), (std::set<std::string>{"x"})) << "a drive alone is its root";
}

TEST_F(FileFindTest, GetStatusReadsFilesAndDirectories)
{
    dir.Write("plan.0012", "abc");
    dir.SetWriteTime("plan.0012", 1721039445);
    CFileStatus status;
    ASSERT_TRUE(CFile::GetStatus("P:\\PLAN.0012", status));
    EXPECT_EQ(status.m_mtime.GetTime(), 1721039445);
    EXPECT_EQ(status.m_size, 3u);
    EXPECT_STREQ(status.m_szFullName, "P:\\PLAN.0012");
    EXPECT_FALSE(status.m_attribute & FILE_ATTRIBUTE_DIRECTORY);
    ASSERT_TRUE(CFile::GetStatus(dir.Path().c_str(), status));
    EXPECT_TRUE(status.m_attribute & FILE_ATTRIBUTE_DIRECTORY);
    status.m_size = 77;
    EXPECT_FALSE(CFile::GetStatus("P:\\missing", status));
    EXPECT_EQ(status.m_size, 77u) << "untouched on failure";
    EXPECT_FALSE(CFile::GetStatus(nullptr, status));
}

TEST_F(FileFindTest, UnreadableDirectoryFindsNothing)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root reads every directory, so permissions cannot make one unreadable";
    dir.MakeDir("locked");
    dir.Write("locked/plan.0001");
    ASSERT_EQ(chmod(dir.Path("locked").c_str(), 0), 0);
    EXPECT_TRUE(Find("P:\\locked\\*.*").empty());
    chmod(dir.Path("locked").c_str(), 0755);
}
