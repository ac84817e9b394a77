#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "frames/tifffile.h"
#include "tests/support/fullvolume.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;
using ffc::frames::SaveFrame;

namespace {

class Apply : public testing::Test {
protected:
  void SetUp() override
  {
    m_recording.Write(2, 6);
    const SToolResult stResult = RunTool({"make", "--dark", m_recording.Path("dark"), "--bright",
                                          m_recording.Path("bright"), "--pixel-format", "Mono12", "-o", m_strFlat});
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  }

  SToolResult Run(const QString &strOut, const QStringList &listMore = {})
  {
    return RunTool(QStringList{"apply", m_strFlat, m_recording.Path("bright"), "-o", m_recording.Path(strOut)} +
                   listMore);
  }

  QStringList List(const QString &strFolder)
  {
    return QDir(m_recording.Path(strFolder)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  }

  /// All files of a folder with their contents, but for the manifest, whose lines have any order.
  QMap<QString, QByteArray> ReadAll(const QString &strFolder)
  {
    QMap<QString, QByteArray> mapContents;
    for (const QString &strName : List(strFolder)) {
      if (!strName.startsWith("ffc-manifest")) {
        mapContents[strName] = ReadBytes(m_recording.Path(strFolder + "/" + strName));
      }
    }
    return mapContents;
  }

  CRecording m_recording;
  QString m_strFlat = m_recording.Path("flat.ffc");
};

} // namespace

TEST_F(Apply, FramesBecomeFlatAndKeepTheirNames)
{
  const SToolResult stResult = Run("out");
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  ffc::frames::SFrameInfo stInfo;
  const auto listFrame = ReadFrame(m_recording.Path("out/bright_3.png"), &stInfo);
  const auto fnGet = [&listFrame](std::size_t n) { return listFrame[2 * n] + 256 * listFrame[2 * n + 1]; };
  EXPECT_NEAR(fnGet(0), fnGet(64 * 24 + 32), 100) << "corner and centre";
  EXPECT_TRUE(stInfo.mapTexts.value(ffc::frames::TEXT_CORRECTION).contains("\"flat\":\"flat.ffc\""));
  EXPECT_EQ(List("out").size(), 7) << "six frames and the manifest";
}

TEST_F(Apply, TheOutputIsTheSameForEveryNumberOfThreadsAndShards)
{
  ASSERT_EQ(Run("one", {"--threads", "1"}).nExitCode, 0);
  ASSERT_EQ(Run("three", {"--threads", "3"}).nExitCode, 0);
  for (const char *pShard : {"1/4", "2/4", "3/4", "4/4"}) {
    ASSERT_EQ(Run("shards", {"--shard", pShard}).nExitCode, 0);
  }
  EXPECT_TRUE(ReadAll("one") == ReadAll("three"));
  EXPECT_TRUE(ReadAll("one") == ReadAll("shards"));
}

TEST_F(Apply, WhatIsCorrectedIsNotCorrectedTwice)
{
  ASSERT_EQ(Run("out").nExitCode, 0);
  const QStringList listAgain{"apply", m_strFlat, m_recording.Path("out"), "-o", m_recording.Path("twice")};
  const SToolResult stResult = RunTool(listAgain);
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("is corrected already")) << stResult.byteErrors.constData();
  EXPECT_EQ(RunTool(listAgain + QStringList{"--force"}).nExitCode, 0);
}

TEST_F(Apply, OneBadFileOfManyIsNamedAndTheOthersAreDone)
{
  WriteBytes(m_recording.Path("bright/bright_2.png"), "no picture");
  const SToolResult stResult = Run("out", {"--json"});
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_TRUE(stResult.byteErrors.contains("bright_2.png")) << stResult.byteErrors.constData();
  EXPECT_EQ(List("out").size(), 6);
  const auto listObjects = stResult.GetObjects();
  ASSERT_EQ(listObjects.size(), 7U) << "a line for every file and the summary";
  EXPECT_EQ(listObjects.back()["failed"].toInt(), 1);
  EXPECT_EQ(listObjects.back()["done"].toInt(), 5);
}

TEST_F(Apply, FramesOfAnotherSizeAreRefusedWithWhatWasExpected)
{
  const CRecording other(1, {128, 48, 2});
  ASSERT_TRUE(SaveFrame(other.Path("frame.png"), other.GetLayout(), other.MakeBright(0).data()));
  const SToolResult stResult = RunTool({"apply", m_strFlat, other.Path("frame.png"), "-o", other.Path("out")});
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("has frames of 128 x 48 pixels, but the flat \"flat.ffc\" is for 64 x 48"))
    << stResult.byteErrors.constData();
}

TEST_F(Apply, ValuesBeyondTheFlatsDepthAreRefused)
{
  const CRecording other(1, {64, 48, 2}, 14);
  ASSERT_TRUE(SaveFrame(other.Path("frame.png"), other.GetLayout(), other.MakeBright(0).data()));
  const SToolResult stResult = RunTool({"apply", m_strFlat, other.Path("frame.png"), "-o", other.Path("out")});
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("but 12 bits end at 4095")) << stResult.byteErrors.constData();
  EXPECT_FALSE(QFile::exists(other.Path("out/frame.png")));
}

TEST_F(Apply, AFlatWithoutASideFileTakesTheFormatFromTheUser)
{
  ASSERT_TRUE(QFile::remove(m_strFlat + ".json"));
  const SToolResult stResult = Run("out");
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("state --pixel-format")) << stResult.byteErrors.constData();
  EXPECT_EQ(Run("out", {"--pixel-format", "Mono12"}).nExitCode, 0);
}

TEST_F(Apply, ASideFileOfAnotherFlatIsRefused)
{
  QByteArray byteFlat = ReadBytes(m_strFlat);
  byteFlat[0] = static_cast<char>(byteFlat[0] + 1);
  WriteBytes(m_strFlat, byteFlat);
  const SToolResult stResult = Run("out");
  EXPECT_EQ(stResult.nExitCode, 3);
  EXPECT_TRUE(stResult.byteErrors.contains("another SHA-256")) << stResult.byteErrors.constData();
}

TEST_F(Apply, FilesThatAreThereStayUnlessForced)
{
  QDir(m_recording.GetFolder()).mkpath("out");
  WriteBytes(m_recording.Path("out/bright_1.png"), "precious");
  EXPECT_EQ(Run("out").nExitCode, 1);
  EXPECT_EQ(ReadBytes(m_recording.Path("out/bright_1.png")), QByteArray("precious"));
  EXPECT_EQ(List("out").size(), 7);
  EXPECT_EQ(Run("out", {"--force"}).nExitCode, 0);
}

TEST_F(Apply, InPlaceReplacesTheFramesThemselves)
{
  ASSERT_EQ(Run("out").nExitCode, 0);
  ASSERT_EQ(RunTool({"apply", m_strFlat, m_recording.Path("bright"), "--in-place"}).nExitCode, 0);
  EXPECT_TRUE(ReadAll("bright") == ReadAll("out"));
  EXPECT_EQ(RunTool({"apply", m_strFlat, m_recording.Path("bright"), "--in-place"}).nExitCode, 3);
  EXPECT_EQ(RunTool({"apply", m_strFlat, m_recording.Path("bright"), "--in-place", "--resume"}).nExitCode, 0);
  EXPECT_TRUE(ReadAll("bright") == ReadAll("out"));
}

TEST_F(Apply, ADryRunWritesNothing)
{
  const SToolResult stResult = Run("out", {"--dry-run"});
  EXPECT_EQ(stResult.nExitCode, 0);
  EXPECT_FALSE(QDir(m_recording.Path("out")).exists());
}

TEST_F(Apply, ResumingDoesOnlyWhatIsNotDone)
{
  ASSERT_EQ(Run("whole").nExitCode, 0);
  ASSERT_EQ(Run("out").nExitCode, 0);
  ASSERT_TRUE(QFile::remove(m_recording.Path("out/bright_0.png")));                                  // lost
  WriteBytes(m_recording.Path("out/bright_1.png"), ReadBytes(m_recording.Path("out/bright_2.png"))); // not of its frame
  const auto listFrame = m_recording.MakeBright(50);
  ASSERT_TRUE(
    SaveFrame(m_recording.Path("bright/bright_5.png"), m_recording.GetLayout(), listFrame.data())); // recorded anew
  const SToolResult stResult = Run("out", {"--resume", "--json"});
  ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  int nBefore = 0;
  for (const QJsonObject &object : stResult.GetObjects()) {
    nBefore += object["status"].toString() == "done before" ? 1 : 0;
  }
  EXPECT_EQ(nBefore, 3);
  EXPECT_TRUE(ReadFrame(m_recording.Path("out/bright_0.png")) == ReadFrame(m_recording.Path("whole/bright_0.png")));
  EXPECT_TRUE(ReadFrame(m_recording.Path("out/bright_1.png")) == ReadFrame(m_recording.Path("whole/bright_1.png")));
  EXPECT_FALSE(ReadFrame(m_recording.Path("out/bright_5.png")) == ReadFrame(m_recording.Path("whole/bright_5.png")));
}

TEST_F(Apply, KilledAtAnyTimeAndResumedTheResultIsTheSame)
{
  ASSERT_EQ(Run("whole").nExitCode, 0);
  const auto mapWhole = ReadAll("whole");
  for (unsigned long nMicroseconds = 2000; nMicroseconds <= 30000; nMicroseconds += 2000) {
    QProcess tool;
    tool.start(GetToolPath(), {"apply", m_strFlat, m_recording.Path("bright"), "-o", m_recording.Path("killed"),
                               "--resume", "--threads", "1"});
    ASSERT_TRUE(tool.waitForStarted());
    QThread::usleep(nMicroseconds);
    tool.kill();
    tool.waitForFinished();
    for (const QString &strName : List("killed")) {
      if (strName.endsWith(".png")) {
        EXPECT_TRUE(ReadBytes(m_recording.Path("killed/" + strName)) == mapWhole[strName]) << "no half file";
      }
    }
  }
  ASSERT_EQ(Run("killed", {"--resume"}).nExitCode, 0);
  auto mapKilled = ReadAll("killed");
  for (const QString &strName : mapKilled.keys()) {
    if (strName.endsWith(".part")) {
      mapKilled.remove(strName); // of a file that was done in another run
    }
  }
  EXPECT_TRUE(mapKilled == mapWhole);
}

TEST_F(Apply, AFullVolumeFailsTheFilesAndLeavesNothingOfThem)
{
#ifdef Q_OS_WIN
  GTEST_SKIP() << "the limit holds for this program alone";
#endif
  SToolResult stResult;
  {
    const CFullVolume fullVolume(1500);
    stResult = Run("out");
  }
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_TRUE(stResult.byteErrors.contains("cannot write")) << stResult.byteErrors.constData();
  EXPECT_EQ(List("out"), QStringList{"ffc-manifest.jsonl"});
}

TEST_F(Apply, AFolderThatCannotBeWrittenIsSaid)
{
  WriteBytes(m_recording.Path("file"), "x");
  const SToolResult stResult = Run("file/out");
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_TRUE(stResult.byteErrors.contains("cannot be made")) << stResult.byteErrors.constData();
}

TEST_F(Apply, NamesComeFromAListByLinesOrNulAndFromInput)
{
  const QByteArray byteOne = m_recording.Path("bright/bright_0.png").toUtf8();
  const QByteArray byteOther = m_recording.Path("bright/bright_4.png").toUtf8();
  WriteBytes(m_recording.Path("lines"), byteOne + "\n" + byteOther + "\n");
  const QStringList listBegin{"apply", m_strFlat, "-o"};
  EXPECT_EQ(
    RunTool(listBegin + QStringList{m_recording.Path("a"), "--files-from", m_recording.Path("lines")}).nExitCode, 0);
  EXPECT_EQ(
    RunTool(listBegin + QStringList{m_recording.Path("b"), "--files-from", "-"}, byteOne + '\0' + byteOther + '\0')
      .nExitCode,
    0);
  EXPECT_EQ(List("a"), (QStringList{"bright_0.png", "bright_4.png", "ffc-manifest.jsonl"}));
  EXPECT_TRUE(ReadAll("a") == ReadAll("b"));
}

TEST_F(Apply, ManyFramesInOneFileAreTheSameForEveryNumberOfThreads)
{
  QByteArray byteFrames;
  for (uint32_t n = 0; n < 9; ++n) {
    const auto listFrame = m_recording.MakeBright(n);
    byteFrames.append(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
  }
  WriteBytes(m_recording.Path("many.raw"), byteFrames);
  for (const char *pThreads : {"1", "2"}) {
    ASSERT_EQ(RunTool({"apply", m_strFlat, m_recording.Path("many.raw"), "--raw", "64x48:Mono12", "--threads", pThreads,
                       "-o", m_recording.Path(pThreads)})
                .nExitCode,
              0);
  }
  const QByteArray byteOne = ReadBytes(m_recording.Path("1/many.raw"));
  EXPECT_EQ(byteOne.size(), byteFrames.size());
  EXPECT_TRUE(byteOne == ReadBytes(m_recording.Path("2/many.raw")));
  ASSERT_EQ(Run("png").nExitCode, 0);
  const auto listFrame = ReadFrame(m_recording.Path("png/bright_5.png"));
  const QByteArray byteFifth(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
  EXPECT_TRUE(byteOne.mid(5 * byteFifth.size(), byteFifth.size()) == byteFifth);
}

TEST_F(Apply, EveryKindOfFileGivesTheSameValues)
{
  QStringList listKinds{"ser", "raw"};
  if (ffc::frames::IsTiffSupported()) {
    listKinds << "tif";
  }
  ASSERT_EQ(Run("png").nExitCode, 0);
  for (const QString &strKind : listKinds) {
    ASSERT_EQ(RunTool({"convert", m_recording.Path("bright"), "--to", strKind, "--pixel-format", "Mono12", "-o",
                       m_recording.Path(strKind)})
                .nExitCode,
              0);
    QStringList listArguments{"apply", m_strFlat, m_recording.Path(strKind), "-o", m_recording.Path(strKind + "-out")};
    if (strKind == "raw") {
      listArguments << "--raw"
                    << "64x48:Mono12";
    }
    const SToolResult stResult = RunTool(listArguments);
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
    const QString strOut = m_recording.Path(strKind + "-out/bright_2." + strKind);
    const QByteArray byteFrame = ReadBytes(strOut).mid(strKind == "ser" ? 178 : 0);
    const auto listFrame = ReadFrame(m_recording.Path("png/bright_2.png"));
    const QByteArray byteExpected(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
    EXPECT_TRUE(strKind == "tif" ? ReadFrame(strOut) == listFrame : byteFrame == byteExpected) << strKind.toStdString();
    listArguments[2] = m_recording.Path(strKind + "-out");
    listArguments[4] = m_recording.Path(strKind + "-twice");
    EXPECT_EQ(RunTool(listArguments).nExitCode, 3) << "marked as corrected: " << strKind.toStdString();
  }
}
