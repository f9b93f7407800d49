#include "platform/files/atomicfile_p.h"

#include "platform/framework/util_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>

namespace vx {
namespace {

class Fd {
public:
    explicit Fd(int fd = -1) : m_fd(fd) {}
    ~Fd() { Reset(); }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int Get() const { return m_fd; }
    void Reset(int fd = -1)
    {
        if (m_fd >= 0)
            close(m_fd);
        m_fd = fd;
    }

private:
    int m_fd;
};

bool WriteFd(int fd, const std::string& text)
{
    const char* data = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const ssize_t n = write(fd, data, left);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
    return true;
}

// The rename only survives a crash once the directory entry is on the disk.
void SyncDirectory(const std::string& dir)
{
    const int fd = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        fsync(fd);
        close(fd);
    }
}

// Writes `text` to a new hidden file next to `path` and flushes it. With a
// `mode` of -1 the file gets 0666 less the umask, as a plain create would.
bool WriteTemp(const std::string& path, const std::string& text, int mode, const struct stat* owner,
               std::string& temp)
{
    static std::atomic<unsigned> counter{0};
    const std::string stem = DirectoryOf(path) + "/." + std::string(NameOf(path)) + ".";
    int fd = -1;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        temp = stem + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".tmp";
        fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            return false;
    }
    if (fd < 0)
        return false;
    Fd guard(fd);
    bool ok = true;
    if (mode >= 0)
        ok = fchmod(fd, static_cast<mode_t>(mode)) == 0;
    // Root rewriting a user's file must not take it away from the user;
    // anyone else cannot give a file away, and keeps it.
    if (owner && geteuid() == 0)
        (void)!fchown(fd, owner->st_uid, owner->st_gid);
    ok = ok && WriteFd(fd, text) && fsync(fd) == 0;
    guard.Reset();
    if (!ok)
        unlink(temp.c_str());
    return ok;
}

std::string FollowLinks(const std::string& path)
{
    struct stat st {};
    if (lstat(path.c_str(), &st) == 0 && S_ISLNK(st.st_mode)) {
        if (char* real = realpath(path.c_str(), nullptr)) {
            std::string target(real);
            std::free(real);
            return target;
        }
    }
    return path;
}

} // namespace

UpdateResult UpdateFile(const std::string& hostPath, const FileUpdater& update)
{
    const std::string path = FollowLinks(hostPath);
    // Each round that starts over does so because another writer replaced
    // or created the file; the bound only stops a pathological livelock.
    for (int round = 0; round < 10000; ++round) {
        Fd fd(open(path.c_str(), O_RDWR | O_CLOEXEC));
        if (fd.Get() < 0) {
            struct stat name {};
            if (errno != ENOENT || lstat(path.c_str(), &name) == 0)
                return UpdateResult::Failed; // includes a link that leads nowhere
            std::string out;
            if (!update(nullptr, out))
                return UpdateResult::Declined;
            std::string temp;
            if (!WriteTemp(path, out, -1, nullptr, temp))
                return UpdateResult::Failed;
            const int linked = link(temp.c_str(), path.c_str());
            const int error = errno;
            if (linked != 0 && (error == EPERM || error == ENOTSUP || error == EOPNOTSUPP)) {
                // A file system without hard links: the short window between
                // the test and the rename is the best it allows.
                struct stat st {};
                const bool exists = stat(path.c_str(), &st) == 0;
                if (!exists && rename(temp.c_str(), path.c_str()) == 0) {
                    SyncDirectory(DirectoryOf(path));
                    return UpdateResult::Done;
                }
                unlink(temp.c_str());
                if (exists)
                    continue;
                return UpdateResult::Failed;
            }
            unlink(temp.c_str());
            if (linked == 0) {
                SyncDirectory(DirectoryOf(path));
                return UpdateResult::Done;
            }
            if (error == EEXIST)
                continue;
            return UpdateResult::Failed;
        }

        struct flock lock {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        while (fcntl(fd.Get(), F_OFD_SETLKW, &lock) != 0) {
            if (errno != EINTR)
                return UpdateResult::Failed;
        }
        struct stat held {};
        struct stat now {};
        if (fstat(fd.Get(), &held) != 0)
            return UpdateResult::Failed;
        if (stat(path.c_str(), &now) != 0 || now.st_ino != held.st_ino || now.st_dev != held.st_dev)
            continue; // replaced while we waited: lock the new file
        if (!S_ISREG(held.st_mode))
            return UpdateResult::Failed;

        std::string current;
        if (!ReadAll(fd.Get(), current))
            return UpdateResult::Failed;
        std::string out;
        if (!update(&current, out))
            return UpdateResult::Declined;
        std::string temp;
        if (!WriteTemp(path, out, static_cast<int>(held.st_mode & 07777), &held, temp))
            return UpdateResult::Failed;
        if (rename(temp.c_str(), path.c_str()) != 0) {
            unlink(temp.c_str());
            return UpdateResult::Failed;
        }
        SyncDirectory(DirectoryOf(path));
        return UpdateResult::Done; // the lock goes with the descriptor
    }
    return UpdateResult::Failed;
}

} // namespace vx
