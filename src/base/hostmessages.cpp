#include "base/hostmessages.h"

#include "base/vxglobals.h"
#include "platform/windows/cframewnd.h"

namespace {

CommonMessageRec g_postedRecord{};

HWND HostWindow()
{
    return g_pDLLMainframe ? g_pDLLMainframe->GetSafeHwnd() : nullptr;
}

LRESULT AskHost(HostQueryCode code, LPARAM lParam)
{
    return SendMessageA(HostWindow(), WM_VXBASE, static_cast<WPARAM>(code), lParam);
}

CommonMessageRec MakeRecord(unsigned id, const char* s1, const char* s2, unsigned a, unsigned b, int* p, int c,
                            int d)
{
    return CommonMessageRec{id, a, b, s1, s2, p, c, d, 0};
}

int Send(const CommonMessageRec& record)
{
    if (!g_pDLLMainframe)
        return -1;
    CommonMessageRec copy = record;
    return static_cast<int>(AskHost(HostQueryCommonMessage, reinterpret_cast<LPARAM>(&copy)));
}

int* Post(const CommonMessageRec& record)
{
    if (!g_pDLLMainframe)
        return &g_postedRecord.result;
    g_postedRecord = record;
    g_postedRecord.result = -1;
    PostMessageA(HostWindow(), WM_VXBASE, HostQueryCommonMessage, reinterpret_cast<LPARAM>(&g_postedRecord));
    return &g_postedRecord.result;
}

CString CopyAnswer(LRESULT answer)
{
    const auto* text = reinterpret_cast<const CString*>(answer);
    return text ? *text : CString();
}

} // namespace

int CommonMessage(const char* text, unsigned a, unsigned b, int* p, int c, int d)
{
    return Send(MakeRecord(0, text, nullptr, a, b, p, c, d));
}

int CommonMessage(unsigned id, const char* s1, const char* s2, unsigned a, unsigned b, int* p, int c, int d)
{
    return Send(MakeRecord(id, s1, s2, a, b, p, c, d));
}

int* PostCommonMessage(const char* text, unsigned a, unsigned b, int* p, int c, int d)
{
    return Post(MakeRecord(0, text, nullptr, a, b, p, c, d));
}

int* PostCommonMessage(unsigned id, const char* s1, const char* s2, unsigned a, unsigned b, int* p, int c, int d)
{
    return Post(MakeRecord(id, s1, s2, a, b, p, c, d));
}

CString GetDlgVerzeichnis(const char* a, const char* b, const char* c)
{
    if (!g_pDLLMainframe)
        return CString();
    const char* texts[3] = {a, b, c};
    return CopyAnswer(AskHost(HostQueryDlgVerzeichnis, reinterpret_cast<LPARAM>(texts)));
}

unsigned long GetDlgSkinID(unsigned long id)
{
    if (!g_pDLLMainframe)
        return static_cast<unsigned long>(-1);
    const LRESULT answer = AskHost(HostQueryDlgSkinID, static_cast<LPARAM>(id));
    if (answer == 0)
        return static_cast<unsigned long>(-1);
    return static_cast<unsigned long>(answer - 1);
}

CString GetActProject()
{
    if (!g_pDLLMainframe)
        return CString();
    return CopyAnswer(AskHost(HostQueryActProject, 0));
}

DWORD GetVxModul()
{
    if (!g_pDLLMainframe)
        return 0;
    return static_cast<DWORD>(AskHost(HostQueryVxModul, 0));
}
