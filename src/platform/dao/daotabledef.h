// CDaoTableDef: the definition of one table: its fields and indexes.
//
//   CDaoTableDef def(&db);
//   def.Create("Parts");                          // a new table, not yet saved
//   def.CreateField("Nr", dbLong, 4);
//   def.CreateField("Name", dbText, 40);
//   def.Append();                                 // now it is in the file
//   def.Close();
//
//   def.Open("Parts");                            // an existing table
//   def.CreateField("Price", dbCurrency, 8);      // added to the file at once
//
// Field types and lengths are kept in the file so that GetFieldInfo reports
// them back as they were created (see README, Design, Database).
#pragma once

#include "platform/framework/coledatetime.h"
#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/dao/daoinfo.h"
#include "vxbase_export.h"

#include <memory>

class CDaoDatabase;
namespace vx {
struct DaoTableDefPrivate;
}

class VXBASE_EXPORT CDaoTableDef : public CObject {
public:
    explicit CDaoTableDef(CDaoDatabase* database);
    ~CDaoTableDef() override;
    CDaoTableDef(const CDaoTableDef&) = delete;
    CDaoTableDef& operator=(const CDaoTableDef&) = delete;

    // A new table `name`, kept in memory until Append. `attributes`,
    // `srcTable` and `connect` (attached tables) are not supported and must
    // be 0 or null.
    virtual void Create(const char* name, long attributes = 0, const char* srcTable = nullptr,
                        const char* connect = nullptr);
    // An existing table; the name is found without regard to case. Error
    // 3265 if there is none.
    virtual void Open(const char* name);
    // Saves a new table with its fields and indexes: 3010 if the name is
    // taken, 3264 without fields.
    virtual void Append();
    virtual void Close();
    BOOL IsOpen() const;

    CString GetName() const;
    // Renames the table (in the file, if it was appended).
    void SetName(const char* name);
    long GetAttributes() const;
    COleDateTime GetDateCreated();
    COleDateTime GetDateLastUpdated();
    CString GetConnect() const;
    CString GetSourceTableName() const;
    long GetRecordCount();
    BOOL CanUpdate() const;

    // Fields in the order of the table; an unknown one is error 3265.
    short GetFieldCount();
    void GetFieldInfo(int index, CDaoFieldInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void GetFieldInfo(const char* name, CDaoFieldInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    // Adds a field: `type` dbBoolean ... dbMemo, `size` the length of a text
    // (1 to 255), `attributes` dbAutoIncrField for a counter (dbLong). A name
    // the table has: 3191.
    void CreateField(const char* name, short type, long size, long attributes = 0);
    void CreateField(CDaoFieldInfo& info);
    // A field that is part of an index: 3280.
    void DeleteField(const char* name);
    void DeleteField(int index);

    // Indexes; names are per table, as in DAO.
    short GetIndexCount();
    void GetIndexInfo(int index, CDaoIndexInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void GetIndexInfo(const char* name, CDaoIndexInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    // A primary index is unique. A duplicate name: 3284; existing records
    // that break a unique index: 3022.
    void CreateIndex(CDaoIndexInfo& info);
    void DeleteIndex(const char* name);
    void DeleteIndex(int index);

    CDaoDatabase* m_pDatabase;

private:
    std::unique_ptr<vx::DaoTableDefPrivate> d;
};
