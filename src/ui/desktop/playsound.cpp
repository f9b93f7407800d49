#include "ui/desktop/playsound.h"

#include "platform/files/hostpath.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <utility>

extern char** environ;

namespace vx {
namespace {

SoundPlayer* g_player = nullptr;

std::string FindOnPath(const std::string& program)
{
    const char* path = std::getenv("PATH");
    if (!path)
        return std::string();
    std::string dirs(path);
    std::size_t start = 0;
    while (start <= dirs.size()) {
        const std::size_t end = dirs.find(':', start);
        const std::string dir = dirs.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!dir.empty()) {
            const std::string candidate = dir + "/" + program;
            if (access(candidate.c_str(), X_OK) == 0)
                return candidate;
        }
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
    return std::string();
}

SoundPlayer& Player()
{
    static CommandSoundPlayer fallback;
    return g_player ? *g_player : fallback;
}

} // namespace

SoundPlayer::~SoundPlayer() = default;

CommandSoundPlayer::CommandSoundPlayer(std::vector<std::string> candidates)
{
    for (const std::string& c : candidates) {
        m_program = FindOnPath(c);
        if (!m_program.empty())
            break;
    }
}

CommandSoundPlayer::~CommandSoundPlayer()
{
    Stop();
}

void CommandSoundPlayer::Reap()
{
    if (m_child > 0 && waitpid(m_child, nullptr, WNOHANG) == m_child)
        m_child = -1;
}

void CommandSoundPlayer::Stop()
{
    if (m_child > 0) {
        kill(m_child, SIGTERM);
        waitpid(m_child, nullptr, 0);
        m_child = -1;
    }
}

bool CommandSoundPlayer::Play(const char* sound, HMODULE, DWORD flags)
{
    Reap();
    if (!sound || (flags & SND_PURGE)) {
        Stop();
        return sound == nullptr;
    }
    // Only files can be played: the library carries no sound resources.
    if ((flags & SND_RESOURCE) == SND_RESOURCE || !(flags & SND_FILENAME) || m_program.empty())
        return false;
    const std::string file = HostPath(sound);
    struct stat st {};
    if (stat(file.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    if ((flags & SND_NOSTOP) && m_child > 0)
        return false;
    Stop();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    char* argv[] = {const_cast<char*>(m_program.c_str()), const_cast<char*>(file.c_str()), nullptr};
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, m_program.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0)
        return false;
    if (flags & SND_ASYNC) {
        m_child = pid;
        return true;
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

SoundPlayer* SetSoundPlayer(SoundPlayer* player)
{
    return std::exchange(g_player, player);
}

} // namespace vx

BOOL PlaySoundA(LPCSTR sound, HMODULE module, DWORD flags)
{
    return vx::Player().Play(sound, module, flags) ? TRUE : FALSE;
}
