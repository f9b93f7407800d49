#include "platform/dao/sqlite/excelread_p.h"

#include "platform/dao/sqlite/compoundfile_p.h"

#include <freexl.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace vx::detail {
namespace {

constexpr unsigned int kMaxRows = 65536;
constexpr unsigned short kMaxColumns = 256;
// Cells a workbook may ask to be looked at, empty or not: 64 full sheets.
constexpr std::uint64_t kMaxCellVisits = std::uint64_t(64) * kMaxRows * kMaxColumns;

template <class T>
void Put(std::string& out, T value)
{
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    out.append(bytes, sizeof(T));
}

void PutText(std::string& out, const std::string& text)
{
    Put<std::uint32_t>(out, static_cast<std::uint32_t>(text.size()));
    out += text;
}

class Reader {
public:
    explicit Reader(const std::string& wire) : m_wire(wire) {}
    bool AtEnd() const { return m_pos == m_wire.size(); }
    template <class T>
    bool Get(T& value)
    {
        if (m_wire.size() - m_pos < sizeof(T))
            return false;
        std::memcpy(&value, m_wire.data() + m_pos, sizeof(T));
        m_pos += sizeof(T);
        return true;
    }
    bool GetText(std::string& text)
    {
        std::uint32_t length = 0;
        if (!Get(length) || m_wire.size() - m_pos < length)
            return false;
        text.assign(m_wire, m_pos, length);
        m_pos += length;
        return true;
    }

private:
    const std::string& m_wire;
    std::size_t m_pos = 0;
};

// In the child: the workbook through freexl, encoded.
bool ReadWithFreexl(const std::string& path, std::string& wire)
{
    const void* book = nullptr;
    if (freexl_open(path.c_str(), &book) != FREEXL_OK)
        return false;
    std::vector<WorkbookSheet> sheets;
    std::uint64_t visits = 0;
    unsigned int count = 0;
    bool ok = freexl_get_info(book, FREEXL_BIFF_SHEET_COUNT, &count) == FREEXL_OK;
    for (unsigned int i = 0; ok && i < count && i <= 0xFFFF; ++i) {
        const auto index = static_cast<unsigned short>(i);
        const char* name = nullptr;
        if (freexl_get_worksheet_name(book, index, &name) != FREEXL_OK ||
            freexl_select_active_worksheet(book, index) != FREEXL_OK) {
            ok = false;
            break;
        }
        WorkbookSheet sheet;
        sheet.name = name ? name : "";
        unsigned int rows = 0;
        unsigned short cols = 0;
        freexl_worksheet_dimensions(book, &rows, &cols);
        // A sheet holds at most 65,536 rows of 256 columns; a damaged
        // dimension beyond that is refused rather than walked.
        visits += std::uint64_t(rows) * cols;
        if (rows > kMaxRows || cols > kMaxColumns || visits > kMaxCellVisits) {
            ok = false;
            break;
        }
        sheet.rows = rows;
        sheet.cols = cols;
        for (unsigned int r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < cols; ++c) {
                FreeXL_CellValue value{};
                if (freexl_get_cell_value(book, r, c, &value) != FREEXL_OK)
                    continue;
                WorkbookCell cell;
                cell.row = r;
                cell.col = c;
                switch (value.type) {
                case FREEXL_CELL_INT:
                    cell.number = value.value.int_value;
                    break;
                case FREEXL_CELL_DOUBLE:
                    cell.number = value.value.double_value;
                    break;
                case FREEXL_CELL_DATE:
                case FREEXL_CELL_DATETIME:
                case FREEXL_CELL_TIME:
                    cell.type = WorkbookCell::Date;
                    cell.text = value.value.text_value ? value.value.text_value : "";
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                    cell.type = WorkbookCell::Text;
                    cell.text = value.value.text_value ? value.value.text_value : "";
                    break;
                default:
                    continue;
                }
                sheet.cells.push_back(std::move(cell));
            }
        }
        sheets.push_back(std::move(sheet));
    }
    freexl_close(book);
    if (ok)
        wire = EncodeWorkbook(sheets);
    return ok;
}

bool WriteAll(int fd, const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

std::string EncodeWorkbook(const std::vector<WorkbookSheet>& sheets)
{
    std::string wire;
    for (const WorkbookSheet& sheet : sheets) {
        wire += 'S';
        PutText(wire, sheet.name);
        Put(wire, sheet.rows);
        Put(wire, sheet.cols);
        for (const WorkbookCell& cell : sheet.cells) {
            wire += 'C';
            Put(wire, cell.row);
            Put(wire, cell.col);
            wire += static_cast<char>(cell.type);
            if (cell.type == WorkbookCell::Number)
                Put(wire, cell.number);
            else
                PutText(wire, cell.text);
        }
    }
    wire += 'E';
    return wire;
}

bool DecodeWorkbook(const std::string& wire, std::vector<WorkbookSheet>& sheets)
{
    sheets.clear();
    Reader in(wire);
    for (;;) {
        char tag = 0;
        if (!in.Get(tag))
            return false;
        if (tag == 'E')
            return in.AtEnd();
        if (tag == 'S') {
            WorkbookSheet sheet;
            if (!in.GetText(sheet.name) || !in.Get(sheet.rows) || !in.Get(sheet.cols))
                return false;
            sheets.push_back(std::move(sheet));
            continue;
        }
        WorkbookCell cell;
        char type = 0;
        if (tag != 'C' || sheets.empty() || !in.Get(cell.row) || !in.Get(cell.col) || !in.Get(type))
            return false;
        WorkbookSheet& sheet = sheets.back();
        // In order and inside the sheet's dimensions, as the child reads them.
        const bool ordered = sheet.cells.empty() || sheet.cells.back().row < cell.row ||
                             (sheet.cells.back().row == cell.row && sheet.cells.back().col < cell.col);
        if (!ordered || cell.row >= sheet.rows || cell.col >= sheet.cols)
            return false;
        cell.type = static_cast<WorkbookCell::Type>(type);
        if (type == WorkbookCell::Number) {
            if (!in.Get(cell.number))
                return false;
        } else if (type == WorkbookCell::Date || type == WorkbookCell::Text) {
            if (!in.GetText(cell.text))
                return false;
        } else {
            return false;
        }
        sheet.cells.push_back(std::move(cell));
    }
}

bool ReadWorkbook(const std::string& path, std::vector<WorkbookSheet>& sheets)
{
    // The compound file's directory is checked here too: a damaged one is
    // refused at once, the same in every build.
    if (!CompoundFileIsSound(path))
        return false;
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0)
        return false;
    const pid_t child = fork();
    if (child < 0) {
        close(pipeFds[0]);
        close(pipeFds[1]);
        return false;
    }
    if (child == 0) {
        // Only freexl and the write run here; _exit skips the parent's
        // handlers and destructors.
        close(pipeFds[0]);
        signal(SIGPIPE, SIG_DFL);
        std::string wire;
        const bool ok = ReadWithFreexl(path, wire) && WriteAll(pipeFds[1], wire);
        _exit(ok ? 0 : 1);
    }
    close(pipeFds[1]);
    std::string wire;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = read(pipeFds[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        wire.append(buffer, static_cast<std::size_t>(n));
    }
    close(pipeFds[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 && DecodeWorkbook(wire, sheets);
}

} // namespace vx::detail
