// CToolTipCtrl: the platform's tooltip control, as windows use it for their
// own tips. A tool is a window, or a rectangle of its client area, with a
// text or a text its window gives on demand (TTN_NEEDTEXT); while the
// control is active, hovering over a tool shows the text in Qt's tooltip,
// which goes when the cursor leaves the tool's rectangle. The control
// answers the TTM_ messages it is sent.
//
//   m_tip.Create(this);
//   m_tip.AddTool(this, "Opens the project");
//   m_tip.Activate(TRUE);
#pragma once

#include "platform/framework/cstring.h"
#include "platform/windows/cwnd.h"
#include "vxbase_ui_export.h"

#include <vector>

constexpr DWORD TTS_ALWAYSTIP = 0x01;
constexpr DWORD TTS_NOPREFIX = 0x02;
constexpr DWORD TTS_NOANIMATE = 0x10;
constexpr DWORD TTS_NOFADE = 0x20;
constexpr DWORD TTS_BALLOON = 0x40;

constexpr UINT TTF_IDISHWND = 0x0001;
constexpr UINT TTF_CENTERTIP = 0x0002;
constexpr UINT TTF_SUBCLASS = 0x0010;

constexpr UINT TTM_ACTIVATE = WM_USER + 1;
constexpr UINT TTM_SETDELAYTIME = WM_USER + 3;
constexpr UINT TTM_ADDTOOLA = WM_USER + 4;
constexpr UINT TTM_DELTOOLA = WM_USER + 5;
constexpr UINT TTM_NEWTOOLRECTA = WM_USER + 6;
constexpr UINT TTM_RELAYEVENT = WM_USER + 7;
constexpr UINT TTM_GETTOOLINFOA = WM_USER + 8;
constexpr UINT TTM_UPDATETIPTEXTA = WM_USER + 12;
constexpr UINT TTM_HITTESTA = WM_USER + 10;
constexpr UINT TTM_GETTOOLCOUNT = WM_USER + 13;
constexpr UINT TTM_SETMAXTIPWIDTH = WM_USER + 24;
constexpr UINT TTM_GETMAXTIPWIDTH = WM_USER + 25;
constexpr UINT TTM_POP = WM_USER + 28;

// A tool's window is asked for the text with WM_NOTIFY TTN_NEEDTEXT and this
// record: it answers with lpszText, or the text in szText, or a string
// resource by number in lpszText with hinst set.
constexpr UINT TTN_FIRST = 0U - 520U;
constexpr UINT TTN_GETDISPINFOA = TTN_FIRST - 0;
constexpr UINT TTN_NEEDTEXTA = TTN_GETDISPINFOA;
constexpr UINT TTN_NEEDTEXT = TTN_NEEDTEXTA;
struct NMTTDISPINFOA {
    NMHDR hdr;
    LPSTR lpszText;
    char szText[80];
    HINSTANCE hinst;
    UINT uFlags;
    LPARAM lParam;
};
using NMTTDISPINFO = NMTTDISPINFOA;

// The text of a tool that asks its window for it (TTN_NEEDTEXT).
inline const LPSTR LPSTR_TEXTCALLBACK = reinterpret_cast<LPSTR>(static_cast<LONG_PTR>(-1));

struct TOOLINFOA {
    UINT cbSize;
    UINT uFlags;
    HWND hwnd;
    UINT_PTR uId;
    RECT rect;
    HINSTANCE hinst;
    LPSTR lpszText;
    LPARAM lParam;
};
using TOOLINFO = TOOLINFOA;

class VXBASE_UI_EXPORT CToolTipCtrl : public CWnd {
public:
    CToolTipCtrl();
    ~CToolTipCtrl() override;

    // A hidden popup owned by `parent`, with TTS_ styles.
    BOOL Create(CWnd* parent, DWORD style = 0);
    // Adds a tool over `window`: the rectangle (client coordinates) or, when
    // null or empty or with TTF_IDISHWND, the whole window. Replaces an
    // existing tool of the same window and id.
    BOOL AddTool(CWnd* window, LPCSTR text = LPSTR_TEXTCALLBACK, const RECT* rect = nullptr, UINT_PTR id = 0);
    BOOL AddTool(CWnd* window, UINT textId, const RECT* rect = nullptr, UINT_PTR id = 0);
    void DelTool(CWnd* window, UINT_PTR id = 0);
    // A tool's new rectangle, as a tool bar moves its buttons (TTM_NEWTOOLRECT).
    void SetToolRect(CWnd* window, UINT_PTR id, const RECT* rect);
    // The tool at a client point of `window` (a rectangle tool before a
    // whole-window one); fills `info` (its text is the fixed text or
    // LPSTR_TEXTCALLBACK, valid until the tool changes).
    BOOL HitTest(CWnd* window, CPoint point, TOOLINFO* info) const;
    // The text the tip shows at a client point of `window`, asking the
    // tool's window when the tool has no fixed text; "" for no tool.
    CString TextAt(CWnd* window, CPoint point) const;
    void UpdateTipText(LPCSTR text, CWnd* window, UINT_PTR id = 0);
    void GetText(CString& text, CWnd* window, UINT_PTR id = 0) const;
    int GetToolCount() const;
    void Activate(BOOL active);
    BOOL IsActive() const { return m_active; }
    int SetMaxTipWidth(int width);
    int GetMaxTipWidth() const { return m_maxWidth; }
    void SetDelayTime(UINT delay);
    // Takes input messages of the tools' windows; nothing more is needed,
    // since the tip follows the mouse by itself.
    void RelayEvent(MSG* msg);
    void Pop();

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    friend class ToolTipFilter;
    struct Tool {
        HWND window;
        UINT_PTR id;
        CString text;
        RECT rect;
        bool callback; // the window is asked for the text (TTN_NEEDTEXT)
        UINT flags = 0;
    };
    bool WholeWindow(const Tool& tool) const;
    const Tool* ToolAt(HWND window, CPoint point) const;
    void Apply(const Tool& tool) const;
    void Watch(CWnd* window);
    std::vector<Tool> m_tools;
    bool m_active = true;
    int m_maxWidth = -1;
    UINT m_delay = 500;
    class ToolTipFilter* m_filter = nullptr;
};
