// The host's side of the window classes: the application and Qt's event
// loop serving the process's messages until WM_QUIT.
#include "uisupport/uitest.h"

#include "platform/windows/messagepump.h"
#include "platform/windows/windows.h"
#include "ui/windows/uiapp.h"

#include <QCoreApplication>
#include <QTimer>

#include <vector>

namespace {

class Quitter : public CWnd {
public:
    std::vector<UINT> handled;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_USER + 1 || message == WM_TIMER) {
            handled.push_back(message);
            if (message == WM_TIMER) {
                KillTimer(wParam);
                PostQuitMessage(7);
            }
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

// Ends a loop that would otherwise never end, so that a fault fails the
// test instead of hanging it.
void Guard()
{
    QTimer::singleShot(5000, [] { QCoreApplication::exit(-1); });
}

} // namespace

TEST(UiApp, RunUiServesPostedMessagesAndTimersUntilQuit)
{
    Quitter w;
    w.CreateEx("", "VxQuitter", WS_POPUP, CRect(0, 0, 10, 10));
    w.PostMessage(WM_USER + 1);
    w.SetTimer(1, 10);
    Guard();
    EXPECT_EQ(vx::RunUi(), 7) << "the code of PostQuitMessage";
    EXPECT_EQ(w.handled, (std::vector<UINT>{WM_USER + 1, WM_TIMER}));

    // A quit posted before the loop runs ends it at once.
    PostQuitMessage(3);
    Guard();
    EXPECT_EQ(vx::RunUi(), 3);
}

TEST(UiApp, InitUiKeepsTheHostsApplication)
{
    QCoreApplication* app = QCoreApplication::instance();
    ASSERT_NE(app, nullptr);
    vx::InitUi();
    EXPECT_EQ(QCoreApplication::instance(), app);
    EXPECT_FALSE(vx::HasDisplay()) << "the tests run offscreen";
    vx::ShutdownUi(); // deletes only an application InitUi made
    EXPECT_EQ(QCoreApplication::instance(), app);
    // The pump is back for the tests that follow.
    vx::InstallQtMessagePump();
}
