#include "ui/gdi/cgdiobject.h"

#include "ui/images/cbitmap.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/handlemap_p.h"

#include "platform/windows/cwnd.h"

#include <cstring>
#include <utility>

namespace {

template <class Wrapper, class Handle>
Wrapper* Wrap(Handle handle)
{
    return vx::WrapperOf<Wrapper, Handle>(handle, [](Handle h) { return vx::gdi::Find(h) != nullptr; });
}

// CWnd::SetFont and GetFont reach fonts through this bridge.
const bool g_fontBridge = [] {
    vx::FontBridge bridge;
    bridge.handleOf = [](CFont* font) { return font ? static_cast<HFONT>(font->m_hObject) : nullptr; };
    bridge.fromHandle = [](HFONT font) { return CFont::FromHandle(font); };
    vx::SetFontBridge(bridge);
    return true;
}();

} // namespace

CGdiObject::CGdiObject() = default;

CGdiObject::~CGdiObject()
{
    DeleteObject();
}

BOOL CGdiObject::Attach(HGDIOBJ object)
{
    if (m_hObject || !object)
        return FALSE;
    m_hObject = object;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach()
{
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject()
{
    if (!m_hObject)
        return FALSE;
    if (!::DeleteObject(m_hObject))
        return FALSE;
    m_hObject = nullptr;
    return TRUE;
}

int CGdiObject::GetObject(int size, void* out) const
{
    return ::GetObjectA(m_hObject, size, out);
}

BOOL CGdiObject::CreateStockObject(int index)
{
    return Attach(::GetStockObject(index));
}

BOOL CGdiObject::UnrealizeObject()
{
    return ::UnrealizeObject(m_hObject);
}

CGdiObject* CGdiObject::FromHandle(HGDIOBJ object)
{
    return Wrap<CGdiObject>(object);
}

CPen::CPen() = default;

CPen::CPen(int style, int width, COLORREF color)
{
    CreatePen(style, width, color);
}

BOOL CPen::CreatePen(int style, int width, COLORREF color)
{
    return Attach(::CreatePen(style, width, color));
}

BOOL CPen::CreatePenIndirect(const LOGPEN* pen)
{
    return Attach(::CreatePenIndirect(pen));
}

int CPen::GetLogPen(LOGPEN* pen) const
{
    return GetObject(sizeof(LOGPEN), pen);
}

CPen* CPen::FromHandle(HPEN pen)
{
    return Wrap<CPen>(pen);
}

CBrush::CBrush() = default;

CBrush::CBrush(COLORREF color)
{
    CreateSolidBrush(color);
}

CBrush::CBrush(int hatch, COLORREF color)
{
    CreateHatchBrush(hatch, color);
}

CBrush::CBrush(CBitmap* pattern)
{
    CreatePatternBrush(pattern);
}

BOOL CBrush::CreateSolidBrush(COLORREF color)
{
    return Attach(::CreateSolidBrush(color));
}

BOOL CBrush::CreateHatchBrush(int hatch, COLORREF color)
{
    return Attach(::CreateHatchBrush(hatch, color));
}

BOOL CBrush::CreatePatternBrush(CBitmap* pattern)
{
    return pattern && Attach(::CreatePatternBrush(static_cast<HBITMAP>(pattern->m_hObject)));
}

BOOL CBrush::CreateBrushIndirect(const LOGBRUSH* brush)
{
    return Attach(::CreateBrushIndirect(brush));
}

BOOL CBrush::CreateSysColorBrush(int index)
{
    return Attach(::GetSysColorBrush(index));
}

int CBrush::GetLogBrush(LOGBRUSH* brush) const
{
    return GetObject(sizeof(LOGBRUSH), brush);
}

CBrush* CBrush::FromHandle(HBRUSH brush)
{
    return Wrap<CBrush>(brush);
}

CFont::CFont() = default;

BOOL CFont::CreateFontIndirect(const LOGFONTA* font)
{
    return Attach(::CreateFontIndirectA(font));
}

BOOL CFont::CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic,
                       BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision, BYTE clipPrecision,
                       BYTE quality, BYTE pitchAndFamily, LPCSTR face)
{
    return Attach(::CreateFontA(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                                outPrecision, clipPrecision, quality, pitchAndFamily, face));
}

BOOL CFont::CreatePointFont(int pointSize10, LPCSTR face, CDC*)
{
    LOGFONTA lf{};
    // Points to pixels at 96 per inch, rounded.
    lf.lfHeight = -((pointSize10 * 96 + 360) / 720);
    lf.lfWeight = FW_NORMAL;
    lf.lfCharSet = DEFAULT_CHARSET;
    if (face)
        std::strncpy(lf.lfFaceName, face, LF_FACESIZE - 1);
    return CreateFontIndirect(&lf);
}

int CFont::GetLogFont(LOGFONTA* font) const
{
    return GetObject(sizeof(LOGFONTA), font);
}

CFont* CFont::FromHandle(HFONT font)
{
    return Wrap<CFont>(font);
}

CRgn::CRgn() = default;

BOOL CRgn::CreateRectRgn(int left, int top, int right, int bottom)
{
    return Attach(::CreateRectRgn(left, top, right, bottom));
}

BOOL CRgn::CreateRectRgnIndirect(const RECT* rect)
{
    return Attach(::CreateRectRgnIndirect(rect));
}

int CRgn::CombineRgn(const CRgn* a, const CRgn* b, int mode)
{
    return ::CombineRgn(static_cast<HRGN>(m_hObject), a ? static_cast<HRGN>(a->m_hObject) : nullptr,
                        b ? static_cast<HRGN>(b->m_hObject) : nullptr, mode);
}

BOOL CRgn::PtInRegion(int x, int y) const
{
    return ::PtInRegion(static_cast<HRGN>(m_hObject), x, y);
}

int CRgn::GetRgnBox(RECT* box) const
{
    return ::GetRgnBox(static_cast<HRGN>(m_hObject), box);
}

int CRgn::OffsetRgn(int dx, int dy)
{
    return ::OffsetRgn(static_cast<HRGN>(m_hObject), dx, dy);
}

CRgn* CRgn::FromHandle(HRGN region)
{
    return Wrap<CRgn>(region);
}
