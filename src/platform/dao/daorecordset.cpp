#include "platform/dao/daorecordset.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoengine_p.h"
#include "platform/dao/daoquerydef.h"
#include "platform/dao/daotabledef.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>

namespace vx {

// A record set keeps the row ids and values of its members in memory: it
// reads them in one pass at opening, which is what makes a walk over the
// records as fast as the engine's own. A cached row is read again when the
// database has been written since it was loaded (by anyone but this set).
struct DaoRecordsetPrivate {
    DaoDatabasePrivate* db = nullptr;
    bool open = false;
    int type = dbOpenDynaset;
    int options = 0;
    std::string sql;
    std::string table; // the table that updates go to
    bool updatable = false;
    std::vector<DaoColumn> columns;
    std::vector<std::int64_t> rowids;
    std::vector<DaoValue> cells; // row by row
    // The texts read at opening, one after another: one allocation for all
    // of them instead of one each.
    std::string pool;
    std::vector<std::uint64_t> stamps;
    std::uint64_t synced = 0;
    long pos = -1;
    bool bof = true;
    bool eof = true;
    bool currentDeleted = false;
    short editMode = dbEditNone;
    std::vector<DaoValue> edit;
    std::string assigned; // '1' for each field set since AddNew or Edit
    std::int64_t lastModified = 0;
    std::map<std::string, sqlite3_stmt*> writes; // by field mask and kind
    mutable std::size_t lastFound = 0;

    std::size_t Width() const { return columns.size(); }
    long Count() const { return static_cast<long>(rowids.size()); }
    DaoValue* Row(long row) { return cells.data() + static_cast<std::size_t>(row) * Width(); }

    void Reset()
    {
        for (auto& [key, stmt] : writes)
            sqlite3_finalize(stmt);
        writes.clear();
        columns.clear();
        rowids.clear();
        cells.clear();
        pool.clear();
        stamps.clear();
        edit.clear();
        assigned.clear();
        pos = -1;
        bof = eof = true;
        currentDeleted = false;
        editMode = dbEditNone;
        updatable = false;
        table.clear();
    }

    void RequireOpen() const
    {
        if (!open || !db || !db->IsOpen())
            ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
    }

    bool CanUpdate() const
    {
        return open && updatable && !db->readOnly && !(options & dbReadOnly) && type != dbOpenSnapshot &&
               type != dbOpenForwardOnly;
    }

    int FindColumn(const char* name) const
    {
        if (name && !columns.empty()) {
            // Fields are mostly read in their order: try the one after the
            // last found first.
            const std::size_t next = (lastFound + 1) % columns.size();
            if (AsciiCompareNoCase(columns[next].name.c_str(), name) == 0)
                return static_cast<int>(lastFound = next);
            for (std::size_t i = 0; i < columns.size(); ++i)
                if (AsciiCompareNoCase(columns[i].name.c_str(), name) == 0)
                    return static_cast<int>(lastFound = i);
        }
        ThrowDao(kDaoItemNotFound, "Item not found in this collection.");
    }

    void CheckIndex(int index) const
    {
        if (index < 0 || index >= static_cast<int>(columns.size()))
            ThrowDao(kDaoItemNotFound, "Item not found in this collection.");
    }

    void RequireCurrent() const
    {
        if (bof || eof || pos < 0 || pos >= Count())
            ThrowDao(kDaoNoCurrentRecord, "No current record.");
        if (currentDeleted)
            ThrowDao(kDaoRecordDeleted, "Record is deleted.");
    }

    // Brings the cached row up to date if the database changed since.
    void Refresh(long row)
    {
        const std::uint64_t now = db->changeStamp;
        if (now == synced || stamps[static_cast<std::size_t>(row)] == now || !updatable)
            return;
        std::string sql = "SELECT ";
        for (std::size_t i = 0; i < columns.size(); ++i)
            sql += (i ? ", " : "") + QuoteName(columns[i].name);
        sql += " FROM " + QuoteName(table) + " WHERE rowid=?1";
        sqlite3_stmt* s = db->Cached(sql);
        sqlite3_bind_int64(s, 1, rowids[static_cast<std::size_t>(row)]);
        const int rc = sqlite3_step(s);
        if (rc == SQLITE_ROW) {
            DaoValue* cells = Row(row);
            for (std::size_t i = 0; i < columns.size(); ++i)
                ReadValue(s, static_cast<int>(i), cells[i]);
            stamps[static_cast<std::size_t>(row)] = now;
            sqlite3_reset(s);
            return;
        }
        sqlite3_reset(s);
        if (rc != SQLITE_DONE)
            ThrowSqlite(db->conn, rc, sql);
        ThrowDao(kDaoRecordDeleted, "Record is deleted.");
    }

    void LeaveEdit() { editMode = dbEditNone; }

    // A loaded value as a plain one (texts out of the pool).
    DaoValue Plain(const DaoValue& v) const
    {
        if (v.kind != DaoValue::Pooled)
            return v;
        DaoValue plain;
        plain.kind = DaoValue::Text;
        plain.s.assign(pool, v.pooled.offset, v.pooled.length);
        return plain;
    }

    void ToVariant(const DaoValue& v, const DaoColumn& column, COleVariant& out) const
    {
        if (v.kind != DaoValue::Pooled) {
            ValueToVariant(v, column, out);
        } else if (column.type == dbText || column.type == dbMemo) {
            out.SetString(pool.data() + v.pooled.offset, v.pooled.length);
        } else {
            ValueToVariant(Plain(v), column, out);
        }
    }

    // Reads column `index` of the statement's row into a cell of the set.
    void Load(sqlite3_stmt* s, int index, DaoValue& cell)
    {
        if (sqlite3_column_type(s, index) == SQLITE_TEXT) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(s, index));
            const auto length = static_cast<std::size_t>(sqlite3_column_bytes(s, index));
            if (pool.size() + length <= UINT32_MAX) {
                cell.kind = DaoValue::Pooled;
                cell.pooled.offset = static_cast<std::uint32_t>(pool.size());
                cell.pooled.length = static_cast<std::uint32_t>(length);
                pool.append(text, length);
                return;
            }
        }
        ReadValue(s, index, cell);
    }

    // Notes a write of this set: its cache stays current if nothing else
    // wrote since it was.
    void Wrote(long row)
    {
        const bool wasSynced = db->changeStamp == synced;
        db->Written();
        if (wasSynced)
            synced = db->changeStamp;
        if (row >= 0)
            stamps[static_cast<std::size_t>(row)] = db->changeStamp;
    }

    sqlite3_stmt* FindWrite(const std::string& key)
    {
        auto it = writes.find(key);
        if (it == writes.end())
            return nullptr;
        sqlite3_reset(it->second);
        sqlite3_clear_bindings(it->second);
        return it->second;
    }

    sqlite3_stmt* AddWrite(const std::string& key, const std::string& sql)
    {
        sqlite3_stmt* stmt = nullptr;
        const int rc = sqlite3_prepare_v3(db->conn, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(stmt);
            ThrowSqlite(db->conn, rc, sql);
        }
        writes.emplace(key, stmt);
        return stmt;
    }

    std::string Returning() const
    {
        std::string sql = " RETURNING rowid";
        for (const auto& c : columns)
            sql += ", " + QuoteName(c.name);
        return sql;
    }

    // Steps a write with RETURNING and takes the row it returns.
    bool RunWrite(sqlite3_stmt* s, std::int64_t& rowid, DaoValue* into)
    {
        int rc = sqlite3_step(s);
        bool got = false;
        if (rc == SQLITE_ROW && into) {
            got = true;
            rowid = sqlite3_column_int64(s, 0);
            for (std::size_t i = 0; i < columns.size(); ++i)
                ReadValue(s, static_cast<int>(i) + 1, into[i]);
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
};

namespace {

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
void InferColumn(DaoColumn& column, const DaoValue* cells, std::size_t width, std::size_t rows, std::size_t index)
{
    for (std::size_t r = 0; r < rows; ++r) {
        const DaoValue& v = cells[r * width + index];
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
        case DaoValue::Pooled:
            ParseDeclaredType("LONGTEXT", false, column);
            return;
        default:
            break;
        }
    }
}

} // namespace

} // namespace vx

using vx::DaoDatabasePrivate;
using vx::DaoValue;

CDaoRecordset::CDaoRecordset(CDaoDatabase* database)
    : m_pDatabase(database), d(std::make_unique<vx::DaoRecordsetPrivate>())
{
}

CDaoRecordset::~CDaoRecordset()
{
    Close();
}

void CDaoRecordset::Open(int type, const char* sql, int options)
{
    if (!m_pDatabase)
        vx::ThrowDao(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
    DaoDatabasePrivate* db = m_pDatabase->d_func();
    db->RequireOpen();
    const std::string text = vx::TrimSql(sql ? sql : "");
    if (text.empty())
        vx::ThrowDao(vx::kDaoInvalidArgument, "Invalid argument.");
    Close();
    auto& p = *d;
    p.db = db;
    p.type = type;
    p.options = options;
    p.sql = text;

    std::string table;
    std::size_t nameEnd = 0;
    std::unique_ptr<vx::Statement> stmt;
    int first = 0; // the first value column: 1 when the row id leads
    if (type != dbOpenSnapshot && vx::SimpleSelect(text, table, nameEnd)) {
        const std::string found = db->FindTable(table);
        if (!found.empty()) {
            try {
                stmt = std::make_unique<vx::Statement>(
                    db->conn, "SELECT rowid, * FROM " + vx::QuoteName(found) + text.substr(nameEnd));
                p.table = found;
                p.updatable = true;
                p.columns = db->Columns(found);
                first = 1;
            } catch (CDaoException&) {
                stmt.reset(); // a table without row ids: read it as it is
            }
        }
    }
    if (!stmt)
        stmt = std::make_unique<vx::Statement>(db->conn, text);
    sqlite3_stmt* s = stmt->get();
    const int count = sqlite3_column_count(s) - first;
    if (p.updatable && static_cast<int>(p.columns.size()) != count)
        p.updatable = false;
    if (!p.updatable) {
        p.columns.assign(static_cast<std::size_t>(count), vx::DaoColumn());
        for (int i = 0; i < count; ++i) {
            auto& c = p.columns[static_cast<std::size_t>(i)];
            c.name = sqlite3_column_name(s, i + first);
            const char* declared = sqlite3_column_decltype(s, i + first);
            vx::ParseDeclaredType(declared ? declared : "", false, c);
            if (!declared)
                c.declared.clear();
        }
    }
    const std::size_t width = p.Width();
    if (p.updatable) {
        // One pass over the table's b-tree spares the copies of growing.
        sqlite3_stmt* count = db->Cached("SELECT count(*) FROM " + vx::QuoteName(p.table));
        if (sqlite3_step(count) == SQLITE_ROW) {
            const auto rows = static_cast<std::size_t>(sqlite3_column_int64(count, 0));
            p.rowids.reserve(rows);
            p.cells.reserve(rows * width);
            p.pool.reserve(rows * 16);
        }
        sqlite3_reset(count);
    }
    while (stmt->Step() == SQLITE_ROW) {
        p.rowids.push_back(first ? sqlite3_column_int64(s, 0) : static_cast<std::int64_t>(p.rowids.size()));
        const std::size_t at = p.cells.size();
        p.cells.resize(at + width);
        for (std::size_t i = 0; i < width; ++i)
            p.Load(s, static_cast<int>(i) + first, p.cells[at + i]);
    }
    for (std::size_t i = 0; i < width; ++i)
        if (p.columns[i].declared.empty() && !p.updatable)
            vx::InferColumn(p.columns[i], p.cells.data(), width, p.rowids.size(), i);
    p.synced = db->changeStamp;
    p.stamps.assign(p.rowids.size(), p.synced);
    p.open = true;
    if (!p.rowids.empty()) {
        p.pos = 0;
        p.bof = p.eof = false;
    }
    db->recordsets.push_back(this);
}

void CDaoRecordset::Open(CDaoQueryDef* queryDef, int type, int options)
{
    if (!queryDef || !queryDef->IsOpen())
        vx::ThrowDao(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
    Open(type, queryDef->GetSQL(), options);
}

void CDaoRecordset::Open(CDaoTableDef* tableDef, int type, int options)
{
    if (!tableDef || !tableDef->IsOpen())
        vx::ThrowDao(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
    const std::string sql = "SELECT * FROM " + vx::QuoteName(tableDef->GetName().StdString());
    Open(type == dbOpenTable ? dbOpenDynaset : type, sql.c_str(), options);
    d->type = type;
}

void CDaoRecordset::Close()
{
    if (!d->open)
        return;
    if (d->db)
        std::erase(d->db->recordsets, this);
    d->Reset();
    d->open = false;
    d->db = nullptr;
}

BOOL CDaoRecordset::IsOpen() const
{
    return d->open;
}

void CDaoRecordset::Requery()
{
    d->RequireOpen();
    const std::string sql = d->sql;
    const int type = d->type;
    const int options = d->options;
    Open(type == dbOpenTable ? dbOpenDynaset : type, sql.c_str(), options);
    d->type = type;
}

BOOL CDaoRecordset::IsBOF() const
{
    d->RequireOpen();
    return d->bof;
}

BOOL CDaoRecordset::IsEOF() const
{
    d->RequireOpen();
    return d->eof;
}

void CDaoRecordset::MoveFirst()
{
    d->RequireOpen();
    if (d->Count() == 0)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    d->pos = 0;
    d->bof = d->eof = d->currentDeleted = false;
}

void CDaoRecordset::MoveLast()
{
    d->RequireOpen();
    if (d->Count() == 0)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    d->pos = d->Count() - 1;
    d->bof = d->eof = d->currentDeleted = false;
}

void CDaoRecordset::MoveNext()
{
    d->RequireOpen();
    if (d->eof)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    if (d->bof)
        d->pos = 0;
    else if (!d->currentDeleted)
        ++d->pos;
    d->currentDeleted = false;
    d->bof = false;
    if (d->pos >= d->Count()) {
        d->pos = d->Count();
        d->eof = true;
    }
}

void CDaoRecordset::MovePrev()
{
    d->RequireOpen();
    if (d->bof)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    d->LeaveEdit();
    --d->pos;
    d->currentDeleted = false;
    d->eof = false;
    if (d->pos < 0) {
        d->pos = -1;
        d->bof = true;
    }
}

void CDaoRecordset::Move(long rows)
{
    d->RequireOpen();
    d->RequireCurrent();
    d->LeaveEdit();
    const long target = d->pos + rows;
    if (target < 0) {
        d->pos = -1;
        d->bof = true;
    } else if (target >= d->Count()) {
        d->pos = d->Count();
        d->eof = true;
    } else {
        d->pos = target;
    }
}

long CDaoRecordset::GetAbsolutePosition() const
{
    d->RequireOpen();
    if (d->bof || d->eof || d->currentDeleted || d->pos < 0 || d->pos >= d->Count() ||
        d->editMode == dbEditAdd)
        return -1;
    return d->pos;
}

void CDaoRecordset::SetAbsolutePosition(long position)
{
    d->RequireOpen();
    if (position < 0 || position >= d->Count())
        vx::ThrowDao(vx::kDaoInvalidArgument, "Invalid argument.");
    d->LeaveEdit();
    d->pos = position;
    d->bof = d->eof = d->currentDeleted = false;
}

long CDaoRecordset::GetRecordCount() const
{
    d->RequireOpen();
    return d->Count();
}

COleVariant CDaoRecordset::GetBookmark() const
{
    d->RequireOpen();
    d->RequireCurrent();
    COleVariant mark;
    mark.vt = VT_I8;
    mark.llVal = d->rowids[static_cast<std::size_t>(d->pos)];
    return mark;
}

COleVariant CDaoRecordset::GetLastModifiedBookmark() const
{
    d->RequireOpen();
    if (d->lastModified == 0)
        vx::ThrowDao(vx::kDaoNoCurrentRecord, "No current record.");
    COleVariant mark;
    mark.vt = VT_I8;
    mark.llVal = d->lastModified;
    return mark;
}

void CDaoRecordset::SetBookmark(const COleVariant& bookmark)
{
    d->RequireOpen();
    const auto it = bookmark.vt == VT_I8 ? std::find(d->rowids.begin(), d->rowids.end(), bookmark.llVal)
                                         : d->rowids.end();
    if (it == d->rowids.end())
        vx::ThrowDao(3159, "Not a valid bookmark.");
    SetAbsolutePosition(static_cast<long>(it - d->rowids.begin()));
}

void CDaoRecordset::AddNew()
{
    d->RequireOpen();
    if (!d->CanUpdate())
        vx::ThrowDao(vx::kDaoReadOnly, "Cannot update. Database or object is read-only.");
    d->editMode = dbEditAdd;
    d->edit.assign(d->Width(), DaoValue());
    d->assigned.assign(d->Width(), '0');
}

void CDaoRecordset::Edit()
{
    d->RequireOpen();
    if (!d->CanUpdate() || (d->options & dbAppendOnly))
        vx::ThrowDao(vx::kDaoReadOnly, "Cannot update. Database or object is read-only.");
    d->RequireCurrent();
    d->Refresh(d->pos);
    const DaoValue* row = d->Row(d->pos);
    d->edit.clear();
    for (std::size_t i = 0; i < d->Width(); ++i)
        d->edit.push_back(d->Plain(row[i]));
    d->assigned.assign(d->Width(), '0');
    d->editMode = dbEditInProgress;
}

void CDaoRecordset::Update()
{
    d->RequireOpen();
    auto& p = *d;
    if (p.editMode == dbEditNone)
        vx::ThrowDao(vx::kDaoUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
    const std::size_t width = p.Width();
    std::string sql;
    std::vector<std::size_t> set;
    for (std::size_t i = 0; i < width; ++i)
        if (p.assigned[i] == '1')
            set.push_back(i);
    if (p.editMode == dbEditAdd) {
        // The stored row is the edit buffer, unless a field left out gets a
        // value from the table (a default); then the insert returns the row.
        bool known = true;
        for (std::size_t i = 0; i < width; ++i)
            if (p.assigned[i] == '0' && !p.columns[i].autoIncrement && !p.columns[i].defaultValue.empty())
                known = false;
        const std::string key = (known ? "A" : "R") + p.assigned;
        sqlite3_stmt* s = p.FindWrite(key);
        if (!s) {
            if (set.empty()) {
                sql = "INSERT INTO " + vx::QuoteName(p.table) + " DEFAULT VALUES";
            } else {
                std::string names, values;
                for (std::size_t k = 0; k < set.size(); ++k) {
                    names += (k ? ", " : "") + vx::QuoteName(p.columns[set[k]].name);
                    values += (k ? ", ?" : "?") + std::to_string(k + 1);
                }
                sql = "INSERT INTO " + vx::QuoteName(p.table) + " (" + names + ") VALUES (" + values + ")";
            }
            s = p.AddWrite(key, known ? sql : sql + p.Returning());
        }
        for (std::size_t k = 0; k < set.size(); ++k)
            vx::BindValue(s, static_cast<int>(k + 1), p.edit[set[k]]);
        const std::size_t at = p.cells.size();
        p.cells.resize(at + width);
        std::int64_t rowid = 0;
        try {
            if (known) {
                p.RunWrite(s, rowid, nullptr);
                rowid = sqlite3_last_insert_rowid(p.db->conn);
                for (std::size_t i = 0; i < width; ++i) {
                    if (p.columns[i].autoIncrement) {
                        p.cells[at + i].kind = DaoValue::Int;
                        p.cells[at + i].i = rowid;
                    } else {
                        p.cells[at + i] = std::move(p.edit[i]);
                    }
                }
            } else {
                p.RunWrite(s, rowid, p.cells.data() + at);
            }
        } catch (...) {
            p.cells.resize(at);
            throw;
        }
        p.rowids.push_back(rowid);
        p.stamps.push_back(0);
        p.Wrote(p.Count() - 1);
        p.lastModified = rowid;
    } else if (!set.empty()) {
        const std::string key = "E" + p.assigned;
        sqlite3_stmt* s = p.FindWrite(key);
        if (!s) {
            sql = "UPDATE " + vx::QuoteName(p.table) + " SET ";
            for (std::size_t k = 0; k < set.size(); ++k)
                sql += (k ? ", " : "") + vx::QuoteName(p.columns[set[k]].name) + "=?" + std::to_string(k + 1);
            sql += " WHERE rowid=?" + std::to_string(set.size() + 1);
            s = p.AddWrite(key, sql);
        }
        for (std::size_t k = 0; k < set.size(); ++k)
            vx::BindValue(s, static_cast<int>(k + 1), p.edit[set[k]]);
        const std::int64_t rowid = p.rowids[static_cast<std::size_t>(p.pos)];
        sqlite3_bind_int64(s, static_cast<int>(set.size() + 1), rowid);
        std::int64_t unused = 0;
        p.RunWrite(s, unused, nullptr);
        if (sqlite3_changes(p.db->conn) == 0)
            vx::ThrowDao(vx::kDaoRecordDeleted, "Record is deleted.");
        DaoValue* row = p.Row(p.pos);
        for (std::size_t k : set)
            row[k] = std::move(p.edit[k]);
        p.Wrote(p.pos);
        p.lastModified = rowid;
    }
    p.editMode = dbEditNone;
}

void CDaoRecordset::CancelUpdate()
{
    d->RequireOpen();
    if (d->editMode == dbEditNone)
        vx::ThrowDao(vx::kDaoUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
    d->editMode = dbEditNone;
}

void CDaoRecordset::Delete()
{
    d->RequireOpen();
    if (!d->CanUpdate() || (d->options & dbAppendOnly))
        vx::ThrowDao(vx::kDaoReadOnly, "Cannot update. Database or object is read-only.");
    d->RequireCurrent();
    d->LeaveEdit();
    auto& p = *d;
    sqlite3_stmt* s = p.db->Cached("DELETE FROM " + vx::QuoteName(p.table) + " WHERE rowid=?1");
    sqlite3_bind_int64(s, 1, p.rowids[static_cast<std::size_t>(p.pos)]);
    const int rc = sqlite3_step(s);
    sqlite3_reset(s);
    if (rc != SQLITE_DONE)
        vx::ThrowSqlite(p.db->conn, rc, p.table);
    const auto at = static_cast<std::size_t>(p.pos);
    p.rowids.erase(p.rowids.begin() + static_cast<long>(at));
    p.stamps.erase(p.stamps.begin() + static_cast<long>(at));
    p.cells.erase(p.cells.begin() + static_cast<long>(at * p.Width()),
                  p.cells.begin() + static_cast<long>((at + 1) * p.Width()));
    p.currentDeleted = true;
    p.Wrote(-1);
}

short CDaoRecordset::GetEditMode() const
{
    return d->editMode;
}

BOOL CDaoRecordset::CanUpdate() const
{
    return d->CanUpdate() && !(d->options & dbAppendOnly);
}

BOOL CDaoRecordset::CanAppend() const
{
    return d->CanUpdate();
}

void CDaoRecordset::GetFieldValue(const char* name, COleVariant& value)
{
    d->RequireOpen();
    GetFieldValue(d->FindColumn(name), value);
}

void CDaoRecordset::GetFieldValue(int index, COleVariant& value)
{
    d->RequireOpen();
    d->CheckIndex(index);
    const auto i = static_cast<std::size_t>(index);
    if (d->editMode != dbEditNone) {
        vx::ValueToVariant(d->edit[i], d->columns[i], value);
        return;
    }
    d->RequireCurrent();
    d->Refresh(d->pos);
    d->ToVariant(d->Row(d->pos)[i], d->columns[i], value);
}

COleVariant CDaoRecordset::GetFieldValue(const char* name)
{
    COleVariant value;
    GetFieldValue(name, value);
    return value;
}

COleVariant CDaoRecordset::GetFieldValue(int index)
{
    COleVariant value;
    GetFieldValue(index, value);
    return value;
}

void CDaoRecordset::SetFieldValue(const char* name, const COleVariant& value)
{
    d->RequireOpen();
    SetFieldValue(d->FindColumn(name), value);
}

void CDaoRecordset::SetFieldValue(int index, const COleVariant& value)
{
    d->RequireOpen();
    d->CheckIndex(index);
    if (d->editMode == dbEditNone)
        vx::ThrowDao(vx::kDaoUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
    const auto i = static_cast<std::size_t>(index);
    vx::VariantToValue(value, d->columns[i], d->edit[i]);
    d->assigned[i] = '1';
}

void CDaoRecordset::SetFieldValue(const char* name, const char* value)
{
    SetFieldValue(name, COleVariant(value));
}

void CDaoRecordset::SetFieldValue(int index, const char* value)
{
    SetFieldValue(index, COleVariant(value));
}

void CDaoRecordset::SetFieldValueNull(const char* name)
{
    COleVariant null;
    null.SetNull();
    SetFieldValue(name, null);
}

void CDaoRecordset::SetFieldValueNull(int index)
{
    COleVariant null;
    null.SetNull();
    SetFieldValue(index, null);
}

short CDaoRecordset::GetFieldCount() const
{
    d->RequireOpen();
    return static_cast<short>(d->Width());
}

void CDaoRecordset::GetFieldInfo(int index, CDaoFieldInfo& info, DWORD)
{
    d->RequireOpen();
    d->CheckIndex(index);
    vx::FillFieldInfo(d->columns[static_cast<std::size_t>(index)], index, info);
    if (!d->table.empty())
        info.m_strSourceTable = CString(d->table);
}

void CDaoRecordset::GetFieldInfo(const char* name, CDaoFieldInfo& info, DWORD options)
{
    d->RequireOpen();
    GetFieldInfo(d->FindColumn(name), info, options);
}

CString CDaoRecordset::GetName() const
{
    return CString(d->table.empty() ? d->sql : d->table);
}

CString CDaoRecordset::GetSQL() const
{
    return CString(d->sql);
}

short CDaoRecordset::GetType() const
{
    return static_cast<short>(d->type);
}
