#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/testframe.h"

using namespace ffc::process;
using namespace ffc::test;

namespace {

// 64 x 64 in 32 x 32 blocks, each block of one value.
CTestImage MakeBlocks(int32_t nBitDepth, const int32_t (&anBlock)[4])
{
  CTestImage image(64, 64, nBitDepth);
  for (int32_t y = 0; y < 64; ++y) {
    for (int32_t x = 0; x < 64; ++x) {
      image.Set(x, y, anBlock[y / 32 * 2 + x / 32]);
    }
  }
  return image;
}

int32_t Measure(const CTestImage &image, uint32_t nPixelFormat, SBlockMeanRange &stRange, int32_t nBayerType = 0)
{
  return MeasureBlockMeans(MakeFrame(image), MakeFormat(nPixelFormat, image.GetWidth(), image.GetHeight()),
                           {32, 32, nBayerType}, stRange);
}

// What a measurement must not change when it fails.
void ExpectUntouched(const SBlockMeanRange &stRange)
{
  EXPECT_EQ(stRange.dMax, -5.0);
  EXPECT_EQ(stRange.dMin, -6.0);
}

constexpr SBlockMeanRange MARKED = {-5.0, -6.0};

} // namespace

TEST(FrameJudge, FindsTheBrightestAndTheDarkestBlock)
{
  SBlockMeanRange stRange;
  EXPECT_EQ(Measure(MakeBlocks(8, {30, 17, 99, 40}), MONO_8, stRange), 0);
  EXPECT_EQ(stRange.dMax, 99.0);
  EXPECT_EQ(stRange.dMin, 17.0);
  EXPECT_EQ(Measure(MakeBlocks(12, {300, 4095, 0, 40}), MONO_12, stRange), 0);
  EXPECT_EQ(stRange.dMax, 4095.0);
  EXPECT_EQ(stRange.dMin, 0.0);
}

TEST(FrameJudge, JudgesEachColourOfABayerFrame)
{
  const CTestImage image = CTestImage::MakeCells(64, 64, 8, {10, 20, 30, 40});
  SBlockMeanRange stRange;
  EXPECT_EQ(Measure(image, BAYER_RG_8, stRange, 2), 0); // R 30, G 25, B 20
  EXPECT_EQ(stRange.dMax, 30.0);
  EXPECT_EQ(stRange.dMin, 20.0);
  EXPECT_EQ(Measure(image, BAYER_RG_8, stRange, 0), 0);
  EXPECT_EQ(stRange.dMax, 25.0);
  EXPECT_EQ(stRange.dMin, 25.0);
}

TEST(FrameJudge, RefusesAFrameSmallerThanItsFormat)
{
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(64 * 64 * 2 - 1));
  SBlockMeanRange stRange = MARKED;
  EXPECT_EQ(MeasureBlockMeans(frame, MakeFormat(MONO_12, 64, 64), {32, 32, 0}, stRange),
            PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(MeasureBlockMeans(CFrameBuffer(), MakeFormat(MONO_8, 64, 64), {32, 32, 0}, stRange),
            PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  ExpectUntouched(stRange);
}

TEST(FrameJudge, RefusesAHostileGeometry)
{
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(64 * 64 * 2));
  SBlockMeanRange stRange = MARKED;
  for (const int64_t nSide : {int64_t{0}, int64_t{-64}, int64_t{1} << 31, (int64_t{1} << 32) + 64, int64_t{1} << 62}) {
    EXPECT_EQ(MeasureBlockMeans(frame, MakeFormat(MONO_8, nSide, 64), {32, 32, 0}, stRange),
              PLUGIN_STATUS_INVALID_PARAM)
      << nSide;
    EXPECT_EQ(MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, nSide), {32, 32, 0}, stRange),
              PLUGIN_STATUS_INVALID_PARAM)
      << nSide;
  }
  for (const int64_t nSide : {int64_t{1} << 31, (int64_t{1} << 32) + 32, INT64_MAX, INT64_MIN}) {
    EXPECT_EQ(MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, 64), {nSide, 32, 0}, stRange),
              PLUGIN_STATUS_INVALID_PARAM)
      << nSide;
    EXPECT_EQ(MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, 64), {32, nSide, 0}, stRange),
              PLUGIN_STATUS_INVALID_PARAM)
      << nSide;
  }
  ExpectUntouched(stRange);
}

TEST(FrameJudge, RefusesAGridThatDoesNotFit)
{
  SBlockMeanRange stRange = MARKED;
  EXPECT_EQ(Measure(CTestImage(30, 64, 8), MONO_8, stRange), -3);
  EXPECT_EQ(Measure(CTestImage(65, 64, 8), MONO_8, stRange), -3);
  ExpectUntouched(stRange);
}

TEST(FrameJudge, RefusesAFormatOfUnknownDepth)
{
  SBlockMeanRange stRange = MARKED;
  EXPECT_EQ(Measure(CTestImage(64, 64, 16), UNKNOWN_FORMAT, stRange), -3);
  EXPECT_EQ(Measure(CTestImage(64, 64, 8), UNKNOWN_FORMAT, stRange), -3) << "nor is its size known";
  ExpectUntouched(stRange);
}

TEST(FrameJudge, TellsThatThereIsNoMemory)
{
  const CFrameBuffer frame = MakeFrame(CTestImage(64, 64, 8, 9));
  SBlockMeanRange stRange = MARKED;
  const CFailingNew failing;
  EXPECT_EQ(MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, 64), {32, 32, 0}, stRange), PLUGIN_STATUS_OUT_OF_MEMORY);
  ExpectUntouched(stRange);
}

TEST(FrameJudge, AFrameUpToTwentyThatIsEvenWithinFiveIsDark)
{
  EXPECT_TRUE((SBlockMeanRange{0.0, 0.0}.IsDark()));
  EXPECT_TRUE((SBlockMeanRange{20.0, 15.001}.IsDark()));
  EXPECT_FALSE((SBlockMeanRange{20.0, 15.0}.IsDark()));
  EXPECT_FALSE((SBlockMeanRange{20.001, 20.0}.IsDark()));
  EXPECT_FALSE((SBlockMeanRange{5.0, 0.0}.IsDark()));
}

TEST(FrameJudge, SidesBeyondThirtyOneBitsBecomeTheLargestOnes)
{
  SFrameFormat stFormat = MakeFormat(MONO_8, 64, 48);
  BLOCK_PARAM stParam = MakeBlockParam(stFormat, {32, 16, 3});
  EXPECT_EQ(stParam.nWidth, 64);
  EXPECT_EQ(stParam.nHeight, 48);
  EXPECT_EQ(stParam.nBlockWidth, 32);
  EXPECT_EQ(stParam.nBlockHeight, 16);
  EXPECT_EQ(stParam.nBayerType, 3);
  stFormat.nWidth = (int64_t{1} << 32) + 64;
  stFormat.nHeight = INT64_MIN;
  stParam = MakeBlockParam(stFormat, {INT64_MAX, -1, 0});
  EXPECT_EQ(stParam.nWidth, INT32_MAX);
  EXPECT_EQ(stParam.nHeight, INT32_MIN);
  EXPECT_EQ(stParam.nBlockWidth, INT32_MAX);
  EXPECT_EQ(stParam.nBlockHeight, -1);
}

TEST(EightBitScale, TruncatesThenShifts)
{
  EXPECT_EQ(ToEightBitScale(20.0, 8), 20.0);
  EXPECT_EQ(ToEightBitScale(20.999, 8), 20.0);
  EXPECT_EQ(ToEightBitScale(21.0, 8), 21.0);
  EXPECT_EQ(ToEightBitScale(83.999, 10), 20.0); // 83 >> 2
  EXPECT_EQ(ToEightBitScale(84.0, 10), 21.0);
  EXPECT_EQ(ToEightBitScale(335.9, 12), 20.0); // 335 >> 4
  EXPECT_EQ(ToEightBitScale(336.0, 12), 21.0);
  EXPECT_EQ(ToEightBitScale(65535.0, 16), 255.0);
  EXPECT_EQ(ToEightBitScale(0.0, 16), 0.0);
}
