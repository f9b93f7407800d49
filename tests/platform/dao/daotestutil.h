// A table with a field of every type, for the DAO tests of both engines.
#pragma once

#include "database/dbtestutil.h"

#include "platform/dao/daodatabase.h"
#include "platform/dao/daotabledef.h"

#include <string>

namespace daotest {

struct FieldSpec {
    const char* name;
    short type;
    long size;
    long attributes;
    long reportedSize;
};

inline const FieldSpec kAllTypes[] = {
    {"Flag", dbBoolean, 1, 0, 1},     {"Small", dbByte, 1, 0, 1},    {"Short", dbInteger, 2, 0, 2},
    {"Count", dbLong, 4, 0, 4},       {"Price", dbCurrency, 8, 0, 8}, {"Ratio", dbSingle, 4, 0, 4},
    {"Exact", dbDouble, 8, 0, 8},     {"When", dbDate, 8, 0, 8},      {"Name", dbText, 40, 0, 40},
    {"Note", dbMemo, 0, 0, 0},        {"Bytes", dbLongBinary, 0, 0, 0}, {"Id", dbLong, 4, dbAutoIncrField, 4},
};

// Creates database `name` (a file or a connect text) with table "All" of
// the fields of kAllTypes.
inline void MakeAllTypes(const std::string& name)
{
    CDaoDatabase db;
    db.Create(name.c_str());
    CDaoTableDef def(&db);
    def.Create("All");
    for (const auto& f : kAllTypes)
        def.CreateField(f.name, f.type, f.size, f.attributes);
    def.Append();
}

} // namespace daotest
