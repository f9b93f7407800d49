// The framework's exception roots: CException and CMemoryException.
//
// The port throws exceptions by value and callers catch them by reference:
//
//   try { db.Open(path); }
//   catch (CMemoryException&) { ... }
//   catch (CDaoException& e) { ... e.m_pErrorInfo->m_lErrorCode ... }
//
// The library itself throws nothing of its own; these stand for what the
// framework and the database engine raise.
#pragma once

#include "platform/framework/cobject.h"
#include "vxbase_export.h"

class VXBASE_EXPORT CException : public CObject {
public:
    CException() = default;
    CException(const CException&) = default;
    CException& operator=(const CException&) = default;
    ~CException() override;
};

// Raised when memory cannot be allocated (the engine raises it where the
// database library reports that it ran out of memory).
class VXBASE_EXPORT CMemoryException : public CException {
public:
    CMemoryException() = default;
    ~CMemoryException() override;
};
