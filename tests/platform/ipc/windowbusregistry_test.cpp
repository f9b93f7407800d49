// The registry files of the window bus: what one process writes, every
// other reads back, whatever its windows are called; and text that is no
// registry, or a broken line of one, is never taken for a window.
#include "platform/ipc/windowbus_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

using vx::detail::FormatRegistry;
using vx::detail::ParseRegistry;
using vx::detail::Registry;

namespace {

HWND Handle(std::uintptr_t value)
{
    return reinterpret_cast<HWND>(value);
}

} // namespace

TEST(WindowBusRegistry, TitlesAndClassesComeBackByteForByte)
{
    Registry written;
    written.startTime = 123456789012LL;
    written.windows = {
        {Handle(0x7FFF00000001ULL), "AfxMDIFrame42", "VEXAL 5.5 Instalacja"},
        {Handle(0xFFFFFFFFFFFFFFFFULL), "a\tb", "line\nbreak\r\\n"},
        {Handle(0x12), "", "\\"},
        {Handle(0x13), "Pl\xE4ne", "\\t\t\\\\"},
    };
    Registry read;
    ASSERT_TRUE(ParseRegistry(FormatRegistry(written), read));
    EXPECT_EQ(read.startTime, written.startTime);
    ASSERT_EQ(read.windows.size(), written.windows.size());
    for (std::size_t i = 0; i < read.windows.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(read.windows[i].hwnd, written.windows[i].hwnd);
        EXPECT_EQ(read.windows[i].className, written.windows[i].className);
        EXPECT_EQ(read.windows[i].title, written.windows[i].title);
    }
    // One line per window, whatever its texts hold.
    const std::string text = FormatRegistry(written);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 + 4);

    Registry none;
    none.startTime = 5;
    ASSERT_TRUE(ParseRegistry(FormatRegistry(none), read));
    EXPECT_EQ(read.startTime, 5);
    EXPECT_TRUE(read.windows.empty());
}

TEST(WindowBusRegistry, RefusesOtherTextAndSkipsBrokenLines)
{
    Registry read;
    for (const char* text : {"", "vxbus 2\nstart 1\n", "start 1\nvxbus 1\n", "vxbus 1\n", "vxbus 1\nbegin 1\n",
                             "VXBUS 1\nstart 1\n"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(ParseRegistry(text, read));
    }
    ASSERT_TRUE(ParseRegistry("vxbus 1\nstart 77\n"
                              "1f\tClass\tTitle\n"
                              "20\tonly a class\n"
                              "0\tnull\thandle\n"
                              "\n"
                              "zz\tno\tnumber\n"
                              "21\tlast\twithout line end",
                              read));
    EXPECT_EQ(read.startTime, 77);
    ASSERT_EQ(read.windows.size(), 2u);
    EXPECT_EQ(read.windows[0].hwnd, Handle(0x1f));
    EXPECT_EQ(read.windows[0].title, "Title");
    EXPECT_EQ(read.windows[1].hwnd, Handle(0x21));
    EXPECT_EQ(read.windows[1].title, "without line end");

    // A file read again replaces what an earlier read found.
    ASSERT_TRUE(ParseRegistry("vxbus 1\nstart 78\n", read));
    EXPECT_TRUE(read.windows.empty());
}
