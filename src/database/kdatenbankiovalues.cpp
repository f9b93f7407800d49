// KDatenbankIO: typed reads and writes of the current record of the active
// table, the text forms of values, and record copies.
#include "database/kdatenbankio.h"

#include "platform/framework/coledatetime.h"
#include "platform/dao/daoexception.h"
#include "platform/framework/mbstring.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

COleVariant KDatenbankIO::m_OutVariant;
CString KDatenbankIO::m_OutString;
const char KDatenbankIO::m_LeerString = 0;
const tagCY KDatenbankIO::m_LeerCY = {};

namespace {

bool IsEmptyValue(const COleVariant& v)
{
    return v.vt == VT_EMPTY || v.vt == VT_NULL;
}

[[noreturn]] void NoRecordSet()
{
    throw CDaoException(vx::kDaoObjectInvalid, "Object invalid or no longer set.");
}

} // namespace

void KDatenbankIO::ReadValue(const char* name)
{
    if (!m_pDbRecordset)
        NoRecordSet();
    m_pDbRecordset->GetFieldValue(name, m_OutVariant);
}

// --- reads: the value as the variant holds it, with no check of its type ----------

long KDatenbankIO::DbGetLongValue(int field)
{
    return DbGetLongValue(GetFeldName(field));
}

long KDatenbankIO::DbGetLongValue(const char* name)
{
    ReadValue(name);
    return IsEmptyValue(m_OutVariant) ? 0 : m_OutVariant.lVal;
}

short KDatenbankIO::DbGetShortValue(int field)
{
    return DbGetShortValue(GetFeldName(field));
}

short KDatenbankIO::DbGetShortValue(const char* name)
{
    ReadValue(name);
    return IsEmptyValue(m_OutVariant) ? 0 : m_OutVariant.iVal;
}

int KDatenbankIO::DbGetBoolValue(int field)
{
    return DbGetShortValue(field);
}

int KDatenbankIO::DbGetBoolValue(const char* name)
{
    return DbGetShortValue(name);
}

unsigned char KDatenbankIO::DbGetByteValue(int field)
{
    return DbGetByteValue(GetFeldName(field));
}

unsigned char KDatenbankIO::DbGetByteValue(const char* name)
{
    ReadValue(name);
    return IsEmptyValue(m_OutVariant) ? 0 : m_OutVariant.bVal;
}

float KDatenbankIO::DbGetSingleValue(int field)
{
    return DbGetSingleValue(GetFeldName(field));
}

float KDatenbankIO::DbGetSingleValue(const char* name)
{
    ReadValue(name);
    return IsEmptyValue(m_OutVariant) ? 0.0f : m_OutVariant.fltVal;
}

double KDatenbankIO::DbGetDoubleValue(int field)
{
    return DbGetDoubleValue(GetFeldName(field));
}

double KDatenbankIO::DbGetDoubleValue(const char* name)
{
    ReadValue(name);
    return IsEmptyValue(m_OutVariant) ? 0.0 : m_OutVariant.dblVal;
}

double KDatenbankIO::DbGetDateValue(int field)
{
    return DbGetDoubleValue(field);
}

double KDatenbankIO::DbGetDateValue(const char* name)
{
    return DbGetDoubleValue(name);
}

tagCY KDatenbankIO::DbGetCurrencyValue(int field)
{
    return DbGetCurrencyValue(GetFeldName(field));
}

tagCY KDatenbankIO::DbGetCurrencyValue(const char* name)
{
    ReadValue(name);
    return IsEmptyValue(m_OutVariant) ? m_LeerCY : m_OutVariant.cyVal;
}

const char* KDatenbankIO::DbGetTextValue(int field)
{
    ReadValue(GetFeldName(field));
    return IsEmptyValue(m_OutVariant) ? &m_LeerString : m_OutVariant.bstrVal;
}

const char* KDatenbankIO::DbGetTextValue(const char* name, COleVariant& buffer)
{
    if (!m_pDbRecordset)
        NoRecordSet();
    m_pDbRecordset->GetFieldValue(name, buffer);
    return IsEmptyValue(buffer) ? &m_LeerString : buffer.bstrVal;
}

CString KDatenbankIO::DbGetFieldValue(int field)
{
    return DbGetFieldValue(GetFeldName(field));
}

CString KDatenbankIO::DbGetFieldValue(const char* name)
{
    if (!m_pDbRecordset || !m_pDbRecordset->IsOpen())
        return CString();
    CDaoFieldInfo info;
    m_pDbRecordset->GetFieldInfo(name, info);
    CString text;
    switch (info.m_nType) {
    case dbBoolean:
        text.Format("%d", DbGetBoolValue(name));
        break;
    case dbByte:
        text.Format("%d", static_cast<unsigned>(DbGetByteValue(name)));
        break;
    case dbInteger:
        text.Format("%d", DbGetShortValue(name));
        break;
    case dbLong:
        text.Format("%d", static_cast<int>(DbGetLongValue(name)));
        break;
    case dbCurrency:
        text.Format("%.2f", static_cast<double>(DbGetCurrencyValue(name).int64) * 0.0001);
        text.Replace('.', ',');
        break;
    case dbSingle:
        text.Format("%.2f", static_cast<double>(DbGetSingleValue(name)));
        text.Replace('.', ',');
        break;
    case dbDouble:
        text.Format("%f", DbGetDoubleValue(name));
        text.Replace('.', ',');
        break;
    case dbDate: {
        const COleDateTime date(DbGetDateValue(name));
        text.Format("%d.%d.%d", date.GetYear(), date.GetMonth(), date.GetDay());
        break;
    }
    case dbText:
    case dbMemo: {
        COleVariant buffer;
        text.Format("%s", DbGetTextValue(name, buffer));
        break;
    }
    default:
        break;
    }
    return text;
}

// --- writes -----------------------------------------------------------------------------

namespace {

void Write(CDaoRecordset* set, const char* name, const COleVariant& value)
{
    if (!set)
        NoRecordSet();
    set->SetFieldValue(name, value);
}

// _ftol: truncation towards zero into 32 bits; out of range, the processor's
// "integer indefinite".
std::int32_t TruncateTo32(double value)
{
    const double t = std::trunc(value);
    if (!(t >= -2147483648.0 && t <= 2147483647.0))
        return INT32_MIN;
    return static_cast<std::int32_t>(t);
}

} // namespace

void KDatenbankIO::DbSetBoolValue(int field, int value)
{
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(value, VT_I4));
}

void KDatenbankIO::DbSetByteValue(int field, unsigned char value)
{
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(static_cast<BYTE>(value)));
}

void KDatenbankIO::DbSetShortValue(int field, short value)
{
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(value, VT_I2));
}

void KDatenbankIO::DbSetSingleValue(int field, float value)
{
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(value));
}

void KDatenbankIO::DbSetDoubleValue(int field, double value)
{
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(value));
}

void KDatenbankIO::DbSetDateValue(int field, double value)
{
    // A plain double, not VT_DATE.
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(value));
}

void KDatenbankIO::DbSetCurrencyValue(int field, tagCY value)
{
    Write(m_pDbRecordset, GetFeldName(field), COleVariant(value));
}

void KDatenbankIO::DbSetLongValue(int field, long value)
{
    unsigned short length = 0, type = 0;
    GetFeldPara(field, length, type, nullptr);
    const char* name = GetFeldName(field);
    switch (type) {
    case 1:
    case 2:
        Write(m_pDbRecordset, name, COleVariant(static_cast<BYTE>(value & 0xFF)));
        break;
    case 3:
        Write(m_pDbRecordset, name, COleVariant(static_cast<short>(value), VT_I2));
        break;
    case 4:
        Write(m_pDbRecordset, name, COleVariant(static_cast<int>(value), VT_I4));
        break;
    case 6:
        Write(m_pDbRecordset, name, COleVariant(static_cast<float>(value)));
        break;
    case 7:
        Write(m_pDbRecordset, name, COleVariant(static_cast<double>(value)));
        break;
    case 10:
    case 12: {
        char text[34];
        _itoa(static_cast<int>(value), text, 10);
        if (!m_pDbRecordset)
            NoRecordSet();
        m_pDbRecordset->SetFieldValue(name, text);
        break;
    }
    default:
        break;
    }
}

void KDatenbankIO::DbSetFeldValue(int field, const char* text, double factor)
{
    unsigned short length = 0, type = 0;
    GetFeldPara(field, length, type, nullptr);
    const char* name = GetFeldName(field);
    const char* value = text ? text : "";
    auto whole = [&] {
        int v = std::atoi(value);
        if (factor != 0)
            v = static_cast<int>(v * factor);
        return v;
    };
    auto real = [&] {
        double v = std::atof(value);
        if (factor != 0)
            v *= factor;
        return v;
    };
    switch (type) {
    case 1:
    case 2:
        Write(m_pDbRecordset, name, COleVariant(static_cast<BYTE>(whole() & 0xFF)));
        break;
    case 3:
        Write(m_pDbRecordset, name, COleVariant(static_cast<short>(whole()), VT_I2));
        break;
    case 4:
        Write(m_pDbRecordset, name, COleVariant(whole(), VT_I4));
        break;
    case 5: {
        // The ten-thousandths in the low word only: only values from 0 to
        // below 2^31 / 10000 come through whole, as on the original.
        tagCY cy;
        cy.Lo = static_cast<DWORD>(TruncateTo32(real() * 10000.0));
        cy.Hi = 0;
        Write(m_pDbRecordset, name, COleVariant(cy));
        break;
    }
    case 6:
        Write(m_pDbRecordset, name, COleVariant(static_cast<float>(real())));
        break;
    case 7:
        Write(m_pDbRecordset, name, COleVariant(real()));
        break;
    case 10: {
        int limit = length;
        if (factor >= 1 && static_cast<int>(factor) < length)
            limit = static_cast<int>(factor);
        if (static_cast<int>(std::strlen(value)) >= limit) {
            // One character less than the limit, also where it would fit.
            m_OutString = value;
            m_OutString = m_OutString.Left(limit - 1);
            if (!m_pDbRecordset)
                NoRecordSet();
            m_pDbRecordset->SetFieldValue(name, m_OutString.GetString());
        } else {
            if (!m_pDbRecordset)
                NoRecordSet();
            m_pDbRecordset->SetFieldValue(name, value);
        }
        break;
    }
    case 255:
        break; // the database numbers it
    default:
        if (!m_pDbRecordset)
            NoRecordSet();
        m_pDbRecordset->SetFieldValue(name, value);
        break;
    }
}

int KDatenbankIO::DbAddNewField(int field, int reopen)
{
    if (reopen && m_pDbRecordset && m_pDbRecordset->IsOpen())
        m_pDbRecordset->Close(); // a table in use can't change
    unsigned short length = 0, type = 0;
    const int result = GetFeldPara(field, length, type, nullptr);
    if (result && m_pTableDef)
        AddField(m_pTableDef, GetFeldName(field), length, type);
    if (reopen)
        OpenSet(nullptr);
    return result;
}

int KDatenbankIO::SatzKopieren(int target, int source, CDWordArray& skip)
{
    if (!m_pDbRecordset)
        NoRecordSet();
    const long position = m_pDbRecordset->GetAbsolutePosition();
    m_pDbRecordset->SetAbsolutePosition(source);
    const int count = ActiveNames()->GetSize();
    std::vector<COleVariant> values(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        m_pDbRecordset->GetFieldValue(GetFeldName(i), values[static_cast<std::size_t>(i)]);
    m_pDbRecordset->SetAbsolutePosition(target);
    m_pDbRecordset->Edit();
    for (int i = 0; i < count; ++i) {
        bool skipped = false;
        for (DWORD s : skip)
            skipped = skipped || static_cast<int>(s) == i;
        if (!skipped)
            m_pDbRecordset->SetFieldValue(GetFeldName(i), values[static_cast<std::size_t>(i)]);
    }
    m_pDbRecordset->Update();
    if (position >= 0)
        m_pDbRecordset->SetAbsolutePosition(position);
    return 1;
}

int KDatenbankIO::SatzVorhanden()
{
    if (!m_pDbRecordset || !m_pDbRecordset->IsOpen())
        return 0;
    return m_pDbRecordset->IsBOF() && m_pDbRecordset->IsEOF() ? 0 : 1;
}
