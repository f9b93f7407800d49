#include "look/cshadebuttonst.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstdlib>

namespace {

// 15 random bits, the range the shading's arithmetic was made for; from the
// top of rand()'s range where RAND_MAX is larger (as glibc's is).
long Rand15()
{
    constexpr unsigned long kSpan = static_cast<unsigned long>(RAND_MAX) + 1ul;
    constexpr unsigned long kStep = kSpan > 0x8000ul ? kSpan / 0x8000ul : 1ul;
    return static_cast<long>(static_cast<unsigned long>(std::rand()) / kStep);
}

struct Rgb {
    long r, g, b;
};

Rgb Split(COLORREF c)
{
    return Rgb{GetRValue(c), GetGValue(c), GetBValue(c)};
}

} // namespace

CShadeButtonST::CShadeButtonST() = default;
CShadeButtonST::~CShadeButtonST() = default;

void CShadeButtonST::SetShade(UINT shade, BYTE granularity, BYTE highlight, BYTE coloring, COLORREF color)
{
    CRect window;
    GetWindowRect(&window);
    const long w = window.Width();
    const long h = window.Height();
    if (w <= 0 || h <= 0)
        return;

    // 1. The bitmaps.
    m_dh.Create(std::max(1L, w), 1, 8);
    m_dv.Create(1, std::max(1L, h), 8);
    m_dNormal.Create(w, h, 8);

    // 2. Face, highlight and shadow of the design's colour.
    COLORREF face, hi, lo;
    switch (m_InitShade) {
    case 0:
        face = GetSysColor(COLOR_BTNFACE);
        hi = GetSysColor(COLOR_BTNHIGHLIGHT);
        lo = GetSysColor(COLOR_BTNSHADOW);
        break;
    case 1:
        face = 0xC0C0C0;
        hi = 0xF2F2F2;
        lo = 0x8E8E8E;
        break;
    case 2:
        face = 0xB2B2B2;
        hi = 0xE4E4E4;
        lo = 0x808080;
        break;
    case 3:
        face = 0xCCB7AF;
        hi = 0xFEE9E1;
        lo = 0x9A857D;
        break;
    default: {
        face = m_InitShade;
        const Rgb f = Split(face);
        long d = 255;
        for (long c : {f.r, f.g, f.b})
            d = std::min({d, c, 255 - c});
        hi = RGB(f.r + d, f.g + d, f.b + d);
        lo = RGB(f.r - d, f.g - d, f.b - d);
        break;
    }
    }

    // 3. The palette: shadow to face over 0..128, face to highlight over 128..255.
    const Rgb f = Split(face);
    const Rgb H = Split(hi);
    const Rgb L = Split(lo);
    for (long i = 0; i < 129; ++i) {
        const BYTE r = static_cast<BYTE>((L.r * (128 - i) + f.r * i) >> 7);
        const BYTE g = static_cast<BYTE>((L.g * (128 - i) + f.g * i) >> 7);
        const BYTE b = static_cast<BYTE>((L.b * (128 - i) + f.b * i) >> 7);
        for (CShadeDib* d : {&m_dNormal, &m_dh, &m_dv})
            d->SetPaletteIndex(static_cast<BYTE>(i), r, g, b);
    }
    for (long i = 1; i < 129; ++i) {
        const BYTE r = static_cast<BYTE>((H.r * i + f.r * (128 - i)) >> 7);
        const BYTE g = static_cast<BYTE>((H.g * i + f.g * (128 - i)) >> 7);
        const BYTE b = static_cast<BYTE>((H.b * i + f.b * (128 - i)) >> 7);
        for (CShadeDib* d : {&m_dNormal, &m_dh, &m_dv})
            d->SetPaletteIndex(static_cast<BYTE>(i + 127), r, g, b);
    }

    // 4. The colouring.
    m_dNormal.BlendPalette(color, coloring);

    // 5. The dotted lines.
    if (BYTE* bits = m_dh.GetBits()) {
        for (long i = 0; i < m_dh.GetWidth(); ++i)
            bits[i] = static_cast<BYTE>((i & 1) ? 255 : 0);
    }
    if (BYTE* bits = m_dv.GetBits()) {
        for (long i = 0; i < m_dv.GetHeight(); ++i)
            bits[i * m_dv.GetLineWidth()] = static_cast<BYTE>((i & 1) ? 255 : 0);
    }

    // 6. The pixels.
    const long g = granularity;
    const long g2 = g ? g * 2 : 1;
    const long long n = 0x7FFF / static_cast<long long>(g2);
    auto noise = [&]() -> long { return static_cast<long>(Rand15() / n) - g; };
    const long top = 255 - g;
    const long a = top - g;
    auto put = [&](long x, long y, long v) { m_dNormal.SetPixelIndex(x, y, static_cast<BYTE>(v & 0xFF)); };
    auto cube = [](long long t) { return t * t * t; };

    switch (shade) {
    case SHS_DIAGSHADE:
        for (long y = 0; y < h; ++y)
            for (long x = 0; x < w; ++x)
                put(x, y, (a / 2) * (w - x) / w + (a / 2) * y / h + g + noise());
        break;
    case SHS_HSHADE:
        for (long y = 0; y < h; ++y)
            for (long x = 0; x < w; ++x)
                put(x, y, a * y / h + g + noise());
        break;
    case SHS_VSHADE:
        for (long y = 0; y < h; ++y)
            for (long x = 1; x < w; ++x)
                put(x, y, a * (w - x) / w + g + noise());
        break;
    case SHS_HBUMP:
        for (long y = 0; y < h; ++y) {
            const long long t = 255LL * y / h - 127;
            for (long x = 0; x < w; ++x)
                put(x, y, static_cast<long>(cube(t) / 16384 * (128 - g) / 128 + 128) + noise());
        }
        break;
    case SHS_VBUMP:
        for (long y = 0; y < h; ++y) {
            for (long x = 0; x < w; ++x) {
                const long long t = 255LL * (w - x) / w - 127;
                put(x, y, static_cast<long>(cube(t) / 16384 * (128 - g) / 128 + 128) + noise());
            }
        }
        break;
    case SHS_SOFTBUMP:
        for (long y = 0; y < h; ++y) {
            const long long th = 255LL * y / h - 127;
            for (long x = 0; x < w; ++x) {
                const long long tv = 255LL * (w - x) / w - 127;
                long v = static_cast<long>((cube(th) + cube(tv)) / 16384 * (128 - g) / 128 + 128);
                v = std::clamp(v, g, top);
                put(x, y, v + noise());
            }
        }
        break;
    case SHS_HARDBUMP: {
        const long p = std::min(16L, w / 6);
        const long long d = static_cast<long long>(h) * h / 4;
        for (long y = 0; y < h; ++y) {
            const long long t = 255LL * y / h - 127;
            const long base = static_cast<long>(cube(t) / 16384 * ((64 - g) * 2) / 128 + 128);
            // Too narrow or too low for rounded ends: the plain bump stays.
            const bool ends = p > 0 && d > 0;
            const long long limit = ends ? ((static_cast<long long>(p) * y - p * h / 2) * (y - h / 2)) / d - p + w / 2 : 0;
            for (long x = 0; x < w; ++x) {
                const long u = x - w / 2;
                long v = base;
                if (ends && u > limit)
                    v = 128 * (w - x) / p + g;
                else if (ends && u + limit < 0)
                    v = top - 128 * x / p;
                put(x, y, v + noise());
            }
        }
        break;
    }
    case SHS_METAL: {
        m_dNormal.SetBits(0);
        const long smaller = std::min(w, h);
        for (int k = 0; k < 200; ++k) {
            const long x0 = Rand15() % w;
            const long y0 = Rand15() % h;
            const long radius = (Rand15() % smaller) / 2;
            const long bright = Rand15() / 0x333;
            for (long i = 0; i <= radius; ++i) {
                put(x0 + i, y0 - i, bright);
                put(x0 - i, y0 + i, bright);
            }
        }
        const long am = (top - g - 40) / 2;
        for (long y = 0; y < h; ++y) {
            for (long x = 0; x < w; ++x) {
                const long v = m_dNormal.GetPixelIndex(x, y) + am * (w - x) / w + am * y / h +
                               static_cast<long>(Rand15() / n);
                put(x, y, v);
            }
        }
        break;
    }
    default: // SHS_NOISE
        for (long y = 0; y < h; ++y)
            for (long x = 0; x < w; ++x)
                put(x, y, noise() - 128);
        break;
    }

    // 7. The hover, disabled and spare faces.
    m_dDisabled.Clone(&m_dNormal);
    m_dOver.Clone(&m_dNormal);
    m_dOver.BlendPalette(hi, highlight);
    m_dDown.Clone(&m_dOver);
}

DWORD CShadeButtonST::OnDrawBackground(CDC* dc, CRect*)
{
    if (!m_bMouseOnButton)
        m_dNormal.Draw(dc->m_hDC, 0, 0);
    else if (m_bIsPressed)
        m_dOver.Draw(dc->m_hDC, 1, 1);
    else
        m_dOver.Draw(dc->m_hDC, 0, 0);
    return BTNST_OK;
}

DWORD CShadeButtonST::OnDrawBorder(CDC* dc, CRect* rect)
{
    return CButtonST::OnDrawBorder(dc, rect);
}
