// Record sets on the rows of a table: members fixed at opening, values read
// as the walk reaches them and again when it comes back, whoever wrote them.
#include "database/dbtestutil.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daotabledef.h"
#include "platform/dao/daoworkspace.h"

#include <functional>

namespace {

using dbtest::ErrorOf;

// A file with table Parts (Nr, Name) and records 1 .. count.
std::string MakeParts(const dbtest::TempDir& dir, int count)
{
    const std::string file = dir / "parts.mdb";
    CDaoDatabase db;
    db.Create(file.c_str());
    CDaoTableDef def(&db);
    def.Create("Parts");
    def.CreateField("Nr", dbLong, 4);
    def.CreateField("Name", dbText, 20);
    def.Append();
    db.m_pWorkspace->BeginTrans();
    for (int i = 1; i <= count; ++i)
        db.Execute(("INSERT INTO Parts (Nr, Name) VALUES (" + std::to_string(i) + ", 'P" + std::to_string(i) + "')")
                       .c_str());
    db.m_pWorkspace->CommitTrans();
    return file;
}

long Nr(CDaoRecordset& set)
{
    return set.GetFieldValue("Nr").lVal;
}

} // namespace

TEST(DaoRecordset, WalksBackAndAgainOverTheSameMembers)
{
    dbtest::TempDir dir;
    const std::string file = MakeParts(dir, 50);
    CDaoDatabase db;
    db.Open(file.c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] WHERE [Nr] > 10 ORDER BY [Nr] DESC");
    long expected = 50;
    for (; !set.IsEOF(); set.MoveNext()) {
        SCOPED_TRACE(expected);
        ASSERT_EQ(Nr(set), expected);
        EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, ("P" + std::to_string(expected)).c_str());
        --expected;
    }
    EXPECT_EQ(expected, 10);
    EXPECT_EQ(set.GetRecordCount(), 40);
    for (set.MovePrev(); !set.IsBOF(); set.MovePrev())
        ASSERT_EQ(Nr(set), ++expected);
    set.SetAbsolutePosition(20);
    EXPECT_EQ(Nr(set), 30);
    const COleVariant mark = set.GetBookmark();
    set.MoveFirst();
    set.Move(39);
    EXPECT_EQ(Nr(set), 11);
    set.SetBookmark(mark);
    EXPECT_EQ(Nr(set), 30);
}

TEST(DaoRecordset, MoveLastIsWhereverTheLastMemberIs)
{
    dbtest::TempDir dir;
    const std::string file = MakeParts(dir, 30);
    CDaoDatabase db;
    db.Open(file.c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts]");
    set.MoveLast();
    EXPECT_FALSE(set.IsEOF());
    EXPECT_EQ(set.GetAbsolutePosition(), 29);
    EXPECT_EQ(Nr(set), 30);
    set.Requery();
    set.MoveLast();
    set.MoveFirst();
    EXPECT_EQ(Nr(set), 1);
    // A record added after MoveLast joins behind the record that was last.
    set.Requery();
    set.MoveLast();
    set.AddNew();
    set.SetFieldValue("Nr", COleVariant(31L));
    set.Update();
    EXPECT_EQ(Nr(set), 30);
    set.MoveNext();
    EXPECT_EQ(Nr(set), 31);
    set.Requery();
    set.MoveLast();
    EXPECT_EQ(set.GetRecordCount(), 31);
    set.MovePrev();
    EXPECT_EQ(Nr(set), 30);
}

TEST(DaoRecordset, MembersStayWhileOthersWriteAndRecordsReadAgainShowTheirChanges)
{
    dbtest::TempDir dir;
    const std::string file = MakeParts(dir, 10);
    CDaoDatabase db;
    db.Open(file.c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Nr]");
    EXPECT_EQ(Nr(set), 1);
    {
        // Another program: its own connection to the file.
        CDaoDatabase other;
        other.Open(file.c_str());
        other.Execute("INSERT INTO Parts (Nr, Name) VALUES (11, 'P11')");
        other.Execute("UPDATE Parts SET Name = 'changed' WHERE Nr = 5");
        other.Execute("DELETE FROM Parts WHERE Nr = 7");
    }
    // The walk goes on over the records as they were when the set opened.
    long count = 0;
    for (; !set.IsEOF(); set.MoveNext()) {
        ++count;
        if (Nr(set) == 5) {
            EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "P5");
        }
    }
    EXPECT_EQ(count, 10);
    // Read again, a record shows what was written since; a deleted one is
    // gone.
    set.SetAbsolutePosition(4);
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "changed");
    set.SetAbsolutePosition(6);
    EXPECT_EQ(ErrorOf([&] { set.GetFieldValue("Nr"); }), vx::kDaoRecordDeleted);
    set.Requery();
    EXPECT_EQ(set.GetRecordCount(), 10);
    set.MoveLast();
    EXPECT_EQ(Nr(set), 11);
}

TEST(DaoRecordset, WritesOfTheSameDatabaseLeaveTheMembersOfAWalk)
{
    dbtest::TempDir dir;
    const std::string file = MakeParts(dir, 20);
    CDaoDatabase db;
    db.Open(file.c_str());
    CDaoRecordset walker(&db);
    walker.Open(dbOpenDynaset, "SELECT * FROM [Parts]");
    walker.MoveNext();
    CDaoRecordset writer(&db);
    writer.Open(dbOpenDynaset, "SELECT * FROM [Parts] WHERE [Nr] = 15");
    writer.Edit();
    writer.SetFieldValue("Name", "edited");
    writer.Update();
    db.Execute("INSERT INTO Parts (Nr, Name) VALUES (21, 'P21')");
    EXPECT_EQ(Nr(walker), 2);
    walker.Edit();
    walker.SetFieldValue("Name", "second");
    walker.Update();
    long last = 0;
    for (walker.MoveNext(); !walker.IsEOF(); walker.MoveNext()) {
        last = Nr(walker);
        if (last == 15) {
            EXPECT_STREQ(walker.GetFieldValue("Name").bstrVal, "edited");
        }
    }
    EXPECT_EQ(last, 20);
    EXPECT_EQ(walker.GetRecordCount(), 20);
    walker.SetAbsolutePosition(1);
    EXPECT_STREQ(walker.GetFieldValue("Name").bstrVal, "second");
    // A transaction that is rolled back leaves the values as they were.
    db.m_pWorkspace->BeginTrans();
    walker.Edit();
    walker.SetFieldValue("Name", "undone");
    walker.Update();
    EXPECT_STREQ(walker.GetFieldValue("Name").bstrVal, "undone");
    db.m_pWorkspace->Rollback();
    EXPECT_STREQ(walker.GetFieldValue("Name").bstrVal, "second");
}

TEST(DaoRecordset, AnEditOfARecordAnotherProgramChangedIsRefused)
{
    dbtest::TempDir dir;
    const std::string file = MakeParts(dir, 3);
    CDaoDatabase mine, theirs;
    mine.Open(file.c_str());
    theirs.Open(file.c_str());
    CDaoRecordset set(&mine);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Nr]");
    set.MoveLast();
    set.MoveFirst();
    // The other program changes only the case: the file compares without
    // regard to case, the check must not.
    theirs.Execute("UPDATE Parts SET Name='p1' WHERE Nr=1");
    theirs.Execute("DELETE FROM Parts WHERE Nr=2");
    set.Edit();
    set.SetFieldValue("Nr", COleVariant(100L));
    EXPECT_EQ(ErrorOf([&] { set.Update(); }), 3197);
    set.CancelUpdate();
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "p1");
    set.MoveNext();
    // A record the other deleted: refused when it is read again or written.
    EXPECT_EQ(ErrorOf([&] {
                  set.Edit();
                  set.SetFieldValue("Name", "gone");
                  set.Update();
              }),
              3167);
    if (set.GetEditMode() != dbEditNone)
        set.CancelUpdate();
    // A record nobody else touched updates, and the others see it.
    set.MoveNext();
    set.Edit();
    set.SetFieldValue("Name", COleVariant("mine"));
    set.Update();
    CDaoRecordset check(&theirs);
    check.Open(dbOpenDynaset, "SELECT * FROM [Parts] WHERE [Nr] = 3");
    EXPECT_STREQ(check.GetFieldValue("Name").bstrVal, "mine");
}
