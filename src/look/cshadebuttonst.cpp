#include "look/cshadebuttonst.h"

#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

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

// The face, highlight and shadow of a design: the system's, three fixed
// ones, or a user colour with highlight and shadow as far off as the
// colour's nearest distance to 0 or 255.
struct DesignColours {
    COLORREF face, hi, lo;
};

DesignColours ColoursOfDesign(DWORD design)
{
    switch (design) {
    case 0:
        return {GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW)};
    case 1:
        return {0xC0C0C0, 0xF2F2F2, 0x8E8E8E};
    case 2:
        return {0xB2B2B2, 0xE4E4E4, 0x808080};
    case 3:
        return {0xCCB7AF, 0xFEE9E1, 0x9A857D};
    default: {
        const Rgb f = Split(design);
        long d = 255;
        for (long c : {f.r, f.g, f.b})
            d = std::min({d, c, 255 - c});
        return {design, RGB(f.r + d, f.g + d, f.b + d), RGB(f.r - d, f.g - d, f.b - d)};
    }
    }
}

// Shadow to face over entries 0..128, face to highlight over 128..255.
void SetShadePalette(const DesignColours& c, std::initializer_list<CShadeDib*> dibs)
{
    const Rgb f = Split(c.face);
    const Rgb H = Split(c.hi);
    const Rgb L = Split(c.lo);
    for (long i = 0; i < 129; ++i) {
        const BYTE r = static_cast<BYTE>((L.r * (128 - i) + f.r * i) >> 7);
        const BYTE g = static_cast<BYTE>((L.g * (128 - i) + f.g * i) >> 7);
        const BYTE b = static_cast<BYTE>((L.b * (128 - i) + f.b * i) >> 7);
        for (CShadeDib* d : dibs)
            d->SetPaletteIndex(static_cast<BYTE>(i), r, g, b);
    }
    for (long i = 1; i < 129; ++i) {
        const BYTE r = static_cast<BYTE>((H.r * i + f.r * (128 - i)) >> 7);
        const BYTE g = static_cast<BYTE>((H.g * i + f.g * (128 - i)) >> 7);
        const BYTE b = static_cast<BYTE>((H.b * i + f.b * (128 - i)) >> 7);
        for (CShadeDib* d : dibs)
            d->SetPaletteIndex(static_cast<BYTE>(i + 127), r, g, b);
    }
}

// Every other pixel of a one-pixel line at the top of the palette.
void DrawDots(CShadeDib& horizontal, CShadeDib& vertical)
{
    if (BYTE* bits = horizontal.GetBits()) {
        for (long i = 0; i < horizontal.GetWidth(); ++i)
            bits[i] = static_cast<BYTE>((i & 1) ? 255 : 0);
    }
    if (BYTE* bits = vertical.GetBits()) {
        for (long i = 0; i < vertical.GetHeight(); ++i)
            bits[i * vertical.GetLineWidth()] = static_cast<BYTE>((i & 1) ? 255 : 0);
    }
}

// What every shade works with: the face's size and the noise of amplitude
// `g` around a value. A pixel takes the low byte of its value, so values
// outside 0..255 wrap, as they did on the original.
struct Shading {
    Shading(CShadeDib& face, long width, long height, long granularity)
        : dib(face), w(width), h(height), g(granularity), top(255 - g), a(top - g),
          n(0x7FFF / static_cast<long long>(g ? g * 2 : 1))
    {
    }

    long Noise() const { return static_cast<long>(Rand15() / n) - g; }
    void Put(long x, long y, long v) const { dib.SetPixelIndex(x, y, static_cast<BYTE>(v & 0xFF)); }
    static long long Cube(long long t) { return t * t * t; }
    // A bump of t in -127..128: flat in the middle, steep at the ends.
    long Bump(long long t, long span) const { return static_cast<long>(Cube(t) / 16384 * span / 128 + 128); }

    CShadeDib& dib;
    const long w, h, g, top, a;
    const long long n;
};

void ShadeNoise(const Shading& s)
{
    for (long y = 0; y < s.h; ++y)
        for (long x = 0; x < s.w; ++x)
            s.Put(x, y, s.Noise() - 128);
}

void ShadeDiagonal(const Shading& s)
{
    for (long y = 0; y < s.h; ++y)
        for (long x = 0; x < s.w; ++x)
            s.Put(x, y, (s.a / 2) * (s.w - x) / s.w + (s.a / 2) * y / s.h + s.g + s.Noise());
}

void ShadeHorizontal(const Shading& s)
{
    for (long y = 0; y < s.h; ++y)
        for (long x = 0; x < s.w; ++x)
            s.Put(x, y, s.a * y / s.h + s.g + s.Noise());
}

// Column 0 keeps the index the bitmap was made with.
void ShadeVertical(const Shading& s)
{
    for (long y = 0; y < s.h; ++y)
        for (long x = 1; x < s.w; ++x)
            s.Put(x, y, s.a * (s.w - x) / s.w + s.g + s.Noise());
}

void ShadeHorizontalBump(const Shading& s)
{
    for (long y = 0; y < s.h; ++y) {
        const long long t = 255LL * y / s.h - 127;
        for (long x = 0; x < s.w; ++x)
            s.Put(x, y, s.Bump(t, 128 - s.g) + s.Noise());
    }
}

void ShadeVerticalBump(const Shading& s)
{
    for (long y = 0; y < s.h; ++y) {
        for (long x = 0; x < s.w; ++x) {
            const long long t = 255LL * (s.w - x) / s.w - 127;
            s.Put(x, y, s.Bump(t, 128 - s.g) + s.Noise());
        }
    }
}

void ShadeSoftBump(const Shading& s)
{
    for (long y = 0; y < s.h; ++y) {
        const long long th = 255LL * y / s.h - 127;
        for (long x = 0; x < s.w; ++x) {
            const long long tv = 255LL * (s.w - x) / s.w - 127;
            long v = static_cast<long>((Shading::Cube(th) + Shading::Cube(tv)) / 16384 * (128 - s.g) / 128 + 128);
            v = std::clamp(v, s.g, s.top);
            s.Put(x, y, v + s.Noise());
        }
    }
}

// A horizontal bump with rounded ends, both in one pass so that each pixel
// takes one random number.
void ShadeHardBump(const Shading& s)
{
    const long w = s.w;
    const long h = s.h;
    const long p = std::min(16L, w / 6);
    const long long d = static_cast<long long>(h) * h / 4;
    // Too narrow or too low for rounded ends: the plain bump stays.
    const bool ends = p > 0 && d > 0;
    for (long y = 0; y < h; ++y) {
        const long base = s.Bump(255LL * y / h - 127, (64 - s.g) * 2);
        const long long limit =
            ends ? ((static_cast<long long>(p) * y - p * h / 2) * (y - h / 2)) / d - p + w / 2 : 0;
        for (long x = 0; x < w; ++x) {
            const long u = x - w / 2;
            long v = base;
            if (ends && u > limit)
                v = 128 * (w - x) / p + s.g;
            else if (ends && u + limit < 0)
                v = s.top - 128 * x / p;
            s.Put(x, y, v + s.Noise());
        }
    }
}

// 200 crosses of random place, size and brightness, then a diagonal shade
// with noise over them.
void ShadeMetal(const Shading& s)
{
    s.dib.SetBits(0);
    const long smaller = std::min(s.w, s.h);
    for (int k = 0; k < 200; ++k) {
        const long x0 = Rand15() % s.w;
        const long y0 = Rand15() % s.h;
        const long radius = (Rand15() % smaller) / 2;
        const long bright = Rand15() / 0x333;
        for (long i = 0; i <= radius; ++i) {
            s.Put(x0 + i, y0 - i, bright);
            s.Put(x0 - i, y0 + i, bright);
        }
    }
    const long am = (s.top - s.g - 40) / 2;
    for (long y = 0; y < s.h; ++y) {
        for (long x = 0; x < s.w; ++x) {
            const long v = s.dib.GetPixelIndex(x, y) + am * (s.w - x) / s.w + am * y / s.h +
                           static_cast<long>(Rand15() / s.n);
            s.Put(x, y, v);
        }
    }
}

void DrawShade(UINT shade, const Shading& s)
{
    switch (shade) {
    case CShadeButtonST::SHS_DIAGSHADE: return ShadeDiagonal(s);
    case CShadeButtonST::SHS_HSHADE: return ShadeHorizontal(s);
    case CShadeButtonST::SHS_VSHADE: return ShadeVertical(s);
    case CShadeButtonST::SHS_HBUMP: return ShadeHorizontalBump(s);
    case CShadeButtonST::SHS_VBUMP: return ShadeVerticalBump(s);
    case CShadeButtonST::SHS_SOFTBUMP: return ShadeSoftBump(s);
    case CShadeButtonST::SHS_HARDBUMP: return ShadeHardBump(s);
    case CShadeButtonST::SHS_METAL: return ShadeMetal(s);
    default: return ShadeNoise(s); // SHS_NOISE and unknown numbers
    }
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

    m_dh.Create(w, 1, 8);
    m_dv.Create(1, h, 8);
    m_dNormal.Create(w, h, 8);
    const DesignColours colours = ColoursOfDesign(m_InitShade);
    SetShadePalette(colours, {&m_dNormal, &m_dh, &m_dv});
    m_dNormal.BlendPalette(color, coloring);
    DrawDots(m_dh, m_dv);
    DrawShade(shade, Shading(m_dNormal, w, h, granularity));

    // The hover, disabled and pressed faces.
    m_dDisabled.Clone(&m_dNormal);
    m_dOver.Clone(&m_dNormal);
    m_dOver.BlendPalette(colours.hi, highlight);
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
