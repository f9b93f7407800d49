// The window bus between real processes: what others see of a published
// window, when a window counts as gone, and what the bus refuses.
#include "process/linktest.h"

#include "platform/ipc/windowbus_p.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>

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

// A process's socket as anyone could use it: datagrams out, answers in.
class RawClient {
public:
    explicit RawClient(const std::string& path) : m_path(path)
    {
        m_fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un addr = Address(path);
        unlink(path.c_str());
        bind(m_fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
    }
    ~RawClient()
    {
        close(m_fd);
        unlink(m_path.c_str());
    }
    bool SendTo(const std::string& path, const std::string& bytes, const std::vector<int>& fds = {})
    {
        sockaddr_un addr = Address(path);
        iovec part{const_cast<char*>(bytes.data()), bytes.size()};
        msghdr msg{};
        msg.msg_name = &addr;
        msg.msg_namelen = sizeof addr;
        msg.msg_iov = &part;
        msg.msg_iovlen = 1;
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * 4)] = {};
        if (!fds.empty()) {
            msg.msg_control = control;
            msg.msg_controllen = CMSG_SPACE(sizeof(int) * fds.size());
            cmsghdr* c = CMSG_FIRSTHDR(&msg);
            c->cmsg_level = SOL_SOCKET;
            c->cmsg_type = SCM_RIGHTS;
            c->cmsg_len = CMSG_LEN(sizeof(int) * fds.size());
            std::memcpy(CMSG_DATA(c), fds.data(), sizeof(int) * fds.size());
        }
        return sendmsg(m_fd, &msg, 0) == static_cast<ssize_t>(bytes.size());
    }
    // The next datagram within the time, or "timeout".
    std::string Receive(int milliseconds = 2000)
    {
        pollfd p{m_fd, POLLIN, 0};
        if (poll(&p, 1, milliseconds) <= 0)
            return "timeout";
        std::string bytes(256, '\0');
        const ssize_t n = recv(m_fd, bytes.data(), bytes.size(), 0);
        bytes.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
        return bytes;
    }

private:
    static sockaddr_un Address(const std::string& path)
    {
        sockaddr_un addr{};
        addr.sun_family = AF_UNIX;
        std::strncpy(addr.sun_path, path.c_str(), sizeof addr.sun_path - 1);
        return addr;
    }
    std::string m_path;
    int m_fd = -1;
};

std::string Frame(vx::detail::FrameKind kind, HWND hwnd, UINT message, const std::string& data,
                  std::uint32_t dataLength, std::uint32_t offset = 0, std::uint32_t carriers = 0)
{
    const FrameHeader h{vx::detail::kBusMagic, static_cast<std::uint32_t>(kind) | carriers,
                        reinterpret_cast<std::uintptr_t>(hwnd), message, 1, 0, 7, dataLength, offset};
    return std::string(reinterpret_cast<const char*>(&h), sizeof h) + data;
}

// How many descriptors a process has open.
int OpenDescriptors(pid_t pid)
{
    int n = 0;
    if (DIR* d = opendir(("/proc/" + std::to_string(pid) + "/fd").c_str())) {
        while (const dirent* e = readdir(d))
            n += e->d_name[0] != '.';
        closedir(d);
    }
    return n;
}

std::int64_t AnswerOf(const std::string& datagram)
{
    if (datagram.size() != sizeof(FrameHeader))
        return -1;
    FrameHeader h;
    std::memcpy(&h, datagram.data(), sizeof h);
    return h.kind == static_cast<std::uint32_t>(vx::detail::FrameKind::Reply) ? static_cast<std::int64_t>(h.lParam)
                                                                               : -1;
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
    const std::string registry = vxtest::ReadBytes(vx::WindowBusDirectory() + "/" + std::to_string(getpid()) + ".win");
    EXPECT_NE(registry.find("\tVEXAL 5.5 Plan\\tA\n"), std::string::npos) << registry;
    vx::UnpublishWindow(frame.GetSafeHwnd());
    EXPECT_EQ(vxtest::ReadBytes(vx::WindowBusDirectory() + "/" + std::to_string(getpid()) + ".win").find("Plan"),
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
    const std::string target = SocketOf(peer.pid);
    RawClient raw(linktest::Environment().run + "/raw.sock");
    using vx::detail::FrameKind;

    // A block that announces more than 16 MiB; a datagram that is no frame;
    // one longer than any frame; a piece of a block never begun.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_COPYDATA, "", (16u << 20) + 1)));
    ASSERT_TRUE(raw.SendTo(target, std::string(48, 'x')));
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_COPYDATA, std::string(70000, 'y'), 70000)));
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_COPYDATA, "zz", 100, 98)));
    EXPECT_EQ(raw.Receive(500), "timeout"); // none of them is answered
    EXPECT_TRUE(LogShows("refused a block of 16777217 bytes (more than 16 MiB)")) << Log();
    EXPECT_TRUE(LogShows("refused a malformed message"));
    EXPECT_TRUE(LogShows("refused a piece out of its order"));

    // Sound frames whose blocks are no message blocks get the answer 0.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_COPYDATA, std::string(20, '\x01'), 20)));
    EXPECT_EQ(AnswerOf(raw.Receive()), 0);
    std::string block(100, '\0');
    const std::uint32_t fields[] = {1000, 1000, 200, 0, 0, 0, 0, 62, 36};
    std::memcpy(block.data(), fields, sizeof fields);
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_COPYDATA, block, 100)));
    EXPECT_EQ(AnswerOf(raw.Receive()), 0);
    EXPECT_TRUE(LogShows("2-")) << Log();
    EXPECT_TRUE(LogShows("REFUSED 20 bytes: shorter than 38 bytes"));
    EXPECT_TRUE(LogShows("REFUSED 100 bytes: cbData disagrees with its length"));
    // The peer still serves: a sound request gets its answer.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_USER + 1, "", 0)));
    EXPECT_EQ(AnswerOf(raw.Receive()), 0);
    EXPECT_TRUE(IsWindow(peer.window));
}

TEST_F(LinkTest, HandlesThatDoNotFitTheirMessageAreRefused)
{
    const linktest::Peer peer = StartPeer("IT");
    ASSERT_NE(peer.window, nullptr);
    const std::string target = SocketOf(peer.pid);
    RawClient raw(linktest::Environment().run + "/raw.sock");
    using vx::detail::FrameKind;
    const UINT upper = RegisterWindowMessageA(vxhost::kUpperBlockMessage);
    const std::uint32_t mappingInWParam = vx::kFileMappingCarrier << vx::detail::kWParamCarrierShift;
    // Served once, so that the descriptors the peer keeps for itself are open.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, upper, "", 0)));
    EXPECT_EQ(AnswerOf(raw.Receive()), 0);
    const int before = OpenDescriptors(peer.pid);
    ASSERT_GT(before, 0);

    const int block = memfd_create("test", MFD_CLOEXEC);
    ASSERT_EQ(ftruncate(block, 264), 0);
    const int file = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
    // A handle announced without its descriptor; a descriptor nobody
    // announced; one with a post, and one with a message that carries data.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, upper, "", 0, 0, mappingInWParam)));
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, upper, "", 0), {block}));
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Post, peer.window, upper, "", 0, 0, mappingInWParam), {block}));
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, WM_COPYDATA, "ab", 2, 0, mappingInWParam),
                           {block}));
    // Bits that no kind of frame has.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, upper, "", 0, 0, 0x01000000u)));
    EXPECT_EQ(raw.Receive(500), "timeout");
    EXPECT_TRUE(LogShows("refused handles that do not match their message")) << Log();
    EXPECT_TRUE(LogShows("refused a malformed message"));

    // A descriptor that is no block of the user's is no handle: answered 0.
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, upper, "", 0, 0, mappingInWParam), {file}));
    EXPECT_EQ(AnswerOf(raw.Receive()), 0);
    EXPECT_TRUE(LogShows("refused a handle of process"));
    // A block is one: the peer writes into it.
    ASSERT_EQ(pwrite(block, "plan", 5, 0), 5);
    ASSERT_TRUE(raw.SendTo(target, Frame(FrameKind::Send, peer.window, upper, "", 0, 0, mappingInWParam), {block}));
    EXPECT_EQ(AnswerOf(raw.Receive()), 264);
    char back[5] = {};
    ASSERT_EQ(pread(block, back, 5, 0), 5);
    EXPECT_STREQ(back, "PLAN");
    // Nothing it was sent stayed open in the peer.
    EXPECT_EQ(OpenDescriptors(peer.pid), before);
    close(block);
    close(file);
}

TEST_F(LinkTest, BusDirectoryIsTheUsersAlone)
{
    vxtest::TempDir runtime;
    const std::string dir = runtime.Path() + "/vxbase";
    std::vector<std::string> lines;
    auto old = vx::SetWindowBusLog([&](const std::string& line) { lines.push_back(line); });
    {
        vxtest::ScopedEnv env("XDG_RUNTIME_DIR", runtime.Path().c_str());
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
        vxtest::ScopedEnv env("XDG_RUNTIME_DIR", nullptr);
        EXPECT_EQ(vx::WindowBusDirectory(), "/tmp/runtime-" + std::to_string(geteuid()) + "/vxbase");
    }
    vx::SetWindowBusLog(old);
}

TEST_F(LinkTest, MessageOfAnotherUserIsRefused)
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
        const std::string line =
            "ready " + std::to_string(reinterpret_cast<std::uintptr_t>(window.GetSafeHwnd())) + "\n";
        [[maybe_unused]] auto w = write(ready[1], line.data(), line.size());
        vx::PumpFor(1500);
        _exit(window.received == 0 ? 0 : 5);
    }
    close(ready[1]);
    char buffer[512] = {};
    ssize_t n = read(ready[0], buffer, sizeof buffer - 1);
    ASSERT_GT(n, 0);
    ASSERT_EQ(std::string(buffer).rfind("ready ", 0), 0u) << buffer;
    const auto window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::strtoull(buffer + 6, nullptr, 10)));
    ASSERT_EQ(vx::HandleProcess(window), child);
    {
        RawClient raw(linktest::Environment().root.Path() + "/root.sock");
        ASSERT_TRUE(raw.SendTo(runtime.Path() + "/vxbase/" + std::to_string(child) + ".sock",
                               Frame(vx::detail::FrameKind::Send, window, WM_USER + 7, "", 0)));
        EXPECT_EQ(raw.Receive(1000), "timeout"); // refused, not answered
    }
    std::memset(buffer, 0, sizeof buffer);
    n = read(ready[0], buffer, sizeof buffer - 1);
    close(ready[0]);
    EXPECT_NE(std::string(buffer).find("refused a message from user 0"), std::string::npos) << buffer;
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

} // namespace

namespace {

TEST_F(LinkTest, NotificationIsHandledWithoutAWaitForItsAnswer)
{
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    // A window of this process handles it at once.
    EXPECT_TRUE(SendNotifyMessageA(frame.GetSafeHwnd(), WM_CLOSE, 0, 0));
    EXPECT_EQ(frame.m_closeRequests, 1);
    EXPECT_FALSE(SendNotifyMessageA(nullptr, WM_CLOSE, 0, 0));

    // One of another process handles it in its own time: a request to quit.
    const linktest::Peer peer = StartPeer("IT");
    ASSERT_NE(peer.window, nullptr);
    KProcessIO::KData* quit = KProcessIO::InitPartner(vxhost::kQuit, 0, nullptr);
    ASSERT_NE(quit, nullptr);
    COPYDATASTRUCT cds{quit->m_dwData, quit->m_cbData, quit};
    EXPECT_TRUE(SendNotifyMessageA(peer.window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&cds)));
    KProcessIO::ExitPartner(quit, 0);
    EXPECT_TRUE(PumpUntil([&] { return !IsWindow(peer.window); }, 3000));
}

} // namespace

// SetWindowPlacement on a window of another process is carried out by that
// process: the record travels as its 44 bytes and the answer is the
// owner's. Only published windows take it.
TEST_F(LinkTest, PlacementIsCarriedOutByTheWindowsProcess)
{
    vxhost::PartnerFrame& frame = OpenFrame(MainframeAT);
    frame.ShowWindow(SW_SHOW);
    RawClient raw(linktest::Environment().run + "/raw.sock");
    using vx::detail::FrameKind;
    WINDOWPLACEMENT wp{};
    wp.length = sizeof wp;
    wp.showCmd = SW_HIDE;
    wp.rcNormalPosition = RECT{40, 30, 440, 330};
    const std::string record(reinterpret_cast<const char*>(&wp), sizeof wp);
    ASSERT_TRUE(raw.SendTo(SocketOf(getpid()), Frame(FrameKind::Place, frame.GetSafeHwnd(), 0, record, sizeof wp)));
    EXPECT_TRUE(PumpUntil([&] { return !frame.IsWindowVisible(); }));
    CRect placed;
    frame.GetWindowRect(&placed);
    EXPECT_EQ(placed, CRect(40, 30, 440, 330));
    EXPECT_EQ(AnswerOf(raw.Receive()), 1);

    CWnd unpublished;
    unpublished.CreateEx("", "VxPlain", WS_OVERLAPPED, CRect(1, 2, 3, 4));
    ASSERT_TRUE(
        raw.SendTo(SocketOf(getpid()), Frame(FrameKind::Place, unpublished.GetSafeHwnd(), 0, record, sizeof wp)));
    std::string answer = "timeout";
    EXPECT_TRUE(PumpUntil([&] {
        answer = raw.Receive(0);
        return answer != "timeout";
    }));
    EXPECT_EQ(AnswerOf(answer), 0);
    unpublished.GetWindowRect(&placed);
    EXPECT_EQ(placed, CRect(1, 2, 3, 4));
}
