// Internal; do not include directly.
//
// Texts of statements that both engines build alike from a record's
// columns; only the mark of a numbered parameter differs ("?" in SQLite,
// "$" on the server), so that `mark` + 1 is the first parameter.
#pragma once

#include "platform/dao/daovalue_p.h"

#include <string>
#include <vector>

namespace vx {

// "a", "b", ... : the quoted names of `columns`.
std::string ColumnList(const std::vector<DaoColumn>& columns);

// The INSERT of a record into `table` giving the columns that `assigned`
// marks '1' (one character per column) as parameters 1, 2, ...; with none
// assigned, a record of default values.
std::string InsertStatement(const std::string& table, const std::vector<DaoColumn>& columns,
                            const std::string& assigned, const char* mark);

// "a" = ?1, "b" = ?2, ... for the columns `assigned` marks '1': the SET
// list of an UPDATE. `count` gets the number of parameters used.
std::string AssignmentList(const std::vector<DaoColumn>& columns, const std::string& assigned, const char* mark,
                           int& count);

} // namespace vx
