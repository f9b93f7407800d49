// Named shared memory: one block per name for all of the user's processes,
// living while a handle or view is open, closed to other users, and handed
// to another process as a handle in a message.
#include "process/linktest.h"
#include "support/scopedenv.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>

namespace {

using linktest::LinkTest;

// A name no other test (or test program running beside this one) uses.
std::string Unique(const char* stem)
{
    static int counter = 0;
    return std::string(stem) + "-" + std::to_string(getpid()) + "-" + std::to_string(++counter);
}

std::string ObjectPath(const std::string& name)
{
    return "/dev/shm/" + vx::FileMappingObjectName(name.c_str());
}

HANDLE Create(const std::string& name, DWORD size = 264, DWORD protect = PAGE_READWRITE)
{
    return CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, protect, 0, size, name.c_str());
}

// Runs `body` in a child process as the user "nobody"; its exit code.
template <class Body>
int AsAnotherUser(Body body)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0)
            _exit(99);
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

TEST(FileMapping, SameNameIsTheSameBlock)
{
    const std::string name = Unique("Same");
    HANDLE block = Create(name);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    EXPECT_EQ(vx::FileMappingSize(block), 264u);
    auto* bytes = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes[0], 0); // a new block is zero-filled
    EXPECT_EQ(bytes[263], 0);
    std::strcpy(bytes, "C:\\Projekte\\Demo\\plan.0012");

    // Created again, even with another size, it is the block that exists.
    HANDLE again = Create(name, 4096);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(vx::FileMappingSize(again), 264u);
    HANDLE opened = OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str());
    ASSERT_NE(opened, nullptr);
    const auto* seen = static_cast<const char*>(MapViewOfFile(opened, FILE_MAP_READ, 0, 0, 0));
    ASSERT_NE(seen, nullptr);
    EXPECT_STREQ(seen, "C:\\Projekte\\Demo\\plan.0012");
    bytes[0] = 'D';
    EXPECT_EQ(seen[0], 'D'); // one block, not copies

    // A handle opened for reading gives no view to write through.
    EXPECT_EQ(MapViewOfFile(opened, FILE_MAP_WRITE, 0, 0, 0), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);

    // The same name in another process of the user is the same block too.
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        HANDLE h = OpenFileMappingA(FILE_MAP_WRITE, FALSE, name.c_str());
        auto* b = h ? static_cast<char*>(MapViewOfFile(h, FILE_MAP_WRITE, 0, 0, 0)) : nullptr;
        if (!b || b[0] != 'D')
            _exit(1);
        b[260] = 42;
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(seen[260], 42);

    EXPECT_TRUE(UnmapViewOfFile(seen));
    EXPECT_TRUE(UnmapViewOfFile(bytes));
    for (HANDLE h : {block, again, opened})
        EXPECT_TRUE(CloseHandle(h));
}

TEST(FileMapping, BlockLivesWhileAHandleOrViewIsOpen)
{
    const std::string name = Unique("Life");
    const std::size_t before = vx::OpenFileMappingCount();
    HANDLE block = Create(name);
    ASSERT_NE(block, nullptr);
    void* view = MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(vx::OpenFileMappingCount(), before + 1);
    struct stat st {};
    ASSERT_EQ(stat(ObjectPath(name).c_str(), &st), 0);

    // Without its handle the view keeps it, by name too.
    EXPECT_TRUE(CloseHandle(block));
    static_cast<char*>(view)[0] = 'x';
    HANDLE opened = OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str());
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(CloseHandle(opened));
    EXPECT_TRUE(UnmapViewOfFile(view));

    // With neither, it is gone, name and all.
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_NE(stat(ObjectPath(name).c_str(), &st), 0);
    EXPECT_EQ(vx::OpenFileMappingCount(), before);

    // Made again, it is a new block, zero-filled.
    block = Create(name);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    view = MapViewOfFile(block, FILE_MAP_READ, 0, 0, 0);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(static_cast<char*>(view)[0], 0);
    UnmapViewOfFile(view);
    CloseHandle(block);
}

TEST(FileMapping, BlockHeldByAnotherProcessOutlivesTheCreator)
{
    const std::string name = Unique("Held");
    HANDLE block = Create(name);
    ASSERT_NE(block, nullptr);
    int toChild[2], toParent[2];
    ASSERT_EQ(pipe(toChild), 0);
    ASSERT_EQ(pipe(toParent), 0);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        // A process of its own: it lets go of what it inherited first.
        CloseHandle(block);
        HANDLE h = OpenFileMappingA(FILE_MAP_WRITE, FALSE, name.c_str());
        char c = h ? 'y' : 'n';
        [[maybe_unused]] auto w = write(toParent[1], &c, 1);
        [[maybe_unused]] auto r = read(toChild[0], &c, 1); // until the parent has let go
        auto* b = h ? static_cast<char*>(MapViewOfFile(h, FILE_MAP_WRITE, 0, 0, 0)) : nullptr;
        HANDLE again = OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str());
        const bool same = b && b[0] == 'p' && again;
        CloseHandle(again);
        UnmapViewOfFile(b);
        CloseHandle(h);
        _exit(same ? 0 : 1);
    }
    char c = 0;
    ASSERT_EQ(read(toParent[0], &c, 1), 1);
    ASSERT_EQ(c, 'y');
    auto* view = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0));
    ASSERT_NE(view, nullptr);
    view[0] = 'p';
    UnmapViewOfFile(view);
    EXPECT_TRUE(CloseHandle(block)); // the child still holds it: it stays
    ASSERT_EQ(write(toChild[1], "go", 1), 1);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    // The child was the last: the name went with it.
    struct stat st {};
    EXPECT_NE(stat(ObjectPath(name).c_str(), &st), 0);
    for (int fd : {toChild[0], toChild[1], toParent[0], toParent[1]})
        close(fd);
}

TEST(FileMapping, BlockOfAnEndedProcessIsRemovedLater)
{
    const std::string name = Unique("Crash");
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        // Ends without letting go, as a crash would.
        HANDLE h = Create(name);
        _exit(h ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    // The child made the block and ended holding it. Its name is not looked
    // at here: a test program running beside this one may have looked up a
    // block of its own meanwhile and removed it already, as it should.
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    struct stat st {};
    // The next block looked up removes it: nobody holds it.
    HANDLE other = Create(Unique("Other"));
    ASSERT_NE(other, nullptr);
    EXPECT_NE(stat(ObjectPath(name).c_str(), &st), 0);
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str()), nullptr);
    CloseHandle(other);
}

TEST(FileMapping, NamesStayInTheUsersNamespace)
{
    // The user's namespace, and within it the session of this process's bus.
    const std::string prefix = vx::FileMappingObjectName("x").substr(0, vx::FileMappingObjectName("x").size() - 1);
    ASSERT_EQ(prefix.rfind("vxbase." + std::to_string(geteuid()) + ".", 0), 0u) << prefix;
    ASSERT_EQ(prefix.size(), std::string("vxbase." + std::to_string(geteuid()) + ".").size() + 9);
    {
        vxtest::ScopedEnv other("XDG_RUNTIME_DIR", "/run/user/elsewhere");
        EXPECT_NE(vx::FileMappingObjectName("x"), prefix + "x"); // another session
    }
    EXPECT_EQ(vx::FileMappingObjectName("VXW_PREVIEW"), prefix + "VXW_PREVIEW");
    EXPECT_EQ(vx::FileMappingObjectName("Local\\VXW_PREVIEW"), prefix + "VXW_PREVIEW");
    EXPECT_EQ(vx::FileMappingObjectName("Global\\VXW_PREVIEW"), prefix + "VXW_PREVIEW");
    // Every byte that could lead elsewhere is written out, and "%" too, so
    // that two names never meet.
    EXPECT_EQ(vx::FileMappingObjectName("../../etc/passwd"),
              prefix + "%2E%2E%2F%2E%2E%2Fetc%2Fpasswd");
    EXPECT_EQ(vx::FileMappingObjectName("/"), prefix + "%2F");
    EXPECT_EQ(vx::FileMappingObjectName("a/b"), prefix + "a%2Fb");
    EXPECT_EQ(vx::FileMappingObjectName("a%2Fb"), prefix + "a%252Fb");
    EXPECT_EQ(vx::FileMappingObjectName("\xE4"), prefix + "%E4");

    // Such a name makes a block inside the namespace, and nothing outside.
    const std::string climbing = "../" + Unique("climb");
    HANDLE block = Create(climbing);
    ASSERT_NE(block, nullptr);
    struct stat st {};
    EXPECT_EQ(stat(ObjectPath(climbing).c_str(), &st), 0);
    EXPECT_NE(stat(("/dev/" + climbing.substr(3)).c_str(), &st), 0);
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_READ, FALSE, ("..%2F" + climbing.substr(3)).c_str()), nullptr);
    CloseHandle(block);

    // Names that cannot be one are refused with their reason.
    const std::string longName(MAX_PATH, 'n');
    EXPECT_EQ(Create(longName), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_FILENAME_EXCED_RANGE);
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_READ, FALSE, longName.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_FILENAME_EXCED_RANGE);
    // Short enough for the platform, too long once its bytes are written out.
    EXPECT_EQ(Create(std::string(200, '/')), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_FILENAME_EXCED_RANGE);
    EXPECT_EQ(Create("Session\\1\\Name"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_BAD_PATHNAME);
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_READ, FALSE, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_NAME);
}

TEST(FileMapping, BlocksArePrivateToTheUser)
{
    const std::string name = Unique("Private");
    HANDLE block = Create(name);
    ASSERT_NE(block, nullptr);
    struct stat st {};
    ASSERT_EQ(stat(ObjectPath(name).c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_EQ(st.st_uid, geteuid());
    if (geteuid() != 0) {
        CloseHandle(block);
        GTEST_SKIP() << "needs root to run a process as another user";
    }
    // Another user's process neither finds it by name nor opens it directly.
    const std::string path = ObjectPath(name);
    const int code = AsAnotherUser([&] {
        if (OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str()))
            return 1;
        if (open(path.c_str(), O_RDONLY) >= 0)
            return 2;
        return errno == EACCES ? 0 : 3;
    });
    EXPECT_EQ(code, 0);
    CloseHandle(block);
}

TEST(FileMapping, BlockPlantedByAnotherUserIsRefused)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to run a process as another user";
    // Another user makes an object under this user's name, open to all, or
    // a link to one; neither is taken for the block.
    const std::string name = Unique("Planted");
    const std::string path = ObjectPath(name);
    ASSERT_EQ(AsAnotherUser([&] {
                  const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL, 0666);
                  if (fd < 0 || ftruncate(fd, 264) != 0)
                      return 1;
                  fchmod(fd, 0666);
                  close(fd);
                  return 0;
              }),
              0);
    EXPECT_EQ(Create(name), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_WRITE, FALSE, name.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    struct stat st {};
    ASSERT_EQ(stat(path.c_str(), &st), 0); // left alone
    EXPECT_EQ(st.st_uid, 65534u);
    unlink(path.c_str());

    const std::string linked = Unique("Linked");
    const std::string target = ObjectPath(Unique("Target"));
    ASSERT_EQ(symlink(target.c_str(), ObjectPath(linked).c_str()), 0);
    EXPECT_EQ(Create(linked), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_NE(stat(target.c_str(), &st), 0); // nothing made through the link
    unlink(ObjectPath(linked).c_str());
}

TEST(FileMapping, BadArgumentsFailWithTheirReason)
{
    const std::string name = Unique("Args");
    EXPECT_EQ(CreateFileMappingA(nullptr, nullptr, PAGE_READWRITE, 0, 264, name.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Create(name, 0), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(Create(name, 264, 0x40), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);

    HANDLE block = Create(name, 3 * 65536);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(MapViewOfFile(block, FILE_MAP_READ, 0, 100, 0), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MAPPED_ALIGNMENT);
    EXPECT_EQ(MapViewOfFile(block, FILE_MAP_READ, 0, 65536, 2 * 65536 + 1), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(MapViewOfFile(block, FILE_MAP_READ, 0, 3 * 65536, 0), nullptr);
    auto* tail = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 2 * 65536, 0));
    auto* whole = static_cast<char*>(MapViewOfFile(block, FILE_MAP_READ, 0, 0, 0));
    ASSERT_NE(tail, nullptr);
    ASSERT_NE(whole, nullptr);
    tail[1] = 'T';
    EXPECT_EQ(whole[2 * 65536 + 1], 'T');
    EXPECT_FALSE(UnmapViewOfFile(tail + 1));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_ADDRESS);
    EXPECT_TRUE(UnmapViewOfFile(tail));
    EXPECT_TRUE(UnmapViewOfFile(whole));
    EXPECT_FALSE(UnmapViewOfFile(whole));
    EXPECT_TRUE(CloseHandle(block));
    EXPECT_FALSE(CloseHandle(block));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(MapViewOfFile(block, FILE_MAP_READ, 0, 0, 0), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);

    // A read-only block gives read-only views; a block without a name is
    // reached through its handle alone.
    HANDLE readOnly = Create(Unique("ReadOnly"), 16, PAGE_READONLY);
    ASSERT_NE(readOnly, nullptr);
    EXPECT_EQ(MapViewOfFile(readOnly, FILE_MAP_WRITE, 0, 0, 0), nullptr);
    CloseHandle(readOnly);
    HANDLE unnamed = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 100, nullptr);
    ASSERT_NE(unnamed, nullptr);
    EXPECT_EQ(vx::FileMappingSize(unnamed), 100u);
    EXPECT_TRUE(CloseHandle(unnamed));
}

TEST_F(LinkTest, HandleInAMessageIsTheSameBlockThere)
{
    const linktest::Peer peer = StartPeer("IT");
    ASSERT_NE(peer.window, nullptr);
    const UINT upper = RegisterWindowMessageA(vxhost::kUpperBlockMessage);
    const std::size_t held = vx::OpenFileMappingCount();
    for (const char* name : {"", "Upper"}) {
        SCOPED_TRACE(*name ? "named" : "unnamed");
        const std::string unique = *name ? Unique(name) : std::string();
        HANDLE block = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 264,
                                          unique.empty() ? nullptr : unique.c_str());
        ASSERT_NE(block, nullptr);
        auto* bytes = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0));
        std::strcpy(bytes, "plan.0012");
        EXPECT_EQ(SendMessageA(peer.window, upper, reinterpret_cast<WPARAM>(block), 0), 264);
        EXPECT_STREQ(bytes, "PLAN.0012");
        // A broadcast carries it as well.
        std::strcpy(bytes, "abc");
        EXPECT_EQ(SendMessageA(HWND_BROADCAST, upper, reinterpret_cast<WPARAM>(block), 0), 264);
        EXPECT_STREQ(bytes, "ABC");
        UnmapViewOfFile(bytes);
        CloseHandle(block);
        if (!unique.empty()) {
            // The peer let go of it when its handler returned: it is gone.
            struct stat st {};
            EXPECT_NE(stat(ObjectPath(unique).c_str(), &st), 0);
        }
    }
    EXPECT_EQ(vx::OpenFileMappingCount(), held);
    // A number that is no handle of this process crosses as a number, and
    // the peer finds no block behind it.
    EXPECT_EQ(SendMessageA(peer.window, upper, 12345, 0), 0);
}

} // namespace
