#include "base/vxmessagebox.h"

#include "base/vxglobals.h"
#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "platform/windows/messagebox.h"
#include "process/kprocessio.h"

#include <atomic>
#include <cstring>

int PartnerMessageBox(int* result, const char* text, unsigned type, unsigned help)
{
    if (!std::atomic_ref<int>(KProcessIO::m_Active).load())
        return 0;
    // The route is for a program running hidden behind its partner.
    CWnd* main = AfxGetMainWnd();
    if (main && main->IsWindowVisible())
        return 0;
    const MainframeType partnerType = g_MainframeType == MainframeAT ? MainframeIT : MainframeAT;
    const HWND partner = KProcessIO::GetVxProg(partnerType, 0, 0);
    if (!partner)
        return 0;
    if (!text)
        text = "";
    KProcessIO::KData* data =
        KProcessIO::InitPartner(vx::kPartnerMessageBox, static_cast<int>(std::strlen(text)) + 100, nullptr);
    if (!data)
        return 0;
    KProcessIO::WriteLog(CString("PROC: ") + text, ProcessIDType(0), vx::kLogLink);
    data->Write(text);
    data->Write(static_cast<int>(type));
    data->Write(static_cast<int>(help));
    data->Write(0);
    data->Write(-1);
    data->Write(-1);
    const int answer = KProcessIO::SendPartner(partner, data);
    if (result)
        *result = answer;
    KProcessIO::ExitPartner(data, 0);
    return 1;
}

int VxAfxMessageBox(const char* text, unsigned type, unsigned help)
{
    int result = 0;
    if (PartnerMessageBox(&result, text, type, help))
        return result;
    return AfxMessageBox(text, type, help);
}

int VxAfxMessageBox(unsigned id, unsigned type, unsigned help)
{
    CString text;
    text.LoadString(id);
    return VxAfxMessageBox(text, type, help);
}

int VxMessageBox(HWND owner, const char* text, const char* caption, unsigned type)
{
    int result = 0;
    if (PartnerMessageBox(&result, text, type, 0))
        return result;
    return MessageBoxA(owner, text, caption, type);
}

int VxMessageBox(const char* text, const char* caption, unsigned type)
{
    int result = 0;
    if (PartnerMessageBox(&result, text, type, 0))
        return result;
    CWnd* main = AfxGetMainWnd();
    return MessageBoxA(main ? main->GetSafeHwnd() : nullptr, text, caption, type);
}
