// CCmdUI: the state of one command as its user-interface items show it (a
// tool bar button, a menu item). A bar asks the frame for each of its
// commands: the frame answers WM_UPDATECOMMANDUI (wParam the command,
// lParam the CCmdUI) with TRUE when it handled it, enabling or checking the
// item through the CCmdUI; the frame's pane and the application's main
// window are asked next. A command nobody handles is disabled when asked.
//
//   case WM_UPDATECOMMANDUI:
//       if (wParam == ID_SAVE) {
//           reinterpret_cast<CCmdUI*>(lParam)->Enable(m_modified);
//           return TRUE;
//       }
//
// vx::UpdateCommandUI(frame) brings the frame's bars up to date, as the
// framework did when the program fell idle.
#pragma once

#include "platform/windows/cframewnd.h"
#include "vxbase_ui_export.h"

// Sent to a bar when the program falls idle: wParam is "disable commands
// without a handler".
constexpr UINT WM_IDLEUPDATECMDUI = 0x0363;
// Asks a window for a command's state (see above).
constexpr UINT WM_UPDATECOMMANDUI = 0x0366;

class VXBASE_UI_EXPORT CCmdUI {
public:
    virtual ~CCmdUI() = default;

    UINT m_nID = 0;
    UINT m_nIndex = 0;
    // The window of the item (a tool bar), or null.
    CWnd* m_pOther = nullptr;
    BOOL m_bEnableChanged = FALSE;
    BOOL m_bContinueRouting = FALSE;

    virtual void Enable(BOOL on = TRUE);
    // 0 unchecked, 1 checked, 2 indeterminate.
    virtual void SetCheck(int check = 1);
    virtual void SetRadio(BOOL on = TRUE);
    virtual void SetText(LPCSTR text);
    // Lets the next window of the route handle the command too.
    void ContinueRouting() { m_bContinueRouting = TRUE; }
    // Asks `target` and the rest of the route; TRUE when someone handled it.
    BOOL DoUpdate(CWnd* target, BOOL disableIfNoHandler);
};

namespace vx {
// Sends WM_IDLEUPDATECMDUI to every bar of the frame.
VXBASE_UI_EXPORT void UpdateCommandUI(CFrameWnd& frame, BOOL disableIfNoHandler = TRUE);
} // namespace vx
