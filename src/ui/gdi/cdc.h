// CDC: the framework's device context, and the paint, client and window
// devices of a window. Each call has the meaning of the GDI call it wraps
// (ui/gdi/wingdi.h); the framework's own helpers keep theirs:
//
// * FillSolidRect fills through the background colour and leaves it set to
//   the fill colour, as the framework's did.
// * Draw3dRect(x, y, cx, cy, tl, br) draws the top row without its last pixel
//   and the left column without its last pixel in `tl`, then the right column
//   and the bottom row in full in `br`.
//
//   void CMyWnd::OnPaint()
//   {
//       CPaintDC dc(this);
//       CRect r;
//       GetClientRect(&r);
//       dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
//       dc.Draw3dRect(&r, GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW));
//   }
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/framework/rect.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

class CWnd;
class CGdiObject;
class CPen;
class CBrush;
class CFont;
class CBitmap;
class CRgn;

class VXBASE_UI_EXPORT CDC : public CObject {
public:
    CDC();
    // Deletes the device it holds, as the framework's did: Detach a device
    // that belongs to someone else before the object goes.
    ~CDC() override;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    HDC m_hDC = nullptr;

    operator HDC() const { return m_hDC; }
    HDC GetSafeHdc() const { return m_hDC; }
    BOOL Attach(HDC dc);
    HDC Detach();
    // A wrapper of a device this object does not own.
    static CDC* FromHandle(HDC dc);
    BOOL CreateCompatibleDC(CDC* dc);
    BOOL DeleteDC();
    CWnd* GetWindow() const;
    int SaveDC();
    BOOL RestoreDC(int saved);
    int GetDeviceCaps(int index) const;
    COLORREF GetNearestColor(COLORREF color) const;

    // --- objects --------------------------------------------------------------------
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);
    int SelectObject(CRgn* region);
    HGDIOBJ SelectObject(HGDIOBJ object);
    CGdiObject* SelectStockObject(int index);
    CPen* GetCurrentPen() const;
    CBrush* GetCurrentBrush() const;
    CFont* GetCurrentFont() const;
    CBitmap* GetCurrentBitmap() const;

    // --- attributes -----------------------------------------------------------------
    COLORREF SetTextColor(COLORREF color);
    COLORREF GetTextColor() const;
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const;
    int SetBkMode(int mode);
    int GetBkMode() const;
    int SetROP2(int mode);
    int GetROP2() const;
    UINT SetTextAlign(UINT align);
    int SetPolyFillMode(int mode);
    int SetStretchBltMode(int mode);

    // --- coordinates and clipping -------------------------------------------------------
    CPoint SetWindowOrg(int x, int y);
    CPoint SetWindowOrg(POINT point) { return SetWindowOrg(point.x, point.y); }
    CPoint GetWindowOrg() const;
    CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT point) { return SetViewportOrg(point.x, point.y); }
    CPoint GetViewportOrg() const;
    CPoint OffsetViewportOrg(int dx, int dy);
    CPoint SetBrushOrg(int x, int y);
    CPoint SetBrushOrg(POINT point) { return SetBrushOrg(point.x, point.y); }
    CPoint GetBrushOrg() const;
    void LPtoDP(POINT* points, int count = 1) const;
    void LPtoDP(RECT* rect) const;
    void DPtoLP(POINT* points, int count = 1) const;
    void DPtoLP(RECT* rect) const;
    int IntersectClipRect(int left, int top, int right, int bottom);
    int IntersectClipRect(const RECT* rect);
    int ExcludeClipRect(int left, int top, int right, int bottom);
    int ExcludeClipRect(const RECT* rect);
    int SelectClipRgn(CRgn* region);
    int GetClipBox(RECT* box) const;
    BOOL PtVisible(int x, int y) const;
    BOOL RectVisible(const RECT* rect) const;

    // --- drawing ----------------------------------------------------------------------
    COLORREF GetPixel(int x, int y) const;
    COLORREF GetPixel(POINT point) const { return GetPixel(point.x, point.y); }
    COLORREF SetPixel(int x, int y, COLORREF color);
    COLORREF SetPixel(POINT point, COLORREF color) { return SetPixel(point.x, point.y, color); }
    BOOL SetPixelV(int x, int y, COLORREF color);
    void FillRect(const RECT* rect, CBrush* brush);
    void FillSolidRect(const RECT* rect, COLORREF color);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF color);
    void FrameRect(const RECT* rect, CBrush* brush);
    void InvertRect(const RECT* rect);
    void Draw3dRect(const RECT* rect, COLORREF topLeft, COLORREF bottomRight);
    void Draw3dRect(int x, int y, int cx, int cy, COLORREF topLeft, COLORREF bottomRight);
    void DrawFocusRect(const RECT* rect);
    BOOL DrawEdge(RECT* rect, UINT edge, UINT flags);
    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT point) { return MoveTo(point.x, point.y); }
    BOOL LineTo(int x, int y);
    BOOL LineTo(POINT point) { return LineTo(point.x, point.y); }
    BOOL Polyline(const POINT* points, int count);
    BOOL Rectangle(int left, int top, int right, int bottom);
    BOOL Rectangle(const RECT* rect);
    BOOL RoundRect(int left, int top, int right, int bottom, int width, int height);
    BOOL RoundRect(const RECT* rect, POINT corner);
    BOOL Ellipse(int left, int top, int right, int bottom);
    BOOL Ellipse(const RECT* rect);
    BOOL Polygon(const POINT* points, int count);
    BOOL GradientFill(TRIVERTEX* vertices, ULONG vertexCount, void* mesh, ULONG meshCount, ULONG mode);
    BOOL PatBlt(int x, int y, int width, int height, DWORD rop);
    BOOL BitBlt(int x, int y, int width, int height, CDC* source, int sx, int sy, DWORD rop);
    BOOL StretchBlt(int x, int y, int width, int height, CDC* source, int sx, int sy, int sourceWidth,
                    int sourceHeight, DWORD rop);
    BOOL TransparentBlt(int x, int y, int width, int height, CDC* source, int sx, int sy, int sourceWidth,
                        int sourceHeight, UINT transparent);
    BOOL DrawIcon(int x, int y, HICON icon);
    BOOL DrawIcon(POINT point, HICON icon) { return DrawIcon(point.x, point.y, icon); }
    // The drag rectangle of splitters and docking: inverts, with `brush`
    // (null: the halftone brush), the frame of `rect` `size` thick, and
    // erases the frame of `lastRect` (null: none) in the same stroke, so that
    // where the two overlap nothing changes. Drawing the same rectangle again
    // with no last one takes it away.
    void DrawDragRect(const RECT* rect, SIZE size, const RECT* lastRect, SIZE lastSize, CBrush* brush = nullptr,
                      CBrush* lastBrush = nullptr);
    // A brush of every other pixel (a shared object; do not delete it).
    static CBrush* GetHalftoneBrush();
    // DrawState by kind: the flags are DSS_ states (the DST_ kind is added).
    BOOL DrawState(CPoint point, CSize size, HICON icon, UINT flags, HBRUSH brush = nullptr);
    BOOL DrawState(CPoint point, CSize size, HICON icon, UINT flags, CBrush* brush);
    BOOL DrawState(CPoint point, CSize size, HBITMAP bitmap, UINT flags, HBRUSH brush = nullptr);
    BOOL DrawState(CPoint point, CSize size, CBitmap* bitmap, UINT flags, CBrush* brush = nullptr);
    BOOL DrawState(CPoint point, CSize size, LPCSTR text, UINT flags, BOOL prefixText = TRUE, int textLength = 0,
                   HBRUSH brush = nullptr);

    // --- text ------------------------------------------------------------------------
    int DrawText(LPCSTR text, int count, RECT* rect, UINT format);
    int DrawText(const CString& text, RECT* rect, UINT format);
    BOOL TextOut(int x, int y, LPCSTR text, int count);
    BOOL TextOut(int x, int y, const CString& text);
    BOOL ExtTextOut(int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT count, const int* dx);
    BOOL ExtTextOut(int x, int y, UINT options, const RECT* rect, const CString& text, const int* dx);
    CSize GetTextExtent(LPCSTR text, int count) const;
    CSize GetTextExtent(const CString& text) const;
    BOOL GetTextMetrics(TEXTMETRICA* metrics) const;
    int GetTextFace(CString& face) const;
};

// The device of WM_PAINT: BeginPaint in the constructor, EndPaint in the destructor.
class VXBASE_UI_EXPORT CPaintDC : public CDC {
public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;
    PAINTSTRUCT m_ps{};

protected:
    HWND m_hWnd = nullptr;
};

// A device on a window's client area for drawing outside WM_PAINT.
class VXBASE_UI_EXPORT CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

protected:
    HWND m_hWnd = nullptr;
};

class VXBASE_UI_EXPORT CWindowDC : public CDC {
public:
    explicit CWindowDC(CWnd* window);
    ~CWindowDC() override;

protected:
    HWND m_hWnd = nullptr;
};
