#include "process/kinternet.h"

#include "platform/shell/shellexecute.h"

int KInternet::ConnectWWW(const char* url)
{
    return vx::OpenUri(url) ? 1 : 0;
}

int KInternet::SendMail(const char* address, const char* subject, const char* body, const char* attachment)
{
    const CString link = vx::MailtoLink(address, subject, body, attachment);
    const auto result =
        reinterpret_cast<std::intptr_t>(ShellExecuteA(nullptr, nullptr, link, nullptr, nullptr, SW_SHOW));
    return result > 32 ? 1 : 0;
}

CString vx::MailtoLink(const char* address, const char* subject, const char* body, const char* attachment)
{
    CString link = "mailto:";
    CString to = address ? address : "";
    to.Replace(" ", "%20");
    link += to;
    if (subject) {
        link += "?Subject=";
        link += subject;
    }
    if (body) {
        link += subject ? "&Body=" : "?Body=";
        CString text = body;
        text.Replace("\n", "%0D%0A");
        text.Replace("\t", "%09");
        link += "\"" + text + "\"";
    }
    if (attachment) {
        if (body)
            link += "%0D%0A%0D%0A";
        link += (subject || body) ? "&Attach=" : "?Attach=";
        link += CString("\"") + attachment + "\"";
    }
    return link;
}
