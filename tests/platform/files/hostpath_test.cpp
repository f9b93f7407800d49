#include "platform/files/hostpath.h"

#include "support/printers.h"
#include "support/scopedenv.h"

#include <gtest/gtest.h>

TEST(HostPath, MapsDrivesAndBackslashes)
{
    vx::SetDriveRoot('q', "/srv/projects/");
    EXPECT_EQ(vx::HostPath("Q:\\Plan\\plan.0012"), "/srv/projects/Plan/plan.0012");
    EXPECT_EQ(vx::HostPath("q:rel"), "/srv/projects/rel");
    vx::SetDriveRoot('Q', "");
    EXPECT_EQ(vx::HostPath("Q:\\Plan"), "/Plan");
    EXPECT_EQ(vx::HostPath("/tmp/x.ini"), "/tmp/x.ini");
    EXPECT_EQ(vx::HostPath("dir\\file"), "dir/file");
    EXPECT_EQ(vx::HostPath("\\\\"), "//");
    EXPECT_EQ(vx::HostPath(":"), ":");
    EXPECT_EQ(vx::HostPath("/tmp/Pl\xE4ne"), "/tmp/Pl\xC3\xA4ne") << "code page bytes become UTF-8";
}

TEST(HostPath, DriveFromEnvironment)
{
    {
        vxtest::ScopedEnv drive("VXBASE_DRIVE_K", "/mnt/k");
        EXPECT_EQ(vx::HostPath("K:\\a"), "/mnt/k/a");
    }
    EXPECT_EQ(vx::HostPath("K:\\a"), "/a");
}
