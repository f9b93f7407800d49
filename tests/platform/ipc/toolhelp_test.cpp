#include "platform/ipc/toolhelp.h"

#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

namespace {

std::vector<PROCESSENTRY32> Walk()
{
    std::vector<PROCESSENTRY32> all;
    const HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    EXPECT_NE(snap, INVALID_HANDLE_VALUE);
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(snap, &entry); more; more = Process32Next(snap, &entry))
        all.push_back(entry);
    EXPECT_TRUE(CloseHandle(snap));
    return all;
}

std::optional<PROCESSENTRY32> Find(const std::vector<PROCESSENTRY32>& all, pid_t pid)
{
    for (const auto& e : all) {
        if (e.th32ProcessID == static_cast<DWORD>(pid))
            return e;
    }
    return std::nullopt;
}

// A child that names itself `name` and waits to be killed.
pid_t NamedChild(const char* name)
{
    int ready[2];
    if (pipe(ready) != 0)
        return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_NAME, name);
        (void)!write(ready[1], "x", 1);
        for (;;)
            pause();
    }
    char c;
    (void)!read(ready[0], &c, 1);
    close(ready[0]);
    close(ready[1]);
    return pid;
}

void EndChild(pid_t pid)
{
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

} // namespace

TEST(Toolhelp, ListsThisProcessWithItsParentThreadsAndName)
{
    // A second thread that waits while the snapshot is taken.
    std::mutex lock;
    std::condition_variable done;
    bool finished = false;
    std::thread worker([&] {
        std::unique_lock hold(lock);
        done.wait(hold, [&] { return finished; });
    });
    const auto all = Walk();
    {
        std::lock_guard hold(lock);
        finished = true;
    }
    done.notify_all();
    worker.join();

    const auto self = Find(all, getpid());
    ASSERT_TRUE(self);
    EXPECT_EQ(self->dwSize, sizeof(PROCESSENTRY32));
    EXPECT_EQ(self->th32ParentProcessID, static_cast<DWORD>(getppid()));
    EXPECT_GE(self->cntThreads, 2u);
    // The kernel keeps the first 15 bytes of the program's file name.
    EXPECT_EQ(std::string(self->szExeFile), std::string(program_invocation_short_name).substr(0, 15));
    EXPECT_TRUE(Find(all, 1)) << "every process of the machine is listed";
}

// The partner is found by the name of its program: the name a link gave
// it, and the whole name even where it holds blanks and parentheses.
TEST(Toolhelp, NamesProcessesAsTheKernelDoes)
{
    vxtest::TempDir dir;
    std::filesystem::create_symlink("/bin/sleep", dir.Path("IT"));
    const std::string program = dir.Path("IT");
    char arg[] = "30";
    char* argv[] = {const_cast<char*>(program.c_str()), arg, nullptr};
    pid_t linked = 0;
    ASSERT_EQ(posix_spawn(&linked, program.c_str(), nullptr, nullptr, argv, environ), 0);
    const pid_t odd = NamedChild("VX) 1 2 (3 ");

    // The kernel names the process when exec has run.
    std::optional<PROCESSENTRY32> it;
    for (int i = 0; i < 200; ++i) {
        it = Find(Walk(), linked);
        if (it && std::strcmp(it->szExeFile, "IT") == 0)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const auto all = Walk();
    EndChild(linked);
    EndChild(odd);
    ASSERT_TRUE(it);
    EXPECT_STREQ(it->szExeFile, "IT");
    EXPECT_EQ(it->th32ParentProcessID, static_cast<DWORD>(getpid()));
    const auto named = Find(all, odd);
    ASSERT_TRUE(named);
    EXPECT_STREQ(named->szExeFile, "VX) 1 2 (3 ");
    EXPECT_EQ(named->th32ParentProcessID, static_cast<DWORD>(getpid())) << "read past the name's parentheses";
    EXPECT_EQ(named->cntThreads, 1u);
}

// A process that has ended runs no more, even while its parent has not yet
// collected it; the snapshot is taken once and read again from its start.
TEST(Toolhelp, SnapshotHoldsTheProcessesRunningWhenTaken)
{
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    ASSERT_GT(ended, 0);
    // Wait until it is a zombie, without collecting it.
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(ended), &info, WEXITED | WNOWAIT), 0);

    const HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    ASSERT_NE(snap, INVALID_HANDLE_VALUE);
    const pid_t later = NamedChild("later");
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::vector<DWORD> first;
    for (BOOL more = Process32First(snap, &entry); more; more = Process32Next(snap, &entry))
        first.push_back(entry.th32ProcessID);
    std::vector<DWORD> again;
    for (BOOL more = Process32First(snap, &entry); more; more = Process32Next(snap, &entry))
        again.push_back(entry.th32ProcessID);
    EndChild(later);
    waitpid(ended, nullptr, 0);
    EXPECT_EQ(first, again);
    EXPECT_EQ(std::count(first.begin(), first.end(), static_cast<DWORD>(ended)), 0) << "a zombie runs no more";
    EXPECT_EQ(std::count(first.begin(), first.end(), static_cast<DWORD>(later)), 0);
    EXPECT_EQ(std::count(first.begin(), first.end(), static_cast<DWORD>(getpid())), 1);

    // A short entry, a closed or foreign handle are refused.
    entry.dwSize = sizeof entry - 1;
    EXPECT_FALSE(Process32First(snap, &entry));
    entry.dwSize = sizeof entry;
    EXPECT_TRUE(CloseHandle(snap));
    EXPECT_FALSE(CloseHandle(snap));
    EXPECT_FALSE(Process32First(snap, &entry));
    int foreign = 0;
    EXPECT_FALSE(Process32Next(&foreign, &entry));
    EXPECT_FALSE(CloseHandle(&foreign));

    // Other kinds of snapshot are empty.
    const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    ASSERT_NE(threads, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(Process32First(threads, &entry));
    EXPECT_TRUE(CloseHandle(threads));
}
