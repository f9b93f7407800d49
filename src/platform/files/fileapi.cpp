#include "platform/files/fileapi.h"

#include "platform/files/fileattributes_p.h"
#include "platform/files/hostpath.h"
#include "platform/framework/util_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

namespace {

bool WriteAll(int fd, const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t n = write(fd, data, size);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

BOOL CopyFileA(const char* existingFile, const char* newFile, BOOL failIfExists)
{
    if (!existingFile || !newFile)
        return FALSE;
    const std::string from = vx::DiskPath(existingFile);
    const std::string to = vx::DiskPath(newFile);
    const int in = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return FALSE;
    struct stat st {};
    if (fstat(in, &st) != 0 || S_ISDIR(st.st_mode)) {
        close(in);
        return FALSE;
    }
    const std::string temp = to + ".vxcopy-" + std::to_string(getpid());
    const int out = open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, st.st_mode & 0777);
    if (out < 0) {
        close(in);
        return FALSE;
    }
    bool ok = true;
    char buffer[65536];
    for (;;) {
        const ssize_t n = read(in, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            ok = n == 0;
            break;
        }
        if (!WriteAll(out, buffer, static_cast<std::size_t>(n))) {
            ok = false;
            break;
        }
    }
    close(in);
    ok = (fsync(out) == 0) && ok;
    ok = (close(out) == 0) && ok;
    if (ok) {
        // link() fails on an existing name, which gives fail-if-exists
        // without a window between the test and the copy.
        if (failIfExists)
            ok = link(temp.c_str(), to.c_str()) == 0;
        else
            ok = rename(temp.c_str(), to.c_str()) == 0;
    }
    unlink(temp.c_str());
    return ok ? TRUE : FALSE;
}

BOOL DeleteFileA(const char* file)
{
    if (!file)
        return FALSE;
    const std::string path = vx::DiskPath(file);
    struct stat st {};
    if (lstat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode))
        return FALSE;
    return unlink(path.c_str()) == 0;
}

BOOL MoveFileA(const char* existingFile, const char* newFile)
{
    if (!existingFile || !newFile)
        return FALSE;
    const std::string from = vx::DiskPath(existingFile);
    std::string to = vx::DiskPath(newFile);
    if (to == from) {
        // The same file under another spelling: a change of case, which
        // the original's file system allowed as a rename.
        const std::string wanted = vx::HostPath(newFile);
        to = to.substr(0, to.rfind('/') + 1) + std::string(vx::NameOf(wanted));
        return rename(from.c_str(), to.c_str()) == 0;
    }
    struct stat st {};
    if (lstat(to.c_str(), &st) == 0)
        return FALSE;
    return rename(from.c_str(), to.c_str()) == 0;
}

BOOL CreateDirectoryA(const char* path, void*)
{
    if (!path)
        return FALSE;
    return mkdir(vx::DiskPath(path).c_str(), 0777) == 0;
}

BOOL RemoveDirectoryA(const char* path)
{
    if (!path)
        return FALSE;
    return rmdir(vx::DiskPath(path).c_str()) == 0;
}

DWORD GetFileAttributesA(const char* path)
{
    if (!path)
        return INVALID_FILE_ATTRIBUTES;
    struct stat st {};
    const std::string host = vx::DiskPath(path);
    if (stat(host.c_str(), &st) != 0)
        return INVALID_FILE_ATTRIBUTES;
    return vx::FileAttributesOf(S_ISDIR(st.st_mode), access(host.c_str(), W_OK) == 0, vx::NameOf(host));
}

DWORD GetCurrentDirectoryA(DWORD size, char* buffer)
{
    char here[PATH_MAX];
    if (!getcwd(here, sizeof here))
        return 0;
    const std::string text = vx::PathTextFromHost(here);
    if (!buffer || text.size() + 1 > size)
        return static_cast<DWORD>(text.size() + 1);
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<DWORD>(text.size());
}

BOOL SetCurrentDirectoryA(const char* path)
{
    return path && *path && chdir(vx::DiskPath(path).c_str()) == 0;
}
