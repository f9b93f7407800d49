// The file engine's design changes: tables, fields, indexes and stored
// queries, each as one unit of the file.
//
// A field's DAO type is written as the column's declared type, with the
// names of Jet's own SQL (TEXT(40), LONG, CURRENCY...), so that it travels
// with the table through every SQLite tool and comes back unchanged. Text
// and memo columns compare without regard to case, as Jet's did.
#include "platform/dao/sqlite/sqliteengine_p.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace vx {

namespace {

std::string DeclaredType(short type, long size, long attributes)
{
    if (attributes & dbAutoIncrField)
        return "INTEGER PRIMARY KEY AUTOINCREMENT";
    const std::string jet = JetTypeName(type, size);
    return type == dbText || type == dbMemo ? jet + " COLLATE NOCASE" : jet;
}

// The column definition for CREATE TABLE / ALTER TABLE ADD COLUMN.
std::string ColumnDefinition(const CDaoFieldInfo& info)
{
    CheckFieldInfo(info);
    const bool counter = (info.m_lAttributes & dbAutoIncrField) != 0;
    std::string def = QuoteName(info.m_strName.StdString()) + " " +
                      DeclaredType(info.m_nType, info.m_lSize, info.m_lAttributes);
    if (!counter) {
        if (info.m_bRequired)
            def += " NOT NULL";
        if (!info.m_strDefaultValue.IsEmpty())
            def += " DEFAULT (" + info.m_strDefaultValue.StdString() + ")";
    }
    return def;
}

// SQLite's index names are global to the file, DAO's belong to the table:
// the stored name is the DAO name, "@", P for a primary index or I for
// another, and a random suffix that keeps it unique.
std::string StoredIndexName(const std::string& name, bool primary)
{
    static std::mt19937_64 random{std::random_device{}()};
    char suffix[24];
    std::snprintf(suffix, sizeof suffix, "@%c%012llx", primary ? 'P' : 'I',
                  static_cast<unsigned long long>(random() & 0xFFFFFFFFFFFFull));
    return name + suffix;
}

std::string IndexSql(const std::string& table, const CDaoIndexInfo& info)
{
    std::string sql = (info.m_bUnique || info.m_bPrimary) ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    sql += QuoteName(StoredIndexName(info.m_strName.StdString(), info.m_bPrimary)) + " ON " + QuoteName(table) + " (";
    for (int i = 0; i < info.m_nFields; ++i) {
        if (i)
            sql += ", ";
        sql += QuoteName(info.m_pFieldInfos[i].m_strName.StdString());
        if (info.m_pFieldInfos[i].m_bDescending)
            sql += " DESC";
    }
    return sql + ")";
}

} // namespace

template <class Work>
void SqliteEngine::Atomically(Work work)
{
    Exec("SAVEPOINT vx_design");
    try {
        work();
        Exec("RELEASE vx_design");
    } catch (...) {
        try {
            Exec("ROLLBACK TO vx_design; RELEASE vx_design");
        } catch (...) {
        }
        m_columns.clear();
        throw;
    }
    m_columns.clear();
}

void SqliteEngine::CreateTable(const std::string& name, const std::vector<CDaoFieldInfo>& fields,
                               const std::vector<CDaoIndexInfo>& indexes)
{
    std::string sql = "CREATE TABLE " + QuoteName(name) + " (";
    for (std::size_t i = 0; i < fields.size(); ++i)
        sql += (i ? ", " : "") + ColumnDefinition(fields[i]);
    sql += ")";
    Atomically([&] {
        Exec(sql);
        for (const auto& index : indexes)
            Exec(IndexSql(name, index));
        NoteObject(name, kObjectTable, std::string());
    });
    if (m_isam)
        m_isam->TableCreated(name);
}

void SqliteEngine::RenameTable(const std::string& from, const std::string& to)
{
    Atomically([&] {
        Exec("ALTER TABLE " + QuoteName(from) + " RENAME TO " + QuoteName(to));
        RenameObject(from, to);
    });
}

void SqliteEngine::DropTable(const std::string& name)
{
    Atomically([&] {
        Exec("DROP TABLE " + QuoteName(name));
        DropObject(name);
    });
}

void SqliteEngine::AddField(const std::string& table, const CDaoFieldInfo& field)
{
    if (field.m_lAttributes & dbAutoIncrField)
        AddCounter(table, field);
    else
        Atomically([&] { Exec("ALTER TABLE " + QuoteName(table) + " ADD COLUMN " + ColumnDefinition(field)); });
    TouchObject(table);
}

// SQLite adds no key column to a table that exists: the table is built anew
// with the counter, which takes each record's row id as its number, so that
// the records keep their identity.
void SqliteEngine::AddCounter(const std::string& table, const CDaoFieldInfo& info)
{
    const std::vector<DaoColumn> columns = Columns(table);
    std::vector<std::string> indexes;
    {
        Statement s(conn, "SELECT sql FROM sqlite_master WHERE type='index' AND tbl_name=?1 COLLATE NOCASE "
                          "AND sql IS NOT NULL");
        sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
        while (s.Step() == SQLITE_ROW)
            indexes.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)));
    }
    const std::string temp = table + "~vxrebuild";
    std::string create = "CREATE TABLE " + QuoteName(temp) + " (";
    std::string names;
    for (const auto& c : columns) {
        create += QuoteName(c.name) + " " + DeclaredType(c.type, c.size, 0);
        if (c.required)
            create += " NOT NULL";
        if (!c.defaultValue.empty())
            create += " DEFAULT (" + c.defaultValue + ")";
        create += ", ";
        names += QuoteName(c.name) + ", ";
    }
    create += ColumnDefinition(info) + ")";
    Atomically([&] {
        Exec("PRAGMA legacy_alter_table=ON");
        Exec(create);
        Exec("INSERT INTO " + QuoteName(temp) + " (" + names + QuoteName(info.m_strName.StdString()) + ") SELECT " +
             names + "rowid FROM " + QuoteName(table) + " ORDER BY rowid");
        Exec("DROP TABLE " + QuoteName(table));
        Exec("ALTER TABLE " + QuoteName(temp) + " RENAME TO " + QuoteName(table));
        for (const auto& sql : indexes)
            Exec(sql);
        Exec("PRAGMA legacy_alter_table=OFF");
    });
}

void SqliteEngine::DropField(const std::string& table, const std::string& field)
{
    Atomically([&] { Exec("ALTER TABLE " + QuoteName(table) + " DROP COLUMN " + QuoteName(field)); });
    TouchObject(table);
}

void SqliteEngine::CreateIndex(const std::string& table, const CDaoIndexInfo& index)
{
    Atomically([&] { Exec(IndexSql(table, index)); });
    TouchObject(table);
}

void SqliteEngine::DropIndex(const std::string&, const IndexEntry& index)
{
    Atomically([&] { Exec("DROP INDEX " + QuoteName(index.stored)); });
}

void SqliteEngine::CreateQuery(const std::string& name, const std::string& sql, bool returnsRecords)
{
    Atomically([&] {
        // A select query is a view, which every SQLite tool understands; an
        // action query has no such form and is kept as text in the catalogue.
        if (returnsRecords) {
            Exec("CREATE VIEW " + QuoteName(name) + " AS " + sql);
            NoteObject(name, kObjectQuery, sql);
        } else {
            NoteObject(name, kObjectActionQuery, sql);
        }
    });
}

void SqliteEngine::DropQuery(const QueryEntry& query)
{
    Atomically([&] {
        if (query.view)
            Exec("DROP VIEW " + QuoteName(query.name));
        DropObject(query.name);
    });
}

} // namespace vx
