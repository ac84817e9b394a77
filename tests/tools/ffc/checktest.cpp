#include <cstdlib>

#include <QDir>

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

TEST(CheckRealFrames, FiguresOfARealCameraAreThoseOfTheSameFramesInEveryKindOfFile)
{
  const QString strFolder = QString::fromLocal8Bit(qgetenv("FFC_TEST_DATA")) + "/emva1288_set001";
  if (!QDir(strFolder).exists()) {
    GTEST_SKIP() << "the recorded frames are not on this machine";
  }
  const QTemporaryDir dir;
  const QString strFlat = dir.filePath("flat.ffc");
  const SToolResult stMade = RunTool({"make", "--dark", strFolder + "/dark_*", "--bright", strFolder + "/bright_00*",
                                      "--pixel-format", "Mono12", "--method", "average", "-o", strFlat});
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
