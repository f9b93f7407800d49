#include "platform/windowbus.h"

#include "platform/cwnd.h"
#include "platform/messagepump.h"
#include "platform/messagequeue_p.h"
#include "platform/procinfo_p.h"
#include "platform/windowbus_p.h"
#include "platform/windows.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>

namespace vx {
namespace {

using detail::FrameHeader;
using detail::FrameKind;

constexpr std::size_t kHeaderSize = sizeof(FrameHeader);
constexpr std::size_t kPlacementSize = sizeof(WINDOWPLACEMENT);
static_assert(kPlacementSize == 44, "a placement travels as eleven 32-bit values");

std::mutex g_logLock;
WindowBusLog g_log;

void Log(const std::string& line)
{
    WindowBusLog log;
    {
        std::lock_guard lock(g_logLock);
        log = g_log;
    }
    if (log)
        log(line);
    else
        std::fprintf(stderr, "vxbase: %s\n", line.c_str());
}

// System messages whose lParam is no pointer; the others cannot cross.
bool CarriesNumbersOnly(UINT message)
{
    return message >= WM_USER || message == WM_NULL || message == WM_CLOSE || message == WM_SHOWWINDOW ||
           message == WM_ACTIVATE || message == WM_ENABLE;
}

std::string RegistryEscape(const std::string& text)
{
    std::string out;
    for (char c : text) {
        switch (c) {
        case '\\': out += "\\\\"; break;
        case '\t': out += "\\t"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        default: out += c;
        }
    }
    return out;
}

std::string RegistryUnescape(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return out;
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A received-bytes buffer that grows without clearing what it gets.
struct InBuffer {
    std::unique_ptr<char[]> bytes;
    std::size_t capacity = 0;
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t Size() const { return end - begin; }
    const char* Data() const { return bytes.get() + begin; }
    void Consume(std::size_t n)
    {
        begin += n;
        if (begin == end)
            begin = end = 0;
    }
    // Room for at least `room` more bytes behind what is held.
    void Reserve(std::size_t room)
    {
        if (capacity - end >= room)
            return;
        const std::size_t held = Size();
        if (capacity - held >= room && begin > 0) {
            std::memmove(bytes.get(), bytes.get() + begin, held);
        } else {
            const std::size_t grown = std::max(capacity * 2, held + room);
            std::unique_ptr<char[]> fresh(new char[grown]);
            if (held)
                std::memcpy(fresh.get(), bytes.get() + begin, held);
            bytes = std::move(fresh);
            capacity = grown;
        }
        begin = 0;
        end = held;
    }
};

struct Connection {
    int fd = -1;
    pid_t peer = 0;
    bool incoming = false;
    bool closed = false;
    bool writing = false; // a frame is half written; nested requests need another connection
    InBuffer in;
};
using ConnectionPtr = std::shared_ptr<Connection>;

struct Frame {
    FrameHeader header{};
    std::vector<char> data;
};

enum class Take { Frame, Incomplete, Broken };

class Bus final : public RemoteWindows {
public:
    bool Start();
    void Stop();
    bool Running();
    bool Publish(HWND hwnd);
    void Unpublish(HWND hwnd);
    bool IsPublished(HWND hwnd);
    int ServeFor(int timeoutMs);
    BOOL Place(HWND hwnd, const WINDOWPLACEMENT& placement);

    std::vector<WindowRecord> Enumerate() override;
    bool Describe(HWND hwnd, WindowRecord& out) override;
    bool IsAlive(HWND hwnd) override;
    LRESULT Send(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    bool Post(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL Show(HWND hwnd, int command) override;
    void LocalWindowChanged(HWND hwnd) override;

private:
    std::string Directory();
    bool ReadPeer(pid_t pid, detail::Registry& out);
    void WriteRegistryLocked();
    void RemoveDeadPeers();

    LRESULT Request(FrameKind kind, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, const void* data,
                    std::uint32_t length);
    ConnectionPtr Deliver(pid_t pid, const FrameHeader& header, const void* data);
    ConnectionPtr Outgoing(pid_t pid, bool& fresh);
    ConnectionPtr Connect(pid_t pid);
    bool WriteFrame(const ConnectionPtr& c, const FrameHeader& header, const void* data);
    short WaitAndServe(Connection* watch, short events, int timeoutMs, int* served);
    void Accept();
    void ServeConnection(const ConnectionPtr& c, int* served);
    void Handle(const ConnectionPtr& c, const Frame& frame);
    LRESULT Dispatch(const Frame& frame);
    bool Fill(Connection& c);
    Take TakeFrame(Connection& c, Frame& out);
    void Close(const ConnectionPtr& c);

    std::mutex m_lock; // guards the state below; never held while waiting
    bool m_running = false;
    std::string m_dir;
    long long m_startTime = -1;
    std::vector<HWND> m_published;

    // Connections belong to the pumping thread.
    int m_listen = -1;
    std::map<int, ConnectionPtr> m_incoming;
    std::map<pid_t, ConnectionPtr> m_outgoing;
    std::vector<ConnectionPtr> m_extra;
    std::uint32_t m_sequence = 0;
};

Bus& TheBus()
{
    static Bus* bus = new Bus; // outlives static destructors of hosts
    return *bus;
}

std::string SocketPath(const std::string& dir, pid_t pid)
{
    return dir + "/" + std::to_string(pid) + ".sock";
}

std::string RegistryPath(const std::string& dir, pid_t pid)
{
    return dir + "/" + std::to_string(pid) + ".win";
}

// Makes the directory if needed and insists that it is the user's own and
// closed to everyone else.
bool MakePrivateDirectory(const std::string& dir)
{
    if (mkdir(dir.c_str(), 0700) != 0 && errno != EEXIST) {
        Log("window bus: cannot create " + dir + ": " + std::strerror(errno));
        return false;
    }
    struct stat st {};
    if (lstat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
        Log("window bus: " + dir + " is not a directory");
        return false;
    }
    if (st.st_uid != geteuid()) {
        Log("window bus: " + dir + " belongs to another user");
        return false;
    }
    if ((st.st_mode & 077) != 0 && chmod(dir.c_str(), 0700) != 0) {
        Log("window bus: cannot make " + dir + " private");
        return false;
    }
    return true;
}

bool WriteAll(int fd, const void* bytes, std::size_t size)
{
    const char* p = static_cast<const char*>(bytes);
    while (size) {
        const ssize_t n = send(fd, p, size, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        p += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

void AtExitRemoveFiles()
{
    Bus& bus = TheBus();
    bus.Stop();
}

// --- registry files ---------------------------------------------------------

std::string Bus::Directory()
{
    std::lock_guard lock(m_lock);
    return m_dir;
}

bool Bus::ReadPeer(pid_t pid, detail::Registry& out)
{
    const std::string dir = Directory();
    if (dir.empty() || !detail::ParseRegistry(ReadFile(RegistryPath(dir, pid)), out))
        return false;
    // A file left by an ended process, or by an earlier process of the
    // same id, names no live window.
    return out.startTime >= 0 && detail::ProcessStartTime(pid) == out.startTime;
}

void Bus::WriteRegistryLocked()
{
    if (!m_running)
        return;
    detail::Registry registry;
    registry.startTime = m_startTime;
    for (HWND h : m_published) {
        char text[1024];
        detail::RegisteredWindow w;
        w.hwnd = h;
        GetClassNameA(h, text, sizeof text);
        w.className = text;
        const int length = GetWindowTextLengthA(h);
        std::string title(static_cast<std::size_t>(length) + 1, '\0');
        GetWindowTextA(h, title.data(), length + 1);
        title.resize(static_cast<std::size_t>(length));
        w.title = title;
        registry.windows.push_back(w);
    }
    const std::string path = RegistryPath(m_dir, detail::CurrentProcessId());
    const std::string temp = path + ".tmp";
    const std::string text = detail::FormatRegistry(registry);
    const int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) {
        Log("window bus: cannot write " + path + ": " + std::strerror(errno));
        return;
    }
    const bool written = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(fd);
    // The rename makes the new list appear whole to readers.
    if (!written || rename(temp.c_str(), path.c_str()) != 0) {
        Log("window bus: cannot write " + path);
        unlink(temp.c_str());
    }
}

void Bus::RemoveDeadPeers()
{
    const std::string dir = Directory();
    DIR* d = opendir(dir.c_str());
    if (!d)
        return;
    std::vector<pid_t> dead;
    while (const dirent* e = readdir(d)) {
        char* end = nullptr;
        const long id = std::strtol(e->d_name, &end, 10);
        if (id > 0 && end && (!std::strcmp(end, ".win") || !std::strcmp(end, ".sock")) &&
            kill(static_cast<pid_t>(id), 0) != 0 && errno == ESRCH)
            dead.push_back(static_cast<pid_t>(id));
    }
    closedir(d);
    for (pid_t pid : dead) {
        unlink(RegistryPath(dir, pid).c_str());
        unlink(SocketPath(dir, pid).c_str());
    }
}

// --- start and stop -----------------------------------------------------------

bool Bus::Start()
{
    std::unique_lock lock(m_lock);
    if (m_running)
        return true;
    const std::string dir = WindowBusDirectory();
    if (!MakePrivateDirectory(dir))
        return false;
    const std::string path = SocketPath(dir, detail::CurrentProcessId());
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    if (path.size() >= sizeof addr.sun_path) {
        Log("window bus: the socket path is too long: " + path);
        return false;
    }
    std::memcpy(addr.sun_path, path.c_str(), path.size() + 1);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0)
        return false;
    // A socket file under this process id can only be an earlier process's.
    unlink(path.c_str());
    if (bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0 || listen(fd, 64) != 0) {
        Log("window bus: cannot listen on " + path + ": " + std::strerror(errno));
        close(fd);
        return false;
    }
    chmod(path.c_str(), 0600);
    m_dir = dir;
    m_listen = fd;
    m_startTime = detail::ProcessStartTime(detail::CurrentProcessId());
    m_running = true;
    WriteRegistryLocked();
    lock.unlock();

    AddPumpSource(fd, [this] { Accept(); });
    SetRemoteWindows(this);
    static std::once_flag atExit;
    std::call_once(atExit, [] { std::atexit(AtExitRemoveFiles); });
    RemoveDeadPeers();
    return true;
}

void Bus::Stop()
{
    std::string dir;
    {
        std::lock_guard lock(m_lock);
        if (!m_running)
            return;
        m_running = false;
        m_published.clear();
        dir = m_dir;
    }
    if (GetRemoteWindows() == this)
        SetRemoteWindows(nullptr);
    std::vector<ConnectionPtr> all;
    for (auto& [fd, c] : m_incoming)
        all.push_back(c);
    for (auto& [pid, c] : m_outgoing)
        all.push_back(c);
    all.insert(all.end(), m_extra.begin(), m_extra.end());
    for (const auto& c : all)
        Close(c);
    if (m_listen >= 0) {
        RemovePumpSource(m_listen);
        close(m_listen);
        m_listen = -1;
    }
    unlink(SocketPath(dir, detail::CurrentProcessId()).c_str());
    unlink(RegistryPath(dir, detail::CurrentProcessId()).c_str());
}

bool Bus::Running()
{
    std::lock_guard lock(m_lock);
    return m_running;
}

bool Bus::Publish(HWND hwnd)
{
    if (!IsLocalHandle(hwnd) || !FindTarget(hwnd) || GetParent(hwnd))
        return false;
    if (!Start())
        return false;
    std::lock_guard lock(m_lock);
    if (std::find(m_published.begin(), m_published.end(), hwnd) == m_published.end())
        m_published.push_back(hwnd);
    WriteRegistryLocked();
    return true;
}

void Bus::Unpublish(HWND hwnd)
{
    std::lock_guard lock(m_lock);
    auto it = std::find(m_published.begin(), m_published.end(), hwnd);
    if (it == m_published.end())
        return;
    m_published.erase(it);
    WriteRegistryLocked();
}

bool Bus::IsPublished(HWND hwnd)
{
    std::lock_guard lock(m_lock);
    return std::find(m_published.begin(), m_published.end(), hwnd) != m_published.end();
}

void Bus::LocalWindowChanged(HWND hwnd)
{
    std::lock_guard lock(m_lock);
    auto it = std::find(m_published.begin(), m_published.end(), hwnd);
    if (it == m_published.end())
        return;
    if (!FindTarget(hwnd))
        m_published.erase(it);
    WriteRegistryLocked();
}

// --- queries --------------------------------------------------------------------

std::vector<WindowRecord> Bus::Enumerate()
{
    const std::string dir = Directory();
    std::vector<std::pair<long long, pid_t>> peers;
    if (DIR* d = opendir(dir.c_str())) {
        while (const dirent* e = readdir(d)) {
            char* end = nullptr;
            const long id = std::strtol(e->d_name, &end, 10);
            if (id > 0 && end && !std::strcmp(end, ".win") && id != detail::CurrentProcessId())
                peers.emplace_back(0, static_cast<pid_t>(id));
        }
        closedir(d);
    }
    std::vector<std::pair<std::pair<long long, pid_t>, detail::Registry>> live;
    for (const auto& [unused, pid] : peers) {
        detail::Registry registry;
        if (ReadPeer(pid, registry))
            live.push_back({{registry.startTime, pid}, std::move(registry)});
    }
    // Older processes first, so that "the first window" is stable.
    std::sort(live.begin(), live.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<WindowRecord> records;
    for (const auto& [key, registry] : live) {
        const std::string name = detail::ProcessName(key.second);
        for (const auto& w : registry.windows)
            records.push_back(WindowRecord{w.hwnd, w.title, w.className, key.second, name});
    }
    return records;
}

bool Bus::Describe(HWND hwnd, WindowRecord& out)
{
    const pid_t pid = HandleProcess(hwnd);
    detail::Registry registry;
    if (pid <= 0 || !ReadPeer(pid, registry))
        return false;
    for (const auto& w : registry.windows) {
        if (w.hwnd == hwnd) {
            out = WindowRecord{hwnd, w.title, w.className, pid, detail::ProcessName(pid)};
            return true;
        }
    }
    return false;
}

bool Bus::IsAlive(HWND hwnd)
{
    WindowRecord unused;
    return Describe(hwnd, unused);
}

// --- sending ----------------------------------------------------------------------

LRESULT Bus::Send(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_COPYDATA) {
        if (!CarriesNumbersOnly(message))
            return 0;
        return Request(FrameKind::Send, hwnd, message, wParam, lParam, nullptr, 0);
    }
    const auto* cds = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (!cds || (cds->cbData && !cds->lpData))
        return 0;
    if (cds->cbData > kMaxCopyDataBytes) {
        Log("window bus: refused to send a block of " + std::to_string(cds->cbData) + " bytes (more than 16 MiB)");
        return 0;
    }
    return Request(FrameKind::Send, hwnd, message, wParam, static_cast<LPARAM>(cds->dwData), cds->lpData,
                   cds->cbData);
}

bool Bus::Post(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!CarriesNumbersOnly(message) || !Running())
        return false;
    const pid_t pid = HandleProcess(hwnd);
    if (pid <= 0 || pid == detail::CurrentProcessId() || !IsAlive(hwnd))
        return false;
    const FrameHeader h{detail::kBusMagic, static_cast<std::uint32_t>(FrameKind::Post),
                        reinterpret_cast<std::uintptr_t>(hwnd), message, 0, static_cast<std::uint64_t>(wParam),
                        static_cast<std::uint64_t>(lParam), 0, 0};
    return Deliver(pid, h, nullptr) != nullptr;
}

BOOL Bus::Show(HWND hwnd, int command)
{
    return static_cast<BOOL>(Request(FrameKind::Show, hwnd, 0, static_cast<WPARAM>(command), 0, nullptr, 0));
}

BOOL Bus::Place(HWND hwnd, const WINDOWPLACEMENT& placement)
{
    return static_cast<BOOL>(Request(FrameKind::Place, hwnd, 0, 0, 0, &placement, kPlacementSize));
}

ConnectionPtr Bus::Deliver(pid_t pid, const FrameHeader& header, const void* data)
{
    // A kept connection may lead to a process that has ended since; then
    // the write fails at once and one fresh connection is tried.
    for (int attempt = 0; attempt < 2; ++attempt) {
        bool fresh = false;
        ConnectionPtr c = Outgoing(pid, fresh);
        if (!c)
            return nullptr;
        if (WriteFrame(c, header, data))
            return c;
        Close(c);
        if (fresh)
            return nullptr;
    }
    return nullptr;
}

LRESULT Bus::Request(FrameKind kind, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, const void* data,
                     std::uint32_t length)
{
    const pid_t pid = HandleProcess(hwnd);
    if (!Running() || pid <= 0 || pid == detail::CurrentProcessId())
        return 0;
    const FrameHeader h{detail::kBusMagic, static_cast<std::uint32_t>(kind), reinterpret_cast<std::uintptr_t>(hwnd),
                        message, ++m_sequence, static_cast<std::uint64_t>(wParam),
                        static_cast<std::uint64_t>(lParam), length, 0};
    const ConnectionPtr c = Deliver(pid, h, data);
    if (!c)
        return 0;
    const auto isAnswer = [&h](const Frame& f) {
        return f.header.kind == static_cast<std::uint32_t>(FrameKind::Reply) && f.header.sequence == h.sequence;
    };
    for (;;) {
        // Requests nest strictly on one thread, so the next answer on this
        // connection belongs to the innermost request: this one.
        Frame reply;
        const Take taken = TakeFrame(*c, reply);
        if (taken == Take::Frame) {
            if (isAnswer(reply))
                return static_cast<LRESULT>(reply.header.lParam);
            Log("window bus: unexpected answer from process " + std::to_string(pid));
            Close(c);
            return 0;
        }
        if (taken == Take::Broken || c->closed) {
            Close(c);
            return 0;
        }
        const short events = WaitAndServe(c.get(), POLLIN, -1, nullptr);
        if (c->closed)
            return 0;
        if ((events & (POLLIN | POLLHUP | POLLERR)) && !Fill(*c)) {
            // The receiver ended; its answer may still be in what was read.
            const bool answered = TakeFrame(*c, reply) == Take::Frame && isAnswer(reply);
            Close(c);
            return answered ? static_cast<LRESULT>(reply.header.lParam) : 0;
        }
    }
}

ConnectionPtr Bus::Outgoing(pid_t pid, bool& fresh)
{
    auto it = m_outgoing.find(pid);
    if (it != m_outgoing.end() && !it->second->closed && !it->second->writing) {
        fresh = false;
        return it->second;
    }
    fresh = true;
    ConnectionPtr c = Connect(pid);
    if (!c)
        return nullptr;
    if (it != m_outgoing.end() && !it->second->closed)
        m_extra.push_back(c); // the kept one is busy further up the stack
    else
        m_outgoing[pid] = c;
    return c;
}

ConnectionPtr Bus::Connect(pid_t pid)
{
    const std::string path = SocketPath(Directory(), pid);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    if (path.size() >= sizeof addr.sun_path)
        return nullptr;
    std::memcpy(addr.sun_path, path.c_str(), path.size() + 1);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return nullptr;
    int rc;
    do {
        rc = connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
    } while (rc != 0 && errno == EINTR);
    ucred cred{};
    socklen_t size = sizeof cred;
    if (rc != 0 || getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &cred, &size) != 0) {
        close(fd);
        return nullptr;
    }
    // The socket must be the one that process listens on, as this user.
    if (cred.uid != geteuid() || cred.pid != pid) {
        Log("window bus: the socket of process " + std::to_string(pid) + " is held by another process or user");
        close(fd);
        return nullptr;
    }
    auto c = std::make_shared<Connection>();
    c->fd = fd;
    c->peer = pid;
    return c;
}

bool Bus::WriteFrame(const ConnectionPtr& c, const FrameHeader& header, const void* data)
{
    const std::size_t total = kHeaderSize + header.dataLength;
    std::size_t done = 0;
    c->writing = true;
    while (done < total) {
        iovec parts[2];
        int count = 0;
        if (done < kHeaderSize) {
            parts[count++] = iovec{const_cast<char*>(reinterpret_cast<const char*>(&header)) + done, kHeaderSize - done};
            if (header.dataLength)
                parts[count++] = iovec{const_cast<void*>(data), header.dataLength};
        } else {
            parts[count++] = iovec{static_cast<char*>(const_cast<void*>(data)) + (done - kHeaderSize), total - done};
        }
        msghdr msg{};
        msg.msg_iov = parts;
        msg.msg_iovlen = static_cast<std::size_t>(count);
        const ssize_t n = sendmsg(c->fd, &msg, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (n > 0) {
            done += static_cast<std::size_t>(n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            // The receiver may itself be writing to us: keep serving.
            const short events = WaitAndServe(c.get(), POLLOUT, -1, nullptr);
            if (!(events & (POLLHUP | POLLERR)) && !c->closed)
                continue;
        }
        c->writing = false;
        return false;
    }
    c->writing = false;
    return true;
}

// --- receiving --------------------------------------------------------------------

short Bus::WaitAndServe(Connection* watch, short events, int timeoutMs, int* served)
{
    std::vector<pollfd> fds;
    std::vector<ConnectionPtr> incoming;
    if (watch)
        fds.push_back(pollfd{watch->fd, events, 0});
    if (m_listen >= 0)
        fds.push_back(pollfd{m_listen, POLLIN, 0});
    for (const auto& [fd, c] : m_incoming) {
        fds.push_back(pollfd{fd, POLLIN, 0});
        incoming.push_back(c);
    }
    int rc;
    do {
        rc = poll(fds.data(), fds.size(), timeoutMs);
    } while (rc < 0 && errno == EINTR);
    if (rc <= 0)
        return 0;
    std::size_t i = 0;
    short watched = 0;
    if (watch)
        watched = fds[i++].revents;
    if (m_listen >= 0 && (fds[i++].revents & POLLIN))
        Accept();
    for (const auto& c : incoming) {
        if (fds[i++].revents & (POLLIN | POLLHUP | POLLERR))
            ServeConnection(c, served);
    }
    return watched;
}

void Bus::Accept()
{
    for (;;) {
        const int fd = accept4(m_listen, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        ucred cred{};
        socklen_t size = sizeof cred;
        if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &cred, &size) != 0 || cred.uid != geteuid()) {
            Log("window bus: refused a connection from user " + std::to_string(cred.uid) + " (process " +
                std::to_string(cred.pid) + ")");
            close(fd);
            continue;
        }
        auto c = std::make_shared<Connection>();
        c->fd = fd;
        c->peer = cred.pid;
        c->incoming = true;
        m_incoming[fd] = c;
        std::weak_ptr<Connection> weak = c;
        AddPumpSource(fd, [this, weak] {
            if (auto live = weak.lock())
                ServeConnection(live, nullptr);
        });
    }
}

void Bus::ServeConnection(const ConnectionPtr& c, int* served)
{
    if (c->closed)
        return;
    const bool open = Fill(*c);
    for (;;) {
        Frame frame;
        const Take taken = TakeFrame(*c, frame);
        if (taken == Take::Broken) {
            Close(c);
            return;
        }
        if (taken == Take::Incomplete)
            break;
        Handle(c, frame);
        if (served)
            ++*served;
        if (c->closed)
            return;
    }
    if (!open)
        Close(c);
}

void Bus::Handle(const ConnectionPtr& c, const Frame& frame)
{
    const FrameHeader& h = frame.header;
    const auto hwnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(h.hwnd));
    LRESULT result = 0;
    switch (static_cast<FrameKind>(h.kind)) {
    case FrameKind::Post:
        if (IsLocalHandle(hwnd) && IsPublished(hwnd) && CarriesNumbersOnly(h.message))
            PostMessageA(hwnd, h.message, static_cast<WPARAM>(h.wParam), static_cast<LPARAM>(h.lParam));
        return;
    case FrameKind::Send:
        result = Dispatch(frame);
        break;
    case FrameKind::Show:
        if (IsLocalHandle(hwnd) && IsPublished(hwnd)) {
            // A CWnd keeps its own state of being shown.
            CWnd* window = CWnd::FromHandle(hwnd);
            result = window ? window->ShowWindow(static_cast<int>(h.wParam))
                            : ShowWindow(hwnd, static_cast<int>(h.wParam));
        }
        break;
    case FrameKind::Place:
        if (IsLocalHandle(hwnd) && IsPublished(hwnd)) {
            WINDOWPLACEMENT wp;
            std::memcpy(&wp, frame.data.data(), kPlacementSize);
            result = SetWindowPlacement(hwnd, &wp);
        }
        break;
    case FrameKind::Reply:
        Log("window bus: an answer came where a request belongs (process " + std::to_string(c->peer) + ")");
        Close(c);
        return;
    }
    FrameHeader reply{detail::kBusMagic, static_cast<std::uint32_t>(FrameKind::Reply), h.hwnd, h.message, h.sequence,
                      0, static_cast<std::uint64_t>(result), 0, 0};
    if (!c->closed && !WriteAll(c->fd, &reply, sizeof reply))
        Close(c);
}

LRESULT Bus::Dispatch(const Frame& frame)
{
    const FrameHeader& h = frame.header;
    const auto hwnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(h.hwnd));
    if (!IsLocalHandle(hwnd) || !IsPublished(hwnd))
        return 0;
    if (h.message == WM_COPYDATA) {
        COPYDATASTRUCT cds{static_cast<ULONG_PTR>(h.lParam), h.dataLength,
                           const_cast<char*>(frame.data.data())};
        return SendMessageA(hwnd, WM_COPYDATA, static_cast<WPARAM>(h.wParam), reinterpret_cast<LPARAM>(&cds));
    }
    if (!CarriesNumbersOnly(h.message))
        return 0;
    return SendMessageA(hwnd, h.message, static_cast<WPARAM>(h.wParam), static_cast<LPARAM>(h.lParam));
}

bool Bus::Fill(Connection& c)
{
    for (;;) {
        c.in.Reserve(64 * 1024);
        const std::size_t room = c.in.capacity - c.in.end;
        const ssize_t n = recv(c.fd, c.in.bytes.get() + c.in.end, room, MSG_DONTWAIT);
        if (n > 0) {
            c.in.end += static_cast<std::size_t>(n);
            if (static_cast<std::size_t>(n) < room)
                return true;
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        return n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
    }
}

Take Bus::TakeFrame(Connection& c, Frame& out)
{
    if (c.in.Size() < kHeaderSize)
        return Take::Incomplete;
    FrameHeader h;
    std::memcpy(&h, c.in.Data(), kHeaderSize);
    const auto kind = static_cast<FrameKind>(h.kind);
    const bool known = h.kind >= 1 && h.kind <= 5;
    const bool mayCarry = (kind == FrameKind::Send && h.message == WM_COPYDATA) || kind == FrameKind::Place;
    std::string fault;
    if (h.magic != detail::kBusMagic || !known)
        fault = "a malformed frame";
    else if (h.dataLength > kMaxCopyDataBytes)
        fault = "a block of " + std::to_string(h.dataLength) + " bytes (more than 16 MiB)";
    else if (h.dataLength && !mayCarry)
        fault = "data with a message that carries none";
    else if (kind == FrameKind::Place && h.dataLength != kPlacementSize)
        fault = "a placement of " + std::to_string(h.dataLength) + " bytes";
    if (!fault.empty()) {
        // The stream cannot be trusted past this point, so nothing more of
        // it is read.
        Log("window bus: refused " + fault + " from process " + std::to_string(c.peer));
        return Take::Broken;
    }
    if (c.in.Size() < kHeaderSize + h.dataLength) {
        c.in.Reserve(kHeaderSize + h.dataLength - c.in.Size());
        return Take::Incomplete;
    }
    out.header = h;
    out.data.assign(c.in.Data() + kHeaderSize, c.in.Data() + kHeaderSize + h.dataLength);
    c.in.Consume(kHeaderSize + h.dataLength);
    return Take::Frame;
}

void Bus::Close(const ConnectionPtr& c)
{
    if (c->closed)
        return;
    c->closed = true;
    if (c->incoming) {
        RemovePumpSource(c->fd);
        m_incoming.erase(c->fd);
    } else {
        auto it = m_outgoing.find(c->peer);
        if (it != m_outgoing.end() && it->second == c)
            m_outgoing.erase(it);
        m_extra.erase(std::remove(m_extra.begin(), m_extra.end(), c), m_extra.end());
    }
    close(c->fd);
}

int Bus::ServeFor(int timeoutMs)
{
    if (!Running())
        return 0;
    int served = 0;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::max(timeoutMs, 0));
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        WaitAndServe(nullptr, 0, static_cast<int>(std::max<long long>(left, 0)), &served);
        if (left <= 0)
            return served;
    }
}

} // namespace

namespace detail {

std::string FormatRegistry(const Registry& registry)
{
    std::ostringstream out;
    out << "vxbus 1\nstart " << registry.startTime << "\n";
    for (const auto& w : registry.windows) {
        char handle[32];
        std::snprintf(handle, sizeof handle, "%llx",
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(w.hwnd)));
        out << handle << '\t' << RegistryEscape(w.className) << '\t' << RegistryEscape(w.title) << '\n';
    }
    return out.str();
}

bool ParseRegistry(const std::string& text, Registry& out)
{
    std::istringstream in(text);
    std::string line;
    if (!std::getline(in, line) || line != "vxbus 1")
        return false;
    if (!std::getline(in, line) || line.rfind("start ", 0) != 0)
        return false;
    out.startTime = std::strtoll(line.c_str() + 6, nullptr, 10);
    out.windows.clear();
    while (std::getline(in, line)) {
        const auto tab1 = line.find('\t');
        const auto tab2 = tab1 == std::string::npos ? tab1 : line.find('\t', tab1 + 1);
        if (tab2 == std::string::npos)
            continue;
        RegisteredWindow w;
        w.hwnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::strtoull(line.c_str(), nullptr, 16)));
        w.className = RegistryUnescape(line.substr(tab1 + 1, tab2 - tab1 - 1));
        w.title = RegistryUnescape(line.substr(tab2 + 1));
        if (w.hwnd)
            out.windows.push_back(std::move(w));
    }
    return true;
}

BOOL RemoteSetPlacement(HWND hwnd, const WINDOWPLACEMENT& placement)
{
    return TheBus().Place(hwnd, placement);
}

} // namespace detail

bool StartWindowBus()
{
    return TheBus().Start();
}

void StopWindowBus()
{
    TheBus().Stop();
}

bool WindowBusRunning()
{
    return TheBus().Running();
}

std::string WindowBusDirectory()
{
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && runtime[0] == '/')
        return std::string(runtime) + "/vxbase";
    return "/tmp/vxbase-" + std::to_string(geteuid());
}

bool PublishWindow(HWND hwnd)
{
    return TheBus().Publish(hwnd);
}

void UnpublishWindow(HWND hwnd)
{
    TheBus().Unpublish(hwnd);
}

bool IsWindowPublished(HWND hwnd)
{
    return TheBus().IsPublished(hwnd);
}

int ServeSentMessages(int timeoutMs)
{
    return TheBus().ServeFor(timeoutMs);
}

WindowBusLog SetWindowBusLog(WindowBusLog log)
{
    std::lock_guard lock(g_logLock);
    WindowBusLog old = std::move(g_log);
    g_log = std::move(log);
    return old;
}

} // namespace vx
