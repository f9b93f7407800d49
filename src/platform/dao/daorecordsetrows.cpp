// The record set's walk over its members: opening, reading members from
// the opening statement, holding their values, and writing them back.
#include "platform/dao/daorecordset_p.h"

#include "platform/framework/util_p.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>

namespace vx {

namespace {

// Reads the values of the statement's row from column `first` on into the
// cells of `row`: fresh cells (Put) or cells that hold a value (Set). One
// sqlite3_column_value per value: the typed getters would each go through
// the statement's checks again.
template <bool Fresh>
void LoadRow(sqlite3_stmt* s, int first, RowCache& cache, Cell* row)
{
    const std::size_t width = cache.Width();
    for (std::size_t i = 0; i < width; ++i) {
        sqlite3_value* v = sqlite3_column_value(s, static_cast<int>(i) + first);
        Cell& cell = row[i];
        if constexpr (!Fresh)
            cache.SetNull(cell);
        switch (sqlite3_value_type(v)) {
        case SQLITE_INTEGER:
            RowCache::PutInt(cell, sqlite3_value_int64(v));
            break;
        case SQLITE_FLOAT:
            RowCache::PutReal(cell, sqlite3_value_double(v));
            break;
        case SQLITE_TEXT: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(v));
            const auto length = static_cast<std::size_t>(sqlite3_value_bytes(v));
            if constexpr (Fresh)
                cache.PutBytes(cell, DaoValue::Text, text, length);
            else
                cache.SetBytes(cell, DaoValue::Text, text, length);
            break;
        }
        case SQLITE_BLOB: {
            const auto* data = static_cast<const char*>(sqlite3_value_blob(v));
            const auto length = static_cast<std::size_t>(sqlite3_value_bytes(v));
            if constexpr (Fresh)
                cache.PutBytes(cell, DaoValue::Blob, data, length);
            else
                cache.SetBytes(cell, DaoValue::Blob, data, length);
            break;
        }
        default:
            RowCache::PutNull(cell);
            break;
        }
    }
}

bool IsNameChar(unsigned char c)
{
    return std::isalnum(c) || c == '_' || c == '$' || c >= 0x80;
}

bool Keyword(const std::string& sql, std::size_t& i, const char* word)
{
    const std::size_t n = std::strlen(word);
    if (sql.size() - i < n || AsciiCompareNoCase(sql.c_str() + i, word, n) != 0)
        return false;
    if (i + n < sql.size() && IsNameChar(static_cast<unsigned char>(sql[i + n])))
        return false;
    i += n;
    return true;
}

void Blanks(const std::string& sql, std::size_t& i)
{
    while (i < sql.size() && std::isspace(static_cast<unsigned char>(sql[i])))
        ++i;
}

// "SELECT * FROM <table> [WHERE ...] [ORDER BY ...]": the one form whose
// records map one to one onto rows of a table, and so can be changed.
// Gives the table name and where the name ends.
bool SimpleSelect(const std::string& sql, std::string& table, std::size_t& nameEnd)
{
    std::size_t i = 0;
    Blanks(sql, i);
    if (!Keyword(sql, i, "SELECT"))
        return false;
    Blanks(sql, i);
    if (i >= sql.size() || sql[i] != '*')
        return false;
    ++i;
    Blanks(sql, i);
    if (!Keyword(sql, i, "FROM"))
        return false;
    Blanks(sql, i);
    if (i >= sql.size())
        return false;
    const char open = sql[i];
    if (open == '[' || open == '"' || open == '`') {
        const char close = open == '[' ? ']' : open;
        ++i;
        while (i < sql.size()) {
            if (sql[i] == close) {
                if (close != ']' && i + 1 < sql.size() && sql[i + 1] == close) {
                    table += close;
                    i += 2;
                    continue;
                }
                break;
            }
            table += sql[i++];
        }
        if (i >= sql.size())
            return false;
        ++i;
    } else {
        while (i < sql.size() && IsNameChar(static_cast<unsigned char>(sql[i])))
            table += sql[i++];
    }
    if (table.empty())
        return false;
    nameEnd = i;
    Blanks(sql, i);
    if (i == sql.size())
        return true;
    std::size_t j = i;
    return i > nameEnd && (Keyword(sql, j, "WHERE") || Keyword(sql, j, "ORDER"));
}

// The type of a computed column, from the first value it holds.
void InferColumn(DaoColumn& column, const RowCache& cache, std::size_t index)
{
    for (std::size_t r = 0; r < cache.Rows(); ++r) {
        const Cell& v = cache.Row(r)[index];
        switch (v.kind) {
        case DaoValue::Int:
            ParseDeclaredType(v.i >= INT32_MIN && v.i <= INT32_MAX ? "LONG" : "DOUBLE", false, column);
            return;
        case DaoValue::Real:
            ParseDeclaredType("DOUBLE", false, column);
            return;
        case DaoValue::Blob:
            ParseDeclaredType("LONGBINARY", false, column);
            return;
        case DaoValue::Text:
            ParseDeclaredType("LONGTEXT", false, column);
            return;
        default:
            break;
        }
    }
}

} // namespace

void DaoRecordsetPrivate::Open(DaoDatabasePrivate& database, int openType, const std::string& text, int openOptions)
{
    db = &database;
    type = openType;
    options = openOptions;
    sql = text;

    std::string name;
    std::size_t nameEnd = 0;
    Statement stmt;
    int first = 0; // the first value column: 1 when the row id leads
    if (type != dbOpenSnapshot && SimpleSelect(text, name, nameEnd)) {
        const std::string found = db->FindTable(name);
        if (!found.empty()) {
            try {
                select = "SELECT rowid, * FROM " + QuoteName(found) + text.substr(nameEnd);
                stmt = Statement(db->conn, select);
                table = found;
                updatable = true;
                columns = db->Columns(found);
                first = 1;
            } catch (CDaoException&) {
                select.clear(); // a table without row ids: read it as it is
            }
        }
    }
    if (!stmt.get()) {
        select = text;
        stmt = Statement(db->conn, text);
    }
    sqlite3_stmt* s = stmt.get();
    const int count = sqlite3_column_count(s) - first;
    if (updatable && static_cast<int>(columns.size()) != count)
        updatable = false;
    if (!updatable) {
        columns.assign(static_cast<std::size_t>(count), DaoColumn());
        for (int i = 0; i < count; ++i) {
            auto& c = columns[static_cast<std::size_t>(i)];
            c.name = sqlite3_column_name(s, i + first);
            const char* declared = sqlite3_column_decltype(s, i + first);
            ParseDeclaredType(declared ? declared : "", false, c);
            if (!declared)
                c.declared.clear();
        }
    }
    width = columns.size();
    rows.Reset(width);
    synced = db->changeStamp;
    open = true;
    if (updatable && db->streamable) {
        // Members as the walk reaches them, values straight from the row.
        stream = std::move(stmt);
        streaming = true;
        db->streams.push_back(this);
        if (Advance()) {
            pos = 0;
            bof = eof = false;
        }
        return;
    }
    ReadAll(stmt, first);
    materialized = true;
    for (std::size_t i = 0; i < width; ++i)
        if (columns[i].declared.empty() && !updatable)
            InferColumn(columns[i], rows, i);
    if (rows.Rows() != 0) {
        pos = 0;
        bof = eof = false;
    }
}

void DaoRecordsetPrivate::ReadAll(Statement& stmt, int first)
{
    sqlite3_stmt* s = stmt.get();
    rows.StartHolding();
    while (stmt.Step() == SQLITE_ROW) {
        const std::int64_t rowid = first ? sqlite3_column_int64(s, 0) : static_cast<std::int64_t>(rows.Rows());
        LoadRow<true>(s, first, rows, rows.AppendUnfilledRow(rowid, synced));
    }
}

void DaoRecordsetPrivate::Reset()
{
    for (auto& [mask, stmt] : writes)
        sqlite3_finalize(stmt);
    writes.clear();
    lastWrite = nullptr;
    StopStreaming();
    columns.clear();
    width = 0;
    rows.Reset(0);
    edit.clear();
    assigned.clear();
    refreshSql.clear();
    select.clear();
    materialized = false;
    lastPending = false;
    pos = -1;
    bof = eof = true;
    currentDeleted = false;
    editMode = dbEditNone;
    updatable = false;
    table.clear();
}

int DaoRecordsetPrivate::SearchColumn(const char* name) const
{
    if (name) {
        for (std::size_t i = 0; i < width; ++i)
            if (AsciiCompareNoCase(columns[i].name.c_str(), name) == 0)
                return static_cast<int>(lastFound = i);
    }
    ThrowDao(kDaoItemNotFound, "Item not found in this collection.");
}

// --- the walk ----------------------------------------------------------------

bool DaoRecordsetPrivate::Advance()
{
    int rc = SQLITE_DONE;
    try {
        rc = stream.Step();
    } catch (...) {
        // The statement starts over after an error: the members read so
        // far stay, and the set reads no more.
        StopStreaming();
        throw;
    }
    if (rc != SQLITE_ROW) {
        StopStreaming();
        return false;
    }
    rows.AppendMember(sqlite3_column_int64(stream.get(), 0));
    streamRow = Count() - 1;
    return true;
}

void DaoRecordsetPrivate::AdvanceTo(long row)
{
    while (streaming && Count() <= row)
        Advance();
}

void DaoRecordsetPrivate::Complete()
{
    while (streaming)
        Advance();
}

void DaoRecordsetPrivate::Settle()
{
    if (!lastPending)
        return;
    Complete();
    lastPending = false;
    pos = Count() - 1;
}

void DaoRecordsetPrivate::StopStreaming()
{
    if (!streaming)
        return;
    stream = Statement();
    streaming = false;
    streamRow = -1;
    std::erase(db->streams, this);
}

ValueView DaoRecordsetPrivate::StreamValue(std::size_t i) const
{
    sqlite3_value* v = sqlite3_column_value(stream.get(), static_cast<int>(i) + 1);
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

// Field `i` of the stream's row, the usual cases (a value stored as the
// field's type stores it) without a detour.
void DaoRecordsetPrivate::ReadStream(std::size_t i, COleVariant& value) const
{
    sqlite3_value* v = sqlite3_column_value(stream.get(), static_cast<int>(i) + 1);
    const short fieldType = columns[i].type;
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        if (fieldType != dbLong)
            break;
        value.Clear();
        value.vt = VT_I4;
        value.lVal = static_cast<LONG>(sqlite3_value_int64(v));
        return;
    case SQLITE_FLOAT:
        if (fieldType != dbDouble)
            break;
        value.Clear();
        value.vt = VT_R8;
        value.dblVal = sqlite3_value_double(v);
        return;
    case SQLITE_TEXT:
        if (fieldType != dbText && fieldType != dbMemo)
            break;
        value.SetString(reinterpret_cast<const char*>(sqlite3_value_text(v)),
                        static_cast<std::size_t>(sqlite3_value_bytes(v)));
        return;
    default:
        break;
    }
    ValueToVariant(StreamValue(i), columns[i], value);
}

void DaoRecordsetPrivate::ReadCarefully(std::size_t i, COleVariant& value)
{
    if (editMode != dbEditNone) {
        ValueToVariant(ViewOf(edit[i]), columns[i], value);
        return;
    }
    Settle();
    RequireCurrent();
    if (streaming && pos == streamRow)
        ReadStream(i, value);
    else
        rows.ToVariant(Current(pos)[i], columns[i], value);
}

const Cell* DaoRecordsetPrivate::Current(long row)
{
    const auto r = static_cast<std::size_t>(row);
    if (!rows.Held(r)) {
        if (!materialized)
            Materialize();
        if (!rows.Held(r))
            Reload(row);
    } else if (db->changeStamp != synced && rows.Stamp(r) != db->changeStamp) {
        Reload(row);
    }
    return Row(row);
}

// The first visit of a member the walk has passed reads the values of all
// members in one pass, as an opening that holds its rows would have.
void DaoRecordsetPrivate::Materialize()
{
    Complete();
    materialized = true;
    rows.StartHolding();
    Statement stmt(db->conn, select);
    sqlite3_stmt* s = stmt.get();
    const std::uint64_t now = db->changeStamp;
    // The rows come in the members' order unless the table changed since;
    // only then are members looked up by row id.
    std::unordered_map<std::int64_t, std::size_t> index;
    std::size_t expect = 0;
    while (stmt.Step() == SQLITE_ROW) {
        const std::int64_t rowid = sqlite3_column_int64(s, 0);
        std::size_t r = expect;
        if (r >= rows.Rows() || rows.RowId(r) != rowid) {
            if (index.empty())
                for (std::size_t k = 0; k < rows.Rows(); ++k)
                    index.emplace(rows.RowId(k), k);
            const auto it = index.find(rowid);
            if (it == index.end())
                continue; // not a member
            r = it->second;
        }
        LoadRow<false>(s, 1, rows, rows.Row(r));
        rows.SetStamp(r, now);
        expect = r + 1;
    }
    synced = now;
}

// Reads member `row` by its row id.
void DaoRecordsetPrivate::Reload(long row)
{
    if (!updatable)
        return;
    rows.StartHolding();
    if (refreshSql.empty()) {
        refreshSql = "SELECT ";
        for (std::size_t i = 0; i < width; ++i)
            refreshSql += (i ? ", " : "") + QuoteName(columns[i].name);
        refreshSql += " FROM " + QuoteName(table) + " WHERE rowid=?1";
    }
    sqlite3_stmt* s = db->Cached(refreshSql);
    sqlite3_bind_int64(s, 1, rows.RowId(static_cast<std::size_t>(row)));
    const int rc = sqlite3_step(s);
    if (rc == SQLITE_ROW) {
        LoadRow<false>(s, 0, rows, Row(row));
        rows.SetStamp(static_cast<std::size_t>(row), db->changeStamp);
        sqlite3_reset(s);
        return;
    }
    sqlite3_reset(s);
    if (rc != SQLITE_DONE)
        ThrowSqlite(db->conn, rc, refreshSql);
    ThrowDao(kDaoRecordDeleted, "Record is deleted.");
}

void FinishStream(DaoRecordsetPrivate& set)
{
    set.Settle();
    set.Complete();
}

// --- writes --------------------------------------------------------------------

// Notes a write of this set: its held values stay current if nothing else
// wrote since they were.
void DaoRecordsetPrivate::Wrote(long row)
{
    const bool wasSynced = db->changeStamp == synced;
    db->Written();
    if (wasSynced)
        synced = db->changeStamp;
    if (row >= 0 && rows.Held(static_cast<std::size_t>(row)))
        rows.SetStamp(static_cast<std::size_t>(row), db->changeStamp);
}

// The write statement for the fields assigned since AddNew or Edit: `kind`
// 'A' inserts, 'R' inserts and returns the row, 'E' updates one. Every
// parameter is bound anew before each use, and the statement was reset
// after its last, so it needs neither clearing nor resetting.
sqlite3_stmt* DaoRecordsetPrivate::WriteFor(char kind)
{
    key.assign(1, kind);
    key += assigned;
    if (lastWrite && key == lastKey)
        return lastWrite;
    auto it = writes.find(key);
    sqlite3_stmt* stmt = it != writes.end() ? it->second : AddWrite(key, WriteSql(kind));
    lastKey = key;
    lastWrite = stmt;
    return stmt;
}

std::string DaoRecordsetPrivate::WriteSql(char kind) const
{
    std::string names, values;
    int k = 0;
    for (std::size_t i = 0; i < width; ++i) {
        if (assigned[i] != '1')
            continue;
        ++k;
        if (kind == 'E') {
            names += (k > 1 ? ", " : "") + QuoteName(columns[i].name) + "=?" + std::to_string(k);
        } else {
            names += (k > 1 ? ", " : "") + QuoteName(columns[i].name);
            values += (k > 1 ? ", ?" : "?") + std::to_string(k);
        }
    }
    if (kind == 'E')
        return "UPDATE " + QuoteName(table) + " SET " + names + " WHERE rowid=?" + std::to_string(k + 1);
    std::string statement = k == 0 ? "INSERT INTO " + QuoteName(table) + " DEFAULT VALUES"
                                   : "INSERT INTO " + QuoteName(table) + " (" + names + ") VALUES (" + values + ")";
    return kind == 'R' ? statement + Returning() : statement;
}

sqlite3_stmt* DaoRecordsetPrivate::AddWrite(const std::string& writeKey, const std::string& statement)
{
    sqlite3_stmt* stmt = nullptr;
    const int rc = sqlite3_prepare_v3(db->conn, statement.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(stmt);
        ThrowSqlite(db->conn, rc, statement);
    }
    writes.emplace(writeKey, stmt);
    return stmt;
}

// Binds the assigned fields in their order; gives their number.
int DaoRecordsetPrivate::Bind(sqlite3_stmt* stmt) const
{
    int k = 0;
    for (std::size_t i = 0; i < width; ++i)
        if (assigned[i] == '1')
            BindValue(stmt, ++k, edit[i]);
    return k;
}

std::string DaoRecordsetPrivate::Returning() const
{
    std::string statement = " RETURNING rowid";
    for (const auto& c : columns)
        statement += ", " + QuoteName(c.name);
    return statement;
}

// Steps a write; one with RETURNING gives the row id and, into `into`, the
// row's values.
bool DaoRecordsetPrivate::RunWrite(sqlite3_stmt* s, std::int64_t& rowid, Cell* into)
{
    int rc = sqlite3_step(s);
    bool got = false;
    if (rc == SQLITE_ROW) {
        got = true;
        rowid = sqlite3_column_int64(s, 0);
        if (into)
            LoadRow<false>(s, 1, rows, into);
        rc = sqlite3_step(s);
    }
    if (rc != SQLITE_DONE) {
        const int code = sqlite3_extended_errcode(db->conn);
        sqlite3_reset(s);
        ThrowSqlite(db->conn, code, table);
    }
    sqlite3_reset(s);
    return got;
}

void DaoRecordsetPrivate::Insert()
{
    db->BeforeWrite();
    // The stored row is the edit buffer, unless a field left out gets a
    // value from the table (a default); then the insert returns the row.
    bool known = true;
    for (std::size_t i = 0; i < width; ++i)
        if (assigned[i] == '0' && !columns[i].autoIncrement && !columns[i].defaultValue.empty())
            known = false;
    sqlite3_stmt* s = WriteFor(known ? 'A' : 'R');
    Bind(s);
    std::int64_t rowid = 0;
    if (!rows.Holding()) {
        // Its values are read when it is visited.
        RunWrite(s, rowid, nullptr);
        if (known)
            rowid = sqlite3_last_insert_rowid(db->conn);
        rows.AppendMember(rowid);
    } else {
        Cell* row = rows.AppendRow(0, 0);
        try {
            if (known) {
                RunWrite(s, rowid, nullptr);
                rowid = sqlite3_last_insert_rowid(db->conn);
                for (std::size_t i = 0; i < width; ++i) {
                    if (columns[i].autoIncrement)
                        rows.SetInt(row[i], rowid);
                    else
                        rows.Set(row[i], edit[i]);
                }
            } else {
                RunWrite(s, rowid, row);
            }
        } catch (...) {
            rows.DropLastRow();
            throw;
        }
        rows.SetRowId(rows.Rows() - 1, rowid);
        rows.SetStamp(rows.Rows() - 1, db->changeStamp);
    }
    Wrote(Count() - 1);
    lastModified = rowid;
}

void DaoRecordsetPrivate::UpdateCurrent()
{
    if (assigned.find('1') == std::string::npos)
        return;
    db->BeforeWrite();
    sqlite3_stmt* s = WriteFor('E');
    const int bound = Bind(s);
    const std::int64_t rowid = rows.RowId(static_cast<std::size_t>(pos));
    sqlite3_bind_int64(s, bound + 1, rowid);
    std::int64_t unused = 0;
    RunWrite(s, unused, nullptr);
    if (sqlite3_changes(db->conn) == 0)
        ThrowDao(kDaoRecordDeleted, "Record is deleted.");
    if (rows.Held(static_cast<std::size_t>(pos))) {
        Cell* row = Row(pos);
        for (std::size_t i = 0; i < width; ++i)
            if (assigned[i] == '1')
                rows.Set(row[i], edit[i]);
    }
    Wrote(pos);
    lastModified = rowid;
}

} // namespace vx
