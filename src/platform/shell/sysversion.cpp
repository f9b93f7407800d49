#include "platform/shell/sysversion.h"

#include <cstring>

BOOL GetVersionExA(OSVERSIONINFOA* info)
{
    if (!info || info->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA))
        return FALSE;
    info->dwMajorVersion = 5;
    info->dwMinorVersion = 1;
    info->dwBuildNumber = 2600;
    info->dwPlatformId = VER_PLATFORM_WIN32_NT;
    std::memset(info->szCSDVersion, 0, sizeof info->szCSDVersion);
    return TRUE;
}

DWORD GetVersion()
{
    return 5u | (1u << 8) | (2600u << 16);
}
