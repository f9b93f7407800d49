// KDatenbankIO: one database file with a declared field catalogue, a main
// table and further tables that are open at the same time, one of them
// active. A newer program opens the file of an older one: missing fields are
// added to further tables on opening (DbTableOeffnen), and a missing field of
// the main table is reported by number.
//
//   KDatenbankIO db;
//   db.m_FeldNamen.Add("Nr");   db.m_FeldParameter.Add(MAKELONG(4, 4));    // long
//   db.m_FeldNamen.Add("Name"); db.m_FeldParameter.Add(MAKELONG(40, 10));  // text 40
//   db.m_TableName = "Parts";
//   if (!db.DateiVorhanden(file)) db.DbAnlegen(file, 0);   // made and closed
//   if (!db.DbOeffnen(file, 1, DbAufsteigend, "Nr", nullptr)) {
//       CString why; db.GetOpenError(why); ...
//   }
//   db.m_pDbRecordset->AddNew();
//   db.DbSetLongValue(0, 7);
//   db.DbSetFeldValue(1, "Motor", 0);
//   db.m_pDbRecordset->Update();
//   db.DbSchliessen();
//
// A field parameter packs the length in the low 16 bits and the DAO type in
// the high 16 bits (0: text if a length is given, else memo; 255: a counter).
// The open functions never throw; the value functions let the engine's
// CDaoException through to the caller.
#pragma once

#include "platform/framework/carray.h"
#include "platform/framework/colevariant.h"
#include "platform/framework/cstring.h"
#include "platform/dao/daodatabase.h"
#include "platform/dao/daoexception.h"
#include "platform/dao/daorecordset.h"
#include "platform/dao/daotabledef.h"
#include "vxbase_export.h"

#include <functional>
#include <memory>

// The order of the records: 0 none, 1 ascending, any other descending.
enum DbSortierType { DbNichtSortiert = 0, DbAufsteigend = 1, DbAbsteigend = 2 };

// Why an open failed; n > 0: required field number n - 1 is missing.
enum DbOpenErrorType {
    DbKeinFehler = 0,
    DbFehlerDatenbank = -1,  // the database cannot be opened (string 6717)
    DbFehlerTabelle = -2,    // the table cannot be opened (6719, empty)
    DbFehlerDatei = -3,      // the file is missing (6718)
    DbFehlerVerzeichnis = -4 // the directory cannot be read (6721)
};

struct VXBASE_EXPORT DATABASE_VIEWINFO {
    CString m_Name;
    int m_Typ = 0; // 0 a table, 1 a query
};

namespace vx {
struct KTableObjects;
}

class VXBASE_EXPORT KDatenbankIO {
public:
    // One open table. Copies share the table's objects, which are closed
    // (record set first, then the definition) when the last copy goes.
    class VXBASE_EXPORT KTable {
    public:
        KTable();
        KTable(const CString& name, CStringArray* fields, CDWordArray* parameters, CDWordArray* exceptions,
               CDaoTableDef* tableDef, CDaoRecordset* recordset);
        KTable(const KTable& other);
        KTable& operator=(const KTable& other);
        ~KTable();

        // Replaces the objects; the old ones are closed if no copy holds them.
        void Adopt(CDaoTableDef* tableDef, CDaoRecordset* recordset);
        // Forgets the objects without closing them (their caller owns them).
        void Release();

        CString m_Name;
        CStringArray* m_pFeldNamen = nullptr;     // not owned
        CDWordArray* m_pFeldParameter = nullptr;  // not owned
        CDWordArray* m_pAusnahmen = nullptr;      // not owned; null if none is missing
        CDaoTableDef* m_pTableDef = nullptr;      // owned
        CDaoRecordset* m_pRecordset = nullptr;    // owned
        int m_bValid = 1;

    private:
        std::shared_ptr<vx::KTableObjects> m_objects;
    };

    KDatenbankIO();
    // Closes.
    virtual ~KDatenbankIO();
    KDatenbankIO(const KDatenbankIO&) = delete;
    KDatenbankIO& operator=(const KDatenbankIO&) = delete;

    // --- open and close ------------------------------------------------------

    // Opens `file` and its main table (m_TableName, or the first table), with
    // the records in the order asked for. With `check`, the table must hold
    // every required field (DbFelderPruefen). 1, or 0 with the reason in
    // GetOpenError. An open object answers 1 and does nothing.
    int DbOeffnen(CString file, int check = 1, DbSortierType sort = DbNichtSortiert,
                  const char* sortField1 = nullptr, const char* sortField2 = nullptr);
    // Opens the database only, never read-only; no record set is opened.
    int DbOeffnenOhneTable(CString file);
    // A workbook's sheet `table` as the main table (read through freexl).
    int DbOeffnenExcel(CString file, const char* table);
    int DbOeffnenExcelOhneTable(CString file);
    // Creates `file` (an existing one is deleted) with the main table of the
    // catalogue and, unless `indexField` is -1, a primary index on that field.
    // The file is closed afterwards. The table name defaults to the file's
    // title with blanks and points made "_".
    int DbAnlegen(CString file, int indexField);
    // Creates a workbook (.xls, written at DbSchliessen through
    // libxlsxwriter) or a dBASE table (.dbf) with the catalogue's fields, and
    // opens it for adding records.
    int DbAnlegenExcelUndOeffnen(CString file, const char* table);
    void DbSchliessen();
    // True if the file can be opened for reading.
    static int DateiVorhanden(const char* file);
    // Non-zero if the last open failed; `text` gets the reason.
    int GetOpenError(CString& text);
    // Hands out the main table's objects; with `detach` this object forgets
    // them and the caller owns them.
    void DbDetachPointer(CDaoDatabase** db, CDaoTableDef** def, CDaoRecordset** set, int detach);
    // Takes such objects over as the main table.
    void DbAttachPointer(CDaoDatabase** db, CDaoTableDef** def, CDaoRecordset** set);

    // --- further tables --------------------------------------------------------

    // Opens (or creates) table `name` with its own catalogue, which must live
    // as long as the table is open. Missing fields are added, except those
    // whose numbers stand in `exceptions`; the numbers of added fields go to
    // `added`. Nothing is added on a read-only database. Opening an open
    // table answers 1 and changes nothing.
    int DbTableOeffnen(const char* name, CStringArray* fields, CDWordArray* parameters, CDWordArray* exceptions,
                       int indexField, CDWordArray* added);
    // Makes table `name` (null: the main table) the one the value functions
    // act on. 0 if it is not open.
    int DbTableAktivieren(const char* name);
    // Closes table `name`. The active table stays as it was: a caller who
    // closes the active table activates another (its object pointers are
    // null until then).
    int DbTableSchliessen(const char* name);
    int DbTableUmbenennen(const char* oldName, const char* newName);
    void DbTableFeldkorrektur(CStringArray* fields, CDWordArray* parameters, CDWordArray* exceptions);
    int DbTableSetValidRecordset(const char* name, int valid);
    int DbTableIsValidRecordset(const char* name);
    // True if no exception field of table `name` (null: the active one) is
    // missing.
    int AusnahmeFelderVorhanden(const char* name);

    // --- catalogue ---------------------------------------------------------------

    // Length and type of `field` in `parameters` (null: the active catalogue).
    // Type 0 reads as 10 with a length, 12 without. 0 if there is no field.
    int GetFeldPara(int field, unsigned short& length, unsigned short& type, CDWordArray* parameters = nullptr);
    // Sets them in `parameters` (null: the main table's), growing it.
    void SetFeldPara(int field, long length, unsigned short type, CDWordArray* parameters = nullptr);
    int GetFeldNummer(const char* name);
    const char* GetFeldName(int field);
    // Whether the active table has field `name` (without regard to case).
    int FeldVorhanden(const char* name);
    // Whether `name` (with regard to case) is a main table or extra field.
    int FeldDefiniertInHauptTabelle(const char* name);
    // Widens text field `field` of the main table of `file` to `length`.
    int FeldLaengeAendern(const char* file, int field, int length);

    // --- indexes ----------------------------------------------------------------

    int DbCreateIndexField(int field, int primary, int unique);
    int CreateIndexField(const char* indexName, const char* table, const char* field, int primary, int unique);
    int IsIndexField(const char* table, const char* field);
    int IsIndexName(const char* table, const char* indexName);

    // --- queries -----------------------------------------------------------------

    // Opens the record set on `sql`, or (null) on the table in the sort order.
    // A faulty statement reaches the caller as CDaoException.
    void OpenSet(const char* sql);
    // Runs an action statement; 1, or 0 if the engine refused it.
    int Execute(const char* sql, int detail);
    // The first table that is the database's own or attached; "" if none.
    static CString HoleTablename(CDaoDatabase* db);
    int HoleAlleTablenamen(CStringArray& names, int byDate);
    int HoleAlleTablenamen(CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO>& names, int onlyLocal);
    int HoleAlleAbfrage(CStringArray& names);
    int HoleAlleAbfrage(CArray<DATABASE_VIEWINFO, DATABASE_VIEWINFO>& names);

    // --- values of the current record of the active table ------------------------

    // Typed reads; a null or empty field reads as 0. A boolean reads as -1
    // for true, as the engine delivers it.
    long DbGetLongValue(int field);
    long DbGetLongValue(const char* name);
    short DbGetShortValue(int field);
    short DbGetShortValue(const char* name);
    int DbGetBoolValue(int field);
    int DbGetBoolValue(const char* name);
    unsigned char DbGetByteValue(int field);
    unsigned char DbGetByteValue(const char* name);
    float DbGetSingleValue(int field);
    float DbGetSingleValue(const char* name);
    double DbGetDoubleValue(int field);
    double DbGetDoubleValue(const char* name);
    // The date as the double of an OLE date.
    double DbGetDateValue(int field);
    double DbGetDateValue(const char* name);
    tagCY DbGetCurrencyValue(int field);
    tagCY DbGetCurrencyValue(const char* name);
    // "" for a null; the text is valid until the next read.
    const char* DbGetTextValue(int field);
    const char* DbGetTextValue(const char* name, COleVariant& buffer);
    // Any field as text: numbers with a decimal comma ("12345,00"), dates
    // as year.month.day ("2024.3.1"); "" if the set is not open.
    CString DbGetFieldValue(const char* name);
    CString DbGetFieldValue(int field);

    // Writes, by field number; the record must be in AddNew or Edit.
    void DbSetBoolValue(int field, int value);
    void DbSetByteValue(int field, unsigned char value);
    void DbSetShortValue(int field, short value);
    void DbSetSingleValue(int field, float value);
    void DbSetDoubleValue(int field, double value);
    void DbSetDateValue(int field, double value);
    void DbSetCurrencyValue(int field, tagCY value);
    // Converted by the field's type; nothing for currency and counters.
    void DbSetLongValue(int field, long value);
    // Text converted by the field's type (atoi/atof, so with a decimal
    // point); `factor` scales numbers, and for a text field of at least 1
    // lowers the length limit. A text is cut to one less than its limit.
    void DbSetFeldValue(int field, const char* text, double factor);
    // Adds field `field` of the active catalogue to the active table.
    int DbAddNewField(int field, int reopen);
    // Copies record `source` over record `target` (absolute positions),
    // leaving out the field numbers in `skip`.
    int SatzKopieren(int target, int source, CDWordArray& skip);
    // 1 if the record set has records.
    int SatzVorhanden();

    // --- state ---------------------------------------------------------------------

    CStringArray m_FeldNamen;        // the main table's catalogue, filled by the caller
    CDWordArray m_FeldParameter;
    CDWordArray m_FeldParameter2;    // not used here
    CString m_DateiPfad;
    CString m_TableName;
    CDaoDatabase* m_pDatabase = nullptr;     // the active table's objects
    CDaoRecordset* m_pDbRecordset = nullptr;
    CDaoTableDef* m_pTableDef = nullptr;
    DbSortierType m_SortierTyp = DbNichtSortiert;
    CString m_SortFeld1;
    CString m_SortFeld2;
    int m_OpenError = 0;             // a DbOpenErrorType or a field number + 1
    int m_AnzahlPflichtFelder = 0;   // required fields; 0: the whole catalogue
    CStringArray m_ExtraFeldNamen;   // fields of the file not in the catalogue
    CDWordArray m_ExtraFeldParameter;
    CDWordArray m_FeldGefunden;
    CString m_Reserve;               // not used here
    int m_bReadOnly = 0;
    CArray<KTable, KTable&> m_Tables; // entry 0: the main table
    CStringArray* m_pAktFeldNamen = nullptr;
    CDWordArray* m_pAktFeldParameter = nullptr;
    CDWordArray* m_pAktAusnahmen = nullptr;

    // Hosts set it before opening: open files read-only.
    static int s_bReadOnly;

protected:
    // Compares the table with the catalogue and takes the file's lengths and
    // types into it; 0, or the number + 1 of the first missing field.
    int DbFelderPruefen();

private:
    enum class OpenResult { Failed, Opened, WasOpen };
    // The steps every open begins with: the file checked and opened.
    OpenResult OpenExisting(CString file, int readOnly, bool workbook);
    // The main table m_TableName with its record set, opened by `openSet`:
    // 1, or 0 with the error set and the database closed.
    int OpenMainTable(const std::function<void()>& openSet);
    // DbFelderPruefen as the last step of an open: 1, or 0 with the error
    // set and the database closed.
    int CheckOpenedFields();
    // An open database without a table: an empty record set.
    void OpenWithoutTable();
    void AddField(CDaoTableDef* def, const CString& name, unsigned short length, unsigned short type);
    void ReadValue(const char* name);
    CStringArray* ActiveNames();
    KTable* FindTable(const char* name);

    static COleVariant m_OutVariant;
    static CString m_OutString;
    static const char m_LeerString;
    static const tagCY m_LeerCY;
};
