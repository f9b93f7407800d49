#include "pages/kvxfile.h"
#include "platform/files/hostpath.h"
#include "platform/windows/messagebox.h"

#include "support/printers.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <cstdint>

#include <string>

namespace {

VXPAGENUM Page(const char* text)
{
    return VXPAGENUM(text);
}

// Collects the texts of message boxes and answers "retry", so that an
// assertion goes on.
class BoxRecorder {
public:
    BoxRecorder()
    {
        m_old = vx::SetMessageBoxHandler([this](const vx::MessageBoxRequest& r) {
            texts.push_back(r.text);
            return IDRETRY;
        });
    }
    ~BoxRecorder() { vx::SetMessageBoxHandler(m_old); }
    std::vector<std::string> texts;

private:
    vx::MessageBoxHandler m_old;
};

} // namespace

TEST(KVxFile, FoldsForeignExtensionsIntoTheTitle)
{
    KVxFile dxf("C:\\P\\plan.dxf");
    EXPECT_EQ(dxf.GetFileTitle(), "plan.dxf");
    EXPECT_EQ(dxf.GetExtension(), "");
    EXPECT_EQ(dxf.MergeFilePath(Page("1")), "C:\\P\\plan.dxf.0001");
    EXPECT_EQ(KVxFile("C:\\P\\plan.0012").GetExtension(), ".0012");
    EXPECT_EQ(KVxFile("C:\\P\\plan.012").GetExtension(), ".012");
    EXPECT_EQ(KVxFile("C:\\P\\plan.*").GetExtension(), ".*");
    EXPECT_EQ(KVxFile("C:\\P\\plan.0?12").GetExtension(), ".0?12");

    KVxFile f;
    EXPECT_EQ(f.SetFilePath("C:\\P\\plan.0012a"), 1);
    EXPECT_EQ(f.SetFilePath("C:\\P\\plan.txt"), 0) << "0 tells that it folded";
    EXPECT_EQ(f.GetFileTitle(), "plan.txt");
    EXPECT_EQ(f.SetFilePath(nullptr), 0);

    // A long title and extension fold into the 255 characters of the title.
    const std::string longName = std::string(250, 't') + "." + std::string(200, 'e');
    KVxFile cut(longName.c_str());
    EXPECT_EQ(cut.GetFileTitle().GetLength(), 255);
    EXPECT_EQ(cut.GetExtension(), "");

    KVxFile merged("C:\\P\\plan.0012");
    EXPECT_EQ(merged.SetMerge("haus.dxf"), 0);
    EXPECT_EQ(merged.GetFilePath(), "C:\\P\\haus.dxf.0012");
    merged.SetMerge("D:\\Q\\x.0001");
    EXPECT_EQ(merged.GetFilePath(), "D:\\Q\\x.0001");
    merged.SetMergeWithPage(Page("7b"));
    EXPECT_EQ(merged.GetFilePath(), "D:\\Q\\x.0007b");
}

TEST(KVxFile, ValidatesNewAndOldExtensions)
{
    EXPECT_EQ(KVxFile("plan.0012").IsValidPage(0), VxFileNew);
    EXPECT_EQ(KVxFile("plan.0012ab").IsValidPage(0), VxFileNew);
    EXPECT_EQ(KVxFile("plan.012").IsValidPage(0), VxFileNone);
    EXPECT_EQ(KVxFile("plan.012").IsValidPage(1), VxFileOld);
    EXPECT_EQ(KVxFile("plan.12x").IsValidPage(1), VxFileOld) << "the third character is not examined";
    EXPECT_EQ(KVxFile("plan.1x2").IsValidPage(1), VxFileNone);
    EXPECT_EQ(KVxFile("plan.*").IsValidPage(1), VxFileNone);
    EXPECT_EQ(KVxFile(".0012abc").IsValidPage(1), VxFileNone);
    EXPECT_EQ(KVxFile("plan.0012a1").IsValidPage(1), VxFileNone);
    EXPECT_EQ(KVxFile("plan.001a").IsValidPage(1), VxFileNone) << "five characters: read as new style";
    EXPECT_EQ(KVxFile().IsValidPage(1), VxFileNone);
    EXPECT_EQ(KVxFile("C:\\P\\plan.0012").IsValid(0), VxFileNew);
    EXPECT_EQ(KVxFile("C:\\P\\pl*n.0012").IsValid(0), VxFileNone);
    EXPECT_EQ(KVxFile("C:\\P\\plan.0012").IsValid(), 1);
}

TEST(KVxFile, ConvertsBetweenOldAndNewNames)
{
    EXPECT_EQ(KVxFile::IsOldStyleName("plan.012"), 1);
    EXPECT_EQ(KVxFile::IsOldStyleName("plan.0012"), 0);
    EXPECT_EQ(KVxFile::IsOldStyleName("plan.12a"), 0);
    EXPECT_EQ(KVxFile::IsOldStyleName("012"), 0);
    EXPECT_EQ(KVxFile::IsOldStyleName(nullptr), 0);

    char name[16] = "plan.012";
    EXPECT_EQ(KVxFile::OldNameToNew(name), 1);
    EXPECT_STREQ(name, "plan.0012");
    EXPECT_EQ(KVxFile::OldNameToNew(name), 0);
    EXPECT_STREQ(name, "plan.0012");

    CString s = "plan.012";
    EXPECT_EQ(KVxFile::OldNameToNew(&s), 1);
    EXPECT_EQ(s, "plan.0012");
    s = "012";
    EXPECT_EQ(KVxFile::OldNameToNew(&s), 1);
    EXPECT_EQ(s, "0012");
    s = ".012";
    EXPECT_EQ(KVxFile::OldNameToNew(&s), 0);
    EXPECT_EQ(s, ".012");
    s = "01a";
    EXPECT_EQ(KVxFile::OldNameToNew(&s), 0);

    s = "plan.0012a";
    EXPECT_EQ(KVxFile::NewNameToOld(&s), 0);
    EXPECT_EQ(s, "plan.0012a");
    s = "plan.1000";
    EXPECT_EQ(KVxFile::NewNameToOld(&s), 0);
    s = "plan.0999";
    EXPECT_EQ(KVxFile::NewNameToOld(&s), 1);
    EXPECT_EQ(s, "plan.999");
    s = "plan.dxf";
    EXPECT_EQ(KVxFile::NewNameToOld(&s), 0);
    s = "0012";
    EXPECT_EQ(KVxFile::NewNameToOld(&s), 1);
    EXPECT_EQ(s, "012");
    EXPECT_EQ(KVxFile::GetAnzStellen(0), 4u);
    EXPECT_EQ(KVxFile::GetAnzStellen(5), 3u);
}

TEST(KVxFile, FormatsAndReadsPageTexts)
{
    EXPECT_EQ(KVxFile::FormatPageString(Page("7a"), 1, 0, 1), "0007a");
    EXPECT_EQ(KVxFile::FormatPageString(Page("7ab"), 1, 1, 1), ".0007ab");
    EXPECT_EQ(KVxFile::FormatPageString(Page("7a"), 1, 1, 0), ".007");
    EXPECT_EQ(KVxFile::FormatPageString(Page("7a"), 0, 0, 1), "7a");
    EXPECT_EQ(KVxFile::FormatPageString(VXPAGENUM(VXPAGE(0x12345), 0), 0, 0, 1), "9029") << "16 bits";
    EXPECT_EQ(KVxFile::FormatPageString(VXPAGENUM(), 1, 0, 1), "65535");

    EXPECT_EQ(KVxFile::GetPageNumFromString("  plan.0012b"), Page("12b"));
    EXPECT_EQ(KVxFile::GetPageNumFromString("12"), Page("12"));
    EXPECT_EQ(KVxFile::GetPageNumFromString("plan.dxf"), VXPAGENUM());
    EXPECT_EQ(KVxFile::GetPageNumFromString(nullptr), VXPAGENUM());

    KVxFile f("C:\\P\\plan.0012a");
    EXPECT_EQ(f.GetPageNumber(), Page("12a"));
    EXPECT_EQ(f.GetPageNumberString(), "0012a");
    EXPECT_EQ(KVxFile("C:\\P\\plan").GetPageNumber(), VXPAGENUM());
    EXPECT_EQ(KVxFile("C:\\P\\plan.012").GetPageNumber(), Page("12"));
}

TEST(KVxFile, APagePathTooLongToHoldItsPageIsNotMade)
{
    // 259 characters in all fit; one more would be cut, and the cut path
    // ("...plan.001") would name page 1 of the old style.
    const std::string dir = "C:\\" + std::string(240, 'd') + "\\";
    const std::string title(259 - dir.size() - 6, 'p');
    KVxFile fits((dir + title + ".0001").c_str());
    const CString path = fits.MergeFilePath(Page("12a"));
    EXPECT_EQ(path.GetLength(), 259);
    EXPECT_EQ(KVxFile(path).GetPageNumber(), Page("12a"));

    KVxFile longer((dir + title + "x.0001").c_str());
    EXPECT_EQ(longer.MergeFilePath(Page("12a")), "");
    EXPECT_EQ(longer.MergeFilePath(Page("12")).GetLength(), 259);
    EXPECT_EQ(KVxFile(std::string(254, 'q').c_str()).MergeFileName(Page("12ab")), "");
    EXPECT_EQ(KVxFile(std::string(252, 'q').c_str()).MergeFileName(Page("12ab")).GetLength(), 259);
}

TEST(KVxFile, StepsPagesWithinTheirRange)
{
    EXPECT_EQ(KVxFile::CreateNextPageNr(Page("12b"), 0), Page("13"));
    EXPECT_EQ(KVxFile::CreateNextPageNr(Page("9999"), 0), Page("9999"));
    EXPECT_EQ(KVxFile::CreatePreviousPageNr(Page("12b"), 0), Page("11"));
    EXPECT_EQ(KVxFile::CreatePreviousPageNr(Page("0"), 0), Page("0"));
    // A page read from a file may hold any 32-bit value; the step at the
    // ends of that range must not overflow.
    EXPECT_EQ(KVxFile::CreateNextPageNr(VXPAGENUM(VXPAGE(INT32_MAX), 0), 0), Page("9999"));
    EXPECT_EQ(KVxFile::CreatePreviousPageNr(VXPAGENUM(VXPAGE(INT32_MIN), 0), 0), Page("0"));
    EXPECT_EQ(KVxFile::CreateNextPageNr(VXPAGENUM(VXPAGE(INT32_MIN), 0), 0).GetPage(), INT32_MIN + 1);
    EXPECT_EQ(KVxFile::CreatePreviousPageNr(VXPAGENUM(VXPAGE(INT32_MAX), 0), 0).GetPage(), INT32_MAX - 1);

    KVxFile f("C:\\P\\plan.0012b");
    EXPECT_EQ(f.CreateNewFilePath(3), "C:\\P\\plan.0015b");
    EXPECT_EQ(f.CreateNewFilePath(-12), "C:\\P\\plan.0000b");
    EXPECT_EQ(f.CreateNewFilePath(-13), "");
    EXPECT_EQ(KVxFile("plan.9999").CreateNewFilePath(1), "");
    EXPECT_EQ(KVxFile("plan.0000").CreateNewFilePath(-1), "");
    EXPECT_EQ(KVxFile("plan").CreateNewFilePath(1), "") << "no page";
}

TEST(KVxFile, MergesNamesAndAssertsOnAnEmptyTitle)
{
    KVxFile f("C:\\P\\plan.0012");
    EXPECT_EQ(f.MergeFilePath(Page("3c")), "C:\\P\\plan.0003c");
    EXPECT_EQ(f.MergeFileName(Page("3c")), "plan.0003c");

    BoxRecorder boxes;
    KVxFile noTitle("C:\\P\\.0012");
    EXPECT_EQ(noTitle.MergeFileName(Page("1")), "");
    EXPECT_TRUE(boxes.texts.empty());
    EXPECT_EQ(noTitle.MergeFilePath(Page("1")), "");
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_NE(boxes.texts[0].find("560"), std::string::npos);
    EXPECT_NE(boxes.texts[0].find("StdVxDatei"), std::string::npos);
}

TEST(KVxFile, VexalFileFilterHasTwoTerminatedParts)
{
    const CString filter = KVxFile::GetVexalDateiFilter();
    const std::string expected = std::string("VEXAL Plik") + '\0' + "*.0*;*.1*;*.2*;*.3*;*.4*;*.5*;*.6*;*.7*;*.8*;*.9*;" + '\0';
    EXPECT_EQ(std::string(filter.View()), expected);
}

TEST(KVxFile, FindNextPageLooksOnlyAtSubPagesOfTheSamePage)
{
    vxtest::TempDir dir;
    vx::SetDriveRoot('P', dir.Path());
    for (const char* name : {"plan.0012", "plan.0012a", "plan.0012c", "plan.0013", "PLAN.0012d"})
        dir.Write(name);
    dir.MakeDir("plan.0012b");
    EXPECT_EQ(KVxFile("P:\\plan.0012a").FindNextPage(), Page("12c")) << "the directory 0012b is passed over";
    EXPECT_EQ(KVxFile("P:\\plan.0012").FindNextPage(), Page("12a"));
    EXPECT_EQ(KVxFile("P:\\plan.0012c").FindNextPage(), Page("12d")) << "found without regard to case";
    EXPECT_EQ(KVxFile("P:\\plan.0012d").FindNextPage(), VXPAGENUM());
    EXPECT_EQ(KVxFile("P:\\plan.0013").FindNextPage(), VXPAGENUM());
    EXPECT_EQ(KVxFile("P:\\haus.0001").FindNextPage(), VXPAGENUM());
    EXPECT_EQ(KVxFile("P:\\missing\\plan.0001").FindNextPage(), VXPAGENUM());
    vx::SetDriveRoot('P', "");
}
