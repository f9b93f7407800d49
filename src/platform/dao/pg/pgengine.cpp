// The server engine: connecting, DAO's errors for the server's, statements,
// the caller's dialect, transactions, and creating a database.
#include "platform/dao/pg/pgengine_p.h"

#include "platform/dao/daoconnect.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace vx {

namespace {

// Type ids of the server's built-in types (pg_type.dat).
constexpr std::uint32_t kBool = 16, kBytea = 17, kInt8 = 20, kInt2 = 21, kInt4 = 23, kFloat4 = 700,
                        kFloat8 = 701, kNumeric = 1700;

std::string SqlState(const PGresult* r)
{
    const char* s = r ? PQresultErrorField(r, PG_DIAG_SQLSTATE) : nullptr;
    return s ? s : "";
}

std::string Primary(const PGresult* r, PGconn* conn)
{
    const char* s = r ? PQresultErrorField(r, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
    if (s)
        return s;
    std::string m = conn ? PQerrorMessage(conn) : "";
    while (!m.empty() && (m.back() == '\n' || m.back() == ' '))
        m.pop_back();
    return m;
}

const char* KnownParam(const ServerConnect& c, const char* key, const char* fallback)
{
    for (std::size_t i = 0; i < c.keys.size(); ++i)
        if (c.keys[i] == key)
            return nullptr;
    return fallback;
}

} // namespace

// --- parameters ----------------------------------------------------------------

std::string& PgParams::Scratch()
{
    if (m_used == m_scratch.size())
        m_scratch.push_back(std::make_unique<std::string>());
    return *m_scratch[m_used++];
}

void PgParams::AddText(const std::string& text)
{
    // A copy, so that a caller may pass a temporary; the scratch strings
    // keep their buffers from one statement to the next.
    std::string& s = Scratch();
    s.assign(text);
    AddOwned(s);
}

void PgParams::AddOwned(const std::string& text)
{
    m_values.push_back(text.c_str());
    m_lengths.push_back(static_cast<int>(text.size()));
    m_formats.push_back(0);
}

void PgParams::AddInt(std::int64_t i)
{
    std::string& s = Scratch();
    char buffer[24];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, i).ptr;
    s.assign(buffer, end);
    AddOwned(s);
}

void PgParams::Add(const DaoValue& value)
{
    switch (value.kind) {
    case DaoValue::Int:
        AddInt(value.i);
        break;
    case DaoValue::Real: {
        std::string& s = Scratch();
        if (std::isnan(value.d)) {
            s = "NaN";
        } else if (std::isinf(value.d)) {
            s = value.d > 0 ? "Infinity" : "-Infinity";
        } else {
            // Seventeen digits read back as the same double.
            char buffer[32];
            const int n = std::snprintf(buffer, sizeof buffer, "%.17g", value.d);
            s.assign(buffer, static_cast<std::size_t>(n));
        }
        AddOwned(s);
        break;
    }
    case DaoValue::Text:
        AddOwned(value.s);
        break;
    case DaoValue::Blob:
        // Bytes go as they are, in the binary form.
        m_values.push_back(value.s.data());
        m_lengths.push_back(static_cast<int>(value.s.size()));
        m_formats.push_back(1);
        break;
    default:
        m_values.push_back(nullptr);
        m_lengths.push_back(0);
        m_formats.push_back(0);
        break;
    }
}

// --- connecting ------------------------------------------------------------------

PGconn* ConnectServer(const ServerConnect& c)
{
    std::vector<const char*> keys, values;
    for (std::size_t i = 0; i < c.keys.size(); ++i) {
        keys.push_back(c.keys[i].c_str());
        values.push_back(c.values[i].c_str());
    }
    // A server that doesn't answer is given up after a while rather than
    // waited for without end; so is one that stops answering mid-query.
    const struct {
        const char* key;
        const char* value;
    } defaults[] = {{"connect_timeout", "10"},  {"keepalives_idle", "30"}, {"keepalives_interval", "10"},
                    {"keepalives_count", "3"},  {"tcp_user_timeout", "60000"}, {"application_name", "vxbase"}};
    for (const auto& d : defaults)
        if (KnownParam(c, d.key, d.value)) {
            keys.push_back(d.key);
            values.push_back(d.value);
        }
    keys.push_back(nullptr);
    values.push_back(nullptr);
    PGconn* conn = PQconnectdbParams(keys.data(), values.data(), 0);
    if (!conn)
        throw CMemoryException();
    if (PQstatus(conn) == CONNECTION_OK)
        return conn;
    const std::string message = Primary(nullptr, conn);
    const bool needsPassword = PQconnectionNeedsPassword(conn) != 0;
    PQfinish(conn);
    // libpq's messages name hosts and users, never the password.
    if (needsPassword)
        ThrowDao(kDaoInvalidPassword, "Not a valid password. (" + message + ")");
    if (message.find("password authentication failed") != std::string::npos ||
        message.find("authentication failed") != std::string::npos ||
        (message.find("role \"") != std::string::npos && message.find("does not exist") != std::string::npos))
        ThrowDao(kDaoInvalidAccount, "Not a valid account name or password. (" + message + ")");
    if (message.find("database \"") != std::string::npos && message.find("does not exist") != std::string::npos)
        ThrowDao(kDaoFileNotFound, "Could not find database '" + c.database + "' on the server. (" + message + ")");
    ThrowDao(kDaoServerUnreachable, "ODBC--connection to '" + c.shown + "' failed. (" + message + ")");
}

PgEngine::PgEngine(PGconn* connection, std::string text, bool readOnly)
    : conn(connection), shown(std::move(text)), m_readOnly(readOnly)
{
    // Notices (a savepoint released twice, an index that is not there) are
    // no concern of the caller.
    PQsetNoticeProcessor(conn, [](void*, const char*) {}, nullptr);
    std::string setup = "SET extra_float_digits = 3; SET standard_conforming_strings = on";
    if (readOnly)
        setup += "; SET default_transaction_read_only = on";
    Run(setup);
    PgResult r = Run("SELECT oid FROM pg_type WHERE typname = 'citext'");
    if (PQntuples(r.get()) == 0 && !readOnly) {
        // Only an owner of the database may add it; others work without
        // until they make a table.
        PgResult made(PQexec(conn, "CREATE EXTENSION IF NOT EXISTS citext"));
        r = Run("SELECT oid FROM pg_type WHERE typname = 'citext'");
    }
    if (PQntuples(r.get()) > 0)
        m_citext = static_cast<std::uint32_t>(std::strtoul(PQgetvalue(r.get(), 0, 0), nullptr, 10));
    PgResult catalogue = Run("SELECT to_regclass('\"MSysVxObjects\"') IS NOT NULL");
    m_catalogue = *PQgetvalue(catalogue.get(), 0, 0) == 't';
}

PgEngine::~PgEngine()
{
    if (conn)
        PQfinish(conn);
}

void PgEngine::Close()
{
    if (conn) {
        PQfinish(conn);
        conn = nullptr;
    }
}

// --- statements --------------------------------------------------------------------

void PgEngine::Fail(const PGresult* r, const std::string& what)
{
    const std::string state = SqlState(r);
    const std::string message = Primary(r, conn);
    if (m_depth > 0)
        m_failed = true;
    if (PQstatus(conn) == CONNECTION_BAD || state.starts_with("08") || state == "57P01" || state == "57P02" ||
        state == "57P03")
        ThrowDao(kDaoServerUnreachable, "ODBC--connection to '" + shown + "' failed. (" + message + ")");
    if (state == "23505")
        ThrowDao(kDaoDuplicateKey, "The changes you requested to the table were not successful because they "
                                   "would create duplicate values in the index, primary key, or relationship. (" +
                                       message + ")");
    if (state == "23502") {
        const char* column = r ? PQresultErrorField(r, PG_DIAG_COLUMN_NAME) : nullptr;
        ThrowDao(kDaoRequiredField, "The field '" + std::string(column ? column : what) +
                                        "' can't contain a Null value because the Required property for this "
                                        "field is set to True.");
    }
    if (state.starts_with("23"))
        ThrowDao(3317, "One or more values are prohibited by the validation rule. (" + message + ")");
    if (state == "42P04")
        ThrowDao(kDaoDatabaseExists, "Database already exists.");
    if (state == "42P01")
        ThrowDao(kDaoInputTableNotFound, "The database engine cannot find the input table or query '" + what +
                                             "'. Make sure it exists and that its name is spelled correctly. (" +
                                             message + ")");
    if (state == "42703")
        ThrowDao(kDaoTooFewParameters, "Too few parameters. Expected 1. (" + message + ")");
    if (state == "42P07")
        ThrowDao(message.find("index") != std::string::npos ? kDaoIndexExists : kDaoTableExists,
                 "Table '" + what + "' already exists. (" + message + ")");
    if (state == "42701")
        ThrowDao(kDaoFieldDefinedTwice, "Can't define field more than once. (" + message + ")");
    if (state == "22001")
        ThrowDao(kDaoFieldTooSmall, "The field is too small to accept the amount of data you attempted to add.");
    if (state == "22003")
        ThrowDao(kDaoNumericOverflow, "Numeric field overflow.");
    if (state == "22P02" || state == "22007" || state == "22008" || state == "42804")
        ThrowDao(kDaoConversionError, "Data type conversion error. (" + message + ")");
    if (state == "25006")
        ThrowDao(kDaoReadOnly, "Cannot update. Database or object is read-only.");
    if (state == "42501")
        ThrowDao(kDaoNoPermission, "You need permission for '" + what + "'. (" + message + ")");
    if (state == "40001" || state == "40P01" || state == "55P03")
        ThrowDao(kDaoLocked, "Could not update; currently locked by another session. (" + message + ")");
    if (state.starts_with("42"))
        ThrowDao(kDaoSyntaxError, "Syntax error in query expression '" + what + "'. (" + message + ")");
    if (state == "53100" || state == "53200")
        throw CMemoryException();
    ThrowDao(kDaoServerCallFailed, "ODBC--call failed. (" + message + ")");
}

PgResult PgEngine::Run(const std::string& sql, const PgParams* params)
{
    if (!conn)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
    PgResult r(params ? PQexecParams(conn, sql.c_str(), params->Count(), nullptr, params->Values(),
                                     params->Lengths(), params->Formats(), 0)
                      : PQexec(conn, sql.c_str()));
    const ExecStatusType status = r ? PQresultStatus(r.get()) : PGRES_FATAL_ERROR;
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        Fail(r.get(), sql);
    return r;
}

PgResult PgEngine::RunPrepared(const std::string& sql, const PgParams& params)
{
    if (!conn)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
    auto it = m_prepared.find(sql);
    const bool known = it != m_prepared.end();
    // Names are never used twice: a statement prepared in a step that then
    // failed stays on the server without being known here.
    const std::string name = known ? it->second : "vx" + std::to_string(++m_statements);
    PgResult r;
    if (m_depth > 0) {
        r = Guarded(sql, [&] {
            if (!known && !PQsendPrepare(conn, name.c_str(), sql.c_str(), 0, nullptr))
                return 0;
            if (!PQsendQueryPrepared(conn, name.c_str(), params.Count(), params.Values(), params.Lengths(),
                                     params.Formats(), 0))
                return 0;
            return known ? 1 : 2;
        });
    } else {
        if (!known) {
            PgResult p(PQprepare(conn, name.c_str(), sql.c_str(), 0, nullptr));
            if (!p || PQresultStatus(p.get()) != PGRES_COMMAND_OK)
                Fail(p.get(), sql);
        }
        r.reset(PQexecPrepared(conn, name.c_str(), params.Count(), params.Values(), params.Lengths(),
                               params.Formats(), 0));
        const ExecStatusType status = r ? PQresultStatus(r.get()) : PGRES_FATAL_ERROR;
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            Fail(r.get(), sql);
    }
    if (!known)
        m_prepared.emplace(sql, name);
    return r;
}

PgResult PgEngine::RunStatement(const std::string& sql)
{
    if (m_depth == 0 || !conn)
        return Run(sql);
    return Guarded(sql, [&] {
        return PQsendQueryParams(conn, sql.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0) ? 1 : 0;
    });
}

// The server gives up a whole transaction when one statement in it fails;
// DAO undoes that statement alone. So inside a transaction each statement
// runs under a savepoint of its own, sent together with the statement and
// the savepoint's release in one round trip (libpq's pipeline).
PgResult PgEngine::Guarded(const std::string& sql, const std::function<int()>& send)
{
    const auto simple = [&](const char* text) {
        return PQsendQueryParams(conn, text, 0, nullptr, nullptr, nullptr, nullptr, 0) != 0;
    };
    const bool savepoint = PQenterPipelineMode(conn) == 1 && simple("SAVEPOINT vx_statement");
    const int sent = savepoint ? send() : 0;
    const bool released = sent > 0 && simple("RELEASE vx_statement");
    const bool synced = savepoint && PQpipelineSync(conn) == 1;
    const bool complete = released && synced;
    PgResult result, error;
    if (synced) {
        // Each command's results end with a null; the sync ends them all.
        int command = 0;
        for (;;) {
            PGresult* raw = PQgetResult(conn);
            if (!raw) {
                if (++command > sent + 2 || PQstatus(conn) == CONNECTION_BAD)
                    break;
                continue;
            }
            PgResult r(raw);
            const ExecStatusType status = PQresultStatus(raw);
            if (status == PGRES_PIPELINE_SYNC)
                break;
            if (status == PGRES_FATAL_ERROR || status == PGRES_NONFATAL_ERROR) {
                if (!error)
                    error = std::move(r);
            } else if (command == sent && status != PGRES_PIPELINE_ABORTED) {
                result = std::move(r);
            }
        }
    }
    PQexitPipelineMode(conn);
    if (complete && !error && result)
        return result;
    // The statement is undone alone; the transaction goes on as it was.
    const bool failed = m_failed;
    if (savepoint && PQstatus(conn) == CONNECTION_OK)
        PgResult undo(PQexec(conn, "ROLLBACK TO vx_statement; RELEASE vx_statement"));
    try {
        Fail(error.get(), sql);
    } catch (...) {
        m_failed = failed;
        throw;
    }
}

const char* PgEngine::CastName(std::uint32_t oid)
{
    switch (oid) {
    case kBool:
        return "boolean";
    case kBytea:
        return "bytea";
    case kInt2:
        return "smallint";
    case kInt4:
        return "integer";
    case kInt8:
        return "bigint";
    case kFloat4:
        return "real";
    case kFloat8:
        return "double precision";
    case kNumeric:
        return "numeric";
    default:
        return "";
    }
}

long PgEngine::Execute(const std::string& sql)
{
    const std::string statement = Translate(sql);
    PgResult r;
    if (m_depth > 0) {
        // A failed statement leaves the transaction as it was, as on files.
        Atomically([&] { r = Run(statement); });
    } else {
        r = Run(statement);
    }
    m_columns.clear();
    const char* n = PQcmdTuples(r.get());
    return n && *n ? std::atol(n) : 0;
}

// --- transactions ------------------------------------------------------------------

void PgEngine::BeginTrans()
{
    Run(m_depth == 0 ? "BEGIN" : "SAVEPOINT vx_trans");
    if (m_depth == 0)
        m_failed = false;
    ++m_depth;
}

void PgEngine::CommitTrans()
{
    if (m_depth == 1 && m_failed) {
        // The server gave up the transaction when a statement in it failed.
        --m_depth;
        m_failed = false;
        Run("ROLLBACK");
        ThrowDao(kDaoServerCallFailed, "ODBC--call failed. (A statement of the transaction failed; the server "
                                       "undid the transaction.)");
    }
    --m_depth;
    Run(m_depth == 0 ? "COMMIT" : "RELEASE vx_trans");
}

void PgEngine::Rollback()
{
    --m_depth;
    if (m_depth == 0) {
        m_failed = false;
        Run("ROLLBACK");
    } else {
        Run("ROLLBACK TO vx_trans; RELEASE vx_trans");
    }
}

// --- the caller's dialect ------------------------------------------------------------

const std::unordered_map<std::string, std::string>& PgEngine::Names()
{
    if (m_names.empty()) {
        PgResult r = Run("SELECT c.relname, a.attname FROM pg_class c LEFT JOIN pg_attribute a ON a.attrelid = c.oid "
                         "AND a.attnum > 0 AND NOT a.attisdropped WHERE c.relnamespace = current_schema()::regnamespace "
                         "AND c.relkind IN ('r', 'p', 'v')");
        for (int i = 0; i < PQntuples(r.get()); ++i)
            for (int j = 0; j < 2; ++j)
                if (!PQgetisnull(r.get(), i, j))
                    m_names.emplace(AsciiLowerCopy(PQgetvalue(r.get(), i, j)), PQgetvalue(r.get(), i, j));
        m_names.emplace("", ""); // known to be read
    }
    return m_names;
}

namespace {

bool NameChar(unsigned char c)
{
    return std::isalnum(c) || c == '_' || c == '$' || c >= 0x80;
}

// Words after which a double-quoted text names an object rather than
// being a text, as Jet writes texts in double quotes.
bool NamesFollow(const std::string& word)
{
    static const char* words[] = {"FROM", "JOIN", "INTO", "UPDATE", "TABLE", "VIEW", "INDEX", "ON"};
    for (const char* w : words)
        if (AsciiEqualNoCase(word, w))
            return true;
    return false;
}

// Words of SQL that stay words even where a table or field has the name
// (a table "All" is written [All], as on files).
bool Reserved(const std::string& word)
{
    static const char* words[] = {"ALL",    "AND",     "AS",     "ASC",     "BETWEEN", "BY",     "CASE",
                                  "CREATE", "CROSS",   "DEFAULT", "DELETE", "DESC",    "DISTINCT", "DROP",
                                  "ELSE",   "END",     "EXISTS", "FALSE",   "FROM",    "GROUP",  "HAVING",
                                  "IN",     "INNER",   "INSERT", "INTO",    "IS",      "JOIN",   "LEFT",
                                  "LIKE",   "LIMIT",   "NOT",    "NULL",    "OFFSET",  "ON",     "OR",
                                  "ORDER",  "OUTER",   "RIGHT",  "SELECT",  "SET",     "TABLE",  "THEN",
                                  "TRUE",   "UNION",   "UPDATE", "VALUES",  "WHEN",    "WHERE"};
    for (const char* w : words)
        if (AsciiEqualNoCase(word, w))
            return true;
    return false;
}

} // namespace

std::string PgEngine::Translate(const std::string& sql)
{
    const auto& names = Names();
    auto stored = [&](const std::string& name) {
        auto it = names.find(AsciiLowerCopy(name));
        return QuoteName(it != names.end() && !name.empty() ? it->second : name);
    };
    std::string out;
    out.reserve(sql.size() + 16);
    std::string lastWord;
    for (std::size_t i = 0; i < sql.size();) {
        const char c = sql[i];
        if (c == '\'') {
            // A text as the server writes it.
            std::size_t j = i + 1;
            while (j < sql.size()) {
                if (sql[j] == '\'') {
                    if (j + 1 < sql.size() && sql[j + 1] == '\'') {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            out.append(sql, i, std::min(j + 1, sql.size()) - i);
            i = j + 1;
            lastWord.clear();
        } else if (c == '[' || c == '"' || c == '`') {
            const char close = c == '[' ? ']' : c;
            std::string body;
            std::size_t j = i + 1;
            while (j < sql.size()) {
                if (sql[j] == close) {
                    if (close != ']' && j + 1 < sql.size() && sql[j + 1] == close) {
                        body += close;
                        j += 2;
                        continue;
                    }
                    break;
                }
                body += sql[j++];
            }
            const bool dotted = (i > 0 && sql[i - 1] == '.') || (j + 1 < sql.size() && sql[j + 1] == '.');
            if (c == '"' && !NamesFollow(lastWord) && !dotted) {
                // Jet's text in double quotes.
                out += '\'';
                for (char b : body) {
                    if (b == '\'')
                        out += '\'';
                    out += b;
                }
                out += '\'';
            } else {
                out += stored(body);
            }
            i = j + 1;
            lastWord.clear();
        } else if (c == '-' && i + 1 < sql.size() && sql[i + 1] == '-') {
            const std::size_t end = sql.find('\n', i);
            out.append(sql, i, end == std::string::npos ? std::string::npos : end - i);
            i = end == std::string::npos ? sql.size() : end;
        } else if (std::isdigit(static_cast<unsigned char>(c))) {
            std::size_t j = i;
            while (j < sql.size() && (NameChar(static_cast<unsigned char>(sql[j])) || sql[j] == '.'))
                ++j;
            out.append(sql, i, j - i);
            i = j;
            lastWord.clear();
        } else if (NameChar(static_cast<unsigned char>(c))) {
            std::size_t j = i;
            while (j < sql.size() && NameChar(static_cast<unsigned char>(sql[j])))
                ++j;
            const std::string word = sql.substr(i, j - i);
            std::size_t k = j;
            while (k < sql.size() && sql[k] == ' ')
                ++k;
            // A word before "(" is a function, unless it names a table
            // (INSERT INTO Parts (...)).
            const bool function = k < sql.size() && sql[k] == '(' && !NamesFollow(lastWord);
            auto it = names.find(AsciiLowerCopy(word));
            // The object a definition makes keeps the case it is written
            // in, as on files (CREATE VIEW Cheap AS ...).
            const bool defined = AsciiEqualNoCase(lastWord, "VIEW") || AsciiEqualNoCase(lastWord, "TABLE") ||
                                 AsciiEqualNoCase(lastWord, "INDEX");
            if (!function && it != names.end() && !word.empty() && !Reserved(word))
                out += QuoteName(it->second);
            else if (defined && !Reserved(word) && !AsciiEqualNoCase(word, "IF"))
                out += QuoteName(word);
            else
                out += word;
            lastWord = word;
            i = j;
        } else {
            out += c;
            if (!std::isspace(static_cast<unsigned char>(c)))
                lastWord.clear();
            ++i;
        }
    }
    return out;
}

// --- opening and creating ----------------------------------------------------------

std::unique_ptr<Engine> OpenServerEngine(const std::string& connect, bool readOnly)
{
    const ServerConnect c = ParseServerConnect(connect);
    PGconn* conn = ConnectServer(c);
    return std::make_unique<PgEngine>(conn, c.shown, readOnly);
}

std::unique_ptr<Engine> CreateServerEngine(const std::string& connect, const std::string& locale, int options)
{
    ServerConnect c = ParseServerConnect(connect);
    if (c.database.empty())
        ThrowDao(kDaoServerUnreachable, "ODBC--connection to '" + c.shown + "' failed. (The connect text names no "
                                        "database to create.)");
    {
        // The database is made from the server's maintenance database.
        ServerConnect maintenance = c;
        maintenance.Set("dbname", "postgres");
        PGconn* admin = ConnectServer(maintenance);
        // Texts keep the bytes of the code page; citext compares them
        // without regard to the case of ASCII letters, as files do.
        const std::string sql = "CREATE DATABASE " + QuoteName(c.database) +
                                " ENCODING 'SQL_ASCII' LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0";
        PgResult r(PQexec(admin, sql.c_str()));
        const bool done = r && PQresultStatus(r.get()) == PGRES_COMMAND_OK;
        const std::string state = SqlState(r.get());
        const std::string message = Primary(r.get(), admin);
        r.reset();
        PQfinish(admin);
        if (!done) {
            if (state == "42P04")
                ThrowDao(kDaoDatabaseExists, "Database '" + c.database + "' already exists.");
            if (state == "42501")
                ThrowDao(kDaoNoPermission, "You need permission to create database '" + c.database + "'. (" +
                                               message + ")");
            ThrowDao(kDaoServerCallFailed, "ODBC--call failed. (" + message + ")");
        }
    }
    PGconn* conn = ConnectServer(c);
    auto engine = std::make_unique<PgEngine>(conn, c.shown, false);
    engine->EnsureCatalogue();
    engine->SetProperty("Locale", locale);
    engine->SetProperty("Options", std::to_string(options));
    return engine;
}

} // namespace vx
