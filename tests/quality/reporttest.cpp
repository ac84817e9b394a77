#include "quality/report.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace ffc::quality;
using ffc::camera::ECorrectionMode;
using ffc::genapi::EColorLayout;

namespace {

SUniformity MakeUniformity(double dPrnu, const std::vector<std::string> &listPlanes)
{
  SUniformity stUniformity;
  stUniformity.stOverall = {"Overall", 12.5, 0.61, dPrnu, 1.5, 2000, 0.25};
  for (const std::string &strName : listPlanes) {
    stUniformity.listPlanes.push_back({strName, 11.5, 0.62, dPrnu, 1.25, 1900, 0.5});
  }
  return stUniformity;
}

SReport MakeReport(double dPrnuBefore, double dPrnuAfter, int nFrameCount)
{
  SReport stReport;
  stReport.strCamera = "Maker Model (7)";
  stReport.strPixelFormat = "BayerRG12";
  stReport.nWidth = 640;
  stReport.nHeight = 480;
  stReport.nFrameCount = nFrameCount;
  stReport.nExpectGray = 120;
  stReport.nExpectGrayDn = 1920;
  stReport.stBefore = MakeUniformity(dPrnuBefore, {"R", "G", "B"});
  stReport.stAfter = MakeUniformity(dPrnuAfter, {"R", "G", "B"});
  stReport.dFramesPerSecond = 20;
  stReport.dMegapixelsPerSecond = 40;
  stReport.listNotes << "a note of the run";
  return stReport;
}

QJsonObject Parse(const SReport &stReport)
{
  return MakeReportJson(stReport);
}

} // namespace

TEST(Report, HoldsEveryFigureUnderItsKey)
{
  const QJsonObject json = Parse(MakeReport(2, 1, 16));
  for (const char *pSide : {"before", "after"}) {
    const QJsonObject jsonSide = json[QLatin1String(pSide)].toObject();
    EXPECT_EQ(jsonSide["shading_percent"].toDouble(), 12.5);
    EXPECT_EQ(jsonSide["corner_to_centre"].toDouble(), 0.61);
    EXPECT_EQ(jsonSide["dsnu_dn"].toDouble(), 1.5);
    EXPECT_EQ(jsonSide["mean_gray"].toDouble(), 2000);
    EXPECT_EQ(jsonSide["clipped_percent"].toDouble(), 0.25);
    const QJsonObject jsonPlanes = jsonSide["planes"].toObject();
    EXPECT_EQ(jsonPlanes.keys(), QStringList({"B", "G", "R"}));
    EXPECT_EQ(jsonPlanes["G"].toObject()["shading_percent"].toDouble(), 11.5);
    EXPECT_EQ(jsonPlanes["G"].toObject().size(), 6);
  }
  EXPECT_EQ(json["before"].toObject()["prnu_percent"].toDouble(), 2);
  EXPECT_EQ(json["after"].toObject()["prnu_percent"].toDouble(), 1);
  EXPECT_EQ(json["throughput"].toObject()["frames_per_second"].toDouble(), 20);
  EXPECT_EQ(json["throughput"].toObject()["megapixels_per_second"].toDouble(), 40);
  EXPECT_EQ(json["camera"].toString(), "Maker Model (7)");
  EXPECT_EQ(json["pixel_format"].toString(), "BayerRG12");
  EXPECT_EQ(json["width"].toInt(), 640);
  EXPECT_EQ(json["height"].toInt(), 480);
  EXPECT_EQ(json["frame_count"].toInt(), 16);
  EXPECT_EQ(json["expect_gray"].toInt(), 120);
  EXPECT_EQ(json["notes"].toArray(), QJsonArray({"a note of the run"}));
}

TEST(Report, OfTheHostHasWhatOnlyTheSameExposuresTell)
{
  const QJsonObject json = Parse(MakeReport(2, 1, 16));
  EXPECT_EQ(json["mode"].toString(), "none");
  EXPECT_EQ(json["newly_clipped_percent"].toDouble(-1), 0);
  EXPECT_FALSE(json.contains("after_reload"));
  EXPECT_FALSE(json.contains("block_size"));
  EXPECT_FALSE(MakeReportTable(MakeReport(2, 1, 16)).contains("reloaded"));
}

TEST(Report, OfACameraThatCorrectsItselfHasTheReloadedFiguresAndNothingOfTheHosts)
{
  SReport stReport = MakeReport(2, 1, 16);
  stReport.eMode = ECorrectionMode::FlatField;
  stReport.nBlockSize = 16;
  stReport.stAfterReload = MakeUniformity(1, {"R", "G", "B"});
  stReport.stAfterReload->stOverall.dShadingPercent = 12.75;
  const QJsonObject json = Parse(stReport);
  EXPECT_EQ(json["mode"].toString(), "flatfield");
  EXPECT_EQ(json["block_size"].toInt(), 16);
  EXPECT_EQ(json["expect_gray"].toInt(), 120);
  EXPECT_EQ(json["after_reload"].toObject()["shading_percent"].toDouble(), 12.75);
  EXPECT_EQ(json["after_reload"].toObject()["planes"].toObject().size(), 3);
  EXPECT_EQ(json["reload_tolerance_percent"].toDouble(), RELOAD_TOLERANCE_PERCENT);
  EXPECT_TRUE(json["exposures"].toString().contains("different"));
  EXPECT_FALSE(json.contains("newly_clipped_percent"));
  EXPECT_FALSE(json.contains("throughput"));
  const QString strTable = MakeReportTable(stReport);
  EXPECT_TRUE(strTable.contains("reloaded"));
  EXPECT_TRUE(strTable.contains("12.7500"));
  EXPECT_TRUE(strTable.contains("blocks of 16 x 16"));
  EXPECT_FALSE(strTable.contains("ProcessImage"));
}

TEST(Report, WithoutAnExpectedGreyTellsNone)
{
  SReport stReport = MakeReport(2, 1, 16);
  EXPECT_TRUE(MakeReportTable(stReport).contains("Expected grey: 120 of 255 (1920 DN)"));
  stReport.eMode = ECorrectionMode::Vignetting;
  EXPECT_FALSE(Parse(stReport).contains("expect_gray"));
  EXPECT_FALSE(MakeReportTable(stReport).contains("Expected grey"));
}

TEST(Report, SaysOfOneFrameTooThatItWasWeighted)
{
  const auto fnDescribe = [](int nFrames, bool bWeighted) {
    SReport stReport = MakeReport(2, 1, nFrames);
    stReport.bWeighted = bWeighted;
    return ListConditions(stReport).front().second.toStdString();
  };
  EXPECT_EQ(fnDescribe(1, true), "from 1 bright frame, weighted");
  EXPECT_EQ(fnDescribe(1, false), "from 1 bright frame");
  EXPECT_EQ(fnDescribe(4, true), "from 4 bright frames, weighted");
  EXPECT_EQ(fnDescribe(0, true), "from an unknown number of bright frames");
}

TEST(Report, BlamesTheCamerasBlocksForWhatTheHostsReferenceIsBlamedForElsewhere)
{
  SReport stReport = MakeReport(0.4, 1.2, 1);
  stReport.eMode = ECorrectionMode::FlatField;
  stReport.stAfter.stOverall.dDsnuDn = 1.6;
  const QStringList listNotes = MakeFigureNotes(stReport);
  ASSERT_EQ(listNotes.size(), 2);
  EXPECT_TRUE(listNotes.at(0).contains("whole blocks"));
  EXPECT_TRUE(listNotes.at(1).contains("gain"));
}

TEST(Report, SaysInWordsWhenPrnuGotWorse)
{
  const SReport stReport = MakeReport(0.4, 1.2, 1);
  const QString strNote = Parse(stReport)["notes"].toArray().at(1).toString();
  EXPECT_TRUE(strNote.contains("PRNU got worse")) << strNote.toStdString();
  EXPECT_TRUE(strNote.contains("one single frame"));
  EXPECT_TRUE(strNote.contains("use 16 frames"));
  EXPECT_TRUE(MakeReportTable(stReport).contains(strNote));

  EXPECT_TRUE(MakeFigureNotes(MakeReport(0.4, 0.5, 4)).at(0).contains("averages only 4 frames"));
  EXPECT_FALSE(MakeFigureNotes(MakeReport(0.4, 0.5, 16)).at(0).contains("use 16 frames"));
  EXPECT_TRUE(MakeFigureNotes(MakeReport(0.4, 0.4, 1)).isEmpty());
}

TEST(Report, SaysInWordsWhenDsnuGotWorse)
{
  SReport stReport = MakeReport(0.4, 0.3, 16);
  stReport.stAfter.stOverall.dDsnuDn = 1.6;
  ASSERT_EQ(MakeFigureNotes(stReport).size(), 1);
  EXPECT_TRUE(MakeFigureNotes(stReport).at(0).contains("DSNU got worse"));
  EXPECT_FALSE(MakeFigureNotes(stReport).at(0).contains("one single frame")) << "of a file nobody knows";
  stReport.eDarkField = EDarkField::Used;
  EXPECT_TRUE(MakeFigureNotes(stReport).at(0).contains("the dark reference is one single frame"));
  stReport.eDarkField = EDarkField::None;
  EXPECT_FALSE(MakeFigureNotes(stReport).at(0).contains("dark reference"));
  EXPECT_TRUE(MakeFigureNotes(stReport).at(0).contains("have no dark field"));
}

TEST(Report, SaysInWordsWhenTheCorrectionClips)
{
  SReport stReport = MakeReport(0.4, 0.3, 16);
  stReport.dNewlyClippedPercent = 0.5;
  EXPECT_TRUE(MakeFigureNotes(stReport).at(0).contains("clipped by the correction"));
}

TEST(Report, TheTableNamesTheMethodAndStaysNarrow)
{
  const QString strTable = MakeReportTable(MakeReport(2, 1, 16));
  EXPECT_TRUE(strTable.contains("s^2 = s^2_measured - s^2_temporal / L"));
  EXPECT_TRUE(strTable.contains("PRNU with shading, %"));
  EXPECT_TRUE(strTable.contains("shading of B, %"));
  EXPECT_TRUE(strTable.endsWith('\n'));
  for (const QString &strLine : strTable.split('\n')) {
    EXPECT_LE(strLine.size(), 120) << strLine.toStdString();
  }
}

TEST(Report, FiguresComeFromTheStacksBeforeAndAfter)
{
  CFrameStack stDark;
  CFrameStack stBefore;
  CFrameStack stAfter;
  for (CFrameStack *pStack : {&stDark, &stBefore, &stAfter}) {
    ASSERT_TRUE(pStack->Prepare(64, 32, 8)); // two blocks
  }
  const std::vector<uint8_t> listDark(64 * 32, 0);
  std::vector<uint8_t> listBright(64 * 32, 100);
  ASSERT_TRUE(stDark.Add(listDark.data(), listDark.size()));
  ASSERT_TRUE(stAfter.Add(listBright.data(), listBright.size()));
  for (std::size_t nPixel = 0; nPixel < listBright.size(); ++nPixel) {
    listBright[nPixel] = nPixel % 64 < 32 ? 90 : 110;
  }
  ASSERT_TRUE(stBefore.Add(listBright.data(), listBright.size()));
  ASSERT_TRUE(stBefore.Add(listBright.data(), listBright.size()));
  SReport stReport;
  MeasureFigures({stDark, stDark, stBefore, stAfter, EColorLayout::Mono}, stReport);
  EXPECT_EQ(stReport.nBrightFrames, 2U);
  EXPECT_EQ(stReport.nDarkFrames, 1U);
  EXPECT_DOUBLE_EQ(stReport.stBefore.stOverall.dShadingPercent, 20);
  EXPECT_DOUBLE_EQ(stReport.stAfter.stOverall.dShadingPercent, 0);
}

TEST(Report, TheFiguresAfterTheHighPassStandBesideThoseWithShading)
{
  SReport stReport = MakeReport(2, 1, 16);
  EXPECT_FALSE(MakeReportTable(stReport).contains("high-pass, %"));
  SNonuniformity stFigures;
  stFigures.strName = "Gr";
  stFigures.stPrnu = {0.5, 0, 0.2, 0.4};
  stReport.stBefore.listHighPass = {stFigures};
  stReport.stAfter.listHighPass = {stFigures};
  stReport.stAfter.stOverall.dDsnuDn = 0;
  const QStringList listTable = MakeReportTable(stReport).split('\n');
  const auto fnFind = [&listTable](const char *pName) {
    return listTable.filter(QLatin1String(pName)).value(0).simplified().toStdString();
  };
  EXPECT_EQ(fnFind("PRNU high-pass"), "PRNU high-pass, % 0.5000 0.5000");
  EXPECT_EQ(fnFind("its rows"), "its rows below noise below noise") << "which is no figure";
  EXPECT_EQ(fnFind("DSNU with shading"), "DSNU with shading 1.5000 below noise");
  const QJsonObject before = Parse(stReport)["before"].toObject();
  EXPECT_EQ(before["prnu_high_pass_percent"].toDouble(), 0.5);
  EXPECT_EQ(before["prnu_percent"].toDouble(), 2.0);
  const QJsonObject channel = before["emva1288"].toObject()["high_pass"].toArray()[0].toObject();
  EXPECT_EQ(channel["channel"].toString(), "Gr");
  EXPECT_EQ(channel["prnu1288_col_percent"].toDouble(), 0.2);
}

TEST(Report, SaysOfDarkFramesWhatIsKnownOfThem)
{
  const auto fnMake = [](EDarkField eDark, int nDark) {
    SReport stReport = MakeReport(2, 1, 16);
    stReport.eDarkField = eDark;
    stReport.nDarkCount = nDark;
    return stReport;
  };
  const auto fnDescribe = [&](EDarkField eDark, int nDark) {
    return ListConditions(fnMake(eDark, nDark)).front().second.section(", averaged", 1).toStdString();
  };
  EXPECT_EQ(fnDescribe(EDarkField::Used, 1), ", and 1 dark frame");
  EXPECT_EQ(fnDescribe(EDarkField::Used, 3), ", and 3 dark frames");
  EXPECT_EQ(fnDescribe(EDarkField::None, 3), ", no dark frame");
  EXPECT_EQ(fnDescribe(EDarkField::Unknown, 0), "");
  EXPECT_EQ(Parse(fnMake(EDarkField::Used, 3))["dark_frame_count"].toInt(), 3);
  EXPECT_EQ(Parse(fnMake(EDarkField::None, 3))["dark_frame_count"].toInt(-1), 0);
  EXPECT_FALSE(Parse(fnMake(EDarkField::Unknown, 3)).contains("dark_frame_count"));
}

TEST(Report, WhatAReferenceOfUnknownOrWeightedFramesLeavesIsNotBlamedOnTheirNumber)
{
  SReport stReport = MakeReport(0.4, 0.5, 4);
  stReport.bWeighted = true;
  EXPECT_TRUE(MakeFigureNotes(stReport).at(0).contains("the noise of the frames"));
  EXPECT_EQ(Parse(stReport)["reference"].toString(), "weighted");
  EXPECT_TRUE(MakeFigureNotes(MakeReport(0.4, 0.5, 0)).at(0).contains("the noise of the frames"));
  EXPECT_FALSE(Parse(MakeReport(0.4, 0.5, 0)).contains("reference"));
}

TEST(Report, ABaselineHasNothingOfACorrection)
{
  SReport stReport = MakeReport(2, 1, 16);
  stReport.bBaseline = true;
  stReport.strCoefficientFile = "left.ffc";
  stReport.listDefects.resize(2);
  const QString strTable = MakeReportTable(stReport);
  for (const char *pText : {"  after", "ProcessImage", "Expected grey", "left.ffc"}) {
    EXPECT_FALSE(strTable.contains(QLatin1String(pText))) << pText;
  }
  EXPECT_TRUE(strTable.contains("2 defect pixels")) << strTable.toStdString();
  EXPECT_EQ(Parse(stReport)["coefficient_file"].toString(), "left.ffc");
}

TEST(Report, PrnuAndDsnuAreUnknownWithoutDarkFramesAndPlanesOfOneKindHaveRows)
{
  SReport stReport = MakeReport(2, 1, 16);
  stReport.stBefore.bWithoutDark = true;
  stReport.stAfter.bWithoutDark = true;
  EXPECT_EQ(MakeReportTable(stReport).split('\n').filter("PRNU with").value(0).simplified().toStdString(),
            "PRNU with shading, % unknown unknown");
  EXPECT_TRUE(MakeReportTable(stReport).contains("shading of R"));
  stReport.stAfter.listPlanes.resize(1);
  EXPECT_FALSE(MakeReportTable(stReport).contains("shading of R")) << "there is none after";
  stReport.stBefore.listPlanes.resize(1);
  EXPECT_FALSE(MakeReportTable(stReport).contains("shading of R")) << "it is the whole image's";
}
