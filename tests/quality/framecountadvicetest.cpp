#include "quality/referenceadvice.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColor;
using ffc::genapi::EColorLayout;
using ffc::genapi::GetPixelColor;

namespace {

using EVerdict = SFrameCountAdvice::EVerdict;

/// -1 or 1, without a pattern of rows or columns.
double Toss(uint32_t nX, uint32_t nY)
{
  uint32_t nHash = nX * 2654435761U ^ (nY + 0x9E3779B9U) * 2246822519U;
  nHash ^= nHash >> 15U;
  nHash *= 2654435761U;
  return (nHash >> 16U & 1U) == 0 ? -1.0 : 1.0;
}

SNoise MakeNoise(double dTemporal, double dPattern)
{
  return {"Mono", 2000, dTemporal, dPattern};
}

} // namespace

TEST(Noise, TellsPatternFromNoiseAndFromShading)
{
  SSyntheticScene stScene{128, 96, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) { return 1000.0 + 8.0 * nX + 20.0 * Toss(nX, nY); };
  stScene.dNoise = 30;
  const SNoise stNoise = MeasureNoise(stScene.MakeStack(stScene.MakeFrames(16, 3)), GetWholeImagePlane());
  EXPECT_NEAR(stNoise.dTemporal, 30, 0.5);
  // Two columns of shading are 16 DN apart, which counts as 16 / root 2 of pattern.
  EXPECT_NEAR(stNoise.dPattern, std::sqrt(400.0 + 128.0), 0.6);
  EXPECT_NEAR(stNoise.dMean, 1508, 5);
}

TEST(Noise, OfAPlaneLooksAtItsOwnPixelsAlone)
{
  SSyntheticScene stScene{64, 64, 10, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    const bool bRed = GetPixelColor(EColorLayout::BayerGB, nX, nY) == EColor::Red;
    return bRed ? 300.0 + 10.0 * Toss(nX, nY) : 700.0;
  };
  const std::vector<SNoise> listNoise =
    MeasureNoise(stScene.MakeStack(stScene.MakeFrames(1, 1)), EColorLayout::BayerGB);
  ASSERT_EQ(listNoise.size(), 3U);
  EXPECT_EQ(listNoise[0].strName, "R");
  EXPECT_NEAR(listNoise[0].dPattern, 10, 0.5);
  EXPECT_EQ(listNoise[1].dPattern, 0);
  EXPECT_EQ(listNoise[2].dPattern, 0);
  EXPECT_EQ(listNoise[0].dTemporal, 0) << "one frame says nothing about noise";
}

TEST(Noise, OfAnEmptyStackIsNone)
{
  EXPECT_EQ(MeasureNoise(CFrameStack(), GetWholeImagePlane()).dTemporal, 0);
}

TEST(FrameCountAdvice, EightFramesOnlyBreakEvenSoTakeSixteen)
{
  const SFrameCountAdvice stAdvice = AdviseFrameCount(MakeNoise(20, 8));
  EXPECT_EQ(stAdvice.eVerdict, EVerdict::TakeMore);
  EXPECT_DOUBLE_EQ(stAdvice.dBreakEven, 6.25);
  EXPECT_EQ(stAdvice.nBreakEven, 8);
  EXPECT_EQ(stAdvice.nAdvised, 16);
  EXPECT_DOUBLE_EQ(stAdvice.dNoise, 5);
  EXPECT_EQ(DescribeAdvice(stAdvice).toStdString(), "8 frames only break even, take 16.");
}

TEST(FrameCountAdvice, FollowsTheRatioOfNoiseToPattern)
{
  const SFrameCountAdvice stOne = AdviseFrameCount(MakeNoise(5, 10));
  EXPECT_EQ(stOne.eVerdict, EVerdict::OneIsEnough);
  EXPECT_EQ(stOne.nAdvised, 1);

  const SFrameCountAdvice stFour = AdviseFrameCount(MakeNoise(10, 10));
  EXPECT_EQ(stFour.nBreakEven, 1);
  EXPECT_EQ(stFour.nAdvised, 4);
  EXPECT_EQ(DescribeAdvice(stFour).toStdString(), "1 frame only breaks even, take 4.");

  const SFrameCountAdvice stSixteen = AdviseFrameCount(MakeNoise(35, 10));
  EXPECT_EQ(stSixteen.nBreakEven, 16);
  EXPECT_EQ(DescribeAdvice(stSixteen).toStdString(), "Nothing less than 16 frames breaks even; take 16.");

  const SFrameCountAdvice stNever = AdviseFrameCount(MakeNoise(60, 10));
  EXPECT_EQ(stNever.eVerdict, EVerdict::NeverEnough);
  EXPECT_EQ(stNever.nAdvised, 16);
  EXPECT_TRUE(DescribeAdvice(stNever).contains("break-even at 36"));
}

TEST(FrameCountAdvice, WithoutPatternOrWithoutNoiseThereIsLittleToSay)
{
  EXPECT_EQ(AdviseFrameCount(MakeNoise(10, 0)).eVerdict, EVerdict::NoPattern);
  EXPECT_EQ(AdviseFrameCount(MakeNoise(0, 10)).eVerdict, EVerdict::Unknown);
  EXPECT_EQ(AdviseFrameCount(std::vector<SNoise>()).eVerdict, EVerdict::Unknown);
}

TEST(FrameCountAdvice, TheColourThatNeedsMostFramesDecides)
{
  EXPECT_EQ(AdviseFrameCount(std::vector{MakeNoise(5, 10), MakeNoise(20, 8), MakeNoise(10, 10)}).nBreakEven, 8);
  EXPECT_EQ(AdviseFrameCount(std::vector{MakeNoise(5, 10), MakeNoise(5, 0)}).eVerdict, EVerdict::NoPattern);
}

TEST(ReferenceAdvice, NamesTheBitsWhenTheySetTheFloor)
{
  SReferenceFacts stFacts;
  stFacts.nBitDepth = 8;
  stFacts.nFrames = 16;
  const SNoise stQuiet{"Mono", 103, 0.5, 1};
  const QString strAdvice = AdviseReference({stQuiet}, stFacts).join(' ');
  EXPECT_TRUE(strAdvice.contains("take 12 bit; 8-bit rounding alone leaves 0.28 %")) << strAdvice.toStdString();
  EXPECT_TRUE(strAdvice.contains("16 frames were used, which is as advised.")) << strAdvice.toStdString();
  // Noise of a frame far above a bit: the same rounding, but frames come first.
  EXPECT_FALSE(DoBitsSetTheFloor({"Mono", 103, 4, 1}, stFacts));
  stFacts.nBitDepth = 12;
  EXPECT_FALSE(DoBitsSetTheFloor(stQuiet, stFacts));
}

TEST(ReferenceAdvice, KnowsHowManyFramesWereUsedByWhichMethodAndWhoCorrects)
{
  SReferenceFacts stFacts;
  stFacts.nFrames = 2;
  const std::vector<SNoise> listNoise = {MakeNoise(20, 8)};
  QString strAdvice = AdviseReference(listNoise, stFacts).join(' ');
  EXPECT_TRUE(strAdvice.contains("8 frames only break even, take 16.")) << strAdvice.toStdString();
  EXPECT_TRUE(strAdvice.contains("2 frames were used: their noise leaves 0.71 %")) << strAdvice.toStdString();
  stFacts.bWeighted = true;
  strAdvice = AdviseReference(listNoise, stFacts).join(' ');
  EXPECT_TRUE(strAdvice.contains("of 2 frames is weighted")) << strAdvice.toStdString();
  stFacts.eMode = ffc::camera::ECorrectionMode::Vignetting;
  stFacts.nBlockSize = 32;
  strAdvice = AdviseReference(listNoise, stFacts).join(' ');
  EXPECT_TRUE(strAdvice.contains("blocks of 32 x 32 pixels: one frame is enough")) << strAdvice.toStdString();
}

TEST(ReferenceAdvice, OfOneFrameSpeaksOfOne)
{
  SReferenceFacts stFacts;
  stFacts.nFrames = 1;
  const auto fnAdvise = [&](const std::vector<SNoise> &listNoise) {
    return AdviseReference(listNoise, stFacts).join(' ').toStdString();
  };
  EXPECT_NE(fnAdvise({MakeNoise(20, 8)}).find("1 frame was used: its noise leaves"), std::string::npos);
  EXPECT_NE(fnAdvise({MakeNoise(1, 10)}).find("1 frame was used, which is as advised."), std::string::npos);
  stFacts.bWeighted = true;
  EXPECT_NE(fnAdvise({MakeNoise(20, 8)}).find("The reference of 1 frame is weighted"), std::string::npos);
  stFacts.bWeighted = false;
  EXPECT_EQ(fnAdvise({}).find("was used"), std::string::npos) << "nothing is known of its noise";
  stFacts.nFrames = 0;
  EXPECT_EQ(fnAdvise({MakeNoise(20, 8)}).find("used"), std::string::npos);
}

TEST(ReferenceAdvice, RoundingBelowWhatIsSeenOrOfNoLightSetsNoFloor)
{
  SReferenceFacts stFacts;
  stFacts.nBitDepth = 8;
  EXPECT_FALSE(DoBitsSetTheFloor({"Mono", 0, 0, 0}, stFacts)) << "it is dark";
  EXPECT_TRUE(DoBitsSetTheFloor({"Mono", 100, 0, 0}, stFacts));
  stFacts.nBitDepth = 0;
  EXPECT_FALSE(DoBitsSetTheFloor({"Mono", 100, 0, 0}, stFacts)) << "the depth is not known";
}
