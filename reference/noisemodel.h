/// \file
/// Noise of averaged frames: from the light, from the camera, and from the rounding of samples.
#pragma once

#include <cstdint>

namespace ffc::reference {

/// Variance of one sample in time, DN^2: that in the dark plus a part that grows with the light (photon transfer).
struct SSampleNoise {
  double dDark = 0;
  double dPerLevel = 0; ///< DN^2 per DN
  double dLine = 0;     ///< DN^2 besides, that all samples of a line share

  double At(double dLevel) const { return dDark + dPerLevel * (dLevel > 0 ? dLevel : 0); }
};

/// Variance of an average, DN^2, as the kernels take it.
struct SFieldNoise {
  float fConstant = 0;
  float fPerLevel = 0;
  float fLine = 0;

  float At(float fLevel) const { return fConstant + fPerLevel * (fLevel > 0 ? fLevel : 0.0F); }
};

/// What averaging does not take away of the rounding to whole numbers, DN^2: 1/12 where the noise is too small to
/// spread the samples over several numbers, nothing where it is larger than half a DN. \param dVariance of the sample
/// before rounding
double GetRoundingVariance(double dVariance);

/// Variance before rounding, from that in time of the rounded samples.
double RemoveRounding(double dMeasured);

/// Noise of the average of so many frames.
/// \param dLevel mean level, DN, for the part that averaging leaves
SFieldNoise AverageNoise(const SSampleNoise &stNoise, uint32_t nFrames, double dLevel);

} // namespace ffc::reference
