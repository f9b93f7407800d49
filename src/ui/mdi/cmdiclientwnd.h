// CMDIClientWnd: the MDI client ("MDICLIENT"), the pane of a CMDIFrameWnd
// that holds its child frames. It keeps which child is active, places the
// children (cascade, tile, maximise), lists them in the frame's "Window"
// menu and puts the frame's menu in place (WM_MDISETMENU). A frame makes it
// with CMDIFrameWnd::CreateClient and talks to it in WM_MDI... messages.
#pragma once

#include "platform/windows/cframewnd.h"
#include "vxbase_ui_export.h"

#include <vector>

class CMDIChildWnd;

class VXBASE_UI_EXPORT CMDIClientWnd : public CWnd {
public:
    CMDIClientWnd();
    ~CMDIClientWnd() override;

    // The client of a frame, or null.
    static CMDIClientWnd* Of(const CMDIFrameWnd* frame);

    CMDIChildWnd* Active() const { return m_active; }
    // The children in the order they were made (the Window menu's order).
    const std::vector<CMDIChildWnd*>& Children() const { return m_children; }
    HMENU WindowMenu() const { return m_windowMenu; }
    // The maximised child whose system menu and buttons are in the frame's
    // menu bar, or null.
    HWND BarChild() const { return m_barChild; }
    // Where the next child goes when it gives no rectangle.
    CRect NextCascadeRect();

    // Called by CMDIChildWnd as it is made and destroyed.
    void AddChild(CMDIChildWnd* child);
    void RemoveChild(CMDIChildWnd* child);
    // A child's title changed: the Window menu and a maximised title follow.
    void ChildTitleChanged(CMDIChildWnd* child);

    // The step between cascaded children.
    static int CascadeStep();

    HMENU m_windowMenu = nullptr;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnEraseBkgnd() override;
    void OnPaint() override;
    void OnSize(UINT type, int cx, int cy) override;
    void PostNcDestroy() override;

private:
    friend class CMDIChildWnd;
    friend HWND MakeMdiClient(CMDIFrameWnd& frame, HMENU windowMenu);
    void Activate(CMDIChildWnd* child);
    void Cascade();
    void Tile(UINT how);
    void Maximize(CMDIChildWnd* child);
    void Restore(CMDIChildWnd* child);
    // A minimised child is its caption alone, in the first free place of
    // the rows along the bottom (IconPlace).
    void Minimize(CMDIChildWnd* child);
    // WM_MDIICONARRANGE: the minimised children into the places from the
    // first on, in the Window menu's order; the others stay where they are.
    void ArrangeIcons();
    // Place `index` of the minimised children: rows along the bottom from
    // the left, the next row above when one is full.
    CRect IconPlace(int index) const;
    // Cascade and tile leave the minimised children in view: they arrange
    // them first and keep to the client above their rows.
    CRect AreaAboveIcons();
    // The children the Window menu lists, in its order (all of them, also
    // those past the first nine).
    std::vector<CMDIChildWnd*> Listed() const;
    // A child picked from the Window menu or the "Select Window" dialog
    // becomes active, restored first if it was minimised.
    void Pick(CMDIChildWnd* child);
    // "&More Windows...": the "Select Window" dialog over all children.
    void MoreWindows();
    void Next(bool previous);
    HMENU SetMenus(HMENU frameMenu, HMENU windowMenu);
    static HMENU FindWindowMenu(HMENU menu);
    void UpdateWindowMenu();
    void UpdateFrameTitle();
    // Puts the maximised active child's system menu and buttons into the
    // frame's menu bar, or takes them out (mdimenubar.cpp).
    void UpdateBarButtons();
    // Visible children that are not minimised, the active one last.
    std::vector<CMDIChildWnd*> Arrangeable() const;
    CMDIChildWnd* ChildOf(HWND hwnd) const;
    CMDIFrameWnd* Frame() const;

    std::vector<CMDIChildWnd*> m_children;
    CMDIChildWnd* m_active = nullptr;
    HMENU m_frameMenu = nullptr;
    HMENU m_barMenu = nullptr;
    HWND m_barChild = nullptr;
    int m_cascadeNext = 0;
    // The frame's title without " - [child]".
    CString m_frameTitle;
    bool m_titleSaved = false;
    bool m_autoDelete = false;
};
