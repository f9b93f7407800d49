#include "lists/klistctrl.h"

#include "base/stringlist.h"
#include "config/kprofile.h"

#include <algorithm>
#include <vector>

namespace {

const char* const kSection = "DialogState";
constexpr int kProfile = 0;

CString Key(int id, const char* what)
{
    CString key;
    key.Format("%d%s", id, what);
    return key;
}

std::vector<int> ReadInts(const CString& text)
{
    std::vector<int> out;
    CString rest = text;
    int value = 0;
    while (GetIntFromStringList(rest, value))
        out.push_back(value);
    return out;
}

} // namespace

KListCtrl::KListCtrl() = default;
KListCtrl::~KListCtrl() = default;

BOOL KListCtrl::SpalteSchieben(int from, int to)
{
    CHeaderCtrl* header = GetHeaderCtrl();
    const int count = header ? header->GetItemCount() : 0;
    if (from < 0 || from >= count || to < 0 || to >= count)
        return FALSE;
    if (from == to)
        return TRUE;
    char title[260] = {};
    LVCOLUMN column{};
    column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_IMAGE;
    column.pszText = title;
    column.cchTextMax = sizeof title;
    GetColumn(from, &column);
    const int rows = GetItemCount();
    std::vector<CString> texts(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i)
        texts[static_cast<std::size_t>(i)] = GetItemText(i, from);
    SetRedraw(FALSE);
    DeleteColumn(from);
    // A first column cannot be right aligned; the moved one keeps its format.
    const int at = InsertColumn(to, &column);
    for (int i = 0; i < rows && at >= 0; ++i)
        SetItemText(i, at, texts[static_cast<std::size_t>(i)]);
    SetRedraw(TRUE);
    Invalidate();
    return at >= 0;
}

void KListCtrl::InitSpaltenverwaltung(int id, CStringArray* names)
{
    if (id >= 0)
        m_nSpaltenID = id;
    CHeaderCtrl* header = GetHeaderCtrl();
    if (names && header && header->GetItemCount() == 0) {
        for (int i = 0; i < names->GetSize(); ++i)
            InsertColumn(i, names->GetAt(i), LVCFMT_LEFT, -1);
    }
    if (m_nSpaltenID < 0 || !header)
        return;
    const int count = header->GetItemCount();
    const std::vector<int> widths = ReadInts(KProfile::GetProfileStringA(kSection, Key(m_nSpaltenID, "colwidth"), "", kProfile));
    if (static_cast<int>(widths.size()) == count) {
        for (int c = 0; c < count; ++c)
            SetColumnWidth(c, std::max(widths[static_cast<std::size_t>(c)], ColumnMinimum(c)));
    } else {
        for (int c = 0; c < count; ++c) {
            if (GetColumnWidth(c) < ColumnMinimum(c))
                SetColumnWidth(c, ColumnMinimum(c));
        }
    }
    std::vector<int> order = ReadInts(KProfile::GetProfileStringA(kSection, Key(m_nSpaltenID, "colorder"), "", kProfile));
    if (static_cast<int>(order.size()) == count && count > 0)
        SetColumnOrderArray(count, order.data()); // refused unless it is a true order
}

void KListCtrl::SaveSpaltenverwaltung()
{
    CHeaderCtrl* header = GetHeaderCtrl();
    if (m_nSpaltenID < 0 || !header)
        return;
    const int count = header->GetItemCount();
    CString widths;
    for (int c = 0; c < count; ++c)
        AddIntToStringList(widths, GetColumnWidth(c));
    std::vector<int> order(static_cast<std::size_t>(count));
    CString orderText;
    if (count && GetColumnOrderArray(order.data(), count)) {
        for (int o : order)
            AddIntToStringList(orderText, o);
    }
    KProfile::WriteProfileStringA(kSection, Key(m_nSpaltenID, "colwidth"), widths, kProfile);
    KProfile::WriteProfileStringA(kSection, Key(m_nSpaltenID, "colorder"), orderText, kProfile);
}

int KListCtrl::GetCurSel()
{
    return GetNextItem(-1, LVNI_SELECTED);
}

BOOL KListCtrl::SetCurSel(int row)
{
    if (row >= GetItemCount())
        return FALSE;
    for (int i = GetNextItem(-1, LVNI_SELECTED); i >= 0; i = GetNextItem(i, LVNI_SELECTED)) {
        if (i != row)
            SetItemState(i, 0, LVIS_SELECTED);
    }
    if (row < 0)
        return TRUE;
    SetItemState(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    SetSelectionMark(row);
    EnsureVisible(row, FALSE);
    return TRUE;
}

void KListCtrl::OnKeyDown(UINT key, UINT repeat, UINT flags)
{
    if (key == 'A' && GetKeyState(VK_CONTROL) < 0 && !(GetStyle() & LVS_SINGLESEL)) {
        SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
        return;
    }
    CListCtrl::OnKeyDown(key, repeat, flags);
}

void KListCtrl::OnDestroy()
{
    SaveSpaltenverwaltung();
    CListCtrl::OnDestroy();
}

int KListCtrl::ColumnMinimum(int)
{
    return 0;
}
