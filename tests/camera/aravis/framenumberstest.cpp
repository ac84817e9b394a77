#include "camera/aravis/framenumbers.h"

#include <gtest/gtest.h>

using ffc::camera::CFrameNumbers;

namespace {

class FrameNumbers : public testing::Test {
protected:
  void Expect(std::optional<uint64_t> nId, uint64_t nNumber, uint64_t nSkipped)
  {
    const CFrameNumbers::SNumber stNumber = m_numbers.Next(nId);
    EXPECT_EQ(stNumber.nNumber, nNumber) << nId.value_or(0);
    EXPECT_EQ(stNumber.nSkipped, nSkipped) << nId.value_or(0);
  }

  CFrameNumbers m_numbers;
};

} // namespace

TEST_F(FrameNumbers, AFrameThatDidNotComeLeavesAGap)
{
  Expect(1, 0, 0);
  Expect(2, 1, 0);
  Expect(5, 4, 2);
}

TEST_F(FrameNumbers, ShortNumbersBeginAgainAtOne)
{
  Expect(65534, 0, 0);
  Expect(65535, 1, 0);
  Expect(1, 2, 0);
  Expect(30000, 30001, 29998);
  Expect(60000, 60001, 29999);
  Expect(3, 65539, 5537);
}

TEST_F(FrameNumbers, ShortNumbersThatBeginAtZeroAreNoLoss)
{
  Expect(65535, 0, 0);
  Expect(0, 1, 0);
  Expect(1, 2, 0);
}

TEST_F(FrameNumbers, LongNumbersGoOn)
{
  Expect(65535, 0, 0);
  Expect(65536, 1, 0);
  Expect(70000, 4465, 4463);
  Expect(uint64_t{1} << 40U, (uint64_t{1} << 40U) - 65535, (uint64_t{1} << 40U) - 70001);
}

TEST_F(FrameNumbers, AStreamThatBeginsAnewCountsOn)
{
  Expect(7, 0, 0);
  Expect(8, 1, 0);
  m_numbers.BeginStream();
  Expect(1, 2, 0);
  Expect(3, 4, 1);
}

TEST_F(FrameNumbers, AFrameWhoseNumberGotLostIsCountedAsTheNext)
{
  Expect(10, 0, 0);
  Expect(std::nullopt, 1, 0);
  Expect(12, 2, 0);
  Expect(12, 3, 0); // the number that its buffer had before
  Expect(65530, 4, 0);
  Expect(16, 6, 1);
}
