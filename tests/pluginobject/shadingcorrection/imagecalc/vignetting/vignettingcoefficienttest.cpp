#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingcoefficient.h"

#include <algorithm>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using namespace ffc::imagecalc;
using namespace ffc::test;

namespace {

constexpr int64_t UNTOUCHED_SIZE = -7;
constexpr uint16_t UNTOUCHED = 0xA5A5;
constexpr int64_t LARGE = std::numeric_limits<int64_t>::max();
constexpr int64_t LARGEST_SIDE = 4294967294;

// The size, or the status when there is none.
int64_t GetSize(int32_t nBayerType, int64_t nWidth, int64_t nHeight, int64_t nBlockWidth, int64_t nBlockHeight)
{
  int64_t nSize = UNTOUCHED_SIZE;
  const int32_t nStatus = GetVignettingCoefficientSize(nBayerType, nWidth, nHeight, nBlockWidth, nBlockHeight, &nSize);
  EXPECT_EQ(nStatus != 0, nSize == UNTOUCHED_SIZE);
  return nStatus == 0 ? nSize : nStatus;
}

// Frames of 64 x 32 pixels, for 4 x 2 blocks and 6 x 4 points.
class CalcVignetting : public testing::Test {
protected:
  const CTestImage m_image = CTestImage(64, 32, 8, 90);
  std::vector<uint16_t> m_listTable = std::vector<uint16_t>(100, UNTOUCHED);

  int32_t Calc(int32_t nBayerType, int64_t nExpectedSize, int32_t nBitDepth = 8, int64_t nWidth = 64,
               int64_t nHeight = 32, int64_t nBlockWidth = 16, int64_t nBlockHeight = 16)
  {
    return CalcVignettingCoefficient(m_image.GetData(), nBitDepth, nBayerType, nWidth, nHeight, nBlockWidth,
                                     nBlockHeight, nExpectedSize, m_listTable.data());
  }

  bool IsTableUntouched() const { return m_listTable == std::vector<uint16_t>(100, UNTOUCHED); }
};

} // namespace

TEST(VignettingSize, ABayerImageOf640By480In64By64BlocksTakes720Bytes)
{
  EXPECT_EQ(GetSize(1, 640, 480, 64, 64), 720);
  EXPECT_EQ(GetSize(0, 640, 480, 64, 64), 240);
  const CTestImage image(640, 480, 8, 100);
  std::vector<uint16_t> listTable(360);
  EXPECT_EQ(CalcVignettingCoefficient(image.GetData(), 8, 1, 640, 480, 64, 64, 720, listTable.data()), 0);
}

TEST(VignettingSize, AStripOfMoreThanHalfABlockCounts)
{
  EXPECT_EQ(GetSize(0, 64, 64, 16, 16), 6 * 6 * 2);
  EXPECT_EQ(GetSize(0, 64 + 16, 64, 32, 16), 4 * 6 * 2);
  EXPECT_EQ(GetSize(0, 64 + 18, 64, 32, 16), 6 * 6 * 2) << "five columns are rounded up to six";
  EXPECT_EQ(GetSize(0, 64, 64 + 8, 16, 16), 6 * 6 * 2);
  EXPECT_EQ(GetSize(0, 64, 64 + 10, 16, 16), 6 * 8 * 2);
  EXPECT_EQ(GetSize(0, 2, 2, 2, 2), 4 * 4 * 2);
}

TEST(VignettingSize, APointHasThreeValuesForEveryBayerType)
{
  for (int32_t nBayerType = 1; nBayerType <= 4; ++nBayerType) {
    EXPECT_EQ(GetSize(nBayerType, 64, 64, 16, 16), 6 * 6 * 6);
  }
}

TEST(VignettingSize, AnUnknownBayerTypeIsNotSupportedWhateverTheSides)
{
  for (const int32_t nBayerType : {INT32_MIN, -1, 5, INT32_MAX}) {
    EXPECT_EQ(GetSize(nBayerType, 64, 64, 16, 16), IMAGECALC_STATUS_NOT_SUPPORTED) << nBayerType;
    EXPECT_EQ(GetSize(nBayerType, 63, 0, 3, -1), IMAGECALC_STATUS_NOT_SUPPORTED) << nBayerType;
  }
}

TEST(VignettingSize, ASideThatDoesNotFitIsRefused)
{
  for (const int32_t nBayerType : {0, 1}) {
    for (const int64_t nBlockSide : {int64_t{1}, int64_t{0}, int64_t{-1}, int64_t{-16}, int64_t{3}, int64_t{12},
                                     int64_t{24}, int64_t{128}, LARGE, -LARGE - 1, int64_t{1} << 32}) {
      EXPECT_EQ(GetSize(nBayerType, 64, 64, nBlockSide, 16), IMAGECALC_STATUS_INVALID_ARGUMENT) << nBlockSide;
      EXPECT_EQ(GetSize(nBayerType, 64, 64, 16, nBlockSide), IMAGECALC_STATUS_INVALID_ARGUMENT) << nBlockSide;
    }
    for (const int64_t nSide : {int64_t{63}, int64_t{65}, int64_t{8}, int64_t{0}, int64_t{-64}, LARGE, LARGE - 1,
                                -LARGE - 1, LARGEST_SIDE + 2, (int64_t{1} << 32) + 64}) {
      EXPECT_EQ(GetSize(nBayerType, nSide, 64, 16, 16), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSide;
      EXPECT_EQ(GetSize(nBayerType, 64, nSide, 16, 16), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSide;
    }
  }
}

TEST(VignettingSize, AMissingOutputIsRefused)
{
  EXPECT_EQ(GetVignettingCoefficientSize(0, 64, 64, 16, 16, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetVignettingCoefficientSize(5, 64, 64, 16, 16, nullptr), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST(VignettingSize, TheLargestSidesHaveASizeAsLongAsItFits)
{
  // 2^32 - 2 pixels in blocks of 2: 2^31 + 1 points, rounded up.
  EXPECT_EQ(GetSize(0, LARGEST_SIDE, 64, 2, 64), ((int64_t{1} << 31) + 2) * 4 * 2);
  EXPECT_EQ(GetSize(4, 64, LARGEST_SIDE, 64, 2), ((int64_t{1} << 31) + 2) * 4 * 6);
  EXPECT_EQ(GetSize(1, LARGEST_SIDE, LARGEST_SIDE, 4, 4), ((int64_t{1} << 30) + 2) * ((int64_t{1} << 30) + 2) * 6);
  // 2^31 - 2 points by 2^31 + 2, of 2 bytes each: the last even number of columns that fits 63 bits.
  EXPECT_EQ(GetSize(0, LARGEST_SIDE - 6, LARGEST_SIDE, 2, 2), INT64_MAX - 7);
  EXPECT_EQ(GetSize(0, LARGEST_SIDE - 2, LARGEST_SIDE, 2, 2), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetSize(0, LARGEST_SIDE, LARGEST_SIDE, 2, 2), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(GetSize(1, LARGEST_SIDE, LARGEST_SIDE, 2, 2), IMAGECALC_STATUS_INVALID_ARGUMENT);
}

TEST_F(CalcVignetting, TheTableIsCopiedIntoTheBuffer)
{
  EXPECT_EQ(Calc(0, 6 * 4 * 2), 0);
  EXPECT_EQ(std::vector<uint16_t>(m_listTable.begin(), m_listTable.begin() + 24), std::vector<uint16_t>(24, 256));
  EXPECT_EQ(std::count(m_listTable.begin() + 24, m_listTable.end(), UNTOUCHED), 76);
  for (int32_t nBayerType = 1; nBayerType <= 4; ++nBayerType) {
    m_listTable.assign(100, UNTOUCHED);
    EXPECT_EQ(Calc(nBayerType, 6 * 4 * 6), 0);
    EXPECT_EQ(std::vector<uint16_t>(m_listTable.begin(), m_listTable.begin() + 72), std::vector<uint16_t>(72, 256));
    EXPECT_EQ(std::count(m_listTable.begin() + 72, m_listTable.end(), UNTOUCHED), 28);
  }
}

TEST_F(CalcVignetting, NoGainExceedsSeven)
{
  CTestImage image(64, 32, 8, 255);
  for (int32_t y = 0; y < 16; ++y) {
    for (int32_t x = 0; x < 16; ++x) {
      image.Set(x, y, 1);
    }
  }
  ASSERT_EQ(CalcVignettingCoefficient(image.GetData(), 8, 0, 64, 32, 16, 16, 48, m_listTable.data()), 0);
  // Below and beside its block the dark corner is carried on.
  EXPECT_EQ(std::vector<uint16_t>(m_listTable.begin(), m_listTable.begin() + 4), std::vector<uint16_t>(4, 1792));
  EXPECT_EQ(*std::max_element(m_listTable.begin(), m_listTable.begin() + 24), 1792);
}

TEST_F(CalcVignetting, FramesOfTenAndTwelveBitsAreWords)
{
  for (const int32_t nBitDepth : {10, 12}) {
    m_listTable.assign(100, UNTOUCHED);
    const CTestImage image(64, 32, nBitDepth, 700);
    EXPECT_EQ(CalcVignettingCoefficient(image.GetData(), nBitDepth, 2, 64, 32, 16, 16, 144, m_listTable.data()), 0);
    EXPECT_EQ(m_listTable[71], 256);
  }
}

TEST_F(CalcVignetting, AMissingBufferIsRefusedBeforeAnythingElse)
{
  for (const int32_t nBayerType : {0, 1, 5}) {
    EXPECT_EQ(CalcVignettingCoefficient(nullptr, 8, nBayerType, 64, 32, 16, 16, 48, m_listTable.data()),
              IMAGECALC_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(CalcVignettingCoefficient(m_image.GetData(), 8, nBayerType, 64, 32, 16, 16, 48, nullptr),
              IMAGECALC_STATUS_INVALID_ARGUMENT);
  }
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CalcVignetting, AnUnknownBayerTypeIsNotSupportedBeforeAnyAllocation)
{
  const CFailingNew failingNew;
  for (const int32_t nBayerType : {INT32_MIN, -1, 5, INT32_MAX}) {
    EXPECT_EQ(Calc(nBayerType, 144), IMAGECALC_STATUS_NOT_SUPPORTED) << nBayerType;
    EXPECT_EQ(Calc(nBayerType, 0, 16, 0, 0, 0, 0), IMAGECALC_STATUS_NOT_SUPPORTED) << nBayerType;
  }
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CalcVignetting, EveryOtherBitDepthIsNotSupported)
{
  for (const int32_t nBitDepth : {INT32_MIN, 0, 7, 9, 11, 14, 16, INT32_MAX}) {
    EXPECT_EQ(Calc(0, 48, nBitDepth), IMAGECALC_STATUS_NOT_SUPPORTED) << nBitDepth;
    EXPECT_EQ(Calc(1, 144, nBitDepth), IMAGECALC_STATUS_NOT_SUPPORTED) << nBitDepth;
  }
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CalcVignetting, AnotherSizeThanTheTablesIsRefused)
{
  for (const int64_t nSize : {int64_t{0}, int64_t{47}, int64_t{49}, int64_t{144}, int64_t{-48}, LARGE, -LARGE - 1}) {
    EXPECT_EQ(Calc(0, nSize), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSize;
  }
  EXPECT_EQ(Calc(1, 48), IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CalcVignetting, SidesThatDoNotFitAreRefused)
{
  constexpr int64_t WRAPPING = int64_t{1} << 32; // 0 in 32 bits
  for (const int64_t nBlockSide :
       {int64_t{0}, int64_t{3}, int64_t{48}, int64_t{128}, int64_t{-16}, WRAPPING + 16, LARGE}) {
    EXPECT_EQ(Calc(0, 48, 8, 64, 32, nBlockSide, 16), IMAGECALC_STATUS_INVALID_ARGUMENT) << nBlockSide;
    EXPECT_EQ(Calc(1, 144, 8, 64, 32, 16, nBlockSide), IMAGECALC_STATUS_INVALID_ARGUMENT) << nBlockSide;
  }
  for (const int64_t nSide : {int64_t{0}, int64_t{15}, int64_t{-64}, WRAPPING + 64, WRAPPING + 32, LARGE, -LARGE - 1}) {
    EXPECT_EQ(Calc(0, 48, 8, nSide, 32), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSide;
    EXPECT_EQ(Calc(1, 144, 8, 64, nSide), IMAGECALC_STATUS_INVALID_ARGUMENT) << nSide;
  }
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CalcVignetting, MemoryThatRunsOutAtAnyStepIsReportedAndNothingLeaks)
{
  for (const int32_t nBayerType : {0, 3}) {
    // The calculator, then its four arrays.
    for (int32_t nSuccesses = 0; nSuccesses < 5; ++nSuccesses) {
      const int64_t nBefore = CountLiveAllocations();
      int32_t nStatus = 0;
      {
        const CFailingNew failingNew(nSuccesses);
        nStatus = Calc(nBayerType, nBayerType == 0 ? 48 : 144);
      }
      EXPECT_EQ(CountLiveAllocations(), nBefore) << nSuccesses;
      EXPECT_EQ(nStatus, IMAGECALC_STATUS_OUT_OF_MEMORY) << nSuccesses;
    }
  }
  EXPECT_TRUE(IsTableUntouched());
}

TEST_F(CalcVignetting, EveryPathGivesItsMemoryBack)
{
  const int64_t nBefore = CountLiveAllocations();
  const int32_t nSuccess = Calc(1, 144);
  const int32_t nWrongSize = Calc(1, 48);
  const int32_t nWrongDepth = Calc(0, 48, 16);
  const int32_t nWrongBlock = Calc(0, 48, 8, 64, 32, 3, 3);
  EXPECT_EQ(CountLiveAllocations(), nBefore);
  EXPECT_EQ(nSuccess, 0);
  EXPECT_EQ(nWrongSize, IMAGECALC_STATUS_INVALID_ARGUMENT);
  EXPECT_EQ(nWrongDepth, IMAGECALC_STATUS_NOT_SUPPORTED);
  EXPECT_EQ(nWrongBlock, IMAGECALC_STATUS_INVALID_ARGUMENT);
}
