#include <algorithm>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "ombrix/ombrix.h"
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
  for (const char *pShard : {"1/4", "2/4", "3/4", "4/4", "7/7"}) {
    ASSERT_EQ(Run("shards", {"--shard", pShard}).nExitCode, 0) << "of six frames, " << pShard;
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
  QElapsedTimer timer;
  timer.start();
  ASSERT_EQ(Run("whole").nExitCode, 0);
  const auto nWholeRun = static_cast<quint32>(timer.nsecsElapsed() / 1000);
  const auto mapWhole = ReadAll("whole");
  QRandomGenerator random(15);
  for (int nKill = 0; nKill < 50; ++nKill) {
    QProcess tool;
    tool.start(GetToolPath(), {"apply", m_strFlat, m_recording.Path("bright"), "-o", m_recording.Path("killed"),
                               "--resume", "--threads", "1"});
    ASSERT_TRUE(tool.waitForStarted());
    QThread::usleep(random.bounded(nWholeRun));
    tool.kill();
    tool.waitForFinished();
    for (const QString &strName : List("killed")) {
      if (strName.endsWith(".png")) {
        EXPECT_TRUE(ReadBytes(m_recording.Path("killed/" + strName)) == mapWhole[strName]) << "no half file";
      }
    }
    if (nKill % 10 == 9) {
      QDir(m_recording.Path("killed")).removeRecursively(); // the first file is as likely to be hit as the last
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

TEST_F(Apply, OneBadFileOfAThousandIsNamedAndAllOthersAreDone)
{
  const QByteArray byteGood = ReadBytes(m_recording.Path("bright/bright_0.png"));
  QDir(m_recording.GetFolder()).mkpath("thousand");
  for (int n = 0; n < 1000; ++n) {
    WriteBytes(m_recording.Path(QStringLiteral("thousand/%1.png").arg(n)), n == 617 ? byteGood.left(200) : byteGood);
  }
  const SToolResult stResult =
    RunTool({"apply", m_strFlat, m_recording.Path("thousand"), "-o", m_recording.Path("out"), "--quiet"});
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_EQ(stResult.byteErrors.count("ffc: "), 1) << stResult.byteErrors.constData();
  EXPECT_TRUE(stResult.byteErrors.contains("617.png")) << stResult.byteErrors.constData();
  EXPECT_EQ(List("out").size(), 1000) << "999 frames and the manifest";
}

TEST_F(Apply, AFolderWithoutTheRightToWriteIsSaid)
{
#ifdef Q_OS_WIN
  GTEST_SKIP() << "folders have no such right";
#endif
  if (IsAboveAccessRights()) {
    GTEST_SKIP() << "this user may write everywhere";
  }
  QDir(m_recording.GetFolder()).mkpath("out");
  QFile::setPermissions(m_recording.Path("out"), QFile::ReadOwner | QFile::ExeOwner);
  const SToolResult stResult = Run("out");
  QFile::setPermissions(m_recording.Path("out"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_TRUE(stResult.byteErrors.contains("cannot write")) << stResult.byteErrors.constData();
  EXPECT_TRUE(List("out").isEmpty());
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
  const SToolResult stResult = RunTool(listBegin + QStringList{m_recording.Path("c"), "--files-from", "-"});
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_TRUE(stResult.byteErrors.contains("names none")) << stResult.byteErrors.constData();
}

TEST_F(Apply, FramesThatOnlySeemToBeCorrectedAreCorrectedByResuming)
{
  const QString strFrames = m_recording.Path("frames.raw");
  const auto listFrame = m_recording.MakeBright(0);
  const QByteArray byteFrames(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
  const QStringList listArguments{"apply", m_strFlat, strFrames, "--raw", "64x48:Mono12", "--in-place"};
  WriteBytes(strFrames, byteFrames);
  ASSERT_EQ(RunTool(listArguments).nExitCode, 0);
  const QByteArray byteCorrected = ReadBytes(strFrames);
  WriteBytes(strFrames, byteFrames); // as a run leaves it that ends when it has written the mark
  EXPECT_EQ(RunTool(listArguments).nExitCode, 3) << "the mark counts";
  EXPECT_EQ(RunTool(listArguments + QStringList{"--resume"}).nExitCode, 0);
  EXPECT_TRUE(ReadBytes(strFrames) == byteCorrected);
  EXPECT_EQ(RunTool(listArguments + QStringList{"--resume"}).nExitCode, 0);
  EXPECT_TRUE(ReadBytes(strFrames) == byteCorrected) << "and is not corrected twice";
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
  ASSERT_EQ(Run("png").nExitCode, 0);
  for (const QString &strKind : ListOtherKinds() + QStringList{"raw"}) {
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
    EXPECT_TRUE(strKind == "ser" || strKind == "raw" ? byteFrame == byteExpected : ReadFrame(strOut) == listFrame)
      << strKind.toStdString();
    listArguments[2] = m_recording.Path(strKind + "-out");
    listArguments[4] = m_recording.Path(strKind + "-twice");
    EXPECT_EQ(RunTool(listArguments).nExitCode, 3) << "marked as corrected: " << strKind.toStdString();
    listArguments[2] = m_recording.Path(strKind);
    listArguments.erase(listArguments.begin() + 3, listArguments.begin() + 5);
    EXPECT_EQ(RunTool(listArguments + QStringList{"--in-place"}).nExitCode, 0) << strKind.toStdString();
    EXPECT_TRUE(ReadBytes(m_recording.Path(strKind + "/bright_2." + strKind)) == ReadBytes(strOut))
      << "in place: " << strKind.toStdString();
  }
}

TEST_F(Apply, EveryRunOfALargeFrameIsCorrectedWithItsOwnCoefficients)
{
  const CRecording large(7, {400, 332, 2});
  large.Write(1, 1);
  for (const bool bDark : {false, true}) {
    const QStringList listDark = bDark ? QStringList{"--dark", large.Path("dark")} : QStringList();
    ASSERT_EQ(RunTool(QStringList{"make", "--bright", large.Path("bright"), "--pixel-format", "Mono12", "--force", "-o",
                                  large.Path("flat.ffc")} +
                      listDark)
                .nExitCode,
              0);
    ASSERT_EQ(
      RunTool({"apply", large.Path("flat.ffc"), large.Path("bright"), "--force", "-o", large.Path("out")}).nExitCode,
      0);
    std::vector<uint8_t> listExpected = large.MakeBright(0);
    const QByteArray byteTable = ReadBytes(large.Path("flat.ffc"));
    const auto nTable = static_cast<uint32_t>(byteTable.size());
    ASSERT_EQ(nTable, 400U * 332U * (bDark ? 4U : 2U));
    ASSERT_EQ(
      OmbrixApplyFlatField(listExpected.data(), listExpected.data(), 12, 400, 332, byteTable.constData(), &nTable),
      OMBRIX_STATUS_SUCCESS);
    EXPECT_TRUE(ReadFrame(large.Path("out/bright_0.png")) == listExpected) << bDark;
  }
}

TEST_F(Apply, ATroubleIsThatOfTheFirstBadFrameForEveryNumberOfThreads)
{
  QByteArray byteFrames;
  for (uint32_t n = 0; n < 12; ++n) {
    std::vector<uint8_t> listFrame = m_recording.MakeBright(n);
    if (n == 5 || n > 7) {
      listFrame[1] = static_cast<uint8_t>(0x10 + n); // beyond 12 bits
    }
    byteFrames.append(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
  }
  WriteBytes(m_recording.Path("many.raw"), byteFrames);
  for (const char *pThreads : {"1", "2", "7"}) {
    const SToolResult stResult = RunTool({"apply", m_strFlat, m_recording.Path("many.raw"), "--raw", "64x48:Mono12",
                                          "--threads", pThreads, "-o", m_recording.Path("out")});
    EXPECT_EQ(stResult.nExitCode, 3);
    const auto nValue = m_recording.MakeBright(5)[0] + 256 * 0x15;
    EXPECT_TRUE(stResult.byteErrors.contains("holds the value " + QByteArray::number(nValue)))
      << stResult.byteErrors.constData();
    EXPECT_EQ(List("out"), QStringList{"ffc-manifest.jsonl"});
  }
}

TEST_F(Apply, MemoryDoesNotGrowWithTheNumberOfFrames)
{
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the address sanitizer keeps freed memory";
#endif
  const auto fnGetPeak = [](qint64 nProcess) {
    QFile file(QStringLiteral("/proc/%1/status").arg(nProcess));
    const QByteArray byteStatus = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return byteStatus.mid(byteStatus.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toInt();
  };
  if (fnGetPeak(QCoreApplication::applicationPid()) == 0) {
    GTEST_SKIP() << "this system does not tell a program's memory";
  }
  const auto listFrame = m_recording.MakeBright(1);
  const QByteArray byteFrame(reinterpret_cast<const char *>(listFrame.data()), static_cast<int>(listFrame.size()));
  int anPeaks[2] = {}; // kilobytes
  // Enough frames in the first run too, so that a busy machine sees its peak.
  for (const int nFrames : {1000, 5000}) {
    WriteBytes(m_recording.Path("many.raw"), byteFrame.repeated(nFrames));
    QProcess tool;
    tool.start(GetToolPath(), {"apply", m_strFlat, m_recording.Path("many.raw"), "--raw", "64x48:Mono12", "--threads",
                               "2", "--force", "-o", m_recording.Path("out")});
    while (tool.state() != QProcess::NotRunning && !tool.waitForFinished(1)) {
      int &nPeak = anPeaks[nFrames == 1000 ? 0 : 1];
      nPeak = std::max(nPeak, fnGetPeak(tool.processId()));
    }
    ASSERT_EQ(tool.exitCode(), 0);
    ASSERT_EQ(QFileInfo(m_recording.Path("out/many.raw")).size(), byteFrame.size() * nFrames);
  }
  EXPECT_LT(anPeaks[1], anPeaks[0] + byteFrame.size() * 4000 / 1024 / 2) << "half of what 4000 frames have";
}
