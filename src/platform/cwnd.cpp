#include "platform/cwnd.h"

#include "platform/messagepump.h"

namespace vx {
namespace {

WindowBackendFactory g_factory = nullptr;
CWnd* g_focus = nullptr;
CWnd* g_capture = nullptr;
CWnd* g_mainWnd = nullptr;

CPoint PointOf(LPARAM l)
{
    return CPoint(GET_X_LPARAM(l), GET_Y_LPARAM(l));
}

} // namespace

WindowBackend::~WindowBackend() = default;

CPoint HeadlessWindowBackend::ClientToScreen(CPoint point) const
{
    CRect window;
    m_owner.GetWindowRect(&window);
    return CPoint(point.x + window.left, point.y + window.top);
}

void HeadlessWindowBackend::SetFocus()
{
    // Focus is tracked by CWnd itself in a headless process.
}

void SetWindowBackendFactory(WindowBackendFactory factory)
{
    g_factory = factory;
}

} // namespace vx

CWnd::CWnd() = default;

CWnd::~CWnd()
{
    if (m_hWnd) {
        // The handlers of a derived class are gone by now; take the handle
        // out of the table without calling them.
        vx::UnregisterWindow(m_hWnd);
        m_hWnd = nullptr;
    }
    if (vx::g_focus == this)
        vx::g_focus = nullptr;
    if (vx::g_capture == this)
        vx::g_capture = nullptr;
    if (vx::g_mainWnd == this)
        vx::g_mainWnd = nullptr;
}

std::unique_ptr<vx::WindowBackend> CWnd::CreateBackend(CWnd* parent, DWORD style)
{
    if (vx::g_factory) {
        if (auto backend = vx::g_factory(*this, parent, style))
            return backend;
    }
    return std::make_unique<vx::HeadlessWindowBackend>(*this);
}

BOOL CWnd::CreateEx(const char* windowName, const char* className, DWORD style, const RECT& rect, CWnd* parent,
                    UINT id, DWORD exStyle)
{
    if (m_hWnd)
        return FALSE;
    m_parent = parent;
    m_style = style;
    m_exStyle = exStyle;
    m_id = id;
    m_enabled = !(style & WS_DISABLED);
    m_backend = CreateBackend(parent, style);
    m_backend->SetGeometry(CRect(rect));
    m_backend->SetText(windowName ? windowName : "");
    vx::WindowInfo info;
    info.title = windowName ? windowName : "";
    info.className = className ? className : "";
    info.parent = parent ? parent->m_hWnd : nullptr;
    m_hWnd = vx::RegisterWindow(this, info);
    if (SendMessage(WM_CREATE) == -1) {
        DestroyWindow();
        return FALSE;
    }
    if (style & WS_VISIBLE)
        ShowWindow(SW_SHOW);
    return TRUE;
}

BOOL CWnd::DestroyWindow()
{
    if (!m_hWnd)
        return FALSE;
    const BOOL done = ::DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
    if (m_backend)
        m_backend->Show(false);
    return done;
}

CWnd* CWnd::FromHandle(HWND hwnd)
{
    return dynamic_cast<CWnd*>(vx::FindTarget(hwnd));
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::SendMessageA(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::PostMessageA(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return WindowProc(message, wParam, lParam);
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        return OnCreate();
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_CLOSE:
        OnClose();
        return 0;
    case WM_TIMER:
        OnTimer(wParam);
        return 0;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_ERASEBKGND:
        return OnEraseBkgnd();
    case WM_SIZE:
        OnSize(static_cast<UINT>(wParam), GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_MOVE:
        OnMove(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_SHOWWINDOW:
        OnShowWindow(static_cast<BOOL>(wParam), static_cast<UINT>(lParam));
        return 0;
    case WM_ENABLE:
        OnEnable(static_cast<BOOL>(wParam));
        return 0;
    case WM_SETFOCUS:
        OnSetFocus(FromHandle(reinterpret_cast<HWND>(wParam)));
        return 0;
    case WM_KILLFOCUS:
        OnKillFocus(FromHandle(reinterpret_cast<HWND>(wParam)));
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_MOUSELEAVE:
        OnMouseLeave();
        return 0;
    case WM_LBUTTONDOWN:
        OnLButtonDown(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_LBUTTONUP:
        OnLButtonUp(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_LBUTTONDBLCLK:
        OnLButtonDblClk(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_RBUTTONDOWN:
        OnRButtonDown(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_RBUTTONUP:
        OnRButtonUp(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_KEYDOWN:
        OnKeyDown(static_cast<UINT>(wParam), LOWORD(static_cast<DWORD_PTR>(lParam)),
                  HIWORD(static_cast<DWORD_PTR>(lParam)));
        return 0;
    case WM_KEYUP:
        OnKeyUp(static_cast<UINT>(wParam), LOWORD(static_cast<DWORD_PTR>(lParam)),
                HIWORD(static_cast<DWORD_PTR>(lParam)));
        return 0;
    case WM_CHAR:
        OnChar(static_cast<UINT>(wParam), LOWORD(static_cast<DWORD_PTR>(lParam)),
               HIWORD(static_cast<DWORD_PTR>(lParam)));
        return 0;
    case WM_CAPTURECHANGED:
        OnCaptureChanged(FromHandle(reinterpret_cast<HWND>(lParam)));
        return 0;
    case WM_COMMAND:
        return OnCommand(wParam, lParam) ? 0 : DefWindowProc(message, wParam, lParam);
    case WM_COPYDATA:
        return OnCopyData(FromHandle(reinterpret_cast<HWND>(wParam)), reinterpret_cast<COPYDATASTRUCT*>(lParam));
    default:
        return DefWindowProc(message, wParam, lParam);
    }
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM, LPARAM lParam)
{
    switch (message) {
    case WM_SETTEXT:
        if (m_backend)
            m_backend->SetText(reinterpret_cast<const char*>(lParam));
        return TRUE;
    case WM_GETTEXTLENGTH:
        return GetWindowTextLength();
    default:
        return 0;
    }
}

UINT_PTR CWnd::SetTimer(UINT_PTR id, UINT elapse, TIMERPROC proc)
{
    return ::SetTimer(m_hWnd, id, elapse, proc);
}

BOOL CWnd::KillTimer(UINT_PTR id)
{
    return ::KillTimer(m_hWnd, id);
}

void CWnd::SetWindowText(const char* text)
{
    ::SetWindowTextA(m_hWnd, text);
}

int CWnd::GetWindowText(char* text, int maxCount) const
{
    return ::GetWindowTextA(m_hWnd, text, maxCount);
}

void CWnd::GetWindowText(CString& text) const
{
    text = GetWindowTextString();
}

CString CWnd::GetWindowTextString() const
{
    CString text;
    const int length = GetWindowTextLength();
    ::GetWindowTextA(m_hWnd, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer();
    return text;
}

int CWnd::GetWindowTextLength() const
{
    return ::GetWindowTextLengthA(m_hWnd);
}

BOOL CWnd::ShowWindow(int command)
{
    const BOOL before = IsWindowVisible();
    if (!m_hWnd)
        return before;
    ::ShowWindow(m_hWnd, command);
    if (m_backend)
        m_backend->Show(command != SW_HIDE);
    return before;
}

BOOL CWnd::IsWindowVisible() const
{
    return m_hWnd && ::IsWindowVisible(m_hWnd);
}

BOOL CWnd::EnableWindow(BOOL enable)
{
    const BOOL wasDisabled = !m_enabled;
    if (m_enabled != static_cast<bool>(enable)) {
        m_enabled = enable;
        m_style = enable ? (m_style & ~WS_DISABLED) : (m_style | WS_DISABLED);
        if (m_backend)
            m_backend->SetEnabled(enable);
        SendMessage(WM_ENABLE, enable ? 1 : 0);
    }
    return wasDisabled;
}

BOOL CWnd::IsWindowEnabled() const
{
    return m_enabled;
}

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT)
{
    const DWORD old = m_style;
    m_style = (m_style & ~remove) | add;
    return old != m_style;
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT)
{
    const DWORD old = m_exStyle;
    m_exStyle = (m_exStyle & ~remove) | add;
    return old != m_exStyle;
}

CWnd* CWnd::GetTopLevelParent() const
{
    const CWnd* w = this;
    while (w->m_parent)
        w = w->m_parent;
    return const_cast<CWnd*>(w);
}

void CWnd::MoveWindow(int x, int y, int width, int height, BOOL repaint)
{
    if (!m_backend)
        return;
    m_backend->SetGeometry(CRect(x, y, x + width, y + height));
    SendMessage(WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)));
    SendMessage(WM_SIZE, 0, MAKELPARAM(static_cast<WORD>(width), static_cast<WORD>(height)));
    if (repaint)
        Invalidate();
}

void CWnd::MoveWindow(const RECT* rect, BOOL repaint)
{
    if (rect)
        MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, repaint);
}

BOOL CWnd::SetWindowPos(const CWnd*, int x, int y, int cx, int cy, UINT flags)
{
    constexpr UINT kNoSize = 0x0001, kNoMove = 0x0002, kShow = 0x0040, kHide = 0x0080;
    if (!m_backend)
        return FALSE;
    CRect r = m_backend->Geometry();
    if (flags & kNoMove) {
        x = r.left;
        y = r.top;
    }
    if (flags & kNoSize) {
        cx = r.Width();
        cy = r.Height();
    }
    if (!(flags & kNoMove) || !(flags & kNoSize))
        MoveWindow(x, y, cx, cy, TRUE);
    if (flags & kShow)
        ShowWindow(SW_SHOW);
    if (flags & kHide)
        ShowWindow(SW_HIDE);
    return TRUE;
}

void CWnd::GetWindowRect(RECT* rect) const
{
    if (!rect)
        return;
    if (!m_backend) {
        *rect = CRect();
        return;
    }
    CRect r = m_backend->Geometry();
    if (m_parent && m_parent->m_backend) {
        CPoint origin = m_parent->m_backend->ClientToScreen(CPoint(0, 0));
        r.OffsetRect(origin);
    }
    *rect = r;
}

void CWnd::GetClientRect(RECT* rect) const
{
    if (rect)
        *rect = m_backend ? m_backend->ClientRect() : CRect();
}

void CWnd::ClientToScreen(POINT* point) const
{
    if (point && m_backend)
        *point = m_backend->ClientToScreen(CPoint(*point));
}

void CWnd::ClientToScreen(RECT* rect) const
{
    if (!rect || !m_backend)
        return;
    const CPoint origin = m_backend->ClientToScreen(CPoint(0, 0));
    OffsetRect(rect, origin.x, origin.y);
}

void CWnd::ScreenToClient(POINT* point) const
{
    if (!point || !m_backend)
        return;
    const CPoint origin = m_backend->ClientToScreen(CPoint(0, 0));
    point->x -= origin.x;
    point->y -= origin.y;
}

void CWnd::ScreenToClient(RECT* rect) const
{
    if (!rect || !m_backend)
        return;
    const CPoint origin = m_backend->ClientToScreen(CPoint(0, 0));
    OffsetRect(rect, -origin.x, -origin.y);
}

void CWnd::Invalidate(BOOL erase)
{
    InvalidateRect(nullptr, erase);
}

void CWnd::InvalidateRect(const RECT* rect, BOOL erase)
{
    if (m_backend)
        m_backend->Invalidate(rect, erase);
}

void CWnd::UpdateWindow()
{
    if (m_backend)
        m_backend->Update();
}

CWnd* CWnd::SetFocus()
{
    CWnd* old = vx::g_focus;
    if (old == this)
        return old;
    vx::g_focus = this;
    if (old && old->m_hWnd)
        old->SendMessage(WM_KILLFOCUS, reinterpret_cast<WPARAM>(m_hWnd));
    if (m_backend)
        m_backend->SetFocus();
    SendMessage(WM_SETFOCUS, reinterpret_cast<WPARAM>(old ? old->m_hWnd : nullptr));
    return old;
}

CWnd* CWnd::GetFocus()
{
    return vx::g_focus;
}

CWnd* CWnd::SetCapture()
{
    CWnd* old = vx::g_capture;
    if (old && old != this) {
        if (old->m_backend)
            old->m_backend->SetCapture(false);
        old->SendMessage(WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(m_hWnd));
    }
    vx::g_capture = this;
    if (m_backend)
        m_backend->SetCapture(true);
    return old;
}

CWnd* CWnd::GetCapture()
{
    return vx::g_capture;
}

BOOL CWnd::ReleaseCapture()
{
    CWnd* old = vx::g_capture;
    if (!old)
        return TRUE;
    vx::g_capture = nullptr;
    if (old->m_backend)
        old->m_backend->SetCapture(false);
    old->SendMessage(WM_CAPTURECHANGED, 0, 0);
    return TRUE;
}

int CWnd::OnCreate()
{
    return 0;
}

void CWnd::OnDestroy() {}

void CWnd::OnClose()
{
    DestroyWindow();
}

void CWnd::OnTimer(UINT_PTR) {}
void CWnd::OnPaint() {}

BOOL CWnd::OnEraseBkgnd()
{
    return FALSE;
}

void CWnd::OnSize(UINT, int, int) {}
void CWnd::OnMove(int, int) {}
void CWnd::OnShowWindow(BOOL, UINT) {}
void CWnd::OnEnable(BOOL) {}
void CWnd::OnSetFocus(CWnd*) {}
void CWnd::OnKillFocus(CWnd*) {}
void CWnd::OnMouseMove(UINT, CPoint) {}
void CWnd::OnMouseLeave() {}
void CWnd::OnLButtonDown(UINT, CPoint) {}
void CWnd::OnLButtonUp(UINT, CPoint) {}
void CWnd::OnLButtonDblClk(UINT, CPoint) {}
void CWnd::OnRButtonDown(UINT, CPoint) {}
void CWnd::OnRButtonUp(UINT, CPoint) {}
void CWnd::OnKeyDown(UINT, UINT, UINT) {}
void CWnd::OnKeyUp(UINT, UINT, UINT) {}
void CWnd::OnChar(UINT, UINT, UINT) {}
void CWnd::OnCaptureChanged(CWnd*) {}

BOOL CWnd::OnCommand(WPARAM, LPARAM)
{
    return FALSE;
}

BOOL CWnd::OnCopyData(CWnd*, COPYDATASTRUCT*)
{
    return FALSE;
}

CFrameWnd::CFrameWnd() = default;
CFrameWnd::~CFrameWnd() = default;
CMDIFrameWnd::CMDIFrameWnd() = default;
CMDIFrameWnd::~CMDIFrameWnd() = default;

CWnd* AfxGetMainWnd()
{
    return vx::g_mainWnd;
}

void AfxSetMainWnd(CWnd* window)
{
    vx::g_mainWnd = window;
}
