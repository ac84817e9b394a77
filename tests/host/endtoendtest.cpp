/// \file
/// The built host with the built module, run as a user runs them.

#include <string>

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

#include "genapi/sensorformat.h"
#include "quality/tableshape.h"
#include "tests/host/hostrun.h"

using ffc::genapi::EColorLayout;
using ffc::genapi::GetSensorFormats;
using ffc::genapi::SSensorFormat;
using ffc::quality::FindOtherShape;

namespace {

void ExpectMeanAtExpectedGrey(const CHostRun &run)
{
  const double dExpected = Number(run.m_json, "expect_gray_dn");
  ASSERT_GT(dExpected, 0);
  EXPECT_NEAR(Number(run.After(), "mean_gray"), dExpected, 0.01 * dExpected);
}

/// The table's own gains tell its shape.
void ExpectShapeIsSeen(const CHostRun &run)
{
  QFile file(run.GetPath("out/coefficients.ffc"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray byteTable = file.readAll();
  const auto *pGains = reinterpret_cast<const uint16_t *>(byteTable.constData());
  const auto nWidth = static_cast<uint32_t>(Number(run.m_json, "width"));
  const auto nHeight = static_cast<uint32_t>(Number(run.m_json, "height"));
  ASSERT_EQ(byteTable.size(), static_cast<int>(nWidth * nHeight * 4));
  EXPECT_FALSE(FindOtherShape(pGains, nWidth, nHeight));
  const auto stShape = FindOtherShape(pGains, nHeight, nWidth);
  ASSERT_TRUE(stShape);
  EXPECT_EQ(stShape->nWidth, nWidth);
}

/// Empty when the recorded frames are not there.
QString FindRecordedFrames()
{
  const QString strData = qEnvironmentVariable("FFC_TEST_DATA");
  const QDir dir(strData + "/emva1288_set001");
  return !strData.isEmpty() && dir.exists() ? dir.absolutePath() : QString();
}

} // namespace

TEST(EndToEnd, TheSimulatedCameraBecomesFlat)
{
  const CHostRun run({});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  EXPECT_EQ(run.m_strError.toStdString(), "") << "no progress line without a terminal";
  EXPECT_EQ(Number(run.m_json, "width"), 2048);
  EXPECT_EQ(Number(run.m_json, "height"), 1536);
  EXPECT_EQ(run.m_json["pixel_format"].toString(), "Mono12");
  EXPECT_GT(Number(run.Before(), "shading_percent"), 30);
  EXPECT_LE(Number(run.After(), "shading_percent"), 0.5);
  EXPECT_NEAR(Number(run.Before(), "corner_to_centre"), 0.6, 0.05);
  EXPECT_NEAR(Number(run.After(), "corner_to_centre"), 1, 0.005);
  EXPECT_LT(Number(run.After(), "prnu_percent"), Number(run.Before(), "prnu_percent"));
  ExpectMeanAtExpectedGrey(run);
  ExpectShapeIsSeen(run);
  EXPECT_EQ(Number(run.m_json, "newly_clipped_percent"), 0);
  EXPECT_GT(Number(run.m_json["throughput"].toObject(), "frames_per_second"), 0);
  EXPECT_GT(Number(run.m_json["throughput"].toObject(), "megapixels_per_second"), 0);
}

TEST(EndToEnd, LeavesEveryPictureAndFrame)
{
  const CHostRun run({"--size", "640x480", "--save-frames", "3"});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  for (const char *pName : {"before", "after", "contrast_before", "contrast_after"}) {
    EXPECT_EQ(run.Read(QStringLiteral("%1.png").arg(pName)).size(), QSize(640, 480)) << pName;
  }
  EXPECT_FALSE(run.Read("profile.png").isNull());
  EXPECT_FALSE(run.Read("dialog.png").isNull());
  EXPECT_EQ(QFile(run.GetPath("out/coefficients.ffc")).size(), 640 * 480 * 4);
  for (const char *pName : {"raw_00%1.png", "corrected_00%1.png"}) {
    for (int nFrame = 0; nFrame < 3; ++nFrame) {
      EXPECT_EQ(run.Read(QString(pName).arg(nFrame)).size(), QSize(640, 480)) << pName;
    }
    EXPECT_NE(run.Read(QString(pName).arg(0)), run.Read(QString(pName).arg(1))) << "frames are fresh";
  }
  EXPECT_TRUE(run.Read("raw_003.png").isNull());
}

TEST(EndToEnd, SavedFramesHaveFullDepthAndRightAlignedValues)
{
  const CHostRun run({"--size", "64x64", "--frames", "4", "--expect-gray", "200"});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  const QImage imgFrame = run.Read("corrected_000.png");
  ASSERT_EQ(imgFrame.format(), QImage::Format_Grayscale16);
  double dSum = 0;
  for (int nLine = 0; nLine < 64; ++nLine) {
    const uint16_t *pLine = reinterpret_cast<const uint16_t *>(imgFrame.constScanLine(nLine));
    for (int nColumn = 0; nColumn < 64; ++nColumn) {
      ASSERT_LE(pLine[nColumn], 4095);
      dSum += pLine[nColumn];
    }
  }
  EXPECT_NEAR(dSum / (64 * 64), 200 * 16, 0.02 * 200 * 16);

  const CHostRun runNarrow({"--size", "64x64", "--pixel-format", "Mono8", "--frames", "4"});
  ASSERT_TRUE(runNarrow.Succeeded()) << runNarrow.m_strError.toStdString();
  EXPECT_EQ(runNarrow.Read("raw_000.png").format(), QImage::Format_Grayscale8);
}

TEST(EndToEnd, TheExpectedGreyOfTheCommandLineIsReached)
{
  const CHostRun run({"--size", "320x240", "--expect-gray", "90"});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  EXPECT_EQ(Number(run.m_json, "expect_gray"), 90);
  EXPECT_EQ(Number(run.m_json, "expect_gray_dn"), 90 * 16);
  ExpectMeanAtExpectedGrey(run);
}

TEST(EndToEnd, AMissedLimitHasAnExitCodeOfItsOwn)
{
  const CHostRun run({"--size", "64x64", "--shading-limit", "0.01"});
  EXPECT_EQ(run.m_nExitCode, 4);
  EXPECT_TRUE(run.m_strOutput.contains("FAIL: shading ")) << run.m_strOutput.toStdString();
  EXPECT_EQ(run.m_json["within_limit"].toBool(true), false);
}

TEST(EndToEnd, TheChineseDialogIsDrivenAsWell)
{
  const CHostRun run({"--size", "320x240", "--language", "zh"});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  EXPECT_LE(Number(run.After(), "shading_percent"), 1.0);
  for (const auto &jsonNote : run.m_json["notes"].toArray()) {
    EXPECT_TRUE(jsonNote.toString().startsWith("DSNU")) << jsonNote.toString().toStdString();
  }
}

class EveryMosaic : public testing::TestWithParam<std::string> {};

TEST_P(EveryMosaic, BecomesFlatInEveryPlane)
{
  const CHostRun run({"--size", "640x480", "--pixel-format", QString::fromStdString(GetParam())});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  EXPECT_EQ(run.m_json["pixel_format"].toString().toStdString(), GetParam());
  for (const char *pPlane : {"R", "G", "B"}) {
    EXPECT_GT(Number(run.Before()["planes"].toObject()[pPlane].toObject(), "shading_percent"), 20) << pPlane;
    EXPECT_LE(Number(run.After()["planes"].toObject()[pPlane].toObject(), "shading_percent"), 0.6) << pPlane;
  }
  ExpectShapeIsSeen(run);
  EXPECT_EQ(run.Read("before.png").size(), QSize(320, 240)) << "a colour picture of half the size";
  ExpectMeanAtExpectedGrey(run);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(__MINGW32__)
// Where each takes long: each layout and each depth once.
INSTANTIATE_TEST_SUITE_P(AllFormats, EveryMosaic, testing::Values("BayerGR8", "BayerRG10", "BayerGB12", "BayerBG16"),
                         [](const auto &stInfo) { return stInfo.param; });
#else
INSTANTIATE_TEST_SUITE_P(AllFormats, EveryMosaic, testing::ValuesIn([] {
                           std::vector<std::string> listNames;
                           for (const SSensorFormat &stFormat : GetSensorFormats()) {
                             if (stFormat.eLayout != EColorLayout::Mono) {
                               listNames.push_back(stFormat.pName);
                             }
                           }
                           return listNames;
                         }()),
                         [](const auto &stInfo) { return stInfo.param; });
#endif

TEST(EndToEnd, RecordedFramesOfARealCameraBecomeFlat)
{
  const QString strFolder = FindRecordedFrames();
  if (strFolder.isEmpty()) {
    GTEST_SKIP() << "the recorded frames are not there";
  }
  const CHostRun run({"--camera", "replay:" + strFolder, "--frames", "16"});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  EXPECT_EQ(run.m_json["pixel_format"].toString(), "Mono12");
  EXPECT_TRUE(run.m_strOutput.contains("PixelFormat is guessed.")) << run.m_strOutput.toStdString();
  ExpectShapeIsSeen(run);
  EXPECT_NEAR(Number(run.Before(), "shading_percent"), 1.24, 0.03);
  EXPECT_NEAR(Number(run.Before(), "prnu_percent"), 0.433, 0.01);
  EXPECT_LE(Number(run.After(), "shading_percent"), 0.15);
  EXPECT_LE(Number(run.After(), "prnu_percent"), 0.40);
  EXPECT_FALSE(run.m_strOutput.contains("PRNU got worse"));
  ExpectMeanAtExpectedGrey(run);
}

TEST(EndToEnd, OneReferenceFrameMakesPrnuWorseAndTheTableSaysSo)
{
  const QString strFolder = FindRecordedFrames();
  if (strFolder.isEmpty()) {
    GTEST_SKIP() << "the recorded frames are not there";
  }
  const CHostRun run({"--camera", "replay:" + strFolder, "--pixel-format", "Mono12", "--frames", "1"});
  ASSERT_TRUE(run.Succeeded()) << run.m_strError.toStdString();
  EXPECT_GT(Number(run.After(), "prnu_percent"), Number(run.Before(), "prnu_percent"));
  EXPECT_TRUE(run.m_strOutput.contains("PRNU got worse")) << run.m_strOutput.toStdString();
}

TEST(EndToEnd, EachTaskEndsWithItsWordsAndItsCode)
{
  const QTemporaryDir dir;
  const QString strFlash = dir.filePath("camera.flash");
  const QString strNone = "replay:" + dir.filePath("none");
  const QStringList listFlatField = {"--restore-settings", "--size",  "64x64", "--mode",
                                     "flatfield",          "--flash", strFlash};
  // The platform is one with a display, which those that ask for a window never get to open here.
  const struct {
    QStringList listArguments;
    const char *pPlatform;
    int nExitCode;
    const char *pOutput;
    const char *pError;
  } RUNS[] = {
    {{"--version"}, "", 0, "ffchost ", ""},
    {{"--no-such-option"}, "", 2, "", "ffchost: "},
    {{"--out", dir.filePath("out")}, "xcb", 2, "", "ffchost: --out belongs to --headless"},
    {listFlatField, "", 0, "PixelFormat: Mono12 -> Mono8\nThe camera has the settings of UserSet0 again.", ""},
    {{"--restore-settings", "--size", "64x64"}, "", 1, "", "ffchost: this camera has no user set \"UserSet0\""},
    {{"--restore-settings", "--camera", strNone}, "", 1, "", "ffchost: camera: "},
    {{"--record", "2", "--camera", strNone, "--out", dir.filePath("out")},
     "",
     1,
     "0 of 2 frames recorded",
     "ffchost: "},
    {{"--size", "64x64", "--frames", "1", "--plugin", dir.filePath("none"), "--out", dir.filePath("out")},
     "offscreen",
     1,
     "",
     "ffchost: "},
  };
  for (const auto &stRun : RUNS) {
#ifdef __MINGW32__
    if (QLatin1String(stRun.pPlatform) == QLatin1String("offscreen")) {
      continue; // that system has a display always
    }
#endif
    const SHostOutput stOutput = RunHost(stRun.listArguments, QLatin1String(stRun.pPlatform));
    const std::string strRun = stRun.listArguments.join(' ').toStdString();
    EXPECT_TRUE(stOutput.bFinished) << strRun;
    EXPECT_EQ(stOutput.nExitCode, stRun.nExitCode) << strRun << '\n' << stOutput.strError.toStdString();
    QString strOutput = stOutput.strOutput;
    EXPECT_TRUE(strOutput.remove('\r').contains(QLatin1String(stRun.pOutput))) << strRun << strOutput.toStdString();
    EXPECT_EQ(stOutput.strError.indexOf(QLatin1String(stRun.pError)), 0) << strRun << stOutput.strError.toStdString();
    EXPECT_LE(stOutput.strError.count('\n'), 1) << strRun;
  }
}

TEST(EndToEnd, EveryFailureIsOneLineAndACode)
{
  QTemporaryDir dir;
  QFile file(dir.filePath("file"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no folder, no module");
  file.close();
  const QList<QStringList> WRONG = {
    {"--camera", "replay:/no/such/folder"},
    {"--camera", "replay:" + dir.path()},
    {"--plugin", "/no/such/module.plx"},
    {"--plugin", file.fileName()},
    {"--size", "64x64", "--out", dir.filePath("file/out")},
    {"--pixel-format", "RGB8"},
    {"--frames", "3"},
    {"--mode", "flatfield", "--camera", "replay:" + dir.path()},
    {"--mode", "flatfield", "--size", "64x64", "--flash", file.fileName()},
    {"--mode", "flatfield", "--size", "64x64", "--flash", "/no/such/folder/my.flash"},
  };
  for (const QStringList &listArguments : WRONG) {
    const CHostRun run(listArguments);
    EXPECT_TRUE(run.FailedWithOneLine()) << listArguments.join(' ').toStdString() << "\n"
                                         << run.m_strError.toStdString();
  }
}
