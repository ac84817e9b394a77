#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingtwin.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

template <class TPixel>
SRawFrame<TPixel> GetFrame(const CTestImage &image)
{
  return {static_cast<const TPixel *>(image.GetData()), static_cast<uint32_t>(image.GetWidth()),
          static_cast<uint32_t>(image.GetHeight())};
}

template <class TPixel>
CTestImage ToImage(const SPaddedImage<TPixel> &stPadded, int32_t nBitDepth)
{
  CTestImage image(static_cast<int32_t>(stPadded.nWidth), static_cast<int32_t>(stPadded.nHeight), nBitDepth);
  for (int32_t i = 0; i < image.GetPixelCount(); ++i) {
    image.SetAt(i, stPadded.pPixels[static_cast<std::size_t>(i)]);
  }
  return image;
}

template <class TCalculator>
CTestImage Pad(const CTestImage &image, uint32_t nBlockWidth, uint32_t nBlockHeight)
{
  TCalculator calculator;
  EXPECT_EQ(calculator.SetBlockSize(nBlockWidth, nBlockHeight), 0);
  SPadded8 stPadded8;
  SPadded16 stPadded16;
  if (image.GetBitDepth() == 8) {
    EXPECT_EQ(calculator.PadImage8(GetFrame<uint8_t>(image), stPadded8), 0);
    return ToImage(stPadded8, 8);
  }
  EXPECT_EQ(calculator.PadImage16(GetFrame<uint16_t>(image), stPadded16), 0);
  return ToImage(stPadded16, image.GetBitDepth());
}

CTestImage MakeRow(const std::vector<int32_t> &listPixels)
{
  CTestImage image(static_cast<int32_t>(listPixels.size()), 1, 8);
  for (int32_t i = 0; i < image.GetPixelCount(); ++i) {
    image.SetAt(i, listPixels[static_cast<std::size_t>(i)]);
  }
  return image;
}

CTestImage MakeColumn(const std::vector<int32_t> &listPixels)
{
  CTestImage image(1, static_cast<int32_t>(listPixels.size()), 8);
  for (int32_t i = 0; i < image.GetPixelCount(); ++i) {
    image.SetAt(i, listPixels[static_cast<std::size_t>(i)]);
  }
  return image;
}

} // namespace

TEST(VignettingPadding, AStripOfAtMostHalfABlockIsCutOff)
{
  for (const int32_t nStrip : {0, 1, 3, 4}) {
    const CTestImage wide = CTestImage(8 + nStrip, 8, 8, 5);
    EXPECT_EQ(Pad<CReachableBayer>(wide, 8, 8), CTestImage(8, 8, 8, 5)) << nStrip;
    EXPECT_EQ(Pad<CReachableGray>(wide, 8, 8), CTestImage(8, 8, 8, 5)) << nStrip;
    const CTestImage high = CTestImage(8, 8 + nStrip, 8, 5);
    EXPECT_EQ(Pad<CReachableBayer>(high, 8, 8), CTestImage(8, 8, 8, 5)) << nStrip;
    EXPECT_EQ(Pad<CReachableGray>(high, 8, 8), CTestImage(8, 8, 8, 5)) << nStrip;
  }
}

TEST(VignettingPadding, AWiderStripIsExtendedToABlock)
{
  for (const int32_t nStrip : {5, 6, 7}) {
    const CTestImage image = CTestImage(8 + nStrip, 16 + nStrip, 12, 5);
    EXPECT_EQ(Pad<CReachableBayer>(image, 8, 8), CTestImage(16, 24, 12, 5)) << nStrip;
    EXPECT_EQ(Pad<CReachableGray>(image, 8, 8), CTestImage(16, 24, 12, 5)) << nStrip;
  }
}

TEST(VignettingPadding, ABayerRowCarriesOnWithThePixelsTwoPlacesBefore)
{
  EXPECT_EQ(Pad<CReachableBayer>(MakeRow({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}), 8, 1),
            MakeRow({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 12, 13, 12}));
}

TEST(VignettingPadding, ABayerColumnCarriesOnWithThePixelsTwoRowsAbove)
{
  EXPECT_EQ(Pad<CReachableBayer>(MakeColumn({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}), 1, 8),
            MakeColumn({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 12, 13, 12}));
}

TEST(VignettingPadding, AMonoRowAndColumnRepeatTheirLastPixel)
{
  EXPECT_EQ(Pad<CReachableGray>(MakeRow({1, 2, 3, 4, 5, 6, 7}), 4, 1), MakeRow({1, 2, 3, 4, 5, 6, 7, 7}));
  EXPECT_EQ(Pad<CReachableGray>(MakeRow({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}), 8, 1),
            MakeRow({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 13, 13, 13}));
  EXPECT_EQ(Pad<CReachableGray>(MakeColumn({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}), 1, 8),
            MakeColumn({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 13, 13, 13}));
}

TEST(VignettingPadding, APaddedBayerImageKeepsItsCells)
{
  const int32_t anCell[4] = {10, 20, 30, 40};
  EXPECT_EQ(Pad<CReachableBayer>(CTestImage::MakeCells(30, 26, 8, anCell), 16, 16),
            CTestImage::MakeCells(32, 32, 8, anCell));
}

TEST(VignettingPadding, EqualsTheSlowTwinForAllSmallSides)
{
  CTestRandom random(3);
  for (int32_t nWidth = 8; nWidth <= 40; ++nWidth) {
    for (int32_t nHeight = 4; nHeight <= 20; ++nHeight) {
      const CTestImage image = CTestImage::MakeRandom(nWidth, nHeight, nHeight % 2 == 0 ? 8 : 10, random);
      ASSERT_EQ(Pad<CReachableBayer>(image, 8, 4), PadSlowly(image, {1, 8, 4, 8, 7})) << nWidth << " x " << nHeight;
      ASSERT_EQ(Pad<CReachableGray>(image, 8, 4), PadSlowly(image, {0, 8, 4, 8, 7})) << nWidth << " x " << nHeight;
    }
  }
}
