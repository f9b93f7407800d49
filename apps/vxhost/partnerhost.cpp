#include "partnerhost.h"

#include <unistd.h>

#include <cctype>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace vxhost {

using KData = KProcessIO::KData;

namespace {

constexpr int kMargin = 1000;

CString Stem(MainframeType type)
{
    return GetString(type == MainframeAT ? 6706 : 6707);
}

const char* Name(MainframeType type)
{
    return type == MainframeAT ? "AT" : "IT";
}

// The value of a write relay is a string or a 4-byte int, both with 2 as
// first parameter. What is left of the announced size tells them apart but
// for a 3-character text, whose four bytes could also be a number below
// 2^24: those count as text when the three characters are printable.
bool ValueIsText(KData& block, int sectionAndKey)
{
    const long long left = static_cast<long long>(block.m_Capacity) - kMargin - sectionAndKey;
    if (left != 4)
        return true;
    const auto* bytes = reinterpret_cast<const unsigned char*>(block.Bytes()) + block.m_Cursor;
    for (int i = 0; i < 3; ++i) {
        if (bytes[i] < 0x20 || bytes[i] > 0x7E)
            return false;
    }
    return bytes[3] == 0;
}

PartnerFrame::PreviewHost* g_previewHost = nullptr;
constexpr UINT kPreviewRequest = WM_USER + 6;
constexpr WPARAM kPreviewLoad = 0x52;

// The preview message a program answers: the name the other program uses.
const char* PreviewMessageOf(MainframeType type)
{
    return type == MainframeIT ? "VEXALIT_PREVIEW" : "VXW_PREVIEW";
}

} // namespace

PartnerFrame::PartnerFrame(MainframeType type) : m_type(type) {}

void PartnerFrame::SetPreviewHost(PreviewHost* host)
{
    g_previewHost = host;
}

PartnerFrame::~PartnerFrame()
{
    Close();
}

void PartnerFrame::Say(const std::string& line)
{
    if (m_say) {
        m_say(line);
        return;
    }
    std::printf("[%s] %s\n", Name(m_type), vx::ToUtf8(line).c_str());
    std::fflush(stdout);
}

int PartnerFrame::Open(const char* commandLine, const char* exePath)
{
    m_commandLine = commandLine ? commandLine : "";
    g_MainframeType = m_type;
    CString project;
    m_startState = KProcessIO::GetStartState(m_commandLine, &project);
    if (!project.IsEmpty())
        m_project = project;
    // "AfxMDIFrame42" is the class the suite expects of the AT frame until
    // AT has written its own.
    CreateEx(Stem(m_type) + " " + "Demo", "AfxMDIFrame42");
    g_pDLLMainframe = this;
    AfxSetMainWnd(this);
    KProcessIO::Init(m_type, this, exePath, m_startState);
    ShowWindow(m_startState);
    return m_startState;
}

void PartnerFrame::Ready()
{
    KProfile::WriteProfileStringA("PROCESS", "Partner", "X", -1);
}

void PartnerFrame::Close()
{
    if (g_pDLLMainframe == this)
        g_pDLLMainframe = nullptr;
    if (AfxGetMainWnd() == this)
        AfxSetMainWnd(nullptr);
    if (m_hWnd)
        DestroyWindow();
}

void PartnerFrame::OnClose()
{
    ++m_closeRequests;
    Say("closing");
    Close();
    if (m_quitOnClose)
        PostQuitMessage(0);
}

LRESULT PartnerFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_VXBASE)
        return AnswerQuery(wParam, lParam);
    if (message == WM_COPYDATA)
        return OnPartnerBlock(reinterpret_cast<HWND>(wParam), reinterpret_cast<const COPYDATASTRUCT*>(lParam));
    if (message == RegisterWindowMessageA(kUpperBlockMessage))
        return UpperBlock(reinterpret_cast<HANDLE>(wParam));
    if (message == RegisterWindowMessageA(PreviewMessageOf(m_type)))
        return AnswerPreview(reinterpret_cast<HANDLE>(wParam), lParam);
    if (message == kPreviewRequest)
        return g_previewHost ? g_previewHost->Request(wParam, lParam, m_type) : wParam == kPreviewLoad ? 1 : 0;
    if (message == vx::kDeActivateMessage && wParam == static_cast<WPARAM>(vx::kPartnerDeActivate)) {
        Say("deactivated");
        return 0;
    }
    return CMDIFrameWnd::WindowProc(message, wParam, lParam);
}

LRESULT PartnerFrame::AnswerQuery(WPARAM code, LPARAM lParam)
{
    switch (code) {
    case HostQueryCommonMessage: {
        const auto* record = reinterpret_cast<const CommonMessageRec*>(lParam);
        CString text = record->text1 ? record->text1 : "";
        if (record->id)
            text = GetString(static_cast<int>(record->id));
        m_messages.push_back(text);
        text.Replace("\n\n", ": ");
        Say("message: " + text.StdString());
        return IDOK;
    }
    case HostQueryActProject:
    case HostQueryDlgVerzeichnis:
        m_answerText = m_project;
        return reinterpret_cast<LRESULT>(&m_answerText);
    case HostQueryFlags:
        return lParam == 2 ? 9999 : lParam == 1 ? 1 : 0;
    default:
        return 0;
    }
}

LRESULT PartnerFrame::OnPartnerBlock(HWND from, const COPYDATASTRUCT* data)
{
    KData* block = vx::AcceptPartnerBlock(data);
    if (!block)
        return 0;
    block->Rewind();
    ++KProcessIO::m_InReceiving;
    LRESULT result = 0;
    switch (block->m_ID) {
    case vx::kPartnerReply:
    case vx::kPartnerReplyTaken:
        result = KProcessIO::ClosePartner(block);
        break;
    case vx::kPartnerFound:
        KProcessIO::m_hPartnerWnd = from;
        ++m_activations;
        Say("found by the partner");
        result = 1;
        break;
    case vx::kPartnerActivate: {
        CString flag;
        block->Read(flag);
        KProcessIO::m_hPartnerWnd = from;
        ++m_activations;
        ShowWindow(SW_SHOW);
        Say("activated by the partner");
        result = 1;
        break;
    }
    case vx::kPartnerMessageBox:
        result = ShowBox(*block);
        break;
    case vx::kPartnerGetProfile:
        result = ReadProfile(*block, from);
        break;
    case vx::kPartnerWriteProfile:
        result = WriteProfile(*block);
        break;
    default:
        result = OnHostMessage(*block, from);
        break;
    }
    --KProcessIO::m_InReceiving;
    return result;
}

LRESULT PartnerFrame::ShowBox(KData& block)
{
    CString text;
    int type = 0, help = 0, zero = 0, minus1 = 0, minus2 = 0;
    block.Read(text);
    block.Read(type);
    block.Read(help);
    block.Read(zero);
    block.Read(minus1);
    block.Read(minus2);
    m_boxes.push_back(text);
    Say("box for the partner: " + text.StdString());
    // Shown here, never handed on: this program is the one that shows.
    return AfxMessageBox(text, static_cast<UINT>(type), static_cast<UINT>(help));
}

LRESULT PartnerFrame::ReadProfile(KData& block, HWND from)
{
    CString section, key;
    block.Read(section);
    block.Read(key);
    const int scope = block.m_Param2;
    if (block.m_Param1 == 1) {
        CString defaultValue;
        block.Read(defaultValue);
        CStringArray value;
        value.Add(KProfile::GetProfileStringA(section, key, defaultValue, scope));
        KData* reply = KProcessIO::InitPartner(vx::kPartnerReply, KData::GetSize(value[0]), &block);
        if (!reply)
            return 0;
        reply->Write(value[0]);
        KProcessIO::SendPartner(from, reply);
        KProcessIO::ExitPartner(reply, 0);
        return 1;
    }
    int defaultValue = 0;
    block.Read(defaultValue);
    const unsigned value = KProfile::GetProfileIntA(section, key, defaultValue, scope);
    if (value == 0)
        return static_cast<LRESULT>(vx::kPartnerIntZero);
    if (value != vx::kPartnerIntZero && value != vx::kPartnerIntInReply)
        return static_cast<LRESULT>(value);
    // The two tokens themselves travel as a reply.
    KData* reply = KProcessIO::InitPartner(vx::kPartnerReply, 4, &block);
    if (!reply)
        return 0;
    reply->Write(static_cast<int>(value));
    KProcessIO::SendPartner(from, reply);
    KProcessIO::ExitPartner(reply, 0);
    return static_cast<LRESULT>(vx::kPartnerIntInReply);
}

LRESULT PartnerFrame::WriteProfile(KData& block)
{
    CString section, key;
    block.Read(section);
    block.Read(key);
    const int scope = block.m_Param2;
    if (ValueIsText(block, section.GetLength() + 1 + key.GetLength() + 1)) {
        CString value;
        block.Read(value);
        return KProfile::WriteProfileStringA(section, key, value, scope);
    }
    int value = 0;
    block.Read(value);
    return KProfile::WriteProfileInt(section, key, value, scope);
}

LRESULT PartnerFrame::UpperBlock(HANDLE block)
{
    const std::size_t size = vx::FileMappingSize(block);
    auto* bytes = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0));
    if (!bytes)
        return 0;
    for (std::size_t i = 0; i < size && bytes[i]; ++i)
        bytes[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(bytes[i])));
    UnmapViewOfFile(bytes);
    return static_cast<LRESULT>(size);
}

// The block of the preview: the path (260 bytes, zero-terminated) and the
// result at offset 260, set once the file is drawn.
LRESULT PartnerFrame::AnswerPreview(HANDLE block, LPARAM dc)
{
    constexpr std::size_t kPath = 260;
    if (!g_previewHost || vx::FileMappingSize(block) < kPath + 4)
        return 0;
    // The partner sends the same block each time: its view is kept (so the
    // block lives while this program does), and made anew for another one.
    static char* bytes = nullptr;
    static int viewed = -1;
    const int descriptor = vx::FileMappingDescriptor(block);
    if (!bytes || descriptor != viewed) {
        if (bytes)
            UnmapViewOfFile(bytes);
        bytes = static_cast<char*>(MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0));
        viewed = bytes ? vx::FileMappingDescriptor(block) : -1;
    }
    if (!bytes)
        return 0;
    const std::string path(bytes, strnlen(bytes, kPath));
    Say("preview of " + path);
    const bool drawn = g_previewHost->Paint(dc, path.c_str(), m_type);
    // Only the program that drew sets the result: a broadcast reaches others.
    if (drawn) {
        const std::int32_t result = 1;
        std::memcpy(bytes + kPath, &result, sizeof result);
    }
    return drawn ? 1 : 0;
}

LRESULT PartnerFrame::ReplyStrings(KData& request, HWND to, CStringArray& strings)
{
    KData* reply = KProcessIO::InitPartner(vx::kPartnerReply, KData::GetSize(strings), &request);
    if (!reply)
        return 0;
    reply->Write(strings);
    KProcessIO::SendPartner(to, reply);
    KProcessIO::ExitPartner(reply, 0);
    return 1;
}

LRESULT PartnerFrame::OnHostMessage(KData& block, HWND from)
{
    CStringArray strings;
    switch (block.m_ID) {
    case kEcho:
        block.Read(strings);
        return ReplyStrings(block, from, strings);
    case kQuestion: {
        CString answer = CString("answer from ") + Name(m_type);
        KData* reply = KProcessIO::InitPartner(vx::kPartnerReply, KData::GetSize(answer), &block);
        if (!reply)
            return 0;
        reply->Write(answer);
        KProcessIO::SendPartner(from, reply);
        KProcessIO::ExitPartner(reply, 0);
        return 1;
    }
    case kAskBack: {
        // Asked while the requester still waits for this answer: its reply
        // comes back into this handler, and ours goes out after.
        KData* question = KProcessIO::InitPartner(kQuestion, 0, nullptr);
        if (!question)
            return 0;
        KData* answer = KProcessIO::ExitPartner(question, KProcessIO::SendPartner(from, question));
        CString text = "(none)";
        if (answer) {
            answer->Read(text);
            KProcessIO::ClosePartner(answer);
        }
        strings.Add(text);
        return ReplyStrings(block, from, strings);
    }
    case kReport: {
        CString state, partner;
        state.Format("%d", m_startState);
        partner.Format("%llu",
                       static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(KProcessIO::m_hPartnerWnd)));
        strings.Add(m_commandLine);
        strings.Add(state);
        strings.Add(m_project);
        strings.Add(IsWindowVisible() ? "visible" : "hidden");
        strings.Add(partner);
        return ReplyStrings(block, from, strings);
    }
    case kRelayBack: {
        block.Read(strings);
        if (strings.GetSize() < 3)
            return 0;
        const int scope = block.m_Param2;
        const int wrote = KProcessIO::WriteProfileStringA(strings[0], strings[1], strings[2], scope);
        const CString text = KProcessIO::GetProfileStringA(strings[0], strings[1], "(missing)", scope);
        const unsigned number = KProcessIO::GetProfileIntA(strings[0], strings[1], -7, scope);
        CStringArray result;
        CString line;
        line.Format("%d", wrote);
        result.Add(line);
        result.Add(text);
        line.Format("%u", number);
        result.Add(line);
        return ReplyStrings(block, from, result);
    }
    case kQuit:
        PostMessage(WM_CLOSE);
        return 1;
    default:
        return 0;
    }
}

void UseSuiteDirectoryForProgramFiles()
{
    std::string dir = g_vexalprofiledir;
    const auto slash = dir.find_last_of("\\/");
    dir = slash == std::string::npos ? std::string() : dir.substr(0, slash + 1);
    const auto set = [&dir](char* target, const char* name) {
        std::snprintf(target, 260, "%s%s", dir.c_str(), name);
    };
    set(g_profiledirAT, "VXWIN55AT.INI");
    set(g_profiledirIT, "VXWIN55IT.INI");
    set(g_projectprofiledirAT, "PROJEKTAT.INI");
    set(g_projectprofiledirIT, "PROJEKTIT.INI");
}

std::string ProgramDirectory(const char* argv0)
{
    std::string path = argv0 ? argv0 : "";
    if (path.find('/') == std::string::npos) {
        char self[PATH_MAX] = {};
        const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
        path = n > 0 ? std::string(self, static_cast<std::size_t>(n)) : std::string();
    } else if (path[0] != '/') {
        char cwd[PATH_MAX] = {};
        if (getcwd(cwd, sizeof cwd))
            path = std::string(cwd) + "/" + path;
    }
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

MainframeType ProgramOfFileName(const char* path)
{
    const char* name = path ? path : "";
    if (const char* slash = std::strrchr(name, '/'))
        name = slash + 1;
    if (_strnicmp(name, "AT", 2) == 0)
        return MainframeAT;
    if (_strnicmp(name, "IT", 2) == 0)
        return MainframeIT;
    return MainframeType(0);
}

int RunPartnerLoop(int lifetimeMs)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(lifetimeMs);
    MSG msg;
    for (;;) {
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (msg.message == WM_QUIT)
                return static_cast<int>(msg.wParam);
            DispatchMessageA(&msg);
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        if (lifetimeMs > 0 && left <= 0)
            return 0;
        vx::PumpFor(lifetimeMs > 0 ? static_cast<int>(std::min<long long>(left, 100)) : 100,
                    [] {
                        MSG peek;
                        return PeekMessageA(&peek, nullptr, 0, 0, PM_NOREMOVE) != FALSE;
                    });
    }
}

} // namespace vxhost
