// CString: the framework's byte string, with its documented semantics.
//
// Text is a sequence of bytes in the suite's ANSI code page (see
// codepage.h); nothing here converts. Searches and comparisons behave like
// the C string functions the framework used (strchr, strstr, strcmp), so a
// string is read up to its first zero byte by them. Positions are byte
// positions; out-of-range arguments are clamped rather than asserted:
//
//   CString s("K12.3");
//   s.Mid(1, 2);        // "12"
//   s.Find('.');        // 3
//   s.Mid(10);          // "" (first beyond the end)
//   s.Left(-1);         // ""
//
// Case operations (MakeUpper, CompareNoCase) fold only the ASCII letters, as
// the C runtime did in its default "C" locale; bytes of 0x80 and above are
// never changed by them.
#pragma once

#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <concepts>
#include <cstdarg>
#include <string>
#include <string_view>

class VXBASE_EXPORT CString {
public:
    CString() = default;
    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    // A null pointer gives an empty string.
    CString(const char* text);
    CString(const unsigned char* text);
    // At most the first `length` bytes; the copy stops early at a zero
    // byte, so a short text is never read past its end.
    CString(const char* text, int length);
    CString(char ch, int repeat = 1);
    // A wide text, converted to the code page.
    explicit CString(const wchar_t* text);
    explicit CString(std::string_view text);
    ~CString() = default;

    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    CString& operator=(const char* text);
    CString& operator=(const unsigned char* text);
    CString& operator=(char ch);

    // --- attributes ---------------------------------------------------------
    int GetLength() const { return static_cast<int>(m_s.size()); }
    bool IsEmpty() const { return m_s.empty(); }
    void Empty() { m_s.clear(); }

    // Index 0 .. GetLength() - 1; an index out of range reads 0 and writes
    // nothing (the framework asserted).
    char GetAt(int index) const;
    void SetAt(int index, char ch);
    template <std::integral I>
    char operator[](I index) const { return GetAt(static_cast<int>(index)); }

    operator const char*() const { return m_s.c_str(); }
    const char* GetString() const { return m_s.c_str(); }
    std::string_view View() const { return m_s; }
    const std::string& StdString() const { return m_s; }

    // --- concatenation ------------------------------------------------------
    CString& operator+=(const CString& text);
    CString& operator+=(const char* text);
    CString& operator+=(char ch);
    void Append(const char* text, int length);

    // --- comparison ---------------------------------------------------------
    // strcmp order: bytes compare as unsigned values.
    int Compare(const char* text) const;
    // ASCII letters fold to one case; other bytes compare unsigned.
    int CompareNoCase(const char* text) const;
    // The "C" locale's collation, which is the byte order.
    int Collate(const char* text) const;
    int CollateNoCase(const char* text) const;

    // --- extraction ---------------------------------------------------------
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Left(int count) const;
    CString Right(int count) const;
    // The leading run of bytes that are (not) in `set`.
    CString SpanIncluding(const char* set) const;
    CString SpanExcluding(const char* set) const;

    // --- editing, in place --------------------------------------------------
    void MakeUpper();
    void MakeLower();
    void MakeReverse();
    // White space (blank, tab, CR, LF, VT, FF) at the left/right end.
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim();
    CString& TrimLeft(char target);
    CString& TrimRight(char target);
    CString& TrimLeft(const char* targets);
    CString& TrimRight(const char* targets);
    // Every occurrence, left to right, not overlapping; returns the count.
    // An empty or null `oldText` replaces nothing.
    int Replace(char oldChar, char newChar);
    int Replace(const char* oldText, const char* newText);
    // Removes every occurrence of `ch`; returns the count.
    int Remove(char ch);
    // Inserts before `index` (clamped to 0 .. length); returns the new length.
    int Insert(int index, char ch);
    int Insert(int index, const char* text);
    // Deletes up to `count` bytes from `index`; returns the new length.
    int Delete(int index, int count = 1);

    // --- searching ----------------------------------------------------------
    // Byte position of the first match at or after `start`, or -1. A start
    // at or beyond the end gives -1; a negative start counts as 0.
    int Find(char ch) const;
    int Find(char ch, int start) const;
    int Find(const char* text) const;
    int Find(const char* text, int start) const;
    int ReverseFind(char ch) const;
    int FindOneOf(const char* set) const;

    // --- formatting ---------------------------------------------------------
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void FormatV(const char* format, va_list args);
    void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // --- raw buffer access --------------------------------------------------
    // A writable buffer of at least `minLength` + 1 bytes that keeps the
    // current text. ReleaseBuffer(-1) takes the length up to the first zero.
    char* GetBuffer(int minLength = 0);
    void ReleaseBuffer(int newLength = -1);
    char* GetBufferSetLength(int length);

    // --- resources ----------------------------------------------------------
    // Loads string resource `id`; returns false (and empties) if missing.
    bool LoadString(UINT id);

private:
    std::string m_s;
};

VXBASE_EXPORT CString operator+(const CString& a, const CString& b);
VXBASE_EXPORT CString operator+(const CString& a, const char* b);
VXBASE_EXPORT CString operator+(const char* a, const CString& b);
VXBASE_EXPORT CString operator+(const CString& a, char b);
VXBASE_EXPORT CString operator+(char a, const CString& b);

inline bool operator==(const CString& a, const CString& b) { return a.Compare(b) == 0; }
inline bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
inline bool operator==(const char* a, const CString& b) { return b.Compare(a) == 0; }
inline bool operator!=(const CString& a, const CString& b) { return a.Compare(b) != 0; }
inline bool operator!=(const CString& a, const char* b) { return a.Compare(b) != 0; }
inline bool operator!=(const char* a, const CString& b) { return b.Compare(a) != 0; }
inline bool operator<(const CString& a, const CString& b) { return a.Compare(b) < 0; }
inline bool operator<(const CString& a, const char* b) { return a.Compare(b) < 0; }
inline bool operator<(const char* a, const CString& b) { return b.Compare(a) > 0; }
inline bool operator>(const CString& a, const CString& b) { return a.Compare(b) > 0; }
inline bool operator>(const CString& a, const char* b) { return a.Compare(b) > 0; }
inline bool operator>(const char* a, const CString& b) { return b.Compare(a) < 0; }
inline bool operator<=(const CString& a, const CString& b) { return a.Compare(b) <= 0; }
inline bool operator<=(const CString& a, const char* b) { return a.Compare(b) <= 0; }
inline bool operator<=(const char* a, const CString& b) { return b.Compare(a) >= 0; }
inline bool operator>=(const CString& a, const CString& b) { return a.Compare(b) >= 0; }
inline bool operator>=(const CString& a, const char* b) { return a.Compare(b) >= 0; }
inline bool operator>=(const char* a, const CString& b) { return b.Compare(a) <= 0; }

template <>
struct std::hash<CString> {
    std::size_t operator()(const CString& s) const noexcept { return std::hash<std::string_view>{}(s.View()); }
};
