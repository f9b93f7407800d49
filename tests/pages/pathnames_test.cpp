#include "pages/pathnames.h"
#include "platform/files/hostpath.h"

#include "pages/testhost.h"
#include "support/printers.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <string>

TEST(PathNames, CutsDirectoryAndName)
{
    EXPECT_EQ(GetPfad("C:\\P\\plan.0012"), "C:\\P\\");
    EXPECT_EQ(GetPfad("a"), "");
    EXPECT_EQ(GetPfad("/tmp/a"), "") << "only \\ separates";
    EXPECT_EQ(GetPfad(nullptr), "");
    EXPECT_EQ(GetDateiname("C:\\P\\plan.0012"), "plan.0012");
    EXPECT_EQ(GetDateiname("a\\"), "");
    EXPECT_EQ(GetDateiname("plan"), "plan");
    EXPECT_EQ(GetDateiname(nullptr), "");
}

TEST(PathNames, RecognisesDrivePathsAndNetworkNames)
{
    EXPECT_TRUE(IsPathname("C:\\"));
    EXPECT_TRUE(IsPathname("z:\\x"));
    EXPECT_FALSE(IsPathname("C:"));
    EXPECT_FALSE(IsPathname("1:\\"));
    EXPECT_FALSE(IsPathname("C:/x"));
    EXPECT_FALSE(IsPathname(nullptr));
    EXPECT_TRUE(IsNetname("\\\\server\\share"));
    EXPECT_FALSE(IsNetname("\\x"));
    EXPECT_FALSE(IsNetname(nullptr));
}

TEST(PathNames, RelatesPathsToABase)
{
    EXPECT_TRUE(IsPfadRelativToPfad("C:\\P\\x", "c:\\p\\"));
    EXPECT_FALSE(IsPfadRelativToPfad("C:\\Q\\x", "c:\\p\\"));
    EXPECT_STREQ(GetPfadRelativToPfad("C:\\P\\x", "c:\\p\\"), "x");
    EXPECT_STREQ(GetPfadRelativToPfad("C:\\P\\x", ""), "C:\\P\\x");
    EXPECT_STREQ(GetPfadRelativToPfad("\\\\srv\\P\\x", "\\\\srv\\"), "\\\\srv\\P\\x") << "never a network path";
    EXPECT_STREQ(GetPfadRelativToPfad("P\\x", "P\\"), "P\\x") << "only a drive path is shortened";
    EXPECT_STREQ(GetPfadRelativToPfad("C:\\Q\\x", "C:\\P\\"), "C:\\Q\\x");

    EXPECT_EQ(GetPfadFullToPfad("", "C:\\P\\"), "C:\\P\\");
    EXPECT_EQ(GetPfadFullToPfad(nullptr, "C:\\P\\"), "C:\\P\\");
    EXPECT_EQ(GetPfadFullToPfad("x\\y", "C:\\P\\"), "C:\\P\\x\\y");
    EXPECT_EQ(GetPfadFullToPfad("D:\\x", "C:\\P\\"), "D:\\x");
    EXPECT_EQ(GetPfadFullToPfad("\\\\s\\x", "C:\\P\\"), "\\\\s\\x");

    CString base = "c:\\projekt\\";
    CString inside = "C:\\Projekt\\sub\\plan.0012";
    CString outside = "C:\\Other\\plan.0012";
    CString shorter = "C:\\plan.0012";
    EXPECT_EQ(GetZusatzDateipfad(base, inside), "sub\\plan.0012");
    EXPECT_EQ(GetZusatzDateipfad(base, outside), outside);
    EXPECT_EQ(GetZusatzDateipfad(base, shorter), shorter) << "a directory shorter than the base never agrees";
}

TEST(PathNames, MakesNamesSafe)
{
    CString name = "a/b<c>d:e\\f|g?h*i\"j";
    MacheDateinamenSicher(name);
    EXPECT_EQ(name, "a_b_c_d_e_f_g?h*i\"j");
    char raw[] = "x/y\xE4:z";
    MacheDateinamenSicher(raw);
    EXPECT_STREQ(raw, "x_y\xE4_z");
    MacheDateinamenSicher(static_cast<char*>(nullptr));
}

class RecycleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        vxtest::DataHome();
        ASSERT_TRUE(dir.Valid());
        vx::SetDriveRoot('P', dir.Path());
    }
    void TearDown() override { vx::SetDriveRoot('P', ""); }
    static std::string Trashed(const std::string& name) { return vxtest::DataHome().Path("Trash/files/" + name); }
    vxtest::TempDir dir;
};

TEST_F(RecycleTest, WithoutHostGoesToTheTrash)
{
    dir.Write("trash1.0001", "1");
    EXPECT_EQ(RemoveToRecycle("P:\\TRASH1.0001", 0), 1);
    EXPECT_FALSE(dir.Exists("trash1.0001"));
    EXPECT_TRUE(vxtest::PathExists(Trashed("trash1.0001")));
    EXPECT_EQ(RemoveToRecycle("P:\\trash1.0001", 0), 0) << "gone already";
}

TEST_F(RecycleTest, HardDeleteAsksNoHost)
{
    TestHost host;
    dir.Write("hard.0001");
    EXPECT_EQ(RemoveToRecycle("P:\\hard.0001", 1), 1);
    EXPECT_FALSE(dir.Exists("hard.0001"));
    EXPECT_FALSE(vxtest::PathExists(Trashed("hard.0001")));
    EXPECT_EQ(host.queries, 0);
}

TEST_F(RecycleTest, HostDecidesBetweenTrashAndDelete)
{
    TestHost host;
    dir.Write("keep.0001");
    dir.Write("gone.0001");
    host.useRecycleBin = 1;
    EXPECT_EQ(RemoveToRecycle("P:\\keep.0001", 0), 1);
    EXPECT_TRUE(vxtest::PathExists(Trashed("keep.0001")));
    host.useRecycleBin = 0;
    EXPECT_EQ(RemoveToRecycle("P:\\gone.0001", 0), 1);
    EXPECT_FALSE(dir.Exists("gone.0001"));
    EXPECT_FALSE(vxtest::PathExists(Trashed("gone.0001")));
    EXPECT_EQ(host.queries, 2);
}

TEST_F(RecycleTest, OddPathTextsRemoveNothing)
{
    dir.Write("x");
    const std::string texts[] = {std::string(800, 'a'), std::string(800, '\\'), "\\\\", ":", "",
                                 std::string(300, '\x80'), "P:", "P:\\"};
    for (const std::string& t : texts) {
        SCOPED_TRACE(t.substr(0, 10));
        EXPECT_EQ(RemoveToRecycle(t.c_str(), 1), 0);
    }
    EXPECT_EQ(RemoveToRecycle(nullptr, 1), 0);
    EXPECT_TRUE(dir.Exists("x"));

    // The text is cut to 262 characters: a longer one reaches the file the
    // cut text names.
    const std::string name(262 - dir.Path().size() - 1, 'n');
    dir.Write(name);
    EXPECT_EQ(RemoveToRecycle((dir.Path() + "/" + name + "-beyond-the-buffer").c_str(), 1), 1);
    EXPECT_FALSE(dir.Exists(name));
}
