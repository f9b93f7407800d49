#include "platform/framework/colevariant.h"

#include <cstring>

COleVariant::COleVariant(const COleVariant& other) : vt(other.vt), llVal(other.llVal), m_text(other.m_text)
{
    if (vt == VT_BSTR)
        bstrVal = m_text.data();
}

COleVariant::COleVariant(COleVariant&& other) noexcept
    : vt(other.vt), llVal(other.llVal), m_text(std::move(other.m_text))
{
    if (vt == VT_BSTR)
        bstrVal = m_text.data();
    other.Reset(VT_EMPTY);
}

COleVariant::COleVariant(const char* text, VARTYPE)
{
    llVal = 0;
    SetString(text ? text : "", text ? std::strlen(text) : 0);
}

COleVariant::COleVariant(const CString& text)
{
    llVal = 0;
    SetString(text.GetString(), static_cast<std::size_t>(text.GetLength()));
}

COleVariant::COleVariant(BYTE value)
{
    Reset(VT_UI1);
    bVal = value;
}

COleVariant::COleVariant(short value, VARTYPE vtSrc)
{
    if (vtSrc == VT_BOOL) {
        Reset(VT_BOOL);
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
        Reset(VT_I2);
        iVal = value;
    }
}

COleVariant::COleVariant(int value, VARTYPE vtSrc)
{
    if (vtSrc == VT_BOOL) {
        Reset(VT_BOOL);
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
        Reset(vtSrc == VT_ERROR ? VT_ERROR : VT_I4);
        lVal = value;
    }
}

COleVariant::COleVariant(long value, VARTYPE vtSrc) : COleVariant(static_cast<int>(value), vtSrc) {}

COleVariant::COleVariant(float value)
{
    Reset(VT_R4);
    fltVal = value;
}

COleVariant::COleVariant(double value)
{
    Reset(VT_R8);
    dblVal = value;
}

COleVariant::COleVariant(const CY& value)
{
    Reset(VT_CY);
    cyVal.int64 = value.int64;
}

COleVariant::COleVariant(const COleDateTime& value)
{
    Reset(VT_DATE);
    date = value.m_dt;
}

COleVariant& COleVariant::operator=(const COleVariant& other)
{
    if (this == &other)
        return *this;
    vt = other.vt;
    llVal = other.llVal;
    if (vt == VT_BSTR) {
        m_text.assign(other.m_text);
        bstrVal = m_text.data();
    }
    return *this;
}

COleVariant& COleVariant::operator=(COleVariant&& other) noexcept
{
    if (this == &other)
        return *this;
    vt = other.vt;
    llVal = other.llVal;
    m_text = std::move(other.m_text);
    if (vt == VT_BSTR)
        bstrVal = m_text.data();
    other.Reset(VT_EMPTY);
    return *this;
}

void COleVariant::SetNull()
{
    Reset(VT_NULL);
}

void COleVariant::SetString(const char* text, std::size_t length)
{
    Reset(VT_BSTR);
    m_text.assign(text, length);
    bstrVal = m_text.data();
}

bool COleVariant::operator==(const COleVariant& other) const
{
    if (vt != other.vt)
        return false;
    switch (vt) {
    case VT_EMPTY:
    case VT_NULL:
        return true;
    case VT_BSTR:
        return m_text == other.m_text;
    case VT_UI1:
        return bVal == other.bVal;
    case VT_I2:
    case VT_BOOL:
        return iVal == other.iVal;
    case VT_I4:
    case VT_ERROR:
        return lVal == other.lVal;
    case VT_R4:
        return fltVal == other.fltVal;
    default:
        return llVal == other.llVal;
    }
}
