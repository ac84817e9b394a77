#include <limits>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

using namespace ffc::process;

TEST(WaitTimeout, IsTheExposureInMillisecondsAndASecond)
{
  EXPECT_EQ(GetFrameTimeout(0.0F), 1000U);
  EXPECT_EQ(GetFrameTimeout(10000.0F), 1010U);
  EXPECT_EQ(GetFrameTimeout(1000000.0F), 2000U);
}

TEST(WaitTimeout, IsTruncatedToWholeMilliseconds)
{
  EXPECT_EQ(GetFrameTimeout(999.0F), 1000U);
  EXPECT_EQ(GetFrameTimeout(1000.0F), 1001U);
  EXPECT_EQ(GetFrameTimeout(1999.0F), 1001U);
}

TEST(WaitTimeout, IsComputedInSinglePrecision)
{
  // 1000 + 0.99999 rounds to 1001 in single precision only.
  EXPECT_EQ(GetFrameTimeout(999.99F), 1001U);
}

TEST(WaitTimeout, OfANegativeExposureIsShorterAndNeverBelowZero)
{
  EXPECT_EQ(GetFrameTimeout(-950000.0F), 50U);
  EXPECT_EQ(GetFrameTimeout(-1000000.0F), 0U);
  EXPECT_EQ(GetFrameTimeout(-2000000.0F), 0U);
  EXPECT_EQ(GetFrameTimeout(-std::numeric_limits<float>::max()), 0U);
  EXPECT_EQ(GetFrameTimeout(-std::numeric_limits<float>::infinity()), 0U);
}

TEST(WaitTimeout, OfNoNumberIsZero)
{
  EXPECT_EQ(GetFrameTimeout(std::numeric_limits<float>::quiet_NaN()), 0U);
}

TEST(WaitTimeout, NeverWaitsForEver)
{
  EXPECT_EQ(GetFrameTimeout(std::numeric_limits<float>::infinity()), 0xFFFFFFFEU);
  EXPECT_EQ(GetFrameTimeout(std::numeric_limits<float>::max()), 0xFFFFFFFEU);
  EXPECT_EQ(GetFrameTimeout(4294967296.0e3F), 0xFFFFFFFEU);
  EXPECT_EQ(GetFrameTimeout(4294966296.0e3F), 0xFFFFFFFEU) << "2^32 itself";
  // The largest number below 2^32 that single precision has.
  EXPECT_EQ(GetFrameTimeout(4294966040.0e3F), 4294967040U);
}
