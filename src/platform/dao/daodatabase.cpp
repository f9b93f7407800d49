#include "platform/dao/daodatabase.h"

#include "platform/dao/daoconnect.h"
#include "platform/dao/daodatabase_p.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daoworkspace.h"

namespace vx {

DaoDatabasePrivate::~DaoDatabasePrivate()
{
    try {
        Close();
    } catch (...) {
        // A destructor has no one to report to; Close was the caller's chance.
    }
}

void DaoDatabasePrivate::RequireOpen() const
{
    if (!engine)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
}

void DaoDatabasePrivate::RequireWritable() const
{
    RequireOpen();
    if (engine->ReadOnly())
        ThrowDao(kDaoReadOnly, "Cannot update. Database or object is read-only.");
}

void DaoDatabasePrivate::Close()
{
    if (!engine)
        return;
    // Record sets hold statements of the engine.
    while (!recordsets.empty())
        recordsets.back()->Close();
    std::unique_ptr<Engine> closing = std::move(engine);
    transactionDepth = 0;
    ++changeStamp;
    closing->Close();
}

DaoDatabasePrivate& OpenDatabaseOf(CDaoDatabase* database)
{
    if (!database)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
    DaoDatabasePrivate& db = *database->d_func();
    db.RequireOpen();
    return db;
}

} // namespace vx

// --- CDaoDatabase ------------------------------------------------------------

using vx::DaoDatabasePrivate;

CDaoDatabase::CDaoDatabase(CDaoWorkspace* workspace) : d(std::make_unique<DaoDatabasePrivate>())
{
    m_pWorkspace = workspace ? workspace : CDaoWorkspace::GetDefault();
    m_pWorkspace->Attach(this);
}

CDaoDatabase::~CDaoDatabase()
{
    m_pWorkspace->Detach(this);
}

void CDaoDatabase::Open(const char* name, BOOL exclusive, BOOL readOnly, const char* connect)
{
    if (d->IsOpen())
        Close();
    const std::string file = name ? name : "";
    const std::string connectText = connect ? connect : "";
    // A server database comes as DAO's ODBC connect text, in the connect
    // argument or (as openDatabase and DbOeffnen pass it) as the name.
    const bool server = vx::IsServerConnect(connectText) || vx::IsServerConnect(file);
    if (server) {
        const std::string& text = vx::IsServerConnect(connectText) ? connectText : file;
        d->engine = vx::OpenServerEngine(text, readOnly != FALSE);
        // Kept without the password, so that nothing shows it.
        d->name = vx::ServerDatabaseName(text);
        d->connect = vx::WithoutPassword(text);
        d->exclusive = false;
        d->transactionDepth = 0;
        return;
    }
    if (vx::TrimSql(connectText).empty()) {
        if (file.empty())
            vx::ThrowDao(vx::kDaoFileNotFound, "Could not find file ''.");
        d->engine = vx::OpenFileEngine(file, exclusive != FALSE, readOnly != FALSE);
    } else {
        d->engine = vx::OpenIsamEngine(file, readOnly != FALSE, connectText);
    }
    d->name = file;
    d->connect = connectText;
    d->exclusive = exclusive != FALSE;
    d->transactionDepth = 0;
}

void CDaoDatabase::Create(const char* name, const char* locale, int options)
{
    if (d->IsOpen())
        Close();
    const std::string file = name ? name : "";
    const std::string localeText = locale ? locale : "";
    if (vx::IsServerConnect(file)) {
        d->engine = vx::CreateServerEngine(file, localeText, options);
        d->name = vx::ServerDatabaseName(file);
        d->connect = vx::WithoutPassword(file);
    } else {
        d->engine = vx::CreateFileEngine(file, localeText, options);
        d->name = file;
        d->connect.clear();
    }
    d->exclusive = false;
    d->transactionDepth = 0;
}

void CDaoDatabase::Close()
{
    d->Close();
}

BOOL CDaoDatabase::IsOpen() const
{
    return d->IsOpen();
}

BOOL CDaoDatabase::CanUpdate() const
{
    return d->IsOpen() && !d->ReadOnly();
}

BOOL CDaoDatabase::CanTransact() const
{
    return d->IsOpen();
}

CString CDaoDatabase::GetName() const
{
    return CString(d->name);
}

CString CDaoDatabase::GetConnect() const
{
    return CString(d->connect);
}

CString CDaoDatabase::GetVersion() const
{
    return CString("4.0");
}

CString CDaoDatabase::GetLocale() const
{
    return d->IsOpen() ? CString(d->engine->Locale()) : CString();
}

short CDaoDatabase::GetTableDefCount()
{
    d->RequireOpen();
    return static_cast<short>(d->engine->Tables().size());
}

namespace {

void FillTableInfo(DaoDatabasePrivate& d, const vx::TableEntry& e, CDaoTableDefInfo& info, DWORD options)
{
    info = CDaoTableDefInfo();
    info.m_strName = CString(e.name);
    info.m_lAttributes = e.attributes;
    info.m_bUpdatable = !d.ReadOnly() && e.attributes == 0;
    if (options & AFX_DAO_SECONDARY_INFO) {
        double created = 0, updated = 0;
        d.engine->ObjectDates(e.name, created, updated);
        info.m_dateCreated = COleDateTime(created);
        info.m_dateLastUpdated = COleDateTime(updated);
    }
    if ((options & AFX_DAO_ALL_INFO) == AFX_DAO_ALL_INFO)
        info.m_lRecordCount = d.engine->RecordCount(e.name);
}

[[noreturn]] void ItemNotFound()
{
    vx::ThrowDao(vx::kDaoItemNotFound, "Item not found in this collection.");
}

void FillQueryInfo(DaoDatabasePrivate& d, const vx::QueryEntry& q, CDaoQueryDefInfo& info, DWORD options)
{
    info = CDaoQueryDefInfo();
    info.m_strName = CString(q.name);
    info.m_nType = q.type;
    if (options & AFX_DAO_SECONDARY_INFO) {
        double created = 0, updated = 0;
        d.engine->ObjectDates(q.name, created, updated);
        info.m_dateCreated = COleDateTime(created);
        info.m_dateLastUpdated = COleDateTime(updated);
        info.m_bUpdatable = !d.ReadOnly();
        info.m_bReturnsRecords = q.type == dbQSelect || q.type == dbQSetOperation;
    }
    if ((options & AFX_DAO_ALL_INFO) == AFX_DAO_ALL_INFO)
        info.m_strSQL = CString(q.sql);
}

bool FindQuery(DaoDatabasePrivate& d, const std::string& name, vx::QueryEntry& entry)
{
    for (auto& q : d.engine->Queries()) {
        if (vx::EqualNoCase(q.name, name)) {
            entry = q;
            return true;
        }
    }
    return false;
}

} // namespace

void CDaoDatabase::GetTableDefInfo(int index, CDaoTableDefInfo& info, DWORD options)
{
    d->RequireOpen();
    const auto tables = d->engine->Tables();
    if (index < 0 || index >= static_cast<int>(tables.size()))
        ItemNotFound();
    FillTableInfo(*d, tables[static_cast<std::size_t>(index)], info, options);
}

void CDaoDatabase::GetTableDefInfo(const char* name, CDaoTableDefInfo& info, DWORD options)
{
    d->RequireOpen();
    const std::string found = d->engine->FindTable(name ? name : "");
    for (const auto& t : d->engine->Tables()) {
        if (!found.empty() && t.name == found) {
            FillTableInfo(*d, t, info, options);
            return;
        }
    }
    ItemNotFound();
}

void CDaoDatabase::DeleteTableDef(const char* name)
{
    d->RequireWritable();
    const std::string table = d->engine->FindTable(name ? name : "");
    if (table.empty())
        ItemNotFound();
    try {
        d->Writing().DropTable(table);
    } catch (...) {
        d->SchemaChanged();
        throw;
    }
    d->SchemaChanged();
}

short CDaoDatabase::GetQueryDefCount()
{
    d->RequireOpen();
    return static_cast<short>(d->engine->Queries().size());
}

void CDaoDatabase::GetQueryDefInfo(int index, CDaoQueryDefInfo& info, DWORD options)
{
    d->RequireOpen();
    const auto queries = d->engine->Queries();
    if (index < 0 || index >= static_cast<int>(queries.size()))
        ItemNotFound();
    FillQueryInfo(*d, queries[static_cast<std::size_t>(index)], info, options);
}

void CDaoDatabase::GetQueryDefInfo(const char* name, CDaoQueryDefInfo& info, DWORD options)
{
    d->RequireOpen();
    vx::QueryEntry q;
    if (!FindQuery(*d, name ? name : "", q))
        ItemNotFound();
    FillQueryInfo(*d, q, info, options);
}

void CDaoDatabase::DeleteQueryDef(const char* name)
{
    d->RequireWritable();
    vx::QueryEntry q;
    if (!FindQuery(*d, name ? name : "", q))
        ItemNotFound();
    try {
        d->Writing().DropQuery(q);
    } catch (...) {
        d->SchemaChanged();
        throw;
    }
    d->SchemaChanged();
}

void CDaoDatabase::Execute(const char* sql, int)
{
    d->RequireOpen();
    const std::string text = vx::TrimSql(sql ? sql : "");
    const short type = vx::QueryTypeOf(text);
    if (type == dbQSelect || type == dbQSetOperation)
        vx::ThrowDao(vx::kDaoSelectExecuted, "Cannot execute a select query.");
    try {
        d->recordsAffected = d->Writing().Execute(text);
    } catch (...) {
        d->SchemaChanged();
        throw;
    }
    d->SchemaChanged();
}

long CDaoDatabase::GetRecordsAffected() const
{
    return d->recordsAffected;
}

namespace vx {

// Query lookups for the other DAO classes.
bool FindQueryOf(DaoDatabasePrivate& d, const std::string& name, QueryEntry& entry)
{
    return FindQuery(d, name, entry);
}

bool NameTaken(DaoDatabasePrivate& d, const std::string& name)
{
    QueryEntry q;
    return !d.engine->FindTable(name).empty() || FindQuery(d, name, q);
}

} // namespace vx
