// Shared-image devices: the block's wire form, two devices over one image
// (as the sending and the receiving program hold them), and blocks that
// hold no image.
#include "uisupport/uitest.h"

#include "platform/ipc/filemapping.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/gdi/sharedimagedc.h"
#include "ui/windows/qtinterop.h"

#include <unistd.h>

#include <cstring>

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

std::uint32_t Word(const void* view, int offset)
{
    std::uint32_t v;
    std::memcpy(&v, static_cast<const char*>(view) + offset, sizeof v);
    return v;
}

// A second handle for the block of a device, as the bus gives one to the
// receiving process: a descriptor of the same block, taken over.
HANDLE SecondHandle(HDC dc)
{
    return vx::AdoptFileMappingDescriptor(dup(vx::FileMappingDescriptor(vx::SharedImageBlock(dc))));
}

// A block of `size` bytes holding the header words.
HANDLE BlockWith(std::size_t size, std::uint32_t magic, int width, int height, int stride)
{
    HANDLE block = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(size),
                                      nullptr);
    void* view = MapViewOfFile(block, FILE_MAP_WRITE, 0, 0, 0);
    const std::int32_t words[4] = {static_cast<std::int32_t>(magic), width, height, stride};
    std::memcpy(view, words, std::min(size, sizeof words));
    UnmapViewOfFile(view);
    return block;
}

TEST(SharedImageDC, BlockHoldsHeaderAndPixelsInItsWireForm)
{
    HDC dc = vx::CreateSharedImageDC(3, 2);
    ASSERT_NE(dc, nullptr);
    EXPECT_TRUE(vx::IsSharedImageDC(dc));
    HANDLE block = vx::SharedImageBlock(dc);
    ASSERT_EQ(vx::FileMappingSize(block), 16u + 3 * 4 * 2);
    CDC* cdc = CDC::FromHandle(dc);
    cdc->FillSolidRect(1, 0, 1, 1, RGB(0x12, 0x34, 0x56));
    cdc->SetPixel(2, 1, kRed);

    const void* view = MapViewOfFile(block, FILE_MAP_READ, 0, 0, 0);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(Word(view, 0), vx::kSharedImageMagic);
    EXPECT_EQ(Word(view, 4), 3u);
    EXPECT_EQ(Word(view, 8), 2u);
    EXPECT_EQ(Word(view, 12), 12u);
    EXPECT_EQ(Word(view, 16), 0xFFFFFFFFu);     // (0, 0): a new image is white
    EXPECT_EQ(Word(view, 20), 0xFF123456u);     // (1, 0): blue, green, red, 0xFF
    EXPECT_EQ(Word(view, 16 + 12 + 8), 0xFFFF0000u); // (2, 1)
    UnmapViewOfFile(view);
    EXPECT_TRUE(DeleteDC(dc));
    EXPECT_FALSE(vx::IsSharedImageDC(dc));

    EXPECT_EQ(vx::CreateSharedImageDC(0, 10), nullptr);
    EXPECT_EQ(vx::CreateSharedImageDC(10, vx::kSharedImageMaxSide + 1), nullptr);
    HDC memory = CreateCompatibleDC(nullptr);
    EXPECT_FALSE(vx::IsSharedImageDC(memory));
    EXPECT_EQ(vx::SharedImageBlock(memory), nullptr);
    DeleteDC(memory);
}

TEST(SharedImageDC, TwoDevicesOverOneImageSeeEachOthersDrawing)
{
    const std::size_t held = vx::OpenFileMappingCount();
    HDC mine = vx::CreateSharedImageDC(40, 30);
    ASSERT_NE(mine, nullptr);
    HDC theirs = vx::OpenSharedImageDC(SecondHandle(mine));
    ASSERT_NE(theirs, nullptr);
    EXPECT_EQ(vx::OpenFileMappingCount(), held + 1); // one block

    // The other side draws with the usual calls; this side sees it at once.
    CDC* other = CDC::FromHandle(theirs);
    CRect r(5, 5, 20, 15);
    other->FillSolidRect(&r, kBlue);
    CPen pen(PS_SOLID, 1, kRed);
    CPen* old = other->SelectObject(&pen);
    other->MoveTo(0, 29);
    other->LineTo(40, 29);
    other->SelectObject(old);
    EXPECT_EQ(GetPixel(mine, 10, 10), kBlue);
    EXPECT_EQ(GetPixel(mine, 4, 4), kWhite);
    EXPECT_EQ(GetPixel(mine, 39, 29), kRed);

    // Copied out as the preview does it.
    vxtest::Canvas copy(40, 30);
    copy.dc().BitBlt(0, 0, 40, 30, CDC::FromHandle(mine), 0, 0, SRCCOPY);
    EXPECT_RECT_COLOR(copy.Image(), r, kBlue);

    // Each side lets go of its own; the image lives while one holds it.
    EXPECT_TRUE(DeleteDC(mine));
    EXPECT_EQ(GetPixel(theirs, 10, 10), kBlue);
    EXPECT_EQ(vx::OpenFileMappingCount(), held + 1);
    EXPECT_TRUE(DeleteDC(theirs));
    EXPECT_EQ(vx::OpenFileMappingCount(), held);
}

TEST(SharedImageDC, BlockWithoutAnImageIsRefused)
{
    const std::size_t held = vx::OpenFileMappingCount();
    struct Case {
        const char* what;
        std::size_t size;
        std::uint32_t magic;
        int width, height, stride;
    };
    const Case cases[] = {
        {"wrong magic", 16 + 16, 0x12345678, 2, 2, 8},
        {"no width", 16 + 16, vx::kSharedImageMagic, 0, 2, 8},
        {"negative height", 16 + 16, vx::kSharedImageMagic, 2, -2, 8},
        {"rows narrower than the width", 16 + 16, vx::kSharedImageMagic, 4, 2, 8},
        {"stride not a multiple of 4", 16 + 32, vx::kSharedImageMagic, 2, 2, 10},
        {"pixels beyond the block", 16 + 15, vx::kSharedImageMagic, 2, 2, 8},
        {"too wide", 1 << 20, vx::kSharedImageMagic, vx::kSharedImageMaxSide + 1, 1,
         (vx::kSharedImageMaxSide + 1) * 4},
        {"huge rows that wrap", 1 << 16, vx::kSharedImageMagic, 16, 16384, 0x7FFFFFFC},
        {"shorter than a header", 8, vx::kSharedImageMagic, 2, 2, 8},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(vx::OpenSharedImageDC(BlockWith(c.size, c.magic, c.width, c.height, c.stride)), nullptr);
    }
    // Each refused block was let go.
    EXPECT_EQ(vx::OpenFileMappingCount(), held);
    HDC fits = vx::OpenSharedImageDC(BlockWith(16 + 16, vx::kSharedImageMagic, 2, 2, 8));
    ASSERT_NE(fits, nullptr);
    EXPECT_TRUE(DeleteDC(fits));
    EXPECT_EQ(vx::OpenSharedImageDC(nullptr), nullptr);
}

} // namespace
