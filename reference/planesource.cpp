#include "reference/planesource.h"

#include <algorithm>

#include "reference/scales.h"

namespace ffc::reference {

std::vector<SPlane> GetPlanes(uint32_t nWidth, uint32_t nHeight, bool bMosaic)
{
  const uint32_t nStep = bMosaic ? 2 : 1;
  std::vector<SPlane> listPlanes;
  for (uint32_t nLine = 0; nLine < nStep; ++nLine) {
    for (uint32_t nColumn = 0; nColumn < nStep; ++nColumn) {
      if (nColumn < nWidth && nLine < nHeight) {
        listPlanes.push_back({nColumn, nLine, nStep, (nWidth - nColumn + nStep - 1) / nStep,
                              (nHeight - nLine + nStep - 1) / nStep, nWidth});
      }
    }
  }
  return listPlanes;
}

float CPlaneSource::Read(std::size_t nIndex) const
{
  const float fDark = m_pDark == nullptr ? 0.0F : static_cast<float>(m_pDark[nIndex]) * m_fDarkScale;
  return static_cast<float>(m_pSums[nIndex]) * m_fScale - fDark;
}

void CPlaneSource::ReadLine(int64_t nLine, int64_t nFirst, uint32_t nCount, float *pTo) const
{
  const uint32_t nWithin = Mirror(nLine, m_stPlane.nHeight);
  const int64_t nLast = std::min<int64_t>(nFirst + nCount, m_stPlane.nWidth);
  const int64_t nInner = std::max<int64_t>(nFirst, 0);
  int64_t n = nFirst;
  for (; n < std::min(nInner, nFirst + nCount); ++n) {
    *pTo++ = Read(m_stPlane.GetIndex(Mirror(n, m_stPlane.nWidth), nWithin));
  }
  if (n < nLast) {
    const std::size_t nBegin = m_stPlane.GetIndex(static_cast<uint32_t>(n), nWithin);
    const auto nRun = static_cast<std::size_t>(nLast - n);
    for (std::size_t i = 0; i < nRun; ++i) {
      pTo[i] = Read(nBegin + i * m_stPlane.nStep);
    }
    pTo += nRun;
    n = nLast;
  }
  for (; n < nFirst + nCount; ++n) {
    *pTo++ = Read(m_stPlane.GetIndex(Mirror(n, m_stPlane.nWidth), nWithin));
  }
}

} // namespace ffc::reference
