#include "menus/cmenuwindowhook.h"

#include "menus/menucolors.h"
#include "menus/menutheme.h"

#include "base/vxglobals.h"
#include "base/vxmessagebox.h"
#include "platform/shell/sysversion.h"
#include "platform/windows/atoms.h"
#include "platform/windows/lasterror.h"
#include "platform/windows/sysmetrics.h"
#include "platform/windows/windowprops.h"
#include "platform/windows/windows.h"
#include "ui/gdi/wingdi.h"

#include <cstring>

namespace {

constexpr const char* kOldMenuProc = "OldMenuProc";
constexpr const char* kTempHandler = "CNewMenuTempHandler";

WNDPROC OldProc(HWND hwnd)
{
    return reinterpret_cast<WNDPROC>(GetPropA(hwnd, kOldMenuProc));
}

LRESULT CallOld(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    WNDPROC old = OldProc(hwnd);
    return old ? CallWindowProcA(old, hwnd, message, wParam, lParam) : DefWindowProcA(hwnd, message, wParam, lParam);
}

CMenuTheme* Theme()
{
    return CNewMenu::m_pActMenuDrawing;
}

} // namespace

void ShowLastError()
{
    const DWORD error = GetLastError();
    if (!error)
        return;
    char text[512] = {};
    if (FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                       sizeof text, nullptr) == 0) {
        CString missing;
        missing.Format("Error message 0x%lx not found", static_cast<unsigned long>(error));
        VxMessageBox(missing, "Error", MB_OK);
        return;
    }
    VxMessageBox(text, "Error", MB_OK);
}

Win32Type GetShellType()
{
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (!GetVersionExA(&info)) {
        ShowLastError();
        return WinXP;
    }
    return vx::ClassifySystem(info.dwPlatformId == VER_PLATFORM_WIN32_NT, info.dwMajorVersion, info.dwMinorVersion);
}

// --- records ------------------------------------------------------------------------------------

CMenuWindowData::~CMenuWindowData()
{
    if (m_hRgn && m_hRgn != reinterpret_cast<HRGN>(1))
        DeleteObject(m_hRgn);
}

// --- the hook ------------------------------------------------------------------------------------

CMenuWindowHook& CMenuWindowHook::Instance()
{
    static CMenuWindowHook* hook = new CMenuWindowHook;
    return *hook;
}

CMenuWindowHook::CMenuWindowHook()
{
    if (g_Shell > Win2000 - 1 && GetSystemMetrics(SM_REMOTESESSION))
        bRemoteSession = 1;
    (void)IsHighContrast();
    using M = CNewMenu;
    auto add = [this](CMenuTheme* theme) { m_themes.emplace_back(theme); };
    add(new CMenuTheme(M::STYLE_ICY, &M::MeasureItem_Icy, &M::DrawItem_Icy, &M::DrawMenuTitle, 1));
    add(new CMenuTheme(M::STYLE_ICY_NOBORDER, &M::MeasureItem_Icy, &M::DrawItem_Icy, &M::DrawMenuTitle, 0));
    add(new CMenuTheme(M::STYLE_ORIGINAL, &M::MeasureItem_OldStyle, &M::DrawItem_OldStyle, &M::DrawMenuTitle, 1));
    add(new CMenuTheme(M::STYLE_ORIGINAL_NOBORDER, &M::MeasureItem_OldStyle, &M::DrawItem_OldStyle,
                       &M::DrawMenuTitle, 0));
    add(new CMenuThemeXP(M::STYLE_XP, &M::MeasureItem_WinXP, &M::DrawItem_WinXP, &M::DrawMenuTitle, 1));
    add(new CMenuThemeXP(M::STYLE_XP_NOBORDER, &M::MeasureItem_WinXP, &M::DrawItem_WinXP, &M::DrawMenuTitle, 0));
    add(new CMenuThemeXP(M::STYLE_XP_2003, &M::MeasureItem_WinXP, &M::DrawItem_XP_2003, &M::DrawMenuTitle, 1));
    add(new CMenuThemeXP(M::STYLE_XP_2003_NOBORDER, &M::MeasureItem_WinXP, &M::DrawItem_XP_2003, &M::DrawMenuTitle,
                         0));
    add(new CMenuTheme(M::STYLE_SPECIAL, &M::MeasureItem_OldStyle, &M::DrawItem_SpecialStyle, &M::DrawMenuTitle, 1));
    add(new CMenuTheme(M::STYLE_SPECIAL_NOBORDER, &M::MeasureItem_OldStyle, &M::DrawItem_SpecialStyle,
                       &M::DrawMenuTitle, 0));
    CNewMenu::m_pActMenuDrawing = m_themes[4].get();
    m_MenuWndMap.InitHashTable(10);
    if (!m_hHookOldMenuCbtFilter) {
        m_hHookOldMenuCbtFilter =
            SetWindowsHookExA(WH_CALLWNDPROC, &CMenuWindowHook::NewMenuHookProc, nullptr, GetCurrentThreadId());
        if (!m_hHookOldMenuCbtFilter)
            ShowLastError();
    }
}

CMenuWindowHook::~CMenuWindowHook()
{
    if (m_hHookOldMenuCbtFilter && !UnhookWindowsHookEx(m_hHookOldMenuCbtFilter))
        ShowLastError();
    CNewMenu::m_pActMenuDrawing = nullptr;
    m_themes.clear();
    if (CNewMenu::m_pSharedMenuIcons) {
        for (CNewMenuIcons* icons : *CNewMenu::m_pSharedMenuIcons)
            delete icons;
        delete CNewMenu::m_pSharedMenuIcons;
        CNewMenu::m_pSharedMenuIcons = nullptr;
    }
}

BOOL CMenuWindowHook::IsThemeActive() const
{
    return FALSE;
}

CMenuWindowData* CMenuWindowHook::GetMenuWindowData(HWND hwnd)
{
    void* data = nullptr;
    if (Instance().m_MenuWndMap.Lookup(hwnd, data))
        return static_cast<CMenuWindowData*>(data);
    return nullptr;
}

void CMenuWindowHook::AssignMenu(CMenuWindowData* data)
{
    CMenuWindowHook& hook = Instance();
    data->m_hMenu = hook.m_hLastMenu;
    hook.m_hLastMenu = nullptr;
    const bool ours = data->m_hMenu && dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(data->m_hMenu));
    data->m_bDrawBorder = (CNewMenu::m_bNewMenuBorderAllMenu || ours) ? TRUE : FALSE;
}

CMenuWindowData* CMenuWindowHook::CreateMenuWindowData(HWND hwnd, bool sizeWindow)
{
    auto* data = new CMenuWindowData;
    if (sizeWindow)
        data->m_dwData |= MENU_WND_SIZEWINDOW;
    AssignMenu(data);
    data->m_dwStyle = static_cast<DWORD>(GetWindowLongPtrA(hwnd, GWL_STYLE));
    data->m_dwExStyle = static_cast<DWORD>(GetWindowLongPtrA(hwnd, GWL_EXSTYLE));
    Instance().m_MenuWndMap.SetAt(hwnd, data);
    return data;
}

LRESULT CMenuWindowHook::NewMenuHookProc(int code, WPARAM wParam, LPARAM lParam)
{
    CMenuWindowHook& hook = Instance();
    auto* cwp = reinterpret_cast<CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && cwp && (cwp->message == WM_CREATE || cwp->message == MN_SIZEWINDOW)) {
        char name[20] = {};
        GetClassNameA(cwp->hwnd, name, sizeof name);
        if (std::strlen(name) == 6 && std::strcmp(name, "#32768") == 0) {
            HWND hwnd = cwp->hwnd;
            CMenuWindowData* data = GetMenuWindowData(hwnd);
            if (!data) {
                auto proc = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(hwnd, GWLP_WNDPROC));
                if (proc && !GetPropA(hwnd, kOldMenuProc)) {
                    if (!SetPropA(hwnd, kOldMenuProc, reinterpret_cast<HANDLE>(proc)))
                        ShowLastError();
                    if (OldProc(hwnd) == proc) {
                        GlobalAddAtomA(kOldMenuProc);
                        data = CreateMenuWindowData(hwnd, cwp->message == MN_SIZEWINDOW);
                        SetWindowLongPtrA(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&SubClassMenu));
                        if (Theme())
                            Theme()->OnInitWnd(hwnd);
                    }
                }
            }
            if (hook.m_hLastMenu && data) {
                // The window was made before its menu was known.
                AssignMenu(data);
                if (Theme())
                    Theme()->OnInitWnd(hwnd);
            }
        }
    }
    return CallNextHookEx(hook.m_hHookOldMenuCbtFilter, code, wParam, lParam);
}

void CMenuWindowHook::UnsubClassMenu(HWND hwnd)
{
    WNDPROC old = OldProc(hwnd);
    if (old) {
        SetLastError(0);
        if (!SetWindowLongPtrA(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(old)))
            ShowLastError();
        RemovePropA(hwnd, kOldMenuProc);
        GlobalDeleteAtom(GlobalFindAtomA(kOldMenuProc));
    }
    if (CMenuWindowData* data = GetMenuWindowData(hwnd)) {
        if (Theme())
            Theme()->OnUnInitWnd(hwnd);
        Instance().m_MenuWndMap.RemoveKey(hwnd);
        delete data;
    }
}

LRESULT CMenuWindowHook::SubClassMenu(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    CMenuWindowData* data = GetMenuWindowData(hwnd);
    CMenuTheme* theme = Theme();
    if (!data || !theme)
        return CallOld(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_NCCALCSIZE:
        if (data->m_bDrawBorder && theme->OnNcCalcSize(hwnd, reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam)))
            return 0;
        break;
    case WM_ERASEBKGND:
        if (data->m_bDrawBorder) {
            if (theme->DoDrawBorder() && !(data->m_dwData & MENU_WND_PRINT) && !data->m_bBorderDrawn) {
                data->m_bBorderDrawn = TRUE;
                SendMessageA(hwnd, WM_NCPAINT, 1, 0);
            }
            if (theme->OnEraseBkgnd(hwnd, reinterpret_cast<HDC>(wParam)))
                return 1;
        }
        break;
    case WM_SHOWWINDOW:
        if (!wParam) {
            UnsubClassMenu(hwnd);
            return CallWindowProcA(reinterpret_cast<WNDPROC>(GetWindowLongPtrA(hwnd, GWLP_WNDPROC)), hwnd, message,
                                   wParam, lParam);
        }
        break;
    case WM_NCDESTROY: {
        WNDPROC old = OldProc(hwnd);
        UnsubClassMenu(hwnd);
        return old ? CallWindowProcA(old, hwnd, message, wParam, lParam) : 0;
    }
    case WM_WINDOWPOSCHANGING:
    case WM_WINDOWPOSCHANGED: {
        auto* pos = reinterpret_cast<LPWINDOWPOS>(lParam);
        if (message == WM_WINDOWPOSCHANGING && data->m_bDrawBorder)
            theme->OnWindowPosChanging(hwnd, pos);
        if (pos && !(pos->flags & SWP_NOMOVE)) {
            if (!data->m_lastX && !data->m_lastY) {
                data->m_lastX = pos->x;
                data->m_lastY = pos->y;
            } else if (data->m_lastX != pos->x || data->m_lastY != pos->y) {
                if (!(pos->flags & SWP_NOSIZE)) {
                    const LRESULT r = CallOld(hwnd, message, wParam, lParam);
                    UnsubClassMenu(hwnd);
                    return r;
                }
                data->m_lastX = pos->x;
                data->m_lastY = pos->y;
                data->m_Screen.DeleteObject();
                data->m_ScreenBelow.DeleteObject();
            }
        }
        break;
    }
    case WM_NCPAINT:
        if (data->m_bDrawBorder) {
            if (!data->m_bBorderDrawn && reinterpret_cast<HRGN>(wParam) != data->m_hRgn) {
                if (data->m_hRgn && data->m_hRgn != reinterpret_cast<HRGN>(1))
                    DeleteObject(data->m_hRgn);
                data->m_hRgn = reinterpret_cast<HRGN>(1);
                if (wParam > 1) {
                    HRGN copy = CreateRectRgn(0, 0, 0, 0);
                    CombineRgn(copy, reinterpret_cast<HRGN>(wParam), nullptr, RGN_COPY);
                    data->m_hRgn = copy;
                }
            }
            bool wantDefault = !(data->m_dwData & MENU_WND_PRINT);
            if (data->m_bBorderDrawn && theme->DoDrawBorder()) {
                if (HDC dc = GetWindowDC(hwnd)) {
                    if (theme->OnDrawBorder(hwnd, dc, FALSE)) {
                        RECT frame{};
                        if (theme->OnCalcFrameRect(hwnd, &frame)) {
                            InflateRect(&frame, -1, -1);
                            HRGN region = CreateRectRgnIndirect(&frame);
                            CallOld(hwnd, message, reinterpret_cast<WPARAM>(region), lParam);
                            DeleteObject(region);
                            wantDefault = false;
                        }
                        theme->OnDrawBorder(hwnd, dc, TRUE);
                    }
                    ReleaseDC(hwnd, dc);
                }
            }
            if (theme->DoDrawBorder()) {
                if (!wantDefault)
                    return 0;
                CMenuTheme::CaptureScreen(hwnd, data);
            }
            if (wantDefault)
                return CallOld(hwnd, message, wParam, lParam);
            return 0;
        }
        break;
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE)
            data->m_dwData |= MENU_WND_ESCAPE;
        Instance().m_dwMsgPos = GetMessagePos();
        break;
    case WM_PRINT:
        if (data->m_bDrawBorder && theme->DoDrawBorder()) {
            data->m_dwData |= MENU_WND_PRINT;
            RECT window{};
            GetWindowRect(hwnd, &window);
            const int w = window.right - window.left;
            const int h = window.bottom - window.top;
            HDC target = reinterpret_cast<HDC>(wParam);
            HDC memory = CreateCompatibleDC(target);
            HBITMAP bitmap = CreateCompatibleBitmap(target, w, h);
            HGDIOBJ old = SelectObject(memory, bitmap);
            theme->OnDrawBorder(hwnd, memory, FALSE);
            RECT frame{};
            if (theme->OnCalcFrameRect(hwnd, &frame)) {
                OffsetRect(&frame, -window.left, -window.top);
                InflateRect(&frame, -1, -1);
                const int saved = SaveDC(memory);
                IntersectClipRect(memory, frame.left, frame.top, frame.right, frame.bottom);
                CallOld(hwnd, message, reinterpret_cast<WPARAM>(memory), lParam & ~static_cast<LPARAM>(4));
                RestoreDC(memory, saved);
                BitBlt(target, 0, 0, w, h, memory, 0, 0, SRCCOPY);
            }
            RECT client{};
            GetClientRect(hwnd, &client);
            POINT origin{0, 0};
            ClientToScreen(hwnd, &origin);
            const int cx = origin.x - window.left;
            const int cy = origin.y - window.top;
            const int saved = SaveDC(memory);
            SetViewportOrgEx(memory, cx, cy, nullptr);
            IntersectClipRect(memory, 0, 0, client.right, client.bottom);
            SendMessageA(hwnd, WM_ERASEBKGND, reinterpret_cast<WPARAM>(memory), 0);
            SendMessageA(hwnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory), PRF_CLIENT);
            RestoreDC(memory, saved);
            BitBlt(target, cx, cy, client.right - 1, client.bottom, memory, cx, cy, SRCCOPY);
            SelectObject(memory, old);
            DeleteObject(bitmap);
            DeleteDC(memory);
            data->m_dwData &= ~MENU_WND_PRINT;
            return 0;
        }
        break;
    default:
        break;
    }
    return CallOld(hwnd, message, wParam, lParam);
}

// --- the dialog helper ------------------------------------------------------------------------------

CNewMenuTempHandler::CNewMenuTempHandler(HWND dialog) : m_hWnd(dialog)
{
    m_oldWndProc = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(dialog, GWLP_WNDPROC));
    SetPropA(dialog, kTempHandler, reinterpret_cast<HANDLE>(this));
    SetWindowLongPtrA(dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TempSubclass));
}

CNewMenuTempHandler::~CNewMenuTempHandler()
{
    if (m_hWnd && IsWindow(m_hWnd)) {
        SetWindowLongPtrA(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_oldWndProc));
        RemovePropA(m_hWnd, kTempHandler);
    }
    Detach();
}

LRESULT CNewMenuTempHandler::TempSubclass(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* self = static_cast<CNewMenuTempHandler*>(GetPropA(hwnd, kTempHandler));
    if (!self)
        return DefWindowProcA(hwnd, message, wParam, lParam);
    WNDPROC old = self->m_oldWndProc;
    switch (message) {
    case WM_DESTROY: {
        const LRESULT r = CallWindowProcA(old, hwnd, message, wParam, lParam);
        delete self;
        return r;
    }
    case WM_DRAWITEM: {
        auto* dis = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam);
        if (dis && dis->CtlType == ODT_MENU) {
            if (auto* menu = dynamic_cast<CNewMenu*>(
                    CMenu::FromHandlePermanent(reinterpret_cast<HMENU>(dis->hwndItem)))) {
                menu->DrawItem(dis);
                return 1;
            }
        }
        break;
    }
    case WM_MEASUREITEM: {
        MSG msg{hwnd, message, wParam, lParam, 0, {}};
        if (CNewMenu::OnMeasureItem(&msg))
            return 1;
        break;
    }
    case WM_INITDIALOG:
        if (CMenuWindowHook::Instance().m_bitFlags & 0x02) {
            const LRESULT r = CallWindowProcA(old, hwnd, message, wParam, lParam);
            HMENU sys = GetSystemMenu(hwnd, FALSE);
            if (IsMenu(sys) && !dynamic_cast<CNewMenu*>(CMenu::FromHandlePermanent(sys)))
                self->LoadMenu(sys);
            return r;
        }
        break;
    case WM_INITMENUPOPUP: {
        const LRESULT r = CallWindowProcA(old, hwnd, message, wParam, lParam);
        CNewMenu::OnInitMenuPopup(hwnd, CMenu::FromHandle(reinterpret_cast<HMENU>(wParam)), LOWORD(lParam),
                                  HIWORD(lParam));
        return r;
    }
    case WM_MENUCHAR: {
        CMenu* menu = CMenu::FromHandle(reinterpret_cast<HMENU>(lParam));
        if (dynamic_cast<CNewMenu*>(menu))
            return CNewMenu::FindKeyboardShortcut(LOWORD(wParam), HIWORD(wParam), menu);
        break;
    }
    default:
        break;
    }
    return CallWindowProcA(old, hwnd, message, wParam, lParam);
}
