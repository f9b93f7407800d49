// Internal; do not include directly.
//
// The state of a CDaoRecordset. A set on the rows of one table (a dynaset)
// keeps the row ids of its members and reads their values as they are
// needed: a walk forward reads each record straight from the opening
// statement, the first visit of an earlier record reads the values of all
// members once into the row cache, and a record changed since is read again
// by its key. Other sets (joins, views, snapshots) and sets on files whose
// readers lock out writers read all their rows at opening.
#pragma once

#include "platform/dao/daodatabase_p.h"
#include "platform/dao/daorowcache_p.h"

#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

class CDaoRecordset;

namespace vx {

// Whether `name` is `column` as it is spelled. Field names are short: a
// plain loop beats the library's vector routines, which first check how far
// they may read.
inline bool SameName(const std::string& column, const char* name)
{
    // A shorter `name` differs at its terminator, so no byte beyond it is read.
    const char* c = column.data();
    const std::size_t n = column.size();
    for (std::size_t k = 0; k < n; ++k)
        if (c[k] != name[k])
            return false;
    return name[n] == '\0';
}

struct DaoRecordsetPrivate {
    DaoDatabasePrivate* db = nullptr;
    bool open = false;
    int type = dbOpenDynaset;
    int options = 0;
    std::string sql;   // as given
    std::string table; // the table that updates go to
    std::string tail;  // what follows the table's name in `sql`: WHERE, ORDER BY
    bool updatable = false;
    std::vector<DaoColumn> columns;
    std::size_t width = 0; // columns.size(), read on every field access
    RowCache rows;
    // The opening statement while it has rows left; it stands on member
    // `streamRow`, whose values it holds as they were at change stamp
    // `streamStamp`.
    std::unique_ptr<Cursor> stream;
    bool streaming = false;
    long streamRow = -1;
    std::uint64_t streamStamp = 0;
    bool materialized = false; // the values of all members were read once
    // MoveLast before the last member is known: settled when something
    // looks at the position, or dropped by a move to a known member.
    bool lastPending = false;
    std::uint64_t synced = 0; // held values are current while db->changeStamp is this
    long pos = -1;
    bool bof = true;
    bool eof = true;
    bool currentDeleted = false;
    short editMode = dbEditNone;
    std::vector<DaoValue> edit;
    std::vector<DaoValue> original; // the record as Edit found it
    std::string assigned;           // '1' for each field set since AddNew or Edit
    std::int64_t lastModified = 0;
    std::map<std::string, std::unique_ptr<RowWriter>> writes; // by kind and field mask
    std::string key;                                          // of the write at hand
    std::string lastKey;
    RowWriter* lastWrite = nullptr;
    COleVariant text; // the variant of SetFieldValue with a text
    mutable std::size_t lastFound = 0;

    std::size_t Width() const { return width; }
    long Count() const { return static_cast<long>(rows.Rows()); }
    Cell* Row(long row) { return rows.Row(static_cast<std::size_t>(row)); }

    // Opening and closing (daorecordsetrows.cpp).
    void Open(DaoDatabasePrivate& database, int openType, const std::string& text, int openOptions);
    void Reset();

    // A database closes its record sets before it closes, so an open set
    // always has an open database.
    void RequireOpen() const
    {
        if (!open)
            ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
    }
    void RequireCurrent() const
    {
        if (bof || eof || pos < 0 || pos >= Count())
            ThrowDao(kDaoNoCurrentRecord, "No current record.");
        if (currentDeleted)
            ThrowDao(kDaoRecordDeleted, "Record is deleted.");
    }
    void CheckIndex(int index) const
    {
        if (index < 0 || index >= static_cast<int>(width))
            ThrowDao(kDaoItemNotFound, "Item not found in this collection.");
    }
    bool CanUpdate() const
    {
        return open && updatable && !db->ReadOnly() && !(options & dbReadOnly) && type != dbOpenSnapshot &&
               type != dbOpenForwardOnly;
    }
    void LeaveEdit() { editMode = dbEditNone; }

    int FindColumn(const char* name) const
    {
        // Fields are mostly read in their order and named as the table names
        // them: try the one after the last found, as it is spelled.
        std::size_t next = lastFound + 1;
        if (next >= width)
            next = 0;
        if (name && next < width && SameName(columns[next].name, name))
            return static_cast<int>(lastFound = next);
        return SearchColumn(name);
    }
    int SearchColumn(const char* name) const;

    // Field `i` of the current record (or of the edit buffer). Every move
    // keeps `pos` on a member while neither `bof` nor `eof` is set.
    // Whether the current record is the stream's, and nothing was written
    // through this database since the stream read it.
    bool OnStreamRow() const { return streaming && pos == streamRow && streamStamp == db->changeStamp; }

    // Small enough to go inline into each read of a field; the other cases
    // are out of line.
    void Read(std::size_t i, COleVariant& value)
    {
        if (OnStreamRow() && editMode == dbEditNone && !lastPending) [[likely]]
            ReadStream(i, value);
        else
            ReadHeld(i, value);
    }
    // A record the set holds, or any other case.
    void ReadHeld(std::size_t i, COleVariant& value);
    void ReadStream(std::size_t i, COleVariant& value) const
    {
        stream->ToVariant(i, columns[i], value);
    }
    void ReadCarefully(std::size_t i, COleVariant& value);
    // The current values of member `row`, read if they are not held or stale.
    const Cell* Current(long row);

    // The walk (daorecordsetrows.cpp).
    // Reads the next row of the stream; false at its end, which ends it.
    bool Advance();
    // Reads members until `row` is one or the stream ends.
    void AdvanceTo(long row);
    // Reads the remaining members and ends the stream.
    void Complete();
    void Settle();

    // Writes.
    void Wrote(long row);
    RowWriter& WriteFor(char kind);
    void Insert();
    void UpdateCurrent();

private:
    void Materialize();
    void Reload(long row);
    void ReadAll(Cursor& cursor, bool keyed);
    void StopStreaming();
};

} // namespace vx
