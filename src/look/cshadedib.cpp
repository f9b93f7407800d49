#include "look/cshadedib.h"

#include <cstring>
#include <new>

CShadeDib::CShadeDib() = default;

CShadeDib::~CShadeDib()
{
    Clear();
}

BOOL CShadeDib::Create(long width, long height, WORD bits)
{
    Clear();
    if (width <= 0 || height <= 0 || (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32))
        return FALSE;
    m_LineWidth = ((bits * width + 31) / 32) * 4;
    switch (bits) {
    case 1: m_nColors = 2; break;
    case 4: m_nColors = 16; break;
    case 8: m_nColors = 256; break;
    default: m_nColors = 0; break;
    }
    const std::size_t size = sizeof(BITMAPINFOHEADER) + m_nColors * sizeof(RGBQUAD) +
                             static_cast<std::size_t>(m_LineWidth) * static_cast<std::size_t>(height);
    m_pDib = new (std::nothrow) BYTE[size]();
    if (!m_pDib) {
        Clear();
        return FALSE;
    }
    m_Header = BITMAPINFOHEADER{};
    m_Header.biSize = sizeof(BITMAPINFOHEADER);
    m_Header.biWidth = width;
    m_Header.biHeight = height;
    m_Header.biPlanes = 1;
    m_Header.biBitCount = bits;
    m_Header.biCompression = BI_RGB;
    m_Header.biSizeImage = static_cast<DWORD>(m_LineWidth * height);
    m_Header.biClrUsed = m_nColors;
    std::memcpy(m_pDib, &m_Header, sizeof m_Header);
    return TRUE;
}

void CShadeDib::Clear()
{
    if (m_hMemDC)
        DeleteDC(m_hMemDC);
    if (m_hDibSection)
        DeleteObject(m_hDibSection);
    m_hMemDC = nullptr;
    m_hDibSection = nullptr;
    m_lpSectionBits = nullptr;
    delete[] m_pDib;
    m_pDib = nullptr;
    m_Header = BITMAPINFOHEADER{};
    m_LineWidth = 0;
    m_nColors = 0;
}

BOOL CShadeDib::Clone(const CShadeDib* source)
{
    if (!source || !source->m_pDib || source == this)
        return FALSE;
    if (!Create(source->GetWidth(), source->GetHeight(), source->m_Header.biBitCount))
        return FALSE;
    const std::size_t size = m_nColors * sizeof(RGBQUAD) +
                             static_cast<std::size_t>(m_LineWidth) * static_cast<std::size_t>(GetHeight());
    std::memcpy(m_pDib + sizeof(BITMAPINFOHEADER), source->m_pDib + sizeof(BITMAPINFOHEADER), size);
    return TRUE;
}

RGBQUAD* CShadeDib::Palette() const
{
    return m_pDib ? reinterpret_cast<RGBQUAD*>(m_pDib + sizeof(BITMAPINFOHEADER)) : nullptr;
}

BYTE* CShadeDib::GetBits() const
{
    return m_pDib ? m_pDib + sizeof(BITMAPINFOHEADER) + m_nColors * sizeof(RGBQUAD) : nullptr;
}

void CShadeDib::SetBits(BYTE value)
{
    if (BYTE* bits = GetBits())
        std::memset(bits, value, static_cast<std::size_t>(m_LineWidth) * static_cast<std::size_t>(GetHeight()));
}

void CShadeDib::SetPaletteIndex(BYTE index, BYTE r, BYTE g, BYTE b)
{
    if (!m_pDib || index >= m_nColors)
        return;
    Palette()[index] = RGBQUAD{b, g, r, 0};
}

COLORREF CShadeDib::GetPaletteIndex(BYTE index) const
{
    if (!m_pDib || index >= m_nColors)
        return 0;
    const RGBQUAD& q = Palette()[index];
    return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue);
}

void CShadeDib::SetPixelIndex(long x, long y, BYTE index)
{
    if (!m_pDib || x < 0 || y < 0 || x >= GetWidth() || y >= GetHeight() || m_Header.biBitCount > 8)
        return;
    // Rows are stored bottom-up.
    BYTE* row = GetBits() + (GetHeight() - 1 - y) * m_LineWidth;
    const int bits = m_Header.biBitCount;
    if (bits == 8) {
        row[x] = index;
        return;
    }
    const int perByte = 8 / bits;
    const int shift = 8 - bits * (static_cast<int>(x % perByte) + 1);
    const BYTE mask = static_cast<BYTE>(((1 << bits) - 1) << shift);
    row[x / perByte] = static_cast<BYTE>((row[x / perByte] & ~mask) | ((index << shift) & mask));
}

BYTE CShadeDib::GetPixelIndex(long x, long y) const
{
    if (!m_pDib || x < 0 || y < 0 || x >= GetWidth() || y >= GetHeight() || m_Header.biBitCount > 8)
        return 0;
    const BYTE* row = GetBits() + (GetHeight() - 1 - y) * m_LineWidth;
    const int bits = m_Header.biBitCount;
    if (bits == 8)
        return row[x];
    const int perByte = 8 / bits;
    const int shift = 8 - bits * (static_cast<int>(x % perByte) + 1);
    return static_cast<BYTE>((row[x / perByte] >> shift) & ((1 << bits) - 1));
}

void CShadeDib::BlendPalette(COLORREF color, long percent)
{
    if (!m_pDib)
        return;
    if (percent > 100)
        percent = 100;
    RGBQUAD* pal = Palette();
    const long r = GetRValue(color);
    const long g = GetGValue(color);
    const long b = GetBValue(color);
    for (WORD i = 0; i < m_nColors; ++i) {
        pal[i].rgbRed = static_cast<BYTE>((pal[i].rgbRed * (100 - percent) + r * percent) / 100);
        pal[i].rgbGreen = static_cast<BYTE>((pal[i].rgbGreen * (100 - percent) + g * percent) / 100);
        pal[i].rgbBlue = static_cast<BYTE>((pal[i].rgbBlue * (100 - percent) + b * percent) / 100);
    }
}

void CShadeDib::Draw(HDC dc, long x, long y)
{
    if (!m_pDib || !dc)
        return;
    if (!m_hDibSection) {
        m_hDibSection = CreateDIBSection(dc, reinterpret_cast<const BITMAPINFO*>(m_pDib), DIB_RGB_COLORS,
                                         &m_lpSectionBits, nullptr, 0);
        if (m_hDibSection)
            m_hMemDC = CreateCompatibleDC(dc);
        if (!m_hDibSection || !m_hMemDC || !m_lpSectionBits) {
            // Whatever was made goes; nothing is drawn.
            if (m_hMemDC)
                DeleteDC(m_hMemDC);
            if (m_hDibSection)
                DeleteObject(m_hDibSection);
            m_hMemDC = nullptr;
            m_hDibSection = nullptr;
            m_lpSectionBits = nullptr;
            return;
        }
        SelectObject(m_hMemDC, m_hDibSection);
    }
    std::memcpy(m_lpSectionBits, GetBits(), static_cast<std::size_t>(m_LineWidth) * static_cast<std::size_t>(GetHeight()));
    BitBlt(dc, x, y, GetWidth(), GetHeight(), m_hMemDC, 0, 0, SRCCOPY);
}
