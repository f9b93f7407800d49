#include "platform/ipc/windowbus.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/messagequeue_p.h"
#include "platform/files/runtimedir.h"
#include "platform/ipc/filemapping.h"
#include "platform/ipc/procinfo_p.h"
#include "platform/ipc/windowbus_p.h"
#include "platform/framework/util_p.h"
#include "platform/windows/windows.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace vx {
namespace {

using detail::FrameHeader;
using detail::FrameKind;

constexpr std::size_t kHeaderSize = sizeof(FrameHeader);
constexpr std::size_t kPlacementSize = sizeof(WINDOWPLACEMENT);
constexpr std::size_t kPiece = detail::kFramePiece;
constexpr std::size_t kDatagramMax = kHeaderSize + kPiece;
// How often a process waiting for an answer checks that the other one
// still runs: a datagram socket does not tell when its peer has gone.
constexpr int kLivenessCheckMs = 250;
// Handles a message carries at most: wParam and lParam.
constexpr std::size_t kMaxCarried = 2;

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

FrameKind KindOf(const FrameHeader& h)
{
    return static_cast<FrameKind>(h.kind & detail::kKindMask);
}

// --- handles in messages ------------------------------------------------------

class MappingCarrier final : public HandleCarrier {
public:
    int Descriptor(std::uintptr_t value) override
    {
        return FileMappingDescriptor(reinterpret_cast<HANDLE>(value));
    }
    std::uintptr_t Adopt(int fd) override
    {
        return reinterpret_cast<std::uintptr_t>(AdoptFileMappingDescriptor(fd));
    }
    void Release(std::uintptr_t value) override { CloseHandle(reinterpret_cast<HANDLE>(value)); }
};

std::mutex g_carrierLock;
// The installed carriers by kind, the built-in one first.
std::vector<std::pair<unsigned, HandleCarrier*>>& CarriersLocked()
{
    static auto* carriers = new std::vector<std::pair<unsigned, HandleCarrier*>>{
        {kFileMappingCarrier, new MappingCarrier}};
    return *carriers;
}

std::vector<std::pair<unsigned, HandleCarrier*>> Carriers()
{
    std::lock_guard lock(g_carrierLock);
    return CarriersLocked();
}

HandleCarrier* CarrierOf(unsigned kind)
{
    std::lock_guard lock(g_carrierLock);
    for (const auto& [k, carrier] : CarriersLocked()) {
        if (k == kind)
            return carrier;
    }
    return nullptr;
}

// Descriptors received with a datagram; those not taken are closed.
class Descriptors {
public:
    Descriptors() = default;
    Descriptors(const Descriptors&) = delete;
    Descriptors& operator=(const Descriptors&) = delete;
    Descriptors(Descriptors&& other) noexcept : m_fds(std::move(other.m_fds)) { other.m_fds.clear(); }
    Descriptors& operator=(Descriptors&& other) noexcept
    {
        if (this != &other) {
            Clear();
            m_fds = std::move(other.m_fds);
            other.m_fds.clear();
        }
        return *this;
    }
    ~Descriptors() { Clear(); }
    void Add(int fd) { m_fds.push_back(fd); }
    std::size_t Count() const { return m_fds.size(); }
    // The descriptor at `index`, now the caller's; -1 if there is none.
    int Take(std::size_t index)
    {
        if (index >= m_fds.size())
            return -1;
        return std::exchange(m_fds[index], -1);
    }
    void Clear()
    {
        for (int fd : m_fds) {
            if (fd >= 0)
                close(fd);
        }
        m_fds.clear();
    }

private:
    std::vector<int> m_fds;
};

// The carriers of a message's two numbers, as bits of the frame's kind,
// and the descriptors that go with them.
struct Carriage {
    std::uint32_t bits = 0;
    std::vector<int> fds; // the carriers' own: sent, never closed here
};

Carriage Carry(UINT message, WPARAM wParam, LPARAM lParam)
{
    Carriage out;
    if (!CarriesNumbersOnly(message))
        return out;
    const std::uintptr_t values[2] = {static_cast<std::uintptr_t>(wParam), static_cast<std::uintptr_t>(lParam)};
    const int shifts[2] = {detail::kWParamCarrierShift, detail::kLParamCarrierShift};
    if (!values[0] && !values[1])
        return out;
    const auto carriers = Carriers();
    for (int i = 0; i < 2; ++i) {
        if (values[i] == 0)
            continue;
        for (const auto& [kind, carrier] : carriers) {
            const int fd = carrier->Descriptor(values[i]);
            if (fd >= 0) {
                out.bits |= kind << shifts[i];
                out.fds.push_back(fd);
                break;
            }
        }
    }
    return out;
}

std::string SocketPath(const std::string& dir, pid_t pid)
{
    return dir + "/" + std::to_string(pid) + ".sock";
}

std::string RegistryPath(const std::string& dir, pid_t pid)
{
    return dir + "/" + std::to_string(pid) + ".win";
}

struct Address {
    sockaddr_un un{};
    socklen_t length = 0;
};

bool MakeAddress(const std::string& path, Address& out)
{
    out = Address{};
    out.un.sun_family = AF_UNIX;
    if (path.size() >= sizeof out.un.sun_path)
        return false;
    std::memcpy(out.un.sun_path, path.c_str(), path.size() + 1);
    out.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size() + 1);
    return true;
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

// A whole message as it arrived, with who sent it.
struct Message {
    FrameHeader header{};
    std::vector<char> data;
    pid_t sender = 0;
    Address from;
    Descriptors fds; // of the handles it carries
};

enum class Got {
    Message, // a whole message
    Piece,   // a piece of a larger one
    Dropped, // a datagram refused
    Nothing, // nothing there, or the wait timed out
};

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
    std::vector<HWND> Handles() override;
    bool Describe(HWND hwnd, WindowRecord& out) override;
    bool IsAlive(HWND hwnd) override;
    LRESULT Send(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    bool Post(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    bool Notify(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL Show(HWND hwnd, int command) override;
    void LocalWindowChanged(HWND hwnd) override;

private:
    std::string Directory();
    bool ReadPeer(pid_t pid, detail::Registry& out);
    // The registries of the other live processes, oldest first.
    std::vector<std::pair<pid_t, detail::Registry>> LivePeers();
    void WriteRegistryLocked();
    void RemoveDeadPeers();

    LRESULT Request(FrameKind kind, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, const void* data,
                    std::uint32_t length, const Carriage* carriage = nullptr);
    bool SendTo(const std::string& path, pid_t receiver, FrameHeader header, const void* data,
                const std::vector<int>& fds = {});
    // Sends the datagrams in one call; `fds` go with the first.
    bool SendDatagrams(const std::string& path, pid_t receiver, const std::vector<std::string>& datagrams,
                       const std::vector<int>& fds = {});
    void Flush(const std::string* path);
    int SenderFor(const std::string& path);
    void DropSender(const std::string& path);
    Got Receive(bool wait, Message& out);
    bool ServeOne();
    void Handle(Message& message);
    LRESULT Dispatch(Message& message);

    // The registries of other processes as last read, by process, each
    // with a descriptor of its process (-1 if there is none), which shows
    // when that very process has ended; and the last listing of the
    // directory.
    struct PeerFile {
        ino_t inode = 0;
        off_t size = -1;
        timespec modified{};
        detail::Registry registry;
        int process = -1;
    };
    struct Listing {
        std::string dir;
        ino_t inode = 0;
        timespec modified{};
        std::vector<pid_t> peers;
    };
    void ForgetPeerLocked(pid_t pid);
    std::mutex m_peerLock;
    std::map<pid_t, PeerFile> m_peers;
    Listing m_listing;

    std::mutex m_lock; // guards the state below; never held while waiting
    bool m_running = false;
    std::string m_dir;
    long long m_startTime = -1;
    std::vector<HWND> m_published;

    // The sockets and the pieces belong to the pumping thread.
    int m_socket = -1;
    uid_t m_uid = 0;
    // Sockets connected to other processes' sockets (by path), so that a
    // datagram needs no look-up of the path.
    std::map<std::string, int> m_senders;
    // Messages that need no answer, held back until the answer to the
    // request being served goes to the same process (see Notify).
    struct Deferred {
        std::string path;
        pid_t receiver;
        std::string datagram;
    };
    std::vector<Deferred> m_deferred;
    // The senders of the requests being served, innermost last.
    std::vector<pid_t> m_serving;
    std::unique_ptr<char[]> m_datagram;
    detail::FrameAssembler m_assembler;
    std::uint32_t m_sequence = 0;
};

Bus& TheBus()
{
    static Bus* bus = new Bus; // outlives static destructors of hosts
    return *bus;
}

void AtExitRemoveFiles()
{
    TheBus().Stop();
}

// --- registry files ---------------------------------------------------------

std::string Bus::Directory()
{
    std::lock_guard lock(m_lock);
    return m_dir;
}

void Bus::ForgetPeerLocked(pid_t pid)
{
    auto it = m_peers.find(pid);
    if (it == m_peers.end())
        return;
    if (it->second.process >= 0)
        close(it->second.process);
    m_peers.erase(it);
}

bool Bus::ReadPeer(pid_t pid, detail::Registry& out)
{
    const std::string dir = Directory();
    if (dir.empty())
        return false;
    // A registry is written anew (a new file) at each change, so one read
    // before is good while the file is the same.
    const std::string path = RegistryPath(dir, pid);
    struct stat st {};
    std::lock_guard lock(m_peerLock);
    if (stat(path.c_str(), &st) != 0) {
        ForgetPeerLocked(pid);
        return false;
    }
    auto it = m_peers.find(pid);
    if (it != m_peers.end() && it->second.inode == st.st_ino && it->second.size == st.st_size &&
        it->second.modified.tv_sec == st.st_mtim.tv_sec && it->second.modified.tv_nsec == st.st_mtim.tv_nsec &&
        it->second.process >= 0) {
        // The process the file was checked against: alive until its
        // descriptor turns readable (a zombie has ended too).
        pollfd p{it->second.process, POLLIN, 0};
        if (poll(&p, 1, 0) != 0)
            return false;
        out = it->second.registry;
        return true;
    }
    ForgetPeerLocked(pid);
    PeerFile known;
    std::string text;
    if (!ReadWholeFile(path, text) || !detail::ParseRegistry(text, known.registry))
        return false;
    known.inode = st.st_ino;
    known.size = st.st_size;
    known.modified = st.st_mtim;
    // The descriptor comes first, then the check: so it is of the process
    // checked, not of a later one under the same id.
    known.process = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    // A file left by an ended process, or by an earlier process of the
    // same id, names no live window.
    const bool alive = known.registry.startTime >= 0 && detail::ProcessStartTime(pid) == known.registry.startTime;
    if (!alive) {
        if (known.process >= 0)
            close(known.process);
        return false;
    }
    out = known.registry;
    m_peers[pid] = std::move(known);
    return true;
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
    if (!MakeRuntimeDirectory()) {
        Log("window bus: cannot make the runtime directory " + RuntimeDirectory());
        return false;
    }
    if (!MakePrivateDirectory(dir))
        return false;
    const std::string path = SocketPath(dir, detail::CurrentProcessId());
    Address address;
    if (!MakeAddress(path, address)) {
        Log("window bus: the socket path is too long: " + path);
        return false;
    }
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    // A socket file under this process id can only be an earlier process's.
    unlink(path.c_str());
    if (bind(fd, reinterpret_cast<sockaddr*>(&address.un), address.length) != 0) {
        Log("window bus: cannot listen on " + path + ": " + std::strerror(errno));
        close(fd);
        return false;
    }
    chmod(path.c_str(), 0600);
    // Every datagram then carries its sender's credentials, as the kernel
    // knows them.
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_PASSCRED, &on, sizeof on);
    const timeval check{0, kLivenessCheckMs * 1000};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &check, sizeof check);
    m_dir = dir;
    m_socket = fd;
    m_uid = geteuid();
    m_datagram.reset(new char[kDatagramMax]);
    m_startTime = detail::ProcessStartTime(detail::CurrentProcessId());
    m_running = true;
    WriteRegistryLocked();
    lock.unlock();

    AddPumpSource(fd, [this] { ServeOne(); });
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
    RemovePumpSource(m_socket);
    close(m_socket);
    m_socket = -1;
    m_assembler.Clear();
    m_deferred.clear();
    {
        std::lock_guard lock(m_peerLock);
        while (!m_peers.empty())
            ForgetPeerLocked(m_peers.begin()->first);
        m_listing = Listing{};
    }
    for (const auto& [path, sender] : m_senders)
        close(sender);
    m_senders.clear();
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

std::vector<std::pair<pid_t, detail::Registry>> Bus::LivePeers()
{
    const std::string dir = Directory();
    std::vector<pid_t> peers;
    struct stat st {};
    const bool listed = stat(dir.c_str(), &st) == 0;
    {
        // The directory changes whenever a registry comes, goes or is
        // written anew: while it has not, the list read before holds.
        std::lock_guard lock(m_peerLock);
        if (listed && m_listing.inode == st.st_ino && m_listing.modified.tv_sec == st.st_mtim.tv_sec &&
            m_listing.modified.tv_nsec == st.st_mtim.tv_nsec && m_listing.dir == dir)
            peers = m_listing.peers;
    }
    if (peers.empty()) {
        if (DIR* d = opendir(dir.c_str())) {
            while (const dirent* e = readdir(d)) {
                char* end = nullptr;
                const long id = std::strtol(e->d_name, &end, 10);
                if (id > 0 && end && !std::strcmp(end, ".win") && id != detail::CurrentProcessId())
                    peers.push_back(static_cast<pid_t>(id));
            }
            closedir(d);
        }
        std::lock_guard lock(m_peerLock);
        m_listing = Listing{dir, listed ? st.st_ino : 0, listed ? st.st_mtim : timespec{}, peers};
    }
    std::vector<std::pair<pid_t, detail::Registry>> live;
    for (pid_t pid : peers) {
        detail::Registry registry;
        if (ReadPeer(pid, registry))
            live.emplace_back(pid, std::move(registry));
    }
    // Older processes first, so that "the first window" is stable.
    std::sort(live.begin(), live.end(), [](const auto& a, const auto& b) {
        return std::make_pair(a.second.startTime, a.first) < std::make_pair(b.second.startTime, b.first);
    });
    return live;
}

std::vector<WindowRecord> Bus::Enumerate()
{
    std::vector<WindowRecord> records;
    for (const auto& [pid, registry] : LivePeers()) {
        const std::string name = detail::ProcessName(pid);
        for (const auto& w : registry.windows)
            records.push_back(WindowRecord{w.hwnd, w.title, w.className, pid, name});
    }
    return records;
}

std::vector<HWND> Bus::Handles()
{
    std::vector<HWND> handles;
    for (const auto& [pid, registry] : LivePeers()) {
        for (const auto& w : registry.windows)
            handles.push_back(w.hwnd);
    }
    return handles;
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
        const Carriage carriage = Carry(message, wParam, lParam);
        return Request(FrameKind::Send, hwnd, message, wParam, lParam, nullptr, 0, &carriage);
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
    const pid_t pid = HandleProcess(hwnd);
    if (!CarriesNumbersOnly(message) || !Running() || pid <= 0 || pid == detail::CurrentProcessId() ||
        !IsAlive(hwnd))
        return false;
    const FrameHeader h{detail::kBusMagic, static_cast<std::uint32_t>(FrameKind::Post),
                        reinterpret_cast<std::uintptr_t>(hwnd), message, 0, static_cast<std::uint64_t>(wParam),
                        static_cast<std::uint64_t>(lParam), 0, 0};
    return SendTo(SocketPath(Directory(), pid), pid, h, nullptr);
}

bool Bus::Notify(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    const pid_t pid = HandleProcess(hwnd);
    if (!Running() || pid <= 0 || pid == detail::CurrentProcessId())
        return false;
    const void* data = nullptr;
    std::uint32_t length = 0;
    if (message == WM_COPYDATA) {
        const auto* cds = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        if (!cds || (cds->cbData && !cds->lpData) || cds->cbData > kMaxCopyDataBytes)
            return false;
        data = cds->lpData;
        length = cds->cbData;
        lParam = static_cast<LPARAM>(cds->dwData);
    } else if (!CarriesNumbersOnly(message)) {
        return false;
    }
    const Carriage carriage = message == WM_COPYDATA ? Carriage{} : Carry(message, wParam, lParam);
    // The same socket as the requests to that process, so that it handles
    // them in the order they were sent.
    const FrameHeader h{detail::kBusMagic, static_cast<std::uint32_t>(FrameKind::Notify) | carriage.bits,
                        reinterpret_cast<std::uintptr_t>(hwnd), message, ++m_sequence,
                        static_cast<std::uint64_t>(wParam), static_cast<std::uint64_t>(lParam), length, 0};
    const std::string path = SocketPath(Directory(), pid);
    if (carriage.fds.empty() && !m_serving.empty() && m_serving.back() == pid && length <= kPiece) {
        // That process waits for the answer to the request being served: it
        // can take this message no earlier than that answer, so both go
        // together, and it wakes once.
        std::string datagram(reinterpret_cast<const char*>(&h), kHeaderSize);
        datagram.append(static_cast<const char*>(data), length);
        m_deferred.push_back(Deferred{path, pid, std::move(datagram)});
        return true;
    }
    return SendTo(path, pid, h, data, carriage.fds);
}

BOOL Bus::Show(HWND hwnd, int command)
{
    return static_cast<BOOL>(Request(FrameKind::Show, hwnd, 0, static_cast<WPARAM>(command), 0, nullptr, 0));
}

BOOL Bus::Place(HWND hwnd, const WINDOWPLACEMENT& placement)
{
    return static_cast<BOOL>(Request(FrameKind::Place, hwnd, 0, 0, 0, &placement, kPlacementSize));
}

LRESULT Bus::Request(FrameKind kind, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, const void* data,
                     std::uint32_t length, const Carriage* carriage)
{
    const pid_t pid = HandleProcess(hwnd);
    if (!Running() || pid <= 0 || pid == detail::CurrentProcessId())
        return 0;
    const std::uint32_t carried = carriage ? carriage->bits : 0;
    const FrameHeader h{detail::kBusMagic, static_cast<std::uint32_t>(kind) | carried,
                        reinterpret_cast<std::uintptr_t>(hwnd), message, ++m_sequence,
                        static_cast<std::uint64_t>(wParam), static_cast<std::uint64_t>(lParam), length, 0};
    if (!SendTo(SocketPath(Directory(), pid), pid, h, data, carriage ? carriage->fds : std::vector<int>{}))
        return 0;
    // Nothing may stay held back while this process waits.
    Flush(nullptr);
    for (;;) {
        // Everything for this process arrives on its one socket: the answer,
        // and meanwhile the requests of others, served as they come. Requests
        // nest strictly on one thread, so the next answer from that process
        // is this one's.
        Message in;
        switch (Receive(true, in)) {
        case Got::Message:
            if (KindOf(in.header) != FrameKind::Reply) {
                Handle(in);
            } else if (in.sender == pid && in.header.sequence == h.sequence) {
                return static_cast<LRESULT>(in.header.lParam);
            } else {
                Log("window bus: an answer nobody waits for from process " + std::to_string(in.sender));
            }
            break;
        case Got::Nothing:
            if (!Running() || detail::ProcessStartTime(pid) < 0)
                return 0; // the receiver ended before it answered
            break;
        case Got::Piece:
        case Got::Dropped:
            break;
        }
    }
}

int Bus::SenderFor(const std::string& path)
{
    if (auto it = m_senders.find(path); it != m_senders.end())
        return it->second;
    Address to;
    if (!MakeAddress(path, to))
        return -1;
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    if (connect(fd, reinterpret_cast<sockaddr*>(&to.un), to.length) != 0) {
        close(fd);
        return -1;
    }
    m_senders[path] = fd;
    return fd;
}

void Bus::DropSender(const std::string& path)
{
    if (auto it = m_senders.find(path); it != m_senders.end()) {
        close(it->second);
        m_senders.erase(it);
    }
}

bool Bus::SendTo(const std::string& path, pid_t receiver, FrameHeader header, const void* data,
                 const std::vector<int>& fds)
{
    // What was held back for that process goes first, in its order.
    Flush(&path);
    std::vector<std::string> datagrams;
    const std::size_t total = header.dataLength;
    std::size_t offset = 0;
    do {
        const std::size_t piece = std::min(kPiece, total - offset);
        header.offset = static_cast<std::uint32_t>(offset);
        std::string datagram(reinterpret_cast<const char*>(&header), kHeaderSize);
        if (piece)
            datagram.append(static_cast<const char*>(data) + offset, piece);
        datagrams.push_back(std::move(datagram));
        offset += piece;
    } while (offset < total);
    return SendDatagrams(path, receiver, datagrams, fds);
}

bool Bus::SendDatagrams(const std::string& path, pid_t receiver, const std::vector<std::string>& datagrams,
                        const std::vector<int>& fds)
{
    std::vector<iovec> parts(datagrams.size());
    std::vector<mmsghdr> messages(datagrams.size());
    for (std::size_t i = 0; i < datagrams.size(); ++i) {
        parts[i] = iovec{const_cast<char*>(datagrams[i].data()), datagrams[i].size()};
        messages[i] = mmsghdr{};
        messages[i].msg_hdr.msg_iov = &parts[i];
        messages[i].msg_hdr.msg_iovlen = 1;
    }
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * kMaxCarried)] = {};
    if (!fds.empty() && fds.size() <= kMaxCarried && !messages.empty()) {
        msghdr& first = messages[0].msg_hdr;
        first.msg_control = control;
        first.msg_controllen = CMSG_SPACE(sizeof(int) * fds.size());
        cmsghdr* c = CMSG_FIRSTHDR(&first);
        c->cmsg_level = SOL_SOCKET;
        c->cmsg_type = SCM_RIGHTS;
        c->cmsg_len = CMSG_LEN(sizeof(int) * fds.size());
        std::memcpy(CMSG_DATA(c), fds.data(), sizeof(int) * fds.size());
    }
    bool fresh = !m_senders.count(path);
    std::size_t done = 0;
    while (done < messages.size()) {
        const int fd = SenderFor(path);
        if (fd < 0)
            return false;
        const int sent = sendmmsg(fd, messages.data() + done, static_cast<unsigned>(messages.size() - done),
                                  MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent > 0) {
            done += static_cast<std::size_t>(sent);
            continue;
        }
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && errno != EAGAIN && errno != EWOULDBLOCK) {
            // The socket led to a process that has ended since; one made
            // afresh finds its successor, if there is one.
            DropSender(path);
            if (fresh || done > 0)
                return false;
            fresh = true;
            continue;
        }
        // The receiver's queue is full. It may itself be sending to this
        // process, so what arrives meanwhile is served.
        if (detail::ProcessStartTime(receiver) < 0)
            return false;
        Flush(nullptr);
        pollfd p{m_socket, POLLIN, 0};
        if (poll(&p, 1, 1) > 0)
            ServeOne();
    }
    return true;
}

void Bus::Flush(const std::string* path)
{
    while (!m_deferred.empty()) {
        // One process's messages at a time, in their order.
        const std::string target = path ? *path : m_deferred.front().path;
        std::vector<std::string> datagrams;
        pid_t receiver = 0;
        for (auto it = m_deferred.begin(); it != m_deferred.end();) {
            if (it->path == target) {
                receiver = it->receiver;
                datagrams.push_back(std::move(it->datagram));
                it = m_deferred.erase(it);
            } else {
                ++it;
            }
        }
        if (!datagrams.empty())
            SendDatagrams(target, receiver, datagrams);
        if (path)
            return;
    }
}

// --- receiving --------------------------------------------------------------------

Got Bus::Receive(bool wait, Message& out)
{
    iovec part{m_datagram.get(), kDatagramMax};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(ucred)) + CMSG_SPACE(sizeof(int) * kMaxCarried)];
    msghdr msg{};
    msg.msg_name = &out.from.un;
    msg.msg_namelen = sizeof out.from.un;
    msg.msg_iov = &part;
    msg.msg_iovlen = 1;
    msg.msg_control = control;
    msg.msg_controllen = sizeof control;
    ssize_t n;
    do {
        n = recvmsg(m_socket, &msg, (wait ? 0 : MSG_DONTWAIT) | MSG_CMSG_CLOEXEC);
    } while (n < 0 && errno == EINTR);
    if (n < 0)
        return Got::Nothing;
    out.from.length = msg.msg_namelen;
    const ucred* cred = nullptr;
    // Descriptors that arrive are this process's from now on: whatever is
    // refused below closes them with `out`.
    for (cmsghdr* c = CMSG_FIRSTHDR(&msg); c; c = CMSG_NXTHDR(&msg, c)) {
        if (c->cmsg_level == SOL_SOCKET && c->cmsg_type == SCM_CREDENTIALS) {
            cred = reinterpret_cast<const ucred*>(CMSG_DATA(c));
        } else if (c->cmsg_level == SOL_SOCKET && c->cmsg_type == SCM_RIGHTS) {
            const std::size_t count = (c->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            for (std::size_t i = 0; i < count; ++i) {
                int fd;
                std::memcpy(&fd, CMSG_DATA(c) + i * sizeof(int), sizeof fd);
                out.fds.Add(fd);
            }
        }
    }
    if (!cred || cred->uid != m_uid) {
        Log("window bus: refused a message from user " + (cred ? std::to_string(cred->uid) : std::string("?")) +
            " (process " + (cred ? std::to_string(cred->pid) : std::string("?")) + ")");
        return Got::Dropped;
    }
    out.sender = cred->pid;
    std::string fault = "a malformed message";
    if (!(msg.msg_flags & (MSG_TRUNC | MSG_CTRUNC))) {
        switch (m_assembler.Take(out.sender, m_datagram.get(), static_cast<std::size_t>(n), out.header, out.data,
                                 fault, out.fds.Count())) {
        case detail::FrameAssembler::Result::Message:
            return Got::Message;
        case detail::FrameAssembler::Result::Piece:
            return Got::Piece;
        case detail::FrameAssembler::Result::Dropped:
            break;
        }
    }
    Log("window bus: refused " + fault + " from process " + std::to_string(out.sender));
    return Got::Dropped;
}

bool Bus::ServeOne()
{
    for (;;) {
        Message in;
        switch (Receive(false, in)) {
        case Got::Message:
            if (KindOf(in.header) == FrameKind::Reply)
                Log("window bus: an answer nobody waits for from process " + std::to_string(in.sender));
            else
                Handle(in);
            Flush(nullptr);
            return true;
        case Got::Nothing:
            return false;
        case Got::Piece:
        case Got::Dropped:
            break;
        }
    }
}

void Bus::Handle(Message& message)
{
    const FrameHeader& h = message.header;
    const auto hwnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(h.hwnd));
    const bool mine = IsLocalHandle(hwnd) && IsPublished(hwnd);
    LRESULT result = 0;
    switch (KindOf(h)) {
    case FrameKind::Post:
        if (mine && CarriesNumbersOnly(h.message))
            PostMessageA(hwnd, h.message, static_cast<WPARAM>(h.wParam), static_cast<LPARAM>(h.lParam));
        return;
    case FrameKind::Send:
        m_serving.push_back(message.sender);
        result = Dispatch(message);
        m_serving.pop_back();
        break;
    case FrameKind::Notify:
        Dispatch(message);
        return;
    case FrameKind::Show:
        if (mine) {
            // A CWnd keeps its own state of being shown.
            CWnd* window = CWnd::FromHandle(hwnd);
            result = window ? window->ShowWindow(static_cast<int>(h.wParam))
                            : ShowWindow(hwnd, static_cast<int>(h.wParam));
        }
        break;
    case FrameKind::Place:
        if (mine) {
            WINDOWPLACEMENT wp;
            std::memcpy(&wp, message.data.data(), kPlacementSize);
            result = SetWindowPlacement(hwnd, &wp);
        }
        break;
    case FrameKind::Reply:
        return;
    }
    const FrameHeader reply{detail::kBusMagic, static_cast<std::uint32_t>(FrameKind::Reply), h.hwnd, h.message,
                            h.sequence, 0, static_cast<std::uint64_t>(result), 0, 0};
    // Buses send from unnamed sockets and wait on their own; a named sender
    // gets the answer where it sent from.
    const bool named = message.from.length > offsetof(sockaddr_un, sun_path) + 1 && message.from.un.sun_path[0];
    const std::string to = named ? std::string(message.from.un.sun_path,
                                               strnlen(message.from.un.sun_path, sizeof message.from.un.sun_path))
                                 : SocketPath(Directory(), message.sender);
    // What was held back for that process goes ahead of the answer, in the
    // same system call.
    std::vector<std::string> datagrams;
    for (auto it = m_deferred.begin(); it != m_deferred.end();) {
        if (it->path == to) {
            datagrams.push_back(std::move(it->datagram));
            it = m_deferred.erase(it);
        } else {
            ++it;
        }
    }
    datagrams.emplace_back(reinterpret_cast<const char*>(&reply), kHeaderSize);
    SendDatagrams(to, message.sender, datagrams);
    Flush(nullptr);
}

LRESULT Bus::Dispatch(Message& message)
{
    const FrameHeader& h = message.header;
    const auto hwnd = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(h.hwnd));
    if (!IsLocalHandle(hwnd) || !IsPublished(hwnd))
        return 0;
    if (h.message == WM_COPYDATA) {
        COPYDATASTRUCT cds{static_cast<ULONG_PTR>(h.lParam), h.dataLength, const_cast<char*>(message.data.data())};
        return SendMessageA(hwnd, WM_COPYDATA, static_cast<WPARAM>(h.wParam), reinterpret_cast<LPARAM>(&cds));
    }
    if (!CarriesNumbersOnly(h.message))
        return 0;
    // Carried handles become handles of this process for the same objects,
    // for the time of the call.
    std::uint64_t values[2] = {h.wParam, h.lParam};
    HandleCarrier* adopted[2] = {nullptr, nullptr};
    const int shifts[2] = {detail::kWParamCarrierShift, detail::kLParamCarrierShift};
    std::size_t next = 0;
    bool refused = false;
    for (int i = 0; i < 2; ++i) {
        const unsigned kind = (h.kind >> shifts[i]) & 0xFF;
        if (!kind)
            continue;
        const int fd = message.fds.Take(next++);
        HandleCarrier* carrier = CarrierOf(kind);
        const std::uintptr_t local = carrier ? carrier->Adopt(fd) : 0;
        if (!carrier)
            close(fd);
        if (!local) {
            refused = true;
            continue;
        }
        values[i] = local;
        adopted[i] = carrier;
    }
    LRESULT result = 0;
    if (refused)
        Log("window bus: refused a handle of process " + std::to_string(message.sender) + " with message " +
            std::to_string(h.message));
    else
        result = SendMessageA(hwnd, h.message, static_cast<WPARAM>(values[0]), static_cast<LPARAM>(values[1]));
    for (int i = 0; i < 2; ++i) {
        if (adopted[i])
            adopted[i]->Release(static_cast<std::uintptr_t>(values[i]));
    }
    return result;
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
        Flush(nullptr);
        pollfd p{m_socket, POLLIN, 0};
        if (poll(&p, 1, static_cast<int>(std::max<long long>(left, 0))) > 0 && ServeOne())
            ++served;
        if (left <= 0)
            return served;
    }
}

} // namespace

namespace detail {

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
    // Every process of the user must find the same directory, whether or
    // not its XDG_RUNTIME_DIR was set for Qt (runtimedir.h).
    return RuntimeDirectory() + "/vxbase";
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

HandleCarrier::~HandleCarrier() = default;

void SetHandleCarrier(unsigned kind, HandleCarrier* carrier)
{
    if (kind < 2 || kind > 255)
        return;
    std::lock_guard lock(g_carrierLock);
    auto& carriers = CarriersLocked();
    carriers.erase(std::remove_if(carriers.begin(), carriers.end(), [kind](const auto& c) { return c.first == kind; }),
                   carriers.end());
    if (carrier)
        carriers.emplace_back(kind, carrier);
}

WindowBusLog SetWindowBusLog(WindowBusLog log)
{
    std::lock_guard lock(g_logLock);
    WindowBusLog old = std::move(g_log);
    g_log = std::move(log);
    return old;
}

} // namespace vx
