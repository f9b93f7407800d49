#include "platform/ipc/handleapi.h"

#include "platform/ipc/filemapping_p.h"
#include "platform/ipc/toolhelp_p.h"

BOOL CloseHandle(HANDLE handle)
{
    if (vx::detail::CloseSnapshot(handle) || vx::detail::CloseMapping(handle))
        return TRUE;
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}
