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
    QtWindowBackend* Backend() const { return m_backend; }

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
    void UpdateCursor();
    QtWindowBackend* m_backend;
};

class QtWindowBackend final : public WindowBackend {
public:
    QtWindowBackend(CWnd& owner, CWnd* parent, DWORD style, DWORD exStyle);
    ~QtWindowBackend() override;

    void Show(bool visible) override;
    bool IsVisible() const override;
    void SetGeometry(const CRect& rect) override;
    CRect Geometry() const override { return m_rect; }
    CRect ClientRect() const override { return CRect(0, 0, m_rect.Width(), m_rect.Height()); }
    CPoint ClientToScreen(CPoint point) const override;
    void SetText(const char* text) override;
    void SetEnabled(bool enabled) override;
    void Invalidate(const RECT* rect, bool erase) override;
    void Update() override;
    void SetFocus() override;
    void SetCapture(bool capture) override;
    void SetZOrder(bool top) override;

    CWnd& Owner() { return m_owner; }
    QWidget* Widget() const { return m_widget.data(); }
    bool IsTopLevel() const { return m_topLevel; }
    // The window's pixels at its current size.
    std::shared_ptr<QImage> Surface();
    // The invalid area and erase flag, which are then cleared.
    QRegion TakePending(bool& erase);
    void AddPending(const QRegion& region, bool erase);
    // A move or resize that came from the desktop (the user or the window manager).
    void DesktopGeometry(const QRect& rect);
    bool SettingGeometry() const { return m_settingGeometry; }

private:
    void ApplySizeLimits();
    CWnd& m_owner;
    CWnd* m_parent;
    QPointer<WindowWidget> m_widget;
    bool m_topLevel = false;
    bool m_settingGeometry = false;
    CRect m_rect;
    std::shared_ptr<QImage> m_surface;
    QRegion m_pending;
    bool m_erase = false;
};

// The Qt backend of a window, or null.
QtWindowBackend* QtBackendOf(const CWnd* window);
QtWindowBackend* QtBackendOf(HWND window);

} // namespace vx
