#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/uiapp.h"

#include <QApplication>
#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <vector>

namespace {

constexpr COLORREF kGreen = RGB(0, 128, 0);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

class TestWnd : public CWnd {
public:
    explicit TestWnd(COLORREF fill = kGreen) : m_fill(fill) {}

    BOOL Create(CWnd* parent, const CRect& r, DWORD style = WS_CHILD | WS_VISIBLE, UINT id = 0)
    {
        return CreateEx("test", "TestWnd", style, r, parent, id);
    }
    int Count(UINT message) const { return static_cast<int>(std::count(log.begin(), log.end(), message)); }

    std::vector<UINT> log;
    std::vector<WPARAM> keys;
    std::vector<CPoint> points;
    std::vector<UINT> flags;
    COLORREF m_fill;
    int timers = 0;
    bool destroyOnClick = false;
    bool swallowClicksOfChildren = false;
    HCURSOR cursor = nullptr;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        log.push_back(message);
        if (message == WM_KEYDOWN || message == WM_CHAR)
            keys.push_back(wParam);
        return CWnd::WindowProc(message, wParam, lParam);
    }
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, m_fill);
    }
    void OnTimer(UINT_PTR) override { ++timers; }
    void OnLButtonDown(UINT f, CPoint p) override
    {
        points.push_back(p);
        flags.push_back(f);
    }
    void OnLButtonUp(UINT, CPoint) override
    {
        if (destroyOnClick)
            DestroyWindow();
    }
    BOOL PreTranslateMessage(MSG* msg) override
    {
        return swallowClicksOfChildren && msg->hwnd != m_hWnd && msg->message == WM_LBUTTONDOWN;
    }
    BOOL OnSetCursor(CWnd*, UINT, UINT) override
    {
        if (!cursor)
            return CWnd::OnSetCursor(nullptr, 0, 0);
        ::SetCursor(cursor);
        return TRUE;
    }
};

void Press(QWidget* w, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons,
           Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    QMouseEvent e(type, QPointF(at), QPointF(w->mapToGlobal(at)), button, buttons, mods);
    QCoreApplication::sendEvent(w, &e);
}

TEST(QtWindow, PaintsThroughOnPaintWithChildrenOnTop)
{
    TestWnd top(kGreen);
    ASSERT_TRUE(top.Create(nullptr, CRect(0, 0, 40, 30), WS_POPUP | WS_VISIBLE));
    ASSERT_NE(vx::WidgetOfWindow(&top), nullptr);
    TestWnd first(kRed), second(kBlue), hidden(kBlue);
    first.Create(&top, CRect(5, 5, 20, 20));
    second.Create(&top, CRect(10, 10, 30, 25));
    hidden.Create(&top, CRect(30, 0, 40, 10), WS_CHILD);
    QImage img = vxtest::Render(top);
    ASSERT_EQ(img.size(), QSize(40, 30));
    EXPECT_PIXEL(img, 0, 0, kGreen);
    EXPECT_PIXEL(img, 6, 6, kRed);
    EXPECT_PIXEL(img, 12, 12, kRed); // the first child lies on top, as dialog controls do
    EXPECT_PIXEL(img, 25, 20, kBlue);
    EXPECT_PIXEL(img, 35, 5, kGreen);
    EXPECT_EQ(CWnd::WindowFromPoint(CPoint(12, 12)), &first);
    EXPECT_EQ(CWnd::WindowFromPoint(CPoint(25, 20)), &second);
    EXPECT_EQ(top.ChildWindowFromPoint(CPoint(1, 1)), &top);
    second.SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    img = vxtest::Render(top);
    EXPECT_PIXEL(img, 12, 12, kBlue);
    EXPECT_EQ(top.GetWindow(GW_CHILD), &second);
    EXPECT_EQ(second.GetWindow(GW_HWNDNEXT), &first);
}

TEST(QtWindow, MouseEventsArriveAsMessagesAfterPreTranslate)
{
    TestWnd top;
    top.Create(nullptr, CRect(100, 50, 140, 80), WS_POPUP);
    TestWnd child;
    child.Create(&top, CRect(10, 10, 30, 30));
    QWidget* w = vx::WidgetOfWindow(&child);
    Press(w, QEvent::MouseButtonPress, QPoint(3, 4), Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    ASSERT_EQ(child.points.size(), 1u);
    EXPECT_EQ(child.points[0], CPoint(3, 4));
    EXPECT_EQ(child.flags[0], MK_LBUTTON | MK_SHIFT);
    POINT cursor{};
    GetCursorPos(&cursor);
    EXPECT_EQ(CPoint(cursor), CPoint(113, 64));
    EXPECT_TRUE(GetKeyState(VK_LBUTTON) < 0);
    Press(w, QEvent::MouseButtonRelease, QPoint(3, 4), Qt::LeftButton, Qt::NoButton);
    EXPECT_FALSE(GetKeyState(VK_LBUTTON) < 0);
    EXPECT_EQ(child.Count(WM_LBUTTONUP), 1);

    top.swallowClicksOfChildren = true;
    Press(w, QEvent::MouseButtonPress, QPoint(3, 4), Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(child.points.size(), 1u);
}

TEST(QtWindow, LeaveIsReportedOnlyWhenAskedFor)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 20, 20), WS_POPUP);
    QWidget* w = vx::WidgetOfWindow(&top);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(w, &leave);
    EXPECT_EQ(top.Count(WM_MOUSELEAVE), 0);
    TRACKMOUSEEVENT t{sizeof(TRACKMOUSEEVENT), TME_LEAVE, top.m_hWnd, 0};
    ASSERT_TRUE(TrackMouseEvent(&t));
    QCoreApplication::sendEvent(w, &leave);
    QCoreApplication::sendEvent(w, &leave);
    EXPECT_EQ(top.Count(WM_MOUSELEAVE), 1);
}

TEST(QtWindow, KeysBecomeVirtualKeysAndCodePageCharacters)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 20, 20), WS_POPUP);
    QWidget* w = vx::WidgetOfWindow(&top);
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QCoreApplication::sendEvent(w, &space);
    QKeyEvent ogonek(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QString::fromUtf8("ą"));
    QCoreApplication::sendEvent(w, &ogonek);
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QCoreApplication::sendEvent(w, &up);
    EXPECT_EQ(top.keys, (std::vector<WPARAM>{VK_SPACE, ' ', 'A', 0xB9}));
    EXPECT_EQ(top.Count(WM_KEYUP), 1);
}

TEST(QtWindow, TimersAndPostedMessagesRunUnderTheQtLoop)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 20, 20), WS_POPUP);
    top.SetTimer(7, 5);
    top.PostMessage(WM_USER + 3, 1, 2);
    vx::ProcessUiEvents(60);
    top.KillTimer(7);
    EXPECT_GE(top.timers, 2);
    EXPECT_EQ(top.Count(WM_USER + 3), 1);
}

TEST(QtWindow, GeometryChangesReportOnceAndResizeTheSurface)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 20, 20), WS_POPUP);
    EXPECT_EQ(top.Count(WM_SIZE), 1); // at creation
    top.MoveWindow(0, 0, 50, 10);
    top.MoveWindow(0, 0, 50, 10);
    EXPECT_EQ(top.Count(WM_SIZE), 2);
    EXPECT_EQ(vx::WidgetOfWindow(&top)->size(), QSize(50, 10));
    const QImage img = vxtest::Render(top);
    EXPECT_EQ(img.size(), QSize(50, 10));
    EXPECT_PIXEL(img, 49, 9, kGreen);
}

TEST(QtWindow, WindowMayDestroyItselfInItsOwnHandler)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 40, 40), WS_POPUP);
    TestWnd child;
    child.destroyOnClick = true;
    child.Create(&top, CRect(0, 0, 20, 20));
    QPointer<QWidget> w = vx::WidgetOfWindow(&child);
    Press(w, QEvent::MouseButtonPress, QPoint(1, 1), Qt::LeftButton, Qt::LeftButton);
    Press(w, QEvent::MouseButtonRelease, QPoint(1, 1), Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(child.m_hWnd, nullptr);
    EXPECT_TRUE(w.isNull());
    EXPECT_EQ(top.GetWindow(GW_CHILD), nullptr);
    // Destroying the parent takes its children with it.
    TestWnd other;
    other.Create(&top, CRect(0, 0, 5, 5));
    top.DestroyWindow();
    EXPECT_EQ(other.m_hWnd, nullptr);
    EXPECT_EQ(other.Count(WM_DESTROY), 1);
}

TEST(QtWindow, CursorComesFromTheSetCursorAnswer)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 20, 20), WS_POPUP);
    top.cursor = LoadCursorA(nullptr, IDC_HAND);
    QWidget* w = vx::WidgetOfWindow(&top);
    Press(w, QEvent::MouseMove, QPoint(2, 2), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(w->cursor().shape(), Qt::PointingHandCursor);
    top.cursor = nullptr;
    Press(w, QEvent::MouseMove, QPoint(3, 2), Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(w->cursor().shape(), Qt::ArrowCursor);
}

TEST(QtWindow, FocusMovesWithMessagesToBothWindows)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 40, 40), WS_POPUP);
    TestWnd a, b;
    a.Create(&top, CRect(0, 0, 10, 10), WS_CHILD | WS_VISIBLE | WS_TABSTOP);
    b.Create(&top, CRect(10, 0, 20, 10), WS_CHILD | WS_VISIBLE | WS_TABSTOP);
    a.SetFocus();
    b.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &b);
    EXPECT_EQ(a.Count(WM_KILLFOCUS), 1);
    EXPECT_EQ(b.Count(WM_SETFOCUS), 1);
    EXPECT_EQ(top.GetNextDlgTabItem(&b), &a);
    a.EnableWindow(FALSE);
    EXPECT_EQ(top.GetNextDlgTabItem(&b), nullptr);
}

TEST(SysColors, QtPaletteCanReplaceTheClassicTable)
{
    TestWnd top;
    top.Create(nullptr, CRect(0, 0, 10, 10), WS_POPUP);
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), RGB(212, 208, 200));
    QPalette palette = QApplication::palette();
    const QPalette saved = palette;
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    QApplication::setPalette(palette);
    vx::UseQtPalette(true);
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), RGB(1, 2, 3));
    EXPECT_EQ(top.Count(WM_SYSCOLORCHANGE), 1);
    vx::UseQtPalette(false);
    QApplication::setPalette(saved);
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), RGB(212, 208, 200));
}

} // namespace
