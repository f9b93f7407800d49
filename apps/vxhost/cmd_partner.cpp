// Tour step: the partner link between two real processes. vxhost starts
// itself as AT (through a link named "AT"), AT starts IT the way the suite
// does, and both print what they do. Settings, the log and the window bus
// live in a temporary directory, so nothing of the user's is touched.
#include "democommand.h"

#include <vxbase.h>

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

extern char** environ;

namespace {

constexpr int kLimitMs = 15000;

std::string SelfExecutable()
{
    char path[PATH_MAX] = {};
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    return n > 0 ? std::string(path, static_cast<std::size_t>(n)) : std::string();
}

// Waits for the child, killing it after the limit. Returns its exit code,
// or -1 if it had to be killed or died of a signal.
int WaitFor(pid_t child)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLimitMs);
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

int RunPartner(vxhost::Args& args)
{
    if (!args.words.empty())
        return vxhost::Usage("partner");
    vxhost::Heading("Partner link: AT starts IT");
    char pattern[] = "/tmp/vxlink-XXXXXX";
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
    // The programs of the suite are AT and IT; here both are vxhost.
    symlink(self.c_str(), (dir + "/programs/AT").c_str());
    symlink(self.c_str(), (dir + "/programs/IT").c_str());

    // The children's environment: private settings and a private bus.
    const char* const own[] = {"VXBASE_WINDOWS_DIR=", "XDG_CONFIG_HOME=", "XDG_CONFIG_DIRS=", "XDG_RUNTIME_DIR="};
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (std::none_of(std::begin(own), std::end(own), [&](const char* name) { return entry.rfind(name, 0) == 0; }))
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
    char demo[] = "--demo";
    char* argv[] = {const_cast<char*>(program.c_str()), demo, nullptr};
    std::fflush(stdout);
    pid_t child = 0;
    const auto start = std::chrono::steady_clock::now();
    int rc = posix_spawn(&child, program.c_str(), nullptr, nullptr, argv, envp.data());
    if (rc == 0)
        rc = WaitFor(child);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    std::printf("both programs ended %s after %lld ms; the link's log says:\n", rc == 0 ? "cleanly" : "with an error",
                static_cast<long long>(ms));
    std::string log = dir + "/settings/VxProcess.log";
    if (FILE* f = std::fopen(log.c_str(), "rb")) {
        char line[512];
        int shown = 0;
        while (std::fgets(line, sizeof line, f) && shown < 16) {
            if (line[0] != '\n') {
                std::printf("  %s", line);
                ++shown;
            }
        }
        std::fclose(f);
    }
    std::filesystem::remove_all(dir, ec);
    return rc == 0 ? 0 : 1;
}

} // namespace

VXHOST_COMMAND("partner", "  AT starts IT, relays settings, hands over a message box", 90, RunPartner);
