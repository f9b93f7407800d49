#include "ui/windows/qtwindow_p.h"
#include "ui/menus/menubar_p.h"

#include "platform/windows/windowparent.h"

#include "ui/gdi/gdiobjects_p.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"
#include "ui/windows/windowsizing.h"

#include "platform/framework/codepage.h"
#include "platform/windows/sysmetrics.h"

#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QWheelEvent>

#include <algorithm>
#include <vector>
#include <utility>

namespace vx {
namespace {

// How deep we are in the event handlers of our widgets. A widget whose window
// is destroyed meanwhile is parked and deleted once the outermost handler
// has returned, since Qt must not delete a widget inside its own handler.
int g_eventDepth = 0;
std::vector<QPointer<QWidget>>& Graveyard()
{
    static auto* dead = new std::vector<QPointer<QWidget>>;
    return *dead;
}

void Bury()
{
    auto dead = std::move(Graveyard());
    Graveyard().clear();
    for (auto& w : dead)
        delete w.data();
}

UINT MouseFlags(Qt::MouseButtons buttons, Qt::KeyboardModifiers mods)
{
    UINT flags = 0;
    if (buttons & Qt::LeftButton)
        flags |= MK_LBUTTON;
    if (buttons & Qt::RightButton)
        flags |= MK_RBUTTON;
    if (buttons & Qt::MiddleButton)
        flags |= MK_MBUTTON;
    if (mods & Qt::ShiftModifier)
        flags |= MK_SHIFT;
    if (mods & Qt::ControlModifier)
        flags |= MK_CONTROL;
    return flags;
}

LPARAM PointParam(const QPoint& p)
{
    return MAKELPARAM(static_cast<WORD>(static_cast<short>(p.x())), static_cast<WORD>(static_cast<short>(p.y())));
}

UINT VirtualKey(const QKeyEvent* e)
{
    const int key = e->key();
    const bool keypad = e->modifiers() & Qt::KeypadModifier;
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<UINT>(key);
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return keypad ? VK_NUMPAD0 + static_cast<UINT>(key - Qt::Key_0) : static_cast<UINT>(key);
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return VK_F1 + static_cast<UINT>(key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Space: return VK_SPACE;
    case Qt::Key_Return:
    case Qt::Key_Enter: return VK_RETURN;
    case Qt::Key_Escape: return VK_ESCAPE;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return VK_TAB;
    case Qt::Key_Backspace: return VK_BACK;
    case Qt::Key_Delete: return VK_DELETE;
    case Qt::Key_Insert: return VK_INSERT;
    case Qt::Key_Home: return VK_HOME;
    case Qt::Key_End: return VK_END;
    case Qt::Key_PageUp: return VK_PRIOR;
    case Qt::Key_PageDown: return VK_NEXT;
    case Qt::Key_Left: return VK_LEFT;
    case Qt::Key_Right: return VK_RIGHT;
    case Qt::Key_Up: return VK_UP;
    case Qt::Key_Down: return VK_DOWN;
    case Qt::Key_Shift: return VK_SHIFT;
    case Qt::Key_Control: return VK_CONTROL;
    case Qt::Key_Alt: return VK_MENU;
    case Qt::Key_Pause: return VK_PAUSE;
    case Qt::Key_CapsLock: return VK_CAPITAL;
    case Qt::Key_NumLock: return VK_NUMLOCK;
    case Qt::Key_ScrollLock: return VK_SCROLL;
    case Qt::Key_Print: return VK_SNAPSHOT;
    case Qt::Key_Help: return VK_HELP;
    case Qt::Key_Menu: return 0x5D;
    case Qt::Key_Asterisk: return keypad ? VK_MULTIPLY : 0;
    case Qt::Key_Plus: return keypad ? VK_ADD : 0xBB;
    case Qt::Key_Minus: return keypad ? VK_SUBTRACT : 0xBD;
    case Qt::Key_Slash: return keypad ? VK_DIVIDE : 0xBF;
    case Qt::Key_Period: return keypad ? VK_DECIMAL : 0xBE;
    case Qt::Key_Comma: return 0xBC;
    case Qt::Key_Semicolon: return 0xBA;
    case Qt::Key_Equal: return 0xBB;
    case Qt::Key_BracketLeft: return 0xDB;
    case Qt::Key_Backslash: return 0xDC;
    case Qt::Key_BracketRight: return 0xDD;
    case Qt::Key_Apostrophe: return 0xDE;
    case Qt::Key_QuoteLeft: return 0xC0;
    default: return 0;
    }
}

// Keys with Alt, Alt itself and F10 alone are the desktop's system keys.
bool SystemKey(UINT key, Qt::KeyboardModifiers modifiers)
{
    if ((modifiers & Qt::AltModifier) || key == VK_MENU)
        return true;
    return key == VK_F10 && !(modifiers & (Qt::ShiftModifier | Qt::ControlModifier));
}

std::unique_ptr<WindowBackend> CreateQtBackend(CWnd& window, CWnd* parent, DWORD style)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return nullptr; // no widgets without an application: the headless backend
    InstallQtMessagePump();
    return std::make_unique<QtWindowBackend>(window, parent, style, window.GetExStyle());
}

// vxbase-ui takes over how windows are shown as soon as it is loaded.
const bool g_installed = [] {
    SetWindowBackendFactory(&CreateQtBackend);
    SetReparentHook([](CWnd& window, CWnd* parent) {
        if (QtWindowBackend* b = QtBackendOf(&window))
            b->Reparent(parent);
    });
    return true;
}();

} // namespace

// --- WindowWidget ---------------------------------------------------------------

WindowWidget::WindowWidget(QtWindowBackend* backend, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), m_backend(backend)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    // Focus moves only when a window asks for it (SetFocus), as on the original.
    setFocusPolicy(Qt::NoFocus);
}

bool WindowWidget::event(QEvent* e)
{
    ++g_eventDepth;
    const bool handled = QWidget::event(e);
    if (--g_eventDepth == 0 && !Graveyard().empty())
        Bury();
    return handled;
}

void WindowWidget::paintEvent(QPaintEvent* e)
{
    if (!m_backend)
        return;
    // An area Qt asks for that nobody invalidated was uncovered: it is erased
    // first, as an exposed area was on the original.
    // The surface keeps what was painted, so once painted an uncovered area
    // only needs showing; what was invalidated is painted.
    bool erase = false;
    QRegion pending = m_backend->TakePending(erase);
    const QRegion exposed = m_backend->Painted() ? QRegion() : e->region() - pending;
    const QRegion all = pending | exposed;
    m_backend->AddPending(all, erase || !exposed.isEmpty());
    CWnd& owner = m_backend->Owner();
    // The frame first, then the client area, as on the original.
    if (!(all - m_backend->ClientArea()).isEmpty())
        owner.SendMessage(WM_NCPAINT, 1, 0);
    if (m_backend && all.intersects(m_backend->ClientArea()))
        owner.SendMessage(WM_PAINT);
    if (!m_backend)
        return;
    m_backend->TakePending(erase); // painted or not, the area is valid now
    m_backend->SetPainted();
    const std::shared_ptr<QImage> surface = m_backend->Surface();
    QPainter p(this);
    p.drawImage(e->rect(), *surface, e->rect());
}

LRESULT WindowWidget::HitTest(const QPoint& at)
{
    CWnd& owner = m_backend->Owner();
    CRect outer;
    owner.GetWindowRect(&outer);
    return owner.SendMessage(WM_NCHITTEST, 0, PointParam(at + QPoint(outer.left, outer.top)));
}

void WindowWidget::Mouse(UINT message, QMouseEvent* e)
{
    if (!m_backend)
        return;
    const QPoint at = e->position().toPoint();
    CWnd& owner = m_backend->Owner();
    const UINT flags = MouseFlags(e->buttons(), e->modifiers());
    // A window that holds the capture hears the mouse as client messages
    // wherever it is; otherwise the hit test decides.
    if (CWnd::GetCapture() != &owner) {
        const LRESULT hit = HitTest(at);
        if (!m_backend)
            return;
        if (hit != HTMENU)
            LeftMenuBar();
        else
            m_overMenuBar = true;
        if (!m_backend)
            return;
        if (hit != HTCLIENT) {
            CRect outer;
            owner.GetWindowRect(&outer);
            DispatchInputMessage(owner, message - WM_MOUSEMOVE + WM_NCMOUSEMOVE, static_cast<WPARAM>(hit),
                                 PointParam(at + QPoint(outer.left, outer.top)));
            return;
        }
    }
    DispatchInputMessage(owner, message, flags, PointParam(at - m_backend->ClientArea().topLeft()));
}

void WindowWidget::mousePressEvent(QMouseEvent* e)
{
    switch (e->button()) {
    case Qt::LeftButton: Mouse(WM_LBUTTONDOWN, e); break;
    case Qt::RightButton: Mouse(WM_RBUTTONDOWN, e); break;
    case Qt::MiddleButton: Mouse(WM_MBUTTONDOWN, e); break;
    default: break;
    }
}

void WindowWidget::mouseReleaseEvent(QMouseEvent* e)
{
    switch (e->button()) {
    case Qt::LeftButton: Mouse(WM_LBUTTONUP, e); break;
    case Qt::RightButton:
        Mouse(WM_RBUTTONUP, e);
        if (m_backend) {
            // The context menu request follows the right button, in screen coordinates.
            const QPoint g = e->globalPosition().toPoint();
            m_backend->Owner().SendMessage(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(m_backend->Owner().m_hWnd),
                                           PointParam(g));
        }
        break;
    case Qt::MiddleButton: Mouse(WM_MBUTTONUP, e); break;
    default: break;
    }
}

void WindowWidget::mouseDoubleClickEvent(QMouseEvent* e)
{
    switch (e->button()) {
    case Qt::LeftButton: Mouse(WM_LBUTTONDBLCLK, e); break;
    case Qt::RightButton: Mouse(WM_RBUTTONDBLCLK, e); break;
    case Qt::MiddleButton: Mouse(WM_MBUTTONDBLCLK, e); break;
    default: break;
    }
}

void WindowWidget::UpdateCursor()
{
    if (!m_backend)
        return;
    CWnd& owner = m_backend->Owner();
    const LRESULT hit = HitTest(mapFromGlobal(QCursor::pos()));
    if (!m_backend)
        return;
    const LRESULT set = owner.SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(owner.m_hWnd),
                                          MAKELPARAM(static_cast<WORD>(hit), WM_MOUSEMOVE));
    if (!m_backend)
        return;
    HCURSOR cursor = ::GetCursor();
    if (!set || !cursor) {
        unsetCursor();
        return;
    }
    if (const int shape = gdi::CursorShapeOf(cursor)) {
        setCursor(QCursor(static_cast<Qt::CursorShape>(shape - 1)));
        return;
    }
    QImage image = ImageOfIcon(cursor).convertToFormat(QImage::Format_ARGB32);
    const QImage mask = ImageOfIcon(cursor, true);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (gdi::MonoBit(mask.pixel(x, y)))
                image.setPixel(x, y, 0);
        }
    }
    ICONINFO info{};
    if (GetIconInfo(cursor, &info)) {
        DeleteObject(info.hbmColor);
        DeleteObject(info.hbmMask);
    }
    setCursor(QCursor(QPixmap::fromImage(image), static_cast<int>(info.xHotspot), static_cast<int>(info.yHotspot)));
}

void WindowWidget::mouseMoveEvent(QMouseEvent* e)
{
    UpdateCursor();
    Mouse(WM_MOUSEMOVE, e);
}

QtWindowBackend* WindowWidget::Backend() const
{
    return m_backend;
}

void WindowWidget::wheelEvent(QWheelEvent* e)
{
    if (!m_backend)
        return;
    const QPoint g = e->globalPosition().toPoint();
    const int delta = e->angleDelta().y();
    const UINT flags = MouseFlags(e->buttons(), e->modifiers());
    DispatchInputMessage(m_backend->Owner(), WM_MOUSEWHEEL,
                         MAKEWPARAM(static_cast<WORD>(flags), static_cast<WORD>(static_cast<short>(delta))),
                         PointParam(g));
}

void WindowWidget::LeftMenuBar()
{
    if (!m_overMenuBar || !m_backend)
        return;
    m_overMenuBar = false;
    vx::menus::MenuBarMouseLeft(m_backend->Owner());
}

void WindowWidget::leaveEvent(QEvent*)
{
    LeftMenuBar();
    if (m_backend && TakeMouseLeaveRequest(m_backend->Owner()))
        DispatchInputMessage(m_backend->Owner(), WM_MOUSELEAVE, 0, 0);
}

void WindowWidget::keyPressEvent(QKeyEvent* e)
{
    if (!m_backend)
        return;
    const bool alt = e->modifiers() & Qt::AltModifier;
    const UINT key = VirtualKey(e);
    const LPARAM info = 1 | (e->isAutoRepeat() ? (1 << 30) : 0) | (alt ? (1 << 29) : 0);
    CWnd& owner = m_backend->Owner();
    const HWND hwnd = owner.m_hWnd;
    const bool delivered = key && DispatchInputMessage(owner, SystemKey(key, e->modifiers()) ? WM_SYSKEYDOWN : WM_KEYDOWN, key, info);
    if (alt) {
        // As the desktop's translation does: Alt with a letter or digit also
        // gives WM_SYSCHAR (the menu bar's mnemonic), unless the key was taken.
        const bool letter = (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
        if (delivered && letter && IsWindow(hwnd) && m_backend)
            DispatchInputMessage(m_backend->Owner(), WM_SYSCHAR, key >= 'A' && key <= 'Z' ? key - 'A' + 'a' : key, info);
        return;
    }
    if (!IsWindow(hwnd) || !m_backend)
        return;
    const QByteArray utf8 = e->text().toUtf8();
    const std::string bytes = FromUtf8(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
    for (unsigned char c : bytes) {
        if (!m_backend || !IsWindow(hwnd))
            break;
        DispatchInputMessage(m_backend->Owner(), WM_CHAR, c, info);
    }
}

void WindowWidget::keyReleaseEvent(QKeyEvent* e)
{
    if (!m_backend || e->isAutoRepeat())
        return;
    const bool alt = e->modifiers() & Qt::AltModifier;
    const UINT key = VirtualKey(e);
    const LPARAM info = 1 | (1 << 30) | (1LL << 31) | (alt ? (1 << 29) : 0);
    if (key)
        DispatchInputMessage(m_backend->Owner(), SystemKey(key, e->modifiers()) ? WM_SYSKEYUP : WM_KEYUP, key, info);
}

void WindowWidget::focusInEvent(QFocusEvent*)
{
    if (m_backend && CWnd::GetFocus() != &m_backend->Owner())
        m_backend->Owner().SetFocus();
}

void WindowWidget::resizeEvent(QResizeEvent*)
{
    if (m_backend && m_backend->IsTopLevel() && !m_backend->SettingGeometry())
        m_backend->DesktopGeometry(geometry());
}

void WindowWidget::moveEvent(QMoveEvent*)
{
    if (m_backend && m_backend->IsTopLevel() && !m_backend->SettingGeometry())
        m_backend->DesktopGeometry(geometry());
}

void WindowWidget::closeEvent(QCloseEvent* e)
{
    // The window decides, through WM_CLOSE, whether it goes away.
    e->ignore();
    if (m_backend)
        m_backend->Owner().SendMessage(WM_CLOSE);
}

void WindowWidget::changeEvent(QEvent* e)
{
    if (e->type() == QEvent::ActivationChange && m_backend && m_backend->IsTopLevel()) {
        CWnd& owner = m_backend->Owner();
        if (isActiveWindow())
            owner.SetActiveWindow();
        else if (CWnd::GetActiveWindow() == &owner)
            ClearActiveWindow();
    }
    QWidget::changeEvent(e);
}

bool WindowWidget::focusNextPrevChild(bool)
{
    // Tab reaches the window as a key; dialogs move the focus themselves.
    return false;
}

// --- QtWindowBackend ------------------------------------------------------------

QtWindowBackend::QtWindowBackend(CWnd& owner, CWnd* parent, DWORD style, DWORD exStyle)
    : m_owner(owner), m_parent(parent)
{
    QtWindowBackend* parentBackend = parent ? QtBackendOf(parent) : nullptr;
    QWidget* parentWidget = parentBackend ? parentBackend->Widget() : nullptr;
    Qt::WindowFlags flags = Qt::Widget;
    if (!(style & WS_CHILD) || !parentWidget) {
        m_topLevel = true;
        if ((style & WS_POPUP) && (style & WS_CAPTION) == WS_CAPTION)
            flags = Qt::Dialog; // a dialog: a caption, and above its owner
        else if (style & WS_POPUP)
            flags = Qt::Tool | Qt::FramelessWindowHint;
        else
            flags = Qt::Window;
        if (exStyle & WS_EX_TOPMOST)
            flags |= Qt::WindowStaysOnTopHint;
    }
    // A child window keeps its parent; an owned top-level window stays above
    // its owner, as Qt does for a transient parent.
    m_widget = new WindowWidget(this, parentWidget, flags);
    if (!m_topLevel) {
        // A new child goes below its siblings: the first made lies on top,
        // as dialog controls do.
        m_widget->lower();
        // Hidden until ShowWindow shows it: Qt would show a child it was
        // never told about along with its parent.
        m_widget->hide();
    }
}

QtWindowBackend::~QtWindowBackend()
{
    if (!m_widget)
        return;
    WindowWidget* w = m_widget.data();
    w->Detach();
    w->hide();
    if (g_eventDepth > 0)
        Graveyard().push_back(w);
    else
        delete w;
}

void QtWindowBackend::Show(bool visible)
{
    if (!m_widget)
        return;
    if (visible && m_topLevel)
        ApplySizeLimits();
    m_widget->setVisible(visible);
}

void QtWindowBackend::ApplySizeLimits()
{
    // The desktop sizes a window as the user drags its frame; it holds to
    // the sizes the window answers to WM_GETMINMAXINFO. A window with a
    // caption but no sizing frame keeps its size.
    const DWORD style = m_owner.GetStyle();
    if ((style & WS_CAPTION) == WS_CAPTION && !(style & WS_THICKFRAME)) {
        m_widget->setFixedSize(std::max(1, m_rect.Width()), std::max(1, m_rect.Height()));
        return;
    }
    if (!(style & WS_THICKFRAME))
        return;
    const MINMAXINFO limits = QueryMinMaxInfo(m_owner);
    m_widget->setMinimumSize(std::max<int>(0, limits.ptMinTrackSize.x), std::max<int>(0, limits.ptMinTrackSize.y));
    m_widget->setMaximumSize(std::min<int>(QWIDGETSIZE_MAX, std::max<int>(1, limits.ptMaxTrackSize.x)),
                             std::min<int>(QWIDGETSIZE_MAX, std::max<int>(1, limits.ptMaxTrackSize.y)));
}

bool QtWindowBackend::IsVisible() const
{
    return m_widget && m_widget->isVisible();
}

void QtWindowBackend::SetGeometry(const CRect& rect)
{
    m_rect = rect;
    if (!m_widget)
        return;
    // A child's rectangle is in its parent's client coordinates; its widget
    // lies in the parent's widget, which holds the parent's frame too.
    QPoint offset;
    if (!m_topLevel && m_parent) {
        const CRect client = ClientAreaOf(*m_parent);
        offset = QPoint(client.left, client.top);
    }
    m_settingGeometry = true;
    if (m_topLevel) {
        // A program places its windows where it likes, within the desktop's
        // limits or not, as on the original.
        m_widget->setMinimumSize(0, 0);
        m_widget->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    }
    m_widget->setGeometry(
        QRect(rect.left + offset.x(), rect.top + offset.y(), std::max(0, rect.Width()), std::max(0, rect.Height())));
    if (m_topLevel && m_widget->isVisible())
        ApplySizeLimits();
    m_settingGeometry = false;
}

void QtWindowBackend::Reparent(CWnd* parent)
{
    m_parent = parent;
    if (!m_widget || m_topLevel)
        return;
    QtWindowBackend* parentBackend = parent ? QtBackendOf(parent) : nullptr;
    QWidget* parentWidget = parentBackend ? parentBackend->Widget() : nullptr;
    const bool visible = m_owner.GetStyle() & WS_VISIBLE;
    // Qt hides a widget that changes parent; it shows again as the window is.
    m_widget->setParent(parentWidget, Qt::Widget);
    SetGeometry(m_rect);
    m_widget->setVisible(visible && parentWidget);
}

void QtWindowBackend::ClientAreaChanged()
{
    if (!m_widget)
        return;
    for (QObject* child : m_widget->children()) {
        auto* w = dynamic_cast<WindowWidget*>(child);
        if (QtWindowBackend* b = w ? w->Backend() : nullptr; b && !b->IsTopLevel())
            b->SetGeometry(b->Geometry());
    }
}

QRect QtWindowBackend::ClientArea() const
{
    const CRect c = ClientAreaOf(m_owner);
    return QRect(c.left, c.top, c.Width(), c.Height());
}

void QtWindowBackend::DesktopGeometry(const QRect& rect)
{
    const CRect now(rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height());
    if (now == m_rect)
        return;
    // The window hears of it as of any move: WM_WINDOWPOSCHANGING may still
    // change it, WM_WINDOWPOSCHANGED brings WM_MOVE and WM_SIZE.
    m_owner.SetWindowPos(nullptr, now.left, now.top, now.Width(), now.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
}

void QtWindowBackend::SetText(const char* text)
{
    if (m_widget && m_topLevel)
        m_widget->setWindowTitle(ToQString(text));
}

void QtWindowBackend::SetEnabled(bool enabled)
{
    if (!m_widget)
        return;
    m_widget->setEnabled(enabled);
    // Qt disables the windows a window owns along with it; on the platform
    // each window keeps its own state (a modal dialog stays usable over its
    // disabled owner).
    for (WindowWidget* w : m_widget->findChildren<WindowWidget*>()) {
        if (w->isWindow() && w->Backend())
            w->setEnabled(w->Backend()->Owner().IsWindowEnabled() != FALSE);
    }
}

void QtWindowBackend::Invalidate(const RECT* rect, bool erase)
{
    const QRect client = ClientArea();
    QRect area = rect ? QRect(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top)
                      : QRect(0, 0, client.width(), client.height());
    area = area.translated(client.topLeft()) & client;
    if (area.isEmpty())
        return;
    AddPending(area, erase);
    if (m_widget)
        m_widget->update(area);
}

void QtWindowBackend::InvalidateFrame()
{
    const QRegion frame = QRegion(0, 0, m_rect.Width(), m_rect.Height()) - ClientArea();
    if (frame.isEmpty())
        return;
    AddPending(frame, false);
    if (m_widget)
        m_widget->update(frame);
}

void QtWindowBackend::Update()
{
    if (m_widget && m_widget->isVisible() && !m_pending.isEmpty())
        m_widget->repaint(m_pending);
}

void QtWindowBackend::SetFocus()
{
    if (m_widget)
        m_widget->setFocus(Qt::OtherFocusReason);
}

void QtWindowBackend::SetCapture(bool capture)
{
    if (!m_widget || !m_widget->isVisible())
        return;
    if (capture)
        m_widget->grabMouse();
    else
        m_widget->releaseMouse();
}

void QtWindowBackend::SetZOrder(bool top)
{
    if (!m_widget)
        return;
    if (top)
        m_widget->raise();
    else
        m_widget->lower();
}

namespace {

void ReleaseStore(void* store)
{
    delete static_cast<std::shared_ptr<QImage>*>(store);
}

// A room for the surface with space to grow, so that a window that is
// resized step by step keeps its pixels in place instead of being copied.
int Roomy(int n)
{
    return n + n / 4 + 16;
}

} // namespace

std::shared_ptr<QImage> QtWindowBackend::Surface()
{
    const QSize size(std::max(1, m_rect.Width()), std::max(1, m_rect.Height()));
    if (m_surface && m_surface->size() == size)
        return m_surface;
    const QSize old = m_surface ? m_surface->size() : QSize(0, 0);
    const QRgb face = gdi::ToRgb(GetSysColor(COLOR_BTNFACE));
    if (!m_store || m_store->width() < size.width() || m_store->height() < size.height()) {
        auto store = std::make_shared<QImage>(Roomy(size.width()), Roomy(size.height()), QImage::Format_RGB32);
        store->fill(face);
        if (m_surface) {
            QPainter p(store.get());
            p.drawImage(0, 0, *m_surface);
        }
        m_store = std::move(store);
    } else {
        // What shows now for the first time starts in the face colour.
        QPainter p(m_store.get());
        if (size.width() > old.width())
            p.fillRect(QRect(old.width(), 0, size.width() - old.width(), size.height()), QColor::fromRgb(face));
        if (size.height() > old.height())
            p.fillRect(QRect(0, old.height(), size.width(), size.height() - old.height()), QColor::fromRgb(face));
    }
    // The surface is a view of the room; it keeps the room alive.
    m_surface = std::make_shared<QImage>(m_store->bits(), size.width(), size.height(), m_store->bytesPerLine(),
                                         QImage::Format_RGB32, &ReleaseStore, new std::shared_ptr<QImage>(m_store));
    return m_surface;
}

QRegion QtWindowBackend::TakePending(bool& erase)
{
    erase = m_erase;
    m_erase = false;
    return std::exchange(m_pending, QRegion());
}

void QtWindowBackend::AddPending(const QRegion& region, bool erase)
{
    m_pending |= region & QRect(0, 0, m_rect.Width(), m_rect.Height());
    m_erase = m_erase || erase;
}

QRegion QtWindowBackend::TakeClientPending(bool& erase)
{
    const QRect client = ClientArea();
    const QRegion part = m_pending & client;
    m_pending -= client;
    erase = m_erase;
    m_erase = false;
    return part.translated(-client.topLeft());
}

QtWindowBackend* QtBackendOf(const CWnd* window)
{
    return window ? dynamic_cast<QtWindowBackend*>(window->Backend()) : nullptr;
}

QtWindowBackend* QtBackendOf(HWND window)
{
    return QtBackendOf(CWnd::FromHandle(window));
}

void QtWindowBackend::SetShape(const QRegion& shape, bool set)
{
    m_shape = shape;
    m_hasShape = set;
    if (!m_widget)
        return;
    if (set)
        m_widget->setMask(shape);
    else
        m_widget->clearMask();
}

} // namespace vx

int SetWindowRgn(HWND window, HRGN region, BOOL redraw)
{
    CWnd* w = CWnd::FromHandle(window);
    if (!w)
        return 0;
    QRegion shape;
    if (auto* r = vx::gdi::Get<vx::gdi::Region>(region))
        shape = r->region;
    if (vx::QtWindowBackend* b = vx::QtBackendOf(w))
        b->SetShape(shape, region != nullptr);
    if (region)
        DeleteObject(region);
    if (redraw)
        w->Invalidate();
    return 1;
}

int GetWindowRgn(HWND window, HRGN region)
{
    vx::QtWindowBackend* b = vx::QtBackendOf(window);
    auto* r = vx::gdi::Get<vx::gdi::Region>(region);
    if (!b || !r || !b->HasShape())
        return 0;
    r->region = b->Shape();
    return r->region.isEmpty() ? NULLREGION : (r->region.rectCount() == 1 ? SIMPLEREGION : COMPLEXREGION);
}

namespace vx {

QWidget* WidgetOfWindow(const CWnd* window)
{
    QtWindowBackend* b = QtBackendOf(window);
    return b ? b->Widget() : nullptr;
}

void SetWindowIcon(CWnd& window, HICON icon)
{
    QWidget* w = WidgetOfWindow(&window);
    if (!w || !w->isWindow())
        return;
    if (!icon) {
        w->setWindowIcon(QIcon());
        return;
    }
    QImage image = ImageOfIcon(icon).convertToFormat(QImage::Format_ARGB32);
    const QImage mask = ImageOfIcon(icon, true);
    for (int y = 0; y < image.height() && y < mask.height(); ++y) {
        for (int x = 0; x < image.width() && x < mask.width(); ++x) {
            if (gdi::MonoBit(mask.pixel(x, y)))
                image.setPixel(x, y, 0);
        }
    }
    w->setWindowIcon(QIcon(QPixmap::fromImage(image)));
}

QImage RenderWindow(CWnd& window)
{
    QWidget* w = WidgetOfWindow(&window);
    if (!w)
        return QImage();
    // Everything is painted afresh, as when the window first appears.
    window.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    QImage image(w->size(), QImage::Format_RGB32);
    image.fill(0xFF000000u);
    w->render(&image);
    return image;
}

namespace gdi {

std::shared_ptr<QImage> WindowSurface(HWND window)
{
    QtWindowBackend* b = QtBackendOf(window);
    return b ? b->Surface() : nullptr;
}

PendingPaint TakePendingPaint(HWND window)
{
    PendingPaint paint;
    if (QtWindowBackend* b = QtBackendOf(window)) {
        paint.region = b->TakeClientPending(paint.erase);
    } else if (CWnd* w = CWnd::FromHandle(window)) {
        CRect client;
        w->GetClientRect(&client);
        paint.region = QRegion(0, 0, client.Width(), client.Height());
        paint.erase = true;
    }
    return paint;
}

namespace {

// Draws a painted window and its children into the screen picture.
void Compose(QPainter& p, CWnd& window)
{
    QtWindowBackend* b = QtBackendOf(&window);
    if (!b || !window.IsWindowVisible() || !b->Painted())
        return;
    CRect r;
    window.GetWindowRect(&r);
    p.drawImage(QPoint(r.left, r.top), *b->Surface());
    // The first child lies on top: draw from the last.
    std::vector<CWnd*> children;
    for (CWnd* c = window.GetWindow(GW_CHILD); c; c = c->GetWindow(GW_HWNDNEXT)) {
        if (c->GetStyle() & WS_CHILD)
            children.push_back(c);
    }
    for (auto it = children.rbegin(); it != children.rend(); ++it)
        Compose(p, **it);
}

BOOL ListTopLevel(HWND h, LPARAM l)
{
    if (CWnd* w = CWnd::FromHandle(h))
        reinterpret_cast<std::vector<CWnd*>*>(l)->push_back(w);
    return TRUE;
}

} // namespace

std::shared_ptr<QImage> ScreenImage()
{
    const int width = std::max(GetSystemMetrics(SM_CXSCREEN),
                               GetSystemMetrics(SM_XVIRTUALSCREEN) + GetSystemMetrics(SM_CXVIRTUALSCREEN));
    const int height = std::max(GetSystemMetrics(SM_CYSCREEN),
                                GetSystemMetrics(SM_YVIRTUALSCREEN) + GetSystemMetrics(SM_CYVIRTUALSCREEN));
    auto screen = std::make_shared<QImage>(std::max(1, width), std::max(1, height), QImage::Format_RGB32);
    screen->fill(ToRgb(GetSysColor(COLOR_BACKGROUND)));
    std::vector<CWnd*> tops;
    EnumWindows(&ListTopLevel, reinterpret_cast<LPARAM>(&tops));
    // Older windows lie below newer ones; the active one lies on top.
    CWnd* active = CWnd::GetActiveWindow();
    QPainter p(screen.get());
    for (CWnd* w : tops) {
        if (w != active)
            Compose(p, *w);
    }
    if (active && std::find(tops.begin(), tops.end(), active) != tops.end())
        Compose(p, *active);
    return screen;
}

void PresentWindow(HWND window, const QRect& area)
{
    if (QtWindowBackend* b = QtBackendOf(window); b && b->Widget())
        b->Widget()->update(area);
}

void EraseWithClassBackground(HWND, HDC dc, const QRegion& area)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return;
    Brush* face = Get<Brush>(GetSysColorBrush(COLOR_BTNFACE));
    for (const QRect& r : area)
        FillDevice(*d, r, face, PATCOPY);
}

} // namespace gdi
} // namespace vx
