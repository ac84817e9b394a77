#include "tests/support/refusals.h"

#include <utility>

#include <GenApi/GenApi.h>

using ffc::genapi::SNodeAccess;

void CRefusals::Refuse(const std::string &strNode, const std::string &strValue)
{
  m_listRefused.push_back({strNode, strValue});
}

int CRefusals::TakeCount()
{
  return std::exchange(m_nCount, 0);
}

void CRefusals::operator()(const SNodeAccess &stAccess)
{
  if (stAccess.eKind != SNodeAccess::EKind::Write && stAccess.eKind != SNodeAccess::EKind::Execute) {
    return;
  }
  for (const SRefused &stRefused : m_listRefused) {
    const bool bValue = stRefused.strValue.empty() || stRefused.strValue == stAccess.strValue;
    if (stRefused.strNode == stAccess.strNode && bValue) {
      ++m_nCount;
      throw GenICam::AccessException("refused", __FILE__, __LINE__);
    }
  }
}
