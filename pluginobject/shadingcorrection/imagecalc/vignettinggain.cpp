#include "pluginobject/shadingcorrection/imagecalc/vignettinggain.h"

#include <limits>

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
