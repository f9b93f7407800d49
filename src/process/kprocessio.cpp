// KProcessIO: start, state, window search, activation and the log.
#include "process/kprocessio.h"

#include "base/hostmessages.h"
#include "base/libraryframe.h"
#include "base/vxmessagebox.h"
#include "config/kprofile.h"
#include "platform/windows/cwnd.h"
#include "platform/files/filefind.h"
#include "platform/files/hostpath.h"
#include "platform/framework/mbstring.h"
#include "platform/windows/messagepump.h"
#include "platform/shell/shellexecute.h"
#include "platform/ipc/toolhelp.h"
#include "platform/ipc/windowbus.h"
#include "platform/windows/windowplacement.h"
#include "platform/windows/windows.h"
#include "process/kprocessio_p.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <thread>

int KProcessIO::m_Active = 0;
int KProcessIO::m_Single = 0;
int KProcessIO::m_ExecuteTimeout = 10000;
int KProcessIO::m_MessageTimeout = 10000;
ProcessLevelType KProcessIO::m_WriteLogState = ProcessLevelType(1);
HWND KProcessIO::m_hProgWnd = nullptr;
HWND KProcessIO::m_hPartnerWnd = nullptr;
KProcessIO::KData* KProcessIO::m_pReceiver = nullptr;
int KProcessIO::m_InReceiving = 0;
CString KProcessIO::m_ExePath;
CString KProcessIO::m_Name_AT;
CString KProcessIO::m_Name_IT;
CString KProcessIO::m_Name1_AT;
CString KProcessIO::m_Name1_IT;
const char* KProcessIO::m_sTitleChars = " ";
CString KProcessIO::m_sPartnerClass;
KProcessIO::KClosePartnerThread KProcessIO::s_ClosePartner;
CArray<CWnd*, CWnd*> KProcessIO::s_arWnd;

namespace vx::detail {

namespace {

// -1 until the first search reads "SearchMode".
int g_searchMode = -1;

struct LogState {
    std::mutex lock;
    std::string path; // host path of "VxProcess.log", found once
};

LogState& TheLog()
{
    static auto* state = new LogState; // used by the watch thread up to the end
    return *state;
}

} // namespace

MainframeType PartnerType()
{
    return g_MainframeType == MainframeAT ? MainframeIT : MainframeAT;
}

const char* ProgramName(MainframeType type)
{
    return type == MainframeAT ? "AT" : "IT";
}

CString HandleText(HWND hwnd)
{
    CString text;
    text.Format("%llu", static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(hwnd)));
    return text;
}

HWND HandleFromText(const char* text)
{
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(std::strtoull(text ? text : "", nullptr, 10)));
}

int SuiteInt(const char* key, int defaultValue)
{
    return static_cast<int>(KProfile::GetProfileIntA("PROCESS", key, defaultValue, -1));
}

void ResolveLogPath()
{
    LogState& log = TheLog();
    std::lock_guard hold(log.lock);
    if (!log.path.empty())
        return;
    char dir[MAX_PATH] = {};
    KProfile::GetWindowsDirectoryA(dir, sizeof dir);
    log.path = DiskPath(std::string(dir) + "\\VxProcess.log");
}

int LogLine(const char* text, long long id, ProcessLevelType level)
{
    const int state = KProcessIO::m_WriteLogState;
    if (state <= 0 || level > state)
        return 1;
    ResolveLogPath();
    const char* prefix = g_MainframeType == MainframeAT ? "1-" : "2-";
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char stamp[64];
    std::string line;
    if (!text && id == 0) {
        std::strftime(stamp, sizeof stamp, "%H:%M:%S %Y/%m/%d  ", &local);
        line = std::string("\n") + prefix + stamp + "\n";
    } else {
        std::strftime(stamp, sizeof stamp, "%H:%M:%S  ", &local);
        line = std::string(prefix) + stamp;
        if (id != 0)
            line += std::to_string(id) + ":";
        if (text)
            line += text;
        line += "\n";
    }

    LogState& log = TheLog();
    std::lock_guard hold(log.lock);
    // Both programs write the file: while the other holds it, try again
    // after 50 ms, ten times at most. A file that cannot be opened at all
    // is not waited for.
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const int fd = open(log.path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
        if (fd < 0)
            return 0;
        if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
            close(fd);
            continue;
        }
        const bool written = ::write(fd, line.data(), line.size()) == static_cast<ssize_t>(line.size());
        close(fd);
        return written ? 1 : 0;
    }
    return 0;
}

// The process of a window is one of the program's: its name begins with
// "AT" or "IT" (the walk lists names without a directory).
bool IsProgramProcess(const char* exeFile, MainframeType type)
{
    const char* name = exeFile;
    for (const char* p = exeFile; *p; ++p) {
        if (*p == '\\' || *p == '/')
            name = p + 1;
    }
    return _strnicmp(name, ProgramName(type), 2) == 0;
}

bool ProcessOfProgram(DWORD pid, MainframeType type)
{
    bool found = false;
    const HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snap == INVALID_HANDLE_VALUE)
        return false;
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(snap, &entry); more; more = Process32Next(snap, &entry)) {
        if (entry.th32ProcessID == pid) {
            found = IsProgramProcess(entry.szExeFile, type);
            break;
        }
    }
    CloseHandle(snap);
    return found;
}

struct Search {
    MainframeType type;
    HWND found = nullptr;
};

BOOL SearchTest(HWND hwnd, LPARAM lParam)
{
    auto& search = *reinterpret_cast<Search*>(lParam);
    if (!IsWindow(hwnd))
        return TRUE;
    const int length = GetWindowTextLengthA(hwnd);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    GetWindowTextA(hwnd, text.data(), length + 1);
    const CString title(text.c_str());
    if (search.type == MainframeIT) {
        if (title.Find(KProcessIO::m_Name1_IT) != 0)
            return TRUE;
    } else {
        // The AT stem begins the IT stem too.
        if (title.Find(KProcessIO::m_Name_IT) >= 0 || title.Find(KProcessIO::m_Name1_AT) != 0)
            return TRUE;
        if (!KProcessIO::m_sPartnerClass.IsEmpty()) {
            char className[256] = {};
            GetClassNameA(hwnd, className, sizeof className);
            const std::size_t compare = std::strlen(className) ? std::strlen(className) - 1 : 0;
            if (std::strncmp(className, KProcessIO::m_sPartnerClass, compare) != 0)
                return TRUE;
        }
    }
    if (g_searchMode != 0) {
        search.found = hwnd; // the last match wins
        return TRUE;
    }
    DWORD pid = 0;
    GetWindowThreadProcessId(hwnd, &pid);
    if (ProcessOfProgram(pid, search.type)) {
        search.found = hwnd;
        return FALSE;
    }
    KProcessIO::WriteLog("GETVX-NAME", ProcessIDType(0), kLogLink);
    return TRUE;
}

// The first window of any process named as the program, to bring forward
// after a failed start.
HWND AnyWindowOfProgram(MainframeType type)
{
    CDWordArray ids;
    const HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snap != INVALID_HANDLE_VALUE) {
        PROCESSENTRY32 entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Process32First(snap, &entry); more; more = Process32Next(snap, &entry)) {
            if (IsProgramProcess(entry.szExeFile, type))
                ids.Add(entry.th32ProcessID);
        }
        CloseHandle(snap);
    }
    struct Walk {
        CDWordArray* ids;
        HWND found = nullptr;
    } walk{&ids};
    EnumWindows(
        [](HWND hwnd, LPARAM lParam) -> BOOL {
            auto& w = *reinterpret_cast<Walk*>(lParam);
            DWORD pid = 0;
            GetWindowThreadProcessId(hwnd, &pid);
            for (int i = 0; i < w.ids->GetSize(); ++i) {
                if (w.ids->GetAt(i) == pid) {
                    w.found = hwnd;
                    return FALSE;
                }
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&walk));
    return walk.found;
}

void ResetSearchMode()
{
    g_searchMode = -1;
}

void ForgetLogPath()
{
    LogState& log = TheLog();
    std::lock_guard hold(log.lock);
    log.path.clear();
}

BOOL ShowAnyWindow(HWND hwnd, int command)
{
    // A frame of this process keeps its own state of being shown.
    if (CWnd* window = CWnd::FromHandle(hwnd))
        return window->ShowWindow(command);
    return ShowWindow(hwnd, command);
}

void SendSimple(HWND target, ProcessIDType id, const char* text, int size)
{
    KProcessIO::KData* data = KProcessIO::InitPartner(id, size, nullptr);
    if (!data)
        return;
    if (text)
        data->Write(text);
    KProcessIO::SendPartner(target, data);
    KProcessIO::ExitPartner(data, 0);
}

} // namespace vx::detail

using namespace vx::detail;

int KProcessIO::GetStartState(const char* commandLine, CString* project)
{
    const char* line = commandLine ? commandLine : "";
    if (!std::strncmp(line, "/SINGLE", 7) || SuiteInt("Enable", 1) == 0) {
        m_Single = 1;
        return SW_SHOWMAXIMIZED;
    }
    if (!std::strncmp(line, "@@@", 3)) {
        if (project)
            *project = line + 3;
        return SW_SHOW;
    }
    if (!std::strncmp(line, "@@", 2)) {
        if (project)
            *project = line + 2;
        return SW_HIDE;
    }
    return SW_SHOWNORMAL;
}

int KProcessIO::AutoStart()
{
    return SuiteInt("AutoStart", 0) == 1;
}

int KProcessIO::Init(MainframeType type, CWnd* frame, const char* exePath, int startState)
{
    m_WriteLogState = ProcessLevelType(SuiteInt("WriteLog", 1));
    if (SuiteInt("Enable", 1) == 0)
        m_Single = 1;
    if (m_Single)
        return 0;
    m_ExePath = exePath ? exePath : "";
    m_ExecuteTimeout = SuiteInt("ExecuteTimeout", m_ExecuteTimeout);
    m_MessageTimeout = SuiteInt("MessageTimeout", m_MessageTimeout);
    // Found here, on the main thread, before the watch thread may log.
    ResolveLogPath();
    vx::SetWindowBusLog([](const std::string& line) { LogLine(line.c_str(), 0, vx::kLogLink); });

    vx::SetPartnerMessageBoxRoute(&ShowBoxAtPartner);
    m_Active = 1;
    s_ClosePartner.Create(type);
    s_ClosePartner.SetRun(1);

    m_hProgWnd = frame ? frame->GetSafeHwnd() : nullptr;
    char className[101] = {};
    if (m_hProgWnd) {
        GetClassNameA(m_hProgWnd, className, 100);
        // The partner finds this program by its published frame.
        if (!vx::PublishWindow(m_hProgWnd))
            LogLine("PUBLISH-FALSE", 0, vx::kLogLink);
    }
    if (type == MainframeAT) {
        KProfile::WriteProfileStringA("PROCESS", "AT-Class", className, -1);
        m_sPartnerClass = KProfile::GetProfileStringA("PROCESS", "IT-Class", "", -1);
    } else {
        KProfile::WriteProfileStringA("PROCESS", "IT-Class", className, -1);
        m_sPartnerClass = KProfile::GetProfileStringA("PROCESS", "AT-Class", "AfxMDIFrame42", -1);
    }
    if (startState != SW_SHOWNORMAL)
        std::atomic_ref<HWND>(m_hPartnerWnd).store(
            HandleFromText(KProfile::GetProfileStringA("PROCESS", "Partner", "0", -1)));
    LogLine("INIT-PROCESS", static_cast<long long>(reinterpret_cast<std::uintptr_t>(m_hPartnerWnd)), vx::kLogLink);
    return 1;
}

HWND KProcessIO::GetVxProg(MainframeType type, int startIfMissing, int forceSearch)
{
    if (m_Name_AT.IsEmpty()) {
        m_Name_AT = GetString(6706);
        m_Name_IT = GetString(6707);
        m_Name1_AT = m_Name_AT + m_sTitleChars;
        m_Name1_IT = m_Name_IT + m_sTitleChars;
        if (g_searchMode == -1)
            g_searchMode = SuiteInt("SearchMode", 0);
    }
    if (type == 0)
        type = PartnerType();
    const bool partner = type == PartnerType();
    const HWND known = partner ? std::atomic_ref<HWND>(m_hPartnerWnd).load() : m_hProgWnd;
    if (known && !(partner && forceSearch))
        return known;
    Search search{type};
    EnumWindows(SearchTest, reinterpret_cast<LPARAM>(&search));
    if (!forceSearch) {
        CString line;
        line.Format("GETVX %llX", static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(search.found)));
        WriteLog(line, ProcessIDType(0), vx::kLogSearch);
    }
    if (!search.found && partner && startIfMissing)
        search.found = ActivatePartner(type, 0);
    return search.found;
}

HWND KProcessIO::ActivatePartner(MainframeType type, int showCommand)
{
    if (!m_Active)
        return nullptr;
    if (type == 0)
        type = PartnerType();
    const char* name = ProgramName(type);
    HWND window = GetVxProg(type, 0, 0);
    if (window && !showCommand)
        return window;
    if (window) {
        WINDOWPLACEMENT placement{};
        placement.length = sizeof placement;
        if (GetWindowPlacement(m_hProgWnd, &placement)) {
            SetWindowPlacement(window, &placement);
            ShowWindow(window, static_cast<int>(placement.showCmd));
        }
        SendSimple(window, vx::kPartnerActivate, "1", 10);
        SetForegroundWindow(window);
        KProfile::WriteProfileStringA("MISC", "LastProg", name, -1);
        std::atomic_ref<HWND>(m_hPartnerWnd).store(window);
        return window;
    }

    CString path = m_ExePath + name;
    CFileFind finder;
    if (!finder.FindFile(path)) {
        const CString home =
            KProfile::GetProfileStringA("MISC", type == MainframeIT ? "HomeProgIT" : "HomeProgAT", "", -1);
        const int slash = std::max(home.ReverseFind('\\'), home.ReverseFind('/'));
        const CString inExePath = m_ExePath + home.Mid(slash + 1);
        path = !home.IsEmpty() && finder.FindFile(inExePath) ? inExePath : home;
    }
    finder.Close();

    bool started = false;
    if (!path.IsEmpty()) {
        KProfile::WriteProfileStringA("PROCESS", "Partner", HandleText(m_hProgWnd), -1);
        const CString commandLine = CString(showCommand ? "@@@" : "@@") + GetActProject();
        WriteLog("START", ProcessIDType(0), vx::kLogLink);
        const int slash = std::max(path.ReverseFind('\\'), path.ReverseFind('/'));
        const CString directory = slash > 0 ? path.Left(slash) : CString();
        const auto result = reinterpret_cast<std::intptr_t>(
            ShellExecuteA(nullptr, nullptr, path, commandLine, directory.IsEmpty() ? nullptr : directory.GetString(),
                          showCommand));
        started = result > 32;
    }
    if (started) {
        // The started program is ready when its window is there and it has
        // written "X". The timeout counts only while no window is there.
        for (int counter = 0;;) {
            window = GetVxProg(type, 0, 0);
            if (window && _mbscmp(KProfile::GetProfileStringA("PROCESS", "Partner", "", -1), "X") == 0)
                break;
            // The sleep serves what is sent to this program meanwhile.
            vx::ServeSentMessages(200);
            if (!window && counter++ >= m_ExecuteTimeout / 200)
                break;
            MSG peek;
            PeekMessageA(&peek, nullptr, WM_COPYDATA, WM_COPYDATA, PM_NOREMOVE);
        }
    }
    if (started && window) {
        KProfile::WriteProfileStringA("MISC", "LastProg", name, -1);
        SendSimple(window, vx::kPartnerFound, nullptr, 0);
    } else {
        window = nullptr;
        const HWND other = g_searchMode == 0 ? AnyWindowOfProgram(type) : nullptr;
        CString text;
        text.Format(GetString(started ? 6708 : 6709), path.GetString(), name);
        CommonMessage(text, 0x30, 0, nullptr, 0, 0);
        if (other) {
            SetForegroundWindow(other);
            ShowAnyWindow(other, SW_SHOW);
        }
    }
    std::atomic_ref<HWND>(m_hPartnerWnd).store(window);
    return window;
}

int KProcessIO::DeActivate(int hide)
{
    if (!m_hProgWnd)
        return 0;
    if (hide)
        ShowAnyWindow(m_hProgWnd, SW_HIDE);
    PostMessageA(m_hProgWnd, vx::kDeActivateMessage, static_cast<WPARAM>(vx::kPartnerDeActivate), 0);
    return 1;
}

int KProcessIO::WriteLog(const char* text, ProcessIDType id, ProcessLevelType level)
{
    return LogLine(text, id, level);
}

void vx::ResetPartnerLink()
{
    KProcessIO::s_ClosePartner.Join();
    KProcessIO::m_Active = 0;
    KProcessIO::m_Single = 0;
    KProcessIO::m_ExecuteTimeout = 10000;
    KProcessIO::m_MessageTimeout = 10000;
    KProcessIO::m_WriteLogState = ProcessLevelType(1);
    if (KProcessIO::m_hProgWnd)
        vx::UnpublishWindow(KProcessIO::m_hProgWnd);
    KProcessIO::m_hProgWnd = nullptr;
    KProcessIO::m_hPartnerWnd = nullptr;
    std::free(KProcessIO::m_pReceiver);
    KProcessIO::m_pReceiver = nullptr;
    KProcessIO::m_InReceiving = 0;
    KProcessIO::m_ExePath.Empty();
    KProcessIO::m_Name_AT.Empty();
    KProcessIO::m_Name_IT.Empty();
    KProcessIO::m_Name1_AT.Empty();
    KProcessIO::m_Name1_IT.Empty();
    KProcessIO::m_sPartnerClass.Empty();
    ResetSearchMode();
    ForgetLogPath();
    vx::SetWindowBusLog(nullptr);
}
