// Internal; do not include directly.
//
// The server engine: a database on a PostgreSQL server, reached through
// libpq. Each table has a hidden key column that numbers its records (the
// record sets' keys); a counter field is a column of its own that the
// server numbers. Text columns are citext, so that they compare and sort
// without regard to case as on files, and the database keeps the bytes of
// the code page as they are (SQL_ASCII). The Jet type of a column is its
// comment, so that types and sizes come back as DAO's.
#pragma once

#include "platform/dao/daoengine_p.h"

#include <libpq-fe.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vx {

// A connect text taken apart into libpq's keywords and values.
struct ServerConnect {
    std::vector<std::string> keys, values;
    std::string shown;    // the text without its password, for messages
    std::string database; // dbname, "" if the text names none
    void Set(const std::string& keyword, const std::string& value);
    std::string Get(const std::string& keyword) const;
};
// Raises 3151 for a text that names no server the way libpq understands
// (unknown keys, a broken URI).
ServerConnect ParseServerConnect(std::string_view text);

// The hidden key column of every table the engine makes.
inline constexpr const char* kKeyColumn = "_vx_key";

struct PgResultDeleter {
    void operator()(PGresult* r) const { PQclear(r); }
};
using PgResult = std::unique_ptr<PGresult, PgResultDeleter>;

// Parameters of a statement in libpq's text form (binary for bytes).
class PgParams {
public:
    void Clear()
    {
        m_values.clear();
        m_lengths.clear();
        m_formats.clear();
        m_used = 0;
    }
    void Add(const DaoValue& value);
    void AddText(const std::string& text);
    // A text that outlives the statement (no copy).
    void AddOwned(const std::string& text);
    void AddInt(std::int64_t i);
    int Count() const { return static_cast<int>(m_values.size()); }
    const char* const* Values() const { return m_values.data(); }
    const int* Lengths() const { return m_lengths.data(); }
    const int* Formats() const { return m_formats.data(); }

private:
    std::string& Scratch();
    std::vector<const char*> m_values;
    std::vector<int> m_lengths, m_formats;
    std::vector<std::unique_ptr<std::string>> m_scratch; // numbers written as text
    std::size_t m_used = 0;
};

class PgEngine final : public Engine {
public:
    PgEngine(PGconn* conn, std::string shown, bool readOnly);
    ~PgEngine() override;

    PGconn* conn;
    std::string shown; // the connect text without its password

    // Runs `sql` (the server's dialect); throws DAO's errors.
    PgResult Run(const std::string& sql, const PgParams* params = nullptr);
    // Runs a statement prepared once per engine.
    PgResult RunPrepared(const std::string& sql, const PgParams& params);
    // Runs one statement (the server's dialect) that may fail without
    // ending a transaction of the workspace.
    PgResult RunStatement(const std::string& sql);
    // Raises the DAO error that fits a failed result (or a broken connection).
    [[noreturn]] void Fail(const PGresult* result, const std::string& what);
    // The caller's dialect ([names], "texts", names in any case) in the server's.
    std::string Translate(const std::string& sql);
    // The server's name of the column type `oid` for a cast ("" for texts).
    static const char* CastName(std::uint32_t oid);
    std::uint32_t CitextOid() const { return m_citext; }
    // One unit of design work: all of it or nothing.
    template <class Work>
    void Atomically(Work work)
    {
        const bool outer = m_depth == 0;
        const bool failed = m_failed;
        Run(outer ? "BEGIN" : "SAVEPOINT vx_design");
        try {
            work();
            Run(outer ? "COMMIT" : "RELEASE vx_design");
        } catch (...) {
            try {
                Run(outer ? "ROLLBACK" : "ROLLBACK TO vx_design; RELEASE vx_design");
                m_failed = failed; // the transaction goes on as it was
            } catch (...) {
            }
            ForgetDesign();
            throw;
        }
        ForgetDesign();
    }

    // Engine.
    bool ReadOnly() const override { return m_readOnly; }
    bool Streamable() const override { return false; }
    bool ReadsHoldWrites() const override { return false; }
    bool CounterIsKey() const override { return false; }
    void Close() override;
    std::string Locale() override;
    void ForgetDesign() override
    {
        m_columns.clear();
        m_names.clear();
    }

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
    void CountersFollow(const std::string& table) override;

    void BeginTrans() override;
    void CommitTrans() override;
    void Rollback() override;

    // The catalogue of what the server doesn't keep (pgcatalogue.cpp).
    void EnsureCatalogue();
    void NoteObject(const std::string& name, int type, const std::string& sql);
    void RenameObject(const std::string& oldName, const std::string& newName);
    void DropObject(const std::string& name);
    void TouchObject(const std::string& name);
    void SetProperty(const std::string& key, const std::string& value);
    // Whether table `table` has the hidden key.
    bool Keyed(const std::string& table);

private:
    void AddCounter(const std::string& table, const CDaoFieldInfo& info);
    // Runs what `send` sends (it gives the number of commands, 0 if it
    // failed) under a savepoint; the last command's result.
    PgResult Guarded(const std::string& sql, const std::function<int()>& send);
    const std::unordered_map<std::string, std::string>& Names();

    bool m_readOnly;
    bool m_catalogue = false; // the database has the engine's catalogue tables
    int m_depth = 0;         // transactions of the workspace
    bool m_failed = false;   // a statement failed inside the transaction
    std::uint32_t m_citext = 0;
    std::map<std::string, std::string> m_prepared; // statement text -> name
    int m_statements = 0;                          // names given to prepared statements
    std::map<std::string, std::vector<DaoColumn>> m_columns; // by lower-case name
    std::map<std::string, bool> m_keyed;
    std::unordered_map<std::string, std::string> m_names; // lower-case -> stored, for Translate
};

// Opens a connection for `text`; raises 3151, 3024, 3029 or 3031.
PGconn* ConnectServer(const ServerConnect& connect);

} // namespace vx
