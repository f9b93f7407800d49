#include "pages/kfilelist.h"
#include "platform/files/hostpath.h"

#include "support/printers.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Names(const KFileList& list)
{
    std::vector<std::string> names;
    for (unsigned i = 0; i < list.GetCount(); ++i)
        names.push_back(list.GetIndexedFileName(i).GetString());
    return names;
}

} // namespace

TEST(KFileList, CollectsFileNamesInTextOrDinOrder)
{
    vxtest::TempDir dir;
    vx::SetDriveRoot('P', dir.Path());
    for (const char* name : {"K10.dbf", "K2.dbf", "k3.DBF", "A.dbf", "notes.txt"})
        dir.Write(name);
    dir.MakeDir("K1.dbf");

    KFileList list("P:\\*.dbf");
    EXPECT_EQ(list.CollectFiles(0), 4);
    EXPECT_EQ(Names(list), (std::vector<std::string>{"A.dbf", "K10.dbf", "K2.dbf", "k3.DBF"}));
    EXPECT_EQ(list.CollectFiles(1), 4);
    EXPECT_EQ(Names(list), (std::vector<std::string>{"A.dbf", "K2.dbf", "k3.DBF", "K10.dbf"}));
    EXPECT_EQ(list.GetIndexedFileName(4), "");

    char buffer[64];
    EXPECT_EQ(list.CopyListToBuffer(buffer, sizeof buffer), 4);
    EXPECT_EQ(std::string(buffer, 14), std::string("A.dbf\0K2.dbf\0k", 14));
    EXPECT_EQ(list.CopyListToBuffer(buffer, 6), -1) << "A.dbf fits 6 only without its zero";

    list.SetFilter("");
    EXPECT_EQ(list.CollectFiles(1), 0);
    list.SetFilter("P:\\missing\\*.*");
    EXPECT_EQ(list.CollectFiles(1), 0);
    EXPECT_EQ(KFileList().CollectFiles(0), 0);
    CString a = "a", b = "b";
    EXPECT_LT(KFileList::Compare(&a, &b), 0);
    vx::SetDriveRoot('P', "");
}
