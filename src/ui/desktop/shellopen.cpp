#include "ui/desktop/shellopen.h"

#include "platform/shell/shellexecute.h"

#include <utility>

namespace vx {
namespace {

ShellOpenHandler& Handler()
{
    static auto* handler = new ShellOpenHandler;
    return *handler;
}

} // namespace

ShellOpenHandler SetShellOpenHandler(ShellOpenHandler handler)
{
    return std::exchange(Handler(), std::move(handler));
}

bool ShellOpen(const ShellOpenRequest& request)
{
    if (Handler())
        return Handler()(request);
    if (request.file.empty())
        return false;
    const HINSTANCE result =
        ShellExecuteA(nullptr, request.verb.c_str(), request.file.c_str(),
                      request.parameters.empty() ? nullptr : request.parameters.c_str(), nullptr, request.show);
    return reinterpret_cast<std::intptr_t>(result) > 32;
}

} // namespace vx
