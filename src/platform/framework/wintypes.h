// Basic types and constants of the desktop API that the library's interfaces
// are written in. Sizes follow the 64-bit Linux ABI: handles and the message
// parameters WPARAM/LPARAM/LRESULT are pointer-sized, so that a pointer can
// travel in a message as it did on the original platform; DWORD, UINT and
// LONG stay 32 bits wide because file formats and the wire block rely on it.
//
//   HWND w = ...;
//   LRESULT r = SendMessageA(w, WM_VXBASE, 10, 0);
#pragma once

#include <cstdint>

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using LPCSTR = const char*;
using LPSTR = char*;
using LPCTSTR = const char*;
using LPTSTR = char*;
using LPVOID = void*;
using LPCVOID = const void*;
using HANDLE = void*;
using HINSTANCE = void*;
using HMODULE = void*;

// A window handle: an opaque key into the window table. It encodes the id
// of the owning process, so handles seen through EnumWindows stay unique
// across the processes of one user.
struct HWND__;
using HWND = HWND__*;

// An opaque iteration cursor of the framework's collections.
struct __POSITION;
using POSITION = __POSITION*;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef MAX_PATH
#define MAX_PATH 260
#endif
#ifndef _MAX_PATH
#define _MAX_PATH 260
#endif
#define _MAX_DRIVE 3
#define _MAX_DIR 256
#define _MAX_FNAME 256
#define _MAX_EXT 256

// A COLORREF is 0x00BBGGRR.
using COLORREF = DWORD;
constexpr COLORREF RGB(int r, int g, int b)
{
    return static_cast<COLORREF>((r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16));
}
constexpr BYTE GetRValue(COLORREF c) { return static_cast<BYTE>(c & 0xFF); }
constexpr BYTE GetGValue(COLORREF c) { return static_cast<BYTE>((c >> 8) & 0xFF); }
constexpr BYTE GetBValue(COLORREF c) { return static_cast<BYTE>((c >> 16) & 0xFF); }

constexpr WORD LOWORD(DWORD_PTR v) { return static_cast<WORD>(v & 0xFFFF); }
constexpr WORD HIWORD(DWORD_PTR v) { return static_cast<WORD>((v >> 16) & 0xFFFF); }
constexpr BYTE LOBYTE(DWORD_PTR v) { return static_cast<BYTE>(v & 0xFF); }
constexpr BYTE HIBYTE(DWORD_PTR v) { return static_cast<BYTE>((v >> 8) & 0xFF); }
constexpr DWORD MAKELONG(WORD lo, WORD hi) { return static_cast<DWORD>(lo) | (static_cast<DWORD>(hi) << 16); }
constexpr LPARAM MAKELPARAM(WORD lo, WORD hi) { return static_cast<LPARAM>(MAKELONG(lo, hi)); }
constexpr WPARAM MAKEWPARAM(WORD lo, WORD hi) { return static_cast<WPARAM>(MAKELONG(lo, hi)); }
constexpr LRESULT MAKELRESULT(WORD lo, WORD hi) { return static_cast<LRESULT>(MAKELONG(lo, hi)); }

// Window messages used by the library and its hosts.
constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_SETCURSOR = 0x0020;
constexpr UINT WM_DRAWITEM = 0x002B;
constexpr UINT WM_MEASUREITEM = 0x002C;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
constexpr UINT WM_COPYDATA = 0x004A;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_INITDIALOG = 0x0110;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_SYSCOMMAND = 0x0112;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_HSCROLL = 0x0114;
constexpr UINT WM_VSCROLL = 0x0115;
constexpr UINT WM_INITMENUPOPUP = 0x0117;
constexpr UINT WM_MENUSELECT = 0x011F;
constexpr UINT WM_MENUCHAR = 0x0120;
constexpr UINT WM_ENTERIDLE = 0x0121;
constexpr UINT WM_CTLCOLOR = 0x0019;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_CAPTURECHANGED = 0x0215;
constexpr UINT WM_MOUSELEAVE = 0x02A3;
constexpr UINT WM_USER = 0x0400;
constexpr UINT WM_APP = 0x8000;

// Message box types and answers.
constexpr UINT MB_OK = 0x00000000;
constexpr UINT MB_OKCANCEL = 0x00000001;
constexpr UINT MB_ABORTRETRYIGNORE = 0x00000002;
constexpr UINT MB_YESNOCANCEL = 0x00000003;
constexpr UINT MB_YESNO = 0x00000004;
constexpr UINT MB_RETRYCANCEL = 0x00000005;
constexpr UINT MB_TYPEMASK = 0x0000000F;
constexpr UINT MB_ICONHAND = 0x00000010;
constexpr UINT MB_ICONERROR = MB_ICONHAND;
constexpr UINT MB_ICONSTOP = MB_ICONHAND;
constexpr UINT MB_ICONQUESTION = 0x00000020;
constexpr UINT MB_ICONEXCLAMATION = 0x00000030;
constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
constexpr UINT MB_ICONASTERISK = 0x00000040;
constexpr UINT MB_ICONINFORMATION = MB_ICONASTERISK;
constexpr UINT MB_ICONMASK = 0x000000F0;
constexpr UINT MB_DEFBUTTON1 = 0x00000000;
constexpr UINT MB_DEFBUTTON2 = 0x00000100;
constexpr UINT MB_DEFBUTTON3 = 0x00000200;
constexpr UINT MB_DEFMASK = 0x00000F00;
constexpr UINT MB_APPLMODAL = 0x00000000;
constexpr UINT MB_SYSTEMMODAL = 0x00001000;
constexpr UINT MB_TASKMODAL = 0x00002000;
constexpr UINT MB_SETFOREGROUND = 0x00010000;
constexpr UINT MB_TOPMOST = 0x00040000;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// ShowWindow commands.
constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_NORMAL = 1;
constexpr int SW_SHOWMINIMIZED = 2;
constexpr int SW_SHOWMAXIMIZED = 3;
constexpr int SW_MAXIMIZE = 3;
constexpr int SW_SHOWNOACTIVATE = 4;
constexpr int SW_SHOW = 5;
constexpr int SW_MINIMIZE = 6;
constexpr int SW_SHOWMINNOACTIVE = 7;
constexpr int SW_SHOWNA = 8;
constexpr int SW_RESTORE = 9;

// Combo box messages, as the list helpers send them.
constexpr UINT CB_ERR = static_cast<UINT>(-1);
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_DELETESTRING = 0x0144;
constexpr UINT CB_GETCOUNT = 0x0146;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_GETLBTEXT = 0x0148;
constexpr UINT CB_GETLBTEXTLEN = 0x0149;
constexpr UINT CB_INSERTSTRING = 0x014A;
constexpr UINT CB_RESETCONTENT = 0x014B;
constexpr UINT CB_FINDSTRING = 0x014C;
constexpr UINT CB_SELECTSTRING = 0x014D;
constexpr UINT CB_SETCURSEL = 0x014E;
constexpr UINT CB_GETITEMDATA = 0x0150;
constexpr UINT CB_SETITEMDATA = 0x0151;
constexpr UINT CB_FINDSTRINGEXACT = 0x0158;

// File attributes, as the file search reports them.
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x00000001;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x00000002;
constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x00000004;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x00000010;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x00000020;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x00000080;
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

// The data block of WM_COPYDATA. On this platform cbData stays 32 bits as
// on the original; lpData points into the receiver's own copy of the bytes.
struct COPYDATASTRUCT {
    ULONG_PTR dwData;
    DWORD cbData;
    void* lpData;
};
using PCOPYDATASTRUCT = COPYDATASTRUCT*;

using TIMERPROC = void (*)(HWND, UINT, UINT_PTR, DWORD);
using WNDENUMPROC = BOOL (*)(HWND, LPARAM);
