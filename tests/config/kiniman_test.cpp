#include "config/kiniman.h"
#include "platform/windows/messagebox.h"
#include "platform/files/privateprofile.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <clocale>
#include <cstring>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>

using vxtest::ReadBytes;
using vxtest::TempDir;
using vxtest::WriteBytes;

namespace {

// Entries of a section in iteration order, "k=v;" each.
std::string Entries(KIniSection* section)
{
    std::string all;
    CString key, value;
    int more;
    section->InitQuery();
    do {
        more = section->GetNextEntry(key, value);
        if (!key.IsEmpty())
            all += std::string(key) + "=" + std::string(value) + ";";
    } while (more);
    return all;
}

// A document that reads `text` from a file in `dir`.
void Load(KIniMan& ini, const TempDir& dir, const std::string& text, const char* name = "doc.ini")
{
    WriteBytes(dir.Path(name), text);
    ASSERT_TRUE(ini.ReadFile((dir.Path(name)).c_str(), 0));
}

} // namespace

TEST(KIniSection, WalksEntriesWithTheLastOneComingWithZero)
{
    KIniSection section("S");
    CString key = "x", value = "y";
    section.InitQuery();
    EXPECT_EQ(section.GetNextEntry(key, value), 0);
    EXPECT_EQ(key, "");
    EXPECT_EQ(value, "");

    section.SetValue("a", "1");
    section.SetValue("b", "2");
    section.InitQuery();
    EXPECT_NE(section.GetNextEntry(key, value), 0);
    EXPECT_EQ(key, "a");
    EXPECT_EQ(section.GetNextEntry(key, value), 0);
    EXPECT_EQ(key, "b");
    EXPECT_EQ(value, "2");
    // Past the end the walk stays empty.
    EXPECT_EQ(section.GetNextEntry(key, value), 0);
    EXPECT_EQ(key, "");

    // Removing the entry under the cursor does not derail the walk.
    section.SetValue("c", "3");
    section.InitQuery();
    section.GetNextEntry(key, value);
    section.RemoveEntry("b");
    EXPECT_EQ(section.GetNextEntry(key, value), 0);
    EXPECT_EQ(key, "c");
}

TEST(KIniSection, KeysCompareWithCase)
{
    KIniSection section("S");
    section.SetValue("Key", "1");
    section.SetValue("key", "2");
    CString value = "untouched";
    EXPECT_FALSE(section.GetValue("KEY", value));
    EXPECT_EQ(value, "untouched");
    ASSERT_TRUE(section.GetValue("key", value));
    EXPECT_EQ(value, "2");
    EXPECT_EQ(section.GetSection(), "S");
}

TEST(KIniMan, ParsesTheFileFormat)
{
    TempDir dir;
    KIniMan ini;
    Load(ini, dir,
         "[First] trailing text\r\n"
         " key = value \r\n"
         "no equals sign\r\n"
         "; comment=with equals\r\n"
         "# hash\r\n"
         "\r\n"
         "[Broken header\r\n"
         "after=broken\r\n"
         "[second]\r\n"
         "k=1\r\n"
         "k=2\n"
         "a=b=c\r\n"
         "empty=\r\n");
    ASSERT_EQ(ini.GetAnzSections(), 2);
    EXPECT_EQ(ini.GetSectionAt(0)->GetSection(), "First");
    EXPECT_EQ(Entries(ini.GetSectionAt(0)), " key = value ;; comment=with equals;after=broken;");
    EXPECT_EQ(ini.ReadString("SECOND", "k", "d"), "2");
    EXPECT_EQ(ini.ReadString("second", "a", "d"), "b=c");
    EXPECT_EQ(ini.ReadString("second", "K", "d"), "d");
    EXPECT_EQ(ini.ReadString("second", "empty", "d"), "");
    EXPECT_EQ(ini.ReadInt("second", "empty", 7), 7);
    EXPECT_DOUBLE_EQ(ini.ReadDouble("second", "empty", 1.5), 1.5);
    EXPECT_EQ(ini.ReadString("missing", "k", "d"), "d");
}

TEST(KIniMan, DuplicateSectionsAreBothKeptAndTheFirstIsFound)
{
    TempDir dir;
    {
        KIniMan ini;
        Load(ini, dir, "[A]\r\nx=1\r\n[B]\r\n[a]\r\nx=2\r\ny=3\r\n");
        EXPECT_EQ(ini.GetAnzSections(), 3);
        EXPECT_EQ(ini.ReadString("A", "x", ""), "1");
        EXPECT_EQ(ini.ReadString("A", "y", "none"), "none");
        CString value;
        EXPECT_TRUE(ini.GetSectionAt(2)->GetValue("y", value));
        EXPECT_EQ(value, "3");
    }
    EXPECT_EQ(ReadBytes(dir.Path("doc.ini")), "[A]\r\nx=1\r\n\r\n[B]\r\n\r\n[a]\r\nx=2\r\ny=3\r\n");
}

TEST(KIniMan, EntriesBeforeTheFirstHeaderAreUnreachableButWrittenBack)
{
    TempDir dir;
    KIniMan ini;
    Load(ini, dir, "early=1\r\nno equals\r\n=x\r\n[S]\r\nk=v\r\n");
    EXPECT_EQ(ini.GetAnzSections(), 1);
    EXPECT_EQ(ini.ReadString("", "early", "none"), "none");
    EXPECT_EQ(ini.ReadString("S", "early", "none"), "none");
    ASSERT_TRUE(ini.Flush());
    EXPECT_EQ(ReadBytes(dir.Path("doc.ini")), "early=1\r\n=x\r\n[S]\r\nk=v\r\n");
}

TEST(KIniMan, FlushWritesTheNormalForm)
{
    TempDir dir;
    KIniMan ini;
    ini.ReadFile((dir.Path("new.ini")).c_str(), 0);
    ini.WriteString("One", "b", "2");
    ini.WriteString("One", "a", "1");
    ini.CreateSection("Empty");
    ini.WriteString("Two", "", "skipped");
    ini.WriteString("Two", "multi", "line1\nline2");
    ASSERT_TRUE(ini.Flush());
    EXPECT_EQ(ReadBytes(dir.Path("new.ini")),
              "[One]\r\nb=2\r\na=1\r\n\r\n[Empty]\r\n\r\n[Two]\r\nmulti=line1\r\nline2\r\n");

    // The value with a line feed comes back cut at it.
    KIniMan again;
    again.ReadFile((dir.Path("new.ini")).c_str(), 0);
    EXPECT_EQ(again.ReadString("Two", "multi", ""), "line1");
}

TEST(KIniMan, TypedValuesKeepTheirOddForms)
{
    TempDir dir;
    KIniMan ini;
    ini.ReadFile((dir.Path("t.ini")).c_str(), 0);
    ini.WriteInt("T", "int", -12);
    ini.WriteDouble("T", "double", 2.5);
    ini.WriteFloat("T", "float", 0.1f);
    ini.WriteChar("T", "char", 'Q');
    ini.WriteString("T", "word", "abc");
    ini.WriteString("T", "huge", "99999999999");

    EXPECT_EQ(ini.ReadString("T", "double", ""), "2.500000l");
    EXPECT_DOUBLE_EQ(ini.ReadDouble("T", "double", 0), 2.5);
    EXPECT_EQ(ini.ReadString("T", "float", ""), "0.100000");
    EXPECT_FLOAT_EQ(ini.ReadFloat("T", "float", 9.f), 0.1f);
    EXPECT_FLOAT_EQ(ini.ReadFloat("T", "missing", 9.f), 9.f);
    EXPECT_EQ(ini.ReadString("T", "char", ""), "Q");
    EXPECT_EQ(ini.ReadChar("T", "char", 'z'), 'z');
    EXPECT_EQ(ini.ReadInt("T", "int", 0), -12);
    EXPECT_EQ(ini.ReadInt("T", "word", 5), 0);
    EXPECT_EQ(ini.ReadInt("T", "huge", 5), 2147483647);
}

TEST(KIniMan, NumbersIgnoreTheHostLocale)
{
    // Build a Polish locale for this test when the system has none.
    TempDir dir;
    std::optional<vxtest::ScopedEnv> locpath;
    if (!std::setlocale(LC_ALL, "pl_PL.UTF-8") && !std::setlocale(LC_ALL, "de_DE.UTF-8")) {
        const std::string command = "localedef -i pl_PL -f ISO-8859-2 " + (dir.Path("pl_PL")) + " >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0)
            GTEST_SKIP() << "no locale with a decimal comma, and localedef cannot make one";
        locpath.emplace("LOCPATH", dir.Path());
        ASSERT_TRUE(std::setlocale(LC_ALL, "pl_PL"));
    }
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 2.5);
    ASSERT_STREQ(probe, "2,5");
    KIniMan ini;
    ini.WriteDouble("T", "d", 2.5);
    ini.WriteFloat("T", "f", 1.25f);
    const CString d = ini.ReadString("T", "d", "");
    const double back = ini.ReadDouble("T", "d", 0);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(d, "2.500000l");
    EXPECT_DOUBLE_EQ(back, 2.5);
    EXPECT_EQ(ini.ReadString("T", "f", ""), "1.250000");
}

TEST(KIniMan, NullValueDeletesTheKeyAndCreatesNothing)
{
    KIniMan ini;
    ini.WriteString("S", "k", "v");
    ini.WriteString("S", "k", nullptr);
    EXPECT_EQ(ini.ReadString("S", "k", "gone"), "gone");
    ini.WriteString("Missing", "k", nullptr);
    EXPECT_EQ(ini.GetAnzSections(), 1);
    EXPECT_EQ(ini.CheckAndRemove("Missing", "k", nullptr), 1);
    EXPECT_EQ(ini.CheckAndRemove("S", "k", "v"), 0);
}

TEST(KIniMan, NullKeyDeletesSectionsButSkipsTheNeighbourThatSlidIn)
{
    KIniMan ini;
    ini.CreateSection("A")->SetValue("n", "1");
    ini.CreateSection("a")->SetValue("n", "2");
    ini.CreateSection("B");
    ini.CreateSection("A")->SetValue("n", "3");
    ini.WriteInt("A", nullptr, 5);
    // The first A went; the second slid into its place and was skipped; the
    // third was met again after B.
    ASSERT_EQ(ini.GetAnzSections(), 2);
    EXPECT_EQ(ini.GetSectionAt(0)->GetSection(), "a");
    EXPECT_EQ(ini.GetSectionAt(1)->GetSection(), "B");
    EXPECT_EQ(ini.ReadString("A", "n", ""), "2");
    EXPECT_EQ(ini.ReadString("A", "", "none"), "none");

    ini.WriteString("B", nullptr, "x");
    EXPECT_EQ(ini.GetAnzSections(), 1);
}

TEST(KIniMan, NullKeyOnAMissingSectionStoresUnderTheEmptyKey)
{
    TempDir dir;
    KIniMan ini;
    ini.ReadFile((dir.Path("n.ini")).c_str(), 0);
    ini.WriteString("S", nullptr, "x");
    EXPECT_EQ(ini.ReadString("S", "", "none"), "x");
    ASSERT_TRUE(ini.Flush());
    EXPECT_EQ(ReadBytes(dir.Path("n.ini")), "[S]\r\n");
}

TEST(KIniMan, ReadSectionFillsTheProfileLayout)
{
    KIniMan ini;
    ini.WriteString("S", "a", "1");
    ini.WriteString("S", "bb", "22");
    ini.CreateSection("Empty");
    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(ini.ReadSection("S", buffer, sizeof buffer), 9);
    EXPECT_EQ(std::string(buffer, 11), std::string("a=1\0bb=22\0\0", 11));

    EXPECT_EQ(ini.ReadSection("Empty", buffer, sizeof buffer), 1);
    EXPECT_EQ(std::string(buffer, 3), std::string("=\0\0", 3));

    std::strcpy(buffer, "untouched");
    EXPECT_EQ(ini.ReadSection("Missing", buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "untouched");

    // The bound is looked at after an entry: with 3 bytes the first entry
    // still goes in whole, and the walk stops there.
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(ini.ReadSection("S", buffer, 3), 3);
    EXPECT_EQ(std::string(buffer, 6), std::string("a=1\0\0x", 6));
}

TEST(KIniMan, LongLinesArriveInPiecesAndLongFieldsAreCut)
{
    TempDir dir;
    const std::string longValue(4996, 'v');
    // The second piece of this line holds a "=" and so becomes an entry.
    const std::string split = "s=" + std::string(997, 'w') + "tail=end";
    KIniMan ini;
    Load(ini, dir,
         "[" + std::string(600, 'N') + "]\r\n"
         "key=" + longValue + "\r\n" +
         std::string(600, 'K') + "=v\r\n" + split + "\r\nafter=1\r\n");
    ASSERT_EQ(ini.GetAnzSections(), 1);
    KIniSection* section = ini.GetSectionAt(0);
    EXPECT_EQ(section->GetSection(), CString(std::string(499, 'N')));
    EXPECT_EQ(ini.ReadString(section->GetSection(), "key", ""), CString(std::string(499, 'v')));
    EXPECT_EQ(ini.ReadString(section->GetSection(), std::string(499, 'K').c_str(), ""), "v");
    EXPECT_EQ(ini.ReadString(section->GetSection(), "s", ""), CString(std::string(499, 'w')));
    EXPECT_EQ(ini.ReadString(section->GetSection(), "tail", ""), "end");
    EXPECT_EQ(ini.ReadString(section->GetSection(), "after", ""), "1");
}

TEST(KIniMan, BinaryJunkReadsAndFlushesAsAWellFormedFile)
{
    TempDir dir;
    std::mt19937 random(11);
    std::string junk(50000, '\0');
    for (char& c : junk)
        c = static_cast<char>(random() & 0xFF);
    // A few real lines among the junk.
    junk += "\n[Real]\nkey=value\n";
    KIniMan ini;
    Load(ini, dir, junk);
    EXPECT_EQ(ini.ReadString("Real", "key", ""), "value");
    ini.WriteInt("Real", "n", 1);
    ASSERT_TRUE(ini.Flush());

    // Every line of the result is a header, an entry or the empty line
    // between sections, and ends in CR LF.
    const std::string text = ReadBytes(dir.Path("doc.ini"));
    std::size_t pos = 0;
    int lines = 0;
    while (pos < text.size()) {
        const std::size_t end = text.find("\r\n", pos);
        ASSERT_NE(end, std::string::npos);
        const std::string line = text.substr(pos, end - pos);
        EXPECT_TRUE(line.empty() || line[0] == '[' || line.find('=') != std::string::npos) << line;
        pos = end + 2;
        ++lines;
    }
    EXPECT_GT(lines, 3);
    KIniMan again;
    again.ReadFile((dir.Path("doc.ini")).c_str(), 0);
    EXPECT_EQ(again.ReadInt("Real", "n", 0), 1);
}

TEST(KIniMan, AnUnreadableFileLeavesAnEmptyDocumentAndIsNotOverwritten)
{
    TempDir dir;
    chmod(dir.Path().c_str(), 0777);
    const std::string file = dir.Path("locked.ini");
    EXPECT_TRUE(vxtest::RunUnprivileged([&] {
        WriteBytes(file, "[S]\r\nk=precious\r\n");
        chmod(file.c_str(), 0);
        KIniMan ini;
        EXPECT_EQ(ini.ReadFile(file.c_str(), 0), 0);
        EXPECT_EQ(ini.GetAnzSections(), 0);
        EXPECT_EQ(ini.ReadString("S", "k", "default"), "default");
        ini.WriteString("S", "other", "1");
        EXPECT_EQ(ini.Flush(), 0);
        EXPECT_EQ(ini.ReadString("S", "other", ""), "1");
    }));
    chmod(file.c_str(), 0644);
    EXPECT_EQ(ReadBytes(file), "[S]\r\nk=precious\r\n");
}

TEST(KIniMan, AFailedFlushKeepsTheDocumentAndTheFile)
{
    TempDir dir;
    chmod(dir.Path().c_str(), 0777);
    const std::string sub = dir.Path("ro");
    const std::string file = sub + "/s.ini";
    EXPECT_TRUE(vxtest::RunUnprivileged([&] {
        ASSERT_EQ(mkdir(sub.c_str(), 0755), 0);
        WriteBytes(file, "[S]\r\nk=old\r\n");
        KIniMan ini;
        ASSERT_TRUE(ini.ReadFile(file.c_str(), 0));
        ini.WriteString("S", "k", "new");
        chmod(sub.c_str(), 0555);
        EXPECT_EQ(ini.Flush(), 0);
        EXPECT_EQ(ReadBytes(file), "[S]\r\nk=old\r\n");
        EXPECT_EQ(ini.ReadString("S", "k", ""), "new");
        chmod(sub.c_str(), 0755);
        EXPECT_EQ(ini.Flush(), 1);
        EXPECT_EQ(ReadBytes(file), "[S]\r\nk=new\r\n");
    }));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(sub), {}), 1);
}

TEST(KIniMan, ReadFileFlushesTheOldFileOnlyWhenAsked)
{
    TempDir dir;
    WriteBytes(dir.Path("a.ini"), "[A]\r\nk=1\r\n");
    WriteBytes(dir.Path("b.ini"), "[B]\r\nk=2\r\n");
    KIniMan ini;
    ini.ReadFile((dir.Path("a.ini")).c_str(), 0);
    ini.WriteString("A", "k", "changed");
    ini.ReadFile((dir.Path("b.ini")).c_str(), 0);
    EXPECT_EQ(ReadBytes(dir.Path("a.ini")), "[A]\r\nk=1\r\n");
    EXPECT_EQ(ini.ReadString("A", "k", "none"), "none");
    ini.WriteString("B", "k", "changed");
    ini.ReadFile((dir.Path("missing.ini")).c_str(), 1);
    EXPECT_EQ(ReadBytes(dir.Path("b.ini")), "[B]\r\nk=changed\r\n");
    EXPECT_EQ(ini.GetAnzSections(), 0);
}

TEST(KIniMan, TheDestructorWritesAndAnUnboundDocumentFailsQuietly)
{
    TempDir dir;
    {
        KIniMan ini;
        ini.ReadFile((dir.Path("later.ini")).c_str(), 0);
        ini.WriteString("S", "k", "v");
    }
    EXPECT_EQ(ReadBytes(dir.Path("later.ini")), "[S]\r\nk=v\r\n");
    KIniMan unbound;
    unbound.WriteString("S", "k", "v");
    EXPECT_EQ(unbound.Flush(), 0);
}

TEST(KIniMan, ShowsTheWaitCursorWhileReadingAndWriting)
{
    TempDir dir;
    int busy = 0;
    int calls = 0;
    vx::SetWaitCursorHook([&](bool on) {
        busy += on ? 1 : -1;
        ++calls;
    });
    {
        KIniMan ini;
        ini.ReadFile((dir.Path("w.ini")).c_str(), 0);
        ini.Flush();
    }
    vx::SetWaitCursorHook(nullptr);
    EXPECT_EQ(busy, 0);
    EXPECT_GE(calls, 6);
}

TEST(KIniMan, KeepsPermissionsAndWaitsForAPrivateProfileWriter)
{
    TempDir dir;
    const std::string file = dir.Path("shared.ini");
    WriteBytes(file, "[S]\r\n");
    chmod(file.c_str(), 0600);
    KIniMan ini;
    ini.ReadFile(file.c_str(), 0);
    ini.WriteString("S", "doc", "1");
    ASSERT_TRUE(ini.Flush());
    // The two writers agree on the file: each sees the other's last word.
    ASSERT_TRUE(WritePrivateProfileStringA("S", "disk", "2", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[S]\r\ndoc=1\r\ndisk=2\r\n");
    struct stat st {};
    stat(file.c_str(), &st);
    EXPECT_EQ(st.st_mode & 07777, 0600u);
}
