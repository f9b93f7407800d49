// The clipboard of the desktop API, on the desktop's clipboard through Qt.
//
// Formats: CF_TEXT is text in the suite's code page (ending with a zero
// byte); CF_UNICODETEXT is UTF-16 text (ending with a zero); a registered
// format (RegisterClipboardFormatA) carries its bytes as they are. Text
// crosses to and from other programs in the desktop's encoding and line ends
// ("\n" there, "\r\n" here). Between programs of the suite CF_TEXT keeps its
// exact bytes: it travels beside the desktop text, which other programs see.
// Given both, CF_UNICODETEXT is what other programs see and CF_TEXT what the
// suite reads.
//
// As on the original, OpenClipboard comes first, EmptyClipboard makes the
// caller the owner, SetClipboardData hands a global memory block over to the
// clipboard (which frees it), and CloseClipboard publishes what was set. A
// handle from GetClipboardData belongs to the clipboard: it stays valid until
// the clipboard is next opened. Without a Qt application the clipboard lives
// in this process only.
//
//   if (OpenClipboard(m_hWnd)) {
//       EmptyClipboard();
//       SetClipboardData(CF_TEXT, vx::GlobalCopyOf("K1\tRelay", 9));
//       CloseClipboard();
//   }
#pragma once

#include "platform/framework/globalmemory.h"
#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

using CLIPFORMAT = WORD;

constexpr UINT CF_TEXT = 1;
constexpr UINT CF_BITMAP = 2;
constexpr UINT CF_OEMTEXT = 7;
constexpr UINT CF_UNICODETEXT = 13;

// FALSE when another window has it open.
VXBASE_UI_EXPORT BOOL OpenClipboard(HWND owner);
VXBASE_UI_EXPORT BOOL CloseClipboard();
// Takes every format off the clipboard; the window that opened it becomes
// its owner. FALSE unless the clipboard is open.
VXBASE_UI_EXPORT BOOL EmptyClipboard();
// Puts `data` (a global memory block, which the clipboard then owns) on the
// clipboard in `format`; returns it, or null when the clipboard is not open,
// the format is not one it carries, or `data` is not a block.
VXBASE_UI_EXPORT HANDLE SetClipboardData(UINT format, HANDLE data);
// The clipboard's data in `format`, or null. The clipboard must be open.
VXBASE_UI_EXPORT HANDLE GetClipboardData(UINT format);
VXBASE_UI_EXPORT BOOL IsClipboardFormatAvailable(UINT format);
// The number of a named format, the same for every process of the suite (and
// the same as RegisterWindowMessageA gives for the name, as on the original).
VXBASE_UI_EXPORT UINT RegisterClipboardFormatA(LPCSTR name);
// The name of a registered format; 0 for the standard formats.
VXBASE_UI_EXPORT int GetClipboardFormatNameA(UINT format, LPSTR name, int maxCount);
// The formats on the clipboard in turn: 0 starts, 0 ends.
VXBASE_UI_EXPORT UINT EnumClipboardFormats(UINT format);
VXBASE_UI_EXPORT int CountClipboardFormats();
// The window that last emptied the clipboard, while what it set is there.
VXBASE_UI_EXPORT HWND GetClipboardOwner();
VXBASE_UI_EXPORT HWND GetOpenClipboardWindow();
