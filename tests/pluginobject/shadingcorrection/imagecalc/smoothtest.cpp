#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

#include <string>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

CTestImage Smooth(const CTestImage &image, bool bBayer)
{
  CTestImage result(image.GetWidth(), image.GetHeight(), image.GetBitDepth(), 0xA5);
  EXPECT_EQ(CImageCalc().SmoothImage(image.GetData(), result.GetData(), image.GetBitDepth(), image.GetWidth(),
                                     image.GetHeight(), bBayer),
            0);
  return result;
}

// The pixels that differ, as a picture.
std::string DrawChanges(const CTestImage &before, const CTestImage &after)
{
  std::string strPicture;
  for (int32_t y = 0; y < before.GetHeight(); ++y) {
    for (int32_t x = 0; x < before.GetWidth(); ++x) {
      strPicture += before.Get(x, y) == after.Get(x, y) ? '.' : '#';
    }
    strPicture += '\n';
  }
  return strPicture;
}

// A checkerboard, in which smoothing changes every pixel that it computes.
CTestImage MakeCheckerboard(int32_t nWidth, int32_t nHeight, int32_t nBitDepth)
{
  return CTestImage::MakeCells(nWidth, nHeight, nBitDepth, {0, 200, 200, 0});
}

} // namespace

TEST(SmoothImage, EqualsTheSlowTwinForEveryDepthAndBorderOverRandomSizes)
{
  CTestRandom random(2718);
  for (int32_t nBitDepth = 8; nBitDepth <= 16; ++nBitDepth) {
    for (int32_t nRun = 0; nRun < 40; ++nRun) {
      const CTestImage image = CTestImage::MakeRandom(random.Between(5, 63), random.Between(5, 63), nBitDepth, random);
      for (const bool bBayer : {false, true}) {
        ASSERT_EQ(Smooth(image, bBayer), SmoothSlowly(image, bBayer))
          << nBitDepth << " bit, " << image.GetWidth() << " x " << image.GetHeight() << (bBayer ? ", Bayer" : "");
      }
    }
  }
}

TEST(SmoothImage, TheSmallestBayerImageChangesOnlyInItsCentre)
{
  const CTestImage image = MakeCheckerboard(5, 5, 8);
  EXPECT_EQ(DrawChanges(image, Smooth(image, true)), ".....\n.....\n..#..\n.....\n.....\n");
}

TEST(SmoothImage, AMonoImageKeepsABorderOfOnePixel)
{
  const CTestImage image = MakeCheckerboard(6, 5, 12);
  EXPECT_EQ(DrawChanges(image, Smooth(image, false)), "......\n.####.\n.####.\n.####.\n......\n");
}

TEST(SmoothImage, ABayerImageKeepsABorderOfTwoPixels)
{
  const CTestImage image = MakeCheckerboard(7, 6, 12);
  EXPECT_EQ(DrawChanges(image, Smooth(image, true)), ".......\n.......\n..###..\n..###..\n.......\n.......\n");
}

TEST(SmoothImage, ABayerImageIsSmoothedOverImmediateNeighboursOfAllColours)
{
  CTestImage image(5, 5, 8);
  image.Set(1, 2, 90);
  EXPECT_EQ(Smooth(image, true).Get(2, 2), 10);
  image.Set(1, 2, 0);
  image.Set(0, 2, 90);
  EXPECT_EQ(Smooth(image, true).Get(2, 2), 0);
}

TEST(SmoothImage, EachOfTheNineNeighboursCountsOnce)
{
  CTestImage image(5, 5, 8);
  for (int32_t y = 1; y <= 3; ++y) {
    for (int32_t x = 1; x <= 3; ++x) {
      image.Set(x, y, 9 << (x - 1)); // 9, 18, 36: 63 in every row
    }
  }
  // (189 + 4) x 455 / 4096 = 21.4
  EXPECT_EQ(Smooth(image, true).Get(2, 2), 21);
}

TEST(SmoothImage, TheFixedPointNinthFallsShortForLargeValues)
{
  EXPECT_EQ(Smooth(CTestImage(5, 5, 8, 255), false).Get(2, 2), 255);
  EXPECT_EQ(Smooth(CTestImage(5, 5, 12, 1820), false).Get(2, 2), 1820);
  EXPECT_EQ(Smooth(CTestImage(5, 5, 12, 1821), false).Get(2, 2), 1820);
  EXPECT_EQ(Smooth(CTestImage(5, 5, 16, 65535), false).Get(2, 2), 65519);
}

TEST(SmoothImage, WordsJustBelowAndAboveTwelveBitsAreSmoothedAlike)
{
  for (const int32_t nLargest : {4095, 4096, 4097, 7281, 7282}) {
    for (const int32_t nOther : {0, nLargest}) {
      const CTestImage image = CTestImage::MakeCells(21, 12, 16, {nLargest, nOther, nOther, nLargest});
      EXPECT_EQ(Smooth(image, false), SmoothSlowly(image, false)) << nLargest << " beside " << nOther;
    }
  }
}

TEST(SmoothImage, EveryBitDepthButEightMeansWords)
{
  const CTestImage image = MakeCheckerboard(9, 8, 16);
  const CTestImage expected = Smooth(image, false);
  for (const int32_t nBitDepth : {INT32_MIN, -1, 0, 7, 9, 17, INT32_MAX}) {
    CTestImage result(9, 8, 16);
    EXPECT_EQ(CImageCalc().SmoothImage(image.GetData(), result.GetData(), nBitDepth, 9, 8, false), 0);
    EXPECT_EQ(result, expected) << nBitDepth;
  }
}

TEST(SmoothImage, AMissingBufferIsRefusedBeforeTheSize)
{
  CTestImage image(5, 5, 8, 3);
  EXPECT_EQ(CImageCalc().SmoothImage(nullptr, image.GetData(), 8, 4, 4, false), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().SmoothImage(image.GetData(), nullptr, 8, 4, 4, false), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CTestImage(5, 5, 8, 3), image);
}

TEST(SmoothImage, ASideBelowFiveIsOutOfRange)
{
  const CTestImage image(5, 5, 8, 3);
  CTestImage result(5, 5, 8, 7);
  for (const int32_t nSide : {4, 1, 0, -1, INT32_MIN}) {
    for (const bool bBayer : {false, true}) {
      EXPECT_EQ(CImageCalc().SmoothImage(image.GetData(), result.GetData(), 8, nSide, 5, bBayer),
                IMAGECALC_STATUS_OUT_OF_RANGE)
        << nSide;
      EXPECT_EQ(CImageCalc().SmoothImage(image.GetData(), result.GetData(), 8, 5, nSide, bBayer),
                IMAGECALC_STATUS_OUT_OF_RANGE)
        << nSide;
    }
  }
  EXPECT_EQ(CTestImage(5, 5, 8, 7), result);
}
