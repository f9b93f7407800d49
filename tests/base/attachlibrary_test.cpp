#include "base/displaystate.h"
#include "base/libraryframe.h"
#include "base/vxglobals.h"
#include "config/kprofile.h"
#include "platform/files/appdirs.h"
#include "platform/screens/monitors.h"
#include "platform/windows/sysmetrics.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

using vxtest::PathExists;
using vxtest::ReadBytes;
using vxtest::ScopedEnv;
using vxtest::TempDir;
using vxtest::WriteBytes;

namespace {

// A machine whose settings directory is the Windows directory `dir`: no
// suite file in the common or the user folder.
class AttachTest : public ::testing::Test {
protected:
    AttachTest()
        : m_common("XDG_CONFIG_DIRS", m_dir.Path("xdg")), m_user("XDG_CONFIG_HOME", m_dir.Path("config"))
    {
        vx::SetWindowsDirectory(m_dir.Path());
        vx::TheDisplayState() = vx::DisplayState{};
    }
    ~AttachTest() override
    {
        vx::SetWindowsDirectory("");
        KProfile::m_sWindowsDir.Empty();
        g_vexalprofiledir[0] = g_vexalglobalprofiledir[0] = 0;
        vx::TheDisplayState() = vx::DisplayState{};
    }

    std::string NewFile() const { return m_dir.Path("VEXAL55.INI"); }
    std::string OldFile() const { return m_dir.Path("VEXAL.INI"); }

    TempDir m_dir;
    ScopedEnv m_common;
    ScopedEnv m_user;
};

} // namespace

TEST_F(AttachTest, FillsTheSuitePathsFromTheSettingsDirectory)
{
    vx::AttachLibrary();
    EXPECT_STREQ(g_vexalprofiledir, (m_dir.Path() + "\\VEXAL55.INI").c_str());
    EXPECT_STREQ(g_vexalglobalprofiledir, (m_dir.Path() + "\\VEXAL.INI").c_str());

    // With a suite file of the user's, the user folder wins.
    std::filesystem::create_directories(m_dir.Path("config/VEXAL"));
    WriteBytes(m_dir.Path("config/VEXAL/VEXAL55.INI"), "[S]\r\n");
    vx::AttachLibrary();
    EXPECT_STREQ(g_vexalprofiledir, (m_dir.Path("config") + "\\VEXAL\\VEXAL55.INI").c_str());
}

TEST_F(AttachTest, PromotesTheOlderSuiteFileOnlyWhenNoNewOneExists)
{
    const struct {
        bool hasNew;
        bool hasOld;
    } rows[] = {{true, true}, {false, true}, {true, false}, {false, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "new " << row.hasNew << " old " << row.hasOld);
        std::remove(NewFile().c_str());
        std::remove(OldFile().c_str());
        if (row.hasNew)
            WriteBytes(NewFile(), "[MISC]\r\nFrom=new\r\n");
        if (row.hasOld)
            WriteBytes(OldFile(), "[MISC]\r\nFrom=old\r\n");

        EXPECT_EQ(vx::AttachLibrary(), 1);

        if (row.hasNew) {
            EXPECT_EQ(ReadBytes(NewFile()), "[MISC]\r\nFrom=new\r\n");
            EXPECT_EQ(PathExists(OldFile()), row.hasOld);
            if (row.hasOld) {
                EXPECT_EQ(ReadBytes(OldFile()), "[MISC]\r\nFrom=old\r\n");
            }
        } else if (row.hasOld) {
            EXPECT_EQ(ReadBytes(NewFile()), "[MISC]\r\nFrom=old\r\n");
            EXPECT_FALSE(PathExists(OldFile()));
        } else {
            EXPECT_FALSE(PathExists(NewFile()));
            EXPECT_FALSE(PathExists(OldFile()));
        }
    }
}

TEST_F(AttachTest, ReadsTheDisplayLayoutFromTheSuiteFile)
{
    const int cx = GetSystemMetrics(SM_CXSCREEN);
    const int cy = GetSystemMetrics(SM_CYSCREEN);
    vx::DisplayState& state = vx::TheDisplayState();

    // Enabled, with one of the two sizes missing: the primary size for both.
    WriteBytes(NewFile(), "[2Monitor]\r\nEnable=1\r\nFirst-CX=1000\r\n");
    vx::AttachLibrary();
    EXPECT_EQ(state.enable, 1);
    EXPECT_EQ(state.first.cx, cx);
    EXPECT_EQ(state.first.cy, cy);
    EXPECT_EQ(state.virtualRect.right - state.virtualRect.left, GetSystemMetrics(SM_CXVIRTUALSCREEN));

    WriteBytes(NewFile(), "[2Monitor]\r\nEnable=2\r\nFirst-CX=1000\r\nFirst-CY=700\r\n");
    vx::AttachLibrary();
    EXPECT_EQ(state.enable, 2);
    EXPECT_EQ(state.first.cx, 1000);
    EXPECT_EQ(state.first.cy, 700);

    // Not enabled: the primary size, and the enable flag stays as it was.
    WriteBytes(NewFile(), "[2Monitor]\r\nEnable=0\r\nFirst-CX=1000\r\nFirst-CY=700\r\n");
    vx::AttachLibrary();
    EXPECT_EQ(state.enable, 2);
    EXPECT_EQ(state.first.cx, cx);
    EXPECT_EQ(state.first.cy, cy);
}

TEST_F(AttachTest, DisplayLayoutComesFromTheScreensOfTheDisplay)
{
    // A primary screen of 1280 x 1024 and a larger one to its left.
    vx::SetScreens({{{0, 0, 1280, 1024}, {0, 0, 1280, 994}, true, ""},
                    {{-1600, -100, 0, 1100}, {-1600, -100, 0, 1100}, false, ""}});
    WriteBytes(NewFile(), "[2Monitor]\r\nEnable=1\r\n");
    vx::AttachLibrary();
    const vx::DisplayState& state = vx::TheDisplayState();
    EXPECT_EQ(state.enable, 1);
    EXPECT_EQ(CRect(state.virtualRect), CRect(-1600, -100, 1280, 1100));
    EXPECT_EQ(state.first.cx, 1280);
    EXPECT_EQ(state.first.cy, 1024);
    vx::SetScreens({});
}
