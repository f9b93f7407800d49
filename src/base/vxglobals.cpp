#include "base/vxglobals.h"

#include "platform/windows/sysmetrics.h"
#include "platform/shell/sysversion.h"

#include <cstdio>
#include "platform/windows/windows.h"

namespace {

Win32Type ComputeShell()
{
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (!GetVersionExA(&info)) {
        std::fprintf(stderr, "vxbase: the system version is unknown\n");
        return WinXP;
    }
    return vx::ClassifySystem(info.dwPlatformId == VER_PLATFORM_WIN32_NT, info.dwMajorVersion, info.dwMinorVersion);
}

int ComputeRemoteSession()
{
    return (ComputeShell() >= Win2000 && GetSystemMetrics(SM_REMOTESESSION) != 0) ? 1 : 0;
}

} // namespace

Win32Type vx::ClassifySystem(bool nt, unsigned major, unsigned minor)
{
    if (nt) {
        if (major < 4)
            return WinNT3;
        if (major == 4)
            return WinNT4;
        if (major == 5 && minor == 0)
            return Win2000;
        return WinXP;
    }
    if (major < 4)
        return Win32s;
    if (major == 4 && minor == 10)
        return Win98;
    if (major == 4 && minor == 90)
        return WinME;
    return Win95;
}

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
