// Internal; do not include directly.
//
// The window backend over QWidget: each CWnd of a process with a
// QApplication owns a WindowWidget, which forwards Qt's events to the
// window procedure as messages and shows the window's surface, the image
// that the window's device contexts draw into.
#pragma once

#include "platform/windows/cwnd.h"

#include <QImage>
#include <QPointer>
#include <QRegion>
#include <QWidget>

#include <memory>

namespace vx {

class QtWindowBackend;

class WindowWidget final : public QWidget {
public:
    WindowWidget(QtWindowBackend* backend, QWidget* parent, Qt::WindowFlags flags);
    void Detach() { m_backend = nullptr; }
    QtWindowBackend* Backend() const;

protected:
    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void leaveEvent(QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void moveEvent(QMoveEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void changeEvent(QEvent* e) override;
    bool focusNextPrevChild(bool next) override;

private:
    void Mouse(UINT message, QMouseEvent* e);
    // The hit test code of a point of the widget (window coordinates).
    LRESULT HitTest(const QPoint& at);
    void UpdateCursor();
    // The mouse left the menu bar strip: its hot item goes back to normal.
    void LeftMenuBar();
    QtWindowBackend* m_backend;
    bool m_overMenuBar = false;
};

class QtWindowBackend final : public WindowBackend {
public:
    QtWindowBackend(CWnd& owner, CWnd* parent, DWORD style, DWORD exStyle);
    ~QtWindowBackend() override;

    void Show(bool visible) override;
    bool IsVisible() const override;
    void SetGeometry(const CRect& rect) override;
    CRect Geometry() const override { return m_rect; }
    void ClientAreaChanged() override;
    void SetText(const char* text) override;
    void SetEnabled(bool enabled) override;
    void Invalidate(const RECT* rect, bool erase) override;
    void InvalidateFrame() override;
    void Update() override;
    void SetFocus() override;
    void SetCapture(bool capture) override;
    void SetZOrder(bool top) override;

    CWnd& Owner() { return m_owner; }
    QWidget* Widget() const { return m_widget.data(); }
    bool IsTopLevel() const { return m_topLevel; }
    // The window's pixels at its current size (the whole window, frame
    // included).
    std::shared_ptr<QImage> Surface();
    // Whether the surface was ever painted: until then the screen shows
    // what lies under the window.
    bool Painted() const { return m_painted; }
    void SetPainted() { m_painted = true; }
    // The invalid area (window coordinates) and erase flag, which are then cleared.
    QRegion TakePending(bool& erase);
    void AddPending(const QRegion& region, bool erase);
    // The client area's invalid part in client coordinates, which is then
    // valid; the frame's part stays pending.
    QRegion TakeClientPending(bool& erase);
    // The client area in window coordinates.
    QRect ClientArea() const;
    // A move or resize that came from the desktop (the user or the window manager).
    void DesktopGeometry(const QRect& rect);
    bool SettingGeometry() const { return m_settingGeometry; }
    // The window moved into another parent (SetParent): its widget follows.
    void Reparent(CWnd* parent);
    // The window's shape (SetWindowRgn); empty for the whole rectangle.
    void SetShape(const QRegion& shape, bool set);
    bool HasShape() const { return m_hasShape; }
    const QRegion& Shape() const { return m_shape; }

private:
    void ApplySizeLimits();
    CWnd& m_owner;
    CWnd* m_parent;
    QPointer<WindowWidget> m_widget;
    bool m_topLevel = false;
    bool m_settingGeometry = false;
    CRect m_rect;
    std::shared_ptr<QImage> m_surface;
    std::shared_ptr<QImage> m_store; // the room the surface lies in
    QRegion m_pending;
    bool m_erase = false;
    QRegion m_shape;
    bool m_hasShape = false;
    bool m_painted = false;
};

// The Qt backend of a window, or null.
QtWindowBackend* QtBackendOf(const CWnd* window);
QtWindowBackend* QtBackendOf(HWND window);

} // namespace vx
