// Engines that run many programs, as docs/batch.md says.
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

namespace {

class Parallel : public testing::Test {
protected:
  void SetUp() override
  {
    if (QStandardPaths::findExecutable("parallel").isEmpty()) {
      GTEST_SKIP() << "GNU parallel is not installed";
    }
    m_recording.Write(1, 12);
    ASSERT_EQ(RunTool({"make", "--dark", m_recording.Path("dark"), "--bright", m_recording.Path("bright"),
                       "--pixel-format", "Mono12", "-o", m_recording.Path("flat.ffc")})
                .nExitCode,
              0);
    ASSERT_EQ(
      RunTool({"apply", m_recording.Path("flat.ffc"), m_recording.Path("bright"), "-o", m_recording.Path("whole")})
        .nExitCode,
      0);
  }

  /// \return the exit code
  int Run(const QString &strCommand)
  {
    QProcess shell;
    shell.setWorkingDirectory(m_recording.GetFolder());
    shell.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("FFC", GetToolPath());
    environment.insert("PARALLEL_HOME", m_recording.Path("parallel"));
    shell.setProcessEnvironment(environment);
    shell.start("bash", {"-c", strCommand});
    return shell.waitForFinished(60000) ? shell.exitCode() : -1;
  }

  bool IsWhole(const QString &strFolder)
  {
    for (int n = 0; n < 12; ++n) {
      const QString strName = QStringLiteral("/bright_%1.png").arg(n);
      if (ReadBytes(m_recording.Path("whole" + strName)) != ReadBytes(m_recording.Path(strFolder + strName))) {
        return false;
      }
    }
    return true;
  }

  CRecording m_recording;
};

} // namespace

TEST_F(Parallel, ShardsTogetherAreTheWhole)
{
  EXPECT_EQ(
    Run("parallel --will-cite $FFC apply flat.ffc bright/ --shard {}/4 --threads 1 --resume --quiet -o out ::: {1..4}"),
    0);
  EXPECT_TRUE(IsWhole("out"));
}

TEST_F(Parallel, AFailedJobIsRunAgainWhenItsFileIsMended)
{
  const QByteArray byteGood = ReadBytes(m_recording.Path("bright/bright_3.png"));
  WriteBytes(m_recording.Path("bright/bright_3.png"), byteGood.left(100));
  const QString strCommand =
    "find bright/ -name '*.png' -print0 | sort -z | parallel --will-cite --null --max-args 4 "
    "--joblog jobs.log --resume-failed $FFC apply flat.ffc --threads 1 --resume --quiet -o out";
  EXPECT_EQ(Run(strCommand), 1) << "one job";
  EXPECT_EQ(QDir(m_recording.Path("out")).entryList({"*.png"}).size(), 11) << "all other files";
  WriteBytes(m_recording.Path("bright/bright_3.png"), byteGood);
  EXPECT_EQ(Run(strCommand), 0);
  EXPECT_TRUE(IsWhole("out"));
}
