#include "quality/htmlreport.h"

#include <cstring>

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace ffc::quality;

namespace {

SUniformity MakeUniformity(double dShading)
{
  SUniformity stUniformity;
  for (const char *pName : {"R", "G", "B"}) {
    stUniformity.listPlanes.push_back({pName, dShading, 0.61, 2.0, 1.5, 2000, 0.25});
  }
  stUniformity.stOverall = stUniformity.listPlanes[0];
  return stUniformity;
}

SResult MakeResult()
{
  SResult stResult;
  stResult.stReport.strCamera = "Maker <Model> (7)";
  stResult.stReport.nBrightFrames = 16;
  stResult.stReport.nDarkFrames = 15;
  stResult.stReport.stBefore = MakeUniformity(40);
  stResult.stReport.stAfter = MakeUniformity(0.5);
  stResult.listNoise = {{"R", 1000, 20, 8}};
  stResult.stAdvice = AdviseFrameCount(stResult.listNoise);
  stResult.nNewlyClipped = 12;
  stResult.nAtGainLimit = 34;
  stResult.stPictures.imgBefore = QImage(1600, 1200, QImage::Format_Grayscale8);
  stResult.stPictures.imgBefore.fill(80);
  stResult.stPictures.imgAfter = stResult.stPictures.imgBefore;
  stResult.listSettings = {{"ExposureTime", "10000"}, {"Gain", "0 & more"}};
  return stResult;
}

SLimits MakeLimit(double dShading)
{
  SLimits stLimits;
  stLimits.dShading = dShading;
  return stLimits;
}

QString MakePage(const SResult &stResult, double dLimit)
{
  return QString::fromUtf8(MakeHtmlReport(stResult, MakeLimit(dLimit), QDateTime({2024, 5, 17}, {13, 5, 9})));
}

} // namespace

TEST(HtmlReport, NeedsNothingBesideIt)
{
  const QString strPage = MakePage(MakeResult(), 1.0);
  EXPECT_FALSE(strPage.contains("<script"));
  EXPECT_FALSE(strPage.contains("<link"));
  QRegularExpressionMatchIterator it = QRegularExpression("src=\"([^\"]*)\"").globalMatch(strPage);
  int nPictures = 0;
  for (; it.hasNext(); ++nPictures) {
    const QString strSource = it.next().captured(1);
    ASSERT_TRUE(strSource.startsWith("data:image/png;base64,"));
    const QImage imgPicture = QImage::fromData(
      QByteArray::fromBase64(strSource.mid(static_cast<int>(std::strlen("data:image/png;base64,"))).toLatin1()));
    EXPECT_EQ(imgPicture.size(), QSize(800, 600)) << "large pictures are made smaller";
  }
  EXPECT_EQ(nPictures, 2) << "pictures that there are";
}

TEST(HtmlReport, SaysVerdictFiguresFindingsAndSettings)
{
  const QString strPage = MakePage(MakeResult(), 1.0);
  for (const char *pText :
       {"Maker &lt;Model&gt; (7)", "2024-05-17 13:05:09", "PASS: shading 0.50 %, limit 1.00 %", "G  Shading, %",
        "8 frames only break even, take 16.", "12 samples; held at the gain limit: 34 pixels", "16 bright and 15 dark",
        "No limit: PRNU 2.00 %", "0 &amp; more", "noise of one frame 20.00 DN, pixel pattern 8.00 DN"}) {
    EXPECT_TRUE(strPage.contains(QLatin1String(pText))) << pText;
  }
  EXPECT_TRUE(MakePage(MakeResult(), 0.3).contains("FAIL: shading 0.50 %, limit 0.30 %"));
}

TEST(HtmlReport, OfACameraThatCorrectsItselfCountsNoClippedSamples)
{
  SResult stResult = MakeResult();
  stResult.bSameExposures = false;
  const QString strPage = MakePage(stResult, 1.0);
  EXPECT_FALSE(strPage.contains("gain limit"));
  EXPECT_TRUE(strPage.contains("different exposures"));
}

TEST(FigureRows, AreOnePerFigureAndPlane)
{
  const QList<SFigureRow> listRows = ListFigureRows(MakeResult().stReport);
  ASSERT_EQ(listRows.size(), 18);
  EXPECT_EQ(listRows[6].strName.toStdString(), "G  Shading, %");
  EXPECT_EQ(listRows[6].strBefore.toStdString(), "40.00");
  EXPECT_EQ(listRows[6].strAfter.toStdString(), "0.50");
  EXPECT_TRUE(ListFigureRows(SReport()).isEmpty());
}

TEST(QualityJson, AddsVerdictNoiseAdviceAndCounts)
{
  const QJsonObject json = MakeJson(MakeResult(), MakeLimit(0.3));
  EXPECT_EQ(json["verdict"].toString().toStdString(), "fail");
  EXPECT_EQ(json["limits"].toObject()["shading"].toDouble(), 0.3);
  EXPECT_EQ(json["verdicts"].toArray()[1].toObject()["verdict"].toString().toStdString(), "open");
  EXPECT_EQ(json["advised_frames"].toInt(), 16);
  EXPECT_EQ(json["break_even_frames"].toDouble(), 6.25);
  EXPECT_EQ(json["newly_clipped_samples"].toInt(), 12);
  EXPECT_EQ(json["pixels_at_gain_limit"].toInt(), 34);
  EXPECT_EQ(json["settings"].toObject()["ExposureTime"].toString().toStdString(), "10000");
  EXPECT_EQ(json["before"].toObject()["shading_percent"].toDouble(), 40) << "what report.json has is there too";
}

TEST(HtmlReport, NamesWhatTheCoefficientsAndTheFiguresCameFrom)
{
  SResult stResult = MakeResult();
  stResult.stReport.nFrameCount = 8;
  stResult.stReport.eDarkField = EDarkField::None;
  stResult.stReport.nExpectGray = 120;
  stResult.stReport.nExpectGrayDn = 1920;
  stResult.stReport.strCoefficientFile = "left.ffc";
  stResult.stReport.strPrograms = "host 1.2, module 3.4";
  const QString strPage = MakePage(stResult, 1.0);
  for (const char *pText : {"from 8 bright frames, averaged, no dark frame", "left.ffc", "120 of 255 (1920 DN)",
                            "host 1.2, module 3.4", "EMVA 1288", "% of the mean"}) {
    EXPECT_TRUE(strPage.contains(QLatin1String(pText))) << pText;
  }
}

TEST(HtmlReport, OfABaselineClaimsNothingOfACorrection)
{
  SResult stResult = MakeResult();
  stResult.stReport.bBaseline = true;
  stResult.stReport.stAfter = SUniformity();
  const QString strPage = MakePage(stResult, 1.0);
  EXPECT_TRUE(strPage.contains("Baseline: shading 40.00 %"));
  EXPECT_TRUE(strPage.contains("none: a baseline without correction"));
  EXPECT_FALSE(strPage.contains("PASS"));
  EXPECT_FALSE(strPage.contains("gain limit"));
  const QJsonObject json = MakeJson(stResult, MakeLimit(1.0));
  EXPECT_EQ(json["verdict"].toString().toStdString(), "baseline");
  EXPECT_FALSE(json.contains("after"));
}

TEST(HtmlReport, OfMonochromeFramesHasTheFiguresAfterTheHighPassAndNamesNoPlane)
{
  SResult stResult = MakeResult();
  for (SUniformity *pUniformity : {&stResult.stReport.stBefore, &stResult.stReport.stAfter}) {
    pUniformity->listPlanes.resize(1);
  }
  EXPECT_FALSE(MakePage(stResult, 1.0).contains("high-pass, %"));
  SNonuniformity stFigures;
  stFigures.stPrnu = {0.5, 0, 0.2, 0.4};
  stResult.stReport.stBefore.listHighPass = {stFigures};
  EXPECT_FALSE(MakePage(stResult, 1.0).contains("high-pass, %")) << "there are none after";
  stResult.stReport.stAfter.listHighPass = {stFigures};
  stResult.stReport.listDefects.resize(3);
  stResult.listAdvice = QStringList{"an advice of its own"};
  stResult.stPictures.imgBefore = QImage(80, 60, QImage::Format_Grayscale8);
  stResult.stPictures.imgBefore.fill(80);
  const QString strPage = MakePage(stResult, 1.0);
  for (const char *pText : {"<td>Shading, %</td>",
                            "<td>PRNU of rows, %</td><td class=\"n\">below noise</td><td class=\"n\">below noise</td>",
                            "<td class=\"n\">0.400</td>", "Defect pixels: 3", "an advice of its own"}) {
    EXPECT_TRUE(strPage.contains(QLatin1String(pText))) << pText;
  }
  EXPECT_FALSE(strPage.contains("break even")) << "in place of the usual one";
}

TEST(HtmlReport, TheColourOfAVerdictIsItsOwn)
{
  EXPECT_TRUE(MakePage(MakeResult(), 1.0).contains("<p class=\"verdict pass\">PASS: shading"));
  EXPECT_TRUE(MakePage(MakeResult(), 0.1).contains("<p class=\"verdict fail\">FAIL: shading"));
  SResult stResult = MakeResult();
  stResult.stReport.stAfter = MakeUniformity(50);
  EXPECT_TRUE(MakePage(stResult, 1.0).contains("<p class=\"verdict worse\">WORSE: shading"));
  stResult.stReport.stBefore = SUniformity();
  EXPECT_TRUE(MakePage(stResult, 1.0).contains("<p class=\"verdict none\">Not measured"));
}

TEST(HtmlReport, WithoutDarkFramesClaimsNoPrnu)
{
  SResult stResult = MakeResult();
  stResult.stReport.stBefore.bWithoutDark = true;
  stResult.stReport.stAfter.bWithoutDark = true;
  const QString strPage = MakePage(stResult, 1.0);
  EXPECT_FALSE(strPage.contains("PRNU with shading"));
  EXPECT_TRUE(strPage.contains("Clipped by the correction: 12 samples<"));
  EXPECT_FALSE(strPage.contains("gain limit")) << "it is not known what is signal";
}
