// The library's string resources, by number.
//
// The table carries every library string (6700 to 6738) in the code page of
// the installation; a host may add its own numbers or replace texts.
//
//   CString s;
//   s.LoadString(6706);                 // "VEXAL 5.5"
//   vx::SetString(6706, "VEXAL Test");  // a host's own title stem
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

namespace vx {

// The text of string `id` in the current code page, or null when the table
// has no such string. The pointer stays valid until the entry is replaced or
// removed, or the code page changes.
VXBASE_EXPORT const char* FindString(UINT id);
// Adds or replaces string `id`; `text` is in the current code page.
VXBASE_EXPORT void SetString(UINT id, const char* text);
// Removes string `id`, so that it reads as missing.
VXBASE_EXPORT void RemoveString(UINT id);
// Puts the library's own table back, dropping every host change.
VXBASE_EXPORT void ResetStrings();

} // namespace vx
