#include "config/kprofile.h"

#include "base/libraryframe.h"
#include "base/vxglobals.h"
#include "config/numbertext_p.h"
#include "platform/files/appdirs.h"
#include "platform/files/atomicfile_p.h"
#include "platform/files/cfile.h"
#include "platform/files/fileapi.h"
#include "platform/files/filefind.h"
#include "platform/files/hostpath.h"
#include "platform/framework/mbstring.h"
#include "platform/framework/util_p.h"
#include "platform/files/privateprofile.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

KIniMan* m_pVexalIni = nullptr;
KIniMan* m_pGlobalIniAT = nullptr;
KIniMan* m_pGlobalIniIT = nullptr;
KIniMan* m_pProjectIniAT = nullptr;
KIniMan* m_pProjectIniIT = nullptr;
char g_profiledirAT[260] = {};
char g_profiledirIT[260] = {};
char g_projectprofiledirAT[260] = {};
char g_projectprofiledirIT[260] = {};

CString KProfile::m_sWindowsDir;

namespace {

// The library frame stands below the settings, so they hand it what its
// attach path reads.
[[maybe_unused]] const bool kFrameSettingsInstalled = [] {
    vx::FrameSettings settings;
    settings.suiteDirectory = [](char* buffer, unsigned size) {
        // Afresh on each attach, for a host or a test that changed the
        // environment in between.
        KProfile::m_sWindowsDir.Empty();
        return KProfile::GetWindowsDirectoryA(buffer, size);
    };
    settings.suiteInt = [](const char* section, const char* key, int defaultValue) {
        return static_cast<int>(KProfile::GetProfileIntA(section, key, defaultValue, -1));
    };
    vx::SetFrameSettings(settings);
    return true;
}();

} // namespace

namespace vx {

ProfileTarget ResolveProfileScope(int scope)
{
    const bool at = g_MainframeType == MainframeAT;
    switch (scope) {
    case -2: return {nullptr, g_vexalglobalprofiledir};
    case -1: return {m_pVexalIni, g_vexalprofiledir};
    case 0: return at ? ProfileTarget{m_pGlobalIniAT, g_profiledirAT} : ProfileTarget{m_pGlobalIniIT, g_profiledirIT};
    case 1:
        return at ? ProfileTarget{m_pProjectIniAT, g_projectprofiledirAT}
                  : ProfileTarget{m_pProjectIniIT, g_projectprofiledirIT};
    case 10: return {m_pGlobalIniAT, g_profiledirAT};
    case 11: return {m_pProjectIniAT, g_projectprofiledirAT};
    case 20: return {m_pGlobalIniIT, g_profiledirIT};
    case 21: return {m_pProjectIniIT, g_projectprofiledirIT};
    default: return {};
    }
}

} // namespace vx

namespace {

// The file of a scope that has no document, or null. The original read a
// null path for a scope outside the table; here it counts as no file.
const char* DiskPath(const vx::ProfileTarget& target)
{
    return target.path && target.path[0] ? target.path : nullptr;
}

} // namespace

CString KProfile::GetProfileStringA(const char* section, const char* key, const char* defaultValue, int scope)
{
    const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
    if (target.document)
        return target.document->ReadString(section, key, defaultValue);
    if (const char* path = DiskPath(target)) {
        char buffer[10000] = {};
        GetPrivateProfileStringA(section, key, defaultValue, buffer, sizeof buffer, path);
        return CString(buffer);
    }
    return CString();
}

int KProfile::WriteProfileStringA(const char* section, const char* key, const char* value, int scope)
{
    const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
    if (target.document) {
        target.document->WriteString(section, key, value);
        return 1;
    }
    if (const char* path = DiskPath(target))
        return WritePrivateProfileStringA(section, key, value, path);
    return 0;
}

unsigned int KProfile::GetProfileIntA(const char* section, const char* key, int defaultValue, int scope)
{
    const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
    if (target.document)
        return static_cast<unsigned int>(target.document->ReadInt(section, key, defaultValue));
    if (const char* path = DiskPath(target))
        return GetPrivateProfileIntA(section, key, defaultValue, path);
    return static_cast<unsigned int>(defaultValue);
}

int KProfile::WriteProfileInt(const char* section, const char* key, int value, int scope)
{
    const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
    if (target.document) {
        target.document->WriteInt(section, key, value);
        return 1;
    }
    if (const char* path = DiskPath(target)) {
        CString text;
        text.Format("%d", value);
        return WritePrivateProfileStringA(section, key, text, path);
    }
    return 0;
}

char KProfile::GetProfileChar(const char* section, const char* key, char defaultValue, int scope)
{
    const int fallback = static_cast<signed char>(defaultValue);
    return static_cast<char>(GetProfileIntA(section, key, fallback, scope));
}

int KProfile::WriteProfileChar(const char* section, const char* key, char value, int scope)
{
    return WriteProfileInt(section, key, static_cast<signed char>(value), scope);
}

float KProfile::GetProfileFloat(const char* section, const char* key, float defaultValue, int scope)
{
    const std::string fallback = vx::FixedText(static_cast<double>(defaultValue));
    const CString text = GetProfileStringA(section, key, fallback.c_str(), scope);
    return static_cast<float>(vx::TextToDouble(text));
}

int KProfile::WriteProfileFloat(const char* section, const char* key, float value, int scope)
{
    return WriteProfileStringA(section, key, vx::FixedText(static_cast<double>(value)).c_str(), scope);
}

CString KProfile::GetProfileSectionA(const char* section, const char* defaultValue, int scope)
{
    constexpr int kSize = 20000;
    const vx::ProfileTarget target = vx::ResolveProfileScope(scope);
    // KIniMan::ReadSection checks its bound only after an entry is copied,
    // so the buffer gets room for the longest entry beyond the 20000 bytes.
    std::size_t slack = 2;
    if (target.document) {
        if (KIniSection* s = target.document->GetSection(section)) {
            CString key, value;
            int more;
            s->InitQuery();
            do {
                more = s->GetNextEntry(key, value);
                slack = std::max<std::size_t>(slack, static_cast<std::size_t>(key.GetLength() + value.GetLength()) + 3);
            } while (more);
        }
    }
    std::vector<char> buffer(kSize + slack, 0);
    if (defaultValue)
        std::strncpy(buffer.data(), defaultValue, kSize - 1);

    int count = 0;
    if (target.document)
        count = target.document->ReadSection(section, buffer.data(), kSize);
    else if (const char* path = DiskPath(target))
        count = static_cast<int>(GetPrivateProfileSectionA(section, buffer.data(), kSize, path));
    for (int i = 0; i < count - 1; ++i) {
        if (buffer[static_cast<std::size_t>(i)] == 0)
            buffer[static_cast<std::size_t>(i)] = '|';
    }
    return CString(buffer.data());
}

// --- the settings directory ---------------------------------------------------

namespace {

bool Exists(const CString& path)
{
    CFileStatus status;
    return CFile::GetStatus(path, status) != FALSE;
}

// Cuts one trailing separator and appends "\VEXAL". The folders of this
// platform end in "/" where the original's ended in "\".
CString VexalFolder(CString dir)
{
    const int last = dir.GetLength() - 1;
    if (last >= 0 && (dir[last] == '\\' || dir[last] == '/'))
        dir = dir.Left(last);
    return dir + "\\VEXAL";
}

// "APPDATA" as the original read it, into a buffer 13 bytes short of the
// caller's.
bool ReadAppData(unsigned int size, CString& dir)
{
    const DWORD capacity = size > 13 ? size - 13 : 0;
    std::vector<char> buffer(capacity + 1, 0);
    const DWORD n = GetEnvironmentVariableA("APPDATA", buffer.data(), capacity);
    if (n == 0 || n >= capacity)
        return false;
    dir = buffer.data();
    return true;
}

// Copies `source` to `target` with the line of `key` in the section whose
// header line contains `section` replaced by key=value. Lines match by
// substring; the section ends at the next line with a "[". A section without
// the key gets nothing added.
void PatchCopy(const CString& source, const CString& target, const char* section, const char* key,
               const CString& value)
{
    std::string text;
    if (!vx::ReadWholeFile(vx::HostPath(source.View()), text))
        return;
    std::vector<std::string_view> lines;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string::npos)
            end = text.size();
        std::string_view line(text.data() + pos, end - pos);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        lines.push_back(line);
        pos = end + 1;
    }
    const std::string replaced = std::string(key) + "=" + value.StdString();
    std::string out;
    auto put = [&out](std::string_view line) {
        out += line;
        out += "\r\n";
    };
    for (std::size_t i = 0; i < lines.size();) {
        const std::string_view line = lines[i++];
        put(line);
        if (line.find(section) == std::string_view::npos)
            continue;
        while (i < lines.size()) {
            const std::string_view inner = lines[i++];
            if (inner.find(key) != std::string_view::npos) {
                put(replaced);
                break;
            }
            put(inner);
            if (inner.find('[') != std::string_view::npos)
                break;
        }
    }
    vx::UpdateFile(vx::HostPath(target.View()), [&](const std::string*, std::string& result) {
        result = out;
        return true;
    });
}

// The machine-wide folders a new user gets a copy of. A folder the user
// has already is never touched; subfolders are not copied.
void CopyFolders(const CString& common, const CString& user)
{
    for (const char* name : {"\\VEXAL55\\", "\\VEXAL55_S\\", "\\VEXAL55_HLK\\"}) {
        const CString from = common + name;
        const CString to = user + name;
        if (!Exists(from + ".") || Exists(to + "."))
            continue;
        CFileFind finder;
        BOOL more = finder.FindFile(from + "*.*");
        if (!more)
            continue;
        CreateDirectoryA(to, nullptr);
        while (more) {
            more = finder.FindNextFile();
            if (finder.IsDots())
                continue;
            const CString file = finder.GetFileName();
            // A subfolder fails to copy as a file, and is left behind.
            CopyFileA(from + file, to + file, FALSE);
            if (_mbsicoll(file, "VXWIN55AT.INI") && _mbsicoll(file, "VXWIN55IT.INI"))
                continue;
            char temp[260];
            const DWORD n = GetEnvironmentVariableA("TEMP", temp, sizeof temp);
            if (n > 0 && n < sizeof temp)
                PatchCopy(from + file, to + file, "[Konfig Verzeichnisse]", "PFADTEMP", CString(temp) + "\\");
        }
    }
}

CString FindSettingsDirectory(unsigned int size)
{
    char common[MAX_PATH];
    if (SHGetFolderPathA(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, common) == S_OK) {
        const CString commonFolder = VexalFolder(common);
        CString appData;
        if (Exists(commonFolder + "\\VEXAL55.INI") && ReadAppData(size, appData)) {
            const CString userFolder = VexalFolder(appData);
            if (!Exists(userFolder + "\\VEXAL55.INI")) {
                // A fresh account may not have its configuration folder yet.
                CreateDirectoryA(appData, nullptr);
                CreateDirectoryA(userFolder, nullptr);
                CopyFileA(commonFolder + "\\VEXAL55.INI", userFolder + "\\VEXAL55.INI", TRUE);
                if (Exists(userFolder + "\\VEXAL55.INI"))
                    CopyFolders(commonFolder, userFolder);
            }
        }
    }
    CString appData;
    if (ReadAppData(size, appData)) {
        const CString userFolder = VexalFolder(appData);
        if (Exists(userFolder + "\\VEXAL55.INI"))
            return userFolder;
    }
    char windows[MAX_PATH] = {};
    const UINT n = ::GetWindowsDirectoryA(windows, sizeof windows);
    return n > 0 && n < sizeof windows ? CString(windows) : CString();
}

} // namespace

unsigned int KProfile::GetWindowsDirectoryA(char* buffer, unsigned int size)
{
    if (m_sWindowsDir.IsEmpty())
        m_sWindowsDir = FindSettingsDirectory(size);
    if (!buffer || size == 0)
        return 0;
    const auto length = static_cast<unsigned int>(m_sWindowsDir.GetLength());
    if (length < size) {
        std::memcpy(buffer, m_sWindowsDir.GetString(), length + 1);
        return length + 1;
    }
    std::memcpy(buffer, m_sWindowsDir.GetString(), size - 1);
    buffer[size - 1] = 0;
    return size;
}
