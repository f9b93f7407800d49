#include "platform/files/drivetype.h"
#include "platform/files/hostpath.h"

#include "support/scopedenv.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <sys/vfs.h>

namespace {

bool IsTmpfs(const char* path)
{
    struct statfs fs {};
    return statfs(path, &fs) == 0 && static_cast<unsigned long>(fs.f_type) == 0x01021994;
}

} // namespace

// The media the suite asks about are reached through drive letters and
// names in any case, as the rest of the file functions reach them.
TEST(DriveType, TellsTheMediumOfADrivePathInAnyCase)
{
    if (!IsTmpfs("/dev/shm"))
        GTEST_SKIP() << "/dev/shm is no tmpfs here";
    vxtest::ScopedEnv tmp("TMPDIR", "/dev/shm");
    vxtest::TempDir dir;
    ASSERT_TRUE(dir.Valid());
    dir.MakeDir("Plans");
    dir.Write("Plans/plan.0012", "x");
    vx::SetDriveRoot('R', dir.Path());
    EXPECT_EQ(GetDriveTypeA("R:\\"), DRIVE_RAMDISK);
    EXPECT_EQ(GetDriveTypeA("R:"), DRIVE_RAMDISK);
    EXPECT_EQ(GetDriveTypeA("R:\\Plans\\"), DRIVE_RAMDISK);
    EXPECT_EQ(GetDriveTypeA("r:\\PLANS\\"), DRIVE_RAMDISK) << "a directory under another case";
    EXPECT_EQ(GetDriveTypeA("R:\\plans\\PLAN.0012"), DRIVE_RAMDISK) << "a file's medium";
    EXPECT_EQ(GetDriveTypeA("R:\\Missing\\"), DRIVE_NO_ROOT_DIR);
    EXPECT_EQ(vx::DriveTypeOfHostPath(dir.Path("Plans")), DRIVE_RAMDISK);
    EXPECT_EQ(vx::DriveTypeOfHostPath(dir.Path("missing")), DRIVE_NO_ROOT_DIR);
    vx::SetDriveRoot('R', "");
}

TEST(DriveType, NullAndEmptyMeanTheRoot)
{
    const UINT root = vx::DriveTypeOfHostPath("/");
    EXPECT_NE(root, DRIVE_NO_ROOT_DIR);
    EXPECT_EQ(GetDriveTypeA(nullptr), root);
    EXPECT_EQ(GetDriveTypeA(""), root);
    EXPECT_EQ(GetDriveTypeA("\\"), root);
}
