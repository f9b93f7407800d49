// Images by number and from files: the library's own, those a host puts in
// their place, bitmaps, icons and cursors.
#include "uisupport/uitest.h"

#include "platform/windows/sysmetrics.h"
#include "ui/images/cbitmap.h"
#include "ui/windows/qtinterop.h"

#include <QTemporaryDir>

#include <string>

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// A 3 x 2 image: red with a transparent pixel at (0, 0) and a blue one at
// (2, 1).
QImage Sample()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(QColor(255, 0, 0));
    image.setPixel(0, 0, qRgba(0, 255, 0, 0));
    image.setPixel(2, 1, qRgb(0, 0, 255));
    return image;
}

QSize SizeOf(HBITMAP bitmap)
{
    return vx::ImageOfBitmap(bitmap).size();
}

} // namespace

TEST(ResourceImages, TheLibrarysOwnOrAHostsReplacement)
{
    HBITMAP own = LoadBitmapA(nullptr, MAKEINTRESOURCE(0x3EA));
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(SizeOf(own), QSize(16, 16));
    DeleteObject(own);
    EXPECT_EQ(LoadBitmapA(nullptr, MAKEINTRESOURCE(0x7777)), nullptr) << "no image of that number";

    vx::SetResourceImage(IMAGE_BITMAP, 0x3EA, Sample());
    HBITMAP replaced = LoadBitmapA(nullptr, MAKEINTRESOURCE(0x3EA));
    const QImage pixels = vx::ImageOfBitmap(replaced);
    EXPECT_EQ(pixels.size(), QSize(3, 2));
    EXPECT_PIXEL(pixels, 0, 0, RGB(255, 255, 255)) << "a bitmap shows transparent pixels white";
    EXPECT_PIXEL(pixels, 2, 1, kBlue);
    DeleteObject(replaced);
    // The replacement is for bitmaps only, and goes again when removed.
    HICON icon = LoadIconA(nullptr, MAKEINTRESOURCE(0x3EA));
    EXPECT_EQ(icon, nullptr);
    vx::SetResourceImage(IMAGE_BITMAP, 0x3EA, QImage());
    own = LoadBitmapA(nullptr, MAKEINTRESOURCE(0x3EA));
    EXPECT_EQ(SizeOf(own), QSize(16, 16));
    DeleteObject(own);
}

TEST(ResourceImages, FilesByTheirCodePageNameResizedAndKeyed)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    // "Pläne.png" on disk; the library names it in the code page.
    ASSERT_TRUE(Sample().save(dir.path() + QString::fromUtf8("/Pl\xC3\xA4ne.png")));
    const std::string name = dir.path().toStdString() + "/Pl\xE4ne.png";

    HBITMAP bitmap = static_cast<HBITMAP>(LoadImageA(nullptr, name.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(SizeOf(bitmap), QSize(3, 2));
    DeleteObject(bitmap);
    bitmap = static_cast<HBITMAP>(LoadImageA(nullptr, name.c_str(), IMAGE_BITMAP, 6, 0, LR_LOADFROMFILE));
    EXPECT_EQ(SizeOf(bitmap), QSize(6, 2)) << "a zero size keeps the image's";
    DeleteObject(bitmap);

    // LR_LOADTRANSPARENT: the colour of the first pixel becomes the window's.
    bitmap = static_cast<HBITMAP>(
        LoadImageA(nullptr, name.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_LOADTRANSPARENT));
    const QImage keyed = vx::ImageOfBitmap(bitmap);
    EXPECT_PIXEL(keyed, 0, 0, GetSysColor(COLOR_WINDOW));
    EXPECT_PIXEL(keyed, 1, 0, kRed);
    DeleteObject(bitmap);

    // An icon keeps transparency in its mask; the default size is the system's.
    HICON icon = static_cast<HICON>(LoadImageA(nullptr, name.c_str(), IMAGE_ICON, 0, 0, LR_LOADFROMFILE));
    ASSERT_NE(icon, nullptr);
    EXPECT_PIXEL(vx::ImageOfIcon(icon, true), 0, 0, RGB(255, 255, 255));
    EXPECT_PIXEL(vx::ImageOfIcon(icon, true), 1, 0, RGB(0, 0, 0));
    EXPECT_PIXEL(vx::ImageOfIcon(icon), 0, 0, RGB(0, 0, 0));
    EXPECT_PIXEL(vx::ImageOfIcon(icon), 2, 1, kBlue);
    DestroyIcon(icon);
    icon = static_cast<HICON>(
        LoadImageA(nullptr, name.c_str(), IMAGE_ICON, 0, 0, LR_LOADFROMFILE | LR_DEFAULTSIZE));
    EXPECT_EQ(vx::ImageOfIcon(icon).size(), QSize(GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)));
    DestroyIcon(icon);

    EXPECT_EQ(LoadImageA(nullptr, (name + ".missing").c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE), nullptr);
    EXPECT_EQ(LoadImageA(nullptr, MAKEINTRESOURCE(0x3EA), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE), nullptr);
    EXPECT_EQ(LoadImageA(nullptr, nullptr, IMAGE_BITMAP, 0, 0, 0), nullptr);
}

// An icon taken apart and put together again is the same icon; copies are
// icons of their own.
TEST(Icons, InfoRoundTripCopiesAndDestruction)
{
    HICON icon = vx::IconFromQImage(Sample());
    ASSERT_NE(icon, nullptr);
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    EXPECT_TRUE(info.fIcon);
    HICON again = CreateIconIndirect(&info);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(vx::ImageOfIcon(again), vx::ImageOfIcon(icon));
    EXPECT_EQ(vx::ImageOfIcon(again, true), vx::ImageOfIcon(icon, true));
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);

    HICON copy = CopyIcon(icon);
    EXPECT_TRUE(DestroyIcon(icon));
    EXPECT_FALSE(DestroyIcon(icon)) << "destroyed once";
    EXPECT_FALSE(GetIconInfo(icon, &info));
    EXPECT_EQ(vx::ImageOfIcon(copy), vx::ImageOfIcon(again));
    EXPECT_TRUE(DestroyIcon(copy));
    EXPECT_TRUE(DestroyIcon(again));
    EXPECT_EQ(CopyIcon(icon), nullptr);
}

// System cursors are shared and outlive a destroy; the current cursor is
// forgotten when it goes.
TEST(Icons, SystemCursorsAreSharedAndTheCurrentOneForgotten)
{
    HCURSOR arrow = LoadCursorA(nullptr, IDC_ARROW);
    ASSERT_NE(arrow, nullptr);
    EXPECT_EQ(LoadCursorA(nullptr, IDC_ARROW), arrow);
    EXPECT_NE(LoadCursorA(nullptr, IDC_WAIT), arrow);
    EXPECT_TRUE(DestroyCursor(arrow));
    EXPECT_EQ(LoadCursorA(nullptr, IDC_ARROW), arrow) << "still there";

    HCURSOR own = static_cast<HCURSOR>(vx::IconFromQImage(Sample()));
    const HCURSOR before = SetCursor(own);
    EXPECT_EQ(GetCursor(), own);
    DestroyCursor(own);
    EXPECT_EQ(GetCursor(), nullptr);
    SetCursor(before);
}
