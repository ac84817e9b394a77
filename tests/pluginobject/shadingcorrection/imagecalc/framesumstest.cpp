#include "pluginobject/shadingcorrection/imagecalc/framesums.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

using TWords = std::vector<uint32_t>;

// Sums beside those of 32 bits that every frame is added to as well.
class CTwinSums {
public:
  explicit CTwinSums(int32_t nPixels) : m_listMemory(static_cast<std::size_t>(nPixels)), m_listTwin(m_listMemory.size())
  {
  }

  CFrameSums &Sums() { return m_sums; }

  void Add(const CTestImage &frame)
  {
    EXPECT_EQ(m_sums.Add(frame.GetData(), frame.GetBitDepth(), frame.GetPixelCount()), 0);
    EXPECT_EQ(
      CImageCalc().AccumulateFrame(frame.GetData(), frame.GetBitDepth(), frame.GetPixelCount(), m_listTwin.data()), 0);
  }

  void Add(const CTestImage &frame, int32_t nTimes)
  {
    for (int32_t i = 0; i < nTimes; ++i) {
      Add(frame);
    }
  }

  void ExpectSameAverage(int32_t nFrameCount, int32_t nBitDepth)
  {
    const auto nPixels = static_cast<int32_t>(m_listTwin.size());
    CTestImage average(nPixels, 1, nBitDepth, 1);
    CTestImage expected(nPixels, 1, nBitDepth, 2);
    EXPECT_EQ(m_sums.Average(nFrameCount, nBitDepth, nPixels, average.GetData()), 0);
    EXPECT_EQ(CImageCalc().DivideFrame(m_listTwin.data(), nPixels, nFrameCount, nBitDepth, expected.GetData()), 0);
    EXPECT_EQ(average, expected) << nFrameCount << " frames of " << nBitDepth << " bit";
  }

  void ExpectSameSums()
  {
    const uint32_t *const pSums = m_sums.GetWide();
    EXPECT_EQ(TWords(pSums, pSums + m_listTwin.size()), m_listTwin);
  }

  // Whether the second half of the memory is still as it was given.
  bool IsHalfUntouched() const
  {
    const auto *const pBytes = reinterpret_cast<const unsigned char *>(m_listMemory.data());
    const std::size_t nBytes = m_listMemory.size() * sizeof(uint32_t);
    return std::all_of(pBytes + nBytes / 2, pBytes + nBytes, [](unsigned char nByte) { return nByte == 0; });
  }

private:
  TWords m_listMemory;
  TWords m_listTwin;
  CFrameSums m_sums{m_listMemory.data()};
};

int32_t GetLargest(int32_t nBitDepth)
{
  return (1 << nBitDepth) - 1;
}

CTestImage MakeWhite(int32_t nPixels, int32_t nBitDepth)
{
  return CTestImage(nPixels, 1, nBitDepth, GetLargest(nBitDepth));
}

} // namespace

TEST(FrameSums, AverageLikeSumsOfThirtyTwoBitsForEveryDepthAndFrameCount)
{
  CTestRandom random(41);
  for (int32_t nBitDepth = 8; nBitDepth <= 16; ++nBitDepth) {
    for (const bool bWhite : {false, true}) {
      const int32_t nPixels = random.Between(1, 40);
      for (const bool bEveryCount : {false, true}) {
        CTwinSums sums(nPixels);
        for (int32_t nFrames = 1; nFrames <= 300; ++nFrames) {
          sums.Add(bWhite ? MakeWhite(nPixels, nBitDepth) : CTestImage::MakeRandom(nPixels, 1, nBitDepth, random));
          // An average by three makes the sums wide: only powers of two leave them as they are.
          if (bEveryCount || (nFrames & (nFrames - 1)) == 0) {
            sums.ExpectSameAverage(nFrames, nBitDepth);
          }
        }
        sums.ExpectSameAverage(300, nBitDepth);
        sums.ExpectSameSums();
      }
    }
  }
}

TEST(FrameSums, TheBrightestFramesThatSixteenBitsHoldLeaveHalfOfTheMemoryUntouched)
{
  constexpr struct {
    int32_t nBitDepth;
    int32_t nFrames;
  } HELD[] = {{8, 257}, {9, 128}, {10, 64}, {11, 32}, {12, 16}, {13, 8}, {14, 4}, {15, 2}, {16, 1}};
  for (const auto &stHeld : HELD) {
    CTwinSums sums(33);
    sums.Add(MakeWhite(33, stHeld.nBitDepth), stHeld.nFrames);
    sums.ExpectSameAverage(1, stHeld.nBitDepth);
    sums.ExpectSameAverage(256, stHeld.nBitDepth);
    EXPECT_TRUE(sums.IsHalfUntouched()) << stHeld.nBitDepth;
    sums.Add(MakeWhite(33, stHeld.nBitDepth));
    EXPECT_FALSE(sums.IsHalfUntouched()) << stHeld.nBitDepth;
    sums.ExpectSameAverage(stHeld.nFrames + 1, stHeld.nBitDepth);
    sums.ExpectSameSums();
  }
}

TEST(FrameSums, APixelAboveTheDepthIsHeldToo)
{
  for (const int32_t nFramesBefore : {0, 1, 2, 8, 15, 16, 17}) {
    for (const int32_t nPlace : {0, 1, 31, 66}) {
      CTwinSums sums(67);
      sums.Add(MakeWhite(67, 12), nFramesBefore);
      CTestImage bright = MakeWhite(67, 12);
      bright.SetAt(nPlace, 65535);
      sums.Add(bright, 2);
      sums.Add(MakeWhite(67, 12), 3);
      sums.ExpectSameAverage(nFramesBefore + 5, 12);
      sums.ExpectSameSums();
    }
  }
}

// Its two pixels have all 16 bits between them.
TEST(FrameSums, AFrameWhoseBitsAreThoseOfALargerPixelIsHeldToo)
{
  CTwinSums sums(2);
  CTestImage frame(2, 1, 16, 0x8000);
  frame.SetAt(1, 0x7FFF);
  sums.Add(frame, 5);
  sums.ExpectSameAverage(5, 16);
  sums.ExpectSameSums();
}

TEST(FrameSums, ASumOneAboveSixteenBitsIsHeldToo)
{
  for (int32_t nShift = 8; nShift <= 15; ++nShift) {
    CTwinSums sums(67);
    const int32_t nFrames = 1 << (16 - nShift);
    sums.Add(CTestImage(67, 1, 16, 1 << nShift), nFrames);
    sums.ExpectSameAverage(nFrames, 16);
    sums.ExpectSameSums();
  }
}

TEST(FrameSums, FramesOfSeveralSizesAndDepthsAreAddedFromTheFirstPixelOn)
{
  CTestRandom random(43);
  for (const int32_t nFirstPixels : {1, 2, 3, 60, 67}) {
    CTwinSums sums(67);
    sums.Add(CTestImage::MakeRandom(nFirstPixels, 1, 12, random), 2);
    sums.Add(CTestImage::MakeRandom(31, 1, 8, random), 3);
    sums.ExpectSameAverage(2, 12);
    sums.ExpectSameAverage(2, 8);
    sums.Add(CTestImage::MakeRandom(67, 1, 16, random), 4);
    sums.Add(CTestImage::MakeRandom(29, 1, 12, random), 2);
    sums.ExpectSameAverage(11, 16);
    sums.ExpectSameSums();
  }
}

TEST(FrameSums, AnAverageMayBeTakenOfMorePixelsThanWereAdded)
{
  CTwinSums sums(9);
  sums.Add(CTestImage(4, 1, 8, 200), 2);
  sums.ExpectSameAverage(2, 8);
  sums.ExpectSameAverage(3, 8);
}

TEST(FrameSums, AnAverageAboveThePixelsTypeIsCut)
{
  CTwinSums sums(3);
  sums.Add(MakeWhite(3, 8), 5);
  sums.ExpectSameAverage(1, 8);
  sums.ExpectSameAverage(2, 8);
}

TEST(FrameSums, FrameCountsBeyondSixteenBitsGiveZero)
{
  CTwinSums sums(3);
  sums.Add(MakeWhite(3, 16));
  for (const int32_t nFrameCount : {0x10000, 0x40000000}) {
    sums.ExpectSameAverage(nFrameCount, 16);
    EXPECT_TRUE(sums.IsHalfUntouched());
  }
}

TEST(FrameSums, AreReadBetweenFrames)
{
  CTwinSums sums(5);
  sums.ExpectSameSums();
  sums.Add(MakeWhite(5, 8), 2);
  sums.ExpectSameSums();
  sums.Add(MakeWhite(5, 8), 2);
  sums.ExpectSameSums();
}

TEST(FrameSums, RefuseWhatTheImageStatisticsRefuseAndStayAsTheyAre)
{
  CTwinSums sums(4);
  const CTestImage frame(4, 1, 8, 5);
  CTestImage average(4, 1, 8, 7);
  sums.Add(frame);
  EXPECT_EQ(sums.Sums().Add(nullptr, 7, 0), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(sums.Sums().Average(0, 7, 0, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  for (const int32_t nBitDepth : {INT32_MIN, -8, 0, 7, 17, INT32_MAX}) {
    EXPECT_EQ(sums.Sums().Add(frame.GetData(), nBitDepth, 4), IMAGECALC_STATUS_OUT_OF_RANGE) << nBitDepth;
    EXPECT_EQ(sums.Sums().Average(1, nBitDepth, 4, average.GetData()), IMAGECALC_STATUS_OUT_OF_RANGE) << nBitDepth;
  }
  for (const int64_t nPixels : {int64_t{0}, int64_t{-1}, INT64_MIN}) {
    EXPECT_EQ(sums.Sums().Add(frame.GetData(), 8, nPixels), IMAGECALC_STATUS_OUT_OF_RANGE) << nPixels;
    EXPECT_EQ(sums.Sums().Average(1, 8, nPixels, average.GetData()), IMAGECALC_STATUS_OUT_OF_RANGE) << nPixels;
  }
  for (const int32_t nFrameCount : {0, -1, INT32_MIN}) {
    EXPECT_EQ(sums.Sums().Average(nFrameCount, 8, 4, average.GetData()), IMAGECALC_STATUS_OUT_OF_RANGE) << nFrameCount;
  }
  EXPECT_EQ(average, CTestImage(4, 1, 8, 7));
  EXPECT_TRUE(sums.IsHalfUntouched());
  sums.ExpectSameSums();
}

TEST(FrameSums, WithoutMemoryThereAreNone)
{
  CFrameSums sums;
  CTestImage frame(4, 1, 8, 5);
  EXPECT_EQ(sums.Add(frame.GetData(), 8, 4), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(sums.Average(1, 8, 4, frame.GetData()), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(sums.GetWide(), nullptr);
}
