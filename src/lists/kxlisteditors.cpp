#include "lists/kxlisteditors_p.h"

#include "platform/windows/windows.h"

namespace vx::lists {

LRESULT TextEditor::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | CEdit::WindowProc(message, wParam, lParam);
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE || wParam == VK_RETURN) {
            m_swallowChar = true;
            m_list.SendMessage(wParam == VK_ESCAPE ? WM_XEDIT_VK_ESCAPE : WM_XEDIT_KILL_FOCUS);
            return 0;
        }
        break;
    case WM_CHAR:
        if (m_swallowChar && (wParam == '\r' || wParam == 27)) {
            m_swallowChar = false;
            return 0;
        }
        break;
    case WM_KILLFOCUS: {
        const HWND self = m_hWnd;
        const LRESULT r = CEdit::WindowProc(message, wParam, lParam);
        // Losing the focus commits, unless the list closed the editor already.
        if (IsWindow(self) && m_hWnd)
            m_list.SendMessage(WM_XEDIT_KILL_FOCUS);
        return r;
    }
    default:
        break;
    }
    return CEdit::WindowProc(message, wParam, lParam);
}

void SuperComboBox::Tell(UINT message)
{
    if (m_told || !m_hWnd)
        return;
    m_told = true;
    m_list.SendMessage(message);
}

BOOL SuperComboBox::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message == WM_COMMAND) {
        const UINT code = HIWORD(static_cast<DWORD_PTR>(wParam));
        if (code == CBN_SELENDOK) {
            Tell(WM_XCOMBOLIST_COMPLETE);
            return TRUE;
        }
        if (code == CBN_SELENDCANCEL) {
            Tell(WM_XCOMBOLIST_VK_ESCAPE);
            return TRUE;
        }
    }
    return CComboBox::OnChildNotify(message, wParam, lParam, result);
}

LRESULT SuperComboBox::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        m_told = false;
        break;
    case WM_KEYDOWN:
        if (!GetDroppedState() && (wParam == VK_ESCAPE || wParam == VK_RETURN)) {
            Tell(wParam == VK_ESCAPE ? WM_XCOMBOLIST_VK_ESCAPE : WM_XCOMBOLIST_COMPLETE);
            return 0;
        }
        break;
    case WM_KILLFOCUS: {
        const HWND self = m_hWnd;
        const LRESULT r = CComboBox::WindowProc(message, wParam, lParam);
        // The focus left for something else than the combo's own list.
        const HWND to = reinterpret_cast<HWND>(wParam);
        CWnd* next = CWnd::FromHandle(to);
        if (IsWindow(self) && !(next && (next == this || IsChild(next) || next->GetParent() == this)))
            Tell(WM_XCOMBOLIST_VK_ESCAPE);
        return r;
    }
    default:
        break;
    }
    return CComboBox::WindowProc(message, wParam, lParam);
}

LRESULT InputBox::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_WANTALLKEYS | DLGC_WANTTAB | CEdit::WindowProc(message, wParam, lParam);
    case WM_KEYDOWN: {
        if (wParam == VK_DELETE)
            deleted = true;
        const HWND self = m_hWnd;
        const LRESULT pass = m_list.SendMessage(WM_XLISTCTRL_EDITKEY, wParam, 0);
        if (!pass) {
            m_swallowChar = true;
            return 0;
        }
        if (!IsWindow(self) || !m_hWnd)
            return 0;
        m_swallowChar = false;
        break;
    }
    case WM_CHAR:
        if (m_swallowChar || wParam == '\t' || wParam == '\r' || wParam == 27) {
            m_swallowChar = false;
            return 0; // the key was the list's, or one an edit of one line takes no char of
        }
        break;
    case WM_KILLFOCUS: {
        const HWND self = m_hWnd;
        const LRESULT r = CEdit::WindowProc(message, wParam, lParam);
        // Losing the focus works as Escape does.
        if (IsWindow(self) && open)
            m_list.SendMessage(WM_XLISTCTRL_EDITKEY, VK_ESCAPE, 0);
        return r;
    }
    default:
        break;
    }
    return CEdit::WindowProc(message, wParam, lParam);
}

} // namespace vx::lists
