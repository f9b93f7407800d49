#include "ui/clipboard/coledroptarget.h"

#include "ui/clipboard/droptranslate_p.h"

#include "platform/windows/cwnd.h"
#include "ui/windows/qtinterop.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QPointer>
#include <QWidget>

namespace {

// Hands the drag events of one window's widget to its drop target.
class DropFilter final : public QObject {
public:
    DropFilter(COleDropTarget& target, CWnd& window) : m_target(target), m_window(window) {}
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    CPoint ClientPoint(const QPointF& at) const
    {
        const CRect client = vx::ClientAreaOf(m_window);
        return CPoint(static_cast<int>(at.x()) - client.left, static_cast<int>(at.y()) - client.top);
    }
    static DWORD KeyState(Qt::MouseButtons buttons, Qt::KeyboardModifiers mods)
    {
        DWORD state = 0;
        if (buttons & Qt::LeftButton)
            state |= MK_LBUTTON;
        if (buttons & Qt::RightButton)
            state |= MK_RBUTTON;
        if (buttons & Qt::MiddleButton)
            state |= MK_MBUTTON;
        if (mods & Qt::ShiftModifier)
            state |= MK_SHIFT;
        if (mods & Qt::ControlModifier)
            state |= MK_CONTROL;
        return state;
    }
    // Accepts the event with the effect, if the drag allows it.
    static void Answer(QDropEvent* e, DROPEFFECT effect)
    {
        const Qt::DropAction action = vx::clip::ToQtActions(effect) & e->possibleActions()
                                          ? vx::clip::PreferredAction(vx::clip::ToQtActions(effect) &
                                                                      e->possibleActions())
                                          : Qt::IgnoreAction;
        if (action == Qt::IgnoreAction) {
            e->ignore();
            return;
        }
        e->setDropAction(action);
        e->accept();
    }

    COleDropTarget& m_target;
    CWnd& m_window;
    COleDataObject m_data;
    DROPEFFECT m_last = DROPEFFECT_NONE;
};

bool DropFilter::eventFilter(QObject*, QEvent* e)
{
    switch (e->type()) {
    case QEvent::DragEnter: {
        auto* drag = static_cast<QDragEnterEvent*>(e);
        m_data.AttachMime(drag->mimeData());
        m_last = m_target.OnDragEnter(&m_window, &m_data, KeyState(drag->buttons(), drag->modifiers()),
                                      ClientPoint(drag->position()));
        Answer(drag, m_last);
        return true;
    }
    case QEvent::DragMove: {
        auto* drag = static_cast<QDragMoveEvent*>(e);
        m_data.AttachMime(drag->mimeData());
        m_last = m_target.OnDragOver(&m_window, &m_data, KeyState(drag->buttons(), drag->modifiers()),
                                     ClientPoint(drag->position()));
        Answer(drag, m_last);
        return true;
    }
    case QEvent::DragLeave:
        m_target.OnDragLeave(&m_window);
        m_data.Release();
        return true;
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(e);
        m_data.AttachMime(drop->mimeData());
        const CPoint at = ClientPoint(drop->position());
        const DROPEFFECT list = vx::clip::ToDropEffects(drop->possibleActions());
        DROPEFFECT done = m_target.OnDropEx(&m_window, &m_data, m_last, list, at);
        if (done == static_cast<DROPEFFECT>(-1))
            done = m_target.OnDrop(&m_window, &m_data, m_last, at) ? m_last : DROPEFFECT_NONE;
        m_data.Release();
        Answer(drop, done);
        return true;
    }
    default:
        return false;
    }
}

} // namespace

struct COleDropTarget::Private {
    CWnd* window = nullptr;
    QPointer<QWidget> widget;
    std::unique_ptr<DropFilter> filter;
};

COleDropTarget::COleDropTarget() : d(std::make_unique<Private>()) {}

COleDropTarget::~COleDropTarget()
{
    Revoke();
}

BOOL COleDropTarget::Register(CWnd* window)
{
    if (!window || d->window)
        return FALSE;
    QWidget* widget = vx::WidgetOfWindow(window);
    if (!widget)
        return FALSE;
    d->window = window;
    d->widget = widget;
    d->filter = std::make_unique<DropFilter>(*this, *window);
    widget->installEventFilter(d->filter.get());
    widget->setAcceptDrops(true);
    return TRUE;
}

void COleDropTarget::Revoke()
{
    if (d->widget) {
        d->widget->removeEventFilter(d->filter.get());
        d->widget->setAcceptDrops(false);
    }
    d->filter.reset();
    d->widget = nullptr;
    d->window = nullptr;
}

DROPEFFECT COleDropTarget::OnDragEnter(CWnd*, COleDataObject*, DWORD, CPoint)
{
    return DROPEFFECT_NONE;
}

DROPEFFECT COleDropTarget::OnDragOver(CWnd*, COleDataObject*, DWORD, CPoint)
{
    return DROPEFFECT_NONE;
}

void COleDropTarget::OnDragLeave(CWnd*) {}

BOOL COleDropTarget::OnDrop(CWnd*, COleDataObject*, DROPEFFECT, CPoint)
{
    return FALSE;
}

DROPEFFECT COleDropTarget::OnDropEx(CWnd*, COleDataObject*, DROPEFFECT, DROPEFFECT, CPoint)
{
    return static_cast<DROPEFFECT>(-1);
}
