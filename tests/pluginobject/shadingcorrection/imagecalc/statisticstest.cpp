#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

// No state: nothing but the virtual-function table.
static_assert(sizeof(CImageCalc) == sizeof(void *) && std::has_virtual_destructor_v<CImageCalc>);

TEST(CalcImageMean, EqualsTheSlowTwinForEveryDepthOverRandomSizes)
{
  CTestRandom random(31);
  for (int32_t nBitDepth = 8; nBitDepth <= 16; ++nBitDepth) {
    for (int32_t nRun = 0; nRun < 20; ++nRun) {
      const CTestImage image = CTestImage::MakeRandom(random.Between(1, 63), random.Between(1, 63), nBitDepth, random);
      int64_t nSum = 0;
      for (int32_t i = 0; i < image.GetPixelCount(); ++i) {
        nSum += image.GetAt(i);
      }
      double dMean = -1.0;
      ASSERT_EQ(CImageCalc().CalcImageMean(image.GetData(), nBitDepth, image.GetWidth(), image.GetHeight(), &dMean), 0);
      ASSERT_EQ(static_cast<double>(nSum) / image.GetPixelCount(), dMean);
    }
  }
}

TEST(CalcImageMean, AMissingImageOrOutputIsRefusedBeforeAnythingElse)
{
  const uint8_t nPixel = 1;
  double dMean = -1.0;
  EXPECT_EQ(CImageCalc().CalcImageMean(nullptr, 8, 1, 1, &dMean), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().CalcImageMean(nullptr, 7, 0, 0, &dMean), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().CalcImageMean(&nPixel, 7, 0, 0, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(dMean, -1.0);
}

TEST(CalcImageMean, ABitDepthOrSideOutOfRangeIsRefused)
{
  const uint8_t nPixel = 1;
  double dMean = -1.0;
  for (const int32_t nBitDepth : {INT32_MIN, 0, 7, 17, INT32_MAX}) {
    EXPECT_EQ(CImageCalc().CalcImageMean(&nPixel, nBitDepth, 1, 1, &dMean), IMAGECALC_STATUS_OUT_OF_RANGE) << nBitDepth;
  }
  for (const int32_t nSide : {0, -1, INT32_MIN}) {
    EXPECT_EQ(CImageCalc().CalcImageMean(&nPixel, 8, nSide, 1, &dMean), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
    EXPECT_EQ(CImageCalc().CalcImageMean(&nPixel, 8, 1, nSide, &dMean), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
    EXPECT_EQ(CImageCalc().CalcImageMean(&nPixel, 8, nSide, nSide, &dMean), IMAGECALC_STATUS_OUT_OF_RANGE) << nSide;
  }
  EXPECT_EQ(dMean, -1.0);
}

TEST(GetMaxMin, FindsTheExtremesWhereverTheyAre)
{
  struct SCase {
    std::vector<double> listValues;
    double dMax;
    double dMin;
  };
  const SCase aCases[] = {
    {{5.0}, 5.0, 5.0},
    {{5.0, 5.0, 5.0}, 5.0, 5.0},
    {{1.0, 2.0, 3.0}, 3.0, 1.0},
    {{3.0, 2.0, 1.0}, 3.0, 1.0},
    {{2.0, 1.0, 3.0, 2.0}, 3.0, 1.0},
    {{-2.0, -1.5, -3.0}, -1.5, -3.0},
    {{0.0, -1e300, 1e300}, 1e300, -1e300},
  };
  for (const SCase &stCase : aCases) {
    double dMax = 99.0;
    double dMin = 99.0;
    const auto nCount = static_cast<int64_t>(stCase.listValues.size());
    EXPECT_EQ(CImageCalc().GetMaxMin(stCase.listValues.data(), nCount, &dMax, &dMin), 0);
    EXPECT_EQ(dMax, stCase.dMax);
    EXPECT_EQ(dMin, stCase.dMin);
  }
}

TEST(GetMaxMin, OnlyTheCountedValuesAreRead)
{
  const double adValues[] = {2.0, 3.0, 99.0};
  double dMax = 0.0;
  double dMin = 0.0;
  EXPECT_EQ(CImageCalc().GetMaxMin(adValues, 2, &dMax, &dMin), 0);
  EXPECT_EQ(dMax, 3.0);
  EXPECT_EQ(dMin, 2.0);
}

TEST(GetMaxMin, AMissingArrayOrOutputAndACountBelowOneAreRefused)
{
  const double adValues[] = {2.0, 3.0};
  double dMax = -1.0;
  double dMin = -1.0;
  EXPECT_EQ(CImageCalc().GetMaxMin(nullptr, 2, &dMax, &dMin), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().GetMaxMin(adValues, 2, nullptr, &dMin), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().GetMaxMin(adValues, 2, &dMax, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  for (const int64_t nCount : {int64_t{0}, int64_t{-1}, INT64_MIN}) {
    EXPECT_EQ(CImageCalc().GetMaxMin(adValues, nCount, &dMax, &dMin), IMAGECALC_STATUS_INVALID_ARGUMENT);
  }
  EXPECT_EQ(dMax, -1.0);
  EXPECT_EQ(dMin, -1.0);
}
