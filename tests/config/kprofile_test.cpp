#include "base/vxglobals.h"
#include "config/kprofile.h"
#include "platform/files/appdirs.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <string>

using vxtest::PathExists;
using vxtest::ReadBytes;
using vxtest::ScopedEnv;
using vxtest::TempDir;
using vxtest::WriteBytes;

namespace {

// Each test starts with no documents, no paths and no cached directory, and
// leaves it so.
class KProfileTest : public ::testing::Test {
protected:
    void SetUp() override { Clear(); }
    void TearDown() override { Clear(); }

    static void Clear()
    {
        m_pVexalIni = m_pGlobalIniAT = m_pGlobalIniIT = m_pProjectIniAT = m_pProjectIniIT = nullptr;
        for (char* path : {g_vexalprofiledir, g_vexalglobalprofiledir, g_profiledirAT, g_profiledirIT,
                           g_projectprofiledirAT, g_projectprofiledirIT})
            path[0] = 0;
        g_MainframeType = MainframeAT;
        KProfile::m_sWindowsDir.Empty();
    }

    static void SetPath(char* global, const std::string& file) { std::strcpy(global, file.c_str()); }

    // Gives every scope its own file in `dir`.
    static void SetAllPaths(const TempDir& dir)
    {
        SetPath(g_vexalglobalprofiledir, dir.Path("VEXAL.INI"));
        SetPath(g_vexalprofiledir, dir.Path("VEXAL55.INI"));
        SetPath(g_profiledirAT, dir.Path("VXWIN55AT.INI"));
        SetPath(g_profiledirIT, dir.Path("VXWIN55IT.INI"));
        SetPath(g_projectprofiledirAT, dir.Path("PROJEKTAT.INI"));
        SetPath(g_projectprofiledirIT, dir.Path("PROJEKTIT.INI"));
    }
};

} // namespace

TEST_F(KProfileTest, EachScopeReachesItsFile)
{
    TempDir dir;
    SetAllPaths(dir);
    const struct {
        int scope;
        MainframeType program;
        const char* file;
    } rows[] = {
        {-2, MainframeAT, "VEXAL.INI"},       {-1, MainframeAT, "VEXAL55.INI"},
        {0, MainframeAT, "VXWIN55AT.INI"},    {0, MainframeIT, "VXWIN55IT.INI"},
        {1, MainframeAT, "PROJEKTAT.INI"},    {1, MainframeIT, "PROJEKTIT.INI"},
        {10, MainframeIT, "VXWIN55AT.INI"},   {11, MainframeIT, "PROJEKTAT.INI"},
        {20, MainframeAT, "VXWIN55IT.INI"},   {21, MainframeAT, "PROJEKTIT.INI"},
        {0, static_cast<MainframeType>(0), "VXWIN55IT.INI"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "scope " << row.scope << " program " << row.program);
        g_MainframeType = row.program;
        const std::string key = "K" + std::to_string(row.scope) + "_" + std::to_string(row.program);
        ASSERT_EQ(KProfile::WriteProfileStringA("S", key.c_str(), "v", row.scope), 1);
        EXPECT_NE(ReadBytes(dir.Path(row.file)).find(key + "=v"), std::string::npos);
        EXPECT_EQ(KProfile::GetProfileStringA("S", key.c_str(), "d", row.scope), "v");
    }
}

TEST_F(KProfileTest, ABoundDocumentTakesTheCallExceptForTheOlderSuiteFile)
{
    TempDir dir;
    SetAllPaths(dir);
    KIniMan suite;
    KIniMan globalIT;
    m_pVexalIni = &suite;
    m_pGlobalIniIT = &globalIT;
    g_MainframeType = MainframeIT;

    EXPECT_EQ(KProfile::WriteProfileStringA("S", "k", "mem", -1), 1);
    EXPECT_EQ(KProfile::WriteProfileInt("S", "n", 4, 0), 1);
    EXPECT_EQ(KProfile::WriteProfileStringA("S", "k", "disk", -2), 1);
    EXPECT_EQ(suite.ReadString("S", "k", ""), "mem");
    EXPECT_EQ(globalIT.ReadInt("S", "n", 0), 4);
    EXPECT_EQ(KProfile::GetProfileIntA("S", "n", 0, 20), 4u);
    EXPECT_FALSE(PathExists(dir.Path("VEXAL55.INI")));
    EXPECT_FALSE(PathExists(dir.Path("VXWIN55IT.INI")));
    EXPECT_EQ(ReadBytes(dir.Path("VEXAL.INI")), "[S]\r\nk=disk\r\n");

    // A null key or value deletes, in memory as on the disk.
    KProfile::WriteProfileStringA("S", "k", nullptr, -1);
    EXPECT_EQ(KProfile::GetProfileStringA("S", "k", "gone", -1), "gone");
    KProfile::WriteProfileInt("S", nullptr, 0, 0);
    EXPECT_EQ(globalIT.GetAnzSections(), 0);
    KProfile::WriteProfileStringA("S", nullptr, nullptr, -2);
    EXPECT_EQ(ReadBytes(dir.Path("VEXAL.INI")), "");
}

TEST_F(KProfileTest, AScopeWithoutFileGivesEmptyTextButTheDefaultNumber)
{
    for (const int scope : {-1, 0, 21, 5, -3}) {
        SCOPED_TRACE(scope);
        EXPECT_EQ(KProfile::GetProfileStringA("S", "k", "default", scope), "");
        EXPECT_EQ(KProfile::GetProfileIntA("S", "k", 17, scope), 17u);
        EXPECT_EQ(KProfile::GetProfileSectionA("S", "a=b", scope), "a=b");
        EXPECT_EQ(KProfile::GetProfileSectionA("S", nullptr, scope), "");
        EXPECT_EQ(KProfile::WriteProfileStringA("S", "k", "v", scope), 0);
        EXPECT_EQ(KProfile::WriteProfileInt("S", "k", 1, scope), 0);
        EXPECT_FLOAT_EQ(KProfile::GetProfileFloat("S", "k", 2.5f, scope), 0.f);
        EXPECT_EQ(KProfile::GetProfileChar("S", "k", 'x', scope), 'x');
    }
}

TEST_F(KProfileTest, CharactersTravelAsNumbersAndFloatsWithSixDecimals)
{
    TempDir dir;
    SetAllPaths(dir);
    EXPECT_EQ(KProfile::WriteProfileChar("S", "c", '\xE9', 10), 1);
    EXPECT_EQ(KProfile::GetProfileStringA("S", "c", "", 10), "-23");
    EXPECT_EQ(KProfile::GetProfileChar("S", "c", 'x', 10), '\xE9');
    EXPECT_EQ(KProfile::GetProfileChar("S", "missing", '\xF0', 10), '\xF0');

    EXPECT_EQ(KProfile::WriteProfileFloat("S", "f", 1.25f, 10), 1);
    EXPECT_EQ(KProfile::GetProfileStringA("S", "f", "", 10), "1.250000");
    EXPECT_FLOAT_EQ(KProfile::GetProfileFloat("S", "f", 0.f, 10), 1.25f);
    EXPECT_FLOAT_EQ(KProfile::GetProfileFloat("S", "missing", 0.5f, 10), 0.5f);

    // Through a document the character is a number too, unlike WriteChar.
    KIniMan doc;
    m_pGlobalIniAT = &doc;
    KProfile::WriteProfileChar("S", "c", 'A', 10);
    EXPECT_EQ(doc.ReadString("S", "c", ""), "65");
}

TEST_F(KProfileTest, SectionsReadTheSameFromDocumentAndDisk)
{
    TempDir dir;
    SetAllPaths(dir);
    KProfile::WriteProfileStringA("S", "a", "1", 10);
    KProfile::WriteProfileStringA("S", "b", "x=y", 10);
    KProfile::WriteProfileStringA("Empty", "k", "v", 10);
    KProfile::WriteProfileStringA("Empty", "k", nullptr, 10);
    EXPECT_EQ(KProfile::GetProfileSectionA("S", "d", 10), "a=1|b=x=y");
    EXPECT_EQ(KProfile::GetProfileSectionA("Missing", "d", 10), "d");
    EXPECT_EQ(KProfile::GetProfileSectionA("Empty", "d", 10), "d");

    KIniMan doc;
    doc.ReadFile(g_profiledirAT, 0);
    m_pGlobalIniAT = &doc;
    EXPECT_EQ(KProfile::GetProfileSectionA("S", "d", 10), "a=1|b=x=y");
    EXPECT_EQ(KProfile::GetProfileSectionA("Missing", "d", 10), "d");
    EXPECT_EQ(KProfile::GetProfileSectionA("Empty", "d", 10), "=");
}

TEST_F(KProfileTest, AHugeSectionIsCutAtTwentyThousandBytes)
{
    // The long entry starts below the bound and ends far beyond it: the
    // document still copies it whole, into room made for it.
    KIniMan doc;
    m_pVexalIni = &doc;
    for (int i = 0; i < 2100; ++i) {
        if (i == 1050)
            doc.WriteString("Big", "long", std::string(5000, 'w').c_str());
        doc.WriteString("Big", ("key" + std::to_string(i)).c_str(), std::string(10, 'v').c_str());
    }
    const CString text = KProfile::GetProfileSectionA("Big", "", -1);
    EXPECT_EQ(text.GetLength(), 18840 + 5005);
    EXPECT_EQ(text.Left(20), "key0=vvvvvvvvvv|key1");
    EXPECT_EQ(text.Right(3), "www");

    TempDir dir;
    SetPath(g_vexalprofiledir, dir.Path("big.ini"));
    m_pVexalIni = nullptr;
    std::string file = "[Big]\r\n";
    for (int i = 0; i < 3000; ++i)
        file += "key" + std::to_string(i) + "=vvvvvvvvvv\r\n";
    WriteBytes(dir.Path("big.ini"), file);
    const CString disk = KProfile::GetProfileSectionA("Big", "", -1);
    EXPECT_EQ(disk.GetLength(), 19998);
}

// --- the settings directory -------------------------------------------------

namespace {

// A machine with a common folder, a user folder, a temporary directory and a
// Windows directory, all under one scratch directory.
class SettingsMachine {
public:
    SettingsMachine()
        : m_common("XDG_CONFIG_DIRS", m_dir.Path("xdg")), m_user("XDG_CONFIG_HOME", m_dir.Path("config")),
          m_temp("TEMP", m_dir.Path("tmp"))
    {
        std::filesystem::create_directories(m_dir.Path("xdg"));
        std::filesystem::create_directories(m_dir.Path("windows"));
        vx::SetWindowsDirectory(m_dir.Path("windows"));
    }
    ~SettingsMachine() { vx::SetWindowsDirectory(""); }

    std::string operator/(const std::string& name) const { return m_dir.Path(name); }
    std::string Common(const std::string& name) const { return m_dir.Path("xdg/VEXAL/" + name); }
    std::string User(const std::string& name) const { return m_dir.Path("config/VEXAL/" + name); }
    // The directory texts as the library forms them.
    std::string UserText() const { return (m_dir.Path("config")) + "\\VEXAL"; }
    std::string WindowsText() const { return m_dir.Path("windows"); }

    void Put(const std::string& path, const std::string& text) const
    {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        WriteBytes(path, text);
    }

private:
    TempDir m_dir;
    ScopedEnv m_common;
    ScopedEnv m_user;
    ScopedEnv m_temp;
};

std::string SettingsDirectory(unsigned size = 260, unsigned* result = nullptr)
{
    std::string buffer(size, 'x');
    const unsigned n = KProfile::GetWindowsDirectoryA(buffer.data(), size);
    if (result)
        *result = n;
    return buffer.c_str();
}

} // namespace

TEST_F(KProfileTest, WithoutSuiteFilesTheWindowsDirectoryIsUsed)
{
    SettingsMachine machine;
    unsigned n = 0;
    EXPECT_EQ(SettingsDirectory(260, &n), machine.WindowsText());
    EXPECT_EQ(n, machine.WindowsText().size() + 1);
    EXPECT_FALSE(PathExists(machine / "config"));
}

TEST_F(KProfileTest, WithoutAppDataTheWindowsDirectoryIsUsed)
{
    SettingsMachine machine;
    machine.Put(machine.Common("VEXAL55.INI"), "[S]\r\n");
    ScopedEnv noConfig("XDG_CONFIG_HOME", std::nullopt);
    ScopedEnv noHome("HOME", std::nullopt);
    EXPECT_EQ(SettingsDirectory(), machine.WindowsText());
}

TEST_F(KProfileTest, TheUsersSuiteFileChoosesTheUserFolderAndIsCached)
{
    SettingsMachine machine;
    machine.Put(machine.User("VEXAL55.INI"), "[S]\r\n");
    EXPECT_EQ(SettingsDirectory(), machine.UserText());
    EXPECT_EQ(KProfile::m_sWindowsDir, machine.UserText().c_str());

    // Cached: a changed environment does not move it within the process.
    ScopedEnv other("XDG_CONFIG_HOME", machine / "elsewhere");
    EXPECT_EQ(SettingsDirectory(), machine.UserText());

    // A small buffer gets a cut, terminated text and its own size.
    unsigned n = 0;
    EXPECT_EQ(SettingsDirectory(6, &n), machine.UserText().substr(0, 5));
    EXPECT_EQ(n, 6u);
    EXPECT_EQ(SettingsDirectory(static_cast<unsigned>(machine.UserText().size()), &n),
              machine.UserText().substr(0, machine.UserText().size() - 1));
}

TEST_F(KProfileTest, TheFirstRunCopiesTheMachineSettingsToTheUser)
{
    SettingsMachine machine;
    machine.Put(machine.Common("VEXAL55.INI"), "[MISC]\r\nFrom=common\r\n");
    machine.Put(machine.Common("VEXAL55/VXWIN55AT.INI"),
                "[Konfig Verzeichnisse]\r\n"
                "PFADPROJ=C:\\Projekte\\\r\n"
                "  PFADTEMP=C:\\TEMP\\\r\n"
                "PFADTEMP=second\r\n"
                "[Other]\r\n"
                "PFADTEMP=untouched\r\n");
    // No PFADTEMP in the section: nothing is added; the section ends at "[".
    machine.Put(machine.Common("VEXAL55/vxwin55it.ini"),
                "[Konfig Verzeichnisse]\nPFADPROJ=x\n[Next]\nPFADTEMP=kept\n");
    machine.Put(machine.Common("VEXAL55/plain.txt"), "plain");
    machine.Put(machine.Common("VEXAL55/nested/deep.txt"), "deep");
    machine.Put(machine.Common("VEXAL55_S/symbols.dat"), "symbols");
    std::filesystem::create_directories(machine.Common("VEXAL55_HLK"));

    EXPECT_EQ(SettingsDirectory(), machine.UserText());
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55.INI")), "[MISC]\r\nFrom=common\r\n");
    const std::string temp = (machine / "tmp") + "\\";
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55/VXWIN55AT.INI")),
              "[Konfig Verzeichnisse]\r\n"
              "PFADPROJ=C:\\Projekte\\\r\n"
              "PFADTEMP=" + temp + "\r\n"
              "PFADTEMP=second\r\n"
              "[Other]\r\n"
              "PFADTEMP=untouched\r\n");
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55/vxwin55it.ini")),
              "[Konfig Verzeichnisse]\r\nPFADPROJ=x\r\n[Next]\r\nPFADTEMP=kept\r\n");
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55/plain.txt")), "plain");
    EXPECT_FALSE(PathExists(machine.User("VEXAL55/nested")));
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55_S/symbols.dat")), "symbols");
    // An empty folder still lists "." and "..", so it is made, empty.
    EXPECT_TRUE(std::filesystem::is_empty(machine.User("VEXAL55_HLK")));
    EXPECT_NE(ReadBytes(machine.Common("VEXAL55/VXWIN55AT.INI")).find("C:\\TEMP\\"), std::string::npos);
}

TEST_F(KProfileTest, TheFirstRunLeavesWhatTheUserHas)
{
    SettingsMachine machine;
    machine.Put(machine.Common("VEXAL55.INI"), "[MISC]\r\nFrom=common\r\n");
    machine.Put(machine.Common("VEXAL55/a.txt"), "common");
    machine.Put(machine.Common("VEXAL55_S/s.txt"), "common");
    machine.Put(machine.User("VEXAL55_S/mine.txt"), "mine");

    // The user folder is made, the suite file copied, the user's folder kept.
    EXPECT_EQ(SettingsDirectory(), machine.UserText());
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55/a.txt")), "common");
    EXPECT_FALSE(PathExists(machine.User("VEXAL55_S/s.txt")));

    // Once the user has the suite file, nothing is copied again.
    KProfile::m_sWindowsDir.Empty();
    WriteBytes(machine.User("VEXAL55.INI"), "[MISC]\r\nFrom=user\r\n");
    std::filesystem::remove_all(machine.User("VEXAL55"));
    EXPECT_EQ(SettingsDirectory(), machine.UserText());
    EXPECT_EQ(ReadBytes(machine.User("VEXAL55.INI")), "[MISC]\r\nFrom=user\r\n");
    EXPECT_FALSE(PathExists(machine.User("VEXAL55")));
}

TEST_F(KProfileTest, AFreshAccountGetsItsConfigurationFolder)
{
    SettingsMachine machine;
    machine.Put(machine.Common("VEXAL55.INI"), "[S]\r\n");
    ScopedEnv home("HOME", machine / "home");
    ScopedEnv noConfig("XDG_CONFIG_HOME", std::nullopt);
    std::filesystem::create_directories(machine / "home");
    EXPECT_EQ(SettingsDirectory(), (machine / "home/.config") + "\\VEXAL");
    EXPECT_EQ(ReadBytes(machine / "home/.config/VEXAL/VEXAL55.INI"), "[S]\r\n");
}
