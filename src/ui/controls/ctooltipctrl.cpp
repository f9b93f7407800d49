#include "ui/controls/ctooltipctrl.h"

#include "ui/windows/qtinterop.h"

#include "platform/shell/resources.h"

#include <QEvent>
#include <QHelpEvent>
#include <QObject>
#include <QPointer>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <utility>

// Answers Qt's tooltip request of a tool's window for the tools that are
// rectangles or whose text is asked for: the tip shows for the tool under
// the cursor and goes when the cursor leaves its rectangle.
class ToolTipFilter : public QObject {
public:
    explicit ToolTipFilter(CToolTipCtrl& control) : m_control(control) {}

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::ToolTip || !m_control.m_active)
            return false;
        auto* widget = qobject_cast<QWidget*>(object);
        CWnd* window = nullptr;
        for (const auto& tool : m_control.m_tools) {
            CWnd* w = CWnd::FromHandle(tool.window);
            if (w && vx::WidgetOfWindow(w) == widget) {
                window = w;
                break;
            }
        }
        if (!window)
            return false;
        auto* help = static_cast<QHelpEvent*>(event);
        // The widget shows the whole window, frame included.
        CPoint client(help->pos().x(), help->pos().y());
        CRect windowRect;
        window->GetWindowRect(&windowRect);
        client += windowRect.TopLeft();
        window->ScreenToClient(&client);
        const CToolTipCtrl::Tool* tool = m_control.ToolAt(window->m_hWnd, client);
        if (!tool) {
            QToolTip::hideText();
            event->ignore();
            return true;
        }
        const CString text = m_control.TextAt(window, client);
        CRect area = m_control.WholeWindow(*tool) ? CRect() : CRect(tool->rect);
        if (!area.IsRectEmpty()) {
            window->ClientToScreen(&area);
            area.OffsetRect(-windowRect.left, -windowRect.top);
        }
        QToolTip::showText(help->globalPos(), vx::ToQString(text), widget,
                           area.IsRectEmpty() ? QRect() : QRect(area.left, area.top, area.Width(), area.Height()));
        return true;
    }

private:
    CToolTipCtrl& m_control;
};

CToolTipCtrl::CToolTipCtrl() = default;

CToolTipCtrl::~CToolTipCtrl()
{
    for (const Tool& t : m_tools) {
        if (QWidget* w = vx::WidgetOfWindow(CWnd::FromHandle(t.window))) {
            w->setToolTip(QString());
            if (m_filter)
                w->removeEventFilter(m_filter);
        }
    }
    delete m_filter;
}

void CToolTipCtrl::Watch(CWnd* window)
{
    if (!m_filter)
        m_filter = new ToolTipFilter(*this);
    if (QWidget* w = vx::WidgetOfWindow(window)) {
        w->removeEventFilter(m_filter);
        w->installEventFilter(m_filter);
    }
}

bool CToolTipCtrl::WholeWindow(const Tool& tool) const
{
    if ((tool.flags & TTF_IDISHWND) || tool.rect.left >= tool.rect.right || tool.rect.top >= tool.rect.bottom)
        return true;
    // A rectangle over all of the client (a button's own) is the window.
    CWnd* w = CWnd::FromHandle(tool.window);
    CRect client;
    if (w)
        w->GetClientRect(&client);
    return w && tool.rect.left <= client.left && tool.rect.top <= client.top && tool.rect.right >= client.right &&
           tool.rect.bottom >= client.bottom;
}

const CToolTipCtrl::Tool* CToolTipCtrl::ToolAt(HWND window, CPoint point) const
{
    const Tool* whole = nullptr;
    for (const Tool& t : m_tools) {
        if (t.window != window)
            continue;
        if (WholeWindow(t)) {
            if (!whole)
                whole = &t;
        } else if (CRect(t.rect).PtInRect(point)) {
            return &t;
        }
    }
    if (whole) {
        CWnd* w = CWnd::FromHandle(window);
        CRect client;
        if (w)
            w->GetClientRect(&client);
        if (w && client.PtInRect(point))
            return whole;
    }
    return nullptr;
}

BOOL CToolTipCtrl::HitTest(CWnd* window, CPoint point, TOOLINFO* info) const
{
    if (!window)
        return FALSE;
    const Tool* t = ToolAt(window->m_hWnd, point);
    if (!t)
        return FALSE;
    if (info) {
        info->cbSize = sizeof(TOOLINFO);
        info->uFlags = t->flags;
        info->hwnd = t->window;
        info->uId = t->id;
        info->rect = t->rect;
        info->hinst = nullptr;
        info->lpszText = t->callback ? LPSTR_TEXTCALLBACK : const_cast<LPSTR>(t->text.GetString());
        info->lParam = 0;
    }
    return TRUE;
}

CString CToolTipCtrl::TextAt(CWnd* window, CPoint point) const
{
    const Tool* t = window ? ToolAt(window->m_hWnd, point) : nullptr;
    if (!t)
        return CString();
    if (!t->callback)
        return t->text;
    NMTTDISPINFOA info{};
    info.hdr.hwndFrom = m_hWnd;
    info.hdr.idFrom = t->id;
    info.hdr.code = TTN_NEEDTEXT;
    info.uFlags = t->flags;
    ::SendMessageA(t->window, WM_NOTIFY, t->id, reinterpret_cast<LPARAM>(&info));
    if (info.hinst) {
        const char* s = vx::FindString(static_cast<UINT>(reinterpret_cast<UINT_PTR>(info.lpszText)));
        return s ? CString(s) : CString();
    }
    if (info.lpszText && info.lpszText != LPSTR_TEXTCALLBACK)
        return CString(info.lpszText);
    return CString(info.szText);
}

void CToolTipCtrl::SetToolRect(CWnd* window, UINT_PTR id, const RECT* rect)
{
    const HWND h = window ? window->m_hWnd : nullptr;
    for (Tool& t : m_tools) {
        if (t.window == h && t.id == id)
            t.rect = rect ? *rect : RECT{0, 0, 0, 0};
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
    // A whole window with a fixed text is Qt's own tooltip of the widget;
    // the filter answers for rectangles and asked-for texts.
    if (WholeWindow(tool) && !tool.callback)
        w->setToolTip(m_active ? vx::ToQString(tool.text) : QString());
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
    Watch(window);
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
    case TTM_NEWTOOLRECTA: {
        const auto* info = reinterpret_cast<const TOOLINFO*>(lParam);
        if (info)
            SetToolRect(CWnd::FromHandle(info->hwnd), info->uId, &info->rect);
        return 0;
    }
    case TTM_HITTESTA: {
        struct Hit {
            HWND hwnd;
            POINT pt;
            TOOLINFO ti;
        };
        auto* hit = reinterpret_cast<Hit*>(lParam);
        return hit ? HitTest(CWnd::FromHandle(hit->hwnd), hit->pt, &hit->ti) : FALSE;
    }
    case TTM_POP:
        Pop();
        return 0;
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}
