// vxhost run as a program: every command does what its options say or
// refuses them with its usage line (exit code 2), and ends by itself when
// run without a display.
#include "support/pgserver.h"
#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <fcntl.h>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

struct Outcome {
    int exitCode = -1; // -1: killed at the time limit, or died of a signal
    std::string output; // standard output and standard error together
};

// Runs vxhost with `args` and the environment changed by `env` (nullopt
// removes a variable), settings and window bus in a directory of its own.
// Kills it after `limitSeconds`.
Outcome RunVxhost(const std::vector<std::string>& args, std::map<std::string, std::optional<std::string>> env = {},
              int limitSeconds = 60)
{
    vxtest::TempDir home;
    env.emplace("VXBASE_WINDOWS_DIR", home.Path());
    env.emplace("XDG_CONFIG_HOME", home.Path());
    env.emplace("XDG_RUNTIME_DIR", home.Path());
    env.emplace("QT_QPA_PLATFORM", "offscreen");
    std::vector<std::string> entries;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (!env.count(entry.substr(0, entry.find('='))))
            entries.push_back(entry);
    }
    for (const auto& [name, value] : env) {
        if (value)
            entries.push_back(name + "=" + *value);
    }
    std::vector<char*> envp;
    for (auto& e : entries)
        envp.push_back(e.data());
    envp.push_back(nullptr);
    std::vector<std::string> words{VXHOST_PROGRAM};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& w : words)
        argv.push_back(w.data());
    argv.push_back(nullptr);

    const std::string log = home.Path("output.txt");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    posix_spawn_file_actions_addchdir_np(&actions, home.Path().c_str());
    pid_t child = 0;
    Outcome run;
    const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        ADD_FAILURE() << "cannot start " << VXHOST_PROGRAM;
        return run;
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(limitSeconds);
    int status = 0;
    for (;;) {
        if (waitpid(child, &status, WNOHANG) == child) {
            run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            break;
        }
        if (std::chrono::steady_clock::now() > end) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            ADD_FAILURE() << "vxhost did not end within " << limitSeconds << " s";
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    run.output = vxtest::ReadBytes(log);
    return run;
}

bool Shows(const Outcome& run, const std::string& text)
{
    return run.output.find(text) != std::string::npos;
}

} // namespace

TEST(Vxhost, RefusesOptionsACommandDoesNotTake)
{
    struct Case {
        std::vector<std::string> args;
        const char* usage;
    };
    const Case cases[] = {
        {{"--as", "AT", "--screenshot", "shots"}, "usage: vxhost --as AT|IT"},
        {{"--as", "IT", "--demo"}, "usage: vxhost --as AT|IT"},
        {{"--as", "AT", "--open"}, "usage: vxhost --as AT|IT"},
        {{"--as", "IT", "--open", "dir"}, "usage: vxhost --as AT|IT"},
        {{"--as", "AT", "--demo", "--open", "dir"}, "usage: vxhost --as AT|IT"},
        {{"--as", "AT", "--lifetime", "0"}, "usage: vxhost --as AT|IT"},
        {{"--as"}, "usage: vxhost --as AT|IT"},
        {{"gui", "--bogus"}, "usage: vxhost gui [--system-menu] [--screenshot DIR]"},
        {{"gui", "--system-menu", "x"}, "usage: vxhost gui [--system-menu] [--screenshot DIR]"},
        {{"gui", "--screenshot"}, "usage: vxhost gui [--system-menu] [--screenshot DIR]"},
        {{"--screenshot"}, "usage: vxhost --screenshot DIR"},
        {{"--screenshot", "a", "b"}, "usage: vxhost --screenshot DIR"},
        {{"buttons", "x"}, "usage: vxhost buttons\n"},
        {{"partner", "x"}, "usage: vxhost partner\n"},
        {{"open", "x"}, "usage: vxhost open [--screenshot DIR]"},
        {{"open", "--screenshot"}, "usage: vxhost open [--screenshot DIR]"},
        {{"strings", "--x"}, "usage: vxhost strings [ROW]"},
        {{"db", "a", "b"}, "usage: vxhost db [FILE | copy SOURCE TARGET]"},
        {{"din", "--screenshot", "x"}, "usage: vxhost din [TEXT...]"},
        {{"ini", "files", "--screenshot", "x"}, "usage: vxhost ini"},
        {{"list", "--screenshot"}, "usage: vxhost list [--screenshot DIR]"},
        {{"list", "x"}, "usage: vxhost list [--screenshot DIR]"},
        {{"menus", "--screenshot"}, "usage: vxhost menus [--screenshot DIR]"},
        {{"menus", "x"}, "usage: vxhost menus [--screenshot DIR]"},
        {{"help", "x"}, "usage: vxhost help"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args));
        const Outcome run = RunVxhost(c.args, {}, 20);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_TRUE(Shows(run, c.usage)) << run.output;
    }
}

TEST(Vxhost, ProgramsOfTheSuiteEndWithoutAPartner)
{
    // Run by the user: it waits for a partner as long as it was told.
    Outcome run = RunVxhost({"--as", "AT", "--lifetime", "1"}, {}, 20);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Shows(run, "[AT] no partner for 1 s: ending")) << run.output;
    // Started as by the partner, with a partner that is not there.
    run = RunVxhost({"--as", "IT", "--lifetime", "1", "@@C:\\Projekte\\Demo"}, {}, 20);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Shows(run, "[IT] started by AT with \"@@C:\\Projekte\\Demo\"")) << run.output;
    EXPECT_TRUE(Shows(run, "[IT] no partner for 1 s: ending")) << run.output;
}

TEST(Vxhost, WindowCommandsEndOffscreen)
{
    vxtest::TempDir shots;
    Outcome run = RunVxhost({"--screenshot", shots.Path()});
    EXPECT_EQ(run.exitCode, 0) << run.output;
    int pngs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(shots.Path()))
        pngs += entry.path().extension() == ".png";
    EXPECT_GT(pngs, 0);

    run = RunVxhost({"gui"});
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "offscreen: the frame was built")) << run.output;

    run = RunVxhost({"list"});
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "offscreen: the list of 2000 rows was built")) << run.output;

    // The menus: three open popups in each of the ten draw modes.
    vxtest::TempDir menuShots;
    run = RunVxhost({"menus", "--screenshot", menuShots.Path()});
    EXPECT_EQ(run.exitCode, 0) << run.output;
    pngs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(menuShots.Path()))
        pngs += entry.path().extension() == ".png";
    EXPECT_EQ(pngs, 30);
}

TEST(Vxhost, SplitAndExpertAreDrivenForTheirScreenshots)
{
    auto pngsIn = [](const std::string& dir) {
        int n = 0;
        for (const auto& entry : std::filesystem::directory_iterator(dir))
            n += entry.path().extension() == ".png";
        return n;
    };
    // Before, during and after a drag of each bar.
    vxtest::TempDir splitShots;
    Outcome run = RunVxhost({"split", "--screenshot", splitShots.Path()}, {}, 60);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    EXPECT_EQ(pngsIn(splitShots.Path()), 4);
    // Offscreen the bars are dragged by the mouse: the upright one 60 pixels
    // to the right, the level one up to the minimum of the upper pane.
    run = RunVxhost({"split"}, {}, 60);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "pages        (12, 11) - (284, 71)")) << run.output;

    // A scaled choice, a number typed in its unit, OK: stored times 1000.
    vxtest::TempDir expertShots;
    run = RunVxhost({"expert", "--screenshot", expertShots.Path()}, {}, 60);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    EXPECT_EQ(pngsIn(expertShots.Path()), 4);
    EXPECT_TRUE(Shows(run, "VXWIN55AT.INI    [Zeichnen] Raster=4000")) << run.output;
    EXPECT_TRUE(Shows(run, "VEXAL.INI        [PROCESS] SearchMode=0")) << run.output;
}

TEST(Vxhost, ListIsDrivenByMouseAndKeysForItsScreenshots)
{
    vxtest::TempDir shots;
    const Outcome run = RunVxhost({"list", "--screenshot", shots.Path()}, {}, 60);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    int pngs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(shots.Path()))
        pngs += entry.path().extension() == ".png";
    EXPECT_EQ(pngs, 6);
    // The block of rows 4 to 9 pasted over rows 20 to 25, a page number
    // typed, the next type chosen in the combo.
    EXPECT_TRUE(Shows(run, "pasted: row 20, Oznaczenie: \"H1\"")) << run.output;
    EXPECT_TRUE(Shows(run, "pasted: row 25, Typ: \"Bezpiecznik\"")) << run.output;
    EXPECT_TRUE(Shows(run, "typed: row 6, Strona: \"12.4\"")) << run.output;
    EXPECT_TRUE(Shows(run, "chosen: row 8, Typ: \"Bezpiecznik\"")) << run.output;
}

// The main frame switched through the ten draw modes as its View menu does:
// each writes the frame and the floating bar, and the bars look different.
TEST(Vxhost, GuiShowsTheFrameInEachDrawMode)
{
    vxtest::TempDir shots;
    const Outcome run = RunVxhost({"gui", "--screenshot", shots.Path()}, {}, 120);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    const auto read = [&](const std::string& name) {
        std::ifstream in(shots.Path() + "/" + name + ".png", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    };
    for (int mode = 0; mode < 10; ++mode) {
        EXPECT_GT(read("frame-mode-" + std::to_string(mode)).size(), 1000u) << mode;
        EXPECT_GT(read("floating-bar-mode-" + std::to_string(mode)).size(), 200u) << mode;
    }
    EXPECT_NE(read("floating-bar-mode-0"), read("floating-bar-mode-8"));
    EXPECT_NE(read("frame-mode-2"), read("frame-mode-6"));
    // The frame with the menu on its own bar: per mode, with a popup opened
    // from the bar, and with a maximised child's buttons in it.
    for (const char* name : {"own-menu-bar-mode-0", "own-menu-bar-mode-8", "own-menu-bar-open",
                             "own-menu-bar-open-popup", "own-menu-bar-maximised"})
        EXPECT_GT(read(name).size(), 500u) << name;
    EXPECT_NE(read("own-menu-bar-mode-0"), read("own-menu-bar-mode-8"));
    // Minimised children arranged, and the Window menu's "Select Window".
    EXPECT_GT(read("frame-icons").size(), 1000u);
    EXPECT_GT(read("select-window").size(), 200u);
}

// Two programs: AT's dialog shows the drawing that the IT process draws,
// and "no preview" for a file nobody draws; then the save dialog with two
// options. Both programs end with the dialogs.
TEST(Vxhost, OpenShowsTheDrawingOfTheRealITBesideTheDialog)
{
    vxtest::TempDir shots;
    const Outcome run = RunVxhost({"open", "--screenshot", shots.Path()}, {}, 60);
    ASSERT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "[IT] preview of ")) << run.output;
    EXPECT_TRUE(Shows(run, "[AT] IT drew the preview")) << run.output;
    EXPECT_TRUE(Shows(run, "[AT] nobody draws it: the preview says so")) << run.output;
    // Turned off and on by its check, the preview is drawn anew.
    EXPECT_TRUE(Shows(run, "[AT] turns it on again: IT draws it again")) << run.output;
    // The save dialog's options are read back after OK.
    EXPECT_TRUE(Shows(run, "[AT] saves as Export.xml with the options 1 and 1")) << run.output;
    for (const char* name : {"open-preview.png", "open-nopreview.png", "open-options.png"})
        EXPECT_GT(std::filesystem::file_size(shots.Path() + "/" + name), 1000u) << name;
}

TEST(Vxhost, TourShowsOnlyTheDemoWithoutARuntimeDirectory)
{
    // As for root on a fresh machine: no XDG_RUNTIME_DIR. The demo script
    // runs offscreen unless told otherwise.
    const Outcome run = RunVxhost({}, {{"XDG_RUNTIME_DIR", std::nullopt}}, 120);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "Tour complete.")) << run.output;
    EXPECT_FALSE(Shows(run, "QStandardPaths")) << run.output;
    EXPECT_FALSE(Shows(run, "XDG_RUNTIME_DIR")) << run.output;
}

// The database demo on a server given on the command line, and a copy of a
// file's database onto the server and back.
TEST(Vxhost, DbWorksOnAServerAndCopiesBetweenFileAndServer)
{
    std::string why;
    vxtest::PgServer* server = vxtest::PgServer::Get(&why);
    if (!server)
        GTEST_SKIP() << "no PostgreSQL server for the tests: " << why;
    const std::string connect = server->Connect(server->FreshName("vxhost"));
    Outcome run = RunVxhost({"db", connect}, {}, 60);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "version 2 added the field Stock")) << run.output;
    EXPECT_TRUE(Shows(run, "Relais 24 V DC")) << run.output;

    vxtest::TempDir dir;
    const std::string file = dir.Path("parts.mdb");
    const std::string copy = server->Connect(server->FreshName("vxcopy"));
    run = RunVxhost({"db", "copy", connect, file}, {}, 60);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    run = RunVxhost({"db", "copy", file, copy}, {}, 60);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_TRUE(Shows(run, "copied " + file)) << run.output;
    run = RunVxhost({"db", "copy", file, copy}, {}, 60);
    EXPECT_EQ(run.exitCode, 1) << run.output; // the target exists
    EXPECT_TRUE(Shows(run, "already exists")) << run.output;
}
