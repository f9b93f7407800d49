// The list of screens from Qt's screens.
#include "ui/windows/uiapp.h"

#include "ui/windows/qtinterop.h"

#include "base/libraryframe.h"
#include "platform/screens/monitors.h"

#include <QGuiApplication>
#include <QObject>
#include <QScreen>

#include <memory>
#include <vector>

namespace vx {
namespace {

RECT RectOf(const QRect& r)
{
    return RECT{r.left(), r.top(), r.left() + r.width(), r.top() + r.height()};
}

void Refresh()
{
    std::vector<Screen> screens;
    const QScreen* primary = QGuiApplication::primaryScreen();
    for (const QScreen* q : QGuiApplication::screens()) {
        Screen s;
        s.rect = RectOf(q->geometry());
        s.work = RectOf(q->availableGeometry());
        s.primary = q == primary;
        s.name = FromQString(q->name()).GetString();
        screens.push_back(s);
    }
    SetScreens(std::move(screens));
    // A change of the display is a new start of the display state.
    StartDualMonitor();
}

// The connections live as long as this object; deleting it ends them.
std::unique_ptr<QObject>& Watcher()
{
    static std::unique_ptr<QObject> watcher;
    return watcher;
}

void Watch(QScreen* screen)
{
    QObject::connect(screen, &QScreen::geometryChanged, Watcher().get(), [] { Refresh(); });
    QObject::connect(screen, &QScreen::availableGeometryChanged, Watcher().get(), [] { Refresh(); });
}

} // namespace

void UseQtScreens(bool use)
{
    auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (!use || !app) {
        if (Watcher()) {
            Watcher().reset();
            SetScreens({});
            StartDualMonitor();
        }
        return;
    }
    if (Watcher())
        return;
    Watcher() = std::make_unique<QObject>();
    for (QScreen* screen : QGuiApplication::screens())
        Watch(screen);
    QObject::connect(app, &QGuiApplication::screenAdded, Watcher().get(), [](QScreen* screen) {
        Watch(screen);
        Refresh();
    });
    QObject::connect(app, &QGuiApplication::screenRemoved, Watcher().get(), [] { Refresh(); });
    QObject::connect(app, &QGuiApplication::primaryScreenChanged, Watcher().get(), [] { Refresh(); });
    Refresh();
}

} // namespace vx
