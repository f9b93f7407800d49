// AT's open dialog with the drawing preview, for "vxhost open".
#pragma once

#include <string>

namespace vxhost {

// Starts IT, opens the preview dialog on `project` (a host path) and, when
// `shots` names a directory or no display is reachable, drives it: a
// drawing is picked (IT draws it) and then a file nobody draws. With
// `shots`, the two pictures are written there. 0 when all went as it should.
int RunOpenDialog(const std::string& project, const std::string& shots);

} // namespace vxhost
