// VXPAGENUM: the number of a page of a drawing, a main page number and up to
// two sub-page letters.
//
// The value is two 32-bit words and nothing else, so it is copied freely and
// written to files and message blocks as it stands. The letters sit in the
// top two bytes of m_subpage as their place in the alphabet (a = 1 .. z = 26),
// first letter in bits 24 to 31, second in bits 16 to 23. (0xFFFF, 0) is "no
// page" everywhere in the library.
//
//   VXPAGENUM p("12A");          // (12, 0x01000000)
//   p.GetPageText(0);            // "12a"
//   p.GetPageText(1);            // "0012a"
//   p.GetPageText(3);            // "012": mode 3 drops the letters
//   VXPAGENUM bad("12345");      // too many digits: (0xFFFF, 0)
//   bad.GetPage() == PAGE_INVALID;
//
// Nothing here checks a range: arithmetic and the setters take any value.
#pragma once

#include "platform/framework/cstring.h"
#include "vxbase_export.h"

#include <cstdint>
#include <type_traits>

// A main page number. It is used as a plain 32-bit integer and has no named
// values of its own.
enum VXPAGE : std::int32_t {};

// The main page number that means "no page".
inline constexpr VXPAGE PAGE_INVALID = VXPAGE(0xFFFF);
// The highest main page number a page text can hold (four digits).
inline constexpr VXPAGE PAGE_TEXT_MAX = VXPAGE(9999);

class VXBASE_EXPORT VXPAGENUM {
public:
    // A page text passed by value: 100 bytes, of which at most 99 are text.
    class VXBASE_EXPORT BUF {
    public:
        static constexpr int SIZE = 100;

        // All 100 bytes zero.
        BUF();
        // Copies at most 99 characters and zeroes the last byte; a null
        // pointer gives "0".
        BUF(const char* text);
        // Copies at most 99 characters; unlike the constructor it leaves the
        // last byte as it was.
        BUF& operator=(const char* text);

        // Zeroes all 100 bytes.
        void Clear();
        // Zeroes the buffer and returns it for writing (SIZE bytes).
        char* GetClearBuffer();
        // The buffer as it is, for reading or writing (SIZE bytes).
        char* GetRawBuffer() { return m_buffer; }
        const char* GetRawBuffer() const { return m_buffer; }
        operator const char*() const { return m_buffer; }

    private:
        char m_buffer[SIZE];
    };

    // (0xFFFF, 0): no page.
    VXPAGENUM() = default;
    // The two words as given, unchecked.
    VXPAGENUM(VXPAGE page, int subpage) : m_page(page), m_subpage(subpage) {}
    // A null or empty text gives (0xFFFF, 0); other text is read by
    // GetPageNumber, so invalid text also gives (0xFFFF, 0).
    explicit VXPAGENUM(const char* text);

    // Copying is the compiler's, so that the type stays trivially copyable
    // for the file and message forms built on it.
    VXPAGENUM(const VXPAGENUM&) = default;
    VXPAGENUM& operator=(const VXPAGENUM&) = default;

    // Reads the buffer's text with GetPageNumber.
    VXPAGENUM operator=(const BUF& text);

    // Add or subtract the other's main page number (or a plain number);
    // the sub-page of this object stays. They return the new value.
    VXPAGENUM operator+=(const VXPAGENUM& other);
    VXPAGENUM operator-=(const VXPAGENUM& other);
    VXPAGENUM operator+=(VXPAGE page);
    VXPAGENUM operator-=(VXPAGE page);
    // (m_page + n, 0) and (m_page - n, 0): the sub-page is dropped and this
    // object is unchanged.
    VXPAGENUM GetInc(int n) const;
    VXPAGENUM GetDec(int n) const;

    // Equality needs both words equal. The order is by main page, then by
    // sub-page as a signed integer. All return 1 or 0.
    int operator==(const VXPAGENUM& other) const;
    int operator!=(const VXPAGENUM& other) const;
    int operator<(const VXPAGENUM& other) const;
    int operator<=(const VXPAGENUM& other) const;
    int operator>(const VXPAGENUM& other) const;
    int operator>=(const VXPAGENUM& other) const;

    void SetPagenum(int page, int subpage);
    void SetPage(int page);
    void SetSubPage(int subpage);
    VXPAGE GetPage() const { return m_page; }
    int GetSubPage() const { return m_subpage; }
    // m_page AND 0xFFFF, and m_page AND 0x3FF: plain masks, so a page above
    // 1023 loses its high bits in the 10-bit form and 0xFFFF reads as 0x3FF.
    int GetPage16Bit() const;
    int GetPage10Bit() const;

    // (high << 16) | low, with `low` sign-extended first: a negative `low`
    // sets the whole upper half.
    static int GetSub(short high, short low);
    // 1 for the ASCII letters a-z and A-Z, 0 for anything else (umlauts too).
    static int IsSub(char c);
    // 1 for a valid page text: 1 to 6 characters, 1 to 4 digits, then 0 to
    // 2 letters and the end. Leading zeros count as digits ("0012" is valid,
    // "00012" is not). A null text is invalid.
    static int CheckPageNumber(const char* text);
    // The page of a valid text; (0xFFFF, 0) for an invalid one. Letters of
    // either case read the same.
    static VXPAGENUM GetPageNumber(const char* text);
    // A signed difference: of the sub-pages if only they differ, otherwise
    // of the main pages. Only the sign means anything; it may wrap.
    static int Compare(VXPAGENUM a, VXPAGENUM b);

    // The text form into `buffer` (at least 16 bytes): mode 0 "%d" and the
    // letters; mode 3 at least three digits and no letters; any other mode
    // at least four digits and the letters. Letters are lower case. The
    // invalid page prints as "65535".
    void GetPageText(char* buffer, int mode) const;
    CString GetPageText(int mode) const;
    // The letters alone. It emits the top byte of m_subpage (+ 0x60) until
    // the rest is zero, so a hand-built value can give up to four characters.
    CString GetSubPageText() const;

protected:
    // The plain-number forms look at m_page alone.
    VXPAGENUM operator=(VXPAGE page);
    int operator==(VXPAGE page) const;
    int operator!=(VXPAGE page) const;
    int operator<(VXPAGE page) const;
    int operator<=(VXPAGE page) const;
    int operator>(VXPAGE page) const;
    int operator>=(VXPAGE page) const;

public:
    VXPAGE m_page = PAGE_INVALID;
    std::int32_t m_subpage = 0;
};

static_assert(sizeof(VXPAGENUM) == 8, "a page number is two 32-bit words");
static_assert(std::is_trivially_copyable_v<VXPAGENUM>, "page numbers are copied as bytes");
