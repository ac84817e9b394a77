/// \file
/// From the points of a block grid to the pixels between them.
#pragma once

#include <cstdint>
#include <vector>

#include "camera/software/selfcorrection/blocklayout.h"
#include "camera/software/selfcorrection/blocktable.h"

namespace ffc::camera {

/// Bilinear interpolation. A point stands in the middle of its block, one of the ring in the middle of
/// the block that would lie there; so every pixel has points on all sides.
class CGridSampler {
public:
  /// \param stLayout has a table
  explicit CGridSampler(const SBlockLayout &stLayout);

  /// Every second pixel of a row.
  /// \param nFirstX 0 or 1
  /// \param dFactor multiplies each result
  /// \param pRow one value for each pixel of the row; those between are left alone
  void SampleRow(const GridPlane &listPlane, uint32_t nY, uint32_t nFirstX, double dFactor, float *pRow);

private:
  /// Between the point nPoint and the next one.
  struct SPosition {
    uint32_t nPoint;
    double dWeightOfNext;
  };
  SPosition Locate(uint32_t nPixel) const;

  uint32_t m_nBlockSide;
  uint32_t m_nColumns;
  std::vector<SPosition> m_listColumns; ///< by pixel of a row
  std::vector<double> m_listBlended;    ///< scratch: the grid's columns at the height of a row
};

} // namespace ffc::camera
