// The version of the running system, as the desktop API reported it.
//
// Linux has no such number; the port reports the NT family at 5.1 (the
// newest system class the library distinguishes), so that every branch on
// the system class takes the path of current systems.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

constexpr DWORD VER_PLATFORM_WIN32s = 0;
constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    char szCSDVersion[128];
};

// Fills `info` (its size field must be set); FALSE for a null pointer or a
// wrong size.
VXBASE_EXPORT BOOL GetVersionExA(OSVERSIONINFOA* info);
// Low byte major, next byte minor, high bit set for the non-NT family.
VXBASE_EXPORT DWORD GetVersion();
