#include "tools/ffc/transfer.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <future>
#include <new>
#include <thread>
#include <vector>

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include "tools/ffc/contenthash.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

namespace {

/// The frames of a file, the next of which may be read while one is worked on. Used by one thread at a time.
class CFrameQueue {
public:
  CFrameQueue(frames::IFrameReader &reader, bool bReadAhead)
    : m_reader(reader), m_nLeft(reader.GetInfo().nFrames), m_bReadAhead(bReadAhead && m_nLeft > 1)
  {
    for (SFrame &stFrame : m_astFrames) {
      stFrame.listSamples.resize(m_bReadAhead || &stFrame == m_astFrames ? reader.GetInfo().stLayout.GetFrameSize()
                                                                         : 0);
    }
    StartReading();
  }

  struct SFrame {
    std::vector<uint8_t> listSamples;
    frames::Texts mapTexts;
  };

  /// \return the next frame, which is the caller's until the next call; as often as there are frames
  Result<SFrame *> Take()
  {
    SFrame &stFrame = m_astFrames[m_nCurrent];
    const Result<> read = m_next.get();
    if (!read) {
      return read.GetFailure();
    }
    m_nCurrent = m_bReadAhead ? 1 - m_nCurrent : 0;
    if (m_bReadAhead) {
      StartReading();
    }
    return &stFrame;
  }

  /// After the work on a frame.
  void Release()
  {
    if (!m_bReadAhead) {
      StartReading();
    }
  }

private:
  void StartReading()
  {
    if (m_nLeft > 0) {
      --m_nLeft;
      SFrame &stFrame = m_astFrames[m_nCurrent];
      m_next = std::async(m_bReadAhead ? std::launch::async : std::launch::deferred,
                          [this, &stFrame] { return m_reader.Read(stFrame.listSamples.data(), &stFrame.mapTexts); });
    }
  }

  frames::IFrameReader &m_reader;
  uint64_t m_nLeft;
  bool m_bReadAhead;
  SFrame m_astFrames[2];
  std::size_t m_nCurrent = 0;
  std::future<Result<>> m_next; ///< waits for its end when it goes
};

/// Changes and writes the frames of one file.
class CFrameTransfer {
public:
  CFrameTransfer(const STransfer &stTransfer, bool bHash) : m_stTransfer(stTransfer), m_bHash(bHash) {}

  std::optional<STrouble> Run(frames::IFrameReader &reader, frames::IFrameWriter &writer)
  {
    CFrameQueue queue(reader, m_stTransfer.bReadAhead);
    for (uint64_t n = 0; n < reader.GetInfo().nFrames; ++n) {
      const Result<CFrameQueue::SFrame *> frame = queue.Take();
      if (!frame) {
        return STrouble{false, MakeSentence(m_stTransfer.strFrom, frame.GetError())};
      }
      const std::optional<STrouble> stTrouble = Process(*frame.GetValue(), writer);
      if (stTrouble) {
        return stTrouble;
      }
      queue.Release();
    }
    return std::nullopt;
  }

  SHashes GetHashes() const { return {m_hashRead.Get(), m_hashWritten.Get()}; }

private:
  std::optional<STrouble> Process(CFrameQueue::SFrame &stFrame, frames::IFrameWriter &writer)
  {
    std::vector<uint8_t> &listSamples = stFrame.listSamples;
    if (m_bHash) {
      m_hashRead.Add(listSamples.data(), listSamples.size());
    }
    const Result<> changed = m_stTransfer.fnChange(listSamples.data());
    if (!changed) {
      return STrouble{true, MakeSentence(m_stTransfer.strFrom, changed.GetError())};
    }
    if (m_bHash) {
      m_hashWritten.Add(listSamples.data(), listSamples.size());
    }
    for (auto it = m_stTransfer.mapTexts.begin(); it != m_stTransfer.mapTexts.end(); ++it) {
      stFrame.mapTexts[it.key()] = it.value();
    }
    const Result<> written = writer.Write(listSamples.data(), stFrame.mapTexts);
    return written ? std::nullopt
                   : std::optional<STrouble>(STrouble{false, QString::fromStdString(written.GetError())});
  }

  const STransfer &m_stTransfer;
  const bool m_bHash;
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
  CFrameTransfer transfer(stTransfer, pHashes != nullptr);
  const std::optional<STrouble> stTrouble = transfer.Run(reader, *writer.GetValue());
  if (stTrouble) {
    return stTrouble;
  }
  if (pHashes != nullptr) {
    *pHashes = transfer.GetHashes();
  }
  const Result<> committed = writer.GetValue()->Commit();
  return committed ? std::nullopt
                   : std::optional<STrouble>(STrouble{false, QString::fromStdString(committed.GetError())});
}

void ForEachFile(const QStringList &listFiles, uint32_t nThreads, CReport &report,
                 const std::function<void(const QString &strFile)> &fnWork)
{
  std::atomic<int> nNext{0};
  const auto fnRun = [&] {
    for (int n = nNext++; n < listFiles.size(); n = nNext++) {
      try {
        fnWork(listFiles[n]);
      } catch (const std::bad_alloc &) {
        report.AddTrouble(listFiles[n], {false, MakeSentence(listFiles[n], "needs more memory than there is.")});
      } catch (const std::exception &exception) {
        report.AddTrouble(listFiles[n],
                          {false, MakeSentence(listFiles[n], std::string("was given up: ") + exception.what() + ".")});
      }
    }
  };
  report.SetTotal(static_cast<uint64_t>(listFiles.size()));
  const auto nWorkers = std::min<std::size_t>(nThreads, static_cast<std::size_t>(listFiles.size()));
  std::vector<std::thread> listWorkers;
  for (std::size_t n = 1; n < nWorkers; ++n) {
    listWorkers.emplace_back(fnRun);
  }
  fnRun();
  for (std::thread &worker : listWorkers) {
    worker.join();
  }
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
