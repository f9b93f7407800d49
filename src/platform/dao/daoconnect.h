// Connect texts of server databases. A database on a PostgreSQL server is
// named, wherever a database file's path or a connect text is passed, by a
// text that begins with "ODBC;":
//
//   "ODBC;DATABASE=project;SERVER=db1;PORT=5432;UID=anna;PWD=secret"
//   "ODBC;DSN=project"                         (a libpq service)
//   "ODBC;host=db1 dbname=project user=anna"   (a libpq connection string)
//   "ODBC;postgresql://anna@db1/project"       (a libpq URI)
//
// A password in the text is never written to a message or an exception text.
#pragma once

#include "vxbase_export.h"

#include <string>
#include <string_view>

namespace vx {

// Whether `text` names a server database ("ODBC;", in any case, after
// leading blanks).
VXBASE_EXPORT bool IsServerConnect(std::string_view text);

// The database a server connect text names ("" if it names none itself, as
// a DSN or a connection without a database name does).
VXBASE_EXPORT std::string ServerDatabaseName(std::string_view text);

// The text with the value of its password taken out, for showing it.
VXBASE_EXPORT std::string WithoutPassword(std::string_view text);

} // namespace vx
