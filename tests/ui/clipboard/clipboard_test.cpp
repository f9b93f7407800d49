#include "uisupport/uitest.h"

#include "platform/framework/codepage.h"
#include "platform/windows/windows.h"
#include "ui/clipboard/clipboard.h"
#include "ui/clipboard/coledataobject.h"
#include "ui/clipboard/coledatasource.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <cstring>
#include <string>

namespace {

// "Żółw\r\nkot" in Windows-1250.
const std::string kPolish = "\xAF\xF3\xB3w\r\nkot";

std::string Read(UINT format)
{
    EXPECT_TRUE(OpenClipboard(nullptr));
    HANDLE h = GetClipboardData(format);
    std::string out;
    if (h) {
        out.assign(static_cast<const char*>(GlobalLock(h)), GlobalSize(h));
        GlobalUnlock(h);
    }
    CloseClipboard();
    return out;
}

void Write(UINT format, const std::string& bytes, HWND owner = nullptr)
{
    ASSERT_TRUE(OpenClipboard(owner));
    ASSERT_TRUE(EmptyClipboard());
    ASSERT_NE(SetClipboardData(format, vx::GlobalCopyOf(bytes.data(), bytes.size())), nullptr);
    ASSERT_TRUE(CloseClipboard());
}

TEST(Clipboard, TextKeepsItsBytesInsideAndCrossesAsDesktopText)
{
    Write(CF_TEXT, kPolish + std::string(1, '\0'));
    EXPECT_EQ(Read(CF_TEXT), kPolish + std::string(1, '\0'));
    // Other programs see Unicode with the desktop's line ends.
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("Żółw\nkot"));
    const std::string wide = Read(CF_UNICODETEXT);
    EXPECT_EQ(wide.size(), (9u + 1u) * 2u);
    EXPECT_EQ(std::memcmp(wide.data(), u"\u017B\u00F3\u0142w\r\nkot", 18), 0);
}

TEST(Clipboard, TextOfAnotherProgramArrivesInTheCodePage)
{
    QGuiApplication::clipboard()->setText(QString::fromUtf8("ąę\tx\ny€\u4E2D"));
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_TEXT));
    // Lines end in "\r\n"; what the code page lacks becomes "?".
    EXPECT_EQ(Read(CF_TEXT), std::string("\xB9\xEA\tx\r\ny\x80?") + std::string(1, '\0'));
    QGuiApplication::clipboard()->setText(QString::fromUtf8("a\r\nb\0c", 6));
    const std::string bytes = Read(CF_TEXT);
    EXPECT_STREQ(bytes.c_str(), "a\r\nb"); // a reader of C strings stops at the zero
}

TEST(Clipboard, UnicodeTextIsWhatOtherProgramsSee)
{
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    SetClipboardData(CF_TEXT, vx::GlobalCopyOf("VXXLIST#1", 10));
    const char16_t wide[] = u"K1\tRelay";
    SetClipboardData(CF_UNICODETEXT, vx::GlobalCopyOf(wide, sizeof wide));
    CloseClipboard();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("K1\tRelay"));
    EXPECT_EQ(Read(CF_TEXT), std::string("VXXLIST#1") + std::string(1, '\0'));
}

TEST(Clipboard, RegisteredFormatsCarryTheirBytes)
{
    const UINT format = RegisterClipboardFormatA("VxBase Test Block");
    EXPECT_GE(format, 0xC000u);
    EXPECT_EQ(format, RegisterWindowMessageA("VxBase Test Block"));
    EXPECT_EQ(RegisterClipboardFormatA("vxbase test block"), format); // names ignore case
    char name[64];
    EXPECT_GT(GetClipboardFormatNameA(format, name, sizeof name), 0);
    EXPECT_STREQ(name, "VxBase Test Block");
    EXPECT_EQ(GetClipboardFormatNameA(CF_TEXT, name, sizeof name), 0);

    const std::string bytes("\x01\x00\xFF#", 4);
    Write(format, bytes);
    EXPECT_TRUE(IsClipboardFormatAvailable(format));
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_TEXT));
    EXPECT_EQ(Read(format), bytes);
    EXPECT_EQ(CountClipboardFormats(), 1);
    EXPECT_EQ(EnumClipboardFormats(0), format);
    EXPECT_EQ(EnumClipboardFormats(format), 0u);
    // Formats that do not travel are refused, and the block stays the caller's.
    ASSERT_TRUE(OpenClipboard(nullptr));
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 4);
    EXPECT_EQ(SetClipboardData(CF_BITMAP, block), nullptr);
    EXPECT_EQ(GlobalSize(block), 4u);
    GlobalFree(block);
    CloseClipboard();
}

TEST(Clipboard, OpeningRulesAndOwner)
{
    CWnd a, b;
    a.CreateEx("a", "ClipA", WS_POPUP, CRect(0, 0, 10, 10));
    b.CreateEx("b", "ClipB", WS_POPUP, CRect(0, 0, 10, 10));
    EXPECT_EQ(SetClipboardData(CF_TEXT, vx::GlobalCopyOf("x", 2)), nullptr); // not open
    EXPECT_FALSE(EmptyClipboard());
    ASSERT_TRUE(OpenClipboard(a.m_hWnd));
    EXPECT_EQ(GetOpenClipboardWindow(), a.m_hWnd);
    EXPECT_FALSE(OpenClipboard(b.m_hWnd));
    EXPECT_TRUE(EmptyClipboard());
    HGLOBAL h = vx::GlobalCopyOf("x", 2);
    EXPECT_EQ(SetClipboardData(CF_TEXT, h), h);
    // While open, the new content is what this process reads.
    HANDLE seen = GetClipboardData(CF_TEXT);
    EXPECT_STREQ(static_cast<const char*>(GlobalLock(seen)), "x");
    GlobalUnlock(seen);
    EXPECT_TRUE(CloseClipboard());
    EXPECT_FALSE(CloseClipboard());
    EXPECT_EQ(GetClipboardOwner(), a.m_hWnd);
    QGuiApplication::clipboard()->setText(QStringLiteral("other"));
    EXPECT_EQ(GetClipboardOwner(), nullptr);
    EXPECT_TRUE(OpenClipboard(b.m_hWnd));
    CloseClipboard();
}

TEST(OleData, SourceAndObjectRoundTrip)
{
    {
        COleDataSource source;
        source.CacheGlobalData(CF_TEXT, vx::GlobalCopyOf("first", 6));
        source.CacheGlobalData(CF_TEXT, vx::GlobalCopyOf(kPolish.c_str(), kPolish.size() + 1)); // replaces
        source.SetClipboard();
    } // the clipboard holds copies: the source may go
    COleDataObject data;
    ASSERT_TRUE(data.AttachClipboard());
    EXPECT_TRUE(data.IsDataAvailable(CF_TEXT));
    EXPECT_FALSE(data.IsDataAvailable(static_cast<CLIPFORMAT>(RegisterClipboardFormatA("absent"))));
    HGLOBAL h = data.GetGlobalData(CF_TEXT);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(std::string(static_cast<const char*>(GlobalLock(h))), kPolish);
    GlobalUnlock(h);
    EXPECT_EQ(GlobalFree(h), nullptr); // the caller's block
    data.BeginEnumFormats();
    FORMATETC f{};
    ASSERT_TRUE(data.GetNextFormat(&f));
    EXPECT_EQ(f.cfFormat, CF_TEXT);

    // A snapshot: later changes of the clipboard do not reach it.
    QGuiApplication::clipboard()->setText(QStringLiteral("later"));
    h = data.GetGlobalData(CF_TEXT);
    EXPECT_EQ(std::string(static_cast<const char*>(GlobalLock(h))), kPolish);
    GlobalUnlock(h);
    GlobalFree(h);

    QGuiApplication::clipboard()->clear();
    COleDataObject empty;
    EXPECT_FALSE(empty.AttachClipboard());
    EXPECT_EQ(empty.GetGlobalData(CF_TEXT), nullptr);
}

} // namespace
