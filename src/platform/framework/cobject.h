// CObject: the common root of the framework's collection and window classes.
// It carries only a virtual destructor here; run-time class information is
// replaced by dynamic_cast where the library needs it.
#pragma once

#include "vxbase_export.h"

class VXBASE_EXPORT CObject {
public:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
    virtual ~CObject();
};
