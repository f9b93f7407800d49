// Tool bar resources (type 0xF1): the buttons of a tool bar by resource
// number or name, registered in code as the original carried them in its
// module. The images are the bitmap of the same name (vx::SetResourceImage).
//
//   vx::SetToolBarResource(IDR_MAINFRAME, {1, 16, 15, 3, ID_FILE_NEW, ID_FILE_OPEN, ID_FILE_SAVE});
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_ui_export.h"

#include <vector>

namespace vx {
// Adds or replaces a tool bar resource: the words version, width, height,
// count, then the command ids (0 for a separator). No words remove it.
VXBASE_UI_EXPORT void SetToolBarResource(LPCSTR name, std::vector<WORD> words);
// The words of a tool bar resource, empty when there is none.
VXBASE_UI_EXPORT std::vector<WORD> ToolBarResource(LPCSTR name);
} // namespace vx
