// Test support for code that works on real files (with tempdir.h): whole
// files read and written by host path, environment variables set for the
// length of a test, and a piece of a test run as an ordinary user, since
// permission bits mean nothing to root.
//
//   vxtest::ScopedEnv home("XDG_CONFIG_HOME", dir.Path("config"));
//   EXPECT_TRUE(vxtest::RunUnprivileged([&] { ... EXPECT_... }));
#pragma once

#include "support/scopedenv.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

namespace vxtest {

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
