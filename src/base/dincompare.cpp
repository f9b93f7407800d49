#include "base/dincompare.h"

#include "base/libraryframe.h"

#include <climits>
#include <cstdint>
#include <cstring>

// The natural comparison is defined as a recursion that restarts on the
// remainders of both texts, comparing them afresh at each step. Done that
// way it costs a copy per step and, on long texts, quadratic time and a deep
// stack. Here it is one loop over positions: the offset between the two
// positions never changes, so each scan result (where the texts first
// differ, where the next digit is) stays valid until the position passes
// it, and every byte is scanned a bounded number of times. The results are
// those of the recursion, value for value.

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

int Signed(char c)
{
    return static_cast<signed char>(c);
}

char Fold(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

// atoi of the 32-bit runtime the suite was built with: white space, a sign,
// digits accumulated modulo 2^32.
std::int32_t AtoI(const char* s)
{
    while (IsSpace(*s))
        ++s;
    bool negative = false;
    if (*s == '-' || *s == '+')
        negative = *s++ == '-';
    std::uint32_t value = 0;
    while (IsDigit(*s))
        value = value * 10u + static_cast<std::uint32_t>(*s++ - '0');
    return static_cast<std::int32_t>(negative ? 0u - value : value);
}

std::int32_t Negate(std::int32_t v)
{
    return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(v));
}

std::int32_t Abs(std::int32_t v)
{
    return v < 0 ? Negate(v) : v;
}

std::int32_t Subtract(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

// The length of "%d" of `v`.
int PrintedLength(std::int32_t v)
{
    if (v == INT32_MIN)
        return 11;
    int length = v < 0 ? 2 : 1;
    for (std::int32_t rest = v < 0 ? -v : v; rest >= 10; rest /= 10)
        ++length;
    return length;
}

const char* TextOf(const CString* s)
{
    return s ? s->GetString() : "";
}

// A start position inside the text: negative counts as 0, and a position
// past the end (or past an embedded zero byte) stands on the terminator.
int StartPosition(const char* text, int position)
{
    if (position <= 0)
        return 0;
    return static_cast<int>(strnlen(text, static_cast<std::size_t>(position)));
}

enum class ScanStop { End, Digit, Differ };

class NaturalCompare {
public:
    NaturalCompare(const char* a, const char* b, int offset, bool caseSensitive)
        : m_a(a), m_b(b), m_d(offset), m_cs(caseSensitive)
    {
    }

    int Run(int ia, bool outermost);

private:
    // The shared-text scan that picks where to restart.
    void Scan(int ia);
    // First position from `ia` where the equal-case comparison sees a
    // difference, or where both texts end.
    int Difference(int ia);
    int DifferenceValue(int p) const;
    bool HasDigit(const char* text, int from, int& cache);

    const char* m_a;
    const char* m_b;
    int m_d; // position in b minus position in a
    bool m_cs;

    // Each cache holds a position; it is valid for every start up to it.
    int m_scanEnd = -1;
    ScanStop m_scanStop = ScanStop::End;
    int m_lastNonDigit = -1;
    int m_difference = -1;
    int m_digitA = -1;
    int m_digitB = -1;
};

void NaturalCompare::Scan(int ia)
{
    int k = ia;
    if (m_cs) {
        for (;; ++k) {
            const char x = m_a[k];
            const char y = m_b[k + m_d];
            if (!x || !y) {
                m_scanStop = ScanStop::End;
                break;
            }
            if (IsDigit(x) || IsDigit(y)) {
                m_scanStop = ScanStop::Digit;
                break;
            }
            if (x != y) {
                m_scanStop = ScanStop::Differ;
                break;
            }
        }
    } else {
        int last = -1;
        for (;; ++k) {
            const char x = m_a[k];
            const char y = m_b[k + m_d];
            if (!x || !y) {
                m_scanStop = ScanStop::End;
                break;
            }
            if (!IsDigit(x) && !IsDigit(y))
                last = k;
            if (x != y) {
                m_scanStop = ScanStop::Differ;
                break;
            }
        }
        m_lastNonDigit = last;
    }
    m_scanEnd = k;
}

int NaturalCompare::Difference(int ia)
{
    if (ia > m_difference) {
        int k = ia;
        if (m_cs) {
            while (m_a[k] && m_a[k] == m_b[k + m_d])
                ++k;
        } else {
            while (m_a[k] && Fold(m_a[k]) == Fold(m_b[k + m_d]))
                ++k;
        }
        m_difference = k;
    }
    return m_difference;
}

int NaturalCompare::DifferenceValue(int p) const
{
    if (m_cs)
        return Signed(m_a[p]) - Signed(m_b[p + m_d]);
    return Signed(Fold(m_a[p])) - Signed(Fold(m_b[p + m_d]));
}

bool NaturalCompare::HasDigit(const char* text, int from, int& cache)
{
    if (from > cache) {
        int k = from;
        while (text[k] && !IsDigit(text[k]))
            ++k;
        cache = text[k] ? k : INT_MAX;
    }
    return cache != INT_MAX;
}

int NaturalCompare::Run(int ia, bool outermost)
{
    const char* a = m_a;
    const char* b = m_b;
    if (outermost && DifferenceValue(Difference(0)) == 0)
        return 0;

    for (;;) {
        const int ib = ia + m_d;
        if (!a[ia])
            return b[ib] ? -1 : 0;
        if (!b[ib])
            return 1;

        // Skip the shared text and restart where the texts part.
        if (ia > m_scanEnd)
            Scan(ia);
        if (m_scanStop == ScanStop::Differ && m_scanEnd > ia) {
            if (m_cs) {
                ia = m_scanEnd;
                continue;
            }
            if (m_lastNonDigit >= ia) {
                ia = m_scanEnd > m_lastNonDigit ? m_lastNonDigit + 1 : m_scanEnd;
                continue;
            }
        }

        // Compare by value from here.
        const int p = Difference(ia);
        const int r = DifferenceValue(p);
        if (r == 0)
            return 0;
        if (!HasDigit(a, ia, m_digitA) && !HasDigit(b, ib, m_digitB))
            return r;
        const std::int32_t na = Abs(AtoI(a + ia));
        const std::int32_t nb = Abs(AtoI(b + ib));
        if (na != nb) {
            if (na == 0) {
                if (IsDigit(a[ia]))
                    return Negate(nb);
                return Signed(a[ia]) < 'A' ? -1 : 1;
            }
            if (nb == 0) {
                if (IsDigit(b[ib]))
                    return na;
                return Signed(b[ib]) < 'A' ? 1 : -1;
            }
            return Subtract(na, nb);
        }
        // Equal values: the printed length of the value decides how much is
        // compared as text, which puts leading zeros first.
        const int n = PrintedLength(na);
        if (p - ia < n)
            return r;
        ia += n;
    }
}

int NaturalEntry(CString* a, int ia, CString* b, int ib, bool caseSensitive)
{
    const char* ta = TextOf(a);
    const char* tb = TextOf(b);
    const bool outermost = ia == 0 && ib == 0;
    ia = StartPosition(ta, ia);
    ib = StartPosition(tb, ib);
    NaturalCompare compare(ta, tb, ib - ia, caseSensitive);
    return compare.Run(ia, outermost);
}

// BezugComp reads through 16-bit positions; one that wrapped below zero
// reads as the end of the text.
char At(const char* s, std::int16_t p)
{
    return p < 0 ? 0 : s[p];
}

const char* TextAt(const char* s, std::int16_t p)
{
    return p < 0 ? "" : s + p;
}

void Advance(std::int16_t& p)
{
    p = static_cast<std::int16_t>(p + 1);
}

int CompareSigned(const char* a, const char* b, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (a[i] != b[i])
            return Signed(a[i]) - Signed(b[i]);
        if (!a[i])
            break;
    }
    return 0;
}

int CheckRange(CString* s, int start, bool (*allowed)(char c, int position))
{
    if (!s)
        return 1;
    const char* text = s->GetString();
    const int length = s->GetLength();
    for (int i = start < 0 ? 0 : start; i < length; ++i) {
        if (!allowed(text[i], i))
            return 0;
    }
    return 1;
}

} // namespace

int CompareDINText(CString* a, CString* b)
{
    return NaturalEntry(a, 0, b, 0, false);
}

int CompareDINText(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, false);
}

int CompareDINTextBezug(CString* a, CString* b)
{
    return NaturalEntry(a, 0, b, 0, false);
}

int CompareDINTextBezug(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, false);
}

int CompareDINTextCS(CString* a, CString* b)
{
    return NaturalEntry(a, 0, b, 0, true);
}

int CompareDINTextCS(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, true);
}

int CompareDINTextBezugCS(CString* a, CString* b)
{
    return NaturalEntry(a, 0, b, 0, true);
}

int CompareDINTextBezugCS(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, true);
}

int BezugComp(const char* a, const char* b, char prefix, int mode)
{
    if (!a)
        a = "";
    if (!b)
        b = "";
    std::int16_t pa = 0;
    std::int16_t pb = 0;
    if (prefix && a[0] == prefix && b[0] == prefix)
        pa = pb = 1;
    while (IsDigit(At(a, pa)))
        Advance(pa);
    while (IsDigit(At(b, pb)))
        Advance(pb);

    // A count from a wrapped position is huge, as the runtime saw it.
    const auto count = [](std::int16_t p) { return static_cast<std::size_t>(static_cast<int>(p)); };

    if (mode != 0) {
        if (pa != 0 && pb != 0) {
            if (pa < pb)
                return -1;
            if (pa > pb)
                return 1;
            if (const int r = CompareSigned(a, b, count(pa)))
                return static_cast<std::int16_t>(r);
        }
        return static_cast<std::int16_t>(CompareSigned(TextAt(a, pa), TextAt(b, pb), SIZE_MAX));
    }

    int result = 0;
    if (pa == 0 || pb == 0) {
        pa = pb = 0;
    } else if (At(a, pa) == At(b, pb)) {
        // The leading numbers count only where the texts go on alike.
        if (pa < pb)
            result = -1;
        else if (pa > pb)
            result = 1;
        else
            result = CompareSigned(a, b, count(pa));
    }

    while (result == 0) {
        const char ca = At(a, pa);
        if (ca)
            Advance(pa);
        const char cb = At(b, pb);
        if (cb)
            Advance(pb);

        if (IsDigit(ca) && IsDigit(cb)) {
            std::int16_t ea = pa;
            std::int16_t eb = pb;
            while (IsDigit(At(a, ea)))
                Advance(ea);
            while (IsDigit(At(b, eb)))
                Advance(eb);
            if (ea < eb) {
                result = -1;
            } else if (ea > eb) {
                result = 1;
            } else {
                while (result == 0 && IsDigit(At(a, pa)) && IsDigit(At(b, pb))) {
                    const int x = Signed(At(a, pa));
                    const int y = Signed(At(b, pb));
                    const int xPrev = Signed(At(a, static_cast<std::int16_t>(pa - 1)));
                    const int yPrev = Signed(At(b, static_cast<std::int16_t>(pb - 1)));
                    const bool aLonger = At(b, static_cast<std::int16_t>(pb + 1)) == 0
                        && IsDigit(At(a, static_cast<std::int16_t>(pa + 1)));
                    const bool bLonger = At(a, static_cast<std::int16_t>(pa + 1)) == 0
                        && IsDigit(At(b, static_cast<std::int16_t>(pb + 1)));
                    if (xPrev < yPrev)
                        result = -1;
                    else if (xPrev > yPrev)
                        result = 1;
                    else if (!aLonger && x < y)
                        result = -1;
                    else if (!bLonger && x > y)
                        result = 1;
                    if (At(a, pa))
                        Advance(pa);
                    if (At(b, pb))
                        Advance(pb);
                }
                if (result == 0) {
                    if (IsDigit(At(a, pa)))
                        result = 1;
                    else if (IsDigit(At(b, pb)))
                        result = -1;
                    else
                        result = Signed(ca) < Signed(cb) ? -1 : (Signed(ca) > Signed(cb) ? 1 : 0);
                }
            }
        } else if (ca != cb) {
            result = Signed(ca) < Signed(cb) ? -1 : 1;
        }
        if (!At(a, pa) && !At(b, pb))
            break;
    }
    return static_cast<std::int16_t>(result);
}

int IsAllNumber(CString* s, int start)
{
    return CheckRange(s, start, [](char c, int) { return IsDigit(c); });
}

int IsAllRealNumber(CString* s, int start)
{
    return CheckRange(s, start, [](char c, int position) { return IsDigit(c) || (c == '.' && position != 0); });
}

int IsAllNotNumber(CString* s, int start)
{
    return CheckRange(s, start, [](char c, int) { return !IsDigit(c); });
}

int IsLetter(char c)
{
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
        return 1;
    if (c == 0)
        return 0;
    const CString letters = GetString(6726);
    return std::strchr(letters.GetString(), c) != nullptr;
}
