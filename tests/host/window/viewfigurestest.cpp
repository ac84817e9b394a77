/// \file
/// How the display is stretched, and the figures of samples that stand beside it.

#include <cmath>

#include <QTableWidget>

#include <gtest/gtest.h>

#include "host/window/displaypicture.h"
#include "host/window/exposurehelper.h"
#include "host/window/figuretable.h"
#include "host/window/frameanalysis.h"
#include "host/window/frameinspection.h"
#include "host/window/imagemarks.h"
#include "host/window/toolbar.h"
#include "tests/host/window/madeframe.h"

using namespace ffc::host;

namespace {

using EOutcome = CExposureHelper::EOutcome;

/// A sensor that is linear up to its maximum.
SFrameCopy Expose(double dExposure, double dPercentPerMicrosecond)
{
  const double dGrey = std::min(4095.0, 40.95 * dExposure * dPercentPerMicrosecond);
  return MakeFrame("Mono12", 16, 16, [dGrey](uint32_t, uint32_t) { return static_cast<uint32_t>(dGrey); });
}

/// \return how it ends, and the exposure then
CExposureHelper::SStep RunHelper(double dExposure, double dPercentPerMicrosecond, int &nFrames)
{
  CExposureHelper helper;
  helper.Begin();
  CExposureHelper::SStep stStep;
  for (nFrames = 0; helper.IsRunning() && nFrames < 200; ++nFrames) {
    stStep = helper.Look(Expose(dExposure, dPercentPerMicrosecond), dExposure, 10, 100000);
    dExposure = stStep.eOutcome == EOutcome::Write ? stStep.dExposure : dExposure;
  }
  return stStep;
}

} // namespace

TEST(Stretch, BlackAndWhiteLeaveOutAThousandthAtEitherEnd)
{
  // 100 x 100 pixels: 2 dead, 3 hot, and greys from 1000 to 1099.
  const SFrameCopy stFrame = MakeFrame("Mono12", 100, 100, [](uint32_t nX, uint32_t nY) {
    return nY == 0 && nX < 2 ? 0U : nY == 1 && nX < 3 ? 4095U : 1000 + nX;
  });
  EXPECT_EQ(FindGreyRange(stFrame).dBlack, 1000);
  EXPECT_EQ(FindGreyRange(stFrame).dWhite, 1099);
  const SFrameCopy stFlat = MakeFrame("Mono12", 8, 8, [](uint32_t, uint32_t) { return 4095U; });
  EXPECT_EQ(FindGreyRange(stFlat).dBlack, 4091) << "within the format, and never no range";
  EXPECT_EQ(FindGreyRange(stFlat).dWhite, 4095);
}

TEST(Stretch, OfALargeFramePairsOfLinesAreLookedAtAndOfOneThatIsNotShownNone)
{
  const SFrameCopy stFrame = MakeFrame("Mono8", 1024, 1024, [](uint32_t nX, uint32_t nY) {
    return nY % 6 > 1 ? 0U : nY % 6 == 0 ? 100 + nX % 10 : 200 + nX % 10; // as the lines of two colours may differ
  });
  EXPECT_EQ(FindGreyRange(stFrame).dBlack, 100);
  EXPECT_EQ(FindGreyRange(stFrame).dWhite, 209);
  EXPECT_EQ(FindGreyRange(SFrameCopy()), SGreyRange());
}

TEST(Stretch, ShowsTheRangeAsBlackToWhiteAndTheFullOneAsTheHighestBits)
{
  const SFrameCopy stFrame = MakeFrame("Mono12", 4, 1, [](uint32_t nX, uint32_t) { return 900 + 100 * nX; });
  SDisplayOptions stOptions;
  stOptions.stRange = SGreyRange{1000, 1100};
  const QImage imgPicture = MakeDisplayPicture(stFrame, stOptions);
  EXPECT_EQ(qGray(imgPicture.pixel(0, 0)), 0);
  EXPECT_EQ(qGray(imgPicture.pixel(1, 0)), 0);
  EXPECT_GE(qGray(imgPicture.pixel(2, 0)), 252);
  EXPECT_EQ(qGray(imgPicture.pixel(3, 0)), 255);
  const std::vector<uint8_t> listTable = MakeGreyTable(GetFullRange(4095), 65536);
  for (uint32_t nSample = 0; nSample < 4096; ++nSample) {
    ASSERT_EQ(listTable[nSample], nSample >> 4);
  }
  EXPECT_EQ(listTable[65535], 255) << "what no camera should send is not shown as dark";
}

TEST(FrameInspection, CountsOverexposedSamplesFromTheThresholdOn)
{
  const SFrameCopy stFrame = MakeFrame("Mono8", 10, 10, [](uint32_t nX, uint32_t nY) {
    return nY > 0 ? 100U : nX < 3 ? 255U : 230U;
  });
  EXPECT_EQ(GetOverexposedPercent(stFrame, 100), 3.0);
  EXPECT_EQ(GetOverexposedPercent(stFrame, 90), 10.0);
  EXPECT_FALSE(GetOverexposedPercent(SFrameCopy(), 90).has_value());
}

TEST(FrameInspection, TellsPatternFromNoiseInARegionOfEachColour)
{
  // A pattern of +-10 from place to place; from frame to frame all samples rise, and every other row of red wavers.
  const auto MakeTone = [](uint32_t nFrame) {
    return MakeFrame("BayerRG12", 8, 8, [nFrame](uint32_t nX, uint32_t nY) {
      const uint32_t nBase = nX % 2 == 0 && nY % 2 == 0 ? 1000 + (nY % 4 == 0 ? 4 * nFrame : 0) : 2000;
      return nBase + (nX / 2 % 2 == 0 ? 0U : 20U) + 5 * nFrame;
    });
  };
  const SFrameCopy stBefore = MakeTone(0);
  const SFrameCopy stNow = MakeTone(1);
  const QRect rcRegion(0, 0, 8, 8);
  const std::vector<SRegionFigures> listFigures = MeasureRegion(stNow, rcRegion, &stBefore);
  ASSERT_EQ(listFigures.size(), 3U);
  EXPECT_EQ(listFigures[0].strPlane.toStdString(), "R");
  EXPECT_EQ(listFigures[0].nSamples, 16U);
  EXPECT_NEAR(listFigures[0].dMean, 1017, 1e-9);
  EXPECT_NEAR(*listFigures[0].dNoise, 2 / std::sqrt(2.0), 1e-9);
  EXPECT_NEAR(listFigures[1].dDeviation, 10, 1e-9);
  EXPECT_NEAR(*listFigures[1].dNoise, 0, 1e-9) << "light that rises is no noise";
  EXPECT_FALSE(MeasureRegion(stNow, rcRegion, nullptr)[0].dNoise.has_value());
  EXPECT_TRUE(MeasureRegion(stNow, QRect(4, 4, 8, 8), nullptr).empty()) << "not within the frame";
  EXPECT_TRUE(MeasureRegion(stNow, QRect(), nullptr).empty());
  EXPECT_TRUE(MeasureRegion(SFrameCopy(), rcRegion, nullptr).empty()) << "no samples";
  EXPECT_EQ(MeasureRegion(stNow, QRect(0, 0, 1, 1), nullptr).size(), 1U) << "a colour that is not in it has no figures";
  SFrameCopy stCorrected = stBefore;
  stCorrected.bCorrected = true;
  EXPECT_FALSE(MeasureRegion(stNow, rcRegion, &stCorrected)[0].dNoise) << "nothing to compare with";
  const QString strText = DescribeRegion(listFigures, rcRegion);
  EXPECT_TRUE(strText.startsWith("Region 8 x 8 px at 0, 0: R: mean 1017.0 DN, noise 1.41 DN, "))
    << strText.toStdString();
}

TEST(FrameInspection, ProfilesALineAnywhereFromTheSamples)
{
  const SFrameCopy stFrame = MakeFrame("Mono12", 32, 32, [](uint32_t nX, uint32_t nY) { return 100 * nX + nY; });
  const std::vector<SLineProfile> listProfiles = MakeLineProfiles(stFrame, QLine(3, 4, 9, 12));
  ASSERT_EQ(listProfiles.size(), 1U);
  const ffc::quality::SProfile &stProfile = listProfiles[0].stProfile;
  ASSERT_EQ(stProfile.listGrays.size(), 9);
  EXPECT_EQ(stProfile.listGrays.first(), 304);
  EXPECT_EQ(stProfile.listGrays.last(), 912);
  EXPECT_NEAR(stProfile.listPositions.last(), 10, 1e-9) << "the distance, not the columns";
  for (const QLine &line : {QLine(-1, 4, 9, 12), QLine(3, 4, 32, 12)}) {
    EXPECT_TRUE(MakeLineProfiles(stFrame, line).empty()) << "either end is outside";
  }
  EXPECT_TRUE(MakeLineProfiles(SFrameCopy(), QLine()).empty());
  EXPECT_EQ(AnalyseFrame(stFrame, QLine(3, 4, 9, 12)).listPlanes[0].stLine.listGrays.size(), 9);
  EXPECT_TRUE(MakeLineProfiles(stFrame, QLine(0, 0, 32, 0)).empty());
}

TEST(ExposureHelper, FindsTheExposureFromDarkBrightAndSaturatedImages)
{
  for (const double dExposure : {12.0, 700.0, 90000.0}) {
    int nFrames = 0;
    const CExposureHelper::SStep stStep = RunHelper(dExposure, 0.01, nFrames); // 70 % at 7000 microseconds
    EXPECT_EQ(stStep.eOutcome, EOutcome::Done) << dExposure;
    EXPECT_NEAR(stStep.dExposure, 7000, 150) << dExposure;
    EXPECT_LT(nFrames, 40) << dExposure;
  }
}

TEST(ExposureHelper, SaysWhenTheCameraCannotExposeSo)
{
  int nFrames = 0;
  EXPECT_EQ(RunHelper(1000, 0.0001, nFrames).eOutcome, EOutcome::TooDark);
  EXPECT_EQ(RunHelper(1000, 50, nFrames).eOutcome, EOutcome::TooBright);
  CExposureHelper helper;
  helper.Begin();
  EXPECT_EQ(helper.Look(SFrameCopy(), 1000, 10, 100000).eOutcome, EOutcome::NoFigures);
  EXPECT_FALSE(helper.IsRunning());
  helper.Begin();
  for (int nFrame = 0; helper.IsRunning() && nFrame < 200; ++nFrame) {
    const CExposureHelper::SStep stStep = helper.Look(Expose(1000, 0.01), 1000, 10, 100000);
    EXPECT_TRUE(helper.IsRunning() || stStep.eOutcome == EOutcome::Unsteady) << "a camera that does not follow";
  }
  EXPECT_FALSE(helper.IsRunning());
}

TEST(ImageMarks, AreForgottenInAnImageThatTheyDoNotFit)
{
  CImageMarks marks;
  marks.SetTool(EImageTool::Region);
  marks.Begin({20, 30});
  marks.Extend({10, 5});
  EXPECT_EQ(marks.GetRegion(), QRect(QPoint(10, 5), QPoint(20, 30)));
  marks.SetTool(EImageTool::Line);
  marks.Begin({1, 1});
  EXPECT_FALSE(marks.HasLine()) << "a click is none";
  marks.Extend({5, 5});
  marks.SetImageSize({18, 40});
  EXPECT_TRUE(marks.GetRegion().isEmpty());
  EXPECT_TRUE(marks.HasLine());
  marks.SetTool(EImageTool::Region);
  marks.Begin({4, 4});
  marks.Extend({2, 2});
  marks.SetTool(EImageTool::Pan);
  marks.Begin({0, 0});
  EXPECT_EQ(marks.GetRegion(), QRect(2, 2, 3, 3)) << "moving the image marks nothing";
  marks.SetImageSize({5, 5});
  EXPECT_FALSE(marks.HasLine()) << "its second end is outside";
  EXPECT_FALSE(marks.GetRegion().isEmpty());
  marks.SetTool(EImageTool::Line);
  marks.Begin({4, 4});
  marks.Extend({0, 0});
  marks.SetImageSize({3, 3});
  EXPECT_FALSE(marks.HasLine()) << "its first";
}

TEST(ToolBarText, HasNoLetterOfAKey)
{
  EXPECT_EQ(GetToolBarText("Mark &line").toStdString(), "Mark line");
  EXPECT_EQ(GetToolBarText(QString::fromUtf8("适合(&F)...")), QString::fromUtf8("适合"));
}

TEST(FigureTable, HasTheColoursOfAMosaicSideBySide)
{
  QTableWidget table(0, 2);
  FillFigureTable(table, {{"R  Shading, %", "20.1", "0.3"},
                          {"R  Mean grey, DN", "900.0", "950.0"},
                          {"B  Shading, %", "25.0", "0.4"},
                          {"PRNU, high-pass, %", "1.1", "0.2"}});
  ASSERT_EQ(table.columnCount(), 3);
  ASSERT_EQ(table.rowCount(), 3) << "one for each figure";
  EXPECT_EQ(table.verticalHeaderItem(0)->text().toStdString(), "Shading, %");
  EXPECT_EQ(table.item(0, 0)->text(), QString::fromUtf8("20.1→\n0.3"));
  EXPECT_EQ(table.item(0, 2)->text(), QString::fromUtf8("25.0→\n0.4"));
  EXPECT_EQ(table.item(2, 0)->text(), QString::fromUtf8("1.1 → 0.2"));
  EXPECT_EQ(table.columnSpan(2, 0), 3);
  FillFigureTable(table, {{"Shading, %", "20.1", "0.3"}});
  EXPECT_EQ(table.columnCount(), 2);
  EXPECT_EQ(table.item(0, 1)->text().toStdString(), "0.3");
}
