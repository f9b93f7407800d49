// Writers for the tests that run real programs against one database:
//
//   database_writer FILE COUNT
//       updates records of a parts file one by one through KDatenbankIO and
//       reports each committed update on standard output, until killed;
//   database_writer --batches DATABASE
//       adds records in transactions of ten (the batch number in "Stand")
//       and reports each committed batch, until killed;
//   database_writer --contend DATABASE
//       adds one to "Stand" of every record of Parts, reporting "+NR" for
//       each update that landed and "-NR" for each one refused because
//       another program changed the record since it was read.
#include "database/kdatenbankio.h"
#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daoworkspace.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int Batches(const char* database)
{
    CDaoDatabase db;
    db.Open(database);
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts]");
    for (long batch = 1;; ++batch) {
        db.m_pWorkspace->BeginTrans();
        for (int i = 0; i < 10; ++i) {
            set.AddNew();
            set.SetFieldValue("Nr", COleVariant(batch * 10 + i));
            set.SetFieldValue("Stand", COleVariant(batch));
            set.Update();
        }
        db.m_pWorkspace->CommitTrans();
        std::printf("%ld\n", batch);
        std::fflush(stdout);
    }
}

int Contend(const char* database)
{
    CDaoDatabase db;
    db.Open(database);
    CDaoRecordset set(&db);
    set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Nr]");
    for (; !set.IsEOF(); set.MoveNext()) {
        const long nr = set.GetFieldValue("Nr").lVal;
        try {
            set.Edit();
            set.SetFieldValue("Stand", COleVariant(set.GetFieldValue("Stand").lVal + 1));
            set.Update();
            std::printf("+%ld\n", nr);
        } catch (CDaoException& e) {
            set.CancelUpdate();
            if (e.m_pErrorInfo->m_lErrorCode != vx::kDaoWriteConflict)
                return 4;
            std::printf("-%ld\n", nr);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    try {
        if (std::strcmp(argv[1], "--batches") == 0)
            return Batches(argv[2]);
        if (std::strcmp(argv[1], "--contend") == 0)
            return Contend(argv[2]);
    } catch (CDaoException& e) {
        std::fprintf(stderr, "%s\n", e.m_pErrorInfo->m_strDescription.GetString());
        return 3;
    }
    KDatenbankIO db;
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Stand");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    if (!db.DbOeffnen(argv[1], 1, DbAufsteigend, "Nr", nullptr))
        return 3;
    const int count = std::atoi(argv[2]);
    const long records = db.m_pDbRecordset->GetRecordCount();
    for (int i = 1; i <= count; ++i) {
        // Record i % records gets the value i: after a crash, every record
        // holds the last value written to it before the last report.
        db.m_pDbRecordset->SetAbsolutePosition(i % records);
        db.m_pDbRecordset->Edit();
        db.DbSetLongValue(1, i);
        db.m_pDbRecordset->Update();
        std::printf("%d\n", i);
        std::fflush(stdout);
    }
    db.DbSchliessen();
    return 0;
}
