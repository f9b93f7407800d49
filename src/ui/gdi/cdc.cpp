#include "ui/gdi/cdc.h"

#include "ui/images/cbitmap.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/handlemap_p.h"

#include "platform/windows/cwnd.h"

#include <utility>

CDC::CDC() = default;

CDC::~CDC()
{
    // As the framework's: a device still held is deleted with the object.
    if (m_hDC)
        ::DeleteDC(Detach());
}

BOOL CDC::Attach(HDC dc)
{
    if (m_hDC || !dc)
        return FALSE;
    m_hDC = dc;
    return TRUE;
}

HDC CDC::Detach()
{
    return std::exchange(m_hDC, nullptr);
}

CDC* CDC::FromHandle(HDC dc)
{
    return vx::WrapperOf<CDC, HDC>(dc, [](HDC h) { return vx::gdi::Find(h) != nullptr; });
}

BOOL CDC::CreateCompatibleDC(CDC* dc)
{
    return Attach(::CreateCompatibleDC(dc ? dc->m_hDC : nullptr));
}

BOOL CDC::DeleteDC()
{
    if (!m_hDC)
        return FALSE;
    return ::DeleteDC(Detach());
}

CWnd* CDC::GetWindow() const
{
    return CWnd::FromHandle(::WindowFromDC(m_hDC));
}

int CDC::SaveDC()
{
    return ::SaveDC(m_hDC);
}

BOOL CDC::RestoreDC(int saved)
{
    return ::RestoreDC(m_hDC, saved);
}

int CDC::GetDeviceCaps(int index) const
{
    return ::GetDeviceCaps(m_hDC, index);
}

COLORREF CDC::GetNearestColor(COLORREF color) const
{
    return ::GetNearestColor(m_hDC, color);
}

CPen* CDC::SelectObject(CPen* pen)
{
    return pen ? CPen::FromHandle(static_cast<HPEN>(::SelectObject(m_hDC, pen->m_hObject))) : nullptr;
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    return brush ? CBrush::FromHandle(static_cast<HBRUSH>(::SelectObject(m_hDC, brush->m_hObject))) : nullptr;
}

CFont* CDC::SelectObject(CFont* font)
{
    return font ? CFont::FromHandle(static_cast<HFONT>(::SelectObject(m_hDC, font->m_hObject))) : nullptr;
}

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    return bitmap ? CBitmap::FromHandle(static_cast<HBITMAP>(::SelectObject(m_hDC, bitmap->m_hObject))) : nullptr;
}

int CDC::SelectObject(CRgn* region)
{
    return ::SelectClipRgn(m_hDC, region ? static_cast<HRGN>(region->m_hObject) : nullptr);
}

HGDIOBJ CDC::SelectObject(HGDIOBJ object)
{
    return ::SelectObject(m_hDC, object);
}

CGdiObject* CDC::SelectStockObject(int index)
{
    HGDIOBJ stock = ::GetStockObject(index);
    return stock ? CGdiObject::FromHandle(::SelectObject(m_hDC, stock)) : nullptr;
}

CPen* CDC::GetCurrentPen() const
{
    return CPen::FromHandle(static_cast<HPEN>(::GetCurrentObject(m_hDC, OBJ_PEN)));
}

CBrush* CDC::GetCurrentBrush() const
{
    return CBrush::FromHandle(static_cast<HBRUSH>(::GetCurrentObject(m_hDC, OBJ_BRUSH)));
}

CFont* CDC::GetCurrentFont() const
{
    return CFont::FromHandle(static_cast<HFONT>(::GetCurrentObject(m_hDC, OBJ_FONT)));
}

CBitmap* CDC::GetCurrentBitmap() const
{
    return CBitmap::FromHandle(static_cast<HBITMAP>(::GetCurrentObject(m_hDC, OBJ_BITMAP)));
}

COLORREF CDC::SetTextColor(COLORREF color)
{
    return ::SetTextColor(m_hDC, color);
}

COLORREF CDC::GetTextColor() const
{
    return ::GetTextColor(m_hDC);
}

COLORREF CDC::SetBkColor(COLORREF color)
{
    return ::SetBkColor(m_hDC, color);
}

COLORREF CDC::GetBkColor() const
{
    return ::GetBkColor(m_hDC);
}

int CDC::SetBkMode(int mode)
{
    return ::SetBkMode(m_hDC, mode);
}

int CDC::GetBkMode() const
{
    return ::GetBkMode(m_hDC);
}

int CDC::SetROP2(int mode)
{
    return ::SetROP2(m_hDC, mode);
}

int CDC::GetROP2() const
{
    return ::GetROP2(m_hDC);
}

UINT CDC::SetTextAlign(UINT align)
{
    return ::SetTextAlign(m_hDC, align);
}

int CDC::SetPolyFillMode(int mode)
{
    return ::SetPolyFillMode(m_hDC, mode);
}

int CDC::SetStretchBltMode(int mode)
{
    return ::SetStretchBltMode(m_hDC, mode);
}

CPoint CDC::SetWindowOrg(int x, int y)
{
    POINT old{};
    ::SetWindowOrgEx(m_hDC, x, y, &old);
    return CPoint(old);
}

CPoint CDC::GetWindowOrg() const
{
    POINT p{};
    ::GetWindowOrgEx(m_hDC, &p);
    return CPoint(p);
}

CPoint CDC::SetViewportOrg(int x, int y)
{
    POINT old{};
    ::SetViewportOrgEx(m_hDC, x, y, &old);
    return CPoint(old);
}

CPoint CDC::GetViewportOrg() const
{
    POINT p{};
    ::GetViewportOrgEx(m_hDC, &p);
    return CPoint(p);
}

CPoint CDC::OffsetViewportOrg(int dx, int dy)
{
    POINT old{};
    ::OffsetViewportOrgEx(m_hDC, dx, dy, &old);
    return CPoint(old);
}

CPoint CDC::SetBrushOrg(int x, int y)
{
    POINT old{};
    ::SetBrushOrgEx(m_hDC, x, y, &old);
    return CPoint(old);
}

CPoint CDC::GetBrushOrg() const
{
    POINT p{};
    ::GetBrushOrgEx(m_hDC, &p);
    return CPoint(p);
}

void CDC::LPtoDP(POINT* points, int count) const
{
    ::LPtoDP(m_hDC, points, count);
}

void CDC::LPtoDP(RECT* rect) const
{
    ::LPtoDP(m_hDC, reinterpret_cast<POINT*>(rect), 2);
}

void CDC::DPtoLP(POINT* points, int count) const
{
    ::DPtoLP(m_hDC, points, count);
}

void CDC::DPtoLP(RECT* rect) const
{
    ::DPtoLP(m_hDC, reinterpret_cast<POINT*>(rect), 2);
}

int CDC::IntersectClipRect(int left, int top, int right, int bottom)
{
    return ::IntersectClipRect(m_hDC, left, top, right, bottom);
}

int CDC::IntersectClipRect(const RECT* rect)
{
    return rect ? IntersectClipRect(rect->left, rect->top, rect->right, rect->bottom) : RGN_ERROR;
}

int CDC::ExcludeClipRect(int left, int top, int right, int bottom)
{
    return ::ExcludeClipRect(m_hDC, left, top, right, bottom);
}

int CDC::ExcludeClipRect(const RECT* rect)
{
    return rect ? ExcludeClipRect(rect->left, rect->top, rect->right, rect->bottom) : RGN_ERROR;
}

int CDC::SelectClipRgn(CRgn* region)
{
    return ::SelectClipRgn(m_hDC, region ? static_cast<HRGN>(region->m_hObject) : nullptr);
}

int CDC::GetClipBox(RECT* box) const
{
    return ::GetClipBox(m_hDC, box);
}

BOOL CDC::PtVisible(int x, int y) const
{
    return ::PtVisible(m_hDC, x, y);
}

BOOL CDC::RectVisible(const RECT* rect) const
{
    return ::RectVisible(m_hDC, rect);
}

COLORREF CDC::GetPixel(int x, int y) const
{
    return ::GetPixel(m_hDC, x, y);
}

COLORREF CDC::SetPixel(int x, int y, COLORREF color)
{
    return ::SetPixel(m_hDC, x, y, color);
}

BOOL CDC::SetPixelV(int x, int y, COLORREF color)
{
    return ::SetPixelV(m_hDC, x, y, color);
}

void CDC::FillRect(const RECT* rect, CBrush* brush)
{
    if (brush)
        ::FillRect(m_hDC, rect, static_cast<HBRUSH>(brush->m_hObject));
}

void CDC::FillSolidRect(const RECT* rect, COLORREF color)
{
    ::SetBkColor(m_hDC, color);
    ::ExtTextOutA(m_hDC, 0, 0, ETO_OPAQUE, rect, nullptr, 0, nullptr);
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF color)
{
    const RECT r{x, y, x + cx, y + cy};
    FillSolidRect(&r, color);
}

void CDC::FrameRect(const RECT* rect, CBrush* brush)
{
    if (brush)
        ::FrameRect(m_hDC, rect, static_cast<HBRUSH>(brush->m_hObject));
}

void CDC::InvertRect(const RECT* rect)
{
    ::InvertRect(m_hDC, rect);
}

void CDC::Draw3dRect(const RECT* rect, COLORREF topLeft, COLORREF bottomRight)
{
    if (rect)
        Draw3dRect(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, topLeft, bottomRight);
}

void CDC::Draw3dRect(int x, int y, int cx, int cy, COLORREF topLeft, COLORREF bottomRight)
{
    FillSolidRect(x, y, cx - 1, 1, topLeft);
    FillSolidRect(x, y, 1, cy - 1, topLeft);
    FillSolidRect(x + cx, y, -1, cy, bottomRight);
    FillSolidRect(x, y + cy, cx, -1, bottomRight);
}

void CDC::DrawFocusRect(const RECT* rect)
{
    ::DrawFocusRect(m_hDC, rect);
}

BOOL CDC::DrawEdge(RECT* rect, UINT edge, UINT flags)
{
    return ::DrawEdge(m_hDC, rect, edge, flags);
}

CPoint CDC::MoveTo(int x, int y)
{
    POINT old{};
    ::MoveToEx(m_hDC, x, y, &old);
    return CPoint(old);
}

BOOL CDC::LineTo(int x, int y)
{
    return ::LineTo(m_hDC, x, y);
}

BOOL CDC::Polyline(const POINT* points, int count)
{
    return ::Polyline(m_hDC, points, count);
}

BOOL CDC::Rectangle(int left, int top, int right, int bottom)
{
    return ::Rectangle(m_hDC, left, top, right, bottom);
}

BOOL CDC::Rectangle(const RECT* rect)
{
    return rect && Rectangle(rect->left, rect->top, rect->right, rect->bottom);
}

BOOL CDC::RoundRect(int left, int top, int right, int bottom, int width, int height)
{
    return ::RoundRect(m_hDC, left, top, right, bottom, width, height);
}

BOOL CDC::RoundRect(const RECT* rect, POINT corner)
{
    return rect && RoundRect(rect->left, rect->top, rect->right, rect->bottom, corner.x, corner.y);
}

BOOL CDC::Ellipse(int left, int top, int right, int bottom)
{
    return ::Ellipse(m_hDC, left, top, right, bottom);
}

BOOL CDC::Ellipse(const RECT* rect)
{
    return rect && Ellipse(rect->left, rect->top, rect->right, rect->bottom);
}

BOOL CDC::Polygon(const POINT* points, int count)
{
    return ::Polygon(m_hDC, points, count);
}

BOOL CDC::GradientFill(TRIVERTEX* vertices, ULONG vertexCount, void* mesh, ULONG meshCount, ULONG mode)
{
    return ::GradientFill(m_hDC, vertices, vertexCount, mesh, meshCount, mode);
}

BOOL CDC::PatBlt(int x, int y, int width, int height, DWORD rop)
{
    return ::PatBlt(m_hDC, x, y, width, height, rop);
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sx, int sy, DWORD rop)
{
    return ::BitBlt(m_hDC, x, y, width, height, source ? source->m_hDC : nullptr, sx, sy, rop);
}

BOOL CDC::StretchBlt(int x, int y, int width, int height, CDC* source, int sx, int sy, int sourceWidth,
                     int sourceHeight, DWORD rop)
{
    return ::StretchBlt(m_hDC, x, y, width, height, source ? source->m_hDC : nullptr, sx, sy, sourceWidth,
                        sourceHeight, rop);
}

BOOL CDC::TransparentBlt(int x, int y, int width, int height, CDC* source, int sx, int sy, int sourceWidth,
                         int sourceHeight, UINT transparent)
{
    return ::TransparentBlt(m_hDC, x, y, width, height, source ? source->m_hDC : nullptr, sx, sy, sourceWidth,
                            sourceHeight, transparent);
}

BOOL CDC::DrawIcon(int x, int y, HICON icon)
{
    return ::DrawIcon(m_hDC, x, y, icon);
}

BOOL CDC::DrawState(CPoint point, CSize size, HICON icon, UINT flags, HBRUSH brush)
{
    return ::DrawStateA(m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(icon), 0, point.x, point.y, size.cx, size.cy,
                        (flags & ~0x000Fu) | DST_ICON);
}

BOOL CDC::DrawState(CPoint point, CSize size, HICON icon, UINT flags, CBrush* brush)
{
    return DrawState(point, size, icon, flags, brush ? static_cast<HBRUSH>(brush->m_hObject) : nullptr);
}

BOOL CDC::DrawState(CPoint point, CSize size, HBITMAP bitmap, UINT flags, HBRUSH brush)
{
    return ::DrawStateA(m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(bitmap), 0, point.x, point.y, size.cx,
                        size.cy, (flags & ~0x000Fu) | DST_BITMAP);
}

BOOL CDC::DrawState(CPoint point, CSize size, CBitmap* bitmap, UINT flags, CBrush* brush)
{
    return bitmap && DrawState(point, size, static_cast<HBITMAP>(bitmap->m_hObject), flags,
                               brush ? static_cast<HBRUSH>(brush->m_hObject) : nullptr);
}

BOOL CDC::DrawState(CPoint point, CSize size, LPCSTR text, UINT flags, BOOL prefixText, int textLength, HBRUSH brush)
{
    return ::DrawStateA(m_hDC, brush, nullptr, reinterpret_cast<LPARAM>(text), static_cast<WPARAM>(textLength),
                        point.x, point.y, size.cx, size.cy,
                        (flags & ~0x000Fu) | (prefixText ? DST_PREFIXTEXT : DST_TEXT));
}

int CDC::DrawText(LPCSTR text, int count, RECT* rect, UINT format)
{
    return ::DrawTextA(m_hDC, text, count, rect, format);
}

int CDC::DrawText(const CString& text, RECT* rect, UINT format)
{
    return ::DrawTextA(m_hDC, text.GetString(), text.GetLength(), rect, format);
}

BOOL CDC::TextOut(int x, int y, LPCSTR text, int count)
{
    return ::TextOutA(m_hDC, x, y, text, count);
}

BOOL CDC::TextOut(int x, int y, const CString& text)
{
    return ::TextOutA(m_hDC, x, y, text.GetString(), text.GetLength());
}

BOOL CDC::ExtTextOut(int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT count, const int* dx)
{
    return ::ExtTextOutA(m_hDC, x, y, options, rect, text, count, dx);
}

BOOL CDC::ExtTextOut(int x, int y, UINT options, const RECT* rect, const CString& text, const int* dx)
{
    return ::ExtTextOutA(m_hDC, x, y, options, rect, text.GetString(), static_cast<UINT>(text.GetLength()), dx);
}

CSize CDC::GetTextExtent(LPCSTR text, int count) const
{
    SIZE s{};
    ::GetTextExtentPoint32A(m_hDC, text, count, &s);
    return CSize(s);
}

CSize CDC::GetTextExtent(const CString& text) const
{
    return GetTextExtent(text.GetString(), text.GetLength());
}

BOOL CDC::GetTextMetrics(TEXTMETRICA* metrics) const
{
    return ::GetTextMetricsA(m_hDC, metrics);
}

int CDC::GetTextFace(CString& face) const
{
    char name[LF_FACESIZE] = {};
    const int n = ::GetTextFaceA(m_hDC, LF_FACESIZE, name);
    face = name;
    return n;
}

CPaintDC::CPaintDC(CWnd* window) : m_hWnd(window ? window->m_hWnd : nullptr)
{
    Attach(::BeginPaint(m_hWnd, &m_ps));
}

CPaintDC::~CPaintDC()
{
    if (m_hDC) {
        ::EndPaint(m_hWnd, &m_ps);
        Detach();
    }
}

CClientDC::CClientDC(CWnd* window) : m_hWnd(window ? window->m_hWnd : nullptr)
{
    Attach(::GetDC(m_hWnd));
}

CClientDC::~CClientDC()
{
    if (m_hDC)
        ::ReleaseDC(m_hWnd, Detach());
}

CWindowDC::CWindowDC(CWnd* window) : m_hWnd(window ? window->m_hWnd : nullptr)
{
    Attach(::GetWindowDC(m_hWnd));
}

CWindowDC::~CWindowDC()
{
    if (m_hDC)
        ::ReleaseDC(m_hWnd, Detach());
}
