/// \file
/// The packed gain table of a vignetting correction.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/gridring.h"

/// A number of points along a side of a grid, rounded up to whole quads.
template <typename TSide>
constexpr TSide RoundUpToEven(TSide nPoints)
{
  return nPoints + nPoints % 2;
}

/// Regroups the gains of a grid into quads of 2x2 points, row by row; the points of a quad are top left, top
/// right, bottom left, bottom right. Points beyond an odd side have gains of zero.
/// \param pGains the points of the grid, row by row
/// \param nGainsPerPoint 1, or 3 (R, G, B)
/// \param stSize in: the grid's; out: rounded up to even numbers, which is the table's
/// \return an EImageCalcStatus; -101 for missing gains, -103 when there is no memory; nothing is changed then
int32_t PackGainQuads(const uint16_t *pGains, uint32_t nGainsPerPoint, SGridSize &stSize,
                      std::unique_ptr<uint16_t[]> &pTable);
