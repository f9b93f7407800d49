#include "ui/images/cimagelist.h"

#include "ui/images/cbitmap.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/gdiobjects_p.h"
#include "ui/gdi/handlemap_p.h"

#include "platform/windows/sysmetrics.h"

#include <utility>

namespace vx::gdi {
namespace {

struct ImageList final : Object {
    static constexpr Kind kKind = Kind::ImageList;
    ImageList() : Object(kKind) {}
    int cx = 0;
    int cy = 0;
    UINT flags = 0;
    COLORREF bk = CLR_NONE;
    struct Entry {
        QImage color; // RGB32
        QImage mask;  // RGB32, white where transparent
    };
    std::vector<Entry> images;
    bool Masked() const { return flags & ILC_MASK; }
};

ImageList* ListOf(HIMAGELIST h)
{
    return Get<ImageList>(h);
}

QImage Opaque(int cx, int cy)
{
    QImage mask(cx, cy, QImage::Format_RGB32);
    mask.fill(0xFF000000u);
    return mask;
}

// Splits a bitmap into images; `transparent` (or a mask bitmap) gives the masks.
std::vector<ImageList::Entry> Split(const ImageList& list, HBITMAP image, HBITMAP mask, bool byColor,
                                    COLORREF transparent)
{
    std::vector<ImageList::Entry> out;
    Bitmap* b = Get<Bitmap>(image);
    if (!b || list.cx <= 0 || list.cy <= 0)
        return out;
    const QImage pixels = b->Pixels().copy();
    Bitmap* m = Get<Bitmap>(mask);
    const QImage maskPixels = m ? m->Pixels().copy() : QImage();
    const int count = std::max(1, pixels.width() / list.cx);
    const QRgb key = ToRgb(transparent) & 0xFFFFFF;
    for (int i = 0; i < count; ++i) {
        ImageList::Entry e;
        e.color = QImage(list.cx, list.cy, QImage::Format_RGB32);
        e.color.fill(0xFF000000u);
        e.mask = Opaque(list.cx, list.cy);
        for (int y = 0; y < list.cy && y < pixels.height(); ++y) {
            for (int x = 0; x < list.cx && i * list.cx + x < pixels.width(); ++x) {
                const QRgb c = pixels.pixel(i * list.cx + x, y);
                bool clear = false;
                if (byColor)
                    clear = (c & 0xFFFFFF) == key;
                else if (!maskPixels.isNull() && maskPixels.rect().contains(i * list.cx + x, y))
                    clear = MonoBit(maskPixels.pixel(i * list.cx + x, y));
                if (clear && list.Masked()) {
                    e.mask.setPixel(x, y, 0xFFFFFFFFu);
                    if (byColor)
                        continue; // the transparent colour turns black
                }
                e.color.setPixel(x, y, c);
            }
        }
        out.push_back(std::move(e));
    }
    return out;
}

ImageList::Entry FromIcon(const ImageList& list, HICON icon)
{
    ImageList::Entry e;
    Icon* i = Get<Icon>(icon);
    if (!i)
        return e;
    e.color = i->color.scaled(list.cx, list.cy);
    e.mask = i->mask.scaled(list.cx, list.cy);
    return e;
}

QRgb Blend(QRgb c, QRgb with, int parts)
{
    // parts of 4 taken from the highlight colour
    auto mix = [&](int a, int b) { return (a * (4 - parts) + b * parts) / 4; };
    return qRgb(mix(qRed(c), qRed(with)), mix(qGreen(c), qGreen(with)), mix(qBlue(c), qBlue(with)));
}

} // namespace
} // namespace vx::gdi

using namespace vx::gdi;

HIMAGELIST ImageList_Create(int cx, int cy, UINT flags, int, int)
{
    if (cx <= 0 || cy <= 0)
        return nullptr;
    auto list = std::make_unique<ImageList>();
    list->cx = cx;
    list->cy = cy;
    list->flags = flags;
    return static_cast<HIMAGELIST>(Add(std::move(list)));
}

BOOL ImageList_Destroy(HIMAGELIST list)
{
    return ListOf(list) && Remove(list);
}

namespace {

int Append(HIMAGELIST list, HBITMAP image, HBITMAP mask, bool byColor, COLORREF transparent)
{
    ImageList* l = ListOf(list);
    if (!l)
        return -1;
    auto entries = Split(*l, image, mask, byColor, transparent);
    if (entries.empty())
        return -1;
    const int first = static_cast<int>(l->images.size());
    for (auto& e : entries)
        l->images.push_back(std::move(e));
    return first;
}

} // namespace

int ImageList_Add(HIMAGELIST list, HBITMAP image, HBITMAP mask)
{
    return Append(list, image, mask, false, 0);
}

int ImageList_AddMasked(HIMAGELIST list, HBITMAP image, COLORREF mask)
{
    return Append(list, image, nullptr, true, mask);
}

int ImageList_ReplaceIcon(HIMAGELIST list, int index, HICON icon)
{
    ImageList* l = ListOf(list);
    if (!l || !Get<Icon>(icon))
        return -1;
    ImageList::Entry e = FromIcon(*l, icon);
    if (index == -1) {
        l->images.push_back(std::move(e));
        return static_cast<int>(l->images.size()) - 1;
    }
    if (index < 0 || index >= static_cast<int>(l->images.size()))
        return -1;
    l->images[static_cast<std::size_t>(index)] = std::move(e);
    return index;
}

int ImageList_AddIcon(HIMAGELIST list, HICON icon)
{
    return ImageList_ReplaceIcon(list, -1, icon);
}

BOOL ImageList_Replace(HIMAGELIST list, int index, HBITMAP image, HBITMAP mask)
{
    ImageList* l = ListOf(list);
    if (!l || index < 0 || index >= static_cast<int>(l->images.size()))
        return FALSE;
    auto entries = Split(*l, image, mask, false, 0);
    if (entries.empty())
        return FALSE;
    l->images[static_cast<std::size_t>(index)] = std::move(entries.front());
    return TRUE;
}

BOOL ImageList_Remove(HIMAGELIST list, int index)
{
    ImageList* l = ListOf(list);
    if (!l)
        return FALSE;
    if (index == -1) {
        l->images.clear();
        return TRUE;
    }
    if (index < 0 || index >= static_cast<int>(l->images.size()))
        return FALSE;
    l->images.erase(l->images.begin() + index);
    return TRUE;
}

int ImageList_GetImageCount(HIMAGELIST list)
{
    ImageList* l = ListOf(list);
    return l ? static_cast<int>(l->images.size()) : 0;
}

BOOL ImageList_GetIconSize(HIMAGELIST list, int* cx, int* cy)
{
    ImageList* l = ListOf(list);
    if (!l || !cx || !cy)
        return FALSE;
    *cx = l->cx;
    *cy = l->cy;
    return TRUE;
}

BOOL ImageList_GetImageInfo(HIMAGELIST list, int index, IMAGEINFO* info)
{
    ImageList* l = ListOf(list);
    if (!l || !info || index < 0 || index >= static_cast<int>(l->images.size()))
        return FALSE;
    const auto& e = l->images[static_cast<std::size_t>(index)];
    info->hbmImage = BitmapFromImage(e.color);
    info->hbmMask = l->Masked() ? BitmapFromImage(e.mask, true) : nullptr;
    info->rcImage = RECT{0, 0, l->cx, l->cy};
    return TRUE;
}

COLORREF ImageList_SetBkColor(HIMAGELIST list, COLORREF color)
{
    ImageList* l = ListOf(list);
    return l ? std::exchange(l->bk, color) : CLR_NONE;
}

COLORREF ImageList_GetBkColor(HIMAGELIST list)
{
    ImageList* l = ListOf(list);
    return l ? l->bk : CLR_NONE;
}

BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style)
{
    ImageList* l = ListOf(list);
    Dc* d = Get<Dc>(dc);
    if (!l || !d || index < 0 || index >= static_cast<int>(l->images.size()))
        return FALSE;
    const auto& e = l->images[static_cast<std::size_t>(index)];
    d->EndPainter();
    QImage* target = d->Target();
    if (!target)
        return FALSE;
    const QRect area(d->ToDevice(x, y), QSize(l->cx, l->cy));
    const bool throughMask = l->Masked() && ((style & ILD_TRANSPARENT) || l->bk == CLR_NONE);
    const QRgb bk = ToRgb(l->bk == CLR_DEFAULT ? GetSysColor(COLOR_WINDOW) : l->bk);
    const QRgb highlight = ToRgb(GetSysColor(COLOR_HIGHLIGHT));
    const int blend = (style & ILD_BLEND50) ? 2 : (style & ILD_BLEND25) ? 1 : 0;
    const bool mono = d->Mono();
    ForEachClipped(*d, area, [&](const QRect& r) {
        for (int py = r.top(); py <= r.bottom(); ++py) {
            auto* line = reinterpret_cast<QRgb*>(target->scanLine(py));
            for (int px = r.left(); px <= r.right(); ++px) {
                const int u = px - area.left();
                const int v = py - area.top();
                const bool clear = l->Masked() && MonoBit(e.mask.pixel(u, v));
                QRgb out;
                if (style & ILD_MASK) {
                    out = clear ? 0xFFFFFFFFu : 0xFF000000u;
                } else if (clear) {
                    if (throughMask)
                        continue;
                    out = bk;
                } else {
                    out = e.color.pixel(u, v);
                    if (blend)
                        out = Blend(out, highlight, blend);
                }
                if (mono)
                    out = SnapMono(out);
                line[px] = out | 0xFF000000u;
            }
        }
    });
    return TRUE;
}

HICON ImageList_GetIcon(HIMAGELIST list, int index, UINT)
{
    IMAGEINFO info{};
    ImageList* l = ListOf(list);
    if (!l || !ImageList_GetImageInfo(list, index, &info))
        return nullptr;
    if (!info.hbmMask)
        info.hbmMask = BitmapFromImage(
            [&] {
                QImage m(l->cx, l->cy, QImage::Format_RGB32);
                m.fill(0xFF000000u);
                return m;
            }(),
            true);
    ICONINFO ii{TRUE, 0, 0, info.hbmMask, info.hbmImage};
    HICON icon = CreateIconIndirect(&ii);
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmImage);
    return icon;
}

CImageList::CImageList() = default;

CImageList::~CImageList()
{
    DeleteImageList();
}

BOOL CImageList::Create(int cx, int cy, UINT flags, int initial, int grow)
{
    return Attach(ImageList_Create(cx, cy, flags, initial, grow));
}

BOOL CImageList::Create(UINT bitmapId, int cx, int grow, COLORREF mask)
{
    CBitmap bmp;
    if (!bmp.LoadBitmap(bitmapId))
        return FALSE;
    const CSize size = bmp.GetSize();
    if (!Create(cx, size.cy, ILC_COLORDDB | ILC_MASK, 0, grow))
        return FALSE;
    return ImageList_AddMasked(m_hImageList, bmp, mask) >= 0;
}

BOOL CImageList::Attach(HIMAGELIST list)
{
    if (m_hImageList || !list)
        return FALSE;
    m_hImageList = list;
    return TRUE;
}

HIMAGELIST CImageList::Detach()
{
    return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList()
{
    if (!m_hImageList)
        return FALSE;
    return ImageList_Destroy(Detach());
}

CImageList* CImageList::FromHandle(HIMAGELIST list)
{
    return vx::WrapperOf<CImageList, HIMAGELIST>(list, [](HIMAGELIST h) { return ListOf(h) != nullptr; });
}

int CImageList::Add(CBitmap* image, CBitmap* mask)
{
    return image ? ImageList_Add(m_hImageList, *image, mask ? static_cast<HBITMAP>(*mask) : nullptr) : -1;
}

int CImageList::Add(CBitmap* image, COLORREF mask)
{
    return image ? ImageList_AddMasked(m_hImageList, *image, mask) : -1;
}

int CImageList::Add(HICON icon)
{
    return ImageList_AddIcon(m_hImageList, icon);
}

BOOL CImageList::Replace(int index, CBitmap* image, CBitmap* mask)
{
    return image && ImageList_Replace(m_hImageList, index, *image, mask ? static_cast<HBITMAP>(*mask) : nullptr);
}

int CImageList::Replace(int index, HICON icon)
{
    return ImageList_ReplaceIcon(m_hImageList, index, icon);
}

BOOL CImageList::Remove(int index)
{
    return ImageList_Remove(m_hImageList, index);
}

int CImageList::GetImageCount() const
{
    return ImageList_GetImageCount(m_hImageList);
}

BOOL CImageList::GetImageInfo(int index, IMAGEINFO* info) const
{
    return ImageList_GetImageInfo(m_hImageList, index, info);
}

COLORREF CImageList::SetBkColor(COLORREF color)
{
    return ImageList_SetBkColor(m_hImageList, color);
}

COLORREF CImageList::GetBkColor() const
{
    return ImageList_GetBkColor(m_hImageList);
}

BOOL CImageList::Draw(CDC* dc, int index, POINT point, UINT style)
{
    return dc && ImageList_Draw(m_hImageList, index, dc->m_hDC, point.x, point.y, style);
}

HICON CImageList::ExtractIcon(int index)
{
    return ImageList_GetIcon(m_hImageList, index, 0);
}

CSize CImageList::GetImageSize() const
{
    int cx = 0, cy = 0;
    ImageList_GetIconSize(m_hImageList, &cx, &cy);
    return CSize(cx, cy);
}
