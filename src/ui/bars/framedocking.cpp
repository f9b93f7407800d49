// How a frame docks its bars: the frame's functions in the core hand over
// to these once vxbase-ui is loaded.
#include "platform/windows/cframewnd.h"
#include "ui/bars/barstatestore.h"
#include "ui/bars/ccontrolbar.h"
#include "ui/bars/cdockbar.h"
#include "ui/bars/cdockcontext.h"
#include "ui/bars/cminidockframewnd.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace {

struct DockRow {
    UINT id;
    DWORD style;
};
// The sides in the order the frame lays them out and a drop finds them.
constexpr DockRow kDockMap[] = {{AFX_IDW_DOCKBAR_TOP, CBRS_TOP},
                                {AFX_IDW_DOCKBAR_BOTTOM, CBRS_BOTTOM},
                                {AFX_IDW_DOCKBAR_LEFT, CBRS_LEFT},
                                {AFX_IDW_DOCKBAR_RIGHT, CBRS_RIGHT}};

// What the library made for a frame: its dock bars and its bars' mini frames.
struct FrameParts {
    std::vector<std::unique_ptr<CDockBar>> dockBars;
    std::map<CControlBar*, std::unique_ptr<CFrameWnd>> miniFrames;
};

std::map<const CFrameWnd*, FrameParts>& Parts()
{
    static auto* parts = new std::map<const CFrameWnd*, FrameParts>;
    return *parts;
}

CDockBar* DockBarOf(CFrameWnd& frame, UINT id)
{
    return dynamic_cast<CDockBar*>(frame.GetDlgItem(static_cast<int>(id)));
}

void Remember(CFrameWnd& frame, CControlBar* bar)
{
    auto& bars = frame.m_listControlBars;
    if (std::find(bars.begin(), bars.end(), bar) == bars.end())
        bars.push_back(bar);
    bar->m_pDockSite = &frame;
}

CMiniDockFrameWnd* MiniFrameOf(CControlBar* bar)
{
    return bar->m_pDockBar && bar->m_pDockBar->IsFloatingDockBar()
               ? dynamic_cast<CMiniDockFrameWnd*>(bar->m_pDockBar->GetParent())
               : nullptr;
}

void EnableDocking(CFrameWnd& frame, DWORD style)
{
    frame.m_dwDockStyle |= style & CBRS_ALIGN_ANY;
    for (const DockRow& row : kDockMap) {
        if (!(row.style & style & CBRS_ALIGN_ANY) || DockBarOf(frame, row.id))
            continue;
        auto dock = std::make_unique<CDockBar>();
        if (!dock->Create(&frame, row.style, row.id))
            continue;
        dock->m_pDockSite = &frame;
        Parts()[&frame].dockBars.push_back(std::move(dock));
    }
}

void RecordDockPlace(CControlBar* bar)
{
    if (!bar->m_pDockContext || !bar->m_pDockBar || bar->m_pDockBar->IsFloatingDockBar())
        return;
    bar->m_pDockContext->m_uMRUDockID = bar->m_pDockBar->GetDlgCtrlID();
    bar->GetWindowRect(&bar->m_pDockContext->m_rectMRUDockPos);
}

void DockControlBar(CFrameWnd& frame, CControlBar* bar, UINT id, const RECT* rect)
{
    CDockBar* dock = nullptr;
    if (id) {
        dock = DockBarOf(frame, id);
    } else {
        // The side the bar's style names, else the first it may dock at.
        for (const DockRow& row : kDockMap) {
            if ((bar->GetBarStyle() & row.style & CBRS_ALIGN_ANY) &&
                (bar->m_dwDockStyle & row.style & CBRS_ALIGN_ANY) && DockBarOf(frame, row.id)) {
                dock = DockBarOf(frame, row.id);
                break;
            }
        }
        for (const DockRow& row : kDockMap) {
            if (!dock && (bar->m_dwDockStyle & row.style & CBRS_ALIGN_ANY))
                dock = DockBarOf(frame, row.id);
        }
    }
    if (!dock)
        return;
    Remember(frame, bar);
    CMiniDockFrameWnd* mini = MiniFrameOf(bar);
    if (mini && bar->m_pDockContext) {
        CRect r;
        mini->GetWindowRect(&r);
        bar->m_pDockContext->m_ptMRUFloatPos = r.TopLeft();
    }
    dock->DockControlBar(bar, rect);
    RecordDockPlace(bar);
    if (mini) {
        mini->ShowWindow(SW_HIDE);
        Parts()[&frame].miniFrames.erase(bar);
    }
    frame.RecalcLayout();
    // The dock bar places the bar at the next layout; remember it placed.
    RecordDockPlace(bar);
}

void FloatControlBar(CFrameWnd& frame, CControlBar* bar, POINT screen, DWORD style)
{
    Remember(frame, bar);
    CMiniDockFrameWnd* mini = MiniFrameOf(bar);
    if (!mini) {
        RecordDockPlace(bar);
        std::unique_ptr<CFrameWnd> made(frame.m_pFloatingFrameFactory ? frame.m_pFloatingFrameFactory()
                                                                       : new CMiniDockFrameWnd);
        mini = dynamic_cast<CMiniDockFrameWnd*>(made.get());
        if (!mini || !mini->Create(&frame, style))
            return;
        mini->m_wndDockBar.DockControlBar(bar);
        Parts()[&frame].miniFrames[bar] = std::move(made);
    }
    bar->SetBarStyle((bar->GetBarStyle() & ~CBRS_ALIGN_ANY) | CBRS_FLOATING |
                     ((style & CBRS_ALIGN_ANY) ? (style & CBRS_ALIGN_ANY) : CBRS_ALIGN_TOP));
    mini->SetWindowPos(nullptr, screen.x, screen.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    mini->RecalcLayout();
    if (bar->GetStyle() & WS_VISIBLE)
        mini->ShowWindow(SW_SHOWNOACTIVATE);
    if (bar->m_pDockContext)
        bar->m_pDockContext->m_ptMRUFloatPos = screen;
    frame.RecalcLayout();
}

void ShowControlBar(CFrameWnd& frame, CControlBar* bar, BOOL show)
{
    bar->ShowWindow(show ? SW_SHOWNA : SW_HIDE);
    if (CMiniDockFrameWnd* mini = MiniFrameOf(bar)) {
        if (show)
            mini->RecalcLayout();
        mini->ShowWindow(show ? SW_SHOWNOACTIVATE : SW_HIDE);
    }
    frame.RecalcLayout();
}

RECT LayoutBars(CFrameWnd& frame, const RECT& area)
{
    CRect client(area);
    for (const DockRow& row : kDockMap) {
        CDockBar* dock = DockBarOf(frame, row.id);
        if (!dock)
            continue;
        const bool horz = (row.style & CBRS_ORIENT_HORZ) != 0;
        const CSize size = dock->Layout(horz ? client.Width() : client.Height(), true);
        CRect place;
        switch (row.id) {
        case AFX_IDW_DOCKBAR_TOP:
            place = CRect(client.left, client.top, client.right, client.top + size.cy);
            client.top += size.cy;
            break;
        case AFX_IDW_DOCKBAR_BOTTOM:
            place = CRect(client.left, client.bottom - size.cy, client.right, client.bottom);
            client.bottom -= size.cy;
            break;
        case AFX_IDW_DOCKBAR_LEFT:
            place = CRect(client.left, client.top, client.left + size.cx, client.bottom);
            client.left += size.cx;
            break;
        default:
            place = CRect(client.right - size.cx, client.top, client.right, client.bottom);
            client.right -= size.cx;
            break;
        }
        dock->SetWindowPos(nullptr, place.left, place.top, place.Width(), place.Height(),
                           SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return client;
}

// --- bar state --------------------------------------------------------------

CString Section(const char* profile, int index)
{
    CString s;
    s.Format("%s-Bar%d", profile ? profile : "", index);
    return s;
}

int ReadInt(const CString& section, const char* key, int defaultValue)
{
    const vx::BarStateStore& store = vx::GetBarStateStore();
    return store.readInt ? store.readInt(section, key, defaultValue) : defaultValue;
}

void WriteInt(const CString& section, const char* key, int value)
{
    const vx::BarStateStore& store = vx::GetBarStateStore();
    if (store.writeInt)
        store.writeInt(section, key, value);
}

void SaveBarState(const CFrameWnd& frame, const char* profile)
{
    int index = 0;
    for (CWnd* w : frame.m_listControlBars) {
        auto* bar = dynamic_cast<CControlBar*>(w);
        if (!bar || !bar->m_hWnd)
            continue;
        const CString section = Section(profile, index++);
        WriteInt(section, "BarID", static_cast<int>(bar->GetDlgCtrlID()));
        WriteInt(section, "Visible", (bar->GetStyle() & WS_VISIBLE) ? 1 : 0);
        const bool floating = bar->IsFloating();
        WriteInt(section, "Floating", floating ? 1 : 0);
        if (floating) {
            CRect r;
            if (CWnd* mini = bar->m_pDockBar ? bar->m_pDockBar->GetParent() : nullptr)
                mini->GetWindowRect(&r);
            WriteInt(section, "XPos", r.left);
            WriteInt(section, "YPos", r.top);
            WriteInt(section, "Horz", (bar->GetBarStyle() & CBRS_ORIENT_VERT) ? 0 : 1);
            WriteInt(section, "DockBarID", 0);
        } else if (bar->m_pDockBar) {
            int row = 0;
            int place = 0;
            bar->m_pDockBar->FindBar(bar, &row, &place);
            WriteInt(section, "DockBarID", bar->m_pDockBar->GetDlgCtrlID());
            WriteInt(section, "Row", row);
            WriteInt(section, "Place", place);
        }
    }
    WriteInt(CString(profile ? profile : "") + "-Summary", "Bars", index);
}

void LoadBarState(CFrameWnd& frame, const char* profile)
{
    const int count = ReadInt(CString(profile ? profile : "") + "-Summary", "Bars", 0);
    struct Saved {
        CControlBar* bar;
        UINT dock;
        int row;
        int place;
        bool floating;
        CPoint at;
        bool horz;
        bool visible;
    };
    std::vector<Saved> saved;
    for (int i = 0; i < count; ++i) {
        const CString section = Section(profile, i);
        const UINT id = static_cast<UINT>(ReadInt(section, "BarID", 0));
        CControlBar* bar = nullptr;
        for (CWnd* w : frame.m_listControlBars) {
            auto* b = dynamic_cast<CControlBar*>(w);
            if (b && b->m_hWnd && b->GetDlgCtrlID() == id)
                bar = b;
        }
        if (!bar)
            continue;
        Saved s{bar,
                static_cast<UINT>(ReadInt(section, "DockBarID", 0)),
                ReadInt(section, "Row", 0),
                ReadInt(section, "Place", 0),
                ReadInt(section, "Floating", 0) != 0,
                CPoint(ReadInt(section, "XPos", 0),
                       ReadInt(section, "YPos", 0)),
                ReadInt(section, "Horz", 1) != 0,
                ReadInt(section, "Visible", 1) != 0};
        saved.push_back(s);
    }
    // Rows are rebuilt in their order, each bar at its place.
    std::stable_sort(saved.begin(), saved.end(), [](const Saved& a, const Saved& b) {
        return a.dock != b.dock ? a.dock < b.dock : a.row != b.row ? a.row < b.row : a.place < b.place;
    });
    for (const Saved& s : saved) {
        if (s.floating) {
            FloatControlBar(frame, s.bar, s.at, s.horz ? CBRS_ALIGN_TOP : CBRS_ALIGN_LEFT);
            continue;
        }
        CDockBar* dock = DockBarOf(frame, s.dock);
        if (!dock)
            continue;
        if (CMiniDockFrameWnd* mini = MiniFrameOf(s.bar)) {
            dock->DockControlBarAt(s.bar, s.row, s.place);
            mini->ShowWindow(SW_HIDE);
            Parts()[&frame].miniFrames.erase(s.bar);
        } else {
            dock->DockControlBarAt(s.bar, s.row, s.place);
        }
    }
    for (const Saved& s : saved)
        ShowControlBar(frame, s.bar, s.visible);
    frame.RecalcLayout();
}

void FrameGone(CFrameWnd& frame)
{
    for (CWnd* w : frame.m_listControlBars) {
        if (auto* bar = dynamic_cast<CControlBar*>(w); bar && bar->m_pDockSite == &frame)
            bar->m_pDockSite = nullptr;
    }
    frame.m_listControlBars.clear();
    Parts().erase(&frame);
}

const bool g_installed = [] {
    vx::FrameDocking docking;
    docking.enableDocking = &EnableDocking;
    docking.dockControlBar = &DockControlBar;
    docking.floatControlBar = &FloatControlBar;
    docking.showControlBar = &ShowControlBar;
    docking.layoutBars = &LayoutBars;
    docking.saveBarState = &SaveBarState;
    docking.loadBarState = &LoadBarState;
    docking.frameGone = &FrameGone;
    vx::SetFrameDocking(docking);
    return true;
}();

} // namespace

namespace vx {
namespace {
BarStateStore& Store()
{
    static BarStateStore store;
    return store;
}
} // namespace

void SetBarStateStore(const BarStateStore& store)
{
    Store() = store;
}

const BarStateStore& GetBarStateStore()
{
    return Store();
}

} // namespace vx
