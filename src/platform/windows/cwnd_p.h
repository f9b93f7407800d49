// Internal to the window layer: the process's window list and the shared
// state behind focus, capture and activation. Do not include directly.
#pragma once

#include "platform/windows/cwnd.h"

#include <unordered_set>
#include <vector>

namespace vx {

extern WindowBackendFactory g_factory;
extern FontBridge g_fontBridge;
extern CWnd* g_focus;
extern CWnd* g_capture;
extern CWnd* g_mainWnd;
extern CWnd* g_active;

// Every CWnd object, so that a handler can tell whether its window survived
// the message it handled.
std::unordered_set<const CWnd*>& LiveWindows();
// Windows with a handle, in z-order among siblings: a sibling that comes
// earlier lies above the ones after it.
std::vector<CWnd*>& ZOrder();
// The child windows (WS_CHILD) of `parent`, or the top-level windows for
// null; windows a parent only owns (popups, dialogs) are not among them.
std::vector<CWnd*> ChildrenOf(const CWnd* parent);
// Every window whose parent or owner is `owner`.
std::vector<CWnd*> OwnedBy(const CWnd* owner);
// The top-level window that `window` lies in: up the WS_CHILD chain only.
CWnd* TopLevelOf(const CWnd* window);
CPoint PointOf(LPARAM l);
// A control that dialog navigation may stop at: shown and enabled itself,
// whatever its parent is doing.
bool Usable(const CWnd* w);
// The deepest enabled, visible descendant of `window` at a screen point.
CWnd* Deepest(CWnd* window, POINT screen);
extern FrameBridge g_frameBridge;
// The defaults of the non-client messages (WM_NCCALCSIZE, WM_NCHITTEST,
// WM_NCPAINT, WM_WINDOWPOSCHANGED, WM_PRINT, WM_PRINTCLIENT,
// WM_CANCELMODE); 0 for any other message.
LRESULT DefaultNonClient(CWnd& window, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace vx
