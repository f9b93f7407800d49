// The database layer on a PostgreSQL server: KDatenbankIO through a connect
// text, real programs writing the same table at once, a writer killed in
// the middle of a transaction, and copying a database to the server and
// back.
#include "dbtestutil.h"

#include "database/kdatenbankio.h"
#include "platform/dao/daocopy.h"
#include "platform/dao/daodatabase.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daotabledef.h"
#include "platform/dao/daoworkspace.h"
#include "support/pgserver.h"

#include <csignal>
#include <cstdio>
#include <map>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

class ServerDatabase : public dbtest::ServerTest {};

void PartsCatalogue(KDatenbankIO& db)
{
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Stand");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
}

// A writer process with its standard output in a stream.
struct Writer {
    pid_t pid = 0;
    FILE* out = nullptr;
    Writer(const char* mode, const std::string& database)
    {
        int fds[2];
        if (pipe(fds) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, fds[1], 1);
        posix_spawn_file_actions_addclose(&actions, fds[0]);
        char* argv[] = {const_cast<char*>(VX_DATABASE_WRITER), const_cast<char*>(mode),
                        const_cast<char*>(database.c_str()), nullptr};
        if (posix_spawn(&pid, VX_DATABASE_WRITER, &actions, nullptr, argv, environ) != 0)
            pid = 0;
        posix_spawn_file_actions_destroy(&actions);
        close(fds[1]);
        out = fdopen(fds[0], "r");
    }
    int Wait()
    {
        int status = 0;
        waitpid(pid, &status, 0);
        return status;
    }
    ~Writer()
    {
        if (out)
            std::fclose(out);
    }
};

} // namespace

TEST_F(ServerDatabase, KDatenbankIOMakesOpensAndRepairsATable)
{
    const std::string connect = server->Connect(server->FreshName("parts"));
    {
        KDatenbankIO db;
        PartsCatalogue(db);
        ASSERT_EQ(db.DbAnlegen(connect.c_str(), 0), 1);
        ASSERT_EQ(db.DbOeffnen(connect.c_str()), 1);
        for (long i = 1; i <= 3; ++i) {
            db.m_pDbRecordset->AddNew();
            db.DbSetLongValue(0, i * 10);
            db.DbSetLongValue(1, i);
            db.m_pDbRecordset->Update();
        }
    }
    // A newer catalogue with one more field: the table is brought up to date.
    CStringArray names;
    CDWordArray parameters, added;
    names.Add("Nr");
    parameters.Add(MAKELONG(4, 4));
    names.Add("Stand");
    parameters.Add(MAKELONG(4, 4));
    names.Add("Note");
    parameters.Add(MAKELONG(30, 10));
    KDatenbankIO db;
    ASSERT_TRUE(db.DbOeffnenOhneTable(connect.c_str()));
    ASSERT_TRUE(db.DbTableOeffnen("Parts", &names, &parameters, nullptr, 0, &added));
    ASSERT_EQ(added.GetSize(), 1);
    ASSERT_TRUE(db.DbTableAktivieren("Parts"));
    db.OpenSet("SELECT * FROM [Parts] ORDER BY [Nr] DESC");
    EXPECT_EQ(db.DbGetLongValue(0), 30);
    EXPECT_STREQ(db.DbGetFieldValue(2).GetString(), "");
    db.DbSchliessen();

    // A database that isn't there: as a missing file, a failed open.
    KDatenbankIO missing;
    PartsCatalogue(missing);
    EXPECT_EQ(missing.DbOeffnen(server->Connect("nothere").c_str()), 0);
}

// Two programs add one to every one of the same 1,000 records at once:
// each update lands or is refused, and the table says what landed.
TEST_F(ServerDatabase, TwoProgramsUpdatingTheSameRecordsLoseNothing)
{
    const std::string connect = server->Connect(server->FreshName("contend"));
    const int records = 1000;
    {
        KDatenbankIO db;
        PartsCatalogue(db);
        ASSERT_EQ(db.DbAnlegen(connect.c_str(), 0), 1);
        ASSERT_EQ(db.DbOeffnen(connect.c_str()), 1);
        db.m_pDatabase->m_pWorkspace->BeginTrans();
        for (long i = 0; i < records; ++i) {
            db.m_pDbRecordset->AddNew();
            db.DbSetLongValue(0, i);
            db.DbSetLongValue(1, 0);
            db.m_pDbRecordset->Update();
        }
        db.m_pDatabase->m_pWorkspace->CommitTrans();
    }
    Writer a("--contend", connect), b("--contend", connect);
    ASSERT_TRUE(a.pid && b.pid);
    std::map<long, int> landed;
    int refused = 0;
    for (Writer* w : {&a, &b}) {
        char sign = 0;
        long nr = 0;
        while (std::fscanf(w->out, " %c%ld", &sign, &nr) == 2) {
            if (sign == '+')
                ++landed[nr];
            else
                ++refused;
        }
        const int status = w->Wait();
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    int reports = refused;
    for (const auto& [nr, count] : landed)
        reports += count;
    EXPECT_EQ(reports, 2 * records); // every update was told one way or the other

    CDaoDatabase db;
    db.Open(connect.c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Nr]");
    int checked = 0;
    for (; !set.IsEOF(); set.MoveNext(), ++checked) {
        const long nr = set.GetFieldValue("Nr").lVal;
        ASSERT_EQ(set.GetFieldValue("Stand").lVal, landed[nr]) << "record " << nr;
    }
    EXPECT_EQ(checked, records);
}

TEST_F(ServerDatabase, AKilledWriterLeavesCommittedTransactionsOnly)
{
    const std::string connect = server->Connect(server->FreshName("killed"));
    {
        KDatenbankIO db;
        PartsCatalogue(db);
        ASSERT_EQ(db.DbAnlegen(connect.c_str(), 0), 1);
    }
    Writer w("--batches", connect);
    ASSERT_TRUE(w.pid);
    long acknowledged = 0, line = 0;
    while (acknowledged < 30 && std::fscanf(w.out, "%ld", &line) == 1)
        acknowledged = line;
    ASSERT_GE(acknowledged, 30) << "the writer stopped early";
    kill(w.pid, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(w.Wait()));
    while (std::fscanf(w.out, "%ld", &line) == 1)
        acknowledged = line;

    CDaoDatabase db;
    db.Open(connect.c_str());
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts]");
    std::map<long, int> batches;
    for (; !set.IsEOF(); set.MoveNext())
        ++batches[set.GetFieldValue("Stand").lVal];
    // Every reported batch is there (and the one committed before its
    // report, perhaps), each whole: none half.
    ASSERT_TRUE(static_cast<long>(batches.size()) == acknowledged ||
                static_cast<long>(batches.size()) == acknowledged + 1);
    for (const auto& [batch, count] : batches) {
        EXPECT_LE(batch, static_cast<long>(batches.size()));
        EXPECT_EQ(count, 10) << "batch " << batch;
    }
}

TEST_F(ServerDatabase, CopiesAFileToTheServerAndBack)
{
    dbtest::TempDir dir;
    const std::string file = dir / "project.mdb";
    {
        CDaoDatabase db;
        db.Create(file.c_str(), ";LANGID=0x0415;CP=1250;COUNTRY=0");
        CDaoTableDef def(&db);
        def.Create("Parts");
        def.CreateField("Id", dbLong, 4, dbAutoIncrField);
        def.CreateField("Name", dbText, 30);
        def.CreateField("Price", dbCurrency, 8);
        def.CreateField("Note", dbMemo, 0);
        def.Append();
        dbtest::AddIndex(def, "ByName", "Name", dbtest::IndexKind::Unique, true);
        db.Execute("INSERT INTO Parts (Name, Price, Note) VALUES ('Motor', 1234500, 'three phase')");
        db.Execute("INSERT INTO Parts (Name, Price) VALUES ('Lamp', 25000)");
        db.Execute("INSERT INTO Parts (Name, Price) VALUES ('Relay', 99000)");
        db.Execute("DELETE FROM Parts WHERE Name = 'Lamp'");
        CDaoQueryDef q(&db);
        q.Create("Dear", "SELECT * FROM [Parts] WHERE [Price] > 100000");
        q.Append();
    }
    const std::string connect = server->Connect(server->FreshName("copy"));
    ASSERT_EQ(vx::CopyDatabase(file, connect), "");
    const std::string back = dir / "back.mdb";
    ASSERT_EQ(vx::CopyDatabase(connect, back), "");
    EXPECT_NE(vx::CopyDatabase(file, connect), ""); // the target exists

    for (const std::string& name : {connect, back}) {
        SCOPED_TRACE(name);
        CDaoDatabase db;
        db.Open(name.c_str());
        EXPECT_EQ(db.GetLocale(), ";LANGID=0x0415;CP=1250;COUNTRY=0");
        CDaoTableDef def(&db);
        def.Open("Parts");
        ASSERT_EQ(def.GetFieldCount(), 4);
        CDaoFieldInfo info;
        def.GetFieldInfo("Name", info);
        EXPECT_EQ(info.m_nType, dbText);
        EXPECT_EQ(info.m_lSize, 30);
        def.GetFieldInfo("Id", info);
        EXPECT_TRUE(info.m_lAttributes & dbAutoIncrField);
        CDaoIndexInfo index;
        def.GetIndexInfo("ByName", index);
        EXPECT_TRUE(index.m_bUnique);
        EXPECT_TRUE(index.m_pFieldInfos[0].m_bDescending);
        CDaoRecordset set(&db);
        set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Id]");
        set.MoveLast();
        ASSERT_EQ(set.GetRecordCount(), 2);
        EXPECT_EQ(set.GetFieldValue("Id").lVal, 3); // counters keep their numbers
        EXPECT_STREQ(set.GetFieldValue("Name").bstrVal, "Relay");
        set.AddNew();
        set.SetFieldValue("Name", "Fuse");
        set.Update();
        set.MoveLast();
        EXPECT_EQ(set.GetFieldValue("Id").lVal, 4); // and number on
        CDaoQueryDef dear(&db);
        dear.Open("Dear");
        CDaoRecordset expensive(&db);
        expensive.Open(&dear);
        EXPECT_STREQ(expensive.GetFieldValue("Name").bstrVal, "Motor");
    }
}
