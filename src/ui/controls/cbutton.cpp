#include "ui/controls/cbutton.h"

#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/windows/sysmetrics.h"

#include <cstring>

namespace {

DWORD TypeOf(DWORD style)
{
    return style & BS_TYPEMASK;
}

bool IsCheckType(DWORD type)
{
    return type == BS_CHECKBOX || type == BS_AUTOCHECKBOX || type == BS_3STATE || type == BS_AUTO3STATE;
}

bool IsRadioType(DWORD type)
{
    return type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON;
}

} // namespace

CButton::CButton() = default;
CButton::~CButton() = default;

BOOL CButton::Create(LPCSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx(caption, "Button", style, rect, parent, id);
}

UINT CButton::GetState() const
{
    return static_cast<UINT>(::SendMessageA(m_hWnd, BM_GETSTATE, 0, 0));
}

void CButton::SetState(BOOL highlight)
{
    ::SendMessageA(m_hWnd, BM_SETSTATE, highlight, 0);
}

int CButton::GetCheck() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, BM_GETCHECK, 0, 0));
}

void CButton::SetCheck(int check)
{
    ::SendMessageA(m_hWnd, BM_SETCHECK, static_cast<WPARAM>(check), 0);
}

UINT CButton::GetButtonStyle() const
{
    return GetStyle() & 0xFFFF;
}

void CButton::SetButtonStyle(UINT style, BOOL redraw)
{
    ::SendMessageA(m_hWnd, BM_SETSTYLE, style, redraw);
}

HICON CButton::SetIcon(HICON icon)
{
    return reinterpret_cast<HICON>(
        ::SendMessageA(m_hWnd, BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon)));
}

HICON CButton::GetIcon() const
{
    return reinterpret_cast<HICON>(::SendMessageA(m_hWnd, BM_GETIMAGE, IMAGE_ICON, 0));
}

HBITMAP CButton::SetBitmap(HBITMAP bitmap)
{
    return reinterpret_cast<HBITMAP>(
        ::SendMessageA(m_hWnd, BM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap)));
}

HBITMAP CButton::GetBitmap() const
{
    return reinterpret_cast<HBITMAP>(::SendMessageA(m_hWnd, BM_GETIMAGE, IMAGE_BITMAP, 0));
}

void CButton::DrawItem(LPDRAWITEMSTRUCT) {}

BOOL CButton::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message != WM_DRAWITEM)
        return CWnd::OnChildNotify(message, wParam, lParam, result);
    DrawItem(reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
    if (result)
        *result = TRUE;
    return TRUE;
}

void CButton::Redraw()
{
    Invalidate(FALSE);
}

void CButton::Click()
{
    const DWORD type = TypeOf(GetStyle());
    const HWND self = m_hWnd;
    if (type == BS_AUTOCHECKBOX) {
        SendMessage(BM_SETCHECK, m_check == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED);
    } else if (type == BS_AUTO3STATE) {
        SendMessage(BM_SETCHECK, (m_check + 1) % 3);
    } else if (type == BS_AUTORADIOBUTTON) {
        SendMessage(BM_SETCHECK, BST_CHECKED);
        if (CWnd* parent = GetParent()) {
            int guard = 0;
            for (CWnd* w = parent->GetNextDlgGroupItem(this); w && w != this && guard < 1000;
                 w = parent->GetNextDlgGroupItem(w), ++guard) {
                if (IsRadioType(TypeOf(w->GetStyle())))
                    w->SendMessage(BM_SETCHECK, BST_UNCHECKED);
            }
        }
    }
    if (!IsWindow(self))
        return;
    Notify(BN_CLICKED);
}

void CButton::Notify(UINT code)
{
    if (CWnd* parent = GetParent())
        parent->SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID()), static_cast<WORD>(code)),
                            reinterpret_cast<LPARAM>(m_hWnd));
}

LRESULT CButton::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    const DWORD type = TypeOf(GetStyle());
    switch (message) {
    case WM_PAINT:
        Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // the button paints all of itself
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        if (type == BS_GROUPBOX)
            return 0;
        if (message == WM_LBUTTONDBLCLK && ((GetStyle() & BS_NOTIFY) || IsRadioType(type) || type == BS_OWNERDRAW)) {
            const HWND self = m_hWnd;
            Notify(BN_DOUBLECLICKED);
            if (!IsWindow(self))
                return 0;
        }
        SetFocus();
        SetCapture();
        m_tracking = true;
        if (!m_pushed) {
            m_pushed = true;
            Redraw();
        }
        return 0;
    case WM_MOUSEMOVE:
        if (m_tracking) {
            CRect client;
            GetClientRect(&client);
            const bool inside = client.PtInRect(CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)));
            if (inside != m_pushed) {
                m_pushed = inside;
                Redraw();
            }
        }
        return 0;
    case WM_LBUTTONUP:
        if (m_tracking) {
            m_tracking = false;
            const bool click = m_pushed;
            m_pushed = false;
            ReleaseCapture();
            Redraw();
            if (click)
                Click();
        }
        return 0;
    case WM_CAPTURECHANGED:
    case WM_CANCELMODE:
        if (m_tracking) {
            m_tracking = false;
            m_pushed = false;
            Redraw();
        }
        return 0;
    case WM_KEYDOWN:
        if (wParam == VK_SPACE && type != BS_GROUPBOX) {
            m_spaceDown = true;
            if (!m_pushed) {
                m_pushed = true;
                Redraw();
            }
        }
        return 0;
    case WM_KEYUP:
        if (wParam == VK_SPACE && m_spaceDown) {
            m_spaceDown = false;
            m_pushed = false;
            Redraw();
            Click();
        }
        return 0;
    case WM_SETFOCUS:
        m_focused = true;
        Redraw();
        if (GetStyle() & BS_NOTIFY)
            Notify(BN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        m_focused = false;
        if (m_spaceDown) {
            m_spaceDown = false;
            m_pushed = false;
        }
        Redraw();
        if (GetStyle() & BS_NOTIFY)
            Notify(BN_KILLFOCUS);
        return 0;
    case WM_ENABLE:
        Redraw();
        return 0;
    case WM_GETDLGCODE:
        if (type == BS_DEFPUSHBUTTON)
            return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        if (type == BS_PUSHBUTTON)
            return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        if (IsRadioType(type))
            return DLGC_BUTTON | DLGC_RADIOBUTTON;
        return DLGC_BUTTON;
    case BM_GETCHECK:
        return m_check;
    case BM_SETCHECK:
        if (IsCheckType(type) || IsRadioType(type) || type == BS_OWNERDRAW) {
            const int check = static_cast<int>(wParam) == BST_INDETERMINATE &&
                                      (type == BS_3STATE || type == BS_AUTO3STATE)
                                  ? BST_INDETERMINATE
                                  : (wParam ? BST_CHECKED : BST_UNCHECKED);
            if (check != m_check) {
                m_check = check;
                Redraw();
            }
        }
        return 0;
    case BM_GETSTATE:
        return m_check | (m_pushed ? BST_PUSHED : 0) | (m_focused ? BST_FOCUS : 0);
    case BM_SETSTATE:
        if (static_cast<bool>(wParam) != m_pushed) {
            m_pushed = wParam != 0;
            Redraw();
        }
        return 0;
    case BM_SETSTYLE:
        ModifyStyle(0xFFFF, static_cast<DWORD>(wParam) & 0xFFFF);
        if (lParam)
            Redraw();
        return 0;
    case BM_CLICK: {
        // As the system's: a press and a release of the left button, which
        // a class that draws itself sees as its own click.
        const HWND self = m_hWnd;
        SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, 0);
        if (IsWindow(self))
            SendMessage(WM_LBUTTONUP, 0, 0);
        return 0;
    }
    case BM_SETIMAGE: {
        HANDLE old = m_image;
        m_image = reinterpret_cast<HANDLE>(lParam);
        Redraw();
        return reinterpret_cast<LRESULT>(old);
    }
    case BM_GETIMAGE:
        return reinterpret_cast<LRESULT>(m_image);
    case WM_SETTEXT:
    case WM_SETFONT: {
        const LRESULT r = CWnd::DefWindowProc(message, wParam, lParam);
        ShapeGroup();
        Redraw();
        return r;
    }
    case WM_CREATE:
    case WM_SIZE:
        ShapeGroup();
        return 0;
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}

void CButton::ShapeGroup()
{
    // A group box is its frame and its caption: the controls inside it,
    // which lie below it, show through and take the mouse.
    if (TypeOf(GetStyle()) != BS_GROUPBOX || !m_hWnd)
        return;
    CRect r;
    GetClientRect(&r);
    CClientDC dc(this);
    HFONT font = reinterpret_cast<HFONT>(SendMessage(WM_GETFONT));
    HGDIOBJ old = ::SelectObject(dc, font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    const CString text = GetWindowTextString();
    const CSize extent = text.IsEmpty() ? CSize(0, 0) : dc.GetTextExtent(text);
    ::SelectObject(dc, old);
    const int frameTop = r.top + tm.tmHeight / 2;
    HRGN shape = CreateRectRgn(r.left, frameTop, r.right, r.bottom);
    HRGN inside = CreateRectRgn(r.left + 2, frameTop + 2, r.right - 2, r.bottom - 2);
    CombineRgn(shape, shape, inside, RGN_DIFF);
    DeleteObject(inside);
    if (extent.cx > 0) {
        HRGN caption = CreateRectRgn(r.left + 8, r.top, r.left + 8 + extent.cx + 4, r.top + tm.tmHeight);
        CombineRgn(shape, shape, caption, RGN_OR);
        DeleteObject(caption);
    }
    SetWindowRgn(m_hWnd, shape, TRUE);
}

void CButton::Paint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(&client);
    HFONT font = reinterpret_cast<HFONT>(SendMessage(WM_GETFONT));
    if (!font)
        font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    HGDIOBJ oldFont = ::SelectObject(dc, font);
    UINT state = 0;
    if (m_pushed)
        state |= ODS_SELECTED;
    if (m_focused)
        state |= ODS_FOCUS;
    if (!IsWindowEnabled())
        state |= ODS_DISABLED;
    if (m_check == BST_CHECKED)
        state |= ODS_CHECKED;
    if (TypeOf(GetStyle()) == BS_OWNERDRAW) {
        DRAWITEMSTRUCT dis{};
        dis.CtlType = ODT_BUTTON;
        dis.CtlID = GetDlgCtrlID();
        dis.itemAction = ODA_DRAWENTIRE;
        dis.itemState = state;
        dis.hwndItem = m_hWnd;
        dis.hDC = dc;
        dis.rcItem = client;
        if (CWnd* parent = GetParent())
            parent->SendMessage(WM_DRAWITEM, GetDlgCtrlID(), reinterpret_cast<LPARAM>(&dis));
        else
            DrawItem(&dis);
    } else {
        PaintPlain(dc, client, state);
    }
    if (dc.m_hDC)
        ::SelectObject(dc, oldFont);
}

void CButton::PaintPlain(HDC hdc, const RECT& client, UINT state)
{
    CDC* dc = CDC::FromHandle(hdc);
    const DWORD style = GetStyle();
    const DWORD type = TypeOf(style);
    const CString text = GetWindowTextString();
    const bool disabled = state & ODS_DISABLED;
    CRect r(client);
    dc->FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(GetSysColor(disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    auto drawText = [&](CRect area, UINT format) {
        if (disabled) {
            // The classic grey text: a light copy below and right, then grey.
            CRect light(area);
            light.OffsetRect(1, 1);
            dc->SetTextColor(GetSysColor(COLOR_3DHILIGHT));
            dc->DrawText(text, &light, format);
            dc->SetTextColor(GetSysColor(COLOR_GRAYTEXT));
        }
        dc->DrawText(text, &area, format);
    };
    if (type == BS_GROUPBOX) {
        TEXTMETRICA tm{};
        dc->GetTextMetrics(&tm);
        CRect frame(r.left, r.top + tm.tmHeight / 2, r.right, r.bottom);
        dc->DrawEdge(&frame, EDGE_ETCHED, BF_RECT);
        const CSize extent = dc->GetTextExtent(text);
        CRect caption(r.left + 8, r.top, r.left + 8 + extent.cx + 4, r.top + tm.tmHeight);
        dc->FillSolidRect(&caption, GetSysColor(COLOR_BTNFACE));
        caption.left += 2;
        drawText(caption, DT_SINGLELINE | DT_LEFT | DT_TOP);
        return;
    }
    if ((IsCheckType(type) || IsRadioType(type)) && !(style & BS_PUSHLIKE)) {
        const int box = 13;
        const bool leftText = style & BS_LEFTTEXT;
        CRect mark(leftText ? r.right - box : r.left, r.top + (r.Height() - box) / 2, 0, 0);
        mark.right = mark.left + box;
        mark.bottom = mark.top + box;
        const COLORREF inside = GetSysColor((state & ODS_SELECTED) || disabled ? COLOR_BTNFACE : COLOR_WINDOW);
        if (IsRadioType(type)) {
            CBrush fill(inside);
            CPen outline(PS_SOLID, 1, GetSysColor(COLOR_BTNSHADOW));
            CPen* oldPen = dc->SelectObject(&outline);
            CBrush* oldBrush = dc->SelectObject(&fill);
            dc->Ellipse(mark.left, mark.top, mark.right - 1, mark.bottom - 1);
            dc->SelectObject(oldPen);
            dc->SelectObject(oldBrush);
        } else {
            CRect edge(mark);
            dc->DrawEdge(&edge, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
            dc->FillSolidRect(&edge, inside);
        }
        if (m_check) {
            CFont marlett;
            marlett.CreateFont(-(box - 4), 0, 0, 0, FW_NORMAL, 0, 0, 0, SYMBOL_CHARSET, 0, 0, 0, 0, "Marlett");
            CFont* old = dc->SelectObject(&marlett);
            const COLORREF ink = GetSysColor(disabled || m_check == BST_INDETERMINATE ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT);
            dc->SetTextColor(ink);
            CRect glyph(mark);
            glyph.DeflateRect(2, 2);
            dc->DrawText(IsRadioType(type) ? "i" : "b", 1, &glyph, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
            dc->SelectObject(old);
            dc->SetTextColor(GetSysColor(disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
        }
        CRect caption(r);
        if (leftText)
            caption.right = mark.left - 4;
        else
            caption.left = mark.right + 4;
        drawText(caption, DT_SINGLELINE | DT_VCENTER | (leftText ? DT_RIGHT : DT_LEFT));
        if (state & ODS_FOCUS) {
            CRect focus;
            dc->DrawText(text, &(focus = caption), DT_SINGLELINE | DT_CALCRECT);
            focus.OffsetRect(0, (caption.Height() - focus.Height()) / 2);
            focus.InflateRect(1, 1);
            dc->DrawFocusRect(&focus);
        }
        return;
    }
    // A push button (or a push-like check box or radio button).
    const bool pushed = (state & ODS_SELECTED) || ((style & BS_PUSHLIKE) && m_check);
    if (type == BS_DEFPUSHBUTTON || (state & ODS_FOCUS)) {
        CBrush black(RGB(0, 0, 0));
        dc->FrameRect(&r, &black);
        r.DeflateRect(1, 1);
    }
    if (pushed) {
        CBrush shadow(GetSysColor(COLOR_BTNSHADOW));
        dc->FrameRect(&r, &shadow);
    } else {
        CRect edge(r);
        dc->DrawEdge(&edge, EDGE_RAISED, BF_RECT);
    }
    CRect caption(r);
    if (pushed)
        caption.OffsetRect(1, 1);
    drawText(caption, (style & BS_MULTILINE) ? (DT_WORDBREAK | DT_CENTER) : (DT_SINGLELINE | DT_CENTER | DT_VCENTER));
    if (state & ODS_FOCUS) {
        CRect focus(r);
        focus.DeflateRect(3, 3);
        dc->DrawFocusRect(&focus);
    }
}
