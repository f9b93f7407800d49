// CMDIChildWnd: a child frame inside the MDI client of a CMDIFrameWnd. It
// draws its own caption (title, minimise, maximise or restore, close) and
// sizing border, in the active or inactive caption colours; dragging the
// caption moves it and dragging the border sizes it, within the client.
// A click anywhere in it makes it the active child.
//
//   CMDIChildWnd* child = new CMDIChildWnd;   // deletes itself when closed
//   child->Create(nullptr, "Rysunek 1", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, CRect(), &frame);
#pragma once

#include "platform/windows/cframewnd.h"
#include "vxbase_ui_export.h"

class CMDIClientWnd;

class VXBASE_UI_EXPORT CMDIChildWnd : public CFrameWnd {
public:
    CMDIChildWnd();
    ~CMDIChildWnd() override;

    // Makes the child in `parent`'s MDI client (the main window's when
    // null) at `rect` (client coordinates of the MDI client), or at the next
    // cascade place when `rect` is empty, and makes it the active child.
    // WS_MAXIMIZE in `style` maximises it.
    // A context's view becomes the child's pane.
    virtual BOOL Create(const char* className, const char* title,
                        DWORD style = WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, const RECT& rect = CRect(),
                        CMDIFrameWnd* parent = nullptr, CCreateContext* context = nullptr);
    using CFrameWnd::Create;
    // The child of resource `id` in `parent` (an MDI frame, or the main
    // window): its title is the first part of string `id`, or the document
    // name (the second) when the first is empty; the context's template
    // gives the menu the frame shows while the child is active.
    BOOL LoadFrame(UINT id, DWORD style = WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW | FWS_ADDTOTITLE,
                   CWnd* parent = nullptr, CCreateContext* context = nullptr) override;

    CMDIFrameWnd* GetMDIFrame() const;
    void MDIActivate();
    void MDIDestroy();
    void MDIMaximize();
    void MDIRestore();
    bool IsActiveChild() const { return m_active; }

    // A child made with new deletes itself once destroyed (the framework's
    // rule for frames); one that lives elsewhere clears this first.
    bool m_bAutoDelete = true;
    // The menu the frame shows while this child is active; null keeps the
    // frame's own. (The template's accelerators go to m_hAccelTable.)
    HMENU m_hMenuShared = nullptr;

    // The caption buttons in window coordinates (empty when not shown).
    enum class Box { Minimize, Maximize, Close };
    CRect BoxRect(Box box) const;
    CRect CaptionRect() const;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL PreTranslateMessage(MSG* msg) override;
    // WM_MDIACTIVATE: this child became active or stopped being so.
    virtual void OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated);
    void OnNcCalcSize(BOOL calcValidRects, NCCALCSIZE_PARAMS* params) override;
    void OnNcPaint() override;
    LRESULT OnNcHitTest(CPoint screen) override;
    void OnNcLButtonDown(UINT hitTest, CPoint screen) override;
    void OnNcLButtonDblClk(UINT hitTest, CPoint screen) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnCaptureChanged(CWnd* wnd) override;
    void OnClose() override;
    void OnDestroy() override;
    void PostNcDestroy() override;

private:
    friend class CMDIClientWnd;
    CMDIClientWnd* Client() const;
    // Maximised, with its system menu and buttons in the frame's menu bar.
    bool InFrameMenuBar() const;
    int FrameWidth() const;
    // The window rectangle in the MDI client's coordinates.
    CRect RectInClient() const;

    bool m_active = false;
    // What a held mouse button is doing: HTCAPTION moves, a sizing code
    // sizes, a box code waits for the release over the box.
    UINT m_track = 0;
    CPoint m_trackFrom;
    CRect m_trackRect;
    // Where the child was before it was maximised or minimised.
    CRect m_restoreRect;
};
