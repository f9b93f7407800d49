// Internal; do not include directly.
//
// The file engine: a database file is an SQLite file, a connection per open
// database. Workbooks and dBASE directories are read into an in-memory
// SQLite database by a driver and written back at close. Records are keyed
// by SQLite's row id; a counter field is that row id.
#pragma once

#include "platform/dao/daoengine_p.h"

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vx {

// Raises the DAO error that fits SQLite's result `rc` (CMemoryException for
// SQLITE_NOMEM while memory is short; a damaged file is 3049). `what` names
// the object or statement for the text.
[[noreturn]] void ThrowSqlite(sqlite3* db, int rc, const std::string& what);

// Reads column `index` of the current row of `stmt`.
void ReadValue(sqlite3_stmt* stmt, int index, DaoValue& value);
ValueView ViewValue(sqlite3_stmt* stmt, int index);
void BindValue(sqlite3_stmt* stmt, int index, const DaoValue& value);

// A prepared statement, finalized with the object.
class Statement {
public:
    Statement() = default;
    Statement(sqlite3* db, const std::string& sql); // throws
    ~Statement();
    Statement(Statement&& other) noexcept : m_stmt(other.m_stmt) { other.m_stmt = nullptr; }
    Statement& operator=(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    sqlite3_stmt* get() const { return m_stmt; }
    // SQLITE_ROW or SQLITE_DONE; anything else throws.
    int Step();
    // Throws the error `rc` of a step, after resetting the statement.
    [[noreturn]] void Fail(int rc);

private:
    sqlite3_stmt* m_stmt = nullptr;
};

class SqliteEngine;

// Reads and writes of a file format other than SQLite: the tables live in
// an in-memory database while it is open, and go back to the file at close.
class IsamDriver {
public:
    virtual ~IsamDriver() = default;
    // Fills the empty in-memory database with the tables of `path`.
    virtual void Load(SqliteEngine& db, const std::string& path, bool readOnly) = 0;
    // Writes the tables back to `path` (only called if there were changes).
    virtual void Save(SqliteEngine& db, const std::string& path) = 0;
    // Whether the file can be written at all.
    virtual bool CanUpdate() const = 0;
    // A table that was created since the load.
    virtual void TableCreated(const std::string&) {}
    // Another name under which the file knows table `name` ("" if none).
    virtual std::string AlternateName(const std::string&) const { return std::string(); }
};
// The driver for a connect text. Unknown connect texts raise 3170.
std::unique_ptr<IsamDriver> MakeIsamDriver(const std::string& connect);

class SqliteEngine final : public Engine {
public:
    SqliteEngine() = default;
    ~SqliteEngine() override;

    void OpenNative(const std::string& file, bool exclusive, bool readOnly);
    void CreateNative(const std::string& file, const std::string& locale, int options);
    void OpenIsam(const std::string& file, bool readOnly, const std::string& connect);

    sqlite3* conn = nullptr;
    std::string name; // the path text as given
    std::string host; // the host path

    // Runs statements that return no rows; throws.
    void Exec(const std::string& sql);
    // A cached prepared statement, reset and with bindings cleared.
    sqlite3_stmt* Cached(const std::string& sql);
    // Notes a change for a file kept in memory.
    void Changed() { m_changed = true; }

    // Engine.
    bool ReadOnly() const override { return m_readOnly; }
    bool Streamable() const override { return m_streamable; }
    bool ReadsHoldWrites() const override { return true; }
    bool CounterIsKey() const override { return true; }
    void Close() override;
    std::string Locale() override;
    void ForgetDesign() override { m_columns.clear(); }

    std::vector<TableEntry> Tables() override;
    std::vector<QueryEntry> Queries() override;
    std::string FindTable(const std::string& name) override;
    const std::vector<DaoColumn>& Columns(const std::string& table) override;
    std::vector<IndexEntry> Indexes(const std::string& table) override;
    void ObjectDates(const std::string& name, double& created, double& updated) override;
    long RecordCount(const std::string& table) override;

    void CreateTable(const std::string& name, const std::vector<CDaoFieldInfo>& fields,
                     const std::vector<CDaoIndexInfo>& indexes) override;
    void RenameTable(const std::string& from, const std::string& to) override;
    void DropTable(const std::string& name) override;
    void AddField(const std::string& table, const CDaoFieldInfo& field) override;
    void DropField(const std::string& table, const std::string& field) override;
    void CreateIndex(const std::string& table, const CDaoIndexInfo& index) override;
    void DropIndex(const std::string& table, const IndexEntry& index) override;
    void CreateQuery(const std::string& name, const std::string& sql, bool returnsRecords) override;
    void DropQuery(const QueryEntry& query) override;

    long Execute(const std::string& sql) override;
    std::unique_ptr<Cursor> OpenRows(const std::string& table, const std::vector<DaoColumn>& columns,
                                     const std::string& tail) override;
    std::unique_ptr<Cursor> OpenQuery(const std::string& sql) override;
    std::unique_ptr<Cursor> ReadRow(const std::string& table, const std::vector<DaoColumn>& columns,
                                    std::int64_t key) override;
    std::unique_ptr<RowWriter> PrepareInsert(const std::string& table, const std::vector<DaoColumn>& columns,
                                             const std::string& assigned, bool returning) override;
    std::unique_ptr<RowWriter> PrepareUpdate(const std::string& table, const std::vector<DaoColumn>& columns,
                                             const std::string& assigned) override;
    void DeleteRow(const std::string& table, std::int64_t key) override;

    void BeginTrans() override;
    void CommitTrans() override;
    void Rollback() override;

    // The catalogue of what SQLite doesn't keep (sqlitecatalogue.cpp).
    void EnsureCatalogue();
    bool HasCatalogue();
    std::string Property(const std::string& key);
    void NoteObject(const std::string& name, int type, const std::string& sql);
    void RenameObject(const std::string& oldName, const std::string& newName);
    void DropObject(const std::string& name);
    void TouchObject(const std::string& name);

private:
    void Configure(bool writable);
    // Runs `work` as one unit: all of it or nothing reaches the file.
    template <class Work>
    void Atomically(Work work);
    void AddCounter(const std::string& table, const CDaoFieldInfo& info);

    bool m_readOnly = false;
    bool m_exclusive = false;
    bool m_streamable = false;
    bool m_changed = false; // since open: for ISAM drivers
    std::unique_ptr<IsamDriver> m_isam;
    std::map<std::string, sqlite3_stmt*> m_cache;
    std::map<std::string, std::vector<DaoColumn>> m_columns; // by lower-case name
    int m_catalogue = -1;                                  // unknown, 0, 1
};

} // namespace vx
