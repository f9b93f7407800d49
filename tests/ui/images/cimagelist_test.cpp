#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"
#include "ui/images/cimagelist.h"
#include "ui/windows/qtinterop.h"

namespace {

using vxtest::Canvas;

constexpr COLORREF kMagenta = RGB(255, 0, 255);
constexpr COLORREF kGrey = RGB(90, 90, 90);

} // namespace

TEST(CImageList, SplitsAStripAndDrawsThroughTheMask)
{
    Canvas strip(8, 2, RGB(255, 0, 0));
    strip.dc().FillSolidRect(4, 0, 4, 2, RGB(0, 0, 255));
    strip.dc().SetPixel(0, 0, kMagenta);
    CBitmap bmp;
    bmp.Attach(vx::BitmapFromQImage(strip.Image()));
    CImageList list;
    ASSERT_TRUE(list.Create(4, 2, ILC_COLOR24 | ILC_MASK, 0, 4));
    EXPECT_EQ(list.Add(&bmp, kMagenta), 0);
    EXPECT_EQ(list.GetImageCount(), 2);
    EXPECT_EQ(list.GetImageSize(), CSize(4, 2));
    Canvas c(10, 2, kGrey);
    list.Draw(&c.dc(), 0, CPoint(0, 0), ILD_TRANSPARENT);
    list.Draw(&c.dc(), 1, CPoint(4, 0), ILD_NORMAL); // no background colour: through the mask too
    list.SetBkColor(RGB(0, 255, 0));
    list.Draw(&c.dc(), 0, CPoint(0, 0), ILD_NORMAL);
    QImage img = c.Image();
    EXPECT_PIXEL(img, 0, 0, RGB(0, 255, 0)); // the masked pixel in the background colour
    EXPECT_PIXEL(img, 1, 0, RGB(255, 0, 0));
    EXPECT_PIXEL(img, 4, 0, RGB(0, 0, 255));
    EXPECT_PIXEL(img, 8, 0, kGrey);
    list.Draw(&c.dc(), 0, CPoint(0, 0), ILD_MASK);
    img = c.Image();
    EXPECT_PIXEL(img, 0, 0, RGB(255, 255, 255));
    EXPECT_PIXEL(img, 1, 0, RGB(0, 0, 0));
    list.Draw(&c.dc(), 1, CPoint(4, 0), ILD_TRANSPARENT | ILD_BLEND50);
    const COLORREF hl = GetSysColor(COLOR_HIGHLIGHT);
    EXPECT_PIXEL(c.Image(), 5, 0, RGB(GetRValue(hl) / 2, GetGValue(hl) / 2, (255 + GetBValue(hl)) / 2));

    HICON icon = list.ExtractIcon(0);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(vx::ImageOfIcon(icon, true).pixel(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(list.Add(icon), 2);
    DestroyIcon(icon);
    EXPECT_TRUE(list.Remove(0));
    EXPECT_EQ(list.GetImageCount(), 2);
    EXPECT_FALSE(list.Remove(5));
    EXPECT_TRUE(list.Remove(-1));
    EXPECT_EQ(list.GetImageCount(), 0);
}
