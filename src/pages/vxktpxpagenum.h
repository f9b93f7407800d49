// VXKTPxPAGENUM: a KTP page number with a further value X, which ranks below
// KTP and page.
//
//   VXKTPxPAGENUM a, b;
//   a.SetPageAndKtpAndX(VXPAGENUM(VXPAGE(12), 0), 3, 1);
//   b.SetPageAndKtpAndX(VXPAGENUM(VXPAGE(12), 0), 3, 2);
//   a < b;                                // 1: equal bases, X decides
#pragma once

#include "pages/vxktppagenum.h"
#include "pages/vxpagenum.h"
#include "vxbase_export.h"

#include <cstdint>
#include <type_traits>

class VXBASE_EXPORT VXKTPxPAGENUM : public VXKTPPAGENUM {
public:
    // As VXKTPPAGENUM, X 0.
    VXKTPxPAGENUM() = default;
    VXKTPxPAGENUM(const VXKTPxPAGENUM&) = default;
    VXKTPxPAGENUM& operator=(const VXKTPxPAGENUM&) = default;

    // X and the base together.
    int operator==(const VXKTPxPAGENUM& other) const;
    int operator!=(const VXKTPxPAGENUM& other) const;
    // The base decides when it differs (tested with > and <); X only
    // between equal bases.
    int operator<(const VXKTPxPAGENUM& other) const;
    int operator<=(const VXKTPxPAGENUM& other) const;
    int operator>(const VXKTPxPAGENUM& other) const;
    int operator>=(const VXKTPxPAGENUM& other) const;

    // The base Compare, and when that is 0, the X difference.
    static int Compare(VXKTPxPAGENUM& a, VXKTPxPAGENUM& b);

    void SetPageAndKtpAndX(VXPAGENUM page, int ktp, int x);
    int GetX() const { return m_x; }
    VXPAGENUM GetVxPage() const { return VXKTPPAGENUM::GetVxPage(); }

    std::int32_t m_x = 0;
};

static_assert(std::is_trivially_copyable_v<VXKTPxPAGENUM>, "page numbers are copied as bytes");
