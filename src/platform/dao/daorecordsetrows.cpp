// The record set's walk over its members: opening, reading members from
// the opening statement, holding their values, and writing them back.
#include "platform/dao/daorecordset_p.h"

#include "platform/framework/util_p.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>

namespace vx {

namespace {

// Puts a value into a cell that holds nothing yet (Put) or one that holds
// a value (Set).
template <bool Fresh>
inline void Store(RowCache& cache, Cell& cell, const ValueView& v)
{
    if constexpr (!Fresh)
        cache.SetNull(cell);
    switch (v.kind) {
    case DaoValue::Int:
        RowCache::PutInt(cell, v.i);
        break;
    case DaoValue::Real:
        RowCache::PutReal(cell, v.d);
        break;
    case DaoValue::Text:
    case DaoValue::Blob:
        if constexpr (Fresh)
            cache.PutBytes(cell, v.kind, v.s.data(), v.s.size());
        else
            cache.SetBytes(cell, v.kind, v.s.data(), v.s.size());
        break;
    default:
        RowCache::PutNull(cell);
        break;
    }
}

// Reads the values of the cursor's row into the cells of `row`.
template <bool Fresh>
void LoadRow(const Cursor& cursor, RowCache& cache, Cell* row)
{
    const std::size_t width = cache.Width();
    for (std::size_t i = 0; i < width; ++i)
        Store<Fresh>(cache, row[i], cursor.Value(i));
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
    std::unique_ptr<Cursor> cursor;
    if (type != dbOpenSnapshot && SimpleSelect(text, name, nameEnd)) {
        const std::string found = db->engine->FindTable(name);
        if (!found.empty()) {
            columns = db->engine->Columns(found);
            try {
                cursor = db->engine->OpenRows(found, columns, text.substr(nameEnd));
                // A table changed by another program since its fields were
                // read: read the set as it is.
                updatable = cursor->Width() == columns.size();
                if (updatable) {
                    table = found;
                    tail = text.substr(nameEnd);
                }
            } catch (CDaoException&) {
                columns.clear(); // a table without keys: read it as it is
            }
        }
    }
    if (!cursor)
        cursor = db->engine->OpenQuery(text);
    if (!updatable) {
        const std::size_t count = cursor->Width();
        columns.resize(count);
        for (std::size_t i = 0; i < count; ++i)
            columns[i] = cursor->Describe(i);
    }
    width = columns.size();
    rows.Reset(width);
    synced = db->changeStamp;
    open = true;
    if (updatable && db->engine->Streamable()) {
        // Members as the walk reaches them, values straight from the row.
        stream = std::move(cursor);
        streaming = true;
        db->streams.push_back(this);
        if (Advance()) {
            pos = 0;
            bof = eof = false;
        }
        return;
    }
    ReadAll(*cursor, updatable);
    materialized = true;
    for (std::size_t i = 0; i < width; ++i)
        if (columns[i].declared.empty() && !updatable)
            InferColumn(columns[i], rows, i);
    if (rows.Rows() != 0) {
        pos = 0;
        bof = eof = false;
    }
}

void DaoRecordsetPrivate::ReadAll(Cursor& cursor, bool keyed)
{
    rows.StartHolding();
    std::int64_t key = 0;
    while (keyed ? cursor.NextKeyed(key) : cursor.Next()) {
        if (!keyed)
            key = static_cast<std::int64_t>(rows.Rows());
        LoadRow<true>(cursor, rows, rows.AppendUnfilledRow(key, synced));
    }
}

void DaoRecordsetPrivate::Reset()
{
    writes.clear();
    lastWrite = nullptr;
    StopStreaming();
    columns.clear();
    width = 0;
    rows.Reset(0);
    edit.clear();
    original.clear();
    assigned.clear();
    tail.clear();
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
    bool more = false;
    std::int64_t key = 0;
    try {
        more = stream->NextKeyed(key);
    } catch (...) {
        // The statement can't go on after an error: the members read so far
        // stay, and the set reads no more.
        StopStreaming();
        throw;
    }
    if (!more) {
        StopStreaming();
        return false;
    }
    rows.AppendMember(key);
    streamRow = Count() - 1;
    streamStamp = db->changeStamp;
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
    stream.reset();
    streaming = false;
    streamRow = -1;
    std::erase(db->streams, this);
}

void DaoRecordsetPrivate::ReadHeld(std::size_t i, COleVariant& value)
{
    if (editMode == dbEditNone && !lastPending && !bof && !eof && !currentDeleted && db->changeStamp == synced &&
        rows.Held(static_cast<std::size_t>(pos)))
        rows.ToVariant(Row(pos)[i], columns[i], value);
    else
        ReadCarefully(i, value);
}

void DaoRecordsetPrivate::ReadCarefully(std::size_t i, COleVariant& value)
{
    if (editMode != dbEditNone) {
        ValueToVariant(ViewOf(edit[i]), columns[i], value);
        return;
    }
    Settle();
    RequireCurrent();
    if (OnStreamRow())
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
    std::unique_ptr<Cursor> cursor = db->engine->OpenRows(table, columns, tail);
    const std::uint64_t now = db->changeStamp;
    // The rows come in the members' order unless the table changed since;
    // only then are members looked up by key.
    std::unordered_map<std::int64_t, std::size_t> index;
    std::size_t expect = 0;
    std::int64_t key = 0;
    while (cursor->NextKeyed(key)) {
        std::size_t r = expect;
        if (r >= rows.Rows() || rows.RowId(r) != key) {
            if (index.empty())
                for (std::size_t k = 0; k < rows.Rows(); ++k)
                    index.emplace(rows.RowId(k), k);
            const auto it = index.find(key);
            if (it == index.end())
                continue; // not a member
            r = it->second;
        }
        LoadRow<false>(*cursor, rows, rows.Row(r));
        rows.SetStamp(r, now);
        expect = r + 1;
    }
    synced = now;
}

// Reads member `row` by its key.
void DaoRecordsetPrivate::Reload(long row)
{
    if (!updatable)
        return;
    rows.StartHolding();
    std::unique_ptr<Cursor> cursor =
        db->engine->ReadRow(table, columns, rows.RowId(static_cast<std::size_t>(row)));
    if (!cursor->Next())
        ThrowDao(kDaoRecordDeleted, "Record is deleted.");
    LoadRow<false>(*cursor, rows, Row(row));
    rows.SetStamp(static_cast<std::size_t>(row), db->changeStamp);
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

// The writer for the fields assigned since AddNew or Edit: `kind` 'A'
// inserts, 'R' inserts and returns the row, 'E' updates one.
RowWriter& DaoRecordsetPrivate::WriteFor(char kind)
{
    key.assign(1, kind);
    key += assigned;
    if (lastWrite && key == lastKey)
        return *lastWrite;
    auto it = writes.find(key);
    if (it == writes.end()) {
        std::unique_ptr<RowWriter> writer = kind == 'E' ? db->engine->PrepareUpdate(table, columns, assigned)
                                                        : db->engine->PrepareInsert(table, columns, assigned, kind == 'R');
        it = writes.emplace(key, std::move(writer)).first;
    }
    lastKey = key;
    lastWrite = it->second.get();
    return *lastWrite;
}

void DaoRecordsetPrivate::Insert()
{
    Engine& engine = db->Writing();
    // The new record joins the members at their end.
    Complete();
    // The stored row is the edit buffer, unless a field left out gets a
    // value from the table (a default or a counter the engine numbers
    // apart from the key); then the insert returns the row.
    bool known = true;
    for (std::size_t i = 0; i < width; ++i) {
        if (assigned[i] != '0')
            continue;
        if (columns[i].autoIncrement ? !engine.CounterIsKey() : !columns[i].defaultValue.empty())
            known = false;
    }
    RowWriter& writer = WriteFor(known ? 'A' : 'R');
    std::int64_t rowid = 0;
    if (!rows.Holding()) {
        // Its values are read when it is visited.
        rowid = writer.Insert(edit.data());
        rows.AppendMember(rowid);
    } else {
        Cell* row = rows.AppendRow(0, 0);
        try {
            rowid = writer.Insert(edit.data());
            for (std::size_t i = 0; i < width; ++i) {
                if (!known)
                    Store<false>(rows, row[i], writer.Returned(i));
                else if (columns[i].autoIncrement)
                    rows.SetInt(row[i], rowid);
                else
                    rows.Set(row[i], edit[i]);
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
    db->Writing();
    RowWriter& writer = WriteFor('E');
    const auto r = static_cast<std::size_t>(pos);
    const std::int64_t rowid = rows.RowId(r);
    const RowWriter::Outcome outcome = writer.Update(rowid, edit.data(), original.data());
    if (outcome != RowWriter::Done) {
        // The record is read again when it is next used, so that it shows
        // what the other program left.
        if (streaming)
            Complete();
        if (rows.Held(r))
            rows.SetStamp(r, 0);
        db->Written();
        if (outcome == RowWriter::Deleted)
            ThrowDao(kDaoRecordDeleted, "Record is deleted.");
        ThrowDao(kDaoWriteConflict, "The database engine stopped the process because you and another user are "
                                    "attempting to change the same data at the same time.");
    }
    if (rows.Held(r)) {
        Cell* row = Row(pos);
        for (std::size_t i = 0; i < width; ++i)
            if (assigned[i] == '1')
                rows.Set(row[i], edit[i]);
    }
    Wrote(pos);
    lastModified = rowid;
}

} // namespace vx
