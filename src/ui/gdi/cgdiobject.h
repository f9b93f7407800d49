// The framework's drawing objects: CGdiObject and its pens, brushes, fonts
// and regions. Each owns its handle and deletes it when destroyed (unless
// detached); FromHandle gives a wrapper of a handle it does not own.
//
//   CFont font;
//   LOGFONT lf{};
//   lf.lfHeight = -11;
//   strcpy(lf.lfFaceName, "Tahoma");
//   font.CreateFontIndirect(&lf);
//   CFont* old = dc.SelectObject(&font);
#pragma once

#include "platform/framework/cobject.h"
#include "ui/gdi/wingdi.h"
#include "vxbase_ui_export.h"

class CBitmap;

class VXBASE_UI_EXPORT CGdiObject : public CObject {
public:
    CGdiObject();
    ~CGdiObject() override;
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;

    HGDIOBJ m_hObject = nullptr;

    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    operator HGDIOBJ() const { return m_hObject; }
    // Takes ownership of a handle; FALSE if one is held already or it is null.
    BOOL Attach(HGDIOBJ object);
    // Gives up the handle without deleting it.
    HGDIOBJ Detach();
    // Deletes the handle; FALSE when there is none or it is still selected.
    BOOL DeleteObject();
    int GetObject(int size, void* out) const;
    BOOL CreateStockObject(int index);
    BOOL UnrealizeObject();
    static CGdiObject* FromHandle(HGDIOBJ object);
};

class VXBASE_UI_EXPORT CPen : public CGdiObject {
public:
    CPen();
    CPen(int style, int width, COLORREF color);
    BOOL CreatePen(int style, int width, COLORREF color);
    BOOL CreatePenIndirect(const LOGPEN* pen);
    int GetLogPen(LOGPEN* pen) const;
    operator HPEN() const { return static_cast<HPEN>(m_hObject); }
    static CPen* FromHandle(HPEN pen);
};

class VXBASE_UI_EXPORT CBrush : public CGdiObject {
public:
    CBrush();
    explicit CBrush(COLORREF color);
    CBrush(int hatch, COLORREF color);
    explicit CBrush(CBitmap* pattern);
    BOOL CreateSolidBrush(COLORREF color);
    BOOL CreateHatchBrush(int hatch, COLORREF color);
    BOOL CreatePatternBrush(CBitmap* pattern);
    BOOL CreateBrushIndirect(const LOGBRUSH* brush);
    // Wraps the shared brush of a system colour (it is never deleted).
    BOOL CreateSysColorBrush(int index);
    int GetLogBrush(LOGBRUSH* brush) const;
    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
    static CBrush* FromHandle(HBRUSH brush);
};

class VXBASE_UI_EXPORT CFont : public CGdiObject {
public:
    CFont();
    BOOL CreateFontIndirect(const LOGFONTA* font);
    BOOL CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic, BYTE underline,
                    BYTE strikeOut, BYTE charSet, BYTE outPrecision, BYTE clipPrecision, BYTE quality,
                    BYTE pitchAndFamily, LPCSTR face);
    // A font of a size in tenths of a point (at 96 pixels per inch).
    BOOL CreatePointFont(int pointSize10, LPCSTR face, class CDC* dc = nullptr);
    int GetLogFont(LOGFONTA* font) const;
    operator HFONT() const { return static_cast<HFONT>(m_hObject); }
    static CFont* FromHandle(HFONT font);
};

class VXBASE_UI_EXPORT CRgn : public CGdiObject {
public:
    CRgn();
    BOOL CreateRectRgn(int left, int top, int right, int bottom);
    BOOL CreateRectRgnIndirect(const RECT* rect);
    int CombineRgn(const CRgn* a, const CRgn* b, int mode);
    BOOL PtInRegion(int x, int y) const;
    BOOL PtInRegion(POINT point) const { return PtInRegion(point.x, point.y); }
    int GetRgnBox(RECT* box) const;
    int OffsetRgn(int dx, int dy);
    operator HRGN() const { return static_cast<HRGN>(m_hObject); }
    static CRgn* FromHandle(HRGN region);
};
