// CNewFrame: a framework frame class that hands its menus to CNewMenu (the
// owner-drawn popups, measuring, keyboard shortcuts, the system menu), gives
// its menu bar the draw mode's background, draws the one-pixel line between
// that bar and the client, and docks its bars on the library's dock bars.
// Hot tracking of the frame's own menu bar is emulated with a timer where
// the system does not do it.
//
//   class CMainFrame : public CNewMDIFrameWnd { ... };
//   frame.EnableDocking(CBRS_ALIGN_ANY);   // CNewDockBar sides, CNewMiniDockFrameWnd floats
#pragma once

#include "frames/cnewdockbar.h"
#include "menus/cnewmenu.h"
#include "platform/windows/cframewnd.h"
#include "ui/bars/cminidockframewnd.h"
#include "ui/mdi/cmdichildwnd.h"
#include "vxbase_ui_export.h"

#include <functional>
#include <memory>
#include <vector>

// What a CNewFrame adds to its base, in this order.
struct VXBASE_UI_EXPORT CNewFrameData {
    CNewMenu m_DefaultNewMenu;
    CNewMenu m_SystemNewMenu;
    BOOL m_bInMenuLoop = FALSE;
    UINT m_TimerID = 0;
    int m_menubarItemIndex = -1;
    // The dock bars EnableDocking made; they go with the frame.
    std::vector<std::unique_ptr<CNewDockBar>> m_newDockBars;
};

namespace vx {

using FrameBaseProc = std::function<LRESULT(UINT, WPARAM, LPARAM)>;
// The messages a CNewFrame handles, for any base: `base` is the base class's
// procedure. Answers what the frame answers.
VXBASE_UI_EXPORT LRESULT NewFrameProc(CFrameWnd& frame, CNewFrameData& data, UINT message, WPARAM wParam,
                                      LPARAM lParam, const FrameBaseProc& base);
// The line between the menu bar and the client, in the frame menu's
// background brush; nothing without one.
VXBASE_UI_EXPORT void DrawSmallBorder(CFrameWnd& frame);
// A frame made with the menu its CNewMenu loaded: the menu goes on the
// window and takes the menu bar colour of the draw mode.
VXBASE_UI_EXPORT void NewFrameMenuMade(CFrameWnd& frame, CNewFrameData& data);
// Makes the library's dock bars for the sides of `style` that have none.
VXBASE_UI_EXPORT void NewFrameEnableDocking(CFrameWnd& frame, CNewFrameData& data, DWORD style);

} // namespace vx

template <class Base>
class CNewFrame : public Base, public CNewFrameData {
public:
    // The window goes before the dock bars the frame made for it.
    ~CNewFrame() override
    {
        if (this->m_hWnd)
            this->DestroyWindow();
    }
    void DrawSmallBorder() { vx::DrawSmallBorder(*this); }
    using Base::Create;
    // As the framework's, but the menu is loaded by the frame's CNewMenu;
    // without it there is no frame.
    BOOL Create(const char* className, const char* title, DWORD style = WS_OVERLAPPEDWINDOW,
                const RECT& rect = CFrameWnd::rectDefault, CWnd* parent = nullptr, const char* menuName = nullptr,
                DWORD exStyle = 0, CCreateContext* context = nullptr) override
    {
        if (menuName && !this->m_DefaultNewMenu.LoadMenu(menuName)) {
            this->PostNcDestroy();
            return FALSE;
        }
        if (!this->CFrameWnd::Create(className, title, style, rect, parent, nullptr, exStyle, context))
            return FALSE;
        if (menuName)
            vx::NewFrameMenuMade(*this, *this);
        return TRUE;
    }
    // As the framework's, with CNewDockBar sides and CNewMiniDockFrameWnd
    // for floating bars.
    void EnableDocking(DWORD style)
    {
        vx::NewFrameEnableDocking(*this, *this, style);
        Base::EnableDocking(style);
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        return vx::NewFrameProc(*this, *this, message, wParam, lParam,
                                [this](UINT m, WPARAM w, LPARAM l) { return Base::WindowProc(m, w, l); });
    }
};

class VXBASE_UI_EXPORT CNewFrameWnd : public CNewFrame<CFrameWnd> {};

class VXBASE_UI_EXPORT CNewMiniDockFrameWnd : public CNewFrame<CMiniDockFrameWnd> {};

class VXBASE_UI_EXPORT CNewMDIChildWnd : public CNewFrame<CMDIChildWnd> {};

class VXBASE_UI_EXPORT CNewMDIFrameWnd : public CNewFrame<CMDIFrameWnd> {
public:
    // Hides the menu bar (FALSE), keeping its menu, and shows it again
    // (TRUE). Hiding answers 1 when there was a menu; showing answers 0, or
    // 1 when nothing was kept.
    BOOL ShowMenu(BOOL show);

protected:
    HMENU m_hShowMenu = nullptr;
};
