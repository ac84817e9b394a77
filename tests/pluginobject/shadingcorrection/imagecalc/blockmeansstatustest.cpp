#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

constexpr double UNTOUCHED = -7.0;
constexpr BLOCK_PARAM GOOD_GRID = {64, 64, 32, 32, 1};
constexpr BLOCK_PARAM SMALL_BLOCK = {64, 64, 32, 6, 1};
constexpr BLOCK_PARAM ODD_BLOCK = {64, 64, 32, 31, 1};

class BlockMeansStatus : public testing::Test {
protected:
  const CTestImage m_image = CTestImage(64, 64, 8, 9);
  std::vector<double> m_listMeans = std::vector<double>(12, UNTOUCHED);
  double m_dMax = UNTOUCHED;
  double m_dMin = UNTOUCHED;

  int32_t CalcMeans(const void *pImage, int32_t nBitDepth, const BLOCK_PARAM &stParam)
  {
    return CImageCalc().CalcBlockMeans(pImage, nBitDepth, stParam, m_listMeans.data());
  }

  int32_t GetExtremes(const void *pImage, int32_t nBitDepth, const BLOCK_PARAM &stParam)
  {
    return CImageCalc().GetBlockMeanMaxMin(pImage, nBitDepth, stParam, &m_dMax, &m_dMin);
  }

  // Every test here is about a failure.
  void TearDown() override
  {
    EXPECT_EQ(m_listMeans, std::vector<double>(12, UNTOUCHED));
    EXPECT_EQ(m_dMax, UNTOUCHED);
    EXPECT_EQ(m_dMin, UNTOUCHED);
  }
};

} // namespace

TEST_F(BlockMeansStatus, MeansRefuseAMissingImageOrOutputBeforeAnythingElse)
{
  EXPECT_EQ(CalcMeans(nullptr, 8, GOOD_GRID), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CalcMeans(nullptr, 7, SMALL_BLOCK), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().CalcBlockMeans(m_image.GetData(), 7, SMALL_BLOCK, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST_F(BlockMeansStatus, MeansRefuseABitDepthOutOfRangeBeforeTheGrid)
{
  for (const int32_t nBitDepth : {INT32_MIN, -8, 0, 7, 17, INT32_MAX}) {
    EXPECT_EQ(CalcMeans(m_image.GetData(), nBitDepth, GOOD_GRID), IMAGECALC_STATUS_OUT_OF_RANGE) << nBitDepth;
  }
  EXPECT_EQ(CalcMeans(m_image.GetData(), 7, ODD_BLOCK), IMAGECALC_STATUS_OUT_OF_RANGE);
}

TEST_F(BlockMeansStatus, MeansReturnTheStatusOfTheGrid)
{
  EXPECT_EQ(CalcMeans(m_image.GetData(), 8, ODD_BLOCK), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CalcMeans(m_image.GetData(), 8, SMALL_BLOCK), IMAGECALC_STATUS_OUT_OF_RANGE);
  EXPECT_EQ(CalcMeans(m_image.GetData(), 8, BLOCK_PARAM()), IMAGECALC_STATUS_OUT_OF_RANGE);
}

TEST_F(BlockMeansStatus, ExtremesReturnTheStatusOfTheGridBeforeAnythingElse)
{
  EXPECT_EQ(GetExtremes(m_image.GetData(), 8, ODD_BLOCK), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetExtremes(nullptr, 7, SMALL_BLOCK), IMAGECALC_STATUS_OUT_OF_RANGE);
  const CFailingNew failingNew;
  EXPECT_EQ(GetExtremes(nullptr, 7, SMALL_BLOCK), IMAGECALC_STATUS_OUT_OF_RANGE);
}

TEST_F(BlockMeansStatus, ExtremesRefuseAMissingImage)
{
  EXPECT_EQ(GetExtremes(nullptr, 8, GOOD_GRID), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetExtremes(nullptr, 7, GOOD_GRID), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST_F(BlockMeansStatus, ExtremesRefuseABitDepthOutOfRange)
{
  EXPECT_EQ(GetExtremes(m_image.GetData(), 7, GOOD_GRID), IMAGECALC_STATUS_OUT_OF_RANGE);
  EXPECT_EQ(GetExtremes(m_image.GetData(), 17, GOOD_GRID), IMAGECALC_STATUS_OUT_OF_RANGE);
}

TEST_F(BlockMeansStatus, ExtremesRefuseAMissingOutput)
{
  EXPECT_EQ(CImageCalc().GetBlockMeanMaxMin(m_image.GetData(), 8, GOOD_GRID, nullptr, &m_dMin),
            IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().GetBlockMeanMaxMin(m_image.GetData(), 8, GOOD_GRID, &m_dMax, nullptr),
            IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST_F(BlockMeansStatus, ExtremesReportMemoryThatRunsOut)
{
  const CFailingNew failingNew;
  EXPECT_EQ(GetExtremes(m_image.GetData(), 8, GOOD_GRID), IMAGECALC_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(GetExtremes(nullptr, 7, GOOD_GRID), IMAGECALC_STATUS_OUT_OF_MEMORY)
    << "memory is asked for before the image is looked at";
}
