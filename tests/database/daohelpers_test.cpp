// The free functions over the database classes: results and messages.
#include "dbtestutil.h"

#include "base/libraryframe.h"
#include "database/daohelpers.h"
#include "platform/dao/daorecordset.h"

#include <sys/stat.h>

namespace {

std::string Text(int id)
{
    return GetString(id).StdString();
}

void MakeDatabase(const std::string& file)
{
    CDaoDatabase db;
    db.Create(file.c_str());
    CDaoTableDef def(&db);
    def.Create("Parts");
    def.CreateField("Nr", dbLong, 4);
    def.Append();
    db.Execute("INSERT INTO Parts (Nr) VALUES (42)");
}

// The helpers over a database file and over a server database alike.
class Helpers : public dbtest::EngineTest {};

VX_ON_BOTH_ENGINES(Helpers);

} // namespace

TEST(OpenDatabase, GivesZeroForAMissingFileAndShowsOnlyWhenAsked)
{
    dbtest::TempDir dir;
    dbtest::Boxes boxes;
    CDaoDatabase* db = nullptr;
    EXPECT_EQ(openDatabase(&db, (dir / "none.mdb").c_str(), 0, 0), 0);
    EXPECT_EQ(db, nullptr);
    EXPECT_TRUE(boxes.texts.empty());
    EXPECT_EQ(openDatabase(&db, (dir / "none.mdb").c_str(), 1, 0), 0);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0], Text(6713) + "Could not find file '" + (dir / "none.mdb") + "'.");
    showerrorDatabase = 0;
    EXPECT_EQ(openDatabase(&db, (dir / "none.mdb").c_str(), 1, 0), 0);
    showerrorDatabase = 1;
    EXPECT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(openDatabase(nullptr, (dir / "none.mdb").c_str(), 1, 0), -1);
}

TEST(OpenDatabase, OpensAFileAndReplacesAnOpenDatabase)
{
    dbtest::TempDir dir;
    MakeDatabase(dir / "a.mdb");
    MakeDatabase(dir / "b.mdb");
    CDaoDatabase* db = nullptr;
    ASSERT_EQ(openDatabase(&db, (dir / "a.mdb").c_str(), 1, 0), 1);
    CDaoDatabase* first = db;
    ASSERT_EQ(openDatabase(&db, (dir / "b.mdb").c_str(), 1, 1), 1);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->GetName(), (dir / "b.mdb").c_str());
    (void)first; // freed by the second call; ASan would see a leak otherwise
    closeDatabase(&db);
    EXPECT_EQ(db, nullptr);
    closeDatabase(&db); // a null pointer is fine
}

TEST(OpenDatabase, GivesMinusOneAndTheMessageForAFileOfRandomBytes)
{
    dbtest::TempDir dir;
    std::string noise(4096, 0);
    unsigned x = 12345;
    for (char& c : noise)
        c = static_cast<char>((x = x * 1103515245u + 12345u) >> 16);
    dbtest::WriteBytes(dir / "noise.mdb", noise);
    dbtest::Boxes boxes;
    CDaoDatabase* db = nullptr;
    EXPECT_EQ(openDatabase(&db, (dir / "noise.mdb").c_str(), 0, 0), -1);
    EXPECT_EQ(db, nullptr);
    ASSERT_EQ(boxes.texts.size(), 1u); // shown although showError is 0
    EXPECT_EQ(boxes.texts[0], Text(6713) + "Unrecognized database format '" + (dir / "noise.mdb") + "'.");
    showerrorDatabase = 0;
    EXPECT_EQ(openDatabase(&db, (dir / "noise.mdb").c_str(), 1, 0), -1);
    showerrorDatabase = 1;
    EXPECT_EQ(boxes.texts.size(), 1u);
}

TEST(OpenDatabase, OpensAReadOnlyFileOnlyForReading)
{
    dbtest::TempDir dir;
    MakeDatabase(dir / "ro.mdb");
    chmod((dir / "ro.mdb").c_str(), 0444);
    dbtest::Boxes boxes;
    CDaoDatabase* db = nullptr;
    EXPECT_EQ(openDatabase(&db, (dir / "ro.mdb").c_str(), 1, 0), -1);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_NE(boxes.texts[0].find("you need permission"), std::string::npos);
    ASSERT_EQ(openDatabase(&db, (dir / "ro.mdb").c_str(), 1, 1), 1);
    CDaoRecordset set(db);
    set.Open(dbOpenDynaset, "SELECT * FROM Parts");
    EXPECT_EQ(set.GetFieldValue("Nr").lVal, 42);
    set.Close();
    closeDatabase(&db);
}

TEST(OpenDatabase, ReadsAFileInAReadOnlyDirectoryFromACopy)
{
    dbtest::TempDir dir;
    dbtest::TempDir temp;
    std::filesystem::create_directory(dir / "cd");
    MakeDatabase(dir / "cd/parts.mdb");
    dbtest::WriteBytes(dir / "cd/noise.mdb", std::string(512, 'x'));
    chmod((dir / "cd").c_str(), 0555);
    vxtest::ScopedEnv tempVar("TEMP", temp.path());
    dbtest::Boxes boxes;
    CDaoDatabase* db = nullptr;
    ASSERT_EQ(openDatabase(&db, (dir / "cd/parts.mdb").c_str(), 1, 1), 2);
    EXPECT_EQ(db->GetName(), (temp.path() + "\\parts.mdb").c_str());
    CDaoRecordset set(db);
    set.Open(dbOpenDynaset, "SELECT * FROM Parts");
    EXPECT_EQ(set.GetFieldValue("Nr").lVal, 42);
    set.Close();
    closeDatabase(&db);
    EXPECT_TRUE(boxes.texts.empty());
    // A copy that fails too ends the attempts: one copy, one message.
    EXPECT_EQ(openDatabase(&db, (dir / "cd/noise.mdb").c_str(), 1, 1), -1);
    EXPECT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(db, nullptr);
}

TEST(OpenDatabase, ReadsExclusivelyWithoutATemporaryDirectory)
{
    dbtest::TempDir dir;
    std::filesystem::create_directory(dir / "cd");
    MakeDatabase(dir / "cd/parts.mdb");
    chmod((dir / "cd").c_str(), 0555);
    vxtest::ScopedEnv tempVar("TEMP", nullptr);
    vxtest::ScopedEnv tmpdirVar("TMPDIR", nullptr);
    CDaoDatabase* db = nullptr;
    ASSERT_EQ(openDatabase(&db, (dir / "cd/parts.mdb").c_str(), 1, 1), 1);
    EXPECT_EQ(db->GetName(), (dir / "cd/parts.mdb").c_str());
    closeDatabase(&db);
}

TEST(CreateDatabase, KeepsAnExistingFileAndReports)
{
    dbtest::TempDir dir;
    MakeDatabase(dir / "a.mdb");
    dbtest::Boxes boxes;
    CDaoDatabase* db = nullptr;
    EXPECT_EQ(createDatabase(&db, (dir / "a.mdb").c_str(), 0), 0);
    EXPECT_EQ(db, nullptr);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0], "Couldn't create database--Exception: Database already exists.");
    ASSERT_EQ(createDatabase(&db, (dir / "b.mdb").c_str(), 0), 1);
    EXPECT_EQ(db->GetLocale(), ";LANGID=0x0409;CP=1252;COUNTRY=0");
    closeDatabase(&db);
}

TEST_P(Helpers, TableDefCreateOpenAppendDeleteWithTheirMessages)
{
    MakeDatabase(Db("a"));
    CDaoDatabase db;
    db.Open(Db("a").c_str());
    dbtest::Boxes boxes;
    EXPECT_EQ(IsExistentTable(&db, "parts"), 1);
    EXPECT_EQ(IsExistentTable(&db, "Orders"), 0);
    EXPECT_EQ(IsExistentTable(nullptr, "Parts"), 0);

    CDaoTableDef* def = reinterpret_cast<CDaoTableDef*>(1);
    showerrorDatabase = 0;
    EXPECT_EQ(createNewTableDef(&db, &def, "Parts"), 0);
    showerrorDatabase = 1;
    ASSERT_EQ(boxes.texts.size(), 1u); // shown in any case
    EXPECT_EQ(boxes.texts[0], "A table by that name already exists.");

    EXPECT_EQ(openTableDef(&db, &def, "Orders", 0), 0);
    EXPECT_EQ(def, nullptr);
    EXPECT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(openTableDef(&db, &def, "Orders", 1), 0);
    EXPECT_EQ(boxes.texts.back(), "Couldn't open tabledef--Exception: Item not found in this collection.");

    ASSERT_EQ(createNewTableDef(&db, &def, "Orders"), 1);
    EXPECT_EQ(appendTableDef(&db, def), 0); // no fields yet
    EXPECT_EQ(boxes.texts.back(),
              "Couldn't append TableDef--Exception: No field defined--cannot append TableDef or Index.");
    def->CreateField("Nr", dbLong, 4);
    EXPECT_EQ(appendTableDef(&db, def), 1);
    delete def;

    CDaoTableDefInfo info;
    EXPECT_EQ(getTableInfo(&db, &info, 99, 0), 0);
    const std::size_t shown = boxes.texts.size();
    EXPECT_EQ(boxes.texts.size(), shown);
    ASSERT_EQ(getTableInfo(&db, &info, 0, 1), 1); // MSys tables sort after the others
    EXPECT_EQ(info.m_strName, "MSysVxObjects");
    EXPECT_EQ(info.m_lRecordCount, 2);

    deleteTable(&db, "Orders");
    deleteTable(&db, "Orders"); // gone: nothing happens
    deleteTable(nullptr, "Orders");
    EXPECT_EQ(IsExistentTable(&db, "Orders"), 0);
    EXPECT_EQ(boxes.texts.size(), shown);
}

TEST(TableDefHelpers, ATableThatCannotBeReadCountsAsExisting)
{
    CDaoDatabase closed;
    EXPECT_EQ(IsExistentTable(&closed, "Parts"), 1);
    EXPECT_EQ(IsExistentQuery(&closed, "Parts"), 1);
}

TEST_P(Helpers, QueryDefCreateAndOpenWithTheirMessages)
{
    MakeDatabase(Db("a"));
    CDaoDatabase db;
    db.Open(Db("a").c_str());
    dbtest::Boxes boxes;
    CDaoQueryDef* q = nullptr;
    ASSERT_EQ(createNewQueryDef(&db, &q, "Big", "SELECT * FROM Parts WHERE Nr > 10"), 1);
    q->Append();
    delete q;
    EXPECT_EQ(IsExistentQuery(&db, "Big"), 1);
    EXPECT_EQ(createNewQueryDef(&db, &q, "Big", "SELECT 1"), 0);
    EXPECT_EQ(boxes.texts.back(), "A Query by that name already exists.");
    showerrorDatabase = 0;
    EXPECT_EQ(openQueryDef(&db, &q, "Small"), 0);
    showerrorDatabase = 1;
    EXPECT_EQ(boxes.texts.back(), "Couldn't open Querydef--Exception: Item not found in this collection.");
    ASSERT_EQ(openQueryDef(&db, &q, "Big"), 1);
    EXPECT_EQ(q->GetSQL(), "SELECT * FROM Parts WHERE Nr > 10");
    delete q;
}

TEST(DaoFilter, ChoosesTheDelimiterByTheValue)
{
    CString plain = FormatDAOFilter1("Name='") + "abc" + FormatDAOFilter1("'");
    EXPECT_EQ(plain, "Name=\x01" "abc\x01");
    EXPECT_EQ(FormatDAOFilter2(plain), 1);
    EXPECT_EQ(plain, "Name='abc'");

    CString irish = FormatDAOFilter1("Name='") + "O'Brien" + FormatDAOFilter1("' AND City='") + "Cork" +
                    FormatDAOFilter1("'");
    EXPECT_EQ(FormatDAOFilter2(irish), 1);
    EXPECT_EQ(irish, "Name=\"O'Brien\" AND City='Cork'");

    CString none("Nr = 5");
    EXPECT_EQ(FormatDAOFilter2(none), 1);
    EXPECT_EQ(none, "Nr = 5");

    CString odd("A=\x01x\x01 AND B=\x01y");
    EXPECT_EQ(FormatDAOFilter2(odd), 0);
    EXPECT_EQ(odd, "A='x' AND B=\x01y"); // changed as far as it got
}
