#include "look/dlgskinid.h"

#include "base/vxglobals.h"
#include "platform/windows/cframewnd.h"

int GetDlgSkinID(DWORD id)
{
    if (!g_pDLLMainframe || !g_pDLLMainframe->m_hWnd)
        return -1;
    const LRESULT answer = g_pDLLMainframe->SendMessage(WM_VXBASE, HostQueryDlgSkinID, static_cast<LPARAM>(id));
    return answer == 0 ? -1 : static_cast<int>(answer - 1);
}
