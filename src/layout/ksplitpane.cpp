#include "layout/ksplitpane.h"

#include "config/kprofile.h"
#include "ui/controls/cstatic.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/gdi/wingdi.h"

#include <algorithm>
#include <typeinfo>

namespace {

// The window's rectangle in its parent's client coordinates, which are the
// dialog's for every window a split dialog places.
CRect ClientRectOf(CWnd& window)
{
    CRect r;
    window.GetWindowRect(&r);
    if (CWnd* parent = window.GetParent())
        parent->ScreenToClient(&r);
    return r;
}

// What a label needs to show its text: the extent in the parent's device
// context with the parent's font, as a label's text was measured.
CSize TextExtentOf(CWnd& window)
{
    CWnd* parent = window.GetParent();
    if (!parent)
        return CSize(0, 0);
    CClientDC dc(parent);
    CFont* old = nullptr;
    if (CFont* font = parent->GetFont())
        old = dc.SelectObject(font);
    const CString text = window.GetWindowTextString();
    CSize extent(0, 0);
    ::GetTextExtentPoint32A(dc.m_hDC, text, text.GetLength(), &extent);
    if (old)
        dc.SelectObject(old);
    return extent;
}

// The new first and second edge of a window on one axis (the rules are told
// for the horizontal axis; the vertical one passes top, bottom and height).
struct Span {
    int first;
    int second;
};

Span PlaceAxis(int mode, int origin, int size, int snapshotFirst, int snapshotSize, int relFirst, int relSecond,
               int offset)
{
    const int w = relSecond - relFirst;
    switch (mode) {
    case KSplitPane::modeFixed:
        return {snapshotFirst + relFirst, snapshotFirst + relSecond};
    case KSplitPane::modeStretch: {
        const int first = origin + relFirst;
        return {first, first + w + (size - snapshotSize)};
    }
    case KSplitPane::modeNear: {
        const int first = origin + offset;
        return {first, first + w};
    }
    case KSplitPane::modeFar: {
        const int second = origin + size - offset;
        return {second - w, second};
    }
    case KSplitPane::modeCentre: {
        const int first = origin + (size - w) / 2;
        return {first, first + w};
    }
    default:
        return {origin + relFirst, origin + relSecond};
    }
}

} // namespace

KSplitPane::KSplitPane()
    : m_pLeftWindows(std::make_unique<WindowList>()), m_pRightWindows(std::make_unique<WindowList>())
{
}

KSplitPane::~KSplitPane()
{
    // A right child is kept even though the kind never says so (AttachChild).
    delete m_pLeftPane;
    delete m_pRightPane;
}

CRect KSplitPane::UnionRect(const RECT* a, const RECT* b)
{
    const auto empty = [](const RECT* r) { return r->left == r->right && r->top == r->bottom; };
    if (empty(a))
        return CRect(*b);
    if (empty(b))
        return CRect(*a);
    return CRect(std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
                 std::max(a->bottom, b->bottom));
}

void KSplitPane::AttachChild(KSplitPane* child, int side)
{
    if (side == sideLeft) {
        m_nLeftKind = kindPane;
        m_pLeftWindows.reset();
        delete m_pLeftPane;
        m_pLeftPane = child;
    } else {
        // The right kind stays as it was: deliberate, see the header.
        m_pRightWindows.reset();
        delete m_pRightPane;
        m_pRightPane = child;
        m_bRightVisible = 1;
    }
}

void KSplitPane::AddWindow(CWnd* window, int side, int modeX, int modeY)
{
    const bool left = side == sideLeft;
    std::unique_ptr<WindowList>& list = left ? m_pLeftWindows : m_pRightWindows;
    // A side whose list a child took gets a new one; the child stays, but
    // the walks follow the kind, which now says windows.
    if (!list)
        list = std::make_unique<WindowList>();
    WindowEntry entry;
    entry.m_pWnd = window;
    entry.m_nModeX = modeX;
    entry.m_nModeY = modeY;
    list->Add(entry);
    (left ? m_nLeftKind : m_nRightKind) = kindWindows;
    (left ? m_bLeftVisible : m_bRightVisible) = 1;
}

bool KSplitPane::RemoveWindow(CWnd* window)
{
    for (WindowList* list : {m_pLeftWindows.get(), m_pRightWindows.get()}) {
        if (!list)
            continue;
        for (int i = 0; i < list->GetSize(); ++i) {
            if ((*list)[i].m_pWnd == window) {
                list->RemoveAt(i);
                SetupPane();
                return true;
            }
        }
    }
    return false;
}

// --- measuring ----------------------------------------------------------------------

void KSplitPane::SetupSide(bool left)
{
    const int kind = left ? m_nLeftKind : m_nRightKind;
    CRect& rect = left ? m_rcLeft : m_rcRight;
    int& minW = left ? m_nLeftMinWidth : m_nRightMinWidth;
    int& minH = left ? m_nLeftMinHeight : m_nRightMinHeight;
    if (kind == kindWindows) {
        rect.SetRectEmpty();
        if (WindowList* list = left ? m_pLeftWindows.get() : m_pRightWindows.get()) {
            for (int i = 0; i < list->GetSize(); ++i) {
                if (CWnd* w = (*list)[i].m_pWnd) {
                    const CRect r = ClientRectOf(*w);
                    rect = UnionRect(&rect, &r);
                }
            }
        }
        return;
    }
    KSplitPane* child = left ? m_pLeftPane : m_pRightPane;
    if (kind == kindPane && child) {
        child->SetupPane();
        rect = UnionRect(&child->m_rcLeft, &child->m_rcRight);
        // The first row is not the mirror of the third: a left child split
        // left and right needs only its own left side's width. So it was.
        if (child->m_nOrientation == 1) {
            minW = left ? child->m_nLeftMinWidth : child->m_nLeftMinWidth + child->m_nRightMinWidth;
            minH = std::max(child->m_nLeftMinHeight, child->m_nRightMinHeight);
        } else {
            minW = std::max(child->m_nLeftMinWidth, child->m_nRightMinWidth);
            minH = child->m_nLeftMinHeight + child->m_nRightMinHeight;
        }
        return;
    }
    rect.SetRectEmpty();
    minW = 0;
    minH = 0;
}

void KSplitPane::MeasureWindows(bool left)
{
    WindowList* list = left ? m_pLeftWindows.get() : m_pRightWindows.get();
    const CRect pane = left ? m_rcLeft : m_rcRight;
    int nearX = 30;
    int farX = 30;
    int nearY = 30;
    int farY = 30;
    for (int i = 0; list && i < list->GetSize(); ++i) {
        WindowEntry& e = (*list)[i];
        if (!e.m_pWnd)
            continue;
        const CRect r = ClientRectOf(*e.m_pWnd);
        CSize text = left ? CSize(0, 0) : CSize(5, 5);
        // A label of its own class (a skinned one, say) is not measured: only
        // the plain static's class is, as its run-time class named it.
        if (typeid(*e.m_pWnd) == typeid(CStatic))
            text = TextExtentOf(*e.m_pWnd);
        int relLeft = r.left - pane.left;
        if (!left && relLeft < 0)
            relLeft = 0;
        const int relRight = r.right - pane.left;
        const int relTop = r.top - pane.top;
        const int relBottom = r.bottom - pane.top;
        e.m_nOffsetX = 0;
        e.m_nOffsetY = 0;
        switch (e.m_nModeX) {
        case modeStretch:
            e.m_nOffsetX = relLeft;
            nearX = std::max(nearX, relLeft + static_cast<int>(text.cx));
            if (!left)
                farX = std::max(farX, pane.right - r.right);
            break;
        case modeNear:
        case modeCentre:
            e.m_nOffsetX = relLeft;
            nearX = std::max(nearX, relRight);
            break;
        case modeFar:
            e.m_nOffsetX = pane.right - r.right;
            farX = std::max(farX, left ? e.m_nOffsetX + r.Width() + 3 : e.m_nOffsetX);
            break;
        default:
            break;
        }
        switch (e.m_nModeY) {
        case modeStretch:
            e.m_nOffsetY = relTop;
            nearY = std::max(nearY, relTop + static_cast<int>(text.cy));
            break;
        case modeNear:
        case modeCentre:
            e.m_nOffsetY = relTop;
            nearY = std::max(nearY, relBottom);
            break;
        case modeFar:
            e.m_nOffsetY = pane.bottom - r.bottom;
            farY = std::max(farY, e.m_nOffsetY);
            break;
        default:
            break;
        }
        e.m_rcRelative = CRect(relLeft, relTop, relRight, relBottom);
        e.m_rcSnapshot = pane;
    }
    (left ? m_nLeftMinWidth : m_nRightMinWidth) = std::min(pane.Width(), nearX + farX);
    (left ? m_nLeftMinHeight : m_nRightMinHeight) = std::min(pane.Height(), nearY + farY);
}

void KSplitPane::SetupPane()
{
    SetupSide(true);
    SetupSide(false);
    const CRect leftContent = m_rcLeft;
    m_rcPane = UnionRect(&m_rcLeft, &m_rcRight);
    if (m_nOrientation == 1) {
        m_rcLeft = CRect(m_rcPane.left, m_rcPane.top, leftContent.right, m_rcPane.bottom);
        m_rcRight = CRect(leftContent.right + kBarSize, m_rcPane.top, m_rcPane.right, m_rcPane.bottom);
    } else {
        m_rcLeft = CRect(m_rcPane.left, m_rcPane.top, m_rcPane.right, leftContent.bottom);
        m_rcRight = CRect(m_rcPane.left, leftContent.bottom + kBarSize, m_rcPane.right, m_rcPane.bottom);
    }
    if (m_nLeftKind == kindWindows)
        MeasureWindows(true);
    if (m_nRightKind == kindWindows)
        MeasureWindows(false);
}

// --- sizes ----------------------------------------------------------------------------

int KSplitPane::SideMinWidth(bool left) const
{
    const int kind = left ? m_nLeftKind : m_nRightKind;
    const KSplitPane* child = left ? m_pLeftPane : m_pRightPane;
    if (kind == kindPane)
        return child ? child->GetMinWidth() : 0;
    return kind == kindWindows ? (left ? m_nLeftMinWidth : m_nRightMinWidth) : 0;
}

int KSplitPane::SideMinHeight(bool left) const
{
    const int kind = left ? m_nLeftKind : m_nRightKind;
    const KSplitPane* child = left ? m_pLeftPane : m_pRightPane;
    if (kind == kindPane)
        return child ? child->GetMinHeight() : 0;
    return kind == kindWindows ? (left ? m_nLeftMinHeight : m_nRightMinHeight) : 0;
}

int KSplitPane::GetMinWidth() const
{
    const int l = SideMinWidth(true);
    const int r = SideMinWidth(false);
    return (m_nOrientation == 1 ? l + r : std::max(l, r)) + kBarSize;
}

int KSplitPane::GetMinHeight() const
{
    const int l = SideMinHeight(true);
    const int r = SideMinHeight(false);
    return (m_nOrientation == 0 ? l + r : std::max(l, r)) + kBarSize;
}

int KSplitPane::GetLeftMinWidth() const
{
    return SideMinWidth(true);
}

int KSplitPane::GetLeftMinHeight() const
{
    return SideMinHeight(true);
}

int KSplitPane::GetRightMinWidth() const
{
    return SideMinWidth(false);
}

int KSplitPane::GetRightMinHeight() const
{
    return SideMinHeight(false);
}

int KSplitPane::GetLeftWidth() const
{
    const KSplitPane* node = this;
    while (node->m_nLeftKind == kindPane && node->m_pLeftPane)
        node = node->m_pLeftPane;
    return node->m_nLeftKind == kindNothing ? 0 : node->m_rcLeft.Width();
}

int KSplitPane::GetLeftHeight() const
{
    const KSplitPane* node = this;
    while (node->m_nLeftKind == kindPane && node->m_pLeftPane)
        node = node->m_pLeftPane;
    return node->m_nLeftKind == kindNothing ? 0 : node->m_rcLeft.Height();
}

void KSplitPane::SetLeftWidth(int width)
{
    KSplitPane* node = this;
    while (node->m_nLeftKind == kindPane && node->m_pLeftPane) {
        node->m_pLeftPane->m_rcPane.right = node->m_pLeftPane->m_rcPane.left + width;
        node = node->m_pLeftPane;
    }
    node->m_rcLeft.right = node->m_rcLeft.left + width;
}

void KSplitPane::SetLeftHeight(int height)
{
    KSplitPane* node = this;
    while (node->m_nLeftKind == kindPane && node->m_pLeftPane) {
        node->m_pLeftPane->m_rcPane.bottom = node->m_pLeftPane->m_rcPane.top + height;
        node = node->m_pLeftPane;
    }
    node->m_rcLeft.bottom = node->m_rcLeft.top + height;
}

// --- layout ---------------------------------------------------------------------------

void KSplitPane::PlaceWindows(bool left, const CRect& pane)
{
    WindowList* list = left ? m_pLeftWindows.get() : m_pRightWindows.get();
    if (!list)
        return;
    const WindowList* leftList = m_nLeftKind == kindWindows ? m_pLeftWindows.get() : nullptr;
    for (int i = 0; i < list->GetSize(); ++i) {
        const WindowEntry& e = (*list)[i];
        if (!e.m_pWnd || !::IsWindow(e.m_pWnd->GetSafeHwnd()))
            continue;
        // A centred window of the right side is centred on the left side, as
        // its entry at the same place in the left list is: the rule as it
        // stands. Without such an entry it is centred on its own side.
        const bool besideLeft = !left && leftList && i < leftList->GetSize();
        const CRect& s = e.m_rcSnapshot;
        const CRect& rel = e.m_rcRelative;
        Span x;
        if (e.m_nModeX == modeCentre && besideLeft)
            x = PlaceAxis(modeCentre, m_rcLeft.left, m_rcLeft.Width(), 0, 0, rel.left, rel.right, 0);
        else
            x = PlaceAxis(e.m_nModeX, pane.left, pane.Width(), s.left, s.Width(), rel.left, rel.right, e.m_nOffsetX);
        Span y;
        if (e.m_nModeY == modeCentre && besideLeft)
            y = PlaceAxis(modeCentre, m_rcLeft.top, m_rcLeft.Height(), 0, 0, rel.top, rel.bottom, 0);
        else
            y = PlaceAxis(e.m_nModeY, pane.top, pane.Height(), s.top, s.Height(), rel.top, rel.bottom, e.m_nOffsetY);
        e.m_pWnd->MoveWindow(x.first, y.first, x.second - x.first, y.second - y.first, FALSE);
    }
}

void KSplitPane::MovePane(int cx, int cy)
{
    MovePane(m_rcPane.left, m_rcPane.top, cx == -1 ? m_rcPane.Width() : cx, cy == -1 ? m_rcPane.Height() : cy);
}

void KSplitPane::MovePane(int x, int y, int cx, int cy)
{
    // The tail call along the right side is a loop.
    for (KSplitPane* node = this; node;) {
        KSplitPane& n = *node;
        if (!n.m_bLeftVisible && !n.m_bRightVisible)
            return;
        n.m_rcPane = CRect(x, y, x + cx, y + cy);
        if (n.m_nOrientation == 1) {
            int l = n.GetLeftWidth();
            if (cx - l < n.GetRightMinWidth())
                l = cx - n.GetRightMinWidth();
            n.m_rcLeft = CRect(x, y, x + l, y + cy);
            n.m_rcRight = CRect(x + l + kBarSize, y, x + cx, y + cy);
            n.m_rcSplitter = CRect(x + l, y, x + l + kBarSize, y + cy);
        } else {
            int l = n.GetLeftHeight();
            if (cy - l < n.GetRightMinHeight())
                l = cy - n.GetRightMinHeight();
            n.m_rcLeft = CRect(x, y, x + cx, y + l);
            n.m_rcRight = CRect(x, y + l + kBarSize, x + cx, y + cy);
            n.m_rcSplitter = CRect(x, y + l, x + cx, y + l + kBarSize);
        }
        if (!n.m_bLeftVisible)
            n.m_rcRight = n.m_rcPane;
        if (!n.m_bRightVisible)
            n.m_rcLeft = n.m_rcPane;
        if (!n.m_bLeftVisible || !n.m_bRightVisible || !n.m_bMovable)
            n.m_rcSplitter.SetRectEmpty();
        if (n.m_bLeftVisible) {
            if (n.m_nLeftKind == kindPane && n.m_pLeftPane)
                n.m_pLeftPane->MovePane(n.m_rcLeft.left, n.m_rcLeft.top, n.m_rcLeft.Width(), n.m_rcLeft.Height());
            else if (n.m_nLeftKind == kindWindows)
                n.PlaceWindows(true, n.m_rcLeft);
        }
        node = nullptr;
        if (n.m_bRightVisible) {
            if (n.m_nRightKind == kindPane && n.m_pRightPane) {
                node = n.m_pRightPane;
                x = n.m_rcRight.left;
                y = n.m_rcRight.top;
                cx = n.m_rcRight.Width();
                cy = n.m_rcRight.Height();
            } else if (n.m_nRightKind == kindWindows) {
                n.PlaceWindows(false, n.m_rcRight);
            }
        }
    }
}

void KSplitPane::MoveSplitter(CPoint point)
{
    if (m_nOrientation == 1) {
        int p = point.x;
        if (p < m_rcPane.left + GetLeftMinWidth())
            p = m_rcPane.left + GetLeftMinWidth();
        if (p > m_rcPane.right - GetRightMinWidth())
            p = m_rcPane.right - GetRightMinWidth();
        SetLeftWidth(p - m_rcPane.left);
    } else {
        int p = point.y;
        if (p < m_rcPane.top + GetLeftMinHeight())
            p = m_rcPane.top + GetLeftMinHeight();
        if (p > m_rcPane.bottom - GetRightMinHeight())
            p = m_rcPane.bottom - GetRightMinHeight();
        SetLeftHeight(p - m_rcPane.top);
    }
    MovePane(-1, -1);
}

LPCSTR KSplitPane::IsPointInSplitter(CPoint point, KSplitPane** hit)
{
    if (m_rcSplitter.PtInRect(point)) {
        if (hit)
            *hit = this;
        return m_nOrientation == 1 ? IDC_SIZEWE : IDC_SIZENS;
    }
    if (m_nLeftKind == kindPane && m_pLeftPane) {
        if (LPCSTR cursor = m_pLeftPane->IsPointInSplitter(point, hit))
            return cursor;
    }
    if (m_nRightKind == kindPane && m_pRightPane)
        return m_pRightPane->IsPointInSplitter(point, hit);
    return nullptr;
}

// --- showing --------------------------------------------------------------------------

namespace {

void ShowList(KSplitPane::WindowList* list, int show)
{
    for (int i = 0; list && i < list->GetSize(); ++i) {
        if (CWnd* w = (*list)[i].m_pWnd)
            w->ShowWindow(show > 0 ? SW_SHOW : SW_HIDE);
    }
}

} // namespace

void KSplitPane::Show(int show)
{
    m_bVisible = show;
    ShowLeft(show);
    ShowRight(show);
}

void KSplitPane::ShowLeft(int show)
{
    m_bLeftVisible = show;
    if (m_nLeftKind == kindPane && m_pLeftPane)
        m_pLeftPane->Show(show);
    else if (m_nLeftKind == kindWindows)
        ShowList(m_pLeftWindows.get(), show);
}

void KSplitPane::ShowRight(int show)
{
    if (m_bRightVisible == show)
        return;
    m_bRightVisible = show;
    if (m_nRightKind == kindPane && m_pRightPane)
        m_pRightPane->Show(show);
    else if (m_nRightKind == kindWindows)
        ShowList(m_pRightWindows.get(), show);
    if (show <= 0) {
        m_nRememberedLeft = m_nOrientation == 1 ? GetLeftWidth() : GetLeftHeight();
    } else if (m_nOrientation == 1) {
        SetLeftWidth(m_nRememberedLeft);
    } else {
        SetLeftHeight(m_nRememberedLeft);
    }
}

// --- persistence ----------------------------------------------------------------------

void KSplitPane::SaveLeftWidth(const CString& section, int* counter, int profile)
{
    CString key;
    key.Format("Pane%d", (*counter)++);
    KProfile::WriteProfileInt(section, key, m_nOrientation == 1 ? GetLeftWidth() : GetLeftHeight(), profile);
    if (m_nLeftKind == kindPane && m_pLeftPane)
        m_pLeftPane->SaveLeftWidth(section, counter, profile);
    if (m_nRightKind == kindPane && m_pRightPane)
        m_pRightPane->SaveLeftWidth(section, counter, profile);
}

void KSplitPane::RestoreLeftWidth(const CString& section, int* counter, int profile)
{
    CString key;
    key.Format("Pane%d", (*counter)++);
    const int size = static_cast<int>(KProfile::GetProfileIntA(section, key, 0, profile));
    if (size != 0) {
        if (m_nOrientation == 1)
            SetLeftWidth(size);
        else
            SetLeftHeight(size);
    }
    MovePane(-1, -1);
    if (m_nLeftKind == kindPane && m_pLeftPane)
        m_pLeftPane->RestoreLeftWidth(section, counter, profile);
    if (m_nRightKind == kindPane && m_pRightPane)
        m_pRightPane->RestoreLeftWidth(section, counter, profile);
}
