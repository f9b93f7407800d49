#include "ui/controls/cstatic.h"

#include "ui/controls/controlsupport_p.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

namespace {

using namespace vx::controls;


DWORD TypeOf(DWORD style)
{
    return style & SS_TYPEMASK;
}

bool IsImage(DWORD type)
{
    return type == SS_BITMAP || type == SS_ICON;
}

// Frames and rectangles paint only what they are; the rest of the control
// keeps what was drawn into it (the swatches of a dialog live there).
bool IsFrame(DWORD type)
{
    return type == SS_BLACKFRAME || type == SS_GRAYFRAME || type == SS_WHITEFRAME || type == SS_ETCHEDFRAME;
}

SIZE ImageSize(HANDLE image, UINT type)
{
    if (!image)
        return SIZE{0, 0};
    if (type == IMAGE_BITMAP) {
        BITMAP bm{};
        if (GetObjectA(image, sizeof bm, &bm))
            return SIZE{bm.bmWidth, bm.bmHeight};
        return SIZE{0, 0};
    }
    ICONINFO info{};
    if (!GetIconInfo(static_cast<HICON>(image), &info))
        return SIZE{0, 0};
    BITMAP bm{};
    GetObjectA(info.hbmColor ? info.hbmColor : info.hbmMask, sizeof bm, &bm);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return SIZE{bm.bmWidth, info.hbmColor ? bm.bmHeight : bm.bmHeight / 2};
}

} // namespace

CStatic::CStatic() = default;
CStatic::~CStatic() = default;

BOOL CStatic::Create(LPCSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx(text, "Static", style, rect, parent, id);
}

HBITMAP CStatic::SetBitmap(HBITMAP bitmap)
{
    return reinterpret_cast<HBITMAP>(SendMessage(STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap)));
}

HBITMAP CStatic::GetBitmap() const
{
    return reinterpret_cast<HBITMAP>(::SendMessageA(m_hWnd, STM_GETIMAGE, IMAGE_BITMAP, 0));
}

HICON CStatic::SetIcon(HICON icon)
{
    return reinterpret_cast<HICON>(SendMessage(STM_SETICON, reinterpret_cast<WPARAM>(icon)));
}

HICON CStatic::GetIcon() const
{
    return reinterpret_cast<HICON>(::SendMessageA(m_hWnd, STM_GETICON, 0, 0));
}

void CStatic::DrawItem(LPDRAWITEMSTRUCT) {}

BOOL CStatic::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message != WM_DRAWITEM)
        return CWnd::OnChildNotify(message, wParam, lParam, result);
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
    if (result)
        *result = TRUE;
    return TRUE;
}

void CStatic::FitToImage()
{
    const DWORD style = GetStyle();
    if (style & (SS_CENTERIMAGE | SS_REALSIZEIMAGE))
        return;
    const SIZE size = ImageSize(m_image, m_imageType);
    if (size.cx > 0 && size.cy > 0)
        SetWindowPos(nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT CStatic::PassToParent(UINT message, WPARAM wParam, LPARAM lParam)
{
    // The mouse falls through a plain static to the window below it.
    CWnd* parent = GetParent();
    if (!parent)
        return 0;
    CPoint p = PointOf(lParam);
    ClientToScreen(&p);
    parent->ScreenToClient(&p);
    return parent->SendMessage(message, wParam, MAKELPARAM(static_cast<WORD>(p.x), static_cast<WORD>(p.y)));
}

LRESULT CStatic::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    const DWORD type = TypeOf(GetStyle());
    switch (message) {
    case WM_PAINT:
        Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // painted whole in WM_PAINT, or left as it is inside a frame
    case WM_GETDLGCODE:
        return DLGC_STATIC;
    case WM_SETTEXT: {
        const LRESULT r = CWnd::DefWindowProc(message, wParam, lParam);
        if (!IsImage(type))
            Invalidate();
        return r;
    }
    case WM_ENABLE:
        Invalidate();
        return 0;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
        if (GetStyle() & SS_NOTIFY) {
            if (message == WM_LBUTTONDOWN)
                Notify(*this, STN_CLICKED);
            else if (message == WM_LBUTTONDBLCLK)
                Notify(*this, STN_DBLCLK);
            return 0;
        }
        return PassToParent(message, wParam, lParam);
    case WM_SETCURSOR:
        if (!(GetStyle() & SS_NOTIFY) && GetParent())
            return GetParent()->SendMessage(message, wParam, lParam);
        return FALSE;
    case STM_SETIMAGE:
    case STM_SETICON: {
        HANDLE old = m_image;
        m_imageType = message == STM_SETICON ? IMAGE_ICON : static_cast<UINT>(wParam);
        m_image = message == STM_SETICON ? reinterpret_cast<HANDLE>(wParam) : reinterpret_cast<HANDLE>(lParam);
        if (IsImage(type))
            FitToImage();
        Invalidate();
        return reinterpret_cast<LRESULT>(old);
    }
    case STM_GETIMAGE:
        return static_cast<UINT>(wParam) == m_imageType ? reinterpret_cast<LRESULT>(m_image) : 0;
    case STM_GETICON:
        return m_imageType == IMAGE_ICON ? reinterpret_cast<LRESULT>(m_image) : 0;
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}

void CStatic::Paint()
{
    CPaintDC dc(this);
    CRect r;
    GetClientRect(&r);
    const DWORD style = GetStyle();
    const DWORD type = TypeOf(style);
    switch (type) {
    case SS_BLACKRECT:
    case SS_GRAYRECT:
    case SS_WHITERECT:
    case SS_BLACKFRAME:
    case SS_GRAYFRAME:
    case SS_WHITEFRAME: {
        const int index = (type == SS_BLACKRECT || type == SS_BLACKFRAME) ? COLOR_WINDOWFRAME
                          : (type == SS_GRAYRECT || type == SS_GRAYFRAME) ? COLOR_BTNSHADOW
                                                                           : COLOR_BTNHIGHLIGHT;
        CBrush brush(GetSysColor(index));
        if (IsFrame(type))
            dc.FrameRect(&r, &brush);
        else
            dc.FillRect(&r, &brush);
        return;
    }
    case SS_ETCHEDFRAME:
        dc.DrawEdge(&r, EDGE_ETCHED, BF_RECT);
        return;
    case SS_ETCHEDHORZ:
        dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
        dc.DrawEdge(&r, EDGE_ETCHED, BF_TOP);
        return;
    case SS_ETCHEDVERT:
        dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
        dc.DrawEdge(&r, EDGE_ETCHED, BF_LEFT);
        return;
    case SS_OWNERDRAW: {
        DRAWITEMSTRUCT dis{};
        dis.CtlType = ODT_STATIC;
        dis.CtlID = GetDlgCtrlID();
        dis.itemAction = ODA_DRAWENTIRE;
        dis.itemState = IsWindowEnabled() ? 0 : ODS_DISABLED;
        dis.hwndItem = m_hWnd;
        dis.hDC = dc;
        dis.rcItem = r;
        if (CWnd* parent = GetParent())
            parent->SendMessage(WM_DRAWITEM, GetDlgCtrlID(), reinterpret_cast<LPARAM>(&dis));
        else
            DrawItem(&dis);
        return;
    }
    default:
        break;
    }
    HBRUSH brush = ParentColors(*this, dc, WM_CTLCOLORSTATIC, COLOR_BTNTEXT, COLOR_BTNFACE);
    if (!(GetExStyle() & WS_EX_TRANSPARENT))
        ::FillRect(dc, &r, brush);
    if (style & SS_SUNKEN)
        dc.DrawEdge(&r, BDR_SUNKENOUTER, BF_RECT | BF_ADJUST);
    if (IsImage(type)) {
        if (!m_image)
            return;
        const SIZE size = ImageSize(m_image, m_imageType);
        CPoint at(r.left, r.top);
        if (style & SS_CENTERIMAGE)
            at = CPoint(r.left + (r.Width() - size.cx) / 2, r.top + (r.Height() - size.cy) / 2);
        const UINT state = IsWindowEnabled() ? DSS_NORMAL : DSS_DISABLED;
        if (m_imageType == IMAGE_BITMAP)
            dc.DrawState(at, CSize(size), static_cast<HBITMAP>(m_image), DST_BITMAP | state);
        else
            dc.DrawState(at, CSize(size), static_cast<HICON>(m_image), DST_ICON | state);
        return;
    }
    const CString text = GetWindowTextString();
    HGDIOBJ oldFont = ::SelectObject(dc, FontOf(*this));
    dc.SetBkMode(TRANSPARENT);
    UINT format = DT_EXPANDTABS;
    if (style & SS_NOPREFIX)
        format |= DT_NOPREFIX;
    if (type == SS_CENTER)
        format |= DT_CENTER | DT_WORDBREAK;
    else if (type == SS_RIGHT)
        format |= DT_RIGHT | DT_WORDBREAK;
    else if (type == SS_SIMPLE || type == SS_LEFTNOWORDWRAP)
        format |= DT_SINGLELINE;
    else
        format |= DT_WORDBREAK;
    if ((style & SS_WORDELLIPSIS) == SS_ENDELLIPSIS)
        format |= DT_END_ELLIPSIS | DT_SINGLELINE;
    else if ((style & SS_WORDELLIPSIS) == SS_PATHELLIPSIS)
        format |= DT_PATH_ELLIPSIS | DT_SINGLELINE;
    else if ((style & SS_WORDELLIPSIS) == SS_WORDELLIPSIS)
        format |= DT_WORD_ELLIPSIS | DT_SINGLELINE;
    if ((style & SS_CENTERIMAGE) && (format & DT_SINGLELINE))
        format |= DT_VCENTER;
    if (IsWindowEnabled()) {
        dc.DrawText(text, &r, format);
    } else {
        // The system's grey text: embossed in highlight and shadow.
        CRect light(r);
        light.OffsetRect(1, 1);
        dc.SetTextColor(GetSysColor(COLOR_BTNHIGHLIGHT));
        dc.DrawText(text, &light, format);
        dc.SetTextColor(GetSysColor(COLOR_GRAYTEXT));
        dc.DrawText(text, &r, format);
    }
    ::SelectObject(dc, oldFont);
}
