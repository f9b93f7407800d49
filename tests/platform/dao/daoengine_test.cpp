// The engine in place of DAO: what it keeps in the file and reports back.
#include "database/dbtestutil.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daotabledef.h"
#include "platform/dao/daoworkspace.h"
#include "support/testlocale.h"

#include <sqlite3.h>

#include <cctype>

namespace {

long ErrorOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (CDaoException& e) {
        return e.m_pErrorInfo->m_lErrorCode;
    }
    return 0;
}

struct FieldSpec {
    const char* name;
    short type;
    long size;
    long attributes;
    long reportedSize;
};

const FieldSpec kAllTypes[] = {
    {"Flag", dbBoolean, 1, 0, 1},     {"Small", dbByte, 1, 0, 1},    {"Short", dbInteger, 2, 0, 2},
    {"Count", dbLong, 4, 0, 4},       {"Price", dbCurrency, 8, 0, 8}, {"Ratio", dbSingle, 4, 0, 4},
    {"Exact", dbDouble, 8, 0, 8},     {"When", dbDate, 8, 0, 8},      {"Name", dbText, 40, 0, 40},
    {"Note", dbMemo, 0, 0, 0},        {"Id", dbLong, 4, dbAutoIncrField, 4},
};

void MakeAllTypes(const std::string& file)
{
    CDaoDatabase db;
    db.Create(file.c_str());
    CDaoTableDef def(&db);
    def.Create("All");
    for (const auto& f : kAllTypes)
        def.CreateField(f.name, f.type, f.size, f.attributes);
    def.Append();
}

} // namespace

TEST(DaoEngine, KeepsCurrencyExactAndDatesAsDoubles)
{
    dbtest::TempDir dir;
    MakeAllTypes(dir / "all.mdb");
    CDaoDatabase db;
    db.Open((dir / "all.mdb").c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [All]");
    set.AddNew();
    CY big;
    big.int64 = 922337203685477LL * 10000 + 5807; // the largest currency value
    set.SetFieldValue("Price", COleVariant(big));
    set.SetFieldValue("When", COleVariant(COleDateTime(2024, 3, 1, 12, 30, 0)));
    set.Update();
    db.Close();

    // In the file: an integer count of ten-thousandths and a real number.
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open((dir / "all.mdb").c_str(), &raw), SQLITE_OK);
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(raw, "SELECT Price, typeof(Price), \"When\", typeof(\"When\") FROM [All]", -1, &s, nullptr);
    ASSERT_EQ(sqlite3_step(s), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int64(s, 0), big.int64);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(s, 1)), "integer");
    EXPECT_DOUBLE_EQ(sqlite3_column_double(s, 2), 45352.0 + 12.5 / 24.0);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(s, 3)), "real");
    sqlite3_finalize(s);
    sqlite3_close(raw);

    db.Open((dir / "all.mdb").c_str());
    CDaoRecordset again(&db);
    again.Open(dbOpenDynaset, "SELECT * FROM [All]");
    COleVariant v;
    again.GetFieldValue("Price", v);
    ASSERT_EQ(v.vt, VT_CY);
    EXPECT_EQ(v.cyVal.int64, big.int64);
    again.GetFieldValue("When", v);
    ASSERT_EQ(v.vt, VT_DATE);
    EXPECT_EQ(COleDateTime(v.date).GetMinute(), 30);
    again.GetFieldValue("Id", v);
    EXPECT_EQ(v.vt, VT_I4);
    EXPECT_EQ(v.lVal, 1); // the counter numbered the record
}

TEST(DaoEngine, TellsNullFromValueAndChecksWhatIsWritten)
{
    dbtest::TempDir dir;
    MakeAllTypes(dir / "all.mdb");
    CDaoDatabase db;
    db.Open((dir / "all.mdb").c_str());
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

TEST(DaoEngine, RaisesDaoErrorNumbersOnOpen)
{
    dbtest::TempDir dir;
    CDaoDatabase db;
    EXPECT_EQ(ErrorOf([&] { db.Open((dir / "none.mdb").c_str()); }), vx::kDaoFileNotFound);
    EXPECT_EQ(ErrorOf([&] { db.Open((dir / "no/such/dir.mdb").c_str()); }), vx::kDaoInvalidPath);
    dbtest::WriteBytes(dir / "empty.mdb", "");
    EXPECT_EQ(ErrorOf([&] { db.Open((dir / "empty.mdb").c_str()); }), vx::kDaoUnrecognizedFormat);
    EXPECT_EQ(ErrorOf([&] { db.Open((dir / "x.xls").c_str(), FALSE, FALSE, "Lotus 1-2-3"); }),
              vx::kDaoNoInstallableIsam);
    MakeAllTypes(dir / "all.mdb");
    EXPECT_EQ(ErrorOf([&] { db.Create((dir / "all.mdb").c_str()); }), vx::kDaoDatabaseExists);
    EXPECT_FALSE(db.IsOpen());
}

TEST(DaoEngine, KeepsTheLocaleWithTheFile)
{
    dbtest::TempDir dir;
    {
        CDaoDatabase db;
        db.Create((dir / "l.mdb").c_str(), ";LANGID=0x0415;CP=1250;COUNTRY=0");
    }
    CDaoDatabase db;
    db.Open((dir / "l.mdb").c_str(), FALSE, TRUE);
    EXPECT_EQ(db.GetLocale(), ";LANGID=0x0415;CP=1250;COUNTRY=0");
    // The catalogue is a system table, which a table list shows as such.
    CDaoTableDefInfo info;
    db.GetTableDefInfo("MSysVxProperties", info);
    EXPECT_EQ(info.m_lAttributes, dbSystemObject);
}

TEST(DaoEngine, StoresSelectQueriesAsViewsAndTakesBrackets)
{
    dbtest::TempDir dir;
    MakeAllTypes(dir / "all.mdb");
    CDaoDatabase db;
    db.Open((dir / "all.mdb").c_str());
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

    db.Open((dir / "all.mdb").c_str());
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

    // The view is SQLite's own.
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open((dir / "all.mdb").c_str(), &raw), SQLITE_OK);
    sqlite3_stmt* s = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(raw, "SELECT \"Count\" FROM Irish", -1, &s, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(s), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(s, 0), 99);
    sqlite3_finalize(s);
    sqlite3_close(raw);
}

TEST(DaoEngine, MovesThroughRecordsAsDaoDoes)
{
    dbtest::TempDir dir;
    MakeAllTypes(dir / "all.mdb");
    CDaoDatabase db;
    db.Open((dir / "all.mdb").c_str());
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

TEST(DaoEngine, ShowsChangesOfOtherRecordSetsOfTheSameDatabase)
{
    dbtest::TempDir dir;
    MakeAllTypes(dir / "all.mdb");
    CDaoDatabase db;
    db.Open((dir / "all.mdb").c_str());
    db.Execute("INSERT INTO [All] ([Count]) VALUES (1)");
    CDaoRecordset reader(&db);
    reader.Open(dbOpenDynaset, "SELECT * FROM [All]");
    CDaoRecordset writer(&db);
    writer.Open(dbOpenDynaset, "SELECT * FROM [All]");
    writer.Edit();
    writer.SetFieldValue("Count", COleVariant(2));
    writer.Update();
    EXPECT_EQ(reader.GetFieldValue("Count").lVal, 2);
    db.Execute("DELETE FROM [All]");
    EXPECT_EQ(ErrorOf([&] { reader.GetFieldValue("Count"); }), vx::kDaoRecordDeleted);
}

TEST(DaoEngine, AddsFieldsAndIndexesToExistingTables)
{
    dbtest::TempDir dir;
    {
        CDaoDatabase db;
        db.Create((dir / "t.mdb").c_str());
        CDaoTableDef def(&db);
        def.Create("T");
        def.CreateField("Name", dbText, 10);
        def.Append();
        db.Execute("INSERT INTO T (Name) VALUES ('a')");
        db.Execute("INSERT INTO T (Name) VALUES ('b')");
        db.Execute("INSERT INTO T (Name) VALUES ('c')");
        db.Execute("DELETE FROM T WHERE Name = 'b'");
        def.CreateField("Qty", dbInteger, 2);
        def.CreateField("Id", dbLong, 4, dbAutoIncrField); // the table is built anew
        EXPECT_EQ(ErrorOf([&] { def.CreateField("qty", dbLong, 4); }), vx::kDaoFieldDefinedTwice);
        CDaoIndexFieldInfo field{"Name", FALSE};
        CDaoIndexInfo index;
        index.m_strName = "ByName";
        index.m_pFieldInfos = &field;
        index.m_nFields = 1;
        index.m_bPrimary = TRUE;
        def.CreateIndex(index);
        EXPECT_EQ(ErrorOf([&] { def.CreateIndex(index); }), vx::kDaoIndexExists);
        EXPECT_EQ(ErrorOf([&] { def.DeleteField("Name"); }), vx::kDaoFieldInIndex);
        EXPECT_EQ(ErrorOf([&] { db.Execute("INSERT INTO T (Name) VALUES ('C')"); }), vx::kDaoDuplicateKey);
    }
    CDaoDatabase db;
    db.Open((dir / "t.mdb").c_str());
    CDaoTableDef def(&db);
    def.Open("T");
    CDaoIndexInfo index;
    def.GetIndexInfo("ByName", index);
    EXPECT_TRUE(index.m_bPrimary);
    EXPECT_TRUE(index.m_bUnique);
    ASSERT_EQ(index.m_nFields, 1);
    EXPECT_EQ(index.m_pFieldInfos[0].m_strName, "Name");
    CDaoRecordset set(&db);
    set.Open(&def);
    ASSERT_EQ(set.GetRecordCount(), 2);
    // The counter took each record's row id, so the records kept their identity.
    set.MoveLast();
    EXPECT_EQ(set.GetFieldValue("Id").lVal, 3);
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "c");
}

TEST(DaoEngine, ReadOnlyAndExclusiveOpens)
{
    dbtest::TempDir dir;
    MakeAllTypes(dir / "all.mdb");
    {
        CDaoDatabase db;
        db.Open((dir / "all.mdb").c_str(), FALSE, TRUE);
        EXPECT_FALSE(db.CanUpdate());
        CDaoRecordset set(&db);
        set.Open(dbOpenDynaset, "SELECT * FROM [All]");
        EXPECT_EQ(ErrorOf([&] { set.AddNew(); }), vx::kDaoReadOnly);
        EXPECT_EQ(ErrorOf([&] { db.Execute("DELETE FROM [All]"); }), vx::kDaoReadOnly);
    }
    {
        CDaoDatabase exclusive;
        exclusive.Open((dir / "all.mdb").c_str(), TRUE, FALSE);
        CDaoDatabase other;
        EXPECT_EQ(ErrorOf([&] { other.Open((dir / "all.mdb").c_str()); }), vx::kDaoFileInUse);
    }
    CDaoDatabase after;
    after.Open((dir / "all.mdb").c_str());
    EXPECT_TRUE(after.IsOpen());
}

// A Qt host runs under the locale of the session. Names compare as SQLite's
// NOCASE tells them apart whatever that locale is: ASCII letters fold, bytes
// of 0x80 and above never, so "Łódka" and "łÓDKA" are two tables, and "Łx"
// and "łX" two fields.
TEST(DaoEngine, FoldsOnlyAsciiLettersOfNamesUnderASingleByteLocale)
{
    vxtest::SingleByteLocale polish;
    if (!polish.Active())
        GTEST_SKIP() << polish.Why();
    ASSERT_EQ(std::tolower(0xA3), 0xB3) << "the C library folds \"Ł\" in this locale";
    dbtest::TempDir dir;
    const std::string file = dir / "boats.mdb";
    {
        CDaoDatabase db;
        db.Create(file.c_str());
        db.Execute("CREATE TABLE [\xA3\xF3" "dka] ([Pole] LONG)");
        db.Execute("CREATE TABLE [\xB3\xD3" "DKA] ([\xA3x] LONG, [\xB3X] LONG)");
        db.Execute("INSERT INTO [\xB3\xD3" "DKA] VALUES (1, 2)");
    }
    CDaoDatabase db;
    db.Open(file.c_str());
    CDaoTableDef boat(&db);
    boat.Open("\xA3\xF3" "DKA");
    EXPECT_EQ(boat.GetName(), "\xA3\xF3" "dka");
    EXPECT_EQ(boat.GetFieldCount(), 1);
    CDaoTableDef other(&db);
    other.Open("\xB3\xD3" "dka");
    EXPECT_EQ(other.GetName(), "\xB3\xD3" "DKA");
    ASSERT_EQ(other.GetFieldCount(), 2);
    CDaoFieldInfo info;
    other.GetFieldInfo("\xB3x", info);
    EXPECT_EQ(info.m_strName, "\xB3X");

    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [\xB3\xD3" "dka]");
    // The set looks at the field after the last one found first.
    EXPECT_EQ(set.GetFieldValue("\xA3X").lVal, 1);
    EXPECT_EQ(set.GetFieldValue("\xA3X").lVal, 1);
    EXPECT_EQ(set.GetFieldValue("\xB3x").lVal, 2);
    EXPECT_EQ(set.GetFieldValue("\xB3x").lVal, 2);
}
