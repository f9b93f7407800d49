#include "frames/cnewframe.h"

#include "base/libraryframe.h"
#include "base/vxglobals.h"
#include "menus/menubarcolor.h"
#include "platform/windows/sysmetrics.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/menus/winmenu.h"

#include <stdexcept>

namespace {

struct DockRow {
    UINT id;
    DWORD style;
};
// The sides in the order they are made.
constexpr DockRow kDockMap[] = {{0xE81B, 0x2800}, {0xE81E, 0x8200}, {0xE81C, 0x1400}, {0xE81D, 0x4100}};

CFrameWnd* MakeNewMiniFrame()
{
    return new CNewMiniDockFrameWnd;
}

CMenu* FrameMenu(CFrameWnd& frame)
{
    const HMENU menu = ::GetMenu(frame.m_hWnd);
    return menu ? CMenu::FromHandle(menu) : nullptr;
}

void ForgetHot(CFrameWnd& frame, CNewFrameData& data)
{
    if (data.m_menubarItemIndex >= 0) {
        if (CMenu* menu = FrameMenu(frame))
            DrawMenubarItem(&frame, menu, static_cast<UINT>(data.m_menubarItemIndex), 0);
    }
    data.m_menubarItemIndex = -1;
    if (data.m_TimerID) {
        frame.KillTimer(data.m_TimerID);
        data.m_TimerID = 0;
    }
}

// The frame's menu bar has its hot entry drawn by the system on newer
// shells; elsewhere the frame draws it and a timer notices the mouse leave.
LRESULT HitTest(CFrameWnd& frame, CNewFrameData& data, LRESULT hit, LPARAM lParam)
{
    if (g_Shell > WinNT4 && !bRemoteSession)
        return hit;
    CMenu* menu = FrameMenu(frame);
    const bool newMenu = menu && dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(menu->m_hMenu));
    int position = -1;
    if (!data.m_bInMenuLoop && hit == HTMENU && newMenu) {
        const POINT screen{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        position = MenuItemFromPoint(frame.m_hWnd, menu->m_hMenu, screen);
    }
    if (position < 0) {
        ForgetHot(frame, data);
        return hit;
    }
    if (position == data.m_menubarItemIndex) {
        if (CNewMenu::m_dwLastActiveItem)
            return hit;
        if (!DrawMenubarItem(&frame, menu, static_cast<UINT>(position), ODS_HOTLIGHT))
            return hit;
    } else {
        if (data.m_menubarItemIndex >= 0)
            DrawMenubarItem(&frame, menu, static_cast<UINT>(data.m_menubarItemIndex), 0);
        if (!DrawMenubarItem(&frame, menu, static_cast<UINT>(position), ODS_HOTLIGHT)) {
            data.m_menubarItemIndex = -1;
            return hit;
        }
    }
    if (!data.m_TimerID) {
        data.m_TimerID = GetSafeTimerID(frame.m_hWnd, 100);
        if (data.m_TimerID)
            frame.SetTimer(data.m_TimerID, 100);
    }
    data.m_menubarItemIndex = position;
    return hit;
}

} // namespace

namespace vx {

void NewFrameMenuMade(CFrameWnd& frame, CNewFrameData& data)
{
    HMENU menu = data.m_DefaultNewMenu.m_hMenu;
    if (!menu || !frame.m_hWnd)
        return;
    ::SetMenu(frame.m_hWnd, menu);
    UpdateMenuBarColor(menu);
}

void DrawSmallBorder(CFrameWnd& frame)
{
    if (!frame.m_hWnd)
        return;
    const HMENU menu = ::GetMenu(frame.m_hWnd);
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    if (!menu || !GetMenuInfo(menu, &info) || !info.hbrBack)
        return;
    CRect window;
    frame.GetWindowRect(&window);
    CRect client;
    frame.GetClientRect(&client);
    frame.ClientToScreen(&client);
    client.OffsetRect(-window.left, -window.top);
    CWindowDC dc(&frame);
    const CPoint old = dc.SetBrushOrg(0, 0);
    CRect line(client.left, client.top - 1, client.right, client.top);
    dc.FillRect(&line, CBrush::FromHandle(info.hbrBack));
    dc.SetBrushOrg(old);
}

void NewFrameEnableDocking(CFrameWnd& frame, CNewFrameData& data, DWORD style)
{
    frame.m_pFloatingFrameFactory = &MakeNewMiniFrame;
    for (const DockRow& row : kDockMap) {
        if (!(row.style & style & 0xF000) || frame.GetDlgItem(static_cast<int>(row.id)))
            continue;
        auto dock = std::make_unique<CNewDockBar>();
        if (!dock->Create(&frame, row.style | 0x56000000, row.id))
            throw std::runtime_error("CNewFrame: a dock bar could not be made");
        dock->m_pDockSite = &frame;
        data.m_newDockBars.push_back(std::move(dock));
    }
}

LRESULT NewFrameProc(CFrameWnd& frame, CNewFrameData& data, UINT message, WPARAM wParam, LPARAM lParam,
                     const FrameBaseProc& base)
{
    switch (message) {
    case WM_CREATE: {
        if (base(message, wParam, lParam) == -1)
            return -1;
        if (data.m_SystemNewMenu.m_hMenu)
            data.m_SystemNewMenu.DestroyMenu();
        data.m_SystemNewMenu.Attach(GetSystemMenu(frame.m_hWnd, FALSE));
        return 0;
    }
    case WM_INITMENUPOPUP: {
        const LRESULT result = base(message, wParam, lParam);
        CNewMenu::OnInitMenuPopup(frame.m_hWnd, CMenu::FromHandle(reinterpret_cast<HMENU>(wParam)), LOWORD(lParam),
                                  HIWORD(lParam));
        return result;
    }
    case WM_MEASUREITEM: {
        MSG msg{frame.m_hWnd, message, wParam, lParam, 0, {0, 0}};
        if (CNewMenu::OnMeasureItem(&msg))
            return TRUE;
        return base(message, wParam, lParam);
    }
    case WM_MENUCHAR: {
        CMenu* menu = CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(lParam));
        if (dynamic_cast<CNewMenu*>(menu))
            return CNewMenu::FindKeyboardShortcut(LOWORD(wParam), HIWORD(wParam), menu);
        return base(message, wParam, lParam);
    }
    case WM_SYSCOLORCHANGE: {
        const LRESULT result = base(message, wParam, lParam);
        CNewMenu::OnSysColorChange();
        UpdateMenuBarColor(::GetMenu(frame.m_hWnd));
        return result;
    }
    case WM_ENTERMENULOOP:
        data.m_bInMenuLoop = TRUE;
        ForgetHot(frame, data);
        return base(message, wParam, lParam);
    case WM_EXITMENULOOP:
        data.m_bInMenuLoop = FALSE;
        return base(message, wParam, lParam);
    case WM_TIMER: {
        const LRESULT result = base(message, wParam, lParam);
        if (data.m_TimerID && wParam == data.m_TimerID) {
            POINT cursor{};
            GetCursorPos(&cursor);
            frame.SendMessage(WM_NCHITTEST, 0, MAKELPARAM(cursor.x, cursor.y));
        }
        return result;
    }
    case WM_DESTROY:
        if (data.m_TimerID) {
            frame.KillTimer(data.m_TimerID);
            data.m_TimerID = 0;
        }
        // The system menu is the window's; it goes with the window.
        data.m_SystemNewMenu.Detach();
        return base(message, wParam, lParam);
    case WM_NCHITTEST:
        return HitTest(frame, data, base(message, wParam, lParam), lParam);
    case WM_NCPAINT:
    case WM_PAINT:
    case WM_ACTIVATE:
    case WM_ACTIVATEAPP: {
        const LRESULT result = base(message, wParam, lParam);
        DrawSmallBorder(frame);
        return result;
    }
    default:
        return base(message, wParam, lParam);
    }
}

} // namespace vx

BOOL CNewMDIFrameWnd::ShowMenu(BOOL show)
{
    if (!show) {
        const HMENU menu = ::GetMenu(m_hWnd);
        if (!menu)
            return FALSE;
        m_hShowMenu = menu;
        ::SetMenu(m_hWnd, nullptr);
        return TRUE;
    }
    if (!m_hShowMenu)
        return TRUE;
    ::SetMenu(m_hWnd, m_hShowMenu);
    m_hShowMenu = nullptr;
    return FALSE;
}
