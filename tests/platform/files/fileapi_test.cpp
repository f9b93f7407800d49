#include "platform/files/fileapi.h"
#include "platform/files/hostpath.h"

#include "support/printers.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

class TempDir : public ::testing::Test {
protected:
    void TearDown() override { vx::SetDriveRoot('P', ""); }
    void Write(const std::string& name, const std::string& text) { vxtest::WriteBytes(dir + "/" + name, text); }
    std::string Read(const std::string& name) { return vxtest::ReadBytes(dir + "/" + name); }
    vxtest::TempDir temp;
    std::string dir = temp.Path();
};

} // namespace

TEST_F(TempDir, CopyFileHonoursFailIfExists)
{
    vx::SetDriveRoot('P', dir);
    Write("old.ini", "[A]\r\nx=1\r\n");
    Write("new.ini", "keep");
    EXPECT_FALSE(CopyFileA("P:\\old.ini", "P:\\new.ini", TRUE));
    EXPECT_EQ(Read("new.ini"), "keep");
    EXPECT_TRUE(CopyFileA("P:\\old.ini", "P:\\new.ini", FALSE));
    EXPECT_EQ(Read("new.ini"), "[A]\r\nx=1\r\n");
    EXPECT_TRUE(CopyFileA("P:\\old.ini", "P:\\third.ini", TRUE));
    EXPECT_EQ(Read("third.ini"), "[A]\r\nx=1\r\n");
    EXPECT_FALSE(CopyFileA("P:\\missing.ini", "P:\\x.ini", FALSE));
    EXPECT_FALSE(fs::exists(dir + "/x.ini"));
    for (const auto& e : fs::directory_iterator(dir))
        EXPECT_EQ(e.path().filename().string().find(".vxcopy"), std::string::npos) << "no temporary left";
}

TEST_F(TempDir, DeleteMoveAndAttributes)
{
    Write("a.txt", "a");
    fs::create_directory(dir + "/sub");
    EXPECT_EQ(GetFileAttributesA((dir + "/sub").c_str()) & FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(GetFileAttributesA((dir + "/none").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_FALSE(DeleteFileA((dir + "/sub").c_str())) << "a directory is not a file";
    EXPECT_TRUE(MoveFileA((dir + "/a.txt").c_str(), (dir + "/b.txt").c_str()));
    Write("c.txt", "c");
    EXPECT_FALSE(MoveFileA((dir + "/c.txt").c_str(), (dir + "/b.txt").c_str()));
    EXPECT_TRUE(DeleteFileA((dir + "/b.txt").c_str()));
    EXPECT_FALSE(DeleteFileA((dir + "/b.txt").c_str()));
    EXPECT_TRUE(CreateDirectoryA((dir + "\\made").c_str(), nullptr));
    EXPECT_FALSE(CreateDirectoryA((dir + "\\made").c_str(), nullptr));
    EXPECT_TRUE(RemoveDirectoryA((dir + "/made").c_str()));
}

TEST(GetCurrentDirectory, TellsTheSizeItNeeds)
{
    vxtest::TempDir dir;
    char before[MAX_PATH];
    ASSERT_GT(GetCurrentDirectoryA(sizeof before, before), 0u);
    ASSERT_TRUE(SetCurrentDirectoryA(dir.Path().c_str()));
    char here[MAX_PATH];
    const DWORD length = GetCurrentDirectoryA(sizeof here, here);
    EXPECT_EQ(std::string(here), dir.Path());
    EXPECT_EQ(length, dir.Path().size());
    char small[4] = "abc";
    EXPECT_EQ(GetCurrentDirectoryA(sizeof small, small), dir.Path().size() + 1);
    EXPECT_STREQ(small, "abc");
    EXPECT_FALSE(SetCurrentDirectoryA(dir.Path("missing").c_str()));
    EXPECT_TRUE(SetCurrentDirectoryA(before));
}
