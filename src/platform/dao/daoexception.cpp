#include "platform/dao/daoexception.h"

CDaoException::CDaoException() : m_pErrorInfo(&m_info) {}

CDaoException::CDaoException(long errorCode, const CString& description) : m_pErrorInfo(&m_info)
{
    m_info.m_lErrorCode = errorCode;
    m_info.m_strDescription = description;
    m_info.m_strSource = "DAO.Database";
}

CDaoException::CDaoException(const CDaoException& other)
    : CException(other), m_pErrorInfo(&m_info), m_scode(other.m_scode), m_nAfxDaoError(other.m_nAfxDaoError),
      m_info(other.m_info)
{
}

CDaoException& CDaoException::operator=(const CDaoException& other)
{
    m_info = other.m_info;
    m_scode = other.m_scode;
    m_nAfxDaoError = other.m_nAfxDaoError;
    m_pErrorInfo = &m_info;
    return *this;
}

CDaoException::~CDaoException() = default;

void CDaoException::GetErrorInfo(int)
{
    m_pErrorInfo = &m_info;
}
