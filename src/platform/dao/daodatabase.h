// CDaoDatabase: one database file, opened or created. In place of DAO's
// engine the file is an SQLite database; the connect texts "Excel 5.0" and
// "dBASE IV" open a workbook or a directory of .dbf tables instead (see
// README, Design, Database).
//
//   CDaoDatabase db;
//   db.Create("C:\\data\\parts.mdb");             // a new, empty file
//   db.Close();
//   db.Open("C:\\data\\parts.mdb", FALSE, TRUE);  // read-only
//   CDaoTableDefInfo info;
//   db.GetTableDefInfo("Parts", info);            // CDaoException 3265 if none
//
// Every failure is a CDaoException with DAO's error number (vx::DaoError):
// 3024 file not found, 3044 directory not found, 3343 not a database, 3051
// no permission, 3045 in use, 3265 no such item.
#pragma once

#include "platform/framework/cobject.h"
#include "platform/framework/cstring.h"
#include "platform/dao/daoinfo.h"
#include "platform/dao/daoworkspace.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <memory>

namespace vx {
class DaoDatabasePrivate;
}

class VXBASE_EXPORT CDaoDatabase : public CObject {
public:
    // Joins `workspace`, or the default workspace if null.
    explicit CDaoDatabase(CDaoWorkspace* workspace = nullptr);
    // Closes the database.
    ~CDaoDatabase() override;
    CDaoDatabase(const CDaoDatabase&) = delete;
    CDaoDatabase& operator=(const CDaoDatabase&) = delete;

    // Opens the file `name`. `exclusive` keeps other programs out while it is
    // open; `readOnly` opens without write access. `connect` "" is a
    // database file, "Excel 5.0" a workbook (`name` is the file), "dBASE IV"
    // a directory whose .dbf files are the tables (`name` is the directory).
    virtual void Open(const char* name, BOOL exclusive = FALSE, BOOL readOnly = FALSE, const char* connect = "");
    // Creates the file `name` and opens it. An existing file is an error
    // (3204). `locale` is kept with the file (GetLocale); `options` are the
    // dbVersion/dbEncrypt flags, kept but without effect.
    virtual void Create(const char* name, const char* locale = dbLangGeneral, int options = 0);
    // Closes; a workbook or dBASE directory is written back first. Closing a
    // closed database does nothing.
    virtual void Close();
    BOOL IsOpen() const;

    BOOL CanUpdate() const;
    BOOL CanTransact() const;
    // The path text given to Open or Create.
    CString GetName() const;
    CString GetConnect() const;
    // "4.0" for a database file, as a current DAO engine reports it.
    CString GetVersion() const;
    // The locale text the file was created with ("" if unknown).
    CString GetLocale() const;

    // Tables, in the order of their names (without regard to case); index
    // 0 .. GetTableDefCount() - 1. An unknown name or index: error 3265.
    short GetTableDefCount();
    void GetTableDefInfo(int index, CDaoTableDefInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void GetTableDefInfo(const char* name, CDaoTableDefInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void DeleteTableDef(const char* name);

    // Stored queries, in the order of their names.
    short GetQueryDefCount();
    void GetQueryDefInfo(int index, CDaoQueryDefInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void GetQueryDefInfo(const char* name, CDaoQueryDefInfo& info, DWORD options = AFX_DAO_PRIMARY_INFO);
    void DeleteQueryDef(const char* name);

    // Runs an action statement (UPDATE, INSERT, DELETE, CREATE...), in
    // SQLite's dialect; names may stand in brackets ([Name]) as in DAO's.
    // A SELECT is error 3065. Committed at once unless a transaction runs.
    void Execute(const char* sql, int options = dbFailOnError);
    // The rows changed by the last Execute.
    long GetRecordsAffected() const;

    CDaoWorkspace* m_pWorkspace = nullptr;

    // The engine's side of this object; not for callers of the library.
    vx::DaoDatabasePrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<vx::DaoDatabasePrivate> d;
};
