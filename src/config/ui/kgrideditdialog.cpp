#include "config/ui/kgrideditdialog.h"

#include "platform/windows/ccombobox.h"
#include "platform/windows/messagepump.h"
#include "ui/controls/cedit.h"
#include "ui/grids/cmsflexgrid.h"
#include "ui/grids/kvxgridcombo.h"

KGridEditDialog::KGridEditDialog(UINT templateId, CWnd* parent) : KSplitResizeDialog(templateId, parent) {}

KGridEditDialog::~KGridEditDialog() = default;

void KGridEditDialog::SetGridControls(CMSFlexGrid* grid, CEdit* edit, KVxGridCombo* combo)
{
    m_pGrid = grid;
    m_pEdit = edit;
    m_pCombo = combo;
    if (m_pEdit && m_pEdit->m_hWnd)
        m_pEdit->ShowWindow(SW_HIDE);
    if (m_pCombo && m_pCombo->m_hWnd)
        m_pCombo->Finish();
}

GridEditModeType KGridEditDialog::GridEingabeEinleiten(int, int, char, int&, CStringArray*)
{
    return GridEditNone;
}

int KGridEditDialog::GridEingabeAbgeschlossen(int, int, const char*, const char*, int)
{
    return 0;
}

void KGridEditDialog::GridEingabeAbgebrochen(int, int) {}

CRect KGridEditDialog::CellInDialog(int row, int column) const
{
    CRect cell;
    if (!m_pGrid || !m_pGrid->GetCellRect(row, column, &cell))
        return CRect();
    m_pGrid->ClientToScreen(&cell);
    ScreenToClient(&cell);
    return cell;
}

bool KGridEditDialog::BeginGridEdit(int row, int column, char key)
{
    if (!m_pGrid || !m_pGrid->m_hWnd)
        return false;
    if (IsGridEditing())
        EndGridEdit(true);
    if (row < m_pGrid->GetFixedRows() || row >= m_pGrid->GetRows() || column < m_pGrid->GetFixedCols() ||
        column >= m_pGrid->GetCols())
        return false;
    int selection = -1;
    CStringArray list;
    const GridEditModeType mode = GridEingabeEinleiten(row, column, key, selection, &list);
    if (mode == GridEditNone)
        return false;
    // The cell shows whole before an editor covers it.
    m_pGrid->SetRow(row);
    m_pGrid->SetCol(column);
    const CRect cell = CellInDialog(row, column);
    if (cell.IsRectEmpty())
        return false;
    if (mode == GridEditCombo && m_pCombo && m_pCombo->m_hWnd) {
        m_nEditMode = GridEditCombo;
        m_nEditRow = row;
        m_nEditColumn = column;
        m_pCombo->Start(cell, list, selection);
        return true;
    }
    if (!m_pEdit || !m_pEdit->m_hWnd)
        return false;
    m_nEditMode = GridEditText;
    m_nEditRow = row;
    m_nEditColumn = column;
    m_nHighLight = m_pGrid->GetHighLight();
    m_pGrid->SetHighLight(flexHighlightNever);
    const bool typed = static_cast<unsigned char>(key) >= ' ';
    m_pEdit->SetWindowText(typed ? CString(key, 1) : m_pGrid->GetTextMatrix(row, column));
    m_pEdit->MoveWindow(&cell, FALSE);
    m_pEdit->SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    m_pEdit->SetFocus();
    // A typed character goes on; otherwise the whole text is selected, so
    // that typing replaces it.
    if (typed)
        m_pEdit->SetSel(1, 1);
    else
        m_pEdit->SetSel(0, -1);
    return true;
}

void KGridEditDialog::EndGridEdit(bool keep)
{
    if (!IsGridEditing() || m_bEnding)
        return;
    m_bEnding = true;
    const int mode = m_nEditMode;
    const int row = m_nEditRow;
    const int column = m_nEditColumn;
    CString text;
    int selection = -1;
    if (mode == GridEditCombo) {
        selection = m_pCombo->GetCurSel();
        text = m_pCombo->GetChoice();
        // Nothing chosen is no choice.
        if (selection < 0)
            keep = false;
    } else {
        m_pEdit->GetWindowText(text);
    }
    m_nEditMode = GridEditNone;
    m_nEditRow = -1;
    m_nEditColumn = -1;
    // The grid takes the focus back before the editor hides, so that the
    // focus never falls to the dialog.
    m_pGrid->SetFocus();
    if (mode == GridEditCombo)
        m_pCombo->Finish();
    else
        m_pEdit->ShowWindow(SW_HIDE);
    if (mode == GridEditText)
        m_pGrid->SetHighLight(m_nHighLight);
    if (keep) {
        const CString old = m_pGrid->GetTextMatrix(row, column);
        if (GridEingabeAbgeschlossen(row, column, text, old, selection) == 0)
            m_pGrid->SetTextMatrix(row, column, text);
    } else {
        GridEingabeAbgebrochen(row, column);
    }
    m_bEnding = false;
}

BOOL KGridEditDialog::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    const auto* n = reinterpret_cast<const NMFLEXGRID*>(lParam);
    if (!m_pGrid || !n || n->hdr.hwndFrom != m_pGrid->m_hWnd)
        return KSplitResizeDialog::OnNotify(wParam, lParam, result);
    switch (n->hdr.code) {
    case FGN_DBLCLICK:
        if (n->row >= 0 && n->col >= 0)
            BeginGridEdit(n->row, n->col, 0);
        return TRUE;
    case FGN_CLICK:
    case FGN_SCROLL:
        // The editor belongs to its cell: a press elsewhere or a scroll ends it.
        EndGridEdit(true);
        return TRUE;
    case FGN_KEYDOWN:
        if (n->key == VK_F2) {
            *result = BeginGridEdit(n->row, n->col, 0) ? 1 : 0;
            return TRUE;
        }
        break;
    case FGN_KEYPRESS:
        if (n->key >= ' ' && n->key != 0x7F) {
            *result = BeginGridEdit(n->row, n->col, static_cast<char>(n->key)) ? 1 : 0;
            return TRUE;
        }
        break;
    default:
        break;
    }
    return KSplitResizeDialog::OnNotify(wParam, lParam, result);
}

BOOL KGridEditDialog::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const HWND from = reinterpret_cast<HWND>(lParam);
    const UINT code = HIWORD(wParam);
    if (from && m_pCombo && from == m_pCombo->m_hWnd && m_nEditMode == GridEditCombo) {
        if (code == CBN_SELENDOK) {
            EndGridEdit(true);
            return TRUE;
        }
        if (code == CBN_SELENDCANCEL) {
            EndGridEdit(false);
            return TRUE;
        }
    }
    if (from && m_pEdit && from == m_pEdit->m_hWnd && m_nEditMode == GridEditText && code == EN_KILLFOCUS) {
        // Clicking elsewhere keeps what was typed, as a grid editor does.
        EndGridEdit(true);
        return TRUE;
    }
    return KSplitResizeDialog::OnCommand(wParam, lParam);
}

BOOL KGridEditDialog::PreTranslateMessage(MSG* msg)
{
    // The editor's own keys come before the dialog's: Enter is not OK and
    // Esc is not Cancel while a cell is being edited.
    if (msg && msg->message == WM_KEYDOWN && m_nEditMode == GridEditText && m_pEdit &&
        msg->hwnd == m_pEdit->m_hWnd) {
        switch (msg->wParam) {
        case VK_RETURN:
        case VK_TAB:
            EndGridEdit(true);
            return TRUE;
        case VK_ESCAPE:
            EndGridEdit(false);
            return TRUE;
        default:
            break;
        }
    }
    // Enter and Esc in the open combo choose or drop the choice there.
    if (msg && msg->message == WM_KEYDOWN && m_nEditMode == GridEditCombo &&
        (msg->wParam == VK_RETURN || msg->wParam == VK_ESCAPE))
        return FALSE;
    return KSplitResizeDialog::PreTranslateMessage(msg);
}

void KGridEditDialog::OnOK()
{
    EndGridEdit(true);
    KSplitResizeDialog::OnOK();
}

void KGridEditDialog::OnCancel()
{
    EndGridEdit(false);
    KSplitResizeDialog::OnCancel();
}
