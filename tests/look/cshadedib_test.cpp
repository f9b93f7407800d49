#include "look/cshadedib.h"

#include "uisupport/uitest.h"

namespace {

TEST(CShadeDib, RowSizeAndPaletteFollowTheDepth)
{
    struct Case {
        WORD bits;
        long lineWidth;
        WORD colors;
    };
    for (const Case& c : {Case{1, 4, 2}, Case{4, 8, 16}, Case{8, 12, 256}, Case{24, 32, 0}, Case{32, 40, 0}}) {
        SCOPED_TRACE(c.bits);
        CShadeDib dib;
        ASSERT_TRUE(dib.Create(10, 3, c.bits));
        EXPECT_EQ(dib.GetLineWidth(), c.lineWidth);
        EXPECT_EQ(dib.GetNumColors(), c.colors);
    }
    CShadeDib bad;
    EXPECT_FALSE(bad.Create(10, 3, 7));
    EXPECT_FALSE(bad.Create(0, 3, 8));
    EXPECT_FALSE(bad.IsValid());
}

TEST(CShadeDib, PixelRowsCountFromTheTopAndDrawInPaletteColours)
{
    CShadeDib dib;
    ASSERT_TRUE(dib.Create(3, 2, 8));
    dib.SetPaletteIndex(1, 255, 0, 0);
    dib.SetPaletteIndex(2, 0, 0, 255);
    dib.SetPixelIndex(0, 0, 1);
    dib.SetPixelIndex(2, 1, 2);
    dib.SetPixelIndex(5, 5, 1); // outside: nothing
    // Stored bottom-up: the top row is the last in memory.
    EXPECT_EQ(dib.GetBits()[dib.GetLineWidth()], 1);
    EXPECT_EQ(dib.GetBits()[2], 2);
    vxtest::Canvas c(5, 4);
    dib.Draw(c.hdc(), 1, 1);
    const QImage img = c.Image();
    EXPECT_PIXEL(img, 1, 1, RGB(255, 0, 0));
    EXPECT_PIXEL(img, 3, 2, RGB(0, 0, 255));
    EXPECT_PIXEL(img, 2, 1, RGB(0, 0, 0)); // index 0, palette still black
    EXPECT_PIXEL(img, 0, 0, RGB(255, 255, 255));
    // The section made at the first draw is kept; new pixels are copied in.
    dib.SetPixelIndex(1, 0, 2);
    dib.Draw(c.hdc(), 1, 1);
    EXPECT_PIXEL(c.Image(), 2, 1, RGB(0, 0, 255));
}

TEST(CShadeDib, BlendPaletteMixesEachEntryAndCapsThePercent)
{
    CShadeDib dib;
    dib.Create(1, 1, 8);
    dib.SetPaletteIndex(7, 100, 50, 0);
    dib.BlendPalette(RGB(200, 250, 255), 30);
    EXPECT_EQ(dib.GetPaletteIndex(7), RGB(130, 110, 76));
    dib.BlendPalette(RGB(9, 8, 7), 150);
    EXPECT_EQ(dib.GetPaletteIndex(7), RGB(9, 8, 7));
    EXPECT_EQ(dib.GetPaletteIndex(0), RGB(9, 8, 7));
}

TEST(CShadeDib, CloneCopiesAndEmptyBitmapsDoNothing)
{
    CShadeDib source;
    source.Create(4, 4, 8);
    source.SetPaletteIndex(3, 1, 2, 3);
    source.SetBits(3);
    CShadeDib copy;
    ASSERT_TRUE(copy.Clone(&source));
    EXPECT_EQ(copy.GetPixelIndex(3, 3), 3);
    EXPECT_EQ(copy.GetPaletteIndex(3), RGB(1, 2, 3));
    source.SetPixelIndex(0, 0, 9);
    EXPECT_EQ(copy.GetPixelIndex(0, 0), 3);

    CShadeDib empty;
    EXPECT_FALSE(copy.Clone(&empty));
    empty.SetPixelIndex(0, 0, 1);
    empty.BlendPalette(RGB(1, 1, 1), 50);
    vxtest::Canvas c(2, 2);
    const QImage before = c.Image();
    empty.Draw(c.hdc(), 0, 0);
    EXPECT_EQ(c.Image(), before);
    copy.Clear();
    EXPECT_FALSE(copy.IsValid());
    EXPECT_EQ(copy.GetBits(), nullptr);
}

} // namespace
