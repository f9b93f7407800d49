#include "platform/cobject.h"

// Anchors the vtable in the library.
CObject::~CObject() = default;
