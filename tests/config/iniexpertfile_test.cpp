// The expert editor's control file: every kind and scope, values from the
// settings files, choices and scaled choices, and what bad files give.
#include "config/iniexpertfile.h"
#include "config/kprofile.h"
#include "base/vxglobals.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using vxtest::TempDir;
using vxtest::WriteBytes;

namespace {

// Every scope has a file in a temporary directory; the control file lies
// next to the AT program's global file.
class IniControlFileTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.Valid());
        m_pVexalIni = m_pGlobalIniAT = m_pGlobalIniIT = m_pProjectIniAT = m_pProjectIniIT = nullptr;
        g_MainframeType = MainframeAT;
        Set(g_vexalglobalprofiledir, "VEXAL.INI");
        Set(g_vexalprofiledir, "VEXAL55.INI");
        Set(g_profiledirAT, "VXWIN55AT.INI");
        Set(g_profiledirIT, "VXWIN55IT.INI");
        Set(g_projectprofiledirAT, "PROJEKTAT.INI");
        Set(g_projectprofiledirIT, "PROJEKTIT.INI");
    }
    void TearDown() override
    {
        vx::FreeIniExpertEntries(entries);
        for (char* path : {g_vexalprofiledir, g_vexalglobalprofiledir, g_profiledirAT, g_profiledirIT,
                           g_projectprofiledirAT, g_projectprofiledirIT})
            path[0] = 0;
    }

    void Set(char* global, const char* name) { std::strcpy(global, dir.Path(name).c_str()); }

    UINT Read(const std::string& content)
    {
        WriteBytes(dir.Path("VXINI55.DAT"), content);
        return vx::ReadIniControlFile(vx::IniControlFilePath(), entries);
    }

    TempDir dir;
    KIniExpertEntryArray entries;
};

KIniExpertEntry Entry(const char* kind, const char* type, const char* value, std::initializer_list<const char*> keys = {},
                      std::initializer_list<const char*> captions = {})
{
    KIniExpertEntry e;
    e.m_kind = kind;
    e.m_section = "S";
    e.m_key = "K";
    e.m_type = type;
    e.m_value = value;
    e.m_caption = "C";
    for (const char* k : keys)
        e.m_choiceKeys.Add(k);
    for (const char* c : captions)
        e.m_choiceCaptions.Add(c);
    return e;
}

} // namespace

TEST(IniExpertScope, EachKindHasItsScope)
{
    EXPECT_EQ(vx::IniExpertScope("PRJAT"), 11);
    EXPECT_EQ(vx::IniExpertScope("PRJIT"), 21);
    EXPECT_EQ(vx::IniExpertScope("WINAT"), 10);
    EXPECT_EQ(vx::IniExpertScope("WINIT"), 20);
    EXPECT_EQ(vx::IniExpertScope("VEXAL54"), -1);
    EXPECT_EQ(vx::IniExpertScope("VEXAL"), -2);
    // Kinds compare exactly: anything else is a line of text.
    for (const char* other : {"", "winat", "VEXAL55", "PRJAT ", "Rysowanie"}) {
        SCOPED_TRACE(other);
        EXPECT_EQ(vx::IniExpertScope(other), 0);
    }
}

TEST_F(IniControlFileTest, PathIsBesideTheGlobalFileOfAT)
{
    EXPECT_EQ(std::string(vx::IniControlFilePath()), dir.Path("VXINI55.DAT"));
    std::strcpy(g_profiledirAT, "C:\\VEXAL\\VXWIN55AT.INI");
    EXPECT_STREQ(vx::IniControlFilePath(), "C:\\VEXAL\\VXINI55.DAT");
}

TEST_F(IniControlFileTest, ReadsEveryKindWithValuesFromItsFile)
{
    // A value in each file of a scope; the others stay at their defaults.
    ASSERT_TRUE(KProfile::WriteProfileStringA("PROCESS", "ExecuteTimeout", "25000", -1));
    ASSERT_TRUE(KProfile::WriteProfileStringA("Zeichnen", "Raster", "500", 10));
    ASSERT_TRUE(KProfile::WriteProfileStringA("Liste", "Sortierung", "ALPHA", 20));
    ASSERT_TRUE(KProfile::WriteProfileStringA("Projekt", "Format", "A4", 11));
    ASSERT_TRUE(KProfile::WriteProfileStringA("Projekt", "Nummer", "7", 21));
    ASSERT_TRUE(KProfile::WriteProfileStringA("PROCESS", "SearchMode", "1", -2));
    const std::string file = "VXINI1.0\r\n"
                             "comment line\r\n"
                             "Heading\r\n"
                             "VEXAL54\r\nPROCESS\r\nExecuteTimeout\r\n0\r\nTimeout\r\n10000\r\nx/1000\r\nin s\r\n\r\n"
                             "WINAT\r\nZeichnen\r\nRaster\r\n0\r\nGrid\r\n1000\r\n\r\n"
                             "WINIT\r\nListe\r\nSortierung\r\n1\r\nOrder\r\nDIN\r\nDIN\r\nby DIN\r\nALPHA\r\nA-Z\r\n\r\n"
                             "PRJAT\r\nProjekt\r\nFormat\r\n1\r\nSheet\r\nA3\r\n\r\n"
                             "PRJIT\r\nProjekt\r\nNummer\r\n0\r\nNumber\r\n\r\n\r\n"
                             "VEXAL\r\nPROCESS\r\nSearchMode\r\n0\r\nSearch\r\n0\r\n";
    ASSERT_EQ(Read(file), 0u);
    ASSERT_EQ(entries.GetSize(), 7);

    EXPECT_STREQ(entries[0]->m_kind, "Heading");
    EXPECT_TRUE(entries[0]->m_section.IsEmpty());
    EXPECT_TRUE(entries[0]->m_value.IsEmpty());

    const struct {
        const char* kind;
        const char* key;
        const char* type;
        const char* caption;
        const char* value;
        int choices;
    } expected[] = {{"VEXAL54", "ExecuteTimeout", "0", "Timeout", "25000", 1},
                    {"WINAT", "Raster", "0", "Grid", "500", 0},
                    {"WINIT", "Sortierung", "1", "Order", "ALPHA", 2},
                    {"PRJAT", "Format", "1", "Sheet", "A4", 0},
                    {"PRJIT", "Nummer", "0", "Number", "7", 0},
                    {"VEXAL", "SearchMode", "0", "Search", "1", 0}};
    for (int i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        const KIniExpertEntry& e = *entries[i + 1];
        EXPECT_STREQ(e.m_kind, expected[i].kind);
        EXPECT_STREQ(e.m_key, expected[i].key);
        EXPECT_STREQ(e.m_type, expected[i].type);
        EXPECT_STREQ(e.m_caption, expected[i].caption);
        EXPECT_STREQ(e.m_value, expected[i].value);
        EXPECT_EQ(e.m_choiceKeys.GetSize(), expected[i].choices);
        EXPECT_EQ(e.m_choiceCaptions.GetSize(), expected[i].choices);
        EXPECT_EQ(e.m_scaleState, 0);
    }
    EXPECT_STREQ(entries[3]->m_choiceKeys[1], "ALPHA");
    EXPECT_STREQ(entries[3]->m_choiceCaptions[1], "A-Z");
}

TEST_F(IniControlFileTest, UnsetValuesTakeTheDefaultAndAnEmptyDefaultStaysEmpty)
{
    ASSERT_EQ(Read("VXINI1.0\n\nWINAT\nA\nB\n0\nCaption\n42\n\nWINAT\nA\nC\n1\nCaption\n\n"), 0u);
    ASSERT_EQ(entries.GetSize(), 2);
    EXPECT_STREQ(entries[0]->m_value, "42");
    EXPECT_STREQ(entries[1]->m_value, "");
}

TEST_F(IniControlFileTest, TheSampleOfTheInstallationReadsWhole)
{
    const std::string sample = vxtest::ReadBytes(std::string(VX_SAMPLE_DATA_DIR) + "/VXINI55.DAT");
    ASSERT_FALSE(sample.empty());
    ASSERT_EQ(Read(sample), 0u);
    // Every kind, every type and scaled choices of both number types.
    bool kinds[6] = {};
    bool types[3] = {};
    bool scaledWhole = false;
    bool scaledFloat = false;
    int textLines = 0;
    for (int i = 0; i < entries.GetSize(); ++i) {
        const KIniExpertEntry& e = *entries[i];
        const int scope = vx::IniExpertScope(e.m_kind);
        const int kindIndex[] = {-2, -1, 10, 11, 20, 21};
        for (int k = 0; k < 6; ++k)
            kinds[k] = kinds[k] || scope == kindIndex[k];
        if (scope == 0) {
            ++textLines;
            continue;
        }
        types[e.m_type == "0" ? 0 : e.m_type == "2" ? 1 : 2] = true;
        for (int c = 0; c < e.m_choiceKeys.GetSize(); ++c) {
            bool scaled = false;
            vx::ScaledChoiceFactor(e.m_choiceKeys[c], &scaled);
            scaledWhole = scaledWhole || (scaled && e.m_type == "0");
            scaledFloat = scaledFloat || (scaled && e.m_type == "2");
        }
    }
    for (bool k : kinds)
        EXPECT_TRUE(k);
    for (bool t : types)
        EXPECT_TRUE(t);
    EXPECT_TRUE(scaledWhole);
    EXPECT_TRUE(scaledFloat);
    EXPECT_EQ(textLines, 5);
    EXPECT_EQ(entries.GetSize(), 18);
}

TEST_F(IniControlFileTest, BadFilesGiveTheirMessagesAndKeepWhatWasRead)
{
    struct Case {
        const char* name;
        std::string content;
        UINT message;
        int entries;
    } cases[] = {
        {"empty file: no version line, no entries", "", vx::kIniControlError, 0},
        {"wrong version line only", "VXINI2.0\nx\nWINAT\nA\nB\n0\nC\n1\n", vx::kIniControlWrongVersion, 0},
        {"version with trailing blank", "VXINI1.0 \nx\nHeading\n", vx::kIniControlWrongVersion, 0},
        {"version alone", "VXINI1.0", vx::kIniControlError, 0},
        {"setting cut short before its default", "VXINI1.0\nx\nWINAT\nA\nB\n0\nCaption", vx::kIniControlError, 0},
        {"empty key line ends the reading", "VXINI1.0\nx\nHead\nWINAT\nA\n\n0\nC\n1\n\nHead2\n", 0, 1},
        {"a truncated setting keeps those before it",
         "VXINI1.0\nx\nWINAT\nA\nB\n0\nC\n1\n\nWINIT\nA\nB\n", 0, 1},
        {"an unknown kind is a line of text", "VXINI1.0\nx\nWINXY\nA\n", 0, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        vx::FreeIniExpertEntries(entries);
        EXPECT_EQ(Read(c.content), c.message);
        EXPECT_EQ(entries.GetSize(), c.entries);
    }
    // The unknown kind and the line after it stand alone, each a text line.
    ASSERT_EQ(entries.GetSize(), 2);
    EXPECT_STREQ(entries[0]->m_kind, "WINXY");
    EXPECT_STREQ(entries[1]->m_kind, "A");
}

TEST_F(IniControlFileTest, MissingOrUnreadableFileIsNotFound)
{
    EXPECT_EQ(vx::ReadIniControlFile(dir.Path("VXINI55.DAT").c_str(), entries), vx::kIniControlNotFound);
    EXPECT_EQ(vx::ReadIniControlFile("", entries), vx::kIniControlNotFound);
    EXPECT_EQ(vx::ReadIniControlFile(nullptr, entries), vx::kIniControlNotFound);
    dir.MakeDir("VXINI55.DAT");
    EXPECT_EQ(vx::ReadIniControlFile(dir.Path("VXINI55.DAT").c_str(), entries), vx::kIniControlNotFound);
    EXPECT_EQ(entries.GetSize(), 0);
}

TEST_F(IniControlFileTest, ChoicesEndAtAnEmptyLineAndHalfAPairIsDropped)
{
    ASSERT_EQ(Read("VXINI1.0\nx\nWINAT\nS\nK\n1\nCap\nd\nk1\nc1\nk2\n\nHeading\n"
                   "WINAT\nS\nK2\n1\nCap\nd\nk1\nc1\nk2"),
              0u);
    ASSERT_EQ(entries.GetSize(), 3);
    EXPECT_EQ(entries[0]->m_choiceKeys.GetSize(), 1);
    EXPECT_STREQ(entries[1]->m_kind, "Heading");
    EXPECT_EQ(entries[2]->m_choiceKeys.GetSize(), 1);
}

TEST(ScaledChoiceFactor, ReadsTheNumberFromTheThirdCharacter)
{
    bool scaled = false;
    EXPECT_EQ(vx::ScaledChoiceFactor("x/1000", &scaled), 1000);
    EXPECT_TRUE(scaled);
    EXPECT_EQ(vx::ScaledChoiceFactor("xy25"), 25); // the second character is not looked at
    EXPECT_EQ(vx::ScaledChoiceFactor("x"), 1);
    EXPECT_EQ(vx::ScaledChoiceFactor("x/"), 1);
    EXPECT_EQ(vx::ScaledChoiceFactor("x/abc", &scaled), 0);
    EXPECT_TRUE(scaled);
    EXPECT_EQ(vx::ScaledChoiceFactor("X/1000", &scaled), 0);
    EXPECT_FALSE(scaled);
    EXPECT_EQ(vx::ScaledChoiceFactor("", &scaled), 0);
    EXPECT_FALSE(scaled);
}

TEST(IniExpertDisplayText, ShowsCaptionsScaledNumbersOrTheValue)
{
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("Heading", "0", "12")), "");
    // A value of 1500 with x/1000 shows 1 as a whole number, 1.500000 as a float.
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "0", "1500", {"x/1000"}, {"in s"})), "1");
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "2", "1500", {"x/1000"}, {"in s"})), "1.500000");
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "0", "-1500", {"x/1000"}, {"in s"})), "-1");
    // A fixed choice whose key is the value shows its caption.
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "1", "B", {"A", "B"}, {"first", "second"})), "second");
    // Choices are taken in order: a scaled one met first wins over a later match.
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "0", "0", {"x/10", "0"}, {"tenths", "none"})), "0");
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "0", "0", {"0", "x/10"}, {"none", "tenths"})), "none");
    // A factor of 0 and a text type pass a scaled choice over.
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "0", "1500", {"x/0", "x/10"}, {"a", "b"})), "150");
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "1", "1500", {"x/1000"}, {"in s"})), "1500");
    // No fitting choice: the value as it stands.
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "1", "C", {"A", "B"}, {"first", "second"})), "C");
    EXPECT_STREQ(vx::IniExpertDisplayText(Entry("WINAT", "0", "77")), "77");
}

TEST(IniExpertStoredValue, MultipliesTheTypedNumberOfAScaledChoice)
{
    const KIniExpertEntry whole = Entry("WINAT", "0", "1500", {"7", "x/1000"}, {"seven", "in s"});
    EXPECT_STREQ(vx::IniExpertStoredValue(whole, 1, "3"), "3000");
    EXPECT_STREQ(vx::IniExpertStoredValue(whole, 1, "2.7"), "2000"); // atoi
    EXPECT_STREQ(vx::IniExpertStoredValue(whole, 0, "3"), "3");      // not a scaled choice
    EXPECT_STREQ(vx::IniExpertStoredValue(whole, -1, "3"), "3");
    EXPECT_STREQ(vx::IniExpertStoredValue(whole, 5, "3"), "3");
    // Whole numbers wrap at 32 bits.
    EXPECT_STREQ(vx::IniExpertStoredValue(whole, 1, "3000000"), "-1294967296");
    const KIniExpertEntry real = Entry("WINAT", "2", "1", {"x/100"}, {"hundredths"});
    EXPECT_STREQ(vx::IniExpertStoredValue(real, 0, "2.5"), "250.000000");
    const KIniExpertEntry zero = Entry("WINAT", "0", "1", {"x/0"}, {"none"});
    EXPECT_STREQ(vx::IniExpertStoredValue(zero, 0, "12"), "12");
    const KIniExpertEntry text = Entry("WINAT", "1", "1", {"x/10"}, {"tenths"});
    EXPECT_STREQ(vx::IniExpertStoredValue(text, 0, "12"), "12");
}

TEST(IniExpertScaledText, ShowsTheValueInTheUnitOfTheChosenScale)
{
    // The edit that opens after a scaled choice shows the value in its unit.
    const KIniExpertEntry grid = Entry("WINAT", "0", "2500", {"0", "x/1000", "x"}, {"none", "mm", "um"});
    EXPECT_STREQ(vx::IniExpertScaledText(grid, 1), "2");
    EXPECT_STREQ(vx::IniExpertScaledText(grid, 2), "2500");
    EXPECT_STREQ(vx::IniExpertScaledText(grid, 0), "2500"); // not a scaled choice
    EXPECT_STREQ(vx::IniExpertScaledText(grid, 3), "2500");
    const KIniExpertEntry real = Entry("WINAT", "2", "0.35", {"x/100"}, {"hundredths"});
    EXPECT_STREQ(vx::IniExpertScaledText(real, 0), "0.003500");
    const KIniExpertEntry zero = Entry("WINAT", "0", "12", {"x/0"}, {"none"});
    EXPECT_STREQ(vx::IniExpertScaledText(zero, 0), "12");
    // Typing the shown number back stores the value it came from.
    EXPECT_STREQ(vx::IniExpertStoredValue(grid, 1, vx::IniExpertScaledText(grid, 1)), "2000");
    EXPECT_STREQ(vx::IniExpertStoredValue(grid, 2, vx::IniExpertScaledText(grid, 2)), "2500");
}
