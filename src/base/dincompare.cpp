#include "base/dincompare.h"

#include "base/libraryframe.h"
#include "platform/framework/util_p.h"

#include <algorithm>
#include <array>
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

int Signed(char c)
{
    return static_cast<signed char>(c);
}

constexpr auto kFold = [] {
    std::array<char, 256> table{};
    for (int c = 0; c < 256; ++c)
        table[static_cast<std::size_t>(c)] = vx::AsciiLower(static_cast<char>(c));
    return table;
}();

// ASCII letters to lower case; other bytes stay.
char Fold(char c)
{
    return kFold[static_cast<unsigned char>(c)];
}

// vx::Atoi, inline: white space, a sign, digits, and INT_MAX or INT_MIN on
// overflow. The library call goes through strtoll, which costs more than
// the rest of a comparison.
[[gnu::always_inline]] inline std::int32_t Atoi(const char* s)
{
    bool negative = false;
    if (!IsDigit(*s)) {
        while (*s == ' ' || (*s >= '\t' && *s <= '\r'))
            ++s;
        if (*s == '-' || *s == '+')
            negative = *s++ == '-';
    }
    constexpr std::int64_t limit = std::int64_t{INT32_MAX} + 1;
    std::int64_t value = 0;
    for (; IsDigit(*s); ++s) {
        if (value <= limit)
            value = value * 10 + (*s - '0');
    }
    if (negative)
        return value >= limit ? INT32_MIN : static_cast<std::int32_t>(-value);
    return value > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(value);
}

// |v|: the magnitude of INT32_MIN (2^31) needs more than 32 bits.
std::int64_t Magnitude(std::int32_t v)
{
    return v < 0 ? -std::int64_t{v} : v;
}

// A difference of magnitudes as a 32-bit result with its sign kept. Only
// 2^31 itself does not fit; wrapped, it would turn its sign and the order
// with it.
std::int32_t Difference(std::int64_t d)
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(d, INT32_MIN, INT32_MAX));
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

template <bool CS>
char Comparable(char c)
{
    if constexpr (CS)
        return c;
    else
        return Fold(c);
}

template <bool CS>
int DifferenceValue(char x, char y)
{
    return Signed(Comparable<CS>(x)) - Signed(Comparable<CS>(y));
}

bool HasDigitFrom(const char* text)
{
    while (*text && !IsDigit(*text))
        ++text;
    return *text != 0;
}

// The value comparison at `ia` of `a` and `ib` of `b`, where the equal-case
// comparison first differs at `p` (an index into `a`) with the value `r`.
// Returns true with the result in `result`, or false with `advance` set
// when the texts hold numbers of equal value and equal text there, and the
// comparison goes on behind them.
template <class HasDigits>
[[gnu::always_inline]] inline bool CompareValues(const char* a, const char* b, int ia, int ib, int p, int r,
                                                 HasDigits hasDigits, int& result, int& advance)
{
    result = r;
    if (r == 0)
        return true;
    if (!IsDigit(a[ia]) && !IsDigit(b[ib]) && !hasDigits())
        return true;
    const std::int64_t na = Magnitude(Atoi(a + ia));
    const std::int64_t nb = Magnitude(Atoi(b + ib));
    if (na != nb) {
        if (na == 0)
            result = IsDigit(a[ia]) ? Difference(-nb) : (Signed(a[ia]) < 'A' ? -1 : 1);
        else if (nb == 0)
            result = IsDigit(b[ib]) ? Difference(na) : (Signed(b[ib]) < 'A' ? 1 : -1);
        else
            result = Difference(na - nb);
        return true;
    }
    // Equal values: the printed length of the value decides how much is
    // compared as text, which puts leading zeros first. The original printed
    // the 32-bit value, so 2^31 prints as INT32_MIN does.
    advance = PrintedLength(na > INT32_MAX ? INT32_MIN : static_cast<std::int32_t>(na));
    return p - ia < advance;
}

// The comparison from position `ia` of `a` and `ia` + `d` of `b`. Each scan
// result is kept with the position it reaches; it holds for every later
// start up to that position, so no byte is scanned twice.
template <bool CS>
int Natural(const char* a, const char* b, int ia, const int d, const bool outermost)
{
    int scanEnd = -1;              // where the shared-text scan stopped
    ScanStop scanStop = ScanStop::End;
    int lastNonDigit = -1;         // case-insensitive: last both-non-digit position
    int difference = -1;           // first difference of the equal-case comparison
    int digitA = -1;               // next digit at or after a position
    int digitB = -1;

    const auto scan = [&](int from) {
        int k = from;
        int last = -1;
        char x = a[k];
        char y = b[k + d];
        // The shared run first, where one byte tells for both texts.
        while (x == y && x) {
            if constexpr (CS) {
                if (IsDigit(x))
                    break;
            } else if (!IsDigit(x)) {
                last = k;
            }
            ++k;
            x = a[k];
            y = b[k + d];
        }
        if (!x || !y) {
            scanStop = ScanStop::End;
        } else if (IsDigit(x) || IsDigit(y)) {
            scanStop = CS ? ScanStop::Digit : ScanStop::Differ;
        } else {
            scanStop = ScanStop::Differ;
            last = k;
        }
        scanEnd = k;
        lastNonDigit = last;
    };
    // Only called with the scan valid at `from`: the bytes up to scanEnd
    // are equal, so the equal-case comparison goes on from there.
    const auto firstDifference = [&](int from) {
        if (from > difference) {
            int k = scanEnd > from ? scanEnd : from;
            while (a[k] && Comparable<CS>(a[k]) == Comparable<CS>(b[k + d]))
                ++k;
            difference = k;
        }
        return difference;
    };
    const auto hasDigit = [](const char* text, int from, int& cache) {
        if (from > cache) {
            int k = from;
            while (text[k] && !IsDigit(text[k]))
                ++k;
            cache = text[k] ? k : INT_MAX;
        }
        return cache != INT_MAX;
    };

    scan(ia);
    if (outermost) {
        const int p = firstDifference(0);
        if (DifferenceValue<CS>(a[p], b[p + d]) == 0)
            return 0;
    }

    for (;;) {
        const int ib = ia + d;
        if (!a[ia])
            return b[ib] ? -1 : 0;
        if (!b[ib])
            return 1;

        // Skip the shared text and restart where the texts part.
        if (ia > scanEnd)
            scan(ia);
        if (scanStop == ScanStop::Differ && scanEnd > ia) {
            if constexpr (CS) {
                ia = scanEnd;
                continue;
            } else if (lastNonDigit >= ia) {
                ia = scanEnd > lastNonDigit ? lastNonDigit + 1 : scanEnd;
                continue;
            }
        }

        const int p = firstDifference(ia);
        int result = 0;
        int advance = 0;
        const auto hasDigits = [&] { return hasDigit(a, ia, digitA) || hasDigit(b, ib, digitB); };
        if (CompareValues(a, b, ia, ib, p, DifferenceValue<CS>(a[p], b[p + d]), hasDigits, result, advance))
            return result;
        ia += advance;
    }
}

// CompareDINText from the start of both texts, which is what every sort
// asks. The same steps as Natural<false>, straight: one pass over the
// shared text, at most one restart (which lands where no second one can
// follow), then the values. Only texts that go on past a number of equal
// value continue in the general loop.
int NaturalFromStart(const char* a, const char* b)
{
    int k = 0;
    while (a[k] == b[k] && a[k])
        ++k;
    const char x = a[k];
    const char y = b[k];
    if (x == y)
        return 0; // the same text
    int p = k;
    while (a[p] && Fold(a[p]) == Fold(b[p]))
        ++p;
    const int r = DifferenceValue<false>(a[p], b[p]);
    if (r == 0)
        return 0; // equal but for case
    if (!a[0])
        return -1;
    if (!b[0])
        return 1;

    int ia = 0;
    if (x && y) {
        // The last position before the difference where neither text has a
        // digit; the shared bytes there are one and the same.
        int last = k;
        if (IsDigit(x) || IsDigit(y)) {
            last = k - 1;
            while (last >= 0 && IsDigit(a[last]))
                --last;
        }
        if (k > 0 && last >= 0)
            ia = k > last ? last + 1 : k;
    }
    int result = 0;
    int advance = 0;
    const auto hasDigits = [&] { return HasDigitFrom(a + ia) || HasDigitFrom(b + ia); };
    if (CompareValues(a, b, ia, ia, p, r, hasDigits, result, advance))
        return result;
    return Natural<false>(a, b, ia + advance, 0, false);
}

int NaturalEntry(CString* a, int ia, CString* b, int ib, bool caseSensitive)
{
    const char* ta = TextOf(a);
    const char* tb = TextOf(b);
    const bool outermost = ia == 0 && ib == 0;
    if (!outermost) {
        ia = StartPosition(ta, ia);
        ib = StartPosition(tb, ib);
    }
    if (outermost && !caseSensitive)
        return NaturalFromStart(ta, tb);
    return caseSensitive ? Natural<true>(ta, tb, ia, ib - ia, outermost)
                         : Natural<false>(ta, tb, ia, ib - ia, outermost);
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
    return NaturalFromStart(TextOf(a), TextOf(b));
}

int CompareDINText(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, false);
}

int CompareDINTextBezug(CString* a, CString* b)
{
    return CompareDINText(a, b);
}

int CompareDINTextBezug(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, false);
}

int CompareDINTextCS(CString* a, CString* b)
{
    return Natural<true>(TextOf(a), TextOf(b), 0, 0, true);
}

int CompareDINTextCS(CString* a, int ia, CString* b, int ib)
{
    return NaturalEntry(a, ia, b, ib, true);
}

int CompareDINTextBezugCS(CString* a, CString* b)
{
    return CompareDINTextCS(a, b);
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
    if (vx::AsciiIsLetter(c))
        return 1;
    if (c == 0)
        return 0;
    const CString letters = GetString(6726);
    return std::strchr(letters.GetString(), c) != nullptr;
}
