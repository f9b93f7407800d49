// Internal; do not include directly.
//
// The state of a CDaoDatabase: its engine while it is open, and what the DAO
// classes keep across it (the record sets open on it, the change stamp that
// tells them when the values they hold may be stale, the transaction depth).
#pragma once

#include "platform/dao/daoengine_p.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CDaoDatabase;
class CDaoRecordset;

namespace vx {

struct DaoRecordsetPrivate;
// Reads the remaining members of a set that still reads its opening
// statement, and ends that statement.
void FinishStream(DaoRecordsetPrivate& set);

class DaoDatabasePrivate {
public:
    ~DaoDatabasePrivate();

    std::unique_ptr<Engine> engine;
    std::string name;    // the text given to Open or Create
    std::string connect; // the connect text
    bool exclusive = false;
    // Bumped by every write through this database object, so that record
    // sets know when the values they hold may be stale.
    std::uint64_t changeStamp = 1;
    long recordsAffected = 0;
    int transactionDepth = 0;

    bool IsOpen() const { return engine != nullptr; }
    bool ReadOnly() const { return engine && engine->ReadOnly(); }
    void RequireOpen() const;
    void RequireWritable() const;
    void Close();

    // The engine, for a write: reads under way that would keep it from
    // writing are finished first.
    Engine& Writing()
    {
        RequireOpen();
        BeforeWrite();
        return *engine;
    }
    void Written() { ++changeStamp; }
    void SchemaChanged()
    {
        if (engine)
            engine->ForgetDesign();
        Written();
    }

    // Record sets open on this database, so that Close can close them.
    std::vector<CDaoRecordset*> recordsets;
    // Record sets still reading their opening statement. Where the engine
    // can't write while a statement reads (SQLite: a statement must not read
    // a table that changes under it, and its snapshot must end before the
    // connection writes), each write finishes them first.
    std::vector<DaoRecordsetPrivate*> streams;
    void BeforeWrite()
    {
        if (engine && engine->ReadsHoldWrites())
            while (!streams.empty())
                FinishStream(*streams.back());
    }
};

// The state of an open database; throws DAO's "object invalid" for a null
// database and "not open" for a closed one.
DaoDatabasePrivate& OpenDatabaseOf(CDaoDatabase* database);

// The stored query `name` (found without regard to case).
bool FindQueryOf(DaoDatabasePrivate& d, const std::string& name, QueryEntry& entry);
// Whether a table or query has the name.
bool NameTaken(DaoDatabasePrivate& d, const std::string& name);

// Throws DAO's "object invalid" unless the definition `d` is open.
template <class DefPrivate>
void RequireOpenDef(const DefPrivate& d)
{
    if (!d.open)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
}

} // namespace vx
