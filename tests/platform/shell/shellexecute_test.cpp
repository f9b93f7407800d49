#include "platform/shell/shellexecute.h"

#include "platform/files/hostpath.h"

#include "support/printers.h"
#include "support/tempdir.h"
#include "support/testenv.h"
#include "support/testlocale.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using Args = std::vector<std::string>;

// Records the links handed to the desktop; answers `answer`.
class Links {
public:
    explicit Links(bool answer = true)
    {
        m_old = vx::SetUriLauncher([this, answer](const std::string& uri) {
            opened.push_back(uri);
            return answer;
        });
    }
    ~Links() { vx::SetUriLauncher(m_old); }
    Args opened;

private:
    vx::UriLauncher m_old;
};

int ResultOf(HINSTANCE h)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(h));
}

// Waits for a file another process writes.
std::string AwaitFile(const std::string& path)
{
    for (int i = 0; i < 500; ++i) {
        const std::string text = vxtest::ReadBytes(path);
        if (!text.empty() && text.back() == '\n')
            return text;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return "";
}

} // namespace

// The rules of the Windows C runtime, with the cases of its documentation.
TEST(SplitCommandLine, FollowsTheWindowsRuntime)
{
    const struct {
        const char* line;
        Args args;
    } cases[] = {
        {R"("a b c" d e)", {"a b c", "d", "e"}},
        {R"("ab\"c" "\\" d)", {"ab\"c", "\\", "d"}},
        {R"(a\\\b d"e f"g h)", {"a\\\\\\b", "de fg", "h"}},
        {R"(a\\\"b c d)", {"a\\\"b", "c", "d"}},
        {R"(a\\\\"b c" d e)", {"a\\\\b c", "d", "e"}},
        {R"(a"b"" c d)", {"ab\" c d"}},
        {R"(@@C:\Projekte\Demo Neu)", {"@@C:\\Projekte\\Demo", "Neu"}},
        {R"("@@C:\Projekte\Demo Neu")", {"@@C:\\Projekte\\Demo Neu"}},
        {"  \t a\t\tb  ", {"a", "b"}},
        {R"(C:\dir\ x)", {"C:\\dir\\", "x"}},
        {R"("")", {""}},
        {R"(a "" b)", {"a", "", "b"}},
        {R"("unclosed quote)", {"unclosed quote"}},
        {"", {}},
        {" \t ", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(vx::SplitCommandLine(c.line), c.args);
    }
}

// A program starts on its own, with its parameters split and in the given
// directory, and is no child of the starter.
TEST(ShellExecute, StartsAProgramDetachedWithItsParameters)
{
    vxtest::TempDir dir;
    dir.MakeDir("Work Dir");
    const std::string report = dir.Path("report.txt");
    dir.Write("IT", "#!/bin/sh\n"
                    "{ pwd; for a in \"$@\"; do echo \"[$a]\"; done; echo \"parent $PPID\"; } > '" +
                        report + ".part'\nmv '" + report + ".part' '" + report + "'\n");
    ASSERT_EQ(chmod(dir.Path("IT").c_str(), 0755), 0);
    vx::SetDriveRoot('T', dir.Path());
    const HINSTANCE h =
        ShellExecuteA(nullptr, "open", "T:\\it", "@@C:\\Projekte\\Demo \"two words\"", "T:\\work dir", SW_HIDE);
    EXPECT_GT(ResultOf(h), 32);
    const std::string text = AwaitFile(report);
    vx::SetDriveRoot('T', "");
    ASSERT_FALSE(text.empty());
    const std::string expected =
        dir.Path("Work Dir") + "\n[@@C:\\Projekte\\Demo]\n[two words]\nparent ";
    EXPECT_EQ(text.substr(0, expected.size()), expected) << text;
    EXPECT_NE(text, expected + std::to_string(getpid()) + "\n") << "detached, not our child";
}

TEST(ShellExecute, AnswersTheShellsErrorCodes)
{
    vxtest::TempDir dir;
    dir.Write("broken", "\x7F" "ELF but not really");
    ASSERT_EQ(chmod(dir.Path("broken").c_str(), 0755), 0);
    dir.Write("plan.txt", "x");
    Links links;
    EXPECT_EQ(ResultOf(ShellExecuteA(nullptr, nullptr, nullptr, nullptr, nullptr, 0)), SE_ERR_FNF);
    EXPECT_EQ(ResultOf(ShellExecuteA(nullptr, nullptr, "", nullptr, nullptr, 0)), SE_ERR_FNF);
    EXPECT_EQ(ResultOf(ShellExecuteA(nullptr, nullptr, dir.Path("none").c_str(), nullptr, nullptr, 0)), SE_ERR_FNF);
    EXPECT_EQ(ResultOf(ShellExecuteA(nullptr, nullptr, dir.Path("plan.txt").c_str(), nullptr,
                                     dir.Path("no dir").c_str(), 0)),
              SE_ERR_PNF);
    EXPECT_EQ(ResultOf(ShellExecuteA(nullptr, nullptr, dir.Path("broken").c_str(), nullptr, nullptr, 0)),
              SE_ERR_ACCESSDENIED);
    EXPECT_TRUE(links.opened.empty());
    {
        Links refusing(false);
        EXPECT_EQ(ResultOf(ShellExecuteA(nullptr, nullptr, "mailto:anna@example.com", nullptr, nullptr, 0)),
                  SE_ERR_NOASSOC);
        EXPECT_EQ(refusing.opened, Args{"mailto:anna@example.com"});
    }
}

// Links go to the desktop as they are, documents as file links; a drive
// letter is no scheme.
TEST(ShellExecute, HandsLinksAndDocumentsToTheDesktop)
{
    vxtest::TempDir dir;
    dir.Write("Plan 12.pdf", "%PDF");
    vx::SetDriveRoot('D', dir.Path());
    Links links;
    EXPECT_GT(ResultOf(ShellExecuteA(nullptr, nullptr, "https://example.com/a?b=c", nullptr, nullptr, 0)), 32);
    EXPECT_GT(ResultOf(ShellExecuteA(nullptr, nullptr, "D:\\plan 12.PDF", nullptr, nullptr, 0)), 32);
    vx::SetDriveRoot('D', "");
    ASSERT_EQ(links.opened.size(), 2u);
    EXPECT_EQ(links.opened[0], "https://example.com/a?b=c");
    EXPECT_EQ(links.opened[1], "file://" + dir.Path("Plan%2012.pdf"));
    EXPECT_FALSE(vx::OpenUri(nullptr));
    EXPECT_FALSE(vx::OpenUri(""));
}

// Which text is a link is decided on ASCII letters, whatever the locale:
// a file named "Żaba:1" (code page text) is a document, not a link.
TEST(ShellExecute, SchemesAreAsciiUnderASingleByteLocale)
{
    vxtest::SingleByteLocale polish;
    if (!polish.Active())
        GTEST_SKIP() << polish.Why();
    vxtest::TempDir dir;
    char here[4096];
    ASSERT_NE(getcwd(here, sizeof here), nullptr);
    ASSERT_EQ(chdir(dir.Path().c_str()), 0);
    dir.Write("\xC5\xBB" "ab:1", "x"); // "Żab:1" as the disk spells it (UTF-8)
    Links links;
    const HINSTANCE h = ShellExecuteA(nullptr, nullptr, "\xAF" "ab:1", nullptr, nullptr, 0);
    ASSERT_EQ(chdir(here), 0);
    EXPECT_GT(ResultOf(h), 32);
    ASSERT_EQ(links.opened.size(), 1u);
    EXPECT_EQ(links.opened[0].rfind("file://", 0), 0u) << links.opened[0];
}

namespace {

// Where PATH finds a program.
std::string InPath(const char* name)
{
    std::istringstream path(std::getenv("PATH") ? std::getenv("PATH") : "");
    std::string dir;
    while (std::getline(path, dir, ':')) {
        const std::string candidate = dir + "/" + name;
        if (access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return {};
}

// A default program for drawing exchange files (a type the desktop's own
// database knows by its extension), in the data home of this test process.
// The desktop's own types come from its compiled cache, which hides any
// type a test would add by a plain glob file, so the test takes a known one.
void DefineViewer()
{
    const vxtest::TempDir& home = vxtest::DataHome();
    mkdir(home.Path("applications").c_str(), 0755);
    vxtest::WriteBytes(home.Path("applications/vxtest-viewer.desktop"),
                       "[Desktop Entry]\nType=Application\nName=Drawing viewer\nExec=true %f\n"
                       "MimeType=image/vnd.dxf;\n");
    vxtest::WriteBytes(home.Path("applications/mimeapps.list"),
                       "[Default Applications]\nimage/vnd.dxf=vxtest-viewer.desktop\n");
}

TEST(FindExecutable, DefaultProgramOfTheTypeByTheExtension)
{
    DefineViewer();
    vxtest::TempDir dir;
    dir.Write("plan.dxf", ""); // empty, as GetFileExtShell makes it
    dir.Write("notes.qqqzz", "x");
    char result[MAX_PATH] = "old";
    EXPECT_GT(reinterpret_cast<std::intptr_t>(FindExecutableA(dir.Path("plan.dxf").c_str(), nullptr, result)), 32);
    EXPECT_EQ(std::string(result), InPath("true"));
    // Relative to a directory.
    result[0] = 0;
    EXPECT_GT(reinterpret_cast<std::intptr_t>(FindExecutableA("plan.dxf", dir.Path().c_str(), result)), 32);
    EXPECT_STRNE(result, "");

    // A type nobody opens, a missing file, a missing directory.
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(FindExecutableA(dir.Path("notes.qqqzz").c_str(), nullptr, result)),
              SE_ERR_NOASSOC);
    EXPECT_STREQ(result, "");
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(FindExecutableA(dir.Path("gone.dxf").c_str(), nullptr, result)),
              SE_ERR_FNF);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(FindExecutableA("plan.dxf", dir.Path("nowhere").c_str(), result)),
              SE_ERR_PNF);

    // A program is its own.
    dir.Write("tool", "#!/bin/sh\n");
    chmod(dir.Path("tool").c_str(), 0755);
    EXPECT_GT(reinterpret_cast<std::intptr_t>(FindExecutableA(dir.Path("tool").c_str(), nullptr, result)), 32);
    EXPECT_EQ(std::string(result), dir.Path("tool"));
}

} // namespace
