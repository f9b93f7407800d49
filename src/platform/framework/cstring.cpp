#include "platform/framework/cstring.h"

#include "platform/framework/codepage.h"
#include "platform/framework/mbstring.h"
#include "platform/framework/util_p.h"
#include "platform/shell/resources.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <cwchar>

namespace {

bool IsBlank(unsigned char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

const char* OrEmpty(const char* text)
{
    return text ? text : "";
}

} // namespace

CString::CString(const char* text) : m_s(OrEmpty(text)) {}

CString::CString(const unsigned char* text) : m_s(OrEmpty(reinterpret_cast<const char*>(text))) {}

CString::CString(const char* text, int length)
{
    if (text && length > 0)
        m_s.assign(text, strnlen(text, static_cast<std::size_t>(length)));
}

CString::CString(char ch, int repeat)
{
    if (repeat > 0)
        m_s.assign(static_cast<std::size_t>(repeat), ch);
}

CString::CString(const wchar_t* text)
{
    if (!text)
        return;
    std::u32string wide;
    for (const wchar_t* p = text; *p; ++p)
        wide.push_back(static_cast<char32_t>(*p));
    m_s = vx::FromUtf32(wide);
}

CString::CString(std::string_view text) : m_s(text) {}

CString& CString::operator=(const char* text)
{
    // std::string::assign copes with a pointer into its own buffer, so no
    // copy aside is needed.
    m_s.assign(OrEmpty(text));
    return *this;
}

CString& CString::operator=(const unsigned char* text)
{
    return *this = reinterpret_cast<const char*>(text);
}

CString& CString::operator=(char ch)
{
    m_s.assign(1, ch);
    return *this;
}

char CString::GetAt(int index) const
{
    if (index < 0 || index >= GetLength())
        return 0;
    return m_s[static_cast<std::size_t>(index)];
}

void CString::SetAt(int index, char ch)
{
    if (index >= 0 && index < GetLength())
        m_s[static_cast<std::size_t>(index)] = ch;
}

CString& CString::operator+=(const CString& text)
{
    m_s += text.m_s;
    return *this;
}

CString& CString::operator+=(const char* text)
{
    if (text)
        m_s.append(text);
    return *this;
}

CString& CString::operator+=(char ch)
{
    m_s.push_back(ch);
    return *this;
}

void CString::Append(const char* text, int length)
{
    if (text && length > 0)
        m_s.append(text, strnlen(text, static_cast<std::size_t>(length)));
}

int CString::Compare(const char* text) const
{
    return std::strcmp(m_s.c_str(), OrEmpty(text));
}

int CString::CompareNoCase(const char* text) const
{
    return _stricmp(m_s.c_str(), OrEmpty(text));
}

int CString::Collate(const char* text) const
{
    return Compare(text);
}

int CString::CollateNoCase(const char* text) const
{
    return CompareNoCase(text);
}

CString CString::Mid(int first) const
{
    return Mid(first, GetLength() - std::max(first, 0));
}

CString CString::Mid(int first, int count) const
{
    const int length = GetLength();
    if (first < 0)
        first = 0;
    if (count < 0)
        count = 0;
    if (first >= length || count == 0)
        return CString();
    if (count > length - first)
        count = length - first;
    return CString(std::string_view(m_s).substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

CString CString::Left(int count) const
{
    if (count <= 0)
        return CString();
    if (count >= GetLength())
        return *this;
    return CString(std::string_view(m_s).substr(0, static_cast<std::size_t>(count)));
}

CString CString::Right(int count) const
{
    if (count <= 0)
        return CString();
    if (count >= GetLength())
        return *this;
    return CString(std::string_view(m_s).substr(m_s.size() - static_cast<std::size_t>(count)));
}

CString CString::SpanIncluding(const char* set) const
{
    return Left(static_cast<int>(std::strspn(m_s.c_str(), OrEmpty(set))));
}

CString CString::SpanExcluding(const char* set) const
{
    return Left(static_cast<int>(std::strcspn(m_s.c_str(), OrEmpty(set))));
}

void CString::MakeUpper()
{
    for (char& c : m_s)
        c = vx::AsciiUpper(c);
}

void CString::MakeLower()
{
    for (char& c : m_s)
        c = vx::AsciiLower(c);
}

void CString::MakeReverse()
{
    std::reverse(m_s.begin(), m_s.end());
}

CString& CString::TrimLeft()
{
    std::size_t i = 0;
    while (i < m_s.size() && IsBlank(static_cast<unsigned char>(m_s[i])))
        ++i;
    m_s.erase(0, i);
    return *this;
}

CString& CString::TrimRight()
{
    std::size_t n = m_s.size();
    while (n > 0 && IsBlank(static_cast<unsigned char>(m_s[n - 1])))
        --n;
    m_s.resize(n);
    return *this;
}

CString& CString::Trim()
{
    TrimRight();
    return TrimLeft();
}

CString& CString::TrimLeft(char target)
{
    std::size_t i = 0;
    while (i < m_s.size() && m_s[i] == target)
        ++i;
    m_s.erase(0, i);
    return *this;
}

CString& CString::TrimRight(char target)
{
    std::size_t n = m_s.size();
    while (n > 0 && m_s[n - 1] == target)
        --n;
    m_s.resize(n);
    return *this;
}

CString& CString::TrimLeft(const char* targets)
{
    const char* set = OrEmpty(targets);
    std::size_t i = 0;
    while (i < m_s.size() && m_s[i] != 0 && std::strchr(set, m_s[i]))
        ++i;
    m_s.erase(0, i);
    return *this;
}

CString& CString::TrimRight(const char* targets)
{
    const char* set = OrEmpty(targets);
    std::size_t n = m_s.size();
    while (n > 0 && m_s[n - 1] != 0 && std::strchr(set, m_s[n - 1]))
        --n;
    m_s.resize(n);
    return *this;
}

int CString::Replace(char oldChar, char newChar)
{
    int count = 0;
    if (oldChar == newChar)
        return 0;
    for (char& c : m_s) {
        if (c == oldChar) {
            c = newChar;
            ++count;
        }
    }
    return count;
}

int CString::Replace(const char* oldText, const char* newText)
{
    if (!oldText || !*oldText)
        return 0;
    const std::string from(oldText);
    const std::string to(OrEmpty(newText));
    std::string out;
    int count = 0;
    std::size_t pos = 0;
    for (;;) {
        const std::size_t hit = m_s.find(from, pos);
        if (hit == std::string::npos)
            break;
        out.append(m_s, pos, hit - pos);
        out += to;
        pos = hit + from.size();
        ++count;
    }
    if (count) {
        out.append(m_s, pos, std::string::npos);
        m_s.swap(out);
    }
    return count;
}

int CString::Remove(char ch)
{
    const auto old = m_s.size();
    m_s.erase(std::remove(m_s.begin(), m_s.end(), ch), m_s.end());
    return static_cast<int>(old - m_s.size());
}

int CString::Insert(int index, char ch)
{
    index = std::clamp(index, 0, GetLength());
    m_s.insert(m_s.begin() + index, ch);
    return GetLength();
}

int CString::Insert(int index, const char* text)
{
    index = std::clamp(index, 0, GetLength());
    if (text)
        m_s.insert(static_cast<std::size_t>(index), std::string(text));
    return GetLength();
}

int CString::Delete(int index, int count)
{
    if (index < 0)
        index = 0;
    if (count > 0 && index < GetLength()) {
        count = std::min(count, GetLength() - index);
        m_s.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(count));
    }
    return GetLength();
}

int CString::Find(char ch) const
{
    return Find(ch, 0);
}

int CString::Find(char ch, int start) const
{
    if (start < 0)
        start = 0;
    if (start >= GetLength())
        return -1;
    const char* base = m_s.c_str();
    const char* hit = std::strchr(base + start, ch);
    return hit ? static_cast<int>(hit - base) : -1;
}

int CString::Find(const char* text) const
{
    return Find(text, 0);
}

int CString::Find(const char* text, int start) const
{
    if (start < 0)
        start = 0;
    if (start > GetLength())
        return -1;
    const char* base = m_s.c_str();
    const char* hit = std::strstr(base + start, OrEmpty(text));
    return hit ? static_cast<int>(hit - base) : -1;
}

int CString::ReverseFind(char ch) const
{
    const char* base = m_s.c_str();
    const char* hit = std::strrchr(base, ch);
    return hit ? static_cast<int>(hit - base) : -1;
}

int CString::FindOneOf(const char* set) const
{
    const char* base = m_s.c_str();
    const char* hit = std::strpbrk(base, OrEmpty(set));
    return hit ? static_cast<int>(hit - base) : -1;
}

void CString::Format(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const char* format, va_list args)
{
    // The arguments may point into this string, so build aside first.
    va_list copy;
    va_copy(copy, args);
    const int needed = std::vsnprintf(nullptr, 0, OrEmpty(format), copy);
    va_end(copy);
    std::string out;
    if (needed > 0) {
        out.resize(static_cast<std::size_t>(needed) + 1);
        std::vsnprintf(out.data(), out.size(), OrEmpty(format), args);
        out.resize(static_cast<std::size_t>(needed));
    }
    m_s.swap(out);
}

void CString::AppendFormat(const char* format, ...)
{
    CString tail;
    va_list args;
    va_start(args, format);
    tail.FormatV(format, args);
    va_end(args);
    m_s += tail.m_s;
}

char* CString::GetBuffer(int minLength)
{
    if (minLength > GetLength())
        m_s.resize(static_cast<std::size_t>(minLength));
    return m_s.data();
}

void CString::ReleaseBuffer(int newLength)
{
    if (newLength < 0)
        newLength = static_cast<int>(std::strlen(m_s.c_str()));
    if (newLength < GetLength())
        m_s.resize(static_cast<std::size_t>(newLength));
}

char* CString::GetBufferSetLength(int length)
{
    m_s.resize(static_cast<std::size_t>(std::max(length, 0)));
    return m_s.data();
}

bool CString::LoadString(UINT id)
{
    const char* text = vx::FindString(id);
    m_s = OrEmpty(text);
    return text != nullptr;
}

CString operator+(const CString& a, const CString& b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(const CString& a, const char* b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(const char* a, const CString& b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(const CString& a, char b)
{
    CString r(a);
    r += b;
    return r;
}

CString operator+(char a, const CString& b)
{
    CString r(a);
    r += b;
    return r;
}
