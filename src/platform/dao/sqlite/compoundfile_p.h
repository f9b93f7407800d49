// Internal; do not include directly.
//
// A check of the compound file (OLE2) structure that holds a workbook of
// Excel 5 to 2003, made before the file goes to freexl. freexl trusts the
// name length of each directory entry and reads that many bytes of a
// buffer that holds 64, so a damaged or hostile file makes it read past its
// memory. The check walks the directory as freexl does (header, sector
// allocation table, the directory's chain) and refuses a file in which
// anything points outside the file, a chain runs in a circle, or an entry's
// name is longer than its field.
#pragma once

#include <string>

namespace vx::detail {

// True if `path` is a compound file whose directory can be read safely.
bool CompoundFileIsSound(const std::string& path);
// The same for the file's bytes.
bool CompoundFileIsSound(const unsigned char* bytes, std::size_t size);

} // namespace vx::detail
