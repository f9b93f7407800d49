#include "ui/dialogs/cdialog.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/controlclass.h"
#include "ui/dialogs/cdialog_p.h"
#include "ui/dialogs/dialogunits_p.h"
#include "ui/dialogs/modalloop.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"
#include "ui/windows/qtinterop.h"
#include "ui/windows/windowsizing.h"

#include "platform/windows/cframewnd.h"
#include "platform/windows/sysmetrics.h"

#include <cstring>
#include <utility>
#include <map>
#include <optional>
#include <vector>

namespace {

// The window a dialog stands over: the top-level window of its parent.
CWnd* OwnerOf(CWnd* parent)
{
    CWnd* w = parent;
    while (w && (w->GetStyle() & WS_CHILD) && w->GetParent())
        w = w->GetParent();
    return w;
}

} // namespace

LONG GetDialogBaseUnits()
{
    const SIZE units = vx::dialogs::BaseUnitsOf(static_cast<HFONT>(GetStockObject(SYSTEM_FONT)));
    return static_cast<LONG>(MAKELONG(static_cast<WORD>(units.cx), static_cast<WORD>(units.cy)));
}

CDialog::CDialog() : d(std::make_unique<Private>()) {}

CDialog::CDialog(UINT templateId, CWnd* parent) : m_nIDHelp(templateId), m_nIDTemplate(templateId), m_pParentWnd(parent),
    d(std::make_unique<Private>())
{
}

CDialog::~CDialog()
{
    if (m_hWnd)
        DestroyWindow();
}

void CDialog::MapCommand(UINT code, UINT id, std::function<void()> handler)
{
    d->commands.push_back(Private::CommandEntry{code, id, id, [handler](UINT) { handler(); }});
}

void CDialog::MapCommandRange(UINT code, UINT first, UINT last, std::function<void(UINT)> handler)
{
    d->commands.push_back(Private::CommandEntry{code, first, last, std::move(handler)});
}

void CDialog::BindDlgItem(int id, CWnd& control)
{
    d->bound[id] = &control;
}

BOOL CDialog::InitModalIndirect(const vx::DialogTemplate& dialogTemplate, CWnd* parent)
{
    d->indirect = dialogTemplate;
    if (parent)
        m_pParentWnd = parent;
    return TRUE;
}

BOOL CDialog::Build(const vx::DialogTemplate& t, CWnd* parent)
{
    const CString problem = t.Check();
    if (!problem.IsEmpty()) {
        CString text;
        text.Format("dialog %u refused: %s", m_nIDTemplate, problem.GetString());
        vx::ReportDialogError(text);
        return FALSE;
    }
    LOGFONTA lf{};
    lf.lfHeight = -vx::dialogs::Scale(t.pointSize > 0 ? t.pointSize : 8, 96, 72);
    lf.lfWeight = FW_NORMAL;
    lf.lfCharSet = DEFAULT_CHARSET;
    std::strncpy(lf.lfFaceName, t.fontFace.GetString(), sizeof lf.lfFaceName - 1);
    d->font.DeleteObject();
    d->font.CreateFontIndirect(&lf);
    d->baseUnits = vx::dialogs::BaseUnitsOf(static_cast<HFONT>(d->font.GetSafeHandle()));

    CRect client(0, 0, t.cx, t.cy);
    MapDialogRect(&client);
    const bool child = (t.style & WS_CHILD) != 0;
    CRect place = client;
    if (child) {
        CRect at(t.x, t.y, t.x, t.y);
        MapDialogRect(&at);
        place.OffsetRect(at.left, at.top);
    } else {
        // Centred over the owner (or the screen), as dialogs of the suite
        // open; a template position is taken from the owner's client area.
        CRect area;
        if (parent && parent->m_hWnd && parent->IsWindowVisible())
            parent->GetWindowRect(&area);
        else
            area = CRect(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
        if ((t.style & DS_CENTER) || (t.x == 0 && t.y == 0) || !parent) {
            place.OffsetRect(area.left + (area.Width() - client.Width()) / 2,
                             area.top + (area.Height() - client.Height()) / 2);
        } else {
            CRect at(t.x, t.y, t.x, t.y);
            MapDialogRect(&at);
            CPoint origin(0, 0);
            if (!(t.style & DS_ABSALIGN))
                parent->ClientToScreen(&origin);
            place.OffsetRect(origin.x + at.left, origin.y + at.top);
        }
    }
    d->defId = 0;
    d->lastFocus = nullptr;
    d->ending = false;
    if (!CreateEx(t.title, "#32770", t.style & ~WS_VISIBLE, place, parent, child ? m_nIDTemplate : 0,
                  t.exStyle | WS_EX_CONTROLPARENT))
        return FALSE;
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(d->font.GetSafeHandle()), FALSE);
    for (const vx::DialogItem& item : t.items) {
        CWnd* control = nullptr;
        if (auto it = d->bound.find(item.id); it != d->bound.end() && it->second && !it->second->m_hWnd) {
            control = it->second;
        } else {
            d->owned.push_back(vx::MakeControl(item.className));
            control = d->owned.back().get();
        }
        CRect r(item.x, item.y, item.x + item.cx, item.y + item.cy);
        MapDialogRect(&r);
        if (!control || !control->CreateEx(item.text, item.className, item.style, r, this,
                                           static_cast<UINT>(item.id), item.exStyle)) {
            CString text;
            text.Format("dialog %u refused: control %d could not be made", m_nIDTemplate, item.id);
            vx::ReportDialogError(text);
            DestroyWindow();
            return FALSE;
        }
        control->SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(d->font.GetSafeHandle()), FALSE);
        if (!d->defId && (control->SendMessage(WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON))
            d->defId = static_cast<UINT>(item.id);
    }
    CWnd* first = GetNextDlgTabItem(nullptr);
    const HWND self = m_hWnd;
    const LRESULT focus = SendMessage(WM_INITDIALOG, reinterpret_cast<WPARAM>(first ? first->m_hWnd : nullptr), 0);
    if (!IsWindow(self))
        return FALSE;
    if (focus && first && IsWindow(first->m_hWnd))
        GotoDlgCtrl(first);
    return TRUE;
}

INT_PTR CDialog::DoModal()
{
    const vx::DialogTemplate* t = d->indirect ? &*d->indirect : vx::FindDialogTemplate(m_nIDTemplate);
    if (!t) {
        CString text;
        text.Format("dialog %u has no template", m_nIDTemplate);
        vx::ReportDialogError(text);
        return -1;
    }
    const vx::DialogTemplate modalTemplate = *t;
    CWnd* owner = OwnerOf(m_pParentWnd ? m_pParentWnd : AfxGetMainWnd());
    if (owner == this || (owner && !owner->m_hWnd))
        owner = nullptr;
    const HWND ownerHandle = owner ? owner->m_hWnd : nullptr;
    const bool disableOwner = owner && owner->IsWindowEnabled();
    auto* frame = dynamic_cast<CFrameWnd*>(AfxGetMainWnd());
    if (frame)
        ++frame->m_cModalStack;
    m_nModalResult = -1;
    d->modal = true;
    // The owner takes no input while the dialog runs, from before the
    // dialog's WM_INITDIALOG on, as the framework did it.
    if (disableOwner)
        owner->EnableWindow(FALSE);
    if (!Build(modalTemplate, owner)) {
        d->modal = false;
        if (disableOwner && IsWindow(ownerHandle))
            owner->EnableWindow(TRUE);
        if (frame && AfxGetMainWnd() == frame)
            --frame->m_cModalStack;
        return -1;
    }
    if (!d->ending) {
        ShowWindow(SW_SHOW);
        SetActiveWindow();
        vx::RunModalLoop([this] { return d->ending || !m_hWnd; });
    }
    if (disableOwner && IsWindow(ownerHandle))
        owner->EnableWindow(TRUE);
    if (m_hWnd) {
        ShowWindow(SW_HIDE);
        if (IsWindow(ownerHandle))
            owner->SetActiveWindow();
        DestroyWindow();
    }
    d->modal = false;
    if (frame && AfxGetMainWnd() == frame)
        --frame->m_cModalStack;
    return m_nModalResult;
}

BOOL CDialog::Create(UINT templateId, CWnd* parent)
{
    m_nIDTemplate = templateId;
    if (!m_nIDHelp)
        m_nIDHelp = templateId;
    if (parent)
        m_pParentWnd = parent;
    const vx::DialogTemplate* t = vx::FindDialogTemplate(templateId);
    if (!t) {
        CString text;
        text.Format("dialog %u has no template", templateId);
        vx::ReportDialogError(text);
        return FALSE;
    }
    return CreateIndirect(*t, parent);
}

BOOL CDialog::CreateIndirect(const vx::DialogTemplate& dialogTemplate, CWnd* parent)
{
    if (m_hWnd)
        return FALSE;
    if (parent)
        m_pParentWnd = parent;
    d->modal = false;
    const vx::DialogTemplate t = dialogTemplate;
    CWnd* where = (t.style & WS_CHILD) ? m_pParentWnd : OwnerOf(m_pParentWnd ? m_pParentWnd : AfxGetMainWnd());
    if (where == this)
        where = nullptr;
    if (!Build(t, where))
        return FALSE;
    if (t.style & WS_VISIBLE)
        ShowWindow(SW_SHOW);
    return TRUE;
}

void CDialog::EndDialog(int result)
{
    m_nModalResult = result;
    if (d->modal) {
        d->ending = true;
        vx::WakeModalLoop();
    } else if (m_hWnd) {
        ShowWindow(SW_HIDE);
    }
}

BOOL CDialog::OnInitDialog()
{
    return TRUE;
}

void CDialog::OnOK()
{
    EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

BOOL CDialog::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    const UINT code = HIWORD(wParam);
    for (const Private::CommandEntry& entry : d->commands) {
        // Menus send code 0, accelerators 1; both reach ON_COMMAND entries.
        const bool codeMatches = entry.code == code || (!lParam && code == 1 && entry.code == 0);
        if (codeMatches && id >= entry.first && id <= entry.last) {
            entry.handler(id);
            return TRUE;
        }
    }
    if (code == BN_CLICKED || (!lParam && code == 1)) {
        if (id == IDOK) {
            OnOK();
            return TRUE;
        }
        if (id == IDCANCEL) {
            OnCancel();
            return TRUE;
        }
    }
    return CWnd::OnCommand(wParam, lParam);
}

HBRUSH CDialog::OnCtlColor(CDC*, CWnd*, UINT)
{
    return nullptr;
}

void CDialog::OnGetMinMaxInfo(MINMAXINFO*) {}

LRESULT CDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInitDialog();
    case WM_GETMINMAXINFO:
        OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam));
        return 0;
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC: {
        CWnd* control = FromHandle(reinterpret_cast<HWND>(lParam));
        LRESULT result = 0;
        if (control != this && ReflectToChild(control, message, wParam, lParam, &result))
            return result;
        return reinterpret_cast<LRESULT>(
            OnCtlColor(CDC::FromHandle(reinterpret_cast<HDC>(wParam)), control, message - WM_CTLCOLORMSGBOX));
    }
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}

void CDialog::PostNcDestroy()
{
    // The controls the dialog made go with its window; bound ones are their owners'.
    d->owned.clear();
    d->lastFocus = nullptr;
    d->grip.End();
    CWnd::PostNcDestroy();
}

LRESULT CDialog::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT: {
        // Nothing of its own to paint: validating erases the background.
        CPaintDC dc(this);
        return 0;
    }
    case WM_ERASEBKGND: {
        const auto dc = reinterpret_cast<HDC>(wParam);
        auto brush = reinterpret_cast<HBRUSH>(
            SendMessage(WM_CTLCOLORDLG, wParam, reinterpret_cast<LPARAM>(m_hWnd)));
        if (!brush)
            brush = GetSysColorBrush(COLOR_BTNFACE);
        CRect r;
        GetClientRect(&r);
        ::FillRect(dc, &r, brush);
        return TRUE;
    }
    case WM_CLOSE: {
        CWnd* cancel = GetDlgItem(IDCANCEL);
        if (cancel && !cancel->IsWindowEnabled())
            return 0;
        SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                    reinterpret_cast<LPARAM>(cancel ? cancel->m_hWnd : nullptr));
        return 0;
    }
    case WM_SETICON: {
        // The desktop shows it in the caption and the task bar.
        const std::size_t which = wParam == ICON_BIG ? 1 : 0;
        HICON old = std::exchange(d->icons[which], reinterpret_cast<HICON>(lParam));
        vx::SetWindowIcon(*this, d->icons[1] ? d->icons[1] : d->icons[0]);
        return reinterpret_cast<LRESULT>(old);
    }
    case WM_GETICON:
        return reinterpret_cast<LRESULT>(d->icons[wParam == ICON_BIG ? 1 : 0]);
    case DM_GETDEFID:
        return d->defId ? static_cast<LRESULT>(MAKELONG(static_cast<WORD>(d->defId), DC_HASDEFID)) : 0;
    case DM_SETDEFID:
        d->defId = static_cast<UINT>(wParam);
        ShowDefault(GetFocus());
        return TRUE;
    case WM_NEXTDLGCTL: {
        CWnd* target = nullptr;
        if (LOWORD(static_cast<DWORD_PTR>(lParam)))
            target = FromHandle(reinterpret_cast<HWND>(wParam));
        else
            target = GetNextDlgTabItem(ControlOf(GetFocus()), wParam != 0);
        if (target)
            GotoDlgCtrl(target);
        return 0;
    }
    case WM_SETFOCUS: {
        CWnd* target = d->lastFocus && IsChild(d->lastFocus) ? d->lastFocus : GetNextDlgTabItem(nullptr);
        if (target)
            GotoDlgCtrl(target);
        return 0;
    }
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE) {
            if (CWnd* focus = GetFocus(); focus && IsChild(focus))
                d->lastFocus = ControlOf(focus);
        } else if (d->lastFocus && IsChild(d->lastFocus) && GetFocus() != d->lastFocus && !IsChild(GetFocus())) {
            d->lastFocus->SetFocus();
        }
        return 0;
    case WM_SETCURSOR:
        if (GetStyle() & WS_THICKFRAME) {
            CPoint at;
            GetCursorPos(&at);
            ScreenToClient(&at);
            if (vx::dialogs::InSizeCorner(*this, at)) {
                ::SetCursor(LoadCursorA(nullptr, IDC_SIZENWSE));
                return TRUE;
            }
        }
        return FALSE;
    case WM_LBUTTONDOWN: {
        const CPoint at(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        if ((GetStyle() & WS_THICKFRAME) && vx::dialogs::InSizeCorner(*this, at)) {
            CPoint screen(at);
            ClientToScreen(&screen);
            d->grip.Begin(*this, screen);
            SetCapture();
        }
        return 0;
    }
    case WM_MOUSEMOVE:
        if (d->grip.IsActive()) {
            CPoint screen(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
            ClientToScreen(&screen);
            d->grip.Track(screen);
        }
        return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
        if (d->grip.IsActive()) {
            d->grip.End();
            if (message == WM_LBUTTONUP)
                ReleaseCapture();
        }
        return 0;
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}

void CDialog::MapDialogRect(LPRECT rect) const
{
    if (!rect)
        return;
    vx::dialogs::MapRect(d->baseUnits, *rect);
}
