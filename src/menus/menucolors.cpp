#include "menus/menucolors.h"

#include "base/vxglobals.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>

namespace {

// a * b / c rounded half away from zero, as the platform's MulDiv.
long MulDiv(long a, long b, long c)
{
    const long long p = static_cast<long long>(a) * b;
    const long long q = p >= 0 ? (p + c / 2) / c : (p - c / 2) / c;
    return static_cast<long>(q);
}

BYTE Channel(long v)
{
    return static_cast<BYTE>(std::clamp(v, 0L, 255L));
}

COLORREF Make(long r, long g, long b)
{
    return RGB(Channel(r), Channel(g), Channel(b));
}

} // namespace

COLORREF DarkenColor(long level, COLORREF c)
{
    return Make(MulDiv(GetRValue(c), 255 - level, 255), MulDiv(GetGValue(c), 255 - level, 255),
                MulDiv(GetBValue(c), 255 - level, 255));
}

COLORREF LightenColor(long level, COLORREF c)
{
    const long r = GetRValue(c);
    const long g = GetGValue(c);
    const long b = GetBValue(c);
    return Make(r + MulDiv(255 - r, level, 255), g + MulDiv(255 - g, level, 255), b + MulDiv(255 - b, level, 255));
}

COLORREF MixColor(COLORREF a, COLORREF b)
{
    return Make(MulDiv(GetRValue(a), 86, 100) + MulDiv(GetRValue(b), 14, 100),
                MulDiv(GetGValue(a), 86, 100) + MulDiv(GetGValue(b), 14, 100),
                MulDiv(GetBValue(a), 86, 100) + MulDiv(GetBValue(b), 14, 100));
}

COLORREF BlendColor(COLORREF a, COLORREF b)
{
    return Make(MulDiv(GetRValue(a), 7, 10) + MulDiv(GetRValue(b), 3, 10),
                MulDiv(GetGValue(a), 7, 10) + MulDiv(GetGValue(b), 3, 10),
                MulDiv(GetBValue(a), 7, 10) + MulDiv(GetBValue(b), 3, 10));
}

COLORREF GrayColor(COLORREF c)
{
    const long mean = (GetRValue(c) + GetGValue(c) + GetBValue(c)) / 3;
    return Make(mean, mean, mean);
}

COLORREF TintColor(COLORREF c)
{
    return Make(MulDiv(GetRValue(c), 7, 10), MulDiv(GetGValue(c), 7, 10), MulDiv(GetBValue(c) + 55, 7, 10));
}

BOOL IsHighContrast()
{
    static const BOOL on = [] {
        HIGHCONTRASTA hc{};
        hc.cbSize = sizeof hc;
        return SystemParametersInfoA(SPI_GETHIGHCONTRAST, sizeof hc, &hc, 0) && (hc.dwFlags & HCF_HIGHCONTRASTON)
                   ? TRUE
                   : FALSE;
    }();
    return on;
}

BOOL IsNewShell()
{
    return g_Shell >= Win95;
}

int NumScreenColors()
{
    static const int colors = [] {
        HDC screen = GetDC(nullptr);
        int n = GetDeviceCaps(screen, NUMCOLORS);
        ReleaseDC(nullptr, screen);
        return n == -1 ? 64000 : n;
    }();
    return colors;
}

BOOL DropShadowEnabled()
{
    BOOL on = FALSE;
    if (!SystemParametersInfoA(SPI_GETDROPSHADOW, 0, &on, 0))
        return FALSE;
    return on;
}

COLORREF GetSelectionColor()
{
    if (IsHighContrast())
        return GetSysColor(COLOR_HIGHLIGHT);
    if (NumScreenColors() > 256)
        return BlendColor(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_HIGHLIGHT));
    return GetSysColor(COLOR_WINDOW);
}

void DrawGradient(CDC* dc, const CRect& rect, COLORREF start, COLORREF end, BOOL horizontal, BOOL nearest)
{
    if (!dc || !dc->m_hDC)
        return;
    if (GetDeviceCaps(dc->m_hDC, NUMCOLORS) == -1)
        nearest = FALSE;
    if (!nearest) {
        TRIVERTEX v[2]{};
        v[0].x = rect.left;
        v[0].y = rect.top;
        v[0].Red = static_cast<COLOR16>(GetRValue(start) << 8);
        v[0].Green = static_cast<COLOR16>(GetGValue(start) << 8);
        v[0].Blue = static_cast<COLOR16>(GetBValue(start) << 8);
        v[1].x = rect.right;
        v[1].y = rect.bottom;
        v[1].Red = static_cast<COLOR16>(GetRValue(end) << 8);
        v[1].Green = static_cast<COLOR16>(GetGValue(end) << 8);
        v[1].Blue = static_cast<COLOR16>(GetBValue(end) << 8);
        GRADIENT_RECT mesh{0, 1};
        if (GradientFill(dc->m_hDC, v, 2, &mesh, 1, horizontal ? GRADIENT_FILL_RECT_H : GRADIENT_FILL_RECT_V))
            return;
    }
    // Strips of 2 pixels over a fill in the end colour.
    long n = horizontal ? rect.Width() : rect.Height();
    auto fill = [&](const RECT& r, COLORREF c) {
        if (nearest) {
            dc->FillSolidRect(&r, GetNearestColor(dc->m_hDC, c));
        } else {
            HBRUSH brush = CreateSolidBrush(c);
            FillRect(dc->m_hDC, &r, brush);
            DeleteObject(brush);
        }
    };
    fill(rect, end);
    n -= 2;
    for (long i = 0; i <= n && n > 0; i += 2) {
        const long r = GetRValue(start) + MulDiv(static_cast<long>(GetRValue(end)) - GetRValue(start), i, n);
        const long g = GetGValue(start) + MulDiv(static_cast<long>(GetGValue(end)) - GetGValue(start), i, n);
        const long b = GetBValue(start) + MulDiv(static_cast<long>(GetBValue(end)) - GetBValue(start), i, n);
        RECT strip = rect;
        if (horizontal) {
            strip.left = rect.left + i;
            strip.right = strip.left + 2;
        } else {
            strip.top = rect.top + i;
            strip.bottom = strip.top + 2;
        }
        fill(strip, Make(r, g, b));
    }
}

CNewMemDC::CNewMemDC(const RECT* rect, HDC target) : m_rect(*rect), m_hTarget(target)
{
    CDC* source = CDC::FromHandle(target);
    CreateCompatibleDC(source);
    m_bitmap.CreateCompatibleBitmap(source, std::max(1, m_rect.Width()), std::max(1, m_rect.Height()));
    m_oldBitmap = ::SelectObject(m_hDC, m_bitmap.m_hObject);
    SetWindowOrg(m_rect.left, m_rect.top);
}

CNewMemDC::~CNewMemDC()
{
    if (!m_bCancel)
        ::BitBlt(m_hTarget, m_rect.left, m_rect.top, m_rect.Width(), m_rect.Height(), m_hDC, m_rect.left, m_rect.top,
                 SRCCOPY);
    ::SelectObject(m_hDC, m_oldBitmap);
}
