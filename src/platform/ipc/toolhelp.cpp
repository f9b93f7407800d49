#include "platform/ipc/toolhelp.h"

#include "platform/ipc/procinfo_p.h"
#include "platform/ipc/toolhelp_p.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

namespace {

struct Snapshot {
    std::vector<PROCESSENTRY32> entries;
    std::size_t next = 0;
};

// Handles are checked against the live snapshots, so that a stale or
// foreign handle is refused instead of followed.
std::mutex g_lock;
std::set<Snapshot*>& LiveSnapshots()
{
    static auto* live = new std::set<Snapshot*>;
    return *live;
}

BOOL Take(HANDLE handle, PROCESSENTRY32* entry, bool first)
{
    if (!entry || entry->dwSize < sizeof(PROCESSENTRY32))
        return FALSE;
    std::lock_guard lock(g_lock);
    auto* snap = static_cast<Snapshot*>(handle);
    if (!LiveSnapshots().count(snap))
        return FALSE;
    if (first)
        snap->next = 0;
    if (snap->next >= snap->entries.size())
        return FALSE;
    *entry = snap->entries[snap->next++];
    return TRUE;
}

} // namespace

HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD)
{
    auto snap = std::make_unique<Snapshot>();
    if (flags & TH32CS_SNAPPROCESS) {
        const auto ids = vx::detail::ProcessIds();
        if (ids.empty())
            return INVALID_HANDLE_VALUE;
        for (pid_t id : ids) {
            pid_t parent = 0;
            int threads = 0;
            // A process may end between the listing and the reading; one
            // that has ended but is not yet collected runs no more.
            if (!vx::detail::ProcessFamily(id, parent, threads))
                continue;
            PROCESSENTRY32 e{};
            e.dwSize = sizeof e;
            e.th32ProcessID = static_cast<DWORD>(id);
            e.th32ParentProcessID = static_cast<DWORD>(parent);
            e.cntThreads = static_cast<DWORD>(std::max(threads, 0));
            const std::string name = vx::detail::ProcessName(id);
            const std::size_t n = std::min(name.size(), sizeof e.szExeFile - 1);
            std::memcpy(e.szExeFile, name.data(), n);
            snap->entries.push_back(e);
        }
    }
    std::lock_guard lock(g_lock);
    LiveSnapshots().insert(snap.get());
    return snap.release();
}

BOOL Process32First(HANDLE snapshot, PROCESSENTRY32* entry)
{
    return Take(snapshot, entry, true);
}

BOOL Process32Next(HANDLE snapshot, PROCESSENTRY32* entry)
{
    return Take(snapshot, entry, false);
}

bool vx::detail::CloseSnapshot(HANDLE handle)
{
    auto* snap = static_cast<Snapshot*>(handle);
    {
        std::lock_guard lock(g_lock);
        if (!LiveSnapshots().erase(snap))
            return false;
    }
    delete snap;
    return true;
}
