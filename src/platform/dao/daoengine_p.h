// Internal; do not include directly.
//
// The engine behind the DAO classes: one interface, with an implementation
// for database files (SQLite, platform/dao/sqlite) and one for a PostgreSQL
// server (platform/dao/pg), chosen once when a database opens. The DAO
// classes keep what DAO defines (positions, edit buffers, the rules of
// names, errors of misuse); an engine stores, finds and reads, and raises
// DAO's errors for what goes wrong in it.
//
// Records are told apart by a key the engine keeps for each row of a table
// (SQLite's row id; a hidden column on the server). Record sets hold keys,
// and read and write records by them.
#pragma once

#include "platform/dao/daoinfo.h"
#include "platform/dao/daovalue_p.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vx {

struct TableEntry {
    std::string name;
    long attributes = 0;
};
struct QueryEntry {
    std::string name;
    std::string sql;
    short type = dbQSelect;
    bool view = false;
};
struct IndexEntry {
    std::string stored; // the engine's name of the index
    CDaoIndexInfo info;
};

// The rows of a statement, read forward once.
class Cursor {
public:
    virtual ~Cursor() = default;
    // Steps to the next row; false at the end. Throws DAO's errors.
    virtual bool Next() = 0;
    // The key of the row, for a cursor on the rows of a table.
    virtual std::int64_t Key() const = 0;
    // Next and Key in one call: the step of a walk over a table's rows.
    virtual bool NextKeyed(std::int64_t& key)
    {
        if (!Next())
            return false;
        key = Key();
        return true;
    }
    // Value `i` of the row (the key not counted); valid until the next call.
    virtual ValueView Value(std::size_t i) const = 0;
    // Value `i` as a variant of `column`'s type: the read of a record set
    // walking the cursor, which an engine may do without the view between.
    virtual void ToVariant(std::size_t i, const DaoColumn& column, COleVariant& out) const
    {
        FastVariant(Value(i), column, out);
    }
    // The values of a row, and what they are.
    virtual std::size_t Width() const = 0;
    virtual DaoColumn Describe(std::size_t i) const = 0;
};

// Writes the records of one table, for one choice of fields: prepared once
// and used for every record that assigns the same fields.
class RowWriter {
public:
    enum Outcome { Done, Changed, Deleted };
    virtual ~RowWriter() = default;
    // Inserts a record with the assigned values of `values` (one per field
    // of the table); gives its key. A writer made to return the row has its
    // stored values in Returned until the next call.
    virtual std::int64_t Insert(const DaoValue* values) = 0;
    virtual ValueView Returned(std::size_t i) const = 0;
    // Writes the assigned values into record `key` if it still holds
    // `originals` (every field); otherwise changes nothing and tells why.
    virtual Outcome Update(std::int64_t key, const DaoValue* values, const DaoValue* originals) = 0;
};

class Engine {
public:
    virtual ~Engine() = default;

    // --- the database
    virtual bool ReadOnly() const = 0;
    // Whether a record set may read its rows as it walks rather than all at
    // opening, without keeping other programs from writing.
    virtual bool Streamable() const = 0;
    // Whether a statement still reading keeps this database from writing
    // (the DAO classes then finish such reads before each write).
    virtual bool ReadsHoldWrites() const = 0;
    // Whether a counter field is the record's key (else an insert returns it).
    virtual bool CounterIsKey() const = 0;
    // Closes; a file kept in memory is written back first (which may throw).
    virtual void Close() = 0;
    // The locale text the database was created with ("" if unknown).
    virtual std::string Locale() = 0;
    // Forgets what it knows of the design of tables (after a statement that
    // may have changed them).
    virtual void ForgetDesign() = 0;

    // --- the catalogue
    virtual std::vector<TableEntry> Tables() = 0;
    virtual std::vector<QueryEntry> Queries() = 0;
    // The exact name of table `name` (found without regard to case), or "".
    virtual std::string FindTable(const std::string& name) = 0;
    virtual const std::vector<DaoColumn>& Columns(const std::string& table) = 0;
    virtual std::vector<IndexEntry> Indexes(const std::string& table) = 0;
    virtual void ObjectDates(const std::string& name, double& created, double& updated) = 0;
    virtual long RecordCount(const std::string& table) = 0;

    // --- design; each call changes all it was asked to or nothing
    virtual void CreateTable(const std::string& name, const std::vector<CDaoFieldInfo>& fields,
                             const std::vector<CDaoIndexInfo>& indexes) = 0;
    virtual void RenameTable(const std::string& from, const std::string& to) = 0;
    virtual void DropTable(const std::string& name) = 0;
    // Adds a field to a table that exists; a counter numbers the records
    // there in the order of their keys.
    virtual void AddField(const std::string& table, const CDaoFieldInfo& field) = 0;
    virtual void DropField(const std::string& table, const std::string& field) = 0;
    virtual void CreateIndex(const std::string& table, const CDaoIndexInfo& index) = 0;
    virtual void DropIndex(const std::string& table, const IndexEntry& index) = 0;
    virtual void CreateQuery(const std::string& name, const std::string& sql, bool returnsRecords) = 0;
    virtual void DropQuery(const QueryEntry& query) = 0;

    // --- statements, in the dialect callers write (names in [brackets])
    // Runs one action statement; gives the number of records it changed.
    virtual long Execute(const std::string& sql) = 0;
    // The records of `table` (whose fields are `columns`) with their keys,
    // as "SELECT * FROM [table]" followed by `tail` (WHERE ..., ORDER BY
    // ...) would give them. Throws if the table has no keys.
    virtual std::unique_ptr<Cursor> OpenRows(const std::string& table, const std::vector<DaoColumn>& columns,
                                             const std::string& tail) = 0;
    // The rows of any statement, without keys.
    virtual std::unique_ptr<Cursor> OpenQuery(const std::string& sql) = 0;
    // Record `key` of `table`: a cursor with that one row, or none.
    virtual std::unique_ptr<Cursor> ReadRow(const std::string& table, const std::vector<DaoColumn>& columns,
                                            std::int64_t key) = 0;
    // Writers for the fields marked '1' in `assigned`.
    virtual std::unique_ptr<RowWriter> PrepareInsert(const std::string& table, const std::vector<DaoColumn>& columns,
                                                     const std::string& assigned, bool returning) = 0;
    virtual std::unique_ptr<RowWriter> PrepareUpdate(const std::string& table, const std::vector<DaoColumn>& columns,
                                                     const std::string& assigned) = 0;
    virtual void DeleteRow(const std::string& table, std::int64_t key) = 0;
    // After records were written with their counters' numbers (a copy):
    // the next record added numbers on from the highest.
    virtual void CountersFollow(const std::string& /*table*/) {}

    // --- transactions of the workspace; they nest
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void Rollback() = 0;
};

// The engines. `name` is the text the caller gave (a path text, or a
// connect text), used in messages.
std::unique_ptr<Engine> OpenFileEngine(const std::string& file, bool exclusive, bool readOnly);
std::unique_ptr<Engine> CreateFileEngine(const std::string& file, const std::string& locale, int options);
// A workbook or dBASE directory, by the type at the start of `connect`.
std::unique_ptr<Engine> OpenIsamEngine(const std::string& file, bool readOnly, const std::string& connect);
// A database on a PostgreSQL server, by a connect text "ODBC;..."
// (platform/dao/daoconnect.h).
std::unique_ptr<Engine> OpenServerEngine(const std::string& connect, bool readOnly);
std::unique_ptr<Engine> CreateServerEngine(const std::string& connect, const std::string& locale, int options);

} // namespace vx
