#include "uisupport/uitest.h"

#include "ui/clipboard/clipboard.h"
#include "ui/clipboard/coledatasource.h"
#include "ui/clipboard/coledroptarget.h"
#include "ui/windows/qtinterop.h"

#include <QCoreApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <string>

namespace {

class TextTarget : public COleDropTarget {
public:
    DROPEFFECT OnDragEnter(CWnd*, COleDataObject* data, DWORD keys, CPoint at) override
    {
        ++enters;
        keyState = keys;
        point = at;
        return data->IsDataAvailable(CF_TEXT) ? DROPEFFECT_COPY : DROPEFFECT_NONE;
    }
    DROPEFFECT OnDragOver(CWnd*, COleDataObject* data, DWORD, CPoint at) override
    {
        point = at;
        return data->IsDataAvailable(CF_TEXT) ? DROPEFFECT_COPY : DROPEFFECT_NONE;
    }
    BOOL OnDrop(CWnd* window, COleDataObject* data, DROPEFFECT effect, CPoint at) override
    {
        target = window;
        dropEffect = effect;
        point = at;
        HGLOBAL h = data->GetGlobalData(CF_TEXT);
        text = static_cast<const char*>(GlobalLock(h));
        GlobalUnlock(h);
        GlobalFree(h);
        return TRUE;
    }
    int enters = 0;
    DWORD keyState = 0;
    CPoint point;
    CWnd* target = nullptr;
    DROPEFFECT dropEffect = DROPEFFECT_NONE;
    std::string text;
};

std::unique_ptr<QMimeData> Offer(const char* text)
{
    COleDataSource source;
    source.CacheGlobalData(CF_TEXT, vx::GlobalCopyOf(text, std::strlen(text) + 1));
    return std::unique_ptr<QMimeData>(source.MakeMimeData());
}

TEST(OleDrop, TargetHearsEnterOverAndDropInClientCoordinates)
{
    CWnd window;
    ASSERT_TRUE(window.CreateEx("drop", "DropWnd", WS_POPUP | WS_VISIBLE | WS_BORDER, CRect(0, 0, 100, 80)));
    TextTarget target;
    ASSERT_TRUE(target.Register(&window));
    EXPECT_FALSE(target.Register(&window));
    QWidget* w = vx::WidgetOfWindow(&window);
    ASSERT_TRUE(w->acceptDrops());

    const auto mime = Offer("K1\tRelay");
    QDragEnterEvent enter(QPoint(11, 21), Qt::CopyAction | Qt::MoveAction, mime.get(), Qt::LeftButton,
                          Qt::ShiftModifier);
    QCoreApplication::sendEvent(w, &enter);
    EXPECT_EQ(target.enters, 1);
    EXPECT_EQ(target.keyState, DWORD(MK_LBUTTON | MK_SHIFT));
    EXPECT_EQ(target.point, CPoint(10, 20)); // inside the one-pixel border
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_EQ(enter.dropAction(), Qt::CopyAction);

    QDropEvent drop(QPointF(31, 41), Qt::CopyAction | Qt::MoveAction, mime.get(), Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &drop);
    EXPECT_EQ(target.target, &window);
    EXPECT_EQ(target.dropEffect, DROPEFFECT_COPY);
    EXPECT_EQ(target.text, "K1\tRelay");
    EXPECT_EQ(target.point, CPoint(30, 40));
    EXPECT_TRUE(drop.isAccepted());

    // Data without text is refused.
    QMimeData image;
    image.setData(QStringLiteral("image/png"), QByteArray("x"));
    QDragEnterEvent other(QPoint(5, 5), Qt::CopyAction, &image, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &other);
    EXPECT_FALSE(other.isAccepted());
    target.Revoke();
    EXPECT_FALSE(w->acceptDrops());
}

TEST(OleDrop, DragFromASourceEndsWhenCancelled)
{
    CWnd window;
    ASSERT_TRUE(window.CreateEx("drag", "DragWnd", WS_POPUP | WS_VISIBLE, CRect(0, 0, 50, 50)));
    window.SetFocus();
    COleDataSource source;
    source.CacheGlobalData(CF_TEXT, vx::GlobalCopyOf("x", 2));
    // Whatever the platform does with a drag, a cancel ends it.
    QTimer::singleShot(20, [] { QDrag::cancel(); });
    EXPECT_EQ(source.DoDragDrop(DROPEFFECT_COPY), DROPEFFECT_NONE);
}

} // namespace
