// The built program on cameras behind a network, as a user starts it on a terminal.
#include <optional>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camera/realcameras.h"
#include "tests/camera/aravis/gigecameraprocess.h"

using ffc::camera::OpenRealCamera;
using ffc::test::CGigeCameraProcess;

namespace {

constexpr int LIMIT_MS = 100000;
constexpr int DARK = 4; ///< exit codes
constexpr int LOSS = 5;

/// The host, which asks whoever holds the lens cap of its camera.
class CProgram {
public:
  CProgram(CGigeCameraProcess &camera, const QStringList &listArguments) : m_camera(camera)
  {
    m_process.start(QStringLiteral(FFCHOST),
                    QStringList{"--camera", QString::fromStdString(camera.GetSerial())} + listArguments);
  }

  /// Until it asks for something, and waits.
  /// \return false when it has ended
  bool RunToQuestion()
  {
    while (m_process.canReadLine() || m_process.waitForReadyRead(LIMIT_MS)) {
      while (m_process.canReadLine()) {
        m_listLines << QString::fromUtf8(m_process.readLine().trimmed());
        if (m_listLines.last().endsWith("then press Enter")) {
          return true;
        }
      }
    }
    return false;
  }
  /// Does what it asked for last; it goes on.
  void Answer()
  {
    m_camera.SetLensCap(m_listLines.last().startsWith("cover"));
    m_process.write("\n");
    m_process.waitForBytesWritten();
  }
  /// Nobody is at the terminal.
  void EndInput() { m_process.closeWriteChannel(); }
  /// \return its exit code
  int Finish()
  {
    while (RunToQuestion()) {
    }
    m_process.waitForFinished(LIMIT_MS);
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
  }

  const QStringList &GetLines() const { return m_listLines; }
  std::string GetErrors() { return m_process.readAllStandardError().toStdString(); }

private:
  CGigeCameraProcess &m_camera;
  QProcess m_process;
  QStringList m_listLines;
};

class NetworkProgram : public testing::Test {
protected:
  QString Path(const QString &strName) const { return m_dir.filePath(strName); }
  QByteArray ReadBytes(const QString &strName) const
  {
    QFile file(Path(strName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QJsonObject ReadJson(const QString &strName) const { return QJsonDocument::fromJson(ReadBytes(strName)).object(); }

  struct SExpected {
    int nWidth;
    int nFrames;
    int nGray;
  };
  void CheckRun(CProgram &program, const CGigeCameraProcess &camera, const QString &strOut, const SExpected &stExpected)
  {
    SCOPED_TRACE(strOut.toStdString());
    EXPECT_EQ(program.Finish(), 0) << program.GetErrors();
    EXPECT_EQ(program.GetLines().filter("press Enter").size(), 4) << program.GetLines().join('\n').toStdString();
    const QJsonObject report = ReadJson(strOut + "/report.json");
    EXPECT_THAT(report["camera"].toString().toStdString(), testing::HasSubstr(camera.GetSerial()));
    EXPECT_EQ(report["width"].toInt(), stExpected.nWidth);
    EXPECT_EQ(report["frame_count"].toInt(), stExpected.nFrames);
    EXPECT_EQ(report["expect_gray"].toInt(), stExpected.nGray);
    EXPECT_LT(report["after"].toObject()["shading_percent"].toDouble(100), 1.0);
    EXPECT_EQ(ReadBytes(strOut + "/coefficients.ffc").size(), stExpected.nWidth * 96 * 4)
      << "gain and dark of each pixel";
  }

  QTemporaryDir m_dir;
};

} // namespace

TEST_F(NetworkProgram, TwoOfThemAskOnTheTerminalForTheLensCapsOfACameraEachAndKeepThemApart)
{
  CGigeCameraProcess::SOptions stOther;
  stOther.strAddress = CGigeCameraProcess::FindSecondAddress();
  stOther.nWidth = 64;
  CGigeCameraProcess camera({});
  std::optional<CGigeCameraProcess> otherCamera;
  CProgram program(camera, {"--headless", "--frames", "4", "--expect-gray", "120", "--out", Path("out")});
  std::optional<CProgram> other;
  if (!stOther.strAddress.empty()) { // a machine may have one address only
    otherCamera.emplace(stOther);
    other.emplace(*otherCamera,
                  QStringList{"--headless", "--frames", "2", "--expect-gray", "180", "--out", Path("other")});
  }
  // Both stream at the same time.
  bool bOne = program.RunToQuestion();
  bool bOther = other && other->RunToQuestion();
  while (bOne || bOther) {
    if (bOne) {
      program.Answer();
    }
    if (bOther) {
      other->Answer();
    }
    bOne = bOne && program.RunToQuestion();
    bOther = bOther && other->RunToQuestion();
  }
  CheckRun(program, camera, "out", {128, 4, 120});
  if (other) {
    CheckRun(*other, *otherCamera, "other", {64, 2, 180});
  }
}

TEST_F(NetworkProgram, WhereNobodyIsAtTheTerminalItEndsOrGoesOnByItself)
{
  CGigeCameraProcess camera({});
  {
    CProgram program(camera, {"--headless", "--out", Path("out")});
    program.EndInput();
    EXPECT_EQ(program.Finish(), 1);
    EXPECT_THAT(program.GetErrors(), testing::HasSubstr("nobody is there to cover the lens: the input has ended"));
  }
  camera.SetLensCap(true); // a shutter that stays closed
  CProgram program(camera, {"--headless", "--no-wait", "--dark-delay", "0.1", "--out", Path("out")});
  program.EndInput();
  EXPECT_EQ(program.Finish(), DARK) << program.GetErrors();
  const QString strUncover = "uncover the lens, with an evenly lit target before it";
  EXPECT_EQ(program.GetLines().mid(0, 4), (QStringList{"cover the lens", strUncover, "cover the lens", strUncover}));
}

TEST_F(NetworkProgram, FramesThatAreLostWhileOthersAreRecordedMakeTheExitCode)
{
  CGigeCameraProcess::SOptions stCamera;
  stCamera.nLostPackets = 150; // of some eleven for each frame, so that five frames of six are lost
  CGigeCameraProcess camera(stCamera);
  const QStringList listArguments{"--record", "8", "--format", "png", "--out"};
  CProgram all(camera, listArguments + QStringList{Path("all")});
  EXPECT_EQ(all.Finish(), LOSS) << all.GetErrors();
  EXPECT_THAT(all.GetLines().join('\n').toStdString(),
              testing::AllOf(testing::StartsWith("8 of 8 frames recorded"), testing::HasSubstr("frames never came")));
  EXPECT_EQ(ReadJson("all/recording.json")["frames"].toInt(), 8);
  EXPECT_GT(ReadJson("all/recording.json")["lostOnTheWay"].toInt(), 0);
  CProgram first(camera, listArguments + QStringList{Path("first"), "--stop-on-loss"});
  EXPECT_EQ(first.Finish(), LOSS) << first.GetErrors();
  EXPECT_LT(ReadJson("first/recording.json")["frames"].toInt(-1), 8);
}

TEST_F(NetworkProgram, TheStockCameraOfTheLibrarysToolsIsRecorded)
{
  if (!CGigeCameraProcess::IsStockThere()) {
    GTEST_SKIP() << "the camera library's tools (aravis-tools) are not installed";
  }
  CGigeCameraProcess::SOptions stCamera;
  stCamera.bStock = true;
  CGigeCameraProcess camera(stCamera);
  for (int nTry = 0; nTry < 20 && !OpenRealCamera(camera.GetSerial()); ++nTry) { // it does not say when it is ready
  }
  CProgram program(camera, {"--record", "3", "--format", "png", "--out", Path("out")});
  EXPECT_EQ(program.Finish(), 0) << program.GetErrors();
  EXPECT_EQ(ReadBytes("out/frames.jsonl").count('\n'), 3);
  EXPECT_TRUE(QFile::exists(Path("out/frame_000002.png")));
  EXPECT_EQ(ReadJson("out/recording.json")["settings"].toObject()["pixelFormat"].toString(), "Mono8");
}
