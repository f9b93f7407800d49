// KXListCtrl: copy, cut and paste of blocks, and the parent's writing of cells.
#include "lists/kxlistctrl_p.h"

#include "base/stringlist.h"
#include "base/vxmessagebox.h"
#include "platform/framework/codepage.h"
#include "platform/framework/globalmemory.h"
#include "platform/framework/mbstring.h"
#include "ui/clipboard/clipboard.h"
#include "ui/clipboard/coledataobject.h"
#include "ui/clipboard/coledatasource.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

const char* const kToken = "VXXLIST";
// Cell texts are taken to be 100 bytes at most; pasted fields are cut there.
constexpr int kCellLimit = 100;

// A block of memory as the clipboard takes it: the text and its zero.
HGLOBAL Block(const std::string& text, std::size_t atLeast)
{
    const std::size_t size = std::max(atLeast, text.size() + 1);
    HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_DDESHARE, size);
    if (!h)
        return nullptr;
    std::memcpy(GlobalLock(h), text.c_str(), text.size() + 1);
    GlobalUnlock(h);
    return h;
}

HGLOBAL UnicodeBlock(const std::string& codePage)
{
    const std::string utf8 = vx::ToUtf8(codePage);
    const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    return vx::GlobalCopyOf(text.utf16(), static_cast<SIZE_T>(text.size() + 1) * 2);
}

std::string_view Next(std::string_view& rest, char sep)
{
    const std::size_t at = rest.find(sep);
    const std::string_view field = rest.substr(0, at);
    rest = at == std::string_view::npos ? std::string_view() : rest.substr(at + 1);
    return field;
}

} // namespace

int KXListCtrl::ModifyItemText(int row, int col, CString* text)
{
    return d->ModifyText(row, col, text ? static_cast<const char*>(*text) : "");
}

int KXListCtrl::Private::ModifyText(int row, int col, const char* fresh)
{
    if (col >= (header.m_hWnd ? header.GetItemCount() : 0) || row >= Count())
        return 0;
    if (_mbscoll(fresh, q.ItemTextInPlace(row, col)) == 0)
        return 1; // nothing changes, nothing is sent
    vx::lists::XRow* records = RowOf(row);
    if (!records || records->count < 1)
        return 1;
    XLISTCTRLDATA* first = &records->cells[0];
    if (col >= 0 && (col >= records->count || !records->cells[static_cast<std::size_t>(col)].bCellEditable))
        return 0;
    const bool wasModified = first->bModified;
    first->bModified = TRUE;
    listModified = TRUE;
    if (!wasModified)
        q.UpdateItem(row); // the whole row takes the modified colour
    XLISTCTRL_CHANGE change{row, col, &q, 0};
    if (CWnd* parent = q.GetParent())
        parent->SendMessage(WM_XLISTCTRL_SETTEXT, reinterpret_cast<WPARAM>(&change), reinterpret_cast<LPARAM>(fresh));
    return 1;
}

void KXListCtrl::ZellenKopieren()
{
    int r1, r2, c1, c2;
    if (!d->selection.GetFirst(r1, r2, c1, c2))
        return;
    const bool rows = d->selection.GetMode() == CellSelection::Rows;
    const long long width = rows ? 1 : static_cast<long long>(c2) - c1 + 1;
    const long long height = static_cast<long long>(r2) - r1 + 1;
    const std::size_t buffer = static_cast<std::size_t>(width * height * 101 + 20);
    CWnd* parent = GetParent();
    if (rows) {
        if (!parent || !parent->SendMessage(WM_XLISTCTRL_CANCOPY, static_cast<WPARAM>(r1), r2)) {
            VxAfxMessageBox(6728, MB_OK, 0);
            return;
        }
    }
    COleDataSource source;
    CString head;
    if (rows) {
        parent->SendMessage(WM_XLISTCTRL_COPYROWS, static_cast<WPARAM>(r1), r2);
        head.Format("%s#%d#%d#%d", kToken, 2, r1, r2);
        source.CacheGlobalData(CF_TEXT, Block(std::string(head), buffer));
        source.SetClipboard();
        return;
    }
    head.Format("%s#%d#%d#%d", kToken, 1, static_cast<int>(width), static_cast<int>(height));
    // The block for the suite, and the same cells as tab separated lines
    // for other programs.
    std::string block(head);
    std::string lines;
    block.reserve(static_cast<std::size_t>(width * height * 9));
    lines.reserve(block.capacity());
    for (int r = r1; r <= r2; ++r) {
        for (int c = c1; c <= c2; ++c) {
            const CString text = GetItemText(r, c);
            block += '#';
            block.append(text, static_cast<std::size_t>(text.GetLength()));
            if (c > c1)
                lines += '\t';
            lines.append(text, static_cast<std::size_t>(text.GetLength()));
        }
        lines += "\r\n";
    }
    source.CacheGlobalData(CF_TEXT, Block(block, buffer));
    source.CacheGlobalData(CF_UNICODETEXT, UnicodeBlock(lines));
    source.SetClipboard();
}

void KXListCtrl::ZellenLoeschen(int copyFirst)
{
    if (copyFirst)
        ZellenKopieren();
    int r1, r2, c1, c2;
    if (!d->selection.GetFirst(r1, r2, c1, c2))
        return;
    if (d->selection.GetMode() == CellSelection::Rows) {
        if (CWnd* parent = GetParent())
            parent->SendMessage(WM_XLISTCTRL_DELETEROWS, static_cast<WPARAM>(r1), r2);
        return;
    }
    if (d->selection.GetMode() != CellSelection::Cells || c1 < 0 || c2 >= GetColumns())
        return;
    const std::shared_ptr<bool> alive = d->alive;
    CString empty;
    for (int r = r1; r <= r2 && *alive; ++r) {
        for (int c = c1; c <= c2 && *alive; ++c)
            ModifyItemText(r, c, &empty);
    }
}

void KXListCtrl::ZellenEinfuegen(int firstRow, int lastRow, int firstCol, int lastCol)
{
    int r1 = firstRow;
    int r2 = lastRow;
    int c1 = firstCol;
    int c2 = lastCol;
    if (firstRow == -1 && lastRow == -1 && firstCol == -1 && lastCol == -1) {
        if (!d->selection.GetFirst(r1, r2, c1, c2)) {
            // No selection: the row past the end, which exists only if the
            // parent adds it.
            d->selection.SetMode(CellSelection::None);
            r1 = r2 = d->Count();
            c1 = c2 = 0;
        }
    } else {
        if (r1 > r2)
            std::swap(r1, r2);
        if (c1 > c2)
            std::swap(c1, c2);
    }
    COleDataObject data;
    if (!data.AttachClipboard() || !data.IsDataAvailable(CF_TEXT))
        return;
    HGLOBAL h = data.GetGlobalData(CF_TEXT);
    if (!h)
        return;
    const auto* bytes = static_cast<const char*>(GlobalLock(h));
    // A C string to its first zero, within the block whatever it holds.
    std::string text(bytes, bytes ? strnlen(bytes, GlobalSize(h)) : 0);
    GlobalUnlock(h);
    GlobalFree(h);

    const std::shared_ptr<bool> alive = d->alive;
    const int targetWidth = c2 - c1 + 1;
    const int targetHeight = r2 - r1 + 1;
    std::string_view rest(text);
    std::string_view probe = rest;
    if (Next(probe, '#') == kToken) {
        Next(rest, '#');
        const int type = std::atoi(std::string(Next(rest, '#')).c_str());
        if (type == 2) {
            if (!d->cellMode) {
                if (CWnd* parent = GetParent())
                    parent->SendMessage(WM_XLISTCTRL_PASTEROWS, static_cast<WPARAM>(r1), 0);
            }
            return;
        }
        if (type != 1 || d->selection.GetMode() == CellSelection::Rows)
            return;
        const long long width = std::atoll(std::string(Next(rest, '#')).c_str());
        const long long height = std::atoll(std::string(Next(rest, '#')).c_str());
        if (width <= 0 || height <= 0)
            return;
        // The cells must be exactly what the header says: width x height
        // fields, each "#" turned into the end of a C string in place.
        const auto size = static_cast<long long>(rest.size());
        if (width > size + 1 || height > size + 1)
            return;
        const long long expected = width * height;
        if (expected > size + 1)
            return;
        // A block of one empty cell ends at its header.
        char* at = rest.empty() ? text.data() + text.size() : text.data() + (rest.data() - text.data());
        char* const end = at + rest.size();
        std::vector<const char*> cells;
        cells.reserve(static_cast<std::size_t>(expected));
        cells.push_back(at);
        while (char* hash = static_cast<char*>(std::memchr(at, '#', static_cast<std::size_t>(end - at)))) {
            if (static_cast<long long>(cells.size()) == expected)
                return;
            *hash = '\0';
            at = hash + 1;
            cells.push_back(at);
        }
        if (static_cast<long long>(cells.size()) != expected)
            return;
        auto cell = [&](long long r, long long c) { return cells[static_cast<std::size_t>(r * width + c)]; };
        if (width == 1 && height == 1) {
            for (int r = r1; r <= r2 && *alive; ++r) {
                d->PrefetchAhead(r);
                for (int c = c1; c <= c2 && *alive; ++c)
                    d->ModifyText(r, c, cell(0, 0));
            }
        } else if (width == targetWidth && height == 1) {
            for (int r = r1; r <= r2 && *alive; ++r) {
                d->PrefetchAhead(r);
                for (int c = 0; c < targetWidth && *alive; ++c)
                    d->ModifyText(r, c1 + c, cell(0, c));
            }
        } else if (width == targetWidth && height == targetHeight) {
            for (int r = 0; r < targetHeight && *alive; ++r) {
                d->PrefetchAhead(r1 + r);
                if (r + 2 < targetHeight) {
                    // The texts of a later line of the block, which the
                    // parse went over long before.
                    __builtin_prefetch(cell(r + 2, 0));
                    __builtin_prefetch(cell(r + 2, width - 1));
                }
                for (int c = 0; c < targetWidth && *alive; ++c)
                    d->ModifyText(r1 + r, c1 + c, cell(r, c));
            }
        } else {
            VxAfxMessageBox(6727, MB_ICONEXCLAMATION, 0);
        }
        return;
    }

    if (text.find('\t') == std::string::npos && text.find('\n') == std::string::npos) {
        const std::string value = text.substr(0, kCellLimit);
        for (int r = r1; r <= r2 && *alive; ++r) {
            d->PrefetchAhead(r);
            for (int c = c1; c <= c2 && *alive; ++c)
                d->ModifyText(r, c, value.c_str());
        }
        return;
    }

    // Lines and fields. A row whose cell refuses is passed over, and every
    // following line moves down with it.
    int skip = 0;
    int line = 0;
    std::string cell; // one buffer for every field
    while (!rest.empty() && *alive) {
        d->PrefetchAhead(r1 + line + skip);
        const std::size_t end = rest.find("\r\n");
        std::string_view fields = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 2);
        int field = 0;
        while (*alive) {
            const std::size_t tab = fields.find('\t');
            const std::string_view value = fields.substr(0, tab);
            const int col = c1 + field;
            if (!value.empty() && col < GetColumns()) {
                cell.assign(value.substr(0, kCellLimit));
                for (;;) {
                    const int row = r1 + line + skip;
                    if (row >= d->Count() || (targetHeight > 1 && row > r2))
                        return;
                    if (d->ModifyText(row, col, cell.c_str()) || !*alive)
                        break;
                    ++skip;
                }
            }
            if (tab == std::string_view::npos)
                break;
            fields = fields.substr(tab + 1);
            ++field;
        }
        if (!*alive)
            return; // the parent destroyed the list
        ++line;
        const int next = r1 + line + skip;
        if (next >= d->Count() || (targetHeight > 1 && next > r2))
            return;
    }
}
