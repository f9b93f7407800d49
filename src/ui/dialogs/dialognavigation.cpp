// The dialog manager's keyboard: Tab, the arrows within a group, Enter and
// Esc, mnemonics, and the default push button that follows the focus.
#include "ui/dialogs/cdialog.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/dialogs/cdialog_p.h"
#include "ui/controls/cstatic.h"

#include "platform/framework/mbstring.h"
#include "platform/framework/util_p.h"

#include <vector>

namespace {

UINT DlgCode(CWnd* w, MSG* msg = nullptr)
{
    if (!w || !w->m_hWnd)
        return 0;
    return static_cast<UINT>(
        w->SendMessage(WM_GETDLGCODE, msg ? msg->wParam : 0, reinterpret_cast<LPARAM>(msg)));
}

bool IsPushButton(UINT code)
{
    return (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

bool IsGroupBox(CWnd* w)
{
    char cls[16] = {};
    GetClassNameA(w->m_hWnd, cls, sizeof cls);
    return _stricmp(cls, "Button") == 0 && (w->GetStyle() & BS_TYPEMASK) == BS_GROUPBOX;
}

// The mnemonic of a text: the character after a single "&", upper-cased.
int MnemonicOf(const CString& text)
{
    for (int i = 0; i + 1 < text.GetLength(); ++i) {
        if (text[i] != '&')
            continue;
        if (text[i + 1] == '&') {
            ++i;
            continue;
        }
        return static_cast<unsigned char>(vx::AsciiUpper(text[i + 1]));
    }
    return 0;
}

} // namespace

CWnd* CDialog::ControlOf(CWnd* window) const
{
    CWnd* w = window;
    while (w && w->GetParent() != this)
        w = (w->GetStyle() & WS_CHILD) ? w->GetParent() : nullptr;
    return w;
}

void CDialog::ShowDefault(CWnd* focus)
{
    // A focused push button is the default while it has the focus; otherwise
    // the dialog's default id is.
    CWnd* control = ControlOf(focus);
    const bool pushFocused = control && IsPushButton(DlgCode(control));
    const UINT defId = LOWORD(static_cast<DWORD_PTR>(SendMessage(DM_GETDEFID)));
    for (CWnd* w = GetWindow(GW_CHILD); w; w = w->GetWindow(GW_HWNDNEXT)) {
        const UINT code = DlgCode(w);
        if (!IsPushButton(code))
            continue;
        const bool shouldBe = pushFocused ? w == control : w->GetDlgCtrlID() == defId;
        const bool is = (code & DLGC_DEFPUSHBUTTON) != 0;
        if (shouldBe != is)
            w->SendMessage(BM_SETSTYLE, shouldBe ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
    }
}

void CDialog::GotoDlgCtrl(CWnd* control)
{
    if (!control || !control->m_hWnd)
        return;
    control->SetFocus();
    if (!control->m_hWnd)
        return;
    if (DlgCode(control) & DLGC_HASSETSEL)
        control->SendMessage(EM_SETSEL, 0, -1);
    d->lastFocus = control;
    ShowDefault(control);
}

void CDialog::NextDlgCtrl() const
{
    if (CWnd* next = GetNextDlgTabItem(ControlOf(GetFocus()), FALSE))
        const_cast<CDialog*>(this)->GotoDlgCtrl(next);
}

void CDialog::PrevDlgCtrl() const
{
    if (CWnd* previous = GetNextDlgTabItem(ControlOf(GetFocus()), TRUE))
        const_cast<CDialog*>(this)->GotoDlgCtrl(previous);
}

void CDialog::SetDefID(UINT id)
{
    SendMessage(DM_SETDEFID, id);
}

DWORD CDialog::GetDefID() const
{
    return static_cast<DWORD>(::SendMessageA(m_hWnd, DM_GETDEFID, 0, 0));
}

bool CDialog::Mnemonic(unsigned char key, CWnd* from)
{
    const int wanted = static_cast<unsigned char>(vx::AsciiUpper(static_cast<char>(key)));
    if (!wanted)
        return false;
    std::vector<CWnd*> controls;
    for (CWnd* w = GetWindow(GW_CHILD); w; w = w->GetWindow(GW_HWNDNEXT))
        controls.push_back(w);
    std::size_t start = 0;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (controls[i] == from)
            start = i + 1;
    }
    // From the control after the focus round to it, so that two controls
    // with one mnemonic take turns.
    for (std::size_t k = 0; k < controls.size(); ++k) {
        CWnd* c = controls[(start + k) % controls.size()];
        if (!(c->GetStyle() & WS_VISIBLE) || !c->IsWindowEnabled())
            continue;
        const UINT code = DlgCode(c);
        if ((code & DLGC_STATIC) && (c->GetStyle() & SS_NOPREFIX))
            continue;
        if (MnemonicOf(c->GetWindowTextString()) != wanted)
            continue;
        if ((code & DLGC_STATIC) || IsGroupBox(c)) {
            // A label hands its mnemonic to the control it names: the next
            // one that takes the focus.
            if (CWnd* target = GetNextDlgTabItem(c))
                GotoDlgCtrl(target);
        } else if (code & DLGC_BUTTON) {
            if (!IsPushButton(code))
                GotoDlgCtrl(c);
            c->SendMessage(BM_CLICK);
        } else {
            GotoDlgCtrl(c);
        }
        return true;
    }
    return false;
}

BOOL CDialog::IsDialogMessage(LPMSG msg)
{
    if (!msg || !m_hWnd)
        return FALSE;
    CWnd* target = FromHandle(msg->hwnd);
    if (!target || (target != this && !IsChild(target)))
        return FALSE;
    CWnd* control = ControlOf(target);
    switch (msg->message) {
    case WM_KEYDOWN: {
        const UINT code = DlgCode(target, msg);
        if (code & DLGC_WANTALLKEYS)
            return FALSE;
        const bool shift = GetKeyState(VK_SHIFT) < 0;
        switch (msg->wParam) {
        case VK_TAB:
            if (code & DLGC_WANTTAB)
                return FALSE;
            if (CWnd* next = GetNextDlgTabItem(control, shift))
                GotoDlgCtrl(next);
            return TRUE;
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN: {
            if (code & DLGC_WANTARROWS)
                return FALSE;
            if (!control)
                return TRUE;
            const bool back = msg->wParam == VK_LEFT || msg->wParam == VK_UP;
            CWnd* next = GetNextDlgGroupItem(control, back);
            if (next && next != control) {
                GotoDlgCtrl(next);
                // Moving onto a radio button chooses it, as a click does.
                if ((DlgCode(next) & DLGC_RADIOBUTTON) && next->m_hWnd &&
                    !next->SendMessage(BM_GETCHECK))
                    next->SendMessage(BM_CLICK);
            }
            return TRUE;
        }
        case VK_RETURN: {
            UINT id = 0;
            CWnd* button = nullptr;
            if (control && IsPushButton(DlgCode(control))) {
                button = control;
                id = static_cast<UINT>(control->GetDlgCtrlID());
            } else {
                const DWORD def = GetDefID();
                id = HIWORD(def) == DC_HASDEFID ? LOWORD(def) : IDOK;
                button = GetDlgItem(static_cast<int>(id));
            }
            if (button && !button->IsWindowEnabled())
                return TRUE;
            SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), BN_CLICKED),
                        reinterpret_cast<LPARAM>(button ? button->m_hWnd : nullptr));
            return TRUE;
        }
        case VK_ESCAPE: {
            CWnd* cancel = GetDlgItem(IDCANCEL);
            if (cancel && !cancel->IsWindowEnabled())
                return TRUE;
            SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                        reinterpret_cast<LPARAM>(cancel ? cancel->m_hWnd : nullptr));
            return TRUE;
        }
        default:
            return FALSE;
        }
    }
    case WM_CHAR: {
        const UINT code = DlgCode(target, msg);
        if (code & (DLGC_WANTCHARS | DLGC_WANTALLKEYS))
            return FALSE;
        // The characters of the keys the dialog took, and letters as
        // mnemonics where the focus wants no characters.
        if (msg->wParam == '\t' || msg->wParam == '\r' || msg->wParam == 27)
            return TRUE;
        if (msg->wParam > ' ' && msg->wParam < 0x100)
            return Mnemonic(static_cast<unsigned char>(msg->wParam), control) ? TRUE : FALSE;
        return FALSE;
    }
    case WM_SYSKEYDOWN:
    case WM_SYSCHAR: {
        const UINT key = static_cast<UINT>(msg->wParam);
        const bool letter = (key >= 'A' && key <= 'Z') || (key >= 'a' && key <= 'z') || (key >= '0' && key <= '9');
        if (!letter)
            return FALSE;
        return Mnemonic(static_cast<unsigned char>(key), control) ? TRUE : FALSE;
    }
    default:
        return FALSE;
    }
}

BOOL CDialog::PreTranslateMessage(MSG* msg)
{
    if (IsDialogMessage(msg))
        return TRUE;
    return CWnd::PreTranslateMessage(msg);
}
