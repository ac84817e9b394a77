#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"

#include <numeric>
#include <vector>

#include <gtest/gtest.h>

using namespace ffc::process;

namespace {

using Bytes = std::vector<uint8_t>;

// Bytes 0, 1, 2, ...
CFrameBuffer MakeBuffer(uint64_t nSize)
{
  CFrameBuffer buffer;
  EXPECT_TRUE(buffer.Allocate(nSize));
  std::iota(buffer.GetData(), buffer.GetData() + nSize, uint8_t{0});
  return buffer;
}

Bytes GetBytes(const CFrameBuffer &buffer)
{
  return Bytes(buffer.GetData(), buffer.GetData() + buffer.GetSize());
}

} // namespace

TEST(CoefficientImage, HasARecordFromTwentyFourBytes)
{
  EXPECT_FALSE(HasRecord(CFrameBuffer()));
  EXPECT_FALSE(HasRecord(MakeBuffer(0)));
  EXPECT_FALSE(HasRecord(MakeBuffer(23)));
  EXPECT_TRUE(HasRecord(MakeBuffer(24)));
  EXPECT_TRUE(HasRecord(MakeBuffer(25)));
}

TEST(CoefficientImage, ItsRecordIsTheLastTwentyFourBytes)
{
  const FFCInfo stInfo = GetRecord(MakeBuffer(27));
  EXPECT_EQ(stInfo.nValid, 0x06050403U);
  EXPECT_EQ(stInfo.nMode, 0x0A090807U);
  EXPECT_EQ(stInfo.nFrameCount, 0x0E0D0C0BU);
  EXPECT_EQ(stInfo.nBlockSizeCode, 0x1211100FU);
  EXPECT_EQ(stInfo.nCoefficientsSize, 0x16151413U);
  EXPECT_EQ(stInfo.nExpectGray, 0x1A191817U);
}

TEST(CoefficientImage, IsABodyAndTheRecordBehindIt)
{
  const FFCInfo stInfo = {1, 2, 3, 4, 5, 0x01020304};
  CFrameBuffer image = MakeBuffer(3 + 24);
  FillImage(MakeBuffer(3), stInfo, image);
  EXPECT_EQ(GetBytes(image), (Bytes{0, 1, 2, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0, 4, 3, 2, 1}));
}

TEST(CoefficientImage, TheExchangeSwapsTheBytesOfEachPairOfTheRecordAlone)
{
  CFrameBuffer image = MakeBuffer(3 + 24);
  ExchangeRecordBytes(image);
  EXPECT_EQ(GetBytes(image),
            (Bytes{0, 1, 2, 4, 3, 6, 5, 8, 7, 10, 9, 12, 11, 14, 13, 16, 15, 18, 17, 20, 19, 22, 21, 24, 23, 26, 25}));
}

TEST(CoefficientImage, ASecondExchangeUndoesTheFirst)
{
  CFrameBuffer image = MakeBuffer(100);
  ExchangeRecordBytes(image);
  EXPECT_NE(GetBytes(MakeBuffer(100)), GetBytes(image));
  ExchangeRecordBytes(image);
  EXPECT_EQ(GetBytes(MakeBuffer(100)), GetBytes(image));
}
