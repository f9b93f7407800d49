#include "platform/dao/daoinfo.h"

CDaoIndexInfo::CDaoIndexInfo(const CDaoIndexInfo& other)
{
    *this = other;
}

CDaoIndexInfo& CDaoIndexInfo::operator=(const CDaoIndexInfo& other)
{
    if (this == &other)
        return *this;
    m_strName = other.m_strName;
    m_bPrimary = other.m_bPrimary;
    m_bUnique = other.m_bUnique;
    m_bClustered = other.m_bClustered;
    m_bIgnoreNulls = other.m_bIgnoreNulls;
    m_bRequired = other.m_bRequired;
    m_bForeign = other.m_bForeign;
    m_lDistinctCount = other.m_lDistinctCount;
    // A copy owns its fields, wherever the original's pointed.
    std::vector<CDaoIndexFieldInfo> fields;
    for (int i = 0; other.m_pFieldInfos && i < other.m_nFields; ++i)
        fields.push_back(other.m_pFieldInfos[i]);
    SetFields(std::move(fields));
    return *this;
}

void CDaoIndexInfo::SetFields(std::vector<CDaoIndexFieldInfo> fields)
{
    m_fields = std::move(fields);
    m_nFields = static_cast<short>(m_fields.size());
    m_pFieldInfos = m_fields.empty() ? nullptr : m_fields.data();
}
