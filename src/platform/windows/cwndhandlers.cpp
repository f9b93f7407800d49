#include "platform/windows/cwnd.h"
#include "platform/windows/menubarbridge.h"

// The default handlers: each passes its message on to DefWindowProc, as the
// framework's handlers do, unless its comment in cwnd.h says otherwise.

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
    // A menu item goes to its menu's object, as the framework does.
    const vx::MenuBarBridge& menus = vx::GetMenuBarBridge();
    if (item && item->CtlType == ODT_MENU && menus.drawItem && menus.drawItem(*item))
        return;
    Default();
}

void CWnd::OnMeasureItem(int controlId, LPMEASUREITEMSTRUCT item)
{
    LRESULT result = 0;
    if (item && item->CtlType != ODT_MENU &&
        ReflectToChild(GetDlgItem(controlId), WM_MEASUREITEM, m_current.wParam, m_current.lParam, &result))
        return;
    const vx::MenuBarBridge& menus = vx::GetMenuBarBridge();
    if (item && item->CtlType == ODT_MENU && menus.measureItem && menus.measureItem(*this, *item))
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
