// CWnd: the framework's window object.
//
// A CWnd answers messages through its window procedure: WindowProc cracks
// the standard messages into the handlers (OnTimer, OnPaint, OnMouseMove...)
// and passes the rest to DefWindowProc. Derived classes override handlers
// or WindowProc itself, as with the original framework.
//
// What a window looks like on screen is left to a vx::WindowBackend. The core
// library brings a headless one that keeps geometry and state in memory, so
// a console host or a test can own real windows; vxbase-ui installs one over
// QWidget with SetWindowBackendFactory.
//
//   class Frame : public CMDIFrameWnd {
//       LRESULT WindowProc(UINT msg, WPARAM w, LPARAM l) override;
//   } frame;
//   frame.CreateEx("VEXAL 5.5 Plan", "VxFrame");
//   g_pDLLMainframe = &frame;
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/windows/messagepump.h"
#include "platform/framework/rect.h"
#include "platform/windows/windows.h"
#include "platform/windows/winuser.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <memory>

class CWnd;
class CFont; // vxbase-ui
class CRgn;  // vxbase-ui

// Window styles, kept as data.
constexpr DWORD WS_OVERLAPPED = 0x00000000;
constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_MINIMIZE = 0x20000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
constexpr DWORD WS_MAXIMIZE = 0x01000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_DLGFRAME = 0x00400000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_HSCROLL = 0x00100000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_THICKFRAME = 0x00040000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;
constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
constexpr DWORD WS_OVERLAPPEDWINDOW = 0x00CF0000;
constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
constexpr DWORD WS_EX_NOPARENTNOTIFY = 0x00000004;
constexpr DWORD WS_EX_TOPMOST = 0x00000008;
constexpr DWORD WS_EX_ACCEPTFILES = 0x00000010;
constexpr DWORD WS_EX_TRANSPARENT = 0x00000020;
constexpr DWORD WS_EX_TOOLWINDOW = 0x00000080;
constexpr DWORD WS_EX_WINDOWEDGE = 0x00000100;
constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;
constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;
constexpr DWORD WS_EX_STATICEDGE = 0x00020000;
constexpr DWORD WS_EX_APPWINDOW = 0x00040000;

// Mouse key flags of the mouse handlers.
constexpr UINT MK_LBUTTON = 0x0001;
constexpr UINT MK_RBUTTON = 0x0002;
constexpr UINT MK_SHIFT = 0x0004;
constexpr UINT MK_CONTROL = 0x0008;
constexpr UINT MK_MBUTTON = 0x0010;

namespace vx {

// How a CWnd is shown. Geometry() is the window rectangle in its parent's
// client coordinates (screen coordinates for a top-level window). The
// client area inside it is the window's own business (WM_NCCALCSIZE,
// vx::ClientAreaOf).
class VXBASE_EXPORT WindowBackend {
public:
    virtual ~WindowBackend();
    virtual void Show(bool visible) = 0;
    virtual bool IsVisible() const = 0;
    virtual void SetGeometry(const CRect& rect) = 0;
    virtual CRect Geometry() const = 0;
    // The client area moved within the window: children follow it.
    virtual void ClientAreaChanged();
    virtual void SetText(const char* text) = 0;
    virtual void SetEnabled(bool enabled) = 0;
    // Marks an area of the client (null: all of it) for repainting.
    virtual void Invalidate(const RECT* rect, bool erase) = 0;
    // Marks the non-client area (the frame) for repainting.
    virtual void InvalidateFrame();
    // Paints pending areas now.
    virtual void Update() = 0;
    virtual void SetFocus() = 0;
    virtual void SetCapture(bool capture) = 0;
    // Moves the window to the top or the bottom of its siblings.
    virtual void SetZOrder(bool top);
};

// A backend with no display: it stores what it is told.
class VXBASE_EXPORT HeadlessWindowBackend : public WindowBackend {
public:
    explicit HeadlessWindowBackend(CWnd& owner) : m_owner(owner) {}
    void Show(bool visible) override { m_visible = visible; }
    bool IsVisible() const override { return m_visible; }
    void SetGeometry(const CRect& rect) override { m_rect = rect; }
    CRect Geometry() const override { return m_rect; }
    void SetText(const char*) override {}
    void SetEnabled(bool) override {}
    void Invalidate(const RECT*, bool) override { ++m_invalidations; }
    void Update() override {}
    void SetFocus() override;
    void SetCapture(bool) override {}
    int Invalidations() const { return m_invalidations; }

private:
    [[maybe_unused]] CWnd& m_owner;
    bool m_visible = false;
    CRect m_rect;
    int m_invalidations = 0;
};

using WindowBackendFactory = std::unique_ptr<WindowBackend> (*)(CWnd& window, CWnd* parent, DWORD style);
// Chooses the backend of windows created from now on; null restores the
// headless one. vxbase-ui calls this when it is loaded.
VXBASE_EXPORT void SetWindowBackendFactory(WindowBackendFactory factory);

// Takes back a pending TME_LEAVE request: true when the window asked to hear
// that the cursor left it. Backends call this when the cursor leaves.
VXBASE_EXPORT bool TakeMouseLeaveRequest(CWnd& window);

// The client area of a window in window coordinates (the window's top left
// is 0, 0), as WM_NCCALCSIZE last left it.
VXBASE_EXPORT CRect ClientAreaOf(const CWnd& window);
// The widths (left, top, right, bottom) of the standard frame of a window
// of these styles, which WM_NCCALCSIZE takes by default: a dialog frame
// (WS_DLGFRAME, WS_EX_DLGMODALFRAME) 3, a sizing frame (WS_THICKFRAME) 4, a
// border (WS_BORDER) 1, a client edge 2 and a static edge 1 more. A
// top-level window that is not WS_POPUP has none: the desktop frames it.
VXBASE_EXPORT CRect StandardFrameInsets(DWORD style, DWORD exStyle, bool topLevel);

// What the core leaves to the drawing layer (vxbase-ui installs it):
// painting the standard frame, printing a window into a device, and ending
// a menu when the mode is cancelled.
struct FrameBridge {
    // Draws the standard frame of the window's style on `dc` (a device of
    // the whole window; null: the window's own window device), limited to
    // `clip` (screen coordinates; null: all of it).
    void (*drawFrame)(CWnd& window, HDC dc, HRGN clip) = nullptr;
    // WM_PRINT's client and children parts: erases and prints the client
    // area into `dc` (whose origin is the window's top left) by the PRF_ flags.
    void (*printClient)(CWnd& window, HDC dc, UINT flags) = nullptr;
    // WM_PRINTCLIENT's default: the window paints itself (WM_PAINT) into `dc`.
    void (*paintInto)(CWnd& window, HDC dc) = nullptr;
    // WM_CANCELMODE's default: ends a menu being tracked.
    void (*cancelMode)() = nullptr;
};
VXBASE_EXPORT void SetFrameBridge(const FrameBridge& bridge);
// The bridge as installed, so that a part can set its own entries only.
VXBASE_EXPORT FrameBridge GetFrameBridge();

} // namespace vx

class VXBASE_EXPORT CWnd : public CObject, public vx::MessageTarget {
public:
    CWnd();
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    HWND m_hWnd = nullptr;

    // The places of SetWindowPos: above all siblings, below them all.
    static const CWnd wndTop;
    static const CWnd wndBottom;

    // Makes the window: a handle in the window table and a backend. The
    // rectangle is in the parent's client coordinates. PreSubclassWindow
    // runs before WM_CREATE, as for a window the framework creates.
    virtual BOOL CreateEx(const char* windowName, const char* className, DWORD style = WS_OVERLAPPEDWINDOW,
                          const RECT& rect = CRect(0, 0, 0, 0), CWnd* parent = nullptr, UINT id = 0,
                          DWORD exStyle = 0);
    // Sends WM_DESTROY, destroys the child windows, then WM_NCDESTROY.
    virtual BOOL DestroyWindow();
    HWND GetSafeHwnd() const { return m_hWnd; }
    // The CWnd of a local handle, or null (for foreign windows too).
    static CWnd* FromHandle(HWND hwnd);

    // --- messages -----------------------------------------------------------
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // Input messages pass here (the window's, then each parent's) before
    // they are dispatched; TRUE swallows the message. The message may be
    // changed in place.
    virtual BOOL PreTranslateMessage(MSG* msg);
    // A parent hands WM_DRAWITEM, WM_MEASUREITEM, WM_DELETEITEM,
    // WM_COMPAREITEM and WM_REFLECT_BASE + n messages to the control they
    // concern; TRUE with *result means handled.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    UINT_PTR SetTimer(UINT_PTR id, UINT elapse, TIMERPROC proc = nullptr);
    BOOL KillTimer(UINT_PTR id);

    // --- state ----------------------------------------------------------------
    void SetWindowText(const char* text);
    int GetWindowText(char* text, int maxCount) const;
    void GetWindowText(CString& text) const;
    CString GetWindowTextString() const;
    int GetWindowTextLength() const;
    BOOL ShowWindow(int command);
    BOOL IsWindowVisible() const;
    BOOL EnableWindow(BOOL enable = TRUE);
    BOOL IsWindowEnabled() const;
    BOOL IsIconic() const { return (GetStyle() & WS_MINIMIZE) != 0; }
    BOOL IsZoomed() const { return (GetStyle() & WS_MAXIMIZE) != 0; }
    DWORD GetStyle() const { return m_style; }
    DWORD GetExStyle() const { return m_exStyle; }
    // Changes style bits; SWP_FRAMECHANGED in `flags` repaints the window.
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT flags = 0);
    BOOL ModifyStyleEx(DWORD remove, DWORD add, UINT flags = 0);
    UINT GetDlgCtrlID() const { return m_id; }
    int SetDlgCtrlID(int id);
    CWnd* GetParent() const { return m_parent; }
    // The top-level window this one lives in (itself if top-level).
    CWnd* GetTopLevelParent() const;
    BOOL IsChild(const CWnd* window) const;
    // The font the window draws with (WM_SETFONT / WM_GETFONT); null for none.
    void SetFont(CFont* font, BOOL redraw = TRUE);
    CFont* GetFont() const;

    // --- relations ------------------------------------------------------------
    // Child windows are kept in z-order, first created on top, as dialog
    // controls are; GW_CHILD is the topmost child, GW_HWNDNEXT the one below.
    CWnd* GetWindow(UINT command) const;
    CWnd* GetDlgItem(int id) const;
    // The next (or previous) visible, enabled child with WS_TABSTOP after
    // `control`, wrapping around; null when there is none but `control`.
    CWnd* GetNextDlgTabItem(CWnd* control, BOOL previous = FALSE) const;
    // The next (or previous) visible, enabled control of the group of
    // `control`; a group starts at a child with WS_GROUP. Wraps within it.
    CWnd* GetNextDlgGroupItem(CWnd* control, BOOL previous = FALSE) const;
    // The deepest visible, enabled window at a screen point, or null.
    static CWnd* WindowFromPoint(POINT screen);
    // The child at a client point, this window when no child is there, null
    // outside the client area. `flags` is ignored (all children count).
    CWnd* ChildWindowFromPoint(POINT client, UINT flags = 0) const;
    static CWnd* GetActiveWindow();
    // Activates this top-level window (WM_ACTIVATE to the old and the new).
    CWnd* SetActiveWindow();
    static CWnd* GetForegroundWindow() { return GetActiveWindow(); }
    BOOL SetForegroundWindow();

    // --- geometry ---------------------------------------------------------------
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE);
    void MoveWindow(const RECT* rect, BOOL repaint = TRUE);
    BOOL SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags);
    // Window rectangle in screen coordinates.
    void GetWindowRect(RECT* rect) const;
    void GetClientRect(RECT* rect) const;
    void ClientToScreen(POINT* point) const;
    void ClientToScreen(RECT* rect) const;
    void ScreenToClient(POINT* point) const;
    void ScreenToClient(RECT* rect) const;
    void Invalidate(BOOL erase = TRUE);
    void InvalidateRect(const RECT* rect, BOOL erase = TRUE);
    void UpdateWindow();
    // Invalidates (a region counts as the whole window) and, with
    // RDW_UPDATENOW, paints at once.
    BOOL RedrawWindow(const RECT* rect = nullptr, CRgn* region = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);

    // --- focus and capture ------------------------------------------------------
    CWnd* SetFocus();
    static CWnd* GetFocus();
    CWnd* SetCapture();
    static CWnd* GetCapture();
    static BOOL ReleaseCapture();

    vx::WindowBackend* Backend() const { return m_backend.get(); }

    // --- handlers, called by WindowProc ---------------------------------------------
    // Unless said otherwise, each passes its message on to DefWindowProc
    // (Default), as the framework's handlers do.
    virtual int OnCreate();
    virtual void OnDestroy();
    virtual void OnNcDestroy();
    virtual void OnClose();
    virtual void OnTimer(UINT_PTR id);
    virtual void OnPaint();
    virtual BOOL OnEraseBkgnd();
    virtual void OnSize(UINT type, int cx, int cy);
    virtual void OnMove(int x, int y);
    virtual void OnShowWindow(BOOL show, UINT status);
    virtual void OnEnable(BOOL enable);
    virtual void OnActivate(UINT state, CWnd* other, BOOL minimized);
    virtual void OnCancelMode();
    virtual void OnSysColorChange();
    virtual BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    virtual UINT OnGetDlgCode();
    virtual void OnSetFocus(CWnd* oldWnd);
    virtual void OnKillFocus(CWnd* newWnd);
    virtual void OnMouseMove(UINT flags, CPoint point);
    virtual void OnMouseLeave();
    virtual void OnLButtonDown(UINT flags, CPoint point);
    virtual void OnLButtonUp(UINT flags, CPoint point);
    virtual void OnLButtonDblClk(UINT flags, CPoint point);
    virtual void OnRButtonDown(UINT flags, CPoint point);
    virtual void OnRButtonUp(UINT flags, CPoint point);
    virtual void OnRButtonDblClk(UINT flags, CPoint point);
    virtual void OnMButtonDown(UINT flags, CPoint point);
    virtual void OnMButtonUp(UINT flags, CPoint point);
    virtual void OnKeyDown(UINT key, UINT repeat, UINT flags);
    virtual void OnKeyUp(UINT key, UINT repeat, UINT flags);
    virtual void OnChar(UINT ch, UINT repeat, UINT flags);
    virtual void OnSysKeyDown(UINT key, UINT repeat, UINT flags);
    virtual void OnSysKeyUp(UINT key, UINT repeat, UINT flags);
    virtual void OnContextMenu(CWnd* window, CPoint screen);
    virtual void OnCaptureChanged(CWnd* wnd);
    // The non-client area. WM_WINDOWPOSCHANGING may change the position,
    // size and flags in `pos`; the default of WM_WINDOWPOSCHANGED sends
    // WM_MOVE and WM_SIZE for a client area that moved or changed size.
    virtual void OnWindowPosChanging(WINDOWPOS* pos);
    virtual void OnWindowPosChanged(WINDOWPOS* pos);
    // The default takes the standard frame of the window's style.
    virtual void OnNcCalcSize(BOOL calcValidRects, NCCALCSIZE_PARAMS* params);
    // The default draws the standard frame.
    virtual void OnNcPaint();
    // The default answers HTCLIENT in the client area, the sizing codes on a
    // WS_THICKFRAME frame, HTBORDER on another frame and HTNOWHERE outside.
    virtual LRESULT OnNcHitTest(CPoint screen);
    virtual void OnNcMouseMove(UINT hitTest, CPoint screen);
    virtual void OnNcLButtonDown(UINT hitTest, CPoint screen);
    virtual void OnNcLButtonUp(UINT hitTest, CPoint screen);
    virtual void OnNcLButtonDblClk(UINT hitTest, CPoint screen);
    virtual void OnNcRButtonDown(UINT hitTest, CPoint screen);
    virtual void OnNcRButtonUp(UINT hitTest, CPoint screen);
    // The default reflects the item message to the control that sent it.
    virtual void OnDrawItem(int controlId, LPDRAWITEMSTRUCT item);
    virtual void OnMeasureItem(int controlId, LPMEASUREITEMSTRUCT item);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual BOOL OnCopyData(CWnd* from, COPYDATASTRUCT* data);

protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void ApplyShowState(int command) override;
    bool ReadWindowLong(int index, LONG_PTR& value) const override;
    bool WriteWindowLong(int index, LONG_PTR value) override;
    LRESULT DefaultMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The backend for a new window; the default asks the installed factory.
    virtual std::unique_ptr<vx::WindowBackend> CreateBackend(CWnd* parent, DWORD style);
    // Runs once the window has its handle, before WM_CREATE; a class turns
    // its style into what it draws here.
    virtual void PreSubclassWindow();
    // Runs last for a destroyed window; a class that deletes itself does so here.
    virtual void PostNcDestroy();
    // Passes the message being handled to DefWindowProc.
    LRESULT Default();
    // Hands a message to the child `child`'s OnChildNotify.
    static BOOL ReflectToChild(CWnd* child, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);

private:
    friend BOOL(::TrackMouseEvent)(LPTRACKMOUSEEVENT);
    friend bool vx::TakeMouseLeaveRequest(CWnd& window);
    friend CRect vx::ClientAreaOf(const CWnd& window);
    // Asks WM_NCCALCSIZE for the client area of the window rectangle `now`.
    void RecalcClientArea(const CRect& now, const CRect& old, WINDOWPOS* pos);
    // The top left of the window in screen coordinates.
    CPoint WindowOrigin() const;
    struct CurrentMessage {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };

    std::unique_ptr<vx::WindowBackend> m_backend;
    CWnd* m_parent = nullptr;
    DWORD m_style = 0;
    DWORD m_exStyle = 0;
    UINT m_id = 0;
    bool m_enabled = true;
    DWORD m_trackFlags = 0;
    HFONT m_font = nullptr;
    CurrentMessage m_current{};
    CRect m_client; // the client area in window coordinates
};

namespace vx {

// Delivers an input message (mouse, keys) to a window as the framework's
// message loop did: PreTranslateMessage of the window and each of its
// parents first, then the window procedure. Key and cursor state are
// recorded for GetKeyState and GetCursorPos. Returns whether it was delivered.
VXBASE_EXPORT bool DispatchInputMessage(CWnd& window, UINT message, WPARAM wParam, LPARAM lParam);
// No window of this process is active any more (WM_ACTIVATE WA_INACTIVE to
// the one that was). Backends call this when the desktop takes activation away.
VXBASE_EXPORT void ClearActiveWindow();

// How vxbase-ui lets the core hand fonts through CWnd::SetFont and GetFont
// without the core knowing CFont.
struct FontBridge {
    HFONT (*handleOf)(CFont* font) = nullptr;
    CFont* (*fromHandle)(HFONT font) = nullptr;
};
VXBASE_EXPORT void SetFontBridge(const FontBridge& bridge);

} // namespace vx

// The desktop API's forms of the geometry calls, for any window of this
// process (FALSE for others).
VXBASE_EXPORT BOOL GetWindowRect(HWND hwnd, RECT* rect);
VXBASE_EXPORT BOOL GetClientRect(HWND hwnd, RECT* rect);
VXBASE_EXPORT BOOL ClientToScreen(HWND hwnd, POINT* point);
VXBASE_EXPORT BOOL ScreenToClient(HWND hwnd, POINT* point);
VXBASE_EXPORT BOOL SetWindowPos(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags);
VXBASE_EXPORT BOOL MoveWindow(HWND hwnd, int x, int y, int width, int height, BOOL repaint);
VXBASE_EXPORT HWND WindowFromPoint(POINT screen);

// The application's main window, as the framework's AfxGetMainWnd gives it;
// a host sets it once its frame exists.
VXBASE_EXPORT CWnd* AfxGetMainWnd();
VXBASE_EXPORT void AfxSetMainWnd(CWnd* window);

// Decoding of mouse positions in lParam.
constexpr int GET_X_LPARAM(LPARAM l) { return static_cast<short>(LOWORD(static_cast<DWORD_PTR>(l))); }
constexpr int GET_Y_LPARAM(LPARAM l) { return static_cast<short>(HIWORD(static_cast<DWORD_PTR>(l))); }
