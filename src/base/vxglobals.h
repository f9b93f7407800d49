// The library's exported globals and the types of its shared state.
//
// A host sets g_pDLLMainframe and g_MainframeType after load and before it
// uses any service; the library sets the rest itself (g_Shell and
// bRemoteSession at load, the two suite file paths in vx::AttachLibrary).
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

class CMDIFrameWnd;

// Which program of the suite this is. Any value other than MainframeAT is
// treated as IT where a program's settings are chosen.
enum MainframeType {
    MainframeAT = 1,
    MainframeIT = 2,
};

// The class of the running system, in ascending order. On Linux the
// library reports WinXP: the newest class, whose code paths the port
// keeps.
enum Win32Type {
    Win32s = 0,
    WinNT3 = 1,
    Win95 = 2,
    Win98 = 3,
    WinME = 4,
    WinNT4 = 5,
    Win2000 = 6,
    WinXP = 7,
};

namespace vx {
// The system class of a version: `nt` for the NT family, else the high bit
// of GetVersion was set.
VXBASE_EXPORT Win32Type ClassifySystem(bool nt, unsigned major, unsigned minor);
} // namespace vx

// The message by which the library asks its host (WM_USER + 5).
constexpr UINT WM_VXBASE = 0x405;

// The services of WM_VXBASE, by wParam.
enum HostQueryCode {
    HostQueryCommonMessage = 1,  // lParam: CommonMessageRec*
    HostQueryDlgVerzeichnis = 2, // lParam: const char*[3]; answer: const CString*
    HostQueryVxModul = 7,        // answer: the edition flags
    HostQueryFlags = 8,          // lParam 1 recycle bin, 2 page limit, 3 file dialog focus
    HostQueryDlgSkinID = 9,      // lParam: dialog id; answer: skin id + 1, or 0
    HostQueryActProject = 10,    // answer: const CString*
};

// The host's main frame; null until the host sets it.
extern VXBASE_EXPORT CMDIFrameWnd* g_pDLLMainframe;
extern VXBASE_EXPORT MainframeType g_MainframeType;
extern VXBASE_EXPORT Win32Type g_Shell;
// 1 in a remote session; always 0 on Linux.
extern VXBASE_EXPORT int bRemoteSession;
// For the host and its plug-ins; the library never reads it.
extern VXBASE_EXPORT int* g_pPrjNeueNorm;
// Full paths of "VEXAL55.INI" and "VEXAL.INI", set when the library attaches.
extern VXBASE_EXPORT char g_vexalprofiledir[260];
extern VXBASE_EXPORT char g_vexalglobalprofiledir[260];

// The registered messages of the cell list and its in-place editors,
// obtained at load.
extern VXBASE_EXPORT UINT WM_XLISTCTRL_COMBO_SELECTION;
extern VXBASE_EXPORT UINT WM_XLISTCTRL_EDIT_END;
extern VXBASE_EXPORT UINT WM_XLISTCTRL_CHECKBOX_CLICKED;
extern VXBASE_EXPORT UINT WM_XCOMBOLIST_COMPLETE;
extern VXBASE_EXPORT UINT WM_XCOMBOLIST_VK_RETURN;
extern VXBASE_EXPORT UINT WM_XCOMBOLIST_VK_ESCAPE;
extern VXBASE_EXPORT UINT WM_XCOMBOLIST_KEYDOWN;
extern VXBASE_EXPORT UINT WM_XCOMBOLIST_LBUTTONUP;
extern VXBASE_EXPORT UINT WM_XEDIT_KILL_FOCUS;
extern VXBASE_EXPORT UINT WM_XEDIT_VK_ESCAPE;
