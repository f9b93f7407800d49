#include "platform/cwnd.h"

#include "platform/messagepump.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace vx {
namespace {

WindowBackendFactory g_factory = nullptr;
FontBridge g_fontBridge;
CWnd* g_focus = nullptr;
CWnd* g_capture = nullptr;
CWnd* g_mainWnd = nullptr;
CWnd* g_active = nullptr;

// Every CWnd object, so that a handler can tell whether its window survived
// the message it handled.
std::unordered_set<const CWnd*>& LiveWindows()
{
    static auto* live = new std::unordered_set<const CWnd*>;
    return *live;
}

// Windows with a handle, in z-order among siblings: a sibling that comes
// earlier lies above the ones after it.
std::vector<CWnd*>& ZOrder()
{
    static auto* order = new std::vector<CWnd*>;
    return *order;
}

std::vector<CWnd*> ChildrenOf(const CWnd* parent)
{
    std::vector<CWnd*> children;
    for (CWnd* w : ZOrder()) {
        if (w->GetParent() == parent)
            children.push_back(w);
    }
    return children;
}

CPoint PointOf(LPARAM l)
{
    return CPoint(GET_X_LPARAM(l), GET_Y_LPARAM(l));
}

// A control that dialog navigation may stop at: shown and enabled itself,
// whatever its parent is doing.
bool Usable(const CWnd* w)
{
    return (w->GetStyle() & WS_VISIBLE) && w->IsWindowEnabled();
}

CWnd* Deepest(CWnd* window, POINT screen)
{
    for (CWnd* child : ChildrenOf(window)) {
        CRect r;
        child->GetWindowRect(&r);
        if (!child->IsWindowVisible() || !r.PtInRect(screen))
            continue;
        // A disabled child hides nothing: the point belongs to its parent.
        if (!child->IsWindowEnabled())
            return window;
        return Deepest(child, screen);
    }
    return window;
}

} // namespace

WindowBackend::~WindowBackend() = default;

void WindowBackend::SetZOrder(bool) {}

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

void SetFontBridge(const FontBridge& bridge)
{
    g_fontBridge = bridge;
}

bool TakeMouseLeaveRequest(CWnd& window)
{
    if (!(window.m_trackFlags & TME_LEAVE))
        return false;
    window.m_trackFlags &= ~TME_LEAVE;
    return true;
}

void ClearActiveWindow()
{
    CWnd* old = g_active;
    g_active = nullptr;
    if (old && old->m_hWnd)
        old->SendMessage(WM_ACTIVATE, WA_INACTIVE, 0);
}

bool DispatchInputMessage(CWnd& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!window.m_hWnd)
        return false;
    const bool mouse = message >= WM_MOUSEMOVE && message <= WM_MBUTTONDBLCLK;
    if (mouse) {
        CPoint p = PointOf(lParam);
        window.ClientToScreen(&p);
        SetCursorPosition(p);
        SetKeyDown(VK_LBUTTON, wParam & MK_LBUTTON);
        SetKeyDown(VK_RBUTTON, wParam & MK_RBUTTON);
        SetKeyDown(VK_MBUTTON, wParam & MK_MBUTTON);
        SetKeyDown(VK_SHIFT, wParam & MK_SHIFT);
        SetKeyDown(VK_CONTROL, wParam & MK_CONTROL);
    } else if (message == WM_KEYDOWN || message == WM_SYSKEYDOWN) {
        SetKeyDown(static_cast<UINT>(wParam), true);
    } else if (message == WM_KEYUP || message == WM_SYSKEYUP) {
        SetKeyDown(static_cast<UINT>(wParam), false);
    }
    MSG msg{};
    msg.hwnd = window.m_hWnd;
    msg.message = message;
    msg.wParam = wParam;
    msg.lParam = lParam;
    msg.time = GetTickCount();
    GetCursorPos(&msg.pt);
    for (CWnd* w = &window; w; w = w->GetParent()) {
        if (w->PreTranslateMessage(&msg))
            return false;
        if (!IsWindow(msg.hwnd))
            return false;
    }
    SendMessageA(msg.hwnd, msg.message, msg.wParam, msg.lParam);
    return true;
}

} // namespace vx

const CWnd CWnd::wndTop;
const CWnd CWnd::wndBottom;

BOOL TrackMouseEvent(LPTRACKMOUSEEVENT track)
{
    if (!track)
        return FALSE;
    CWnd* window = CWnd::FromHandle(track->hwndTrack);
    if (!window)
        return FALSE;
    if (track->dwFlags & TME_CANCEL)
        window->m_trackFlags &= ~(track->dwFlags & ~TME_CANCEL);
    else
        window->m_trackFlags |= track->dwFlags;
    return TRUE;
}

BOOL _TrackMouseEvent(LPTRACKMOUSEEVENT track)
{
    return TrackMouseEvent(track);
}

CWnd::CWnd()
{
    vx::LiveWindows().insert(this);
}

CWnd::~CWnd()
{
    if (m_hWnd) {
        // The handlers of a derived class are gone by now; take the handle
        // out of the table without calling them.
        vx::UnregisterWindow(m_hWnd);
        m_hWnd = nullptr;
    }
    auto& order = vx::ZOrder();
    order.erase(std::remove(order.begin(), order.end(), this), order.end());
    for (CWnd* w : order) {
        if (w->m_parent == this)
            w->m_parent = nullptr;
    }
    vx::LiveWindows().erase(this);
    if (vx::g_focus == this)
        vx::g_focus = nullptr;
    if (vx::g_capture == this)
        vx::g_capture = nullptr;
    if (vx::g_mainWnd == this)
        vx::g_mainWnd = nullptr;
    if (vx::g_active == this)
        vx::g_active = nullptr;
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
    // WS_VISIBLE is set by ShowWindow below, once the window is complete.
    m_style = style & ~WS_VISIBLE;
    m_exStyle = exStyle;
    m_id = id;
    m_enabled = !(style & WS_DISABLED);
    m_backend = CreateBackend(parent, style);
    m_backend->SetGeometry(CRect(rect));
    m_backend->SetText(windowName ? windowName : "");
    if (!m_enabled)
        m_backend->SetEnabled(false);
    vx::WindowInfo info;
    info.title = windowName ? windowName : "";
    info.className = className ? className : "";
    info.parent = parent ? parent->m_hWnd : nullptr;
    m_hWnd = vx::RegisterWindow(this, info);
    vx::ZOrder().push_back(this);
    PreSubclassWindow();
    if (SendMessage(WM_CREATE) == -1) {
        DestroyWindow();
        return FALSE;
    }
    if (!m_hWnd)
        return FALSE;
    const CRect r(rect);
    SendMessage(WM_SIZE, 0, MAKELPARAM(static_cast<WORD>(r.Width()), static_cast<WORD>(r.Height())));
    SendMessage(WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(r.left), static_cast<WORD>(r.top)));
    if (m_hWnd && (style & WS_VISIBLE))
        ShowWindow(SW_SHOW);
    return m_hWnd != nullptr;
}

BOOL CWnd::DestroyWindow()
{
    if (!m_hWnd)
        return FALSE;
    // WM_DESTROY and WM_NCDESTROY reach WindowProc, which tears the rest
    // down; after that `this` may be gone (PostNcDestroy).
    return ::DestroyWindow(m_hWnd);
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
    const CurrentMessage saved = m_current;
    m_current = CurrentMessage{message, wParam, lParam};
    const LRESULT result = WindowProc(message, wParam, lParam);
    if (vx::LiveWindows().count(this))
        m_current = saved;
    return result;
}

LRESULT CWnd::Default()
{
    return DefWindowProc(m_current.message, m_current.wParam, m_current.lParam);
}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

BOOL CWnd::ReflectToChild(CWnd* child, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    return child && child->OnChildNotify(message, wParam, lParam, result);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    const LRESULT answer = SendMessage(WM_REFLECT_BASE + message, wParam, lParam);
    if (!answer)
        return FALSE;
    if (result)
        *result = answer;
    return TRUE;
}

void CWnd::PreSubclassWindow() {}

void CWnd::PostNcDestroy() {}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        return OnCreate();
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_NCDESTROY: {
        OnNcDestroy();
        for (CWnd* child : vx::ChildrenOf(this))
            child->DestroyWindow();
        if (vx::g_focus == this)
            vx::g_focus = nullptr;
        if (vx::g_capture == this)
            vx::g_capture = nullptr;
        if (vx::g_active == this)
            vx::g_active = nullptr;
        auto& order = vx::ZOrder();
        order.erase(std::remove(order.begin(), order.end(), this), order.end());
        m_backend.reset();
        m_hWnd = nullptr;
        m_trackFlags = 0;
        PostNcDestroy();
        return 0;
    }
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
    case WM_ACTIVATE:
        OnActivate(LOWORD(wParam), FromHandle(reinterpret_cast<HWND>(lParam)), HIWORD(wParam));
        return 0;
    case WM_CANCELMODE:
        OnCancelMode();
        return 0;
    case WM_SYSCOLORCHANGE:
        OnSysColorChange();
        return 0;
    case WM_SETCURSOR:
        return OnSetCursor(FromHandle(reinterpret_cast<HWND>(wParam)), LOWORD(static_cast<DWORD_PTR>(lParam)),
                           HIWORD(static_cast<DWORD_PTR>(lParam)));
    case WM_GETDLGCODE:
        return OnGetDlgCode();
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
    case WM_RBUTTONDBLCLK:
        OnRButtonDblClk(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_MBUTTONDOWN:
        OnMButtonDown(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_MBUTTONUP:
        OnMButtonUp(static_cast<UINT>(wParam), vx::PointOf(lParam));
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
    case WM_SYSKEYDOWN:
        OnSysKeyDown(static_cast<UINT>(wParam), LOWORD(static_cast<DWORD_PTR>(lParam)),
                     HIWORD(static_cast<DWORD_PTR>(lParam)));
        return 0;
    case WM_SYSKEYUP:
        OnSysKeyUp(static_cast<UINT>(wParam), LOWORD(static_cast<DWORD_PTR>(lParam)),
                   HIWORD(static_cast<DWORD_PTR>(lParam)));
        return 0;
    case WM_CONTEXTMENU:
        OnContextMenu(FromHandle(reinterpret_cast<HWND>(wParam)), vx::PointOf(lParam));
        return 0;
    case WM_CAPTURECHANGED:
        OnCaptureChanged(FromHandle(reinterpret_cast<HWND>(lParam)));
        return 0;
    case WM_DRAWITEM:
        OnDrawItem(static_cast<int>(wParam), reinterpret_cast<LPDRAWITEMSTRUCT>(lParam));
        return TRUE;
    case WM_MEASUREITEM:
        OnMeasureItem(static_cast<int>(wParam), reinterpret_cast<LPMEASUREITEMSTRUCT>(lParam));
        return TRUE;
    case WM_COMMAND: {
        // A control's notification goes back to the control first, so that
        // it can handle what it sent itself.
        LRESULT result = 0;
        if (lParam && ReflectToChild(FromHandle(reinterpret_cast<HWND>(lParam)), message, wParam, lParam, &result))
            return 0;
        return OnCommand(wParam, lParam) ? 0 : DefWindowProc(message, wParam, lParam);
    }
    case WM_NOTIFY: {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        LRESULT result = 0;
        if (header && ReflectToChild(FromHandle(header->hwndFrom), message, wParam, lParam, &result))
            return result;
        if (OnNotify(wParam, lParam, &result))
            return result;
        return DefWindowProc(message, wParam, lParam);
    }
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC: {
        LRESULT result = 0;
        if (ReflectToChild(FromHandle(reinterpret_cast<HWND>(lParam)), message, wParam, lParam, &result))
            return result;
        return DefWindowProc(message, wParam, lParam);
    }
    case WM_COPYDATA:
        return OnCopyData(FromHandle(reinterpret_cast<HWND>(wParam)), reinterpret_cast<COPYDATASTRUCT*>(lParam));
    default:
        return DefWindowProc(message, wParam, lParam);
    }
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SETTEXT:
        if (m_backend)
            m_backend->SetText(reinterpret_cast<const char*>(lParam));
        return TRUE;
    case WM_GETTEXT: {
        char* out = reinterpret_cast<char*>(lParam);
        return ::GetWindowTextA(m_hWnd, out, static_cast<int>(wParam));
    }
    case WM_GETTEXTLENGTH:
        return GetWindowTextLength();
    case WM_SETFONT:
        m_font = reinterpret_cast<HFONT>(wParam);
        if (LOWORD(static_cast<DWORD_PTR>(lParam)))
            Invalidate();
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font);
    case WM_CLOSE:
        DestroyWindow();
        return 0;
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
    const BOOL before = (m_style & WS_VISIBLE) != 0;
    if (!m_hWnd)
        return before;
    ::ShowWindow(m_hWnd, command);
    return before;
}

void CWnd::ApplyShowState(int command)
{
    m_style = command == SW_HIDE ? (m_style & ~WS_VISIBLE) : (m_style | WS_VISIBLE);
    if (m_backend)
        m_backend->Show(command != SW_HIDE);
}

BOOL CWnd::IsWindowVisible() const
{
    // Visible means shown, and every parent shown too.
    for (const CWnd* w = this; w; w = w->m_parent) {
        if (!w->m_hWnd || !(w->m_style & WS_VISIBLE))
            return FALSE;
    }
    return TRUE;
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

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT flags)
{
    const DWORD old = m_style;
    m_style = (m_style & ~remove) | add;
    if ((flags & SWP_FRAMECHANGED) && m_hWnd)
        Invalidate();
    return old != m_style;
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT flags)
{
    const DWORD old = m_exStyle;
    m_exStyle = (m_exStyle & ~remove) | add;
    if ((flags & SWP_FRAMECHANGED) && m_hWnd)
        Invalidate();
    return old != m_exStyle;
}

int CWnd::SetDlgCtrlID(int id)
{
    const int old = static_cast<int>(m_id);
    m_id = static_cast<UINT>(id);
    return old;
}

CWnd* CWnd::GetTopLevelParent() const
{
    const CWnd* w = this;
    while (w->m_parent)
        w = w->m_parent;
    return const_cast<CWnd*>(w);
}

BOOL CWnd::IsChild(const CWnd* window) const
{
    for (const CWnd* w = window ? window->m_parent : nullptr; w; w = w->m_parent) {
        if (w == this)
            return TRUE;
    }
    return FALSE;
}

void CWnd::SetFont(CFont* font, BOOL redraw)
{
    HFONT handle = (font && vx::g_fontBridge.handleOf) ? vx::g_fontBridge.handleOf(font) : nullptr;
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(handle), redraw ? 1 : 0);
}

CFont* CWnd::GetFont() const
{
    const auto handle = reinterpret_cast<HFONT>(::SendMessageA(m_hWnd, WM_GETFONT, 0, 0));
    if (!handle || !vx::g_fontBridge.fromHandle)
        return nullptr;
    return vx::g_fontBridge.fromHandle(handle);
}

CWnd* CWnd::GetWindow(UINT command) const
{
    if (command == GW_CHILD) {
        const auto children = vx::ChildrenOf(this);
        return children.empty() ? nullptr : children.front();
    }
    if (command == GW_OWNER)
        return nullptr;
    const auto siblings = vx::ChildrenOf(m_parent);
    const auto it = std::find(siblings.begin(), siblings.end(), this);
    if (it == siblings.end())
        return nullptr;
    switch (command) {
    case GW_HWNDFIRST:
        return siblings.front();
    case GW_HWNDLAST:
        return siblings.back();
    case GW_HWNDNEXT:
        return it + 1 == siblings.end() ? nullptr : *(it + 1);
    case GW_HWNDPREV:
        return it == siblings.begin() ? nullptr : *(it - 1);
    default:
        return nullptr;
    }
}

CWnd* CWnd::GetDlgItem(int id) const
{
    for (CWnd* child : vx::ChildrenOf(this)) {
        if (static_cast<int>(child->m_id) == id)
            return child;
    }
    return nullptr;
}

CWnd* CWnd::GetNextDlgTabItem(CWnd* control, BOOL previous) const
{
    auto children = vx::ChildrenOf(this);
    if (children.empty())
        return nullptr;
    if (previous)
        std::reverse(children.begin(), children.end());
    auto start = std::find(children.begin(), children.end(), control);
    const std::size_t n = children.size();
    const std::size_t first = start == children.end() ? 0 : static_cast<std::size_t>(start - children.begin()) + 1;
    for (std::size_t k = 0; k < n; ++k) {
        CWnd* w = children[(first + k) % n];
        if (w != control && (w->m_style & WS_TABSTOP) && vx::Usable(w))
            return w;
    }
    return nullptr;
}

CWnd* CWnd::GetNextDlgGroupItem(CWnd* control, BOOL previous) const
{
    const auto children = vx::ChildrenOf(this);
    const auto it = std::find(children.begin(), children.end(), control);
    if (it == children.end())
        return nullptr;
    const std::size_t at = static_cast<std::size_t>(it - children.begin());
    std::size_t begin = at;
    while (begin > 0 && !(children[begin]->m_style & WS_GROUP))
        --begin;
    std::size_t end = at + 1;
    while (end < children.size() && !(children[end]->m_style & WS_GROUP))
        ++end;
    const std::size_t n = end - begin;
    for (std::size_t k = 1; k < n; ++k) {
        const std::size_t offset = previous ? (at - begin + n - k) % n : (at - begin + k) % n;
        CWnd* w = children[begin + offset];
        if (vx::Usable(w))
            return w;
    }
    return control;
}

CWnd* CWnd::WindowFromPoint(POINT screen)
{
    // Top-level windows: the active one lies above the others, and of the
    // rest the one made last.
    std::vector<CWnd*> tops;
    for (CWnd* w : vx::ZOrder()) {
        if (!w->m_parent)
            tops.push_back(w);
    }
    std::reverse(tops.begin(), tops.end());
    if (vx::g_active) {
        auto a = std::find(tops.begin(), tops.end(), vx::g_active);
        if (a != tops.end())
            std::rotate(tops.begin(), a, a + 1);
    }
    for (CWnd* top : tops) {
        CRect r;
        top->GetWindowRect(&r);
        if (top->IsWindowVisible() && r.PtInRect(screen))
            return top->IsWindowEnabled() ? vx::Deepest(top, screen) : nullptr;
    }
    return nullptr;
}

CWnd* CWnd::ChildWindowFromPoint(POINT client, UINT) const
{
    CRect area;
    GetClientRect(&area);
    if (!area.PtInRect(client))
        return nullptr;
    for (CWnd* child : vx::ChildrenOf(this)) {
        CRect r;
        child->GetWindowRect(&r);
        ScreenToClient(&r);
        if (r.PtInRect(client))
            return child;
    }
    return const_cast<CWnd*>(this);
}

CWnd* CWnd::GetActiveWindow()
{
    return vx::g_active;
}

CWnd* CWnd::SetActiveWindow()
{
    CWnd* top = GetTopLevelParent();
    CWnd* old = vx::g_active;
    if (old == top || !top->m_hWnd)
        return old;
    vx::g_active = top;
    if (old && old->m_hWnd)
        old->SendMessage(WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(top->m_hWnd));
    if (vx::g_active == top && top->m_hWnd)
        top->SendMessage(WM_ACTIVATE, WA_ACTIVE, reinterpret_cast<LPARAM>(old ? old->m_hWnd : nullptr));
    return old;
}

BOOL CWnd::SetForegroundWindow()
{
    if (!m_hWnd)
        return FALSE;
    SetActiveWindow();
    return TRUE;
}

void CWnd::MoveWindow(int x, int y, int width, int height, BOOL repaint)
{
    if (!m_backend)
        return;
    const CRect old = m_backend->Geometry();
    const CRect now(x, y, x + width, y + height);
    m_backend->SetGeometry(now);
    // As on the original, only what changed is reported.
    if (old.TopLeft() != now.TopLeft())
        SendMessage(WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)));
    if (m_hWnd && old.Size() != now.Size())
        SendMessage(WM_SIZE, 0, MAKELPARAM(static_cast<WORD>(width), static_cast<WORD>(height)));
    if (repaint && m_hWnd)
        Invalidate();
}

void CWnd::MoveWindow(const RECT* rect, BOOL repaint)
{
    if (rect)
        MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, repaint);
}

BOOL CWnd::SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags)
{
    if (!m_backend)
        return FALSE;
    CRect r = m_backend->Geometry();
    if (flags & SWP_NOMOVE) {
        x = r.left;
        y = r.top;
    }
    if (flags & SWP_NOSIZE) {
        cx = r.Width();
        cy = r.Height();
    }
    if (!(flags & SWP_NOZORDER)) {
        auto& order = vx::ZOrder();
        auto self = std::find(order.begin(), order.end(), this);
        if (self != order.end()) {
            order.erase(self);
            if (insertAfter == &wndBottom) {
                order.push_back(this);
                m_backend->SetZOrder(false);
            } else if (insertAfter == &wndTop || !insertAfter) {
                order.insert(order.begin(), this);
                m_backend->SetZOrder(true);
            } else {
                auto after = std::find(order.begin(), order.end(), insertAfter);
                order.insert(after == order.end() ? order.end() : after + 1, this);
            }
        }
    }
    if (!(flags & SWP_NOMOVE) || !(flags & SWP_NOSIZE))
        MoveWindow(x, y, cx, cy, !(flags & SWP_NOREDRAW));
    if (!m_hWnd)
        return FALSE;
    if ((flags & SWP_FRAMECHANGED) && !(flags & SWP_NOREDRAW))
        Invalidate();
    if (flags & SWP_SHOWWINDOW)
        ShowWindow(SW_SHOW);
    if (flags & SWP_HIDEWINDOW)
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

BOOL CWnd::RedrawWindow(const RECT* rect, CRgn* region, UINT flags)
{
    if (!m_backend)
        return FALSE;
    if (flags & RDW_INVALIDATE)
        InvalidateRect(region ? nullptr : rect, (flags & RDW_ERASE) != 0);
    if (flags & RDW_ALLCHILDREN) {
        for (CWnd* child : vx::ChildrenOf(this))
            child->RedrawWindow(nullptr, nullptr, flags & ~RDW_UPDATENOW);
    }
    if (flags & RDW_UPDATENOW)
        UpdateWindow();
    return TRUE;
}

CWnd* CWnd::SetFocus()
{
    CWnd* old = vx::g_focus;
    if (old == this)
        return old;
    vx::g_focus = this;
    if (old && old->m_hWnd)
        old->SendMessage(WM_KILLFOCUS, reinterpret_cast<WPARAM>(m_hWnd));
    if (vx::g_focus != this)
        return old; // the old window moved the focus elsewhere
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
    return static_cast<int>(Default());
}

void CWnd::OnDestroy()
{
    Default();
}

void CWnd::OnNcDestroy()
{
    Default();
}

void CWnd::OnClose()
{
    Default();
}

void CWnd::OnTimer(UINT_PTR)
{
    Default();
}

void CWnd::OnPaint()
{
    Default();
}

BOOL CWnd::OnEraseBkgnd()
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnSize(UINT, int, int)
{
    Default();
}

void CWnd::OnMove(int, int)
{
    Default();
}

void CWnd::OnShowWindow(BOOL, UINT)
{
    Default();
}

void CWnd::OnEnable(BOOL)
{
    Default();
}

void CWnd::OnActivate(UINT, CWnd*, BOOL)
{
    Default();
}

void CWnd::OnCancelMode()
{
    Default();
}

void CWnd::OnSysColorChange()
{
    Default();
}

BOOL CWnd::OnSetCursor(CWnd*, UINT, UINT)
{
    return static_cast<BOOL>(Default());
}

UINT CWnd::OnGetDlgCode()
{
    return static_cast<UINT>(Default());
}

void CWnd::OnSetFocus(CWnd*)
{
    Default();
}

void CWnd::OnKillFocus(CWnd*)
{
    Default();
}

void CWnd::OnMouseMove(UINT, CPoint)
{
    Default();
}

void CWnd::OnMouseLeave()
{
    Default();
}

void CWnd::OnLButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnLButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnLButtonDblClk(UINT, CPoint)
{
    Default();
}

void CWnd::OnRButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnRButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnRButtonDblClk(UINT, CPoint)
{
    Default();
}

void CWnd::OnMButtonDown(UINT, CPoint)
{
    Default();
}

void CWnd::OnMButtonUp(UINT, CPoint)
{
    Default();
}

void CWnd::OnKeyDown(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnKeyUp(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnChar(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnSysKeyDown(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnSysKeyUp(UINT, UINT, UINT)
{
    Default();
}

void CWnd::OnContextMenu(CWnd*, CPoint)
{
    Default();
}

void CWnd::OnCaptureChanged(CWnd*)
{
    Default();
}

void CWnd::OnDrawItem(int, LPDRAWITEMSTRUCT item)
{
    LRESULT result = 0;
    if (item && item->CtlType != ODT_MENU &&
        ReflectToChild(FromHandle(item->hwndItem), WM_DRAWITEM, m_current.wParam, m_current.lParam, &result))
        return;
    Default();
}

void CWnd::OnMeasureItem(int controlId, LPMEASUREITEMSTRUCT item)
{
    LRESULT result = 0;
    if (item && item->CtlType != ODT_MENU &&
        ReflectToChild(GetDlgItem(controlId), WM_MEASUREITEM, m_current.wParam, m_current.lParam, &result))
        return;
    Default();
}

BOOL CWnd::OnCommand(WPARAM, LPARAM)
{
    return FALSE;
}

BOOL CWnd::OnNotify(WPARAM, LPARAM, LRESULT*)
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
