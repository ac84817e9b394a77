/// \file
/// The packed gain table of a vignetting correction.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/meangrid.h"

namespace ffc::imagecalc {

/// The factor that lifts a mean to the maximum of its plane, at most nMaxGain. A mean of next to nothing
/// counts as 1.
/// \param dMean, dMaximum not negative
/// \param nMaxGain at least 1
double ComputeVignettingGain(double dMean, double dMaximum, int32_t nMaxGain);

/// A gain in fixed point, rounded half up; its low 16 bits.
/// \param dGain 0 to 2147483647
/// \param nScale stands for a gain of 1
uint16_t ScaleVignettingGain(double dGain, uint16_t nScale);

/// A number of points along a side of a grid, rounded up to whole quads.
template <class TSide>
constexpr TSide RoundUpToEven(TSide nPoints)
{
  return nPoints + nPoints % 2;
}

/// Regroups the gains of a grid into quads of 2x2 points, row by row; the points of a quad are top left, top
/// right, bottom left, bottom right. Points beyond an odd side have gains of zero.
/// \param pGains the points of the grid, row by row
/// \param nGainsPerPoint 1, or 3 (R, G, B)
/// \param stSize in: the grid's; out: rounded up to even numbers, which is the table's
/// \return a status of calcstatus.h; -101 for missing gains, -103 when there is no memory; nothing is changed then
[[nodiscard]] int32_t PackGainQuads(const uint16_t *pGains, uint32_t nGainsPerPoint, SGridSize &stSize,
                                    std::unique_ptr<uint16_t[]> &pTable);

} // namespace ffc::imagecalc
