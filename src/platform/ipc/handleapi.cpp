#include "platform/ipc/handleapi.h"

#include "platform/ipc/filemapping_p.h"
#include "platform/ipc/toolhelp_p.h"

namespace {

thread_local DWORD t_lastError = ERROR_SUCCESS;

} // namespace

DWORD GetLastError()
{
    return t_lastError;
}

void SetLastError(DWORD error)
{
    t_lastError = error;
}

BOOL CloseHandle(HANDLE handle)
{
    if (vx::detail::CloseSnapshot(handle) || vx::detail::CloseMapping(handle))
        return TRUE;
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}
