#include "database/daohelpers.h"

#include "base/libraryframe.h"
#include "base/vxmessagebox.h"
#include "platform/dao/daoconnect.h"
#include "platform/dao/daoexception.h"
#include "platform/files/drivetype.h"
#include "platform/files/fileapi.h"
#include "platform/files/hostpath.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

int showerrorDatabase = 1;

namespace {

void Show(const CString& text)
{
    VxAfxMessageBox(text, MB_OK, 0);
}

CString Description(const CDaoException& e)
{
    return e.m_pErrorInfo ? e.m_pErrorInfo->m_strDescription : CString();
}

// The file name of a path text: what follows the last separator.
CString FileNameOf(const CString& path)
{
    const int cut = std::max({path.ReverseFind('\\'), path.ReverseFind('/'), path.ReverseFind(':')});
    return path.Mid(cut + 1);
}

// The root to ask for the kind of medium: "X:\" for a path with a drive,
// else the directory of the file.
CString RootOf(const CString& path)
{
    if (path.GetLength() >= 2 && path[1] == ':')
        return path.Left(3);
    const int cut = std::max(path.ReverseFind('\\'), path.ReverseFind('/'));
    return cut > 0 ? path.Left(cut) : CString(cut == 0 ? "/" : ".");
}

// The temporary directory as a path text: "TEMP" as on the original, else
// its POSIX name; "" if neither is set.
CString TempDirectory()
{
    for (const char* name : {"TEMP", "TMPDIR"}) {
        const char* value = std::getenv(name);
        if (value && *value && std::strlen(value) < MAX_PATH)
            return CString(vx::PathTextFromHost(value));
    }
    return CString();
}

void FreeDatabase(CDaoDatabase** db)
{
    delete *db;
    *db = nullptr;
}

} // namespace

int openDatabase(CDaoDatabase** db, CString file, int showError, int readOnly)
{
    if (!db)
        return -1;
    int result = 1;
    try {
        closeDatabase(db);
        *db = new CDaoDatabase;
        BOOL exclusive = FALSE;
        int copies = 0;
        CString path = file;
        for (;;) {
            try {
                if (readOnly && !exclusive && GetDriveTypeA(RootOf(path)) == DRIVE_CDROM)
                    exclusive = TRUE;
                (*db)->Open(path, exclusive, readOnly != 0, "");
                return result;
            } catch (CDaoException& e) {
                if (e.m_pErrorInfo->m_lErrorCode == vx::kDaoFileNotFound) {
                    if (showError && showerrorDatabase)
                        Show(GetString(6713) + Description(e));
                    result = 0;
                    break;
                }
                // Where the file can't be read in place, try once more: on
                // a CD-ROM exclusively, elsewhere as a copy in the temporary
                // directory. The original repeated this without end; one
                // copy is enough, as a second copy would fail the same way.
                if (readOnly && !exclusive && copies < vx::kOpenDatabaseCopies && !vx::IsServerConnect(path.StdString())) {
                    const CString temp = TempDirectory();
                    if (temp.IsEmpty()) {
                        exclusive = TRUE;
                        continue;
                    }
                    const CString copy = temp + "\\" + FileNameOf(path);
                    ++copies;
                    if (CopyFileA(path, copy, FALSE)) {
                        // A log written beside the file belongs to it.
                        const CString log = path + "-wal";
                        if (GetFileAttributesA(log) != INVALID_FILE_ATTRIBUTES)
                            CopyFileA(log, copy + "-wal", FALSE);
                        else
                            DeleteFileA(copy + "-wal");
                        path = copy;
                        result = 2;
                        continue;
                    }
                }
                if (showerrorDatabase)
                    Show(GetString(6713) + Description(e));
                result = -1;
                break;
            }
        }
    } catch (CMemoryException&) {
        Show(GetString(6714));
        result = -1;
    } catch (std::bad_alloc&) {
        Show(GetString(6714));
        result = -1;
    }
    FreeDatabase(db);
    return result;
}

int createDatabase(CDaoDatabase** db, CString file, int options)
{
    if (!db)
        return 0;
    try {
        closeDatabase(db);
        *db = new CDaoDatabase;
        (*db)->Create(file, ";LANGID=0x0409;CP=1252;COUNTRY=0", options);
        return 1;
    } catch (CDaoException& e) {
        if (showerrorDatabase)
            Show("Couldn't create database--Exception: " + Description(e));
    } catch (CMemoryException&) {
        Show("Failed to create database--Memory exception thrown.");
    } catch (std::bad_alloc&) {
        Show("Failed to create database--Memory exception thrown.");
    }
    FreeDatabase(db);
    return 0;
}

void closeDatabase(CDaoDatabase** db)
{
    if (!db || !*db)
        return;
    try {
        if ((*db)->IsOpen())
            (*db)->Close();
    } catch (CDaoException& e) {
        // A workbook or dBASE table could not be written back: say so, as
        // the data would otherwise be lost without a word.
        if (showerrorDatabase)
            Show("Couldn't close database--Exception: " + Description(e));
    }
    FreeDatabase(db);
}

int IsExistentTable(CDaoDatabase* db, CString name)
{
    if (!db)
        return 0;
    try {
        CDaoTableDefInfo info;
        db->GetTableDefInfo(name, info, AFX_DAO_PRIMARY_INFO);
    } catch (CDaoException& e) {
        return e.m_pErrorInfo->m_lErrorCode == vx::kDaoItemNotFound ? 0 : 1;
    } catch (CMemoryException&) {
    }
    return 1;
}

int IsExistentQuery(CDaoDatabase* db, CString name)
{
    if (!db)
        return 0;
    try {
        CDaoQueryDefInfo info;
        db->GetQueryDefInfo(name, info, AFX_DAO_PRIMARY_INFO);
    } catch (CDaoException& e) {
        return e.m_pErrorInfo->m_lErrorCode == vx::kDaoItemNotFound ? 0 : 1;
    } catch (CMemoryException&) {
    }
    return 1;
}

namespace {

// Runs `work`, showing `daoText` + the engine's text on an engine error
// (when `showDao`) and `memoryText` on lack of memory (when `showMemory`).
template <class Work>
int Guarded(Work work, const char* daoText, bool showDao, const char* memoryText, bool showMemory)
{
    try {
        work();
        return 1;
    } catch (CDaoException& e) {
        if (showDao)
            Show(daoText + Description(e));
    } catch (CMemoryException&) {
        if (showMemory)
            Show(memoryText);
    } catch (std::bad_alloc&) {
        if (showMemory)
            Show(memoryText);
    }
    return 0;
}

template <class Def>
void FreeDef(Def** def)
{
    delete *def;
    *def = nullptr;
}

} // namespace

int createNewTableDef(CDaoDatabase* db, CDaoTableDef** def, CString name)
{
    if (!db || !def)
        return 0;
    if (IsExistentTable(db, name)) {
        Show("A table by that name already exists.");
        return 0;
    }
    *def = nullptr;
    const int ok = Guarded(
        [&] {
            *def = new CDaoTableDef(db);
            (*def)->Create(name, 0, nullptr, nullptr);
        },
        "Couldn't create tabledef--Exception: ", true, "Failed to create tabledef--Memory exception thrown.", true);
    if (!ok)
        FreeDef(def);
    return ok;
}

int openTableDef(CDaoDatabase* db, CDaoTableDef** def, CString name, int showError)
{
    if (!db || !def)
        return 0;
    *def = nullptr;
    const int ok = Guarded(
        [&] {
            *def = new CDaoTableDef(db);
            (*def)->Open(name);
        },
        "Couldn't open tabledef--Exception: ", showError != 0, "Failed to open tabledef--Memory exception thrown.",
        true);
    if (!ok)
        FreeDef(def);
    return ok;
}

int appendTableDef(CDaoDatabase* db, CDaoTableDef* def)
{
    if (!db || !def)
        return 0;
    return Guarded([&] { def->Append(); }, "Couldn't append TableDef--Exception: ", true,
                   "Failed to append tabledef--Memory exception thrown.", true);
}

int getTableInfo(CDaoDatabase* db, CDaoTableDefInfo* info, int index, int showError)
{
    if (!db || !info)
        return 0;
    return Guarded([&] { db->GetTableDefInfo(index, *info, AFX_DAO_ALL_INFO); },
                   "Couldn't get information on table--Exception: ", showError != 0,
                   "Failed to get info on table--Memory exception thrown.", showError != 0);
}

void deleteTable(CDaoDatabase* db, CString name)
{
    if (!db || !IsExistentTable(db, name))
        return;
    Guarded([&] { db->DeleteTableDef(name); }, "Couldn't delete the table--Exception: ", true,
            "Failed to delete the table--Memory exception thrown.", true);
}

int createNewQueryDef(CDaoDatabase* db, CDaoQueryDef** def, CString name, CString sql)
{
    if (!db || !def)
        return 0;
    if (IsExistentQuery(db, name)) {
        Show("A Query by that name already exists.");
        return 0;
    }
    *def = nullptr;
    const int ok = Guarded(
        [&] {
            *def = new CDaoQueryDef(db);
            (*def)->Create(name, sql);
        },
        "Couldn't create Querydef--Exception: ", true, "Failed to create Querydef--Memory exception thrown.", true);
    if (!ok)
        FreeDef(def);
    return ok;
}

int openQueryDef(CDaoDatabase* db, CDaoQueryDef** def, CString name)
{
    if (!db || !def)
        return 0;
    *def = nullptr;
    const int ok = Guarded(
        [&] {
            *def = new CDaoQueryDef(db);
            (*def)->Open(name);
        },
        "Couldn't open Querydef--Exception: ", true, "Failed to open Querydef--Memory exception thrown.", true);
    if (!ok)
        FreeDef(def);
    return ok;
}

CString FormatDAOFilter1(const char* text)
{
    CString copy(text);
    copy.Replace('\'', vx::kDaoFilterMarker);
    return copy;
}

int FormatDAOFilter2(CString& text)
{
    int from = 0;
    for (;;) {
        const int open = text.Find(vx::kDaoFilterMarker, from);
        if (open < 0)
            break;
        const int close = text.Find(vx::kDaoFilterMarker, open + 1);
        if (close < 0)
            return 0;
        const char delimiter = text.Mid(open + 1, close - open - 1).Find('\'') >= 0 ? '"' : '\'';
        text.SetAt(open, delimiter);
        text.SetAt(close, delimiter);
        from = close + 1;
    }
    text.Replace(vx::kDaoFilterMarker, '\'');
    return 1;
}
