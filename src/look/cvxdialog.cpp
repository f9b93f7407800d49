#include "look/cvxdialog.h"

#include "base/displaystate.h"
#include "base/stringlist.h"
#include "base/vxmessagebox.h"
#include "config/kprofile.h"
#include "process/kprocessio.h"
#include "ui/gdi/wingdi.h"

#include <algorithm>

namespace {

constexpr const char* kSection = "DialogState";
// Dialog geometry is the program's own: its global settings file.
constexpr int kScope = 0;
constexpr UINT kIconId = 0x3F1;

RECT MainWindowRect()
{
    const SIZE first = vx::TheDisplayState().first;
    CWnd* main = AfxGetMainWnd();
    if (!main || !main->m_hWnd)
        return RECT{0, 0, first.cx, first.cy};
    CRect r;
    main->GetWindowRect(&r);
    return r;
}

} // namespace

namespace vx {

BOOL InitVxDialog(CDialog& dialog, const std::function<BOOL()>& initBase)
{
    // One icon for all dialogs of the library, made at the first need.
    static HICON icon = static_cast<HICON>(LoadImageA(nullptr, MAKEINTRESOURCE(kIconId), IMAGE_ICON, 32, 32, 0));
    if (icon)
        dialog.SendMessage(WM_SETICON, 0, reinterpret_cast<LPARAM>(icon));
    CWnd* main = AfxGetMainWnd();
    if (KProcessIO::m_Active && main && main->m_hWnd && !main->IsWindowVisible()) {
        // The program ran hidden behind its partner: it shows now, with the
        // dialog in front.
        main->ShowWindow(SW_SHOW);
        dialog.SetForegroundWindow();
    }
    const BOOL result = initBase();
    if (dialog.m_hWnd && CVxDialog::Get2DisplayEnable()) {
        const CRect place(CVxDialog::Get2DisplayWndRect(&dialog, TRUE));
        dialog.MoveWindow(&place, FALSE);
    }
    return result;
}

} // namespace vx

CVxDialog::CVxDialog() = default;

CVxDialog::CVxDialog(UINT templateId, CWnd* parent) : CDialog(templateId, parent) {}

CVxDialog::~CVxDialog() = default;

int CVxDialog::VxMessageBox(LPCSTR text, LPCSTR caption, UINT type)
{
    return ::VxMessageBox(m_hWnd, text, caption, type);
}

INT_PTR CVxDialog::DoModal()
{
    RECT clip{};
    GetClipCursor(&clip);
    ClipCursor(nullptr);
    const INT_PTR result = CDialog::DoModal();
    ClipCursor(&clip);
    return result;
}

BOOL CVxDialog::OnInitDialog()
{
    return vx::InitVxDialog(*this, [this] { return CDialog::OnInitDialog(); });
}

BOOL CVxDialog::PreTranslateMessage(MSG* msg)
{
    if (msg) {
        CWnd* focus = GetFocus();
        if (focus && focus->GetDlgCtrlID() != IDOK)
            m_hLastFocus = focus->m_hWnd;
        if (msg->message == WM_KEYDOWN) {
            m_bEnter = msg->wParam == VK_RETURN;
            m_bEnterOnOk = m_bEnter && focus && focus->GetDlgCtrlID() == IDOK;
        } else if (msg->message == WM_LBUTTONDOWN || msg->message == WM_RBUTTONDOWN) {
            m_bEnter = 0;
            m_bEnterOnOk = 0;
        }
    }
    return CDialog::PreTranslateMessage(msg);
}

int CVxDialog::Set2DisplayEnable(int enable)
{
    return std::exchange(vx::TheDisplayState().enable, enable);
}

int CVxDialog::Get2DisplayEnable()
{
    return vx::TheDisplayState().enable;
}

RECT CVxDialog::Set2DisplayRect(const RECT& rect)
{
    return std::exchange(vx::TheDisplayState().rect, rect);
}

RECT CVxDialog::Get2DisplayRect()
{
    return vx::TheDisplayState().rect;
}

int CVxDialog::Set2DisplayRechteMaus(int follow)
{
    return std::exchange(vx::TheDisplayState().rechteMaus, follow ? 1 : 0);
}

int CVxDialog::Get2DisplayRechteMaus()
{
    return vx::TheDisplayState().rechteMaus;
}

SIZE CVxDialog::Set2DisplayFirst(const SIZE& size)
{
    return std::exchange(vx::TheDisplayState().first, size);
}

SIZE CVxDialog::Get2DisplayFirst()
{
    return vx::TheDisplayState().first;
}

RECT CVxDialog::Set2DisplayVirtual(const RECT& rect)
{
    return std::exchange(vx::TheDisplayState().virtualRect, rect);
}

RECT CVxDialog::Get2DisplayVirtual()
{
    return vx::TheDisplayState().virtualRect;
}

RECT CVxDialog::Get2DisplayFirstRect()
{
    const SIZE first = Get2DisplayFirst();
    return RECT{0, 0, first.cx, first.cy};
}

RECT CVxDialog::Get2DisplayWndRect(CWnd* wnd, BOOL centre)
{
    const RECT v = Get2DisplayVirtual();
    const SIZE first = Get2DisplayFirst();
    const LONG cx = first.cx;
    const LONG cy = first.cy;
    RECT r = Get2DisplayRect();
    if (Get2DisplayRechteMaus() && r.right - r.left != 0) {
        // Dialogs follow the display rectangle; one that straddles a seam
        // keeps its larger side.
        if (r.left < cx && cx < r.right) {
            if (r.right - cx < cx - r.left)
                r.right = cx;
            else if (v.right > cx)
                r.left = cx;
        }
        if (r.left < 0 && r.right >= 1) {
            if (-r.left > r.right)
                r.right = 0;
            else if (v.left < 0)
                r.left = 0;
        }
        if (r.top < cy && cy < r.bottom) {
            if (r.bottom - cy < cy - r.top)
                r.bottom = cy;
            else if (v.bottom > cy)
                r.top = cy;
        }
    } else {
        r = MainWindowRect();
        if (r.left >= 0 && v.left == 0) {
            if (r.left < v.right && v.right < r.right)
                r.right = v.right;
            if (r.top < v.bottom && v.bottom < r.bottom)
                r.bottom = v.bottom;
        } else {
            if (r.left < cx && cx < r.right)
                r.right = cx;
            if (r.top < cy && cy < r.bottom)
                r.bottom = cy;
        }
    }
    // Within the virtual desktop, at least 10 pixels of it when r lies
    // wholly outside.
    if (r.right > v.right)
        r.right = v.right;
    if (r.left > v.right)
        r.left = v.right - 10;
    if (r.left < v.left)
        r.left = v.left;
    if (r.right < v.left)
        r.right = v.left + 10;
    if (r.bottom > v.bottom)
        r.bottom = v.bottom;
    if (r.top > v.bottom)
        r.top = v.bottom - 10;
    if (r.top < v.top)
        r.top = v.top;
    if (r.bottom < v.top)
        r.bottom = v.top + 10;
    if (!centre || !wnd)
        return r;
    CRect w;
    wnd->GetWindowRect(&w);
    const LONG left = r.left + ((r.right - r.left) - w.Width()) / 2;
    const LONG top = r.top + ((r.bottom - r.top) - w.Height()) / 2;
    return RECT{left, top, left + w.Width(), top + w.Height()};
}

BOOL CVxDialog::Get2DisplayInMainWnd(CWnd* wnd)
{
    if (!Get2DisplayEnable())
        return TRUE;
    if (!wnd)
        return FALSE;
    CRect w;
    wnd->GetWindowRect(&w);
    const RECT display = Get2DisplayRect();
    RECT meet;
    return IntersectRect(&meet, &display, &w);
}

BOOL CVxDialog::StoreDialogPosition(UINT id, CWnd* wnd)
{
    if (!wnd || !wnd->m_hWnd)
        return FALSE;
    CRect r;
    wnd->GetWindowRect(&r);
    CString list;
    AddIntToStringList(list, r.left);
    AddIntToStringList(list, r.top);
    AddIntToStringList(list, r.right);
    AddIntToStringList(list, r.bottom);
    CString key;
    key.Format("%d", static_cast<int>(id));
    return KProfile::WriteProfileStringA(kSection, key, list, kScope) != 0;
}

BOOL CVxDialog::RestoreDialogPosition(UINT id, CWnd* wnd)
{
    if (!wnd || !wnd->m_hWnd)
        return FALSE;
    CString key;
    key.Format("%d", static_cast<int>(id));
    CString list = KProfile::GetProfileStringA(kSection, key, "", kScope);
    if (list.IsEmpty())
        return FALSE;
    int left = 0;
    int top = 0;
    // A value that holds no two numbers is no place: as if none were stored.
    if (!GetIntFromStringList(list, left) || !GetIntFromStringList(list, top))
        return FALSE;
    // Numbers no screen reaches cannot be a place on one (and would overflow
    // the arithmetic below): the window stays.
    constexpr int kFar = 1 << 24;
    if (left < -kFar || left > kFar || top < -kFar || top > kFar)
        return TRUE;
    CRect r;
    wnd->GetWindowRect(&r);
    r.OffsetRect(left - r.left, top - r.top);
    const CRect area(Get2DisplayWndRect(wnd, FALSE));
    if (area.PtInRect(r.CenterPoint())) {
        CPoint corner = r.TopLeft();
        if (CWnd* parent = wnd->GetParent(); parent && (wnd->GetStyle() & WS_CHILD))
            parent->ScreenToClient(&corner);
        wnd->SetWindowPos(nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return TRUE;
}
