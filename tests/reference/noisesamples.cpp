#include "tests/reference/noisesamples.h"

#include <random>

namespace ffc::test {

std::vector<float> MakeNoise(std::size_t nCount, float fDeviation)
{
  std::mt19937 random(7);
  std::normal_distribution<float> normal(0, fDeviation);
  std::vector<float> listNoise(nCount);
  for (float &fValue : listNoise) {
    fValue = normal(random);
  }
  return listNoise;
}

double GetMeanSquare(const std::vector<float> &listValues)
{
  double dSum = 0;
  for (const float fValue : listValues) {
    dSum += double{fValue} * double{fValue};
  }
  return dSum / static_cast<double>(listValues.size());
}

} // namespace ffc::test
