// GetDriveTypeA: what kind of medium holds a path, from the file system
// that is mounted there.
//
//   if (GetDriveTypeA("D:\\") == DRIVE_CDROM) ...   // drive D mapped by hostpath.h
//   GetDriveTypeA("/mnt/share/");                   // DRIVE_REMOTE on NFS or SMB
//
// ISO 9660 and UDF count as DRIVE_CDROM; NFS, SMB/CIFS, AFS, 9P and FUSE
// file systems as DRIVE_REMOTE; tmpfs and ramfs as DRIVE_RAMDISK; others as
// DRIVE_FIXED. A path that does not exist is DRIVE_NO_ROOT_DIR; names are
// reached without regard to ASCII case, as by the other file functions.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <string>

constexpr UINT DRIVE_UNKNOWN = 0;
constexpr UINT DRIVE_NO_ROOT_DIR = 1;
constexpr UINT DRIVE_REMOVABLE = 2;
constexpr UINT DRIVE_FIXED = 3;
constexpr UINT DRIVE_REMOTE = 4;
constexpr UINT DRIVE_CDROM = 5;
constexpr UINT DRIVE_RAMDISK = 6;

// `rootPath` is a path text ("C:\", a directory); null means "/".
VXBASE_EXPORT UINT GetDriveTypeA(const char* rootPath);

namespace vx {
// The same for a host path (UTF-8, as hostpath.h makes it).
VXBASE_EXPORT UINT DriveTypeOfHostPath(const std::string& hostPath);
} // namespace vx
