// The partner route of message boxes: a program that runs hidden behind
// its partner has the partner show its boxes. KProcessIO::Init installs it
// under PartnerMessageBox, which stands below the link.
#include "process/kprocessio_p.h"

#include "base/vxglobals.h"
#include "base/vxmessagebox.h"
#include "platform/windows/cwnd.h"

#include <atomic>
#include <cstring>

namespace vx::detail {

int ShowBoxAtPartner(int* result, const char* text, unsigned type, unsigned help)
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
        KProcessIO::InitPartner(kPartnerMessageBox, static_cast<int>(std::strlen(text)) + 100, nullptr);
    if (!data)
        return 0;
    KProcessIO::WriteLog(CString("PROC: ") + text, ProcessIDType(0), kLogLink);
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

} // namespace vx::detail
