// Internal; do not include directly.
//
// The cells of an existing workbook (.xls, BIFF 5 to 8), read through
// freexl in a child process. freexl reads past its buffers on some damaged
// workbooks, and a workbook is outside input: in a child, whatever a hostile
// file makes freexl do stays there. The child hands the cells over a pipe;
// one that fails, dies or hands over anything malformed makes the workbook
// "not in the expected format".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx::detail {

struct WorkbookCell {
    enum Type : char { Number = 'N', Date = 'D', Text = 'T' };
    std::uint32_t row = 0;
    std::uint16_t col = 0;
    Type type = Number;
    double number = 0;  // Number
    std::string text;   // Date ("YYYY-MM-DD", "YYYY-MM-DD HH:MM:SS", "HH:MM:SS") and Text, in UTF-8
};

struct WorkbookSheet {
    std::string name; // UTF-8
    std::uint32_t rows = 0;
    std::uint16_t cols = 0;
    std::vector<WorkbookCell> cells; // the cells that hold something, by row, then column
};

// False if `path` is no workbook freexl reads, or the reading failed.
bool ReadWorkbook(const std::string& path, std::vector<WorkbookSheet>& sheets);

// The wire between child and parent: per sheet 'S', the name's length (4
// bytes) and bytes, rows (4) and columns (2); per cell 'C', row (4), column
// (2), the type, and a double (8) or a text's length (4) and bytes; 'E' at
// the end. Numbers little-endian. Decode is false for anything else.
std::string EncodeWorkbook(const std::vector<WorkbookSheet>& sheets);
bool DecodeWorkbook(const std::string& wire, std::vector<WorkbookSheet>& sheets);

} // namespace vx::detail
