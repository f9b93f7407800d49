// The "dBASE IV" connect: a directory whose .dbf files are the tables, read
// and written through shapelib's DBF functions.
//
// Each table is read into the in-memory database at opening; a table that
// was created or changed is written back whole at closing (to a temporary
// file first, which then replaces the old one). Fields: text (C, up to 254
// characters; a memo is kept as C 254), numbers (N: counters, bytes,
// integers and longs without decimals, currency with 4, single and double
// with 6), logical (L) and dates (D). Reading gives text, long (N without
// decimals, up to 9 digits), double (other N and F), boolean and date.
// Names are cut to dBASE's 10 characters. Text bytes are written as they
// are, in the code page.
#include "platform/dao/sqlite/sqliteengine_p.h"

#include "platform/framework/coledatetime.h"

#include <shapefil.h>

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace vx {

namespace {

struct DbfField {
    char type = 'C'; // the native type: C, N, F, L, D
    int width = 0;
    int decimals = 0;
};

std::string StemOf(const std::string& file)
{
    const auto dot = file.rfind('.');
    return dot == std::string::npos ? file : file.substr(0, dot);
}

bool EndsWithDbf(const std::string& name)
{
    return name.size() > 4 && AsciiEndsWithNoCase(name, ".dbf");
}

// The records that lie in the file. A damaged header may claim more than
// the file holds: shapelib would complain of each missing one and take
// hours over a count in the millions.
int RecordsInFile(DBFHandle dbf, const std::string& file)
{
    struct stat st {};
    if (stat(file.c_str(), &st) != 0 || dbf->nRecordLength <= 0 || st.st_size < dbf->nHeaderLength)
        return 0;
    const long long fit = (static_cast<long long>(st.st_size) - dbf->nHeaderLength) / dbf->nRecordLength;
    return static_cast<int>(std::clamp<long long>(DBFGetRecordCount(dbf), 0, fit));
}

// The OLE date of "YYYYMMDD", or false.
bool DbfDate(const char* text, double& out)
{
    int y = 0, m = 0, d = 0;
    if (!text || std::sscanf(text, "%4d%2d%2d", &y, &m, &d) != 3)
        return false;
    COleDateTime t(y, m, d, 0, 0, 0);
    out = t.m_dt;
    return t.GetStatus() == COleDateTime::valid;
}

void OnUpdate(void* dirty, int, const char*, const char* table, sqlite3_int64)
{
    static_cast<std::set<std::string>*>(dirty)->insert(table);
}

class DbaseDriver final : public IsamDriver {
public:
    void Load(SqliteEngine& db, const std::string& path, bool readOnly) override
    {
        struct stat st {};
        if (stat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            ThrowDao(kDaoInvalidPath, "'" + db.name + "' is not a valid path.");
        m_writable = !readOnly && access(path.c_str(), W_OK) == 0;
        DIR* dir = opendir(path.c_str());
        if (!dir)
            ThrowDao(kDaoNoPermission, "Cannot open the directory '" + db.name + "'.");
        std::vector<std::string> files;
        while (dirent* entry = readdir(dir))
            if (EndsWithDbf(entry->d_name))
                files.emplace_back(entry->d_name);
        closedir(dir);
        for (const std::string& file : files)
            LoadTable(db, path + "/" + file, StemOf(file));
        m_dirty.clear();
        sqlite3_update_hook(db.conn, OnUpdate, &m_dirty);
    }

    void Save(SqliteEngine& db, const std::string& path) override
    {
        sqlite3_update_hook(db.conn, nullptr, nullptr);
        for (const TableEntry& t : db.Tables()) {
            const bool changed = m_dirty.count(t.name) > 0 || m_created.count(t.name) > 0 ||
                                 (m_layouts.count(t.name) &&
                                  m_layouts[t.name].size() != db.Columns(t.name).size());
            if (changed)
                SaveTable(db, path, t.name);
        }
    }

    bool CanUpdate() const override { return m_writable; }
    void TableCreated(const std::string& name) override { m_created.insert(name); }

private:
    void LoadTable(SqliteEngine& db, const std::string& file, const std::string& table)
    {
        DBFHandle dbf = DBFOpen(file.c_str(), "rb");
        if (!dbf)
            ThrowDao(kDaoNoPermission, "Cannot open the file '" + file + "'.");
        std::map<std::string, DbfField> layout;
        std::vector<DbfField> fields;
        std::vector<std::string> names;
        std::string create = "CREATE TABLE " + QuoteName(table) + " (";
        const int count = DBFGetFieldCount(dbf);
        for (int i = 0; i < count; ++i) {
            char name[XBASE_FLDNAME_LEN_READ + 1] = {};
            DbfField f;
            DBFGetFieldInfo(dbf, i, name, &f.width, &f.decimals);
            f.type = DBFGetNativeFieldType(dbf, i);
            std::string declared;
            switch (f.type) {
            case 'N':
            case 'F':
                declared = f.decimals == 0 && f.width <= 9 ? "LONG" : "DOUBLE";
                break;
            case 'L':
                declared = "BIT";
                break;
            case 'D':
                declared = "DATETIME";
                break;
            default:
                declared = "TEXT(" + std::to_string(std::min(std::max(f.width, 1), 255)) + ") COLLATE NOCASE";
                break;
            }
            create += (i ? ", " : "") + QuoteName(name) + " " + declared;
            fields.push_back(f);
            names.emplace_back(name);
            layout[name] = f;
        }
        create += ")";
        try {
            if (count == 0)
                ThrowDao(kDaoNoFieldDefined, "No field defined--cannot append TableDef or Index.");
            db.Exec(create);
            std::string insert = "INSERT INTO " + QuoteName(table) + " VALUES (";
            for (int i = 0; i < count; ++i)
                insert += i ? ", ?" : "?";
            Statement s(db.conn, insert + ")");
            const int records = RecordsInFile(dbf, file);
            for (int r = 0; r < records; ++r) {
                if (DBFIsRecordDeleted(dbf, r))
                    continue;
                sqlite3_reset(s.get());
                for (int i = 0; i < count; ++i) {
                    const int at = i + 1;
                    if (DBFIsAttributeNULL(dbf, r, i)) {
                        sqlite3_bind_null(s.get(), at);
                        continue;
                    }
                    const DbfField& f = fields[static_cast<std::size_t>(i)];
                    double date = 0;
                    switch (f.type) {
                    case 'N':
                    case 'F':
                        if (f.decimals == 0 && f.width <= 9)
                            sqlite3_bind_int(s.get(), at, DBFReadIntegerAttribute(dbf, r, i));
                        else
                            sqlite3_bind_double(s.get(), at, DBFReadDoubleAttribute(dbf, r, i));
                        break;
                    case 'L': {
                        const char* logical = DBFReadLogicalAttribute(dbf, r, i);
                        const char c = logical ? logical[0] : 'F';
                        sqlite3_bind_int(s.get(), at, c == 'T' || c == 't' || c == 'Y' || c == 'y' ? -1 : 0);
                        break;
                    }
                    case 'D':
                        if (DbfDate(DBFReadStringAttribute(dbf, r, i), date))
                            sqlite3_bind_double(s.get(), at, date);
                        else
                            sqlite3_bind_null(s.get(), at);
                        break;
                    default:
                        sqlite3_bind_text(s.get(), at, DBFReadStringAttribute(dbf, r, i), -1, SQLITE_TRANSIENT);
                        break;
                    }
                }
                s.Step();
            }
        } catch (...) {
            DBFClose(dbf);
            throw;
        }
        DBFClose(dbf);
        m_layouts[table] = std::move(layout);
    }

    DbfField FieldFor(const std::string& table, const DaoColumn& c)
    {
        auto known = m_layouts.find(table);
        if (known != m_layouts.end()) {
            auto f = known->second.find(c.name);
            if (f != known->second.end())
                return f->second;
        }
        switch (c.type) {
        case dbBoolean:
            return {'L', 1, 0};
        case dbByte:
            return {'N', 4, 0};
        case dbInteger:
            return {'N', 6, 0};
        case dbLong:
            return {'N', 11, 0};
        case dbCurrency:
            return {'N', 20, 4};
        case dbSingle:
        case dbDouble:
            return {'N', 20, 6};
        case dbDate:
            return {'D', 8, 0};
        case dbText:
            return {'C', static_cast<int>(std::min<long>(std::max<long>(c.size, 1), 254)), 0};
        default:
            return {'C', 254, 0};
        }
    }

    void SaveTable(SqliteEngine& db, const std::string& path, const std::string& table)
    {
        const std::string stem = EndsWithDbf(table) ? StemOf(table) : table;
        // shapelib replaces the extension it is given by ".dbf".
        const std::string temp = path + "/vx~" + stem + ".dbf";
        const std::string target = path + "/" + stem + ".dbf";
        DBFHandle dbf = DBFCreate(temp.c_str());
        if (!dbf)
            ThrowDao(kDaoDiskError, "Disk or network error. (Cannot write '" + target + "'.)");
        const std::vector<DaoColumn> columns = db.Columns(table);
        std::vector<DbfField> fields;
        bool ok = true;
        for (const DaoColumn& c : columns) {
            const DbfField f = FieldFor(table, c);
            ok = ok && DBFAddNativeFieldType(dbf, c.name.substr(0, 10).c_str(), f.type, f.width, f.decimals) >= 0;
            fields.push_back(f);
        }
        Statement rows(db.conn, "SELECT * FROM " + QuoteName(table) + " ORDER BY rowid");
        int r = 0;
        while (ok && rows.Step() == SQLITE_ROW) {
            for (std::size_t i = 0; i < columns.size() && ok; ++i) {
                const int field = static_cast<int>(i);
                sqlite3_stmt* s = rows.get();
                const int col = static_cast<int>(i);
                if (sqlite3_column_type(s, col) == SQLITE_NULL) {
                    ok = DBFWriteNULLAttribute(dbf, r, field);
                    continue;
                }
                const DbfField& f = fields[i];
                switch (f.type) {
                case 'L':
                    ok = DBFWriteLogicalAttribute(dbf, r, field, sqlite3_column_int64(s, col) ? 'T' : 'F');
                    break;
                case 'D': {
                    const COleDateTime t(sqlite3_column_double(s, col));
                    // Written as the bytes of the field: shapelib takes a
                    // date passed as text for a number.
                    CString digits = t.Format("%Y%m%d");
                    ok = DBFWriteAttributeDirectly(dbf, r, field, digits.GetBuffer(8));
                    break;
                }
                case 'N':
                case 'F': {
                    double value = sqlite3_column_double(s, col);
                    if (columns[i].type == dbCurrency)
                        value = static_cast<double>(sqlite3_column_int64(s, col)) / 10000.0;
                    ok = f.decimals == 0 && f.width <= 9
                             ? DBFWriteIntegerAttribute(dbf, r, field, static_cast<int>(value))
                             : DBFWriteDoubleAttribute(dbf, r, field, value);
                    break;
                }
                default: {
                    const char* text = reinterpret_cast<const char*>(sqlite3_column_text(s, col));
                    ok = DBFWriteStringAttribute(dbf, r, field, text ? text : "");
                    break;
                }
                }
            }
            ++r;
        }
        DBFClose(dbf);
        if (!ok || std::rename(temp.c_str(), target.c_str()) != 0) {
            std::remove(temp.c_str());
            ThrowDao(kDaoDiskError, "Disk or network error. (Cannot write '" + target + "'.)");
        }
        std::remove((path + "/vx~" + stem + ".cpg").c_str());
    }

    bool m_writable = false;
    std::set<std::string> m_dirty;
    std::set<std::string> m_created;
    std::map<std::string, std::map<std::string, DbfField>> m_layouts;
};

} // namespace

std::unique_ptr<IsamDriver> MakeDbaseDriver()
{
    return std::make_unique<DbaseDriver>();
}

} // namespace vx
