#include "config/ui/kiniexpertdlg.h"

#include "base/vxmessagebox.h"
#include "config/kprofile.h"
#include "platform/framework/codepage.h"
#include "platform/windows/ccombobox.h"
#include "ui/dialogs/dialogtemplate.h"
#include "ui/gdi/cdc.h"

namespace {

// Where the dialog keeps its placement.
constexpr const char* kStateSection = "DlgState IniExpert";
constexpr int kStateProfile = 0;

vx::DialogTemplate ExpertTemplate()
{
    vx::DialogTemplate t(vx::FromUtf8("Ustawienia dla ekspertów").c_str(), 0, 0, 320, 220,
                         vx::DialogTemplate::kDefaultStyle | WS_THICKFRAME);
    t.Control("", KIniExpertDlg::IDC_INIEXPERT_GRID, "MSFlexGridWndClass",
              WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_BORDER, 7, 7, 306, 180)
        .EditText(KIniExpertDlg::IDC_INIEXPERT_EDIT, 7, 190, 60, 12, ES_AUTOHSCROLL)
        .ComboBox(KIniExpertDlg::IDC_INIEXPERT_COMBO, 70, 190, 60, 90, CBS_DROPDOWNLIST | WS_VSCROLL)
        .DefPushButton("OK", IDOK, 209, 199, 50, 14)
        .PushButton("Anuluj", IDCANCEL, 263, 199, 50, 14);
    return t;
}

// Built when it is asked for, so that its title is in the code page of then.
const bool g_registered = vx::RegisterDialogTemplate(KIniExpertDlg::IDD, [] { return ExpertTemplate(); });

} // namespace

KIniExpertDlg::KIniExpertDlg(CWnd* parent) : KGridEditDialog(IDD, parent)
{
    (void)g_registered;
    m_nReadMessage = vx::ReadIniControlFile(vx::IniControlFilePath(), m_entries);
    if (m_nReadMessage)
        VxAfxMessageBox(m_nReadMessage, MB_OK | MB_ICONEXCLAMATION, 0);
    DoDataExchange();
}

KIniExpertDlg::~KIniExpertDlg()
{
    vx::FreeIniExpertEntries(m_entries);
}

void KIniExpertDlg::DoDataExchange()
{
    BindDlgItem(IDC_INIEXPERT_GRID, m_grid);
    BindDlgItem(IDC_INIEXPERT_EDIT, m_edit);
    BindDlgItem(IDC_INIEXPERT_COMBO, m_combo);
    BindDlgItem(IDOK, m_btnOK);
    BindDlgItem(IDCANCEL, m_btnCancel);
}

const KIniExpertEntry* KIniExpertDlg::GetEntry(int index) const
{
    return index >= 0 && index < m_entries.GetSize() ? m_entries[index] : nullptr;
}

KIniExpertEntry* KIniExpertDlg::EntryOfRow(int row) const
{
    return row >= 1 && row <= m_entries.GetSize() ? m_entries[row - 1] : nullptr;
}

int KIniExpertDlg::GetType(CString& kind)
{
    return vx::IniExpertScope(kind);
}

BOOL KIniExpertDlg::OnInitDialog()
{
    KGridEditDialog::OnInitDialog();
    SetGridControls(&m_grid, &m_edit, &m_combo);

    const int count = static_cast<int>(m_entries.GetSize());
    m_grid.SetRedraw(FALSE);
    m_grid.SetCols(2);
    // A heading, the entries, and an empty row at the end.
    m_grid.SetRows(count + 2);
    m_grid.SetFixedRows(1);
    m_grid.SetFixedCols(0);
    m_grid.SetColAlignment(0, flexAlignLeftCenter);
    m_grid.SetColAlignment(1, flexAlignLeftCenter);

    // Three quarters for the captions, one for the values, in twips, of the
    // width the cells have beside a scroll bar the rows may need.
    // Divided in pixels, so that the two columns fill the width exactly and
    // no horizontal scroll bar comes of a rounding.
    int perInch = 96;
    {
        CClientDC dc(&m_grid);
        perInch = dc.GetDeviceCaps(LOGPIXELSX);
    }
    if (perInch <= 0)
        perInch = 96;
    const long pixels = (m_grid.GetClientWidth() * perInch + 720) / 1440;
    const long captions = pixels * 3 / 4;
    m_grid.SetColWidth(0, captions * 1440 / perInch);
    m_grid.SetColWidth(1, (pixels - captions) * 1440 / perInch);

    CString heading;
    heading.LoadString(6732);
    const int feed = heading.Find('\n');
    m_grid.SetTextMatrix(0, 0, feed >= 0 ? heading.Left(feed) : heading);
    CString second = feed >= 0 ? heading.Mid(feed + 1) : CString();
    const int secondFeed = second.Find('\n');
    if (secondFeed >= 0)
        second = second.Left(secondFeed);
    m_grid.SetTextMatrix(0, 1, second);

    for (int i = 0; i < count; ++i) {
        KIniExpertEntry& e = *m_entries[i];
        if (GetType(e.m_kind) == 0) {
            m_grid.SetTextMatrix(i + 1, 0, e.m_kind);
            continue;
        }
        m_grid.SetTextMatrix(i + 1, 0, e.m_caption);
        m_grid.SetTextMatrix(i + 1, 1, vx::IniExpertDisplayText(e));
    }
    m_grid.SetRedraw(TRUE);
    // The current cell starts on the first value the user can change.
    for (int i = 0; i < count; ++i) {
        if (GetType(m_entries[i]->m_kind) != 0) {
            m_grid.SetRow(i + 1);
            m_grid.SetCol(1);
            break;
        }
    }

    AddSzControl(m_grid, mdResize, mdResize);
    AddSzControl(m_btnOK, mdRepos, mdRepos);
    AddSzControl(m_btnCancel, mdRepos, mdRepos);
    RestoreWindowPosition(kStateSection, false, kStateProfile);
    m_grid.SetFocus();
    return FALSE;
}

void KIniExpertDlg::OnSize(UINT type, int cx, int cy)
{
    KGridEditDialog::OnSize(type, cx, cy);
}

GridEditModeType KIniExpertDlg::GridEingabeEinleiten(int row, int column, char, int& selection, CStringArray* list)
{
    KIniExpertEntry* e = EntryOfRow(row);
    if (column != 1 || !e || GetType(e->m_kind) == 0)
        return GridEditNone;
    if (e->m_scaleState != -1 && e->m_choiceKeys.GetSize() > 0) {
        if (list)
            list->Copy(e->m_choiceCaptions);
        // The choice that shows now is selected: the value's own, else the
        // scaled one the value is shown in.
        selection = -1;
        for (int i = 0; i < e->m_choiceKeys.GetSize() && selection < 0; ++i) {
            if (e->m_choiceKeys[i] == e->m_value)
                selection = i;
        }
        for (int i = 0; i < e->m_choiceKeys.GetSize() && selection < 0; ++i) {
            bool scaled = false;
            if (vx::ScaledChoiceFactor(e->m_choiceKeys[i], &scaled) != 0 && scaled)
                selection = i;
        }
        return GridEditCombo;
    }
    return GridEditText;
}

int KIniExpertDlg::GridEingabeAbgeschlossen(int row, int column, const char* text, const char*, int)
{
    KIniExpertEntry* e = EntryOfRow(row);
    if (column != 1 || !e)
        return 0;
    const CString typed(text ? text : "");
    for (int i = 0; i < e->m_choiceCaptions.GetSize(); ++i) {
        if (typed != e->m_choiceCaptions[i])
            continue;
        const CString before = e->m_value;
        e->m_value = e->m_choiceKeys[i];
        if ((e->m_type == "0" || e->m_type == "2") && e->m_value.Left(1) == "x") {
            // A scaled choice: the number is typed at once, in its unit.
            m_sValueBeforeScale = before;
            KIniExpertEntry shown = *e;
            shown.m_value = before;
            m_grid.SetTextMatrix(row, column, vx::IniExpertScaledText(shown, i));
            e->m_scaleState = i + 1;
            PostMessage(WM_COMBOEDIT, static_cast<WPARAM>(row), 1);
            m_nHighLightBeforeScale = m_grid.GetHighLight();
            m_grid.SetHighLight(flexHighlightNever);
            return 1;
        }
        e->m_scaleState = 0;
        return 0;
    }
    if (e->m_scaleState > 0)
        e->m_value = vx::IniExpertStoredValue(*e, e->m_scaleState - 1, typed);
    else
        e->m_value = typed;
    if (e->m_scaleState > 0)
        m_grid.SetHighLight(m_nHighLightBeforeScale);
    e->m_scaleState = 0;
    return 0;
}

void KIniExpertDlg::GridEingabeAbgebrochen(int row, int column)
{
    KIniExpertEntry* e = EntryOfRow(row);
    if (column != 1 || !e || e->m_scaleState <= 0)
        return;
    // The number of a scaled choice was dropped: the value before the choice
    // comes back, not the choice's key.
    e->m_value = m_sValueBeforeScale;
    e->m_scaleState = 0;
    m_grid.SetTextMatrix(row, column, vx::IniExpertDisplayText(*e));
    m_grid.SetHighLight(m_nHighLightBeforeScale);
}

long KIniExpertDlg::OnComboEdit(unsigned int row, unsigned int)
{
    KIniExpertEntry* e = EntryOfRow(static_cast<int>(row));
    if (!e)
        return 0;
    const int state = e->m_scaleState;
    e->m_scaleState = -1;
    BeginGridEdit(static_cast<int>(row), 1, 0);
    e->m_scaleState = state;
    return 0;
}

LRESULT KIniExpertDlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMBOEDIT)
        return OnComboEdit(static_cast<unsigned int>(wParam), static_cast<unsigned int>(lParam));
    return KGridEditDialog::WindowProc(message, wParam, lParam);
}

void KIniExpertDlg::OnOK()
{
    // A running edit counts as finished.
    EndGridEdit(true);
    StoreWindowPosition(kStateSection, kStateProfile);
    for (int i = 0; i < m_entries.GetSize(); ++i) {
        const KIniExpertEntry& e = *m_entries[i];
        const int scope = GetType(const_cast<CString&>(e.m_kind));
        if (scope != 0)
            KProfile::WriteProfileStringA(e.m_section, e.m_key, e.m_value, scope);
    }
    KGridEditDialog::OnOK();
}
