#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::imagecalc;

namespace {

constexpr int32_t BLOCK_PARAM::*SIDES[] = {&BLOCK_PARAM::nWidth, &BLOCK_PARAM::nHeight, &BLOCK_PARAM::nBlockWidth,
                                           &BLOCK_PARAM::nBlockHeight};

int32_t Check(int32_t nWidth, int32_t nHeight, int32_t nBlockWidth, int32_t nBlockHeight)
{
  return CImageCalc().CheckBlockParam({nWidth, nHeight, nBlockWidth, nBlockHeight, 0});
}

} // namespace

TEST(CheckBlockParam, GridsAtTheLimitsAreAccepted)
{
  EXPECT_EQ(Check(32, 32, 8, 8), 0);
  EXPECT_EQ(Check(32, 32, 32, 32), 0);
  EXPECT_EQ(Check(100000, 100000, 8, 8), 0);
  EXPECT_EQ(Check(100000, 100000, 100000, 100000), 0);
}

TEST(CheckBlockParam, ASideAboveTheLargestIsOutOfRange)
{
  for (const auto pSide : SIDES) {
    for (const int32_t nSide : {100001, 100002, INT32_MAX}) {
      BLOCK_PARAM stParam = {100000, 100000, 32, 32, 0};
      stParam.*pSide = nSide;
      EXPECT_EQ(CImageCalc().CheckBlockParam(stParam), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
    }
  }
}

TEST(CheckBlockParam, AnImageSideBelowThirtyTwoIsOutOfRange)
{
  for (const int32_t nSide : {31, 30, 0, -1, -32, INT32_MIN}) {
    EXPECT_EQ(Check(nSide, 64, 8, 8), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
    EXPECT_EQ(Check(64, nSide, 8, 8), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
  }
}

TEST(CheckBlockParam, ABlockSideBelowEightIsOutOfRange)
{
  for (const int32_t nSide : {7, 6, 0, -1, -8, INT32_MIN}) {
    EXPECT_EQ(Check(64, 64, nSide, 8), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
    EXPECT_EQ(Check(64, 64, 8, nSide), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
  }
}

TEST(CheckBlockParam, ABlockLargerThanTheImageDoesNotFit)
{
  EXPECT_EQ(Check(64, 64, 66, 8), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(Check(64, 64, 8, 66), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(Check(64, 64, 64, 64), 0);
}

TEST(CheckBlockParam, AnOddSideDoesNotFit)
{
  EXPECT_EQ(Check(65, 64, 8, 8), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(Check(64, 65, 8, 8), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(Check(64, 64, 9, 8), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(Check(64, 64, 8, 9), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST(CheckBlockParam, RangesWinOverFit)
{
  EXPECT_EQ(Check(33, 64, 6, 8), IMAGECALC_STATUS_OUT_OF_RANGE) << "small block and odd width";
  EXPECT_EQ(Check(64, 33, 8, 100001), IMAGECALC_STATUS_OUT_OF_RANGE)
    << "large block, which also exceeds the odd height";
  EXPECT_EQ(Check(31, 64, 40, 8), IMAGECALC_STATUS_OUT_OF_RANGE) << "small odd width, exceeded by the block";
  EXPECT_EQ(Check(100001, 33, 8, 8), IMAGECALC_STATUS_OUT_OF_RANGE) << "large odd width and odd height";
}

TEST(CheckBlockParam, TheBayerTypeIsNotChecked)
{
  for (const int32_t nBayerType : {INT32_MIN, -1, 5, INT32_MAX}) {
    EXPECT_EQ(CImageCalc().CheckBlockParam({64, 64, 8, 8, nBayerType}), 0);
  }
}

TEST(GetBlockCount, AStripOfMoreThanHalfABlockMakesABlock)
{
  struct SCase {
    int32_t nSide;
    int32_t nCount;
  };
  constexpr SCase CASES[] = {{100, 3}, {120, 4}, {96, 3}, {112, 3}, {114, 4},
                             {126, 4}, {128, 4}, {32, 1}, {48, 1},  {50, 2}};
  for (const auto &[nSide, nCount] : CASES) {
    int32_t nColumns = -1;
    int32_t nRows = -1;
    EXPECT_EQ(CImageCalc().GetBlockCount({nSide, 64, 32, 32, 0}, &nColumns, &nRows), 0);
    EXPECT_EQ(nColumns, nCount) << nSide;
    EXPECT_EQ(nRows, 2) << nSide;
    EXPECT_EQ(CImageCalc().GetBlockCount({64, nSide, 32, 32, 0}, &nColumns, &nRows), 0);
    EXPECT_EQ(nColumns, 2) << nSide;
    EXPECT_EQ(nRows, nCount) << nSide;
  }
}

TEST(GetBlockCount, EqualsTheSlowTwinForAllSmallSides)
{
  for (int32_t nSide = 32; nSide <= 200; nSide += 2) {
    for (int32_t nBlockSide = 8; nBlockSide <= nSide; nBlockSide += 2) {
      int32_t nColumns = -1;
      int32_t nRows = -1;
      ASSERT_EQ(CImageCalc().GetBlockCount({nSide, 200, nBlockSide, 8, 0}, &nColumns, &nRows), 0);
      ASSERT_EQ(CountBlocksSlowly(nSide, nBlockSide), nColumns) << nSide << " by " << nBlockSide;
      ASSERT_EQ(nRows, 25);
    }
  }
}

TEST(GetBlockCount, TheLargestGridIsCounted)
{
  int32_t nColumns = 0;
  int32_t nRows = 0;
  EXPECT_EQ(CImageCalc().GetBlockCount({100000, 100000, 8, 10, 1}, &nColumns, &nRows), 0);
  EXPECT_EQ(nColumns, 12500);
  EXPECT_EQ(nRows, 10000);
}

TEST(GetBlockCount, AFailingCheckLeavesTheCountsUntouched)
{
  int32_t nColumns = 17;
  int32_t nRows = 18;
  EXPECT_EQ(CImageCalc().GetBlockCount({65, 64, 8, 8, 0}, &nColumns, &nRows), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().GetBlockCount({64, 64, 8, 6, 0}, &nColumns, &nRows), IMAGECALC_STATUS_OUT_OF_RANGE);
  EXPECT_EQ(CImageCalc().GetBlockCount({-64, INT32_MIN, -8, -8, 0}, &nColumns, &nRows), IMAGECALC_STATUS_OUT_OF_RANGE);
  EXPECT_EQ(nColumns, 17);
  EXPECT_EQ(nRows, 18);
}

TEST(GetBlockCount, AMissingOutputIsRefusedBeforeTheGridIsChecked)
{
  int32_t nCount = 17;
  EXPECT_EQ(CImageCalc().GetBlockCount({64, 64, 6, 6, 0}, nullptr, &nCount), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().GetBlockCount({64, 64, 6, 6, 0}, &nCount, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(nCount, 17);
}

TEST(BlockRect, TheLastBlocksAreAsNarrowAsTheirStrips)
{
  const BLOCK_PARAM stParam = {120, 52, 32, 32, 0};
  const SBlockRect stInner = GetBlockRect(stParam, 2, 0);
  EXPECT_EQ(stInner.nLeft, 64);
  EXPECT_EQ(stInner.nTop, 0);
  EXPECT_EQ(stInner.nWidth, 32);
  EXPECT_EQ(stInner.nHeight, 32);
  const SBlockRect stLast = GetBlockRect(stParam, 3, 1);
  EXPECT_EQ(stLast.nLeft, 96);
  EXPECT_EQ(stLast.nTop, 32);
  EXPECT_EQ(stLast.nWidth, 24);
  EXPECT_EQ(stLast.nHeight, 20);
}
