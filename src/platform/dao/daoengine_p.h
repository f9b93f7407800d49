// Internal; do not include directly.
//
// The database engine behind the DAO classes: an SQLite connection per
// CDaoDatabase, the mapping of DAO's field types onto declared column types,
// the catalogue tables, and the error mapping onto DAO's numbers.
#pragma once

#include "platform/framework/colevariant.h"
#include "platform/framework/cstring.h"
#include "platform/framework/util_p.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daoinfo.h"

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CDaoDatabase;
class CDaoRecordset;

namespace vx {

struct DaoRecordsetPrivate;
// Reads the remaining members of a set that still reads its opening
// statement, and ends that statement.
void FinishStream(DaoRecordsetPrivate& set);

// Raises CDaoException `code` with `description`.
[[noreturn]] void ThrowDao(long code, const std::string& description);
// Raises the DAO error that fits SQLite's result `rc` (CMemoryException for
// SQLITE_NOMEM while memory is short; a damaged file is 3049). `what` names the object or statement for the text.
[[noreturn]] void ThrowSqlite(sqlite3* db, int rc, const std::string& what);

// A field of a table as the engine reports it.
struct DaoColumn {
    std::string name;
    std::string declared; // the declared column type, as stored
    short type = dbMemo;
    long size = 0;
    long attributes = 0;
    bool required = false;
    bool autoIncrement = false;
    std::string defaultValue;
};

// The declared column type that stores DAO type `type` of `size`.
std::string DeclaredType(short type, long size, long attributes);
// The DAO type of a declared column type.
void ParseDeclaredType(const std::string& declared, bool integerPrimaryKey, DaoColumn& column);
// The column definition for CREATE TABLE / ALTER TABLE ADD COLUMN.
std::string ColumnDefinition(const CDaoFieldInfo& info);
void FillFieldInfo(const DaoColumn& column, int ordinal, CDaoFieldInfo& info);

// "name" with quotes doubled: a safe SQL identifier.
std::string QuoteName(const std::string& name);
// SQL text with the trailing blanks and semicolons taken off.
std::string TrimSql(const std::string& sql);
// Names compare folding ASCII letters only, as SQLite's NOCASE does.
bool EqualNoCase(const std::string& a, const std::string& b);

// A stored value.
struct DaoValue {
    enum Kind : std::uint8_t { Null, Int, Real, Text, Blob };
    Kind kind = Null;
    union {
        std::int64_t i = 0; // Int
        double d;           // Real
    };
    std::string s; // Text and Blob
};
// A stored value whose bytes lie elsewhere.
struct ValueView {
    DaoValue::Kind kind = DaoValue::Null;
    std::int64_t i = 0;
    double d = 0;
    std::string_view s;
};
inline ValueView ViewOf(const DaoValue& value)
{
    ValueView view;
    view.kind = value.kind;
    if (value.kind == DaoValue::Int)
        view.i = value.i;
    else if (value.kind == DaoValue::Real)
        view.d = value.d;
    else
        view.s = value.s;
    return view;
}
// Reads column `index` of the current row of `stmt`.
void ReadValue(sqlite3_stmt* stmt, int index, DaoValue& value);
void BindValue(sqlite3_stmt* stmt, int index, const DaoValue& value);
// The stored value as a variant of the field's type.
void ValueToVariant(const ValueView& value, const DaoColumn& column, COleVariant& out);
// The same, with the usual case (a value stored as the field's type stores
// it) handled inline.
inline void FastVariant(const ValueView& value, const DaoColumn& column, COleVariant& out)
{
    switch (column.type) {
    case dbLong:
        if (value.kind != DaoValue::Int)
            break;
        out.Clear();
        out.vt = VT_I4;
        out.lVal = static_cast<LONG>(value.i);
        return;
    case dbDouble:
        if (value.kind != DaoValue::Real)
            break;
        out.Clear();
        out.vt = VT_R8;
        out.dblVal = value.d;
        return;
    case dbText:
    case dbMemo:
        if (value.kind != DaoValue::Text)
            break;
        out.SetString(value.s.data(), value.s.size());
        return;
    default:
        break;
    }
    ValueToVariant(value, column, out);
}
// A value that owns a copy of the bytes of `view`.
inline DaoValue Owned(const ValueView& view)
{
    DaoValue value;
    value.kind = view.kind;
    if (view.kind == DaoValue::Int)
        value.i = view.i;
    else if (view.kind == DaoValue::Real)
        value.d = view.d;
    else if (view.kind != DaoValue::Null)
        value.s.assign(view.s.data(), view.s.size());
    return value;
}
// The variant converted for storing in the field (the DAO errors of
// CDaoRecordset::SetFieldValue).
void VariantToValue(const COleVariant& in, const DaoColumn& column, DaoValue& out);
// Error 3163 for a text or binary value longer than its field.
void CheckFits(const DaoValue& value, const DaoColumn& column);

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

private:
    sqlite3_stmt* m_stmt = nullptr;
};

// Reads and writes of a file format other than SQLite: the tables live in
// an in-memory database while it is open, and go back to the file at close.
class IsamDriver {
public:
    virtual ~IsamDriver() = default;
    // Fills the empty in-memory database with the tables of `path`.
    virtual void Load(class DaoDatabasePrivate& db, const std::string& path, bool readOnly) = 0;
    // Writes the tables back to `path` (only called if there were changes).
    virtual void Save(class DaoDatabasePrivate& db, const std::string& path) = 0;
    // Whether the file can be written at all.
    virtual bool CanUpdate() const = 0;
    // A table that was created since the load.
    virtual void TableCreated(const std::string&) {}
    // Another name under which the file knows table `name` ("" if none).
    virtual std::string AlternateName(const std::string&) const { return std::string(); }
};
// The driver for a connect text, or null for "" (an SQLite file). Unknown
// connect texts raise 3170.
std::unique_ptr<IsamDriver> MakeIsamDriver(const std::string& connect);

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

class DaoDatabasePrivate {
public:
    ~DaoDatabasePrivate();

    sqlite3* conn = nullptr;
    std::string name;    // the path text as given
    std::string host;    // the host path
    std::string connect; // the connect text
    bool readOnly = false;
    bool exclusive = false;
    std::unique_ptr<IsamDriver> isam;
    // Bumped by every write through this connection, so that record sets
    // know when their cached rows may be stale.
    std::uint64_t changeStamp = 1;
    bool changed = false; // since open: for ISAM drivers
    long recordsAffected = 0;
    int transactionDepth = 0;

    bool IsOpen() const { return conn != nullptr; }
    void RequireOpen() const;
    void RequireWritable() const;
    void OpenNative(const std::string& file, bool exclusive, bool readOnly);
    void CreateNative(const std::string& file, const std::string& locale, int options);
    void OpenIsam(const std::string& file, bool readOnly, const std::string& connectText);
    void Close();

    // Runs statements that return no rows; throws.
    void Exec(const std::string& sql);
    // A cached prepared statement, reset and with bindings cleared.
    sqlite3_stmt* Cached(const std::string& sql);
    void Written();
    void SchemaChanged();

    // The catalogue.
    void EnsureCatalogue();
    bool HasCatalogue();
    std::string Property(const std::string& key);
    void NoteObject(const std::string& name, int type, const std::string& sql);
    void RenameObject(const std::string& oldName, const std::string& newName);
    void DropObject(const std::string& name);
    void ObjectDates(const std::string& name, double& created, double& updated);
    void TouchObject(const std::string& name);

    std::vector<TableEntry> Tables();
    std::vector<QueryEntry> Queries();
    // The exact name of table `name` (found without regard to case), or "".
    std::string FindTable(const std::string& name);
    bool FindQuery(const std::string& name, QueryEntry& entry);
    bool NameTaken(const std::string& name);
    const std::vector<DaoColumn>& Columns(const std::string& table);

    // Record sets open on this database, so that Close can close them.
    std::vector<CDaoRecordset*> recordsets;
    // Record sets still reading their opening statement. Each write of this
    // connection finishes them first: a statement must not read a table that
    // changes under it, and its snapshot must end before the connection
    // writes. Only files in write-ahead-log mode let a set read that way,
    // since there a pending read keeps no other program from writing.
    std::vector<DaoRecordsetPrivate*> streams;
    bool streamable = false;
    void BeforeWrite()
    {
        while (!streams.empty())
            FinishStream(*streams.back());
    }

private:
    void Configure(bool writable);
    std::map<std::string, sqlite3_stmt*> m_cache;
    std::map<std::string, std::vector<DaoColumn>> m_columns; // by lower-case name
    int m_catalogue = -1;                                  // unknown, 0, 1
};

// The engine of an open database; throws DAO's "object invalid" for a null
// database and "not open" for a closed one.
DaoDatabasePrivate& OpenDatabaseOf(CDaoDatabase* database);

// Throws DAO's "object invalid" unless the definition `d` is open.
template <class DefPrivate>
void RequireOpenDef(const DefPrivate& d)
{
    if (!d.open)
        ThrowDao(kDaoObjectInvalid, "Object invalid or no longer set.");
}

// Catalogue object types.
constexpr int kObjectTable = 1;
constexpr int kObjectQuery = 5;
constexpr int kObjectActionQuery = 6;

// The type of a statement by its first word (dbQSelect, dbQUpdate...).
short QueryTypeOf(const std::string& sql);
// The current time as an OLE date.
double NowAsDate();

} // namespace vx
