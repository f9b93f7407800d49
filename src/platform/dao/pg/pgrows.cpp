// The server engine's records: cursors over results, and the prepared
// statements that write records by their keys.
//
// A result comes whole from the server (a record set on the server reads
// its rows when it opens); values arrive as text and become numbers by the
// type the server reports for their column.
#include "platform/dao/daostatements_p.h"
#include "platform/dao/pg/pgengine_p.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace vx {

namespace {

constexpr std::uint32_t kBool = 16, kBytea = 17, kInt8 = 20, kInt2 = 21, kInt4 = 23, kOid = 26, kFloat4 = 700,
                        kFloat8 = 701, kNumeric = 1700;

DaoValue::Kind KindOf(std::uint32_t oid)
{
    switch (oid) {
    case kInt2:
    case kInt4:
    case kInt8:
    case kOid:
    case kBool:
        return DaoValue::Int;
    case kFloat4:
    case kFloat8:
    case kNumeric:
        return DaoValue::Real;
    case kBytea:
        return DaoValue::Blob;
    default:
        return DaoValue::Text;
    }
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return 0;
}

// The rows of a result; with `first` 1 the key leads each row. The tables'
// hidden keys are no values of a row, also where "SELECT *" names them.
class PgCursor final : public Cursor {
public:
    PgCursor(PgResult result, int first) : m_result(std::move(result))
    {
        m_rows = PQntuples(m_result.get());
        const int n = PQnfields(m_result.get());
        for (int i = first; i < n; ++i) {
            if (std::strcmp(PQfname(m_result.get(), i), kKeyColumn) == 0)
                continue;
            const std::uint32_t oid = PQftype(m_result.get(), i);
            m_columns.push_back(i);
            m_kinds.push_back(KindOf(oid));
            m_bool.push_back(oid == kBool);
        }
        m_bytes.resize(m_kinds.size());
    }

    bool Next() override { return ++m_row < m_rows; }
    std::int64_t Key() const override { return std::strtoll(PQgetvalue(m_result.get(), m_row, 0), nullptr, 10); }
    ValueView Value(std::size_t i) const override
    {
        const int column = m_columns[i];
        ValueView view;
        if (PQgetisnull(m_result.get(), m_row, column))
            return view;
        const char* text = PQgetvalue(m_result.get(), m_row, column);
        const auto length = static_cast<std::size_t>(PQgetlength(m_result.get(), m_row, column));
        view.kind = m_kinds[i];
        switch (view.kind) {
        case DaoValue::Int:
            if (m_bool[i])
                view.i = *text == 't' ? -1 : 0; // a yes/no field's true, as files store it
            else
                std::from_chars(text, text + length, view.i);
            break;
        case DaoValue::Real:
            view.d = std::strtod(text, nullptr);
            break;
        case DaoValue::Blob: {
            // "\x" and two hex digits a byte.
            std::string& bytes = m_bytes[i];
            bytes.clear();
            if (length >= 2 && text[0] == '\\' && text[1] == 'x') {
                bytes.reserve((length - 2) / 2);
                for (std::size_t k = 2; k + 1 < length; k += 2)
                    bytes += static_cast<char>(HexDigit(text[k]) * 16 + HexDigit(text[k + 1]));
            } else {
                bytes.assign(text, length);
            }
            view.s = bytes;
            break;
        }
        default:
            view.s = std::string_view(text, length);
            break;
        }
        return view;
    }
    std::size_t Width() const override { return m_kinds.size(); }
    DaoColumn Describe(std::size_t i) const override
    {
        DaoColumn c;
        const int column = m_columns[i];
        c.name = PQfname(m_result.get(), column);
        const std::uint32_t oid = PQftype(m_result.get(), column);
        const char* type = "LONGTEXT";
        switch (oid) {
        case kBool:
            type = "BIT";
            break;
        case kInt2:
            type = "SHORT";
            break;
        case kInt4:
        case kInt8:
        case kOid:
            type = "LONG";
            break;
        case kFloat4:
            type = "SINGLE";
            break;
        case kFloat8:
        case kNumeric:
            type = "DOUBLE";
            break;
        case kBytea:
            type = "LONGBINARY";
            break;
        default:
            break;
        }
        ParseDeclaredType(type, false, c);
        c.declared.clear();
        return c;
    }

private:
    PgResult m_result;
    std::vector<int> m_columns; // the result's columns that are values
    int m_rows = 0;
    int m_row = -1;
    std::vector<DaoValue::Kind> m_kinds;
    std::vector<bool> m_bool;
    mutable std::vector<std::string> m_bytes;
};

// Whether `tail` (WHERE ..., ORDER BY ...) orders the rows itself.
bool Ordered(const std::string& tail)
{
    const std::string upper = AsciiUpperCopy(tail);
    bool quoted = false;
    char quote = 0;
    for (std::size_t i = 0; i < upper.size(); ++i) {
        const char c = upper[i];
        if (quoted) {
            if (c == quote)
                quoted = false;
            continue;
        }
        if (c == '\'' || c == '"' || c == '[') {
            quoted = true;
            quote = c == '[' ? ']' : c;
            continue;
        }
        if (upper.compare(i, 5, "ORDER") == 0 && (i == 0 || !std::isalnum(static_cast<unsigned char>(upper[i - 1]))))
            return true;
    }
    return false;
}

// The writes of a set for one choice of fields.
class PgWriter final : public RowWriter {
public:
    PgWriter(PgEngine& engine, std::string table, std::string sql, std::string assigned, std::size_t width,
             bool returning)
        : m_engine(engine), m_table(std::move(table)), m_sql(std::move(sql)), m_assigned(std::move(assigned)),
          m_width(width), m_returning(returning)
    {
    }

    std::int64_t Insert(const DaoValue* values) override
    {
        Bind(values);
        PgResult r = m_engine.RunPrepared(m_sql, m_params);
        std::int64_t key = 0;
        const char* text = PQgetvalue(r.get(), 0, 0);
        std::from_chars(text, text + std::strlen(text), key);
        if (m_returning) {
            m_returned.resize(m_width);
            PgCursor row(std::move(r), 1);
            row.Next();
            for (std::size_t i = 0; i < m_width; ++i)
                m_returned[i] = Owned(row.Value(i));
        }
        return key;
    }

    ValueView Returned(std::size_t i) const override { return ViewOf(m_returned[i]); }

    Outcome Update(std::int64_t key, const DaoValue* values, const DaoValue* originals) override
    {
        Bind(values);
        m_params.AddInt(key);
        for (std::size_t i = 0; i < m_width; ++i)
            m_params.Add(originals[i]);
        PgResult r = m_engine.RunPrepared(m_sql, m_params);
        const char* changed = PQcmdTuples(r.get());
        if (changed && std::atol(changed) > 0)
            return Done;
        PgParams p;
        p.AddInt(key);
        PgResult exists = m_engine.RunPrepared("SELECT 1 FROM " + QuoteName(m_table) + " WHERE " +
                                                   QuoteName(kKeyColumn) + " = $1",
                                               p);
        return PQntuples(exists.get()) ? Changed : Deleted;
    }

private:
    void Bind(const DaoValue* values)
    {
        m_params.Clear();
        for (std::size_t i = 0; i < m_width; ++i)
            if (m_assigned[i] == '1')
                m_params.Add(values[i]);
    }

    PgEngine& m_engine;
    std::string m_table;
    std::string m_sql;
    std::string m_assigned;
    std::size_t m_width;
    bool m_returning;
    PgParams m_params;
    std::vector<DaoValue> m_returned;
};

} // namespace

std::unique_ptr<Cursor> PgEngine::OpenRows(const std::string& table, const std::vector<DaoColumn>& columns,
                                           const std::string& tail)
{
    if (!Keyed(table))
        ThrowDao(kDaoInvalidOperation, "Operation is not supported for this type of object.");
    std::string sql = "SELECT " + QuoteName(kKeyColumn) + (columns.empty() ? "" : ", " + ColumnList(columns)) +
                      " FROM " + QuoteName(table) + Translate(tail);
    // Without an order of its own a set lists records as they were added,
    // as on files.
    if (!Ordered(tail))
        sql += " ORDER BY " + QuoteName(kKeyColumn);
    return std::make_unique<PgCursor>(RunStatement(sql), 1);
}

std::unique_ptr<Cursor> PgEngine::OpenQuery(const std::string& sql)
{
    return std::make_unique<PgCursor>(RunStatement(Translate(sql)), 0);
}

std::unique_ptr<Cursor> PgEngine::ReadRow(const std::string& table, const std::vector<DaoColumn>& columns,
                                          std::int64_t key)
{
    PgParams p;
    p.AddInt(key);
    return std::make_unique<PgCursor>(RunPrepared("SELECT " + QuoteName(kKeyColumn) + ", " + ColumnList(columns) +
                                                      " FROM " + QuoteName(table) + " WHERE " +
                                                      QuoteName(kKeyColumn) + " = $1",
                                                  p),
                                      1);
}

std::unique_ptr<RowWriter> PgEngine::PrepareInsert(const std::string& table, const std::vector<DaoColumn>& columns,
                                                   const std::string& assigned, bool returning)
{
    if (!Keyed(table))
        ThrowDao(kDaoInvalidOperation, "Operation is not supported for this type of object.");
    std::string sql = InsertStatement(table, columns, assigned, "$") + " RETURNING " + QuoteName(kKeyColumn);
    if (returning && !columns.empty())
        sql += ", " + ColumnList(columns);
    return std::make_unique<PgWriter>(*this, table, sql, assigned, columns.size(), returning);
}

std::unique_ptr<RowWriter> PgEngine::PrepareUpdate(const std::string& table, const std::vector<DaoColumn>& columns,
                                                   const std::string& assigned)
{
    // Written only if the record still holds what the set read, byte for
    // byte: texts compare as texts (not without regard to case), numbers as
    // the column's type.
    int k = 0;
    const std::string sets = AssignmentList(columns, assigned, "$", k);
    std::string sql = "UPDATE " + QuoteName(table) + " SET " + sets + " WHERE " + QuoteName(kKeyColumn) + " = $" +
                      std::to_string(++k);
    for (const auto& c : columns) {
        const std::string cast = CastName(c.native);
        const std::string n = "$" + std::to_string(++k);
        if (cast.empty())
            sql += " AND " + QuoteName(c.name) + "::text IS NOT DISTINCT FROM " + n + "::text";
        else
            sql += " AND " + QuoteName(c.name) + " IS NOT DISTINCT FROM " + n + "::" + cast;
    }
    return std::make_unique<PgWriter>(*this, table, sql, assigned, columns.size(), false);
}

void PgEngine::DeleteRow(const std::string& table, std::int64_t key)
{
    PgParams p;
    p.AddInt(key);
    RunPrepared("DELETE FROM " + QuoteName(table) + " WHERE " + QuoteName(kKeyColumn) + " = $1", p);
}

} // namespace vx
