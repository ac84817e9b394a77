#include "quality/framestack.h"

#include <gtest/gtest.h>

#include "quality/pairedstacks.h"
#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColorLayout;
using ffc::genapi::FindSensorFormat;
using ffc::genapi::GetPixelColor;

namespace {

const SColorPlane WHOLE = GetWholeImagePlane();

} // namespace

TEST(FrameStack, RefusesSizesAndDepthsThatAreNone)
{
  CFrameStack stStack;
  EXPECT_FALSE(stStack.Prepare(0, 4, 8));
  EXPECT_FALSE(stStack.Prepare(4, 0, 8));
  EXPECT_FALSE(stStack.Prepare(4, 4, 7));
  EXPECT_FALSE(stStack.Prepare(4, 4, 17));
  const uint8_t nByte = 0;
  EXPECT_FALSE(stStack.Add(&nByte, 0));
  EXPECT_TRUE(stStack.Prepare(4, 4, 8));
}

TEST(FrameStack, RefusesABufferOfAnotherSizeAndKeepsItsSums)
{
  CFrameStack stStack;
  ASSERT_TRUE(stStack.Prepare(2, 1, 8));
  const uint8_t anFrame[] = {3, 4, 5};
  EXPECT_FALSE(stStack.Add(anFrame, 3));
  EXPECT_FALSE(stStack.Add(anFrame, 1));
  EXPECT_FALSE(stStack.Add(nullptr, 2));
  EXPECT_EQ(stStack.GetFrameCount(), 0U);
  ASSERT_TRUE(stStack.Add(anFrame, 2));
  EXPECT_EQ(stStack.GetSums(0)[1], 4U);
}

TEST(FrameStack, SumsAreExactAtTheHighestValuesAndTheMostFrames)
{
  CFrameStack stStack;
  ASSERT_TRUE(stStack.Prepare(3, 2, 16));
  const TestFrame listSamples(6, 65535);
  for (int nFrame = 0; nFrame < 256; ++nFrame) {
    ASSERT_TRUE(stStack.Add(listSamples.data(), 12));
  }
  EXPECT_FALSE(stStack.Add(listSamples.data(), 12)) << "sums could overflow";
  EXPECT_EQ(stStack.GetSums(1)[2], 65535U * 256U);
  EXPECT_EQ(stStack.GetSquareSum(WHOLE, 1), 3ULL * 256 * 65535 * 65535);
  EXPECT_EQ(stStack.GetClippedCount(WHOLE), 6U * 256U);
}

TEST(FrameStack, ClippedSamplesAreCountedPerPlaneAtTheDepthsMaximum)
{
  CFrameStack stStack;
  ASSERT_TRUE(stStack.Prepare(4, 2, 10));
  const TestFrame listSamples{1023, 1022, 1023, 0, 0, 1023, 0, 5};
  ASSERT_TRUE(stStack.Add(listSamples.data(), 16));
  EXPECT_EQ(stStack.GetClippedCount(WHOLE), 3U);
  const std::vector<SColorPlane> listPlanes = GetColorPlanes(EColorLayout::BayerRG);
  EXPECT_EQ(stStack.GetClippedCount(listPlanes[0]), 2U);
  EXPECT_EQ(stStack.GetClippedCount(listPlanes[1]), 0U);
  EXPECT_EQ(stStack.GetClippedCount(listPlanes[2]), 1U);
}

TEST(ColorPlanes, EveryPixelBelongsToThePlaneOfItsColour)
{
  const EColorLayout LAYOUTS[] = {EColorLayout::BayerGR, EColorLayout::BayerRG, EColorLayout::BayerGB,
                                  EColorLayout::BayerBG};
  for (const EColorLayout eLayout : LAYOUTS) {
    const std::vector<SColorPlane> listPlanes = GetColorPlanes(eLayout);
    ASSERT_EQ(listPlanes.size(), 3U);
    for (uint32_t nLine = 0; nLine < 4; ++nLine) {
      int nVisited = 0;
      for (std::size_t nPlane = 0; nPlane < 3; ++nPlane) {
        VisitPlaneLine(listPlanes[nPlane], 5, nLine, [&](uint32_t nColumn) {
          EXPECT_EQ(static_cast<std::size_t>(GetPixelColor(eLayout, nColumn, nLine)), nPlane);
          ++nVisited;
        });
      }
      EXPECT_EQ(nVisited, 5);
    }
  }
  EXPECT_EQ(GetColorPlanes(EColorLayout::Mono).size(), 1U);
}

TEST(PairedStacks, ARepeatedFrameIsCountedButNotMeasured)
{
  CPairedStacks stStacks;
  ASSERT_TRUE(stStacks.Prepare(2, 2, *FindSensorFormat("Mono8")));
  const uint8_t anFirst[] = {1, 2, 3, 4};
  const uint8_t anSecond[] = {1, 2, 3, 5};
  EXPECT_TRUE(stStacks.Add(anFirst, anFirst, 4));
  EXPECT_TRUE(stStacks.Add(anSecond, anFirst, 4));
  EXPECT_TRUE(stStacks.Add(anFirst, anSecond, 4));
  EXPECT_EQ(stStacks.GetRaw().GetFrameCount(), 2U);
  EXPECT_EQ(stStacks.GetCorrected().GetSums(1)[1], 8U);
  EXPECT_EQ(stStacks.GetRepeatedCount(), 1U);
  EXPECT_FALSE(stStacks.Add(anFirst, anFirst, 3));
  ASSERT_TRUE(stStacks.Prepare(2, 2, *FindSensorFormat("Mono8")));
  EXPECT_EQ(stStacks.GetRepeatedCount(), 0U);
  EXPECT_EQ(stStacks.GetRaw().GetFrameCount(), 0U);
}

TEST(PairedStacks, OnlySamplesThatTheCorrectionClippedAreNewlyClipped)
{
  CPairedStacks stStacks;
  ASSERT_TRUE(stStacks.Prepare(4, 1, *FindSensorFormat("Mono12")));
  const TestFrame listRaw{4095, 4094, 4095, 7};
  const TestFrame listCorrected{4095, 4095, 4000, 4095};
  ASSERT_TRUE(stStacks.Add(listRaw.data(), listCorrected.data(), 8));
  EXPECT_EQ(stStacks.GetNewlyClippedCount(), 2U);
}

TEST(PairedStacks, NewlyClippedSamplesInPercentAreThoseOfAllFrames)
{
  CPairedStacks stacks;
  EXPECT_EQ(stacks.GetNewlyClippedPercent(), 0) << "of no frames";
  ASSERT_TRUE(stacks.Prepare(2, 2, *FindSensorFormat("Mono8")));
  const uint8_t anRaw[][4] = {{1, 2, 3, 255}, {1, 2, 4, 255}};
  const uint8_t anCorrected[][4] = {{1, 255, 3, 255}, {1, 2, 4, 255}};
  ASSERT_TRUE(stacks.Add(anRaw[0], anCorrected[0], 4));
  ASSERT_TRUE(stacks.Add(anRaw[1], anCorrected[1], 4));
  EXPECT_DOUBLE_EQ(stacks.GetNewlyClippedPercent(), 12.5);
}
