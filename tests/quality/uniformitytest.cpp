#include "quality/uniformity.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/quality/slowuniformity.h"

using namespace ffc::quality;
using ffc::genapi::EColor;
using ffc::genapi::EColorLayout;
using ffc::genapi::GetLayoutName;
using ffc::genapi::GetPixelColor;

namespace {

/// A repeatable number from 0 to 1 for each pixel.
double Scatter(uint32_t nColumn, uint32_t nLine)
{
  return static_cast<double>((nColumn * 7919U + nLine * 104729U + (nColumn * nLine) * 31U) % 1009U) / 1009.0;
}

void ExpectEqualFigures(const SUniformityFigures &stFast, const SUniformityFigures &stSlow)
{
  EXPECT_NEAR(stFast.dShadingPercent, stSlow.dShadingPercent, 1e-9);
  EXPECT_NEAR(stFast.dCornerToCentre, stSlow.dCornerToCentre, 1e-9);
  EXPECT_NEAR(stFast.dPrnuPercent, stSlow.dPrnuPercent, 1e-7);
  EXPECT_NEAR(stFast.dDsnuDn, stSlow.dDsnuDn, 1e-7);
  EXPECT_NEAR(stFast.dMeanGray, stSlow.dMeanGray, 1e-9);
  EXPECT_NEAR(stFast.dClippedPercent, stSlow.dClippedPercent, 1e-9);
}

struct SStacks {
  std::vector<TestFrame> listBright;
  std::vector<TestFrame> listDark;
};

/// Shaded, scattered and noisy bright frames, partly clipped, over scattered dark ones.
SStacks MakeUnevenFrames(SSyntheticScene &stScene, uint32_t nBright, uint32_t nDark)
{
  const double dFull = static_cast<double>(1U << stScene.nBitDepth);
  SStacks stStacks;
  stScene.fnLevel = [&](uint32_t nX, uint32_t nY) { return dFull * (0.05 + 0.02 * Scatter(nX, nY)); };
  stScene.dNoise = dFull * 0.01;
  stStacks.listDark = stScene.MakeFrames(nDark, 11);
  stScene.fnLevel = [&](uint32_t nX, uint32_t nY) {
    const double dFalloff =
      0.5 + 0.5 * static_cast<double>(nX + nY) / static_cast<double>(stScene.nWidth + stScene.nHeight);
    return dFull * dFalloff * (0.9 + 0.2 * Scatter(nY, nX));
  };
  stStacks.listBright = stScene.MakeFrames(nBright, 12);
  return stStacks;
}

} // namespace

TEST(Uniformity, EqualsTheSlowTwinForEveryDepthAndOddSizes)
{
  for (const uint32_t nBitDepth : {8U, 10U, 12U, 16U}) {
    for (const auto &[nWidth, nHeight] : {std::pair(1U, 1U), {7U, 40U}, {33U, 31U}, {67U, 70U}, {96U, 64U}}) {
      SSyntheticScene stScene{nWidth, nHeight, nBitDepth, nullptr, 0};
      const SStacks stStacks = MakeUnevenFrames(stScene, 4, 3);
      const SUniformity stFast = MeasureUniformity(stScene.MakeStack(stStacks.listBright),
                                                   stScene.MakeStack(stStacks.listDark), EColorLayout::Mono);
      SCOPED_TRACE(testing::Message() << nWidth << "x" << nHeight << ", " << nBitDepth << " bit");
      ExpectEqualFigures(stFast.stOverall,
                         MeasureSlowly(stScene, stStacks.listBright, stStacks.listDark, EColorLayout::Mono, -1));
    }
  }
}

TEST(Uniformity, EqualsTheSlowTwinForEveryPlaneOfEveryMosaic)
{
  for (const EColorLayout eLayout :
       {EColorLayout::BayerGR, EColorLayout::BayerRG, EColorLayout::BayerGB, EColorLayout::BayerBG}) {
    SSyntheticScene stScene{70, 66, 12, nullptr, 0};
    const SStacks stStacks = MakeUnevenFrames(stScene, 3, 3);
    const SUniformity stFast =
      MeasureUniformity(stScene.MakeStack(stStacks.listBright), stScene.MakeStack(stStacks.listDark), eLayout);
    ASSERT_EQ(stFast.listPlanes.size(), 3U);
    for (int nColor = 0; nColor < 3; ++nColor) {
      SCOPED_TRACE(testing::Message() << GetLayoutName(eLayout) << " " << nColor);
      ExpectEqualFigures(stFast.listPlanes[static_cast<std::size_t>(nColor)],
                         MeasureSlowly(stScene, stStacks.listBright, stStacks.listDark, eLayout, nColor));
    }
    const SUniformityFigures stWhole = MeasureSlowly(stScene, stStacks.listBright, stStacks.listDark, eLayout, -1);
    EXPECT_NEAR(stFast.stOverall.dMeanGray, stWhole.dMeanGray, 1e-9);
    EXPECT_NEAR(stFast.stOverall.dClippedPercent, stWhole.dClippedPercent, 1e-9);
  }
}

TEST(Uniformity, ColourBalanceAloneIsNoShading)
{
  SSyntheticScene stScene{64, 64, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t, uint32_t) { return 10.0; };
  const auto listDark = stScene.MakeFrames(2, 1);
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    return 500.0 * (1 + static_cast<int>(GetPixelColor(EColorLayout::BayerBG, nX, nY)));
  };
  const SUniformity stFigures =
    MeasureUniformity(stScene.MakeStack(stScene.MakeFrames(2, 1)), stScene.MakeStack(listDark), EColorLayout::BayerBG);
  EXPECT_EQ(stFigures.stOverall.dShadingPercent, 0);
  EXPECT_EQ(stFigures.stOverall.dPrnuPercent, 0);
  EXPECT_EQ(stFigures.listPlanes[0].dMeanGray, 500);
  EXPECT_EQ(stFigures.listPlanes[2].dMeanGray, 1500);
  EXPECT_EQ(stFigures.stOverall.dMeanGray, 1000);
}

TEST(Uniformity, TheOverallFigureOfAMosaicIsItsWorstPlanes)
{
  SSyntheticScene stScene{64, 64, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t, uint32_t) { return 0.0; };
  const auto listDark = stScene.MakeFrames(2, 1);
  // Blue falls off to the right, the others are even.
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    return GetPixelColor(EColorLayout::BayerRG, nX, nY) == EColor::Blue && nX >= 32 ? 500.0 : 1000.0;
  };
  const SUniformity stFigures =
    MeasureUniformity(stScene.MakeStack(stScene.MakeFrames(2, 1)), stScene.MakeStack(listDark), EColorLayout::BayerRG);
  EXPECT_EQ(stFigures.listPlanes[0].dShadingPercent, 0);
  EXPECT_NEAR(stFigures.stOverall.dShadingPercent, 100 * 500.0 / 750.0, 1e-9);
  EXPECT_NEAR(stFigures.stOverall.dCornerToCentre, 1.5, 1e-9);
}

TEST(Uniformity, FindsTheKnownPrnuAndDsnuUnderTheNoise)
{
  std::mt19937 generator(5);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::vector<double> listGain;
  std::vector<double> listOffset;
  SSyntheticScene stScene{256, 256, 12, nullptr, 20.0};
  for (uint32_t nPixel = 0; nPixel < 256 * 256; ++nPixel) {
    listGain.push_back(1 + 0.01 * normal(generator));
    listOffset.push_back(200 + 4 * normal(generator));
  }
  stScene.fnLevel = [&](uint32_t nX, uint32_t nY) { return listOffset[nY * 256 + nX]; };
  const CFrameStack stDark = stScene.MakeStack(stScene.MakeFrames(4, 21));
  stScene.fnLevel = [&](uint32_t nX, uint32_t nY) {
    return listOffset[nY * 256 + nX] + 2000 * listGain[nY * 256 + nX];
  };
  const CFrameStack stBright = stScene.MakeStack(stScene.MakeFrames(4, 22));
  const SUniformityFigures stFigures = MeasureUniformity(stBright, stDark, EColorLayout::Mono).stOverall;
  // Without taking the temporal noise off these were 1.12 % and 10.8 DN.
  EXPECT_NEAR(stFigures.dPrnuPercent, 1.0, 0.02);
  EXPECT_NEAR(stFigures.dDsnuDn, 4.0, 0.2);
}

TEST(Uniformity, TheCornerRatioIsFreeOfTheDarkLevel)
{
  SSyntheticScene stScene{96, 96, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t, uint32_t) { return 400.0; };
  const CFrameStack stDark = stScene.MakeStack(stScene.MakeFrames(2, 1));
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    const bool bCorner = (nX < 32 || nX >= 64) && (nY < 32 || nY >= 64);
    return 400.0 + (bCorner ? 600.0 : 1000.0);
  };
  const CFrameStack stBright = stScene.MakeStack(stScene.MakeFrames(2, 1));
  EXPECT_NEAR(MeasureUniformity(stBright, stDark, EColorLayout::Mono).stOverall.dCornerToCentre, 0.6, 1e-12);
}

TEST(Uniformity, StacksThatDoNotMatchGiveNoFigures)
{
  SSyntheticScene stScene{32, 32, 12, [](uint32_t, uint32_t) { return 5.0; }, 0};
  SSyntheticScene stOther{34, 32, 12, stScene.fnLevel, 0};
  const CFrameStack stStack = stScene.MakeStack(stScene.MakeFrames(1, 1));
  EXPECT_TRUE(
    MeasureUniformity(stStack, stOther.MakeStack(stOther.MakeFrames(1, 1)), EColorLayout::Mono).listPlanes.empty());
  EXPECT_TRUE(MeasureUniformity(stScene.MakeStack({}), stStack, EColorLayout::Mono).listPlanes.empty());
  EXPECT_EQ(MeasureUniformity(stStack, stStack, EColorLayout::Mono).listPlanes.size(), 1U);
}

TEST(Uniformity, WithoutDarkFramesShadingIsKnownAndPrnuIsNot)
{
  SSyntheticScene stScene{64, 32, 12, [](uint32_t nX, uint32_t) { return nX < 32 ? 900.0 : 1100.0; }, 0};
  const CFrameStack stStack = stScene.MakeStack(stScene.MakeFrames(2, 1));
  const SUniformity stUniformity = MeasureUniformity(stStack, stScene.MakeStack({}), EColorLayout::Mono);
  EXPECT_TRUE(stUniformity.bWithoutDark);
  EXPECT_NEAR(stUniformity.stOverall.dShadingPercent, 20.0, 1e-9);
  EXPECT_EQ(stUniformity.stOverall.dPrnuPercent, 0);
  EXPECT_TRUE(stUniformity.listPlain.empty());
  EXPECT_FALSE(MeasureUniformity(stStack, stStack, EColorLayout::Mono).bWithoutDark);
}
