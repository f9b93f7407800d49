#include "layout/cresizedialog.h"

#include "look/cvxdialog.h"

#include "config/kprofile.h"
#include "platform/windows/messagepump.h"
#include "platform/windows/windowplacement.h"
#include "ui/windows/uiapp.h"

namespace {

using ControlInfo = CResizeDialog::ControlInfo;

// The percentages of a Mode: first edge, second edge.
void Percentages(CResizeDialog::Mode mode, BYTE& first, BYTE& second)
{
    switch (mode) {
    case CResizeDialog::mdResize: first = 0; second = 100; break;
    case CResizeDialog::mdRepos: first = 100; second = 100; break;
    case CResizeDialog::mdRelative: first = 50; second = 50; break;
    case CResizeDialog::mdSecondHalf: first = 50; second = 100; break;
    case CResizeDialog::mdFirstHalf: first = 0; second = 50; break;
    default: first = 0; second = 0; break;
    }
}

// A window's rectangle where SetWindowPos takes it: the screen for a
// top-level window, the parent's client area for a child.
CRect PlaceOf(CWnd& w)
{
    CRect r;
    w.GetWindowRect(&r);
    if ((w.GetStyle() & WS_CHILD) && w.GetParent())
        w.GetParent()->ScreenToClient(&r);
    return r;
}

constexpr int kCheckWriting = -32640;
constexpr int kCheckComplete = 32639;
// Sizes past the platform's window coordinates are no placement.
constexpr int kLargest = 32767;

} // namespace

// --- ControlInfo ------------------------------------------------------------------

ControlInfo::ControlInfo(Header& header, CWnd& control, BYTE left, BYTE right, BYTE top, BYTE bottom)
    : m_Header(header), m_Entry{&control, nullptr}, m_left(left), m_right(right), m_top(top), m_bottom(bottom),
      m_pCtrl(&control)
{
    SetupWindowPlacement();
    m_pNext = header.m_pFirst;
    if (m_pNext)
        m_pNext->m_pPrev = this;
    header.m_pFirst = this;
}

ControlInfo::~ControlInfo()
{
    if (m_pPrev)
        m_pPrev->m_pNext = m_pNext;
    else if (m_Header.m_pFirst == this)
        m_Header.m_pFirst = m_pNext;
    if (m_pNext)
        m_pNext->m_pPrev = m_pPrev;
    for (Entry* e = m_Entry.next; e;) {
        Entry* next = e->next;
        delete e;
        e = next;
    }
}

ControlInfo* ControlInfo::AddEqualCtrl(CWnd& control)
{
    Entry** tail = &m_Entry.next;
    while (*tail)
        tail = &(*tail)->next;
    *tail = new Entry{&control, nullptr};
    return this;
}

void ControlInfo::SetupWindowPlacement()
{
    if (!m_pCtrl || !m_pCtrl->m_hWnd || !m_Header.m_pDialog)
        return;
    CRect r;
    m_pCtrl->GetWindowRect(&r);
    m_Header.m_pDialog->ScreenToClient(&r);
    m_rcBaseline = r;
}

void ControlInfo::AdaptControlSize(int dx, int dy)
{
    // From the baseline, never from where the control stands now, so that no
    // rounding carries over from one step to the next.
    CRect r = m_rcBaseline;
    if (dx != 0) {
        r.left += m_left * dx / 100;
        r.right += m_right * dx / 100;
    }
    if (dy != 0) {
        r.top += m_top * dy / 100;
        r.bottom += m_bottom * dy / 100;
    }
    for (const Entry* e = &m_Entry; e; e = e->next) {
        // A control that died is passed over, not taken out.
        if (e->control && IsWindow(e->control->m_hWnd))
            e->control->SetWindowPos(nullptr, r.left, r.top, r.Width(), r.Height(), SWP_NOZORDER | SWP_NOREDRAW);
    }
}

// --- Header -----------------------------------------------------------------------

ControlInfo::Header::Header() = default;

ControlInfo::Header::~Header()
{
    while (m_pFirst)
        delete m_pFirst;
}

void ControlInfo::Header::Init(CWnd* dialog, Freedom freedom, bool sizeIcon)
{
    m_pDialog = dialog;
    m_Freedom = freedom;
    m_bSizeIcon = sizeIcon;
}

bool ControlInfo::Header::IsValid() const
{
    return m_pDialog && IsWindow(m_pDialog->m_hWnd);
}

BOOL ControlInfo::Header::OnInitDialog(UINT stretchPercent)
{
    if (!IsValid())
        return 1;
    // The template's size is the smallest the dialog gets.
    CRect client;
    m_pDialog->GetClientRect(&client);
    m_nInitialWidth = client.Width();
    m_nInitialHeight = client.Height();
    CRect window;
    m_pDialog->GetWindowRect(&window);
    m_nMinWidth = window.Width();
    m_nMinHeight = window.Height();
    if (m_bSizeIcon)
        MakeGrip();
    if (stretchPercent)
        StretchWindow(stretchPercent);
    return 1;
}

void ControlInfo::Header::MakeGrip()
{
    CRect client;
    m_pDialog->GetClientRect(&client);
    m_bmGrip.DeleteObject();
    if (!m_bmGrip.LoadOEMBitmap(OBM_SIZE)) {
        m_bSizeIcon = false;
        return;
    }
    const CRect place(client.right - 24, client.bottom - 24, client.right, client.bottom);
    if (!m_Grip.m_hWnd && !m_Grip.Create("", 0x4000000E, place, m_pDialog, 0xFFFF)) {
        m_bSizeIcon = false;
        return;
    }
    m_Grip.ModifyStyleEx(0, WS_EX_TRANSPARENT);
    m_Grip.SendMessage(STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(m_bmGrip.GetSafeHandle()));
    CRect size;
    m_Grip.GetWindowRect(&size);
    if (size.IsRectEmpty()) {
        m_Grip.DestroyWindow();
        m_bSizeIcon = false;
        return;
    }
    m_Grip.SetWindowPos(nullptr, client.right - size.Width(), client.bottom - size.Height(), size.Width(),
                        size.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
    if (!AddSzControl(m_Grip, mdRepos, mdRepos)) {
        m_Grip.DestroyWindow();
        m_bSizeIcon = false;
        return;
    }
    m_Grip.ShowWindow(SW_SHOW);
}

void ControlInfo::Header::OnInitDialog2()
{
    if (!IsValid())
        return;
    CRect client;
    m_pDialog->GetClientRect(&client);
    m_nInitialWidth = client.Width();
    m_nInitialHeight = client.Height();
    CRect dropped;
    m_pDialog->GetWindowRect(&dropped); // read, as it was, and not kept
}

ControlInfo* ControlInfo::Header::AddSzControl(CWnd& control, Mode x, Mode y)
{
    BYTE left = 0;
    BYTE right = 0;
    BYTE top = 0;
    BYTE bottom = 0;
    Percentages(x, left, right);
    Percentages(y, top, bottom);
    return AddSzControlEx(control, left, right, top, bottom);
}

ControlInfo* ControlInfo::Header::AddSzControlEx(CWnd& control, BYTE left, BYTE right, BYTE top, BYTE bottom)
{
    if (!IsValid() || !IsWindow(control.m_hWnd) || m_nInitialWidth == -1)
        return nullptr;
    if (!left && !right && !top && !bottom)
        return nullptr;
    auto* info = new ControlInfo(*this, control, left, right, top, bottom);
    // A dialog that has grown already moves the newcomer by all its growth,
    // as if its present place were the one at the initial size.
    CRect client;
    m_pDialog->GetClientRect(&client);
    const int dx = client.Width() - m_nInitialWidth;
    const int dy = client.Height() - m_nInitialHeight;
    if (dx || dy)
        info->AdaptControlSize(dx, dy);
    return info;
}

bool ControlInfo::Header::ChangeSize(int cx, int cy)
{
    if (!IsValid() || m_nInitialWidth == -1)
        return false;
    const int dx = cx - m_nInitialWidth;
    const int dy = cy - m_nInitialHeight;
    for (ControlInfo* info = m_pFirst; info; info = info->m_pNext)
        info->AdaptControlSize(dx, dy);
    // One repaint for all: each control moved without one.
    m_pDialog->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    return true;
}

void ControlInfo::Header::OnSize(UINT type, int cx, int cy)
{
    if (type == SIZE_MINIMIZED || m_nInitialWidth == -1)
        return;
    ChangeSize(cx, cy);
}

void ControlInfo::Header::OnGetMinMaxInfo(MINMAXINFO* info)
{
    if (!info || !IsValid() || m_nInitialWidth == -1)
        return;
    info->ptMinTrackSize = POINT{m_nMinWidth, m_nMinHeight};
    // An axis without freedom stays at its initial size.
    if (!(m_Freedom & fdVert))
        info->ptMaxTrackSize.y = m_nMinHeight;
    if (!(m_Freedom & fdHoriz))
        info->ptMaxTrackSize.x = m_nMinWidth;
}

void ControlInfo::Header::StretchWindow(UINT percent)
{
    if (!IsValid())
        return;
    CRect r = PlaceOf(*m_pDialog);
    if (percent && (m_Freedom & fdHoriz)) {
        const UINT d = static_cast<UINT>(r.Width()) * percent / 50;
        r.left -= static_cast<LONG>(d);
        if (r.left < 0)
            r.left = 0;
        r.right += static_cast<LONG>(d);
    }
    if (percent && (m_Freedom & fdVert)) {
        const UINT d = static_cast<UINT>(r.Height()) * percent / 50;
        r.top -= static_cast<LONG>(d);
        if (r.top < 0)
            r.top = 0;
        r.bottom += static_cast<LONG>(d);
    }
    m_pDialog->SetWindowPos(nullptr, r.left, r.top, r.Width(), r.Height(),
                            SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void ControlInfo::Header::ReorganizeControls()
{
    if (!IsValid())
        return;
    CRect client;
    m_pDialog->GetClientRect(&client);
    ChangeSize(client.Width(), client.Height());
}

void ControlInfo::Header::ReloadControlsPosition()
{
    OnInitDialog2();
    for (ControlInfo* info = m_pFirst; info; info = info->m_pNext)
        info->SetupWindowPlacement();
}

bool ControlInfo::Header::StoreWindowPosition(const CString& section, int profile)
{
    WINDOWPLACEMENT wp{};
    wp.length = sizeof wp;
    if (m_nInitialWidth == -1 || !IsValid() || !GetWindowPlacement(m_pDialog->m_hWnd, &wp))
        return false;
    // The marker written first makes a record cut off half way unreadable.
    const std::pair<const char*, int> values[] = {
        {"(check)", kCheckWriting},
        {"Left", wp.rcNormalPosition.left},
        {"Right", wp.rcNormalPosition.right},
        {"Top", wp.rcNormalPosition.top},
        {"Bottom", wp.rcNormalPosition.bottom},
        {"State", static_cast<int>(wp.showCmd)},
        {"Flags", static_cast<int>(wp.flags)},
        {"(check)", kCheckComplete},
    };
    for (const auto& [key, value] : values) {
        if (!KProfile::WriteProfileInt(section, key, value, profile))
            return false;
    }
    return true;
}

bool ControlInfo::Header::RestoreWindowPosition(const CString& section, bool withState, int profile)
{
    WINDOWPLACEMENT wp{};
    wp.length = sizeof wp;
    if (!IsValid() || !GetWindowPlacement(m_pDialog->m_hWnd, &wp))
        return false;
    auto read = [&](const char* key, int present) {
        return static_cast<int>(KProfile::GetProfileIntA(section, key, present, profile));
    };
    if (read("(check)", 0) != kCheckComplete)
        return false;
    const int left = read("Left", wp.rcNormalPosition.left);
    const int right = read("Right", wp.rcNormalPosition.right);
    const int top = read("Top", wp.rcNormalPosition.top);
    const int bottom = read("Bottom", wp.rcNormalPosition.bottom);
    const int state = read("State", static_cast<int>(wp.showCmd));
    const int flags = read("Flags", static_cast<int>(wp.flags));
    // A size that no window can have is no placement (a damaged record).
    const long long width = static_cast<long long>(right) - left;
    const long long height = static_cast<long long>(bottom) - top;
    if (width <= 0 || height <= 0 || width > kLargest || height > kLargest)
        return false;
    RECT area = CVxDialog::Get2DisplayVirtual();
    if (!CVxDialog::Get2DisplayEnable() || area.right - area.left == 0 || area.bottom - area.top == 0)
        area = CVxDialog::Get2DisplayFirstRect();
    // Only the corner counts: a body hanging off the screens is accepted.
    if (!PtInRect(&area, POINT{left, top}))
        return false;
    if (m_pDialog->IsIconic()) {
        WINDOWPLACEMENT fresh{};
        fresh.length = sizeof fresh;
        if (!GetWindowPlacement(m_pDialog->m_hWnd, &fresh))
            return false;
        fresh.showCmd = SW_SHOWNORMAL;
        return SetWindowPlacement(m_pDialog->m_hWnd, &fresh) != FALSE;
    }
    UINT show = 0;
    if (withState && (state & 2))
        show = state == SW_SHOWMINIMIZED ? SW_SHOWNORMAL : static_cast<UINT>(state);
    wp.rcNormalPosition = RECT{left, top, right, bottom};
    wp.showCmd = show;
    wp.flags = static_cast<UINT>(flags);
    return SetWindowPlacement(m_pDialog->m_hWnd, &wp) != FALSE;
}

void ControlInfo::Header::NewExit()
{
    while (m_pFirst)
        delete m_pFirst;
    if (m_Grip.m_hWnd)
        m_Grip.DestroyWindow();
    m_bmGrip.DeleteObject();
    m_nInitialWidth = -1;
    m_pFirst = nullptr;
}

// --- CResizeDialog ------------------------------------------------------------------

CResizeDialog::CResizeDialog(UINT templateId, CWnd* parent, Freedom freedom, bool sizeIcon)
    : CNewDialog(templateId, parent)
{
    m_Header.Init(this, freedom, sizeIcon);
}

CResizeDialog::~CResizeDialog()
{
    if (m_hWnd)
        DestroyWindow();
}

BOOL CResizeDialog::OnInitDialog()
{
    return OnInitDialog(0);
}

BOOL CResizeDialog::OnInitDialog(UINT stretchPercent)
{
    m_ToolTip.DestroyWindow();
    m_ToolTexts.RemoveAll();
    if (m_ToolTip.Create(this))
        m_ToolTip.Activate(TRUE);
    for (CWnd* child = GetWindow(GW_CHILD); child; child = child->GetWindow(GW_HWNDNEXT)) {
        const int id = static_cast<int>(child->GetDlgCtrlID());
        if (id == -1 || id == 0xFFFF || !m_ToolTip.m_hWnd)
            continue;
        CString text;
        text.LoadString(static_cast<UINT>(id));
        const int feed = text.Find('\n');
        if (feed >= 0) {
            m_ToolTexts.Add(text.Mid(feed + 1));
            m_ToolTip.AddTool(child, m_ToolTexts[m_ToolTexts.GetSize() - 1]);
        } else {
            m_ToolTip.AddTool(child, static_cast<UINT>(id));
        }
    }
    CNewDialog::OnInitDialog();
    return m_Header.OnInitDialog(stretchPercent);
}

BOOL CResizeDialog::DestroyWindow()
{
    const BOOL result = CNewDialog::DestroyWindow();
    m_Header.NewExit();
    return result;
}

BOOL CResizeDialog::PreTranslateMessage(MSG* msg)
{
    if (m_hWnd && m_ToolTip.m_hWnd)
        m_ToolTip.RelayEvent(msg);
    return CNewDialog::PreTranslateMessage(msg);
}

void CResizeDialog::OnSize(UINT type, int cx, int cy)
{
    m_Header.OnSize(type, cx, cy);
    CNewDialog::OnSize(type, cx, cy);
}

void CResizeDialog::OnGetMinMaxInfo(MINMAXINFO* info)
{
    CNewDialog::OnGetMinMaxInfo(info);
    m_Header.OnGetMinMaxInfo(info);
}

void CResizeDialog::StretchWindow(UINT percent)
{
    m_Header.StretchWindow(percent);
}

void CResizeDialog::ReorganizeControls()
{
    m_Header.ReorganizeControls();
}

void CResizeDialog::ReloadControlsPosition()
{
    m_Header.ReloadControlsPosition();
}

void CResizeDialog::PumpMessages()
{
    // The dialog stays painted, and only its own messages are served: the
    // rest of the application hears nothing meanwhile.
    vx::ProcessPaintEvents();
    MSG msg;
    while (m_hWnd && PeekMessageA(&msg, m_hWnd, 0, 0, PM_REMOVE)) {
        if (IsDialogMessage(&msg))
            continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

bool CResizeDialog::StoreWindowPosition(const CString& section, int profile)
{
    return m_Header.StoreWindowPosition(section, profile);
}

bool CResizeDialog::StoreWindowPosition(UINT sectionStringId, int profile)
{
    CString section;
    section.LoadString(sectionStringId);
    return m_Header.StoreWindowPosition(section, profile);
}

bool CResizeDialog::RestoreWindowPosition(const CString& section, bool withState, int profile)
{
    return m_Header.RestoreWindowPosition(section, withState, profile);
}

bool CResizeDialog::RestoreWindowPosition(UINT sectionStringId, bool withState, int profile)
{
    CString section;
    section.LoadString(sectionStringId);
    return m_Header.RestoreWindowPosition(section, withState, profile);
}

CResizeDialog::ControlInfo* CResizeDialog::AddSzControl(CWnd& control, Mode x, Mode y)
{
    return m_Header.AddSzControl(control, x, y);
}

CResizeDialog::ControlInfo* CResizeDialog::AddSzXControl(CWnd& control, Mode x)
{
    return m_Header.AddSzControl(control, x, mdNone);
}

CResizeDialog::ControlInfo* CResizeDialog::AddSzYControl(CWnd& control, Mode y)
{
    return m_Header.AddSzControl(control, mdNone, y);
}

CResizeDialog::ControlInfo* CResizeDialog::AddSzControlEx(CWnd& control, BYTE left, BYTE right, BYTE top, BYTE bottom)
{
    return m_Header.AddSzControlEx(control, left, right, top, bottom);
}

CResizeDialog::ControlInfo* CResizeDialog::AddSzXControlEx(CWnd& control, BYTE left, BYTE right)
{
    return m_Header.AddSzControlEx(control, left, right, 0, 0);
}

CResizeDialog::ControlInfo* CResizeDialog::AddSzYControlEx(CWnd& control, BYTE top, BYTE bottom)
{
    return m_Header.AddSzControlEx(control, 0, 0, top, bottom);
}
