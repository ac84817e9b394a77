#include "reference/noisemodel.h"

#include <cmath>

namespace ffc::reference {

double GetRoundingVariance(double dVariance)
{
  constexpr double PI = 3.14159265358979323846;
  constexpr uint32_t HARMONICS = 200;
  double dSum = 0;
  for (uint32_t n = 1; n <= HARMONICS; ++n) {
    const double dSquare = static_cast<double>(n) * n;
    const double dPart = std::exp(-4 * PI * PI * dSquare * dVariance) / (2 * PI * PI * dSquare);
    dSum += dPart;
    if (dPart < 1e-9) {
      break;
    }
  }
  return dSum;
}

double RemoveRounding(double dMeasured)
{
  // What is measured in time is the variance + 1/12 - what rounding leaves; it rises with the variance.
  double dLow = 0;
  double dHigh = dMeasured + 1;
  for (int n = 0; n < 60; ++n) {
    const double dMiddle = (dLow + dHigh) / 2;
    (dMiddle + 1.0 / 12 - GetRoundingVariance(dMiddle) < dMeasured ? dLow : dHigh) = dMiddle;
  }
  return dLow;
}

SFieldNoise AverageNoise(const SSampleNoise &stNoise, uint32_t nFrames, double dLevel)
{
  const double dRounding = GetRoundingVariance(RemoveRounding(stNoise.At(dLevel)));
  // Never none at all: energies are counted in units of it.
  constexpr double SMALLEST = 1e-6;
  return {static_cast<float>(stNoise.dDark / nFrames + dRounding + SMALLEST),
          static_cast<float>(stNoise.dPerLevel / nFrames), static_cast<float>(stNoise.dLine / nFrames)};
}

} // namespace ffc::reference
