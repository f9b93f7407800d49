// KDatenbankIO: opening, the table list, the catalogue, indexes, queries.
// The value functions are in kdatenbankiovalues.cpp.
#include "database/kdatenbankio.h"

#include "base/libraryframe.h"
#include "base/vxmessagebox.h"
#include "database/daohelpers.h"
#include "platform/dao/daoconnect.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daoquerydef.h"
#include "platform/files/fileapi.h"
#include "platform/files/hostpath.h"
#include "platform/framework/mbstring.h"
#include "platform/framework/util_p.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <dirent.h>

int KDatenbankIO::s_bReadOnly = 0;

namespace vx {

// The objects of an open table, shared by the copies of its KTable.
struct KTableObjects {
    CDaoTableDef* def = nullptr;
    CDaoRecordset* set = nullptr;
    ~KTableObjects()
    {
        delete set; // closes it
        delete def;
    }
};

} // namespace vx

namespace {

const char* const kTempField = "X@X@VX";

// The directory of a path text, as a host path.
std::string HostDirectory(const CString& file)
{
    return vx::DirectoryOf(vx::HostPath(file.View()));
}

// What a search for "*.*" finds in a directory that exists: at least "."
// and "..", so only a directory that can't be read finds nothing.
bool DirectoryReadable(const CString& file)
{
    DIR* dir = opendir(HostDirectory(file).c_str());
    if (!dir)
        return false;
    closedir(dir);
    return true;
}

} // namespace

// --- KTable ----------------------------------------------------------------------

KDatenbankIO::KTable::KTable() = default;

KDatenbankIO::KTable::KTable(const CString& name, CStringArray* fields, CDWordArray* parameters,
                             CDWordArray* exceptions, CDaoTableDef* tableDef, CDaoRecordset* recordset)
    : m_Name(name), m_pFeldNamen(fields), m_pFeldParameter(parameters), m_pAusnahmen(exceptions)
{
    Adopt(tableDef, recordset);
}

KDatenbankIO::KTable::KTable(const KTable& other) = default;
KDatenbankIO::KTable& KDatenbankIO::KTable::operator=(const KTable& other) = default;
KDatenbankIO::KTable::~KTable() = default;

void KDatenbankIO::KTable::Adopt(CDaoTableDef* tableDef, CDaoRecordset* recordset)
{
    if (!m_objects)
        m_objects = std::make_shared<vx::KTableObjects>();
    if (m_objects->set != recordset) {
        delete m_objects->set;
        m_objects->set = recordset;
    }
    if (m_objects->def != tableDef) {
        delete m_objects->def;
        m_objects->def = tableDef;
    }
    m_pTableDef = tableDef;
    m_pRecordset = recordset;
}

void KDatenbankIO::KTable::Release()
{
    if (m_objects) {
        m_objects->def = nullptr;
        m_objects->set = nullptr;
    }
    m_pTableDef = nullptr;
    m_pRecordset = nullptr;
}

// --- open and close ----------------------------------------------------------------

KDatenbankIO::KDatenbankIO() = default;

KDatenbankIO::~KDatenbankIO()
{
    DbSchliessen();
}

int KDatenbankIO::DateiVorhanden(const char* file)
{
    if (!file)
        return 0;
    FILE* f = std::fopen(vx::HostPath(file).c_str(), "rb");
    if (!f)
        return 0;
    std::fclose(f);
    return 1;
}

namespace {

// Opens a workbook; 1, or 0 with the database freed.
int OpenWorkbook(CDaoDatabase** db, const CString& file)
{
    try {
        closeDatabase(db);
        *db = new CDaoDatabase;
        (*db)->Open(file, FALSE, FALSE, "Excel 5.0");
        return 1;
    } catch (CDaoException& e) {
        if (showerrorDatabase)
            VxAfxMessageBox(GetString(6713) + e.m_pErrorInfo->m_strDescription, MB_OK, 0);
    } catch (CMemoryException&) {
        VxAfxMessageBox(GetString(6714), MB_OK, 0);
    }
    delete *db;
    *db = nullptr;
    return 0;
}

} // namespace

// The steps every open begins with. An object with an open database
// answers at once, whatever the path. Else the file must exist (a missing
// one tells a missing directory apart) and open as a database, or as a
// workbook.
KDatenbankIO::OpenResult KDatenbankIO::OpenExisting(CString file, int readOnly, bool workbook)
{
    m_OpenError = DbKeinFehler;
    if (m_pDatabase && m_pDatabase->IsOpen())
        return OpenResult::WasOpen;
    m_OpenError = DbFehlerDatei;
    if (file.IsEmpty())
        return OpenResult::Failed;
    m_DateiPfad = file;
    // A server database is no file: the server tells whether it exists.
    if (!vx::IsServerConnect(file.StdString()) && !DateiVorhanden(file)) {
        if (!DirectoryReadable(file))
            m_OpenError = DbFehlerVerzeichnis;
        return OpenResult::Failed;
    }
    m_OpenError = DbFehlerDatenbank;
    bool opened = false;
    if (workbook) {
        opened = OpenWorkbook(&m_pDatabase, file) != 0;
    } else {
        // A database the server doesn't have is a missing file, and as one
        // not shown.
        const bool server = vx::IsServerConnect(file.StdString());
        const int result = openDatabase(&m_pDatabase, file, server ? 0 : 1, readOnly);
        if (server && result == 0)
            m_OpenError = DbFehlerDatei;
        opened = result >= 1;
    }
    if (!opened) {
        DbSchliessen();
        return OpenResult::Failed;
    }
    return OpenResult::Opened;
}

int KDatenbankIO::OpenMainTable(const std::function<void()>& openSet)
{
    m_OpenError = DbFehlerTabelle;
    if (!openTableDef(m_pDatabase, &m_pTableDef, m_TableName, 0)) {
        DbSchliessen();
        return 0;
    }
    m_OpenError = DbKeinFehler;
    m_pDbRecordset = new CDaoRecordset(m_pDatabase);
    DbTableAktivieren(nullptr);
    try {
        openSet();
    } catch (CDaoException&) {
        // A sort field the table doesn't have, or a table the set can't read.
        m_OpenError = DbFehlerTabelle;
        DbSchliessen();
        return 0;
    }
    return 1;
}

int KDatenbankIO::CheckOpenedFields()
{
    m_OpenError = DbFelderPruefen();
    if (m_OpenError != 0) {
        DbSchliessen();
        return 0;
    }
    return 1;
}

void KDatenbankIO::OpenWithoutTable()
{
    m_OpenError = DbKeinFehler;
    m_pDbRecordset = new CDaoRecordset(m_pDatabase);
    DbTableAktivieren(nullptr);
}

int KDatenbankIO::DbOeffnen(CString file, int check, DbSortierType sort, const char* sortField1,
                            const char* sortField2)
{
    const OpenResult opened = OpenExisting(file, s_bReadOnly, false);
    if (opened != OpenResult::Opened)
        return opened == OpenResult::WasOpen;
    m_bReadOnly = s_bReadOnly;
    if (m_TableName.IsEmpty())
        m_TableName = HoleTablename(m_pDatabase);
    const int ready = OpenMainTable([&] {
        if (sortField1 && *sortField1 && sortField2 && *sortField2) {
            // Nulls in the sort field become empty texts, so that they sort
            // like them. A file that can't be written keeps its nulls.
            CString sql;
            sql.Format("SELECT * FROM [%s] WHERE [%s] IS NULL", m_TableName.GetString(), sortField1);
            try {
                m_pDbRecordset->Open(dbOpenDynaset, sql);
                while (!m_pDbRecordset->IsEOF()) {
                    m_pDbRecordset->Edit();
                    m_pDbRecordset->SetFieldValue(sortField1, "");
                    m_pDbRecordset->Update();
                    m_pDbRecordset->MoveNext();
                }
            } catch (CDaoException&) {
            }
        }
        if (sort == DbNichtSortiert) {
            m_SortFeld1.Empty();
        } else if (!sortField1) {
            m_SortFeld1 = m_FeldNamen.GetSize() > 0 ? m_FeldNamen[0] : CString();
            m_SortFeld2.Empty();
        } else {
            m_SortFeld1 = sortField1;
            m_SortFeld2 = sortField2 ? sortField2 : "";
        }
        m_SortierTyp = sort;
        OpenSet(nullptr);
    });
    if (!ready)
        return 0;
    if (m_AnzahlPflichtFelder == 0)
        m_AnzahlPflichtFelder = m_FeldNamen.GetSize();
    return check ? CheckOpenedFields() : 1;
}

int KDatenbankIO::DbOeffnenOhneTable(CString file)
{
    const OpenResult opened = OpenExisting(file, 0, false);
    if (opened == OpenResult::Opened)
        OpenWithoutTable();
    return opened != OpenResult::Failed;
}

int KDatenbankIO::DbOeffnenExcel(CString file, const char* table)
{
    const OpenResult opened = OpenExisting(file, 0, true);
    if (opened != OpenResult::Opened)
        return opened == OpenResult::WasOpen;
    m_TableName = table;
    if (!OpenMainTable([this] { OpenSet(nullptr); }))
        return 0;
    m_AnzahlPflichtFelder = m_FeldNamen.GetSize();
    return CheckOpenedFields();
}

int KDatenbankIO::DbOeffnenExcelOhneTable(CString file)
{
    const OpenResult opened = OpenExisting(file, 0, true);
    if (opened == OpenResult::Opened)
        OpenWithoutTable();
    return opened != OpenResult::Failed;
}

int KDatenbankIO::DbAnlegen(CString file, int indexField)
{
    if (m_pDatabase && m_pDatabase->IsOpen())
        return 1;
    if (file.IsEmpty())
        return 0;
    m_DateiPfad = file;
    const bool server = vx::IsServerConnect(file.StdString());
    if (m_TableName.IsEmpty()) {
        char name[_MAX_FNAME];
        // On a server the table takes the database's name, as a file's
        // takes the file title.
        if (server)
            std::snprintf(name, sizeof name, "%s", vx::ServerDatabaseName(file.StdString()).c_str());
        else
            _splitpath(file, nullptr, nullptr, name, nullptr);
        m_TableName = name;
        m_TableName.Replace(' ', '_');
        m_TableName.Replace('.', '_');
    }
    // A file is made anew; a server database must not exist yet (3204).
    if (!server)
        DeleteFileA(file);
    if (!createDatabase(&m_pDatabase, file, 0))
        return 0;
    if (!createNewTableDef(m_pDatabase, &m_pTableDef, m_TableName)) {
        DbSchliessen();
        return 0;
    }
    DbTableAktivieren(nullptr);
    int result = 1;
    try {
        for (int i = 0; i < m_FeldNamen.GetSize(); ++i)
            DbAddNewField(i, 0);
        if (indexField != -1)
            DbCreateIndexField(indexField, 1, 1);
        result = appendTableDef(m_pDatabase, m_pTableDef);
    } catch (CDaoException& e) {
        if (showerrorDatabase)
            VxAfxMessageBox("Couldn't append TableDef--Exception: " + e.m_pErrorInfo->m_strDescription, MB_OK, 0);
        result = 0;
    }
    DbSchliessen();
    return result;
}

int KDatenbankIO::DbAnlegenExcelUndOeffnen(CString file, const char* table)
{
    if (m_pDatabase && m_pDatabase->IsOpen())
        return 1;
    if (file.IsEmpty())
        return 0;
    m_DateiPfad = file;
    m_TableName = table;
    DeleteFileA(file);
    char ext[_MAX_EXT];
    _splitpath(file, nullptr, nullptr, nullptr, ext);
    int ok = 0;
    try {
        if (_stricmp(ext, ".xls") == 0 || _stricmp(ext, ".xlsx") == 0) {
            m_pDatabase = new CDaoDatabase;
            m_pDatabase->Open(file, FALSE, FALSE, "Excel 5.0");
            ok = 1;
        } else if (_stricmp(ext, ".dbf") == 0) {
            const int cut = std::max(file.ReverseFind('\\'), file.ReverseFind('/'));
            const CString directory = cut >= 0 ? file.Left(cut) : CString(".");
            const CString helper = directory + "\\TEMPDB";
            DeleteFileA(helper);
            m_TableName = file.Mid(cut + 1);
            if (createDatabase(&m_pDatabase, helper, 0)) {
                m_pDatabase->Close();
                m_pDatabase->Open(directory, FALSE, FALSE, "dBASE IV");
                ok = 1;
            }
        }
        if (ok)
            ok = createNewTableDef(m_pDatabase, &m_pTableDef, m_TableName);
        if (ok) {
            DbTableAktivieren(nullptr);
            for (int i = 0; i < m_FeldNamen.GetSize(); ++i)
                DbAddNewField(i, 0);
            ok = appendTableDef(m_pDatabase, m_pTableDef);
        }
        if (ok) {
            m_pDbRecordset = new CDaoRecordset(m_pDatabase);
            m_Tables[0].Adopt(m_pTableDef, m_pDbRecordset);
            m_pDbRecordset->Open(m_pTableDef, dbOpenTable);
            return 1;
        }
    } catch (CDaoException& e) {
        if (showerrorDatabase)
            VxAfxMessageBox(GetString(6713) + e.m_pErrorInfo->m_strDescription, MB_OK, 0);
    } catch (CMemoryException&) {
        VxAfxMessageBox(GetString(6714), MB_OK, 0);
    }
    DbSchliessen();
    return 0;
}

void KDatenbankIO::DbSchliessen()
{
    if (!m_pDatabase)
        return;
    // Objects of the active table that no entry of the list owns yet (an
    // open that failed half way) go first.
    bool owned = false;
    for (const KTable& t : m_Tables)
        owned = owned || t.m_pRecordset == m_pDbRecordset || t.m_pTableDef == m_pTableDef;
    if (!owned) {
        delete m_pDbRecordset;
        delete m_pTableDef;
    }
    m_Tables.RemoveAll();
    m_pDbRecordset = nullptr;
    m_pTableDef = nullptr;
    closeDatabase(&m_pDatabase);
    m_DateiPfad.Empty();
}

int KDatenbankIO::GetOpenError(CString& text)
{
    switch (m_OpenError) {
    case DbKeinFehler:
        return 0;
    case DbFehlerDatenbank:
        text.LoadString(6717);
        break;
    case DbFehlerTabelle:
        // 6719 stands in no resource: the text comes out empty.
        text.LoadString(6719);
        break;
    case DbFehlerDatei:
        text.LoadString(6718);
        break;
    case DbFehlerVerzeichnis:
        text.LoadString(6721);
        break;
    default: {
        CString format;
        format.LoadString(6720);
        const int field = m_OpenError - 1;
        const char* name = field >= 0 && field < m_FeldNamen.GetSize() ? m_FeldNamen[field].GetString() : "";
        text.Format(format, name);
        break;
    }
    }
    return m_OpenError;
}

void KDatenbankIO::DbDetachPointer(CDaoDatabase** db, CDaoTableDef** def, CDaoRecordset** set, int detach)
{
    DbTableAktivieren(nullptr);
    if (db)
        *db = m_pDatabase;
    if (def)
        *def = m_pTableDef;
    if (set)
        *set = m_pDbRecordset;
    if (detach) {
        if (m_Tables.GetSize() > 0)
            m_Tables[0].Release();
        m_pDatabase = nullptr;
        m_pTableDef = nullptr;
        m_pDbRecordset = nullptr;
    }
}

void KDatenbankIO::DbAttachPointer(CDaoDatabase** db, CDaoTableDef** def, CDaoRecordset** set)
{
    m_pDatabase = db ? *db : nullptr;
    m_pTableDef = def ? *def : nullptr;
    m_pDbRecordset = set ? *set : nullptr;
    if (m_pDatabase) {
        // A server database goes by its connect text (without its password).
        const CString connect = m_pDatabase->GetConnect();
        m_DateiPfad = vx::IsServerConnect(connect.StdString()) ? connect : m_pDatabase->GetName();
    }
    if (m_pTableDef)
        m_TableName = m_pTableDef->GetName();
    if (m_Tables.GetSize() > 0) {
        m_Tables[0].m_Name = m_TableName;
        m_Tables[0].Adopt(m_pTableDef, m_pDbRecordset);
    }
    DbTableAktivieren(nullptr);
}

// --- further tables ------------------------------------------------------------------

KDatenbankIO::KTable* KDatenbankIO::FindTable(const char* name)
{
    for (KTable& t : m_Tables)
        if (_mbscmp(t.m_Name, name) == 0)
            return &t;
    return nullptr;
}

CStringArray* KDatenbankIO::ActiveNames()
{
    return m_pAktFeldNamen ? m_pAktFeldNamen : &m_FeldNamen;
}

void KDatenbankIO::AddField(CDaoTableDef* def, const CString& name, unsigned short length, unsigned short type)
{
    if (type == 10 || type == 12) {
        CDaoFieldInfo info;
        info.m_strName = name;
        info.m_nType = static_cast<short>(type);
        info.m_lSize = length;
        info.m_lAttributes = dbUpdatableField;
        info.m_bAllowZeroLength = TRUE;
        info.m_bRequired = FALSE;
        info.m_nOrdinalPosition = 0;
        info.m_lCollatingOrder = 0;
        def->CreateField(info);
    } else if (type == 255) {
        def->CreateField(name, dbLong, length, dbAutoIncrField);
    } else {
        def->CreateField(name, static_cast<short>(type), length, 0);
    }
}

namespace {

void CreateIndexOn(CDaoTableDef* def, const CString& indexName, const CString& field, int primary, int unique)
{
    CDaoIndexFieldInfo fieldInfo;
    fieldInfo.m_strName = field;
    fieldInfo.m_bDescending = FALSE;
    CDaoIndexInfo index;
    index.m_strName = indexName;
    index.m_pFieldInfos = &fieldInfo;
    index.m_nFields = 1;
    index.m_bPrimary = primary;
    index.m_bUnique = unique;
    def->CreateIndex(index);
}

bool Contains(const CDWordArray* list, int value)
{
    if (!list)
        return false;
    for (DWORD v : *list)
        if (static_cast<int>(v) == value)
            return true;
    return false;
}

// Opens a record set on all of `table` and runs through it, so that its
// record count is complete.
void OpenWholeTable(CDaoRecordset* set, CDaoDatabase* db, const CString& table)
{
    CString sql;
    sql.Format("SELECT * FROM [%s]", table.GetString());
    CDaoQueryDef query(db);
    query.Create(nullptr, sql);
    set->Open(&query, dbOpenDynaset);
    if (!(set->IsBOF() && set->IsEOF())) {
        set->MoveLast();
        set->MoveFirst();
    }
    query.Close();
}

} // namespace

int KDatenbankIO::DbTableOeffnen(const char* name, CStringArray* fields, CDWordArray* parameters,
                                 CDWordArray* exceptions, int indexField, CDWordArray* added)
{
    if (!name || !fields || !parameters || !m_pDatabase)
        return 0;
    if (FindTable(name))
        return 1;
    CDaoTableDef* def = nullptr;
    CDaoRecordset* set = nullptr;
    CDWordArray* exceptionList = nullptr;
    try {
        bool exists = false;
        const int count = m_pDatabase->GetTableDefCount();
        for (int i = 0; i < count && !exists; ++i) {
            CDaoTableDefInfo info;
            m_pDatabase->GetTableDefInfo(i, info, AFX_DAO_PRIMARY_INFO);
            exists = _mbscmp(info.m_strName, name) == 0 && info.m_lAttributes == 0;
        }
        if (exists && openTableDef(m_pDatabase, &def, name, 1)) {
            // Bring an older table up to date: add what the catalogue has and
            // the table lacks. Names compare with regard to case here.
            std::vector<bool> has(static_cast<std::size_t>(fields->GetSize()), false);
            const int present = def->GetFieldCount();
            for (int i = 0; i < present; ++i) {
                CDaoFieldInfo info;
                def->GetFieldInfo(i, info);
                for (int j = 0; j < fields->GetSize(); ++j)
                    if (std::strcmp(info.m_strName, (*fields)[j]) == 0)
                        has[static_cast<std::size_t>(j)] = true;
            }
            if (!m_bReadOnly) {
                bool exceptionMissing = false;
                for (int j = 0; j < fields->GetSize(); ++j) {
                    if (has[static_cast<std::size_t>(j)])
                        continue;
                    if (Contains(exceptions, j)) {
                        exceptionMissing = true;
                        continue;
                    }
                    unsigned short length = 0, type = 0;
                    GetFeldPara(j, length, type, parameters);
                    AddField(def, (*fields)[j], length, type);
                    if (added)
                        added->Add(static_cast<DWORD>(j));
                }
                if (exceptionMissing)
                    exceptionList = exceptions;
            }
        } else {
            if (createNewTableDef(m_pDatabase, &def, name)) {
                CDWordArray* active = m_pAktFeldParameter;
                m_pAktFeldParameter = parameters;
                try {
                    for (int j = 0; j < fields->GetSize(); ++j) {
                        unsigned short length = 0, type = 0;
                        GetFeldPara(j, length, type, nullptr);
                        AddField(def, (*fields)[j], length, type);
                    }
                    if (indexField >= 0 && indexField < fields->GetSize())
                        CreateIndexOn(def, (*fields)[indexField], (*fields)[indexField], 1, 1);
                } catch (...) {
                    m_pAktFeldParameter = active;
                    throw;
                }
                m_pAktFeldParameter = active;
                if (!appendTableDef(m_pDatabase, def)) {
                    delete def;
                    return 0;
                }
            }
        }
        set = new CDaoRecordset(m_pDatabase);
        OpenWholeTable(set, m_pDatabase, name);
    } catch (CDaoException& e) {
        if (showerrorDatabase)
            VxAfxMessageBox("Couldn't open tabledef--Exception: " + e.m_pErrorInfo->m_strDescription, MB_OK, 0);
        delete set;
        delete def;
        return 0;
    }
    KTable table(name, fields, parameters, exceptionList, def, set);
    m_Tables.Add(table);
    return 1;
}

int KDatenbankIO::DbTableAktivieren(const char* name)
{
    KTable* table = nullptr;
    if (!name) {
        if (m_Tables.GetSize() == 0) {
            KTable main(m_TableName, &m_FeldNamen, &m_FeldParameter, nullptr, m_pTableDef, m_pDbRecordset);
            m_Tables.Add(main);
            m_pAktFeldNamen = &m_FeldNamen;
            m_pAktFeldParameter = &m_FeldParameter;
            m_pAktAusnahmen = nullptr;
            return 1;
        }
        table = &m_Tables[0];
    } else {
        table = FindTable(name);
        if (!table)
            return 0;
    }
    m_TableName = table->m_Name;
    m_pDbRecordset = table->m_pRecordset;
    m_pTableDef = table->m_pTableDef;
    m_pAktFeldNamen = table->m_pFeldNamen;
    m_pAktFeldParameter = table->m_pFeldParameter;
    m_pAktAusnahmen = table->m_pAusnahmen;
    return 1;
}

int KDatenbankIO::DbTableSchliessen(const char* name)
{
    for (int i = 0; i < m_Tables.GetSize(); ++i) {
        if (_mbscmp(m_Tables[i].m_Name, name) == 0) {
            // The active pointers stay for the caller to replace, but not
            // pointing at objects that are gone.
            if (m_pDbRecordset == m_Tables[i].m_pRecordset)
                m_pDbRecordset = nullptr;
            if (m_pTableDef == m_Tables[i].m_pTableDef)
                m_pTableDef = nullptr;
            m_Tables.RemoveAt(i);
            return 1;
        }
    }
    return 0;
}

int KDatenbankIO::DbTableUmbenennen(const char* oldName, const char* newName)
{
    // An open table must keep its name.
    if (FindTable(oldName))
        VexalAssert(const_cast<char*>("Dbernst"), __LINE__);
    CDaoTableDef* def = nullptr;
    if (!openTableDef(m_pDatabase, &def, oldName, 0))
        return 0;
    int result = 1;
    try {
        def->SetName(newName);
    } catch (CDaoException&) {
        result = 0;
    }
    def->Close();
    delete def;
    return result;
}

void KDatenbankIO::DbTableFeldkorrektur(CStringArray* fields, CDWordArray* parameters, CDWordArray* exceptions)
{
    m_pAktFeldNamen = fields;
    m_pAktFeldParameter = parameters;
    m_pAktAusnahmen = exceptions;
    if (m_Tables.GetSize() > 0) {
        m_Tables[0].m_pFeldNamen = fields;
        m_Tables[0].m_pFeldParameter = parameters;
        m_Tables[0].m_pAusnahmen = exceptions;
    }
}

int KDatenbankIO::DbTableSetValidRecordset(const char* name, int valid)
{
    KTable* table = FindTable(name);
    if (!table)
        return 0;
    table->m_bValid = valid;
    return 1;
}

int KDatenbankIO::DbTableIsValidRecordset(const char* name)
{
    KTable* table = FindTable(name);
    return table ? table->m_bValid : 0;
}

int KDatenbankIO::AusnahmeFelderVorhanden(const char* name)
{
    if (!name)
        return m_pAktAusnahmen == nullptr;
    KTable* table = FindTable(name);
    return table && table->m_pAusnahmen == nullptr;
}

// --- catalogue --------------------------------------------------------------------

int KDatenbankIO::GetFeldPara(int field, unsigned short& length, unsigned short& type, CDWordArray* parameters)
{
    CDWordArray* list = parameters ? parameters : (m_pAktFeldParameter ? m_pAktFeldParameter : &m_FeldParameter);
    if (field < 0 || field >= list->GetSize())
        return 0;
    const DWORD value = (*list)[field];
    length = LOWORD(value);
    type = HIWORD(value);
    if (type == 0)
        type = length != 0 ? 10 : 12;
    return 1;
}

void KDatenbankIO::SetFeldPara(int field, long length, unsigned short type, CDWordArray* parameters)
{
    CDWordArray* list = parameters ? parameters : &m_FeldParameter;
    if (field < 0)
        return;
    list->SetAtGrow(field, MAKELONG(static_cast<WORD>(length), type));
}

int KDatenbankIO::GetFeldNummer(const char* name)
{
    CStringArray* names = ActiveNames();
    for (int i = 0; i < names->GetSize(); ++i)
        if (_mbscmp((*names)[i], name) == 0)
            return i;
    return -1;
}

const char* KDatenbankIO::GetFeldName(int field)
{
    CStringArray* names = ActiveNames();
    if (field < 0 || field >= names->GetSize())
        return nullptr;
    return (*names)[field];
}

int KDatenbankIO::FeldVorhanden(const char* name)
{
    if (!m_pTableDef)
        return 0;
    try {
        CDaoFieldInfo info;
        m_pTableDef->GetFieldInfo(name, info);
        return 1;
    } catch (CDaoException&) {
        return 0;
    }
}

int KDatenbankIO::FeldDefiniertInHauptTabelle(const char* name)
{
    if (!name)
        return 0;
    for (const CString& n : m_FeldNamen)
        if (std::strcmp(n, name) == 0)
            return 1;
    for (const CString& n : m_ExtraFeldNamen)
        if (std::strcmp(n, name) == 0)
            return 1;
    return 0;
}

int KDatenbankIO::FeldLaengeAendern(const char* file, int field, int length)
{
    const int size = m_FeldNamen.GetSize();
    if (field < 0 || field >= size)
        return 0;
    const int required = m_AnzahlPflichtFelder;
    auto forgetTemp = [&] {
        m_FeldNamen.SetSize(size);
        if (m_FeldParameter.GetSize() > size)
            m_FeldParameter.SetSize(size);
        // The helper field must not count as required afterwards.
        m_AnzahlPflichtFelder = required;
    };
    m_FeldNamen.Add(kTempField);
    SetFeldPara(size, length, 10);
    if (!DbOeffnen(file, 0, DbNichtSortiert, nullptr, nullptr)) {
        forgetTemp();
        if (m_OpenError == DbFehlerDatei || m_OpenError == DbFehlerVerzeichnis) {
            // The file will be made with the new length.
            unsigned short oldLength = 0, type = 0;
            GetFeldPara(field, oldLength, type, &m_FeldParameter);
            SetFeldPara(field, length, type);
        }
        return 0;
    }
    int result = 1;
    try {
        m_pDbRecordset->Close();
        // A helper field may be left from an earlier attempt that failed.
        if (!FeldVorhanden(kTempField))
            DbAddNewField(size, 0);
        CString sql;
        sql.Format("UPDATE [%s] SET [%s] = [%s]", HoleTablename(m_pDatabase).GetString(), kTempField,
                   m_FeldNamen[field].GetString());
        m_pDatabase->Execute(sql, dbFailOnError);
        m_pTableDef->DeleteField(m_FeldNamen[field]);
        unsigned short oldLength = 0, type = 0;
        GetFeldPara(field, oldLength, type, &m_FeldParameter);
        SetFeldPara(field, length, type);
        DbAddNewField(field, 0);
        sql.Format("UPDATE [%s] SET [%s] = [%s]", HoleTablename(m_pDatabase).GetString(),
                   m_FeldNamen[field].GetString(), kTempField);
        m_pDatabase->Execute(sql, dbFailOnError);
        m_pTableDef->DeleteField(kTempField);
    } catch (CDaoException& e) {
        if (showerrorDatabase)
            VxAfxMessageBox(GetString(6713) + e.m_pErrorInfo->m_strDescription, MB_OK, 0);
        result = 0;
    }
    forgetTemp();
    DbSchliessen();
    return result;
}

int KDatenbankIO::DbFelderPruefen()
{
    if (m_AnzahlPflichtFelder < 1)
        VexalAssert(const_cast<char*>("Dbernst"), __LINE__);
    m_FeldGefunden.RemoveAll();
    m_FeldGefunden.SetSize(m_AnzahlPflichtFelder);
    m_ExtraFeldNamen.RemoveAll();
    m_ExtraFeldParameter.RemoveAll();
    const int required = std::min(m_AnzahlPflichtFelder, m_FeldNamen.GetSize());
    try {
        const int count = m_pTableDef->GetFieldCount();
        for (int i = 0; i < count; ++i) {
            CDaoFieldInfo info;
            m_pTableDef->GetFieldInfo(i, info);
            bool matched = false;
            for (int j = 0; j < required; ++j) {
                if (_stricmp(info.m_strName, m_FeldNamen[j]) == 0) {
                    m_FeldGefunden[j] = 1;
                    // The catalogue takes what the file holds.
                    SetFeldPara(j, info.m_lSize, static_cast<unsigned short>(info.m_nType), &m_FeldParameter);
                    matched = true;
                }
            }
            if (!matched) {
                m_ExtraFeldNamen.Add(info.m_strName);
                m_ExtraFeldParameter.Add(MAKELONG(static_cast<WORD>(info.m_lSize), static_cast<WORD>(info.m_nType)));
            }
        }
    } catch (CDaoException&) {
        return DbFehlerTabelle;
    }
    for (int j = 0; j < m_AnzahlPflichtFelder; ++j)
        if (!m_FeldGefunden[j])
            return j + 1;
    return 0;
}

// --- indexes -------------------------------------------------------------------------

int KDatenbankIO::DbCreateIndexField(int field, int primary, int unique)
{
    if (!m_pTableDef || field < 0 || field >= m_FeldNamen.GetSize())
        return 0;
    try {
        CreateIndexOn(m_pTableDef, m_FeldNamen[field], m_FeldNamen[field], primary, unique);
        return 1;
    } catch (CDaoException&) {
        return 0;
    }
}

int KDatenbankIO::CreateIndexField(const char* indexName, const char* table, const char* field, int primary,
                                   int unique)
{
    CDaoTableDef* def = nullptr;
    if (!openTableDef(m_pDatabase, &def, table, 0))
        return 0;
    int result = 1;
    try {
        CreateIndexOn(def, indexName, field, primary, unique);
    } catch (CDaoException&) {
        result = 0;
    }
    delete def;
    return result;
}

namespace {

// Runs `test` on the index infos of `table`; 1 as soon as it says yes.
template <class Test>
int AnyIndex(CDaoDatabase* db, const char* table, Test test)
{
    CDaoTableDef* def = nullptr;
    if (!openTableDef(db, &def, table, 0))
        return 0;
    int result = 0;
    try {
        const int count = def->GetIndexCount();
        for (int i = 0; i < count && !result; ++i) {
            CDaoIndexInfo info;
            def->GetIndexInfo(i, info, AFX_DAO_ALL_INFO);
            result = test(info) ? 1 : 0;
        }
    } catch (CDaoException&) {
    }
    delete def;
    return result;
}

} // namespace

int KDatenbankIO::IsIndexField(const char* table, const char* field)
{
    return AnyIndex(m_pDatabase, table, [&](const CDaoIndexInfo& info) {
        return info.m_nFields > 0 && _mbscmp(info.m_pFieldInfos[0].m_strName, field) == 0;
    });
}

int KDatenbankIO::IsIndexName(const char* table, const char* indexName)
{
    return AnyIndex(m_pDatabase, table,
                    [&](const CDaoIndexInfo& info) { return _mbscmp(info.m_strName, indexName) == 0; });
}

// --- queries -------------------------------------------------------------------------

void KDatenbankIO::OpenSet(const char* sql)
{
    CString statement;
    if (sql) {
        statement = sql;
    } else if (m_SortierTyp == DbNichtSortiert || m_SortFeld1.IsEmpty()) {
        statement.Format("SELECT * FROM [%s]", m_TableName.GetString());
    } else {
        const char* direction = m_SortierTyp == DbAufsteigend ? "ASC" : "DESC";
        if (m_SortFeld2.IsEmpty())
            statement.Format("SELECT * FROM [%s] ORDER BY [%s] %s", m_TableName.GetString(), m_SortFeld1.GetString(),
                             direction);
        else
            statement.Format("SELECT * FROM [%s] ORDER BY [%s] %s,[%s]", m_TableName.GetString(),
                             m_SortFeld1.GetString(), direction, m_SortFeld2.GetString());
    }
    if (!m_pDbRecordset) {
        m_pDbRecordset = new CDaoRecordset(m_pDatabase);
        if (m_Tables.GetSize() > 0 && !m_Tables[0].m_pRecordset && m_Tables[0].m_Name == m_TableName)
            m_Tables[0].Adopt(m_Tables[0].m_pTableDef, m_pDbRecordset);
    }
    CDaoQueryDef query(m_pDatabase);
    query.Create(nullptr, statement);
    if (m_pDbRecordset->IsOpen())
        m_pDbRecordset->Close();
    m_pDbRecordset->Open(&query, dbOpenDynaset);
    if (!(m_pDbRecordset->IsBOF() && m_pDbRecordset->IsEOF())) {
        m_pDbRecordset->MoveLast();
        m_pDbRecordset->MoveFirst();
    }
    DbTableSetValidRecordset(m_TableName, 1);
    query.Close();
}

int KDatenbankIO::Execute(const char* sql, int detail)
{
    try {
        if (!m_pDatabase)
            return 0;
        m_pDatabase->Execute(sql, dbFailOnError);
        return 1;
    } catch (CDaoException& e) {
        if (detail) {
            // Fetched as the original did, for a debugger to look at.
            char text[1024];
            std::snprintf(text, sizeof text, "%s", e.m_pErrorInfo->m_strDescription.GetString());
            (void)text;
        }
        return 0;
    }
}

CString KDatenbankIO::HoleTablename(CDaoDatabase* db)
{
    if (!db)
        return CString();
    try {
        const int count = db->GetTableDefCount();
        for (int i = 0; i < count; ++i) {
            CDaoTableDefInfo info;
            db->GetTableDefInfo(i, info, AFX_DAO_PRIMARY_INFO);
            if (info.m_lAttributes == 0 || (info.m_lAttributes & 0x60000000))
                return info.m_strName;
        }
    } catch (CDaoException&) {
    }
    return CString();
}

int KDatenbankIO::HoleAlleTablenamen(CStringArray& names, int byDate)
{
    if (!m_pDatabase)
        return 0;
    std::vector<double> dates;
    try {
        const int count = m_pDatabase->GetTableDefCount();
        for (int i = 0; i < count; ++i) {
            CDaoTableDefInfo info;
            m_pDatabase->GetTableDefInfo(i, info, byDate ? AFX_DAO_SECONDARY_INFO : AFX_DAO_PRIMARY_INFO);
            if (!(info.m_lAttributes == 0 || (info.m_lAttributes & 0x60000000)))
                continue;
            if (!byDate) {
                names.Add(info.m_strName);
                continue;
            }
            const double date = info.m_dateCreated.m_dt;
            if (dates.empty() || date > dates.back()) {
                names.Add(info.m_strName);
                dates.push_back(date);
                continue;
            }
            // Before the first that is later; a date equal to the last one's
            // finds no such place and is left out, as it was.
            for (std::size_t k = 0; k < dates.size(); ++k) {
                if (dates[k] > date) {
                    names.InsertAt(static_cast<int>(k), info.m_strName);
                    dates.insert(dates.begin() + static_cast<long>(k), date);
                    break;
                }
            }
        }
    } catch (CDaoException&) {
    }
    return names.GetSize();
}

int KDatenbankIO::HoleAlleTablenamen(CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO>& names, int onlyLocal)
{
    if (!m_pDatabase)
        return 0;
    try {
        const int count = m_pDatabase->GetTableDefCount();
        for (int i = 0; i < count; ++i) {
            CDaoTableDefInfo info;
            m_pDatabase->GetTableDefInfo(i, info, AFX_DAO_PRIMARY_INFO);
            if (onlyLocal && !(info.m_lAttributes == 0 || (info.m_lAttributes & 0x40000000)))
                continue;
            DATABASE_VIEWINFO entry;
            entry.m_Name = info.m_strName;
            entry.m_Typ = 0;
            names.Add(entry);
        }
    } catch (CDaoException&) {
    }
    return names.GetSize();
}

namespace {

template <class Add>
void EachSelectQuery(CDaoDatabase* db, Add add)
{
    if (!db)
        return;
    try {
        const int count = db->GetQueryDefCount();
        for (int i = 0; i < count; ++i) {
            CDaoQueryDefInfo info;
            db->GetQueryDefInfo(i, info, AFX_DAO_PRIMARY_INFO);
            if (info.m_nType == dbQSelect || info.m_nType == dbQSetOperation)
                add(info.m_strName);
        }
    } catch (CDaoException&) {
    }
}

} // namespace

int KDatenbankIO::HoleAlleAbfrage(CStringArray& names)
{
    EachSelectQuery(m_pDatabase, [&](const CString& name) {
        if (name.GetLength() == 0 || name[0] != '~')
            names.Add(name);
    });
    return names.GetSize();
}

int KDatenbankIO::HoleAlleAbfrage(CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO>& names)
{
    EachSelectQuery(m_pDatabase, [&](const CString& name) {
        DATABASE_VIEWINFO entry;
        entry.m_Name = name;
        entry.m_Typ = 1;
        names.Add(entry);
    });
    return names.GetSize();
}
