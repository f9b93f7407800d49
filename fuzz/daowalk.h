// Opens a file as a database read-only and reads all of it that the engine
// shows: tables with their fields and indexes, stored queries, and every
// value of the first rows of each table. A damaged file may fail with a
// CDaoException anywhere; anything else escaping is a finding.
#pragma once

#include "fuzzsupport.h"

namespace vxfuzz {

inline void ReadTable(CDaoDatabase& db, const CString& name)
{
    CDaoTableDef def(&db);
    def.Open(name);
    const short fields = def.GetFieldCount();
    for (short i = 0; i < fields; ++i) {
        CDaoFieldInfo info;
        def.GetFieldInfo(i, info, AFX_DAO_ALL_INFO);
    }
    const short indexes = def.GetIndexCount();
    for (short i = 0; i < indexes; ++i) {
        CDaoIndexInfo info;
        def.GetIndexInfo(i, info, AFX_DAO_ALL_INFO);
    }
    def.GetRecordCount();

    CDaoRecordset set(&db);
    set.Open(&def, dbOpenSnapshot, dbReadOnly);
    const short columns = set.GetFieldCount();
    for (int row = 0; row < 200 && !set.IsEOF(); ++row) {
        for (short i = 0; i < columns; ++i) {
            COleVariant value;
            set.GetFieldValue(i, value);
        }
        set.MoveNext();
    }
    set.Close();
    def.Close();
}

// Opens `name` with `connect` and walks it; returns whether it opened.
inline bool WalkDatabase(const std::string& name, const char* connect)
{
    CDaoDatabase db;
    try {
        db.Open(name.c_str(), FALSE, TRUE, connect);
    } catch (const CDaoException&) {
        return false;
    }
    try {
        const short tables = db.GetTableDefCount();
        for (short i = 0; i < tables; ++i) {
            CDaoTableDefInfo info;
            db.GetTableDefInfo(i, info, AFX_DAO_ALL_INFO);
            try {
                ReadTable(db, info.m_strName);
            } catch (const CDaoException&) {
            }
        }
        const short queries = db.GetQueryDefCount();
        for (short i = 0; i < queries; ++i) {
            CDaoQueryDefInfo info;
            db.GetQueryDefInfo(i, info, AFX_DAO_ALL_INFO);
        }
    } catch (const CDaoException&) {
    }
    db.Close();
    return true;
}

} // namespace vxfuzz
