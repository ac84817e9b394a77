#include "host/headless/recordrun.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"
#include "frames/ifilekind.h"
#include "host/headless/headlessrun.h"
#include "tests/host/faultycamera.h"

using namespace ffc::host;
using namespace ffc::frames;

namespace {

class RecordRun : public testing::Test {
protected:
  RecordRun()
  {
    m_stOptions.stPlugin.strModule = PLUGIN_MODULE;
    m_stOptions.stCamera.strPixelFormat = "BayerGB12";
    m_stOptions.stRecording.nFrames = 3;
    SetFolder("out");
  }

  void SetFolder(const char *pName) { m_stOptions.stWorkflow.strOutFolder = m_dir.filePath(pName).toStdString(); }
  QString Path(const QString &strName) const { return m_dir.filePath(strName); }

  static OpenedCamera Open(const SCameraOptions &stOptions)
  {
    ffc::camera::SSimulatedCameraOptions stCamera;
    stCamera.strPixelFormat = stOptions.strPixelFormat;
    stCamera.nWidth = 128;
    stCamera.nHeight = 96;
    stCamera.dFrameRate = 100;
    return ffc::camera::CreateSimulatedCamera(stCamera);
  }

  /// \return the run's error
  std::string Record(const char *pFormat)
  {
    m_stOptions.stRecording.strFormat = pFormat;
    CProgressLine progress(nullptr);
    CRecordRun run(m_stOptions, Open, progress);
    const ffc::Result<> result = run.Run();
    m_stCounts = run.GetCounts();
    return result.GetError();
  }

  QByteArray ReadBytes(const QString &strName) const
  {
    QFile file(Path(strName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QJsonObject ReadJson(const QString &strName) const { return QJsonDocument::fromJson(ReadBytes(strName)).object(); }

  SFrameInfo ReadInfo(const QString &strName) const
  {
    const auto reader = FindFileKind(strName)->Open(Path(strName));
    EXPECT_EQ(reader.GetError(), "");
    return reader ? reader.GetValue()->GetInfo() : SFrameInfo();
  }

  QTemporaryDir m_dir;
  SHeadlessOptions m_stOptions;
  SRecordCounts m_stCounts;
};

} // namespace

TEST_F(RecordRun, EachFrameIsAFileThatSaysHowItWasTaken)
{
  ASSERT_EQ(Record("png"), "");
  EXPECT_EQ(m_stCounts.nWritten, 3U);
  EXPECT_EQ(m_stCounts.GetLost(), 0U);
  const SFrameInfo stInfo = ReadInfo("out/frame_000002.png");
  EXPECT_EQ(stInfo.stLayout, (SLayout{128, 96, 2}));
  const QJsonObject texts = QJsonDocument::fromJson(stInfo.mapTexts.value(TEXT_DESCRIPTION).toUtf8()).object();
  EXPECT_EQ(texts["pixelFormat"].toString(), "BayerGB12");
  EXPECT_GT(texts["exposureTime"].toDouble(), 0);
  EXPECT_TRUE(texts["gain"].isDouble());
  EXPECT_TRUE(texts["frameId"].isDouble());
  EXPECT_EQ(texts["time"].toString(), stInfo.mapTexts.value(TEXT_TIME) + 'Z');
  EXPECT_FALSE(stInfo.mapTexts.contains(TEXT_CORRECTION));
  const QList<QByteArray> listLines = ReadBytes("out/frames.jsonl").trimmed().split('\n');
  ASSERT_EQ(listLines.size(), 3);
  const QJsonObject first = QJsonDocument::fromJson(listLines[0]).object();
  const QJsonObject last = QJsonDocument::fromJson(listLines[2]).object();
  EXPECT_EQ(first["file"].toString(), "frame_000000.png");
  EXPECT_EQ(last["frameId"].toInt(), first["frameId"].toInt() + 2) << "none is left out";
  EXPECT_EQ(ReadJson("out/recording.json")["frames"].toInt(), 3);
  EXPECT_NE(Record("png").find("has a recording already"), std::string::npos);
  EXPECT_EQ(ReadJson("out/recording.json")["frames"].toInt(), 3) << "which stays";
}

TEST_F(RecordRun, ACameraThatGoesEndsTheRecordingWithWhatItHas)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.pLost = std::make_shared<std::atomic<bool>>(true);
  m_stOptions.stRecording.nFrames = 1000000;
  m_stOptions.stRecording.strFormat = "ser";
  CProgressLine progress(nullptr);
  CRecordRun run(
    m_stOptions,
    [&stFaults](const SCameraOptions &) -> OpenedCamera { return std::make_unique<CFaultyCamera>("Mono8", stFaults); },
    progress);
  EXPECT_EQ(run.Run().GetError(), "recording: the camera does not answer any more");
  EXPECT_EQ(static_cast<uint64_t>(ReadJson("out/recording.json")["frames"].toInt()), run.GetCounts().nWritten);
  EXPECT_TRUE(run.GetSummary().contains(" of 1000000 frames recorded")) << run.GetSummary().toStdString();
}

TEST_F(RecordRun, AFrameThatCannotBeWrittenIsToldBeforeAnythingElse)
{
  ASSERT_TRUE(QDir(m_dir.path()).mkpath("out/frame_000001.png"));
  const std::string strError = Record("png");
  EXPECT_NE(strError.find("frame_000001.png"), std::string::npos) << strError;
  EXPECT_EQ(m_stCounts.nWritten, 1U);
}

TEST_F(RecordRun, APlugInWithoutADialogCannotLoadCoefficients)
{
  QFile file(Path("some.ffc"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("gains");
  file.close();
  m_stOptions.stRecording.strCoefficients = file.fileName().toStdString();
  m_stOptions.stPlugin.strModule = FAKE_MODULE;
  EXPECT_EQ(Record("png"), "coefficients: the plug-in shows no dialog");
}

TEST_F(RecordRun, ASerFileHoldsAllFramesWithTheirTimes)
{
  ASSERT_EQ(Record("ser"), "");
  const SFrameInfo stInfo = ReadInfo("out/frames.ser");
  EXPECT_EQ(stInfo.nFrames, 3U);
  EXPECT_EQ(stInfo.nBitDepth, 12U);
  EXPECT_EQ(stInfo.eColors, ffc::genapi::EColorLayout::BayerGB);
  EXPECT_EQ(stInfo.byteSerDates.size(), 16 + 3 * 8);
  EXPECT_EQ(ReadBytes("out/frames.jsonl").count('\n'), 3);
}

TEST_F(RecordRun, CorrectedFramesBearTheMarkOfTheirCorrection)
{
  m_stOptions.stWorkflow.nFrames = 1;
  m_stOptions.stWorkflow.nSaveFrames = 0;
  SetFolder("workflow");
  {
    CProgressLine progress(nullptr);
    CHeadlessRun workflow(m_stOptions, Open, progress);
    ASSERT_EQ(workflow.Run().GetError(), "");
  }
  SetFolder("corrected");
  m_stOptions.stRecording.strCoefficients = Path("workflow/coefficients.ffc").toStdString();
  ASSERT_EQ(Record("ser"), "");
  const QJsonObject mark = ReadJson("corrected/frames.ser.json");
  EXPECT_EQ(mark["flat"].toString(), "coefficients.ffc");
  EXPECT_EQ(mark["sha256"].toString().size(), 64);
  SetFolder("png");
  ASSERT_EQ(Record("png"), "");
  const QString strMark = ReadInfo("png/frame_000000.png").mapTexts.value(TEXT_CORRECTION);
  EXPECT_EQ(QJsonDocument::fromJson(strMark.toUtf8()).object(), mark);
  SetFolder("foreign");
  m_stOptions.stRecording.strCoefficients = Path("workflow/report.json").toStdString();
  EXPECT_EQ(Record("png").find("coefficients: "), 0U) << "a file of another kind";
  EXPECT_FALSE(QFile::exists(Path("foreign/frame_000000.png"))) << "nothing is recorded as if it were corrected";
  SetFolder("missing");
  m_stOptions.stRecording.strCoefficients = Path("missing.ffc").toStdString();
  EXPECT_EQ(Record("png").find("coefficients: cannot read"), 0U);
}
