// A dialog's controls addressed by id.
#include "ui/dialogs/cdialog.h"

#include "ui/controls/cbutton.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

void CDialog::SetDlgItemText(int id, LPCSTR text)
{
    if (CWnd* item = GetDlgItem(id))
        item->SetWindowText(text);
}

int CDialog::GetDlgItemText(int id, LPSTR text, int maxCount) const
{
    if (CWnd* item = GetDlgItem(id))
        return item->GetWindowText(text, maxCount);
    if (text && maxCount > 0)
        text[0] = 0;
    return 0;
}

int CDialog::GetDlgItemText(int id, CString& text) const
{
    text = GetDlgItemText(id);
    return text.GetLength();
}

CString CDialog::GetDlgItemText(int id) const
{
    CWnd* item = GetDlgItem(id);
    return item ? item->GetWindowTextString() : CString();
}

void CDialog::SetDlgItemInt(int id, UINT value, BOOL isSigned)
{
    char text[16];
    if (isSigned)
        std::snprintf(text, sizeof text, "%d", static_cast<int>(value));
    else
        std::snprintf(text, sizeof text, "%u", value);
    SetDlgItemText(id, text);
}

UINT CDialog::GetDlgItemInt(int id, BOOL* translated, BOOL isSigned) const
{
    // Blanks around the number are allowed; anything else makes it fail.
    const CString text = GetDlgItemText(id);
    const char* p = text.GetString();
    while (*p == ' ')
        ++p;
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(p, &end, 10);
    while (end && *end == ' ')
        ++end;
    bool ok = end && end != p && *end == 0 && errno == 0;
    if (ok && isSigned)
        ok = value >= INT32_MIN && value <= INT32_MAX;
    else if (ok)
        ok = value >= 0 && value <= UINT32_MAX;
    if (translated)
        *translated = ok;
    return ok ? static_cast<UINT>(value) : 0;
}

void CDialog::CheckDlgButton(int id, UINT check)
{
    SendDlgItemMessage(id, BM_SETCHECK, check);
}

UINT CDialog::IsDlgButtonChecked(int id) const
{
    return static_cast<UINT>(SendDlgItemMessage(id, BM_GETCHECK));
}

void CDialog::CheckRadioButton(int first, int last, int check)
{
    for (int id = first; id <= last; ++id)
        SendDlgItemMessage(id, BM_SETCHECK, id == check ? BST_CHECKED : BST_UNCHECKED);
}

int CDialog::GetCheckedRadioButton(int first, int last) const
{
    for (int id = first; id <= last; ++id) {
        if (SendDlgItemMessage(id, BM_GETCHECK) == BST_CHECKED)
            return id;
    }
    return 0;
}

LRESULT CDialog::SendDlgItemMessage(int id, UINT message, WPARAM wParam, LPARAM lParam) const
{
    CWnd* item = GetDlgItem(id);
    return item ? item->SendMessage(message, wParam, lParam) : 0;
}
