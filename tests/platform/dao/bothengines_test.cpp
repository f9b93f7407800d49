// What the DAO classes do the same on both engines: the same test bodies on
// a database file and on a database of a private PostgreSQL server.
#include "daotestutil.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daotabledef.h"
#include "platform/dao/daoworkspace.h"
#include "support/pgserver.h"

#include <sqlite3.h>

#include <cctype>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using daotest::kAllTypes;
using daotest::MakeAllTypes;
using dbtest::AddIndex;
using dbtest::DescriptionOf;
using dbtest::ErrorOf;
using dbtest::IndexKind;

// Runs `sql` on the SQLite file `file` as SQLite itself, past the engine,
// and hands the statement on its first row to `check`.
void InFile(const std::string& file, const char* sql, const std::function<void(sqlite3_stmt*)>& check)
{
    sqlite3* raw = nullptr;
    sqlite3_stmt* s = nullptr;
    if (sqlite3_open(file.c_str(), &raw) == SQLITE_OK && sqlite3_prepare_v2(raw, sql, -1, &s, nullptr) == SQLITE_OK &&
        sqlite3_step(s) == SQLITE_ROW)
        check(s);
    else
        ADD_FAILURE() << file << ": " << sqlite3_errmsg(raw);
    sqlite3_finalize(s);
    sqlite3_close(raw);
}

const char* TextOf(sqlite3_stmt* s, int column)
{
    return reinterpret_cast<const char*>(sqlite3_column_text(s, column));
}

// The engine by the name of the parameter: "File" or "Server".
class BothEngines : public dbtest::EngineTest {};

VX_ON_BOTH_ENGINES(BothEngines);

} // namespace

TEST_P(BothEngines, ReportsEveryFieldTypeAndLengthAfterReopening)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    CDaoTableDef def(&db);
    def.Open("all"); // names are found without regard to case
    EXPECT_EQ(def.GetName(), "All");
    ASSERT_EQ(def.GetFieldCount(), static_cast<short>(std::size(kAllTypes)));
    for (int i = 0; i < def.GetFieldCount(); ++i) {
        SCOPED_TRACE(kAllTypes[i].name);
        CDaoFieldInfo info;
        def.GetFieldInfo(i, info);
        EXPECT_EQ(info.m_strName, kAllTypes[i].name);
        EXPECT_EQ(info.m_nType, kAllTypes[i].type);
        EXPECT_EQ(info.m_lSize, kAllTypes[i].reportedSize);
        EXPECT_EQ((info.m_lAttributes & dbAutoIncrField) != 0, kAllTypes[i].attributes != 0);
    }
    EXPECT_EQ(ErrorOf([&] {
                  CDaoFieldInfo info;
                  def.GetFieldInfo("Missing", info);
              }),
              vx::kDaoItemNotFound);
}

TEST_P(BothEngines, KeepsEveryValueExactlyAndCountsRecords)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [All]");
    CY big;
    big.int64 = 922337203685477LL * 10000 + 5807; // the largest currency value
    const std::string bytes("\x00\x01\xFF\\x'\"", 7);
    for (int i = 0; i < 2; ++i) {
        set.AddNew();
        set.SetFieldValue("Flag", COleVariant(1));
        set.SetFieldValue("Small", COleVariant(255));
        set.SetFieldValue("Short", COleVariant(-32768));
        set.SetFieldValue("Count", COleVariant(2147483647L));
        set.SetFieldValue("Price", COleVariant(big));
        set.SetFieldValue("Ratio", COleVariant(0.1f));
        set.SetFieldValue("Exact", COleVariant(0.1 + 0.2));
        set.SetFieldValue("When", COleVariant(COleDateTime(2024, 3, 1, 12, 30, 0)));
        set.SetFieldValue("Name", "\xA3\xF3" "dka 'O\"Brien' \\n");
        set.SetFieldValue("Note", std::string(5000, 'm').c_str());
        COleVariant blob;
        blob.SetString(bytes.data(), bytes.size());
        set.SetFieldValue("Bytes", blob);
        set.Update();
    }
    db.Close();
    if (!IsServer()) {
        // In the file: an integer count of ten-thousandths and a real number.
        InFile(Db("all"), "SELECT Price, typeof(Price), \"When\", typeof(\"When\") FROM [All]", [&](sqlite3_stmt* s) {
            EXPECT_EQ(sqlite3_column_int64(s, 0), big.int64);
            EXPECT_STREQ(TextOf(s, 1), "integer");
            EXPECT_DOUBLE_EQ(sqlite3_column_double(s, 2), 45352.0 + 12.5 / 24.0);
            EXPECT_STREQ(TextOf(s, 3), "real");
        });
    }

    db.Open(Db("all").c_str());
    CDaoRecordset again(&db);
    again.Open(dbOpenDynaset, "SELECT * FROM [All] ORDER BY [Id]");
    again.MoveLast();
    EXPECT_EQ(again.GetRecordCount(), 2);
    COleVariant v;
    again.GetFieldValue("Flag", v);
    EXPECT_EQ(v.boolVal, VARIANT_TRUE);
    EXPECT_EQ(again.GetFieldValue("Small").bVal, 255);
    EXPECT_EQ(again.GetFieldValue("Short").iVal, -32768);
    EXPECT_EQ(again.GetFieldValue("Count").lVal, 2147483647L);
    again.GetFieldValue("Price", v);
    ASSERT_EQ(v.vt, VT_CY);
    EXPECT_EQ(v.cyVal.int64, big.int64);
    EXPECT_EQ(again.GetFieldValue("Ratio").fltVal, 0.1f);
    EXPECT_EQ(again.GetFieldValue("Exact").dblVal, 0.1 + 0.2);
    again.GetFieldValue("When", v);
    ASSERT_EQ(v.vt, VT_DATE);
    EXPECT_EQ(v.date, COleDateTime(2024, 3, 1, 12, 30, 0).m_dt);
    EXPECT_STREQ(again.GetFieldValue("Name").bstrVal, "\xA3\xF3" "dka 'O\"Brien' \\n");
    EXPECT_EQ(std::string(again.GetFieldValue("Note").bstrVal), std::string(5000, 'm'));
    again.GetFieldValue("Bytes", v);
    EXPECT_EQ(std::string(v.bstrVal, v.TextLength()), bytes);
    again.GetFieldValue("Id", v);
    EXPECT_EQ(v.vt, VT_I4);
    EXPECT_EQ(v.lVal, 2); // the counter numbered the records

    CDaoTableDef def(&db);
    def.Open("All");
    EXPECT_EQ(def.GetRecordCount(), 2);
}

TEST_P(BothEngines, TellsNullFromValueAndChecksWhatIsWritten)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [All]");
    EXPECT_TRUE(set.IsBOF() && set.IsEOF());
    EXPECT_EQ(ErrorOf([&] { set.MoveFirst(); }), vx::kDaoNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { set.SetFieldValue("Name", "x"); }), vx::kDaoUpdateWithoutEdit);
    set.AddNew();
    EXPECT_EQ(ErrorOf([&] { set.SetFieldValue("Name", std::string(41, 'x').c_str()); }), vx::kDaoFieldTooSmall);
    EXPECT_EQ(ErrorOf([&] { set.SetFieldValue("Small", COleVariant(300)); }), vx::kDaoNumericOverflow);
    EXPECT_EQ(ErrorOf([&] { set.SetFieldValue("Count", "twelve"); }), vx::kDaoConversionError);
    EXPECT_EQ(ErrorOf([&] { set.SetFieldValue("Id", COleVariant(5)); }), vx::kDaoFieldNotUpdatable);
    EXPECT_EQ(ErrorOf([&] { set.SetFieldValue("Nope", COleVariant(5)); }), vx::kDaoItemNotFound);
    set.SetFieldValue("Flag", COleVariant(1));
    set.SetFieldValue("Count", "12");
    set.SetFieldValue("Exact", "2,5"); // a decimal comma is read too
    set.SetFieldValue("Name", "");
    set.Update();
    set.MoveFirst();
    COleVariant v;
    set.GetFieldValue("Flag", v);
    EXPECT_EQ(v.vt, VT_BOOL);
    EXPECT_EQ(v.boolVal, VARIANT_TRUE);
    set.GetFieldValue("Count", v);
    EXPECT_EQ(v.lVal, 12);
    set.GetFieldValue("Exact", v);
    EXPECT_DOUBLE_EQ(v.dblVal, 2.5);
    set.GetFieldValue("Name", v);
    EXPECT_EQ(v.vt, VT_BSTR); // an empty text is a value, not a null
    EXPECT_STREQ(v.bstrVal, "");
    set.GetFieldValue("Note", v);
    EXPECT_EQ(v.vt, VT_NULL);
    set.GetFieldValue("Price", v);
    EXPECT_EQ(v.vt, VT_NULL);
}

TEST_P(BothEngines, ComparesTextWithoutRegardToCase)
{
    {
        CDaoDatabase db;
        db.Create(Db("t").c_str());
        CDaoTableDef def(&db);
        def.Create("Parts");
        def.CreateField("Name", dbText, 20);
        def.CreateField("Nr", dbLong, 4);
        def.Append();
        AddIndex(def, "ByName", "Name", IndexKind::Unique);
        db.Execute("INSERT INTO Parts (Name, Nr) VALUES ('motor', 1)");
        db.Execute("INSERT INTO [Parts] ([Name], [Nr]) VALUES (\"Lamp\", 2)");
        db.Execute("INSERT INTO [parts] ([name], [nr]) VALUES ('ZENER', 3)");
        EXPECT_EQ(ErrorOf([&] { db.Execute("INSERT INTO Parts (Name) VALUES ('MOTOR')"); }), vx::kDaoDuplicateKey);
    }
    CDaoDatabase db;
    db.Open(Db("t").c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] WHERE [Name] = 'MoToR'");
    ASSERT_FALSE(set.IsEOF());
    EXPECT_EQ(set.GetFieldValue("Nr").lVal, 1);
    CDaoRecordset sorted(&db);
    sorted.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Name]");
    std::string order;
    for (; !sorted.IsEOF(); sorted.MoveNext())
        order += std::to_string(sorted.GetFieldValue("Nr").lVal);
    EXPECT_EQ(order, "213");
    CDaoRecordset like(&db);
    like.Open(dbOpenDynaset, "SELECT * FROM [Parts] WHERE [Name] LIKE 'l%'");
    EXPECT_FALSE(like.IsEOF());
}

TEST_P(BothEngines, MovesThroughRecordsAsDaoDoes)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    for (int i = 1; i <= 3; ++i)
        db.Execute(("INSERT INTO [All] ([Count]) VALUES (" + std::to_string(i) + ")").c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [All] ORDER BY [Count] DESC");
    EXPECT_EQ(set.GetAbsolutePosition(), 0);
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 3);
    set.MoveLast();
    set.MoveNext();
    EXPECT_TRUE(set.IsEOF());
    EXPECT_EQ(set.GetAbsolutePosition(), -1);
    EXPECT_EQ(ErrorOf([&] { set.MoveNext(); }), vx::kDaoNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { set.GetFieldValue("Count"); }), vx::kDaoNoCurrentRecord);
    set.MovePrev();
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 1);
    EXPECT_EQ(ErrorOf([&] { set.SetAbsolutePosition(3); }), vx::kDaoInvalidArgument);
    set.SetAbsolutePosition(1);
    set.Delete();
    EXPECT_EQ(ErrorOf([&] { set.GetFieldValue("Count"); }), vx::kDaoRecordDeleted);
    set.MoveNext();
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 1);
    EXPECT_EQ(set.GetRecordCount(), 2);
    // A record added through the set joins it at the end; the position stays.
    set.AddNew();
    set.SetFieldValue("Count", COleVariant(7));
    set.Update();
    EXPECT_EQ(set.GetAbsolutePosition(), 1);
    set.MoveLast();
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 7);
    EXPECT_EQ(set.GetFieldValue("Id").lVal, 4);
}

TEST_P(BothEngines, ShowsChangesOfOtherRecordSetsAndOtherPrograms)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    db.Execute("INSERT INTO [All] ([Count]) VALUES (1)");
    CDaoRecordset reader(&db);
    reader.Open(dbOpenDynaset, "SELECT * FROM [All]");
    CDaoRecordset writer(&db);
    writer.Open(dbOpenDynaset, "SELECT * FROM [All]");
    writer.Edit();
    writer.SetFieldValue("Count", COleVariant(2));
    writer.Update();
    EXPECT_EQ(reader.GetFieldValue("Count").lVal, 2);

    // Another program's change and its new record show after Requery.
    CDaoDatabase other;
    other.Open(Db("all").c_str());
    other.Execute("UPDATE [All] SET [Count] = 5");
    other.Execute("INSERT INTO [All] ([Count]) VALUES (6)");
    reader.Requery();
    EXPECT_EQ(reader.GetFieldValue("Count").lVal, 5);
    reader.MoveLast();
    EXPECT_EQ(reader.GetRecordCount(), 2);
    db.Execute("DELETE FROM [All]");
    EXPECT_EQ(ErrorOf([&] { reader.GetFieldValue("Count"); }), vx::kDaoRecordDeleted);
}

TEST_P(BothEngines, RefusesAnEditOfARecordAnotherProgramChanged)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase mine, theirs;
    mine.Open(Db("all").c_str());
    theirs.Open(Db("all").c_str());
    for (int i = 1; i <= 3; ++i)
        mine.Execute(("INSERT INTO [All] ([Count], [Name], [Exact]) VALUES (" + std::to_string(i) + ", 'p', 0.1)")
                         .c_str());
    CDaoRecordset set(&mine);
    set.Open(dbOpenDynaset, "SELECT * FROM [All] ORDER BY [Count]");
    set.MoveLast();
    set.MoveFirst();
    // Only the case changes: the check must see it all the same.
    theirs.Execute("UPDATE [All] SET [Name] = 'P' WHERE [Count] = 1");
    theirs.Execute("DELETE FROM [All] WHERE [Count] = 2");
    set.Edit();
    set.SetFieldValue("Exact", COleVariant(2.5));
    EXPECT_EQ(ErrorOf([&] { set.Update(); }), vx::kDaoWriteConflict);
    set.CancelUpdate();
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "P");
    set.MoveNext();
    // A record the other deleted: refused when it is read again or written.
    EXPECT_EQ(ErrorOf([&] {
                  set.Edit();
                  set.SetFieldValue("Name", "gone");
                  set.Update();
              }),
              vx::kDaoRecordDeleted);
    if (set.GetEditMode() != dbEditNone)
        set.CancelUpdate();
    // A record nobody else touched updates, and the others see it.
    set.MoveNext();
    set.Edit();
    set.SetFieldValue("Name", "mine");
    set.Update();
    CDaoRecordset check(&theirs);
    check.Open(dbOpenDynaset, "SELECT * FROM [All] WHERE [Count] = 3");
    EXPECT_STREQ(check.GetFieldValue("Name").bstrVal, "mine");
    EXPECT_EQ(check.GetFieldValue("Exact").dblVal, 0.1);
}

TEST_P(BothEngines, TransactionsCommitOnceOrRollBack)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [All]");
    db.m_pWorkspace->BeginTrans();
    set.AddNew();
    set.SetFieldValue("Count", COleVariant(1));
    set.Update();
    db.m_pWorkspace->BeginTrans();
    set.AddNew();
    set.SetFieldValue("Count", COleVariant(3));
    set.Update();
    db.m_pWorkspace->Rollback();
    db.m_pWorkspace->Rollback();
    db.m_pWorkspace->BeginTrans();
    set.AddNew();
    set.SetFieldValue("Count", COleVariant(2));
    set.Update();
    db.m_pWorkspace->CommitTrans();
    EXPECT_EQ(ErrorOf([&] { db.m_pWorkspace->CommitTrans(); }), vx::kDaoNoTransaction);
    set.Requery();
    ASSERT_EQ(set.GetRecordCount(), 1);
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 2);
}

// A write, a read or a statement that fails inside a transaction is undone
// alone: the transaction goes on and commits the rest, as DAO's does.
TEST_P(BothEngines, AFailedStatementInATransactionIsUndoneAlone)
{
    CDaoDatabase db;
    db.Create(Db("t").c_str());
    {
        CDaoTableDef def(&db);
        def.Create("T");
        def.CreateField("Nr", dbLong, 4);
        def.CreateField("Name", dbText, 10);
        def.Append();
        AddIndex(def, "ByNr", "Nr", IndexKind::Unique);
    }
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [T]");
    const auto add = [&](long nr) {
        set.AddNew();
        set.SetFieldValue("Nr", COleVariant(nr));
        set.SetFieldValue("Name", "new");
        set.Update();
    };
    CDaoWorkspace* workspace = db.m_pWorkspace;
    workspace->BeginTrans();
    add(1);
    EXPECT_EQ(ErrorOf([&] { add(1); }), vx::kDaoDuplicateKey);
    set.CancelUpdate();
    CDaoRecordset bad(&db);
    EXPECT_NE(ErrorOf([&] { bad.Open(dbOpenDynaset, "SELECT * FROM [T] WHERE [Nowhere] = 1"); }), 0);
    EXPECT_EQ(ErrorOf([&] { db.Execute("INSERT INTO Nowhere (Nr) VALUES (1)"); }), vx::kDaoInputTableNotFound);
    workspace->BeginTrans();
    add(2);
    EXPECT_EQ(ErrorOf([&] { add(2); }), vx::kDaoDuplicateKey);
    set.CancelUpdate();
    workspace->CommitTrans();
    set.MoveFirst();
    set.Edit();
    set.SetFieldValue("Name", "edited");
    set.Update();
    add(3);
    EXPECT_EQ(ErrorOf([&] { workspace->CommitTrans(); }), 0);

    CDaoDatabase other;
    other.Open(Db("t").c_str());
    CDaoRecordset check(&other);
    check.Open(dbOpenDynaset, "SELECT * FROM [T] ORDER BY [Nr]");
    std::vector<std::string> seen;
    for (; !check.IsEOF(); check.MoveNext())
        seen.push_back(std::to_string(check.GetFieldValue("Nr").lVal) + " " +
                       check.GetFieldValue("Name").bstrVal);
    EXPECT_EQ(seen, (std::vector<std::string>{"1 edited", "2 new", "3 new"}));
}

TEST_P(BothEngines, StoresQueriesAndTakesJetsTexts)
{
    MakeAllTypes(Db("all"));
    CDaoDatabase db;
    db.Open(Db("all").c_str());
    db.Execute("INSERT INTO [All] ([Count], [Name]) VALUES (1, 'O''Brien')");
    db.Execute("INSERT INTO [All] ([Count], [Name]) VALUES (2, 'Smith')");
    EXPECT_EQ(db.GetRecordsAffected(), 1);
    EXPECT_EQ(ErrorOf([&] { db.Execute("SELECT * FROM [All]"); }), 3065);
    CDaoQueryDef q(&db);
    q.Create("Irish", "SELECT * FROM [All] WHERE [Name] = \"O'Brien\"");
    q.Append();
    CDaoQueryDef update(&db);
    update.Create("Bump", "UPDATE [All] SET [Count] = [Count] + 10");
    update.Append();
    db.Close();

    db.Open(Db("all").c_str());
    ASSERT_EQ(db.GetQueryDefCount(), 2);
    CDaoQueryDefInfo info;
    db.GetQueryDefInfo(0, info, AFX_DAO_ALL_INFO);
    EXPECT_EQ(info.m_strName, "Bump");
    EXPECT_EQ(info.m_nType, dbQUpdate);
    db.GetQueryDefInfo("irish", info, AFX_DAO_ALL_INFO);
    EXPECT_EQ(info.m_nType, dbQSelect);
    EXPECT_EQ(info.m_strSQL, "SELECT * FROM [All] WHERE [Name] = \"O'Brien\"");
    CDaoQueryDef bump(&db);
    bump.Open("Bump");
    bump.Execute();
    EXPECT_EQ(bump.GetRecordsAffected(), 2);
    CDaoQueryDef irish(&db);
    irish.Open("Irish");
    CDaoRecordset set(&db);
    set.Open(&irish);
    EXPECT_EQ(set.GetRecordCount(), 1);
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 11);
    // A single-table query can be edited through its record set.
    set.Edit();
    set.SetFieldValue("Count", COleVariant(99));
    set.Update();
    EXPECT_EQ(set.GetFieldValue("Count").lVal, 99);
    CDaoTableDefInfo table;
    db.GetTableDefInfo("MSysVxObjects", table);
    EXPECT_EQ(table.m_lAttributes, dbSystemObject);
    if (!IsServer()) // a select query is a view of SQLite's own
        InFile(Db("all"), "SELECT \"Count\" FROM Irish", [](sqlite3_stmt* s) { EXPECT_EQ(sqlite3_column_int(s, 0), 99); });
}

TEST_P(BothEngines, AddsFieldsIndexesAndCountersToTablesWithRecords)
{
    {
        CDaoDatabase db;
        db.Create(Db("t").c_str());
        CDaoTableDef def(&db);
        def.Create("T");
        def.CreateField("Name", dbText, 10);
        def.Append();
        db.Execute("INSERT INTO T (Name) VALUES ('a')");
        db.Execute("INSERT INTO T (Name) VALUES ('b')");
        db.Execute("INSERT INTO T (Name) VALUES ('c')");
        db.Execute("DELETE FROM T WHERE Name = 'b'");
        def.CreateField("Qty", dbInteger, 2);
        def.CreateField("Id", dbLong, 4, dbAutoIncrField);
        EXPECT_EQ(ErrorOf([&] { def.CreateField("qty", dbLong, 4); }), vx::kDaoFieldDefinedTwice);
        AddIndex(def, "ByName", "Name", IndexKind::Primary);
        EXPECT_EQ(ErrorOf([&] { AddIndex(def, "ByName", "Name", IndexKind::Primary); }), vx::kDaoIndexExists);
        EXPECT_EQ(ErrorOf([&] { def.DeleteField("Name"); }), vx::kDaoFieldInIndex);
        EXPECT_EQ(ErrorOf([&] { db.Execute("INSERT INTO T (Name) VALUES ('C')"); }), vx::kDaoDuplicateKey);
    }
    CDaoDatabase db;
    db.Open(Db("t").c_str());
    CDaoTableDef def(&db);
    def.Open("T");
    CDaoIndexInfo index;
    def.GetIndexInfo("ByName", index);
    EXPECT_TRUE(index.m_bPrimary);
    EXPECT_TRUE(index.m_bUnique);
    ASSERT_EQ(index.m_nFields, 1);
    EXPECT_EQ(index.m_pFieldInfos[0].m_strName, "Name");
    EXPECT_EQ(def.GetIndexCount(), 1);
    CDaoRecordset set(&db);
    set.Open(&def);
    ASSERT_EQ(set.GetRecordCount(), 2);
    // The counter numbered the records in the order they were added.
    set.MoveLast();
    EXPECT_EQ(set.GetFieldValue("Id").lVal, 3);
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "c");
    set.AddNew();
    set.SetFieldValue("Name", "d");
    set.Update();
    set.MoveLast();
    // Numbers on; on the server the refused record took its number with it.
    EXPECT_GE(set.GetFieldValue("Id").lVal, 4);
}

TEST_P(BothEngines, RequiredFieldsAndDefaults)
{
    CDaoDatabase db;
    db.Create(Db("t").c_str());
    CDaoTableDef def(&db);
    def.Create("T");
    CDaoFieldInfo name;
    name.m_strName = "Name";
    name.m_nType = dbText;
    name.m_lSize = 10;
    name.m_bRequired = TRUE;
    def.CreateField(name);
    CDaoFieldInfo qty;
    qty.m_strName = "Qty";
    qty.m_nType = dbLong;
    qty.m_lSize = 4;
    qty.m_strDefaultValue = "7";
    def.CreateField(qty);
    def.Append();
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [T]");
    set.AddNew();
    set.SetFieldValue("Qty", COleVariant(1));
    EXPECT_EQ(ErrorOf([&] { set.Update(); }), vx::kDaoRequiredField);
    set.CancelUpdate();
    set.AddNew();
    set.SetFieldValue("Name", "x");
    set.Update();
    set.MoveLast();
    EXPECT_EQ(set.GetFieldValue("Qty").lVal, 7);
    CDaoFieldInfo info;
    def.GetFieldInfo("Qty", info, AFX_DAO_ALL_INFO);
    EXPECT_EQ(info.m_strDefaultValue, "7");
    def.GetFieldInfo("Name", info, AFX_DAO_ALL_INFO);
    EXPECT_TRUE(info.m_bRequired);
}

// Names with quotes and semicolons are names, never statements.
TEST_P(BothEngines, TakesQuotesAndSemicolonsInNames)
{
    const char* table = "Bob's \"parts\"; DROP TABLE Keep; --";
    const char* field = "a\"b';c";
    CDaoDatabase db;
    db.Create(Db("t").c_str());
    for (const char* name : {"Keep", table}) {
        CDaoTableDef def(&db);
        def.Create(name);
        def.CreateField(field, dbText, 40);
        def.Append();
    }
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, (std::string("SELECT * FROM [") + table + "]").c_str());
    set.AddNew();
    set.SetFieldValue(field, "'; DELETE FROM Keep; --");
    set.Update();
    set.Requery();
    EXPECT_STREQ(set.GetFieldValue(field).bstrVal, "'; DELETE FROM Keep; --");
    EXPECT_EQ(db.GetTableDefCount() >= 2, true);
    CDaoTableDef keep(&db);
    keep.Open("Keep");
    EXPECT_EQ(keep.GetFieldCount(), 1);
}

// A query's "SELECT *" gives the tables' fields, and nothing the engine
// keeps beside them.
TEST_P(BothEngines, SelectStarGivesTheFieldsOnly)
{
    CDaoDatabase db;
    db.Create(Db("t").c_str());
    for (const char* table : {"Parts", "Orders"}) {
        CDaoTableDef def(&db);
        def.Create(table);
        def.CreateField("Nr", dbLong, 4);
        def.CreateField(std::string(table) == "Parts" ? "Name" : "Qty", dbText, 10);
        def.Append();
    }
    db.Execute("INSERT INTO Parts (Nr, Name) VALUES (1, 'Motor')");
    db.Execute("INSERT INTO Orders (Nr, Qty) VALUES (1, '5')");
    CDaoRecordset set(&db);
    set.Open(dbOpenSnapshot, "SELECT * FROM Parts INNER JOIN Orders ON Parts.Nr = Orders.Nr");
    ASSERT_EQ(set.GetFieldCount(), 4);
    std::vector<std::string> names;
    for (short i = 0; i < 4; ++i) {
        CDaoFieldInfo info;
        set.GetFieldInfo(i, info);
        std::string name = info.m_strName.StdString();
        for (char& c : name)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        names.push_back(name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"nr", "name", "nr", "qty"}));
    EXPECT_STREQ(set.GetFieldValue(1).bstrVal, "Motor");
    EXPECT_STREQ(set.GetFieldValue(3).bstrVal, "5");
}

// --- the server only --------------------------------------------------------------

namespace {

class Server : public dbtest::ServerTest {};

} // namespace

TEST_F(Server, ReachesADatabaseByEveryFormOfConnectText)
{
    const std::string name = server->FreshName("forms");
    {
        CDaoDatabase db;
        db.Create(server->Connect(name).c_str());
        CDaoTableDef def(&db);
        def.Create("T");
        def.CreateField("Nr", dbLong, 4);
        def.Append();
    }
    for (const char* form : {"odbc", "libpq", "uri"}) {
        SCOPED_TRACE(form);
        CDaoDatabase db;
        db.Open(server->Connect(name, form).c_str());
        CDaoTableDef def(&db);
        def.Open("t");
        EXPECT_EQ(def.GetFieldCount(), 1);
    }
    // The connect text may come as DAO passes it too: the name empty.
    CDaoDatabase db;
    db.Open("", FALSE, FALSE, server->Connect(name).c_str());
    EXPECT_TRUE(db.IsOpen());
    EXPECT_EQ(ErrorOf([&] { CDaoDatabase().Create(server->Connect(name).c_str()); }), vx::kDaoDatabaseExists);
}

TEST_F(Server, RefusesBadConnectsWithDaosErrorsAndNeverShowsThePassword)
{
    ASSERT_TRUE(server->Psql("DO $$BEGIN CREATE ROLE anna LOGIN PASSWORD 'Secret42'; EXCEPTION WHEN duplicate_object "
                             "THEN NULL; END$$"));
    const std::string dir = server->SocketDir();
    const std::string base = "ODBC;SERVER=" + dir + ";PORT=5432;DATABASE=postgres;";
    struct Case {
        std::string text;
        long error;
    } cases[] = {
        {base + "UID=anna;PWD=Wrong99", vx::kDaoInvalidAccount},
        {base + "UID=anna", vx::kDaoInvalidPassword},
        {base + "UID=anna;PWD=Secret42;COLOUR=blue", vx::kDaoServerUnreachable},
        {"ODBC;SERVER=" + dir + ";PORT=5432;UID=postgres;PWD=Secret42;DATABASE=nothere", vx::kDaoFileNotFound},
        {"ODBC;SERVER=/nonexistent;UID=anna;PWD=Secret42;DATABASE=x", vx::kDaoServerUnreachable},
        {"ODBC;host=" + dir + " port=5432 dbname=postgres user=anna password=Wrong99", vx::kDaoInvalidAccount},
        {"ODBC;postgresql://anna:Wrong99@/postgres?host=" + dir + "&port=5432", vx::kDaoInvalidAccount},
        {"ODBC;host=x password=Secret42 colour=blue", vx::kDaoServerUnreachable},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        CDaoDatabase db;
        EXPECT_EQ(ErrorOf([&] { db.Open(c.text.c_str()); }), c.error);
        const std::string text = DescriptionOf([&] { db.Open(c.text.c_str()); });
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find("Secret42"), std::string::npos) << text;
        EXPECT_EQ(text.find("Wrong99"), std::string::npos) << text;
    }
    CDaoDatabase db;
    db.Open((base + "UID=anna;PWD={Secret42}").c_str());
    EXPECT_TRUE(db.IsOpen());
    EXPECT_EQ(db.GetConnect().StdString().find("Secret42"), std::string::npos);
}

// The server keeps names of at most 63 bytes (DAO's may have 64): a longer
// one is refused rather than cut short; an index's name, which the server
// stores with a suffix, comes back whole up to DAO's limit.
TEST_F(Server, RefusesNamesTooLongForTheServerAndKeepsLongIndexNames)
{
    CDaoDatabase db;
    db.Create(server->Connect(server->FreshName("names")).c_str());
    const std::string longest(63, 't'), tooLong(64, 't');
    CDaoTableDef def(&db);
    def.Create(tooLong.c_str());
    def.CreateField("Nr", dbLong, 4);
    EXPECT_EQ(ErrorOf([&] { def.Append(); }), vx::kDaoInvalidName);
    CDaoTableDef good(&db);
    good.Create(longest.c_str());
    good.CreateField(std::string(63, 'f').c_str(), dbLong, 4);
    good.Append();
    EXPECT_EQ(ErrorOf([&] { good.CreateField(std::string(64, 'g').c_str(), dbLong, 4); }), vx::kDaoInvalidName);
    const std::string indexName = "Index" + std::string(58, 'i');
    const std::string fieldName(63, 'f');
    AddIndex(good, indexName.c_str(), fieldName.c_str(), IndexKind::Primary);
    const std::string tooLongIndex = "Index" + std::string(59, 'j');
    EXPECT_EQ(ErrorOf([&] { AddIndex(good, tooLongIndex.c_str(), fieldName.c_str(), IndexKind::Plain); }),
              vx::kDaoInvalidName);

    CDaoTableDef again(&db);
    again.Open(longest.c_str());
    ASSERT_EQ(again.GetIndexCount(), 1);
    CDaoIndexInfo read;
    again.GetIndexInfo(0, read);
    EXPECT_EQ(read.m_strName.StdString(), indexName);
    EXPECT_TRUE(read.m_bPrimary);
    EXPECT_EQ(ErrorOf([&] { again.Open(tooLong.c_str()); }), vx::kDaoItemNotFound);
}

// A server that stops while a query runs, with a record set open in the
// middle of an edit and a transaction begun: every call after it is 3151
// at once (the connection is gone, nothing is waited for), and closing
// everything afterwards is quiet.
TEST(ServerStopping, EveryCallAfterItIsError3151)
{
    std::string why;
    auto own = vxtest::PgServer::StartOwn(&why);
    if (!own)
        GTEST_SKIP() << "no PostgreSQL cluster of the test's own: " << why;
    const std::string connect = own->Connect("stops");
    CDaoDatabase db;
    db.Create(connect.c_str());
    {
        CDaoTableDef def(&db);
        def.Create("Parts");
        def.CreateField("Nr", dbLong, 4);
        def.CreateField("Name", dbText, 20);
        def.Append();
    }
    db.Execute("INSERT INTO Parts (Nr, Name) VALUES (1, 'Motor')");
    db.Execute("INSERT INTO Parts (Nr, Name) VALUES (2, 'Lamp')");
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Nr]");
    set.Edit();
    set.SetFieldValue("Name", "Relay");
    CDaoWorkspace* workspace = db.m_pWorkspace;
    workspace->BeginTrans();
    db.Execute("INSERT INTO Parts (Nr, Name) VALUES (3, 'Fuse')");

    // The server stops once the query is seen running (or after half a
    // minute of looking, when the query then ends on its own and the test
    // fails below rather than hangs).
    std::thread stopper([&] {
        const std::string running = "DO $$BEGIN IF NOT EXISTS (SELECT 1 FROM pg_stat_activity WHERE state = 'active' "
                                    "AND query LIKE '%pg_sleep(120)%' AND pid <> pg_backend_pid()) THEN "
                                    "RAISE 'not yet'; END IF; END$$";
        for (int i = 0; i < 300 && !own->Psql(running); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        own->Halt();
    });
    CDaoRecordset slow(&db);
    const long midQuery = ErrorOf([&] { slow.Open(dbOpenSnapshot, "SELECT pg_sleep(120) AS Pause"); });
    stopper.join();
    EXPECT_EQ(midQuery, vx::kDaoServerUnreachable);
    EXPECT_FALSE(slow.IsOpen());

    // The open set keeps its edit; writing it fails, and so does reading a
    // record again (the database changed since the set read it).
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "Relay");
    EXPECT_EQ(ErrorOf([&] { set.Update(); }), vx::kDaoServerUnreachable);
    EXPECT_EQ(set.GetEditMode(), dbEditInProgress);
    set.MoveNext();
    EXPECT_EQ(ErrorOf([&] { set.GetFieldValue("Nr"); }), vx::kDaoServerUnreachable);
    EXPECT_EQ(ErrorOf([&] { set.Requery(); }), vx::kDaoServerUnreachable);
    EXPECT_EQ(ErrorOf([&] { db.Execute("DELETE FROM Parts"); }), vx::kDaoServerUnreachable);
    EXPECT_EQ(ErrorOf([&] { workspace->CommitTrans(); }), vx::kDaoServerUnreachable);
    EXPECT_EQ(ErrorOf([&] { workspace->Rollback(); }), vx::kDaoNoTransaction); // the transaction is over
    EXPECT_EQ(ErrorOf([&] { CDaoTableDef(&db).Open("Parts"); }), vx::kDaoServerUnreachable);
    const std::string description = DescriptionOf([&] { db.Execute("DELETE FROM Parts"); });
    EXPECT_NE(description.find("ODBC--connection to"), std::string::npos) << description;
    set.Close();
    db.Close();
    EXPECT_FALSE(db.IsOpen());

    // A server that is gone is refused at once on opening.
    CDaoDatabase again;
    EXPECT_EQ(ErrorOf([&] { again.Open(connect.c_str()); }), vx::kDaoServerUnreachable);
}
