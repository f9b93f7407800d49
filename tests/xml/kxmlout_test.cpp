#include "xml/kxmlout.h"
#include "platform/files/hostpath.h"
#include "support/tempdir.h"
#include "xmltestutil.h"

#include <gtest/gtest.h>

#include <filesystem>

using xmltest::ReadBytes;
using vxtest::TempDir;

namespace {

const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";

} // namespace

TEST(KXmlOut, WritesTheTreeInIso88591WithEscapedText)
{
    TempDir dir;
    KXmlOut out;
    out.SetPath(dir.Path().c_str(), "/projekt");
    ASSERT_EQ(1, out.Open("Projekt", nullptr, 1));
    out.GetLast()->SetAttribute("Version", "5.5");
    TiXmlElement* sheet = out.Begin("Blatt");
    sheet->SetAttribute("Nr", 12);
    sheet->SetAttribute("Titel", "A & B <\"Haupt\">");
    out.Begin("Gr\xF6\xDF" "e")->InsertEndChild(TiXmlText("10 < 20 & \xE4\xF6\xFC"));
    EXPECT_EQ(1, out.End());
    out.Begin(7);
    out.Begin(-3);
    out.End();
    out.End();
    out.End();
    out.Begin("Leer");
    out.End();
    EXPECT_EQ(1, out.Save());

    EXPECT_EQ(xmltest::Golden("kxmlout.xml"), ReadBytes(dir.Path("projekt.XML")));
}

TEST(KXmlOut, AppendsXmlSuffixEvenAfterAnExtension)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir.Path("a.xml")).c_str(), 1));
    EXPECT_EQ(1, out.Save());
    EXPECT_TRUE(std::filesystem::exists(dir.Path("a.xml.XML")));
    EXPECT_FALSE(std::filesystem::exists(dir.Path("a.xml")));
    EXPECT_EQ(std::string(kDeclaration) + "<R />\n", ReadBytes(dir.Path("a.xml.XML")));
}

TEST(KXmlOut, ReplacesUmlautsInElementNamesOnly)
{
    KXmlOut out;
    TempDir dir;
    ASSERT_EQ(1, out.Open("R", (dir.Path("u")).c_str(), 1));
    // All seven bytes; other bytes above 0x7F stay.
    EXPECT_STREQ("Gr__e", out.Begin("Gr\xF6\xDF" "e")->Value());
    EXPECT_STREQ("_______x\xE9", out.Begin("\xE4\xF6\xFC\xC4\xD6\xDC\xDFx\xE9")->Value());
    EXPECT_STREQ("N7", out.Begin(7)->Value());
    EXPECT_STREQ("N0", out.Begin(0)->Value());
    EXPECT_STREQ("N-12", out.Begin(-12)->Value());
}

TEST(KXmlOut, KeepsAnExistingFileUnlessToldToOverwrite)
{
    TempDir dir;
    std::string file = dir.Path("keep");
    {
        std::ofstream(file + ".XML") << "old";
    }
    KXmlOut out;
    EXPECT_EQ(0, out.Open("R", file.c_str(), 0));
    EXPECT_EQ(nullptr, out.GetLast());
    EXPECT_EQ(0, out.Save());
    EXPECT_EQ("old", ReadBytes(file + ".XML"));

    EXPECT_EQ(1, out.Open("R", file.c_str(), 1));
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<R />\n", ReadBytes(file + ".XML"));
}

TEST(KXmlOut, NamesMatchFilesOnDiskWithoutRegardToCase)
{
    TempDir dir;
    dir.Write("PLAN.xml", "old");
    KXmlOut out;
    EXPECT_EQ(0, out.Open("R", dir.Path("Plan").c_str(), 0));
    EXPECT_EQ(1, out.Open("R", dir.Path("Plan").c_str(), 1));
    EXPECT_EQ(1, out.Save());
    // The file keeps its spelling and gets the new content.
    EXPECT_EQ(std::string(kDeclaration) + "<R />\n", ReadBytes(dir.Path("PLAN.xml")));
    EXPECT_FALSE(dir.Exists("Plan.XML"));
}

TEST(KXmlOut, RefusedOpenLeavesTheOpenDocumentAlone)
{
    TempDir dir;
    {
        std::ofstream(dir.Path("exists.XML")) << "old";
    }
    KXmlOut out;
    ASSERT_EQ(1, out.Open("First", (dir.Path("first")).c_str(), 1));
    out.Begin("Kept");
    EXPECT_EQ(0, out.Open("Second", (dir.Path("exists")).c_str(), 0));
    EXPECT_STREQ("Kept", out.GetLast()->Value());
    out.End();
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<First>\n    <Kept />\n</First>\n", ReadBytes(dir.Path("first.XML")));
}

TEST(KXmlOut, SaveLeavesOutElementsStillOpen)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir.Path("open")).c_str(), 1));
    out.Begin("Closed");
    out.End();
    out.Begin("Open")->SetAttribute("a", 1);
    out.Begin("Inner");
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<R>\n    <Closed />\n</R>\n", ReadBytes(dir.Path("open.XML")));
    // Save ended the document.
    EXPECT_EQ(nullptr, out.GetLast());
    EXPECT_EQ(0, out.Save());
}

TEST(KXmlOut, EndNeverClosesTheRoot)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir.Path("root")).c_str(), 1));
    EXPECT_EQ(1, out.End());
    EXPECT_EQ(1, out.End());
    EXPECT_STREQ("R", out.GetLast()->Value());
    out.Begin("A");
    out.End();
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<R>\n    <A />\n</R>\n", ReadBytes(dir.Path("root.XML")));
}

TEST(KXmlOut, OpensAgainAfterSaveAndDropsAnUnsavedDocument)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("One", (dir.Path("one")).c_str(), 1));
    out.Begin("Lost");
    ASSERT_EQ(1, out.Open("Two", (dir.Path("two")).c_str(), 1));
    out.Begin("B");
    out.End();
    EXPECT_EQ(1, out.Save());
    EXPECT_FALSE(std::filesystem::exists(dir.Path("one.XML")));
    EXPECT_EQ(std::string(kDeclaration) + "<Two>\n    <B />\n</Two>\n", ReadBytes(dir.Path("two.XML")));

    ASSERT_EQ(1, out.Open("Three", (dir.Path("three")).c_str(), 1));
    EXPECT_EQ(1, out.Save());
    EXPECT_TRUE(std::filesystem::exists(dir.Path("three.XML")));

    // An unsaved document is dropped with the object, and writes nothing.
    {
        KXmlOut unsaved;
        unsaved.Open("Four", (dir.Path("four")).c_str(), 1);
        unsaved.Begin("X");
    }
    EXPECT_FALSE(std::filesystem::exists(dir.Path("four.XML")));
}

TEST(KXmlOut, SaveFailsWhereTheFileCannotBeWritten)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir.Path("missing/sub/file")).c_str(), 1));
    EXPECT_EQ(0, out.Save());
    EXPECT_EQ(0, out.Save());
}

TEST(KXmlOut, FileNameIsAPathText)
{
    TempDir dir;
    dir.MakeDir("Plan");
    vx::SetDriveRoot('Q', dir.Path());
    KXmlOut out;
    out.SetPath("Q:\\Plan\\", "Liste");
    ASSERT_EQ(1, out.Open("R", nullptr, 1));
    EXPECT_EQ(1, out.Save());
    vx::SetDriveRoot('Q', "");
    EXPECT_TRUE(std::filesystem::exists(dir.Path("Plan/Liste.XML")));
}
