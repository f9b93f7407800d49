#include "platform/files/appdirs.h"
#include "platform/files/privateprofile.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string_view>
#include <string>

using vxtest::ReadBytes;
using vxtest::TempDir;
using vxtest::WriteBytes;

namespace {

std::string Get(const char* section, const char* key, const char* def, const std::string& file,
                DWORD size = 10000)
{
    std::string buffer(size, '\x7f');
    GetPrivateProfileStringA(section, key, def, buffer.data(), size, file.c_str());
    return buffer.c_str();
}

std::string List(const char* section, const std::string& file, DWORD* count = nullptr)
{
    char buffer[1000];
    std::memset(buffer, 'x', sizeof buffer);
    const DWORD n = GetPrivateProfileStringA(section, nullptr, "", buffer, sizeof buffer, file.c_str());
    if (count)
        *count = n;
    return std::string(buffer, n + 1);
}

const char* kCommented = "; settings of the suite\r\n"
                         "[PROCESS]\r\n"
                         "Partner=X\r\n"
                         "; the log\r\n"
                         "Level = 2 \r\n"
                         "\r\n"
                         "[MISC]\r\n"
                         "Name=\"quoted value\"\r\n";

} // namespace

TEST(PrivateProfile, ReadsWithoutRegardToCaseAndTrimsBlanks)
{
    TempDir dir;
    const std::string file = dir.Path("a.ini");
    WriteBytes(file, "[Sec]\n  Key = some value  \nOther=1\n");
    EXPECT_EQ(Get("sec", "KEY", "d", file), "some value");
    EXPECT_EQ(Get(" SEC ", " key ", "d", file), "some value");
    EXPECT_EQ(Get("Sec", "Missing", "dflt  ", file), "dflt");
    EXPECT_EQ(Get("Sec", "Missing", nullptr, file), "");
    EXPECT_EQ(Get("Sec", "Key", "d", dir.Path("none.ini")), "d");
}

TEST(PrivateProfile, StripsMatchingQuotesOnly)
{
    TempDir dir;
    const std::string file = dir.Path("q.ini");
    WriteBytes(file, "[S]\r\nd=\"x y\"\r\ns='q'\r\nhalf=\"x\r\nmixed=\"x'\r\n");
    EXPECT_EQ(Get("S", "d", "", file), "x y");
    EXPECT_EQ(Get("S", "s", "", file), "q");
    EXPECT_EQ(Get("S", "half", "", file), "\"x");
    EXPECT_EQ(Get("S", "mixed", "", file), "\"x'");
}

TEST(PrivateProfile, CutsValuesAndListsToTheBuffer)
{
    TempDir dir;
    const std::string file = dir.Path("c.ini");
    WriteBytes(file, "[S]\r\nlong=abcdefgh\r\nb=2\r\n[T]\r\n");
    char buffer[5];
    EXPECT_EQ(GetPrivateProfileStringA("S", "long", "", buffer, sizeof buffer, file.c_str()), 4u);
    EXPECT_STREQ(buffer, "abcd");

    DWORD n = 0;
    EXPECT_EQ(List("S", file, &n), std::string("long\0b\0\0", 8));
    EXPECT_EQ(n, 7u);
    EXPECT_EQ(List(nullptr, file, &n), std::string("S\0T\0\0", 5));

    char small[6];
    std::memset(small, 'x', sizeof small);
    EXPECT_EQ(GetPrivateProfileStringA("S", nullptr, "", small, sizeof small, file.c_str()), 4u);
    EXPECT_EQ(std::string(small, 6), std::string("long\0\0", 6));

    // An empty list gives the default.
    EXPECT_EQ(Get("T", nullptr, "none", file), "none");
}

TEST(PrivateProfile, ConvertsNumbersAsTheDesktopDid)
{
    TempDir dir;
    const std::string file = dir.Path("n.ini");
    WriteBytes(file, "[N]\r\nplain=42\r\ntail=55zz\r\nword=zz\r\nneg=-7\r\nhex=0x1F\r\nempty=\r\nbig=4294967297\r\n");
    const char* f = file.c_str();
    EXPECT_EQ(GetPrivateProfileIntA("N", "plain", 9, f), 42u);
    EXPECT_EQ(GetPrivateProfileIntA("N", "tail", 9, f), 55u);
    EXPECT_EQ(GetPrivateProfileIntA("N", "word", 9, f), 0u);
    EXPECT_EQ(static_cast<int>(GetPrivateProfileIntA("N", "neg", 9, f)), -7);
    EXPECT_EQ(GetPrivateProfileIntA("N", "hex", 9, f), 31u);
    EXPECT_EQ(GetPrivateProfileIntA("N", "empty", 9, f), 9u);
    EXPECT_EQ(GetPrivateProfileIntA("N", "missing", -1, f), 0xFFFFFFFFu);
    EXPECT_EQ(GetPrivateProfileIntA("N", "big", 9, f), 1u);
}

TEST(PrivateProfile, ReadsASectionAsZeroSeparatedLines)
{
    TempDir dir;
    const std::string file = dir.Path("s.ini");
    WriteBytes(file, "[S]\r\n; note\r\na = 1\r\n  no equals here \r\n\r\nb=x=y\r\n[Empty]\r\n\r\n; only a note\r\n");
    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    const DWORD n = GetPrivateProfileSectionA("S", buffer, sizeof buffer, file.c_str());
    // A line without "=" comes as it stands; the comment and the blank line
    // do not.
    EXPECT_EQ(n, 25u);
    EXPECT_EQ(std::string(buffer, 26), std::string("a=1\0no equals here\0b=x=y\0\0", 26));
    // The key list of the section leaves that line out.
    EXPECT_EQ(List("S", file), std::string("a\0b\0\0", 5));

    // Missing sections and sections of blank lines and comments copy nothing.
    std::strcpy(buffer, "untouched");
    EXPECT_EQ(GetPrivateProfileSectionA("Empty", buffer, sizeof buffer, file.c_str()), 0u);
    EXPECT_EQ(GetPrivateProfileSectionA("Missing", buffer, sizeof buffer, file.c_str()), 0u);
    EXPECT_STREQ(buffer, "untouched");

    char small[7];
    EXPECT_EQ(GetPrivateProfileSectionA("S", small, sizeof small, file.c_str()), 5u);
    EXPECT_EQ(std::string(small, 7), std::string("a=1\0n\0\0", 7));
}

TEST(PrivateProfile, WriteKeepsCommentsOrderAndOtherLines)
{
    TempDir dir;
    const std::string file = dir.Path("w.ini");
    WriteBytes(file, kCommented);

    ASSERT_TRUE(WritePrivateProfileStringA("process", "LEVEL", "3", file.c_str()));
    ASSERT_TRUE(WritePrivateProfileStringA("PROCESS", "New", "n", file.c_str()));
    ASSERT_TRUE(WritePrivateProfileStringA("Added", "k", "v", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "; settings of the suite\r\n"
                               "[PROCESS]\r\n"
                               "Partner=X\r\n"
                               "; the log\r\n"
                               "Level=3\r\n"
                               "New=n\r\n"
                               "\r\n"
                               "[MISC]\r\n"
                               "Name=\"quoted value\"\r\n"
                               "\r\n"
                               "[Added]\r\n"
                               "k=v\r\n");

    // A file with LF line ends is written back with CR LF.
    WriteBytes(file, "[A]\nx=1\n");
    ASSERT_TRUE(WritePrivateProfileStringA("A", "y", "2", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[A]\r\nx=1\r\ny=2\r\n");
}

TEST(PrivateProfile, CreatesAMissingFileButNoDirectory)
{
    TempDir dir;
    const std::string file = dir.Path("new.ini");
    ASSERT_TRUE(WritePrivateProfileStringA("S", "k", "v", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[S]\r\nk=v\r\n");
    EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "v", (dir.Path("sub/new.ini")).c_str()));
    EXPECT_FALSE(vxtest::PathExists(dir.Path("sub")));
}

TEST(PrivateProfile, NullValueDeletesTheKeyAndNullKeyEverySectionOfThatName)
{
    TempDir dir;
    const std::string file = dir.Path("d.ini");
    WriteBytes(file, "[A]\r\nk=1\r\nK=2\r\nj=3\r\n[B]\r\nk=4\r\n; about A\r\n[a]\r\nk=5\r\n[C]\r\nc=6\r\n");

    ASSERT_TRUE(WritePrivateProfileStringA("A", "k", nullptr, file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[A]\r\nj=3\r\n[B]\r\nk=4\r\n; about A\r\n[a]\r\nk=5\r\n[C]\r\nc=6\r\n");

    ASSERT_TRUE(WritePrivateProfileStringA("a", nullptr, "ignored", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[B]\r\nk=4\r\n; about A\r\n[C]\r\nc=6\r\n");
    EXPECT_EQ(Get("A", "k", "gone", file), "gone");

    // Deleting what is not there succeeds and leaves the file alone.
    struct stat before {};
    stat(file.c_str(), &before);
    EXPECT_TRUE(WritePrivateProfileStringA("B", "none", nullptr, file.c_str()));
    EXPECT_TRUE(WritePrivateProfileStringA("None", nullptr, nullptr, file.c_str()));
    struct stat after {};
    stat(file.c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_TRUE(WritePrivateProfileStringA("S", nullptr, nullptr, (dir.Path("missing.ini")).c_str()));
    EXPECT_FALSE(vxtest::PathExists(dir.Path("missing.ini")));
}

TEST(PrivateProfile, RefusesWhatCouldNotBeReadBack)
{
    TempDir dir;
    const std::string file = dir.Path("r.ini");
    WriteBytes(file, "[S]\r\nk=v\r\n");
    const char* f = file.c_str();
    EXPECT_FALSE(WritePrivateProfileStringA(nullptr, "k", "v", f));
    EXPECT_FALSE(WritePrivateProfileStringA("S]x", "k", "v", f));
    EXPECT_FALSE(WritePrivateProfileStringA("S", "a=b", "v", f));
    EXPECT_FALSE(WritePrivateProfileStringA("S", "[k]", "v", f));
    EXPECT_FALSE(WritePrivateProfileStringA("S", ";k", "v", f));
    EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "two\r\nlines", f));
    EXPECT_FALSE(WritePrivateProfileStringA("S\n", "k", "v", f));
    EXPECT_EQ(ReadBytes(file), "[S]\r\nk=v\r\n");
}

TEST(PrivateProfile, EntriesBeforeTheFirstHeaderAreKeptButNeverRead)
{
    TempDir dir;
    const std::string file = dir.Path("p.ini");
    WriteBytes(file, "k=early\r\n[S]\r\nk=late\r\n");
    EXPECT_EQ(Get("S", "k", "", file), "late");
    EXPECT_EQ(Get("", "k", "none", file), "none");
    ASSERT_TRUE(WritePrivateProfileStringA("S", "k", "new", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "k=early\r\n[S]\r\nk=new\r\n");
}

TEST(PrivateProfile, DuplicateSectionsAndKeysUseTheFirst)
{
    TempDir dir;
    const std::string file = dir.Path("dup.ini");
    WriteBytes(file, "[A]\r\nk=1\r\nk=2\r\n[A]\r\nk=3\r\nonly=4\r\n");
    EXPECT_EQ(Get("A", "k", "", file), "1");
    EXPECT_EQ(Get("A", "only", "none", file), "none");
    ASSERT_TRUE(WritePrivateProfileStringA("A", "k", "9", file.c_str()));
    ASSERT_TRUE(WritePrivateProfileStringA("A", "only", "5", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[A]\r\nk=9\r\nk=2\r\nonly=5\r\n[A]\r\nk=3\r\nonly=4\r\n");
}

TEST(PrivateProfile, EqualsSignsAndEmptyValuesSurvive)
{
    TempDir dir;
    const std::string file = dir.Path("e.ini");
    WriteBytes(file, "[S]\r\na=b=c\r\nempty=\r\n");
    EXPECT_EQ(Get("S", "a", "", file), "b=c");
    EXPECT_EQ(Get("S", "empty", "dflt", file), "");
    EXPECT_EQ(GetPrivateProfileIntA("S", "empty", 7, file.c_str()), 7u);
    ASSERT_TRUE(WritePrivateProfileStringA("S", "x", "1=2", file.c_str()));
    ASSERT_TRUE(WritePrivateProfileStringA("S", "blank", "", file.c_str()));
    EXPECT_EQ(Get("S", "x", "", file), "1=2");
    EXPECT_EQ(Get("S", "blank", "dflt", file), "");
    EXPECT_EQ(ReadBytes(file), "[S]\r\na=b=c\r\nempty=\r\nx=1=2\r\nblank=\r\n");
}

TEST(PrivateProfile, ALineOf5000BytesReadsWholeAndSurvivesAWrite)
{
    TempDir dir;
    const std::string file = dir.Path("long.ini");
    const std::string value(4996, 'v');
    WriteBytes(file, "[S]\r\nkey=" + value + "\r\n");
    EXPECT_EQ(Get("S", "key", "", file), value);
    ASSERT_TRUE(WritePrivateProfileStringA("S", "other", "1", file.c_str()));
    EXPECT_EQ(ReadBytes(file), "[S]\r\nkey=" + value + "\r\nother=1\r\n");
}

TEST(PrivateProfile, BinaryJunkIsReadSafelyAndKeptOnWrite)
{
    TempDir dir;
    const std::string file = dir.Path("junk.ini");
    std::mt19937 random(7);
    std::string junk(20000, '\0');
    for (char& c : junk)
        c = static_cast<char>(random() & 0xFF);
    WriteBytes(file, junk);

    EXPECT_EQ(Get("Written", "k", "dflt", file), "dflt");
    EXPECT_EQ(GetPrivateProfileIntA("Written", "k", 3, file.c_str()), 3u);
    ASSERT_TRUE(WritePrivateProfileStringA("Written", "k", "v", file.c_str()));
    EXPECT_EQ(Get("Written", "k", "dflt", file), "v");

    // Only line ends may change: every other byte of the junk is still there.
    auto strip = [](std::string s) {
        std::erase(s, '\r');
        std::erase(s, '\n');
        return s;
    };
    const std::string now = ReadBytes(file);
    EXPECT_EQ(strip(now).substr(0, strip(junk).size()), strip(junk));
}

TEST(PrivateProfile, AnUnreadableFileGivesDefaultsAndIsNotReplaced)
{
    TempDir dir;
    chmod(dir.Path().c_str(), 0777);
    const std::string file = dir.Path("locked.ini");
    EXPECT_TRUE(vxtest::RunUnprivileged([&] {
        WriteBytes(file, "[S]\r\nk=secret\r\n");
        chmod(file.c_str(), 0);
        EXPECT_EQ(Get("S", "k", "dflt", file), "dflt");
        EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "new", file.c_str()));
        EXPECT_FALSE(WritePrivateProfileStringA("S", nullptr, nullptr, file.c_str()));
        // A read-only file is not written either, as the desktop refused.
        chmod(file.c_str(), 0444);
        EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "new", file.c_str()));
    }));
    chmod(file.c_str(), 0644);
    EXPECT_EQ(ReadBytes(file), "[S]\r\nk=secret\r\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);
}

TEST(PrivateProfile, AnUnwritableDirectoryFailsTheWriteAndKeepsTheFile)
{
    TempDir dir;
    chmod(dir.Path().c_str(), 0777);
    const std::string sub = dir.Path("ro");
    const std::string file = sub + "/s.ini";
    EXPECT_TRUE(vxtest::RunUnprivileged([&] {
        ASSERT_EQ(mkdir(sub.c_str(), 0755), 0);
        WriteBytes(file, "[S]\r\nk=old\r\n");
        chmod(sub.c_str(), 0555);
        EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "new", file.c_str()));
        EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "new", (sub + "/other.ini").c_str()));
        EXPECT_EQ(Get("S", "k", "", file), "old");
    }));
    EXPECT_EQ(ReadBytes(file), "[S]\r\nk=old\r\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(sub), {}), 1);
}

TEST(PrivateProfile, KeepsPermissionsAndFollowsLinks)
{
    TempDir dir;
    const std::string file = dir.Path("target.ini");
    const std::string link = dir.Path("link.ini");
    WriteBytes(file, "[S]\r\n");
    chmod(file.c_str(), 0640);
    ASSERT_EQ(symlink(file.c_str(), link.c_str()), 0);
    ASSERT_TRUE(WritePrivateProfileStringA("S", "k", "v", link.c_str()));
    struct stat st {};
    ASSERT_EQ(lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    ASSERT_EQ(stat(file.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    EXPECT_EQ(ReadBytes(file), "[S]\r\nk=v\r\n");
}

TEST(PrivateProfile, ABareFileNameLiesInTheWindowsDirectory)
{
    TempDir dir;
    vx::SetWindowsDirectory(dir.Path());
    EXPECT_TRUE(WritePrivateProfileStringA("S", "k", "v", "BARE.INI"));
    EXPECT_EQ(Get("S", "k", "", "BARE.INI"), "v");
    vx::SetWindowsDirectory("");
    EXPECT_EQ(ReadBytes(dir.Path("BARE.INI")), "[S]\r\nk=v\r\n");
}

namespace {

// One writer process: 1000 writes of its own keys into five shared sections
// and of one key that both write.
void Writer(const std::string& file, int id)
{
    for (int i = 0; i < 1000; ++i) {
        const std::string section = "S" + std::to_string(i % 5);
        const std::string key = "C" + std::to_string(id) + "_" + std::to_string(i % 40);
        const std::string value = std::to_string(i);
        if (!WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), file.c_str()))
            _exit(2);
        const std::string both = std::to_string(id) + ":" + value;
        if (!WritePrivateProfileStringA("Shared", "Last", both.c_str(), file.c_str()))
            _exit(2);
    }
    _exit(0);
}

bool Digits(std::string_view s)
{
    return !s.empty() && s.find_first_not_of("0123456789") == std::string_view::npos;
}

// A line the writers can have made: a header, one of their entries, or the
// empty line in front of a new section.
bool KnownLine(std::string_view line)
{
    if (line.empty() || line == "[Shared]")
        return true;
    if (line.size() == 4 && line.substr(0, 2) == "[S" && line[2] >= '0' && line[2] <= '4' && line[3] == ']')
        return true;
    if (line.substr(0, 5) == "Last=")
        return line.size() > 7 && (line[5] == '0' || line[5] == '1') && line[6] == ':' && Digits(line.substr(7));
    const auto eq = line.find('=');
    return line.size() > 3 && line[0] == 'C' && (line[1] == '0' || line[1] == '1') && line[2] == '_' &&
           eq != std::string_view::npos && Digits(line.substr(3, eq - 3)) && Digits(line.substr(eq + 1));
}

bool WellFormed(const std::string& text)
{
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t end = text.find("\r\n", pos);
        if (end == std::string::npos)
            return false; // a cut last line
        if (!KnownLine(std::string_view(text).substr(pos, end - pos)))
            return false;
        pos = end + 2;
    }
    return true;
}

} // namespace

TEST(PrivateProfile, TwoProcessesWritingOneFileLoseNothing)
{
    TempDir dir;
    const std::string file = dir.Path("shared.ini");
    std::fflush(nullptr);
    pid_t writers[2];
    for (int id = 0; id < 2; ++id) {
        writers[id] = fork();
        ASSERT_GE(writers[id], 0);
        if (writers[id] == 0)
            Writer(file, id);
    }

    // Watch the file while they write: it is always whole.
    int running = 2;
    int statuses[2] = {-1, -1};
    int looks = 0;
    bool seen = false;
    while (running > 0) {
        const std::string text = ReadBytes(file);
        if (!text.empty() || vxtest::PathExists(file)) {
            seen = seen || !text.empty();
            ++looks;
            ASSERT_TRUE(WellFormed(text)) << text;
        } else {
            ASSERT_FALSE(seen) << "the file vanished";
        }
        for (int id = 0; id < 2; ++id) {
            if (statuses[id] == -1 && waitpid(writers[id], &statuses[id], WNOHANG) == writers[id])
                --running;
        }
    }
    for (const int status : statuses) {
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    EXPECT_GT(looks, 10);

    const std::string text = ReadBytes(file);
    EXPECT_TRUE(WellFormed(text));
    for (int id = 0; id < 2; ++id) {
        for (int k = 0; k < 40; ++k) {
            const std::string section = "S" + std::to_string(k % 5);
            const std::string key = "C" + std::to_string(id) + "_" + std::to_string(k);
            EXPECT_EQ(Get(section.c_str(), key.c_str(), "", file), std::to_string(960 + k)) << key;
        }
    }
    const std::string last = Get("Shared", "Last", "", file);
    EXPECT_TRUE(last == "0:999" || last == "1:999") << last;
}
