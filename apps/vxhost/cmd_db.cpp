// db: a parts table in a database file, written by one version of a program
// and reopened by a newer one whose catalogue has one more field.
//
//   vxhost db             the tour: a file in a temporary directory
//   vxhost db FILE        the same on FILE (made anew), or on a server
//                         database given as "ODBC;DATABASE=...;SERVER=..."
//   vxhost db copy SOURCE TARGET
//                         copies a whole database, file or server, to a
//                         new one (a project onto the server and back)
#include "democommand.h"

#include <vxbase.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

struct Part {
    long nr;
    const char* name;
    const char* price;
};

// Names in the code page (Windows-1250: \xFC is u with diaeresis).
const Part kParts[] = {
    {110, "Sch\xFCtz 3RT2015", "48.90"},  {120, "Motorschutzschalter", "112.50"},
    {130, "Klemme 2,5 mm2", "0.85"},   {140, "Leitungsschutz B16", "7.20"},
    {150, "Relais 24 V DC", "15.75"},
};

// Version 1 of the catalogue: number, name, price.
void FirstCatalogue(CStringArray& names, CDWordArray& parameters)
{
    names.Add("Nr");
    parameters.Add(MAKELONG(4, 4));
    names.Add("Name");
    parameters.Add(MAKELONG(30, 10));
    names.Add("Price");
    parameters.Add(MAKELONG(8, 5));
}

int Run(const std::string& file)
{
    const std::string shown = vx::WithoutPassword(file); // a connect text's password stays unseen
    vxhost::Heading("Database: a parts table, repaired by a newer catalogue");
    {
        KDatenbankIO db;
        db.m_TableName = "Parts";
        FirstCatalogue(db.m_FeldNamen, db.m_FeldParameter);
        if (!db.DbAnlegen(file.c_str(), 0) || !db.DbOeffnen(file.c_str(), 1, DbAufsteigend, "Nr", nullptr)) {
            CString why;
            db.GetOpenError(why);
            vxhost::Print("  cannot make " + shown + ": " + why.StdString() + "\n");
            return 1;
        }
        for (const Part& p : kParts) {
            db.m_pDbRecordset->AddNew();
            db.DbSetLongValue(0, p.nr);
            db.DbSetFeldValue(1, CString(std::string(p.name)), 0);
            db.DbSetFeldValue(2, p.price, 0);
            db.m_pDbRecordset->Update();
        }
        std::printf("  version 1 wrote %d parts to %s\n", static_cast<int>(std::size(kParts)), shown.c_str());
    }

    // Version 2 knows one more field. Opening the table through
    // DbTableOeffnen brings the file up to date.
    CStringArray names;
    CDWordArray parameters;
    FirstCatalogue(names, parameters);
    names.Add("Stock");
    parameters.Add(MAKELONG(2, 3));
    CDWordArray added;
    KDatenbankIO db;
    if (!db.DbOeffnenOhneTable(file.c_str()) ||
        !db.DbTableOeffnen("Parts", &names, &parameters, nullptr, 0, &added) || !db.DbTableAktivieren("Parts")) {
        std::printf("  version 2 cannot open the table\n");
        return 1;
    }
    for (DWORD field : added)
        std::printf("  version 2 added the field %s to the file\n", names[static_cast<int>(field)].GetString());
    db.OpenSet("SELECT * FROM [Parts] ORDER BY [Nr] ASC");
    short stock = 40;
    for (db.m_pDbRecordset->MoveFirst(); !db.m_pDbRecordset->IsEOF(); db.m_pDbRecordset->MoveNext()) {
        db.m_pDbRecordset->Edit();
        db.DbSetShortValue(3, stock);
        db.m_pDbRecordset->Update();
        stock = static_cast<short>(stock / 2 + 3);
    }
    std::printf("  %-6s %-24s %10s %6s\n", "Nr", "Name", "Price", "Stock");
    for (db.m_pDbRecordset->MoveFirst(); !db.m_pDbRecordset->IsEOF(); db.m_pDbRecordset->MoveNext()) {
        char line[128];
        std::snprintf(line, sizeof line, "  %-6s %-24s %10s %6s\n", db.DbGetFieldValue(0).GetString(),
                      db.DbGetFieldValue(1).GetString(), db.DbGetFieldValue(2).GetString(),
                      db.DbGetFieldValue(3).GetString());
        vxhost::Print(line);
    }
    db.DbSchliessen();
    return 0;
}

int Copy(const std::string& source, const std::string& target)
{
    const std::string error = vx::CopyDatabase(source, target);
    // Connect texts are shown without their passwords.
    const std::string from = vx::WithoutPassword(source), to = vx::WithoutPassword(target);
    if (!error.empty()) {
        vxhost::Print("  cannot copy " + from + " to " + to + ": " + error + "\n");
        return 1;
    }
    vxhost::Print("  copied " + from + " to " + to + "\n");
    return 0;
}

int RunDb(vxhost::Args& args)
{
    if (args.words.size() == 3 && args.words[0] == "copy")
        return Copy(args.words[1], args.words[2]);
    if (args.words.size() > 1 || (args.words.size() == 1 && vxhost::IsOption(args.words[0])))
        return vxhost::Usage("db");
    if (!args.tour && !args.words.empty()) {
        if (!vx::IsServerConnect(args.words[0]))
            std::filesystem::remove(args.words[0]);
        return Run(args.words[0]);
    }
    std::string pattern = (std::filesystem::temp_directory_path() / "vxhost-db-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        return 1;
    const int result = Run(pattern + "/parts.mdb");
    std::error_code ec;
    std::filesystem::remove_all(pattern, ec);
    return result;
}

} // namespace

VXHOST_COMMAND("db", "[FILE | copy SOURCE TARGET]  a parts table, reopened with a newer catalogue that adds a field; "
                     "copying a database between files and servers",
               50, RunDb);
