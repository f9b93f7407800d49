#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/windows/qtinterop.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

#include <vector>

namespace {

constexpr COLORREF kFill = RGB(0, 160, 0);
constexpr COLORREF kFrame = RGB(200, 0, 200);

class Filled : public CWnd {
public:
    explicit Filled(COLORREF fill = kFill) : m_fill(fill) {}
    std::vector<MSG> mouse;
    int ncPaints = 0;
    bool ownFrame = false;

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, m_fill);
    }
    void OnNcPaint() override
    {
        ++ncPaints;
        if (!ownFrame) {
            CWnd::OnNcPaint();
            return;
        }
        // A frame of its own, through the window device.
        CWindowDC dc(this);
        CRect r;
        GetWindowRect(&r);
        r.OffsetRect(-r.left, -r.top);
        dc.FillSolidRect(&r, kFrame);
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if ((message >= WM_MOUSEMOVE && message <= WM_MBUTTONDBLCLK) ||
            (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK))
            mouse.push_back(MSG{m_hWnd, message, wParam, lParam, 0, {}});
        return CWnd::WindowProc(message, wParam, lParam);
    }

private:
    COLORREF m_fill;
};

void Click(QWidget* w, QPoint at)
{
    QMouseEvent e(QEvent::MouseButtonPress, QPointF(at), QPointF(w->mapToGlobal(at)), Qt::LeftButton, Qt::LeftButton,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

} // namespace

TEST(NonClientPaint, StandardFramesAreDrawnAroundTheClientArea)
{
    Filled top(RGB(255, 255, 255));
    top.CreateEx("top", "VxTop", WS_POPUP | WS_VISIBLE, CRect(0, 0, 100, 60));
    Filled edged;
    edged.CreateEx("edge", "VxEdge", WS_CHILD | WS_VISIBLE, CRect(10, 10, 50, 40), &top, 0, WS_EX_CLIENTEDGE);
    Filled bordered;
    bordered.CreateEx("border", "VxBorder", WS_CHILD | WS_VISIBLE | WS_BORDER, CRect(60, 10, 90, 40), &top);
    const QImage img = vxtest::Render(top);
    // A client edge is sunken: shadow then dark shadow at the top left,
    // highlight then light at the bottom right.
    EXPECT_PIXEL(img, 20, 10, GetSysColor(COLOR_BTNSHADOW));
    EXPECT_PIXEL(img, 20, 11, GetSysColor(COLOR_3DDKSHADOW));
    EXPECT_PIXEL(img, 20, 39, GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_PIXEL(img, 20, 38, GetSysColor(COLOR_3DLIGHT));
    EXPECT_RECT_COLOR(img, CRect(12, 12, 48, 38), kFill);
    EXPECT_PIXEL(img, 60, 20, GetSysColor(COLOR_WINDOWFRAME));
    EXPECT_PIXEL(img, 89, 39, GetSysColor(COLOR_WINDOWFRAME));
    EXPECT_RECT_COLOR(img, CRect(61, 11, 89, 39), kFill);
    EXPECT_GE(edged.ncPaints, 1);
}

TEST(NonClientPaint, WindowDeviceCoversTheFrameAndClientDeviceTheClient)
{
    Filled w;
    w.ownFrame = true;
    w.CreateEx("w", "VxFramed", WS_POPUP | WS_VISIBLE | WS_DLGFRAME, CRect(0, 0, 40, 30));
    const QImage img = vxtest::Render(w);
    EXPECT_PIXEL(img, 0, 0, kFrame);
    EXPECT_PIXEL(img, 2, 15, kFrame);
    EXPECT_PIXEL(img, 3, 3, kFill);
    EXPECT_PIXEL(img, 36, 26, kFill);
    EXPECT_PIXEL(img, 37, 27, kFrame);

    // A client device's (0, 0) is the client's top left.
    CClientDC client(&w);
    client.SetPixel(0, 0, RGB(1, 2, 3));
    CWindowDC window(&w);
    EXPECT_EQ(window.GetPixel(3, 3), RGB(1, 2, 3));
    EXPECT_EQ(window.GetPixel(0, 0), kFrame);
}

TEST(NonClientPaint, PrintDrawsFrameClientAndChildrenIntoADevice)
{
    Filled w(RGB(255, 255, 0));
    w.CreateEx("w", "VxPrint", WS_POPUP | WS_VISIBLE | WS_BORDER, CRect(0, 0, 40, 30));
    Filled child;
    child.CreateEx("c", "VxChild", WS_CHILD | WS_VISIBLE, CRect(5, 5, 15, 15), &w);
    vxtest::Canvas canvas(40, 30, RGB(9, 9, 9));
    w.SendMessage(WM_PRINT, reinterpret_cast<WPARAM>(canvas.hdc()),
                  PRF_NONCLIENT | PRF_CLIENT | PRF_ERASEBKGND | PRF_CHILDREN);
    const QImage img = canvas.Image();
    EXPECT_PIXEL(img, 0, 0, GetSysColor(COLOR_WINDOWFRAME));
    EXPECT_PIXEL(img, 1, 1, RGB(255, 255, 0));
    EXPECT_PIXEL(img, 6, 6, kFill) << "the child at its place in the client area";
    EXPECT_PIXEL(img, 16, 16, RGB(255, 255, 0));
    // Without PRF_CHILDREN nor the frame only the client area is drawn.
    vxtest::Canvas bare(40, 30, RGB(9, 9, 9));
    w.SendMessage(WM_PRINT, reinterpret_cast<WPARAM>(bare.hdc()), PRF_CLIENT);
    EXPECT_PIXEL(bare.Image(), 0, 0, RGB(9, 9, 9));
    EXPECT_PIXEL(bare.Image(), 6, 6, RGB(255, 255, 0));
}

TEST(NonClientInput, MouseOnTheFrameArrivesAsNonClientMessages)
{
    Filled w;
    w.CreateEx("w", "VxInput", WS_POPUP | WS_VISIBLE | WS_DLGFRAME, CRect(200, 100, 260, 140));
    QWidget* widget = vx::WidgetOfWindow(&w);
    Click(widget, QPoint(1, 10));
    Click(widget, QPoint(13, 10));
    ASSERT_GE(w.mouse.size(), 2u);
    const MSG& nc = w.mouse[w.mouse.size() - 2];
    EXPECT_EQ(nc.message, WM_NCLBUTTONDOWN);
    EXPECT_EQ(nc.wParam, static_cast<WPARAM>(HTBORDER));
    EXPECT_EQ(CPoint(GET_X_LPARAM(nc.lParam), GET_Y_LPARAM(nc.lParam)), CPoint(201, 110)) << "screen coordinates";
    const MSG& client = w.mouse.back();
    EXPECT_EQ(client.message, WM_LBUTTONDOWN);
    EXPECT_EQ(CPoint(GET_X_LPARAM(client.lParam), GET_Y_LPARAM(client.lParam)), CPoint(10, 7));
}

TEST(ScreenDevice, ShowsPaintedWindowsOverTheDesktop)
{
    Filled w(RGB(10, 20, 30));
    w.CreateEx("w", "VxScreen", WS_POPUP | WS_VISIBLE, CRect(300, 300, 320, 310));
    Filled unpainted(RGB(40, 50, 60));
    unpainted.CreateEx("u", "VxScreen", WS_POPUP | WS_VISIBLE, CRect(400, 300, 420, 310));
    vxtest::Render(w);
    HDC screen = GetDC(nullptr);
    EXPECT_EQ(GetPixel(screen, 305, 305), RGB(10, 20, 30));
    // A window never painted shows what lies under it, as on the original.
    EXPECT_EQ(GetPixel(screen, 405, 305), GetSysColor(COLOR_BACKGROUND));
    ReleaseDC(nullptr, screen);
}
