#include "tests/reliability/accessfault.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

void CAccessFault::Arm(uint64_t nFirst, uint64_t nLast, std::optional<EAccessFailure> eFailure)
{
  m_nFirst = nFirst;
  m_nLast = nLast;
  m_eFailure = eFailure;
  m_nCount = 0;
  m_bFailed = false;
}

bool CAccessFault::Count(const SNodeAccess &stAccess)
{
  ++m_nCount;
  m_refusals(stAccess);
  if (m_nFirst == 0 || m_nCount < m_nFirst || m_nCount > m_nLast) {
    return false;
  }
  if (m_eFailure.has_value()) {
    m_bFailed = true;
    CFailNthAccess(1, *m_eFailure)(stAccess);
  }
  const bool bNoNode = stAccess.eKind == SNodeAccess::EKind::LookUp;
  m_bFailed = m_bFailed || bNoNode;
  return bNoNode;
}

CFaultyNodeMap::CFaultyNodeMap(GenApi::INodeMap &inner, CAccessFault &fault) : m_observed(inner)
{
  m_observed.AddHook([this, &fault](const SNodeAccess &stAccess) {
    const bool bNoNode = fault.Count(stAccess);
    m_bNoNode = stAccess.eKind == SNodeAccess::EKind::LookUp && bNoNode;
  });
}

GenApi::INode *CFaultyNodeMap::GetNode(const GenICam::gcstring &strName) const
{
  GenApi::INode *pOther = m_pOther == nullptr ? nullptr : m_pOther->GetNode(strName);
  if (pOther != nullptr) {
    return pOther;
  }
  GenApi::INode *pNode = m_observed.GetNode(strName);
  return m_bNoNode ? nullptr : pNode;
}
