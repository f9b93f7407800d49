#include "ui/shellopen.h"

#include "platform/codepage.h"
#include "platform/hostpath.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

#include <utility>

namespace vx {
namespace {

ShellOpenHandler& Handler()
{
    static auto* handler = new ShellOpenHandler;
    return *handler;
}

bool OpenWithDesktop(const ShellOpenRequest& request)
{
    if (request.file.empty())
        return false;
    const QString text = QString::fromUtf8(ToUtf8(request.file).c_str());
    QUrl url(text);
    // Anything without a scheme (or with a drive letter) is a path text.
    if (url.scheme().size() <= 1)
        url = QUrl::fromLocalFile(QString::fromUtf8(HostPath(request.file).c_str()));
    return QDesktopServices::openUrl(url);
}

} // namespace

ShellOpenHandler SetShellOpenHandler(ShellOpenHandler handler)
{
    return std::exchange(Handler(), std::move(handler));
}

bool ShellOpen(const ShellOpenRequest& request)
{
    return Handler() ? Handler()(request) : OpenWithDesktop(request);
}

} // namespace vx
