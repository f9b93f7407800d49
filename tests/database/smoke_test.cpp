#include "dbtestutil.h"

#include "database/kdatenbankio.h"
#include "platform/daodatabase.h"
#include "platform/daorecordset.h"
#include "platform/daotabledef.h"

TEST(Smoke, CreateWriteRead)
{
    dbtest::TempDir dir;
    KDatenbankIO db;
    db.m_TableName = "Parts";
    db.m_FeldNamen.Add("Nr");
    db.m_FeldParameter.Add(MAKELONG(4, 4));
    db.m_FeldNamen.Add("Name");
    db.m_FeldParameter.Add(MAKELONG(40, 10));
    const std::string file = dir / "p.mdb";
    ASSERT_EQ(db.DbAnlegen(file.c_str(), 0), 1);
    ASSERT_EQ(db.DbOeffnen(file.c_str(), 1, DbAufsteigend, "Nr", nullptr), 1);
    for (int i = 0; i < 3; ++i) {
        db.m_pDbRecordset->AddNew();
        db.DbSetLongValue(0, 10 - i);
        db.DbSetFeldValue(1, "abc", 0);
        db.m_pDbRecordset->Update();
    }
    db.OpenSet(nullptr);
    EXPECT_EQ(db.m_pDbRecordset->GetRecordCount(), 3);
    EXPECT_EQ(db.DbGetLongValue(0), 8);
    EXPECT_STREQ(db.DbGetTextValue(1), "abc");
    db.DbSchliessen();
}
