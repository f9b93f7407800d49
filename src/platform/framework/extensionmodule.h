// The framework's bookkeeping for an extension library: the module's state
// is initialised when the library attaches and ended when it detaches.
// There are no class or factory lists to move aside here; the record keeps
// the module handle and whether it is initialised.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

struct AFX_EXTENSION_MODULE {
    BOOL bInitialized = FALSE;
    HMODULE hModule = nullptr;
};

// FALSE if the module is initialised already.
VXBASE_EXPORT BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module);
VXBASE_EXPORT void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL all = FALSE);
