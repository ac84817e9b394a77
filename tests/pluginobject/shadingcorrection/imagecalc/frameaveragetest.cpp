#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

using TSums = std::vector<uint32_t>;

constexpr int64_t BAD_COUNTS[] = {0, -1, INT64_MIN};
constexpr int32_t BAD_DEPTHS[] = {INT32_MIN, -8, 0, 7, 17, INT32_MAX};

void Accumulate(const CTestImage &frame, TSums &listSums)
{
  ASSERT_EQ(CImageCalc().AccumulateFrame(frame.GetData(), frame.GetBitDepth(), frame.GetPixelCount(), listSums.data()),
            0);
}

CTestImage Divide(const TSums &listSums, int32_t nFrameCount, int32_t nBitDepth)
{
  CTestImage frame(static_cast<int32_t>(listSums.size()), 1, nBitDepth);
  EXPECT_EQ(CImageCalc().DivideFrame(listSums.data(), frame.GetPixelCount(), nFrameCount, nBitDepth, frame.GetData()),
            0);
  return frame;
}

} // namespace

TEST(FrameAverage, OneOneAndTwoGiveOne)
{
  TSums listSums(1);
  for (const int32_t nValue : {1, 1, 2}) {
    Accumulate(CTestImage(1, 1, 8, nValue), listSums);
  }
  EXPECT_EQ(listSums, TSums{4});
  EXPECT_EQ(Divide(listSums, 3, 8).GetAt(0), 1);
}

TEST(FrameAverage, EqualsTheSlowTwinForEveryDepthAndFrameCount)
{
  CTestRandom random(99);
  for (int32_t nBitDepth = 8; nBitDepth <= 16; ++nBitDepth) {
    for (const int32_t nFrameCount : {1, 2, 3, 4, 8, 16}) {
      const int32_t nPixels = random.Between(1, 500);
      TSums listSums(static_cast<std::size_t>(nPixels));
      std::vector<int64_t> listExpected(listSums.size());
      for (int32_t nFrame = 0; nFrame < nFrameCount; ++nFrame) {
        const CTestImage frame = CTestImage::MakeRandom(nPixels, 1, nBitDepth, random);
        Accumulate(frame, listSums);
        for (int32_t i = 0; i < nPixels; ++i) {
          listExpected[static_cast<std::size_t>(i)] += frame.GetAt(i);
        }
      }
      const CTestImage average = Divide(listSums, nFrameCount, nBitDepth);
      for (int32_t i = 0; i < nPixels; ++i) {
        ASSERT_EQ(average.GetAt(i), listExpected[static_cast<std::size_t>(i)] / nFrameCount)
          << nBitDepth << " bit, " << nFrameCount << " frames, pixel " << i;
      }
    }
  }
}

TEST(FrameAverage, IsExactAroundTheMultiplesOfEveryFrameCount)
{
  CTestRandom random(77);
  for (uint32_t nFrameCount = 1; nFrameCount <= 70000; nFrameCount += nFrameCount < 1100 ? 1 : 997) {
    TSums listSums = {0, 1, nFrameCount, UINT32_MAX, UINT32_MAX - 1};
    for (int32_t i = 0; i < 20; ++i) {
      const uint32_t nMultiple = static_cast<uint32_t>(random.Between(1, 65535)) * nFrameCount;
      listSums.insert(listSums.end(), {nMultiple - 1, nMultiple, nMultiple + 1});
    }
    const CTestImage average = Divide(listSums, static_cast<int32_t>(nFrameCount), 16);
    for (std::size_t i = 0; i < listSums.size(); ++i) {
      ASSERT_EQ(average.GetAt(static_cast<int32_t>(i)), static_cast<int32_t>(listSums[i] / nFrameCount & 0xFFFF))
        << listSums[i] << " by " << nFrameCount;
    }
  }
}

TEST(FrameAverage, ASumWrapsRound)
{
  TSums listSums = {UINT32_MAX};
  Accumulate(CTestImage(1, 1, 16, 65535), listSums);
  EXPECT_EQ(listSums, TSums{65534});
}

TEST(FrameAverage, TheDivisionIsUnsigned)
{
  EXPECT_EQ(Divide({0x80000000U, UINT32_MAX}, 65536, 16).GetAt(0), 32768);
  EXPECT_EQ(Divide({0x80000000U, UINT32_MAX}, INT32_MAX, 16).GetAt(1), 2);
}

TEST(FrameAverage, AnAverageAboveThePixelsTypeIsCut)
{
  EXPECT_EQ(Divide({0x1FF}, 1, 8).GetAt(0), 0xFF);
  EXPECT_EQ(Divide({0x100}, 1, 8).GetAt(0), 0);
  EXPECT_EQ(Divide({0x12345}, 1, 9).GetAt(0), 0x2345);
}

TEST(FrameAverage, OnlyTheCountedPixelsAreTouched)
{
  const CTestImage frame(3, 1, 12, 5);
  TSums listSums = {1, 1, 1};
  EXPECT_EQ(CImageCalc().AccumulateFrame(frame.GetData(), 12, 2, listSums.data()), 0);
  EXPECT_EQ(listSums, (TSums{6, 6, 1}));
  CTestImage average(3, 1, 12, 77);
  EXPECT_EQ(CImageCalc().DivideFrame(listSums.data(), 2, 2, 12, average.GetData()), 0);
  EXPECT_EQ(average.GetAt(1), 3);
  EXPECT_EQ(average.GetAt(2), 77);
}

TEST(AccumulateFrame, AMissingBufferIsRefusedBeforeAnythingElse)
{
  const CTestImage frame(4, 1, 8, 5);
  TSums listSums(4, 1);
  EXPECT_EQ(CImageCalc().AccumulateFrame(nullptr, 8, 4, listSums.data()), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().AccumulateFrame(frame.GetData(), 8, 4, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().AccumulateFrame(nullptr, 7, 0, listSums.data()), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(TSums(4, 1), listSums);
}

TEST(AccumulateFrame, ABitDepthOrPixelCountOutOfRangeIsRefused)
{
  const CTestImage frame(4, 1, 8, 5);
  TSums listSums(4, 1);
  for (const int32_t nBitDepth : BAD_DEPTHS) {
    EXPECT_EQ(CImageCalc().AccumulateFrame(frame.GetData(), nBitDepth, 4, listSums.data()),
              IMAGECALC_STATUS_OUT_OF_RANGE)
      << nBitDepth;
  }
  for (const int64_t nPixels : BAD_COUNTS) {
    EXPECT_EQ(CImageCalc().AccumulateFrame(frame.GetData(), 8, nPixels, listSums.data()), IMAGECALC_STATUS_OUT_OF_RANGE)
      << nPixels;
  }
  EXPECT_EQ(TSums(4, 1), listSums);
}

TEST(DivideFrame, AMissingBufferIsRefusedBeforeAnythingElse)
{
  const TSums listSums(4, 100);
  CTestImage frame(4, 1, 8, 5);
  EXPECT_EQ(CImageCalc().DivideFrame(nullptr, 4, 2, 8, frame.GetData()), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().DivideFrame(listSums.data(), 4, 2, 8, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CImageCalc().DivideFrame(nullptr, 0, 0, 7, frame.GetData()), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(CTestImage(4, 1, 8, 5), frame);
}

TEST(DivideFrame, ABitDepthPixelOrFrameCountOutOfRangeIsRefused)
{
  const TSums listSums(4, 100);
  CTestImage frame(4, 1, 8, 5);
  for (const int32_t nBitDepth : BAD_DEPTHS) {
    EXPECT_EQ(CImageCalc().DivideFrame(listSums.data(), 4, 2, nBitDepth, frame.GetData()),
              IMAGECALC_STATUS_OUT_OF_RANGE)
      << nBitDepth;
  }
  for (const int64_t nPixels : BAD_COUNTS) {
    EXPECT_EQ(CImageCalc().DivideFrame(listSums.data(), nPixels, 2, 8, frame.GetData()), IMAGECALC_STATUS_OUT_OF_RANGE)
      << nPixels;
  }
  for (const int32_t nFrameCount : {0, -1, INT32_MIN}) {
    EXPECT_EQ(CImageCalc().DivideFrame(listSums.data(), 4, nFrameCount, 8, frame.GetData()),
              IMAGECALC_STATUS_OUT_OF_RANGE)
      << nFrameCount;
  }
  EXPECT_EQ(CTestImage(4, 1, 8, 5), frame);
}
