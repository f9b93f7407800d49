#include "base/vxmessagebox.h"

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "platform/windows/messagebox.h"

#include <atomic>

namespace {

std::atomic<vx::PartnerMessageBoxRoute> g_route{nullptr};

} // namespace

vx::PartnerMessageBoxRoute vx::SetPartnerMessageBoxRoute(PartnerMessageBoxRoute route)
{
    return g_route.exchange(route);
}

int PartnerMessageBox(int* result, const char* text, unsigned type, unsigned help)
{
    const vx::PartnerMessageBoxRoute route = g_route.load();
    return route ? route(result, text, type, help) : 0;
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
