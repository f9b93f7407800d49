#include "platform/framework/codepage.h"

#include "support/printers.h"

#include <gtest/gtest.h>

TEST(CodePage, ConvertsBetweenWindows1250AndUtf8)
{
    ASSERT_EQ(vx::CodePage(), "WINDOWS-1250");
    EXPECT_EQ(vx::ToUtf8("B\xB3\xB9" "d"), "B\xC5\x82\xC4\x85" "d"); // "Błąd"
    EXPECT_EQ(vx::FromUtf8("Wartość"), "Warto\x9C\xE6");
    EXPECT_EQ(vx::FromUtf8("日"), "?") << "characters the code page lacks";
    EXPECT_EQ(vx::FromUtf8("a\xFF" "b"), "a?b") << "invalid UTF-8";
    EXPECT_EQ(vx::ToUtf8("plain"), "plain");
    EXPECT_EQ(vx::FromUtf16(u"\u00C4x"), "\xC4x");
}

TEST(CodePage, HostMayChooseAnotherCodePage)
{
    EXPECT_FALSE(vx::SetCodePage("NO-SUCH-CODEPAGE"));
    EXPECT_EQ(vx::CodePage(), "WINDOWS-1250");
    ASSERT_TRUE(vx::SetCodePage("WINDOWS-1252"));
    EXPECT_EQ(vx::ToUtf8("\xE9"), "\xC3\xA9"); // é
    EXPECT_EQ(vx::FromUtf8("ł"), "?");
    ASSERT_TRUE(vx::SetCodePage("WINDOWS-1250"));
    EXPECT_EQ(vx::FromUtf8("ł"), "\xB3");
}
