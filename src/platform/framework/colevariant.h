// COleVariant: a value of one of the database engine's types, or empty, or
// null. The three are told apart by `vt`:
//
//   COleVariant v;                  // VT_EMPTY: nothing was put in
//   v = COleVariant(42);            // VT_I4, lVal 42
//   set.GetFieldValue("Name", v);   // VT_BSTR with the text, or VT_NULL
//   if (v.vt == VT_NULL) ...
//
// As in the original, the value members share one union, and every store
// clears the whole union first, so that reading a wider member than the one
// written gives the value zero-extended (lVal of a VT_UI1 is the byte).
// Text is held as code page bytes; `bstrVal` points to them while `vt` is
// VT_BSTR and stays valid until the variant changes.
#pragma once

#include "platform/framework/coledatetime.h"
#include "platform/framework/cstring.h"
#include "platform/framework/wintypes.h"
#include "vxbase_export.h"

#include <cstdint>
#include <string>

using VARTYPE = unsigned short;
using VARIANT_BOOL = short;
using SCODE = LONG;

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_UI1 = 17,
    VT_I8 = 20,
};
// Text in the code page; the same as VT_BSTR here, as every text is bytes.
constexpr VARTYPE VT_BSTRT = VT_BSTR;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// A currency value: a 64-bit count of ten-thousandths. Lo and Hi are the
// low and high 32-bit words of it.
union tagCY {
    struct {
        DWORD Lo;
        LONG Hi;
    };
    std::int64_t int64;
};
using CY = tagCY;

class VXBASE_EXPORT COleVariant {
public:
    COleVariant() { llVal = 0; }
    COleVariant(const COleVariant& other);
    COleVariant(COleVariant&& other) noexcept;
    // Text; a null pointer gives an empty text. `vtSrc` must be VT_BSTR.
    COleVariant(const char* text, VARTYPE vtSrc = VT_BSTR);
    COleVariant(const CString& text);
    COleVariant(BYTE value);
    // VT_I2, or VT_BOOL where any non-zero value is VARIANT_TRUE.
    COleVariant(short value, VARTYPE vtSrc = VT_I2);
    // VT_I4 (or VT_BOOL, VT_ERROR); a long is cut to its low 32 bits.
    COleVariant(int value, VARTYPE vtSrc = VT_I4);
    COleVariant(long value, VARTYPE vtSrc = VT_I4);
    COleVariant(float value);
    COleVariant(double value);
    COleVariant(const CY& value);
    COleVariant(const COleDateTime& value);
    ~COleVariant() = default;

    COleVariant& operator=(const COleVariant& other);
    COleVariant& operator=(COleVariant&& other) noexcept;

    // Back to VT_EMPTY.
    void Clear()
    {
        Reset(VT_EMPTY);
        m_text.clear();
    }
    // Sets VT_NULL.
    void SetNull();
    // Sets VT_BSTR with `length` bytes of `text` (which may hold zero bytes),
    // reusing the text buffer.
    void SetString(const char* text, std::size_t length);

    bool operator==(const COleVariant& other) const;
    bool operator!=(const COleVariant& other) const { return !(*this == other); }

    VARTYPE vt = VT_EMPTY;
    union {
        BYTE bVal;
        short iVal;
        LONG lVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        std::int64_t llVal;
        char* bstrVal;
    };

    // The number of text bytes while vt is VT_BSTR.
    std::size_t TextLength() const { return m_text.size(); }

private:
    void Reset(VARTYPE type)
    {
        vt = type;
        llVal = 0;
    }
    std::string m_text;
};
