// The framework's frame classes that hosts hand to the library
// (g_pDLLMainframe is a CMDIFrameWnd), with their control bars: a frame that
// takes docking has a dock bar on each side it allows, and lays its bars out
// around the pane (the child with id AFX_IDW_PANE_FIRST, the MDI client or a
// view) whenever it changes size.
//
//   frame.EnableDocking(CBRS_ALIGN_ANY);
//   toolBar.EnableDocking(CBRS_ALIGN_ANY);
//   frame.DockControlBar(&toolBar);
//   frame.LoadBarState("Bars");
//
// The bars are window classes of vxbase-ui; it installs how a frame docks
// them (vx::SetFrameDocking). Without it a frame only lays out its pane.
#pragma once

#include "platform/windows/cwnd.h"
#include "vxbase_export.h"

#include <functional>
#include <vector>

class CControlBar; // vxbase-ui
struct HACCEL__;      // accelerator tables are vxbase-ui's
using HACCEL = HACCEL__*;

// Ids of the frame's standard children.
constexpr UINT AFX_IDW_TOOLBAR = 0xE800;
constexpr UINT AFX_IDW_STATUS_BAR = 0xE801;
constexpr UINT AFX_IDW_DOCKBAR_TOP = 0xE81B;
constexpr UINT AFX_IDW_DOCKBAR_LEFT = 0xE81C;
constexpr UINT AFX_IDW_DOCKBAR_RIGHT = 0xE81D;
constexpr UINT AFX_IDW_DOCKBAR_BOTTOM = 0xE81E;
constexpr UINT AFX_IDW_DOCKBAR_FLOAT = 0xE81F;
constexpr UINT AFX_IDW_PANE_FIRST = 0xE900;

// The sides a bar docks at and the borders it draws.
constexpr DWORD CBRS_ALIGN_LEFT = 0x1000;
constexpr DWORD CBRS_ALIGN_TOP = 0x2000;
constexpr DWORD CBRS_ALIGN_RIGHT = 0x4000;
constexpr DWORD CBRS_ALIGN_BOTTOM = 0x8000;
constexpr DWORD CBRS_ALIGN_ANY = 0xF000;
constexpr DWORD CBRS_BORDER_LEFT = 0x0100;
constexpr DWORD CBRS_BORDER_TOP = 0x0200;
constexpr DWORD CBRS_BORDER_RIGHT = 0x0400;
constexpr DWORD CBRS_BORDER_BOTTOM = 0x0800;
constexpr DWORD CBRS_BORDER_ANY = 0x0F00;
constexpr DWORD CBRS_ORIENT_HORZ = CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM;
constexpr DWORD CBRS_ORIENT_VERT = CBRS_ALIGN_LEFT | CBRS_ALIGN_RIGHT;
constexpr DWORD CBRS_FLOATING = 0x0001;
constexpr DWORD CBRS_SIZE_FIXED = 0x0002;
constexpr DWORD CBRS_SIZE_DYNAMIC = 0x0004;
constexpr DWORD CBRS_HIDE_INPLACE = 0x0008;
constexpr DWORD CBRS_TOOLTIPS = 0x0010;
constexpr DWORD CBRS_FLYBY = 0x0020;
constexpr DWORD CBRS_FLOAT_MULTI = 0x0040;
constexpr DWORD CBRS_BORDER_3D = 0x0080;
constexpr DWORD CBRS_GRIPPER = 0x00400000;
constexpr DWORD CBRS_TOP = CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM;
constexpr DWORD CBRS_BOTTOM = CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP;
constexpr DWORD CBRS_LEFT = CBRS_ALIGN_LEFT | CBRS_BORDER_RIGHT;
constexpr DWORD CBRS_RIGHT = CBRS_ALIGN_RIGHT | CBRS_BORDER_LEFT;
constexpr DWORD CBRS_ALL = 0x0040FFFF;

// The messages of an MDI client and its children.
constexpr UINT WM_CHILDACTIVATE = 0x0022;
constexpr UINT WM_MDICREATE = 0x0220;
constexpr UINT WM_MDIDESTROY = 0x0221;
constexpr UINT WM_MDIACTIVATE = 0x0222;
constexpr UINT WM_MDIRESTORE = 0x0223;
constexpr UINT WM_MDINEXT = 0x0224;
constexpr UINT WM_MDIMAXIMIZE = 0x0225;
constexpr UINT WM_MDITILE = 0x0226;
constexpr UINT WM_MDICASCADE = 0x0227;
constexpr UINT WM_MDIICONARRANGE = 0x0228;
constexpr UINT WM_MDIGETACTIVE = 0x0229;
constexpr UINT WM_MDISETMENU = 0x0230;
constexpr UINT WM_MDIREFRESHMENU = 0x0234;
constexpr UINT MDITILE_VERTICAL = 0x0000;
constexpr UINT MDITILE_HORIZONTAL = 0x0001;
constexpr UINT MDITILE_SKIPDISABLED = 0x0002;
// The framework's: a frame and its views are complete.
constexpr UINT WM_INITIALUPDATE = 0x0364;
// The "Window" menu's commands; the children are listed from
// AFX_IDM_FIRST_MDICHILD on.
constexpr UINT ID_WINDOW_NEW = 0xE130;
constexpr UINT ID_WINDOW_ARRANGE = 0xE131;
constexpr UINT ID_WINDOW_CASCADE = 0xE132;
constexpr UINT ID_WINDOW_TILE_HORZ = 0xE133;
constexpr UINT ID_WINDOW_TILE_VERT = 0xE134;
constexpr UINT AFX_IDM_FIRST_MDICHILD = 0xFF00;

// LoadFrame's style bit: the frame's title names its document.
constexpr DWORD FWS_ADDTOTITLE = 0x00008000;

class CFrameWnd;
class CMDIFrameWnd;
class CMultiDocTemplate; // vxbase-ui

// What a frame is made for: its template and how to make its view (the
// pane, AFX_IDW_PANE_FIRST), in place of the framework's run-time classes.
struct CCreateContext {
    CMultiDocTemplate* m_pNewDocTemplate = nullptr;
    CFrameWnd* m_pCurrentFrame = nullptr;
    std::function<CWnd*()> m_newView;
};
class CMDIChildWnd; // vxbase-ui

namespace vx {

// The MDI client asked for the active child's object (lParam: a BOOL* that
// takes whether it is maximised); the answer is the CMDIChildWnd*.
constexpr UINT WM_VX_MDIGETACTIVEFRAME = 0x037A;

// Makes the MDI client window of a frame, as a child of it with the id
// AFX_IDW_PANE_FIRST; vxbase-ui installs it. Returns its handle or null.
using MdiClientFactory = HWND (*)(CMDIFrameWnd& frame, HMENU windowMenu);
VXBASE_EXPORT void SetMdiClientFactory(MdiClientFactory factory);

// The resources a frame loads by id and what it does with them; vxbase-ui
// installs them (menus, accelerators and icons are its own).
struct FrameResources {
    HMENU (*loadMenu)(UINT id) = nullptr;
    HACCEL (*loadAccelerators)(UINT id) = nullptr;
    HICON (*loadIcon)(UINT id) = nullptr;
    BOOL (*setMenu)(HWND window, HMENU menu) = nullptr;
    HMENU (*getMenu)(HWND window) = nullptr;
    int (*translateAccelerator)(HWND window, HACCEL table, MSG* msg) = nullptr;
};
VXBASE_EXPORT void SetFrameResources(const FrameResources& resources);
VXBASE_EXPORT const FrameResources& GetFrameResources();

// Sends a message to every child of `window`, and with `deep` to their
// children too, parents before their children.
VXBASE_EXPORT void SendMessageToDescendants(CWnd& window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0,
                                            BOOL deep = TRUE);

// How a frame docks its bars; vxbase-ui installs it.
struct FrameDocking {
    void (*enableDocking)(CFrameWnd& frame, DWORD dockStyle) = nullptr;
    void (*dockControlBar)(CFrameWnd& frame, CControlBar* bar, UINT dockBarId, const RECT* rect) = nullptr;
    void (*floatControlBar)(CFrameWnd& frame, CControlBar* bar, POINT screen, DWORD style) = nullptr;
    void (*showControlBar)(CFrameWnd& frame, CControlBar* bar, BOOL show) = nullptr;
    // Places the dock bars and returns the client rectangle left for the pane.
    RECT (*layoutBars)(CFrameWnd& frame, const RECT& client) = nullptr;
    void (*saveBarState)(const CFrameWnd& frame, const char* profileName) = nullptr;
    void (*loadBarState)(CFrameWnd& frame, const char* profileName) = nullptr;
    // The frame is being destroyed: what was made for it goes.
    void (*frameGone)(CFrameWnd& frame) = nullptr;
};
VXBASE_EXPORT void SetFrameDocking(const FrameDocking& docking);

} // namespace vx

// The framework's frame classes. A host's main frame derives from
// CMDIFrameWnd; the library only sends it messages.
class VXBASE_EXPORT CFrameWnd : public CWnd {
public:
    CFrameWnd();
    ~CFrameWnd() override;

    // Modal dialogs open over the frame; a modal loop raises it while it
    // runs, so that the frame is not closed under it.
    int m_cModalStack = 0;

    // The sides that take bars (CBRS_ALIGN_...), set by EnableDocking.
    DWORD m_dwDockStyle = 0;
    // The bars (CControlBar windows) that dock in this frame, in the order
    // they were first docked or floated.
    std::vector<CWnd*> m_listControlBars;
    // The frame class floating bars live in; null gives CMiniDockFrameWnd.
    CFrameWnd* (*m_pFloatingFrameFactory)() = nullptr;
    // The resource id LoadFrame was given, and what it loaded by that id.
    UINT m_nIDHelp = 0;
    HMENU m_hMenuDefault = nullptr;
    HACCEL m_hAccelTable = nullptr;
    // The place a frame takes when it is given none.
    static const CRect rectDefault;

    // Makes the frame from resource `id`: its title is the first part of
    // string `id` (up to a "\n"), its menu, accelerators and icon those of
    // that id. Without a context WM_INITIALUPDATE then goes to every
    // descendant; with one, the context's view is made as the pane and the
    // caller sends it.
    virtual BOOL LoadFrame(UINT id, DWORD style = WS_OVERLAPPEDWINDOW | FWS_ADDTOTITLE, CWnd* parent = nullptr,
                           CCreateContext* context = nullptr);
    // The frame with the menu of resource `menuName` (a MAKEINTRESOURCE id
    // or null for none); FALSE, and nothing made, when that menu is missing.
    virtual BOOL Create(const char* className, const char* title, DWORD style = WS_OVERLAPPEDWINDOW,
                        const RECT& rect = rectDefault, CWnd* parent = nullptr, const char* menuName = nullptr,
                        DWORD exStyle = 0, CCreateContext* context = nullptr);
    // The frame's accelerators (LoadFrame's) turn keys into commands.
    BOOL PreTranslateMessage(MSG* msg) override;

    // Makes a dock bar for each side of `dockStyle` that has none.
    void EnableDocking(DWORD dockStyle);
    // Docks a bar at a side (0: the first its style allows), at a screen
    // rectangle when given (its row and place), else in a row of its own.
    void DockControlBar(CControlBar* bar, UINT dockBarId = 0, const RECT* rect = nullptr);
    // Floats a bar in a mini frame at a screen point.
    void FloatControlBar(CControlBar* bar, CPoint screen, DWORD style = CBRS_ALIGN_TOP);
    void ShowControlBar(CControlBar* bar, BOOL show, BOOL delay);
    // Places the dock bars along the sides and the pane in what is left.
    virtual void RecalcLayout(BOOL notify = TRUE);
    // Writes and reads where every bar is (side, row, place, floating point,
    // visibility) through KProfile, in sections "<name>-Bar<n>".
    void SaveBarState(const char* profileName) const;
    void LoadBarState(const char* profileName);

protected:
    void OnSize(UINT type, int cx, int cy) override;
    // Makes the context's view as the pane.
    BOOL CreateView(CCreateContext* context);
};

// With a client (CreateClient) the frame holds MDI children
// (CMDIChildWnd, vxbase-ui); the calls below are those of the platform's
// MDI client, which does the work.
class VXBASE_EXPORT CMDIFrameWnd : public CFrameWnd {
public:
    CMDIFrameWnd();
    ~CMDIFrameWnd() override;

    HWND m_hWndMDIClient = nullptr;

    // Makes the MDI client as the frame's pane. `windowMenu` is the popup
    // that lists the children (the "Window" menu), or null.
    virtual BOOL CreateClient(HMENU windowMenu = nullptr);
    void MDIActivate(CWnd* child);
    // The active child, or null; `maximized` takes whether it is maximised.
    CMDIChildWnd* MDIGetActive(BOOL* maximized = nullptr) const;
    void MDICascade();
    void MDITile(int type = MDITILE_HORIZONTAL);
    void MDIMaximize(CWnd* child);
    void MDIRestore(CWnd* child);
    void MDINext(BOOL previous = FALSE);
    // Puts a menu on the frame and names the popup that lists the children
    // (null leaves either as it is); returns the frame's menu before.
    HMENU MDISetMenu(HMENU frameMenu, HMENU windowMenu);

protected:
    // The Window menu's commands: cascade, tile, and one per child.
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
};
