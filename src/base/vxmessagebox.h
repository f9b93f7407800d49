// The library's message boxes. Every box goes through these, since a
// program that runs hidden behind its partner hands its boxes to the
// partner to show (the partner route).
//
//   if (VxAfxMessageBox("Overwrite?", MB_YESNO, 0) == IDYES) ...
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

// The partner route: returns 1 and stores the partner's answer through
// `result` if the partner showed the box, 0 if this program must show it.
VXBASE_EXPORT int PartnerMessageBox(int* result, const char* text, unsigned type, unsigned help);

namespace vx {

// How PartnerMessageBox hands a box to the partner. The link stands above
// this layer and installs it when it starts (KProcessIO::Init); until then
// every box is shown here. Returns the route it replaces.
using PartnerMessageBoxRoute = int (*)(int* result, const char* text, unsigned type, unsigned help);
VXBASE_EXPORT PartnerMessageBoxRoute SetPartnerMessageBoxRoute(PartnerMessageBoxRoute route);

} // namespace vx

VXBASE_EXPORT int VxAfxMessageBox(const char* text, unsigned type, unsigned help);
// Loads string `id` first.
VXBASE_EXPORT int VxAfxMessageBox(unsigned id, unsigned type, unsigned help);
VXBASE_EXPORT int VxMessageBox(HWND owner, const char* text, const char* caption, unsigned type);
// Owned by the application's main window, or by none if there is none.
VXBASE_EXPORT int VxMessageBox(const char* text, const char* caption, unsigned type);
