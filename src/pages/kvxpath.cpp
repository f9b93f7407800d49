#include "pages/kvxpath.h"

#include "pages/pathnames.h"
#include "platform/files/filefind.h"
#include "platform/framework/mbstring.h"

#include <cstring>

namespace {

// Copies at most `limit` characters of `from` to the start of `to` and ends
// it; the caller's buffer holds limit + 1 bytes from `to` on.
void CopyLimited(char* to, const char* from, std::size_t limit)
{
    const std::size_t n = strnlen(from, limit);
    std::memcpy(to, from, n);
    to[n] = 0;
}

template <std::size_t N>
void Clear(char (&buffer)[N])
{
    std::memset(buffer, 0, N);
}

// Clears `buffer` and writes `text` into it, with `lead` in front unless the
// text starts with it; 255 characters in all.
template <std::size_t N>
void SetWithLead(char (&buffer)[N], const char* text, char lead)
{
    Clear(buffer);
    if (text[0] == lead) {
        CopyLimited(buffer, text, 255);
    } else {
        buffer[0] = lead;
        CopyLimited(buffer + 1, text, 254);
    }
}

CString Joined(const char* drive, const char* dir, const char* title, const char* ext)
{
    char path[_MAX_PATH];
    _makepath(path, drive, dir, title, ext);
    return CString(path);
}

} // namespace

KVxPath::KVxPath(const char* path)
{
    Empty();
    if (path)
        SetFilePath(path);
}

void KVxPath::Empty()
{
    Clear(m_drive);
    Clear(m_dir);
    Clear(m_fname);
    Clear(m_ext);
}

int KVxPath::SetFilePath(const char* path)
{
    if (!path)
        return 0;
    _splitpath(path, m_drive, m_dir, m_fname, m_ext);
    return 1;
}

void KVxPath::Apply(const char* drive, const char* dir, const char* title, const char* ext,
                    bool cutDrivePathTitle)
{
    if (drive) {
        Clear(m_drive);
        CopyLimited(m_drive, drive, 2);
    }
    if (dir) {
        SetWithLead(m_dir, dir, '\\');
        const std::size_t length = std::strlen(m_dir);
        if (length > 0 && m_dir[length - 1] != '\\' && length < 254) {
            m_dir[length] = '\\';
            m_dir[length + 1] = 0;
        }
    }
    if (title) {
        Clear(m_fname);
        CopyLimited(m_fname, title, 255);
        if (cutDrivePathTitle && IsPathname(m_fname) && m_drive[0]) {
            const CString name = GetDateiname(m_fname);
            Clear(m_fname);
            CopyLimited(m_fname, name, 255);
        }
    }
    if (ext)
        SetWithLead(m_ext, ext, '.');
}

void KVxPath::SetMerge(const char* drive, const char* dir, const char* title, const char* ext)
{
    Apply(drive, dir, title, ext, true);
}

CString KVxPath::Merge(const char* drive, const char* dir, const char* title, const char* ext) const
{
    KVxPath copy(*this);
    copy.Apply(drive, dir, title, ext, false);
    return copy.GetFilePath();
}

void KVxPath::SetMergeWithExt(const char* path)
{
    const KVxPath other(path);
    SetMerge(other.m_drive[0] ? other.m_drive : nullptr, other.m_dir[0] ? other.m_dir : nullptr,
             other.m_fname[0] ? other.m_fname : nullptr, other.m_ext[0] ? other.m_ext : nullptr);
}

CString KVxPath::MergeWithExt(const char* path) const
{
    const KVxPath other(path);
    return Merge(other.m_drive[0] ? other.m_drive : nullptr, other.m_dir[0] ? other.m_dir : nullptr,
                 other.m_fname[0] ? other.m_fname : nullptr, other.m_ext[0] ? other.m_ext : nullptr);
}

int KVxPath::AddDir(const char* sub)
{
    if (!sub)
        return 0;
    CString dir = m_dir;
    if (dir.IsEmpty() && sub[0] != '\\')
        dir = "\\";
    if (sub[0] == '\\')
        ++sub;
    dir += sub;
    if (dir.IsEmpty() || dir[dir.GetLength() - 1] != '\\')
        dir += '\\';
    dir = dir.Left(256);
    Clear(m_dir);
    CopyLimited(m_dir, dir, 255);
    return 1;
}

void KVxPath::SetFileTitle(const char* title)
{
    Clear(m_fname);
    if (title)
        CopyLimited(m_fname, title, 255);
}

void KVxPath::MakeFullPath()
{
    if (!IsSet())
        return;
    char full[_MAX_PATH];
    if (_fullpath(full, GetFilePath(), sizeof full))
        _splitpath(full, m_drive, m_dir, m_fname, m_ext);
}

CString KVxPath::GetFilePath() const
{
    return IsSet() ? Joined(m_drive, m_dir, m_fname, m_ext) : CString();
}

CString KVxPath::GetFileName() const
{
    return IsSet() ? Joined(nullptr, nullptr, m_fname, m_ext) : CString();
}

CString KVxPath::GetPathTitle() const
{
    return IsSet() ? Joined(m_drive, m_dir, m_fname, nullptr) : CString();
}

CString KVxPath::GetPath() const
{
    return IsSet() ? Joined(m_drive, m_dir, nullptr, nullptr) : CString();
}

CString KVxPath::GetParentPath() const
{
    CString dir = m_dir;
    if (dir.GetLength() > 1) {
        dir = dir.Left(dir.GetLength() - 1);
        const int slash = dir.ReverseFind('\\');
        if (slash >= 0)
            dir = dir.Left(slash);
        dir += '\\';
    }
    return Joined(m_drive, dir, nullptr, nullptr);
}

CString KVxPath::GetFullFilePath() const
{
    KVxPath copy(*this);
    copy.MakeFullPath();
    return copy.GetFilePath();
}

const char* KVxPath::GetExtension(const char* path)
{
    return path ? std::strrchr(path, '.') : nullptr;
}

int KVxPath::IsSet() const
{
    return (m_drive[0] || m_dir[0] || m_fname[0] || m_ext[0]) ? 1 : 0;
}

int KVxPath::IsFileExisting() const
{
    if (!IsSet())
        return 0;
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA(GetFilePath(), &data);
    if (find == INVALID_HANDLE_VALUE)
        return 0;
    int found = 0;
    do {
        if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            found = 1;
    } while (!found && FindNextFileA(find, &data));
    FindClose(find);
    return found;
}

int KVxPath::IsValid() const
{
    if (!IsSet())
        return 0;
    if (_mbspbrk(m_drive, "/\\*?\"<>|") || _mbspbrk(m_dir, "/:*?\"<>|") || _mbspbrk(m_fname, "/\\:*?\"<>|") ||
        _mbspbrk(m_ext, "/\\:*?\"<>|"))
        return 0;
    return 1;
}
