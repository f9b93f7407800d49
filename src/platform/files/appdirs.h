// The folders the suite keeps its settings in, and the environment.
//
// The original asked the shell for the machine-wide application data folder,
// the environment for the user's "APPDATA" and the system for its Windows
// directory. On Linux these stand in for them:
//
//   common application data   the first directory of $XDG_CONFIG_DIRS (default /etc/xdg)
//   "APPDATA"                 $XDG_CONFIG_HOME (default $HOME/.config)
//   "TEMP", "TMP"             the variable itself, else $TMPDIR, else /tmp
//   Windows directory         <prefix>/share/vxbase of the installation, or
//                             $VXBASE_WINDOWS_DIR, or what vx::SetWindowsDirectory chose
//
// Every answer is a path text in the code page (see hostpath.h):
//
//   char dir[MAX_PATH];
//   if (SHGetFolderPathA(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, dir) == S_OK)
//       ...                                           // "/etc/xdg"
//   GetEnvironmentVariableA("APPDATA", dir, MAX_PATH); // "/home/anna/.config"
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <string>
#include <string_view>

using HRESULT = LONG;
constexpr HRESULT S_OK = 0;
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);

// Folder ids of SHGetFolderPathA.
constexpr int CSIDL_APPDATA = 0x001A;
constexpr int CSIDL_COMMON_APPDATA = 0x0023;
constexpr int CSIDL_FLAG_CREATE = 0x8000;
constexpr int CSIDL_FLAG_MASK = 0xFF00;

// The folder `folder` (CSIDL_APPDATA or CSIDL_COMMON_APPDATA; flag bits are
// ignored) into `path`, which holds MAX_PATH bytes. S_OK, E_INVALIDARG for
// another id or a null `path`, E_FAIL when the folder is unknown or too long.
// The folder need not exist.
VXBASE_EXPORT HRESULT SHGetFolderPathA(HWND owner, int folder, HANDLE token, DWORD flags, char* path);

// The variable `name` into `buffer` of `size` bytes. Returns its length
// without the terminator; if it does not fit, the size it needs (terminator
// included) and the buffer is left alone; 0 if the variable is not set.
// "APPDATA", "TEMP" and "TMP" answer by the stand-ins above.
VXBASE_EXPORT DWORD GetEnvironmentVariableA(const char* name, char* buffer, DWORD size);

// The Windows directory stand-in into `buffer` of `size` bytes, with no "\"
// at the end. Returns its length without the terminator; if it does not fit,
// the size it needs (terminator included) and the buffer is left alone.
VXBASE_EXPORT UINT GetWindowsDirectoryA(char* buffer, UINT size);

namespace vx {

// Sets the host directory that GetWindowsDirectoryA answers; empty restores
// the default ($VXBASE_WINDOWS_DIR, else the installation's data directory).
VXBASE_EXPORT void SetWindowsDirectory(std::string_view hostDirectory);
// The host directory GetWindowsDirectoryA answers (UTF-8).
VXBASE_EXPORT std::string WindowsDirectory();

} // namespace vx
