// Test helpers for code that works on real files: a scratch directory that
// cleans up after itself, whole-file reads and writes, environment
// variables set for the length of a test, and running a piece of a test as
// an ordinary user (permission bits mean nothing to root).
#pragma once

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>

namespace vxtest {

// A fresh directory under the system's temporary directory, removed with
// everything in it at the end of the scope.
class ScratchDir {
public:
    ScratchDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vxtest-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            ADD_FAILURE() << "mkdtemp failed";
        m_path = pattern;
    }
    ~ScratchDir()
    {
        std::error_code ec;
        // Give back the permissions a test took away, so that all goes.
        for (auto it = std::filesystem::recursive_directory_iterator(m_path, ec);
             it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
            if (it->is_directory(ec))
                chmod(it->path().c_str(), 0777);
        }
        chmod(m_path.c_str(), 0777);
        std::filesystem::remove_all(m_path, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

inline void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
    ASSERT_TRUE(out.good()) << path;
}

inline std::string ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline bool FileExists(const std::string& path)
{
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

// Sets (or with nullopt unsets) an environment variable until the end of
// the scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, std::optional<std::string> value) : m_name(name)
    {
        if (const char* old = std::getenv(name))
            m_old = old;
        if (value)
            setenv(name, value->c_str(), 1);
        else
            unsetenv(name);
    }
    ~ScopedEnv()
    {
        if (m_old)
            setenv(m_name.c_str(), m_old->c_str(), 1);
        else
            unsetenv(m_name.c_str());
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string m_name;
    std::optional<std::string> m_old;
};

// Runs `body` as the user "nobody" in a child process when the tests run as
// root, else directly. Returns whether `body` passed its expectations.
// Directories the body touches must be open to that user.
inline bool RunUnprivileged(const std::function<void()>& body)
{
    if (geteuid() != 0) {
        const bool failedBefore = ::testing::Test::HasFailure();
        body();
        return failedBefore || !::testing::Test::HasFailure();
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0)
            _exit(3);
        body();
        std::fflush(nullptr);
        _exit(::testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace vxtest
