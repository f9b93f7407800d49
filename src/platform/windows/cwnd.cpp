#include "platform/windows/cwnd.h"

#include "platform/windows/cwnd_p.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/windowlong.h"
#include "platform/windows/windowparent.h"
#include "platform/windows/windowtable_p.h"

#include <algorithm>
#include <cstdint>

namespace vx {

WindowBackendFactory g_factory = nullptr;
FontBridge g_fontBridge;
CWnd* g_focus = nullptr;
CWnd* g_capture = nullptr;
CWnd* g_mainWnd = nullptr;
CWnd* g_active = nullptr;

// Counts destroyed window objects, so that a handler that returns can tell
// cheaply whether any window object went away meanwhile.
std::uint64_t g_windowObjectsGone = 0;

std::unordered_set<const CWnd*>& LiveWindows()
{
    static auto* live = new std::unordered_set<const CWnd*>;
    return *live;
}

std::vector<CWnd*>& ZOrder()
{
    static auto* order = new std::vector<CWnd*>;
    return *order;
}

std::vector<CWnd*> ChildrenOf(const CWnd* parent)
{
    std::vector<CWnd*> children;
    for (CWnd* w : ZOrder()) {
        if (parent ? (w->GetParent() == parent && (w->GetStyle() & WS_CHILD)) : !w->GetParent())
            children.push_back(w);
    }
    return children;
}

std::vector<CWnd*> OwnedBy(const CWnd* owner)
{
    std::vector<CWnd*> owned;
    for (CWnd* w : ZOrder()) {
        if (w->GetParent() == owner)
            owned.push_back(w);
    }
    return owned;
}

CWnd* TopLevelOf(const CWnd* window)
{
    const CWnd* w = window;
    while (w && (w->GetStyle() & WS_CHILD) && w->GetParent())
        w = w->GetParent();
    return const_cast<CWnd*>(w);
}

CPoint PointOf(LPARAM l)
{
    return CPoint(GET_X_LPARAM(l), GET_Y_LPARAM(l));
}

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

} // namespace vx

const CWnd CWnd::wndTop;
const CWnd CWnd::wndBottom;

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
    ++vx::g_windowObjectsGone;
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
    const CRect r(rect);
    m_client = CRect(0, 0, std::max(0, r.Width()), std::max(0, r.Height()));
    m_backend = CreateBackend(parent, style);
    m_backend->SetGeometry(r);
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
    CREATESTRUCTA create{};
    create.hwndParent = info.parent;
    create.x = r.left;
    create.y = r.top;
    create.cx = r.Width();
    create.cy = r.Height();
    create.style = static_cast<LONG>(style);
    create.dwExStyle = exStyle;
    create.lpszName = windowName;
    create.lpszClass = className;
    const auto createParam = reinterpret_cast<LPARAM>(&create);
    // As on the original: WM_NCCREATE, the client area, then WM_CREATE.
    if (!SendMessage(WM_NCCREATE, 0, createParam)) {
        DestroyWindow();
        return FALSE;
    }
    if (!m_hWnd)
        return FALSE;
    RecalcClientArea(r, r, nullptr);
    if (!m_hWnd || SendMessage(WM_CREATE, 0, createParam) == -1) {
        DestroyWindow();
        return FALSE;
    }
    if (!m_hWnd)
        return FALSE;
    const CRect client = vx::ClientAreaOf(*this);
    const CPoint at = client.TopLeft() + r.TopLeft();
    SendMessage(WM_SIZE, 0, MAKELPARAM(static_cast<WORD>(client.Width()), static_cast<WORD>(client.Height())));
    SendMessage(WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y)));
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
    const std::uint64_t gone = vx::g_windowObjectsGone;
    const LRESULT result = WindowProc(message, wParam, lParam);
    // A handler may have deleted this object; look it up only when some
    // window object went away.
    if (gone == vx::g_windowObjectsGone || vx::LiveWindows().count(this))
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
        // Child windows go with their parent, and owned windows with their owner.
        for (CWnd* child : vx::OwnedBy(this))
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
    case WM_WINDOWPOSCHANGING:
        OnWindowPosChanging(reinterpret_cast<WINDOWPOS*>(lParam));
        return 0;
    case WM_WINDOWPOSCHANGED:
        OnWindowPosChanged(reinterpret_cast<WINDOWPOS*>(lParam));
        return 0;
    case WM_NCCALCSIZE: {
        // With wParam FALSE lParam is one rectangle: the first of the record.
        if (wParam)
            OnNcCalcSize(TRUE, reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam));
        else
            OnNcCalcSize(FALSE, reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam));
        return 0;
    }
    case WM_NCPAINT:
        OnNcPaint();
        return 0;
    case WM_NCHITTEST:
        return OnNcHitTest(vx::PointOf(lParam));
    case WM_NCMOUSEMOVE:
        OnNcMouseMove(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_NCLBUTTONDOWN:
        OnNcLButtonDown(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_NCLBUTTONUP:
        OnNcLButtonUp(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_NCLBUTTONDBLCLK:
        OnNcLButtonDblClk(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_NCRBUTTONDOWN:
        OnNcRButtonDown(static_cast<UINT>(wParam), vx::PointOf(lParam));
        return 0;
    case WM_NCRBUTTONUP:
        OnNcRButtonUp(static_cast<UINT>(wParam), vx::PointOf(lParam));
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
    case WM_NCCREATE:
        return TRUE;
    default:
        return vx::DefaultNonClient(*this, message, wParam, lParam);
    }
}

LRESULT CWnd::DefaultMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProc(message, wParam, lParam);
}

bool CWnd::ReadWindowLong(int index, LONG_PTR& value) const
{
    switch (index) {
    case GWL_STYLE: value = static_cast<LONG_PTR>(m_style); return true;
    case GWL_EXSTYLE: value = static_cast<LONG_PTR>(m_exStyle); return true;
    case GWLP_ID: value = static_cast<LONG_PTR>(m_id); return true;
    default: return false;
    }
}

bool CWnd::WriteWindowLong(int index, LONG_PTR value)
{
    switch (index) {
    case GWL_STYLE: {
        // The enabled state is the WS_DISABLED bit; the visible state is
        // only changed by ShowWindow, as on the original.
        m_style = static_cast<DWORD>(value);
        const bool enabled = !(m_style & WS_DISABLED);
        if (enabled != m_enabled) {
            m_enabled = enabled;
            if (m_backend)
                m_backend->SetEnabled(enabled);
        }
        return true;
    }
    case GWL_EXSTYLE: m_exStyle = static_cast<DWORD>(value); return true;
    case GWLP_ID: m_id = static_cast<UINT>(value); return true;
    case GWLP_HWNDPARENT: {
        // Only SetParent writes this word here; it moves the window into
        // another parent, keeping its rectangle in the new parent's terms.
        CWnd* parent = FromHandle(reinterpret_cast<HWND>(value));
        if (parent == m_parent)
            return true;
        m_parent = parent;
        vx::detail::SetParentEntry(m_hWnd, parent ? parent->m_hWnd : nullptr);
        if (vx::detail::g_reparentHook)
            vx::detail::g_reparentHook(*this, parent);
        return true;
    }
    default: return false;
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
    // The minimised and maximised states, which IsIconic, IsZoomed and the
    // placement report; the desktop shows a top-level window as it likes.
    if (command == SW_MINIMIZE || command == SW_SHOWMINIMIZED || command == SW_SHOWMINNOACTIVE)
        m_style = (m_style | WS_MINIMIZE) & ~WS_MAXIMIZE;
    else if (command == SW_SHOWMAXIMIZED)
        m_style = (m_style | WS_MAXIMIZE) & ~WS_MINIMIZE;
    else if (command == SW_SHOWNORMAL || command == SW_RESTORE)
        m_style &= ~(WS_MINIMIZE | WS_MAXIMIZE);
    if (m_backend)
        m_backend->Show(command != SW_HIDE);
}

BOOL CWnd::IsWindowVisible() const
{
    // Visible means shown, and every parent shown too; an owner's state
    // does not count.
    for (const CWnd* w = this; w; w = (w->m_style & WS_CHILD) ? w->m_parent : nullptr) {
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
    const DWORD now = (old & ~remove) | add;
    if (now == old)
        return FALSE;
    if (m_hWnd)
        SetWindowLongPtrA(m_hWnd, GWL_STYLE, static_cast<LONG_PTR>(now));
    else
        m_style = now;
    if (flags && m_hWnd)
        SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    return TRUE;
}

BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT flags)
{
    const DWORD old = m_exStyle;
    const DWORD now = (old & ~remove) | add;
    if (now == old)
        return FALSE;
    if (m_hWnd)
        SetWindowLongPtrA(m_hWnd, GWL_EXSTYLE, static_cast<LONG_PTR>(now));
    else
        m_exStyle = now;
    if (flags && m_hWnd)
        SetWindowPos(nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    return TRUE;
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


CWnd* AfxGetMainWnd()
{
    return vx::g_mainWnd;
}

void AfxSetMainWnd(CWnd* window)
{
    vx::g_mainWnd = window;
}
