#include "platform/windows/ccombobox.h"

#include "platform/framework/mbstring.h"

#include <cstring>

namespace vx {
namespace {

ComboBoxViewFactory g_viewFactory = nullptr;

} // namespace

ComboBoxView::~ComboBoxView() = default;

void SetComboBoxViewFactory(ComboBoxViewFactory factory)
{
    g_viewFactory = factory;
}

} // namespace vx

namespace {

constexpr LRESULT kError = -1;

} // namespace

CComboBox::CComboBox()
{
    if (vx::g_viewFactory)
        m_view = vx::g_viewFactory(*this);
}

CComboBox::~CComboBox() = default;

BOOL CComboBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id)
{
    return CreateEx("", "ComboBox", style, rect, parent, id);
}

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

int CComboBox::GetLBTextLen(int index) const
{
    return static_cast<int>(Send(CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0));
}

int CComboBox::FindString(int startAfter, LPCSTR text) const
{
    return static_cast<int>(Send(CB_FINDSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}

int CComboBox::FindStringExact(int startAfter, LPCSTR text) const
{
    return static_cast<int>(Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}

int CComboBox::SelectString(int startAfter, LPCSTR text)
{
    return static_cast<int>(Send(CB_SELECTSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}

void CComboBox::ShowDropDown(BOOL show)
{
    Send(CB_SHOWDROPDOWN, static_cast<WPARAM>(show), 0);
}

BOOL CComboBox::GetDroppedState() const
{
    return static_cast<BOOL>(Send(CB_GETDROPPEDSTATE, 0, 0));
}

BOOL CComboBox::LimitText(int max)
{
    return static_cast<BOOL>(Send(CB_LIMITTEXT, static_cast<WPARAM>(max), 0));
}

DWORD CComboBox::GetEditSel() const
{
    return static_cast<DWORD>(Send(CB_GETEDITSEL, 0, 0));
}

BOOL CComboBox::SetEditSel(int start, int end)
{
    return static_cast<BOOL>(
        Send(CB_SETEDITSEL, 0, MAKELPARAM(static_cast<WORD>(static_cast<short>(start)), static_cast<WORD>(static_cast<short>(end)))));
}

int CComboBox::GetItemHeight(int index) const
{
    return static_cast<int>(Send(CB_GETITEMHEIGHT, static_cast<WPARAM>(index), 0));
}

int CComboBox::SetItemHeight(int index, UINT height)
{
    return static_cast<int>(Send(CB_SETITEMHEIGHT, static_cast<WPARAM>(index), static_cast<LPARAM>(height)));
}

BOOL CComboBox::PreTranslateMessage(MSG* msg)
{
    return m_view && m_view->PreTranslate(*this, msg);
}

int CComboBox::Find(int startAfter, const char* text, bool exact) const
{
    const int count = static_cast<int>(m_items.size());
    if (!text || count == 0)
        return static_cast<int>(kError);
    const std::size_t n = std::strlen(text);
    const int start = (startAfter < -1 || startAfter >= count) ? -1 : startAfter;
    for (int k = 1; k <= count; ++k) {
        const int i = (start + k) % count;
        const std::string& t = m_items[static_cast<std::size_t>(i)].text;
        if (exact ? _stricmp(t.c_str(), text) == 0 : (n <= t.size() && _strnicmp(t.c_str(), text, n) == 0))
            return i;
    }
    return static_cast<int>(kError);
}

LRESULT CComboBox::Model(UINT message, WPARAM wParam, LPARAM lParam, bool& handled)
{
    const int count = static_cast<int>(m_items.size());
    const int index = static_cast<int>(wParam);
    const bool valid = index >= 0 && index < count;
    const char* text = reinterpret_cast<const char*>(lParam);
    handled = true;
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
    case CB_ADDSTRING: {
        int at = count;
        if (GetStyle() & CBS_SORT) {
            at = 0;
            while (at < count && _stricmp(m_items[static_cast<std::size_t>(at)].text.c_str(), text ? text : "") <= 0)
                ++at;
        }
        m_items.insert(m_items.begin() + at, Item{text ? text : "", 0});
        if (m_selection >= at)
            ++m_selection;
        return at;
    }
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
    case CB_FINDSTRING:
        return Find(index, text, false);
    case CB_FINDSTRINGEXACT:
        return Find(index, text, true);
    case CB_SELECTSTRING: {
        const int found = Find(index, text, false);
        if (found != kError)
            m_selection = found;
        return found;
    }
    default:
        handled = false;
        return 0;
    }
}

LRESULT CComboBox::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    bool handled = false;
    const LRESULT result = Model(message, wParam, lParam, handled);
    if (!handled)
        return CWnd::WindowProc(message, wParam, lParam);
    if (m_view)
        m_view->ModelChanged(*this, message);
    return result;
}

LRESULT CComboBox::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (m_view)
        return m_view->DefProc(*this, message, wParam, lParam);
    return CWnd::DefWindowProc(message, wParam, lParam);
}
