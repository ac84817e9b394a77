#include "camera/software/selfcorrection/gridsampler.h"

#include <cstddef>

namespace ffc::camera {

CGridSampler::CGridSampler(const SBlockLayout &stLayout)
  : m_nBlockSide(stLayout.nBlockSide), m_nColumns(stLayout.GetColumns()), m_listBlended(m_nColumns)
{
  m_listColumns.reserve(stLayout.nWidth);
  for (uint32_t nX = 0; nX < stLayout.nWidth; ++nX) {
    m_listColumns.push_back(Locate(nX));
  }
}

void CGridSampler::SampleRow(const GridPlane &listPlane, uint32_t nY, uint32_t nFirstX, double dFactor, float *pRow)
{
  const SPosition stRow = Locate(nY);
  const double *pUpper = listPlane.data() + std::size_t{stRow.nPoint} * m_nColumns;
  const double *pLower = pUpper + m_nColumns;
  for (std::size_t nColumn = 0; nColumn < m_nColumns; ++nColumn) {
    m_listBlended[nColumn] = pUpper[nColumn] + stRow.dWeightOfNext * (pLower[nColumn] - pUpper[nColumn]);
  }
  for (std::size_t nX = nFirstX; nX < m_listColumns.size(); nX += 2) {
    const SPosition &stColumn = m_listColumns[nX];
    const double dLeft = m_listBlended[stColumn.nPoint];
    const double dRight = m_listBlended[stColumn.nPoint + 1];
    pRow[nX] = static_cast<float>((dLeft + stColumn.dWeightOfNext * (dRight - dLeft)) * dFactor);
  }
}

// In half pixels: the middle of pixel n lies at 2 n + 1, that of block b at (2 b + 1) sides, and the ring
// comes a block earlier.
CGridSampler::SPosition CGridSampler::Locate(uint32_t nPixel) const
{
  const uint32_t nBlock = 2 * m_nBlockSide;
  const uint32_t nFromRing = 2 * nPixel + 1 + m_nBlockSide;
  return {nFromRing / nBlock, static_cast<double>(nFromRing % nBlock) / nBlock};
}

} // namespace ffc::camera
