#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

namespace {

using vxtest::Canvas;

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kMagenta = RGB(255, 0, 255);
constexpr COLORREF kGrey = RGB(100, 100, 100);

TEST(BitBlt, OneBitSourceTakesTheDestinationsTextAndBackgroundColours)
{
    const unsigned char bits[2] = {0x40, 0}; // pixel 0 black (0), pixel 1 white (1)
    CBitmap mono;
    ASSERT_TRUE(mono.CreateBitmap(2, 1, 1, 1, bits));
    CDC src;
    src.CreateCompatibleDC(nullptr);
    CBitmap* old = src.SelectObject(&mono);
    Canvas c(2, 1);
    c.dc().SetTextColor(kRed);
    c.dc().SetBkColor(kBlue);
    c.dc().BitBlt(0, 0, 2, 1, &src, 0, 0, SRCCOPY);
    src.SelectObject(old);
    EXPECT_PIXEL(c.Image(), 0, 0, kRed);
    EXPECT_PIXEL(c.Image(), 1, 0, kBlue);
}

TEST(BitBlt, ColourIntoOneBitIsWhiteWhereTheSourceHasItsBackgroundColour)
{
    Canvas c(2, 1);
    c.dc().SetPixel(0, 0, kGreen);
    c.dc().SetBkColor(kGreen);
    CBitmap mono;
    mono.CreateBitmap(2, 1, 1, 1, nullptr);
    CDC maskDc;
    maskDc.CreateCompatibleDC(nullptr);
    CBitmap* old = maskDc.SelectObject(&mono);
    maskDc.BitBlt(0, 0, 2, 1, &c.dc(), 0, 0, SRCCOPY);
    maskDc.SelectObject(old);
    EXPECT_EQ(mono.GetPixel(0, 0), kWhite);
    EXPECT_EQ(mono.GetPixel(1, 0), kBlack);
    BITMAP info{};
    mono.GetBitmap(&info);
    EXPECT_EQ(info.bmBitsPixel, 1);
}

TEST(BitBlt, RasterOperationsCombinePatternSourceAndDestination)
{
    Canvas src(1, 1, RGB(0x0F, 0xF0, 0x55));
    Canvas dst(5, 1, RGB(0x33, 0x33, 0xAA));
    dst.dc().BitBlt(0, 0, 1, 1, &src.dc(), 0, 0, SRCAND);
    dst.dc().BitBlt(1, 0, 1, 1, &src.dc(), 0, 0, SRCPAINT);
    dst.dc().BitBlt(2, 0, 1, 1, &src.dc(), 0, 0, SRCINVERT);
    dst.dc().BitBlt(3, 0, 1, 1, &src.dc(), 0, 0, NOTSRCCOPY);
    CBrush pattern(RGB(0xFF, 0x00, 0x0F));
    dst.dc().SelectObject(&pattern);
    dst.dc().BitBlt(4, 0, 1, 1, &src.dc(), 0, 0, MERGECOPY); // pattern AND source
    dst.dc().SelectStockObject(WHITE_BRUSH);
    const QImage img = dst.Image();
    EXPECT_PIXEL(img, 0, 0, RGB(0x03, 0x30, 0x00));
    EXPECT_PIXEL(img, 1, 0, RGB(0x3F, 0xF3, 0xFF));
    EXPECT_PIXEL(img, 2, 0, RGB(0x3C, 0xC3, 0xFF));
    EXPECT_PIXEL(img, 3, 0, RGB(0xF0, 0x0F, 0xAA));
    EXPECT_PIXEL(img, 4, 0, RGB(0x0F, 0x00, 0x05));
}

// The transparent drawing of a bitmap by a mask, step by step as the
// buttons do it.
TEST(BitBlt, MaskAndPaintDrawOnlyTheOpaquePixels)
{
    Canvas image(3, 1);
    image.dc().SetPixel(0, 0, kRed);
    image.dc().SetPixel(1, 0, kMagenta);
    image.dc().SetPixel(2, 0, kBlue);
    CBitmap mask;
    mask.CreateBitmap(3, 1, 1, 1, nullptr);
    CDC maskDc;
    maskDc.CreateCompatibleDC(nullptr);
    CBitmap* oldMask = maskDc.SelectObject(&mask);
    image.dc().SetBkColor(kMagenta);
    maskDc.BitBlt(0, 0, 3, 1, &image.dc(), 0, 0, SRCCOPY);
    image.dc().SetTextColor(kWhite);
    image.dc().SetBkColor(kBlack);
    image.dc().BitBlt(0, 0, 3, 1, &maskDc, 0, 0, SRCAND);
    EXPECT_PIXEL(image.Image(), 1, 0, kBlack); // the transparent pixel is cleaned

    Canvas dst(3, 1, kGrey);
    dst.dc().SetBkColor(kWhite);
    dst.dc().BitBlt(0, 0, 3, 1, &maskDc, 0, 0, SRCAND);
    dst.dc().BitBlt(0, 0, 3, 1, &image.dc(), 0, 0, SRCPAINT);
    maskDc.SelectObject(oldMask);
    const QImage img = dst.Image();
    EXPECT_PIXEL(img, 0, 0, kRed);
    EXPECT_PIXEL(img, 1, 0, kGrey);
    EXPECT_PIXEL(img, 2, 0, kBlue);
}

TEST(BitBlt, PlainCopyKeepsToTheClipAndTheSourcesEdge)
{
    Canvas src(6, 4, kBlue);
    src.dc().SetPixel(0, 0, kRed);
    src.dc().SetPixel(5, 3, kGreen);
    // Between two images, whole and clipped.
    Canvas dst(8, 6, kWhite);
    dst.dc().BitBlt(1, 1, 6, 4, &src.dc(), 0, 0, SRCCOPY);
    EXPECT_PIXEL(dst.Image(), 1, 1, kRed);
    EXPECT_PIXEL(dst.Image(), 6, 4, kGreen);
    EXPECT_PIXEL(dst.Image(), 0, 0, kWhite);
    EXPECT_PIXEL(dst.Image(), 7, 5, kWhite);
    Canvas clipped(8, 6, kWhite);
    clipped.dc().IntersectClipRect(0, 0, 3, 3);
    clipped.dc().BitBlt(1, 1, 6, 4, &src.dc(), 0, 0, SRCCOPY);
    EXPECT_PIXEL(clipped.Image(), 2, 2, kBlue);
    EXPECT_PIXEL(clipped.Image(), 3, 3, kWhite);
    // A source rectangle beyond its image gives black there.
    Canvas beyond(4, 4, kWhite);
    beyond.dc().BitBlt(0, 0, 4, 4, &src.dc(), 4, 2, SRCCOPY);
    EXPECT_PIXEL(beyond.Image(), 1, 1, kGreen);
    EXPECT_PIXEL(beyond.Image(), 2, 2, kBlack);
    // Within one image the rectangles may overlap.
    Canvas self(6, 1, kWhite);
    for (int x = 0; x < 3; ++x)
        self.dc().SetPixel(x, 0, x == 0 ? kRed : x == 1 ? kGreen : kBlue);
    self.dc().BitBlt(1, 0, 3, 1, &self.dc(), 0, 0, SRCCOPY);
    EXPECT_PIXEL(self.Image(), 1, 0, kRed);
    EXPECT_PIXEL(self.Image(), 2, 0, kGreen);
    EXPECT_PIXEL(self.Image(), 3, 0, kBlue);
}

TEST(StretchBlt, ScalesAndMirrors)
{
    Canvas src(2, 1);
    src.dc().SetPixel(0, 0, kRed);
    src.dc().SetPixel(1, 0, kBlue);
    Canvas dst(8, 1);
    dst.dc().StretchBlt(0, 0, 4, 1, &src.dc(), 0, 0, 2, 1, SRCCOPY);
    dst.dc().StretchBlt(8, 0, -4, 1, &src.dc(), 0, 0, 2, 1, SRCCOPY);
    const QImage img = dst.Image();
    EXPECT_PIXEL(img, 1, 0, kRed);
    EXPECT_PIXEL(img, 2, 0, kBlue);
    EXPECT_PIXEL(img, 4, 0, kBlue);
    EXPECT_PIXEL(img, 7, 0, kRed);
}

TEST(CreateCompatibleBitmap, FreshMemoryDeviceGivesOneBit)
{
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    CBitmap mono;
    ASSERT_TRUE(mono.CreateCompatibleBitmap(&mem, 17, 3));
    BITMAP info{};
    mono.GetBitmap(&info);
    EXPECT_EQ(info.bmBitsPixel, 1);
    EXPECT_EQ(info.bmWidthBytes, 4); // rows of 16-bit words
    Canvas c(1, 1);
    CBitmap color;
    color.CreateCompatibleBitmap(&c.dc(), 4, 4);
    color.GetBitmap(&info);
    EXPECT_EQ(info.bmBitsPixel, 32);
}

TEST(GdiHandles, SelectedObjectsStayAndStaleHandlesFail)
{
    Canvas c(2, 2);
    HPEN pen = CreatePen(PS_SOLID, 1, kRed);
    HGDIOBJ old = SelectObject(c.hdc(), pen);
    EXPECT_FALSE(DeleteObject(pen));
    SelectObject(c.hdc(), old);
    EXPECT_TRUE(DeleteObject(pen));
    EXPECT_FALSE(DeleteObject(pen));
    EXPECT_EQ(SelectObject(c.hdc(), pen), nullptr);
    EXPECT_EQ(GetPixel(reinterpret_cast<HDC>(pen), 0, 0), CLR_INVALID);
    EXPECT_TRUE(DeleteObject(GetStockObject(BLACK_PEN)));
    EXPECT_NE(GetStockObject(BLACK_PEN), nullptr);
    // A bitmap lives in one memory device at a time.
    CDC other;
    other.CreateCompatibleDC(nullptr);
    EXPECT_EQ(other.SelectObject(c.bitmap()), nullptr);
}

TEST(DrawState, DisabledEmbossesAndMonoFillsTheShape)
{
    QImage shape(4, 4, QImage::Format_ARGB32);
    shape.fill(Qt::transparent);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 2; ++x)
            shape.setPixel(x, y, qRgb(10, 20, 30));
    HICON icon = vx::IconFromQImage(shape);
    Canvas c(12, 6, kGrey);
    c.dc().DrawState(CPoint(0, 0), CSize(0, 0), icon, DSS_DISABLED);
    CBrush red(kRed);
    c.dc().DrawState(CPoint(4, 0), CSize(0, 0), icon, DSS_MONO, &red);
    c.dc().DrawState(CPoint(8, 0), CSize(0, 0), icon, DSS_NORMAL);
    const QImage img = c.Image();
    EXPECT_PIXEL(img, 0, 0, GetSysColor(COLOR_3DSHADOW));
    EXPECT_PIXEL(img, 1, 1, GetSysColor(COLOR_3DSHADOW));
    EXPECT_PIXEL(img, 2, 2, GetSysColor(COLOR_3DHILIGHT));
    EXPECT_PIXEL(img, 2, 0, kGrey);
    EXPECT_RECT_COLOR(img, (RECT{4, 0, 6, 2}), kRed);
    EXPECT_PIXEL(img, 6, 0, kGrey);
    EXPECT_PIXEL(img, 8, 0, RGB(10, 20, 30));
    EXPECT_PIXEL(img, 10, 0, kGrey);
    DestroyIcon(icon);
}

TEST(Icons, InfoGivesSizeHotSpotAndMask)
{
    QImage image(6, 4, QImage::Format_ARGB32);
    image.fill(qRgba(0, 0, 255, 255));
    image.setPixel(0, 0, qRgba(0, 0, 0, 0));
    HICON icon = vx::IconFromQImage(image);
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    EXPECT_TRUE(info.fIcon);
    EXPECT_EQ(info.xHotspot, 3u);
    EXPECT_EQ(info.yHotspot, 2u);
    CBitmap mask, color;
    mask.Attach(info.hbmMask);
    color.Attach(info.hbmColor);
    EXPECT_EQ(mask.GetPixel(0, 0), kWhite);
    EXPECT_EQ(mask.GetPixel(1, 0), kBlack);
    EXPECT_EQ(color.GetPixel(0, 0), kBlack);
    EXPECT_EQ(color.GetPixel(1, 0), kBlue);
    HICON copy = CreateIconIndirect(&info);
    Canvas c(6, 4, kRed);
    DrawIconEx(c.hdc(), 0, 0, copy, 0, 0, 0, nullptr, DI_NORMAL);
    EXPECT_PIXEL(c.Image(), 0, 0, kRed);
    EXPECT_PIXEL(c.Image(), 5, 3, kBlue);
    DestroyIcon(copy);
    DestroyIcon(icon);
    EXPECT_FALSE(DestroyIcon(icon));
}

TEST(CreateDIBSection, PalettePixelsAreReadAtEachUse)
{
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colors[2];
    } info{};
    info.header.biSize = sizeof(BITMAPINFOHEADER);
    info.header.biWidth = 2;
    info.header.biHeight = 2; // bottom-up
    info.header.biPlanes = 1;
    info.header.biBitCount = 8;
    info.header.biClrUsed = 2; // the palette holds two entries, not 256
    info.colors[0] = RGBQUAD{0, 0, 255, 0};
    info.colors[1] = RGBQUAD{0, 255, 0, 0};
    void* bits = nullptr;
    HBITMAP dib = CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits, nullptr, 0);
    ASSERT_TRUE(dib && bits);
    auto* row = static_cast<unsigned char*>(bits);
    row[0] = 0; // bottom row
    row[1] = 1;
    row[4] = 1; // top row (rows are 4-byte aligned)
    row[5] = 0;
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    HGDIOBJ old = mem.SelectObject(static_cast<HGDIOBJ>(dib));
    Canvas c(2, 2);
    c.dc().BitBlt(0, 0, 2, 2, &mem, 0, 0, SRCCOPY);
    EXPECT_PIXEL(c.Image(), 0, 0, kGreen);
    EXPECT_PIXEL(c.Image(), 0, 1, kRed);
    row[4] = 0;
    c.dc().BitBlt(0, 0, 2, 2, &mem, 0, 0, SRCCOPY);
    EXPECT_PIXEL(c.Image(), 0, 0, kRed);
    mem.SelectObject(old);
    DeleteObject(dib);
}

TEST(LoadImage, HostImagesAndFilesLoadByNumberAndPath)
{
    QImage red(3, 2, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    vx::SetResourceImage(IMAGE_BITMAP, 60001, red);
    CBitmap bmp;
    ASSERT_TRUE(bmp.LoadBitmap(60001));
    EXPECT_EQ(bmp.GetSize(), CSize(3, 2));
    EXPECT_EQ(bmp.GetPixel(2, 1), kRed);
    vx::SetResourceImage(IMAGE_BITMAP, 60001, QImage());
    CBitmap gone;
    EXPECT_FALSE(gone.LoadBitmap(60001));
    HANDLE scaled = LoadImageA(nullptr, MAKEINTRESOURCE(60002), IMAGE_ICON, 16, 16, 0);
    EXPECT_EQ(scaled, nullptr);
    CBitmap grip;
    ASSERT_TRUE(grip.LoadOEMBitmap(OBM_SIZE));
    EXPECT_EQ(grip.GetSize(), CSize(12, 12));
}

TEST(LoadImage, TheLibrarysOwnImagesLoadByNumber)
{
    CBitmap ok;
    ASSERT_TRUE(ok.LoadBitmap(0x3EA));
    EXPECT_EQ(ok.GetSize(), CSize(16, 16));
    EXPECT_EQ(ok.GetPixel(0, 0), kWhite); // the skin's transparent colour
    // The skin's check boxes are drawn in palette indices on pure red.
    CBitmap radio;
    ASSERT_TRUE(radio.LoadBitmap(0x3EF));
    EXPECT_EQ(radio.GetPixel(0, 0), kRed);
    const COLORREF inside = radio.GetPixel(6, 6);
    EXPECT_EQ(GetRValue(inside), GetGValue(inside));
    for (UINT id = 0x3EA; id <= 0x3FD; ++id) {
        CBitmap any;
        EXPECT_TRUE(any.LoadBitmap(id)) << id;
    }
    HICON icon = LoadIconA(nullptr, MAKEINTRESOURCE(0x3F1));
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(vx::ImageOfIcon(icon).size(), QSize(32, 32));
    EXPECT_EQ(vx::ImageOfIcon(icon, true).pixel(0, 0), 0xFFFFFFFFu); // a transparent corner
    DestroyIcon(icon);
}

} // namespace
