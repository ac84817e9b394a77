#include "pluginobject/shadingcorrection/imagecalc/vignetting/gainquads.h"

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::imagecalc;

namespace {

// The points of a grid are numbered from 1, row by row; their gains follow one another.
template <class TCalculator>
TGains Pack(uint64_t nColumns, uint64_t nRows, uint32_t nGainsPerPoint)
{
  std::vector<uint16_t> listGains;
  for (uint64_t i = 0; i < nColumns * nRows * nGainsPerPoint; ++i) {
    listGains.push_back(static_cast<uint16_t>(i + 1));
  }
  TCalculator calculator;
  SGridSize stSize = {nColumns, nRows};
  EXPECT_EQ(calculator.PackQuads(listGains.data(), stSize), 0);
  EXPECT_EQ(stSize.nColumns, nColumns + nColumns % 2);
  EXPECT_EQ(stSize.nRows, nRows + nRows % 2);
  const uint16_t *const pTable = calculator.m_pCoefficient.get();
  return {pTable, pTable + stSize.nColumns * stSize.nRows * nGainsPerPoint};
}

TGains PackGray(uint64_t nColumns, uint64_t nRows)
{
  return Pack<CReachableGray>(nColumns, nRows, 1);
}

} // namespace

TEST(GainQuads, EvenGridsAreRegroupedQuadByQuad)
{
  // 1 2 3 4 / 5 6 7 8 / 9 10 11 12 / 13 14 15 16
  EXPECT_EQ(PackGray(4, 4), (TGains{1, 2, 5, 6, 3, 4, 7, 8, 9, 10, 13, 14, 11, 12, 15, 16}));
  EXPECT_EQ(PackGray(4, 2), (TGains{1, 2, 5, 6, 3, 4, 7, 8}));
  EXPECT_EQ(PackGray(2, 4), (TGains{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(GainQuads, AnOddLastColumnLeavesTheRightPointsAtZero)
{
  // 1 2 3 / 4 5 6 / 7 8 9 / 10 11 12
  EXPECT_EQ(PackGray(3, 4), (TGains{1, 2, 4, 5, 3, 0, 6, 0, 7, 8, 10, 11, 9, 0, 12, 0}));
}

TEST(GainQuads, AnOddLastRowLeavesTheBottomPointsAtZero)
{
  // 1 2 3 4 / 5 6 7 8 / 9 10 11 12
  EXPECT_EQ(PackGray(4, 3), (TGains{1, 2, 5, 6, 3, 4, 7, 8, 9, 10, 0, 0, 11, 12, 0, 0}));
}

TEST(GainQuads, TheCornerOfAnOddGridHasOnePointLeft)
{
  // 1 2 3 / 4 5 6 / 7 8 9
  EXPECT_EQ(PackGray(3, 3), (TGains{1, 2, 4, 5, 3, 0, 6, 0, 7, 8, 0, 0, 9, 0, 0, 0}));
}

TEST(GainQuads, ABayerPointHasThreeGains)
{
  // R G B of 1 and 2 / 3 and 4 / 5 and 6
  EXPECT_EQ(Pack<CReachableBayer>(2, 3, 3),
            (TGains{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Pack<CReachableBayer>(1, 1, 3), (TGains{1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(GainQuads, MissingGainsAreRefused)
{
  SGridSize stSize = {3, 3};
  CReachableBayer bayer;
  EXPECT_EQ(bayer.PackQuads(nullptr, stSize), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(bayer.m_pCoefficient, nullptr);
  CReachableGray gray;
  EXPECT_EQ(gray.PackQuads(nullptr, stSize), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(gray.m_pCoefficient, nullptr);
  EXPECT_EQ(stSize.nColumns, 3U);
  EXPECT_EQ(stSize.nRows, 3U);
}

TEST(GainQuads, MemoryThatRunsOutIsReported)
{
  const uint16_t nGain = 7;
  SGridSize stSize = {1, 1};
  CReachableGray calculator;
  const CFailingNew failingNew;
  EXPECT_EQ(calculator.PackQuads(&nGain, stSize), IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(stSize.nColumns, 1U);
}
