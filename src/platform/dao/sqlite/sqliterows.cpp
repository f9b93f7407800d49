// The file engine's records: cursors over statements, and the prepared
// statements that write records by their row ids.
#include "platform/dao/daostatements_p.h"
#include "platform/dao/sqlite/sqliteengine_p.h"

namespace vx {

namespace {

// The rows of a statement; with `first` 1 the row id leads each row.
class SqliteCursor final : public Cursor {
public:
    SqliteCursor(Statement statement, int first) : m_statement(std::move(statement)), m_first(first) {}

    bool Next() override { return m_statement.Step() == SQLITE_ROW; }
    std::int64_t Key() const override { return sqlite3_column_int64(m_statement.get(), 0); }
    bool NextKeyed(std::int64_t& key) override
    {
        // Stepped here rather than through Step: this runs once per record
        // of every walk, and Step is out of line.
        sqlite3_stmt* s = m_statement.get();
        const int rc = sqlite3_step(s);
        if (rc == SQLITE_ROW) [[likely]] {
            key = sqlite3_column_int64(s, 0);
            return true;
        }
        if (rc != SQLITE_DONE)
            m_statement.Fail(rc);
        return false;
    }
    ValueView Value(std::size_t i) const override
    {
        return ViewValue(m_statement.get(), static_cast<int>(i) + m_first);
    }
    void ToVariant(std::size_t i, const DaoColumn& column, COleVariant& out) const override
    {
        // The usual case straight from SQLite's value, without a view.
        sqlite3_value* v = sqlite3_column_value(m_statement.get(), static_cast<int>(i) + m_first);
        switch (sqlite3_value_type(v)) {
        case SQLITE_INTEGER:
            if (column.type != dbLong)
                break;
            out.Clear();
            out.vt = VT_I4;
            out.lVal = static_cast<LONG>(sqlite3_value_int64(v));
            return;
        case SQLITE_FLOAT:
            if (column.type != dbDouble)
                break;
            out.Clear();
            out.vt = VT_R8;
            out.dblVal = sqlite3_value_double(v);
            return;
        case SQLITE_TEXT:
            if (column.type != dbText && column.type != dbMemo)
                break;
            out.SetString(reinterpret_cast<const char*>(sqlite3_value_text(v)),
                          static_cast<std::size_t>(sqlite3_value_bytes(v)));
            return;
        default:
            break;
        }
        ConvertValue(i, column, out);
    }
    std::size_t Width() const override
    {
        return static_cast<std::size_t>(sqlite3_column_count(m_statement.get()) - m_first);
    }
    DaoColumn Describe(std::size_t i) const override
    {
        const int at = static_cast<int>(i) + m_first;
        DaoColumn c;
        c.name = sqlite3_column_name(m_statement.get(), at);
        const char* declared = sqlite3_column_decltype(m_statement.get(), at);
        ParseDeclaredType(declared ? declared : "", false, c);
        if (!declared)
            c.declared.clear();
        return c;
    }

private:
    // The other cases, apart so that the usual ones need no frame for a view.
    [[gnu::noinline]] void ConvertValue(std::size_t i, const DaoColumn& column, COleVariant& out) const
    {
        ValueToVariant(Value(i), column, out);
    }

    Statement m_statement;
    int m_first;
};

// One row read through a cached statement, which is reset afterwards.
class RowCursor final : public Cursor {
public:
    RowCursor(sqlite3_stmt* statement, std::int64_t key) : m_statement(statement), m_key(key) {}
    ~RowCursor() override { sqlite3_reset(m_statement); }

    bool Next() override
    {
        const int rc = sqlite3_step(m_statement);
        if (rc == SQLITE_ROW)
            return true;
        if (rc != SQLITE_DONE) {
            sqlite3* db = sqlite3_db_handle(m_statement);
            const int code = sqlite3_extended_errcode(db);
            sqlite3_reset(m_statement);
            ThrowSqlite(db, code, sqlite3_sql(m_statement) ? sqlite3_sql(m_statement) : "");
        }
        return false;
    }
    std::int64_t Key() const override { return m_key; }
    ValueView Value(std::size_t i) const override { return ViewValue(m_statement, static_cast<int>(i)); }
    std::size_t Width() const override { return static_cast<std::size_t>(sqlite3_column_count(m_statement)); }
    DaoColumn Describe(std::size_t i) const override
    {
        DaoColumn c;
        c.name = sqlite3_column_name(m_statement, static_cast<int>(i));
        return c;
    }

private:
    sqlite3_stmt* m_statement;
    std::int64_t m_key;
};

// The writes of a set for one choice of fields. Every parameter is bound
// anew before each use, and the statement is reset after it, so it needs
// neither clearing nor resetting.
class SqliteWriter final : public RowWriter {
public:
    SqliteWriter(SqliteEngine& engine, const std::string& table, const std::string& sql, const std::string& assigned,
                 std::size_t width)
        : m_engine(engine), m_table(table), m_assigned(assigned), m_width(width)
    {
        const int rc = sqlite3_prepare_v3(engine.conn, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &m_stmt, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(m_stmt);
            ThrowSqlite(engine.conn, rc, sql);
        }
    }
    ~SqliteWriter() override { sqlite3_finalize(m_stmt); }

    std::int64_t Insert(const DaoValue* values) override
    {
        Bind(values);
        int rc = sqlite3_step(m_stmt);
        std::int64_t rowid = 0;
        if (rc == SQLITE_ROW) {
            // RETURNING rowid, every field.
            rowid = sqlite3_column_int64(m_stmt, 0);
            m_returned.resize(m_width);
            for (std::size_t i = 0; i < m_width; ++i)
                ReadValue(m_stmt, static_cast<int>(i) + 1, m_returned[i]);
            rc = sqlite3_step(m_stmt);
        } else {
            rowid = sqlite3_last_insert_rowid(m_engine.conn);
        }
        Finish(rc);
        return rowid;
    }

    ValueView Returned(std::size_t i) const override { return ViewOf(m_returned[i]); }

    Outcome Update(std::int64_t key, const DaoValue* values, const DaoValue* originals) override
    {
        int k = Bind(values);
        sqlite3_bind_int64(m_stmt, ++k, key);
        for (std::size_t i = 0; i < m_width; ++i)
            BindValue(m_stmt, ++k, originals[i]);
        Finish(sqlite3_step(m_stmt));
        if (sqlite3_changes(m_engine.conn) != 0)
            return Done;
        sqlite3_stmt* s = m_engine.Cached("SELECT 1 FROM " + QuoteName(m_table) + " WHERE rowid=?1");
        sqlite3_bind_int64(s, 1, key);
        const bool exists = sqlite3_step(s) == SQLITE_ROW;
        sqlite3_reset(s);
        return exists ? Changed : Deleted;
    }

private:
    // Binds the assigned fields in their order; gives their number.
    int Bind(const DaoValue* values)
    {
        int k = 0;
        for (std::size_t i = 0; i < m_width; ++i)
            if (m_assigned[i] == '1')
                BindValue(m_stmt, ++k, values[i]);
        return k;
    }
    void Finish(int rc)
    {
        m_engine.Changed();
        if (rc != SQLITE_DONE) {
            const int code = sqlite3_extended_errcode(m_engine.conn);
            sqlite3_reset(m_stmt);
            ThrowSqlite(m_engine.conn, code, m_table);
        }
        sqlite3_reset(m_stmt);
    }

    SqliteEngine& m_engine;
    std::string m_table;
    std::string m_assigned;
    std::size_t m_width;
    sqlite3_stmt* m_stmt = nullptr;
    std::vector<DaoValue> m_returned;
};

} // namespace

long SqliteEngine::Execute(const std::string& sql)
{
    const int before = sqlite3_total_changes(conn);
    Exec(sql);
    return sqlite3_total_changes(conn) - before;
}

std::unique_ptr<Cursor> SqliteEngine::OpenRows(const std::string& table, const std::vector<DaoColumn>&,
                                               const std::string& tail)
{
    return std::make_unique<SqliteCursor>(Statement(conn, "SELECT rowid, * FROM " + QuoteName(table) + tail), 1);
}

std::unique_ptr<Cursor> SqliteEngine::OpenQuery(const std::string& sql)
{
    return std::make_unique<SqliteCursor>(Statement(conn, sql), 0);
}

std::unique_ptr<Cursor> SqliteEngine::ReadRow(const std::string& table, const std::vector<DaoColumn>& columns,
                                              std::int64_t key)
{
    sqlite3_stmt* s = Cached("SELECT " + ColumnList(columns) + " FROM " + QuoteName(table) + " WHERE rowid=?1");
    sqlite3_bind_int64(s, 1, key);
    return std::make_unique<RowCursor>(s, key);
}

std::unique_ptr<RowWriter> SqliteEngine::PrepareInsert(const std::string& table,
                                                       const std::vector<DaoColumn>& columns,
                                                       const std::string& assigned, bool returning)
{
    std::string sql = InsertStatement(table, columns, assigned, "?");
    if (returning) {
        sql += " RETURNING rowid";
        if (!columns.empty())
            sql += ", " + ColumnList(columns);
    }
    return std::make_unique<SqliteWriter>(*this, table, sql, assigned, columns.size());
}

std::unique_ptr<RowWriter> SqliteEngine::PrepareUpdate(const std::string& table,
                                                       const std::vector<DaoColumn>& columns,
                                                       const std::string& assigned)
{
    // Written only if the record still holds what the set read: byte for
    // byte, so that a change of case by another program counts too.
    int k = 0;
    const std::string sets = AssignmentList(columns, assigned, "?", k);
    std::string sql = "UPDATE " + QuoteName(table) + " SET " + sets + " WHERE rowid=?" + std::to_string(++k);
    for (const auto& c : columns)
        sql += " AND " + QuoteName(c.name) + " IS ?" + std::to_string(++k) + " COLLATE BINARY";
    return std::make_unique<SqliteWriter>(*this, table, sql, assigned, columns.size());
}

void SqliteEngine::DeleteRow(const std::string& table, std::int64_t key)
{
    sqlite3_stmt* s = Cached("DELETE FROM " + QuoteName(table) + " WHERE rowid=?1");
    sqlite3_bind_int64(s, 1, key);
    const int rc = sqlite3_step(s);
    Changed();
    if (rc != SQLITE_DONE) {
        const int code = sqlite3_extended_errcode(conn);
        sqlite3_reset(s);
        ThrowSqlite(conn, code, table);
    }
    sqlite3_reset(s);
}

} // namespace vx
