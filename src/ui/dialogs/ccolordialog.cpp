#include "ui/dialogs/ccolordialog.h"

#include "ui/controls/cbutton.h"
#include "ui/controls/cedit.h"
#include "ui/controls/cstatic.h"
#include "ui/gdi/cdc.h"
#include "ui/gdi/cgdiobject.h"

#include "platform/framework/codepage.h"
#include "platform/windows/sysmetrics.h"

#include <algorithm>
#include <cstdlib>

namespace {

// The platform's basic colours, by rows of eight.
constexpr COLORREF kBasic[48] = {
    RGB(255, 128, 128), RGB(255, 255, 128), RGB(128, 255, 128), RGB(0, 255, 128),
    RGB(128, 255, 255), RGB(0, 128, 255),   RGB(255, 128, 192), RGB(255, 128, 255),
    RGB(255, 0, 0),     RGB(255, 255, 0),   RGB(128, 255, 0),   RGB(0, 255, 64),
    RGB(0, 255, 255),   RGB(0, 128, 192),   RGB(128, 128, 192), RGB(255, 0, 255),
    RGB(128, 64, 64),   RGB(255, 128, 64),  RGB(0, 255, 0),     RGB(0, 128, 128),
    RGB(0, 64, 128),    RGB(128, 128, 255), RGB(128, 0, 64),    RGB(255, 0, 128),
    RGB(128, 0, 0),     RGB(255, 128, 0),   RGB(0, 128, 0),     RGB(0, 128, 64),
    RGB(0, 0, 255),     RGB(0, 0, 160),     RGB(128, 0, 128),   RGB(128, 0, 255),
    RGB(64, 0, 0),      RGB(128, 64, 0),    RGB(0, 64, 0),      RGB(0, 64, 64),
    RGB(0, 0, 128),     RGB(0, 0, 64),      RGB(64, 0, 64),     RGB(64, 0, 128),
    RGB(0, 0, 0),       RGB(128, 128, 0),   RGB(128, 128, 64),  RGB(128, 128, 128),
    RGB(64, 128, 128),  RGB(192, 192, 192), RGB(64, 64, 64),    RGB(255, 255, 255),
};

constexpr int kSwatchX = 7;
constexpr int kSwatchW = 14;
constexpr int kSwatchH = 11;

vx::DialogTemplate ColourTemplate()
{
    auto text = [](const char* utf8) { return CString(vx::FromUtf8(utf8).c_str()); };
    vx::DialogTemplate t(text("Kolor"), 0, 0, 298, 196);
    t.LText(text("&Kolory podstawowe:"), IDC_STATIC, kSwatchX, 5, 120, 8);
    for (int i = 0; i < 48; ++i) {
        const DWORD first = i == 0 ? (WS_GROUP | WS_TABSTOP) : 0;
        t.Control("", CColorDialog::IDC_BASIC_FIRST + i, "Button", WS_VISIBLE | BS_OWNERDRAW | first,
                  kSwatchX + (i % 8) * (kSwatchW + 4), 15 + (i / 8) * (kSwatchH + 3), kSwatchW, kSwatchH);
    }
    t.LText(text("Kolory &niestandardowe:"), IDC_STATIC, kSwatchX, 104, 120, 8);
    for (int i = 0; i < 16; ++i) {
        const DWORD first = i == 0 ? (WS_GROUP | WS_TABSTOP) : 0;
        t.Control("", CColorDialog::IDC_CUSTOM_FIRST + i, "Button", WS_VISIBLE | BS_OWNERDRAW | first,
                  kSwatchX + (i % 8) * (kSwatchW + 4), 114 + (i / 8) * (kSwatchH + 3), kSwatchW, kSwatchH);
    }
    t.Control("", CColorDialog::IDC_CURRENT, "Static", WS_VISIBLE | SS_OWNERDRAW, 160, 15, 130, 60, WS_EX_CLIENTEDGE);
    t.LText(text("&Czerwony:"), IDC_STATIC, 160, 86, 50, 8)
        .EditText(CColorDialog::IDC_RED, 214, 84, 30, 12, ES_NUMBER)
        .LText(text("&Zielony:"), IDC_STATIC, 160, 102, 50, 8)
        .EditText(CColorDialog::IDC_GREEN, 214, 100, 30, 12, ES_NUMBER)
        .LText(text("Nie&bieski:"), IDC_STATIC, 160, 118, 50, 8)
        .EditText(CColorDialog::IDC_BLUE, 214, 116, 30, 12, ES_NUMBER)
        .PushButton(text("&Dodaj do kolorów niestandardowych"), CColorDialog::IDC_ADD_CUSTOM, 160, 144, 130, 14)
        .DefPushButton("OK", IDOK, 7, 174, 60, 14)
        .PushButton(text("Anuluj"), IDCANCEL, 73, 174, 60, 14);
    return t;
}

bool IsBasic(UINT id)
{
    return id >= CColorDialog::IDC_BASIC_FIRST && id < CColorDialog::IDC_BASIC_FIRST + 48;
}

bool IsCustom(UINT id)
{
    return id >= CColorDialog::IDC_CUSTOM_FIRST && id < CColorDialog::IDC_CUSTOM_FIRST + 16;
}

} // namespace

CColorDialog::CColorDialog(COLORREF initial, DWORD flags, CWnd* parent) : CDialog()
{
    m_pParentWnd = parent;
    m_cc = CHOOSECOLOR{};
    m_cc.lStructSize = sizeof m_cc;
    m_cc.rgbResult = initial;
    m_cc.lpCustColors = GetSavedCustomColors();
    m_cc.Flags = flags | CC_RGBINIT | CC_FULLOPEN;
    MapCommandRange(BN_CLICKED, IDC_BASIC_FIRST, IDC_BASIC_FIRST + 47, [this](UINT id) { Choose(id); });
    MapCommandRange(BN_CLICKED, IDC_CUSTOM_FIRST, IDC_CUSTOM_FIRST + 15, [this](UINT id) { Choose(id); });
    MapCommandRange(EN_CHANGE, IDC_RED, IDC_BLUE, [this](UINT) { PartChanged(); });
    MapCommand(BN_CLICKED, IDC_ADD_CUSTOM, [this] { AddCustom(); });
}

CColorDialog::~CColorDialog() = default;

COLORREF* CColorDialog::GetSavedCustomColors()
{
    static COLORREF saved[16] = {RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
                                 RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
                                 RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
                                 RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255)};
    return saved;
}

INT_PTR CColorDialog::DoModal()
{
    InitModalIndirect(ColourTemplate(), m_pParentWnd);
    return CDialog::DoModal();
}

COLORREF CColorDialog::GetColor() const
{
    return m_cc.rgbResult;
}

void CColorDialog::SetCurrentColor(COLORREF color)
{
    m_current = color & 0xFFFFFF;
    if (m_hWnd) {
        ShowParts();
        if (CWnd* current = GetDlgItem(IDC_CURRENT))
            current->Invalidate();
    }
}

BOOL CColorDialog::OnInitDialog()
{
    CDialog::OnInitDialog();
    m_current = (m_cc.Flags & CC_RGBINIT) ? (m_cc.rgbResult & 0xFFFFFF) : 0;
    for (int i = 0; i < 16; ++i)
        m_custom[i] = m_cc.lpCustColors ? m_cc.lpCustColors[i] : RGB(255, 255, 255);
    m_customSlot = -1;
    m_nextSlot = 0;
    for (UINT id : {IDC_RED, IDC_GREEN, IDC_BLUE})
        static_cast<CEdit*>(GetDlgItem(static_cast<int>(id)))->LimitText(3);
    ShowParts();
    return TRUE;
}

void CColorDialog::OnOK()
{
    m_cc.rgbResult = m_current;
    if (m_cc.lpCustColors)
        std::copy(m_custom, m_custom + 16, m_cc.lpCustColors);
    CDialog::OnOK();
}

COLORREF CColorDialog::SwatchColor(UINT id) const
{
    if (IsBasic(id))
        return kBasic[id - IDC_BASIC_FIRST];
    if (IsCustom(id))
        return m_custom[id - IDC_CUSTOM_FIRST];
    return m_current;
}

void CColorDialog::Choose(UINT id)
{
    if (IsCustom(id))
        m_customSlot = static_cast<int>(id - IDC_CUSTOM_FIRST);
    SetCurrentColor(SwatchColor(id));
    // The frame of the chosen swatch moves.
    for (int i = 0; i < 16; ++i)
        GetDlgItem(IDC_CUSTOM_FIRST + i)->Invalidate(FALSE);
}

void CColorDialog::ShowParts()
{
    m_updating = true;
    SetDlgItemInt(IDC_RED, GetRValue(m_current), FALSE);
    SetDlgItemInt(IDC_GREEN, GetGValue(m_current), FALSE);
    SetDlgItemInt(IDC_BLUE, GetBValue(m_current), FALSE);
    m_updating = false;
}

void CColorDialog::PartChanged()
{
    if (m_updating || !m_hWnd)
        return;
    auto part = [this](int id) {
        BOOL ok = FALSE;
        const UINT value = GetDlgItemInt(id, &ok, FALSE);
        return ok ? static_cast<int>(std::min<UINT>(value, 255)) : 0;
    };
    m_current = RGB(part(IDC_RED), part(IDC_GREEN), part(IDC_BLUE));
    GetDlgItem(IDC_CURRENT)->Invalidate();
}

void CColorDialog::AddCustom()
{
    // The chosen custom slot, else the next one in turn.
    int slot = m_customSlot;
    if (slot < 0) {
        slot = m_nextSlot;
        m_nextSlot = (m_nextSlot + 1) % 16;
    }
    m_custom[slot] = m_current;
    GetDlgItem(IDC_CUSTOM_FIRST + slot)->Invalidate(FALSE);
}

void CColorDialog::DrawItem(LPDRAWITEMSTRUCT item)
{
    CDC* dc = CDC::FromHandle(item->hDC);
    CRect r(item->rcItem);
    const UINT id = item->CtlID;
    dc->FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
    if (id != IDC_CURRENT) {
        const bool chosen = IsCustom(id) && static_cast<int>(id - IDC_CUSTOM_FIRST) == m_customSlot;
        if (chosen || (item->itemState & ODS_FOCUS)) {
            CBrush black(RGB(0, 0, 0));
            dc->FrameRect(&r, &black);
        }
        r.DeflateRect(1, 1);
        dc->DrawEdge(&r, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    }
    dc->FillSolidRect(&r, SwatchColor(id));
    if (id != IDC_CURRENT && (item->itemState & ODS_FOCUS)) {
        CRect focus(item->rcItem);
        dc->DrawFocusRect(&focus);
    }
}

LRESULT CColorDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DRAWITEM) {
        auto* item = reinterpret_cast<LPDRAWITEMSTRUCT>(lParam);
        if (item && (IsBasic(item->CtlID) || IsCustom(item->CtlID) || item->CtlID == IDC_CURRENT)) {
            DrawItem(item);
            return TRUE;
        }
    }
    return CDialog::WindowProc(message, wParam, lParam);
}
