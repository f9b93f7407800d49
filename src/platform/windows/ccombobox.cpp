#include "platform/windows/ccombobox.h"

namespace {

constexpr LRESULT kError = -1;

} // namespace

CComboBox::CComboBox() = default;
CComboBox::~CComboBox() = default;

LRESULT CComboBox::Send(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return ::SendMessageA(m_hWnd, message, wParam, lParam);
}

int CComboBox::GetCount() const
{
    return static_cast<int>(Send(CB_GETCOUNT, 0, 0));
}

int CComboBox::GetCurSel() const
{
    return static_cast<int>(Send(CB_GETCURSEL, 0, 0));
}

int CComboBox::SetCurSel(int index)
{
    return static_cast<int>(Send(CB_SETCURSEL, static_cast<WPARAM>(index), 0));
}

DWORD_PTR CComboBox::GetItemData(int index) const
{
    return static_cast<DWORD_PTR>(Send(CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

int CComboBox::SetItemData(int index, DWORD_PTR data)
{
    return static_cast<int>(Send(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}

int CComboBox::AddString(const char* text)
{
    return static_cast<int>(Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
}

int CComboBox::InsertString(int index, const char* text)
{
    return static_cast<int>(Send(CB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}

int CComboBox::DeleteString(UINT index)
{
    return static_cast<int>(Send(CB_DELETESTRING, index, 0));
}

void CComboBox::ResetContent()
{
    Send(CB_RESETCONTENT, 0, 0);
}

void CComboBox::GetLBText(int index, CString& text) const
{
    const int length = static_cast<int>(Send(CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0));
    if (length < 0) {
        text.Empty();
        return;
    }
    Send(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.GetBuffer(length)));
    text.ReleaseBuffer();
}

LRESULT CComboBox::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    const int count = static_cast<int>(m_items.size());
    const int index = static_cast<int>(wParam);
    const bool valid = index >= 0 && index < count;
    const char* text = reinterpret_cast<const char*>(lParam);
    switch (message) {
    case CB_GETCOUNT:
        return count;
    case CB_GETCURSEL:
        return m_selection;
    case CB_SETCURSEL:
        m_selection = valid ? index : -1;
        return valid ? index : kError;
    case CB_GETITEMDATA:
        return valid ? static_cast<LRESULT>(m_items[static_cast<std::size_t>(index)].data) : kError;
    case CB_SETITEMDATA:
        if (!valid)
            return kError;
        m_items[static_cast<std::size_t>(index)].data = static_cast<DWORD_PTR>(lParam);
        return 0;
    case CB_ADDSTRING:
        m_items.push_back(Item{text ? text : "", 0});
        return count;
    case CB_INSERTSTRING: {
        const int at = (index < 0 || index > count) ? count : index;
        m_items.insert(m_items.begin() + at, Item{text ? text : "", 0});
        if (m_selection >= at)
            ++m_selection;
        return at;
    }
    case CB_DELETESTRING:
        if (!valid)
            return kError;
        m_items.erase(m_items.begin() + index);
        if (m_selection == index)
            m_selection = -1;
        else if (m_selection > index)
            --m_selection;
        return count - 1;
    case CB_RESETCONTENT:
        m_items.clear();
        m_selection = -1;
        return 0;
    case CB_GETLBTEXTLEN:
        return valid ? static_cast<LRESULT>(m_items[static_cast<std::size_t>(index)].text.size()) : kError;
    case CB_GETLBTEXT:
        if (!valid || !lParam)
            return kError;
        m_items[static_cast<std::size_t>(index)].text.copy(reinterpret_cast<char*>(lParam), std::string::npos);
        reinterpret_cast<char*>(lParam)[m_items[static_cast<std::size_t>(index)].text.size()] = 0;
        return static_cast<LRESULT>(m_items[static_cast<std::size_t>(index)].text.size());
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}
