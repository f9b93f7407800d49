#include "base/libraryframe.h"

#include "base/displaystate.h"
#include "base/vxglobals.h"
#include "base/vxmessagebox.h"
#include "platform/framework/extensionmodule.h"
#include "platform/files/fileapi.h"
#include "platform/windows/messagebox.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/sysmetrics.h"

#include <cstring>
#include <vector>

namespace {

HINSTANCE g_instance = nullptr;
AFX_EXTENSION_MODULE g_module;

std::vector<void (*)()>& DetachHandlers()
{
    static std::vector<void (*)()> handlers;
    return handlers;
}

vx::FrameSettings g_settings; // zero until the settings install theirs

int ReadDualMonitorKey(const char* key, int defaultValue)
{
    return g_settings.suiteInt ? g_settings.suiteInt("2Monitor", key, defaultValue) : defaultValue;
}

void AppendCut(char* out, std::size_t size, const char* text)
{
    const std::size_t used = std::strlen(out);
    if (used + 1 >= size)
        return;
    std::strncat(out, text, size - used - 1);
}

} // namespace

CString GetString(int id)
{
    CString text;
    if (!text.LoadString(static_cast<UINT>(id))) {
        CString message;
        message.Format("Global error: Missing string %d", id);
        VxAfxMessageBox(message, MB_OK, 0);
        return CString();
    }
    return text;
}

void VexalAssert(void* sourcePath, unsigned line)
{
    CString text;
    text.Format("Allgemeiner Fehler: %d Typ: ", static_cast<int>(line));
    // The file title: between the last separator and the last ".". The
    // port's source paths use "/", so it counts as a separator too.
    const CString path(static_cast<const char*>(sourcePath));
    const int slash = std::max(path.ReverseFind('\\'), path.ReverseFind('/'));
    const int dot = path.ReverseFind('.');
    const int start = slash + 1;
    const int end = dot > slash ? dot : path.GetLength();
    text += path.Mid(start, end - start);
    text += "\n\nDas Programm sollte abgebrochen werden";
    if (VxAfxMessageBox(text, MB_RETRYCANCEL | MB_ICONHAND, 0) == IDRETRY)
        return;
    AfxAbort();
}

unsigned GetSafeTimerID(HWND window, unsigned elapse)
{
    if (!IsWindow(window))
        return 0;
    for (unsigned id = 31; id <= 99; ++id) {
        if (const UINT_PTR result = SetTimer(window, id, elapse, nullptr))
            return static_cast<unsigned>(result);
    }
    return 0;
}

int GetDllVersionVxBase(int part)
{
    switch (part) {
    case 0: return 8;
    case 1: return 6;
    case 2: return 5;
    case 3: return 2;
    case 4: return -1;
    default: return 0;
    }
}

int SafeSystemMetrics(int index)
{
    // The multi-monitor functions always exist here, so the plain metric
    // answers every index.
    return GetSystemMetrics(index);
}

void StartDualMonitor()
{
    int enable = ReadDualMonitorKey("Enable", -1);
    const int vcx = SafeSystemMetrics(SM_CXVIRTUALSCREEN);
    const int vcy = SafeSystemMetrics(SM_CYVIRTUALSCREEN);
    const int left = SafeSystemMetrics(SM_XVIRTUALSCREEN);
    const int top = SafeSystemMetrics(SM_YVIRTUALSCREEN);
    const int cx = SafeSystemMetrics(SM_CXSCREEN);
    const int cy = SafeSystemMetrics(SM_CYSCREEN);
    vx::DisplayState& state = vx::TheDisplayState();
    state.virtualRect = RECT{left, top, left + vcx, top + vcy};
    if (enable == -1)
        enable = 0;
    if (enable != 0) {
        int firstCx = ReadDualMonitorKey("First-CX", -1);
        int firstCy = ReadDualMonitorKey("First-CY", -1);
        if (firstCx == -1 || firstCy == -1) {
            firstCx = cx;
            firstCy = cy;
        }
        state.enable = enable;
        state.first = SIZE{firstCx, firstCy};
    } else {
        state.first = SIZE{cx, cy};
    }
}

namespace vx {
int Attach(HINSTANCE instance);
void Detach();
} // namespace vx

int DllMain(HINSTANCE instance, DWORD reason, void*)
{
    if (reason == DLL_PROCESS_ATTACH)
        return vx::Attach(instance);
    if (reason == DLL_PROCESS_DETACH)
        vx::Detach();
    return 1;
}

namespace vx {

bool MigrateSuiteFile(const char* oldFile, const char* newFile)
{
    if (!CopyFileA(oldFile, newFile, TRUE))
        return false;
    DeleteFileA(oldFile);
    return true;
}

int AttachLibrary()
{
    return DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
}

void DetachLibrary()
{
    DllMain(nullptr, DLL_PROCESS_DETACH, nullptr);
}

void AtLibraryDetach(void (*handler)())
{
    if (handler)
        DetachHandlers().push_back(handler);
}

int Attach(HINSTANCE instance)
{
    g_instance = instance;
    // A second attach without a detach finds the module initialised; the
    // original would fail the load there, the port only repeats the file
    // steps.
    AfxInitExtensionModule(g_module, static_cast<HMODULE>(instance));
    g_vexalprofiledir[0] = 0;
    if (g_settings.suiteDirectory)
        g_settings.suiteDirectory(g_vexalprofiledir, sizeof g_vexalprofiledir);
    AppendCut(g_vexalprofiledir, sizeof g_vexalprofiledir, "\\");
    std::memcpy(g_vexalglobalprofiledir, g_vexalprofiledir, sizeof g_vexalglobalprofiledir);
    AppendCut(g_vexalprofiledir, sizeof g_vexalprofiledir, "VEXAL55.INI");
    AppendCut(g_vexalglobalprofiledir, sizeof g_vexalglobalprofiledir, "VEXAL.INI");
    MigrateSuiteFile(g_vexalglobalprofiledir, g_vexalprofiledir);
    StartDualMonitor();
    return 1;
}

void SetFrameSettings(const FrameSettings& settings)
{
    g_settings = settings;
}

void Detach()
{
    auto& handlers = DetachHandlers();
    for (auto it = handlers.rbegin(); it != handlers.rend(); ++it)
        (*it)();
    handlers.clear();
    AfxTermExtensionModule(g_module);
    ResetMessageQueue();
}

} // namespace vx
