// Internal; do not include directly.
//
// What every engine of the DAO layer shares: DAO's errors, the fields of a
// table as DAO sees them (type, size, required, default), Jet's type names,
// stored values and their conversion to and from variants, and the rules
// for names.
#pragma once

#include "platform/dao/daoexception.h"
#include "platform/dao/daoinfo.h"
#include "platform/framework/colevariant.h"
#include "platform/framework/cstring.h"
#include "platform/framework/util_p.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vx {

// Raises CDaoException `code` with `description`.
[[noreturn]] void ThrowDao(long code, const std::string& description);

// A field of a table as the engine reports it.
struct DaoColumn {
    std::string name;
    std::string declared; // the declared type as stored (Jet's name), "" if none
    short type = dbMemo;
    long size = 0;
    long attributes = 0;
    bool required = false;
    bool autoIncrement = false;
    std::string defaultValue;
    // The engine's own type where it needs one to store a value (0: none).
    std::uint32_t native = 0;
};

// Jet's SQL name of DAO type `type` of `size`: "TEXT(40)", "LONG"...
// Unknown types raise 3259.
std::string JetTypeName(short type, long size);
// The DAO type of a declared column type (Jet's names and the usual SQL
// ones). `integerPrimaryKey`: SQLite's counter form.
void ParseDeclaredType(const std::string& declared, bool integerPrimaryKey, DaoColumn& column);
void FillFieldInfo(const DaoColumn& column, int ordinal, CDaoFieldInfo& info);
// Checks a field definition (name, type, text length, counter on a long).
void CheckFieldInfo(const CDaoFieldInfo& info);

// Raises 3125 unless `name` is a name DAO accepts for a table, field, index
// or query: 1 to 64 characters, no control characters, no leading blank,
// none of . ! ` [ ]. Quotes and semicolons are allowed.
void CheckName(const std::string& name);

// "name" with quotes doubled: a safe SQL identifier for both engines.
std::string QuoteName(const std::string& name);
// [name]: the form of the statements callers write.
std::string BracketName(const std::string& name);
// SQL text with the trailing blanks and semicolons taken off.
std::string TrimSql(const std::string& sql);
// Names compare folding ASCII letters only, as SQLite's NOCASE does.
bool EqualNoCase(const std::string& a, const std::string& b);
// The type of a statement by its first word (dbQSelect, dbQUpdate...).
short QueryTypeOf(const std::string& sql);
// The current time as an OLE date.
double NowAsDate();
// Dates as text: "2024-03-01", "2024-03-01 12:30:00", "1.3.2024 12:30".
bool ParseDate(const std::string& text, double& out);

// Catalogue object types.
constexpr int kObjectTable = 1;
constexpr int kObjectQuery = 5;
constexpr int kObjectActionQuery = 6;

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

} // namespace vx
