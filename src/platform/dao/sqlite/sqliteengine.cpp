// The file engine: opening and creating SQLite files, statements, errors.
#include "platform/dao/sqlite/sqliteengine_p.h"

#include "platform/files/drivetype.h"
#include "platform/files/hostpath.h"
#include "platform/framework/cexception.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace vx {

namespace {

std::string After(const std::string& text, const char* prefix)
{
    const auto at = text.find(prefix);
    return at == std::string::npos ? std::string() : text.substr(at + std::strlen(prefix));
}

} // namespace

void ThrowSqlite(sqlite3* db, int rc, const std::string& what)
{
    const std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    const int extended = db ? sqlite3_extended_errcode(db) : rc;
    switch (rc & 0xFF) {
    case SQLITE_NOMEM:
        // SQLite says "out of memory" also when a damaged file asks it for
        // more than it ever allocates (a record gigabytes long). While memory
        // is to be had, the file is at fault.
        if (void* probe = sqlite3_malloc(1 << 20)) {
            sqlite3_free(probe);
            ThrowDao(kDaoCorrupt, "Cannot open database '" + what +
                                      "'. It may not be a database that your application recognizes, or the file "
                                      "may be corrupt.");
        }
        throw CMemoryException();
    case SQLITE_NOTADB:
        ThrowDao(kDaoUnrecognizedFormat, "Unrecognized database format '" + what + "'.");
    case SQLITE_CORRUPT:
        ThrowDao(kDaoCorrupt, "Cannot open database '" + what +
                                  "'. It may not be a database that your application recognizes, or the file "
                                  "may be corrupt.");
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        ThrowDao(kDaoNoPermission, "Cannot open the file '" + what +
                                       "'. It is already opened exclusively by another user, or you need "
                                       "permission to view its data.");
    case SQLITE_READONLY:
        ThrowDao(kDaoReadOnly, "Cannot update. Database or object is read-only.");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        ThrowDao(kDaoLocked, "Could not update; currently locked by another session on this machine.");
    case SQLITE_FULL:
        ThrowDao(kDaoDiskError, "Not enough space on disk.");
    case SQLITE_IOERR:
        ThrowDao(kDaoDiskError, "Disk or network error. (" + message + ")");
    case SQLITE_TOOBIG:
        ThrowDao(kDaoFieldTooSmall,
                 "The field is too small to accept the amount of data you attempted to add.");
    case SQLITE_CONSTRAINT:
        if (extended == SQLITE_CONSTRAINT_UNIQUE || extended == SQLITE_CONSTRAINT_PRIMARYKEY)
            ThrowDao(kDaoDuplicateKey, "The changes you requested to the table were not successful because "
                                       "they would create duplicate values in the index, primary key, or "
                                       "relationship. (" + message + ")");
        if (extended == SQLITE_CONSTRAINT_NOTNULL)
            ThrowDao(kDaoRequiredField, "The field '" + After(message, "failed: ") +
                                            "' can't contain a Null value because the Required property "
                                            "for this field is set to True.");
        ThrowDao(3317, "One or more values are prohibited by the validation rule. (" + message + ")");
    default:
        break;
    }
    if (message.starts_with("no such table: "))
        ThrowDao(kDaoInputTableNotFound, "The database engine cannot find the input table or query '" +
                                             After(message, "no such table: ") +
                                             "'. Make sure it exists and that its name is spelled correctly.");
    if (message.starts_with("no such column: "))
        ThrowDao(kDaoTooFewParameters, "Too few parameters. Expected 1. (Unknown field '" +
                                           After(message, "no such column: ") + "'.)");
    if (message.find("already exists") != std::string::npos) {
        if (message.starts_with("index"))
            ThrowDao(kDaoIndexExists, "Index already exists. (" + message + ")");
        ThrowDao(kDaoTableExists, "Table '" + what + "' already exists.");
    }
    if (message.starts_with("duplicate column name"))
        ThrowDao(kDaoFieldDefinedTwice, "Can't define field more than once. (" + message + ")");
    ThrowDao(kDaoSyntaxError, "Syntax error in query expression '" + what + "'. (" + message + ")");
}

void ReadValue(sqlite3_stmt* stmt, int index, DaoValue& value)
{
    switch (sqlite3_column_type(stmt, index)) {
    case SQLITE_INTEGER:
        value.kind = DaoValue::Int;
        value.i = sqlite3_column_int64(stmt, index);
        break;
    case SQLITE_FLOAT:
        value.kind = DaoValue::Real;
        value.d = sqlite3_column_double(stmt, index);
        break;
    case SQLITE_TEXT: {
        value.kind = DaoValue::Text;
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, index));
        value.s.assign(text, static_cast<std::size_t>(sqlite3_column_bytes(stmt, index)));
        break;
    }
    case SQLITE_BLOB: {
        value.kind = DaoValue::Blob;
        const auto* data = static_cast<const char*>(sqlite3_column_blob(stmt, index));
        value.s.assign(data ? data : "", static_cast<std::size_t>(sqlite3_column_bytes(stmt, index)));
        break;
    }
    default:
        value.kind = DaoValue::Null;
        break;
    }
}

ValueView ViewValue(sqlite3_stmt* stmt, int index)
{
    // One sqlite3_column_value per value: the typed getters would each go
    // through the statement's checks again.
    sqlite3_value* v = sqlite3_column_value(stmt, index);
    ValueView view;
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        view.kind = DaoValue::Int;
        view.i = sqlite3_value_int64(v);
        break;
    case SQLITE_FLOAT:
        view.kind = DaoValue::Real;
        view.d = sqlite3_value_double(v);
        break;
    case SQLITE_TEXT: {
        view.kind = DaoValue::Text;
        const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(v));
        view.s = std::string_view(data, static_cast<std::size_t>(sqlite3_value_bytes(v)));
        break;
    }
    case SQLITE_BLOB: {
        view.kind = DaoValue::Blob;
        const auto* data = static_cast<const char*>(sqlite3_value_blob(v));
        view.s = std::string_view(data ? data : "", static_cast<std::size_t>(sqlite3_value_bytes(v)));
        break;
    }
    default:
        break;
    }
    return view;
}

void BindValue(sqlite3_stmt* stmt, int index, const DaoValue& value)
{
    switch (value.kind) {
    case DaoValue::Int:
        sqlite3_bind_int64(stmt, index, value.i);
        break;
    case DaoValue::Real:
        sqlite3_bind_double(stmt, index, value.d);
        break;
    case DaoValue::Text:
        sqlite3_bind_text(stmt, index, value.s.data(), static_cast<int>(value.s.size()), SQLITE_STATIC);
        break;
    case DaoValue::Blob:
        sqlite3_bind_blob(stmt, index, value.s.data(), static_cast<int>(value.s.size()), SQLITE_STATIC);
        break;
    default:
        sqlite3_bind_null(stmt, index);
        break;
    }
}

// --- statements ----------------------------------------------------------

Statement::Statement(sqlite3* db, const std::string& sql)
{
    const int rc = sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &m_stmt, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(m_stmt);
        m_stmt = nullptr;
        ThrowSqlite(db, rc, sql);
    }
}

Statement::~Statement()
{
    sqlite3_finalize(m_stmt);
}

Statement& Statement::operator=(Statement&& other) noexcept
{
    if (this != &other) {
        sqlite3_finalize(m_stmt);
        m_stmt = other.m_stmt;
        other.m_stmt = nullptr;
    }
    return *this;
}

int Statement::Step()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        Fail(rc);
    return rc;
}

void Statement::Fail(int rc)
{
    sqlite3* db = sqlite3_db_handle(m_stmt);
    const std::string sql = sqlite3_sql(m_stmt) ? sqlite3_sql(m_stmt) : "";
    sqlite3_reset(m_stmt);
    ThrowSqlite(db, rc, sql);
}

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

// Connections are opened without SQLite's own mutexes: a database object
// belongs to one thread, as every object of the library does.
void SqliteEngine::Configure(bool writable)
{
    sqlite3_extended_result_codes(conn, 1);
    sqlite3_busy_timeout(conn, 3000);
    // Jet's SQL takes "..." as a text literal; SQLite does so only where no
    // column has the name, and only while this option is on.
    sqlite3_db_config(conn, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
    sqlite3_db_config(conn, SQLITE_DBCONFIG_DQS_DDL, 1, nullptr);
    if (m_exclusive)
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
    if (writable && !m_isam) {
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
        if (m_exclusive)
            Exec("BEGIN EXCLUSIVE; COMMIT");
    }
    if (!m_isam) {
        Statement mode(conn, "PRAGMA journal_mode");
        m_streamable = mode.Step() == SQLITE_ROW && sqlite3_column_text(mode.get(), 0) &&
                     EqualNoCase(reinterpret_cast<const char*>(sqlite3_column_text(mode.get(), 0)), "wal");
    }
}

void SqliteEngine::OpenNative(const std::string& file, bool exclusiveOpen, bool readOnlyOpen)
{
    name = file;
    host = HostPath(file);
    m_exclusive = exclusiveOpen;
    m_readOnly = readOnlyOpen;
    const bool readOnly = readOnlyOpen;
    const bool exclusive = exclusiveOpen;
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

void SqliteEngine::CreateNative(const std::string& file, const std::string& locale, int options)
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
        sqlite3_close_v2(conn);
        conn = nullptr;
        unlink(host.c_str());
        unlink((host + "-wal").c_str());
        unlink((host + "-shm").c_str());
        throw;
    }
}

void SqliteEngine::OpenIsam(const std::string& file, bool readOnlyOpen, const std::string& connectText)
{
    m_isam = MakeIsamDriver(connectText);
    name = file;
    host = HostPath(file);
    const int rc = sqlite3_open_v2(":memory:", &conn, SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close_v2(conn);
        conn = nullptr;
        ThrowSqlite(nullptr, rc, name);
    }
    try {
        Configure(true);
        m_isam->Load(*this, host, readOnlyOpen);
        m_readOnly = readOnlyOpen || !m_isam->CanUpdate();
        m_changed = false;
    } catch (...) {
        m_isam.reset();
        sqlite3_close_v2(conn);
        conn = nullptr;
        throw;
    }
}

SqliteEngine::~SqliteEngine()
{
    try {
        Close();
    } catch (...) {
        // A destructor has no one to report to; Close was the caller's chance.
    }
}

void SqliteEngine::Close()
{
    if (!conn)
        return;
    std::exception_ptr failure;
    if (m_isam && m_changed && !m_readOnly) {
        try {
            m_isam->Save(*this, host);
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
    m_isam.reset();
    m_catalogue = -1;
    m_streamable = false;
    if (failure)
        std::rethrow_exception(failure);
}

void SqliteEngine::Exec(const std::string& sql)
{
    m_changed = true;
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

sqlite3_stmt* SqliteEngine::Cached(const std::string& sql)
{
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

// Transactions are savepoints named alike, so that they nest.
void SqliteEngine::BeginTrans()
{
    Exec("SAVEPOINT vx_trans");
}

void SqliteEngine::CommitTrans()
{
    Exec("RELEASE vx_trans");
}

void SqliteEngine::Rollback()
{
    Exec("ROLLBACK TO vx_trans; RELEASE vx_trans");
}

// --- opening ---------------------------------------------------------------

std::unique_ptr<Engine> OpenFileEngine(const std::string& file, bool exclusive, bool readOnly)
{
    auto engine = std::make_unique<SqliteEngine>();
    engine->OpenNative(file, exclusive, readOnly);
    return engine;
}

std::unique_ptr<Engine> CreateFileEngine(const std::string& file, const std::string& locale, int options)
{
    auto engine = std::make_unique<SqliteEngine>();
    engine->CreateNative(file, locale, options);
    return engine;
}

std::unique_ptr<Engine> OpenIsamEngine(const std::string& file, bool readOnly, const std::string& connect)
{
    auto engine = std::make_unique<SqliteEngine>();
    engine->OpenIsam(file, readOnly, connect);
    return engine;
}

} // namespace vx
