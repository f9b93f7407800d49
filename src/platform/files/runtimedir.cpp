#include "platform/files/runtimedir.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

bool FromEnvironment(std::string& dir)
{
    const char* value = std::getenv("XDG_RUNTIME_DIR");
    if (!value || value[0] != '/')
        return false;
    // Qt insists on these too, and warns otherwise.
    struct stat st {};
    if (stat(value, &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != geteuid())
        return false;
    dir = value;
    return true;
}

std::string Fallback()
{
    return "/tmp/runtime-" + std::to_string(geteuid());
}

} // namespace

namespace vx {

std::string RuntimeDirectory()
{
    std::string dir;
    return FromEnvironment(dir) ? dir : Fallback();
}

bool MakeRuntimeDirectory()
{
    std::string dir;
    if (FromEnvironment(dir))
        return true;
    dir = Fallback();
    if (mkdir(dir.c_str(), 0700) != 0 && errno != EEXIST)
        return false;
    // /tmp is everyone's: what stands there must be a real directory of
    // this user, closed to others.
    struct stat st {};
    if (lstat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != geteuid())
        return false;
    return (st.st_mode & 07777) == 0700 || chmod(dir.c_str(), 0700) == 0;
}

bool EnsureRuntimeDirectory()
{
    std::string dir;
    if (FromEnvironment(dir))
        return true;
    if (!MakeRuntimeDirectory())
        return false;
    return setenv("XDG_RUNTIME_DIR", Fallback().c_str(), 1) == 0;
}

} // namespace vx
