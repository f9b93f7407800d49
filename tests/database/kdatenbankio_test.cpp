// KDatenbankIO: opening, checking, repairing and listing tables.
#include "dbtestutil.h"

#include "base/libraryframe.h"
#include "database/daohelpers.h"
#include "database/kdatenbankio.h"

#include <sys/stat.h>

#include <functional>
#include <ostream>

namespace {

std::string Text(int id)
{
    return GetString(id).StdString();
}

// The parts catalogue: Nr (long), Name (text 20), Price (currency).
void PartsCatalogue(KDatenbankIO& db)
{
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Name");
    db.m_FeldParameter.Add(MAKELONG(20, 0));
    db.m_FeldNamen.Add("Price");
    db.m_FeldParameter.Add(MAKELONG(8, 5));
}

// Makes database `file` (a path or a connect text) with the parts table.
std::string MakeParts(const std::string& file)
{
    KDatenbankIO db;
    PartsCatalogue(db);
    EXPECT_EQ(db.DbAnlegen(file.c_str(), 0), 1);
    return file;
}

// What works alike on a database file and on a server database.
class OnBothEngines : public dbtest::EngineTest {};

VX_ON_BOTH_ENGINES(OnBothEngines);

} // namespace

TEST(KDatenbankIO, DbOeffnenReportsEveryOpenError)
{
    dbtest::TempDir dir;
    dbtest::Boxes boxes;
    KDatenbankIO db;
    PartsCatalogue(db);
    CString text;

    EXPECT_EQ(db.DbOeffnen((dir / "none.mdb").c_str()), 0);
    EXPECT_EQ(db.GetOpenError(text), -3);
    EXPECT_EQ(text.StdString(), Text(6718));

    EXPECT_EQ(db.DbOeffnen((dir / "no/dir/none.mdb").c_str()), 0);
    EXPECT_EQ(db.GetOpenError(text), -4);
    EXPECT_EQ(text.StdString(), Text(6721));

    EXPECT_EQ(db.DbOeffnen(""), 0);
    EXPECT_EQ(db.GetOpenError(text), -3);

    dbtest::WriteBytes(dir / "noise.mdb", std::string(3000, '\x5a'));
    EXPECT_EQ(db.DbOeffnen((dir / "noise.mdb").c_str()), 0);
    EXPECT_EQ(db.GetOpenError(text), -1);
    EXPECT_EQ(text.StdString(), Text(6717));
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0].rfind(Text(6713), 0), 0u);
    EXPECT_EQ(db.m_pDatabase, nullptr);

    const std::string file = MakeParts(dir / "parts.mdb");
    db.m_TableName = "Orders";
    EXPECT_EQ(db.DbOeffnen(file.c_str()), 0);
    EXPECT_EQ(db.GetOpenError(text), -2);
    EXPECT_EQ(text, ""); // 6719 stands in no resource
    EXPECT_EQ(boxes.texts.size(), 1u);

    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Weight");
    db.m_FeldParameter.Add(MAKELONG(8, 7));
    db.m_FeldNamen.Add("Colour");
    db.m_FeldParameter.Add(MAKELONG(10, 10));
    EXPECT_EQ(db.DbOeffnen(file.c_str()), 0);
    EXPECT_EQ(db.GetOpenError(text), 4); // field number 3 is missing
    CString expected;
    expected.Format(GetString(6720), "Weight");
    EXPECT_EQ(text, expected);

    // Only the required fields count, and a second open of an open object
    // answers 1 whatever the path.
    db.m_AnzahlPflichtFelder = 3;
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    EXPECT_EQ(db.GetOpenError(text), 0);
    EXPECT_EQ(db.DbOeffnen((dir / "none.mdb").c_str()), 1);
    db.DbSchliessen();
    EXPECT_EQ(db.m_DateiPfad, "");
    EXPECT_EQ(db.m_TableName, "Parts"); // kept
}

TEST_P(OnBothEngines, CheckTakesTheFilesTypesAndListsExtraFields)
{
    const std::string file = MakeParts(Db("parts"));
    KDatenbankIO db;
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("NAME"); // found without regard to case
    db.m_FeldParameter.Add(MAKELONG(99, 12));
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    unsigned short length = 0, type = 0;
    ASSERT_EQ(db.GetFeldPara(0, length, type), 1);
    EXPECT_EQ(length, 20);
    EXPECT_EQ(type, 10);
    ASSERT_EQ(db.m_ExtraFeldNamen.GetSize(), 2);
    EXPECT_EQ(db.m_ExtraFeldNamen[0], "Nr");
    EXPECT_EQ(db.m_ExtraFeldNamen[1], "Price");
    EXPECT_EQ(db.m_ExtraFeldParameter[1], MAKELONG(8, 5));
    EXPECT_EQ(db.FeldDefiniertInHauptTabelle("Price"), 1);
    EXPECT_EQ(db.FeldDefiniertInHauptTabelle("price"), 0);
    EXPECT_EQ(db.FeldVorhanden("price"), 1);
    EXPECT_EQ(db.FeldVorhanden("Weight"), 0);
}

TEST(KDatenbankIO, OpensAReadOnlyFileWhenAskedTo)
{
    dbtest::TempDir dir;
    const std::string file = MakeParts(dir / "parts.mdb");
    chmod(file.c_str(), 0444);
    dbtest::Boxes boxes;
    KDatenbankIO db;
    PartsCatalogue(db);
    CString text;
    EXPECT_EQ(db.DbOeffnen(file.c_str()), 0);
    EXPECT_EQ(db.GetOpenError(text), -1);
    KDatenbankIO::s_bReadOnly = 1;
    const int opened = db.DbOeffnen(file.c_str());
    KDatenbankIO::s_bReadOnly = 0;
    ASSERT_EQ(opened, 1);
    EXPECT_EQ(db.m_bReadOnly, 1);
    EXPECT_FALSE(db.m_pDbRecordset->CanUpdate());
}

TEST_P(OnBothEngines, SortsAndTurnsNullsOfTheSortFieldIntoEmptyTexts)
{
    const std::string file = MakeParts(Db("parts"));
    {
        CDaoDatabase raw;
        raw.Open(file.c_str());
        raw.Execute("INSERT INTO Parts (Nr, Name) VALUES (1, 'b')");
        raw.Execute("INSERT INTO Parts (Nr, Name) VALUES (2, NULL)");
        raw.Execute("INSERT INTO Parts (Nr, Name) VALUES (3, 'a')");
    }
    KDatenbankIO db;
    PartsCatalogue(db);
    ASSERT_EQ(db.DbOeffnen(file.c_str(), 1, DbAbsteigend, "Name", "Nr"), 1);
    std::vector<long> order;
    for (db.m_pDbRecordset->MoveFirst(); !db.m_pDbRecordset->IsEOF(); db.m_pDbRecordset->MoveNext())
        order.push_back(db.DbGetLongValue(0));
    EXPECT_EQ(order, (std::vector<long>{1, 3, 2}));
    db.m_pDbRecordset->MoveLast();
    COleVariant v;
    db.m_pDbRecordset->GetFieldValue("Name", v);
    EXPECT_EQ(v.vt, VT_BSTR); // no longer null

    db.DbSchliessen();
    ASSERT_EQ(db.DbOeffnen(file.c_str(), 1, DbAufsteigend, nullptr, nullptr), 1);
    EXPECT_EQ(db.m_SortFeld1, "Nr"); // the first field of the catalogue
    db.m_pDbRecordset->MoveLast();
    EXPECT_EQ(db.DbGetLongValue(0), 3);
}

TEST(KDatenbankIO, DbAnlegenNamesTheTableAfterTheFile)
{
    dbtest::TempDir dir;
    KDatenbankIO db;
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 255));
    ASSERT_EQ(db.DbAnlegen((dir / "b c.d.mdb").c_str(), 0), 1);
    EXPECT_EQ(db.m_TableName, "b_c_d");
    EXPECT_EQ(db.m_pDatabase, nullptr); // closed again
    EXPECT_EQ(db.IsIndexField("b_c_d", "Nr"), 0); // not open
    ASSERT_EQ(db.DbOeffnen((dir / "b c.d.mdb").c_str()), 1);
    EXPECT_EQ(db.IsIndexField("b_c_d", "Nr"), 1);
    EXPECT_EQ(db.IsIndexName("b_c_d", "Nr"), 1);
    EXPECT_EQ(db.IsIndexName("b_c_d", "Other"), 0);
    // The counter comes back as a long with its attribute.
    CDaoFieldInfo info;
    db.m_pTableDef->GetFieldInfo(0, info);
    EXPECT_EQ(info.m_nType, dbLong);
    EXPECT_EQ(info.m_lAttributes & dbAutoIncrField, dbAutoIncrField);
}

TEST(KDatenbankIO, GetFeldParaAndSetFeldPara)
{
    KDatenbankIO db;
    db.m_FeldParameter.Add(MAKELONG(0, 0));
    db.m_FeldParameter.Add(MAKELONG(20, 0));
    unsigned short length = 1, type = 1;
    ASSERT_EQ(db.GetFeldPara(0, length, type), 1);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(type, 12);
    ASSERT_EQ(db.GetFeldPara(1, length, type), 1);
    EXPECT_EQ(length, 20);
    EXPECT_EQ(type, 10);
    EXPECT_EQ(db.GetFeldPara(2, length, type), 0);
    db.SetFeldPara(4, 8, 7);
    ASSERT_EQ(db.m_FeldParameter.GetSize(), 5);
    EXPECT_EQ(db.m_FeldParameter[4], MAKELONG(8, 7));
    CDWordArray other;
    db.SetFeldPara(0, 2, 3, &other);
    EXPECT_EQ(other[0], MAKELONG(2, 3));
}

namespace {

struct OrdersCatalogue {
    CStringArray names;
    CDWordArray parameters;
    OrdersCatalogue()
    {
        names.Add("Order");
        parameters.Add(MAKELONG(4, 4));
        names.Add("Part");
        parameters.Add(MAKELONG(4, 4));
    }
    void AddNewerFields()
    {
        names.Add("Note");
        parameters.Add(MAKELONG(0, 12));
        names.Add("Due");
        parameters.Add(MAKELONG(8, 8));
    }
};

} // namespace

TEST_P(OnBothEngines, DbTableOeffnenCreatesAndRepairsFurtherTables)
{
    const std::string file = MakeParts(Db("parts"));
    OrdersCatalogue old;
    {
        KDatenbankIO db;
        PartsCatalogue(db);
        ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
        ASSERT_EQ(db.DbTableOeffnen("Orders", &old.names, &old.parameters, nullptr, 0, nullptr), 1);
        ASSERT_EQ(db.DbTableAktivieren("Orders"), 1);
        db.m_pDbRecordset->AddNew();
        db.DbSetLongValue(0, 1);
        db.DbSetLongValue(1, 7);
        db.m_pDbRecordset->Update();
        EXPECT_EQ(db.IsIndexField("Orders", "Order"), 1);
    }
    // A newer program: two more fields, of which "Due" may stay missing.
    OrdersCatalogue newer;
    newer.AddNewerFields();
    CDWordArray exceptions;
    exceptions.Add(3);
    CDWordArray added;
    KDatenbankIO db;
    PartsCatalogue(db);
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    ASSERT_EQ(db.DbTableOeffnen("Orders", &newer.names, &newer.parameters, &exceptions, 0, &added), 1);
    ASSERT_EQ(added.GetSize(), 1);
    EXPECT_EQ(added[0], 2u);
    EXPECT_EQ(db.AusnahmeFelderVorhanden("Orders"), 0);
    ASSERT_EQ(db.DbTableAktivieren("Orders"), 1);
    EXPECT_EQ(db.FeldVorhanden("Note"), 1);
    EXPECT_EQ(db.FeldVorhanden("Due"), 0);
    EXPECT_EQ(db.GetFeldNummer("Part"), 1);
    EXPECT_STREQ(db.GetFeldName(2), "Note");
    EXPECT_EQ(db.DbGetLongValue(1), 7); // the old record is kept
    EXPECT_STREQ(db.DbGetTextValue(2), "");

    // Opened twice: the second call changes nothing.
    OrdersCatalogue other;
    ASSERT_EQ(db.DbTableOeffnen("Orders", &other.names, &other.parameters, nullptr, 0, nullptr), 1);
    EXPECT_EQ(db.m_Tables.GetSize(), 2);
    EXPECT_EQ(db.m_Tables[1].m_pFeldNamen, &newer.names);

    // Without exceptions the missing field is added.
    db.DbTableSchliessen("Orders");
    db.DbTableAktivieren(nullptr);
    added.RemoveAll();
    ASSERT_EQ(db.DbTableOeffnen("Orders", &newer.names, &newer.parameters, nullptr, 0, &added), 1);
    ASSERT_EQ(added.GetSize(), 1);
    EXPECT_EQ(added[0], 3u);
    EXPECT_EQ(db.AusnahmeFelderVorhanden("Orders"), 1);
    EXPECT_EQ(db.AusnahmeFelderVorhanden("Nowhere"), 0);
    EXPECT_EQ(db.AusnahmeFelderVorhanden(nullptr), 1); // the main table
    EXPECT_EQ(db.DbTableSchliessen("Nowhere"), 0);
}

TEST_P(OnBothEngines, DbTableOeffnenChangesNothingOnAReadOnlyDatabase)
{
    const std::string file = MakeParts(Db("parts"));
    OrdersCatalogue old;
    {
        KDatenbankIO db;
        PartsCatalogue(db);
        ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
        ASSERT_EQ(db.DbTableOeffnen("Orders", &old.names, &old.parameters, nullptr, -1, nullptr), 1);
    }
    OrdersCatalogue newer;
    newer.AddNewerFields();
    CDWordArray exceptions;
    exceptions.Add(3);
    KDatenbankIO db;
    PartsCatalogue(db);
    KDatenbankIO::s_bReadOnly = 1;
    const int opened = db.DbOeffnen(file.c_str());
    KDatenbankIO::s_bReadOnly = 0;
    ASSERT_EQ(opened, 1);
    ASSERT_EQ(db.DbTableOeffnen("Orders", &newer.names, &newer.parameters, &exceptions, -1, nullptr), 1);
    EXPECT_EQ(db.AusnahmeFelderVorhanden("Orders"), 1);
    db.DbTableAktivieren("Orders");
    EXPECT_EQ(db.FeldVorhanden("Note"), 0);
}

TEST_P(OnBothEngines, RepairComparesNamesWithRegardToCase)
{
    const std::string file = MakeParts(Db("parts"));
    CStringArray names;
    CDWordArray parameters;
    names.Add("TYP");
    parameters.Add(MAKELONG(10, 10));
    CStringArray newer;
    newer.Add("Typ");
    CDWordArray newerParameters;
    newerParameters.Add(MAKELONG(10, 10));
    dbtest::Boxes boxes;
    KDatenbankIO db;
    PartsCatalogue(db);
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    ASSERT_EQ(db.DbTableOeffnen("Kinds", &names, &parameters, nullptr, -1, nullptr), 1);
    db.DbTableSchliessen("Kinds");
    // "Typ" is missing by an exact comparison; adding it fails, as SQLite
    // (like DAO) compares field names without regard to case.
    EXPECT_EQ(db.DbTableOeffnen("Kinds", &newer, &newerParameters, nullptr, -1, nullptr), 0);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_NE(boxes.texts[0].find("Can't define field more than once."), std::string::npos);
}

TEST_P(OnBothEngines, WidensATextFieldAndKeepsItsValues)
{
    const std::string file = MakeParts(Db("parts"));
    KDatenbankIO db;
    PartsCatalogue(db);
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    db.m_pDbRecordset->AddNew();
    db.DbSetLongValue(0, 5);
    db.DbSetFeldValue(1, "Motor", 0);
    db.m_pDbRecordset->Update();
    db.DbSchliessen();
    ASSERT_EQ(db.FeldLaengeAendern(file.c_str(), 1, 60), 1);
    EXPECT_EQ(db.m_FeldNamen.GetSize(), 3);
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    unsigned short length = 0, type = 0;
    db.GetFeldPara(1, length, type);
    EXPECT_EQ(length, 60);
    EXPECT_EQ(type, 10);
    EXPECT_STREQ(db.DbGetTextValue(1), "Motor");
    EXPECT_EQ(db.FeldVorhanden("X@X@VX"), 0);
    db.DbSchliessen();
    // A missing file: the catalogue takes the length for the file to come.
    EXPECT_EQ(db.FeldLaengeAendern(Db("new").c_str(), 1, 80), 0);
    db.GetFeldPara(1, length, type);
    EXPECT_EQ(length, 80);
}

TEST_P(OnBothEngines, ListsTablesByDateAndQueries)
{
    const std::string file = MakeParts(Db("parts"));
    KDatenbankIO db;
    PartsCatalogue(db);
    ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
    OrdersCatalogue a, b;
    // Creation dates have millisecond steps, and two tables of the same
    // date would leave the list by date shorter (as they did on the original).
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    ASSERT_EQ(db.DbTableOeffnen("Zeta", &a.names, &a.parameters, nullptr, -1, nullptr), 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    ASSERT_EQ(db.DbTableOeffnen("Alpha", &b.names, &b.parameters, nullptr, -1, nullptr), 1);
    ASSERT_EQ(db.Execute("CREATE VIEW Cheap AS SELECT * FROM Parts WHERE Price < 10", 0), 1);
    ASSERT_EQ(db.Execute("CREATE VIEW [~tmp] AS SELECT * FROM Parts", 0), 1);
    EXPECT_EQ(db.Execute("DELETE FROM Nowhere", 1), 0);

    CStringArray byName, byDate;
    db.HoleAlleTablenamen(byName, 0);
    db.HoleAlleTablenamen(byDate, 1);
    ASSERT_EQ(byName.GetSize(), 3);
    EXPECT_EQ(byName[0], "Alpha");
    ASSERT_EQ(byDate.GetSize(), 3);
    EXPECT_EQ(byDate[0], "Parts");
    EXPECT_EQ(byDate[1], "Zeta");
    EXPECT_EQ(byDate[2], "Alpha");
    EXPECT_EQ(KDatenbankIO::HoleTablename(db.m_pDatabase), "Alpha");

    CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO> all;
    db.HoleAlleTablenamen(all, 0);
    EXPECT_EQ(all.GetSize(), 5); // with the two system tables
    CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO> local;
    db.HoleAlleTablenamen(local, 1);
    EXPECT_EQ(local.GetSize(), 3);

    CStringArray queries;
    db.HoleAlleAbfrage(queries);
    ASSERT_EQ(queries.GetSize(), 1);
    EXPECT_EQ(queries[0], "Cheap");
    CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO> views;
    db.HoleAlleAbfrage(views);
    ASSERT_EQ(views.GetSize(), 2);
    EXPECT_EQ(views[1].m_Name, "~tmp");
    EXPECT_EQ(views[1].m_Typ, 1);

    EXPECT_EQ(db.CreateIndexField("ByPart", "Zeta", "Part", 0, 0), 1);
    EXPECT_EQ(db.IsIndexName("Zeta", "ByPart"), 1);
    EXPECT_EQ(db.CreateIndexField("ByPart", "Nowhere", "Part", 0, 0), 0);

    db.DbTableSchliessen("Zeta");
    EXPECT_EQ(db.DbTableUmbenennen("Zeta", "Omega"), 1);
    EXPECT_EQ(db.DbTableUmbenennen("Zeta", "Omega"), 0);
}

TEST_P(OnBothEngines, DetachedObjectsBelongToTheCaller)
{
    const std::string file = MakeParts(Db("parts"));
    CDaoDatabase* database = nullptr;
    CDaoTableDef* def = nullptr;
    CDaoRecordset* set = nullptr;
    {
        KDatenbankIO db;
        PartsCatalogue(db);
        ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
        db.DbDetachPointer(&database, &def, &set, 1);
        EXPECT_EQ(db.m_pDatabase, nullptr);
    }
    ASSERT_TRUE(database && database->IsOpen());
    KDatenbankIO other;
    PartsCatalogue(other);
    other.DbAttachPointer(&database, &def, &set);
    EXPECT_EQ(other.m_DateiPfad, file.c_str());
    EXPECT_EQ(other.m_TableName, "Parts");
    other.m_pDbRecordset->AddNew();
    other.DbSetLongValue(0, 3);
    other.m_pDbRecordset->Update();
    other.OpenSet(nullptr);
    EXPECT_EQ(other.DbGetLongValue(0), 3);
    other.DbSchliessen(); // frees what it took over
}

namespace {

struct Opener {
    const char* name;
    std::function<int(KDatenbankIO&, const std::string&)> open;
};

void PrintTo(const Opener& opener, std::ostream* out)
{
    *out << opener.name;
}

class EveryOpen : public ::testing::TestWithParam<Opener> {};

} // namespace

// The four opens begin alike: an open object answers 1 whatever the path;
// else an empty path or a missing file, a missing directory and a file that
// is no database each have their error, and nothing stays open.
TEST_P(EveryOpen, ChecksTheFileAlike)
{
    const Opener& opener = GetParam();
    dbtest::TempDir dir;
    dbtest::Boxes boxes;
    KDatenbankIO db;
    PartsCatalogue(db);
    CString text;
    const struct {
        std::string path;
        int error;
    } failures[] = {
        {"", -3},
        {dir / "none.mdb", -3},
        {dir / "no/dir/none.mdb", -4},
        {dir / "noise.mdb", -1},
    };
    dbtest::WriteBytes(dir / "noise.mdb", std::string(3000, '\x5a'));
    for (const auto& f : failures) {
        SCOPED_TRACE(f.path);
        EXPECT_EQ(opener.open(db, f.path), 0);
        EXPECT_EQ(db.GetOpenError(text), f.error);
        EXPECT_EQ(db.m_pDatabase, nullptr);
        EXPECT_EQ(db.m_pDbRecordset, nullptr);
    }

    KDatenbankIO other;
    PartsCatalogue(other);
    const std::string file = MakeParts(dir / "parts.mdb");
    ASSERT_EQ(other.DbOeffnenOhneTable(file.c_str()), 1);
    EXPECT_EQ(opener.open(other, (dir / "none.mdb").c_str()), 1);
    EXPECT_EQ(other.GetOpenError(text), 0);
    EXPECT_EQ(other.m_DateiPfad, file.c_str());
}

INSTANTIATE_TEST_SUITE_P(
    KDatenbankIO, EveryOpen,
    ::testing::Values(Opener{"DbOeffnen", [](KDatenbankIO& db, const std::string& f) { return db.DbOeffnen(f.c_str()); }},
                      Opener{"DbOeffnenOhneTable",
                             [](KDatenbankIO& db, const std::string& f) { return db.DbOeffnenOhneTable(f.c_str()); }},
                      Opener{"DbOeffnenExcel",
                             [](KDatenbankIO& db, const std::string& f) { return db.DbOeffnenExcel(f.c_str(), "Parts"); }},
                      Opener{"DbOeffnenExcelOhneTable",
                             [](KDatenbankIO& db, const std::string& f) {
                                 return db.DbOeffnenExcelOhneTable(f.c_str());
                             }}),
    [](const ::testing::TestParamInfo<Opener>& info) { return std::string(info.param.name); });

// Without a table the database is open with an empty record set, which a
// table of the caller's choice then fills.
TEST_P(OnBothEngines, DbOeffnenOhneTableLeavesTheTableToTheCaller)
{
    const std::string file = MakeParts(Db("parts"));
    {
        KDatenbankIO writer;
        PartsCatalogue(writer);
        ASSERT_EQ(writer.DbOeffnen(file.c_str()), 1);
        writer.m_pDbRecordset->AddNew();
        writer.m_pDbRecordset->SetFieldValue("Nr", COleVariant(7L));
        writer.m_pDbRecordset->Update();
    }
    KDatenbankIO db;
    ASSERT_EQ(db.DbOeffnenOhneTable(file.c_str()), 1);
    ASSERT_NE(db.m_pDbRecordset, nullptr);
    EXPECT_FALSE(db.m_pDbRecordset->IsOpen());
    EXPECT_EQ(db.m_pTableDef, nullptr);
    EXPECT_EQ(db.m_TableName, "");
    db.m_TableName = "Parts";
    db.OpenSet(nullptr);
    ASSERT_EQ(db.m_pDbRecordset->GetRecordCount(), 1);
    EXPECT_EQ(db.m_pDbRecordset->GetFieldValue("Nr").lVal, 7);
}
