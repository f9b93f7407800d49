// What the engines share: errors, names, Jet's type names, and the
// conversion of values between variants and what an engine stores.
#include "platform/dao/daovalue_p.h"

#include "platform/framework/cexception.h"
#include "platform/framework/coledatetime.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>

namespace vx {

void ThrowDao(long code, const std::string& description)
{
    throw CDaoException(code, CString(description));
}

// --- names ---------------------------------------------------------------

std::string QuoteName(const std::string& name)
{
    std::string out = "\"";
    for (char c : name) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
    return out;
}

std::string BracketName(const std::string& name)
{
    // A name made by another program may hold "]", which brackets can't.
    return name.find(']') == std::string::npos ? "[" + name + "]" : QuoteName(name);
}

void CheckName(const std::string& name)
{
    // Names are always quoted in the statements the engines build, so any
    // printable text is safe; control characters would only hide a name.
    bool valid = !name.empty();
    for (const char c : name)
        if (static_cast<unsigned char>(c) < 0x20)
            valid = false;
    if (!valid)
        ThrowDao(kDaoInvalidName, "'" + name + "' is not a valid name. Make sure that it does not include invalid "
                                               "characters or punctuation and that it is not too long.");
}

std::string TrimSql(const std::string& sql)
{
    std::size_t end = sql.size();
    while (end > 0 && (std::isspace(static_cast<unsigned char>(sql[end - 1])) || sql[end - 1] == ';'))
        --end;
    std::size_t start = 0;
    while (start < end && std::isspace(static_cast<unsigned char>(sql[start])))
        ++start;
    return sql.substr(start, end - start);
}

bool EqualNoCase(const std::string& a, const std::string& b)
{
    return AsciiEqualNoCase(a, b);
}

namespace {

std::string FirstWord(const std::string& sql)
{
    std::size_t i = 0;
    while (i < sql.size() && (std::isspace(static_cast<unsigned char>(sql[i])) || sql[i] == '('))
        ++i;
    std::size_t j = i;
    while (j < sql.size() && std::isalpha(static_cast<unsigned char>(sql[j])))
        ++j;
    return AsciiUpperCopy(sql.substr(i, j - i));
}

} // namespace

short QueryTypeOf(const std::string& sql)
{
    const std::string word = FirstWord(sql);
    if (word == "SELECT" || word == "WITH" || word == "VALUES") {
        const std::string upper = AsciiUpperCopy(sql);
        if (upper.find(" INTO ") != std::string::npos && word == "SELECT")
            return dbQMakeTable;
        if (upper.find(" UNION ") != std::string::npos)
            return dbQSetOperation;
        return dbQSelect;
    }
    if (word == "UPDATE")
        return dbQUpdate;
    if (word == "DELETE")
        return dbQDelete;
    if (word == "INSERT" || word == "REPLACE")
        return dbQAppend;
    return dbQDDL;
}

double NowAsDate()
{
    // To the millisecond, so that tables made one after another keep their
    // order by date.
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto millis =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm tm{};
    localtime_r(&seconds, &tm);
    const COleDateTime day(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, 0, 0, 0);
    return day.m_dt + (tm.tm_hour * 3600.0 + tm.tm_min * 60.0 + tm.tm_sec + millis / 1000.0) / 86400.0;
}

// --- the type mapping ----------------------------------------------------
//
// A field's DAO type is written as the column's declared type, with the
// names of Jet's own SQL (TEXT(40), LONG, CURRENCY...), so that it travels
// with the table through every SQLite tool and comes back unchanged. Text
// and memo columns compare without regard to case, as Jet's did.

std::string JetTypeName(short type, long size)
{
    switch (type) {
    case dbBoolean:
        return "BIT";
    case dbByte:
        return "BYTE";
    case dbInteger:
        return "SHORT";
    case dbLong:
        return "LONG";
    case dbCurrency:
        return "CURRENCY";
    case dbSingle:
        return "SINGLE";
    case dbDouble:
        return "DOUBLE";
    case dbDate:
        return "DATETIME";
    case dbBinary:
        return "BINARY(" + std::to_string(size > 0 && size <= 255 ? size : 255) + ")";
    case dbText:
        return "TEXT(" + std::to_string(size > 0 && size <= 255 ? size : 255) + ")";
    case dbLongBinary:
        return "LONGBINARY";
    case dbMemo:
        return "LONGTEXT";
    default:
        ThrowDao(kDaoInvalidFieldType, "Invalid field data type.");
    }
}

void ParseDeclaredType(const std::string& declared, bool integerPrimaryKey, DaoColumn& column)
{
    column.declared = declared;
    std::string upper = AsciiUpperCopy(declared);
    long length = 0;
    if (const auto open = upper.find('('); open != std::string::npos) {
        length = std::atol(upper.c_str() + open + 1);
        upper = upper.substr(0, open);
    }
    while (!upper.empty() && upper.back() == ' ')
        upper.pop_back();
    auto is = [&](std::initializer_list<const char*> names) {
        return std::any_of(names.begin(), names.end(), [&](const char* n) { return upper == n; });
    };
    column.autoIncrement = false;
    if (integerPrimaryKey && upper == "INTEGER") {
        column.type = dbLong;
        column.size = 4;
        column.autoIncrement = true;
        column.attributes = dbFixedField | dbAutoIncrField;
        return;
    }
    if (is({"BIT", "BOOLEAN", "BOOL", "YESNO", "LOGICAL", "LOGICAL1"})) {
        column.type = dbBoolean;
        column.size = 1;
    } else if (is({"BYTE", "TINYINT", "INTEGER1"})) {
        column.type = dbByte;
        column.size = 1;
    } else if (is({"SHORT", "SMALLINT", "INTEGER2"})) {
        column.type = dbInteger;
        column.size = 2;
    } else if (is({"LONG", "INT", "INTEGER", "INTEGER4", "COUNTER", "AUTOINCREMENT", "BIGINT", "MEDIUMINT"})) {
        column.type = dbLong;
        column.size = 4;
    } else if (is({"CURRENCY", "MONEY"})) {
        column.type = dbCurrency;
        column.size = 8;
    } else if (is({"SINGLE", "FLOAT4", "IEEESINGLE"})) {
        column.type = dbSingle;
        column.size = 4;
    } else if (is({"DOUBLE", "DOUBLE PRECISION", "FLOAT", "FLOAT8", "IEEEDOUBLE", "NUMBER", "REAL", "NUMERIC",
                   "DECIMAL"})) {
        column.type = dbDouble;
        column.size = 8;
    } else if (is({"DATETIME", "DATE", "TIME", "TIMESTAMP"})) {
        column.type = dbDate;
        column.size = 8;
    } else if (is({"BINARY", "VARBINARY"})) {
        column.type = dbBinary;
        column.size = length > 0 ? length : 255;
    } else if (is({"LONGBINARY", "BLOB", "IMAGE", "OLEOBJECT", "GENERAL"})) {
        column.type = dbLongBinary;
        column.size = 0;
    } else if ((is({"TEXT", "CHAR", "VARCHAR", "NVARCHAR", "NCHAR", "CHARACTER", "ALPHANUMERIC", "STRING"}) &&
                length > 0) ||
               is({"VARCHAR", "ALPHANUMERIC", "STRING"})) {
        column.type = dbText;
        column.size = length > 0 ? length : 255;
    } else {
        // TEXT without a length, MEMO, CLOB, no type at all: unbounded text.
        column.type = dbMemo;
        column.size = 0;
    }
    column.attributes = column.type == dbText || column.type == dbMemo || column.type == dbBinary ||
                                column.type == dbLongBinary
                            ? dbVariableField | dbUpdatableField
                            : dbFixedField | dbUpdatableField;
}

void CheckFieldInfo(const CDaoFieldInfo& info)
{
    CheckName(info.m_strName.StdString());
    if ((info.m_lAttributes & dbAutoIncrField) && info.m_nType != dbLong)
        ThrowDao(kDaoInvalidFieldType, "Invalid field data type.");
    if (info.m_nType == dbText && (info.m_lSize < 0 || info.m_lSize > 255))
        ThrowDao(kDaoInvalidArgument, "Invalid argument.");
    JetTypeName(info.m_nType, info.m_lSize); // 3259 for a type DAO doesn't know
}

void FillFieldInfo(const DaoColumn& column, int ordinal, CDaoFieldInfo& info)
{
    info = CDaoFieldInfo();
    info.m_strName = CString(column.name);
    info.m_nType = column.type;
    info.m_lSize = column.size;
    info.m_lAttributes = column.attributes;
    info.m_nOrdinalPosition = static_cast<short>(ordinal);
    info.m_bRequired = column.required;
    info.m_bAllowZeroLength = column.type == dbText || column.type == dbMemo;
    info.m_strDefaultValue = CString(column.defaultValue);
}

// --- values --------------------------------------------------------------

namespace {

[[noreturn]] void ConversionError()
{
    ThrowDao(kDaoConversionError, "Data type conversion error.");
}

[[noreturn]] void Overflow()
{
    ThrowDao(kDaoNumericOverflow, "Numeric field overflow.");
}

// A number written as text: digits with "." or "," as the decimal mark.
bool ParseNumber(const std::string& text, double& out)
{
    std::string t = TrimSql(text);
    if (t.empty())
        return false;
    if (t.find('.') == std::string::npos)
        std::replace(t.begin(), t.end(), ',', '.');
    char* end = nullptr;
    out = std::strtod(t.c_str(), &end);
    return end && *end == 0;
}

} // namespace

bool ParseDate(const std::string& text, double& out)
{
    int y = 0, m = 0, d = 0, hh = 0, mm = 0, ss = 0;
    const char* s = text.c_str();
    int n = 0;
    if (std::sscanf(s, "%d-%d-%d%n", &y, &m, &d, &n) == 3 ||
        std::sscanf(s, "%d.%d.%d%n", &d, &m, &y, &n) == 3) {
        const char* rest = s + n;
        while (*rest == ' ' || *rest == 'T')
            ++rest;
        if (*rest && std::sscanf(rest, "%d:%d:%d", &hh, &mm, &ss) < 2)
            return false;
        COleDateTime t(y, m, d, hh, mm, ss);
        if (t.GetStatus() != COleDateTime::valid)
            return false;
        out = t.m_dt;
        return true;
    }
    return ParseNumber(text, out);
}

namespace {

// The value of a numeric or text variant as a double; the bool is true if
// it is a whole number held in `whole`.
double NumberOf(const COleVariant& in, std::int64_t& whole, bool& isWhole)
{
    isWhole = true;
    switch (in.vt) {
    case VT_UI1:
        return static_cast<double>(whole = in.bVal);
    case VT_I2:
        return static_cast<double>(whole = in.iVal);
    case VT_BOOL:
        return static_cast<double>(whole = in.boolVal ? -1 : 0);
    case VT_I4:
    case VT_ERROR:
        return static_cast<double>(whole = in.lVal);
    case VT_I8:
        return static_cast<double>(whole = in.llVal);
    case VT_R4:
        isWhole = false;
        return in.fltVal;
    case VT_R8:
    case VT_DATE:
        isWhole = false;
        return in.dblVal;
    case VT_CY:
        isWhole = false;
        return static_cast<double>(in.cyVal.int64) / 10000.0;
    case VT_BSTR: {
        double d = 0;
        const std::string text(in.bstrVal, in.TextLength());
        const std::string upper = AsciiUpperCopy(TrimSql(text));
        if (upper == "TRUE" || upper == "YES" || upper == "ON")
            return static_cast<double>(whole = -1);
        if (upper == "FALSE" || upper == "NO" || upper == "OFF")
            return static_cast<double>(whole = 0);
        if (!ParseNumber(text, d))
            ConversionError();
        isWhole = false;
        return d;
    }
    default:
        ConversionError();
    }
}

std::int64_t WholeInRange(const COleVariant& in, std::int64_t low, std::int64_t high)
{
    std::int64_t whole = 0;
    bool isWhole = false;
    const double d = NumberOf(in, whole, isWhole);
    if (!isWhole) {
        // Round half to even, as the variant conversions do.
        const double r = std::nearbyint(d);
        if (!(r >= static_cast<double>(low) && r <= static_cast<double>(high)))
            Overflow();
        return static_cast<std::int64_t>(r);
    }
    if (whole < low || whole > high)
        Overflow();
    return whole;
}

std::string FormatDouble(double d)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", d);
    return buffer;
}

std::string TextOf(const COleVariant& in)
{
    switch (in.vt) {
    case VT_BSTR:
        return std::string(in.bstrVal, in.TextLength());
    case VT_UI1:
        return std::to_string(in.bVal);
    case VT_I2:
        return std::to_string(in.iVal);
    case VT_BOOL:
        return in.boolVal ? "True" : "False";
    case VT_I4:
    case VT_ERROR:
        return std::to_string(in.lVal);
    case VT_I8:
        return std::to_string(in.llVal);
    case VT_R4:
        return FormatDouble(in.fltVal);
    case VT_R8:
        return FormatDouble(in.dblVal);
    case VT_CY: {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.4f", static_cast<double>(in.cyVal.int64) / 10000.0);
        return buffer;
    }
    case VT_DATE: {
        const COleDateTime t(in.date);
        const char* format = t.GetHour() || t.GetMinute() || t.GetSecond() ? "%Y-%m-%d %H:%M:%S" : "%Y-%m-%d";
        return t.Format(format).StdString();
    }
    default:
        ConversionError();
    }
}

} // namespace

void VariantToValue(const COleVariant& in, const DaoColumn& column, DaoValue& out)
{
    out.s.clear();
    if (in.vt == VT_EMPTY || in.vt == VT_NULL) {
        out.kind = DaoValue::Null;
        return;
    }
    if (column.autoIncrement)
        ThrowDao(kDaoFieldNotUpdatable, "Field '" + column.name + "' can't be updated.");
    switch (column.type) {
    case dbBoolean: {
        std::int64_t whole = 0;
        bool isWhole = false;
        const double d = NumberOf(in, whole, isWhole);
        out.kind = DaoValue::Int;
        out.i = (isWhole ? whole != 0 : d != 0.0) ? -1 : 0;
        return;
    }
    case dbByte:
        out.kind = DaoValue::Int;
        out.i = WholeInRange(in, 0, 255);
        return;
    case dbInteger:
        out.kind = DaoValue::Int;
        out.i = WholeInRange(in, -32768, 32767);
        return;
    case dbLong:
        out.kind = DaoValue::Int;
        out.i = WholeInRange(in, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
        return;
    case dbCurrency: {
        out.kind = DaoValue::Int;
        if (in.vt == VT_CY) {
            out.i = in.cyVal.int64;
            return;
        }
        std::int64_t whole = 0;
        bool isWhole = false;
        const double d = NumberOf(in, whole, isWhole);
        const double scaled = isWhole ? static_cast<double>(whole) * 10000.0 : std::nearbyint(d * 10000.0);
        if (!(std::fabs(scaled) < 9.2e18))
            Overflow();
        out.i = isWhole ? whole * 10000 : static_cast<std::int64_t>(scaled);
        return;
    }
    case dbSingle:
    case dbDouble: {
        std::int64_t whole = 0;
        bool isWhole = false;
        double d = NumberOf(in, whole, isWhole);
        if (column.type == dbSingle) {
            if (std::isfinite(d) && std::fabs(d) > std::numeric_limits<float>::max())
                Overflow();
            d = static_cast<float>(d);
        }
        out.kind = DaoValue::Real;
        out.d = d;
        return;
    }
    case dbDate: {
        double d = 0;
        if (in.vt == VT_BSTR) {
            if (!ParseDate(std::string(in.bstrVal, in.TextLength()), d))
                ConversionError();
        } else {
            std::int64_t whole = 0;
            bool isWhole = false;
            d = NumberOf(in, whole, isWhole);
        }
        out.kind = DaoValue::Real;
        out.d = d;
        return;
    }
    case dbBinary:
    case dbLongBinary:
        out.kind = DaoValue::Blob;
        break;
    default:
        out.kind = DaoValue::Text;
        break;
    }
    // Texts are copied into the buffer the value already has.
    if (in.vt == VT_BSTR)
        out.s.assign(in.bstrVal, in.TextLength());
    else
        out.s = TextOf(in);
    CheckFits(out, column);
}

void CheckFits(const DaoValue& value, const DaoColumn& column)
{
    if ((column.type == dbText || column.type == dbBinary) && column.size > 0 &&
        value.s.size() > static_cast<std::size_t>(column.size))
        ThrowDao(kDaoFieldTooSmall, "The field is too small to accept the amount of data you attempted to add. "
                                    "Try inserting or pasting less data.");
}

namespace {

double AsDouble(const ValueView& v)
{
    switch (v.kind) {
    case DaoValue::Int:
        return static_cast<double>(v.i);
    case DaoValue::Real:
        return v.d;
    default: {
        double d = 0;
        return ParseNumber(std::string(v.s), d) ? d : 0.0;
    }
    }
}

std::int64_t AsInt(const ValueView& v)
{
    switch (v.kind) {
    case DaoValue::Int:
        return v.i;
    case DaoValue::Real:
        return static_cast<std::int64_t>(std::nearbyint(v.d));
    default:
        return static_cast<std::int64_t>(std::nearbyint(AsDouble(v)));
    }
}

} // namespace

void ValueToVariant(const ValueView& value, const DaoColumn& column, COleVariant& out)
{
    // Fields are set in place, so that a variant read over and over keeps
    // its text buffer.
    out.Clear();
    if (value.kind == DaoValue::Null) {
        out.vt = VT_NULL;
        return;
    }
    switch (column.type) {
    case dbBoolean:
        out.vt = VT_BOOL;
        out.boolVal = AsInt(value) != 0 ? VARIANT_TRUE : VARIANT_FALSE;
        return;
    case dbByte:
        out.vt = VT_UI1;
        out.bVal = static_cast<BYTE>(AsInt(value));
        return;
    case dbInteger:
        out.vt = VT_I2;
        out.iVal = static_cast<short>(AsInt(value));
        return;
    case dbLong:
        out.vt = VT_I4;
        out.lVal = static_cast<LONG>(AsInt(value));
        return;
    case dbCurrency:
        out.vt = VT_CY;
        out.cyVal.int64 = value.kind == DaoValue::Real
                              ? static_cast<std::int64_t>(std::nearbyint(value.d * 10000.0))
                              : AsInt(value);
        return;
    case dbSingle:
        out.vt = VT_R4;
        out.fltVal = static_cast<float>(AsDouble(value));
        return;
    case dbDouble:
        out.vt = VT_R8;
        out.dblVal = AsDouble(value);
        return;
    case dbDate: {
        double d = 0;
        out.vt = VT_DATE;
        out.date = value.kind == DaoValue::Text && ParseDate(std::string(value.s), d) ? d : AsDouble(value);
        return;
    }
    default:
        if (value.kind == DaoValue::Text || value.kind == DaoValue::Blob) {
            out.SetString(value.s.data(), value.s.size());
        } else {
            const std::string text = value.kind == DaoValue::Int ? std::to_string(value.i) : FormatDouble(value.d);
            out.SetString(text.data(), text.size());
        }
        return;
    }
}

} // namespace vx
