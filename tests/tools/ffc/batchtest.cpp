// Engines that run many programs, as docs/batch.md says. On recorded frames where there are some.
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

namespace {

constexpr int FRAMES = 12;
constexpr int PARTS = 4;
constexpr int BAD = 5; ///< the frame that one job fails for, at first

class BatchEngine : public testing::Test {
protected:
  void Prepare(const QString &strProgram)
  {
    if (QStandardPaths::findExecutable(strProgram).isEmpty()) {
      GTEST_SKIP() << strProgram.toStdString() << " is not installed";
    }
    if (!CopyRealFrames()) {
      m_recording.Write(2, FRAMES);
    }
    m_strBad = Path("bright/" + QDir(Path("bright")).entryList(QDir::Files, QDir::Name)[BAD]);
    ASSERT_EQ(Run("$FFC make --dark dark --bright bright --pixel-format Mono12 --quiet -o flat.ffc"), 0);
    ASSERT_EQ(Run("$FFC apply flat.ffc bright --quiet -o whole"), 0);
    m_byteGood = ReadBytes(m_strBad);
  }

  /// What a copy that was broken off leaves of a file.
  void BreakFrame() { WriteBytes(m_strBad, m_byteGood.left(100)); }
  void MendFrame() { WriteBytes(m_strBad, m_byteGood); }

  QString Path(const QString &strName) { return m_recording.Path(strName); }

  /// \return the exit code
  int Run(const QString &strCommand)
  {
    QProcess shell;
    shell.setWorkingDirectory(m_recording.GetFolder());
    shell.setProcessChannelMode(QProcess::ForwardedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("FFC", GetToolPath());
    environment.insert("EXAMPLES", FFC_EXAMPLES);
    environment.insert("PARALLEL_HOME", Path("parallel"));
    environment.insert("XDG_CACHE_HOME", Path("cache"));
    shell.setProcessEnvironment(environment);
    shell.start("bash", {"-c", strCommand});
    return shell.waitForFinished(100000) ? shell.exitCode() : -1;
  }

  int CountCorrected() { return QDir(Path("out")).entryList({"*.png"}).size(); }

  /// Whether the frames in the folder "out" are those of a single run.
  bool IsWhole()
  {
    const QStringList listNames = QDir(Path("whole")).entryList({"*.png"});
    bool bWhole = listNames.size() == FRAMES;
    for (const QString &strName : listNames) {
      bWhole = bWhole && ReadBytes(Path("whole/" + strName)) == ReadBytes(Path("out/" + strName));
    }
    return bWhole;
  }

private:
  bool CopyRealFrames()
  {
    const QDir recorded(QString::fromLocal8Bit(qgetenv("FFC_TEST_DATA")) + "/emva1288_set001");
    for (const char *pScene : {"dark", "bright"}) {
      const QStringList listNames = recorded.entryList({QString(pScene) + "_*.png"}, QDir::Files, QDir::Name);
      QDir(m_recording.GetFolder()).mkpath(pScene);
      for (const QString &strName : listNames.mid(0, FRAMES)) {
        WriteBytes(Path(pScene + ("/" + strName)), ReadBytes(recorded.filePath(strName)));
      }
    }
    return QDir(Path("bright")).entryList(QDir::Files).size() == FRAMES;
  }

  CRecording m_recording;
  QString m_strBad;
  QByteArray m_byteGood;
};

class Parallel : public BatchEngine {
protected:
  void SetUp() override { Prepare("parallel"); }
};

class Snakemake : public BatchEngine {
protected:
  void SetUp() override { Prepare("snakemake"); }

  int RunWorkflow()
  {
    return Run("snakemake --snakefile $EXAMPLES/Snakefile --cores 2 --keep-going --quiet --config ffc=$FFC darks=dark "
               "brights=whole_bright frames=bright out=out format=Mono12 parts=2");
  }
};

class Slurm : public BatchEngine {
protected:
  void SetUp() override
  {
    if (!qEnvironmentVariableIsSet("SLURM_CONF")) {
      GTEST_SKIP() << "there is no cluster; test.sh --cluster starts one";
    }
    Prepare("sbatch");
  }

  int Submit(const QString &strTasks)
  {
    return Run("sbatch --quiet --wait --array=" + strTasks +
               " --cpus-per-task=1 $EXAMPLES/ffc-array.sbatch flat.ffc bright out " + QString::number(PARTS));
  }
};

} // namespace

TEST_F(Parallel, ShardsTogetherAreTheWhole)
{
  EXPECT_EQ(
    Run("parallel --will-cite $FFC apply flat.ffc bright/ --shard {}/4 --threads 1 --resume --quiet -o out ::: {1..4}"),
    0);
  EXPECT_TRUE(IsWhole());
}

TEST_F(Parallel, AFailedJobIsRunAgainWhenItsFileIsMended)
{
  BreakFrame();
  const QString strCommand =
    "find bright/ -name '*.png' -print0 | sort -z | parallel --will-cite --null --max-args 4 "
    "--joblog jobs.log --resume-failed $FFC apply flat.ffc --threads 1 --resume --quiet -o out";
  EXPECT_EQ(Run(strCommand), 1) << "one job";
  EXPECT_EQ(CountCorrected(), FRAMES - 1) << "all other files";
  MendFrame();
  EXPECT_EQ(Run(strCommand), 0);
  EXPECT_TRUE(IsWhole());
}

TEST_F(Snakemake, AFailedJobIsRunAgainWhenItsFileIsMended)
{
  // The frames of the flat are not those that are corrected, one of which is bad at first.
  ASSERT_EQ(Run("cp -r bright whole_bright && mv flat.ffc expected.ffc"), 0);
  BreakFrame();
  EXPECT_EQ(RunWorkflow(), 1);
  EXPECT_EQ(CountCorrected(), FRAMES - 1) << "all other files";
  EXPECT_EQ(QDir(Path("done")).entryList(QDir::Files).size(), 1) << "of two parts";
  MendFrame();
  EXPECT_EQ(RunWorkflow(), 0);
  EXPECT_TRUE(ReadBytes(Path("flat.ffc")) == ReadBytes(Path("expected.ffc")));
  EXPECT_TRUE(IsWhole());
}

TEST_F(Slurm, AFailedTaskOfAnArrayIsRunAgainWhenItsFileIsMended)
{
  BreakFrame();
  EXPECT_EQ(Submit(QStringLiteral("1-%1").arg(PARTS)), 1) << "one task";
  EXPECT_EQ(CountCorrected(), FRAMES - 1) << "all other files";
  const QString strTask = QString::number(BAD % PARTS + 1);
  EXPECT_EQ(Run("test \"$(grep -l 'cannot be read' ffc-*.log | sed 's/.*_//')\" = " + strTask + ".log"), 0)
    << "its log says why";
  MendFrame();
  EXPECT_EQ(Submit(strTask), 0);
  EXPECT_TRUE(IsWhole());
}
