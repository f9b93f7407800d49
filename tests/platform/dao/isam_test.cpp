// Workbooks and dBASE tables as databases: import and export.
#include "database/dbtestutil.h"

#include "database/kdatenbankio.h"
#include "platform/dao/daodatabase.h"
#include "platform/dao/daorecordset.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

const std::string kWorkbook = std::string(VX_TEST_DATA_DIR) + "/database/parts.xls";

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// A member of a zip file through the unzip program, or "" without it.
std::string ZipMember(const std::string& zip, const char* member)
{
    const std::string command = "unzip -p '" + zip + "' " + member + " 2>/dev/null";
    std::string text;
    if (FILE* p = popen(command.c_str(), "r")) {
        char buffer[4096];
        std::size_t n = 0;
        while ((n = std::fread(buffer, 1, sizeof buffer, p)) > 0)
            text.append(buffer, n);
        pclose(p);
    }
    return text;
}

void WorkbookCatalogue(KDatenbankIO& db)
{
    for (const char* name : {"Nr", "Name", "Price", "Delivered"}) {
        db.m_FeldNamen.Add(name);
        db.m_FeldParameter.Add(0);
    }
}

} // namespace

TEST(Excel, ImportsASheetWithItsTypes)
{
    KDatenbankIO db;
    WorkbookCatalogue(db);
    ASSERT_EQ(db.DbOeffnenExcel(kWorkbook.c_str(), "Parts$"), 1);
    unsigned short length = 0, type = 0;
    db.GetFeldPara(0, length, type);
    EXPECT_EQ(type, 7);
    db.GetFeldPara(1, length, type);
    EXPECT_EQ(type, 10);
    EXPECT_EQ(length, 255);
    db.GetFeldPara(3, length, type);
    EXPECT_EQ(type, 8);
    ASSERT_EQ(db.m_pDbRecordset->GetRecordCount(), 3);
    EXPECT_EQ(db.DbGetDoubleValue(0), 110.0);
    EXPECT_STREQ(db.DbGetTextValue(1), "Sch\xFCtz 3RT2015"); // in the code page
    EXPECT_EQ(db.DbGetFieldValue(2), "48,900000");
    EXPECT_EQ(db.DbGetFieldValue(3), "2024.3.1");
    db.m_pDbRecordset->MoveLast();
    COleVariant v;
    db.m_pDbRecordset->GetFieldValue("Delivered", v);
    EXPECT_EQ(v.vt, VT_NULL);
    // An existing workbook is read-only.
    EXPECT_FALSE(db.m_pDbRecordset->CanUpdate());
    EXPECT_THROW(db.m_pDbRecordset->AddNew(), CDaoException);

    CStringArray tables;
    db.HoleAlleTablenamen(tables, 0);
    ASSERT_EQ(tables.GetSize(), 3);
    EXPECT_EQ(tables[0], "Codes");
    EXPECT_EQ(tables[1], "Parts");
    EXPECT_EQ(tables[2], "Stock");
}

TEST(Excel, MixedColumnsAreTextAndMissingSheetsAnError)
{
    KDatenbankIO db;
    ASSERT_EQ(db.DbOeffnenExcelOhneTable(kWorkbook.c_str()), 1);
    db.m_TableName = "Codes";
    db.OpenSet(nullptr);
    db.m_pDbRecordset->MoveLast();
    COleVariant buffer;
    EXPECT_STREQ(db.DbGetTextValue("Code", buffer), "7");
    db.DbSchliessen();

    KDatenbankIO other;
    WorkbookCatalogue(other);
    CString text;
    EXPECT_EQ(other.DbOeffnenExcel(kWorkbook.c_str(), "Orders"), 0);
    EXPECT_EQ(other.GetOpenError(text), -2);
}

TEST(Excel, ExportsANewWorkbook)
{
    dbtest::TempDir dir;
    const std::string file = dir / "out.xls";
    {
        KDatenbankIO db;
        db.m_FeldNamen.Add("Nr");
        db.m_FeldParameter.Add(MAKELONG(4, 4));
        db.m_FeldNamen.Add("Name");
        db.m_FeldParameter.Add(MAKELONG(30, 10));
        db.m_FeldNamen.Add("Price");
        db.m_FeldParameter.Add(MAKELONG(8, 5));
        ASSERT_EQ(db.DbAnlegenExcelUndOeffnen(file.c_str(), "Parts"), 1);
        for (int i = 1; i <= 2; ++i) {
            db.m_pDbRecordset->AddNew();
            db.DbSetLongValue(0, i * 10);
            db.DbSetFeldValue(1, i == 1 ? "Sch\xFCtz" : "Relais", 0);
            db.DbSetFeldValue(2, "12.5", 0);
            db.m_pDbRecordset->Update();
        }
        db.DbSchliessen();
    }
    const std::string bytes = ReadFile(file);
    ASSERT_GT(bytes.size(), 4u);
    EXPECT_EQ(bytes.substr(0, 4), std::string("PK\x03\x04", 4)); // an Office Open XML package
    if (std::system("command -v unzip > /dev/null 2>&1") != 0)
        GTEST_SKIP() << "no unzip to look inside the workbook";
    EXPECT_NE(ZipMember(file, "xl/workbook.xml").find("name=\"Parts\""), std::string::npos);
    const std::string strings = ZipMember(file, "xl/sharedStrings.xml");
    EXPECT_NE(strings.find("Sch\xC3\xBCtz"), std::string::npos); // written as UTF-8
    EXPECT_NE(strings.find("Price"), std::string::npos);
    const std::string sheet = ZipMember(file, "xl/worksheets/sheet1.xml");
    EXPECT_NE(sheet.find("<v>20</v>"), std::string::npos);
    EXPECT_NE(sheet.find("<v>12.5</v>"), std::string::npos);
}

TEST(Dbase, ExportsATableAndReadsItBack)
{
    dbtest::TempDir dir;
    {
        KDatenbankIO db;
        const struct {
            const char* name;
            DWORD parameter;
        } fields[] = {{"Nr", MAKELONG(4, 4)},      {"Name", MAKELONG(20, 10)}, {"Weight", MAKELONG(8, 7)},
                      {"Delivered", MAKELONG(8, 8)}, {"Ok", MAKELONG(1, 1)},     {"Price", MAKELONG(8, 5)}};
        for (const auto& f : fields) {
            db.m_FeldNamen.Add(f.name);
            db.m_FeldParameter.Add(f.parameter);
        }
        ASSERT_EQ(db.DbAnlegenExcelUndOeffnen((dir / "parts.dbf").c_str(), "ignored"), 1);
        EXPECT_EQ(db.m_TableName, (dir / "parts.dbf").c_str() + dir.path().size() + 1);
        db.m_pDbRecordset->AddNew();
        db.DbSetLongValue(0, 110);
        db.DbSetFeldValue(1, "Motor", 0);
        db.DbSetDoubleValue(2, 2.25);
        db.DbSetDateValue(3, COleDateTime(2024, 3, 1, 0, 0, 0).m_dt);
        db.DbSetBoolValue(4, 1);
        db.DbSetFeldValue(5, "12.5", 0);
        db.m_pDbRecordset->Update();
        db.m_pDbRecordset->AddNew();
        db.DbSetLongValue(0, 120);
        db.m_pDbRecordset->Update();
        db.DbSchliessen();
    }
    ASSERT_TRUE(std::filesystem::exists(dir / "parts.dbf"));

    CDaoDatabase db;
    db.Open(dir.path().c_str(), FALSE, FALSE, "dBASE IV");
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [parts] ORDER BY [Nr]");
    ASSERT_EQ(set.GetRecordCount(), 2);
    EXPECT_EQ(set.GetFieldValue("Nr").dblVal, 110.0); // N(11,0) comes back as a double
    EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "Motor");
    EXPECT_EQ(set.GetFieldValue("Weight").dblVal, 2.25);
    EXPECT_EQ(COleDateTime(set.GetFieldValue("Delivered").date).GetDay(), 1);
    EXPECT_EQ(set.GetFieldValue("Ok").boolVal, VARIANT_TRUE);
    EXPECT_EQ(set.GetFieldValue("Price").dblVal, 12.5);
    CDaoFieldInfo info;
    set.GetFieldInfo("Name", info);
    EXPECT_EQ(info.m_nType, dbText);
    EXPECT_EQ(info.m_lSize, 20);
    // A change goes back to the file at closing.
    set.MoveLast();
    set.Edit();
    set.SetFieldValue("Name", "Relais");
    set.Update();
    EXPECT_EQ(set.GetFieldValue("Weight").vt, VT_NULL);
    db.Close();

    CDaoDatabase again;
    again.Open(dir.path().c_str(), FALSE, TRUE, "dBASE IV");
    CDaoRecordset check(&again);
    check.Open(dbOpenDynaset, "SELECT * FROM parts WHERE Nr = 120");
    ASSERT_EQ(check.GetRecordCount(), 1);
    EXPECT_STREQ(check.GetFieldValue("Name").bstrVal, "Relais");
}
