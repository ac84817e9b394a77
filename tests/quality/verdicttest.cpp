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
    stFigures.strName = std::to_string(stUniformity.listPlanes.size());
    stFigures.dShadingPercent = dShading;
    stUniformity.listPlanes.push_back(stFigures);
    stUniformity.stOverall.dShadingPercent = std::max(stUniformity.stOverall.dShadingPercent, dShading);
  }
  return stUniformity;
}

SLimits GetShadingLimit()
{
  SLimits stLimits;
  stLimits.dShading = 1.0;
  return stLimits;
}

EVerdict JudgeShading(const SUniformity &stBefore, const SUniformity &stAfter)
{
  return Judge(stBefore, stAfter, GetShadingLimit()).listFigures[0].eVerdict;
}

QStringList Describe(const SUniformity &stBefore, const SUniformity &stAfter)
{
  return DescribeVerdict(Judge(stBefore, stAfter, GetShadingLimit()));
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
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2, 0.5, 1.0})), EVerdict::Pass);
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2, 1.01, 0.3})), EVerdict::Fail);
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2, 1.01, 41})), EVerdict::Worse);
  EXPECT_EQ(JudgeShading(MakeUniformity({40, 0.1}), MakeUniformity({0.2, 0.2})), EVerdict::Worse)
    << "of one plane, though the worst plane got better";
  EXPECT_EQ(JudgeShading(stBefore, MakeUniformity({0.2})), EVerdict::Unknown) << "of another camera";
  EXPECT_EQ(JudgeShading({}, {}), EVerdict::Unknown);
  EXPECT_EQ(JudgeShading(stBefore, {}), EVerdict::Baseline);
}

TEST(Verdict, SaysFigureAndLimit)
{
  const SUniformity stBefore = MakeUniformity({40});
  EXPECT_EQ(Describe(stBefore, MakeUniformity({0.25}))[0], "PASS: shading 0.25 %, limit 1.00 %");
  EXPECT_EQ(Describe(stBefore, MakeUniformity({1.25}))[0], "FAIL: shading 1.25 %, limit 1.00 %");
  EXPECT_EQ(Describe(stBefore, MakeUniformity({41}))[0], "WORSE: shading 41.00 %, before the correction 40.00 %");
  EXPECT_EQ(Describe(MakeUniformity({40, 0.1}), MakeUniformity({0.2, 0.2}))[0],
            "WORSE: shading of 1 0.20 %, before the correction 0.10 %");
  EXPECT_EQ(Describe({}, {}), QStringList{"Not measured"});
}

TEST(Verdict, WorseThanBeforeIsNeverAPassWhateverTheLimits)
{
  SUniformity stBefore = MakeUniformity({40});
  SUniformity stAfter = MakeUniformity({0.2});
  const auto fnSet = [](SUniformity &stUniformity, double dPrnu, double dDsnu) {
    for (SUniformityFigures *pFigures : {&stUniformity.stOverall, &stUniformity.listPlanes[0]}) {
      pFigures->dPrnuPercent = dPrnu;
      pFigures->dDsnuDn = dDsnu;
    }
  };
  fnSet(stBefore, 0.4, 0.2);
  fnSet(stAfter, 0.5, 2.0);
  SLimits stLimits = GetShadingLimit();
  stLimits.dPrnu = 1.0;
  SVerdict stVerdict = Judge(stBefore, stAfter, stLimits);
  EXPECT_EQ(stVerdict.eVerdict, EVerdict::Worse);
  EXPECT_FALSE(stVerdict.KeepsLimits()) << "PRNU is within its limit, and worse";
  EXPECT_EQ(DescribeVerdict(stVerdict)[1].toStdString(), "WORSE: PRNU 0.50 %, before the correction 0.40 %");
  EXPECT_EQ(DescribeVerdict(stVerdict)[2].toStdString(), "WORSE: DSNU 2.00 DN, before the correction 0.20 DN");

  fnSet(stAfter, 0.3, 0.25);
  stVerdict = Judge(stBefore, stAfter, stLimits);
  EXPECT_EQ(stVerdict.eVerdict, EVerdict::Pass) << "a DSNU that rounding hides is no worse";
  EXPECT_TRUE(stVerdict.KeepsLimits());
  EXPECT_EQ(DescribeVerdict(stVerdict)[2].toStdString(), "No limit: DSNU 0.25 DN");
  stLimits.dDsnu = 0.1;
  EXPECT_EQ(Judge(stBefore, stAfter, stLimits).eVerdict, EVerdict::Fail);
  EXPECT_EQ(Judge(stBefore, stAfter, {}).eVerdict, EVerdict::Open) << "nothing was asked for";
}

TEST(Verdict, WhatIsNotMeasuredDoesNotPass)
{
  SUniformity stBefore = MakeUniformity({40});
  stBefore.bWithoutDark = true;
  SLimits stLimits = GetShadingLimit();
  EXPECT_EQ(Judge(stBefore, MakeUniformity({0.2}), stLimits).eVerdict, EVerdict::Pass);
  stLimits.dPrnu = 100;
  const SVerdict stVerdict = Judge(stBefore, MakeUniformity({0.2}), stLimits);
  EXPECT_EQ(stVerdict.eVerdict, EVerdict::Fail);
  EXPECT_EQ(DescribeVerdict(stVerdict)[1].toStdString(), "Not measured: PRNU, for want of dark frames");
}

TEST(Limits, AreReadByName)
{
  const SLimits stLimits = ParseLimits("shading=1.5, dsnu-high-pass=0").GetValue();
  EXPECT_EQ(stLimits.dShading, 1.5);
  EXPECT_EQ(stLimits.dDsnuHighPass, 0);
  EXPECT_EQ(stLimits.dPrnu, -1);
  EXPECT_TRUE(stLimits.NeedDark());
  for (const char *pWrong : {"shade=1", "shading", "shading=few", "shading=-1", "prnu=nan", "prnu=inf"}) {
    EXPECT_NE(ParseLimits(pWrong).GetError().find(pWrong), std::string::npos) << pWrong;
  }
  EXPECT_TRUE(ParseLimits("").GetValue().IsEmpty());
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

TEST(Limits, KnowWhetherTheyNeedDarkFrames)
{
  EXPECT_TRUE(SLimits().IsEmpty());
  for (double SLimits::*pLimit :
       {&SLimits::dPrnu, &SLimits::dDsnu, &SLimits::dPrnuHighPass, &SLimits::dDsnuHighPass, &SLimits::dShading}) {
    SLimits stLimits;
    stLimits.*pLimit = 0;
    EXPECT_FALSE(stLimits.IsEmpty());
    EXPECT_EQ(stLimits.NeedDark(), pLimit != &SLimits::dShading);
  }
}
