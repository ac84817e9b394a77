#include "quality/belonging.h"

#include <cmath>
#include <vector>

#include "quality/noise.h"

namespace ffc::quality {

namespace {

/// Standard deviations from 0 by which a correlation is none of chance.
constexpr double SIGNIFICANT = 6.0;
/// Share of the pattern in what is seen of it besides noise, from which on it counts as seen.
constexpr double VISIBLE = 0.1;
constexpr uint16_t HELD_GAIN = 65535;
constexpr std::size_t STEP = 2; ///< to the next pixel of the same colour

/// Sums for a correlation of two quantities.
struct SCorrelation {
  uint64_t nCount = 0;
  double dX = 0, dY = 0, dXX = 0, dYY = 0, dXY = 0;

  void Add(double dOne, double dOther)
  {
    ++nCount;
    dX += dOne;
    dY += dOther;
    dXX += dOne * dOne;
    dYY += dOther * dOther;
    dXY += dOne * dOther;
  }

  double Get() const
  {
    const auto dCount = static_cast<double>(nCount);
    const double dVariances = (dXX - dX * dX / dCount) * (dYY - dY * dY / dCount);
    return nCount == 0 || !(dVariances > 0) ? 0 : (dXY - dX * dY / dCount) / std::sqrt(dVariances);
  }
};

double GetCurvature(const std::vector<double> &listValues, std::size_t n)
{
  return listValues[n] - 2.0 * listValues[n + STEP] + listValues[n + 2 * STEP];
}

/// \param listExpected 0 where nothing is expected
void AddLine(const std::vector<double> &listSignal, const std::vector<double> &listExpected,
             SCorrelation &stCorrelation)
{
  for (std::size_t n = 0; n + 2 * STEP < listSignal.size(); ++n) {
    if (listExpected[n] > 0 && listExpected[n + STEP] > 0 && listExpected[n + 2 * STEP] > 0) {
      stCorrelation.Add(GetCurvature(listSignal, n), GetCurvature(listExpected, n));
    }
  }
}

/// Whether the frames show a pattern at all.
bool IsPatternVisible(const CFrameStack &stack)
{
  const SNoise stNoise = MeasureNoise(stack, GetWholeImagePlane());
  const double dNoise = stNoise.dTemporal * stNoise.dTemporal / stack.GetFrameCount();
  return stNoise.dPattern * stNoise.dPattern > VISIBLE * dNoise;
}

} // namespace

SBelonging JudgeBelonging(const CFrameStack &stack, const uint16_t *pGains)
{
  SCorrelation stCorrelation;
  std::vector<double> listSignal(stack.GetWidth());
  std::vector<double> listExpected(stack.GetWidth());
  for (uint32_t nLine = 0; nLine < stack.GetHeight(); ++nLine, pGains += stack.GetWidth()) {
    for (uint32_t nColumn = 0; nColumn < stack.GetWidth(); ++nColumn) {
      listSignal[nColumn] = stack.GetMean(nColumn, nLine);
      listExpected[nColumn] = pGains[nColumn] > 0 && pGains[nColumn] < HELD_GAIN ? 1.0 / pGains[nColumn] : 0.0;
    }
    AddLine(listSignal, listExpected, stCorrelation);
  }
  SBelonging stBelonging;
  stBelonging.dCorrelation = stCorrelation.Get();
  const double dChance = SIGNIFICANT / std::sqrt(static_cast<double>(stCorrelation.nCount) + 1);
  if (stBelonging.dCorrelation > dChance) {
    stBelonging.eBelonging = EBelonging::Yes;
  } else if (stack.GetFrameCount() > 1 && IsPatternVisible(stack)) {
    stBelonging.eBelonging = EBelonging::No;
  }
  return stBelonging;
}

} // namespace ffc::quality
