// CFile: the framework's file class. So far its static status query, which
// the library uses to ask whether a path exists and when it was written.
//
//   CFileStatus status;
//   if (CFile::GetStatus("C:\\P\\plan.0012", status))
//       use(status.m_mtime, status.m_size);
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/ctime.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstdint>

struct CFileStatus {
    CTime m_ctime;            // status change time (Linux keeps no birth time everywhere)
    CTime m_mtime;            // last write
    CTime m_atime;            // last access
    std::uint64_t m_size = 0; // bytes
    BYTE m_attribute = 0;     // FILE_ATTRIBUTE_... bits (the low byte)
    BYTE m_padding = 0;
    char m_szFullName[MAX_PATH] = {}; // the full path text, cut to MAX_PATH - 1
};

class VXBASE_EXPORT CFile : public CObject {
public:
    // Fills `status` for a file or directory; FALSE (and `status` untouched)
    // if the path does not exist or cannot be read. Symbolic links are
    // followed.
    static BOOL GetStatus(const char* fileName, CFileStatus& status);
};

namespace vx {

// CFile::GetStatus for a name spelled exactly as on disk: a name in another
// case is not looked up, so no directory is read. For callers that must not
// touch a directory (a cached page list on a slow drive).
VXBASE_EXPORT BOOL GetStatusAsSpelled(const char* fileName, CFileStatus& status);

} // namespace vx
