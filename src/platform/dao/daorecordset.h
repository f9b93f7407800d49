// CDaoRecordset: the records of a table or query, with a current record.
//
//   CDaoRecordset set(&db);
//   set.Open(dbOpenDynaset, "SELECT * FROM [Parts] ORDER BY [Nr] ASC");
//   while (!set.IsEOF()) {
//       COleVariant v;
//       set.GetFieldValue("Name", v);      // VT_BSTR, or VT_NULL
//       set.MoveNext();
//   }
//   set.AddNew();
//   set.SetFieldValue("Nr", COleVariant(7L));
//   set.Update();                          // committed now
//
// A dynaset on "SELECT * FROM [table] ..." (or a table-type set) can be
// edited; a set on a join, a view or an aggregate is read-only (3027). Its
// members are fixed at opening; records added through the set join it at
// the end, and a record changed through any set of the same database shows
// its new values when it is read again. Values come back with the variant
// type of the field: VT_BOOL (true is -1), VT_UI1, VT_I2, VT_I4, VT_CY,
// VT_R4, VT_R8, VT_DATE, VT_BSTR (text, memo and binary bytes); VT_NULL
// for a null.
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/colevariant.h"
#include "platform/framework/cstring.h"
#include "platform/dao/daoinfo.h"
#include "vxbase_export.h"

#include <memory>

class CDaoDatabase;
class CDaoQueryDef;
class CDaoTableDef;
namespace vx {
struct DaoRecordsetPrivate;
}

class VXBASE_EXPORT CDaoRecordset : public CObject {
public:
    explicit CDaoRecordset(CDaoDatabase* database = nullptr);
    ~CDaoRecordset() override;
    CDaoRecordset(const CDaoRecordset&) = delete;
    CDaoRecordset& operator=(const CDaoRecordset&) = delete;

    // Opens on a statement (`type` dbOpenDynaset, dbOpenSnapshot or
    // dbOpenTable; `options` dbReadOnly, dbAppendOnly). Errors: 3078 for a
    // table or query that does not exist, 3061 for an unknown field, 3075
    // for other faults of the statement. An open set is closed first.
    virtual void Open(int type = dbOpenDynaset, const char* sql = nullptr, int options = 0);
    virtual void Open(CDaoQueryDef* queryDef, int type = dbOpenDynaset, int options = 0);
    virtual void Open(CDaoTableDef* tableDef, int type = dbOpenTable, int options = 0);
    virtual void Close();
    BOOL IsOpen() const;
    // Runs the statement again; the position goes to the first record.
    void Requery();

    // Both true for an empty set. Moving beyond either end sets the flag;
    // moving on from there, or MoveFirst/MoveLast on an empty set, is 3021.
    BOOL IsBOF() const;
    BOOL IsEOF() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrev();
    void Move(long rows);
    // 0-based; -1 without a current record.
    long GetAbsolutePosition() const;
    // 0 .. GetRecordCount() - 1, else 3001.
    void SetAbsolutePosition(long position);
    long GetRecordCount() const;
    // The bookmark of the current record, of the last one added or changed,
    // and a move back to one.
    COleVariant GetBookmark() const;
    COleVariant GetLastModifiedBookmark() const;
    void SetBookmark(const COleVariant& bookmark);

    // AddNew starts a new record, Edit changes the current one; Update
    // writes and commits it (3020 without AddNew or Edit). After Update of a
    // new record the current record is the one before AddNew.
    void AddNew();
    void Edit();
    void Update();
    void CancelUpdate();
    // Deletes the current record; until the next move there is none (3167).
    void Delete();
    short GetEditMode() const;
    BOOL CanUpdate() const;
    BOOL CanAppend() const;

    // A field by name (without regard to case) or number; 3265 if unknown,
    // 3021 without a current record.
    void GetFieldValue(const char* name, COleVariant& value);
    void GetFieldValue(int index, COleVariant& value);
    COleVariant GetFieldValue(const char* name);
    COleVariant GetFieldValue(int index);
    // Converts `value` to the field's type: 3421 if it can't be, 3349 if a
    // number is out of range, 3163 for a text longer than the field, 3164
    // for a counter.
    void SetFieldValue(const char* name, const COleVariant& value);
    void SetFieldValue(int index, const COleVariant& value);
    void SetFieldValue(const char* name, const char* value);
    void SetFieldValue(int index, const char* value);
    void SetFieldValueNull(const char* name);
    void SetFieldValueNull(int index);

    short GetFieldCount() const;
    void GetFieldInfo(int index, CDaoFieldInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void GetFieldInfo(const char* name, CDaoFieldInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);

    // The table name for a table or simple statement, else the statement.
    CString GetName() const;
    CString GetSQL() const;
    short GetType() const;

    CDaoDatabase* m_pDatabase;

private:
    std::unique_ptr<vx::DaoRecordsetPrivate> d;
};
