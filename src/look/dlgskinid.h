// GetDlgSkinID: the skin id a host gives one of its controls or dialogs.
//
// The library asks the host's main frame (g_pDLLMainframe) with message
// 1029 (WM_VXBASE), wParam 9 and the id; the host answers 0 for no mapping,
// else the skin id plus one.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

// The host's skin id for `id`; -1 for none or without a main frame.
VXBASE_UI_EXPORT int GetDlgSkinID(DWORD id);
