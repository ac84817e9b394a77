#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/testframe.h"

using namespace ffc::process;
using namespace ffc::test;

namespace {

// The slow twin: one pixel after the other, in 64 bits.
CTestImage AverageSlowly(const std::vector<CTestImage> &listFrames)
{
  CTestImage average = listFrames.front();
  for (int32_t i = 0; i < average.GetPixelCount(); ++i) {
    int64_t nSum = 0;
    for (const CTestImage &frame : listFrames) {
      nSum += frame.GetAt(i);
    }
    average.SetAt(i, static_cast<int32_t>(nSum / static_cast<int64_t>(listFrames.size())));
  }
  return average;
}

CTestImage Average(const std::vector<CTestImage> &listFrames, uint32_t nPixelFormat)
{
  const CTestImage &first = listFrames.front();
  const SFrameFormat stFormat = MakeFormat(nPixelFormat, first.GetWidth(), first.GetHeight());
  CFrameAccumulator accumulator;
  CFrameBuffer average;
  EXPECT_TRUE(accumulator.Allocate(stFormat.nFrameSize));
  EXPECT_TRUE(average.Allocate(stFormat.nFrameSize));
  for (const CTestImage &frame : listFrames) {
    EXPECT_EQ(accumulator.Add(MakeFrame(frame), stFormat), 0);
  }
  EXPECT_EQ(accumulator.Average(static_cast<uint32_t>(listFrames.size()), stFormat, average), 0);
  return MakeImage(average, first.GetWidth(), first.GetHeight(), first.GetBitDepth());
}

} // namespace

TEST(FrameAccumulator, AveragesLikeItsSlowTwin)
{
  CTestRandom random(7);
  const std::pair<uint32_t, int32_t> aFormats[] = {{MONO_8, 8},   {MONO_10, 10}, {MONO_12, 12},
                                                   {MONO_14, 14}, {MONO_16, 16}, {MONO_12_PACKED, 12}};
  for (const auto &[nPixelFormat, nBitDepth] : aFormats) {
    for (const int nFrameCount : {1, 2, 4, 8, 16}) {
      const int32_t nWidth = random.Between(1, 40);
      const int32_t nHeight = random.Between(1, 40);
      std::vector<CTestImage> listFrames;
      for (int i = 0; i < nFrameCount; ++i) {
        listFrames.push_back(CTestImage::MakeRandom(nWidth, nHeight, nBitDepth, random));
      }
      EXPECT_TRUE(AverageSlowly(listFrames) == Average(listFrames, nPixelFormat)) << nBitDepth << " " << nFrameCount;
    }
  }
}

TEST(FrameAccumulator, TruncatesTheAverageOfOneOneAndTwo)
{
  const std::vector<CTestImage> listFrames = {CTestImage(8, 8, 8, 1), CTestImage(8, 8, 8, 1), CTestImage(8, 8, 8, 2)};
  EXPECT_TRUE(CTestImage(8, 8, 8, 1) == Average(listFrames, MONO_8));
}

TEST(FrameAccumulator, AveragesTheBrightestFrames)
{
  const std::vector<CTestImage> listFrames(16, CTestImage(8, 8, 16, 65535));
  EXPECT_TRUE(listFrames.front() == Average(listFrames, MONO_16));
}

TEST(FrameAccumulator, RefusesAFrameSmallerThanItsFormat)
{
  CFrameAccumulator accumulator;
  ASSERT_TRUE(accumulator.Allocate(2 * 64));
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(127));
  EXPECT_EQ(accumulator.Add(frame, MakeFormat(MONO_12, 8, 8)), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(accumulator.Add(CFrameBuffer(), MakeFormat(MONO_12, 8, 8)), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
}

TEST(FrameAccumulator, RefusesAFormatOfMorePixelsThanItsSums)
{
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(1000));
  CFrameAccumulator accumulator;
  EXPECT_EQ(accumulator.Add(frame, MakeFormat(MONO_8, 8, 8)), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  ASSERT_TRUE(accumulator.Allocate(63));
  EXPECT_EQ(accumulator.Add(frame, MakeFormat(MONO_8, 8, 8)), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(accumulator.Average(1, MakeFormat(MONO_8, 8, 8), frame), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  accumulator.Release();
  EXPECT_EQ(accumulator.Add(frame, MakeFormat(MONO_8, 7, 9)), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
}

TEST(FrameAccumulator, RefusesToWriteAnAverageThatDoesNotFit)
{
  CFrameAccumulator accumulator;
  ASSERT_TRUE(accumulator.Allocate(128));
  CFrameBuffer average;
  EXPECT_EQ(accumulator.Average(1, MakeFormat(MONO_12, 8, 8), average), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  ASSERT_TRUE(average.Allocate(127));
  EXPECT_EQ(accumulator.Average(1, MakeFormat(MONO_12, 8, 8), average), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
}

TEST(FrameAccumulator, RefusesAHostileGeometry)
{
  CFrameAccumulator accumulator;
  ASSERT_TRUE(accumulator.Allocate(128));
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(128));
  for (const int64_t nSide : {int64_t{0}, int64_t{-8}, int64_t{1} << 31, int64_t{1} << 62}) {
    EXPECT_EQ(accumulator.Add(frame, MakeFormat(MONO_8, nSide, 8)), PLUGIN_STATUS_BUFFER_SIZE_ERROR) << nSide;
    EXPECT_EQ(accumulator.Average(1, MakeFormat(MONO_8, 8, nSide), frame), PLUGIN_STATUS_BUFFER_SIZE_ERROR) << nSide;
  }
}

TEST(FrameAccumulator, RefusesNoFramesAndAnUnknownDepth)
{
  CFrameAccumulator accumulator;
  ASSERT_TRUE(accumulator.Allocate(128));
  CFrameBuffer frame;
  ASSERT_TRUE(frame.Allocate(128));
  EXPECT_EQ(accumulator.Average(0, MakeFormat(MONO_8, 8, 8), frame), -3);
  EXPECT_EQ(accumulator.Add(frame, MakeFormat(UNKNOWN_FORMAT, 8, 8)), -3);
  EXPECT_EQ(accumulator.Average(1, MakeFormat(UNKNOWN_FORMAT, 8, 8), frame), -3);
}

TEST(FrameAccumulator, CannotTakeHugeSums)
{
  CFrameAccumulator accumulator;
  for (const uint64_t nFrameSize : {UINT64_MAX, uint64_t{1} << 62, (uint64_t{1} << 62) + 1, uint64_t{1} << 60}) {
    EXPECT_FALSE(accumulator.Allocate(nFrameSize)) << nFrameSize;
  }
  const CFailingNew failing;
  EXPECT_FALSE(accumulator.Allocate(16));
}

TEST(BrightField, TheAverageTakesTheMemoryOfTheLastFrameAndLaterFramesDoNotReachIt)
{
  CFrameExchange exchange;
  CBrightField bright(exchange);
  const SFrameFormat stFormat = MakeFormat(MONO_8, 8, 8);
  ASSERT_EQ(bright.Allocate(80), 0); // with 16 bytes that are no pixels
  const auto fnReceive = [&](uint8_t nValue) {
    const std::vector<uint8_t> listFrame(70, nValue);
    exchange.ReceiveFrame(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
  };
  for (const uint8_t nValue : {uint8_t{4}, uint8_t{8}}) {
    fnReceive(nValue);
    ASSERT_EQ(bright.Add(stFormat), 0);
  }
  const uint8_t *const pFrame = exchange.UseFrame([](const CFrameBuffer &frame) { return frame.GetData(); });
  ASSERT_EQ(bright.Average(2, stFormat), 0);
  fnReceive(9);
  bright.EndAcquisition();
  const CFrameBuffer &average = bright.GetAverage();
  EXPECT_EQ(average.GetData(), pFrame);
  std::vector<uint8_t> listExpected(80, 0);
  std::fill_n(listExpected.begin(), 64, uint8_t{6});
  EXPECT_EQ(std::vector<uint8_t>(average.GetData(), average.GetData() + average.GetSize()), listExpected);
}

TEST(BrightField, AnAverageThatFailsIsNotKept)
{
  CFrameExchange exchange;
  CBrightField bright(exchange);
  ASSERT_EQ(bright.Allocate(64), 0);
  EXPECT_EQ(bright.KeepOnSuccess(bright.Average(1, MakeFormat(MONO_12, 8, 8))), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_FALSE(bright.GetAverage().IsAllocated());
}
