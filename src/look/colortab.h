// colortab: the sixteen colours of the library's owner-drawn lists, by
// colour number.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

VXBASE_UI_EXPORT extern const COLORREF colortab[16];
