#include "ui/controls/cedit.h"

#include "ui/controls/controlsupport_p.h"
#include "ui/controls/scrollbarpart_p.h"
#include "ui/controls/cscrollbar.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/windows/qtinterop.h"

#include "platform/windows/sysmetrics.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

namespace {

using namespace vx::controls;


constexpr UINT_PTR kBlinkTimer = 0x7F20;
constexpr UINT kBlinkTime = 530;
constexpr int kMargin = 2;
constexpr int kTabWidth = 32;
constexpr int kNoLimit = 0x7FFFFFFE;

bool IsWordByte(unsigned char c)
{
    return c > ' ' && c != 0x7F;
}

} // namespace

struct CEdit::Private {
    explicit Private(CEdit& edit) : w(edit) {}

    struct Line {
        int start;
        int length;
    };

    CEdit& w;
    std::string text;
    int caret = 0;
    int anchor = 0;
    int limit = kNoLimit;
    bool modified = false;
    char password = 0;
    bool focused = false;
    bool caretShown = false;
    bool tracking = false;
    int preferredX = -1;
    int firstLine = 0;
    int scrollX = 0;
    std::vector<Line> lines;
    HFONT widthFont = nullptr;
    int widths[256] = {};
    int lineHeight = 13;
    // One level of undo: the text and selection before the last action.
    bool canUndo = false;
    bool typing = false;
    std::string undoText;
    int undoCaret = 0;
    int undoAnchor = 0;
    ScrollBarPart bar;

    DWORD Style() const { return w.GetStyle(); }
    bool Multi() const { return Style() & ES_MULTILINE; }
    bool ReadOnly() const { return Style() & ES_READONLY; }
    bool Wraps() const { return Multi() && !(Style() & (ES_AUTOHSCROLL | WS_HSCROLL)); }
    int SelStart() const { return std::min(caret, anchor); }
    int SelEnd() const { return std::max(caret, anchor); }
    bool HasSel() const { return caret != anchor; }

    void Measure()
    {
        HFONT font = FontOf(w);
        if (font == widthFont && widthFont)
            return;
        widthFont = font;
        CClientDC dc(&w);
        HGDIOBJ old = ::SelectObject(dc, font);
        for (int c = 0; c < 256; ++c) {
            const char ch = static_cast<char>(c);
            widths[c] = c == 0 ? 0 : dc.GetTextExtent(&ch, 1).cx;
        }
        TEXTMETRICA tm{};
        dc.GetTextMetrics(&tm);
        lineHeight = tm.tmHeight > 0 ? tm.tmHeight : 13;
        ::SelectObject(dc, old);
    }

    unsigned char Shown(int i) const
    {
        return static_cast<unsigned char>(password ? password : text[static_cast<std::size_t>(i)]);
    }

    int CharWidth(int i, int x) const
    {
        const unsigned char c = Shown(i);
        if (c == '\t' && Multi())
            return kTabWidth - x % kTabWidth;
        return widths[c];
    }

    // The x of position `pos` in a line that starts at `lineStart`.
    int XOf(int lineStart, int pos) const
    {
        int x = 0;
        for (int i = lineStart; i < pos; ++i)
            x += CharWidth(i, x);
        return x;
    }

    int Span(int lineStart, int from, int to) const { return XOf(lineStart, to) - XOf(lineStart, from); }

    CRect Client() const
    {
        CRect r;
        w.GetClientRect(&r);
        return r;
    }

    CRect BarRect() const
    {
        if (!Multi() || !(Style() & WS_VSCROLL))
            return CRect();
        CRect r = Client();
        r.left = std::max(r.left, r.right - ScrollBarWidth());
        return r;
    }

    CRect TextRect() const
    {
        CRect r = Client();
        const CRect barRect = BarRect();
        if (!barRect.IsRectEmpty())
            r.right = barRect.left;
        r.left += kMargin;
        r.right -= kMargin;
        if (!Multi()) {
            const int extra = r.Height() - lineHeight;
            r.top += std::max(0, extra / 2);
            r.bottom = r.top + lineHeight;
        } else {
            r.top += 1;
        }
        return r;
    }

    int VisibleLines() const { return std::max(1, TextRect().Height() / std::max(1, lineHeight)); }

    // How many characters from `from` fit in `width`, broken after a blank
    // when the line must wrap.
    int Fit(int from, int end, int width) const
    {
        int x = 0;
        int lastBreak = -1;
        for (int i = from; i < end; ++i) {
            const int cw = CharWidth(i, x);
            if (x + cw > width && i > from)
                return lastBreak > from ? lastBreak - from : i - from;
            x += cw;
            if (text[static_cast<std::size_t>(i)] == ' ' || text[static_cast<std::size_t>(i)] == '\t')
                lastBreak = i + 1;
        }
        return end - from;
    }

    void Layout()
    {
        Measure();
        lines.clear();
        const int n = static_cast<int>(text.size());
        if (!Multi()) {
            lines.push_back(Line{0, n});
            return;
        }
        const int width = Wraps() ? std::max(1, TextRect().Width()) : INT_MAX;
        int i = 0;
        for (;;) {
            const std::size_t found = text.find('\n', static_cast<std::size_t>(i));
            const int hardEnd = found == std::string::npos ? n : static_cast<int>(found);
            int contentEnd = hardEnd;
            if (contentEnd > i && text[static_cast<std::size_t>(contentEnd - 1)] == '\r')
                --contentEnd;
            int s = i;
            do {
                const int length = std::max(std::min(1, contentEnd - s), Fit(s, contentEnd, width));
                lines.push_back(Line{s, length});
                s += length;
            } while (s < contentEnd);
            if (found == std::string::npos)
                break;
            i = hardEnd + 1;
        }
    }

    int LineOf(int pos) const
    {
        int line = 0;
        for (int k = 0; k < static_cast<int>(lines.size()); ++k) {
            if (lines[static_cast<std::size_t>(k)].start <= pos)
                line = k;
            else
                break;
        }
        return line;
    }

    // A position never falls between "\r" and "\n".
    int Normalize(int pos) const
    {
        pos = std::clamp(pos, 0, static_cast<int>(text.size()));
        if (pos > 0 && pos < static_cast<int>(text.size()) && text[static_cast<std::size_t>(pos)] == '\n' &&
            text[static_cast<std::size_t>(pos - 1)] == '\r')
            --pos;
        return pos;
    }

    int LeftOf(int pos) const
    {
        if (pos <= 0)
            return 0;
        if (pos >= 2 && text[static_cast<std::size_t>(pos - 1)] == '\n' && text[static_cast<std::size_t>(pos - 2)] == '\r')
            return pos - 2;
        return pos - 1;
    }

    int RightOf(int pos) const
    {
        const int n = static_cast<int>(text.size());
        if (pos >= n)
            return n;
        if (text[static_cast<std::size_t>(pos)] == '\r' && pos + 1 < n && text[static_cast<std::size_t>(pos + 1)] == '\n')
            return pos + 2;
        return pos + 1;
    }

    int WordLeft(int pos) const
    {
        pos = LeftOf(pos);
        while (pos > 0 && !IsWordByte(static_cast<unsigned char>(text[static_cast<std::size_t>(pos)])))
            pos = LeftOf(pos);
        while (pos > 0 && IsWordByte(static_cast<unsigned char>(text[static_cast<std::size_t>(pos - 1)])))
            --pos;
        return pos;
    }

    int WordRight(int pos) const
    {
        const int n = static_cast<int>(text.size());
        while (pos < n && IsWordByte(static_cast<unsigned char>(text[static_cast<std::size_t>(pos)])))
            ++pos;
        while (pos < n && !IsWordByte(static_cast<unsigned char>(text[static_cast<std::size_t>(pos)])))
            pos = RightOf(pos);
        return pos;
    }

    int AlignOffset(const Line& line) const
    {
        if (Multi())
            return 0;
        const int width = TextRect().Width();
        const int used = XOf(line.start, line.start + line.length);
        if (Style() & ES_CENTER)
            return std::max(0, (width - used) / 2);
        if (Style() & ES_RIGHT)
            return std::max(0, width - used);
        return 0;
    }

    int HitTest(CPoint p) const
    {
        if (lines.empty())
            return 0;
        const CRect r = TextRect();
        int index = Multi() ? firstLine + (p.y - r.top) / std::max(1, lineHeight) : 0;
        if (p.y < r.top && Multi())
            index = firstLine - 1;
        index = std::clamp(index, 0, static_cast<int>(lines.size()) - 1);
        const Line& line = lines[static_cast<std::size_t>(index)];
        const int target = p.x - r.left + scrollX - AlignOffset(line);
        int x = 0;
        for (int i = line.start; i < line.start + line.length; ++i) {
            const int cw = CharWidth(i, x);
            if (target < x + cw / 2)
                return i;
            x += cw;
        }
        return line.start + line.length;
    }

    void EnsureCaretVisible()
    {
        if (lines.empty())
            return;
        const int line = LineOf(caret);
        if (Multi()) {
            const int visible = VisibleLines();
            if (line < firstLine)
                firstLine = line;
            else if (line >= firstLine + visible)
                firstLine = line - visible + 1;
        }
        if (Wraps())
            return;
        const CRect r = TextRect();
        const int width = std::max(1, r.Width());
        const Line& l = lines[static_cast<std::size_t>(line)];
        const int x = XOf(l.start, caret);
        if (x - scrollX >= width)
            scrollX = x - width + width / 4 + 1;
        else if (x < scrollX)
            scrollX = std::max(0, x - width / 4);
        const int total = XOf(l.start, l.start + l.length);
        if (!Multi() && total - scrollX < width && scrollX > 0)
            scrollX = std::max(0, total - width + 1);
    }

    void Refresh(bool scroll = true)
    {
        Layout();
        if (scroll)
            EnsureCaretVisible();
        w.Invalidate(FALSE);
    }

    void SaveUndo()
    {
        undoText = text;
        undoCaret = caret;
        undoAnchor = anchor;
        canUndo = true;
    }

    // The text changed: the window table learns it, and the parent hears
    // EN_UPDATE before the control shows it and EN_CHANGE after.
    void Changed(bool notify = true)
    {
        modified = true;
        vx::SetWindowTitle(w.m_hWnd, text.c_str());
        Refresh();
        const HWND self = w.m_hWnd;
        if (!notify)
            return;
        Notify(w, EN_UPDATE);
        if (!IsWindow(self))
            return;
        w.UpdateWindow();
        Notify(w, EN_CHANGE);
    }

    std::string Filter(std::string insert) const
    {
        if (!Multi()) {
            const std::size_t cut = insert.find_first_of("\r\n");
            if (cut != std::string::npos)
                insert.erase(cut);
        } else {
            // Line breaks are kept as "\r\n", whatever the source used.
            std::string out;
            for (std::size_t i = 0; i < insert.size(); ++i) {
                const char c = insert[i];
                if (c == '\r') {
                    out += "\r\n";
                    if (i + 1 < insert.size() && insert[i + 1] == '\n')
                        ++i;
                } else if (c == '\n') {
                    out += "\r\n";
                } else {
                    out += c;
                }
            }
            insert.swap(out);
        }
        if (Style() & ES_UPPERCASE)
            std::transform(insert.begin(), insert.end(), insert.begin(),
                           [](char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; });
        if (Style() & ES_LOWERCASE)
            std::transform(insert.begin(), insert.end(), insert.begin(),
                           [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; });
        return insert;
    }

    // Puts `insert` in place of the selection, within the limit. Returns
    // whether the text changed.
    bool Replace(std::string insert, bool undoable, bool notify = true)
    {
        insert = Filter(std::move(insert));
        const int start = SelStart();
        const int end = SelEnd();
        const long long room = static_cast<long long>(limit) - (static_cast<long long>(text.size()) - (end - start));
        bool cut = false;
        if (static_cast<long long>(insert.size()) > room) {
            insert.resize(static_cast<std::size_t>(std::max(0LL, room)));
            if (!insert.empty() && insert.back() == '\r')
                insert.pop_back();
            cut = true;
        }
        if (!Multi() && !(Style() & ES_AUTOHSCROLL) && !insert.empty()) {
            // Without ES_AUTOHSCROLL a line never grows past the control.
            std::string trial = text;
            trial.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start), insert);
            int width = 0;
            for (unsigned char c : trial)
                width += widths[password ? static_cast<unsigned char>(password) : c];
            if (width > TextRect().Width()) {
                Notify(w, EN_MAXTEXT);
                return false;
            }
        }
        if (insert.empty() && start == end) {
            if (cut)
                Notify(w, EN_MAXTEXT);
            return false;
        }
        if (undoable && !typing)
            SaveUndo();
        text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start), insert);
        caret = anchor = start + static_cast<int>(insert.size());
        preferredX = -1;
        const HWND self = w.m_hWnd;
        if (cut)
            Notify(w, EN_MAXTEXT);
        if (IsWindow(self))
            Changed(notify);
        return true;
    }

    void MoveCaret(int pos, bool extend)
    {
        caret = Normalize(pos);
        if (!extend)
            anchor = caret;
        typing = false;
        Refresh();
    }

    void Select(int start, int end)
    {
        const int n = static_cast<int>(text.size());
        if (start == -1) {
            anchor = caret;
        } else {
            start = std::clamp(start, 0, n);
            end = end < 0 ? n : std::clamp(end, 0, n);
            anchor = Normalize(start);
            caret = Normalize(end);
        }
        typing = false;
        preferredX = -1;
    }

    void CopySelection() const
    {
        if (!HasSel() || password)
            return;
        if (QClipboard* board = QGuiApplication::clipboard())
            board->setText(vx::ToQString(text.data() + SelStart(), SelEnd() - SelStart()));
    }

    void PasteText()
    {
        QClipboard* board = QGuiApplication::clipboard();
        if (!board || ReadOnly())
            return;
        const CString bytes = vx::FromQString(board->text());
        typing = false;
        Replace(std::string(bytes.GetString(), static_cast<std::size_t>(bytes.GetLength())), true);
    }

    void DeleteSelection()
    {
        if (HasSel() && !ReadOnly()) {
            typing = false;
            Replace(std::string(), true);
        }
    }

    bool UndoLast()
    {
        if (!canUndo)
            return false;
        std::swap(text, undoText);
        std::swap(caret, undoCaret);
        std::swap(anchor, undoAnchor);
        typing = false;
        Changed();
        return true;
    }

    void VerticalMove(int lines_, bool extend)
    {
        if (lines.empty())
            return;
        const int line = LineOf(caret);
        const Line& from = lines[static_cast<std::size_t>(line)];
        if (preferredX < 0)
            preferredX = XOf(from.start, caret);
        const int target = std::clamp(line + lines_, 0, static_cast<int>(lines.size()) - 1);
        const Line& to = lines[static_cast<std::size_t>(target)];
        int x = 0;
        int pos = to.start + to.length;
        for (int i = to.start; i < to.start + to.length; ++i) {
            const int cw = CharWidth(i, x);
            if (preferredX < x + cw / 2) {
                pos = i;
                break;
            }
            x += cw;
        }
        const int keep = preferredX;
        MoveCaret(pos, extend);
        preferredX = keep;
    }

    void KeyDown(UINT key)
    {
        const bool shift = vx::controls::KeyDown(VK_SHIFT);
        const bool ctrl = vx::controls::KeyDown(VK_CONTROL);
        const int n = static_cast<int>(text.size());
        switch (key) {
        case VK_LEFT:
            if (HasSel() && !shift)
                MoveCaret(SelStart(), false);
            else
                MoveCaret(ctrl ? WordLeft(caret) : LeftOf(caret), shift);
            break;
        case VK_RIGHT:
            if (HasSel() && !shift)
                MoveCaret(SelEnd(), false);
            else
                MoveCaret(ctrl ? WordRight(caret) : RightOf(caret), shift);
            break;
        case VK_HOME:
            MoveCaret(ctrl || lines.empty() ? 0 : lines[static_cast<std::size_t>(LineOf(caret))].start, shift);
            break;
        case VK_END:
            if (ctrl || lines.empty()) {
                MoveCaret(n, shift);
            } else {
                const Line& l = lines[static_cast<std::size_t>(LineOf(caret))];
                MoveCaret(l.start + l.length, shift);
            }
            break;
        case VK_UP:
            if (Multi())
                VerticalMove(-1, shift);
            break;
        case VK_DOWN:
            if (Multi())
                VerticalMove(1, shift);
            break;
        case VK_PRIOR:
            if (Multi())
                VerticalMove(-VisibleLines(), shift);
            break;
        case VK_NEXT:
            if (Multi())
                VerticalMove(VisibleLines(), shift);
            break;
        case VK_DELETE:
            if (ReadOnly())
                break;
            if (shift) {
                CopySelection();
                DeleteSelection();
            } else if (HasSel()) {
                DeleteSelection();
            } else if (caret < n) {
                typing = false;
                anchor = RightOf(caret);
                Replace(std::string(), true);
            }
            break;
        case VK_INSERT:
            if (ctrl)
                CopySelection();
            else if (shift)
                PasteText();
            break;
        default:
            if (!ctrl || vx::controls::KeyDown(VK_MENU))
                break;
            if (key == 'C') {
                CopySelection();
            } else if (key == 'X') {
                if (!ReadOnly()) {
                    CopySelection();
                    DeleteSelection();
                }
            } else if (key == 'V') {
                PasteText();
            } else if (key == 'Z') {
                UndoLast();
            } else if (key == 'A') {
                Select(0, -1);
                Refresh();
            }
            break;
        }
    }

    void Char(UINT ch)
    {
        if (ReadOnly())
            return;
        if (ch == VK_BACK) {
            if (HasSel()) {
                typing = false;
                Replace(std::string(), true);
            } else if (caret > 0) {
                if (!typing)
                    SaveUndo();
                typing = true;
                anchor = LeftOf(caret);
                Replace(std::string(), true);
            }
            return;
        }
        std::string insert;
        if (ch == '\r' || ch == '\n') {
            if (!Multi())
                return;
            insert = "\r\n";
        } else if (ch == '\t') {
            if (!Multi())
                return;
            insert = "\t";
        } else if (ch < 0x20 || ch == 0x7F || ch > 0xFF) {
            return; // control characters come with the keys that act on them
        } else {
            if ((Style() & ES_NUMBER) && (ch < '0' || ch > '9'))
                return;
            insert = std::string(1, static_cast<char>(ch));
        }
        if (!typing)
            SaveUndo();
        typing = true;
        Replace(insert, true);
        typing = true;
    }

    void DrawLine(CDC& dc, const Line& line, int x, int y, bool showSel, COLORREF textColor)
    {
        const int selA = showSel ? std::max(SelStart(), line.start) : 0;
        const int selB = showSel ? std::min(SelEnd(), line.start + line.length) : 0;
        auto run = [&](int from, int to, bool selected) {
            if (from >= to)
                return;
            std::string shown;
            for (int i = from; i < to; ++i)
                shown += static_cast<char>(Shown(i));
            const int start = x + Span(line.start, line.start, from);
            const int width = Span(line.start, from, to);
            if (selected) {
                dc.FillSolidRect(start, y, width, lineHeight, GetSysColor(COLOR_HIGHLIGHT));
                dc.SetTextColor(GetSysColor(COLOR_HIGHLIGHTTEXT));
            } else {
                dc.SetTextColor(textColor);
            }
            // Tabs are spaces drawn by the layout, not by the font.
            int at = start;
            std::size_t piece = 0;
            for (std::size_t k = 0; k <= shown.size(); ++k) {
                if (k == shown.size() || shown[k] == '\t') {
                    if (k > piece)
                        dc.TextOut(at, y, shown.data() + piece, static_cast<int>(k - piece));
                    if (k == shown.size())
                        break;
                    at = x + Span(line.start, line.start, from + static_cast<int>(k) + 1);
                    piece = k + 1;
                }
            }
        };
        if (selA < selB) {
            run(line.start, selA, false);
            run(selA, selB, true);
            run(selB, line.start + line.length, false);
        } else {
            run(line.start, line.start + line.length, false);
        }
    }

    void Paint()
    {
        CPaintDC dc(&w);
        Measure();
        if (lines.empty())
            Layout();
        const bool grey = ReadOnly() || !w.IsWindowEnabled();
        HBRUSH brush = ParentColors(w, dc, grey ? WM_CTLCOLORSTATIC : WM_CTLCOLOREDIT, COLOR_WINDOWTEXT,
                                    grey ? COLOR_BTNFACE : COLOR_WINDOW);
        COLORREF textColor = dc.GetTextColor();
        if (!w.IsWindowEnabled())
            textColor = GetSysColor(COLOR_GRAYTEXT);
        CRect client = Client();
        ::FillRect(dc, &client, brush);
        CRect inner(client);
        const CRect barRect = BarRect();
        if (!barRect.IsRectEmpty()) {
            bar.vertical = true;
            bar.rect = barRect;
            bar.min = 0;
            bar.max = std::max(0, static_cast<int>(lines.size()) - 1);
            bar.page = VisibleLines();
            bar.pos = firstLine;
            bar.enabled = w.IsWindowEnabled() != FALSE;
            bar.Paint(dc);
        }
        const CRect r = TextRect();
        const int saved = dc.SaveDC();
        dc.IntersectClipRect(r.left - kMargin, r.top, r.right + kMargin, Multi() ? inner.bottom : r.bottom);
        HGDIOBJ oldFont = ::SelectObject(dc, FontOf(w));
        dc.SetBkMode(TRANSPARENT);
        const bool showSel = HasSel() && (focused || (Style() & ES_NOHIDESEL));
        const int last = Multi() ? std::min(static_cast<int>(lines.size()), firstLine + VisibleLines() + 1)
                                 : static_cast<int>(lines.size());
        for (int k = Multi() ? firstLine : 0; k < last; ++k) {
            const Line& line = lines[static_cast<std::size_t>(k)];
            const int y = r.top + (k - (Multi() ? firstLine : 0)) * lineHeight;
            DrawLine(dc, line, r.left - scrollX + AlignOffset(line), y, showSel, textColor);
        }
        if (focused && caretShown) {
            const int line = LineOf(caret);
            if (!Multi() || (line >= firstLine && line < firstLine + VisibleLines())) {
                const Line& l = lines[static_cast<std::size_t>(line)];
                const int x = r.left - scrollX + AlignOffset(l) + XOf(l.start, caret);
                const int y = r.top + (line - (Multi() ? firstLine : 0)) * lineHeight;
                dc.FillSolidRect(x, y, 1, lineHeight, textColor);
            }
        }
        ::SelectObject(dc, oldFont);
        dc.RestoreDC(saved);
    }

    void ScrollLines(int count)
    {
        const int maxFirst = std::max(0, static_cast<int>(lines.size()) - VisibleLines());
        const int now = std::clamp(firstLine + count, 0, maxFirst);
        if (now != firstLine) {
            firstLine = now;
            w.Invalidate(FALSE);
            Notify(w, EN_VSCROLL);
        }
    }
};

CEdit::CEdit() : d(std::make_unique<Private>(*this)) {}

CEdit::~CEdit() = default;

BOOL CEdit::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "Edit", style, rect, parent, id);
}

DWORD CEdit::GetSel() const
{
    return static_cast<DWORD>(::SendMessageA(m_hWnd, EM_GETSEL, 0, 0));
}

void CEdit::GetSel(int& start, int& end) const
{
    const DWORD sel = GetSel();
    start = LOWORD(sel);
    end = HIWORD(sel);
    if (d->text.size() > 0xFFFF) {
        start = d->SelStart();
        end = d->SelEnd();
    }
}

void CEdit::SetSel(int start, int end, BOOL noScroll)
{
    SendMessage(EM_SETSEL, static_cast<WPARAM>(start), end);
    if (!noScroll)
        SendMessage(EM_SCROLLCARET);
}

void CEdit::SetSel(DWORD selection, BOOL noScroll)
{
    SetSel(static_cast<short>(LOWORD(selection)), static_cast<short>(HIWORD(selection)), noScroll);
}

void CEdit::ReplaceSel(LPCSTR text, BOOL canUndo)
{
    SendMessage(EM_REPLACESEL, static_cast<WPARAM>(canUndo), reinterpret_cast<LPARAM>(text));
}

void CEdit::LimitText(int max)
{
    SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(max));
}

void CEdit::SetLimitText(UINT max)
{
    SendMessage(EM_SETLIMITTEXT, max);
}

UINT CEdit::GetLimitText() const
{
    return static_cast<UINT>(::SendMessageA(m_hWnd, EM_GETLIMITTEXT, 0, 0));
}

BOOL CEdit::GetModify() const
{
    return static_cast<BOOL>(::SendMessageA(m_hWnd, EM_GETMODIFY, 0, 0));
}

void CEdit::SetModify(BOOL modified)
{
    SendMessage(EM_SETMODIFY, static_cast<WPARAM>(modified));
}

BOOL CEdit::SetReadOnly(BOOL readOnly)
{
    return static_cast<BOOL>(SendMessage(EM_SETREADONLY, static_cast<WPARAM>(readOnly)));
}

int CEdit::GetLineCount() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, EM_GETLINECOUNT, 0, 0));
}

int CEdit::LineIndex(int line) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
}

int CEdit::LineLength(int charIndex) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, EM_LINELENGTH, static_cast<WPARAM>(charIndex), 0));
}

int CEdit::LineFromChar(int charIndex) const
{
    return static_cast<int>(::SendMessageA(m_hWnd, EM_LINEFROMCHAR, static_cast<WPARAM>(charIndex), 0));
}

int CEdit::GetLine(int line, LPSTR buffer, int maxLength) const
{
    if (!buffer || maxLength < 2)
        return 0;
    *reinterpret_cast<WORD*>(buffer) = static_cast<WORD>(std::min(maxLength, 0xFFFF));
    return static_cast<int>(::SendMessageA(m_hWnd, EM_GETLINE, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(buffer)));
}

int CEdit::GetFirstVisibleLine() const
{
    return static_cast<int>(::SendMessageA(m_hWnd, EM_GETFIRSTVISIBLELINE, 0, 0));
}

void CEdit::LineScroll(int lines, int chars)
{
    SendMessage(EM_LINESCROLL, static_cast<WPARAM>(chars), lines);
}

void CEdit::SetPasswordChar(char ch)
{
    SendMessage(EM_SETPASSWORDCHAR, static_cast<unsigned char>(ch));
}

char CEdit::GetPasswordChar() const
{
    return static_cast<char>(::SendMessageA(m_hWnd, EM_GETPASSWORDCHAR, 0, 0));
}

BOOL CEdit::CanUndo() const
{
    return static_cast<BOOL>(::SendMessageA(m_hWnd, EM_CANUNDO, 0, 0));
}

BOOL CEdit::Undo()
{
    return static_cast<BOOL>(SendMessage(EM_UNDO));
}

void CEdit::EmptyUndoBuffer()
{
    SendMessage(EM_EMPTYUNDOBUFFER);
}

void CEdit::Clear()
{
    SendMessage(WM_CLEAR);
}

void CEdit::Copy()
{
    SendMessage(WM_COPY);
}

void CEdit::Cut()
{
    SendMessage(WM_CUT);
}

void CEdit::Paste()
{
    SendMessage(WM_PASTE);
}

LRESULT CEdit::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    Private& p = *d;
    const int n = static_cast<int>(p.text.size());
    switch (message) {
    case WM_CREATE:
        if (GetStyle() & ES_PASSWORD)
            p.password = '*';
        p.text = GetWindowTextString().GetString();
        p.Layout();
        return 0;
    case WM_PAINT:
        p.Paint();
        return 0;
    case WM_ERASEBKGND:
        return TRUE;
    case WM_SIZE:
    case WM_SETFONT: {
        const LRESULT r = message == WM_SETFONT ? CWnd::DefWindowProc(message, wParam, lParam) : 0;
        p.widthFont = nullptr;
        p.Refresh();
        return r;
    }
    case WM_SETTEXT: {
        CWnd::DefWindowProc(message, wParam, lParam);
        const char* text = reinterpret_cast<const char*>(lParam);
        p.text = p.Filter(text ? text : "");
        p.caret = p.anchor = 0;
        p.scrollX = 0;
        p.firstLine = 0;
        p.canUndo = false;
        p.typing = false;
        vx::SetWindowTitle(m_hWnd, p.text.c_str());
        p.modified = false;
        p.Refresh();
        if (!p.Multi()) {
            const HWND self = m_hWnd;
            Notify(*this, EN_UPDATE);
            if (IsWindow(self))
                Notify(*this, EN_CHANGE);
        }
        return TRUE;
    }
    case WM_GETDLGCODE: {
        UINT code = DLGC_WANTCHARS | DLGC_HASSETSEL | DLGC_WANTARROWS;
        if (p.Multi()) {
            code |= DLGC_WANTALLKEYS;
            const auto* msg = reinterpret_cast<const MSG*>(lParam);
            if (msg && msg->message == WM_KEYDOWN &&
                (msg->wParam == VK_TAB || msg->wParam == VK_ESCAPE ||
                 (msg->wParam == VK_RETURN && !(GetStyle() & ES_WANTRETURN))))
                code &= ~DLGC_WANTALLKEYS;
        }
        return code;
    }
    case WM_SETFOCUS:
        p.focused = true;
        p.caretShown = true;
        SetTimer(kBlinkTimer, kBlinkTime);
        p.Refresh();
        Notify(*this, EN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        p.focused = false;
        p.caretShown = false;
        p.typing = false;
        KillTimer(kBlinkTimer);
        Invalidate(FALSE);
        Notify(*this, EN_KILLFOCUS);
        return 0;
    case WM_TIMER:
        if (wParam == kBlinkTimer) {
            p.caretShown = !p.caretShown && p.focused;
            Invalidate(FALSE);
        }
        return 0;
    case WM_ENABLE:
        Invalidate(FALSE);
        return 0;
    case WM_KEYDOWN:
        p.caretShown = p.focused;
        p.KeyDown(static_cast<UINT>(wParam));
        return 0;
    case WM_CHAR:
        p.caretShown = p.focused;
        p.Char(static_cast<UINT>(wParam));
        return 0;
    case WM_SETCURSOR: {
        CPoint at;
        GetCursorPos(&at);
        ScreenToClient(&at);
        ::SetCursor(LoadCursorA(nullptr, p.BarRect().PtInRect(at) ? IDC_ARROW : IDC_IBEAM));
        return TRUE;
    }
    case WM_LBUTTONDOWN: {
        const CPoint at = PointOf(lParam);
        if (GetFocus() != this)
            SetFocus();
        const CRect barRect = p.BarRect();
        if (!barRect.IsRectEmpty() && barRect.PtInRect(at)) {
            p.bar.rect = barRect;
            const auto part = p.bar.Press(at);
            if (part == ScrollBarPart::LineUp)
                p.ScrollLines(-1);
            else if (part == ScrollBarPart::LineDown)
                p.ScrollLines(1);
            else if (part == ScrollBarPart::PageUp)
                p.ScrollLines(-p.VisibleLines());
            else if (part == ScrollBarPart::PageDown)
                p.ScrollLines(p.VisibleLines());
            if (part == ScrollBarPart::Thumb)
                SetCapture();
            else
                p.bar.pressed = ScrollBarPart::None;
            return 0;
        }
        p.MoveCaret(p.HitTest(at), vx::controls::KeyDown(VK_SHIFT));
        p.tracking = true;
        SetCapture();
        return 0;
    }
    case WM_MOUSEMOVE:
        if (p.bar.pressed == ScrollBarPart::Thumb) {
            const int line = p.bar.DragTo(PointOf(lParam));
            p.ScrollLines(line - p.firstLine);
        } else if (p.tracking) {
            p.MoveCaret(p.HitTest(PointOf(lParam)), true);
        }
        return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
        if (p.tracking || p.bar.pressed != ScrollBarPart::None) {
            p.tracking = false;
            p.bar.pressed = ScrollBarPart::None;
            if (message == WM_LBUTTONUP)
                ReleaseCapture();
        }
        return 0;
    case WM_LBUTTONDBLCLK: {
        const int at = p.HitTest(PointOf(lParam));
        int start = at;
        while (start > 0 && IsWordByte(static_cast<unsigned char>(p.text[static_cast<std::size_t>(start - 1)])))
            --start;
        int end = at;
        while (end < n && IsWordByte(static_cast<unsigned char>(p.text[static_cast<std::size_t>(end)])))
            ++end;
        p.Select(start, end);
        p.Refresh();
        return 0;
    }
    case WM_MOUSEWHEEL:
        if (p.Multi())
            p.ScrollLines(-3 * static_cast<short>(HIWORD(wParam)) / 120);
        return 0;
    case WM_VSCROLL:
        return 0;
    case EM_GETSEL:
        if (wParam)
            *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(p.SelStart());
        if (lParam)
            *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(p.SelEnd());
        return MAKELONG(static_cast<WORD>(std::min(p.SelStart(), 0xFFFF)), static_cast<WORD>(std::min(p.SelEnd(), 0xFFFF)));
    case EM_SETSEL:
        p.Select(static_cast<int>(wParam), static_cast<int>(lParam));
        p.Refresh(false);
        return 0;
    case EM_SCROLLCARET:
        p.EnsureCaretVisible();
        Invalidate(FALSE);
        return TRUE;
    case EM_REPLACESEL: {
        const char* text = reinterpret_cast<const char*>(lParam);
        p.typing = false;
        p.Replace(text ? text : "", wParam != 0);
        return 0;
    }
    case EM_GETRECT:
        if (auto* r = reinterpret_cast<RECT*>(lParam))
            *r = p.TextRect();
        return 0;
    case EM_GETMODIFY:
        return p.modified;
    case EM_SETMODIFY:
        p.modified = wParam != 0;
        return 0;
    case EM_GETLINECOUNT:
        if (p.lines.empty())
            p.Layout();
        return static_cast<LRESULT>(p.lines.size());
    case EM_LINEINDEX: {
        if (p.lines.empty())
            p.Layout();
        int line = static_cast<int>(wParam);
        if (line == -1)
            line = p.LineOf(p.caret);
        if (line < 0 || line >= static_cast<int>(p.lines.size()))
            return -1;
        return p.lines[static_cast<std::size_t>(line)].start;
    }
    case EM_LINELENGTH: {
        if (p.lines.empty())
            p.Layout();
        const int at = static_cast<int>(wParam) == -1 ? p.caret : static_cast<int>(wParam);
        if (at < 0 || at > n)
            return 0;
        return p.lines[static_cast<std::size_t>(p.LineOf(at))].length;
    }
    case EM_LINEFROMCHAR: {
        if (p.lines.empty())
            p.Layout();
        const int at = static_cast<int>(wParam) == -1 ? p.SelStart() : static_cast<int>(wParam);
        return p.LineOf(std::clamp(at, 0, n));
    }
    case EM_GETLINE: {
        if (p.lines.empty())
            p.Layout();
        const int line = p.Multi() ? static_cast<int>(wParam) : 0;
        char* out = reinterpret_cast<char*>(lParam);
        if (!out || line < 0 || line >= static_cast<int>(p.lines.size()))
            return 0;
        const int room = *reinterpret_cast<const WORD*>(out);
        const auto& l = p.lines[static_cast<std::size_t>(line)];
        const int count = std::min(room, l.length);
        std::copy_n(p.text.data() + l.start, count, out);
        return count;
    }
    case EM_LIMITTEXT:
        p.limit = wParam ? static_cast<int>(std::min<WPARAM>(wParam, kNoLimit)) : kNoLimit;
        return 0;
    case EM_GETLIMITTEXT:
        return p.limit;
    case EM_CANUNDO:
        return p.canUndo;
    case EM_UNDO:
    case WM_UNDO:
        return p.UndoLast();
    case EM_EMPTYUNDOBUFFER:
        p.canUndo = false;
        p.typing = false;
        return 0;
    case EM_GETFIRSTVISIBLELINE:
        return p.Multi() ? p.firstLine : 0;
    case EM_LINESCROLL:
        if (!p.Multi())
            return FALSE;
        p.ScrollLines(static_cast<int>(lParam));
        if (wParam && !p.Wraps()) {
            p.scrollX = std::max(0, p.scrollX + static_cast<int>(wParam) * p.widths[static_cast<unsigned char>(' ')]);
            Invalidate(FALSE);
        }
        return TRUE;
    case EM_SETREADONLY:
        ModifyStyle(wParam ? 0 : ES_READONLY, wParam ? ES_READONLY : 0);
        Invalidate(FALSE);
        return TRUE;
    case EM_SETPASSWORDCHAR:
        if (!p.Multi()) {
            p.password = static_cast<char>(wParam);
            ModifyStyle(wParam ? 0 : ES_PASSWORD, wParam ? ES_PASSWORD : 0);
            p.Refresh();
        }
        return 0;
    case EM_GETPASSWORDCHAR:
        return static_cast<unsigned char>(p.password);
    case WM_COPY:
        p.CopySelection();
        return 0;
    case WM_CUT:
        if (!p.ReadOnly()) {
            p.CopySelection();
            p.DeleteSelection();
        }
        return 0;
    case WM_CLEAR:
        p.DeleteSelection();
        return 0;
    case WM_PASTE:
        p.PasteText();
        return 0;
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}
