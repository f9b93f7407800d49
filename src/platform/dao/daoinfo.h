// What the database engine reports of its tables, fields, indexes and
// stored queries, and the DAO constants that go with them.
//
//   CDaoFieldInfo f;
//   def.GetFieldInfo("Name", f);
//   if (f.m_nType == dbText) ... f.m_lSize ...        // 10 and the length
//
// Infos come in three depths, as in DAO: AFX_DAO_PRIMARY_INFO (name, type),
// AFX_DAO_SECONDARY_INFO (adds dates, sizes, attributes) and
// AFX_DAO_ALL_INFO (everything).
#pragma once

#include "platform/framework/coledatetime.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <vector>

// Field types.
constexpr short dbBoolean = 1;
constexpr short dbByte = 2;
constexpr short dbInteger = 3;
constexpr short dbLong = 4;
constexpr short dbCurrency = 5;
constexpr short dbSingle = 6;
constexpr short dbDouble = 7;
constexpr short dbDate = 8;
constexpr short dbBinary = 9;
constexpr short dbText = 10;
constexpr short dbLongBinary = 11;
constexpr short dbMemo = 12;

// Field attributes.
constexpr long dbFixedField = 0x1;
constexpr long dbVariableField = 0x2;
constexpr long dbAutoIncrField = 0x10;
constexpr long dbUpdatableField = 0x20;
constexpr long dbDescending = 0x1;

// Table attributes.
constexpr long dbHiddenObject = 0x1;
constexpr long dbAttachedODBC = 0x20000000;
constexpr long dbAttachedTable = 0x40000000;
constexpr long dbSystemObject = static_cast<long>(0x80000002u);

// Record set types and options.
constexpr int dbOpenTable = 1;
constexpr int dbOpenDynaset = 2;
constexpr int dbOpenSnapshot = 4;
constexpr int dbOpenForwardOnly = 8;
constexpr int dbDenyWrite = 0x1;
constexpr int dbDenyRead = 0x2;
constexpr int dbReadOnly = 0x4;
constexpr int dbAppendOnly = 0x8;
constexpr int dbFailOnError = 0x80;
constexpr int dbSeeChanges = 0x200;

// Edit modes of a record set.
constexpr short dbEditNone = 0;
constexpr short dbEditInProgress = 1;
constexpr short dbEditAdd = 2;

// Stored query types.
constexpr short dbQSelect = 0;
constexpr short dbQDelete = 0x20;
constexpr short dbQUpdate = 0x30;
constexpr short dbQAppend = 0x40;
constexpr short dbQMakeTable = 0x50;
constexpr short dbQDDL = 0x60;
constexpr short dbQSetOperation = 0x80;
constexpr short dbQAction = 0xF0;

// Options of CDaoDatabase::Create.
constexpr int dbVersion10 = 1;
constexpr int dbEncrypt = 2;
constexpr int dbDecrypt = 4;
constexpr int dbVersion11 = 8;
constexpr int dbVersion20 = 16;
constexpr int dbVersion30 = 32;

// The locale of a new database: general sort order.
constexpr const char* dbLangGeneral = ";LANGID=0x0409;CP=1252;COUNTRY=0";

// Depth of an info.
constexpr DWORD AFX_DAO_PRIMARY_INFO = 0x1;
constexpr DWORD AFX_DAO_SECONDARY_INFO = 0x2;
constexpr DWORD AFX_DAO_ALL_INFO = 0x3;

struct VXBASE_EXPORT CDaoFieldInfo {
    CString m_strName;            // primary
    short m_nType = 0;            // primary: dbBoolean ... dbMemo
    long m_lSize = 0;             // primary: bytes, or characters of a text
    long m_lAttributes = 0;       // primary: dbFixedField, dbAutoIncrField...
    short m_nOrdinalPosition = 0; // secondary
    BOOL m_bRequired = FALSE;     // secondary
    BOOL m_bAllowZeroLength = FALSE;
    long m_lCollatingOrder = 0;
    CString m_strForeignName;
    CString m_strSourceField;
    CString m_strSourceTable;
    CString m_strValidationRule; // all
    CString m_strValidationText;
    CString m_strDefaultValue;
};

struct VXBASE_EXPORT CDaoIndexFieldInfo {
    CString m_strName;
    BOOL m_bDescending = FALSE;
};

struct VXBASE_EXPORT CDaoIndexInfo {
    CDaoIndexInfo() = default;
    CDaoIndexInfo(const CDaoIndexInfo& other);
    CDaoIndexInfo& operator=(const CDaoIndexInfo& other);

    CString m_strName; // primary
    // The fields of the index: the caller's array when it creates an index;
    // storage owned by this info when the engine fills it.
    CDaoIndexFieldInfo* m_pFieldInfos = nullptr;
    short m_nFields = 0;
    BOOL m_bPrimary = FALSE; // secondary
    BOOL m_bUnique = FALSE;
    BOOL m_bClustered = FALSE;
    BOOL m_bIgnoreNulls = FALSE;
    BOOL m_bRequired = FALSE;
    BOOL m_bForeign = FALSE;
    long m_lDistinctCount = 0; // all

    // Takes `fields` into storage of this info and points m_pFieldInfos to it.
    void SetFields(std::vector<CDaoIndexFieldInfo> fields);

private:
    std::vector<CDaoIndexFieldInfo> m_fields;
};

struct VXBASE_EXPORT CDaoTableDefInfo {
    CString m_strName;         // primary
    BOOL m_bUpdatable = FALSE; // primary
    long m_lAttributes = 0;    // primary: 0, dbSystemObject, dbAttachedTable...
    COleDateTime m_dateCreated;     // secondary
    COleDateTime m_dateLastUpdated; // secondary
    CString m_strSrcTableName;      // secondary
    CString m_strConnect;           // secondary
    CString m_strValidationRule;    // all
    CString m_strValidationText;
    long m_lRecordCount = 0; // all
};

struct VXBASE_EXPORT CDaoQueryDefInfo {
    CString m_strName;  // primary
    short m_nType = 0;  // primary: dbQSelect, dbQUpdate...
    COleDateTime m_dateCreated;     // secondary
    COleDateTime m_dateLastUpdated; // secondary
    BOOL m_bUpdatable = FALSE;      // secondary
    BOOL m_bReturnsRecords = FALSE; // secondary
    CString m_strSQL;               // all
    CString m_strConnect;
    short m_nODBCTimeout = 0;
};
