// The "Excel 5.0" connect: a workbook whose worksheets are the tables.
//
// An existing workbook (.xls, BIFF 5 to 8) is read through freexl, in a
// child process (excelread_p.h), and is read-only: freexl can't write, and
// writing it in another format under its name would change what the user's
// programs see. Its first row names the fields (empty: F1, F2...); a column
// of numbers is a double, one of dates a date, any other text of 255
// characters or a memo if longer.
// A workbook that does not exist yet is made: its tables are written at
// closing through libxlsxwriter, one worksheet each with the field names
// in the first row (Office Open XML, which Excel opens under any name).
// A sheet is found with or without the "$" that DAO puts after its name.
#include "platform/dao/sqlite/excelread_p.h"
#include "platform/dao/sqlite/sqliteengine_p.h"

#include "platform/framework/codepage.h"
#include "platform/framework/coledatetime.h"

#include <xlsxwriter.h>

#include <cstdio>
#include <unordered_set>
#include <sys/stat.h>

namespace vx {

namespace {

bool FileExists(const std::string& path)
{
    struct stat st {};
    return stat(path.c_str(), &st) == 0;
}

// A date cell of freexl ("YYYY-MM-DD", "YYYY-MM-DD HH:MM:SS", "HH:MM:SS").
double CellDate(const char* text)
{
    int y = 1899, m = 12, d = 30, hh = 0, mm = 0, ss = 0;
    if (std::sscanf(text, "%d-%d-%d %d:%d:%d", &y, &m, &d, &hh, &mm, &ss) < 3)
        std::sscanf(text, "%d:%d:%d", &hh, &mm, &ss);
    return COleDateTime(y, m, d, hh, mm, ss).m_dt;
}

class ExcelDriver final : public IsamDriver {
public:
    void Load(SqliteEngine& db, const std::string& path, bool readOnly) override
    {
        if (!FileExists(path)) {
            if (!FileExists(DirectoryOf(path)))
                ThrowDao(kDaoInvalidPath, "'" + db.name + "' is not a valid path.");
            m_writable = !readOnly;
            return;
        }
        m_writable = false;
        std::vector<detail::WorkbookSheet> sheets;
        if (!detail::ReadWorkbook(path, sheets))
            ThrowDao(3274, "External table is not in the expected format.");
        for (const detail::WorkbookSheet& sheet : sheets)
            LoadSheet(db, sheet);
    }

    void Save(SqliteEngine& db, const std::string& path) override
    {
        const std::string temp = DirectoryOf(path) + "/.vx~" + std::string(NameOf(path));
        lxw_workbook* book = workbook_new(temp.c_str());
        if (!book)
            ThrowDao(kDaoDiskError, "Disk or network error. (Cannot write '" + db.name + "'.)");
        lxw_format* bold = workbook_add_format(book);
        format_set_bold(bold);
        lxw_format* date = workbook_add_format(book);
        format_set_num_format(date, "yyyy-mm-dd");
        lxw_format* money = workbook_add_format(book);
        format_set_num_format(money, "0.00");
        // Sheets in the order the tables were made.
        std::vector<std::string> tables;
        {
            Statement s(db.conn, "SELECT name FROM sqlite_master WHERE type='table' ORDER BY rowid");
            while (s.Step() == SQLITE_ROW)
                tables.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)));
        }
        bool ok = true;
        for (const std::string& table : tables) {
            lxw_worksheet* sheet = workbook_add_worksheet(book, ToUtf8(table).c_str());
            if (!sheet) {
                ok = false;
                break;
            }
            const std::vector<DaoColumn> columns = db.Columns(table);
            for (std::size_t c = 0; c < columns.size(); ++c)
                worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(c), ToUtf8(columns[c].name).c_str(), bold);
            Statement rows(db.conn, "SELECT * FROM " + QuoteName(table) + " ORDER BY rowid");
            lxw_row_t r = 1;
            while (rows.Step() == SQLITE_ROW) {
                sqlite3_stmt* s = rows.get();
                for (std::size_t c = 0; c < columns.size(); ++c) {
                    const int col = static_cast<int>(c);
                    const auto x = static_cast<lxw_col_t>(c);
                    if (sqlite3_column_type(s, col) == SQLITE_NULL)
                        continue;
                    switch (columns[c].type) {
                    case dbBoolean:
                        worksheet_write_boolean(sheet, r, x, sqlite3_column_int64(s, col) != 0, nullptr);
                        break;
                    case dbCurrency:
                        worksheet_write_number(sheet, r, x, static_cast<double>(sqlite3_column_int64(s, col)) / 10000.0,
                                               money);
                        break;
                    case dbDate:
                        worksheet_write_number(sheet, r, x, sqlite3_column_double(s, col), date);
                        break;
                    case dbByte:
                    case dbInteger:
                    case dbLong:
                    case dbSingle:
                    case dbDouble:
                        worksheet_write_number(sheet, r, x, sqlite3_column_double(s, col), nullptr);
                        break;
                    default: {
                        const char* text = reinterpret_cast<const char*>(sqlite3_column_text(s, col));
                        worksheet_write_string(sheet, r, x, ToUtf8(text ? text : "").c_str(), nullptr);
                        break;
                    }
                    }
                }
                ++r;
            }
        }
        const lxw_error result = workbook_close(book);
        if (!ok || result != LXW_NO_ERROR || std::rename(temp.c_str(), path.c_str()) != 0) {
            std::remove(temp.c_str());
            ThrowDao(kDaoDiskError, "Disk or network error. (Cannot write '" + db.name + "': " +
                                        lxw_strerror(result) + ")");
        }
    }

    bool CanUpdate() const override { return m_writable; }

    std::string AlternateName(const std::string& name) const override
    {
        if (!name.empty() && name.back() == '$')
            return name.substr(0, name.size() - 1);
        return std::string();
    }

private:
    void LoadSheet(SqliteEngine& db, const detail::WorkbookSheet& sheet)
    {
        const std::string table = FromUtf8(sheet.name);
        const unsigned short cols = sheet.cols;
        if (cols == 0)
            return; // an empty sheet is no table
        // The cells that hold something, by row: a sheet's dimensions come
        // from the file and may be far larger than what it holds.
        std::vector<DaoValue> values(sheet.cells.size());
        std::vector<int> kinds(cols, 0); // 1 numbers, 2 dates, 3 text; 0 nothing yet
        std::vector<std::size_t> longest(cols, 0);
        std::vector<const DaoValue*> header(cols, nullptr);
        for (std::size_t i = 0; i < sheet.cells.size(); ++i) {
            const detail::WorkbookCell& cell = sheet.cells[i];
            DaoValue& v = values[i];
            int kind = 0;
            switch (cell.type) {
            case detail::WorkbookCell::Number:
                v.kind = DaoValue::Real;
                v.d = cell.number;
                kind = 1;
                break;
            case detail::WorkbookCell::Date:
                v.kind = DaoValue::Real;
                v.d = CellDate(cell.text.c_str());
                v.s = FromUtf8(cell.text);
                kind = 2;
                break;
            case detail::WorkbookCell::Text:
                v.kind = DaoValue::Text;
                v.s = FromUtf8(cell.text);
                kind = 3;
                break;
            }
            if (cell.row == 0) {
                header[cell.col] = &v;
                continue;
            }
            longest[cell.col] = std::max(longest[cell.col], v.kind == DaoValue::Text ? v.s.size() : 24);
            kinds[cell.col] = kinds[cell.col] == 0 || kinds[cell.col] == kind ? kind : 3;
        }
        std::unordered_set<std::string> names; // folded as the engine compares them
        std::string create = "CREATE TABLE " + QuoteName(table) + " (";
        for (unsigned short c = 0; c < cols; ++c) {
            std::string name = header[c] ? (header[c]->kind == DaoValue::Text ? header[c]->s : std::to_string(c + 1))
                                         : "F" + std::to_string(c + 1);
            if (names.count(AsciiLowerCopy(name)))
                name = "F" + std::to_string(c + 1);
            names.insert(AsciiLowerCopy(name));
            const char* declared = kinds[c] == 1   ? "DOUBLE"
                                   : kinds[c] == 2 ? "DATETIME"
                                   : longest[c] > 255 ? "LONGTEXT COLLATE NOCASE"
                                                      : "TEXT(255) COLLATE NOCASE";
            create += (c ? ", " : "") + QuoteName(name) + " " + declared;
        }
        db.Exec(create + ")");
        std::string insert = "INSERT INTO " + QuoteName(table) + " VALUES (";
        for (unsigned short c = 0; c < cols; ++c)
            insert += c ? ", ?" : "?";
        Statement s(db.conn, insert + ")");
        // One record per row below the first that holds something; the
        // columns it leaves out are null.
        for (std::size_t i = 0; i < sheet.cells.size();) {
            const std::uint32_t row = sheet.cells[i].row;
            std::size_t end = i;
            while (end < sheet.cells.size() && sheet.cells[end].row == row)
                ++end;
            if (row > 0) {
                sqlite3_reset(s.get());
                sqlite3_clear_bindings(s.get());
                for (std::size_t k = i; k < end; ++k) {
                    const unsigned short c = sheet.cells[k].col;
                    // Bound without a copy: the value lives until the row is stored.
                    DaoValue& v = values[k];
                    if (kinds[c] == 3 && v.kind == DaoValue::Real) {
                        // A number or date in a text column: its text.
                        if (v.s.empty()) {
                            char text[32];
                            std::snprintf(text, sizeof text, "%.15g", v.d);
                            v.s = text;
                        }
                        v.kind = DaoValue::Text;
                    }
                    BindValue(s.get(), c + 1, v);
                }
                s.Step();
            }
            i = end;
        }
    }

    bool m_writable = false;
};

} // namespace

std::unique_ptr<IsamDriver> MakeExcelDriver()
{
    return std::make_unique<ExcelDriver>();
}

} // namespace vx
