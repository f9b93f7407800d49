#include "filedialogs/kvorschauwnd.h"

#include "base/stringlist.h"
#include "base/vxglobals.h"
#include "config/kprofile.h"
#include "pages/kvxfile.h"
#include "platform/framework/codepage.h"
#include "platform/windows/cframewnd.h"
#include "process/kprocessio.h"
#include "ui/dialogs/dialogtemplate.h"
#include "ui/gdi/cdc.h"

#include <cstring>

namespace {

constexpr const char* kSection = "DialogState";
constexpr const char* kKeyStem = "Vorschau";
// Window state is the program's own: its global settings file.
constexpr int kScope = 0;
constexpr DWORD kOwnButtonStyle = 0x40000002; // WS_CHILD | BS_CHECKBOX

vx::DialogTemplate PreviewTemplate()
{
    vx::DialogTemplate t(CString(vx::FromUtf8("Podgląd").c_str()), 0, 0, 150, 110,
                         WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | DS_SETFONT);
    t.exStyle = WS_EX_TOOLWINDOW;
    return t;
}

const bool g_registered = vx::RegisterDialogTemplate(vx::kVorschauTemplate, PreviewTemplate());

// The drawing mode of a file: 0 for a page of the project, 1 for the other
// program's drawings in AT (the partner is started), -1 for what only the
// main frame draws.
int ModeOf(const CString& path)
{
    KVxFile file(path);
    if (file.IsValidPage(1) != VxFileNone) {
        if (g_MainframeType == MainframeIT)
            KProcessIO::GetVxProg(MainframeType(0), 1, 0);
        return 0;
    }
    if (g_MainframeType != MainframeAT)
        return 0;
    // KVxFile folds an extension that is no page's into the title: the
    // extension is the plain path's.
    CString ext = KVxPath(path).GetExtension();
    if (ext.Left(1) == ".")
        ext = ext.Mid(1);
    ext = ext.Left(3);
    for (const char* other : {"ARD", "ELD", "MAT", "frm"}) {
        if (ext.CompareNoCase(other) == 0) {
            KProcessIO::GetVxProg(MainframeType(0), 1, 0);
            return 1;
        }
    }
    return ext.CompareNoCase("DXF") == 0 ? -1 : 0;
}

} // namespace

BOOL KVorschauWnd::KOnOffButton::PreTranslateMessage(MSG* msg)
{
    if (msg->message == WM_LBUTTONUP && m_pVorschau && m_pVorschau->m_hWnd) {
        const int on = m_pVorschau->IsWindowVisible() ? 0 : 1;
        m_pVorschau->m_Vorschau.m_OnOff = on;
        KDateiVorschau::s_GlobalOnOff = on;
        m_pVorschau->ShowWindow(on ? SW_SHOWNOACTIVATE : SW_HIDE);
        if (GetDlgCtrlID() == static_cast<int>(vx::kVorschauButtonId))
            SetCheck(on);
    }
    return CButton::PreTranslateMessage(msg);
}

KVorschauWnd::KVorschauWnd() = default;

KVorschauWnd::~KVorschauWnd()
{
    if (m_hWnd)
        DestroyWindow();
    delete m_pOwnButton;
}

BOOL KVorschauWnd::Create(UINT templateId, CWnd* parent)
{
    return CVxDialog::Create(templateId, parent);
}

BOOL KVorschauWnd::Erstellen(CWnd* parent, KOnOffButton* button, int wide, int side, int key, int hide)
{
    m_pButton = button;
    m_Side = side;
    m_nWide = wide;
    if (!m_hWnd && !Create(vx::kVorschauTemplate, parent))
        return FALSE;
    const bool hidden = hide && IsWindowVisible();
    if (hidden)
        ShowWindow(SW_HIDE);
    bool placed = false;
    if (key) {
        m_Suffix.Format("%d", key);
        CString kept = KProfile::GetProfileStringA(kSection, CString(kKeyStem) + m_Suffix, "", kScope);
        if (!kept.IsEmpty()) {
            int left = 0, top = 0, right = 0, bottom = 0;
            GetIntFromStringList(kept, left);
            GetIntFromStringList(kept, top);
            GetIntFromStringList(kept, right);
            GetIntFromStringList(kept, bottom);
            MoveWindow(left, top, right - left, bottom - top, TRUE);
            placed = true;
        }
    }
    if (!placed)
        Place(wide);
    if (hidden)
        ShowWindow(SW_SHOWNOACTIVATE);
    return TRUE;
}

void KVorschauWnd::Place(int wide)
{
    CWnd* parent = m_pParentWnd;
    if (!m_hWnd || !parent || !parent->m_hWnd)
        return;
    CRect p;
    CRect r;
    parent->GetWindowRect(&p);
    GetWindowRect(&r);
    int left = r.left;
    int top = r.top;
    int width = r.Width();
    int height = r.Height();
    switch (m_Side) {
    case vx::kVorschauAbove:
        left = p.left;
        top = wide ? 2 * p.top - p.bottom : p.top - r.Height();
        width = wide ? p.Width() : r.Width();
        break;
    case vx::kVorschauLeft:
        left = p.left - r.Width();
        top = p.top;
        height = wide ? p.Height() : r.Height();
        break;
    case vx::kVorschauCorner:
        // At the corner, not under the parent: kept as it always stood.
        left = p.right;
        top = p.bottom;
        width = wide ? p.Width() : r.Width();
        break;
    case vx::kVorschauRight:
        left = p.right;
        top = p.top;
        height = wide ? p.Height() : r.Height();
        break;
    default:
        return;
    }
    MoveWindow(left, top, width, height, TRUE);
}

void KVorschauWnd::Verschieben(int repaint)
{
    if (!m_hWnd || IsIconic())
        return;
    const bool hide = repaint && m_Vorschau.m_OnOff;
    if (hide)
        ShowWindow(SW_HIDE);
    Place(1);
    if (hide)
        ShowWindow(SW_SHOWNOACTIVATE);
}

void KVorschauWnd::Anzeigen(const char* path, const char* part, void* data)
{
    if (!path) {
        m_Vorschau.m_OnOff = 0;
        m_Path.Empty();
    } else {
        m_Path = path;
    }
    if (part)
        m_Part = part;
    else
        m_Part.Empty();
    m_pData = data;
    if (!m_hWnd)
        return;
    CWnd* focus = GetFocus();
    ShowWindow(m_Vorschau.m_OnOff ? SW_SHOWNOACTIVATE : SW_HIDE);
    Invalidate();
    if (focus && focus->m_hWnd && focus != this)
        focus->SetFocus();
}

void KVorschauWnd::BauteilUpdate()
{
    if (g_pDLLMainframe)
        g_pDLLMainframe->SendMessage(vx::kVorschauRequest, vx::kVorschauBauteil, reinterpret_cast<LPARAM>(this));
}

BOOL KVorschauWnd::OnInitDialog()
{
    CVxDialog::OnInitDialog();
    CWnd* parent = m_pParentWnd;
    if (!m_pButton && parent && parent->m_hWnd) {
        CRect client;
        parent->GetClientRect(&client);
        m_pOwnButton = new KOnOffButton;
        const CRect place(client.right - 2 - 14, client.top + 1, client.right - 2, client.top + 11);
        if (m_pOwnButton->Create(">", kOwnButtonStyle, place, parent, vx::kVorschauButtonId))
            m_pButton = m_pOwnButton;
    }
    if (m_pButton && m_pButton->m_hWnd) {
        m_pButton->m_pVorschau = this;
        m_pButton->ShowWindow(SW_SHOW);
        m_pButton->SetCheck(m_Vorschau.m_OnOff ? 1 : 0);
    }
    return TRUE;
}

void KVorschauWnd::OnPaint()
{
    {
        // The background first; the drawing comes through a device of its own.
        CPaintDC dc(this);
    }
    if (!m_Part.IsEmpty()) {
        BauteilUpdate();
        return;
    }
    const int mode = m_Path.IsEmpty() ? 0 : ModeOf(m_Path);
    m_Vorschau.BildUpdate(m_Path, this, nullptr, 0, mode);
}

void KVorschauWnd::OnClose()
{
    if (m_pButton && m_pButton->m_hWnd)
        m_pButton->SetCheck(0);
    m_Vorschau.m_OnOff = 0;
    if (m_Part.IsEmpty())
        m_Vorschau.Exit();
    ShowWindow(SW_HIDE);
}

void KVorschauWnd::OnDestroy()
{
    if (!m_Suffix.IsEmpty()) {
        CRect r;
        GetWindowRect(&r);
        CString list;
        AddIntToStringList(list, r.left);
        AddIntToStringList(list, r.top);
        AddIntToStringList(list, r.right);
        AddIntToStringList(list, r.bottom);
        KProfile::WriteProfileStringA(kSection, CString(kKeyStem) + m_Suffix, list, kScope);
    }
    if (m_pOwnButton && m_pOwnButton->m_hWnd && m_pOwnButton->GetDlgCtrlID() == static_cast<int>(vx::kVorschauButtonId))
        m_pOwnButton->DestroyWindow();
    if (m_pButton == m_pOwnButton)
        m_pButton = nullptr;
    CVxDialog::OnDestroy();
}
