// The file dialog with the drawing preview, between two real programs.
//
//   vxhost open                   AT opens the preview dialog on a sample
//                                 project; IT draws the drawings' previews
//   vxhost open --screenshot DIR  writes open-preview.png (a drawing, drawn
//                                 by IT), open-nopreview.png (a file
//                                 nobody draws) and open-options.png (the
//                                 save dialog with two options), then ends
//
// Like "partner", vxhost starts itself as AT through a link named "AT", in a
// temporary directory with its own settings and window bus, and AT starts
// IT as the suite does. Without a display (and with --screenshot) the
// dialogs are driven as a user would: a drawing is picked, the preview
// turned off and on, a text file picked; in the save dialog an option is
// turned on and a name typed.
#include "democommand.h"

#ifdef VXHOST_WITH_UI

#include "partnerhost.h"

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

constexpr int kLimitMs = 30000;

std::string SelfExecutable()
{
    char path[PATH_MAX] = {};
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    return n > 0 ? std::string(path, static_cast<std::size_t>(n)) : std::string();
}

int WaitFor(pid_t child, int limitMs)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
    int status = 0;
    for (;;) {
        const pid_t done = waitpid(child, &status, WNOHANG);
        if (done == child)
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (done < 0 || std::chrono::steady_clock::now() > end)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return -1;
}

// The sample project: pages AT draws itself, drawings IT draws, and a file
// nobody draws.
void MakeProject(const std::string& dir)
{
    std::filesystem::create_directories(dir);
    for (const char* name : {"Plan.0001", "Plan.0002", "Schalt.ELD", "Klemmen.ARD", "Liste.txt"}) {
        if (std::FILE* f = std::fopen((dir + "/" + name).c_str(), "wb")) {
            std::fputs("demo\n", f);
            std::fclose(f);
        }
    }
}

int RunOpen(vxhost::Args& args)
{
    const std::string shots = vxhost::ScreenshotDir(args.words);
    if (shots.empty() && !args.words.empty())
        return vxhost::Usage("open");
    char pattern[] = "/tmp/vxopen-XXXXXX";
    if (!mkdtemp(pattern)) {
        std::printf("no temporary directory\n");
        return 1;
    }
    const std::string dir = pattern;
    const std::string self = SelfExecutable();
    std::error_code ec;
    for (const char* name : {"programs", "settings", "config", "run"})
        std::filesystem::create_directory(dir + "/" + name, ec);
    chmod((dir + "/run").c_str(), 0700);
    symlink(self.c_str(), (dir + "/programs/AT").c_str());
    symlink(self.c_str(), (dir + "/programs/IT").c_str());
    const std::string project = dir + "/Demo";
    MakeProject(project);

    const char* const own[] = {"VXBASE_WINDOWS_DIR=", "XDG_CONFIG_HOME=", "XDG_CONFIG_DIRS=", "XDG_RUNTIME_DIR="};
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        bool skip = false;
        for (const char* name : own)
            skip = skip || entry.rfind(name, 0) == 0;
        if (!skip)
            env.push_back(entry);
    }
    env.push_back("VXBASE_WINDOWS_DIR=" + dir + "/settings");
    env.push_back("XDG_CONFIG_HOME=" + dir + "/config");
    env.push_back("XDG_CONFIG_DIRS=" + dir + "/config");
    env.push_back("XDG_RUNTIME_DIR=" + dir + "/run");
    std::vector<char*> envp;
    for (auto& e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);

    const std::string program = dir + "/programs/AT";
    std::string openOption = "--open";
    std::string shotOption = "--screenshot";
    std::string shotDir = shots.empty() ? std::string() : std::filesystem::absolute(shots).string();
    std::vector<char*> argv{const_cast<char*>(program.c_str()), openOption.data(), const_cast<char*>(project.c_str())};
    if (!shotDir.empty()) {
        argv.push_back(shotOption.data());
        argv.push_back(shotDir.data());
    }
    argv.push_back(nullptr);
    std::fflush(stdout);
    pid_t child = 0;
    int rc = posix_spawn(&child, program.c_str(), nullptr, nullptr, argv.data(), envp.data());
    if (rc == 0)
        rc = WaitFor(child, shots.empty() && (std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY")) ? 24 * 3600 * 1000 : kLimitMs);
    std::filesystem::remove_all(dir, ec);
    return rc == 0 ? 0 : 1;
}

} // namespace

VXHOST_COMMAND_NO_TOUR("open", "[--screenshot DIR]  AT's open dialog with the drawing preview drawn by IT", 95,
                       RunOpen);

#endif
