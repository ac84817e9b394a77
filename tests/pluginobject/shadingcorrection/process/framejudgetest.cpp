#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
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
  EXPECT_EQ(-5.0, stRange.dMax);
  EXPECT_EQ(-6.0, stRange.dMin);
}

constexpr SBlockMeanRange MARKED = {-5.0, -6.0};

} // namespace

TEST(FrameJudge, FindsTheBrightestAndTheDarkestBlock)
{
  SBlockMeanRange stRange;
  EXPECT_EQ(0, Measure(MakeBlocks(8, {30, 17, 99, 40}), MONO_8, stRange));
  EXPECT_EQ(99.0, stRange.dMax);
  EXPECT_EQ(17.0, stRange.dMin);
  EXPECT_EQ(0, Measure(MakeBlocks(12, {300, 4095, 0, 40}), MONO_12, stRange));
  EXPECT_EQ(4095.0, stRange.dMax);
  EXPECT_EQ(0.0, stRange.dMin);
}

TEST(FrameJudge, JudgesEachColourOfABayerFrame)
{
  const CTestImage image = CTestImage::MakeCells(64, 64, 8, {10, 20, 30, 40});
  SBlockMeanRange stRange;
  EXPECT_EQ(0, Measure(image, BAYER_RG_8, stRange, 2)); // R 30, G 25, B 20
  EXPECT_EQ(30.0, stRange.dMax);
  EXPECT_EQ(20.0, stRange.dMin);
  EXPECT_EQ(0, Measure(image, BAYER_RG_8, stRange, 0));
  EXPECT_EQ(25.0, stRange.dMax);
  EXPECT_EQ(25.0, stRange.dMin);
}

TEST(FrameJudge, RefusesAFrameSmallerThanItsFormat)
{
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(64 * 64 * 2 - 1));
  SBlockMeanRange stRange = MARKED;
  EXPECT_EQ(-1012, MeasureBlockMeans(frame, MakeFormat(MONO_12, 64, 64), {32, 32, 0}, stRange));
  EXPECT_EQ(-1012, MeasureBlockMeans(CFrameBuffer(), MakeFormat(MONO_8, 64, 64), {32, 32, 0}, stRange));
  ExpectUntouched(stRange);
}

TEST(FrameJudge, RefusesAHostileGeometry)
{
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(64 * 64 * 2));
  SBlockMeanRange stRange = MARKED;
  for (const int64_t nSide : {int64_t{0}, int64_t{-64}, int64_t{1} << 31, (int64_t{1} << 32) + 64, int64_t{1} << 62}) {
    EXPECT_EQ(-3, MeasureBlockMeans(frame, MakeFormat(MONO_8, nSide, 64), {32, 32, 0}, stRange)) << nSide;
    EXPECT_EQ(-3, MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, nSide), {32, 32, 0}, stRange)) << nSide;
  }
  for (const int64_t nSide : {int64_t{1} << 31, (int64_t{1} << 32) + 32, INT64_MAX, INT64_MIN}) {
    EXPECT_EQ(-3, MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, 64), {nSide, 32, 0}, stRange)) << nSide;
    EXPECT_EQ(-3, MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, 64), {32, nSide, 0}, stRange)) << nSide;
  }
  ExpectUntouched(stRange);
}

TEST(FrameJudge, RefusesAGridThatDoesNotFit)
{
  SBlockMeanRange stRange = MARKED;
  EXPECT_EQ(-3, Measure(CTestImage(30, 64, 8), MONO_8, stRange));
  EXPECT_EQ(-3, Measure(CTestImage(65, 64, 8), MONO_8, stRange));
  ExpectUntouched(stRange);
}

TEST(FrameJudge, RefusesAFormatOfUnknownDepth)
{
  SBlockMeanRange stRange = MARKED;
  EXPECT_EQ(-3, Measure(CTestImage(64, 64, 16), UNKNOWN_FORMAT, stRange));
  ExpectUntouched(stRange);
}

TEST(FrameJudge, TellsThatThereIsNoMemory)
{
  const CFrameBuffer frame = MakeFrame(CTestImage(64, 64, 8, 9));
  SBlockMeanRange stRange = MARKED;
  const CFailingNew failing;
  EXPECT_EQ(-2, MeasureBlockMeans(frame, MakeFormat(MONO_8, 64, 64), {32, 32, 0}, stRange));
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
  EXPECT_EQ(64, stParam.nWidth);
  EXPECT_EQ(48, stParam.nHeight);
  EXPECT_EQ(32, stParam.nBlockWidth);
  EXPECT_EQ(16, stParam.nBlockHeight);
  EXPECT_EQ(3, stParam.nBayerType);
  stFormat.nWidth = (int64_t{1} << 32) + 64;
  stFormat.nHeight = INT64_MIN;
  stParam = MakeBlockParam(stFormat, {INT64_MAX, -1, 0});
  EXPECT_EQ(INT32_MAX, stParam.nWidth);
  EXPECT_EQ(INT32_MIN, stParam.nHeight);
  EXPECT_EQ(INT32_MAX, stParam.nBlockWidth);
  EXPECT_EQ(-1, stParam.nBlockHeight);
}

TEST(EightBitScale, TruncatesThenShifts)
{
  EXPECT_EQ(20.0, ToEightBitScale(20.0, 8));
  EXPECT_EQ(20.0, ToEightBitScale(20.999, 8));
  EXPECT_EQ(21.0, ToEightBitScale(21.0, 8));
  EXPECT_EQ(20.0, ToEightBitScale(83.999, 10)); // 83 >> 2
  EXPECT_EQ(21.0, ToEightBitScale(84.0, 10));
  EXPECT_EQ(20.0, ToEightBitScale(335.9, 12)); // 335 >> 4
  EXPECT_EQ(21.0, ToEightBitScale(336.0, 12));
  EXPECT_EQ(255.0, ToEightBitScale(65535.0, 16));
  EXPECT_EQ(0.0, ToEightBitScale(0.0, 16));
}
