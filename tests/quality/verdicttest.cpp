#include "quality/verdict.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "quality/gainlimit.h"
#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColor;
using ffc::genapi::EColorLayout;
using ffc::genapi::GetPixelColor;

namespace {

SUniformity MakeUniformity(const std::vector<double> &listShading)
{
  SUniformity stUniformity;
  for (const double dShading : listShading) {
    SUniformityFigures stFigures;
    stFigures.dShadingPercent = dShading;
    stUniformity.listPlanes.push_back(stFigures);
    stUniformity.stOverall.dShadingPercent = std::max(stUniformity.stOverall.dShadingPercent, dShading);
  }
  return stUniformity;
}

CFrameStack MakeStack(const std::vector<uint8_t> &listPixels)
{
  CFrameStack stStack;
  stStack.Prepare(static_cast<uint32_t>(listPixels.size()), 1, 8);
  stStack.Add(listPixels.data(), listPixels.size());
  return stStack;
}

} // namespace

TEST(Verdict, EveryPlaneHasToKeepTheLimit)
{
  const SUniformity stBefore = MakeUniformity({40, 40, 40});
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2, 0.5, 1.0}), 1.0), EVerdict::Pass);
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2, 1.01, 0.3}), 1.0), EVerdict::Fail);
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2, 1.01, 41}), 1.0), EVerdict::Worse);
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2}), 1.0), EVerdict::Unknown) << "of another camera";
  EXPECT_EQ(JudgeShading({}, {}, 1.0), EVerdict::Unknown);
}

TEST(Verdict, SaysFigureAndLimit)
{
  const SUniformity stAfter = MakeUniformity({0.25});
  EXPECT_EQ(DescribeVerdict(EVerdict::Pass, stAfter, 1.0).toStdString(), "PASS: shading 0.25 %, limit 1.00 %");
  EXPECT_EQ(DescribeVerdict(EVerdict::Fail, stAfter, 0.2).toStdString(), "FAIL: shading 0.25 %, limit 0.20 %");
}

TEST(Drift, IsJudgedAgainstTheLimitAndTheMeasurementBefore)
{
  EXPECT_EQ(JudgeDrift(0.2, 0.3, 1.0), EDrift::Steady);
  EXPECT_EQ(JudgeDrift(0.2, 0.5, 1.0), EDrift::Grown);
  EXPECT_EQ(JudgeDrift(0.2, 1.5, 1.0), EDrift::Beyond);
  EXPECT_EQ(JudgeDrift(-1, 0.5, 1.0), EDrift::Steady) << "nothing to compare with";
  EXPECT_EQ(JudgeDrift(0.2, 0, 1.0), EDrift::Unknown);
  EXPECT_EQ(DescribeDrift(EDrift::Beyond, 0.2, 1.5, 1.0).toStdString(),
            "Drifted beyond 1.00 %: shading of a fresh flat is 1.50 %, it was 0.20 %; acquire and execute anew");
  EXPECT_EQ(DescribeDrift(EDrift::Steady, -1, 0.5, 1.0).toStdString(), "No drift: shading of a fresh flat is 0.50 %");
}

TEST(GainLimit, CountsPixelsRaisedSixteenTimesOrWithoutSignal)
{
  const CFrameStack stDark = MakeStack({2, 2, 2, 2});
  const CFrameStack stRaw = MakeStack({102, 7, 2, 12});
  const CFrameStack stCorrected = MakeStack({120, 80, 0, 120});
  EXPECT_EQ(CountPixelsAtGainLimit(stRaw, stDark, stCorrected), 2U) << "the second at 16, the third without signal";
  EXPECT_EQ(CountPixelsAtGainLimit(stRaw, stDark, MakeStack({1, 2})), 0U);
  EXPECT_EQ(CountPixelsAtGainLimit(stRaw, CFrameStack(), stCorrected), 0U);
}

TEST(Shading, OfTheWorstPlaneNeedsNoDarkFrames)
{
  SSyntheticScene stScene{64, 64, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    return GetPixelColor(EColorLayout::BayerRG, nX, nY) == EColor::Blue && nX >= 32 ? 300.0 : 200.0;
  };
  const CFrameStack stStack = stScene.MakeStack(stScene.MakeFrames(2, 1));
  EXPECT_NEAR(MeasureShading(stStack, EColorLayout::BayerRG), 40.0, 1e-9);
  EXPECT_EQ(MeasureShading(CFrameStack(), EColorLayout::Mono), 0);
}
