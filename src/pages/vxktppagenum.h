// VXKTPPAGENUM: a page number with a KTP value, which ranks above the page.
//
// The packed form is 32 bits: the page in bits 0 to 15, the KTP in bits 16
// to 31; the sub-page has no place in it. The text form "%d %d %d" (KTP,
// page, sub-page) carries all three.
//
//   VXKTPPAGENUM p(VXPAGENUM(VXPAGE(12), 0), 3);
//   p.GetPageAndKtp();                    // 0x0003000C
//   VXKTPPAGENUM q(0x0003000C);           // page 12, KTP 3
//   p.GetFormatText();                    // "3 12 0"
//
// What KTP means is the host programs' business; here it is a plain number.
#pragma once

#include "pages/vxpagenum.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstdint>
#include <type_traits>

class VXBASE_EXPORT VXKTPPAGENUM : public VXPAGENUM {
public:
    // Page (0xFFFF, 0), KTP 0.
    VXKTPPAGENUM() = default;
    VXKTPPAGENUM(VXPAGENUM page, int ktp) : VXPAGENUM(page), m_ktp(ktp) {}
    // Page = packed AND 0xFFFF with no sub-page, KTP = the upper 16 bits with
    // their sign (so bit 31 gives a negative KTP).
    explicit VXKTPPAGENUM(LONG packed);

    VXKTPPAGENUM(const VXKTPPAGENUM&) = default;
    VXKTPPAGENUM& operator=(const VXKTPPAGENUM&) = default;

    // Page, sub-page and KTP together.
    int operator==(const VXKTPPAGENUM& other) const;
    int operator!=(const VXKTPPAGENUM& other) const;
    // By KTP first, then as VXPAGENUM orders.
    int operator<(const VXKTPPAGENUM& other) const;
    int operator<=(const VXKTPPAGENUM& other) const;
    int operator>(const VXKTPPAGENUM& other) const;
    int operator>=(const VXKTPPAGENUM& other) const;
    // The sum and the difference of the packed forms. An invalid page packs
    // to -1, which these do not look for.
    int operator|(const VXKTPPAGENUM& other) const;
    int operator&(const VXKTPPAGENUM& other) const;

    // The KTP difference if the KTPs differ, else VXPAGENUM::Compare.
    static int Compare(VXKTPPAGENUM& a, VXKTPPAGENUM& b);

    void SetPageAndKtp(VXPAGENUM page, int ktp);
    int GetKtp() const { return m_ktp; }
    VXPAGENUM GetVxPage() const { return VXPAGENUM(m_page, m_subpage); }
    // The packed form; -1 for the invalid page.
    LONG GetPageAndKtp() const;
    // KTP = the upper 16 bits taken unsigned, page = the lower 16 bits; the
    // first form leaves the sub-page alone, the second sets it.
    void SetKtpPageSub(LONG packed);
    void SetKtpPageSub(LONG packed, int subpage);
    // Packs (ktp << 16) | page without masking, then as above: a page above
    // 0xFFFF spills into the KTP.
    void SetKtpPageSub(int ktp, int page, int subpage);

    // "%d" of (m_ktp << 16) | m_page, unmasked: the invalid page gives
    // "65535", and a page above 0xFFFF spoils the KTP half.
    CString GetPageAndKtpText() const;
    void GetPageAndKtpText(char* buffer) const; // at least 12 bytes
    // "%d %d %d" of KTP, page and sub-page.
    CString GetFormatText() const;
    void GetFormatText(char* buffer) const; // at least 36 bytes
    // Reads GetFormatText's form: three numbers at the two first blanks.
    // Returns 1; without two blanks it sets KTP, page and sub-page to 0 (a
    // real page 0, not the invalid page) and returns 0.
    int SetFormatText(const char* text);

    std::int32_t m_ktp = 0;
};

static_assert(std::is_trivially_copyable_v<VXKTPPAGENUM>, "page numbers are copied as bytes");
