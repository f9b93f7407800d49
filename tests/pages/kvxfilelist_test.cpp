#include "pages/kvxfilelist.h"
#include "platform/files/filetime.h"
#include "platform/files/hostpath.h"

#include "support/printers.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

VXPAGENUM Page(const char* text)
{
    return VXPAGENUM(text);
}

std::vector<std::string> Texts(const KVxFileList& list)
{
    std::vector<std::string> texts;
    for (unsigned i = 0; i < list.GetCount(); ++i)
        texts.push_back(list.GetIndexedPage(i).GetPageText(0).GetString());
    return texts;
}

class FileListTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.Valid());
        vx::SetDriveRoot('P', dir.Path());
        g_KVxFileList_optimize = 0;
        KVxFileList::ResetOptimization();
    }
    void TearDown() override
    {
        g_KVxFileList_optimize = 0;
        KVxFileList::ResetOptimization();
        vx::SetDriveRoot('P', "");
    }
    // A drawing "plan" in P:\ with pages and the usual neighbours.
    void MakeDrawing()
    {
        for (const char* name : {"plan.0010", "plan.0002a", "plan.0002", "PLAN.0001", "plan.0002b"})
            dir.Write(name);
        dir.Write("plan.012");     // old style: not listed
        dir.Write("plan.dxf");     // a foreign extension
        dir.Write("plan");         // no extension
        dir.Write("plan.0003abc"); // too long for a page
        dir.Write("plans.0004");   // another title
        dir.Write("haus.0005");
        dir.MakeDir("plan.0006");  // a directory named like a page
    }
    vxtest::TempDir dir;
};

} // namespace

TEST_F(FileListTest, CollectsThePagesOfOneDrawingInPageOrder)
{
    MakeDrawing();
    KVxFileList list("P:\\plan.0002");
    EXPECT_EQ(list.CollectPages(0), 5);
    EXPECT_EQ(Texts(list), (std::vector<std::string>{"1", "2", "2a", "2b", "10"}));
    EXPECT_EQ(list.GetFirstPage(), Page("1"));
    EXPECT_EQ(list.GetLastPage(), Page("10"));
    EXPECT_EQ(list.GetCurrentPage(), Page("2"));
    EXPECT_EQ(list.GetIndexedPage(5), VXPAGENUM());
    EXPECT_EQ(list.GetIndexedFilePath(4), "P:\\plan.0010");
    EXPECT_EQ(list.GetIndexedFileName(2), "plan.0002a");
    EXPECT_EQ(list.GetFileName(2), "plan.0002a");
    EXPECT_EQ(list.GetIndexedFileTitle(2), "plan");
    EXPECT_EQ(list.GetIndexedFileExtension(2), ".0002a");
    EXPECT_EQ(list.GetIndexedFilePath(5), "");
    EXPECT_EQ(list.GetIndexedFileExtension(9), "");
    EXPECT_EQ(list.GetFilePathFromPage(Page("7c")), "P:\\plan.0007c");
    EXPECT_EQ(list.GetPageNumberString(Page("7c")), "0007c");
    EXPECT_EQ(list.GetFilePath().GetFilePath(), "P:\\plan.0002");
    EXPECT_EQ(list.GetFileTitle(), "plan");
    EXPECT_TRUE(list.IsSet());
    EXPECT_TRUE(list.IsV5Extension());
    EXPECT_TRUE(list.IsOnePageExisting());

    KVxFileList posix((dir.Path() + "/plan").c_str());
    EXPECT_EQ(posix.CollectPages(0), 5) << "a POSIX path and a bare title work too";
    EXPECT_FALSE(posix.IsV5Extension());
}

TEST_F(FileListTest, EmptyMissingAndUnsetDrawingsGiveNothing)
{
    KVxFileList unset;
    EXPECT_EQ(unset.CollectPages(1), 0);
    EXPECT_EQ(unset.GetFirstPage(), VXPAGENUM());
    WORD date = 1, time = 1;
    EXPECT_EQ(unset.GetLastDateAndTime(&date, &time), 0);
    EXPECT_EQ(date, 0);
    EXPECT_EQ(time, 0);
    EXPECT_EQ(KVxFileList("P:\\missing\\plan.0001").CollectPages(1), 0);
    EXPECT_EQ(KVxFileList("P:\\plan.0001").CollectPages(1), 0);
    EXPECT_FALSE(KVxFileList("P:\\plan.0001").IsOnePageExisting());
}

TEST_F(FileListTest, NewestDateAndTimeOfThePages)
{
    MakeDrawing();
    dir.SetWriteTime("plan.0010", 1721039445);  // 2024-07-15
    dir.SetWriteTime("plan.0002", 1721039447);  // two seconds later
    dir.SetWriteTime("PLAN.0001", 1600000000);  // 2020
    dir.SetWriteTime("plan.0002a", 1600000000);
    dir.SetWriteTime("plan.0002b", 1600000000);
    dir.SetWriteTime("haus.0005", 1800000000);  // newer, but not a page of plan
    KVxFileList list("P:\\plan.0001");
    list.CollectPages(1);
    WORD date = 0, time = 0;
    ASSERT_EQ(list.GetLastDateAndTime(&date, &time), 1);
    WORD expectDate, expectTime;
    ASSERT_TRUE(vx::DosDateTimeFromUnix(1721039447, &expectDate, &expectTime));
    EXPECT_EQ(date, expectDate);
    EXPECT_EQ(time, expectTime);

    list.CollectPages(0);
    list.GetLastDateAndTime(&date, &time);
    EXPECT_EQ(date, 0) << "no times asked for";
}

TEST_F(FileListTest, WithoutOptimisationEveryScanReadsTheDirectory)
{
    MakeDrawing();
    KVxFileList list("P:\\plan.0001");
    const unsigned long before = vx::DirectoryOpenCount();
    list.CollectPages(0);
    list.CollectPages(0);
    EXPECT_EQ(vx::DirectoryOpenCount() - before, 2u);
    std::remove(dir.Path("plan.0010").c_str());
    EXPECT_EQ(list.CollectPages(0), 4);
}

TEST_F(FileListTest, CacheServesRepeatedScansUntilReset)
{
    MakeDrawing();
    // The cached time query reads names as spelled by the last page seen, so
    // this drawing is spelled one way.
    ASSERT_EQ(rename(dir.Path("PLAN.0001").c_str(), dir.Path("plan.0001").c_str()), 0);
    g_KVxFileList_optimize = 1;
    KVxFileList list("P:\\plan.0001");
    EXPECT_EQ(list.CollectPages(0), 5);
    EXPECT_EQ(KVxFileList::s_SearchFor, "P:\\plan.*");
    EXPECT_EQ(KVxFileList::s_arrPages.GetSize(), 5);

    // Deleted behind the cache's back: still listed, without any directory read.
    std::remove(dir.Path("plan.0010").c_str());
    const unsigned long before = vx::DirectoryOpenCount();
    KVxFileList again("P:\\plan.0002b");
    EXPECT_EQ(again.CollectPages(0), 5);
    EXPECT_EQ(again.GetLastPage(), Page("10"));
    EXPECT_EQ(vx::DirectoryOpenCount(), before);

    // With times: the deleted page's status cannot be read and is passed over.
    dir.SetWriteTime("plan.0001", 1721039445);
    for (const char* name : {"plan.0002", "plan.0002a", "plan.0002b"})
        dir.SetWriteTime(name, 1600000000);
    EXPECT_EQ(again.CollectPages(1), 5);
    WORD date = 0, time = 0, expectDate, expectTime;
    ASSERT_EQ(again.GetLastDateAndTime(&date, &time), 1);
    ASSERT_TRUE(vx::DosDateTimeFromUnix(1721039445, &expectDate, &expectTime));
    EXPECT_EQ(date, expectDate);
    EXPECT_EQ(time, expectTime);
    EXPECT_EQ(vx::DirectoryOpenCount(), before);

    // Even the directory gone: the answer comes from memory.
    ASSERT_EQ(rename(dir.Path().c_str(), (dir.Path() + "-away").c_str()), 0);
    EXPECT_EQ(again.CollectPages(0), 5);
    ASSERT_EQ(rename((dir.Path() + "-away").c_str(), dir.Path().c_str()), 0);

    KVxFileList::ResetOptimization();
    EXPECT_EQ(again.CollectPages(0), 4);
    EXPECT_GT(vx::DirectoryOpenCount(), before);
}

TEST_F(FileListTest, CacheServesOnlyFullScansOfTheSameDrawing)
{
    MakeDrawing();
    g_KVxFileList_optimize = 1;
    KVxFileList plan("P:\\plan.0001");
    plan.CollectPages(0);

    unsigned long before = vx::DirectoryOpenCount();
    KVxFileList haus("P:\\haus.0001");
    EXPECT_EQ(haus.CollectPages(0), 1) << "another drawing is scanned";
    EXPECT_EQ(vx::DirectoryOpenCount() - before, 1u);

    // A scan that stopped at its first hit is never served to a full one.
    EXPECT_TRUE(plan.IsOnePageExisting());
    EXPECT_EQ(KVxFileList::s_bOnlyOne, 1);
    EXPECT_EQ(plan.GetCount(), 1u);
    before = vx::DirectoryOpenCount();
    EXPECT_EQ(plan.CollectPages(0), 5);
    EXPECT_EQ(vx::DirectoryOpenCount() - before, 1u);
    // ... and IsOnePageExisting always reads.
    before = vx::DirectoryOpenCount();
    plan.IsOnePageExisting();
    EXPECT_EQ(vx::DirectoryOpenCount() - before, 1u);

    // An empty result is not served either.
    KVxFileList none("P:\\none.0001");
    none.CollectPages(0);
    before = vx::DirectoryOpenCount();
    none.CollectPages(0);
    EXPECT_EQ(vx::DirectoryOpenCount() - before, 1u);

    // With the flag off nothing is cached.
    g_KVxFileList_optimize = 0;
    plan.CollectPages(0);
    EXPECT_EQ(KVxFileList::s_arrPages.GetSize(), 0);
}

TEST_F(FileListTest, MembershipOfTheFileGroup)
{
    const KVxFileList list("C:\\P\\plan.0001");
    EXPECT_TRUE(list.IsMemberOfFileGroup("C:\\P\\plan.0002a", 0));
    EXPECT_TRUE(list.IsMemberOfFileGroup("c:\\p\\PLAN.0002", 0)) << "without regard to case";
    EXPECT_TRUE(list.IsMemberOfFileGroup("plan.0002", 0)) << "unset parts are not compared";
    EXPECT_FALSE(list.IsMemberOfFileGroup("D:\\P\\plan.0002", 0));
    EXPECT_FALSE(list.IsMemberOfFileGroup("C:\\Q\\plan.0002", 0));
    EXPECT_FALSE(list.IsMemberOfFileGroup("C:\\P\\plans.0002", 0));
    EXPECT_FALSE(list.IsMemberOfFileGroup("C:\\P\\plan.012", 0));
    EXPECT_TRUE(list.IsMemberOfFileGroup("C:\\P\\plan.012", 1));
    EXPECT_FALSE(list.IsMemberOfFileGroup("C:\\P\\plan.dxf", 1));
    EXPECT_FALSE(list.IsMemberOfFileGroup("C:\\P\\plan", 1));
}

TEST_F(FileListTest, NavigatesAndSearches)
{
    MakeDrawing();
    KVxFileList list("P:\\plan.0001");
    list.CollectPages(0);
    EXPECT_EQ(list.GetNextPage(Page("2")), Page("2a"));
    EXPECT_EQ(list.GetNextPage(Page("10")), Page("10")) << "the last page stays";
    EXPECT_EQ(list.GetPreviousPage(Page("1")), Page("1")) << "the first page stays";
    EXPECT_EQ(list.GetPreviousPage(Page("10")), Page("2b"));
    EXPECT_EQ(list.GetNextPage(Page("5")), VXPAGENUM());
    EXPECT_EQ(list.GetNextPage(VXPAGENUM()), VXPAGENUM());
    EXPECT_EQ(list.GetIndexOfPage(Page("2b")), 3);
    EXPECT_EQ(list.GetIndexOfPage(Page("3")), -1);

    // Equal entries: the first of them.
    KVxFileList dup;
    for (const char* p : {"1", "4", "4", "4", "7"})
        dup.Add(Page(p));
    EXPECT_EQ(dup.GetIndexOfPage(Page("4")), 1);
    EXPECT_EQ(dup.GetIndexOfPage(Page("7")), 4);
    EXPECT_EQ(KVxFileList().GetIndexOfPage(Page("1")), -1);
}

TEST_F(FileListTest, CopiesTheListIntoABuffer)
{
    MakeDrawing();
    KVxFileList list("P:\\plan.0001");
    list.CollectPages(0);
    char buffer[200];
    EXPECT_EQ(list.CopyListToBuffer(buffer, sizeof buffer, ListPageTexts), 5);
    EXPECT_EQ(std::string(buffer, 27), std::string("0001\0" "0002\0" "0002a\0" "0002b\0" "0010\0", 27));
    EXPECT_EQ(list.CopyListToBuffer(buffer, sizeof buffer, ListFileNames), 5);
    EXPECT_STREQ(buffer, "plan.0001");
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(list.CopyListToBuffer(buffer, 6, ListPageTexts), -1) << "0002a and its zero need 6";
    EXPECT_EQ(std::string(buffer, 11), std::string("0001\0" "0002\0#", 11)) << "earlier entries stay";
}

TEST(KSortablePagenumArray, SortsInTheOrderOfCompare)
{
    KSortablePagenumArray pages;
    for (const char* p : {"10", "2b", "2", "9999", "0", "2a", "10a", "2ab", "2b", "1"})
        pages.Add(VXPAGENUM(p));
    pages.Add(VXPAGENUM(VXPAGE(-5), 0));
    pages.Sort();
    for (int i = 1; i < pages.GetSize(); ++i)
        EXPECT_LE(VXPAGENUM::Compare(pages[i - 1], pages[i]), 0) << i;
    EXPECT_EQ(pages[0], VXPAGENUM(VXPAGE(-5), 0));
    EXPECT_EQ(pages[3], VXPAGENUM("2"));
    EXPECT_EQ(pages[4], VXPAGENUM("2a"));
    EXPECT_EQ(pages[5], VXPAGENUM("2ab"));
}
