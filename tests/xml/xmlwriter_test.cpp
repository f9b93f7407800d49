#include "xml/xmlwriter.h"
#include "support/tempdir.h"
#include "xmltestutil.h"

#include <gtest/gtest.h>

#include <filesystem>

using xmltest::ReadBytes;
using vxtest::TempDir;

namespace {

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>";

} // namespace

TEST(xmlwriter, WritesMarkupUnescaped)
{
    TempDir dir;
    {
        xmlwriter w(dir.Path("a.xml"));
        w.Createtag("a");
        w.CreateChild("b", "x<y");
        w.CloseLasttag();
    }
    EXPECT_EQ(kDeclaration + "\n<a>\n\t<b>x<y</b>\n</a>", ReadBytes(dir.Path("a.xml")));
}

TEST(xmlwriter, WritesAttributesInReverseOrder)
{
    TempDir dir;
    {
        xmlwriter w(dir.Path("t.xml"));
        w.AddAtributes("a", "1");
        w.AddAtributes("b", "2");
        w.Createtag("t");
        // The attributes went with the tag; the child has none of them.
        w.AddAtributes("c", "3&4");
        w.CreateChild("u", "");
        w.CreateChild("v", "w");
        w.CloseAlltags();
    }
    EXPECT_EQ(kDeclaration + "\n<t b=\"2\" a=\"1\">\n\t<u c=\"3&4\"></u>\n\t<v>w</v>\n</t>", ReadBytes(dir.Path("t.xml")));
}

TEST(xmlwriter, WritesTheGoldenDocument)
{
    TempDir dir;
    {
        xmlwriter w(dir.Path("golden.xml"));
        w.AddComment(" exported by VxBase ");
        w.AddAtributes("name", "Anlage 1");
        w.AddAtributes("version", "5.5");
        w.Createtag("project");
        w.AddAtributes("nr", "12");
        w.Createtag("sheet");
        w.CreateChild("title", "Stromlaufplan \xC3\xA4");
        w.AddComment("no symbols yet");
        w.Createtag("symbols");
        w.AddAtributes("id", "K1");
        w.CreateChild("symbol", "Sch\xC3\xBCtz");
        w.CloseLasttag();
        w.CloseLasttag();
        w.AddAtributes("nr", "13");
        w.Createtag("sheet");
        w.CloseAlltags();
    }
    EXPECT_EQ(xmltest::Golden("xmlwriter.xml"), ReadBytes(dir.Path("golden.xml")));
}

TEST(xmlwriter, OverwritesAnExistingFile)
{
    TempDir dir;
    {
        std::ofstream(dir.Path("o.xml")) << "an older and much longer content";
    }
    {
        xmlwriter w(dir.Path("o.xml"));
        w.CreateChild("x", "1");
    }
    EXPECT_EQ(kDeclaration + "\n<x>1</x>", ReadBytes(dir.Path("o.xml")));
}

TEST(xmlwriter, LeavesTagsOpenThatTheCallerLeftOpen)
{
    TempDir dir;
    {
        xmlwriter w(dir.Path("open.xml"));
        w.Createtag("a");
        w.Createtag("b");
        w.CloseLasttag();
    }
    EXPECT_EQ(kDeclaration + "\n<a>\n\t<b>\n\t</b>", ReadBytes(dir.Path("open.xml")));
}

TEST(xmlwriter, ClosingWithNoOpenTagWritesNothing)
{
    TempDir dir;
    {
        xmlwriter w(dir.Path("c.xml"));
        w.CloseLasttag();
        w.CloseAlltags();
        w.CreateChild("a", "1");
    }
    EXPECT_EQ(kDeclaration + "\n<a>1</a>", ReadBytes(dir.Path("c.xml")));
}

TEST(xmlwriter, FileThatCannotBeOpenedGetsNothing)
{
    TempDir dir;
    std::string path = dir.Path("missing/x.xml");
    testing::internal::CaptureStdout();
    {
        xmlwriter w(path);
        EXPECT_FALSE(w.IsOpen());
        w.AddAtributes("a", "1");
        w.Createtag("a");
        w.CreateChild("b", "c");
        w.AddComment("d");
        w.CloseAlltags();
        xmlwriter copy(w);
        copy.CloseLasttag();
    }
    EXPECT_EQ("Unable to open output file\n", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(xmlwriter, CopiesWriteIntoTheSameFile)
{
    TempDir dir;
    {
        xmlwriter w(dir.Path("copy.xml"));
        EXPECT_TRUE(w.IsOpen());
        w.Createtag("a");
        {
            xmlwriter copy(w);
            copy.CreateChild("b", "1");
            copy.CloseLasttag();
        }
        // The copy is gone, the file is still open, and the original's
        // own tag is still open.
        w.CreateChild("c", "2");
        xmlwriter other(dir.Path("other.xml"));
        other = w;
        other.CloseAlltags();
    }
    EXPECT_EQ(kDeclaration + "\n<a>\n\t<b>1</b>\n</a>\n\t<c>2</c>\n</a>", ReadBytes(dir.Path("copy.xml")));
    EXPECT_EQ(kDeclaration, ReadBytes(dir.Path("other.xml")));
}
