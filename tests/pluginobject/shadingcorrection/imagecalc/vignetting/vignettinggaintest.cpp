#include "pluginobject/shadingcorrection/imagecalc/vignetting/gainquads.h"

#include <memory>

#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

// The gains of two columns and two rows of blocks, which a ring of copies surrounds: the quads' inner corners.
TGains CalcFourGains(CReachableGray &calculator, const std::vector<std::vector<int32_t>> &listRows)
{
  const TGains listGains = CalcGains(calculator, MakeBlocks(8, listRows), 1);
  EXPECT_EQ(listGains.size(), 16U);
  return {listGains[0], listGains[4], listGains[8], listGains[12]};
}

int32_t CalcDarkGain(uint32_t nScaleBits, int32_t nMaxGain, int32_t nDark, int32_t nBright)
{
  CReachableGray calculator;
  EXPECT_EQ(calculator.Init(8, 8, nScaleBits, nMaxGain), 0);
  return CalcFourGains(calculator, {{nDark, nBright}, {nBright, nBright}})[0];
}

} // namespace

TEST(VignettingGain, AUniformFrameNeedsNone)
{
  for (const int32_t nBitDepth : {8, 10, 12}) {
    for (const int32_t nLevel : {1, 77, 255}) {
      CReachableGray gray;
      ASSERT_EQ(gray.Init(8, 8, 8, 7), 0);
      EXPECT_EQ(CalcGains(gray, CTestImage(32, 48, nBitDepth, nLevel), 1), TGains(48, 256));
      CReachableBayer bayer;
      ASSERT_EQ(bayer.Init(8, 8, 8, 7), 0);
      EXPECT_EQ(CalcGains(bayer, CTestImage(32, 48, nBitDepth, nLevel), 3), TGains(144, 256));
    }
  }
}

TEST(VignettingGain, LiftsEachBlockToTheBrightest)
{
  CReachableGray calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  EXPECT_EQ(CalcFourGains(calculator, {{50, 100}, {200, 40}}), (TGains{1024, 512, 256, 1280}));
}

TEST(VignettingGain, IsRoundedHalfUp)
{
  // 151 / 150 x 256 = 257.71, 200 / 150 x 256 = 341.33
  EXPECT_EQ(CalcDarkGain(8, 7, 150, 151), 258);
  EXPECT_EQ(CalcDarkGain(8, 7, 150, 200), 341);
  // 3 / 2 x 1 = 1.5
  EXPECT_EQ(CalcDarkGain(0, 7, 2, 3), 2);
  // 5 / 4 x 2 = 2.5
  EXPECT_EQ(CalcDarkGain(1, 7, 4, 5), 3);
}

TEST(VignettingGain, EndsAtTheLimit)
{
  EXPECT_EQ(CalcDarkGain(8, 7, 10, 70), 1792);
  EXPECT_EQ(CalcDarkGain(8, 7, 10, 71), 1792);
  EXPECT_EQ(CalcDarkGain(8, 7, 1, 255), 1792);
  EXPECT_EQ(CalcDarkGain(8, 7, 10, 69), 1766); // 6.9 x 256 = 1766.4
  EXPECT_EQ(CalcDarkGain(8, 1, 10, 250), 256);
}

TEST(VignettingGain, ABlockOfZeroGetsTheLimitAndNoDivisionFault)
{
  EXPECT_EQ(CalcDarkGain(8, 7, 0, 7), 1792);
  EXPECT_EQ(CalcDarkGain(8, 7, 0, 255), 1792);
}

TEST(VignettingGain, ABlockOfZeroCountsAsOneWhereTheMaximumIsBelowTheLimit)
{
  EXPECT_EQ(CalcDarkGain(8, 7, 0, 3), 768);
  EXPECT_EQ(CalcDarkGain(8, 7, 0, 0), 0);
}

TEST(VignettingGain, AColourIsMeasuredAgainstItsOwnMaximum)
{
  // Left block: R 100, G 50, B 20; right block: R 50, G 100, B 80.
  CTestImage image(16, 8, 8);
  for (int32_t y = 0; y < 8; ++y) {
    for (int32_t x = 0; x < 16; ++x) {
      const int32_t anCells[2][4] = {{100, 50, 50, 20}, {50, 100, 100, 80}};
      image.Set(x, y, anCells[x / 8][y % 2 * 2 + x % 2]);
    }
  }
  CReachableBayer calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  const SGainTable stTable = CalcTable(calculator, image);
  ASSERT_EQ(stTable.nStatus, 0);
  ASSERT_EQ(stTable.nColumns, 4U);
  ASSERT_EQ(stTable.nRows, 4U);
  const TGains listGains = stTable.GetGains(3);
  EXPECT_EQ(TGains(listGains.begin(), listGains.begin() + 3), (TGains{256, 512, 1024}));
  EXPECT_EQ(TGains(listGains.begin() + 12, listGains.begin() + 15), (TGains{512, 256, 256}));
}

TEST(VignettingGain, KeepsItsLow16Bits)
{
  EXPECT_EQ(CalcDarkGain(15, 2, 100, 200), 0);           // 65536
  EXPECT_EQ(CalcDarkGain(15, 3, 0, 255), 32768);         // 98304
  EXPECT_EQ(CalcDarkGain(15, INT32_MAX, 2, 255), 49152); // 127.5 x 32768
  EXPECT_EQ(CalcDarkGain(10, INT32_MAX, 3, 250), (250 * 1024 + 1) / 3 % 65536);
  CReachableBayer calculator;
  ASSERT_EQ(calculator.Init(8, 8, 15, INT32_MAX), 0);
  EXPECT_EQ(CalcGains(calculator, MakeBlocks(8, {{2, 255}}), 3)[0], 49152);
}

TEST(VignettingGain, TheLargestOfAllIsCutWithoutOverflow)
{
  EXPECT_EQ(ScaleVignettingGain(2147483647.0, 32768), 32768); // (2^31 - 1) x 2^15
  EXPECT_EQ(ScaleVignettingGain(2147483646.5, 32768), 16384);
  EXPECT_EQ(ComputeVignettingGain(0.0, 1e300, INT32_MAX), 2147483647.0);
  EXPECT_EQ(ComputeVignettingGain(1e-15, 1e300, INT32_MAX), 2147483647.0);
}

TEST(VignettingGain, OnlyNextToNothingCountsAsOne)
{
  EXPECT_EQ(ComputeVignettingGain(2.220446049250313e-16, 4e-16, 7), 4e-16 / 2.220446049250313e-16);
  EXPECT_EQ(ComputeVignettingGain(2.220446049250313e-16, 3.0, 7), 7.0);
  EXPECT_EQ(ComputeVignettingGain(2.22e-16, 3.0, 7), 3.0);
  EXPECT_EQ(ComputeVignettingGain(0.0, 3.0, 7), 3.0);
}

TEST(VignettingGain, AMonoCalculatorLeavesTheLimitedGainsInItsGrid)
{
  CReachableGray calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  SMeanGrid stGrid;
  stGrid.stSize = {3, 1};
  stGrid.adMaxima[0] = 80.0;
  stGrid.pMeans = std::make_unique<double[]>(3);
  stGrid.pMeans[0] = 80.0;
  stGrid.pMeans[1] = 32.0;
  stGrid.pMeans[2] = 4.0;
  uint16_t anGains[3] = {};
  calculator.CalcGains(stGrid, anGains);
  EXPECT_EQ(TGains(anGains, anGains + 3), (TGains{256, 640, 1792}));
  EXPECT_EQ(std::vector<double>(stGrid.pMeans.get(), stGrid.pMeans.get() + 3), (std::vector<double>{1.0, 2.5, 7.0}));
}

TEST(VignettingGain, ABayerCalculatorLeavesTheMeansInItsGrid)
{
  CReachableBayer calculator;
  ASSERT_EQ(calculator.Init(8, 8, 8, 7), 0);
  SMeanGrid stGrid;
  stGrid.stSize = {1, 1};
  stGrid.pMeans = std::make_unique<double[]>(3);
  for (uint32_t nColour = 0; nColour < 3; ++nColour) {
    stGrid.pMeans[nColour] = 10.0;
    stGrid.adMaxima[nColour] = 10.0 * (nColour + 1);
  }
  uint16_t anGains[3] = {};
  calculator.CalcGains(stGrid, anGains);
  EXPECT_EQ(TGains(anGains, anGains + 3), (TGains{256, 512, 768}));
  EXPECT_EQ(std::vector<double>(stGrid.pMeans.get(), stGrid.pMeans.get() + 3), std::vector<double>(3, 10.0));
}
