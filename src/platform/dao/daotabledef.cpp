#include "platform/dao/daotabledef.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daodatabase_p.h"

#include <algorithm>

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

// A design change: the engine's work, after which the DAO classes forget
// what they knew of the design, whether or not it succeeded.
template <class Work>
void Design(DaoDatabasePrivate& d, Work work)
{
    try {
        work(d.Writing());
    } catch (...) {
        d.SchemaChanged();
        throw;
    }
    d.SchemaChanged();
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
    vx::CheckName(name ? name : "");
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
    const std::string found = db.engine->FindTable(name ? name : "");
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
    if (vx::NameTaken(db, d->name))
        vx::ThrowDao(vx::kDaoTableExists, "Table '" + d->name + "' already exists.");
    if (d->fields.empty())
        vx::ThrowDao(vx::kDaoNoFieldDefined, "No field defined--cannot append TableDef or Index.");
    vx::Design(db, [&](vx::Engine& engine) { engine.CreateTable(d->name, d->fields, d->indexes); });
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
    vx::CheckName(name ? name : "");
    if (!d->appended) {
        d->name = name;
        return;
    }
    DaoDatabasePrivate& db = Db(m_pDatabase);
    db.RequireWritable();
    if (!vx::EqualNoCase(d->name, name) && vx::NameTaken(db, name))
        vx::ThrowDao(vx::kDaoTableExists, std::string("Table '") + name + "' already exists.");
    vx::Design(db, [&](vx::Engine& engine) { engine.RenameTable(d->name, name); });
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
        Db(m_pDatabase).engine->ObjectDates(d->name, created, updated);
    return COleDateTime(created);
}

COleDateTime CDaoTableDef::GetDateLastUpdated()
{
    RequireOpenDef(*d);
    double created = 0, updated = 0;
    if (d->appended)
        Db(m_pDatabase).engine->ObjectDates(d->name, created, updated);
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
    return Db(m_pDatabase).engine->RecordCount(d->name);
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
    return static_cast<short>(Db(m_pDatabase).engine->Columns(d->name).size());
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
    const auto& columns = Db(m_pDatabase).engine->Columns(d->name);
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
        } else if (vx::EqualNoCase(Db(m_pDatabase).engine->Columns(d->name)[static_cast<std::size_t>(i)].name, wanted)) {
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
    vx::CheckFieldInfo(info);
    if (!d->appended) {
        for (const auto& f : d->fields)
            if (vx::EqualNoCase(f.m_strName.StdString(), info.m_strName.StdString()))
                vx::ThrowDao(vx::kDaoFieldDefinedTwice, "Can't define field more than once.");
        d->fields.push_back(info);
        return;
    }
    db.RequireWritable();
    const std::vector<vx::DaoColumn>& columns = db.engine->Columns(d->name);
    for (const auto& c : columns)
        if (vx::EqualNoCase(c.name, info.m_strName.StdString()))
            vx::ThrowDao(vx::kDaoFieldDefinedTwice, "Can't define field more than once.");
    CDaoFieldInfo added = info;
    if (info.m_lAttributes & dbAutoIncrField) {
        if (std::any_of(columns.begin(), columns.end(), [](const vx::DaoColumn& c) { return c.autoIncrement; }))
            vx::ThrowDao(vx::kDaoInvalidFieldType, "Invalid field data type. (A table holds one counter field.)");
    } else if (added.m_strDefaultValue.IsEmpty()) {
        // Records that exist get null in the new field, so a required field
        // can't be enforced on them without a default.
        added.m_bRequired = FALSE;
    }
    vx::Design(db, [&](vx::Engine& engine) { engine.AddField(d->name, added); });
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
    for (const auto& c : db.engine->Columns(d->name))
        if (vx::EqualNoCase(c.name, wanted))
            found = c.name;
    if (found.empty())
        vx::ItemNotFound();
    for (const auto& index : db.engine->Indexes(d->name))
        for (int i = 0; i < index.info.m_nFields; ++i)
            if (vx::EqualNoCase(index.info.m_pFieldInfos[i].m_strName.StdString(), found))
                vx::ThrowDao(vx::kDaoFieldInIndex,
                             "Can't delete a field that is part of an index or is needed by the system.");
    vx::Design(db, [&](vx::Engine& engine) { engine.DropField(d->name, found); });
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
    return static_cast<short>(Db(m_pDatabase).engine->Indexes(d->name).size());
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
    const auto indexes = Db(m_pDatabase).engine->Indexes(d->name);
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
    vx::CheckName(info.m_strName.StdString());
    if (info.m_nFields <= 0 || !info.m_pFieldInfos)
        vx::ThrowDao(vx::kDaoNoFieldDefined, "No field defined--cannot append TableDef or Index.");
    if (!d->appended) {
        d->indexes.push_back(info);
        return;
    }
    db.RequireWritable();
    vx::Design(db, [&](vx::Engine& engine) { engine.CreateIndex(d->name, info); });
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
    for (const auto& index : db.engine->Indexes(d->name)) {
        if (vx::EqualNoCase(index.info.m_strName.StdString(), name ? name : "")) {
            vx::Design(db, [&](vx::Engine& engine) { engine.DropIndex(d->name, index); });
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
