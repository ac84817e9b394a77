#include <cstdlib>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

#include <gtest/gtest.h>

#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

namespace {

class Check : public testing::Test {
protected:
  void SetUp() override { MakeFlat(m_recording, "flat.ffc"); }

  static void MakeFlat(const CRecording &recording, const char *pName)
  {
    recording.Write(4, 8);
    const SToolResult stResult =
      RunTool({"make", "--dark", recording.Path("dark"), "--bright", recording.Path("bright"), "--pixel-format",
               "Mono12", "-o", recording.Path(pName)});
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  }

  SToolResult Run(const QString &strFlat, const QStringList &listMore = {})
  {
    return RunTool(QStringList{"check", strFlat, m_recording.Path("bright"), "--dark", m_recording.Path("dark")} +
                   listMore);
  }

  const CRecording m_recording;
};

} // namespace

TEST_F(Check, FiguresFallAndTheCoefficientsBelong)
{
  const SToolResult stResult = Run(m_recording.Path("flat.ffc"), {"--json", "--limit", "shading=1,prnu=1,dsnu=5"});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  const QJsonObject object = stResult.GetObjects().front();
  EXPECT_GT(object["before"].toObject()["prnuPercent"].toDouble(), 2.0);
  EXPECT_LT(object["after"].toObject()["prnuPercent"].toDouble(), 0.5);
  EXPECT_GT(object["correlation"].toDouble(), 0.9);
  EXPECT_EQ(object["frames"].toInt(), 8);
}

TEST_F(Check, ShadingCountsInTheFigureWithoutTheHighPassAlone)
{
  const SToolResult stResult = Run(m_recording.Path("flat.ffc"), {"--json", "--details", m_recording.Path("details")});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  const QJsonObject before = stResult.GetObjects().front()["before"].toObject();
  EXPECT_LT(before["prnuHighPassPercent"].toDouble(), 0.5 * before["prnuPercent"].toDouble());
  const QJsonObject plain = before["emva1288"].toObject()["plain"].toArray()[0].toObject();
  EXPECT_NEAR(plain["prnu1288_percent"].toDouble(), before["prnuPercent"].toDouble(), 1e-9);
  // A head, and something of both states and figures, filtered and not.
  for (const char *pName : {"details/histograms.csv", "details/spectrograms.csv"}) {
    const QByteArray byteTable = ReadBytes(m_recording.Path(pName));
    for (const char *pStart : {"\nbefore,DSNU,Mono,none", "\nafter,PRNU,Mono,release4"}) {
      EXPECT_TRUE(byteTable.contains(pStart)) << pName << pStart;
    }
  }
}

TEST_F(Check, TheHighPassIsTheOneAskedFor)
{
  const auto fnMeasure = [&](const char *pName) {
    return Run(m_recording.Path("flat.ffc"), {"--json", "--high-pass", pName})
      .GetObjects()
      .front()["before"]
      .toObject()["emva1288"]
      .toObject()["high_pass"]
      .toArray()[0]
      .toObject()["bright"]
      .toObject()["rows"]
      .toInt();
  };
  EXPECT_EQ(fnMeasure("release4"), 48);
  EXPECT_EQ(fnMeasure("release4-inner"), 30);
  EXPECT_EQ(fnMeasure("release3"), 44);
  EXPECT_EQ(Run(m_recording.Path("flat.ffc"), {"--high-pass", "release5"}).nExitCode, 2);
}

TEST_F(Check, AMissedLimitIsAVerdict)
{
  const SToolResult stResult = Run(m_recording.Path("flat.ffc"), {"--limit", "shading=0", "--json"});
  EXPECT_EQ(stResult.nExitCode, 4);
  EXPECT_EQ(stResult.GetObjects().back()["exitCode"].toInt(), 4);
  EXPECT_TRUE(stResult.byteErrors.contains("above the limit")) << stResult.byteErrors.constData();
}

TEST_F(Check, AnotherCamerasCoefficientsAreFoundOut)
{
  const CRecording other(99);
  MakeFlat(other, "flat.ffc");
  const SToolResult stResult = Run(other.Path("flat.ffc"));
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("another camera's")) << stResult.byteErrors.constData();
}

TEST_F(Check, LimitsThatNeedDarkFramesSaySo)
{
  const SToolResult stResult =
    RunTool({"check", m_recording.Path("flat.ffc"), m_recording.Path("bright"), "--limit", "prnu=1"});
  EXPECT_EQ(stResult.nExitCode, 2);
  EXPECT_TRUE(stResult.byteErrors.contains("add --dark")) << stResult.byteErrors.constData();
  EXPECT_EQ(Run(m_recording.Path("flat.ffc"), {"--limit", "evenness=1"}).nExitCode, 2);
}

namespace {

/// The recorded frames of a real camera, and what the host without a person makes of them.
class RealFrames : public testing::Test {
protected:
  void SetUp() override
  {
    m_strFrames = QString::fromLocal8Bit(qgetenv("FFC_TEST_DATA")) + "/emva1288_set001";
    if (!QDir(m_strFrames).exists()) {
      GTEST_SKIP() << "the recorded frames are not on this machine";
    }
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    host.setProcessEnvironment(environment);
    host.start(HOST, {"--headless", "--camera", "replay:" + m_strFrames, "--pixel-format", "Mono12", "--frames", "16",
                      "--save-frames", "2", "--out", Path("host")});
    ASSERT_TRUE(host.waitForFinished(60000) && host.exitCode() == 0) << host.readAllStandardError().constData();
    m_report = QJsonDocument::fromJson(ReadBytes(Path("host/report.json"))).object();
  }

  QString Path(const QString &strName) const { return m_dir.filePath(strName); }

  /// \param strFrames the frames that the host did not make its coefficients from
  QJsonObject Check(const QStringList &listFrames, const QStringList &listDark) const
  {
    const SToolResult stResult = RunTool(QStringList{"check", Path("host/coefficients.ffc")} + listFrames +
                                         QStringList{"--pixel-format", "Mono12", "--json", "--dark"} + listDark);
    EXPECT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
    return stResult.GetObjects().front();
  }

  QTemporaryDir m_dir;
  QString m_strFrames;
  QJsonObject m_report;
};

} // namespace

TEST_F(RealFrames, FiguresOfEveryKindOfFileAreThoseOfTheHost)
{
  const QStringList listBright{m_strFrames + "/bright_02*", m_strFrames + "/bright_03*"};
  const QStringList listDark{m_strFrames + "/dark_00[4-7].png"};
  const QJsonObject png = Check(listBright, listDark);
  for (const char *pWhen : {"before", "after"}) {
    const QJsonObject host = m_report[pWhen].toObject();
    const QJsonObject tool = png[pWhen].toObject();
    // The host measures 16 of the 20 frames, whichever come.
    EXPECT_NEAR(tool["shadingPercent"].toDouble(), host["shading_percent"].toDouble(), 0.03) << pWhen;
    EXPECT_NEAR(tool["prnuPercent"].toDouble(), host["prnu_percent"].toDouble(), 0.01) << pWhen;
    EXPECT_NEAR(tool["dsnuDn"].toDouble(), host["dsnu_dn"].toDouble(), 0.01) << pWhen;
    EXPECT_NEAR(tool["meanGray"].toDouble(), host["mean_gray"].toDouble(), 1.0) << pWhen;
  }
  EXPECT_GT(png["correlation"].toDouble(), 0.3);
  for (const QString &strKind : ListOtherKinds()) {
    for (const QStringList &listNames : {listBright, listDark}) {
      ASSERT_EQ(RunTool(QStringList{"convert", "--to", strKind, "-o", Path(strKind)} + listNames).nExitCode, 0);
    }
    EXPECT_TRUE(Check({Path(strKind + "/bright_*")}, {Path(strKind + "/dark_*")}) == png) << strKind.toStdString();
  }
}

TEST_F(RealFrames, CorrectedFramesOfEveryKindOfFileAreThoseOfTheHost)
{
  for (const QString &strKind : ListOtherKinds() + QStringList{"png"}) {
    ASSERT_EQ(RunTool({"convert", Path("host/raw_*"), "--to", strKind, "-o", Path(strKind)}).nExitCode, 0);
    const SToolResult stResult = RunTool({"apply", Path("host/coefficients.ffc"), Path(strKind), "--pixel-format",
                                          "Mono12", "-o", Path(strKind + "-out")});
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
    for (const char *pNumber : {"000", "001"}) {
      EXPECT_TRUE(ReadFrame(Path(strKind + "-out/raw_" + pNumber + "." + strKind)) ==
                  ReadFrame(Path(QStringLiteral("host/corrected_") + pNumber + ".png")))
        << strKind.toStdString() << pNumber;
    }
  }
}
