#include "ui/controls/ctooltipctrl.h"

#include "ui/windows/qtinterop.h"

#include "platform/shell/resources.h"

#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <utility>

CToolTipCtrl::CToolTipCtrl() = default;

CToolTipCtrl::~CToolTipCtrl()
{
    for (const Tool& t : m_tools) {
        if (QWidget* w = vx::WidgetOfWindow(CWnd::FromHandle(t.window)))
            w->setToolTip(QString());
    }
}

BOOL CToolTipCtrl::Create(CWnd* parent, DWORD style)
{
    return CreateEx("", "tooltips_class32", WS_POPUP | style, CRect(0, 0, 0, 0), parent, 0, WS_EX_TOOLWINDOW);
}

void CToolTipCtrl::Apply(const Tool& tool) const
{
    QWidget* w = vx::WidgetOfWindow(CWnd::FromHandle(tool.window));
    if (!w)
        return;
    w->setToolTip(m_active && !tool.callback ? vx::ToQString(tool.text) : QString());
}

BOOL CToolTipCtrl::AddTool(CWnd* window, LPCSTR text, const RECT* rect, UINT_PTR id)
{
    if (!window || !window->m_hWnd)
        return FALSE;
    Tool tool{window->m_hWnd, id, CString(), rect ? *rect : RECT{0, 0, 0, 0}, text == LPSTR_TEXTCALLBACK};
    if (text && !tool.callback)
        tool.text = text;
    DelTool(window, id);
    m_tools.push_back(tool);
    Apply(tool);
    return TRUE;
}

BOOL CToolTipCtrl::AddTool(CWnd* window, UINT textId, const RECT* rect, UINT_PTR id)
{
    const char* text = vx::FindString(textId);
    return AddTool(window, text ? text : "", rect, id);
}

void CToolTipCtrl::DelTool(CWnd* window, UINT_PTR id)
{
    const HWND h = window ? window->m_hWnd : nullptr;
    const auto gone = std::remove_if(m_tools.begin(), m_tools.end(),
                                     [&](const Tool& t) { return t.window == h && t.id == id; });
    if (gone == m_tools.end())
        return;
    m_tools.erase(gone, m_tools.end());
    // The window shows one tip: another tool of it takes over.
    if (QWidget* w = vx::WidgetOfWindow(window))
        w->setToolTip(QString());
    for (const Tool& t : m_tools) {
        if (t.window == h)
            Apply(t);
    }
}

void CToolTipCtrl::UpdateTipText(LPCSTR text, CWnd* window, UINT_PTR id)
{
    const HWND h = window ? window->m_hWnd : nullptr;
    for (Tool& t : m_tools) {
        if (t.window == h && t.id == id) {
            t.text = text ? text : "";
            t.callback = false;
            Apply(t);
        }
    }
}

void CToolTipCtrl::GetText(CString& text, CWnd* window, UINT_PTR id) const
{
    text.Empty();
    const HWND h = window ? window->m_hWnd : nullptr;
    for (const Tool& t : m_tools) {
        if (t.window == h && t.id == id)
            text = t.text;
    }
}

int CToolTipCtrl::GetToolCount() const
{
    return static_cast<int>(m_tools.size());
}

void CToolTipCtrl::Activate(BOOL active)
{
    m_active = active != FALSE;
    for (const Tool& t : m_tools)
        Apply(t);
}

int CToolTipCtrl::SetMaxTipWidth(int width)
{
    return std::exchange(m_maxWidth, width);
}

void CToolTipCtrl::SetDelayTime(UINT delay)
{
    m_delay = delay;
}

void CToolTipCtrl::RelayEvent(MSG*) {}

void CToolTipCtrl::Pop()
{
    QToolTip::hideText();
}

LRESULT CToolTipCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case TTM_ACTIVATE:
        Activate(static_cast<BOOL>(wParam));
        return 0;
    case TTM_SETMAXTIPWIDTH:
        return SetMaxTipWidth(static_cast<int>(lParam));
    case TTM_GETMAXTIPWIDTH:
        return m_maxWidth;
    case TTM_GETTOOLCOUNT:
        return GetToolCount();
    case TTM_SETDELAYTIME:
        SetDelayTime(static_cast<UINT>(LOWORD(static_cast<DWORD_PTR>(lParam))));
        return 0;
    case TTM_RELAYEVENT:
        RelayEvent(reinterpret_cast<MSG*>(lParam));
        return 0;
    case TTM_POP:
        Pop();
        return 0;
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}
