#include "quality/pairedstacks.h"

#include <functional>
#include <string_view>

namespace ffc::quality {

using genapi::SSensorFormat;

namespace {

template <class TSample>
uint64_t CountNewlyClipped(const void *pRaw, const void *pCorrected, std::size_t nSamples, uint32_t nMaximum)
{
  const TSample *pBefore = static_cast<const TSample *>(pRaw);
  const TSample *pAfter = static_cast<const TSample *>(pCorrected);
  uint64_t nCount = 0;
  for (std::size_t nSample = 0; nSample < nSamples; ++nSample) {
    nCount += pAfter[nSample] >= nMaximum && pBefore[nSample] < nMaximum ? 1U : 0U;
  }
  return nCount;
}

} // namespace

bool CPairedStacks::Prepare(uint32_t nWidth, uint32_t nHeight, const SSensorFormat &stFormat)
{
  m_watch = CLightWatch();
  m_setSeen.clear();
  m_nRepeated = 0;
  m_nNewlyClipped = 0;
  const bool bPrepared = m_stackRaw.Prepare(nWidth, nHeight, stFormat.nBitDepth) &&
                         m_stackCorrected.Prepare(nWidth, nHeight, stFormat.nBitDepth);
  m_stackRaw.AlsoFilter(stFormat.eLayout);
  m_stackCorrected.AlsoFilter(stFormat.eLayout);
  return bPrepared;
}

double CPairedStacks::GetNewlyClippedPercent() const
{
  const double dSamples =
    static_cast<double>(m_stackRaw.GetWidth()) * m_stackRaw.GetHeight() * m_stackRaw.GetFrameCount();
  return dSamples > 0 ? 100.0 * static_cast<double>(m_nNewlyClipped) / dSamples : 0.0;
}

bool CPairedStacks::Add(const void *pRaw, const void *pCorrected, std::size_t nSize)
{
  if (pRaw == nullptr || pCorrected == nullptr || nSize == 0 || nSize != m_stackRaw.GetFrameSize()) {
    return false;
  }
  const std::string_view strBytes(static_cast<const char *>(pRaw), nSize);
  if (!m_setSeen.insert(std::hash<std::string_view>()(strBytes)).second) {
    ++m_nRepeated;
    return true;
  }
  const uint32_t nMaximum = m_stackRaw.GetMaximum();
  const bool bWide = m_stackRaw.GetBitDepth() > 8;
  m_nNewlyClipped += bWide ? CountNewlyClipped<uint16_t>(pRaw, pCorrected, nSize / 2, nMaximum)
                           : CountNewlyClipped<uint8_t>(pRaw, pCorrected, nSize, nMaximum);
  m_watch.Add(pRaw, m_stackRaw.GetWidth(), m_stackRaw.GetHeight(), bWide ? 2 : 1);
  return m_stackRaw.Add(pRaw, nSize) && m_stackCorrected.Add(pCorrected, nSize);
}

} // namespace ffc::quality
