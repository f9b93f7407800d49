#include "process/kprocessio.h"

#include "platform/windows/cframewnd.h"
#include "platform/windows/messagebox.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/windows.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

using Thread = KProcessIO::KClosePartnerThread;

namespace {

constexpr DWORD kStillActive = 259;

HWND PartnerWindow()
{
    return std::atomic_ref<HWND>(KProcessIO::m_hPartnerWnd).load();
}

// Runs on the pumping thread: the main window is closed by its own thread,
// as a message sent from another thread was on the original platform.
void CloseWithPartner(HWND, UINT, UINT_PTR id, DWORD)
{
    KillTimer(nullptr, id);
    CWnd* main = AfxGetMainWnd();
    if (!main)
        return;
    const auto* frame = dynamic_cast<CFrameWnd*>(main);
    // An open dialog must not lose its frame: the program only comes forward.
    if (frame && frame->m_cModalStack > 0)
        main->ShowWindow(SW_SHOW);
    else
        main->SendMessage(WM_CLOSE);
}

} // namespace

struct Thread::Private {
    std::thread thread;
    std::mutex lock;
    std::condition_variable wake;
    bool quit = false;

    // Sleeps 500 ms; false if the run flag went down or the thread must end.
    bool Sleep(Thread& self)
    {
        std::unique_lock hold(lock);
        return !wake.wait_for(hold, std::chrono::milliseconds(500), [&] { return !self.m_bRun || quit; });
    }
    bool Quitting()
    {
        std::lock_guard hold(lock);
        return quit;
    }
};

Thread::KClosePartnerThread() : d(std::make_unique<Private>()) {}

Thread::~KClosePartnerThread()
{
    Join();
}

int Thread::Create(MainframeType type)
{
    Join();
    m_Type = type;
    m_bRun = 0;
    m_bIdle = 1;
    d->thread = std::thread([this] { ThreadFunc(this); });
    m_dwStatus = kStillActive;
    return 1;
}

void Thread::SetRun(int run)
{
    {
        std::lock_guard hold(d->lock);
        m_bRun = run;
    }
    d->wake.notify_all();
}

void Thread::Join()
{
    if (!d->thread.joinable())
        return;
    {
        std::lock_guard hold(d->lock);
        d->quit = true;
    }
    d->wake.notify_all();
    d->thread.join();
    d->quit = false;
    m_dwStatus = 0;
    m_bRun = 0;
    m_bIdle = 1;
}

unsigned long Thread::ThreadFunc(KClosePartnerThread* self)
{
    Private& p = *self->d;
    self->m_bIdle = 0;
    {
        // The watch must not begin before Init has raised the flag.
        std::unique_lock hold(p.lock);
        p.wake.wait(hold, [&] { return self->m_bRun || p.quit; });
        if (p.quit) {
            self->m_bIdle = 1;
            return 0;
        }
    }
    CString line;
    line.Format("%s-%d", "THREAD-START", static_cast<int>(self->m_Type));
    KProcessIO::WriteLog(line, ProcessIDType(0), vx::kLogLink);

    while (self->m_bRun) {
        if (!p.Sleep(*self))
            break;
        if (AfxGetMainWnd() && PartnerWindow())
            break;
    }
    if (p.Quitting())
        return 0;
    line.Format("%s-%d", "THREAD-START/1", static_cast<int>(self->m_Type));
    KProcessIO::WriteLog(line, ProcessIDType(0), vx::kLogLink);

    bool partnerGone = false;
    while (self->m_bRun) {
        if (!p.Sleep(*self))
            break;
        const HWND partner = PartnerWindow();
        if (!partner || !IsWindow(partner)) {
            partnerGone = true;
            break;
        }
    }
    if (p.Quitting())
        return 0;
    if (partnerGone) {
        if (AfxGetMainWnd())
            SetTimer(nullptr, 0, 0, CloseWithPartner);
        MessageBeep(0xFFFFFFFF);
    }
    line.Format("%s-%d-%d", "THREAD-END", static_cast<int>(self->m_Type), self->m_bRun.load());
    KProcessIO::WriteLog(line, ProcessIDType(0), vx::kLogLink);
    self->m_bIdle = 1;
    std::atomic_ref<int>(KProcessIO::m_Active).store(0);
    return 0;
}
