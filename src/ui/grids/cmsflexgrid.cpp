#include "ui/grids/cmsflexgrid.h"

#include "ui/controls/controlclass.h"
#include "ui/controls/cscrollbar.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/gdi/wingdi.h"

#include "platform/framework/mbstring.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <vector>

namespace {

constexpr UINT kVertBarId = 1;
constexpr UINT kHorzBarId = 2;
constexpr int kDefaultColWidth = 64; // pixels, as the flex grid's 960 twips
constexpr int kTwipsPerInch = 1440;
constexpr COLORREF kGridLines = RGB(192, 192, 192);
constexpr int kWheelRows = 3;

int Dpi()
{
    CClientDC dc(nullptr);
    const int dpi = dc.GetDeviceCaps(LOGPIXELSX);
    return dpi > 0 ? dpi : 96;
}

int TwipsToPixels(long twips)
{
    const long long dpi = Dpi();
    return static_cast<int>((twips * dpi + (twips >= 0 ? kTwipsPerInch / 2 : -kTwipsPerInch / 2)) / kTwipsPerInch);
}

long PixelsToTwips(int pixels)
{
    return static_cast<long>(static_cast<long long>(pixels) * kTwipsPerInch / Dpi());
}

// Whether a text reads as a number, which general alignment puts right.
bool LooksNumeric(const CString& text)
{
    const char* p = text;
    while (*p == ' ')
        ++p;
    if (*p == '+' || *p == '-')
        ++p;
    bool digit = false;
    bool point = false;
    for (; *p; ++p) {
        if (*p >= '0' && *p <= '9') {
            digit = true;
        } else if ((*p == '.' || *p == ',') && !point) {
            point = true;
        } else {
            break;
        }
    }
    while (*p == ' ')
        ++p;
    return digit && !*p;
}

UINT DrawFormat(short alignment, const CString& text)
{
    UINT format = DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
    if (alignment < 0 || alignment > 8)
        return format | DT_VCENTER | (LooksNumeric(text) ? DT_RIGHT : DT_LEFT);
    const int horizontal = alignment / 3;
    const int vertical = alignment % 3;
    format |= horizontal == 0 ? DT_LEFT : horizontal == 1 ? DT_CENTER : DT_RIGHT;
    format |= vertical == 0 ? DT_TOP : vertical == 1 ? DT_VCENTER : DT_BOTTOM;
    return format;
}

// Templates name the grid by the flex grid's window class.
const bool g_registered = vx::RegisterControlClass("MSFlexGridWndClass", [] {
    return std::unique_ptr<CWnd>(new CMSFlexGrid);
});

} // namespace

struct CMSFlexGrid::Private {
    explicit Private(CMSFlexGrid& owner) : q(owner) {}

    CMSFlexGrid& q;
    long rows = 2;
    long cols = 2;
    long fixedRows = 1;
    long fixedCols = 1;
    std::vector<std::vector<CString>> text = std::vector<std::vector<CString>>(2, std::vector<CString>(2));
    std::vector<int> colWidth = std::vector<int>(2, -1);  // pixels; -1 the default
    std::vector<int> rowHeight = std::vector<int>(2, -1); // pixels; -1 the default
    std::vector<short> colAlign = std::vector<short>(2, flexAlignGeneral);
    long row = 1;
    long col = 1;
    long topRow = 1;
    long leftCol = 1;
    long highLight = flexHighlightAlways;
    long scrollBars = flexScrollBarBoth;
    BOOL redraw = TRUE;
    long mouseRow = -1;
    long mouseCol = -1;
    bool focused = false;
    int lineHeight = 0;
    CScrollBar vbar;
    CScrollBar hbar;
    bool vbarShown = false;
    bool hbarShown = false;
    bool layingOut = false;

    // --- geometry ---------------------------------------------------------------------
    int LineHeight();
    int ColWidthPx(long c) const { return colWidth[c] >= 0 ? colWidth[c] : kDefaultColWidth; }
    int RowHeightPx(long r) const { return rowHeight[r] >= 0 ? rowHeight[r] : DefaultRowHeight(); }
    int DefaultRowHeight() const { return lineHeight + 8; } // as high as an edit or a combo field
    CRect Client() const;
    // Where cells show: the client area less the scroll bars.
    CRect DataRect() const;
    int FixedWidth() const;
    int FixedHeight() const;
    // The left edge of a column and the top of a row in client pixels;
    // scrolled-off ones lie where they would without the scrolling.
    int ColX(long c) const;
    int RowY(long r) const;
    bool Shown(long r, long c) const;
    // The last top row (left column) that still fills the data area.
    long LastTopRow() const;
    long LastLeftCol() const;
    void Relayout();
    void UpdateBars();

    // --- changes ----------------------------------------------------------------------
    void Resize(long newRows, long newCols);
    void Invalidate();
    void SetCurrent(long r, long c, bool notify);
    void SetTop(long r, bool notify);
    void SetLeft(long c, bool notify);
    void EnsureVisible(long r, long c);
    LRESULT Notify(UINT code, long r, long c, UINT key = 0);

    // --- painting and input -------------------------------------------------------------
    void Paint();
    void KeyDown(UINT key);
    void Scroll(bool vertical, UINT code);
};

int CMSFlexGrid::Private::LineHeight()
{
    if (lineHeight > 0)
        return lineHeight;
    CClientDC dc(q.m_hWnd ? &q : nullptr);
    HGDIOBJ font = reinterpret_cast<HGDIOBJ>(q.m_hWnd ? q.SendMessage(WM_GETFONT) : 0);
    if (!font)
        font = GetStockObject(DEFAULT_GUI_FONT);
    HGDIOBJ old = ::SelectObject(dc, font);
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    ::SelectObject(dc, old);
    lineHeight = tm.tmHeight > 0 ? tm.tmHeight : 13;
    return lineHeight;
}

CRect CMSFlexGrid::Private::Client() const
{
    CRect r;
    if (q.m_hWnd)
        q.GetClientRect(&r);
    return r;
}

CRect CMSFlexGrid::Private::DataRect() const
{
    CRect r = Client();
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    if (vbarShown)
        r.right = std::max(r.left, r.right - bar);
    if (hbarShown)
        r.bottom = std::max(r.top, r.bottom - GetSystemMetrics(SM_CYHSCROLL));
    return r;
}

int CMSFlexGrid::Private::FixedWidth() const
{
    int w = 0;
    for (long c = 0; c < fixedCols; ++c)
        w += ColWidthPx(c);
    return w;
}

int CMSFlexGrid::Private::FixedHeight() const
{
    int h = 0;
    for (long r = 0; r < fixedRows; ++r)
        h += RowHeightPx(r);
    return h;
}

int CMSFlexGrid::Private::ColX(long c) const
{
    int x = 0;
    if (c < fixedCols) {
        for (long i = 0; i < c; ++i)
            x += ColWidthPx(i);
        return x;
    }
    x = FixedWidth();
    if (c >= leftCol) {
        for (long i = leftCol; i < c; ++i)
            x += ColWidthPx(i);
    } else {
        for (long i = c; i < leftCol; ++i)
            x -= ColWidthPx(i);
    }
    return x;
}

int CMSFlexGrid::Private::RowY(long r) const
{
    int y = 0;
    if (r < fixedRows) {
        for (long i = 0; i < r; ++i)
            y += RowHeightPx(i);
        return y;
    }
    y = FixedHeight();
    if (r >= topRow) {
        for (long i = topRow; i < r; ++i)
            y += RowHeightPx(i);
    } else {
        for (long i = r; i < topRow; ++i)
            y -= RowHeightPx(i);
    }
    return y;
}

bool CMSFlexGrid::Private::Shown(long r, long c) const
{
    if (r < 0 || r >= rows || c < 0 || c >= cols)
        return false;
    if ((r >= fixedRows && r < topRow) || (c >= fixedCols && c < leftCol))
        return false;
    const CRect data = DataRect();
    return ColX(c) < data.right && RowY(r) < data.bottom;
}

long CMSFlexGrid::Private::LastTopRow() const
{
    const int room = DataRect().Height() - FixedHeight();
    long r = rows - 1;
    int used = 0;
    while (r >= fixedRows && used + RowHeightPx(r) <= room) {
        used += RowHeightPx(r);
        --r;
    }
    return std::max(fixedRows, std::min(rows - 1, r + 1));
}

long CMSFlexGrid::Private::LastLeftCol() const
{
    const int room = DataRect().Width() - FixedWidth();
    long c = cols - 1;
    int used = 0;
    while (c >= fixedCols && used + ColWidthPx(c) <= room) {
        used += ColWidthPx(c);
        --c;
    }
    return std::max(fixedCols, std::min(cols - 1, c + 1));
}

void CMSFlexGrid::Private::UpdateBars()
{
    if (!q.m_hWnd)
        return;
    const CRect client = Client();
    const int barW = GetSystemMetrics(SM_CXVSCROLL);
    const int barH = GetSystemMetrics(SM_CYHSCROLL);
    int totalW = 0;
    for (long c = 0; c < cols; ++c)
        totalW += ColWidthPx(c);
    int totalH = 0;
    for (long r = 0; r < rows; ++r)
        totalH += RowHeightPx(r);
    // A bar takes room from the other direction, so decide both together.
    bool v = false;
    bool h = false;
    for (int pass = 0; pass < 2; ++pass) {
        v = (scrollBars & flexScrollBarVertical) && totalH > client.Height() - (h ? barH : 0);
        h = (scrollBars & flexScrollBarHorizontal) && totalW > client.Width() - (v ? barW : 0);
    }
    vbarShown = v;
    hbarShown = h;
    topRow = std::clamp(topRow, fixedRows, LastTopRow());
    leftCol = std::clamp(leftCol, fixedCols, LastLeftCol());
    if (!vbarShown)
        topRow = fixedRows;
    if (!hbarShown)
        leftCol = fixedCols;
    auto place = [](CScrollBar& bar, bool shown, const CRect& r, int lastPos, int pos, int page) {
        if (!bar.m_hWnd)
            return;
        if (shown) {
            bar.MoveWindow(&r, FALSE);
            SCROLLINFO info{sizeof(SCROLLINFO), SIF_RANGE | SIF_PAGE | SIF_POS, 0, lastPos + page - 1,
                            static_cast<UINT>(page), pos, 0};
            bar.SetScrollInfo(&info, TRUE);
        }
        if (static_cast<bool>(bar.IsWindowVisible()) != shown)
            bar.ShowWindow(shown ? SW_SHOWNA : SW_HIDE);
    };
    const long lastTop = LastTopRow();
    const long lastLeft = LastLeftCol();
    place(vbar, vbarShown,
          CRect(client.right - barW, client.top, client.right, client.bottom - (hbarShown ? barH : 0)),
          static_cast<int>(lastTop - fixedRows), static_cast<int>(topRow - fixedRows),
          static_cast<int>(std::max<long>(1, rows - fixedRows - (lastTop - fixedRows))));
    place(hbar, hbarShown,
          CRect(client.left, client.bottom - barH, client.right - (vbarShown ? barW : 0), client.bottom),
          static_cast<int>(lastLeft - fixedCols), static_cast<int>(leftCol - fixedCols),
          static_cast<int>(std::max<long>(1, cols - fixedCols - (lastLeft - fixedCols))));
}

void CMSFlexGrid::Private::Relayout()
{
    if (layingOut)
        return;
    layingOut = true;
    UpdateBars();
    layingOut = false;
    Invalidate();
}

void CMSFlexGrid::Private::Invalidate()
{
    if (q.m_hWnd && redraw)
        q.InvalidateRect(nullptr, FALSE);
}

void CMSFlexGrid::Private::Resize(long newRows, long newCols)
{
    newRows = std::max(newRows, 0L);
    newCols = std::max(newCols, 0L);
    text.resize(static_cast<std::size_t>(newRows));
    for (auto& line : text)
        line.resize(static_cast<std::size_t>(newCols));
    rowHeight.resize(static_cast<std::size_t>(newRows), -1);
    colWidth.resize(static_cast<std::size_t>(newCols), -1);
    colAlign.resize(static_cast<std::size_t>(newCols), flexAlignGeneral);
    rows = newRows;
    cols = newCols;
    fixedRows = std::min(fixedRows, std::max(0L, rows - 1));
    fixedCols = std::min(fixedCols, std::max(0L, cols - 1));
    row = std::clamp(row, std::min(fixedRows, rows - 1), std::max(0L, rows - 1));
    col = std::clamp(col, std::min(fixedCols, cols - 1), std::max(0L, cols - 1));
    Relayout();
}

LRESULT CMSFlexGrid::Private::Notify(UINT code, long r, long c, UINT key)
{
    CWnd* parent = q.GetParent();
    if (!parent)
        return 0;
    NMFLEXGRID n{};
    n.hdr.hwndFrom = q.m_hWnd;
    n.hdr.idFrom = q.GetDlgCtrlID();
    n.hdr.code = code;
    n.row = r;
    n.col = c;
    n.key = key;
    return parent->SendMessage(WM_NOTIFY, n.hdr.idFrom, reinterpret_cast<LPARAM>(&n));
}

void CMSFlexGrid::Private::SetTop(long r, bool notify)
{
    r = std::clamp(r, fixedRows, std::max(fixedRows, vbarShown ? LastTopRow() : fixedRows));
    if (r == topRow)
        return;
    topRow = r;
    UpdateBars();
    Invalidate();
    if (notify)
        Notify(FGN_SCROLL, row, col);
}

void CMSFlexGrid::Private::SetLeft(long c, bool notify)
{
    c = std::clamp(c, fixedCols, std::max(fixedCols, hbarShown ? LastLeftCol() : fixedCols));
    if (c == leftCol)
        return;
    leftCol = c;
    UpdateBars();
    Invalidate();
    if (notify)
        Notify(FGN_SCROLL, row, col);
}

void CMSFlexGrid::Private::EnsureVisible(long r, long c)
{
    const CRect data = DataRect();
    if (r >= fixedRows && r < rows) {
        if (r < topRow) {
            SetTop(r, true);
        } else {
            long top = topRow;
            // Scroll down until the row's bottom shows (or it is the top).
            while (top < r && RowY(r) - RowY(top) + FixedHeight() + RowHeightPx(r) > data.Height())
                ++top;
            SetTop(top, true);
        }
    }
    if (c >= fixedCols && c < cols) {
        if (c < leftCol) {
            SetLeft(c, true);
        } else {
            long left = leftCol;
            while (left < c && ColX(c) - ColX(left) + FixedWidth() + ColWidthPx(c) > data.Width())
                ++left;
            SetLeft(left, true);
        }
    }
}

void CMSFlexGrid::Private::SetCurrent(long r, long c, bool notify)
{
    if (rows == 0 || cols == 0)
        return;
    r = std::clamp(r, std::min(fixedRows, rows - 1), rows - 1);
    c = std::clamp(c, std::min(fixedCols, cols - 1), cols - 1);
    const bool changed = r != row || c != col;
    row = r;
    col = c;
    if (notify)
        EnsureVisible(r, c);
    if (changed) {
        Invalidate();
        if (notify)
            Notify(FGN_ROWCOLCHANGE, row, col);
    }
}

void CMSFlexGrid::Private::Paint()
{
    CPaintDC dc(&q);
    const CRect client = Client();
    const CRect data = DataRect();
    HGDIOBJ font = reinterpret_cast<HGDIOBJ>(q.SendMessage(WM_GETFONT));
    if (!font)
        font = GetStockObject(DEFAULT_GUI_FONT);
    HGDIOBJ oldFont = ::SelectObject(dc, font);
    dc.SetBkMode(TRANSPARENT);
    dc.FillSolidRect(&data, GetSysColor(COLOR_WINDOW));
    // The corner between the two bars.
    if (vbarShown && hbarShown)
        dc.FillSolidRect(data.right, data.bottom, client.right - data.right, client.bottom - data.bottom,
                         GetSysColor(COLOR_BTNFACE));
    const bool showCurrent =
        highLight == flexHighlightAlways || (highLight == flexHighlightWithFocus && focused);
    dc.IntersectClipRect(&data);
    auto paintCell = [&](long r, long c) {
        const CRect cell(ColX(c), RowY(r), ColX(c) + ColWidthPx(c), RowY(r) + RowHeightPx(r));
        if (!CRect().IntersectRect(&cell, &data))
            return;
        const bool fixed = r < fixedRows || c < fixedCols;
        const bool current = !fixed && r == row && c == col;
        COLORREF back = GetSysColor(fixed ? COLOR_BTNFACE : COLOR_WINDOW);
        COLORREF fore = GetSysColor(fixed ? COLOR_BTNTEXT : COLOR_WINDOWTEXT);
        CRect inside(cell.left, cell.top, cell.right - 1, cell.bottom - 1);
        if (current && showCurrent) {
            back = GetSysColor(COLOR_HIGHLIGHT);
            fore = GetSysColor(COLOR_HIGHLIGHTTEXT);
        }
        dc.FillSolidRect(&inside, back);
        if (fixed) {
            CRect edge(cell);
            dc.DrawEdge(&edge, BDR_RAISEDINNER, BF_RECT);
        } else {
            dc.FillSolidRect(cell.right - 1, cell.top, 1, cell.Height(), kGridLines);
            dc.FillSolidRect(cell.left, cell.bottom - 1, cell.Width(), 1, kGridLines);
        }
        const CString& t = text[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
        if (!t.IsEmpty()) {
            CRect textRect(inside.left + 3, inside.top + 1, inside.right - 3, inside.bottom - 1);
            dc.SetTextColor(fore);
            dc.DrawText(t, &textRect, DrawFormat(colAlign[static_cast<std::size_t>(c)], t));
        }
        if (current && focused)
            dc.DrawFocusRect(&inside);
    };
    for (long r = 0; r < rows; ++r) {
        if (r >= fixedRows && r < topRow)
            continue;
        if (RowY(r) >= data.bottom)
            break;
        for (long c = 0; c < cols; ++c) {
            if (c >= fixedCols && c < leftCol)
                continue;
            if (ColX(c) >= data.right)
                break;
            paintCell(r, c);
        }
    }
    ::SelectObject(dc, oldFont);
}

void CMSFlexGrid::Private::KeyDown(UINT key)
{
    const long pageRows = std::max<long>(1, rows - fixedRows - (LastTopRow() - fixedRows));
    const bool ctrl = GetKeyState(VK_CONTROL) < 0;
    switch (key) {
    case VK_UP: SetCurrent(row - 1, col, true); break;
    case VK_DOWN: SetCurrent(row + 1, col, true); break;
    case VK_LEFT: SetCurrent(row, col - 1, true); break;
    case VK_RIGHT: SetCurrent(row, col + 1, true); break;
    case VK_PRIOR: SetCurrent(row - pageRows, col, true); break;
    case VK_NEXT: SetCurrent(row + pageRows, col, true); break;
    case VK_HOME: SetCurrent(ctrl ? fixedRows : row, fixedCols, true); break;
    case VK_END: SetCurrent(ctrl ? rows - 1 : row, cols - 1, true); break;
    default: break;
    }
}

void CMSFlexGrid::Private::Scroll(bool vertical, UINT code)
{
    CScrollBar& bar = vertical ? vbar : hbar;
    const long first = vertical ? fixedRows : fixedCols;
    const long now = vertical ? topRow : leftCol;
    const long last = vertical ? LastTopRow() : LastLeftCol();
    const long page = std::max<long>(1, (vertical ? rows : cols) - last);
    long target = now;
    switch (code) {
    case SB_LINEUP: target = now - 1; break;
    case SB_LINEDOWN: target = now + 1; break;
    case SB_PAGEUP: target = now - page; break;
    case SB_PAGEDOWN: target = now + page; break;
    case SB_TOP: target = first; break;
    case SB_BOTTOM: target = last; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
        SCROLLINFO info{sizeof(SCROLLINFO), SIF_TRACKPOS, 0, 0, 0, 0, 0};
        bar.GetScrollInfo(&info, SIF_TRACKPOS);
        target = first + info.nTrackPos;
        break;
    }
    default: return;
    }
    if (vertical)
        SetTop(target, true);
    else
        SetLeft(target, true);
}

// --- the public face ---------------------------------------------------------------------

CMSFlexGrid::CMSFlexGrid() : d(std::make_unique<Private>(*this)) {}

CMSFlexGrid::~CMSFlexGrid()
{
    if (m_hWnd)
        DestroyWindow();
}

BOOL CMSFlexGrid::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "MSFlexGridWndClass", style, rect, parent, id, WS_EX_CLIENTEDGE);
}

long CMSFlexGrid::GetRows() const { return d->rows; }
long CMSFlexGrid::GetCols() const { return d->cols; }
long CMSFlexGrid::GetFixedRows() const { return d->fixedRows; }
long CMSFlexGrid::GetFixedCols() const { return d->fixedCols; }

void CMSFlexGrid::SetRows(long rows)
{
    d->Resize(std::max(rows, d->fixedRows), d->cols);
}

void CMSFlexGrid::SetCols(long cols)
{
    d->Resize(d->rows, std::max(cols, d->fixedCols));
}

void CMSFlexGrid::SetFixedRows(long rows)
{
    d->fixedRows = std::clamp(rows, 0L, std::max(0L, d->rows - 1));
    d->row = std::max(d->row, d->fixedRows);
    d->topRow = d->fixedRows;
    d->Relayout();
}

void CMSFlexGrid::SetFixedCols(long cols)
{
    d->fixedCols = std::clamp(cols, 0L, std::max(0L, d->cols - 1));
    d->col = std::max(d->col, d->fixedCols);
    d->leftCol = d->fixedCols;
    d->Relayout();
}

CString CMSFlexGrid::GetTextMatrix(long row, long col) const
{
    if (row < 0 || row >= d->rows || col < 0 || col >= d->cols)
        return CString();
    return d->text[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)];
}

void CMSFlexGrid::SetTextMatrix(long row, long col, LPCSTR text)
{
    if (row < 0 || row >= d->rows || col < 0 || col >= d->cols)
        return;
    d->text[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)] = text;
    RECT cell;
    if (m_hWnd && d->redraw && GetCellRect(row, col, &cell)) {
        InflateRect(&cell, 1, 1);
        InvalidateRect(&cell, FALSE);
    }
}

CString CMSFlexGrid::GetText() const
{
    return GetTextMatrix(d->row, d->col);
}

void CMSFlexGrid::SetText(LPCSTR text)
{
    SetTextMatrix(d->row, d->col, text);
}

short CMSFlexGrid::GetColAlignment(long col) const
{
    return col >= 0 && col < d->cols ? d->colAlign[static_cast<std::size_t>(col)] : flexAlignGeneral;
}

void CMSFlexGrid::SetColAlignment(long col, short alignment)
{
    if (col < 0 || col >= d->cols)
        return;
    d->colAlign[static_cast<std::size_t>(col)] = alignment;
    d->Invalidate();
}

long CMSFlexGrid::GetClientWidth() const
{
    return PixelsToTwips(d->DataRect().Width());
}

long CMSFlexGrid::GetClientHeight() const
{
    return PixelsToTwips(d->DataRect().Height());
}

long CMSFlexGrid::GetColWidth(long col) const
{
    return col >= 0 && col < d->cols ? PixelsToTwips(d->ColWidthPx(col)) : 0;
}

void CMSFlexGrid::SetColWidth(long col, long twips)
{
    if (col < 0 || col >= d->cols)
        return;
    d->colWidth[static_cast<std::size_t>(col)] = twips < 0 ? -1 : TwipsToPixels(twips);
    d->Relayout();
}

long CMSFlexGrid::GetRowHeight(long row) const
{
    d->LineHeight();
    return row >= 0 && row < d->rows ? PixelsToTwips(d->RowHeightPx(row)) : 0;
}

void CMSFlexGrid::SetRowHeight(long row, long twips)
{
    if (row < 0 || row >= d->rows)
        return;
    d->rowHeight[static_cast<std::size_t>(row)] = twips < 0 ? -1 : TwipsToPixels(twips);
    d->Relayout();
}

long CMSFlexGrid::GetColPos(long col) const
{
    return col >= 0 && col < d->cols ? PixelsToTwips(d->ColX(col)) : 0;
}

long CMSFlexGrid::GetRowPos(long row) const
{
    d->LineHeight();
    return row >= 0 && row < d->rows ? PixelsToTwips(d->RowY(row)) : 0;
}

long CMSFlexGrid::GetCellLeft() const { return GetColPos(d->col); }
long CMSFlexGrid::GetCellTop() const { return GetRowPos(d->row); }
long CMSFlexGrid::GetCellWidth() const { return GetColWidth(d->col); }
long CMSFlexGrid::GetCellHeight() const { return GetRowHeight(d->row); }

BOOL CMSFlexGrid::GetCellRect(long row, long col, RECT* rect) const
{
    if (!rect)
        return FALSE;
    *rect = CRect();
    d->LineHeight();
    if (!d->Shown(row, col))
        return FALSE;
    const int x = d->ColX(col);
    const int y = d->RowY(row);
    *rect = CRect(x, y, x + d->ColWidthPx(col) - 1, y + d->RowHeightPx(row) - 1);
    return TRUE;
}

BOOL CMSFlexGrid::HitTest(CPoint point, long* row, long* col) const
{
    const CRect data = d->DataRect();
    if (!data.PtInRect(point))
        return FALSE;
    long hitRow = -1;
    for (long r = 0; r < d->rows && hitRow < 0; ++r) {
        if (r >= d->fixedRows && r < d->topRow)
            continue;
        const int y = d->RowY(r);
        if (point.y >= y && point.y < y + d->RowHeightPx(r))
            hitRow = r;
        if (y >= data.bottom)
            break;
    }
    long hitCol = -1;
    for (long c = 0; c < d->cols && hitCol < 0; ++c) {
        if (c >= d->fixedCols && c < d->leftCol)
            continue;
        const int x = d->ColX(c);
        if (point.x >= x && point.x < x + d->ColWidthPx(c))
            hitCol = c;
        if (x >= data.right)
            break;
    }
    if (hitRow < 0 || hitCol < 0)
        return FALSE;
    if (row)
        *row = hitRow;
    if (col)
        *col = hitCol;
    return TRUE;
}

long CMSFlexGrid::GetRow() const { return d->row; }
long CMSFlexGrid::GetCol() const { return d->col; }

void CMSFlexGrid::SetRow(long row)
{
    // Set from code, the current cell moves without scrolling or telling,
    // as the flex grid's Row property did.
    if (row >= 0 && row < d->rows)
        d->SetCurrent(row, d->col, false);
}

void CMSFlexGrid::SetCol(long col)
{
    if (col >= 0 && col < d->cols)
        d->SetCurrent(d->row, col, false);
}

long CMSFlexGrid::GetTopRow() const { return d->topRow; }
long CMSFlexGrid::GetLeftCol() const { return d->leftCol; }

void CMSFlexGrid::SetTopRow(long row)
{
    d->LineHeight();
    d->SetTop(row, false);
}

void CMSFlexGrid::SetLeftCol(long col)
{
    d->SetLeft(col, false);
}

BOOL CMSFlexGrid::GetRowIsVisible(long row) const
{
    d->LineHeight();
    return d->Shown(row, std::min(d->leftCol, d->cols - 1));
}

BOOL CMSFlexGrid::GetColIsVisible(long col) const
{
    d->LineHeight();
    return d->Shown(std::min(d->topRow, d->rows - 1), col);
}

long CMSFlexGrid::GetScrollBars() const { return d->scrollBars; }

void CMSFlexGrid::SetScrollBars(long bars)
{
    d->scrollBars = bars & flexScrollBarBoth;
    d->Relayout();
}

long CMSFlexGrid::GetHighLight() const { return d->highLight; }

void CMSFlexGrid::SetHighLight(long highLight)
{
    if (d->highLight == highLight)
        return;
    d->highLight = highLight;
    d->Invalidate();
}

BOOL CMSFlexGrid::GetRedraw() const { return d->redraw; }

void CMSFlexGrid::SetRedraw(BOOL redraw)
{
    d->redraw = redraw;
    if (redraw)
        d->Relayout();
}

long CMSFlexGrid::GetMouseRow() const { return d->mouseRow; }
long CMSFlexGrid::GetMouseCol() const { return d->mouseCol; }

LRESULT CMSFlexGrid::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    auto trackMouse = [this](LPARAM l) {
        const CPoint at(GET_X_LPARAM(l), GET_Y_LPARAM(l));
        long r = -1;
        long c = -1;
        if (!HitTest(at, &r, &c))
            r = c = -1;
        d->mouseRow = r;
        d->mouseCol = c;
    };
    switch (message) {
    case WM_CREATE:
        d->vbar.Create(WS_CHILD | SBS_VERT, CRect(0, 0, 0, 0), this, kVertBarId);
        d->hbar.Create(WS_CHILD | SBS_HORZ, CRect(0, 0, 0, 0), this, kHorzBarId);
        d->LineHeight();
        d->Relayout();
        return 0;
    case WM_SIZE:
        d->Relayout();
        return 0;
    case WM_SETFONT: {
        const LRESULT r = CWnd::DefWindowProc(message, wParam, lParam);
        d->lineHeight = 0;
        d->LineHeight();
        d->Relayout();
        return r;
    }
    case WM_ERASEBKGND:
        return TRUE;
    case WM_PAINT:
        d->Paint();
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        d->focused = message == WM_SETFOCUS;
        d->Invalidate();
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_MOUSEMOVE:
        trackMouse(lParam);
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        trackMouse(lParam);
        if (GetFocus() != this)
            SetFocus();
        const HWND self = m_hWnd;
        const long r = d->mouseRow;
        const long c = d->mouseCol;
        if (r >= d->fixedRows && c >= d->fixedCols)
            d->SetCurrent(r, c, true);
        if (IsWindow(self))
            d->Notify(message == WM_LBUTTONDOWN ? FGN_CLICK : FGN_DBLCLICK, r, c);
        return 0;
    }
    case WM_MOUSEWHEEL: {
        const int delta = static_cast<short>(HIWORD(wParam));
        if (d->vbarShown)
            d->SetTop(d->topRow + (delta > 0 ? -kWheelRows : kWheelRows), true);
        return 0;
    }
    case WM_KEYDOWN:
        if (!d->Notify(FGN_KEYDOWN, d->row, d->col, static_cast<UINT>(wParam)))
            d->KeyDown(static_cast<UINT>(wParam));
        return 0;
    case WM_CHAR:
        d->Notify(FGN_KEYPRESS, d->row, d->col, static_cast<UINT>(wParam));
        return 0;
    case WM_VSCROLL:
    case WM_HSCROLL:
        d->Scroll(message == WM_VSCROLL, LOWORD(wParam));
        return 0;
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}
