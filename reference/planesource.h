/// \file
/// One colour plane of averaged frames, read line by line out of their sums.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ffc::reference {

/// The samples of one colour: every one of a monochrome image, one of each cell of 2 x 2 of a mosaic.
struct SPlane {
  uint32_t nFirstColumn = 0;
  uint32_t nFirstLine = 0;
  uint32_t nStep = 1;
  uint32_t nWidth = 0; ///< samples of the plane
  uint32_t nHeight = 0;
  uint32_t nImageWidth = 0;

  std::size_t GetIndex(uint32_t nColumn, uint32_t nLine) const
  {
    return (static_cast<std::size_t>(nLine) * nStep + nFirstLine) * nImageWidth +
           static_cast<std::size_t>(nColumn) * nStep + nFirstColumn;
  }
  /// Which site of the cell it is: (line & 1) * 2 + (column & 1); 0 for a monochrome image.
  uint32_t GetSite() const { return nFirstLine * 2 + nFirstColumn; }
};

/// One plane, or the four of a mosaic; without those that have no sample.
std::vector<SPlane> GetPlanes(uint32_t nWidth, uint32_t nHeight, bool bMosaic);

/// Averages of one plane less the dark level, DN. Any number of threads may read.
class CPlaneSource {
public:
  /// \param pSums of the whole image
  /// \param fScale what makes an average of a sum
  /// \param pDark dark level of the whole image, left-justified in 16 bits; null: none
  /// \param fDarkScale what makes DN of it
  CPlaneSource(const SPlane &stPlane, const uint32_t *pSums, float fScale, const uint16_t *pDark, float fDarkScale)
    : m_stPlane(stPlane), m_pSums(pSums), m_fScale(fScale), m_pDark(pDark), m_fDarkScale(fDarkScale)
  {
  }

  const SPlane &GetPlane() const { return m_stPlane; }

  /// A run of a line; what lies beyond an edge is reflected there.
  void ReadLine(int64_t nLine, int64_t nFirst, uint32_t nCount, float *pTo) const;

private:
  float Read(std::size_t nIndex) const;

  SPlane m_stPlane;
  const uint32_t *m_pSums;
  float m_fScale;
  const uint16_t *m_pDark;
  float m_fDarkScale;
};

} // namespace ffc::reference
