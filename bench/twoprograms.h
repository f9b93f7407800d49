// What the benchmarks of two programs share: a scratch home for both, a bare
// echo process over a socket as the yardstick, the loops that time the
// library's round trip and the bare one, and the end of both.
#pragma once

#include "platform/ipc/windowbus.h"
#include "process/kprocessio.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
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

// What a benchmark of two programs runs: the scratch home, the partner
// program, the echo and our end of its socket.
struct TwoPrograms {
    std::string dir;
    pid_t partner = 0;
    pid_t echo = 0;
    int bare = -1;
    bool ok = false; // the partner came up
};

// Ends the partner and the echo, the link and the bus, and the scratch home.
inline void EndBoth(const TwoPrograms& both)
{
    kill(both.partner, SIGKILL);
    kill(both.echo, SIGKILL);
    waitpid(both.partner, nullptr, 0);
    waitpid(both.echo, nullptr, 0);
    vx::ResetPartnerLink();
    vx::StopWindowBus();
    std::error_code ec;
    std::filesystem::remove_all(both.dir, ec);
}

inline double Median(std::vector<double>& values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

// Runs `ours` and then `bare` once per iteration, so that both see the same
// load of the machine, and reports the median of each in nanoseconds (as
// `oursMedian` and "bare_median_ns") and their ratio ("ratio"). A step
// returns nullptr, or the error that stops the benchmark.
template <class Ours, class Bare>
void RunInTurn(benchmark::State& state, const char* oursMedian, Ours ours, Bare bare)
{
    std::vector<double> oursTimes, bareTimes;
    using Clock = std::chrono::steady_clock;
    for (auto _ : state) {
        const auto t0 = Clock::now();
        if (const char* error = ours()) {
            state.SkipWithError(error);
            return;
        }
        const auto t1 = Clock::now();
        if (const char* error = bare()) {
            state.SkipWithError(error);
            return;
        }
        const auto t2 = Clock::now();
        oursTimes.push_back(std::chrono::duration<double, std::nano>(t1 - t0).count());
        bareTimes.push_back(std::chrono::duration<double, std::nano>(t2 - t1).count());
    }
    const double oursMedianNs = Median(oursTimes);
    const double bareMedianNs = Median(bareTimes);
    state.counters[oursMedian] = oursMedianNs;
    state.counters["bare_median_ns"] = bareMedianNs;
    state.counters["ratio"] = bareMedianNs > 0 ? oursMedianNs / bareMedianNs : 0;
}

} // namespace benchsupport
