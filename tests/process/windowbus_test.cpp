// The window bus between real processes: what others see of a published
// window, when a window counts as gone, and what the bus refuses.
#include "linktest.h"

#include "platform/windowbus_p.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <fcntl.h>
#include <poll.h>

#include <cstring>
#include <thread>

namespace {

using linktest::LinkTest;
using linktest::LogShows;
using linktest::PumpUntil;
using vx::detail::FrameHeader;

std::string SocketOf(pid_t pid)
{
    return vx::WindowBusDirectory() + "/" + std::to_string(pid) + ".sock";
}

int ConnectTo(const std::string& path)
{
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::strncpy(addr.sun_path, path.c_str(), sizeof addr.sun_path - 1);
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) {
        close(fd);
        return -1;
    }
    return fd;
}

FrameHeader Header(vx::detail::FrameKind kind, HWND hwnd, UINT message, std::uint32_t length, std::uint64_t lParam = 0)
{
    return FrameHeader{vx::detail::kBusMagic, static_cast<std::uint32_t>(kind), reinterpret_cast<std::uintptr_t>(hwnd),
                       message, 1, 0, lParam, length, 0};
}

// What comes back within two seconds: the bytes, empty when the other side
// closed the connection.
std::string Answer(int fd, std::size_t want)
{
    std::string got;
    while (got.size() < want) {
        pollfd p{fd, POLLIN, 0};
        if (poll(&p, 1, 2000) <= 0)
            return "timeout";
        char buffer[256];
        const ssize_t n = recv(fd, buffer, sizeof buffer, 0);
        if (n <= 0)
            return got;
        got.append(buffer, static_cast<std::size_t>(n));
    }
    return got;
}

TEST_F(LinkTest, PublishedWindowIsSeenWithItsProcess)
{
    const linktest::Peer peer = StartPeer("IT");
    ASSERT_NE(peer.window, nullptr);
    char text[256] = {};
    GetWindowTextA(peer.window, text, sizeof text);
    EXPECT_STREQ(text, "VEXAL 5.5 Instalacja Demo");
    GetClassNameA(peer.window, text, sizeof text);
    EXPECT_STREQ(text, "AfxMDIFrame42");
    DWORD pid = 0;
    EXPECT_EQ(GetWindowThreadProcessId(peer.window, &pid), static_cast<DWORD>(peer.pid));
    EXPECT_EQ(pid, static_cast<DWORD>(peer.pid));
    EXPECT_TRUE(IsWindow(peer.window));
    vx::WindowRecord record;
    ASSERT_TRUE(vx::GetRemoteWindows()->Describe(peer.window, record));
    EXPECT_EQ(record.processFile, "IT"); // started through the link named IT

    // A title that changes is seen changed; a window withdrawn is gone.
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    frame.SetWindowText("VEXAL 5.5 Plan\tA");
    const std::string registry = linktest::ReadText(vx::WindowBusDirectory() + "/" + std::to_string(getpid()) + ".win");
    EXPECT_NE(registry.find("\tVEXAL 5.5 Plan\\tA\n"), std::string::npos) << registry;
    vx::UnpublishWindow(frame.GetSafeHwnd());
    EXPECT_EQ(linktest::ReadText(vx::WindowBusDirectory() + "/" + std::to_string(getpid()) + ".win").find("Plan"),
              std::string::npos);
}

TEST_F(LinkTest, WindowOfAnEndedProcessIsNoWindow)
{
    ASSERT_TRUE(vx::StartWindowBus());
    const linktest::Peer peer = StartPeer("IT");
    ASSERT_NE(peer.window, nullptr);
    ASSERT_EQ(kill(peer.pid, SIGKILL), 0);
    // Not yet reaped, the process is a zombie, and that is no window.
    EXPECT_TRUE(PumpUntil([&] { return !IsWindow(peer.window); }, 2000));
    EXPECT_EQ(linktest::WindowOfProcess(peer.pid), nullptr);
    EXPECT_EQ(SendMessageA(peer.window, WM_USER + 1, 0, 0), 0);
}

TEST_F(LinkTest, LargeBlocksCrossBothWays)
{
    OpenFrame(MainframeAT);
    const HWND it = KProcessIO::ActivatePartner(MainframeIT, 0);
    ASSERT_NE(it, nullptr);
    CStringArray big;
    big.Add(CString('x', 3 << 20));
    big.Add("end");
    KProcessIO::KData* request = KProcessIO::InitPartner(vxhost::kEcho, KProcessIO::KData::GetSize(big), nullptr);
    ASSERT_NE(request, nullptr);
    request->Write(big);
    KProcessIO::KData* reply = KProcessIO::ExitPartner(request, KProcessIO::SendPartner(it, request));
    ASSERT_NE(reply, nullptr);
    CStringArray back;
    reply->Read(back);
    KProcessIO::ClosePartner(reply);
    ASSERT_EQ(back.GetSize(), 2);
    EXPECT_EQ(back[0].GetLength(), 3 << 20);
    EXPECT_EQ(back[1], "end");

    // Beyond 16 MiB nothing is sent.
    std::vector<std::string> lines;
    auto old = vx::SetWindowBusLog([&](const std::string& line) { lines.push_back(line); });
    std::vector<char> huge((16u << 20) + 1);
    COPYDATASTRUCT cds{1, static_cast<DWORD>(huge.size()), huge.data()};
    EXPECT_EQ(SendMessageA(it, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&cds)), 0);
    vx::SetWindowBusLog(old);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("refused to send a block of 16777217 bytes"), std::string::npos);
}

TEST_F(LinkTest, MalformedDataIsRefusedAndLogged)
{
    const linktest::Peer peer = StartPeer("IT");
    ASSERT_NE(peer.window, nullptr);
    const std::string path = SocketOf(peer.pid);
    using vx::detail::FrameKind;

    // A frame that announces more than 16 MiB: nothing of it is read.
    int fd = ConnectTo(path);
    ASSERT_GE(fd, 0);
    FrameHeader h = Header(FrameKind::Send, peer.window, WM_COPYDATA, (16u << 20) + 1);
    ASSERT_EQ(send(fd, &h, sizeof h, 0), static_cast<ssize_t>(sizeof h));
    EXPECT_EQ(Answer(fd, 1), "");
    close(fd);
    EXPECT_TRUE(LogShows("refused a block of 16777217 bytes (more than 16 MiB)")) << Log();

    // Not a frame at all.
    fd = ConnectTo(path);
    ASSERT_EQ(send(fd, "GET / HTTP/1.0\r\n\r\nxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", 48, 0), 48);
    EXPECT_EQ(Answer(fd, 1), "");
    close(fd);
    EXPECT_TRUE(LogShows("refused a malformed frame"));

    // Sound frames with blocks that are no message blocks get the answer 0.
    fd = ConnectTo(path);
    const auto ask = [&](const std::string& block) {
        FrameHeader f = Header(FrameKind::Send, peer.window, WM_COPYDATA, static_cast<std::uint32_t>(block.size()), 7);
        std::string frame(reinterpret_cast<const char*>(&f), sizeof f);
        frame += block;
        send(fd, frame.data(), frame.size(), 0);
        const std::string reply = Answer(fd, sizeof(FrameHeader));
        if (reply.size() != sizeof(FrameHeader))
            return std::int64_t(-1);
        FrameHeader r;
        std::memcpy(&r, reply.data(), sizeof r);
        return static_cast<std::int64_t>(r.lParam);
    };
    EXPECT_EQ(ask(std::string(20, '\x01')), 0);
    std::string block(100, '\0');
    const std::uint32_t fields[] = {1000, 1000, 200, 0, 0, 0, 0, 62, 36};
    std::memcpy(block.data(), fields, sizeof fields);
    EXPECT_EQ(ask(block), 0);
    close(fd);
    EXPECT_TRUE(LogShows("2-")) << Log();
    EXPECT_TRUE(LogShows("REFUSED 20 bytes: shorter than 38 bytes"));
    EXPECT_TRUE(LogShows("REFUSED 100 bytes: cbData disagrees with its length"));
    // The peer still serves.
    EXPECT_TRUE(IsWindow(peer.window));
}

TEST_F(LinkTest, BusDirectoryIsTheUsersAlone)
{
    vxtest::TempDir runtime;
    const std::string dir = runtime.Path() + "/vxbase";
    std::vector<std::string> lines;
    auto old = vx::SetWindowBusLog([&](const std::string& line) { lines.push_back(line); });
    {
        linktest::ScopedEnvironment env("XDG_RUNTIME_DIR", runtime.Path().c_str());
        EXPECT_EQ(vx::WindowBusDirectory(), dir);
        ASSERT_EQ(mkdir(dir.c_str(), 0755), 0);
        ASSERT_TRUE(vx::StartWindowBus());
        struct stat st {};
        ASSERT_EQ(stat(dir.c_str(), &st), 0);
        EXPECT_EQ(st.st_mode & 0777, 0700u);
        vx::StopWindowBus();
        if (geteuid() == 0) {
            ASSERT_EQ(chown(dir.c_str(), 65534, 65534), 0);
            EXPECT_FALSE(vx::StartWindowBus());
            ASSERT_FALSE(lines.empty());
            EXPECT_NE(lines.back().find("belongs to another user"), std::string::npos);
        }
    }
    {
        linktest::ScopedEnvironment env("XDG_RUNTIME_DIR", nullptr);
        EXPECT_EQ(vx::WindowBusDirectory(), "/tmp/vxbase-" + std::to_string(geteuid()));
    }
    vx::SetWindowBusLog(old);
}

TEST_F(LinkTest, ConnectionOfAnotherUserIsRefused)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs root to run a process as another user";
    vxtest::TempDir runtime;
    ASSERT_EQ(chown(runtime.Path().c_str(), 65534, 65534), 0);
    chmod(runtime.Path().c_str(), 0700);
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        // The other user's program: a published window that counts what
        // reaches it, and its bus log into the pipe.
        close(ready[0]);
        if (setgid(65534) != 0 || setuid(65534) != 0)
            _exit(3);
        setenv("XDG_RUNTIME_DIR", runtime.Path().c_str(), 1);
        struct Counter : CWnd {
            int received = 0;
            LRESULT WindowProc(UINT m, WPARAM w, LPARAM l) override
            {
                if (m == WM_USER + 7)
                    ++received;
                return CWnd::WindowProc(m, w, l);
            }
        } window;
        window.CreateEx("Other user's window", "Other");
        vx::SetWindowBusLog([fd = ready[1]](const std::string& line) {
            [[maybe_unused]] auto w = write(fd, (line + "\n").data(), line.size() + 1);
        });
        if (!vx::PublishWindow(window.GetSafeHwnd()))
            _exit(4);
        [[maybe_unused]] auto w = write(ready[1], "ready\n", 6);
        vx::PumpFor(1500);
        _exit(window.received == 0 ? 0 : 5);
    }
    close(ready[1]);
    char buffer[512] = {};
    ssize_t n = read(ready[0], buffer, sizeof buffer - 1);
    ASSERT_GT(n, 0);
    EXPECT_STREQ(buffer, "ready\n");
    const int fd = ConnectTo(runtime.Path() + "/vxbase/" + std::to_string(child) + ".sock");
    ASSERT_GE(fd, 0);
    const FrameHeader h = Header(vx::detail::FrameKind::Send, nullptr, WM_USER + 7, 0);
    send(fd, &h, sizeof h, MSG_NOSIGNAL);
    EXPECT_EQ(Answer(fd, 1), ""); // closed without an answer
    close(fd);
    std::memset(buffer, 0, sizeof buffer);
    n = read(ready[0], buffer, sizeof buffer - 1);
    close(ready[0]);
    EXPECT_NE(std::string(buffer).find("refused a connection from user 0"), std::string::npos) << buffer;
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

} // namespace
