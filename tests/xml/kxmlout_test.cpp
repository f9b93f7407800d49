#include "xml/kxmlout.h"
#include "platform/hostpath.h"
#include "xmltestutil.h"

#include <gtest/gtest.h>

#include <filesystem>

using xmltest::ReadFile;
using xmltest::TempDir;

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

    EXPECT_EQ(xmltest::Golden("kxmlout.xml"), ReadFile(dir / "projekt.XML"));
}

TEST(KXmlOut, AppendsXmlSuffixEvenAfterAnExtension)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir / "a.xml").c_str(), 1));
    EXPECT_EQ(1, out.Save());
    EXPECT_TRUE(std::filesystem::exists(dir / "a.xml.XML"));
    EXPECT_FALSE(std::filesystem::exists(dir / "a.xml"));
    EXPECT_EQ(std::string(kDeclaration) + "<R />\n", ReadFile(dir / "a.xml.XML"));
}

TEST(KXmlOut, ReplacesUmlautsInElementNamesOnly)
{
    KXmlOut out;
    TempDir dir;
    ASSERT_EQ(1, out.Open("R", (dir / "u").c_str(), 1));
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
    std::string file = dir / "keep";
    {
        std::ofstream(file + ".XML") << "old";
    }
    KXmlOut out;
    EXPECT_EQ(0, out.Open("R", file.c_str(), 0));
    EXPECT_EQ(nullptr, out.GetLast());
    EXPECT_EQ(0, out.Save());
    EXPECT_EQ("old", ReadFile(file + ".XML"));

    EXPECT_EQ(1, out.Open("R", file.c_str(), 1));
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<R />\n", ReadFile(file + ".XML"));
}

TEST(KXmlOut, RefusedOpenLeavesTheOpenDocumentAlone)
{
    TempDir dir;
    {
        std::ofstream(dir / "exists.XML") << "old";
    }
    KXmlOut out;
    ASSERT_EQ(1, out.Open("First", (dir / "first").c_str(), 1));
    out.Begin("Kept");
    EXPECT_EQ(0, out.Open("Second", (dir / "exists").c_str(), 0));
    EXPECT_STREQ("Kept", out.GetLast()->Value());
    out.End();
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<First>\n    <Kept />\n</First>\n", ReadFile(dir / "first.XML"));
}

TEST(KXmlOut, SaveLeavesOutElementsStillOpen)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir / "open").c_str(), 1));
    out.Begin("Closed");
    out.End();
    out.Begin("Open")->SetAttribute("a", 1);
    out.Begin("Inner");
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<R>\n    <Closed />\n</R>\n", ReadFile(dir / "open.XML"));
    // Save ended the document.
    EXPECT_EQ(nullptr, out.GetLast());
    EXPECT_EQ(0, out.Save());
}

TEST(KXmlOut, EndNeverClosesTheRoot)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir / "root").c_str(), 1));
    EXPECT_EQ(1, out.End());
    EXPECT_EQ(1, out.End());
    EXPECT_STREQ("R", out.GetLast()->Value());
    out.Begin("A");
    out.End();
    EXPECT_EQ(1, out.Save());
    EXPECT_EQ(std::string(kDeclaration) + "<R>\n    <A />\n</R>\n", ReadFile(dir / "root.XML"));
}

TEST(KXmlOut, OpensAgainAfterSaveAndDropsAnUnsavedDocument)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("One", (dir / "one").c_str(), 1));
    out.Begin("Lost");
    ASSERT_EQ(1, out.Open("Two", (dir / "two").c_str(), 1));
    out.Begin("B");
    out.End();
    EXPECT_EQ(1, out.Save());
    EXPECT_FALSE(std::filesystem::exists(dir / "one.XML"));
    EXPECT_EQ(std::string(kDeclaration) + "<Two>\n    <B />\n</Two>\n", ReadFile(dir / "two.XML"));

    ASSERT_EQ(1, out.Open("Three", (dir / "three").c_str(), 1));
    EXPECT_EQ(1, out.Save());
    EXPECT_TRUE(std::filesystem::exists(dir / "three.XML"));

    // An unsaved document is dropped with the object, and writes nothing.
    {
        KXmlOut unsaved;
        unsaved.Open("Four", (dir / "four").c_str(), 1);
        unsaved.Begin("X");
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "four.XML"));
}

TEST(KXmlOut, SaveFailsWhereTheFileCannotBeWritten)
{
    TempDir dir;
    KXmlOut out;
    ASSERT_EQ(1, out.Open("R", (dir / "missing/sub/file").c_str(), 1));
    EXPECT_EQ(0, out.Save());
    EXPECT_EQ(0, out.Save());
}

TEST(KXmlOut, FileNameIsAPathText)
{
    TempDir dir;
    std::filesystem::create_directory(dir.Path() / "Plan");
    vx::SetDriveRoot('Q', dir.Path().string());
    KXmlOut out;
    out.SetPath("Q:\\Plan\\", "Liste");
    ASSERT_EQ(1, out.Open("R", nullptr, 1));
    EXPECT_EQ(1, out.Save());
    vx::SetDriveRoot('Q', "");
    EXPECT_TRUE(std::filesystem::exists(dir.Path() / "Plan" / "Liste.XML"));
}
