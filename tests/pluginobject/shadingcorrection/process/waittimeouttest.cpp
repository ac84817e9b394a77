#include <limits>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

using namespace ffc::process;

TEST(WaitTimeout, IsTheExposureInMillisecondsAndASecond)
{
  EXPECT_EQ(1000U, GetFrameTimeout(0.0F));
  EXPECT_EQ(1010U, GetFrameTimeout(10000.0F));
  EXPECT_EQ(2000U, GetFrameTimeout(1000000.0F));
}

TEST(WaitTimeout, IsTruncatedToWholeMilliseconds)
{
  EXPECT_EQ(1000U, GetFrameTimeout(999.0F));
  EXPECT_EQ(1001U, GetFrameTimeout(1000.0F));
  EXPECT_EQ(1001U, GetFrameTimeout(1999.0F));
}

TEST(WaitTimeout, IsComputedInSinglePrecision)
{
  // 1000 + 0.99999 rounds to 1001 in single precision only.
  EXPECT_EQ(1001U, GetFrameTimeout(999.99F));
}

TEST(WaitTimeout, OfANegativeExposureIsShorterAndNeverBelowZero)
{
  EXPECT_EQ(50U, GetFrameTimeout(-950000.0F));
  EXPECT_EQ(0U, GetFrameTimeout(-1000000.0F));
  EXPECT_EQ(0U, GetFrameTimeout(-2000000.0F));
  EXPECT_EQ(0U, GetFrameTimeout(-std::numeric_limits<float>::max()));
  EXPECT_EQ(0U, GetFrameTimeout(-std::numeric_limits<float>::infinity()));
}

TEST(WaitTimeout, OfNoNumberIsZero)
{
  EXPECT_EQ(0U, GetFrameTimeout(std::numeric_limits<float>::quiet_NaN()));
}

TEST(WaitTimeout, NeverWaitsForEver)
{
  EXPECT_EQ(0xFFFFFFFEU, GetFrameTimeout(std::numeric_limits<float>::infinity()));
  EXPECT_EQ(0xFFFFFFFEU, GetFrameTimeout(std::numeric_limits<float>::max()));
  EXPECT_EQ(0xFFFFFFFEU, GetFrameTimeout(4294967296.0e3F));
  // The largest number below 2^32 that single precision has.
  EXPECT_EQ(4294967040U, GetFrameTimeout(4294966040.0e3F));
}
