// Noise by the level, and what rounding adds to it.
#include <gtest/gtest.h>

#include "reference/noisemodel.h"

using namespace ffc::reference;

TEST(ReferenceNoise, RoundingLeavesATwelfthWithoutNoiseAndNothingWithMuch)
{
  EXPECT_NEAR(GetRoundingVariance(0), 1.0 / 12, 1e-3);
  EXPECT_LT(GetRoundingVariance(0.5), 1e-8);
  for (const double dVariance : {0.0, 0.05, 0.3, 25.0}) {
    const double dMeasured = dVariance + 1.0 / 12 - GetRoundingVariance(dVariance);
    EXPECT_NEAR(RemoveRounding(dMeasured), dVariance, 0.005 + 1e-6 * dVariance);
  }
}

TEST(ReferenceNoise, BelowTheDarkTheLightAddsNoNoise)
{
  const SFieldNoise stNoise = {4, 0.5F, 0};
  EXPECT_EQ(stNoise.At(-10), 4);
  EXPECT_EQ(stNoise.At(10), 9);
}
