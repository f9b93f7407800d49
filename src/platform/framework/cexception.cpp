#include "platform/framework/cexception.h"

// Out of line, so that the classes' type information lives in the library.
CException::~CException() = default;
CMemoryException::~CMemoryException() = default;
