#include "platform/files/filefind.h"

#include "platform/framework/codepage.h"
#include "platform/files/fileattributes_p.h"
#include "platform/files/hostpath.h"
#include "platform/files/hostpath_p.h"
#include "platform/framework/util_p.h"
#include "platform/files/wildcard.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace vx {

// One found name. Its status is read the first time someone asks, so a
// search that only wants names costs no more than reading the directory.
struct FoundEntry {
    std::string name;     // code page text
    std::string hostName; // the name on disk
    unsigned char type = DT_UNKNOWN;
    int statState = 0;    // 0 not read, 1 read, -1 unreadable
    bool writable = true;
    struct stat st {};
};

class FileSearch {
public:
    ~FileSearch() { Close(); }

    // Opens the search; false if it cannot run (nothing can then match).
    bool Start(const char* patternText)
    {
        Close();
        if (!patternText)
            return false;
        const std::string text = patternText;
        const std::size_t sep = text.find_last_of("\\/");
        std::string mask;
        if (sep != std::string::npos) {
            m_root = text.substr(0, sep + 1);
            mask = text.substr(sep + 1);
        } else if (text.size() >= 2 && text[1] == ':') {
            m_root = text.substr(0, 2);
            mask = text.substr(2);
        } else {
            m_root.clear();
            mask = text;
        }
        if (mask.empty())
            return false;

        if (!HasWildcards(mask)) {
            // One name: no directory listing needed, only its status.
            const std::string host = DiskPath(text);
            FoundEntry entry;
            if (stat(host.c_str(), &entry.st) != 0 && lstat(host.c_str(), &entry.st) != 0)
                return false;
            entry.statState = 1;
            entry.writable = access(host.c_str(), W_OK) == 0;
            entry.hostName = NameOf(host);
            entry.name = FromUtf8(entry.hostName);
            if (entry.name.empty()) // "/" itself, say
                return false;
            m_single = std::move(entry);
            m_singlePending = true;
            m_active = true;
            return true;
        }

        const std::string rootHost = m_root.empty() ? std::string(".") : HostPath(m_root);
        m_dir = OpenDirectory(rootHost);
        if (!m_dir && errno == ENOENT)
            m_dir = OpenDirectory(DiskPath(m_root));
        if (!m_dir)
            return false;
        m_pattern = WildcardPattern(mask);
        m_active = true;
        return true;
    }

    // The next match, or false at the end.
    bool Next(FoundEntry& out)
    {
        if (!m_active)
            return false;
        if (!m_dir) {
            if (!m_singlePending)
                return false;
            m_singlePending = false;
            out = m_single;
            return true;
        }
        while (const dirent* e = readdir(m_dir)) {
            std::string name = FromUtf8(e->d_name);
            if (!m_pattern.Matches(name))
                continue;
            out.name = std::move(name);
            out.hostName = e->d_name;
            out.type = e->d_type;
            out.statState = 0;
            return true;
        }
        return false;
    }

    bool Stat(FoundEntry& e) const
    {
        if (e.statState == 0) {
            const int fd = m_dir ? dirfd(m_dir) : -1;
            if (fd >= 0 && (fstatat(fd, e.hostName.c_str(), &e.st, 0) == 0 ||
                            fstatat(fd, e.hostName.c_str(), &e.st, AT_SYMLINK_NOFOLLOW) == 0)) {
                e.statState = 1;
                e.writable = faccessat(fd, e.hostName.c_str(), W_OK, 0) == 0;
            } else {
                e.statState = -1;
            }
        }
        return e.statState > 0;
    }

    bool IsDirectory(FoundEntry& e) const
    {
        if (e.type == DT_DIR)
            return true;
        if (e.type != DT_UNKNOWN && e.type != DT_LNK)
            return false;
        return Stat(e) && S_ISDIR(e.st.st_mode);
    }

    DWORD Attributes(FoundEntry& e) const
    {
        const bool directory = IsDirectory(e);
        const bool writable = Stat(e) ? e.writable : true;
        return FileAttributesOf(directory, writable, e.name);
    }

    const std::string& Root() const { return m_root; }

    void Close()
    {
        if (m_dir)
            closedir(m_dir);
        m_dir = nullptr;
        m_active = false;
        m_singlePending = false;
    }

private:
    DIR* m_dir = nullptr;
    WildcardPattern m_pattern;
    std::string m_root;
    FoundEntry m_single;
    bool m_singlePending = false;
    bool m_active = false;
};

} // namespace vx

namespace {

// The handle of FindFirstFileA: a search with its current entry.
struct FindHandle {
    vx::FileSearch search;
    vx::FoundEntry entry;
};

FILETIME TimeOf(const struct timespec& t)
{
    return vx::FileTimeFromUnix(t.tv_sec, t.tv_nsec);
}

void Fill(FindHandle& h, WIN32_FIND_DATAA* data)
{
    if (!data)
        return;
    std::memset(data, 0, sizeof *data);
    vx::FoundEntry& e = h.entry;
    data->dwFileAttributes = h.search.Attributes(e);
    if (h.search.Stat(e)) {
        data->ftCreationTime = TimeOf(e.st.st_ctim);
        data->ftLastAccessTime = TimeOf(e.st.st_atim);
        data->ftLastWriteTime = TimeOf(e.st.st_mtim);
        const auto size = static_cast<std::uint64_t>(e.st.st_size);
        data->nFileSizeHigh = static_cast<DWORD>(size >> 32);
        data->nFileSizeLow = static_cast<DWORD>(size & 0xFFFFFFFFu);
    }
    const std::size_t n = std::min(e.name.size(), sizeof data->cFileName - 1);
    std::memcpy(data->cFileName, e.name.data(), n);
}

} // namespace

HANDLE FindFirstFileA(const char* fileName, WIN32_FIND_DATAA* findData)
{
    auto h = std::make_unique<FindHandle>();
    if (!h->search.Start(fileName) || !h->search.Next(h->entry))
        return INVALID_HANDLE_VALUE;
    Fill(*h, findData);
    return h.release();
}

BOOL FindNextFileA(HANDLE findFile, WIN32_FIND_DATAA* findData)
{
    if (!findFile || findFile == INVALID_HANDLE_VALUE)
        return FALSE;
    auto* h = static_cast<FindHandle*>(findFile);
    if (!h->search.Next(h->entry))
        return FALSE;
    Fill(*h, findData);
    return TRUE;
}

BOOL FindClose(HANDLE findFile)
{
    if (!findFile || findFile == INVALID_HANDLE_VALUE)
        return FALSE;
    delete static_cast<FindHandle*>(findFile);
    return TRUE;
}

// --- CFileFind --------------------------------------------------------------

namespace vx {

// The framework reads one match ahead, so that FindNextFile can say whether
// another follows: `next` holds that match, `current` the one being read.
struct FileFinder {
    FileSearch search;
    FoundEntry current;
    FoundEntry next;
    bool hasNext = false;
    bool started = false; // FindNextFile has been called since FindFile
};

} // namespace vx

CFileFind::CFileFind() : d(std::make_unique<vx::FileFinder>()) {}

CFileFind::~CFileFind() = default;

BOOL CFileFind::FindFile(const char* name, DWORD)
{
    Close();
    if (!d->search.Start(name ? name : "*.*"))
        return FALSE;
    d->hasNext = d->search.Next(d->next);
    if (!d->hasNext)
        d->search.Close();
    return d->hasNext ? TRUE : FALSE;
}

BOOL CFileFind::FindNextFile()
{
    if (!d->hasNext)
        return FALSE;
    std::swap(d->current, d->next);
    d->started = true;
    d->hasNext = d->search.Next(d->next);
    return d->hasNext ? TRUE : FALSE;
}

void CFileFind::Close()
{
    d->search.Close();
    d->current = vx::FoundEntry{};
    d->next = vx::FoundEntry{};
    d->hasNext = false;
    d->started = false;
}

CString CFileFind::GetRoot() const
{
    return CString(d->search.Root());
}

CString CFileFind::GetFileName() const
{
    return d->started ? CString(d->current.name) : CString();
}

CString CFileFind::GetFilePath() const
{
    return d->started ? CString(d->search.Root() + d->current.name) : CString();
}

CString CFileFind::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind('.');
    return dot >= 0 ? name.Left(dot) : name;
}

const struct stat* CFileFind::Status() const
{
    return (d->started && d->search.Stat(d->current)) ? &d->current.st : nullptr;
}

std::uint64_t CFileFind::GetLength() const
{
    const struct stat* st = Status();
    return st ? static_cast<std::uint64_t>(st->st_size) : 0;
}

BOOL CFileFind::GetLastWriteTime(FILETIME* time) const
{
    const struct stat* st = Status();
    if (!time || !st)
        return FALSE;
    *time = TimeOf(st->st_mtim);
    return TRUE;
}

BOOL CFileFind::GetLastWriteTime(CTime& time) const
{
    const struct stat* st = Status();
    if (!st)
        return FALSE;
    time = CTime(st->st_mtim.tv_sec);
    return TRUE;
}

BOOL CFileFind::GetLastAccessTime(FILETIME* time) const
{
    const struct stat* st = Status();
    if (!time || !st)
        return FALSE;
    *time = TimeOf(st->st_atim);
    return TRUE;
}

BOOL CFileFind::GetCreationTime(FILETIME* time) const
{
    const struct stat* st = Status();
    if (!time || !st)
        return FALSE;
    *time = TimeOf(st->st_ctim);
    return TRUE;
}

BOOL CFileFind::MatchesMask(DWORD mask) const
{
    if (!d->started)
        return FALSE;
    return (d->search.Attributes(d->current) & mask) ? TRUE : FALSE;
}

BOOL CFileFind::IsDots() const
{
    const std::string& name = d->current.name;
    return (d->started && (name == "." || name == "..")) ? TRUE : FALSE;
}

BOOL CFileFind::IsDirectory() const
{
    return (d->started && d->search.IsDirectory(d->current)) ? TRUE : FALSE;
}

BOOL CFileFind::IsReadOnly() const
{
    return MatchesMask(FILE_ATTRIBUTE_READONLY);
}

BOOL CFileFind::IsHidden() const
{
    return MatchesMask(FILE_ATTRIBUTE_HIDDEN);
}
