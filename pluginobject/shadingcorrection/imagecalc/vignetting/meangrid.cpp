#include "pluginobject/shadingcorrection/imagecalc/vignetting/meangrid.h"

#include <cstddef>

namespace ffc::imagecalc {

namespace {

// The ring included; a grid of 4 has just two measured points in a line.
constexpr uint64_t LARGEST_COPIED_SIDE = 4;

// One side of the ring, as steps within the plane.
struct SRingSide {
  double *pFirst;
  std::ptrdiff_t nPoints;
  std::ptrdiff_t nAlong;  // to the next point of the side
  std::ptrdiff_t nInward; // to the inner neighbour
};

void FillSide(const SRingSide &stSide, bool bExtrapolate)
{
  for (std::ptrdiff_t i = 0; i < stSide.nPoints; ++i) {
    double *const pPoint = stSide.pFirst + i * stSide.nAlong;
    const double dInner = pPoint[stSide.nInward];
    const double dValue = bExtrapolate ? 2.0 * dInner - pPoint[2 * stSide.nInward] : dInner;
    *pPoint = dValue > 0.0 ? dValue : 0.0;
  }
}

} // namespace

void FillGridRing(double *pPlane, const SGridSize &stSize)
{
  const auto nColumns = static_cast<std::ptrdiff_t>(stSize.nColumns);
  const auto nRows = static_cast<std::ptrdiff_t>(stSize.nRows);
  const bool bExtrapolateRows = stSize.nRows > LARGEST_COPIED_SIDE;
  FillSide({pPlane + 1, nColumns - 2, 1, nColumns}, bExtrapolateRows);
  FillSide({pPlane + (nRows - 1) * nColumns + 1, nColumns - 2, 1, -nColumns}, bExtrapolateRows);
  const bool bExtrapolateColumns = stSize.nColumns > LARGEST_COPIED_SIDE;
  FillSide({pPlane, nRows, nColumns, 1}, bExtrapolateColumns);
  FillSide({pPlane + (nColumns - 1), nRows, nColumns, -1}, bExtrapolateColumns);
}

} // namespace ffc::imagecalc
