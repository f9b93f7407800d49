#include "platform/files/appdirs.h"

#include "platform/framework/codepage.h"
#include "platform/files/hostpath.h"
#include "platform/framework/mbstring.h"

#include <cstdlib>
#include <cstring>
#include <mutex>

#ifndef VXBASE_INSTALL_DATADIR
#define VXBASE_INSTALL_DATADIR "/usr/local/share/vxbase"
#endif

namespace {

std::mutex g_lock;
std::string g_windowsDir;

std::string Env(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

// The XDG base directory rules want absolute paths and a relative one
// ignored.
bool Usable(const std::string& dir)
{
    return !dir.empty() && dir[0] == '/';
}

std::string UserConfigHome()
{
    std::string dir = Env("XDG_CONFIG_HOME");
    if (Usable(dir))
        return dir;
    const std::string home = Env("HOME");
    if (Usable(home))
        return home + (home.back() == '/' ? ".config" : "/.config");
    return std::string();
}

std::string CommonConfigDir()
{
    const std::string dirs = Env("XDG_CONFIG_DIRS");
    std::size_t start = 0;
    while (start <= dirs.size()) {
        const std::size_t end = std::min(dirs.find(':', start), dirs.size());
        const std::string first = dirs.substr(start, end - start);
        if (Usable(first))
            return first;
        start = end + 1;
    }
    return "/etc/xdg";
}

std::string TempDir(const char* name)
{
    std::string dir = Env(name);
    if (!dir.empty())
        return dir;
    dir = Env("TMPDIR");
    return dir.empty() ? std::string("/tmp") : dir;
}

// Copies with the Win32 result convention: the length, or the size needed.
DWORD Deliver(const std::string& text, char* buffer, DWORD size)
{
    if (text.size() + 1 > size || !buffer)
        return static_cast<DWORD>(text.size() + 1);
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<DWORD>(text.size());
}

} // namespace

HRESULT SHGetFolderPathA(HWND, int folder, HANDLE, DWORD, char* path)
{
    if (!path)
        return E_INVALIDARG;
    std::string dir;
    switch (folder & ~CSIDL_FLAG_MASK) {
    case CSIDL_APPDATA: dir = UserConfigHome(); break;
    case CSIDL_COMMON_APPDATA: dir = CommonConfigDir(); break;
    default: return E_INVALIDARG;
    }
    if (dir.empty())
        return E_FAIL;
    const std::string text = vx::PathTextFromHost(dir);
    if (text.size() >= MAX_PATH)
        return E_FAIL;
    std::memcpy(path, text.c_str(), text.size() + 1);
    return S_OK;
}

DWORD GetEnvironmentVariableA(const char* name, char* buffer, DWORD size)
{
    if (!name || !*name)
        return 0;
    std::string value;
    if (!_stricmp(name, "APPDATA")) {
        value = vx::PathTextFromHost(UserConfigHome());
    } else if (!_stricmp(name, "TEMP") || !_stricmp(name, "TMP")) {
        value = vx::PathTextFromHost(TempDir(_stricmp(name, "TEMP") ? "TMP" : "TEMP"));
    } else {
        const char* raw = std::getenv(name);
        if (!raw)
            return 0;
        value = vx::FromUtf8(raw);
    }
    if (value.empty())
        return 0;
    return Deliver(value, buffer, size);
}

UINT GetWindowsDirectoryA(char* buffer, UINT size)
{
    std::string text = vx::PathTextFromHost(vx::WindowsDirectory());
    while (text.size() > 1 && (text.back() == '/' || text.back() == '\\'))
        text.pop_back();
    return Deliver(text, buffer, size);
}

namespace vx {

void SetWindowsDirectory(std::string_view hostDirectory)
{
    std::lock_guard lock(g_lock);
    g_windowsDir = std::string(hostDirectory);
}

std::string WindowsDirectory()
{
    {
        std::lock_guard lock(g_lock);
        if (!g_windowsDir.empty())
            return g_windowsDir;
    }
    const std::string dir = Env("VXBASE_WINDOWS_DIR");
    return dir.empty() ? std::string(VXBASE_INSTALL_DATADIR) : dir;
}

} // namespace vx
