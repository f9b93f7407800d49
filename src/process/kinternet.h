// Web addresses and new mails handed to the user's programs: the desktop's
// handler for the link's scheme opens them (GIO). No network code is
// involved; a mail is only a "mailto:" link.
//
//   KInternet::ConnectWWW("https://www.example.com/");
//   KInternet::SendMail("service@example.com", "Plan 12", "Line 1\nLine 2", nullptr);
//   // mailto:service@example.com?Subject=Plan 12&Body="Line 1%0D%0ALine 2"
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

class VXBASE_EXPORT KInternet {
public:
    // Opens the address in the user's browser (or the handler of its
    // scheme). Non-zero if a handler took it.
    static int ConnectWWW(const char* url);
    // Opens a new mail in the user's mail program, built as
    // vx::MailtoLink. Non-zero if a handler took the link. Each of the last
    // three may be null.
    static int SendMail(const char* address, const char* subject, const char* body, const char* attachment);
};

namespace vx {

// The "mailto:" link of SendMail: the address with blanks as "%20", then
// "?Subject=" and the subject as it stands, then "?Body=" (or "&Body=" behind
// a subject) and the body in double quotes with line feeds as "%0D%0A" and
// tabs as "%09", then, behind "%0D%0A%0D%0A" if there is a body, "?Attach="
// (or "&Attach=") and the path in double quotes. Nothing else is encoded.
VXBASE_EXPORT CString MailtoLink(const char* address, const char* subject, const char* body, const char* attachment);

} // namespace vx
