// CDaoQueryDef: a query, stored in the file under a name or temporary.
//
//   CDaoQueryDef q(&db);
//   q.Create("Cheap", "SELECT * FROM [Parts] WHERE [Price] < 100000");
//   q.Append();                  // stored; a select query is an SQL view
//   CDaoRecordset set(&db);
//   set.Open(&q);
//
// A query made with no name is temporary: it serves to open record sets
// and is never stored. SQL is SQLite's dialect; names may stand in brackets.
#pragma once

#include "platform/framework/coledatetime.h"
#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/dao/daoinfo.h"
#include "vxbase_export.h"

#include <memory>

class CDaoDatabase;
namespace vx {
struct DaoQueryDefPrivate;
}

class VXBASE_EXPORT CDaoQueryDef : public CObject {
public:
    explicit CDaoQueryDef(CDaoDatabase* database);
    ~CDaoQueryDef() override;
    CDaoQueryDef(const CDaoQueryDef&) = delete;
    CDaoQueryDef& operator=(const CDaoQueryDef&) = delete;

    // A new query; a null or empty `name` makes it temporary.
    virtual void Create(const char* name = nullptr, const char* sql = nullptr);
    // A stored query; 3265 if there is none.
    virtual void Open(const char* name = nullptr);
    // Stores a named query: 3012 if a table or query has the name.
    virtual void Append();
    virtual void Close();
    BOOL IsOpen() const;

    CString GetName() const;
    CString GetSQL() const;
    void SetSQL(const char* sql);
    // dbQSelect, dbQSetOperation (a union), or an action type (dbQUpdate...).
    short GetType() const;
    BOOL GetReturnsRecords() const;
    COleDateTime GetDateCreated();
    COleDateTime GetDateLastUpdated();

    // Runs an action query.
    void Execute(int options = dbFailOnError);
    long GetRecordsAffected() const;

    CDaoDatabase* m_pDatabase;

private:
    std::unique_ptr<vx::DaoQueryDefPrivate> d;
};
