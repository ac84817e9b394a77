#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"

#include <string>

#include <gtest/gtest.h>

using namespace ffc::imagecalc;

namespace {

std::string SpellCell(int32_t nBayerType)
{
  std::string strCell = "....";
  if (const SBayerLayout *const pLayout = GetBayerLayout(nBayerType)) {
    strCell[pLayout->eRed] = 'R';
    strCell[pLayout->eGreenTop] = 'G';
    strCell[pLayout->eGreenBottom] = 'G';
    strCell[pLayout->eBlue] = 'B';
  }
  return strCell;
}

} // namespace

TEST(BayerType, EachTypeHasItsOwnCell)
{
  EXPECT_EQ(SpellCell(BAYER_TYPE_RG), "RGGB");
  EXPECT_EQ(SpellCell(BAYER_TYPE_GB), "GBRG");
  EXPECT_EQ(SpellCell(BAYER_TYPE_GR), "GRBG");
  EXPECT_EQ(SpellCell(BAYER_TYPE_BG), "BGGR");
}

TEST(BayerType, TheNumbersAreThoseOfTheBlockRecord)
{
  EXPECT_EQ(SpellCell(1), "RGGB");
  EXPECT_EQ(SpellCell(2), "GBRG");
  EXPECT_EQ(SpellCell(3), "GRBG");
  EXPECT_EQ(SpellCell(4), "BGGR");
}

TEST(BayerType, EveryOtherNumberHasNoCell)
{
  for (const int32_t nBayerType : {INT32_MIN, -1, 0, 5, INT32_MAX}) {
    EXPECT_EQ(GetBayerLayout(nBayerType), nullptr) << nBayerType;
  }
}
