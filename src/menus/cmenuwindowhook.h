// The menu window hook: one object for the life of the library that
// watches the thread's windows being made (WH_CALLWNDPROC) and subclasses
// every popup menu window (class "#32768"), so that the current menu theme
// sizes its frame and draws its border, background and shadow. A record per
// subclassed window holds what that needs.
#pragma once

#include "base/vxglobals.h"
#include "menus/cnewmenu.h"
#include "platform/framework/cmap.h"
#include "platform/windows/hooks.h"
#include "platform/windows/windowlong.h"
#include "ui/images/cbitmap.h"
#include "vxbase_ui_export.h"

#include <memory>
#include <vector>

class CMenuTheme;

// Flags of a subclassed menu window's record.
constexpr DWORD MENU_WND_SIZEWINDOW = 0x01; // seen first through MN_SIZEWINDOW
constexpr DWORD MENU_WND_STYLES = 0x02;     // its styles were changed
constexpr DWORD MENU_WND_ESCAPE = 0x04;     // Esc was pressed
constexpr DWORD MENU_WND_PRINT = 0x08;      // inside WM_PRINT

class VXBASE_UI_EXPORT CMenuWindowData {
public:
    CMenuWindowData() = default;
    ~CMenuWindowData();
    CMenuWindowData(const CMenuWindowData&) = delete;
    CMenuWindowData& operator=(const CMenuWindowData&) = delete;

    DWORD m_dwStyle = 0;
    DWORD m_dwExStyle = 0;
    int m_lastX = 0;
    int m_lastY = 0;
    DWORD m_dwData = 0;
    BOOL m_bBorderDrawn = FALSE;
    HMENU m_hMenu = nullptr;
    // What lay under the shadow: the four columns at the right (m_Screen)
    // and the four rows below (m_ScreenBelow).
    CBitmap m_Screen;
    CBitmap m_ScreenBelow;
    HRGN m_hRgn = reinterpret_cast<HRGN>(1);
    BOOL m_bDrawBorder = TRUE;
};

class VXBASE_UI_EXPORT CMenuWindowHook {
public:
    // The one hook, made on first need.
    static CMenuWindowHook& Instance();
    ~CMenuWindowHook();
    CMenuWindowHook(const CMenuWindowHook&) = delete;
    CMenuWindowHook& operator=(const CMenuWindowHook&) = delete;

    // The record of a subclassed menu window, null for none.
    static CMenuWindowData* GetMenuWindowData(HWND hwnd);
    // Gives the window its procedure back and drops its record.
    static void UnsubClassMenu(HWND hwnd);
    // Whether the desktop draws themed (never here).
    BOOL IsThemeActive() const;
    // The themes by number, in the order they were made.
    const std::vector<std::unique_ptr<CMenuTheme>>& Themes() const { return m_themes; }

    HHOOK m_hHookOldMenuCbtFilter = nullptr;
    CMapPtrToPtr m_MenuWndMap; // HWND to CMenuWindowData*
    HMENU m_hLastMenu = nullptr;
    DWORD m_dwMsgPos = 0;
    // Always 0: the dialog helper stays switched off.
    DWORD m_bitFlags = 0;

private:
    CMenuWindowHook();
    static LRESULT NewMenuHookProc(int code, WPARAM wParam, LPARAM lParam);
    static LRESULT SubClassMenu(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    static CMenuWindowData* CreateMenuWindowData(HWND hwnd, bool sizeWindow);
    static void AssignMenu(CMenuWindowData* data);

    std::vector<std::unique_ptr<CMenuTheme>> m_themes;
};

// The dialog helper: subclasses a dialog so that its system menu is drawn
// as a CNewMenu. The hook never makes one (its flag word stays 0).
class VXBASE_UI_EXPORT CNewMenuTempHandler : public CNewMenu {
public:
    explicit CNewMenuTempHandler(HWND dialog);
    ~CNewMenuTempHandler() override;

    static LRESULT TempSubclass(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_hWnd;
    WNDPROC m_oldWndProc = nullptr;
};

// Shows GetLastError's text in a message box titled "Error" (nothing for 0).
VXBASE_UI_EXPORT void ShowLastError();
// The class of the running system as GetVersionEx tells it (what g_Shell
// holds); WinXP, after ShowLastError, when the version cannot be read.
VXBASE_UI_EXPORT Win32Type GetShellType();
