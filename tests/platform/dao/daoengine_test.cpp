// The file engine's own ways (what both engines do alike is in
// bothengines_test.cpp): errors of opening files, the locale kept in the
// file, read-only and exclusive opens, and names under a single-byte locale.
#include "daotestutil.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daotabledef.h"
#include "support/testlocale.h"

#include <cctype>

namespace {

using daotest::MakeAllTypes;
using dbtest::ErrorOf;

} // namespace

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
