#include "ui/mdi/cmdichildwnd.h"

#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "platform/shell/resources.h"
#include "ui/gdi/wingdi.h"
#include "ui/menus/accelerators.h"
#include "ui/mdi/cmdiclientwnd.h"
#include "ui/mdi/cmultidoctemplate.h"

#include <algorithm>

namespace {

int CaptionHeight()
{
    return GetSystemMetrics(SM_CYCAPTION);
}

bool IsSizingCode(UINT code)
{
    return code >= HTLEFT && code <= HTBOTTOMRIGHT;
}

} // namespace

CMDIChildWnd::CMDIChildWnd() = default;

CMDIChildWnd::~CMDIChildWnd()
{
    if (m_hWnd) {
        m_bAutoDelete = false;
        DestroyWindow();
    }
}

BOOL CMDIChildWnd::Create(const char* className, const char* title, DWORD style, const RECT& rect,
                          CMDIFrameWnd* parent, CCreateContext* context)
{
    if (!parent)
        parent = dynamic_cast<CMDIFrameWnd*>(AfxGetMainWnd());
    CMDIClientWnd* client = CMDIClientWnd::Of(parent);
    if (!client) {
        // As a frame that fails: one made with new goes.
        PostNcDestroy();
        return FALSE;
    }
    CRect place(rect);
    if (place.IsRectEmpty())
        place = client->NextCascadeRect();
    const bool maximize = (style & WS_MAXIMIZE) != 0;
    style = (style & ~(WS_POPUP | WS_MAXIMIZE | WS_MINIMIZE)) | WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    if (!CreateEx(title ? title : "", className ? className : "AfxMDIChild", style, place, client, 0,
                  WS_EX_WINDOWEDGE))
        return FALSE;
    if (context && !CreateView(context)) {
        DestroyWindow();
        return FALSE;
    }
    RecalcLayout();
    client->AddChild(this);
    if (maximize)
        client->Maximize(this);
    return TRUE;
}

BOOL CMDIChildWnd::LoadFrame(UINT id, DWORD style, CWnd* parent, CCreateContext* context)
{
    m_nIDHelp = id;
    CString title;
    if (const char* text = vx::FindString(id)) {
        CString all(text);
        const int newline = all.Find('\n');
        title = newline >= 0 ? all.Left(newline) : all;
        if (title.IsEmpty() && newline >= 0) {
            CString rest = all.Mid(newline + 1);
            const int next = rest.Find('\n');
            title = next >= 0 ? rest.Left(next) : rest;
        }
    }
    if (context && context->m_pNewDocTemplate) {
        m_hMenuShared = context->m_pNewDocTemplate->m_hMenuShared;
        m_hAccelTable = context->m_pNewDocTemplate->m_hAccelTable;
    }
    auto* frame = dynamic_cast<CMDIFrameWnd*>(parent);
    if (!Create(nullptr, title, style & ~FWS_ADDTOTITLE, CRect(), frame, context))
        return FALSE;
    if (HICON icon = LoadIconA(nullptr, reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(id))))
        SendMessage(WM_SETICON, 0, reinterpret_cast<LPARAM>(icon));
    if (!context)
        vx::SendMessageToDescendants(*this, WM_INITIALUPDATE, 0, 0, TRUE);
    return TRUE;
}

CMDIClientWnd* CMDIChildWnd::Client() const
{
    return dynamic_cast<CMDIClientWnd*>(GetParent());
}

CMDIFrameWnd* CMDIChildWnd::GetMDIFrame() const
{
    CMDIClientWnd* client = Client();
    return client ? dynamic_cast<CMDIFrameWnd*>(client->GetParent()) : nullptr;
}

void CMDIChildWnd::MDIActivate()
{
    if (CMDIClientWnd* client = Client())
        client->SendMessage(WM_MDIACTIVATE, reinterpret_cast<WPARAM>(m_hWnd));
}

void CMDIChildWnd::MDIDestroy()
{
    if (CMDIClientWnd* client = Client())
        client->SendMessage(WM_MDIDESTROY, reinterpret_cast<WPARAM>(m_hWnd));
}

void CMDIChildWnd::MDIMaximize()
{
    if (CMDIClientWnd* client = Client())
        client->SendMessage(WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(m_hWnd));
}

void CMDIChildWnd::MDIRestore()
{
    if (CMDIClientWnd* client = Client())
        client->SendMessage(WM_MDIRESTORE, reinterpret_cast<WPARAM>(m_hWnd));
}

CRect CMDIChildWnd::RectInClient() const
{
    CRect r;
    GetWindowRect(&r);
    if (CWnd* parent = GetParent())
        parent->ScreenToClient(&r);
    return r;
}

int CMDIChildWnd::FrameWidth() const
{
    // A maximised child shows no border; the others a sizing frame.
    return IsZoomed() ? 0 : GetSystemMetrics(SM_CXFRAME);
}

CRect CMDIChildWnd::CaptionRect() const
{
    if (!(GetStyle() & WS_CAPTION))
        return CRect();
    CRect r;
    GetWindowRect(&r);
    const int f = FrameWidth();
    return CRect(f, f, r.Width() - f, f + CaptionHeight());
}

CRect CMDIChildWnd::BoxRect(Box box) const
{
    const CRect caption = CaptionRect();
    if (caption.IsRectEmpty() || !(GetStyle() & WS_SYSMENU))
        return CRect();
    const int size = caption.Height() - 4;
    int slot = 0; // from the right: close, maximise, minimise
    switch (box) {
    case Box::Close:
        slot = 0;
        break;
    case Box::Maximize:
        if (!(GetStyle() & WS_MAXIMIZEBOX))
            return CRect();
        slot = 1;
        break;
    case Box::Minimize:
        if (!(GetStyle() & WS_MINIMIZEBOX))
            return CRect();
        slot = (GetStyle() & WS_MAXIMIZEBOX) ? 2 : 1;
        break;
    }
    // The close box stands apart from the other two.
    const int right = caption.right - 2 - slot * size - (slot ? 2 : 0);
    return CRect(right - size, caption.top + 2, right, caption.top + 2 + size);
}

void CMDIChildWnd::OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS* params)
{
    // Maximised with its buttons in the frame's menu bar, the child is all client.
    if (InFrameMenuBar())
        return;
    CRect r(params->rgrc[0]);
    const int f = FrameWidth();
    r.DeflateRect(f, f);
    if (GetStyle() & WS_CAPTION)
        r.top += CaptionHeight();
    if (r.bottom < r.top)
        r.bottom = r.top;
    if (r.right < r.left)
        r.right = r.left;
    params->rgrc[0] = r;
}

bool CMDIChildWnd::InFrameMenuBar() const
{
    CMDIClientWnd* client = Client();
    return m_hWnd && client && client->BarChild() == m_hWnd;
}

void CMDIChildWnd::OnNcPaint()
{
    if (InFrameMenuBar())
        return;
    CWindowDC dc(this);
    CRect r;
    GetWindowRect(&r);
    r.OffsetRect(-r.left, -r.top);
    if (FrameWidth()) {
        CRect edge = r;
        dc.Draw3dRect(&edge, GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_3DDKSHADOW));
        edge.DeflateRect(1, 1);
        dc.Draw3dRect(&edge, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
        const int border = m_active ? COLOR_ACTIVEBORDER : COLOR_INACTIVEBORDER;
        for (int i = 2; i < FrameWidth(); ++i) {
            edge.DeflateRect(1, 1);
            dc.Draw3dRect(&edge, GetSysColor(border), GetSysColor(border));
        }
    }
    const CRect caption = CaptionRect();
    if (caption.IsRectEmpty())
        return;
    dc.FillSolidRect(&caption, GetSysColor(m_active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION));
    CString title;
    GetWindowText(title);
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    CFont font;
    font.CreateFontIndirect(&metrics.lfCaptionFont);
    CFont* oldFont = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(m_active ? COLOR_CAPTIONTEXT : COLOR_INACTIVECAPTIONTEXT));
    CRect text = caption;
    text.left += 4;
    for (Box b : {Box::Minimize, Box::Maximize, Box::Close}) {
        const CRect box = BoxRect(b);
        if (!box.IsRectEmpty())
            text.right = std::min(text.right, box.left - 2);
    }
    dc.DrawText(title, &text, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    dc.SelectObject(oldFont);

    CPen pen(PS_SOLID, 1, GetSysColor(COLOR_BTNTEXT));
    CPen* oldPen = dc.SelectObject(&pen);
    for (Box b : {Box::Minimize, Box::Maximize, Box::Close}) {
        CRect box = BoxRect(b);
        if (box.IsRectEmpty())
            continue;
        const bool pressed = m_track == static_cast<UINT>(b == Box::Close ? HTCLOSE : b == Box::Maximize ? HTMAXBUTTON : HTMINBUTTON);
        dc.FillSolidRect(&box, GetSysColor(COLOR_BTNFACE));
        dc.Draw3dRect(&box, GetSysColor(pressed ? COLOR_3DDKSHADOW : COLOR_BTNHIGHLIGHT),
                      GetSysColor(pressed ? COLOR_BTNHIGHLIGHT : COLOR_3DDKSHADOW));
        CRect g = box;
        g.DeflateRect(4, 3);
        if (pressed)
            g.OffsetRect(1, 1);
        switch (b) {
        case Box::Close:
            for (int d = 0; d < 2; ++d) {
                dc.MoveTo(g.left + d, g.top);
                dc.LineTo(g.right + d - 1, g.bottom);
                dc.MoveTo(g.right + d - 2, g.top);
                dc.LineTo(g.left + d - 1, g.bottom);
            }
            break;
        case Box::Minimize:
            if (IsIconic()) {
                // A minimised child offers restore in the same place.
                CRect w(g.left, g.top + 2, g.right - 2, g.bottom);
                dc.Draw3dRect(&w, GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNTEXT));
            } else {
                dc.FillSolidRect(g.left, g.bottom - 2, g.Width() - 2, 2, GetSysColor(COLOR_BTNTEXT));
            }
            break;
        case Box::Maximize:
            if (IsZoomed()) {
                // Restore: two overlapping windows.
                CRect back(g.left + 2, g.top, g.right, g.bottom - 3);
                dc.Draw3dRect(&back, GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNTEXT));
                CRect front(g.left, g.top + 3, g.right - 2, g.bottom);
                dc.FillSolidRect(&front, GetSysColor(COLOR_BTNFACE));
                dc.Draw3dRect(&front, GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNTEXT));
                dc.FillSolidRect(front.left, front.top + 1, front.Width(), 1, GetSysColor(COLOR_BTNTEXT));
            } else {
                dc.Draw3dRect(&g, GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_BTNTEXT));
                dc.FillSolidRect(g.left, g.top + 1, g.Width(), 1, GetSysColor(COLOR_BTNTEXT));
            }
            break;
        }
    }
    dc.SelectObject(oldPen);
}

LRESULT CMDIChildWnd::OnNcHitTest(CPoint screen)
{
    CRect r;
    GetWindowRect(&r);
    if (!r.PtInRect(screen))
        return HTNOWHERE;
    if (InFrameMenuBar())
        return HTCLIENT;
    const CPoint at = screen - r.TopLeft();
    if (BoxRect(Box::Close).PtInRect(at))
        return HTCLOSE;
    if (BoxRect(Box::Maximize).PtInRect(at))
        return HTMAXBUTTON;
    if (BoxRect(Box::Minimize).PtInRect(at))
        return HTMINBUTTON;
    if (CaptionRect().PtInRect(at))
        return HTCAPTION;
    // The sizing codes of the border; a maximised or minimised child has none.
    if (IsZoomed() || IsIconic()) {
        const CRect client = vx::ClientAreaOf(*this);
        return client.PtInRect(at) ? HTCLIENT : HTBORDER;
    }
    return CFrameWnd::OnNcHitTest(screen);
}

void CMDIChildWnd::OnNcLButtonDown(UINT hitTest, CPoint screen)
{
    MDIActivate();
    if (!m_hWnd)
        return;
    if (hitTest == HTCLOSE || hitTest == HTMAXBUTTON || hitTest == HTMINBUTTON ||
        (hitTest == HTCAPTION && !IsZoomed()) || (IsSizingCode(hitTest) && !IsZoomed() && !IsIconic())) {
        m_track = hitTest;
        m_trackFrom = screen;
        m_trackRect = RectInClient();
        SetCapture();
        if (hitTest != HTCAPTION && !IsSizingCode(hitTest))
            RedrawWindow(nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
        return;
    }
    CFrameWnd::OnNcLButtonDown(hitTest, screen);
}

void CMDIChildWnd::OnNcLButtonDblClk(UINT hitTest, CPoint screen)
{
    if (hitTest == HTCAPTION) {
        if (IsZoomed() || IsIconic())
            MDIRestore();
        else if (GetStyle() & WS_MAXIMIZEBOX)
            MDIMaximize();
        return;
    }
    CFrameWnd::OnNcLButtonDblClk(hitTest, screen);
}

void CMDIChildWnd::OnMouseMove(UINT flags, CPoint point)
{
    if (!m_track || GetCapture() != this) {
        CFrameWnd::OnMouseMove(flags, point);
        return;
    }
    CPoint screen = point;
    ClientToScreen(&screen);
    const CPoint d = screen - m_trackFrom;
    CRect r = m_trackRect;
    const int minWidth = 3 * CaptionHeight();
    const int minHeight = CaptionHeight() + 2 * FrameWidth();
    switch (m_track) {
    case HTCAPTION:
        r.OffsetRect(d);
        break;
    case HTLEFT: case HTTOPLEFT: case HTBOTTOMLEFT:
        r.left = std::min(r.left + d.x, r.right - minWidth);
        break;
    case HTRIGHT: case HTTOPRIGHT: case HTBOTTOMRIGHT:
        r.right = std::max(r.right + d.x, r.left + minWidth);
        break;
    default:
        break;
    }
    switch (m_track) {
    case HTTOP: case HTTOPLEFT: case HTTOPRIGHT:
        r.top = std::min(r.top + d.y, r.bottom - minHeight);
        break;
    case HTBOTTOM: case HTBOTTOMLEFT: case HTBOTTOMRIGHT:
        r.bottom = std::max(r.bottom + d.y, r.top + minHeight);
        break;
    default:
        break;
    }
    if (m_track == HTCAPTION || IsSizingCode(m_track))
        SetWindowPos(nullptr, r.left, r.top, r.Width(), r.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
}

void CMDIChildWnd::OnLButtonUp(UINT flags, CPoint point)
{
    const UINT track = m_track;
    if (!track) {
        CFrameWnd::OnLButtonUp(flags, point);
        return;
    }
    m_track = 0;
    ReleaseCapture();
    if (track == HTCAPTION || IsSizingCode(track))
        return;
    // A box acts when the button comes up over it.
    CPoint screen = point;
    ClientToScreen(&screen);
    const bool over = OnNcHitTest(screen) == static_cast<LRESULT>(track);
    RedrawWindow(nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
    if (!over)
        return;
    CMDIClientWnd* client = Client();
    switch (track) {
    case HTCLOSE:
        PostMessage(WM_CLOSE);
        break;
    case HTMAXBUTTON:
        if (IsZoomed())
            MDIRestore();
        else
            MDIMaximize();
        break;
    case HTMINBUTTON:
        if (IsIconic())
            MDIRestore();
        else if (client)
            client->Minimize(this);
        break;
    default:
        break;
    }
}

void CMDIChildWnd::OnCaptureChanged(CWnd* wnd)
{
    if (wnd != this && m_track) {
        m_track = 0;
        if (m_hWnd)
            RedrawWindow(nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
    }
    CFrameWnd::OnCaptureChanged(wnd);
}

BOOL CMDIChildWnd::PreTranslateMessage(MSG* msg)
{
    // A click anywhere in the child makes it active first.
    if (msg->message == WM_LBUTTONDOWN || msg->message == WM_RBUTTONDOWN || msg->message == WM_MBUTTONDOWN) {
        if (!m_active)
            MDIActivate();
    }
    // The platform's MDI keys: Ctrl+F4 closes the active child, Ctrl+F6 and
    // Ctrl+Tab go to the next one (with Shift, the previous).
    if (msg->message == WM_KEYDOWN && (GetKeyState(VK_CONTROL) & 0x8000) && !(GetKeyState(VK_MENU) & 0x8000)) {
        const bool shift = (GetKeyState(VK_SHIFT) & 0x8000) != 0;
        if (msg->wParam == VK_F4 && !shift) {
            PostMessage(WM_CLOSE);
            return TRUE;
        }
        if (msg->wParam == VK_F6 || msg->wParam == VK_TAB) {
            if (CMDIClientWnd* client = Client())
                client->SendMessage(WM_MDINEXT, reinterpret_cast<WPARAM>(m_hWnd), shift);
            return TRUE;
        }
    }
    // The child's accelerators send their commands to the MDI frame, which
    // hands them to the active child first.
    if (m_hAccelTable && msg->message >= WM_KEYDOWN && msg->message <= WM_KEYLAST) {
        if (CMDIFrameWnd* frame = GetMDIFrame(); frame && TranslateAcceleratorA(frame->m_hWnd, m_hAccelTable, msg))
            return TRUE;
    }
    return CFrameWnd::PreTranslateMessage(msg);
}

void CMDIChildWnd::OnMDIActivate(BOOL activate, CWnd*, CWnd*)
{
    m_active = activate != FALSE;
    if (m_hWnd)
        RedrawWindow(nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
}

LRESULT CMDIChildWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MDIACTIVATE: {
        CWnd* deactivated = CWnd::FromHandle(reinterpret_cast<HWND>(wParam));
        CWnd* activated = CWnd::FromHandle(reinterpret_cast<HWND>(lParam));
        OnMDIActivate(activated == this, activated, deactivated);
        return 0;
    }
    case WM_SYSCOMMAND:
        // The commands of its system menu and of its buttons, wherever they show.
        switch (wParam & 0xFFF0) {
        case SC_CLOSE:
            PostMessage(WM_CLOSE);
            return 0;
        case SC_MAXIMIZE:
            MDIMaximize();
            return 0;
        case SC_RESTORE:
            MDIRestore();
            return 0;
        case SC_MINIMIZE:
            if (CMDIClientWnd* client = Client())
                client->Minimize(this);
            return 0;
        case SC_NEXTWINDOW:
        case SC_PREVWINDOW:
            if (CMDIClientWnd* client = Client())
                client->Next((wParam & 0xFFF0) == SC_PREVWINDOW);
            return 0;
        default:
            return CFrameWnd::WindowProc(message, wParam, lParam);
        }
    case WM_SETTEXT: {
        const LRESULT result = CFrameWnd::WindowProc(message, wParam, lParam);
        if (m_hWnd) {
            RedrawWindow(nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
            if (CMDIClientWnd* client = Client())
                client->ChildTitleChanged(this);
        }
        return result;
    }
    default:
        return CFrameWnd::WindowProc(message, wParam, lParam);
    }
}

void CMDIChildWnd::OnClose()
{
    MDIDestroy();
}

void CMDIChildWnd::OnDestroy()
{
    if (CMDIClientWnd* client = Client())
        client->RemoveChild(this);
    CFrameWnd::OnDestroy();
}

void CMDIChildWnd::PostNcDestroy()
{
    if (m_bAutoDelete)
        delete this;
}
