// The workspace: the databases it holds and their transactions, which each
// database's engine keeps.
#include "platform/dao/daoworkspace.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daodatabase_p.h"

using vx::DaoDatabasePrivate;

CDaoWorkspace::~CDaoWorkspace()
{
    // Databases that outlive their workspace go on in the default one.
    for (CDaoDatabase* db : std::vector<CDaoDatabase*>(m_databases)) {
        db->m_pWorkspace = GetDefault();
        GetDefault()->Attach(db);
    }
}

CDaoWorkspace* CDaoWorkspace::GetDefault()
{
    // Never destroyed: databases in static objects may outlive any other.
    static CDaoWorkspace* workspace = new CDaoWorkspace;
    return workspace;
}

void CDaoWorkspace::Attach(CDaoDatabase* database)
{
    m_databases.push_back(database);
}

void CDaoWorkspace::Detach(CDaoDatabase* database)
{
    std::erase(m_databases, database);
}

void CDaoWorkspace::BeginTrans()
{
    for (CDaoDatabase* db : m_databases) {
        DaoDatabasePrivate* d = db->d_func();
        if (d->IsOpen()) {
            d->Writing().BeginTrans();
            ++d->transactionDepth;
        }
    }
    ++m_depth;
}

void CDaoWorkspace::CommitTrans()
{
    EndTrans(false);
}

void CDaoWorkspace::Rollback()
{
    EndTrans(true);
}

void CDaoWorkspace::EndTrans(bool undone)
{
    if (m_depth == 0)
        vx::ThrowDao(vx::kDaoNoTransaction, "You tried to commit or rollback a transaction without first "
                                            "beginning a transaction.");
    --m_depth;
    for (CDaoDatabase* db : m_databases) {
        DaoDatabasePrivate* d = db->d_func();
        if (d->IsOpen() && d->transactionDepth > m_depth) {
            vx::Engine& engine = d->Writing();
            --d->transactionDepth;
            if (undone)
                engine.Rollback();
            else
                engine.CommitTrans();
            // Cached rows may hold what was just undone.
            if (undone)
                d->SchemaChanged();
        }
    }
}
