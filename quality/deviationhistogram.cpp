#include "quality/deviationhistogram.h"

#include <algorithm>
#include <cmath>

namespace ffc::quality {
namespace {

constexpr double MAX_BINS = 256.0;
constexpr double TWO_PI = 6.283185307179586;

/// Whole bins in so many. Pixels of a mean image lie on the edges of bins, where rounding must not move them below.
double CountWhole(double dBins)
{
  constexpr double SLACK = 1e-6;
  return std::floor(dBins + SLACK);
}

SDeviationHistogram Count(const std::vector<double> &listValues, uint32_t nFrames)
{
  SDeviationHistogram stHistogram;
  if (listValues.empty()) {
    return stHistogram;
  }
  const auto [itMin, itMax] = std::minmax_element(listValues.begin(), listValues.end());
  const double dSteps = nFrames * (*itMax - *itMin);
  const double dInterval = CountWhole(dSteps / MAX_BINS) + 1.0;
  stHistogram.dFirst = *itMin;
  stHistogram.dWidth = dInterval / nFrames;
  stHistogram.listCounts.assign(static_cast<std::size_t>(CountWhole(dSteps / dInterval)) + 1, 0);
  for (const double dValue : listValues) {
    const auto nBin = static_cast<std::size_t>(CountWhole((dValue - stHistogram.dFirst) / stHistogram.dWidth));
    ++stHistogram.listCounts[std::min(nBin, stHistogram.listCounts.size() - 1)];
  }
  return stHistogram;
}

} // namespace

double GetDeviation(const SDeviationImage &stImage)
{
  double dSquares = 0;
  for (const double dValue : stImage.listValues) {
    dSquares += dValue * dValue;
  }
  return stImage.listValues.empty() ? 0 : std::sqrt(dSquares / static_cast<double>(stImage.listValues.size()));
}

SDeviationHistogram MakeLogarithmicHistogram(const SDeviationImage &stImage)
{
  SDeviationHistogram stHistogram = Count(stImage.listValues, stImage.nFrames);
  const double dSigma = GetDeviation(stImage);
  const double dPeak =
    dSigma > 0 ? static_cast<double>(stImage.listValues.size()) * stHistogram.dWidth / (std::sqrt(TWO_PI) * dSigma) : 0;
  for (std::size_t nBin = 0; nBin < stHistogram.listCounts.size(); ++nBin) {
    const double dAt = stHistogram.dFirst + (static_cast<double>(nBin) + 0.5) * stHistogram.dWidth;
    stHistogram.listNormal.push_back(dPeak > 0 ? dPeak * std::exp(-dAt * dAt / (2 * dSigma * dSigma)) : 0);
  }
  return stHistogram;
}

SDeviationHistogram MakeAccumulatedHistogram(const SDeviationImage &stImage)
{
  std::vector<double> listAbsolute(stImage.listValues.size());
  std::transform(stImage.listValues.begin(), stImage.listValues.end(), listAbsolute.begin(),
                 [](double dValue) { return std::abs(dValue); });
  SDeviationHistogram stHistogram = Count(listAbsolute, stImage.nFrames);
  for (std::size_t nBin = stHistogram.listCounts.size(); nBin-- > 1;) {
    stHistogram.listCounts[nBin - 1] += stHistogram.listCounts[nBin];
  }
  return stHistogram;
}

uint64_t CountOutliers(const SDeviationImage &stImage, double dThreshold)
{
  return static_cast<uint64_t>(std::count_if(stImage.listValues.begin(), stImage.listValues.end(),
                                             [&](double dValue) { return std::abs(dValue) > dThreshold; }));
}

} // namespace ffc::quality
