// CDaoException: an error of the database engine, with the engine's error
// number and text (the numbers of DAO, so that callers can test them):
//
//   try { db.Open("C:\\missing.mdb"); }
//   catch (CDaoException& e) {
//       if (e.m_pErrorInfo->m_lErrorCode == 3024) ...   // file not found
//   }
//
// The numbers the engine raises are listed in vx::DaoError.
#pragma once

#include "platform/framework/cexception.h"
#include "platform/framework/cstring.h"
#include "vxbase_export.h"

struct VXBASE_EXPORT CDaoErrorInfo {
    long m_lErrorCode = 0;
    CString m_strSource;
    CString m_strDescription;
    CString m_strHelpFile;
    long m_lHelpContext = 0;
};

class VXBASE_EXPORT CDaoException : public CException {
public:
    CDaoException();
    CDaoException(long errorCode, const CString& description);
    CDaoException(const CDaoException& other);
    CDaoException& operator=(const CDaoException& other);
    ~CDaoException() override;

    // The engine keeps one error per exception.
    short GetErrorCount() const { return 1; }
    // Points m_pErrorInfo at error `index`; there is only error 0.
    void GetErrorInfo(int index);

    // This exception's own error record; never null.
    CDaoErrorInfo* m_pErrorInfo;
    long m_scode = 0;
    int m_nAfxDaoError = 0;

private:
    CDaoErrorInfo m_info;
};

namespace vx {

// The error numbers the engine raises, as DAO numbered them.
enum DaoError : long {
    kDaoInvalidArgument = 3001,
    kDaoTableExists = 3010,
    kDaoObjectNotFound = 3011,
    kDaoObjectExists = 3012,
    kDaoUpdateWithoutEdit = 3020,
    kDaoNoCurrentRecord = 3021,
    kDaoDuplicateKey = 3022,
    kDaoFileNotFound = 3024,
    kDaoReadOnly = 3027,
    kDaoInvalidAccount = 3029, // a refused login: no such account, or a wrong password
    kDaoInvalidPassword = 3031, // the server wants a password and none was given
    kDaoNoTransaction = 3034,
    kDaoDiskError = 3043,
    kDaoInvalidPath = 3044,
    kDaoFileInUse = 3045,
    kDaoCorrupt = 3049,
    kDaoNoPermission = 3051,
    kDaoTooFewParameters = 3061,
    kDaoSelectExecuted = 3065,
    kDaoSyntaxError = 3075,
    kDaoInputTableNotFound = 3078,
    kDaoInvalidName = 3125,
    kDaoCharactersAfterEnd = 3142,
    kDaoServerCallFailed = 3146, // a statement the server failed, or one that took too long
    kDaoServerUnreachable = 3151, // the server can't be reached, or the connection to it broke
    kDaoFieldTooSmall = 3163,
    kDaoFieldNotUpdatable = 3164,
    kDaoRecordDeleted = 3167,
    kDaoNoInstallableIsam = 3170,
    kDaoFieldDefinedTwice = 3191,
    kDaoWriteConflict = 3197, // another program changed the record since it was read
    kDaoDatabaseExists = 3204,
    kDaoInvalidOperation = 3219,
    kDaoNotSupported = 3251,
    kDaoInvalidFieldType = 3259,
    kDaoLocked = 3260,
    kDaoNoFieldDefined = 3264,
    kDaoItemNotFound = 3265,
    kDaoFieldInIndex = 3280,
    kDaoIndexExists = 3284,
    kDaoRequiredField = 3314,
    kDaoUnrecognizedFormat = 3343,
    kDaoNumericOverflow = 3349,
    kDaoObjectInvalid = 3420,
    kDaoConversionError = 3421,
    kDaoTypeMismatch = 3464,
};

} // namespace vx
