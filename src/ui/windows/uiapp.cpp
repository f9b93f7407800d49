#include "ui/windows/uiapp.h"

#include "platform/files/runtimedir.h"
#include "platform/windows/cwnd.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/sysmetrics.h"

#include <QApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdlib>

namespace vx {
namespace {

QApplication* g_ownApp = nullptr;
QSocketNotifier* g_notifier = nullptr;

void ServeQueue()
{
    PumpMessages();
    // WM_QUIT ends the event loop, as it ends a message loop on the original.
    MSG msg;
    if (PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && msg.message == WM_QUIT)
        QCoreApplication::exit(static_cast<int>(msg.wParam));
}

COLORREF FromQt(const QColor& c)
{
    return RGB(c.red(), c.green(), c.blue());
}

class QtPaletteProvider final : public SystemMetricsProvider {
public:
    // The screens' metrics come from the list of screens, which follows Qt's
    // screens when a display exists; the rest stays classic.
    int Metric(int index) override { return FixedSystemMetric(index); }

    COLORREF Color(int index) override
    {
        const QPalette p = QGuiApplication::palette();
        switch (index) {
        case COLOR_BTNFACE: return FromQt(p.color(QPalette::Active, QPalette::Button));
        case COLOR_BTNTEXT: return FromQt(p.color(QPalette::Active, QPalette::ButtonText));
        case COLOR_BTNHIGHLIGHT: return FromQt(p.color(QPalette::Active, QPalette::Light));
        case COLOR_3DLIGHT: return FromQt(p.color(QPalette::Active, QPalette::Midlight));
        case COLOR_BTNSHADOW: return FromQt(p.color(QPalette::Active, QPalette::Dark));
        case COLOR_3DDKSHADOW: return FromQt(p.color(QPalette::Active, QPalette::Shadow));
        case COLOR_WINDOW: return FromQt(p.color(QPalette::Active, QPalette::Base));
        case COLOR_WINDOWTEXT: return FromQt(p.color(QPalette::Active, QPalette::Text));
        case COLOR_MENU:
        case COLOR_MENUBAR: return FromQt(p.color(QPalette::Active, QPalette::Window));
        case COLOR_MENUTEXT: return FromQt(p.color(QPalette::Active, QPalette::WindowText));
        case COLOR_HIGHLIGHT:
        case COLOR_MENUHILIGHT: return FromQt(p.color(QPalette::Active, QPalette::Highlight));
        case COLOR_HIGHLIGHTTEXT: return FromQt(p.color(QPalette::Active, QPalette::HighlightedText));
        case COLOR_GRAYTEXT: return FromQt(p.color(QPalette::Disabled, QPalette::Text));
        case COLOR_INFOBK: return FromQt(p.color(QPalette::Active, QPalette::ToolTipBase));
        case COLOR_INFOTEXT: return FromQt(p.color(QPalette::Active, QPalette::ToolTipText));
        case COLOR_HOTLIGHT: return FromQt(p.color(QPalette::Active, QPalette::Link));
        default: return FixedSysColor(index);
        }
    }
};

void TellWindow(CWnd* window)
{
    for (CWnd* child = window->GetWindow(GW_CHILD); child; child = child->GetWindow(GW_HWNDNEXT))
        TellWindow(child);
    window->SendMessage(WM_SYSCOLORCHANGE);
    window->Invalidate();
}

BOOL TellTopLevel(HWND hwnd, LPARAM)
{
    if (IsLocalHandle(hwnd)) {
        if (CWnd* w = CWnd::FromHandle(hwnd))
            TellWindow(w);
    }
    return TRUE;
}

} // namespace

void InitUi(int& argc, char** argv)
{
    if (!QCoreApplication::instance()) {
        if (!std::getenv("QT_QPA_PLATFORM") && !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
            setenv("QT_QPA_PLATFORM", "offscreen", 1);
        // Without a usable XDG_RUNTIME_DIR Qt warns on standard error and
        // picks a directory of its own; the one the window bus uses is set
        // instead.
        EnsureRuntimeDirectory();
        g_ownApp = new QApplication(argc, argv);
    }
    InstallQtMessagePump();
    if (HasDisplay())
        UseQtScreens(true);
}

void InitUi()
{
    static int argc = 1;
    static char name[] = "vxbase";
    static char* argv[] = {name, nullptr};
    InitUi(argc, argv);
}

void ShutdownUi()
{
    UseQtScreens(false);
    delete g_notifier;
    g_notifier = nullptr;
    delete g_ownApp;
    g_ownApp = nullptr;
}

bool HasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return QGuiApplication::instance() && platform != QLatin1String("offscreen") &&
           platform != QLatin1String("minimal");
}

void InstallQtMessagePump()
{
    if (g_notifier || !QCoreApplication::instance())
        return;
    g_notifier = new QSocketNotifier(MessagePumpFd(), QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(g_notifier, &QSocketNotifier::activated, [] { ServeQueue(); });
    QObject::connect(g_notifier, &QObject::destroyed, [] { g_notifier = nullptr; });
}

int RunUi()
{
    InstallQtMessagePump();
    return QCoreApplication::exec();
}

void ProcessUiEvents(int milliseconds)
{
    if (!QCoreApplication::instance())
        return;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    ServeQueue();
    if (milliseconds > 0) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

void ProcessPaintEvents()
{
    if (QCoreApplication::instance())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
}

void UseQtPalette(bool use)
{
    static QtPaletteProvider provider;
    SetSystemMetricsProvider(use ? &provider : nullptr);
    EnumWindows(&TellTopLevel, 0);
}

} // namespace vx
