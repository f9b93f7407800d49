// What the benchmarks of two programs share: a scratch home for both, a bare
// echo process over a socket as the yardstick, and the end of both.
#pragma once

#include "platform/ipc/windowbus.h"
#include "process/kprocessio.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace benchsupport {

inline bool ReadAll(int fd, char* bytes, std::size_t size)
{
    while (size) {
        const ssize_t n = read(fd, bytes, size);
        if (n <= 0)
            return false;
        bytes += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

inline bool WriteAll(int fd, const char* bytes, std::size_t size)
{
    while (size) {
        const ssize_t n = write(fd, bytes, size);
        if (n <= 0)
            return false;
        bytes += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

// A fresh directory with the settings, configuration and runtime folders of
// both programs, made theirs through the environment; "" on failure.
inline std::string MakeScratchHome()
{
    char pattern[] = "/tmp/vxbench-XXXXXX";
    if (!mkdtemp(pattern))
        return {};
    const std::string dir = pattern;
    for (const char* name : {"settings", "config", "run"})
        std::filesystem::create_directory(dir + "/" + name);
    std::filesystem::permissions(dir + "/run", std::filesystem::perms::owner_all);
    setenv("VXBASE_WINDOWS_DIR", (dir + "/settings").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (dir + "/config").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (dir + "/config").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (dir + "/run").c_str(), 1);
    return dir;
}

// Forks a process that sends every block of `blockBytes` straight back;
// answers our end of the socket.
inline int StartEcho(pid_t& echo, std::size_t blockBytes)
{
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
        return -1;
    echo = fork();
    if (echo == 0) {
        close(sockets[0]);
        std::vector<char> block(blockBytes);
        while (ReadAll(sockets[1], block.data(), block.size()) && WriteAll(sockets[1], block.data(), block.size())) {
        }
        _exit(0);
    }
    close(sockets[1]);
    return sockets[0];
}

// Ends the partner and the echo, the link and the bus, and the scratch home.
inline void EndBoth(pid_t partner, pid_t echo, const std::string& dir)
{
    kill(partner, SIGKILL);
    kill(echo, SIGKILL);
    waitpid(partner, nullptr, 0);
    waitpid(echo, nullptr, 0);
    vx::ResetPartnerLink();
    vx::StopWindowBus();
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
}

inline double Median(std::vector<double>& values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

} // namespace benchsupport
