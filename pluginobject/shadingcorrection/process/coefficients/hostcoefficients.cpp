#include "pluginobject/shadingcorrection/process/coefficients/hostcoefficients.h"

#include <utility>

CHostCoefficients::SSnapshot CHostCoefficients::Get() const
{
  const std::lock_guard<CCriticalSection> lock(m_section);
  return m_stCurrent;
}

void CHostCoefficients::SetFormat(const SFrameFormat &stFormat)
{
  const std::lock_guard<CCriticalSection> lock(m_section);
  m_stCurrent.stFormat = stFormat;
}

void CHostCoefficients::SetTable(HostTablePtr pTable)
{
  {
    const std::lock_guard<CCriticalSection> lock(m_section);
    std::swap(m_stCurrent.pTable, pTable);
  }
  // The former table, if nobody corrects with it, goes here, after the lock.
}
