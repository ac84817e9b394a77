/// \file
/// White noise, the same at each call, and its measure.
#pragma once

#include <cstddef>
#include <vector>

namespace ffc::test {

/// So many samples of a normal distribution around 0, always from the same seed.
std::vector<float> MakeNoise(std::size_t nCount, float fDeviation = 1);

double GetMeanSquare(const std::vector<float> &listValues);

} // namespace ffc::test
