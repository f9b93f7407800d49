#include "layout/ksplitresizedialog.h"

#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/images/cbitmap.h"
#include "ui/windows/qtinterop.h"

#include <QImage>

#include <algorithm>

// The dragged bar is an inverted rectangle over the dialog and its controls.
// A dialog's own device context paints beneath its children here, so the
// drag draws on a layer above them: a picture of the client area taken when
// the drag starts, into which the bar is inverted stroke by stroke and which
// goes away at the release.
class KSplitResizeDialog::DragLayer : public CWnd {
public:
    bool Open(CWnd& dialog)
    {
        CRect client;
        dialog.GetClientRect(&client);
        CRect outer;
        dialog.GetWindowRect(&outer);
        CPoint origin(0, 0);
        dialog.ClientToScreen(&origin);
        QImage picture = vx::RenderWindow(dialog);
        if (picture.isNull() || client.IsRectEmpty())
            return false;
        picture = picture.copy(origin.x - outer.left, origin.y - outer.top, client.Width(), client.Height());
        m_bitmap.Attach(vx::BitmapFromQImage(picture));
        m_dc.CreateCompatibleDC(nullptr);
        m_old = m_dc.SelectObject(&m_bitmap);
        if (!CreateEx("", "VxSplitDragLayer", WS_CHILD | WS_DISABLED, client, &dialog, 0xFFFF))
            return false;
        SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
        return true;
    }

    ~DragLayer() override
    {
        if (m_hWnd)
            DestroyWindow();
        if (m_dc.m_hDC && m_old)
            m_dc.SelectObject(m_old);
    }

    CDC& Picture() { return m_dc; }

    void Show(const RECT& changed)
    {
        InvalidateRect(&changed, FALSE);
        UpdateWindow();
    }

protected:
    BOOL OnEraseBkgnd() override { return TRUE; }
    void OnPaint() override
    {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.BitBlt(0, 0, r.Width(), r.Height(), &m_dc, 0, 0, SRCCOPY);
    }

private:
    CBitmap m_bitmap;
    CDC m_dc;
    CBitmap* m_old = nullptr;
};

KSplitResizeDialog::KSplitResizeDialog(UINT templateId, CWnd* parent)
    : CResizeDialog(templateId, parent, fdAll, true)
{
}

KSplitResizeDialog::~KSplitResizeDialog()
{
    m_pLayer.reset();
    delete m_pRoot;
}

KSplitPane* KSplitResizeDialog::CreatePane(int orientation, KSplitPane* parent, int side, int movable)
{
    auto* pane = new KSplitPane;
    pane->SetOrientation(orientation);
    pane->SetMovable(movable);
    if (!parent) {
        if (m_pDragPane)
            m_bDragging = false;
        m_pDragPane = nullptr;
        delete m_pRoot;
        m_pRoot = pane;
    } else {
        parent->AttachChild(pane, side);
    }
    return pane;
}

void KSplitResizeDialog::AddWindowToPane(KSplitPane* pane, CWnd* window, int side, int modeX, int modeY)
{
    if (pane && window)
        pane->AddWindow(window, side, modeX, modeY);
}

void KSplitResizeDialog::RemoveWindowFromPane(KSplitPane* pane, CWnd* window)
{
    if (pane)
        pane->RemoveWindow(window);
}

int KSplitResizeDialog::ShowPane(KSplitPane* pane, int show, int side)
{
    if (pane) {
        if (side == KSplitPane::sideLeft)
            pane->ShowLeft(show);
        else
            pane->ShowRight(show);
    }
    if (m_pRoot)
        m_pRoot->MovePane(-1, -1);
    return 1;
}

void KSplitResizeDialog::Initialize(int move)
{
    if (!m_pRoot)
        return;
    m_pRoot->SetupPane();
    if (move)
        m_pRoot->MovePane(-1, -1);
}

bool KSplitResizeDialog::StoreWindowPosition(const CString& section, int profile)
{
    const bool stored = m_Header.StoreWindowPosition(section, profile);
    if (m_pRoot) {
        int counter = 0;
        m_pRoot->SaveLeftWidth(section, &counter, profile);
    }
    return stored;
}

bool KSplitResizeDialog::RestoreWindowPosition(const CString& section, bool withState, int profile)
{
    const bool restored = m_Header.RestoreWindowPosition(section, withState, profile);
    if (m_pRoot) {
        int counter = 0;
        m_pRoot->RestoreLeftWidth(section, &counter, profile);
    }
    ReloadControlsPosition();
    CRect client;
    GetClientRect(&client);
    PostMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.Width(), client.Height()));
    return restored;
}

// --- sizing --------------------------------------------------------------------------

void KSplitResizeDialog::OnSize(UINT type, int cx, int cy)
{
    CResizeDialog::OnSize(type, cx, cy);
    // The percentage rules have just placed the controls: the tree takes
    // its division from them afresh.
    if (type != SIZE_MINIMIZED)
        Initialize(1);
}

void KSplitResizeDialog::OnSizing(UINT side, LPRECT rect)
{
    if (!m_pRoot || !rect)
        return;
    const int minHeight = m_pRoot->GetMinHeight();
    const int minWidth = m_pRoot->GetMinWidth();
    if (rect->bottom - rect->top < minHeight) {
        if (side >= WMSZ_TOP && side <= WMSZ_TOPRIGHT)
            rect->top = rect->bottom - minHeight;
        else if (side >= WMSZ_BOTTOM && side <= WMSZ_BOTTOMRIGHT)
            rect->bottom = rect->top + minHeight;
    }
    if (rect->right - rect->left < minWidth) {
        if (side == WMSZ_LEFT || side == WMSZ_TOPLEFT || side == WMSZ_BOTTOMLEFT)
            rect->left = rect->right - minWidth;
        else if (side == WMSZ_RIGHT || side == WMSZ_TOPRIGHT || side == WMSZ_BOTTOMRIGHT)
            rect->right = rect->left + minWidth;
    }
}

void KSplitResizeDialog::OnGetMinMaxInfo(MINMAXINFO* info)
{
    CResizeDialog::OnGetMinMaxInfo(info);
    // The window manager sizes the frame here, not a sizing loop of ours:
    // the tree's minimum joins the track size, as OnSizing would hold it.
    if (!m_pRoot || !info || !m_hWnd)
        return;
    CRect outer;
    GetWindowRect(&outer);
    CRect client;
    GetClientRect(&client);
    const LONG width = m_pRoot->GetMinWidth() + outer.Width() - client.Width();
    const LONG height = m_pRoot->GetMinHeight() + outer.Height() - client.Height();
    info->ptMinTrackSize.x = std::max(info->ptMinTrackSize.x, width);
    info->ptMinTrackSize.y = std::max(info->ptMinTrackSize.y, height);
}

LRESULT KSplitResizeDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SIZING) {
        OnSizing(static_cast<UINT>(wParam), reinterpret_cast<LPRECT>(lParam));
        return TRUE;
    }
    return CResizeDialog::WindowProc(message, wParam, lParam);
}

// --- dragging --------------------------------------------------------------------------

BOOL KSplitResizeDialog::OnSetCursor(CWnd* window, UINT hitTest, UINT message)
{
    if (m_pRoot && window == this && hitTest == HTCLIENT) {
        CPoint at;
        ::GetCursorPos(&at);
        ScreenToClient(&at);
        KSplitPane* hit = nullptr;
        if (LPCSTR cursor = m_bDragging ? (m_pDragPane->GetOrientation() == 1 ? IDC_SIZEWE : IDC_SIZENS)
                                        : m_pRoot->IsPointInSplitter(at, &hit)) {
            ::SetCursor(::LoadCursorA(nullptr, cursor));
            return TRUE;
        }
    }
    return CResizeDialog::OnSetCursor(window, hitTest, message);
}

void KSplitResizeDialog::OnMouseMove(UINT flags, CPoint point)
{
    if (!m_pRoot) {
        CResizeDialog::OnMouseMove(flags, point);
        return;
    }
    KSplitPane* hit = nullptr;
    if (LPCSTR cursor = m_pRoot->IsPointInSplitter(point, &hit))
        ::SetCursor(::LoadCursorA(nullptr, cursor));
    if (m_bDragging)
        DrawDraggingBar(point, DRAG_MOVE);
    CResizeDialog::OnMouseMove(flags, point);
}

void KSplitResizeDialog::OnLButtonDown(UINT flags, CPoint point)
{
    KSplitPane* hit = nullptr;
    LPCSTR cursor = m_pRoot ? m_pRoot->IsPointInSplitter(point, &hit) : nullptr;
    if (!cursor || !hit) {
        CResizeDialog::OnLButtonDown(flags, point);
        return;
    }
    m_pDragPane = hit;
    SetCapture();
    ::SetCursor(::LoadCursorA(nullptr, cursor));
    m_bDragging = true;
    DrawDraggingBar(point, DRAG_START);
}

void KSplitResizeDialog::OnLButtonUp(UINT flags, CPoint point)
{
    if (!m_pRoot || !m_bDragging || !m_pDragPane) {
        CResizeDialog::OnLButtonUp(flags, point);
        return;
    }
    DrawDraggingBar(point, DRAG_END);
    m_bDragging = false;
    m_pDragPane->MoveSplitter(point);
    m_pDragPane = nullptr;
    ReleaseCapture();
    ReloadControlsPosition();
    RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    // The percentage rules run once more on their new baseline.
    CRect client;
    GetClientRect(&client);
    PostMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.Width(), client.Height()));
}

void KSplitResizeDialog::DrawDraggingBar(CPoint point, DRAGFLAG flag)
{
    if (!m_pDragPane)
        return;
    if (flag == DRAG_START) {
        m_pLayer = std::make_unique<DragLayer>();
        if (!m_pLayer->Open(*this))
            m_pLayer.reset();
        m_rcLastBar.SetRectEmpty();
    }
    // The bar follows the mouse within the limits the release will keep.
    const CRect& pane = m_pDragPane->GetPaneRect();
    m_rcBar = m_pDragPane->GetSplitterRect();
    if (m_pDragPane->GetOrientation() == 1) {
        int x = std::max<int>(point.x, pane.left + m_pDragPane->GetLeftMinWidth());
        x = std::min<int>(x, pane.right - m_pDragPane->GetRightMinWidth());
        m_rcBar.OffsetRect(x - m_rcBar.left, 0);
    } else {
        int y = std::max<int>(point.y, pane.top + m_pDragPane->GetLeftMinHeight());
        y = std::min<int>(y, pane.bottom - m_pDragPane->GetRightMinHeight());
        m_rcBar.OffsetRect(0, y - m_rcBar.top);
    }
    const CSize thickness(m_rcBar.Width(), m_rcBar.Height());
    if (m_pLayer) {
        CDC& dc = m_pLayer->Picture();
        CRect changed = m_rcBar;
        if (flag == DRAG_END) {
            // The last stroke takes the bar away.
            if (!m_rcLastBar.IsRectEmpty())
                dc.DrawDragRect(&m_rcLastBar, thickness, nullptr, thickness);
            changed = m_rcLastBar;
        } else if (m_rcLastBar.IsRectEmpty()) {
            dc.DrawDragRect(&m_rcBar, thickness, nullptr, thickness);
        } else if (m_rcLastBar != m_rcBar) {
            dc.DrawDragRect(&m_rcBar, thickness, &m_rcLastBar, thickness);
            changed.UnionRect(&m_rcBar, &m_rcLastBar);
        }
        m_pLayer->Show(changed);
    }
    if (flag == DRAG_END) {
        m_pLayer.reset();
        m_rcLastBar.SetRectEmpty();
    } else {
        m_rcLastBar = m_rcBar;
    }
}
