#include "base/stringlist.h"

#include "base/separators_p.h"

#include "platform/windows/ccombobox.h"
#include "platform/framework/mbstring.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

char SepChar(int sep)
{
    return static_cast<char>(sep);
}

bool IsControl(unsigned char c)
{
    return c < 0x20 || c == 0x7F;
}

bool IsBlank(unsigned char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The range [start, end) of element `n` (from 1) in GetSubString's reading,
// or false when the whole list is the answer.
bool ElementRangeForNumber(std::string_view list, int n, char sep, std::size_t& start, std::size_t& end)
{
    // A number below 1 never meets its last step: the separators run out
    // first, which gives the whole list.
    if (n < 1)
        return false;
    std::size_t passed = 0;
    start = vx::detail::SkipSeparators(list.data(), list.size(), sep, static_cast<std::size_t>(n - 1), passed);
    if (passed < static_cast<std::size_t>(n - 1))
        return false;
    end = list.find(sep, start);
    if (end == std::string_view::npos)
        end = list.size();
    return true;
}

} // namespace

void AddStringToList(CString& list, CString text, char sep)
{
    if (!list.IsEmpty())
        list += sep;
    list += text;
}

void AddIntToStringList(CString& list, int value)
{
    char buffer[12];
    std::snprintf(buffer, sizeof buffer, "%d", value);
    list += buffer;
    list += '#';
}

void AddRectToStringList(CString& list, const RECT& rect)
{
    AddIntToStringList(list, rect.left);
    AddIntToStringList(list, rect.top);
    AddIntToStringList(list, rect.right);
    AddIntToStringList(list, rect.bottom);
}

int MergeSubStrings(CString& dest, const CString& src, int sep)
{
    const CString source(src); // `src` may be `dest` itself
    const int count = GetAnzahlSubStrings(source, sep);
    int added = 0;
    for (int n = 1; n <= count; ++n) {
        const CString element = GetSubString(n, source, sep);
        if (IsSubStringIncluded(element, dest, sep) != -1)
            continue;
        if (dest.IsEmpty() || dest[dest.GetLength() - 1] != SepChar(sep))
            dest += SepChar(sep);
        dest += element;
        ++added;
    }
    return added;
}

int GetAnzahlSubStrings(const CString& list, int sep)
{
    if (list.IsEmpty())
        return 0;
    int count = 1;
    for (char c : list.View()) {
        if (c == SepChar(sep))
            ++count;
    }
    return count;
}

CString GetSubString(int n, const CString& list, int sep)
{
    if (n == 0)
        return list;
    std::size_t start = 0;
    std::size_t end = 0;
    if (!ElementRangeForNumber(list.View(), n, SepChar(sep), start, end))
        return list;
    return CString(list.View().substr(start, end - start));
}

CString GetSubString(int n, int stringId, int sep)
{
    CString list;
    list.LoadString(static_cast<UINT>(stringId));
    return GetSubString(n, list, sep);
}

CString GetSubString1(int n, const CString& list, int sep)
{
    if (n == 0)
        return CString();
    const std::string_view v = list.View();
    const char s = SepChar(sep);
    std::size_t start = 0;
    for (int i = 1; i < n; ++i) {
        const std::size_t hit = v.find(s, start);
        if (hit == std::string_view::npos)
            return CString(v.substr(start));
        // A separator at 0 leaves the start at 0, so the search finds it
        // again on every step.
        if (hit > 0)
            start = hit + 1;
    }
    const std::size_t end = v.find(s, start);
    return CString(v.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
}

int GetIndexedIntFromStringList(const CString& list, int n, int sep)
{
    int value = 0;
    if (std::sscanf(GetSubString(n, list, sep).GetString(), "%d", &value) != 1)
        return 0;
    return value;
}

float GetIndexedFloatFromStringList(const CString& list, int n, int sep)
{
    float value = 0.0f;
    if (std::sscanf(GetSubString(n, list, sep).GetString(), "%f", &value) != 1)
        return 0.0f;
    return value;
}

const char* GetNextSubstring(const char* p, CString& out, int sep)
{
    out.Empty();
    if (!p || !*p)
        return nullptr;
    const char* q = p;
    while (*q && *q != SepChar(sep))
        ++q;
    out = CString(std::string_view(p, static_cast<std::size_t>(q - p)));
    return *q ? q + 1 : q;
}

char* GetNextSubstring(char* p, CString& out, int sep)
{
    return const_cast<char*>(GetNextSubstring(static_cast<const char*>(p), out, sep));
}

int ExtractNextString(CString& out, CString& rest, char sep)
{
    if (rest.IsEmpty())
        return 0;
    const int at = rest.Find(sep);
    if (at < 0) {
        out = rest;
        rest.Empty();
        return 1;
    }
    out = rest.Left(at);
    rest = rest.Mid(at + 1);
    return 1;
}

int GetIntFromStringList(CString& list, int& value)
{
    const CString prefix = list.SpanIncluding("-0123456789");
    if (prefix.IsEmpty())
        return 0;
    list = list.Mid(prefix.GetLength() + 1);
    value = vx::Atoi(prefix.GetString());
    return 1;
}

int GetRectFromStringList(CString& list, RECT& rect)
{
    int value = 0;
    if (!GetIntFromStringList(list, value))
        return 0;
    rect.left = value;
    if (!GetIntFromStringList(list, value))
        return 0;
    rect.top = value;
    if (!GetIntFromStringList(list, value))
        return 0;
    rect.right = value;
    if (!GetIntFromStringList(list, value))
        return 0;
    rect.bottom = value;
    return 1;
}

int GetSubStringIndex(const CString& text, const CString& list, int sep)
{
    if (list.IsEmpty())
        return -1;
    const std::string_view v = list.View();
    const char s = SepChar(sep);
    std::size_t start = 0;
    for (int index = 0;; ++index) {
        const std::size_t hit = v.find(s, start);
        const CString element(v.substr(start, hit == std::string_view::npos ? std::string_view::npos : hit - start));
        if (_mbscoll(element.GetString(), text.GetString()) == 0)
            return index;
        if (hit == std::string_view::npos)
            return -1;
        start = hit + 1;
    }
}

int IsSubStringIncluded(const CString& text, const CString& list, int sep)
{
    if (list.IsEmpty())
        return -1;
    const int at = list.Find(text);
    if (at < 0)
        return -1;
    const char s = SepChar(sep);
    if (at > 0 && list[at - 1] != s)
        return -1;
    const int after = at + text.GetLength();
    if (after < list.GetLength() && list[after] != s)
        return -1;
    return at;
}

void RemoveSubStringFromList(int position, CString& list, int sep)
{
    const int hit = list.Find(SepChar(sep), position);
    if (hit >= 0) {
        const int from = position < 0 ? 0 : position;
        list.Delete(from, hit - from + 1);
        return;
    }
    list = list.Left(position > 0 ? position - 1 : 0);
}

int GetAnzAndPartNumber(const CString& text, CString& part, int sep)
{
    const std::string_view v = text.View();
    const char s = SepChar(sep);
    std::size_t i = 0;
    while (i < v.size()) {
        const auto c = static_cast<unsigned char>(v[i]);
        if (v[i] != s && !IsControl(c) && !IsBlank(c))
            break;
        ++i;
    }
    char word[251];
    std::size_t length = 0;
    while (i < v.size() && length < 250) {
        const auto c = static_cast<unsigned char>(v[i]);
        if (IsControl(c) || IsBlank(c))
            break;
        word[length++] = v[i++];
    }
    word[length] = 0;
    int quantity = vx::Atoi(word);
    if (quantity < 1)
        quantity = 1;
    while (i < v.size() && (IsControl(static_cast<unsigned char>(v[i])) || IsBlank(static_cast<unsigned char>(v[i]))))
        ++i;
    part = CString(v.substr(i));
    part.TrimRight();
    return part.IsEmpty() ? 0 : quantity;
}

CString GetTooltip(CString text)
{
    const int at = text.ReverseFind('\n');
    return at < 0 ? text : text.Mid(at + 1);
}

int FindComboItem(CComboBox* combo, int data)
{
    if (!combo)
        return -1;
    const int count = combo->GetCount();
    for (int i = 0; i < count; ++i) {
        if (static_cast<int>(combo->GetItemData(i)) == data)
            return i;
    }
    return -1;
}

int SelectComboItem(CComboBox* combo, int data)
{
    if (!combo)
        return 0;
    const int index = FindComboItem(combo, data);
    if (index >= 0) {
        combo->SetCurSel(index);
        return 1;
    }
    const int count = combo->GetCount();
    if (count <= 0)
        return 0;
    combo->SetCurSel(count - 1);
    return 1;
}

int RemoveFromCombo(CComboBox* combo, int data)
{
    const int index = FindComboItem(combo, data);
    if (index < 0)
        return 0;
    combo->DeleteString(static_cast<UINT>(index));
    return 1;
}

void AddToCombo(CComboBox* combo, int data, const char* text)
{
    if (!combo || FindComboItem(combo, data) >= 0)
        return;
    const int index = combo->AddString(text);
    if (index >= 0)
        combo->SetItemData(index, static_cast<DWORD_PTR>(static_cast<unsigned>(data)));
}
