// The window-manager side of the desktop API that window classes are written
// in: handle types of the drawing objects, the owner-draw records, virtual
// key codes, and the messages and flags that CWnd and its controls exchange.
//
// Everything here is plain data; the drawing itself lives in vxbase-ui
// (ui/gdi/wingdi.h). The handle types are opaque keys: the core library only
// carries them through messages.
//
//   void CMyList::DrawItem(DRAWITEMSTRUCT* dis)
//   {
//       CDC* dc = CDC::FromHandle(dis->hDC);
//       if (dis->itemState & ODS_SELECTED) ...
//   }
#pragma once

#include "platform/framework/rect.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// --- handles of drawing objects and menus -----------------------------------
struct HDC__;
struct HBITMAP__;
struct HBRUSH__;
struct HPEN__;
struct HFONT__;
struct HRGN__;
struct HICON__;
struct HMENU__;
using HDC = HDC__*;
using HBITMAP = HBITMAP__*;
using HBRUSH = HBRUSH__*;
using HPEN = HPEN__*;
using HFONT = HFONT__*;
using HRGN = HRGN__*;
using HICON = HICON__*;
using HCURSOR = HICON__*; // a cursor is an icon with a hot spot, as on the original
using HMENU = HMENU__*;
using HGDIOBJ = void*;

// --- more window messages -----------------------------------------------------
constexpr UINT WM_SYSCOLORCHANGE = 0x0015;
constexpr UINT WM_SETTINGCHANGE = 0x001A;
constexpr UINT WM_ACTIVATEAPP = 0x001C;
constexpr UINT WM_CANCELMODE = 0x001F;
constexpr UINT WM_MOUSEACTIVATE = 0x0021;
constexpr UINT WM_GETMINMAXINFO = 0x0024;
constexpr UINT WM_DELETEITEM = 0x002D;
constexpr UINT WM_COMPAREITEM = 0x0039;
constexpr UINT WM_WINDOWPOSCHANGING = 0x0046;
constexpr UINT WM_CONTEXTMENU = 0x007B;
constexpr UINT WM_GETICON = 0x007F;
constexpr UINT WM_SETICON = 0x0080;
constexpr WPARAM ICON_SMALL = 0;
constexpr WPARAM ICON_BIG = 1;
constexpr UINT WM_NCCREATE = 0x0081;
constexpr UINT WM_NCCALCSIZE = 0x0083;
constexpr UINT WM_NCHITTEST = 0x0084;
constexpr UINT WM_NCPAINT = 0x0085;
constexpr UINT WM_NCACTIVATE = 0x0086;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_NCMOUSEMOVE = 0x00A0;
constexpr UINT WM_NCLBUTTONDOWN = 0x00A1;
constexpr UINT WM_NCLBUTTONUP = 0x00A2;
constexpr UINT WM_NCLBUTTONDBLCLK = 0x00A3;
constexpr UINT WM_NCRBUTTONDOWN = 0x00A4;
constexpr UINT WM_NCRBUTTONUP = 0x00A5;
constexpr UINT WM_NCRBUTTONDBLCLK = 0x00A6;
constexpr UINT WM_NCMBUTTONDOWN = 0x00A7;
constexpr UINT WM_NCMBUTTONUP = 0x00A8;
constexpr UINT WM_NCMBUTTONDBLCLK = 0x00A9;
constexpr UINT WM_DEADCHAR = 0x0103;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_SYSCHAR = 0x0106;
constexpr UINT WM_SYSDEADCHAR = 0x0107;
constexpr UINT WM_KEYLAST = 0x0108;
constexpr UINT WM_INITMENU = 0x0116;
constexpr UINT WM_UNINITMENUPOPUP = 0x0125;
constexpr UINT WM_CTLCOLORMSGBOX = 0x0132;
constexpr UINT WM_CTLCOLOREDIT = 0x0133;
constexpr UINT WM_CTLCOLORLISTBOX = 0x0134;
constexpr UINT WM_CTLCOLORBTN = 0x0135;
constexpr UINT WM_CTLCOLORDLG = 0x0136;
constexpr UINT WM_CTLCOLORSCROLLBAR = 0x0137;
constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_MBUTTONDBLCLK = 0x0209;
constexpr UINT WM_ENTERMENULOOP = 0x0211;
constexpr UINT WM_EXITMENULOOP = 0x0212;
constexpr UINT WM_MOUSEHOVER = 0x02A1;
constexpr UINT WM_PRINT = 0x0317;
constexpr UINT WM_PRINTCLIENT = 0x0318;
// A message a parent reflects back to the child that sent it, as the
// framework did: WM_REFLECT_BASE + WM_CTLCOLORBTN and so on.
constexpr UINT WM_REFLECT_BASE = 0xBC00;

// WM_ACTIVATE states.
constexpr UINT WA_INACTIVE = 0;
constexpr UINT WA_ACTIVE = 1;
constexpr UINT WA_CLICKACTIVE = 2;

// WM_SIZE kinds.
constexpr UINT SIZE_RESTORED = 0;
constexpr UINT SIZE_MINIMIZED = 1;
constexpr UINT SIZE_MAXIMIZED = 2;

// The sizes the user may give a window (WM_GETMINMAXINFO). The window
// manager asks before the user sizes a window; programs that place a window
// themselves are not held to them, as on the original.
struct MINMAXINFO {
    POINT ptReserved;
    POINT ptMaxSize;
    POINT ptMaxPosition;
    POINT ptMinTrackSize;
    POINT ptMaxTrackSize;
};
using LPMINMAXINFO = MINMAXINFO*;

// The commands of the system menu (WM_SYSCOMMAND).
constexpr UINT SC_SIZE = 0xF000;
constexpr UINT SC_MOVE = 0xF010;
constexpr UINT SC_MINIMIZE = 0xF020;
constexpr UINT SC_MAXIMIZE = 0xF030;
constexpr UINT SC_NEXTWINDOW = 0xF040;
constexpr UINT SC_PREVWINDOW = 0xF050;
constexpr UINT SC_CLOSE = 0xF060;
constexpr UINT SC_MOUSEMENU = 0xF090;
constexpr UINT SC_KEYMENU = 0xF100;
constexpr UINT SC_RESTORE = 0xF120;

// Hit test codes (WM_NCHITTEST, low word of WM_SETCURSOR's lParam, wParam
// of the WM_NC mouse messages).
constexpr int HTERROR = -2;
constexpr int HTTRANSPARENT = -1;
constexpr int HTNOWHERE = 0;
constexpr int HTCLIENT = 1;
constexpr int HTCAPTION = 2;
constexpr int HTSYSMENU = 3;
constexpr int HTGROWBOX = 4;
constexpr int HTSIZE = 4;
constexpr int HTMENU = 5;
constexpr int HTHSCROLL = 6;
constexpr int HTVSCROLL = 7;
constexpr int HTMINBUTTON = 8;
constexpr int HTMAXBUTTON = 9;
constexpr int HTLEFT = 10;
constexpr int HTRIGHT = 11;
constexpr int HTTOP = 12;
constexpr int HTTOPLEFT = 13;
constexpr int HTTOPRIGHT = 14;
constexpr int HTBOTTOM = 15;
constexpr int HTBOTTOMLEFT = 16;
constexpr int HTBOTTOMRIGHT = 17;
constexpr int HTBORDER = 18;
constexpr int HTCLOSE = 20;
constexpr int HTHELP = 21;

// WM_PRINT and WM_PRINTCLIENT: what to draw into the device of wParam.
constexpr UINT PRF_CHECKVISIBLE = 0x0001;
constexpr UINT PRF_NONCLIENT = 0x0002;
constexpr UINT PRF_CLIENT = 0x0004;
constexpr UINT PRF_ERASEBKGND = 0x0008;
constexpr UINT PRF_CHILDREN = 0x0010;
constexpr UINT PRF_OWNED = 0x0020;

// WM_GETDLGCODE answers.
constexpr UINT DLGC_WANTARROWS = 0x0001;
constexpr UINT DLGC_WANTTAB = 0x0002;
constexpr UINT DLGC_WANTALLKEYS = 0x0004;
constexpr UINT DLGC_WANTMESSAGE = 0x0004;
constexpr UINT DLGC_HASSETSEL = 0x0008;
constexpr UINT DLGC_DEFPUSHBUTTON = 0x0010;
constexpr UINT DLGC_UNDEFPUSHBUTTON = 0x0020;
constexpr UINT DLGC_RADIOBUTTON = 0x0040;
constexpr UINT DLGC_WANTCHARS = 0x0080;
constexpr UINT DLGC_STATIC = 0x0100;
constexpr UINT DLGC_BUTTON = 0x2000;

// SetWindowPos flags and z-order places.
constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOREDRAW = 0x0008;
constexpr UINT SWP_NOACTIVATE = 0x0010;
constexpr UINT SWP_FRAMECHANGED = 0x0020;
constexpr UINT SWP_SHOWWINDOW = 0x0040;
constexpr UINT SWP_HIDEWINDOW = 0x0080;
constexpr UINT SWP_NOCOPYBITS = 0x0100;
constexpr UINT SWP_NOOWNERZORDER = 0x0200;
constexpr UINT SWP_NOSENDCHANGING = 0x0400;
// Set in WM_WINDOWPOSCHANGED when the client area kept its size or its place.
constexpr UINT SWP_NOCLIENTSIZE = 0x0800;
constexpr UINT SWP_NOCLIENTMOVE = 0x1000;

// lParam of WM_WINDOWPOSCHANGING (may be changed) and WM_WINDOWPOSCHANGED.
// The position is in the parent's client coordinates (screen coordinates
// for a top-level window).
struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};
using LPWINDOWPOS = WINDOWPOS*;

// lParam of WM_NCCALCSIZE with wParam TRUE: rgrc[0] is the new window
// rectangle and becomes the new client rectangle (both in the parent's
// client coordinates); rgrc[1] and rgrc[2] are the old window and client
// rectangles. With wParam FALSE lParam is one RECT*, treated as rgrc[0].
struct NCCALCSIZE_PARAMS {
    RECT rgrc[3];
    WINDOWPOS* lppos;
};
using LPNCCALCSIZE_PARAMS = NCCALCSIZE_PARAMS*;

// lParam of WM_NCCREATE and WM_CREATE.
struct CREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};
using CREATESTRUCT = CREATESTRUCTA;
using LPCREATESTRUCT = CREATESTRUCTA*;
inline const HWND HWND_TOP = nullptr;
inline const HWND HWND_BOTTOM = reinterpret_cast<HWND>(1);
inline const HWND HWND_TOPMOST = reinterpret_cast<HWND>(-1);
inline const HWND HWND_NOTOPMOST = reinterpret_cast<HWND>(-2);

// CWnd::GetWindow relations.
constexpr UINT GW_HWNDFIRST = 0;
constexpr UINT GW_HWNDLAST = 1;
constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_HWNDPREV = 3;
constexpr UINT GW_OWNER = 4;
constexpr UINT GW_CHILD = 5;

// RedrawWindow flags.
constexpr UINT RDW_INVALIDATE = 0x0001;
constexpr UINT RDW_INTERNALPAINT = 0x0002;
constexpr UINT RDW_ERASE = 0x0004;
constexpr UINT RDW_VALIDATE = 0x0008;
constexpr UINT RDW_NOERASE = 0x0020;
constexpr UINT RDW_ALLCHILDREN = 0x0080;
constexpr UINT RDW_UPDATENOW = 0x0100;
constexpr UINT RDW_ERASENOW = 0x0200;
constexpr UINT RDW_FRAME = 0x0400;

// --- owner drawing --------------------------------------------------------------
constexpr UINT ODT_MENU = 1;
constexpr UINT ODT_LISTBOX = 2;
constexpr UINT ODT_COMBOBOX = 3;
constexpr UINT ODT_BUTTON = 4;
constexpr UINT ODT_STATIC = 5;

constexpr UINT ODA_DRAWENTIRE = 0x0001;
constexpr UINT ODA_SELECT = 0x0002;
constexpr UINT ODA_FOCUS = 0x0004;

constexpr UINT ODS_SELECTED = 0x0001;
constexpr UINT ODS_GRAYED = 0x0002;
constexpr UINT ODS_DISABLED = 0x0004;
constexpr UINT ODS_CHECKED = 0x0008;
constexpr UINT ODS_FOCUS = 0x0010;
constexpr UINT ODS_DEFAULT = 0x0020;
constexpr UINT ODS_HOTLIGHT = 0x0040;
constexpr UINT ODS_INACTIVE = 0x0080;
constexpr UINT ODS_NOACCEL = 0x0100;
constexpr UINT ODS_NOFOCUSRECT = 0x0200;

struct DRAWITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemAction;
    UINT itemState;
    HWND hwndItem; // for ODT_MENU, the HMENU
    HDC hDC;
    RECT rcItem;
    ULONG_PTR itemData;
};
using LPDRAWITEMSTRUCT = DRAWITEMSTRUCT*;

struct MEASUREITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemWidth;
    UINT itemHeight;
    ULONG_PTR itemData;
};
using LPMEASUREITEMSTRUCT = MEASUREITEMSTRUCT*;

struct DELETEITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    HWND hwndItem;
    ULONG_PTR itemData;
};
using LPDELETEITEMSTRUCT = DELETEITEMSTRUCT*;

// The header of every WM_NOTIFY record.
struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};
using LPNMHDR = NMHDR*;

// --- mouse tracking ----------------------------------------------------------------
constexpr DWORD TME_HOVER = 0x00000001;
constexpr DWORD TME_LEAVE = 0x00000002;
constexpr DWORD TME_CANCEL = 0x80000000;

struct TRACKMOUSEEVENT {
    DWORD cbSize;
    DWORD dwFlags;
    HWND hwndTrack;
    DWORD dwHoverTime;
};
using LPTRACKMOUSEEVENT = TRACKMOUSEEVENT*;

// Asks for WM_MOUSELEAVE when the cursor next leaves the window (TME_LEAVE);
// TME_CANCEL withdraws the request. FALSE for an unknown window.
VXBASE_EXPORT BOOL TrackMouseEvent(LPTRACKMOUSEEVENT track);
VXBASE_EXPORT BOOL _TrackMouseEvent(LPTRACKMOUSEEVENT track);

// --- virtual keys ---------------------------------------------------------------------
constexpr UINT VK_LBUTTON = 0x01;
constexpr UINT VK_RBUTTON = 0x02;
constexpr UINT VK_CANCEL = 0x03;
constexpr UINT VK_MBUTTON = 0x04;
constexpr UINT VK_BACK = 0x08;
constexpr UINT VK_TAB = 0x09;
constexpr UINT VK_CLEAR = 0x0C;
constexpr UINT VK_RETURN = 0x0D;
constexpr UINT VK_SHIFT = 0x10;
constexpr UINT VK_CONTROL = 0x11;
constexpr UINT VK_MENU = 0x12;
constexpr UINT VK_PAUSE = 0x13;
constexpr UINT VK_CAPITAL = 0x14;
constexpr UINT VK_ESCAPE = 0x1B;
constexpr UINT VK_SPACE = 0x20;
constexpr UINT VK_PRIOR = 0x21;
constexpr UINT VK_NEXT = 0x22;
constexpr UINT VK_END = 0x23;
constexpr UINT VK_HOME = 0x24;
constexpr UINT VK_LEFT = 0x25;
constexpr UINT VK_UP = 0x26;
constexpr UINT VK_RIGHT = 0x27;
constexpr UINT VK_DOWN = 0x28;
constexpr UINT VK_SNAPSHOT = 0x2C;
constexpr UINT VK_INSERT = 0x2D;
constexpr UINT VK_DELETE = 0x2E;
constexpr UINT VK_HELP = 0x2F;
constexpr UINT VK_NUMPAD0 = 0x60;
constexpr UINT VK_MULTIPLY = 0x6A;
constexpr UINT VK_ADD = 0x6B;
constexpr UINT VK_SUBTRACT = 0x6D;
constexpr UINT VK_DECIMAL = 0x6E;
constexpr UINT VK_DIVIDE = 0x6F;
constexpr UINT VK_F1 = 0x70;
constexpr UINT VK_F2 = 0x71;
constexpr UINT VK_F3 = 0x72;
constexpr UINT VK_F4 = 0x73;
constexpr UINT VK_F5 = 0x74;
constexpr UINT VK_F6 = 0x75;
constexpr UINT VK_F7 = 0x76;
constexpr UINT VK_F8 = 0x77;
constexpr UINT VK_F9 = 0x78;
constexpr UINT VK_F10 = 0x79;
constexpr UINT VK_F11 = 0x7A;
constexpr UINT VK_F12 = 0x7B;
constexpr UINT VK_NUMLOCK = 0x90;
constexpr UINT VK_SCROLL = 0x91;

// The state of a key as the last input message left it: the high bit is set
// while the key is down. Windows that see input through a backend keep it.
VXBASE_EXPORT short GetKeyState(int virtualKey);
VXBASE_EXPORT short GetAsyncKeyState(int virtualKey);
// The cursor position in screen coordinates, as the last mouse message left it.
VXBASE_EXPORT BOOL GetCursorPos(POINT* point);
VXBASE_EXPORT BOOL SetCursorPos(int x, int y);
// Where the cursor was at the last message: x in the low word, y in the
// high word. Keys do not move it, so a selection made by keyboard finds it unchanged.
VXBASE_EXPORT DWORD GetMessagePos();
// Confines the cursor to a screen rectangle (null frees it); SetCursorPos
// stays within it. The desktop's own pointer is not confined here: the
// rectangle is kept for the programs that save and restore it.
VXBASE_EXPORT BOOL ClipCursor(const RECT* rect);
// The rectangle the cursor is confined to: the virtual screen when it is free.
VXBASE_EXPORT BOOL GetClipCursor(RECT* rect);

// Calls `proc` for every child of `parent` and, after each, for that child's
// own children, until it returns FALSE. Children made by `proc` meanwhile
// are not visited.
VXBASE_EXPORT BOOL EnumChildWindows(HWND parent, WNDENUMPROC proc, LPARAM lParam);

namespace vx {

// Backends report input state here, so that GetKeyState and GetCursorPos
// answer as on the original platform.
VXBASE_EXPORT void SetKeyDown(UINT virtualKey, bool down);
VXBASE_EXPORT void SetCursorPosition(POINT screen);

} // namespace vx
