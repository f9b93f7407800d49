#include "platform/files/cfile.h"

#include "platform/files/fileattributes_p.h"
#include "platform/files/hostpath.h"
#include "platform/framework/mbstring.h"
#include "platform/framework/util_p.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

namespace {

BOOL ReadStatus(const char* fileName, CFileStatus& status, bool anyCase)
{
    if (!fileName || !*fileName)
        return FALSE;
    const std::string host = anyCase ? vx::DiskPath(fileName) : vx::HostPath(fileName);
    struct stat st {};
    if (stat(host.c_str(), &st) != 0)
        return FALSE;
    CFileStatus result;
    result.m_ctime = CTime(st.st_ctim.tv_sec);
    result.m_mtime = CTime(st.st_mtim.tv_sec);
    result.m_atime = CTime(st.st_atim.tv_sec);
    result.m_size = static_cast<std::uint64_t>(st.st_size);
    result.m_attribute = static_cast<BYTE>(
        vx::FileAttributesOf(S_ISDIR(st.st_mode), access(host.c_str(), W_OK) == 0, vx::NameOf(host)));
    // The framework gave the full path; a text too long for it keeps the
    // name as given, cut to the buffer.
    if (!_fullpath(result.m_szFullName, fileName, sizeof result.m_szFullName)) {
        std::strncpy(result.m_szFullName, fileName, sizeof result.m_szFullName - 1);
        result.m_szFullName[sizeof result.m_szFullName - 1] = 0;
    }
    status = result;
    return TRUE;
}

} // namespace

BOOL CFile::GetStatus(const char* fileName, CFileStatus& status)
{
    return ReadStatus(fileName, status, true);
}

BOOL vx::GetStatusAsSpelled(const char* fileName, CFileStatus& status)
{
    return ReadStatus(fileName, status, false);
}
