// Copying a whole database between engines: a project's database file onto
// a server database, and back, for a team that moves a project onto the
// server or takes a copy home.
//
//   std::string error = vx::CopyDatabase("C:\\Projekt\\teile.mdb",
//                                        "ODBC;DATABASE=teile;SERVER=db1;UID=anna;PWD=...");
//   if (!error.empty()) ... // DAO's text of what went wrong
#pragma once

#include "vxbase_export.h"

#include <string>

namespace vx {

// Copies tables (fields with their types, sizes, required flags and
// defaults, counters with their numbers), indexes, stored queries and
// records from `source` to `target`. Each is a database file's path or a
// server's connect text ("ODBC;..."). The target must not exist; it is
// created. Gives "" on success, else the DAO error's text (which never holds
// a password); a target left half made is then removed if it is a file.
VXBASE_EXPORT std::string CopyDatabase(const std::string& source, const std::string& target);

} // namespace vx
