#include "quality/brightfield.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColorLayout;

namespace {

/// Judges frames of a scene, each with a level of its own.
class CBrightFrames {
public:
  using FnLevel = std::function<double(uint32_t nColumn, uint32_t nLine, uint32_t nFrame)>;

  SBrightField Measure(const FnLevel &fnLevel, uint32_t nFrames = 4)
  {
    SSyntheticScene stScene;
    stScene.nWidth = 96;
    stScene.nHeight = 80;
    stScene.dNoise = 15;
    CFrameStack stack;
    stack.Prepare(stScene.nWidth, stScene.nHeight, stScene.nBitDepth);
    CLightWatch watch;
    for (uint32_t nFrame = 0; nFrame < nFrames; ++nFrame) {
      stScene.fnLevel = [&](uint32_t nColumn, uint32_t nLine) { return fnLevel(nColumn, nLine, nFrame); };
      const std::vector<uint8_t> listBytes = PackFrame(stScene.MakeFrames(1, nFrame + 1)[0], stScene.nBitDepth);
      stack.Add(listBytes.data(), listBytes.size());
      watch.Add(listBytes.data(), stScene.nWidth, stScene.nHeight, 2);
    }
    return MeasureBrightField(stack, &watch, EColorLayout::Mono);
  }

  /// The beginnings of the remarks, an exclamation mark before those that make it unusable.
  std::string Judge(const FnLevel &fnLevel)
  {
    std::string strText;
    for (const SBrightRemark &stRemark : JudgeBrightField(Measure(fnLevel))) {
      strText += (stRemark.bUnusable ? "!" : "") + stRemark.strText.section(' ', 0, 3).toStdString() + "; ";
    }
    return strText;
  }
};

/// Falls to a half at the corners.
double GetShaded(uint32_t nColumn, uint32_t nLine)
{
  const double dX = (nColumn - 48.0) / 48.0;
  const double dY = (nLine - 40.0) / 40.0;
  return 3000.0 * (1.0 - 0.25 * (dX * dX + dY * dY));
}

} // namespace

TEST(BrightField, SteepShadingAndNoiseAreNoReasonForARemark)
{
  EXPECT_EQ(CBrightFrames().Judge([](uint32_t nX, uint32_t nY, uint32_t) { return GetShaded(nX, nY); }), "");
}

TEST(BrightField, ASpotOfDustIsNone)
{
  EXPECT_EQ(CBrightFrames().Judge([](uint32_t nX, uint32_t nY, uint32_t) {
    return GetShaded(nX, nY) * (std::hypot(nX - 44.0, nY - 36.0) < 2.5 ? 0.9 : 1.0);
  }),
            "");
}

TEST(BrightField, AChartIsUnusableAndAShadowIsNamed)
{
  EXPECT_EQ(CBrightFrames().Judge(
              [](uint32_t nX, uint32_t nY, uint32_t) { return (nX / 12 + nY / 12) % 2 == 0 ? 2500.0 : 1500.0; }),
            "!The bright field has; ");
  EXPECT_EQ(CBrightFrames().Judge(
              [](uint32_t nX, uint32_t nY, uint32_t) { return GetShaded(nX, nY) * (nX > 85 && nY > 60 ? 0.3 : 1.0); }),
            "The bright field has; ");
}

TEST(BrightField, ClippedPixelsAreNamedByTheirShare)
{
  const auto fnJudge = [](uint32_t nEvery) {
    return CBrightFrames().Judge([nEvery](uint32_t nX, uint32_t nY, uint32_t) {
      return (nY * 96 + nX) % nEvery == 0 ? 6000.0 : GetShaded(nX, nY);
    });
  };
  EXPECT_TRUE(fnJudge(40).find("!2.5 % of the") == 0) << fnJudge(40);
  EXPECT_TRUE(fnJudge(500).find("0.208 % of the") == 0) << fnJudge(500);
}

TEST(BrightField, UnsteadyLightIsNamedAndLightThatMovesToo)
{
  EXPECT_EQ(CBrightFrames().Judge([](uint32_t nX, uint32_t nY, uint32_t nFrame) {
    return GetShaded(nX, nY) * (nFrame % 2 == 0 ? 1.0 : 0.97);
  }),
            "The light is unsteady:; ");
  EXPECT_EQ(CBrightFrames().Judge([](uint32_t nX, uint32_t nY, uint32_t nFrame) {
    return GetShaded(nX, nY) * (1.0 + (nX - 48.0) / 48.0 * 0.01 * nFrame);
  }),
            "The light moves: between; ");
}

TEST(BrightField, OfAMosaicOneChannelIsJudgedAndOfNoFramesNothing)
{
  CFrameStack stack;
  EXPECT_TRUE(JudgeBrightField(MeasureBrightField(stack, nullptr, EColorLayout::Mono)).empty());
  ASSERT_TRUE(stack.Prepare(512, 384, 8));
  std::vector<uint8_t> listFrame(512 * 384);
  for (std::size_t n = 0; n < listFrame.size(); ++n) { // its sites differ, and each of them is even
    listFrame[n] = n % 2 == 0 ? 60 : 200;
  }
  ASSERT_TRUE(stack.Add(listFrame.data(), listFrame.size()));
  EXPECT_EQ(MeasureBrightField(stack, nullptr, EColorLayout::BayerRG).dStructurePercent, 0);
  CLightWatch watch;
  watch.Add(listFrame.data(), 512, 384, 1);
  EXPECT_EQ(watch.GetLargest(), 200U);
  EXPECT_EQ(watch.GetLargestCount(), 512U * 384U / 2);
  watch.Add(listFrame.data(), 64, 7, 1);
  EXPECT_EQ(watch.GetFrameCount(), 1U) << "lower than the grid";
  EXPECT_EQ(MeasureStructure(64, 16, [](uint32_t, uint32_t) { return 1; }), 0) << "no block has neighbours";
}
