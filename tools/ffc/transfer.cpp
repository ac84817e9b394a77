#include "tools/ffc/transfer.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include "tools/ffc/inputs.h"

namespace ffc::tool {
namespace {

/// A sentence about the file; where there is no memory for one, a text that takes none.
STrouble GiveUp(const QString &strFile, const char *pEnd, const char *pReason = "") noexcept
{
  try {
    return {false, MakeSentence(strFile, std::string(pEnd) + pReason + ".")};
  } catch (const std::bad_alloc &) {
    return {false, QStringLiteral("There is not enough memory, not even to name the file.")};
  }
}

/// What fnWork answers, or throws.
template <class TWork>
std::optional<STrouble> CatchTrouble(const QString &strFile, TWork &&fnWork)
{
  try {
    return fnWork();
  } catch (const std::bad_alloc &) {
    return GiveUp(strFile, "needs more memory than there is");
  } catch (const std::exception &exception) {
    return GiveUp(strFile, "was given up: ", exception.what());
  }
}

/// Starts as many threads as the system has for it, runs fnRun on the caller's too, and waits for all. Then throws what
/// one of them threw.
void RunOnThreads(std::size_t nThreads, const std::function<void(std::size_t nThread)> &fnRun)
{
  std::mutex mutex;
  std::exception_ptr pThrown;
  const auto run = [&](std::size_t n) noexcept {
    try {
      fnRun(n);
    } catch (...) {
      const std::lock_guard<std::mutex> lock(mutex);
      pThrown = std::current_exception();
    }
  };
  std::vector<std::thread> listThreads;
  try {
    for (std::size_t n = 1; n < nThreads; ++n) {
      listThreads.emplace_back(run, n);
    }
  } catch (const std::exception &) {
    // Fewer do.
  }
  run(0);
  for (std::thread &thread : listThreads) {
    thread.join();
  }
  if (pThrown) {
    std::rethrow_exception(pThrown);
  }
}

/// Reads, changes and writes the frames of one file. Each thread takes the next frame, changes it while others read or
/// write theirs, and waits for its turn to write.
class CFrameTransfer {
public:
  CFrameTransfer(const STransfer &stTransfer, frames::IFrameReader &reader, frames::IFrameWriter &writer, bool bHash)
    : m_stTransfer(stTransfer), m_reader(reader), m_writer(writer), m_bHash(bHash)
  {
  }

  std::optional<STrouble> Run()
  {
    const frames::SFrameInfo &stInfo = m_reader.GetInfo();
    const uint64_t nFrames = std::min<uint64_t>(m_stTransfer.nThreads, stInfo.nFrames);
    std::vector<SFrame> listFrames(std::max<uint64_t>(1, nFrames));
    for (SFrame &stFrame : listFrames) {
      stFrame.listSamples.resize(stInfo.stLayout.GetFrameSize());
    }
    RunOnThreads(listFrames.size(), [&](std::size_t n) { Work(listFrames[n]); });
    return m_stTrouble;
  }

  SHashes GetHashes() const { return {m_hashRead.Get(), m_hashWritten.Get()}; }

private:
  struct SFrame {
    uint64_t nIndex = 0;
    std::vector<uint8_t> listSamples;
    frames::Texts mapTexts;
    std::optional<SFrameHashes> stHashes;
    std::optional<STrouble> stTrouble;
  };

  void Work(SFrame &stFrame)
  {
    while (Take(stFrame)) {
      if (!stFrame.stTrouble) {
        stFrame.stTrouble = CatchTrouble(m_stTransfer.strFrom, [&] { return Change(stFrame); });
      }
      if (!Deliver(stFrame)) {
        return;
      }
    }
  }

  /// \return false when there is no frame left
  bool Take(SFrame &stFrame)
  {
    const std::lock_guard<std::mutex> lock(m_reading);
    if (m_nTaken == m_reader.GetInfo().nFrames) {
      return false;
    }
    stFrame.nIndex = m_nTaken++;
    stFrame.stTrouble = CatchTrouble(m_stTransfer.strFrom, [&] {
      const Result<> read = m_reader.Read(stFrame.listSamples.data(), &stFrame.mapTexts);
      return read ? std::nullopt
                  : std::optional<STrouble>(STrouble{false, MakeSentence(m_stTransfer.strFrom, read.GetError())});
    });
    if (stFrame.stTrouble) {
      m_nTaken = m_reader.GetInfo().nFrames;
    }
    return true;
  }

  std::optional<STrouble> Change(SFrame &stFrame) const
  {
    if (m_bHash) {
      stFrame.stHashes.emplace();
    }
    const Result<> changed = m_stTransfer.fnChange(stFrame.listSamples.data(), m_bHash ? &*stFrame.stHashes : nullptr);
    for (auto it = m_stTransfer.mapTexts.begin(); it != m_stTransfer.mapTexts.end(); ++it) {
      stFrame.mapTexts[it.key()] = it.value();
    }
    return changed ? std::nullopt
                   : std::optional<STrouble>(STrouble{true, MakeSentence(m_stTransfer.strFrom, changed.GetError())});
  }

  /// Writes the frame when all before it are written. \return false when one of them, or this one, cannot be
  bool Deliver(SFrame &stFrame)
  {
    std::unique_lock<std::mutex> lock(m_writing);
    m_turn.wait(lock, [&] { return m_nDelivered == stFrame.nIndex; });
    if (!m_stTrouble) {
      m_stTrouble =
        stFrame.stTrouble ? stFrame.stTrouble : CatchTrouble(m_stTransfer.strFrom, [&] { return Write(stFrame); });
    }
    ++m_nDelivered;
    m_turn.notify_all();
    return !m_stTrouble;
  }

  std::optional<STrouble> Write(SFrame &stFrame)
  {
    if (m_bHash) {
      m_hashRead.Add(stFrame.stHashes->hashRead);
      m_hashWritten.Add(stFrame.stHashes->hashWritten);
    }
    const Result<> written = m_writer.Write(stFrame.listSamples.data(), stFrame.mapTexts);
    return written ? std::nullopt
                   : std::optional<STrouble>(STrouble{false, QString::fromStdString(written.GetError())});
  }

  const STransfer &m_stTransfer;
  frames::IFrameReader &m_reader;
  frames::IFrameWriter &m_writer;
  const bool m_bHash;

  std::mutex m_reading; ///< guards the reader and
  uint64_t m_nTaken = 0;

  std::mutex m_writing; ///< guards the writer and what follows
  std::condition_variable m_turn;
  uint64_t m_nDelivered = 0;
  std::optional<STrouble> m_stTrouble; ///< of the first frame that has one
  CContentHash m_hashRead;
  CContentHash m_hashWritten;
};

} // namespace

std::optional<STrouble> Transfer(frames::IFrameReader &reader, const STransfer &stTransfer, SHashes *pHashes)
{
  Result<std::unique_ptr<frames::IFrameWriter>> writer = stTransfer.pKind->Create(stTransfer.strTo, stTransfer.stInfo);
  if (!writer) {
    return STrouble{false, QString::fromStdString(writer.GetError())};
  }
  CFrameTransfer transfer(stTransfer, reader, *writer.GetValue(), pHashes != nullptr || stTransfer.fnBeforeCommit);
  std::optional<STrouble> stTrouble = transfer.Run();
  if (stTrouble) {
    return stTrouble;
  }
  reader.Close(); // it may be this file whose place the new one takes
  if (pHashes != nullptr) {
    *pHashes = transfer.GetHashes();
  }
  const Result<> committed = RunUntilFailure(
    [&] { return stTransfer.fnBeforeCommit ? stTransfer.fnBeforeCommit(transfer.GetHashes()) : Result<>(); },
    [&] { return writer.GetValue()->Commit(frames::ECommit::Durable); });
  return committed ? std::nullopt
                   : std::optional<STrouble>(STrouble{false, QString::fromStdString(committed.GetError())});
}

void ForEachFile(const QStringList &listFiles, uint32_t nThreads, CReport &report, const FnWork &fnWork)
{
  const auto nFiles = static_cast<uint32_t>(listFiles.size());
  report.SetTotal(nFiles);
  const uint32_t nWorkers = std::max(1U, std::min(nThreads, nFiles)); // a shard may have no file
  std::atomic<int> nNext{0};
  RunOnThreads(nWorkers, [&](std::size_t nWorker) {
    const uint32_t nShare = nThreads / nWorkers + (nWorker < nThreads % nWorkers ? 1 : 0);
    for (int n = nNext++; n < listFiles.size(); n = nNext++) {
      const std::optional<STrouble> stTrouble = CatchTrouble(listFiles[n], [&] {
        fnWork(listFiles[n], nShare);
        return std::optional<STrouble>();
      });
      if (stTrouble) {
        report.AddTrouble(listFiles[n], *stTrouble);
      }
    }
  });
}

Result<QStringList> PlanOutputs(const QStringList &listFiles, const QString &strFolder, const QString &strSuffix)
{
  QStringList listOutputs;
  QHash<QString, QString> mapSources;
  for (const QString &strFile : listFiles) {
    const QFileInfo info(strFile);
    const QString strName =
      strSuffix.isEmpty() ? info.fileName() : info.completeBaseName() + QStringLiteral(".") + strSuffix;
    const QString strOutput = QDir(strFolder).filePath(strName);
    if (mapSources.contains(strOutput)) {
      return Failure(QStringLiteral("The files \"%1\" and \"%2\" would both become \"%3\": use a folder for each.")
                       .arg(mapSources[strOutput], strFile, strOutput));
    }
    mapSources[strOutput] = strFile;
    listOutputs << strOutput;
  }
  return listOutputs;
}

Result<> MakeFolder(const QString &strFolder)
{
  return QDir().mkpath(strFolder) ? Result<>()
                                  : Failure(QStringLiteral("The folder \"%1\" cannot be made.").arg(strFolder));
}

} // namespace ffc::tool
