#include "platform/framework/carchive.h"

#include "platform/files/hostpath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>

CArchive::CArchive(const char* path, UINT mode) : m_loading(mode == load)
{
    m_target = vx::HostPath(path ? path : "");
    if (m_target.empty()) {
        SetFailed();
        return;
    }
    if (m_loading) {
        m_file = std::fopen(m_target.c_str(), "rb");
        struct stat info {};
        if (!m_file || fstat(fileno(m_file), &info) != 0 || !S_ISREG(info.st_mode)) {
            SetFailed();
            return;
        }
        m_left = static_cast<unsigned long long>(info.st_size);
        return;
    }
    // A temporary file in the target's directory, so that the final rename
    // stays on one file system. open() rather than mkstemp(), so that the
    // stored file gets the rights the umask gives.
    static std::atomic<unsigned> serial{0};
    int fd = -1;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        m_temp = m_target + ".tmp" + std::to_string(getpid()) + "_" + std::to_string(serial++);
        fd = ::open(m_temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            break;
    }
    if (fd < 0) {
        m_temp.clear();
        SetFailed();
        return;
    }
    m_file = fdopen(fd, "wb");
    if (!m_file) {
        ::close(fd);
        std::remove(m_temp.c_str());
        m_temp.clear();
        SetFailed();
    }
}

CArchive::~CArchive()
{
    Close();
}

unsigned long long CArchive::BytesLeft() const
{
    return m_loading ? m_left : 0;
}

void CArchive::Reverse(unsigned char* bytes, std::size_t count)
{
    std::reverse(bytes, bytes + count);
}

BOOL CArchive::Close()
{
    if (m_closed)
        return m_closeResult;
    m_closed = true;
    if (m_loading) {
        if (m_file)
            std::fclose(m_file);
        m_file = nullptr;
        m_closeResult = !m_failed;
        return m_closeResult;
    }
    bool ok = !m_failed && m_file;
    if (m_file) {
        ok = std::fflush(m_file) == 0 && ok;
        ok = fsync(fileno(m_file)) == 0 && ok;
        ok = std::fclose(m_file) == 0 && ok;
        m_file = nullptr;
    }
    if (ok)
        ok = std::rename(m_temp.c_str(), m_target.c_str()) == 0;
    if (!ok) {
        if (!m_temp.empty())
            std::remove(m_temp.c_str());
        m_failed = true;
    }
    m_closeResult = ok;
    return m_closeResult;
}

void CArchive::Abort()
{
    if (!m_loading && !m_closed)
        m_failed = true;
    Close();
}

void CArchive::Write(const void* data, UINT count)
{
    if (m_loading || m_closed || m_failed || !m_file) {
        SetFailed();
        return;
    }
    if (count != 0 && std::fwrite(data, 1, count, m_file) != count)
        SetFailed();
}

UINT CArchive::Read(void* data, UINT count)
{
    UINT got = 0;
    if (m_loading && !m_closed && !m_failed && m_file && count != 0)
        got = static_cast<UINT>(std::fread(data, 1, count, m_file));
    m_left -= std::min<unsigned long long>(m_left, got);
    if (got < count) {
        std::memset(static_cast<unsigned char*>(data) + got, 0, count - got);
        SetFailed();
    }
    return got;
}

void CArchive::WriteCount(DWORD count)
{
    if (count < 0xFFFF) {
        *this << static_cast<WORD>(count);
    } else {
        *this << static_cast<WORD>(0xFFFF);
        *this << count;
    }
}

DWORD CArchive::ReadCount()
{
    WORD small = 0;
    *this >> small;
    if (small != 0xFFFF)
        return small;
    DWORD count = 0;
    *this >> count;
    return count;
}

CArchive& CArchive::operator<<(const CString& text)
{
    const DWORD length = static_cast<DWORD>(text.GetLength());
    if (length < 0xFF) {
        *this << static_cast<BYTE>(length);
    } else if (length < 0xFFFE) {
        *this << static_cast<BYTE>(0xFF) << static_cast<WORD>(length);
    } else {
        *this << static_cast<BYTE>(0xFF) << static_cast<WORD>(0xFFFF) << length;
    }
    Write(text.GetString(), length);
    return *this;
}

CArchive& CArchive::operator<<(const char* text)
{
    return *this << CString(text);
}

CArchive& CArchive::operator>>(CString& text)
{
    text.Empty();
    BYTE small = 0;
    *this >> small;
    DWORD length = small;
    if (small == 0xFF) {
        WORD middle = 0;
        *this >> middle;
        length = middle;
        if (middle == 0xFFFE) {
            // The marker of a wide string, which this code page library
            // never writes.
            SetFailed();
            return *this;
        }
        if (middle == 0xFFFF)
            *this >> length;
    }
    if (m_failed)
        return *this;
    if (length > m_left) {
        SetFailed();
        return *this;
    }
    std::string bytes(length, '\0');
    Read(bytes.data(), length);
    if (!m_failed)
        text = CString(std::string_view(bytes));
    return *this;
}
