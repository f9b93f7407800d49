#include "base/vxmessagebox.h"

#include "platform/cstring.h"
#include "platform/cwnd.h"
#include "platform/messagebox.h"

int PartnerMessageBox(int*, const char*, unsigned, unsigned)
{
    // No partner link is active in this process.
    return 0;
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
