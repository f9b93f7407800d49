#include "lists/csubclasswnd.h"

#include "platform/windows/cwnd.h"

#include <map>

namespace {

// The newest hook of each hooked window.
std::map<HWND, CSubclassWnd*>& TopHooks()
{
    static auto* hooks = new std::map<HWND, CSubclassWnd*>;
    return *hooks;
}

} // namespace

CSubclassWnd::CSubclassWnd() = default;

CSubclassWnd::~CSubclassWnd()
{
    Unhook();
}

BOOL CSubclassWnd::HookWindow(CWnd* window)
{
    return HookWindow(window ? window->m_hWnd : nullptr);
}

BOOL CSubclassWnd::HookWindow(HWND window)
{
    Unhook();
    if (!window)
        return TRUE;
    if (!CWnd::FromHandle(window))
        return FALSE;
    auto& hooks = TopHooks();
    const auto it = hooks.find(window);
    if (it != hooks.end()) {
        m_pNext = it->second;
        m_oldProc = it->second->m_oldProc;
        it->second = this;
    } else {
        m_pNext = nullptr;
        m_oldProc = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CSubclassWnd::HookProc)));
        hooks[window] = this;
    }
    m_hWnd = window;
    return TRUE;
}

void CSubclassWnd::Unhook()
{
    if (!m_hWnd)
        return;
    auto& hooks = TopHooks();
    const auto it = hooks.find(m_hWnd);
    if (it != hooks.end()) {
        if (it->second == this) {
            if (m_pNext) {
                it->second = m_pNext;
            } else {
                // The last hook gives the window its own procedure back, unless
                // someone subclassed it after us.
                if (IsWindow(m_hWnd) && GetWindowLongPtrA(m_hWnd, GWLP_WNDPROC) ==
                                            reinterpret_cast<LONG_PTR>(&CSubclassWnd::HookProc))
                    SetWindowLongPtrA(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_oldProc));
                hooks.erase(it);
            }
        } else {
            for (CSubclassWnd* h = it->second; h; h = h->m_pNext) {
                if (h->m_pNext == this) {
                    h->m_pNext = m_pNext;
                    break;
                }
            }
        }
    }
    m_hWnd = nullptr;
    m_pNext = nullptr;
}

LRESULT CSubclassWnd::HookProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto& hooks = TopHooks();
    const auto it = hooks.find(hwnd);
    if (it == hooks.end())
        return 0;
    CSubclassWnd* top = it->second;
    if (message == WM_NCDESTROY) {
        // The window goes: every hook lets go after it has seen the message.
        const LRESULT r = top->Pass(message, wParam, lParam);
        while (hooks.count(hwnd))
            hooks[hwnd]->Unhook();
        return r;
    }
    return top->Pass(message, wParam, lParam);
}

LRESULT CSubclassWnd::Pass(UINT message, WPARAM wParam, LPARAM lParam)
{
    const Current saved = m_current;
    m_current = {message, wParam, lParam};
    const LRESULT r = WindowProc(message, wParam, lParam);
    m_current = saved;
    return r;
}

LRESULT CSubclassWnd::WindowProc(UINT, WPARAM, LPARAM)
{
    return Default();
}

LRESULT CSubclassWnd::Default()
{
    if (m_pNext)
        return m_pNext->Pass(m_current.message, m_current.wParam, m_current.lParam);
    if (!m_oldProc || !m_hWnd)
        return 0;
    return CallWindowProcA(m_oldProc, m_hWnd, m_current.message, m_current.wParam, m_current.lParam);
}
