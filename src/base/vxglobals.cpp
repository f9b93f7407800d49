#include "base/vxglobals.h"

#include "platform/sysmetrics.h"
#include "platform/windows.h"

namespace {

Win32Type ComputeShell()
{
    // The Windows version test has no meaning here; the port behaves as
    // the newest system class.
    return WinXP;
}

int ComputeRemoteSession()
{
    return (ComputeShell() >= Win2000 && GetSystemMetrics(SM_REMOTESESSION) != 0) ? 1 : 0;
}

} // namespace

CMDIFrameWnd* g_pDLLMainframe = nullptr;
MainframeType g_MainframeType = MainframeAT;
Win32Type g_Shell = ComputeShell();
int bRemoteSession = ComputeRemoteSession();
int* g_pPrjNeueNorm = nullptr;
char g_vexalprofiledir[260] = "";
char g_vexalglobalprofiledir[260] = "";

UINT WM_XLISTCTRL_COMBO_SELECTION = RegisterWindowMessageA("WM_XLISTCTRL_COMBO_SELECTION");
UINT WM_XLISTCTRL_EDIT_END = RegisterWindowMessageA("WM_XLISTCTRL_EDIT_END");
UINT WM_XLISTCTRL_CHECKBOX_CLICKED = RegisterWindowMessageA("WM_XLISTCTRL_CHECKBOX_CLICKED");
UINT WM_XCOMBOLIST_COMPLETE = RegisterWindowMessageA("WM_XCOMBOLIST_COMPLETE");
UINT WM_XCOMBOLIST_VK_RETURN = RegisterWindowMessageA("WM_XCOMBOLIST_VK_RETURN");
UINT WM_XCOMBOLIST_VK_ESCAPE = RegisterWindowMessageA("WM_XCOMBOLIST_VK_ESCAPE");
UINT WM_XCOMBOLIST_KEYDOWN = RegisterWindowMessageA("WM_XCOMBOLIST_KEYDOWN");
UINT WM_XCOMBOLIST_LBUTTONUP = RegisterWindowMessageA("WM_XCOMBOLIST_LBUTTONUP");
UINT WM_XEDIT_KILL_FOCUS = RegisterWindowMessageA("WM_XEDIT_KILL_FOCUS");
UINT WM_XEDIT_VK_ESCAPE = RegisterWindowMessageA("WM_XEDIT_VK_ESCAPE");
