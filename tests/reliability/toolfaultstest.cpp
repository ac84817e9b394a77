// The tool whose files fail, at each open, read, write and rename; that is killed; whose machine loses its power; and
// that gets no memory.
#include <cstdio>
#include <iterator>
#include <map>
#include <memory>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "tests/reliability/scale.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

namespace {

constexpr int LIMIT_MS = 60000;

/// Files by their names below a folder.
using Contents = QMap<QString, QByteArray>;

struct SCommand {
  const char *pName;
  QStringList listArguments;
  QStringList listAgain; ///< what is added when a run that ended early is done again
};

const SCommand COMMANDS[] = {
  {"ApplyInPlace", {"apply", "flat.ffc", "in", "--in-place", "--threads", "1"}, {"--resume"}},
  {"Apply",
   {"apply", "flat.ffc", "--files-from", "list.txt", "--defects", "defects.csv", "-o", "out", "--threads", "1"},
   {"--resume"}},
  {"Make", {"make", "--dark", "dark", "--bright", "bright", "-o", "made.ffc"}, {"--force"}},
  {"ConvertToTif", {"convert", "in/a.png", "in/c.ser", "--to", "tif", "-o", "out", "--threads", "1"}, {"--force"}},
  {"ConvertToFits", {"convert", "in/b.tif", "--to", "fits", "-o", "out", "--threads", "1"}, {"--force"}},
  {"Check", {"check", "flat.ffc", "bright", "--dark", "dark", "--details", "figures"}, {}},
  {"Defects", {"defects", "--dark", "dark", "--bright", "bright", "-o", "d.csv", "--map", "d.xml"}, {"--force"}},
  {"Library", {"library", "library", "flat.ffc"}, {"--force"}},
  {"Inspect", {"inspect", "flat.ffc", "in", "--plot", "plot.png"}, {}},
};

/// What differs between two runs that did the same: times, and the order of lines.
QByteArray Normalise(const QString &strName, const QByteArray &byteContent)
{
  if (strName.endsWith(".ffc.json")) {
    QJsonObject object = QJsonDocument::fromJson(byteContent).object();
    object.remove("created");
    return byteContent.isEmpty() ? byteContent : QJsonDocument(object).toJson();
  }
  return byteContent;
}

Contents ReadAll(const QString &strFolder)
{
  Contents mapContents;
  QDirIterator it(strFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (it.hasNext()) {
    const QString strName = QDir(strFolder).relativeFilePath(it.next());
    mapContents[strName] = Normalise(strName, ReadBytes(it.filePath()));
  }
  return mapContents;
}

/// A folder with all that the commands take.
class CWorkFolder {
public:
  CWorkFolder()
  {
    m_recording.Write(2, 4);
    RunTool(
      {"make", "--dark", Path("dark"), "--bright", Path("bright"), "--pixel-format", "Mono8", "-o", Path("flat.ffc")});
    QDir().mkpath(Path("in"));
    const QStringList listNames = {"a.png", "b.tif", "c.ser", "d.fits"};
    QByteArray byteList;
    for (const QString &strName : listNames) {
      if (ffc::frames::FindFileKind(strName) != nullptr && ffc::frames::FindFileKind(strName)->IsSupported()) {
        EXPECT_TRUE(
          ffc::frames::SaveFrame(Path("in/" + strName), m_recording.GetLayout(), m_recording.MakeBright(9).data()));
        byteList += "in/" + strName.toUtf8() + '\n';
      }
    }
    WriteBytes(Path("list.txt"), byteList);
    WriteBytes(Path("defects.csv"), "x,y\n3,3\n20,21\n");
    m_mapContents = ReadAll(m_recording.GetFolder());
    for (auto it = m_mapContents.begin(); it != m_mapContents.end(); ++it) {
      m_mapRaw[it.key()] = ReadBytes(Path(it.key()));
    }
  }

  QString Path(const QString &strName) const { return m_recording.Path(strName); }
  QString GetFolder() const { return QFileInfo(m_recording.GetFolder()).canonicalFilePath(); }
  const Contents &GetContents() const { return m_mapContents; }

  /// As it was at first.
  void Restore() const
  {
    const Contents mapNow = ReadAll(m_recording.GetFolder());
    for (auto it = mapNow.begin(); it != mapNow.end(); ++it) {
      if (!m_mapRaw.contains(it.key())) {
        QFile::remove(Path(it.key()));
      } else if (it.value() != m_mapContents[it.key()]) {
        WriteBytes(Path(it.key()), m_mapRaw[it.key()]);
      }
    }
    for (const char *pFolder : {"out", "figures", "library"}) {
      QDir(m_recording.GetFolder()).rmdir(pFolder);
    }
  }

private:
  CRecording m_recording{1, {32, 32, 1}, 8};
  Contents m_mapContents;
  Contents m_mapRaw;
};

/// The first of COMMANDS do for a short run.
std::size_t CountCommands()
{
  return IsSoak() ? std::size(COMMANDS) : GetStride() == 1 ? 2 : 1;
}

struct SEnd {
  bool bKilled = false;
  int nExitCode = -1;
  std::string strErrors;
  QByteArray byteOutput;
};

/// A command of the tool on a folder, with its faults.
class CSweep {
public:
  CSweep(const SCommand &stCommand, const CWorkFolder &folder) : m_stCommand(stCommand), m_folder(folder)
  {
    const SEnd stEnd = Run("none 0");
    EXPECT_EQ(stEnd.nExitCode, 0) << stEnd.strErrors;
    EXPECT_FALSE(stEnd.bKilled);
    m_mapDone = ReadAll(m_folder.GetFolder());
    for (const QByteArray &byteLine : ReadBytes(m_counts.filePath("counts")).split('\n')) {
      const QList<QByteArray> listWords = byteLine.split(' ');
      if (listWords.size() == 2) {
        m_mapCounts[listWords[0].toStdString()] = listWords[1].toULong();
      }
    }
    m_byteOutput = stEnd.byteOutput;
    m_folder.Restore();
  }

  uint64_t GetCount(const char *pFault) const { return m_mapCounts.at(pFault); }

#ifdef MEMORY_FAULT_LIBRARY
  /// Of a run without memory faults.
  uint64_t CountAllocations() const
  {
    EXPECT_EQ(RunWithoutMemory("once 0").nExitCode, 0);
    m_folder.Restore();
    return ReadBytes(m_counts.filePath("allocations")).toULongLong();
  }

  SEnd RunWithoutMemory(const QString &strFault) const
  {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", MEMORY_FAULT_LIBRARY);
    environment.insert("FFC_MEMORY_FAULT", strFault);
    environment.insert("FFC_MEMORY_FAULT_COUNTS", m_counts.filePath("allocations"));
    return Run(environment, {});
  }
#endif

  SEnd Run(const QString &strFault, bool bAgain = false) const
  {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!bAgain) {
      environment.insert("LD_PRELOAD", FAULT_LIBRARY);
      environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":verify_asan_link_order=0");
      environment.insert("FFC_FAULT_FOLDER", m_folder.GetFolder());
      environment.insert("FFC_FAULT", strFault);
      environment.insert("FFC_FAULT_COUNTS", m_counts.filePath("counts"));
    }
    return Run(environment, bAgain ? m_stCommand.listAgain : QStringList());
  }

  SEnd Run(const QProcessEnvironment &environment, const QStringList &listMore) const
  {
    QProcess tool;
    tool.setProcessEnvironment(environment);
    tool.setWorkingDirectory(m_folder.GetFolder());
    tool.start(GetToolPath(), m_stCommand.listArguments + listMore);
    EXPECT_TRUE(tool.waitForFinished(LIMIT_MS)) << "it hangs";
    return {tool.exitStatus() == QProcess::CrashExit, tool.exitCode(), tool.readAllStandardError().toStdString(),
            tool.readAllStandardOutput()};
  }

  /// Files that are neither as they were nor as they were to become.
  QStringList FindTorn(bool bKilled) const
  {
    const Contents mapNow = ReadAll(m_folder.GetFolder());
    const Contents &mapFormer = m_folder.GetContents();
    QStringList listTorn;
    for (auto it = mapFormer.begin(); it != mapFormer.end(); ++it) {
      if (!mapNow.contains(it.key())) {
        listTorn << it.key() + " is missing";
      }
    }
    for (auto it = mapNow.begin(); it != mapNow.end(); ++it) {
      const QString &strName = it.key();
      const bool bFormer = mapFormer.contains(strName) && mapFormer[strName] == it.value();
      const bool bDone = m_mapDone.contains(strName) && m_mapDone[strName] == it.value();
      const bool bLeft = bKilled && strName.endsWith(".part");
      // Lines, each of which counts by itself.
      const bool bLines = strName.endsWith("ffc-manifest.jsonl");
      if (!bFormer && !bDone && !bLeft && !bLines) {
        listTorn << strName + " is neither former nor new";
      }
    }
    return listTorn;
  }

  /// Frames without a place for a mark, and the files that have it.
  QStringList FindMismarked(bool bKilled) const
  {
    const Contents mapNow = ReadAll(m_folder.GetFolder());
    QStringList listMismarked;
    for (auto it = m_mapDone.begin(); it != m_mapDone.end(); ++it) {
      const QString strMark = it.key() + ".json";
      if (!it.key().endsWith(".ser") || !m_mapDone.contains(strMark)) {
        continue;
      }
      const bool bCorrected = mapNow.value(it.key()) == it.value();
      if (bCorrected ? !mapNow.contains(strMark) : mapNow.contains(strMark) && !bKilled) {
        listMismarked << it.key();
      }
    }
    return listMismarked;
  }

  bool IsDone() const
  {
    Contents mapNow = ReadAll(m_folder.GetFolder());
    Contents mapDone = m_mapDone;
    for (const QString &strName : mapNow.keys()) {
      if (strName.endsWith(".part") || strName.endsWith("ffc-manifest.jsonl")) {
        mapNow.remove(strName);
      }
    }
    mapDone.remove("out/ffc-manifest.jsonl");
    return mapNow == mapDone;
  }

  void Restore() const
  {
    m_folder.Restore();
  }
  const SCommand &GetCommand() const
  {
    return m_stCommand;
  }
  const QByteArray &GetOutput() const
  {
    return m_byteOutput;
  }

private:
  const SCommand &m_stCommand;
  const CWorkFolder &m_folder;
  QTemporaryDir m_counts;
  Contents m_mapDone;
  QByteArray m_byteOutput; ///< when nothing fails
  std::map<std::string, uint64_t> m_mapCounts;
};

class ToolFaults : public testing::TestWithParam<SCommand> {
protected:
  static void SetUpTestSuite() { s_pFolder = std::make_unique<CWorkFolder>(); }
  static void TearDownTestSuite()
  {
    s_pFolder.reset();
    std::printf("%llu failures of the tool's files and allocations tried\n", static_cast<unsigned long long>(s_nTried));
  }

  /// Calls fnTry for the numbers of a sweep: all of them, or the last, of which most is done when it comes.
  template <class TTry>
  static void ForEach(const CSweep &sweep, const char *pFault, const TTry &fnTry)
  {
    const uint64_t nCount = sweep.GetCount(pFault);
    for (uint64_t n = IsSoak() ? 1 : nCount; n >= 1 && n <= nCount; ++n) {
      const std::string strFault = std::string(pFault) + ' ' + std::to_string(n);
      SCOPED_TRACE(strFault + " of " + std::to_string(nCount));
      fnTry(sweep.Run(QString::fromStdString(strFault)));
      sweep.Restore();
      ++s_nTried;
    }
  }

  static std::unique_ptr<CWorkFolder> s_pFolder;
  static uint64_t s_nTried;
};

std::unique_ptr<CWorkFolder> ToolFaults::s_pFolder;
uint64_t ToolFaults::s_nTried = 0;

} // namespace

TEST_P(ToolFaults, AFileThatFailsIsNamedAndNothingIsLeftHalfDone)
{
  const CSweep sweep(GetParam(), *s_pFolder);
  for (const char *pFault : {"open", "read", "write", "rename", "sync", "close"}) {
    ForEach(sweep, pFault, [&](const SEnd &stEnd) {
      EXPECT_FALSE(stEnd.bKilled) << stEnd.strErrors;
      EXPECT_EQ(sweep.FindTorn(false).join(", ").toStdString(), "");
      EXPECT_EQ(sweep.FindMismarked(false).join(", ").toStdString(), "");
      if (stEnd.nExitCode == 0) {
        EXPECT_TRUE(sweep.IsDone()) << "it says that all is done";
      } else {
        EXPECT_EQ(stEnd.nExitCode, 1) << stEnd.strErrors;
        EXPECT_NE(('\n' + stEnd.strErrors).find("\nffc: "), std::string::npos) << stEnd.strErrors;
        EXPECT_EQ(sweep.Run("", true).nExitCode, 0);
        EXPECT_TRUE(sweep.IsDone()) << "the second time";
      }
    });
  }
}

TEST_P(ToolFaults, FilesAreWholeOrAbsentWhenItIsKilledOrThePowerIsLost)
{
  const CSweep sweep(GetParam(), *s_pFolder);
  for (const char *pFault : {"kill", "powerloss"}) {
    ForEach(sweep, pFault, [&](const SEnd &stEnd) {
      EXPECT_TRUE(stEnd.bKilled);
      EXPECT_EQ(sweep.FindTorn(true).join(", ").toStdString(), "");
      EXPECT_EQ(sweep.FindMismarked(true).join(", ").toStdString(), "");
      EXPECT_EQ(sweep.Run("", true).nExitCode, 0);
      EXPECT_TRUE(sweep.IsDone()) << "the second time";
    });
  }
}

#ifdef MEMORY_FAULT_LIBRARY
namespace {

/// What a run may end as in which an allocation failed: done all the same, or an exit code and a line about it.
void ExpectEndWithoutMemory(const CSweep &sweep, const SEnd &stEnd)
{
  EXPECT_FALSE(stEnd.bKilled) << stEnd.strErrors;
  const bool bEndedAtOnce = stEnd.strErrors.find(".part may be left") != std::string::npos;
  EXPECT_EQ(sweep.FindTorn(bEndedAtOnce).join(", ").toStdString(), "");
  EXPECT_EQ(sweep.FindMismarked(bEndedAtOnce).join(", ").toStdString(), "");
  if (stEnd.nExitCode == 0) {
    EXPECT_TRUE(sweep.IsDone()) << "it says that all is done";
    EXPECT_EQ(stEnd.byteOutput, sweep.GetOutput());
    return;
  }
  EXPECT_EQ(stEnd.nExitCode, 1) << stEnd.strErrors;
  EXPECT_NE(('\n' + stEnd.strErrors).find("\nffc: "), std::string::npos) << stEnd.strErrors;
}

} // namespace

TEST_P(ToolFaults, AnAllocationThatFailsIsToldAndNothingIsLeftHalfDone)
{
  const CSweep sweep(GetParam(), *s_pFolder);
  const uint64_t nCount = sweep.CountAllocations();
  ASSERT_GT(nCount, 0U);
  // Most of the first half is the command line's; the very first are what the toolkit knows its thread by, where it
  // crashes.
  const uint64_t nStep = IsSoak() ? 1 : nCount / 12;
  for (uint64_t n = IsSoak() ? 20 : nCount / 2; n <= nCount; n += nStep) {
    for (const char *pMode : {"once ", "from "}) {
      const std::string strFault = pMode + std::to_string(n);
      SCOPED_TRACE(strFault + " of " + std::to_string(nCount));
      ExpectEndWithoutMemory(sweep, sweep.RunWithoutMemory(QString::fromStdString(strFault)));
      sweep.Restore();
      ++s_nTried;
    }
  }
}
#endif

INSTANTIATE_TEST_SUITE_P(Commands, ToolFaults, testing::ValuesIn(COMMANDS, COMMANDS + CountCommands()),
                         [](const auto &stInfo) { return std::string(stInfo.param.pName); });
