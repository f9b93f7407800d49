// A writer for the crash test: updates records of a parts file one by one
// through KDatenbankIO and reports each committed update on standard output,
// until it is killed.
//
//   database_writer FILE COUNT
#include "database/kdatenbankio.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
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
