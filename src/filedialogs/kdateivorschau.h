// KDateiVorschau: a small picture of a drawing, drawn by whichever program
// of the suite can draw the file. The library reads no drawing: it lends a
// device context to the host's main frame or, by a broadcast with a shared
// block, to the partner program, and keeps what was drawn as a bitmap.
//
//   KDateiVorschau preview;                       // frees the cursor while it lives
//   CString path = "C:\\Projekte\\Demo\\Schalt.ELD";
//   preview.BildUpdate(path, &window, nullptr, 0, 1); // IT draws, or "no preview"
//
// The broadcast: the block (a file mapping named like the message, 264
// bytes: the path, zero-terminated, in 260 bytes, then the result as a
// 32-bit number) and the registered message of the same name:
//
//   mode 1 in AT (frame type 1)   "VEXALIT_PREVIEW"   IT draws
//   mode 0 in IT (frame type 2)   "VXW_PREVIEW"       AT draws
//
// wParam is the block's handle, lParam a device context of the window's
// client size (a shared-image device, sharedimagedc.h, so that it can
// cross). The program that knows the message draws the file into it, sets
// the result and answers non-zero. Any other mode and frame type goes to the
// main frame as the request WM_USER + 6 with code 0x52.
#pragma once

#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"
#include "platform/windows/cwnd.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

class KDateiVorschau;

namespace vx {

// The requests to the main frame: message WM_USER + 6 with a code as wParam.
constexpr UINT kVorschauRequest = WM_USER + 6;
constexpr WPARAM kVorschauBauteil = 0x50; // lParam: the KVorschauWnd
constexpr WPARAM kVorschauShow = 0x51;    // lParam: a VorschauRecord (no path)
constexpr WPARAM kVorschauLoad = 0x52;    // lParam: a VorschauRecord; answer 0 when drawn, else 1
constexpr WPARAM kVorschauExit = 0x53;    // lParam: 0

// What the requests 0x51 and 0x52 hand the main frame.
struct VorschauRecord {
    KDateiVorschau* preview;
    CString* path; // null for 0x51
    CWnd* window;
};

// The shared block: its size and where its result lies.
constexpr int kVorschauBlockBytes = 264;
constexpr int kVorschauResultOffset = 260;
// Bitmap resource: the picture that says there is no preview, 84 x 24.
constexpr UINT kKeineVorschauBitmap = 6814;

} // namespace vx

class VXBASE_UI_EXPORT KDateiVorschau {
public:
    // Keeps the cursor's clip rectangle and frees the cursor, so that it
    // moves freely over the dialog while the preview lives.
    KDateiVorschau();
    // Gives the cursor its clip back and deletes the bitmap.
    virtual ~KDateiVorschau();
    KDateiVorschau(const KDateiVorschau&) = delete;
    KDateiVorschau& operator=(const KDateiVorschau&) = delete;

    // Draws the picture of `path` into `target`'s client area: clears the
    // bitmap it shows, and with the flag on paints the background (with
    // `brush`: the background colour for an empty path, the brush for a
    // path), asks for the drawing by `mode` and, if nobody draws it, shows
    // bitmap 6814 (centred; with `asBitmap` as the target's image).
    void BildUpdate(CString& path, CWnd* target, HBRUSH brush, int asBitmap, int mode);
    // Tells the main frame that the preview has ended (request 0x53).
    void Exit();

    // The process's preview flag: written by the on/off button and the
    // dialog's check box, read by every new KDateiVorschau. On at the start.
    static int s_GlobalOnOff;
    // The background of previews: 0 until first needed, then the pixel at
    // (0, 0) of the first preview window drawn.
    static COLORREF s_BkColor;

    int m_OnOff;                 // drawing on or off
    HBITMAP m_hBitmap = nullptr; // what was drawn last
    CRect m_ClipRect;            // the cursor's clip when the object was made

protected:
    // 0 when the file was drawn into `target` and kept as the bitmap; 1 when
    // not (nobody answered, nobody drew, the path does not fit the block, or
    // the block could not be made).
    int LoadDrawing(CString& path, CWnd* target, int mode);
    // Asks the main frame to show its drawing in `target` (request 0x51).
    void ShowDrawing(CWnd* target);
};
