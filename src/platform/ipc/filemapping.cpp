#include "platform/ipc/filemapping.h"

#include "platform/ipc/filemapping_p.h"
#include "platform/ipc/windowbus.h"

#include <dirent.h>
#include <pthread.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>

namespace vx {
namespace {

// Handles carry a tag in their top bits, so that a number in a message is
// taken for a handle only when it is one of this process's live handles.
constexpr std::uintptr_t kHandleTag = std::uintptr_t(0x564D) << 48; // "VM"
constexpr std::uintptr_t kTagMask = std::uintptr_t(0xFFFF) << 48;
constexpr std::size_t kGranularity = 65536;
constexpr const char* kShmDir = "/dev/shm/";
// Opens that meet a block between its creation and its sizing, or a name
// that is being removed, try again this often, 1 ms apart.
constexpr int kOpenAttempts = 200;

// One block as this process holds it. A named block's descriptor holds a
// shared lock for as long as the process has a handle or a view of it: the
// last process to let go takes the lock exclusively and removes the name.
struct Block {
    std::string shmName; // "" for a block without a name, or one received
    int fd = -1;
    std::size_t size = 0;
    int refs = 0; // handles and views
    dev_t device = 0;
    ino_t inode = 0;
};

struct Handle {
    Block* block = nullptr;
    bool writable = false;
};

struct View {
    Block* block = nullptr;
    std::size_t length = 0;
};

struct Table {
    std::mutex lock;
    std::map<std::uintptr_t, Handle> handles;
    std::uintptr_t next = 1;
    std::map<const void*, View> views;
    std::map<std::string, Block*> named;
    std::size_t blocks = 0;
    bool exitHandler = false;
};

Table& TheTable()
{
    static Table* table = new Table; // outlives the exit handler below
    return *table;
}

void Fail(DWORD error)
{
    SetLastError(error);
}

bool SameObject(int fd, const std::string& shmName)
{
    struct stat a {}, b {};
    return fstat(fd, &a) == 0 && lstat((kShmDir + shmName).c_str(), &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

bool OwnedByUser(const struct stat& st)
{
    return S_ISREG(st.st_mode) && st.st_uid == geteuid();
}

bool PrivateToUser(const struct stat& st)
{
    return OwnedByUser(st) && (st.st_mode & 077) == 0;
}

int LockShared(int fd)
{
    int rc;
    do {
        rc = flock(fd, LOCK_SH);
    } while (rc != 0 && errno == EINTR);
    return rc;
}

// Removes the name of a block that no process holds any more. The caller
// holds the block's lock exclusively, so no other process can take it
// meanwhile; the name is removed only if it still leads to this block.
void RemoveNameIfUnused(int fd, const std::string& shmName)
{
    if (flock(fd, LOCK_EX | LOCK_NB) == 0 && SameObject(fd, shmName))
        shm_unlink(("/" + shmName).c_str());
}

// Called with the table lock held.
void Release(Table& t, Block* block)
{
    if (--block->refs > 0)
        return;
    if (!block->shmName.empty()) {
        t.named.erase(block->shmName);
        RemoveNameIfUnused(block->fd, block->shmName);
    }
    close(block->fd);
    --t.blocks;
    delete block;
}

void CloseEverything()
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    for (auto& [address, view] : t.views) {
        munmap(const_cast<void*>(address), view.length);
        Release(t, view.block);
    }
    t.views.clear();
    for (auto& [value, handle] : t.handles)
        Release(t, handle.block);
    t.handles.clear();
}

// A forked child starts with no blocks, as a new process on the original
// would: what it inherited stays the parent's, whose locks it must not
// touch, and its copies of the views go.
void ForgetInChild()
{
    Table& t = TheTable();
    std::set<Block*> blocks;
    for (auto& [address, view] : t.views) {
        munmap(const_cast<void*>(address), view.length);
        blocks.insert(view.block);
    }
    for (auto& [value, handle] : t.handles)
        blocks.insert(handle.block);
    // Closing a copy of a descriptor leaves the parent's lock as it is.
    for (Block* block : blocks) {
        close(block->fd);
        delete block;
    }
    t.views.clear();
    t.handles.clear();
    t.named.clear();
    t.blocks = 0;
}

// Lets go of everything at the end of the process, as the system would.
void FirstUse(Table& t)
{
    if (t.exitHandler)
        return;
    t.exitHandler = true;
    std::atexit(CloseEverything);
    pthread_atfork([] { TheTable().lock.lock(); }, [] { TheTable().lock.unlock(); },
                   [] {
                       TheTable().lock.unlock();
                       ForgetInChild();
                   });
}

// Removes the names of blocks that no process holds: those left by
// processes that ended without letting go, which on the original would have
// gone with them. Runs before a name is looked up anew.
void SweepAbandoned(Table& t)
{
    const std::string prefix = "vxbase." + std::to_string(geteuid()) + ".";
    DIR* dir = opendir(kShmDir);
    if (!dir)
        return;
    while (const dirent* e = readdir(dir)) {
        if (std::strncmp(e->d_name, prefix.c_str(), prefix.size()) != 0 || t.named.count(e->d_name))
            continue;
        const int fd = shm_open((std::string("/") + e->d_name).c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC, 0);
        if (fd < 0)
            continue;
        struct stat st {};
        if (fstat(fd, &st) == 0 && OwnedByUser(st))
            RemoveNameIfUnused(fd, e->d_name);
        close(fd);
    }
    closedir(dir);
}

HANDLE NewHandle(Table& t, Block* block, bool writable)
{
    ++block->refs;
    const std::uintptr_t value = kHandleTag | t.next++;
    t.handles[value] = Handle{block, writable};
    return reinterpret_cast<HANDLE>(value);
}

Handle* FindHandle(Table& t, HANDLE h)
{
    const auto value = reinterpret_cast<std::uintptr_t>(h);
    if ((value & kTagMask) != kHandleTag)
        return nullptr;
    auto it = t.handles.find(value);
    return it == t.handles.end() ? nullptr : &it->second;
}

Block* HeldBlock(Table& t, const struct stat& st)
{
    const auto same = [&st](const Block* b) { return b->inode == st.st_ino && b->device == st.st_dev; };
    for (const auto& [value, handle] : t.handles) {
        if (same(handle.block))
            return handle.block;
    }
    for (const auto& [address, view] : t.views) {
        if (same(view.block))
            return view.block;
    }
    return nullptr;
}

Block* NewBlock(Table& t, std::string shmName, int fd, std::size_t size)
{
    auto* block = new Block{std::move(shmName), fd, size, 0};
    struct stat st {};
    if (fstat(fd, &st) == 0) {
        block->device = st.st_dev;
        block->inode = st.st_ino;
    }
    ++t.blocks;
    if (!block->shmName.empty())
        t.named[block->shmName] = block;
    return block;
}

DWORD ErrorOfOpen(int error)
{
    switch (error) {
    case ENOENT: return ERROR_FILE_NOT_FOUND;
    case ENAMETOOLONG: return ERROR_FILENAME_EXCED_RANGE;
    case ENOMEM:
    case ENOSPC:
    case EMFILE:
    case ENFILE: return ERROR_NOT_ENOUGH_MEMORY;
    default: return ERROR_ACCESS_DENIED; // EACCES, ELOOP (a planted link), EPERM
    }
}

// Opens (or with `size` creates) the named block and takes its shared lock.
// Returns the descriptor or -1 with `error` set.
int OpenNamed(const std::string& shmName, std::size_t size, bool& created, DWORD& error)
{
    const std::string path = "/" + shmName;
    constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_CLOEXEC;
    for (int attempt = 0; attempt < kOpenAttempts; ++attempt) {
        created = false;
        int fd = -1;
        if (size) {
            fd = shm_open(path.c_str(), kFlags | O_CREAT | O_EXCL, 0600);
            if (fd >= 0) {
                created = true;
                if (fchmod(fd, 0600) != 0 || ftruncate(fd, static_cast<off_t>(size)) != 0) {
                    error = ERROR_NOT_ENOUGH_MEMORY;
                    shm_unlink(path.c_str());
                    close(fd);
                    return -1;
                }
            } else if (errno != EEXIST) {
                error = ErrorOfOpen(errno);
                return -1;
            }
        }
        if (fd < 0) {
            fd = shm_open(path.c_str(), kFlags, 0);
            if (fd < 0) {
                if (errno == ENOENT && size)
                    continue; // removed since the attempt to create it
                error = ErrorOfOpen(errno);
                return -1;
            }
        }
        struct stat st {};
        // A block of someone else's under this user's name is never used.
        if (fstat(fd, &st) != 0 || !PrivateToUser(st)) {
            close(fd);
            error = ERROR_ACCESS_DENIED;
            return -1;
        }
        if (LockShared(fd) != 0 || !SameObject(fd, shmName)) {
            // Removed by its last holder between the open and the lock.
            close(fd);
            continue;
        }
        if (!created && (fstat(fd, &st) != 0 || st.st_size == 0)) {
            // Created but not yet sized by another process.
            close(fd);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        return fd;
    }
    error = ERROR_ACCESS_DENIED;
    return -1;
}

// The session of the names: processes that share a window bus (and so see
// each other's windows) share their blocks, as the programs of one desktop
// session did on the original.
std::string Session()
{
    std::uint32_t h = 2166136261u;
    for (unsigned char c : WindowBusDirectory())
        h = (h ^ c) * 16777619u;
    char text[9];
    std::snprintf(text, sizeof text, "%08x", h);
    return text;
}

std::size_t SizeOf(int fd)
{
    struct stat st {};
    return fstat(fd, &st) == 0 && st.st_size > 0 ? static_cast<std::size_t>(st.st_size) : 0;
}

} // namespace

namespace detail {

std::string SharedMemoryName(const char* name, DWORD& error)
{
    std::string text = name ? name : "";
    for (const char* prefix : {"Local\\", "Global\\"}) {
        if (text.rfind(prefix, 0) == 0) {
            text.erase(0, std::strlen(prefix));
            break;
        }
    }
    if (std::strlen(name ? name : "") >= MAX_PATH) {
        error = ERROR_FILENAME_EXCED_RANGE;
        return {};
    }
    if (text.empty()) {
        error = ERROR_INVALID_NAME;
        return {};
    }
    if (text.find('\\') != std::string::npos) {
        error = ERROR_BAD_PATHNAME;
        return {};
    }
    std::string out = "vxbase." + std::to_string(geteuid()) + "." + Session() + ".";
    for (unsigned char c : text) {
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-') {
            out += static_cast<char>(c);
        } else {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%%%02X", c);
            out += hex;
        }
    }
    if (out.size() > NAME_MAX) {
        error = ERROR_FILENAME_EXCED_RANGE;
        return {};
    }
    return out;
}

bool CloseMapping(HANDLE handle)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Handle* h = FindHandle(t, handle);
    if (!h)
        return false;
    Block* block = h->block;
    t.handles.erase(reinterpret_cast<std::uintptr_t>(handle));
    Release(t, block);
    return true;
}

} // namespace detail

int FileMappingDescriptor(HANDLE handle)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Handle* h = FindHandle(t, handle);
    return h ? h->block->fd : -1;
}

HANDLE AdoptFileMappingDescriptor(int fd)
{
    // A block is shared memory (it answers the question for seals, which
    // files on disk do not) of this user's.
    struct stat st {};
    if (fd < 0 || fstat(fd, &st) != 0 || !OwnedByUser(st) || st.st_size <= 0 || fcntl(fd, F_GET_SEALS) < 0) {
        if (fd >= 0)
            close(fd);
        return nullptr;
    }
    const int mode = fcntl(fd, F_GETFL);
    const bool writable = mode >= 0 && (mode & O_ACCMODE) == O_RDWR;
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    FirstUse(t);
    // A block this process holds already gets one more handle.
    if (Block* held = HeldBlock(t, st)) {
        close(fd);
        return NewHandle(t, held, writable);
    }
    // A named block is held through a descriptor of this process's own, so
    // that its hold counts apart from the sender's: the name lives while
    // either holds the block.
    char link[PATH_MAX] = {};
    const ssize_t n = readlink(("/proc/self/fd/" + std::to_string(fd)).c_str(), link, sizeof link - 1);
    const std::string target = n > 0 ? std::string(link, static_cast<std::size_t>(n)) : std::string();
    const std::string prefix = std::string(kShmDir) + "vxbase." + std::to_string(geteuid()) + ".";
    if (target.rfind(prefix, 0) == 0 && PrivateToUser(st)) {
        const std::string shmName = target.substr(std::strlen(kShmDir));
        const int own = shm_open(("/" + shmName).c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC, 0);
        struct stat ownSt {};
        if (own >= 0 && fstat(own, &ownSt) == 0 && ownSt.st_dev == st.st_dev && ownSt.st_ino == st.st_ino &&
            LockShared(own) == 0 && SameObject(own, shmName)) {
            close(fd);
            return NewHandle(t, NewBlock(t, shmName, own, SizeOf(own)), writable);
        }
        if (own >= 0)
            close(own);
        // Its name has gone meanwhile: the block lives on through this
        // descriptor alone.
    }
    Block* block = NewBlock(t, {}, fd, static_cast<std::size_t>(st.st_size));
    return NewHandle(t, block, writable);
}

std::size_t FileMappingSize(HANDLE mapping)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Handle* h = FindHandle(t, mapping);
    return h ? h->block->size : 0;
}

std::string FileMappingObjectName(const char* name)
{
    DWORD error = ERROR_SUCCESS;
    return detail::SharedMemoryName(name, error);
}

std::size_t OpenFileMappingCount()
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    return t.blocks;
}

} // namespace vx

using namespace vx;

HANDLE CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES, DWORD protect, DWORD sizeHigh, DWORD sizeLow,
                          const char* name)
{
    if (file != INVALID_HANDLE_VALUE) {
        Fail(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    if (protect != PAGE_READWRITE && protect != PAGE_READONLY) {
        Fail(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const std::uint64_t size = (static_cast<std::uint64_t>(sizeHigh) << 32) | sizeLow;
    if (size == 0) {
        Fail(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const bool writable = protect == PAGE_READWRITE;
    Table& t = TheTable();
    if (!name || !*name) {
        const int fd = memfd_create("vxbase", MFD_CLOEXEC);
        if (fd < 0 || ftruncate(fd, static_cast<off_t>(size)) != 0) {
            if (fd >= 0)
                close(fd);
            Fail(ERROR_NOT_ENOUGH_MEMORY);
            return nullptr;
        }
        std::lock_guard lock(t.lock);
        FirstUse(t);
        HANDLE h = NewHandle(t, NewBlock(t, {}, fd, static_cast<std::size_t>(size)), writable);
        SetLastError(ERROR_SUCCESS);
        return h;
    }
    DWORD error = ERROR_SUCCESS;
    const std::string shmName = detail::SharedMemoryName(name, error);
    if (shmName.empty()) {
        Fail(error);
        return nullptr;
    }
    std::lock_guard lock(t.lock);
    FirstUse(t);
    if (auto it = t.named.find(shmName); it != t.named.end()) {
        HANDLE h = NewHandle(t, it->second, writable);
        SetLastError(ERROR_ALREADY_EXISTS);
        return h;
    }
    SweepAbandoned(t);
    bool created = false;
    const int fd = OpenNamed(shmName, static_cast<std::size_t>(size), created, error);
    if (fd < 0) {
        Fail(error);
        return nullptr;
    }
    HANDLE h = NewHandle(t, NewBlock(t, shmName, fd, SizeOf(fd)), writable);
    SetLastError(created ? ERROR_SUCCESS : ERROR_ALREADY_EXISTS);
    return h;
}

HANDLE OpenFileMappingA(DWORD access, BOOL, const char* name)
{
    DWORD error = ERROR_SUCCESS;
    const std::string shmName = detail::SharedMemoryName(name, error);
    if (shmName.empty()) {
        Fail(error);
        return nullptr;
    }
    const bool writable = (access & FILE_MAP_WRITE) != 0;
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    FirstUse(t);
    if (auto it = t.named.find(shmName); it != t.named.end()) {
        SetLastError(ERROR_SUCCESS);
        return NewHandle(t, it->second, writable);
    }
    SweepAbandoned(t);
    bool created = false;
    const int fd = OpenNamed(shmName, 0, created, error);
    if (fd < 0) {
        Fail(error);
        return nullptr;
    }
    SetLastError(ERROR_SUCCESS);
    return NewHandle(t, NewBlock(t, shmName, fd, SizeOf(fd)), writable);
}

LPVOID MapViewOfFile(HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow, SIZE_T bytes)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    Handle* h = FindHandle(t, mapping);
    if (!h) {
        Fail(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    const bool write = (access & FILE_MAP_WRITE) != 0 || access == FILE_MAP_ALL_ACCESS;
    if (write && !h->writable) {
        Fail(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    const std::uint64_t offset = (static_cast<std::uint64_t>(offsetHigh) << 32) | offsetLow;
    if (offset % kGranularity) {
        Fail(ERROR_MAPPED_ALIGNMENT);
        return nullptr;
    }
    Block* block = h->block;
    if (offset >= block->size || bytes > block->size - offset) {
        Fail(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    const std::size_t length = bytes ? bytes : static_cast<std::size_t>(block->size - offset);
    // A private copy (FILE_MAP_COPY) writes to its own pages, never the block.
    const bool copy = (access & FILE_MAP_COPY) && !(access & FILE_MAP_WRITE);
    const int protection = write || copy ? PROT_READ | PROT_WRITE : PROT_READ;
    void* address = mmap(nullptr, length, protection, copy ? MAP_PRIVATE : MAP_SHARED, block->fd,
                         static_cast<off_t>(offset));
    if (address == MAP_FAILED) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    ++block->refs;
    t.views[address] = View{block, length};
    SetLastError(ERROR_SUCCESS);
    return address;
}

BOOL UnmapViewOfFile(LPCVOID address)
{
    Table& t = TheTable();
    std::lock_guard lock(t.lock);
    auto it = t.views.find(address);
    if (it == t.views.end()) {
        Fail(ERROR_INVALID_ADDRESS);
        return FALSE;
    }
    munmap(const_cast<void*>(address), it->second.length);
    Block* block = it->second.block;
    t.views.erase(it);
    Release(t, block);
    return TRUE;
}
