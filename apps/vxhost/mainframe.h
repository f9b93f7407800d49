// The main window of a program of the suite in the sample host: a frame with
// the library's menu bar (the dockable CMenuBar, or the frame's own menu bar
// owner-drawn by CNewMenu), two tool bars (one docked, one floating) with
// tooltips, two child frames with a drawing each and the library's own
// tooltip over the first.
#pragma once

#ifdef VXHOST_WITH_UI

#include <vxbase.h>
#include <vxbase_ui.h>

#include <functional>
#include <memory>

namespace vxhost {

class MainFrame : public CNewMDIFrameWnd {
public:
    // Called by the "Przyciski" command of the View menu.
    std::function<void()> showButtons;
    bool quitOnClose = false;
    // Called while a menu of the frame waits for the user (WM_ENTERIDLE).
    std::function<void()> onMenuIdle;

    // Builds the frame as AT or IT (`stem`), hidden; `ownMenuBar`: the menu
    // goes on the frame's own bar instead of the dockable one.
    void Build(const char* stem, bool ownMenuBar = false);
    // Shows the two-page tooltip over the pane, as if the mouse rested there.
    void ShowPaneTip();
    // A checked and a disabled button on the docked bar and the cursor on
    // the first one, for pictures.
    void ShowSampleStates();
    CNewToolBar& FloatingBar() { return *m_drawBar; }
    CNewToolBar& MainBar() { return *m_mainBar; }
    // Switches the menu draw mode (the View menu's "Styl"): the tool bars
    // take their style when they are made, so both are made again where
    // they were.
    void SetDrawMode(UINT mode);
    CVXToolTipCtrl& PaneTip() { return m_tip; }
    CMenuBar& MenuBar() { return m_menuBar; }
    // The second child, maximised (its buttons join the frame's own bar).
    void MaximiseSecondChild();

    BOOL PreTranslateMessage(MSG* msg) override;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnDestroy() override;

private:
    class Pane : public CWnd {
    protected:
        void OnPaint() override;
    };
    void BuildToolBar(CNewToolBar& bar, UINT id, const char* title, const UINT* commands, int count, int firstImage);

    CMenuBar m_menuBar;
    void BuildToolBars();
    std::unique_ptr<CNewToolBar> m_mainBar;
    std::unique_ptr<CNewToolBar> m_drawBar;
    HMENU m_styles = nullptr;
    // Two drawings, each in a child frame of the MDI client.
    Pane m_panes[2];
    CMDIChildWnd m_children[2];
    CVXToolTipCtrl m_tip;
    CImageList m_images;
};

} // namespace vxhost

#endif
