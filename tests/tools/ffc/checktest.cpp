#include <cstdlib>

#include <QDir>
#include <QJsonArray>

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
  const SToolResult stResult = Run(m_recording.Path("flat.ffc"), {"--limit", "shading=0.0001", "--json"});
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

TEST(CheckRealFrames, FiguresOfARealCameraAreThoseOfTheSameFramesInEveryKindOfFile)
{
  const QString strFolder = QString::fromLocal8Bit(qgetenv("FFC_TEST_DATA")) + "/emva1288_set001";
  if (!QDir(strFolder).exists()) {
    GTEST_SKIP() << "the recorded frames are not on this machine";
  }
  const QTemporaryDir dir;
  const QString strFlat = dir.filePath("flat.ffc");
  const SToolResult stMade = RunTool({"make", "--dark", strFolder + "/dark_*", "--bright", strFolder + "/bright_00*",
                                      "--pixel-format", "Mono12", "-o", strFlat});
  ASSERT_EQ(stMade.nExitCode, 0) << stMade.byteErrors.constData();
  ASSERT_EQ(RunTool({"convert", strFolder + "/bright_02*", "--to", "ser", "-o", dir.filePath("ser")}).nExitCode, 0);
  QJsonObject former;
  for (const QString &strFrames : {strFolder + "/bright_02*", dir.filePath("ser")}) {
    const SToolResult stResult = RunTool({"check", strFlat, strFrames, "--dark", strFolder + "/dark_*", "--json"});
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
    const QJsonObject object = stResult.GetObjects().front();
    EXPECT_NEAR(object["before"].toObject()["prnuPercent"].toDouble(), 0.43, 0.1);
    EXPECT_NEAR(object["after"].toObject()["prnuPercent"].toDouble(), 0.40, 0.1) << "of nine or ten bright frames";
    EXPECT_GT(object["correlation"].toDouble(), 0.3);
    EXPECT_TRUE(former.isEmpty() || former == object);
    former = object;
  }
}
