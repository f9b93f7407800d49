#include "suitehome.h"

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <thread>

extern char** environ;

namespace vxhost {

namespace {

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

} // namespace

SuiteHome::SuiteHome(const char* stem)
{
    std::string pattern = std::string("/tmp/") + stem + "-XXXXXX";
    if (!mkdtemp(pattern.data()))
        return;
    m_dir = pattern;
    std::error_code ec;
    for (const char* name : {"programs", "settings", "config", "run"})
        std::filesystem::create_directory(m_dir + "/" + name, ec);
    chmod((m_dir + "/run").c_str(), 0700);
    // The programs of the suite are AT and IT; here both are vxhost.
    const std::string self = SelfExecutable();
    symlink(self.c_str(), (m_dir + "/programs/AT").c_str());
    symlink(self.c_str(), (m_dir + "/programs/IT").c_str());
}

SuiteHome::~SuiteHome()
{
    std::error_code ec;
    if (Made())
        std::filesystem::remove_all(m_dir, ec);
}

int SuiteHome::RunAT(const std::vector<std::string>& args, int limitMs) const
{
    // The child's environment: this one without the variables the home
    // sets, then the home's.
    const char* const own[] = {"VXBASE_WINDOWS_DIR=", "XDG_CONFIG_HOME=", "XDG_CONFIG_DIRS=", "XDG_RUNTIME_DIR="};
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (std::none_of(std::begin(own), std::end(own), [&](const char* name) { return entry.rfind(name, 0) == 0; }))
            env.push_back(entry);
    }
    env.push_back("VXBASE_WINDOWS_DIR=" + m_dir + "/settings");
    env.push_back("XDG_CONFIG_HOME=" + m_dir + "/config");
    env.push_back("XDG_CONFIG_DIRS=" + m_dir + "/config");
    env.push_back("XDG_RUNTIME_DIR=" + m_dir + "/run");
    std::vector<char*> envp;
    for (auto& e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);

    std::string program = m_dir + "/programs/AT";
    std::vector<std::string> words = args;
    std::vector<char*> argv{program.data()};
    for (auto& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    std::fflush(stdout);
    pid_t child = 0;
    const int rc = posix_spawn(&child, program.c_str(), nullptr, nullptr, argv.data(), envp.data());
    return rc == 0 ? WaitFor(child, limitMs) : rc;
}

} // namespace vxhost
