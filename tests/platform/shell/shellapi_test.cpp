#include "platform/files/hostpath.h"
#include "platform/shell/shellapi.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

int Delete(const std::string& list, FILEOP_FLAGS extra)
{
    SHFILEOPSTRUCTA op{};
    op.wFunc = FO_DELETE;
    op.pFrom = list.c_str(); // the caller puts the inner zeros; c_str ends the list
    op.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI | extra;
    return SHFileOperationA(&op);
}

} // namespace

TEST(SHFileOperation, UndoMovesToTheTrashWithItsInfoFile)
{
    const vxtest::TempDir& home = vxtest::DataHome();
    vxtest::TempDir dir;
    dir.Write("plan.0012", "page");
    ASSERT_EQ(Delete(dir.Path("plan.0012") + std::string(1, '\0'), FOF_ALLOWUNDO), 0);
    EXPECT_FALSE(dir.Exists("plan.0012"));
    EXPECT_EQ(vxtest::ReadBytes(home.Path("Trash/files/plan.0012")), "page");
    const std::string info = vxtest::ReadBytes(home.Path("Trash/info/plan.0012.trashinfo"));
    EXPECT_NE(info.find("[Trash Info]"), std::string::npos);
    EXPECT_NE(info.find("Path=" + dir.Path("plan.0012")), std::string::npos);
    EXPECT_NE(info.find("DeletionDate="), std::string::npos);
}

TEST(SHFileOperation, WithoutUndoDeletesWildcardsAndDirectories)
{
    vxtest::DataHome();
    vxtest::TempDir dir;
    dir.Write("a.bak");
    dir.Write("b.BAK");
    dir.Write("keep.txt");
    dir.MakeDir("tree/deep");
    dir.Write("tree/deep/f");
    const std::string list = dir.Path("*.bak") + std::string(1, '\0') + dir.Path("tree") + std::string(1, '\0');
    EXPECT_EQ(Delete(list, 0), 0);
    EXPECT_FALSE(dir.Exists("a.bak"));
    EXPECT_FALSE(dir.Exists("b.BAK"));
    EXPECT_FALSE(dir.Exists("tree"));
    EXPECT_TRUE(dir.Exists("keep.txt"));
    EXPECT_EQ(Delete(dir.Path("missing") + std::string(1, '\0'), 0), 2);

    dir.MakeDir("onlyfiles");
    dir.Write("x.1");
    EXPECT_EQ(Delete(dir.Path("*.*") + std::string(1, '\0'), FOF_FILESONLY), 0);
    EXPECT_TRUE(dir.Exists("onlyfiles"));
    EXPECT_FALSE(dir.Exists("keep.txt"));

    SHFILEOPSTRUCTA copy{};
    copy.wFunc = FO_COPY;
    copy.pFrom = "x\0";
    EXPECT_EQ(SHFileOperationA(&copy), 1);
    EXPECT_EQ(SHFileOperationA(nullptr), 1);
}

TEST(SHFileOperation, NeverRemovesARootOrADriveRoot)
{
    vxtest::DataHome();
    vxtest::TempDir dir;
    dir.MakeDir("sub");
    dir.Write("sub/f");
    vx::SetDriveRoot('P', dir.Path());
    for (const char* text : {"P:\\", "P:", "P:\\sub\\..", "P:\\."}) {
        SCOPED_TRACE(text);
        EXPECT_NE(Delete(std::string(text) + '\0', 0), 0);
        EXPECT_NE(Delete(std::string(text) + '\0', FOF_ALLOWUNDO), 0);
        EXPECT_TRUE(dir.Exists("sub/f"));
    }
    vx::SetDriveRoot('P', "");
    EXPECT_NE(Delete(std::string(1, '\0'), 0), 0) << "an empty list names nothing";
}
