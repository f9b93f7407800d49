#include "platform/dao/daoquerydef.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daodatabase_p.h"

namespace vx {

struct DaoQueryDefPrivate {
    bool open = false;
    bool stored = false;
    std::string name;
    std::string sql;
    long recordsAffected = 0;
};

} // namespace vx

using vx::DaoDatabasePrivate;

namespace {

DaoDatabasePrivate& Db(CDaoDatabase* database)
{
    return vx::OpenDatabaseOf(database);
}

using vx::RequireOpenDef;

bool ReturnsRecords(short type)
{
    return type == dbQSelect || type == dbQSetOperation;
}

} // namespace

CDaoQueryDef::CDaoQueryDef(CDaoDatabase* database)
    : m_pDatabase(database), d(std::make_unique<vx::DaoQueryDefPrivate>())
{
}

CDaoQueryDef::~CDaoQueryDef() = default;

void CDaoQueryDef::Create(const char* name, const char* sql)
{
    Db(m_pDatabase);
    Close();
    d->open = true;
    d->stored = false;
    d->name = name ? name : "";
    d->sql = sql ? sql : "";
}

void CDaoQueryDef::Open(const char* name)
{
    DaoDatabasePrivate& db = Db(m_pDatabase);
    vx::QueryEntry entry;
    if (!vx::FindQueryOf(db, name ? name : "", entry))
        vx::ThrowDao(vx::kDaoItemNotFound, "Item not found in this collection.");
    Close();
    d->open = true;
    d->stored = true;
    d->name = entry.name;
    d->sql = entry.sql;
}

void CDaoQueryDef::Append()
{
    RequireOpenDef(*d);
    DaoDatabasePrivate& db = Db(m_pDatabase);
    db.RequireWritable();
    vx::CheckName(d->name);
    if (d->stored || vx::NameTaken(db, d->name))
        vx::ThrowDao(vx::kDaoObjectExists, "Object '" + d->name + "' already exists.");
    const std::string sql = vx::TrimSql(d->sql);
    try {
        db.Writing().CreateQuery(d->name, sql, ReturnsRecords(vx::QueryTypeOf(sql)));
    } catch (...) {
        db.SchemaChanged();
        throw;
    }
    db.SchemaChanged();
    d->stored = true;
}

void CDaoQueryDef::Close()
{
    d->open = false;
    d->stored = false;
}

BOOL CDaoQueryDef::IsOpen() const
{
    return d->open;
}

CString CDaoQueryDef::GetName() const
{
    return CString(d->name);
}

CString CDaoQueryDef::GetSQL() const
{
    return CString(d->sql);
}

void CDaoQueryDef::SetSQL(const char* sql)
{
    RequireOpenDef(*d);
    const std::string text = sql ? sql : "";
    if (d->stored) {
        DaoDatabasePrivate& db = Db(m_pDatabase);
        db.RequireWritable();
        const std::string name = d->name;
        CDaoQueryDef replacement(m_pDatabase);
        m_pDatabase->DeleteQueryDef(name.c_str());
        replacement.Create(name.c_str(), text.c_str());
        replacement.Append();
    }
    d->sql = text;
}

short CDaoQueryDef::GetType() const
{
    return vx::QueryTypeOf(d->sql);
}

BOOL CDaoQueryDef::GetReturnsRecords() const
{
    return ReturnsRecords(GetType());
}

COleDateTime CDaoQueryDef::GetDateCreated()
{
    double created = 0, updated = 0;
    if (d->stored)
        Db(m_pDatabase).engine->ObjectDates(d->name, created, updated);
    return COleDateTime(created);
}

COleDateTime CDaoQueryDef::GetDateLastUpdated()
{
    double created = 0, updated = 0;
    if (d->stored)
        Db(m_pDatabase).engine->ObjectDates(d->name, created, updated);
    return COleDateTime(updated);
}

void CDaoQueryDef::Execute(int options)
{
    RequireOpenDef(*d);
    m_pDatabase->Execute(d->sql.c_str(), options);
    d->recordsAffected = m_pDatabase->GetRecordsAffected();
}

long CDaoQueryDef::GetRecordsAffected() const
{
    return d->recordsAffected;
}
