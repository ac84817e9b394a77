/// \file
/// The gain of one grid point.
#pragma once

#include <cstdint>

/// The factor that lifts a mean to the maximum of its plane, at most nMaxGain. A mean of next to nothing
/// counts as 1.
/// \param dMean, dMaximum not negative
/// \param nMaxGain at least 1
double ComputeVignettingGain(double dMean, double dMaximum, int32_t nMaxGain);

/// A gain in fixed point, rounded half up; its low 16 bits.
/// \param dGain 0 to 2147483647
/// \param nScale stands for a gain of 1
uint16_t ScaleVignettingGain(double dGain, uint16_t nScale);
