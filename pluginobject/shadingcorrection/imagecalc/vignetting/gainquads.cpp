#include "pluginobject/shadingcorrection/imagecalc/vignetting/gainquads.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

namespace ffc::imagecalc {

double ComputeVignettingGain(double dMean, double dMaximum, int32_t nMaxGain)
{
  const double dGain = dMaximum / (dMean < std::numeric_limits<double>::epsilon() ? 1.0 : dMean);
  const double dLimit = nMaxGain;
  return dGain > dLimit ? dLimit : dGain;
}

uint16_t ScaleVignettingGain(double dGain, uint16_t nScale)
{
  // Below 2^47 for every gain and scale: the integer holds it before it is cut to 16 bits.
  const double dRounded = dGain * nScale + 0.5;
  return static_cast<uint16_t>(static_cast<uint64_t>(dRounded) & 0xFFFFU);
}

int32_t PackGainQuads(const uint16_t *pGains, uint32_t nGainsPerPoint, SGridSize &stSize,
                      std::unique_ptr<uint16_t[]> &pTable)
{
  if (pGains == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  const uint64_t nColumns = stSize.nColumns;
  const uint64_t nRows = stSize.nRows;
  const SGridSize stEven = {RoundUpToEven(nColumns), RoundUpToEven(nRows)};
  std::unique_ptr<uint16_t[]> pNew = AllocateArray<uint16_t>({stEven.nColumns, stEven.nRows, nGainsPerPoint});
  if (pNew == nullptr) {
    return IMAGECALC_STATUS_OUT_OF_MEMORY;
  }
  uint16_t *pOut = pNew.get();
  const auto writePoint = [&](uint64_t nRow, uint64_t nColumn) {
    pOut = nRow < nRows && nColumn < nColumns
             ? std::copy_n(pGains + (nRow * nColumns + nColumn) * nGainsPerPoint, nGainsPerPoint, pOut)
             : std::fill_n(pOut, nGainsPerPoint, uint16_t{0});
  };
  for (uint64_t nRow = 0; nRow < nRows; nRow += 2) {
    for (uint64_t nColumn = 0; nColumn < nColumns; nColumn += 2) {
      writePoint(nRow, nColumn);
      writePoint(nRow, nColumn + 1);
      writePoint(nRow + 1, nColumn);
      writePoint(nRow + 1, nColumn + 1);
    }
  }
  pTable = std::move(pNew);
  stSize = stEven;
  return IMAGECALC_STATUS_SUCCESS;
}

} // namespace ffc::imagecalc
