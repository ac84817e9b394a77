/// \file
/// The spectrograms by which EMVA 1288 finds periodic patterns.
#pragma once

#include <vector>

#include "quality/deviationimage.h"

namespace ffc::quality {

/// Mean power of the lines' discrete Fourier transform, DN^2, divided by the length so that white noise of variance s^2
/// has s^2 at each frequency: p[k] = 1 / (M N) sum over lines |sum over columns y exp(-2 pi i k n / N)|^2, for
/// k = 0 to N / 2, k / N periods per pixel.
std::vector<double> MakeHorizontalSpectrogram(const SDeviationImage &stImage);

/// The same down the columns.
std::vector<double> MakeVerticalSpectrogram(const SDeviationImage &stImage);

} // namespace ffc::quality
