// No committed record is lost when the writing program dies: a real writer
// process is killed with SIGKILL in the middle of its updates.
#include "dbtestutil.h"

#include "database/kdatenbankio.h"

#include <sqlite3.h>

#include <csignal>
#include <cstdio>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

TEST(Crash, KilledWriterLeavesEveryCommittedRecord)
{
    dbtest::TempDir dir;
    const std::string file = dir / "parts.mdb";
    const int records = 100;
    {
        KDatenbankIO db;
        db.m_TableName = "Parts";
        db.m_FeldNamen.Add("Nr");
        db.m_FeldParameter.Add(MAKELONG(4, 4));
        db.m_FeldNamen.Add("Stand");
        db.m_FeldParameter.Add(MAKELONG(4, 4));
        ASSERT_EQ(db.DbAnlegen(file.c_str(), 0), 1);
        ASSERT_EQ(db.DbOeffnen(file.c_str()), 1);
        db.m_pDatabase->m_pWorkspace->BeginTrans();
        for (int i = 0; i < records; ++i) {
            db.m_pDbRecordset->AddNew();
            db.DbSetLongValue(0, i);
            db.DbSetLongValue(1, 0);
            db.m_pDbRecordset->Update();
        }
        db.m_pDatabase->m_pWorkspace->CommitTrans();
    }

    int out[2];
    ASSERT_EQ(pipe(out), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_addclose(&actions, out[0]);
    const std::string count = "10000";
    char* argv[] = {const_cast<char*>(VX_DATABASE_WRITER), const_cast<char*>(file.c_str()),
                    const_cast<char*>(count.c_str()), nullptr};
    pid_t pid = 0;
    ASSERT_EQ(posix_spawn(&pid, VX_DATABASE_WRITER, &actions, nullptr, argv, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);

    // Kill it once a good part of the updates is reported.
    FILE* reports = fdopen(out[0], "r");
    int acknowledged = 0;
    int line = 0;
    while (acknowledged < 3000 && std::fscanf(reports, "%d", &line) == 1)
        acknowledged = line;
    ASSERT_GE(acknowledged, 3000) << "the writer stopped early";
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_LT(acknowledged, 10000) << "the writer finished before it was killed";
    while (std::fscanf(reports, "%d", &line) == 1)
        acknowledged = line; // reports still in the pipe
    std::fclose(reports);

    {
        sqlite3* raw = nullptr;
        ASSERT_EQ(sqlite3_open(file.c_str(), &raw), SQLITE_OK);
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(raw, "PRAGMA integrity_check", -1, &s, nullptr);
        ASSERT_EQ(sqlite3_step(s), SQLITE_ROW);
        EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(s, 0)), "ok");
        sqlite3_finalize(s);
        sqlite3_close(raw);
    }

    KDatenbankIO db;
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Stand");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    ASSERT_EQ(db.DbOeffnen(file.c_str(), 1, DbAufsteigend, "Nr", nullptr), 1);
    ASSERT_EQ(db.m_pDbRecordset->GetRecordCount(), records);
    for (int r = 0; r < records; ++r) {
        SCOPED_TRACE(r);
        db.m_pDbRecordset->SetAbsolutePosition(r);
        EXPECT_EQ(db.DbGetLongValue(0), r);
        // The last reported update of this record, or the one after it if
        // the writer died between its commit and its report.
        const int last = acknowledged - ((acknowledged - r) % records + records) % records;
        const long stand = db.DbGetLongValue(1);
        EXPECT_TRUE(stand == last || (stand == acknowledged + 1 && stand % records == r))
            << "record holds " << stand << ", last reported " << last;
    }
}
