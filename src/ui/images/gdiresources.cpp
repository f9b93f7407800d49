#include "ui/gdi/gdiobjects_p.h"
#include "ui/windows/qtinterop.h"

#include "platform/framework/codepage.h"
#include "platform/windows/sysmetrics.h"

#include <QString>

#include <map>
#include <string>
#include <utility>

namespace vx::gdi {
namespace {

std::map<std::pair<UINT, UINT>, QImage>& Registry()
{
    static auto* images = new std::map<std::pair<UINT, UINT>, QImage>;
    return *images;
}

const char* Folder(UINT kind)
{
    switch (kind) {
    case IMAGE_ICON: return "icons";
    case IMAGE_CURSOR: return "cursors";
    default: return "bitmaps";
    }
}

QImage FindImage(UINT kind, LPCSTR name, UINT flags)
{
    if (!name)
        return QImage();
    if (flags & LR_LOADFROMFILE) {
        if (IS_INTRESOURCE(name))
            return QImage();
        return QImage(QString::fromUtf8(vx::ToUtf8(name).c_str()));
    }
    if (IS_INTRESOURCE(name)) {
        const UINT id = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name));
        auto it = Registry().find({kind, id});
        if (it != Registry().end())
            return it->second;
        return QImage(QStringLiteral(":/vxbase/%1/%2.png").arg(QLatin1String(Folder(kind))).arg(id));
    }
    return QImage(QStringLiteral(":/vxbase/%1/%2.png")
                      .arg(QLatin1String(Folder(kind)), QString::fromUtf8(vx::ToUtf8(name).c_str())));
}

QImage Opaque(const QImage& image)
{
    // Bitmaps carry no alpha: what is transparent in the file shows white.
    QImage out(image.size(), QImage::Format_RGB32);
    out.fill(Qt::white);
    QPainter p(&out);
    p.drawImage(0, 0, image);
    return out;
}

QImage Resized(const QImage& image, int cx, int cy)
{
    if ((cx <= 0 || cx == image.width()) && (cy <= 0 || cy == image.height()))
        return image;
    return image.scaled(cx > 0 ? cx : image.width(), cy > 0 ? cy : image.height(), Qt::IgnoreAspectRatio,
                        Qt::FastTransformation);
}

Icon* NewIcon(const QImage& source, bool cursor)
{
    auto icon = std::make_unique<Icon>();
    const QImage argb = source.convertToFormat(QImage::Format_ARGB32);
    icon->color = QImage(argb.size(), QImage::Format_RGB32);
    icon->mask = QImage(argb.size(), QImage::Format_RGB32);
    for (int y = 0; y < argb.height(); ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        auto* c = reinterpret_cast<QRgb*>(icon->color.scanLine(y));
        auto* m = reinterpret_cast<QRgb*>(icon->mask.scanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            const bool drawn = qAlpha(s[x]) >= 128;
            c[x] = drawn ? (s[x] | 0xFF000000u) : 0xFF000000u;
            m[x] = drawn ? 0xFF000000u : 0xFFFFFFFFu;
        }
    }
    icon->cursor = cursor;
    icon->hotX = argb.width() / 2;
    icon->hotY = argb.height() / 2;
    void* h = Add(std::move(icon));
    return Get<Icon>(h);
}

// The size grip of a resizable window's corner.
QImage SizeGripImage()
{
    QImage image(12, 12, QImage::Format_RGB32);
    image.fill(ToRgb(GetSysColor(COLOR_3DFACE)));
    const QRgb light = ToRgb(GetSysColor(COLOR_3DHILIGHT));
    const QRgb dark = ToRgb(GetSysColor(COLOR_3DSHADOW));
    for (int k = 0; k < 3; ++k) {
        const int start = 4 * k;
        for (int i = 0; start + i < 12; ++i) {
            const int x = start + i;
            const int y = 11 - i;
            image.setPixel(x, y, light);
            if (x + 1 < 12)
                image.setPixel(x + 1, y, dark);
            if (x + 2 < 12)
                image.setPixel(x + 2, y, dark);
        }
    }
    return image;
}

QImage CheckImage()
{
    QImage image(13, 13, QImage::Format_RGB32);
    image.fill(Qt::white);
    static const int ys[] = {5, 6, 7, 8, 7, 6, 5, 4, 3};
    for (int i = 0; i < 9; ++i) {
        for (int t = 0; t < 3; ++t)
            image.setPixel(2 + i, ys[i] + t, 0xFF000000u);
    }
    return image;
}

int SystemCursorShape(UINT id)
{
    switch (id) {
    case 32512: return Qt::ArrowCursor;
    case 32513: return Qt::IBeamCursor;
    case 32514: return Qt::WaitCursor;
    case 32515: return Qt::CrossCursor;
    case 32516: return Qt::UpArrowCursor;
    case 32642: return Qt::SizeFDiagCursor;
    case 32643: return Qt::SizeBDiagCursor;
    case 32644: return Qt::SizeHorCursor;
    case 32645: return Qt::SizeVerCursor;
    case 32646: return Qt::SizeAllCursor;
    case 32648: return Qt::ForbiddenCursor;
    case 32649: return Qt::PointingHandCursor;
    case 32650: return Qt::BusyCursor;
    case 32651: return Qt::WhatsThisCursor;
    default: return -1;
    }
}

HCURSOR g_cursor = nullptr;

} // namespace

int CursorShapeOf(HCURSOR cursor)
{
    Icon* i = Get<Icon>(cursor);
    return i ? i->systemCursor : 0;
}

} // namespace vx::gdi

using namespace vx::gdi;

HANDLE LoadImageA(HINSTANCE, LPCSTR name, UINT type, int cx, int cy, UINT flags)
{
    QImage image = FindImage(type, name, flags);
    if (image.isNull())
        return nullptr;
    if (type == IMAGE_BITMAP) {
        image = Opaque(image);
        if ((flags & LR_LOADTRANSPARENT) && image.width() > 0) {
            // The colour of the first pixel becomes the window colour.
            const QRgb key = image.pixel(0, 0);
            const QRgb window = ToRgb(GetSysColor(COLOR_WINDOW));
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (image.pixel(x, y) == key)
                        image.setPixel(x, y, window);
                }
            }
        }
        return BitmapFromImage(Resized(image, cx, cy), (flags & LR_MONOCHROME) != 0);
    }
    if (type != IMAGE_ICON && type != IMAGE_CURSOR)
        return nullptr;
    if (flags & LR_DEFAULTSIZE) {
        cx = cx ? cx : GetSystemMetrics(SM_CXICON);
        cy = cy ? cy : GetSystemMetrics(SM_CYICON);
    }
    return NewIcon(Resized(image, cx, cy), type == IMAGE_CURSOR)->handle;
}

HBITMAP LoadBitmapA(HINSTANCE instance, LPCSTR name)
{
    if (!instance && IS_INTRESOURCE(name)) {
        const UINT id = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name));
        if (id == OBM_SIZE)
            return BitmapFromImage(SizeGripImage());
        if (id == OBM_CHECK)
            return BitmapFromImage(CheckImage(), true);
    }
    return static_cast<HBITMAP>(LoadImageA(instance, name, IMAGE_BITMAP, 0, 0, 0));
}

HICON LoadIconA(HINSTANCE instance, LPCSTR name)
{
    return static_cast<HICON>(LoadImageA(instance, name, IMAGE_ICON, 0, 0, LR_DEFAULTSIZE));
}

HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name)
{
    if (!instance && IS_INTRESOURCE(name)) {
        const UINT id = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name));
        const int shape = SystemCursorShape(id);
        if (shape >= 0) {
            // System cursors are shared, as on the original.
            static std::map<UINT, void*> cursors;
            if (Icon* known = Get<Icon>(cursors[id]))
                return static_cast<HCURSOR>(known->handle);
            QImage blank(32, 32, QImage::Format_ARGB32);
            blank.fill(Qt::transparent);
            Icon* icon = NewIcon(blank, true);
            icon->systemCursor = shape + 1;
            icon->stock = true;
            cursors[id] = icon->handle;
            return static_cast<HCURSOR>(icon->handle);
        }
    }
    return static_cast<HCURSOR>(LoadImageA(instance, name, IMAGE_CURSOR, 0, 0, 0));
}

HICON CreateIconIndirect(const ICONINFO* info)
{
    if (!info)
        return nullptr;
    Bitmap* mask = Get<Bitmap>(info->hbmMask);
    if (!mask)
        return nullptr;
    Bitmap* color = Get<Bitmap>(info->hbmColor);
    auto icon = std::make_unique<Icon>();
    const QImage& m = mask->Pixels();
    if (color) {
        icon->color = color->Pixels().copy();
        icon->mask = m.copy(0, 0, icon->color.width(), icon->color.height());
    } else {
        // A black-and-white icon: the mask bitmap holds the AND half over the XOR half.
        const int h = m.height() / 2;
        icon->mask = m.copy(0, 0, m.width(), h);
        icon->color = m.copy(0, h, m.width(), h);
    }
    for (int y = 0; y < icon->mask.height(); ++y) {
        for (int x = 0; x < icon->mask.width(); ++x)
            icon->mask.setPixel(x, y, SnapMono(icon->mask.pixel(x, y)));
    }
    icon->cursor = !info->fIcon;
    icon->hotX = info->fIcon ? icon->color.width() / 2 : static_cast<int>(info->xHotspot);
    icon->hotY = info->fIcon ? icon->color.height() / 2 : static_cast<int>(info->yHotspot);
    return static_cast<HICON>(Add(std::move(icon)));
}

BOOL GetIconInfo(HICON icon, PICONINFO info)
{
    Icon* i = Get<Icon>(icon);
    if (!i || !info)
        return FALSE;
    info->fIcon = !i->cursor;
    info->xHotspot = static_cast<DWORD>(i->hotX);
    info->yHotspot = static_cast<DWORD>(i->hotY);
    info->hbmMask = BitmapFromImage(i->mask, true);
    info->hbmColor = BitmapFromImage(i->color);
    return TRUE;
}

HICON CopyIcon(HICON icon)
{
    Icon* i = Get<Icon>(icon);
    if (!i)
        return nullptr;
    auto copy = std::make_unique<Icon>();
    copy->color = i->color;
    copy->mask = i->mask;
    copy->cursor = i->cursor;
    copy->hotX = i->hotX;
    copy->hotY = i->hotY;
    copy->systemCursor = i->systemCursor;
    return static_cast<HICON>(Add(std::move(copy)));
}

BOOL DestroyIcon(HICON icon)
{
    Icon* i = Get<Icon>(icon);
    if (!i)
        return FALSE;
    if (i->stock)
        return TRUE;
    if (g_cursor == icon)
        g_cursor = nullptr;
    return Remove(icon);
}

BOOL DestroyCursor(HCURSOR cursor)
{
    return DestroyIcon(cursor);
}

HCURSOR SetCursor(HCURSOR cursor)
{
    return std::exchange(g_cursor, cursor);
}

HCURSOR GetCursor()
{
    return g_cursor;
}

namespace vx {

QImage ImageOfBitmap(HBITMAP bitmap)
{
    Bitmap* b = Get<Bitmap>(bitmap);
    return b ? b->Pixels().copy() : QImage();
}

HBITMAP BitmapFromQImage(const QImage& image)
{
    return BitmapFromImage(Opaque(image));
}

QImage ImageOfIcon(HICON icon, bool mask)
{
    Icon* i = Get<Icon>(icon);
    if (!i)
        return QImage();
    return mask ? i->mask : i->color;
}

HICON IconFromQImage(const QImage& image)
{
    if (image.isNull())
        return nullptr;
    return static_cast<HICON>(NewIcon(image, false)->handle);
}

QImage ImageOfDC(HDC dc)
{
    Dc* d = Get<Dc>(dc);
    if (!d)
        return QImage();
    d->EndPainter();
    QImage* target = d->Target();
    return target ? target->copy() : QImage();
}

void SetResourceImage(UINT kind, UINT id, const QImage& image)
{
    if (image.isNull())
        Registry().erase({kind, id});
    else
        Registry()[{kind, id}] = image;
}

QString ToQString(const char* text, int count)
{
    if (!text)
        return QString();
    const std::string bytes = count < 0 ? std::string(text) : std::string(text, static_cast<std::size_t>(count));
    const std::string utf8 = vx::ToUtf8(bytes);
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

CString FromQString(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return CString(vx::FromUtf8(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size()))).c_str());
}

} // namespace vx
