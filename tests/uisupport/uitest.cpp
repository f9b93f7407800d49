#include "uisupport/uitest.h"

#include "ui/windows/qtinterop.h"

#include <QApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>

namespace vxtest {

Canvas::Canvas(int width, int height, COLORREF fill)
{
    m_dc.CreateCompatibleDC(nullptr);
    m_bitmap = ::CreateBitmap(width, height, 1, 32, nullptr);
    m_old = ::SelectObject(m_dc.m_hDC, m_bitmap);
    m_dc.FillSolidRect(0, 0, width, height, fill);
    m_dc.SetBkColor(RGB(255, 255, 255));
}

Canvas::~Canvas()
{
    ::SelectObject(m_dc.m_hDC, m_old);
    m_dc.DeleteDC();
    ::DeleteObject(m_bitmap);
}

QImage Canvas::Image() const
{
    return vx::ImageOfDC(m_dc.m_hDC);
}

std::string SaveFailureImage(const QImage& image, const std::string& what)
{
    const char* env = std::getenv("VX_TEST_OUTPUT_DIR");
    const QString dir = QString::fromUtf8(env ? env : VX_TEST_OUTPUT_DIR);
    QDir().mkpath(dir);
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info ? std::string(info->test_suite_name()) + "." + info->name() : "outside-test";
    name += "-" + what;
    for (char& c : name) {
        if (c == '/' || c == ' ' || c == ',' || c == '(' || c == ')')
            c = '_';
    }
    const QString path = dir + QLatin1Char('/') + QString::fromStdString(name) + QLatin1String(".png");
    image.save(path);
    return path.toStdString();
}

COLORREF ColorAt(const QImage& image, int x, int y)
{
    const QRgb p = image.pixel(x, y);
    return RGB(qRed(p), qGreen(p), qBlue(p));
}

::testing::AssertionResult PixelIs(const QImage& image, int x, int y, COLORREF expected)
{
    if (!image.rect().contains(x, y))
        return ::testing::AssertionFailure() << "(" << x << ", " << y << ") lies outside the image";
    const COLORREF actual = ColorAt(image, x, y);
    if (actual == expected)
        return ::testing::AssertionSuccess();
    char text[160];
    std::snprintf(text, sizeof text, "pixel (%d, %d) is 0x%06X, expected 0x%06X", x, y, actual, expected);
    const std::string path = SaveFailureImage(image, "pixel");
    return ::testing::AssertionFailure() << text << "; image saved as " << path;
}

::testing::AssertionResult RectIs(const QImage& image, const RECT& rect, COLORREF expected)
{
    for (int y = rect.top; y < rect.bottom; ++y) {
        for (int x = rect.left; x < rect.right; ++x) {
            auto r = PixelIs(image, x, y, expected);
            if (!r)
                return r;
        }
    }
    return ::testing::AssertionSuccess();
}

int CountColor(const QImage& image, const RECT& rect, COLORREF color)
{
    int n = 0;
    for (int y = rect.top; y < rect.bottom; ++y) {
        for (int x = rect.left; x < rect.right; ++x) {
            if (image.rect().contains(x, y) && ColorAt(image, x, y) == color)
                ++n;
        }
    }
    return n;
}

CRect Ink(const QImage& image, COLORREF color)
{
    CRect box(image.width(), image.height(), 0, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (ColorAt(image, x, y) == color) {
                box.left = std::min<LONG>(box.left, x);
                box.top = std::min<LONG>(box.top, y);
                box.right = std::max<LONG>(box.right, x + 1);
                box.bottom = std::max<LONG>(box.bottom, y + 1);
            }
        }
    }
    return box.IsRectEmpty() ? CRect() : box;
}

QImage Render(CWnd& window)
{
    return vx::RenderWindow(window).convertToFormat(QImage::Format_RGB32);
}

CRect ChildPlace(CWnd& parent, int id)
{
    CRect r;
    parent.GetDlgItem(id)->GetWindowRect(&r);
    parent.ScreenToClient(&r);
    return r;
}

void SetClientSize(CWnd& window, int cx, int cy)
{
    CRect w;
    window.GetWindowRect(&w);
    CRect c;
    window.GetClientRect(&c);
    window.SetWindowPos(nullptr, 0, 0, cx + w.Width() - c.Width(), cy + w.Height() - c.Height(),
                        SWP_NOMOVE | SWP_NOZORDER);
}

namespace {

void Send(CWnd* to, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (to && to->m_hWnd)
        vx::DispatchInputMessage(*to, message, wParam, lParam);
}

} // namespace

void Key(UINT virtualKey, int modifiers, CWnd* to)
{
    auto target = [to] { return to ? to : CWnd::GetFocus(); };
    const bool alt = modifiers & kAlt;
    if (modifiers & kShift)
        Send(target(), WM_KEYDOWN, VK_SHIFT, 1);
    if (modifiers & kCtrl)
        Send(target(), WM_KEYDOWN, VK_CONTROL, 1);
    if (alt) {
        Send(target(), WM_SYSKEYDOWN, VK_MENU, 1 | (1 << 29));
        Send(target(), WM_SYSKEYDOWN, virtualKey, 1 | (1 << 29));
        Send(target(), WM_SYSKEYUP, virtualKey, 1 | (1 << 29) | (1 << 30) | (1LL << 31));
        Send(target(), WM_KEYUP, VK_MENU, 1 | (1 << 30) | (1LL << 31));
    } else {
        Send(target(), WM_KEYDOWN, virtualKey, 1);
        Send(target(), WM_KEYUP, virtualKey, 1 | (1 << 30) | (1LL << 31));
    }
    if (modifiers & kCtrl)
        Send(target(), WM_KEYUP, VK_CONTROL, 1 | (1 << 30) | (1LL << 31));
    if (modifiers & kShift)
        Send(target(), WM_KEYUP, VK_SHIFT, 1 | (1 << 30) | (1LL << 31));
}

void Type(const char* text)
{
    for (const char* p = text; *p; ++p)
        Send(CWnd::GetFocus(), WM_CHAR, static_cast<unsigned char>(*p), 1);
}

void Mouse(CWnd& window, UINT message, int x, int y, UINT flags)
{
    Send(&window, message, flags, MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)));
}

void Click(CWnd& window, int x, int y)
{
    const HWND h = window.m_hWnd;
    Mouse(window, WM_LBUTTONDOWN, x, y, MK_LBUTTON);
    // A window under capture gets the release, as the desktop delivers it.
    CWnd* up = CWnd::GetCapture() ? CWnd::GetCapture() : (IsWindow(h) ? &window : nullptr);
    if (up && up != &window) {
        CPoint p(x, y);
        window.ClientToScreen(&p);
        up->ScreenToClient(&p);
        Mouse(*up, WM_LBUTTONUP, p.x, p.y);
    } else if (up) {
        Mouse(*up, WM_LBUTTONUP, x, y);
    }
}

void DoubleClick(CWnd& window, int x, int y)
{
    const HWND h = window.m_hWnd;
    Click(window, x, y);
    if (!IsWindow(h))
        return;
    Mouse(window, WM_LBUTTONDBLCLK, x, y, MK_LBUTTON);
    if (IsWindow(h))
        Mouse(CWnd::GetCapture() ? *CWnd::GetCapture() : window, WM_LBUTTONUP, x, y);
}

} // namespace vxtest

int main(int argc, char** argv)
{
    // The tests never need a display; they run the same in CI and on a desktop.
    if (!std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
