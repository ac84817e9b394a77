#include "host/headless/headlessrun.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/software/replay/replaycamera.h"
#include "camera/software/simulated/simulatedcamera.h"
#include "tests/host/faultycamera.h"

using namespace ffc::host;
using namespace ffc::quality;

namespace {

/// Runs with the real module, in this process, with a camera of 64 x 64 pixels.
class HostWorkflow : public testing::Test {
protected:
  HostWorkflow()
  {
    m_stOptions.stPlugin.strModule = PLUGIN_MODULE;
    m_stOptions.stWorkflow.strOutFolder = m_dir.path().toStdString();
    m_stOptions.stWorkflow.nFrames = 2;
  }

  /// \return the run's error
  std::string Run(const CFaultyCamera::SFaults &stFaults, const std::string &strPixelFormat = "Mono8")
  {
    return RunOn([&](const SCameraOptions &) -> OpenedCamera {
      return std::make_unique<CFaultyCamera>(strPixelFormat, stFaults);
    });
  }

  std::string RunOn(const CameraFactory &openCamera)
  {
    CProgressLine progress(nullptr);
    CHeadlessRun run(m_stOptions, openCamera, progress);
    std::string strError = run.Run().GetError();
    m_stReport = run.GetReport();
    m_bWithinLimit = run.IsWithinLimit();
    m_strSummary = run.GetSummary();
    return strError;
  }

  /// On a simulated camera of 96 x 64 pixels and one seed.
  std::string RunSimulated(const char *pPixelFormat, double dFrameRate)
  {
    return RunOn([=](const SCameraOptions &) -> OpenedCamera {
      ffc::camera::SSimulatedCameraOptions stCamera;
      stCamera.strPixelFormat = pPixelFormat;
      stCamera.nWidth = 96;
      stCamera.nHeight = 64;
      stCamera.nSeed = 5;
      stCamera.dFrameRate = dFrameRate;
      return ffc::camera::CreateSimulatedCamera(stCamera);
    });
  }

  /// Evenly lit frames with noise, all different.
  void WriteRecording(const QTemporaryDir &dir, const std::vector<std::pair<const char *, int>> &listScenes)
  {
    for (const auto &[pScene, nFrames] : listScenes) {
      for (int nFrame = 0; nFrame < nFrames; ++nFrame) {
        QImage imgFrame(64, 64, QImage::Format_Grayscale8);
        for (int nPixel = 0; nPixel < 64 * 64; ++nPixel) {
          const int nNoise = (nPixel * 17 + nPixel / 64 + nFrame * 7) % 5;
          imgFrame.scanLine(nPixel / 64)[nPixel % 64] =
            static_cast<uchar>((QLatin1String(pScene) == QLatin1String("dark") ? 2 : 120) + nNoise);
        }
        ASSERT_TRUE(imgFrame.save(dir.filePath(QStringLiteral("%1_%2.png").arg(QLatin1String(pScene)).arg(nFrame))));
      }
    }
  }

  /// Lines without what differs from run to run: figures and the columns that they stand in.
  static QStringList TakeWords(const QString &strText)
  {
    QStringList listLines;
    for (const QString &strLine : strText.split(QLatin1Char('\n'))) {
      listLines.append(QString(strLine).remove(QRegularExpression(QStringLiteral("[0-9.]+"))).simplified());
    }
    return listLines;
  }

  QTemporaryDir m_dir;
  SHeadlessOptions m_stOptions;
  SReport m_stReport;
  bool m_bWithinLimit = false;
  QString m_strSummary;
};

} // namespace

TEST_F(HostWorkflow, ASoundCameraPassesEveryStep)
{
  EXPECT_EQ(Run({}), "");
  EXPECT_EQ(m_stReport.strPixelFormat, "Mono8");
  EXPECT_EQ(m_stReport.nFrameCount, 2);
  EXPECT_EQ(m_stReport.nBrightFrames, 16U);
  EXPECT_LT(m_stReport.stAfter.stOverall.dShadingPercent, m_stReport.stBefore.stOverall.dShadingPercent);
  EXPECT_TRUE(QFile::exists(m_dir.filePath("report.json")));
  EXPECT_EQ(QFile(m_dir.filePath("coefficients.ffc")).size(), 64 * 64 * 4);
  EXPECT_FALSE(QFile::exists(m_dir.filePath("camera.flash"))) << "this camera corrects nothing itself";
}

TEST_F(HostWorkflow, JudgesTheShadingByTheLimitThatWasStated)
{
  EXPECT_EQ(Run({}), "");
  EXPECT_TRUE(m_bWithinLimit) << "none was stated";
  EXPECT_FALSE(m_strSummary.contains(QStringLiteral("PASS"))) << m_strSummary.toStdString();
  EXPECT_TRUE(m_strSummary.contains(QStringLiteral("  No limit: shading "))) << m_strSummary.toStdString();
  m_stOptions.stWorkflow.stLimits.dShading = 100;
  EXPECT_EQ(Run({}), "");
  EXPECT_TRUE(m_bWithinLimit);
  EXPECT_TRUE(m_strSummary.contains(QStringLiteral("  PASS: shading "))) << m_strSummary.toStdString();
  EXPECT_TRUE(m_strSummary.contains(QStringLiteral("  advice: "))) << m_strSummary.toStdString();
  m_stOptions.stWorkflow.stLimits.dShading = 1e-6;
  EXPECT_EQ(Run({}), "");
  EXPECT_FALSE(m_bWithinLimit);
  EXPECT_TRUE(m_strSummary.contains(QStringLiteral("  FAIL: shading "))) << m_strSummary.toStdString();
}

TEST_F(HostWorkflow, AFigureThatGotWorseDoesNotPassWhateverItsLimit)
{
  m_stOptions.stWorkflow.nFrames = 1;
  m_stOptions.stWorkflow.stLimits.dDsnu = 1000;
  EXPECT_EQ(Run({}, "Mono12"), "");
  ASSERT_GT(m_stReport.stAfter.stOverall.dDsnuDn, m_stReport.stBefore.stOverall.dDsnuDn) << "of one dark frame";
  EXPECT_FALSE(m_bWithinLimit);
  EXPECT_TRUE(m_strSummary.contains(QStringLiteral("  WORSE: DSNU "))) << m_strSummary.toStdString();
}

TEST_F(HostWorkflow, ASeedGivesTheSameCoefficientsByteForByte)
{
  for (const char *pFormat : {"Mono12", "BayerRG8"}) {
    QByteArray byteFirst;
    for (const double dFrameRate : {150.0, 400.0}) {
      EXPECT_EQ(RunSimulated(pFormat, dFrameRate), "");
      QFile file(m_dir.filePath("coefficients.ffc"));
      ASSERT_TRUE(file.open(QIODevice::ReadOnly));
      const QByteArray byteContent = file.readAll();
      EXPECT_TRUE(byteFirst.isEmpty() || byteContent == byteFirst) << pFormat;
      byteFirst = byteContent;
    }
  }
}

TEST_F(HostWorkflow, TheReadmeShowsWhatARunPrints)
{
  m_stOptions.stWorkflow.nFrames = 16;
  EXPECT_EQ(RunSimulated("Mono12", 1000.0), "");
  QFile file(QStringLiteral(FFC_SOURCE_DIR "/README.md"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QString strReadme = QString::fromUtf8(file.readAll());
  const QString strShown =
    strReadme.section(QStringLiteral("$ ./run.sh --headless\n"), 1, 1).section(QStringLiteral("```"), 0, 0);
  const QStringList listPrinted = TakeWords(m_strSummary);
  ASSERT_GT(TakeWords(strShown).size(), 5);
  for (const QString &strLine : TakeWords(strShown)) {
    EXPECT_TRUE(listPrinted.contains(strLine)) << strLine.toStdString() << "\nis not in\n"
                                               << m_strSummary.toStdString();
  }
}

TEST_F(HostWorkflow, ARecordingWithoutDarkFramesIsCorrectedAndSaysWhatIsNotKnown)
{
  const QTemporaryDir dirFrames;
  WriteRecording(dirFrames, {{"bright", 4}});
  m_stOptions.stWorkflow.stLimits.dShading = 100;
  EXPECT_EQ(RunOn([&](const SCameraOptions &) -> OpenedCamera {
              return ffc::camera::CreateReplayCamera({dirFrames.path().toStdString(), "", 200.0});
            }),
            "");
  EXPECT_TRUE(m_bWithinLimit);
  EXPECT_EQ(m_stReport.eDarkField, EDarkField::None);
  EXPECT_EQ(m_stReport.nDarkFrames, 0U);
  for (const char *pText : {"no dark field was taken", "PASS: shading", "Not measured: PRNU", ", no dark frame"}) {
    EXPECT_TRUE(m_strSummary.contains(QLatin1String(pText))) << pText << "\n" << m_strSummary.toStdString();
  }
}

TEST_F(HostWorkflow, RepeatsOfARecordingAreNeitherCountedNorSaved)
{
  const QTemporaryDir dirFrames;
  WriteRecording(dirFrames, {{"dark", 2}, {"bright", 4}});
  m_stOptions.stWorkflow.nFrames = 16;
  m_stOptions.stWorkflow.nSaveFrames = 8;
  EXPECT_EQ(RunOn([&](const SCameraOptions &) -> OpenedCamera {
              return ffc::camera::CreateReplayCamera({dirFrames.path().toStdString(), "", 200.0});
            }),
            "");
  EXPECT_EQ(m_stReport.nFrameCount, 2) << "half of the four, the others are for figures";
  EXPECT_TRUE(QFile::exists(m_dir.filePath("raw_001.png")));
  EXPECT_FALSE(QFile::exists(m_dir.filePath("raw_002.png")));
  for (const char *pNote : {"only 2 of 16 bright frames differ", "only 2 of 8 frames were saved"}) {
    EXPECT_TRUE(m_strSummary.contains(QLatin1String(pNote))) << m_strSummary.toStdString();
  }
}

TEST_F(HostWorkflow, ACoefficientFileOfAnEarlierRunIsReplaced)
{
  QFile file(m_dir.filePath("coefficients.ffc"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("old");
  file.close();
  EXPECT_EQ(Run({}), "");
  EXPECT_EQ(QFile(file.fileName()).size(), 64 * 64 * 4);
}

TEST_F(HostWorkflow, AFailingCameraIsToldInOneLineThatNamesTheStep)
{
  const std::pair<bool CFaultyCamera::SFaults::*, const char *> FAULTS[] = {
    {&CFaultyCamera::SFaults::bRefusesToStart, "dark acquisition: the cable is out"},
    {&CFaultyCamera::SFaults::bHasNoSceneControl, "open: the scene of this camera cannot be set by software"},
    {&CFaultyCamera::SFaults::bDeliversNothing, "dark acquisition: Get buffer time out"},
  };
  for (const auto &[pFault, pError] : FAULTS) {
    CFaultyCamera::SFaults stFaults;
    stFaults.*pFault = true;
    EXPECT_EQ(Run(stFaults), pError);
  }
  EXPECT_FALSE(QFile::exists(m_dir.filePath("report.json")));
}

TEST_F(HostWorkflow, WhatCannotBeWrittenIsNamedWithItsStep)
{
  for (const char *pName : {"before.png", "report.json"}) {
    ASSERT_TRUE(QDir(m_dir.path()).mkpath(pName));
    const std::string strError = Run({});
    EXPECT_EQ(strError.rfind("report: ", 0), 0U) << strError;
    EXPECT_NE(strError.find(pName), std::string::npos) << strError;
    ASSERT_TRUE(QDir(m_dir.path()).rmdir(pName));
  }
}

TEST_F(HostWorkflow, ACoefficientFileThatCannotBeReplacedIsNotTakenForTheNewOne)
{
  ASSERT_TRUE(QDir(m_dir.path()).mkpath("coefficients.ffc"));
  const std::string strError = Run({});
  EXPECT_EQ(strError.rfind("coefficient file: ", 0), 0U) << strError;
  EXPECT_FALSE(QFile::exists(m_dir.filePath("report.json")));
}

TEST_F(HostWorkflow, ACameraThatCannotBeOpenedIsToldWithItsReason)
{
  CProgressLine progress(nullptr);
  CHeadlessRun run(
    m_stOptions, [](const SCameraOptions &) { return ffc::Failure("no such camera"); }, progress);
  EXPECT_EQ(run.Run().GetError(), "open: no such camera");
}

TEST_F(HostWorkflow, ALensThatStaysCoveredFailsWithTheDialogsWarningAsANote)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.bLensCapIsStuck = true;
  EXPECT_EQ(Run(stFaults), "");
  ASSERT_FALSE(m_stReport.listNotes.isEmpty());
  EXPECT_TRUE(m_stReport.listNotes.at(0).startsWith("The bright field image is too dark"));
  EXPECT_FALSE(m_bWithinLimit) << "although none was stated";
  EXPECT_TRUE(m_strSummary.contains("  FAIL: the bright field is as good as dark")) << m_strSummary.toStdString();
  QFile file(m_dir.filePath("report.json"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
  EXPECT_EQ(json["verdict"].toString().toStdString(), "fail");
  EXPECT_FALSE(json["within_limit"].toBool(true));
}

TEST_F(HostWorkflow, AFolderThatCannotBeMadeIsNamed)
{
  QFile file(m_dir.filePath("file"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  m_stOptions.stWorkflow.strOutFolder = (file.fileName() + "/out").toStdString();
  EXPECT_EQ(Run({}).rfind("open: cannot make the folder", 0), 0U);
}
