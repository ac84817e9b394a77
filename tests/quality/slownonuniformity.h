/// \file
/// The spatial figures of EMVA 1288 as its formulas read, in loops over loops.
#pragma once

#include <cstdint>
#include <vector>

/// Rows of values.
using SlowImage = std::vector<std::vector<double>>;

/// The filters one after the other, each pixel from all its neighbours; positions beyond the border are mirrored.
SlowImage FilterSlowly(const SlowImage &image);
/// Less the mean of 5 x 5, where all of them are there.
SlowImage FilterAsInRelease3Slowly(const SlowImage &image);
/// Without so many pixels at each border.
SlowImage Crop(const SlowImage &image, std::size_t nBorder);

struct SSlowVariances {
  double dMean = 0;
  double dTemporal = 0;
  double dMeasured = 0;
  double dTotal = 0;
  double dRow = 0;
  double dColumn = 0;
  double dPixel = 0;
};
SSlowVariances MeasureVariancesSlowly(const std::vector<SlowImage> &listFrames);

SlowImage AverageSlowly(const std::vector<SlowImage> &listFrames);
/// Power of the rows' Fourier transforms, from the sum that defines it.
std::vector<double> MakeSpectrogramSlowly(const SlowImage &image);
SlowImage Transpose(const SlowImage &image);

/// Pixels by the sums of their frames, which are whole numbers, in whole numbers: bins of so many steps that there are
/// at most 256 and one.
struct SSlowHistogram {
  double dFirst = 0;
  double dWidth = 0;
  std::vector<uint64_t> listCounts;
  std::vector<double> listNormal;
};
SSlowHistogram MakeHistogramSlowly(const std::vector<SlowImage> &listFrames);
