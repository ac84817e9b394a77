#include "tests/ombrix/cclient.h"

#include <vector>

#include <gtest/gtest.h>

TEST(OmbrixInC, ARecordPassedByValueFromCCorrectsAFrame)
{
  const std::vector<uint8_t> listBright = {60, 110, 210, 10};
  const std::vector<uint8_t> listDark = {10, 10, 10, 10};
  std::vector<uint8_t> listFrame = {35, 60, 110, 11};
  ASSERT_EQ(CorrectInC(listBright.data(), listDark.data(), 4, 100, listFrame.data()), 0);
  // The last pixel has no signal in the bright frame: gain 65535 / 4096 = 15.9998.
  EXPECT_EQ(listFrame, (std::vector<uint8_t>{50, 50, 50, 16}));
}
