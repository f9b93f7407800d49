#include "platform/framework/globalmemory.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(GlobalMemory, BlocksKeepTheirBytesUntilFreed)
{
    HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 8);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(GlobalSize(h), 8u);
    auto* p = static_cast<char*>(GlobalLock(h));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::memcmp(p, "\0\0\0\0\0\0\0\0", 8), 0);
    std::memcpy(p, "ABCDEFG", 8);
    EXPECT_FALSE(GlobalUnlock(h)); // no lock left
    EXPECT_FALSE(GlobalUnlock(h)); // and none to take

    ASSERT_EQ(GlobalReAlloc(h, 3, 0), h);
    EXPECT_EQ(GlobalSize(h), 3u);
    EXPECT_EQ(std::memcmp(GlobalLock(h), "ABC", 3), 0);
    GlobalUnlock(h);
    ASSERT_EQ(GlobalReAlloc(h, 6, GMEM_ZEROINIT), h);
    EXPECT_EQ(std::memcmp(GlobalLock(h), "ABC", 3), 0);
    GlobalUnlock(h);

    EXPECT_EQ(GlobalFree(h), nullptr);
    // A freed handle is dead for every call, and another free says so.
    EXPECT_EQ(GlobalLock(h), nullptr);
    EXPECT_EQ(GlobalSize(h), 0u);
    EXPECT_EQ(GlobalReAlloc(h, 4, 0), nullptr);
    EXPECT_EQ(GlobalFree(h), h);
    EXPECT_EQ(GlobalLock(reinterpret_cast<HGLOBAL>(0x7)), nullptr);

    // A new block never takes the handle of a freed one.
    HGLOBAL again = GlobalAlloc(GMEM_FIXED, 0);
    ASSERT_NE(again, nullptr);
    EXPECT_NE(again, h);
    EXPECT_NE(GlobalLock(again), nullptr);
    GlobalUnlock(again);
    GlobalFree(again);

    HGLOBAL copy = vx::GlobalCopyOf("xyz", 4);
    EXPECT_STREQ(static_cast<const char*>(GlobalLock(copy)), "xyz");
    GlobalUnlock(copy);
    GlobalFree(copy);
}

} // namespace
