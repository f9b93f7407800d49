#include "platform/framework/extensionmodule.h"

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module)
{
    if (state.bInitialized)
        return FALSE;
    state.bInitialized = TRUE;
    state.hModule = module;
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL)
{
    state.bInitialized = FALSE;
    state.hModule = nullptr;
}
