#include "platform/files/drivetype.h"

#include "platform/files/hostpath.h"

#include <sys/vfs.h>

UINT GetDriveTypeA(const char* rootPath)
{
    // Reached like any other file: a directory named in another case counts.
    return vx::DriveTypeOfHostPath(vx::DiskPath(rootPath && *rootPath ? rootPath : "/"));
}

UINT vx::DriveTypeOfHostPath(const std::string& host)
{
    struct statfs fs {};
    if (statfs(host.c_str(), &fs) != 0)
        return DRIVE_NO_ROOT_DIR;
    switch (static_cast<unsigned long>(fs.f_type)) {
    case 0x9660:     // ISO 9660
    case 0x15013346: // UDF
        return DRIVE_CDROM;
    case 0x6969:     // NFS
    case 0x517B:     // SMB
    case 0xFF534D42: // CIFS
    case 0xFE534D42: // SMB2
    case 0x5346414F: // AFS
    case 0x01021997: // 9P
    case 0x65735546: // FUSE
        return DRIVE_REMOTE;
    case 0x01021994: // tmpfs
    case 0x858458F6: // ramfs
        return DRIVE_RAMDISK;
    default:
        return DRIVE_FIXED;
    }
}
