#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingtwin.h"

#include <algorithm>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingcoefficient.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingfixture.h"

using namespace ffc::test;

namespace {

std::unique_ptr<IVignettingCorrection> MakeCalculator(const SVignettingCase &stCase)
{
  std::unique_ptr<IVignettingCorrection> pCalculator;
  if (stCase.nBayerType == 0) {
    pCalculator = std::make_unique<CVCGary>();
  } else {
    pCalculator = std::make_unique<CVCBayer>(static_cast<uint32_t>(stCase.nBayerType));
  }
  EXPECT_EQ(pCalculator->Init(static_cast<uint32_t>(stCase.nBlockWidth), static_cast<uint32_t>(stCase.nBlockHeight),
                              static_cast<uint32_t>(stCase.nScaleBits), stCase.nMaxGain),
            0);
  return pCalculator;
}

void ExpectEqualsTwin(const CTestImage &image, const SVignettingCase &stCase)
{
  SCOPED_TRACE(testing::Message() << "type " << stCase.nBayerType << ", " << image.GetBitDepth() << " bit, "
                                  << image.GetWidth() << " x " << image.GetHeight() << " by " << stCase.nBlockWidth
                                  << " x " << stCase.nBlockHeight << ", 1 << " << stCase.nScaleBits << ", at most "
                                  << stCase.nMaxGain);
  const SVignettingTwinTable stExpected = ComputeVignettingSlowly(image, stCase);
  const auto pCalculator = MakeCalculator(stCase);
  const SGainTable stTable = CalcTable(*pCalculator, image);
  ASSERT_EQ(stTable.nStatus, 0);
  ASSERT_EQ(static_cast<uint64_t>(stExpected.nColumns), stTable.nColumns);
  ASSERT_EQ(static_cast<uint64_t>(stExpected.nRows), stTable.nRows);
  ASSERT_EQ(stTable.GetGains(stCase.nBayerType == 0 ? 1 : 3), stExpected.listGains);
}

// Pixels around a level that falls off or rises from block to block, some blocks black.
CTestImage MakeUnevenImage(const SVignettingCase &stCase, int32_t nWidth, int32_t nHeight, int32_t nBitDepth,
                           CTestRandom &random)
{
  const int32_t nWhite = (1 << nBitDepth) - 1;
  const int32_t nSlopeX = random.Between(-40, 40);
  const int32_t nSlopeY = random.Between(-40, 40);
  const int32_t nLevel = random.Between(0, 100);
  CTestImage image(nWidth, nHeight, nBitDepth);
  for (int32_t y = 0; y < nHeight; ++y) {
    for (int32_t x = 0; x < nWidth; ++x) {
      const int32_t nPercent = nLevel + x / stCase.nBlockWidth * nSlopeX + y / stCase.nBlockHeight * nSlopeY;
      const int32_t nValue = nWhite * nPercent / 100 + random.Between(-nWhite / 50, nWhite / 50);
      image.Set(x, y, nPercent <= 0 || nValue < 0 ? 0 : std::min(nValue, nWhite));
    }
  }
  return image;
}

} // namespace

TEST(VignettingTwin, TheCalculatorsEqualItForEveryLayoutAndDepthOverRandomGeometries)
{
  CTestRandom random(1234);
  for (int32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
    for (const int32_t nBitDepth : {8, 10, 12}) {
      for (int32_t nRun = 0; nRun < 60; ++nRun) {
        const SVignettingCase stCase = {nBayerType, 2 << random.Between(0, 4), 2 << random.Between(0, 4),
                                        random.Between(0, 15), random.Between(1, 40)};
        const int32_t nWidth = stCase.nBlockWidth + random.Between(0, 6 * stCase.nBlockWidth);
        const int32_t nHeight = stCase.nBlockHeight + random.Between(0, 6 * stCase.nBlockHeight);
        const CTestImage image = nRun % 2 == 0 ? CTestImage::MakeRandom(nWidth, nHeight, nBitDepth, random)
                                               : MakeUnevenImage(stCase, nWidth, nHeight, nBitDepth, random);
        ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin(image, stCase));
      }
    }
  }
}

TEST(VignettingTwin, TheCalculatorsEqualItForEveryStrip)
{
  CTestRandom random(55);
  for (int32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
    for (int32_t nStrip = 0; nStrip < 16; ++nStrip) {
      const SVignettingCase stCase = {nBayerType, 16, 8, 8, 7};
      ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin(CTestImage::MakeRandom(48 + nStrip, 24, 8, random), stCase));
      ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin(CTestImage::MakeRandom(48, 24 + nStrip, 12, random), stCase));
    }
  }
}

TEST(VignettingTwin, AMonoCalculatorTakesBlocksOfSinglePixels)
{
  CTestRandom random(8);
  for (int32_t nSide = 1; nSide <= 9; ++nSide) {
    ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin(CTestImage::MakeRandom(nSide, 5, 8, random), {0, 1, 1, 8, 7}));
    ASSERT_NO_FATAL_FAILURE(ExpectEqualsTwin(CTestImage::MakeRandom(5, nSide, 8, random), {0, 1, 1, 15, INT32_MAX}));
  }
}

TEST(VignettingTwin, TheFunctionsEqualItInSizeAndContentOverManyGeometries)
{
  CTestRandom random(99);
  for (int32_t nBayerType = 0; nBayerType <= 4; ++nBayerType) {
    for (int32_t nRun = 0; nRun < 200; ++nRun) {
      const SVignettingCase stCase = {nBayerType, 2 << random.Between(0, 4), 2 << random.Between(0, 4), 8, 7};
      const CTestImage image = CTestImage::MakeRandom(stCase.nBlockWidth + 2 * random.Between(0, 40),
                                                      stCase.nBlockHeight + 2 * random.Between(0, 40), 8, random);
      const SVignettingTwinTable stExpected = ComputeVignettingSlowly(image, stCase);
      const auto nExpectedSize = static_cast<int64_t>(stExpected.listGains.size() * 2);
      int64_t nSize = -1;
      ASSERT_EQ(GetVignettingCoefficientSize(nBayerType, image.GetWidth(), image.GetHeight(), stCase.nBlockWidth,
                                             stCase.nBlockHeight, &nSize),
                0);
      ASSERT_EQ(nSize, nExpectedSize);
      std::vector<uint16_t> listTable(stExpected.listGains.size());
      ASSERT_EQ(CalcVignettingCoefficient(image.GetData(), 8, nBayerType, image.GetWidth(), image.GetHeight(),
                                          stCase.nBlockWidth, stCase.nBlockHeight, nSize, listTable.data()),
                0);
      ASSERT_EQ(TGains(listTable.begin(), listTable.end()), stExpected.listGains);
    }
  }
}
