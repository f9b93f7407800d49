#include "pages/kvxpath.h"
#include "platform/files/hostpath.h"

#include "support/printers.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <string>

TEST(KVxPath, SplitsAndJoinsItsFourParts)
{
    KVxPath p("C:\\Projekte\\Anlage\\plan.0012");
    EXPECT_EQ(p.GetDrive(), "C:");
    EXPECT_EQ(p.GetDirectory(), "\\Projekte\\Anlage\\");
    EXPECT_EQ(p.GetFileTitle(), "plan");
    EXPECT_EQ(p.GetExtension(), ".0012");
    EXPECT_STREQ(p.GetPointerToDir(), "\\Projekte\\Anlage\\");
    EXPECT_STREQ(p.GetPointerToFname(), "plan");
    EXPECT_EQ(p.GetFilePath(), "C:\\Projekte\\Anlage\\plan.0012");
    EXPECT_EQ(p.GetFileName(), "plan.0012");
    EXPECT_EQ(p.GetPathTitle(), "C:\\Projekte\\Anlage\\plan");
    EXPECT_EQ(p.GetPath(), "C:\\Projekte\\Anlage\\");
    EXPECT_EQ(p.GetParentPath(), "C:\\Projekte\\");
    EXPECT_TRUE(p.IsSet());

    KVxPath copy;
    EXPECT_FALSE(copy.IsSet());
    EXPECT_EQ(copy.GetFilePath(), "");
    EXPECT_EQ(copy.GetFileName(), "");
    EXPECT_EQ(copy.GetPath(), "");
    copy = p;
    EXPECT_EQ(copy.GetFilePath(), p.GetFilePath());
    EXPECT_EQ(copy.SetFilePath(nullptr), 0);
    EXPECT_EQ(copy.GetFilePath(), p.GetFilePath()) << "a null path changes nothing";
    copy.Empty();
    EXPECT_FALSE(copy.IsSet());

    EXPECT_EQ(KVxPath("C:\\x.txt").GetParentPath(), "C:\\") << "the root stays the root";
    EXPECT_STREQ(KVxPath::GetExtension("a.b\\c.d"), ".d");
    EXPECT_EQ(KVxPath::GetExtension("abc"), nullptr);
    EXPECT_EQ(KVxPath::GetExtension(nullptr), nullptr);
}

TEST(KVxPath, SetMergeFollowsItsRulesPartByPart)
{
    KVxPath p("C:\\P\\plan.0012");
    p.SetMerge(nullptr, "", nullptr, nullptr);
    EXPECT_EQ(p.GetDirectory(), "\\") << "an empty directory is the root";
    p.SetMerge(nullptr, "Neu", nullptr, nullptr);
    EXPECT_EQ(p.GetDirectory(), "\\Neu\\");
    p.SetMerge(nullptr, "\\Abs\\", nullptr, nullptr);
    EXPECT_EQ(p.GetDirectory(), "\\Abs\\");
    p.SetMerge(nullptr, nullptr, nullptr, "txt");
    EXPECT_EQ(p.GetExtension(), ".txt");
    p.SetMerge(nullptr, nullptr, nullptr, ".txt");
    EXPECT_EQ(p.GetExtension(), ".txt");
    p.SetMerge("Dxyz", nullptr, nullptr, nullptr);
    EXPECT_EQ(p.GetDrive(), "Dx") << "two characters of a drive";

    KVxPath withDrive("C:\\P\\a.b");
    withDrive.SetMerge(nullptr, nullptr, "C:\\x\\y.txt", nullptr);
    EXPECT_EQ(withDrive.GetFileTitle(), "y.txt");
    KVxPath noDrive("\\P\\a.b");
    noDrive.SetMerge(nullptr, nullptr, "C:\\x\\y.txt", nullptr);
    EXPECT_EQ(noDrive.GetFileTitle(), "C:\\x\\y.txt");
    EXPECT_EQ(withDrive.Merge(nullptr, nullptr, "C:\\x\\y", nullptr), "C:\\P\\C:\\x\\y.b")
        << "Merge takes the title as it stands";
    EXPECT_EQ(withDrive.GetFileTitle(), "y.txt") << "Merge leaves the object alone";
}

TEST(KVxPath, MergeWithExtAndAddDir)
{
    KVxPath p("C:\\P\\plan.0012");
    EXPECT_EQ(p.MergeWithExt("haus"), "C:\\P\\haus.0012");
    EXPECT_EQ(p.MergeWithExt(".0013"), "C:\\P\\plan.0013");
    EXPECT_EQ(p.MergeWithExt("D:\\Q\\x.y"), "D:\\Q\\x.y");
    p.SetMergeWithExt("neu.0099");
    EXPECT_EQ(p.GetFilePath(), "C:\\P\\neu.0099");

    KVxPath d("C:\\P\\x.y");
    EXPECT_EQ(d.AddDir("sub"), 1);
    EXPECT_EQ(d.GetDirectory(), "\\P\\sub\\");
    d.AddDir("\\abc");
    EXPECT_EQ(d.GetDirectory(), "\\P\\sub\\abc\\");
    EXPECT_EQ(d.AddDir(nullptr), 0);
    KVxPath e;
    e.AddDir("\\abc");
    EXPECT_EQ(e.GetDirectory(), "abc\\") << "no leading separator from an empty directory";
    KVxPath f;
    f.AddDir("abc");
    EXPECT_EQ(f.GetDirectory(), "\\abc\\");
    f.SetFileTitle("t");
    EXPECT_EQ(f.GetFileName(), "t");
}

TEST(KVxPath, OverlongPartsAreCutToTheirBuffers)
{
    const std::string longText(800, 'x');
    KVxPath p;
    p.SetMerge(longText.c_str(), longText.c_str(), longText.c_str(), longText.c_str());
    EXPECT_EQ(p.GetDrive().GetLength(), 2);
    EXPECT_EQ(p.GetDirectory().GetLength(), 255) << "\\ and 254 characters, no room for the last \\";
    EXPECT_EQ(p.GetFileTitle().GetLength(), 255);
    EXPECT_EQ(p.GetExtension().GetLength(), 255);
    EXPECT_LE(p.GetFilePath().GetLength(), 259);

    p.SetFilePath((std::string("C:\\") + longText + "\\" + longText + "." + longText).c_str());
    EXPECT_EQ(p.GetDirectory().GetLength(), 255);
    EXPECT_EQ(p.GetFileTitle().GetLength(), 255);
    EXPECT_EQ(p.GetExtension().GetLength(), 255);
    for (int i = 0; i < 4; ++i)
        p.AddDir(longText.c_str());
    EXPECT_EQ(p.GetDirectory().GetLength(), 255);

    const std::string odd[] = {std::string(800, '\\'), "\\", ":", "::", std::string(300, '\x80'), "\xFF.\xFE"};
    for (const std::string& t : odd) {
        SCOPED_TRACE(t.substr(0, 10));
        KVxPath q(t.c_str());
        q.SetMergeWithExt(t.c_str());
        q.AddDir(t.c_str());
        q.SetMerge(t.c_str(), t.c_str(), t.c_str(), t.c_str());
        EXPECT_LE(q.GetFilePath().GetLength(), 259);
        EXPECT_LE(q.GetParentPath().GetLength(), 259);
        q.IsValid();
        q.IsFileExisting();
        q.GetFullFilePath();
    }
}

TEST(KVxPath, IsValidRefusesCharactersByPart)
{
    EXPECT_TRUE(KVxPath("C:\\P\\plan.0012").IsValid());
    EXPECT_FALSE(KVxPath().IsValid());
    EXPECT_FALSE(KVxPath("C:\\P\\pl?n.0012").IsValid());
    EXPECT_FALSE(KVxPath("C:\\P\\plan.00*2").IsValid());
    EXPECT_FALSE(KVxPath("C:\\P\\pl\"an").IsValid());
    EXPECT_FALSE(KVxPath("C:\\P:\\plan").IsValid()) << "a colon in the directory";
    EXPECT_FALSE(KVxPath("/tmp/plan.0012").IsValid()) << "\"/\" is refused in the directory";
    KVxPath p("C:\\P\\plan");
    p.SetFileTitle("a:b");
    EXPECT_FALSE(p.IsValid());
}

TEST(KVxPath, FullPathsAndExistingFiles)
{
    KVxPath p("C:\\P\\..\\Q\\.\\plan.0012");
    EXPECT_EQ(p.GetFullFilePath(), "C:\\Q\\plan.0012");
    EXPECT_EQ(p.GetDirectory(), "\\P\\..\\Q\\.\\") << "GetFullFilePath works on a copy";
    p.MakeFullPath();
    EXPECT_EQ(p.GetDirectory(), "\\Q\\");

    vxtest::TempDir dir;
    dir.Write("Plan.0012");
    dir.MakeDir("plan.0013");
    vx::SetDriveRoot('P', dir.Path());
    EXPECT_TRUE(KVxPath("P:\\plan.0012").IsFileExisting()) << "found whatever its case";
    EXPECT_FALSE(KVxPath("P:\\plan.0013").IsFileExisting()) << "a directory is not a file";
    EXPECT_TRUE(KVxPath("P:\\plan.*").IsFileExisting());
    EXPECT_FALSE(KVxPath("P:\\plan.0013*").IsFileExisting());
    EXPECT_FALSE(KVxPath("P:\\missing.0001").IsFileExisting());
    EXPECT_FALSE(KVxPath().IsFileExisting());
    EXPECT_TRUE(KVxPath((dir.Path() + "/Plan.0012").c_str()).IsFileExisting()) << "a POSIX path passes through";
    vx::SetDriveRoot('P', "");
}
