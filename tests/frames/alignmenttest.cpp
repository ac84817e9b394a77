#include "frames/alignment.h"

#include <cstring>

#include <gtest/gtest.h>

#include "tests/frames/framefiles.h"

using namespace ffc::frames;
using namespace ffc::test;

namespace {

constexpr SLayout DEEP{32, 32, 2};

SEvidence Look(uint32_t nBitDepth, uint32_t nShift)
{
  Frames listFrames = MakeFrames(DEEP, 1, nBitDepth);
  ShiftLeft(listFrames[0].data(), DEEP, nShift);
  SEvidence stEvidence;
  stEvidence.Add(listFrames[0].data(), DEEP);
  return stEvidence;
}

} // namespace

TEST(Alignment, EveryDepthAndSideIsGuessedFromTheSamples)
{
  for (const uint32_t nBitDepth : {10U, 12U, 14U}) {
    for (const EAlignment eAlignment : {EAlignment::Right, EAlignment::Left}) {
      const uint32_t nShift = eAlignment == EAlignment::Left ? 16 - nBitDepth : 0;
      const auto depth = DecideDepth(Look(nBitDepth, nShift), DEEP, {});
      ASSERT_EQ(depth.GetError(), "");
      EXPECT_EQ(depth.GetValue().nBitDepth, nBitDepth);
      EXPECT_EQ(depth.GetValue().eAlignment, eAlignment);
      EXPECT_EQ(depth.GetValue().GetShift(DEEP), nShift);
      EXPECT_FALSE(depth.GetValue().strReason.isEmpty()) << "a guess is told";
    }
  }
  EXPECT_EQ(DecideDepth(Look(16, 0), DEEP, {}).GetValue().nBitDepth, 16U);
}

TEST(Alignment, AStatedSideWithoutADepthIsKept)
{
  const auto left = DecideDepth(Look(16, 0), DEEP, {0, EAlignment::Left});
  EXPECT_EQ(left.GetValue().nBitDepth, 16U);
  EXPECT_EQ(left.GetValue().eAlignment, EAlignment::Left);
  const auto right = DecideDepth(Look(10, 2), DEEP, {0, EAlignment::Right});
  EXPECT_EQ(right.GetValue().nBitDepth, 12U) << "although the lowest bits are empty";
  EXPECT_EQ(right.GetValue().eAlignment, EAlignment::Right);
  EXPECT_EQ(DecideDepth(Look(12, 4), DEEP, {0, EAlignment::Right}).GetValue().nBitDepth, 16U);
}

TEST(Alignment, AStatedDepthThatTheSamplesDoNotHaveIsRefused)
{
  EXPECT_NE(DecideDepth(Look(16, 0), DEEP, {12, {}}).GetError().find("but 12 bits end at 4095"), std::string::npos);
  EXPECT_NE(DecideDepth(Look(12, 4), DEEP, {12, EAlignment::Right}).GetError().find("but 12 bits end at 4095"),
            std::string::npos)
    << "left-aligned, but stated not to be";
  const auto left = DecideDepth(Look(12, 4), DEEP, {12, {}});
  EXPECT_EQ(left.GetValue().eAlignment, EAlignment::Left);
  EXPECT_EQ(left.GetValue().nBitDepth, 12U);
  EXPECT_EQ(left.GetValue().GetShift(DEEP), 4U);
}

TEST(Alignment, FramesOfBytesHaveNothingToDecide)
{
  const auto depth = DecideDepth({0xFF, 0xFF}, {4, 4, 1}, {});
  ASSERT_TRUE(depth.IsOk());
  EXPECT_TRUE(DecideDepth({0xFF, 0xFF}, {4, 4, 1}, {8, {}}).IsOk());
  EXPECT_EQ(depth.GetValue().GetShift({4, 4, 1}), 0U);
  EXPECT_TRUE(depth.GetValue().strReason.isEmpty());
}

TEST(Alignment, WhatIsStatedIsNotGuessed)
{
  const auto depth = DecideDepth(Look(10, 0), DEEP, {12, std::nullopt});
  ASSERT_TRUE(depth.IsOk());
  EXPECT_EQ(depth.GetValue().nBitDepth, 12U);
  EXPECT_TRUE(depth.GetValue().strReason.isEmpty());
  EXPECT_EQ(DecideDepth(Look(12, 4), DEEP, {12, EAlignment::Left}).GetValue().GetShift(DEEP), 4U);
}

TEST(Alignment, AStatedDepthWithoutAsideTakesTheSideThatFits)
{
  const auto depth = DecideDepth(Look(12, 4), DEEP, {12, std::nullopt});
  ASSERT_TRUE(depth.IsOk());
  EXPECT_EQ(depth.GetValue().eAlignment, EAlignment::Left);
  EXPECT_FALSE(depth.GetValue().strReason.isEmpty());
}

TEST(Alignment, EvidenceAgainstWhatIsStatedIsAnError)
{
  EXPECT_NE(DecideDepth(Look(14, 0), DEEP, {12, std::nullopt}).GetError().find("but 12 bits end at 4095"),
            std::string::npos);
  EXPECT_NE(DecideDepth(Look(12, 4), DEEP, {12, EAlignment::Right}).GetError().find("but 12 bits end at 4095"),
            std::string::npos);
  EXPECT_NE(DecideDepth(Look(12, 0), DEEP, {12, EAlignment::Left}).GetError().find("uses its lowest 4 bits"),
            std::string::npos);
  EXPECT_NE(DecideDepth({}, {4, 4, 1}, {12, std::nullopt}).GetError().find("has 8 bits per pixel"), std::string::npos);
  EXPECT_NE(DecideDepth({}, DEEP, {8, std::nullopt}).GetError().find("has 16 bits per pixel"), std::string::npos);
}

TEST(Alignment, ZerosAloneSayNothing)
{
  EXPECT_NE(DecideDepth({}, DEEP, {}).GetError().find("nothing but zeros"), std::string::npos);
  EXPECT_TRUE(DecideDepth({}, DEEP, {12, std::nullopt}).IsOk());
}

TEST(Alignment, EvidenceOfManyFramesIsThatOfAll)
{
  SEvidence stEvidence{0x0F0, 0x0F0};
  stEvidence.Add(SEvidence{0xF00, 0x900});
  EXPECT_EQ(stEvidence.nUsedBits, 0xFF0U);
  EXPECT_EQ(stEvidence.nLargest, 0x900U);
  EXPECT_EQ(stEvidence.CountEmptyLowBits(), 4U);
}

TEST(Alignment, UsedBitsAreThoseOfTheEvidenceForEveryLengthAndPlace)
{
  for (const uint32_t nBytes : {1U, 2U}) {
    for (uint32_t nWidth = 1; nWidth < 200; ++nWidth) {
      const SLayout stLayout{nWidth, 1, nBytes};
      std::vector<uint8_t> listFrame(stLayout.GetFrameSize());
      for (std::size_t n = 0; n < listFrame.size(); ++n) {
        listFrame[n] = 0x41;
        SEvidence stEvidence;
        stEvidence.Add(listFrame.data(), stLayout);
        ASSERT_EQ(FindUsedBits(listFrame.data(), stLayout), stEvidence.nUsedBits) << nWidth << " byte " << n;
        listFrame[n] = 0;
      }
    }
  }
}

TEST(Alignment, SamplesBehindAFrameAreNotShifted)
{
  std::vector<uint16_t> listSamples(5, 0x1230);
  const SLayout stLayout{2, 2, 2};
  ShiftRight(listSamples.data(), stLayout, 4);
  EXPECT_EQ(listSamples, (std::vector<uint16_t>{0x123, 0x123, 0x123, 0x123, 0x1230}));
  ShiftLeft(listSamples.data(), stLayout, 4);
  EXPECT_EQ(listSamples, std::vector<uint16_t>(5, 0x1230));
}

TEST(Alignment, ShiftingThereAndBackChangesNothing)
{
  const Frames listFrames = MakeFrames(DEEP, 1, 12);
  std::vector<uint8_t> listFrame = listFrames[0];
  ShiftLeft(listFrame.data(), DEEP, 4);
  EXPECT_NE(listFrame, listFrames[0]);
  ShiftRight(listFrame.data(), DEEP, 4);
  EXPECT_EQ(listFrame, listFrames[0]);
}
