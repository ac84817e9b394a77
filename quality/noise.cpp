#include "quality/noise.h"

#include <algorithm>
#include <cmath>

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

/// Columns between two neighbours of one plane, in every layout.
constexpr uint32_t NEIGHBOUR = 2;

struct SPlaneSums {
  double dSum = 0;
  double dPixels = 0;
  double dSquaredSteps = 0; ///< of the pixels' sums
  double dSteps = 0;
};

SPlaneSums AddUp(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  SPlaneSums stSums;
  for (uint32_t nLine = 0; nLine < stStack.GetHeight(); ++nLine) {
    const uint32_t *pSums = stStack.GetSums(nLine);
    VisitPlaneLine(stPlane, stStack.GetWidth(), nLine, [&](uint32_t nColumn) {
      stSums.dSum += pSums[nColumn];
      stSums.dPixels += 1;
      if (nColumn >= NEIGHBOUR) {
        const double dStep = static_cast<double>(pSums[nColumn]) - static_cast<double>(pSums[nColumn - NEIGHBOUR]);
        stSums.dSquaredSteps += dStep * dStep;
        stSums.dSteps += 1;
      }
    });
  }
  return stSums;
}

} // namespace

double SumTemporalVariances(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  const uint64_t nFrames = stStack.GetFrameCount();
  if (nFrames < 2) {
    return 0;
  }
  double dTotal = 0;
  for (uint32_t nLine = 0; nLine < stStack.GetHeight(); ++nLine) {
    const uint32_t *pSums = stStack.GetSums(nLine);
    uint64_t nSquaredSums = 0;
    VisitPlaneLine(stPlane, stStack.GetWidth(), nLine,
                   [&](uint32_t nColumn) { nSquaredSums += static_cast<uint64_t>(pSums[nColumn]) * pSums[nColumn]; });
    // Exact in whole numbers: the difference of two large, nearly equal sums.
    dTotal += static_cast<double>(nFrames * stStack.GetSquareSum(stPlane, nLine) - nSquaredSums);
  }
  return dTotal / (static_cast<double>(nFrames) * static_cast<double>(nFrames - 1));
}

SNoise MeasureNoise(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  SNoise stNoise;
  stNoise.strName = stPlane.strName;
  const SPlaneSums stSums = AddUp(stStack, stPlane);
  if (stSums.dPixels == 0 || stStack.GetFrameCount() == 0) {
    return stNoise;
  }
  const double dFrames = stStack.GetFrameCount();
  const double dTemporal = SumTemporalVariances(stStack, stPlane) / stSums.dPixels;
  const double dStep = stSums.dSteps > 0 ? stSums.dSquaredSteps / (stSums.dSteps * dFrames * dFrames) : 0;
  stNoise.dMean = stSums.dSum / (stSums.dPixels * dFrames);
  stNoise.dTemporal = std::sqrt(dTemporal);
  stNoise.dPattern = std::sqrt(std::max(0.0, dStep / 2 - dTemporal / dFrames));
  return stNoise;
}

std::vector<SNoise> MeasureNoise(const CFrameStack &stStack, EColorLayout eLayout)
{
  std::vector<SNoise> listNoise;
  for (const SColorPlane &stPlane : GetColorPlanes(eLayout)) {
    listNoise.push_back(MeasureNoise(stStack, stPlane));
  }
  return listNoise;
}

} // namespace ffc::quality
