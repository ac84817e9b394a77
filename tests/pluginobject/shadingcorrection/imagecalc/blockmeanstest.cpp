#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::test;

namespace {

using TMeans = std::vector<double>;

TMeans CalcMeans(const CTestImage &image, const BLOCK_PARAM &stParam)
{
  int32_t nColumns = 0;
  int32_t nRows = 0;
  EXPECT_EQ(CImageCalc().GetBlockCount(stParam, &nColumns, &nRows), 0);
  TMeans listMeans(static_cast<std::size_t>(nColumns * nRows * (stParam.nBayerType == 0 ? 1 : 3)), -1.0);
  EXPECT_EQ(CImageCalc().CalcBlockMeans(image.GetData(), image.GetBitDepth(), stParam, listMeans.data()), 0);
  return listMeans;
}

BLOCK_PARAM MakeRandomGrid(CTestRandom &random, int32_t nBayerType)
{
  const int32_t nWidth = random.Between(16, 60) * 2;
  const int32_t nHeight = random.Between(16, 60) * 2;
  return {nWidth, nHeight, random.Between(4, nWidth / 2) * 2, random.Between(4, nHeight / 2) * 2, nBayerType};
}

} // namespace

TEST(CalcBlockMeans, EqualsTheSlowTwinForEveryDepthAndLayoutOverRandomSizes)
{
  CTestRandom random(4711);
  for (int32_t nBitDepth = 8; nBitDepth <= 16; ++nBitDepth) {
    for (int32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
      for (int32_t nRun = 0; nRun < 12; ++nRun) {
        const BLOCK_PARAM stParam = MakeRandomGrid(random, nBayerType);
        const CTestImage image = CTestImage::MakeRandom(stParam.nWidth, stParam.nHeight, nBitDepth, random);
        ASSERT_EQ(CalcMeans(image, stParam), ComputeBlockMeansSlowly(image, stParam))
          << nBitDepth << " bit, type " << nBayerType << ", " << stParam.nWidth << " x " << stParam.nHeight << " by "
          << stParam.nBlockWidth << " x " << stParam.nBlockHeight;
      }
    }
  }
}

TEST(CalcBlockMeans, BlocksAreWrittenRowByRow)
{
  CTestImage image(64, 32, 8);
  for (int32_t y = 0; y < 32; ++y) {
    for (int32_t x = 0; x < 64; ++x) {
      image.Set(x, y, y / 16 * 100 + x / 32 * 10 + 1);
    }
  }
  EXPECT_EQ(CalcMeans(image, {64, 32, 32, 16, 0}), (TMeans{1.0, 11.0, 101.0, 111.0}));
}

TEST(CalcBlockMeans, AMeanKeepsItsFraction)
{
  CTestImage image(32, 32, 12, 100);
  image.Set(31, 31, 101);
  EXPECT_EQ(CalcMeans(image, {32, 32, 32, 32, 0}), TMeans{100.0 + 1.0 / 1024.0});
}

TEST(CalcBlockMeans, AnIgnoredStripHasNoInfluence)
{
  CTestImage image(100, 32, 8, 50);
  for (int32_t y = 0; y < 32; ++y) {
    for (int32_t x = 96; x < 100; ++x) {
      image.Set(x, y, 255);
    }
  }
  EXPECT_EQ(CalcMeans(image, {100, 32, 32, 32, 0}), (TMeans{50.0, 50.0, 50.0}));
}

TEST(CalcBlockMeans, ANarrowBlockIsDividedByItsOwnSize)
{
  CTestImage image(120, 56, 8, 50);
  for (int32_t y = 32; y < 56; ++y) {
    for (int32_t x = 96; x < 120; ++x) {
      image.Set(x, y, 200);
    }
  }
  EXPECT_EQ(CalcMeans(image, {120, 56, 32, 32, 0}), (TMeans{50.0, 50.0, 50.0, 50.0, 50.0, 50.0, 50.0, 200.0}));
}

TEST(CalcBlockMeans, EachLayoutTakesItsColoursFromItsOwnPlaces)
{
  for (const int32_t nBitDepth : {8, 12}) {
    const CTestImage image = CTestImage::MakeCells(32, 32, nBitDepth, {10, 20, 30, 44});
    EXPECT_EQ(CalcMeans(image, {32, 32, 32, 32, 1}), (TMeans{10.0, 25.0, 44.0}));
    EXPECT_EQ(CalcMeans(image, {32, 32, 32, 32, 2}), (TMeans{30.0, 27.0, 20.0}));
    EXPECT_EQ(CalcMeans(image, {32, 32, 32, 32, 3}), (TMeans{20.0, 27.0, 30.0}));
    EXPECT_EQ(CalcMeans(image, {32, 32, 32, 32, 4}), (TMeans{44.0, 25.0, 10.0}));
  }
}

TEST(CalcBlockMeans, CellsOfTenToFortyInLayoutGbGiveThirtyTwentyFiveTwenty)
{
  const CTestImage image = CTestImage::MakeCells(64, 32, 8, {10, 20, 30, 40});
  EXPECT_EQ(CalcMeans(image, {64, 32, 32, 32, 2}), (TMeans{30.0, 25.0, 20.0, 30.0, 25.0, 20.0}));
}

TEST(CalcBlockMeans, AnUnknownBayerTypeGivesThreeZerosPerBlock)
{
  CTestRandom random(1);
  const CTestImage image = CTestImage::MakeRandom(64, 32, 8, random);
  for (const int32_t nBayerType : {INT32_MIN, -1, 5, INT32_MAX}) {
    EXPECT_EQ(CalcMeans(image, {64, 32, 32, 32, nBayerType}), TMeans(6, 0.0)) << nBayerType;
  }
}

TEST(CalcBlockMeans, WhiteSixteenBitBlocksDoNotOverflow)
{
  // The sum of one block passes 32 bits.
  const CTestImage image(512, 512, 16, 65535);
  EXPECT_EQ(CalcMeans(image, {512, 512, 512, 512, 0}), TMeans{65535.0});
  EXPECT_EQ(CalcMeans(image, {512, 512, 512, 512, 3}), TMeans(3, 65535.0));
}

TEST(GetBlockMeanMaxMin, GivesTheExtremesOfAllColoursTogether)
{
  const CTestImage image = CTestImage::MakeCells(64, 64, 8, {10, 20, 30, 240});
  double dMax = 0.0;
  double dMin = 0.0;
  EXPECT_EQ(CImageCalc().GetBlockMeanMaxMin(image.GetData(), 8, {64, 64, 32, 32, 1}, &dMax, &dMin), 0);
  EXPECT_EQ(dMax, 240.0);
  EXPECT_EQ(dMin, 10.0);
  EXPECT_EQ(CImageCalc().GetBlockMeanMaxMin(image.GetData(), 8, {64, 64, 32, 32, 0}, &dMax, &dMin), 0);
  EXPECT_EQ(dMax, 75.0);
  EXPECT_EQ(dMin, 75.0);
}

TEST(GetBlockMeanMaxMin, EqualsTheSlowTwinOverRandomSizes)
{
  CTestRandom random(815);
  for (int32_t nRun = 0; nRun < 60; ++nRun) {
    const BLOCK_PARAM stParam = MakeRandomGrid(random, nRun % 6);
    const int32_t nBitDepth = 8 + nRun % 9;
    const CTestImage image = CTestImage::MakeRandom(stParam.nWidth, stParam.nHeight, nBitDepth, random);
    const TMeans listMeans = ComputeBlockMeansSlowly(image, stParam);
    double dMax = -1.0;
    double dMin = -1.0;
    ASSERT_EQ(CImageCalc().GetBlockMeanMaxMin(image.GetData(), nBitDepth, stParam, &dMax, &dMin), 0);
    ASSERT_EQ(*std::max_element(listMeans.begin(), listMeans.end()), dMax);
    ASSERT_EQ(*std::min_element(listMeans.begin(), listMeans.end()), dMin);
  }
}

TEST(CalcBlockMeans, BlocksThatAreHighAndWideAreAddedUpInParts)
{
  CTestRandom random(11);
  for (const int32_t nBitDepth : {8, 16}) {
    for (const BLOCK_PARAM &stParam : {BLOCK_PARAM{36, 1100, 24, 1040, 0}, BLOCK_PARAM{36, 1100, 36, 514, 1},
                                       BLOCK_PARAM{2600, 34, 2580, 34, 0}, BLOCK_PARAM{2600, 34, 1290, 32, 3}}) {
      const CTestImage image = CTestImage::MakeRandom(stParam.nWidth, stParam.nHeight, nBitDepth, random);
      ASSERT_EQ(CalcMeans(image, stParam), ComputeBlockMeansSlowly(image, stParam)) << nBitDepth << " bit";
    }
  }
}
