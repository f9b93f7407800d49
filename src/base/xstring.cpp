#include "base/xstring.h"

#include "base/separators_p.h"

#include "platform/framework/codepage.h"
#include "platform/framework/mbstring.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

char XString::SEP = '|';
char XString::OLDSEP = '|';

namespace {

// Built at load and destroyed at unload; the original kept it for error
// returns that no caller reads.
const XString g_errorText(">>> ERROR <<<");

XString Upcased(const CString& s)
{
    XString copy(s);
    copy.MakeUpper();
    return copy;
}

// Restores SEP on leaving a call that used its own separator.
class SeparatorScope {
public:
    explicit SeparatorScope(char sep) : m_old(XString::SEP) { XString::SEP = sep; }
    ~SeparatorScope() { XString::SEP = m_old; }
    SeparatorScope(const SeparatorScope&) = delete;
    SeparatorScope& operator=(const SeparatorScope&) = delete;

private:
    char m_old;
};

// Splits at SEP into Count(SEP) + 1 elements.
std::vector<XString> SplitElements(const XString& s)
{
    std::vector<XString> out;
    std::string_view v = s.View();
    std::size_t start = 0;
    for (;;) {
        const std::size_t hit = v.find(XString::SEP, start);
        if (hit == std::string_view::npos) {
            out.emplace_back(CString(v.substr(start)));
            return out;
        }
        out.emplace_back(CString(v.substr(start, hit - start)));
        start = hit + 1;
    }
}

XString JoinElements(const std::vector<CString>& parts)
{
    CString out;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i)
            out += XString::SEP;
        out += parts[i];
    }
    return out;
}

// The range [start, end) of element `i`, which must exist.
void ElementRange(std::string_view v, int i, std::size_t& start, std::size_t& end)
{
    start = 0;
    for (int k = 0; k < i; ++k)
        start = v.find(XString::SEP, start) + 1;
    end = v.find(XString::SEP, start);
    if (end == std::string_view::npos)
        end = v.size();
}

} // namespace

XString::XString(const unsigned short* text)
{
    if (!text)
        return;
    std::u16string wide;
    for (const unsigned short* p = text; *p; ++p)
        wide.push_back(static_cast<char16_t>(*p));
    CString::operator=(CString(vx::FromUtf16(wide)));
}

XString::XString(int value)
{
    Format("%d", value);
}

XString::XString(unsigned value)
{
    Format("%u", value);
}

XString::XString(double value)
{
    Format("%g", value);
}

double XString::Double() const
{
    return std::atof(GetString());
}

int XString::Int() const
{
    return vx::Atoi(GetString());
}

char XString::Char() const
{
    return IsEmpty() ? 0 : GetAt(0);
}

bool XString::Bool() const
{
    return vx::Atoi(GetString()) != 0;
}

XString XString::operator--()
{
    if (!IsEmpty())
        Delete(GetLength() - 1, 1);
    return *this;
}

XString XString::operator--(int)
{
    XString old(*this);
    if (!IsEmpty())
        Delete(GetLength() - 1, 1);
    return old;
}

XString XString::Reverse() const
{
    XString copy(*this);
    copy.MakeReverse();
    return copy;
}

XString XString::Lower() const
{
    XString copy(*this);
    copy.MakeLower();
    return copy;
}

XString XString::Upper() const
{
    return Upcased(*this);
}

XString XString::Trim() const
{
    CString copy(*this);
    copy.Trim();
    return copy;
}

XString XString::Left(int count) const
{
    return CString::Left(count);
}

XString XString::Right(int count) const
{
    return CString::Right(count);
}

XString XString::Mid(int first) const
{
    return CString::Mid(first);
}

XString XString::Mid(int first, int count) const
{
    return CString::Mid(first, count);
}

XString XString::FromTo(int a, int b) const
{
    return Mid(a, b - a + 1);
}

XString XString::Fill(int length) const
{
    XString copy(*this);
    if (copy.GetLength() < length)
        copy += CString(' ', length - copy.GetLength());
    return copy;
}

XString XString::ReplaceTabs(int n) const
{
    if (n < 1)
        return *this;
    std::string out;
    out.reserve(static_cast<std::size_t>(GetLength()));
    for (char c : View()) {
        if (c == '\t')
            out.append(static_cast<std::size_t>(n - static_cast<int>(out.size() % static_cast<std::size_t>(n))), ' ');
        else
            out += c;
    }
    return CString(out);
}

XString XString::Insert(const char* text, int position) const
{
    XString copy(*this);
    if (position < 0 || position > GetLength())
        return copy;
    copy.CString::Insert(position, text);
    return copy;
}

XString XString::Remove(int from, int to) const
{
    if (to < 0)
        to = from;
    XString copy(*this);
    if (from < 0 || to < from)
        return copy;
    copy.Delete(from, to - from);
    return copy;
}

XString XString::Remove(const char* text) const
{
    return Replace("", text);
}

XString XString::Remove(char c) const
{
    const char text[2] = {c, 0};
    return Remove(text);
}

XString XString::NCRemove(const char* text) const
{
    return NCReplace("", text);
}

XString XString::NCRemove(char c) const
{
    const char text[2] = {c, 0};
    return NCRemove(text);
}

XString XString::RemoveAll(const char* text) const
{
    XString copy(*this);
    copy.ReplaceAll("", text);
    return copy;
}

XString XString::RemoveAll(char c) const
{
    const char text[2] = {c, 0};
    return RemoveAll(text);
}

XString XString::NCRemoveAll(const char* text) const
{
    XString copy(*this);
    copy.NCReplaceAll("", text);
    return copy;
}

XString XString::NCRemoveAll(char c) const
{
    const char text[2] = {c, 0};
    return NCRemoveAll(text);
}

XString XString::Replace(const char* newText, const char* oldText) const
{
    if (!oldText || !*oldText)
        return *this;
    const int at = Find(oldText);
    if (at < 0)
        return *this;
    return Replace(newText, at, at + static_cast<int>(std::strlen(oldText)));
}

XString XString::NCReplace(const char* newText, const char* oldText) const
{
    if (!oldText || !*oldText)
        return *this;
    const int at = Upcased(*this).Find(Upcased(CString(oldText)));
    if (at < 0)
        return *this;
    return Replace(newText, at, at + static_cast<int>(std::strlen(oldText)));
}

XString XString::Replace(const char* newText, int from, int to) const
{
    return Remove(from, to).Insert(newText, from);
}

XString XString::ReplaceTextA(const XString& args) const
{
    XString text(*this);
    for (int i = 0;; ++i) {
        const XString arg = args.Element(i);
        if (arg.IsEmpty())
            break;
        if (text.Find('*') >= 0)
            text = text.Replace(arg, "*");
    }
    text.CString::Replace('\xA7', '*');
    return text;
}

int XString::NCFind(const char* text) const
{
    return Upcased(*this).Find(Upcased(CString(text)));
}

int XString::NCFind(char c) const
{
    const char text[2] = {c, 0};
    return NCFind(text);
}

int XString::Count(char c) const
{
    return static_cast<int>(std::count(View().begin(), View().end(), c));
}

int XString::Count(const char* text) const
{
    if (!text || !*text)
        return 0;
    const std::string_view needle(text);
    int count = 0;
    for (std::size_t at = View().find(needle); at != std::string_view::npos; at = View().find(needle, at + needle.size()))
        ++count;
    return count;
}

int XString::FindIndex(char c, int n) const
{
    if (n <= 0)
        return 0;
    int at = -1;
    for (int k = 0; k < n; ++k) {
        at = Find(c, at + 1);
        if (at < 0)
            return -1;
    }
    return at;
}

int XString::MatchString(CString pattern) const
{
    const std::string_view p = pattern.View();
    const std::string_view s = View();
    std::size_t pi = 0;
    std::size_t si = 0;
    bool star = false;
    bool optional = false;
    while (si < s.size()) {
        if (pi >= p.size())
            return 0;
        const char c = p[pi];
        if (c == '*') {
            ++pi;
            if (pi >= p.size())
                return 1;
            star = true;
            optional = false;
        } else if (c == '^') {
            ++pi;
            optional = true;
        } else if (c == s[si]) {
            star = false;
            ++pi;
            ++si;
            optional = false;
        } else if (c == '?') {
            ++pi;
            ++si;
            optional = false;
        } else if (optional && !star) {
            ++pi;
            optional = false;
        } else {
            if (!star)
                return 0;
            ++si;
        }
    }
    while (pi < p.size()) {
        if (p[pi] == '^') {
            optional = true;
            ++pi;
        } else if (p[pi] == '*' || optional) {
            ++pi;
            optional = false;
        } else {
            break;
        }
    }
    return pi >= p.size() ? 1 : 0;
}

int XString::ReplaceAll(const char* newText, const char* oldText)
{
    if (!oldText || !*oldText)
        return 0;
    return CString::Replace(oldText, newText ? newText : "");
}

int XString::NCReplaceAll(const char* newText, const char* oldText)
{
    if (!oldText || !*oldText)
        return 0;
    const CString upper = Upcased(*this);
    const CString needle = Upcased(CString(oldText));
    const std::size_t length = static_cast<std::size_t>(needle.GetLength());
    const std::string_view from = View();
    std::string out;
    int count = 0;
    std::size_t pos = 0;
    for (std::size_t hit = upper.View().find(needle.View()); hit != std::string_view::npos;
         hit = upper.View().find(needle.View(), pos)) {
        out.append(from.substr(pos, hit - pos));
        out += newText ? newText : "";
        pos = hit + length;
        ++count;
    }
    out.append(from.substr(pos));
    CString::operator=(CString(out));
    return count;
}

char XString::SetSeparator(char c)
{
    OLDSEP = SEP;
    SEP = c;
    return c;
}

char XString::RestoreSeparator()
{
    SEP = OLDSEP;
    return SEP;
}

XString XString::Elements(int from, int to) const
{
    const std::string_view s = View();
    const char* base = s.data();
    const std::size_t length = s.size();
    if (to < 0)
        to = Count(SEP);
    int n = to - from + 1;
    if (from < 0 || n < 0)
        return XString();

    // Pass `from` separators.
    std::size_t passed = 0;
    const std::size_t i = vx::detail::SkipSeparators(base, length, SEP, static_cast<std::size_t>(from), passed);
    // Walk on past up to n separators; n keeps the count still missing.
    std::size_t j = i;
    if (n > 0 && i < length) {
        j = i + vx::detail::SkipSeparators(base + i, length - i, SEP, static_cast<std::size_t>(n), passed);
        n -= static_cast<int>(passed);
    }
    // Step back off the last separator passed.
    if (j > 0 && (j != length || n == 0))
        --j;

    if (i >= length)
        return n > 0 ? XString(SEP, n - 1) : XString();
    if (j == 0)
        return XString();
    if (j < length)
        return j > i ? XString(CString(s.substr(i, j - i))) : XString();
    XString out(CString(s.substr(i)));
    if (n > 1)
        out += CString(SEP, n - 1);
    return out;
}

XString XString::Elements(int from, int to, char sep) const
{
    SeparatorScope scope(sep);
    return Elements(from, to);
}

double XString::GetDouble(int i) const
{
    return Element(i).Double();
}

int XString::GetInt(int i) const
{
    return Element(i).Int();
}

char XString::GetChar(int i) const
{
    return Element(i).Char();
}

bool XString::GetBool(int i) const
{
    return Element(i).Bool();
}

XString XString::GetString(int i, char sep) const
{
    return Element(i, sep);
}

double XString::GetDouble(int i, char sep) const
{
    return Element(i, sep).Double();
}

char XString::GetChar(int i, char sep) const
{
    return Element(i, sep).Char();
}

int XString::GetInt(int i, char sep) const
{
    return Element(i, sep).Int();
}

bool XString::GetBool(int i, char sep) const
{
    return Element(i, sep).Bool();
}

void XString::Get(XString& out, int i) const
{
    out = Element(i);
}

void XString::Get(double& out, int i) const
{
    out = GetDouble(i);
}

void XString::Get(char& out, int i) const
{
    out = GetChar(i);
}

void XString::Get(int& out, int i) const
{
    out = GetInt(i);
}

void XString::Get(bool& out, int i) const
{
    out = GetBool(i);
}

XString XString::SetElement(int i, const XString& value) const
{
    if (i < 0)
        return *this;
    const int count = Count(SEP);
    if (i > count) {
        XString out(*this);
        out += CString(SEP, i - count);
        out += value;
        return out;
    }
    std::size_t start = 0;
    std::size_t end = 0;
    ElementRange(View(), i, start, end);
    std::string out(View().substr(0, start));
    out += value.View();
    out += View().substr(end);
    return CString(out);
}

XString XString::SetElement(int i, double value) const
{
    return SetElement(i, XString(value));
}

XString XString::SetElement(int i, char value) const
{
    return SetElement(i, XString(value, 1));
}

XString XString::SetElement(int i, int value) const
{
    return SetElement(i, XString(value));
}

XString XString::SetElement(int i, bool value) const
{
    return SetElement(i, XString(value ? "1" : "0"));
}

int XString::ElementIndex(const XString& value) const
{
    const std::vector<XString> parts = SplitElements(*this);
    for (std::size_t k = 0; k < parts.size(); ++k) {
        if (_mbscmp(parts[k].GetString(), value.GetString()) == 0)
            return static_cast<int>(k);
    }
    return -1;
}

namespace {

template <typename T, typename Read>
int IndexByValue(const XString& s, T value, Read read)
{
    const std::vector<XString> parts = SplitElements(s);
    for (std::size_t k = 0; k < parts.size(); ++k) {
        if (read(parts[k]) == value)
            return static_cast<int>(k);
    }
    return -1;
}

} // namespace

int XString::ElementIndex(double value) const
{
    return IndexByValue(*this, value, [](const XString& e) { return e.Double(); });
}

int XString::ElementIndex(int value) const
{
    return IndexByValue(*this, value, [](const XString& e) { return e.Int(); });
}

int XString::ElementIndex(char value) const
{
    return IndexByValue(*this, value, [](const XString& e) { return e.Char(); });
}

int XString::ElementIndex(bool value) const
{
    return IndexByValue(*this, value, [](const XString& e) { return e.Bool(); });
}

namespace {

int CompareText(const void* a, const void* b)
{
    return _mbscmp(static_cast<const CString*>(a)->GetString(), static_cast<const CString*>(b)->GetString());
}

int CompareDouble(const void* a, const void* b)
{
    const double x = *static_cast<const double*>(a);
    const double y = *static_cast<const double*>(b);
    return x < y ? -1 : x > y ? 1 : 0;
}

int CompareChar(const void* a, const void* b)
{
    return static_cast<int>(*static_cast<const signed char*>(a)) - static_cast<int>(*static_cast<const signed char*>(b));
}

int CompareInt(const void* a, const void* b)
{
    const int x = *static_cast<const int*>(a);
    const int y = *static_cast<const int*>(b);
    return x < y ? -1 : x > y ? 1 : 0;
}

} // namespace

XString XString::ElementSortString() const
{
    std::vector<XString> parts = SplitElements(*this);
    std::vector<CString> texts(parts.begin(), parts.end());
    // The framework sorted the element texts with qsort; CString objects
    // cannot be moved bytewise, so the order is taken by std::sort with the
    // same comparison. Equal texts are indistinguishable, so no order of
    // equal elements can show.
    std::sort(texts.begin(), texts.end(),
              [](const CString& a, const CString& b) { return CompareText(&a, &b) < 0; });
    return JoinElements(texts);
}

XString XString::ElementSortDouble() const
{
    const std::vector<XString> parts = SplitElements(*this);
    std::vector<double> values;
    for (const XString& p : parts)
        values.push_back(p.Double());
    std::qsort(values.data(), values.size(), sizeof(double), CompareDouble);
    std::vector<CString> texts;
    for (double v : values)
        texts.push_back(XString(v));
    return JoinElements(texts);
}

XString XString::ElementSortChar() const
{
    const std::vector<XString> parts = SplitElements(*this);
    std::vector<signed char> values;
    for (const XString& p : parts)
        values.push_back(static_cast<signed char>(p.Char()));
    std::qsort(values.data(), values.size(), sizeof(signed char), CompareChar);
    std::vector<CString> texts;
    for (signed char v : values)
        texts.push_back(v ? CString(static_cast<char>(v), 1) : CString());
    return JoinElements(texts);
}

XString XString::ElementSortInt() const
{
    const std::vector<XString> parts = SplitElements(*this);
    std::vector<int> values;
    for (const XString& p : parts)
        values.push_back(p.Int());
    std::qsort(values.data(), values.size(), sizeof(int), CompareInt);
    std::vector<CString> texts;
    for (int v : values)
        texts.push_back(XString(v));
    return JoinElements(texts);
}

XString XString::GetDoubleFormatString() const
{
    const int dot = Find('.');
    const int decimals = dot < 0 ? 0 : GetLength() - dot - 1;
    XString format;
    format.Format("%%%d.%dlf", GetLength(), decimals);
    return format;
}
