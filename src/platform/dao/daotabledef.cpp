#include "platform/dao/daotabledef.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daoengine_p.h"

#include <algorithm>
#include <random>

namespace vx {

struct DaoTableDefPrivate {
    bool open = false;
    bool appended = false;
    std::string name;
    std::vector<CDaoFieldInfo> fields;  // of a table not yet appended
    std::vector<CDaoIndexInfo> indexes; // of a table not yet appended
};

namespace {

[[noreturn]] void ItemNotFound()
{
    ThrowDao(kDaoItemNotFound, "Item not found in this collection.");
}

// SQLite's index names are global to the file, DAO's belong to the table:
// the stored name is the DAO name, "@", P for a primary index or I for
// another, and a random suffix that keeps it unique.
std::string StoredIndexName(const std::string& name, bool primary)
{
    static std::mt19937_64 random{std::random_device{}()};
    char suffix[24];
    std::snprintf(suffix, sizeof suffix, "@%c%012llx", primary ? 'P' : 'I',
                  static_cast<unsigned long long>(random() & 0xFFFFFFFFFFFFull));
    return name + suffix;
}

struct IndexEntry {
    std::string stored;
    CDaoIndexInfo info;
};

std::vector<IndexEntry> IndexesOf(DaoDatabasePrivate& d, const std::string& table)
{
    std::vector<IndexEntry> out;
    Statement list(d.conn, "PRAGMA index_list(" + QuoteName(table) + ")");
    while (list.Step() == SQLITE_ROW) {
        IndexEntry e;
        e.stored = reinterpret_cast<const char*>(sqlite3_column_text(list.get(), 1));
        const std::string origin = reinterpret_cast<const char*>(sqlite3_column_text(list.get(), 3));
        e.info.m_bUnique = sqlite3_column_int(list.get(), 2) != 0;
        const auto at = e.stored.rfind('@');
        if (at != std::string::npos && at + 2 <= e.stored.size() &&
            (e.stored[at + 1] == 'P' || e.stored[at + 1] == 'I')) {
            e.info.m_strName = CString(e.stored.substr(0, at));
            e.info.m_bPrimary = e.stored[at + 1] == 'P';
        } else if (origin == "pk") {
            e.info.m_strName = "PrimaryKey";
            e.info.m_bPrimary = TRUE;
        } else {
            e.info.m_strName = CString(e.stored);
        }
        e.info.m_bRequired = e.info.m_bPrimary;
        out.push_back(std::move(e));
    }
    for (auto& e : out) {
        Statement fields(d.conn, "PRAGMA index_xinfo(" + QuoteName(e.stored) + ")");
        std::vector<CDaoIndexFieldInfo> infos;
        while (fields.Step() == SQLITE_ROW) {
            if (!sqlite3_column_int(fields.get(), 5) || !sqlite3_column_text(fields.get(), 2))
                continue; // the row id that every index carries
            CDaoIndexFieldInfo f;
            f.m_strName = reinterpret_cast<const char*>(sqlite3_column_text(fields.get(), 2));
            f.m_bDescending = sqlite3_column_int(fields.get(), 3) != 0;
            infos.push_back(f);
        }
        e.info.SetFields(std::move(infos));
    }
    std::sort(out.begin(), out.end(), [](const IndexEntry& a, const IndexEntry& b) {
        return sqlite3_stricmp(a.info.m_strName, b.info.m_strName) < 0;
    });
    return out;
}

std::string IndexSql(const std::string& table, const CDaoIndexInfo& info)
{
    if (info.m_strName.IsEmpty())
        ThrowDao(kDaoInvalidName, "'' is not a valid name.");
    if (info.m_nFields <= 0 || !info.m_pFieldInfos)
        ThrowDao(kDaoNoFieldDefined, "No field defined--cannot append TableDef or Index.");
    std::string sql = (info.m_bUnique || info.m_bPrimary) ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    sql += QuoteName(StoredIndexName(info.m_strName.StdString(), info.m_bPrimary)) + " ON " + QuoteName(table) + " (";
    for (int i = 0; i < info.m_nFields; ++i) {
        if (i)
            sql += ", ";
        sql += QuoteName(info.m_pFieldInfos[i].m_strName.StdString());
        if (info.m_pFieldInfos[i].m_bDescending)
            sql += " DESC";
    }
    return sql + ")";
}

// Runs `work` as one unit: all of it or nothing reaches the file.
template <class Work>
void Atomically(DaoDatabasePrivate& d, Work work)
{
    d.Exec("SAVEPOINT vx_design");
    try {
        work();
        d.Exec("RELEASE vx_design");
    } catch (...) {
        try {
            d.Exec("ROLLBACK TO vx_design; RELEASE vx_design");
        } catch (...) {
        }
        d.SchemaChanged();
        throw;
    }
    d.SchemaChanged();
}

// SQLite adds no key column to a table that exists: the table is built anew
// with the counter, which takes each record's row id as its number, so that
// the records keep their identity.
void AddCounter(DaoDatabasePrivate& d, const std::string& table, const CDaoFieldInfo& info)
{
    const std::vector<DaoColumn> columns = d.Columns(table);
    if (std::any_of(columns.begin(), columns.end(), [](const DaoColumn& c) { return c.autoIncrement; }))
        ThrowDao(kDaoInvalidFieldType, "Invalid field data type. (A table holds one counter field.)");
    std::vector<std::string> indexes;
    {
        Statement s(d.conn, "SELECT sql FROM sqlite_master WHERE type='index' AND tbl_name=?1 COLLATE NOCASE "
                            "AND sql IS NOT NULL");
        sqlite3_bind_text(s.get(), 1, table.c_str(), -1, SQLITE_TRANSIENT);
        while (s.Step() == SQLITE_ROW)
            indexes.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)));
    }
    const std::string temp = table + "~vxrebuild";
    std::string create = "CREATE TABLE " + QuoteName(temp) + " (";
    std::string names;
    for (const auto& c : columns) {
        create += QuoteName(c.name) + " " + DeclaredType(c.type, c.size, 0);
        if (c.required)
            create += " NOT NULL";
        if (!c.defaultValue.empty())
            create += " DEFAULT (" + c.defaultValue + ")";
        create += ", ";
        names += QuoteName(c.name) + ", ";
    }
    create += ColumnDefinition(info) + ")";
    Atomically(d, [&] {
        d.Exec("PRAGMA legacy_alter_table=ON");
        d.Exec(create);
        d.Exec("INSERT INTO " + QuoteName(temp) + " (" + names + QuoteName(info.m_strName.StdString()) + ") SELECT " +
               names + "rowid FROM " + QuoteName(table) + " ORDER BY rowid");
        d.Exec("DROP TABLE " + QuoteName(table));
        d.Exec("ALTER TABLE " + QuoteName(temp) + " RENAME TO " + QuoteName(table));
        for (const auto& sql : indexes)
            d.Exec(sql);
        d.Exec("PRAGMA legacy_alter_table=OFF");
    });
}

} // namespace

} // namespace vx

using vx::DaoDatabasePrivate;

CDaoTableDef::CDaoTableDef(CDaoDatabase* database)
    : m_pDatabase(database), d(std::make_unique<vx::DaoTableDefPrivate>())
{
}

CDaoTableDef::~CDaoTableDef() = default;

namespace {

DaoDatabasePrivate& Db(CDaoDatabase* database)
{
    return vx::OpenDatabaseOf(database);
}

using vx::RequireOpenDef;

} // namespace

void CDaoTableDef::Create(const char* name, long attributes, const char* srcTable, const char* connect)
{
    Db(m_pDatabase);
    if (!name || !*name)
        vx::ThrowDao(vx::kDaoInvalidName, "'' is not a valid name.");
    if (attributes != 0 || (srcTable && *srcTable) || (connect && *connect))
        vx::ThrowDao(vx::kDaoNotSupported, "Operation is not supported for this type of object. (Attached "
                                           "tables are not supported.)");
    Close();
    d->open = true;
    d->appended = false;
    d->name = name;
}

void CDaoTableDef::Open(const char* name)
{
    DaoDatabasePrivate& db = Db(m_pDatabase);
    const std::string found = db.FindTable(name ? name : "");
    if (found.empty())
        vx::ThrowDao(vx::kDaoItemNotFound, "Item not found in this collection.");
    Close();
    d->open = true;
    d->appended = true;
    d->name = found;
}

void CDaoTableDef::Append()
{
    RequireOpenDef(*d);
    DaoDatabasePrivate& db = Db(m_pDatabase);
    db.RequireWritable();
    if (d->appended)
        vx::ThrowDao(vx::kDaoTableExists, "Table '" + d->name + "' already exists.");
    if (db.NameTaken(d->name))
        vx::ThrowDao(vx::kDaoTableExists, "Table '" + d->name + "' already exists.");
    if (d->fields.empty())
        vx::ThrowDao(vx::kDaoNoFieldDefined, "No field defined--cannot append TableDef or Index.");
    std::string sql = "CREATE TABLE " + vx::QuoteName(d->name) + " (";
    for (std::size_t i = 0; i < d->fields.size(); ++i)
        sql += (i ? ", " : "") + vx::ColumnDefinition(d->fields[i]);
    sql += ")";
    vx::Atomically(db, [&] {
        db.Exec(sql);
        for (const auto& index : d->indexes)
            db.Exec(vx::IndexSql(d->name, index));
        db.NoteObject(d->name, vx::kObjectTable, std::string());
    });
    if (db.isam)
        db.isam->TableCreated(d->name);
    d->appended = true;
    d->fields.clear();
    d->indexes.clear();
}

void CDaoTableDef::Close()
{
    d->open = false;
    d->appended = false;
    d->fields.clear();
    d->indexes.clear();
}

BOOL CDaoTableDef::IsOpen() const
{
    return d->open;
}

CString CDaoTableDef::GetName() const
{
    return CString(d->name);
}

void CDaoTableDef::SetName(const char* name)
{
    RequireOpenDef(*d);
    if (!name || !*name)
        vx::ThrowDao(vx::kDaoInvalidName, "'' is not a valid name.");
    if (!d->appended) {
        d->name = name;
        return;
    }
    DaoDatabasePrivate& db = Db(m_pDatabase);
    db.RequireWritable();
    if (!vx::EqualNoCase(d->name, name) && db.NameTaken(name))
        vx::ThrowDao(vx::kDaoTableExists, std::string("Table '") + name + "' already exists.");
    vx::Atomically(db, [&] {
        db.Exec("ALTER TABLE " + vx::QuoteName(d->name) + " RENAME TO " + vx::QuoteName(name));
        db.RenameObject(d->name, name);
    });
    d->name = name;
}

long CDaoTableDef::GetAttributes() const
{
    return d->name.size() >= 4 && vx::EqualNoCase(d->name.substr(0, 4), "MSys") ? dbSystemObject : 0;
}

COleDateTime CDaoTableDef::GetDateCreated()
{
    RequireOpenDef(*d);
    double created = 0, updated = 0;
    if (d->appended)
        Db(m_pDatabase).ObjectDates(d->name, created, updated);
    return COleDateTime(created);
}

COleDateTime CDaoTableDef::GetDateLastUpdated()
{
    RequireOpenDef(*d);
    double created = 0, updated = 0;
    if (d->appended)
        Db(m_pDatabase).ObjectDates(d->name, created, updated);
    return COleDateTime(updated);
}

CString CDaoTableDef::GetConnect() const
{
    return CString();
}

CString CDaoTableDef::GetSourceTableName() const
{
    return CString();
}

long CDaoTableDef::GetRecordCount()
{
    RequireOpenDef(*d);
    if (!d->appended)
        return 0;
    DaoDatabasePrivate& db = Db(m_pDatabase);
    vx::Statement count(db.conn, "SELECT count(*) FROM " + vx::QuoteName(d->name));
    return count.Step() == SQLITE_ROW ? static_cast<long>(sqlite3_column_int64(count.get(), 0)) : 0;
}

BOOL CDaoTableDef::CanUpdate() const
{
    return d->open && m_pDatabase && m_pDatabase->CanUpdate() && GetAttributes() == 0;
}

short CDaoTableDef::GetFieldCount()
{
    RequireOpenDef(*d);
    if (!d->appended)
        return static_cast<short>(d->fields.size());
    return static_cast<short>(Db(m_pDatabase).Columns(d->name).size());
}

void CDaoTableDef::GetFieldInfo(int index, CDaoFieldInfo& info, DWORD)
{
    RequireOpenDef(*d);
    if (!d->appended) {
        if (index < 0 || index >= static_cast<int>(d->fields.size()))
            vx::ItemNotFound();
        info = d->fields[static_cast<std::size_t>(index)];
        return;
    }
    const auto& columns = Db(m_pDatabase).Columns(d->name);
    if (index < 0 || index >= static_cast<int>(columns.size()))
        vx::ItemNotFound();
    vx::FillFieldInfo(columns[static_cast<std::size_t>(index)], index, info);
}

void CDaoTableDef::GetFieldInfo(const char* name, CDaoFieldInfo& info, DWORD options)
{
    RequireOpenDef(*d);
    const std::string wanted = name ? name : "";
    const int count = GetFieldCount();
    for (int i = 0; i < count; ++i) {
        CDaoFieldInfo candidate;
        if (!d->appended) {
            if (vx::EqualNoCase(d->fields[static_cast<std::size_t>(i)].m_strName.StdString(), wanted)) {
                info = d->fields[static_cast<std::size_t>(i)];
                return;
            }
        } else if (vx::EqualNoCase(Db(m_pDatabase).Columns(d->name)[static_cast<std::size_t>(i)].name, wanted)) {
            GetFieldInfo(i, info, options);
            return;
        }
    }
    vx::ItemNotFound();
}

void CDaoTableDef::CreateField(const char* name, short type, long size, long attributes)
{
    CDaoFieldInfo info;
    info.m_strName = name;
    info.m_nType = type;
    info.m_lSize = size;
    info.m_lAttributes = attributes;
    CreateField(info);
}

void CDaoTableDef::CreateField(CDaoFieldInfo& info)
{
    RequireOpenDef(*d);
    DaoDatabasePrivate& db = Db(m_pDatabase);
    const std::string definition = vx::ColumnDefinition(info); // checks name and type
    if (!d->appended) {
        for (const auto& f : d->fields)
            if (vx::EqualNoCase(f.m_strName.StdString(), info.m_strName.StdString()))
                vx::ThrowDao(vx::kDaoFieldDefinedTwice, "Can't define field more than once.");
        d->fields.push_back(info);
        return;
    }
    db.RequireWritable();
    for (const auto& c : db.Columns(d->name))
        if (vx::EqualNoCase(c.name, info.m_strName.StdString()))
            vx::ThrowDao(vx::kDaoFieldDefinedTwice, "Can't define field more than once.");
    if (info.m_lAttributes & dbAutoIncrField) {
        vx::AddCounter(db, d->name, info);
    } else {
        // Records that exist get null in the new field, so a required field
        // can't be enforced on them without a default.
        CDaoFieldInfo added = info;
        if (added.m_strDefaultValue.IsEmpty())
            added.m_bRequired = FALSE;
        vx::Atomically(db, [&] {
            db.Exec("ALTER TABLE " + vx::QuoteName(d->name) + " ADD COLUMN " + vx::ColumnDefinition(added));
        });
    }
    db.TouchObject(d->name);
}

void CDaoTableDef::DeleteField(const char* name)
{
    RequireOpenDef(*d);
    const std::string wanted = name ? name : "";
    if (!d->appended) {
        auto it = std::find_if(d->fields.begin(), d->fields.end(), [&](const CDaoFieldInfo& f) {
            return vx::EqualNoCase(f.m_strName.StdString(), wanted);
        });
        if (it == d->fields.end())
            vx::ItemNotFound();
        d->fields.erase(it);
        return;
    }
    DaoDatabasePrivate& db = Db(m_pDatabase);
    db.RequireWritable();
    std::string found;
    for (const auto& c : db.Columns(d->name))
        if (vx::EqualNoCase(c.name, wanted))
            found = c.name;
    if (found.empty())
        vx::ItemNotFound();
    for (const auto& index : vx::IndexesOf(db, d->name))
        for (int i = 0; i < index.info.m_nFields; ++i)
            if (vx::EqualNoCase(index.info.m_pFieldInfos[i].m_strName.StdString(), found))
                vx::ThrowDao(vx::kDaoFieldInIndex,
                             "Can't delete a field that is part of an index or is needed by the system.");
    vx::Atomically(db, [&] { db.Exec("ALTER TABLE " + vx::QuoteName(d->name) + " DROP COLUMN " + vx::QuoteName(found)); });
    db.TouchObject(d->name);
}

void CDaoTableDef::DeleteField(int index)
{
    CDaoFieldInfo info;
    GetFieldInfo(index, info);
    DeleteField(info.m_strName);
}

short CDaoTableDef::GetIndexCount()
{
    RequireOpenDef(*d);
    if (!d->appended)
        return static_cast<short>(d->indexes.size());
    return static_cast<short>(vx::IndexesOf(Db(m_pDatabase), d->name).size());
}

void CDaoTableDef::GetIndexInfo(int index, CDaoIndexInfo& info, DWORD)
{
    RequireOpenDef(*d);
    if (!d->appended) {
        if (index < 0 || index >= static_cast<int>(d->indexes.size()))
            vx::ItemNotFound();
        info = d->indexes[static_cast<std::size_t>(index)];
        return;
    }
    const auto indexes = vx::IndexesOf(Db(m_pDatabase), d->name);
    if (index < 0 || index >= static_cast<int>(indexes.size()))
        vx::ItemNotFound();
    info = indexes[static_cast<std::size_t>(index)].info;
}

void CDaoTableDef::GetIndexInfo(const char* name, CDaoIndexInfo& info, DWORD options)
{
    RequireOpenDef(*d);
    const int count = GetIndexCount();
    for (int i = 0; i < count; ++i) {
        CDaoIndexInfo candidate;
        GetIndexInfo(i, candidate, options);
        if (vx::EqualNoCase(candidate.m_strName.StdString(), name ? name : "")) {
            info = candidate;
            return;
        }
    }
    vx::ItemNotFound();
}

void CDaoTableDef::CreateIndex(CDaoIndexInfo& info)
{
    RequireOpenDef(*d);
    DaoDatabasePrivate& db = Db(m_pDatabase);
    const int count = GetIndexCount();
    for (int i = 0; i < count; ++i) {
        CDaoIndexInfo existing;
        GetIndexInfo(i, existing);
        if (vx::EqualNoCase(existing.m_strName.StdString(), info.m_strName.StdString()))
            vx::ThrowDao(vx::kDaoIndexExists, "Index already exists.");
        if (existing.m_bPrimary && info.m_bPrimary)
            vx::ThrowDao(3283, "Primary key already exists.");
    }
    const std::string sql = vx::IndexSql(d->name, info); // checks name and fields
    if (!d->appended) {
        d->indexes.push_back(info);
        return;
    }
    db.RequireWritable();
    vx::Atomically(db, [&] { db.Exec(sql); });
    db.TouchObject(d->name);
}

void CDaoTableDef::DeleteIndex(const char* name)
{
    RequireOpenDef(*d);
    if (!d->appended) {
        auto it = std::find_if(d->indexes.begin(), d->indexes.end(), [&](const CDaoIndexInfo& i) {
            return vx::EqualNoCase(i.m_strName.StdString(), name ? name : "");
        });
        if (it == d->indexes.end())
            vx::ItemNotFound();
        d->indexes.erase(it);
        return;
    }
    DaoDatabasePrivate& db = Db(m_pDatabase);
    db.RequireWritable();
    for (const auto& index : vx::IndexesOf(db, d->name)) {
        if (vx::EqualNoCase(index.info.m_strName.StdString(), name ? name : "")) {
            vx::Atomically(db, [&] { db.Exec("DROP INDEX " + vx::QuoteName(index.stored)); });
            return;
        }
    }
    vx::ItemNotFound();
}

void CDaoTableDef::DeleteIndex(int index)
{
    CDaoIndexInfo info;
    GetIndexInfo(index, info);
    DeleteIndex(info.m_strName);
}
