/// \file
/// The two things that a bright reference weighs against each other: noise in time, and the pixels' own pattern.
#pragma once

#include <string>
#include <vector>

#include "quality/framestack.h"

namespace ffc::quality {

/// Of one colour plane, in DN.
struct SNoise {
  std::string strName;  ///< the plane's
  double dMean = 0;     ///< of the plane
  double dTemporal = 0; ///< standard deviation of one pixel from frame to frame, averaged over the plane
  double dPattern = 0;  ///< standard deviation from pixel to pixel, without shading and freed of temporal noise
};

/// Sum over the plane of each pixel's temporal variance, in DN^2 (divisor L - 1); 0 for fewer than two frames.
double SumTemporalVariances(const CFrameStack &stStack, const SColorPlane &stPlane);

/// Measures one plane of a stack of L frames.
///
/// The pattern is taken from neighbours in a line, two columns apart: with d their difference in the mean image,
/// s^2 = mean(d^2) / 2 - s^2_temporal / L. Shading, which changes little over two columns, so leaves no trace;
/// the pattern is taken as uncorrelated from pixel to pixel. 0 when noise drowns it.
SNoise MeasureNoise(const CFrameStack &stStack, const SColorPlane &stPlane);

/// All planes of a layout.
std::vector<SNoise> MeasureNoise(const CFrameStack &stStack, genapi::EColorLayout eLayout);

} // namespace ffc::quality
