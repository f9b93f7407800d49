#include "config/kinisection.h"

KIniSection::KIniSection(const char* section) : m_Section(section)
{
}

KIniSection::~KIniSection()
{
    m_Entries.RemoveAll();
}

CString KIniSection::GetSection()
{
    return m_Section;
}

int KIniSection::GetValue(const char* key, CString& value)
{
    return m_Entries.Lookup(key ? key : "", value) ? 1 : 0;
}

void KIniSection::SetValue(const char* key, const char* value)
{
    m_Entries.SetAt(key ? key : "", value ? value : "");
}

void KIniSection::InitQuery()
{
    m_Query = m_Entries.IsEmpty() ? nullptr : m_Entries.GetStartPosition();
}

int KIniSection::GetNextEntry(CString& key, CString& value)
{
    // A walk past the end reads as an empty map rather than following a
    // stale cursor.
    if (m_Entries.IsEmpty() || !m_Query) {
        key.Empty();
        value.Empty();
        return 0;
    }
    m_Entries.GetNextAssoc(m_Query, key, value);
    return m_Query ? 1 : 0;
}

void KIniSection::RemoveEntry(const char* key)
{
    // Removing the entry under the cursor would leave the cursor dangling.
    if (m_Query) {
        POSITION pos = m_Query;
        CString k, v;
        m_Entries.GetNextAssoc(pos, k, v);
        if (k == (key ? key : ""))
            m_Query = pos;
    }
    m_Entries.RemoveKey(key ? key : "");
}
