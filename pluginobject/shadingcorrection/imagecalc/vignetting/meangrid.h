/// \file
/// Grids of block means, one plane for each colour.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/blockpadding.h"

namespace ffc::imagecalc {

/// Points of a grid.
struct SGridSize {
  uint64_t nColumns = 0;
  uint64_t nRows = 0;
};

/// Fills the ring of one plane: the top row and the bottom row without their corners, then the left and the
/// right column with them. A point carries the two points inward of it on in a straight line when the grid has
/// more than 4 points in that direction, else it copies its inner neighbour. No point falls below 0.
/// \param pPlane means, row by row
/// \param stSize the ring included, at least 3 each way
void FillGridRing(double *pPlane, const SGridSize &stSize);

constexpr uint32_t MAX_GRID_PLANES = 3;

/// Block means and a ring of extrapolated points around them.
struct SMeanGrid {
  /// Planes one after another (R, G, B or the only one), each row by row.
  std::unique_ptr<double[]> pMeans;
  uint32_t nPlanes = 0; ///< at most MAX_GRID_PLANES
  SGridSize stSize;     ///< the ring included
  /// The largest mean of each plane, the ring left out.
  double adMaxima[MAX_GRID_PLANES] = {};

  uint64_t CountPoints() const { return stSize.nColumns * stSize.nRows; }

  /// Sets a point that is not in the ring, and raises the maxima to it.
  void SetMeans(uint64_t nPoint, const double *pPointMeans)
  {
    for (uint32_t nPlane = 0; nPlane < nPlanes; ++nPlane) {
      const double dMean = pPointMeans[nPlane];
      pMeans[nPlane * CountPoints() + nPoint] = dMean;
      adMaxima[nPlane] = dMean > adMaxima[nPlane] ? dMean : adMaxima[nPlane];
    }
  }
};

/// Blocks that are measured at a time.
constexpr uint64_t MEASURED_BLOCKS = 64;

/// Measures the blocks of one row of the grid. For the parameters see MeasureBlocks.
/// \param nRow of the grid, not in the ring
template <class TPixel, class TMeasure>
void MeasureGridRow(const SPaddedImage<TPixel> &stImage, const SBlockSize &stBlock, uint64_t nRow, TMeasure fnMeasure,
                    SMeanGrid &stGrid)
{
  const uint64_t nBlocks = stGrid.stSize.nColumns - 2;
  const TPixel *const pPixels = stImage.pPixels.get() + (nRow - 1) * stBlock.nHeight * stImage.nWidth;
  for (uint64_t nFirst = 0; nFirst < nBlocks; nFirst += MEASURED_BLOCKS) {
    const uint64_t nCount = std::min(nBlocks - nFirst, MEASURED_BLOCKS);
    double adMeans[MEASURED_BLOCKS * MAX_GRID_PLANES];
    fnMeasure(SBlockRow{pPixels + nFirst * stBlock.nWidth, static_cast<std::size_t>(stImage.nWidth), stBlock.nHeight,
                        static_cast<std::size_t>(nCount * stBlock.nWidth), stBlock.nWidth},
              static_cast<double *>(adMeans));
    for (uint64_t nBlock = 0; nBlock < nCount; ++nBlock) {
      stGrid.SetMeans(nRow * stGrid.stSize.nColumns + 1 + nFirst + nBlock, adMeans + nBlock * stGrid.nPlanes);
    }
  }
}

/// Measures every block of an image and extrapolates the ring.
/// \param nPlanes at most MAX_GRID_PLANES
/// \param fnMeasure called with an SBlockRow and with where to write nPlanes means for each of its blocks
/// \return a status of calcstatus.h; -103 when there is no memory, stGrid then being unchanged
template <class TPixel, class TMeasure>
[[nodiscard]] int32_t MeasureBlocks(const SPaddedImage<TPixel> &stImage, const SBlockSize &stBlock, uint32_t nPlanes,
                                    TMeasure fnMeasure, SMeanGrid &stGrid)
{
  const uint64_t nColumns = stImage.nWidth / stBlock.nWidth + 2;
  const uint64_t nRows = stImage.nHeight / stBlock.nHeight + 2;
  SMeanGrid stNew;
  stNew.nPlanes = nPlanes;
  stNew.stSize = {nColumns, nRows};
  stNew.pMeans = AllocateArray<double>({nColumns, nRows, nPlanes});
  if (stNew.pMeans == nullptr) {
    return IMAGECALC_STATUS_OUT_OF_MEMORY;
  }
  for (uint64_t nRow = 1; nRow + 1 < nRows; ++nRow) {
    MeasureGridRow(stImage, stBlock, nRow, fnMeasure, stNew);
  }
  for (uint32_t nPlane = 0; nPlane < nPlanes; ++nPlane) {
    FillGridRing(stNew.pMeans.get() + nPlane * stNew.CountPoints(), stNew.stSize);
  }
  stGrid = std::move(stNew);
  return IMAGECALC_STATUS_SUCCESS;
}

} // namespace ffc::imagecalc
