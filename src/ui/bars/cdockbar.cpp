#include "ui/bars/cdockbar.h"

#include "platform/windows/sysmetrics.h"
#include "platform/windows/windowparent.h"
#include "ui/bars/cdockcontext.h"

#include <algorithm>

CDockBar::CDockBar(BOOL floating) : m_bFloating(floating)
{
    m_cxLeftBorder = m_cxRightBorder = m_cyTopBorder = m_cyBottomBorder = 0;
}

CDockBar::~CDockBar()
{
    for (auto& row : m_rows) {
        for (Slot& s : row) {
            if (s.bar->m_pDockBar == this)
                s.bar->m_pDockBar = nullptr;
        }
    }
}

BOOL CDockBar::Create(CWnd* parent, DWORD style, UINT id)
{
    // A side draws no borders of its own: its bars have theirs.
    m_dwStyle = style & CBRS_ALIGN_ANY;
    return CreateEx("", "AfxControlBar", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, CRect(0, 0, 0, 0),
                    parent, id);
}

bool CDockBar::Horizontal() const
{
    return m_bFloating || (m_dwStyle & CBRS_ORIENT_HORZ);
}

int CDockBar::GetDockedCount() const
{
    int n = 0;
    for (const auto& row : m_rows)
        n += static_cast<int>(row.size());
    return n;
}

std::vector<CControlBar*> CDockBar::GetRow(int row) const
{
    std::vector<CControlBar*> bars;
    if (row >= 0 && row < GetRowCount()) {
        for (const Slot& s : m_rows[static_cast<size_t>(row)])
            bars.push_back(s.bar);
    }
    return bars;
}

CControlBar* CDockBar::FloatingBar() const
{
    return m_bFloating && !m_rows.empty() && !m_rows.front().empty() ? m_rows.front().front().bar : nullptr;
}

BOOL CDockBar::FindBar(const CControlBar* bar, int* row, int* place) const
{
    for (size_t r = 0; r < m_rows.size(); ++r) {
        for (const Slot& s : m_rows[r]) {
            if (s.bar == bar) {
                if (row)
                    *row = static_cast<int>(r);
                if (place)
                    *place = s.place;
                return TRUE;
            }
        }
    }
    return FALSE;
}

BOOL CDockBar::RemoveControlBar(CControlBar* bar)
{
    for (auto it = m_rows.begin(); it != m_rows.end(); ++it) {
        auto found = std::find_if(it->begin(), it->end(), [bar](const Slot& s) { return s.bar == bar; });
        if (found == it->end())
            continue;
        it->erase(found);
        if (it->empty())
            m_rows.erase(it);
        if (bar->m_pDockBar == this)
            bar->m_pDockBar = nullptr;
        return TRUE;
    }
    return FALSE;
}

void CDockBar::Adopt(CControlBar* bar)
{
    if (bar->m_pDockBar && bar->m_pDockBar != this)
        bar->m_pDockBar->RemoveControlBar(bar);
    else if (bar->m_pDockBar == this)
        RemoveControlBar(bar);
    bar->m_pDockBar = this;
    if (bar->GetParent() != this && bar->m_hWnd)
        ::SetParent(bar->m_hWnd, m_hWnd);
    DWORD style = bar->GetBarStyle() & ~(CBRS_ALIGN_ANY | CBRS_BORDER_ANY | CBRS_FLOATING);
    style |= m_bFloating ? (CBRS_FLOATING | (bar->GetBarStyle() & CBRS_ALIGN_ANY ? bar->GetBarStyle() & CBRS_ALIGN_ANY
                                                                                  : CBRS_ALIGN_TOP))
                         : (m_dwStyle & CBRS_ALIGN_ANY);
    if (!m_bFloating) {
        // Keep only the alignment of this side.
        style &= ~CBRS_ALIGN_ANY;
        style |= m_dwStyle & CBRS_ALIGN_ANY;
    }
    bar->SetBarStyle(style);
}

void CDockBar::DockControlBarAt(CControlBar* bar, int row, int place)
{
    Adopt(bar);
    row = std::max(row, 0);
    if (row >= GetRowCount()) {
        m_rows.push_back({Slot{bar, std::max(place, 0)}});
    } else {
        auto& r = m_rows[static_cast<size_t>(row)];
        auto at = std::find_if(r.begin(), r.end(), [place](const Slot& s) { return s.place > place; });
        r.insert(at, Slot{bar, std::max(place, 0)});
    }
}

void CDockBar::DockControlBar(CControlBar* bar, const RECT* rect)
{
    if (!rect || m_bFloating) {
        if (m_bFloating) {
            // A floating dock bar holds one bar.
            while (!m_rows.empty())
                RemoveControlBar(m_rows.front().front().bar);
        }
        Adopt(bar);
        m_rows.push_back({Slot{bar, 0}});
        return;
    }
    CRect r(*rect);
    ScreenToClient(&r);
    const bool horz = Horizontal();
    const int across = horz ? r.CenterPoint().y : r.CenterPoint().x;
    const int along = horz ? r.left : r.top;
    // Find the row under the centre by the rows' current extents.
    const bool wasHere = FindBar(bar, nullptr, nullptr);
    if (wasHere)
        RemoveControlBar(bar);
    int offset = 0;
    int rowIndex = GetRowCount();
    for (int i = 0; i < GetRowCount(); ++i) {
        int thickness = 0;
        for (const Slot& s : m_rows[static_cast<size_t>(i)]) {
            if (!s.bar->IsWindowVisible())
                continue;
            const CSize size = s.bar->CalcFixedLayout(FALSE, horz);
            thickness = std::max<int>(thickness, horz ? size.cy : size.cx);
        }
        if (across < offset) {
            // Above the first row (or between rows): a new row here.
            rowIndex = i;
            m_rows.insert(m_rows.begin() + i, std::vector<Slot>{});
            break;
        }
        if (across < offset + thickness) {
            rowIndex = i;
            break;
        }
        offset += thickness;
    }
    if (rowIndex < GetRowCount() && m_rows[static_cast<size_t>(rowIndex)].empty()) {
        Adopt(bar);
        m_rows[static_cast<size_t>(rowIndex)].push_back(Slot{bar, std::max(along, 0)});
        return;
    }
    DockControlBarAt(bar, rowIndex, along);
}

CSize CDockBar::Layout(int length, bool commit)
{
    const bool horz = Horizontal();
    int offset = 0;
    int widest = 0;
    for (auto& row : m_rows) {
        int thickness = 0;
        int cursor = 0;
        for (Slot& s : row) {
            CControlBar* bar = s.bar;
            if (!bar->m_hWnd || !(bar->GetStyle() & WS_VISIBLE))
                continue;
            const CSize size = m_bFloating ? bar->CalcDynamicLayout(-1, LM_HORZ | LM_MRUWIDTH)
                                           : bar->CalcFixedLayout(FALSE, horz);
            const int extent = horz ? size.cx : size.cy;
            int at = std::max(cursor, s.place);
            // A bar pushed past the end comes back as far as the others allow.
            if (length > 0 && at + extent > length)
                at = std::max(cursor, length - extent);
            if (commit) {
                const CRect place = horz ? CRect(at, offset, at + size.cx, offset + size.cy)
                                         : CRect(offset, at, offset + size.cx, offset + size.cy);
                bar->SetWindowPos(nullptr, place.left, place.top, place.Width(), place.Height(),
                                  SWP_NOZORDER | SWP_NOACTIVATE);
            }
            cursor = at + extent;
            thickness = std::max<int>(thickness, horz ? size.cy : size.cx);
        }
        widest = std::max(widest, cursor);
        offset += thickness;
    }
    return horz ? CSize(widest, offset) : CSize(offset, widest);
}

CSize CDockBar::CalcFixedLayout(BOOL stretch, BOOL horz)
{
    const CSize inner = Layout(0, false);
    if (!stretch)
        return inner;
    return horz ? CSize(32767, inner.cy) : CSize(inner.cx, 32767);
}

BOOL CDockBar::OnEraseBkgnd()
{
    return static_cast<BOOL>(Default());
}

BOOL CDockBar::IsDragPoint(CPoint)
{
    return FALSE;
}
