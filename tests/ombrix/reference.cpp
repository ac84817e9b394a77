#include "tests/ombrix/reference.h"

#include <algorithm>

namespace {

int64_t RoundHalfUp(int64_t nNumerator, int64_t nDenominator)
{
  return (2 * nNumerator + nDenominator) / (2 * nDenominator);
}

int64_t PowerOfTwo(int nExponent)
{
  int64_t nPower = 1;
  while (nExponent-- > 0) {
    nPower *= 2;
  }
  return nPower;
}

} // namespace

int64_t GetReferenceGain(int64_t nBright, int64_t nDark, int64_t nTarget, int nBitDepth)
{
  const int64_t nMax = PowerOfTwo(nBitDepth) - 1;
  const int64_t nSignal = std::min(nBright, nMax) - std::min(nDark, nMax);
  return nSignal <= 0 ? 65535 : std::min<int64_t>(65535, RoundHalfUp(nTarget * 4096, nSignal));
}

int64_t GetReferencePixel(int64_t nSource, int64_t nLevel, int64_t nGain, int nBitDepth)
{
  const int64_t nMax = PowerOfTwo(nBitDepth) - 1;
  const int64_t nLevelUnit = PowerOfTwo(16 - nBitDepth);
  const int64_t nSignal = std::max<int64_t>(0, std::min(nSource, nMax) * nLevelUnit - nLevel);
  return std::min(nMax, RoundHalfUp(nSignal * nGain, nLevelUnit * 4096));
}
