#include <algorithm>
#include <cmath>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/meangrid.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

using TMeans = std::vector<double>;

constexpr double RING = -1.0;

TMeans FillRing(TMeans listMeans, uint64_t nColumns)
{
  FillGridRing(listMeans.data(), {nColumns, listMeans.size() / nColumns});
  return listMeans;
}

template <class TPixel>
SPaddedImage<TPixel> MakePadded(const CTestImage &image)
{
  SPaddedImage<TPixel> stPadded;
  const auto nPixels = static_cast<std::size_t>(image.GetPixelCount());
  stPadded.pPixels = std::make_unique<TPixel[]>(nPixels);
  stPadded.nWidth = static_cast<uint64_t>(image.GetWidth());
  stPadded.nHeight = static_cast<uint64_t>(image.GetHeight());
  for (std::size_t i = 0; i < nPixels; ++i) {
    stPadded.pPixels[i] = static_cast<TPixel>(image.GetAt(static_cast<int32_t>(i)));
  }
  return stPadded;
}

template <class TCalculator>
SMeanGrid CalcGrid(TCalculator &calculator, const CTestImage &image, uint32_t nBlockWidth, uint32_t nBlockHeight)
{
  SMeanGrid stGrid;
  EXPECT_EQ(calculator.SetBlockSize(nBlockWidth, nBlockHeight), 0);
  EXPECT_EQ(image.GetBitDepth() == 8 ? calculator.CalcBlockGrid8(MakePadded<uint8_t>(image), stGrid)
                                     : calculator.CalcBlockGrid16(MakePadded<uint16_t>(image), stGrid),
            0);
  return stGrid;
}

TMeans GetPlane(const SMeanGrid &stGrid, uint64_t nPlane)
{
  const double *const pPlane = stGrid.pMeans.get() + nPlane * stGrid.CountPoints();
  return {pPlane, pPlane + stGrid.CountPoints()};
}

} // namespace

TEST(VignettingRing, ASingleBlockIsCopiedAllAround)
{
  EXPECT_EQ(FillRing({RING, RING, RING, RING, 5.0, RING, RING, RING, RING}, 3), TMeans(9, 5.0));
}

TEST(VignettingRing, AGridOfFourRowsAndColumnsIsCopied)
{
  const TMeans listGrid = {RING, RING, RING, RING, //
                           RING, 10.0, 30.0, RING, //
                           RING, 50.0, 90.0, RING, //
                           RING, RING, RING, RING};
  const TMeans listExpected = {10.0, 10.0, 30.0, 30.0, //
                               10.0, 10.0, 30.0, 30.0, //
                               50.0, 50.0, 90.0, 90.0, //
                               50.0, 50.0, 90.0, 90.0};
  EXPECT_EQ(FillRing(listGrid, 4), listExpected);
}

TEST(VignettingRing, AGridOfFiveRowsAndColumnsIsExtrapolated)
{
  const TMeans listGrid = {RING, RING, RING, RING, RING, //
                           RING, 10.0, 12.0, 15.0, RING, //
                           RING, 20.0, 21.0, 26.0, RING, //
                           RING, 29.0, 33.0, 30.0, RING, //
                           RING, RING, RING, RING, RING};
  // Corners follow from the top and the bottom row: left 2 x 0 - 3 < 0, right 2 x 4 - 3; 2 x 38 - 45, 2 x 34 - 45.
  const TMeans listExpected = {0.0,  0.0,  3.0,  4.0,  5.0,  //
                               8.0,  10.0, 12.0, 15.0, 18.0, //
                               19.0, 20.0, 21.0, 26.0, 31.0, //
                               25.0, 29.0, 33.0, 30.0, 27.0, //
                               31.0, 38.0, 45.0, 34.0, 23.0};
  EXPECT_EQ(FillRing(listGrid, 5), listExpected);
}

TEST(VignettingRing, RowsAndColumnsAreJudgedApart)
{
  // Four rows are copied, five columns extrapolated.
  const TMeans listWide = {RING, RING, RING, RING, RING, //
                           RING, 10.0, 12.0, 15.0, RING, //
                           RING, 20.0, 21.0, 26.0, RING, //
                           RING, RING, RING, RING, RING};
  const TMeans listWideExpected = {8.0,  10.0, 12.0, 15.0, 18.0, //
                                   8.0,  10.0, 12.0, 15.0, 18.0, //
                                   19.0, 20.0, 21.0, 26.0, 31.0, //
                                   19.0, 20.0, 21.0, 26.0, 31.0};
  EXPECT_EQ(FillRing(listWide, 5), listWideExpected);
  // Five rows are extrapolated, four columns copied.
  const TMeans listHigh = {RING, RING, RING, RING, //
                           RING, 10.0, 20.0, RING, //
                           RING, 12.0, 21.0, RING, //
                           RING, 15.0, 26.0, RING, //
                           RING, RING, RING, RING};
  const TMeans listHighExpected = {8.0,  8.0,  19.0, 19.0, //
                                   10.0, 10.0, 20.0, 20.0, //
                                   12.0, 12.0, 21.0, 21.0, //
                                   15.0, 15.0, 26.0, 26.0, //
                                   18.0, 18.0, 31.0, 31.0};
  EXPECT_EQ(FillRing(listHigh, 4), listHighExpected);
}

TEST(VignettingRing, NoPointFallsBelowZero)
{
  // 2 x 10 - 20 is just zero, 2 x 10 - 21 below, 2 x 10 - 19 above.
  const TMeans listGrid = {RING, RING, RING, RING, RING, //
                           RING, 10.0, 10.0, 10.0, RING, //
                           RING, 20.0, 21.0, 19.0, RING, //
                           RING, 10.0, 10.0, 10.0, RING, //
                           RING, RING, RING, RING, RING};
  const TMeans listFilled = FillRing(listGrid, 5);
  EXPECT_EQ(TMeans(listFilled.begin() + 1, listFilled.begin() + 4), (TMeans{0.0, 0.0, 1.0}));
  EXPECT_EQ(TMeans(listFilled.begin() + 21, listFilled.begin() + 24), (TMeans{0.0, 0.0, 1.0}));
  EXPECT_FALSE(std::signbit(listFilled[1]));
}

TEST(VignettingGrid, AMonoGridHoldsTheMeansOfItsBlocks)
{
  CReachableGray calculator;
  CTestImage image = MakeBlocks(8, {{10, 20, 30}, {40, 50, 61}});
  image.Set(0, 0, 12);
  const SMeanGrid stGrid = CalcGrid(calculator, image, 8, 8);
  EXPECT_EQ(stGrid.stSize.nColumns, 5U);
  EXPECT_EQ(stGrid.stSize.nRows, 4U);
  const TMeans listPlane = GetPlane(stGrid, 0);
  EXPECT_EQ(TMeans(listPlane.begin() + 6, listPlane.begin() + 9), (TMeans{10.0 + 2.0 / 64.0, 20.0, 30.0}));
  EXPECT_EQ(TMeans(listPlane.begin() + 11, listPlane.begin() + 14), (TMeans{40.0, 50.0, 61.0}));
  EXPECT_EQ(stGrid.adMaxima[0], 61.0) << "the ring goes up to 72";
  EXPECT_EQ(*std::max_element(listPlane.begin(), listPlane.end()), 72.0);
}

TEST(VignettingGrid, ABayerGridHoldsThreePlanesForEveryLayout)
{
  const double adMeans[][3] = {{10.0, 25.0, 44.0}, {30.0, 27.0, 20.0}, {20.0, 27.0, 30.0}, {44.0, 25.0, 10.0}};
  for (const int32_t nBitDepth : {8, 12}) {
    const CTestImage image = CTestImage::MakeCells(16, 8, nBitDepth, {10, 20, 30, 44});
    for (uint32_t nBayerType = 1; nBayerType <= 4; ++nBayerType) {
      CReachableBayer calculator(nBayerType);
      const SMeanGrid stGrid = CalcGrid(calculator, image, 8, 8);
      for (uint32_t nColour = 0; nColour < 3; ++nColour) {
        EXPECT_EQ(GetPlane(stGrid, nColour), TMeans(12, adMeans[nBayerType - 1][nColour]));
        EXPECT_EQ(stGrid.adMaxima[nColour], adMeans[nBayerType - 1][nColour]);
      }
    }
  }
}

TEST(VignettingGrid, ABayerCalculatorWithoutATypeIsOneOfTheFirst)
{
  const CTestImage image = CTestImage::MakeCells(16, 8, 8, {10, 20, 30, 44});
  CReachableBayer calculator;
  EXPECT_EQ(GetPlane(CalcGrid(calculator, image, 8, 8), 0), TMeans(12, 10.0));
}

TEST(VignettingGrid, AnUnknownBayerTypeLeavesTheMeansAtZero)
{
  const CTestImage image(16, 8, 8, 200);
  for (const uint32_t nBayerType : {0U, 5U, 0x80000000U, UINT32_MAX}) {
    CReachableBayer calculator(nBayerType);
    const SMeanGrid stGrid = CalcGrid(calculator, image, 8, 8);
    for (uint32_t nColour = 0; nColour < 3; ++nColour) {
      EXPECT_EQ(GetPlane(stGrid, nColour), TMeans(12, 0.0)) << nBayerType;
      EXPECT_EQ(stGrid.adMaxima[nColour], 0.0);
    }
  }
}

TEST(VignettingGrid, ABayerBlockWithoutAWholeCellHasTheMeanZero)
{
  const CTestImage image(4, 4, 8, 200);
  constexpr std::pair<uint32_t, uint32_t> SIZES[] = {{1, 1}, {1, 2}, {2, 1}, {1, 4}, {4, 1}};
  for (const auto &[nBlockWidth, nBlockHeight] : SIZES) {
    CReachableBayer calculator;
    const SMeanGrid stGrid = CalcGrid(calculator, image, nBlockWidth, nBlockHeight);
    EXPECT_EQ(GetPlane(stGrid, 1), TMeans(stGrid.CountPoints(), 0.0)) << nBlockWidth << " x " << nBlockHeight;
    ASSERT_EQ(calculator.Init(nBlockWidth, nBlockHeight, 8, 7), 0);
    const SGainTable stTable = CalcTable(calculator, image);
    EXPECT_EQ(stTable.GetGains(3), TGains(stTable.nColumns * stTable.nRows * 3, 0));
  }
}

TEST(VignettingGrid, TheLargestMeanOfAnEarlierGridIsForgotten)
{
  CReachableGray gray;
  ASSERT_EQ(gray.Init(8, 8, 8, 7), 0);
  CReachableBayer bayer;
  ASSERT_EQ(bayer.Init(8, 8, 8, 7), 0);
  for (const int32_t nLevel : {200, 50}) {
    EXPECT_EQ(CalcGains(gray, CTestImage(16, 16, 8, nLevel), 1), TGains(16, 256));
    EXPECT_EQ(CalcGains(bayer, CTestImage(16, 16, 8, nLevel), 3), TGains(48, 256));
  }
}
