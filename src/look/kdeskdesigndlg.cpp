#include "look/kdeskdesigndlg.h"

#include "look/cbuttonst.h"
#include "look/kskinbutton.h"
#include "menus/cnewmenu.h"
#include "frames/cnewtoolbar.h"
#include "menus/menucolors.h"
#include "ui/controls/cbutton.h"
#include "ui/dialogs/ccolordialog.h"
#include "ui/gdi/cdc.h"

#include "base/stringlist.h"
#include "config/kprofile.h"
#include "platform/windows/ccombobox.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>

namespace {

constexpr const char* kSection = "KonfigDesign";
// The design is the suite's: both programs read it from the suite file.
constexpr int kScope = -1;
constexpr COLORREF kAbsent = 0xFFFFFF;

int Read(const char* key, int defaultValue)
{
    return static_cast<int>(KProfile::GetProfileIntA(kSection, key, defaultValue, kScope));
}

void Write(const char* key, int value)
{
    KProfile::WriteProfileInt(kSection, key, value, kScope);
}

CComboBox* Combo(CDialog& dlg, int id)
{
    return static_cast<CComboBox*>(dlg.GetDlgItem(id));
}

void Fill(CComboBox* combo, int stringId)
{
    CString list;
    list.LoadString(static_cast<UINT>(stringId)); // a missing string leaves the combo empty
    const int n = GetAnzahlSubStrings(list, '#');
    for (int i = 1; i <= n; ++i)
        combo->AddString(GetSubString(i, list, '#'));
}

// The swatch inside a frame static: painted into the static, whose frame
// keeps what lies inside it.
void PaintSwatch(CWnd* frame, COLORREF color)
{
    if (!frame || !frame->m_hWnd)
        return;
    CRect r;
    frame->GetClientRect(&r);
    r.DeflateRect(1, 1);
    CClientDC dc(frame);
    dc.FillSolidRect(&r, color);
}

} // namespace

const int KDeskDesignDlg::s_Shades[8] = {0, 2, 3, 8, 6, 4, 5, 7};

KDeskDesignDlg::KDeskDesignDlg(CWnd* parent) : CDialog(IDD, parent)
{
    MapCommand(BN_CLICKED, IDC_DESIGN_STANDARD, &KDeskDesignDlg::OnDeskDesignStd);
    MapCommand(BN_CLICKED, IDC_DESIGN_MENU, &KDeskDesignDlg::OnDeskDesignMenu);
    MapCommand(CBN_SELCHANGE, IDC_DESIGN_SHADE, &KDeskDesignDlg::ShowAll);
    MapCommand(BN_CLICKED, IDC_DESIGN_ROUND, &KDeskDesignDlg::ShowAll);
    MapCommand(BN_CLICKED, IDC_DESIGN_3D, &KDeskDesignDlg::ShowAll);
    MapCommand(CBN_SELCHANGE, IDC_DESIGN_COLOR, [this] { Invalidate(); });
    MapCommand(CBN_SELENDOK, IDC_DESIGN_STYLE, &KDeskDesignDlg::OnSelendokDeskDesignStyle);
}

KDeskDesignDlg::~KDeskDesignDlg()
{
    DropPreview();
}

void KDeskDesignDlg::InitParameter()
{
    if (Read("Standard", 0)) {
        CNewMenu::m_Enable = 0;
        CNewToolBar::m_NewToolbar = 0;
        CButtonST::m_InitType = 0;
        return;
    }
    CNewMenu::m_Enable = Read("Menu", 1);
    CNewToolBar::m_NewToolbar = Read("Toolbar", 1);
    CButtonST::m_InitType = Read("Button", 1);
    switch (Read("Color", 0)) {
    case 1: CNewMenu::m_InitColor = 0xF5C2A3; break;
    case 2: CNewMenu::m_InitColor = 0xC0C0C0; break;
    case 3: CNewMenu::m_InitColor = 0xE6E6E6; break;
    default: break; // left as it is, so the menu derives its colour
    }
    CButtonST::m_InitShade = static_cast<DWORD>(Read("Style", 0));
    KSkinButton::s_ShadeMode = Read("Mode", 4);
    KSkinButton::s_3D = Read("Mode3D", 1);
}

COLORREF KDeskDesignDlg::GetMenuBackground(int index)
{
    switch (index) {
    case 0: {
        const COLORREF color = BlendColor(DarkenColor(10, GetSysColor(COLOR_WINDOW)), GetSysColor(COLOR_ACTIVECAPTION));
        CWnd* main = AfxGetMainWnd();
        if (!main || !main->m_hWnd)
            return color;
        CClientDC dc(main);
        return dc.GetNearestColor(color);
    }
    case 1: return 0xF5C2A3;
    case 2: return 0xC0C0C0;
    case 3: return 0xE6E6E6;
    default: return 0;
    }
}

COLORREF KDeskDesignDlg::StyleColor(int index) const
{
    switch (index) {
    case 0: return GetSysColor(COLOR_BTNFACE);
    case 1: return 0xC0C0C0;
    case 2: return 0xB2B2B2;
    case 3: return 0xCCB7AF;
    default: return m_UserColor;
    }
}

BOOL KDeskDesignDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    Fill(Combo(*this, IDC_DESIGN_COLOR), 6710);
    Fill(Combo(*this, IDC_DESIGN_STYLE), 6711);
    Fill(Combo(*this, IDC_DESIGN_SHADE), 6712);
    CheckDlgButton(IDC_DESIGN_STANDARD, Read("Standard", 0) ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(IDC_DESIGN_TOOLBAR, Read("Toolbar", 1) ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(IDC_DESIGN_MENU, Read("Menu", 1) ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(IDC_DESIGN_BUTTON, Read("Button", 1) ? BST_CHECKED : BST_UNCHECKED);
    Combo(*this, IDC_DESIGN_COLOR)->SetCurSel(Read("Color", 0));

    // A "Style" above 3 is the user's own colour.
    const DWORD style = static_cast<DWORD>(Read("Style", 0));
    Combo(*this, IDC_DESIGN_STYLE)->SetCurSel(static_cast<int>(std::min<DWORD>(style, 4)));
    if (style > 3)
        m_UserColor = style;

    // The preview buttons stand where the template keeps two hidden places,
    // and draw themselves whatever the design says for now.
    DropPreview();
    const int savedType = CButtonST::m_InitType;
    CButtonST::m_InitType = 1;
    KSkinButton** previews[2] = {&m_pActive, &m_pInactive};
    const int places[2] = {IDC_DESIGN_ACTIVE_PLACE, IDC_DESIGN_INACTIVE_PLACE};
    const int ids[2] = {IDC_DESIGN_ACTIVE, IDC_DESIGN_INACTIVE};
    for (int i = 0; i < 2; ++i) {
        CWnd* place = GetDlgItem(places[i]);
        if (!place)
            continue;
        CRect r;
        place->GetWindowRect(&r);
        ScreenToClient(&r);
        *previews[i] = new KSkinButton;
        (*previews[i])->Create(place->GetWindowTextString(), 0x50020000, r, this, static_cast<UINT>(ids[i]));
        (*previews[i])->SetFont(GetFont());
    }
    CButtonST::m_InitType = savedType;
    if (m_pInactive)
        m_pInactive->EnableWindow(FALSE);

    SetModes();
    ShowAll();
    OnDeskDesignStd();
    OnDeskDesignMenu();
    return TRUE;
}

void KDeskDesignDlg::SetModes()
{
    const int mode = Read("Mode", 4);
    int index = 0; // a mode not in the table: type 0, not rounded
    for (int i = 0; i < 8; ++i) {
        if (s_Shades[i] == mode)
            index = i;
    }
    CheckDlgButton(IDC_DESIGN_ROUND, index > 3 ? BST_CHECKED : BST_UNCHECKED);
    if (index > 3)
        index -= 4;
    Combo(*this, IDC_DESIGN_SHADE)->SetCurSel(index);
    CheckDlgButton(IDC_DESIGN_3D, Read("Mode3D", 1) ? BST_CHECKED : BST_UNCHECKED);
}

int KDeskDesignDlg::GetShade() const
{
    const int type = std::clamp(static_cast<CComboBox*>(GetDlgItem(IDC_DESIGN_SHADE))->GetCurSel(), 0, 3);
    return s_Shades[type + (IsDlgButtonChecked(IDC_DESIGN_ROUND) == BST_CHECKED ? 4 : 0)];
}

void KDeskDesignDlg::ShowAll()
{
    const int style = Combo(*this, IDC_DESIGN_STYLE)->GetCurSel();
    const DWORD saved = CButtonST::m_InitShade;
    CButtonST::m_InitShade = style > 3 ? m_UserColor : static_cast<DWORD>(std::max(style, 0));
    const int shade = GetShade();
    for (KSkinButton* b : {m_pActive, m_pInactive}) {
        if (b)
            b->SetShade(shade);
    }
    CButtonST::m_InitShade = saved;
    Invalidate();
    const BOOL flat = IsDlgButtonChecked(IDC_DESIGN_3D) != BST_CHECKED;
    for (KSkinButton* b : {m_pActive, m_pInactive}) {
        if (b)
            b->SetFlat(flat);
    }
}

void KDeskDesignDlg::OnDeskDesignStd()
{
    const BOOL own = IsDlgButtonChecked(IDC_DESIGN_STANDARD) != BST_CHECKED;
    for (int id : {IDC_DESIGN_MENU, IDC_DESIGN_TOOLBAR, IDC_DESIGN_COLOR, IDC_DESIGN_BUTTON, IDC_DESIGN_STYLE,
                   IDC_DESIGN_SHADE, IDC_DESIGN_ROUND, IDC_DESIGN_3D, IDC_DESIGN_ACTIVE}) {
        if (CWnd* w = GetDlgItem(id))
            w->EnableWindow(own);
    }
    OnDeskDesignMenu();
}

void KDeskDesignDlg::OnDeskDesignMenu()
{
    // Own tool bars need own menus; with the plain look both stay shown,
    // disabled.
    const bool menu = IsDlgButtonChecked(IDC_DESIGN_MENU) == BST_CHECKED;
    if (!menu)
        CheckDlgButton(IDC_DESIGN_TOOLBAR, BST_UNCHECKED);
    const BOOL enable = menu && IsDlgButtonChecked(IDC_DESIGN_STANDARD) != BST_CHECKED;
    for (int id : {IDC_DESIGN_TOOLBAR, IDC_DESIGN_COLOR}) {
        if (CWnd* w = GetDlgItem(id))
            w->EnableWindow(enable);
    }
}

void KDeskDesignDlg::OnSelendokDeskDesignStyle()
{
    if (Combo(*this, IDC_DESIGN_STYLE)->GetCurSel() == 4) {
        CColorDialog colours(m_UserColor, CC_FULLOPEN, this);
        COLORREF custom[16];
        std::copy(colours.m_cc.lpCustColors, colours.m_cc.lpCustColors + 16, custom);
        colours.m_cc.lpCustColors = custom;
        for (int i = 0; i < 16; ++i) {
            CString key;
            key.Format("%s%d", "User", i);
            const COLORREF stored = static_cast<COLORREF>(Read(key, static_cast<int>(kAbsent)));
            if (stored != kAbsent)
                custom[i] = stored;
        }
        if (colours.DoModal() == IDOK) {
            m_UserColor = colours.GetColor();
            for (int i = 0; i < 16; ++i) {
                if (custom[i] == kAbsent)
                    continue; // white cannot be kept: it means absent
                CString key;
                key.Format("%s%d", "User", i);
                Write(key, static_cast<int>(custom[i]));
            }
        }
    }
    ShowAll();
}

void KDeskDesignDlg::OnPaint()
{
    CPaintDC dc(this);
    PaintSwatch(GetDlgItem(IDC_DESIGN_MENU_SWATCH), GetMenuBackground(Combo(*this, IDC_DESIGN_COLOR)->GetCurSel()));
    PaintSwatch(GetDlgItem(IDC_DESIGN_STYLE_SWATCH), StyleColor(Combo(*this, IDC_DESIGN_STYLE)->GetCurSel()));
}

void KDeskDesignDlg::OnOK()
{
    auto checked = [this](int id) { return IsDlgButtonChecked(id) == BST_CHECKED ? 1 : 0; };
    // A combo left empty (its list missing) writes the first entry.
    const int color = std::max(Combo(*this, IDC_DESIGN_COLOR)->GetCurSel(), 0);
    const int style = std::max(Combo(*this, IDC_DESIGN_STYLE)->GetCurSel(), 0);
    Write("Standard", checked(IDC_DESIGN_STANDARD));
    Write("Toolbar", checked(IDC_DESIGN_TOOLBAR));
    Write("Menu", checked(IDC_DESIGN_MENU));
    Write("Button", checked(IDC_DESIGN_BUTTON));
    Write("Color", color);
    Write("Style", style > 3 ? static_cast<int>(m_UserColor) : style);
    Write("Mode", GetShade());
    Write("Mode3D", checked(IDC_DESIGN_3D));
    CDialog::OnOK();
    DropPreview();
}

void KDeskDesignDlg::OnCancel()
{
    CDialog::OnCancel();
    DropPreview();
}

void KDeskDesignDlg::DropPreview()
{
    delete m_pActive;
    delete m_pInactive;
    m_pActive = nullptr;
    m_pInactive = nullptr;
}
