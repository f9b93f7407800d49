#include "ui/dialogs/modalloop.h"

#include "ui/windows/uiapp.h"

#include "platform/windows/cwnd.h"
#include "platform/windows/messagepump.h"

#include <QApplication>
#include <QEventLoop>

#include <vector>

namespace vx {
namespace {

struct Loop {
    QEventLoop* qt = nullptr;
    bool woken = false;
};

std::vector<Loop*>& Loops()
{
    static std::vector<Loop*> loops;
    return loops;
}

struct Pushed {
    explicit Pushed(Loop& loop) { Loops().push_back(&loop); }
    ~Pushed() { Loops().pop_back(); }
};

// Without a Qt application the process's own queue is all there is.
bool RunPlainLoop(const std::function<bool()>& done)
{
    while (!done()) {
        MSG msg;
        if (!GetMessageA(&msg, nullptr, 0, 0)) {
            PostQuitMessage(static_cast<int>(msg.wParam));
            return false;
        }
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return true;
}

} // namespace

bool RunModalLoop(const std::function<bool()>& done)
{
    Loop loop;
    Pushed pushed(loop);
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return RunPlainLoop(done);
    InstallQtMessagePump();
    QEventLoop events;
    loop.qt = &events;
    while (!done()) {
        loop.woken = false;
        events.exec(QEventLoop::AllEvents);
        // Only WakeModalLoop ends a round on purpose; anything else that ends
        // the loop is the application quitting.
        if (!loop.woken)
            return false;
    }
    return true;
}

void WakeModalLoop()
{
    // Every loop looks again: an outer window may have ended while an inner
    // one runs, and it returns once the inner loop has.
    for (Loop* loop : Loops()) {
        loop->woken = true;
        if (loop->qt)
            loop->qt->exit(0);
    }
}

int ModalLoopDepth()
{
    return static_cast<int>(Loops().size());
}

} // namespace vx
