#include "platform/framework/cobject.h"

// Anchors the vtable in the library.
CObject::~CObject() = default;
