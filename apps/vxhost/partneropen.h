// AT's open dialog with the drawing preview and its save dialog with
// options, for "vxhost open".
#pragma once

#include <string>

namespace vxhost {

// Starts IT, opens the preview dialog on `project` (a host path), then the
// save dialog with two options. When `shots` names a directory or no
// display is reachable, drives them: a drawing is picked (IT draws it), the
// preview turned off and on, a file nobody draws picked; an option turned
// on and a name typed. With `shots`, three pictures are written there. 0
// when all went as it should.
int RunOpenDialog(const std::string& project, const std::string& shots);

} // namespace vxhost
