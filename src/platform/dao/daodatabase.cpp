#include "platform/dao/daodatabase.h"

#include "platform/dao/daoengine_p.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daoworkspace.h"
#include "platform/files/drivetype.h"
#include "platform/files/hostpath.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace vx {

namespace {

bool Exists(const std::string& host)
{
    struct stat st {};
    return stat(host.c_str(), &st) == 0;
}

// Writable by its permission bits and for this process. The bits count even
// where the process could ignore them (as root), as a read-only attribute
// did on the original platform.
bool Writable(const std::string& host)
{
    struct stat st {};
    if (stat(host.c_str(), &st) != 0)
        return false;
    return (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0 && access(host.c_str(), W_OK) == 0;
}

// A file URI of a host path, with the characters that URIs reserve escaped.
std::string UriOf(const std::string& host)
{
    std::string uri = "file:";
    for (unsigned char c : host) {
        if (c == '%' || c == '?' || c == '#' || c < 0x20) {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X", c);
            uri += escaped;
        } else {
            uri += static_cast<char>(c);
        }
    }
    return uri;
}

[[noreturn]] void ThrowMissing(const std::string& name, const std::string& host)
{
    if (!Exists(DirectoryOf(host)))
        ThrowDao(kDaoInvalidPath, "'" + name +
                                      "' is not a valid path. Make sure that the path name is spelled correctly "
                                      "and that you are connected to the server on which the file resides.");
    ThrowDao(kDaoFileNotFound, "Could not find file '" + name + "'.");
}

[[noreturn]] void ThrowNoPermission(const std::string& name)
{
    ThrowDao(kDaoNoPermission, "Cannot open the file '" + name +
                                   "'. It is already opened exclusively by another user, or you need "
                                   "permission to view its data.");
}

} // namespace

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
    if (!conn)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
}

DaoDatabasePrivate& OpenDatabaseOf(CDaoDatabase* database)
{
    if (!database)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
    DaoDatabasePrivate& db = *database->d_func();
    db.RequireOpen();
    return db;
}

void DaoDatabasePrivate::RequireWritable() const
{
    RequireOpen();
    if (readOnly)
        ThrowDao(kDaoReadOnly, "Cannot update. Database or object is read-only.");
}

// Connections are opened without SQLite's own mutexes: a database object
// belongs to one thread, as every object of the library does.
void DaoDatabasePrivate::Configure(bool writable)
{
    sqlite3_extended_result_codes(conn, 1);
    sqlite3_busy_timeout(conn, 3000);
    // Jet's SQL takes "..." as a text literal; SQLite does so only where no
    // column has the name, and only while this option is on.
    sqlite3_db_config(conn, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
    sqlite3_db_config(conn, SQLITE_DBCONFIG_DQS_DDL, 1, nullptr);
    if (exclusive)
        Exec("PRAGMA locking_mode=EXCLUSIVE");
    try {
        // Reads the schema: the first place where a file that is no
        // database, or one locked by another program, shows.
        Statement check(conn, "SELECT count(*) FROM sqlite_master");
        check.Step();
    } catch (CDaoException& e) {
        if (e.m_pErrorInfo->m_lErrorCode == kDaoLocked)
            ThrowDao(kDaoFileInUse, "Could not use '" + name + "'; file already in use.");
        if (e.m_pErrorInfo->m_lErrorCode == kDaoSyntaxError)
            ThrowDao(kDaoUnrecognizedFormat, "Unrecognized database format '" + name + "'.");
        throw;
    }
    if (writable && !isam) {
        // The write-ahead log commits without waiting for the disk and keeps
        // every commit through a crash of the program. Network file systems
        // can't share its index, so files there keep a rollback journal.
        const bool remote = DriveTypeOfHostPath(DirectoryOf(host)) == DRIVE_REMOTE;
        try {
            Exec(remote ? "PRAGMA journal_mode=DELETE" : "PRAGMA journal_mode=WAL");
        } catch (CDaoException& e) {
            if (e.m_pErrorInfo->m_lErrorCode == kDaoLocked)
                ThrowDao(kDaoFileInUse, "Could not use '" + name + "'; file already in use.");
            throw;
        }
        Exec(remote ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=NORMAL");
        if (exclusive)
            Exec("BEGIN EXCLUSIVE; COMMIT");
    }
    if (!isam) {
        Statement mode(conn, "PRAGMA journal_mode");
        streamable = mode.Step() == SQLITE_ROW && sqlite3_column_text(mode.get(), 0) &&
                     EqualNoCase(reinterpret_cast<const char*>(sqlite3_column_text(mode.get(), 0)), "wal");
    }
}

void DaoDatabasePrivate::OpenNative(const std::string& file, bool exclusiveOpen, bool readOnlyOpen)
{
    name = file;
    host = HostPath(file);
    exclusive = exclusiveOpen;
    readOnly = readOnlyOpen;
    struct stat st {};
    if (stat(host.c_str(), &st) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            ThrowMissing(name, host);
        ThrowNoPermission(name);
    }
    if (S_ISDIR(st.st_mode))
        ThrowNoPermission(name);
    if (!readOnly && !Writable(host))
        ThrowNoPermission(name);
    // Check the header first: SQLite would take an empty file for a new
    // database and write into it.
    unsigned char header[100] = {};
    FILE* f = std::fopen(host.c_str(), "rb");
    if (!f)
        ThrowNoPermission(name);
    const std::size_t got = std::fread(header, 1, sizeof header, f);
    std::fclose(f);
    if (got < sizeof header || std::memcmp(header, "SQLite format 3", 16) != 0)
        ThrowDao(kDaoUnrecognizedFormat, "Unrecognized database format '" + name + "'.");
    // A log-mode file is read through a shared index beside it. Where that
    // index can't be made (a read-only medium), only an exclusive open can
    // read the file, as DAO needed its lock file.
    const bool logMode = header[18] == 2;
    const bool readOnlyMedium = logMode && !Exists(host + "-shm") && !Writable(DirectoryOf(host));
    if (readOnly && !exclusive && readOnlyMedium)
        ThrowNoPermission(name);
    int flags = (readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX;
    std::string target = host;
    if (readOnly && exclusive && readOnlyMedium) {
        // Nothing can change the file there, and SQLite can read it without
        // the files it would make beside it.
        target = UriOf(host) + "?immutable=1";
        flags |= SQLITE_OPEN_URI;
    }
    const int rc = sqlite3_open_v2(target.c_str(), &conn, flags, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close_v2(conn);
        conn = nullptr;
        ThrowSqlite(nullptr, rc, name);
    }
    try {
        Configure(!readOnly);
    } catch (...) {
        sqlite3_close_v2(conn);
        conn = nullptr;
        throw;
    }
}

void DaoDatabasePrivate::CreateNative(const std::string& file, const std::string& locale, int options)
{
    name = file;
    host = HostPath(file);
    if (Exists(host))
        ThrowDao(kDaoDatabaseExists, "Database already exists.");
    if (!Exists(DirectoryOf(host)))
        ThrowMissing(name, host);
    // A log left beside a file that was deleted belongs to no database; read
    // into the new one it would bring back the old pages.
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        unlink((host + suffix).c_str());
    const int rc = sqlite3_open_v2(host.c_str(), &conn,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close_v2(conn);
        conn = nullptr;
        ThrowSqlite(nullptr, rc, name);
    }
    try {
        Configure(true);
        Exec("BEGIN");
        EnsureCatalogue();
        sqlite3_stmt* put = Cached("INSERT OR REPLACE INTO MSysVxProperties (Name, Value) VALUES (?1, ?2)");
        auto set = [&](const char* key, const std::string& value) {
            sqlite3_bind_text(put, 1, key, -1, SQLITE_STATIC);
            sqlite3_bind_text(put, 2, value.c_str(), -1, SQLITE_TRANSIENT);
            const int r = sqlite3_step(put);
            sqlite3_reset(put);
            if (r != SQLITE_DONE)
                ThrowSqlite(conn, r, name);
        };
        set("Locale", locale);
        set("Options", std::to_string(options));
        set("Version", "4.0");
        Exec("COMMIT");
    } catch (...) {
        Close();
        unlink(host.c_str());
        unlink((host + "-wal").c_str());
        unlink((host + "-shm").c_str());
        throw;
    }
}

void DaoDatabasePrivate::OpenIsam(const std::string& file, bool readOnlyOpen, const std::string& connectText)
{
    isam = MakeIsamDriver(connectText);
    name = file;
    host = HostPath(file);
    connect = connectText;
    const int rc = sqlite3_open_v2(":memory:", &conn, SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close_v2(conn);
        conn = nullptr;
        ThrowSqlite(nullptr, rc, name);
    }
    try {
        Configure(true);
        isam->Load(*this, host, readOnlyOpen);
        readOnly = readOnlyOpen || !isam->CanUpdate();
        changed = false;
    } catch (...) {
        isam.reset();
        sqlite3_close_v2(conn);
        conn = nullptr;
        throw;
    }
}

void DaoDatabasePrivate::Close()
{
    if (!conn)
        return;
    // Record sets hold prepared statements of this connection.
    while (!recordsets.empty())
        recordsets.back()->Close();
    std::exception_ptr failure;
    if (isam && changed && !readOnly) {
        try {
            isam->Save(*this, host);
        } catch (...) {
            failure = std::current_exception();
        }
    }
    for (auto& [sql, stmt] : m_cache)
        sqlite3_finalize(stmt);
    m_cache.clear();
    m_columns.clear();
    sqlite3_close_v2(conn);
    conn = nullptr;
    isam.reset();
    m_catalogue = -1;
    transactionDepth = 0;
    streamable = false;
    ++changeStamp;
    if (failure)
        std::rethrow_exception(failure);
}

void DaoDatabasePrivate::Exec(const std::string& sql)
{
    RequireOpen();
    BeforeWrite();
    const char* tail = sql.c_str();
    while (tail && *tail) {
        sqlite3_stmt* stmt = nullptr;
        int rc = sqlite3_prepare_v2(conn, tail, -1, &stmt, &tail);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(stmt);
            ThrowSqlite(conn, rc, sql);
        }
        if (!stmt)
            continue; // blanks or a comment
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        }
        if (rc != SQLITE_DONE) {
            // Keep the message before finalize resets it.
            const int code = sqlite3_extended_errcode(conn);
            sqlite3_reset(stmt);
            sqlite3_finalize(stmt);
            ThrowSqlite(conn, code, sql);
        }
        sqlite3_finalize(stmt);
    }
}

sqlite3_stmt* DaoDatabasePrivate::Cached(const std::string& sql)
{
    RequireOpen();
    auto it = m_cache.find(sql);
    if (it != m_cache.end()) {
        sqlite3_reset(it->second);
        sqlite3_clear_bindings(it->second);
        return it->second;
    }
    sqlite3_stmt* stmt = nullptr;
    const int rc = sqlite3_prepare_v3(conn, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(stmt);
        ThrowSqlite(conn, rc, sql);
    }
    m_cache.emplace(sql, stmt);
    return stmt;
}

void DaoDatabasePrivate::Written()
{
    ++changeStamp;
    changed = true;
}

void DaoDatabasePrivate::SchemaChanged()
{
    m_columns.clear();
    Written();
}

// --- catalogue -------------------------------------------------------------
//
// MSysVxObjects keeps what SQLite doesn't: creation and change dates of
// tables and queries, and the text of stored action queries. MSysVxProperties
// keeps the locale and options of the file. Files without them (made by
// other tools) get them at the first change of their design.

bool DaoDatabasePrivate::HasCatalogue()
{
    if (m_catalogue < 0) {
        sqlite3_stmt* s = Cached("SELECT count(*) FROM sqlite_master WHERE type='table' AND name='MSysVxObjects'");
        m_catalogue = sqlite3_step(s) == SQLITE_ROW && sqlite3_column_int(s, 0) > 0 ? 1 : 0;
        sqlite3_reset(s);
    }
    return m_catalogue == 1;
}

void DaoDatabasePrivate::EnsureCatalogue()
{
    if (isam || HasCatalogue() || readOnly)
        return;
    Exec("CREATE TABLE IF NOT EXISTS MSysVxObjects (Name TEXT(255) PRIMARY KEY COLLATE NOCASE, Type SHORT, "
         "DateCreate DATETIME, DateUpdate DATETIME, Sql LONGTEXT);"
         "CREATE TABLE IF NOT EXISTS MSysVxProperties (Name TEXT(64) PRIMARY KEY COLLATE NOCASE, Value LONGTEXT)");
    m_catalogue = 1;
    m_columns.clear();
}

std::string DaoDatabasePrivate::Property(const std::string& key)
{
    if (!HasCatalogue())
        return std::string();
    sqlite3_stmt* s = Cached("SELECT Value FROM MSysVxProperties WHERE Name=?1");
    sqlite3_bind_text(s, 1, key.c_str(), -1, SQLITE_TRANSIENT);
    std::string value;
    if (sqlite3_step(s) == SQLITE_ROW && sqlite3_column_text(s, 0))
        value = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
    sqlite3_reset(s);
    return value;
}

void DaoDatabasePrivate::NoteObject(const std::string& object, int type, const std::string& sql)
{
    BeforeWrite();
    EnsureCatalogue();
    if (!HasCatalogue())
        return;
    const double now = NowAsDate();
    sqlite3_stmt* s = Cached("INSERT OR REPLACE INTO MSysVxObjects (Name, Type, DateCreate, DateUpdate, Sql) "
                             "VALUES (?1, ?2, ?3, ?3, ?4)");
    sqlite3_bind_text(s, 1, object.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int(s, 2, type);
    sqlite3_bind_double(s, 3, now);
    if (sql.empty())
        sqlite3_bind_null(s, 4);
    else
        sqlite3_bind_text(s, 4, sql.c_str(), -1, SQLITE_TRANSIENT);
    const int rc = sqlite3_step(s);
    sqlite3_reset(s);
    if (rc != SQLITE_DONE)
        ThrowSqlite(conn, rc, object);
}

void DaoDatabasePrivate::RenameObject(const std::string& oldName, const std::string& newName)
{
    BeforeWrite();
    if (!HasCatalogue() || readOnly)
        return;
    sqlite3_stmt* s = Cached("UPDATE MSysVxObjects SET Name=?2, DateUpdate=?3 WHERE Name=?1");
    sqlite3_bind_text(s, 1, oldName.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(s, 2, newName.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(s, 3, NowAsDate());
    const int rc = sqlite3_step(s);
    sqlite3_reset(s);
    if (rc != SQLITE_DONE)
        ThrowSqlite(conn, rc, newName);
}

void DaoDatabasePrivate::DropObject(const std::string& object)
{
    BeforeWrite();
    if (!HasCatalogue() || readOnly)
        return;
    sqlite3_stmt* s = Cached("DELETE FROM MSysVxObjects WHERE Name=?1");
    sqlite3_bind_text(s, 1, object.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(s);
    sqlite3_reset(s);
}

void DaoDatabasePrivate::TouchObject(const std::string& object)
{
    BeforeWrite();
    if (!HasCatalogue() || readOnly)
        return;
    sqlite3_stmt* s = Cached("UPDATE MSysVxObjects SET DateUpdate=?2 WHERE Name=?1");
    sqlite3_bind_text(s, 1, object.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(s, 2, NowAsDate());
    sqlite3_step(s);
    sqlite3_reset(s);
}

void DaoDatabasePrivate::ObjectDates(const std::string& object, double& created, double& updated)
{
    created = updated = 0;
    if (!HasCatalogue())
        return;
    sqlite3_stmt* s = Cached("SELECT DateCreate, DateUpdate FROM MSysVxObjects WHERE Name=?1");
    sqlite3_bind_text(s, 1, object.c_str(), -1, SQLITE_TRANSIENT);
    if (sqlite3_step(s) == SQLITE_ROW) {
        created = sqlite3_column_double(s, 0);
        updated = sqlite3_column_double(s, 1);
    }
    sqlite3_reset(s);
}

std::vector<TableEntry> DaoDatabasePrivate::Tables()
{
    RequireOpen();
    std::vector<TableEntry> tables;
    sqlite3_stmt* s = Cached("SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite\\_%' "
                             "ESCAPE '\\' ORDER BY name COLLATE NOCASE");
    while (sqlite3_step(s) == SQLITE_ROW) {
        TableEntry e;
        e.name = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
        const bool system = e.name.size() >= 4 && EqualNoCase(e.name.substr(0, 4), "MSys");
        if (system && isam)
            continue;
        e.attributes = system ? dbSystemObject : 0;
        tables.push_back(std::move(e));
    }
    sqlite3_reset(s);
    return tables;
}

namespace {

// The statement of a view from its CREATE VIEW text.
std::string ViewBody(const std::string& create)
{
    const std::string upper = AsciiUpperCopy(create);
    for (std::size_t at = upper.find("AS"); at != std::string::npos; at = upper.find("AS", at + 2)) {
        const bool before = at > 0 && std::isspace(static_cast<unsigned char>(upper[at - 1]));
        const bool after = at + 2 < upper.size() && std::isspace(static_cast<unsigned char>(upper[at + 2]));
        if (before && after)
            return TrimSql(create.substr(at + 3));
    }
    return create;
}

} // namespace

std::vector<QueryEntry> DaoDatabasePrivate::Queries()
{
    RequireOpen();
    std::vector<QueryEntry> queries;
    sqlite3_stmt* s = Cached("SELECT name, sql FROM sqlite_master WHERE type='view'");
    while (sqlite3_step(s) == SQLITE_ROW) {
        QueryEntry e;
        e.name = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
        e.sql = ViewBody(sqlite3_column_text(s, 1) ? reinterpret_cast<const char*>(sqlite3_column_text(s, 1)) : "");
        e.view = true;
        queries.push_back(std::move(e));
    }
    sqlite3_reset(s);
    if (HasCatalogue()) {
        sqlite3_stmt* c = Cached("SELECT Name, Type, Sql FROM MSysVxObjects WHERE Type IN (5, 6)");
        while (sqlite3_step(c) == SQLITE_ROW) {
            const std::string n = reinterpret_cast<const char*>(sqlite3_column_text(c, 0));
            const std::string sql =
                sqlite3_column_text(c, 2) ? reinterpret_cast<const char*>(sqlite3_column_text(c, 2)) : "";
            auto it = std::find_if(queries.begin(), queries.end(),
                                   [&](const QueryEntry& q) { return EqualNoCase(q.name, n); });
            if (it != queries.end()) {
                if (!sql.empty())
                    it->sql = sql; // the text as it was given, brackets and all
            } else if (sqlite3_column_int(c, 1) == kObjectActionQuery) {
                queries.push_back(QueryEntry{n, sql, 0, false});
            }
        }
        sqlite3_reset(c);
    }
    for (auto& q : queries)
        q.type = QueryTypeOf(q.sql);
    std::sort(queries.begin(), queries.end(), [](const QueryEntry& a, const QueryEntry& b) {
        return sqlite3_stricmp(a.name.c_str(), b.name.c_str()) < 0;
    });
    return queries;
}

std::string DaoDatabasePrivate::FindTable(const std::string& table)
{
    RequireOpen();
    sqlite3_stmt* s = Cached("SELECT name FROM sqlite_master WHERE type='table' AND name=?1 COLLATE NOCASE");
    sqlite3_bind_text(s, 1, table.c_str(), -1, SQLITE_TRANSIENT);
    std::string found;
    if (sqlite3_step(s) == SQLITE_ROW)
        found = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
    sqlite3_reset(s);
    if (found.empty() && isam) {
        const std::string other = isam->AlternateName(table);
        if (!other.empty())
            return FindTable(other);
    }
    return found;
}

bool DaoDatabasePrivate::FindQuery(const std::string& query, QueryEntry& entry)
{
    for (auto& q : Queries()) {
        if (EqualNoCase(q.name, query)) {
            entry = q;
            return true;
        }
    }
    return false;
}

bool DaoDatabasePrivate::NameTaken(const std::string& object)
{
    QueryEntry q;
    return !FindTable(object).empty() || FindQuery(object, q);
}

const std::vector<DaoColumn>& DaoDatabasePrivate::Columns(const std::string& table)
{
    // Keyed as SQLite tells tables apart: "Ą" and "ą" are two tables.
    const std::string key = AsciiLowerCopy(table);
    auto it = m_columns.find(key);
    if (it != m_columns.end())
        return it->second;
    std::vector<DaoColumn> columns;
    Statement info(conn, "PRAGMA table_info(" + QuoteName(table) + ")");
    int primaryKeys = 0;
    std::vector<int> pk;
    while (info.Step() == SQLITE_ROW) {
        DaoColumn c;
        c.name = reinterpret_cast<const char*>(sqlite3_column_text(info.get(), 1));
        c.declared = sqlite3_column_text(info.get(), 2) ? reinterpret_cast<const char*>(sqlite3_column_text(info.get(), 2)) : "";
        c.required = sqlite3_column_int(info.get(), 3) != 0;
        if (sqlite3_column_text(info.get(), 4))
            c.defaultValue = reinterpret_cast<const char*>(sqlite3_column_text(info.get(), 4));
        pk.push_back(sqlite3_column_int(info.get(), 5));
        primaryKeys += pk.back() > 0;
        columns.push_back(std::move(c));
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        ParseDeclaredType(columns[i].declared, primaryKeys == 1 && pk[i] == 1, columns[i]);
        if (columns[i].autoIncrement)
            columns[i].required = false;
    }
    return m_columns.emplace(key, std::move(columns)).first->second;
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
    if (vx::TrimSql(connectText).empty()) {
        if (file.empty())
            vx::ThrowDao(vx::kDaoFileNotFound, "Could not find file ''.");
        d->OpenNative(file, exclusive != FALSE, readOnly != FALSE);
    } else {
        d->OpenIsam(file, readOnly != FALSE, connectText);
    }
    d->connect = connectText;
}

void CDaoDatabase::Create(const char* name, const char* locale, int options)
{
    if (d->IsOpen())
        Close();
    d->CreateNative(name ? name : "", locale ? locale : "", options);
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
    return d->IsOpen() && !d->readOnly;
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
    return d->IsOpen() ? CString(d->Property("Locale")) : CString();
}

short CDaoDatabase::GetTableDefCount()
{
    return static_cast<short>(d->Tables().size());
}

namespace {

void FillTableInfo(DaoDatabasePrivate& d, const vx::TableEntry& e, CDaoTableDefInfo& info, DWORD options)
{
    info = CDaoTableDefInfo();
    info.m_strName = CString(e.name);
    info.m_lAttributes = e.attributes;
    info.m_bUpdatable = !d.readOnly && e.attributes == 0;
    if (options & AFX_DAO_SECONDARY_INFO) {
        double created = 0, updated = 0;
        d.ObjectDates(e.name, created, updated);
        info.m_dateCreated = COleDateTime(created);
        info.m_dateLastUpdated = COleDateTime(updated);
    }
    if ((options & AFX_DAO_ALL_INFO) == AFX_DAO_ALL_INFO) {
        vx::Statement count(d.conn, "SELECT count(*) FROM " + vx::QuoteName(e.name));
        if (count.Step() == SQLITE_ROW)
            info.m_lRecordCount = static_cast<long>(sqlite3_column_int64(count.get(), 0));
    }
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
        d.ObjectDates(q.name, created, updated);
        info.m_dateCreated = COleDateTime(created);
        info.m_dateLastUpdated = COleDateTime(updated);
        info.m_bUpdatable = !d.readOnly;
        info.m_bReturnsRecords = q.type == dbQSelect || q.type == dbQSetOperation;
    }
    if ((options & AFX_DAO_ALL_INFO) == AFX_DAO_ALL_INFO)
        info.m_strSQL = CString(q.sql);
}

} // namespace

void CDaoDatabase::GetTableDefInfo(int index, CDaoTableDefInfo& info, DWORD options)
{
    const auto tables = d->Tables();
    if (index < 0 || index >= static_cast<int>(tables.size()))
        ItemNotFound();
    FillTableInfo(*d, tables[static_cast<std::size_t>(index)], info, options);
}

void CDaoDatabase::GetTableDefInfo(const char* name, CDaoTableDefInfo& info, DWORD options)
{
    const std::string found = d->FindTable(name ? name : "");
    for (const auto& t : d->Tables()) {
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
    const std::string table = d->FindTable(name ? name : "");
    if (table.empty())
        ItemNotFound();
    d->Exec("SAVEPOINT vx_drop");
    try {
        d->Exec("DROP TABLE " + vx::QuoteName(table));
        d->DropObject(table);
        d->Exec("RELEASE vx_drop");
    } catch (...) {
        d->Exec("ROLLBACK TO vx_drop; RELEASE vx_drop");
        throw;
    }
    d->SchemaChanged();
}

short CDaoDatabase::GetQueryDefCount()
{
    return static_cast<short>(d->Queries().size());
}

void CDaoDatabase::GetQueryDefInfo(int index, CDaoQueryDefInfo& info, DWORD options)
{
    const auto queries = d->Queries();
    if (index < 0 || index >= static_cast<int>(queries.size()))
        ItemNotFound();
    FillQueryInfo(*d, queries[static_cast<std::size_t>(index)], info, options);
}

void CDaoDatabase::GetQueryDefInfo(const char* name, CDaoQueryDefInfo& info, DWORD options)
{
    vx::QueryEntry q;
    if (!d->FindQuery(name ? name : "", q))
        ItemNotFound();
    FillQueryInfo(*d, q, info, options);
}

void CDaoDatabase::DeleteQueryDef(const char* name)
{
    d->RequireWritable();
    vx::QueryEntry q;
    if (!d->FindQuery(name ? name : "", q))
        ItemNotFound();
    if (q.view)
        d->Exec("DROP VIEW " + vx::QuoteName(q.name));
    d->DropObject(q.name);
    d->SchemaChanged();
}

void CDaoDatabase::Execute(const char* sql, int)
{
    d->RequireOpen();
    const std::string text = vx::TrimSql(sql ? sql : "");
    const short type = vx::QueryTypeOf(text);
    if (type == dbQSelect || type == dbQSetOperation)
        vx::ThrowDao(vx::kDaoSelectExecuted, "Cannot execute a select query.");
    const int before = sqlite3_total_changes(d->conn);
    d->Exec(text);
    d->recordsAffected = sqlite3_total_changes(d->conn) - before;
    d->SchemaChanged();
}

long CDaoDatabase::GetRecordsAffected() const
{
    return d->recordsAffected;
}
