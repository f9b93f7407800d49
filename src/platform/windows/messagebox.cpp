#include "platform/windows/messagebox.h"

#include "platform/framework/codepage.h"
#include "platform/windows/cwnd.h"
#include "platform/shell/resources.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>

#include <unistd.h>

namespace vx {
namespace {

std::mutex g_lock;
MessageBoxHandler g_handler;
WaitCursorHook g_waitHook;
int g_waitDepth = 0;
AbortHook g_abortHook;

int Show(MessageBoxRequest request)
{
    MessageBoxHandler handler;
    {
        std::lock_guard lock(g_lock);
        handler = g_handler;
    }
    if (handler)
        return handler(request);
    const std::string caption = request.caption.empty() ? std::string() : ToUtf8(request.caption) + ": ";
    std::fprintf(stderr, "%s%s\n", caption.c_str(), ToUtf8(request.text).c_str());
    return DefaultButtonOf(request.type);
}

} // namespace

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler)
{
    std::lock_guard lock(g_lock);
    MessageBoxHandler old = std::move(g_handler);
    g_handler = std::move(handler);
    return old;
}

int DefaultButtonOf(UINT type)
{
    static const int kButtons[][3] = {
        {IDOK, IDOK, IDOK},             // MB_OK
        {IDOK, IDCANCEL, IDCANCEL},     // MB_OKCANCEL
        {IDABORT, IDRETRY, IDIGNORE},   // MB_ABORTRETRYIGNORE
        {IDYES, IDNO, IDCANCEL},        // MB_YESNOCANCEL
        {IDYES, IDNO, IDNO},            // MB_YESNO
        {IDRETRY, IDCANCEL, IDCANCEL},  // MB_RETRYCANCEL
    };
    const UINT kind = type & MB_TYPEMASK;
    const UINT button = (type & MB_DEFMASK) >> 8;
    if (kind > 5)
        return IDOK;
    return kButtons[kind][button > 2 ? 0 : button];
}

void SetWaitCursorHook(WaitCursorHook hook)
{
    std::lock_guard lock(g_lock);
    g_waitHook = std::move(hook);
}

void BeginWaitCursor()
{
    WaitCursorHook hook;
    {
        std::lock_guard lock(g_lock);
        if (g_waitDepth++ != 0)
            return;
        hook = g_waitHook;
    }
    if (hook)
        hook(true);
}

void EndWaitCursor()
{
    WaitCursorHook hook;
    {
        std::lock_guard lock(g_lock);
        if (g_waitDepth == 0 || --g_waitDepth != 0)
            return;
        hook = g_waitHook;
    }
    if (hook)
        hook(false);
}

AbortHook SetAbortHook(AbortHook hook)
{
    std::lock_guard lock(g_lock);
    AbortHook old = std::move(g_abortHook);
    g_abortHook = std::move(hook);
    return old;
}

} // namespace vx

int AfxMessageBox(const char* text, UINT type, UINT help)
{
    vx::MessageBoxRequest r;
    r.owner = AfxGetMainWnd() ? AfxGetMainWnd()->m_hWnd : nullptr;
    r.text = text ? text : "";
    r.type = type;
    r.help = help;
    return vx::Show(std::move(r));
}

int AfxMessageBox(UINT id, UINT type, UINT help)
{
    const char* text = vx::FindString(id);
    return AfxMessageBox(text ? text : "", type, help == static_cast<UINT>(-1) ? id : help);
}

int MessageBoxA(HWND owner, const char* text, const char* caption, UINT type)
{
    vx::MessageBoxRequest r;
    r.owner = owner;
    r.text = text ? text : "";
    r.caption = caption ? caption : "";
    r.type = type;
    return vx::Show(std::move(r));
}

void AfxAbort()
{
    vx::AbortHook hook;
    {
        std::lock_guard lock(vx::g_lock);
        hook = vx::g_abortHook;
    }
    if (hook) {
        hook();
        return;
    }
    std::abort();
}

namespace vx {
namespace {
BeepHook g_beepHook;
} // namespace

BeepHook SetBeepHook(BeepHook hook)
{
    std::lock_guard lock(g_lock);
    BeepHook old = std::move(g_beepHook);
    g_beepHook = std::move(hook);
    return old;
}

} // namespace vx

BOOL MessageBeep(UINT type)
{
    vx::BeepHook hook;
    {
        std::lock_guard lock(vx::g_lock);
        hook = vx::g_beepHook;
    }
    if (hook)
        hook(type);
    else if (isatty(2))
        std::fputc('\a', stderr);
    return TRUE;
}
