#include "platform/files/runtimedir.h"

#include "support/tempdir.h"
#include "support/testenv.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using vxtest::ScopedEnv;
using vxtest::TempDir;

namespace {

std::string Fallback()
{
    return "/tmp/runtime-" + std::to_string(geteuid());
}

std::string Variable()
{
    const char* value = std::getenv("XDG_RUNTIME_DIR");
    return value ? value : "(unset)";
}

} // namespace

TEST(RuntimeDirectory, TakesTheVariableOnlyForADirectoryOfTheUsersOwn)
{
    TempDir dir;
    {
        ScopedEnv env("XDG_RUNTIME_DIR", dir.Path());
        EXPECT_EQ(vx::RuntimeDirectory(), dir.Path());
        EXPECT_TRUE(vx::EnsureRuntimeDirectory());
        EXPECT_EQ(Variable(), dir.Path());
    }
    vxtest::WriteBytes(dir.Path("file"), "x");
    for (const std::string& bad : {std::string("relative/run"), dir.Path("missing"), dir.Path("file"), std::string()}) {
        SCOPED_TRACE(bad);
        ScopedEnv env("XDG_RUNTIME_DIR", bad);
        EXPECT_EQ(vx::RuntimeDirectory(), Fallback());
    }
    ScopedEnv env("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_EQ(vx::RuntimeDirectory(), Fallback());
}

TEST(RuntimeDirectory, EnsureMakesThePrivateDirectoryAndSetsTheVariable)
{
    for (const std::optional<std::string>& start : {std::optional<std::string>(), std::optional<std::string>("/nonexistent/run")}) {
        SCOPED_TRACE(start.value_or("(unset)"));
        ScopedEnv env("XDG_RUNTIME_DIR", start);
        ASSERT_TRUE(vx::EnsureRuntimeDirectory());
        EXPECT_EQ(Variable(), Fallback());
        struct stat st {};
        ASSERT_EQ(lstat(Fallback().c_str(), &st), 0);
        EXPECT_TRUE(S_ISDIR(st.st_mode));
        EXPECT_EQ(st.st_uid, geteuid());
        EXPECT_EQ(st.st_mode & 07777, 0700u);
        // Now that the variable names it, everyone agrees on it.
        EXPECT_EQ(vx::RuntimeDirectory(), Fallback());
    }
}

TEST(RuntimeDirectory, RefusesWhatAnotherUserPutInItsPlace)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to act as two users";
    // The fallback of the user "nobody", prepared by root: first open to
    // others (it is made private), then owned by root (it is refused).
    const std::string dir = "/tmp/runtime-65534";
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
    ASSERT_EQ(mkdir(dir.c_str(), 0755), 0);
    ASSERT_EQ(chown(dir.c_str(), 65534, 65534), 0);
    ASSERT_EQ(chmod(dir.c_str(), 0755), 0);
    EXPECT_TRUE(vxtest::RunUnprivileged([&] {
        ScopedEnv env("XDG_RUNTIME_DIR", std::nullopt);
        EXPECT_TRUE(vx::MakeRuntimeDirectory());
        struct stat st {};
        ASSERT_EQ(stat(dir.c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 07777, 0700u);
    }));
    ASSERT_EQ(chown(dir.c_str(), 0, 0), 0);
    EXPECT_TRUE(vxtest::RunUnprivileged([&] {
        ScopedEnv env("XDG_RUNTIME_DIR", std::nullopt);
        EXPECT_FALSE(vx::MakeRuntimeDirectory());
        EXPECT_FALSE(vx::EnsureRuntimeDirectory());
        EXPECT_EQ(std::getenv("XDG_RUNTIME_DIR"), nullptr);
    }));
    std::filesystem::remove_all(dir, ec);
}
