#include "look/cvxtooltipctrl.h"

#include "platform/shell/resources.h"
#include "platform/windows/sysmetrics.h"
#include "ui/controls/ctooltipctrl.h"
#include "ui/gdi/cdc.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr UINT kTimerShow = 1;
constexpr UINT kTimerPoll = 2;
// WM_MOUSEACTIVATE's answer that keeps the activation where it is.
constexpr LRESULT kMaNoActivate = 3;

const LOGFONTA& SystemTipFont()
{
    static LOGFONTA font = [] {
        NONCLIENTMETRICSA metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        return metrics.lfStatusFont;
    }();
    return font;
}

bool SameFont(const LOGFONTA& a, const LOGFONTA& b)
{
    return a.lfWeight == b.lfWeight && a.lfItalic == b.lfItalic && a.lfHeight == b.lfHeight &&
           a.lfCharSet == b.lfCharSet && std::strcmp(a.lfFaceName, b.lfFaceName) == 0;
}

bool IsCallback(LPCSTR text)
{
    return text == LPSTR_TEXTCALLBACK;
}

} // namespace

const char* CVXToolTipCtrl::m_szArrowSpace = "  ";

CVXToolTipInfo& CVXToolTipInfo::operator=(const CVXToolTipInfo& other)
{
    if (this == &other)
        return *this;
    nFlags = other.nFlags;
    hWnd = other.hWnd;
    nIDTool = other.nIDTool;
    rectBounds = other.rectBounds;
    nIDText = other.nIDText;
    szText = other.szText;
    nWidth = other.nWidth;
    crTextColor = other.crTextColor;
    crBkColor = other.crBkColor;
    lParam = other.lParam;
    return *this;
}

CVXToolTipInfo& CVXToolTipInfo::operator=(const VXTOOLINFO& info)
{
    nFlags = info.uFlags;
    hWnd = info.hwnd;
    nIDTool = info.uId;
    rectBounds = info.rect;
    nIDText = IsCallback(info.lpszText) ? LPSTR_TEXTCALLBACK : nullptr;
    if (!IsCallback(info.lpszText))
        szText = info.lpszText ? info.lpszText : "";
    nWidth = info.nMaxTipWidth;
    crTextColor = info.crText;
    crBkColor = info.crBk;
    lParam = info.lParam;
    return *this;
}

CVXToolTipCtrl::CVXToolTipCtrl()
{
    m_logFont = SystemTipFont();
}

CVXToolTipCtrl::~CVXToolTipCtrl()
{
    for (int i = 0; i < m_aTools.GetSize(); ++i)
        delete m_aTools[i];
    m_aTools.RemoveAll();
    m_pCurrentToolTip = nullptr;
    if (m_hWnd)
        DestroyWindow();
}

BOOL CVXToolTipCtrl::Create(CWnd* parent)
{
    m_pParentWnd = parent;
    if (!CreateEx("", "VXToolTip", WS_POPUP, CRect(0, 0, 10, 10), parent, 0, WS_EX_TOPMOST | WS_EX_TOOLWINDOW))
        return FALSE;
    UseSystemFont();
    return TRUE;
}

void CVXToolTipCtrl::UseSystemFont()
{
    SetLogFont(&SystemTipFont(), FALSE);
}

BOOL CVXToolTipCtrl::SetLogFont(const LOGFONTA* font, BOOL repaint)
{
    if (!font)
        return FALSE;
    m_logFont = *font;
    m_bSystemFont = SameFont(m_logFont, SystemTipFont()) ? 1 : 0;
    m_font.DeleteObject();
    m_font.CreateFontIndirect(&m_logFont);
    if (repaint && m_hWnd)
        Invalidate();
    return TRUE;
}

// --- tools -----------------------------------------------------------------

int CVXToolTipCtrl::FindTool(HWND window, UINT id) const
{
    for (int i = 0; i < m_aTools.GetSize(); ++i) {
        const auto* t = static_cast<const CVXToolTipInfo*>(m_aTools[i]);
        if (t->hWnd == window && t->nIDTool == id)
            return i;
    }
    return -1;
}

BOOL CVXToolTipCtrl::AddTool(CWnd* window, UINT textId, const RECT* rect, UINT id)
{
    const char* text = vx::FindString(textId);
    return AddTool(window, text ? text : "", rect, id);
}

BOOL CVXToolTipCtrl::AddTool(CWnd* window, LPCSTR text, const RECT* rect, UINT id)
{
    if (!window || !window->m_hWnd)
        return FALSE;
    auto* tool = new CVXToolTipInfo;
    tool->hWnd = window->m_hWnd;
    tool->nIDTool = id;
    if (IsCallback(text))
        tool->nIDText = LPSTR_TEXTCALLBACK;
    else
        tool->szText = text ? text : "";
    tool->crTextColor = m_crTextColor;
    tool->crBkColor = m_crBkColor;
    tool->nWidth = m_nMaxWidth;
    CRect r;
    if (rect) {
        r = *rect;
        window->ClientToScreen(&r);
    } else {
        window->GetWindowRect(&r);
    }
    if (m_pParentWnd)
        m_pParentWnd->ScreenToClient(&r);
    tool->rectBounds = r;
    m_aTools.Add(tool);
    return TRUE;
}

void CVXToolTipCtrl::DelTool(CWnd* window, UINT id)
{
    const HWND h = window ? window->m_hWnd : nullptr;
    for (int i = m_aTools.GetSize() - 1; i >= 0; --i) {
        auto* t = static_cast<CVXToolTipInfo*>(m_aTools[i]);
        if (t->hWnd != h || t->nIDTool != id)
            continue;
        if (t == m_pCurrentToolTip) {
            Pop();
            m_pCurrentToolTip = nullptr;
        }
        delete t;
        m_aTools.RemoveAt(i);
    }
}

void CVXToolTipCtrl::GetText(CString& text, CWnd* window, UINT id)
{
    const int i = FindTool(window ? window->m_hWnd : nullptr, id);
    text = i < 0 ? CString() : GetTooltipText(static_cast<CVXToolTipInfo*>(m_aTools[i]));
}

int CVXToolTipCtrl::GetToolCount() const
{
    return static_cast<int>(m_aTools.GetSize());
}

BOOL CVXToolTipCtrl::GetToolInfo(VXTOOLINFO* info, CWnd* window, UINT id) const
{
    const int i = FindTool(window ? window->m_hWnd : nullptr, id);
    if (i < 0 || !info)
        return FALSE;
    const auto* t = static_cast<const CVXToolTipInfo*>(m_aTools[i]);
    info->cbSize = sizeof(VXTOOLINFO);
    info->uFlags = t->nFlags;
    info->hwnd = t->hWnd;
    info->uId = t->nIDTool;
    info->rect = t->rectBounds;
    info->hinst = nullptr; // the library's strings need no module handle here
    info->lpszText = t->nIDText ? t->nIDText : const_cast<LPSTR>(t->szText.GetString());
    info->lParam = t->lParam;
    info->nMaxTipWidth = t->nWidth;
    info->crText = t->crTextColor;
    info->crBk = t->crBkColor;
    return TRUE;
}

void CVXToolTipCtrl::SetToolInfo(const VXTOOLINFO* info)
{
    if (!info)
        return;
    const int i = FindTool(info->hwnd, info->uId);
    if (i >= 0)
        *static_cast<CVXToolTipInfo*>(m_aTools[i]) = *info;
}

void CVXToolTipCtrl::SetMaxTipWidth(int width)
{
    for (int i = 0; i < m_aTools.GetSize(); ++i) {
        auto* t = static_cast<CVXToolTipInfo*>(m_aTools[i]);
        if (t->nWidth == m_nMaxWidth)
            t->nWidth = width;
    }
    m_nMaxWidth = width;
}

void CVXToolTipCtrl::SetTipBkColor(COLORREF color)
{
    for (int i = 0; i < m_aTools.GetSize(); ++i) {
        auto* t = static_cast<CVXToolTipInfo*>(m_aTools[i]);
        if (t->crBkColor == m_crBkColor)
            t->crBkColor = color;
    }
    m_crBkColor = color;
}

void CVXToolTipCtrl::SetTipTextColor(COLORREF color)
{
    for (int i = 0; i < m_aTools.GetSize(); ++i) {
        auto* t = static_cast<CVXToolTipInfo*>(m_aTools[i]);
        if (t->crTextColor == m_crTextColor)
            t->crTextColor = color;
    }
    m_crTextColor = color;
}

void CVXToolTipCtrl::SetDelayTime(UINT delay)
{
    m_nInitialDelay = delay;
}

void CVXToolTipCtrl::SetDelayTime(DWORD which, int milliseconds)
{
    if (which == 2)
        m_nDisplayDelay = static_cast<UINT>(milliseconds);
    else if (which == 3)
        m_nInitialDelay = static_cast<UINT>(milliseconds);
}

int CVXToolTipCtrl::GetDelayTime(DWORD which) const
{
    if (which == 2)
        return static_cast<int>(m_nDisplayDelay);
    if (which == 3)
        return static_cast<int>(m_nInitialDelay);
    return 0;
}

// --- finding tools -------------------------------------------------------------

CWnd* CVXToolTipCtrl::GetChildWindowFromPoint(CPoint point) const
{
    if (!m_pParentWnd)
        return nullptr;
    CPoint screen = point;
    m_pParentWnd->ClientToScreen(&screen);
    CWnd* window = CWnd::WindowFromPoint(screen);
    if (window == m_pParentWnd) {
        CWnd* child = m_pParentWnd->ChildWindowFromPoint(point, 0);
        if (child)
            window = child;
    }
    return window;
}

bool CVXToolTipCtrl::InToolWindow(const CVXToolTipInfo* tool, const CWnd* window)
{
    if (!window)
        return false;
    if (window->m_hWnd == tool->hWnd)
        return true;
    CWnd* toolWindow = CWnd::FromHandle(tool->hWnd);
    return toolWindow && toolWindow->IsChild(window);
}

BOOL CVXToolTipCtrl::HitTest(CWnd* window, POINT point, VXTOOLINFO* info) const
{
    if (!window)
        return FALSE;
    for (int i = 0; i < m_aTools.GetSize(); ++i) {
        const auto* t = static_cast<const CVXToolTipInfo*>(m_aTools[i]);
        if (window == m_pParentWnd) {
            if (!t->rectBounds.PtInRect(point))
                continue;
        } else if (!InToolWindow(t, window)) {
            continue;
        }
        if (info)
            GetToolInfo(info, CWnd::FromHandle(t->hWnd), t->nIDTool);
        if (!InToolWindow(t, GetChildWindowFromPoint(point)))
            return FALSE;
        return t->rectBounds.PtInRect(point);
    }
    return FALSE;
}

CVXToolTipInfo* CVXToolTipCtrl::FindToolFromPoint(CPoint point) const
{
    // As HitTest asked with the window under the point, giving the tool.
    CWnd* under = GetChildWindowFromPoint(point);
    if (!under)
        return nullptr;
    for (int i = 0; i < m_aTools.GetSize(); ++i) {
        auto* t = static_cast<CVXToolTipInfo*>(m_aTools[i]);
        if (under == m_pParentWnd) {
            if (!t->rectBounds.PtInRect(point))
                continue;
        } else if (!InToolWindow(t, under)) {
            continue;
        }
        return t->rectBounds.PtInRect(point) ? t : nullptr;
    }
    return nullptr;
}

bool CVXToolTipCtrl::IsCursorInTool(const CVXToolTipInfo* tool) const
{
    if (!tool || !m_pParentWnd)
        return false;
    CPoint p;
    GetCursorPos(&p);
    m_pParentWnd->ScreenToClient(&p);
    return tool->rectBounds.PtInRect(p) && InToolWindow(tool, GetChildWindowFromPoint(p));
}

bool CVXToolTipCtrl::IsCursorInToolTip() const
{
    if (m_bPopped || !m_hWnd || !IsWindowVisible())
        return false;
    CPoint p;
    GetCursorPos(&p);
    CRect r;
    GetWindowRect(&r);
    return r.PtInRect(p) != FALSE;
}

BOOL CVXToolTipCtrl::IsVisible() const
{
    return m_hWnd && IsWindowVisible();
}

// --- events ----------------------------------------------------------------------

void CVXToolTipCtrl::RelayEvent(MSG* msg)
{
    if (!msg || !m_pParentWnd)
        return;
    switch (msg->message) {
    case WM_MOUSEMOVE: {
        CPoint p(GET_X_LPARAM(msg->lParam), GET_Y_LPARAM(msg->lParam));
        if (CWnd* from = CWnd::FromHandle(msg->hwnd)) {
            from->ClientToScreen(&p);
            m_pParentWnd->ScreenToClient(&p);
        }
        CVXToolTipInfo* tool = FindToolFromPoint(p);
        if (!tool) {
            if (m_bPopped)
                m_pCurrentToolTip = nullptr;
            return;
        }
        if (tool == m_pCurrentToolTip || IsCursorInToolTip())
            return;
        StartNewTool(tool);
        return;
    }
    case WM_LBUTTONDOWN:
        if (!IsCursorInToolTip())
            Pop();
        return;
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
    case WM_NCRBUTTONDOWN:
    case WM_NCRBUTTONDBLCLK:
    case WM_NCMBUTTONDOWN:
    case WM_NCMBUTTONDBLCLK:
        Pop();
        return;
    default:
        if (msg->message >= WM_KEYDOWN && msg->message <= WM_KEYLAST)
            Pop();
        return;
    }
}

void CVXToolTipCtrl::StartNewTool(CVXToolTipInfo* tool)
{
    KillTimer(kTimerShow);
    KillTimer(kTimerPoll);
    Pop();
    m_bPopped = 0;
    m_pCurrentToolTip = tool;
    SetTimer(kTimerShow, m_nInitialDelay);
}

void CVXToolTipCtrl::Pop()
{
    if (m_hWnd)
        ShowWindow(SW_HIDE);
    m_bPopped = 1;
}

void CVXToolTipCtrl::OnTimer(UINT_PTR id)
{
    if (!m_pCurrentToolTip || m_bPopped) {
        KillTimer(id);
        Pop();
        return;
    }
    if (id == kTimerShow) {
        KillTimer(kTimerShow);
        if (!IsCursorInTool(m_pCurrentToolTip))
            return;
        CPoint p;
        GetCursorPos(&p);
        DisplayToolTip(p + m_ptOffset, 0);
        m_nTimeElapsed = 0;
        SetTimer(kTimerPoll, m_nCheckInterval);
    } else if (id == kTimerPoll) {
        m_nTimeElapsed += m_nCheckInterval;
        CPoint p;
        GetCursorPos(&p);
        m_pParentWnd->ScreenToClient(&p);
        const CVXToolTipInfo* under = FindToolFromPoint(p);
        if (!under || under == m_pCurrentToolTip) {
            if (IsCursorInTool(m_pCurrentToolTip) && m_nTimeElapsed < m_nDisplayDelay)
                return;
            if (IsCursorInToolTip())
                return;
        }
        KillTimer(kTimerPoll);
        Pop();
    }
}

// --- the tip --------------------------------------------------------------------------

CString CVXToolTipCtrl::GetFieldFromString(const CString& text, int index, char separator)
{
    int start = 0;
    for (int i = 0; i < index; ++i) {
        const int at = text.Find(separator, start);
        if (at < 0)
            return CString();
        start = at + 1;
    }
    const int end = text.Find(separator, start);
    return end < 0 ? text.Mid(start) : text.Mid(start, end - start);
}

CString CVXToolTipCtrl::GetTooltipText(const CVXToolTipInfo* tool)
{
    if (!tool)
        return CString();
    CString text;
    if (tool->nIDText == LPSTR_TEXTCALLBACK) {
        NMTTDISPINFOA info{};
        info.hdr.hwndFrom = m_hWnd;
        info.hdr.idFrom = tool->nIDTool;
        info.hdr.code = TTN_NEEDTEXT;
        if (m_pParentWnd)
            m_pParentWnd->SendMessage(WM_NOTIFY, GetDlgCtrlID(), reinterpret_cast<LPARAM>(&info));
        if (info.hinst) {
            // A string resource by number, read into a buffer of the
            // original's size.
            char buffer[512] = {};
            if (const char* s = vx::FindString(static_cast<UINT>(reinterpret_cast<UINT_PTR>(info.lpszText))))
                std::strncpy(buffer, s, sizeof buffer - 1);
            text = buffer;
        } else if (info.lpszText && !IsCallback(info.lpszText)) {
            text = info.lpszText;
        } else {
            text = info.szText;
        }
    } else {
        text = tool->szText;
    }
    if (text.Find('\r') >= 0) {
        m_bTwoPage = 1;
        if (m_nSide == 0)
            text = GetFieldFromString(text, 0, '\r') + m_szArrowSpace;
        else
            text = CString(m_szArrowSpace) + GetFieldFromString(text, 1, '\r');
    } else {
        m_bTwoPage = 0;
    }
    return text;
}

CRect CVXToolTipCtrl::GetBoundsRect(const CString& text, int width)
{
    CClientDC dc(this);
    CFont* old = dc.SelectObject(&m_font);
    if (width == 0) {
        int start = 0;
        for (;;) {
            const int end = text.Find('\n', start);
            const CString line = (end < 0 ? text.Mid(start) : text.Mid(start, end - start)) + "  ";
            width = std::max(width, static_cast<int>(dc.GetTextExtent(line).cx));
            if (end < 0)
                break;
            start = end + 1;
        }
    }
    width = std::max(width, 0);
    CRect r(0, 0, width, 0);
    dc.DrawText(text, &r, m_nFormat | DT_CALCRECT);
    // The measure drops the blanks at a line's end, which hold the arrow's room.
    r.right = std::max<LONG>(r.right, width);
    dc.SelectObject(old);
    r.right += m_rectMargin.left + m_rectMargin.right;
    r.bottom += m_rectMargin.top + m_rectMargin.bottom;
    return r;
}

CRect CVXToolTipCtrl::CalculateInfoBoxRect(CPoint point, const CVXToolTipInfo* tool, CRect bounds)
{
    CRect r = bounds;
    r.OffsetRect(point - r.TopLeft());
    const int screenWidth = GetSystemMetrics(SM_CXSCREEN);
    const int screenHeight = GetSystemMetrics(SM_CYSCREEN);
    if (r.right > screenWidth)
        r.OffsetRect(screenWidth - r.right, 0);
    if (r.left < 0)
        r.OffsetRect(-r.left, 0);
    if (r.bottom > screenHeight && tool && m_pParentWnd) {
        // Above the tool, not above the cursor, so that the tip never
        // covers what it explains.
        CRect toolRect = tool->rectBounds;
        m_pParentWnd->ClientToScreen(&toolRect);
        r.OffsetRect(0, toolRect.top - r.bottom);
    }
    return r;
}

void CVXToolTipCtrl::DisplayToolTip(CPoint point, int side)
{
    if (!m_bActive || !m_pCurrentToolTip)
        return;
    m_nSide = side;
    const CString text = GetTooltipText(m_pCurrentToolTip);
    if (text.IsEmpty())
        return;
    const CRect bounds = GetBoundsRect(text, m_pCurrentToolTip->nWidth);
    const CRect r = CalculateInfoBoxRect(point, m_pCurrentToolTip, bounds);
    ShowWindow(SW_HIDE);
    SetWindowPos(&wndTop, r.left, r.top, r.Width(), r.Height(), 0x154);
}

void CVXToolTipCtrl::OnPaint()
{
    CPaintDC dc(this);
    if (!m_pCurrentToolTip)
        return;
    const CString text = GetTooltipText(m_pCurrentToolTip);
    if (text.IsEmpty())
        return;
    const COLORREF bk =
        m_pCurrentToolTip->crBkColor == 0xFF000000 ? GetSysColor(COLOR_INFOBK) : m_pCurrentToolTip->crBkColor;
    const COLORREF fg = m_pCurrentToolTip->crTextColor == 0xFF000000 ? GetSysColor(COLOR_INFOTEXT)
                                                                     : m_pCurrentToolTip->crTextColor;
    CBrush brush(bk);
    CFont* oldFont = dc.SelectObject(&m_font);
    CRect client;
    GetClientRect(&client);
    dc.FillRect(&client, &brush);
    CGdiObject* oldBrush = dc.SelectStockObject(NULL_BRUSH);
    CGdiObject* oldPen = dc.SelectStockObject(BLACK_PEN);
    dc.Rectangle(&client);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(fg);
    CRect r(client.left + m_rectMargin.left, client.top + m_rectMargin.top, client.right - m_rectMargin.right,
            client.bottom - m_rectMargin.bottom);
    dc.DrawText(text, &r, m_nFormat);
    if (m_bTwoPage) {
        TEXTMETRICA tm{};
        dc.GetTextMetrics(&tm);
        const int t = std::max<int>(tm.tmDescent, tm.tmInternalLeading + tm.tmExternalLeading);
        const int half = tm.tmAveCharWidth / 2;
        const CSize space = dc.GetTextExtent(m_szArrowSpace);
        const int h = space.cy - (space.cy % 2);
        int x1;
        int x2;
        if (m_nSide == 0) {
            x1 = r.right - space.cx + half;
            x2 = r.right;
        } else {
            x1 = r.left + space.cx - half;
            x2 = r.left;
        }
        const POINT arrow[4] = {{x1, r.top + t}, {x2, r.top + h / 2}, {x1, r.top - t + h}, {x1, r.top + t}};
        dc.SelectStockObject(BLACK_BRUSH);
        dc.Polygon(arrow, 4);
    }
    dc.SelectObject(oldFont);
    if (oldBrush)
        dc.SelectObject(oldBrush->m_hObject);
    if (oldPen)
        dc.SelectObject(oldPen->m_hObject);
}

void CVXToolTipCtrl::OnLButtonDown(UINT, CPoint)
{
    if (m_pCurrentToolTip && !m_bPopped) {
        if (m_bTwoPage) {
            CRect r;
            GetWindowRect(&r);
            DisplayToolTip(r.TopLeft(), m_nSide ? 0 : 1);
        }
        if (CWnd* focus = CWnd::FromHandle(m_hWndFocus))
            focus->SetFocus();
    }
}

void CVXToolTipCtrl::OnDestroy()
{
    KillTimer(kTimerShow);
    KillTimer(kTimerPoll);
    CWnd::OnDestroy();
}

LRESULT CVXToolTipCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MOUSEACTIVATE:
        return kMaNoActivate;
    case WM_SETFOCUS:
        m_hWndFocus = reinterpret_cast<HWND>(wParam);
        return 0;
    case WM_SETTINGCHANGE:
        if (m_bSystemFont)
            UseSystemFont();
        return 0;
    case WM_SETFONT: {
        LOGFONTA lf{};
        CFont* font = CFont::FromHandle(reinterpret_cast<HFONT>(wParam));
        if (font && font->GetLogFont(&lf))
            SetLogFont(&lf, static_cast<BOOL>(lParam));
        else
            SetLogFont(&SystemTipFont(), static_cast<BOOL>(lParam));
        return 0;
    }
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_font.m_hObject);
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}
