/// \file
/// The two histograms by which EMVA 1288 finds defect pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "quality/deviationimage.h"

namespace ffc::quality {

/// Pixels by their deviation from the mean. Bins are whole multiples of the step of a mean image, 1 / L, and at most
/// 256 and one.
struct SDeviationHistogram {
  double dFirst = 0; ///< lower end of the first bin, DN
  double dWidth = 0; ///< DN
  std::vector<uint64_t> listCounts;
  std::vector<double> listNormal; ///< counts of a normal distribution of the same variance, for comparison
};

/// For the logarithmic plot: bumps and tails beside the normal distribution are outliers.
SDeviationHistogram MakeLogarithmicHistogram(const SDeviationImage &stImage);

/// Of absolute deviations, added up from the largest down: listCounts[n] pixels deviate by at least
/// dFirst + n * dWidth. No normal distribution.
SDeviationHistogram MakeAccumulatedHistogram(const SDeviationImage &stImage);

/// Pixels that deviate by more than a threshold in DN.
uint64_t CountOutliers(const SDeviationImage &stImage, double dThreshold);

/// Standard deviation of the image, DN, noise and all.
double GetDeviation(const SDeviationImage &stImage);

} // namespace ffc::quality
