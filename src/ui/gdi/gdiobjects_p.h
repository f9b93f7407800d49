// Internal; do not include directly.
//
// The objects behind the drawing handles of ui/gdi/wingdi.h, and the table that
// maps handles to them. Everything here belongs to the user-interface thread.
#pragma once

#include "ui/gdi/wingdi.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QRegion>

#include <string>
#include <unordered_map>

#include <memory>
#include <vector>

namespace vx::gdi {

enum class Kind { Pen, Brush, Font, Bitmap, Region, Dc, Icon, ImageList, Menu };

struct Object {
    explicit Object(Kind k) : kind(k) {}
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    const Kind kind;
    void* handle = nullptr;
    bool stock = false;
    int selections = 0; // how many devices have it selected
};

struct Pen final : Object {
    static constexpr Kind kKind = Kind::Pen;
    Pen() : Object(kKind) {}
    int style = PS_SOLID;
    int width = 0;
    COLORREF color = 0;
};

struct Brush final : Object {
    static constexpr Kind kKind = Kind::Brush;
    Brush() : Object(kKind) {}
    UINT style = BS_SOLID;
    COLORREF color = 0;
    int hatch = 0;
    int sysColor = -1; // a system colour brush follows GetSysColor
    QImage pattern;    // BS_PATTERN: true colour copy of the bitmap
    bool patternMono = false;
    COLORREF Color() const;
    bool IsNull() const { return style == BS_NULL; }
    bool IsSolid() const { return style == BS_SOLID; }
    // The brush's colour at a device pixel for a brush origin; a hatch's gaps
    // and a 1-bit pattern's white take the background colour, a 1-bit
    // pattern's black the text colour.
    QRgb PixelAt(int x, int y, QPoint origin, COLORREF text, COLORREF bk) const;
    // Whether a hatch brush's line covers the pixel.
    bool HatchCovers(int x, int y, QPoint origin) const;
};

struct Font final : Object {
    static constexpr Kind kKind = Kind::Font;
    Font() : Object(kKind) {}
    LOGFONTA lf{};
    QFont qfont;
    bool marlett = false;
    int pixelSize = 0; // em size in pixels
    std::unique_ptr<QFontMetrics> fm; // null without a GUI application
    TEXTMETRICA tm{};
    // Widths of texts measured before: the same texts come again and again
    // (labels, captions) and shaping them is the dear part of measuring.
    mutable std::unordered_map<std::string, int> widths;
};

// The pixels of a DIB section live in memory the caller writes; the image is
// made from them whenever the bitmap is read.
struct Dib {
    std::vector<unsigned char> bits;
    int bpp = 8;
    int stride = 0;
    bool bottomUp = true;
    std::vector<QRgb> palette;
};

struct Dc;

struct Bitmap final : Object {
    static constexpr Kind kKind = Kind::Bitmap;
    Bitmap() : Object(kKind) {}
    QImage image; // Format_RGB32; a 1-bit bitmap holds black and white only
    bool mono = false;
    std::unique_ptr<Dib> dib;
    Dc* selectedInto = nullptr;
    // The current pixels: finishes drawing in progress and refreshes a DIB.
    QImage& Pixels();
};

struct Region final : Object {
    static constexpr Kind kKind = Kind::Region;
    Region() : Object(kKind) {}
    QRegion region;
};

struct Icon final : Object {
    static constexpr Kind kKind = Kind::Icon;
    Icon() : Object(kKind) {}
    QImage color; // Format_RGB32, black where transparent
    QImage mask;  // Format_RGB32, white where transparent, black where drawn
    bool cursor = false;
    int hotX = 0;
    int hotY = 0;
    int systemCursor = 0; // Qt::CursorShape + 1 for the system cursors
};

struct DcState {
    HPEN pen = nullptr;
    HBRUSH brush = nullptr;
    HFONT font = nullptr;
    HBITMAP bitmap = nullptr;
    COLORREF text = RGB(0, 0, 0);
    COLORREF bk = RGB(255, 255, 255);
    int bkMode = OPAQUE;
    int rop2 = R2_COPYPEN;
    UINT textAlign = 0;
    int polyFill = ALTERNATE;
    int stretchMode = 1;
    QPoint windowOrg;
    QPoint viewportOrg;
    QPoint brushOrg;
    QPoint pos; // current position, logical
    bool clipped = false;
    QRegion clip; // device coordinates
};

struct Dc final : Object {
    static constexpr Kind kKind = Kind::Dc;
    enum class Type { Memory, Window, Screen, Image }; // Image: a shared image (sharedimagedc.h)
    explicit Dc(Type t) : Object(kKind), type(t) {}
    ~Dc() override;

    Type type;
    HWND window = nullptr;
    // What a device of GetDC or GetWindowDC drew shows when it is released:
    // its area of the window's surface (window coordinates).
    bool present = false;
    QRect area;
    std::shared_ptr<QImage> surface; // the window's pixels, the screen stand-in, or a shared image
    HANDLE block = nullptr;          // the file mapping of a shared image's pixels
    bool hasSystemClip = false;
    QRegion systemClip; // the area being painted, device coordinates
    DcState st;
    std::vector<DcState> saved;

    // The image drawn into, or null.
    QImage* Target();
    bool Mono();
    // A painter on the target with the clip applied, or null.
    QPainter* Painter();
    // Finishes painter work, so that pixels can be read and written directly.
    void EndPainter();
    void ClipChanged() { m_clipDirty = true; }
    // The effective clip in device coordinates, within the target.
    QRegion Clip();
    QPoint ToDevice(int x, int y) const
    {
        return QPoint(x - st.windowOrg.x() + st.viewportOrg.x(), y - st.windowOrg.y() + st.viewportOrg.y());
    }
    QPoint ToLogical(QPoint p) const
    {
        return QPoint(p.x() + st.windowOrg.x() - st.viewportOrg.x(), p.y() + st.windowOrg.y() - st.viewportOrg.y());
    }
    // A logical rectangle in device coordinates, normalised (may be empty).
    QRect ToDevice(const RECT& r) const;

private:
    std::unique_ptr<QPainter> m_painter;
    bool m_clipDirty = true;
};

// --- the handle table ---------------------------------------------------------
void* Add(std::unique_ptr<Object> object);
Object* Find(const void* handle);
template <class T>
T* Get(const void* handle)
{
    Object* o = Find(handle);
    return (o && o->kind == T::kKind) ? static_cast<T*>(o) : nullptr;
}
// Deletes the object of `handle`; false if there is none.
bool Remove(const void* handle);
// A new device drawing into `surface` (devicecontext.cpp).
Dc* NewImageDc(std::shared_ptr<QImage> surface);

// The stock object of GetStockObject's index (created on first use), and
// the bitmap of a fresh memory device.
Object* Stock(int index);
Bitmap* DefaultBitmap();

// --- colours ----------------------------------------------------------------------
inline QRgb ToRgb(COLORREF c)
{
    return qRgb(GetRValue(c), GetGValue(c), GetBValue(c));
}
inline COLORREF ToColorRef(QRgb p)
{
    return RGB(qRed(p), qGreen(p), qBlue(p));
}
inline bool MonoBit(QRgb p)
{
    return qGray(p) >= 128;
}
// The nearer of white and black, as a 1-bit bitmap stores a colour.
inline QRgb SnapMono(QRgb p)
{
    return MonoBit(p) ? 0xFFFFFFFFu : 0xFF000000u;
}

// A font object for a request (gditext.cpp).
std::unique_ptr<Font> MakeFont(const LOGFONTA& lf);

// A new true-colour bitmap (or 1 bit with `mono`) filled with black.
Bitmap* NewBitmap(int width, int height, bool mono);
// The handle of a new bitmap holding `image` (converted to RGB32).
HBITMAP BitmapFromImage(const QImage& image, bool mono = false);

// --- window surfaces (provided by the window backend) ---------------------------------
// The pixels a window shows, or null for a window without a surface.
std::shared_ptr<QImage> WindowSurface(HWND window);
struct PendingPaint {
    QRegion region;
    bool erase = false;
};
// Takes the window's invalid area for BeginPaint (and validates it).
PendingPaint TakePendingPaint(HWND window);
// Fills an area of a window with its class background (WM_ERASEBKGND unanswered).
void EraseWithClassBackground(HWND window, HDC dc, const QRegion& area);
// What the screen shows: the desktop's colour under the visible top-level
// windows that have been painted, the active one on top.
std::shared_ptr<QImage> ScreenImage();
// Shows what was drawn into an area of the window's surface (window
// coordinates) without a WM_PAINT.
void PresentWindow(HWND window, const QRect& area);
// Sends WM_PAINT to the window with BeginPaint handing out `dc` (the
// default of WM_PRINTCLIENT).
void PaintInto(HWND window, HDC dc);

// --- shared drawing helpers ----------------------------------------------------------
// Calls `fn` for each rectangle of `area` (device coordinates) inside the clip.
template <class Fn>
void ForEachClipped(Dc& dc, const QRect& area, Fn fn)
{
    const QRegion visible = dc.Clip() & area;
    for (const QRect& r : visible)
        fn(r);
}
// Applies a binary raster operation of a pen or brush colour to a pixel.
QRgb Rop2(int mode, QRgb pen, QRgb dest);
// Applies a ternary raster operation to pattern, source and destination.
QRgb Rop3(DWORD rop, QRgb pattern, QRgb source, QRgb dest);
// Fills a device rectangle with a brush by a raster operation.
void FillDevice(Dc& dc, const QRect& area, const Brush* brush, DWORD rop = PATCOPY);
// Text drawn in black on white in the device's font (gditext.cpp), for
// DrawState; DST_PREFIXTEXT underlines the "&" letters.
QImage TextShape(Dc& dc, const char* text, int count, bool prefix);
// The Qt cursor shape + 1 of a system cursor, 0 for others (gdiresources.cpp).
int CursorShapeOf(HCURSOR cursor);

} // namespace vx::gdi
