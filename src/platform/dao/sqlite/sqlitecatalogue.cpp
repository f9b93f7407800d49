// The file engine's catalogue: what SQLite keeps of tables, fields and
// indexes, and the two system tables with what it does not keep.
#include "platform/dao/sqlite/sqliteengine_p.h"

#include <algorithm>
#include <cctype>

namespace vx {

// MSysVxObjects keeps what SQLite doesn't: creation and change dates of
// tables and queries, and the text of stored action queries. MSysVxProperties
// keeps the locale and options of the file. Files without them (made by
// other tools) get them at the first change of their design.

bool SqliteEngine::HasCatalogue()
{
    if (m_catalogue < 0) {
        sqlite3_stmt* s = Cached("SELECT count(*) FROM sqlite_master WHERE type='table' AND name='MSysVxObjects'");
        m_catalogue = sqlite3_step(s) == SQLITE_ROW && sqlite3_column_int(s, 0) > 0 ? 1 : 0;
        sqlite3_reset(s);
    }
    return m_catalogue == 1;
}

void SqliteEngine::EnsureCatalogue()
{
    if (m_isam || HasCatalogue() || m_readOnly)
        return;
    Exec("CREATE TABLE IF NOT EXISTS MSysVxObjects (Name TEXT(255) PRIMARY KEY COLLATE NOCASE, Type SHORT, "
         "DateCreate DATETIME, DateUpdate DATETIME, Sql LONGTEXT);"
         "CREATE TABLE IF NOT EXISTS MSysVxProperties (Name TEXT(64) PRIMARY KEY COLLATE NOCASE, Value LONGTEXT)");
    m_catalogue = 1;
    m_columns.clear();
}

std::string SqliteEngine::Property(const std::string& key)
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

void SqliteEngine::NoteObject(const std::string& object, int type, const std::string& sql)
{
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

void SqliteEngine::RenameObject(const std::string& oldName, const std::string& newName)
{
    if (!HasCatalogue() || m_readOnly)
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

void SqliteEngine::DropObject(const std::string& object)
{
    if (!HasCatalogue() || m_readOnly)
        return;
    sqlite3_stmt* s = Cached("DELETE FROM MSysVxObjects WHERE Name=?1");
    sqlite3_bind_text(s, 1, object.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(s);
    sqlite3_reset(s);
}

void SqliteEngine::TouchObject(const std::string& object)
{
    if (!HasCatalogue() || m_readOnly)
        return;
    sqlite3_stmt* s = Cached("UPDATE MSysVxObjects SET DateUpdate=?2 WHERE Name=?1");
    sqlite3_bind_text(s, 1, object.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(s, 2, NowAsDate());
    sqlite3_step(s);
    sqlite3_reset(s);
}

void SqliteEngine::ObjectDates(const std::string& object, double& created, double& updated)
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

std::vector<TableEntry> SqliteEngine::Tables()
{
    std::vector<TableEntry> tables;
    sqlite3_stmt* s = Cached("SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite\\_%' "
                             "ESCAPE '\\' ORDER BY name COLLATE NOCASE");
    while (sqlite3_step(s) == SQLITE_ROW) {
        TableEntry e;
        e.name = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
        const bool system = e.name.size() >= 4 && EqualNoCase(e.name.substr(0, 4), "MSys");
        if (system && m_isam)
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

std::vector<QueryEntry> SqliteEngine::Queries()
{
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

std::string SqliteEngine::FindTable(const std::string& table)
{
    sqlite3_stmt* s = Cached("SELECT name FROM sqlite_master WHERE type='table' AND name=?1 COLLATE NOCASE");
    sqlite3_bind_text(s, 1, table.c_str(), -1, SQLITE_TRANSIENT);
    std::string found;
    if (sqlite3_step(s) == SQLITE_ROW)
        found = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
    sqlite3_reset(s);
    if (found.empty() && m_isam) {
        const std::string other = m_isam->AlternateName(table);
        if (!other.empty())
            return FindTable(other);
    }
    return found;
}

const std::vector<DaoColumn>& SqliteEngine::Columns(const std::string& table)
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


std::vector<IndexEntry> SqliteEngine::Indexes(const std::string& table)
{
    std::vector<IndexEntry> out;
    Statement list(conn, "PRAGMA index_list(" + QuoteName(table) + ")");
    while (list.Step() == SQLITE_ROW) {
        IndexEntry e;
        e.stored = reinterpret_cast<const char*>(sqlite3_column_text(list.get(), 1));
        const std::string origin = reinterpret_cast<const char*>(sqlite3_column_text(list.get(), 3));
        e.info.m_bUnique = sqlite3_column_int(list.get(), 2) != 0;
        const auto at = e.stored.rfind('@');
        if (at != std::string::npos && at + 2 <= e.stored.size() &&
            (e.stored[at + 1] == 'P' || e.stored[at + 1] == 'I')) {
            e.info.m_strName = CString(e.stored.substr(0, at));
            e.info.m_bPrimary = e.stored[at + 1] == 'P';
        } else if (origin == "pk") {
            e.info.m_strName = "PrimaryKey";
            e.info.m_bPrimary = TRUE;
        } else {
            e.info.m_strName = CString(e.stored);
        }
        e.info.m_bRequired = e.info.m_bPrimary;
        out.push_back(std::move(e));
    }
    for (auto& e : out) {
        Statement fields(conn, "PRAGMA index_xinfo(" + QuoteName(e.stored) + ")");
        std::vector<CDaoIndexFieldInfo> infos;
        while (fields.Step() == SQLITE_ROW) {
            if (!sqlite3_column_int(fields.get(), 5) || !sqlite3_column_text(fields.get(), 2))
                continue; // the row id that every index carries
            CDaoIndexFieldInfo f;
            f.m_strName = reinterpret_cast<const char*>(sqlite3_column_text(fields.get(), 2));
            f.m_bDescending = sqlite3_column_int(fields.get(), 3) != 0;
            infos.push_back(f);
        }
        e.info.SetFields(std::move(infos));
    }
    std::sort(out.begin(), out.end(), [](const IndexEntry& a, const IndexEntry& b) {
        return sqlite3_stricmp(a.info.m_strName, b.info.m_strName) < 0;
    });
    return out;
}

long SqliteEngine::RecordCount(const std::string& table)
{
    Statement count(conn, "SELECT count(*) FROM " + QuoteName(table));
    return count.Step() == SQLITE_ROW ? static_cast<long>(sqlite3_column_int64(count.get(), 0)) : 0;
}

std::string SqliteEngine::Locale()
{
    return Property("Locale");
}

} // namespace vx
